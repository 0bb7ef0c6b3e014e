// Attacks the reading of a road file with any bytes.
// A road that is read is written and read again with the same elements, validated, and asked for
// its stations, positions, elevations and cross sections.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "folder.h"
#include "road/RoadNorvath.h"
#include "road/roadfile.h"
#include "road/roadsections.h"
#include "road/roadtransform.h"
#include "road/roadxs.h"

namespace {

using namespace clxml;

int CountAll (const NorvathRoad& road) {
  int count = road.Horizontal.Count () + road.Vertical.Count () + road.TemplatePlacements.Count () +
              road.Supers.Count () + road.Templates.Count ();
  for (const CrossSectionTemplate& crossSection : road.Templates) count += crossSection.Count ();
  return count;
}

// Elevations, grades and the walk over all places of a section.
void AskSection (const roadxs_CrossSection& section) {
  for (const double offset : {-1000.0, -3.0, 0.0, 2.5, 1000.0}) {
    const roadxs_Offset place (offset);
    section.DesignElevation (place);
    section.DesignElevationWithGround (place, -1.0);
    section.GradeAt (place);
  }
  roadxs_Offset place (ROADXS_LeftBatterOffset);
  int steps = 0;
  while (section.NextRight (place))
    if (steps++ > section.NodeCount ()) std::abort ();
}

// Whatever the numbers are, every question has an answer, if only a null.
void Ask (NorvathRoad& road) {
  road.Validate ();
  road.BuildChainageList ({true, true, true, true, true});
  ChainageItem item;
  item.Chainage = road.StartChainage ();
  const RoadSections sections (road);
  roadxs_CrossSection section;
  for (int i = 0; i < 20 && road.Chainages.Next (item); i++) {
    RoadPosition position;
    if (road.Horizontal.PositionAt (item.Chainage, position))
      road.StationAtPoint (position.Coordinate);
    road.Vertical.ElevationAt (item.Chainage);
    road.CrossSectionAt (item.Chainage, section);
    AskSection (section);
    sections.CrossSectionAt (item.Chainage + 1.0, section);
    AskSection (section);
  }
  road.Vertical.Settle ();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size) {
  static const fuzz::OwnFolder folder;
  static const bool isReady = (SetCurrentTransformation ({}), true);
  const std::filesystem::path in = folder.path / "in.rxl";
  std::ofstream (in, std::ios::binary)
      .write (reinterpret_cast<const char*> (data), static_cast<std::streamsize> (size));
  NorvathRoad road;
  if (!isReady || !road_LoadFile (road, fuzz::Device (in))) return 0;
  road.FileName = fuzz::Device (folder.path) + "\\out.rxl";
  NorvathRoad again;
  if (!road.Save () || !road_LoadFile (again, road.FileName)) std::abort ();
  if (CountAll (again) != CountAll (road)) std::abort ();
  Ask (road);
  return 0;
}
