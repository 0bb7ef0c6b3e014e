// The records of satellite surveys and survey styles.
// Equipment, antennas, styles, radios, occupation times, initialisations and quality. Angles are
// radians, lengths and accuracies metres; a uint8_t is a yes or no. Leans on dbRecord and dbGroups.
#pragma once

#include "Library/records/dbGroups.h"
#include "Library/records/dbRecord.h"

namespace clxml {

/// A time of the satellites' clock.
struct db_GPSTime {
  uint16_t Week = 0;
  double Time = 0.0;  ///< seconds of the week

  void Fields (FieldVisitor& v);
};

/// What triggers the points of a continuous survey, and the points offset from them.
struct db_ContParams {
  dbgps_ContMethod Method = DBGPS_ContDistancePt;
  double TriggerDistance = 0.0;
  double Interval = 0.0;  ///< seconds
  double StopTime = 0.0;  ///< seconds
  dbgps_ContOffsetOption ContMethod = DBGPS_ContNone;
  double LeftHorz = 0.0;
  double LeftVert = 0.0;
  double RightHorz = 0.0;
  double RightVert = 0.0;

  void Fields (FieldVisitor& v);
};

/// How long to observe, in seconds by the number of satellites; null where that number is too few.
struct db_InitTimes {
  uint8_t RequireL2 = 0;
  double TimeFor4SVs = 0.0;
  double TimeFor5SVs = 0.0;
  double TimeFor6SVs = 0.0;

  void Fields (FieldVisitor& v);
};

/// A record that is nothing but such times.
template <class T, database_RecordType number>
class TimesRecord : public RecordOf<T, number>, public db_InitTimes {
 public:
  explicit TimesRecord (const db_InitTimes& times) : db_InitTimes (times) {}
  void Fields (FieldVisitor& v) final { db_InitTimes::Fields (v); }
};

/// A receiver and its antenna.
class db_Equipment final : public RecordOf<db_Equipment, DATABASE_EquipmentRecord> {
 public:
  Str ReceiverType;
  Str ReceiverSerialNo;
  Str FullReceiverSerialNo;
  double ReceiverNavVersion = 0.0;  ///< version of the firmware
  Str AntennaName;
  Str AntennaShortName;
  Str MeasureMethod;  ///< the name of the method
  Str AntennaSerialNo;
  int16_t AntennaNumber = 0;                     ///< in the list of antennas
  dbgps_APCType AntennaMethod = DBGPS_Absolute;  ///< to where heights are measured
  double TapeAdjustment = 0.0;                   ///< added to a taped height
  double HorizontalOffset = 0.0;                 ///< from the mark measured to, to the axis
  double VerticalOffset = 0.0;                   ///< from the mark measured to, to the phase centre
  clxml::Derivation Derivation;

  void Fields (FieldVisitor& v) override;
};

/// The height of an antenna above a mark.
class db_Antenna final : public RecordOf<db_Antenna, DATABASE_AntennaRecord> {
 public:
  double MeasuredHeight = 0.0;
  dbgps_APCType APCType = DBGPS_Absolute;  ///< to where the height was measured
  DBID Equipment;                          ///< its db_Equipment

  /// Another equipment.
  void SetReference (DBID id) override { Equipment = id; }
  void Fields (FieldVisitor& v) override;
};

/// The settings of a satellite survey, of its rover or its base.
class db_Survey : public dbRecord_Class {
 public:
  /// The record as a survey of a rover or a base, or null if it is null or of another type.
  static db_Survey* From (dbRecord_Class* record) {
    return IsOne (record) ? static_cast<db_Survey*> (record) : nullptr;
  }
  static const db_Survey* From (const dbRecord_Class* record) {
    return IsOne (record) ? static_cast<const db_Survey*> (record) : nullptr;
  }

