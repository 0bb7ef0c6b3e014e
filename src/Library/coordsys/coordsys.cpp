// The parts of a coordinate system: from the records of a job, and between the two grids.
// Leans on coordsys, dbaccess and dbCoordSystems.
#include "Library/coordsys/coordsys.h"

#include "Library/job/dbaccess.h"
#include "Library/records/dbCoordSystems.h"

namespace clxml {

namespace {

// An offset that is absent is none.
double OffsetOf (double value) noexcept { return maths_IsNull (value) ? 0.0 : value; }

// Negated about an origin; a null stays null.
double Reflected (double value, double origin) noexcept {
  return maths_Add (maths_Negate (maths_Subtract (value, origin)), origin);
}

template <class T>
const T* Newest (const dbAccess& job) {
  return T::From (job.GetLatestRecord (T::Number));
}

coord_Local PositionOf (const db_LLH& record) { return {record.Lat, record.Long, record.Height}; }

coordsys_GroundScale GroundScaleOf (const db_GroundScale& record) {
  return {record.Type,           record.Factor,        PositionOf (record.ProjectLocation),
          record.NorthingOffset, record.EastingOffset, record.NorthingDelta,
          record.EastingDelta};
}

}  // namespace

coordsys_Ellipsoid coordsys_FromRecord (const db_Ellipsoid& record) {
  return {record.EarthRadius, record.Flattening};
}

coordsys_Datum coordsys_FromRecord (const db_Datum& record) {
  return {record.DatumType,    record.EarthRadius, record.Flattening,   record.RotationX,
          record.RotationY,    record.RotationZ,   record.TranslationX, record.TranslationY,
          record.TranslationZ, record.Scale,       record.GridName};
}

coordsys_Projection coordsys_FromRecord (const db_Projection& record) {
  return {record.ProjectionType,
          PositionOf (record.OriginLocal),
          coord_CorrectedGrid::FromNorthEastElevation (
              record.OriginGrid.North, record.OriginGrid.East, record.OriginGrid.Elev),
          record.Scale,
          record.GridElevation,
          record.Orientation1,
          record.Orientation2,
          record.AzimuthFormat,
          record.OriginCenter,
          record.Rectify != 0,
          record.Area,
          record.UKNorthGridFile,
          record.UKEastGridFile,
          record.ProjectionGridFile,
          record.ShiftGridFile,
          GroundScaleOf (record.GroundScale)};
}

coordsys_Plane coordsys_FromRecord (const db_Plane& record) {
  return {record.PlaneType,       record.OriginNorth, record.OriginEast, record.TranslationNorth,
          record.TranslationEast, record.Rotation,    record.ScaleFactor};
}

coordsys_Height coordsys_FromRecord (const db_Height& record) {
  return {record.HeightType,     record.OriginNorth,    record.OriginEast,   record.NorthAdjustment,
          record.EastAdjustment, record.ElevAdjustment, record.GeoidFilename};
}

coordsys_Corrections coordsys_FromRecord (const db_Corrections& record) {
  return {record.ValuesPresent,
          record.SouthAzimuth != 0,
          record.GridOrientation,
          record.MagneticDeclination,
          record.Distances,
          record.SubDivideCode,
          record.NeighbourhoodAdjustment != 0,
          record.WeightExponent};
}

coordsys_Parts coordsys_PartsOf (const dbAccess& job) {
  coordsys_Parts parts;
  unsigned mask = 0;
  if (const auto* record = Newest<db_Ellipsoid> (job)) {
    parts.Ellipsoid = coordsys_FromRecord (*record);
    if (!maths_IsNull (parts.Ellipsoid.MinorAxis ())) mask |= COORDSYS_SetEllipsoid;
  }
  if (const auto* record = Newest<db_Projection> (job)) {
    parts.Projection = coordsys_FromRecord (*record);
    if (record->ProjectionType != COORDSYS_NoProjection) mask |= COORDSYS_SetProjection;
    if (record->ProjectionType == COORDSYS_ScaleOnly) mask |= COORDSYS_SetScaleOnly;
  }
  if (const auto* record = Newest<db_Datum> (job)) {
    parts.Datum = coordsys_FromRecord (*record);
    if (record->DatumType != COORDSYS_NoDatum) mask |= COORDSYS_SetDatum;
    if (record->DatumType == COORDSYS_GridDatum) parts.Options |= COORDSYS_UsesDatumGrid;
  }
  if (const auto* record = Newest<db_Plane> (job)) {
    parts.Plane = coordsys_FromRecord (*record);
    if (record->PlaneType != COORDSYS_NoHorizontal) mask |= COORDSYS_SetHorzAdjustment;
  }
  if (const auto* record = Newest<db_Height> (job)) {
    parts.Height = coordsys_FromRecord (*record);
    if (record->HeightType != COORDSYS_NoVertical) mask |= COORDSYS_SetVertAdjustment;
    if (record->HeightType == COORDSYS_GeoidModel || record->HeightType == COORDSYS_GeoidAndPlane)
      parts.Options |= COORDSYS_UsesGeoidFile;
  }
  if (const auto* record = Newest<db_Corrections> (job)) {
    parts.Corrections = coordsys_FromRecord (*record);
    mask |= COORDSYS_SetCorrections;
  }
  parts.Components = static_cast<uint16_t> (mask);
  return parts;
}

coordsys_CogoSettings coordsys_CogoSystemOf (const coordsys_Corrections& corrections,
                                             uint16_t components,
                                             coordsys_ProjectionType projectionType) noexcept {
  unsigned settings = COORDSYS_CogoAzimuthGrid;
  switch (corrections.Distances) {
    case COORDSYS_EllipsoidDistance:
      settings |= COORDSYS_CogoDistanceLocal | COORDSYS_CogoEllipsoidDistances;
      break;
    case COORDSYS_GroundDistance:
      settings |= COORDSYS_CogoDistanceLocal | COORDSYS_CogoGroundDistances;
      break;
    default:
      settings |= COORDSYS_CogoDistanceGrid | COORDSYS_CogoEllipsoidDistances;
  }
  constexpr unsigned geodetic = COORDSYS_SetDatum | COORDSYS_SetProjection;
  constexpr unsigned levelled = COORDSYS_SetScaleOnly | COORDSYS_SetVertAdjustment;
  const bool hasEllipsoidHeights = (components & geodetic) == geodetic &&
                                   (components & levelled) == 0 &&
                                   projectionType != COORDSYS_ScaleOnly;
  settings |= hasEllipsoidHeights ? COORDSYS_CogoEllipsoidHeights : COORDSYS_CogoOrthoHeights;
  return static_cast<coordsys_CogoSettings> (settings);
}

coordsys_Axes::coordsys_Axes (uint16_t components, const coordsys_Projection& projection,
                              coordsys_GridOrientation orientation) noexcept
    : _northingOffset (OffsetOf (projection.GroundScale.NorthingOffset)),
      _eastingOffset (OffsetOf (projection.GroundScale.EastingOffset)),
      _northReversed (orientation != COORDSYS_IncreasingNorthEast &&
                      orientation != COORDSYS_IncreasingNorthWest),
      _eastReversed (orientation != COORDSYS_IncreasingNorthEast &&
                     orientation != COORDSYS_IncreasingSouthEast) {
  if ((components & COORDSYS_SetProjection) != 0 &&
      projection.ProjectionType != COORDSYS_NoProjection &&
      !projection.OriginGrid.NullHorizontal ()) {
    _originNorth = OffsetOf (projection.OriginGrid.North);
    _originEast = OffsetOf (projection.OriginGrid.East);
  }
}

void coordsys_Axes::MoveToGrid (double& north, double& east) const noexcept {
  if (_northReversed) north = Reflected (north, _originNorth);
  if (_eastReversed) east = Reflected (east, _originEast);
  maths_SubtractFrom (north, _northingOffset);
  maths_SubtractFrom (east, _eastingOffset);
}

void coordsys_Axes::MoveToCogo (double& north, double& east) const noexcept {
  maths_AddTo (north, _northingOffset);
  maths_AddTo (east, _eastingOffset);
  if (_northReversed) north = Reflected (north, _originNorth);
  if (_eastReversed) east = Reflected (east, _originEast);
}

void coordsys_Axes::Turn (double& alongNorth, double& alongEast) const noexcept {
  if (_northReversed) alongNorth = maths_Negate (alongNorth);
  if (_eastReversed) alongEast = maths_Negate (alongEast);
}

void coordsys_Axes::ToGrid (const coord_CogoGrid& cogo, coord_CorrectedGrid& grid) const noexcept {
  grid = coord_CorrectedGrid::FromNorthEastElevation (cogo.North, cogo.East, cogo.Elevation);
  MoveToGrid (grid.North, grid.East);
}

void coordsys_Axes::ToCogo (const coord_CorrectedGrid& grid, coord_CogoGrid& cogo) const noexcept {
  cogo = coord_CogoGrid (grid.North, grid.East, grid.Elevation);
  MoveToCogo (cogo.North, cogo.East);
}

coordsys_Height coordsys_Axes::ToGrid (coordsys_Height height) const noexcept {
  MoveToGrid (height.OriginNorth, height.OriginEast);
  Turn (height.NorthAdjustment, height.EastAdjustment);
  return height;
}

coordsys_Height coordsys_Axes::ToCogo (coordsys_Height height) const noexcept {
  MoveToCogo (height.OriginNorth, height.OriginEast);
  Turn (height.NorthAdjustment, height.EastAdjustment);
  return height;
}

coordsys_Plane coordsys_Axes::ToGrid (coordsys_Plane plane) const noexcept {
  MoveToGrid (plane.OriginNorth, plane.OriginEast);
  Turn (plane.TranslationNorth, plane.TranslationEast);
  return plane;
}

coordsys_Plane coordsys_Axes::ToCogo (coordsys_Plane plane) const noexcept {
  MoveToCogo (plane.OriginNorth, plane.OriginEast);
  Turn (plane.TranslationNorth, plane.TranslationEast);
  return plane;
}

}  // namespace clxml
