// The searches of a job: status bits, and the best record of a name for each purpose.
#include <algorithm>

#include "Library/index/jobfile.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

// The station setup of a total station observation.
DBID StationOf (const db_Measurement* measurement) {
  if (const db_Circle* circle = db_Circle::From (measurement)) return circle->Station;
  if (const db_MeanTurnedAngle* mean = db_MeanTurnedAngle::From (measurement)) return mean->Station;
  return NODBID;
}

DBID BackBearingOf (const db_Measurement* measurement) {
  if (const db_Circle* circle = db_Circle::From (measurement)) return circle->BackBearing;
  if (const db_MeanTurnedAngle* mean = db_MeanTurnedAngle::From (measurement))
    return mean->BackBearing;
  return NODBID;
}

bool IsOneOf (db_PointClassification classification,
              std::initializer_list<db_PointClassification::Class> classes) {
  return std::any_of (classes.begin (), classes.end (),
                      [&] (db_PointClassification::Class c) { return classification == c; });
}

db_PointClassification ClassOf (const ObservationObject& point) {
  db_PointClassification classification;
  point.GetClassification (classification);
  return classification;
}

}  // namespace

void JobFile::SearchName (const Str& name, search_Results& results, uint32_t& status) {
  for (dbObject* object = NewestOf (name.View ()); object; object = OlderOf (name.View (), *object))
    if (ObservationObject* point = AsObservation (object))
      search_OfferPoint (*point, results, status);
  results.SetWanted ();
}

// The search of one index, and unless isMain that of the main job and all its linked files.
void JobFile::SearchAll (dbIndex& index, const Str& name, bool isMain, search_Results& own,
                         search_Results& all, uint32_t& status) {
  index.SearchName (name, own, status);
  JobFile* main = index.GetMainJobFile ();
  if (isMain || !main) return;
  main->SearchName (name, all, status);
  for (const bool isJob : {true, false})
    for (const auto& [number, link] : main->_Linked) {
      if (!all.WantAny && !all.WantGrid && !(isJob && all.WantGPS)) break;
      dbIndex* linked = main->GetLinkedIndex (number);
      if (linked && (linked->GetFileType () == DatabaseFile) == isJob)
        linked->SearchName (name, all, status);
    }
}

namespace {

// The bits of the entries that name the object.
uint32_t BitsOf (UniqueId object, const search_Results& own, const search_Results& all) {
  const auto bit = [object] (const search_Candidate& entry, uint32_t value) {
    return !entry.UniqueId.IsNull () && entry.UniqueId == object ? value : 0;
  };
  return bit (own.Entries[SEARCH_Any], DBSTATUS_Best) |
         bit (own.Entries[SEARCH_GPS], DBSTATUS_BestGPS) |
         bit (own.Entries[SEARCH_Grid], DBSTATUS_BestGrid) |
         bit (all.Entries[SEARCH_Any], DBSTATUS_BestOfAll) |
         bit (all.Entries[SEARCH_GPS], DBSTATUS_BestGPSOfAll) |
         bit (all.Entries[SEARCH_Grid], DBSTATUS_BestGridOfAll);
}

}  // namespace

void JobFile::UpdateSearchStatus (dbIndex& index, const Str& name, UniqueId object,
                                  uint32_t& status, bool isMain) {
  Assert (index.GetIndexNumber () >= 0, "index");
  status &= ~DBSTATUS_OfSearch;
  if (name.IsEmpty ()) return;
  search_Results own, all;
  SearchAll (index, name, isMain, own, all, status);
  status |= BitsOf (object, own, all);
}

// Computes the statuses of all observations of a name by one search.
void JobFile::ComputeStatusOfName (const Str& name) {
  search_Results own, all;
  uint32_t found = 0;
  if (!name.IsEmpty ())
    SearchAll (*this, name, GetJobFile () == GetMainJobFile (), own, all, found);
  for (dbObject* object = NewestOf (name.View ()); object;
       object = OlderOf (name.View (), *object)) {
    if (object->GetRecordType () != DATABASE_ObservationRecord) continue;
    dbfilter_Words words = object->Words ();
    words[2] = (words[2] & ~DBSTATUS_OfSearch) | found | BitsOf (object->GetUniqueId (), own, all);
    object->SetWords (words);
    object->GetFlags () |= OBJECT_StatusKnown;
  }
}

