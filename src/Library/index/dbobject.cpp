// The objects of a job: what they read from their records, and what they keep.
#include "Library/index/dbobject.h"

#include "Library/index/jobfile.h"
#include "Library/position/position.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

// The record of an object of a job: null for an object of another file, or without an index.
const dbRecord_Class* RecordFor (const dbObject& object) {
  const dbIndex* index = object.GetIndex ();
  if (!Assert (index && index->GetFileType () == dbIndex::DatabaseFile,
               "index->GetFileType() == dbIndex::DatabaseFile"))
    return nullptr;
  return static_cast<const JobFile*> (index)->Record (object.GetRecordId ());
}

const dbRecordWithFeatures_Class* WithFeatures (const dbObject& object) {
  const dbRecord_Class* record = RecordFor (object);
  if (!record) return nullptr;
  switch (record->GetType ()) {
    case DATABASE_ObservationRecord:
    case DATABASE_LineRecord:
    case DATABASE_ArcRecord:
      return static_cast<const dbRecordWithFeatures_Class*> (record);
    default:
      return nullptr;
  }
}

void CodeOf (const dbObject& object, Str& out) {
  const dbRecordWithFeatures_Class* rec = WithFeatures (object);
  out = Assert (rec != nullptr, "rec") ? rec->Features.ToString () : Str ();
}

dbDescriptions DescriptionsOf (const dbObject& object) {
  const dbRecordWithFeatures_Class* record = WithFeatures (object);
  return record ? dbDescriptions{record->Description1, record->Description2}
                : StaticIndexGlobals.EmptyDescriptions;
}

}  // namespace

dbObject::dbObject (database_RecordType type, DBID recordId, const dbfilter_Words& words,
                    uint16_t flags)
    : _RecordId (recordId),
      _Words (words),
      _Flags (flags),
      _RecordType (static_cast<uint8_t> (type)) {}

const char* dbObject::GetName () const {
  const dbRecord_Class* record = RecordFor (*this);
  return record ? record->GetName () : "";
}

void dbObject::GetCode (Str& out) const {
  out = Str ();
  Assert (false, "rec");
}

dbDescriptions dbObject::GetDescriptions () const { return StaticIndexGlobals.EmptyDescriptions; }

bool dbObject::IsLinked () const { return false; }

const dbRecord_Class* dbObject::GetRecord () const {
  return IsLinked () ? nullptr : RecordFor (*this);
}

uint32_t dbObject::GetStatus () {
  if ((_Flags & OBJECT_StatusKnown) == 0)
    if (dbIndex* index = GetIndex ()) index->ComputeStatus (*this);
  return _Words[2];
}

bool dbObject::IsBest (bool gpsForm) {
  constexpr uint32_t any = DBSTATUS_NotAPoint | DBSTATUS_Best;
  constexpr uint32_t gps = DBSTATUS_NotAPoint | DBSTATUS_BestGPS;
  return (GetStatus () & (gpsForm ? gps : any)) != 0;
}

ObservationObject* AsObservation (dbObject* object) noexcept {
  return object && object->GetRecordType () == DATABASE_ObservationRecord
             ? static_cast<ObservationObject*> (object)
             : nullptr;
}

ObservationObject::ObservationObject (DBID recordId, const dbfilter_Words& words)
    : dbObject (DATABASE_ObservationRecord, recordId, words, 0) {
  static_assert (sizeof (ObservationObject) <= 64, "a million of them are kept");
}

void ObservationObject::GetCode (Str& out) const { CodeOf (*this, out); }
dbDescriptions ObservationObject::GetDescriptions () const { return DescriptionsOf (*this); }

void ObservationObject::GetClassification (db_PointClassification& out) const {
  const db_Observation* point = GetObservation ();
  out = point ? point->Classification : db_PointClassification (db_PointClassification::None);
}

dbentity_PointMethod ObservationObject::GetMethod () const {
  const db_Observation* point = GetObservation ();
  return point ? point->Method : DBENTITY_Unknown;
}

dbentity_PointMethod ObservationObject::GetMTAMethod () const {
  return static_cast<dbentity_PointMethod> (_MTAMethod);
}

const db_Observation* ObservationObject::GetObservation () const {
  const dbRecord_Class* obs = RecordFor (*this);
  if (!obs) return nullptr;
  Assert (obs->GetType () == DATABASE_ObservationRecord,
          "obs->GetType() == DATABASE_ObservationRecord");
  return db_Observation::From (obs);
}

database_RecordType ObservationObject::GetMeasurementType () const {
  const db_Measurement* measurement = GetMeasurement ();
  return measurement ? measurement->GetType () : DATABASE_AllRecords;
}

const db_Measurement* ObservationObject::GetMeasurement () const {
  const db_Observation* point = GetObservation ();
  return point ? point->Measurement () : nullptr;
}

coord_Type ObservationObject::GetCoordType () const {
  const db_Measurement* measurement = GetMeasurement ();
  return measurement ? measurement->GetCoordType () : COORD_NullType;
}

coord_CorrectedGrid ObservationObject::GetGrid () {
  if ((GetFlags () & OBJECT_GridKnown) == 0)
    if (dbIndex* index = GetIndex ()) index->ComputeObject (*this);
  return KeptGrid ();
}

