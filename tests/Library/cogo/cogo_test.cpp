// Coordinate geometry between two positions.
// The plane against hand computation, the ellipsoid against figures of GeodSolve (geographiclib
// 2.1, -e 6378137 0.0033528106718309905 -p 10) and of geod (PROJ 9.1.1, +rf=298.257223563). Leans
// on the fixture.
#include "Library/cogo/cogo.h"

#include "Library/cogo/cogofixture.h"

namespace clxml {
namespace {

using namespace testing;

constexpr coordsys_CogoSettings ground = COORDSYS_CogoAzimuthLocal | COORDSYS_CogoDistanceLocal |
                                         COORDSYS_CogoGroundDistances |
                                         COORDSYS_CogoEllipsoidHeights;

class Cogo : public ::testing::Test {
 protected:
  Hearing hearing;
  const std::unique_ptr<Transform> plane = Plane (), mercator = Mercator ();
};

TEST_F (Cogo, ComparesAnglesAndDistances) {
  struct Case {
    double a, b, turn, smallest, difference;
  };
  for (const Case& c :
       {Case{0, 1, 1, 1, -1}, Case{1, 0, 2 * pi - 1, 1, 1}, Case{-0.0, 0, 0, 0, 0},
        Case{6, 0.5, 2 * pi - 5.5, 2 * pi - 5.5, 5.5 - 2 * pi}, Case{pi, 0, pi, pi, pi},
        Case{null, 1, null, null, null}, Case{1, null, null, null, null}}) {
    ExpectNear (AngleTurn (c.a, c.b), c.turn, 1e-15, "turn");
    ExpectNear (AngleSmallest (c.a, c.b), c.smallest, 1e-15, "smallest");
    ExpectNear (AngleSigned (c.a, c.b), c.difference, 1e-15, "signed");
  }
  EXPECT_TRUE (cogo_AnglesEqual (1e-8, 2 * pi - 1e-8) && cogo_SameDistance (1.0, 1.0004));
  EXPECT_FALSE (cogo_AnglesEqual (0.0, 4.9e-8) || cogo_SameDistance (1.0, 1.0006));
  EXPECT_FALSE (cogo_AnglesEqual (null, null) || cogo_SameDistanceCoarse (null, null));
}

TEST_F (Cogo, AssertsWhatAMaskMustHold) {
  cogo_CheckSystem (grid);
  EXPECT_EQ (hearing.TakeAssertions ().size (), 0u);
  cogo_CheckSystem (coordsys_CogoSettings{});
  EXPECT_EQ (hearing.TakeAssertions ().size (), 4u);
  cogo_CheckSystem (grid | COORDSYS_CogoGroundDistances | COORDSYS_CogoEllipsoidHeights);
  EXPECT_EQ (hearing.TakeAssertions ().size (), 2u);
  position p = At (*mercator, 200000, 600000, 5.0);
  cogo_ApplyHeight (p, *mercator, 1.0, grid | COORDSYS_CogoDistanceLocal);
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"Unknown elevation system"});
}

TEST_F (Cogo, GoesForwardAndBackOnThePlane) {
  struct Case {
    const char* name;
    double scale;
    bool isSouth;
    coordsys_CogoSettings mask;
    double azimuth, distance, rise, north, east, elevation;
  };
  const double east = pi / 2, third = std::atan2 (-3.0, -4.0) + 2 * pi;
  for (const Case& c : {Case{"north", 1, false, grid, 0, 10, 1, 110, 200, 6},
                        Case{"third quadrant", 1, false, grid, third, 10, 0, 92, 194, 5},
                        Case{"south azimuth", 1, true, grid, 0, 10, 0, 90, 200, 5},
                        Case{"on the grid", 2, false, grid, east, 10, 0, 100, 210, 5},
                        Case{"on the ground", 2, false, ground | COORDSYS_CogoAzimuthGrid, east, 10,
                             0, 100, 220, 5},
                        Case{"no ellipsoid", 2, false, ofJob, east, 10, 0, null, null, 5},
                        Case{"no azimuth", 1, false, grid, null, 10, 1, null, null, 6},
                        Case{"no height", 1, false, grid, 0, 10, null, 110, 200, null}}) {
    const auto transform = Plane (c.scale, c.isSouth);
    position start = At (*transform, 100, 200, 5), end;
    start.Name = "P";
    cogo_Forward (start, *transform, c.azimuth, c.distance, c.rise, end, c.mask);
    EXPECT_EQ (end.Name, "P");
    ExpectGrid (end, *transform, c.north, c.east, c.elevation, c.name);
    const Against back = Inverse (start, end, *transform, c.mask);
    ExpectNear (back.azimuth, maths_IsNull (c.north) ? null : c.azimuth, 1e-12, c.name);
    ExpectNear (back.along, maths_IsNull (c.north) ? null : c.distance, 1e-12, c.name);
    ExpectNear (back.height, c.rise, 1e-12, c.name);
    const bool isSloped = !maths_IsNull (c.north) && !maths_IsNull (c.rise);
    ExpectNear (back.offset, isSloped ? std::hypot (c.distance, c.rise) : null, 1e-12, c.name);
  }
  position start = At (*plane, 100, 200, 5);
  const Against same = Inverse (start, start, *plane, grid);
  EXPECT_TRUE (same.along == 0.0 && maths_IsNull (same.azimuth));
  cogo_ForwardVertical (start, *plane, east, 10, pi / 4, start, grid);
  ExpectGrid (start, *plane, 100, 210, 15, "up");
  cogo_ForwardVertical (start, *plane, east, 10, pi / 2, start, grid);
  EXPECT_EQ (start.Original, COORD_NullType);
}

