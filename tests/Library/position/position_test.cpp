// Positions: the forms that values give, the change of transform, and the ways through a job.
// The job of these tests is in smalljob.h.
#include "Library/position/position.h"

#include <cmath>
#include <functional>
#include <string>

#include "Library/position/reduce.h"
#include "Library/position/smalljob.h"

namespace {

using namespace clxml;
using namespace clxml::testing;

TEST (Position, GivesWhatOneTransformAllowsAndNothingElse) {
  const Hearing hearing;
  const auto zone = Zone33 (), plain = CorrectionsAlone ();
  const coord_WGS84 vienna (48.2 * degree, 16.37 * degree, 210.0);
  position wgs84, grid;
  wgs84.LoadFromWGS84 (vienna, plain.get ());
  EXPECT_TRUE (wgs84.GetGrid (*plain).IsNull ());
  EXPECT_NE (wgs84.Attempted & POSITION_DoneGrid, 0u);  // and is not tried again

  grid.LoadFromGrid (wgs84.GetGrid (*zone));
  EXPECT_EQ (grid.TransformId, 0xFFFFFFFFu);
  EXPECT_NEAR (grid.Grid.East, 601800.0, 1000.0);
  EXPECT_NEAR (grid.Grid.North, 5339400.0, 1000.0);

  // Each form that any of them gives leads back to the same point.
  const coord_ECEF centre = vienna.ToECEF (coordsys_WGS84Ellipsoid ());
  using Load = std::function<void (position&)>;
  const std::pair<const char*, Load> loads[] = {
      {"grid", [&] (position& p) { p.LoadFromGrid (grid.Grid); }},
      {"cogo grid", [&] (position& p) { p.LoadFromCogoGrid (grid.GetCogoGrid (*zone), *zone); }},
      {"local", [&] (position& p) { p.LoadFromLocal (grid.GetLocal (*zone)); }},
      {"uncalibrated",
       [&] (position& p) { p.LoadFromUncalibratedLocal (wgs84.GetUncalibratedLocal (*zone)); }},
      {"ground", [&] (position& p) { p.LoadFromECEFGround (coord_ECEFGround (centre)); }},
      {"antenna",
       [&] (position& p) {
         coord_WGS84 raised = vienna;
         raised.Height += 1.8;
         p.LoadFromECEF (raised.ToECEF (coordsys_WGS84Ellipsoid ()));
         p.SetAntenna (1.8);
       }},
  };
  for (const auto& [name, load] : loads) {
    SCOPED_TRACE (name);
    position p;
    load (p);
    const coord_WGS84 back = p.GetWGS84 (*zone);
    EXPECT_NEAR (back.Latitude, vienna.Latitude, 1e-11);
    EXPECT_NEAR (back.Longitude, vienna.Longitude, 1e-11);
    EXPECT_NEAR (back.Height, vienna.Height, 1e-6);
    EXPECT_TRUE (p.GetGrid (*zone).IsCloseTo (grid.Grid, 1e-5));
    EXPECT_NEAR (p.GetECEFGround (*zone).X, centre.X, 1e-5);
    // A phase centre needs an antenna; differences need a base.
    EXPECT_EQ (p.GetECEF (*zone).IsNull (), std::string ("antenna") != name);
    EXPECT_TRUE (p.GetGridDeltas (*zone).IsNull ());
    EXPECT_TRUE (p.GetPolar (*zone).IsNull ());
  }
  position nothing;
  EXPECT_TRUE (nothing.GetGrid (*zone).IsNull ());
  EXPECT_TRUE (maths_IsNull (nothing.GetAntennaHeight ()));
}

TEST (Position, TakesOneLocalForTheOtherWithoutAProjection) {
  const Hearing hearing;
  const coordsys_Datum datum;
  Transform datumAlone (COORDSYS_SetEllipsoid | COORDSYS_SetDatum, &coordsys_WGS84Ellipsoid (),
                        nullptr, &datum, nullptr, nullptr, nullptr, 0);
  position p;
  p.LoadFromWGS84 ({0.8, 0.2, 10.0});
  EXPECT_NEAR (p.GetLocal (datumAlone).Latitude, 0.8, 1e-9);
  p.LoadFromLocal ({0.8, 0.2, 10.0});
  EXPECT_EQ (p.GetUncalibratedLocal (datumAlone).Latitude, 0.8);
  EXPECT_NEAR (p.GetWGS84 (datumAlone).Height, 10.0, 1e-6);
}

TEST (Position, DropsItsDerivedFormsWithTheTransform) {
  const Hearing hearing;
  const auto zone = Zone33 (), plain = CorrectionsAlone (COORDSYS_IncreasingSouthWest);
  position p;
  p.LoadFromGrid ({5340000.0, 600000.0, 200.0}, zone.get ());
  p.SetAntenna (1.5);
  EXPECT_FALSE (p.GetLocal (*zone).IsNull ());
  p.SetTransform (*plain);
  EXPECT_TRUE (p.Local.IsNull ());
  EXPECT_EQ (p.Status, POSITION_DoneGrid | POSITION_DoneAntenna);
  EXPECT_EQ (p.GetGrid (*plain).North, 5340000.0);
  EXPECT_EQ (p.GetCogoGrid (*plain).North, -5340000.0);
  EXPECT_EQ (p.Antenna, 1.5);

  // What stays beside the bits is what the stored form brought along.
  position mean;
  mean.LoadFromMTA ({0.1, 1.5, 20.0}, zone.get ());
  mean.SetTransform (*plain);
  EXPECT_EQ (mean.GetMTA (*plain).EDMDistance, 20.0);
  EXPECT_EQ (mean.Circle.Face, COORD_Face1);
  EXPECT_TRUE (mean.GetCircle (*plain).IsNull ());
  EXPECT_TRUE (mean.GetUnturned (*plain).IsNull ());
}

TEST (Position, MeasuresConvergenceWAndEllipsoids) {
  const Hearing hearing;
  const auto zone = Zone33 ();
  for (const double longitude : {12.0, 15.0, 17.5}) {
    position p;
    const coord_Local local (47.0 * degree, longitude * degree, 500.0);
    p.LoadFromLocal (local, zone.get ());
    // Thomas, Conformal Projections (1952), the convergence of the transverse Mercator to the third
    // power of the longitude; the line of 100 m bends by less than the tolerance.
    const double d = (longitude - 15.0) * degree, c = std::cos (local.Latitude);
    const double eta2 = 0.0067394967423 * c * c;
    const double gamma = d * std::sin (local.Latitude) *
                         (1.0 + d * d * c * c / 3.0 * (1.0 + 3.0 * eta2 + 2.0 * eta2 * eta2));
    EXPECT_NEAR (p.GetConvergence (*zone), -gamma, 1e-6) << longitude;
    const double s = std::sin (local.Latitude);
    EXPECT_NEAR (p.GetLocalW (*zone), std::sqrt (1.0 - 0.006694380004260827 * s * s), 1e-13);
    const auto ground = COORDSYS_CogoDistanceLocal | COORDSYS_CogoGroundDistances;
    EXPECT_EQ (p.GetLocalEllipsoid (ground, *zone).EarthRadius, 6378637.0);
    EXPECT_EQ (p.GetLocalEllipsoid (gridSystem, *zone).EarthRadius, 6378137.0);
    EXPECT_NEAR (p.GetWGS84Ellipsoid (ground, *zone).EarthRadius, 6378637.0,
                 1e-4);  // datum and forms differ in f
    p.LoadFromLocal ({local.Latitude, local.Longitude, MATHS_Null}, zone.get ());
    EXPECT_EQ (p.GetLocalEllipsoid (ground, *zone).EarthRadius, 6378437.0);  // the project's
  }
  position nowhere;
  EXPECT_EQ (nowhere.GetConvergence (*zone), 0.0);
  EXPECT_TRUE (maths_IsNull (nowhere.GetLocalW (*zone)));
}

TEST (Position, AsksForExactlyOneDistanceBit) {
  Hearing hearing;
  const auto zone = Zone33 ();
  struct Case {
    int bits;
    position_Frame frame;
    bool isValid;
  };
  for (const Case& c :
       {Case{0x20, position_Frame::Grid, true}, Case{0x10, position_Frame::Local, true},
        Case{0x08, position_Frame::WGS84, true}, Case{0x38, position_Frame::Grid, false},
        Case{0x18, position_Frame::Local, false}, Case{0x80, position_Frame::None, false}}) {
    position p;
    p.LoadFromPolar ({0.0, 1.0, 0.0});
    p.CogoSystem = static_cast<coordsys_CogoSettings> (c.bits);
    EXPECT_EQ (p.DistanceFrame (*zone), c.frame) << c.bits;
    EXPECT_EQ (hearing.TakeAssertions ().empty (), c.isValid) << c.bits;
    EXPECT_EQ (p.DistanceFrame (*CorrectionsAlone ()), position_Frame::Grid);  // no projection
  }
}

TEST (Position, EndsACircleOfBasesAndLeavesTheChain) {
  const Hearing hearing;
  SmallJob job;
  job.AddPolar ("a", "B");
  job.AddPolar ("b", "A");  // names count whatever their case
  EXPECT_EQ (position_CreateResolved (job, "A", 1, false), nullptr);
  EXPECT_EQ (position_CreateResolved (job, "b", 1, false), nullptr);
  EXPECT_EQ (job.chain.Count (), 0);

  // A traverse of polar shots: 50 names resolve, 51 do not.
  job.Add ("p0").LoadFromGrid ({0.0, 0.0, 0.0});
  for (int i = 1; i <= 50; i++)
    job.AddPolar (("p" + std::to_string (i)).c_str (), ("p" + std::to_string (i - 1)).c_str ());
  const auto last = position_CreateResolved (job, "p49", 1, false);
  ASSERT_NE (last, nullptr);
  EXPECT_NEAR (last->Grid.Elevation, 49 * 5.0, 1e-9);
  EXPECT_EQ (job.deepest, 50u);
  EXPECT_EQ (position_CreateResolved (job, "p50", 1, false), nullptr);
  EXPECT_EQ (job.chain.Count (), 0);
}

TEST (Position, ReducesAnObservationFromItsBase) {
  const Hearing hearing;
  SmallJob job;
  job.Add ("base").LoadFromGrid ({1000.0, 2000.0, 50.0});
  const position shot = job.AddPolar ("shot", "base");
  position p = shot;
  EXPECT_TRUE (
      p.GetGrid (*job.transform)
          .IsCloseTo ({1000.0 + 100.0 * std::cos (0.25), 2000.0 + 100.0 * std::sin (0.25), 55.0},
                      1e-9));
  EXPECT_NEAR (p.GetGridDeltas (*job.transform).DeltaElev, 5.0, 1e-9);
  p = shot;
  p.SearchData = nullptr;
  EXPECT_TRUE (p.GetGrid (*job.transform).IsNull ());
  EXPECT_EQ (p.GetPolar (*job.transform).HDist, 100.0);

  // A setup carried by value needs no name; one whose backsight is unknown keeps its distances.
  position turned;
  turned.LoadFromUnturned ({0.75, 10.0, 1.0}, 0.5);
  turned.CogoSystem = gridSystem;
  turned.SearchData = &job;
  turned.NameOfBase = "base";
  position unknown = turned;
  turned.HasStationSetup = true;
  turned.StationSetup = {{0.0, 0.0, 7.0}, CONSTANT_PiOverTwo - 0.25};
  EXPECT_TRUE (turned.GetGrid (*job.transform).IsCloseTo ({0.0, 10.0, 8.0}, 1e-9));
  EXPECT_EQ (turned.Grid.Elevation, 8.0);
  EXPECT_TRUE (unknown.GetGrid (*job.transform).IsNull ());
  EXPECT_TRUE (maths_IsNull (unknown.GetPolar (*job.transform).Azimuth));
  EXPECT_EQ (unknown.Polar.VDist, 1.0);

  // Heights of a base that has none.
  position flat;
  flat.LoadFromGrid ({1.0, 2.0, MATHS_Null});
  flat.SearchData = &job;
  flat.UseProjectHeight = true;
  const auto zone = Zone33 ();
  EXPECT_TRUE (flat.GetLocal (*zone).NullVertical ());
  EXPECT_TRUE (flat.ComputeAbsolute (*zone));
  EXPECT_NEAR (flat.GetLocal (*zone).Height, 300.0, 1e-6);  // what was derived flat is derived anew
  flat.Grid.Elevation = MATHS_Null;
  EXPECT_TRUE (flat.ComputeAbsolute (*job.transform));
  EXPECT_EQ (flat.Grid.Elevation, 0.0);  // without a projection
  EXPECT_EQ (flat.SearchData, &job);
  flat.HorizontalOnly = true;
  flat.UncalibratedLocal.Height = flat.Local.Height = flat.WGS84.Height = 5.0;
  flat.DropHeights ();
  EXPECT_TRUE (flat.Grid.NullVertical () && flat.Local.NullVertical () &&
               flat.UncalibratedLocal.NullVertical () && flat.WGS84.NullVertical ());

  // Differences lead from a base as an observation does.
  position off;
  off.LoadFromGridDeltas ({3.0, 4.0, 2.0});
  off.SearchData = &job;
  off.NameOfBase = "base";
  EXPECT_TRUE (off.GetGrid (*job.transform).IsCloseTo ({1003.0, 2004.0, 52.0}, 1e-9));
  EXPECT_NEAR (off.GetPolar (*job.transform).HDist, 5.0, 1e-9);
}

TEST (Position, KeepsTheGridOfAnObservationWithItsItem) {
  const Hearing hearing;
  SmallJob job;
  job.Add ("base").LoadFromGrid ({1000.0, 2000.0, 50.0});
  const UniqueId item (1, 7);
  position shot;
  shot.LoadFromPolar ({0.0, 100.0, 5.0}, job.transform.get ());
  shot.NameOfBase = "base";
  shot.CogoSystem = gridSystem;
  shot.SearchData = &job;
  shot.Object = item;
  position first = shot, again = shot, elsewhere = shot, flat = shot, linked = shot;
  EXPECT_EQ (first.GetGrid (*job.transform).North, 1100.0);
  EXPECT_TRUE (job.stored);
  EXPECT_EQ (job.grids.at (item).North, 1100.0);
  job.grids[item].North = 7.0;
  EXPECT_EQ (again.GetGrid (*job.transform).North, 7.0);
  EXPECT_EQ (elsewhere.GetGrid (*CorrectionsAlone ()).North, 1100.0);
  flat.UseProjectHeight = true;  // may contain a project height: neither loaded nor final
  EXPECT_EQ (flat.GetGrid (*job.transform).North, 1100.0);
  EXPECT_FALSE (job.stored);
  EXPECT_EQ (job.grids.at (item).North, 7.0);
  linked.Object = {2, 1};
  job.grids[linked.Object] = {1.0, 2.0, 3.0};
  EXPECT_EQ (linked.GetGrid (*CorrectionsAlone ()).North, 1.0);
}

TEST (Position, ReadsTheHeightOfAnAntenna) {
  struct Case {
    const char* name;
    dbgps_APCType type;
    double measured, tape, horizontal, vertical;
    double height;
  };
  const Hearing hearing;
  for (const Case& c : {Case{"true", DBGPS_Absolute, 2.0, 9.0, 9.0, 9.0, 2.0},
                        Case{"slope", DBGPS_Corrected0, 1.3, -0.05, 0.75, 0.2, 1.2},
                        Case{"too short", DBGPS_Corrected0, 0.5, 0.0, 0.6, 0.1, MATHS_Null},
                        Case{"none", DBGPS_Corrected0, 0.1, -0.1, 0.0, 0.1, MATHS_Null}}) {
    SmallJob job;
    auto& antenna = job.Record<db_Antenna> (7);
    antenna.MeasuredHeight = c.measured;
    antenna.APCType = c.type;
    antenna.Equipment = {8};
    auto& equipment = job.Record<db_Equipment> (8);
    equipment.TapeAdjustment = c.tape;
    equipment.HorizontalOffset = c.horizontal;
    equipment.VerticalOffset = c.vertical;
    db_ECEF record;
    record.X = coordsys_WGS84Ellipsoid ().EarthRadius + 100.0;
    record.Antenna = {7};
    position p;
    ASSERT_TRUE (p.LoadFromRecord (job, record));
    EXPECT_NEAR (p.GetAntennaHeight (), c.height, maths_IsNull (c.height) ? 0.0 : 1e-12) << c.name;
    const coord_WGS84 point = p.GetWGS84 (*job.transform);
    EXPECT_EQ (point.Latitude, 0.0) << c.name;
    EXPECT_EQ (maths_IsNull (point.Height), maths_IsNull (c.height)) << c.name;

    // A reference to a record of another type is none.
    record.Antenna = {8};
    ASSERT_TRUE (p.LoadFromRecord (job, record));
    EXPECT_TRUE (p.GetWGS84 (*job.transform).NullVertical ());
  }
}

TEST (Position, TakesItsBaseNamesFromTheRecordOfTheLocation) {
  Hearing hearing;
  SmallJob job;
  auto& backBearing = job.Record<db_TotalBackBearing> (3);
  backBearing.Station = "S";
  backBearing.BackSight = "B";
  job.Record<db_Reference> (4).PointName = "R";
  job.Record<db_LaserBasePoint> (5).TheName = "L";
  job.Record<db_Note> (6);

  db_Circle circle;
  circle.Station = circle.Target = {1};
  circle.BackBearing = {3};
  circle.CreatedView = gridSystem;
  circle.HorzCircle = 1.0;
  circle.EDMDistance = 10.0;
  position p;
  ASSERT_TRUE (p.LoadFromRecord (job, circle));
  EXPECT_EQ (p.NameOfBase, "S");
  EXPECT_EQ (p.NameOfBacksight, "B");

  db_ECEFDeltas deltas;
  deltas.Antenna = {2};
  deltas.Reference = {4};
  ASSERT_TRUE (p.LoadFromRecord (job, deltas));
  EXPECT_EQ (p.NameOfBase, "R");
  EXPECT_TRUE (p.NameOfBacksight.IsEmpty ());

  db_LaserOffset laser;
  laser.MagneticDeclination = laser.LaserHeight = laser.TargetHeight = {1};
  laser.CreatedView = gridSystem;
  for (const auto& [location, name] : {std::pair{5u, "L"}, std::pair{6u, ""}, std::pair{99u, ""}}) {
    laser.BasePoint = {location};
    ASSERT_TRUE (p.LoadFromRecord (job, laser));
    EXPECT_EQ (p.NameOfBase, name);
  }
  db_Azimuth azimuth;
  azimuth.SourcePoint = "A";
  azimuth.Azimuth = 1.25;
  ASSERT_TRUE (p.LoadFromRecord (job, azimuth));
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"!CogoSystem.IsNull()"});
  EXPECT_FALSE (p.Polar.NullHorizontal ());
  EXPECT_TRUE (maths_IsNull (p.Polar.HDist));

  EXPECT_FALSE (p.LoadFromRecord (job, db_Note ()));
  EXPECT_EQ (p.Original, COORD_NullType);
  EXPECT_EQ (hearing.TakeAssertions ().size (), 1u);
}

TEST (Reduce, TurnsSlopesAndBack) {
  struct Case {
    double hDist, vDist, slope;
  };
  for (const Case& c : {Case{30.0, 40.0, 50.0}, Case{30.0, -40.0, 50.0}, Case{1e-9, -7.0, 7.0}}) {
    const coord_Ground ground = reduce_PolarToGround ({1.0, c.hDist, c.vDist});
    EXPECT_NEAR (ground.SlopeDist, c.slope, 1e-9);
    const coord_Polar back = reduce_GroundToPolar (ground);
    EXPECT_NEAR (back.HDist, c.hDist, 1e-8);
    EXPECT_NEAR (back.VDist, c.vDist, 1e-9);
  }
  EXPECT_TRUE (maths_IsNull (reduce_PolarToGround ({1.0, 2.0, MATHS_Null}).SlopeDist));
  EXPECT_NEAR (reduce_TurnToPolar ({0.1, 5.0, 6.0}, 0.3, 0.1).Azimuth, CONSTANT_TwoPi - 0.1, 1e-12);
}

}  // namespace
