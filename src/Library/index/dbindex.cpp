// The objects of an index, and the table of all indexes.
#include "Library/index/dbindex.h"

#include <algorithm>
#include <utility>

#include "Library/index/dbobject.h"

namespace clxml {

dbindex_Globals StaticIndexGlobals;

dbIndex* UniqueId::GetIndex () const {
  const int32_t number = GetIndexNumber ();
  return number >= 0 && number < DBINDEX_IndexCount
             ? StaticIndexGlobals.Indexes[static_cast<std::size_t> (number)]
             : nullptr;
}

dbIndex::~dbIndex () { dbIndex::Clear (); }

void dbIndex::Notify (int32_t) {}

int32_t dbIndex::RegisterIndex () {
  auto& indexes = StaticIndexGlobals.Indexes;
  if (_IndexNumber >= 0) return _IndexNumber;
  const int32_t start = StaticIndexGlobals.NextInIndexList;
  int32_t number = start;
  while (indexes[static_cast<std::size_t> (number)]) {
    number = (number + 1) % DBINDEX_IndexCount;
    if (!Assert (number != start, "StaticIndexGlobals.NextInIndexList != start")) return -1;
  }
  indexes[static_cast<std::size_t> (number)] = this;
  _IndexNumber = number;
  StaticIndexGlobals.HighestIndexNumber = std::max (StaticIndexGlobals.HighestIndexNumber, number);
  StaticIndexGlobals.NextInIndexList = (number + 1) % DBINDEX_IndexCount;
  return number;
}

void dbIndex::Clear () {
  auto& indexes = StaticIndexGlobals.Indexes;
  if (_IndexNumber >= 0) indexes[static_cast<std::size_t> (_IndexNumber)] = nullptr;
  DeleteObjects ();
  _FileType = NotBuilt;
  _IndexNumber = -1;
  if (std::none_of (indexes.begin (), indexes.end (), [] (const dbIndex* x) { return x; }))
    StaticIndexGlobals.NextInIndexList = StaticIndexGlobals.HighestIndexNumber = 1;
}

void dbIndex::DeleteObjects () noexcept {
  for (int32_t i = 0; i < _ObjectCount; i++) delete At (i);
  _BlockList.clear ();
  _ByRecordId.clear ();
  _ObjectCount = 0;
  _Pool.Clear ();
}

UniqueId dbIndex::AppendObject (std::unique_ptr<dbObject> object) {
  if (!Assert (object != nullptr, "object") ||
      !Assert (_ObjectCount < MaximumObjects, "_ObjectCount < MaximumObjects"))
    return {};
  const int32_t subscript = _ObjectCount;
  const auto blockNum = static_cast<std::size_t> (subscript / BlockSize);
  if (blockNum >= _BlockList.size ()) {
    Assert (blockNum == _BlockList.size (), "blockNum == _BlockCount");
    _BlockList.push_back (std::make_unique<Block> ());
  }
  const UniqueId id = GetUniqueId (subscript);
  object->_Id = id.Pack ();
  if (!_ByRecordId.empty ()) _ByRecordId.push_back ({object->GetRecordId (), subscript});
  (*_BlockList[blockNum])[static_cast<std::size_t> (subscript % BlockSize)] = object.release ();
  _ObjectCount++;
  return id;
}

void dbIndex::ReplaceObject (int32_t subscript, std::unique_ptr<dbObject> object) {
  dbObject* old = GetObject (subscript);
  if (!old || !Assert (object != nullptr, "object")) return;
  object->_Id = old->_Id;
  (*_BlockList[static_cast<std::size_t> (subscript / BlockSize)])[static_cast<std::size_t> (
      subscript % BlockSize)] = object.release ();
  delete old;
}

dbObject* dbIndex::GetObject (int32_t subscript) const {
  if (!Assert (subscript >= 0 && subscript < this->_ObjectCount,
               "subscript < this->_ObjectCount") ||
      !Assert (!_BlockList.empty (), "this->_BlockList"))
    return nullptr;
  return At (subscript);
}

dbObject* dbIndex::GetCompleteObject (int32_t subscript) {
  if (_BlockList.empty ()) return nullptr;
  dbObject* object = GetObject (subscript);
  if (!object || object->GetRecordType () == DATABASE_ObservationRecord) return object;
  constexpr uint16_t known = OBJECT_GridKnown | OBJECT_StatusKnown;
  if ((object->GetFlags () & known) != known) ComputeObject (*object);
  return object;
}

database_RecordType dbIndex::GetRecordType (int32_t subscript) const {
  const dbObject* object = GetObject (subscript);
  return object ? object->GetRecordType () : DATABASE_AllRecords;
}

const char* dbIndex::GetName (int32_t subscript) const {
  const dbObject* object = subscript == -1 ? nullptr : GetObject (subscript);
  return object ? object->GetName () : StaticIndexGlobals.EmptyName.Data ();
}

DBID dbIndex::GetRecordId (int32_t subscript) const {
  const dbObject* object = GetObject (subscript);
  return object ? object->GetRecordId () : NODBID;
}

uint16_t& dbIndex::GetFlags (int32_t subscript) {
  static uint16_t none;
  dbObject* object = GetObject (subscript);
  return object ? object->GetFlags () : none = 0;
}

UniqueId dbIndex::FindByRecordId (DBID id) const {
  if (id == NODBID || _FileType != DatabaseFile) return {};
  if (!_ByRecordId.empty ()) {
    const auto place =
        std::lower_bound (_ByRecordId.begin (), _ByRecordId.end (), id,
                          [] (const RecordPlace& a, DBID wanted) { return a.Id < wanted; });
    return place != _ByRecordId.end () && place->Id == id ? GetUniqueId (place->Subscript)
                                                          : UniqueId ();
  }
  int32_t low = 0, high = _ObjectCount - 1;
  while (low <= high) {
    const int32_t middle = (low + high) / 2;
    const DBID found = At (middle)->GetRecordId ();
    if (found == id) return GetUniqueId (middle);
    if (found < id)
      low = middle + 1;
    else
      high = middle - 1;
  }
  return {};
}

}  // namespace clxml
