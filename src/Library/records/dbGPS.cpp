// The fields of the records of satellite surveys.
// The order of a list is the order of the fields in a job file. Leans on dbGPS.h.
#include "Library/records/dbGPS.h"

namespace clxml {

void db_GPSTime::Fields (FieldVisitor& v) {
  FIELD (Week);
  FIELD (Time);
}

void db_ContParams::Fields (FieldVisitor& v) {
  FIELD (Method);
  FIELD (TriggerDistance);
  FIELD (Interval);
  FIELD (StopTime);
  FIELD (ContMethod);
  FIELD (LeftHorz);
  FIELD (LeftVert);
  FIELD (RightHorz);
  FIELD (RightVert);
}

void db_InitTimes::Fields (FieldVisitor& v) {
  FIELD (RequireL2);
  FIELD (TimeFor4SVs);
  FIELD (TimeFor5SVs);
  FIELD (TimeFor6SVs);
}

void db_Equipment::Fields (FieldVisitor& v) {
  FIELD (ReceiverType);
  FIELD (ReceiverSerialNo);
  FIELD (FullReceiverSerialNo);
  FIELD (ReceiverNavVersion);
  FIELD (AntennaName);
  FIELD (AntennaShortName);
  FIELD (MeasureMethod);
  FIELD (AntennaSerialNo);
  FIELD (AntennaNumber);
  FIELD (AntennaMethod);
  FIELD (TapeAdjustment);
  FIELD (HorizontalOffset);
  FIELD (VerticalOffset);
  FIELD (Derivation);
}

void db_Antenna::Fields (FieldVisitor& v) {
  FIELD (MeasuredHeight);
  FIELD (APCType);
  FIELD (Equipment);
}

db_RoverSurvey::db_RoverSurvey () {
  SatDiffCorrection = DBGPS_NoSatDiff;
  StationIndex = 0xFFFF;
  AntennaNumber = 85;
}

db_BaseSurvey::db_BaseSurvey () {
  SatDiffCorrection = DBGPS_WAAS;
  StationIndex = 29;
  AntennaNumber = 86;
}

void db_Survey::Fields (FieldVisitor& v) {
  FIELD (SurveyType);
  FIELD (LoggingDevice);
  FIELD (RTCMAgeLimit);
  FIELD (AutoFilenames);
  FIELD (Filename);
  FIELD (PPEpochInterval);
  FIELD (RTEpochInterval);
  FIELD (Application);
  FIELD (RecordType);
  FIELD (PosStoreType);
  FIELD (SatDiffCorrection);
  FIELD (IgnoreSatDiffHealth);
  FIELD (OutputCode);
  FIELD (INSPositionType);
  FIELD (ECodeRovers);
  FIELD (StationIndex);
  FIELD (PromptForIndex);
  FIELD (ElevationMask);
  FIELD (PDOPMask);
  FIELD (L2CEnabled);
  FIELD (GlonassEnabled);
  FIELD (L5Enabled);
  FIELD (L2eEnabled);
  FIELD (G1PTracked);
  FIELD (RxEarlySeriesBase);
  FIELD (AntennaNumber);
  FIELD (AntennaMethod);
  FIELD (AntennaSerialNo);
  FIELD (Approved);
  FIELD (FixedStyle);
  FIELD (MeasuredHeight);
  FIELD (AntennaFileName);
}

void db_SurveyEvent::Fields (FieldVisitor& v) { FIELD (Event); }

void db_ContParameters::Fields (FieldVisitor& v) { FIELD (Params); }

void db_Tracking::Fields (FieldVisitor& v) {
  FIELD (L1Tracking);
  FIELD (L2Tracking);
}

void db_GPSReading::Fields (FieldVisitor& v) {
  FIELD (Measurements);
  FIELD (Duration);
  FIELD (HorzAcc);
  FIELD (VertAcc);
  FIELD (AutoRove);
  FIELD (AutoPointName);
  FIELD (AsBuiltId);
  FIELD (AutoPointIncr);
  FIELD (QualityControl);
  FIELD (DisplayPointType);
  FIELD (AutoPrecisions);
}

void db_TSReading::Fields (FieldVisitor& v) {
  FIELD (ViewBeforeStorage);
  FIELD (AutoPointIncr);
  FIELD (DisplayPointType);
  FIELD (OffsetUserPerspective);
}

db_RoverRadio::db_RoverRadio () {
  RadioType = DBGPS_DeltaInternalRadio;
  Port = DBGPS_Port4;
  ModemBaudRate = 19200;
  ModemCTSEnabled = 0;
  DataThrottling = DBGPS_RateAutowInit;
}

db_BaseRadio::db_BaseRadio () {
  RadioType = DBGPS_VathTalk450S;
  Port = DBGPS_Port3;
  ModemBaudRate = 9600;
  ModemCTSEnabled = 1;
  DataThrottling = DBGPS_RateAutoFullwBase;
}

void db_Radio::Fields (FieldVisitor& v) {
  FIELD (RadioType);
  FIELD (Subtype);
  FIELD (ControllerPort);
  FIELD (Port);
  FIELD (BaudRate);
  FIELD (Parity);
  FIELD (CTSEnabled);
  FIELD (RXChannel);
  FIELD (TXChannel);
  FIELD (HomeAddress);
  FIELD (DestAddress);
  FIELD (ReportDelay);
  FIELD (CustomPort);
  FIELD (CustomBaudRate);
  FIELD (CustomParity);
  FIELD (CustomCTSEnabled);
  FIELD (PacCrestBaudRate);
  FIELD (PacCrestParity);
  FIELD (ModemPort);
  FIELD (ModemBaudRate);
  FIELD (ModemParity);
  FIELD (ModemCTSEnabled);
  FIELD (DialProfileName);
  FIELD (Approved);
  FIELD (StreamFromCL);
  FIELD (DataThrottling);
  FIELD (BluetoothAddress);
}

void db_Tolerance::Fields (FieldVisitor& v) {
  FIELD (HDist);
  FIELD (VDist);
  FIELD (HAngular);
  FIELD (VAngular);
  FIELD (HorzAngle);
  FIELD (VertAngle);
  FIELD (SlopeDistance);
  FIELD (AutoAverage);
}

void db_Initialisation::Fields (FieldVisitor& v) {
  FIELD (InitEvent);
  FIELD (Time);
  FIELD (InitType);
  FIELD (InitSystem);
  FIELD (InitCount);
  FIELD (PointName);
  FIELD (PlateAzimuth);
  FIELD (PlateHDist);
  FIELD (PlateVDist);
}

void db_Reference::Fields (FieldVisitor& v) {
  FIELD (PointName);
  FIELD (Antenna);
  FIELD (Derivation);
}

void db_PostProcess::Fields (FieldVisitor& v) {
  FIELD (FileName);
  FIELD (FileStatus);
  FIELD (StartTime);
  FIELD (Previous);
  FIELD (Antenna);
}

void db_ContinuousPoints::Fields (FieldVisitor& v) {
  FIELD (QualityControl);
  FIELD (HorzPrec);
  FIELD (VertPrec);
  FIELD (AutoPrecisions);
}

void db_FastStatic::Fields (FieldVisitor& v) {
  FIELD (AutoRove);
  FIELD (L1Times);
  FIELD (L1L2Times);
}

void db_CheckShot::Fields (FieldVisitor& v) {
  FIELD (Measurements);
  FIELD (Duration);
  FIELD (HorzAcc);
  FIELD (VertAcc);
  FIELD (AutoRove);
  FIELD (QualityControl);
  FIELD (StoreChecks);
}

void db_QuickMark::Fields (FieldVisitor& v) {
  FIELD (HorzAcc);
  FIELD (VertAcc);
  FIELD (QualityControl);
  FIELD (AutoPrecisions);
}

void db_RTKControl::Fields (FieldVisitor& v) {
  FIELD (AutoRove);
  FIELD (QualityControl);
  FIELD (PPTimes);
  FIELD (Measurements);
  FIELD (HorzAcc);
  FIELD (VertAcc);
  FIELD (AutoPrecisions);
}

void db_QC1::Fields (FieldVisitor& v) {
  FIELD (NumberOfSVs);
  FIELD (RelativeDOPs);
  FIELD (PDOP);
  FIELD (HDOP);
  FIELD (VDOP);
  FIELD (RMS);
  FIELD (PositionsUsed);
  FIELD (HorzStandardDeviation);
  FIELD (VertStandardDeviation);
  FIELD (StartTime);
  FIELD (EndTime);
  FIELD (MonitorState);
}

void db_QC2::Fields (FieldVisitor& v) {
  FIELD (NumberOfSVs);
  FIELD (ErrorScale);
  FIELD (VCVxx);
  FIELD (VCVxy);
  FIELD (VCVxz);
  FIELD (VCVyy);
  FIELD (VCVyz);
  FIELD (VCVzz);
}

void db_QC3::Fields (FieldVisitor& v) {
  FIELD (SigmaNorth);
  FIELD (SigmaEast);
  FIELD (SigmaElev);
  FIELD (CovarianceNE);
  FIELD (SemiMajorAxis);
  FIELD (SemiMinorAxis);
  FIELD (Orientation);
  FIELD (UnitVariance);
}

void db_Precision::Fields (FieldVisitor& v) {
  FIELD (Horizontal);
  FIELD (Vertical);
}

void db_SurveyStyle::Fields (FieldVisitor& v) {
  FIELD (ConfigName);
  FIELD (Device);
  FIELD (Folder);
}

void db_IntegratedStyle::Fields (FieldVisitor& v) {
  FIELD (IntegratedStyle);
  FIELD (GPSStyleName);
  FIELD (TSStyleName);
}

void db_IntegratedTarget::Fields (FieldVisitor& v) {
  FIELD (UsingISRoverPole);
  FIELD (OffsetFromCenterOfPrismToAntenna);
}

void db_GridStdDeviations::Fields (FieldVisitor& v) {
  FIELD (North);
  FIELD (East);
  FIELD (Elev);
}

}  // namespace clxml
