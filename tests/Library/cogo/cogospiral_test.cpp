// Transition curves and the geometry of road elements.
// Their edges and points off them; that they follow their curvature and slope is tested in the
// road. Leans on the fixture.
#include "Library/cogo/cogospiral.h"

#include "Library/cogo/cogofixture.h"
#include "Library/cogo/roadcogo.h"

namespace clxml {
namespace {

using namespace testing;

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

// A spiral that starts at (1000, 2000, 30) in the azimuth 1.1 and rises by 2 in 100.
struct Placed {
  Placed (SpiralType type, const Spiral& spiral, double resolution = 1e-7, double azimuth = 1.1)
      : type (type), spiral (spiral), resolution (resolution), azimuth (azimuth) {
    cogo_SpiralFromTangent (spiral.small, spiral.large, spiral.length, spiral.length, resolution,
                            deltaZero, x0, y0);
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

TEST (VerticalCurves, HaveTheirEdges) {
  Hearing hearing;
  double elevation;
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

}  // namespace
}  // namespace clxml
