// Datum transformation by grids, datum codes 4 and 5.
// Shifts of latitude, longitude and, where there is such a grid, height between WGS84 and the local
// ellipsoid, looked up on the side that the latitude grid names and iterated on the other. Leans on
// grid_component.
#include <cmath>

#include "geodesy/grid_component.h"
#include "geodesy/gridded.h"

namespace clxml {

namespace {

constexpr int LargestRounds = 100;
constexpr double SmallestChange = 1e-12;
constexpr double HeightVersion = 1.2;

// What the grids hold: seconds of arc, metres.
struct Values {
  double latitude = 0.0;
  double longitude = 0.0;
  double height = 0.0;
};

csib_Status LookUp (const csib_GridSet& set, const csib_Geodetic& point, Values& values) {
  const double latitude = point.Latitude * CSIB_DegreesOfRadian;
  const double longitude = point.Longitude * CSIB_DegreesOfRadian;
  csib_Status status = datum_GridLookup (*set.Grids[0], latitude, longitude, values.latitude);
  if (status == CSIB_Ok)
    status = datum_GridLookup (*set.Grids[1], latitude, longitude, values.longitude);
  if (status == CSIB_Ok && set.Grids[2])
    status = datum_GridLookup (*set.Grids[2], latitude, longitude, values.height);
  return status;
}

// Forward has sign 1: latitude less, longitude and height plus the values. A point without a height
// counts as 0.0 where there is a height grid.
csib_Geodetic Shifted (const csib_GridSet& set, const csib_Geodetic& point, const Values& values,
                       double sign) {
  csib_Geodetic result = point;
  result.Latitude -= sign * values.latitude * CSIB_Second;
  result.Longitude += sign * values.longitude * CSIB_Second;
  if (!set.Grids[2]) return result;
  result.EllipsoidalHeight =
      (point.HasEllipsoidal ? point.EllipsoidalHeight : 0.0) + sign * values.height;
  result.HasEllipsoidal = true;
  return result;
}

csib_Status Convert (const csib_GridSet& set, const csib_Geodetic& source, double sign,
                     csib_Geodetic& out) {
  const bool isIndexedByForward = set.Grids[0]->Has (DATUM_IndexedBySource);
  const bool isDirect = isIndexedByForward == (sign > 0.0);
  const csib_Geodetic point = source;  // `out` may be the same
  csib_Geodetic result = point;
  Values before;
  for (int round = 0; round < LargestRounds; round++) {
    Values values;
    const csib_Status status = LookUp (set, result, values);
    if (status != CSIB_Ok) return status;
    result = Shifted (set, point, values, sign);
    if (isDirect || (std::abs (values.latitude - before.latitude) < SmallestChange &&
                     std::abs (values.longitude - before.longitude) < SmallestChange &&
                     std::abs (values.height - before.height) < SmallestChange)) {
      out = result;
      return CSIB_Ok;
    }
    before = values;
  }
  return CSIB_DidNotConverge;
}

struct Forms {
  using Data = csib_GridSet;

  static csib_Status Read (csib_Block& block, csib_Bytes& in, Data& data) {
    const csib_Status status = data.ReadPairOfForms (block, in);
    if (status != CSIB_Ok || in.Version () < HeightVersion) return status;
    const uint8_t marker = in.Byte ();
    if (!in.IsGood ()) return in.Status ();
    if (marker == DATUM_NoHeightFollows) return CSIB_Ok;
    return marker == DATUM_HeightFollows ? data.ReadForm (block, in, 2) : CSIB_WrongFormat;
  }
  // The marker stands between the second and the third form.
  static csib_Status Write (const Data& data, csib_Writer& out, csib_StorageMode mode) {
    for (std::size_t i = 0; i < 2; i++) {
      const csib_Status status = datum_GridWrite (*data.Grids[i], out, mode);
      if (status != CSIB_Ok) return status;
    }
    out.Byte (data.Grids[2] ? DATUM_HeightFollows : DATUM_NoHeightFollows);
    return data.Grids[2] ? datum_GridWrite (*data.Grids[2], out, mode) : CSIB_Ok;
  }
  static csib_Status Size (const Data& data, csib_StorageMode mode, std::size_t& size) {
    const csib_Status status = data.FormsSize (mode, size);
    size++;
    return status;
  }
};

struct CombinedFile {
  struct Data : csib_GridSet {
    static constexpr bool IsByPath = true;
  };

  static csib_Status Read (csib_Block&, csib_Bytes& in, Data& data) { return data.ReadCDG (in); }
  static csib_Status Write (const Data& data, csib_Writer& out, csib_StorageMode) {
    out.Text (data.Paths[0]);
    return CSIB_Ok;
  }
  static csib_Status Size (const Data& data, csib_StorageMode, std::size_t& size) {
    size = data.Paths[0].size () + 1;
    return CSIB_Ok;
  }
};

template <class Form>
struct Datum : csib_GridComponent<&csib_Block::DatumData, Form> {
  static csib_Status Forward (csib_Block& block, const csib_Geodetic& point, csib_Geodetic& out) {
    typename Form::Data* set = nullptr;
    const csib_Status status = Datum::Loaded (block, set);
    return status == CSIB_Ok ? Convert (*set, point, 1.0, out) : status;
  }
  static csib_Status Inverse (csib_Block& block, const csib_Geodetic& point, csib_Geodetic& out) {
    typename Form::Data* set = nullptr;
    const csib_Status status = Datum::Loaded (block, set);
    return status == CSIB_Ok ? Convert (*set, point, -1.0, out) : status;
  }
  static constexpr csib_DatumOperations Table () {
    return {Datum::Read,    Datum::Unload,  Datum::Load,       Datum::Free, Datum::Write,
            Datum::Forward, Datum::Inverse, Datum::Parameters, Datum::Size};
  }
};

}  // namespace

constinit const csib_DatumOperations csib_EmbeddedGridDatum = Datum<Forms>::Table ();
constinit const csib_DatumOperations csib_CombinedGridDatum = Datum<CombinedFile>::Table ();

}  // namespace clxml
