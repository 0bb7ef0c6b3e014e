// The steps that the elements of a horizontal alignment are computed with.
// Coordinate geometry under CurrentTransformation that never gives an infinity: what is not finite
// is null. Leans on coord and cogo.
#pragma once

#include "Library/cogo/cogo.h"
#include "Library/coords/coord.h"

namespace clxml {

/// The coordinate, at the origin's elevation, at an azimuth and a distance; null for a null.
coord_CorrectedGrid road_Forward (const coord_CorrectedGrid& origin, double azimuth,
                                  double distance);
/// Azimuth and distance between two coordinates; null for a null, and two that are the same have no
/// azimuth.
void road_Inverse (const coord_CorrectedGrid& from, const coord_CorrectedGrid& to, double& azimuth,
                   double& distance);
/// The coordinate, null in each number that is not finite.
coord_CorrectedGrid road_Finite (const coord_CorrectedGrid& coordinate);
/// The azimuth plus (clockwise) or minus an angle, in [0, 2π); null for a null.
double road_Turned (double azimuth, double angle, bool isClockwise);
/// An element's answer from its distance along and its offset; null in both unless the result is
/// COGO_Ok and the station is known.
coord_StationOffset road_StationOffset (cogo_Result result, double startChainage, double along,
                                        double offset);

}  // namespace clxml
