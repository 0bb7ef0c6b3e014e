// The components of a block that stand on grids: datum, projection, national grid, geoid, shift.
// Their tables of operations, for the lists by code, and the shift stage's own. Leans on csib.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "geodesy/csib.h"

namespace clxml {

/// Datum code 4. Parameters: the embedded form of the latitude grid, then of the longitude grid,
/// both in seconds of arc; from version 1.2 on a byte, DATUM_HeightFollows and then a height grid
/// in metres, or DATUM_NoHeightFollows.
extern const csib_DatumOperations csib_EmbeddedGridDatum;
inline constexpr uint8_t DATUM_HeightFollows = 0xF0;
inline constexpr uint8_t DATUM_NoHeightFollows = 0x0F;

/// Datum code 5. Parameters: the path of a combined grid file, with its terminator, in both storage
/// modes.
extern const csib_DatumOperations csib_CombinedGridDatum;

/// Projection code 15. Parameters: the embedded forms of the north and the east grid, corrections
/// in metres by true grid coordinates. Origin, false origin and scale of the block are forced.
extern const csib_ProjectionOperations csib_UKNationalGridProjection;

/// Projection code 19. Parameters: from version 10.3 on a byte, 0 with the path of a combined
/// projection grid behind it, or 1 with the embedded forms of the north and the east grid; before
/// that the two forms alone.
extern const csib_ProjectionOperations csib_ProjectionGridProjection;

/// Geoid code 1. Parameters: the embedded form of one grid, separations in metres.
extern const csib_GeoidOperations csib_GeoidGridGeoid;

// The shift grid. Parameters: a byte, 0 with the path of a projection shift grid behind it, or 1
// with the embedded forms of the north and the east grid, in metres by true grid coordinates.

/// The first byte of the parameters of projection code 19 and of the shift grid.
inline constexpr uint8_t CSIB_GridsByPath = 0;
inline constexpr uint8_t CSIB_GridsEmbedded = 1;

/// Takes the parameters and opens the grids. The rest as the slots of a table of operations: on a
/// failure the caller drops the component.
csib_Status csib_ShiftRead (csib_Block& block, csib_Bytes& in);
csib_Status csib_ShiftUnload (csib_Block& block, std::string_view path);
csib_Status csib_ShiftLoad (csib_Block& block, std::string_view path);
csib_Status csib_ShiftWrite (const csib_Block& block, csib_Writer& out, csib_StorageMode mode);
csib_Status csib_ShiftParameters (const csib_Block& block, std::vector<uint8_t>& out);
csib_Status csib_ShiftSize (const csib_Block& block, csib_StorageMode mode, std::size_t& out);
// The stage itself is csib_ShiftForward and csib_ShiftInverse of csib.h.

}  // namespace clxml
