// Road files byte for byte, and what reading makes of good and bad ones.
// The file every_kind.rxl beside this is written by hand. Leans on the road model and hearing.
#include "road/roadfile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <memory>

#include "Library/xml/xmlparser.h"
#include "road/RoadNorvath.h"
#include "road/roadnodes.h"
#include "support/faults.h"
#include "support/hearing.h"
#include "support/mounted.h"

namespace clxml::testing {
namespace {

constexpr double pi = CONSTANT_Pi;
constexpr double null = MATHS_Null;

class RoadFile : public LibraryTest {
 protected:
  std::string Bytes (const std::string& name) const {
    std::ifstream in (folder.Host (name), std::ios::binary);
    return {std::istreambuf_iterator<char> (in), {}};
  }
  void Put (const std::string& name, const std::string& bytes) const {
    std::ofstream (folder.Host (name), std::ios::binary) << bytes;
  }
};

// Lines of a text with the file's ends.
std::string WithLineEnds (std::string text) {
  for (std::size_t at = 0; (at = text.find ('\n', at)) != std::string::npos; at += 2)
    text.insert (at, 1, '\r');
  return text;
}

std::string EveryKind () {
  std::ifstream in (CLXML_SOURCE_DIR "/tests/road/every_kind.rxl", std::ios::binary);
  return WithLineEnds ({std::istreambuf_iterator<char> (in), {}});
}

const std::string rootTag =
    "<NorvathRoad version=\"4.0\" product=\"Norvath Chartwork Logbook\" productVersion=\"12.10\" "
    "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
    "xsi:schemaLocation=\"http://www.norvath.example/schema/RoadXML/4_0 "
    "http://www.norvath.example/schema/RoadXML/4_0/RoadXMLSchema-4.0.xsd\">\n";

std::string EmptyRoad (const std::string& head) {
  return WithLineEnds ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + rootTag + head + R"(
    <HorizontalAlignment>
        <StartStation/>
        <EndStation/>
    </HorizontalAlignment>

    <VerticalAlignment>
        <StartStation/>
        <EndStation/>
    </VerticalAlignment>

    <TemplatePositioning/>

    <SuperelevationAndWidening/>
</NorvathRoad>
)");
}

// Every field of an element by hand, null as "-", angles in degrees and grades in percent.
std::string Told (const RoadElement* element) {
  const auto n = [] (double value) {
    return maths_IsNull (value) ? "-" : std::string (xml_DoubleText (value).Data ());
  };
  const auto degrees = [&] (double angle) { return n (maths_Multiply (angle, 180 / pi)); };
  const auto percent = [&] (double grade) { return n (maths_Multiply (maths_Tan (grade), 100)); };
  const auto point = [&] (VerticalPosition p) {
    return n (p.Station) + "," + n (p.Elevation) + " ";
  };
  std::string text;
  if (const auto* h = RoadElement_Cast<HorizontalBase> (element)) {
    text = std::to_string (h->KeyinMethod) + " [" + h->PointName.Data () + "] " +
           n (h->StartChainage) + ">" + n (h->EndChainage) + " " + degrees (h->StartAzimuth) + ">" +
           degrees (h->EndAzimuth) + " " + n (h->StartCoordinate.North) + "," +
           n (h->StartCoordinate.East) + ">" + n (h->EndCoordinate.North) + "," +
           n (h->EndCoordinate.East) + " L" + n (h->Length);
    if (h->HasRadius ())
      text += " R" + n (*h->StartRadiusRef ()) + ">" + n (*h->EndRadiusRef ()) +
              (*h->DirectionRef () ? " right" : " left");
    if (!h->TangentialToPrevious) text += " bent";
  }
  if (const auto* arc = RoadElement_Cast<HorizontalArc> (element))
    text += " A" + degrees (arc->Angle);
  if (const auto* v = RoadElement_Cast<VerticalBase> (element))
    text = std::to_string (v->KeyinMethod) + " " + point (v->PreviousEndPoint) +
           point (v->StartPoint) + point (v->IntersectionPoint) + point (v->EndPoint) +
           point (v->NextStartPoint) + percent (v->GradeIn) + ">" + percent (v->GradeOut);
  if (const auto* curve = dynamic_cast<const VerticalCurve*> (element))
    text += " K" + n (curve->KFactor) + " " + point (curve->SagSummitPoint);
  if (const auto* arc = RoadElement_Cast<VerticalArc> (element))
    text += "R" + n (arc->Radius) + " L" + n (arc->Length) + " C" + point (arc->CentrePoint);
  if (const auto* parabola = RoadElement_Cast<VerticalParabola> (element))
    text += "L" + n (parabola->Length);
  if (const auto* parabola = RoadElement_Cast<VerticalAsymmetricParabola> (element))
    text += "L" + n (parabola->LengthIn) + "+" + n (parabola->LengthOut);
  for (std::size_t i = 0; i < 2; i++) {
    if (const auto* placement = RoadElement_Cast<SidedTemplatePlacement> (element))
      text += std::to_string (placement->Sides[i].Type) + placement->Sides[i].Name.Data () + "@" +
              n (placement->Sides[i].Chainage) + " ";
    if (const auto* super = RoadElement_Cast<SuperElevationWidening> (element))
      text +=
          (i == 0 ? std::to_string (super->Pivot) + "@" + n (super->Chainage) : std::string ()) +
          " " + percent (super->Superelevation[i]) + "/" + n (super->Widening[i]);
  }
  if (const auto* strip = RoadElement_Cast<TemplateStrip> (element))
    text = std::string (strip->Code.Data ()) + (strip->ApplySuperelevation ? " S" : "") +
           (strip->ApplyWidening ? " W " : " ") + n (strip->HorizontalDistance);
  if (const auto* strip = RoadElement_Cast<TemplateDistanceGrade> (element))
    text += " " + percent (strip->Grade);
  if (const auto* strip = RoadElement_Cast<TemplateDistanceDelta> (element))
    text += " " + n (strip->VerticalDistance);
  if (const auto* slope = RoadElement_Cast<TemplateSideSlope> (element))
    text = std::string (slope->Code.Data ()) + " " + percent (slope->CutGrade) + " " +
           percent (slope->FillGrade) + " " + n (slope->CutDitchWidth);
  return text;
}

// Everything that the file holds comes back, and goes out again byte for byte.
TEST_F (RoadFile, HoldsEveryKindOfElement) {
  Put ("Old.x.rxl", EveryKind ());
  NorvathRoad road;
  road.Horizontal.New<HorizontalStraight> ();  // is replaced
  ASSERT_TRUE (road_LoadFile (road, folder.Device ("Old.x.rxl")));
  EXPECT_TRUE (road.IsLoaded && road.HorizontalLoaded);
  EXPECT_EQ (road.FileName, folder.Device ("Old.x.rxl"));
  EXPECT_EQ (road.Name, "Main <north> & \"east\"");
  ASSERT_EQ (road.Templates.Count (), 2);
  EXPECT_EQ (road.Templates.At (0)->Name, "Rural left");
  std::vector<std::string> told;
  for (const RoadElementArray* list : std::initializer_list<const RoadElementArray*>{
           &road.Horizontal, &road.Vertical, &road.TemplatePlacements, &road.Supers,
           road.Templates.At (0)})
    for (int i = 0; i < list->Count (); i++) told.push_back (Told (list->Element (i)));
  EXPECT_EQ (told, (std::vector<std::string>{
                       "1 [P'1] 100>100 ->- -0.5,0.00000000000001>-0.5,0.00000000000001 L-",
                       "0 [] 100>100.5 90>90 -0.5,0.00000000000001>1,2 L0.5",
                       "3 [Q] 100.5>1E+20 0>0 1,2>-,- L12345678.901235 bent",
                       "3 [] 200>231.25 180>135 1,2>3,4 L31.25 R62.5>62.5 left A45",
                       "6 [R 7] ->- ->- -,->-,- L- R->- right bent A-",
                       "0 [] 300>360 22.5>30 5,6>7,8 L60 R->250 right",
                       "1 [] 360>1234.5678 30>36 7,8>9,10 L60 R250>500 left bent",
                       "0 100,50.25 100,50.25 100,50.25 100,50.25 175,51.75 ->2",
                       "1 100,50.25 175,51.75 200,52.25 225,51 350,44.75 2>-5 K7.125 195,52 R1000 "
                       "L50 C195,-948 ",
                       "0 225,51 350,44.75 400,42.25 450,43.25 560,45.5 -5>2 K14.25 -,- L100",
                       "0 450,43.25 560,45.5 600,46.25 660,45.75 900,44 2>-0.75 K36 620,46 L40+60",
                       "1 660,45.75 900,44 900,44 900,44 -,- -0.75>-",
                       "0Rural left@100 1@100 ",
                       "2@- 0@- ",
                       "0@150 -2.5/0 3/0.75",
                       "1@250 -/- -/-",
                       "2@350 0/1.5 0/1",
                       "EP\x1b S 3.5 -3",
                       " W 0.25 -0.125",
                       "BATTER 50 -40 1"}));
  road.FileName = folder.Device ("x.rxl");
  road.Name = "  " + road.Name + " ";
  ASSERT_TRUE (road.Save ());
  EXPECT_EQ (Bytes ("x.rxl"), EveryKind ());
}

TEST_F (RoadFile, OfAnEmptyRoadHasItsSections) {
  NorvathRoad road;
  road.StationInterval = null;
  road.FileName = folder.Device ("x.rxl");
  ASSERT_TRUE (road.Save ());
  EXPECT_EQ (Bytes ("x.rxl"), EmptyRoad ("    <Name/>\n    <StationInterval/>\n"));
  EXPECT_EQ (road_WriteXml (ChainageElement ()), nullptr);
}

TEST_F (RoadFile, IsFoundByItsNameInTheProjectFolder) {
  const Mounted mounted (folder_Class (folder_Project).Path.Data (), folder.path.c_str ());
  Put ("a.rxl", EveryKind ());
  Put ("b.c", EmptyRoad (""));
  NorvathRoad road;
  EXPECT_TRUE (road.LoadHorizontal ("a"));
  EXPECT_TRUE (road.HorizontalLoaded);
  EXPECT_FALSE (road.IsLoaded);
  EXPECT_EQ (road.Horizontal.Count (), 7);
  EXPECT_TRUE (road.Vertical.IsEmpty ());
  EXPECT_EQ (road.Templates.Count (), 0);
  EXPECT_EQ (road.StationInterval, 12.5);
  // Name and interval stay where the file has none.
  EXPECT_TRUE (road.Load ("b.c"));
  EXPECT_EQ (road.Name, "b");
  EXPECT_EQ (road.FileName, folder_Class (folder_Project).Path + "b.c");
  EXPECT_EQ (road.StationInterval, 12.5);
  EXPECT_TRUE (road.Horizontal.IsEmpty ());
  for (const char* name : {"", "none", "none.rxl"}) {
    EXPECT_FALSE (road.Load (name)) << name;
    EXPECT_FALSE (road.IsLoaded || road.HorizontalLoaded) << name;
  }
}

// Each node by its fields: how words and texts are read that the writer does not write.
TEST_F (RoadFile, ReadsWordsAndNumbersAsTheyAreMeant) {
  const auto read = [] (const std::string& xml) {
    xml_parser parser;
    xml_tree tree;
    const std::string text = "<?xml?>\n" + xml;
    EXPECT_TRUE (parser.Open (std::make_unique<xml_memory> (text)));
    auto element = road_ReadXml (*parser.NextElement (tree));
    parser.Close ();
    return element;
  };
  const struct {
    const char* children;
    double length, azimuth;
    int32_t method;
    bool isTangential;
  } straights[] = {
      {"", null, null, -1, true},
      {"<Length>-1e3x</Length><StartAzimuth>540</StartAzimuth>", -1000, 3 * pi, -1, true},
      {"<Length>x</Length><StartAzimuth>359.9999999999999</StartAzimuth>", 0, 0, -1, true},
      {"<Length/><KeyinMethod>existingpoint</KeyinMethod>", null, null, -1, true},
      {"<KeyinMethod>AzimuthAndEndStation</KeyinMethod><TangentialToPrevious>FALSE"
       "</TangentialToPrevious><EndAzimuth>7</EndAzimuth>",
       null, null, 1, false},
      {"<TangentialToPrevious>0</TangentialToPrevious><Length>1</Length><Length>2</Length>", 1,
       null, -1, true},
  };
  for (const auto& c : straights) {
    SCOPED_TRACE (c.children);
    const auto element = read (std::string ("<Straight>") + c.children + "</Straight>");
    const auto* straight = RoadElement_Cast<HorizontalStraight> (element.get ());
    ASSERT_NE (straight, nullptr);
    EXPECT_EQ (straight->Length, c.length);
    EXPECT_EQ (straight->StartAzimuth, c.azimuth);
    EXPECT_EQ (straight->EndAzimuth, c.azimuth);
    EXPECT_EQ (straight->KeyinMethod, c.method);
    EXPECT_EQ (straight->TangentialToPrevious, c.isTangential);
  }
  const auto isClockwise = [&] (const char* word) {
    const auto arc = read (std::string ("<Arc><Direction>") + word + "</Direction></Arc>");
    return static_cast<const HorizontalArc&> (*arc).Clockwise;
  };
  EXPECT_TRUE (isClockwise ("Right"));
  EXPECT_FALSE (isClockwise ("Left"));
  EXPECT_TRUE (isClockwise ("left"));
  const auto strip = [&] (const char* grade, const char* super) {
    const auto element =
        read (std::string ("<DistanceAndGrade><ApplySuperelevation>") + super +
              "</ApplySuperelevation><Grade>" + grade + "</Grade></DistanceAndGrade>");
    return static_cast<const TemplateDistanceGrade&> (*element).ApplySuperelevation;
  };
  EXPECT_TRUE (strip ("5", "TRUE"));
  EXPECT_FALSE (strip ("5", "1"));
  EXPECT_FALSE (strip ("-1E+20", "true"));
  EXPECT_TRUE (strip ("199900", "true"));   // 0.00050025 from straight up
  EXPECT_FALSE (strip ("200100", "true"));  // 0.00049975
  EXPECT_TRUE (strip ("", "true"));
  const auto super = read (
      "<ApplySuperelevation><Pivot>centre</Pivot><RightSide><Widening>2</Widening></RightSide>"
      "</ApplySuperelevation>");
  const auto& values = static_cast<const SuperElevationWidening&> (*super);
  EXPECT_EQ (values.Pivot, SuperElevationWidening::Crown);
  EXPECT_EQ (values.Widening, (std::array<double, 2>{null, 2.0}));
  const auto placed = read (
      "<ApplyTemplates><LeftSide><Type>None</Type><Name>n</Name></LeftSide></ApplyTemplates>");
  EXPECT_EQ (static_cast<const SidedTemplatePlacement&> (*placed).Left ().Name, "");
  EXPECT_EQ (read ("<StartStation>1</StartStation>"), nullptr);
  // No length: at the first station the element after the start point answers.
  const auto start = read ("<StartPoint><StartStation>5</StartStation></StartPoint>");
  const auto& point = static_cast<const HorizontalStartPoint&> (*start);
  EXPECT_TRUE (point.EndChainage == 5.0 && maths_IsNull (point.Length));
}

TEST_F (RoadFile, TakesTheFirstOfEachSectionAndItsOwnElementsOnly) {
  Put ("x.rxl",
       "<?xml version=\"1.0\"?>\n<NorvathRoad>"
       "<!-- c --><HorizontalAlignment><StartStation>5</StartStation><Straight/><VerticalArc/>"
       "<ApplyTemplates/><Unknown><Arc/></Unknown><Arc/></HorizontalAlignment>"
       "<HorizontalAlignment><ExitSpiral/></HorizontalAlignment>"
       "<TemplateRecord><Deleted>true</Deleted><Name>a</Name></TemplateRecord>"
       "<TemplateRecord><Deleted>True</Deleted><Name>b</Name><Arc/><SideSlope/></TemplateRecord>"
       "<SuperelevationAndWidening><ApplySuperelevation/></SuperelevationAndWidening>"
       "</NorvathRoad>");
  NorvathRoad road;
  road.Vertical.New<VerticalPoint> ();
  ASSERT_TRUE (road_LoadFile (road, folder.Device ("x.rxl")));
  ASSERT_EQ (road.Horizontal.Count (), 2);
  EXPECT_EQ (road.Horizontal.At (1)->ElementType (), ROAD_HorizontalArc);
  EXPECT_EQ (road.Vertical.Count (), 1) << "a section that the file lacks stays";
  ASSERT_EQ (road.Templates.Count (), 1);
  EXPECT_EQ (road.Templates.At (0)->Name, "b");
  EXPECT_EQ (road.Templates.At (0)->Count (), 1);
  EXPECT_EQ (road.Supers.Count (), 1);
}

TEST_F (RoadFile, OnOneLineIsReadHoweverLongItIs) {
  Put ("lines.rxl", EveryKind ());
  std::string line = EveryKind ();
  std::erase_if (line, [] (char c) { return c == '\r' || c == '\n'; });
  // Wherever a part of the line might be cut.
  NorvathRoad expected, road;
  ASSERT_TRUE (road_LoadFile (expected, folder.Device ("lines.rxl")));
  const std::size_t tag = line.find ("<Name>");
  for (std::size_t blanks = 16383 - line.size (); blanks < 16383; blanks += 97) {
    Put ("line.rxl", line.substr (0, tag) + std::string (blanks, ' ') + line.substr (tag));
    ASSERT_TRUE (road_LoadFile (road, folder.Device ("line.rxl"))) << blanks;
    ASSERT_EQ (road.Horizontal.Count (), expected.Horizontal.Count ()) << blanks;
    for (int i = 0; i < road.Horizontal.Count (); i++)
      ASSERT_EQ (Told (road.Horizontal.At (i)), Told (expected.Horizontal.At (i))) << blanks;
    ASSERT_EQ (road.Templates.Count (), expected.Templates.Count ()) << blanks;
  }
}

TEST_F (RoadFile, ThatCannotBeReadLeavesTheRoadAsItWas) {
  const std::string whole = EmptyRoad ("    <Name>a&amp;b</Name>\n");
  std::string deep (300, ' '), ends;
  for (int i = 0; i < 300; i++) {
    deep += "<a>";
    ends += "</a>";
  }
  const std::string begin = "<?xml version=\"1.0\"?>\n<NorvathRoad>";
  std::vector<std::string> files = {
      begin + "</NorvathRoad>x",
      begin + "&nbsp;</NorvathRoad>",
      begin + std::string (1, '\0') + "</NorvathRoad>",
      begin + deep + ends + "</NorvathRoad>",
      "<?xml version=\"1.0\"?>\n<Job/>",
      "\xEF\xBB\xBF" + whole,
  };
  // Nothing but the last line end may be missing.
  for (std::size_t length = 0; length + 2 < whole.size (); length++)
    files.push_back (whole.substr (0, length));
  NorvathRoad road;
  road.Horizontal.New<HorizontalStraight> ();
  for (const std::string& file : files) {
    Put ("x.rxl", file);
    hearing.log.clear ();
    EXPECT_FALSE (road_LoadFile (road, folder.Device ("x.rxl"))) << file;
    EXPECT_EQ (road.Horizontal.Count (), 1);
    EXPECT_FALSE (road.IsLoaded || road.HorizontalLoaded);
    EXPECT_EQ (hearing.log.size (), 1u) << file;
  }
  Put ("x.rxl", whole.substr (0, whole.size () - 2));
  EXPECT_TRUE (road_LoadFile (road, folder.Device ("x.rxl")));
}

TEST_F (RoadFile, ThatCannotBeWrittenLeavesNoHalf) {
  Put ("old.rxl", EveryKind ());
  NorvathRoad road;
  EXPECT_FALSE (road.Save ()) << "no name";
  ASSERT_TRUE (road_LoadFile (road, folder.Device ("old.rxl")));
  road.FileName = folder.Device ("x.rxl");
  Put ("x.rxl", "kept");
  std::filesystem::permissions (folder.Host ("x.rxl"), std::filesystem::perms::owner_read);
  EXPECT_FALSE (road.Save ());
  EXPECT_EQ (Bytes ("x.rxl"), "kept");
  std::filesystem::permissions (folder.Host ("x.rxl"), std::filesystem::perms::owner_all);
  {
    FailingDisk disk;
    disk.FullAfter (1000);
    EXPECT_FALSE (road.Save ());
  }
  EXPECT_FALSE (std::filesystem::exists (folder.Host ("x.rxl")));
  EXPECT_FALSE (hearing.fileErrors.empty ());
  road.FileName = folder.Device ("no\\such\\folder\\x.rxl");
  EXPECT_FALSE (road.Save ());
}

}  // namespace
}  // namespace clxml::testing