TEST_F (Cogo, GoesForwardAndBackOnTheEllipsoid) {
  struct Case {
    const char* name;
    coordsys_CogoSettings mask;
    double azimuth, distance, latitude, longitude, rise = 0;
  };
  for (const Case& c :
       {Case{"WGS84", wgs84, 37, 5000, 47.53590906602368, 8.53996530723218},
        Case{"local", local, 37, 5000, 47.53590906602368, 8.53996530723218, 20},
        // GeodSolve -e 6378637 0.0033528106718309905: the ellipsoid raised by 500 m.
        Case{"ground", ground, 37, 5000, 47.535906251787104, 8.539962172347469},
        // geod +a=6379137: by the 1000 m between the two heights.
        Case{"climb", ground, 37, 5000, 47.535903437992, 8.539959037955, 1000},
        Case{"backwards", local, 217, -5000, 47.53590906602368, 8.53996530723218},
        Case{"no way", local, 37, 0.0004, 47.5, 8.5},
        Case{"too far", wgs84, 37, 1000001, null, null},
        Case{"no distance", wgs84, 37, null, null, null}}) {
    position start = AtDegrees (*mercator, c.mask, 47.5, 8.5, 500), end;
    cogo_Forward (start, *mercator, c.azimuth * degree, c.distance, c.rise, end, c.mask);
    EXPECT_EQ (end.Original, c.mask == wgs84 ? COORD_WGS84Type : COORD_LocalType);
    const double off = MetresFrom (end, *mercator, c.latitude, c.longitude);
    ExpectNear (off, maths_IsNull (c.latitude) ? null : 0.0, 2e-4, c.name);
    if (maths_IsNull (c.latitude) || c.distance == 0.0004) continue;
    const Against back = Inverse (start, end, *mercator, c.mask);
    EXPECT_NEAR (back.along, 5000, 1e-4) << c.name;
    EXPECT_NEAR (back.azimuth, 37 * degree, 1e-7) << c.name;
    EXPECT_NEAR (back.height, c.rise, 1e-9) << c.name;
  }
}

