// The repair of references: from the numbers of the exchange file to the records of the job.
// One pass over the chain once all records are stored; what is a reference stands below, class by
// class. Leans on the records that have references.
#include "Kernel/text.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbGPS.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"
#include "import/fieldreader.h"
#include "import/writejob.h"

namespace clxml {

namespace {

// Turns one reference; throws when its number is unknown.
class Resolver {
 public:
  explicit Resolver (const ReferenceTable& records) : _Records (records) {}
  void operator() (const char* fieldName, DBID& field) const {
    if (field == NODBID) return;
    const DBID found = _Records.Find (field.value);
    if (found == NODBID)
      throw InvalidField ("reference to XML record ID", fieldName,
                          text_Format ("0x%08x", field.value).View ());
    field = found;
  }

 private:
  const ReferenceTable& _Records;
};

// The references of each class, in the order in which they are resolved.

void Resolve (const Resolver& resolve, db_MeanTurnedAngleResiduals& record) {
  resolve ("Observation", record.Observation);
  resolve ("MeanTurnedAngle", record.MeanTurnedAngle);
}
void Resolve (const Resolver& resolve, db_TotalStation& record) {
  resolve ("Instrument", record.Instrument);
  resolve ("Atmosphere", record.Atmosphere);
}
void Resolve (const Resolver& resolve, db_Antenna& record) {
  resolve ("Equipment", record.Equipment);
}
void Resolve (const Resolver& resolve, db_Reference& record) {
  resolve ("Antenna", record.Antenna);
}
void Resolve (const Resolver& resolve, db_PostProcess& record) {
  resolve ("Previous", record.Previous);
  resolve ("Antenna", record.Antenna);
}
void Resolve (const Resolver& resolve, db_StationSetupResiduals& record) {
  resolve ("Observation", record.Observation);
  resolve ("MeanTurnedAngle", record.MeanTurnedAngle);
}
void Resolve (const Resolver& resolve, db_TraverseClosure& record) {
  resolve ("TraversePtr", record.TraversePtr);
}
void Resolve (const Resolver& resolve, db_RemoteObject& record) {
  resolve ("ROBasePointID", record.ROBasePointID);
}
void Resolve (const Resolver& resolve, db_Scanning& record) {
  resolve ("StationID", record.StationID);
  resolve ("BackBearingID", record.BackBearingID);
}
// PointRecordID stays the number that was read.
void Resolve (const Resolver& resolve, db_Image& record) {
  resolve ("StationID", record.StationID);
  resolve ("BackBearingID", record.BackBearingID);
  resolve ("CameraID", record.CameraID);
}
void Resolve (const Resolver& resolve, db_ECEFDeltas& measurement) {
  resolve ("Reference", measurement.Reference);
  resolve ("Antenna", measurement.Antenna);
}
void Resolve (const Resolver& resolve, db_ECEF& measurement) {
  resolve ("Antenna", measurement.Antenna);
}
void Resolve (const Resolver& resolve, db_LaserOffset& measurement) {
  resolve ("BasePoint", measurement.BasePoint);
  resolve ("LaserHeight", measurement.LaserHeight);
  resolve ("TargetHeight", measurement.TargetHeight);
  resolve ("MagneticDeclination", measurement.MagneticDeclination);
}
void Resolve (const Resolver& resolve, db_Circle& measurement) {
  resolve ("Station", measurement.Station);
  resolve ("Target", measurement.Target);
  resolve ("BackBearing", measurement.BackBearing);
}
void Resolve (const Resolver& resolve, db_MeanTurnedAngle& measurement) {
  resolve ("Station", measurement.Station);
  resolve ("Target", measurement.Target);
  resolve ("BackBearing", measurement.BackBearing);
}

// A copy of the record with its references resolved; null for a type that has none.
using Repairer = std::unique_ptr<dbRecord_Class> (*) (const Resolver&, const dbRecord_Class&);

template <class T>
std::unique_ptr<dbRecord_Class> Repaired (const Resolver& resolve, const dbRecord_Class& record) {
  auto copy = std::make_unique<T> (static_cast<const T&> (record));
  Resolve (resolve, *copy);
  return copy;
}

// Of records on the chain and of measurements alike: the two share no type.
Repairer RepairerOf (database_RecordType type) noexcept {
  switch (type) {
    case db_MeanTurnedAngleResiduals::Number:
      return Repaired<db_MeanTurnedAngleResiduals>;
    case db_TotalStation::Number:
      return Repaired<db_TotalStation>;
    case db_Antenna::Number:
      return Repaired<db_Antenna>;
    case db_Reference::Number:
      return Repaired<db_Reference>;
    case db_PostProcess::Number:
      return Repaired<db_PostProcess>;
    case db_StationSetupResiduals::Number:
      return Repaired<db_StationSetupResiduals>;
    case db_TraverseClosure::Number:
      return Repaired<db_TraverseClosure>;
    case db_RemoteObject::Number:
      return Repaired<db_RemoteObject>;
    case db_Scanning::Number:
      return Repaired<db_Scanning>;
    case db_Image::Number:
      return Repaired<db_Image>;
    case db_ECEFDeltas::Number:
      return Repaired<db_ECEFDeltas>;
    case db_ECEF::Number:
      return Repaired<db_ECEF>;
    case db_LaserOffset::Number:
      return Repaired<db_LaserOffset>;
    case db_Circle::Number:
      return Repaired<db_Circle>;
    case db_MeanTurnedAngle::Number:
      return Repaired<db_MeanTurnedAngle>;
    default:
      return nullptr;
  }
}

}  // namespace

// Costs one step along the chain for each record, and a copy of each that has references; the
// versions they take the place of are freed on the way.
void WriteJobControl::RepairPointers () {
  const Resolver resolve (records);
  constexpr int RetiredAtMost = 4096;
  int retired = 0;
  for (DBID position = database->GetFirstRecordId (); position != NODBID;
       position = database->GetNextRecordId (position)) {
    const dbRecord_Class* record = database->GetRecord (position);
    if (!Assert (record != nullptr, "record")) continue;
    const database_RecordType type = record->GetType ();
    try {
      if (type == DATABASE_ObservationRecord) {
        pendingEntity = position;
        const db_Measurement* measurement =
            static_cast<const db_Observation*> (record)->Measurement ();
        const Repairer repaired = measurement ? RepairerOf (measurement->GetType ()) : nullptr;
        if (!repaired) continue;
        database->AddAction (DBACTION_Amend, pendingEntity, repaired (resolve, *measurement));
      } else if (const Repairer repaired = RepairerOf (type)) {
        database->AddAction (DBACTION_Replace, position, repaired (resolve, *record));
      } else {
        continue;
      }
      if (++retired < RetiredAtMost) continue;
      database->ReleaseRetired ();
      retired = 0;
    } catch (const Str& text) {
      throw "Error while trying to fix database pointers: \n" + text +
          "\nrecord type = " + text_Format ("%03d", static_cast<int32_t> (type)) + " at position " +
          text_Format ("0x%08x", position.value);
    }
  }
}

}  // namespace clxml
