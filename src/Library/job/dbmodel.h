// The job in memory, and the actions that change it.
// Every live record on one chain, reachable by its DBID; changed only by actions, which come in
// transactions. Leans on the records.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "Library/records/dbRecord.h"
#include "platform/pool.h"

namespace clxml {

/// What an action does; 16 bits on disk.
enum dbModel_Verb : uint32_t {
  DBACTION_Add = 10800,       ///< appends the record at the back of the chain
  DBACTION_Replace = 10801,   ///< the record takes the target's place
  DBACTION_Insert = 10802,    ///< the record goes directly in front of the target
  DBACTION_Amend = 10803,     ///< the record is a carrier that changes the target
  DBACTION_Foreign = 10804,   ///< outside data, no effect on the model
  DBACTION_Reserved = 10805,  ///< occurs in no job; readers refuse it
  DBACTION_Delete = 10806,    ///< unlinks the target
  DBACTION_None = 10807,
};

/// Add, Insert and Amend take a DBID of their own; Replace and Delete have that of their target,
/// Foreign has none.
constexpr bool TakesNumber (dbModel_Verb verb) noexcept {
  return verb == DBACTION_Add || verb == DBACTION_Insert || verb == DBACTION_Amend;
}

/// Bits of an action's flags.
enum : uint32_t {
  ACTION_TransactionStart = 1,
  ACTION_TransactionEnd = 2,
  ACTION_TransactionCancelled = 4,
};

/// One change: a verb, the record it is aimed at, and a record of its own.
class dbModel_Action {
 public:
  dbModel_Action () = default;
  dbModel_Action (dbModel_Verb verb, DBID target, std::unique_ptr<dbRecord_Class> record);
  dbModel_Action (dbModel_Action&&) noexcept = default;
  dbModel_Action& operator= (dbModel_Action&&) noexcept = default;
  virtual ~dbModel_Action () = default;

  uint32_t Flags = 0;
  dbModel_Verb Type = DBACTION_None;
  DBID Target;  ///< NODBID for an add
  std::unique_ptr<dbRecord_Class> DBRecord;
  std::unique_ptr<dbModel_Action> Next;
};

/// Actions in the order in which they were added; they count as a whole.
class dbTransaction {
 public:
  dbTransaction () = default;
  dbTransaction (const dbTransaction&) = delete;
  dbTransaction& operator= (const dbTransaction&) = delete;
  /// Takes the actions of another transaction, which is empty afterwards.
  dbTransaction (dbTransaction&& other) noexcept;
  dbTransaction& operator= (dbTransaction&& other) noexcept;
  virtual ~dbTransaction ();

  /// Appends and takes ownership; null does nothing.
  void Add (std::unique_ptr<dbModel_Action> action);
  /// Deletes all actions, without recursion; a few empty ones are kept for NewAction.
  void Clear ();
  /// An empty action for Add: one that Clear kept, or a new one.
  std::unique_ptr<dbModel_Action> NewAction ();
  bool IsEmpty () const noexcept { return _FirstAction == nullptr; }
  dbModel_Action* First () const noexcept { return _FirstAction.get (); }
  dbModel_Action* Last () const noexcept { return _LastAction; }
  /// Set and test the bits of the last action; the tests are false on an empty transaction.
  void MarkCancelled ();
  void MarkEnd ();
  bool IsCancelled () const noexcept;
  bool IsComplete () const noexcept;

