// Records of points and of what is made from them.
// Job header, notes, observations, lines, arcs, keyed-in points, results of computations,
// traverses, and the carriers that amend another record. Leans on dbRecord, dbEnum and dbGroups.
#pragma once

#include <memory>
#include <vector>

#include "Library/records/dbEnum.h"
#include "Library/records/dbGroups.h"
#include "Library/records/dbRecord.h"

// Angles are in radians, azimuths clockwise from north, distances in metres. A field without a
// remark starts at 0, false or empty; doubles that start at MATHS_Null may be absent.

namespace clxml {

/// Bytes of a job's name in the job file.
inline constexpr int DBTYPE_JobNameSize = 33;

/// The first record of every job, with DBID 1.
class db_JobHeader final : public RecordOf<db_JobHeader, DATABASE_JobHeaderRecord> {
 public:
  Str JobName;  ///< stored in DBTYPE_JobNameSize bytes, cut there

  const char* GetName () const override { return JobName.Data (); }
  void Fields (FieldVisitor& v) override;
};

/// A note: nothing but the Note of all records. Equal by it.
class db_Note final : public RecordOf<db_Note, DATABASE_NoteRecord> {
 public:
  bool IsEqual (const dbRecord_Class& record) const override;
  void Fields (FieldVisitor& v) override;
};

/// A point as it was measured, computed or keyed in. Opens an entity: the records that belong to
/// the point follow it up to a db_EndEntity.
class db_Observation final
    : public RecordOf<db_Observation, DATABASE_ObservationRecord, dbRecordWithFeatures_Class> {
 public:
  Str PointName;  ///< asserts "this->PointName.Length() > 0" when saved
  clxml::Derivation Derivation;
  dbentity_PointMethod Method = DBENTITY_Unknown;
  dbentity_SurveyMethod SurveyMethod = DBENTITY_KeyedIn;
  db_PointClassification Classification;
  uint8_t Deleted = 0;  ///< once stored, changed by a db_BoolAction only

  /// Its position data, or null; no part of its stored form and of IsEqual.
  const db_Measurement* Measurement () const noexcept { return _Measurement.get (); }
  db_Measurement* Measurement () noexcept { return _Measurement.get (); }
  /// Takes a measurement in place of the one it has; null for none.
  virtual void SetMeasurement (std::unique_ptr<db_Measurement> measurement);
  /// The same, and gives the old one back.
  [[nodiscard]] virtual std::unique_ptr<db_Measurement> ReplaceMeasurement (
      std::unique_ptr<db_Measurement> measurement);

  const char* GetName () const override { return PointName.Data (); }
  bool IsDeleted () const override { return Deleted != 0; }
  void ApplyBoolAction (const db_BoolAction& action) override;
  void Save (OutBuffer& buffer) const override;
  /// Leaves the measurement as it is.
  void CopyFrom (const dbRecord_Class& other) override;
  void Fields (FieldVisitor& v) override;

 private:
  // A measurement that is copied with its observation.
  struct OwnMeasurement : std::unique_ptr<db_Measurement> {
    using unique_ptr::unique_ptr;
    OwnMeasurement () = default;
    OwnMeasurement (const OwnMeasurement& other);
    OwnMeasurement (OwnMeasurement&&) noexcept = default;
    OwnMeasurement& operator= (const OwnMeasurement& other);
    OwnMeasurement& operator= (OwnMeasurement&&) noexcept = default;
  };
  OwnMeasurement _Measurement;
};

/// A line between two points, or from a point in a direction.
class db_Line final : public RecordOf<db_Line, DATABASE_LineRecord, dbRecordWithFeatures_Class> {
 public:
  Str LineId;  ///< asserts "this->LineId.Length() > 0" when saved
  clxml::Derivation Derivation;
  dbentity_LineMethod Method = DBENTITY_TwoPoints;
  Str OriginPoint;
  Str TargetPoint;
  double BearingAzimuth = 0.0;
  double BearingLength = 0.0;
  double BearingGrade = 0.0;
  uint8_t Deleted = 0;

