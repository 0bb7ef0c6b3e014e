// Measures a road of 1,000 elements from the import to the road file and back, and cross sections.
// The import captures, computes and writes the road; the reader reads the file, and stations,
// coordinates and cross sections are queried.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "clxmli.h"
#include "platform/folder.h"
#include "road/RoadNorvath.h"
#include "road/roadfile.h"
#include "road/roadsections.h"
#include "road/roadtransform.h"
#include "road/roadxs.h"

namespace {

using namespace clxml;

std::string Tag (const std::string& name, const std::string& value) {
  return "<" + name + ">" + value + "</" + name + ">";
}

std::string Element (const std::string& name, const std::string& children) {
  return "  <DATABASE_" + name + "Record ID=\"0x20\">" + children + "</DATABASE_" + name +
         "Record>\n";
}

const std::string end = "  <DATABASE_EndEntityRecord rec=\"db_EndEntity\" ID=\"0x21\"/>\n";

std::string Spiral (bool isEntry, bool isRight) {
  return Element ("HorzSpiral", Tag ("EntrySpiral", isEntry ? "true" : "false") +
                                    Tag ("Length", "60") + Tag ("Radius", "350") +
                                    Tag ("ClockwiseSpiral", isRight ? "true" : "false"));
}

// Straight, spiral, arc, spiral, right and left in turn, over a row of parabolas, with templates
// and superelevation: `count` elements in all, and the groups that hold them.
std::string Exchange (int count) {
  std::string horizontal, vertical, placements, supers;
  for (int i = 0; i < count / 8; i++) {
    const std::string station = std::to_string (250 * i);
    // Each curve turns by 115 / 350 radians, back and forth.
    horizontal +=
        Element ("HorzStraight",
                 Tag ("Distance", "80") + Tag ("Azimuth", i % 2 ? "0.48571428571428571" : "0.2")) +
        Spiral (true, i % 2 == 0) +
        Element ("HorzArcRadLen", Tag ("ClockwiseAngle", i % 2 ? "false" : "true") +
                                      Tag ("Radius", "350") + Tag ("Length", "40")) +
        Spiral (false, i % 2 == 0);
    for (int k = 0; k < 2; k++)
      vertical += Element (
          "VertParabola",
          Tag ("Length", "100") +
              Tag ("IntersectionPoint", Tag ("Chainage", std::to_string (250 * i + 125 * k + 100)) +
                                            Tag ("Elevation", std::to_string (100 + 3 * k))));
    placements +=
        Element ("ApplyTmplts", Tag ("types", Tag ("item", "DBROAD_UserDefinedTemplate") +
                                                  Tag ("item", "DBROAD_UserDefinedTemplate")) +
                                    Tag ("names", Tag ("item", "Rural") + Tag ("item", "Rural")) +
                                    Tag ("Chainage", station));
    supers +=
        Element ("ApplySuper", Tag ("Pivot", "DBROAD_PivotCrown") + Tag ("Chainage", station) +
                                   Tag ("supers", Tag ("item", "-0.03") + Tag ("item", "0.03")) +
                                   Tag ("widenings", Tag ("item", "0") + Tag ("item", "0.5")));
  }
  const auto at = [] (const char* tag, const char* station) {
    return Tag (tag, Tag ("Chainage", station) + Tag ("Elevation", "100"));
  };
  const auto group = [] (std::string elements, const std::string& id) {
    return elements.replace (elements.find ("0x20"), 4, id) + end;
  };
  return "<?xml version=\"1.0\"?>\n<NorvathJob version=\"1140\">\n"
         "  <DATABASE_JobRecord>Bench</DATABASE_JobRecord>\n" +
         Element ("RoadHeader", Tag ("Deleted", "false") + Tag ("RoadName", "Long") +
                                    Tag ("SectionInterval", "20") + Tag ("HorzAlignment", "0xA") +
                                    Tag ("VertAlignment", "0xB") +
                                    Tag ("TemplateApplication", "0xC") +
                                    Tag ("SuperApplication", "0xD")) +
         group (Element ("HorzHeader",
                         Tag ("Method", "DBROAD_UserDefinedCoords") + Tag ("StartChainage", "0") +
                             Tag ("Azimuth", "0.2") +
                             Tag ("Coordinate", Tag ("North", "800000") + Tag ("East", "400000"))) +
                    horizontal,
                "0xA") +
         group (Element ("VertHeader", at ("Start", "0")) + vertical +
                    Element ("VertPoint", at ("Point", "1000000")),
                "0xB") +
         group (placements, "0xC") + group (supers, "0xD") +
         Element ("TmpltHeader", Tag ("Deleted", "false") + Tag ("TmpltName", "Rural")) +
         Element ("TmpltDistGrade", Tag ("Code", "EP") + Tag ("Grade", "-0.03") +
                                        Tag ("HorzDistance", "3.5") + Tag ("ApplySuper", "true") +
                                        Tag ("ApplyWidening", "true")) +
         Element ("TmpltBatter", Tag ("Cut", "0.5") + Tag ("Fill", "0.4")) + "</NorvathJob>\n";
}

// Files of the benchmark's own, gone with it.
class Files {
 public:
  explicit Files (int count) {
    std::string pattern = (std::filesystem::temp_directory_path () / "clxml-XXXXXX").string ();
    if (!mkdtemp (pattern.data ())) std::abort ();
    path = pattern;
    std::ofstream (path / "x.xml", std::ios::binary) << Exchange (count);
  }
  ~Files () { std::filesystem::remove_all (path); }
  Str Device (const char* name) const { return folder_DevicePath (Str ((path / name).c_str ())); }
  bool Import () const {
    std::filesystem::remove (path / "x.job");
    const uint32_t result =
        ImportCLXMLFile (Device ("x.xml").Data (), Device ("x.job").Data (), nullptr);
    uint16_t name[CLXMLI_NAME_UNITS];
    for (int32_t i = 0, n = clxmli_ExtraOutputFileCount (); i < n; i++)
      clxmli_GetExtraOutputFileName (name, i);
    return result == IMPORT_Ok && std::filesystem::exists (path / "Long(Bench).rxl");
  }

