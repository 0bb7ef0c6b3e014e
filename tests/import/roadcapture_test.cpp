// Legacy roads: what becomes of their elements, and the files beside the job.
// Roads are looked at through the files that an import wrote. Leans on importing and the road
// model.
#include "import/roadcapture.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "Library/xml/xml_out.h"
#include "Library/xml/xmlparser.h"
#include "import/extraoutput.h"
#include "import/importing.h"
#include "import/writejob.h"
#include "road/RoadNorvath.h"
#include "road/roadfile.h"
#include "road/roadtransform.h"

namespace clxml::testing {
namespace {

constexpr double pi = CONSTANT_Pi;
const std::string halfPi = "1.5707963267948966";

std::string Tag (const std::string& name, const std::string& value) {
  return "<" + name + ">" + value + "</" + name + ">";
}

std::string Element (const std::string& name, const std::string& children,
                     const std::string& id = "0x10") {
  return "<DATABASE_" + name + "Record ID=\"" + id + "\">" + children + "</DATABASE_" + name +
         "Record>\n";
}

const std::string end = "<DATABASE_EndEntityRecord rec=\"db_EndEntity\" ID=\"0x11\"/>\n";
const std::string alive = Tag ("Deleted", "false");

std::string Header (const std::string& name, const std::string& groups = "",
                    const std::string& id = "0x12") {
  return Element ("RoadHeader",
                  alive + Tag ("RoadName", name) + Tag ("SectionInterval", "20") + groups, id);
}
const std::string horizontal = Tag ("HorzAlignment", "0xA");
const std::string vertical = Tag ("VertAlignment", "0xB");
const std::string placements = Tag ("TemplateApplication", "0xC");
const std::string supers = Tag ("SuperApplication", "0xD");

// The horizontal elements. The alignment starts at station 100, north 1000, east 2000, to the
// north.
std::string Start (const std::string& id = "0xA") {
  return Element ("HorzHeader",
                  Tag ("Method", "DBROAD_ExistingPoint") + Tag ("StartPointName", "P") +
                      Tag ("Azimuth", "0") + Tag ("StartChainage", "100") +
                      Tag ("Coordinate", Tag ("North", "1000") + Tag ("East", "2000")),
                  id);
}
std::string Straight (const std::string& length, const std::string& azimuth) {
  return Element ("HorzStraight", Tag ("Distance", length) + Tag ("Azimuth", azimuth) +
                                      Tag ("KeyinEndPointName", "Q"));
}
std::string Arc (const std::string& record, const std::string& children, bool right = true) {
  return Element ("HorzArc" + record, Tag ("ClockwiseAngle", right ? "True" : "false") + children);
}
std::string RadLen (const std::string& radius, const std::string& length) {
  return Arc ("RadLen", Tag ("Radius", radius) + Tag ("Length", length));
}
std::string Spiral (bool entry, const std::string& radius, const std::string& length,
                    bool right = true) {
  return Element ("HorzSpiral", Tag ("EntrySpiral", entry ? "true" : "false") +
                                    Tag ("Radius", radius) + Tag ("Length", length) +
                                    Tag ("ClockwiseSpiral", right ? "true" : "FALSE"));
}

// Numbers to a millimetre, angles to as many degrees; "-" for null.
std::string Short (double value) {
  return maths_IsNull (value) ? "-" : xml_DoubleText (std::round (value * 1000) / 1000).Data ();
}
std::string Degrees (double radians) { return Short (maths_Multiply (radians, 180 / pi)); }

// Class, method, length, stations, radii, direction and tangency; of all but spirals the azimuths
// and the end as well.
std::string Told (const HorizontalBase& element) {
  static const char* const names[] = {"", "Arc", "Straight", "Start", "Exit", "Entry"};
  std::string text = names[element.ElementType ()];
  text += " " + std::to_string (element.KeyinMethod) + " L" + Short (element.Length) + " " +
          Short (element.StartChainage) + ">" + Short (element.EndChainage);
  if (!element.IsSpiral ())
    text += " " + Degrees (element.StartAzimuth) + ">" + Degrees (element.EndAzimuth) + " " +
            Short (element.EndCoordinate.North) + "," + Short (element.EndCoordinate.East);
  if (element.IsSpiral ())
    text += " R" + Short (*element.StartRadiusRef ()) + ">" + Short (*element.EndRadiusRef ());
  if (const auto* arc = RoadElement_Cast<HorizontalArc> (&element))
    text += " R" + Short (arc->Radius) + " A" + Degrees (arc->Angle);
  if (element.HasRadius ()) text += *element.DirectionRef () ? " right" : " left";
  if (!element.TangentialToPrevious) text += " bent";
  return text;
}

// The end of a spiral by Simpson's rule over its curvature, which runs linearly.
void ExpectSpiral (const HorizontalBase& spiral) {
  const auto curvature = [] (double radius) { return maths_IsNull (radius) ? 0.0 : 1 / radius; };
  const double sign = *spiral.DirectionRef () ? 1 : -1;
  const double from = sign * curvature (*spiral.StartRadiusRef ());
  const double to = sign * curvature (*spiral.EndRadiusRef ());
  const double length = spiral.Length;
  const auto azimuth = [&] (double s) {
    return spiral.StartAzimuth + from * s + (to - from) * s * s / (2 * length);
  };
  constexpr int steps = 2000;
  double north = 0, east = 0;
  for (int i = 0; i <= steps; i++) {
    const double weight = i == 0 || i == steps ? 1 : i % 2 ? 4 : 2;
    north += weight * std::cos (azimuth (i * length / steps));
    east += weight * std::sin (azimuth (i * length / steps));
  }
  // What the series leaves out at the capture's resolution.
  constexpr double tolerance = 2e-5;
  EXPECT_NEAR (spiral.EndCoordinate.North,
               spiral.StartCoordinate.North + north * length / steps / 3, tolerance);
  EXPECT_NEAR (spiral.EndCoordinate.East, spiral.StartCoordinate.East + east * length / steps / 3,
               tolerance);
  EXPECT_NEAR (std::remainder (spiral.EndAzimuth - azimuth (length), 2 * pi), 0, 1e-9);
}

class RoadCaptures : public ImportTest {
 protected:
  void SetUp () override { TakeNames (); }
  // The list of extra output files, which is then empty.
  std::vector<std::string> TakeNames () {
    std::vector<std::string> names;
    for (int32_t i = 0, n = ExtraOutputFileCount (); i < n; i++)
      names.push_back (TakeExtraOutputFile (i).Data ());
    return names;
  }
  // Imports the elements of one road "r" and reads its file.
  NorvathRoad Road (const std::string& elements) {
    TakeNames ();
    Stored (1140, elements);
    NorvathRoad road;
    EXPECT_TRUE (road_LoadFile (road, folder.Device ("r(Job).rxl")));
    return road;
  }
  std::vector<std::string> Alignment (const std::string& elements) {
    const NorvathRoad road = Road (Header ("r", horizontal) + Start () + elements + end);
    std::vector<std::string> told;
    for (int i = 0; i < road.Horizontal.Count (); i++) {
      const HorizontalBase& element = *road.Horizontal.At (i);
      told.push_back (Told (element));
      const auto* spiral = RoadElement_Cast<HorizontalSpiral> (&element);
      const bool runsItsWay =
          spiral && (spiral->IsEntry () ? spiral->EndRadius <= spiral->StartRadius
                                        : spiral->StartRadius <= spiral->EndRadius);
      if (runsItsWay && !maths_IsNull (spiral->Length)) ExpectSpiral (element);
      if (i == 0) continue;
      const HorizontalBase& previous = *road.Horizontal.At (i - 1);
      EXPECT_EQ (element.StartCoordinate.North, previous.EndCoordinate.North) << told.back ();
      EXPECT_EQ (element.StartCoordinate.East, previous.EndCoordinate.East) << told.back ();
      EXPECT_EQ (element.StartChainage, previous.EndChainage) << told.back ();
    }
    return told;
  }
};

TEST_F (RoadCaptures, HorizontalElementsFollowEachOther) {
  const std::string start = "Start 1 L- 100>100 ->- 1000,2000";
  const std::string arc = "Arc 2 L157.08 100>257.08 0>90 1100,2100 R100 A90 right";
  const std::string quarter = Arc ("RadAng", Tag ("Radius", "100") + Tag ("Angle", halfPi));
  const std::string exit = Spiral (false, "100", "60");
  const std::string known = "Exit 0 L60 257.08>317.08 R100>";
  const struct {
    const char* name;
    std::string elements;
    std::vector<std::string> told;  // behind the start
  } cases[] = {
      {"nothing but the start", "", {}},
      {"straights, in one line and not",
       Straight ("50", "1") + Straight ("50", "1.000004") + Straight ("0.5", halfPi) +
           Straight ("-1", halfPi),
       {"Straight 0 L50 100>150 57.296>57.296 1027.015,2042.074",
        "Straight 0 L50 150>200 57.296>57.296 1054.03,2084.147",
        "Straight 0 L0.5 200>200.5 90>90 1054.03,2084.647 bent",
        "Straight 0 L-1 200.5>199.5 90>90 1054.03,2083.647"}},
      {"the three arcs",
       quarter +
           Arc ("AngLen", Tag ("Length", "157.07963267948966") + Tag ("Angle", halfPi), false) +
           RadLen ("100", "314.1592653589793"),
       {arc, "Arc 3 L157.08 257.08>414.159 90>0 1200,2200 R100 A90 left",
        "Arc 0 L314.159 414.159>728.319 0>180 1200,2400 R100 A180 right"}},
      {"an arc leaves the tangent of the straight before it, the first element may",
       Straight ("50", "1") + Straight ("10", "") + quarter,
       {"Straight 0 L50 100>150 57.296>57.296 1027.015,2042.074",
        "Straight 0 L10 150>160 ->- -,- bent",
        "Arc 2 L157.08 160>317.08 ->- -,- R100 A90 right bent"}},
      {"numbers that are missing",
       Arc ("RadAng", Tag ("Radius", "")) + Straight ("", "0") + Spiral (false, "", ""),
       {"Arc 2 L- 100>- 0>- -,- R- A- right", "Straight 0 L- ->- 0>0 -,- bent",
        "Exit 0 L- ->- R->- right bent"}},
      {"angles that no arc has",
       RadLen ("0", "10") + RadLen ("1", "6.3"),
       {"Arc 0 L10 100>110 0>- -,- R0 A- right", "Arc 0 L6.3 110>116.3 ->- -,- R1 A- right bent"}},
      {"an exit spiral runs out to a straight",
       quarter + exit + Straight ("50", "2.1"),
       {arc, known + "- right", "Straight 0 L50 317.08>367.08 120.321>120.321*"}},
      {"to an arc",
       quarter + exit + RadLen ("300", "30"),
       {arc, known + "300 right", "Arc 0 L30 317.08>347.08 112.918>118.648*"}},
      {"to an arc behind an empty straight",
       quarter + exit + Straight ("0", "2") + RadLen ("300", "30"),
       {arc, known + "300 right", "Straight 0 L0 317.08>317.08 114.592>114.592*",
        "Arc 0 L30 317.08>347.08 114.592>120.321*"}},
      {"to an arc behind two of them",
       quarter + exit + Straight ("0", "2") + Straight ("0", "3") + RadLen ("300", "30"),
       {arc, known + "300 right", "Straight 0 L0 317.08>317.08 171.887>171.887*",
        "Arc 0 L30 317.08>347.08 171.887>177.617*"}},
      {"to a straight behind an empty one",
       quarter + exit + Straight ("0", "2") + Straight ("5", "3"),
       {arc, known + "- right", "Straight 0 L0 317.08>317.08 114.592>114.592*",
        "Straight 0 L5 317.08>322.08 171.887>171.887*"}},
      {"nowhere at the end", quarter + exit, {arc, known + "- right"}},
      {"to another spiral, from a straight line",
       quarter + exit + Spiral (true, "200", "40", false),
       {arc, known + "- right", "Entry 0 L40 317.08>357.08 R->200 left"}},
      {"an entry spiral comes from a straight",
       Straight ("10", "0") + Spiral (true, "50", "40"),
       {"Straight 0 L10 100>110 0>0 1010,2000", "Entry 0 L40 110>150 R->50 right"}},
      {"from an arc",
       quarter + Spiral (true, "50", "40"),
       {arc, "Entry 0 L40 257.08>297.08 R100>50 right"}},
      {"from an arc behind an empty straight",
       quarter + Straight ("0", halfPi) + Spiral (true, "50", "40"),
       {arc, "Straight 0 L0 257.08>257.08*", "Entry 0 L40 257.08>297.08 R100>50 right"}},
      {"from an empty straight alone",
       Straight ("0", "0") + Spiral (true, "50", "40"),
       {"Straight 0 L0 100>100*", "Entry 0 L40 100>140 R->50 right"}},
      {"radii that run against the kind, and equal ones",
       quarter + Spiral (true, "200", "40") + Spiral (true, "200", "40"),
       {arc, "Entry 0 L40 257.08>297.08 R100>200 right",
        "Entry 0 L40 297.08>337.08 R200>200 right"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    std::vector<std::string> expected = c.told, told = Alignment (c.elements);
    expected.insert (expected.begin (), start);
    ASSERT_EQ (told.size (), expected.size ());
    for (std::size_t i = 0; i < told.size (); i++) {
      // Ends behind a spiral are checked with all elements.
      if (expected[i].back () == '*') {
        expected[i].pop_back ();
        told[i].resize (std::min (told[i].size (), expected[i].size ()));
      }
      EXPECT_EQ (told[i], expected[i]);
    }
  }
}

// The first of an identifier counts, an empty one names nothing, and of a group of another kind
// nothing fits.
TEST_F (RoadCaptures, RoadsNameTheirGroups) {
  const std::string straight = Straight ("10", "0");
  const std::string point =
      Element ("VertPoint", Tag ("Point", Tag ("Chainage", "5") + Tag ("Elevation", "6")));
  const std::string vertHeader = Element ("VertHeader", "", "0xB");
  const struct {
    const char* name;
    std::string elements;
    int horizontal, vertical;
  } cases[] = {
      {"the header comes last", Start () + straight + end + Header ("r", horizontal), 2, 0},
      {"it comes first, notes in between",
       Header ("r", horizontal) + Start () + "<DATABASE_NoteRecord rec=\"db_Note\" ID=\"0x20\"/>" +
           straight + end,
       2, 0},
      {"two groups of one identifier",
       Start () + straight + end + Start () + end + Header ("r", horizontal), 2, 0},
      {"a header closes the group that is open",
       Start () + straight + vertHeader + point + end + Header ("r", horizontal + vertical), 2, 2},
      {"so does the end of the file", Header ("r", horizontal) + Start () + straight, 2, 0},
      {"an end that belongs to no road closes nothing",
       Start () + "<DATABASE_FooRecord/>" + end + straight + end + Header ("r", horizontal), 2, 0},
      {"no such group", Start () + end + Header ("r", vertical), 0, 0},
      {"an empty identifier", Start ("") + end + Header ("r", Tag ("HorzAlignment", "")), 0, 0},
      {"groups of another kind",
       Start () + straight + end +
           Header ("r", Tag ("VertAlignment", "0xA") + Tag ("SuperApplication", "0xA")),
       0, 0},
      {"a deleted road leaves its alignments to others",
       Element ("RoadHeader", Tag ("Deleted", "true") + Tag ("RoadName", "s")) + Start () + end +
           Header ("r", horizontal),
       1, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    const NorvathRoad road = Road (c.elements);
    EXPECT_EQ (road.Horizontal.Count (), c.horizontal);
    EXPECT_EQ (road.Vertical.Count (), c.vertical);
    EXPECT_EQ (road.Supers.Count (), 0);
    EXPECT_EQ (TakeNames (), std::vector<std::string>{folder.Device ("r(Job).rxl").Data ()});
  }
}

TEST_F (RoadCaptures, VerticalElementsAreSettledTogether) {
  const auto at = [] (const char* tag, const char* station, const char* elevation) {
    return Tag (tag, Tag ("Chainage", station) + Tag ("Elevation", elevation));
  };
  const NorvathRoad road =
      Road (Header ("r", vertical) +
            Element ("VertHeader", Tag ("GradeIn", "0.5") + at ("Start", "0", "10"), "0xB") +
            Element ("VertParabola", Tag ("Length", "40") + at ("IntersectionPoint", "100", "12")) +
            Element ("VertArc", Tag ("Radius", "1000") + at ("IntersectionPoint", "300", "8")) +
            Element ("VertAsymParabola", Tag ("EntryLength", "20") + Tag ("ExitLength", "30") +
                                             at ("IntersectionPoint", "500", "12")) +
            Element ("VertPoint", at ("Point", "600", "11")) + end);
  ASSERT_EQ (road.Vertical.Count (), 5);
  const VerticalBase& start = *road.Vertical.At (0);
  EXPECT_EQ (start.IntersectionPoint, (VerticalPosition{0, 10}));
  EXPECT_NEAR (start.GradeIn, 0.5, 1e-13);
  EXPECT_NEAR (start.GradeOut, std::atan (0.02), 1e-13);
  const auto& parabola = static_cast<const VerticalParabola&> (*road.Vertical.At (1));
  EXPECT_EQ (parabola.StartPoint, (VerticalPosition{80, 11.6}));
  EXPECT_EQ (parabola.EndPoint, (VerticalPosition{120, 11.6}));
  EXPECT_NEAR (parabola.KFactor, 10, 1e-11);
  EXPECT_EQ (parabola.SagSummitPoint, (VerticalPosition{100, 11.8}));
  // Symmetrical grades of 2 per cent: half the length is R sin (atan 0.02).
  const auto& arc = static_cast<const VerticalArc&> (*road.Vertical.At (2));
  EXPECT_NEAR (arc.Length, 2000 * std::sin (std::atan (0.02)), 1e-9);
  EXPECT_NEAR (arc.CentrePoint.Station, 300, 1e-9);
  const auto& asymmetric = static_cast<const VerticalAsymmetricParabola&> (*road.Vertical.At (3));
  EXPECT_EQ (asymmetric.LengthIn, 20);
  EXPECT_EQ (asymmetric.LengthOut, 30);
  EXPECT_EQ (asymmetric.EndPoint, (VerticalPosition{530, 11.7}));
  EXPECT_EQ (road.Vertical.At (4)->EndPoint, (VerticalPosition{600, 11}));
  // What is missing is null.
  const NorvathRoad empty =
      Road (Header ("r", vertical) + Element ("VertHeader", "", "0xB") + Element ("VertArc", "") +
            Element ("VertParabola", "") + Element ("VertPoint", "") + end);
  ASSERT_EQ (empty.Vertical.Count (), 4);
  EXPECT_TRUE (empty.Vertical.At (1)->EndPoint.IsNull ());
}

TEST_F (RoadCaptures, ListsAreFilledUpToBothSides) {
  const auto item = [] (const std::string& text) { return Tag ("item", text); };
  const std::string user = "DBROAD_UserDefinedTemplate";
  const auto placed = [&] (const std::string& types, const std::string& names) {
    const NorvathRoad road =
        Road (Header ("r", placements) +
              Element ("ApplyTmplts", Tag ("Chainage", "7") + types + names, "0xC") + end);
    std::string told;
    if (road.TemplatePlacements.Count () != 1) return told;
    for (const SidePlacement& side : road.TemplatePlacements.At (0)->Sides)
      told += std::to_string (side.Type) + side.Name.Data () + "@" + Short (side.Chainage) + " ";
    return told;
  };
  EXPECT_EQ (placed ("", ""), "1@7 1@7 ");
  EXPECT_EQ (placed (Tag ("types", item (user)), Tag ("names", item ("a") + item ("b"))),
             "0a@7 1@7 ");
  EXPECT_EQ (placed (Tag ("types", item ("DBROAD_InterpolateTemplate") + item (user)),
                     Tag ("names", item ("a"))),
             "2@7 0@7 ");
  EXPECT_EQ (placed (Tag ("types", item ("DBROAD_NoTemplate") + item ("x") + item (user)), ""),
             "1@7 1@7 ");
  const auto tilted = [&] (const std::string& children) {
    const NorvathRoad road = Road (Header ("r", supers) +
                                   Element ("ApplySuper", Tag ("Chainage", "7") + children, "0xD") +
                                   Element ("ApplySuper", "", "0xE") + end);
    std::string told;
    if (road.Supers.Count () != 2) return told;
    const SuperElevationWidening& super = *road.Supers.At (0);
    told = std::to_string (super.Pivot) + "@" + Short (super.Chainage);
    for (std::size_t i = 0; i < 2; i++)
      told += " " + Degrees (super.Superelevation[i]) + "/" + Short (super.Widening[i]);
    return told;
  };
  EXPECT_EQ (tilted (""), "1@7 -/- -/-");
  EXPECT_EQ (tilted (Tag ("Pivot", "DBROAD_PivotLeft") + Tag ("supers", item ("0.5")) +
                     Tag ("widenings", item ("") + item ("1.5"))),
             "0@7 28.648/- -/1.5");
  EXPECT_EQ (tilted (Tag ("Pivot", "DBROAD_PivotRight") +
                     Tag ("supers", item ("0") + item ("-0.5") + item ("1"))),
             "2@7 0/- -28.648/-");
}

TEST_F (RoadCaptures, TemplatesTakeTheirElements) {
  const std::string flags = Tag ("ApplySuper", "true") + Tag ("ApplyWidening", "false");
  const auto header = [] (const char* name, const std::string& deleted = alive) {
    return Element ("TmpltHeader", deleted + Tag ("TmpltName", name));
  };
  const auto grade = [&] (const std::string& value) {
    return Element ("TmpltDistGrade", Tag ("Code", "g&#x1f;") + Tag ("Grade", value) +
                                          Tag ("HorzDistance", "3") + Tag ("VertDistance", "-1") +
                                          flags);
  };
  const auto delta = [&] (const std::string& width, const std::string& height) {
    return Element ("TmpltDistDelta",
                    Tag ("HorzDistance", width) + Tag ("HeightDifference", height) + flags);
  };
  const std::string batter =
      Element ("TmpltBatter", Tag ("Code", "b") + Tag ("Cut", "0.5") + Tag ("Fill", "-0.25"));
  const NorvathRoad road =
      Road (grade ("1") + header ("a") + grade ("0.1") + grade ("1.570787") + grade ("-1.570806") +
            grade ("1.57077") + end + delta ("2", "0.5") + delta ("0", "1") + delta ("1", "-0") +
            delta ("", "") + batter + header ("gone", Tag ("Deleted", "true")) + grade ("0.1") +
            batter + header ("gone too", Tag ("Classification", "DBENTITY_DeletedNormal")) +
            delta ("x", "x") + header ("b", Tag ("Classification", "DBENTITY_Normal")) + batter +
            header ("a") + Header ("r"));
  std::string told;
  for (const CrossSectionTemplate& crossSection : road.Templates) {
    told += std::string (crossSection.Name.Data ()) + ":";
    for (int i = 0; i < crossSection.Count (); i++) {
      const TemplateElement* element = crossSection.At (i);
      if (const auto* strip = RoadElement_Cast<TemplateDistanceGrade> (element))
        told += " G" + Short (strip->Grade) + "/" + Short (strip->HorizontalDistance);
      if (const auto* strip = RoadElement_Cast<TemplateDistanceDelta> (element))
        told += " D" + Short (strip->HorizontalDistance) + "/" + Short (strip->VerticalDistance);
      if (const auto* slope = RoadElement_Cast<TemplateSideSlope> (element))
        told += " S" + Short (slope->CutGrade) + "/" + Short (slope->FillGrade) + "/" +
                Short (slope->CutDitchWidth);
    }
    told += "\n";
  }
  EXPECT_EQ (told,
             "a: G0.1/3 D3/-1 D3/-1 G1.571/3 D2/0.5 D-/- S0.5/-0.25/-\n"
             "b: S0.5/-0.25/-\n"
             "a:\n");
  ASSERT_EQ (road.Templates.Count (), 3);
  const auto* strip = RoadElement_Cast<TemplateStrip> (road.Templates.At (0)->At (1));
  EXPECT_EQ (strip->Code, "g\xC2\xB7");
  EXPECT_TRUE (strip->ApplySuperelevation);
  EXPECT_FALSE (strip->ApplyWidening);
}

TEST_F (RoadCaptures, BrokenElementsEndTheImport) {
  const auto error = [] (const std::string& text, const std::string& name) {
    return "XML read error: \n" + text + "\nDATABASE_" + name + "Record ID=\"0x10\"";
  };
  const auto group = [] (const std::string& kind, const std::string& rest) {
    return "road element of a group \"" + kind + "\"" + rest;
  };
  const struct {
    std::string elements;
    std::string message;
  } cases[] = {
      {Straight ("1", "0"),
       error (group ("Horizontal", ", of which none is open"), "HorzStraight")},
      {Element ("VertPoint", ""),
       error (group ("Vertical", ", of which none is open"), "VertPoint")},
      {Start () + Element ("VertArc", ""),
       error (group ("Vertical", " in one \"Horizontal\""), "VertArc")},
      {Element ("ApplyTmplts", "") + Element ("ApplySuper", ""),
       error (group ("SuperWidening", " in one \"TemplatePlacement\""), "ApplySuper")},
      {Element ("ApplySuper", "") + RadLen ("1", "1"),
       error (group ("Horizontal", " in one \"SuperWidening\""), "HorzArcRadLen")},
      {Start () + Element ("HorzSpiral", Tag ("EntrySpiral", "yes")),
       error ("Invalid boolean name=\"EntrySpiral\" with value=\"yes\"", "HorzSpiral")},
      {Element ("RoadHeader", Tag ("RoadName", "r")),
       error ("Invalid load_legacy_dbentity_Classification name=\"Classification\" with value=\"\"",
              "RoadHeader")},
      {Element ("TmpltHeader", Tag ("Deleted", "maybe")),
       error ("Invalid boolean name=\"Deleted\" with value=\"maybe\"", "TmpltHeader")},
  };
  for (const auto& c : cases) {
    EXPECT_EQ (Failure (1140, c.elements), c.message);
    EXPECT_TRUE (TakeNames ().empty ()) << c.message;
  }
}

// The file's name, and the name that the road has in it.
TEST_F (RoadCaptures, NamesKeepTheFilesInTheirFolder) {
  const struct {
    std::string road, job, file, name;
  } cases[] = {
      {"Main", "Job 1", "Main(Job 1).rxl", "Main(Job 1)"},
      {"A.B", "J", "A.B(J).rxl", "A"},
      {"", "J", "(J).rxl", "(J)"},
      {"..", "J", "..(J).rxl", ""},
      {"../x", "J", "road(J).rxl", "road(J)"},
      {"C:", "J", "road(J).rxl", "road(J)"},
      {"a\\b", "J", "road(J).rxl", "road(J)"},
      {"a&quot;*&lt;&gt;?|", "J", "road(J).rxl", "road(J)"},
      {"Caf\xC3\xA9", "a\\..\\b:/*?&quot;&lt;&gt;|c", "Caf\xC3\xA9(a_.._b________c).rxl",
       "Caf\xC3\xA9(a_"},
      {"Main", "0123456789012345678901234567890123456",
       "Main(012345678901234567890123456789012).rxl", "Main(012345678901234567890123456789012)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.road + " of " + c.job);
    std::filesystem::create_directory (folder.Host ("in"));
    Write ("x.xml", Exchange ("1140", "<DATABASE_JobRecord>" + c.job + "</DATABASE_JobRecord>" +
                                          Header (c.road)));
    ASSERT_EQ (ImportCLXMLFile (folder.Device ("x.xml").Data (),
                                folder.Device ("in\\x.job").Data (), nullptr),
               IMPORT_Ok);
    EXPECT_TRUE (Exists ("in/" + c.file));
    EXPECT_EQ (TakeNames (), std::vector<std::string>{folder.Device ("in\\" + c.file).Data ()});
    NorvathRoad road;
    EXPECT_TRUE (road_LoadFile (road, folder.Device ("in\\" + c.file)));
    EXPECT_EQ (road.Name, c.name.c_str ());
    EXPECT_EQ (hearing.TakeLog (), std::vector<std::string> ());
    std::filesystem::remove_all (folder.Host ("in"));
    EXPECT_EQ (std::distance (std::filesystem::directory_iterator (folder.path), {}), 1);
  }
}

TEST_F (RoadCaptures, WithoutAFolderGoToTheCurrentOneAndKeepTheirName) {
  Write ("x.xml", Exchange ("1140", "<DATABASE_JobRecord>J</DATABASE_JobRecord>" + Header ("A.B")));
  const std::filesystem::path before = std::filesystem::current_path ();
  std::filesystem::current_path (folder.path);
  const uint32_t result = ImportCLXMLFile ("x.xml", "x.job", nullptr);
  std::filesystem::current_path (before);
  ASSERT_EQ (result, IMPORT_Ok);
  EXPECT_EQ (TakeNames (), std::vector<std::string>{"A.B(J).rxl"});
  EXPECT_NE (Bytes ("A.B(J).rxl").find ("<Name>A.B</Name>"), std::string::npos);
}

TEST_F (RoadCaptures, TellOfFilesThatCouldNotBeWritten) {
  const std::string prefix = folder.Device ("").Data ();
  const std::string same = prefix + "r(Job).rxl", late = prefix + "late(Job).rxl",
                    longest = prefix + std::string (300, 'n') + "(Job).rxl";
  {
    // The job's own file and the exchange file are nobody's to replace.
    Write ("x.xml", Exchange ("1140", "<DATABASE_JobRecord>J</DATABASE_JobRecord>" + Header ("r") +
                                          Header ("s") + Header ("t")));
    std::filesystem::copy_file (folder.Host ("x.xml"), folder.Host ("s(J).rxl"));
    ASSERT_EQ (ImportCLXMLFile (folder.Device ("s(J).rxl").Data (),
                                folder.Device ("r(J).rxl").Data (), nullptr),
               IMPORT_Ok);
    EXPECT_EQ (hearing.TakeLog (),
               (std::vector<std::string>{ROADCAPTURE_NotWritten + prefix + "r(J).rxl",
                                         ROADCAPTURE_NotWritten + prefix + "s(J).rxl"}));
    EXPECT_EQ (Bytes ("s(J).rxl"), Bytes ("x.xml"));
    EXPECT_TRUE (Exists ("t(J).rxl"));
    EXPECT_EQ (TakeNames ().size (), 3u);
  }
  Write ("late(Job).rxl", "kept");
  std::filesystem::permissions (folder.Host ("late(Job).rxl"), std::filesystem::perms::owner_read);
  const std::vector<std::string> stored = Stored (
      1140, Header ("r") + Header (std::string (300, 'n')) + Header ("late") + Header ("r"));
  EXPECT_EQ (stored[0],
             "db_Note (r has been extracted to \\Norvath Data. To review or edit use Key in / "
             "Roads.)");
  EXPECT_EQ (stored.size (), 4u);
  EXPECT_EQ (TakeNames (), (std::vector<std::string>{same, longest, late, same}));
  EXPECT_EQ (hearing.TakeLog (), (std::vector<std::string>{ROADCAPTURE_NotWritten + longest,
                                                           ROADCAPTURE_NotWritten + late,
                                                           ROADCAPTURE_Replaced + same}));
  EXPECT_EQ (Bytes ("late(Job).rxl"), "kept");
  // What fails behind them leaves them where they are.
  std::filesystem::remove (folder.Host ("r(Job).rxl"));
  Failure (1140, Header ("r") + "<DATABASE_AreaRecord rec=\"db_Area\" ID=\"9\"/>");
  EXPECT_FALSE (Exists ("r(Job).rxl"));
  std::filesystem::remove (folder.Host ("x.job"));
  ImportBytes (Exchange ("1140", "<DATABASE_JobRecord>Job</DATABASE_JobRecord>" + Header ("r")) +
               "x");
  EXPECT_TRUE (Exists ("r(Job).rxl"));
  EXPECT_FALSE (Exists ("x.job"));
  EXPECT_EQ (TakeNames (), std::vector<std::string>{same});
}

// A small exchange file that names its elements without end is no way to fill a disk.
TEST_F (RoadCaptures, DoNotMultiplyWithoutEnd) {
  JobDatabase job;
  ASSERT_TRUE (job.Create (folder.Device ("x.job"), "Job"));
  job.Access ()->SetSingleActionMode ();
  {
    WriteJobControl control (job, 1140);
    RoadCapture& capture = control.Capture ();
    capture.FreeElements = 10;
    capture.MaximumCopies = 2;
    std::string elements = Element ("TmpltHeader", alive);
    for (int i = 0; i < 20; i++) elements += Element ("TmpltBatter", "");
    for (int i = 0; i < 9; i++) elements += Header ("r");
    const std::string text = Exchange ("1140", elements);
    xml_parser parser;
    xml_tree tree;
    ASSERT_TRUE (parser.Open (std::make_unique<xml_memory> (text)));
    parser.EnterLevel (1);
    while (const xml_element* element = parser.NextElement (tree)) control.Dispatch (*element);
    capture.SetFolder (folder.Device (""));
    capture.WriteRoads ();
    parser.LeaveLevel (1);
    parser.Close ();
  }
  job.Close ();
  // 10 elements and twice 30, for roads of 22 each.
  EXPECT_EQ (TakeNames ().size (), 9u);
  const std::vector<std::string> log = hearing.TakeLog ();
  const std::string refused = ROADCAPTURE_NotWritten + std::string (folder.Device ("").Data ());
  EXPECT_EQ (std::count (log.begin (), log.end (), refused + "r(Job).rxl"), 6);
}

// Azimuths that count from south, from the corrections on.
TEST_F (RoadCaptures, RunUnderTheCorrectionsInForce) {
  const auto corrections = [] (const char* south) {
    return "<DATABASE_CorrectionsRecord rec=\"db_Corrections\" ID=\"0x30\">" +
           Tag ("Corrections", Tag ("SouthAzimuth", south) +
                                   Tag ("GridOrientation", "COORDSYS_IncreasingNorthEast") +
                                   Tag ("Distances", "COORDSYS_GroundDistance") +
                                   Tag ("SubDivideCode", "COORDSYS_UseName")) +
           "</DATABASE_CorrectionsRecord>\n";
  };
  const auto northOf = [&] (const std::string& elements) {
    return Short (Road (elements).Horizontal.At (1)->EndCoordinate.North);
  };
  const std::string group = Start () + Straight ("50", "0") + end, road = Header ("r", horizontal);
  EXPECT_EQ (northOf (group + road), "1050");
  EXPECT_EQ (northOf (corrections ("true") + group + road), "950");
  EXPECT_EQ (northOf (corrections ("true") + corrections ("false") + group + road), "1050");
  EXPECT_EQ (northOf (group + corrections ("true") + road), "1050");
  EXPECT_EQ (northOf (Start () + corrections ("true") + Straight ("50", "0") + end + road), "950");
}

// From an exchange file with every element to the road files, and back with all their numbers.
TEST_F (RoadCaptures, GoOutOfTheJobWholeAndComeBack) {
  std::filesystem::copy_file (CLXML_SOURCE_DIR "/fuzz/seeds/import/roads.xml",
                              folder.Host ("x.xml"));
  ASSERT_EQ (ImportBytes (Bytes ("x.xml")), IMPORT_Ok);
  const std::vector<std::string> job = Job ();
  ASSERT_EQ (job.size (), 4u);
  EXPECT_EQ (job[2],
             "db_Note (../b has been extracted to \\Norvath Data. To review or edit use Key in / "
             "Roads.)");
  EXPECT_EQ (job[3], "db_Note (n\r\n)");
  ASSERT_EQ (clxmli_ExtraOutputFileCount (), 2);
  for (const char* name : {"a.b(J_1).rxl", "road(J_1).rxl"}) {
    uint16_t wide[CLXMLI_NAME_UNITS];
    char host[3 * CLXMLI_NAME_UNITS];
    clxmli_GetExtraOutputFileName (wide, *name == 'a' ? 0 : 1);
    ASSERT_TRUE (clxmli_HostPath (wide, host, sizeof host));
    EXPECT_EQ (host, folder.Host (name));
    NorvathRoad road;
    ASSERT_TRUE (road_LoadFile (road, folder.Device (name)));
    const std::string bytes = Bytes (name);
    EXPECT_TRUE (road.Save ());
    EXPECT_EQ (Bytes (name), bytes);
    EXPECT_EQ (road.Templates.At (0)->Count (), 3);
    if (*name != 'a') continue;
    EXPECT_EQ (road.Horizontal.Count (), 8);
    EXPECT_EQ (road.Vertical.Count (), 5);
    EXPECT_EQ (road.TemplatePlacements.Count () + road.Supers.Count (), 2);
    EXPECT_EQ (road.EndChainage (), 100 + 50 + 45 + 54 + 45 + 77 + 7);
    SetCurrentTransformation ({});
    EXPECT_TRUE (road.Validate ()) << road.FirstFault ();
    ReleaseCurrentTransformation ();
  }
  EXPECT_EQ (clxmli_ExtraOutputFileCount (), 0);
}

}  // namespace
}  // namespace clxml::testing
