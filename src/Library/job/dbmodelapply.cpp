// The effect of an action on the model.
// The record of an action decides first, its verb second: measurements and carriers change their
// target, notes and records with features are changed in place, everything else is added, replaced,
// inserted or deleted.
#include <utility>

#include "Library/job/dbmodel.h"
#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

constexpr const char* missingTarget = "Target record missing from Model.  Target ";
constexpr const char* otherTarget = "Target record of another kind in Model.  Target ";
constexpr const char* otherVerb = "Verb that the record does not take in Model.  Target ";
constexpr const char* badAction = "!\"Bad action\"";

bool Refuse (const dbModel_Action& action, ApplyMode mode, const char* assertion,
             const char* reason) {
  if (mode != ApplyMode::Replay) Assert (false, assertion);
  LogNumber (reason, action.Target.value);
  LogNumber ("-- Offending record ID ", action.DBRecord ? action.DBRecord->RecordId.value : 0);
  return false;
}

std::unique_ptr<dbRecord_Class> OwnRecord (dbModel_Action& action, ApplyMode mode) {
  return mode == ApplyMode::Copy ? CloneRecord (*action.DBRecord) : std::move (action.DBRecord);
}

dbRecordWithFeatures_Class* WithFeatures (dbModel_Node* node) {
  if (!node) return nullptr;
  switch (node->DBRecord->GetType ()) {
    case DATABASE_ObservationRecord:
    case DATABASE_LineRecord:
    case DATABASE_ArcRecord:
      return static_cast<dbRecordWithFeatures_Class*> (node->DBRecord.get ());
    default:
      return nullptr;
  }
}

// A measurement reaches its observation only by an action of its own. The file stores the
// observation without it, so the model must do the same.
void DropMeasurement (dbRecord_Class& record) {
  if (db_Observation* observation = db_Observation::From (&record))
    observation->SetMeasurement (nullptr);
}

bool HasMark (database_RecordType type) {
  return type == DATABASE_ObservationRecord || type == DATABASE_LineRecord ||
         type == DATABASE_ArcRecord || type == DATABASE_TraverseHeaderRecord;
}

bool HasReference (database_RecordType measurement) {
  return measurement == DATABASE_ECEFDeltasRecord || measurement == DATABASE_ECEFRecord ||
         measurement == DATABASE_CircleRecord || measurement == DATABASE_MeanTurnedAngleRecord;
}

}  // namespace

bool dbModel::Apply (dbModel_Action& action, ApplyMode mode) {
  if (!Assert (action.DBRecord != nullptr, "action->DBRecord")) return false;
  if (action.Type == DBACTION_Foreign) return true;
  if (action.DBRecord->IsMeasurement ()) return ApplyMeasurement (action, mode);
  switch (action.DBRecord->GetType ()) {
    case DATABASE_NoteRecord:
      return ApplyNote (action, mode);
    case DATABASE_ObservationRecord:
    case DATABASE_LineRecord:
    case DATABASE_ArcRecord:
      return action.Type == DBACTION_Replace ? ApplyInPlace (action, mode)
                                             : ApplyGeneric (action, mode);
    case DATABASE_BoolActionRecord:
      return ApplyMark (action, mode);
    case DATABASE_DBIDRecord:
      return ApplyReference (action, mode);
    case DATABASE_FeaturesRecord:
      return ApplyFeatures (action, mode);
    case DATABASE_DescriptionsRecord:
      return ApplyDescriptions (action, mode);
    default:
      return ApplyGeneric (action, mode);
  }
}

bool dbModel::ApplyMeasurement (dbModel_Action& action, ApplyMode mode) {
  if (action.Type != DBACTION_Amend) return Refuse (action, mode, badAction, otherVerb);
  dbModel_Node* target = Lookup (action.Target);
  if (!target) return Refuse (action, mode, "obs", missingTarget);
  db_Observation* obs = db_Observation::From (target->DBRecord.get ());
  if (!obs) return Refuse (action, mode, "obs", otherTarget);
  std::unique_ptr<dbRecord_Class> record = OwnRecord (action, mode);
  Retire (obs->ReplaceMeasurement (
      std::unique_ptr<db_Measurement> (static_cast<db_Measurement*> (record.release ()))));
  return true;
}

