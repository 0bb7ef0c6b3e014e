// The auxiliary latitudes of an ellipsoid, and its meridian arc.
// What several projection families share: isometric and conformal latitude, and the length of the
// meridian, each with its inverse. Leans on nothing but <cmath>.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace clxml {

/// An angle in radians taken into minus pi to plus pi by whole turns; NaN for one that is not
/// finite.
inline double csib_WithinPi (double angle) noexcept {
  constexpr double pi = std::numbers::pi;
  return std::abs (angle) <= pi ? angle : std::remainder (angle, 2.0 * pi);
}

/// sum over k = 1..N of c[k-1] sin 2kx, from the sine and cosine of x, by Clenshaw's recurrence.
/// Source: C.W. Clenshaw, A note on the summation of Chebyshev series, MTAC 9 (1955), 118-120.
template <std::size_t N>
double csib_SineSeries (const std::array<double, N>& c, double sinX, double cosX) noexcept {
  const double twice = 2.0 * (cosX - sinX) * (cosX + sinX);  // 2 cos 2x
  double b1 = 0.0;
  double b2 = 0.0;
  for (std::size_t k = N; k-- > 0;) {
    const double b = twice * b1 - b2 + c[k];
    b2 = b1;
    b1 = b;
  }
  return 2.0 * sinX * cosX * b1;
}

/// The coefficients p of the same sum of five terms as sin 2x (p0 + p1 y + ... + p4 y^4), y = cos
/// 2x: sin 2kx = sin 2x U(k-1) (y) with Chebyshev's polynomials of the second kind.
constexpr std::array<double, 5> csib_SinePolynomial (const std::array<double, 5>& c) noexcept {
  return {c[0] - c[2] + c[4], 2.0 * c[1] - 4.0 * c[3], 4.0 * c[2] - 12.0 * c[4], 8.0 * c[3],
          16.0 * c[4]};
}
/// That sum; its products do not wait for each other as those of the recurrence do.
inline double csib_SinePolynomial (const std::array<double, 5>& p, double sinX,
                                   double cosX) noexcept {
  const double y = (cosX - sinX) * (cosX + sinX);
  const double y2 = y * y;
  return 2.0 * sinX * cosX * (p[0] + p[1] * y + y2 * (p[2] + p[3] * y + y2 * p[4]));
}

/// The isometric latitude psi = atanh (sin phi) - e atanh (e sin phi) of an ellipsoid.
/// Source: J.P. Snyder, Map Projections - A Working Manual, USGS Professional Paper 1395 (1987),
/// eq. 3-7 and 7-7 in their hyperbolic form.
struct csib_IsometricLatitude {
  double e = 0.0;
  double e2 = 0.0;  ///< e squared
  std::array<double, 6> d{};

  /// For the ellipsoid with these axes, metres. A prolate one gives NaN everywhere.
  void Set (double a, double b) noexcept;
  /// atanh (e s) / e for the sine of a latitude; s on a sphere.
  double Atanh (double s) const noexcept;
  /// e atanh (e s) for the sine of a latitude.
  double Eccentric (double s) const noexcept { return e2 * Atanh (s); }
  /// psi of the latitude with this sine and cosine; about 37 in amount at a pole.
  double Of (double s, double c) const noexcept {
    const double psi = std::log ((1.0 + std::abs (s)) / std::abs (c));
    return std::copysign (psi, s) - Eccentric (s);
  }
  double Of (double phi) const noexcept { return Of (std::sin (phi), std::cos (phi)); }
  /// exp (-psi), the tangent of half the conformal colatitude (Snyder 1987, eq. 15-9).
  double HalfColatitude (double s, double c) const noexcept {
    return (s < 0.0 ? (1.0 - s) / c : c / (1.0 + s)) * std::exp (Eccentric (s));
  }
  /// Sine and cosine of the conformal latitude chi = gd psi (Snyder 1987, eq. 3-1).
  void Conformal (double s, double c, double& sinChi, double& cosChi) const noexcept {
    const double t = c / (1.0 + std::abs (s)) * std::exp (Eccentric (std::abs (s)));
    sinChi = std::copysign ((1.0 - t * t) / (1.0 + t * t), s);
    cosChi = 2.0 * t / (1.0 + t * t);
  }
  /// m, the radius of a parallel in units of the semi-major axis (Snyder 1987, eq. 14-15).
  double M (double phi) const noexcept {
    const double s = std::sin (phi);
    return std::cos (phi) / std::sqrt (1.0 - e2 * s * s);
  }
  /// The latitude of psi, radians: Newton's iteration on psi from Krueger's series, at most 10
  /// rounds, until the step is below 1e-15; the last value stands. Plus or minus pi/2 beyond 40.
  double Latitude (double psi) const noexcept;
};

/// The length of the meridian from the equator.
struct csib_MeridianArc {
  double A = 0.0;             ///< radius of the rectifying sphere, metres
  double inverseA = 0.0;      ///< 1/A
  double e2 = 0.0;            ///< first eccentricity squared
  double inverseSlope = 1.0;  ///< A/(a (1 - e2)), of the rectifying latitude at the equator
  std::array<double, 5> c{};  ///< polynomials of the rectifying latitude, and of its inverse
  std::array<double, 5> d{};
  bool isExact = false;  ///< the inverse is exact to rounding, as on every earth

  /// For the ellipsoid with these axes, metres.
  void Set (double a, double b) noexcept;
  /// The arc from the equator to phi (radians, with its sine and cosine), metres.
  double Of (double phi, double s, double cosine) const noexcept {
    return A * (phi + csib_SinePolynomial (c, s, cosine));
  }
  double Of (double phi) const noexcept { return Of (phi, std::sin (phi), std::cos (phi)); }
  /// The footpoint latitude whose arc is m metres, radians, with its sine and cosine. Where the
  /// series is not exact, Newton's iteration on the arc follows, at most 10 rounds, until the sine
  /// would change by less than 1.6e-16; the last value is returned.
  double Footpoint (double m, double& s, double& cosine) const noexcept;
};

}  // namespace clxml
