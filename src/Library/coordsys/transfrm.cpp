// The transform: assembly, identity and the two roads through the block.
// The stages themselves are the block's; here stand their order and the doors between the job's
// values, where an absent number is null, and the block's points, where it is a flag. Leans on
// csibglue.
#include "Library/coordsys/transfrm.h"

#include <atomic>
#include <cmath>
#include <new>
#include <utility>

#include "Library/coordsys/csibglue.h"
#include "geodesy/projections.h"

namespace clxml {

namespace {

uint32_t NextIdentity () noexcept {
  static std::atomic<uint32_t> next = 1;
  uint32_t id = next.fetch_add (1, std::memory_order_relaxed);
  if (id == TRANSFORM_NoId) id = next.fetch_add (1, std::memory_order_relaxed);
  return id;
}

bool IsNumber (double value) noexcept { return !maths_IsNull (value) && std::isfinite (value); }

// A geodetic point into the block. False without a position: the rest of the pipeline is spared
// what is no number.
template <class Geodetic>
bool Enter (const Geodetic& source, csib_Geodetic& point) noexcept {
  if (!IsNumber (source.Latitude) || !IsNumber (source.Longitude)) return false;
  point = csib_Geodetic ();
  point.Latitude = source.Latitude;
  point.Longitude = source.Longitude;
  point.HasEllipsoidal = IsNumber (source.Height);
  if (point.HasEllipsoidal) point.EllipsoidalHeight = source.Height;
  return true;
}

template <class Geodetic>
void Leave (const csib_Geodetic& point, Geodetic& destination) noexcept {
  destination = Geodetic (point.Latitude, point.Longitude,
                          point.HasEllipsoidal ? point.EllipsoidalHeight : MATHS_Null);
  destination.Height = maths_NullUnlessFinite (destination.Height);
  if (!std::isfinite (point.Latitude) || !std::isfinite (point.Longitude))
    destination = Geodetic ();
}

}  // namespace

// The door between the cogo grid and the block's grid points, which have neither false origin nor
// ground offsets.
class Transform::GridDoor {
 public:
  explicit GridDoor (const Transform& transform)
      : _falseNorth (transform._block->FalseNorth),
        _falseEast (transform._block->FalseEast),
        _rise (transform._block->GeoidCode == CSIB_NoGeoid &&
                       transform._block->ProjectionCode == CSIB_Plane
                   ? csib_PlaneHeightDifference (*transform._block)
                   : 0.0) {
    if (transform._block->HasProjectLocation)
      csib_GroundDeltas (*transform._block, _moveNorth, _moveEast);
    _moveNorth += transform._block->GroundOffsetNorth;
    _moveEast += transform._block->GroundOffsetEast;
  }

  // False for a point that has not both north and east, or no false origin to count them from.
  bool Enter (const coord_CogoGrid& source, csib_Grid& point) const noexcept {
    if (!IsNumber (source.North) || !IsNumber (source.East) || !HasOrigin ()) return false;
    point = csib_Grid ();
    point.North = source.North + _moveNorth - _falseNorth;
    point.East = source.East + _moveEast - _falseEast;
    point.HasOrthometric = IsNumber (source.Elevation);
    if (point.HasOrthometric) point.OrthometricHeight = source.Elevation + _rise;
    return true;
  }

  void Leave (const csib_Grid& point, coord_CogoGrid& destination) const noexcept {
    destination =
        coord_CogoGrid (point.North + _falseNorth - _moveNorth, point.East + _falseEast - _moveEast,
                        point.HasOrthometric ? point.OrthometricHeight - _rise : MATHS_Null);
    destination.Elevation = maths_NullUnlessFinite (destination.Elevation);
    if (!HasOrigin () || !std::isfinite (destination.North) || !std::isfinite (destination.East))
      destination = coord_CogoGrid ();
  }

 private:
  bool HasOrigin () const noexcept {
    return !maths_IsNull (_falseNorth) && !maths_IsNull (_falseEast);
  }

