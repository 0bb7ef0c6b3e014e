// What the components of a block that stand on grids have in common: their grids and their shifts.
#include "geodesy/grid_component.h"

#include <algorithm>
#include <cmath>

#include "geodesy/gridded.h"

namespace clxml {

namespace {

constexpr int LargestRounds = 100;
constexpr double SmallestChange = 1e-12;

char Folded (char c) noexcept { return c == '/' ? '\\' : text_ToLower (c); }

}  // namespace

bool csib_GridSet::Uses (std::string_view path) const noexcept {
  if (path.empty ()) return false;
  return std::any_of (Paths.begin (), Paths.end (), [path] (const std::string& own) {
    return std::equal (own.begin (), own.end (), path.begin (), path.end (),
                       [] (char a, char b) { return Folded (a) == Folded (b); });
  });
}

csib_Status csib_GridSet::ReadForm (const csib_Block& block, csib_Bytes& in, std::size_t index) {
  const csib_Status status = datum_GridOpen (Grids[index], block, in, 0);
  if (status == CSIB_Ok && Grids[index]->IsByPath) Paths[index] = datum_GridGetName (*Grids[index]);
  return status;
}

csib_Status csib_GridSet::ReadPairOfForms (const csib_Block& block, csib_Bytes& in) {
  const csib_Status status = ReadForm (block, in, 0);
  return status == CSIB_Ok ? ReadForm (block, in, 1) : status;
}

csib_Status csib_GridSet::OpenAll (std::string_view path, const datum_CombinedGrids& grids) {
  IsCombined = true;
  Paths[0] = path;
  for (std::size_t i = 0; i < static_cast<std::size_t> (grids.Count); i++) {
    const csib_Status status = datum_GridOpen (Grids[i], path, grids.Offsets[i]);
    if (status != CSIB_Ok) return status;
  }
  return CSIB_Ok;
}

csib_Status csib_GridSet::ReadCDG (csib_Bytes& in) {
  const std::string_view path = in.Text ();
  if (!in.IsGood ()) return in.Status ();
  datum_CombinedGrids grids;
  const csib_Status status = datum_ReadCDG (path, grids);
  return status == CSIB_Ok ? OpenAll (path, grids) : status;
}

csib_Status csib_GridSet::ReadPair (csib_Bytes& in, std::string_view signature) {
  const std::string_view path = in.Text ();
  if (!in.IsGood ()) return in.Status ();
  datum_CombinedGrids grids;
  const csib_Status status = datum_ReadGridPair (path, signature, grids);
  return status == CSIB_Ok ? OpenAll (path, grids) : status;
}

csib_Status csib_GridSet::ReadMarkedPair (const csib_Block& block, csib_Bytes& in,
                                          std::string_view signature) {
  const uint8_t marker = in.Byte ();
  if (!in.IsGood ()) return in.Status ();
  if (marker == CSIB_GridsByPath) return ReadPair (in, signature);
  return marker == CSIB_GridsEmbedded ? ReadPairOfForms (block, in) : CSIB_WrongFormat;
}

csib_Status csib_GridSet::WriteForms (csib_Writer& out, csib_StorageMode mode) const {
  for (const auto& grid : Grids) {
    const csib_Status status = grid ? datum_GridWrite (*grid, out, mode) : CSIB_Ok;
    if (status != CSIB_Ok) return status;
  }
  return CSIB_Ok;
}

csib_Status csib_GridSet::FormsSize (csib_StorageMode mode, std::size_t& size) const {
  size = 0;
  for (const auto& grid : Grids) {
    std::size_t one = 0;
    const csib_Status status = grid ? datum_GridSize (*grid, mode, one) : CSIB_Ok;
    if (status != CSIB_Ok) return status;
    size += one;
  }
  return CSIB_Ok;
}

csib_Status csib_GridSet::WriteMarkedPair (csib_Writer& out, csib_StorageMode mode) const {
  const bool isByPath = IsCombined && mode == CSIB_ByName;
  out.Byte (isByPath ? CSIB_GridsByPath : CSIB_GridsEmbedded);
  if (!isByPath) return WriteForms (out, mode);
  out.Text (Paths[0]);
  return CSIB_Ok;
}

csib_Status csib_GridSet::MarkedPairSize (csib_StorageMode mode, std::size_t& size) const {
  csib_Status status = CSIB_Ok;
  if (IsCombined && mode == CSIB_ByName)
    size = Paths[0].size () + 1;
  else
    status = FormsSize (mode, size);
  size++;
  return status;
}

void csib_GridSet::InMetres () noexcept {
  for (const auto& grid : Grids)
    if (grid) grid->Wraps = false;
}

csib_Status csib_LookUpShift (const csib_GridSet& set, double north, double east,
                              csib_Shift& shift) {
  const csib_Status status = datum_GridLookup (*set.Grids[0], north, east, shift.North);
  return status == CSIB_Ok ? datum_GridLookup (*set.Grids[1], north, east, shift.East) : status;
}

csib_Status csib_UndoShift (const csib_GridSet& set, double& north, double& east) {
  double n = north;
  double e = east;
  csib_Shift before;
  for (int round = 0; round < LargestRounds; round++) {
    csib_Shift shift;
    const csib_Status status = csib_LookUpShift (set, n, e, shift);
    if (status != CSIB_Ok) return status;
    n = north - shift.North;
    e = east - shift.East;
    if (std::abs (shift.North - before.North) < SmallestChange &&
        std::abs (shift.East - before.East) < SmallestChange) {
      north = n;
      east = e;
      return CSIB_Ok;
    }
    before = shift;
  }
  return CSIB_DidNotConverge;
}

}  // namespace clxml
