// Headers of the files that bundle several grids.
// Numbers are believed when they stand inside the file; the grids themselves are checked when they
// are opened. Leans on csib_bytes, platform/file and Library/base/buffer.
//
// Combined datum grid, in the byte order of its first field:
//     0   2  SetsOffset, 61           2  1  FormatVersion, 1          3  1  reserved
//     4  24  signature               28 32  model name               60  1  number of sets
//    61      the sets, each
//         2  distance to the next set
//         2  SetType: 1 two grids, 2 three; any other is passed over
//         4  offset of the latitude grid in the file, then of the longitude grid, and of the height
//            grid only with type 2
//        64  name of the file that each of these grids was made from
//         8  semi-major axis, then inverse flattening: doubles
// Combined projection grid and projection shift grid:
//     0   4  1, in the byte order of the file
//     4      signature with its terminator
//         4  offset of the north grid, then of the east grid
#include "geodesy/combined.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string_view>

#include "geodesy/csib_bytes.h"
#include "platform/file.h"

namespace clxml {

namespace {

constexpr uint16_t SetsOffset = 61;
constexpr uint8_t FormatVersion = 1;
constexpr uint16_t TwoGrids = 1;
constexpr uint16_t ThreeGrids = 2;

// A file that is closed behind its reader.
class Source {
 public:
  Source () = default;
  Source (const Source&) = delete;
  Source& operator= (const Source&) = delete;
  ~Source () {
    if (_file.IsOpen ()) _file.Close ();
  }
  csib_Status Open (std::string_view path) {
    if (path.empty ()) return CSIB_NameMissing;
    return _file.Open (Str (path), FILE_Read) ? CSIB_Ok : CSIB_FileNotOpened;
  }
  // As many bytes of these as the file has there.
  std::span<const uint8_t> At (uint64_t place, std::span<uint8_t> bytes) {
    uint32_t got = 0;
    if (place >= _file.GetSize ()) return {};
    _file.Seek (static_cast<uint32_t> (place));
    _file.Read (bytes.data (), static_cast<uint32_t> (bytes.size ()), &got);
    return bytes.first (got);
  }

