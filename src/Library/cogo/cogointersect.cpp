// The three classic intersections.
// A line with a circle, two circles, two lines; on the ellipsoid each is a search that the plane
// starts. Leans on cogo, cogoframe and position.
#include <algorithm>
#include <cmath>

#include "Library/cogo/cogo.h"
#include "Library/cogo/cogoframe.h"
#include "Library/coords/cogoellipsoid.h"
#include "Library/position/position.h"
#include "str.h"

namespace clxml {

namespace {

constexpr int searchRounds = 20;
// This near to a geodesic a point is on it, metres; in a line of centimetres the digits of a
// latitude do not carry 0.01 arc second.
constexpr double onLine = 1e-7;

void Clear (position& first, position& second) { first = second = position (); }

// The point along a line from a foot that lies at the radius from a centre. The unknown is the way
// along the line, the error the distance to the centre less the radius; it lies between 0 and
// 1.01 radii. Each round halves the bracket, or steps by the smaller error where that is less; at
// most 20 of them until the error is below half a millimetre, then COGO_NotConverged.
cogo_Result cogo_CircleLineSearch (position& foot, double azimuth, position& centre,
                                   const Transform& transform, double radius, double offset,
                                   position& out, coordsys_CogoSettings mask) {
  const auto errorAt = [&] (double along) {
    cogo_Forward (foot, transform, azimuth, along, 0.0, out, mask);
    double distance;
    cogo_Distance (out, centre, transform, distance, mask);
    return maths_Subtract (distance, radius);
  };
  double lower = 0.0, lowerError = std::abs (offset) - radius;
  double upper = 1.01 * radius, upperError = errorAt (upper);
  if (maths_IsNull (upperError)) return COGO_NullInput;
  double trial = std::sqrt ((radius - offset) * (radius + offset));
  for (int round = 0; round < searchRounds; round++) {
    const double error = errorAt (trial);
    if (maths_IsNull (error)) return COGO_NullInput;
    if (cogo_SameDistance (error, 0.0)) return COGO_Ok;
    if (lowerError > 0.0 || upperError < 0.0) return COGO_NoBracket;
    if (error < 0.0) {
      lower = trial;
      lowerError = error;
    } else {
      upper = trial;
      upperError = error;
    }
    const double half = (upper - lower) * 0.5;
    trial = std::abs (lowerError) < std::abs (upperError)
                ? lower + std::min (half, std::abs (lowerError))
                : upper - std::min (half, std::abs (upperError));
  }
  return COGO_NotConverged;
}

// Moves a point that lies near two circles onto both: their tangents next to it meet nearer. At
// most 20 rounds until both distances are met within half a millimetre, then COGO_NotConverged:
// with grid azimuths so far from the projection's origin that its two directions part by more, each
// round ends where it began.
cogo_Result RefineOnCircles (position& seed, position* centres, const double* radii,
                             const Transform& transform, coordsys_CogoSettings mask) {
  for (int round = 0; round < searchRounds; round++) {
    double azimuths[2], rests[2];
    for (int i = 0; i < 2; i++) {
      cogo_Inverse (seed, centres[i], transform, azimuths[i], rests[i], mask);
      if (maths_IsNull (azimuths[i]) || maths_IsNull (rests[i])) return COGO_NullInput;
      rests[i] -= radii[i];
    }
    if (cogo_SameDistance (rests[0], 0.0) && cogo_SameDistance (rests[1], 0.0)) return COGO_Ok;
    position onCircle[2];
    for (int i = 0; i < 2; i++) {
      cogo_Forward (seed, transform, azimuths[i], rests[i], 0.0, onCircle[i], mask);
      azimuths[i] = coord_NormaliseTwoPi (azimuths[i] + CONSTANT_PiOverTwo);
    }
    position next;
    if (cogo_AzimuthAzimuthIntersect (onCircle[0], azimuths[0], onCircle[1], transform, azimuths[1],
                                      next, mask) != COGO_Ok)
      return COGO_Degenerate;
    cogo_CopyHeight (seed, next, transform, mask);
    seed = next;
  }
  return COGO_NotConverged;
}

bool IsParallel (double first, double second) {
  return cogo_AnglesEqual (first, second) || cogo_AnglesEqual (first + CONSTANT_Pi, second);
}

// The cogo grid of a temporary plane whose origin is a geodetic point.
class TangentPlane {
 public:
  TangentPlane (const coord_Local& origin, const coordsys_Ellipsoid& ellipsoid) {
    coordsys_Projection projection;
    projection.ProjectionType = COORDSYS_Plane;
    projection.OriginLocal = coord_Local (origin.Latitude, origin.Longitude, 0.0);
    projection.OriginGrid = coord_CorrectedGrid (0.0, 0.0, 0.0);
    projection.Scale = 1.0;
    projection.Orientation1 = 0.0;
    coordsys_Error error;
    _transform = Transform_Create (COORDSYS_SetEllipsoid | COORDSYS_SetProjection, &ellipsoid,
                                   &projection, nullptr, nullptr, nullptr, nullptr, 0, &error);
  }
  coord_CogoGrid ToPlane (const coord_Local& point) const {
    coord_CogoGrid grid;
    if (_transform) _transform->LocalToCogoGrid (point, grid);
    return grid;
  }
  coord_Local FromPlane (const coord_CogoGrid& grid) const {
    coord_Local point;
    if (_transform) _transform->CogoGridToLocal (grid, point);
    return point;
  }