// Grid azimuths with distances on the ellipsoid: the end lies in that direction on the map and at
// that distance by the geodesic, as much above the start's elevation as it was to rise, though
// elevations tilt by 2 in 10,000 against heights; azimuths from south run the other way. And the
// other way about, geodetic azimuths with distances on the map, short enough that it does not bend
// them.
TEST_F (Cogo, MixesTheMapAndTheEllipsoid) {
  for (const bool isSouth : {false, true}) {
    const auto transform = Mercator (isSouth, 2e-4);
    position start = At (*transform, 230000, 650000, 400), end;
    for (const double azimuth : {0.3, 1.9, 3.2, 5.5}) {
      cogo_Forward (start, *transform, azimuth, 4000, 25, end, ofJob);
      const coord_CogoGrid at = end.GetCogoGrid (*transform);
      const double onMap = std::atan2 (at.East - 650000, at.North - 230000);
      EXPECT_NEAR (AngleSmallest (onMap + (isSouth ? pi : 0), azimuth), 0, COGO_SameAngle);
      EXPECT_NEAR (at.Elevation, 425, 1e-6);
      EXPECT_NEAR (Inverse (start, end, *transform, ofJob).height, 25, 1e-6);
      const Against onEllipsoid = Inverse (start, end, *transform, local);
      EXPECT_NEAR (onEllipsoid.along, 4000, 5e-5);
      EXPECT_NEAR (onEllipsoid.height, 25 - 2e-4 * (at.North - 230000), 1e-6);
      cogo_Forward (start, *transform, azimuth, 10, 0, end,
                    COORDSYS_CogoAzimuthLocal | COORDSYS_CogoDistanceGrid |
                        COORDSYS_CogoEllipsoidDistances | COORDSYS_CogoOrthoHeights);
      EXPECT_NEAR (AngleSmallest (Inverse (start, end, *transform, local).azimuth, azimuth), 0,
                   1e-7);
    }
    // Two circles about points at the heights 394 and 392: both are raised to the mean, from which
    // a way on WGS84 keeps the height and one on the local datum the elevation, 6 m more.
    position first = At (*transform, 230000, 650000, 400), one, two;
    position second = At (*transform, 240000, 655000, 400);
    for (const coordsys_CogoSettings mask : {ofJob, onWGS84}) {
      ASSERT_EQ (
          cogo_DistanceDistanceIntersect (first, 9000, second, 8000, *transform, one, two, mask),
          COGO_Ok);
      for (const position& found : {one, two}) {
        EXPECT_NEAR (Inverse (found, first, *transform, mask).along, 9000, 5e-4);
        EXPECT_NEAR (Inverse (found, second, *transform, mask).along, 8000, 5e-4);
        const double height = mask == ofJob ? position (found).GetGrid (*transform).Elevation - 6
                                            : position (found).GetWGS84 (*transform).Height;
        EXPECT_NEAR (height, 393, 1e-4);
      }
    }
  }
}

Against AgainstLine (const Transform& transform, position start, double azimuth, double slope,
                     double right, double up, position point, coordsys_CogoSettings mask) {
  Against a;
  a.result = cogo_StationOffsetShifted (start, transform, azimuth, slope, right, up, point, a.foot,
                                        a.azimuth, a.along, a.offset, a.height, mask);
  return a;
}

// The line runs from (1000, 2000, 50) with the azimuth of 3 north, 4 east.
TEST_F (Cogo, SetsAPointOffALineOnThePlane) {
  struct Case {
    const char* name;
    double ahead, aside, elevation, slope, right, up, offset, height;
  };
  for (const Case& c : {Case{"right", 50, 10, 50, 0, null, null, 10, 0},
                        Case{"left", 50, -10, 52, 0, null, null, -10, 2},
                        Case{"behind", -50, 10, 50, 0, 0.0004, 0, 10, 0},
                        Case{"on the line", 50, 0, 50, 0, null, null, 0, 0},
                        Case{"beside the start", 0, 10, 50, 0, null, null, 10, 0},
                        Case{"at the start", 0, 0, 50, 0, null, null, 0, 0},
                        Case{"over a slope", 50, 10, 60, std::atan (0.1), null, null, 10, 5},
                        Case{"no slope", 50, 10, 60, null, null, null, 10, null},
                        Case{"right of one to the right", 50, 10, 60, 0, 4, 1, 6, 9},
                        Case{"left of it", 50, 10, 60, 0, 12, null, -2, 10},
                        Case{"right of one to the left", 50, -10, 60, 0, -12, null, 2, 10},
                        Case{"left of that", 50, -10, 60, 0, -4, 0, -6, 10}}) {
    position start = At (*plane, 1000, 2000, 50);
    position point = At (*plane, 1000 + c.ahead * 0.6 - c.aside * 0.8,
                         2000 + c.ahead * 0.8 + c.aside * 0.6, c.elevation);
    const double azimuth = std::atan2 (4.0, 3.0);
    const Against a = AgainstLine (*plane, start, azimuth, c.slope, c.right, c.up, point, grid);
    EXPECT_EQ (a.result, COGO_Ok) << c.name;
    ExpectNear (a.along, c.ahead, 1e-9, c.name);
    ExpectNear (a.offset, c.offset, 1e-9, c.name);
    ExpectNear (a.height, c.height, 1e-9, c.name);
    ExpectNear (a.azimuth, azimuth, 1e-9, c.name);
    ExpectGrid (a.foot, *plane, 1000 + c.ahead * 0.6, 2000 + c.ahead * 0.8,
                maths_IsNull (c.height) ? null : 50 + std::tan (c.slope) * c.ahead, c.name);
    const cogo_Result side = cogo_IsBehind (start, azimuth, point, *plane, grid);
    EXPECT_TRUE (c.ahead == 0 || side == (c.ahead < 0 ? COGO_Behind : COGO_Ok)) << c.name;
  }
  const position here = At (*plane, 5, 5);
  const Against noLine = AgainstLine (*plane, here, null, 0, null, null, At (*plane, 7, 7), grid);
  const Against noPoint = AgainstLine (*plane, here, 0, 0, null, null, position (), grid);
  EXPECT_TRUE (noLine.result == COGO_NullInput && noLine.IsCleared ());
  EXPECT_TRUE (noPoint.result == COGO_NullInput && noPoint.IsCleared ());
}

