// Hotine's oblique Mercator, projection code 8.
// Parameters: three bytes, the kind of azimuth (0 geodetic, 1 grid, 2 two points of the central
// line), whether to rectify, whether u counts from the centre; then the azimuth, radians, or the
// latitude and longitude of both points. Leans on latitudes.
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// M. Hotine, The orthomorphic projection of the spheroid, Empire Survey Review 8-9 (1946-47), as in
// Snyder (1987), eq. 9-11 to 9-48; IOGP Guidance Note 7-2 (2021), methods 9812 and 9815.
//   alphaC   azimuth of the central line at the centre
//   gamma0   its azimuth where it crosses the equator of the aposphere
//   u, v     coordinates along the line and across it, metres
// Both products of the azimuth are 1 for a line that crosses its meridian at a right angle, but for
// the rounding.
double ArcSine (double x) noexcept {
  if (std::abs (x) > 1.0 && std::abs (x) < 1.0 + 1e-9) x = std::copysign (1.0, x);
  return std::asin (x);
}

struct ObliqueMercator {
  enum Kind : uint8_t { GeodeticAzimuth = 0, GridAzimuth = 1, TwoPoints = 2 };

  csib_IsometricLatitude isometric;
  double a = 0.0;
  double A = 0.0;
  double B = 1.0;
  double E = 1.0;
  double lambda0 = 0.0;
  double sinGamma = 0.0;
  double cosGamma = 1.0;
  double uc = 0.0;
  double r = 0.0;  ///< the rectifying angle, 0 for skew coordinates
  double sinR = 0.0;
  double cosR = 1.0;
  uint8_t kind = GridAzimuth;
  uint8_t rectify = 0;
  uint8_t originAtCentre = 0;
  std::array<double, 4> stored{};  ///< the azimuth, or both points

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    kind = in.Byte ();
    rectify = in.Byte ();
    originAtCentre = in.Byte ();
    if (kind > TwoPoints) in.Fail (CSIB_WrongFormat);
    for (std::size_t i = 0; i < Count (); i++) stored[i] = in.Finite ();
    SetConstants (csib_ProjectionFrame (block));
    return in.Status ();
  }

  std::size_t Count () const noexcept { return kind == TwoPoints ? 4 : 1; }

  void Write (csib_Writer& out) const noexcept {
    out.Byte (kind);
    out.Byte (rectify);
    out.Byte (originAtCentre);
    for (std::size_t i = 0; i < Count (); i++) out.Double (stored[i]);
  }

  void SetConstants (const csib_ProjectionFrame& frame) noexcept {
    isometric.Set (frame.a, frame.b);
    a = frame.a;
    const double e2 = isometric.e2;
    const double s = std::sin (frame.latitude);
    const double c = std::cos (frame.latitude);
    const double w2 = 1.0 - e2 * s * s;
    B = std::sqrt (1.0 + e2 * c * c * c * c / (1.0 - e2));
    A = a * B * frame.scale * std::sqrt (1.0 - e2) / w2;
    double D = B * std::sqrt (1.0 - e2) / (c * std::sqrt (w2));
    if (D < 1.0) D = 1.0;
    const double root = std::sqrt (D * D - 1.0);
    const double signedRoot = frame.latitude < 0.0 ? -root : root;
    const double F = D + signedRoot;
    E = F * std::exp (-B * isometric.Of (s, c));

    const auto known = [this] (std::size_t i) {
      return csib_ProjectionFrame::NaNUnlessKnown (stored[i]);
    };
    // An azimuth and its opposite are one line. The arcsines below give the one within a quarter
    // turn of north, so both azimuths are taken there.
    const auto folded = [&] { return std::remainder (known (0), std::numbers::pi); };
    double alphaC = 0.0;
    double gamma0 = 0.0;
    if (kind == TwoPoints) {
      const double L = std::exp (-B * isometric.Of (known (0)));
      const double H = std::exp (-B * isometric.Of (known (2)));
      const double between = csib_WithinPi (known (1) - known (3));
      const double J = (E * E - L * H) / (E * E + L * H);
      const double P = (H - L) / (H + L);
      // The middle by the shorter way; P is 0 where both points lie on one parallel.
      lambda0 = known (1) - between / 2.0 - std::atan (J * std::tan (B * between / 2.0) / P) / B;
      const double F1 = E / L;
      gamma0 =
          std::atan (2.0 * std::sin (B * csib_WithinPi (known (1) - lambda0)) / (F1 - 1.0 / F1));
      alphaC = ArcSine (D * std::sin (gamma0));
    } else {
      if (kind == GridAzimuth) {
        gamma0 = folded ();
        alphaC = ArcSine (D * std::sin (gamma0));
      } else {
        alphaC = folded ();
        gamma0 = std::asin (std::sin (alphaC) / D);
      }
      const double G = (F - 1.0 / F) / 2.0;
      lambda0 = frame.longitude - ArcSine (G * std::tan (gamma0)) / B;
    }
    sinGamma = std::sin (gamma0);
    cosGamma = std::cos (gamma0);
    uc = originAtCentre != 0 ? A / B * std::atan2 (signedRoot, std::cos (alphaC)) : 0.0;
    r = 0.0;
    if (rectify != 0) r = kind == GridAzimuth ? gamma0 : alphaC;
    sinR = std::sin (r);
    cosR = std::cos (r);
  }

  // The point on the aposphere: S = sinh and T = cosh of its isometric latitude, l its longitude
  // from lambda0.
  struct OnAposphere {
    double S, T, sinL, cosL;
  };
  OnAposphere To (double phi, double lambda) const noexcept {
    const double Q = E * std::exp (B * isometric.Of (phi));
    const double l = B * csib_WithinPi (lambda - lambda0);
    return {(Q - 1.0 / Q) / 2.0, (Q + 1.0 / Q) / 2.0, std::sin (l), std::cos (l)};
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const OnAposphere p = To (phi, lambda);
    const double U = (p.S * sinGamma - p.sinL * cosGamma) / p.T;
    const double v = -A / B * std::atanh (U);
    const double u = A / B * std::atan2 (p.S * cosGamma + p.sinL * sinGamma, p.cosL) - uc;
    north = u * cosR - v * sinR;
    east = v * cosR + u * sinR;
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    const double u = (north * cosR + east * sinR + uc) * B / A;
    const double v = (east * cosR - north * sinR) * B / A;
    const double S = -std::sinh (v);
    const double T = std::cosh (v);
    const double V = std::sin (u);
    const double U = (V * cosGamma + S * sinGamma) / T;
    phi = isometric.Latitude ((std::atanh (U) - std::log (E)) / B);
    lambda = lambda0 - std::atan2 (S * cosGamma - V * sinGamma, std::cos (u)) / B;
  }

  // The scale onto the aposphere, A/(a m T), times that of the Mercator from its oblique equator:
  // the same as Snyder's eq. 9-26 to 9-27 without their zeros.
  double Scale (double phi, double lambda) const noexcept {
    const OnAposphere p = To (phi, lambda);
    const double U = (p.S * sinGamma - p.sinL * cosGamma) / p.T;
    return A / (a * isometric.M (phi) * p.T * std::sqrt (1.0 - U * U));
  }

  // J.E. Stem, State Plane Coordinate System of 1983, NOAA Manual NOS NGS 5 (1989), section 3.3.
  double Convergence (double phi, double lambda) const noexcept {
    const OnAposphere p = To (phi, lambda);
    return std::atan2 (sinGamma + p.S * p.sinL * cosGamma, p.T * cosGamma * p.cosL) - r;
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_ObliqueMercatorProjection =
    csib_ProjectionSlots<ObliqueMercator>::Table ();

}  // namespace clxml
