// The neighbourhood adjustment of a computed grid position.
// Spreads the residuals of the control points of a calibration or of a station setup over the
// positions around them, by powers of the distance.
#pragma once

#include "Library/coords/coord.h"

namespace clxml {

class position;
class Transform;

/// Adds the weighted mean of the residuals of the control around the point to Grid, and clears the
/// POSITION_DoneLocal bit, since Local no longer agrees. A satellite form uses the control points
/// of the newest calibration, a Circle or an MTA those of its station setup; other forms have no
/// adjustment. Does nothing without a job, without NeighbourhoodAdjustment in the transform's
/// corrections, for a position with HasStationSetup and for a Grid without a horizontal part, and
/// with fewer than three control points.
void NeighbourhoodAdjustment (position& point, const Transform& transform);

/// Subtracts the deltas at the point from Grid, to get back the grid before the adjustment. They
/// are computed at the adjusted position.
void RemoveNeighbourhoodAdjustment (position& point, const Transform& transform);

}  // namespace clxml
