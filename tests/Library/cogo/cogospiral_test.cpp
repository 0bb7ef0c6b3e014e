// Transition curves and the geometry of road elements.
// Spirals against the clothoid integrated step by step, vertical curves against their closed forms.
// Leans on the fixture.
#include "Library/cogo/cogospiral.h"

#include "Library/cogo/cogofixture.h"
#include "Library/cogo/roadcogo.h"

namespace clxml {
namespace {

using namespace testing;

struct Path {
  double delta, x, y;
};

// Where a path leads whose curvature runs evenly from `from` to `to` (1/m, positive to the right)
// over a length, and straight on behind it: Simpson's rule over the tangent's direction.
Path Integrate (double from, double to, double length, double distance) {
  const double s = std::min (distance, length);
  const auto direction = [&] (double t) { return from * t + (to - from) * t * t / (2 * length); };
  constexpr int steps = 2000;
  double x = 0, y = 0;
  for (int i = 0; i <= steps; i++) {
    const double weight = (i == 0 || i == steps ? 1 : i % 2 == 1 ? 4 : 2) * s / steps / 3;
    x += weight * std::cos (direction (s * i / steps));
    y += weight * std::sin (direction (s * i / steps));
  }
  const double end = direction (s);
  return {end, x + (distance - s) * std::cos (end), y + (distance - s) * std::sin (end)};
}

struct Spiral {
  const char* name;
  double small, large, length;
};
constexpr Spiral spirals[] = {{"from a straight", 100, null, 100},
                              {"flat", 5000, null, 150},
                              {"between arcs", 200, 800, 90},
                              {"tight between arcs", 60, 100, 50},
                              {"an arc", 300, 300, 80}};
constexpr SpiralType types[] = {ExitRight, EntryRight, EntryLeft, ExitLeft};

bool IsExit (SpiralType type) { return type == ExitRight || type == ExitLeft; }

Path Follow (const Spiral& spiral, bool isExit, bool isLeft, double distance) {
  const double side = isLeft ? -1 : 1;
  double from = maths_IsNull (spiral.large) ? 0 : side / spiral.large, to = side / spiral.small;
  if (isExit) std::swap (from, to);
  return Integrate (from, to, spiral.length, distance);
}

// A spiral that starts at (1000, 2000, 30) in the azimuth 1.1 and rises by 2 in 100.
struct Placed {
  Placed (SpiralType type, const Spiral& spiral, double resolution = 1e-7, double azimuth = 1.1)
      : type (type), spiral (spiral), resolution (resolution), azimuth (azimuth) {
    cogo_SpiralFromTangent (spiral.small, spiral.large, spiral.length, spiral.length, resolution,
                            deltaZero, x0, y0);
  }
  Path Point (double distance) const {
    Path p;
    cogo_SpiralPoint (type, spiral.small, spiral.large, spiral.length, distance, resolution,
                      deltaZero, x0, y0, p.delta, p.x, p.y);
    return p;
  }
  position Beside (double along, double offset, double& tangent) const {
    position origin = At (*plane, 1000, 2000, 30), out;
    cogo_SpiralPosition (type, origin, *plane, azimuth, spiral.small, spiral.large, spiral.length,
                         slope, resolution, along, deltaZero, x0, y0, out, tangent, grid);
    EXPECT_NEAR (out.GetCogoGrid (*plane).Elevation, 30 + 0.02 * along, 1e-9);
    cogo_Forward (out, *plane, tangent + pi / 2, offset, 2, out, grid);
    return out;
  }
  Against Find (position point) const {
    position origin = At (*plane, 1000, 2000, 30);
    Against a;
    a.result = cogo_SpiralStationOffset (type, origin, *plane, azimuth, spiral.small, spiral.large,
                                         spiral.length, slope, resolution, deltaZero, x0, y0, point,
                                         a.along, a.offset, a.height, a.azimuth, a.foot, grid);
    return a;
  }

