// The records of a job's coordinate system.
// One for each stage of the way from WGS-84 to grid coordinates, and what calibrations and
// transformations leave behind. Angles are radians, lengths metres; a uint8_t is a yes or no. Leans
// on dbRecord and dbGroups.
#pragma once

#include <memory>

#include "Library/records/dbGroups.h"
#include "Library/records/dbRecord.h"

namespace clxml {

/// From grid to ground coordinates.
struct db_GroundScale {
  coordsys_GroundScaleFactorType Type = COORDSYS_GridScaleFactor;
  double Factor = 0.0;
  db_LLH ProjectLocation{MATHS_Null};  ///< where the factor is computed
  double NorthingOffset = 0.0;
  double EastingOffset = 0.0;
  double NorthingDelta = 0.0;
  double EastingDelta = 0.0;

  void Fields (FieldVisitor& v);
};

/// What is left between the two points of a calibration.
struct db_CalibResiduals {
  double OneD = 0.0;
  double TwoD = 0.0;
  double ThreeD = 0.0;
  double North = MATHS_Null;
  double East = MATHS_Null;
  double Elev = MATHS_Null;
  double DeltaNorth = MATHS_Null;
  double DeltaEast = MATHS_Null;
  double DeltaElev = MATHS_Null;

  void Fields (FieldVisitor& v);
};

/// How a measured calibration point is named after its grid point.
struct db_CalibPointName {
  dbcl_CalibPointNameMethod Method = DBCL_AddSuffixToPointName;
  int32_t Constant = 0;
  Str Prefix;
  Str Suffix;

  void Fields (FieldVisitor& v);
};

/// The ellipsoid of the local datum.
class db_Ellipsoid final : public RecordOf<db_Ellipsoid, DATABASE_EllipsoidRecord> {
 public:
  clxml::Derivation Derivation = {'K', 'I'};
  double EarthRadius = MATHS_Null;  ///< semi-major axis
  double Flattening = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// The way from WGS-84 to the local datum: a translation, a similarity or a grid file.
class db_Datum final : public RecordOf<db_Datum, DATABASE_DatumRecord> {
 public:
  clxml::Derivation Derivation = {'K', 'I'};
  coordsys_DatumType DatumType = COORDSYS_NoDatum;
  double EarthRadius = 6378137.0;             ///< semi-major axis of the local ellipsoid
  double Flattening = 0.0033528106718309905;  ///< of the local ellipsoid
  double RotationX = 0.0;
  double RotationY = 0.0;
  double RotationZ = 0.0;
  double TranslationX = 0.0;
  double TranslationY = 0.0;
  double TranslationZ = 0.0;
  double Scale = 1.0;  ///< a factor near 1
  Str GridName;        ///< the grid file of a grid datum

  void Fields (FieldVisitor& v) override;
};

/// The map projection from the local datum to the grid. What the origins and orientations mean
/// depends on its type.
class db_Projection final : public RecordOf<db_Projection, DATABASE_ProjectionRecord> {
 public:
  clxml::Derivation Derivation = {'K', 'I'};
  coordsys_ProjectionType ProjectionType = COORDSYS_ScaleOnly;
  db_LLH OriginLocal{MATHS_Null};  ///< of the projection
  db_NEE OriginGrid{MATHS_Null};   ///< false origin
  double Scale = 1.0;              ///< factor at the origin
  coordsys_GridElevation GridElevation = COORDSYS_Ground;
  double Orientation1 = MATHS_Null;
  double Orientation2 = MATHS_Null;
  coordsys_AzimuthFormat AzimuthFormat = COORDSYS_GridAzimuth;
  coordsys_OriginCenter OriginCenter = COORDSYS_OriginAtEquator;
  uint8_t Rectify = 0;  ///< the grid is rectified
  coordsys_ProjectionArea Area = COORDSYS_AreaNone;
  Str UKNorthGridFile;
  Str UKEastGridFile;
  Str ProjectionGridFile;
  Str ShiftGridFile;
  db_GroundScale GroundScale;

  void Fields (FieldVisitor& v) override;
};

/// The horizontal adjustment of a site: a rotation, translation and scale on the grid.
class db_Plane final : public RecordOf<db_Plane, DATABASE_PlaneRecord> {
 public:
  clxml::Derivation Derivation = {'K', 'I'};
  coordsys_PlaneType PlaneType = COORDSYS_NoHorizontal;
  double OriginNorth = MATHS_Null;
  double OriginEast = MATHS_Null;
  double TranslationNorth = MATHS_Null;
  double TranslationEast = MATHS_Null;
  double Rotation = MATHS_Null;  ///< about the origin
  double ScaleFactor = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// The vertical adjustment of a site: an inclined plane, a geoid model or both.
class db_Height final : public RecordOf<db_Height, DATABASE_HeightRecord> {
 public:
  clxml::Derivation Derivation = {'K', 'I'};
  coordsys_HeightType HeightType = COORDSYS_NoVertical;
  double OriginNorth = MATHS_Null;
  double OriginEast = MATHS_Null;
  double NorthAdjustment = MATHS_Null;  ///< slope to the north, metres a metre
  double EastAdjustment = MATHS_Null;   ///< slope to the east, metres a metre
  double ElevAdjustment = MATHS_Null;   ///< at the origin
  Str GeoidFilename;

