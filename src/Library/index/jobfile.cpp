// The life of a job's index: building, linked files, look-up of names.
#include "Library/index/jobfile.h"

#include <algorithm>

#include "Library/records/dbConventional.h"
#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

constexpr database_RecordType indexedTypes[] = {
    DATABASE_ObservationRecord,    DATABASE_LineRecord,    DATABASE_ArcRecord,
    DATABASE_TargetRecord,         DATABASE_StationRecord, DATABASE_BackBearingRecord,
    DATABASE_TraverseHeaderRecord,
};

// Names with more objects than this have their look-up remembered.
constexpr int fewObjects = 8;

}  // namespace

JobFile* search_AsJobFile (dbIndex* index) {
  if (!Assert ((index != nullptr) && (index->GetFileType () == dbIndex::DatabaseFile),
               "(index != NULL) && (index->GetFileType() == dbIndex::DatabaseFile)"))
    return nullptr;
  auto* job = static_cast<JobFile*> (index);
  return Assert (job->ClassName == search_ClassName, "ClassName == search_ClassName") ? job
                                                                                      : nullptr;
}

JobFile::JobFile () { Reset (*this); }

JobFile::~JobFile () {
  Assert (!Database, "!Database");
  Assert (this->LazyTask == -1, "this->LazyTask == -1");
  JobFile::Clear ();
  ClassName = nullptr;
}

void JobFile::Use (JobDatabase& job) {
  job.SetIndexMaker ([] { return std::make_unique<JobFile> (); });
}

JobFile* JobFile::Of (const JobDatabase& job) { return dynamic_cast<JobFile*> (job.Index ()); }

void JobFile::Reset (JobFile& index) {
  index.ClassName = search_ClassName;
  index.Database = nullptr;
  index._Transform.reset ();
  index._IsTransformStale = true;
  index._Job = nullptr;
  index._CogoSystem = {};
  for (StrArray& chain : index._Chains) chain.Clear ();
}

bool JobFile::Attach (JobDatabase& job) {
  _Job = &job;
  Database = job.Access ();
  if (RegisterIndex () < 0) {
    Clear ();
    return false;
  }
  Build ();
  return true;
}

void JobFile::Clear () {
  while (!_Linked.empty ()) UnlinkIndex (_Linked.begin ()->first);
  _All.Empty ();
  _Names.Clear ();
  _Stations.clear ();
  DropResults ();
  _ForwardNames.clear ();
  _BacksightNames.clear ();
  dbIndex::Clear ();
  _JobFile = _MainJobFile = nullptr;
  Reset (*this);
}

void JobFile::Build () {
  if (!Assert (this->Database && this->Database->IsOpen (), "this->Database->IsOpen ()")) return;
  _JobFile = _MainJobFile = this;
  if (_FileType != NotBuilt) {
    for (int32_t i = 0; i < GetObjectCount (); i++) GetObject (i)->Invalidate ();
    DropResults ();
    return;
  }
  _FileType = DatabaseFile;
  const dbModel& model = Database->Model ();
  int64_t names = 0;
  for (const database_RecordType type : indexedTypes) names += model.TypeIndex (type).Count;
  _Names.Reserve (static_cast<int32_t> (std::min<int64_t> (names, MaximumObjects)));

  bool isInOrder = true;
  DBID last = NODBID;
  for (const dbModel_Node* node = model.MainThread ().Front (); node; node = node->ChainForward) {
    const UniqueId id = Append (*node->DBRecord);
    if (id.IsNull ()) continue;
    isInOrder = isInOrder && last < node->DBRecord->RecordId;
    last = node->DBRecord->RecordId;
  }
  if (!isInOrder) {
    _ByRecordId.reserve (static_cast<std::size_t> (GetObjectCount ()));
    for (int32_t i = 0; i < GetObjectCount (); i++) _ByRecordId.push_back ({GetRecordId (i), i});
    std::sort (_ByRecordId.begin (), _ByRecordId.end (),
               [] (const RecordPlace& a, const RecordPlace& b) { return a.Id < b.Id; });
  }
  _All.FillFromIndex (*this);
  _All.SortByName ();
}

// Makes and enters the object of a record; null for a record that gets none.
UniqueId JobFile::Append (const dbRecord_Class& record) {
  std::unique_ptr<dbObject> made = dbobject_Make (record, _Pool);
  if (!made) return {};
  dbObject* object = made.get ();
  const UniqueId id = AppendObject (std::move (made));
  if (id.IsNull ()) return {};
  _Names.Enter (*object, NameMap::Hash (record.GetName ()));
  if (record.GetType () == DATABASE_StationRecord) _Stations.push_back (id.GetSubscript ());
  return id;
}

// Forgets the results of searches.
void JobFile::DropResults () {
  _LongNames.clear ();
  _Pairs.clear ();
}

