// The records of conventional surveys.
// Instruments, stations, targets and the air between them, the offset observations, laser
// rangefinders, scans and images. Angles are radians, lengths metres; a uint8_t is a yes or no.
// Leans on dbRecord and dbGroups.
#pragma once

#include "Library/records/dbGroups.h"
#include "Library/records/dbRecord.h"

namespace clxml {

/// The settings of a serial line.
struct db_PortParam {
  uint32_t BaudRate = 9600;
  int16_t DataBits = 8;
  int16_t StopBits = 1;
  rs232_ParityCodes Parity = RS232_NoParity;
  rs232_FlowControls FlowControl = RS232_NoFlowControl;

  void Fields (FieldVisitor& v);
};

/// The precision of an instrument.
struct db_InstrumentPrecisions {
  double HAPrecision = 9.69627362219072e-06;  ///< 2 seconds of arc
  double VAPrecision = 9.69627362219072e-06;
  double EDMPrecision = 0.002;
  double EDMppm = 2.0;  ///< of the distance, parts per million

  void Fields (FieldVisitor& v);
};

/// The radio link to a robotic instrument.
struct db_InstrumentRadio {
  int32_t Channel = 0;
  int32_t StationAddress = -1;  ///< -1 when there is none
  int32_t RemoteAddress = -1;   ///< -1 when there is none

  void Fields (FieldVisitor& v);
};

/// One of the three offsets of a distance offset.
struct db_OffsetDistance {
  double Distance = 0.0;

  void Fields (FieldVisitor& v);
};

/// The true height of an instrument or a target above its mark, from a height measured by the
/// method. TrueVertical is the height itself. ZorvanBottomNotch is a slope height s to a notch
/// that lies the horizontal offset h beside and the vertical offset v below the axis: the height is
/// sqrt (s^2 - h^2) + v. Null when a value it needs is null, or when s is shorter than h.
double total_TrueHeight (double rawHeight, total_TargetHeightMethod method, double horizontalOffset,
                         double verticalOffset);

/// The air that distances were measured in.
class db_TotalAtmosphere final : public RecordOf<db_TotalAtmosphere, DATABASE_AtmosphereRecord> {
 public:
  double Pressure = MATHS_Null;     ///< millibars
  double Temperature = MATHS_Null;  ///< degrees Celsius
  double PPM = 0.0;  ///< correction of distances, parts per million; null to compute it
  total_RefractionType Refraction = TOTAL_Refraction0142;
  total_AtmosphereMethod PressureInputMethod = TOTAL_KeyedIn;

  void Fields (FieldVisitor& v) override;
};

/// The orientation of an instrument: where it stood, what it was set to and on which point.
class db_TotalBackBearing final : public RecordOf<db_TotalBackBearing, DATABASE_BackBearingRecord> {
 public:
  Str Station;                ///< name of the station point
  Str BackSight;              ///< name of the backsight point
  double F1HorzCircle = 0.0;  ///< reading on face 1
  double F2HorzCircle = 0.0;  ///< reading on face 2
  double OrientationCorrectionStdError = MATHS_Null;

  const char* GetName () const override { return Station.Data (); }
  void Fields (FieldVisitor& v) override;
};

/// A total station: its model, line settings, precisions and the corrections that it applies.
class db_TotalInstrument final : public RecordOf<db_TotalInstrument, DATABASE_InstrumentRecord> {
 public:
  total_InstrumentType Type = TOTAL_Null;
  double RefractiveIndex = 270.0;
  double CarrierWavelength = 79.167;
  uint8_t HasExtraInfo = 1;
  total_MeasurementMode MeasurementMode = TOTAL_EDMFine;
  total_SetHzCircleMode SetHzCircleMode = TOTAL_DoNothing;
  total_ServoOptions Servo = TOTAL_NoServo;
  db_PortParam PortParam;
  double AnglesOnlyRate = 2.0;  ///< seconds between angle readings
  uint8_t TurnToZero = 0;
  db_InstrumentPrecisions Precisions;
  double CenteringError = 0.002;  ///< metres
  db_InstrumentRadio Radio;
  uint32_t AverageMeasurements = 3;  ///< their number
  bool AutoMatchedFace1_2 = false;   ///< the two faces are matched by themselves
  bool MeasureDistOnFace2 = true;    ///< distances are measured on face 2 too
  bool StakeUsingTracking = true;
  bool SendRecordAck = false;
  bool EditInstrumentPrecisions = false;
  Str Model;
  Str Serial;
  Str FirmwareVersion;
  uint32_t ModelNumber = 0;
  double InstrumentAppliedHCollimation = MATHS_Null;
  double InstrumentAppliedVCollimation = MATHS_Null;
  double TrunionAxisTiltCorrection = MATHS_Null;
  Str UserDefinedName;
  double InstrumentAppliedAutolockHCollimation = MATHS_Null;
  double InstrumentAppliedAutolockVCollimation = MATHS_Null;
  double AtmosphereCorrectionCoeff = MATHS_Null;  ///< as reported by the instrument
  dbconfig_OffsetPerspectiveMode OffsetUserPerspective = DBCONFIG_OffsetAutomatic;

