// The azimuth from a station to its backsight.
#pragma once

#include "Library/position/positionjob.h"

namespace clxml {

class db_TotalBackBearing;

/// Finds the azimuth from a base to a backsight, radians: the one that was keyed in, or, where the
/// backsight is the point from which the base was observed and the base has no grid yet, the
/// reverse of that observation, or the azimuth between the two positions. Azimuths are those of
/// the job's own settings. transform is that of the base. Returns false, with azimuth null, if it
/// cannot be found. azimuthKeyedIn is true for the first of the three.
bool ResolveAzimuth (position_Job& job, position& base, const Transform& transform,
                     const Str& backsightName, double& azimuth, bool& azimuthKeyedIn);

/// The same for a base by its name, under the job's current transform.
bool ResolveBacksightAzimuth (position_Job& job, const Str& baseName, const Str& backsightName,
                              double& azimuth, bool& azimuthKeyedIn);

/// The azimuth to the backsight less the circle reading of it, within plus and minus pi; the mean
/// of both faces where both were read. Null without a reading or an azimuth.
double OrientationCorrection (position_Job& job, const db_TotalBackBearing& backBearing);

}  // namespace clxml
