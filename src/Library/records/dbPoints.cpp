// Records of points and of what is made from them.
// Their fields in file order, and what a class does beyond its fields. Leans on dbPoints.
#include "Library/records/dbPoints.h"

#include <utility>

namespace clxml {

void db_JobHeader::Fields (FieldVisitor& v) {
  v.PaddedText ("JobName", JobName, DBTYPE_JobNameSize);
}

bool db_Note::IsEqual (const dbRecord_Class& record) const {
  return dbRecord_Class::IsEqual (record) && Note == record.Note;
}
void db_Note::Fields (FieldVisitor&) {}

db_Observation::OwnMeasurement::OwnMeasurement (const OwnMeasurement& other) : unique_ptr () {
  *this = other;
}

db_Observation::OwnMeasurement& db_Observation::OwnMeasurement::operator= (
    const OwnMeasurement& other) {
  if (this != &other)
    reset (other ? static_cast<db_Measurement*> (CloneRecord (*other).release ()) : nullptr);
  return *this;
}

void db_Observation::SetMeasurement (std::unique_ptr<db_Measurement> measurement) {
  _Measurement.reset (measurement.release ());
}

std::unique_ptr<db_Measurement> db_Observation::ReplaceMeasurement (
    std::unique_ptr<db_Measurement> measurement) {
  std::unique_ptr<db_Measurement> old (_Measurement.release ());
  _Measurement.reset (measurement.release ());
  return old;
}

void db_Observation::ApplyBoolAction (const db_BoolAction& action) { action.ApplyTo (Deleted); }

void db_Observation::Save (OutBuffer& buffer) const {
  Assert (PointName.Length () > 0, "this->PointName.Length() > 0");
  dbRecordWithFeatures_Class::Save (buffer);
}

void db_Observation::CopyFrom (const dbRecord_Class& other) {
  OwnMeasurement own = std::move (_Measurement);
  dbRecordWithFeatures_Class::CopyFrom (other);
  _Measurement = std::move (own);
}

void db_Observation::Fields (FieldVisitor& v) {
  FIELD (PointName);
  FIELD (Derivation);
  FIELD (Method);
  FIELD (SurveyMethod);
  FIELD (Classification);
  FIELD (Deleted);
}

void db_Line::ApplyBoolAction (const db_BoolAction& action) { action.ApplyTo (Deleted); }

void db_Line::Save (OutBuffer& buffer) const {
  Assert (LineId.Length () > 0, "this->LineId.Length() > 0");
  dbRecordWithFeatures_Class::Save (buffer);
}

void db_Line::Fields (FieldVisitor& v) {
  FIELD (LineId);
  FIELD (Derivation);
  FIELD (Method);
  FIELD (OriginPoint);
  FIELD (TargetPoint);
  FIELD (BearingAzimuth);
  FIELD (BearingLength);
  FIELD (BearingGrade);
  FIELD (Deleted);
}

void db_Arc::ApplyBoolAction (const db_BoolAction& action) { action.ApplyTo (Deleted); }

void db_Arc::Save (OutBuffer& buffer) const {
  Assert (ArcName.Length () > 0, "this->ArcName.Length() > 0");
  dbRecordWithFeatures_Class::Save (buffer);
}

void db_Arc::Fields (FieldVisitor& v) {
  FIELD (ArcName);
  FIELD (Derivation);
  FIELD (Method);
  FIELD (StartPoint);
  FIELD (EndPoint);
  FIELD (CenterPoint);
  FIELD (Direction);
  FIELD (Radius);
  FIELD (TangentAtStart);
  FIELD (BackwardTangent);
  FIELD (Length);
  FIELD (ScribedAngle);
  FIELD (Chord);
  FIELD (Tangent);
  FIELD (Grade);
  FIELD (Deleted);
}

void db_EndEntity::Fields (FieldVisitor&) {}

void db_PointKeyin::Fields (FieldVisitor& v) {
  FIELD (Method);
  FIELD (PointOne);
  FIELD (PointTwo);
  FIELD (PointThree);
  FIELD (PointFour);
  FIELD (AzimuthOne);
  FIELD (DistanceOne);
  FIELD (AzimuthTwo);
  FIELD (DistanceTwo);
  FIELD (TurnedAngle);
  FIELD (VOffset);
  FIELD (BearingDistanceAzimuthType);
  FIELD (CreatedView);
  FIELD (DirectionAlongLine);
  FIELD (VerticalPlaneIntersectionRay);
}

void db_InverseResult::Fields (FieldVisitor& v) {
  FIELD (SourcePoint);
  FIELD (Azimuth);
  FIELD (HDist);
  FIELD (VDist);
  FIELD (CreatedView);
}

void db_Inverse::Fields (FieldVisitor& v) {
  FIELD (TargetPoint);
  FIELD (Result);
  FIELD (SlopeDistance);
  FIELD (Grade);
}

void db_ComputeAzimuth::Fields (FieldVisitor& v) {
  FIELD (AzimuthMethod);
  FIELD (Point1);
  FIELD (Point2);
  FIELD (CornerPoint);
  FIELD (Azimuth1);
  FIELD (Azimuth2);
  FIELD (TurnedAngle);
  FIELD (ReferenceLinearEntity);
  FIELD (ReferenceLineDefinedByTwoPoints);
  FIELD (ReferenceLinePoint1Name);
  FIELD (ReferenceLinePoint2Name);
  FIELD (Stationing);
  FIELD (Offset);
  FIELD (ComputedAzimuth);
  FIELD (CreatedView);
}

void db_ComputeDistance::Fields (FieldVisitor& v) {
  FIELD (DistanceMethod);
  FIELD (Point1);
  FIELD (Point2);
  FIELD (ReferenceLinearEntity);
  FIELD (ReferenceLineDefinedByTwoPoints);
  FIELD (ReferenceLinePoint1Name);
  FIELD (ReferenceLinePoint2Name);
  FIELD (DistanceAlong);
  FIELD (ComputedDistance);
  FIELD (CreatedView);
}

void db_Area::Save (OutBuffer& buffer) const {
  Assert (ListOfPoints.Count () == NumberOfPoints, "ListOfPoints.Count () == NumberOfPoints");
  dbRecord_Class::Save (buffer);
}

void db_Area::Fields (FieldVisitor& v) {
  FIELD (NumberOfPoints);
  FIELD (Method);
  FIELD (Area);
  FIELD (Perimeter);
  v.CountedTexts ("ListOfPoints", ListOfPoints, NumberOfPoints);
}

void db_Traverse::ApplyBoolAction (const db_BoolAction& action) { action.ApplyTo (Deleted); }

void db_Traverse::Save (OutBuffer& buffer) const {
  Assert (TraverseName.Length () > 0, "this->TraverseName.Length() > 0");
  dbRecord_Class::Save (buffer);
}

void db_Traverse::Fields (FieldVisitor& v) {
  FIELD (TraverseName);
  FIELD (Derivation);
  FIELD (Deleted);
  FIELD (BSPoint);
  FIELD (BSAzimuth);
  FIELD (BSAzimuthKeyedIn);
  FIELD (FSPoint);
  FIELD (FSAzimuth);
  FIELD (FSAzimuthKeyedIn);
  v.TerminatedTexts ("ListOfStations", ListOfStations);
}

void db_TraverseLeg::Fields (FieldVisitor& v) {
  FIELD (FromPt);
  FIELD (ToPt);
  FIELD (Polar);
}

void db_TraverseClosure::Fields (FieldVisitor& v) {
  FIELD (TraversePtr);
  FIELD (AzimuthMisclose);
  FIELD (DistanceMisclose);
  FIELD (TraverseLength);
  FIELD (Precision);
  FIELD (DeltaNorth);
  FIELD (DeltaEast);
  FIELD (DeltaElev);
  FIELD (Results);
  // A leg takes at least two ends of texts and three doubles.
  VisitList (v, "TraverseLegs", TraverseLegs, FieldVisitor::CountForm::I16, 26);
}

void db_TraverseAdjustment::Fields (FieldVisitor& v) {
  FIELD (Method);
  FIELD (Angle);
  FIELD (Elevation);
}

void db_BoolAction::ApplyTo (uint8_t& deleted) const noexcept {
  if (Value == 0) deleted = 1;
  if (Value == 1) deleted = 0;
}
void db_BoolAction::Fields (FieldVisitor& v) { FIELD (Value); }

void db_DBID::Fields (FieldVisitor& v) { FIELD (Value); }

void db_Features::Fields (FieldVisitor& v) { FIELD (Features); }

void db_Descriptions::Fields (FieldVisitor& v) {
  FIELD (Description1);
  FIELD (Description2);
}

bool db_Foreign::IsEqual (const dbRecord_Class&) const {
  Assert (false, "!\"Outside data has no IsEqual\"");
  return false;
}

void db_Foreign::Fields (FieldVisitor& v) {
  FIELD (Name);
  uint32_t Length = static_cast<uint32_t> (Data.size ());
  FIELD (Length);
  v.Bytes ("Data", Data, Length);
}

void db_TimeZone::Fields (FieldVisitor& v) {
  FIELD (TimeZoneName);
  FIELD (HoursToUTC);
}

}  // namespace clxml