  void Fields (FieldVisitor& v) override;
};

/// A set-up of a total station on a point.
class db_TotalStation final : public RecordOf<db_TotalStation, DATABASE_StationRecord> {
 public:
  Str StationName;
  double RawTheodoliteHt = MATHS_Null;  ///< as measured by the method
  total_TargetHeightMethod MeasurementMethod = TrueVertical;
  double HorizontalOffset = 0.0;  ///< from the mark aimed at to the axis
  double VerticalOffset = 0.0;    ///< from the mark aimed at to the axis
  DBID Instrument;                ///< its db_TotalInstrument
  DBID Atmosphere;                ///< its db_TotalAtmosphere
  uint32_t NumberOfBacksightObservations = 0;
  uint32_t NumberOfUniqueBacksights = 0;
  total_ScaleFactorType ScaleType = TOTAL_ScaleFixed;
  double ScaleFactor = 1.0;
  double ScaleFactorStdError = MATHS_Null;
  total_StationType StationType = TOTAL_UnknownType;

  /// The height of the axis above the mark; not stored.
  double TheodoliteHt () const {
    return total_TrueHeight (RawTheodoliteHt, MeasurementMethod, HorizontalOffset, VerticalOffset);
  }
  const char* GetName () const override { return StationName.Data (); }
  void Fields (FieldVisitor& v) override;
};

/// What an instrument aims at: its height and its prism.
class db_Target final : public RecordOf<db_Target, DATABASE_TargetRecord> {
 public:
  Str Name;
  bool IsDR = false;                    ///< a surface measured without a prism
  double RawTargetHeight = MATHS_Null;  ///< as measured by the method
  total_TargetHeightMethod MeasurementMethod = TrueVertical;
  double HorizontalOffset = 0.0;  ///< from the mark aimed at to the axis
  double VerticalOffset = 0.0;    ///< from the mark aimed at to the axis
  total_PrismTypes PrismType = TOTAL_KSeriesMultiTrack;
  double PrismConstant = 0.0;  ///< metres, added to the distance
  total_RMTIDs RMTID = TOTAL_RMTIDNone;
  total_ZorvanTargetIDCheckType ZorvanCheckTargetID = TOTAL_TargetIDCheck_Off;
  bool IsDualPrism = false;

