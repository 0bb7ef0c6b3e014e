// The transform: identity, assembly and its errors, both roads through all stages.
// Grid coordinates by PROJ 9.1.1 (cct) stand beside the definition they were asked with. Leans on
// GoogleTest.
#include "Library/coordsys/transfrm.h"

#include <cmath>
#include <limits>

#include "Library/coordsys/system.h"
#include "Library/job/dbJob.h"
#include "Library/records/dbCoordSystems.h"
#include "support/hearing.h"

namespace clxml {
namespace {

using testing::Degrees;
using testing::ExpectNear;
using testing::Hearing;
using testing::null;
using testing::Seconds;
using testing::System;

System GaussKrueger () {
  return System ().OnBessel ().SevenParameters ().Projected (COORDSYS_TransverseMercator, 0, 12, 0,
                                                             4500000);
}

// The zones of UTM, two parallels, the oblique Mercators, Krovak and the whole way with a datum are
// tried through the tool.
TEST (Transform, MapsProjectionsToTheBlock) {
  const Hearing hearing;
  const struct {
    const char* definition;
    System system;
    double latitude, longitude;
    double north, east;
  } cases[] = {
      {"+proj=lcc +lat_1=18 +lat_0=18 +lon_0=-77 +x_0=250000 +y_0=150000 +ellps=clrk66",
       System ()
           .On (6378206.4, 294.9786982138982)
           .Projected (COORDSYS_Lambert1Parallel, 18, -77, 150000, 250000),
       18.2, -77, 172135.175036, 250000},
      {"+proj=somerc +lat_0=46.95240555555556 +lon_0=7.439583333333333 +x_0=2600000 +y_0=1200000",
       System ().OnBessel ().Projected (COORDSYS_ObliqueConformalCylindrical, 46.95240555555556,
                                        7.439583333333333, 1200000, 2600000),
       47.06, 8.486, 1212490.479230, 2679485.260585},
      {"+proj=stere +lat_0=90 +lat_ts=90 +k=0.994 +x_0=2000000 +y_0=2000000 +ellps=WGS84",
       System ().OnWGS84 ().Projected (COORDSYS_UPSNorth), 84.3, 44, 1544415.420912,
       2439952.914000},
      {"+proj=stere +lat_0=-90 +k=0.994 +x_0=2000000 +y_0=2000000 +ellps=WGS84",
       System ().OnWGS84 ().Projected (COORDSYS_UPSSouth), -84.3, -44, 2455584.579088,
       1560047.086000},
      {"+proj=aea +lat_1=29.5 +lat_2=45.5 +lat_0=23 +lon_0=-96 +x_0=10 +y_0=20 +ellps=GRS80",
       System ()
           .OnGRS80 ()
           .Projected (COORDSYS_AlbersEqualAreaConic, 23, -96, 20, 10, 2.0)
           .Oriented (29.5, 45.5),
       38, -96.5, 1662959.169935, -43480.454364},
      {"+proj=merc +lon_0=110 +k=0.997 +x_0=3900000 +y_0=900000 +ellps=bessel",
       System ().OnBessel ().Projected (COORDSYS_Mercator, 0, 110, 900000, 3900000, 0.997), -3, 100,
       569150.818614, 2790273.416721},
      {"+proj=sterea +lat_0=52.156160556 +lon_0=5.387638889 +k=0.9999079 +x_0=155000 +y_0=463000",
       System ().OnBessel ().Projected (COORDSYS_StereographicDouble, 52.156160556, 5.387638889,
                                        463000, 155000, 0.9999079),
       53, 6, 557057.739339, 196105.282985},
      {"+proj=stere +lat_0=52.156160556 +lon_0=5.387638889 +k=0.9999079 +x_0=155000 +y_0=463000",
       System ().OnBessel ().Projected (COORDSYS_ObliqueStereographic, 52.156160556, 5.387638889,
                                        463000, 155000, 0.9999079),
       53, 6, 557059.562174, 196107.255742},
      {"+proj=nzmg", System ().On (6378388.0, 297.0).Projected (COORDSYS_NewZealandMapGrid), -41.2,
       174.7, 5999551.260358, 2652582.269153},
  };
  for (auto c : cases) {
    const std::unique_ptr<Transform> transform = c.system.Make ();
    ASSERT_TRUE (transform) << c.definition << " " << c.system.error;
    const coord_Local point (Degrees (c.latitude), Degrees (c.longitude), 123.5);
    coord_CogoGrid grid;
    coord_Local back;
    transform->LocalToCogoGrid (point, grid);
    ExpectNear (grid, coord_CogoGrid (c.north, c.east, 123.5), 1e-3, c.definition);
    transform->CogoGridToLocal (grid, back);
    ExpectNear (back, point, 2e-10, 1e-9, c.definition);
  }
}

TEST (Transform, AppliesTheCalibrationOnTheUncalibratedRoadOnly) {
  const Hearing hearing;
  for (const coordsys_GridOrientation facing :
       {COORDSYS_IncreasingNorthEast, COORDSYS_IncreasingSouthWest}) {
    System plain = GaussKrueger ().Facing (facing);
    System system = plain;
    // The records stand in the job's grid, whose origin is the false one.
    const bool isTurned = facing == COORDSYS_IncreasingSouthWest;
    system.Calibrated (isTurned ? -5329000 : 5329000, isTurned ? 4537000 : 4463000);
    if (isTurned) {
      system.plane.TranslationNorth *= -1;
      system.plane.TranslationEast *= -1;
      system.height.NorthAdjustment *= -1;
      system.height.EastAdjustment *= -1;
    }
    const auto transform = system.Make (), raw = plain.Make ();
    ASSERT_TRUE (transform && raw);
    const coord_Local local (Degrees (48.1), Degrees (11.5), 500);
    coord_CogoGrid bare, calibrated, uncalibrated;
    raw->LocalToCogoGrid (local, bare);
    transform->LocalToCogoGrid (local, calibrated);
    transform->UncalibratedLocalToCogoGrid (local, uncalibrated);
    const double n = bare.North - 5329000, e = bare.East - 4463000, r = Seconds (30);
    const coord_CogoGrid turned (5329000 + 1.25 + 1.00002 * (n * std::cos (r) - e * std::sin (r)),
                                 4463000 - 0.75 + 1.00002 * (e * std::cos (r) + n * std::sin (r)),
                                 null);
    const auto raised = [] (const coord_CogoGrid& at) {
      return 500 + 0.4 + 2e-5 * (at.North - 5329000) - 1e-5 * (at.East - 4463000);
    };
    ExpectNear (calibrated, coord_CogoGrid (bare.North, bare.East, raised (bare)), 1e-8, "local");
    ExpectNear (uncalibrated, coord_CogoGrid (turned.North, turned.East, raised (turned)), 1e-8,
                "uncalibrated");
    coord_CogoGrid alone = bare;
    transform->ApplyHorizontalAdjustment (alone);
    ExpectNear (alone, coord_CogoGrid (turned.North, turned.East, 500), 1e-8, "horizontal alone");
    alone = bare;
    transform->ApplyVerticalAdjustment (alone);
    ExpectNear (alone, calibrated, 1e-8, "vertical alone");
    coord_Local back;
    transform->CogoGridToLocal (calibrated, back);
    ExpectNear (back, local, 1e-14, 1e-8, "back");
    transform->CogoGridToUncalibratedLocal (uncalibrated, back);
    ExpectNear (back, local, 1e-14, 1e-8, "uncalibrated back");
  }
}

TEST (Transform, ConvertsNothingWithoutItsParts) {
  Hearing hearing;
  System bare;
  bare.mask = COORDSYS_SetCorrections;
  bare.options = COORDSYS_SkipAllFiles;
  System broken = GaussKrueger ();
  broken.Calibrated (0, 0).plane.Rotation = null;
  const auto corrections = bare.Make (), failed = GaussKrueger ().Make ();
  ASSERT_TRUE (corrections && failed);
  EXPECT_FALSE (broken.Set (*failed, broken.mask));
  EXPECT_EQ (broken.error, COORDSYS_InternalError);
  const Transform empty;
  for (const Transform* transform : {static_cast<const Transform*> (failed.get ()), &empty,
                                     static_cast<const Transform*> (corrections.get ())}) {
    const bool copies = transform == corrections.get ();
    coord_Local local (1, 1, 1);
    coord_CogoGrid grid (1, 2, 3);
    coord_WGS84 wgs84 (1, 1, 1);
    double separation = 0;
    transform->WGS84ToLocal (coord_WGS84 (0.5, 0.25, 9), local);
    EXPECT_EQ (local.Height, copies ? 9 : null);  // code 0 copies
    transform->LocalToWGS84 (coord_Local (0.5, 0.25, 9), wgs84);
    EXPECT_EQ (wgs84.Latitude, copies ? 0.5 : null);
    transform->LocalToWGS84 (coord_Local (0.5, 0.25, null), wgs84);
    EXPECT_TRUE (wgs84.IsNull ());
    transform->LocalToCogoGrid (coord_Local (0.5, 0.25, 9), grid);
    EXPECT_TRUE (grid.IsNull ());
    transform->CogoGridToUncalibratedLocal (coord_CogoGrid (1, 2, 3), local);
    EXPECT_TRUE (local.IsNull ());
    transform->GeoidSeparation (coord_WGS84 (0.5, 0.25, 9), separation);
    EXPECT_TRUE (maths_IsNull (separation));
    coord_CorrectedGrid shown (7, 8, 9);
    transform->CogoGridToGrid (coord_CogoGrid (1, 2, 3), shown);
    EXPECT_EQ (shown, copies ? coord_CorrectedGrid (1, 2, 3) : coord_CorrectedGrid ());
    transform->GridToCogoGrid (coord_CorrectedGrid (1, 2, 3), grid);
    EXPECT_EQ (grid.Elevation, copies ? 3 : null);
  }
  // What is absent or no number goes through no stage.
  const auto whole = GaussKrueger ().Make ();
  constexpr double inf = std::numeric_limits<double>::infinity ();
  coord_CogoGrid grid;
  coord_Local local;
  for (const coord_Local& source :
       {coord_Local (null, null, 3), coord_Local (0.8, null, 3), coord_Local (0.8, inf, 3)}) {
    whole->LocalToCogoGrid (source, grid);
    EXPECT_TRUE (grid.IsNull ());
  }
  whole->LocalToCogoGrid (coord_Local (0.8, 0.2, null), grid);
  EXPECT_FALSE (grid.NullHorizontal ());
  EXPECT_TRUE (grid.NullVertical ());
  whole->CogoGridToLocal (coord_CogoGrid (5e6, null, 3), local);
  EXPECT_TRUE (local.IsNull ());
  whole->WGS84ToLocal (coord_WGS84 (0.8, 0.2, null), local);
  EXPECT_TRUE (local.IsNull ());  // seven parameters need a height, three do not
  const auto abridged = System ().OnBessel ().Translated (-600, -70, -420).Make ();
  abridged->WGS84ToLocal (coord_WGS84 (0.8, 0.2, null), local);
  EXPECT_FALSE (local.NullHorizontal ());
  EXPECT_TRUE (local.NullVertical ());
}

TEST (Transform, RefusesNumbersThatCannotBe) {
  const Hearing hearing;
  constexpr double inf = std::numeric_limits<double>::infinity ();
  const struct {
    const char* name;
    void (*spoil) (System&);
  } cases[] = {
      {"no ellipsoid", [] (System& s) { s.ellipsoid = coordsys_Ellipsoid (); }},
      {"axis", [] (System& s) { s.ellipsoid = coordsys_Ellipsoid (inf, 0.003); }},
      {"flattening", [] (System& s) { s.ellipsoid = coordsys_Ellipsoid (6378137, 1.5); }},
      {"translation", [] (System& s) { s.datum.TranslationX = inf; }},
      {"rotation", [] (System& s) { s.datum.RotationZ = null; }},
      {"datum scale", [] (System& s) { s.datum.Scale = 0; }},
      {"three parameters", [] (System& s) { s.Translated (1, 2, -inf); }},
      {"origin", [] (System& s) { s.projection.OriginLocal.Longitude = inf; }},
      {"false origin", [] (System& s) { s.projection.OriginGrid.North = -inf; }},
      {"Mercator of a pole", [] (System& s) { s.Projected (COORDSYS_Mercator, 90, 0, 0, 0); }},
      {"plane", [] (System& s) { s.plane.TranslationEast = inf; }},
      {"plane scale", [] (System& s) { s.plane.ScaleFactor = 0; }},
      {"slope", [] (System& s) { s.height.EastAdjustment = inf; }},
      {"ground scale",
       [] (System& s) {
         s.Grounded (COORDSYS_KeyedInGroundScaleFactor, inf, coord_Local (0.8, 0.2, 0));
       }},
  };
  for (const auto& c : cases) {
    System system = GaussKrueger ().Calibrated (0, 0);
    ASSERT_TRUE (system.Make ()) << c.name;
    c.spoil (system);
    EXPECT_FALSE (system.Make ()) << c.name;
    EXPECT_EQ (system.error, COORDSYS_InternalError) << c.name;
  }
  // A scale of 0 leaves nothing to convert.
  for (const coordsys_ProjectionType type :
       {COORDSYS_Plane, COORDSYS_Mercator, COORDSYS_TransverseMercator, COORDSYS_Lambert1Parallel,
        COORDSYS_ObliqueMercatorAngle, COORDSYS_ObliqueConformalCylindrical,
        COORDSYS_ObliqueStereographic, COORDSYS_PolarStereographic, COORDSYS_CassiniSoldner,
        COORDSYS_StereographicDouble, COORDSYS_RSO}) {
    const auto transform =
        System ().OnBessel ().Projected (type, 47, 12, 0, 0, 0.0).Oriented (30).Make ();
    ASSERT_TRUE (transform) << type;
    coord_CogoGrid grid (1, 2, 3);
    coord_Local local (1, 2, 3);
    transform->LocalToCogoGrid (coord_Local (0.8, 0.2, 5), grid);
    transform->CogoGridToLocal (coord_CogoGrid (10, 20, 5), local);
    EXPECT_TRUE (grid.IsNull () && local.IsNull ()) << type;
    EXPECT_TRUE (maths_IsNull (transform->GroundScaleAt (coord_Local (0.8, 0.2, 5)))) << type;
  }
}

TEST (Transform, TurnsTheAxesOfTheGrid) {
  const Hearing hearing;
  const struct {
    coordsys_GridOrientation facing;
    double north, east;
    double azimuth;  // of 0.5 with azimuths from north
  } cases[] = {
      {COORDSYS_IncreasingNorthEast, 1100 - 3, 520 - 7, 0.5},
      {COORDSYS_IncreasingSouthWest, 900 - 3, 480 - 7, 0.5 + CONSTANT_Pi},
      {COORDSYS_IncreasingNorthWest, 1100 - 3, 480 - 7, 0.5},
      {COORDSYS_IncreasingSouthEast, 900 - 3, 520 - 7, 0.5 + CONSTANT_Pi},
  };
  for (const auto& c : cases) {
    System system = System ().OnWGS84 ().Projected (COORDSYS_TransverseMercator, 0, 9, 1000, 500);
    system.Facing (c.facing).corrections.SouthAzimuth = true;
    system.projection.GroundScale.NorthingOffset = 3;
    system.projection.GroundScale.EastingOffset = 7;
    const auto transform = system.Make ();
    ASSERT_TRUE (transform);
    coord_CorrectedGrid grid;
    coord_CogoGrid back;
    transform->CogoGridToGrid (coord_CogoGrid (1100, 520, 33), grid);
    EXPECT_EQ (grid, coord_CorrectedGrid::FromNorthEastElevation (c.north, c.east, 33)) << c.facing;
    transform->GridToCogoGrid (grid, back);
    ExpectNear (back, coord_CogoGrid (1100, 520, 33), 0, "back");
    transform->CogoGridToGrid (coord_CogoGrid (1000, 500, null), grid);
    EXPECT_EQ (grid, coord_CorrectedGrid (997, 493, null)) << "the origin stands";
    transform->CogoGridToGrid (coord_CogoGrid (null, 500, null), grid);
    EXPECT_TRUE (maths_IsNull (grid.North) && grid.East == 493);
    EXPECT_NEAR (Transform::AzimuthCorrected (c.facing, false, 0.5), c.azimuth, 1e-15);
    EXPECT_NEAR (Transform::AzimuthCorrected (c.facing, true, 0.5),
                 coord_NormaliseTwoPi (c.azimuth + CONSTANT_Pi), 1e-15);
    double northAzimuth = 0;
    coordsys_GridOrientation orientation{};
    transform->GetAzimuthCorrection (northAzimuth, orientation);
    EXPECT_EQ (northAzimuth, CONSTANT_Pi);
    EXPECT_EQ (orientation, c.facing);
    const coordsys_Height height =
        transform->ConvertHeightToGrid ({COORDSYS_InclinedPlane, 1100, 520, 1e-3, 2e-3, 0.1, ""});
    EXPECT_EQ (height.OriginNorth, c.north);
    EXPECT_EQ (height.NorthAdjustment, c.north > 1000 ? 1e-3 : -1e-3);
    EXPECT_EQ (height.EastAdjustment, c.east > 500 ? 2e-3 : -2e-3);
    EXPECT_EQ (transform->ConvertHeightToCogo (height).OriginEast, 520);
    const coordsys_Plane plane =
        transform->ConvertPlaneToCogo ({COORDSYS_ValidHorizontal, c.north, c.east, 1, 2, 0.1, 1});
    EXPECT_EQ (plane.OriginNorth, 1100);
    EXPECT_EQ (plane.TranslationNorth, c.north > 1000 ? 1 : -1);
    EXPECT_EQ (transform->ConvertPlaneToGrid (plane).TranslationEast, 2);
  }
  EXPECT_TRUE (maths_IsNull (Transform::AzimuthCorrected (COORDSYS_IncreasingSouthWest, 1, null)));
}

TEST (Transform, HasAnIdentityOfItsOwn) {
  Hearing hearing;
  System system = GaussKrueger ();
  const auto transform = system.Make (), other = GaussKrueger ().Make ();
  ASSERT_TRUE (transform && other);
  EXPECT_NE (transform->GetId (), other->GetId ());
  EXPECT_NE (transform->GetId (), TRANSFORM_NoId);
  const auto clone = transform->Clone ();
  ASSERT_TRUE (clone);
  EXPECT_EQ (clone->GetId (), transform->GetId ());
  coord_CogoGrid grid, cloned;
  transform->LocalToCogoGrid (coord_Local (0.84, 0.2, 5), grid);
  clone->LocalToCogoGrid (coord_Local (0.84, 0.2, 5), cloned);
  ExpectNear (cloned, grid, 0, "clone");
  // A second Set with one bit replaces that part and keeps the rest.
  system.projection.OriginGrid.East = 3500000;
  const auto changed =
      transform->CloneAndChange (COORDSYS_SetProjection, nullptr, &system.projection, nullptr,
                                 nullptr, nullptr, nullptr, 0, &system.error);
  ASSERT_TRUE (changed);
  EXPECT_NE (changed->GetId (), transform->GetId ());
  EXPECT_EQ (changed->Components, transform->Components);
  changed->LocalToCogoGrid (coord_Local (0.84, 0.2, 5), cloned);
  ExpectNear (cloned, coord_CogoGrid (grid.North, grid.East - 1e6, grid.Elevation), 1e-8, "change");
  const uint32_t before = transform->GetId ();
  EXPECT_FALSE (
      transform->Set (127, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0, &system.error));
  EXPECT_NE (transform->GetId (), before);
  EXPECT_EQ (system.error, COORDSYS_InternalError);
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"ellipsoid != NULL", "corrections != NULL", "datum != NULL",
                                       "height != NULL", "plane != NULL", "projection != NULL"}));
  EXPECT_TRUE (transform->Clone ());  // without a block, as its source
  // Nothing is taken of what comes without the rest.
  const coordsys_Ellipsoid unit (1, 0.1);
  EXPECT_FALSE (transform->Set (COORDSYS_SetEllipsoid | COORDSYS_SetProjection, &unit, nullptr,
                                nullptr, nullptr, nullptr, nullptr, 0, &system.error));
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"projection != NULL"});
  EXPECT_EQ (transform->Ellipsoid.EarthRadius, system.ellipsoid.EarthRadius);
  system.projection.ProjectionType = static_cast<coordsys_ProjectionType> (99);
  EXPECT_FALSE (system.Make ());
  EXPECT_EQ (system.error, COORDSYS_InternalError);
  system.projection.ProjectionType = COORDSYS_Denmark;
  const Transform denmark (system.mask, &system.ellipsoid, &system.projection, &system.datum,
                           nullptr, nullptr, nullptr, 0);
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"projection.Area != COORDSYS_AreaNone",
                                       "error == COORDSYS_NoError"}));
}

