// A projection by table, projection code 19.
// Two grids over grid coordinates hold latitude and longitude in radians: the inverse is a look-up,
// the forward direction a search. Leans on grid_component.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "geodesy/grid_component.h"
#include "geodesy/gridded.h"

namespace clxml {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double MarkedVersion = 10.3;
// The search.
constexpr int LargestRounds = 100;
constexpr int LargestFruitless = 6;
constexpr double Found = 1e-12;
constexpr double Acceptable = 1e-9;
constexpr double Damping = 0.5;

struct Form {
  struct Data : csib_GridSet {
    double latitudeSpan = 0.0;  // between the lower and the upper corner, radians
    double longitudeSpan = 0.0;
    bool crosses180 = false;

    const datum_Grid& North () const noexcept { return *Grids[0]; }
    const datum_Grid& East () const noexcept { return *Grids[1]; }
    csib_Status LookUp (double north, double east, double& latitude, double& longitude) const {
      const csib_Status status = datum_GridLookup (*Grids[0], north, east, latitude);
      return status == CSIB_Ok ? datum_GridLookup (*Grids[1], north, east, longitude) : status;
    }
  };

  static csib_Status Read (csib_Block& block, csib_Bytes& in, Data& data) {
    csib_Status status = in.Version () < MarkedVersion
                             ? data.ReadPairOfForms (block, in)
                             : data.ReadMarkedPair (block, in, DATUM_ProjectionSignature);
    if (status != CSIB_Ok) return status;
    data.InMetres ();
    double latitudes[2];
    double longitudes[2];
    status = data.LookUp (data.North ().LatMin, data.East ().LonMin, latitudes[0], longitudes[0]);
    if (status == CSIB_Ok)
      status = data.LookUp (data.North ().LatMax, data.East ().LonMax, latitudes[1], longitudes[1]);
    if (status != CSIB_Ok) return status;
    data.latitudeSpan = latitudes[1] - latitudes[0];
    data.longitudeSpan = longitudes[1] - longitudes[0];
    data.crosses180 = longitudes[0] > pi || longitudes[1] > pi;
    return data.latitudeSpan != 0.0 && data.longitudeSpan != 0.0 ? CSIB_Ok : CSIB_WrongFormat;
  }
  static csib_Status Write (const Data& data, csib_Writer& out, csib_StorageMode mode) {
    return data.WriteMarkedPair (out, mode);
  }
  static csib_Status Size (const Data& data, csib_StorageMode mode, std::size_t& size) {
    return data.MarkedPairSize (mode, size);
  }
};

using Component = csib_GridComponent<&csib_Block::ProjectionData, Form>;

double Signed (double value, uint8_t sign) noexcept { return sign == 2 ? -value : value; }

csib_Status Inverse (csib_Block& block, const csib_Grid& point, csib_Geodetic& out) {
  Form::Data* data = nullptr;
  csib_Status status = Component::Loaded (block, data);
  if (status != CSIB_Ok) return status;
  const double north = Signed (point.North, block.NorthSign ());
  const double east = Signed (point.East, block.EastSign ());
  if (!(east >= data->East ().LonMin && east <= data->East ().LonMax &&
        north >= data->North ().LatMin && north <= data->North ().LatMax))
    return CSIB_OutsideProjectionGrid;
  double latitude = 0.0;
  double longitude = 0.0;
  status = data->LookUp (north, east, latitude, longitude);
  if (status != CSIB_Ok) return status;
  if (data->crosses180 && longitude > pi) longitude -= 2.0 * pi;
  out.Latitude = latitude;
  out.Longitude = longitude;
  csib_CopyHeights (point, out);
  return CSIB_Ok;
}

// A damped walk along the diagonal between the corners: the residual of each angle, as a part of
// its span, is half of the next step as a part of the range. The best place is kept; six rounds in
// a row that do not better it end the walk, as does a place where the grid gives nothing.
csib_Status Forward (csib_Block& block, const csib_Geodetic& point, csib_Grid& out) {
  Form::Data* data = nullptr;
  const csib_Status status = Component::Loaded (block, data);
  if (status != CSIB_Ok) return status;
  const datum_Grid& norths = data->North ();
  const datum_Grid& easts = data->East ();
  const double northRange = norths.LatMax - norths.LatMin;
  const double eastRange = easts.LonMax - easts.LonMin;
  double target = point.Longitude;
  if (data->crosses180 && target < 0.0) target += 2.0 * pi;

  double n = norths.LatMin + northRange / 2.0;
  double e = easts.LonMin + eastRange / 2.0;
  struct {
    double north = 0.0;
    double east = 0.0;
    double latitude = INFINITY;  // residuals
    double longitude = INFINITY;
  } best;
  int fruitless = 0;
  for (int round = 0; round < LargestRounds; round++) {
    double latitude = 0.0;
    double longitude = 0.0;
    if (data->LookUp (n, e, latitude, longitude) != CSIB_Ok) break;
    const double dLatitude = point.Latitude - latitude;
    const double dLongitude = target - longitude;
    if (std::abs (dLatitude) < Found && std::abs (dLongitude) < Found) {
      best = {n, e, dLatitude, dLongitude};
      break;
    }
    const double size = std::abs (dLatitude) + std::abs (dLongitude);
    if (size < std::abs (best.latitude) + std::abs (best.longitude)) {
      best = {n, e, dLatitude, dLongitude};
      fruitless = 0;
    } else if (++fruitless == LargestFruitless) {
      break;
    }
    n = std::clamp (n + Damping * dLatitude / data->latitudeSpan * northRange, norths.LatMin,
                    norths.LatMax);
    e = std::clamp (e + Damping * dLongitude / data->longitudeSpan * eastRange, easts.LonMin,
                    easts.LonMax);
  }
  if (!(std::abs (best.latitude) <= Acceptable && std::abs (best.longitude) <= Acceptable))
    return CSIB_DidNotConverge;
  out = csib_Grid ();
  out.North = Signed (best.north, block.NorthSign ());
  out.East = Signed (best.east, block.EastSign ());
  csib_CopyHeights (point, out);
  return CSIB_Ok;
}

// Nothing is published for a table: the block measures the scale.
csib_Status NoScale (csib_Block&, const csib_Geodetic&, double&) { return CSIB_NoScaleOperation; }
csib_Status NoConvergence (csib_Block&, const csib_Geodetic&, double&) {
  return CSIB_NoConvergence;
}

}  // namespace

constinit const csib_ProjectionOperations csib_ProjectionGridProjection = {
    Component::Read, Component::Unload, Component::Load, Component::Free, Component::Write,
    Forward,         Inverse,           NoScale,         NoConvergence,   Component::Parameters,
    Component::Size};

}  // namespace clxml
