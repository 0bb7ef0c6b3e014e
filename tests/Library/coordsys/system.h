// The parts of a coordinate system, as the tests of transforms set them up.
// Leans on GoogleTest and transfrm.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "Library/coordsys/transfrm.h"

namespace clxml::testing {

inline constexpr double null = MATHS_Null;
constexpr double Degrees (double degrees) { return degrees * CONSTANT_Pi / 180.0; }
constexpr double Seconds (double seconds) { return Degrees (seconds / 3600.0); }

// The parts of a transform, as a test sets them up.
struct System {
  uint16_t mask = 0;
  coordsys_Ellipsoid ellipsoid;
  coordsys_Projection projection;
  coordsys_Datum datum;
  coordsys_Plane plane;
  coordsys_Height height;
  coordsys_Corrections corrections;
  uint32_t options = 0;
  coordsys_Error error = COORDSYS_NoError;

  System& On (double a, double inverseFlattening) {
    mask |= COORDSYS_SetEllipsoid;
    ellipsoid = coordsys_Ellipsoid (a, 1.0 / inverseFlattening);
    return *this;
  }
  System& OnWGS84 () { return On (6378137.0, 298.257223563); }
  System& OnGRS80 () { return On (6378137.0, 298.257222101); }
  System& OnBessel () { return On (6377397.155, 299.1528128); }
  System& Projected (coordsys_ProjectionType type, double latitude = null, double longitude = null,
                     double north = null, double east = null, double scale = 1.0) {
    mask |= COORDSYS_SetProjection;
    projection.ProjectionType = type;
    projection.OriginLocal = coord_Local (Degrees (latitude), Degrees (longitude), null);
    if (maths_IsNull (latitude)) projection.OriginLocal = coord_Local ();
    projection.OriginGrid = coord_CorrectedGrid::FromNorthEastElevation (north, east, null);
    projection.Scale = scale;
    return *this;
  }
  System& Oriented (double first, double second = null) {
    projection.Orientation1 = maths_IsNull (first) ? null : Degrees (first);
    projection.Orientation2 = maths_IsNull (second) ? null : Degrees (second);
    return *this;
  }
  System& SevenParameters () {
    mask |= COORDSYS_SetDatum;
    datum.DatumType = COORDSYS_SevenParameter;
    datum.TranslationX = -598.1;
    datum.TranslationY = -73.7;
    datum.TranslationZ = -418.2;
    datum.RotationX = Seconds (0.202);
    datum.RotationY = Seconds (0.045);
    datum.RotationZ = Seconds (-2.455);
    datum.Scale = 1 - 6.7e-6;
    return *this;
  }
  System& Translated (double x, double y, double z) {
    mask |= COORDSYS_SetDatum;
    datum.DatumType = COORDSYS_ThreeParameter;
    datum.TranslationX = x;
    datum.TranslationY = y;
    datum.TranslationZ = z;
    return *this;
  }
  System& Calibrated (double north, double east) {
    mask |= COORDSYS_SetHorzAdjustment | COORDSYS_SetVertAdjustment;
    plane = {COORDSYS_ValidHorizontal, north, east, 1.25, -0.75, Seconds (30), 1.00002};
    height.HeightType = COORDSYS_InclinedPlane;
    height.OriginNorth = north;
    height.OriginEast = east;
    height.NorthAdjustment = 2e-5;
    height.EastAdjustment = -1e-5;
    height.ElevAdjustment = 0.4;
    return *this;
  }
  System& Facing (coordsys_GridOrientation orientation) {
    mask |= COORDSYS_SetCorrections;
    corrections.GridOrientation = orientation;
    return *this;
  }
  System& Grounded (coordsys_GroundScaleFactorType type, double factor, const coord_Local& at) {
    projection.GroundScale.Type = type;
    projection.GroundScale.Factor = factor;
    projection.GroundScale.ProjectLocation = at;
    return *this;
  }
  std::unique_ptr<Transform> Make () {
    return Transform_Create (mask, &ellipsoid, &projection, &datum, &plane, &height, &corrections,
                             options, &error);
  }
  bool Set (Transform& transform, unsigned bits) {
    return transform.Set (static_cast<uint16_t> (bits), &ellipsoid, &projection, &datum, &plane,
                          &height, &corrections, options, &error);
  }
};

inline void ExpectNear (const coord_Local& a, const coord_Local& b, double radians, double metres,
                        const char* name) {
  EXPECT_NEAR (a.Latitude, b.Latitude, radians) << name;
  EXPECT_NEAR (a.Longitude, b.Longitude, radians) << name;
  EXPECT_NEAR (a.Height, b.Height, metres) << name;
}
inline void ExpectNear (const coord_CogoGrid& a, const coord_CogoGrid& b, double metres,
                        const char* name) {
  EXPECT_NEAR (a.North, b.North, metres) << name;
  EXPECT_NEAR (a.East, b.East, metres) << name;
  EXPECT_NEAR (a.Elevation, b.Elevation, metres) << name;
}

}  // namespace clxml::testing
