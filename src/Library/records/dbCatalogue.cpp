// The catalogue of record classes.
// One list knows them all: by a type's number it makes, copies and names its records. Leans on the
// record families.
#include <iterator>

#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"
#include "Library/records/dbReader.h"

namespace clxml {

namespace {

// What the catalogue knows of a class.
struct Row {
  const char* name = "";
  dbRecord_Class* (*make) () = nullptr;
  dbRecord_Class* (*clone) (const dbRecord_Class& source) = nullptr;
  void (*assign) (const dbRecord_Class& source, dbRecord_Class& dest) = nullptr;
  int number = -1;
};

template <class T>
constexpr Row RowOf (const char* name) {
  return {name, [] () -> dbRecord_Class* { return new T; },
          [] (const dbRecord_Class& source) -> dbRecord_Class* {
            return new T (static_cast<const T&> (source));
          },
          [] (const dbRecord_Class& source, dbRecord_Class& dest) {
            static_cast<T&> (dest) = static_cast<const T&> (source);
          },
          T::Number};
}

#define ROW(T) RowOf<T> (#T)
#define ROW_TO_COME(T) \
  Row {}

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
    ROW_TO_COME (db_TotalAtmosphere),
    ROW_TO_COME (db_TotalBackBearing),
    ROW_TO_COME (db_TotalInstrument),
    ROW_TO_COME (db_TotalStation),
    ROW_TO_COME (db_DualPrismOffset),
    ROW (db_EndEntity),
    ROW_TO_COME (db_QC1),
    ROW_TO_COME (db_QC2),
    ROW_TO_COME (db_QC3),
    ROW_TO_COME (db_Precision),
    ROW_TO_COME (db_Ellipsoid),
    ROW_TO_COME (db_Datum),
    ROW_TO_COME (db_Projection),
    ROW_TO_COME (db_Plane),
    ROW_TO_COME (db_Height),
    ROW_TO_COME (db_Corrections),
    ROW_TO_COME (db_RoadAvailableStations),
    ROW_TO_COME (db_RoadConstructionOffsets),
    ROW_TO_COME (db_CalibPoint),
    ROW_TO_COME (db_Equipment),
    ROW_TO_COME (db_Antenna),
    ROW_TO_COME (db_RoverSurvey),
    ROW_TO_COME (db_BaseSurvey),
    ROW_TO_COME (db_SurveyEvent),
    ROW_TO_COME (db_ContParameters),
    ROW_TO_COME (db_Units),
    ROW_TO_COME (db_Tracking),
    ROW_TO_COME (db_Coding),
    ROW_TO_COME (db_DescriptionsDefinition),
    ROW_TO_COME (db_GPSReading),
    ROW_TO_COME (db_TSReading),
    ROW_TO_COME (db_RoverRadio),
    ROW_TO_COME (db_BaseRadio),
    ROW_TO_COME (db_L2OTFTimes),
    ROW_TO_COME (db_L1StaticTimes),
    ROW_TO_COME (db_ControlTimes),
    ROW_TO_COME (db_FSL1Times),
    ROW_TO_COME (db_FSL2Times),
    ROW_TO_COME (db_Tolerance),
    ROW_TO_COME (db_Meterological),
    ROW_TO_COME (db_Initialisation),
    ROW_TO_COME (db_Reference),
    ROW_TO_COME (db_PostProcess),
    ROW_TO_COME (db_Continuous),
    ROW_TO_COME (db_ContinuousPoints),
    ROW_TO_COME (db_FastStatic),
    ROW_TO_COME (db_StakeOut),
    ROW_TO_COME (db_CheckShot),
    ROW_TO_COME (db_QuickMark),
    ROW_TO_COME (db_RTKControl),
    ROW_TO_COME (db_EndContinuous),
    ROW_TO_COME (db_EndSurveyStyle),
    ROW_TO_COME (db_CalibBegin),
    ROW_TO_COME (db_ConfigCalib),
    ROW (db_Area),
    ROW_TO_COME (db_CoordSystemControl),
    ROW_TO_COME (db_NewPtTimes),
    ROW_TO_COME (db_CoordSystem),
    ROW_TO_COME (db_SurveyStyle),
    ROW_TO_COME (db_IntegratedStyle),
    ROW_TO_COME (db_IntegratedTarget),
    ROW (db_PointKeyin),
    ROW (db_PolarDeltas),
    ROW_TO_COME (db_Stationing),
    ROW_TO_COME (db_GridDeltas),
    ROW_TO_COME (db_LinearDeltas),
    ROW_TO_COME (db_PointDesign),
    ROW_TO_COME (db_LinearDesign),
    ROW_TO_COME (db_DTMDesign),
    ROW_TO_COME (db_DTMDeltas),
    ROW_TO_COME (db_RelativeDTMDeltas),
    ROW_TO_COME (db_SlopeDesign),
    ROW_TO_COME (db_RoadDesign),
    ROW_TO_COME (db_RoadDeltas),
    ROW_TO_COME (db_SecondaryRoadDeltas),
    ROW_TO_COME (db_RoadCatchDeltas),
    ROW_TO_COME (db_CrossSectionNode),
    ROW_TO_COME (db_CrossSectionBatter),
    ROW_TO_COME (db_CrossSectionSide),
    ROW_TO_COME (db_CrossSectionCenterNode),
    ROW_TO_COME (db_CrossSectionReport),
    ROW_TO_COME (db_LaserBasePoint),
    ROW_TO_COME (db_LaserHeight),
    ROW_TO_COME (db_LaserTargetHeight),
    ROW_TO_COME (db_LaserConfig),
    ROW (db_StationSetupResidualsBegin),
    ROW (db_StationSetupResiduals),
    ROW (db_ResectErrors),
    ROW (db_Traverse),
    ROW (db_TraverseClosure),
    ROW (db_TraverseAdjustment),
    ROW_TO_COME (db_DistanceOffset),
    ROW_TO_COME (db_StakeoutList),
    ROW_TO_COME (db_BackgroundFileList),
    ROW_TO_COME (db_JobProperties),
    ROW_TO_COME (db_StationOffset),
    ROW (db_StartRounds),
    ROW (db_StartRound),
    ROW (db_EndRound),
    ROW (db_EndRounds),
    ROW_TO_COME (db_SurfaceScan),
    ROW_TO_COME (db_Target),
    ROW_TO_COME (db_CircularObject),
    ROW_TO_COME (db_RemoteObject),
    ROW (db_BoolAction),
    ROW (db_DBID),
    ROW (db_Features),
    ROW (db_Descriptions),
    ROW_TO_COME (db_CogoTransformation),
    ROW_TO_COME (db_Scanning),
    ROW_TO_COME (db_Image),
    ROW_TO_COME (db_Camera),
    ROW_TO_COME (db_Panorama),
    ROW_TO_COME (db_AngleOffset),
    ROW_TO_COME (db_GridStdDeviations),
    ROW (db_Foreign),
    ROW (db_TimeZone),
};
#undef ROW

constexpr bool InOrder () {
  for (int i = 0; i < DATABASE_AllRecords; i++)
    if (rows[i].make && rows[i].number != i) return false;
  return true;
}
static_assert (std::size (rows) == DATABASE_AllRecords);
static_assert (InOrder ());

// The row of a type, or null.
constexpr const Row* Find (int type) {
  return type >= 0 && type < DATABASE_AllRecords && rows[type].make ? &rows[type] : nullptr;
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
  uint16_t type = 0;
  reader.Number (type);
  std::unique_ptr<dbRecord_Class> record = reader.IsGood () ? CreateRecord (type) : nullptr;
  if (record && !record->Load (buffer, byteOffset)) record.reset ();
  return record;
}

}  // namespace clxml
