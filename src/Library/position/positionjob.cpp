// What a position needs its job for: records, bases by name, antennas, observations.
#include "Library/position/positionjob.h"

#include "Library/cogo/cogo.h"
#include "Library/position/azimuth.h"
#include "Library/position/environment.h"
#include "Library/position/position.h"
#include "Library/position/reduce.h"
#include "Library/position/trace.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbGPS.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

// The record of that number as a T; null when there is none or it is of another type.
template <class T>
const T* RecordAs (const position_Job& job, DBID id) {
  return id == NODBID ? nullptr : T::From (job.Record (id));
}

// The true height of an antenna over its mark; null when its records are not to be had or say
// nothing sensible. A height along a slope to the antenna's rim has rim and axis apart.
double AntennaHeight (const position_Job& job, DBID id) {
  const db_Antenna* antenna = RecordAs<db_Antenna> (job, id);
  if (!antenna) return MATHS_Null;
  if (antenna->APCType == DBGPS_Absolute) return antenna->MeasuredHeight;
  const db_Equipment* equipment = RecordAs<db_Equipment> (job, antenna->Equipment);
  if (!equipment) return MATHS_Null;
  const double slope = maths_Add (antenna->MeasuredHeight, equipment->TapeAdjustment);
  if (maths_IsNull (slope) || slope <= 0.0) return MATHS_Null;
  return maths_Add (maths_SquareRoot (maths_Subtract (maths_Square (slope),
                                                      maths_Square (equipment->HorizontalOffset))),
                    equipment->VerticalOffset);
}

}  // namespace

resolutionChain_Hold::resolutionChain_Hold (position_Job& job, const Str& name)
    : _Names (job.ResolutionChainNames ()), _Name (name) {
  if (_Names.Count () >= MaximumNames) {
    position_Fail (position_Reason::ChainTooLong, name, name);
    return;
  }
  for (int i = 0; i < _Names.Count (); i++)
    if (_Names[i].EqualInsensitive (name)) {
      position_Fail (position_Reason::CircularReference, name, name);
      return;
    }
  _Names.Add (name);
  _IsEntered = true;
}

resolutionChain_Hold::~resolutionChain_Hold () {
  if (!_IsEntered) return;
  const int last = _Names.Count () - 1;
  if (Assert (last >= 0 && _Names[last].EqualInsensitive (_Name),
              "resolutionChainNames [resolutionChainNames.Count () - "
              "1].EqualInsensitive (positionName)"))
    _Names.RemoveAt (last);
}

bool position_Resolve (position_Job& job, const Str& name, int searchKind, bool useProjectHeight,
                       position& out) {
  const resolutionChain_Hold hold (job, name);
  if (hold.IsEntered ()) {
    if (!job.Find (name, searchKind, useProjectHeight, out))
      position_Fail (position_Reason::BaseNotFound, name, name);
    else if (out.ComputeAbsolute (job.CurrentTransform ()))
      return true;
  }
  out = position ();
  return false;
}

std::unique_ptr<position> position_Create (position_Job& job, const Str& name, int searchKind,
                                           bool useProjectHeight) {
  auto out = std::make_unique<position> ();
  if (!job.Find (name, searchKind, useProjectHeight, *out)) out.reset ();
  return out;
}

std::unique_ptr<position> position_CreateResolved (position_Job& job, const Str& name,
                                                   int searchKind, bool useProjectHeight) {
  auto out = std::make_unique<position> ();
  if (!position_Resolve (job, name, searchKind, useProjectHeight, *out)) out.reset ();
  return out;
}

bool position::LoadBaseNames (DBID location) {
  DBLocationOfBaseRecord = location;
  const dbRecord_Class* record = location == NODBID ? nullptr : SearchData->Record (location);
  if (const auto* point = db_Observation::From (record)) {
    NameOfBase = point->PointName;
  } else if (const auto* polar = db_Polar::From (record)) {
    NameOfBase = polar->SourcePoint;
  } else if (const auto* azimuth = db_Azimuth::From (record)) {
    NameOfBase = azimuth->SourcePoint;
  } else if (const auto* backBearing = db_TotalBackBearing::From (record)) {
    NameOfBase = backBearing->Station;
    NameOfBacksight = backBearing->BackSight;
  } else if (const auto* station = db_TotalStation::From (record)) {
    NameOfBase = station->StationName;
  } else if (const auto* reference = db_Reference::From (record)) {
    NameOfBase = reference->PointName;
  } else if (const auto* laser = db_LaserBasePoint::From (record)) {
    NameOfBase = laser->TheName;
  } else {
    return false;
  }
  return true;
}

