// A job as the rest of the system holds it.
// Opening and closing, groups and records; targets, antennas and default settings are dbjobsurvey's
// and dbdefaults'. Leans on dbaccess.
#include "Library/job/dbJob.h"

#include <utility>

#include "Library/job/dbjoblistener.h"
#include "Library/job/dbstore.h"

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

// The first bytes of a name that fit the job file, without a torn character at their end.
Str CutName (const Str& name) {
  int length = name.Length ();
  if (length > DBTYPE_JobNameSize) {
    length = DBTYPE_JobNameSize;
    // A byte 10xxxxxx goes on with a character. Four of them in a row are no UTF-8: then bytes are
    // all there is.
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
  if (_Job._OnCommit) _Job._OnCommit (_Job, transaction);
}

JobDatabase::JobDatabase () : _Listener (std::make_unique<JobListener> (*this)) {}

JobDatabase::~JobDatabase () { Close (); }

bool JobDatabase::Create (const Str& path, const Str& jobName) {
  AssertThreadSafe ();
  if (!Assert (_Access == nullptr, "_Access == NULL")) Close ();
  _JobHeader.JobName = CutName (jobName);
  // A job without its first record is none: what would not fit is refused before there is a file.
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
  AddRecord (_JobHeader);
  if (Connect ()) return true;
  file_Class (path).Delete ();
  return false;
}

bool JobDatabase::Open (const Str& path, bool writable) {
  AssertThreadSafe ();
  if (!Assert (_Access == nullptr, "_Access == NULL")) Close ();
  _ExternalLink = false;
  _OwnAccess = std::make_unique<dbAccess> ();
  _Access = _OwnAccess.get ();
  bool opened = _Access->Open (path, writable);
  _OpenStatus = _Access->GetOpenStatus ();
  if (opened && _OpenStatus == JOBOPEN_Corrupt) {
    opened = _OnCorruption && _OnCorruption (*this);
    if (opened) {
      const uint32_t position = _Access->TruncateToLastGood ();
      opened = position != 0;
      if (opened) LogNumber ("Journal truncated at file position", position);
    }
    if (!opened) _Access->Close ();
  }
  if (!opened) {
    Forget ();
    return false;
  }
  LoadJobHeader (*_Access, _JobHeader);
  return Connect ();
}

// Makes and connects the index, and lets the job follow its own commits. False, with the job closed
// again, if the index has no room.
bool JobDatabase::Connect () {
  if (_IndexMaker) _OwnIndex = _IndexMaker ();
  _Index = _OwnIndex.get ();
  if (_Index && !_Index->Attach (*this)) {
    Close ();
    _OpenStatus = JOBOPEN_CannotOpen;
    return false;
  }
  _Access->SetListener (_Listener.get ());
  return true;
}

void JobDatabase::Forget () {
  _Access = nullptr;
  _OwnAccess.reset ();
}

bool JobDatabase::Close () {
  _ExternalLink = false;
  if (_IsCopy) {
    _Index = nullptr;
    _Access = nullptr;
    _IsCopy = false;
    return true;
  }
  if (!_Access) return true;
  bool isWhole = true;
  _Access->CancelOpenGroup ();
  // In the way of a bulk import a note that cannot be written raises; closing only answers.
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
  }
  isWhole = _Access->Close () && isWhole;
  Forget ();
  if (_Index) _Index->Clear ();
  _Index = nullptr;
  _OwnIndex.reset ();
  return isWhole;
}

void JobDatabase::SetIndexMaker (std::function<std::unique_ptr<JobIndex> ()> maker) {
  _IndexMaker = std::move (maker);
}

void JobDatabase::SetOnCommit (std::function<void (JobDatabase&, const dbTransaction&)> callback) {
  _OnCommit = std::move (callback);
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
  std::vector<const dbRecord_Class*> entity;
  bool isClosed = false;
  for (DBID next = id; next != NODBID && !isClosed; next = _Access->GetNextRecordId (next)) {
    const dbRecord_Class* record = _Access->GetRecord (next);
    if (!record || (next != id && OpensEntity (record->GetType ()))) break;
    isClosed = record->GetType () == DATABASE_EndEntityRecord;
    if (record->GetType () != DATABASE_NoteRecord) entity.push_back (record);
  }
  if (!isClosed && entity.size () > 1) entity.resize (1);
  _Access->BeginGroup ();
  for (const dbRecord_Class* record : entity)
    _Access->AddAction (DBACTION_Delete, record->RecordId, *record);
  _Access->EndGroup ();
}

DBID JobDatabase::AddObservation (dbRecord_Class& record) {
  if (!Assert (_Access != nullptr, "_Access")) return NODBID;
  BeginGroup ();
  record.Note += Lines (_PendingNotes);
  _PendingNotes.Clear ();
  return AddRecord (record);
}

DBID JobDatabase::EndEntity () {
  db_EndEntity end;
  const DBID id = AddRecord (end);
  if (_Access) EndGroup ();
  return id;
}

DBID JobDatabase::EndEntityMarked () {
  const DBID end = EndEntity ();
  if (!_Access || !_Index) return end;
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
  const bool own = !_Access->IsSingleActionMode ();
  if (own) _Access->BeginGroup ();
  const DBID amended = _Access->AddAction (DBACTION_Amend, id, carrier);
  if (own) _Access->EndGroup ();
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
