// Geometry of road elements on plain coordinates.
// Each element's point is one polar step from its origin; vertical curves are closed forms. Leans
// on cogo, cogospiral, position and approx.
#include "Library/cogo/roadcogo.h"

#include <cmath>

#include "Library/cogo/cogospiral.h"
#include "Library/coords/coord.h"
#include "Library/position/position.h"
#include "numerics/approx.h"
#include "str.h"

namespace clxml {

namespace {

constexpr double spiralResolution = 0.0001;

bool IsZero (double value) { return approx (value, EQ, 0.0); }

// The grade between two points, 0.0 for points above each other.
double Grade (const VerticalPosition& from, const VerticalPosition& to) {
  const double length = maths_Subtract (to.Station, from.Station);
  return IsZero (length) ? 0.0
                         : maths_Divide (maths_Subtract (to.Elevation, from.Elevation), length);
}

// The elevation on a grade through a point, with the parabola's rate over the length of its half.
double OnHalf (const VerticalPosition& from, double grade, double rate, double length,
               double station) {
  const double d = maths_Subtract (station, from.Station);
  const double straight = maths_Add (maths_Multiply (grade, d), from.Elevation);
  if (IsZero (length)) return straight;
  return maths_Add (straight, maths_Divide (maths_Multiply (rate, maths_Square (d)),
                                            maths_Multiply (2.0, length)));
}

}  // namespace

void roadcogo_Straight (const Transform& transform, coordsys_CogoSettings mask,
                        const coord_CorrectedGrid& origin, double azimuth, double distance,
                        coord_CorrectedGrid& out) {
  position start, end;
  start.LoadFromGrid (origin, &transform);
  cogo_ForwardPolar (start, transform, coord_Polar (azimuth, distance, 0.0), end, mask);
  out = end.GetGrid (transform);
}

void roadcogo_Inverse (const Transform& transform, coordsys_CogoSettings mask,
                       const coord_CorrectedGrid& from, const coord_CorrectedGrid& to,
                       double& azimuth, double& distance) {
  position start, end;
  start.LoadFromGrid (from, &transform);
  end.LoadFromGrid (to, &transform);
  cogo_Inverse (start, end, transform, azimuth, distance, mask);
}

void roadcogo_ArcPoint (const coord_CorrectedGrid& origin, const Transform& transform,
                        coordsys_CogoSettings mask, double azimuth, double totalAngle,
                        double radius, double length, bool isClockwise, double distance,
                        coord_CorrectedGrid& out, double& outAzimuth) {
  Assert (!approx (distance, GT, length), "DistanceAlong <= Length");
  const double angle =
      length == 0.0 ? 0.0 : maths_Multiply (maths_Divide (distance, length), totalAngle);
  const double turn = isClockwise ? angle : maths_Negate (angle);
  const double halfTurn = maths_Divide (turn, 2.0);
  outAzimuth = coord_NormaliseTwoPi (maths_Add (azimuth, turn));
  const double chord =
      maths_Multiply (2.0, maths_Multiply (radius, maths_Sin (maths_Divide (angle, 2.0))));
  roadcogo_Straight (transform, mask, origin, coord_NormaliseTwoPi (maths_Add (azimuth, halfTurn)),
                     chord, out);
}

void roadcogo_SpiralOffsets (double small, double large, double length, double distance,
                             double& delta, double& y, double& x) {
  if (length == 0.0)
    delta = y = x = 0.0;
  else
    cogo_SpiralOffsets (small, large, length, distance, spiralResolution, delta, x, y);
}

void roadcogo_SpiralPoint (const coord_CorrectedGrid& origin, const Transform& transform,
                           coordsys_CogoSettings mask, double azimuth, double small, double large,
                           double length, bool isClockwise, bool isEntry, double distance,
                           coord_CorrectedGrid& out, double& outAzimuth) {
  if (!isEntry) distance = maths_Subtract (length, distance);
  double delta, y, x;
  roadcogo_SpiralOffsets (small, large, length, distance, delta, y, x);
  double angle = maths_Atan2 (y, x);
  if (maths_IsNull (angle)) angle = 0.0;
  const double chord = maths_SquareRoot (maths_Add (maths_Square (x), maths_Square (y)));
  // Seen from its far end an exit spiral turns the other way, and its road runs towards the origin.
  const bool turnsRight = isEntry == isClockwise;
  outAzimuth = maths_Add (azimuth, turnsRight ? delta : maths_Negate (delta));
  if (!isEntry) maths_AddTo (outAzimuth, CONSTANT_Pi);
  coord_NormaliseTwoPiInPlace (outAzimuth);
  roadcogo_Straight (transform, mask, origin,
                     coord_NormaliseTwoPi (maths_Add (azimuth, turnsRight ? angle : -angle)), chord,
                     out);
}

void roadcogo_ArcElevation (const VerticalPosition& centre, const VerticalPosition& intersection,
                            double radius, double station, double& elevation) {
  elevation = MATHS_Null;
  if (centre.IsNull () || maths_IsNull (intersection.Elevation)) return;
  const double d = maths_Subtract (station, centre.Station);
  const double v = maths_SquareRoot (maths_Subtract (maths_Square (radius), maths_Square (d)));
  elevation = centre.Elevation > intersection.Elevation ? maths_Subtract (centre.Elevation, v)
                                                        : maths_Add (centre.Elevation, v);
}

// An (asymmetric) parabola is one parabola on either side of the intersection, each tangent to its
// grade, with rates that make both meet in slope: T. F. Hickerson, Route Location and Design,
// 5th edition 1964, "unsymmetrical vertical curves".
void roadcogo_ParabolaElevation (const VerticalPosition& start,
                                 const VerticalPosition& intersection, const VerticalPosition& end,
                                 double lengthIn, double lengthOut, double station,
                                 double& elevation) {
  const double gradeIn = Grade (start, intersection), gradeOut = Grade (intersection, end);
  const double length = maths_Add (lengthIn, lengthOut);
  const double change =
      IsZero (length) ? 0.0 : maths_Divide (maths_Subtract (gradeOut, gradeIn), length);
  if (intersection.Station <= station)
    elevation = OnHalf (end, gradeOut, maths_Multiply (change, lengthIn), lengthOut, station);
  else
    elevation = OnHalf (start, gradeIn, maths_Multiply (change, lengthOut), lengthIn, station);
}

double roadcogo_Interpolate (double firstElevation, double secondElevation, double firstStation,
                             double secondStation, double station) {
  if (maths_IsNull (firstElevation) || maths_IsNull (secondElevation)) return MATHS_Null;
  if (firstStation == secondStation)
    return firstElevation == secondElevation ? firstElevation : MATHS_Null;
  const double grade = maths_Divide (maths_Subtract (secondElevation, firstElevation),
                                     maths_Subtract (secondStation, firstStation));
  return maths_Add (maths_Multiply (grade, maths_Subtract (station, firstStation)), firstElevation);
}

}  // namespace clxml
