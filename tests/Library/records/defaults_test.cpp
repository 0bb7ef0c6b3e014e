// The first values of every record class.
// Leans on GoogleTest and the records.
#include <string>

#include "Library/records/dbRecord.h"
#include "Library/records/record_fields.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

// What a new record holds, as far as it is not 0, false, blank or empty.
struct Row {
  database_RecordType type;
  std::string_view fields;
};

constexpr Row rows[] = {
    {DATABASE_EllipsoidRecord, "Derivation='KI' EarthRadius=null Flattening=null"},
    {DATABASE_DatumRecord,
     "Derivation='KI' EarthRadius=6378137 Flattening=0.0033528106718309905 Scale=1"},
    {DATABASE_ProjectionRecord,
     "Derivation='KI' ProjectionType=1 OriginLocal.Lat=null OriginLocal.Long=null "
     "OriginLocal.Height=null OriginGrid.North=null OriginGrid.East=null OriginGrid.Elev=null "
     "Scale=1 Orientation1=null Orientation2=null GroundScale.ProjectLocation.Lat=null "
     "GroundScale.ProjectLocation.Long=null GroundScale.ProjectLocation.Height=null"},
    {DATABASE_PlaneRecord,
     "Derivation='KI' OriginNorth=null OriginEast=null TranslationNorth=null TranslationEast=null "
     "Rotation=null ScaleFactor=null"},
    {DATABASE_HeightRecord,
     "Derivation='KI' OriginNorth=null OriginEast=null NorthAdjustment=null EastAdjustment=null "
     "ElevAdjustment=null"},
    {DATABASE_CorrectionsRecord, "ValuesPresent=127 Distances=2"},
    {DATABASE_CoordSystemRecord,
     "DatumIndex=65534 GroundScale.ProjectLocation.Lat=null GroundScale.ProjectLocation.Long=null "
     "GroundScale.ProjectLocation.Height=null"},
    {DATABASE_CoordSysControlRecord, ""},
    {DATABASE_CalibBeginRecord, ""},
    {DATABASE_CalibPointRecord,
     "Residuals.North=null Residuals.East=null Residuals.Elev=null Residuals.DeltaNorth=null "
     "Residuals.DeltaEast=null Residuals.DeltaElev=null"},
    {DATABASE_ConfigCalibRecord,
     "CalibType=1 MaxHorzResiduals=0.01 MaxVertResiduals=0.02 MaxHorzScale=1.00001 "
     "MinHorzScale=0.99999 MaxVertIncline=1e-05 PointName.Method=2"},
    {DATABASE_CogoTransformationRecord, "rotationAngle=null scaleFactor=null translationMethod=1"},
    {DATABASE_AtmosphereRecord, "Pressure=null Temperature=null Refraction=1"},
    {DATABASE_BackBearingRecord, "OrientationCorrectionStdError=null"},
    {DATABASE_InstrumentRecord,
     "Type=37 RefractiveIndex=270 CarrierWavelength=79.167 HasExtraInfo=1 Servo=2 "
     "PortParam.BaudRate=9600 PortParam.DataBits=8 PortParam.StopBits=1 AnglesOnlyRate=2 "
     "Precisions.HAPrecision=9.69627362219072e-06 Precisions.VAPrecision=9.69627362219072e-06 "
     "Precisions.EDMPrecision=0.002 Precisions.EDMppm=2 CenteringError=0.002 "
     "Radio.StationAddress=-1 Radio.RemoteAddress=-1 AverageMeasurements=3 MeasureDistOnFace2=1 "
     "StakeUsingTracking=1 InstrumentAppliedHCollimation=null InstrumentAppliedVCollimation=null "
     "TrunionAxisTiltCorrection=null InstrumentAppliedAutolockHCollimation=null "
     "InstrumentAppliedAutolockVCollimation=null AtmosphereCorrectionCoeff=null"},
    {DATABASE_StationRecord, "RawTheodoliteHt=null ScaleFactor=1 ScaleFactorStdError=null"},
    {DATABASE_TargetRecord, "RawTargetHeight=null"},
    {DATABASE_DualPrismOffsetRecord,
     "PrismAObservation.HorzCircle=null PrismAObservation.VertCircle=null "
     "PrismAObservation.EDMDistance=null PrismAObservation.HorzCircleStdErr=null "
     "PrismAObservation.VertCircleStdErr=null PrismAObservation.EDMDistanceStdErr=null "
     "PrismBObservation.HorzCircle=null PrismBObservation.VertCircle=null "
     "PrismBObservation.EDMDistance=null PrismBObservation.HorzCircleStdErr=null "
     "PrismBObservation.VertCircleStdErr=null PrismBObservation.EDMDistanceStdErr=null "
     "PrismConstantA=null PrismConstantB=null DistanceAB=null DistanceBC=null "
     "CalculatedDistanceAB=null"},
    {DATABASE_CircularObjectRecord,
     "FirstRawObservation.HorzCircle=null FirstRawObservation.VertCircle=null "
     "FirstRawObservation.EDMDistance=null FirstRawObservation.HorzCircleStdErr=null "
     "FirstRawObservation.VertCircleStdErr=null FirstRawObservation.EDMDistanceStdErr=null "
     "SecondRawObservation.HorzCircle=null SecondRawObservation.VertCircle=null "
     "SecondRawObservation.EDMDistance=null SecondRawObservation.HorzCircleStdErr=null "
     "SecondRawObservation.VertCircleStdErr=null SecondRawObservation.EDMDistanceStdErr=null "
     "Radius=null"},
    {DATABASE_RemoteObjectRecord,
     "RawObservation.HorzCircle=null RawObservation.VertCircle=null "
     "RawObservation.EDMDistance=null RawObservation.HorzCircleStdErr=null "
     "RawObservation.VertCircleStdErr=null RawObservation.EDMDistanceStdErr=null ObjectHeight=null "
     "ObjectWidth=null"},
    {DATABASE_AngleOffsetRecord,
     "FirstRawObservation.HorzCircle=null FirstRawObservation.VertCircle=null "
     "FirstRawObservation.EDMDistance=null FirstRawObservation.HorzCircleStdErr=null "
     "FirstRawObservation.VertCircleStdErr=null FirstRawObservation.EDMDistanceStdErr=null "
     "SecondRawObservation.HorzCircle=null SecondRawObservation.VertCircle=null "
     "SecondRawObservation.EDMDistance=null SecondRawObservation.HorzCircleStdErr=null "
     "SecondRawObservation.VertCircleStdErr=null SecondRawObservation.EDMDistanceStdErr=null"},
    {DATABASE_DistanceOffsetRecord,
     "RawObservation.HorzCircleStdErr=null RawObservation.VertCircleStdErr=null "
     "RawObservation.EDMDistanceStdErr=null DisplayOffsetPerspective=1"},
    {DATABASE_LaserBasePointRecord, ""},
    {DATABASE_LaserHeightRecord, ""},
    {DATABASE_LaserTargetHeightRecord, ""},
    {DATABASE_LaserConfigRecord,
     "BaudRate=4800 DataBits=8 StopBits=1 DistancePrecision=null AzimuthPrecision=null "
     "InclinePrecision=null"},
    {DATABASE_MeterologicalRecord, ""},
    {DATABASE_SurfaceScanRecord,
     "HAstep=null VAstep=null Xstep=null Ystep=null MaxOffset=null Azimuth=null Distance=null "
     "TimeTaken=null"},
    {DATABASE_ScanningRecord,
     "TimeTaken=null AtDistance=null HorizontalStep=null VerticalStep=null "
     "HorizontalDistInterval=null VerticalDistInterval=null"},
    {DATABASE_ImageRecord, "HorizontalAngle=null VerticalAngle=null"},
    {DATABASE_CameraRecord, ""},
    {DATABASE_PanoramaRecord, "Top=null Left=null Bottom=null Right=null HAstep=null VAstep=null"},
    {DATABASE_EquipmentRecord, ""},
    {DATABASE_AntennaRecord, ""},
    {DATABASE_RoverSurveyRecord,
     "RTCMAgeLimit=1 AutoFilenames=1 PPEpochInterval=5 RTEpochInterval=1 Application=1 "
     "RecordType=9 PosStoreType=1 ECodeRovers=1 StationIndex=65535 PromptForIndex=1 "
     "ElevationMask=0.17453292519943295 PDOPMask=6 L2eEnabled=1 AntennaNumber=85 "
     "MeasuredHeight=null"},
    {DATABASE_BaseSurveyRecord,
     "RTCMAgeLimit=1 AutoFilenames=1 PPEpochInterval=5 RTEpochInterval=1 Application=1 "
     "RecordType=9 PosStoreType=1 SatDiffCorrection=1 ECodeRovers=1 StationIndex=29 "
     "PromptForIndex=1 ElevationMask=0.17453292519943295 PDOPMask=6 L2eEnabled=1 AntennaNumber=86 "
     "MeasuredHeight=null"},
    {DATABASE_SurveyEventRecord, ""},
    {DATABASE_ContParametersRecord, ""},
    {DATABASE_TrackingRecord, "L1Tracking=7 L2Tracking=7"},
    {DATABASE_GPSReadingRecord,
     "Measurements=3 Duration=5 HorzAcc=0.015 VertAcc=0.02 AsBuiltId=1 AutoPointIncr=1 "
     "QualityControl=2 DisplayPointType=1 AutoPrecisions=1"},
    {DATABASE_TSReadingRecord, "ViewBeforeStorage=1 AutoPointIncr=1 DisplayPointType=14"},
    {DATABASE_RoverRadioRecord,
     "RadioType=3 Port=3 BaudRate=38400 Parity=1 CustomPort=2 CustomBaudRate=9600 CustomParity=1 "
     "PacCrestBaudRate=9600 ModemPort=2 ModemBaudRate=19200 DataThrottling=2"},
    {DATABASE_BaseRadioRecord,
     "RadioType=7 Port=2 BaudRate=38400 Parity=1 CustomPort=2 CustomBaudRate=9600 CustomParity=1 "
     "PacCrestBaudRate=9600 ModemPort=2 ModemBaudRate=9600 ModemCTSEnabled=1 DataThrottling=4"},
    {DATABASE_L2OTFTimesRecord, "RequireL2=1 TimeFor4SVs=null TimeFor5SVs=900 TimeFor6SVs=480"},
    {DATABASE_L1StaticTimesRecord, "TimeFor4SVs=1800 TimeFor5SVs=1500 TimeFor6SVs=1200"},
    {DATABASE_ControlTimesRecord, "RequireL2=1 TimeFor4SVs=1200 TimeFor5SVs=900 TimeFor6SVs=480"},
    {DATABASE_FSL1TimesRecord, ""},
    {DATABASE_FSL2TimesRecord, ""},
    {DATABASE_NewPtTimesRecord, "RequireL2=1 TimeFor4SVs=1200 TimeFor5SVs=900 TimeFor6SVs=480"},
    {DATABASE_ToleranceRecord,
     "HAngular=4.84813681109536e-05 VAngular=9.69627362219072e-05 HorzAngle=4.84813681109536e-05 "
     "VertAngle=9.69627362219072e-05 SlopeDistance=0.02"},
    {DATABASE_InitialisationRecord, ""},
    {DATABASE_ReferenceRecord, ""},
    {DATABASE_PostProcessRecord, ""},
    {DATABASE_ContinuousRecord, ""},
    {DATABASE_ContPointsRecord, "QualityControl=1 HorzPrec=0.05 VertPrec=0.08 AutoPrecisions=1"},
    {DATABASE_FastStaticRecord,
     "L1Times.TimeFor4SVs=1800 L1Times.TimeFor5SVs=1500 L1Times.TimeFor6SVs=1200 "
     "L1L2Times.RequireL2=1 L1L2Times.TimeFor4SVs=1200 L1L2Times.TimeFor5SVs=900 "
     "L1L2Times.TimeFor6SVs=480"},
    {DATABASE_CheckShotRecord,
     "Measurements=3 Duration=5 HorzAcc=0.015 VertAcc=0.02 QualityControl=1 StoreChecks=1"},
    {DATABASE_QuickMarkRecord, "HorzAcc=0.2 VertAcc=0.25 QualityControl=1 AutoPrecisions=1"},
    {DATABASE_RTKContRecord,
     "QualityControl=2 PPTimes.TimeFor4SVs=600 PPTimes.TimeFor5SVs=480 PPTimes.TimeFor6SVs=300 "
     "Measurements=180 HorzAcc=0.015 VertAcc=0.02 AutoPrecisions=1"},
    {DATABASE_EndContinuousRecord, ""},
    {DATABASE_EndStyleRecord, ""},
    {DATABASE_QC1Record, ""},
    {DATABASE_QC2Record, ""},
    {DATABASE_QC3Record, ""},
    {DATABASE_PrecisionRecord, ""},
    {DATABASE_SurveyStyleRecord, ""},
    {DATABASE_IntegratedStyleRecord, ""},
    {DATABASE_IntegratedTargetRecord, "OffsetFromCenterOfPrismToAntenna=null"},
    {DATABASE_GridStdDeviationsRecord, ""},
    {DATABASE_ConfigStakeOutRecord,
     "DisplayPointType=5 AsStakedName=1 QualityControl=1 Duration=5 Measurements=3 HorzAcc=0.015 "
     "VertAcc=0.02 ZoomFactor=4 AutoFineMode=1 GridDeltas=1 GPSDeltas=4 "
     "TSAngleDeltaTolerance=0.0001454441043328608 TSDistanceDeltaTolerance=0.02 DoToleranceCheck=1 "
     "Tolerance.HorzAngle=4.84813681109536e-05 Tolerance.VertAngle=9.69627362219072e-05 "
     "Tolerance.SlopeDistance=0.02 AutoPointIncr=1 AutoSideSlope=1"},
    {DATABASE_RoadAvailableStations, "RegularSections=1 HorizCurve=1 VerticalCurve=1"},
    {DATABASE_RoadConstructionOffsets, ""},
    {DATABASE_GridDeltasRecord, ""},
    {DATABASE_LinearDeltasRecord, ""},
    {DATABASE_PointDesignRecord, "DesignElevation=null OriginalDesignElevation=null"},
    {DATABASE_LinearDesignRecord,
     "EntityType=1 OriginalDesignElevation=null StakedFromElementStartPoint=1 ElementLength=null"},
    {DATABASE_DTMDesignRecord, ""},
    {DATABASE_DTMDeltasRecord, ""},
    {DATABASE_RelativeDTMDeltasRecord, "DeltaElevation=null"},
    {DATABASE_SlopeDesignRecord, ""},
    {DATABASE_RoadDesignRecord,
     "NewSideSlopeOffset=null SSFAHingeOffset=null SSFAHingeElevation=null SSFAHingeSlope=null "
     "SSFAHingeVerticalDistance=null CrossSlopeDelta=null CrossSlopeOffset=null "
     "SubgradeDepth=null"},
    {DATABASE_RoadDeltasRecord, "AsStakedBatterGrade=null"},
    {DATABASE_SecondaryRoadDeltasRecord,
     "HDist=null VDist=null DistanceToCL=null Chainage=null CrossSlopeDelta=null "
     "CrossSlopeOffset=null"},
    {DATABASE_RoadCatchDeltaRecord, ""},
    {DATABASE_CrossSectionNodeRecord, ""},
    {DATABASE_CrossSectionBatterRecord, "CutGrade=null FillGrade=null"},
    {DATABASE_CrossSectionCenterNodeRecord, ""},
    {DATABASE_CrossSectionSideRecord, ""},
    {DATABASE_CrossSectionReport, ""},
    {DATABASE_StakeoutListRecord, ""},
    {DATABASE_StationOffsetRecord, "EntityType=1"},
    {DATABASE_StationingRecord, "Increment=null"},
    {DATABASE_UnitsRecord,
     "AngleUnits=14 LatLongUnits=14 VelocityUnits=20 TemperatureUnits=28 PressureUnits=30 "
     "CoordType=4 Grade=26 AreaUnits=36 Stationing=2 DMSAngleDisplay=1 DecAngleDisplay=1 "
     "DistanceDisplay=2 CoordinateDisplay=2"},
    {DATABASE_CodingRecord, ""},
    {DATABASE_DescriptionsDefinitionRecord, ""},
    {DATABASE_JobPropertiesRecord, ""},
    {DATABASE_BackgroundFileListRecord, ""},
};

TEST (RecordDefaults, ANewRecordHoldsWhatItsClassSays) {
  for (const Row& row : rows) {
    const auto record = CreateRecord (row.type);
    ASSERT_NE (record, nullptr) << ClassName (row.type);
    std::string fields;
    for (auto& [name, value] : FieldLister::Of (*record)) {
      if (value == "0" || value == "''" || value == "'  '") continue;
      if (!fields.empty ()) fields += ' ';
      fields += name + "=" + value;
    }
    EXPECT_EQ (fields, row.fields) << ClassName (row.type);
  }
}

}  // namespace
}  // namespace clxml::testing
