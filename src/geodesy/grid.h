// Grids of the coordinate system block: one format for every gridded quantity.
// Datum shifts, geoid separations, national corrections, projection and shift tables are opened
// from a file or from bytes inside a block, and looked up. Leans on csib and platform/file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "geodesy/csib.h"
#include "geodesy/csib_bytes.h"
#include "geodesy/csib_status.h"
#include "platform/file.h"

namespace clxml {

/// Bytes in front of the elements of a grid, and spare bytes behind them where it is embedded.
inline constexpr std::size_t DATUM_GridHeaderSize = 146;
inline constexpr std::size_t DATUM_GridSpareSize = 16;
/// The largest file, header and elements, that is written embedded.
inline constexpr std::size_t DATUM_LargestEmbedded = 65533;
/// The largest grid of a file, header and elements, that is read into memory when it is opened.
inline constexpr std::size_t DATUM_LargestInMemory = 64 * 1024 * 1024;
/// The largest number of nodes an axis that an interpolation may ask for: it bounds the cached
/// square, whatever a header says.
inline constexpr int32_t DATUM_LargestOrder = 256;

/// Bits of `Flags` of a grid's header.
enum datum_GridFlag : uint8_t {
  DATUM_HasDivisor = 2,
  DATUM_HasNull = 4,
  DATUM_HasFirstCarried = 8,
  DATUM_HasSecondCarried = 16,
  DATUM_NoWrapping = 32,
  DATUM_ColumnMajor = 64,
  DATUM_IndexedBySource = 128,  ///< the forward operation looks up at its source
};

/// How a value between the nodes is found.
enum datum_GridMethod : uint8_t { DATUM_Bilinear = 0, DATUM_Spline = 1, DATUM_Biquadratic = 2 };

/// An open grid. Made by datum_GridOpen, which checks all of it; only datum_GridLookup changes it,
/// and so it serves one thread at a time. Rows count from `LatMin` to the north, columns from
/// `LonMin` to the east, however they are stored; the bounds are decimal degrees, or metres where
/// the grid is indexed by grid coordinates.
struct datum_Grid {
  datum_Grid () = default;
  datum_Grid (const datum_Grid&) = delete;
  datum_Grid& operator= (const datum_Grid&) = delete;
  ~datum_Grid ();

  // From the header.
  std::string Name;  ///< its own name, up to 32 bytes
  double LatMin = 0.0;
  double LatMax = 0.0;
  double LonMin = 0.0;
  double LonMax = 0.0;
  double LatSpacing = 0.0;
  double LonSpacing = 0.0;
  int32_t Rows = 0;
  int32_t Columns = 0;
  double FirstCarried = 0.0;   ///< with DATUM_HasFirstCarried; nothing uses it
  double SecondCarried = 0.0;  ///< with DATUM_HasSecondCarried; nothing uses it
  double NullValue = 0.0;
  double Divisor = 1.0;
  uint8_t Flags = 0;
  datum_GridMethod Method = DATUM_Bilinear;
  int32_t Order = 2;   ///< nodes an axis that decide where an interpolation begins
  int32_t Needed = 2;  ///< nodes an axis that it uses: Order, but 3 for a biquadratic of order 2
  uint8_t ElementCode = 0;
  uint8_t ElementSize = 0;
  bool RowsAscend = true;  ///< as stored: south to north
  bool ColumnsAscend = true;

  bool Swapped = false;        ///< the elements have the other byte order
  bool Wraps = true;           ///< longitudes are taken modulo 360; never where the axes are metres
  bool IsByPath = false;       ///< opened by a path, not from bytes inside a block
  std::vector<uint8_t> Image;  ///< header, elements and spare bytes; empty while they are in `File`
  uint32_t BaseOffset = 0;     ///< of the grid's first byte inside its file
  std::string FileName;        ///< the path, or the name that an embedded grid was given
  file_Class File;             ///< open where there is no `Image`

  // The cached square of decoded values, where there is no `Image`.
  int32_t Window = 0;        ///< its side
  int32_t WindowColLow = 0;  ///< all four 0 until it is filled
  int32_t WindowColHigh = 0;
  int32_t WindowRowLow = 0;
  int32_t WindowRowHigh = 0;
  std::vector<double> Cells;        ///< `Window` rows of `Window` values
  std::vector<uint8_t> LineBuffer;  ///< `Window` elements as they are stored
  // Work space of spline and biquadratic, `Order` values each; the last one, of the spline alone,
  // never changes.
  std::vector<double> ColumnWeights, RowWeights, SplineWork, SplineInversePivots;

  bool Has (datum_GridFlag flag) const noexcept { return (Flags & flag) != 0; }
  /// Bytes of header and elements.
  std::size_t FileSize () const noexcept {
    return DATUM_GridHeaderSize +
           static_cast<std::size_t> (Rows) * static_cast<std::size_t> (Columns) * ElementSize;
  }
};

/// Opens the grid at `offset` in a file (a device path). A grid of up to DATUM_LargestInMemory
/// bytes is read at once and the file closed; a larger one, or one for which there is no memory,
/// stays in the file, which stays open. On a failure `grid` is empty: CSIB_NameMissing (no path),
/// CSIB_FileNotOpened, CSIB_HeaderUnreadable, CSIB_WrongGridMagic, CSIB_UnknownInterpolation (an
/// order that the method cannot use), CSIB_WrongFormat (an unknown element, an impossible count,
/// bound, spacing or divisor, or fewer elements than the header names), CSIB_WindowTooLarge (an
/// order above the nodes of an axis), CSIB_OutOfMemory, CSIB_OutOfMemoryForWindow.
csib_Status datum_GridOpen (std::unique_ptr<datum_Grid>& grid, std::string_view path,
                            uint32_t offset);
/// Opens a grid from its form inside a block, which `source` passes: by the block's storage mode
/// the path of a file, opened at `offset`, or a name and the grid's own bytes, of which a copy is
/// kept. Failures as above; CSIB_HeaderUnreadable where the source ends too early.
csib_Status datum_GridOpen (std::unique_ptr<datum_Grid>& grid, const csib_Block& block,
                            csib_Bytes& source, uint32_t offset);
/// Closes the file and frees all; an empty one is accepted.
void datum_GridClose (std::unique_ptr<datum_Grid>& grid) noexcept;

/// The grid's value at a point in the unit of its axes. Between the last node and a bound beyond it
/// the interpolation at the last nodes goes on. Allocates nothing; of a grid in a file it reads
/// only where the nodes lie outside the cached square. CSIB_OutsideGrid beyond the bounds (also for
/// NaN, and everywhere where the bounds are exchanged), CSIB_NullInGrid with `value` the grid's
/// null (also where the result is not finite), CSIB_WrongFormat where the file can no longer be
/// read.
csib_Status datum_GridLookup (datum_Grid& grid, double latitude, double longitude, double& value);

/// The bytes that datum_GridWrite writes. CSIB_NameMissing as there.
csib_Status datum_GridSize (const datum_Grid& grid, csib_StorageMode mode, std::size_t& size);
/// Writes the form inside a block: the name alone, or the name, the grid's bytes and 16 spare ones.
/// CSIB_NameMissing (by name, without one), CSIB_FileTooLong (above DATUM_LargestEmbedded),
/// CSIB_WrongFormat where the file cannot be read, CSIB_HeaderUnreadable where `out` is too small.
csib_Status datum_GridWrite (datum_Grid& grid, csib_Writer& out, csib_StorageMode mode);
/// The name in that form: the path, or the name that the embedded grid was given.
const std::string& datum_GridGetName (const datum_Grid& grid) noexcept;

}  // namespace clxml
