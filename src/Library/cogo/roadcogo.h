// Geometry of road elements on plain coordinates.
// Where a station of a straight, an arc or a spiral lies, and how high a vertical curve is there.
// Leans on cogo, cogospiral and position.
#pragma once

#include "Library/cogo/cogo.h"
#include "numerics/maths.h"

namespace clxml {

class coord_CorrectedGrid;

/// A point of a long section: a station along the road and an elevation, metres.
struct VerticalPosition {
  double Station = MATHS_Null;
  double Elevation = MATHS_Null;

  /// True when one of the two is null.
  bool IsNull () const { return maths_IsNull (Station) || maths_IsNull (Elevation); }
  friend bool operator== (const VerticalPosition&, const VerticalPosition&) = default;
};

// Origins and results are grid coordinates as the road stores them; the transform and the mask say
// how an azimuth and a distance turn into one. The tangent azimuth at the origin is given.

/// The polar step: the coordinate at an azimuth and a distance, at the origin's elevation.
void roadcogo_Straight (const Transform& transform, coordsys_CogoSettings mask,
                        const coord_CorrectedGrid& origin, double azimuth, double distance,
                        coord_CorrectedGrid& out);
/// Azimuth and distance between two coordinates; two equal ones have no azimuth.
void roadcogo_Inverse (const Transform& transform, coordsys_CogoSettings mask,
                       const coord_CorrectedGrid& from, const coord_CorrectedGrid& to,
                       double& azimuth, double& distance);

/// The coordinate and the tangent azimuth at a distance along an arc of that length, deflection and
/// radius. A distance above the length asserts "DistanceAlong <= Length" and is answered on the
/// circle; a length of 0 is answered at the origin.
void roadcogo_ArcPoint (const coord_CorrectedGrid& origin, const Transform& transform,
                        coordsys_CogoSettings mask, double azimuth, double totalAngle,
                        double radius, double length, bool isClockwise, double distance,
                        coord_CorrectedGrid& out, double& outAzimuth);

/// Deflection and offsets along a spiral, as cogo_SpiralFromTangent at the resolution 0.0001 m;
/// equal radii are a circular arc, a length or a small radius of 0 gives zeros.
void roadcogo_SpiralOffsets (double small, double large, double length, double distance,
                             double& delta, double& y, double& x);
/// The coordinate and the tangent azimuth, forward along the road, at a distance along a spiral.
/// The origin of an entry spiral is its start and the azimuth its tangent there; the origin of an
/// exit spiral is its end, and the azimuth the reversed tangent there.
void roadcogo_SpiralPoint (const coord_CorrectedGrid& origin, const Transform& transform,
                           coordsys_CogoSettings mask, double azimuth, double small, double large,
                           double length, bool isClockwise, bool isEntry, double distance,
                           coord_CorrectedGrid& out, double& outAzimuth);

/// The elevation of a circular vertical curve at a station, on the side of its centre where the
/// intersection point lies; null beyond the circle.
void roadcogo_ArcElevation (const VerticalPosition& centre, const VerticalPosition& intersection,
                            double radius, double station, double& elevation);
/// The elevation of a vertical parabola at a station, from its start, intersection and end points
/// and its lengths before and behind the intersection (metres of station). Two lengths of 0 are two
/// straight grades. Null for nulls.
void roadcogo_ParabolaElevation (const VerticalPosition& start,
                                 const VerticalPosition& intersection, const VerticalPosition& end,
                                 double lengthIn, double lengthOut, double station,
                                 double& elevation);
/// The value at a station on the straight line through two stations; null for a null elevation.
/// Equal stations give the elevation that both have, null when they differ.
double roadcogo_Interpolate (double firstElevation, double secondElevation, double firstStation,
                             double secondStation, double station);

}  // namespace clxml
