// Geoid separations by a grid, geoid code 1.
// One grid of metres over WGS84 degrees. Leans on grid_component.
#include "geodesy/grid_component.h"
#include "geodesy/gridded.h"

namespace clxml {

namespace {

struct Form {
  using Data = csib_GridSet;

  static csib_Status Read (csib_Block& block, csib_Bytes& in, Data& data) {
    return data.ReadForm (block, in, 0);
  }
  static csib_Status Write (const Data& data, csib_Writer& out, csib_StorageMode mode) {
    return data.WriteForms (out, mode);
  }
  static csib_Status Size (const Data& data, csib_StorageMode mode, std::size_t& size) {
    return data.FormsSize (mode, size);
  }
};

using Geoid = csib_GridComponent<&csib_Block::GeoidData, Form>;

csib_Status Separation (csib_Block& block, const csib_Geodetic& point, double& out) {
  csib_GridSet* set = nullptr;
  const csib_Status status = Geoid::Loaded (block, set);
  if (status != CSIB_Ok) return status;
  return datum_GridLookup (*set->Grids[0], point.Latitude * CSIB_DegreesOfRadian,
                           point.Longitude * CSIB_DegreesOfRadian, out);
}

}  // namespace

constinit const csib_GeoidOperations csib_GeoidGridGeoid = {
    Geoid::Read,  Geoid::Unload, Geoid::Load,       Geoid::Free,
    Geoid::Write, Separation,    Geoid::Parameters, Geoid::Size};

}  // namespace clxml
