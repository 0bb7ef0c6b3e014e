// The records that fix an instrument setup for the reduction of an observation.
#include "Library/position/environment.h"

#include <cmath>

#include "Library/position/positionjob.h"
#include "Library/records/dbCoordSystems.h"
#include "str.h"

namespace clxml {
namespace {

// True heights that differ by less are the same, metres.
constexpr double sameHeight = 0.0001;

template <class T>
const T* RecordAs (const position_Job& job, DBID id) {
  return id == NODBID ? nullptr : T::From (job.Record (id));
}

template <class T>
bool Copy (const position_Job& job, DBID id, T& out) {
  const T* record = RecordAs<T> (job, id);
  if (record) out = *record;
  return record != nullptr;
}

reduce_Setup SetupOf (const db_TotalStation& station, const db_TotalInstrument& instrument,
                      const db_TotalAtmosphere* atmosphere, const db_Target& target) {
  reduce_Setup setup;
  setup.StationHeight = station.TheodoliteHt ();
  setup.ScaleFactor = station.ScaleFactor;
  if (atmosphere) {
    setup.PPM = reduce_PPM (*atmosphere, instrument);
    setup.Refraction = reduce_RefractionCoefficient (atmosphere->Refraction);
  }
  setup.TargetHeight = target.TargetHeight ();
  setup.PrismConstant = target.PrismConstant;
  setup.PrismType = target.PrismType;
  setup.RMTID = target.RMTID;
  return setup;
}

}  // namespace

reduce_Setup environment::Setup () const {
  reduce_Setup setup = SetupOf (Station, Instrument, &Atmosphere, Target);
  setup.EarthRadius = EarthRadius;
  setup.UseProjectHeight = UseProjectHeight;
  return setup;
}

bool environment_LoadStation (const position_Job& job, DBID station, environment& env) {
  const auto* record = RecordAs<db_TotalStation> (job, station);
  if (!record) return false;
  env.EarthRadius = REDUCE_EarthRadius;
  env.Station = *record;
  env.HasStationSetup = false;
  if (!Copy (job, record->Instrument, env.Instrument)) return false;
  if (!Copy (job, record->Atmosphere, env.Atmosphere)) {
    env.Atmosphere.Pressure = env.Atmosphere.Temperature = env.Atmosphere.PPM = MATHS_Null;
    env.Atmosphere.Refraction = TOTAL_Refraction0;
  }
  return true;
}

bool environment_LoadTarget (const position_Job& job, DBID target, environment& env) {
  return Copy (job, target, env.Target);
}

bool environment_LoadBackBearing (const position_Job& job, DBID backBearing, environment& env) {
  return Copy (job, backBearing, env.BackBearing);
}

bool environment_Load (const position_Job& job, DBID station, DBID target, DBID backBearing,
                       environment& env) {
  return environment_LoadStation (job, station, env) && environment_LoadTarget (job, target, env) &&
         environment_LoadBackBearing (job, backBearing, env);
}

bool environment_LoadLatest (const position_Job& job, const db_Target& target, environment& env) {
  return environment_LoadAt (job, target, env, job.LastOfType (DATABASE_StationRecord),
                             job.LastOfType (DATABASE_BackBearingRecord));
}

bool environment_LoadAt (const position_Job& job, const db_Target& target, environment& env,
                         DBID station, DBID backBearing) {
  const bool isLoaded = environment_LoadStation (job, station, env) &&
                        environment_LoadBackBearing (job, backBearing, env);
  env.Target = target;
  return isLoaded;
}

bool reduce_LoadSetup (const position_Job& job, DBID station, DBID target, DBID backBearing,
                       reduce_Setup& setup, const db_TotalStation*& stationRecord,
                       const db_TotalBackBearing*& backBearingRecord) {
  backBearingRecord = nullptr;
  stationRecord = RecordAs<db_TotalStation> (job, station);
  if (!stationRecord) return false;
  const auto* instrument = RecordAs<db_TotalInstrument> (job, stationRecord->Instrument);
  const auto* targetRecord = RecordAs<db_Target> (job, target);
  if (!instrument || !targetRecord) return false;
  backBearingRecord = RecordAs<db_TotalBackBearing> (job, backBearing);
  if (!backBearingRecord) return false;
  setup = SetupOf (*stationRecord, *instrument,
                   RecordAs<db_TotalAtmosphere> (job, stationRecord->Atmosphere), *targetRecord);
  return true;
}

bool laser_LoadEnvironment (const position_Job& job, DBID magneticDeclination, DBID laserHeight,
                            DBID targetHeight, laser_Environment& out) {
  Assert (magneticDeclination != NODBID, "magneticDeclinationLocation != NODBID");
  Assert (laserHeight != NODBID, "laserHeightLocation != NODBID");
  Assert (targetHeight != NODBID, "targetHeightLocation != NODBID");
  const auto* declination = RecordAs<db_Corrections> (job, magneticDeclination);
  const auto* laser = RecordAs<db_LaserHeight> (job, laserHeight);
  const auto* target = RecordAs<db_LaserTargetHeight> (job, targetHeight);
  if (!declination || !laser || !target) return false;
  const auto* current = RecordAs<db_Corrections> (job, job.LastOfType (DATABASE_CorrectionsRecord));
  out.LaserHeight = laser->Height;
  out.TargetHeight = target->Height;
  out.MagneticDeclination = declination->MagneticDeclination;
  out.SouthAzimuth = (current ? current : declination)->SouthAzimuth != 0;
  return true;
}

bool reduce_SameTarget (const position_Job& job, DBID target1, DBID target2) {
  Assert (target1 != NODBID, "target1Location != NODBID");
  Assert (target2 != NODBID, "target2Location != NODBID");
  if (target1 == target2) return true;
  const auto* first = RecordAs<db_Target> (job, target1);
  const auto* second = RecordAs<db_Target> (job, target2);
  if (!first || !second) return false;
  const double difference = maths_Subtract (first->TargetHeight (), second->TargetHeight ());
  return !maths_IsNull (difference) && std::abs (difference) < sameHeight &&
         total_Target (*first).Prism == total_Target (*second).Prism &&
         first->RMTID == second->RMTID;
}

void reduce_CircleToCorrected (const coord_Circle& circle, coord_Corrected& corrected,
                               const environment& env) {
  reduce_CircleToCorrected (circle, corrected, env.Setup ());
}
void reduce_CorrectedToCircle (const coord_Corrected& corrected, coord_Circle& circle,
                               const environment& env) {
  reduce_CorrectedToCircle (corrected, circle, env.Setup ());
}
void reduce_CorrectedToUnturned (const coord_Corrected& corrected, coord_Unturned& unturned,
                                 const environment& env) {
  reduce_CorrectedToUnturned (corrected, unturned, env.Setup ());
}
void reduce_UnturnedToCorrected (const coord_Unturned& unturned, coord_Corrected& corrected,
                                 const environment& env) {
  reduce_UnturnedToCorrected (unturned, corrected, env.Setup ());
}
void reduce_UnturnedToCircle (const coord_Unturned& unturned, coord_Circle& circle,
                              const environment& env) {
  reduce_UnturnedToCircle (unturned, circle, env.Setup ());
}
void reduce_CircleToUnturned (const coord_Circle& circle, coord_Unturned& unturned,
                              const environment& env) {
  reduce_CircleToUnturned (circle, unturned, env.Setup ());
}
void reduce_DistanceOffset (const coord_Corrected& corrected,
                            dbconfig_OffsetPerspectiveMode perspective, double leftRight,
                            double inOut, double vertical, const environment& env,
                            coord_Corrected& out) {
  reduce_DistanceOffset (corrected, perspective, leftRight, inOut, vertical, env.Setup (), out);
}

}  // namespace clxml
