// A job as the rest of the system uses it.
// Owns the open job, its header record, the default settings, the pending notes and the index;
// offers operations in terms of the survey. Uses dbaccess.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Library/job/dbaccess.h"
#include "Library/records/dbPoints.h"

namespace clxml {

class JobDatabase;
class db_Antenna;
class db_Equipment;
class db_Target;

/// The interface of a job's index. The index itself belongs to a later layer and is passed in;
/// without one, look-ups by name use the chain.
class JobIndex {
 public:
  virtual ~JobIndex () = default;
  /// The job was created or opened; the index borrows its dbAccess. False if there is no room for
  /// another index: the job is then closed again.
  virtual bool Attach (JobDatabase& job) = 0;
  /// A group was committed. It is still open: the index must not change the job here.
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
  /// Replaces the record of the same type by a copy, or appends one; its index. A record that is
  /// no such setting asserts "record->IsPersisted()", -1.
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
///
/// Operations that change the job join an open group, or make a group of their own. On a closed job
/// they assert "_Access" and do nothing.
class JobDatabase {
 public:
  JobDatabase ();
  virtual ~JobDatabase ();  ///< closes an open job
  JobDatabase (const JobDatabase&) = delete;
  JobDatabase& operator= (const JobDatabase&) = delete;

  // Opening and closing.

  /// Makes a new job file whose first record, DBID 1, is JobHeader () with that name (33 bytes, cut
  /// back to a whole UTF-8 character). False when the file exists or cannot be made, or when the
  /// header record was refused. Raises a Str when the note of the header record is too long for a
  /// job, before anything is made, and when the file could be made but not its header. A file that
  /// was made is deleted again after every failure.
  bool Create (const Str& path, const Str& jobName);
  /// Opens a job and fills JobHeader () from DBID 1; see GetOpenStatus for the reason of a refusal,
  /// which leaves JobHeader () empty. A damaged job is refused unless the callback of
  /// SetOnCorruption has it cut after its last good frame.
  bool Open (const Str& path, bool writable);
  job_OpenStatus GetOpenStatus () const noexcept { return _OpenStatus; }
  /// Cancels an open group, writes pending notes, closes file and model, deletes the index and
  /// empties JobHeader (). Closing twice does nothing. False when something could not be written,
  /// and within the callback of SetOnCommit, where it asserts "!_Listener->IsCalling()" and does
  /// nothing.
  bool Close ();
  bool IsOpen () const noexcept { return _Access != nullptr; }
  /// Null when closed.
  dbAccess* Access () const noexcept { return _Access; }
  db_JobHeader& JobHeader () noexcept { return _JobHeader; }
  DefaultRecords& Defaults () noexcept { return _Defaults; }
  /// Null without one.
  JobIndex* Index () const noexcept { return _Index; }
  /// Makes the index of each job that is created or opened from now on; empty for none.
  void SetIndexMaker (std::function<std::unique_ptr<JobIndex> ()> maker);
  /// Called after each commit, when the group was left: the callback may change the job in groups
  /// of its own. The commits that it causes are queued and reported after it returns. An exception
  /// of the callback passes through the operation that ended the group, whose changes stay.
  void SetOnCommit (std::function<void (JobDatabase&, const dbTransaction&)> callback);
  /// Decides whether a damaged job is cut after its last good frame.
  void SetOnCorruption (std::function<bool (JobDatabase&)> callback);
  /// The host links this job to outside data; opening and closing clear the link.
  void SetExternalLink (bool linked) noexcept { _ExternalLink = linked; }
  /// Linked, and its file is open.
  bool IsLinked () const noexcept;
  /// Shares the index and the open job of another, which must outlive the sharing; owns neither.
  void AttachCopy (const JobDatabase& other);
  /// This object shares the job of the other.
  bool Refers (const JobDatabase& other) const noexcept;

  // Groups. Level 1 is the only one: a begin inside a group asserts "!InGroup()", an end or cancel
  // of another level "this->_GroupNestCount == 1", "_GroupNestCount == 1".

  void BeginGroup ();
  void EndGroup ();
  void CancelGroup ();
  bool InGroup () const noexcept { return _Access && _Access->InGroup (); }
  bool InTransaction () const noexcept { return InGroup (); }

  // Records.

  /// Null when unknown or closed.
  const dbRecord_Class* GetRecord (DBID id) const noexcept;
  /// The last record of this type in the job, also from the open group, or else the default record
  /// of that type. A type that is no setting asserts as
  /// DefaultRecords::GetDefault and gives null.
  const dbRecord_Class* GetLatest (int type);
  /// `job.GetLatest<db_Units> ()`
  template <class T>
  const T* GetLatest () {
    return T::From (GetLatest (T::Number));
  }

  // The two adding operations raise what dbAccess::AddAction raises; the record gets its DBID.

