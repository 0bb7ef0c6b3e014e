// One open job: its journal, its model and the group interface.
// The order of a commit is fixed: model, listener, journal. The frame of an action is made when it
// is queued: a record too large for a journal is refused before it takes a number, and the model
// may take over the action's record, since the frame already has its values.
#include "Library/job/dbaccess.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace clxml {
namespace {

constexpr const char* frameFits = "length <= JOURNAL_MaxFrame";
constexpr const char* notCalled = "!_IsListenerCalled";

int32_t CurrentThread () { return static_cast<int32_t> (Environment::Get ()->GetCurrentThread ()); }

bool AssertThreadSafe () {
  return Assert (Environment::Get ()->IsThreadSafe (), "Environment::Get()->IsThreadSafe ()");
}

[[noreturn]] void RaiseUnwritten (const dbJournal& journal) {
  if (journal.IsLimitReached ())
    throw Str ("Job file would exceed its limit of 2147483647 bytes: ") + journal.Path ();
  throw Str ("Job file could not be written (disk full?): ") + journal.Path ();
}

}  // namespace

void dbListener::OnCommit (const dbTransaction&) {}
void dbListener::OnCancel (const dbTransaction&) {}
void dbListener::OnGroupLeft (dbTransaction&) {}

void dbAccess::Queue::Clear () noexcept {
  Transaction.Clear ();
  Frames.Reset ();
  LastAdded = NODBID;
  Latest.fill (nullptr);
}

// Leaves the outermost level of the group at the end of a scope, also after an exception.
class dbAccess::Leaving {
 public:
  Leaving (dbAccess& access, Queue* queue) : _Access (access), _Queue (queue) {}
  Leaving (const Leaving&) = delete;
  Leaving& operator= (const Leaving&) = delete;
  ~Leaving () {
    if (_Queue) _Queue->Clear ();
    if (_GivesNumbersBack) _Access._Model.SetNextDBID (_Access._SavedNextDBID);
    _Access.EndOfGroup ();
  }
  void GiveNumbersBack (bool giveBack) { _GivesNumbersBack = giveBack; }

 private:
  dbAccess& _Access;
  Queue* _Queue;
  bool _GivesNumbersBack = false;
};

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
  // Millions of records may be made here, and each gets its time from the file.
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
    // The model has no readers yet, so superseded records can be freed at once.
    _Model.ReleaseRetired ();
  }
  _WasRepaired = _Journal.IsRepairDetected ();
  _Journal.SetRepairDetected (false);
  return status == JOURNAL_End;
}

