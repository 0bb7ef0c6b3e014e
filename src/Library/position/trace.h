// A record of how one position was computed.
// For explanations: every number between the raw reading and the grid, and why a coordinate could
// not be computed. Without a trace the reduction does no more than test one pointer.
#pragma once

#include <vector>

#include "Library/coords/coord.h"
#include "Library/coordsys/transfrm.h"
#include "Library/position/position.h"
#include "Library/position/reduce.h"
#include "str.h"

namespace clxml {

/// Why a coordinate could not be computed.
enum class position_Reason {
  NoMeasurement,             ///< the record has no measurement
  NoBaseName,                ///< the base's record is missing or has no name
  BaseNotFound,              ///< no live point has the name of the base
  BaseWithoutPosition,       ///< the base has no coordinate in the frame that is needed
  CircularReference,         ///< a point depends on itself
  ChainTooLong,              ///< more than 50 points depend on each other
  SetupMissing,              ///< station, instrument, target or back bearing record missing
  LaserSetupMissing,         ///< declination, laser height or target height record missing
  NoDistanceFrame,           ///< the observation's settings have no distance bit
  NoReading,                 ///< the observation has no circle reading and no distance
  NoBacksightName,           ///< the back bearing names no backsight
  BacksightNotFound,         ///< no observation of the backsight that does not depend on it
  BacksightWithoutPosition,  ///< the backsight has no coordinate
  NoAzimuth,                 ///< base and backsight have the same position
  NoReferenceAntenna,        ///< the height of the reference's antenna is not known
  NoTransform,               ///< the coordinate system cannot convert the coordinate
};

/// One failed step. Point is the point that was computed, Name the point or record it needed.
struct position_Failure {
  position_Reason Reason;
  Str Name;
  Str Point;
};
/// The failure as a sentence without a full stop, as "backsight BS1 has no position".
Str position_ToText (const position_Failure& failure);

/// Where the azimuth of a setup came from.
enum class position_AzimuthSource { None, StationSetup, KeyedIn, ReverseOfOwn, ToBacksight };

/// The steps of one position. A value that was not reached is null.
struct position_Trace {
  // The reading of a Circle or MTA. Each is the reading after the correction.
  bool HasReading = false;
  reduce_Setup Setup;  ///< prism, PPM, refraction, true heights, scale factor
  coord_Circle Raw, AfterPrism, AfterPPM, AfterRefraction;
  coord_Corrected Face1;  ///< the corrected reading on face 1
  coord_Unturned Unturned;
  double BackBearingCircle = MATHS_Null;
  // The orientation.
  Str Base, Backsight;
  position_AzimuthSource AzimuthSource = position_AzimuthSource::None;
  double Azimuth = MATHS_Null;        ///< from the base to the backsight
  coord_CorrectedGrid BacksightGrid;  ///< for ToBacksight
  laser_Environment Laser;            ///< of a LaserOffset
  // From the base to the point.
  position_Frame Frame = position_Frame::None;
  coord_CorrectedGrid BaseGrid;
  coord_Polar Polar;
  coord_CorrectedGrid Target;      ///< the grid before the neighbourhood adjustment
  coord_GridDeltas Neighbourhood;  ///< null for none
  int NeighbourCount = 0;
  coord_CorrectedGrid Grid;  ///< the result; null if it failed
  // Failed steps of the position and of the points it depends on, in the order in which they
  // occurred; the one that best explains the result is the last. Empty if there is a grid.
  std::vector<position_Failure> Failures;

  /// Why there is no grid; null if there is one.
  const position_Failure* Reason () const;

  const position* Subject = nullptr;  ///< the position that is traced
};

/// Computes the grid of a copy of point from its measurement alone, without the grid cached for it,
/// and records the steps. Returns whether it has a grid. The cached grids of other points are used.
bool position_Explain (const position& point, const Transform& transform, position_Trace& trace);

/// The trace of the calling thread; null if there is none.
position_Trace* position_TraceNow () noexcept;
/// Adds a failure to the trace of the calling thread, if there is one.
void position_Fail (position_Reason reason, const Str& name, const Str& point);

}  // namespace clxml
