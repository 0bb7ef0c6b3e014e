// One open job: its journal and its model behind the group interface.
// Opens, replays and closes a job file, and gathers changes into groups that reach model and
// journal as a whole. Leans on dbjournal and dbmodel.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "Library/job/dbjournal.h"
#include "Library/job/dbmodel.h"

namespace clxml {

/// How an attempt to open a job ended.
enum job_OpenStatus : int32_t {
  JOBOPEN_Ok = 0,
  JOBOPEN_CannotOpen = 1,    ///< the file could not be opened or its header not read
  JOBOPEN_WrongVersion = 2,  ///< a journal of another format stamp
  JOBOPEN_NotAJob = 3,       ///< not of type 1, or without any record
  JOBOPEN_Corrupt = 6,       ///< replayed up to a hard fault
};

/// Hears of groups; both operations do nothing by default.
class dbListener {
 public:
  virtual ~dbListener () = default;
  /// The model is already in the new state.
  virtual void OnCommit (const dbTransaction& transaction);
  virtual void OnCancel (const dbTransaction& transaction);
};

class dbAccess {
 public:
  dbAccess ();
  /// Asserts that no group is open, "_GroupNestCount == 0" and "_Transactions[i].Empty()".
  ~dbAccess ();
  dbAccess (const dbAccess&) = delete;
  dbAccess& operator= (const dbAccess&) = delete;

  /// Creates the journal; false when the file exists or cannot be made.
  bool Create (const Str& path, const FileHeader& header);
  /// Opens and replays; true also for a job that was replayed up to a hard fault
  /// (JOBOPEN_Corrupt).
  bool Open (const Str& path, bool writable);
  job_OpenStatus GetOpenStatus () const noexcept;
  bool IsOpen () const noexcept;
  /// Closes the journal, then clears the model. An open group is cancelled first. False when
  /// bytes of the journal remained unwritten.
  bool Close ();
  /// Writes what waits and asks the medium; false when bytes remain unwritten.
  bool FlushToMedium ();
  /// Forwards the timed flush to the journal, but not inside a group.
  void Tick (double now);
  bool CopyTo (const Str& path);
  /// Cuts the file behind the last good frame; the position, or 0 when the cut failed.
  uint32_t TruncateToLastGood ();
  dbJournal& Journal () noexcept;
  const dbModel& Model () const noexcept;

  void BeginGroup ();
  void EndGroup ();
  void CancelGroup ();
  bool InGroup () const noexcept;
  /// Queues an action on the current thread's transaction and gives the DBID: the target's for
  /// Replace and Delete, the next number for every other verb. The record is copied.
  DBID AddAction (dbModel_Verb verb, DBID target, const dbRecord_Class& record);
  /// The same with a record that is given away.
  DBID AddAction (dbModel_Verb verb, DBID target, std::unique_ptr<dbRecord_Class> record);
  /// The record at an id, also a deleted one; null when unknown. Stays valid until the model
  /// retires it.
  const dbRecord_Class* GetRecord (DBID id) const noexcept;
  DBID GetFirstRecordId () const noexcept;
  /// The end of the chain, or the last record added in the open group.
  DBID GetLastRecordId () const noexcept;
  DBID GetNextRecordId (DBID id) const noexcept;
  DBID GetPreviousRecordId (DBID id) const noexcept;
  DBID GetFirstOfType (database_RecordType type) const noexcept;
  /// The last record of the type queued in the open group, else the last in the model.
  DBID GetLastOfType (database_RecordType type) const noexcept;
  /// Not owned; null for none.
  void SetListener (dbListener* listener) noexcept;
  /// Bulk import: each action is a transaction of its own unless a group is open, the listener
  /// is silent, and flushes write without asking the medium until closing.
  void SetSingleActionMode ();

 private:
};

}  // namespace clxml
