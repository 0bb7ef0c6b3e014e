// The catalogue of record classes.
// One list knows them all: by a type's number it makes, copies and names its records. Leans on the
// record families.
#include <iterator>

#include "Library/records/dbConventional.h"
#include "Library/records/dbCoordSystems.h"
#include "Library/records/dbGPS.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"
#include "Library/records/dbReader.h"
#include "Library/records/dbSettings.h"
#include "Library/records/dbStakeout.h"
#include "platform/pool.h"

namespace clxml {

namespace {

// What the catalogue knows of a class.
struct Row {
  const char* name;
  dbRecord_Class* (*make) ();
  dbRecord_Class* (*clone) (const dbRecord_Class& source);
  void (*assign) (const dbRecord_Class& source, dbRecord_Class& dest);
  int number;
};

template <class T>
constexpr Row RowOf (const char* name) {
  static_assert (alignof (T) <= 8);
  return {name, [] () -> dbRecord_Class* { return ::new (Pool::Make (sizeof (T))) T; },
          [] (const dbRecord_Class& source) -> dbRecord_Class* {
            return new T (static_cast<const T&> (source));
          },
          [] (const dbRecord_Class& source, dbRecord_Class& dest) {
            static_cast<T&> (dest) = static_cast<const T&> (source);
          },
          T::Number};
}

#define ROW(T) RowOf<T> (#T)

// By number.
constexpr Row rows[] = {
    ROW (db_JobHeader),
    ROW (db_Note),
    ROW (db_Observation),
    ROW (db_Line),
    ROW (db_Arc),
    ROW (db_Inverse),
    ROW (db_ComputeAzimuth),
    ROW (db_ComputeDistance),
    ROW (db_ECEFDeltas),
    ROW (db_ECEF),
    ROW (db_ECEFGround),
    ROW (db_WGS84),
    ROW (db_Local),
    ROW (db_Grid),
    ROW (db_Polar),
    ROW (db_LaserOffset),
    ROW (db_Circle),
    ROW (db_Azimuth),
    ROW (db_MeanTurnedAngle),
    ROW (db_MeanTurnedAngleResiduals),
    ROW (db_MeanTurnedAngleResidualsBegin),
    ROW (db_TotalAtmosphere),
    ROW (db_TotalBackBearing),
    ROW (db_TotalInstrument),
    ROW (db_TotalStation),
    ROW (db_DualPrismOffset),
    ROW (db_EndEntity),
    ROW (db_QC1),
    ROW (db_QC2),
    ROW (db_QC3),
    ROW (db_Precision),
    ROW (db_Ellipsoid),
    ROW (db_Datum),
    ROW (db_Projection),
    ROW (db_Plane),
    ROW (db_Height),
    ROW (db_Corrections),
    ROW (db_RoadAvailableStations),
    ROW (db_RoadConstructionOffsets),
    ROW (db_CalibPoint),
    ROW (db_Equipment),
    ROW (db_Antenna),
    ROW (db_RoverSurvey),
    ROW (db_BaseSurvey),
    ROW (db_SurveyEvent),
    ROW (db_ContParameters),
    ROW (db_Units),
    ROW (db_Tracking),
    ROW (db_Coding),
    ROW (db_DescriptionsDefinition),
    ROW (db_GPSReading),
    ROW (db_TSReading),
    ROW (db_RoverRadio),
    ROW (db_BaseRadio),
    ROW (db_L2OTFTimes),
    ROW (db_L1StaticTimes),
    ROW (db_ControlTimes),
    ROW (db_FSL1Times),
    ROW (db_FSL2Times),
    ROW (db_Tolerance),
    ROW (db_Meterological),
    ROW (db_Initialisation),
    ROW (db_Reference),
    ROW (db_PostProcess),
    ROW (db_Continuous),
    ROW (db_ContinuousPoints),
    ROW (db_FastStatic),
    ROW (db_StakeOut),
    ROW (db_CheckShot),
    ROW (db_QuickMark),
    ROW (db_RTKControl),
    ROW (db_EndContinuous),
    ROW (db_EndSurveyStyle),
    ROW (db_CalibBegin),
    ROW (db_ConfigCalib),
    ROW (db_Area),
    ROW (db_CoordSystemControl),
    ROW (db_NewPtTimes),
    ROW (db_CoordSystem),
    ROW (db_SurveyStyle),
    ROW (db_IntegratedStyle),
    ROW (db_IntegratedTarget),
    ROW (db_PointKeyin),
    ROW (db_PolarDeltas),
    ROW (db_Stationing),
    ROW (db_GridDeltas),
    ROW (db_LinearDeltas),
    ROW (db_PointDesign),
    ROW (db_LinearDesign),
    ROW (db_DTMDesign),
    ROW (db_DTMDeltas),
    ROW (db_RelativeDTMDeltas),
    ROW (db_SlopeDesign),
    ROW (db_RoadDesign),
    ROW (db_RoadDeltas),
    ROW (db_SecondaryRoadDeltas),
    ROW (db_RoadCatchDeltas),
    ROW (db_CrossSectionNode),
    ROW (db_CrossSectionBatter),
    ROW (db_CrossSectionSide),
    ROW (db_CrossSectionCenterNode),
    ROW (db_CrossSectionReport),
    ROW (db_LaserBasePoint),
    ROW (db_LaserHeight),
    ROW (db_LaserTargetHeight),
    ROW (db_LaserConfig),
    ROW (db_StationSetupResidualsBegin),
    ROW (db_StationSetupResiduals),
    ROW (db_ResectErrors),
    ROW (db_Traverse),
    ROW (db_TraverseClosure),
    ROW (db_TraverseAdjustment),
    ROW (db_DistanceOffset),
    ROW (db_StakeoutList),
    ROW (db_BackgroundFileList),
    ROW (db_JobProperties),
    ROW (db_StationOffset),
    ROW (db_StartRounds),
    ROW (db_StartRound),
    ROW (db_EndRound),
    ROW (db_EndRounds),
    ROW (db_SurfaceScan),
    ROW (db_Target),
    ROW (db_CircularObject),
    ROW (db_RemoteObject),
    ROW (db_BoolAction),
    ROW (db_DBID),
    ROW (db_Features),
    ROW (db_Descriptions),
    ROW (db_CogoTransformation),
    ROW (db_Scanning),
    ROW (db_Image),
    ROW (db_Camera),
    ROW (db_Panorama),
    ROW (db_AngleOffset),
    ROW (db_GridStdDeviations),
    ROW (db_Foreign),
    ROW (db_TimeZone),
};
#undef ROW

constexpr bool InOrder () {
  for (int i = 0; i < DATABASE_AllRecords; i++)
    if (rows[i].number != i) return false;
  return true;
}
static_assert (std::size (rows) == DATABASE_AllRecords);
static_assert (InOrder ());

// The row of a type, or null.
constexpr const Row* Find (int type) {
  return type >= 0 && type < DATABASE_AllRecords ? &rows[type] : nullptr;
}

}  // namespace

const char* ClassName (int type) noexcept {
  const Row* row = Find (type);
  return row ? row->name : "";
}

std::unique_ptr<dbRecord_Class> CreateRecord (int type) {
  const Row* row = Find (type);
  return std::unique_ptr<dbRecord_Class> (row ? row->make () : nullptr);
}

void CopyRecord (const dbRecord_Class& source, dbRecord_Class& dest) {
  if (!Assert (source.GetType () == dest.GetType (), "Source.GetType () == Dest.GetType()")) return;
  if (&source != &dest) rows[source.GetType ()].assign (source, dest);
}

std::unique_ptr<dbRecord_Class> CloneRecord (const dbRecord_Class& record) {
  return std::unique_ptr<dbRecord_Class> (rows[record.GetType ()].clone (record));
}

std::unique_ptr<dbRecord_Class> LoadRecord (const Buffer& buffer, int& byteOffset) {
  // The time of the new record is read from the body; the clock need not be asked.
  const clock_Hold hold;
  BodyReader reader (buffer, byteOffset);
  std::unique_ptr<dbRecord_Class> record = LoadRecord (reader);
  if (record) byteOffset = reader.Offset ();
  return record;
}

std::unique_ptr<dbRecord_Class> LoadRecord (BodyReader& in) {
  uint16_t type = 0;
  in.Number (type);
  std::unique_ptr<dbRecord_Class> record = in.IsGood () ? CreateRecord (type) : nullptr;
  if (record && !record->LoadRest (in)) record.reset ();
  return record;
}

}  // namespace clxml
