// Cross sections: what the templates, superelevation, widening and blending of a road give.
#include "road/roadxs.h"

#include <random>
#include <string>
#include <vector>

#include "road/roadsections.h"
#include "road/roadtest.h"

namespace clxml::testing {
namespace {

constexpr double none = MATHS_Null;

class RoadCrossSections : public RoadTest {};

void AddGraded (CrossSectionTemplate& section, const char* code, double width, double percent) {
  auto* strip = section.New<TemplateDistanceGrade> ();
  strip->Code = code;
  strip->HorizontalDistance = width;
  strip->Grade = std::atan (percent / 100);
  strip->ApplySuperelevation = strip->ApplyWidening = true;
}

void AddStepped (CrossSectionTemplate& section, const char* code, double width, double height,
                 bool isWidened = false) {
  auto* strip = section.New<TemplateDistanceDelta> ();
  strip->Code = code;
  strip->HorizontalDistance = width;
  strip->VerticalDistance = height;
  strip->ApplyWidening = isWidened;
}

void AddSlope (CrossSectionTemplate& section, const char* code, double cut, double fill,
               double ditch) {
  auto* slope = section.New<TemplateSideSlope> ();
  slope->Code = code;
  slope->CutGrade = std::atan (cut);
  slope->FillGrade = std::atan (fill);
  slope->CutDitchWidth = ditch;
}

void Place (NorvathRoad& road, double station, const char* left, const char* right) {
  const auto side = [station] (const char* name) {
    const std::string word = name;
    return word == "-"   ? SidePlacement{SidePlacement::None, "", station}
           : word == "~" ? SidePlacement{SidePlacement::Interpolate, "", station}
                         : SidePlacement{SidePlacement::UserDefined, name, station};
  };
  road.TemplatePlacements.New<SidedTemplatePlacement> ()->Sides = {side (left), side (right)};
}

void Tilt (NorvathRoad& road, double station, double left, double right, int32_t pivot,
           double wideLeft, double wideRight) {
  auto* entry = road.Supers.New<SuperElevationWidening> ();
  entry->Chainage = station;
  entry->Pivot = pivot;
  const auto grade = [] (double percent) {
    return maths_IsNull (percent) ? none : std::atan (percent / 100);
  };
  entry->Superelevation = {grade (left), grade (right)};
  entry->Widening = {wideLeft, wideRight};
}

// East along the axis from station 0 to 400, level at 50. URBAN: a lane of 4 m at -3 %, a kerb of
// 0.15 m, a path of 2 m rising 0.04. RURAL: a lane of 3 m at -2 %.
NorvathRoad Sample () {
  NorvathRoad road;
  road.Name = "Sample";
  auto* start = road.Horizontal.New<HorizontalStartPoint> ();
  start->StartChainage = start->EndChainage = 0.0;
  start->StartCoordinate = start->EndCoordinate = {1000.0, 2000.0, none};
  auto* straight = road.Horizontal.New<HorizontalStraight> ();
  straight->StartChainage = 0.0;
  straight->StartCoordinate = {1000.0, 2000.0, none};
  straight->StartAzimuth = M_PI / 2;
  straight->Length = straight->EndChainage = 400.0;
  straight->ComputeEnd ();
  for (const double station : {0.0, 300.0}) {
    auto* point = road.Vertical.New<VerticalPoint> ();
    point->Point = point->IntersectionPoint = {station, 50.0};
    point->StartPoint = point->EndPoint = point->Point;
  }
  road.Vertical.LinkNeighbours ();
  CrossSectionTemplate urban, rural;
  urban.Name = "URBAN";
  AddGraded (urban, "LANE", 4.0, -3.0);
  AddStepped (urban, "KERB", 0.0, 0.15);
  AddStepped (urban, "PATH", 2.0, 0.04);
  AddSlope (urban, "BATTER", 1.0, 0.5, 2.0);
  rural.Name = "RURAL";
  AddGraded (rural, "EDGE", 3.0, -2.0);
  AddSlope (rural, "BANK", 0.5, 0.25, 1.0);
  road.Templates.Add (urban);
  road.Templates.Add (rural);
  return road;
}

std::string Listed (const roadxs_CrossSection& section) {
  std::string text;
  char piece[80];
  const auto add = [&] (const roadxs_Node& node) {
    std::snprintf (piece, sizeof piece, "%s%.8g/%.8g", text.empty () ? "" : " ", node.Offset,
                   node.Elevation);
    text += piece + std::string (node.Code.Data ());
  };
  for (int i = section.Left ().NodeCount (); i-- > 0;)
    add (section.Left ().Nodes[static_cast<std::size_t> (i)]);
  add (section.Centre);
  for (const roadxs_Node& node : section.Right ().Nodes) add (node);
  return text;
}

// All heights follow with a pocket calculator.
TEST_F (RoadCrossSections, FollowTemplatesSuperelevationWideningAndBlending) {
  using Pivot = SuperElevationWidening;
  struct Row {
    const char* name;
    void (*change) (NorvathRoad& road);
    double station;
    const char* listed;
  };
  for (const Row& row : {
           Row{"nothing placed", [] (NorvathRoad&) {}, 10, "0/50"},
           {"outside the profile", [] (NorvathRoad& r) { Place (r, 0, "RURAL", "URBAN"); }, 350,
            "0/1e+308"},
           {"one template on each side", [] (NorvathRoad& r) { Place (r, 0, "RURAL", "URBAN"); }, 0,
            "-3/49.94EDGE 0/50 4/49.88LANE 4.00005/50.03KERB 6.00005/50.07PATH"},
           {"an unknown name", [] (NorvathRoad& r) { Place (r, 0, "NONE", "RURAL"); }, 10,
            "0/50 3/49.94EDGE"},
           {"tilted about the crown and widened",
            [] (NorvathRoad& r) {
              Place (r, 0, "RURAL", "URBAN");
              Tilt (r, 0, 5, -5, Pivot::Crown, 0.5, 1);
            },
            10, "-3.5/50.175EDGE 0/50 5/49.75LANE 5.00005/49.9KERB 7.00005/49.94PATH"},
           // The right edge keeps the height of the untilted template but for the widening's part.
           {"tilted about the right edge",
            [] (NorvathRoad& r) {
              Place (r, 0, "RURAL", "RURAL");
              Tilt (r, 0, 5, -5, Pivot::Right, 0, 1);
            },
            10, "-3/50.27EDGE 0/50.12 4/49.92EDGE"},
           {"tilted about the left edge",
            [] (NorvathRoad& r) {
              Place (r, 0, "RURAL", "RURAL");
              Tilt (r, 0, 5, -5, Pivot::Left, 0, 0);
            },
            10, "-3/49.94EDGE 0/49.79 3/49.64EDGE"},
           {"before the first superelevation",
            [] (NorvathRoad& r) {
              Place (r, 0, "RURAL", "RURAL");
              Tilt (r, 100, 5, -5, Pivot::Left, 1, 1);
            },
            10, "-3/49.94EDGE 0/50 3/49.94EDGE"},
           {"blended to more nodes, and to fewer",
            [] (NorvathRoad& r) {
              Place (r, 0, "URBAN", "RURAL");
              Place (r, 40, "~", "~");
              Place (r, 100, "RURAL", "URBAN");
            },
            50,
            "-4.500025/50.005PATH -3.500025/49.985KERB -3.5/49.91LANE 0/50 "
            "3.5/49.91EDGE 3.750025/49.97KERB 4.750025/49.99PATH"},
           {"not at the placement itself, nor to none",
            [] (NorvathRoad& r) {
              Place (r, 0, "RURAL", "RURAL");
              Place (r, 100, "URBAN", "-");
            },
            0.0004, "-3/49.94EDGE 0/50 3/49.94EDGE"},
           // From -3 % over 4 m to -2 % over 3 m about an edge at +2 %: -0.2 and -0.12, half way.
           {"the centre moves with the blended pivot",
            [] (NorvathRoad& r) {
              Place (r, 0, "URBAN", "URBAN");
              Place (r, 100, "URBAN", "RURAL");
              Tilt (r, 0, 2, 2, Pivot::Right, 0, 0);
            },
            50,
            "-6.00005/50.07PATH -4.00005/50.03KERB -4/49.88LANE 0/49.84 "
            "3.5/49.91LANE 3.500025/49.985KERB 4.500025/50.005PATH"},
           {"widened steps",
            [] (NorvathRoad& r) {
              Place (r, 0, "-", "STEPS");
              CrossSectionTemplate steps;
              steps.Name = "STEPS";
              AddStepped (steps, "A", 2.0, 0.1, true);
              AddStepped (steps, "B", 0.0, -0.3, true);
              r.Templates.Add (steps);
              Tilt (r, 0, none, none, Pivot::Crown, 0, 1);
            },
            10, "0/50 3/50.15A 4/49.15B"},
           {"a strip without a width ends the side",
            [] (NorvathRoad& r) {
              Place (r, 0, "-", "OPEN");
              CrossSectionTemplate open;
              open.Name = "OPEN";
              AddStepped (open, "A", 2.0, none);
              AddGraded (open, "B", none, 1.0);
              AddGraded (open, "C", 1.0, 1.0);
              r.Templates.Add (open);
            },
            10, "0/50 2/50A 1e+308/1e+308B 1e+308/1e+308C"},
       }) {
    SCOPED_TRACE (row.name);
    NorvathRoad road = Sample ();
    row.change (road);
    roadxs_CrossSection section, indexed;
    road.CrossSectionAt (row.station, section);
    EXPECT_EQ (Listed (section), row.listed);
    EXPECT_EQ (section.Station, row.station);
    EXPECT_NEAR (section.Azimuth, M_PI, 1e-12);
    EXPECT_NEAR (section.Coordinate.East, 2000.0 + row.station, 1e-9);
    RoadSections (road).CrossSectionAt (row.station, indexed);
    EXPECT_TRUE (indexed == section);
  }
  EXPECT_TRUE (hearing.TakeAssertions ().empty ());
}

TEST_F (RoadCrossSections, AreEmptyOutsideTheAlignment) {
  NorvathRoad road = Sample ();
  Place (road, 0, "RURAL", "RURAL");
  roadxs_CrossSection section;
  for (const double station : {-0.0004, -1.0, 400.0006, none, double{NAN}}) {
    road.CrossSectionAt (10.0, section);
    road.CrossSectionAt (station, section);
    EXPECT_TRUE (section == roadxs_CrossSection ()) << station;
    EXPECT_EQ (section.NodeCount (), 0);
    EXPECT_TRUE (maths_IsNull (section.DesignElevation (roadxs_Offset (0.0))));
  }
  // A start point alone, as a road file has it, has no section.
  road.Horizontal.Delete (1);
  road.CrossSectionAt (0.0, section);
  EXPECT_TRUE (maths_IsNull (section.Station));
}

TEST_F (RoadCrossSections, GiveElevationsAndGradesAtOffsets) {
  NorvathRoad road = Sample ();
  Place (road, 0, "RURAL", "URBAN");
  roadxs_CrossSection section;
  road.CrossSectionAt (10.0, section);
  struct Row {
    double offset;
    int32_t node;
    double elevation, percent, onFill, onCut;  // with the ground 1 m below and 1 m above
  };
  const int32_t any = ROADXS_FreeNode;
  for (const Row& row : {
           Row{0.0, any, 50.0, 0.0, 50.0, 50.0},
           {2.0, any, 49.94, -3.0, 49.94, 49.94},
           {4.0, 1, 49.88, -3.0, 49.88, 49.88},
           {4.00005, 2, 50.03, -3.0, 50.03, 50.03},    // tied to the outer node
           {4.00005, any, 49.88, -3.0, 49.88, 49.88},  // the inner node is within the tolerance
           {5.00005, any, 50.05, 2.0, 50.05, 50.05},
           {6.00005, any, 50.07, 2.0, 50.07, 50.07},
           {6.0004, any, none, 2.0, 50.069825, 50.07},  // the grade has a tolerance
           {8.00005, any, none, none, 49.07, 50.07},    // the end of the ditch
           {9.00005, any, none, none, 48.57, 51.07},
           {-1.5, any, 49.97, -2.0, 49.97, 49.97},
           {-3.0, -1, 49.94, -2.0, 49.94, 49.94},
           {-5.0, any, none, none, 49.44, 50.44},
           {-5.0, ROADXS_LeftBeyondNode, none, none, 49.44, 50.44},
           {none, any, none, none, none, none},
       }) {
    SCOPED_TRACE (row.offset);
    roadxs_Offset place (row.offset);
    place.Node = row.node;
    EXPECT_NEAR (section.DesignElevation (place), row.elevation, 1e-9);
    EXPECT_NEAR (maths_Tan (section.GradeAt (place)), maths_Divide (row.percent, 100), 1e-9);
    EXPECT_NEAR (section.DesignElevationWithGround (place, -1.0), row.onFill, 1e-9);
    EXPECT_NEAR (section.DesignElevationWithGround (place, 1.0), row.onCut, 1e-9);
    EXPECT_TRUE (maths_IsNull (section.DesignElevationWithGround (place, none)) ||
                 !section.BeyondEnd (place));
  }
  // The end at the ground's own height is cut.
  EXPECT_NEAR (section.DesignElevationWithGround (roadxs_Offset (-5.0), -0.06), 50.44, 1e-9);
  EXPECT_NEAR (section.EndElevation (DBROAD_SideRight), 50.07, 1e-9);
  EXPECT_NEAR (section.EndGrade (DBROAD_SideLeft), std::atan (-0.02), 1e-12);
  // Where the slope or the grade that it needs is unknown there is no elevation; the ditch needs
  // none.
  section.Side (DBROAD_SideLeft).CutGrade = none;
  EXPECT_NEAR (section.DesignElevationWithGround (roadxs_Offset (-3.5), 1.0), 49.94, 1e-9);
  EXPECT_EQ (section.DesignElevationWithGround (roadxs_Offset (-5.0), 1.0), none);
  EXPECT_NEAR (section.DesignElevationWithGround (roadxs_Offset (-5.0), -1.0), 49.44, 1e-9);
  section.Side (DBROAD_SideLeft).HasBatter = false;
  EXPECT_EQ (section.DesignElevationWithGround (roadxs_Offset (-5.0), -1.0), none);
  EXPECT_TRUE (hearing.TakeAssertions ().empty ());

  roadxs_Offset slope (5.0);
  section.BatterOffset (slope);
  EXPECT_TRUE (slope.Offset == ROADXS_RightBatterOffset && slope.Code == "BATTER");
  EXPECT_EQ (section.GradeAt (slope), none);
  EXPECT_EQ (section.DesignElevation (slope), none);
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"Offset.Offset != ROADXS_RightBatterOffset"}));
  // Without a centre the strip runs from side to side.
  section.Centre.Offset = none;
  EXPECT_NEAR (section.DesignElevation (roadxs_Offset (0.5)), 49.91, 1e-9);
}