 private:
  std::filesystem::path path;
};

void CaptureComputeAndWrite (benchmark::State& state) {
  const Files files (static_cast<int> (state.range (0)));
  for (auto _ : state)
    if (!files.Import ()) state.SkipWithError ("not imported");
  state.SetItemsProcessed (state.iterations () * state.range (0));
}

void ReadRoadFile (benchmark::State& state) {
  const Files files (static_cast<int> (state.range (0)));
  if (!files.Import ()) state.SkipWithError ("not imported");
  const Str path = files.Device ("Long(Bench).rxl");
  for (auto _ : state) {
    NorvathRoad road;
    if (!road_LoadFile (road, path)) state.SkipWithError ("not read");
    benchmark::DoNotOptimize (road.Horizontal.Count ());
  }
  state.SetItemsProcessed (state.iterations () * state.range (0));
}

// The road of an import in memory, under the transform that a job without corrections gives.
class Loaded {
 public:
  explicit Loaded (benchmark::State& state) : files (static_cast<int> (state.range (0))) {
    SetCurrentTransformation (coordsys_Corrections ());
    if (!files.Import () || !road_LoadFile (road, files.Device ("Long(Bench).rxl")))
      state.SkipWithError ("not imported");
    SetCurrentTransformation (coordsys_Corrections ());
  }
  ~Loaded () { ReleaseCurrentTransformation (); }
  // The station of the next query: all over the road, the same ones in every run.
  double Station () {
    query = (query + 7919) % 100003;
    return road.StartChainage () + (road.EndChainage () - road.StartChainage ()) * query / 100003;
  }

  NorvathRoad road;

