// Circular arcs.
// Arcs on the plane against their closed forms, every method of the solver against one arc run both
// ways, arcs on the ellipsoid against their own conditions. Leans on the fixture.
#include "Library/cogo/cogoarc.h"

#include <map>

#include "Library/cogo/cogofixture.h"
#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

using namespace testing;

class Arc : public ::testing::Test {
 protected:
  // About (0, 0) with radius 100, from due north.
  Against AgainstArc (bool isLeft, position point, double totalAngle, double right, double up) {
    position start = At (*plane, 100, 0, 20), centre = At (*plane, 0, 0);
    Against a;
    a.result = cogo_ArcStationOffset (isLeft, start, *plane, centre, 0, totalAngle, 100, right, up,
                                      point, a.foot, a.azimuth, a.along, a.offset, a.height, grid);
    return a;
  }

  Hearing hearing;
  std::unique_ptr<Transform> plane = Plane ();
};

TEST_F (Arc, ConvertsLengthsAndAngles) {
  const double almost = std::nextafter (2 * pi, 0.0);
  struct Case {
    double radius, length, angle, chord;
  };
  for (const Case& c :
       {Case{100, 100 * pi / 3, pi / 3, 100}, Case{100, 100 * pi, pi, 200},
        Case{100, -50, 2 * pi - 0.5, -200 * std::sin (0.25)}, Case{1, 2 * pi, null, null},
        Case{1, almost, almost, 0}, Case{0, 5, null, null}, Case{null, 5, null, null}}) {
    ExpectNear (cogo_ArcAngle (c.radius, c.length), c.angle, 1e-14, "angle");
    ExpectNear (std::abs (cogo_ArcChord (c.radius, c.length)), std::abs (c.chord), 1e-12, "chord");
  }
  EXPECT_TRUE (maths_IsNull (cogo_ArcLength (2, null)));
}

// A quarter of the circle, either way: names and distances of the clockwise one.
TEST_F (Arc, SetsPointsOnAndOffAnArc) {
  const double middle = 5 * pi / 4;
  struct Case {
    const char* name;
    double azimuth, distance, along, offset;  // the point as seen from the centre
  };
  for (const Case& c :
       {Case{"inside", 0.5, 90, 50, 10}, Case{"outside", 1, 130, 100, -30},
        Case{"on it", 0.7, 100, 70, 0}, Case{"at its start", 0, 95, 0, 5},
        Case{"behind the end", 2, 90, 200, 10}, Case{"before", 2 * pi - 0.3, 90, -30, 10},
        Case{"before the far middle", middle - 0.01, 90, 100 * middle - 1, 10},
        Case{"behind it", middle + 0.01, 90, 1 - 100 * (2 * pi - middle), 10}})
    for (const bool isLeft : {false, true}) {
      const double side = isLeft ? -1 : 1;
      const position point = At (*plane, c.distance * std::cos (c.azimuth),
                                 side * c.distance * std::sin (c.azimuth), 23);
      const Against a = AgainstArc (isLeft, point, pi / 2, null, 1);
      ExpectNear (a.along, c.along, 1e-9, c.name);
      ExpectNear (a.offset, side * c.offset, 1e-9, c.name);
      ExpectNear (a.height, 2, 1e-9, c.name);
      ExpectGrid (a.foot, *plane, 100 * std::cos (c.along / 100),
                  side * 100 * std::sin (c.along / 100), 20, c.name);
      const Against shifted = AgainstArc (isLeft, point, pi / 2, 25, null);
      ExpectNear (shifted.offset, side * c.offset - 25, 1e-9, c.name);
    }
  EXPECT_EQ (AgainstArc (false, At (*plane, 1, 1), null, null, null).result, COGO_NullInput);
  EXPECT_EQ (AgainstArc (false, At (*plane, 0, 0), 1, null, null).result, COGO_Degenerate);
  position start = At (*plane, 100, 0, 20), centre = At (*plane, 0, 0), out;
  cogo_ArcPoint (false, start, centre, *plane, 100, 0, std::atan (0.05), 50 * pi, out, grid);
  ExpectGrid (out, *plane, 0, 100, 20 + 2.5 * pi, "on a slope");
  cogo_ArcPoint (false, start, centre, *plane, 100, null, null, 5, out, grid);
  EXPECT_EQ (out.Original, COORD_NullType);
}

