// Attacks the reading of a coordinate system block with any bytes.
// What opens has a size, is written in it and opens again; points go through every operation forth
// and back and come out as numbers or not at all. Leans on the library.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "geodesy/csib.h"

namespace {

using namespace clxml;

void Expect (bool holds) {
  if (!holds) std::abort ();
}

bool IsSound (const csib_Geodetic& point) {
  return std::isfinite (point.Latitude) && std::isfinite (point.Longitude) &&
         (!point.HasEllipsoidal || std::isfinite (point.EllipsoidalHeight));
}

bool IsSound (const csib_Grid& point) {
  return std::isfinite (point.North) && std::isfinite (point.East);
}

// A status, and with success a number.
void ExpectNumber (csib_Status status, double value) {
  Expect (status != CSIB_Ok || std::isfinite (value));
}

void Convert (csib_Block& block, const csib_Geodetic& wgs84) {
  csib_Geodetic local, back;
  csib_Grid grid;
  double value = 0.0;
  ExpectNumber (csib_Separation (block, wgs84, value), value);
  if (csib_WGS84ToLocal (block, wgs84, local) != CSIB_Ok) local = wgs84;
  Expect (IsSound (local));
  if (csib_LocalToWGS84 (block, local, back) == CSIB_Ok) Expect (IsSound (back));
  ExpectNumber (csib_PointScale (block, local, value), value);
  ExpectNumber (csib_CombinedScale (block, local, value), value);
  ExpectNumber (csib_Convergence (block, local, value), value);

  if (csib_Project (block, local, grid) == CSIB_Ok) Expect (IsSound (grid));
  if (csib_ShiftForward (block, grid) == CSIB_Ok) csib_HorizontalForward (block, grid);
  csib_ElevationOfLocal (block, local, grid);
  csib_VerticalForward (block, grid);
  csib_VerticalInverse (block, grid);
  csib_HorizontalInverse (block, grid);
  if (csib_ShiftInverse (block, grid) != CSIB_Ok) return;
  if (csib_Unproject (block, grid, back) != CSIB_Ok) return;
  Expect (IsSound (back) && std::fabs (back.Latitude) < 1.5707963267948968);
  if (csib_LocalHeightFromOrthometric (block, back) != CSIB_Ok) Expect (!back.HasEllipsoidal);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size) {
  std::unique_ptr<csib_Block> block, again;
  if (csib_Read (block, {data, size}) != CSIB_Ok) {
    Expect (!block);
    return 0;
  }
  double north = 0.0, east = 0.0;
  csib_GroundDeltas (*block, north, east);
  Expect (std::isfinite (north) && std::isfinite (east));
  Convert (*block, {0.9, -0.03, 100.0, 0.0, true, false});
  Convert (*block, {-1.5707963267948966, 3.2, 0.0, -1e5, false, true});
  Convert (*block, {block->OriginLatitude, block->OriginLongitude, 0.0, 0.0, false, false});

  std::size_t length = 0;
  const csib_StorageMode mode = block->StorageMode;
  if (csib_Size (*block, mode, &length) != CSIB_Ok) return 0;
  std::vector<uint8_t> bytes (length, 0xDB);
  if (csib_Write (*block, bytes, mode) != CSIB_Ok) return 0;
  Expect (csib_Read (again, bytes) == CSIB_Ok);
  std::size_t lengthAgain = 0;
  Expect (csib_Size (*again, mode, &lengthAgain) == CSIB_Ok && lengthAgain == length);
  return 0;
}
