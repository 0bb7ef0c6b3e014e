// The index of an open job.
// Builds its objects from the records when the job is connected, follows each commit, and computes
// grids, statuses and geometry when they are asked for. It owns the job's transform and answers the
// questions of the position layer (position_Job).
#pragma once

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Library/coordsys/transfrm.h"
#include "Library/index/dbindex.h"
#include "Library/index/dbobject.h"
#include "Library/index/dbselection.h"
#include "Library/index/namemap.h"
#include "Library/index/pointsearch.h"
#include "Library/job/dbJob.h"
#include "Library/position/positioncache.h"
#include "Library/position/positionjob.h"

namespace clxml {

class db_TotalBackBearing;
struct coordsys_JobSystem;

/// The class name that every JobFile carries while it exists.
inline constexpr const char* search_ClassName = "JobFile";

/// The index of one job. Not guarded: one thread at a time computes; only the resolution chains are
/// per thread. Null results are no errors: a name that is not found, a point without a position.
class JobFile final : public dbIndex, public JobIndex, public position_Job {
 public:
  JobFile ();
  /// Asserts "!Database" and "this->LazyTask == -1".
  ~JobFile () override;

  /// Jobs that `job` creates or opens from now on have an index of this kind.
  static void Use (JobDatabase& job);
  /// The index of an open job; null for one without.
  static JobFile* Of (const JobDatabase& job);

  // The life of the index.

  /// Makes an index about to be connected as new: no job, no transform, empty chains.
  static void Reset (JobFile& index);
  /// Registers and builds the index of a job that was created or opened; the job outlives it. A
  /// second time all objects are invalidated and nothing else. False if the table of indexes is
  /// full.
  bool Attach (JobDatabase& job) override;
  /// Unlinks all linked files, deletes all objects and the transform, and forgets the job.
  void Clear () override;
  /// Follows a commit: bits are cleared, little is computed. See jobfilecommit.cpp.
  void OnCommit (const dbTransaction& transaction) override;

  // dbIndex and JobIndex.

  void GetFileName (Str& out) const override;
  dbSelection& GetSelection () override { return _All; }
  void SearchName (const Str& name, search_Results& results, uint32_t& status) override;
  void ComputeObject (dbObject& object) override;
  void ComputeStatus (dbObject& object) override;
  DBID FindTarget (const char* name) override;
  bool HideObservation (DBID id) override;

  // Linked files.

  /// Links a file to this job, which owns it from then on. False if the table of indexes is full.
  bool LinkIndex (std::unique_ptr<dbIndex> index);
  /// Links an open job that has a JobFile; false if it has none.
  bool LinkIndex (std::unique_ptr<JobDatabase> job);
  /// Clears and deletes a linked file; a linked job is closed. Asserts
  /// "indexNum < DBINDEX_IndexCount".
  void UnlinkIndex (int32_t indexNum);
  /// Null outside 0 to 255 and for a number that is not linked.
  dbIndex* GetLinkedIndex (int32_t number) const;
  static int32_t GetHighestIndexNumber ();

  // Search (jobfilesearch.cpp). Names are compared byte by byte unless told otherwise.

