// Spirals of a horizontal alignment.
// Both kinds are parts of a clothoid; an exit spiral is computed from its end backwards. Leans on
// cogospiral and roadcogo.
#include <cmath>

#include "Library/cogo/cogospiral.h"
#include "Library/cogo/roadcogo.h"
#include "Library/position/position.h"
#include "road/horizontal.h"
#include "road/horizontalsteps.h"
#include "road/roadtransform.h"

namespace clxml {

namespace {

// The resolution of an element's own values, metres.
constexpr double resolution = 1e-7;

SpiralType TypeOf (bool isEntry, bool isClockwise) {
  return isEntry ? (isClockwise ? EntryRight : EntryLeft) : (isClockwise ? ExitRight : ExitLeft);
}

// Deflection and offsets of a whole spiral.
struct Totals {
  double delta = MATHS_Null;
  double x = MATHS_Null;
  double y = MATHS_Null;

  bool AreKnown () const {
    return std::isfinite (delta) && std::isfinite (x) && std::isfinite (y) &&
           !maths_IsNull (delta) && !maths_IsNull (x) && !maths_IsNull (y);
  }
};

Totals TotalsOf (double small, double large, double length, double within) {
  Totals totals;
  if (!maths_IsNull (small) && !maths_IsNull (length) && length >= 0.0)
    cogo_SpiralFromTangent (small, large, length, length, within, totals.delta, totals.x, totals.y);
  return totals;
}

}  // namespace

const HorizontalKeying& HorizontalSpiral::Keying () const noexcept {
  static constexpr HorizontalKeying keying = {.byLength = 1u << RadiusAndLength,
                                              .byEndStation = 1u << RadiusAndEndStation};
  return keying;
}

void HorizontalSpiral::ComputeEnd () { Recompute (resolution); }

void HorizontalSpiral::Recompute (double within) {
  EndAzimuth = MATHS_Null;
  EndCoordinate = coord_CorrectedGrid ();
  const Totals totals = TotalsOf (SmallRadius (), LargeRadius (), Length, within);
  const Transform* transform = CurrentTransformation ();
  if (transform == nullptr || maths_IsNull (StartAzimuth) || !totals.AreKnown ()) return;
  position start, end;
  start.LoadFromGrid (StartCoordinate, transform);
  double azimuth = MATHS_Null;
  cogo_SpiralPosition (TypeOf (IsEntry (), Clockwise), start, *transform, StartAzimuth,
                       SmallRadius (), LargeRadius (), Length, 0.0, within, Length, totals.delta,
                       totals.x, totals.y, end, azimuth, COGO_RoadSystem);
  EndAzimuth = maths_NullUnlessFinite (azimuth);
  EndCoordinate = road_Finite (end.GetGrid (*transform));
}

void HorizontalSpiral::TakeStartFrom (const HorizontalBase& previous) {
  HorizontalBase::TakeStartFrom (previous);
  if (!previous.HasRadius ()) return;
  StartRadius = *previous.EndRadiusRef ();
  Clockwise = *previous.DirectionRef ();
}

RoadPosition HorizontalSpiral::PositionAt (double station) const {
  RoadPosition place;
  place.Clockwise = Clockwise;
  place.Station = station;
  const bool isEntry = IsEntry ();
  const Transform* transform = CurrentTransformation ();
  const double along = maths_Subtract (station, StartChainage);
  const double tangent = isEntry ? StartAzimuth : road_Turned (EndAzimuth, CONSTANT_Pi, false);
  if (transform == nullptr || maths_IsNull (along) || maths_IsNull (Length) ||
      maths_IsNull (SmallRadius ()) || maths_IsNull (tangent))
    return place;
  roadcogo_SpiralPoint (isEntry ? StartCoordinate : EndCoordinate, *transform, COGO_RoadSystem,
                        tangent, SmallRadius (), LargeRadius (), Length, Clockwise, isEntry, along,
                        place.Coordinate, place.Azimuth);
  place.Coordinate = road_Finite (place.Coordinate);
  place.Azimuth = maths_NullUnlessFinite (place.Azimuth);
  return place;
}

coord_StationOffset HorizontalSpiral::StationOffsetOf (
    const coord_CorrectedGrid& coordinate) const {
  const Totals totals = TotalsOf (SmallRadius (), LargeRadius (), Length, resolution);
  const Transform* transform = CurrentTransformation ();
  if (transform == nullptr || !totals.AreKnown ()) return coord_StationOffset ();
  position start, point, foot;
  start.LoadFromGrid (StartCoordinate, transform);
  point.LoadFromGrid (coordinate, transform);
  double along = MATHS_Null, offset = MATHS_Null, height = MATHS_Null, azimuth = MATHS_Null;
  const cogo_Result result = cogo_SpiralStationOffset (
      TypeOf (IsEntry (), Clockwise), start, *transform, StartAzimuth, SmallRadius (),
      LargeRadius (), Length, 0.0, resolution, totals.delta, totals.x, totals.y, point, along,
      offset, height, azimuth, foot, COGO_RoadSystem);
  return road_StationOffset (result, StartChainage, along, offset);
}

void HorizontalSpiral::ChangeToLengthKeyin () { KeyinMethod = RadiusAndLength; }
void HorizontalSpiral::ChangeToEndStationKeyin () { KeyinMethod = RadiusAndEndStation; }

void HorizontalSpiral::TakeReversed (const HorizontalSpiral& other) {
  AssignBase (other);
  EndRadius = other.StartRadius;
  StartRadius = other.EndRadius;
  Clockwise = other.Clockwise;
}

HorizontalEntrySpiral::HorizontalEntrySpiral (const HorizontalExitSpiral& exit) {
  TakeReversed (exit);
  Assert (EndRadius < StartRadius, "EndRadius < StartRadius");
  ComputeEnd ();
}

HorizontalExitSpiral::HorizontalExitSpiral (const HorizontalEntrySpiral& entry) {
  TakeReversed (entry);
  Assert (EndRadius > StartRadius, "EndRadius > StartRadius");
  ComputeEnd ();
}

}  // namespace clxml