  dbgps_SurveyType SurveyType = DBGPS_RTK;
  dbgps_LoggingDevice LoggingDevice = DBGPS_HandHeld;
  dbgps_RTCMAgeLimit RTCMAgeLimit = DBGPS_Age10;
  uint8_t AutoFilenames = 1;
  Str Filename;
  double PPEpochInterval = 5.0;  ///< seconds, of logging
  double RTEpochInterval = 1.0;  ///< seconds, of real-time positions
  dbgps_RTKApplication Application = DBGPS_RTK2WithL1Fixed;
  dbgps_RTKRecordType RecordType = DBGPS_CMR2Plus;
  dbgps_VRSStoreType PosStoreType = DBGPS_StoreAsVectors;
  dbgps_SatDiffCorrection SatDiffCorrection = DBGPS_NoSatDiff;
  uint8_t IgnoreSatDiffHealth = 0;
  uint8_t OutputCode = 0;
  dbgps_INSPositionType INSPositionType = DBGPS_RTKOnly;
  uint8_t ECodeRovers = 1;
  uint16_t StationIndex = 0;  ///< of the base
  uint8_t PromptForIndex = 1;
  double ElevationMask = 0.17453292519943295;
  double PDOPMask = 6.0;  ///< the highest that is used
  uint8_t L2CEnabled = 0;
  uint8_t GlonassEnabled = 0;
  uint8_t L5Enabled = 0;
  bool L2eEnabled = true;
  bool G1PTracked = false;
  bool RxEarlySeriesBase = false;
  int16_t AntennaNumber = 0;
  int16_t AntennaMethod = 0;
  Str AntennaSerialNo;
  uint8_t Approved = 0;
  uint8_t FixedStyle = 0;
  double MeasuredHeight = MATHS_Null;
  Str AntennaFileName;

  /// Of the rover; otherwise of the base.
  virtual bool IsRover () const = 0;
  void Fields (FieldVisitor& v) final;

 private:
  static bool IsOne (const dbRecord_Class* record) {
    return record && (record->GetType () == DATABASE_RoverSurveyRecord ||
                      record->GetType () == DATABASE_BaseSurveyRecord);
  }
};

/// The survey of a rover.
class db_RoverSurvey final
    : public RecordOf<db_RoverSurvey, DATABASE_RoverSurveyRecord, db_Survey> {
 public:
  db_RoverSurvey ();
  bool IsRover () const override { return true; }
};

/// The survey of a base.
class db_BaseSurvey final : public RecordOf<db_BaseSurvey, DATABASE_BaseSurveyRecord, db_Survey> {
 public:
  db_BaseSurvey ();
  bool IsRover () const override { return false; }
};

/// Something that happened to the survey.
class db_SurveyEvent final : public RecordOf<db_SurveyEvent, DATABASE_SurveyEventRecord> {
 public:
  dbgps_SurveyEvent Event = DBGPS_StartBaseSurvey;

  void Fields (FieldVisitor& v) override;
};

/// How points of a continuous survey are triggered.
class db_ContParameters final : public RecordOf<db_ContParameters, DATABASE_ContParametersRecord> {
 public:
  db_ContParams Params;

  void Fields (FieldVisitor& v) override;
};

/// The satellite signals that are tracked.
class db_Tracking final : public RecordOf<db_Tracking, DATABASE_TrackingRecord> {
 public:
  dbconfig_TrackingMode L1Tracking = DBCONFIG_TrackingAuto;
  dbconfig_TrackingMode L2Tracking = DBCONFIG_TrackingAuto;

  void Fields (FieldVisitor& v) override;
};

/// How topographic points are observed with satellites.
class db_GPSReading final : public RecordOf<db_GPSReading, DATABASE_GPSReadingRecord> {
 public:
  uint16_t Measurements = 3;  ///< the least number of epochs
  double Duration = 5.0;      ///< seconds
  double HorzAcc = 0.015;
  double VertAcc = 0.02;
  uint8_t AutoRove = 0;
  Str AutoPointName;  ///< the next name
  dbconfig_BuildId AsBuiltId = DBCONFIG_BuildDesign;
  int16_t AutoPointIncr = 1;  ///< step of the number in a name
  dbconfig_QualityControl QualityControl = DBCONFIG_Qual1and2;
  coord_Type DisplayPointType = COORD_WGS84Type;
  bool AutoPrecisions = true;  ///< accuracies follow the kind of survey

  void Fields (FieldVisitor& v) override;
};

/// How topographic points are observed with a total station.
class db_TSReading final : public RecordOf<db_TSReading, DATABASE_TSReadingRecord> {
 public:
  uint8_t ViewBeforeStorage = 1;
  int16_t AutoPointIncr = 1;  ///< step of the number in a name
  coord_Type DisplayPointType = COORD_CorrectedType;
  dbconfig_OffsetPerspectiveMode OffsetUserPerspective = DBCONFIG_OffsetAutomatic;

