// Conversions of satellite surveys: receivers, antennas, radios, quality and occupations.
// Leans on the conversion frame.
#include "Library/records/dbGPS.h"
#include "import/conversion.h"

namespace clxml {

namespace {

void ReadGPSTime (const FieldReader& in, db_GPSTime& time) {
  in.IntOrHex ("Week", time.Week);
  in.Double ("Time", time.Time);
}

void ReadContParams (const FieldReader& in, db_ContParams& params) {
  in.Enum ("Method", params.Method);
  in.Double ("TriggerDistance", params.TriggerDistance);
  in.Double ("Interval", params.Interval);
  in.DoubleOr ("StopTime", params.StopTime, 1.0);
  in.Enum ("ContMethod", params.ContMethod);
  in.Double ("LeftHorz", params.LeftHorz);
  in.Double ("LeftVert", params.LeftVert);
  in.Double ("RightHorz", params.RightHorz);
  in.Double ("RightVert", params.RightVert);
}

void ReadTimes (const FieldReader& in, db_InitTimes& times) {
  in.Bool ("RequireL2", times.RequireL2);
  in.Double ("TimeFor4SVs", times.TimeFor4SVs);
  in.Double ("TimeFor5SVs", times.TimeFor5SVs);
  in.Double ("TimeFor6SVs", times.TimeFor6SVs);
}

// Rover and base have the same fields.
template <class T>
void ReadSurvey (FieldReader& in, T& survey) {
  in.Enum ("SurveyType", survey.SurveyType);
  in.Enum ("LoggingDevice", survey.LoggingDevice);
  in.Enum ("RTCMAgeLimit", survey.RTCMAgeLimit);
  in.Bool ("AutoFilenames", survey.AutoFilenames);
  in.String ("Filename", survey.Filename);
  in.Double ("PPEpochInterval", survey.PPEpochInterval);
  in.Double ("RTEpochInterval", survey.RTEpochInterval);
  in.Enum ("Application", survey.Application);
  in.Enum ("RecordType", survey.RecordType);
  in.EnumOr ("PosStoreType", survey.PosStoreType, DBGPS_StoreAsPositions);
  in.EnumOr ("SatDiffCorrection", survey.SatDiffCorrection, DBGPS_NoSatDiff);
  in.BoolOr ("IgnoreSatDiffHealth", survey.IgnoreSatDiffHealth, false);
  in.Bool ("OutputCode", survey.OutputCode);
  in.Enum ("INSPositionType", survey.INSPositionType);
  in.Bool ("ECodeRovers", survey.ECodeRovers);
  in.IntOrHex ("StationIndex", survey.StationIndex);
  in.Bool ("PromptForIndex", survey.PromptForIndex);
  in.Double ("ElevationMask", survey.ElevationMask);
  in.Double ("PDOPMask", survey.PDOPMask);
  in.BoolOr ("L2CEnabled", survey.L2CEnabled, false);
  in.BoolOr ("GlonassEnabled", survey.GlonassEnabled, false);
  in.BoolOr ("L5Enabled", survey.L5Enabled, false);
  in.BoolOr ("L2eEnabled", survey.L2eEnabled, true);
  in.BoolOr ("G1PTracked", survey.G1PTracked, false);
  in.BoolOr ("RxEarlySeriesBase", survey.RxEarlySeriesBase, false);
  in.Int ("AntennaNumber", survey.AntennaNumber);
  in.Int ("AntennaMethod", survey.AntennaMethod);
  in.String ("AntennaSerialNo", survey.AntennaSerialNo);
  in.Bool ("Approved", survey.Approved);
  in.Bool ("FixedStyle", survey.FixedStyle);
  in.Double ("MeasuredHeight", survey.MeasuredHeight);
  in.String ("AntennaFileName", survey.AntennaFileName);
}

// Rover and base have the same fields.
template <class T>
void ReadRadio (FieldReader& in, T& radio) {
  in.Enum ("RadioType", radio.RadioType);
  in.EnumOr ("Subtype", radio.Subtype, DBGPS_UHF);
  in.EnumOr ("ControllerPort", radio.ControllerPort, RS232_COM1);
  in.Enum ("Port", radio.Port);
  in.IntOrHex ("BaudRate", radio.BaudRate);
  in.Enum ("Parity", radio.Parity);
  in.Bool ("CTSEnabled", radio.CTSEnabled);
  in.IntOrHex ("RXChannel", radio.RXChannel);
  in.IntOrHex ("TXChannel", radio.TXChannel);
  in.IntOrHex ("HomeAddress", radio.HomeAddress);
  in.IntOrHex ("DestAddress", radio.DestAddress);
  in.IntOrHex ("ReportDelay", radio.ReportDelay);
  in.Enum ("CustomPort", radio.CustomPort);
  in.IntOrHex ("CustomBaudRate", radio.CustomBaudRate);
  in.Enum ("CustomParity", radio.CustomParity);
  in.Bool ("CustomCTSEnabled", radio.CustomCTSEnabled);
  in.IntOrHex ("PacCrestBaudRate", radio.PacCrestBaudRate);
  in.Enum ("PacCrestParity", radio.PacCrestParity);
  in.Enum ("ModemPort", radio.ModemPort);
  in.IntOrHex ("ModemBaudRate", radio.ModemBaudRate);
  in.Enum ("ModemParity", radio.ModemParity);
  in.Bool ("ModemCTSEnabled", radio.ModemCTSEnabled);
  in.String ("DialProfileName", radio.DialProfileName, From (1130));
  in.BoolOr ("Approved", radio.Approved, false);
  in.BoolOr ("StreamFromCL", radio.StreamFromCL, false);
  in.EnumOr ("DataThrottling", radio.DataThrottling, DBGPS_RateAutoFullwBase);
  in.String ("BluetoothAddress", radio.BluetoothAddress, From (1140));
}

template <class T>
void ReadTimesRecord (FieldReader& in, T& times) {
  ReadTimes (in.Group ("times"), times);
}

void ReadQC1 (FieldReader& in, db_QC1& qc1) {
  in.IntOrHex ("NumberOfSVs", qc1.NumberOfSVs);
  in.Bool ("RelativeDOPs", qc1.RelativeDOPs);
  in.Double ("PDOP", qc1.PDOP);
  in.Double ("HDOP", qc1.HDOP);
  in.Double ("VDOP", qc1.VDOP);
  in.Double ("RMS", qc1.RMS);
  in.IntOrHex ("PositionsUsed", qc1.PositionsUsed);
  in.Double ("HorzStandardDeviation", qc1.HorzStandardDeviation);
  in.Double ("VertStandardDeviation", qc1.VertStandardDeviation);
  ReadGPSTime (in.Group ("StartTime"), qc1.StartTime);
  ReadGPSTime (in.Group ("EndTime"), qc1.EndTime);
  in.Enum ("MonitorState", qc1.MonitorState);
}

void ReadQC2 (FieldReader& in, db_QC2& qc2) {
  in.IntOrHex ("NumberOfSVs", qc2.NumberOfSVs);
  in.Double ("ErrorScale", qc2.ErrorScale);
  in.Double ("VCVxx", qc2.VCVxx);
  in.Double ("VCVxy", qc2.VCVxy);
  in.Double ("VCVxz", qc2.VCVxz);
  in.Double ("VCVyy", qc2.VCVyy);
  in.Double ("VCVyz", qc2.VCVyz);
  in.Double ("VCVzz", qc2.VCVzz);
}

void ReadQC3 (FieldReader& in, db_QC3& qc3) {
  in.Double ("SigmaNorth", qc3.SigmaNorth);
  in.Double ("SigmaEast", qc3.SigmaEast);
  in.Double ("SigmaElev", qc3.SigmaElev);
  in.Double ("CovarianceNE", qc3.CovarianceNE);
  in.Double ("SemiMajorAxis", qc3.SemiMajorAxis);
  in.Double ("SemiMinorAxis", qc3.SemiMinorAxis);
  in.Double ("Orientation", qc3.Orientation);
  in.Double ("UnitVariance", qc3.UnitVariance);
}

void ReadEquipment (FieldReader& in, db_Equipment& equipment) {
  in.String ("ReceiverType", equipment.ReceiverType);
  in.String ("ReceiverSerialNo", equipment.ReceiverSerialNo);
  in.String ("FullReceiverSerialNo", equipment.FullReceiverSerialNo);
  in.Double ("ReceiverNavVersion", equipment.ReceiverNavVersion);
  in.String ("AntennaName", equipment.AntennaName);
  in.String ("AntennaShortName", equipment.AntennaShortName);
  in.String ("MeasureMethod", equipment.MeasureMethod);
  in.String ("AntennaSerialNo", equipment.AntennaSerialNo);
  in.Int ("AntennaNumber", equipment.AntennaNumber);
  in.Int ("AntennaMethod", equipment.AntennaMethod);
  in.Double ("TapeAdjustment", equipment.TapeAdjustment);
  in.Double ("HorizontalOffset", equipment.HorizontalOffset);
  in.Double ("VerticalOffset", equipment.VerticalOffset);
  in.DerivationCode ("Derivation", equipment.Derivation);
}

void ReadAntenna (FieldReader& in, db_Antenna& antenna) {
  in.Double ("MeasuredHeight", antenna.MeasuredHeight);
  in.Enum ("APCType", antenna.APCType);
  in.Hex ("Equipment", antenna.Equipment);
}

void ReadSurveyEvent (FieldReader& in, db_SurveyEvent& surveyEvent) {
  in.Enum ("Event", surveyEvent.Event);
}

void ReadContParameters (FieldReader& in, db_ContParameters& contParameters) {
  ReadContParams (in.Group ("Params"), contParameters.Params);
}

void ReadInitialisation (FieldReader& in, db_Initialisation& initialisation) {
  in.Enum ("InitEvent", initialisation.InitEvent);
  ReadGPSTime (in.Group ("Time"), initialisation.Time);
  in.Enum ("InitType", initialisation.InitType);
  in.Enum ("InitSystem", initialisation.InitSystem);
  in.IntOrHex ("InitCount", initialisation.InitCount);
  in.String ("PointName", initialisation.PointName);
  in.Double ("PlateAzimuth", initialisation.PlateAzimuth);
  in.Double ("PlateHDist", initialisation.PlateHDist);
  in.Double ("PlateVDist", initialisation.PlateVDist);
}

void ReadReference (FieldReader& in, db_Reference& reference) {
  in.String ("PointName", reference.PointName);
  in.Hex ("Antenna", reference.Antenna);
  in.DerivationCode ("Derivation", reference.Derivation);
}

void ReadPostProcess (FieldReader& in, db_PostProcess& postProcess) {
  in.String ("FileName", postProcess.FileName);
  in.Enum ("FileStatus", postProcess.FileStatus);
  in.Hex ("Previous", postProcess.Previous);
  in.Hex ("Antenna", postProcess.Antenna);
  ReadGPSTime (in.Group ("StartTime"), postProcess.StartTime);
}

void ReadTracking (FieldReader& in, db_Tracking& tracking) {
  in.Enum ("L1Tracking", tracking.L1Tracking);
  in.Enum ("L2Tracking", tracking.L2Tracking);
}

void ReadGPSReading (FieldReader& in, db_GPSReading& gpsReading) {
  in.IntOrHex ("Measurements", gpsReading.Measurements);
  in.Double ("Duration", gpsReading.Duration);
  in.Double ("HorzAcc", gpsReading.HorzAcc);
  in.Double ("VertAcc", gpsReading.VertAcc);
  in.Bool ("AutoRove", gpsReading.AutoRove);
  in.String ("AutoPointName", gpsReading.AutoPointName);
  in.Enum ("AsBuiltId", gpsReading.AsBuiltId);
  in.Int ("AutoPointIncr", gpsReading.AutoPointIncr);
  in.Enum ("QualityControl", gpsReading.QualityControl);
  in.Enum ("DisplayPointType", gpsReading.DisplayPointType);
  in.BoolOr ("AutoPrecisions", gpsReading.AutoPrecisions, false);
}

void ReadTolerance (FieldReader& in, db_Tolerance& tolerance) {
  in.Double ("HDist", tolerance.HDist);
  in.Double ("VDist", tolerance.VDist);
  in.Double ("HAngular", tolerance.HAngular);
  in.Double ("VAngular", tolerance.VAngular);
  in.Double ("HorzAngle", tolerance.HorzAngle);
  in.Double ("VertAngle", tolerance.VertAngle);
  in.Double ("SlopeDistance", tolerance.SlopeDistance);
  in.BoolOr ("AutoAverage", tolerance.AutoAverage, false);
}

void ReadFastStatic (FieldReader& in, db_FastStatic& fastStatic) {
  in.Bool ("AutoRove", fastStatic.AutoRove);
  ReadTimes (in.Group ("L1Times"), fastStatic.L1Times);
  ReadTimes (in.Group ("L1L2Times"), fastStatic.L1L2Times);
}

void ReadQuickMark (FieldReader& in, db_QuickMark& quickMark) {
  in.Double ("HorzAcc", quickMark.HorzAcc);
  in.Double ("VertAcc", quickMark.VertAcc);
  in.Enum ("QualityControl", quickMark.QualityControl);
  in.BoolOr ("AutoPrecisions", quickMark.AutoPrecisions, false);
}

void ReadCheckShot (FieldReader& in, db_CheckShot& checkShot) {
  in.IntOrHex ("Measurements", checkShot.Measurements);
  in.Double ("Duration", checkShot.Duration);
  in.Double ("HorzAcc", checkShot.HorzAcc);
  in.Double ("VertAcc", checkShot.VertAcc);
  in.Bool ("AutoRove", checkShot.AutoRove);
  in.Enum ("QualityControl", checkShot.QualityControl);
  in.Bool ("StoreChecks", checkShot.StoreChecks);
}

void ReadRTKCont (FieldReader& in, db_RTKControl& rtkControl) {
  in.Bool ("AutoRove", rtkControl.AutoRove);
  in.Enum ("QualityControl", rtkControl.QualityControl);
  ReadTimes (in.Group ("PPTimes"), rtkControl.PPTimes);
  in.IntOrHex ("Measurements", rtkControl.Measurements);
  in.Double ("HorzAcc", rtkControl.HorzAcc);
  in.Double ("VertAcc", rtkControl.VertAcc);
  in.BoolOr ("AutoPrecisions", rtkControl.AutoPrecisions, false);
}

void ReadContPoints (FieldReader& in, db_ContinuousPoints& continuousPoints) {
  in.Enum ("QualityControl", continuousPoints.QualityControl);
  in.Double ("HorzPrec", continuousPoints.HorzPrec);
  in.Double ("VertPrec", continuousPoints.VertPrec);
  in.BoolOr ("AutoPrecisions", continuousPoints.AutoPrecisions, false);
}

constexpr Conversion conversions[] = {
    {"DATABASE_QC1Record", "db_QC1", Convert<ReadQC1>},
    {"DATABASE_QC2Record", "db_QC2", Convert<ReadQC2>},
    {"DATABASE_QC3Record", "db_QC3", Convert<ReadQC3>},
    {"DATABASE_EquipmentRecord", "db_Equipment", Convert<ReadEquipment>},
    {"DATABASE_AntennaRecord", "db_Antenna", Convert<ReadAntenna>},
    {"DATABASE_RoverSurveyRecord", "db_RoverSurvey", Convert<ReadSurvey<db_RoverSurvey>>},
    {"DATABASE_BaseSurveyRecord", "db_BaseSurvey", Convert<ReadSurvey<db_BaseSurvey>>},
    {"DATABASE_SurveyEventRecord", "db_SurveyEvent", Convert<ReadSurveyEvent>},
    {"DATABASE_ContParametersRecord", "db_ContParameters", Convert<ReadContParameters>},
    {"DATABASE_InitialisationRecord", "db_Initialisation", Convert<ReadInitialisation>},
    {"DATABASE_ReferenceRecord", "db_Reference", Convert<ReadReference>},
    {"DATABASE_PostProcessRecord", "db_PostProcess", Convert<ReadPostProcess>},
    {"DATABASE_TrackingRecord", "db_Tracking", Convert<ReadTracking>},
    {"DATABASE_GPSReadingRecord", "db_GPSReading", Convert<ReadGPSReading>},
    {"DATABASE_RoverRadioRecord", "db_RoverRadio", Convert<ReadRadio<db_RoverRadio>>},
    {"DATABASE_BaseRadioRecord", "db_BaseRadio", Convert<ReadRadio<db_BaseRadio>>},
    {"DATABASE_L2OTFTimesRecord", "db_L2OTFTimes", Convert<ReadTimesRecord<db_L2OTFTimes>>},
    {"DATABASE_L1StaticTimesRecord", "db_L1StaticTimes",
     Convert<ReadTimesRecord<db_L1StaticTimes>>},
    {"DATABASE_ControlTimesRecord", "db_ControlTimes", Convert<ReadTimesRecord<db_ControlTimes>>},
    {"DATABASE_NewPtTimesRecord", "db_NewPtTimes", Convert<ReadTimesRecord<db_NewPtTimes>>},
    {"DATABASE_FSL1TimesRecord", "db_FSL1Times", Convert<ReadTimesRecord<db_FSL1Times>>},
    {"DATABASE_FSL2TimesRecord", "db_FSL2Times", Convert<ReadTimesRecord<db_FSL2Times>>},
    {"DATABASE_ToleranceRecord", "db_Tolerance", Convert<ReadTolerance>},
    {"DATABASE_FastStaticRecord", "db_FastStatic", Convert<ReadFastStatic>},
    {"DATABASE_QuickMarkRecord", "db_QuickMark", Convert<ReadQuickMark>},
    {"DATABASE_CheckShotRecord", "db_CheckShot", Convert<ReadCheckShot>},
    {"DATABASE_RTKContRecord", "db_RTKControl", Convert<ReadRTKCont>},
    {"DATABASE_ContPointsRecord", "db_ContinuousPoints", Convert<ReadContPoints>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> GPSConversions () noexcept { return conversions; }

}  // namespace clxml
