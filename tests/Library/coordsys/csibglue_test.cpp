// From parts to the block: which file serves which component, and what happens without it.
// Leans on GoogleTest and the writer of grid files.
#include "Library/coordsys/csibglue.h"

#include <cmath>
#include <filesystem>

#include "Library/coordsys/jobsystem.h"
#include "Library/coordsys/system.h"
#include "Library/job/dbJob.h"
#include "Library/records/dbCoordSystems.h"
#include "support/gridfile.h"
#include "support/hearing.h"
#include "support/mounted.h"

namespace clxml {
namespace {

using testing::Degrees;
using testing::ExpectNear;
using testing::GridFile;
using testing::null;
using testing::Seconds;
using testing::System;

// A device whose project folder stands in the test's folder.
class Glue : public testing::LibraryTest {
 protected:
  Glue () { std::filesystem::create_directories (folder.path / "Norvath Data"); }
  void Put (const std::string& name, const std::string& bytes) {
    testing::PutFile (folder.Host ("Norvath Data/" + name), bytes);
  }
  // A grid of the same value everywhere, over Europe or over any grid coordinates.
  static std::string Constant (double value, bool isMetres = false) {
    GridFile file;
    file.latMin = isMetres ? -1e7 : 40;
    file.lonMin = isMetres ? -1e7 : -10;
    file.latSpacing = file.lonSpacing = isMetres ? 2e7 : 30;
    file.value = [value] (int, int) { return value; };
    return file.Bytes ();
  }
  const testing::Mounted mounted{"\\Disk\\", folder.path.c_str ()};
};

System Mercator () {
  return System ().OnBessel ().Projected (COORDSYS_TransverseMercator, 0, 12, 0, 4500000);
}

coord_CogoGrid Projected (const Transform& transform, const coord_Local& point) {
  coord_CogoGrid grid;
  transform.LocalToCogoGrid (point, grid);
  return grid;
}

// Both roads of the grid side end where they began.
void ExpectReturn (const Transform& transform, const coord_Local& point, const char* name) {
  coord_Local back;
  transform.CogoGridToLocal (Projected (transform, point), back);
  ExpectNear (back, point, 1e-11, 2e-6, name);
}

TEST_F (Glue, TakesElevationsFromAGeoid) {
  Put ("Beta 99.GGF", Constant (47.25));
  System system = Mercator ().Translated (-600, -70, -420);
  system.mask |= COORDSYS_SetVertAdjustment;
  system.height.HeightType = COORDSYS_GeoidModel;
  system.height.GeoidFilename = "beta 99 of the state";  // near enough for the look-up
  const auto transform = system.Make ();
  ASSERT_TRUE (transform) << system.error;
  const coord_Local point (Degrees (48), Degrees (11), 500);
  const coord_Local outside (Degrees (30), Degrees (11), 500);
  coord_WGS84 wgs84;
  transform->LocalToWGS84 (point, wgs84);
  EXPECT_NEAR (Projected (*transform, point).Elevation, wgs84.Height - 47.25, 1e-9);
  ExpectReturn (*transform, point, "geoid");
  double separation = 0;
  transform->GeoidSeparation (wgs84, separation);
  EXPECT_NEAR (separation, 47.25, 1e-12);
  // Outside the geoid: the ellipsoidal height on the way out, none on the way back.
  const coord_CogoGrid beyond = Projected (*transform, outside);
  EXPECT_EQ (beyond.Elevation, 500);
  coord_Local back;
  transform->CogoGridToLocal (beyond, back);
  EXPECT_NEAR (back.Latitude, outside.Latitude, 1e-11);
  EXPECT_TRUE (back.NullVertical ());
  transform->GeoidSeparation (coord_WGS84 (outside.Latitude, outside.Longitude, null), separation);
  EXPECT_TRUE (maths_IsNull (separation));
  EXPECT_EQ (transform->Clone ()->GetId (), transform->GetId ());
  // A geoid needs the way to WGS84 that a datum says.
  system.mask &= static_cast<uint16_t> (~COORDSYS_SetDatum);
  EXPECT_TRUE (Projected (*system.Make (), point).NullVertical ());
  // The geoid's own plane stands on the elevation.
  system.mask |= COORDSYS_SetDatum;
  system.height = {COORDSYS_GeoidAndPlane, 5e6, 4.4e6, 0, 0, 0.125, "Beta 99"};
  EXPECT_NEAR (Projected (*system.Make (), point).Elevation, wgs84.Height - 47.125, 1e-9);
}

TEST_F (Glue, AssemblesTheSystemOfAJob) {
  Put ("Beta 99.GGF", Constant (47.25));
  JobDatabase job;
  ASSERT_TRUE (job.Create (folder.Device ("lot.job"), "LOT"));
  coordsys_JobSystem system;
  coordsys_Error error = COORDSYS_NoError;
  const auto assemble = [&] (uint32_t options) {
    return coordsys_AssembleJob (*job.Access (), options, system, error);
  };
  // Nothing stored: a plane of scale 1.
  auto transform = assemble (0);
  ASSERT_TRUE (transform);
  EXPECT_EQ (transform->Components, 0);
  EXPECT_EQ (transform->Projection.ProjectionType, COORDSYS_ScaleOnly);
  // A projection of type 0 has no mask bit, but its type counts.
  db_Projection projection;
  projection.ProjectionType = COORDSYS_NoProjection;
  job.AddRecordInGroup (projection);
  transform = assemble (0);
  ASSERT_TRUE (transform);
  EXPECT_EQ (transform->Components, 0);
  EXPECT_EQ (transform->Projection.ProjectionType, COORDSYS_NoProjection);

  db_Ellipsoid ellipsoid;
  ellipsoid.EarthRadius = 6378137;
  ellipsoid.Flattening = 0.0033528106718309905;
  projection.ProjectionType = COORDSYS_TransverseMercator;
  projection.OriginLocal.Lat = projection.OriginLocal.Long = 0.0;
  projection.OriginGrid.North = projection.OriginGrid.East = 0.0;
  projection.Scale = 1.0;
  projection.ShiftGridFile = "shift";
  db_Height height;
  height.HeightType = COORDSYS_GeoidModel;
  height.GeoidFilename = "beta 99 of the state";
  job.AddRecordInGroup (ellipsoid);
  job.AddRecordInGroup (projection);
  job.AddRecordInGroup (height);
  EXPECT_FALSE (assemble (COORDSYS_TolerateMissingFiles));
  EXPECT_EQ (error, COORDSYS_NoProjectHeight);
  EXPECT_TRUE (system.FileNames[COORDSYS_ShiftGridFile].IsEmpty ());
  constexpr uint32_t tolerant = COORDSYS_TolerateMissingFiles | COORDSYS_AllowNoProjectHeight;
  EXPECT_TRUE (assemble (tolerant));
  EXPECT_EQ (error, COORDSYS_FileMissingTolerated);  // the shift grid
  EXPECT_EQ (system.FileNames[COORDSYS_GeoidFile], "beta 99 of the state");
  EXPECT_EQ (system.FileNames[COORDSYS_ShiftGridFile], "shift");
  EXPECT_TRUE (system.IsGeoidRenamed);
  EXPECT_EQ (system.Parts.Height.GeoidFilename, "Beta 99");
  EXPECT_FALSE (assemble (COORDSYS_AllowNoProjectHeight));
  EXPECT_EQ (error, COORDSYS_ShiftGridError);
  // Nothing found: the part has no name, and the record stays.
  height.GeoidFilename = "gamma";
  job.AddRecordInGroup (height);
  EXPECT_TRUE (assemble (tolerant));
  EXPECT_FALSE (system.IsGeoidRenamed);
  EXPECT_TRUE (system.Parts.Height.GeoidFilename.IsEmpty ());
}

TEST_F (Glue, OpensEveryOtherKindOfFile) {
  Put ("shift.sgf", testing::GridPair ("Norvath Projection Shift Grid", Constant (0.25, true),
                                       Constant (-0.5, true)));
  Put ("datum.CDG", testing::CombinedDatumGrid ({Constant (2), Constant (3), Constant (4)}));
  Put ("ukn.pgf", Constant (10, true));
  Put ("uke.pgf", Constant (20, true));
  GridFile latitudes;
  latitudes.latMin = 5e6;
  latitudes.lonMin = 4e6;
  latitudes.latSpacing = latitudes.lonSpacing = 1e5;
  latitudes.rows = latitudes.columns = 11;
  GridFile longitudes = latitudes;
  latitudes.value = [] (int row, int) { return 0.8 + 0.0157 * row; };
  longitudes.value = [] (int, int column) { return 0.1 + 0.0235 * column; };
  Put ("table.pjg", testing::GridPair ("Norvath Combined Projection Grid", latitudes.Bytes (),
                                       longitudes.Bytes ()));
  const coord_Local point (Degrees (48), Degrees (11), 500);
  const coord_CogoGrid bare = Projected (*Mercator ().Make (), point);

  System shift = Mercator ();
  shift.projection.ShiftGridFile = "shift";
  const auto shifted = shift.Make ();
  ASSERT_TRUE (shifted) << shift.error;
  ExpectNear (Projected (*shifted, point), coord_CogoGrid (bare.North + 0.25, bare.East - 0.5, 500),
              1e-8, "shift");
  ExpectReturn (*shifted, point, "shift");

  System datum = Mercator ();
  datum.mask |= COORDSYS_SetDatum;
  datum.datum.DatumType = COORDSYS_GridDatum;
  datum.datum.GridName = "datum";
  const auto gridded = datum.Make ();
  ASSERT_TRUE (gridded) << datum.error;
  coord_Local local;
  coord_WGS84 back;
  gridded->WGS84ToLocal (coord_WGS84 (point.Latitude, point.Longitude, 500), local);
  ExpectNear (local, coord_Local (point.Latitude - Seconds (2), point.Longitude + Seconds (3), 504),
              1e-15, 1e-9, "datum");
  gridded->LocalToWGS84 (local, back);
  EXPECT_NEAR (back.Latitude, point.Latitude, 1e-14);

  System uk =
      System ().On (6377563.396, 299.3249646).Projected (COORDSYS_UnitedKingdomNationalGrid);
  uk.projection.UKNorthGridFile = "ukn";
  uk.projection.UKEastGridFile = "uke";
  const auto national = uk.Make ();
  ASSERT_TRUE (national) << uk.error;
  const coord_Local london (Degrees (51.5), Degrees (-0.1), 30);
  // cct +proj=tmerc +lat_0=49 +lon_0=-2 +k=0.9996012717 +x_0=400000 +y_0=-100000 +ellps=GRS80
  ExpectNear (Projected (*national, london),
              coord_CogoGrid (179685.297834 + 10, 531878.957440 + 20, 30), 1e-3, "UK");
  ExpectReturn (*national, london, "UK");

  System table = Mercator ();
  table.projection.ProjectionType = COORDSYS_ProjectionGrid;
  table.projection.ProjectionGridFile = "table";
  const auto looked = table.Make ();
  ASSERT_TRUE (looked) << table.error;
  looked->CogoGridToLocal (coord_CogoGrid (5.25e6, 4.5e6, 7), local);
  ExpectNear (local, coord_Local (0.8 + 0.0157 * 2.5, 0.1 + 0.0235 * 5, 7), 1e-14, 0, "table");
  ExpectNear (Projected (*looked, local), coord_CogoGrid (5.25e6, 4.5e6, 7), 1e-4, "table");
}

TEST_F (Glue, RefusesAFileThatIsNoGrid) {
  for (const char* name : {"bad.ggf", "bad.CDG", "bad.sgf", "bad.pjg", "bad.pgf"})
    Put (name, "not a grid");
  System geoid = Mercator (), uk = Mercator ();
  geoid.mask |= COORDSYS_SetVertAdjustment;
  geoid.height.HeightType = COORDSYS_GeoidModel;
  geoid.height.GeoidFilename = "bad";
  uk.projection.ProjectionType = COORDSYS_UnitedKingdomNationalGrid;
  uk.projection.UKNorthGridFile = uk.projection.UKEastGridFile = "bad";
  EXPECT_FALSE (geoid.Make ());
  EXPECT_EQ (geoid.error, COORDSYS_GeoidFileError);
  EXPECT_EQ (hearing.TakeLog (),
             (std::vector<std::string>{"Coordinate system file \"bad.ggf\" cannot be used"}));
  geoid.options = COORDSYS_TolerateMissingFiles;
  EXPECT_TRUE (geoid.Make ());
  EXPECT_EQ (geoid.error, COORDSYS_FileMissingTolerated);
  EXPECT_EQ (hearing.TakeLog ().size (), 1u);
  // A national grid that is there and wrong is no missing one.
  uk.options = COORDSYS_TolerateMissingFiles;
  Put ("good.pgf", Constant (10, true));
  uk.projection.UKNorthGridFile = "good";
  EXPECT_FALSE (uk.Make ());
  EXPECT_EQ (uk.error, COORDSYS_FileError);
  EXPECT_EQ (hearing.TakeLog (),
             (std::vector<std::string>{"Coordinate system file \"bad.pgf\" cannot be used"}));
}

TEST_F (Glue, NamesTheFileThatItMisses) {
  System base = System ().OnBessel ().Projected (COORDSYS_TransverseMercator, 0, 12, 0, 0);
  System geoid = base, datum = base, shift = base, uk = base, table = base;
  geoid.mask |= COORDSYS_SetVertAdjustment;
  geoid.height.HeightType = COORDSYS_GeoidModel;
  geoid.height.GeoidFilename = "EGM";
  datum.mask |= COORDSYS_SetDatum;
  datum.datum.DatumType = COORDSYS_GridDatum;
  datum.datum.GridName = "sub\\BETA";
  shift.projection.ShiftGridFile = "C:shift";
  uk.projection.ProjectionType = COORDSYS_UnitedKingdomNationalGrid;
  uk.projection.UKNorthGridFile = "ukn";
  table.projection.ProjectionType = COORDSYS_ProjectionGrid;
  table.projection.ProjectionGridFile = "table";
  const struct {
    System* system;
    coordsys_Options skip;
    coordsys_Error error;
    std::vector<std::string> log;
  } cases[] = {
      {&geoid, COORDSYS_SkipGeoidFile, COORDSYS_GeoidFileError, {"\"EGM.ggf\""}},
      {&datum, COORDSYS_SkipDatumGrid, COORDSYS_DatumGridError, {"\"sub\\BETA.CDG\""}},
      {&shift, COORDSYS_SkipShiftGrid, COORDSYS_ShiftGridError, {"\"C:shift.sgf\""}},
      {&uk, COORDSYS_SkipUKGridFiles, COORDSYS_UKGridError, {"\"ukn.pgf\"", "\".pgf\""}},
      {&table, COORDSYS_SkipProjectionGrid, COORDSYS_ProjectionGridError, {"\"table.pjg\""}},
  };
  for (const auto& c : cases) {
    c.system->options = 0;
    EXPECT_FALSE (c.system->Make ());
    EXPECT_EQ (c.system->error, c.error);
    EXPECT_EQ (hearing.TakeLog (),
               (std::vector<std::string>{"Coordinate system file " + c.log[0] + " is missing"}));
    c.system->options = COORDSYS_TolerateMissingFiles;
    const auto tolerant = c.system->Make ();
    ASSERT_TRUE (tolerant);
    EXPECT_EQ (c.system->error, COORDSYS_FileMissingTolerated);
    EXPECT_EQ (hearing.TakeLog ().size (), c.log.size ());
    c.system->options = c.skip;
    const auto skipping = c.system->Make ();
    ASSERT_TRUE (skipping);
    EXPECT_EQ (c.system->error, COORDSYS_NoError);
    EXPECT_TRUE (hearing.TakeLog ().empty ());
    coord_CogoGrid a, b;
    tolerant->LocalToCogoGrid (coord_Local (0.8, 0.2, 5), a);
    skipping->LocalToCogoGrid (coord_Local (0.8, 0.2, 5), b);
    EXPECT_EQ (a.North, b.North);
    EXPECT_EQ (a.IsNull (), c.system == &uk || c.system == &table);
  }
}

}  // namespace
}  // namespace clxml
