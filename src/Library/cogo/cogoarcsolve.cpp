// The solver of a stored arc.
// From the keyed fields of a record, by its method, to all of its geometry. Leans on cogoarc, cogo,
// position and the record.
#include "Library/cogo/cogoarc.h"

#include <cmath>
#include <utility>

#include "Library/coords/coord.h"
#include "Library/position/position.h"
#include "Library/position/positionjob.h"
#include "Library/records/dbPoints.h"
#include "str.h"

namespace clxml {

namespace {

// A point that cannot be found or a keyed number that is missing.
constexpr cogo_Result notSolvable = COGO_NoBracket;
// Ends whose distances from the centre differ by this or more, metres, are on no arc.
constexpr double radiiDiffer = 0.001;

class Solver {
 public:
  Solver (const cogoarc_PointLookUp& lookUp, const Transform& transform, const db_Arc& arc,
          coordsys_CogoSettings mask)
      : Arc (arc), _lookUp (lookUp), _transform (transform), _mask (mask) {}

  cogo_Result Solve () {
    if (!Find (Arc.StartPoint, First)) return notSolvable;
    switch (Arc.Method) {
      case DBENTITY_TwoPointsAndRadius:
        return TwoPointsAndRadius ();
      case DBENTITY_CurveLengthAndRadius:
      case DBENTITY_DeltaAngleAndRadius:
        return TangentAndRadius ();
      case DBENTITY_IPAndTangents:
        return IPAndTangents ();
      case DBENTITY_TwoPointsAndCentrePoint:
        return TwoPointsAndCentrePoint ();
      case DBENTITY_ThreePoints:
        return ThreePoints ();
    }
    Assert (false, "Invalid method");
    return notSolvable;
  }

  db_Arc Arc;
  position First, Second, Centre, Intersection;
  double CentreAzimuth = MATHS_Null;

 private:
  bool Find (const Str& name, position& out) const { return _lookUp (name, out); }
  bool IsLeft () const { return Arc.Direction == DBENTITY_LeftHand; }
  // The azimuth turned to the right by an angle, or to the left for an arc that turns so.
  double Turned (double azimuth, double angle) const {
    return coord_NormaliseTwoPi (maths_Add (azimuth, IsLeft () ? maths_Negate (angle) : angle));
  }
  static double Reversed (double azimuth) {
    return coord_NormaliseTwoPi (maths_Add (azimuth, CONSTANT_Pi));
  }
  coordsys_CogoSettings System (const position& a, const position& b) const {
    return _mask != 0 ? _mask : cogo_SystemFor (a, b, _transform);
  }
  double Azimuth (position& from, position& to) const {
    double azimuth;
    cogo_Azimuth (from, to, _transform, azimuth, System (from, to));
    return azimuth;
  }
  double Distance (position& from, position& to) const {
    double distance;
    cogo_Distance (from, to, _transform, distance, System (from, to));
    return distance;
  }

  cogo_Result TwoPointsAndRadius () {
    if (maths_IsNull (Arc.Radius) || !Find (Arc.EndPoint, Second)) return notSolvable;
    position right, left;
    const cogo_Result result = cogo_DistanceDistanceIntersect (
        First, Arc.Radius, Second, Arc.Radius, _transform, right, left, System (First, Second));
    if (result != COGO_Ok) return result;
    // Ends a diameter apart have one centre alone, that of the right-hand arc.
    Centre = IsLeft () ? left : right;
    const double toFirst = Azimuth (Centre, First), toSecond = Azimuth (Centre, Second);
    Arc.ScribedAngle = AngleSmallest (toFirst, toSecond);
    return Close (toFirst, toSecond);
  }