  const char* GetName () const override { return LineId.Data (); }
  bool IsDeleted () const override { return Deleted != 0; }
  void ApplyBoolAction (const db_BoolAction& action) override;
  void Save (OutBuffer& buffer) const override;
  void Fields (FieldVisitor& v) override;
};

/// A circular arc.
class db_Arc final : public RecordOf<db_Arc, DATABASE_ArcRecord, dbRecordWithFeatures_Class> {
 public:
  Str ArcName;  ///< asserts "this->ArcName.Length() > 0" when saved
  clxml::Derivation Derivation;
  dbentity_ArcMethod Method = DBENTITY_TwoPointsAndRadius;
  Str StartPoint;
  Str EndPoint;
  Str CenterPoint;
  dbentity_ArcDirection Direction = DBENTITY_RightHand;
  double Radius = 0.0;
  double TangentAtStart = 0.0;
  double BackwardTangent = 0.0;
  double Length = 0.0;
  double ScribedAngle = 0.0;
  double Chord = 0.0;
  double Tangent = 0.0;
  double Grade = 0.0;
  uint8_t Deleted = 0;

  const char* GetName () const override { return ArcName.Data (); }
  bool IsDeleted () const override { return Deleted != 0; }
  void ApplyBoolAction (const db_BoolAction& action) override;
  void Save (OutBuffer& buffer) const override;
  void Fields (FieldVisitor& v) override;
};

/// Closes the entity that an observation opened.
class db_EndEntity final : public RecordOf<db_EndEntity, DATABASE_EndEntityRecord> {
 public:
  void Fields (FieldVisitor& v) override;
};

/// How a point was keyed in or computed from others.
class db_PointKeyin final : public RecordOf<db_PointKeyin, DATABASE_PointKeyinRecord> {
 public:
  dbentity_PointMethod Method = DBENTITY_Unknown;
  Str PointOne;
  Str PointTwo;
  Str PointThree;
  Str PointFour;
  double AzimuthOne = MATHS_Null;
  double DistanceOne = MATHS_Null;
  double AzimuthTwo = MATHS_Null;
  double DistanceTwo = MATHS_Null;
  double TurnedAngle = MATHS_Null;
  double VOffset = MATHS_Null;
  dbentity_AzimuthType BearingDistanceAzimuthType = DBENTITY_OriginGrid;
  coordsys_CogoSettings CreatedView{};
  dbentity_DirectionAlongLine DirectionAlongLine = DBENTITY_InFromStart;
  db_RawObservation VerticalPlaneIntersectionRay{MATHS_Null};

  void Fields (FieldVisitor& v) override;
};

/// The result of an inverse computation: where it started, and what it gave.
struct db_InverseResult {
  Str SourcePoint;
  double Azimuth = MATHS_Null;
  double HDist = MATHS_Null;
  double VDist = MATHS_Null;
  coordsys_CogoSettings CreatedView{};
  void Fields (FieldVisitor& v);
};

/// Azimuth and distances between two points.
class db_Inverse final : public RecordOf<db_Inverse, DATABASE_InverseRecord> {
 public:
  Str TargetPoint;
  db_InverseResult Result;
  double SlopeDistance = MATHS_Null;
  double Grade = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// A computed azimuth.
class db_ComputeAzimuth final : public RecordOf<db_ComputeAzimuth, DATABASE_ComputeAzimuthRecord> {
 public:
  dbentity_ComputeAzimuthMethod AzimuthMethod = DBENTITY_TwoPointAzimuth;
  Str Point1;
  Str Point2;
  Str CornerPoint;
  double Azimuth1 = MATHS_Null;
  double Azimuth2 = MATHS_Null;
  double TurnedAngle = MATHS_Null;
  Str ReferenceLinearEntity;
  bool ReferenceLineDefinedByTwoPoints = false;
  Str ReferenceLinePoint1Name;
  Str ReferenceLinePoint2Name;
  double Stationing = MATHS_Null;
  double Offset = MATHS_Null;
  double ComputedAzimuth = MATHS_Null;
  coordsys_CogoSettings CreatedView{};

  void Fields (FieldVisitor& v) override;
};

/// A computed distance.
class db_ComputeDistance final
    : public RecordOf<db_ComputeDistance, DATABASE_ComputeDistanceRecord> {
 public:
  dbentity_ComputeDistanceMethod DistanceMethod = DBENTITY_TwoPointDistance;
  Str Point1;
  Str Point2;
  Str ReferenceLinearEntity;
  bool ReferenceLineDefinedByTwoPoints = false;
  Str ReferenceLinePoint1Name;
  Str ReferenceLinePoint2Name;
  double DistanceAlong = MATHS_Null;
  double ComputedDistance = MATHS_Null;
  coordsys_CogoSettings CreatedView{};

  void Fields (FieldVisitor& v) override;
};

/// An area and the points around it.
class db_Area final : public RecordOf<db_Area, DATABASE_AreaRecord> {
 public:
  /// Of ListOfPoints; asserts "ListOfPoints.Count () == NumberOfPoints" when saved, and this many
  /// names are written then.
  uint16_t NumberOfPoints = 0;
  coordsys_CogoSettings Method{};
  double Area = 0.0;  ///< square metres
  double Perimeter = 0.0;
  StrArray ListOfPoints;

