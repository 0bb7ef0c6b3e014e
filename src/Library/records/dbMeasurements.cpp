// Records of measurements and of their residuals.
// Their fields in file order. Leans on dbMeasurements.
#include "Library/records/dbMeasurements.h"

namespace clxml {

void db_ECEFDeltas::Fields (FieldVisitor& v) {
  FIELD (XDelta);
  FIELD (YDelta);
  FIELD (ZDelta);
  FIELD (Reference);
  FIELD (Antenna);
}

void db_ECEF::Fields (FieldVisitor& v) {
  FIELD (X);
  FIELD (Y);
  FIELD (Z);
  FIELD (Antenna);
}

void db_ECEFGround::Fields (FieldVisitor& v) {
  FIELD (X);
  FIELD (Y);
  FIELD (Z);
}

void db_WGS84::Fields (FieldVisitor& v) {
  FIELD (Lat);
  FIELD (Long);
  FIELD (Height);
}

void db_Local::Fields (FieldVisitor& v) {
  FIELD (Lat);
  FIELD (Long);
  FIELD (Height);
}

void db_Grid::Fields (FieldVisitor& v) {
  FIELD (North);
  FIELD (East);
  FIELD (Elev);
}

void db_Polar::Fields (FieldVisitor& v) {
  FIELD (SourcePoint);
  FIELD (Azimuth);
  FIELD (HDist);
  FIELD (VDist);
  FIELD (CreatedView);
}

void db_LaserOffset::Fields (FieldVisitor& v) {
  FIELD (BasePoint);
  FIELD (Azimuth);
  FIELD (VertAngle);
  FIELD (SlopeDist);
  FIELD (LaserHeight);
  FIELD (TargetHeight);
  FIELD (MagneticDeclination);
  FIELD (CreatedView);
}

void db_Circle::Fields (FieldVisitor& v) {
  FIELD (HorzCircle);
  FIELD (VertCircle);
  FIELD (EDMDistance);
  FIELD (Face);
  FIELD (HorzCircleStdErr);
  FIELD (VertCircleStdErr);
  FIELD (EDMDistanceStdErr);
  FIELD (EDMMeasurementMode);
  FIELD (Station);
  FIELD (Target);
  FIELD (BackBearing);
  FIELD (CreatedView);
}

void db_Azimuth::Fields (FieldVisitor& v) {
  FIELD (SourcePoint);
  FIELD (Azimuth);
  FIELD (CreatedView);
}

void db_MeanTurnedAngle::Fields (FieldVisitor& v) {
  FIELD (HorzCircle);
  FIELD (VertCircle);
  FIELD (EDMDistance);
  FIELD (HorzCircleStdErr);
  FIELD (VertCircleStdErr);
  FIELD (EDMDistanceStdErr);
  FIELD (NumberOfHAngles);
  FIELD (NumberOfVAngles);
  FIELD (NumberOfDistances);
  FIELD (Station);
  FIELD (Target);
  FIELD (BackBearing);
  FIELD (CreatedView);
}

void db_MeanTurnedAngleResidualsBegin::Fields (FieldVisitor&) {}

void db_MeanTurnedAngleResiduals::Fields (FieldVisitor& v) {
  FIELD (PointName);
  FIELD (HorzAngResidual);
  FIELD (VertAngResidual);
  FIELD (SlopeDistResidual);
  FIELD (Round);
  FIELD (Observation);
  FIELD (MeanTurnedAngle);
}

void db_StationSetupResidualsBegin::Fields (FieldVisitor&) {}

void db_AngleResidual::Fields (FieldVisitor& v) {
  FIELD (HorzCircle);
  FIELD (VertCircle);
  FIELD (SlopeDist);
  FIELD (Face);
}

void db_StationSetupResiduals::Fields (FieldVisitor& v) {
  FIELD (Derivation);
  FIELD (PointName);
  FIELD (Dimension);
  FIELD (Grid);
  FIELD (GridResidual);
  FIELD (AngleResidual);
  FIELD (AzimuthResidual);
  FIELD (LongitudinalDistanceResidual);
  FIELD (OrthogonalDistanceResidual);
  FIELD (RadialDistResidual);
  FIELD (Round);
  FIELD (Backsight);
  FIELD (Observation);
  FIELD (MeanTurnedAngle);
}

void db_ResectErrors::Fields (FieldVisitor& v) {
  FIELD (dNorth);
  FIELD (dEast);
  FIELD (dElev);
}

void db_PolarDeltas::Fields (FieldVisitor& v) {
  FIELD (Azimuth);
  FIELD (HDist);
  FIELD (VDist);
}

void db_StartRounds::Fields (FieldVisitor&) {}

void db_StartRound::Fields (FieldVisitor& v) { FIELD (Round); }

void db_EndRound::Fields (FieldVisitor&) {}

void db_EndRounds::Fields (FieldVisitor&) {}

}  // namespace clxml