void JobFile::ComputeStatus (dbObject& object) {
  if (object.GetRecordType () == DATABASE_ObservationRecord)
    ComputeStatusOfName (Str (object.GetName ()));
  object.GetFlags () |= OBJECT_StatusKnown;
}

UniqueId JobFile::FindBestPoint (const Str& name) {
  if (name.IsEmpty ()) return {};
  const NameInfo info = InfoOf (name.View ());
  return info.Best.IsNull () ? info.First : info.Best;
}

bool JobFile::GetObjectsOfType (database_RecordType type, dbSelection& selection) {
  selection.Empty ();
  for (int32_t i = 0; i < GetObjectCount (); i++)
    if (GetRecordType (i) == type) selection.Insert (dbIndex::GetUniqueId (i));
  return selection.GetItemCount () > 0;
}

bool JobFile::GetPointsByName (const Str& name, database_RecordType type, dbSelection& selection) {
  selection.Empty ();
  for (const dbObject* object = NewestOf (name.View ()); object;
       object = OlderOf (name.View (), *object))
    if (type == DATABASE_AllRecords || object->GetRecordType () == type)
      selection.Append (object->GetUniqueId ());
  selection.Reverse ();
  return selection.GetItemCount () > 0;
}

// The best of the observations of a name that count (point) accepts: BestOfSelection over the
// points of the name, without making a selection.
template <class Counts>
ObservationObject* JobFile::BestWhere (const Str& name, Counts counts) {
  search_Candidate best;
  ObservationObject* found = nullptr;
  for (dbObject* object = NewestOf (name.View ()); object;
       object = OlderOf (name.View (), *object)) {
    ObservationObject* point = AsObservation (object);
    if (!point || point->IsDeleted () || !counts (*point)) continue;
    const search_Candidate candidate = search_CandidateOf (*point);
    if (search_IsHiddenMethod (candidate.Method) || !search_Better (candidate, best)) continue;
    best = candidate;
    found = point;
  }
  return found;
}

// The search of the status bits leaves out the same points.
ObservationObject* JobFile::FindBestMeasuredPoint (const Str& name) {
  return AsObservation (ObjectOf (InfoOf (name.View ()).Best));
}

ObservationObject* JobFile::FindBestGPSPoint (const Str& name) {
  return BestWhere (name, [] (const ObservationObject& point) {
    return search_IsGPS (point.GetMeasurementType ());
  });
}

ObservationObject* JobFile::FindBestGridPoint (const Str& name) {
  return BestWhere (name, [] (const ObservationObject& point) {
    return search_IsGrid (point.GetMeasurementType ());
  });
}

ObservationObject* JobFile::FindBestAzimuthOnly (const Str& name, const Str& from) {
  return BestWhere (name, [&from] (const ObservationObject& ptObj) {
    if (ptObj.GetMethod () != DBENTITY_AzimuthOnly) return false;
    const db_Azimuth* azimuth = db_Azimuth::From (ptObj.GetMeasurement ());
    return azimuth && azimuth->SourcePoint.EqualInsensitive (from);
  });
}

ObservationObject* JobFile::FindBestFromStation (const Str& name, DBID stationLocation) {
  if (!Assert (stationLocation != NODBID, "stationLocation != NODBID")) return nullptr;
  using Class = db_PointClassification;
  return BestWhere (name, [&] (const ObservationObject& point) {
    return search_IsConventional (point.GetMethod ()) &&
           !IsOneOf (ClassOf (point), {Class::Check, Class::Construction, Class::None}) &&
           StationOf (point.GetMeasurement ()) == stationLocation;
  });
}

