// What tests of coordinate geometry stand on.
// Transforms of each kind, positions made from values, and answers as values. Leans on GoogleTest,
// position and transfrm.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <tuple>

#include "Library/cogo/cogo.h"
#include "Library/coords/coord.h"
#include "Library/coordsys/transfrm.h"
#include "Library/position/position.h"
#include "support/hearing.h"

namespace clxml::testing {

inline constexpr double null = MATHS_Null;
inline constexpr double pi = CONSTANT_Pi;
inline constexpr double degree = CONSTANT_Pi / 180.0;
inline constexpr coordsys_CogoSettings grid = COGO_RoadSystem;
inline constexpr coordsys_CogoSettings wgs84 =
    COORDSYS_CogoAzimuthWGS84 | COORDSYS_CogoDistanceWGS84 | COORDSYS_CogoEllipsoidDistances |
    COORDSYS_CogoEllipsoidHeights;
inline constexpr coordsys_CogoSettings local =
    COORDSYS_CogoAzimuthLocal | COORDSYS_CogoDistanceLocal | COORDSYS_CogoEllipsoidDistances |
    COORDSYS_CogoEllipsoidHeights;
/// Of a job that shows ellipsoid distances with grid azimuths.
inline constexpr coordsys_CogoSettings ofJob =
    COORDSYS_CogoAzimuthGrid | COORDSYS_CogoDistanceLocal | COORDSYS_CogoEllipsoidDistances |
    COORDSYS_CogoOrthoHeights;

/// The same with distances on WGS84.
inline constexpr coordsys_CogoSettings onWGS84 =
    COORDSYS_CogoAzimuthGrid | COORDSYS_CogoDistanceWGS84 | COORDSYS_CogoEllipsoidDistances |
    COORDSYS_CogoOrthoHeights;

/// Corrections and a scale: everything is computed on the plane.
inline std::unique_ptr<Transform> Plane (
    double scale = 1.0, bool southAzimuth = false,
    coordsys_GridOrientation orientation = COORDSYS_IncreasingNorthEast) {
  coordsys_Corrections corrections;
  corrections.Distances = COORDSYS_GridDistance;
  corrections.SouthAzimuth = southAzimuth;
  corrections.GridOrientation = orientation;
  coordsys_Projection projection;
  projection.Scale = scale;
  return std::make_unique<Transform> (
      COORDSYS_SetCorrections | COORDSYS_SetProjection | COORDSYS_SetScaleOnly, nullptr,
      &projection, nullptr, nullptr, nullptr, &corrections, 426);
}

/// A transverse Mercator on WGS84 about 47 north, 8 east, without a datum shift; elevations rise
/// over heights by northTilt a metre to the north.
inline std::unique_ptr<Transform> Mercator (bool southAzimuth = false, double northTilt = 0.0) {
  coordsys_Corrections corrections;
  corrections.Distances = COORDSYS_EllipsoidDistance;
  corrections.SouthAzimuth = southAzimuth;
  coordsys_Projection projection;
  projection.ProjectionType = COORDSYS_TransverseMercator;
  projection.OriginLocal = coord_Local (47.0 * degree, 8.0 * degree, 0.0);
  projection.OriginGrid = coord_CorrectedGrid (200000.0, 600000.0, 0.0);
  projection.Scale = 0.9996;
  const coordsys_Datum datum;
  coordsys_Height tilt;
  tilt.HeightType = COORDSYS_InclinedPlane;
  tilt.OriginNorth = 200000.0;
  tilt.OriginEast = 600000.0;
  tilt.NorthAdjustment = northTilt;
  tilt.EastAdjustment = tilt.ElevAdjustment = 0.0;
  const int parts = COORDSYS_SetCorrections | COORDSYS_SetEllipsoid | COORDSYS_SetProjection |
                    COORDSYS_SetDatum | (northTilt != 0.0 ? COORDSYS_SetVertAdjustment : 0);
  return std::make_unique<Transform> (static_cast<uint16_t> (parts), &coordsys_WGS84Ellipsoid (),
                                      &projection, &datum, nullptr, &tilt, &corrections, 426);
}

inline position At (const Transform& transform, double north, double east, double elevation = 0.0) {
  position out;
  out.LoadFromCogoGrid (coord_CogoGrid (north, east, elevation), transform);
  return out;
}

/// Degrees, in the datum of the mask.
inline position AtDegrees (const Transform& transform, coordsys_CogoSettings mask, double latitude,
                           double longitude, double height = 0.0) {
  position out;
  if ((mask & COORDSYS_CogoDistanceWGS84) != 0)
    out.LoadFromWGS84 ({latitude * degree, longitude * degree, height}, &transform);
  else
    out.LoadFromLocal ({latitude * degree, longitude * degree, height}, &transform);
  return out;
}

/// Near the expected value, or null as it is.
inline void ExpectNear (double found, double expected, double tolerance, const std::string& what) {
  if (maths_IsNull (expected) || maths_IsNull (found))
    EXPECT_EQ (found, expected) << what;
  else
    EXPECT_NEAR (found, expected, tolerance) << what;
}

inline void ExpectGrid (position where, const Transform& transform, double north, double east,
                        double elevation, const std::string& what, double tolerance = 1e-9) {
  const coord_CogoGrid found = where.GetCogoGrid (transform);
  ExpectNear (found.North, north, tolerance, what + " north");
  ExpectNear (found.East, east, tolerance, what + " east");
  ExpectNear (found.Elevation, elevation, tolerance, what + " elevation");
}

/// Metres between a position and a point in degrees; there is no datum shift.
inline double MetresFrom (position where, const Transform& transform, double latitude,
                          double longitude) {
  const coord_WGS84 here = where.GetWGS84 (transform);
  return here.NullHorizontal () ? null
                                : 6.37e6 * std::hypot (here.Latitude - latitude * degree,
                                                       (here.Longitude - longitude * degree) *
                                                           std::cos (here.Latitude));
}

/// What a point against another, a line, an arc or a spiral comes to.
struct Against {
  cogo_Result result = COGO_Ok;
  double azimuth = 0.0, along = 0.0, offset = 0.0, height = 0.0;
  position foot;

  bool IsCleared () const { return foot.Original == COORD_NullType && maths_IsNull (along); }
};

/// along is the distance, offset the slope distance.
inline Against Inverse (position from, position to, const Transform& transform,
                        coordsys_CogoSettings mask) {
  Against a;
  cogo_InverseHeights (from, to, transform, a.azimuth, a.along, a.height, a.offset, mask);
  return a;
}

}  // namespace clxml::testing