bool position::LoadFromRecord (position_Job& job, const dbRecord_Class& record) {
  const Transform* transform = &job.CurrentTransform ();
  const auto takeReadings = [&] (const auto& reading) {
    Assert (
        reading.Station != NODBID && reading.Target != NODBID && reading.BackBearing != NODBID,
        "stationLocation != NODBID && targetLocation != NODBID && backbearingLocation != NODBID");
    SearchData = &job;
    DBLocationOfCircleStation = reading.Station;
    DBLocationOfCircleTarget = reading.Target;
    DBLocationOfCircleBackBearing = reading.BackBearing;
    CogoSystem = reading.CreatedView;
    LoadBaseNames (reading.BackBearing);
  };
  if (const auto* deltas = db_ECEFDeltas::From (&record)) {
    Assert (deltas->Antenna != NODBID && deltas->Reference != NODBID,
            "dbECEFDeltas->Antenna != NODBID && dbECEFDeltas->Reference != NODBID");
    LoadFromECEFDeltas ({deltas->XDelta, deltas->YDelta, deltas->ZDelta}, transform);
    SearchData = &job;
    DBLocationOfAntenna = deltas->Antenna;
    DBLocationOfECEFDeltasReference = deltas->Reference;
    LoadBaseNames (deltas->Reference);
  } else if (const auto* ecef = db_ECEF::From (&record)) {
    Assert (ecef->Antenna != NODBID, "dbECEF->Antenna != NODBID");
    LoadFromECEF ({ecef->X, ecef->Y, ecef->Z}, transform);
    DBLocationOfAntenna = ecef->Antenna;
  } else if (const auto* ground = db_ECEFGround::From (&record)) {
    LoadFromECEFGround ({ground->X, ground->Y, ground->Z}, transform);
  } else if (const auto* wgs84 = db_WGS84::From (&record)) {
    LoadFromWGS84 ({wgs84->Lat, wgs84->Long, wgs84->Height}, transform);
  } else if (const auto* local = db_Local::From (&record)) {
    LoadFromLocal ({local->Lat, local->Long, local->Height}, transform);
  } else if (const auto* grid = db_Grid::From (&record)) {
    LoadFromGrid ({grid->North, grid->East, grid->Elev}, transform);
  } else if (const auto* polar = db_Polar::From (&record)) {
    LoadFromPolar ({polar->Azimuth, polar->HDist, polar->VDist}, transform);
    NameOfBase = polar->SourcePoint;
    CogoSystem = polar->CreatedView;
  } else if (const auto* azimuth = db_Azimuth::From (&record)) {
    LoadFromPolar ({azimuth->Azimuth, MATHS_Null, MATHS_Null}, transform);
    NameOfBase = azimuth->SourcePoint;
    CogoSystem = azimuth->CreatedView;
  } else if (const auto* laser = db_LaserOffset::From (&record)) {
    Assert (laser->MagneticDeclination != NODBID && laser->LaserHeight != NODBID &&
                laser->TargetHeight != NODBID,
            "magneticDeclinationLocation != NODBID && laserHeightLocation != NODBID && "
            "targetHeightLocation != NODBID");
    Load (LaserOffset, coord_LaserOffset (laser->Azimuth, laser->VertAngle, laser->SlopeDist),
          COORD_LaserOffsetType, POSITION_DoneLaserOffset, transform);
    SearchData = &job;
    DBLocationOfMagneticDeclination = laser->MagneticDeclination;
    DBLocationOfLaserHeight = laser->LaserHeight;
    DBLocationOfTargetHeight = laser->TargetHeight;
    CogoSystem = laser->CreatedView;
    LoadBaseNames (laser->BasePoint);
  } else if (const auto* circle = db_Circle::From (&record)) {
    Load (Circle,
          coord_Circle (circle->HorzCircle, circle->VertCircle, circle->EDMDistance, circle->Face,
                        circle->HorzCircleStdErr, circle->VertCircleStdErr,
                        circle->EDMDistanceStdErr, circle->EDMMeasurementMode),
          COORD_CircleType, POSITION_DoneCircle, transform);
    takeReadings (*circle);
  } else if (const auto* mean = db_MeanTurnedAngle::From (&record)) {
    LoadFromMTA ({mean->HorzCircle, mean->VertCircle, mean->EDMDistance, mean->HorzCircleStdErr,
                  mean->VertCircleStdErr, mean->EDMDistanceStdErr, mean->NumberOfHAngles,
                  mean->NumberOfVAngles, mean->NumberOfDistances},
                 transform);
    takeReadings (*mean);
  } else {
    Reset ();
    Assert (false, "record.IsMeasurement ()");
    return false;
  }
  SearchData = &job;
  if (IsObservation ()) Assert (CogoSystem != 0, "!CogoSystem.IsNull()");
  return true;
}