  SpiralType type;
  Spiral spiral;
  double resolution, azimuth, deltaZero, x0, y0, slope = std::atan (0.02);
  std::shared_ptr<Transform> plane = Plane ();
};

// The series stop behind the first term that is not above the resolution; what they leave out is
// smaller still.
TEST (Spirals, FollowTheClothoidEveryWay) {
  Hearing hearing;
  for (const Spiral& spiral : spirals)
    for (const SpiralType type : types)
      for (const double resolution : {0.0001, 1e-7, 1e-12})
        for (const double share : {0.001, 0.25, 0.9, 1.0, 1.2}) {
          const Path found = Placed (type, spiral, resolution).Point (share * spiral.length);
          const Path path = Follow (spiral, IsExit (type), type == EntryLeft || type == ExitLeft,
                                    share * spiral.length);
          const std::string where = std::string (spiral.name) + " " + std::to_string (type) + " " +
                                    std::to_string (share);
          EXPECT_NEAR (found.delta, path.delta, 1e-12) << where;
          EXPECT_NEAR (found.x, path.x, resolution / 5 + 1e-10) << where;
          EXPECT_NEAR (found.y, path.y, resolution / 5 + 1e-10) << where;
        }
}

TEST (Spirals, HaveTheirEdges) {
  Hearing hearing;
  double delta, x, y;
  struct Case {
    const char* name;
    double small, large, distance, delta, x, y;
  };
  for (const Case& c :
       {Case{"start", 100, null, 0, 0, 0, 0}, Case{"before the start", 100, null, -30, 0, -30, 0},
        Case{"the classic values", 100, null, 100, 0.5, 97.529, 16.371},
        Case{"no small radius", 0, null, 50, 0, 0, 0},
        Case{"no number", null, null, 50, null, null, null},
        Case{"nowhere", 100, null, null, null, null, null},
        Case{"no large radius", 100, 0, 50, null, null, null}}) {
    cogo_SpiralPoint (EntryRight, c.small, c.large, 100, c.distance, 1e-7, 0.5, 97.5, 16.4, delta,
                      x, y);
    ExpectNear (delta, c.delta, 1e-12, c.name);
    ExpectNear (x, c.x, 5e-4, c.name);
    ExpectNear (y, c.y, 5e-4, c.name);
  }
  cogo_SpiralPoint (SpiralType (7), 100, null, 100, 50, 1e-4, 0.5, 97.5, 16.4, delta, x, y);
  cogo_SpiralFromTangent (100, null, 100, 101, 1e-4, delta, x, y);
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"Unknown spiral type", "spiralDist <= length"}));
  // Far beyond where the series serves it is cut at its thirtieth term, not summed for ever.
  cogo_SpiralSeries (100, 100, 1e-4, y, x);
  double sumX = 0, sumY = 0;  // with u = s^2 / (2 A^2) = 50
  for (int n = 0; n < 30; n++) {
    sumX += 100 * std::pow (-1, n) * std::pow (50, 2 * n) / std::tgamma (2 * n + 1) / (4 * n + 1);
    sumY +=
        100 * std::pow (-1, n) * std::pow (50, 2 * n + 1) / std::tgamma (2 * n + 2) / (4 * n + 3);
  }
  EXPECT_NEAR (x / sumX, 1, 1e-12);
  EXPECT_NEAR (y / sumY, 1, 1e-12);
  cogo_SpiralSeries (1e12, 1, 1e-4, y, x);
  EXPECT_TRUE (maths_IsNull (x) && maths_IsNull (y));
}

TEST (Spirals, FindPointsThatLieOffThem) {
  Hearing hearing;
  for (const Spiral& spiral : spirals)
    for (const SpiralType type : types) {
      const Placed placed (type, spiral);
      for (const double along : {-10.0, 0.3 * spiral.length, spiral.length + 12})
        for (const double offset : {0.0, 6.0, -15.0}) {
          double tangent;
          const Against a = placed.Find (placed.Beside (along, offset, tangent));
          const std::string where = std::string (spiral.name) + " " + std::to_string (type);
          ASSERT_EQ (a.result, COGO_Ok) << where;
          // A step below the resolution leaves about twice as much, and the curve bends it.
          EXPECT_NEAR (a.along, along, 1e-6) << where;
          EXPECT_NEAR (a.offset, offset, 1e-6) << where;
          EXPECT_NEAR (a.height, 2, 1e-6) << where;
          EXPECT_NEAR (a.azimuth, tangent, 1e-7) << where;
        }
    }
  // Four and more radii off the outer side each step swings further over: 40 rounds do not settle.
  const Spiral tight{"tight", 50, null, 120};
  const position near = At (*Plane (), 1060, 2030), far = At (*Plane (), 1200, 1750);
  const Against swinging = Placed (EntryRight, tight, 1e-7, 0).Find (far);
  EXPECT_TRUE (swinging.result == COGO_NotConverged && swinging.IsCleared ());
  // Two radii off it half a step still settles, and a point on the start is found at once.
  double tangent;
  const Placed settling (EntryRight, tight);
  EXPECT_NEAR (settling.Find (settling.Beside (110, -110, tangent)).along, 110, 1e-6);
  EXPECT_EQ (settling.Find (At (*Plane (), 1000, 2000, 30)).result, COGO_Ok);
  Placed unknown (ExitRight, tight);
  unknown.deltaZero = null;
  EXPECT_EQ (unknown.Find (near).result, COGO_Degenerate);
  EXPECT_EQ (Placed (EntryRight, tight, 1e-7, null).Find (near).result, COGO_NullInput);
}