 private:
  const Files files;
  int query = 0;
};

void ComputeRoad (benchmark::State& state) {
  Loaded loaded (state);
  for (auto _ : state) {
    if (!loaded.road.Horizontal.RecomputeAll ()) state.SkipWithError ("not recomputed");
    loaded.road.Vertical.Settle ();
  }
  state.SetItemsProcessed (state.iterations () * state.range (0));
}

// Coordinate, azimuth and elevation of a station.
void QueryStation (benchmark::State& state) {
  Loaded loaded (state);
  for (auto _ : state) {
    const double station = loaded.Station ();
    RoadPosition position;
    if (!loaded.road.Horizontal.PositionAt (station, position)) state.SkipWithError ("no position");
    benchmark::DoNotOptimize (position);
    benchmark::DoNotOptimize (loaded.road.Vertical.ElevationAt (station));
  }
  state.SetItemsProcessed (state.iterations ());
}

// Station and offset of a coordinate beside the road.
void QueryCoordinate (benchmark::State& state) {
  Loaded loaded (state);
  const coord_CorrectedGrid beside =
      loaded.road.Horizontal.PointAtStationOffset (loaded.Station (), 3.5);
  for (auto _ : state) benchmark::DoNotOptimize (loaded.road.Horizontal.StationOffsetOf (beside));
  state.SetItemsProcessed (state.iterations ());
}

// A straight of 10 km with so many placements and as many superelevation entries; with blending
// neighbouring placements have different templates.
NorvathRoad RoadOfSections (int count, bool isBlended) {
  NorvathRoad road;
  constexpr double length = 10000.0;
  auto* straight = road.Horizontal.New<HorizontalStraight> ();
  straight->StartChainage = straight->StartAzimuth = 0.0;
  straight->Length = straight->EndChainage = length;
  straight->StartCoordinate = {800000.0, 400000.0, MATHS_Null};
  straight->ComputeEnd ();
  for (const double station : {0.0, length}) {
    auto* point = road.Vertical.New<VerticalPoint> ();
    point->Point = point->IntersectionPoint = {station, 100.0};
    point->StartPoint = point->EndPoint = point->Point;
  }
  road.Vertical.LinkNeighbours ();
  for (const char* name : {"A", "B"}) {
    CrossSectionTemplate section;
    section.Name = name;
    for (int i = 0; i < (*name == 'A' ? 4 : 5); i++) {
      auto* strip = section.New<TemplateDistanceGrade> ();
      strip->Code = "EDGE";
      strip->Grade = -0.03;
      strip->HorizontalDistance = 1.5;
      strip->ApplySuperelevation = strip->ApplyWidening = i < 2;
    }
    auto* slope = section.New<TemplateSideSlope> ();
    slope->CutGrade = slope->FillGrade = 0.5;
    road.Templates.Add (std::move (section));
  }
  for (int i = 0; i < count; i++) {
    const double station = length * i / count;
    const SidePlacement side = {SidePlacement::UserDefined, isBlended && i % 2 ? "B" : "A",
                                station};
    road.TemplatePlacements.New<SidedTemplatePlacement> ()->Sides = {side, side};
    auto* entry = road.Supers.New<SuperElevationWidening> ();
    entry->Chainage = station;
    entry->Superelevation = {0.02 * (i % 3), -0.02 * (i % 3)};
    entry->Widening = {0.5, 0.0};
  }
  return road;
}

// Cross sections at stations all over the road: by the index, and one by one by the road itself.
template <bool isIndexed>
void CrossSections (benchmark::State& state) {
  SetCurrentTransformation (coordsys_Corrections ());
  const NorvathRoad road =
      RoadOfSections (static_cast<int> (state.range (0)), state.range (1) != 0);
  const RoadSections sections (road);
  roadxs_CrossSection section;
  int query = 0;
  for (auto _ : state) {
    query = (query + 7919) % 100003;
    const double station = 10000.0 * query / 100003;
    if (isIndexed)
      sections.CrossSectionAt (station, section);
    else
      road.CrossSectionAt (station, section);
    if (section.Right ().NodeCount () < 4) state.SkipWithError ("no section");
    benchmark::DoNotOptimize (section);
  }
  state.SetItemsProcessed (state.iterations ());
  ReleaseCurrentTransformation ();
}

BENCHMARK (CrossSections<true>)
    ->Name ("CrossSectionsByIndex")
    ->ArgNames ({"placements", "blended"})
    ->ArgsProduct ({{10, 100, 1000, 10000}, {0, 1}})
    ->Unit (benchmark::kMicrosecond);
BENCHMARK (CrossSections<false>)
    ->Name ("CrossSectionAt")
    ->ArgNames ({"placements", "blended"})
    ->ArgsProduct ({{10, 100, 1000, 10000}, {0, 1}})
    ->Unit (benchmark::kMicrosecond);
BENCHMARK (ComputeRoad)->Arg (1000)->Arg (10000)->Unit (benchmark::kMillisecond);
BENCHMARK (QueryStation)->Arg (1000)->Arg (10000)->Unit (benchmark::kMicrosecond);
BENCHMARK (QueryCoordinate)->Arg (1000)->Arg (10000)->Unit (benchmark::kMicrosecond);
BENCHMARK (CaptureComputeAndWrite)->Arg (1000)->Arg (10000)->Unit (benchmark::kMillisecond);
BENCHMARK (ReadRoadFile)->Arg (1000)->Arg (10000)->Unit (benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN ();
