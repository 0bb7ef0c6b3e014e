// A point against a line.
// Along, offset and height, and whether the point lies behind the start. Leans on cogo, position
// and maths.
#include <cmath>

#include "Library/cogo/cogo.h"
#include "Library/coords/coord.h"
#include "Library/position/position.h"
#include "str.h"

namespace clxml {

namespace {

constexpr int stationOffsetRounds = 20;
// Over a shorter way, metres, the azimuth from the foot back to the start has fewer digits than the
// line's own azimuth, which turns by less than 2e-8 rad in it.
constexpr double shortestBack = 0.1;

// cos of the smallest angle between two azimuths, times a distance.
double Along (double first, double second, double distance) {
  return maths_Multiply (maths_Cos (AngleSmallest (first, second)), distance);
}

cogo_Result Offset (position& start, const Transform& transform, double azimuth, double slope,
                    position& point, position& foot, double& footAzimuth, double& along,
                    double& offset, double& height, coordsys_CogoSettings mask) {
  along = 0.0;
  if (maths_IsNull (azimuth)) return COGO_NullInput;
  double toPoint, distance, slopeDistance;
  cogo_InverseHeights (start, point, transform, toPoint, distance, height, slopeDistance, mask);
  if (cogo_SameDistance (distance, 0.0)) {
    foot = start;
    footAzimuth = azimuth;
    offset = 0.0;
    return COGO_Ok;
  }
  if (maths_IsNull (toPoint) || maths_IsNull (distance)) return COGO_NullInput;
  along = Along (azimuth, toPoint, distance);

  // The foot is stepped along the line by what is left of the way to the point in the line's
  // direction, until that is below half a millimetre. On the plane the first foot is the last; on
  // the ellipsoid a round leaves 1 - D / tan (D) of it, with D the angle between foot and point
  // as seen from the earth's centre: beyond some 6,000 km twenty rounds are too few.
  for (int round = 0; round < stationOffsetRounds; round++) {
    cogo_Forward (start, transform, azimuth, along, cogo_SlopeHeight (slope, along), foot, mask);
    double back, backDistance;
    cogo_Inverse (foot, start, transform, back, backDistance, mask);
    cogo_InverseHeights (foot, point, transform, toPoint, distance, height, slopeDistance, mask);
    if (maths_IsNull (backDistance) || maths_IsNull (distance)) return COGO_NullInput;
    // These first: a foot at the start, and one at the point, have no azimuth to them.
    bool isDone = backDistance < COGO_SameDistance || distance < COGO_SameDistance;
    double correction = 0.0;
    if (!isDone) {
      if (maths_IsNull (back) || maths_IsNull (toPoint)) return COGO_NullInput;
      correction = Along (back, toPoint, distance);
      isDone = std::abs (correction) < COGO_SameDistance;
    }
    if (isDone) {
      const bool isAhead = along > 0.0;
      const double turn = AngleTurn (azimuth, toPoint);
      offset = !maths_IsNull (turn) && turn > CONSTANT_Pi ? -distance : distance;
      if (backDistance < shortestBack || maths_IsNull (back))
        footAzimuth = azimuth;
      else
        footAzimuth = coord_NormaliseTwoPi (isAhead ? back + CONSTANT_Pi : back);
      along = isAhead ? backDistance : 0.0 - backDistance;
      return COGO_Ok;
    }
    along += along > 0.0 ? -correction : correction;
  }
  return COGO_NotConverged;
}

}  // namespace

cogo_Result cogo_StationOffset (position& start, const Transform& transform, double azimuth,
                                double slope, position& point, position& foot, double& footAzimuth,
                                double& along, double& offset, double& height,
                                coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  position from = start, to = point;  // foot may be one of them
  foot = position ();
  footAzimuth = offset = height = MATHS_Null;
  const cogo_Result result =
      Offset (from, transform, azimuth, slope, to, foot, footAzimuth, along, offset, height, mask);
  if (result != COGO_Ok) {
    foot = position ();
    footAzimuth = along = offset = height = MATHS_Null;
  }
  return result;
}

cogo_Result cogo_StationOffsetShifted (position& start, const Transform& transform, double azimuth,
                                       double slope, double horizontalShift, double verticalShift,
                                       position& point, position& foot, double& footAzimuth,
                                       double& along, double& offset, double& height,
                                       coordsys_CogoSettings mask) {
  position target = point;
  const cogo_Result result = cogo_StationOffset (start, transform, azimuth, slope, target, foot,
                                                 footAzimuth, along, offset, height, mask);
  if (result != COGO_Ok) return result;
  const double right = maths_IsNull (horizontalShift) ? 0.0 : horizontalShift;
  const double up = maths_IsNull (verticalShift) ? 0.0 : verticalShift;
  if (cogo_SameDistance (right, 0.0) && cogo_SameDistance (up, 0.0)) return result;
  position shifted;
  cogo_Forward (foot, transform, coord_NormaliseTwoPi (footAzimuth + CONSTANT_PiOverTwo), right, up,
                shifted, mask);
  double toTarget, distance, slopeDistance;
  cogo_InverseHeights (shifted, target, transform, toTarget, distance, height, slopeDistance, mask);
  offset = right > offset ? maths_Negate (distance) : distance;
  return result;
}

cogo_Result cogo_IsBehind (position& from, double azimuth, position& to, const Transform& transform,
                           coordsys_CogoSettings mask) {
  double toAzimuth;
  cogo_Azimuth (from, to, transform, toAzimuth, mask);
  const double turn =
      coord_NormaliseTwoPi (maths_Add (maths_Subtract (toAzimuth, azimuth), CONSTANT_PiOverTwo));
  return !maths_IsNull (turn) && turn > CONSTANT_Pi ? COGO_Behind : COGO_Ok;
}

}  // namespace clxml
