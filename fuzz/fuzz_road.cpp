// Attacks the reading of a road file with any bytes.
// What is read is written and read again with the same elements, validated, and asked for its
// stations, places and elevations. Leans on the road model.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "folder.h"
#include "road/RoadNorvath.h"
#include "road/roadfile.h"
#include "road/roadtransform.h"

namespace {

using namespace clxml;

int CountAll (const NorvathRoad& road) {
  int count = road.Horizontal.Count () + road.Vertical.Count () + road.TemplatePlacements.Count () +
              road.Supers.Count () + road.Templates.Count ();
  for (const CrossSectionTemplate& crossSection : road.Templates) count += crossSection.Count ();
  return count;
}

// Whatever the numbers are, every question has an answer, if only a null.
void Ask (NorvathRoad& road) {
  road.Validate ();
  road.BuildChainageList ({true, true, true, true, true});
  ChainageItem item;
  item.Chainage = road.StartChainage ();
  for (int i = 0; i < 20 && road.Chainages.Next (item); i++) {
    RoadPosition position;
    if (road.Horizontal.PositionAt (item.Chainage, position))
      road.StationAtPoint (position.Coordinate);
    road.Vertical.ElevationAt (item.Chainage);
    road.Supers.ValueAt (item.Chainage);
    road.TemplatePlacements.PreviousPlacement (item.Chainage);
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