  DBID AddRecord (dbRecord_Class& record);
  /// Always in a group of its own (in an open group, a level of its own).
  DBID AddRecordInGroup (dbRecord_Class& record);
  /// Deletes the record at id and every following one up to and including the next db_EndEntity, in
  /// one group; only the record at id if the next entity or the end of the job comes before a
  /// db_EndEntity. Notes cannot be deleted and stay. An unknown or deleted id does nothing. Asserts
  /// "recordId != NODBID".
  void DeleteEntity (DBID id);
  /// Opens a group, appends all pending notes to the record's note, one line each, and adds the
  /// record. The group stays open for the records of the entity until EndEntity. If the record is
  /// refused, the pending notes are kept and the record has its own note again; after an exception
  /// the group is cancelled too.
  DBID AddObservation (dbRecord_Class& record);
  /// Adds a db_EndEntity, gives its DBID and closes the group.
  DBID EndEntity ();
  /// The same, and hides the entity's observation in the index.
  DBID EndEntityMarked ();
  /// The id of the record in force if it is the same (IsEqual) and was added after the last
  /// db_EndSurveyStyle; otherwise the id of the record, which is added.
  DBID AddTargetIfNew (db_Target& record);
  DBID AddAntennaIfNew (db_Antenna& record);
  DBID AddEquipmentIfNew (db_Equipment& record);

  /// Amends id with a db_BoolAction of that value: 0 deletes, 1 restores.
  void SetBoolean (DBID id, uint8_t value);
  void SetFeatures (DBID id, const FeatureArray& features);
  void SetReference (DBID id, DBID value);
  /// Amends id with any carrier or measurement, in a group of its own.
  void SetRecord (DBID id, const dbRecord_Class& carrier);
  /// Replaces the note of id by the line and the lines it had, each followed by "\r\n".
  void AppendToNote (DBID id, const Str& line);
  /// Replaces the note of id by the lines and the lines it had.
  void PrependToNote (DBID id, const StrArray& lines);
  /// Lines for the note of the next observation, or a note of their own when the job closes.
  void AddPendingNotes (const StrArray& lines) { _PendingNotes.Append (lines); }
  const StrArray& PendingNotes () const noexcept { return _PendingNotes; }

  /// Gives one observation another target: adds newTarget, whose DBID is the result, aims the
  /// observation at it, and adds the old target again, at which every later observation that used
  /// it is aimed, so that it keeps its values. Asserts "observation" and "oldTargetPtr", NODBID.
  DBID ChangeTarget (DBID observationId, db_Target& newTarget);
  /// The same for an antenna ("oldAntennaPtr").
  DBID ChangeAntenna (DBID observationId, db_Antenna& newAntenna);

  // Defaults.

  /// Empties the defaults and reads them from a file; true when it was read to its end.
  bool ReadDefaults (const Str& path);
  /// Writes the defaults to a file of that name, which is replaced.
  bool WriteDefaults (const Str& path);
  /// Every setting of the job goes to the defaults.
  void SaveSettingsToDefaults ();
  /// Units, coding, corrections and descriptions: defaults go to the job where it has none or can
  /// merge them, settings of the job to the defaults. Asserts "!this->InTransaction()".
  void WriteSettingsToJob ();

 private:
  class JobListener;

  bool OpenFile (const Str& path, bool writable);
  bool Connect ();
  void Forget ();
  void CloseAfterFailure () noexcept;
  DBID Amend (DBID id, const dbRecord_Class& carrier);
  DBID AddIfNew (dbRecord_Class& record, const dbRecord_Class* inForce);
  const dbRecord_Class* FindTarget (const char* name);
  const dbRecord_Class* FindTargetOnChain (const char* name);
  DBID ChangeReferenced (DBID observationId, dbRecord_Class& newRecord,
                         DBID* (*reference) (dbRecord_Class*), const char* missing);
  Str NoteOf (DBID id) const;

  std::unique_ptr<JobIndex> _OwnIndex;
  std::unique_ptr<dbAccess> _OwnAccess;
  JobIndex* _Index = nullptr;
  dbAccess* _Access = nullptr;
  bool _IsCopy = false;
  job_OpenStatus _OpenStatus = JOBOPEN_CannotOpen;
  db_JobHeader _JobHeader;
  std::unique_ptr<JobListener> _Listener;
  std::function<std::unique_ptr<JobIndex> ()> _IndexMaker;
  // Shared, so that a callback may replace itself while it runs.
  std::shared_ptr<std::function<void (JobDatabase&, const dbTransaction&)>> _OnCommit;
  std::function<bool (JobDatabase&)> _OnCorruption;
  DefaultRecords _Defaults;
  bool _ExternalLink = false;
  StrArray _PendingNotes;

  // The targets after the last db_EndSurveyStyle, for a job without an index.
  struct TargetNames {
    std::map<std::string, DBID, std::less<>> Last;
    DBID ScannedTo;        // the last record of the chain that was entered
    uint32_t Changes = 0;  // of the model, when it was
  };
  TargetNames _TargetNames;
};

}  // namespace clxml
