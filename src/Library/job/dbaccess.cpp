// One open job: its journal and its model behind the group interface.
// The order of a commit is fixed: model, listener, journal. The frames are made when an action is
// queued: a record that no journal would hold is refused before it takes a number, and the model
// may take the action's record over, since the frame has its values already. Leans on dbjournal and
// dbmodel.
#include "Library/job/dbaccess.h"

#include <utility>

namespace clxml {
namespace {

constexpr const char* frameFits = "length <= JOURNAL_MaxFrame";

int32_t CurrentThread () { return static_cast<int32_t> (Environment::Get ()->GetCurrentThread ()); }

bool AssertThreadSafe () {
  return Assert (Environment::Get ()->IsThreadSafe (), "Environment::Get()->IsThreadSafe ()");
}

[[noreturn]] void RaiseUnwritten (const Str& path) {
  throw Str ("Job file could not be written (disk full?): ") + path;
}

}  // namespace

void dbListener::OnCommit (const dbTransaction&) {}
void dbListener::OnCancel (const dbTransaction&) {}

void dbAccess::Queue::Clear () {
  Transaction.Clear ();
  Frames.Reset ();
  LastAdded = NODBID;
}

dbAccess::~dbAccess () {
  Assert (_GroupNestCount == 0, "_GroupNestCount == 0");
  for (const std::unique_ptr<Queue>& queue : _Transactions)
    Assert (!queue || queue->Transaction.IsEmpty (), "_Transactions[i].Empty()");
  Close ();
}

bool dbAccess::Create (const Str& path, const FileHeader& header) {
  AssertThreadSafe ();
  _OpenStatus = JOBOPEN_CannotOpen;
  if (!_Journal.Create (path, header)) return false;
  _OpenStatus = JOBOPEN_Ok;
  return true;
}

bool dbAccess::Open (const Str& path, bool writable) {
  AssertThreadSafe ();
  _OpenStatus = JOBOPEN_CannotOpen;
  if (!_Journal.Open (path, writable)) return false;
  const FileHeader own (FILEHDR_Journal);
  FileHeader header (FILEHDR_Journal);
  if (!_Journal.GetHeader (header) || header.FileType != own.FileType)
    _OpenStatus = JOBOPEN_NotAJob;
  else if (!(header == own))
    _OpenStatus = JOBOPEN_WrongVersion;
  else {
    const bool clean = Replay ();
    if (GetFirstRecordId () == NODBID)
      _OpenStatus = JOBOPEN_NotAJob;
    else
      _OpenStatus = clean ? JOBOPEN_Ok : JOBOPEN_Corrupt;
  }
  if (_OpenStatus == JOBOPEN_Ok || _OpenStatus == JOBOPEN_Corrupt) return true;
  Close ();
  return false;
}

bool dbAccess::Close () {
  if (!_Journal.IsOpen ()) return true;
  CancelOpenGroup ();
  _SingleActionMode = false;
  const bool isWhole = _Journal.Close ();
  _Model.Clear ();
  return isWhole;
}

bool dbAccess::FlushToMedium () { return !IsOpen () || _Journal.FlushToMedium (); }

void dbAccess::Tick (double now) {
  if (IsOpen () && !InGroup ()) _Journal.Tick (now);
}

bool dbAccess::CopyTo (const Str& path) { return IsOpen () && _Journal.CopyTo (path); }

uint32_t dbAccess::TruncateToLastGood () { return IsOpen () ? _Journal.Truncate () : 0; }

bool dbAccess::Replay () {
  _Journal.RewindToRecords ();
  _WasRepaired = false;
  // Records are made by the million here, and each is given the time that the file has.
  const clock_Hold hold;
  const Pool::Use use (_Model.RecordPool ());
  dbTransaction transaction;
  dbModel_Action single;
  journal_Status status = JOURNAL_Ok;
  while (_Journal.ReadNext (transaction, single, status)) {
    if (single.DBRecord)
      ApplyReplayed (single);
    else if (status == JOURNAL_Ok)
      for (dbModel_Action* action = transaction.First (); action; action = action->Next.get ())
        ApplyReplayed (*action);
    Assert (_Journal.GetLastAppendPosition () != 0, "_Journal._LastGoodAppendPosition != 0");
    _Journal.AcceptPosition ();
    // Nobody reads the model yet: what this transaction superseded need not wait for the last one.
    _Model.ReleaseRetired ();
  }
  _Model.FinishReplay ();
  _WasRepaired = _Journal.IsRepairDetected ();
  _Journal.SetRepairDetected (false);
  return status == JOURNAL_End;
}

void dbAccess::ApplyReplayed (dbModel_Action& action) {
  if (action.Type == DBACTION_Foreign) return;
  const DBID id = action.DBRecord->RecordId;
  // A frame that a repair took out may have been the target: without it the action has taken no
  // number here.
  if (_Journal.IsRepairDetected () && action.Type != DBACTION_Add &&
      !_Model.Lookup (action.Target)) {
    LogNumber ("Target record missing from Model.  Target ", action.Target.value);
    LogNumber ("-- Offending record ID ", id.value);
    return;
  }
  const DBID expected = TakesNumber (action.Type) ? _Model.NextDBID () : action.Target;
  if (id != expected) {
    LogNumber ("DBID discontinuity.  Expected ", expected.value);
    LogNumber ("-- Actual DBID read ", id.value);
    if (TakesNumber (action.Type)) _Model.SetNextDBID ({id.value + 1});
  }
  _Model.Apply (action, ApplyMode::Replay);
}

dbAccess::Queue* dbAccess::CurrentQueue () {
  const int32_t thread = CurrentThread ();
  if (!Assert (thread >= 0 && thread < ThreadCount, "thread < 30")) return nullptr;
  std::unique_ptr<Queue>& queue = _Transactions[static_cast<std::size_t> (thread)];
  if (!queue) queue = std::make_unique<Queue> ();
  return queue.get ();
}

const dbAccess::Queue* dbAccess::OpenQueue () const noexcept {
  const int32_t thread = CurrentThread ();
  if (!InGroup () || thread < 0 || thread >= ThreadCount) return nullptr;
  return _Transactions[static_cast<std::size_t> (thread)].get ();
}

void dbAccess::BeginGroup () {
  AssertThreadSafe ();
  if (_GroupNestCount == 0) {
    _SavedNextDBID = _Model.PeekNextDBID ();
    _GroupStartThread = CurrentThread ();
  } else if (!Assert (_GroupStartThread == CurrentThread (),
                      "_GroupStartThread == Environment::Get()->GetCurrentThread()")) {
    return;
  }
  _GroupNestCount++;
}

void dbAccess::EndGroup () {
  AssertThreadSafe ();
  if (!Assert (_GroupNestCount > 0, "this->_GroupNestCount > 0")) return;
  if (!Assert (CurrentThread () == _GroupStartThread,
               "Environment::Get()->GetCurrentThread() == _GroupStartThread"))
    return;
  if (_GroupNestCount > 1) {
    _GroupNestCount--;
    return;
  }
  bool written = true;
  Queue* queue = CurrentQueue ();
  if (queue && !queue->Transaction.IsEmpty ()) {
    dbListener* listener = _SingleActionMode ? nullptr : _Listener;
    _Model.ApplyTransaction (queue->Transaction, listener ? ApplyMode::Copy : ApplyMode::Take);
    if (listener) listener->OnCommit (queue->Transaction);
    journal_Seal (queue->Frames);
    written = _Journal.WriteFrames (queue->Frames);
    queue->Clear ();
  }
  EndOfGroup ();
  if (!written && _SingleActionMode) RaiseUnwritten (_Journal.Path ());
}

void dbAccess::CancelGroup () {
  AssertThreadSafe ();
  if (!Assert (_GroupNestCount == 1, "_GroupNestCount == 1")) return;
  if (!Assert (CurrentThread () == _GroupStartThread,
               "Environment::Get()->GetCurrentThread() == _GroupStartThread"))
    return;
  bool written = true;
  Queue* queue = CurrentQueue ();
  if (queue && !queue->Transaction.IsEmpty ()) {
    if (_Listener && !_SingleActionMode) _Listener->OnCancel (queue->Transaction);
    queue->Transaction.MarkCancelled ();
    journal_Seal (queue->Frames, ACTION_TransactionCancelled);
    written = _Journal.WriteFrames (queue->Frames);
    queue->Clear ();
  }
  _Model.SetNextDBID (_SavedNextDBID);
  EndOfGroup ();
  if (!written && _SingleActionMode) RaiseUnwritten (_Journal.Path ());
}

void dbAccess::CancelOpenGroup () {
  if (!InGroup ()) return;
  if (_GroupStartThread == CurrentThread ()) {
    _GroupNestCount = 1;
    try {
      CancelGroup ();
    } catch (const Str&) {
      // The frames wait in the journal, whose closing tells of them.
    }
    return;
  }
  for (const std::unique_ptr<Queue>& queue : _Transactions)
    if (queue) queue->Clear ();
  _Model.SetNextDBID (_SavedNextDBID);
  EndOfGroup ();
}

void dbAccess::EndOfGroup () noexcept {
  _GroupNestCount = 0;
  _GroupStartThread = -1;
}

DBID dbAccess::AddAction (dbModel_Verb verb, DBID target, const dbRecord_Class& record) {
  return AddAction (verb, target, CloneRecord (record));
}

DBID dbAccess::AddAction (dbModel_Verb verb, DBID target, dbRecord_Class& record) {
  record.RecordId = AddAction (verb, target, CloneRecord (record));
  return record.RecordId;
}

DBID dbAccess::AddAction (dbModel_Verb verb, DBID target, std::unique_ptr<dbRecord_Class> record) {
  if (!Assert (record != nullptr, "record != NULL")) return NODBID;
  if (!Assert (TakesNumber (verb) || verb == DBACTION_Replace || verb == DBACTION_Delete ||
                   verb == DBACTION_Foreign,
               "!\"Bad action\""))
    return NODBID;
  if (_SingleActionMode && !InGroup ()) return AddLone (verb, target, std::move (record));
  if (!Assert (InGroup (), "InGroup()")) return NODBID;
  if (!Assert (_GroupStartThread == CurrentThread (),
               "_GroupStartThread == Environment::Get()->GetCurrentThread()"))
    return NODBID;
  Queue* queue = CurrentQueue ();
  if (!queue) return NODBID;
  std::unique_ptr<dbModel_Action> action = queue->Transaction.NewAction ();
  action->Type = verb;
  action->Target = target;
  action->DBRecord = std::move (record);
  if (!AppendFrame (queue->Frames, *action)) return NODBID;
  const DBID id = action->DBRecord->RecordId;
  if (verb == DBACTION_Add) queue->LastAdded = id;
  queue->Transaction.Add (std::move (action));
  return id;
}

// The way of a bulk import: no transaction is made for one action, and nothing is allocated.
DBID dbAccess::AddLone (dbModel_Verb verb, DBID target, std::unique_ptr<dbRecord_Class> record) {
  AssertThreadSafe ();
  _Lone.Type = verb;
  _Lone.Target = target;
  _Lone.DBRecord = std::move (record);
  _LoneFrame.Reset ();
  if (!AppendFrame (_LoneFrame, _Lone)) return NODBID;
  const DBID id = _Lone.DBRecord->RecordId;
  _Model.Apply (_Lone, ApplyMode::Take);
  _Lone.DBRecord.reset ();
  journal_Seal (_LoneFrame);
  if (!_Journal.WriteFrames (_LoneFrame)) RaiseUnwritten (_Journal.Path ());
  return id;
}

// Gives the action's record its DBID and makes its frame. False when it does not fit a journal: no
// number is then taken.
bool dbAccess::AppendFrame (OutBuffer& frames, const dbModel_Action& action) {
  DBID id = NODBID;
  if (TakesNumber (action.Type))
    id = _Model.PeekNextDBID ();
  else if (action.Type != DBACTION_Foreign)
    id = action.Target;
  action.DBRecord->RecordId = id;
  if (!journal_AppendFrame (frames, action)) {
    if (_SingleActionMode) throw journal_TooLong (*action.DBRecord);
    Assert (false, frameFits);
    return false;
  }
  if (TakesNumber (action.Type)) _Model.NextDBID ();
  return true;
}

const dbRecord_Class* dbAccess::GetRecord (DBID id) const noexcept {
  const dbModel_Node* node = _Model.Lookup (id);
  return node ? node->DBRecord.get () : nullptr;
}

DBID dbAccess::GetFirstRecordId () const noexcept {
  const dbModel_Node* node = _Model.MainThread ().Front ();
  return node ? node->DBRecord->RecordId : NODBID;
}

DBID dbAccess::GetLastRecordId () const noexcept {
  const Queue* queue = OpenQueue ();
  if (queue && queue->LastAdded != NODBID) return queue->LastAdded;
  const dbModel_Node* node = _Model.MainThread ().Back ();
  return node ? node->DBRecord->RecordId : NODBID;
}

DBID dbAccess::GetNextRecordId (DBID id) const noexcept {
  const dbModel_Node* node = _Model.Lookup (id);
  if (!node || node->IsOffChain () || !node->ChainForward) return NODBID;
  return node->ChainForward->DBRecord->RecordId;
}

DBID dbAccess::GetPreviousRecordId (DBID id) const noexcept {
  const dbModel_Node* node = _Model.Lookup (id);
  if (!node || node->IsOffChain () || !node->ChainBack) return NODBID;
  return node->ChainBack->DBRecord->RecordId;
}

DBID dbAccess::GetFirstOfType (database_RecordType type) const noexcept {
  return _Model.TypeIndex (type).First;
}

const dbModel_Action* dbAccess::LatestAction (database_RecordType type) const noexcept {
  const dbModel_Action* latest = nullptr;
  const Queue* queue = OpenQueue ();
  for (const dbModel_Action* action = queue ? queue->Transaction.First () : nullptr; action;
       action = action->Next.get ())
    if (action->DBRecord->GetType () == type) latest = action;
  return latest;
}

DBID dbAccess::GetLastOfType (database_RecordType type) const noexcept {
  const dbModel_Action* action = LatestAction (type);
  return action ? action->DBRecord->RecordId : _Model.TypeIndex (type).Last;
}

const dbRecord_Class* dbAccess::GetLatestRecord (database_RecordType type) const noexcept {
  const dbModel_Action* action = LatestAction (type);
  return action ? action->DBRecord.get () : GetRecord (_Model.TypeIndex (type).Last);
}

void dbAccess::SetSingleActionMode () {
  _SingleActionMode = true;
  _Journal.PutOffMedium ();
}

}  // namespace clxml
