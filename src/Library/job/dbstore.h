// Storing and fetching whole records of a job.
// The short way for code that has a record and wants it in the job, or out of it. Leans on
// dbaccess.
#pragma once

#include "Library/job/dbaccess.h"
#include "Library/records/dbPoints.h"

namespace clxml {

/// Whether a storing operation joins the open group or makes one of its own.
enum class Grouping { Join, Own };

// Each takes a copy of the record and gives its DBID, which the record gets too. A measurement
// ("!record->IsMeasurement ()"), a null ("record != NULL") and a type outside 0 to 137 are
// asserted and refused with NODBID. In single-action mode both forms of grouping are the same.

/// Adds the record at the back of the chain.
DBID AddToJob (dbAccess& access, dbRecord_Class* record, Grouping grouping = Grouping::Join);
/// Puts the record in the place of target.
DBID ReplaceInJob (dbAccess& access, DBID target, dbRecord_Class* record,
                   Grouping grouping = Grouping::Join);
/// Puts the record directly in front of target.
DBID InsertInJob (dbAccess& access, DBID target, dbRecord_Class* record,
                  Grouping grouping = Grouping::Join);

/// Copies the first record of the job into jobHeader and gives its DBID. A first record that is no
/// job header gives an empty one; a job without records an empty one and NODBID.
DBID LoadJobHeader (const dbAccess& access, db_JobHeader& jobHeader);
/// Fills the record with the last one of its type; false, and the record as it was, when the job
/// has none.
bool LoadLatest (const dbAccess& access, dbRecord_Class& record);
/// The type of a stored record. Asserts "database != NULL", "position != NODBID" and
/// "type >= DATABASE_JobHeaderRecord && type < DATABASE_AllRecords"; DATABASE_AllRecords when there
/// is no such record.
database_RecordType GetRecordType (const dbAccess* database, DBID position);

}  // namespace clxml
