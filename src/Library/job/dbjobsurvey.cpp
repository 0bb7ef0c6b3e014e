// Targets, antennas and equipment of a job.
// What is in force is stored once; giving one observation another target or antenna leaves those
// behind it as they were. Leans on dbJob.
#include <cstring>

#include "Library/job/dbJob.h"
#include "Library/job/dbjoblistener.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbGPS.h"
#include "Library/records/dbMeasurements.h"

namespace clxml {
namespace {

DBID* TargetOf (dbRecord_Class* measurement) {
  if (db_Circle* circle = db_Circle::From (measurement)) return &circle->Target;
  if (db_MeanTurnedAngle* mean = db_MeanTurnedAngle::From (measurement)) return &mean->Target;
  return nullptr;
}

DBID* AntennaOf (dbRecord_Class* measurement) {
  if (db_ECEFDeltas* deltas = db_ECEFDeltas::From (measurement)) return &deltas->Antenna;
  if (db_ECEF* ecef = db_ECEF::From (measurement)) return &ecef->Antenna;
  return nullptr;
}

}  // namespace

// The target of that name that was added last, unless the survey style in which it was has ended.
const dbRecord_Class* JobDatabase::FindTarget (const char* name) const {
  const auto isIt = [name] (const dbRecord_Class* record) {
    const db_Target* target = db_Target::From (record);
    return target && std::strcmp (target->GetName (), name) == 0;
  };
  // One that waits in the open group is in no index and on no chain yet.
  const dbRecord_Class* latest = _Access->GetLatestRecord (DATABASE_TargetRecord);
  if (isIt (latest)) return latest;
  if (_Index) return _Access->GetRecord (_Index->FindTarget (name));
  for (const dbModel_Node* node = _Access->Model ().MainThread ().Back (); node;
       node = node->ChainBack) {
    if (isIt (node->DBRecord.get ())) return node->DBRecord.get ();
    if (node->DBRecord->GetType () == DATABASE_EndStyleRecord) break;
  }
  return nullptr;
}

DBID JobDatabase::AddIfNew (dbRecord_Class& record, const dbRecord_Class* inForce) {
  if (inForce && inForce->GetType () == record.GetType () &&
      inForce->RecordId > _Access->GetLastOfType (DATABASE_EndStyleRecord) &&
      inForce->IsEqual (record))
    return inForce->RecordId;
  return AddRecord (record);
}

DBID JobDatabase::AddTargetIfNew (db_Target& record) {
  if (!Assert (_Access != nullptr, "_Access")) return NODBID;
  return AddIfNew (record, FindTarget (record.GetName ()));
}

DBID JobDatabase::AddAntennaIfNew (db_Antenna& record) {
  if (!Assert (_Access != nullptr, "_Access")) return NODBID;
  return AddIfNew (record, _Access->GetLatestRecord (DATABASE_AntennaRecord));
}

DBID JobDatabase::AddEquipmentIfNew (db_Equipment& record) {
  if (!Assert (_Access != nullptr, "_Access")) return NODBID;
  return AddIfNew (record, _Access->GetLatestRecord (DATABASE_EquipmentRecord));
}

DBID JobDatabase::ChangeTarget (DBID observationId, db_Target& newTarget) {
  return ChangeReferenced (observationId, newTarget, TargetOf, "oldTargetPtr");
}

DBID JobDatabase::ChangeAntenna (DBID observationId, db_Antenna& newAntenna) {
  return ChangeReferenced (observationId, newAntenna, AntennaOf, "oldAntennaPtr");
}

DBID JobDatabase::ChangeReferenced (DBID observationId, dbRecord_Class& newRecord,
                                    DBID* (*reference) (dbRecord_Class*), const char* missing) {
  if (!Assert (_Access != nullptr, "_Access")) return NODBID;
  // Looked at only: what changes goes through actions.
  const auto referenceOf = [&] (DBID id) {
    const db_Observation* observation = db_Observation::From (_Access->GetRecord (id));
    const DBID* used = observation
                           ? reference (const_cast<db_Measurement*> (observation->Measurement ()))
                           : nullptr;
    return used ? *used : NODBID;
  };
  const db_Observation* observation = db_Observation::From (_Access->GetRecord (observationId));
  if (!Assert (observation != nullptr, "observation")) return NODBID;
  const DBID oldId = referenceOf (observationId);
  const dbRecord_Class* oldRecord = _Access->GetRecord (oldId);
  if (!Assert (oldRecord && oldRecord->GetType () == newRecord.GetType (), missing)) return NODBID;
  const std::unique_ptr<dbRecord_Class> oldCopy = CloneRecord (*oldRecord);

  const DBID newId = AddRecord (newRecord);
  SetReference (observationId, newId);
  const DBID againId = AddRecord (*oldCopy);
  _Access->BeginGroup ();
  for (const dbModel_Node* node = _Access->Model ().MainThread ().Back (); node;
       node = node->ChainBack) {
    const DBID id = node->DBRecord->RecordId;
    if (id == observationId) break;
    if (referenceOf (id) == oldId) SetReference (id, againId);
  }
  _Access->EndGroup ();
  return newId;
}

}  // namespace clxml
