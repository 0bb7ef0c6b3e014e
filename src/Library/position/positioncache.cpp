// Values that the position layer derived from the records of a job.
#include "Library/position/positioncache.h"

namespace clxml {

class position_CacheData {};

position_Cache::position_Cache () : _Data (std::make_unique<position_CacheData> ()) {}
position_Cache::~position_Cache () = default;

}  // namespace clxml