bool position::LoadCachedGrid () {
  if (!SearchData || Object.IsNull () || UseProjectHeight ||
      TransformId != SearchData->CurrentTransform ().GetId () ||
      !SearchData->LoadGrid (Object, Grid))
    return false;
  return Finish (POSITION_DoneGrid, true);
}

void position::StoreCachedGrid () {
  if (SearchData && !Object.IsNull () && TransformId == SearchData->CurrentTransform ().GetId ())
    SearchData->StoreGrid (Object, Grid, !UseProjectHeight);
}

// Loads the base by its name, with its absolute form computed.
bool position::Base (int searchKind, position& base) const {
  if (!SearchData || NameOfBase.IsEmpty ()) {
    position_Fail (position_Reason::NoBaseName, NameOfBase, Name);
    return false;
  }
  if (position_Resolve (*SearchData, NameOfBase, searchKind, UseProjectHeight, base)) return true;
  position_Fail (position_Reason::BaseWithoutPosition, NameOfBase, Name);
  return false;
}

// Computes the target from the base along Polar. An observation whose circle could not be turned
// into an azimuth has distances alone and no target.
bool position::ForwardFromBase (position& base, const Transform& transform, position& target,
                                coord_Type wanted) {
  const bool isTurned =
      Original == COORD_UnturnedType || Original == COORD_CircleType || Original == COORD_MTAType;
  if (isTurned && maths_IsNull (Polar.Azimuth)) {
    position_Fail (position_Reason::NoAzimuth, NameOfBacksight, Name);
    return false;
  }
  cogo_ForwardPolar (base, transform, Polar, target, CogoSystem);
  const char* const text = wanted == COORD_GridType    ? "target->Original == COORD_GridType"
                           : wanted == COORD_LocalType ? "target->Original == COORD_LocalType"
                                                       : "target->Original == COORD_WGS84Type";
  return Assert (target.Original == wanted, text);
}

bool position::ComputeAntenna () {
  if (!BeginAttempt (POSITION_DoneAntenna)) return (Status & POSITION_DoneAntenna) != 0;
  if (Original != COORD_ECEFType && Original != COORD_ECEFDeltasType) return false;
  if (!SearchData || !Assert (DBLocationOfAntenna != NODBID, "this->DBLocationOfAntenna != NODBID"))
    return false;
  Antenna = AntennaHeight (*SearchData, DBLocationOfAntenna);
  if (Original == COORD_ECEFDeltasType) {
    Assert (DBLocationOfECEFDeltasReference != NODBID,
            "this->DBLocationOfECEFDeltasReference != NODBID");
    const db_Reference* reference =
        RecordAs<db_Reference> (*SearchData, DBLocationOfECEFDeltasReference);
    if (reference) {
      Assert (reference->PointName.EqualInsensitive (NameOfBase),
              "reference->PointName.EqualInsensitive (this->NameOfBase)");
      ReferenceAntenna = AntennaHeight (*SearchData, reference->Antenna);
    }
  }
  return Finish (POSITION_DoneAntenna, !maths_IsNull (Antenna));
}

