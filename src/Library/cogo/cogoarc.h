// Circular arcs.
// The conversions between radius, angle and length, a point on an arc and a point against one, and
// the solver of a stored arc. Leans on cogo, position and the record of an arc.
#pragma once

#include <functional>

#include "Library/cogo/cogo.h"

namespace clxml {

class db_Arc;
class position_Job;
class Str;

/// radius * angle; null for a null.
double cogo_ArcLength (double radius, double angle);
/// length / radius in 0 to 2 pi; null for a null, a radius of 0, and a quotient that does not lie
/// strictly between -2 pi and 2 pi.
double cogo_ArcAngle (double radius, double length);
/// The straight distance between the ends of an arc of that length; null where its angle is.
double cogo_ArcChord (double radius, double length);

/// The point at a length along an arc from its start (negative: before it). centreAzimuth is the
/// azimuth from the centre to the start; the height is the start's, raised by the slope (an angle;
/// null for none) over the length. Without an azimuth or an angle the point has no horizontal part.
void cogo_ArcPoint (bool isLeftHand, position& start, position& centre, const Transform& transform,
                    double radius, double centreAzimuth, double slope, double length, position& out,
                    coordsys_CogoSettings mask);

/// A point against an arc: its foot on the arc, the azimuth from the centre to the point, the
/// length along the arc (negative before the start), the offset and the height difference from the
/// arc's shifted line. centreAzimuth is the azimuth from the centre to the start. The part of the
/// circle that the arc leaves unused belongs half to its start, half to its end. Offsets are
/// positive to the right of the arc's own direction.
cogo_Result cogo_ArcStationOffset (bool isLeftHand, position& start, const Transform& transform,
                                   position& centre, double centreAzimuth, double totalAngle,
                                   double radius, double horizontalShift, double verticalShift,
                                   position& point, position& foot, double& pointAzimuth,
                                   double& along, double& offset, double& heightDifference,
                                   coordsys_CogoSettings mask);

/// The arc of a radius above zero ("radius > 0.0") between two tangents that meet in an
/// intersection point: the azimuths run from there to the tangent points. Gives the deflection, the
/// centre, the points on the first and on the second tangent, and which way the arc turns from
/// first to second. Tangents in one line (within 0.01 arc second) give the intersection for all
/// three points. At most 20 rounds until the centre's distance from the second tangent is the
/// radius within 0.0005 m.
cogo_Result cogo_TangentArc (position& intersection, const Transform& transform,
                             double firstAzimuth, double secondAzimuth, double radius,
                             double& deflection, position& centre, position& first,
                             position& second, dbentity_ArcDirection& direction,
                             coordsys_CogoSettings mask);

/// Gives the intersection point of an arc's tangents the mean height of the arc's ends, in the form
/// that the mask's distances name. Where an end has no height the intersection is HorizontalOnly;
/// on a scale-only transform it then stays as it is.
void cogo_IntersectionHeight (position& first, position& second, position& intersection,
                              const Transform& transform, coordsys_CogoSettings mask);

/// Gives out the position of the point of that name; false when there is none.
using cogoarc_PointLookUp = std::function<bool (const Str& name, position& out)>;

/// Solves a stored arc: from its keyed fields, by its Method, it fills in the others, and gives its
/// first and second point, its centre, the intersection of its end tangents and the azimuth from
/// the centre to the first point. mask may be 0: then cogo_SystemFor chooses one for each pair of
/// positions. Returns 1 (COGO_NoBracket) for a point that cannot be found, a keyed number that is
/// null and, between two tangents, a radius of 0 or below; COGO_RadiiDiffer when the ends lie at
/// different distances from the centre (0.001 m or more); otherwise the code of the operation that
/// failed. Asserts "jobfile" when there is no look-up, and "Invalid method" for a method outside
/// the enumeration; both return 1.
cogo_Result cogoarc_Solve (const cogoarc_PointLookUp& lookUp, const Transform& transform,
                           db_Arc& arc, position& first, position& second, position& centre,
                           position& intersection, double& centreAzimuth,
                           coordsys_CogoSettings mask);
/// The same for an arc of a job: its points are the best measured points of their names, under the
/// job's current transform. Asserts "jobfile", and returns 1, without a job.
cogo_Result cogoarc_Solve (position_Job* job, db_Arc& arc, position& first, position& second,
                           position& centre, position& intersection, double& centreAzimuth,
                           coordsys_CogoSettings mask);

}  // namespace clxml
