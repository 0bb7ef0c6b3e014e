// Double stereographic, projection code 18: to Gauss's sphere, and from it stereographically.
// No parameters of its own. Leans on sphere.
#include "geodesy/projection_slots.h"
#include "geodesy/sphere.h"

namespace clxml {
namespace {

// IOGP Publication 373-7-2, Geomatics Guidance Note 7, part 2 (2021), method 9809.
struct DoubleStereographic {
  csib_GaussSphere sphere;
  csib_SphereStereographic plane;
  double k0 = 1.0;
  double lambda0 = 0.0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    const csib_ProjectionFrame frame (block);
    sphere.Set (frame.a, frame.b, frame.latitude);
    if (sphere.IsPolar ()) return CSIB_LatitudeOutOfRange;
    k0 = frame.scale;
    lambda0 = frame.longitude;
    plane = {2.0 * sphere.R * k0, sphere.sin0, sphere.cos0};
    return in.Status ();
  }

  double L (double lambda) const noexcept {
    return sphere.alpha * csib_WithinPi (lambda - lambda0);
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    double s = 0.0;
    double c = 0.0;
    sphere.Forward (phi, s, c);
    plane.Forward (s, c, L (lambda), north, east);
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    double tanB = 0.0;
    double l = 0.0;
    plane.Inverse (north, east, tanB, l);
    phi = sphere.Latitude (tanB);
    lambda = lambda0 + l / sphere.alpha;
  }

  double Scale (double phi, double lambda) const noexcept {
    double s = 0.0;
    double c = 0.0;
    sphere.Forward (phi, s, c);
    return k0 * sphere.Scale (phi, c) * plane.Scale (s, c, L (lambda));
  }

  double Convergence (double phi, double lambda) const noexcept {
    double s = 0.0;
    double c = 0.0;
    sphere.Forward (phi, s, c);
    return plane.Convergence (s, c, L (lambda));
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_DoubleStereographicProjection =
    csib_ProjectionSlots<DoubleStereographic>::Table ();

}  // namespace clxml