  void Fields (FieldVisitor& v) override;
};

/// The radio of a satellite survey, of its rover or its base.
class db_Radio : public dbRecord_Class {
 public:
  /// The record as a radio of a rover or a base, or null if it is null or of another type.
  static db_Radio* From (dbRecord_Class* record) {
    return IsOne (record) ? static_cast<db_Radio*> (record) : nullptr;
  }
  static const db_Radio* From (const dbRecord_Class* record) {
    return IsOne (record) ? static_cast<const db_Radio*> (record) : nullptr;
  }

  dbgps_RadioType RadioType = DBGPS_CellularModem;
  dbgps_eRadioSubtype Subtype = DBGPS_UHF;
  rs232_Ports ControllerPort = RS232_COM1;
  dbgps_ReceiverPort Port = DBGPS_Port1;
  uint32_t BaudRate = 38400;
  rs232_ParityCodes Parity = RS232_OddParity;
  uint8_t CTSEnabled = 0;
  uint16_t RXChannel = 0;
  uint16_t TXChannel = 0;
  uint16_t HomeAddress = 0;
  uint16_t DestAddress = 0;
  uint16_t ReportDelay = 0;
  dbgps_ReceiverPort CustomPort = DBGPS_Port3;
  uint32_t CustomBaudRate = 9600;
  rs232_ParityCodes CustomParity = RS232_OddParity;
  uint8_t CustomCTSEnabled = 0;
  uint32_t PacCrestBaudRate = 9600;
  rs232_ParityCodes PacCrestParity = RS232_NoParity;
  dbgps_ReceiverPort ModemPort = DBGPS_Port3;
  uint32_t ModemBaudRate = 0;
  rs232_ParityCodes ModemParity = RS232_NoParity;
  uint8_t ModemCTSEnabled = 0;
  Str DialProfileName;
  uint8_t Approved = 0;
  uint8_t StreamFromCL = 0;
  dbgps_Throttling DataThrottling = DBGPS_RateAllOff;
  Str BluetoothAddress;

  /// Of the rover; otherwise of the base.
  virtual bool IsRover () const = 0;
  void Fields (FieldVisitor& v) final;

 private:
  static bool IsOne (const dbRecord_Class* record) {
    return record && (record->GetType () == DATABASE_RoverRadioRecord ||
                      record->GetType () == DATABASE_BaseRadioRecord);
  }
};

/// The radio of a rover.
class db_RoverRadio final : public RecordOf<db_RoverRadio, DATABASE_RoverRadioRecord, db_Radio> {
 public:
  db_RoverRadio ();
  bool IsRover () const override { return true; }
};

/// The radio of a base.
class db_BaseRadio final : public RecordOf<db_BaseRadio, DATABASE_BaseRadioRecord, db_Radio> {
 public:
  db_BaseRadio ();
  bool IsRover () const override { return false; }
};

/// Times to initialise on the fly with two frequencies.
class db_L2OTFTimes final : public TimesRecord<db_L2OTFTimes, DATABASE_L2OTFTimesRecord> {
 public:
  db_L2OTFTimes () : TimesRecord (db_InitTimes{1, MATHS_Null, 900.0, 480.0}) {}
};

/// Times of static observation with one frequency.
class db_L1StaticTimes final : public TimesRecord<db_L1StaticTimes, DATABASE_L1StaticTimesRecord> {
 public:
  db_L1StaticTimes () : TimesRecord (db_InitTimes{0, 1800.0, 1500.0, 1200.0}) {}
};

/// Times of observation on a control point.
class db_ControlTimes final : public TimesRecord<db_ControlTimes, DATABASE_ControlTimesRecord> {
 public:
  db_ControlTimes () : TimesRecord (db_InitTimes{1, 1200.0, 900.0, 480.0}) {}
};

/// Times of fast static observation with one frequency.
class db_FSL1Times final : public TimesRecord<db_FSL1Times, DATABASE_FSL1TimesRecord> {
 public:
  db_FSL1Times () : TimesRecord (db_InitTimes{}) {}
};

/// Times of fast static observation with two frequencies.
class db_FSL2Times final : public TimesRecord<db_FSL2Times, DATABASE_FSL2TimesRecord> {
 public:
  db_FSL2Times () : TimesRecord (db_InitTimes{}) {}
};

/// Times to initialise on a new point.
class db_NewPtTimes final : public TimesRecord<db_NewPtTimes, DATABASE_NewPtTimesRecord> {
 public:
  db_NewPtTimes () : TimesRecord (db_InitTimes{1, 1200.0, 900.0, 480.0}) {}
};

/// When two observations of a point are taken as the same.
class db_Tolerance final : public RecordOf<db_Tolerance, DATABASE_ToleranceRecord> {
 public:
  double HDist = 0.0;
  double VDist = 0.0;
  double HAngular = 4.84813681109536e-05;
  double VAngular = 9.69627362219072e-05;
  double HorzAngle = 4.84813681109536e-05;
  double VertAngle = 9.69627362219072e-05;
  double SlopeDistance = 0.02;
  uint8_t AutoAverage = 0;

