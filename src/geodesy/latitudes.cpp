// The auxiliary latitudes of an ellipsoid: their series and iterations.
#include "geodesy/latitudes.h"

namespace clxml {

// Series for the latitude from the conformal latitude in the third flattening n: L. Krueger,
// Konforme Abbildung des Erdellipsoids in der Ebene, Potsdam (1912), sec. 5; to the sixth order
// C.F.F. Karney, Transverse Mercator with an accuracy of a few nanometers, J. Geodesy 85 (2011),
// eq. A7 (there by way of chi to phi).
void csib_IsometricLatitude::Set (double a, double b) noexcept {
  e2 = (a - b) * (a + b) / (a * a);
  e = std::sqrt (e2);
  const double n = (a - b) / (a + b);
  d[0] =
      n * (2.0 + n * (-2.0 / 3.0 +
                      n * (-2.0 + n * (116.0 / 45.0 + n * (26.0 / 45.0 + n * (-2854.0 / 675.0))))));
  const double n2 = n * n;
  d[1] = n2 * (7.0 / 3.0 + n * (-8.0 / 5.0 +
                                n * (-227.0 / 45.0 + n * (2704.0 / 315.0 + n * (2323.0 / 945.0)))));
  const double n3 = n2 * n;
  d[2] = n3 * (56.0 / 15.0 + n * (-136.0 / 35.0 + n * (-1262.0 / 105.0 + n * (73814.0 / 2835.0))));
  const double n4 = n2 * n2;
  d[3] = n4 * (4279.0 / 630.0 + n * (-332.0 / 35.0 + n * (-399572.0 / 14175.0)));
  d[4] = n4 * n * (4174.0 / 315.0 + n * (-144838.0 / 6237.0));
  d[5] = n3 * n3 * (601676.0 / 22275.0);
}

double csib_IsometricLatitude::Atanh (double s) const noexcept {
  const double x = e2 * s * s;
  // The flattening of any earth makes eight terms exact; other bodies get the function.
  if (!(x < 0.01)) return std::atanh (e * s) / e;
  const double series =
      1.0 +
      x * (1.0 / 3 +
           x * (1.0 / 5 +
                x * (1.0 / 7 + x * (1.0 / 9 + x * (1.0 / 11 + x * (1.0 / 13 + x * (1.0 / 15)))))));
  return s * series;
}

double csib_IsometricLatitude::Latitude (double psi) const noexcept {
  // There the cosine is less than what pi/2 as a double has.
  if (std::abs (psi) > 40.0) return std::copysign (std::numbers::pi / 2.0, psi);
  const double u = std::exp (psi);
  const double sinh = 0.5 * (u - 1.0 / u);
  const double cosChi = 2.0 / (u + 1.0 / u);
  double phi = std::atan (sinh) + csib_SineSeries (d, sinh * cosChi, cosChi);
  for (int round = 0; round < 10; round++) {
    const double s = std::sin (phi);
    const double c = std::cos (phi);
    const double step = (psi - Of (s, c)) * (1.0 - e2 * s * s) * c / (1.0 - e2);
    phi += step;
    // The step after this one is its square.
    if (!(step * step > 1e-15)) break;
  }
  return phi;
}

// F.R. Helmert, Die mathematischen und physikalischen Theorieen der hoeheren Geodaesie I, Leipzig
// (1880), sec. 1.7 (in the third flattening n), carried to the fifth order; the inverse as in
// Krueger (1912), sec. 3. What the sixth order adds on an earth is below 1e-9 m. The series in the
// squared second eccentricity with the coefficients 1/4, -1/32, 1/96, -5/1024, 7/2560 are the same
// arc.
void csib_MeridianArc::Set (double a, double b) noexcept {
  e2 = (a - b) * (a + b) / (a * a);
  const double n = (a - b) / (a + b);
  const double n2 = n * n;
  const double n3 = n2 * n;
  const double n4 = n2 * n2;
  const double n5 = n4 * n;
  A = a / (1.0 + n) * (1.0 + n2 * (1.0 / 4 + n2 * (1.0 / 64 + n2 / 256)));
  inverseA = 1.0 / A;
  inverseSlope = A / (a * (1.0 - e2));
  c = csib_SinePolynomial ({-3.0 / 2 * n + 9.0 / 16 * n3 - 3.0 / 32 * n5,
                            15.0 / 16 * n2 - 15.0 / 32 * n4, -35.0 / 48 * n3 + 105.0 / 256 * n5,
                            315.0 / 512 * n4, -693.0 / 1280 * n5});
  d = csib_SinePolynomial ({3.0 / 2 * n - 27.0 / 32 * n3 + 269.0 / 512 * n5,
                            21.0 / 16 * n2 - 55.0 / 32 * n4, 151.0 / 96 * n3 - 417.0 / 128 * n5,
                            1097.0 / 512 * n4, 8011.0 / 2560 * n5});
  isExact = std::abs (n) < 0.002;
}

double csib_MeridianArc::Footpoint (double m, double& s, double& cosine) const noexcept {
  const double mu = m * inverseA;
  const double sinMu = std::sin (mu);
  const double cosMu = std::cos (mu);
  const double delta = csib_SinePolynomial (d, sinMu, cosMu);
  double phi = mu + delta;
  if (std::abs (delta) < 0.01) {
    // By the sum of angles: the terms left out are below 1e-17.
    const double delta2 = delta * delta;
    const double sinDelta = delta * (1.0 - delta2 * (1.0 / 6 - delta2 * (1.0 / 120)));
    const double cosDelta = 1.0 - delta2 * (0.5 - delta2 * (1.0 / 24 - delta2 * (1.0 / 720)));
    s = sinMu * cosDelta + cosMu * sinDelta;
    cosine = cosMu * cosDelta - sinMu * sinDelta;
  } else {
    s = std::sin (phi);
    cosine = std::cos (phi);
  }
  if (isExact) return phi;
  for (int round = 0; round < 10; round++) {
    const double v2 = 1.0 - e2 * s * s;
    const double step =
        (mu - phi - csib_SinePolynomial (c, s, cosine)) * v2 * std::sqrt (v2) * inverseSlope;
    phi += step;
    // The step after this one is its square, and sine and cosine follow this one to first order.
    if (!(std::abs (step) > 1e-8)) {
      const double change = cosine * step;
      cosine -= s * step;
      s += change;
      break;
    }
    s = std::sin (phi);
    cosine = std::cos (phi);
  }
  return phi;
}

}  // namespace clxml
