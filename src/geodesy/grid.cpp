// Opening grids, and their form inside a coordinate system block.
// Checks every header; the look-up relies on it. Uses csib_bytes and platform/file.
//
// A grid is 146 bytes of header and rows x columns elements, in either byte order:
//     0   2  not examined
//     2  14  magic with its terminator
//    16  32  name
//    48   8  LatMin, then LatMax, LonMin, LonMax, LatSpacing, LonSpacing: doubles
//    96   4  Rows, then Columns: signed
//   104   8  two carried doubles, then NullValue, Divisor
//   136   2  Order
//   138   1  Flags
//   140   1  method: a bit of 2 bilinear, else 4 spline, else 8 or 16 biquadratic, else bilinear
//   141   1  element: the lowest bit set of 1, 2, 4 (integers of 8, 16, 32 bits), 8, 16 (floats of
//            32 and 64 bits), 32 (10 bytes, the first 8 a double)
//   142   1  direction of the outer (slow) axis, bit 0 set when it ascends; 143 of the inner one
//
// A header is accepted when:
// 1. The magic is there.
// 2. Rows as stored is 0 to 10000, or else the bytes are in the other order, unless that gives
//    even more rows; both counts are at least 1, and their product fits a file.
// 3. An element bit is set; the order is one that the method can use, within both counts.
// 4. Bounds and spacings are finite and the spacings positive. Bounds that do not fit spacing and
//    count, or are exchanged, are accepted: the look-up keeps to the nodes that there are.
// 5. A divisor, where one is used, is finite and not zero.
// 6. The source has all elements.
#include "geodesy/grid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <new>

