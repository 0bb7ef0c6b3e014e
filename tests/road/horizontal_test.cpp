// The horizontal alignment against a line that is integrated from its curvature.
// Leans on roadtest.
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "road/horizontalalignment.h"
#include "road/roadtest.h"

namespace clxml::testing {
namespace {

class HorizontalAlignment : public RoadTest {};

constexpr double none = MATHS_Null;

// One element by what is keyed of it; a straight has no radius, an arc one, a spiral two.
struct Keyed {
  char kind;  // 's' straight, 'a' arc, 'n' entry spiral, 'x' exit spiral
  double length;
  double startRadius = none;
  double endRadius = none;
  bool isRight = true;
};

std::unique_ptr<HorizontalBase> Make (const Keyed& keyed) {
  std::unique_ptr<HorizontalBase> made;
  if (keyed.kind == 's') made = std::make_unique<HorizontalStraight> ();
  if (keyed.kind == 'a') made = std::make_unique<HorizontalArc> ();
  if (keyed.kind == 'n') made = std::make_unique<HorizontalEntrySpiral> ();
  if (keyed.kind == 'x') made = std::make_unique<HorizontalExitSpiral> ();
  made->KeyinMethod = 0;
  made->Length = keyed.length;
  if (made->HasRadius ()) {
    *made->EndRadiusRef () = keyed.endRadius;
    *made->StartRadiusRef () = keyed.startRadius;
    *made->DirectionRef () = keyed.isRight;
  }
  return made;
}

HorizontalElementArray Line (const Heading& start, double station,
                             const std::vector<Keyed>& elements) {
  HorizontalElementArray line;
  HorizontalStartPoint* first = line.New<HorizontalStartPoint> ();
  first->KeyinMethod = HorizontalStartPoint::UserDefinedCoords;
  first->Length = 0.0;
  first->StartChainage = first->EndChainage = station;
  first->StartAzimuth = first->EndAzimuth = start.azimuth;
  first->StartCoordinate = first->EndCoordinate = {start.north, start.east, 12.5};
  for (const Keyed& keyed : elements) line.Add (Make (keyed));
  // The first element behind the start point brings an azimuth of its own.
  if (line.Count () > 1) line.At (1)->StartAzimuth = start.azimuth;
  EXPECT_TRUE (line.RecomputeAll ());
  return line;
}

struct Alignment {
  const char* name;
  Heading start;
  double station;
  std::vector<Keyed> elements;
};

const Alignment alignments[] = {
    {"straights and arcs",
     {5000.0, 2000.0, 0.6},
     100.0,
     {{'s', 250.0},
      {'a', 180.0, 300.0, 300.0, true},
      {'s', 80.5},
      {'a', 700.0, 170.0, 170.0, false}}},
    {"reverse curve with spirals both ways",
     {478210.331, 5512077.018, 5.9},
     12000.0,
     {{'s', 310.0},
      {'n', 120.0, none, 400.0, true},
      {'a', 233.0, 400.0, 400.0, true},
      {'x', 110.0, 400.0, none, true},
      {'n', 90.0, none, 250.0, false},
      {'a', 305.5, 250.0, 250.0, false},
      {'x', 70.0, 250.0, none, false},
      {'s', 44.0}}},
    {"egg line: a part of a spiral between two arcs",
     {0.0, 0.0, 3.5},
     -60.0,
     {{'n', 80.0, none, 600.0, false},
      {'a', 100.0, 600.0, 600.0, false},
      {'n', 75.0, 600.0, 150.0, false},
      {'a', 140.0, 150.0, 150.0, false},
      {'x', 60.0, 150.0, 420.0, false},
      {'a', 50.0, 420.0, 420.0, false},
      {'x', 64.0, 420.0, none, false}}},
    {"equal radii make an arc of a spiral",
     {10.0, 20.0, 1.0},
     0.0,
     {{'n', 100.0, 300.0, 300.0, true}, {'x', 90.0, 300.0, 300.0, true}, {'s', 10.0}}},
};

// Elements compute with the resolution 1e-7 and answer stations with 0.0001, on a series whose
// last term that is left out is below it.
TEST_F (HorizontalAlignment, FollowsTheIntegratedCurvature) {
  for (const Alignment& a : alignments) {
    SCOPED_TRACE (a.name);
    const HorizontalElementArray line = Line (a.start, a.station, a.elements);
    EXPECT_TRUE (line.CheckContinuity () && line.CheckEndsComputable ());
    Heading here = a.start;
    double station = a.station;
    for (int i = 1; i < line.Count (); i++) {
      SCOPED_TRACE (i);
      const HorizontalBase& element = *line.At (i);
      double k0, k1;
      CurvaturesOf (element, k0, k1);
      const bool isClothoid = k0 != k1;
      for (const double part : {0.0, 0.03, 0.25, 0.5, 0.77, 1.0}) {
        const double s = part * element.Length;
        const Heading wanted = Follow (here, k0, k1, element.Length, s);
        RoadPosition at = element.PositionAt (station + s);
        EXPECT_LT (Apart (at.Coordinate, wanted.Beside (0.0)), isClothoid ? 2e-5 : 2e-9) << part;
        EXPECT_LT (AzimuthError (at.Azimuth, wanted.azimuth), 1e-10) << part;
        EXPECT_EQ (at.Coordinate.Elevation, 12.5);
        if (part > 0.0) {
          ASSERT_TRUE (line.PositionAt (station + s, at));
          EXPECT_LT (Apart (at.Coordinate, wanted.Beside (0.0)), isClothoid ? 2e-5 : 2e-9) << part;
        }
        // Only inside, where the coordinate surely lies abreast of this element.
        if (part == 0.0 || part == 1.0) continue;
        for (const double offset : {-7.5, 0.0, 3.25}) {
          // An arc of more than half a circle has places that no perpendicular's test finds.
          const coord_CorrectedGrid beside = wanted.Beside (offset);
          const bool isLong = !element.IsSpiral () && std::abs (k0) * element.Length > M_PI;
          const coord_StationOffset back =
              isLong ? element.StationOffsetOf (beside) : line.StationOffsetOf (beside);
          EXPECT_NEAR (back.Station, station + s, element.IsSpiral () ? 1e-6 : 1e-8) << offset;
          EXPECT_NEAR (back.Offset, offset, element.IsSpiral () ? 1e-6 : 1e-8) << offset;
        }
        if (!isClothoid) {
          const coord_CorrectedGrid beside = line.PointAtStationOffset (station + s, -4.0);
          EXPECT_LT (Apart (beside, wanted.Beside (-4.0)), 2e-9);
        }
      }
      here = Follow (here, k0, k1, element.Length, element.Length);
      station += element.Length;
      EXPECT_LT (Apart (element.EndCoordinate, here.Beside (0.0)), isClothoid ? 2e-7 : 1e-7);
      EXPECT_LT (AzimuthError (element.EndAzimuth, here.azimuth), 1e-11);
      EXPECT_DOUBLE_EQ (element.EndChainage, station);
    }
  }
}

// No place of the line is nearer to a coordinate than the answer's foot.
TEST_F (HorizontalAlignment, FindsTheNearestElementOfMany) {
  std::vector<Keyed> elements;
  for (int i = 0; i < 12; i++)
    for (const char kind : {'s', 'n', 'a', 'x'})
      elements.push_back ({kind, kind == 's' ? 90.0 : 50.0, kind == 'n' ? none : 120.0,
                           kind == 'x' ? none : 120.0, i % 3 == 0});
  const HorizontalElementArray line = Line ({0, 0, 0}, 0.0, elements);
  std::vector<coord_CorrectedGrid> places;
  for (double station = 0.25; station < line.EndChainage (); station += 0.25)
    places.push_back (line.PointAtStation (station));
  std::mt19937 random (4);
  int answered = 0;
  for (int i = 0; i < 200; i++) {
    const coord_CorrectedGrid& near = places[random () % places.size ()];
    const coord_CorrectedGrid point (near.North + static_cast<double> (random () % 81) - 40.0,
                                     near.East + static_cast<double> (random () % 81) - 40.0, none);
    const coord_StationOffset answer = line.StationOffsetOf (point);
    if (maths_IsNull (answer.Station)) continue;
    answered++;
    double nearest = none;
    for (const coord_CorrectedGrid& place : places)
      nearest = std::min (nearest, Apart (place, point));
    EXPECT_NEAR (std::abs (answer.Offset), nearest, 0.126) << i;  // half a step
    EXPECT_LT (Apart (line.PointAtStationOffset (answer.Station, answer.Offset), point), 1e-4) << i;
  }
  EXPECT_GT (answered, 180);
}

// Fresnel integrals C (u), S (u) to seven decimals: Abramowitz and Stegun, Handbook of Mathematical
// Functions, 1964, Table 7.7. A clothoid with the constant A has x = A sqrt (pi) C (u) and
// y = A sqrt (pi) S (u) at the length A sqrt (pi) u.
TEST_F (HorizontalAlignment, EndsWhereTheTablesOfFresnelIntegralsSay) {
  struct Row {
    double u, c, s;
  };
  for (const Row& row : {Row{0.5, 0.4923442, 0.0647324}, Row{1.0, 0.7798934, 0.4382591}}) {
    const double scale = 100.0, length = scale * row.u;
    const double constant = scale / std::sqrt (M_PI);
    const HorizontalElementArray line =
        Line ({0, 0, 0}, 0.0, {{'n', length, none, constant * constant / length, true}});
    EXPECT_NEAR (line.Last ()->EndCoordinate.North, scale * row.c, 0.6e-5) << row.u;
    EXPECT_NEAR (line.Last ()->EndCoordinate.East, scale * row.s, 0.6e-5) << row.u;
  }
}

// A worked example of Ghilani and Wolf, Elementary Surveying, 13th edition 2012, chapter 24: a
// curve of R 2864.79 ft and I 8°24' at the intersection 64+27.46. The book is quoted from memory,
// two decimals as it prints them; the figures close.
TEST_F (HorizontalAlignment, ReachesTheStationsOfATextbook) {
  constexpr double tangent = 210.38, intersection = 6427.46, deflection = 8.4 * M_PI / 180.0;
  HorizontalElementArray line =
      Line ({0, 0, 0}, intersection - 1000.0,
            {{'s', 1000.0 - tangent}, {'a', none, 2864.79, 2864.79}, {'s', 300.0}});
  auto& arc = static_cast<HorizontalArc&> (*line.At (2));
  arc.KeyinMethod = HorizontalArc::AngleAndRadius;
  arc.Angle = deflection;
  ASSERT_TRUE (line.RecomputeAll ());
  EXPECT_NEAR (arc.StartChainage, 6217.08, 0.0051);
  EXPECT_NEAR (arc.EndChainage, 6637.08, 0.0051);
  EXPECT_NEAR (Apart (arc.StartCoordinate, arc.EndCoordinate), 419.62, 0.0051);
  const coord_CorrectedGrid corner (1000.0, 0.0, none);
  EXPECT_NEAR (Apart (line.PointAtStation (arc.StartChainage + arc.Length / 2), corner), 7.71,
               0.0051);
  EXPECT_LT (Apart (arc.EndCoordinate, {1000.0 + tangent * std::cos (deflection),
                                        tangent * std::sin (deflection), none}),
             0.0075);
  EXPECT_NEAR (arc.EndAzimuth, deflection, 1e-12);
}

TEST_F (HorizontalAlignment, ComputesTheSameUnderEveryKeyinStyleAndSystemOfAxes) {
  for (int orientation = 0; orientation < 4; orientation++)
    for (const bool isSouth : {false, true}) {
      SCOPED_TRACE (orientation * 10 + isSouth);
      coordsys_Corrections corrections;
      corrections.GridOrientation = static_cast<coordsys_GridOrientation> (orientation);
      corrections.SouthAzimuth = isSouth;
      SetCurrentTransformation (corrections);
      const HorizontalElementArray byLength = Line ({900.0, -300.0, 4.1}, 0.0,
                                                    {{'s', 50.0},
                                                     {'a', 180.0, 80.0, 80.0, true},
                                                     {'s', 20.0},
                                                     {'a', 400.0, 140.0, 140.0, false}});
      EXPECT_EQ (byLength.GetKeyinStyle (), HorizontalElementArray::ByLength);

      HorizontalElementArray byStation = byLength;
      byStation.ChangeKeyinStyle (HorizontalElementArray::ByEndStation);
      EXPECT_EQ (byStation.GetKeyinStyle (), HorizontalElementArray::ByEndStation);
      HorizontalElementArray byCoordinate = byLength;
      for (int i = 1; i < byLength.Count (); i++) {
        HorizontalBase& keyed = *byCoordinate.At (i);
        keyed.KeyinMethod = keyed.UserCoordinatesMethod ();
        keyed.Length = keyed.EndChainage = keyed.EndAzimuth = none;
        if (keyed.HasRadius ()) {
          *keyed.EndRadiusRef () = none;
          *keyed.DirectionRef () = !*keyed.DirectionRef ();
        }
        byStation.At (i)->Length = none;
        byStation.At (i)->EndCoordinate = coord_CorrectedGrid ();
      }
      EXPECT_EQ (byCoordinate.GetKeyinStyle (), HorizontalElementArray::ByEndCoordinate);
      for (HorizontalElementArray* again : {&byStation, &byCoordinate}) {
        ASSERT_TRUE (again->RecomputeAll ());
        for (int i = 1; i < byLength.Count (); i++) {
          SCOPED_TRACE (i);
          const HorizontalBase &a = *byLength.At (i), &b = *again->At (i);
          EXPECT_NEAR (a.Length, b.Length, 1e-9);
          EXPECT_NEAR (a.EndChainage, b.EndChainage, 1e-9);
          EXPECT_LT (AzimuthError (a.EndAzimuth, b.EndAzimuth), 1e-11);
          EXPECT_LT (Apart (a.EndCoordinate, b.EndCoordinate), 1e-9);
          if (a.HasRadius ()) {
            EXPECT_NEAR (*a.EndRadiusRef (), *b.EndRadiusRef (), 1e-9);
            EXPECT_EQ (*a.DirectionRef (), *b.DirectionRef ());
          }
        }
      }
      for (const double station : {20.0, 90.0, 222.0, 240.0, 410.0, 630.0}) {
        const coord_StationOffset back =
            byLength.StationOffsetOf (byLength.PointAtStationOffset (station, -2.5));
        EXPECT_NEAR (back.Station, station, 1e-8);
        EXPECT_NEAR (back.Offset, -2.5, 1e-8);
      }
      // Stations that go back are refused.
      byStation.At (2)->EndChainage = 10.0;
      const HorizontalElementArray before = byStation;
      EXPECT_FALSE (byStation.RecomputeAll ());
      for (int i = 0; i < before.Count (); i++)
        EXPECT_TRUE (before.At (i)->Equals (*byStation.At (i))) << i;
    }
}

TEST_F (HorizontalAlignment, FindsTheArcToAnEnd) {
  const double azimuth = 0.75;
  for (const double angle : {1e-7, 0.5, M_PI / 2, 2.0, 3.0, M_PI, 4.0, 6.2})
    for (const double sign : {1.0, -1.0}) {
      SCOPED_TRACE (sign * angle);
      const double radius = 55.0;
      const Heading end =
          Follow ({10, 20, azimuth}, sign / radius, sign / radius, 1, radius * angle);
      HorizontalArc arc;
      arc.StartCoordinate = {10, 20, none};
      arc.StartAzimuth = azimuth;
      arc.StartChainage = 7.0;
      arc.EndCoordinate = end.Beside (0.0);
      arc.ComputeFromEnd ();
      EXPECT_EQ (arc.Clockwise, sign > 0);
      EXPECT_NEAR (arc.Angle, angle, 1e-9);
      EXPECT_NEAR (arc.Length, radius * angle, 1e-7);
      EXPECT_NEAR (arc.EndChainage, 7.0 + arc.Length, 1e-12);
      EXPECT_NEAR (arc.EndAzimuth, azimuth + sign * angle, 1e-9);  // not normalised
    }
  // Straight ahead, straight behind and nowhere: what was there stays.
  HorizontalArc arc;
  arc.StartCoordinate = {0, 0, none};
  arc.StartAzimuth = 0.0;
  arc.Radius = 5.0;
  for (const double north : {10.0, -10.0, 0.0}) {
    arc.EndCoordinate = {north, 0, none};
    arc.ComputeFromEnd ();
    EXPECT_EQ (arc.Radius, 5.0);
  }
  arc.StartAzimuth = none;
  arc.ComputeFromEnd ();
  EXPECT_TRUE (maths_IsNull (arc.Radius));
}

TEST_F (HorizontalAlignment, AnswersAtItsEndsAndNotBeyond) {
  const HorizontalElementArray line =
      Line ({0, 0, 0.0}, 100.0, {{'s', 50.0}, {'a', 30.0, 60.0, 60.0, false}});
  struct Row {
    double station;
    bool isThere;
    double azimuth;
  };
  for (const Row& row : {Row{99.9994, false, none},
                         {99.9996, false, none},
                         {100.0, true, 0.0},
                         {100.0004, true, 0.0},
                         {150.0, true, 0.0},
                         {180.0, true, 2 * M_PI - 0.5},
                         {180.0004, true, 2 * M_PI - 0.5},
                         {180.0006, false, none},
                         {none, false, none}}) {
    RoadPosition at;
    EXPECT_EQ (line.PositionAt (row.station, at), row.isThere) << row.station;
    EXPECT_LT (AzimuthError (at.Azimuth, row.azimuth), 1e-5) << row.station;
  }
  // The start point answers for the very start, also when the line runs elsewhere.
  const HorizontalElementArray east = Line ({0, 0, 1.5}, 0.0, {{'s', 50.0}});
  RoadPosition at;
  EXPECT_TRUE (east.PositionAt (0.0, at) && at.Azimuth == 0.0);
  EXPECT_TRUE (east.PositionAt (0.001, at) && at.Azimuth == 1.5);
  // Behind the end, before the start, and so far inside a bend that an end is nearer.
  for (const coord_CorrectedGrid& outside :
       {coord_CorrectedGrid (-1, 0, 0), coord_CorrectedGrid (90, -10, 0),
        coord_CorrectedGrid (none, none, none)}) {
    const coord_StationOffset nowhere = line.StationOffsetOf (outside);
    EXPECT_TRUE (maths_IsNull (nowhere.Station) && maths_IsNull (nowhere.Offset));
  }
  coord_CorrectedGrid min, max;
  EXPECT_TRUE (line.GetExtent (min, max));
  EXPECT_EQ (min.North, 0.0);
  EXPECT_EQ (max.East, 0.0);
  EXPECT_FALSE (HorizontalElementArray ().GetExtent (min, max));
}

TEST_F (HorizontalAlignment, TurnsASpiralRound) {
  const HorizontalElementArray line = Line ({5, 6, 1.0}, 0.0, {{'n', 80.0, 500.0, 200.0, false}});
  const auto& entry = static_cast<const HorizontalEntrySpiral&> (*line.Last ());
  const HorizontalExitSpiral exit (entry);
  EXPECT_TRUE (exit.StartRadius == 200.0 && exit.EndRadius == 500.0 && !exit.Clockwise);
  const Heading end = Follow ({5, 6, 1.0}, -1 / 200.0, -1 / 500.0, 80.0, 80.0);
  EXPECT_LT (Apart (exit.EndCoordinate, end.Beside (0.0)), 2e-7);
  const HorizontalEntrySpiral back (exit);
  EXPECT_TRUE (back.Equals (entry));
  EXPECT_FALSE (back.Equals (exit));
}

TEST_F (HorizontalAlignment, SuggestsWhatFollows) {
  struct Row {
    const char* elements;  // as kinds, behind the start point
    int32_t suggested;
  };
  for (const Row& row : {Row{"", ROAD_HorizontalStraight},
                         {"s", ROAD_HorizontalEntrySpiral},
                         {"ss", ROAD_HorizontalStraight},
                         {"sa", ROAD_HorizontalStraight},
                         {"sas", ROAD_HorizontalArc},
                         {"asa", ROAD_HorizontalStraight},
                         {"sn", ROAD_HorizontalArc},
                         {"sna", ROAD_HorizontalExitSpiral},
                         {"snax", ROAD_HorizontalStraight},
                         {"snaxs", ROAD_HorizontalEntrySpiral}}) {
    HorizontalElementArray line;
    line.New<HorizontalStartPoint> ();
    for (const char* kind = row.elements; *kind; kind++) line.Add (Make ({*kind, 1.0}));
    const auto suggested = line.SuggestNextElement (line.Count () - 1);
    ASSERT_TRUE (suggested) << row.elements;
    EXPECT_EQ (suggested->ElementType (), row.suggested) << row.elements;
  }
  EXPECT_EQ (HorizontalElementArray ().SuggestNextElement (0)->ElementType (),
             ROAD_HorizontalStartPoint);
}

TEST_F (HorizontalAlignment, TellsWhyAStationIsOfInterest) {
  HorizontalElementArray line = Line ({0, 0, 0}, 0.0,
                                      {{'s', 10},
                                       {'s', 10},
                                       {'a', 10, 90, 90},
                                       {'a', 10, 80, 80},
                                       {'x', 10, 80, none},
                                       {'n', 10, none, 70},
                                       {'a', 10, 70, 70},
                                       {'n', 10, 70, 60},
                                       {'s', 10},
                                       {'n', 10, none, 60},
                                       {'s', 10},
                                       {'a', 10, 50, 50},
                                       {'s', 10}});
  const uint32_t wanted[] = {ChainageAlignmentStart,
                             ChainageStraightToStraight,
                             ChainageToArc,
                             ChainageToArc,
                             ChainageArcToSpiral,
                             ChainageSpiralToSpiral,
                             ChainageSpiralToArc,
                             ChainageArcToSpiral,
                             ChainageSpiralToStraight,
                             ChainageStraightToSpiral,
                             ChainageSpiralToStraight,
                             ChainageToArc,
                             ChainageArcToStraight,
                             ChainageAlignmentEnd};
  NorvathRoad road;
  road.Horizontal = line;
  road.BuildChainageList ({.Horizontal = true});
  const ChainageElementArray& list = road.Chainages.Elements;
  ASSERT_EQ (list.Count (), static_cast<int> (std::size (wanted)));
  for (int i = 0; i < list.Count (); i++) {
    EXPECT_EQ (list.At (i)->Flags, wanted[i]) << i;
    EXPECT_NEAR (list.At (i)->Chainage, 10.0 * i, 1e-9);
  }
}

// Whatever numbers a file brings: nothing crashes, and every answer is finite or null.
TEST_F (HorizontalAlignment, StandsAnyNumbers) {
  const double numbers[] = {0.0,       -0.0,   1.0,   -1.0,    100.0, -250.0,   1e-300,
                            1e300,     -1e300, 1e308, 1.7e308, 1e-9,  2 * M_PI, INFINITY,
                            -INFINITY, NAN,    none,  none,    50.0,  3.0};
  std::mt19937 random (20240);
  const auto any = [&] { return numbers[random () % std::size (numbers)]; };
  const auto expectFinite = [] (std::initializer_list<double> values) {
    for (const double value : values) ASSERT_TRUE (std::isfinite (value));
  };
  for (int round = 0; round < 4000; round++) {
    SCOPED_TRACE (round);
    HorizontalElementArray line;
    line.New<HorizontalStartPoint> ();
    for (const char kind : {'s', 'a', 'n', 'x'}) {
      line.Add (Make ({kind, any (), any (), any (), random () % 2 == 0}));
      HorizontalBase& element = *line.Last ();
      element.StartAzimuth = any ();
      element.StartChainage = any ();
      element.StartCoordinate = {any (), any (), any ()};
      element.EndCoordinate = {any (), any (), any ()};
      if (kind == 'a') static_cast<HorizontalArc&> (element).Angle = any ();
      if (!element.IsSpiral () && random () % 2 == 0) element.ComputeFromEnd ();
      element.ComputeEnd ();
      expectFinite ({element.EndAzimuth, element.EndCoordinate.North, element.EndCoordinate.East});
      const RoadPosition at = element.PositionAt (any ());
      expectFinite ({at.Azimuth, at.Coordinate.North, at.Coordinate.East});
      const coord_StationOffset place = element.StationOffsetOf ({any (), any (), 0.0});
      expectFinite ({place.Station, place.Offset});
    }
    line.RecomputeAll ();
    line.StationOffsetOf ({any (), any (), any ()});
    line.CheckContinuity ();
    line.CheckEndsComputable ();
    NorvathRoad road;
    road.Horizontal = std::move (line);
    road.Horizontal.At (0)->StartChainage = any ();
    road.Horizontal.Last ()->EndChainage = any ();
    road.StationInterval = std::max (any (), 0.5);
    road.BuildChainageList ({true, true, true, true, true});
  }
  // Duties of the geometry below that such numbers break are told, not enforced.
  hearing.TakeAssertions ();
}

}  // namespace
}  // namespace clxml::testing