  /// The height of the prism above the mark; not stored.
  double TargetHeight () const {
    return total_TrueHeight (RawTargetHeight, MeasurementMethod, HorizontalOffset, VerticalOffset);
  }
  const char* GetName () const override { return Name.Data (); }
  void Fields (FieldVisitor& v) override;
};

/// A hidden point found by observing two prisms on a pole.
class db_DualPrismOffset final
    : public RecordOf<db_DualPrismOffset, DATABASE_DualPrismOffsetRecord> {
 public:
  db_RawObservation PrismAObservation{MATHS_Null};
  db_RawObservation PrismBObservation{MATHS_Null};
  double PrismConstantA = MATHS_Null;
  double PrismConstantB = MATHS_Null;
  double DistanceAB = MATHS_Null;            ///< between the prisms
  double DistanceBC = MATHS_Null;            ///< from prism B to the point
  double CalculatedDistanceAB = MATHS_Null;  ///< as observed

  void Fields (FieldVisitor& v) override;
};

/// The centre of a round object found by observing both of its sides.
class db_CircularObject final : public RecordOf<db_CircularObject, DATABASE_CircularObjectRecord> {
 public:
  db_RawObservation FirstRawObservation{MATHS_Null};
  db_RawObservation SecondRawObservation{MATHS_Null};
  double Radius = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// Height and width of an object that cannot be reached, above a base point.
class db_RemoteObject final : public RecordOf<db_RemoteObject, DATABASE_RemoteObjectRecord> {
 public:
  db_RawObservation RawObservation{MATHS_Null};
  double ObjectHeight = MATHS_Null;
  double ObjectWidth = MATHS_Null;
  Str ROBasePointName;  ///< the point below the object
  DBID ROBasePointID;   ///< the same point; NODBID when there is none

  void Fields (FieldVisitor& v) override;
};

/// A point whose two angles were observed apart from its distance.
class db_AngleOffset final : public RecordOf<db_AngleOffset, DATABASE_AngleOffsetRecord> {
 public:
  db_RawObservation FirstRawObservation{MATHS_Null};
  db_RawObservation SecondRawObservation{MATHS_Null};

  void Fields (FieldVisitor& v) override;
};

/// A point found by offsets from an observed one.
class db_DistanceOffset final : public RecordOf<db_DistanceOffset, DATABASE_DistanceOffsetRecord> {
 public:
  db_DistanceOffset ();

  db_RawObservation RawObservation;   ///< its standard errors are null when new
  db_OffsetDistance LeftRightOffset;  ///< positive to the right
  db_OffsetDistance InOutOffset;      ///< positive outwards
  db_OffsetDistance DownUpOffset;     ///< positive upwards
  dbconfig_OffsetPerspectiveMode DisplayOffsetPerspective = DBCONFIG_OffsetFromInstrument;

  void Fields (FieldVisitor& v) override;
};

/// The point over which a laser rangefinder stands.
class db_LaserBasePoint final : public RecordOf<db_LaserBasePoint, DATABASE_LaserBasePointRecord> {
 public:
  Str TheName;  ///< name of the point

