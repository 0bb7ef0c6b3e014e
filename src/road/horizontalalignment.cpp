// The plan line of a road.
// Passes over the elements in their order. Leans on horizontal, cogo and approx.
#include "road/horizontalalignment.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Library/cogo/cogo.h"
#include "numerics/approx.h"
#include "road/horizontalsteps.h"

namespace clxml {

namespace {

// An end this close to the next start, and a direction this close, fit.
constexpr double fittingDistance = 0.001;
constexpr double fittingAngle = 5e-6;

bool IsStart (const HorizontalBase& element) {
  return HorizontalStartPoint::IsType (element.ElementType ());
}
bool IsStraight (const HorizontalBase& element) {
  return HorizontalStraight::IsType (element.ElementType ());
}
bool IsArc (const HorizontalBase& element) {
  return HorizontalArc::IsType (element.ElementType ());
}

// Whether a coordinate lies beside the element, between the perpendiculars at its two ends; the
// distance to the nearer end, null when it is not known.
bool Abreast (const HorizontalBase& element, const coord_CorrectedGrid& coordinate,
              double& distance) {
  distance = MATHS_Null;
  if (IsStart (element)) return false;
  double fromEnd, toEnd, fromStart, toStart;
  road_Inverse (element.EndCoordinate, coordinate, fromEnd, toEnd);
  road_Inverse (element.StartCoordinate, coordinate, fromStart, toStart);
  distance = std::min (toEnd, toStart);
  if (distance == 0.0) return true;
  const double atStart = AngleSmallest (element.StartAzimuth, fromStart);
  const double atEnd = AngleSmallest (element.EndAzimuth, fromEnd);
  return !maths_IsNull (atStart) && !maths_IsNull (atEnd) && atStart <= CONSTANT_PiOverTwo &&
         atEnd >= CONSTANT_PiOverTwo;
}

// Why the start of an element behind another is of interest.
uint32_t KeyPointFlag (const HorizontalBase& before, const HorizontalBase& element) {
  if (IsStart (before)) return ChainageAlignmentStart;
  if (element.IsSpiral ())
    return before.IsSpiral () ? ChainageSpiralToSpiral
           : IsArc (before)   ? ChainageArcToSpiral
                              : ChainageStraightToSpiral;
  if (IsArc (element)) return before.IsSpiral () ? ChainageSpiralToArc : ChainageToArc;
  if (IsStraight (element))
    return before.IsSpiral () ? ChainageSpiralToStraight
           : IsArc (before)   ? ChainageArcToStraight
                              : ChainageStraightToStraight;
  return 0;
}

template <class T>
std::unique_ptr<HorizontalBase> Suggest () {
  return std::make_unique<T> ();
}

}  // namespace

HorizontalElementArray::KeyinStyle HorizontalElementArray::GetKeyinStyle () const noexcept {
  if (Count () < 2) return Mixed;
  const auto all = [this] (bool (HorizontalBase::*isKeyed) () const noexcept) {
    for (int i = 1; i < Count (); i++)
      if (!(At (i)->*isKeyed) ()) return false;
    return true;
  };
  return all (&HorizontalBase::KeyedByLength)          ? ByLength
         : all (&HorizontalBase::KeyedByEndStation)    ? ByEndStation
         : all (&HorizontalBase::KeyedByEndCoordinate) ? ByEndCoordinate
                                                       : Mixed;
}

void HorizontalElementArray::ChangeKeyinStyle (KeyinStyle NewKeyinStyle) {
  Assert (NewKeyinStyle != ByEndCoordinate,
          "NewKeyinStyle != HorizontalElementArray::ByEndCoordinate");
  for (int i = 1; i < Count (); i++) {
    HorizontalBase& element = *At (i);
    if (NewKeyinStyle == ByLength && !element.KeyedByLength ()) element.ChangeToLengthKeyin ();
    if (NewKeyinStyle == ByEndStation && !element.KeyedByEndStation ())
      element.ChangeToEndStationKeyin ();
  }
}

bool HorizontalElementArray::RecomputeAll () {
  const KeyinStyle style = GetKeyinStyle ();
  if (style == Mixed) return true;
  if (style == ByEndStation)
    for (int i = 1; i < Count (); i++)
      if (!(At (i - 1)->EndChainage <= At (i)->EndChainage)) return false;
  for (int i = 1; i < Count (); i++) {
    const HorizontalBase& previous = *At (i - 1);
    HorizontalBase& element = *At (i);
    element.StartChainage = previous.EndChainage;
    element.StartCoordinate = previous.EndCoordinate;
    if (style == ByEndCoordinate) {
      element.ComputeFromEnd ();
      element.EndChainage = maths_Add (element.StartChainage, element.Length);
      continue;
    }
    if (i > 1 && element.TangentialToPrevious) element.StartAzimuth = previous.EndAzimuth;
    if (style == ByEndStation)
      element.Length = maths_Subtract (element.EndChainage, element.StartChainage);
    element.SettleKeyed ();
    if (style == ByLength) element.EndChainage = maths_Add (element.StartChainage, element.Length);
    element.ComputeEnd ();
  }
  return true;
}

double HorizontalElementArray::StartChainage () const noexcept {
  return IsEmpty () ? MATHS_Null : At (0)->StartChainage;
}

double HorizontalElementArray::EndChainage () const noexcept {
  return IsEmpty () ? MATHS_Null : Last ()->EndChainage;
}

bool HorizontalElementArray::PositionAt (double station, RoadPosition& position) const {
  position = RoadPosition ();
  if (!approx (station, GE, StartChainage ()) || !approx (station, LE, EndChainage ()))
    return false;
  for (int i = 0; i < Count (); i++) {
    const HorizontalBase& element = *At (i);
    // Most elements lie well before the station.
    if (station - element.StartChainage > element.Length + 1.0) continue;
    const double along = maths_Subtract (station, element.StartChainage);
    if (!maths_IsNull (along) && along >= 0.0 && approx (along, LE, element.Length)) {
      position = element.PositionAt (station);
      return true;
    }
  }
  return false;
}

coord_CorrectedGrid HorizontalElementArray::PointAtStationOffset (double station,
                                                                  double offset) const {
  RoadPosition position;
  if (!PositionAt (station, position)) return coord_CorrectedGrid ();
  return road_Forward (position.Coordinate,
                       road_Turned (position.Azimuth, CONSTANT_PiOverTwo, true), offset);
}

coord_CorrectedGrid HorizontalElementArray::PointAtStation (double station) const {
  RoadPosition position;
  PositionAt (station, position);
  return position.Coordinate;
}

namespace {

// The distance from a coordinate to the nearer end of an element, whatever the axes; not finite
// when it is not known.
double EndDistance (const HorizontalBase& element, const coord_CorrectedGrid& coordinate) {
  const auto squared = [&coordinate] (const coord_CorrectedGrid& end) {
    const double north = end.North - coordinate.North, east = end.East - coordinate.East;
    return north * north + east * east;
  };
  return std::sqrt (std::min (squared (element.StartCoordinate), squared (element.EndCoordinate)));
}

// The best of the elements that could be nearer than `within`: what lies farther from both ends of
// an element than that and twice its length lies farther from the element itself. Counts the
// elements beside which the coordinate lies without an answer.
coord_StationOffset Nearest (const HorizontalElementArray& line,
                             const coord_CorrectedGrid& coordinate, double within, int& failed) {
  failed = 0;
  // A null is larger than every distance.
  coord_StationOffset best;
  for (int i = 0; i < line.Count (); i++) {
    const HorizontalBase& element = *line.At (i);
    if (EndDistance (element, coordinate) > within + 2.0 * std::abs (element.Length) + 1.0)
      continue;
    double distance;
    if (Abreast (element, coordinate, distance)) {
      const coord_StationOffset here = element.StationOffsetOf (coordinate);
      failed += maths_IsNull (here.Offset);
      if (std::abs (best.Offset) > std::abs (here.Offset)) best = here;
    } else if (std::abs (best.Offset) > distance) {
      best.Station = MATHS_Null;
      best.Offset = distance;
    }
  }
  return best;
}

}  // namespace

coord_StationOffset HorizontalElementArray::StationOffsetOf (
    const coord_CorrectedGrid& coordinate) const {
  // The nearest end bounds the answer, and only few elements come near enough; where that does not
  // hold, as with an element that has no answer, all are asked.
  double within = std::numeric_limits<double>::infinity ();
  for (int i = 0; i < Count (); i++) within = std::min (within, EndDistance (*At (i), coordinate));
  int failed;
  coord_StationOffset best = Nearest (*this, coordinate, within, failed);
  if (failed > 0 || !(std::abs (best.Offset) <= within + 1.0))
    best = Nearest (*this, coordinate, std::numeric_limits<double>::infinity (), failed);
  if (maths_IsNull (best.Station)) best.Offset = MATHS_Null;
  best.Elevation = MATHS_Null;
  return best;
}

bool HorizontalElementArray::GetExtent (coord_CorrectedGrid& min, coord_CorrectedGrid& max) const {
  min = max = coord_CorrectedGrid ();
  const auto widen = [] (double& least, double& most, double value) {
    if (maths_IsNull (value)) return;
    least = maths_IsNull (least) ? value : std::min (least, value);
    most = maths_IsNull (most) ? value : std::max (most, value);
  };
  for (int i = 0; i < Count (); i++)
    for (const coord_CorrectedGrid* end : {&At (i)->StartCoordinate, &At (i)->EndCoordinate}) {
      widen (min.North, max.North, end->North);
      widen (min.East, max.East, end->East);
    }
  return !maths_IsNull (min.North) && !maths_IsNull (min.East);
}

void HorizontalElementArray::AddChainages (ChainageElementArray& list) const {
  for (int i = 1; i < Count (); i++)
    if (const uint32_t flag = KeyPointFlag (*At (i - 1), *At (i)))
      list.Add (At (i)->StartChainage, flag);
  if (!IsEmpty ()) list.Add (EndChainage (), ChainageAlignmentEnd);
}

std::unique_ptr<HorizontalBase> HorizontalElementArray::SuggestNextElement (int ndx) const {
  if (IsEmpty ()) return Suggest<HorizontalStartPoint> ();
  if (!Assert (ndx >= 0, "ndx >= 0") || !Assert (ndx < Count (), "ndx < Count")) return nullptr;
  const HorizontalBase& last = *At (ndx);
  const HorizontalBase* second = ndx >= 1 ? At (ndx - 1) : nullptr;
  const HorizontalBase* third = ndx >= 2 ? At (ndx - 2) : nullptr;
  // A road of straights alone, or of straights and arcs by turns, goes on like that.
  if (second && IsStraight (last) && IsStraight (*second)) return Suggest<HorizontalStraight> ();
  if (third && IsStraight (last) && IsArc (*second) && IsStraight (*third))
    return Suggest<HorizontalArc> ();
  if (third && IsArc (last) && IsStraight (*second) && IsArc (*third))
    return Suggest<HorizontalStraight> ();

  bool hasSpiral = false;
  for (int i = 0; i < Count (); i++) hasSpiral |= At (i)->IsSpiral ();
  if (!hasSpiral && !(Count () < 3 && GetKeyinStyle () != ByEndCoordinate)) {
    if (IsArc (last)) return Suggest<HorizontalStraight> ();
    if (IsStraight (last)) return Suggest<HorizontalArc> ();
    if (IsStart (last)) return Suggest<HorizontalStraight> ();
    return nullptr;
  }
  switch (last.ElementType ()) {
    case ROAD_HorizontalArc:
      if (second && second->IsSpiral ()) return Suggest<HorizontalExitSpiral> ();
      return Suggest<HorizontalStraight> ();
    case ROAD_HorizontalStraight:
      return Suggest<HorizontalEntrySpiral> ();
    case ROAD_HorizontalStartPoint:
      return Suggest<HorizontalStraight> ();
    case ROAD_HorizontalExitSpiral:
      return Suggest<HorizontalStraight> ();
    case ROAD_HorizontalEntrySpiral:
      return Suggest<HorizontalArc> ();
    default:
      return nullptr;
  }
}

bool HorizontalElementArray::CheckContinuity () const {
  for (int i = 1; i < Count (); i++)
    if (!At (i)->StartCoordinate.IsCloseTo (At (i - 1)->EndCoordinate, fittingDistance))
      return false;
  return true;
}

bool HorizontalElementArray::CheckEndsComputable () const {
  for (int i = 1; i < Count (); i++) {
    const HorizontalBase& element = *At (i);
    const std::unique_ptr<RoadElement> copy = element.Clone ();
    HorizontalBase& computed = static_cast<HorizontalBase&> (*copy);
    computed.ComputeEnd ();
    const double turn = AngleSmallest (computed.EndAzimuth, element.EndAzimuth);
    if (!computed.EndCoordinate.IsCloseTo (element.EndCoordinate, fittingDistance) ||
        maths_IsNull (turn) || turn > fittingAngle)
      return false;
  }
  return true;
}

}  // namespace clxml