coord_CorrectedGrid ObservationObject::GetFinalGrid () {
  constexpr uint16_t final = OBJECT_GridKnown | OBJECT_GridFinal;
  if ((GetFlags () & final) != final)
    if (dbIndex* index = GetIndex ()) index->ComputeObject (*this);
  return KeptGrid ();
}

bool ObservationObject::HasHorizontal () { return !GetGrid ().NullHorizontal (); }
bool ObservationObject::HasVertical () { return !GetFinalGrid ().NullVertical (); }

void ObservationObject::SetMTAMethod (dbentity_PointMethod method) {
  _MTAMethod = static_cast<uint8_t> (method);
}

void ObservationObject::SetGrid (const coord_CorrectedGrid& grid, bool isFinal) {
  _North = grid.North;
  _East = grid.East;
  _Elevation = grid.Elevation;
  GetFlags () |= OBJECT_GridKnown;
  if (isFinal)
    GetFlags () |= OBJECT_GridFinal;
  else
    GetFlags () &= static_cast<uint16_t> (~OBJECT_GridFinal);
}

LineObject::LineObject (DBID recordId, const dbfilter_Words& words)
    : dbObject (DATABASE_LineRecord, recordId, words, 0) {}
void LineObject::GetCode (Str& out) const { CodeOf (*this, out); }
dbDescriptions LineObject::GetDescriptions () const { return DescriptionsOf (*this); }

ArcObject::ArcObject (DBID recordId, const dbfilter_Words& words)
    : dbObject (DATABASE_ArcRecord, recordId, words, 0) {}
void ArcObject::GetCode (Str& out) const { CodeOf (*this, out); }
dbDescriptions ArcObject::GetDescriptions () const { return DescriptionsOf (*this); }

void ArcObject::SetNull () {
  Centre.SetNull ();
  Radius = StartAzimuth = DeltaAngle = StartElevation = Slope = MATHS_Null;
  IsLeftHand = false;
  Start = End = CentrePoint = FourthPoint = UniqueId ();
}

TargetObject::TargetObject (DBID recordId, const dbfilter_Words& words)
    : dbObject (DATABASE_TargetRecord, recordId, words, 0) {}
StationObject::StationObject (DBID recordId, const dbfilter_Words& words)
    : dbObject (DATABASE_StationRecord, recordId, words, OBJECT_StatusKnown) {}
BackBearingObject::BackBearingObject (DBID recordId, const dbfilter_Words& words)
    : dbObject (DATABASE_BackBearingRecord, recordId, words,
                OBJECT_GridKnown | OBJECT_StatusKnown) {}
TraverseObject::TraverseObject (DBID recordId, const dbfilter_Words& words)
    : dbObject (DATABASE_TraverseHeaderRecord, recordId, words,
                OBJECT_GridKnown | OBJECT_StatusKnown) {}

std::unique_ptr<dbObject> dbobject_Make (const dbRecord_Class& record, Pool& pool) {
  const dbfilter_Words words = dbfilter_WordsOf (record);
  const DBID recordId = record.RecordId;
  if (words[0] == 0 || !Assert (recordId != NODBID, "recordId != NODBID")) return nullptr;
  const auto make = [&]<class T> (T*) {
    return std::unique_ptr<dbObject> (new (pool) T (recordId, words));
  };
  switch (record.GetType ()) {
    case DATABASE_ObservationRecord:
      return make (static_cast<ObservationObject*> (nullptr));
    case DATABASE_LineRecord:
      return make (static_cast<LineObject*> (nullptr));
    case DATABASE_ArcRecord:
      return make (static_cast<ArcObject*> (nullptr));
    case DATABASE_TargetRecord:
      return make (static_cast<TargetObject*> (nullptr));
    case DATABASE_StationRecord:
      return make (static_cast<StationObject*> (nullptr));
    case DATABASE_BackBearingRecord:
      return make (static_cast<BackBearingObject*> (nullptr));
    default:
      return make (static_cast<TraverseObject*> (nullptr));
  }
}

bool position_LoadFromObject (position& out, const dbObject& object) {
  dbIndex* index = object.GetIndex ();
  if (!Assert (index != nullptr, "index")) return false;
  const bool useProjectHeight = out.UseProjectHeight;
  bool isLoaded = false;
  if (object.IsLinked ()) {
    JobFile* job = index->GetJobFile ();
    out.LoadFromGrid (static_cast<const ObservationObject&> (object).KeptGrid (),
                      job ? &job->CurrentTransform () : nullptr);
    out.SearchData = job;
    isLoaded = true;
  } else {
    const auto* point = AsObservation (const_cast<dbObject*> (&object));
    const db_Measurement* measurement = point ? point->GetMeasurement () : nullptr;
    if (measurement) {
      isLoaded = out.LoadFromRecord (*static_cast<JobFile*> (index), *measurement);
    } else {
      out = position ();
    }
    out.SearchData = static_cast<JobFile*> (index);
  }
  out.UseProjectHeight = useProjectHeight;
  out.Name = object.GetName ();
  out.Object = object.GetUniqueId ();
  return isLoaded;
}

}  // namespace clxml
