// Coordinate geometry between two positions.
// Forward and inverse, a point against a line, and the three classic intersections, on the plane
// of the grid or on the ellipsoid, as a mask of method bits says; the ellipsoid's own formulas are
// in coords/cogoellipsoid.h. Leans on position, transfrm and maths.
#pragma once

#include "Library/records/dbEnum.h"

namespace clxml {

class coord_GridDeltas;
class coord_Polar;
class position;
class Transform;

// Angles are radians, azimuths clockwise from north in 0 to 2 pi, distances and heights metres.
// A number that is not known is MATHS_Null and passes through every operation as null. A position
// that is asked for its forms remembers them, so none is const, and one may serve as input and as
// output of the same call unless it is said otherwise. Every operation asserts that its mask is not
// 0 ("!system.IsNull()"); a mask that is used for distances has one distance bit alone.
// On a transform whose projection is COORDSYS_ScaleOnly there is no ellipsoid, and everything is
// computed on the plane.

/// How an operation that can fail ended. Its outs are cleared when it failed.
enum cogo_Result : int {
  COGO_Ok = 0,              ///< solved
  COGO_NoBracket = 1,       ///< the search for an intersection has no sign change
  COGO_Parallel = 2,        ///< the two lines have the same or the opposite azimuth
  COGO_NullInput = 3,       ///< a number or a position needed is null
  COGO_Coincident = 4,      ///< the two centres coincide
  COGO_CircleInside = 5,    ///< one circle lies wholly inside the other
  COGO_CirclesApart = 6,    ///< the two circles do not reach each other
  COGO_NoIntersection = 7,  ///< the line does not reach the circle
  COGO_NotConverged = 8,    ///< the iteration ran out of rounds
  COGO_Behind = 9,          ///< the point lies behind the perpendicular at the line's start
  COGO_Degenerate = 10,     ///< a radius is zero, or a step of an iteration gave null
  COGO_RadiiDiffer = 11,    ///< the ends of an arc are not at one distance from its centre
};

/// The mask of all road work: grid azimuths and distances, elevations.
inline constexpr coordsys_CogoSettings COGO_RoadSystem =
    COORDSYS_CogoAzimuthGrid | COORDSYS_CogoDistanceGrid | COORDSYS_CogoEllipsoidDistances |
    COORDSYS_CogoOrthoHeights;

/// Distances this close are one, metres: the convergence test of all iterations on distances.
inline constexpr double COGO_SameDistance = 0.0005;
/// Angles closer than this are one: 0.01 arc second in radians.
inline constexpr double COGO_SameAngle = 4.84813681109536e-8;
/// A cosine below this in size means a vertical line, which has no tangent.
inline constexpr double COGO_LeastCosine = 1e-7;

/// True when neither is null and they differ by less than 0.0005 m.
bool cogo_SameDistance (double a, double b);
/// The same with 0.005 m.
bool cogo_SameDistanceCoarse (double a, double b);
/// True when neither is null and the smallest angle between them is below 0.01 arc second.
bool cogo_AnglesEqual (double a, double b);

/// The clockwise turn from a to b: b - a in 0 to 2 pi; null for a null.
double AngleTurn (double a, double b);
/// The smallest angle between a and b, 0 to pi; null for a null.
double AngleSmallest (double a, double b);
/// a - b in -pi to pi; null for a null.
double AngleSigned (double a, double b);

/// The height that a slope (an angle, radians) gives over a distance: tan (slope) * distance, null
/// for a null and for a slope whose cosine is below COGO_LeastCosine in size.
double cogo_SlopeHeight (double slope, double distance);

/// Asserts what a valid mask holds: an azimuth bit, a distance bit, exactly one of ground and
/// ellipsoid distances, and exactly one of ellipsoid and orthometric heights.
void cogo_CheckSystem (coordsys_CogoSettings mask);
/// True for a transform without an ellipsoid: its projection is COORDSYS_ScaleOnly.
bool cogo_IsScaleOnly (const Transform& transform);
/// The mask that relates two positions when no one gives one: grid azimuths with the distances that
/// the transform's corrections ask for where it projects, or both positions are stored on the grid;
/// otherwise the local datum where one of them is stored there or the transform has a datum, WGS84
/// where it has none. Heights are ellipsoidal where the transform has a datum and a projection and
/// no vertical adjustment, elevations otherwise.
coordsys_CogoSettings cogo_SystemFor (const position& first, const position& second,
                                      const Transform& transform);

/// The position at an azimuth, a horizontal distance and a height difference from start. Grid work
/// gives a grid position; otherwise a local or WGS84 one, as the mask's distances say. A null
/// azimuth or distance, or a start without a horizontal part, gives a position without one.
/// On the plane without COORDSYS_CogoDistanceGrid the distance is scaled by the transform's factor,
/// and COORDSYS_CogoEllipsoidDistances gives null. On the ellipsoid the azimuth and distance wanted
/// are met within 0.01 arc second and 5e-05 m, in at most five rounds; a last candidate more than a
/// metre off gives null.
/// A distance below 0.0005 m in size returns the start, one above 1,000,000 m null; a negative one
/// runs the other way.
void cogo_Forward (position& start, const Transform& transform, double azimuth, double distance,
                   double heightDifference, position& out, coordsys_CogoSettings mask);
/// cogo_Forward by the azimuth, distance and height difference of a polar value.
void cogo_ForwardPolar (position& start, const Transform& transform, const coord_Polar& polar,
                        position& out, coordsys_CogoSettings mask);
/// cogo_Forward by a vertical angle above the horizon in place of a height difference; a cosine
/// below COGO_LeastCosine in size gives the null position.
void cogo_ForwardVertical (position& start, const Transform& transform, double azimuth,
                           double distance, double verticalAngle, position& out,
                           coordsys_CogoSettings mask);

/// Azimuth and horizontal distance from one position to another; nulls where a position has no
/// horizontal part. Two equal positions have the distance 0.0 and no azimuth. On the plane the
/// azimuth is null without COORDSYS_CogoAzimuthGrid.
void cogo_Inverse (position& from, position& to, const Transform& transform, double& azimuth,
                   double& distance, coordsys_CogoSettings mask);
/// cogo_Inverse, with the height difference (to minus from, of the heights that the mask names) and
/// the slope distance; both are null where a position has no height.
void cogo_InverseHeights (position& from, position& to, const Transform& transform, double& azimuth,
                          double& distance, double& heightDifference, double& slopeDistance,
                          coordsys_CogoSettings mask);
/// cogo_InverseHeights as a polar value.
void cogo_InversePolar (position& from, position& to, const Transform& transform,
                        coord_Polar& polar, coordsys_CogoSettings mask);
/// The distance of cogo_Inverse.
void cogo_Distance (position& from, position& to, const Transform& transform, double& distance,
                    coordsys_CogoSettings mask);
/// The azimuth of cogo_Inverse.
void cogo_Azimuth (position& from, position& to, const Transform& transform, double& azimuth,
                   coordsys_CogoSettings mask);
/// North, east and elevation differences, to minus from, of the cogo grid.
void cogo_GridDeltas (position& from, position& to, const Transform& transform,
                      coord_GridDeltas& deltas);

/// Raises the height that the mask's distance bit names (the grid elevation on a scale-only
/// transform) by the difference; a position without that height stays as it is. Any other
/// combination of distance bits asserts "Unknown elevation system".
void cogo_ApplyHeight (position& where, const Transform& transform, double heightDifference,
                       coordsys_CogoSettings mask);
/// Copies the height of the first position to the second, in the form that cogo_ApplyHeight raises.
/// Does nothing where the first has no height. A grid position that has no WGS84 form for want of
/// an elevation takes the elevation of the first too.
void cogo_CopyHeight (position& from, position& to, const Transform& transform,
                      coordsys_CogoSettings mask);
/// The mean height of two positions in the frame of the mask, with the transform's project height
/// for a missing one. Asserts that exactly one of ellipsoid and ground distances is set.
double cogo_MeanHeight (position& first, position& second, const Transform& transform,
                        coordsys_CogoSettings mask);
/// Copies of two positions at one height, as an intersection on the ellipsoid needs them: their
/// mean height where there is one; a position that has none of its own is HorizontalOnly.
void cogo_CommonHeights (position& first, position& second, const Transform& transform,
                         position& firstOut, position& secondOut, coordsys_CogoSettings mask);

/// A point against the line through start with an azimuth and a slope (an angle above the horizon;
/// null for none): the foot of the perpendicular, the line's azimuth there, the distance along the
/// line (negative behind the start), the offset (positive to the right) and the height of the point
/// above the foot. A point within 0.0005 m of the start is at 0.0 and 0.0. At most 20 rounds until
/// the correction is below 0.0005 m, then COGO_NotConverged.
cogo_Result cogo_StationOffset (position& start, const Transform& transform, double azimuth,
                                double slope, position& point, position& foot, double& footAzimuth,
                                double& along, double& offset, double& height,
                                coordsys_CogoSettings mask);
/// The same against a line beside it, shifted to the right and upwards (metres, null for none): the
/// offset and the height are measured from the shifted line, the foot stays on the line itself.
cogo_Result cogo_StationOffsetShifted (position& start, const Transform& transform, double azimuth,
                                       double slope, double horizontalShift, double verticalShift,
                                       position& point, position& foot, double& footAzimuth,
                                       double& along, double& offset, double& height,
                                       coordsys_CogoSettings mask);

/// Where a line meets a circle: first along the azimuth, second the other way, counted from the
/// foot of the centre's perpendicular. A line that touches within 0.0005 m has one point and leaves
/// the second cleared. At most 20 rounds for each.
cogo_Result cogo_AzimuthDistanceIntersect (position& start, double azimuth, position& centre,
                                           const Transform& transform, double radius,
                                           position& first, position& second,
                                           coordsys_CogoSettings mask);
/// Where two circles meet: first to the right of the line from the first centre to the second,
/// second to its left. Circles that touch have one point and leave the second cleared. A radius
/// below 0 reaches no other circle (COGO_CirclesApart). At most 20 rounds for each.
cogo_Result cogo_DistanceDistanceIntersect (position& firstCentre, double firstRadius,
                                            position& secondCentre, double secondRadius,
                                            const Transform& transform, position& first,
                                            position& second, coordsys_CogoSettings mask);
/// Where two lines meet, in front of or behind their points: on the plane without an elevation, on
/// the ellipsoid at the first point's height. The lines are geodesics, and the answer is theirs,
/// only without COORDSYS_CogoAzimuthGrid; then at most 20 rounds until the second azimuth is met
/// within 0.01 arc second, or its line within 1e-7 m.
cogo_Result cogo_AzimuthAzimuthIntersect (position& firstPoint, double firstAzimuth,
                                          position& secondPoint, const Transform& transform,
                                          double secondAzimuth, position& out,
                                          coordsys_CogoSettings mask);

/// COGO_Behind when `to` lies behind the perpendicular to the azimuth through `from`, otherwise,
/// and for nulls, COGO_Ok.
cogo_Result cogo_IsBehind (position& from, double azimuth, position& to, const Transform& transform,
                           coordsys_CogoSettings mask);

}  // namespace clxml
