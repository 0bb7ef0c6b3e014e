// Transition curves.
// The Fresnel series, the four ways through a spiral, and a point against one. Leans on cogo,
// cogoarc, position and maths.
#include "Library/cogo/cogospiral.h"

#include <cmath>

#include "Library/cogo/cogoarc.h"
#include "Library/coords/coord.h"
#include "Library/position/position.h"
#include "str.h"

namespace clxml {

namespace {

constexpr int seriesTerms = 30;
constexpr int stationOffsetRounds = 40;

// Sums a series whose terms follow from the one before by ratio (n) * q.
template <class Ratio>
double Sum (double first, double q, double resolution, Ratio ratio) {
  double term = first, sum = first;
  for (double n = 1.0; std::abs (term) > resolution && n < seriesTerms; n += 1.0) {
    term = ratio (n) * q * term;
    sum += term;
  }
  return maths_NullUnlessFinite (sum);
}

bool IsExit (SpiralType type) { return type == ExitRight || type == ExitLeft; }

cogo_Result StationOffset (SpiralType type, position& origin, const Transform& transform,
                           double azimuth, double small, double large, double length, double slope,
                           double resolution, double deltaZero, double x0, double y0,
                           position& point, double& along, double& offset, double& heightDifference,
                           double& tangentAzimuth, position& foot, coordsys_CogoSettings mask) {
  if (maths_IsNull (length) || maths_IsNull (small) || maths_IsNull (azimuth) ||
      maths_IsNull (resolution))
    return COGO_NullInput;
  along = 0.0;
  // Each round goes half of the way that is left in the direction of the tangent; far inside the
  // curve that does not settle.
  for (int round = 0; round < stationOffsetRounds; round++) {
    cogo_SpiralPosition (type, origin, transform, azimuth, small, large, length, slope, resolution,
                         along, deltaZero, x0, y0, foot, tangentAzimuth, mask);
    double toPoint, slopeDistance;
    cogo_InverseHeights (foot, point, transform, toPoint, offset, heightDifference, slopeDistance,
                         mask);
    if (offset == 0.0) return COGO_Ok;
    if (maths_IsNull (tangentAzimuth) || maths_IsNull (toPoint)) return COGO_Degenerate;
    const double step =
        maths_Multiply (maths_Cos (AngleTurn (tangentAzimuth, toPoint)), offset) * 0.5;
    if (std::abs (step) < resolution) {
      const double right = coord_NormaliseTwoPi (tangentAzimuth + CONSTANT_PiOverTwo);
      if (AngleSmallest (right, toPoint) > CONSTANT_PiOverTwo) offset = maths_Negate (offset);
      return COGO_Ok;
    }
    along += step;
  }
  return COGO_NotConverged;
}

}  // namespace

void cogo_SpiralSeries (double s, double squareA, double resolution, double& y, double& x) {
  const double p = s * s;
  const double u = p / (2.0 * squareA);
  const double q = -(u * u);
  y = Sum (p * s / (6.0 * squareA), q, resolution,
           [] (double n) { return (4.0 * n - 1.0) / ((4.0 * n + 3.0) * n * (4.0 * n + 2.0)); });
  x = Sum (s, q, resolution,
           [] (double n) { return (4.0 * n - 3.0) / ((4.0 * n + 1.0) * n * (4.0 * n - 2.0)); });
}

// A2 is the square of the clothoid's constant; s0 the distance from its own start to where the
// spiral begins, s1 to the point asked for; the offsets between the two are turned into the frame
// of the tangent at s0.
void cogo_SpiralOffsets (double small, double large, double length, double s, double resolution,
                         double& delta, double& x, double& y) {
  delta = x = y = MATHS_Null;
  if (maths_IsNull (length) || maths_IsNull (small) || maths_IsNull (s) ||
      maths_IsNull (resolution))
    return;
  if (s == 0.0 || small == 0.0) {
    delta = x = y = 0.0;
    return;
  }
  if (maths_IsNull (large)) {
    const double A2 = small * length;
    delta = s * s / (2.0 * A2);
    cogo_SpiralSeries (s, A2, resolution, y, x);
  } else if (small != large) {
    const double A2 = small * large * length / (large - small);
    const double s0 = std::abs (A2 / small) - length;
    const double s1 = s0 + s;
    const double t0 = s0 * s0 / (2.0 * A2);
    double y0, x0, y1, x1;
    cogo_SpiralSeries (s0, A2, resolution, y0, x0);
    cogo_SpiralSeries (s1, A2, resolution, y1, x1);
    const double dX = maths_Subtract (x1, x0), dY = maths_Subtract (y1, y0);
    if (maths_IsNull (dX) || maths_IsNull (dY)) return;
    x = dX * std::cos (t0) + dY * std::sin (t0);
    y = std::hypot (dX - x * std::cos (t0), dY - x * std::sin (t0));
    delta = s1 * s1 / (2.0 * A2) - t0;
  } else {
    delta = cogo_ArcAngle (small, s);
    x = maths_Multiply (small, maths_Sin (delta));
    y = maths_Subtract (small, maths_Multiply (small, maths_Cos (delta)));
  }
  delta = maths_NullUnlessFinite (delta);
  x = maths_NullUnlessFinite (x);
  y = maths_NullUnlessFinite (y);
}

void cogo_SpiralFromTangent (double small, double large, double length, double spiralDistance,
                             double resolution, double& delta, double& x, double& y) {
  Assert (!maths_IsNull (length), "!maths_IsNull (length)");
  Assert (!maths_IsNull (small), "!maths_IsNull (smallRadius)");
  Assert (!maths_IsNull (spiralDistance), "!maths_IsNull (spiralDist)");
  Assert (!maths_IsNull (resolution), "!maths_IsNull (resolution)");
  Assert (spiralDistance >= 0.0, "spiralDist >= 0.0");
  Assert (spiralDistance <= length, "spiralDist <= length");
  cogo_SpiralOffsets (small, large, length, spiralDistance, resolution, delta, x, y);
}

void cogo_SpiralPoint (SpiralType type, double small, double large, double length, double distance,
                       double resolution, double deltaZero, double x0, double y0, double& delta,
                       double& x, double& y) {
  delta = x = y = MATHS_Null;
  if (maths_IsNull (length) || maths_IsNull (small) || maths_IsNull (distance) ||
      maths_IsNull (resolution))
    return;
  if (distance <= 0.0) {
    delta = y = 0.0;
    x = distance;
    return;
  }
  // What lies past the end runs on along the tangent there, which has turned by deltaZero.
  double dX = 0.0, dY = 0.0;
  if (distance > length) {
    delta = IsExit (type) ? 0.0 : deltaZero;
    x = IsExit (type) ? 0.0 : x0;
    y = IsExit (type) ? 0.0 : y0;
    dX = maths_Multiply (maths_Cos (deltaZero), distance - length);
    dY = maths_Multiply (maths_Sin (deltaZero), distance - length);
  } else {
    cogo_SpiralFromTangent (small, large, length, IsExit (type) ? length - distance : distance,
                            resolution, delta, x, y);
  }
  switch (type) {
    case ExitRight:
    case ExitLeft: {
      // The offsets count from the far end: turn the chord to here from the spiral's own start.
      delta = maths_Subtract (deltaZero, delta);
      // Radii that run against the spiral's kind turn the sign of all deflections.
      Assert (maths_IsNull (delta) || delta >= 0.0 || deltaZero < 0.0, "(*delta) <= deltaZero");
      const double across = maths_Subtract (y0, y), ahead = maths_Subtract (x0, x);
      const double c = maths_SquareRoot (maths_Add (maths_Square (ahead), maths_Square (across)));
      const double turn = c == 0.0 ? 0.0 : maths_Atan2 (across, ahead);
      const double a = maths_Subtract (deltaZero, turn);
      x = maths_Add (maths_Multiply (maths_Cos (a), c), dX);
      y = maths_Add (maths_Multiply (maths_Sin (a), c), dY);
      if (type == ExitLeft) {
        delta = maths_Negate (delta);
        y = maths_Negate (y);
      }
      break;
    }
    case EntryRight:
    case EntryLeft:
      x = maths_Add (x, dX);
      y = maths_Add (y, dY);
      if (type == EntryLeft) {
        delta = maths_Negate (delta);
        y = maths_Negate (y);
      }
      break;
    default:
      Assert (false, "Unknown spiral type");
      delta = x = y = MATHS_Null;
  }
}

void cogo_SpiralPosition (SpiralType type, position& origin, const Transform& transform,
                          double azimuth, double small, double large, double length, double slope,
                          double resolution, double distance, double deltaZero, double x0,
                          double y0, position& out, double& outAzimuth,
                          coordsys_CogoSettings mask) {
  Assert (mask != 0, "!method.IsNull()");
  outAzimuth = MATHS_Null;
  double delta, x, y;
  cogo_SpiralPoint (type, small, large, length, distance, resolution, deltaZero, x0, y0, delta, x,
                    y);
  if (maths_IsNull (delta) || maths_IsNull (x) || maths_IsNull (y) || maths_IsNull (azimuth)) {
    out = position ();
    return;
  }
  cogo_Forward (origin, transform, azimuth, x, 0.0, out, mask);
  cogo_Forward (out, transform, coord_NormaliseTwoPi (azimuth + CONSTANT_PiOverTwo), y, 0.0, out,
                mask);
  const double rise = cogo_SlopeHeight (slope, distance);
  if (!maths_IsNull (rise)) cogo_ApplyHeight (out, transform, rise, mask);
  outAzimuth = coord_NormaliseTwoPi (azimuth + delta);
}

cogo_Result cogo_SpiralStationOffset (SpiralType type, position& origin, const Transform& transform,
                                      double azimuth, double small, double large, double length,
                                      double slope, double resolution, double deltaZero, double x0,
                                      double y0, position& point, double& along, double& offset,
                                      double& heightDifference, double& tangentAzimuth,
                                      position& foot, coordsys_CogoSettings mask) {
  position from = origin, target = point;  // foot may be one of them
  foot = position ();
  along = offset = heightDifference = tangentAzimuth = MATHS_Null;
  const cogo_Result result = StationOffset (type, from, transform, azimuth, small, large, length,
                                            slope, resolution, deltaZero, x0, y0, target, along,
                                            offset, heightDifference, tangentAzimuth, foot, mask);
  if (result != COGO_Ok) {
    foot = position ();
    along = offset = heightDifference = tangentAzimuth = MATHS_Null;
  }
  return result;
}

}  // namespace clxml
