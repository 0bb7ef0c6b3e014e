// The shift grid, the stage between the projection and the horizontal adjustment.
// Corrections in metres over true grid coordinates; block coordinates lack the false origin, which
// is added for the look-up and taken off again. Leans on grid_component.
#include "geodesy/grid_component.h"
#include "geodesy/gridded.h"

namespace clxml {

namespace {

struct Form {
  using Data = csib_GridSet;

  static csib_Status Read (csib_Block& block, csib_Bytes& in, Data& data) {
    const csib_Status status = data.ReadMarkedPair (block, in, DATUM_ShiftSignature);
    data.InMetres ();
    return status;
  }
  static csib_Status Write (const Data& data, csib_Writer& out, csib_StorageMode mode) {
    return data.WriteMarkedPair (out, mode);
  }
  static csib_Status Size (const Data& data, csib_StorageMode mode, std::size_t& size) {
    return data.MarkedPairSize (mode, size);
  }
};

using Shift = csib_GridComponent<&csib_Block::ShiftData, Form>;

}  // namespace

csib_Status csib_ShiftRead (csib_Block& block, csib_Bytes& in) { return Shift::Read (block, in); }

csib_Status csib_ShiftUnload (csib_Block& block, std::string_view path) {
  return Shift::Unload (block, path);
}

csib_Status csib_ShiftLoad (csib_Block& block, std::string_view path) {
  return Shift::Load (block, path);
}

csib_Status csib_ShiftWrite (const csib_Block& block, csib_Writer& out, csib_StorageMode mode) {
  return Shift::Write (block, out, mode);
}

csib_Status csib_ShiftParameters (const csib_Block& block, std::vector<uint8_t>& out) {
  return Shift::Parameters (block, out);
}

csib_Status csib_ShiftSize (const csib_Block& block, csib_StorageMode mode, std::size_t& out) {
  return Shift::Size (block, mode, out);
}

csib_Status csib_ShiftForward (csib_Block& block, csib_Grid& point) {
  if (!block.HasShiftGrid) return CSIB_Ok;
  csib_GridSet* set = nullptr;
  csib_Status status = Shift::Loaded (block, set);
  if (status != CSIB_Ok) return status;
  if (set->Grids[0]->Has (DATUM_IndexedBySource)) return CSIB_WrongFormat;
  csib_Shift shift;
  status =
      csib_LookUpShift (*set, point.North + block.FalseNorth, point.East + block.FalseEast, shift);
  if (status != CSIB_Ok) return status;
  point.North += shift.North;
  point.East += shift.East;
  return CSIB_Ok;
}

csib_Status csib_ShiftInverse (csib_Block& block, csib_Grid& point) {
  if (!block.HasShiftGrid) return CSIB_Ok;
  csib_GridSet* set = nullptr;
  csib_Status status = Shift::Loaded (block, set);
  if (status != CSIB_Ok) return status;
  double north = point.North + block.FalseNorth;
  double east = point.East + block.FalseEast;
  status = csib_UndoShift (*set, north, east);
  if (status != CSIB_Ok) return status;
  point.North = north - block.FalseNorth;
  point.East = east - block.FalseEast;
  return CSIB_Ok;
}

}  // namespace clxml
