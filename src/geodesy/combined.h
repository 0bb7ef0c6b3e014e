// Files that bundle several grids: their headers.
// The combined datum grid (CDG) names its grids and its ellipsoid; the combined projection grid
// (pjg) and the projection shift grid (sgf) give the places of two grids. Leans on str and
// Library/base/buffer.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Library/base/buffer.h"
#include "geodesy/csib_status.h"
#include "str.h"

namespace clxml {

/// Sizes of the text fields, terminator included.
inline constexpr int DATUM_CDGSignatureSize = 24;
inline constexpr int DATUM_CDGModelSize = 32;
inline constexpr int DATUM_CDGSourceFileSize = 64;

inline constexpr char DATUM_CDGSignature[] = "QRV COMBINED GRID FILE";
inline constexpr char DATUM_ProjectionSignature[] = "Norvath Combined Projection Grid";
inline constexpr char DATUM_ShiftSignature[] = "Norvath Projection Shift Grid";

/// One set of a combined datum grid.
struct datum_CDGSet {
  uint16_t SetType = 1;  ///< 1: two grids, 2: three
  uint32_t LatOffset = 0;
  uint32_t LonOffset = 0;
  uint32_t HeightOffset = 0;  ///< only with type 2
  Str LatFilename;            ///< what the grid was made from
  Str LonFilename;
  Str HeightFilename;
  double SemiMajorAxis = 0.0;  ///< of the target ellipsoid, metres
  double InverseFlattening = 0.0;
};

/// The bytes of one set of that type.
constexpr int datum_CDGSetSize (uint16_t type) noexcept {
  return type == 2 ? 4 + 3 * 4 + 3 * DATUM_CDGSourceFileSize + 16
                   : 4 + 2 * 4 + 2 * DATUM_CDGSourceFileSize + 16;
}

/// Writes the header of a combined datum grid, format version 1. False with nothing written when a
/// text does not fit its field (asserts "modelName.Length() < DATUM_CDGModelSize" and its like),
/// when a type is neither 1 nor 2 (asserts "(header->SetType == 1u) || (header->SetType == 2u)"),
/// or without a set or with more than 255.
bool datum_WriteCDGHeader (OutBuffer& out, const Str& modelName,
                           const std::vector<datum_CDGSet>& sets);

/// The target ellipsoid of a combined datum grid.
struct datum_CDGEllipsoid {
  double SemiMajorAxis = 0.0;  ///< metres
  double Flattening = 0.0;
};

/// The ellipsoid of the first set of type 1 or 2. False, with `ellipsoid` as it was, for a file
/// that does not open, another format version than 1, a wrong signature, no such set, or numbers
/// that are no ellipsoid's.
bool datum_ReadCDGEllipsoid (const Str& path, datum_CDGEllipsoid& ellipsoid);

/// Where the grids of a file stand.
struct datum_CombinedGrids {
  int Count = 0;             ///< 2 or 3
  uint32_t Offsets[3] = {};  ///< latitude or north, longitude or east, height
};

/// The grids of the first set of a combined datum grid. CSIB_NameMissing (no path),
/// CSIB_FileNotOpened, CSIB_HeaderUnreadable, CSIB_WrongFormat.
csib_Status datum_ReadCDG (std::string_view path, datum_CombinedGrids& grids);
/// The same for a file with the signature of a combined projection grid or projection shift grid.
/// CSIB_HeaderUnreadable too where the signature is cut off, CSIB_WrongFormat where it is another.
csib_Status datum_ReadGridPair (std::string_view path, std::string_view signature,
                                datum_CombinedGrids& grids);

}  // namespace clxml