void JobFile::GetFileName (Str& out) const {
  out = Database ? Database->Journal ().Path () : Str ();
}

bool JobFile::LinkIndex (std::unique_ptr<dbIndex> index) {
  if (!Assert (index != nullptr, "index") || index->RegisterIndex () < 0) return false;
  index->_JobFile = index->GetFileType () == DatabaseFile ? search_AsJobFile (index.get ()) : this;
  index->_MainJobFile = this;
  const int32_t number = index->GetIndexNumber ();
  _Linked[number].Index = std::move (index);
  return true;
}

bool JobFile::LinkIndex (std::unique_ptr<JobDatabase> job) {
  JobFile* index = job ? Of (*job) : nullptr;
  if (!index || index == this) return false;
  index->_MainJobFile = this;
  _Linked[index->GetIndexNumber ()].Job = std::move (job);
  return true;
}

void JobFile::UnlinkIndex (int32_t indexNum) {
  if (!Assert (indexNum >= 0 && indexNum < DBINDEX_IndexCount, "indexNum < DBINDEX_IndexCount"))
    return;
  const auto place = _Linked.find (indexNum);
  if (place == _Linked.end ()) return;
  const Link link = std::move (place->second);
  _Linked.erase (place);
  if (link.Job) link.Job->Close ();
  if (link.Index) link.Index->Clear ();
}

dbIndex* JobFile::GetLinkedIndex (int32_t number) const {
  const auto place = _Linked.find (number);
  if (place == _Linked.end ()) return nullptr;
  return place->second.Job ? Of (*place->second.Job) : place->second.Index.get ();
}

int32_t JobFile::GetHighestIndexNumber () { return StaticIndexGlobals.HighestIndexNumber; }

DBID JobFile::FindTarget (const char* name) {
  if (!Database || !name) return NODBID;
  for (const dbObject* object = NewestOf (name); object; object = OlderOf (name, *object)) {
    if (object->GetRecordType () != DATABASE_TargetRecord) continue;
    const dbModel_Node* node = Database->Model ().Lookup (object->GetRecordId ());
    if (node && !node->IsOffChain ()) return object->GetRecordId ();
  }
  return NODBID;
}

bool JobFile::HideObservation (DBID id) {
  const UniqueId found = FindByRecordId (id);
  if (found.IsNull ()) return false;
  ObservationObject* point = AsObservation (GetCompleteObject (found.GetSubscript ()));
  if (!point) return false;
  point->GetFlags () |= OBJECT_Hidden;
  return true;
}

// The newest object of the name, and the next older one; null for none.
dbObject* JobFile::NewestOf (std::string_view name) const {
  dbObject* object = _Names.Newest (NameMap::Hash (name));
  while (object && object->GetName () != name) object = _Names.Older (*object);
  return object;
}

dbObject* JobFile::OlderOf (std::string_view name, const dbObject& object) const {
  dbObject* older = _Names.Older (object);
  while (older && older->GetName () != name) older = _Names.Older (*older);
  return older;
}

// The objects that a look-up of the name can give. Their statuses are computed once for all of
// them.
JobFile::NameInfo JobFile::InfoOf (std::string_view name) {
  int count = 0;
  for (const dbObject* object = NewestOf (name); object && count <= fewObjects;
       object = OlderOf (name, *object))
    count++;
  if (count <= fewObjects) return WalkName (name);
  const auto known = _LongNames.find (name);
  if (known != _LongNames.end ()) return known->second;
  return _LongNames.emplace (name, WalkName (name)).first->second;
}

JobFile::NameInfo JobFile::WalkName (std::string_view name) {
  NameInfo info;
  for (dbObject* object = NewestOf (name); object; object = OlderOf (name, *object)) {
    info.First = object->GetUniqueId ();
    if (object->GetRecordType () != DATABASE_ObservationRecord) continue;
    const uint32_t status = object->GetStatus ();
    if ((status & DBSTATUS_Best) != 0) info.Best = info.First;
    if ((status & DBSTATUS_BestGPS) != 0) info.BestGPS = info.First;
  }
  return info;
}

// The oldest object of the name.
UniqueId JobFile::FirstOf (std::string_view name) const {
  UniqueId first;
  for (const dbObject* object = NewestOf (name); object; object = OlderOf (name, *object))
    first = object->GetUniqueId ();
  return first;
}

// The object of an id of this index; null for any other.
dbObject* JobFile::ObjectOf (UniqueId id) const {
  return id.GetIndexNumber () == GetIndexNumber () && id.GetSubscript () >= 0 &&
                 id.GetSubscript () < GetObjectCount ()
             ? GetObject (id.GetSubscript ())
             : nullptr;
}

}  // namespace clxml