void position::LoadFromCircle (const coord_Circle& circle, const environment& env,
                               double backBearingCircle, const Transform* transform) {
  Load (Circle, circle, COORD_CircleType, POSITION_DoneCircle, transform);
  const reduce_Setup setup = env.Setup ();
  reduce_CircleToCorrected (Circle, Corrected, setup);
  reduce_CorrectedToUnturned (Corrected, Unturned, setup);
  Status |= POSITION_DoneCorrected | POSITION_DoneUnturned;
  BackBearingCircle = backBearingCircle;
  UseProjectHeight = env.UseProjectHeight;
  HasStationSetup = env.HasStationSetup;
  if (HasStationSetup) {
    StationSetup = env.StationSetup;
  } else {
    Assert (env.Station.StationName.EqualInsensitive (env.BackBearing.Station),
            "environment->Station.StationName.EqualInsensitive (environment->BackBearing.Station)");
    NameOfBase = env.BackBearing.Station;
    NameOfBacksight = env.BackBearing.BackSight;
  }
}

void position::LoadFromLaserOffset (const coord_LaserOffset& laserOffset,
                                    const laser_Environment& env, const Transform* transform) {
  Load (LaserOffset, laserOffset, COORD_LaserOffsetType, POSITION_DoneLaserOffset, transform);
  Polar = reduce_LaserToPolar (LaserOffset, env);
  Finish (POSITION_DonePolar, !Polar.IsNull ());
}

namespace {

// Repeats the reduction of a reading step by step for a trace.
void TraceReading (position_Trace& trace, const position& point, const reduce_Setup& setup) {
  trace.HasReading = true;
  trace.Setup = setup;
  trace.Raw = trace.AfterPrism = point.Circle;
  reduce_PrismCorrection (trace.AfterPrism, setup, false);
  trace.AfterPPM = trace.AfterPrism;
  reduce_PPMCorrection (trace.AfterPPM, setup.PPM, false);
  trace.AfterRefraction = trace.AfterPPM;
  reduce_RefractionCorrection (trace.AfterRefraction, setup.EarthRadius, setup.Refraction, false);
  trace.Face1 = point.Corrected;
  reduce_ToFace1 (trace.Face1);
  trace.Unturned = point.Unturned;
  trace.BackBearingCircle = point.BackBearingCircle;
}

// The name of the record of a setup that is missing or of another type.
const char* MissingRecord (const position_Job& job, const position& point) {
  const auto* station = RecordAs<db_TotalStation> (job, point.DBLocationOfCircleStation);
  if (!station) return "station";
  if (!RecordAs<db_TotalInstrument> (job, station->Instrument)) return "instrument";
  return RecordAs<db_Target> (job, point.DBLocationOfCircleTarget) ? "back bearing" : "target";
}

}  // namespace

bool position::ComputeUnturned (const Transform&) {
  if (!BeginAttempt (POSITION_DoneUnturned)) return (Status & POSITION_DoneUnturned) != 0;
  if (Original != COORD_CircleType && Original != COORD_MTAType) return false;
  // A reading that was loaded from values has been reduced already.
  if (DBLocationOfCircleStation == NODBID && !Unturned.IsNull ()) {
    Status |= POSITION_DoneCorrected;
    return Finish (POSITION_DoneUnturned, true);
  }
  reduce_Setup setup;
  const db_TotalStation* station = nullptr;
  const db_TotalBackBearing* backBearing = nullptr;
  if (!SearchData ||
      !reduce_LoadSetup (*SearchData, DBLocationOfCircleStation, DBLocationOfCircleTarget,
                         DBLocationOfCircleBackBearing, setup, station, backBearing)) {
    if (SearchData && position_TraceNow ())
      position_Fail (position_Reason::SetupMissing, MissingRecord (*SearchData, *this), Name);
    return false;
  }
  setup.UseProjectHeight = UseProjectHeight;
  Assert (NameOfBacksight.EqualInsensitive (backBearing->BackSight),
          "this->NameOfBacksight.EqualInsensitive (environment.BackBearing.BackSight)");
  Assert (NameOfBase.EqualInsensitive (backBearing->Station),
          "this->NameOfBase.EqualInsensitive (environment.BackBearing.Station)");
  Assert (NameOfBase.EqualInsensitive (station->StationName),
          "this->NameOfBase.EqualInsensitive (environment.Station.GetName ())");
  reduce_CircleToCorrected (Circle, Corrected, setup);
  Status |= POSITION_DoneCorrected;
  reduce_CorrectedToUnturned (Corrected, Unturned, setup);
  BackBearingCircle =
      BackBearingCircleFor (*backBearing, Circle.VertCircle, Original == COORD_MTAType);
  if (position_Trace* trace = position_TraceNow (); trace && trace->Subject == this)
    TraceReading (*trace, *this, setup);
  if (Unturned.IsNull ()) position_Fail (position_Reason::NoReading, Name, Name);
  return Finish (POSITION_DoneUnturned, !Unturned.IsNull ());
}