// From 47 north 8 east along 60 degrees the geodesic passes F after 25 km; R and L lie 3 km to its
// right and 7 km to its left there, BR 500 m to the right of where it was 4 km before the start,
// and BB 3 km to the right of where it was 25 km before (by geod).
TEST_F (Cogo, SetsAPointOffAGeodesic) {
  struct Case {
    const char* name;
    double latitude, longitude, along, offset, azimuth;
  };
  for (const coordsys_CogoSettings mask : {wgs84, local})
    for (const Case& c :
         {Case{"F", 47.112083666722420, 8.285264585782713, 25000, 0, 60.208819804020152},
          Case{"R", 47.088663253548745, 8.304894762839163, 25000, 3000, 60.208819804020152},
          Case{"L", 47.166717819476737, 8.239393788513956, 25000, -7000, 60.208819804020152},
          Case{"BR", 46.978106814750483, 7.957757578415685, -4000, 500, 59.966705291065168},
          Case{"BB", 46.863883147099, 7.735725512640, -25000, 3000, 59.792434703393}}) {
      const position point = AtDegrees (*mercator, mask, c.latitude, c.longitude);
      const Against a = AgainstLine (*mercator, AtDegrees (*mercator, mask, 47, 8), 60 * degree, 0,
                                     null, null, point, mask);
      EXPECT_EQ (a.result, COGO_Ok);
      EXPECT_NEAR (a.along, c.along, 1e-3) << c.name;
      EXPECT_NEAR (c.offset != 0 ? a.offset : std::abs (a.offset), c.offset, 1e-3) << c.name;
      EXPECT_NEAR (a.azimuth, c.azimuth * degree, 1e-7) << c.name;
    }
}

// Two points of the plane, or none; both at the elevation of the sources.
void ExpectTwo (const position& first, const position& second, const Transform& transform,
                double north1, double east1, double north2, double east2, const char* name) {
  ExpectGrid (first, transform, north1, east1, maths_IsNull (north1) ? null : 7, name, 1e-6);
  ExpectGrid (second, transform, north2, east2, maths_IsNull (north2) ? null : 7, name, 1e-6);
}

TEST_F (Cogo, IntersectsLinesAndCirclesOnThePlane) {
  struct Case {
    const char* name;
    double azimuth, north, east, radius;  // the line through (0, 0)
    cogo_Result result;
    double north1, east1, north2, east2;
  };
  for (const Case& c :
       {Case{"secant", 0, 10, 3, 5, COGO_Ok, 14, 0, 6, 0},
        Case{"start inside", pi / 2, 3, 0, 5, COGO_Ok, 0, 4, 0, -4},
        Case{"through the centre", 0, 10, 0, 5, COGO_Ok, 15, 0, 5, 0},
        Case{"touching", 0, 10, 5, 5, COGO_Ok, 10, 0, null, null},
        Case{"touching from outside", 0, 10, 5.0004, 5, COGO_Ok, 10, 0, null, null},
        Case{"apart", 0, 10, 5.001, 5, COGO_NoIntersection, null, null, null, null},
        Case{"no radius", 0, 10, 5, null, COGO_NullInput, null, null, null, null},
        Case{"no azimuth", null, 10, 5, 7, COGO_NullInput, null, null, null, null}}) {
    position start = At (*plane, 0, 0, 7), centre = At (*plane, c.north, c.east, 7), one, two;
    EXPECT_EQ (
        cogo_AzimuthDistanceIntersect (start, c.azimuth, centre, *plane, c.radius, one, two, grid),
        c.result)
        << c.name;
    ExpectTwo (one, two, *plane, c.north1, c.east1, c.north2, c.east2, c.name);
  }
  // Over 0.2 m from the start to the foot, large coordinates carry a poor azimuth.
  position start = At (*plane, 5e6, 4e5), centre = At (*plane, 5e6 + 0.12 - 8, 4e5 + 0.16 + 6);
  position one, two;
  ASSERT_EQ (cogo_AzimuthDistanceIntersect (start, std::atan2 (4.0, 3.0), centre, *plane,
                                            std::hypot (10, 2000), one, two, grid),
             COGO_Ok);
  ExpectGrid (one, *plane, 5e6 + 0.12 + 1200, 4e5 + 0.16 + 1600, 0, "ahead", 5e-9);
  ExpectGrid (two, *plane, 5e6 + 0.12 - 1200, 4e5 + 0.16 - 1600, 0, "behind", 5e-9);
}

