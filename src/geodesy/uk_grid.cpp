// The national grid of the United Kingdom, projection code 15.
// A transverse Mercator on an ellipsoid of its own, corrected by two grids of metres over true grid
// coordinates. Leans on grid_component and transverse_mercator.
//
// Source: Ordnance Survey, A Guide to Coordinate Systems in Great Britain, section 6: ETRS89
// eastings and northings by the National Grid projection on GRS80, to which the shifts of the
// transformation are added; the way back is iterated.
#include "geodesy/grid_component.h"
#include "geodesy/gridded.h"
#include "geodesy/transverse_mercator.h"

namespace clxml {

namespace {

constexpr double MajorAxis = 6378137.0;
constexpr double MinorAxis = 6356752.3141;
constexpr double OriginLatitude = 0.8552113334772214;     // 49 degrees
constexpr double OriginLongitude = -0.03490658503988659;  // -2 degrees
constexpr double FalseNorth = -100000.0;
constexpr double FalseEast = 400000.0;
constexpr double Scale = 0.9996012717;

struct Form {
  struct Data : csib_GridSet {
    csib_TransverseMercator projection;
  };

  static csib_Status Read (csib_Block& block, csib_Bytes& in, Data& data) {
    const csib_Status status = data.ReadPairOfForms (block, in);
    if (status != CSIB_Ok) return status;
    data.InMetres ();
    data.projection.Set (MajorAxis, MinorAxis, OriginLatitude, OriginLongitude, Scale);
    block.OriginLatitude = OriginLatitude;
    block.OriginLongitude = OriginLongitude;
    block.FalseNorth = FalseNorth;
    block.FalseEast = FalseEast;
    block.ProjectionScale = Scale;
    return CSIB_Ok;
  }
  static csib_Status Write (const Data& data, csib_Writer& out, csib_StorageMode mode) {
    return data.WriteForms (out, mode);
  }
  static csib_Status Size (const Data& data, csib_StorageMode mode, std::size_t& size) {
    return data.FormsSize (mode, size);
  }
};

using UK = csib_GridComponent<&csib_Block::ProjectionData, Form>;

csib_Status Forward (csib_Block& block, const csib_Geodetic& point, csib_Grid& out) {
  Form::Data* data = nullptr;
  csib_Status status = UK::Loaded (block, data);
  if (status != CSIB_Ok) return status;
  double north = 0.0;
  double east = 0.0;
  data->projection.Forward (point.Latitude, point.Longitude, north, east);
  csib_Shift shift;
  status = csib_LookUpShift (*data, north + FalseNorth, east + FalseEast, shift);
  if (status != CSIB_Ok) return status;
  out = csib_Grid ();
  out.North = north + shift.North;
  out.East = east + shift.East;
  csib_CopyHeights (point, out);
  return CSIB_Ok;
}

csib_Status Inverse (csib_Block& block, const csib_Grid& point, csib_Geodetic& out) {
  Form::Data* data = nullptr;
  csib_Status status = UK::Loaded (block, data);
  if (status != CSIB_Ok) return status;
  double north = point.North + FalseNorth;
  double east = point.East + FalseEast;
  status = csib_UndoShift (*data, north, east);
  if (status != CSIB_Ok) return status;
  data->projection.Inverse (north - FalseNorth, east - FalseEast, out.Latitude, out.Longitude);
  csib_CopyHeights (point, out);
  return CSIB_Ok;
}

csib_Status PointScale (csib_Block& block, const csib_Geodetic& point, double& out) {
  Form::Data* data = nullptr;
  const csib_Status status = UK::Loaded (block, data);
  if (status == CSIB_Ok) out = data->projection.Scale (point.Latitude, point.Longitude);
  return status;
}

csib_Status Convergence (csib_Block& block, const csib_Geodetic& point, double& out) {
  Form::Data* data = nullptr;
  const csib_Status status = UK::Loaded (block, data);
  if (status == CSIB_Ok) out = data->projection.Convergence (point.Latitude, point.Longitude);
  return status;
}

}  // namespace

constinit const csib_ProjectionOperations csib_UKNationalGridProjection = {
    UK::Read, UK::Unload, UK::Load,    UK::Free,       UK::Write, Forward,
    Inverse,  PointScale, Convergence, UK::Parameters, UK::Size};

}  // namespace clxml