bool position::ComputePolar (const Transform& transform, position* base,
                             const Transform& baseTransform) {
  if (!BeginAttempt (POSITION_DonePolar)) return (Status & POSITION_DonePolar) != 0;
  switch (Original) {
    case COORD_GridDeltasType:
    case COORD_ECEFDeltasType:
      if (!base || !SearchData || !ComputeAbsolute (transform) ||
          !base->ComputeAbsolute (baseTransform))
        return false;
      Assert (transform.GetId () == baseTransform.GetId (),
              "currentTransform->GetId() == baseTransform->GetId()");
      cogo_InversePolar (*base, *this, transform, Polar, SearchData->CogoSystem ());
      break;
    case COORD_GroundType:
      Polar = reduce_GroundToPolar (Ground);
      break;
    case COORD_LaserOffsetType: {
      if (DBLocationOfLaserHeight == NODBID && !Polar.IsNull ()) break;  // loaded from values
      laser_Environment env;
      const bool isNamed = DBLocationOfMagneticDeclination != NODBID &&
                           DBLocationOfLaserHeight != NODBID && DBLocationOfTargetHeight != NODBID;
      if (!SearchData || !isNamed ||
          !laser_LoadEnvironment (*SearchData, DBLocationOfMagneticDeclination,
                                  DBLocationOfLaserHeight, DBLocationOfTargetHeight, env)) {
        position_Fail (position_Reason::LaserSetupMissing, Name, Name);
        return false;
      }
      Polar = reduce_LaserToPolar (LaserOffset, env);
      if (position_Trace* trace = position_TraceNow (); trace && trace->Subject == this)
        trace->Laser = env;
      break;
    }
    case COORD_UnturnedType:
    case COORD_CircleType:
    case COORD_MTAType: {
      if (Original != COORD_UnturnedType && !ComputeUnturned (transform)) return false;
      double azimuth = MATHS_Null;
      if (HasStationSetup) {
        azimuth = StationSetup.Azimuth;
        if (position_Trace* trace = position_TraceNow (); trace && trace->Subject == this) {
          trace->AzimuthSource = position_AzimuthSource::StationSetup;
          trace->Azimuth = azimuth;
        }
      } else if (base && SearchData) {
        bool isKeyedIn;
        if (!ResolveAzimuth (*SearchData, *base, baseTransform, NameOfBacksight, azimuth,
                             isKeyedIn)) {
          position_Trace* const trace = position_TraceNow ();
          if (trace && !trace->Failures.empty ()) {
            const position_Failure cause = trace->Failures.back ();
            position_Fail (cause.Reason, cause.Name, Name);
          }
        }
      }
      Polar = reduce_TurnToPolar (Unturned, BackBearingCircle, azimuth);
      break;
    }
    default:
      return false;
  }
  return Finish (POSITION_DonePolar, !Polar.IsNull ());
}

coord_Polar position::GetPolar (const Transform& transform) {
  SetTransform (transform);
  position base;
  const bool isBased = Original == COORD_GridDeltasType || Original == COORD_ECEFDeltasType ||
                       Original == COORD_UnturnedType || Original == COORD_CircleType ||
                       Original == COORD_MTAType;
  const bool isDone = ((Status | Attempted) & POSITION_DonePolar) != 0;
  const bool isFound = isBased && !isDone && SearchData && !NameOfBase.IsEmpty () &&
                       SearchData->Find (NameOfBase, Original == COORD_ECEFDeltasType ? 0 : 1,
                                         UseProjectHeight, base);
  if (Original == COORD_NullType ||
      !ComputePolar (transform, isFound ? &base : nullptr,
                     isFound ? SearchData->CurrentTransform () : transform))
    Polar.SetNull ();
  return Polar;
}

bool position::ComputeGround (const Transform& transform) {
  if (!BeginAttempt (POSITION_DoneGround)) return (Status & POSITION_DoneGround) != 0;
  Ground = reduce_PolarToGround (GetPolar (transform));
  return Finish (POSITION_DoneGround, !Ground.IsNull ());
}

}  // namespace clxml
