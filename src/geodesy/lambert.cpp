// Lambert conformal conic, projection code 4, with one or two parallels.
// Parameters: a byte, the number of parallels; with 2 the parallels themselves, radians. Leans on
// latitudes.
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// Snyder (1987), eq. 15-1 to 15-11, with t^n written as exp (-n psi).
//   n     cone constant
//   aF    radius of the equator's circle times the scale, metres; it has the sign of n
//   rho   radius of a parallel, metres; it has the sign of n
struct Lambert {
  static constexpr double coneLimit = 0.999999999999999;

  csib_IsometricLatitude isometric;
  double a = 0.0;
  double n = 0.0;
  double aF = 0.0;
  double rho0 = 0.0;
  double lambda0 = 0.0;
  uint8_t parallels = 1;
  double first = 0.0;
  double second = 0.0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    parallels = in.Byte ();
    if (parallels != 1 && parallels != 2) in.Fail (CSIB_WrongFormat);
    if (parallels == 2) {
      first = in.Finite ();
      second = in.Finite ();
    }
    const csib_ProjectionFrame frame (block);
    a = frame.a;
    lambda0 = frame.longitude;
    isometric.Set (frame.a, frame.b);
    const double phi1 =
        parallels == 2 ? csib_ProjectionFrame::NaNUnlessKnown (first) : frame.latitude;
    const double phi2 = parallels == 2 ? csib_ProjectionFrame::NaNUnlessKnown (second) : phi1;
    const double psi1 = isometric.Of (phi1);
    const double m1 = isometric.M (phi1);
    n = std::sin (phi1);
    if (std::abs (phi2 - phi1) >= 1e-10 || std::isnan (phi2))
      n = std::log (m1 / isometric.M (phi2)) / (isometric.Of (phi2) - psi1);
    // At a pole the cone is a plane: its limit in place of a zero times an infinity, the origin at
    // the pole in place of an isometric latitude that is none.
    double scaledOrigin = n * isometric.Of (frame.latitude);
    if (std::abs (n) > coneLimit) {
      const double k = frame.scale;
      aF = 2.0 * a * k * std::exp (-isometric.Eccentric (1.0)) / std::sqrt (1.0 - isometric.e2);
      aF = std::copysign (aF, n);
      n = std::copysign (1.0, n);
      if (parallels == 1) scaledOrigin = 1e20;
    } else {
      aF = a * frame.scale * m1 * std::exp (n * psi1) / n;
    }
    rho0 = aF * std::exp (-scaledOrigin);
    return in.Status ();
  }

  void Write (csib_Writer& out) const noexcept {
    out.Byte (parallels);
    if (parallels != 2) return;
    out.Double (first);
    out.Double (second);
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const double rho = aF * std::exp (-n * isometric.Of (phi));
    const double theta = n * csib_WithinPi (lambda - lambda0);
    north = rho0 - rho * std::cos (theta);
    east = rho * std::sin (theta);
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    const double down = rho0 - north;
    const double rho = std::sqrt (down * down + east * east);
    phi = isometric.Latitude (-std::log (rho / std::abs (aF)) / n);
    lambda = lambda0 + (n < 0.0 ? std::atan2 (-east, -down) : std::atan2 (east, down)) / n;
  }

  double Scale (double phi, double) const noexcept {
    return n * aF * std::exp (-n * isometric.Of (phi)) / (a * isometric.M (phi));
  }

  double Convergence (double, double lambda) const noexcept {
    return n * csib_WithinPi (lambda - lambda0);
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_LambertProjection =
    csib_ProjectionSlots<Lambert>::Table ();

}  // namespace clxml