// Where the curvature of an element leads is followed in the tests of the alignment.
TEST (RoadElements, HaveTheirEdges) {
  Hearing hearing;
  const auto plane = Plane ();
  const coord_CorrectedGrid start{500, 700, 12};
  coord_CorrectedGrid found;
  double azimuth;
  roadcogo_ArcPoint (start, *plane, grid, 0.2, 4, 50, 200, true, 200.0004, found, azimuth);
  EXPECT_TRUE (hearing.TakeAssertions ().empty ());
  roadcogo_ArcPoint (start, *plane, grid, 0.2, 0, 50, 0, true, 5, found, azimuth);
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"DistanceAlong <= Length"});
  EXPECT_TRUE (found == start && azimuth == 0.2);  // an arc of no length
  roadcogo_SpiralPoint (start, *plane, grid, 0.2, 50, null, 0, true, true, 5, found, azimuth);
  EXPECT_TRUE (found == start && azimuth == 0.2);
  roadcogo_SpiralPoint (start, *plane, grid, 0.2, null, null, 50, true, true, 20, found, azimuth);
  EXPECT_TRUE (found.NullHorizontal () && maths_IsNull (azimuth) && found.Elevation == 12);
}

// Grades of 4 % up to the intersection at (1000, 50) and 3 % down from it. Off the grade through
// its start a half falls by (change of grade) (other length) d^2 / (2 length (both lengths)), d the
// distance from the start; a symmetric parabola is one.
TEST (VerticalCurves, AreTangentToTheirGradesAndMeet) {
  Hearing hearing;
  struct Case {
    double lengthIn, lengthOut, station, elevation;
  };
  double elevation;
  for (const Case& c :
       {Case{60, 60, 970, 48.8 - 0.07 * 900 / 240}, Case{60, 60, 1030, 51.2 - 0.07 * 8100 / 240},
        Case{30, 90, 1000 - 1e-9, 49.2125}, Case{30, 90, 1000, 49.2125},
        Case{30, 90, 1060, 48.2 - 0.07 * 30 * 900 / (2 * 90 * 120)}, Case{0, 90, 1000, 50},
        Case{0, 90, 1030, 49.1}}) {
    roadcogo_ParabolaElevation ({1000 - c.lengthIn, 50 - 0.04 * c.lengthIn}, {1000, 50},
                                {1000 + c.lengthOut, 50 - 0.03 * c.lengthOut}, c.lengthIn,
                                c.lengthOut, c.station, elevation);
    EXPECT_NEAR (elevation, c.elevation, 1e-9) << c.lengthIn << " " << c.station;
  }
  // No curve: the grades of the three points, or none between two above each other.
  for (const auto& [start, middle, station, expected] :
       {std::tuple (900.0, 50.0, 950.0, 48.0), std::tuple (900.0, 50.0, 1100.0, 47.0),
        std::tuple (999.9996, 50.0, 999.9998, 46.0), std::tuple (900.0, null, 950.0, null)}) {
    roadcogo_ParabolaElevation ({start, 46}, {1000, middle}, {1200, 44}, 0, 0, station, elevation);
    ExpectNear (elevation, expected, 1e-12, "no curve");
  }
  for (const auto& [centre, intersection, station, expected] :
       {std::tuple (300.0, 50.0, 130.0, 300 - std::sqrt (250.0 * 250.0 - 900)),
        std::tuple (-200.0, 50.0, 130.0, -200 + std::sqrt (250.0 * 250.0 - 900)),
        std::tuple (300.0, 50.0, 360.0, null), std::tuple (null, 50.0, 130.0, null)}) {
    roadcogo_ArcElevation ({100, centre}, {100, intersection}, 250, station, elevation);
    ExpectNear (elevation, expected, 1e-9, "circle");
  }
}

TEST (VerticalCurves, InterpolateBetweenStations) {
  struct Case {
    double e1, e2, s1, s2, s, elevation;
  };
  for (const Case& c : {Case{10, 20, 100, 200, 125, 12.5}, Case{10, 20, 100, 200, 300, 30},
                        Case{10, 10, 100, 100, 50, 10}, Case{10, 20, 100, 100, 100, null},
                        Case{null, 20, 100, 200, 150, null}, Case{10, 20, 100, null, 150, null}})
    ExpectNear (roadcogo_Interpolate (c.e1, c.e2, c.s1, c.s2, c.s), c.elevation, 1e-12, "line");
}

}  // namespace
}  // namespace clxml
