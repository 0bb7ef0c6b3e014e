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
// The isometric latitude is infinite at the poles, so that they need cases of their own: one is the
// apex of the cone, the other has no point on the map.
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
    n = std::sin (phi1);
    if (IsPole (phi1) != IsPole (phi2))
      n = std::copysign (1.0, IsPole (phi1) ? phi1 : phi2);
    else if (std::abs (phi2 - phi1) >= 1e-10 || std::isnan (phi2))
      n = std::log (isometric.M (phi1) / isometric.M (phi2)) /
          (isometric.Of (phi2) - isometric.Of (phi1));
    const double trueAt = IsPole (phi1) ? phi2 : phi1;  // a parallel of the scale
    const bool isPlane = std::abs (n) > coneLimit;
    if (isPlane) n = std::copysign (1.0, n);
    if (std::abs (std::sin (trueAt)) > coneLimit)  // the limit of a zero times an infinity
      aF = 2.0 * a * frame.scale * std::exp (-isometric.Eccentric (1.0)) /
           std::sqrt (1.0 - isometric.e2) / n;
    else
      aF = a * frame.scale * isometric.M (trueAt) * std::exp (n * isometric.Of (trueAt)) / n;
    rho0 = isPlane && parallels == 1 ? 0.0 : Rho (frame.latitude);
    return in.Status ();
  }

  static bool IsPole (double phi) noexcept { return std::abs (phi) >= std::numbers::pi / 2.0; }

  double Rho (double phi) const noexcept {
    if (!IsPole (phi)) return aF * std::exp (-n * isometric.Of (phi));
    return std::signbit (phi) == std::signbit (n) ? 0.0 : std::numeric_limits<double>::infinity ();
  }

  void Write (csib_Writer& out) const noexcept {
    out.Byte (parallels);
    if (parallels != 2) return;
    out.Double (first);
    out.Double (second);
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const double rho = Rho (phi);
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
    if (IsPole (phi) && n != std::copysign (1.0, phi))
      return std::numeric_limits<double>::infinity ();
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
