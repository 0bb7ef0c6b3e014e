// The transform that all road geometry runs under.
// Leans on coordsys/transfrm.
#include "road/roadtransform.h"

#include <memory>

#include "str.h"

namespace clxml {

namespace {

std::unique_ptr<Transform> CurrentTransform;

// Corrections alone, and no file of any kind.
constexpr uint32_t options = COORDSYS_SkipGeoidFile | COORDSYS_SkipDatumGrid |
                             COORDSYS_SkipUKGridFiles | COORDSYS_SkipProjectionGrid |
                             COORDSYS_SkipShiftGrid;

}  // namespace

void SetCurrentTransformation (const coordsys_Corrections& corrections) {
  coordsys_Error error = COORDSYS_NoError;
  CurrentTransform = Transform_Create (COORDSYS_SetCorrections, nullptr, nullptr, nullptr, nullptr,
                                       nullptr, &corrections, options, &error);
}

void ReleaseCurrentTransformation () { CurrentTransform.reset (); }

const Transform* CurrentTransformation () {
  Assert (CurrentTransform != nullptr, "CurrentTransform != NULL");
  return CurrentTransform.get ();
}

}  // namespace clxml
