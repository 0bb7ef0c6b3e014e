// Krovak's oblique conformal conic, projection code 3: the Czech and Slovak cadastre.
// Parameters: the longitude of Greenwich from the prime meridian of the system, radians; absent
// before version 1.3. All else is fixed, the ellipsoid (Bessel) included. North and east are the
// system's southing and westing, negated. Leans on the slots alone.
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// J. Krovak (1922); B. Veverka, Krovak's projection and its use for the Czech Republic and the
// Slovak Republic, in: 50 Years of the Research Institute of Geodesy (2004); IOGP Guidance Note 7-2
// (2021), method 9819. The constants are rounded and the latitude comes back by a series, as the
// surveys of both countries publish them.
//   U, V     latitude and longitude on Gauss's sphere
//   S, D     the same about the cartographic pole (latitude U0 of the sphere)
//   rho, theta   polar coordinates on the cone, metres and radians
constexpr double originLatitude = 1.0429668528963039;
constexpr double originLongitude = 0.4334247135733002;
constexpr double ferro = 0.3083415011856649;  // 17 degrees 40 minutes
constexpr double alpha = 1.000597498372;
constexpr double alphaInverse = 1.0005974983;  // as published for the way back
constexpr double e = 0.0816968303;
constexpr double k = 1.003419164;
constexpr double n = 0.97992470462083;
constexpr double oneOverN = 1.0204865693310534;
constexpr double rho0 = 1298039.0046;
constexpr double T0 = 1.4704398948052226;  // S0/2 + 45 degrees, S0 = 78 degrees 30 minutes
constexpr double V0 = 0.7422081354324841;
constexpr double U0 = 1.042168563804743;
constexpr double poleDistance = 0.5286277629901536;
constexpr double sphereRadius = 6380703.6105;
constexpr double quarterPi = std::numbers::pi / 4.0;
constexpr double halfPi = std::numbers::pi / 2.0;
constexpr double tiny = 1e-15;

double ArcSine (double x) noexcept { return std::atan (x / std::sqrt (1.0 - x * x)); }

struct Krovak {
  double offset = ferro;      ///< as stored
  double longitude0 = ferro;  ///< NaN for a null one
  double tanT0n = 0.0;
  double tanT0 = 0.0;
  double sinU0 = 0.0, cosU0 = 1.0;
  double sinPole = 0.0, cosPole = 1.0;  ///< of the distance of the cartographic pole

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    offset = in.Version () >= 1.3 ? in.Finite () : ferro;
    longitude0 = csib_ProjectionFrame::NaNUnlessKnown (offset);
    csib_ForceOrigin (block, originLatitude, originLongitude, 0.0, 0.0, 1.0);
    tanT0 = std::tan (T0);
    tanT0n = std::pow (tanT0, n);
    sinU0 = std::sin (U0);
    cosU0 = std::cos (U0);
    sinPole = std::sin (poleDistance);
    cosPole = std::cos (poleDistance);
    return in.Status ();
  }

  void Write (csib_Writer& out) const noexcept { out.Double (offset); }

  struct OnSphere {
    double U, dV;
  };
  OnSphere To (double phi, double lambda) const noexcept {
    const double es = e * std::sin (phi);
    const double U = 2.0 * (std::atan (k * std::pow (std::tan (phi / 2.0 + quarterPi), alpha) *
                                       std::pow ((1.0 - es) / (1.0 + es), alpha * e / 2.0)) -
                            quarterPi);
    return {U, V0 - alpha * (lambda + longitude0)};
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const auto [U, dV] = To (phi, lambda);
    const double sinS = std::sin (U) * sinU0 + std::cos (U) * cosU0 * std::cos (dV);
    if (std::abs (std::abs (sinS) - 1.0) < tiny) {
      north = east = 0.0;
      return;
    }
    const double cosS = std::sqrt (1.0 - sinS * sinS);
    const double S = std::abs (cosS) < tiny ? halfPi : std::atan (sinS / cosS);
    const double theta = n * ArcSine (std::cos (U) * std::sin (dV) / cosS);
    const double rho = rho0 * tanT0n / std::pow (std::tan (S / 2.0 + quarterPi), n);
    north = -rho * std::cos (theta);
    east = -rho * std::sin (theta);
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    const double X = -north;
    const double Y = -east;
    const double rho = std::sqrt (X * X + Y * Y);
    if (rho < tiny) {
      phi = originLatitude;
      lambda = originLongitude;
      return;
    }
    const double D = (std::abs (X) < tiny ? halfPi : std::atan (Y / X)) / n;
    const double S = LatitudeOnCone (rho);
    const double U = ArcSine (cosPole * std::sin (S) - std::cos (D) * std::cos (S) * sinPole);
    const double dV = ArcSine (std::cos (S) * std::sin (D) / std::cos (U));
    const double t = (U * CSIB_DegreesOfRadian - 49.45995729167) * 0.36;
    const double seconds =
        t * (10014.16023 + t * (-2.4130973 + t * (0.0128873 + t * (0.0025186 - t * 2.5e-6))));
    phi = (49.5 + seconds / 3600.0) * CSIB_RadiansOfDegree;
    lambda = (V0 - dV) / alphaInverse - longitude0;
  }

  double LatitudeOnCone (double rho) const noexcept {
    return 2.0 * std::atan (std::pow (rho0 / rho, oneOverN) * tanT0) - halfPi;
  }

  double Scale (double phi, double lambda) const noexcept {
    double north = 0.0;
    double east = 0.0;
    Forward (phi, lambda, north, east);
    double rho = std::sqrt (north * north + east * east);
    if (rho < tiny) rho = 1e-6;
    return n * rho / (std::cos (LatitudeOnCone (rho)) * sphereRadius);
  }

  // The azimuth of the cartographic pole on the sphere less its direction on the cone.
  double Convergence (double phi, double lambda) const noexcept {
    const auto [U, dV] = To (phi, lambda);
    double north = 0.0;
    double east = 0.0;
    Forward (phi, lambda, north, east);
    const double azimuth = std::atan2 (cosU0 * std::sin (dV),
                                       sinU0 * std::cos (U) - cosU0 * std::sin (U) * std::cos (dV));
    return azimuth - std::atan2 (-east, -north);
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_KrovakProjection =
    csib_ProjectionSlots<Krovak>::Table ();

}  // namespace clxml
