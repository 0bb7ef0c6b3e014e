// How a job hears of its own commits.
// Inner part of JobDatabase. Leans on dbJob.
#pragma once

#include "Library/job/dbJob.h"

namespace clxml {

/// Takes persistent settings into the defaults, then tells the index and the host's callback.
/// Cancelled groups concern nobody.
class JobDatabase::JobListener final : public dbListener {
 public:
  explicit JobListener (JobDatabase& job) : _Job (job) {}
  void OnCommit (const dbTransaction& transaction) override;

 private:
  JobDatabase& _Job;
};

}  // namespace clxml