 private:
  std::unique_ptr<dbModel_Action> _FirstAction;
  dbModel_Action* _LastAction = nullptr;
  std::unique_ptr<dbModel_Action> _Spare;
  int _SpareCount = 0;
};

/// A node of the chain and its record.
struct dbModel_Node {
  dbModel_Node* ChainForward = nullptr;  ///< towards the back
  dbModel_Node* ChainBack = nullptr;     ///< towards the front; the node itself after a delete
  std::unique_ptr<dbRecord_Class> DBRecord;
  /// Deleted: reachable by its DBID, without neighbours.
  bool IsOffChain () const noexcept { return ChainBack == this; }
};

/// The chain: its two ends. Neighbours that do not point at each other are asserted.
class dbModel_Thread {
 public:
  dbModel_Thread () = default;
  dbModel_Thread (const dbModel_Thread&) = delete;
  dbModel_Thread& operator= (const dbModel_Thread&) = delete;
  /// Asserts "_FrontPointer == NULL" and "_BackPointer == NULL".
  virtual ~dbModel_Thread ();

  dbModel_Node* Front () const noexcept { return _FrontPointer; }
  dbModel_Node* Back () const noexcept { return _BackPointer; }
  void Append (dbModel_Node& node) noexcept;
  void InsertInFront (dbModel_Node& target, dbModel_Node& node) noexcept;
  void Unlink (dbModel_Node& node) noexcept;
  void Forget () noexcept { _FrontPointer = _BackPointer = nullptr; }

 private:
  dbModel_Node* _FrontPointer = nullptr;
  dbModel_Node* _BackPointer = nullptr;
};

/// The order of the nodes on a chain: which of two comes first, in constant time. An insertion
/// costs O(log n) on average, n being the number of nodes.
class dbModel_Order {
 public:
  bool IsBuilt () const noexcept { return !_Tags.empty (); }
  /// Makes room for the node of that DBID, which is not on the chain yet. The first call tags the
  /// whole chain, which is linear in its length.
  void Prepare (const dbModel_Thread& chain, DBID id);
  /// Enters the node that was prepared and is on the chain now.
  void Enter (const dbModel_Node& node) noexcept;
  /// Both nodes are on the chain.
  bool IsBefore (const dbModel_Node& a, const dbModel_Node& b) noexcept {
    return TagOf (a) < TagOf (b);
  }
  void Clear () noexcept { _Tags.clear (); }

 private:
  uint64_t& TagOf (const dbModel_Node& node) noexcept {
    return _Tags[node.DBRecord->RecordId.value];
  }
  void MakeRoom (const dbModel_Node& untagged) noexcept;

  std::vector<uint64_t> _Tags;  // by DBID
};

/// What the model does with an action's record, and how it reports an action that does not fit.
enum class ApplyMode {
  Copy,    ///< the action keeps its record; a bad action is asserted and logged
  Take,    ///< the record may move into the model; a bad action is asserted and logged
  Replay,  ///< the record may move into the model; a bad action, from a file, is logged only
};

/// The records of a job. A record is changed only by Apply. Pointers to nodes and records stay
/// valid until ReleaseRetired (a superseded record) or Clear (any other).
class dbModel {
 public:
  /// DBIDs of one block of the look-up table.
  static constexpr uint32_t BlockSize = 1018;
  struct TypeEntry {
    DBID First, Last;   ///< the first and the last record of the type on the chain
    int32_t Count = 0;  ///< how many were added
  };

  dbModel () = default;
  dbModel (const dbModel&) = delete;
  dbModel& operator= (const dbModel&) = delete;
  /// Asserts "_MainThread._FrontPointer == NULL".
  virtual ~dbModel ();

  /// The node of a record, also of a deleted one; null for NODBID and an unknown id. Two array
  /// accesses.
  dbModel_Node* Lookup (DBID id) const noexcept {
    const uint32_t block = id.value / BlockSize;
    if (block >= _Blocks.size () || !_Blocks[block]) return nullptr;
    return _Blocks[block][id.value % BlockSize];
  }
  const dbModel_Thread& MainThread () const noexcept { return _MainThread; }
  /// Hands out the next number.
  DBID NextDBID () noexcept { return {_NextDBID.value++}; }
  /// The number that NextDBID will hand out.
  DBID PeekNextDBID () const noexcept { return _NextDBID; }
  void SetNextDBID (DBID id) noexcept { _NextDBID = id; }
  const TypeEntry& TypeIndex (database_RecordType type) const noexcept;
  /// How often records of the type were inserted, replaced or deleted: changes of the chain other
  /// than an add at the back.
  uint32_t ChangeCount (database_RecordType type) const noexcept { return _Changes[type]; }
  /// How many records were added.
  int32_t RecordCount () const noexcept { return _RecordCount; }
  /// Blocks in the look-up table, those never made included.
  uint32_t BlockCount () const noexcept { return static_cast<uint32_t> (_Blocks.size ()); }
  /// Superseded records that wait for ReleaseRetired.
  int32_t RetiredCount () const noexcept { return _RetiredCount; }