TEST_F (Arc, FitsBetweenTwoTangents) {
  struct Case {
    const char* name;
    double second, radius, deflection;  // azimuth from the intersection; the first is 1
    dbentity_ArcDirection direction;
    cogo_Result result;
  };
  for (const Case& c : {Case{"left", 3, 60, pi - 2, DBENTITY_LeftHand, COGO_Ok},
                        Case{"right", 2 * pi - 1, 60, pi - 2, DBENTITY_RightHand, COGO_Ok},
                        Case{"sharp", 1.01, 60, pi - 0.01, DBENTITY_LeftHand, COGO_Ok},
                        Case{"flat", 1 + pi - 1e-4, 60, 1e-4, DBENTITY_LeftHand, COGO_Ok},
                        Case{"straight", 1 + pi, 60, 0, DBENTITY_LeftHand, COGO_Ok},
                        Case{"folded", 1, 60, null, DBENTITY_LeftHand, COGO_NullInput},
                        Case{"no azimuth", null, 60, null, DBENTITY_LeftHand, COGO_NullInput},
                        Case{"inside out", 3, -60, null, DBENTITY_LeftHand, COGO_NotConverged}}) {
    position corner = At (*plane, 500, 500, 8), centre, ends[2];
    double deflection = null;
    dbentity_ArcDirection direction = DBENTITY_LeftHand;
    EXPECT_EQ (cogo_TangentArc (corner, *plane, 1, c.second, c.radius, deflection, centre, ends[0],
                                ends[1], direction, grid),
               c.result)
        << c.name;
    ExpectNear (deflection, c.deflection, 1e-12, c.name);
    EXPECT_EQ (direction, c.direction) << c.name;
    const double t = 60 * std::tan (maths_IsNull (c.deflection) ? 0 : c.deflection / 2);
    for (int i = 0; i < 2; i++) {
      const double azimuth = i == 0 ? 1 : c.second;
      if (c.result != COGO_Ok)
        EXPECT_EQ (ends[i].Original, COORD_NullType) << c.name;
      else
        ExpectGrid (ends[i], *plane, 500 + t * std::cos (azimuth), 500 + t * std::sin (azimuth), 8,
                    c.name, 1e-7);
      if (c.result == COGO_Ok && c.deflection != 0)
        ExpectNear (Inverse (centre, ends[i], *plane, grid).along, 60, 1e-7, c.name);
    }
  }
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"radius > 0.0"});
}

// Radii of kilometres on the ellipsoid: the tangent length of the plane is centimetres off.
TEST_F (Arc, FitsBetweenTwoTangentsOnTheEllipsoid) {
  const auto mercator = Mercator ();
  for (const auto& [mask, azimuth1, azimuth2, radius] :
       {std::tuple (local, 0.3, 1.5, 40000.0), std::tuple (wgs84, 0.3, 5.0, 40000.0),
        std::tuple (ofJob, 4.0, 5.5, 4000.0)}) {
    position corner = AtDegrees (*mercator, mask, 47.3, 8.4, 500), centre, first, second;
    double deflection;
    dbentity_ArcDirection direction;
    ASSERT_EQ (cogo_TangentArc (corner, *mercator, azimuth1, azimuth2, radius, deflection, centre,
                                first, second, direction, mask),
               COGO_Ok);
    for (const auto& [end, azimuth] : {std::pair (first, azimuth1), std::pair (second, azimuth2)}) {
      const Against a = Inverse (corner, end, *mercator, mask);
      EXPECT_NEAR (AngleSmallest (a.azimuth, azimuth), 0, 1e-6);
      EXPECT_NEAR (Inverse (centre, end, *mercator, mask).along, radius, 2e-3);
    }
  }
}

