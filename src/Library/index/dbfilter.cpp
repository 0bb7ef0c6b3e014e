// The filter words of each record: one table for the types, the rules for the kinds of points.
#include "Library/index/dbfilter.h"

#include "Library/records/dbPoints.h"

namespace clxml {
namespace {

// By class: for a copied point, and for any other.
struct ClassRow {
  db_PointClassification::Class Class;
  uint32_t Copied;
  uint32_t Other;
};
constexpr ClassRow byClass[] = {
    {db_PointClassification::Stakeout, DBKIND_CopiedStakeout, DBKIND_Stakeout},
    {db_PointClassification::Check, DBKIND_Check, DBKIND_Check},
    {db_PointClassification::Construction, DBKIND_CopiedConstruction, DBKIND_Construction},
    {db_PointClassification::Adjusted, DBKIND_CopiedAdjusted, DBKIND_Adjusted},
};

// By a range of methods.
struct MethodRow {
  dbentity_PointMethod First;
  dbentity_PointMethod Last;
  uint32_t Kind;
};
constexpr MethodRow byMethod[] = {
    {DBENTITY_FourPointInter, DBENTITY_FourPointInter, DBKIND_Intersection},
    {DBENTITY_FromABaseline, DBENTITY_BrngDistPoint, DBKIND_Offset},
    {DBENTITY_TurnedAngleDistance, DBENTITY_DistDistInter, DBKIND_Intersection},
    {DBENTITY_GpsStaticObs, DBENTITY_GpsStaticObs, DBKIND_GpsStatic},
    {DBENTITY_GpsFastStaticObs, DBENTITY_GpsFastStaticObs, DBKIND_GpsFastStatic},
    {DBENTITY_GpsRTKCtrlPoint, DBENTITY_GpsRTKCtrlPoint, DBKIND_GpsControl},
    {DBENTITY_GpsRTKQuickMark, DBENTITY_GpsRTKQuickMark, DBKIND_GpsQuickMark},
    {DBENTITY_Gps2PtOffset, DBENTITY_Gps2PtOffset, DBKIND_Offset},
    {DBENTITY_GpsLoggingInit, DBENTITY_GpsLoggingInit, DBKIND_GpsStatic},
    {DBENTITY_GpsStakeOutObs, DBENTITY_GpsStakeOutObs, DBKIND_Stakeout},
    {DBENTITY_GpsCalibrationPt, DBENTITY_GpsCalibrationPt, DBKIND_GpsCalibration},
    {DBENTITY_GpsContDistancePt, DBENTITY_GpsContOffsetPt2, DBKIND_Continuous},
    {DBENTITY_CogoCalc, DBENTITY_CogoCalc, DBKIND_CogoCalculation},
    {DBENTITY_AzimuthOnly, DBENTITY_AzimuthOnly, DBKIND_AzimuthOnly},
    {DBENTITY_MatchedPairHidden, DBENTITY_MatchedPairHidden, DBKIND_Deleted},
    {DBENTITY_MeanTurnedAngle, DBENTITY_MeanTurnedAngle, DBKIND_MeanTurnedAngle},
    {DBENTITY_MeanTurnedAngleHidden, DBENTITY_MeanTurnedAngleHidden, DBKIND_Deleted},
    {DBENTITY_Resection, DBENTITY_Resection, DBKIND_Resection},
    {DBENTITY_LaserOffset, DBENTITY_LaserOffset, DBKIND_LaserOffset},
    {DBENTITY_FromBase, DBENTITY_FromBase, DBKIND_FromBase},
    {DBENTITY_TraverseAdjusted, DBENTITY_TraverseAdjusted, DBKIND_Adjusted},
    {DBENTITY_ReflineSetup, DBENTITY_ReflineSetup, DBKIND_Resection},
};

uint32_t ConventionalKind (Derivation derivation) {
  if (derivation == Derivation{'T', 'P'}) return DBKIND_Continuous;
  if (derivation == Derivation{'F', '1'}) return DBKIND_FaceOne;
  if (derivation == Derivation{'I', 'X'}) return DBKIND_Intersection;
  return DBKIND_Conventional;
}

uint32_t CopiedKind (db_PointClassification classification) {
  switch (classification.value) {
    case db_PointClassification::Control:
      return DBKIND_CopiedControl;
    case db_PointClassification::Normal:
    case db_PointClassification::MTA:
    case db_PointClassification::Averaged:
    case db_PointClassification::BackSight:
      return DBKIND_CopiedNormal;
    default:
      return 0;
  }
}

}  // namespace

uint32_t dbfilter_PointKind (const db_Observation& point) {
  if (point.IsDeleted ()) return DBKIND_Deleted;
  const dbentity_PointMethod method = point.Method;
  for (const ClassRow& row : byClass)
    if (point.Classification == row.Class)
      return method == DBENTITY_CopiedPoint ? row.Copied : row.Other;
  if (method == DBENTITY_Coordinates)
    return point.Classification == db_PointClassification::Control ? DBKIND_ControlCoordinates
                                                                   : DBKIND_Coordinates;
  if (method >= DBENTITY_AngleOnly && method <= DBENTITY_RemoteObject)
    return ConventionalKind (point.Derivation);
  if (method == DBENTITY_CopiedPoint) return CopiedKind (point.Classification);
  for (const MethodRow& row : byMethod)
    if (method >= row.First && method <= row.Last) return row.Kind;
  return 0;
}

dbfilter_Words dbfilter_WordsOf (const dbRecord_Class& record) {
  constexpr uint32_t one = DBFILTER_Always;
  constexpr uint32_t live = DBKIND_Live | one;
  constexpr uint32_t passes = DBSTATUS_NotAPoint | one;
  const uint32_t liveness = (record.IsDeleted () ? DBKIND_Deleted : DBKIND_Live) | one;
  switch (record.GetType ()) {
    case DATABASE_ObservationRecord: {
      const auto& point = static_cast<const db_Observation&> (record);
      return {DBFILTER_Point | one, dbfilter_PointKind (point) | one,
              point.Method == DBENTITY_ResectionInProgress ? DBSTATUS_Resection | one : one};
    }
    case DATABASE_LineRecord:
      return {DBFILTER_Line | one, liveness, passes};
    case DATABASE_ArcRecord:
      return {DBFILTER_Arc | one, liveness, passes};
    case DATABASE_TargetRecord:
      return {one, one, one};
    case DATABASE_StationRecord:
      return {DBFILTER_Station | one, live, passes};
    case DATABASE_BackBearingRecord:
      return {one, live, passes};
    case DATABASE_TraverseHeaderRecord:  // live also where it is deleted
      return {DBFILTER_Traverse | one, live, passes};
    default:
      return {};
  }
}

}  // namespace clxml
