// Records of measurements and of their residuals.
// The position data of observations in all its forms, residuals of means and station setups, and
// the markers of rounds. Leans on dbRecord, dbEnum and dbGroups.
#pragma once

#include "Library/records/dbEnum.h"
#include "Library/records/dbGroups.h"
#include "Library/records/dbRecord.h"

// Angles are in radians, azimuths clockwise from north, distances and coordinates in metres. A
// field without a remark starts at 0, false or empty; doubles that start at MATHS_Null may be
// absent. A DBID names a record of the job, NODBID when there is none.

namespace clxml {

/// Differences of geocentric coordinates from a reference station.
class db_ECEFDeltas final
    : public RecordOf<db_ECEFDeltas, DATABASE_ECEFDeltasRecord, db_Measurement> {
 public:
  double XDelta = 0.0;
  double YDelta = 0.0;
  double ZDelta = 0.0;
  DBID Reference;
  DBID Antenna;

  coord_Type GetCoordType () const override { return COORD_ECEFDeltasType; }
  /// The antenna.
  void SetReference (DBID id) override { Antenna = id; }
  void Fields (FieldVisitor& v) override;
};

/// Geocentric coordinates of an antenna.
class db_ECEF final : public RecordOf<db_ECEF, DATABASE_ECEFRecord, db_Measurement> {
 public:
  double X = 0.0;
  double Y = 0.0;
  double Z = 0.0;
  DBID Antenna;

  coord_Type GetCoordType () const override { return COORD_ECEFType; }
  /// The antenna.
  void SetReference (DBID id) override { Antenna = id; }
  void Fields (FieldVisitor& v) override;
};

/// Geocentric coordinates of a mark on the ground.
class db_ECEFGround final
    : public RecordOf<db_ECEFGround, DATABASE_ECEFGroundRecord, db_Measurement> {
 public:
  double X = 0.0;
  double Y = 0.0;
  double Z = 0.0;

  coord_Type GetCoordType () const override { return COORD_ECEFGroundType; }
  void Fields (FieldVisitor& v) override;
};

/// Geodetic coordinates on WGS-84.
class db_WGS84 final : public RecordOf<db_WGS84, DATABASE_WGS84Record, db_Measurement> {
 public:
  double Lat = 0.0;
  double Long = 0.0;
  double Height = 0.0;

  coord_Type GetCoordType () const override { return COORD_WGS84Type; }
  void Fields (FieldVisitor& v) override;
};

/// Geodetic coordinates on the local ellipsoid.
class db_Local final : public RecordOf<db_Local, DATABASE_LocalRecord, db_Measurement> {
 public:
  double Lat = 0.0;
  double Long = 0.0;
  double Height = 0.0;

  coord_Type GetCoordType () const override { return COORD_LocalType; }
  void Fields (FieldVisitor& v) override;
};

/// Grid coordinates.
class db_Grid final : public RecordOf<db_Grid, DATABASE_GridRecord, db_Measurement> {
 public:
  double North = MATHS_Null;
  double East = 0.0;
  double Elev = 0.0;

  coord_Type GetCoordType () const override { return COORD_GridType; }
  void Fields (FieldVisitor& v) override;
};

/// Azimuth and distances from another point.
class db_Polar final : public RecordOf<db_Polar, DATABASE_PolarRecord, db_Measurement> {
 public:
  Str SourcePoint;
  double Azimuth = 0.0;
  double HDist = 0.0;
  double VDist = 0.0;
  coordsys_CogoSettings CreatedView{};

  coord_Type GetCoordType () const override { return COORD_PolarType; }
  void Fields (FieldVisitor& v) override;
};

/// What a laser rangefinder read from a base point.
class db_LaserOffset final
    : public RecordOf<db_LaserOffset, DATABASE_LaserOffsetRecord, db_Measurement> {
 public:
  DBID BasePoint;
  double Azimuth = 0.0;
  double VertAngle = 0.0;
  double SlopeDist = 0.0;
  DBID LaserHeight;
  DBID TargetHeight;
  DBID MagneticDeclination;
  coordsys_CogoSettings CreatedView{};

  coord_Type GetCoordType () const override { return COORD_LaserOffsetType; }
  void Fields (FieldVisitor& v) override;
};

/// What a total station read: circles and distance.
class db_Circle final : public RecordOf<db_Circle, DATABASE_CircleRecord, db_Measurement> {
 public:
  double HorzCircle = 0.0;
  double VertCircle = 0.0;
  double EDMDistance = 0.0;
  coord_Face Face = COORD_FaceNull;
  double HorzCircleStdErr = MATHS_Null;
  double VertCircleStdErr = MATHS_Null;
  double EDMDistanceStdErr = MATHS_Null;
  total_MeasurementMode EDMMeasurementMode = TOTAL_EDMFine;
  DBID Station;
  DBID Target;
  DBID BackBearing;
  coordsys_CogoSettings CreatedView{};