TEST_F (Arc, GivesTheIntersectionTheMeanHeightOfItsEnds) {
  const auto mercator = Mercator ();
  for (const coordsys_CogoSettings mask : {grid, ofJob, onWGS84, local, wgs84})
    for (const auto& [low, mean] : {std::pair (200.0, 250.0), std::pair (null, null)}) {
      position first = AtDegrees (*mercator, mask, 47.1, 8.1, 300), corner = first;
      position second = AtDegrees (*mercator, mask, 47.2, 8.2, low);
      if (mask == grid) second = At (*mercator, 210000, 610000, low);
      cogo_IntersectionHeight (first, second, corner, *mercator, mask);
      EXPECT_EQ (corner.HorizontalOnly, maths_IsNull (low)) << mask;
      ExpectNear (corner.GetCogoGrid (*mercator).Elevation, mean, 1e-9, std::to_string (mask));
      EXPECT_FALSE (corner.GetCogoGrid (*mercator).NullHorizontal ()) << mask;
    }
}

// Seven hundred metres' radius about C = (1000, 2000), from S in the azimuth 0.4 to E in 1.3, both
// seen from C; P lies in between in 0.9, I is where the tangents meet.
class ArcSolver : public Arc {
 protected:
  static constexpr double radius = 700, from = 0.4, to = 1.3, angle = 0.9;

  ArcSolver () {
    Put ("C", 0, 0, 5);
    Put ("S", radius, from, 10);
    Put ("E", radius, to, 16.3);
    Put ("P", radius, 0.9, 13);
    Put ("I", radius / std::cos (angle / 2), (from + to) / 2, 13.15);
    Put ("2 mm off E", radius + 0.002, to, 16.3);
    Put ("near E", radius + 0.0005, to, 16.3);
    Put ("opposite S", radius, from + pi, 10);
    Put ("on the chord", radius * std::cos (angle / 2), (from + to) / 2, 12);
  }
  void Put (const char* name, double distance, double azimuth, double elevation) {
    points[name] = At (*plane, 1000 + distance * std::cos (azimuth),
                       2000 + distance * std::sin (azimuth), elevation);
  }
  cogo_Result Solve (db_Arc& arc, coordsys_CogoSettings mask = coordsys_CogoSettings{}) {
    const auto find = [this] (const Str& name, position& out) {
      const auto found = points.find (name.Data ());
      if (found != points.end ()) out = found->second;
      return found != points.end ();
    };
    return cogoarc_Solve (find, *plane, arc, first, second, centre, corner, centreAzimuth, mask);
  }
  // Clockwise from S to E, or to the left from E to S.
  static db_Arc Keyed (int method, const char* start, const char* end, const char* third,
                       bool isLeft = false) {
    db_Arc arc;
    arc.Method = static_cast<dbentity_ArcMethod> (method);
    arc.StartPoint = start;
    arc.EndPoint = end;
    arc.CenterPoint = third;
    arc.Direction = isLeft ? DBENTITY_LeftHand : DBENTITY_RightHand;
    arc.Radius = radius;
    arc.Length = radius * angle;
    arc.ScribedAngle = angle;
    arc.Chord = arc.Tangent = null;
    arc.Grade = std::atan2 (isLeft ? -6.3 : 6.3, radius * angle);
    arc.BackwardTangent = isLeft ? to - pi / 2 + 2 * pi : from + pi / 2;
    arc.TangentAtStart = isLeft ? from - pi / 2 + 2 * pi : to + pi / 2;
    return arc;
  }
  // What the method finds and does not start from.
  static void Forget (db_Arc& arc) {
    const bool isByTangent =
        arc.Method == DBENTITY_CurveLengthAndRadius || arc.Method == DBENTITY_DeltaAngleAndRadius;
    const bool isByCorner = arc.Method == DBENTITY_IPAndTangents;
    if (arc.Method != DBENTITY_CurveLengthAndRadius) arc.Length = null;
    if (arc.Method != DBENTITY_DeltaAngleAndRadius) arc.ScribedAngle = null;
    if (arc.Method > DBENTITY_IPAndTangents) arc.Radius = null;
    if (!isByTangent && !isByCorner) arc.BackwardTangent = arc.Grade = null;
    if (!isByCorner) arc.TangentAtStart = null;
  }

