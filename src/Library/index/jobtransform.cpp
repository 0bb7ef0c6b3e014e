// The transform of a job, assembled from its records when it is first used.
#include "Library/cogo/cogo.h"
#include "Library/index/jobfile.h"

namespace clxml {

const Transform& JobFile::CurrentTransform () {
  if (_IsTransformStale) {
    coordsys_Error error = COORDSYS_NoError;
    if (!RebuildTransform (error, 0) && !_Transform) _Transform = std::make_unique<Transform> ();
    _IsTransformStale = false;
  }
  return *_Transform;
}

coordsys_CogoSettings JobFile::CogoSystem () {
  CurrentTransform ();
  return _CogoSystem;
}

bool JobFile::RebuildTransform (coordsys_Error& error, uint32_t options, std::array<Str, 6>*) {
  const coordsys_Corrections corrections;
  std::unique_ptr<Transform> made =
      Transform_Create (COORDSYS_SetCorrections, nullptr, nullptr, nullptr, nullptr, nullptr,
                        &corrections, options, &error);
  if (!made) return false;
  _Transform = std::move (made);
  _CogoSystem = COGO_RoadSystem;
  _IsTransformStale = false;
  DropGrids ();
  return true;
}

}  // namespace clxml
