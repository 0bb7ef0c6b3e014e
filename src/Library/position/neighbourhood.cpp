// The neighbourhood adjustment of a computed grid position.
#include "Library/position/neighbourhood.h"

#include <cmath>
#include <set>
#include <string>

#include "Library/position/cachedata.h"
#include "Library/position/position.h"
#include "Library/position/positioncache.h"
#include "Library/position/positionjob.h"
#include "Library/position/trace.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbCoordSystems.h"
#include "Library/records/dbMeasurements.h"

namespace clxml {
namespace {

constexpr std::size_t leastControl = 3;

// Every record after the begin of the newest calibration, up to the end of its entity.
position_ControlList OfCalibration (const position_Job& job) {
  position_ControlList list;
  const DBID begin = job.LastOfType (DATABASE_CalibBeginRecord);
  if (begin == NODBID) return list;
  list.IsUsable = true;
  for (DBID id = job.NextRecordId (begin); id != NODBID; id = job.NextRecordId (id)) {
    const dbRecord_Class* record = job.Record (id);
    if (record && record->GetType () == DATABASE_EndEntityRecord) break;
    const auto* point = db_CalibPoint::From (record);
    if (!point || point->Status == DBCL_0D || point->Status == DBCL_1D) continue;
    const db_CalibResiduals& r = point->Residuals;
    if (!maths_IsNull (r.North) && !maths_IsNull (r.East) && !maths_IsNull (r.DeltaNorth) &&
        !maths_IsNull (r.DeltaEast))
      list.Points.push_back ({r.North, r.East, r.DeltaNorth, r.DeltaEast});
  }
  return list;
}

// The backsights of a station setup, each name once. isKept becomes false where the result depends
// on the names that are being resolved.
position_ControlList OfStation (position_Job& job, DBID location, bool& isKept) {
  position_ControlList list;
  const auto* station = db_TotalStation::From (job.Record (location));
  if (!station) return list;
  const bool isPlus = station->StationType == TOTAL_StationSetupPlus;
  if (station->NumberOfUniqueBacksights < (isPlus ? 2u : 3u)) return list;
  if (isPlus) {
    const resolutionChain_Hold hold (job, station->StationName);
    if (!hold.IsEntered ()) {
      isKept = false;
      return list;
    }
    position own;
    if (!job.FindMeasured (station->StationName, own)) return list;
    const coord_CorrectedGrid grid = own.GetGrid (job.CurrentTransform ());
    if (maths_IsNull (grid.North) || maths_IsNull (grid.East)) {
      isKept = job.ResolutionChainNames ().Count () == 1;
      return list;
    }
    list.Points.push_back ({grid.North, grid.East, 0.0, 0.0});
  }
  std::set<std::string> seen;
  for (DBID id = job.NextRecordId (location); id != NODBID; id = job.NextRecordId (id)) {
    const dbRecord_Class* record = job.Record (id);
    if (record && record->GetType () == DATABASE_StationRecord) break;
    const auto* residuals = db_StationSetupResiduals::From (record);
    if (!residuals || !residuals->Backsight || maths_IsNull (residuals->Grid.North) ||
        maths_IsNull (residuals->Grid.East))
      continue;
    Str name = residuals->PointName;
    name.MakeLower ();
    if (!seen.insert (std::string (name.View ())).second) continue;
    const db_DeltasNEE& r = residuals->GridResidual;
    if (maths_IsNull (r.dNorth) || maths_IsNull (r.dEast)) return list;  // not usable
    list.Points.push_back ({residuals->Grid.North, residuals->Grid.East, r.dNorth, r.dEast});
  }
  list.IsUsable = true;
  return list;
}

double Exponent (coordsys_WeightExponent exponent) {
  switch (exponent) {
    case COORDSYS_WeightExponentOnePointZero:
      return 1.0;
    case COORDSYS_WeightExponentOnePointFive:
      return 1.5;
    case COORDSYS_WeightExponentTwoPointZero:
      return 2.0;
    default:
      return 0.5;
  }
}

// The weighted mean of the residuals at a point; null without an adjustment. A weight is the
// distance to the power of minus the exponent; a control point at the very place counts alone.
coord_GridDeltas MeanResidual (const position_ControlList& list, const coord_CorrectedGrid& grid,
                               const Transform& transform) {
  coord_GridDeltas deltas;
  if (!list.IsUsable || list.Points.size () < leastControl) return deltas;
  const double p = Exponent (transform.Corrections.WeightExponent);
  double sum = 0.0, north = 0.0, east = 0.0;
  for (const position_Control& control : list.Points) {
    const double d = std::hypot (grid.North - control.North, grid.East - control.East);
    if (d == 0.0) {
      sum = 1.0;
      north = control.ResidualNorth;
      east = control.ResidualEast;
      break;
    }
    const double weight = std::pow (d, -p);
    sum += weight;
    north += weight * control.ResidualNorth;
    east += weight * control.ResidualEast;
  }
  if (!(sum > 0.0)) return deltas;
  deltas.DeltaNorth = maths_Divide (north, sum);
  deltas.DeltaEast = maths_Divide (east, sum);
  const coordsys_GridOrientation axes = transform.Corrections.GridOrientation;
  if (axes == COORDSYS_IncreasingSouthWest || axes == COORDSYS_IncreasingSouthEast)
    deltas.DeltaNorth = maths_Negate (deltas.DeltaNorth);
  if (axes == COORDSYS_IncreasingSouthWest || axes == COORDSYS_IncreasingNorthWest)
    deltas.DeltaEast = maths_Negate (deltas.DeltaEast);
  return deltas;
}

coord_GridDeltas DeltasAt (const position& point, const Transform& transform) {
  position_Job* const job = point.SearchData;
  if (point.HasStationSetup || !job || !transform.Corrections.NeighbourhoodAdjustment ||
      maths_IsNull (point.Grid.North) || maths_IsNull (point.Grid.East))
    return {};
  const position_ControlList* list = nullptr;
  position_ControlList unkept;
  const auto values = [&] () -> position_CacheData::Values& {
    return job->Cache ().Data ().Of (job->Revision (), job->CurrentTransform ().GetId ());
  };
  switch (point.Original) {
    case COORD_WGS84Type:
    case COORD_ECEFType:
    case COORD_ECEFGroundType:
    case COORD_ECEFDeltasType: {
      if (transform.Plane.PlaneType == COORDSYS_NoHorizontal) return {};
      auto& calibration = values ().Calibration;
      if (!calibration) calibration = std::make_unique<position_ControlList> (OfCalibration (*job));
      list = calibration.get ();
      break;
    }
    case COORD_CircleType:
    case COORD_MTAType: {
      DBID location = point.DBLocationOfCircleStation;
      if (location == NODBID) location = job->LastOfType (DATABASE_StationRecord);
      if (!Assert (location != NODBID, "locationOfCircleStation != NODBID")) return {};
      auto& stations = values ().Stations;
      const auto found = stations.find (location.value);
      if (found != stations.end ()) {
        list = &found->second;
        break;
      }
      bool isKept = true;
      unkept = OfStation (*job, location, isKept);
      // The look-up of the station's point may have added to the cache.
      list = isKept ? &(values ().Stations[location.value] = std::move (unkept)) : &unkept;
      break;
    }
    default:
      return {};
  }
  const coord_GridDeltas deltas = MeanResidual (*list, point.Grid, transform);
  if (position_Trace* trace = position_TraceNow (); trace && trace->Subject == &point) {
    trace->Neighbourhood = deltas;
    trace->NeighbourCount = static_cast<int> (list->Points.size ());
  }
  return deltas;
}

}  // namespace

void NeighbourhoodAdjustment (position& point, const Transform& transform) {
  const coord_GridDeltas deltas = DeltasAt (point, transform);
  if (maths_IsNull (deltas.DeltaNorth) || maths_IsNull (deltas.DeltaEast)) return;
  maths_AddTo (point.Grid.North, deltas.DeltaNorth);
  maths_AddTo (point.Grid.East, deltas.DeltaEast);
  point.Status &= ~static_cast<uint32_t> (POSITION_DoneLocal);
}

void RemoveNeighbourhoodAdjustment (position& point, const Transform& transform) {
  const coord_GridDeltas deltas = DeltasAt (point, transform);
  if (maths_IsNull (deltas.DeltaNorth) || maths_IsNull (deltas.DeltaEast)) return;
  maths_SubtractFrom (point.Grid.North, deltas.DeltaNorth);
  maths_SubtractFrom (point.Grid.East, deltas.DeltaEast);
  point.Status &= ~static_cast<uint32_t> (POSITION_DoneLocal);
}

}  // namespace clxml
