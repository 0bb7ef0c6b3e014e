// The elements of a vertical alignment.
// Tangent points, grades and sags of points and curves from what was keyed in. Leans on roadcogo,
// coord and approx.
#include "road/vertical.h"

#include <algorithm>
#include <cmath>

#include "Library/coords/coord.h"
#include "numerics/approx.h"

namespace clxml {

namespace {

// The tangent of a grade; null for a null.
double Slope (double grade) { return maths_Tan (grade); }

// On the straight line through two places; null when one is null.
double ElevationBetween (const VerticalPosition& from, const VerticalPosition& to, double station) {
  if (from.IsNull () || to.IsNull ()) return MATHS_Null;
  return maths_NullUnlessFinite (
      roadcogo_Interpolate (from.Elevation, to.Elevation, from.Station, to.Station, station));
}

double Distance (const VerticalPosition& from, const VerticalPosition& to) {
  if (from.IsNull () || to.IsNull ()) return MATHS_Null;
  return maths_NullUnlessFinite (
      std::hypot (to.Station - from.Station, to.Elevation - from.Elevation));
}

// The place at a distance from another by an angle from straight up, positive forwards.
VerticalPosition Polar (const VerticalPosition& from, double angle, double distance) {
  return {maths_Add (from.Station, maths_Multiply (distance, maths_Sin (angle))),
          maths_Add (from.Elevation, maths_Multiply (distance, maths_Cos (angle)))};
}

// Whether a station lies on the curve itself.
bool LiesOn (const VerticalBase& curve, double station) {
  return !maths_IsNull (station) && !curve.StartPoint.IsNull () && !curve.EndPoint.IsNull () &&
         curve.StartPoint.Station <= station && station <= curve.EndPoint.Station;
}

// The other leg of a right triangle; a leg that rounding makes longer than the hypotenuse gives 0.
double Leg (double hypotenuse, double leg) {
  if (maths_IsNull (hypotenuse) || maths_IsNull (leg)) return MATHS_Null;
  return maths_SquareRoot (std::max (0.0, (hypotenuse - leg) * (hypotenuse + leg)));
}

}  // namespace

double road_Grade (const VerticalPosition& from, const VerticalPosition& to) {
  return maths_Atan2 (maths_Subtract (to.Elevation, from.Elevation),
                      maths_Subtract (to.Station, from.Station));
}

void VerticalBase::AssignBase (const VerticalBase& other) { *this = other; }

void VerticalPoint::Compute () {
  EndPoint = StartPoint = IntersectionPoint;
  if (IntersectionPoint.IsNull ()) return;
  const bool isByPoints = KeyinMethod == StartAndEndPoints;
  const VerticalPosition& before = isByPoints ? PreviousEndPoint : PreviousIntersection;
  const VerticalPosition& after = isByPoints ? NextStartPoint : NextIntersection;
  if (!before.IsNull ()) GradeIn = road_Grade (before, IntersectionPoint);
  if (!after.IsNull ()) GradeOut = road_Grade (IntersectionPoint, after);
}

void VerticalPoint::AddChainages (ChainageElementArray& list) const {
  list.Add (StartPoint.Station, ChainageVPI);
}

double VerticalPoint::ElevationAt (double station) const {
  if (!approx (station, LE, Point.Station)) return MATHS_Null;
  return ElevationBetween (PreviousEndPoint, Point, station);
}

void VerticalCurve::AddChainages (ChainageElementArray& list) const {
  list.Add (StartPoint.Station, ChainageVerticalStart);
  list.Add (EndPoint.Station, ChainageVerticalEnd);
  list.Add (IntersectionPoint.Station, ChainageVPI);
  if (maths_IsNull (SagSummitPoint.Station)) return;
  const double in = maths_Subtract (IntersectionPoint.Elevation, StartPoint.Elevation);
  const double out = maths_Subtract (EndPoint.Elevation, IntersectionPoint.Elevation);
  if (maths_IsNull (in) || maths_IsNull (out)) return;
  if (in > 0.0 && out < 0.0) list.Add (SagSummitPoint.Station, ChainageSummit);
  if (in < 0.0 && out > 0.0) list.Add (SagSummitPoint.Station, ChainageSag);
}

double VerticalCurve::ElevationAt (double station) const {
  if (maths_IsNull (station)) return MATHS_Null;
  return StartPoint.Station < station ? CurveElevation (station)
                                      : ElevationBetween (PreviousEndPoint, StartPoint, station);
}

bool VerticalCurve::HasEqualGrades () const noexcept {
  return !maths_IsNull (GradeIn) && GradeIn == GradeOut;
}

bool VerticalCurve::IsImpossible () const { return HasEqualGrades (); }

// Half of the chord does not exceed the radius; by VPI every radius will do.
bool VerticalArc::SpansChord () const {
  if (maths_IsNull (Radius)) return false;
  if (KeyinMethod != StartAndEndPoints) return true;
  const double chord = Distance (StartPoint, EndPoint);
  return !maths_IsNull (chord) && chord / 2 <= Radius;
}

bool VerticalArc::IsImpossible () const { return HasEqualGrades () || !SpansChord (); }

void VerticalArc::Compute () {
  GradeIn = GradeOut = Length = KFactor = MATHS_Null;
  CentrePoint = SagSummitPoint = VerticalPosition ();
  if (KeyinMethod == VPI) {
    StartPoint = EndPoint = VerticalPosition ();
    GradeIn = road_Grade (PreviousIntersection, IntersectionPoint);
    GradeOut = road_Grade (IntersectionPoint, NextIntersection);
  } else if (KeyinMethod == StartAndEndPoints) {
    IntersectionPoint = VerticalPosition ();
    GradeIn = road_Grade (PreviousEndPoint, StartPoint);
    if (maths_IsNull (GradeIn)) return;
    // The triangle over the chord has equal angles at both ends.
    const double in = coord_NormaliseTwoPi (CONSTANT_PiOverTwo - GradeIn);
    const double along = maths_Subtract (CONSTANT_PiOverTwo, road_Grade (StartPoint, EndPoint));
    const double angle = coord_NormaliseTwoPi (maths_Abs (maths_Subtract (along, in)));
    const double tangent =
        maths_Divide (maths_Divide (Distance (StartPoint, EndPoint), 2.0), maths_Cos (angle));
    IntersectionPoint = Polar (StartPoint, in, tangent);
    GradeOut = road_Grade (IntersectionPoint, EndPoint);
  }
  if (maths_IsNull (GradeIn) || maths_IsNull (GradeOut) || GradeIn == GradeOut || !SpansChord ())
    return;

  // The inner angle between the two grades.
  double theta = CONSTANT_Pi - (GradeIn - GradeOut);
  if (theta > CONSTANT_Pi) theta = CONSTANT_TwoPi - theta;
  if (KeyinMethod == VPI) {
    const double tangent = maths_Abs (maths_Divide (Radius, maths_Tan (theta / 2)));
    StartPoint = Polar (IntersectionPoint, CONSTANT_PiOverTwo - GradeIn, maths_Negate (tangent));
    EndPoint = Polar (IntersectionPoint, CONSTANT_PiOverTwo - GradeOut, tangent);
  }
  const double half = maths_Divide (Distance (StartPoint, EndPoint), 2.0);
  const double toCentre = maths_Add (Leg (Distance (IntersectionPoint, StartPoint), half),
                                     Leg (maths_Abs (Radius), half));
  const double bisector = GradeIn < GradeOut ? -theta / 2 : theta / 2;
  CentrePoint = Polar (IntersectionPoint, CONSTANT_PiOverTwo - GradeOut + bisector, toCentre);
  Length = maths_Subtract (EndPoint.Station, StartPoint.Station);
  KFactor = maths_Abs (maths_Divide (
      Length, maths_Multiply (maths_Subtract (Slope (GradeOut), Slope (GradeIn)), 100.0)));
  if (LiesOn (*this, CentrePoint.Station))
    SagSummitPoint = {CentrePoint.Station, CurveElevation (CentrePoint.Station)};
}

double VerticalArc::CurveElevation (double station) const {
  if (CentrePoint.IsNull () || IntersectionPoint.IsNull () || maths_IsNull (Radius))
    return MATHS_Null;
  double elevation = MATHS_Null;
  roadcogo_ArcElevation (CentrePoint, IntersectionPoint, Radius, station, elevation);
  return maths_NullUnlessFinite (elevation);
}

void VerticalParabola::Compute () {
  GradeIn = GradeOut = MATHS_Null;
  SagSummitPoint = VerticalPosition ();
  if (KeyinMethod == VPI) {
    StartPoint = EndPoint = VerticalPosition ();
    KFactor = MATHS_Null;
    const double half = maths_Divide (Length, 2.0);
    if (!maths_IsNull (half) && !IntersectionPoint.IsNull ()) {
      GradeIn = road_Grade (PreviousIntersection, IntersectionPoint);
      GradeOut = road_Grade (IntersectionPoint, NextIntersection);
    }
    if (!maths_IsNull (GradeIn))
      StartPoint = {
          maths_Subtract (IntersectionPoint.Station, half),
          maths_Subtract (IntersectionPoint.Elevation, maths_Multiply (Slope (GradeIn), half))};
    if (!maths_IsNull (GradeOut))
      EndPoint = {maths_Add (IntersectionPoint.Station, half),
                  maths_Add (IntersectionPoint.Elevation, maths_Multiply (Slope (GradeOut), half))};
    if (StartPoint.IsNull () || EndPoint.IsNull () || GradeIn == GradeOut) return;
    KFactor = maths_Divide (
        Length,
        maths_Abs (maths_Multiply (maths_Subtract (Slope (GradeOut), Slope (GradeIn)), 100.0)));
    FindSagSummit ();
  } else if (KeyinMethod == StartAndEndPoints) {
    Length = MATHS_Null;
    IntersectionPoint = VerticalPosition ();
    if (StartPoint.IsNull () || EndPoint.IsNull ()) return;
    Length = maths_Subtract (EndPoint.Station, StartPoint.Station);
    if (maths_IsNull (KFactor)) return;
    const double half = maths_Divide (Length, 2.0);
    IntersectionPoint.Station = maths_Add (StartPoint.Station, half);
    const double change = maths_Divide (maths_Divide (Length, KFactor), 100.0);
    // No straight lies between two curves that touch: the grade is the one of the other curve.
    const double before = PreviousEndPoint == StartPoint
                              ? PreviousGradeOut
                              : road_Grade (PreviousEndPoint, StartPoint);
    const double chord = road_Grade (StartPoint, EndPoint);
    if (maths_IsNull (change) || maths_IsNull (before) || maths_IsNull (chord)) return;
    const double slope = maths_Add (Slope (chord), chord < before ? change / 2 : -change / 2);
    GradeIn = maths_ArcTan (slope);
    IntersectionPoint.Elevation = maths_Add (StartPoint.Elevation, maths_Multiply (slope, half));
    GradeOut = road_Grade (IntersectionPoint, EndPoint);
    FindSagSummit ();
  }
}

void VerticalParabola::FindSagSummit () {
  const double change = maths_Subtract (Slope (GradeOut), Slope (GradeIn));
  const double station = maths_Subtract (
      StartPoint.Station, maths_Multiply (maths_Divide (Slope (GradeIn), change), Length));
  if (LiesOn (*this, station)) SagSummitPoint = {station, CurveElevation (station)};
}

double VerticalParabola::CurveElevation (double station) const {
  if (StartPoint.IsNull () || IntersectionPoint.IsNull () || EndPoint.IsNull () ||
      maths_IsNull (Length))
    return MATHS_Null;
  double elevation = MATHS_Null;
  roadcogo_ParabolaElevation (StartPoint, IntersectionPoint, EndPoint, Length / 2, Length / 2,
                              station, elevation);
  return maths_NullUnlessFinite (elevation);
}

void VerticalAsymmetricParabola::Compute () {
  GradeIn = GradeOut = KFactor = MATHS_Null;
  SagSummitPoint = VerticalPosition ();
  // Ends that were keyed stay, for the neighbours stand on them.
  if (KeyinMethod != StartAndEndPoints) StartPoint = EndPoint = VerticalPosition ();
  if (!PreviousIntersection.IsNull () && !IntersectionPoint.IsNull () && !maths_IsNull (LengthIn)) {
    StartPoint.Station = maths_Subtract (IntersectionPoint.Station, LengthIn);
    StartPoint.Elevation =
        ElevationBetween (PreviousIntersection, IntersectionPoint, StartPoint.Station);
    GradeIn = road_Grade (PreviousIntersection, IntersectionPoint);
  }
  if (!NextIntersection.IsNull () && !IntersectionPoint.IsNull () && !maths_IsNull (LengthOut)) {
    EndPoint.Station = maths_Add (IntersectionPoint.Station, LengthOut);
    EndPoint.Elevation = ElevationBetween (IntersectionPoint, NextIntersection, EndPoint.Station);
    GradeOut = road_Grade (IntersectionPoint, NextIntersection);
  }
  if (StartPoint.IsNull () || EndPoint.IsNull () || GradeIn == GradeOut) return;
  KFactor = maths_Divide (
      maths_Add (LengthIn, LengthOut),
      maths_Abs (maths_Multiply (maths_Subtract (Slope (GradeOut), Slope (GradeIn)), 100.0)));
  FindSagSummit ();
}

// The curve is level in its first half or, where that gives a place behind the intersection, in its
// second half. Without one of the lengths there is no such ratio and no point.
void VerticalAsymmetricParabola::FindSagSummit () {
  if (LengthIn == 0.0 || LengthOut == 0.0) return;
  const double change = maths_Subtract (Slope (GradeOut), Slope (GradeIn));
  const double length = maths_Add (LengthIn, LengthOut);
  const auto part = [&] (double grade, double near, double far) {
    return maths_Multiply (maths_Multiply (maths_Divide (Slope (grade), change), length),
                           maths_Divide (near, far));
  };
  double station = maths_Subtract (StartPoint.Station, part (GradeIn, LengthIn, LengthOut));
  if (!maths_IsNull (station) && station > IntersectionPoint.Station)
    station = maths_Subtract (EndPoint.Station, part (GradeOut, LengthOut, LengthIn));
  if (LiesOn (*this, station)) SagSummitPoint = {station, CurveElevation (station)};
}

double VerticalAsymmetricParabola::CurveElevation (double station) const {
  if (StartPoint.IsNull () || IntersectionPoint.IsNull () || EndPoint.IsNull () ||
      maths_IsNull (LengthIn) || maths_IsNull (LengthOut))
    return MATHS_Null;
  double elevation = MATHS_Null;
  roadcogo_ParabolaElevation (StartPoint, IntersectionPoint, EndPoint, LengthIn, LengthOut, station,
                              elevation);
  return maths_NullUnlessFinite (elevation);
}

}  // namespace clxml