  void Fields (FieldVisitor& v) override;
};

/// The initialisation was gained or lost.
class db_Initialisation final : public RecordOf<db_Initialisation, DATABASE_InitialisationRecord> {
 public:
  dbgps_InitEvent InitEvent = DBGPS_GainInit;
  db_GPSTime Time;
  dbgps_InitType InitType = DBGPS_Plate;
  dbgps_InitSystem InitSystem = DBGPS_RealTimeSystem;
  uint16_t InitCount = 0;     ///< running number
  Str PointName;              ///< of an initialisation on a point
  double PlateAzimuth = 0.0;  ///< of the initialiser plate
  double PlateHDist = 0.0;
  double PlateVDist = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// The base of a real-time survey.
class db_Reference final : public RecordOf<db_Reference, DATABASE_ReferenceRecord> {
 public:
  Str PointName;  ///< where the base stands
  DBID Antenna;   ///< its db_Antenna
  clxml::Derivation Derivation;

  void Fields (FieldVisitor& v) override;
};

/// Raw data are logged from here on.
class db_PostProcess final : public RecordOf<db_PostProcess, DATABASE_PostProcessRecord> {
 public:
  Str FileName;  ///< the file with the raw data
  dbgps_FileStatus FileStatus = DBGPS_UselessData;
  db_GPSTime StartTime;
  DBID Previous;  ///< the db_PostProcess before
  DBID Antenna;   ///< its db_Antenna

  void Fields (FieldVisitor& v) override;
};

/// A continuous survey begins.
class db_Continuous final : public RecordOf<db_Continuous, DATABASE_ContinuousRecord> {
 public:
  void Fields (FieldVisitor&) override {}
};

/// The quality that points of a continuous survey need.
class db_ContinuousPoints final : public RecordOf<db_ContinuousPoints, DATABASE_ContPointsRecord> {
 public:
  dbconfig_QualityControl QualityControl = DBCONFIG_Qual1;
  double HorzPrec = 0.05;
  double VertPrec = 0.08;
  bool AutoPrecisions = true;  ///< accuracies follow the kind of survey

  void Fields (FieldVisitor& v) override;
};

/// How fast static points are observed.
class db_FastStatic final : public RecordOf<db_FastStatic, DATABASE_FastStaticRecord> {
 public:
  uint8_t AutoRove = 0;
  db_InitTimes L1Times{0, 1800.0, 1500.0, 1200.0};
  db_InitTimes L1L2Times{1, 1200.0, 900.0, 480.0};

  void Fields (FieldVisitor& v) override;
};

/// How check points are observed.
class db_CheckShot final : public RecordOf<db_CheckShot, DATABASE_CheckShotRecord> {
 public:
  uint16_t Measurements = 3;  ///< the least number of epochs
  double Duration = 5.0;      ///< seconds
  double HorzAcc = 0.015;
  double VertAcc = 0.02;
  uint8_t AutoRove = 0;
  dbconfig_QualityControl QualityControl = DBCONFIG_Qual1;
  uint8_t StoreChecks = 1;

  void Fields (FieldVisitor& v) override;
};

/// How rapid points are observed.
class db_QuickMark final : public RecordOf<db_QuickMark, DATABASE_QuickMarkRecord> {
 public:
  double HorzAcc = 0.2;
  double VertAcc = 0.25;
  dbconfig_QualityControl QualityControl = DBCONFIG_Qual1;
  bool AutoPrecisions = true;  ///< accuracies follow the kind of survey