  cogo_Result TangentAndRadius () {
    if (maths_IsNull (Arc.BackwardTangent) || maths_IsNull (Arc.Radius)) return notSolvable;
    if (Arc.Method == DBENTITY_CurveLengthAndRadius)
      Arc.ScribedAngle = cogo_ArcAngle (Arc.Radius, Arc.Length);
    else
      Arc.Length = cogo_ArcLength (Arc.Radius, Arc.ScribedAngle);
    if (maths_IsNull (Arc.ScribedAngle)) return notSolvable;
    Arc.TangentAtStart = Turned (Arc.BackwardTangent, Arc.ScribedAngle);
    CentreAzimuth = Turned (Arc.BackwardTangent, -CONSTANT_PiOverTwo);
    cogo_Forward (First, _transform, CentreAzimuth, -Arc.Radius, 0.0, Centre,
                  System (First, First));
    cogo_ArcPoint (IsLeft (), First, Centre, _transform, Arc.Radius, CentreAzimuth, Arc.Grade,
                   Arc.Length, Second, System (First, Centre));
    SetChord ();
    SetTangent ();
    return COGO_Ok;
  }

  cogo_Result IPAndTangents () {
    if (maths_IsNull (Arc.BackwardTangent) || maths_IsNull (Arc.TangentAtStart) ||
        maths_IsNull (Arc.Radius) || Arc.Radius <= 0.0)
      return notSolvable;
    Intersection = First;
    const cogo_Result result = cogo_TangentArc (
        Intersection, _transform, Reversed (Arc.BackwardTangent), Arc.TangentAtStart, Arc.Radius,
        Arc.ScribedAngle, Centre, First, Second, Arc.Direction, System (First, First));
    if (result != COGO_Ok) return result;
    Arc.Length = cogo_ArcLength (Arc.Radius, Arc.ScribedAngle);
    CentreAzimuth = Azimuth (Centre, First);
    SetChord ();
    Arc.Tangent = Distance (First, Intersection);
    return COGO_Ok;
  }

  cogo_Result TwoPointsAndCentrePoint () {
    if (!Find (Arc.EndPoint, Second) || !Find (Arc.CenterPoint, Centre)) return notSolvable;
    Arc.Radius = Distance (Centre, First);
    const double difference = maths_Subtract (Arc.Radius, Distance (Centre, Second));
    if (maths_IsNull (difference)) return COGO_Degenerate;
    if (std::abs (difference) >= radiiDiffer) return COGO_RadiiDiffer;
    return CloseAboutCentre ();
  }

  cogo_Result ThreePoints () {
    position third;
    if (!Find (Arc.EndPoint, Second) || !Find (Arc.CenterPoint, third)) return notSolvable;
    position* ends[] = {&First, &Second};
    double azimuths[2];
    position middles[2];
    for (int i = 0; i < 2; i++) {
      const coordsys_CogoSettings system = System (*ends[i], third);
      coord_Polar polar;
      cogo_InversePolar (*ends[i], third, _transform, polar, system);
      if (maths_IsNull (polar.Azimuth) || maths_IsNull (polar.HDist) ||
          cogo_SameDistance (polar.HDist, 0.0))
        return COGO_Degenerate;
      azimuths[i] = polar.Azimuth;
      polar.HDist /= 2.0;
      polar.VDist = maths_Divide (polar.VDist, 2.0);
      cogo_ForwardPolar (*ends[i], _transform, polar, middles[i], system);
    }
    // The arc bulges to the side on which the third point lies, and its centre is on the other.
    const double turn = AngleTurn (azimuths[0], Azimuth (First, Second));
    if (maths_IsNull (turn)) return COGO_Degenerate;
    Arc.Direction = turn < CONSTANT_Pi ? DBENTITY_RightHand : DBENTITY_LeftHand;
    const cogo_Result result = cogo_AzimuthAzimuthIntersect (
        middles[0], Turned (azimuths[0], CONSTANT_PiOverTwo), middles[1], _transform,
        Turned (azimuths[1], -CONSTANT_PiOverTwo), Centre, System (middles[0], middles[1]));
    if (result != COGO_Ok) return result;
    Arc.Radius = Distance (Centre, First);
    if (maths_IsNull (Arc.Radius)) {
      // Lines that met on the grid leave it without a height, and distances may need one.
      cogo_CopyHeight (First, Centre, _transform, System (First, Centre));
      Arc.Radius = Distance (Centre, First);
    }
    return CloseAboutCentre ();
  }

