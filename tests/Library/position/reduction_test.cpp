// Observations reduced to coordinates.
// Points are placed first; the raw readings are computed from them by direct formulas, and the
// reduction must return the points.
#include <cmath>
#include <functional>
#include <tuple>

#include "Library/position/azimuth.h"
#include "Library/position/environment.h"
#include "Library/position/neighbourhood.h"
#include "Library/position/reduce.h"
#include "Library/position/smalljob.h"
#include "Library/position/trace.h"
#include "Library/records/dbCoordSystems.h"

namespace clxml::testing {
namespace {

constexpr double null = MATHS_Null;
constexpr double pi = CONSTANT_Pi;

struct Conditions {
  double stationHeight = 1.6, targetHeight = 1.3;
  total_PrismTypes prism = TOTAL_UnknownPrism;
  double constant = -0.03;
  total_RMTIDs rmt = TOTAL_RMTIDNone;
  total_RefractionType refraction = TOTAL_Refraction0142;
  double k = 0.142;
  double ppm = 12.0;
  double scale = 1.0;
};

// The raw reading of a line of sight with zenith z and slope distance s, on face 1.
void Raw (const Conditions& c, double& z, double& s) {
  if (c.refraction != TOTAL_Refraction0) z += (1.0 - c.k) * s / (2.0 * 6378137.298);
  s /= 1.0 + c.ppm * 1e-6;
  if (c.prism == TOTAL_KSeries360Prism) {
    // The offsets of the prism depend on the raw zenith.
    const double h = s * std::sin (z), v = s * std::cos (z);
    for (int i = 0; i < 50; i++) {
      const double dh =
          -0.00544364081387558 * z * z + 0.0171017019896531 * z - 0.013424821050095 - c.constant;
      const double dv = -0.0182449143622567 * z + 0.0286590444629203;
      z = std::atan2 (h + dh, v + dv);
      s = std::hypot (h + dh, v + dv);
    }
  } else if (c.prism == TOTAL_KSeriesMultiTrack) {
    const double z1 = z, s1 = s;
    const bool isActive = c.rmt != TOTAL_RMTIDNone;
    for (int i = 0; i < 50; i++) {
      z = z1 - (isActive ? 0.015 : 0.022) * std::cos (z) / s1;
      s = s1 - c.constant -
          (isActive ? -0.0120774850901667 * z * z + 0.0379298060376605 * z - 0.029799
                    : -0.0154818768605492 * z * z + 0.0486568492020542 * z - 0.038228);
    }
  } else {
    s -= c.constant;
  }
}

// A job with a station S, its backsight B and the records of a setup: atmosphere 1, instrument 2,
// station 3, target 4, back bearing 5.
struct Occupation {
  SmallJob job;
  const coord_CorrectedGrid s{1000.0, 2000.0, 50.0}, b{1300.0, 1800.0, 55.0};
  double orientation = 0.8;  // the azimuth of the zero of the circle
  Conditions conditions;

  explicit Occupation (const Conditions& c = {}) : conditions (c) {
    job.Add ("s").LoadFromGrid (s);
    job.points["s"].Name = "S";
    job.points["s"].SearchData = &job;
    job.Add ("b").LoadFromGrid (b);
    job.points["b"].Name = "B";
    auto& atmosphere = job.Record<db_TotalAtmosphere> (1);
    atmosphere.PPM = c.ppm;
    atmosphere.Refraction = c.refraction;
    job.Record<db_TotalInstrument> (2);
    auto& station = job.Record<db_TotalStation> (3);
    station.StationName = "S";
    station.RawTheodoliteHt = c.stationHeight;
    station.ScaleFactor = c.scale;
    station.Atmosphere = {1};
    station.Instrument = {2};
    auto& target = job.Record<db_Target> (4);
    target.RawTargetHeight = c.targetHeight;
    target.PrismType = c.prism;
    target.PrismConstant = c.constant;
    target.RMTID = c.rmt;
    auto& backBearing = job.Record<db_TotalBackBearing> (5);
    backBearing.Station = "S";
    backBearing.BackSight = "B";
    backBearing.F1HorzCircle =
        coord_NormaliseTwoPi (std::atan2 (b.East - s.East, b.North - s.North) - orientation);
    backBearing.F2HorzCircle = coord_NormaliseTwoPi (backBearing.F1HorzCircle + pi);
  }

