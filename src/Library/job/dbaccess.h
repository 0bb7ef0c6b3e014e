// One open job: its journal, its model and the group interface.
// Opens, replays and closes a job file, and collects changes in groups that reach the model and the
// journal as a whole. Uses dbjournal and dbmodel.
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

/// Is called at the end of groups that have actions. All operations do nothing by default. An
/// exception of a listener passes through EndGroup or CancelGroup after the group was left and
/// given to the journal.
class dbListener {
 public:
  virtual ~dbListener () = default;
  /// The model is already in the new state, the journal has nothing yet. The group is still open:
  /// a change of the job asserts "!_IsListenerCalled" and is refused.
  virtual void OnCommit (const dbTransaction& transaction);
  /// The model is unchanged. The group is still open, as in OnCommit.
  virtual void OnCancel (const dbTransaction& transaction);
  /// The committed group was left and the journal has it. The listener may take the actions, open
  /// another group, and close the job.
  virtual void OnGroupLeft (dbTransaction& transaction);
};

/// A job has one writer at a time, the thread that opened the group; every group operation asserts
/// "Environment::Get()->IsThreadSafe ()". A misuse that is asserted changes nothing.
class dbAccess {
 public:
  dbAccess () = default;
  /// Asserts "_GroupNestCount == 0" and "_Transactions[i].Empty()"; closes an open job.
  ~dbAccess ();
  dbAccess (const dbAccess&) = delete;
  dbAccess& operator= (const dbAccess&) = delete;

  /// Creates the journal; false when the file exists or cannot be made, or when its header cannot
  /// be written (see Journal ().IsHeaderFailed ()).
  bool Create (const Str& path, const FileHeader& header);
  /// Opens and replays; true also for a job that was replayed up to a hard fault
  /// (JOBOPEN_Corrupt). Opened for reading, the file is not changed in any way.
  bool Open (const Str& path, bool writable);
  job_OpenStatus GetOpenStatus () const noexcept { return _OpenStatus; }
  bool IsOpen () const noexcept { return _Journal.IsOpen (); }
  /// Closes the journal, then clears the model. An open group is cancelled first. False when
  /// something did not reach the file. Closing twice does nothing.
  bool Close ();
  /// Writes what waits and asks the medium; false when bytes remain unwritten.
  bool FlushToMedium ();
  /// Forwards the timed flush to the journal, but not inside a group. now in seconds, as
  /// clock_Elapsed gives them.
  void Tick (double now);
  /// See dbJournal::CopyTo.
  bool CopyTo (const Str& path);
  /// Cuts the file behind the last good frame; the position, or 0 when the cut failed.
  uint32_t TruncateToLastGood ();
  dbJournal& Journal () noexcept { return _Journal; }
  const dbJournal& Journal () const noexcept { return _Journal; }
  const dbModel& Model () const noexcept { return _Model; }
  /// The replay met a frame that a manual repair had taken out.
  bool WasRepaired () const noexcept { return _WasRepaired; }

  void BeginGroup ();
  /// Ends one level. At the outermost level the model applies the actions, the listener's OnCommit
  /// is called, the journal gets the frames, the group is left, and OnGroupLeft is called. An
  /// exception leaves the group too. In single-action mode frames that a flush could not write
  /// raise a Str, after the group was left.
  void EndGroup ();
  /// Drops the group; asserts "_GroupNestCount == 1". Its numbers are given back.
  void CancelGroup ();
  /// Drops an open group of any level without an assertion or exception, for closing.
  void CancelOpenGroup () noexcept;
  bool InGroup () const noexcept { return _GroupNestCount > 0; }
  int32_t GroupNestCount () const noexcept { return _GroupNestCount; }

