// What tests of positions need: transforms, and a job in memory.
// The job has points by name and records by number; the best point of a name is the only one.
#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "Library/coordsys/transfrm.h"
#include "Library/position/position.h"
#include "Library/position/positioncache.h"
#include "Library/position/positionjob.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbGPS.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"
#include "support/hearing.h"

namespace clxml::testing {

inline constexpr double degree = CONSTANT_Pi / 180.0;
inline constexpr auto gridSystem = COORDSYS_CogoAzimuthGrid | COORDSYS_CogoDistanceGrid |
                                   COORDSYS_CogoEllipsoidDistances | COORDSYS_CogoOrthoHeights;

// As a job of roads has it: corrections alone.
inline std::unique_ptr<Transform> CorrectionsAlone (
    coordsys_GridOrientation orientation = COORDSYS_IncreasingNorthEast) {
  coordsys_Corrections corrections;
  corrections.GridOrientation = orientation;
  coordsys_Error error;
  return Transform_Create (COORDSYS_SetCorrections, nullptr, nullptr, nullptr, nullptr, nullptr,
                           &corrections, COORDSYS_SkipAllFiles, &error);
}

// Zone 33 on the ellipsoid of WGS84, without a datum transformation but with the datum.
inline std::unique_ptr<Transform> Zone33 () {
  const coordsys_Ellipsoid ellipsoid = coordsys_WGS84Ellipsoid ();
  coordsys_Projection projection;
  projection.ProjectionType = COORDSYS_TransverseMercator;
  projection.OriginLocal = {0.0, 15.0 * degree, 0.0};
  projection.OriginGrid = {0.0, 500000.0, 0.0};
  projection.Scale = 0.9996;
  projection.GroundScale.ProjectLocation.Height = 300.0;
  coordsys_Datum datum;
  datum.DatumType = COORDSYS_ThreeParameter;
  const coordsys_Corrections corrections;
  coordsys_Error error;
  return Transform_Create (
      COORDSYS_SetEllipsoid | COORDSYS_SetDatum | COORDSYS_SetProjection | COORDSYS_SetCorrections,
      &ellipsoid, &projection, &datum, nullptr, nullptr, &corrections, 0, &error);
}

class SmallJob final : public position_Job {
 public:
  std::unique_ptr<Transform> transform = CorrectionsAlone ();
  std::map<std::string, position> points;
  std::map<uint32_t, std::unique_ptr<dbRecord_Class>> records;
  StrArray chain;
  std::size_t deepest = 0;

  position& Add (const char* name) {
    position& point = points[name];
    point.Name = name;
    return point;
  }
  position& AddPolar (const char* name, const char* base) {
    position& point = Add (name);
    point.LoadFromPolar ({0.25, 100.0, 5.0});
    point.Name = name;
    point.NameOfBase = base;
    point.CogoSystem = gridSystem;
    point.SearchData = this;
    return point;
  }
  template <class T>
  T& Record (uint32_t id) {
    auto record = std::make_unique<T> ();
    T& made = *record;
    records[id] = std::move (record);
    return made;
  }

  const Transform& CurrentTransform () override { return *transform; }
  coordsys_CogoSettings CogoSystem () override { return gridSystem; }
  uint32_t Revision () const override { return revision; }
  bool Find (const Str& name, int, bool useProjectHeight, position& out) override {
    deepest = std::max (deepest, static_cast<std::size_t> (chain.Count ()));
    Str folded = name;
    folded.MakeLower ();
    const auto found = points.find (folded.Data ());
    if (found == points.end ()) return false;
    out = found->second;
    out.UseProjectHeight = useProjectHeight;
    return true;
  }
  bool FindMeasured (const Str& name, position& out) override {
    return Find (name, 1, out.UseProjectHeight, out);
  }
  const dbRecord_Class* Record (DBID id) const override {
    const auto found = records.find (id.value);
    return found == records.end () ? nullptr : found->second.get ();
  }
  DBID NextRecordId (DBID id) const override {
    const auto found = records.upper_bound (id.value);
    return found == records.end () ? NODBID : DBID{found->first};
  }
  DBID LastOfType (database_RecordType type) const override {
    DBID last;
    for (const auto& [number, record] : records)
      if (record->GetType () == type) last = {number};
    return last;
  }
  StrArray& ResolutionChainNames () override { return chain; }
  bool LinkedGrid (UniqueId item, coord_CorrectedGrid& grid) const override {
    const bool isLinked = item.GetIndexNumber () == 2;
    if (isLinked) grid = grids.at (item);
    return isLinked;
  }
  bool LoadGrid (UniqueId item, coord_CorrectedGrid& grid) const override {
    const auto found = grids.find (item);
    if (found == grids.end ()) return false;
    grid = found->second;
    return true;
  }
  void StoreGrid (UniqueId item, const coord_CorrectedGrid& grid, bool isFinal) override {
    if (isFinal) grids[item] = grid;
    stored = isFinal;
  }
  const db_Azimuth* KeyedAzimuth (const Str&, const Str& backsight) override {
    const auto found = keyed.find (backsight.Data ());
    return found == keyed.end () ? nullptr : &found->second;
  }
  bool FindBacksight (const Str&, const Str& name, position& out) override {
    return Find (name, 1, false, out);
  }
  position_Cache& Cache () override { return cache; }

  std::map<UniqueId, coord_CorrectedGrid> grids;
  bool stored = false;
  std::map<std::string, db_Azimuth> keyed;  // by the backsight
  uint32_t revision = 0;
  position_Cache cache;
};

}  // namespace clxml::testing
