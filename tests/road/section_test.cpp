// Templates, placements, superelevation, stations of interest and the road as a whole.
#include <string>
#include <vector>

#include "road/roadtest.h"

namespace clxml::testing {
namespace {

constexpr double none = MATHS_Null;

class Road : public RoadTest {};

std::string Listed (const ChainageElementArray& list) {
  std::string text;
  char piece[64];
  for (int i = 0; i < list.Count (); i++) {
    std::snprintf (piece, sizeof piece, "%s%.7g:%x", i ? " " : "", list.At (i)->Chainage,
                   list.At (i)->Flags);
    text += piece;
  }
  return text;
}

TEST_F (Road, ListsGrowByTwentyAndThenFourfoldAndKeepForeignElementsOut) {
  CachedAlignment group;
  std::vector<int> sizes = {group.Size ()};
  for (int i = 0; i < 81; i++) {
    if (i % 2)
      group.Add (std::make_unique<HorizontalArc> ());
    else
      group.Add (std::make_unique<VerticalArc> ());
    if (group.Size () != sizes.back ()) sizes.push_back (group.Size ());
  }
  EXPECT_EQ (sizes, (std::vector<int>{0, 20, 80, 320}));
  HorizontalElementArray line;
  line.TakeFrom (group);
  EXPECT_EQ (line.Count (), 40);
  EXPECT_EQ (RoadElement_Cast<HorizontalArc> (group.Element (0)), nullptr);
  EXPECT_EQ (HorizontalElementArray (line).Size (), 40);

  // Insert keeps one slot more free than Add.
  HorizontalElementArray inserted;
  inserted.Allocate (2);
  inserted.Insert (0, std::make_unique<HorizontalArc> ());
  inserted.Insert (0, std::make_unique<HorizontalStraight> ());
  EXPECT_EQ (inserted.Size (), 8);
  EXPECT_EQ (inserted.At (0)->ElementType (), ROAD_HorizontalStraight);
  inserted.Delete (0);
  inserted.ReplaceLast (std::make_unique<HorizontalEntrySpiral> ());
  EXPECT_TRUE (inserted.Count () == 1 && inserted.At (0)->IsSpiral ());
  EXPECT_TRUE (hearing.TakeAssertions ().empty ());
  EXPECT_EQ (inserted.At (1), nullptr);
  EXPECT_EQ (inserted.At (-1), nullptr);
  inserted.Allocate (5);
  inserted.Delete (7);
  inserted.Add (nullptr);
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"i < count", "i >= 0", "size == 0", "ndx < count",
                                       "element != NULL"}));
}

TEST_F (Road, StationsKeepTheirOrderAndTheirLimits) {
  struct Row {
    const char* name;
    double start, end;
    std::vector<double> stations;
    const char* listed;
  };
  for (const Row& row : {
           Row{"in any order, close ones merge",
               0,
               100,
               {50, 20, 80, 20.0004, 80.0006, 60},
               "20:a 50:1 60:20 80:4 80.0006:10"},
           {"the limits within the tolerance",
            10,
            20,
            {10.0004, 9.9994, 20.0004, 20.0016, 15},
            "10.0004:1 15:10 20.0004:4"},
           {"the start before what is there", 10, 20, {15, 10}, "10:2 15:1"},
           {"nothing between null limits", none, none, {5}, ""},
           {"but a null station", none, none, {none}, "1e+308:1"},
       }) {
    ChainageElementArray list;
    list.StartChainage = row.start;
    list.EndChainage = row.end;
    for (std::size_t i = 0; i < row.stations.size (); i++) list.Add (row.stations[i], 1u << i);
    EXPECT_EQ (Listed (list), row.listed) << row.name;
  }
  RxlChainageList list;
  for (const double station : {10.0, 20.0, 40.0}) list.Elements.Append (station, 1);
  struct Query {
    double station, next, previous;
    int before, after, nearest;  // 0 for none
  };
  for (const Query& q : {Query{5, 10, none, 0, 0, 0},
                         {10, 20, none, 1, 1, 1},
                         {15, 20, 10, 1, 2, 2},
                         {14.9, 20, 10, 1, 2, 1},
                         {20, 40, 10, 2, 2, 2},
                         {29, 40, 20, 2, 3, 2},
                         {40, none, 20, 3, 3, 3},
                         {41, none, 40, 0, 0, 0}}) {
    ChainageItem item{q.station, 0};
    EXPECT_EQ (list.Next (item) ? item.Chainage : none, q.next) << q.station;
    item = {q.station, 0};
    EXPECT_EQ (list.Previous (item) ? item.Chainage : none, q.previous) << q.station;
    int before = 0, after = 0, nearest = 0;
    EXPECT_EQ (list.FindIndexes (q.station, before, after, nearest), q.nearest != 0);
    EXPECT_TRUE (before == q.before && after == q.after && nearest == q.nearest) << q.station;
  }
}

