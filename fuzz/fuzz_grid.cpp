// Attacks the opening and the reading of grid files with any bytes.
// One file is taken for each kind there is: a plain grid in both storage modes, a combined datum
// grid, a projection grid and a shift grid. What opens answers points all over its bounds with a
// status, and with success a number. Leans on the library.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "folder.h"
#include "geodesy/combined.h"
#include "geodesy/csib.h"
#include "geodesy/grid.h"

namespace {

using namespace clxml;

void Expect (bool holds) {
  if (!holds) std::abort ();
}

// Points between and behind the bounds, the bounds themselves, and what is no number.
void LookUp (datum_Grid& grid) {
  for (const double part : {0.0, 0.37, 0.5, 1.0, 1.5, std::nan ("")}) {
    const double latitude = grid.LatMin + part * (grid.LatMax - grid.LatMin);
    const double longitude = grid.LonMax - part * (grid.LonMax - grid.LonMin);
    double value = 0.0;
    if (datum_GridLookup (grid, latitude, longitude, value) == CSIB_Ok)
      Expect (std::isfinite (value));
  }
  for (const csib_StorageMode mode : {CSIB_ByName, CSIB_Embedded}) {
    std::size_t size = 0;
    if (datum_GridSize (grid, mode, size) != CSIB_Ok || size > 65536) continue;
    std::vector<uint8_t> bytes (size);
    csib_Writer out (bytes);
    if (datum_GridWrite (grid, out, mode) == CSIB_Ok) Expect (out.Position () == size);
  }
}

void Convert (csib_Block& block) {
  csib_Geodetic local, back;
  csib_Grid grid;
  csib_WGS84ToLocal (block, {0.9, -0.03, 100.0, 0.0, true, false}, local);
  csib_LocalToWGS84 (block, local, back);
  csib_Project (block, local, grid);
  csib_Unproject (block, grid, back);
  csib_ShiftForward (block, grid);
  csib_ShiftInverse (block, grid);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size) {
  static const fuzz::OwnFolder folder;
  static const std::string host = folder.path / "grid";
  static const std::string path = fuzz::Device (host).Data ();
  std::ofstream (host, std::ios::binary)
      .write (reinterpret_cast<const char*> (data), static_cast<std::streamsize> (size));

  std::unique_ptr<datum_Grid> grid;
  if (datum_GridOpen (grid, path, 0) == CSIB_Ok) LookUp (*grid);
  std::unique_ptr<csib_Block> block;
  Expect (csib_Create (block, CSIB_Embedded, 6377397.155, 6356078.963) == CSIB_Ok);
  std::vector<uint8_t> embedded = {'g', 0};
  embedded.insert (embedded.end (), data, data + size);
  csib_Bytes source (embedded);
  if (datum_GridOpen (grid, *block, source, 0) == CSIB_Ok) LookUp (*grid);

  datum_CDGEllipsoid ellipsoid;
  if (datum_ReadCDGEllipsoid (Str (path.c_str ()), ellipsoid))
    Expect (std::isfinite (ellipsoid.SemiMajorAxis) && std::isfinite (ellipsoid.Flattening));
  block->StorageMode = CSIB_ByName;
  std::vector<uint8_t> name (path.begin (), path.end ());
  name.push_back (0);
  std::vector<uint8_t> byPath = {0};
  byPath.insert (byPath.end (), name.begin (), name.end ());
  csib_SetDatum (*block, CSIB_CombinedGridDatum, name);
  csib_SetProjection (*block, CSIB_ProjectionGrid, byPath);
  csib_SetShiftGrid (*block, byPath);
  Convert (*block);
  return 0;
}
