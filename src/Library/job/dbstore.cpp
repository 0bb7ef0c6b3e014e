// Storing and fetching whole records of a job.
#include "Library/job/dbstore.h"

namespace clxml {
namespace {

bool IsKnownType (const dbRecord_Class& record) {
  return Assert (
      record.GetType () >= DATABASE_JobHeaderRecord && record.GetType () < DATABASE_AllRecords,
      "record->GetType () >= DATABASE_JobHeaderRecord && record->GetType () < "
      "DATABASE_AllRecords");
}

DBID Store (dbAccess& access, dbModel_Verb verb, DBID target, dbRecord_Class* record,
            Grouping grouping) {
  if (!Assert (record != nullptr, "record != NULL") ||
      !Assert (!record->IsMeasurement (), "!record->IsMeasurement ()") || !IsKnownType (*record))
    return NODBID;
  if (grouping == Grouping::Join || access.IsSingleActionMode ())
    return access.AddAction (verb, target, *record);
  dbGroup group (access);
  const DBID id = access.AddAction (verb, target, *record);
  group.End ();
  return id;
}

}  // namespace

DBID AddToJob (dbAccess& access, dbRecord_Class* record, Grouping grouping) {
  return Store (access, DBACTION_Add, NODBID, record, grouping);
}

DBID ReplaceInJob (dbAccess& access, DBID target, dbRecord_Class* record, Grouping grouping) {
  return Store (access, DBACTION_Replace, target, record, grouping);
}

DBID InsertInJob (dbAccess& access, DBID target, dbRecord_Class* record, Grouping grouping) {
  return Store (access, DBACTION_Insert, target, record, grouping);
}

DBID LoadJobHeader (const dbAccess& access, db_JobHeader& jobHeader) {
  Assert (jobHeader.GetType () == DATABASE_JobHeaderRecord,
          "jobHeader->GetType () == DATABASE_JobHeaderRecord");
  const DBID id = access.GetFirstRecordId ();
  const db_JobHeader* stored = db_JobHeader::From (access.GetRecord (id));
  if (stored)
    jobHeader = *stored;
  else
    jobHeader = db_JobHeader ();
  return id;
}

bool LoadLatest (const dbAccess& access, dbRecord_Class& record) {
  if (!IsKnownType (record)) return false;
  const dbRecord_Class* stored = access.GetLatestRecord (record.GetType ());
  if (!stored) return false;
  CopyRecord (*stored, record);
  return true;
}

database_RecordType GetRecordType (const dbAccess* database, DBID position) {
  if (!Assert (database != nullptr, "database != NULL") ||
      !Assert (position != NODBID, "position != NODBID"))
    return DATABASE_AllRecords;
  const dbRecord_Class* record = database->GetRecord (position);
  const database_RecordType type = record ? record->GetType () : DATABASE_AllRecords;
  Assert (type >= DATABASE_JobHeaderRecord && type < DATABASE_AllRecords,
          "type >= DATABASE_JobHeaderRecord && type < DATABASE_AllRecords");
  return type;
}

}  // namespace clxml