TEST_F (RoadCrossSections, AreWalkedFromPlaceToPlace) {
  NorvathRoad road = Sample ();
  Place (road, 0, "RURAL", "URBAN");
  roadxs_CrossSection section;
  road.CrossSectionAt (10.0, section);
  EXPECT_EQ (section.NodeCount (), 7);
  roadxs_Offset place;
  place.Node = ROADXS_LeftBatterNode;
  place.Offset = ROADXS_LeftBatterOffset;
  std::string codes;
  std::vector<roadxs_Offset> places = {place};
  while (section.NextRight (place)) {
    codes += " " + std::to_string (place.Node) + place.Code.Data ();
    places.push_back (place);
  }
  EXPECT_EQ (codes, " -1EDGE 0 1LANE 2KERB 3PATH 32767BATTER");
  for (std::size_t i = places.size () - 1; i-- > 0;) {
    EXPECT_TRUE (section.NextLeft (place));
    EXPECT_EQ (place.Node, places[i].Node);
  }
  EXPECT_FALSE (section.NextLeft (place));

  struct Row {
    double offset;
    int32_t node, right, left;  // the numbers after a step
  };
  for (const Row& row : {Row{-9, ROADXS_FreeNode, -1, ROADXS_LeftBatterNode},
                         {-1, ROADXS_FreeNode, 0, -1},
                         {0, ROADXS_FreeNode, 1, -1},
                         {4, ROADXS_FreeNode, 2, 0},
                         {5, ROADXS_FreeNode, 3, 2},
                         {7, ROADXS_RightBeyondNode, ROADXS_RightBatterNode, 3},
                         {9, 9, 9, 9}}) {
    roadxs_Offset right (row.offset), left (row.offset), out (row.offset);
    right.Node = left.Node = out.Node = row.node;
    section.NextRight (right);
    section.NextLeft (left);
    section.NextOutwards (out);
    EXPECT_EQ (right.Node, row.right) << row.offset;
    EXPECT_EQ (left.Node, row.left) << row.offset;
    EXPECT_EQ (out.Node, row.offset < 0 ? row.left : row.right) << row.offset;
  }
  // Beyond the last node of a side without a slope the way leads back to that node.
  section.Side (DBROAD_SideRight).HasBatter = false;
  roadxs_Offset beyond (7.0);
  EXPECT_TRUE (section.NextRight (beyond) && beyond.Node == 3 && !section.NextRight (beyond));

  section.Side (DBROAD_SideLeft).Nodes[0].Id = 10;
  section.Centre.Id = 11;
  section.Side (DBROAD_SideRight).Nodes[2].Id = 14;
  std::string ids;
  for (int32_t i = 0; i < section.NodeCount (); i++)
    ids += std::to_string (section.NodeId (i)) + " ";
  EXPECT_EQ (ids, "0 10 11 0 0 14 ");
  EXPECT_EQ (section.NodeId (6), 0);
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"node < NodeCount()"});

  // In rising order on the right; the left mirrors it.
  const roadxs_Offset order[] = {roadxs_Offset (0.0), roadxs_Offset (1.0), roadxs_Offset (2.0),
                                 places.back ()};
  for (int i = 0; i < 4; i++)
    for (int k = 0; k < 4; k++) {
      EXPECT_EQ (roadxs_CrossSection::IsFurtherOut (order[i], order[k]), i > k) << i << k;
      const roadxs_Offset a = i < 3 ? roadxs_Offset (-order[i].Offset) : places.front ();
      const roadxs_Offset b = k < 3 ? roadxs_Offset (-order[k].Offset) : places.front ();
      EXPECT_EQ (roadxs_CrossSection::IsFurtherOut (a, b), i > k) << i << k;
    }
  EXPECT_FALSE (roadxs_CrossSection::IsFurtherOut (roadxs_Offset (), order[1]));
}

