// A selection's items: room, order, search.
#include "Library/index/dbselection.h"

#include <algorithm>
#include <new>
#include <unordered_set>

#include "Library/index/dbindex.h"
#include "Library/index/dbobject.h"

namespace clxml {
namespace {

constexpr int32_t firstStep = 800;
constexpr int32_t nextStep = 4077;
// The record type of an item whose index is gone.
constexpr int32_t goneType = 139;

// What is sorted: eight bytes of the name, the first one highest, then the object.
struct SortKey {
  uint64_t Prefix;
  uint32_t Packed;
  uint8_t Flags;
};

const char* NameOf (uint32_t packed) {
  const UniqueId id = UniqueId::FromPacked (packed);
  const dbIndex* index = id.GetIndex ();
  return index ? index->GetName (id.GetSubscript ()) : "";
}

// Reads past no end: a name's last byte is its terminator.
uint64_t PrefixOf (const char* name) {
  uint64_t prefix = 0;
  for (int i = 0; i < 8; i++) {
    const auto byte = static_cast<uint8_t> (name[i]);
    prefix |= static_cast<uint64_t> (byte) << (56 - 8 * i);
    if (byte == 0) break;
  }
  return prefix;
}

bool IsLess (const SortKey& a, const SortKey& b) {
  return a.Prefix != b.Prefix ? a.Prefix < b.Prefix : a.Packed < b.Packed;
}

// Sorts by name and object, eight bytes of the names at a time: a part of equal bytes whose names
// go on is sorted again by the bytes behind them.
void SortKeys (std::vector<SortKey>& keys) {
  struct Part {
    std::size_t First, Last, Depth;
  };
  std::vector<Part> parts{{0, keys.size (), 0}};
  while (!parts.empty ()) {
    const Part part = parts.back ();
    parts.pop_back ();
    bool isOneValue = part.Depth > 0;
    for (std::size_t i = part.First; i < part.Last; i++) {
      keys[i].Prefix = PrefixOf (NameOf (keys[i].Packed) + part.Depth);
      isOneValue = isOneValue && keys[i].Prefix == keys[part.First].Prefix;
    }
    const auto begin = keys.begin ();
    if (!isOneValue)
      std::sort (begin + static_cast<std::ptrdiff_t> (part.First),
                 begin + static_cast<std::ptrdiff_t> (part.Last), IsLess);
    for (std::size_t i = part.First; i < part.Last;) {
      std::size_t end = i + 1;
      while (end < part.Last && keys[end].Prefix == keys[i].Prefix) end++;
      const bool goesOn = (keys[i].Prefix & 0xFF) != 0;
      if (goesOn && end - i > 1) parts.push_back ({i, end, part.Depth + 8});
      i = end;
    }
  }
}

bool IsValid (UniqueId id) {
  const dbIndex* index = id.GetIndex ();
  return index && id.GetSubscript () >= 0 && id.GetSubscript () < index->GetObjectCount ();
}

}  // namespace

dbSelection::dbSelection (const dbSelection& set) { *this = set; }

dbSelection::dbSelection (UniqueId id) { Insert (id); }

dbSelection& dbSelection::operator= (const dbSelection& set) {
  Assert (this->Isdbselection_Class (), "this->Isdbselection_Class()");
  if (!Assert (this != &set, "this != &set")) return *this;
  Empty ();
  Reserve (set._ItemCount);
  if (Assert (set._ItemCount <= _ItemsAllocated, "set._Items") && set._ItemCount > 0) {
    std::memcpy (_Items.get (), set._Items.get (),
                 static_cast<std::size_t> (set._ItemCount) * ItemSize);
    _ItemCount = set._ItemCount;
  }
  _SortedByName = set._SortedByName;
  return *this;
}

dbSelection::~dbSelection () { _ClassMark = nullptr; }

void dbSelection::Reserve (int32_t minObjects) {
  if (!Assert (minObjects > -1, "minObjects > -1") || _ItemsAllocated >= minObjects) return;
  int64_t step = firstStep;
  while (_ItemsAllocated + step <= minObjects) step += nextStep;
  std::unique_ptr<uint8_t[]> items;
  do {
    items.reset (new (std::nothrow)
                     uint8_t[static_cast<std::size_t> (_ItemsAllocated + step) * ItemSize]);
    if (!items) step /= 2;
  } while (!items && _ItemsAllocated + step > minObjects);
  if (!items) return;
  if (_ItemCount > 0) {
    Assert (_Items != nullptr, "_Items");
    std::memcpy (items.get (), _Items.get (), static_cast<std::size_t> (_ItemCount) * ItemSize);
  }
  _Items = std::move (items);
  _ItemsAllocated += static_cast<int32_t> (step);
}

bool dbSelection::MakeRoom () {
  Reserve (_ItemCount + 1);
  return Assert (_Items != nullptr && _ItemCount < _ItemsAllocated, "_Items");
}

void dbSelection::FillFromIndex (const dbIndex& index) {
  const int32_t count = index.GetObjectCount ();
  Empty ();
  if (count > 0) Reserve (count);
  if (!Assert (count <= _ItemsAllocated, "_Items")) return;
  for (int32_t i = 0; i < count; i++) Put (i, 0, index.GetUniqueId (i).Pack ());
  _ItemCount = count;
  if (_SortedByName) SortByName ();
}

void dbSelection::SortByName () {
  std::vector<SortKey> keys (static_cast<std::size_t> (_ItemCount));
  for (int32_t i = 0; i < _ItemCount; i++)
    keys[static_cast<std::size_t> (i)] = {0, PackedAt (i), *Place (i)};
  SortKeys (keys);
  for (int32_t i = 0; i < _ItemCount; i++) {
    const SortKey& key = keys[static_cast<std::size_t> (i)];
    Put (i, key.Flags, key.Packed);
  }
  _SortedByName = true;
}

// The first item whose name is not below, or is above, the name.
int32_t dbSelection::LowerBound (std::string_view name) const {
  int32_t low = 0, high = _ItemCount;
  while (low < high) {
    const int32_t middle = low + (high - low) / 2;
    if (NameOf (PackedAt (middle)) < name)
      low = middle + 1;
    else
      high = middle;
  }
  return low;
}

int32_t dbSelection::UpperBound (std::string_view name) const {
  int32_t low = 0, high = _ItemCount;
  while (low < high) {
    const int32_t middle = low + (high - low) / 2;
    if (NameOf (PackedAt (middle)) <= name)
      low = middle + 1;
    else
      high = middle;
  }
  return low;
}

void dbSelection::OpenGap (int32_t itemNum, const dbselection_Item& item) {
  std::memmove (Place (itemNum + 1), Place (itemNum),
                static_cast<std::size_t> (_ItemCount - itemNum) * ItemSize);
  Put (itemNum, item.Flags, item.Id.Pack ());
  _ItemCount++;
}

int32_t dbSelection::Insert (const dbselection_Item& item) {
  if (!MakeRoom ()) return -1;
  const int32_t place = _SortedByName ? UpperBound (NameOf (item.Id.Pack ())) : _ItemCount;
  OpenGap (place, item);
  return place;
}

// Into a sorted selection, to the place that sorting would give.
int32_t dbSelection::InsertByNameAndId (UniqueId id) {
  if (!MakeRoom ()) return -1;
  const std::string_view name = NameOf (id.Pack ());
  int32_t low = LowerBound (name), high = UpperBound (name);
  while (low < high) {
    const int32_t middle = low + (high - low) / 2;
    if (PackedAt (middle) < id.Pack ())
      low = middle + 1;
    else
      high = middle;
  }
  OpenGap (low, {0, id});
  return low;
}

void dbSelection::InsertAt (int32_t itemNum, const dbselection_Item& item) {
  if (!Assert (itemNum >= 0 && itemNum <= _ItemCount, "itemNum <= _ItemCount") || !MakeRoom ())
    return;
  OpenGap (itemNum, item);
  _SortedByName = false;
}

void dbSelection::SetAt (int32_t itemNum, const dbselection_Item& item) {
  if (!Assert (itemNum > -1, "itemNum > -1") ||
      !Assert (itemNum < _ItemCount, "itemNum < _ItemCount"))
    return;
  Put (itemNum, item.Flags, item.Id.Pack ());
  _SortedByName = false;
}

void dbSelection::RemoveAt (int32_t itemNum) {
  if (!Assert (itemNum >= 0 && itemNum < _ItemCount, "itemNum < _ItemCount")) return;
  std::memmove (Place (itemNum), Place (itemNum + 1),
                static_cast<std::size_t> (_ItemCount - itemNum - 1) * ItemSize);
  _ItemCount--;
}

void dbSelection::Remove (UniqueId id) {
  const uint32_t packed = id.Pack ();
  for (int32_t i = 0; i < _ItemCount; i++)
    if (PackedAt (i) == packed) return RemoveAt (i);
}

void dbSelection::AddAll (const dbSelection& set) {
  const int32_t count = set._ItemCount;  // the set may be this one
  Reserve (_ItemCount + count);
  for (int32_t i = 0; i < count; i++) Insert (set.GetItem (i));
  _SortedByName = false;
}

void dbSelection::InsertMissing (int32_t itemNum, const dbSelection& set) {
  std::unordered_set<uint32_t> here;
  for (int32_t i = 0; i < _ItemCount; i++) here.insert (PackedAt (i));
  const bool isInside = itemNum >= 0 && itemNum < _ItemCount;
  const int32_t count = set._ItemCount;
  for (int32_t i = 0; i < count; i++) {
    const dbselection_Item item = set.GetItem (i);
    if (!here.insert (item.Id.Pack ()).second) continue;
    if (isInside)
      InsertAt (itemNum++, item);
    else
      Insert (item);
  }
  _SortedByName = false;
}

// At the end, whatever the order is.
void dbSelection::Append (UniqueId id) {
  if (MakeRoom ()) OpenGap (_ItemCount, {0, id});
}

void dbSelection::Reverse () {
  for (int32_t low = 0, high = _ItemCount - 1; low < high; low++, high--) {
    const uint32_t packed = PackedAt (low);
    const uint8_t flags = *Place (low);
    Put (low, *Place (high), PackedAt (high));
    Put (high, flags, packed);
  }
}

bool dbSelection::Find (std::string_view name, database_RecordType type, int searchMode,
                        int32_t* itemNum) const {
  if (!Assert (_SortedByName, "_SortedByName")) return false;
  const bool continues = searchMode == DBSEARCH_Next || searchMode == DBSEARCH_Previous;
  if (continues && !Assert (itemNum && *itemNum >= 0 && *itemNum < _ItemCount,
                            "*itemNum >= 0 && *itemNum < _ItemCount"))
    return false;
  int32_t at = 0;
  switch (searchMode) {
    case DBSEARCH_First:
    case DBSEARCH_FirstBest:
    case DBSEARCH_FirstBestGPS:
      at = LowerBound (name);
      break;
    case DBSEARCH_Last:
      at = UpperBound (name) - 1;
      break;
    case DBSEARCH_Next:
      at = *itemNum + 1;
      break;
    case DBSEARCH_Previous:
      at = *itemNum - 1;
      break;
    default:
      return false;
  }
  const bool isBackward = searchMode == DBSEARCH_Last || searchMode == DBSEARCH_Previous;
  const bool wantsBest = searchMode == DBSEARCH_FirstBest || searchMode == DBSEARCH_FirstBestGPS;
  for (; at >= 0 && at < _ItemCount; at += isBackward ? -1 : 1) {
    if (NameOf (PackedAt (at)) != name) return false;
    if (type != DATABASE_AllRecords && GetRecordType (at) != type) continue;
    if (wantsBest && (IsDeleted (at) || !IsBest (at, searchMode == DBSEARCH_FirstBestGPS)))
      continue;
    if (itemNum) *itemNum = at;
    return true;
  }
  return false;
}

bool dbSelection::FindInsensitive (const Str& name, database_RecordType type,
                                   int32_t* itemNum) const {
  for (int32_t i = 0; i < _ItemCount; i++) {
    if (type != DATABASE_AllRecords && GetRecordType (i) != type) continue;
    if (!name.EqualInsensitive (Str (NameOf (PackedAt (i))))) continue;
    if (itemNum) *itemNum = i;
    return true;
  }
  return false;
}

dbselection_Item dbSelection::GetItem (int32_t itemNum) const {
  if (!Assert (itemNum >= 0, "itemNum >= 0") ||
      !Assert (itemNum < this->_ItemCount, "itemNum < this->_ItemCount"))
    return {};
  return {*Place (itemNum), UniqueId::FromPacked (PackedAt (itemNum))};
}

dbIndex* dbSelection::IndexAt (int32_t itemNum) const noexcept {
  return UniqueId::FromPacked (PackedAt (itemNum)).GetIndex ();
}

// The object as it is, or null for one that is gone.
dbObject* dbSelection::ObjectAt (int32_t itemNum) const {
  const UniqueId id = UniqueId::FromPacked (PackedAt (itemNum));
  return IsValid (id) ? id.GetIndex ()->GetObject (id.GetSubscript ()) : nullptr;
}

dbObject* dbSelection::GetObject (int32_t n) const {
  if (!Assert (n >= 0 && n < _ItemCount, "n < _ItemCount")) return nullptr;
  dbObject* object = ObjectAt (n);
  return object ? object->GetIndex ()->GetCompleteObject (object->GetUniqueId ().GetSubscript ())
                : nullptr;
}

const char* dbSelection::GetName (int32_t itemNum) const {
  if (!Assert (itemNum >= 0 && itemNum < _ItemCount, "itemNum < _ItemCount")) return "";
  Assert (IndexAt (itemNum) != nullptr, "dbx != NULL");
  return NameOf (PackedAt (itemNum));
}

int32_t dbSelection::GetRecordType (int32_t itemNum) const {
  if (!Assert (itemNum >= 0 && itemNum < _ItemCount, "itemNum < _ItemCount")) return goneType;
  const dbObject* object = ObjectAt (itemNum);
  return object ? object->GetRecordType () : goneType;
}

DBID dbSelection::GetRecordId (int32_t itemNum) const {
  if (!Assert (itemNum >= 0 && itemNum < _ItemCount, "itemNum < _ItemCount")) return NODBID;
  const dbObject* object = ObjectAt (itemNum);
  return object ? object->GetRecordId () : NODBID;
}

db_PointClassification dbSelection::GetClassification (int32_t itemNum) const {
  db_PointClassification classification = db_PointClassification::None;
  if (const ObservationObject* point = AsObservation (GetObject (itemNum)))
    point->GetClassification (classification);
  return classification;
}

dbentity_PointMethod dbSelection::GetMethod (int32_t itemNum) const {
  const ObservationObject* point = AsObservation (GetObject (itemNum));
  return point ? point->GetMethod () : DBENTITY_Unknown;
}

dbentity_PointMethod dbSelection::GetMTAMethod (int32_t itemNum) const {
  const ObservationObject* point = AsObservation (GetObject (itemNum));
  return point ? point->GetMTAMethod () : DBENTITY_Unknown;
}

database_RecordType dbSelection::GetMeasurementType (int32_t itemNum) const {
  const ObservationObject* point = AsObservation (GetObject (itemNum));
  return point ? point->GetMeasurementType () : DATABASE_AllRecords;
}

const db_Measurement* dbSelection::GetMeasurement (int32_t itemNum) const {
  const ObservationObject* point = AsObservation (GetObject (itemNum));
  return point ? point->GetMeasurement () : nullptr;
}

bool dbSelection::IsDeleted (int32_t itemNum) const {
  const dbObject* object = GetObject (itemNum);
  return object && object->IsDeleted ();
}

bool dbSelection::IsHidden (int32_t itemNum) const {
  const dbObject* object = GetObject (itemNum);
  return object && object->IsHidden ();
}

bool dbSelection::IsBest (int32_t itemNum, bool gpsForm) const {
  dbObject* object = GetObject (itemNum);
  return object && object->IsBest (gpsForm);
}

uint16_t& dbSelection::GetFlags (int32_t itemNum) const {
  static uint16_t none;
  none = 0;
  if (!Assert (itemNum >= 0 && itemNum < _ItemCount, "itemNum < _ItemCount")) return none;
  dbIndex* dbx = IndexAt (itemNum);
  if (!Assert (dbx != nullptr, "dbx != NULL")) return none;
  return dbx->GetFlags (GetUniqueId (itemNum).GetSubscript ());
}

// The objects of the items, packed and in order, for look-up.
std::vector<uint32_t> dbSelection::SortedIds () const {
  std::vector<uint32_t> ids;
  ids.reserve (static_cast<std::size_t> (_ItemCount));
  for (int32_t i = 0; i < _ItemCount; i++) ids.push_back (PackedAt (i));
  std::sort (ids.begin (), ids.end ());
  return ids;
}

}  // namespace clxml