TEST_F (Road, PlacementsHoldForEachSideUntilTheNextOne) {
  TemplatePlacementArray placements;
  const auto add = [&] (double station, int32_t left, const char* leftName, int32_t right,
                        const char* rightName) {
    SidedTemplatePlacement* one = placements.New<SidedTemplatePlacement> ();
    one->Sides = {SidePlacement{left, leftName, station}, SidePlacement{right, rightName, station}};
  };
  EXPECT_EQ (placements.PreviousPlacement (0.0), SidedTemplatePlacement ());
  add (0.0, SidePlacement::UserDefined, "A", SidePlacement::None, "");
  add (50.0, SidePlacement::Interpolate, "", SidePlacement::UserDefined, "B");
  add (90.0, SidePlacement::UserDefined, "C", SidePlacement::UserDefined, "A");
  struct Row {
    double station;
    const char *left, *right, *nextLeft, *nextRight;
  };
  for (const Row& row : {Row{-1, "", "", "A", ""},
                         {0, "A", "", "C", "B"},
                         {49.9994, "A", "", "C", "B"},
                         {49.9996, "A", "B", "C", "A"},
                         {60, "A", "B", "C", "A"},
                         {95, "C", "A", "", ""}}) {
    const SidedTemplatePlacement previous = placements.PreviousPlacement (row.station);
    const SidedTemplatePlacement next = placements.NextPlacement (row.station);
    EXPECT_TRUE (previous.Left ().Name == row.left && previous.Right ().Name == row.right)
        << row.station;
    EXPECT_TRUE (next.Left ().Name == row.nextLeft && next.Right ().Name == row.nextRight)
        << row.station;
  }
  EXPECT_TRUE (placements.CheckConsistency (0.0, 90.0) &&
               !placements.CheckConsistency (0.0006, 90.0) &&
               !placements.CheckConsistency (0.0, 89.0));
  placements.RenameTemplate (placements.At (0)->Sides[0].Name, "Z");
  const StrArray used = placements.UsedTemplateNames ();
  EXPECT_TRUE (used.Count () == 3 && used[0] == "Z" && used[1] == "B" && used[2] == "C");
}

struct Super {
  double station, left, right, widening = 1.0;
};
SuperElevationArray Supers (const std::vector<Super>& entries) {
  SuperElevationArray array;
  for (const Super& e : entries) {
    SuperElevationWidening* one = array.New<SuperElevationWidening> ();
    one->Chainage = e.station;
    one->Superelevation = {e.left, e.right};
    one->Widening = {e.widening, 0.0};
  }
  return array;
}

TEST_F (Road, SuperelevationRunsBetweenItsEntries) {
  SuperElevationArray array = Supers (
      {{100, -0.03, -0.03, 0}, {140, 0.05, -0.05, 2}, {150, none, 0.0, 9}, {200, 0.01, 0.03, 1}});
  array.At (1)->Pivot = SuperElevationWidening::Left;
  struct Row {
    double station, left, right, widening;
    int32_t pivot;
  };
  for (const Row& row : {Row{99, none, none, none, 1},
                         {100.0004, -0.03, -0.03, 0, 1},
                         {120, 0.01, -0.04, 1, 1},
                         {140, 0.05, -0.05, 2, 0},
                         {145, 0.05 - 0.04 / 12, -0.05 + 0.08 / 12, 2 - 1 / 12.0, 0},
                         {150, none, 0.0, 9, 1},
                         {175, none, 0.015, 5, 1},
                         {200, 0.01, 0.03, 1, 1},
                         {999, 0.01, 0.03, 1, 1}}) {
    const SuperElevationWidening value = array.ValueAt (row.station);
    EXPECT_NEAR (value.Superelevation[0], row.left, 1e-12) << row.station;
    EXPECT_NEAR (value.Superelevation[1], row.right, 1e-12) << row.station;
    EXPECT_NEAR (value.Widening[0], row.widening, 1e-12) << row.station;
    EXPECT_EQ (value.Pivot, row.pivot) << row.station;
  }
  EXPECT_EQ (SuperElevationArray ().ValueAt (5.0), SuperElevationWidening ());
  // No complete entry follows: the default before the first entry, then the last one as it is.
  array = Supers ({{100, none, 0.02, 3}, {200, 0.01, none, 4}});
  EXPECT_EQ (array.ValueAt (50.0), SuperElevationWidening ());
  EXPECT_EQ (array.ValueAt (150.0), *array.At (0));
  array = Supers ({{100, -0.03, -0.03, 0}, {140, 0.05, -0.05, 2}});
  EXPECT_TRUE (array.CheckConsistency (100, 200) && !array.CheckConsistency (100.1, 200));
  array.At (1)->Chainage = 100.0004;
  EXPECT_TRUE (array.CheckConsistency (100, 200));  // only what is exactly equal is the same
  array.At (1)->Chainage = 100.0;
  EXPECT_FALSE (array.CheckConsistency (100, 200));
}