  coord_Type GetCoordType () const override { return COORD_CircleType; }
  /// The target.
  void SetReference (DBID id) override { Target = id; }
  void Fields (FieldVisitor& v) override;
};

/// An azimuth from another point, without a distance.
class db_Azimuth final : public RecordOf<db_Azimuth, DATABASE_AzimuthRecord, db_Measurement> {
 public:
  Str SourcePoint;
  double Azimuth = 0.0;
  coordsys_CogoSettings CreatedView{};

  coord_Type GetCoordType () const override { return COORD_NullType; }
  void Fields (FieldVisitor& v) override;
};

/// The mean of several observations of one point.
class db_MeanTurnedAngle final
    : public RecordOf<db_MeanTurnedAngle, DATABASE_MeanTurnedAngleRecord, db_Measurement> {
 public:
  double HorzCircle = MATHS_Null;
  double VertCircle = MATHS_Null;
  double EDMDistance = MATHS_Null;
  double HorzCircleStdErr = MATHS_Null;
  double VertCircleStdErr = MATHS_Null;
  double EDMDistanceStdErr = MATHS_Null;
  uint32_t NumberOfHAngles = 0;
  uint32_t NumberOfVAngles = 0;
  uint32_t NumberOfDistances = 0;
  DBID Station;
  DBID Target;
  DBID BackBearing;
  coordsys_CogoSettings CreatedView{};

  coord_Type GetCoordType () const override { return COORD_MTAType; }
  /// The target.
  void SetReference (DBID id) override { Target = id; }
  void Fields (FieldVisitor& v) override;
};

/// Starts the residuals of a mean turned angle.
class db_MeanTurnedAngleResidualsBegin final
    : public RecordOf<db_MeanTurnedAngleResidualsBegin,
                      DATABASE_MeanTurnedAngleResidualsBeginRecord> {
 public:
  void Fields (FieldVisitor& v) override;
};

/// Residuals of one observation against the mean turned angle it went into.
class db_MeanTurnedAngleResiduals final
    : public RecordOf<db_MeanTurnedAngleResiduals, DATABASE_MeanTurnedAngleResidualsRecord> {
 public:
  Str PointName;
  double HorzAngResidual = MATHS_Null;
  double VertAngResidual = MATHS_Null;
  double SlopeDistResidual = MATHS_Null;
  int16_t Round = 0;
  DBID Observation;
  DBID MeanTurnedAngle;

  void Fields (FieldVisitor& v) override;
};

/// Starts the residuals of a station setup.
class db_StationSetupResidualsBegin final
    : public RecordOf<db_StationSetupResidualsBegin, DATABASE_StationSetupResidualsBeginRecord> {
 public:
  void Fields (FieldVisitor& v) override;
};

/// Residuals of the angles and the distance to a backsight.
struct db_AngleResidual {
  double HorzCircle = 0.0;
  double VertCircle = 0.0;
  double SlopeDist = 0.0;
  coord_Face Face = COORD_FaceNull;
  void Fields (FieldVisitor& v);
};

/// Residuals of one backsight of a station setup.
class db_StationSetupResiduals final
    : public RecordOf<db_StationSetupResiduals, DATABASE_StationSetupResidualRecord> {
 public:
  clxml::Derivation Derivation;
  Str PointName;
  dbtype_Dimension Dimension = DBTYPE_None;
  db_NEE Grid{MATHS_Null};
  db_DeltasNEE GridResidual;
  db_AngleResidual AngleResidual;
  double AzimuthResidual = 0.0;
  double LongitudinalDistanceResidual = 0.0;
  double OrthogonalDistanceResidual = 0.0;
  double RadialDistResidual = 0.0;
  int16_t Round = 0;
  bool Backsight = false;
  DBID Observation;
  DBID MeanTurnedAngle;

  void Fields (FieldVisitor& v) override;
};

/// Standard errors of a resection.
class db_ResectErrors final : public RecordOf<db_ResectErrors, DATABASE_ResectErrorsRecord> {
 public:
  double dNorth = 0.0;
  double dEast = 0.0;
  double dElev = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// Differences in azimuth and distances between what was staked and its design.
class db_PolarDeltas final : public RecordOf<db_PolarDeltas, DATABASE_PolarDeltasRecord> {
 public:
  double Azimuth = 0.0;
  double HDist = 0.0;
  double VDist = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// Starts a set of rounds of observations.
class db_StartRounds final : public RecordOf<db_StartRounds, DATABASE_StartRoundsRecord> {
 public:
  void Fields (FieldVisitor& v) override;
};

/// Starts one round.
class db_StartRound final : public RecordOf<db_StartRound, DATABASE_StartRoundRecord> {
 public:
  uint16_t Round = 0;

  void Fields (FieldVisitor& v) override;
};

/// Ends one round.
class db_EndRound final : public RecordOf<db_EndRound, DATABASE_EndRoundRecord> {
 public:
  void Fields (FieldVisitor& v) override;
};

/// Ends a set of rounds.
class db_EndRounds final : public RecordOf<db_EndRounds, DATABASE_EndRoundsRecord> {
 public:
  void Fields (FieldVisitor& v) override;
};

}  // namespace clxml
