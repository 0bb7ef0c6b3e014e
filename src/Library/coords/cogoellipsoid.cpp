// Short lines on an ellipsoid.
// Robbins' series, direct and inverse. Leans on coord and maths.
#include "Library/coords/cogoellipsoid.h"

#include <algorithm>
#include <cmath>

#include "Library/coords/coord.h"
#include "numerics/maths.h"

namespace clxml {

namespace {

// A sine below this in size divides nothing.
constexpr double leastSine = 1e-10;
// Latitudes and longitudes this close, radians, are the same.
constexpr double samePoint = 1e-13;

bool AnyNull (std::initializer_list<double> values) {
  return std::any_of (values.begin (), values.end (), maths_IsNull);
}

}  // namespace

// A. R. Robbins, "Long lines on the spheroid", Survey Review 16 (125), 1962. phi1 latitude of the
// start, alpha azimuth, s distance, N prime vertical radius, e2 and e2' squares of the first and
// second eccentricity (e' its root), sigma the line as an angle, psi the end's latitude as seen
// along the start's normal. Delta lambda and psi come from both components of the direction to the
// end, because an arcsine loses its digits near the poles and cannot exceed a quarter turn.
void cogo_EllipsoidDirect (const coordsys_Ellipsoid& ellipsoid, double phi1, double lambda1,
                           double alpha, double s, double W, double& latitudeOut,
                           double& longitudeOut) {
  latitudeOut = longitudeOut = MATHS_Null;
  if (AnyNull ({ellipsoid.EarthRadius, ellipsoid.Flattening, phi1, lambda1, alpha, s, W})) return;
  const double N = ellipsoid.EarthRadius / W;
  const double h = ellipsoid.SecondEccentricity * std::cos (phi1) * std::cos (alpha);
  const double g = ellipsoid.SecondEccentricity * std::sin (phi1);
  const double h2 = h * h, g2 = g * g;
  const double sigma0 = s / N;
  const double sigma2 = sigma0 * sigma0, sigma3 = sigma2 * sigma0, sigma4 = sigma2 * sigma2;
  const double sigma =
      sigma0 * (1.0 + sigma2 * h2 * (1.0 - h2) / 6.0 - sigma3 * g * h * (1.0 - 2.0 * h2) / 8.0 -
                sigma4 / 120.0 * ((4.0 - 7.0 * h2) * h2 - 3.0 * g2 * (1.0 - 7.0 * h2)) +
                sigma4 * sigma0 * g * h / 48.0);
  const double sinPsi =
      std::cos (sigma) * std::sin (phi1) + std::cos (phi1) * std::cos (alpha) * std::sin (sigma);
  const double eastward = std::sin (sigma) * std::sin (alpha);
  const double outward =
      std::cos (sigma) * std::cos (phi1) - std::sin (phi1) * std::sin (sigma) * std::cos (alpha);
  const double cosPsi = std::hypot (eastward, outward);
  const double deltaLambda = std::atan2 (eastward, outward);
  const double rise = sinPsi - std::sin (phi1);
  const double k = 1.0 + ellipsoid.HalfSecondEccentricitySquared * rise * rise;
  // tan (phi2) = (1 - e2 k sin (phi1) / sin (psi)) (1 + e2') tan (psi), multiplied out so that an
  // end on the equator needs no case of its own.
  const double phi2 = std::atan2 ((sinPsi - ellipsoid.EccentricitySquared * k * std::sin (phi1)) *
                                      ellipsoid.OnePlusSecondEccentricitySquared,
                                  cosPsi);
  if (!std::isfinite (phi2) || !std::isfinite (deltaLambda)) return;
  latitudeOut = coord_NormalisePlusMinusPiOverTwo (phi2);
  longitudeOut = coord_NormalisePlusMinusPi (lambda1 + deltaLambda);
}

// The same series reversed. phi, lambda, W of both ends; t1, t2 the tangents of the reduced
// latitudes of each end as seen from the other.
void cogo_EllipsoidInverse (const coordsys_Ellipsoid& ellipsoid, double phi1, double lambda1,
                            double W1, double phi2, double lambda2, double W2, double& meanAzimuth,
                            double& azimuth, double& distance) {
  meanAzimuth = azimuth = distance = MATHS_Null;
  if (AnyNull ({ellipsoid.EarthRadius, ellipsoid.Flattening, phi1, lambda1, W1, phi2, lambda2, W2}))
    return;
  const double deltaLambda = coord_NormalisePlusMinusPi (lambda2 - lambda1);
  if (std::abs (phi2 - phi1) < samePoint && std::abs (deltaLambda) < samePoint) {
    distance = 0.0;
    return;
  }
  const double e2 = ellipsoid.EccentricitySquared;
  const double N1 = ellipsoid.EarthRadius / W1, N2 = ellipsoid.EarthRadius / W2;
  const double sin1 = std::sin (phi1), cos1 = std::cos (phi1);
  const double sin2 = std::sin (phi2), cos2 = std::cos (phi2);
  const double t2 =
      e2 * N1 * sin1 / (N2 * cos2) + ellipsoid.OneMinusEccentricitySquared * std::tan (phi2);
  const double t1 =
      e2 * N2 * sin2 / (N1 * cos1) + ellipsoid.OneMinusEccentricitySquared * std::tan (phi1);
  const double northward = cos1 * t2 - sin1 * std::cos (deltaLambda);
  const double alpha1 = maths_Atan2 (std::sin (deltaLambda), northward);
  const double alpha2 =
      maths_Atan2 (std::sin (deltaLambda), -(t1 * cos2 - sin2 * std::cos (deltaLambda)));
  if (AnyNull ({alpha1, alpha2})) return;
  const double q = std::abs (std::sin (alpha1)) < leastSine
                       ? northward / std::cos (alpha1)
                       : std::sin (deltaLambda) / std::sin (alpha1);
  const double sigma = maths_ArcSin (std::cos (std::atan (t2)) * q);
  if (maths_IsNull (sigma)) return;
  const double g = ellipsoid.SecondEccentricity * sin1;
  const double h = ellipsoid.SecondEccentricity * cos1 * std::cos (alpha1);
  const double h2 = h * h, g2 = g * g;
  const double sigma2 = sigma * sigma, sigma3 = sigma2 * sigma, sigma4 = sigma2 * sigma2;
  const double s = N1 * sigma *
                   (1.0 - sigma2 * h2 * (1.0 - h2) / 6.0 + sigma3 * g * h * (1.0 - 2.0 * h2) / 8.0 +
                    sigma4 * ((4.0 - 7.0 * h2) * h2 - 3.0 * g2 * (1.0 - 7.0 * h2)) / 120.0 -
                    sigma4 * sigma * g * h / 48.0);
  if (!std::isfinite (s)) return;
  const double turn = s < 0.0 ? CONSTANT_Pi : 0.0;
  const double halfTurn = coord_NormalisePlusMinusPi (alpha2 - alpha1) / 2.0;
  meanAzimuth = coord_NormaliseTwoPi (alpha1 + halfTurn + turn);
  azimuth = coord_NormaliseTwoPi (alpha1 + turn);
  distance = std::abs (s);
}

}  // namespace clxml
