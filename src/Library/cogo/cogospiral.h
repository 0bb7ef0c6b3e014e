// Transition curves.
// The clothoid, whose curvature grows linearly with distance, on positions and a mask. Leans on
// cogo and position.
#pragma once

#include "Library/cogo/cogo.h"

namespace clxml {

/// The four ways to run through a spiral. An exit spiral is computed on the same clothoid as an
/// entry spiral, walked backwards from its far end.
enum SpiralType : int {
  ExitRight = 0,   ///< from the small radius to the large one, curving right
  EntryRight = 1,  ///< from the large radius to the small one, curving right
  EntryLeft = 2,   ///< from the large radius to the small one, curving left
  ExitLeft = 3,    ///< from the small radius to the large one, curving left
};

/// Offsets of the clothoid with the constant A (squareA = A * A, square metres) at distance s from
/// its own start: x along the tangent there, y across it, metres. The power series of the Fresnel
/// integrals (Abramowitz and Stegun, Handbook of Mathematical Functions, 1964, 7.3.11 and 7.3.13,
/// with u = s^2 / (2 A^2)), each summed until a term is not above the resolution (metres), and at
/// most to 30 terms.
void cogo_SpiralSeries (double s, double squareA, double resolution, double& y, double& x);

/// Deflection (radians, unsigned) and offsets at a distance along a spiral from its end of large
/// radius, x along the tangent there and y across it. Radii, length and distance in metres; a null
/// `large` is an infinite radius. Equal radii are a circular arc. A distance or a small radius of 0
/// gives zeros. Nulls and a distance outside 0 to length are the caller's fault
/// ("!maths_IsNull (length)" and so on); nulls give nulls.
void cogo_SpiralFromTangent (double small, double large, double length, double spiralDistance,
                             double resolution, double& delta, double& x, double& y);

/// The same for any distance: one outside the spiral is answered on the clothoid run on. Nulls give
/// nulls, and so does whatever has no finite value.
void cogo_SpiralOffsets (double small, double large, double length, double distance,
                         double resolution, double& delta, double& x, double& y);

/// Deflection (positive to the right) and offsets at a distance along a spiral from its start, x
/// along the tangent at the start, y to its right. deltaZero, x0, y0 are those of
/// cogo_SpiralFromTangent at the full length. A distance below 0 lies on the tangent before the
/// start, one beyond the length on the tangent behind the end. A null length, small radius,
/// distance or resolution leaves nulls.
void cogo_SpiralPoint (SpiralType type, double small, double large, double length, double distance,
                       double resolution, double deltaZero, double x0, double y0, double& delta,
                       double& x, double& y);

/// The position at a distance along a spiral that starts at origin with a tangent azimuth, and the
/// tangent azimuth there. The height is the origin's, raised by the slope (an angle; null for none)
/// over the distance. Nulls where cogo_SpiralPoint has them or the azimuth is null; asserts
/// "!method.IsNull()".
void cogo_SpiralPosition (SpiralType type, position& origin, const Transform& transform,
                          double azimuth, double small, double large, double length, double slope,
                          double resolution, double distance, double deltaZero, double x0,
                          double y0, position& out, double& outAzimuth, coordsys_CogoSettings mask);

/// A point against a spiral: its distance along, its offset (positive to the right), its height
/// above the foot, the tangent azimuth at the foot and the foot. At most 40 rounds, each half of
/// the way that is left, until a step is below the resolution (metres); then COGO_NotConverged.
cogo_Result cogo_SpiralStationOffset (SpiralType type, position& origin, const Transform& transform,
                                      double azimuth, double small, double large, double length,
                                      double slope, double resolution, double deltaZero, double x0,
                                      double y0, position& point, double& along, double& offset,
                                      double& heightDifference, double& tangentAzimuth,
                                      position& foot, coordsys_CogoSettings mask);

}  // namespace clxml
