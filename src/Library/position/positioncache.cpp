// Values that the position layer derived from the records of a job.
#include "Library/position/positioncache.h"

#include "Library/position/cachedata.h"
#include "str.h"

namespace clxml {

position_Cache::position_Cache () : _Data (std::make_unique<position_CacheData> ()) {}
position_Cache::~position_Cache () = default;

position_CacheData::Values& position_CacheData::Of (uint32_t revision, uint32_t transformId) {
  const uint32_t thread = Environment::Get ()->GetCurrentThread ();
  std::unique_ptr<Values>& values = _Threads[thread < ThreadCount ? thread : 0];
  if (!values || values->Revision != revision || values->TransformId != transformId) {
    values = std::make_unique<Values> ();
    values->Revision = revision;
    values->TransformId = transformId;
  }
  return *values;
}

}  // namespace clxml