  /// Sets the search bits (DBSTATUS_OfSearch) of one observation of an index of this job or of a
  /// file linked to it. The bits over all files are set unless isMain. Asserts "index" for an
  /// object of no index.
  void UpdateSearchStatus (dbIndex& index, const Str& name, UniqueId object, uint32_t& status,
                           bool isMain);
  /// The best point of the name; if there is none the first object of the name, of whatever kind;
  /// null for an empty name and if there is none of either.
  UniqueId FindBestPoint (const Str& name);
  /// Fills selection with all objects of the type, in subscript order; true if any.
  bool GetObjectsOfType (database_RecordType type, dbSelection& selection);
  /// Fills selection with all items of the name and type, oldest first; true if any.
  bool GetPointsByName (const Str& name, database_RecordType type, dbSelection& selection);
  /// The best observation, points with an azimuth alone left out.
  ObservationObject* FindBestMeasuredPoint (const Str& name);
  ObservationObject* FindBestGPSPoint (const Str& name);
  ObservationObject* FindBestGridPoint (const Str& name);
  /// The azimuth alone from a point: the oldest live one whose db_Azimuth has that base, compared
  /// without regard to case.
  ObservationObject* FindBestAzimuthOnly (const Str& name, const Str& from);
  /// The best total station observation from a station setup; of a class other than Check,
  /// Construction and None. Asserts "stationLocation != NODBID".
  ObservationObject* FindBestFromStation (const Str& name, DBID stationLocation);
  /// Loads the position of FindBestMeasuredPoint; its UseProjectHeight stays. False if there is
  /// none.
  bool LoadPositionOfName (const Str& name, position& out) { return FindMeasured (name, out); }
  /// The newest observation of the name on the newest back bearing of the job: of methods 32 to 35
  /// and a class of Normal, MTA, Construction or BackSight. One whose derivation is "RS" ends the
  /// search. location takes the record of a mean turned angle that is met on the way. Asserts
  /// "pointName && *pointName" and "backbearingLocation != NODBID".
  ObservationObject* FindOnLastBackBearing (const char* pointName, DBID& location);
  /// The newest mean turned angle of the name, hidden or not, behind the newest station of the
  /// job ("stationLocation != NODBID").
  ObservationObject* FindOnLastStation (const Str& pointName);
  /// The best observation of the point from a station of that name; with a backsight name, from a
  /// setup from which the backsight was observed too. Station names are compared without regard
  /// to case. False if there is none.
  bool FindObservedFrom (const char* pointName, const char* backsightName, const char* stationName,
                         DBID& location, DBID& stationLocation);
  /// The name as it is stored: itself, or the first that differs in case only. False if neither is
  /// there.
  bool FindSpelling (const Str& name, Str& out);
  /// Copies the newest live record of the name, of the type of record, into it. itemNum is the item
  /// of GetSelection. Asserts "name", "record" and "recordLocation". False if there is none.
  bool LoadLast (const char* name, dbRecord_Class* record, DBID* recordLocation, int32_t* itemNum);
  /// The same for the next older one from itemNum; record holds one of that name.
  bool LoadPrevious (const char* name, dbRecord_Class* record, DBID* recordLocation,
                     int32_t* itemNum);
  /// The newest live object of the name and type, or null.
  dbObject* FindLastLive (const Str& name, database_RecordType type);
  /// The object of the name, of any type, whose record is id.
  UniqueId FindByNameAndRecord (const Str& name, DBID id);
  /// A station record lies between two subscripts.
  bool HasStationBetween (int32_t first, int32_t last) const;

  // The transform (jobtransform.cpp).

  /// Assembles the transform at the first use, and again after a coordinate system record (types
  /// 31 to 36) was committed, without the files that are missing and without a project height. If
  /// that fails, the error is logged once and the transform before stays, or one of the job's
  /// corrections alone.
  const Transform& CurrentTransform () override;
  coordsys_CogoSettings CogoSystem () override;
  /// Assembles the transform of the job's newest records with a mask of coordsys_Options; fileNames
  /// takes the stored names of the support files (coordsys_SupportFile). If the geoid or datum grid
  /// was found under another name, the record in the job takes that name; a job that is open for
  /// reading, or in a group, keeps its record. False, with the error, if the assembly failed: the
  /// transform before stays.
  bool RebuildTransform (coordsys_Error& error, uint32_t options,
                         std::array<Str, 6>* fileNames = nullptr);

  // position_Job (jobfileposition.cpp).

  uint32_t Revision () const override { return _Revision; }
  bool Find (const Str& name, int searchKind, bool useProjectHeight, position& out) override;
  bool FindMeasured (const Str& name, position& out) override;
  const dbRecord_Class* Record (DBID id) const override {
    return Database ? Database->GetRecord (id) : nullptr;
  }
  DBID NextRecordId (DBID id) const override;
  DBID LastOfType (database_RecordType type) const override;
  StrArray& ResolutionChainNames () override;
  bool LinkedGrid (UniqueId item, coord_CorrectedGrid& grid) const override;
  bool LoadGrid (UniqueId item, coord_CorrectedGrid& grid) const override;
  void StoreGrid (UniqueId item, const coord_CorrectedGrid& grid, bool isFinal) override;
  const db_Azimuth* KeyedAzimuth (const Str& baseName, const Str& backsightName) override;
  bool FindBacksight (const Str& baseName, const Str& backsightName, position& out) override;
  position_Cache& Cache () override { return _Cache; }

