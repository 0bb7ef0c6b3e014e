// Oblique stereographic, projection code 9, through the conformal latitude.
// No parameters of its own. Leans on sphere.
#include "geodesy/projection_slots.h"
#include "geodesy/sphere.h"

namespace clxml {
namespace {

// Snyder (1987), eq. 21-24 to 21-29 and 3-1: the sphere has the conformal latitudes chi, the
// longitudes of the ellipsoid, and the radius a k m0/cos chi0 at the origin.
struct ObliqueStereographic {
  csib_IsometricLatitude isometric;
  csib_SphereStereographic plane;
  double a = 0.0;
  double lambda0 = 0.0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    const csib_ProjectionFrame frame (block);
    isometric.Set (frame.a, frame.b);
    a = frame.a;
    lambda0 = frame.longitude;
    isometric.Conformal (std::sin (frame.latitude), std::cos (frame.latitude), plane.sin0,
                         plane.cos0);
    plane.diameter = 2.0 * a * frame.scale * isometric.M (frame.latitude) / plane.cos0;
    return in.Status ();
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    double s = 0.0;
    double c = 0.0;
    isometric.Conformal (std::sin (phi), std::cos (phi), s, c);
    plane.Forward (s, c, csib_WithinPi (lambda - lambda0), north, east);
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    double tanChi = 0.0;
    double l = 0.0;
    plane.Inverse (north, east, tanChi, l);
    phi = isometric.Latitude (std::asinh (tanChi));
    lambda = lambda0 + l;
  }

  double Scale (double phi, double lambda) const noexcept {
    double s = 0.0;
    double c = 0.0;
    isometric.Conformal (std::sin (phi), std::cos (phi), s, c);
    return plane.Scale (s, c, lambda - lambda0) * plane.diameter / 2.0 * c /
           (a * isometric.M (phi));
  }

  double Convergence (double phi, double lambda) const noexcept {
    double s = 0.0;
    double c = 0.0;
    isometric.Conformal (std::sin (phi), std::cos (phi), s, c);
    return plane.Convergence (s, c, lambda - lambda0);
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_ObliqueStereographicProjection =
    csib_ProjectionSlots<ObliqueStereographic>::Table ();

}  // namespace clxml
