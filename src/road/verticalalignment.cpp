// The long section of a road.
// Settles the elements in order, and finds the one that gives the elevation at a station.
#include <algorithm>

#include "numerics/approx.h"
#include "road/vertical.h"

namespace clxml {

double VerticalElementArray::StartChainage () const noexcept {
  return IsEmpty () ? MATHS_Null : At (0)->StartPoint.Station;
}

double VerticalElementArray::EndChainage () const noexcept {
  return IsEmpty () ? MATHS_Null : Last ()->EndPoint.Station;
}

VerticalElementArray::KeyinStyle VerticalElementArray::GetKeyinStyle () const noexcept {
  if (Count () < 2) return Mixed;
  const int32_t method = At (1)->KeyinMethod;
  for (int i = 2; i < Count (); i++)
    if (At (i)->KeyinMethod != method) return Mixed;
  return method == VerticalBase::VPI                 ? ByVPI
         : method == VerticalBase::StartAndEndPoints ? ByStartAndEndPoints
                                                     : Mixed;
}

void VerticalElementArray::Settle () {
  const KeyinStyle style = GetKeyinStyle ();
  if (style == Mixed) return;
  const bool isByVPI = style == ByVPI;
  for (int i = 0; i < Count (); i++) {
    VerticalBase& element = *At (i);
    const bool isPoint = VerticalPoint::IsType (element.ElementType ());
    element.NextIntersection = element.NextStartPoint = VerticalPosition ();
    element.PreviousIntersection = element.PreviousEndPoint = VerticalPosition ();
    element.PreviousGradeOut = MATHS_Null;
    if (isByVPI)
      element.StartPoint = element.EndPoint = VerticalPosition ();
    else if (!isPoint)
      element.IntersectionPoint = VerticalPosition ();
    if (isPoint)
      element.KeyinMethod = isByVPI ? VerticalBase::VPI : VerticalBase::StartAndEndPoints;
  }
  for (int i = 0; i < Count (); i++) {
    VerticalBase& element = *At (i);
    VerticalBase* before = i > 0 ? At (i - 1) : nullptr;
    const VerticalBase* after = i + 1 < Count () ? At (i + 1) : nullptr;
    if (isByVPI) {
      if (before) element.PreviousIntersection = before->IntersectionPoint;
      if (after) element.NextIntersection = after->IntersectionPoint;
    } else {
      if (before) element.PreviousEndPoint = before->EndPoint;
      if (after) element.NextStartPoint = after->StartPoint;
    }
    if (before) element.PreviousGradeOut = before->GradeOut;
    element.Compute ();
    if (!before) continue;
    if (isByVPI) {
      element.PreviousEndPoint = before->EndPoint;
      before->NextStartPoint = element.StartPoint;
    } else {
      element.PreviousIntersection = before->IntersectionPoint;
      before->NextIntersection = element.IntersectionPoint;
    }
  }
}

void VerticalElementArray::LinkNeighbours () {
  for (int i = 0; i < Count (); i++) {
    VerticalBase& element = *At (i);
    if (i == 0) {
      element.PreviousEndPoint = element.IntersectionPoint;
      continue;
    }
    VerticalBase& before = *At (i - 1);
    before.NextIntersection = element.IntersectionPoint;
    before.NextStartPoint = element.StartPoint;
    element.PreviousIntersection = before.IntersectionPoint;
    element.PreviousEndPoint = before.EndPoint;
    element.PreviousGradeOut = before.GradeOut;
  }
}

bool VerticalElementArray::HasElevations () const noexcept {
  for (int i = 0; i < Count (); i++)
    if (!maths_IsNull (At (i)->StartPoint.Elevation)) return true;
  return false;
}

double VerticalElementArray::ElevationAt (double station) const {
  if (!approx (station, GE, StartChainage ()) || !approx (station, LE, EndChainage ()))
    return MATHS_Null;
  for (int i = 0; i < Count (); i++)
    if (station <= At (i)->EndPoint.Station + 1.0 && approx (station, LE, At (i)->EndPoint.Station))
      return At (i)->ElevationAt (station);
  return MATHS_Null;
}

void VerticalElementArray::AddChainages (ChainageElementArray& list) const {
  if (!IsEmpty () && !list.IsEmpty ()) list.At (0)->Flags |= ChainageVPI;
  for (int i = 0; i < Count (); i++) At (i)->AddChainages (list);
}

bool VerticalElementArray::CheckConsistency () const {
  for (int i = 0; i < Count (); i++) {
    const VerticalBase& element = *At (i);
    const VerticalPosition& start = element.StartPoint;
    const VerticalPosition& end = element.EndPoint;
    if (!end.IsNull () && !element.NextStartPoint.IsNull () &&
        element.NextStartPoint.Station + element.Tolerance < end.Station)
      return false;
    if (!start.IsNull () && !element.PreviousEndPoint.IsNull () &&
        element.PreviousEndPoint.Station - element.Tolerance > start.Station)
      return false;
    if (element.IsImpossible ()) return false;
  }
  return GetKeyinStyle () != ByVPI || VerticalPoint::IsType (Last ()->ElementType ());
}

}  // namespace clxml