TEST_F (RoadCrossSections, GiveHeightsBesideTheLine) {
  NorvathRoad road = Sample ();
  Place (road, 0, "-", "RURAL");
  struct Row {
    double offset, elevation;
  };
  for (const Row& row : {Row{0.0, 50.0},
                         {1.5, 49.97},
                         {3.0, 49.94},
                         {3.1, none},
                         {-0.0004, 50.0},
                         {-0.0006, none}}) {
    const coord_CorrectedGrid at = road.GetCoordinateAt (40.0, row.offset, 1.5);
    EXPECT_NEAR (at.North, 1000.0 - row.offset, 1e-9);
    EXPECT_NEAR (at.Elevation, maths_Add (row.elevation, 1.5), 1e-9) << row.offset;
    const coord_StationOffset back = road.GetStationOffset ({at.North, at.East, 60.0});
    EXPECT_NEAR (back.Station, 40.0, 1e-9);
    EXPECT_NEAR (back.Offset, row.offset, 1e-9);
    // Rounding can put the outermost point beyond the last node.
    if (row.offset != 3.0) {
      EXPECT_NEAR (back.Elevation, maths_Subtract (60.0, row.elevation), 1e-9) << row.offset;
    }
  }
  EXPECT_TRUE (road.GetCoordinateAt (401.0, 0.0, 0.0).NullHorizontal ());
}

