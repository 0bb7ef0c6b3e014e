// Circular arcs.
// Conversions, a point on an arc and against one, and the arc between two tangents; the solver of a
// stored arc is in cogoarcsolve.cpp. Leans on cogo, position and maths.
#include "Library/cogo/cogoarc.h"

#include <cmath>
#include <utility>

#include "Library/cogo/cogoframe.h"
#include "Library/coords/coord.h"
#include "Library/position/position.h"
#include "numerics/maths.h"
#include "str.h"

namespace clxml {

namespace {

constexpr int tangentArcRounds = 20;

}  // namespace

double cogo_ArcLength (double radius, double angle) { return maths_Multiply (radius, angle); }

double cogo_ArcAngle (double radius, double length) {
  const double angle = maths_Divide (length, radius);
  if (maths_IsNull (angle) || std::abs (angle) >= CONSTANT_TwoPi) return MATHS_Null;
  return coord_NormaliseTwoPi (angle);
}

double cogo_ArcChord (double radius, double length) {
  const double angle = cogo_ArcAngle (radius, length);
  if (maths_IsNull (angle)) return MATHS_Null;
  if (angle == CONSTANT_Pi) return 2.0 * radius;
  return radius * std::sin (angle) / std::sin ((CONSTANT_Pi - angle) / 2.0);
}

void cogo_ArcPoint (bool isLeftHand, position& start, position& centre, const Transform& transform,
                    double radius, double centreAzimuth, double slope, double length, position& out,
                    coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  const double angle = cogo_ArcAngle (radius, length);
  if (maths_IsNull (centreAzimuth) || maths_IsNull (angle)) {
    out = position ();
    return;
  }
  const double azimuth =
      coord_NormaliseTwoPi (isLeftHand ? centreAzimuth - angle : centreAzimuth + angle);
  position point;
  cogo_Forward (centre, transform, azimuth, radius, 0.0, point, mask);
  cogo_CopyHeight (start, point, transform, mask);
  const double rise = cogo_SlopeHeight (slope, length);
  if (!maths_IsNull (rise)) cogo_ApplyHeight (point, transform, rise, mask);
  out = std::move (point);
}

cogo_Result cogo_ArcStationOffset (bool isLeftHand, position& start, const Transform& transform,
                                   position& centre, double centreAzimuth, double totalAngle,
                                   double radius, double horizontalShift, double verticalShift,
                                   position& point, position& foot, double& pointAzimuth,
                                   double& along, double& offset, double& heightDifference,
                                   coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  position from = start, about = centre, target = point;  // foot may be one of them
  foot = position ();
  pointAzimuth = along = offset = heightDifference = MATHS_Null;
  if (maths_IsNull (centreAzimuth) || maths_IsNull (totalAngle) || maths_IsNull (radius))
    return COGO_NullInput;
  double toPoint;
  cogo_Azimuth (about, target, transform, toPoint, mask);
  if (maths_IsNull (toPoint)) return COGO_Degenerate;

  // Behind the middle of what the arc leaves unused of the circle a point belongs to the start.
  double delta = AngleTurn (centreAzimuth, toPoint);
  if (isLeftHand) delta = CONSTANT_TwoPi - delta;
  const bool isBefore = delta > coord_NormaliseTwoPi (totalAngle) / 2.0 + CONSTANT_Pi;
  if (isBefore) delta = CONSTANT_TwoPi - delta;
  double length = cogo_ArcLength (radius, delta);
  if (maths_IsNull (length)) return COGO_NullInput;
  if (isBefore) length = 0.0 - length;

  cogo_ArcPoint (isLeftHand, from, about, transform, radius, centreAzimuth, MATHS_Null, length,
                 foot, mask);
  const double right = isLeftHand ? toPoint : coord_NormaliseTwoPi (toPoint + CONSTANT_Pi);
  const coord_Polar shift (right, maths_IsNull (horizontalShift) ? 0.0 : horizontalShift,
                           maths_IsNull (verticalShift) ? 0.0 : verticalShift);
  position shifted;
  cogo_ForwardPolar (foot, transform, shift, shifted, mask);
  coord_Polar polar;
  cogo_InversePolar (shifted, target, transform, polar, mask);
  pointAzimuth = toPoint;
  along = length;
  offset = polar.HDist;
  heightDifference = polar.VDist;
  const double turn = AngleSmallest (right, polar.Azimuth);
  if (!maths_IsNull (turn) && turn > CONSTANT_PiOverTwo) offset = maths_Negate (offset);
  return COGO_Ok;
}

// The tangent distance starts as that of the plane, radius / tan (theta / 2), with theta the angle
// between the tangents, and grows by what the centre is too near to the second tangent, over
// sin (theta); at most 20 rounds until that is below half a millimetre.
cogo_Result cogo_TangentArc (position& intersection, const Transform& transform,
                             double firstAzimuth, double secondAzimuth, double radius,
                             double& deflection, position& centre, position& first,
                             position& second, dbentity_ArcDirection& direction,
                             coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  position corner = intersection;  // an out may be it
  centre = first = second = position ();
  deflection = MATHS_Null;
  if (maths_IsNull (firstAzimuth) || maths_IsNull (secondAzimuth) || maths_IsNull (radius))
    return COGO_NullInput;
  Assert (radius > 0.0, "radius > 0.0");
  double theta = AngleTurn (firstAzimuth, secondAzimuth);
  position* onFirst = &first;
  position* onSecond = &second;
  direction = DBENTITY_LeftHand;
  if (theta > CONSTANT_Pi) {
    direction = DBENTITY_RightHand;
    std::swap (onFirst, onSecond);
    std::swap (firstAzimuth, secondAzimuth);
    theta = CONSTANT_TwoPi - theta;
  }
  if (CONSTANT_Pi - theta < COGO_SameAngle) {
    deflection = CONSTANT_Pi - theta;
    centre = first = second = corner;
    return COGO_Ok;
  }

  const double toCentre = coord_NormaliseTwoPi (firstAzimuth + CONSTANT_PiOverTwo);
  double T = maths_Divide (radius, std::tan (theta / 2.0));
  cogo_Result result = COGO_NotConverged;
  for (int round = 0; round < tangentArcRounds; round++) {
    cogo_Forward (corner, transform, firstAzimuth, T, 0.0, *onFirst, mask);
    cogo_Forward (*onFirst, transform, toCentre, radius, 0.0, centre, mask);
    double footAzimuth, along, offset, height;
    result = cogo_StationOffset (corner, transform, secondAzimuth, 0.0, centre, *onSecond,
                                 footAzimuth, along, offset, height, mask);
    if (result == COGO_Ok && maths_IsNull (offset)) result = COGO_NoBracket;
    if (result != COGO_Ok) break;
    const double e = radius - std::abs (offset);
    if (std::abs (e) < COGO_SameDistance) {
      deflection = CONSTANT_Pi - theta;
      return COGO_Ok;
    }
    T = maths_Add (T, maths_Divide (e, std::sin (theta)));
    result = COGO_NotConverged;
  }
  centre = first = second = position ();
  return result;
}

void cogo_IntersectionHeight (position& first, position& second, position& intersection,
                              const Transform& transform, coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  const bool isOnGrid = !cogoframe_IsEllipsoid (transform, mask);
  const double mean = cogo_MeanHeight (first, second, transform, mask);
  const auto isFlat = [&] (position& end) {
    return isOnGrid ? end.GetCogoGrid (transform).NullVertical ()
                    : cogoframe_Geodetic (end, transform, mask).NullVertical ();
  };
  const bool isHorizontalOnly = isFlat (first) || isFlat (second);
  if (isHorizontalOnly && cogo_IsScaleOnly (transform)) return;
  if (isOnGrid) {
    coord_CogoGrid grid = intersection.GetCogoGrid (transform);
    grid.Elevation = mean;
    cogoframe_LoadGrid (intersection, grid, intersection, transform);
  } else {
    cogo_CopyHeight (first, intersection, transform, mask);  // or it may have no geodetic form
    coord_Local coordinate = cogoframe_Geodetic (intersection, transform, mask);
    coordinate.Height = mean;
    cogoframe_LoadGeodetic (intersection, coordinate, intersection, transform, mask);
  }
  intersection.HorizontalOnly = isHorizontalOnly;
  intersection.DropHeights ();
}

}  // namespace clxml