void dbAccess::ApplyReplayed (dbModel_Action& action) {
  if (action.Type == DBACTION_Foreign) return;
  const DBID id = action.DBRecord->RecordId;
  // The target may have been in a frame that a repair removed. The action is skipped then, and its
  // number is not taken.
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
    // The number in the file counts. A lower one than expected must not be given out again.
    if (TakesNumber (action.Type)) _Model.SetNextDBID ({std::max (id.value + 1, expected.value)});
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

dbAccess::Queue* dbAccess::OpenQueue () const noexcept {
  const int32_t thread = CurrentThread ();
  if (!InGroup () || thread < 0 || thread >= ThreadCount) return nullptr;
  return _Transactions[static_cast<std::size_t> (thread)].get ();
}

void dbAccess::BeginGroup () {
  AssertThreadSafe ();
  if (!Assert (!_IsListenerCalled, notCalled)) return;
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
  if (!Assert (!_IsListenerCalled, notCalled)) return;
  if (_GroupNestCount > 1) {
    _GroupNestCount--;
    return;
  }
  Queue* queue = OpenQueue ();
  if (!queue || queue->Transaction.IsEmpty ()) {
    EndOfGroup ();
    return;
  }
  dbListener* listener = _SingleActionMode ? nullptr : _Listener;
  dbTransaction committed;
  if (!Commit (*queue, listener, committed) && _SingleActionMode) RaiseUnwritten (_Journal);
  // The listener may close the job: nothing of this object is used after it.
  if (listener) listener->OnGroupLeft (committed);
}

// Gives the group to model, listener and journal and leaves it, whatever the listener throws. False
// when a flush left bytes unwritten.
bool dbAccess::Commit (Queue& queue, dbListener* listener, dbTransaction& committed) {
  Leaving leaving (*this, &queue);
  journal_Seal (queue.Frames);
  // From the change of the model on, running out of memory must not keep the frames from the
  // journal: it makes room for them first.
  leaving.GiveNumbersBack (true);
  _Journal.ReserveOutput (queue.Frames);
  leaving.GiveNumbersBack (false);
  std::exception_ptr failure;
  try {
    _Model.ApplyTransaction (queue.Transaction, listener ? ApplyMode::Copy : ApplyMode::Take);
    _IsListenerCalled = true;
    if (listener) listener->OnCommit (queue.Transaction);
  } catch (...) {
    failure = std::current_exception ();
  }
  const bool written = _Journal.WriteFrames (queue.Frames);
  if (failure) std::rethrow_exception (failure);
  if (listener) committed = std::move (queue.Transaction);
  return written;
}

void dbAccess::CancelGroup () {
  AssertThreadSafe ();
  if (!Assert (_GroupNestCount == 1, "_GroupNestCount == 1")) return;
  if (!Assert (CurrentThread () == _GroupStartThread,
               "Environment::Get()->GetCurrentThread() == _GroupStartThread"))
    return;
  if (!Assert (!_IsListenerCalled, notCalled)) return;
  bool written = true;
  {
    Queue* queue = OpenQueue ();
    Leaving leaving (*this, queue);
    leaving.GiveNumbersBack (true);
    if (queue && !queue->Transaction.IsEmpty ()) {
      std::exception_ptr failure;
      try {
        _IsListenerCalled = true;
        if (_Listener && !_SingleActionMode) _Listener->OnCancel (queue->Transaction);
      } catch (...) {
        failure = std::current_exception ();
      }
      queue->Transaction.MarkCancelled ();
      journal_Seal (queue->Frames, ACTION_TransactionCancelled);
      written = _Journal.WriteFrames (queue->Frames);
      if (failure) std::rethrow_exception (failure);
    }
  }
  if (!written && _SingleActionMode) RaiseUnwritten (_Journal);
}

void dbAccess::CancelOpenGroup () noexcept {
  if (!InGroup ()) return;
  if (_GroupStartThread == CurrentThread ()) {
    _GroupNestCount = 1;
    try {
      CancelGroup ();
    } catch (const Str&) {
      // The frames are still in the journal's buffer; its closing reports them.
    } catch (...) {
      Environment::Get ()->LogMessage ("A listener failed while an open group was cancelled");
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
  _IsListenerCalled = false;
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
  if (!Assert (!_IsListenerCalled, notCalled)) return NODBID;
  Queue* queue = CurrentQueue ();
  if (!queue) return NODBID;
  std::unique_ptr<dbModel_Action> action = queue->Transaction.NewAction ();
  action->Type = verb;
  action->Target = target;
  action->DBRecord = std::move (record);
  if (!AppendFrame (queue->Frames, *action)) return NODBID;
  const DBID id = action->DBRecord->RecordId;
  if (verb == DBACTION_Add) queue->LastAdded = id;
  queue->Latest[action->DBRecord->GetType ()] = action.get ();
  queue->Transaction.Add (std::move (action));
  return id;
}

// For a bulk import: no transaction is made for one action, and nothing is allocated.
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
  if (!_Journal.WriteFrames (_LoneFrame)) RaiseUnwritten (_Journal);
  return id;
}

// Sets the DBID of the action's record and makes its frame. False if the frame is too long for a
// journal; no number is taken then.
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
  const Queue* queue = OpenQueue ();
  return queue && type <= DATABASE_AllRecords ? queue->Latest[type] : nullptr;
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

dbGroup::dbGroup (dbAccess& access) : _Access (&access) {
  const int32_t before = access.GroupNestCount ();
  access.BeginGroup ();
  if (access.GroupNestCount () == before) _Access = nullptr;
}

dbGroup::~dbGroup () {
  if (!_Access) return;
  if (_Access->GroupNestCount () == 1)
    _Access->CancelOpenGroup ();
  else
    _Access->EndGroup ();
}

void dbGroup::End () {
  // EndGroup leaves the group also when it throws.
  if (dbAccess* access = std::exchange (_Access, nullptr)) access->EndGroup ();
}

}  // namespace clxml
