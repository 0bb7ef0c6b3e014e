// Datums without grids and the Cartesian conversions under them.
// Held against figures of PROJ 9.1.1 (cct) on the same ellipsoids and parameters, and against the
// worked examples of the EPSG guidance note 7-2. Leans on GoogleTest.
#include "geodesy/datum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace clxml {
namespace {

constexpr double degree = CSIB_RadiansOfDegree;
constexpr double tenthOfMillimetre = 1e-4;
constexpr double airyA = 6377563.396, airyB = 6356256.909;
constexpr double hayfordA = 6378388.0, hayfordB = 6356911.946127946;

csib_Geodetic At (double latitude, double longitude, double height) {
  return {latitude * degree, longitude * degree, height, -1.5, true, true};
}

// The larger distance in position and height, metres.
double Apart (const csib_Geodetic& a, const csib_Geodetic& b) {
  const double north = (a.Latitude - b.Latitude) * 6.4e6;
  const double east = (a.Longitude - b.Longitude) * 6.4e6 * std::cos (a.Latitude);
  const double up = a.HasEllipsoidal ? a.EllipsoidalHeight - b.EllipsoidalHeight : 0.0;
  return std::max (std::hypot (north, east), std::fabs (up));
}

std::unique_ptr<csib_Block> Block (double a, double b, uint8_t code, std::vector<double> values) {
  std::unique_ptr<csib_Block> block;
  EXPECT_EQ (csib_Create (block, CSIB_ByName, a, b), CSIB_Ok);
  const auto* bytes = reinterpret_cast<const uint8_t*> (values.data ());
  EXPECT_EQ (csib_SetDatum (*block, code, {bytes, values.size () * sizeof (double)}), CSIB_Ok);
  return block;
}

TEST (Datum, AnswersOnTheAxisAndRefusesWhatIsNoPlace) {
  csib_Geodetic out;
  csib_Cartesian xyz;
  for (const double z : {airyB + 10.0, -airyB - 10.0}) {
    ASSERT_EQ (csib_CartesianToGeodetic (airyA, airyB, {0.0, 0.0, z}, out), CSIB_Ok);
    EXPECT_DOUBLE_EQ (out.Latitude, std::copysign (90.0 * degree, z));
    EXPECT_EQ (out.Longitude, 0.0);
    EXPECT_NEAR (out.EllipsoidalHeight, 10.0, 1e-8);
  }
  ASSERT_EQ (csib_CartesianToGeodetic (airyA, airyB, {0.0, -airyA, 0.0}, out), CSIB_Ok);
  EXPECT_EQ (out.Latitude, 0.0);
  EXPECT_NEAR (out.EllipsoidalHeight, 0.0, 1e-8);
  ASSERT_EQ (csib_CartesianToGeodetic (airyA, airyB, {}, out), CSIB_Ok);
  EXPECT_NEAR (out.EllipsoidalHeight, -airyB, 1e-8);
  EXPECT_EQ (csib_GeodeticToCartesian (airyA, airyB, {}, xyz), CSIB_NoHeightForCartesian);
  const double nan = std::numeric_limits<double>::quiet_NaN ();
  for (const csib_Cartesian& nowhere :
       {csib_Cartesian{nan, 1.0, 1.0}, {1e200, 1e200, 0.0}, {1.0, nan, 0.0}, {0.0, 1.0, 1e300}})
    EXPECT_EQ (csib_CartesianToGeodetic (airyA, airyB, nowhere, out), CSIB_CartesianDidNotConverge);
}

const std::vector<double> london = {446.448,
                                    -125.157,
                                    542.06,
                                    -0.1502 * CSIB_Second,
                                    -0.247 * CSIB_Second,
                                    -0.8421 * CSIB_Second,
                                    1.0 - 20.4894e-6};
// A rotation of the poles, 10, -20 and 15 degrees, tells the order of the turns.
std::vector<double> Turned () {
  std::vector<double> values = london;
  values[3] = 10.0 * degree, values[4] = -20.0 * degree, values[5] = 15.0 * degree;
  return values;
}

TEST (Datum, ShiftsBySevenParameters) {
  // cct +proj=cart (Airy) +step +proj=helmert +exact +convention=coordinate_frame +x=446.448
  // +y=-125.157 +z=542.06 +rx=-0.1502 +ry=-0.247 +rz=-0.8421 +s=-20.4894 +step +inv +proj=cart
  // +a=6378137 +b=6356752.3142
  struct Case {
    csib_Geodetic local, wgs84;
  };
  const Case cases[] = {
      {At (51.5074, -0.1276, 80.0), At (51.507910314489, -0.129206343139, 126.120875895023)},
      {At (55.95, -3.2, -12.5), At (55.949942299964, -3.201423027059, 39.745596421883)},
      {At (-0.001, -70.5, 4500.0), At (0.003836452521, -70.496363088475, 4062.662862481549)}};
  auto block = Block (airyA, airyB, CSIB_SevenParameter, london);
  csib_Geodetic out;
  for (const Case& row : cases) {
    SCOPED_TRACE (row.wgs84.Latitude);
    ASSERT_EQ (block->Datum->inverse (*block, row.local, out), CSIB_Ok);
    EXPECT_LT (Apart (out, row.wgs84), tenthOfMillimetre);
    EXPECT_TRUE (out.HasOrthometric && out.OrthometricHeight == -1.5);
    ASSERT_EQ (block->Datum->forward (*block, row.wgs84, out), CSIB_Ok);
    EXPECT_LT (Apart (out, row.local), tenthOfMillimetre);
  }
  csib_Geodetic flat = cases[0].local;
  flat.HasEllipsoidal = false;
  EXPECT_EQ (block->Datum->forward (*block, flat, out), CSIB_NoEllipsoidalHeight);
  EXPECT_EQ (block->Datum->inverse (*block, flat, out), CSIB_NoEllipsoidalHeight);

  // The same with +rx=36000 +ry=-72000 +rz=54000, up to the Cartesian coordinates.
  block = Block (airyA, airyB, CSIB_SevenParameter, Turned ());
  csib_Cartesian xyz;
  ASSERT_EQ (block->Datum->inverse (*block, cases[0].local, out), CSIB_Ok);
  csib_GeodeticToCartesian (CSIB_WGS84MajorAxis, CSIB_WGS84MinorAxis, out, xyz);
  EXPECT_NEAR (xyz.X, 5448814.378549865, tenthOfMillimetre);
  EXPECT_NEAR (xyz.Y, -575841.192807973, tenthOfMillimetre);
  EXPECT_NEAR (xyz.Z, 3239482.585850620, tenthOfMillimetre);
}

TEST (Datum, InvertsSevenParametersExactly) {
  for (const std::vector<double>& v : {london, Turned ()}) {
    const csib_SevenParameters record{v[0], v[1], v[2], v[3], v[4], v[5], v[6]};
    csib_SevenParameters i;
    ASSERT_EQ (csib_InvertSevenParameters (record, i), CSIB_Ok);
    // The record runs to local, the block to WGS84: both inverse stages lead back.
    auto toLocal = Block (CSIB_WGS84MajorAxis, CSIB_WGS84MinorAxis, CSIB_SevenParameter, v);
    auto toWGS84 = Block (CSIB_WGS84MajorAxis, CSIB_WGS84MinorAxis, CSIB_SevenParameter,
                          {i.TX, i.TY, i.TZ, i.RX, i.RY, i.RZ, i.S});
    const csib_Geodetic start = At (-12.25, 130.5, 85.0);
    csib_Geodetic local, back;
    ASSERT_EQ (toLocal->Datum->inverse (*toLocal, start, local), CSIB_Ok);
    ASSERT_EQ (toWGS84->Datum->inverse (*toWGS84, local, back), CSIB_Ok);
    EXPECT_LT (Apart (start, back), 1e-8);
    ASSERT_EQ (toWGS84->Datum->forward (*toWGS84, start, back), CSIB_Ok);
    EXPECT_LT (Apart (local, back), 1e-8);
  }
  csib_SevenParameters out;
  EXPECT_EQ (csib_InvertSevenParameters ({.S = 0.0}, out), CSIB_Singular);
  EXPECT_EQ (csib_InvertSevenParameters ({.TX = 1e308}, out), CSIB_Singular);
  EXPECT_EQ (csib_InvertSevenParameters ({.RX = 3.0}, out), CSIB_Singular);
}

TEST (Datum, ShiftsByThreeParameters) {
  // cct +proj=molodensky +a=6378388 +b=6356911.946127946 +da=-251 +df=(the difference to
  // 0.003352810664747) +dx=-84.87 +dy=-96.49 +dz=-116.95, without a height +abridged. The second
  // row is the example of EPSG methods 9604 and 9605, to the digits given there.
  struct Case {
    const char* name;
    csib_Geodetic local, wgs84;
    double tolerance;
  };
  const auto flat = [] (double latitude, double longitude) {
    csib_Geodetic point = At (latitude, longitude, 0.0);
    point.HasEllipsoidal = false;
    return point;
  };
  const double second = 1.0 / 3600.0, minute = 1.0 / 60.0;
  const Case cases[] = {
      {"north east", At (53.81, 2.13, 28.02), At (53.809237368247, 2.128584206130, 72.992973513723),
       tenthOfMillimetre},
      {"published",
       At (53 + 48 * minute + 36.565 * second, 2 + 7 * minute + 51.477 * second, 28.02),
       At (53 + 48 * minute + 33.82 * second, 2 + 7 * minute + 46.38 * second, 73.0), 0.05},
      {"south west", At (-34.6, -58.4, 1500.0),
       At (-34.599905702694, -58.401338831140, 1819.056345012698), tenthOfMillimetre},
      {"abridged", flat (53.81, 2.13), flat (53.809238158218, 2.128584199924), tenthOfMillimetre},
      {"abridged south", flat (-34.6, -58.4), flat (-34.599904759754, -58.401339145650),
       tenthOfMillimetre}};
  auto block = Block (hayfordA, hayfordB, CSIB_Molodensky, {-84.87, -96.49, -116.95});
  for (const Case& row : cases) {
    SCOPED_TRACE (row.name);
    csib_Geodetic out;
    ASSERT_EQ (block->Datum->inverse (*block, row.local, out), CSIB_Ok);
    EXPECT_LT (Apart (out, row.wgs84), row.tolerance);
    EXPECT_EQ (out.HasEllipsoidal, row.local.HasEllipsoidal);
    EXPECT_TRUE (out.HasOrthometric && out.OrthometricHeight == -1.5);
    const csib_Geodetic wgs84 = out;
    ASSERT_EQ (block->Datum->forward (*block, wgs84, out), CSIB_Ok);
    EXPECT_LT (Apart (out, row.local), 1e-8);
  }
  csib_Geodetic out;
  // Between WGS84 and itself the two flattenings are left: 0.045 mm times the squared sine.
  block = Block (CSIB_WGS84MajorAxis, CSIB_WGS84MinorAxis, CSIB_Molodensky, {0.0, 0.0, 0.0});
  for (const double latitude : {0.0, 45.0, -90.0}) {
    const double sine = std::sin (latitude * degree);
    const csib_Geodetic point = At (latitude, 15.0, 100.0);
    ASSERT_EQ (block->Datum->inverse (*block, point, out), CSIB_Ok);
    EXPECT_NEAR (out.EllipsoidalHeight - point.EllipsoidalHeight, -4.5e-5 * sine * sine, 2e-7);
  }
  const csib_Geodetic nowhere = {
      std::numeric_limits<double>::quiet_NaN (), 0.0, 0.0, 0.0, true, false};
  EXPECT_EQ (block->Datum->inverse (*block, nowhere, out), CSIB_DidNotConverge);
  EXPECT_EQ (block->Datum->forward (*block, nowhere, out), CSIB_DidNotConverge);
}

}  // namespace
}  // namespace clxml
