// The transform that all road geometry runs under.
// Roads are computed in grid coordinates; what a job's corrections say of axes and azimuths reaches
// them through this one object of the process. Leans on coordsys/transfrm.
#pragma once

#include "Library/coordsys/transfrm.h"

namespace clxml {

/// Builds the transform of the roads from corrections alone, which opens no file, in place of the
/// one before. Process-wide and unguarded: not during any computation of a road.
void SetCurrentTransformation (const coordsys_Corrections& corrections);
/// Drops it; harmless when there is none.
void ReleaseCurrentTransformation ();
/// The transform in force; asserts "CurrentTransform != NULL" and gives null when none is set, and
/// then no geometry of a road has an answer. Valid until the next of the two operations above.
const Transform* CurrentTransformation ();

}  // namespace clxml
