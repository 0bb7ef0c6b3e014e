// The point operations of a block: heights by datum and geoid, adjustments, and what is measured
// where a projection has no formula.
// A sloping geoid that ends at a parallel stands in for a grid. Leans on GoogleTest.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "geodesy/csib.h"

namespace clxml {
namespace {

constexpr double edge = 1.0;  // radians of latitude, where the geoid ends

double SlopingSeparation (double latitude) { return 40.0 + 200.0 * (latitude - 0.9); }

constexpr csib_GeoidOperations sloping = {
    .separation = [] (csib_Block&, const csib_Geodetic& point, double& out) {
      out = SlopingSeparation (point.Latitude);
      return point.Latitude < edge ? CSIB_Ok : CSIB_OutsideGrid;
    }};

csib_Geodetic Raised (double latitude, double longitude, double h) {
  return {latitude, longitude, h, 0.0, true, false};
}

csib_Geodetic Levelled (double latitude, double longitude, double H) {
  return {latitude, longitude, 0.0, H, false, true};
}

class CsibPoints : public testing::Test {
 protected:
  void SetUp () override {
    ASSERT_EQ (csib_Create (block, CSIB_ByName, 6377563.396, 6356256.909), CSIB_Ok);
    block->OriginLatitude = 0.85;
    block->OriginLongitude = 0.0;
    block->ProjectionScale = 0.9996;
    ASSERT_EQ (csib_SetProjection (*block, CSIB_TransverseMercator, {}), CSIB_Ok);
  }
  void Shift () {
    const double seven[] = {446.4, -125.2, 542.1, -7e-7, -1e-6, -4e-6, 0.99998};
    const auto* bytes = reinterpret_cast<const uint8_t*> (seven);
    ASSERT_EQ (csib_SetDatum (*block, CSIB_SevenParameter, {bytes, sizeof seven}), CSIB_Ok);
  }