TEST_F (Cogo, IntersectsTwoCirclesOnThePlane) {
  struct Case {
    const char* name;
    double east, radius1, radius2;  // centres (0, 0) and (0, east)
    cogo_Result result;
    double north1, east1, north2;  // the first is to the right of the line of centres
  };
  for (const Case& c : {Case{"two", 10, 13, 13, COGO_Ok, -12, 5, 12},
                        Case{"side by side", 20, 15, 25, COGO_Ok, -15, 0, 15},
                        Case{"touching", 20, 5, 15, COGO_Ok, 0, 5, null},
                        Case{"touching inside", 10, 25, 15, COGO_Ok, 0, 25, null},
                        Case{"apart", 20, 5, 5, COGO_CirclesApart, null, null, null},
                        Case{"inside", 20, 5, 30, COGO_CircleInside, null, null, null},
                        Case{"about", 20, 30, 5, COGO_CircleInside, null, null, null},
                        Case{"one centre", 0, 5, 5, COGO_Coincident, null, null, null},
                        Case{"no circle", 20, 0, 25, COGO_Degenerate, null, null, null},
                        Case{"a radius below 0", 20, -5, 25, COGO_CirclesApart, null, null, null},
                        Case{"no radius", 20, 5, null, COGO_NullInput, null, null, null},
                        Case{"no centre", null, 5, 5, COGO_NullInput, null, null, null}}) {
    position a = At (*plane, 0, 0, 7), b = At (*plane, 0, c.east, 7), one, two;
    EXPECT_EQ (cogo_DistanceDistanceIntersect (a, c.radius1, b, c.radius2, *plane, one, two, grid),
               c.result)
        << c.name;
    ExpectTwo (one, two, *plane, c.north1, c.east1, c.north2,
               maths_IsNull (c.north2) ? null : c.east1, c.name);
  }
}

TEST_F (Cogo, IntersectsTwoLinesOnThePlane) {
  const double second = degree / 3600, due = pi / 2, off = 50 * std::tan (second);
  struct Case {
    const char* name;
    double azimuth1, azimuth2;  // through (5000000, 400000) and 100 m to the north and east
    cogo_Result result;
    double north, east;
  };
  for (const Case& c :
       {Case{"ahead", 0, 3 * due, COGO_Ok, 100, 0}, Case{"behind", pi, due, COGO_Ok, 100, 0},
        Case{"due east", due, std::atan2 (1.0, 2.0), COGO_Ok, 0, 50},
        Case{"due west", std::atan2 (1.0, 2.0), -due, COGO_Ok, 100, 50},
        Case{"two slants", std::atan2 (1.0, 3.0), std::atan2 (1.0, -1.0), COGO_Ok, 150, 50},
        Case{"nearly due east", due - 2e-7, 0, COGO_Ok, 2e-5, 100},
        Case{"seconds", pi / 4 + second, pi / 4 - second, COGO_Ok, 50 - off, 50 + off},
        Case{"the same azimuth", 1, 1, COGO_Parallel, null, null},
        Case{"the opposite", 1, 1 + pi, COGO_Parallel, null, null},
        Case{"no azimuth", null, 1, COGO_NullInput, null, null}}) {
    position one = At (*plane, 5000000, 400000), two = At (*plane, 5000100, 400100), out = two;
    EXPECT_EQ (cogo_AzimuthAzimuthIntersect (one, c.azimuth1, two, *plane, c.azimuth2, out, grid),
               c.result)
        << c.name;
    // Seconds apart the coordinates' last digits count 1e5 times.
    ExpectGrid (out, *plane, maths_Add (c.north, 5000000), maths_Add (c.east, 400000), null, c.name,
                c.azimuth1 == pi / 4 + second ? 1e-3 : 2e-9);
  }
}

