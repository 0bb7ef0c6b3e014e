// Albers equal-area conic, projection code 1.
// Parameters: the first and the second parallel, radians. Leans on latitudes.
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// Snyder (1987), eq. 14-12 to 14-21 and 3-12; latitude from q by 3-16, started by 3-18.
//   q     (1 - e2) (sin phi/(1 - e2 sin2 phi) + atanh (e sin phi)/e)
//   n     cone constant
//   rho   radius of a parallel times the scale, metres; it has the sign of n
struct Albers {
  static constexpr csib_Status NoScale = CSIB_NoAlbersScale;

  csib_IsometricLatitude isometric;
  double ak = 0.0;
  double n = 0.0;
  double C = 0.0;
  double rho0 = 0.0;
  double poleQ = 0.0;
  double lambda0 = 0.0;
  double first = 0.0;
  double second = 0.0;
  std::array<double, 3> authalic{};

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    first = in.Finite ();
    second = in.Finite ();
    if (in.Version () <= 1.1) block.ProjectionScale = 1.0;
    const csib_ProjectionFrame frame (block);
    isometric.Set (frame.a, frame.b);
    ak = frame.a * frame.scale;
    lambda0 = frame.longitude;
    const double s1 = std::sin (csib_ProjectionFrame::NaNUnlessKnown (first));
    const double s2 = std::sin (csib_ProjectionFrame::NaNUnlessKnown (second));
    const double q1 = Q (s1);
    const double q2 = Q (s2);
    const double m1Squared = M2 (s1);
    n = std::abs (q2 - q1) < 1e-10 ? s1 : (m1Squared - M2 (s2)) / (q2 - q1);
    C = m1Squared + n * q1;
    rho0 = Rho (std::sin (frame.latitude));
    poleQ = Q (1.0);
    const double e2 = isometric.e2;
    authalic = {e2 * (1.0 / 3 + e2 * (31.0 / 180 + e2 * (517.0 / 5040))),
                e2 * e2 * (23.0 / 360 + e2 * (251.0 / 3780)), e2 * e2 * e2 * (761.0 / 45360)};
    return in.Status ();
  }

  void Write (csib_Writer& out) const noexcept {
    out.Double (first);
    out.Double (second);
  }

  double Q (double s) const noexcept {
    const double e2 = isometric.e2;
    return (1.0 - e2) * (s / (1.0 - e2 * s * s) + isometric.Atanh (s));
  }
  double M2 (double s) const noexcept { return (1.0 - s * s) / (1.0 - isometric.e2 * s * s); }
  double Rho (double s) const noexcept { return ak * std::sqrt (C - n * Q (s)) / n; }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const double rho = Rho (std::sin (phi));
    const double theta = n * csib_WithinPi (lambda - lambda0);
    north = rho0 - rho * std::cos (theta);
    east = rho * std::sin (theta);
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    const double down = rho0 - north;
    const double scaled = n / ak;
    phi = Latitude ((C - (down * down + east * east) * scaled * scaled) / n);
    lambda = lambda0 + (n < 0.0 ? std::atan2 (-east, -down) : std::atan2 (east, down)) / n;
  }

  // At most 20 rounds until the step is below 1e-12; the last value stands. NaN for a q beyond
  // that of a pole.
  double Latitude (double q) const noexcept {
    double sinBeta = q / poleQ;
    // What rounding adds at a pole.
    if (std::abs (sinBeta) > 1.0 && std::abs (sinBeta) < 1.0 + 1e-12)
      sinBeta = std::copysign (1.0, sinBeta);
    const double cosBeta = std::sqrt (1.0 - sinBeta * sinBeta);
    double phi = std::asin (sinBeta) + csib_SineSeries (authalic, sinBeta, cosBeta);
    for (int round = 0; round < 20; round++) {
      const double s = std::sin (phi);
      const double c = std::cos (phi);
      if (std::abs (c) < 1e-12) break;
      const double w = 1.0 - isometric.e2 * s * s;
      const double step = w * w / (2.0 * c) * (q - Q (s)) / (1.0 - isometric.e2);
      phi += step;
      if (!(std::abs (step) > 1e-12)) break;
    }
    return phi;
  }

  double Convergence (double, double lambda) const noexcept {
    return n * csib_WithinPi (lambda - lambda0);
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_AlbersProjection =
    csib_ProjectionSlots<Albers>::Table ();

}  // namespace clxml