  std::unique_ptr<csib_Block> block;
};

TEST_F (CsibPoints, CompletesHeightsOnTheWayToLocal) {
  csib_Geodetic out;
  ASSERT_EQ (csib_WGS84ToLocal (*block, Raised (0.9, 0.1, 12.0), out), CSIB_Ok);
  EXPECT_TRUE (out.HasOrthometric && out.OrthometricHeight == 12.0);
  Shift ();
  // Without a geoid an orthometric height is no ellipsoidal one on this way.
  EXPECT_EQ (csib_WGS84ToLocal (*block, Levelled (0.9, 0.1, 12.0), out), CSIB_NoEllipsoidalHeight);

  block->Geoid = &sloping;
  ASSERT_EQ (csib_WGS84ToLocal (*block, Levelled (0.9, 0.1, 12.0), out), CSIB_Ok);
  EXPECT_EQ (out.OrthometricHeight, 12.0);
  csib_Geodetic same;
  ASSERT_EQ (csib_WGS84ToLocal (*block, Raised (0.9, 0.1, 52.0), same), CSIB_Ok);
  EXPECT_EQ (same.EllipsoidalHeight, out.EllipsoidalHeight);
  EXPECT_EQ (same.OrthometricHeight, 12.0);
  // Outside the geoid the place stays, and what hangs on the geoid goes.
  ASSERT_EQ (csib_WGS84ToLocal (*block, Raised (1.1, 0.1, 52.0), out), CSIB_Ok);
  EXPECT_TRUE (out.HasEllipsoidal && !out.HasOrthometric);
  EXPECT_EQ (csib_WGS84ToLocal (*block, Levelled (1.1, 0.1, 12.0), out), CSIB_OutsideGrid);
}

TEST_F (CsibPoints, FindsHeightsOnTheWayToWGS84) {
  csib_Geodetic out;
  EXPECT_EQ (csib_LocalToWGS84 (*block, {0.9, 0.1}, out), CSIB_NoHeight);
  ASSERT_EQ (csib_LocalToWGS84 (*block, Levelled (0.9, 0.1, 12.0), out), CSIB_Ok);
  EXPECT_TRUE (out.HasEllipsoidal && out.EllipsoidalHeight == 12.0 && !out.HasOrthometric);
  Shift ();
  block->Geoid = &sloping;
  ASSERT_EQ (csib_LocalToWGS84 (*block, Levelled (0.9, 0.1, 12.0), out), CSIB_Ok);
  EXPECT_NEAR (out.EllipsoidalHeight, 12.0 + SlopingSeparation (out.Latitude), 1e-9);
  // Back by the datum alone: the same place, at the height that the iteration found.
  csib_Geodetic local;
  ASSERT_EQ (csib_WGS84ToLocal (*block, out, local), CSIB_Ok);
  EXPECT_NEAR (local.Latitude, 0.9, 1e-15);
  csib_Geodetic levelled = Levelled (0.9, 0.1, 12.0);
  ASSERT_EQ (csib_LocalHeightFromOrthometric (*block, levelled), CSIB_Ok);
  EXPECT_NEAR (levelled.EllipsoidalHeight, local.EllipsoidalHeight, 1e-6);

  csib_Geodetic asked;
  levelled = Levelled (0.9, 0.1, 12.0);
  ASSERT_EQ (csib_LocalHeightFromOrthometric (*block, levelled, &asked), CSIB_Ok);
  ASSERT_EQ (csib_LocalToWGS84 (*block, levelled, out), CSIB_Ok);
  EXPECT_NEAR (asked.Latitude, out.Latitude, 2e-15);
  EXPECT_NEAR (asked.Longitude, out.Longitude, 2e-15);
  EXPECT_NEAR (asked.EllipsoidalHeight, out.EllipsoidalHeight, 5e-9);

  levelled = Levelled (1.1, 0.1, 12.0);
  EXPECT_EQ (csib_LocalHeightFromOrthometric (*block, levelled), CSIB_OutsideGrid);
  EXPECT_FALSE (levelled.HasEllipsoidal);
  EXPECT_EQ (csib_LocalToWGS84 (*block, levelled, out), CSIB_OutsideGrid);
  static constexpr csib_GeoidOperations jumping = {
      .separation = [] (csib_Block&, const csib_Geodetic& point, double& N) {
        N = -2.0 * point.EllipsoidalHeight;
        return CSIB_Ok;
      }};
  block->Geoid = &jumping;
  levelled = Levelled (0.9, 0.1, 12.0);
  EXPECT_EQ (csib_LocalHeightFromOrthometric (*block, levelled), CSIB_HeightDidNotConverge);
  EXPECT_EQ (csib_LocalToWGS84 (*block, levelled = Levelled (0.9, 0.1, 12.0), out), CSIB_Ok);
}

// What is measured agrees with the closed form of the same projection.
TEST_F (CsibPoints, MeasuresWhatHasNoFormula) {
  block->GroundScale = 1.0002;
  const csib_ProjectionOperations* closed = block->Projection;
  csib_ProjectionOperations measured = *closed;
  measured.scale = [] (csib_Block&, const csib_Geodetic&, double&) { return CSIB_NoCassiniScale; };
  measured.convergence = [] (csib_Block&, const csib_Geodetic&, double&) {
    return CSIB_DidNotConverge;
  };
  for (const csib_Geodetic& point :
       {Raised (0.87, 0.02, 100.0), Raised (0.5, -0.03, 100.0), Raised (-1.2, 0.04, 100.0)}) {
    double k = 0.0, kMeasured = 0.0, angle = 0.0, angleMeasured = 0.0;
    block->Projection = closed;
    ASSERT_EQ (csib_PointScale (*block, point, k), CSIB_Ok);
    ASSERT_EQ (csib_Convergence (*block, point, angle), CSIB_Ok);
    block->Projection = &measured;
    ASSERT_EQ (csib_PointScale (*block, point, kMeasured), CSIB_Ok);
    ASSERT_EQ (csib_Convergence (*block, point, angleMeasured), CSIB_Ok);
    EXPECT_NEAR (kMeasured, k, 2e-9);          // positions to 1e-9 m, over 5 m
    EXPECT_NEAR (angleMeasured, angle, 3e-7);  // a grid line is curved by that over 100 m
    double combined = 0.0;
    ASSERT_EQ (csib_CombinedScale (*block, point, combined), CSIB_Ok);
    EXPECT_NEAR (combined / kMeasured, 1.0 - 100.0 / 6.38e6, 1e-7);
    block->FixedRadiusFlag = 1;
    block->FixedRadius = 100.0;
    ASSERT_EQ (csib_CombinedScale (*block, point, combined), CSIB_Ok);
    EXPECT_NEAR (combined, kMeasured / 2.0, 1e-12);
    EXPECT_EQ (csib_CombinedScale (*block, Levelled (0.87, 0.02, -100.0), combined),
               CSIB_NoHeightForScale);
    EXPECT_EQ (csib_CombinedScale (*block, {0.87, 0.02}, combined), CSIB_NoHeightForScale);
    block->FixedRadiusFlag = 0;
  }
  double angle = 0.0;
  measured.convergence = [] (csib_Block&, const csib_Geodetic&, double&) {
    return CSIB_NoConvergence;
  };
  EXPECT_EQ (csib_Convergence (*block, Raised (0.87, 0.02, 0.0), angle), CSIB_NoConvergence);
}

TEST_F (CsibPoints, KeepsWhatComesOffTheGridOnTheGlobe) {
  static csib_Geodetic answer;
  csib_ProjectionOperations table = *block->Projection;
  table.inverse = [] (csib_Block&, const csib_Grid&, csib_Geodetic& out) {
    out = answer;
    return CSIB_Ok;
  };
  block->Projection = &table;
  const double pi = 3.141592653589793, nan = std::numeric_limits<double>::quiet_NaN ();
  csib_Geodetic out;
  answer = {1.5, pi + 0.25};
  ASSERT_EQ (csib_Unproject (*block, {}, out), CSIB_Ok);
  EXPECT_DOUBLE_EQ (out.Longitude, 0.25 - pi);
  answer = {-1.5, -pi - 0.25};
  ASSERT_EQ (csib_Unproject (*block, {}, out), CSIB_Ok);
  EXPECT_DOUBLE_EQ (out.Longitude, pi - 0.25);
  for (const csib_Geodetic& beyond :
       {csib_Geodetic{pi / 2.0, 0.0}, {-1.6, 0.0}, {nan, 0.0}, {1.0, nan}}) {
    answer = beyond;
    EXPECT_EQ (csib_Unproject (*block, {}, out), CSIB_LatitudeOutOfRange);
  }
  EXPECT_EQ (csib_Unproject (*block, {.HasEast = false}, out), CSIB_NoProjectionOperation);
  table.forward = [] (csib_Block&, const csib_Geodetic& point, csib_Grid& to) {
    to.North = point.Latitude;
    return CSIB_Ok;
  };
  csib_Grid grid;
  EXPECT_EQ (csib_Project (*block, {nan, 0.0}, grid), CSIB_NoProjectionOperation);
}

}  // namespace
}  // namespace clxml