  /// search_ClassName while the object exists, null after it.
  const char* ClassName = search_ClassName;
  /// The open job; not owned, null when not attached.
  dbAccess* Database = nullptr;
  /// The background task on this index; -1 for none. No operation here starts one.
  int32_t LazyTask = -1;

 private:
  static constexpr int ThreadCount = 30;

  // The outcome of a look-up by name.
  struct NameInfo {
    UniqueId First;    // the oldest object, of any type
    UniqueId Best;     // of the observations
    UniqueId BestGPS;  // of the observations, among the GPS group
  };
  // What the azimuth from a base to a backsight depends on.
  struct PairInfo {
    bool HasKeyed = false, HasBest = false;  // the ids below were searched
    UniqueId Keyed, Best;
  };
  struct Link {
    std::unique_ptr<dbIndex> Index;
    std::unique_ptr<JobDatabase> Job;  // whose index Index then is not
  };
  struct TextHash {
    using is_transparent = void;
    std::size_t operator() (std::string_view text) const noexcept {
      return std::hash<std::string_view> () (text);
    }
  };
  template <class T>
  using ByText = std::unordered_map<std::string, T, TextHash, std::equal_to<>>;

  // Building and looking up.
  void Build ();
  UniqueId Append (const dbRecord_Class& record);
  void DropResults ();
  dbObject* NewestOf (std::string_view name) const;
  dbObject* OlderOf (std::string_view name, const dbObject& object) const;
  NameInfo InfoOf (std::string_view name);
  NameInfo WalkName (std::string_view name);
  UniqueId FirstOf (std::string_view name) const;
  dbObject* ObjectOf (UniqueId id) const;
  void ComputeStatusOfName (const Str& name);
  void SearchAll (dbIndex& index, const Str& name, bool isMain, search_Results& own,
                  search_Results& all, uint32_t& status);
  template <class Counts>
  ObservationObject* BestWhere (const Str& name, Counts counts);
  const db_TotalBackBearing* BackBearing (DBID id) const;
  bool DependsOnAzimuth (const ObservationObject& point, const Str& baseName,
                         const Str& backsightName) const;
  PairInfo& PairOf (const Str& baseName, const Str& backsightName);

  // Computing.
  void ComputePoint (ObservationObject& point);
  void ComputeLine (LineObject& line);
  void ComputeArc (ArcObject& arc);
  coord_CorrectedGrid FinalGridOf (UniqueId id);
  void NoteForwardNames (const ObservationObject& point);
  void NoteForwardName (std::string_view name, int32_t subscript);

  // The transform.
  void UseTransform (std::unique_ptr<Transform> transform);
  void UseCorrectionsAlone ();
  void StoreFileNames (const coordsys_JobSystem& system);

  // Following commits.
  class Commit;
  /// Points, lines and arcs lose their grids: after the transform was replaced.
  void DropGrids ();

  std::array<StrArray, ThreadCount> _Chains;
  JobDatabase* _Job = nullptr;
  std::unique_ptr<Transform> _Transform;  // null until it is built
  coordsys_CogoSettings _CogoSystem{};
  bool _IsTransformStale = true;  // to be rebuilt at the next use
  dbSelection _All;
  std::map<int32_t, Link> _Linked;
  NameMap _Names{*this};
  std::vector<int32_t> _Stations;  // subscripts of the station objects, ascending
  position_Cache _Cache;
  uint32_t _Revision = 0;
  uint32_t _LookUpsInChain = 0;

  // Results of this revision. Names with few objects are looked up each time.
  ByText<NameInfo> _LongNames;
  ByText<PairInfo> _Pairs;  // by base, a zero byte, backsight
  std::string _PairKey;
  // Names on which an object depends although no older object has them, and names that were looked
  // up as a backsight: a change of these reaches further than its subscript tells.
  std::set<std::string, std::less<>> _ForwardNames;
  std::set<std::string, std::less<>> _BacksightNames;
};

/// The index as a job's. Asserts "(index != NULL) && (index->GetFileType() ==
/// dbIndex::DatabaseFile)" and "ClassName == search_ClassName"; null then.
JobFile* search_AsJobFile (dbIndex* index);

}  // namespace clxml
