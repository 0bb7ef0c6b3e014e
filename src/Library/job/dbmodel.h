// The job in memory, and the actions that change it.
// Every live record on one chain, reachable by its DBID; changed only by actions, which come in
// transactions. Leans on the records.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "Library/records/dbRecord.h"

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
  virtual ~dbModel_Action () = default;

  uint32_t Flags = 0;
  dbModel_Verb Type = DBACTION_None;
  DBID Target;
  std::unique_ptr<dbRecord_Class> DBRecord;
  std::unique_ptr<dbModel_Action> Next;
};

/// Actions in the order they were added, which count as a whole.
class dbTransaction {
 public:
  dbTransaction () = default;
  dbTransaction (const dbTransaction&) = delete;
  dbTransaction& operator= (const dbTransaction&) = delete;
  virtual ~dbTransaction () { Clear (); }

  /// Appends and takes ownership.
  void Add (std::unique_ptr<dbModel_Action> action);
  /// Deletes all actions, without recursion.
  void Clear ();
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
};


}  // namespace clxml