TEST_F (Road, TellsWhereSuperelevationAndWideningChange) {
  struct Row {
    const char* name;
    std::vector<Super> entries;
    const char* listed;
  };
  for (const Row& row : {
           Row{"a bend: crown, plane, full, and back",
               {{0, -0.03, -0.03},
                {20, -0.03, -0.03},
                {50, 0.03, -0.03},
                {60, 0.06, -0.06},
                {90, 0.06, -0.06},
                {100, 0.03, -0.03},
                {130, -0.03, -0.03},
                {150, -0.03, -0.03}},
               "0:8000 20:8000 50:1000000 60:100000 90:100000 100:1000000 130:40000 150:40000"},
           {"a rate changes on the way",
            {{0, -0.03, -0.03}, {10, 0.01, -0.03}, {20, 0.02, -0.03}},
            "0:8000 10:2000000"},
           {"a crown turns over",
            {{0, -0.03, 0.03}, {10, 0, 0}, {20, 0.03, -0.03}},
            "0:8000 10:48000"},
           {"nothing happens", {{0, 0.01, 0.02}, {10, 0.01, 0.02}, {20, 0.01, 0.02}}, "0:8000"},
           {"unknown values", {{0, none, none}, {10, none, 0.02}, {20, 0.01, none}}, "0:8000"},
           {"widening with a flat top",
            {{0, 0, 0.1, 0}, {10, 0, 0.1, 0}, {20, 0, 0.1, 2}, {40, 0, 0.1, 2}, {50, 0, 0.1, 0}},
            "0:8000 10:30000 20:80000 40:80000 50:20000"},
           {"widening with a peak",
            {{0, 0, 0.1, 0}, {20, 0, 0.1, 3}, {50, 0, 0.1, 0}},
            "0:18000 20:80000 50:20000"},
       }) {
    NorvathRoad road;
    HorizontalStartPoint* start = road.Horizontal.New<HorizontalStartPoint> ();
    start->StartChainage = 0.0;
    start->EndChainage = 150.0;
    road.Supers = Supers (row.entries);
    road.BuildChainageList ({.SuperElevation = true});
    EXPECT_EQ (Listed (road.Chainages.Elements), row.listed) << row.name;
  }
}

TEST_F (Road, TemplatesTellWhatSuperelevationReplaces) {
  CrossSectionTemplate section;
  EXPECT_TRUE (maths_IsNull (section.SuperelevationGrade ()) &&
               section.SuperelevationWidth () == 0.0);
  auto* wall = section.New<TemplateDistanceGrade> ();
  wall->Grade = M_PI / 2;
  auto* kerb = section.New<TemplateDistanceDelta> ();
  auto* lane = section.New<TemplateDistanceDelta> ();
  section.New<TemplateSideSlope> ();
  for (TemplateStrip* strip : std::initializer_list<TemplateStrip*>{wall, kerb, lane})
    strip->ApplySuperelevation = true;
  wall->HorizontalDistance = kerb->HorizontalDistance = 0.0;
  lane->HorizontalDistance = 4.0;
  lane->VerticalDistance = -0.1;
  lane->ApplyWidening = true;
  EXPECT_DOUBLE_EQ (section.SuperelevationGrade (), std::atan (-0.025));
  EXPECT_TRUE (section.SuperelevationWidth () == 4.0 && section.WideningStripCount () == 1 &&
               !section.IsInvalid ());
  lane->HorizontalDistance = -1.0;
  EXPECT_TRUE (section.IsInvalid ());
  TemplateDistanceGrade a, b;
  b.ApplyWidening = true;  // does not count
  EXPECT_TRUE (a.Equals (b));
  b.Code = "kerb";
  EXPECT_FALSE (a.Equals (b) || a.Equals (*lane));
}