  /// One action; its record has its DBID. False when the action did not fit (missing target, one
  /// of another kind, a verb that the record does not take): it is then skipped with a log line,
  /// and asserted unless it is a replay.
  bool Apply (dbModel_Action& action, ApplyMode mode = ApplyMode::Copy);
  /// Each action in order.
  void ApplyTransaction (dbTransaction& transaction, ApplyMode mode = ApplyMode::Copy);

  /// Keeps a record that a reader may still hold until ReleaseRetired; null does nothing.
  void Retire (std::unique_ptr<dbRecord_Class> record);
  /// Frees superseded records. No reader may hold one.
  void ReleaseRetired () {
    if (_RetiredRecords) FreeRetired ();
  }
  /// Where records are made that come to this model and go with it: all of them are gone before
  /// Clear.
  Pool& RecordPool () noexcept { return _Pool; }
  /// Frees everything; the next number is 1 again.
  void Clear ();

 private:
  static constexpr std::size_t SlabSize = 170;  // nodes, within a page
  using Slab = std::array<dbModel_Node, SlabSize>;

  bool ApplyMeasurement (dbModel_Action& action, ApplyMode mode);
  bool ApplyNote (dbModel_Action& action, ApplyMode mode);
  bool ApplyInPlace (dbModel_Action& action, ApplyMode mode);
  bool ApplyMark (dbModel_Action& action, ApplyMode mode);
  bool ApplyReference (dbModel_Action& action, ApplyMode mode);
  bool ApplyFeatures (dbModel_Action& action, ApplyMode mode);
  bool ApplyDescriptions (dbModel_Action& action, ApplyMode mode);
  bool ApplyGeneric (dbModel_Action& action, ApplyMode mode);
  bool Add (dbModel_Action& action, ApplyMode mode);
  bool Replace (dbModel_Action& action, ApplyMode mode);
  bool Insert (dbModel_Action& action, ApplyMode mode);
  bool Delete (dbModel_Action& action, ApplyMode mode);
  dbModel_Node* LastOnChain (database_RecordType type);
  bool Enter (DBID id, dbModel_Node& node);
  dbModel_Node& NewNode ();
  void FreeRetired ();
  void FreeNode (dbModel_Node& node) noexcept;

  Pool _Pool;
  dbModel_Thread _MainThread;
  dbModel_Node* _RetiredRecords = nullptr;
  int32_t _RetiredCount = 0;
  DBID _NextDBID{1};
  std::array<TypeEntry, DATABASE_AllRecords + 1> _TypeIndex{};
  std::array<dbModel_Node*, DATABASE_AllRecords + 1> _LastOnChain{};  // see LastOnChain
  std::array<uint32_t, DATABASE_AllRecords + 1> _Changes{};
  dbModel_Order _Order;  // of the chain, kept once a record was inserted
  int32_t _RecordCount = 0;
  std::vector<dbModel_Node**> _Blocks;  // of the pool, made only where used
  std::vector<Slab*> _Slabs;            // of the pool: all nodes, which never move
  std::size_t _SlabUsed = SlabSize;     // nodes handed out of the last slab
  dbModel_Node* _FreeNodes = nullptr;   // through ChainForward
};

}  // namespace clxml