TEST (Transform, ScalesToTheGroundAboutTheProject) {
  const Hearing hearing;
  const coord_Local project (Degrees (47), Degrees (12.9), 1800);
  System plain = System ().OnBessel ().Projected (COORDSYS_TransverseMercator, 0, 12, 0, 4500000);
  System scaled = plain;
  scaled.Grounded (COORDSYS_CalculatedGroundScaleFactor, 5.0, project);
  const auto raw = plain.Make (), ground = scaled.Make ();
  ASSERT_TRUE (raw && ground);
  const double k = ground->Projection.GroundScale.Factor;
  EXPECT_NEAR (k, raw->GroundScaleAt (project), 1e-15);
  // Scale of the projection by PROJ (proj -V +proj=tmerc +lon_0=12 +ellps=bessel), 1800 m over the
  // prime vertical radius.
  EXPECT_NEAR (k, (1 + 1800 / 6388811.304) / 1.00005756, 1e-8);
  EXPECT_NEAR (ground->GroundScaleAt (project), 1.0, 1e-12) << "the scaled grid is the ground";
  coord_CogoGrid onGrid, onGround;
  raw->LocalToCogoGrid (project, onGrid);
  ground->LocalToCogoGrid (project, onGround);
  ExpectNear (onGround, onGrid, 1e-8, "touches at the project");
  EXPECT_NEAR (ground->Projection.GroundScale.NorthingDelta, onGrid.North * (k - 1), 1e-6);
  const coord_Local away (Degrees (47.01), Degrees (12.89), 1700);
  coord_CogoGrid awayOnGrid, awayOnGround;
  raw->LocalToCogoGrid (away, awayOnGrid);
  ground->LocalToCogoGrid (away, awayOnGround);
  EXPECT_NEAR (awayOnGround.North - onGround.North, k * (awayOnGrid.North - onGrid.North), 1e-8);
  coord_Local back;
  ground->CogoGridToLocal (awayOnGround, back);
  ExpectNear (back, away, 1e-14, 1e-9, "back");
  // The origin of a calibration follows the ground grid.
  scaled.Calibrated (onGround.North, onGround.East);
  const auto calibrated = scaled.Make ();
  calibrated->UncalibratedLocalToCogoGrid (project, onGround);
  ExpectNear (onGround, coord_CogoGrid (onGrid.North + 1.25, onGrid.East - 0.75, 1800.4), 1e-4,
              "calibration origin");

  const struct {
    const char* name;
    coordsys_GroundScaleFactorType type;
    double factor;
    coord_Local at;
    double expected;
    double inBlock;
  } cases[] = {
      {"no project height", COORDSYS_CalculatedGroundScaleFactor, 2, coord_Local (0.8, 0.2, null),
       null, 1},
      {"no location", COORDSYS_CalculatedGroundScaleFactor, 2, coord_Local (), null, 1},
      {"keyed in", COORDSYS_KeyedInGroundScaleFactor, 1.5, coord_Local (), 1.5, 1.5},
      {"never given", COORDSYS_GridScaleFactor, 0, coord_Local (), 0, 1},
  };
  for (const auto& c : cases) {
    System system = plain;
    const auto transform = system.Grounded (c.type, c.factor, c.at).Make ();
    ASSERT_TRUE (transform) << c.name;
    EXPECT_EQ (transform->Projection.GroundScale.Factor, c.expected) << c.name;
    transform->LocalToCogoGrid (away, awayOnGround);
    EXPECT_NEAR (awayOnGround.North, c.inBlock * awayOnGrid.North, 1e-8) << c.name;
  }
  System scale = System ().OnBessel ().Projected (COORDSYS_ScaleOnly, 0, 0, 0, 0, 0.9997);
  EXPECT_EQ (scale.Make ()->GroundScaleAt (coord_Local ()), 0.9997);
  EXPECT_TRUE (maths_IsNull (raw->GroundScaleAt (coord_Local (0.8, 0.2, null))));
  EXPECT_EQ (ground->GroundScaleAt (coord_Local (project.Latitude, project.Longitude, null)),
             ground->GroundScaleAt (project));
}