ObservationObject* JobFile::FindOnLastBackBearing (const char* pointName, DBID& location) {
  location = NODBID;
  const DBID backbearingLocation = LastOfType (DATABASE_BackBearingRecord);
  if (!Assert (pointName && *pointName, "pointName && *pointName") ||
      !Assert (backbearingLocation != NODBID, "backbearingLocation != NODBID"))
    return nullptr;
  using Class = db_PointClassification;
  for (dbObject* object = NewestOf (pointName); object; object = OlderOf (pointName, *object)) {
    ObservationObject* point = AsObservation (object);
    if (!point || point->IsDeleted ()) continue;
    const dbentity_PointMethod method = point->GetMethod ();
    if (method == DBENTITY_MeanTurnedAngle) location = point->GetRecordId ();
    if (method < DBENTITY_AngleOnly || method > DBENTITY_AvgMeasurements ||
        !IsOneOf (ClassOf (*point),
                  {Class::Normal, Class::MTA, Class::Construction, Class::BackSight}))
      continue;
    if (point->GetObservation ()->Derivation == Derivation{'R', 'S'}) return nullptr;
    const db_Circle* circle = db_Circle::From (point->GetMeasurement ());
    if (circle && circle->BackBearing == backbearingLocation) return point;
  }
  return nullptr;
}

ObservationObject* JobFile::FindOnLastStation (const Str& pointName) {
  const DBID stationLocation = LastOfType (DATABASE_StationRecord);
  if (!Assert (stationLocation != NODBID, "stationLocation != NODBID")) return nullptr;
  const int32_t station = FindByRecordId (stationLocation).GetSubscript ();
  for (dbObject* object = NewestOf (pointName.View ());
       object && object->GetUniqueId ().GetSubscript () > station;
       object = OlderOf (pointName.View (), *object)) {
    ObservationObject* point = AsObservation (object);
    const dbentity_PointMethod method = point ? point->GetMethod () : DBENTITY_Unknown;
    if (method == DBENTITY_MeanTurnedAngle || method == DBENTITY_MeanTurnedAngleHidden)
      return point;
  }
  return nullptr;
}

bool JobFile::FindObservedFrom (const char* pointName, const char* backsightName,
                                const char* stationName, DBID& location, DBID& stationLocation) {
  location = stationLocation = NODBID;
  if (!Assert (pointName && (pointName[0] != 0), "pointName && ( pointName[0] != 0 )") ||
      !Assert (stationName && (stationName[0] != 0), "stationName && ( stationName[0] != 0 )"))
    return false;
  const bool wantsBacksight = backsightName && *backsightName;
  std::set<DBID> setups;  // from which the backsight was observed
  if (wantsBacksight) {
    for (dbObject* object = NewestOf (backsightName); object;
         object = OlderOf (backsightName, *object))
      if (const ObservationObject* point = AsObservation (object); point && !point->IsDeleted ())
        setups.insert (StationOf (point->GetMeasurement ()));
    setups.erase (NODBID);
    if (setups.empty ()) return false;
  }
  const Str wanted (stationName);
  const ObservationObject* best = BestWhere (Str (pointName), [&] (const ObservationObject& point) {
    const DBID setup = StationOf (point.GetMeasurement ());
    const db_TotalStation* station = db_TotalStation::From (Record (setup));
    return station && station->StationName.EqualInsensitive (wanted) &&
           (!wantsBacksight || setups.count (setup) > 0);
  });
  if (!best) return false;
  location = best->GetRecordId ();
  stationLocation = StationOf (best->GetMeasurement ());
  return true;
}

bool JobFile::FindSpelling (const Str& name, Str& out) {
  if (NewestOf (name.View ())) {
    out = name;
    return true;
  }
  int32_t itemNum = -1;
  if (!_All.FindInsensitive (name, DATABASE_AllRecords, &itemNum)) return false;
  out = _All.GetName (itemNum);
  return true;
}

namespace {

// Steps to the next live item of the name, and copies its record.
bool CopyLive (const dbSelection& items, const char* name, int searchMode, dbRecord_Class& record,
               DBID& recordLocation, int32_t& itemNum, const JobFile& job, const char* failed) {
  while (items.Find (name, record.GetType (), searchMode, &itemNum)) {
    searchMode = DBSEARCH_Previous;
    if (items.IsDeleted (itemNum)) continue;
    recordLocation = items.GetRecordId (itemNum);
    const dbRecord_Class* found = job.Record (recordLocation);
    if (!Assert (found != nullptr, failed)) return false;
    CopyRecord (*found, record);
    return true;
  }
  return false;
}

}  // namespace

bool JobFile::LoadLast (const char* name, dbRecord_Class* record, DBID* recordLocation,
                        int32_t* itemNum) {
  if (!Assert (name != nullptr, "name") || !Assert (record != nullptr, "record") ||
      !Assert (recordLocation != nullptr, "recordLocation"))
    return false;
  int32_t start = -1;
  return CopyLive (_All, name, DBSEARCH_Last, *record, *recordLocation, itemNum ? *itemNum : start,
                   *this, "Failed GetRecord in LoadLast");
}