  double _falseNorth;
  double _falseEast;
  double _moveNorth = 0.0;
  double _moveEast = 0.0;
  double
      _rise;  // of the plane projection's heights over its elevations, where no geoid says better
};

// ---------------------------------------------------------------------------------------------
// Assembly and identity

Transform::Transform () : _id (NextIdentity ()) {}

Transform::Transform (uint16_t mask, const coordsys_Ellipsoid* ellipsoid,
                      const coordsys_Projection* projection, const coordsys_Datum* datum,
                      const coordsys_Plane* plane, const coordsys_Height* height,
                      const coordsys_Corrections* corrections, uint32_t options)
    : Transform () {
  coordsys_Error error = COORDSYS_NoError;
  Set (mask, ellipsoid, projection, datum, plane, height, corrections, options, &error);
  Assert (error == COORDSYS_NoError, "error == COORDSYS_NoError");
}

Transform::Transform (const Transform& other, CopyParts)
    : Ellipsoid (other.Ellipsoid),
      Projection (other.Projection),
      Datum (other.Datum),
      Plane (other.Plane),
      Height (other.Height),
      NorthAzimuth (other.NorthAzimuth),
      GridOrientationCopy (other.GridOrientationCopy),
      Components (other.Components),
      Corrections (other.Corrections),
      Options (other.Options),
      _id (other._id) {}

Transform::~Transform () = default;

std::unique_ptr<Transform> Transform::Clone () const {
  try {
    std::unique_ptr<Transform> clone (new Transform (*this, CopyParts ()));
    if (!_block || csib_Clone (clone->_block, *_block) == CSIB_Ok) return clone;
  } catch (const std::bad_alloc&) {
  }
  Assert (false, "false");
  return nullptr;
}

std::unique_ptr<Transform> Transform::CloneAndChange (
    uint16_t mask, const coordsys_Ellipsoid* ellipsoid, const coordsys_Projection* projection,
    const coordsys_Datum* datum, const coordsys_Plane* plane, const coordsys_Height* height,
    const coordsys_Corrections* corrections, uint32_t options, coordsys_Error* error) const {
  std::unique_ptr<Transform> clone;
  try {
    clone.reset (new Transform (*this, CopyParts ()));
  } catch (const std::bad_alloc&) {
    *error = COORDSYS_OutOfMemory;
    return nullptr;
  }
  if (!clone->Set (mask, ellipsoid, projection, datum, plane, height, corrections, options, error))
    return nullptr;
  return clone;
}

std::unique_ptr<Transform> Transform_Create (
    uint16_t mask, const coordsys_Ellipsoid* ellipsoid, const coordsys_Projection* projection,
    const coordsys_Datum* datum, const coordsys_Plane* plane, const coordsys_Height* height,
    const coordsys_Corrections* corrections, uint32_t options, coordsys_Error* error) {
  std::unique_ptr<Transform> transform (new (std::nothrow) Transform ());
  if (!transform) {
    *error = COORDSYS_OutOfMemory;
    return nullptr;
  }
  if (!transform->Set (mask, ellipsoid, projection, datum, plane, height, corrections, options,
                       error))
    return nullptr;
  return transform;
}

bool Transform::Set (uint16_t mask, const coordsys_Ellipsoid* ellipsoid,
                     const coordsys_Projection* projection, const coordsys_Datum* datum,
                     const coordsys_Plane* plane, const coordsys_Height* height,
                     const coordsys_Corrections* corrections, uint32_t options,
                     coordsys_Error* error) {
  *error = COORDSYS_NoError;
  _id = NextIdentity ();
  csib_Free (_block);
  _pair = {};
  Options = options;
  bool isComplete = true;
  const auto has = [&] (coordsys_Components bit, const void* part, const char* condition) {
    if ((mask & bit) != 0 && !Assert (part != nullptr, condition)) isComplete = false;
  };
  has (COORDSYS_SetEllipsoid, ellipsoid, "ellipsoid != NULL");
  has (COORDSYS_SetCorrections, corrections, "corrections != NULL");
  has (COORDSYS_SetDatum, datum, "datum != NULL");
  has (COORDSYS_SetVertAdjustment, height, "height != NULL");
  has (COORDSYS_SetHorzAdjustment, plane, "plane != NULL");
  has (COORDSYS_SetProjection, projection, "projection != NULL");
  if (!isComplete) {
    *error = COORDSYS_InternalError;
    return false;
  }
  const auto chosen = [mask] (coordsys_Components bit, const auto* part, const auto& own) {
    return (mask & bit) != 0 ? *part : own;
  };
  try {
    // What needs memory is copied before anything is taken.
    auto newDatum = chosen (COORDSYS_SetDatum, datum, Datum);
    auto newHeight = chosen (COORDSYS_SetVertAdjustment, height, Height);
    auto newProjection = chosen (COORDSYS_SetProjection, projection, Projection);
    Datum = std::move (newDatum);
    Height = std::move (newHeight);
    Projection = std::move (newProjection);
  } catch (const std::bad_alloc&) {
    *error = COORDSYS_OutOfMemory;
    return false;
  }
  Ellipsoid = chosen (COORDSYS_SetEllipsoid, ellipsoid, Ellipsoid);
  Plane = chosen (COORDSYS_SetHorzAdjustment, plane, Plane);
  if ((mask & COORDSYS_SetCorrections) != 0) {
    Corrections = *corrections;
    NorthAzimuth = Corrections.SouthAzimuth ? CONSTANT_Pi : 0.0;
    GridOrientationCopy = Corrections.GridOrientation;
  }
  Components = static_cast<uint16_t> (Components | mask);
  constexpr unsigned projected = COORDSYS_SetEllipsoid | COORDSYS_SetProjection;
  if ((Components & projected) == projected) ComputeGroundScale ();
  const bool isBuilt = csib_FromParts (_block, Components, Ellipsoid, Projection, Datum, Plane,
                                       Height, Corrections, options, error);
  if (!isBuilt) Assert (*error != COORDSYS_NoError, "*error != COORDSYS_NoError");
  return isBuilt;
}

// The factor and the deltas depend on ellipsoid and projection alone, so a block of these two, with
// the files of the projection whatever the options say, computes them. Nothing changes without it.
void Transform::ComputeGroundScale () {
  coordsys_GroundScale& scale = Projection.GroundScale;
  const coord_Local& location = scale.ProjectLocation;
  const bool isLocated = IsNumber (location.Latitude) && IsNumber (location.Longitude);
  const bool isCalculated = scale.Type == COORDSYS_CalculatedGroundScaleFactor;
  if (!isLocated && !isCalculated) {
    scale.NorthingDelta = scale.EastingDelta = 0.0;
    return;
  }
  std::unique_ptr<csib_Block> block;
  coordsys_Error ignored = COORDSYS_NoError;
  if (!csib_FromParts (block, COORDSYS_SetEllipsoid | COORDSYS_SetProjection, Ellipsoid, Projection,
                       Datum, Plane, Height, Corrections, 0, &ignored, true))
    return;
  if (isCalculated) {
    block->GroundScale = 1.0;
    scale.Factor = isLocated && !maths_IsNull (location.Height) ? GroundScaleIn (*block, location)
                                                                : MATHS_Null;
    if (!maths_IsNull (scale.Factor)) block->GroundScale = scale.Factor;
  }
  csib_GroundDeltas (*block, scale.NorthingDelta, scale.EastingDelta);
}

// ---------------------------------------------------------------------------------------------
// Conversions

bool Transform::RemembersPairs () const noexcept {
  return _block->DatumCode == CSIB_SevenParameter && _block->Geoid != nullptr;
}

bool Transform::IsRemembered (const coord_Local& local) const noexcept {
  return !maths_IsNull (_pair.Local.Height) && local.Latitude == _pair.Local.Latitude &&
         local.Longitude == _pair.Local.Longitude && local.Height == _pair.Local.Height;
}

// The datum's own operation: the geoid of the block's one finds an orthometric height, which does
// not leave the transform.
void Transform::WGS84ToLocal (const coord_WGS84& source, coord_Local& destination) const {
  csib_Geodetic point, local;
  if (_block && _block->Datum != nullptr && Enter (source, point) &&
      _block->Datum->forward (*_block, point, local) == CSIB_Ok) {
    const coord_WGS84 from = source;
    Leave (local, destination);
    if (RemembersPairs ()) _pair = {destination, from};
  } else {
    destination = coord_Local ();
  }
}

void Transform::LocalToWGS84 (const coord_Local& source, coord_WGS84& destination) const {
  csib_Geodetic point, wgs84;
  if (IsRemembered (source))
    destination = _pair.WGS84;
  else if (_block && Enter (source, point) && csib_LocalToWGS84 (*_block, point, wgs84) == CSIB_Ok)
    Leave (wgs84, destination);
  else
    destination = coord_WGS84 ();
}

void Transform::LocalToCogoGrid (const coord_Local& source, coord_CogoGrid& destination) const {
  ToCogoGrid (source, destination, true);
}

void Transform::UncalibratedLocalToCogoGrid (const coord_Local& source,
                                             coord_CogoGrid& destination) const {
  ToCogoGrid (source, destination, false);
}

void Transform::ToCogoGrid (const coord_Local& source, coord_CogoGrid& destination,
                            bool isCalibrated) const {
  csib_Geodetic local;
  csib_Grid grid;
  if (!_block || !Enter (source, local) || csib_Project (*_block, local, grid) != CSIB_Ok ||
      (_block->HasShiftGrid && csib_ShiftForward (*_block, grid) != CSIB_Ok)) {
    destination = coord_CogoGrid ();
    return;
  }
  if (!isCalibrated) csib_HorizontalForward (*_block, grid);
  if (_block->Geoid == nullptr) {
    grid.OrthometricHeight = local.EllipsoidalHeight;
    grid.HasOrthometric = local.HasEllipsoidal;
  } else {
    csib_Geodetic wgs84;
    const bool isKnown = IsRemembered (source) && Enter (_pair.WGS84, wgs84);
    csib_ElevationOfLocal (*_block, local, grid, isKnown ? &wgs84 : nullptr);
  }
  if (_block->HasVertical) csib_VerticalForward (*_block, grid);
  GridDoor (*this).Leave (grid, destination);
}

void Transform::CogoGridToLocal (const coord_CogoGrid& source, coord_Local& destination) const {
  ToLocal (source, destination, true);
}

void Transform::CogoGridToUncalibratedLocal (const coord_CogoGrid& source,
                                             coord_Local& destination) const {
  ToLocal (source, destination, false);
}

void Transform::ToLocal (const coord_CogoGrid& source, coord_Local& destination,
                         bool isCalibrated) const {
  csib_Grid grid;
  csib_Geodetic local;
  destination = coord_Local ();
  if (!_block || !GridDoor (*this).Enter (source, grid)) return;
  if (isCalibrated) csib_VerticalInverse (*_block, grid);
  if (csib_ShiftInverse (*_block, grid) != CSIB_Ok) return;
  if (!isCalibrated) {
    csib_VerticalInverse (*_block, grid);
    csib_HorizontalInverse (*_block, grid);
  }
  if (csib_Unproject (*_block, grid, local) != CSIB_Ok) return;
  if (_block->Geoid != nullptr) {
    local.OrthometricHeight = grid.OrthometricHeight;
    local.HasOrthometric = grid.HasOrthometric;
  }
  // Without a result the position stands and the height is absent.
  csib_Geodetic wgs84;
  csib_LocalHeightFromOrthometric (*_block, local, &wgs84);
  Leave (local, destination);
  if (wgs84.HasEllipsoidal && RemembersPairs ()) {
    _pair.Local = destination;
    Leave (wgs84, _pair.WGS84);
  }
}

coordsys_Axes Transform::Axes () const noexcept {
  return {Components, Projection, GridOrientationCopy};
}

void Transform::CogoGridToGrid (const coord_CogoGrid& source,
                                coord_CorrectedGrid& destination) const {
  if (_block)
    Axes ().ToGrid (source, destination);
  else
    destination = coord_CorrectedGrid ();
}

void Transform::GridToCogoGrid (const coord_CorrectedGrid& source,
                                coord_CogoGrid& destination) const {
  if (_block)
    Axes ().ToCogo (source, destination);
  else
    destination = coord_CogoGrid ();
}

// ---------------------------------------------------------------------------------------------
// Queries

void Transform::GeoidSeparation (const coord_WGS84& point, double& separation) const {
  csib_Geodetic wgs84;
  double value = 0.0;
  const bool isFound =
      _block && Enter (point, wgs84) && csib_Separation (*_block, wgs84, value) == CSIB_Ok;
  separation = isFound ? maths_NullUnlessFinite (value) : MATHS_Null;
}

void Transform::ApplyHorizontalAdjustment (coord_CogoGrid& point) const {
  csib_Grid grid;
  if (_block && _block->HasHorizontal == 0) return;
  if (!_block || !GridDoor (*this).Enter (point, grid)) {
    point = coord_CogoGrid ();
    return;
  }
  csib_HorizontalForward (*_block, grid);
  GridDoor (*this).Leave (grid, point);
}

void Transform::ApplyVerticalAdjustment (coord_CogoGrid& point) const {
  csib_Grid grid;
  if (_block && _block->HasVertical == 0) return;
  if (!_block || !GridDoor (*this).Enter (point, grid)) {
    point = coord_CogoGrid ();
    return;
  }
  csib_VerticalForward (*_block, grid);
  GridDoor (*this).Leave (grid, point);
}

double Transform::GroundScaleAt (const coord_Local& point) const {
  if (Projection.ProjectionType == COORDSYS_ScaleOnly) return Projection.Scale;
  return _block ? GroundScaleIn (*_block, point) : MATHS_Null;
}

double Transform::GroundScaleIn (csib_Block& block, const coord_Local& point) const {
  if (Projection.ProjectionType == COORDSYS_ScaleOnly) return Projection.Scale;
  coord_Local raised = point;
  if (maths_IsNull (raised.Height)) raised.Height = GetProjectHeight ();
  csib_Geodetic local;
  double combined = 0.0;
  if (!Enter (raised, local) || csib_CombinedScale (block, local, combined) != CSIB_Ok)
    return MATHS_Null;
  return maths_Divide (1.0, combined);
}

void Transform::GetAzimuthCorrection (double& northAzimuth,
                                      coordsys_GridOrientation& orientation) const noexcept {
  northAzimuth = NorthAzimuth;
  orientation = GridOrientationCopy;
}

double Transform::AzimuthCorrected (coordsys_GridOrientation orientation, bool southAzimuth,
                                    double azimuth) {
  if (orientation == COORDSYS_IncreasingSouthWest || orientation == COORDSYS_IncreasingSouthEast)
    maths_AddTo (azimuth, CONSTANT_Pi);
  if (southAzimuth) maths_AddTo (azimuth, CONSTANT_Pi);
  return coord_NormaliseTwoPi (azimuth);
}

coordsys_Height Transform::ConvertHeightToCogo (const coordsys_Height& height) const {
  return Axes ().ToCogo (height);
}
coordsys_Height Transform::ConvertHeightToGrid (const coordsys_Height& height) const {
  return Axes ().ToGrid (height);
}
coordsys_Plane Transform::ConvertPlaneToCogo (const coordsys_Plane& plane) const {
  return Axes ().ToCogo (plane);
}
coordsys_Plane Transform::ConvertPlaneToGrid (const coordsys_Plane& plane) const {
  return Axes ().ToGrid (plane);
}

}  // namespace clxml