bool dbModel::ApplyNote (dbModel_Action& action, ApplyMode mode) {
  switch (action.Type) {
    case DBACTION_Add:
    case DBACTION_Insert:
      return ApplyGeneric (action, mode);
    case DBACTION_Replace:
    case DBACTION_Amend: {
      dbModel_Node* target = Lookup (action.Target);
      if (!target) return Refuse (action, mode, "target", missingTarget);
      if (mode == ApplyMode::Copy)
        target->DBRecord->Note = action.DBRecord->Note;
      else
        target->DBRecord->Note = std::move (action.DBRecord->Note);
      return true;
    }
    default:
      return Refuse (action, mode, badAction, otherVerb);
  }
}

bool dbModel::ApplyInPlace (dbModel_Action& action, ApplyMode mode) {
  dbModel_Node* target = Lookup (action.Target);
  if (!target) return Refuse (action, mode, "rwfc", missingTarget);
  dbRecordWithFeatures_Class* rwfc = WithFeatures (target);
  if (!rwfc) return Refuse (action, mode, "rwfc", otherTarget);
  if (rwfc->GetType () != action.DBRecord->GetType ())
    return Refuse (action, mode, "rwfc->GetType() == action->DBRecord->GetType()", otherTarget);
  const double timeStamp = rwfc->TimeStamp;
  rwfc->CopyFrom (*action.DBRecord);
  rwfc->TimeStamp = timeStamp;
  return true;
}

bool dbModel::ApplyMark (dbModel_Action& action, ApplyMode mode) {
  dbModel_Node* target = Lookup (action.Target);
  if (!target) return Refuse (action, mode, "target", missingTarget);
  if (!HasMark (target->DBRecord->GetType ())) return Refuse (action, mode, "target", otherTarget);
  target->DBRecord->ApplyBoolAction (static_cast<const db_BoolAction&> (*action.DBRecord));
  return true;
}

bool dbModel::ApplyReference (dbModel_Action& action, ApplyMode mode) {
  dbModel_Node* target = Lookup (action.Target);
  if (!target) return Refuse (action, mode, "target", missingTarget);
  const DBID value = static_cast<const db_DBID&> (*action.DBRecord).Value;
  switch (target->DBRecord->GetType ()) {
    case DATABASE_ObservationRecord: {
      db_Measurement* measurement = static_cast<db_Observation&> (*target->DBRecord).Measurement ();
      if (!measurement || !HasReference (measurement->GetType ()))
        return Refuse (action, mode, "measurement", otherTarget);
      measurement->SetReference (value);
      return true;
    }
    case DATABASE_AntennaRecord:
      target->DBRecord->SetReference (value);
      return true;
    default:
      return true;
  }
}

bool dbModel::ApplyFeatures (dbModel_Action& action, ApplyMode mode) {
  if (action.Target == NODBID)
    return Refuse (action, mode, "action->Target.value != NODBID", missingTarget);
  dbModel_Node* target = Lookup (action.Target);
  if (!target) return Refuse (action, mode, "rwf", missingTarget);
  dbRecordWithFeatures_Class* rwf = WithFeatures (target);
  if (!rwf) return Refuse (action, mode, "rwf", otherTarget);
  db_Features& carrier = static_cast<db_Features&> (*action.DBRecord);
  if (!rwf->Features.IsDifferent (carrier.Features)) return true;
  if (rwf->Features.Count () > 0) {
    // The entries move, they are not copied: a reader may hold one of them.
    auto old = std::make_unique<db_Features> ();
    old->RecordId = action.Target;
    old->Features = rwf->Features.Take ();
    Retire (std::move (old));
  }
  if (mode == ApplyMode::Copy)
    rwf->Features = carrier.Features;
  else
    rwf->Features = carrier.Features.Take ();
  return true;
}

bool dbModel::ApplyDescriptions (dbModel_Action& action, ApplyMode mode) {
  dbModel_Node* target = Lookup (action.Target);
  if (!target) return Refuse (action, mode, "rwf", missingTarget);
  dbRecordWithFeatures_Class* rwf = WithFeatures (target);
  if (!rwf) return Refuse (action, mode, "rwf", otherTarget);
  const db_Descriptions& carrier = static_cast<const db_Descriptions&> (*action.DBRecord);
  rwf->Description1 = carrier.Description1;
  rwf->Description2 = carrier.Description2;
  return true;
}

