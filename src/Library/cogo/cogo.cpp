// Coordinate geometry between two positions.
// Forward, inverse and heights, each on the plane or the ellipsoid. Leans on position, transfrm,
// cogoellipsoid and maths.
#include "Library/cogo/cogo.h"

#include <cmath>

#include "Library/cogo/cogoframe.h"
#include "Library/coords/cogoellipsoid.h"
#include "Library/position/position.h"
#include "str.h"

namespace clxml {

namespace {

constexpr double sameDistanceCoarse = 0.005;
constexpr double forwardDistanceAgreement = 5e-05;
constexpr double longestForward = 1000000.0;
constexpr int forwardRounds = 5;
// A forward result farther from what was asked for, metres, is null.
constexpr double largestForwardMiss = 1.0;

constexpr coordsys_CogoSettings azimuthBits =
    COORDSYS_CogoAzimuthWGS84 | COORDSYS_CogoAzimuthLocal | COORDSYS_CogoAzimuthGrid;
constexpr coordsys_CogoSettings distanceBits =
    COORDSYS_CogoDistanceWGS84 | COORDSYS_CogoDistanceLocal | COORDSYS_CogoDistanceGrid;

bool Has (coordsys_CogoSettings mask, coordsys_CogoSettings bits) { return (mask & bits) != 0; }

bool Within (double a, double b, double tolerance) {
  return !maths_IsNull (a) && !maths_IsNull (b) && std::abs (a - b) < tolerance;
}

// What one metre of the mask's distances is on the grid; null where there is no such distance.
double PlaneScale (const Transform& transform, coordsys_CogoSettings mask) {
  if (Has (mask, COORDSYS_CogoDistanceGrid)) return 1.0;
  return Has (mask, COORDSYS_CogoEllipsoidDistances) ? MATHS_Null
                                                     : transform.GroundScaleAt (coord_Local ());
}

// The ellipsoid's branch has one of two datums.
void AssertOnEllipsoid (const Transform& transform, coordsys_CogoSettings mask) {
  Assert (!cogo_IsScaleOnly (transform), "!cogo_IsScaleOnly (transform)");
  Assert (Has (mask, COORDSYS_CogoDistanceLocal | COORDSYS_CogoDistanceWGS84),
          "system & COORDSYS_CogoDistanceWGS84");
}

double GridAzimuth (const coord_GridDeltas& deltas, const Transform& transform) {
  return coord_NormaliseTwoPi (maths_Add (deltas.Azimuth (), transform.NorthAzimuth));
}

coord_GridDeltas Deltas (position& from, position& to, const Transform& transform) {
  return to.GetCogoGrid (transform) - from.GetCogoGrid (transform);
}

// The frames whose height an operation changes. Exactly one distance bit decides.
enum class HeightFrame { None, Grid, Local, WGS84 };

HeightFrame HeightFrameOf (const Transform& transform, coordsys_CogoSettings mask) {
  if (cogo_IsScaleOnly (transform)) return HeightFrame::Grid;
  switch (mask & distanceBits) {
    case COORDSYS_CogoDistanceWGS84:
      return HeightFrame::WGS84;
    case COORDSYS_CogoDistanceLocal:
      return HeightFrame::Local;
    case COORDSYS_CogoDistanceGrid:
      return HeightFrame::Grid;
    default:
      Assert (false, "Unknown elevation system");
      return HeightFrame::None;
  }
}

double HeightIn (HeightFrame frame, position& where, const Transform& transform) {
  switch (frame) {
    case HeightFrame::Grid:
      return where.GetCogoGrid (transform).Elevation;
    case HeightFrame::Local:
      return where.GetLocal (transform).Height;
    case HeightFrame::WGS84:
      return where.GetWGS84 (transform).Height;
    case HeightFrame::None:
      break;
  }
  return MATHS_Null;
}

void SetHeightIn (HeightFrame frame, position& where, const Transform& transform, double height) {
  if (frame == HeightFrame::Grid) {
    coord_CogoGrid grid = where.GetCogoGrid (transform);
    grid.Elevation = height;
    cogoframe_LoadGrid (where, grid, where, transform);
  } else if (frame != HeightFrame::None) {
    const coordsys_CogoSettings mask =
        frame == HeightFrame::Local ? COORDSYS_CogoDistanceLocal : COORDSYS_CogoDistanceWGS84;
    coord_Local coordinate = cogoframe_Geodetic (where, transform, mask);
    coordinate.Height = height;
    cogoframe_LoadGeodetic (where, coordinate, where, transform, mask);
  }
}

void ForwardOnPlane (position& start, const Transform& transform, double azimuth, double distance,
                     position& out, coordsys_CogoSettings mask) {
  const coord_CogoGrid from = start.GetCogoGrid (transform);
  const double gridDistance = maths_Multiply (distance, PlaneScale (transform, mask));
  double gridAzimuth = maths_Add (azimuth, transform.NorthAzimuth);
  if (!Has (mask, COORDSYS_CogoAzimuthGrid))
    maths_AddTo (gridAzimuth, start.GetConvergence (transform));
  coord_CogoGrid to (maths_Add (from.North, maths_Multiply (maths_Cos (gridAzimuth), gridDistance)),
                     maths_Add (from.East, maths_Multiply (maths_Sin (gridAzimuth), gridDistance)),
                     from.Elevation);
  if (maths_IsNull (to.North) || maths_IsNull (to.East)) to.North = to.East = MATHS_Null;
  cogoframe_LoadGrid (out, to, start, transform);
}

// Robbins' direct formula does not include grid azimuths, mean radii and heights, so its azimuth
// and distance are corrected by what the inverse finds, until that is what was asked for within
// 0.01 arc second and 5e-05 m. After five rounds the last candidate is the result if it is within a
// metre of what was asked for, and null otherwise.
void ForwardOnEllipsoid (position& start, const Transform& transform, double azimuth,
                         double distance, double heightDifference, position& out,
                         coordsys_CogoSettings mask) {
  AssertOnEllipsoid (transform, mask);
  const coord_Local from = cogoframe_Geodetic (start, transform, mask);
  coordsys_Ellipsoid ellipsoid = cogoframe_Ellipsoid (start, transform, mask);
  const double W = cogoframe_W (start, transform, mask);
  const coord_Local nowhere (MATHS_Null, MATHS_Null, from.Height);
  const bool isKnown = !maths_IsNull (azimuth) && !maths_IsNull (distance) &&
                       !maths_IsNull (ellipsoid.EarthRadius) && !from.NullHorizontal ();
  if (isKnown && std::abs (distance) < COGO_SameDistance) {
    cogoframe_LoadGeodetic (out, from, start, transform, mask);
    return;
  }
  if (!isKnown || std::abs (distance) > longestForward) {
    cogoframe_LoadGeodetic (out, nowhere, start, transform, mask);
    return;
  }

  const bool isClimb = Has (mask, COORDSYS_CogoGroundDistances) && !maths_IsNull (heightDifference);
  if (isClimb)
    ellipsoid =
        cogoframe_WithRadius (ellipsoid, maths_Add (ellipsoid.EarthRadius, heightDifference / 2.0));
  if (distance < 0.0) {
    distance = -distance;
    azimuth += CONSTANT_Pi;
  }
  azimuth = coord_NormaliseTwoPi (azimuth);
  double workingAzimuth = azimuth;
  double workingDistance = distance;
  if (Has (mask, COORDSYS_CogoAzimuthGrid | COORDSYS_CogoDistanceLocal))
    maths_SubtractFrom (workingAzimuth, start.GetConvergence (transform));

  position origin = start;  // out may be the start itself
  coord_Local candidate = from;
  double miss = MATHS_Null;
  for (int round = 0; round < forwardRounds; round++) {
    cogo_EllipsoidDirect (ellipsoid, from.Latitude, from.Longitude, workingAzimuth, workingDistance,
                          W, candidate.Latitude, candidate.Longitude);
    if (isClimb) candidate.Height = maths_Add (from.Height, heightDifference);
    cogoframe_LoadGeodetic (out, candidate, origin, transform, mask);
    double foundAzimuth, foundDistance;
    cogo_Inverse (origin, out, transform, foundAzimuth, foundDistance, mask);
    if (maths_IsNull (foundAzimuth) || maths_IsNull (foundDistance)) {
      cogoframe_LoadGeodetic (out, nowhere, origin, transform, mask);
      return;
    }
    const double azimuthMiss = AngleSigned (azimuth, foundAzimuth);
    const double distanceMiss = distance - foundDistance;
    miss = std::hypot (azimuthMiss * distance, distanceMiss);
    if (cogo_AnglesEqual (azimuth, foundAzimuth) &&
        std::abs (distanceMiss) < forwardDistanceAgreement)
      break;
    workingAzimuth += azimuthMiss;
    workingDistance += distanceMiss;
  }
  if (miss > largestForwardMiss) {
    cogoframe_LoadGeodetic (out, nowhere, origin, transform, mask);
    return;
  }

  // The height difference is the caller's business; here the end is as high as the start.
  candidate.Height = from.Height;
  cogoframe_LoadGeodetic (out, candidate, origin, transform, mask);
  const double elevation = origin.GetCogoGrid (transform).Elevation;
  if (Has (mask, COORDSYS_CogoDistanceLocal) && !maths_IsNull (elevation)) {
    coord_CogoGrid grid = out.GetCogoGrid (transform);
    grid.Elevation = elevation;
    coord_Local atElevation;
    transform.CogoGridToLocal (grid, atElevation);
    candidate.Height = atElevation.Height;
    cogoframe_LoadGeodetic (out, candidate, origin, transform, mask);
  }
}

void InverseOnPlane (position& from, position& to, const Transform& transform, double& azimuth,
                     double& distance, coordsys_CogoSettings mask) {
  const coord_GridDeltas deltas = Deltas (from, to, transform);
  if (maths_IsNull (deltas.DeltaNorth) || maths_IsNull (deltas.DeltaEast)) return;
  distance = maths_Divide (deltas.HorizontalDistance (), PlaneScale (transform, mask));
  if (Has (mask, COORDSYS_CogoAzimuthGrid)) azimuth = GridAzimuth (deltas, transform);
}

void InverseOnEllipsoid (position& from, position& to, const Transform& transform, double& azimuth,
                         double& distance, coordsys_CogoSettings mask) {
  AssertOnEllipsoid (transform, mask);
  const coord_Local first = cogoframe_Geodetic (from, transform, mask);
  const coord_Local second = cogoframe_Geodetic (to, transform, mask);
  coordsys_Ellipsoid ellipsoid = cogoframe_Ellipsoid (from, transform, mask);
  const coordsys_Ellipsoid other = cogoframe_Ellipsoid (to, transform, mask);
  const bool isFirst = cogoframe_IsUsable (ellipsoid) && !first.NullVertical ();
  const bool isSecond = cogoframe_IsUsable (other) && !second.NullVertical ();
  if (isFirst && isSecond)
    ellipsoid = cogoframe_WithRadius (ellipsoid, (ellipsoid.EarthRadius + other.EarthRadius) / 2.0);
  else if (isSecond)
    ellipsoid = other;

  double meanAzimuth;
  cogo_EllipsoidInverse (ellipsoid, first.Latitude, first.Longitude,
                         cogoframe_W (from, transform, mask), second.Latitude, second.Longitude,
                         cogoframe_W (to, transform, mask), meanAzimuth, azimuth, distance);
  if (maths_IsNull (azimuth)) return;
  if (Has (mask, COORDSYS_CogoGroundDistances) && first.NullVertical () && second.NullVertical () &&
      maths_IsNull (transform.GetProjectHeight ()))
    distance = MATHS_Null;
  if (Has (mask, COORDSYS_CogoAzimuthGrid))
    azimuth = GridAzimuth (Deltas (from, to, transform), transform);
}

}  // namespace

bool cogo_SameDistance (double a, double b) { return Within (a, b, COGO_SameDistance); }
bool cogo_SameDistanceCoarse (double a, double b) { return Within (a, b, sameDistanceCoarse); }
bool cogo_AnglesEqual (double a, double b) {
  return Within (AngleSmallest (a, b), 0.0, COGO_SameAngle);
}

double AngleTurn (double a, double b) { return coord_NormaliseTwoPi (maths_Subtract (b, a)); }
double AngleSmallest (double a, double b) {
  const double turn = AngleTurn (b, a);
  return !maths_IsNull (turn) && turn > CONSTANT_Pi ? CONSTANT_TwoPi - turn : turn;
}
double AngleSigned (double a, double b) {
  return coord_NormalisePlusMinusPi (maths_Subtract (a, b));
}

double cogo_SlopeHeight (double slope, double distance) {
  if (maths_IsNull (slope) || std::abs (std::cos (slope)) < COGO_LeastCosine) return MATHS_Null;
  return maths_Multiply (std::tan (slope), distance);
}

void cogo_CheckSystem (coordsys_CogoSettings mask) {
  Assert (Has (mask, azimuthBits),
          "Mask & (COORDSYS_CogoAzimuthWGS84 | COORDSYS_CogoAzimuthLocal | "
          "COORDSYS_CogoAzimuthGrid )");
  Assert (Has (mask, distanceBits),
          "Mask & (COORDSYS_CogoDistanceWGS84 | COORDSYS_CogoDistanceLocal | "
          "COORDSYS_CogoDistanceGrid)");
  Assert (Has (mask, COORDSYS_CogoGroundDistances) != Has (mask, COORDSYS_CogoEllipsoidDistances),
          "(Mask & COORDSYS_CogoGroundDistances) ^ (Mask & COORDSYS_CogoEllipsoidDistances)");
  Assert (Has (mask, COORDSYS_CogoEllipsoidHeights) != Has (mask, COORDSYS_CogoOrthoHeights),
          "(Mask & COORDSYS_CogoEllipsoidHeights) ^ (Mask & COORDSYS_CogoOrthoHeights)");
}

bool cogo_IsScaleOnly (const Transform& transform) {
  return transform.Projection.ProjectionType == COORDSYS_ScaleOnly;
}

coordsys_CogoSettings cogo_SystemFor (const position& first, const position& second,
                                      const Transform& transform) {
  const bool isProjected = (transform.Components & COORDSYS_SetProjection) != 0 &&
                           transform.Projection.ProjectionType != COORDSYS_NoProjection;
  if (isProjected || cogo_IsScaleOnly (transform)) {
    const coordsys_CogoSettings system = coordsys_CogoSystemOf (
        transform.Corrections, transform.Components, transform.Projection.ProjectionType);
    const bool isImpossible =
        cogo_IsScaleOnly (transform) && maths_IsNull (PlaneScale (transform, system));
    return isImpossible ? COGO_RoadSystem : system;
  }
  if (first.Original == COORD_GridType && second.Original == COORD_GridType) return COGO_RoadSystem;
  const auto isLocal = [] (const position& p) {
    return p.Original == COORD_LocalType || p.Original == COORD_UncalibratedLocalType;
  };
  const coordsys_CogoSettings common =
      COORDSYS_CogoEllipsoidDistances | COORDSYS_CogoEllipsoidHeights;
  if ((transform.Components & COORDSYS_SetDatum) != 0 || isLocal (first) || isLocal (second))
    return COORDSYS_CogoAzimuthLocal | COORDSYS_CogoDistanceLocal | common;
  return COORDSYS_CogoAzimuthWGS84 | COORDSYS_CogoDistanceWGS84 | common;
}

void cogo_Forward (position& start, const Transform& transform, double azimuth, double distance,
                   double heightDifference, position& out, coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  if (cogoframe_IsEllipsoid (transform, mask))
    ForwardOnEllipsoid (start, transform, azimuth, distance, heightDifference, out, mask);
  else
    ForwardOnPlane (start, transform, azimuth, distance, out, mask);
  cogo_ApplyHeight (out, transform, heightDifference, mask);
}

void cogo_ForwardPolar (position& start, const Transform& transform, const coord_Polar& polar,
                        position& out, coordsys_CogoSettings mask) {
  cogo_Forward (start, transform, polar.Azimuth, polar.HDist, polar.VDist, out, mask);
}

void cogo_ForwardVertical (position& start, const Transform& transform, double azimuth,
                           double distance, double verticalAngle, position& out,
                           coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  if (maths_IsNull (verticalAngle) || std::abs (std::cos (verticalAngle)) < COGO_LeastCosine)
    out = position ();
  else
    cogo_Forward (start, transform, azimuth, distance, cogo_SlopeHeight (verticalAngle, distance),
                  out, mask);
}

void cogo_Inverse (position& from, position& to, const Transform& transform, double& azimuth,
                   double& distance, coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  azimuth = distance = MATHS_Null;
  if (cogoframe_IsEllipsoid (transform, mask))
    InverseOnEllipsoid (from, to, transform, azimuth, distance, mask);
  else
    InverseOnPlane (from, to, transform, azimuth, distance, mask);
}

void cogo_InverseHeights (position& from, position& to, const Transform& transform, double& azimuth,
                          double& distance, double& heightDifference, double& slopeDistance,
                          coordsys_CogoSettings mask) {
  cogo_Inverse (from, to, transform, azimuth, distance, mask);
  heightDifference = slopeDistance = MATHS_Null;
  const bool isScaleOnly = cogo_IsScaleOnly (transform);
  // In this order, each in place of the one before; a height that is missing ends it.
  const struct {
    bool applies;
    HeightFrame frame;
  } steps[] = {{Has (mask, COORDSYS_CogoDistanceWGS84), HeightFrame::WGS84},
               {Has (mask, COORDSYS_CogoDistanceLocal) && !isScaleOnly, HeightFrame::Local},
               {Has (mask, COORDSYS_CogoOrthoHeights | COORDSYS_CogoDistanceGrid) || isScaleOnly,
                HeightFrame::Grid}};
  double difference = MATHS_Null;
  for (const auto& step : steps) {
    if (!step.applies) continue;
    difference = maths_Subtract (HeightIn (step.frame, to, transform),
                                 HeightIn (step.frame, from, transform));
    if (maths_IsNull (difference)) return;
  }
  heightDifference = difference;
  slopeDistance = maths_SquareRoot (maths_Add (maths_Square (distance), maths_Square (difference)));
}

void cogo_InversePolar (position& from, position& to, const Transform& transform,
                        coord_Polar& polar, coordsys_CogoSettings mask) {
  double slopeDistance;
  cogo_InverseHeights (from, to, transform, polar.Azimuth, polar.HDist, polar.VDist, slopeDistance,
                       mask);
}

void cogo_Distance (position& from, position& to, const Transform& transform, double& distance,
                    coordsys_CogoSettings mask) {
  double azimuth;
  cogo_Inverse (from, to, transform, azimuth, distance, mask);
}

void cogo_Azimuth (position& from, position& to, const Transform& transform, double& azimuth,
                   coordsys_CogoSettings mask) {
  double distance;
  cogo_Inverse (from, to, transform, azimuth, distance, mask);
}

void cogo_GridDeltas (position& from, position& to, const Transform& transform,
                      coord_GridDeltas& deltas) {
  deltas = Deltas (from, to, transform);
}

void cogo_ApplyHeight (position& where, const Transform& transform, double heightDifference,
                       coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  const HeightFrame frame = HeightFrameOf (transform, mask);
  const double height = HeightIn (frame, where, transform);
  if (maths_IsNull (height) || heightDifference == 0.0) return;
  SetHeightIn (frame, where, transform, maths_Add (height, heightDifference));
}

void cogo_CopyHeight (position& from, position& to, const Transform& transform,
                      coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  const HeightFrame frame = HeightFrameOf (transform, mask);
  // A point of the grid has no WGS84 form before it has an elevation.
  const double height = HeightIn (frame, from, transform);
  if (maths_IsNull (height)) return;
  if (frame == HeightFrame::WGS84 && to.GetWGS84 (transform).NullHorizontal ())
    SetHeightIn (HeightFrame::Grid, to, transform, HeightIn (HeightFrame::Grid, from, transform));
  SetHeightIn (frame, to, transform, height);
}

double cogo_MeanHeight (position& first, position& second, const Transform& transform,
                        coordsys_CogoSettings mask) {
  const bool ellipsoidalSystem = Has (mask, COORDSYS_CogoEllipsoidDistances);
  const bool groundSystem = Has (mask, COORDSYS_CogoGroundDistances);
  Assert (!ellipsoidalSystem || !groundSystem, "!ellipsoidalSystem || !groundSystem");
  Assert (ellipsoidalSystem || groundSystem, "ellipsoidalSystem || groundSystem");
  const HeightFrame frame = !cogoframe_IsEllipsoid (transform, mask) ? HeightFrame::Grid
                            : Has (mask, COORDSYS_CogoDistanceLocal) ? HeightFrame::Local
                                                                     : HeightFrame::WGS84;
  double a = HeightIn (frame, first, transform);
  double b = HeightIn (frame, second, transform);
  double project = transform.GetProjectHeight ();
  if (ellipsoidalSystem && maths_IsNull (project)) project = 0.0;
  if (maths_IsNull (a) && maths_IsNull (b)) return project;
  if (maths_IsNull (a)) a = groundSystem ? b : project;
  if (maths_IsNull (b)) b = groundSystem ? a : project;
  return maths_Divide (maths_Add (a, b), 2.0);
}

void cogo_CommonHeights (position& first, position& second, const Transform& transform,
                         position& firstOut, position& secondOut, coordsys_CogoSettings mask) {
  Assert (mask != 0, "!system.IsNull()");
  position copies[] = {first, second};
  if (cogoframe_IsEllipsoid (transform, mask)) {
    const double mean = cogo_MeanHeight (copies[0], copies[1], transform, mask);
    for (position& copy : copies) {
      coord_Local coordinate = cogoframe_Geodetic (copy, transform, mask);
      if (coordinate.NullVertical ()) copy.HorizontalOnly = true;
      if (maths_IsNull (mean) || coordinate.NullHorizontal ()) continue;
      coordinate.Height = mean;
      cogoframe_LoadGeodetic (copy, coordinate, copy, transform, mask);
    }
  }
  firstOut = std::move (copies[0]);
  secondOut = std::move (copies[1]);
}

bool cogoframe_IsEllipsoid (const Transform& transform, coordsys_CogoSettings mask) {
  return !Has (mask, COORDSYS_CogoDistanceGrid) && !cogo_IsScaleOnly (transform);
}

coord_Local cogoframe_Geodetic (position& where, const Transform& transform,
                                coordsys_CogoSettings mask) {
  if (Has (mask, COORDSYS_CogoDistanceLocal)) return where.GetLocal (transform);
  const coord_WGS84 point = where.GetWGS84 (transform);
  return {point.Latitude, point.Longitude, point.Height};
}

coordsys_Ellipsoid cogoframe_Ellipsoid (position& where, const Transform& transform,
                                        coordsys_CogoSettings mask) {
  return Has (mask, COORDSYS_CogoDistanceLocal) ? where.GetLocalEllipsoid (mask, transform)
                                                : where.GetWGS84Ellipsoid (mask, transform);
}

double cogoframe_W (position& where, const Transform& transform, coordsys_CogoSettings mask) {
  return Has (mask, COORDSYS_CogoDistanceLocal) ? where.GetLocalW (transform)
                                                : where.GetWGS84W (transform);
}

namespace {

// Loads a position by `load` and keeps what is not of the coordinate.
template <class Load>
void KeepOther (position& out, const position& of, Load load) {
  const Str name = of.Name;
  position_Job* const job = of.SearchData;
  const bool isHorizontalOnly = of.HorizontalOnly;
  load ();
  out.Name = name;
  out.SearchData = job;
  out.HorizontalOnly = isHorizontalOnly;
}

}  // namespace

void cogoframe_LoadGeodetic (position& out, const coord_Local& coordinate, const position& of,
                             const Transform& transform, coordsys_CogoSettings mask) {
  KeepOther (out, of, [&] {
    if (Has (mask, COORDSYS_CogoDistanceLocal))
      out.LoadFromLocal (coordinate, &transform);
    else
      out.LoadFromWGS84 ({coordinate.Latitude, coordinate.Longitude, coordinate.Height},
                         &transform);
  });
}

void cogoframe_LoadGrid (position& out, const coord_CogoGrid& grid, const position& of,
                         const Transform& transform) {
  KeepOther (out, of, [&] { out.LoadFromCogoGrid (grid, transform); });
}

void cogoframe_FinishIntersection (position& out, const position& first, const position& second) {
  if (out.Original == COORD_NullType) return;
  out.HorizontalOnly = first.HorizontalOnly || second.HorizontalOnly;
  out.DropHeights ();
}

}  // namespace clxml
