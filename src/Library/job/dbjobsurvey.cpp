// Targets, antennas and equipment of a job.
// A record in force is stored once. Changing the target or antenna of one observation leaves the
// later ones unchanged.
#include <cstring>
#include <string_view>

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

// The target of that name that was added last, unless its survey style has ended.
const dbRecord_Class* JobDatabase::FindTarget (const char* name) {
  // A target of the open group is neither in an index nor on the chain yet.
  const db_Target* latest = db_Target::From (_Access->GetLatestRecord (DATABASE_TargetRecord));
  if (latest && std::strcmp (latest->GetName (), name) == 0) return latest;
  if (_Index) return _Access->GetRecord (_Index->FindTarget (name));
  return FindTargetOnChain (name);
}

// Constant time on average: the names are entered as the chain grows, and from the start again only
// after a target or the end of a survey style was not added at the back.
const dbRecord_Class* JobDatabase::FindTargetOnChain (const char* name) {
  const dbModel& model = _Access->Model ();
  const uint32_t changes =
      model.ChangeCount (DATABASE_TargetRecord) + model.ChangeCount (DATABASE_EndStyleRecord);
  const dbModel_Node* node = model.Lookup (_TargetNames.ScannedTo);
  if (!node || node->IsOffChain () || changes != _TargetNames.Changes) {
    _TargetNames = {};
    _TargetNames.Changes = changes;
    node = model.MainThread ().Front ();
  } else {
    node = node->ChainForward;
  }
  for (; node; node = node->ChainForward) {
    const dbRecord_Class* record = node->DBRecord.get ();
    if (record->GetType () == DATABASE_EndStyleRecord)
      _TargetNames.Last.clear ();
    else if (const db_Target* target = db_Target::From (record))
      _TargetNames.Last.insert_or_assign (target->GetName (), target->RecordId);
    _TargetNames.ScannedTo = record->RecordId;
  }
  const auto found = _TargetNames.Last.find (std::string_view (name));
  return found == _TargetNames.Last.end () ? nullptr : _Access->GetRecord (found->second);
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
  // The measurement is only read; it is changed by actions.
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
  dbGroup group (*_Access);
  for (const dbModel_Node* node = _Access->Model ().MainThread ().Back (); node;
       node = node->ChainBack) {
    const DBID id = node->DBRecord->RecordId;
    if (id == observationId) break;
    if (referenceOf (id) == oldId) SetReference (id, againId);
  }
  group.End ();
  return newId;
}

}  // namespace clxml