 private:
  std::unique_ptr<Transform> _transform;
};

// The line on the ellipsoid from one point to another: azimuth at the start, length, and the growth
// of the azimuth from start to end.
struct EllipsoidLine {
  double azimuth, distance, turn;
};

EllipsoidLine LineBetween (const coordsys_Ellipsoid& ellipsoid, const coord_Local& from,
                           double fromW, const coord_Local& to) {
  EllipsoidLine line{MATHS_Null, MATHS_Null, MATHS_Null};
  if (to.NullHorizontal ()) return line;
  const double sine = std::sin (to.Latitude);
  const double toW = maths_SquareRoot (1.0 - ellipsoid.EccentricitySquared * sine * sine);
  double mean;
  cogo_EllipsoidInverse (ellipsoid, from.Latitude, from.Longitude, fromW, to.Latitude, to.Longitude,
                         toW, mean, line.azimuth, line.distance);
  line.turn = maths_Multiply (AngleSigned (mean, line.azimuth), 2.0);
  return line;
}

// Where two geodesics meet. The unknown is the distance along the first, negative behind its point.
// Each round moves the end by its offset from the second line divided by the sine of the angle
// between the lines there. It stops when the offset is below a ten-thousandth of a millimetre, or
// the end lies on the second line within 0.01 arc second as seen from the second point and the move
// is below half a millimetre; after 20 rounds 0.01 arc second is enough, else COGO_NotConverged.
cogo_Result EllipsoidIntersect (position& firstPoint, double firstAzimuth, position& secondPoint,
                                double secondAzimuth, const Transform& transform, position& out,
                                coordsys_CogoSettings mask) {
  Assert ((mask & (COORDSYS_CogoAzimuthWGS84 | COORDSYS_CogoAzimuthLocal)) != 0,
          "system & (COORDSYS_CogoAzimuthWGS84 | COORDSYS_CogoAzimuthLocal)");
  const coord_Local first = cogoframe_Geodetic (firstPoint, transform, mask);
  const coord_Local second = cogoframe_Geodetic (secondPoint, transform, mask);
  coordsys_Ellipsoid ellipsoid = cogoframe_Ellipsoid (firstPoint, transform, mask);
  if (!cogoframe_IsUsable (ellipsoid))
    ellipsoid = cogoframe_Ellipsoid (secondPoint, transform, mask);
  const double firstW = cogoframe_W (firstPoint, transform, mask);
  const double secondW = cogoframe_W (secondPoint, transform, mask);
  if (maths_IsNull (firstAzimuth) || maths_IsNull (secondAzimuth) || maths_IsNull (firstW) ||
      maths_IsNull (secondW) || !cogoframe_IsUsable (ellipsoid))
    return COGO_NullInput;
  if (IsParallel (firstAzimuth, secondAzimuth)) return COGO_Parallel;

  const TangentPlane plane (first, ellipsoid);
  coord_CogoGrid seedGrid;
  cogo_Result result = cogoframe_PlaneIntersect (plane.ToPlane (first), firstAzimuth,
                                                 plane.ToPlane (second), secondAzimuth, seedGrid);
  coord_Local seed;
  if (result == COGO_Ok) {
    seed = plane.FromPlane (seedGrid);
  } else {
    result =
        cogoframe_PlaneIntersect (firstPoint.GetCogoGrid (transform), firstAzimuth,
                                  secondPoint.GetCogoGrid (transform), secondAzimuth, seedGrid);
    if (result != COGO_Ok) return result;
    position onGrid;
    onGrid.LoadFromCogoGrid (seedGrid, transform);
    seed = cogoframe_Geodetic (onGrid, transform, mask);
  }

  const EllipsoidLine toSeed = LineBetween (ellipsoid, first, firstW, seed);
  if (maths_IsNull (toSeed.distance)) return COGO_Degenerate;
  const bool isBehind = !maths_IsNull (toSeed.azimuth) &&
                        AngleSmallest (toSeed.azimuth, firstAzimuth) > CONSTANT_PiOverTwo;
  double along = isBehind ? -toSeed.distance : toSeed.distance;
  coord_Local candidate = first;
  bool isOnSecond = false;
  for (int round = 0; round < searchRounds; round++) {
    cogo_EllipsoidDirect (ellipsoid, first.Latitude, first.Longitude, firstAzimuth, along, firstW,
                          candidate.Latitude, candidate.Longitude);
    if (candidate.NullHorizontal ()) return COGO_Degenerate;
    const EllipsoidLine onFirst = LineBetween (ellipsoid, first, firstW, candidate);
    const EllipsoidLine onSecond = LineBetween (ellipsoid, second, secondW, candidate);
    const bool isSecond = onSecond.distance == 0.0;
    if (!isSecond && (maths_IsNull (onSecond.azimuth) || maths_IsNull (onSecond.distance)))
      return COGO_Degenerate;
    const double offset =
        isSecond ? 0.0 : std::sin (AngleTurn (secondAzimuth, onSecond.azimuth)) * onSecond.distance;
    const double firstTurn = maths_IsNull (onFirst.turn) ? 0.0 : onFirst.turn;
    const double secondTurn = isSecond ? 0.0 : onSecond.turn;
    const double move = offset / std::sin (firstAzimuth + firstTurn - secondAzimuth - secondTurn);
    isOnSecond = std::abs (offset) < onLine || IsParallel (onSecond.azimuth, secondAzimuth);
    if (std::abs (offset) < onLine || (isOnSecond && std::abs (move) < COGO_SameDistance)) break;
    along = maths_NullUnlessFinite (along - move);
  }
  if (!isOnSecond) return COGO_NotConverged;
  cogoframe_LoadGeodetic (out, candidate, firstPoint, transform, mask);
  return COGO_Ok;
}

}  // namespace

cogo_Result cogoframe_PlaneIntersect (const coord_CogoGrid& first, double firstAzimuth,
                                      const coord_CogoGrid& second, double secondAzimuth,
                                      coord_CogoGrid& out) {
  out = coord_CogoGrid ();
  if (maths_IsNull (firstAzimuth) || maths_IsNull (secondAzimuth) || maths_IsNull (first.North) ||
      maths_IsNull (first.East) || maths_IsNull (second.North) || maths_IsNull (second.East))
    return COGO_NullInput;
  if (IsParallel (firstAzimuth, secondAzimuth)) return COGO_Parallel;
  if (std::abs (std::cos (firstAzimuth)) < COGO_LeastCosine) {
    out.North = first.North;
    out.East = (first.North - second.North) * std::tan (secondAzimuth) + second.East;
  } else if (std::abs (std::cos (secondAzimuth)) < COGO_LeastCosine) {
    out.North = second.North;
    out.East = (second.North - first.North) * std::tan (firstAzimuth) + first.East;
  } else {
    // Counted from the first point, so that the tangents multiply no large coordinates, and the
    // east is that of the line with the smaller tangent.
    const double t1 = std::tan (firstAzimuth), t2 = std::tan (secondAzimuth);
    const double north = (second.East - first.East - t2 * (second.North - first.North)) / (t1 - t2);
    out.North = first.North + north;
    out.East = std::abs (t1) <= std::abs (t2) ? north * t1 + first.East
                                              : (out.North - second.North) * t2 + second.East;
  }
  out.North = maths_NullUnlessFinite (out.North);
  out.East = maths_NullUnlessFinite (out.East);
  return COGO_Ok;
}

cogo_Result cogo_AzimuthDistanceIntersect (position& start, double azimuth, position& centre,
                                           const Transform& transform, double radius,
                                           position& first, position& second,
                                           coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  position from, about;
  cogo_CommonHeights (start, centre, transform, from, about, mask);
  Clear (first, second);
  if (maths_IsNull (radius)) return COGO_NullInput;
  position foot;
  double footAzimuth, along, offset, height;
  cogo_Result result = cogo_StationOffset (from, transform, azimuth, 0.0, about, foot, footAzimuth,
                                           along, offset, height, mask);
  if (result != COGO_Ok) return result;
  if (maths_IsNull (offset)) return COGO_NullInput;
  // A line that touches may pass by half a millimetre on either side.
  const bool isTouching = cogo_SameDistance (radius, std::abs (offset));
  if (radius < std::abs (offset) && !isTouching) return COGO_NoIntersection;
  // A geodesic has turned on its way to the foot, so its azimuth there is used. On the plane the
  // line's own azimuth is exact; the one at the foot comes from coordinates and carries their
  // rounding.
  if (!cogoframe_IsEllipsoid (transform, mask)) footAzimuth = azimuth;
  const double backwards = coord_NormaliseTwoPi (footAzimuth + CONSTANT_Pi);
  if (isTouching) {
    first = foot;
  } else if (cogo_SameDistance (offset, 0.0)) {
    cogo_Forward (foot, transform, footAzimuth, radius, 0.0, first, mask);
    cogo_Forward (foot, transform, backwards, radius, 0.0, second, mask);
  } else {
    result =
        cogo_CircleLineSearch (foot, footAzimuth, about, transform, radius, offset, first, mask);
    if (result == COGO_Ok)
      result =
          cogo_CircleLineSearch (foot, backwards, about, transform, radius, offset, second, mask);
    if (result != COGO_Ok) {
      Clear (first, second);
      return result;
    }
  }
  cogoframe_FinishIntersection (first, from, about);
  cogoframe_FinishIntersection (second, from, about);
  return COGO_Ok;
}

cogo_Result cogo_DistanceDistanceIntersect (position& firstCentre, double firstRadius,
                                            position& secondCentre, double secondRadius,
                                            const Transform& transform, position& first,
                                            position& second, coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  position centres[2];
  cogo_CommonHeights (firstCentre, secondCentre, transform, centres[0], centres[1], mask);
  Clear (first, second);
  if (maths_IsNull (firstRadius) || maths_IsNull (secondRadius)) return COGO_NullInput;
  if (cogo_SameDistance (firstRadius, 0.0) || cogo_SameDistance (secondRadius, 0.0))
    return COGO_Degenerate;
  double azimuth, d;
  cogo_Inverse (centres[0], centres[1], transform, azimuth, d, mask);
  if (cogo_SameDistance (d, 0.0)) return COGO_Coincident;
  if (maths_IsNull (azimuth) || maths_IsNull (d)) return COGO_NullInput;
  if (firstRadius < 0.0 || secondRadius < 0.0) return COGO_CirclesApart;  // no point is on it
  if (d + firstRadius < secondRadius || d + secondRadius < firstRadius) return COGO_CircleInside;
  if (firstRadius + secondRadius < d) return COGO_CirclesApart;

  // The three tests hold, so only rounding can carry the cosine out of its domain.
  const double cosine = (d * d + (firstRadius - secondRadius) * (firstRadius + secondRadius)) /
                        (2.0 * d * firstRadius);
  const double A = std::acos (std::clamp (cosine, -1.0, 1.0));
  cogo_Forward (centres[0], transform, coord_NormaliseTwoPi (azimuth + A), firstRadius, 0.0, first,
                mask);
  cogo_Forward (centres[0], transform, coord_NormaliseTwoPi (azimuth - A), firstRadius, 0.0, second,
                mask);
  if (A < COGO_SameDistance) {
    second = position ();
  } else {
    const double radii[] = {firstRadius, secondRadius};
    cogo_Result result = RefineOnCircles (first, centres, radii, transform, mask);
    if (result == COGO_Ok) result = RefineOnCircles (second, centres, radii, transform, mask);
    if (result != COGO_Ok) {
      Clear (first, second);
      return result;
    }
  }
  cogoframe_FinishIntersection (first, centres[0], centres[1]);
  cogoframe_FinishIntersection (second, centres[0], centres[1]);
  return COGO_Ok;
}

cogo_Result cogo_AzimuthAzimuthIntersect (position& firstPoint, double firstAzimuth,
                                          position& secondPoint, const Transform& transform,
                                          double secondAzimuth, position& out,
                                          coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  position first = firstPoint, second = secondPoint;  // out may be one of them
  out = position ();
  cogo_Result result;
  if ((mask & COORDSYS_CogoAzimuthGrid) != 0 || cogo_IsScaleOnly (transform)) {
    coord_CogoGrid grid;
    result = cogoframe_PlaneIntersect (first.GetCogoGrid (transform), firstAzimuth,
                                       second.GetCogoGrid (transform), secondAzimuth, grid);
    if (result == COGO_Ok) cogoframe_LoadGrid (out, grid, first, transform);
  } else {
    result = EllipsoidIntersect (first, firstAzimuth, second, secondAzimuth, transform, out, mask);
  }
  if (result == COGO_Ok) cogoframe_FinishIntersection (out, first, second);
  return result;
}

}  // namespace clxml
