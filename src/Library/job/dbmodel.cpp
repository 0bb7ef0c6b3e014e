// Actions, transactions, and the chain and look-up table of the model.
// The effect of an action on them is in dbmodelapply.cpp.
#include "Library/job/dbmodel.h"

#include <utility>

namespace clxml {
namespace {

// Empty actions that a transaction keeps: replay and single changes then allocate none.
constexpr int maxSpareActions = 16;

}  // namespace

dbModel_Action::dbModel_Action (dbModel_Verb verb, DBID target,
                                std::unique_ptr<dbRecord_Class> record)
    : Type (verb), Target (target), DBRecord (std::move (record)) {}

dbTransaction::dbTransaction (dbTransaction&& other) noexcept
    : _FirstAction (std::move (other._FirstAction)),
      _LastAction (std::exchange (other._LastAction, nullptr)) {}

dbTransaction& dbTransaction::operator= (dbTransaction&& other) noexcept {
  if (this == &other) return *this;
  Clear ();
  _FirstAction = std::move (other._FirstAction);
  _LastAction = std::exchange (other._LastAction, nullptr);
  return *this;
}

dbTransaction::~dbTransaction () { Clear (); }

void dbTransaction::Add (std::unique_ptr<dbModel_Action> action) {
  if (!action) return;
  dbModel_Action* added = action.get ();
  if (_LastAction)
    _LastAction->Next = std::move (action);
  else
    _FirstAction = std::move (action);
  _LastAction = added;
}

void dbTransaction::Clear () {
  _LastAction = nullptr;
  std::unique_ptr<dbModel_Action> action = std::move (_FirstAction);
  while (action) {
    std::unique_ptr<dbModel_Action> next = std::move (action->Next);
    if (_SpareCount < maxSpareActions) {
      action->DBRecord.reset ();
      action->Next = std::move (_Spare);
      _Spare = std::move (action);
      _SpareCount++;
    }
    action = std::move (next);
  }
}

std::unique_ptr<dbModel_Action> dbTransaction::NewAction () {
  if (!_Spare) return std::make_unique<dbModel_Action> ();
  std::unique_ptr<dbModel_Action> action = std::move (_Spare);
  _Spare = std::move (action->Next);
  _SpareCount--;
  action->Flags = 0;
  action->Type = DBACTION_None;
  action->Target = NODBID;
  return action;
}

void dbTransaction::MarkCancelled () {
  if (_LastAction) _LastAction->Flags |= ACTION_TransactionCancelled;
}

void dbTransaction::MarkEnd () {
  if (_LastAction) _LastAction->Flags |= ACTION_TransactionEnd;
}

bool dbTransaction::IsCancelled () const noexcept {
  return _LastAction && (_LastAction->Flags & ACTION_TransactionCancelled) != 0;
}

bool dbTransaction::IsComplete () const noexcept {
  return _LastAction && (_LastAction->Flags & ACTION_TransactionEnd) != 0;
}

dbModel_Thread::~dbModel_Thread () {
  Assert (_FrontPointer == nullptr, "_FrontPointer == NULL");
  Assert (_BackPointer == nullptr, "_BackPointer == NULL");
}

void dbModel_Thread::Append (dbModel_Node& node) noexcept {
  node.ChainForward = nullptr;
  node.ChainBack = _BackPointer;
  (_BackPointer ? _BackPointer->ChainForward : _FrontPointer) = &node;
  _BackPointer = &node;
}

void dbModel_Thread::InsertInFront (dbModel_Node& target, dbModel_Node& node) noexcept {
  node.ChainForward = &target;
  node.ChainBack = target.ChainBack;
  (target.ChainBack ? target.ChainBack->ChainForward : _FrontPointer) = &node;
  target.ChainBack = &node;
}

void dbModel_Thread::Unlink (dbModel_Node& node) noexcept {
  dbModel_Node* recordBefore = node.ChainBack;
  dbModel_Node* recordAfter = node.ChainForward;
  if (recordBefore) {
    Assert (recordBefore->ChainForward == &node, "recordBefore->ChainForward == oldRecord");
    recordBefore->ChainForward = recordAfter;
  } else {
    Assert (_FrontPointer == &node, "_FrontPointer == oldRecord");
    _FrontPointer = recordAfter;
  }
  if (recordAfter) {
    Assert (recordAfter->ChainBack == &node, "recordAfter->ChainBack == oldRecord");
    recordAfter->ChainBack = recordBefore;
  } else {
    Assert (_BackPointer == &node, "_BackPointer == oldRecord");
    _BackPointer = recordBefore;
  }
  node.ChainForward = nullptr;
  node.ChainBack = &node;
}

dbModel::~dbModel () {
  Assert (_MainThread.Front () == nullptr, "_MainThread._FrontPointer == NULL");
  Clear ();
}

const dbModel::TypeEntry& dbModel::TypeIndex (database_RecordType type) const noexcept {
  return _TypeIndex[type < DATABASE_AllRecords ? type : DATABASE_AllRecords];
}

void dbModel::ApplyTransaction (dbTransaction& transaction, ApplyMode mode) {
  for (dbModel_Action* action = transaction.First (); action; action = action->Next.get ())
    Apply (*action, mode);
}

void dbModel::Retire (std::unique_ptr<dbRecord_Class> record) {
  if (!record) return;
  dbModel_Node& node = NewNode ();
  node.DBRecord = std::move (record);
  node.ChainForward = _RetiredRecords;
  _RetiredRecords = &node;
  _RetiredCount++;
}

void dbModel::FreeRetired () {
  while (_RetiredRecords) {
    dbModel_Node* node = _RetiredRecords;
    _RetiredRecords = node->ChainForward;
    FreeNode (*node);
  }
  _RetiredCount = 0;
}

void dbModel::Clear () {
  _MainThread.Forget ();
  _RetiredRecords = nullptr;
  _RetiredCount = 0;
  _FreeNodes = nullptr;
  for (Slab* slab : _Slabs) slab->~Slab ();
  _Slabs.clear ();
  _SlabUsed = SlabSize;
  _Blocks.clear ();
  _Pool.Clear ();
  _TypeIndex.fill ({});
  _LastOnChain.fill (nullptr);
  _Changes.fill (0);
  _Order.Clear ();
  _RecordCount = 0;
  _NextDBID = {1};
}

bool dbModel::Enter (DBID id, dbModel_Node& node) {
  if (!Assert (id.value > 0, "id > 0")) return false;
  const uint32_t bnum = id.value / BlockSize;
  if (bnum >= _Blocks.size ()) _Blocks.resize (std::size_t{bnum} + 1);
  Assert (BlockCount () > bnum, "BlockCount > bnum");
  if (!_Blocks[bnum])
    _Blocks[bnum] =
        ::new (_Pool.Allocate (BlockSize * sizeof (dbModel_Node*))) dbModel_Node* [BlockSize] {};
  _Blocks[bnum][id.value % BlockSize] = &node;
  return true;
}

dbModel_Node& dbModel::NewNode () {
  if (_FreeNodes) {
    dbModel_Node& node = *_FreeNodes;
    _FreeNodes = node.ChainForward;
    node.ChainForward = nullptr;
    return node;
  }
  if (_SlabUsed == SlabSize) {
    _Slabs.push_back (::new (_Pool.Allocate (sizeof (Slab))) Slab);
    _SlabUsed = 0;
  }
  return (*_Slabs.back ())[_SlabUsed++];
}

void dbModel::FreeNode (dbModel_Node& node) noexcept {
  node.DBRecord.reset ();
  node.ChainBack = nullptr;
  node.ChainForward = _FreeNodes;
  _FreeNodes = &node;
}

}  // namespace clxml
