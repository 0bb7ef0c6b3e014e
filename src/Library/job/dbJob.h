// A job as the rest of the system holds it.
// Owns the open job, its header record, the default settings, the notes that wait and the place
// of the index; offers operations in terms of the survey. Leans on dbaccess.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Library/job/dbaccess.h"
#include "Library/records/dbPoints.h"

namespace clxml {

class JobDatabase;

/// The index of a job as the job knows it. The index itself lies above this layer and is handed
/// in; without one, look-ups by name walk the chain.
class JobIndex {
 public:
  virtual ~JobIndex () = default;
  /// The job was created or opened; the index borrows its dbAccess.
  virtual void Attach (JobDatabase& job) = 0;
  /// A group was committed.
  virtual void OnCommit (const dbTransaction& transaction) = 0;
  /// The job is closing: forget it and everything known of it.
  virtual void Clear () = 0;
  /// The target record in force of that name, or NODBID.
  virtual DBID FindTarget (const char* name) = 0;
  /// Marks the observation as hidden; false when the index does not know it as a complete entity.
  virtual bool HideObservation (DBID id) = 0;
};

/// The persistent default settings: at most one record of each type.
class DefaultRecords {
 public:
  /// Replaces the record of the same type by a copy, or appends one; asserts
  /// "record->IsPersisted()". Its index.
  int Store (const dbRecord_Class& record);
  /// The stored record of the type, or a new one that is stored first; asserts "def" and
  /// "def->IsPersisted()". Null for a type that is no setting.
  const dbRecord_Class* GetDefault (int type);
  /// Asserts "(i >= 0) && (i < count)"; null outside.
  const dbRecord_Class* At (int i) const;
  int Count () const noexcept { return static_cast<int> (_Records.size ()); }
  void Clear () { _Records.clear (); }

 private:
  std::vector<std::unique_ptr<dbRecord_Class>> _Records;
};

/// One job. Neither copied nor moved.
class JobDatabase {
 public:
  JobDatabase ();
  virtual ~JobDatabase ();  ///< closes an open job
  JobDatabase (const JobDatabase&) = delete;
  JobDatabase& operator= (const JobDatabase&) = delete;

  /// Makes a new job file whose first record, DBID 1, is the header with that name (33 bytes,
  /// cut back to a whole UTF-8 character). False when the file exists or cannot be made.
  bool Create (const Str& path, const Str& jobName);
  /// Opens a job; see GetOpenStatus for the reason of a refusal.
  bool Open (const Str& path, bool writable);
  job_OpenStatus GetOpenStatus () const noexcept { return _OpenStatus; }
  /// Writes waiting notes, closes file and model, forgets the index. Closing twice does nothing.
  /// False when something could not be written.
  bool Close ();
  bool IsOpen () const noexcept { return _Access != nullptr; }
  /// Null when closed.
  dbAccess* Access () noexcept { return _Access; }
  db_JobHeader& JobHeader () noexcept { return _JobHeader; }

  // ... the operations on records follow
 private:
  dbAccess* _Access = nullptr;
  job_OpenStatus _OpenStatus = JOBOPEN_CannotOpen;
  db_JobHeader _JobHeader;
};

}  // namespace clxml
