// A job as the rest of the system uses it: opening and closing, groups and records.
// Targets and antennas are in dbjobsurvey.cpp, default settings in dbdefaults.cpp.
#include "Library/job/dbJob.h"

#include <exception>
#include <utility>

#include "Library/job/dbjoblistener.h"
#include "Library/job/dbstore.h"
#include "platform/file.h"

namespace clxml {
namespace {

constexpr const char* lineEnd = "\r\n";

void AssertThreadSafe () {
  Assert (Environment::Get ()->IsThreadSafe (), "Environment::Get()->IsThreadSafe ()");
}

Str Lines (const StrArray& lines) {
  Str text;
  for (int i = 0; i < lines.Count (); i++) {
    text += lines[i];
    text += lineEnd;
  }
  return text;
}

bool EndsWithLineEnd (const Str& text) {
  return !text.IsEmpty () && (text.View ().back () == '\n' || text.View ().back () == '\r');
}

// The first bytes of a name that fit the job file, without a part of a character at their end.
Str CutName (const Str& name) {
  int length = name.Length ();
  if (length > DBTYPE_JobNameSize) {
    length = DBTYPE_JobNameSize;
    // A byte 10xxxxxx continues a character. Four of them in a row are not UTF-8: the name is then
    // cut at a byte.
    int start = length;
    while (start > length - 4 && start > 0 && (name[start] & 0xC0) == 0x80) start--;
    if ((name[start] & 0xC0) != 0x80) length = start;
  }
  return name.Left (length);
}

bool OpensEntity (database_RecordType type) {
  return type == DATABASE_ObservationRecord || type == DATABASE_LineRecord ||
         type == DATABASE_ArcRecord;
}

}  // namespace

void JobDatabase::JobListener::OnCommit (const dbTransaction& transaction) {
  for (const dbModel_Action* action = transaction.First (); action; action = action->Next.get ())
    if (action->DBRecord->IsPersisted ()) _Job._Defaults.Store (*action->DBRecord);
  if (_Job._Index) _Job._Index->OnCommit (transaction);
}

void JobDatabase::JobListener::OnGroupLeft (dbTransaction& transaction) {
  if (!_Job._OnCommit) return;
  _Waiting.push_back (std::move (transaction));
  if (_IsCalling) return;
  _IsCalling = true;
  std::exception_ptr failure;
  while (!_Waiting.empty ()) {
    const dbTransaction next (std::move (_Waiting.front ()));
    _Waiting.pop_front ();
    const auto callback = _Job._OnCommit;
    if (!callback) continue;
    try {
      (*callback) (_Job, next);
    } catch (...) {
      if (failure)
        Environment::Get ()->LogMessage ("The commit callback failed more than once");
      else
        failure = std::current_exception ();
    }
  }
  _IsCalling = false;
  if (failure) std::rethrow_exception (failure);
}

JobDatabase::JobDatabase () : _Listener (std::make_unique<JobListener> (*this)) {}

JobDatabase::~JobDatabase () { Close (); }

bool JobDatabase::Create (const Str& path, const Str& jobName) {
  AssertThreadSafe ();
  if (_IsCopy || !Assert (_Access == nullptr, "_Access == NULL")) Close ();
  if (_Access) return false;
  _JobHeader.JobName = CutName (jobName);
  // A header record that does not fit is refused before there is a file.
  OutBuffer frame (ENDIAN_Little);
  if (!journal_AppendFrame (frame, {DBACTION_Add, NODBID, CloneRecord (_JobHeader)}))
    throw journal_TooLong (_JobHeader);
  auto access = std::make_unique<dbAccess> ();
  if (!access->Create (path, FileHeader (FILEHDR_Journal))) {
    if (access->Journal ().IsHeaderFailed ())
      throw Str ("Job file header could not be written (disk full?): ") + path;
    return false;
  }
  _OwnAccess = std::move (access);
  _Access = _OwnAccess.get ();
  _OpenStatus = _Access->GetOpenStatus ();
  try {
    if (AddRecord (_JobHeader) != NODBID) {
      if (Connect ()) return true;
      _OpenStatus = JOBOPEN_CannotOpen;
    }
  } catch (...) {
    CloseAfterFailure ();
    file_Class (path).DeleteCreated ();
    throw;
  }
  CloseAfterFailure ();
  file_Class (path).DeleteCreated ();
  return false;
}

bool JobDatabase::Open (const Str& path, bool writable) {
  AssertThreadSafe ();
  if (_IsCopy || !Assert (_Access == nullptr, "_Access == NULL")) Close ();
  if (_Access) return false;
  _ExternalLink = false;
  _JobHeader = db_JobHeader ();
  try {
    if (OpenFile (path, writable)) {
      const db_JobHeader* stored = db_JobHeader::From (_Access->GetRecord ({1}));
      if (stored) _JobHeader = *stored;
      if (Connect ()) return true;
      _OpenStatus = JOBOPEN_CannotOpen;
    }
  } catch (...) {
    CloseAfterFailure ();
    throw;
  }
  CloseAfterFailure ();
  _JobHeader = db_JobHeader ();
  return false;
}

bool JobDatabase::OpenFile (const Str& path, bool writable) {
  _OwnAccess = std::make_unique<dbAccess> ();
  _Access = _OwnAccess.get ();
  const bool opened = _Access->Open (path, writable);
  _OpenStatus = _Access->GetOpenStatus ();
  if (!opened || _OpenStatus != JOBOPEN_Corrupt) return opened;
  if (_OnCorruption && _OnCorruption (*this)) {
    if (const uint32_t position = _Access->TruncateToLastGood ()) {
      LogNumber ("Journal truncated at file position", position);
      return true;
    }
  }
  _Access->Close ();
  return false;
}

// Leaves the object as it was before Create or Open. The cause of the failure is reported by them.
void JobDatabase::CloseAfterFailure () noexcept {
  try {
    if (_Access) _Access->Close ();
  } catch (...) {
    Environment::Get ()->LogMessage ("A job that failed could not be closed");
  }
  Forget ();
  _OwnIndex.reset ();
  _Index = nullptr;
  _JobHeader.RecordId = NODBID;
}

// Makes and connects the index, and installs the listener. False if the index has no room for
// another job.
bool JobDatabase::Connect () {
  if (_IndexMaker) _OwnIndex = _IndexMaker ();
  _Index = _OwnIndex.get ();
  if (_Index && !_Index->Attach (*this)) return false;
  _Access->SetListener (_Listener.get ());
  return true;
}

void JobDatabase::Forget () {
  _Access = nullptr;
  _OwnAccess.reset ();
  _TargetNames = {};
}

bool JobDatabase::Close () {
  if (!Assert (!_Listener->IsCalling (), "!_Listener->IsCalling()")) return false;
  _ExternalLink = false;
  if (_IsCopy) {
    _Index = nullptr;
    _Access = nullptr;
    _IsCopy = false;
    _TargetNames = {};
    return true;
  }
  if (!_Access) return true;
  bool isWhole = true;
  _Access->CancelOpenGroup ();
  // A commit callback of the last note may throw, and a note that cannot be written raises in
  // single-action mode. Both are logged, and closing goes on.
  try {
    if (_PendingNotes.Count () > 0) {
      db_Note note;
      note.Note = Lines (_PendingNotes);
      _PendingNotes.Clear ();
      isWhole = AddRecordInGroup (note) != NODBID;
    }
  } catch (const Str& reason) {
    Environment::Get ()->LogMessage (reason.Data ());
    isWhole = false;
  } catch (...) {
    Environment::Get ()->LogMessage ("The commit callback failed while the job was closed");
  }
  isWhole = _Access->Close () && isWhole;
  Forget ();
  if (_Index) _Index->Clear ();
  _Index = nullptr;
  _OwnIndex.reset ();
  _JobHeader = db_JobHeader ();
  return isWhole;
}

void JobDatabase::SetIndexMaker (std::function<std::unique_ptr<JobIndex> ()> maker) {
  _IndexMaker = std::move (maker);
}

void JobDatabase::SetOnCommit (std::function<void (JobDatabase&, const dbTransaction&)> callback) {
  _OnCommit.reset ();
  if (callback)
    _OnCommit = std::make_shared<std::function<void (JobDatabase&, const dbTransaction&)>> (
        std::move (callback));
}

void JobDatabase::SetOnCorruption (std::function<bool (JobDatabase&)> callback) {
  _OnCorruption = std::move (callback);
}

bool JobDatabase::IsLinked () const noexcept {
  return _ExternalLink && _Access && _Access->IsOpen ();
}

void JobDatabase::AttachCopy (const JobDatabase& other) {
  if (this == &other) return;
  Close ();
  _Index = other._Index;
  _Access = other._Access;
  _IsCopy = true;
  _ExternalLink = other._ExternalLink;
}

bool JobDatabase::Refers (const JobDatabase& other) const noexcept {
  return _IsCopy && _Index == other._Index && _Access == other._Access;
}

void JobDatabase::BeginGroup () {
  if (!Assert (_Access != nullptr, "_Access")) return;
  Assert (!InGroup (), "!InGroup()");
  _Access->BeginGroup ();
}

void JobDatabase::EndGroup () {
  if (!Assert (_Access != nullptr, "_Access")) return;
  Assert (_Access->GroupNestCount () == 1, "this->_GroupNestCount == 1");
  _Access->EndGroup ();
}

void JobDatabase::CancelGroup () {
  // dbAccess asserts "_GroupNestCount == 1" itself.
  if (Assert (_Access != nullptr, "_Access")) _Access->CancelGroup ();
}

const dbRecord_Class* JobDatabase::GetRecord (DBID id) const noexcept {
  return _Access ? _Access->GetRecord (id) : nullptr;
}

const dbRecord_Class* JobDatabase::GetLatest (int type) {
  if (_Access && type >= DATABASE_JobHeaderRecord && type < DATABASE_AllRecords) {
    const dbRecord_Class* record =
        _Access->GetLatestRecord (static_cast<database_RecordType> (type));
    if (record) return record;
  }
  return _Defaults.GetDefault (type);
}

DBID JobDatabase::AddRecord (dbRecord_Class& record) {
  if (!Assert (_Access != nullptr, "_Access")) return NODBID;
  return AddToJob (*_Access, &record, InGroup () ? Grouping::Join : Grouping::Own);
}

DBID JobDatabase::AddRecordInGroup (dbRecord_Class& record) {
  if (!Assert (_Access != nullptr, "_Access")) return NODBID;
  return AddToJob (*_Access, &record, Grouping::Own);
}

void JobDatabase::DeleteEntity (DBID id) {
  if (!Assert (_Access != nullptr, "_Access") || !Assert (id != NODBID, "recordId != NODBID"))
    return;
  const dbModel_Node* first = _Access->Model ().Lookup (id);
  if (!first || first->IsOffChain ()) return;
  // The record at id alone, unless the end of its entity follows.
  const dbModel_Node* last = first;
  for (const dbModel_Node* node = first; node; node = node->ChainForward) {
    const database_RecordType type = node->DBRecord->GetType ();
    if (node != first && OpensEntity (type)) break;
    if (type != DATABASE_EndEntityRecord) continue;
    last = node;
    break;
  }
  dbGroup group (*_Access);
  for (const dbModel_Node* node = first;; node = node->ChainForward) {
    const dbRecord_Class& record = *node->DBRecord;
    if (record.GetType () != DATABASE_NoteRecord)
      _Access->AddAction (DBACTION_Delete, record.RecordId, record);
    if (node == last) break;
  }
  group.End ();
}

DBID JobDatabase::AddObservation (dbRecord_Class& record) {
  if (!Assert (_Access != nullptr, "_Access")) return NODBID;
  const Str own = record.Note;
  const bool wasInGroup = InGroup ();
  BeginGroup ();
  DBID id;
  try {
    if (_PendingNotes.Count () > 0) {
      if (!own.IsEmpty () && !EndsWithLineEnd (own)) record.Note += lineEnd;
      record.Note += Lines (_PendingNotes);
    }
    id = AddRecord (record);
  } catch (...) {
    record.Note = own;
    if (!wasInGroup) _Access->CancelOpenGroup ();
    throw;
  }
  if (id == NODBID)
    record.Note = own;
  else
    _PendingNotes.Clear ();
  return id;
}

DBID JobDatabase::EndEntity () {
  db_EndEntity end;
  DBID id;
  try {
    id = AddRecord (end);
  } catch (...) {
    if (_Access) _Access->CancelOpenGroup ();
    throw;
  }
  if (_Access) EndGroup ();
  return id;
}

DBID JobDatabase::EndEntityMarked () {
  const DBID end = EndEntity ();
  if (!_Access || !_Index || end == NODBID) return end;
  for (DBID id = _Access->GetPreviousRecordId (end); id != NODBID;
       id = _Access->GetPreviousRecordId (id)) {
    const database_RecordType type = GetRecordType (_Access, id);
    if (type == DATABASE_EndEntityRecord || _Index->HideObservation (id) || OpensEntity (type))
      break;
  }
  return end;
}

DBID JobDatabase::Amend (DBID id, const dbRecord_Class& carrier) {
  if (!Assert (_Access != nullptr, "_Access")) return NODBID;
  if (_Access->IsSingleActionMode ()) return _Access->AddAction (DBACTION_Amend, id, carrier);
  dbGroup group (*_Access);
  const DBID amended = _Access->AddAction (DBACTION_Amend, id, carrier);
  group.End ();
  return amended;
}

void JobDatabase::SetBoolean (DBID id, uint8_t value) {
  db_BoolAction carrier;
  carrier.Value = value;
  Amend (id, carrier);
}

void JobDatabase::SetFeatures (DBID id, const FeatureArray& features) {
  db_Features carrier;
  carrier.Features = features;
  Amend (id, carrier);
}

void JobDatabase::SetReference (DBID id, DBID value) {
  db_DBID carrier;
  carrier.Value = value;
  Amend (id, carrier);
}

void JobDatabase::SetRecord (DBID id, const dbRecord_Class& carrier) { Amend (id, carrier); }

// The lines of a record's note, each followed by its end.
Str JobDatabase::NoteOf (DBID id) const {
  StrArray lines;
  if (const dbRecord_Class* record = GetRecord (id)) record->GetNoteLines (lines);
  return Lines (lines);
}

void JobDatabase::AppendToNote (DBID id, const Str& line) {
  StrArray lines;
  lines.Add (line);
  PrependToNote (id, lines);
}

void JobDatabase::PrependToNote (DBID id, const StrArray& lines) {
  db_Note note;
  note.Note = Lines (lines) + NoteOf (id);
  Amend (id, note);
}

}  // namespace clxml