  void Save (OutBuffer& buffer) const override;
  void Fields (FieldVisitor& v) override;
};

/// A traverse: its stations in order, with what it was oriented by at both ends.
class db_Traverse final : public RecordOf<db_Traverse, DATABASE_TraverseHeaderRecord> {
 public:
  Str TraverseName;  ///< asserts "this->TraverseName.Length() > 0" when saved
  clxml::Derivation Derivation{'T', 'V'};
  uint8_t Deleted = 0;
  Str BSPoint;
  double BSAzimuth = 0.0;
  uint8_t BSAzimuthKeyedIn = 0;
  Str FSPoint;
  double FSAzimuth = 0.0;
  uint8_t FSAzimuthKeyedIn = 0;
  StrArray ListOfStations;  ///< any number of names; empty ones are not stored

  const char* GetName () const override { return TraverseName.Data (); }
  bool IsDeleted () const override { return Deleted != 0; }
  void ApplyBoolAction (const db_BoolAction& action) override;
  void Save (OutBuffer& buffer) const override;
  void Fields (FieldVisitor& v) override;
};

/// One leg of a traverse.
struct db_TraverseLeg {
  Str FromPt;
  Str ToPt;
  db_PolarValues Polar;
  void Fields (FieldVisitor& v);
};

/// How a traverse closed.
class db_TraverseClosure final
    : public RecordOf<db_TraverseClosure, DATABASE_TraverseClosureRecord> {
 public:
  DBID TraversePtr;  ///< the db_Traverse
  double AzimuthMisclose = 0.0;
  double DistanceMisclose = 0.0;
  double TraverseLength = 0.0;
  double Precision = 0.0;
  double DeltaNorth = 0.0;
  double DeltaEast = 0.0;
  double DeltaElev = 0.0;
  dbentity_TrvResultType Results = DBENTITY_NotAdjusted;
  std::vector<db_TraverseLeg> TraverseLegs;  ///< at most 32,767

  void Fields (FieldVisitor& v) override;
};

/// How traverses are adjusted.
class db_TraverseAdjustment final
    : public RecordOf<db_TraverseAdjustment, DATABASE_TraverseAdjustmentRecord> {
 public:
  dbentity_TrvAdjustmentMethod Method = DBENTITY_CompassMethod;
  dbentity_TrvAdjustmentType Angle = DBENTITY_WeightedMethod;
  dbentity_TrvAdjustmentType Elevation = DBENTITY_WeightedMethod;

  void Fields (FieldVisitor& v) override;
};

/// Carrier of a deleted mark.
class db_BoolAction final : public RecordOf<db_BoolAction, DATABASE_BoolActionRecord> {
 public:
  uint8_t Value = 0;  ///< 0 deletes, 1 restores, any other does nothing

  /// Sets or clears a deleted mark as Value says.
  void ApplyTo (uint8_t& deleted) const noexcept;
  void Fields (FieldVisitor& v) override;
};

/// Carrier of a new reference.
class db_DBID final : public RecordOf<db_DBID, DATABASE_DBIDRecord> {
 public:
  DBID Value;

  void Fields (FieldVisitor& v) override;
};

/// Carrier of new feature codes.
class db_Features final : public RecordOf<db_Features, DATABASE_FeaturesRecord> {
 public:
  FeatureArray Features;

  void Fields (FieldVisitor& v) override;
};

/// Carrier of new descriptions.
class db_Descriptions final : public RecordOf<db_Descriptions, DATABASE_DescriptionsRecord> {
 public:
  Str Description1;
  Str Description2;

  void Fields (FieldVisitor& v) override;
};

/// Outside data that travels in a job file.
class db_Foreign final : public RecordOf<db_Foreign, DATABASE_ForeignRecord> {
 public:
  Str Name;
  std::vector<uint8_t> Data;  ///< stored with its length in front

  /// Not defined: asserts, and is false.
  bool IsEqual (const dbRecord_Class& record) const override;
  void Fields (FieldVisitor& v) override;
};

/// The time zone in which the job was worked.
class db_TimeZone final : public RecordOf<db_TimeZone, DATABASE_TimeZoneRecord> {
 public:
  Str TimeZoneName;
  double HoursToUTC = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

}  // namespace clxml