  /// Queues an action on the current thread's transaction and gives its DBID: the target's for
  /// Replace and Delete, the next number for Add, Insert and Amend. The record is given away; null
  /// asserts "record != NULL".
  ///
  /// NODBID when the action was refused and nothing was queued: outside a group ("InGroup()"), or
  /// when its frame would be longer than a journal holds ("length <= JOURNAL_MaxFrame"). In
  /// single-action mode the latter, and frames that could not be written, raise a Str.
  DBID AddAction (dbModel_Verb verb, DBID target, std::unique_ptr<dbRecord_Class> record);
  /// The same with a copy; the caller's record gets the DBID.
  DBID AddAction (dbModel_Verb verb, DBID target, dbRecord_Class& record);
  /// The same with a copy; the caller's record stays as it is.
  DBID AddAction (dbModel_Verb verb, DBID target, const dbRecord_Class& record);

  /// The record at an id, also a deleted one; null when unknown. Stays valid until the model
  /// retires it.
  const dbRecord_Class* GetRecord (DBID id) const noexcept;
  DBID GetFirstRecordId () const noexcept;
  /// The end of the chain, or the last record added in the open group.
  DBID GetLastRecordId () const noexcept;
  /// NODBID at the end, and for a deleted or unknown id.
  DBID GetNextRecordId (DBID id) const noexcept;
  DBID GetPreviousRecordId (DBID id) const noexcept;
  DBID GetFirstOfType (database_RecordType type) const noexcept;
  /// The last record of the type queued in the open group, else the last in the model.
  DBID GetLastOfType (database_RecordType type) const noexcept;
  /// The record that GetLastOfType names, null for none. One of the open group stays valid until
  /// the group ends.
  const dbRecord_Class* GetLatestRecord (database_RecordType type) const noexcept;

  /// Not owned; null for none.
  void SetListener (dbListener* listener) noexcept { _Listener = listener; }
  /// Bulk import: each action is a transaction of its own unless a group is open, the listener
  /// is silent, and flushes write without asking the medium until closing.
  void SetSingleActionMode ();
  bool IsSingleActionMode () const noexcept { return _SingleActionMode; }
  /// Frees superseded records. For a caller that changes many records in a row and holds none of
  /// them at this moment.
  void ReleaseRetired () { _Model.ReleaseRetired (); }

 private:
  /// The actions that one thread has queued, and their frames for the journal.
  struct Queue {
    dbTransaction Transaction;
    OutBuffer Frames{ENDIAN_Little};
    DBID LastAdded;
    /// The last action of each record type; null for none.
    std::array<const dbModel_Action*, DATABASE_AllRecords + 1> Latest{};
    void Clear () noexcept;
  };
  class Leaving;
  static constexpr int ThreadCount = 30;

  Queue* CurrentQueue ();
  Queue* OpenQueue () const noexcept;
  bool Commit (Queue& queue, dbListener* listener, dbTransaction& committed);
  const dbModel_Action* LatestAction (database_RecordType type) const noexcept;
  DBID AddLone (dbModel_Verb verb, DBID target, std::unique_ptr<dbRecord_Class> record);
  bool AppendFrame (OutBuffer& frames, const dbModel_Action& action);
  void EndOfGroup () noexcept;
  bool Replay ();
  void ApplyReplayed (dbModel_Action& action);

  dbModel _Model;
  dbJournal _Journal;
  bool _SingleActionMode = false;
  bool _WasRepaired = false;
  int32_t _GroupNestCount = 0;
  DBID _SavedNextDBID;
  int32_t _GroupStartThread = -1;
  bool _IsListenerCalled = false;
  job_OpenStatus _OpenStatus = JOBOPEN_CannotOpen;
  dbListener* _Listener = nullptr;
  std::array<std::unique_ptr<Queue>, ThreadCount> _Transactions;  // made on first use
  dbModel_Action _Lone;  // of single-action mode, used again and again
  OutBuffer _LoneFrame{ENDIAN_Little};
};

/// One level of a group for the time of a scope. Without End, that is after an exception, the
/// destructor cancels the group, or ends this level if it is nested. The job may be closed between
/// End and the destructor.
class dbGroup {
 public:
  explicit dbGroup (dbAccess& access);
  dbGroup (const dbGroup&) = delete;
  dbGroup& operator= (const dbGroup&) = delete;
  ~dbGroup ();
  void End ();

 private:
  dbAccess* _Access;  // null if the level was not begun, and after its end
};

}  // namespace clxml