// Lists in any order, with nulls, markers and odd numbers: the index and the walk agree, and every
// question has an answer.
TEST_F (RoadCrossSections, OfAnIndexAreThoseOfTheWalk) {
  const double numbers[] = {none, 0.0, -0.5, 1e-4, 3.0, 40.0, -1e300, 1e300, 0.02};
  const char* names[] = {"URBAN", "RURAL", "ODD", "NONE", "-", "~"};
  std::mt19937 random (15);
  const auto any = [&] { return numbers[random () % std::size (numbers)]; };
  for (int round = 0; round < 150; round++) {
    NorvathRoad road = Sample ();
    CrossSectionTemplate odd;
    odd.Name = "ODD";
    for (int i = 0; i < 3; i++) {
      AddGraded (odd, "g", any (), any ());
      AddStepped (odd, "s", any (), any (), i == 1);
      AddSlope (odd, "b", any (), any (), any ());
    }
    road.Templates.Add (odd);
    const bool isOrdered = random () % 2;
    double place = 0.0, tilt = 0.0;
    const auto step = [&] (double& station) {
      station = isOrdered ? station + static_cast<double> (random () % 4) * 17.00025
                          : static_cast<double> (random () % 300);
      return isOrdered || random () % 9 ? station : any ();
    };
    for (int i = 0; i < 8; i++) {
      Place (road, step (place), names[random () % 6], names[random () % 6]);
      Tilt (road, step (tilt), any (), any (), static_cast<int32_t> (random () % 3), any (),
            any ());
    }
    const RoadSections sections (road);
    for (int i = 0; i < 60; i++) {
      const double station =
          i % 2 ? static_cast<double> (random () % 200) / 2
                : road.TemplatePlacements.At (i % 8)->Left ().Chainage + (i % 3 - 1) * 0.00051;
      roadxs_CrossSection walked, indexed;
      road.CrossSectionAt (station, walked);
      sections.CrossSectionAt (station, indexed);
      ASSERT_TRUE (walked == indexed) << round << " " << station;
      for (const double offset : {-40.0, -3.0, 0.0, 2.0, 7.0}) {
        const roadxs_Offset at (offset);
        for (const double answer :
             {walked.DesignElevation (at), walked.DesignElevationWithGround (at, 0.5),
              walked.GradeAt (at)})
          ASSERT_TRUE (std::isfinite (answer)) << round << " " << station << " " << offset;
      }
      roadxs_Offset at (-1e9);
      for (int steps = 0; walked.NextRight (at); steps++) ASSERT_LT (steps, 40);
    }
  }
}

}  // namespace
}  // namespace clxml::testing