bool JobFile::LoadPrevious (const char* name, dbRecord_Class* record, DBID* recordLocation,
                            int32_t* itemNum) {
  if (!Assert (name && *name, "name && *name") || !Assert (record != nullptr, "record") ||
      !Assert (recordLocation != nullptr, "recordLocation") ||
      !Assert (itemNum != nullptr, "itemNum") ||
      !Assert (Str (record->GetName ()).EqualInsensitive (name),
               "Str(record->GetName()).EqualInsensitive (name)"))
    return false;
  return CopyLive (_All, name, DBSEARCH_Previous, *record, *recordLocation, *itemNum, *this,
                   "Failed GetReccord in LoadPrevious");
}

dbObject* JobFile::FindLastLive (const Str& name, database_RecordType type) {
  for (dbObject* object = NewestOf (name.View ()); object; object = OlderOf (name.View (), *object))
    if ((type == DATABASE_AllRecords || object->GetRecordType () == type) && !object->IsDeleted ())
      return GetCompleteObject (object->GetUniqueId ().GetSubscript ());
  return nullptr;
}

UniqueId JobFile::FindByNameAndRecord (const Str& name, DBID id) {
  for (const dbObject* object = NewestOf (name.View ()); object;
       object = OlderOf (name.View (), *object))
    if (object->GetRecordId () == id) return object->GetUniqueId ();
  return {};
}

bool JobFile::HasStationBetween (int32_t first, int32_t last) const {
  const auto station = std::upper_bound (_Stations.begin (), _Stations.end (), first);
  return station != _Stations.end () && *station < last;
}

const db_TotalBackBearing* JobFile::BackBearing (DBID id) const {
  return db_TotalBackBearing::From (Record (id));
}

// The observation was made from a setup on the base that was oriented on the backsight.
bool JobFile::DependsOnAzimuth (const ObservationObject& point, const Str& baseName,
                                const Str& backsightName) const {
  const db_Measurement* measurement = point.GetMeasurement ();
  const db_TotalStation* station = db_TotalStation::From (Record (StationOf (measurement)));
  const db_TotalBackBearing* backBearing = BackBearing (BackBearingOf (measurement));
  return station && backBearing && station->StationName.EqualInsensitive (baseName) &&
         backBearing->BackSight.EqualInsensitive (backsightName);
}

JobFile::PairInfo& JobFile::PairOf (const Str& baseName, const Str& backsightName) {
  _PairKey.assign (baseName.View ());
  _PairKey.push_back ('\0');
  _PairKey.append (backsightName.View ());
  const auto known = _Pairs.find (_PairKey);
  if (known != _Pairs.end ()) return known->second;
  if (_BacksightNames.find (backsightName.View ()) == _BacksightNames.end ())
    _BacksightNames.emplace (backsightName.View ());
  return _Pairs[_PairKey];
}

const db_Azimuth* JobFile::KeyedAzimuth (const Str& baseName, const Str& backsightName) {
  PairInfo& pair = PairOf (baseName, backsightName);
  if (!pair.HasKeyed) {
    const ObservationObject* point = FindBestAzimuthOnly (backsightName, baseName);
    pair.Keyed = point ? point->GetUniqueId () : UniqueId ();
    pair.HasKeyed = true;
  }
  const ObservationObject* point = AsObservation (ObjectOf (pair.Keyed));
  return point ? db_Azimuth::From (point->GetMeasurement ()) : nullptr;
}

bool JobFile::FindBacksight (const Str& baseName, const Str& backsightName, position& out) {
  PairInfo& pair = PairOf (baseName, backsightName);
  if (!pair.HasBest) {
    const ObservationObject* point =
        BestWhere (backsightName, [&] (const ObservationObject& candidate) {
          return !DependsOnAzimuth (candidate, baseName, backsightName);
        });
    pair.Best = point ? point->GetUniqueId () : UniqueId ();
    pair.HasBest = true;
  }
  const dbObject* found = ObjectOf (pair.Best);
  return found && (position_LoadFromObject (out, *found), true);
}

}  // namespace clxml
