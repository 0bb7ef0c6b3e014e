// Which record of a name counts as the point.
// The one rule that compares two candidates, and the search that applies it to the observations of
// a name. The searches of a job by purpose are operations of JobFile.
#pragma once

#include <array>
#include <cstdint>

#include "Library/index/dbobject.h"

namespace clxml {

class dbSelection;

/// An entry of a search. Empty while all fields have the values below.
struct search_Candidate {
  db_PointClassification Classification = db_PointClassification::None;
  dbentity_PointMethod Method = DBENTITY_Unknown;
  int32_t IndexNumber = 0;
  DBID Location;
  clxml::UniqueId UniqueId;
  /// What a DBENTITY_MeanTurnedAngle counts as; 0 for any other method.
  dbentity_PointMethod MTAMethod = DBENTITY_Unknown;

  bool IsEmpty () const noexcept;
};

/// The entries of search_Results.
enum search_Entry : std::size_t { SEARCH_Any = 0, SEARCH_GPS = 1, SEARCH_Grid = 2 };

/// The outcome of a search over one name. A search fills only the entries that are wanted; what is
/// still empty after it is wanted of the next one.
struct search_Results {
  std::array<search_Candidate, 3> Entries;  ///< by search_Entry
  bool WantAny = true;
  bool WantGPS = true;
  bool WantGrid = true;

  /// Takes the candidate where it is wanted, fits the measurement type and is better.
  void Offer (const search_Candidate& candidate, database_RecordType measurementType);
  /// Ends a search: what is empty is wanted.
  void SetWanted ();
};

/// Measurements of the GPS group: ECEF deltas, ECEF, WGS84.
bool search_IsGPS (database_RecordType measurementType);
/// Measurements of the grid group: grid, circle, mean turned angle.
bool search_IsGrid (database_RecordType measurementType);
/// Methods of points that were observed, not keyed in or computed.
bool search_IsObservation (dbentity_PointMethod method);
/// Methods of a total station's observations: 32 to 43 and 45.
bool search_IsConventional (dbentity_PointMethod method);
/// Hidden parts of a mean: never the best of a name.
bool search_IsHiddenMethod (dbentity_PointMethod method);

/// x is the stronger measurement: it has a distance where y has angles alone, or y counts little.
bool search_Stronger (dbentity_PointMethod x, dbentity_PointMethod y);
/// The candidate replaces the best so far. Offered newest first, the oldest of equals wins.
bool search_Better (const search_Candidate& current, const search_Candidate& best);
/// The two lie in different indexes, or a station record lies between them. Asserts
/// "best.UniqueId.GetSubscript() > current.UniqueId.GetSubscript()" and "dbIndex".
bool search_SeparatedByStation (const search_Candidate& current, const search_Candidate& best);

/// What a mean turned angle counts as: DBENTITY_AngleOnly for one without a distance, and for one
/// without a mean; otherwise DBENTITY_DirectReading. The object keeps it.
dbentity_PointMethod search_MTAMethod (ObservationObject& point);
/// The candidate of a point.
search_Candidate search_CandidateOf (ObservationObject& point);
/// One step of a search, newest point first: offers the point to the results, and sets
/// DBSTATUS_Stakeout in status for a live one of that class.
void search_OfferPoint (ObservationObject& point, search_Results& results, uint32_t& status);
/// The search over a selection that is sorted by name.
void search_InSelection (const dbSelection& selection, const Str& name, search_Results& results,
                         uint32_t& status);
/// The same rule over a prepared selection, from its last item to its first. Deleted items are
/// left out; an item that is no observation is taken without comparison. itemNum is -1, and the
/// result false, if no item is left.
bool BestOfSelection (const dbSelection& selection, int32_t& itemNum);
/// The object of BestOfSelection, or null.
dbObject* GetBestObject (const dbSelection& selection);

}  // namespace clxml