// X lies at 47.5 north 8.5 east; the others at known geodesic azimuths and distances from it.
TEST_F (Cogo, IntersectsOnTheEllipsoid) {
  struct Site {
    double latitude, longitude, azimuthToX, distance;
  };
  const Site a{47.246355537188371, 8.364467591791090, 180 - 160.099722319969089, 30000};
  const Site b{47.615447501449275, 8.296205727595312, 180 - 50.150391680876012, 20000};
  const Site c{47.527831657571156, 8.653924850781999, 180 + 75.113510592111766, 12000};
  const Site d{47.576059739366407, 8.540914380734131, 180 + 20.030183593118487, 9000};
  const Site e{47.255321833900723, 8.332500605778987, 24.876748075628566, 30000};
  const Site f{47.247166684744926, 8.361221108087667, 20.397888310698587, 30000};
  for (const coordsys_CogoSettings mask : {wgs84, local}) {
    const auto at = [&] (const Site& s) {
      return AtDegrees (*mercator, mask, s.latitude, s.longitude, 300);
    };
    const auto fromX = [&] (position& p) { return MetresFrom (p, *mercator, 47.5, 8.5); };
    position pa = at (a), pb = at (b), pc = at (c), one, two;
    ASSERT_EQ (
        cogo_DistanceDistanceIntersect (pa, a.distance, pb, b.distance, *mercator, one, two, mask),
        COGO_Ok);
    EXPECT_NEAR (fromX (one), 0, 2e-3);  // to the right of the line from a to b
    EXPECT_GT (fromX (two), 1000);
    ASSERT_EQ (cogo_AzimuthDistanceIntersect (pa, a.azimuthToX * degree, pc, *mercator, c.distance,
                                              one, two, mask),
               COGO_Ok);
    EXPECT_NEAR (std::min (fromX (one), fromX (two)), 0, 2e-3);
    // Ahead of both; behind the first; behind the second; lines that meet at 5 and at 0.5 degrees;
    // opposite directions.
    for (const auto& [from, azimuth1, to, azimuth2, result] :
         {std::tuple (a, a.azimuthToX, c, c.azimuthToX, COGO_Ok),
          std::tuple (b, b.azimuthToX + 180, c, c.azimuthToX, COGO_Ok),
          std::tuple (b, b.azimuthToX, d, d.azimuthToX + 180, COGO_Ok),
          std::tuple (a, a.azimuthToX, e, e.azimuthToX, COGO_Ok),
          std::tuple (f, f.azimuthToX, a, a.azimuthToX, COGO_Ok),
          std::tuple (a, 57.0, b, 237.0, COGO_Parallel)}) {
      position first = at (from), second = at (to);
      EXPECT_EQ (cogo_AzimuthAzimuthIntersect (first, azimuth1 * degree, second, *mercator,
                                               azimuth2 * degree, one, mask),
                 result);
      ExpectNear (fromX (one), result == COGO_Ok ? 0 : null, 5e-3, "lines");
    }
  }
}

