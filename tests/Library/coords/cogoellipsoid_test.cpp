// Short lines on an ellipsoid.
// Figures of a geodesic solver that knows no series in the line's length. Leans on GoogleTest and
// cogoellipsoid.
#include "Library/coords/cogoellipsoid.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Library/coords/coord.h"

namespace clxml {
namespace {

constexpr double degree = CONSTANT_Pi / 180.0;
constexpr double null = MATHS_Null;

double W (const coordsys_Ellipsoid& e, double latitude) {
  return std::sqrt (1.0 - e.EccentricitySquared * std::sin (latitude) * std::sin (latitude));
}

// The azimuth of the normal section at a first point that holds a second: east over north of the
// straight line between them, in the horizon of the first.
double NormalSection (const coordsys_Ellipsoid& e, double phi1, double lambda1, double phi2,
                      double lambda2) {
  const coord_ECEF a = coord_WGS84 (phi1, lambda1, 0.0).ToECEF (e);
  const coord_ECEF b = coord_WGS84 (phi2, lambda2, 0.0).ToECEF (e);
  const double x = b.X - a.X, y = b.Y - a.Y, z = b.Z - a.Z;
  const double outward = x * std::cos (lambda1) + y * std::sin (lambda1);
  return std::atan2 (y * std::cos (lambda1) - x * std::sin (lambda1),
                     z * std::cos (phi1) - outward * std::sin (phi1));
}

// Ends and lengths of geodesics by GeodSolve of geographiclib 2.1 (direct, -e 6378137
// 0.0033528106718309905 -p 9), degrees and metres. Azimuths of the series are those of normal
// sections, which part from the geodesic by its length squared (6e-8 at 100 km, 1.7e-6 at 600 km),
// so these come from the line in space.
TEST (EllipsoidLines, RunAlongTheNormalSectionForAsLongAsTheGeodesic) {
  struct Case {
    double latitude, longitude, distance, toLatitude, toLongitude, tolerance;
  };
  const coordsys_Ellipsoid& wgs84 = coordsys_WGS84Ellipsoid ();
  for (const Case& c : {Case{47.5, 8.5, 5000, 47.53590906602368, 8.53996530723218, 1e-6},
                        Case{-33.8, 151.2, 100000, -34.10414471193359, 150.18159268748090, 1e-5},
                        Case{61, -179.9, 400000, 63.42708406973510, 174.42978673406188, 1e-3},
                        Case{0, 20, 1000000, 0.0, 28.98315284119521, 1e-3},
                        Case{10, 20, 1000000, 0.95731790712852, 20.0, 5e-3},
                        Case{-5, 100, 600000, 0.34408477713242, 100.93461426352304, 1e-3},
                        Case{78, 15, 300000, 78.17134207938082, 28.01253144963676, 1e-3},
                        Case{89.99, 10, 5000, 89.96355051487009, 152.1155265231319, 1e-6},
                        Case{-89.995, -170, 5000, -89.95989681480363, 32.44397679101166, 1e-6}}) {
    const double phi = c.latitude * degree, lambda = c.longitude * degree, w = W (wgs84, phi);
    const double phi2 = c.toLatitude * degree, lambda2 = c.toLongitude * degree;
    const double azimuth = NormalSection (wgs84, phi, lambda, phi2, lambda2);
    const double back = NormalSection (wgs84, phi2, lambda2, phi, lambda) + CONSTANT_Pi;
    double latitude, longitude, mean, found, distance;
    cogo_EllipsoidDirect (wgs84, phi, lambda, azimuth, c.distance, w, latitude, longitude);
    EXPECT_NEAR (latitude, phi2, c.tolerance / 6.4e6) << c.latitude;
    EXPECT_NEAR (longitude, lambda2, c.tolerance / 6.4e6 / std::cos (phi2)) << c.latitude;
    cogo_EllipsoidInverse (wgs84, phi, lambda, w, phi2, lambda2, W (wgs84, phi2), mean, found,
                           distance);
    EXPECT_NEAR (distance, c.distance, c.tolerance) << c.latitude;
    EXPECT_NEAR (found, coord_NormaliseTwoPi (azimuth), 1e-12) << c.latitude;
    const double half = coord_NormalisePlusMinusPi (back - azimuth) / 2.0;
    EXPECT_NEAR (mean, coord_NormaliseTwoPi (azimuth + half), 1e-12) << c.latitude;
  }
}

TEST (EllipsoidLines, HaveNoAzimuthInOnePointAndNothingOfNulls) {
  const coordsys_Ellipsoid& wgs84 = coordsys_WGS84Ellipsoid ();
  double mean = 1.0, azimuth = 1.0, distance = 1.0, latitude = 1.0, longitude = 1.0;
  const double w = W (wgs84, 0.5);
  cogo_EllipsoidInverse (wgs84, 0.5, CONSTANT_Pi, w, 0.5 + 9e-14, -CONSTANT_Pi, w, mean, azimuth,
                         distance);
  EXPECT_EQ (distance, 0.0);
  EXPECT_TRUE (maths_IsNull (mean) && maths_IsNull (azimuth));
  cogo_EllipsoidInverse (wgs84, 0.5, 1.0, null, 0.6, 1.0, w, mean, azimuth, distance);
  cogo_EllipsoidDirect (coordsys_Ellipsoid (), 0.5, 1.0, 0.1, 10.0, w, latitude, longitude);
  for (const double value : {mean, azimuth, distance, latitude, longitude})
    EXPECT_TRUE (maths_IsNull (value));
}

}  // namespace
}  // namespace clxml