TEST_F (Road, TellsItsFirstFault) {
  NorvathRoad whole;
  EXPECT_TRUE (whole.Validate () && !whole.HasVerticalAlignment () && !whole.HasTemplates ());
  HorizontalStartPoint* start = whole.Horizontal.New<HorizontalStartPoint> ();
  start->StartCoordinate = start->EndCoordinate = {0, 0, 0};
  start->StartChainage = start->EndChainage = 0.0;
  HorizontalStraight* straight = whole.Horizontal.New<HorizontalStraight> ();
  straight->StartCoordinate = {0, 0, 0};
  straight->StartChainage = straight->StartAzimuth = 0.0;
  straight->Length = straight->EndChainage = 100.0;
  straight->ComputeEnd ();
  whole.Templates.Add (CrossSectionTemplate ());
  whole.Templates.At (0)->Name = "T";
  whole.TemplatePlacements.New<SidedTemplatePlacement> ()->Sides = {SidePlacement{0, "T", 10.0},
                                                                    SidePlacement{1, "", 10.0}};
  whole.Supers = Supers ({{0, 0, 0}, {100, 0, 0}});
  EXPECT_TRUE (whole.Validate () && whole.HasTemplates ());
  struct Row {
    void (*change) (NorvathRoad& road);
    const char* word;
  };
  for (const Row& row : {
           Row{[] (NorvathRoad& r) { r.Horizontal.At (1)->StartCoordinate.East = 0.00101; },
               "start"},
           {[] (NorvathRoad& r) { r.Horizontal.At (1)->EndAzimuth = 5.1e-6; }, "end"},
           {[] (NorvathRoad& r) { r.Vertical.New<VerticalArc> (); }, "vertical"},
           {[] (NorvathRoad& r) { r.TemplatePlacements.At (0)->Sides[0].Chainage = 10.0006; },
            "placements"},
           {[] (NorvathRoad& r) { r.Supers.At (1)->Chainage = 100.001; }, "superelevation"},
           {[] (NorvathRoad& r) { r.Templates.Add (*r.Templates.At (0)); }, "same name"},
           {[] (NorvathRoad& r) { r.Templates.Clear (); }, "does not exist"},
           {[] (NorvathRoad& r) {
              r.Templates.At (0)->New<TemplateDistanceGrade> ()->HorizontalDistance = -1.0;
            },
            "negative"},
       }) {
    NorvathRoad road = whole;
    row.change (road);
    EXPECT_FALSE (road.Validate ());
    EXPECT_NE (std::string (road.FirstFault ()).find (row.word), std::string::npos) << row.word;
  }
}

TEST_F (Road, IntervalStationsFallOnMultiples) {
  struct Row {
    double start, end, interval;
    const char* listed;
  };
  for (const Row& row :
       {Row{12, 61, 20, "20:100 40:100 60:100"},
        {-25, 20, 20, "-20:100 0:100 20:100"},
        {40, 80, 20, "40:100 60:100 80:100"},
        {0, 0.7, 0.1, "0:100 0.1:100 0.2:100 0.3:100 0.4:100 0.5:100 0.6:100 0.7:100"},
        {0, 39.9996, 20, "0:100 20:100 40:100"},
        {0, 39.9994, 20, "0:100 20:100"},
        {0, 10, 0, ""},
        {0, 10, -5, ""},
        {0, 10, none, ""},
        {0, 10, 1e-300, ""},
        {0, 1e300, 1, ""},
        {1e300, 1e300, 20, "1e+300:100"},
        {none, none, 20, ""}}) {
    NorvathRoad road;
    HorizontalStartPoint* start = road.Horizontal.New<HorizontalStartPoint> ();
    start->StartChainage = row.start;
    start->EndChainage = row.end;
    road.StationInterval = row.interval;
    road.BuildChainageList ({.Interval = true});
    EXPECT_EQ (Listed (road.Chainages.Elements), row.listed) << row.interval;
    const bool areTooMany = row.interval == 1e-300 || (row.end == 1e300 && row.start == 0);
    EXPECT_EQ (hearing.TakeLog ().size (), areTooMany ? 1u : 0u) << row.interval;
  }
}

}  // namespace
}  // namespace clxml::testing
