// What positions need from their job: points by name, kept grids, records and the chain of names.
#include "Library/index/jobfile.h"
#include "Library/position/position.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbGPS.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

// Look-ups that one question may cause while names are being resolved. A job whose points depend
// on each other in many ways and all fail would otherwise be tried in every order.
constexpr uint32_t maximumLookUps = 4096;

}  // namespace

bool JobFile::Find (const Str& name, int searchKind, bool useProjectHeight, position& out) {
  if (!Assert (searchKind == 0 || searchKind == 1, "searchKind == 0 || searchKind == 1") ||
      name.IsEmpty ())
    return false;
  // A question's own look-ups have at most the name they ask for in the chain.
  if (ResolutionChainNames ().Count () <= 1)
    _LookUpsInChain = 0;
  else if (++_LookUpsInChain > maximumLookUps)
    return false;
  const NameInfo info = InfoOf (name.View ());
  const dbObject* found = ObjectOf (searchKind == 0 ? info.BestGPS : info.Best);
  if (!found || found->IsDeleted ()) return false;
  position_LoadFromObject (out, *found);
  out.UseProjectHeight = useProjectHeight;
  return true;
}

bool JobFile::FindMeasured (const Str& name, position& out) {
  const dbObject* found = FindBestMeasuredPoint (name);
  return found && (position_LoadFromObject (out, *found), true);
}

DBID JobFile::NextRecordId (DBID id) const {
  return Database ? Database->GetNextRecordId (id) : NODBID;
}

DBID JobFile::LastOfType (database_RecordType type) const {
  return Database ? Database->GetLastOfType (type) : NODBID;
}

StrArray& JobFile::ResolutionChainNames () {
  const uint32_t thread = Environment::Get ()->GetCurrentThread ();
  return _Chains[Assert (thread < ThreadCount, "thread < 30") ? thread : 0];
}

bool JobFile::LinkedGrid (UniqueId item, coord_CorrectedGrid& grid) const {
  const dbIndex* index = item.GetIndex ();
  if (!index || item.GetSubscript () < 0 || item.GetSubscript () >= index->GetObjectCount ())
    return false;
  ObservationObject* point = AsObservation (index->GetObject (item.GetSubscript ()));
  if (!point || !point->IsLinked ()) return false;
  grid = point->KeptGrid ();
  return true;
}

bool JobFile::LoadGrid (UniqueId item, coord_CorrectedGrid& grid) const {
  constexpr uint16_t final = OBJECT_GridKnown | OBJECT_GridFinal;
  const ObservationObject* point = AsObservation (ObjectOf (item));
  if (!point || (point->GetFlags () & final) != final) return false;
  grid = point->KeptGrid ();
  return true;
}

void JobFile::StoreGrid (UniqueId item, const coord_CorrectedGrid& grid, bool isFinal) {
  ObservationObject* point = AsObservation (ObjectOf (item));
  if (!point) return;
  point->SetGrid (grid, isFinal);
  NoteForwardNames (*point);
}

// Remembers the names on which the grid of a point depends and which no older object has: when one
// of them changes, what was computed before it is out of date too.
void JobFile::NoteForwardNames (const ObservationObject& point) {
  const int32_t subscript = point.GetUniqueId ().GetSubscript ();
  const db_Measurement* measurement = point.GetMeasurement ();
  const auto noteBackBearing = [&] (DBID id) {
    const db_TotalBackBearing* backBearing = BackBearing (id);
    if (!backBearing) return;
    NoteForwardName (backBearing->Station.View (), subscript);
    NoteForwardName (backBearing->BackSight.View (), subscript);
  };
  if (const auto* circle = db_Circle::From (measurement)) {
    noteBackBearing (circle->BackBearing);
  } else if (const auto* mean = db_MeanTurnedAngle::From (measurement)) {
    noteBackBearing (mean->BackBearing);
  } else if (const auto* polar = db_Polar::From (measurement)) {
    NoteForwardName (polar->SourcePoint.View (), subscript);
  } else if (const auto* deltas = db_ECEFDeltas::From (measurement)) {
    if (const auto* reference = db_Reference::From (Record (deltas->Reference)))
      NoteForwardName (reference->PointName.View (), subscript);
  } else if (const auto* laser = db_LaserOffset::From (measurement)) {
    if (const dbRecord_Class* base = Record (laser->BasePoint))
      NoteForwardName (base->GetName (), subscript);
  }
}

void JobFile::NoteForwardName (std::string_view name, int32_t subscript) {
  if (name.empty ()) return;
  for (const dbObject* object = NewestOf (name); object; object = OlderOf (name, *object))
    if (object->GetUniqueId ().GetSubscript () < subscript) return;
  if (_ForwardNames.find (name) == _ForwardNames.end ()) _ForwardNames.emplace (name);
}

}  // namespace clxml