bool dbModel::ApplyGeneric (dbModel_Action& action, ApplyMode mode) {
  switch (action.Type) {
    case DBACTION_Add:
      return Add (action, mode);
    case DBACTION_Replace:
      return Replace (action, mode);
    case DBACTION_Insert:
      return Insert (action, mode);
    case DBACTION_Delete:
      return Delete (action, mode);
    default:
      return Refuse (action, mode, badAction, otherVerb);
  }
}

bool dbModel::Add (dbModel_Action& action, ApplyMode mode) {
  const DBID id = action.DBRecord->RecordId;
  if (id == NODBID || Lookup (id)) return Refuse (action, mode, "id > 0", otherVerb);
  if (_Order.IsBuilt ()) _Order.Prepare (_MainThread, id);
  dbModel_Node& node = NewNode ();
  node.DBRecord = OwnRecord (action, mode);
  DropMeasurement (*node.DBRecord);
  _MainThread.Append (node);
  Enter (id, node);
  _RecordCount++;
  const database_RecordType type = node.DBRecord->GetType ();
  TypeEntry& entry = _TypeIndex[type];
  entry.Count++;
  if (entry.First == NODBID) entry.First = id;
  entry.Last = id;
  _LastOnChain[type] = nullptr;
  if (_Order.IsBuilt ()) _Order.Enter (node);
  return true;
}

bool dbModel::Replace (dbModel_Action& action, ApplyMode mode) {
  dbModel_Node* node = Lookup (action.Target);
  if (!node || node->IsOffChain ()) return Refuse (action, mode, "oldRecord", missingTarget);
  if (node->DBRecord->GetType () != action.DBRecord->GetType ())
    return Refuse (action, mode, "oldRecord->DBRecord->GetType() == record->GetType()",
                   otherTarget);
  // The node stays on the chain and gets the new record, so that a walk over the chain goes on.
  std::unique_ptr<dbRecord_Class> record = OwnRecord (action, mode);
  record->TimeStamp = node->DBRecord->TimeStamp;
  record->RecordId = action.Target;
  _Changes[record->GetType ()]++;
  std::swap (node->DBRecord, record);
  Retire (std::move (record));
  return true;
}

bool dbModel::Insert (dbModel_Action& action, ApplyMode mode) {
  const DBID id = action.DBRecord->RecordId;
  if (id == NODBID) return Refuse (action, mode, "record->GetRecordId() != NODBID", otherVerb);
  if (Lookup (id)) return Refuse (action, mode, "id > 0", otherVerb);
  dbModel_Node* target = Lookup (action.Target);
  if (!target || target->IsOffChain ()) return Refuse (action, mode, "target", missingTarget);
  _Order.Prepare (_MainThread, id);
  const database_RecordType type = action.DBRecord->GetType ();
  TypeEntry& entry = _TypeIndex[type];
  const dbModel_Node* last = LastOnChain (type);
  const bool movesLast = !last || _Order.IsBefore (*last, *target);
  dbModel_Node& node = NewNode ();
  node.DBRecord = OwnRecord (action, mode);
  DropMeasurement (*node.DBRecord);
  _MainThread.InsertInFront (*target, node);
  Enter (id, node);
  _Order.Enter (node);
  _RecordCount++;
  _Changes[type]++;
  entry.Count++;
  if (entry.First == NODBID) entry.First = id;
  if (movesLast) {
    entry.Last = id;
    _LastOnChain[type] = nullptr;
  }
  return true;
}

// The last node of the type on the chain, or null. If the last record of the type index was
// deleted, the one before it is searched for from the back once, and kept until a record of the
// type is added behind it.
dbModel_Node* dbModel::LastOnChain (database_RecordType type) {
  dbModel_Node* last = Lookup (_TypeIndex[type].Last);
  if (!last || !last->IsOffChain ()) return last;
  dbModel_Node*& kept = _LastOnChain[type];
  if (kept && !kept->IsOffChain ()) return kept;
  for (kept = _MainThread.Back (); kept; kept = kept->ChainBack)
    if (kept->DBRecord->GetType () == type) break;
  return kept;
}

bool dbModel::Delete (dbModel_Action& action, ApplyMode mode) {
  dbModel_Node* node = Lookup (action.Target);
  if (!node || node->IsOffChain ()) return Refuse (action, mode, "oldRecord", missingTarget);
  _Changes[node->DBRecord->GetType ()]++;
  _MainThread.Unlink (*node);
  return true;
}

}  // namespace clxml