  db_Circle To (const coord_CorrectedGrid& p, coord_Face face) const {
    const Conditions& c = conditions;
    const double hs = maths_IsNull (c.stationHeight) ? 0.0 : c.stationHeight;
    const double ht = maths_IsNull (c.targetHeight) ? 0.0 : c.targetHeight;
    const double h = std::hypot (p.North - s.North, p.East - s.East) / c.scale;
    const double v = p.Elevation + ht - s.Elevation - hs;
    double z = std::atan2 (h, v), d = std::hypot (h, v);
    Raw (c, z, d);
    db_Circle circle;
    circle.HorzCircle =
        coord_NormaliseTwoPi (std::atan2 (p.East - s.East, p.North - s.North) - orientation);
    circle.VertCircle = z;
    circle.EDMDistance = d;
    circle.Face = face;
    if (face == COORD_Face2) {
      circle.HorzCircle = coord_NormaliseTwoPi (circle.HorzCircle + pi);
      circle.VertCircle = 2.0 * pi - z;
    }
    circle.Station = {3};
    circle.Target = {4};
    circle.BackBearing = {5};
    circle.CreatedView = gridSystem;
    return circle;
  }
  position Loaded (const dbRecord_Class& record, const char* name = "P") {
    position p;
    EXPECT_TRUE (p.LoadFromRecord (job, record));
    p.Name = name;
    return p;
  }
  const Transform& transform () { return *job.transform; }
};

void ExpectAt (const coord_CorrectedGrid& found, const coord_CorrectedGrid& expected,
               double tolerance = 1e-6) {
  EXPECT_NEAR (found.North, expected.North, tolerance);
  EXPECT_NEAR (found.East, expected.East, tolerance);
  EXPECT_NEAR (found.Elevation, expected.Elevation,
               maths_IsNull (expected.Elevation) ? 0.0 : tolerance);
}

const coord_CorrectedGrid points[] = {
    {1234.5, 2345.6, 61.7}, {950.0, 1990.0, 20.0}, {1000.5, 2003.0, 90.0}, {400.0, 2000.0, 50.3}};

TEST (Reduction, ReturnsThePlacedPoint) {
  const Hearing hearing;
  const std::pair<const char*, std::function<void (Conditions&)>> cases[] = {
      {"plain", [] (Conditions&) {}},
      {"no refraction", [] (Conditions& c) { c.refraction = TOTAL_Refraction0; }},
      {"refraction 0.2",
       [] (Conditions& c) {
         c.refraction = TOTAL_Refraction02;
         c.k = 0.2;
       }},
      {"scaled", [] (Conditions& c) { c.scale = 1.0004; }},
      {"360 prism",
       [] (Conditions& c) {
         c.prism = TOTAL_KSeries360Prism;
         c.constant = 0.002;
       }},
      {"multi track", [] (Conditions& c) { c.prism = TOTAL_KSeriesMultiTrack; }},
      {"active multi track", [] (Conditions& c) {
         c.prism = TOTAL_KSeriesMultiTrack;
         c.rmt = TOTAL_RMTID1;
       }}};
  for (const auto& [name, change] : cases) {
    Conditions c;
    change (c);
    Occupation setup (c);
    for (const coord_CorrectedGrid& point : points)
      for (const coord_Face face : {COORD_Face1, COORD_Face2}) {
        SCOPED_TRACE (name + (" face " + std::to_string (face)));
        position p = setup.Loaded (setup.To (point, face));
        ExpectAt (p.GetGrid (setup.transform ()), point);
        // The reverse reduction returns the raw reading; that of an angle-dependent prism takes its
        // polynomial at the corrected zenith.
        const double tolerance = c.prism == TOTAL_UnknownPrism ? 1e-9 : 1e-4;
        reduce_Setup numbers;
        const db_TotalStation* station;
        const db_TotalBackBearing* backBearing;
        ASSERT_TRUE (reduce_LoadSetup (setup.job, {3}, {4}, {5}, numbers, station, backBearing));
        coord_Circle back;
        reduce_CorrectedToCircle (p.Corrected, back, numbers);
        EXPECT_NEAR (back.EDMDistance, p.Circle.EDMDistance, tolerance);
        EXPECT_NEAR (back.VertCircle, p.Circle.VertCircle, tolerance / 10);
        reduce_UnturnedToCircle (p.Unturned, back, numbers);
        EXPECT_NEAR (back.EDMDistance, p.Circle.EDMDistance, tolerance);
      }
  }
}

TEST (Reduction, TakesHeightsByTheirMethodAndProjectHeight) {
  const Hearing hearing;
  Conditions c;
  c.stationHeight = null;
  Occupation setup (c);
  const coord_CorrectedGrid point = points[0];
  position p = setup.Loaded (setup.To (point, COORD_Face1));
  EXPECT_TRUE (maths_IsNull (p.GetGrid (setup.transform ()).Elevation));
  p = setup.Loaded (setup.To (point, COORD_Face1));
  p.UseProjectHeight = true;
  ExpectAt (p.GetGrid (setup.transform ()), point);

  c.stationHeight = std::sqrt (1.5 * 1.5 - 0.091 * 0.091) + 0.158;
  Occupation notch (c);
  auto& station = notch.job.Record<db_TotalStation> (3);
  station.StationName = "S";
  station.Atmosphere = {1};
  station.Instrument = {2};
  total_TargetHeightData height (1.5, TrueVertical, 0.0, 0.0);
  height.SetMethod (ZorvanBottomNotch);
  EXPECT_NEAR (height.TrueHeight (), c.stationHeight, 1e-12);
  station.RawTheodoliteHt = height.RawHeight;
  station.MeasurementMethod = height.MeasurementMethod;
  station.HorizontalOffset = height.HorizontalOffset;
  station.VerticalOffset = height.VerticalOffset;
  p = notch.Loaded (notch.To (point, COORD_Face2));
  ExpectAt (p.GetGrid (notch.transform ()), point);
}

TEST (Reduction, OrientsByEachSourceOfTheAzimuth) {
  const Hearing hearing;
  Occupation setup;
  const coord_CorrectedGrid point = points[1];
  position_Trace trace;
  const position shot = setup.Loaded (setup.To (point, COORD_Face1));
  EXPECT_TRUE (position_Explain (shot, setup.transform (), trace));
  ExpectAt (trace.Grid, point);
  EXPECT_EQ (trace.AzimuthSource, position_AzimuthSource::ToBacksight);
  EXPECT_EQ (trace.BacksightGrid.North, setup.b.North);
  EXPECT_NEAR (trace.Azimuth - trace.BackBearingCircle, setup.orientation - 2.0 * pi, 4.0 * pi);
  EXPECT_EQ (trace.Raw.EDMDistance, shot.Circle.EDMDistance);
  EXPECT_NEAR (trace.AfterPrism.EDMDistance - trace.Raw.EDMDistance, -0.03, 1e-12);

  // The keyed azimuth goes before the computed one; a null one is passed over.
  setup.job.keyed["B"].Azimuth = null;
  EXPECT_TRUE (position_Explain (shot, setup.transform (), trace));
  EXPECT_EQ (trace.AzimuthSource, position_AzimuthSource::ToBacksight);
  setup.job.keyed["B"].Azimuth = coord_NormaliseTwoPi (
      std::atan2 (setup.b.East - setup.s.East, setup.b.North - setup.s.North) + 0.1);
  EXPECT_TRUE (position_Explain (shot, setup.transform (), trace));
  EXPECT_EQ (trace.AzimuthSource, position_AzimuthSource::KeyedIn);
  const double turned = std::atan2 (trace.Grid.East - 2000.0, trace.Grid.North - 1000.0);
  EXPECT_NEAR (turned - std::atan2 (point.East - 2000.0, point.North - 1000.0), 0.1, 1e-9);
  setup.job.keyed.clear ();

  // A station that has no grid and was shot from its own backsight: the reverse of that shot.
  position& station = setup.job.points["s"];
  station.LoadFromPolar ({1.0, 10.0, 0.0}, &setup.transform ());
  station.Name = "S";
  station.NameOfBase = "B";
  station.CogoSystem = gridSystem;
  station.SearchData = &setup.job;
  setup.job.points.erase ("b");
  double azimuth;
  bool isKeyedIn;
  ASSERT_TRUE (ResolveBacksightAzimuth (setup.job, "S", "B", azimuth, isKeyedIn));
  EXPECT_NEAR (azimuth, 1.0 + pi, 1e-12);
  EXPECT_FALSE (isKeyedIn);
  EXPECT_EQ (setup.job.chain.Count (), 0);
  position again = shot;
  const coord_Polar polar = again.GetPolar (setup.transform ());
  EXPECT_FALSE (maths_IsNull (polar.Azimuth));  // distances and azimuth, but no station to start at
  EXPECT_TRUE (again.GetGrid (setup.transform ()).IsNull ());
}

TEST (Reduction, GivesTheReasonWhereAGridCannotBeComputed) {
  Hearing hearing;
  const std::tuple<const char*, std::function<void (Occupation&)>, const char*> cases[] = {
      {"station record", [] (Occupation& s) { s.job.records.erase (3); }, "station record missing"},
      {"station of another type", [] (Occupation& s) { s.job.Record<db_Target> (3); },
       "station record missing"},
      {"instrument", [] (Occupation& s) { s.job.records.erase (2); }, "instrument record missing"},
      {"target", [] (Occupation& s) { s.job.Record<db_Note> (4); }, "target record missing"},
      {"base", [] (Occupation& s) { s.job.points.erase ("s"); }, "point S has no position"},
      {"backsight", [] (Occupation& s) { s.job.points.erase ("b"); },
       "no position of backsight B to orient on"},
      {"flat backsight",
       [] (Occupation& s) {
         s.job.points["b"].LoadFromPolar ({0.0, 1.0, 0.0});
       },
       "backsight B has no position"},
      {"backsight on the station",
       [] (Occupation& s) {
         s.job.points["b"].LoadFromGrid ({1000.0, 2000.0, 0.0});
       },
       "no azimuth to backsight B"}};
  for (const auto& [name, damage, text] : cases) {
    SCOPED_TRACE (name);
    Occupation setup;
    const position shot = setup.Loaded (setup.To (points[0], COORD_Face1));
    damage (setup);
    position p = shot;
    EXPECT_TRUE (p.GetGrid (setup.transform ()).IsNull ());
    position_Trace trace;
    EXPECT_FALSE (position_Explain (shot, setup.transform (), trace));
    ASSERT_FALSE (trace.Failures.empty ());
    EXPECT_STREQ (position_ToText (trace.Failures.back ()).Data (), text);
    EXPECT_EQ (setup.job.chain.Count (), 0);
    EXPECT_EQ (position_TraceNow (), nullptr);
  }
  hearing.TakeAssertions ();  // names that differ from those of replaced records
}

TEST (Reduction, ReducesALaserObservation) {
  const Hearing hearing;
  Occupation setup;
  auto& corrections = setup.job.Record<db_Corrections> (20);
  corrections.MagneticDeclination = 0.05;
  setup.job.Record<db_LaserHeight> (21).Height = 1.5;
  setup.job.Record<db_LaserTargetHeight> (22).Height = 0.4;
  setup.job.Record<db_LaserBasePoint> (23).TheName = "S";
  const coord_CorrectedGrid point = points[2];
  const double h = std::hypot (point.North - setup.s.North, point.East - setup.s.East);
  const double v = point.Elevation + 0.4 - setup.s.Elevation - 1.5;
  db_LaserOffset laser;
  laser.Azimuth = std::atan2 (point.East - setup.s.East, point.North - setup.s.North) - 0.05;
  laser.VertAngle = std::atan2 (h, v);
  laser.SlopeDist = std::hypot (h, v);
  laser.MagneticDeclination = {20};
  laser.LaserHeight = {21};
  laser.TargetHeight = {22};
  laser.BasePoint = {23};
  laser.CreatedView = gridSystem;
  position p = setup.Loaded (laser);
  ExpectAt (p.GetGrid (setup.transform ()), point);
  setup.job.Record<db_Corrections> (30).SouthAzimuth = 1;  // the newest says so
  p = setup.Loaded (laser);
  ExpectAt (p.GetGrid (setup.transform ()),
            {2 * setup.s.North - point.North, 2 * setup.s.East - point.East, point.Elevation});
  setup.job.Record<db_LaserHeight> (21).Height = null;
  p = setup.Loaded (laser);
  EXPECT_TRUE (maths_IsNull (p.GetGrid (setup.transform ()).Elevation));
  setup.job.records.erase (22);
  p = setup.Loaded (laser);
  EXPECT_TRUE (p.GetGrid (setup.transform ()).IsNull ());
}

// Weights by distance, computed here by hand: residuals r at distances 10, 20 and 40 m.
TEST (Reduction, AddsNeighbourhoodAdjustment) {
  const Hearing hearing;
  const coord_CorrectedGrid point = points[0];
  const double w[] = {1.0 / 10.0, 1.0 / 20.0, 1.0 / 40.0};
  const double mean = (w[0] * 0.01 + w[1] * 0.02 + w[2] * 0.04) / (w[0] + w[1] + w[2]);
  const struct {
    const char* name;
    std::function<void (Occupation&)> change;
    double moved;
  } cases[] = {
      {"three", [] (Occupation&) {}, mean},
      {"not asked for",
       [] (Occupation& s) { s.job.transform->Corrections.NeighbourhoodAdjustment = false; }, 0.0},
      {"two backsights",
       [] (Occupation& s) {
         static_cast<db_TotalStation&> (*s.job.records[3]).NumberOfUniqueBacksights = 2;
       },
       0.0},
      {"a name twice",
       [] (Occupation& s) {
         static_cast<db_StationSetupResiduals&> (*s.job.records[12]).PointName = "r0";
       },
       0.0},
      {"a null residual",
       [] (Occupation& s) {
         static_cast<db_StationSetupResiduals&> (*s.job.records[12]).GridResidual.dEast = null;
       },
       0.0},
      {"another station between", [] (Occupation& s) { s.job.Record<db_TotalStation> (11); }, 0.0},
      {"on a control point",
       [] (Occupation& s) {
         auto& r = static_cast<db_StationSetupResiduals&> (*s.job.records[13]);
         r.Grid.North -= 40.0;
       },
       0.04},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    Occupation setup;
    auto& corrections = setup.job.transform->Corrections;
    corrections.NeighbourhoodAdjustment = true;
    corrections.WeightExponent = COORDSYS_WeightExponentOnePointZero;
    static_cast<db_TotalStation&> (*setup.job.records[3]).NumberOfUniqueBacksights = 3;
    // The grid that the position has before the adjustment, to the last bit.
    corrections.NeighbourhoodAdjustment = false;
    position before = setup.Loaded (setup.To (point, COORD_Face1));
    const coord_CorrectedGrid at = before.GetGrid (setup.transform ());
    corrections.NeighbourhoodAdjustment = true;
    for (const uint32_t i : {0u, 1u, 2u}) {
      auto& r = setup.job.Record<db_StationSetupResiduals> (i == 0 ? 10 : 11 + i);
      r.PointName = ("R" + std::to_string (i)).c_str ();
      r.Backsight = true;
      r.Grid.North = at.North + 10.0 * (1 << i);
      r.Grid.East = at.East;
      r.GridResidual.dNorth = 0.01 * (1 << i);
      r.GridResidual.dEast = 0.0;
    }
    // Residuals of points that are not backsights do not count.
    setup.job.Record<db_StationSetupResiduals> (14).Grid =
        setup.job.Record<db_StationSetupResiduals> (15).Grid;
    c.change (setup);
    position p = setup.Loaded (setup.To (point, COORD_Face1));
    const coord_CorrectedGrid found = p.GetGrid (setup.transform ());
    EXPECT_NEAR (found.North - at.North, c.moved, 1e-9);
    EXPECT_NEAR (found.East, at.East, 1e-12);
    RemoveNeighbourhoodAdjustment (p, setup.transform ());
    EXPECT_NEAR (p.Grid.North, at.North, 1e-3);
  }

  // Of StationSetupPlus the station itself counts first, with no residual.
  Occupation setup;
  auto& station = static_cast<db_TotalStation&> (*setup.job.records[3]);
  station.StationType = TOTAL_StationSetupPlus;
  station.NumberOfUniqueBacksights = 2;
  auto& corrections = setup.job.transform->Corrections;
  corrections.NeighbourhoodAdjustment = true;
  corrections.WeightExponent = COORDSYS_WeightExponentTwoPointZero;
  for (const uint32_t i : {0u, 1u}) {
    auto& r = setup.job.Record<db_StationSetupResiduals> (10 + i);
    r.PointName = ("R" + std::to_string (i)).c_str ();
    r.Backsight = true;
    r.Grid.North = 900.0 - 100.0 * i;
    r.Grid.East = 2000.0;
    r.GridResidual.dNorth = r.GridResidual.dEast = 0.02;
  }
  const coord_CorrectedGrid near (980.0, 2000.0, 50.0);
  position p = setup.Loaded (setup.To (near, COORD_Face1));
  const double sum = 1.0 / 400 + 1.0 / 6400 + 1.0 / 32400;
  const double moved = 0.02 * (1.0 / 6400 + 1.0 / 32400) / sum;
  EXPECT_NEAR (p.GetGrid (setup.transform ()).North, near.North + moved, 1e-6);
  corrections.GridOrientation = COORDSYS_IncreasingSouthWest;
  p = setup.Loaded (setup.To (near, COORD_Face1));
  p.Grid = near;
  NeighbourhoodAdjustment (p, setup.transform ());
  EXPECT_NEAR (p.Grid.North, near.North - moved, 1e-9);
  EXPECT_NEAR (p.Grid.East, near.East - moved, 1e-9);
}

TEST (Reduction, AdjustsSatellitePointsToTheCalibration) {
  const Hearing hearing;
  SmallJob job;
  job.transform = Zone33 ();
  position p;
  p.LoadFromWGS84 ({48.2 * degree, 16.37 * degree, 210.0});
  p.SearchData = &job;
  position before = p;
  const coord_CorrectedGrid at = before.GetGrid (*job.transform);
  job.transform->Corrections.NeighbourhoodAdjustment = true;
  job.Record<db_CalibPoint> (1);  // of an older calibration
  job.Record<db_CalibBegin> (2);
  for (uint32_t i = 3; i <= 7; i++) {
    auto& point = job.Record<db_CalibPoint> (i);
    point.Status = i == 6 ? DBCL_1D : DBCL_3D;
    point.Residuals.North = at.North + 100.0;
    point.Residuals.East = at.East;
    point.Residuals.DeltaNorth = i == 6 ? 9.0 : 0.03;
    point.Residuals.DeltaEast = i == 7 ? null : -0.01;
  }
  position without = p;
  EXPECT_EQ (without.GetGrid (*job.transform).North, at.North);  // no horizontal adjustment
  job.transform->Plane.PlaneType = COORDSYS_ValidHorizontal;
  position with = p;
  EXPECT_NEAR (with.GetGrid (*job.transform).North, at.North + 0.03, 1e-8);
  EXPECT_NEAR (with.Grid.East, at.East - 0.01, 1e-8);
  job.Record<db_Note> (4);  // two points are left
  job.revision++;
  with = p;
  EXPECT_EQ (with.GetGrid (*job.transform).North, at.North);
}

TEST (Reduction, TakesValuesOfASetupByValue) {
  const Hearing hearing;
  const Occupation setup;
  environment env;
  ASSERT_TRUE (environment_Load (setup.job, {3}, {4}, {5}, env));
  const db_Circle circle = setup.To (points[0], COORD_Face2);
  env.HasStationSetup = true;
  env.StationSetup = {setup.s, 0.0};
  env.StationSetup.Azimuth =
      coord_NormaliseTwoPi (env.BackBearing.F1HorzCircle + setup.orientation);
  position p;
  p.LoadFromCircle ({circle.HorzCircle, circle.VertCircle, circle.EDMDistance, circle.Face}, env,
                    env.BackBearing.F1HorzCircle);
  p.CogoSystem = gridSystem;
  ExpectAt (p.GetGrid (*setup.job.transform), points[0]);  // without a job
  ExpectAt (p.GetGrid (*CorrectionsAlone ()), points[0]);  // and under another transform

  environment bad;
  EXPECT_FALSE (environment_Load (setup.job, {4}, {4}, {5}, bad));
  db_Target target;
  target.Name = "T";
  EXPECT_TRUE (environment_LoadLatest (setup.job, target, bad));
  EXPECT_EQ (bad.Target.Name, "T");
  EXPECT_EQ (bad.Station.StationName, "S");
}

TEST (Reduction, ChoosesTheBackBearingOfTheFace) {
  const Hearing hearing;
  db_TotalBackBearing both, first, second;
  both.F1HorzCircle = first.F1HorzCircle = 1.0;
  both.F2HorzCircle = second.F2HorzCircle = 1.5 + pi;
  first.F2HorzCircle = second.F1HorzCircle = null;
  const std::tuple<db_TotalBackBearing, double, bool, double> cases[] = {
      {both, 1.5, false, 1.0},   {both, 4.7, false, 1.5},  {first, 4.7, false, 1.0},
      {second, 1.5, false, 1.5}, {both, null, false, 1.0}, {both, 4.7, true, 0.0}};
  for (const auto& [backBearing, vertical, isMTA, expected] : cases)
    EXPECT_NEAR (BackBearingCircleFor (backBearing, vertical, isMTA), expected, 1e-12);

  // The mean of both faces near the seam at pi.
  Occupation setup;
  const double azimuth = coord_NormaliseTwoPi (std::atan2 (-200.0, 300.0));
  db_TotalBackBearing b;
  b.Station = "S";
  b.BackSight = "B";
  b.F1HorzCircle = azimuth - pi + 0.001;
  b.F2HorzCircle = azimuth - 0.003 + 2.0 * pi;
  EXPECT_NEAR (std::abs (OrientationCorrection (setup.job, b)), pi - 0.001 + 0.002, 0.0021);
  b.F2HorzCircle = null;
  EXPECT_NEAR (OrientationCorrection (setup.job, b), pi - 0.001, 1e-9);
  b.F1HorzCircle = null;
  EXPECT_TRUE (maths_IsNull (OrientationCorrection (setup.job, b)));
}

TEST (Reduction, MovesAReadingByOffsets) {
  const Hearing hearing;
  reduce_Setup setup;
  // 30 m ahead and level; 40 m to the right leaves 50 m at an angle of atan (4/3).
  const coord_Corrected level (1.0, CONSTANT_PiOverTwo, 30.0, COORD_Face1);
  coord_Corrected out;
  reduce_DistanceOffset (level, DBCONFIG_OffsetFromInstrument, 40.0, null, null, setup, out);
  EXPECT_NEAR (out.SlopeDist, 50.0, 1e-9);
  EXPECT_NEAR (out.HorzCircle, 1.0 + std::atan2 (4.0, 3.0), 1e-12);
  reduce_DistanceOffset (level, DBCONFIG_OffsetFromTarget, 40.0, 10.0, 0.0, setup, out);
  EXPECT_NEAR (out.HorzCircle, coord_NormaliseTwoPi (1.0 - CONSTANT_PiOverFour), 1e-12);
  reduce_DistanceOffset (level, DBCONFIG_OffsetFromInstrument, null, null, null, setup, out);
  EXPECT_TRUE (out.IsNull ());
}

TEST (Reduction, DropsADistanceThatIsNotAboveZero) {
  reduce_Setup setup;
  setup.PrismConstant = -0.03;
  for (const double distance : {0.0, -1.0, null}) {
    coord_Circle circle (0.1, 1.5, distance, COORD_Face1);
    circle.EDMDistanceStdErr = 0.001;
    reduce_PrismCorrection (circle, setup, false);
    EXPECT_TRUE (maths_IsNull (circle.EDMDistance));
    EXPECT_TRUE (maths_IsNull (circle.EDMDistanceStdErr));
  }
  // An angle-dependent prism without a vertical circle changes nothing, without a constant it
  // leaves no distance.
  setup.PrismType = TOTAL_KSeries360Prism;
  coord_Circle circle (0.1, null, 20.0, COORD_Face1);
  reduce_PrismCorrection (circle, setup, false);
  EXPECT_EQ (circle.EDMDistance, 20.0);
  setup.PrismConstant = null;
  circle.VertCircle = 1.5;
  reduce_PrismCorrection (circle, setup, false);
  EXPECT_TRUE (maths_IsNull (circle.EDMDistance));
  db_TotalAtmosphere air;
  air.PPM = null;
  air.Pressure = 1013.25;
  air.Temperature = 15.0;
  EXPECT_NEAR (reduce_PPM (air, db_TotalInstrument ()), 270.0 - 79.167 * 1013.25 / 288.15, 1e-9);
}

TEST (Reduction, ComparesTargets) {
  const Hearing hearing;
  SmallJob job;
  const std::pair<double, bool> cases[] = {{1.50009, true}, {1.5002, false}, {null, false}};
  job.Record<db_Target> (1).RawTargetHeight = 1.5;
  for (const auto& [height, isSame] : cases) {
    job.Record<db_Target> (2).RawTargetHeight = height;
    EXPECT_EQ (reduce_SameTarget (job, {1}, {2}), isSame) << height;
  }
  job.Record<db_Target> (2).RawTargetHeight = 1.5;
  EXPECT_TRUE (reduce_SameTarget (job, {1}, {2}));
  EXPECT_FALSE (reduce_SameTarget (job, {1}, {3}));
}

}  // namespace
}  // namespace clxml::testing
