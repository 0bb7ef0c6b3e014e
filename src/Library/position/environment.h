// The records that fix an instrument setup for the reduction of an observation.
// A copy of whole records for hosts; positions reduce from the records themselves.
#pragma once

#include "Library/coords/coord.h"
#include "Library/position/reduce.h"
#include "Library/records/dbConventional.h"

namespace clxml {

class position_Job;

/// A setup of an instrument, with the target that was aimed at.
struct environment {
  double EarthRadius = REDUCE_EarthRadius;  ///< metres
  db_TotalAtmosphere Atmosphere;
  db_TotalBackBearing BackBearing;
  db_TotalInstrument Instrument;
  db_TotalStation Station;
  db_Target Target;
  bool HasStationSetup = false;         ///< StationSetup is used instead of the station's name
  coord_StationSetupData StationSetup;  ///< grid and azimuth of a setup carried by value
  bool UseProjectHeight = false;        ///< a null instrument or target height counts as 0.0

  /// The numbers that a reduction uses.
  reduce_Setup Setup () const;
};

/// Loads the station, its instrument and its atmosphere; sets EarthRadius and clears
/// HasStationSetup. Returns false if the record is not a db_TotalStation or its instrument does not
/// exist. A missing atmosphere has null pressure, temperature and PPM, and no refraction.
bool environment_LoadStation (const position_Job& job, DBID station, environment& env);
/// Loads the target; false if there is no db_Target of that number.
bool environment_LoadTarget (const position_Job& job, DBID target, environment& env);
/// Loads the back bearing; false if there is no db_TotalBackBearing of that number.
bool environment_LoadBackBearing (const position_Job& job, DBID backBearing, environment& env);
/// Loads all three in this order, and stops at the first failure.
bool environment_Load (const position_Job& job, DBID station, DBID target, DBID backBearing,
                       environment& env);
/// Loads the newest station and the newest back bearing of the job. The target is copied in any
/// case. Returns false if one of the two is missing.
bool environment_LoadLatest (const position_Job& job, const db_Target& target, environment& env);
/// The same with a given station and back bearing.
bool environment_LoadAt (const position_Job& job, const db_Target& target, environment& env,
                         DBID station, DBID backBearing);

/// The numbers of a setup, straight from the records of the job: copies no record and allocates
/// nothing. Returns false where environment_Load does; backBearing is null then.
bool reduce_LoadSetup (const position_Job& job, DBID station, DBID target, DBID backBearing,
                       reduce_Setup& setup, const db_TotalStation*& stationRecord,
                       const db_TotalBackBearing*& backBearingRecord);

/// Loads what a laser observation needs. SouthAzimuth is that of the job's newest db_Corrections,
/// otherwise that of the declination's record. Asserts that the three locations are given
/// ("magneticDeclinationLocation != NODBID", "laserHeightLocation != NODBID",
/// "targetHeightLocation != NODBID"). Returns false if a record is missing or of another type.
bool laser_LoadEnvironment (const position_Job& job, DBID magneticDeclination, DBID laserHeight,
                            DBID targetHeight, laser_Environment& out);

/// True if the locations are equal, or both are targets with true heights that differ by less than
/// 0.1 mm, equal prisms and the same RMTID. Asserts "target1Location != NODBID" and
/// "target2Location != NODBID".
bool reduce_SameTarget (const position_Job& job, DBID target1, DBID target2);

// The reductions by an environment; see reduce.h.
void reduce_CircleToCorrected (const coord_Circle& circle, coord_Corrected& corrected,
                               const environment& env);
void reduce_CorrectedToCircle (const coord_Corrected& corrected, coord_Circle& circle,
                               const environment& env);
void reduce_CorrectedToUnturned (const coord_Corrected& corrected, coord_Unturned& unturned,
                                 const environment& env);
void reduce_UnturnedToCorrected (const coord_Unturned& unturned, coord_Corrected& corrected,
                                 const environment& env);
void reduce_UnturnedToCircle (const coord_Unturned& unturned, coord_Circle& circle,
                              const environment& env);
void reduce_CircleToUnturned (const coord_Circle& circle, coord_Unturned& unturned,
                              const environment& env);
void reduce_DistanceOffset (const coord_Corrected& corrected,
                            dbconfig_OffsetPerspectiveMode perspective, double leftRight,
                            double inOut, double vertical, const environment& env,
                            coord_Corrected& out);

}  // namespace clxml