 private:
  file_Class _file;
};

// The head of a combined datum grid.
struct Head {
  bool isSwapped = false;
  uint8_t version = 0;
  int sets = 0;
};

csib_Status ReadHead (Source& file, Head& head) {
  std::array<uint8_t, SetsOffset> bytes;
  csib_Bytes in (file.At (0, bytes));
  const auto offset = in.Number<uint16_t> ();
  head.isSwapped = offset != SetsOffset;
  head.version = in.Byte ();
  in.Skip (1);
  const std::span<const uint8_t> signature = in.Take (DATUM_CDGSignatureSize);
  in.Skip (DATUM_CDGModelSize);
  head.sets = in.Byte ();
  if (!in.IsGood ()) return in.Status ();
  if (head.isSwapped && csib_Turned (offset) != SetsOffset) return CSIB_WrongFormat;
  const std::string_view text (reinterpret_cast<const char*> (signature.data ()),
                               signature.size ());
  if (text.find (DATUM_CDGSignature) == text.npos || head.sets == 0) return CSIB_WrongFormat;
  return CSIB_Ok;
}

bool Fits (const Str& signature, const Str& modelName, const std::vector<datum_CDGSet>& sets) {
  bool fits = Assert (signature.Length () < DATUM_CDGSignatureSize,
                      "signature.Length() < DATUM_CDGSignatureSize") &&
              Assert (modelName.Length () < DATUM_CDGModelSize,
                      "modelName.Length() < DATUM_CDGModelSize") &&
              !sets.empty () && sets.size () <= 255;
  for (const datum_CDGSet& set : sets)
    fits =
        fits &&
        Assert (set.SetType == TwoGrids || set.SetType == ThreeGrids,
                "(header->SetType == 1u) || (header->SetType == 2u)") &&
        Assert (set.LatFilename.Length () < DATUM_CDGSourceFileSize,
                "latFilename.Length() < DATUM_CDGSourceFileSize") &&
        Assert (set.LonFilename.Length () < DATUM_CDGSourceFileSize,
                "lonFilename.Length() < DATUM_CDGSourceFileSize") &&
        (set.SetType == TwoGrids || Assert (set.HeightFilename.Length () < DATUM_CDGSourceFileSize,
                                            "heightFilename.Length() < DATUM_CDGSourceFileSize"));
  return fits;
}

}  // namespace

bool datum_WriteCDGHeader (OutBuffer& out, const Str& modelName,
                           const std::vector<datum_CDGSet>& sets) {
  const Str signature = DATUM_CDGSignature;
  if (!Fits (signature, modelName, sets)) return false;
  out.PutUInt16 (SetsOffset);
  out.PutUInt8 (FormatVersion);
  out.PutUInt8 (0);
  out.PutString (signature, DATUM_CDGSignatureSize, '\0');
  out.PutString (modelName, DATUM_CDGModelSize, '\0');
  out.PutUInt8 (static_cast<uint8_t> (sets.size ()));
  for (const datum_CDGSet& set : sets) {
    const bool hasHeight = set.SetType == ThreeGrids;
    out.PutUInt16 (static_cast<uint16_t> (datum_CDGSetSize (set.SetType)));
    out.PutUInt16 (set.SetType);
    out.PutUInt32 (set.LatOffset);
    out.PutUInt32 (set.LonOffset);
    if (hasHeight) out.PutUInt32 (set.HeightOffset);
    out.PutString (set.LatFilename, DATUM_CDGSourceFileSize, '\0');
    out.PutString (set.LonFilename, DATUM_CDGSourceFileSize, '\0');
    if (hasHeight) out.PutString (set.HeightFilename, DATUM_CDGSourceFileSize, '\0');
    out.PutDouble (set.SemiMajorAxis);
    out.PutDouble (set.InverseFlattening);
  }
  return true;
}

bool datum_ReadCDGEllipsoid (const Str& path, datum_CDGEllipsoid& ellipsoid) {
  Source file;
  Head head;
  if (file.Open (path.View ()) != CSIB_Ok || ReadHead (file, head) != CSIB_Ok) return false;
  if (head.version != FormatVersion) return false;
  uint64_t place = SetsOffset;
  for (int i = 0; i < head.sets; i++) {
    std::array<uint8_t, 16> bytes;
    csib_Bytes set (file.At (place, std::span (bytes).first (4)));
    set.SetSwapped (head.isSwapped);
    const auto length = set.Number<uint16_t> ();
    const auto type = set.Number<uint16_t> ();
    if (!set.IsGood ()) return false;
    if (type != TwoGrids && type != ThreeGrids) {
      place += length;
      continue;
    }
    const auto end = static_cast<uint64_t> (datum_CDGSetSize (type));
    csib_Bytes numbers (file.At (place + end - bytes.size (), bytes));
    numbers.SetSwapped (head.isSwapped);
    const double a = numbers.Double ();
    const double flattening = 1.0 / numbers.Double ();
    if (!numbers.IsGood () || !std::isfinite (a) || a <= 0.0 || !std::isfinite (flattening) ||
        flattening < 0.0 || flattening >= 1.0)
      return false;
    ellipsoid = {a, flattening};
    return true;
  }
  return false;
}

csib_Status datum_ReadCDG (std::string_view path, datum_CombinedGrids& grids) {
  Source file;
  Head head;
  csib_Status status = file.Open (path);
  if (status == CSIB_Ok) status = ReadHead (file, head);
  if (status != CSIB_Ok) return status;
  std::array<uint8_t, 16> bytes;
  csib_Bytes set (file.At (SetsOffset, bytes));
  set.SetSwapped (head.isSwapped);
  set.Skip (2);
  grids.Count = set.Number<uint16_t> () == ThreeGrids ? 3 : 2;
  for (int i = 0; i < grids.Count; i++) grids.Offsets[i] = set.Number<uint32_t> ();
  return set.Status ();
}

csib_Status datum_ReadGridPair (std::string_view path, std::string_view signature,
                                datum_CombinedGrids& grids) {
  Source file;
  const csib_Status status = file.Open (path);
  if (status != CSIB_Ok) return status;
  std::array<uint8_t, 64> bytes;
  csib_Bytes in (file.At (0, bytes));
  const auto one = in.Number<uint32_t> ();
  if (!in.IsGood ()) return in.Status ();
  in.SetSwapped (one != 1);
  if (in.IsSwapped () && csib_Turned (one) != 1) return CSIB_WrongFormat;
  const std::span<const uint8_t> found = in.Take (signature.size () + 1);
  if (!in.IsGood ()) return in.Status ();
  if (found.back () != 0 ||
      !std::equal (signature.begin (), signature.end (), found.begin (), found.end () - 1))
    return CSIB_WrongFormat;
  grids.Count = 2;
  for (int i = 0; i < grids.Count; i++) grids.Offsets[i] = in.Number<uint32_t> ();
  return in.Status ();
}

}  // namespace clxml
