// Oblique conformal cylindrical, projection code 7: the Swiss projection.
// No parameters of its own. Leans on sphere.
#include "geodesy/projection_slots.h"
#include "geodesy/sphere.h"

namespace clxml {
namespace {

// M. Rosenmund, Die Aenderung des Projektionssystems der schweizerischen Landesvermessung, Bern
// (1903); swisstopo, Formulas and constants for the calculation of the Swiss conformal cylindrical
// projection (2016), sections 3.2, 3.3 and 3.5.
//   b, l     latitude and longitude on Gauss's sphere about the origin
//   bT, lT   the same about the pole of the great circle that touches the origin's parallel
struct ObliqueCylindrical {
  csib_GaussSphere sphere;
  double R = 0.0;  ///< of the sphere times the scale, metres
  double k0 = 1.0;
  double lambda0 = 0.0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    const csib_ProjectionFrame frame (block);
    sphere.Set (frame.a, frame.b, frame.latitude);
    if (sphere.IsPolar ()) return CSIB_LatitudeOutOfRange;
    k0 = frame.scale;
    R = sphere.R * k0;
    lambda0 = frame.longitude;
    return in.Status ();
  }

  double L (double lambda) const noexcept {
    return sphere.alpha * csib_WithinPi (lambda - lambda0);
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const double l = L (lambda);
    double s = 0.0;
    double c = 0.0;
    sphere.Forward (phi, s, c);
    const double cosL = std::cos (l);
    north = R * std::atanh (sphere.cos0 * s - sphere.sin0 * c * cosL);
    east = R * std::atan2 (c * std::sin (l), sphere.sin0 * s + sphere.cos0 * c * cosL);
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    // By gd: tan bT = sinh (y), 1/cos bT = cosh (y); all of it times cosh (y).
    const double sinhY = std::sinh (north / R);
    const double l = east / R;
    const double along = sphere.cos0 * std::cos (l) - sphere.sin0 * sinhY;
    const double across = std::sin (l);
    const double up = sphere.cos0 * sinhY + sphere.sin0 * std::cos (l);
    phi = sphere.Latitude (up / std::hypot (along, across));
    lambda = lambda0 + std::atan2 (across, along) / sphere.alpha;
  }

  double Scale (double phi, double lambda) const noexcept {
    double s = 0.0;
    double c = 0.0;
    sphere.Forward (phi, s, c);
    const double sinT = sphere.cos0 * s - sphere.sin0 * c * std::cos (L (lambda));
    return k0 * sphere.Scale (phi, c) / std::sqrt (1.0 - sinT * sinT);
  }

  double Convergence (double phi, double lambda) const noexcept {
    const double l = L (lambda);
    double s = 0.0;
    double c = 0.0;
    sphere.Forward (phi, s, c);
    return std::atan2 (sphere.sin0 * std::sin (l),
                       sphere.cos0 * c + sphere.sin0 * s * std::cos (l));
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_ObliqueCylindricalProjection =
    csib_ProjectionSlots<ObliqueCylindrical>::Table ();

}  // namespace clxml
