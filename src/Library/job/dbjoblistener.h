// The listener of a job on its own commits. An inner part of JobDatabase.
#pragma once

#include <deque>

#include "Library/job/dbJob.h"

namespace clxml {

/// Copies persistent settings to the defaults and calls the index while the group is open, and
/// calls the host's callback after it was left. Commits that a callback causes are queued and
/// reported after it. Cancelled groups are not reported.
class JobDatabase::JobListener final : public dbListener {
 public:
  explicit JobListener (JobDatabase& job) : _Job (job) {}
  void OnCommit (const dbTransaction& transaction) override;
  /// Calls the callback for this commit and all that it causes, also if one of the calls throws.
  /// The first exception then passes through; a further one is logged.
  void OnGroupLeft (dbTransaction& transaction) override;
  /// The callback is running.
  bool IsCalling () const noexcept { return _IsCalling; }

 private:
  JobDatabase& _Job;
  std::deque<dbTransaction> _Waiting;
  bool _IsCalling = false;
};

}  // namespace clxml