  cogo_Result CloseAboutCentre () {
    const double toFirst = Azimuth (Centre, First), toSecond = Azimuth (Centre, Second);
    Arc.ScribedAngle = AngleTurn (toFirst, toSecond);
    if (IsLeft ()) Arc.ScribedAngle = maths_Subtract (CONSTANT_TwoPi, Arc.ScribedAngle);
    return Close (toFirst, toSecond);
  }

  // What all arcs with known ends and a known centre share.
  cogo_Result Close (double toFirst, double toSecond) {
    Arc.Length = cogo_ArcLength (Arc.Radius, Arc.ScribedAngle);
    CentreAzimuth = toFirst;
    Arc.BackwardTangent = Turned (toFirst, CONSTANT_PiOverTwo);
    Arc.TangentAtStart = Turned (toSecond, CONSTANT_PiOverTwo);
    double azimuth, distance, rise, slopeDistance;
    cogo_InverseHeights (First, Second, _transform, azimuth, distance, rise, slopeDistance,
                         System (First, Second));
    Arc.Grade = maths_Atan2 (rise, Arc.Length);
    SetChord ();
    if (maths_IsNull (Arc.BackwardTangent) || maths_IsNull (Arc.TangentAtStart))
      return COGO_Degenerate;
    SetTangent ();
    return COGO_Ok;
  }

  void SetChord () {
    if (!maths_IsNull (Arc.ScribedAngle) && Arc.ScribedAngle <= CONSTANT_Pi)
      Arc.Chord = Distance (First, Second);
  }

  // A half circle's end tangents do not meet; the tangent distance is then left as it was.
  void SetTangent () {
    const coordsys_CogoSettings system = System (First, Second);
    if (cogo_AzimuthAzimuthIntersect (First, Arc.BackwardTangent, Second, _transform,
                                      Reversed (Arc.TangentAtStart), Intersection,
                                      system) != COGO_Ok)
      return;
    cogo_IntersectionHeight (First, Second, Intersection, _transform, system);
    Arc.Tangent = Distance (First, Intersection);
  }

  const cogoarc_PointLookUp& _lookUp;
  const Transform& _transform;
  const coordsys_CogoSettings _mask;
};

}  // namespace

cogo_Result cogoarc_Solve (const cogoarc_PointLookUp& lookUp, const Transform& transform,
                           db_Arc& arc, position& first, position& second, position& centre,
                           position& intersection, double& centreAzimuth,
                           coordsys_CogoSettings mask) {
  first = second = centre = intersection = position ();
  centreAzimuth = MATHS_Null;
  if (!Assert (lookUp != nullptr, "jobfile")) return notSolvable;
  Solver solver (lookUp, transform, arc, mask);
  const cogo_Result result = solver.Solve ();
  if (result != COGO_Ok) return result;
  arc = solver.Arc;
  first = std::move (solver.First);
  second = std::move (solver.Second);
  centre = std::move (solver.Centre);
  intersection = std::move (solver.Intersection);
  centreAzimuth = solver.CentreAzimuth;
  return result;
}

cogo_Result cogoarc_Solve (position_Job* job, db_Arc& arc, position& first, position& second,
                           position& centre, position& intersection, double& centreAzimuth,
                           coordsys_CogoSettings mask) {
  static const Transform none;
  const auto lookUp = [job] (const Str& name, position& out) {
    return job->FindMeasured (name, out);
  };
  return job ? cogoarc_Solve (lookUp, job->CurrentTransform (), arc, first, second, centre,
                              intersection, centreAzimuth, mask)
             : cogoarc_Solve (cogoarc_PointLookUp (), none, arc, first, second, centre,
                              intersection, centreAzimuth, mask);
}

}  // namespace clxml
