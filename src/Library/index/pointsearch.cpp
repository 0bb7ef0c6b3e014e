// The rule that decides between two records of a name.
#include "Library/index/pointsearch.h"

#include "Library/index/dbselection.h"
#include "Library/index/jobfile.h"
#include "Library/position/position.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"

namespace clxml {

bool search_Candidate::IsEmpty () const noexcept {
  return Classification == db_PointClassification::None && Method == DBENTITY_Unknown &&
         IndexNumber == 0 && Location == NODBID && UniqueId.IsNull () &&
         MTAMethod == DBENTITY_Unknown;
}

void search_Results::Offer (const search_Candidate& candidate,
                            database_RecordType measurementType) {
  const auto offer = [&] (search_Entry entry, bool isWanted) {
    if (isWanted && search_Better (candidate, Entries[entry])) Entries[entry] = candidate;
  };
  offer (SEARCH_Any, WantAny);
  if (search_IsGPS (measurementType)) offer (SEARCH_GPS, WantGPS);
  if (search_IsGrid (measurementType)) offer (SEARCH_Grid, WantGrid);
}

void search_Results::SetWanted () {
  WantAny = Entries[SEARCH_Any].IsEmpty ();
  WantGPS = Entries[SEARCH_GPS].IsEmpty ();
  WantGrid = Entries[SEARCH_Grid].IsEmpty ();
}

bool search_IsGPS (database_RecordType type) {
  return type == DATABASE_ECEFDeltasRecord || type == DATABASE_ECEFRecord ||
         type == DATABASE_WGS84Record;
}

bool search_IsGrid (database_RecordType type) {
  return type == DATABASE_GridRecord || type == DATABASE_CircleRecord ||
         type == DATABASE_MeanTurnedAngleRecord;
}

bool search_IsObservation (dbentity_PointMethod method) {
  return (method >= DBENTITY_GpsStaticObs && method <= DBENTITY_GpsContOffsetPt2) ||
         (method >= DBENTITY_AzimuthOnly && method <= DBENTITY_MeanTurnedAngleHidden) ||
         method == DBENTITY_LaserOffset;
}

bool search_IsConventional (dbentity_PointMethod method) {
  return (method >= DBENTITY_AngleOnly && method <= DBENTITY_MatchedPair) ||
         method == DBENTITY_MeanTurnedAngle;
}

bool search_IsHiddenMethod (dbentity_PointMethod method) {
  return method == DBENTITY_MatchedPairHidden || method == DBENTITY_MeanTurnedAngleHidden;
}

bool search_Stronger (dbentity_PointMethod x, dbentity_PointMethod y) {
  switch (y) {
    case DBENTITY_Unknown:
    case DBENTITY_AzimuthOnly:
    case DBENTITY_MatchedPair:
      return true;
    case DBENTITY_AngleOnly:
    case DBENTITY_HAngleOnly:
      return x != DBENTITY_Unknown && x != DBENTITY_MatchedPair && x != DBENTITY_AzimuthOnly &&
             x != DBENTITY_AngleOnly && x != DBENTITY_HAngleOnly;
    default:
      return false;
  }
}

bool search_Better (const search_Candidate& current, const search_Candidate& best) {
  if (best.Method == DBENTITY_Unknown) return true;
  if (best.Method == DBENTITY_ResectionInProgress)
    return current.Method != DBENTITY_ResectionInProgress;
  if (current.Method == DBENTITY_ResectionInProgress) return false;
  const bool isObserved = search_IsObservation (current.Method);
  if (isObserved != search_IsObservation (best.Method)) return !isObserved;
  if (isObserved) {
    const auto measured = [] (const search_Candidate& c) {
      return c.Method == DBENTITY_MeanTurnedAngle ? c.MTAMethod : c.Method;
    };
    const dbentity_PointMethod a = measured (current), b = measured (best);
    if (search_Stronger (a, b)) return true;
    if (search_Stronger (b, a)) return false;
    if (best.Classification == db_PointClassification::MTA &&
        search_IsConventional (current.Method) &&
        (current.Classification == db_PointClassification::Normal ||
         current.Classification == db_PointClassification::BackSight))
      return search_SeparatedByStation (current, best);
  }
  return current.Classification.Covers (best.Classification);
}

bool search_SeparatedByStation (const search_Candidate& current, const search_Candidate& best) {
  if (current.IndexNumber != best.IndexNumber) return true;
  const int32_t first = current.UniqueId.GetSubscript (), last = best.UniqueId.GetSubscript ();
  if (!Assert (last > first, "best.UniqueId.GetSubscript() > current.UniqueId.GetSubscript()"))
    return false;
  const dbIndex* index = best.UniqueId.GetIndex ();
  if (!Assert (index != nullptr, "dbIndex")) return false;
  return index->GetFileType () == dbIndex::DatabaseFile &&
         static_cast<const JobFile*> (index)->HasStationBetween (first, last);
}

dbentity_PointMethod search_MTAMethod (ObservationObject& point) {
  if (point.GetMTAMethod () != DBENTITY_Unknown) return point.GetMTAMethod ();
  Assert (point.GetMethod () == DBENTITY_MeanTurnedAngle,
          "point->GetMethod() == DBENTITY_MeanTurnedAngle");
  // Only the distance of the mean counts, which is a field of its record.
  const db_MeanTurnedAngle* mean = db_MeanTurnedAngle::From (point.GetMeasurement ());
  const bool hasDistance = mean && !maths_IsNull (mean->EDMDistance);
  point.SetMTAMethod (hasDistance ? DBENTITY_DirectReading : DBENTITY_AngleOnly);
  return point.GetMTAMethod ();
}

search_Candidate search_CandidateOf (ObservationObject& point) {
  search_Candidate candidate;
  point.GetClassification (candidate.Classification);
  candidate.Method = point.GetMethod ();
  candidate.UniqueId = point.GetUniqueId ();
  candidate.IndexNumber = candidate.UniqueId.GetIndexNumber ();
  candidate.Location = point.GetRecordId ();
  if (candidate.Method == DBENTITY_MeanTurnedAngle) candidate.MTAMethod = search_MTAMethod (point);
  return candidate;
}

void search_OfferPoint (ObservationObject& point, search_Results& results, uint32_t& status) {
  if (point.IsDeleted ()) return;
  const search_Candidate candidate = search_CandidateOf (point);
  if (search_IsHiddenMethod (candidate.Method)) return;
  if (candidate.Classification == db_PointClassification::Stakeout) status |= DBSTATUS_Stakeout;
  if (candidate.Method == DBENTITY_AzimuthOnly) return;
  results.Offer (candidate, point.GetMeasurementType ());
}

void search_InSelection (const dbSelection& selection, const Str& name, search_Results& results,
                         uint32_t& status) {
  int32_t itemNum = -1;
  bool isFound = selection.Find (name.View (), DATABASE_ObservationRecord, DBSEARCH_Last, &itemNum);
  while (isFound) {
    if (ObservationObject* point = AsObservation (selection.GetObject (itemNum)))
      search_OfferPoint (*point, results, status);
    isFound =
        selection.Find (name.View (), DATABASE_ObservationRecord, DBSEARCH_Previous, &itemNum);
  }
  results.SetWanted ();
}

bool BestOfSelection (const dbSelection& selection, int32_t& itemNum) {
  search_Candidate best;
  itemNum = -1;
  for (int32_t i = selection.GetItemCount () - 1; i >= 0; i--) {
    dbObject* object = selection.GetObject (i);
    if (!object || object->IsDeleted ()) continue;
    ObservationObject* point = AsObservation (object);
    if (!point) {
      itemNum = i;
      continue;
    }
    const search_Candidate candidate = search_CandidateOf (*point);
    if (search_IsHiddenMethod (candidate.Method) || !search_Better (candidate, best)) continue;
    best = candidate;
    itemNum = i;
  }
  return itemNum >= 0;
}

dbObject* GetBestObject (const dbSelection& selection) {
  int32_t itemNum = -1;
  return BestOfSelection (selection, itemNum) ? selection.GetObject (itemNum) : nullptr;
}

}  // namespace clxml