TEST (Transform, TakesItsPartsFromTheNewestRecordsOfAJob) {
  const Hearing hearing;
  const testing::TemporaryFolder folder;
  JobDatabase job;
  ASSERT_TRUE (job.Create (folder.Device ("lot.job"), "LOT"));
  EXPECT_EQ (coordsys_PartsOf (*job.Access ()).Components, 0);
  db_Ellipsoid ellipsoid;
  db_Projection projection;
  db_Datum datum;
  db_Plane plane;
  db_Height height;
  db_Corrections corrections;
  const auto add = [&job] (auto&... records) { (job.AddRecordInGroup (records), ...); };
  add (ellipsoid, projection, datum, plane, height, corrections);
  // A new projection is a scale, and the ellipsoid lacks its numbers.
  EXPECT_EQ (coordsys_PartsOf (*job.Access ()).Components,
             COORDSYS_SetProjection | COORDSYS_SetScaleOnly | COORDSYS_SetCorrections);
  ellipsoid.EarthRadius = 6378000;
  ellipsoid.Flattening = 0.00335;
  projection.ProjectionType = COORDSYS_Lambert2Parallel;
  projection.OriginGrid.North = 10;
  projection.OriginGrid.East = 20;
  projection.OriginGrid.Elev = 30;
  projection.GroundScale.ProjectLocation.Height = 700;
  datum.DatumType = COORDSYS_GridDatum;
  datum.GridName = "grid";
  plane.PlaneType = COORDSYS_ValidHorizontal;
  plane.ScaleFactor = 1.5;
  height.HeightType = COORDSYS_GeoidAndPlane;
  height.ElevAdjustment = 4;
  add (ellipsoid, projection, datum, plane, height, corrections);
  const coordsys_Parts parts = coordsys_PartsOf (*job.Access ());
  EXPECT_EQ (parts.Components, 1 + 2 + 4 + 8 + 16 + 32);
  EXPECT_EQ (parts.Options, uint32_t (COORDSYS_UsesDatumGrid | COORDSYS_UsesGeoidFile));
  EXPECT_EQ (parts.Ellipsoid.EarthRadius, 6378000);
  EXPECT_EQ (parts.Projection.OriginGrid, coord_CorrectedGrid (10, 20, 30));
  EXPECT_EQ (parts.Projection.GroundScale.ProjectLocation.Height, 700);
  EXPECT_EQ (parts.Datum.GridName, "grid");
  EXPECT_EQ (parts.Plane.ScaleFactor + parts.Height.ElevAdjustment, 5.5);
}

TEST (Transform, TellsTheFramesOfComputations) {
  const struct {
    coordsys_CogoDistance distances;
    unsigned components;
    coordsys_ProjectionType type;
    unsigned expected;
  } cases[] = {
      {COORDSYS_GridDistance, 4, COORDSYS_Lambert1Parallel, 4 + 32 + 128 + 2048},
      {COORDSYS_EllipsoidDistance, 6, COORDSYS_Lambert1Parallel, 4 + 16 + 128 + 1024},
      {COORDSYS_GroundDistance, 6 + 16, COORDSYS_Lambert1Parallel, 4 + 16 + 64 + 2048},
      {COORDSYS_GroundDistance, 6 + 64, COORDSYS_ScaleOnly, 4 + 16 + 64 + 2048},
  };
  for (const auto& k : cases) {
    coordsys_Corrections set;
    set.Distances = k.distances;
    EXPECT_EQ (coordsys_CogoSystemOf (set, static_cast<uint16_t> (k.components), k.type),
               k.expected);
  }
}

}  // namespace
}  // namespace clxml