namespace clxml {

namespace {

constexpr char Magic[] = "QRV GRID FILE";
constexpr int32_t LargestRows = 10000;
constexpr int64_t LargestFile = 0xFFFFFFFF;
constexpr std::size_t RowsPlace = 96;
constexpr int32_t UsualWindow = 5;

using Header = std::span<const uint8_t, DATUM_GridHeaderSize>;

// The count of rows, as it stands and turned, tells the order. Of two that are both too large the
// smaller one is meant.
bool IsSwapped (int32_t rows) noexcept {
  const auto isRows = [] (int32_t count) { return count >= 0 && count <= LargestRows; };
  const int32_t turned = csib_Turned (rows);
  return !isRows (rows) && (isRows (turned) || rows < 0 || (turned > 0 && turned < rows));
}

bool IsAxis (double low, double high, double spacing) noexcept {
  return std::isfinite (low) && std::isfinite (high) && std::isfinite (spacing) && spacing > 0.0;
}

datum_GridMethod MethodOf (uint8_t flags) noexcept {
  if ((flags & 2) != 0) return DATUM_Bilinear;
  if ((flags & 4) != 0) return DATUM_Spline;
  if ((flags & (8 | 16)) != 0) return DATUM_Biquadratic;
  return DATUM_Bilinear;
}

// The size of the element, 0 for none.
uint8_t ElementOf (uint8_t flags, uint8_t& code) noexcept {
  constexpr std::array<uint8_t, 6> sizes = {1, 2, 4, 4, 8, 10};
  for (code = 0; code < sizes.size (); code++)
    if ((flags >> code & 1) != 0) return sizes[code];
  return 0;
}

// Conditions 1 to 5; on success everything of the grid that a header gives is set.
csib_Status TakeHeader (datum_Grid& grid, Header bytes) {
  csib_Bytes in (bytes);
  in.Skip (2);
  if (std::memcmp (in.Take (sizeof Magic).data (), Magic, sizeof Magic) != 0)
    return CSIB_WrongGridMagic;

  std::memcpy (&grid.Rows, bytes.data () + RowsPlace, sizeof grid.Rows);
  grid.Swapped = IsSwapped (grid.Rows);
  in.SetSwapped (grid.Swapped);
  const std::span<const uint8_t> name = in.Take (32);
  grid.Name.assign (name.begin (), std::find (name.begin (), name.end (), uint8_t{0}));
  for (double* value :
       {&grid.LatMin, &grid.LatMax, &grid.LonMin, &grid.LonMax, &grid.LatSpacing, &grid.LonSpacing})
    *value = in.Double ();
  grid.Rows = in.Number<int32_t> ();
  grid.Columns = in.Number<int32_t> ();
  for (double* value : {&grid.FirstCarried, &grid.SecondCarried, &grid.NullValue, &grid.Divisor})
    *value = in.Double ();
  grid.Order = in.Number<uint16_t> ();
  grid.Flags = in.Byte ();
  in.Skip (1);
  grid.Method = MethodOf (in.Byte ());
  grid.ElementSize = ElementOf (in.Byte (), grid.ElementCode);
  const bool outerAscends = (in.Byte () & 1) != 0;
  const bool innerAscends = (in.Byte () & 1) != 0;
  grid.RowsAscend = grid.Has (DATUM_ColumnMajor) ? innerAscends : outerAscends;
  grid.ColumnsAscend = grid.Has (DATUM_ColumnMajor) ? outerAscends : innerAscends;
  grid.Wraps = !grid.Has (DATUM_NoWrapping);

  if (grid.Rows < 1 || grid.Columns < 1 || grid.ElementSize == 0 ||
      int64_t{grid.Rows} * grid.Columns > LargestFile)
    return CSIB_WrongFormat;
  if (grid.Method == DATUM_Bilinear) grid.Order = 2;
  if (grid.Order > grid.Columns || grid.Order > grid.Rows) return CSIB_WindowTooLarge;
  if (grid.Order < 2 || grid.Order > DATUM_LargestOrder) return CSIB_UnknownInterpolation;
  grid.Needed = grid.Order;
  if (grid.Method == DATUM_Biquadratic && std::min (grid.Rows, grid.Columns) > 2)
    grid.Needed = std::max (grid.Order, 3);
  if (!IsAxis (grid.LatMin, grid.LatMax, grid.LatSpacing) ||
      !IsAxis (grid.LonMin, grid.LonMax, grid.LonSpacing))
    return CSIB_WrongFormat;
  if (grid.Has (DATUM_HasDivisor) && (!std::isfinite (grid.Divisor) || grid.Divisor == 0.0))
    return CSIB_WrongFormat;
  return CSIB_Ok;
}

csib_Status MakeWorkSpace (datum_Grid& grid) {
  const auto order = static_cast<std::size_t> (grid.Needed);
  try {
    if (grid.Image.empty ()) {
      grid.Window = std::min ({UsualWindow, grid.Columns, grid.Rows});
      grid.Window = std::max (grid.Window, grid.Needed);
      if (grid.Window % 2 == 0 && grid.Window > grid.Needed) grid.Window--;
      const auto side = static_cast<std::size_t> (grid.Window);
      grid.Cells.resize (side * side);
      grid.LineBuffer.resize (side * grid.ElementSize);
    }
    if (grid.Method == DATUM_Bilinear) return CSIB_Ok;
    grid.ColumnWeights.resize (order);
    grid.RowWeights.resize (order);
    if (grid.Method != DATUM_Spline) return CSIB_Ok;
    grid.SplineWork.resize (order);
    // Of the elimination of the spline's matrix, 4 on the diagonal and 1 beside it.
    grid.SplineInversePivots.assign (order, 0.25);
    for (std::size_t i = 2; i < order; i++)
      grid.SplineInversePivots[i] = 1.0 / (4.0 - grid.SplineInversePivots[i - 1]);
  } catch (const std::bad_alloc&) {
    return CSIB_OutOfMemoryForWindow;
  }
  return CSIB_Ok;
}

// Turns all numbers of an image into this machine's order.
void TurnImage (datum_Grid& grid) noexcept {
  const auto turn = [&grid] (std::size_t place, std::size_t size) {
    uint8_t* const first = grid.Image.data () + place;
    std::reverse (first, first + size);
  };
  turn (0, 2);
  for (std::size_t place = 48; place < RowsPlace; place += 8) turn (place, 8);
  turn (RowsPlace, 4);
  turn (RowsPlace + 4, 4);
  for (std::size_t place = 104; place < 136; place += 8) turn (place, 8);
  turn (136, 2);
  const std::size_t size = grid.ElementSize;
  for (std::size_t place = DATUM_GridHeaderSize; place < grid.FileSize (); place += size)
    turn (place, size);
  grid.Swapped = false;
}

// Reads a grid that is small enough into memory, in the file's own order, and closes the file.
csib_Status ReadImage (datum_Grid& grid) {
  const std::size_t size = grid.FileSize ();
  if (size > DATUM_LargestInMemory) return CSIB_Ok;
  try {
    grid.Image.resize (size + DATUM_GridSpareSize);
  } catch (const std::bad_alloc&) {
    return CSIB_Ok;
  }
  const auto wanted = static_cast<uint32_t> (size);
  uint32_t got = 0;
  grid.File.Seek (grid.BaseOffset);
  if (!grid.File.Read (grid.Image.data (), wanted, &got) || got != wanted) return CSIB_WrongFormat;
  grid.File.Close ();
  return CSIB_Ok;
}

csib_Status OpenFile (datum_Grid& grid, std::string_view path, uint32_t offset) {
  if (path.empty ()) return CSIB_NameMissing;
  grid.IsByPath = true;
  grid.FileName = path;
  grid.BaseOffset = offset;
  if (!grid.File.Open (Str (path), FILE_Read)) return CSIB_FileNotOpened;
  std::array<uint8_t, DATUM_GridHeaderSize> header;
  uint32_t got = 0;
  grid.File.Seek (offset);
  if (!grid.File.Read (header.data (), header.size (), &got) || got != header.size ())
    return CSIB_HeaderUnreadable;
  csib_Status status = TakeHeader (grid, header);
  if (status != CSIB_Ok) return status;
  if (grid.FileSize () > grid.File.GetSize () - offset) return CSIB_WrongFormat;
  status = ReadImage (grid);
  return status == CSIB_Ok ? MakeWorkSpace (grid) : status;
}

csib_Status OpenImage (datum_Grid& grid, csib_Bytes& source) {
  grid.FileName = source.Text ();
  const std::span<const uint8_t> header = source.Take (DATUM_GridHeaderSize);
  if (!source.IsGood ()) return source.Status ();
  const csib_Status status = TakeHeader (grid, header.first<DATUM_GridHeaderSize> ());
  if (status != CSIB_Ok) return status;
  const std::size_t size = grid.FileSize () + DATUM_GridSpareSize;
  source.Skip (size - DATUM_GridHeaderSize);
  if (!source.IsGood ()) return source.Status ();
  grid.Image.assign (header.data (), header.data () + size);
  if (grid.Swapped) TurnImage (grid);
  return MakeWorkSpace (grid);
}

template <class Opener>
csib_Status Open (std::unique_ptr<datum_Grid>& grid, Opener opener) {
  grid.reset ();
  try {
    auto made = std::make_unique<datum_Grid> ();
    const csib_Status status = opener (*made);
    if (status == CSIB_Ok) grid = std::move (made);
    return status;
  } catch (const std::bad_alloc&) {
    return CSIB_OutOfMemory;
  }
}

// Copies the grid's bytes out of its file, in the file's own order.
csib_Status CopyFile (datum_Grid& grid, csib_Writer& out) {
  std::array<uint8_t, 4096> piece;
  grid.File.Seek (grid.BaseOffset);
  for (std::size_t left = grid.FileSize (); left > 0;) {
    const auto wanted = static_cast<uint32_t> (std::min (left, piece.size ()));
    uint32_t got = 0;
    if (!grid.File.Read (piece.data (), wanted, &got) || got != wanted) return CSIB_WrongFormat;
    out.Bytes ({piece.data (), wanted});
    left -= wanted;
  }
  out.Bytes (std::array<uint8_t, DATUM_GridSpareSize>{});
  return CSIB_Ok;
}

}  // namespace

datum_Grid::~datum_Grid () {
  if (File.IsOpen ()) File.Close ();
}

csib_Status datum_GridOpen (std::unique_ptr<datum_Grid>& grid, std::string_view path,
                            uint32_t offset) {
  return Open (grid, [&] (datum_Grid& made) { return OpenFile (made, path, offset); });
}

csib_Status datum_GridOpen (std::unique_ptr<datum_Grid>& grid, const csib_Block& block,
                            csib_Bytes& source, uint32_t offset) {
  return Open (grid, [&] (datum_Grid& made) {
    if (block.StorageMode == CSIB_Embedded) return OpenImage (made, source);
    const std::string_view path = source.Text ();
    return source.IsGood () ? OpenFile (made, path, offset) : source.Status ();
  });
}

void datum_GridClose (std::unique_ptr<datum_Grid>& grid) noexcept { grid.reset (); }

csib_Status datum_GridSize (const datum_Grid& grid, csib_StorageMode mode, std::size_t& size) {
  if (mode == CSIB_ByName && grid.FileName.empty ()) return CSIB_NameMissing;
  size = grid.FileName.size () + 1;
  if (mode == CSIB_Embedded) size += grid.FileSize () + DATUM_GridSpareSize;
  return CSIB_Ok;
}

csib_Status datum_GridWrite (datum_Grid& grid, csib_Writer& out, csib_StorageMode mode) {
  if (mode == CSIB_ByName && grid.FileName.empty ()) return CSIB_NameMissing;
  if (mode == CSIB_Embedded && grid.FileSize () > DATUM_LargestEmbedded) return CSIB_FileTooLong;
  out.Text (grid.FileName);
  if (mode == CSIB_Embedded) {
    const bool isInMemory = !grid.Image.empty ();
    if (isInMemory) out.Bytes (grid.Image);
    const csib_Status status = isInMemory ? CSIB_Ok : CopyFile (grid, out);
    if (status != CSIB_Ok) return status;
  }
  return out.IsGood () ? CSIB_Ok : CSIB_HeaderUnreadable;
}

const std::string& datum_GridGetName (const datum_Grid& grid) noexcept { return grid.FileName; }

}  // namespace clxml