// Over hundreds of kilometres near the pole steps of half a bracket do not come within half a
// millimetre in 20 rounds; nor does the foot of a point 60 degrees off a line. Forward by a grid
// azimuth far outside the projection's zone ends metres from its distance. Fifteen degrees from the
// meridian of the projection a point comes back from the grid a metre beside where it was, and its
// distances with it.
TEST_F (Cogo, GivesUpOnWhatIsAsLargeAsTheEarthBends) {
  position one, two;
  for (const auto& [latitude, azimuth, toLatitude, result] :
       {std::tuple (80.0, 0.0, 86.0, COGO_Ok), std::tuple (88.0, 90.0, 84.0, COGO_NotConverged),
        std::tuple (0.0, 0.0, 8.0, COGO_NullInput)}) {
    position start = AtDegrees (*mercator, wgs84, latitude, 10);
    position centre = AtDegrees (*mercator, wgs84, toLatitude, 18);
    const double radius = 0.99 * Inverse (start, centre, *mercator, wgs84).along;
    EXPECT_EQ (cogo_AzimuthDistanceIntersect (start, azimuth * degree, centre, *mercator, radius,
                                              one, two, wgs84),
               result);
    for (const position& found : {one, two})
      if (result == COGO_Ok)
        EXPECT_NEAR (Inverse (found, centre, *mercator, wgs84).along, radius, 5e-4);
      else
        EXPECT_EQ (found.Original, COORD_NullType);
  }
  position outside = AtDegrees (*mercator, local, 0, 60);
  cogo_Forward (outside, *mercator, 2.0, 500e3, 0, outside, ofJob);
  EXPECT_TRUE (outside.GetLocal (*mercator).NullHorizontal ());
  const Against far = AgainstLine (*mercator, AtDegrees (*mercator, wgs84, 0, 0), pi / 2, 0, null,
                                   null, AtDegrees (*mercator, wgs84, 60, 3), wgs84);
  EXPECT_TRUE (far.result == COGO_NotConverged && far.IsCleared ());
  position a = AtDegrees (*mercator, local, 50, 2), b = AtDegrees (*mercator, local, 46, -3);
  EXPECT_EQ (cogo_DistanceDistanceIntersect (a, 750e3, b, 900e3, *mercator, one, two, ofJob),
             COGO_NotConverged);
  EXPECT_TRUE (one.Original == COORD_NullType && two.Original == COORD_NullType);
}

TEST_F (Cogo, KeepsHeightsThatAreThere) {
  position high = AtDegrees (*mercator, local, 47.5, 8.5, 300), one, two;
  position flat = AtDegrees (*mercator, local, 47.6, 8.5, null);
  // Ellipsoid distances take the project height, here none and so 0, for a missing one; the ground
  // is as high as the end that has a height, and nowhere when none has.
  const double onEllipsoid =
      Inverse (flat, flat, *mercator, local).along + Inverse (flat, high, *mercator, local).along;
  for (const auto& [from, to] : {std::pair (high, flat), std::pair (flat, high)}) {
    position a = from, b = to;
    EXPECT_EQ (cogo_MeanHeight (a, b, *mercator, local), 150);
    EXPECT_EQ (cogo_MeanHeight (a, b, *mercator, ground), 300);
    EXPECT_NEAR (Inverse (a, b, *mercator, ground).along, onEllipsoid * (1 + 300 / 6378137.0),
                 1e-6);
  }
  const position other = AtDegrees (*mercator, local, 47.5, 8.5, null);
  EXPECT_TRUE (maths_IsNull (Inverse (flat, other, *mercator, ground).along));
  EXPECT_NEAR (Inverse (flat, other, *mercator, local).along, onEllipsoid, 1e-9);
  cogo_CommonHeights (high, flat, *mercator, one, two, local);
  EXPECT_EQ (two.GetLocal (*mercator).Height, 150);
  EXPECT_TRUE (two.HorizontalOnly && !one.HorizontalOnly);
  EXPECT_EQ (cogo_AzimuthDistanceIntersect (high, 0, flat, *mercator, 5000, one, two, local),
             COGO_Ok);
  EXPECT_TRUE (one.GetLocal (*mercator).NullVertical ());
  EXPECT_FALSE (one.GetLocal (*mercator).NullHorizontal ());
}

TEST_F (Cogo, ChoosesAMaskForTwoPositions) {
  Transform bare;
  bare.Projection.ProjectionType = COORDSYS_NoProjection;
  const position onGrid = At (*plane, 1, 2), onLocal = AtDegrees (*plane, local, 47, 8);
  const position onWGS84 = AtDegrees (*plane, wgs84, 47, 8);
  EXPECT_EQ (cogo_SystemFor (onGrid, onGrid, *plane), grid);
  EXPECT_EQ (cogo_SystemFor (onWGS84, onGrid, *mercator),
             (ofJob & ~COORDSYS_CogoOrthoHeights) | COORDSYS_CogoEllipsoidHeights);
  EXPECT_EQ (cogo_SystemFor (onGrid, onGrid, bare), grid);
  EXPECT_EQ (cogo_SystemFor (onWGS84, onLocal, bare), local);
  EXPECT_EQ (cogo_SystemFor (onWGS84, onWGS84, bare), wgs84);
}

}  // namespace
}  // namespace clxml
