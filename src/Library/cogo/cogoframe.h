// The frame in which a mask computes.
// The geodetic form, the ellipsoid and the plane step that forward, inverse and intersections
// share; for the sources of this room alone. Leans on cogo and position.
#pragma once

#include "Library/cogo/cogo.h"
#include "Library/coords/coord.h"

namespace clxml {

/// True when distances of the mask are computed on the ellipsoid.
bool cogoframe_IsEllipsoid (const Transform& transform, coordsys_CogoSettings mask);

/// The position in the local datum when the mask has COORDSYS_CogoDistanceLocal, in WGS84
/// otherwise; one class serves for both, as they have the same fields.
coord_Local cogoframe_Geodetic (position& where, const Transform& transform,
                                coordsys_CogoSettings mask);
/// The ellipsoid of that datum at the position, and W there.
coordsys_Ellipsoid cogoframe_Ellipsoid (position& where, const Transform& transform,
                                        coordsys_CogoSettings mask);
double cogoframe_W (position& where, const Transform& transform, coordsys_CogoSettings mask);

/// Loads out from a coordinate of that datum, or from a cogo grid; name, job and HorizontalOnly are
/// those of `of`, which may be out itself.
void cogoframe_LoadGeodetic (position& out, const coord_Local& coordinate, const position& of,
                             const Transform& transform, coordsys_CogoSettings mask);
void cogoframe_LoadGrid (position& out, const coord_CogoGrid& grid, const position& of,
                         const Transform& transform);

/// Where two lines of the plane meet, without an elevation; outs null when they do not.
cogo_Result cogoframe_PlaneIntersect (const coord_CogoGrid& first, double firstAzimuth,
                                      const coord_CogoGrid& second, double secondAzimuth,
                                      coord_CogoGrid& out);

/// The ellipsoid with another radius and the same flattening.
inline coordsys_Ellipsoid cogoframe_WithRadius (const coordsys_Ellipsoid& ellipsoid,
                                                double radius) {
  return {radius, ellipsoid.Flattening};
}
/// True when both parameters are known.
inline bool cogoframe_IsUsable (const coordsys_Ellipsoid& ellipsoid) {
  return !maths_IsNull (ellipsoid.EarthRadius) && !maths_IsNull (ellipsoid.Flattening);
}

/// Makes an intersection known as horizontal only when one of its sources is, and drops its heights
/// then.
void cogoframe_FinishIntersection (position& out, const position& first, const position& second);

}  // namespace clxml
