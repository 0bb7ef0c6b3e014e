// Values that the position layer derived from the records of a job.
// The job file owns one object and passes it back through position_Job::Cache.
#pragma once

#include <memory>

namespace clxml {

class position_CacheData;

/// Opaque. Every value in it is tagged with the revision of the job and the identity of the
/// transform under which it was derived, so the job file never has to clear it. Each thread number
/// of Environment has values of its own.
class position_Cache {
 public:
  position_Cache ();
  ~position_Cache ();
  position_Cache (const position_Cache&) = delete;
  position_Cache& operator= (const position_Cache&) = delete;

  /// For the position layer alone.
  position_CacheData& Data () noexcept { return *_Data; }

 private:
  std::unique_ptr<position_CacheData> _Data;
};

}  // namespace clxml