  void Fields (FieldVisitor& v) override;
};

/// How control points are observed in real time.
class db_RTKControl final : public RecordOf<db_RTKControl, DATABASE_RTKContRecord> {
 public:
  uint8_t AutoRove = 0;
  dbconfig_QualityControl QualityControl = DBCONFIG_Qual1and2;
  db_InitTimes PPTimes{0, 600.0, 480.0, 300.0};
  uint16_t Measurements = 180;  ///< the least number of epochs
  double HorzAcc = 0.015;
  double VertAcc = 0.02;
  bool AutoPrecisions = true;  ///< accuracies follow the kind of survey

  void Fields (FieldVisitor& v) override;
};

/// A continuous survey ends.
class db_EndContinuous final : public RecordOf<db_EndContinuous, DATABASE_EndContinuousRecord> {
 public:
  void Fields (FieldVisitor&) override {}
};

/// The records of a survey style end.
class db_EndSurveyStyle final : public RecordOf<db_EndSurveyStyle, DATABASE_EndStyleRecord> {
 public:
  void Fields (FieldVisitor&) override {}
};

/// Quality of an occupation: satellites, dilution of precision and its interval.
class db_QC1 final : public RecordOf<db_QC1, DATABASE_QC1Record> {
 public:
  uint16_t NumberOfSVs = 0;
  uint8_t RelativeDOPs = 0;
  double PDOP = 0.0;
  double HDOP = 0.0;
  double VDOP = 0.0;
  double RMS = 0.0;
  uint16_t PositionsUsed = 0;  ///< their number
  double HorzStandardDeviation = 0.0;
  double VertStandardDeviation = 0.0;
  db_GPSTime StartTime;
  db_GPSTime EndTime;
  dbgps_MonitorState MonitorState = DBGPS_NotMonitored;

  void Fields (FieldVisitor& v) override;
};

/// Quality of an occupation: the covariances of its vector.
class db_QC2 final : public RecordOf<db_QC2, DATABASE_QC2Record> {
 public:
  uint16_t NumberOfSVs = 0;
  double ErrorScale = 0.0;  ///< factor of the covariances
  double VCVxx = 0.0;       ///< square metres, earth-centred
  double VCVxy = 0.0;
  double VCVxz = 0.0;
  double VCVyy = 0.0;
  double VCVyz = 0.0;
  double VCVzz = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// Quality of an occupation: the error ellipse and covariances on the grid.
class db_QC3 final : public RecordOf<db_QC3, DATABASE_QC3Record> {
 public:
  double SigmaNorth = 0.0;
  double SigmaEast = 0.0;
  double SigmaElev = 0.0;
  double CovarianceNE = 0.0;
  double SemiMajorAxis = 0.0;
  double SemiMinorAxis = 0.0;
  double Orientation = 0.0;   ///< of the semi-major axis
  double UnitVariance = 0.0;  ///< of the solution

  void Fields (FieldVisitor& v) override;
};

/// The precision of a position.
class db_Precision final : public RecordOf<db_Precision, DATABASE_PrecisionRecord> {
 public:
  double Horizontal = 0.0;
  double Vertical = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// A survey style was taken into use.
class db_SurveyStyle final : public RecordOf<db_SurveyStyle, DATABASE_SurveyStyleRecord> {
 public:
  Str ConfigName;  ///< name of the style
  dbcl_PositioningTechnology Device = DBCL_GPS;
  folder_Enum Folder{};  ///< where its file is

  void Fields (FieldVisitor& v) override;
};

/// A survey with satellites and a total station at once.
class db_IntegratedStyle final
    : public RecordOf<db_IntegratedStyle, DATABASE_IntegratedStyleRecord> {
 public:
  bool IntegratedStyle = false;
  Str GPSStyleName;
  Str TSStyleName;

  void Fields (FieldVisitor& v) override;
};

/// A prism and an antenna on one pole.
class db_IntegratedTarget final
    : public RecordOf<db_IntegratedTarget, DATABASE_IntegratedTargetRecord> {
 public:
  bool UsingISRoverPole = false;  ///< prism and antenna are on one pole
  double OffsetFromCenterOfPrismToAntenna = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// Standard deviations of a grid position.
class db_GridStdDeviations final
    : public RecordOf<db_GridStdDeviations, DATABASE_GridStdDeviationsRecord> {
 public:
  double North = 0.0;
  double East = 0.0;
  double Elev = 0.0;

  void Fields (FieldVisitor& v) override;
};

}  // namespace clxml
