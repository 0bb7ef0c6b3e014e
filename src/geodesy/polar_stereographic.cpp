// Polar stereographic, projection code 11; the sign of the origin latitude picks the pole.
// No parameters of its own. True to scale at the origin latitude, times the scale; at a pole the
// scale alone. Leans on latitudes.
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// Snyder (1987), eq. 21-30 to 21-40 and 15-9. The quotient t/m has no singularity at the pole,
// which makes his two cases of the radius one:
//   t/m = sqrt (1 - e2 s2) exp (e atanh (e s))/(1 + s)
//   rho = K t with K = a k m0/t0
// At the south pole everything is done on the mirrored point.
struct PolarStereographic {
  csib_IsometricLatitude isometric;
  double a = 0.0;
  double K = 0.0;
  double sign = 1.0;  ///< 1 at the north pole
  double lambda0 = 0.0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    const csib_ProjectionFrame frame (block);
    isometric.Set (frame.a, frame.b);
    a = frame.a;
    lambda0 = frame.longitude;
    sign = frame.latitude < 0.0 ? -1.0 : 1.0;
    K = a * frame.scale / TOverM (sign * std::sin (frame.latitude));
    return in.Status ();
  }

  double TOverM (double s) const noexcept {
    return std::sqrt (1.0 - isometric.e2 * s * s) * std::exp (isometric.Eccentric (s)) / (1.0 + s);
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const double rho = K * isometric.HalfColatitude (sign * std::sin (phi), std::cos (phi));
    const double w = csib_WithinPi (lambda - lambda0);
    north = -sign * rho * std::cos (w);
    east = rho * std::sin (w);
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    const double rho = std::sqrt (north * north + east * east);
    phi = sign * isometric.Latitude (-std::log (rho / K));
    lambda = lambda0;
    if (rho > 0.0) lambda += std::atan2 (east, -sign * north);
  }

  double Scale (double phi, double) const noexcept {
    return K / a * TOverM (sign * std::sin (phi));
  }

  double Convergence (double, double lambda) const noexcept {
    return sign * csib_WithinPi (lambda - lambda0);
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_PolarStereographicProjection =
    csib_ProjectionSlots<PolarStereographic>::Table ();

}  // namespace clxml
