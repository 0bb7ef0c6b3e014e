// The elements of a horizontal alignment.
// Ends, stations and offsets of straights and arcs, and what all elements share; spirals stand in
// a source of their own. Leans on cogo, cogoarc and roadcogo, on positions under the road's
// transform.
#include "road/horizontal.h"

#include <cmath>

#include "Library/cogo/cogoarc.h"
#include "Library/cogo/roadcogo.h"
#include "Library/position/position.h"
#include "road/horizontalsteps.h"
#include "road/roadtransform.h"

namespace clxml {

coord_CorrectedGrid road_Forward (const coord_CorrectedGrid& origin, double azimuth,
                                  double distance) {
  coord_CorrectedGrid end;
  const Transform* transform = CurrentTransformation ();
  if (transform != nullptr && !maths_IsNull (azimuth) && !maths_IsNull (distance))
    roadcogo_Straight (*transform, COGO_RoadSystem, origin, azimuth, distance, end);
  return road_Finite (end);
}

void road_Inverse (const coord_CorrectedGrid& from, const coord_CorrectedGrid& to, double& azimuth,
                   double& distance) {
  azimuth = distance = MATHS_Null;
  const Transform* transform = CurrentTransformation ();
  if (transform == nullptr) return;
  roadcogo_Inverse (*transform, COGO_RoadSystem, from, to, azimuth, distance);
  azimuth = maths_NullUnlessFinite (azimuth);
  distance = maths_NullUnlessFinite (distance);
}

coord_CorrectedGrid road_Finite (const coord_CorrectedGrid& coordinate) {
  return {maths_NullUnlessFinite (coordinate.North), maths_NullUnlessFinite (coordinate.East),
          maths_NullUnlessFinite (coordinate.Elevation)};
}

double road_Turned (double azimuth, double angle, bool isClockwise) {
  return coord_NormaliseTwoPi (isClockwise ? maths_Add (azimuth, angle)
                                           : maths_Subtract (azimuth, angle));
}

void HorizontalBase::AssignBase (const HorizontalBase& other) { *this = other; }

void HorizontalBase::ComputeFromEnd () { Assert (false, "false"); }

namespace {

bool Holds (uint32_t mask, int32_t method) {
  return method >= 0 && method < 32 && (mask >> method & 1) != 0;
}

}  // namespace

bool HorizontalBase::KeyedByLength () const noexcept {
  return Holds (Keying ().byLength, KeyinMethod);
}

bool HorizontalBase::KeyedByEndStation () const noexcept {
  return Holds (Keying ().byEndStation, KeyinMethod);
}

bool HorizontalBase::KeyedByEndCoordinate () const noexcept {
  return Keying ().alwaysByCoordinate || KeyedByUserCoordinates () || KeyedByExistingPoint ();
}

bool HorizontalBase::KeyedByExistingPoint () const noexcept {
  return KeyinMethod >= 0 && KeyinMethod == Keying ().existingPoint;
}

bool HorizontalBase::KeyedByUserCoordinates () const noexcept {
  return KeyinMethod >= 0 && KeyinMethod == Keying ().userCoordinates;
}

int32_t HorizontalBase::ExistingPointMethod () const {
  Assert (Keying ().existingPoint >= 0, "false");
  return Keying ().existingPoint;
}

int32_t HorizontalBase::UserCoordinatesMethod () const {
  Assert (Keying ().userCoordinates >= 0, "false");
  return Keying ().userCoordinates;
}

void HorizontalBase::TakeStartFrom (const HorizontalBase& previous) {
  StartAzimuth = previous.EndAzimuth;
  StartChainage = previous.EndChainage;
  StartCoordinate = previous.EndCoordinate;
}

RoadPosition HorizontalBase::PositionAt (double station) const {
  RoadPosition position;
  position.Clockwise = true;
  position.Azimuth = 0.0;
  position.Station = station;
  return position;
}

coord_StationOffset HorizontalBase::StationOffsetOf (const coord_CorrectedGrid&) const {
  return coord_StationOffset ();
}

void HorizontalBase::ChangeToLengthKeyin () { Assert (false, "false"); }
void HorizontalBase::ChangeToEndStationKeyin () { Assert (false, "false"); }

// The start point.

const HorizontalKeying& HorizontalStartPoint::Keying () const noexcept {
  static constexpr HorizontalKeying keying = {.userCoordinates = UserDefinedCoords,
                                              .existingPoint = ExistingPoint,
                                              .alwaysByCoordinate = true};
  return keying;
}

void HorizontalStartPoint::ComputeFromEnd () { EndCoordinate = StartCoordinate; }

void HorizontalStartPoint::ComputeEnd () {
  EndCoordinate = StartCoordinate;
  EndAzimuth = StartAzimuth;
}

RoadPosition HorizontalStartPoint::PositionAt (double station) const {
  RoadPosition position = HorizontalBase::PositionAt (station);
  position.Station = StartChainage;
  position.Coordinate = StartCoordinate;
  return position;
}

// The straight.

const HorizontalKeying& HorizontalStraight::Keying () const noexcept {
  static constexpr HorizontalKeying keying = {.byLength = 1u << AzimuthAndLength,
                                              .byEndStation = 1u << AzimuthAndEndStation,
                                              .userCoordinates = UserDefinedCoords,
                                              .existingPoint = ExistingPoint};
  return keying;
}

void HorizontalStraight::ComputeEnd () {
  EndAzimuth = MATHS_Null;
  EndCoordinate = coord_CorrectedGrid ();
  if (maths_IsNull (Length) || maths_IsNull (StartAzimuth)) return;
  EndAzimuth = maths_NullUnlessFinite (StartAzimuth);
  EndCoordinate = road_Forward (StartCoordinate, StartAzimuth, Length);
}

void HorizontalStraight::ComputeFromEnd () {
  road_Inverse (StartCoordinate, EndCoordinate, StartAzimuth, Length);
  EndAzimuth = StartAzimuth;
}

void HorizontalStraight::TakeStartFrom (const HorizontalBase& previous) {
  HorizontalBase::TakeStartFrom (previous);
  if (!HorizontalStraight::IsType (previous.ElementType ())) return;
  StartAzimuth = MATHS_Null;
  TangentialToPrevious = false;
}

RoadPosition HorizontalStraight::PositionAt (double station) const {
  RoadPosition position = HorizontalBase::PositionAt (station);
  position.Azimuth = maths_NullUnlessFinite (StartAzimuth);
  position.Coordinate =
      road_Forward (StartCoordinate, StartAzimuth, maths_Subtract (station, StartChainage));
  return position;
}

coord_StationOffset HorizontalStraight::StationOffsetOf (
    const coord_CorrectedGrid& coordinate) const {
  const Transform* transform = CurrentTransformation ();
  if (transform == nullptr) return coord_StationOffset ();
  position start, point, foot;
  start.LoadFromGrid (StartCoordinate, transform);
  point.LoadFromGrid (coordinate, transform);
  double footAzimuth = MATHS_Null, along = MATHS_Null, offset = MATHS_Null, height = MATHS_Null;
  const cogo_Result result =
      cogo_StationOffset (start, *transform, StartAzimuth, MATHS_Null, point, foot, footAzimuth,
                          along, offset, height, COGO_RoadSystem);
  return road_StationOffset (result, StartChainage, along, offset);
}

coord_StationOffset road_StationOffset (cogo_Result result, double startChainage, double along,
                                        double offset) {
  const double station = maths_Add (startChainage, maths_NullUnlessFinite (along));
  if (result != COGO_Ok || maths_IsNull (station)) return coord_StationOffset ();
  return {station, maths_NullUnlessFinite (offset), MATHS_Null};
}

// The arc.

const HorizontalKeying& HorizontalArc::Keying () const noexcept {
  static constexpr HorizontalKeying keying = {
      .byLength = 1u << RadiusAndLength | 1u << AngleAndRadius | 1u << AngleAndLength,
      .byEndStation = 1u << RadiusAndEndStation | 1u << AngleAndEndStation,
      .userCoordinates = UserDefinedCoords,
      .existingPoint = ExistingPoint};
  return keying;
}

coord_CorrectedGrid HorizontalArc::Centre () const {
  return road_Forward (StartCoordinate, road_Turned (StartAzimuth, CONSTANT_PiOverTwo, Clockwise),
                       Radius);
}

// From the centre to the start.
double HorizontalArc::RadialAzimuth () const {
  return road_Turned (StartAzimuth, CONSTANT_PiOverTwo, !Clockwise);
}

void HorizontalArc::ComputeEnd () {
  EndAzimuth = MATHS_Null;
  EndCoordinate = coord_CorrectedGrid ();
  const Transform* transform = CurrentTransformation ();
  if (transform == nullptr || maths_IsNull (Angle) || maths_IsNull (Radius) ||
      maths_IsNull (Length) || maths_IsNull (StartAzimuth))
    return;
  position start, centre, end;
  start.LoadFromGrid (StartCoordinate, transform);
  centre.LoadFromGrid (Centre (), transform);
  cogo_ArcPoint (!Clockwise, start, centre, *transform, Radius, RadialAzimuth (), MATHS_Null,
                 Length, end, COGO_RoadSystem);
  EndCoordinate = road_Finite (end.GetGrid (*transform));
  ComputeEndAzimuth ();
}

void HorizontalArc::ComputeEndAzimuth () {
  EndAzimuth = road_Turned (StartAzimuth, Angle, Clockwise);
}

// By the chord: its angle with the start tangent is half of the deflection.
void HorizontalArc::ComputeFromEnd () {
  double chordAzimuth = MATHS_Null, chord = MATHS_Null;
  road_Inverse (StartCoordinate, EndCoordinate, chordAzimuth, chord);
  if (maths_IsNull (StartAzimuth) || maths_IsNull (chord)) {
    Angle = Radius = Length = EndChainage = EndAzimuth = MATHS_Null;
    return;
  }
  if (maths_IsNull (chordAzimuth)) return;
  const double d = coord_NormalisePlusMinusPi (chordAzimuth - StartAzimuth);
  if (d == 0.0 || std::abs (d) == CONSTANT_Pi) return;
  const bool isClockwise = d > 0.0;
  const double centreAzimuth = road_Turned (StartAzimuth, CONSTANT_PiOverTwo, isClockwise);
  const double e = coord_NormalisePlusMinusPi (centreAzimuth - chordAzimuth);
  double angle = CONSTANT_Pi - 2 * std::abs (e);
  if (isClockwise ? e < 0.0 : e > 0.0) angle = CONSTANT_TwoPi - angle;
  // Rounding can make an end beside the tangent one on it.
  if (!(angle > 0.0 && angle < CONSTANT_TwoPi)) return;
  Clockwise = isClockwise;
  Angle = angle;
  Radius = maths_Divide (chord, 2 * std::sin (Angle / 2));
  Length = maths_Multiply (Radius, Angle);
  EndChainage = maths_Add (StartChainage, Length);
  EndAzimuth = Clockwise ? StartAzimuth + Angle : StartAzimuth - Angle;
}

void HorizontalArc::SettleKeyed () {
  switch (KeyinMethod) {
    case RadiusAndLength:
    case RadiusAndEndStation:
      Angle = cogo_ArcAngle (Radius, Length);
      break;
    case AngleAndRadius:
      Length = cogo_ArcLength (Radius, Angle);
      break;
    case AngleAndLength:
    case AngleAndEndStation:
      Radius = maths_Divide (Length, Angle);
      break;
    default:
      break;
  }
}

void HorizontalArc::TakeStartFrom (const HorizontalBase& previous) {
  HorizontalBase::TakeStartFrom (previous);
  if (!previous.HasRadius ()) return;
  Radius = *previous.EndRadiusRef ();
  Clockwise = *previous.DirectionRef ();
}

RoadPosition HorizontalArc::PositionAt (double station) const {
  RoadPosition position;
  position.Clockwise = Clockwise;
  position.Station = station;
  const Transform* transform = CurrentTransformation ();
  const double along = maths_Subtract (station, StartChainage);
  if (transform == nullptr || maths_IsNull (along) || maths_IsNull (Length) ||
      maths_IsNull (Angle) || maths_IsNull (Radius) || maths_IsNull (StartAzimuth))
    return position;
  // An arc without a length has one place; a station may lie within the tolerance behind it.
  roadcogo_ArcPoint (StartCoordinate, *transform, COGO_RoadSystem, StartAzimuth, Angle, Radius,
                     Length, Clockwise, Length == 0.0 ? 0.0 : along, position.Coordinate,
                     position.Azimuth);
  position.Coordinate = road_Finite (position.Coordinate);
  position.Azimuth = maths_NullUnlessFinite (position.Azimuth);
  return position;
}

coord_StationOffset HorizontalArc::StationOffsetOf (const coord_CorrectedGrid& coordinate) const {
  const Transform* transform = CurrentTransformation ();
  if (transform == nullptr) return coord_StationOffset ();
  position start, centre, point, foot;
  start.LoadFromGrid (StartCoordinate, transform);
  centre.LoadFromGrid (Centre (), transform);
  point.LoadFromGrid (coordinate, transform);
  double azimuth = MATHS_Null, along = MATHS_Null, offset = MATHS_Null, height = MATHS_Null;
  const cogo_Result result = cogo_ArcStationOffset (
      !Clockwise, start, *transform, centre, RadialAzimuth (), maths_Divide (Length, Radius),
      Radius, MATHS_Null, MATHS_Null, point, foot, azimuth, along, offset, height, COGO_RoadSystem);
  return road_StationOffset (result, StartChainage, along, offset);
}

void HorizontalStraight::ChangeToLengthKeyin () { KeyinMethod = AzimuthAndLength; }
void HorizontalStraight::ChangeToEndStationKeyin () { KeyinMethod = AzimuthAndEndStation; }

void HorizontalArc::ChangeToLengthKeyin () {
  if (!Assert (KeyinMethod != ExistingPoint, "KeyinMethod != ExistingPoint") ||
      !Assert (KeyinMethod != UserDefinedCoords, "KeyinMethod != UserDefinedCoords") ||
      !Assert (KeyedByEndStation (),
               "( KeyinMethod == RadiusAndEndStation ) || ( KeyinMethod == AngleAndEndStation )"))
    return;
  KeyinMethod = KeyinMethod == RadiusAndEndStation ? RadiusAndLength : AngleAndLength;
}

void HorizontalArc::ChangeToEndStationKeyin () {
  if (!Assert (KeyinMethod != ExistingPoint, "KeyinMethod != ExistingPoint") ||
      !Assert (KeyinMethod != UserDefinedCoords, "KeyinMethod != UserDefinedCoords") ||
      !Assert (KeyedByLength (),
               "( KeyinMethod == RadiusAndLength ) || ( KeyinMethod == AngleAndRadius ) || ( "
               "KeyinMethod == AngleAndLength )"))
    return;
  KeyinMethod = KeyinMethod == RadiusAndLength ? RadiusAndEndStation : AngleAndEndStation;
}

}  // namespace clxml