  std::map<std::string, position> points;
  position first, second, centre, corner;
  double centreAzimuth = 0;
};

TEST_F (ArcSolver, FindsOneArcByEveryMethodEitherWay) {
  for (int method = DBENTITY_TwoPointsAndRadius; method <= DBENTITY_ThreePoints; method++)
    for (const bool isLeft : {false, true}) {
      const bool isByCorner = method == DBENTITY_IPAndTangents;
      const char* start = isLeft ? "E" : "S";
      const char* end = isLeft ? "S" : "E";
      db_Arc arc = Keyed (method, isByCorner ? "I" : start, end,
                          method == DBENTITY_ThreePoints ? "P" : "C", isLeft);
      const db_Arc keyed = arc;
      Forget (arc);
      const std::string name = std::to_string (method) + (isLeft ? " left " : " right ");
      ASSERT_EQ (Solve (arc), COGO_Ok) << name;
      EXPECT_EQ (arc.Direction, keyed.Direction) << name;
      for (const auto& [field, found, expected] :
           {std::tuple ("radius", arc.Radius, radius),
            std::tuple ("length", arc.Length, keyed.Length),
            std::tuple ("angle", arc.ScribedAngle, angle),
            std::tuple ("backward", arc.BackwardTangent, keyed.BackwardTangent),
            std::tuple ("forward", arc.TangentAtStart, keyed.TangentAtStart),
            std::tuple ("chord", arc.Chord, 2 * radius * std::sin (angle / 2)),
            std::tuple ("tangent", arc.Tangent, radius * std::tan (angle / 2)),
            std::tuple ("grade", arc.Grade, keyed.Grade),
            std::tuple ("to first", centreAzimuth, isLeft ? to : from)})
        EXPECT_NEAR (found, expected, 1e-8) << name << field;
      for (const auto& [found, where, hasHeight] :
           {std::tuple (first, start, !isByCorner), std::tuple (second, end, !isByCorner),
            std::tuple (centre, "C", false), std::tuple (corner, "I", true)}) {
        const coord_CogoGrid at = points[where].GetCogoGrid (*plane);
        const double height = position (found).GetCogoGrid (*plane).Elevation;
        ExpectGrid (found, *plane, at.North, at.East, hasHeight ? at.Elevation : height,
                    name + where, 1e-6);
      }
    }
}

// The same arc about a point of the map, with grid azimuths, by the methods whose points come from
// lines that meet on the grid and have no height there; E is 10 m above S or as high as no one
// knows.
TEST_F (ArcSolver, FindsAnArcWhoseDistancesAreOnTheEllipsoid) {
  plane = Mercator ();
  for (const auto& [mask, rise] :
       {std::pair (ofJob, 10.0), std::pair (onWGS84, 10.0), std::pair (ofJob, null)}) {
    position about = At (*plane, 230000, 650000, 400);
    for (const auto& [name, azimuth, up] :
         {std::tuple ("S", from, 0.0), std::tuple ("E", to, rise), std::tuple ("P", 0.9, 0.0)})
      cogo_Forward (about, *plane, azimuth, radius, up, points[name], mask);
    for (const int method : {DBENTITY_TwoPointsAndRadius, DBENTITY_ThreePoints}) {
      db_Arc arc = Keyed (method, "S", "E", "P");
      ASSERT_EQ (Solve (arc, mask), COGO_Ok) << method;
      EXPECT_NEAR (arc.Radius, radius, 2e-3) << method;
      EXPECT_NEAR (Inverse (centre, about, *plane, mask).along, 0, 2e-3) << method;
      EXPECT_NEAR (arc.Tangent, radius * std::tan (angle / 2), 0.01) << method;
      const double height = corner.GetCogoGrid (*plane).Elevation;
      ExpectNear (height, maths_IsNull (rise) ? null : 405, 1e-3, "corner");
    }
  }
}

