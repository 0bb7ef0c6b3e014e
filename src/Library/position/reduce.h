// Between the forms of an observation.
// The part of observation reduction that needs no instrument: turning a circle into an azimuth, and
// slope distances into horizontal and vertical ones and back. Leans on the coordinate values.
#pragma once

#include "Library/coords/coord.h"

namespace clxml {

/// Azimuth = horizontal circle - backBearingCircle + azimuth, within 0 to 2 pi; null if one of the
/// three is. azimuth is that of the backsight, radians. The distances are copied.
coord_Polar reduce_TurnToPolar (const coord_Unturned& unturned, double backBearingCircle,
                                double azimuth);
/// Horizontal and vertical distance from the zenith angle and the slope distance; both null if one
/// of these is.
coord_Polar reduce_GroundToPolar (const coord_Ground& ground);
/// The reverse. A shot that is vertical to a thousandth of a degree has its slope distance from the
/// vertical one alone. Angle and slope distance are null if one of the distances is.
coord_Ground reduce_PolarToGround (const coord_Polar& polar);

}  // namespace clxml
