// Coordinates: what counts as absent, the ranges of angles, differences, the ellipsoid.
// Leans on GoogleTest.
#include "Library/coords/coord.h"

#include <cmath>
#include <limits>

#include "support/hearing.h"

namespace clxml {
namespace {

constexpr double null = MATHS_Null;
constexpr double nan = std::numeric_limits<double>::quiet_NaN ();
constexpr double inf = std::numeric_limits<double>::infinity ();

TEST (Coord, NormalisesAngles) {
  const testing::Hearing hearing;
  using Normalise = double (*) (double);
  const struct {
    const char* name;
    Normalise normalise;
    double angle;
    double expected;
  } cases[] = {
      {"pi stays", coord_NormalisePlusMinusPi, -CONSTANT_Pi, -CONSTANT_Pi},
      {"above pi", coord_NormalisePlusMinusPi, 4.0, 4.0 - CONSTANT_TwoPi},
      {"many turns back", coord_NormalisePlusMinusPi, -100.0, -100.0 + 16 * CONSTANT_TwoPi},
      {"half turns", coord_NormalisePlusMinusPiOverTwo, 2.0, 2.0 - CONSTANT_Pi},
      {"quarter stays", coord_NormalisePlusMinusPiOverTwo, CONSTANT_PiOverTwo, CONSTANT_PiOverTwo},
      {"a turn", coord_NormaliseTwoPi, CONSTANT_TwoPi, 0.0},
      {"below 0", coord_NormaliseTwoPi, -0.1, CONSTANT_TwoPi - 0.1},
      {"rounds to a turn", coord_NormaliseTwoPi, -1e-20, 0.0},
      {"null", coord_NormaliseTwoPi, null, null},
      {"infinite", coord_NormaliseTwoPi, -inf, null},
      {"no number", coord_NormalisePlusMinusPi, nan, null},
  };
  for (const auto& c : cases) EXPECT_NEAR (c.normalise (c.angle), c.expected, 1e-14) << c.name;
  // Angles too large to have a direction stay in range.
  for (double angle = 1.0; angle < 1e300; angle *= -1.7e9) {
    EXPECT_LT (coord_NormaliseTwoPi (angle), CONSTANT_TwoPi);
    EXPECT_LE (std::abs (coord_NormalisePlusMinusPi (angle)), CONSTANT_Pi);
    EXPECT_LE (std::abs (coord_NormalisePlusMinusPiOverTwo (angle)), CONSTANT_PiOverTwo);
  }
  double angle = 7.0;
  coord_NormaliseTwoPiInPlace (angle);
  EXPECT_EQ (angle, coord_NormaliseTwoPi (7.0));
}

TEST (Coord, TellsWhichPartsAreAbsent) {
  // What an object answers: a letter each for IsNull, AnyNull, NullHorizontal, NullVertical.
  const auto answers = [] (const coord_BaseClass& c) {
    std::string text;
    if (c.IsNull ()) text += 'i';
    if (c.AnyNull ()) text += 'a';
    if (c.NullHorizontal ()) text += 'h';
    if (c.NullVertical ()) text += 'v';
    return text;
  };
  const coord_CorrectedGrid grid (1, 2, 3), flat (1, 2, null), half (1, null, null);
  const struct {
    const char* name;
    std::string answers;
    const char* expected;
  } cases[] = {
      {"whole", answers (coord_WGS84 (0.1, 0.2, 3)), ""},
      {"no height", answers (coord_Local (0.1, 0.2, null)), "av"},
      {"only height", answers (coord_CogoGrid (null, null, 1)), "ah"},
      {"north only", answers (half), "av"},
      {"earth-centred without Z", answers (coord_ECEF (1, 2, null)), "av"},
      {"distance without azimuth", answers (coord_Polar (null, 5, null)), "av"},
      {"angles alone", answers (coord_Ground (1, 1.5, null)), "a"},
      {"no face", answers (coord_Corrected (1, 2, 3, COORD_FaceNull)), "a"},
      {"a face only", answers (coord_Corrected (null, null, null, COORD_Face1)), "ahv"},
      {"circle without face", answers (coord_Circle (1, 2, 3, COORD_FaceNull)), ""},
      {"unoriented station", answers (coord_StationSetupData (flat, null)), "av"},
      {"station of azimuth", answers (coord_StationSetupData (coord_CorrectedGrid (), 1)), "av"},
  };
  for (const auto& c : cases) EXPECT_EQ (c.answers, c.expected) << c.name;
}

TEST (Coord, KeepsTheOrderOfACorrectedGrid) {
  const auto grid = coord_CorrectedGrid::FromNorthEastElevation (10, 20, 30);
  EXPECT_EQ (grid.North, 10);
  EXPECT_EQ (grid.East, 20);
  EXPECT_EQ (grid.Elevation, 30);
  EXPECT_EQ (grid, coord_CorrectedGrid (10, 20, 30));
  const coord_GridDeltas deltas = coord_CorrectedGrid (11, 23, 35) - grid;
  EXPECT_EQ (deltas.DeltaNorth, 1);
  EXPECT_EQ (deltas.DeltaEast, 3);
  EXPECT_EQ (deltas.DeltaElev, 5);
  EXPECT_EQ (grid + deltas, coord_CorrectedGrid (11, 23, 35));
  EXPECT_NE (grid + coord_GridDeltas (0, 0, 1), grid);
  EXPECT_TRUE (grid.IsCloseTo (coord_CorrectedGrid (13, 24, null), 5.0));
  EXPECT_FALSE (grid.IsCloseTo (coord_CorrectedGrid (13, 24, 30), 4.999));
  EXPECT_FALSE (grid.IsCloseTo (coord_CorrectedGrid (), 1e9));
}

TEST (Coord, MeasuresDifferences) {
  const coord_GridDeltas d = coord_CogoGrid (104, 197, 12) - coord_CogoGrid (100, 200, 0);
  EXPECT_NEAR (d.Azimuth (), CONSTANT_TwoPi - std::atan (0.75), 1e-15);
  EXPECT_EQ (d.HorizontalDistance (), 5);
  EXPECT_EQ (d.SlopeDistance (), 13);
  const coord_CogoGrid flat = coord_CogoGrid (1, 2, null) + d;
  EXPECT_EQ (flat.North, 5);
  EXPECT_TRUE (flat.NullVertical ());
  EXPECT_TRUE (maths_IsNull (coord_GridDeltas (0, 0, 1).Azimuth ()));
  EXPECT_TRUE (maths_IsNull (coord_GridDeltas (1, 1, null).SlopeDistance ()));
  const coord_ECEFDeltas e = coord_ECEF (4, 2, 3) - coord_ECEF (1, 6, 3);
  EXPECT_NEAR (e.Azimuth (), std::atan2 (3.0, -4.0), 1e-15);
  EXPECT_EQ (e.SlopeDistance (), 5);
  EXPECT_TRUE ((coord_ECEF (1, 2, null) - coord_ECEF (1, 2, 3)).IsNull ());
  EXPECT_EQ ((e + coord_ECEF (coord_ECEFGround (1, 6, 3))).X, 4);
}

TEST (Coord, GoesEarthCentredAndBack) {
  // Earth-centred by PROJ 9.1.1 (cct -d 6 +proj=cart +a=6378137 +b=6356752.3142).
  const struct {
    double latitude, longitude, height, x, y, z;
  } cases[] = {
      {47.0, 8.5, 1234.5, 4310654.951208, 644231.698929, 4642667.644917},
      {-41.3, 174.8, -12.25, -4778908.772717, 434914.768424, -4187502.467644},
      {0, -180, 0, -6378137, 0, 0},
      {89.9999, 45, 9000, 7.909064, 7.909064, 6365752.314190},
  };
  const coordsys_Ellipsoid& wgs84 = coordsys_WGS84Ellipsoid ();
  for (const auto& c : cases) {
    const coord_WGS84 point (c.latitude * CONSTANT_Pi / 180, c.longitude * CONSTANT_Pi / 180,
                             c.height);
    const coord_ECEF ecef = point.ToECEF (wgs84);
    EXPECT_NEAR (ecef.X, c.x, 1e-6);
    EXPECT_NEAR (ecef.Y, c.y, 1e-6);
    EXPECT_NEAR (ecef.Z, c.z, 1e-6);
    const coord_Local back = ecef.ToLocal (wgs84);
    EXPECT_NEAR (back.Latitude, point.Latitude, 1e-15);
    EXPECT_NEAR (std::abs (back.Longitude), std::abs (point.Longitude), 1e-15);
    EXPECT_NEAR (back.Height, c.height, 5e-9);
  }
  const coord_WGS84 pole = coord_ECEF (0, 0, 6356752.3142 + 100).ToWGS84 (wgs84);
  EXPECT_EQ (pole.Latitude, CONSTANT_PiOverTwo);
  EXPECT_EQ (pole.Longitude, 0);
  EXPECT_NEAR (pole.Height, 100, 1e-6);
  EXPECT_TRUE (coord_WGS84 (0.1, 0.2, null).ToECEF (wgs84).IsNull ());
  EXPECT_TRUE (coord_ECEF (1e200, 1e200, 1).ToWGS84 (wgs84).IsNull ());
  EXPECT_TRUE (coord_ECEF (1, 2, 3).ToWGS84 (coordsys_Ellipsoid ()).IsNull ());
}

}  // namespace
}  // namespace clxml
