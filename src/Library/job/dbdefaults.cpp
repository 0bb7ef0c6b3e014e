// Default settings: the values of a new job, and the last used values of earlier ones.
// They are records in memory; their file is a journal of one transaction.
#include <utility>

#include "Library/job/dbJob.h"
#include "Library/job/dbjoblistener.h"
#include "Library/job/dbstore.h"

namespace clxml {

int DefaultRecords::Store (const dbRecord_Class& record) {
  if (!Assert (record.IsPersisted (), "record->IsPersisted()")) return -1;
  std::unique_ptr<dbRecord_Class> copy = CloneRecord (record);
  for (std::size_t i = 0; i < _Records.size (); i++) {
    if (_Records[i]->GetType () != record.GetType ()) continue;
    _Records[i] = std::move (copy);
    return static_cast<int> (i);
  }
  _Records.push_back (std::move (copy));
  return Count () - 1;
}

const dbRecord_Class* DefaultRecords::GetDefault (int type) {
  for (const std::unique_ptr<dbRecord_Class>& record : _Records)
    if (record->GetType () == type) return record.get ();
  const std::unique_ptr<dbRecord_Class> def = CreateRecord (type);
  if (!Assert (def != nullptr, "def")) return nullptr;
  if (!Assert (def->IsPersisted (), "def->IsPersisted()")) return nullptr;
  return At (Store (*def));
}

const dbRecord_Class* DefaultRecords::At (int i) const {
  const int count = Count ();
  if (!Assert ((i >= 0) && (i < count), "(i >= 0) && (i < count)")) return nullptr;
  return _Records[static_cast<std::size_t> (i)].get ();
}

bool JobDatabase::ReadDefaults (const Str& path) {
  Assert (Environment::Get ()->IsThreadSafe (), "Environment::Get()->IsThreadSafe ()");
  _Defaults.Clear ();
  if (!file_Class (path).Exists ()) return false;
  dbJournal journal;
  if (!journal.Open (path, false)) return false;
  FileHeader header (FILEHDR_Journal);
  bool whole = journal.GetHeader (header) && header == FileHeader (FILEHDR_Journal);
  if (whole) {
    dbTransaction transaction;
    journal_Status status = JOURNAL_Ok;
    while (journal.ReadTransaction (transaction, status)) {
      if (status != JOURNAL_Ok) continue;
      for (dbModel_Action* action = transaction.First (); action; action = action->Next.get ())
        if (action->DBRecord->IsPersisted ()) _Defaults.Store (*action->DBRecord);
    }
    whole = status == JOURNAL_End;
  }
  journal.Close ();
  return whole;
}

bool JobDatabase::WriteDefaults (const Str& path) {
  Assert (Environment::Get ()->IsThreadSafe (), "Environment::Get()->IsThreadSafe ()");
  file_Class (path).Delete ();
  dbJournal journal;
  if (!journal.Create (path, FileHeader (FILEHDR_Journal))) return false;
  dbTransaction transaction;
  auto add = [&, id = DBID{1}] (std::unique_ptr<dbRecord_Class> record) mutable {
    record->RecordId = id;
    id.value++;
    transaction.Add (std::make_unique<dbModel_Action> (DBACTION_Add, NODBID, std::move (record)));
  };
  auto title = std::make_unique<db_JobHeader> ();
  title->JobName = "DefaultSettings";
  add (std::move (title));
  for (int i = 0; i < _Defaults.Count (); i++) add (CloneRecord (*_Defaults.At (i)));
  const bool written = journal.WriteTransaction (transaction);
  return journal.Close () && written;
}

void JobDatabase::SaveSettingsToDefaults () {
  if (!Assert (_Access != nullptr, "_Access")) return;
  for (DBID id = _Access->GetFirstRecordId (); id != NODBID; id = _Access->GetNextRecordId (id)) {
    const dbRecord_Class* record = _Access->GetRecord (id);
    if (record->IsPersisted ()) _Defaults.Store (*record);
  }
}

void JobDatabase::WriteSettingsToJob () {
  if (!Assert (_Access != nullptr, "_Access") ||
      !Assert (!this->InTransaction (), "!this->InTransaction()"))
    return;
  dbGroup group (*_Access);
  for (const database_RecordType type :
       {DATABASE_UnitsRecord, DATABASE_CodingRecord, DATABASE_CorrectionsRecord,
        DATABASE_DescriptionsDefinitionRecord}) {
    const dbRecord_Class* def = _Defaults.GetDefault (type);
    if (!def) continue;
    const dbRecord_Class* present = _Access->GetLatestRecord (type);
    if (!present) {
      if (def->IsStoredInNewJob ()) _Access->AddAction (DBACTION_Add, NODBID, *def);
    } else if (std::unique_ptr<dbRecord_Class> merged = present->MergeDefaults (*def)) {
      _Access->AddAction (DBACTION_Add, NODBID, std::move (merged));
    } else {
      _Defaults.Store (*present);
    }
  }
  group.End ();
}

}  // namespace clxml