  const char* GetName () const override { return TheName.Data (); }
  void Fields (FieldVisitor& v) override;
};

/// The height of a laser rangefinder above its base point.
class db_LaserHeight final : public RecordOf<db_LaserHeight, DATABASE_LaserHeightRecord> {
 public:
  double Height = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// The height of what a laser rangefinder aims at.
class db_LaserTargetHeight final
    : public RecordOf<db_LaserTargetHeight, DATABASE_LaserTargetHeightRecord> {
 public:
  double Height = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// A laser rangefinder and the line to it.
class db_LaserConfig final : public RecordOf<db_LaserConfig, DATABASE_LaserConfigRecord> {
 public:
  dblaser_LaserType LaserType = DBLASER_None;
  rs232_Ports Port = RS232_COM1;
  uint32_t BaudRate = 4800;
  int32_t DataBits = 8;
  int32_t StopBits = 1;
  rs232_ParityCodes Parity = RS232_NoParity;
  dblaser_Features Features{};  ///< what the instrument can do
  uint8_t UseFireCommand = 0;
  uint8_t AutoStore = 0;
  double DistancePrecision = MATHS_Null;
  double AzimuthPrecision = MATHS_Null;
  double InclinePrecision = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// The weather at an observation.
class db_Meterological final : public RecordOf<db_Meterological, DATABASE_MeterologicalRecord> {
 public:
  double Pressure = 0.0;
  double DryBulbTemperature = 0.0;
  double WetBulbTemperature = 0.0;
  double RelativeHumidity = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// A scan of a surface point by point by a total station.
class db_SurfaceScan final : public RecordOf<db_SurfaceScan, DATABASE_SurfaceScanRecord> {
 public:
  dbentity_SurfaceScanMethod SurfaceScanMethod = DBENTITY_SurfaceScanAngularStep;
  dbentity_SurfaceScanLineMethod LineMethod = DBENTITY_SurfaceScanTwoPoints;
  Str PointA;  ///< name of the point
  Str PointB;  ///< name of the point
  Str PointC;  ///< name of the point
  double HAstep = MATHS_Null;
  double VAstep = MATHS_Null;
  double Xstep = MATHS_Null;
  double Ystep = MATHS_Null;
  double MaxOffset = MATHS_Null;  ///< a point farther from the surface is skipped
  double Azimuth = MATHS_Null;
  double Distance = MATHS_Null;
  int32_t PointsScanned = 0;
  int32_t PointsSkipped = 0;
  double TimeTaken = MATHS_Null;  ///< seconds

  void Fields (FieldVisitor& v) override;
};

/// A scan of a scanning instrument; its points are in a file.
class db_Scanning final : public RecordOf<db_Scanning, DATABASE_ScanningRecord> {
 public:
  DBID StationID;      ///< its db_TotalStation
  DBID BackBearingID;  ///< its db_TotalBackBearing
  dbentity_ScanType ScanType = DBENTITY_ScanFullCircle;
  Str FileName;  ///< the file with its points
  uint32_t NumberOfPoints = 0;
  double TimeTaken = MATHS_Null;   ///< seconds
  double AtDistance = MATHS_Null;  ///< where the steps are measured
  double HorizontalStep = MATHS_Null;
  double VerticalStep = MATHS_Null;
  double HorizontalDistInterval = MATHS_Null;
  double VerticalDistInterval = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// A picture taken from a station or of a point.
class db_Image final : public RecordOf<db_Image, DATABASE_ImageRecord> {
 public:
  DBID StationID;      ///< its db_TotalStation
  DBID BackBearingID;  ///< its db_TotalBackBearing
  DBID CameraID;       ///< its db_Camera
  DBID PointRecordID;  ///< the point it belongs to
  Str FileName;        ///< the file with the picture
  double HorizontalAngle = MATHS_Null;
  double VerticalAngle = MATHS_Null;
  int32_t Width = 0;         ///< pixels
  int32_t Height = 0;        ///< pixels
  int32_t SourceX = 0;       ///< pixels, of the part that was taken
  int32_t SourceY = 0;       ///< pixels
  int32_t SourceWidth = 0;   ///< pixels
  int32_t SourceHeight = 0;  ///< pixels

  void Fields (FieldVisitor& v) override;
};

/// The calibration of the camera of an instrument: interior orientation, distortion and where it
/// sits in the instrument.
class db_Camera final : public RecordOf<db_Camera, DATABASE_CameraRecord> {
 public:
  double X0 = 0.0;  ///< principal point
  double Y0 = 0.0;  ///< principal point
  double CK = 0.0;  ///< camera constant
  double Kappa = 0.0;
  double Phi = 0.0;
  double Omega = 0.0;
  double S0 = 0.0;
  double C0 = 0.0;
  double Z0 = 0.0;
  double I = 0.0;
  uint16_t K1 = 0;
  uint16_t P1 = 0;
  uint16_t P2 = 0;
  double PixelSizeX = 0.0;
  double PixelSizeY = 0.0;
  uint16_t PixelCountX = 0;  ///< width of the sensor
  uint16_t PixelCountY = 0;  ///< height of the sensor
  double ErrMeas = 0.0;      ///< error of the measurement
  int64_t CalibDate64 = 0;   ///< date of the calibration
  uint16_t CalibType = 0;
  bool isCalibrated = false;

  void Fields (FieldVisitor& v) override;
};

/// A panorama of pictures taken from a station.
class db_Panorama final : public RecordOf<db_Panorama, DATABASE_PanoramaRecord> {
 public:
  dbentity_PanoramaMethod Method = DBENTITY_FullCircle;
  double Top = MATHS_Null;  ///< edges of a part, as angles
  double Left = MATHS_Null;
  double Bottom = MATHS_Null;
  double Right = MATHS_Null;
  double HAstep = MATHS_Null;  ///< between pictures
  double VAstep = MATHS_Null;  ///< between pictures

  void Fields (FieldVisitor& v) override;
};

}  // namespace clxml