TEST_F (ArcSolver, TellsWhyItCannot) {
  struct Case {
    int method;
    const char *start, *end, *third;
    double db_Arc::*field;
    double value;
    cogo_Result result;
  };
  using A = db_Arc;
  for (const Case& c : {Case{0, "X", "E", "", &A::Radius, 700, COGO_NoBracket},
                        Case{5, "S", "X", "P", &A::Radius, 700, COGO_NoBracket},
                        Case{4, "S", "E", "X", &A::Radius, 700, COGO_NoBracket},
                        Case{0, "S", "E", "", &A::Radius, null, COGO_NoBracket},
                        Case{0, "S", "E", "", &A::Radius, 100, COGO_CirclesApart},
                        Case{0, "S", "S", "", &A::Radius, 700, COGO_Coincident},
                        Case{1, "S", "", "", &A::BackwardTangent, null, COGO_NoBracket},
                        Case{1, "S", "", "", &A::Length, 4900, COGO_NoBracket},  // more than a turn
                        Case{2, "S", "", "", &A::ScribedAngle, null, COGO_NoBracket},
                        Case{3, "I", "", "", &A::TangentAtStart, null, COGO_NoBracket},
                        Case{3, "I", "", "", &A::Radius, 0, COGO_NoBracket},
                        Case{3, "I", "", "", &A::Radius, -700, COGO_NoBracket},
                        Case{4, "S", "2 mm off E", "C", &A::Radius, 0, COGO_RadiiDiffer},
                        Case{4, "S", "near E", "C", &A::Radius, 0, COGO_Ok},
                        Case{5, "S", "E", "on the chord", &A::Radius, 0, COGO_Parallel},
                        Case{5, "S", "E", "S", &A::Radius, 0, COGO_Degenerate},
                        Case{5, "S", "S", "P", &A::Radius, 0, COGO_Degenerate}}) {
    db_Arc arc = Keyed (c.method, c.start, c.end, c.third);
    arc.*c.field = c.value;
    const db_Arc keyed = arc;
    EXPECT_EQ (Solve (arc), c.result) << c.method << c.start << c.end << c.third;
    EXPECT_TRUE (c.result == COGO_Ok || arc.IsEqual (keyed)) << c.method;
    EXPECT_EQ (first.Original == COORD_NullType, c.result != COGO_Ok) << c.method;
  }
  db_Arc arc = Keyed (9, "S", "E", "C");
  EXPECT_EQ (Solve (arc), COGO_NoBracket);
  cogoarc_Solve (nullptr, *plane, arc, first, second, centre, corner, centreAzimuth, grid);
  EXPECT_EQ (hearing.TakeAssertions (), (std::vector<std::string>{"Invalid method", "jobfile"}));
}

TEST_F (ArcSolver, LeavesOutTheChordOfALongArcAndTheTangentOfAHalfCircle) {
  db_Arc half = Keyed (DBENTITY_TwoPointsAndCentrePoint, "S", "opposite S", "C");
  half.Tangent = 123;
  ASSERT_EQ (Solve (half), COGO_Ok);
  EXPECT_NEAR (half.Chord, 2 * radius, 1e-9);
  EXPECT_TRUE (half.Tangent == 123 && corner.Original == COORD_NullType);
  db_Arc more = Keyed (DBENTITY_TwoPointsAndCentrePoint, "E", "S", "C");
  ASSERT_EQ (Solve (more), COGO_Ok);
  EXPECT_NEAR (more.ScribedAngle, 2 * pi - angle, 1e-9);
  EXPECT_TRUE (maths_IsNull (more.Chord));
  db_Arc diameter = Keyed (DBENTITY_TwoPointsAndRadius, "S", "opposite S", "");
  ASSERT_EQ (Solve (diameter), COGO_Ok);
  ExpectGrid (centre, *plane, 1000, 2000, 10, "the one centre", 1e-4);
  diameter = Keyed (DBENTITY_TwoPointsAndRadius, "S", "opposite S", "", true);
  EXPECT_EQ (Solve (diameter), COGO_Degenerate);  // the second centre of touching circles
}

}  // namespace
}  // namespace clxml
