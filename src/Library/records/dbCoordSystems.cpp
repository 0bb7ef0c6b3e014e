// The fields of the coordinate system records.
// The order of a list is the order of the fields in a job file. Leans on dbCoordSystems.h.
#include "Library/records/dbCoordSystems.h"

namespace clxml {

void db_GroundScale::Fields (FieldVisitor& v) {
  FIELD (Type);
  FIELD (Factor);
  FIELD (ProjectLocation);
  FIELD (NorthingOffset);
  FIELD (EastingOffset);
  FIELD (NorthingDelta);
  FIELD (EastingDelta);
}

void db_CalibResiduals::Fields (FieldVisitor& v) {
  FIELD (OneD);
  FIELD (TwoD);
  FIELD (ThreeD);
  FIELD (North);
  FIELD (East);
  FIELD (Elev);
  FIELD (DeltaNorth);
  FIELD (DeltaEast);
  FIELD (DeltaElev);
}

void db_CalibPointName::Fields (FieldVisitor& v) {
  FIELD (Method);
  FIELD (Constant);
  FIELD (Prefix);
  FIELD (Suffix);
}

void db_Ellipsoid::Fields (FieldVisitor& v) {
  FIELD (Derivation);
  FIELD (EarthRadius);
  FIELD (Flattening);
}

void db_Datum::Fields (FieldVisitor& v) {
  FIELD (Derivation);
  FIELD (DatumType);
  FIELD (EarthRadius);
  FIELD (Flattening);
  FIELD (RotationX);
  FIELD (RotationY);
  FIELD (RotationZ);
  FIELD (TranslationX);
  FIELD (TranslationY);
  FIELD (TranslationZ);
  FIELD (Scale);
  FIELD (GridName);
}

void db_Projection::Fields (FieldVisitor& v) {
  FIELD (Derivation);
  FIELD (ProjectionType);
  FIELD (OriginLocal);
  FIELD (OriginGrid);
  FIELD (Scale);
  FIELD (GridElevation);
  FIELD (Orientation1);
  FIELD (Orientation2);
  FIELD (AzimuthFormat);
  FIELD (OriginCenter);
  FIELD (Rectify);
  FIELD (Area);
  FIELD (UKNorthGridFile);
  FIELD (UKEastGridFile);
  FIELD (ProjectionGridFile);
  FIELD (ShiftGridFile);
  FIELD (GroundScale);
}

void db_Plane::Fields (FieldVisitor& v) {
  FIELD (Derivation);
  FIELD (PlaneType);
  FIELD (OriginNorth);
  FIELD (OriginEast);
  FIELD (TranslationNorth);
  FIELD (TranslationEast);
  FIELD (Rotation);
  FIELD (ScaleFactor);
}

void db_Height::Fields (FieldVisitor& v) {
  FIELD (Derivation);
  FIELD (HeightType);
  FIELD (OriginNorth);
  FIELD (OriginEast);
  FIELD (NorthAdjustment);
  FIELD (EastAdjustment);
  FIELD (ElevAdjustment);
  FIELD (GeoidFilename);
}

void db_Corrections::Fields (FieldVisitor& v) {
  FIELD (ValuesPresent);
  FIELD (SouthAzimuth);
  FIELD (GridOrientation);
  FIELD (MagneticDeclination);
  FIELD (Distances);
  FIELD (SubDivideCode);
  FIELD (NeighbourhoodAdjustment);
  FIELD (WeightExponent);
}

void db_CoordSystem::Fields (FieldVisitor& v) {
  FIELD (SystemName);
  FIELD (ZoneSiteName);
  FIELD (DatumName);
  FIELD (UseGeoid);
  FIELD (UseDatumGrid);
  FIELD (GeoidFilename);
  FIELD (SystemIndex);
  FIELD (ZoneIndex);
  FIELD (DatumIndex);
  FIELD (GroundScale);
}

void db_CoordSystemControl::Fields (FieldVisitor& v) {
  FIELD (HorzAdjust);
  FIELD (VertAdjust);
  FIELD (DoGeolib);
}

void db_CalibPoint::Fields (FieldVisitor& v) {
  FIELD (ListIndex);
  FIELD (NEEPointId);
  FIELD (WGS84PointId);
  FIELD (Status);
  FIELD (Residuals);
}

void db_ConfigCalib::Fields (FieldVisitor& v) {
  FIELD (FixHorzScaleToOne);
  FIELD (FixHorzRotationToZero);
  FIELD (CalibType);
  FIELD (AutoCalibrate);
  FIELD (MaxHorzResiduals);
  FIELD (MaxVertResiduals);
  FIELD (MaxHorzScale);
  FIELD (MinHorzScale);
  FIELD (MaxVertIncline);
  FIELD (PointName);
}

void db_CogoTransformation::Fields (FieldVisitor& v) {
  FIELD (Rotated);
  FIELD (rotationAngle);
  FIELD (rotationOrigin);
  FIELD (rotationOriginGrid);
  FIELD (Scaled);
  FIELD (scaleFactor);
  FIELD (scaleOrigin);
  FIELD (scaleOriginGrid);
  FIELD (Translated);
  FIELD (translationMethod);
  FIELD (translationDelta);
  FIELD (translationFrom);
  FIELD (translationTo);
  FIELD (pointsTransformed);
}

std::unique_ptr<dbRecord_Class> db_Corrections::MergeDefaults (
    const dbRecord_Class& defaults) const {
  const db_Corrections* fromCorrns = From (&defaults);
  if (!Assert (fromCorrns != nullptr, "fromCorrns")) return nullptr;
  if ((ValuesPresent & AllValues) == AllValues) return nullptr;
  auto merged = std::make_unique<db_Corrections> (*this);
  const auto isAbsent = [this] (coordsys_ValuesPresent bit) { return (ValuesPresent & bit) == 0; };
  if (isAbsent (COORDSYS_SouthAzimuthPresent)) merged->SouthAzimuth = fromCorrns->SouthAzimuth;
  if (isAbsent (COORDSYS_GridOrientationPresent))
    merged->GridOrientation = fromCorrns->GridOrientation;
  if (isAbsent (COORDSYS_MagDeclinationPresent))
    merged->MagneticDeclination = fromCorrns->MagneticDeclination;
  if (isAbsent (COORDSYS_DistancesPresent)) merged->Distances = fromCorrns->Distances;
  if (isAbsent (COORDSYS_SubDivideCodePresent)) merged->SubDivideCode = fromCorrns->SubDivideCode;
  if (isAbsent (COORDSYS_NeighbourhoodAdjustmentPresent))
    merged->NeighbourhoodAdjustment = fromCorrns->NeighbourhoodAdjustment;
  if (isAbsent (COORDSYS_WeightExponentPresent))
    merged->WeightExponent = fromCorrns->WeightExponent;
  merged->ValuesPresent = ValuesPresent | AllValues;
  return merged;
}

}  // namespace clxml