  void Fields (FieldVisitor& v) override;
};

/// How azimuths and distances of a job are understood.
class db_Corrections final : public RecordOf<db_Corrections, DATABASE_CorrectionsRecord> {
 public:
  static constexpr coordsys_ValuesPresent AllValues{127};

  coordsys_ValuesPresent ValuesPresent = AllValues;  ///< which of the fields below count
  uint8_t SouthAzimuth = 0;                          ///< azimuths count from south
  coordsys_GridOrientation GridOrientation = COORDSYS_IncreasingNorthEast;
  double MagneticDeclination = 0.0;
  coordsys_CogoDistance Distances = COORDSYS_GroundDistance;
  coordsys_SubdivideCode SubDivideCode = COORDSYS_UseName;
  uint8_t NeighbourhoodAdjustment = 0;
  coordsys_WeightExponent WeightExponent = COORDSYS_WeightExponentZeroPointFive;

  /// A copy in which every value whose bit is clear comes from the defaults and has its bit set;
  /// null when all are set. Asserts "fromCorrns", and gives null, unless the defaults are a
  /// db_Corrections.
  std::unique_ptr<dbRecord_Class> MergeDefaults (const dbRecord_Class& defaults) const override;
  void Fields (FieldVisitor& v) override;
};

/// The names under which the coordinate system was picked from the library of systems.
class db_CoordSystem final : public RecordOf<db_CoordSystem, DATABASE_CoordSystemRecord> {
 public:
  Str SystemName;
  Str ZoneSiteName;
  Str DatumName;
  uint8_t UseGeoid = 0;
  uint8_t UseDatumGrid = 0;
  Str GeoidFilename;
  uint16_t SystemIndex = 0;
  uint16_t ZoneIndex = 0;
  uint16_t DatumIndex = 65534;
  db_GroundScale GroundScale;

  void Fields (FieldVisitor& v) override;
};

/// Which adjustments of the coordinate system are computed.
class db_CoordSystemControl final
    : public RecordOf<db_CoordSystemControl, DATABASE_CoordSysControlRecord> {
 public:
  uint8_t HorzAdjust = 0;
  uint8_t VertAdjust = 0;
  uint8_t DoGeolib = 0;

  void Fields (FieldVisitor& v) override;
};

/// The calibration points of a new calibration follow.
class db_CalibBegin final : public RecordOf<db_CalibBegin, DATABASE_CalibBeginRecord> {
 public:
  void Fields (FieldVisitor&) override {}
};

/// A pair of points that takes part in a calibration.
class db_CalibPoint final : public RecordOf<db_CalibPoint, DATABASE_CalibPointRecord> {
 public:
  uint16_t ListIndex = 0;
  Str NEEPointId;                         ///< name of the grid point
  Str WGS84PointId;                       ///< name of the measured point
  dbcl_CalibrateStatus Status = DBCL_0D;  ///< the dimensions it is used in
  db_CalibResiduals Residuals;

  void Fields (FieldVisitor& v) override;
};

/// How calibrations are made and when their result is accepted.
class db_ConfigCalib final : public RecordOf<db_ConfigCalib, DATABASE_ConfigCalibRecord> {
 public:
  uint8_t FixHorzScaleToOne = 0;
  uint8_t FixHorzRotationToZero = 0;
  dbcl_ObservationType CalibType = DBCL_KinematicPoint;
  uint8_t AutoCalibrate = 0;
  double MaxHorzResiduals = 0.01;
  double MaxVertResiduals = 0.02;
  double MaxHorzScale = 1.00001;
  double MinHorzScale = 0.99999;
  double MaxVertIncline = 1e-05;  ///< of the inclined plane
  db_CalibPointName PointName;    ///< how the measured point is named

  void Fields (FieldVisitor& v) override;
};

/// A rotation, scaling and translation of points that was carried out, in this order.
class db_CogoTransformation final
    : public RecordOf<db_CogoTransformation, DATABASE_CogoTransformationRecord> {
 public:
  bool Rotated = false;
  double rotationAngle = MATHS_Null;
  Str rotationOrigin;  ///< name of the point
  db_NEE rotationOriginGrid;
  bool Scaled = false;
  double scaleFactor = MATHS_Null;
  Str scaleOrigin;  ///< name of the point
  db_NEE scaleOriginGrid;
  bool Translated = false;
  dbentity_CogoTranslationMethod translationMethod = DBENTITY_CogoTwoPoints;
  db_DeltasNEE translationDelta;
  Str translationFrom;            ///< name of the point
  Str translationTo;              ///< name of the point
  int32_t pointsTransformed = 0;  ///< their number

  void Fields (FieldVisitor& v) override;
};

}  // namespace clxml
