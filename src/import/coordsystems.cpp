// Conversions of the records that define a job's coordinate system and its calibration.
// Leans on the conversion frame.
#include <cmath>

#include "Library/records/dbCoordSystems.h"
#include "Library/records/dbPoints.h"
#include "import/conversion.h"
#include "import/roadcapture.h"

namespace clxml {

namespace {

void ReadGroundScale (const FieldReader& in, db_GroundScale& scale) {
  in.Enum ("Type", scale.Type);
  in.Double ("Factor", scale.Factor);
  in.LLH ("ProjectLocation", scale.ProjectLocation);
  in.Double ("NorthingOffset", scale.NorthingOffset);
  in.Double ("EastingOffset", scale.EastingOffset);
  in.Double ("NorthingDelta", scale.NorthingDelta);
  in.Double ("EastingDelta", scale.EastingDelta);
}

void ReadEllipsoid (FieldReader& in, db_Ellipsoid& ellipsoid) {
  in.DerivationCode ("Derivation", ellipsoid.Derivation);
  const FieldReader values = in.Group ("Ellipsoid");
  values.Double ("EarthRadius", ellipsoid.EarthRadius);
  values.Double ("Flattening", ellipsoid.Flattening);
}

void ReadDatum (FieldReader& in, db_Datum& datum) {
  in.DerivationCode ("Derivation", datum.Derivation);
  const FieldReader values = in.Group ("Datum");
  values.Enum ("DatumType", datum.DatumType);
  values.Double ("EarthRadius", datum.EarthRadius);
  values.Double ("Flattening", datum.Flattening);
  values.Double ("RotationX", datum.RotationX);
  values.Double ("RotationY", datum.RotationY);
  values.Double ("RotationZ", datum.RotationZ);
  values.Double ("TranslationX", datum.TranslationX);
  values.Double ("TranslationY", datum.TranslationY);
  values.Double ("TranslationZ", datum.TranslationZ);
  values.Double ("Scale", datum.Scale);
  values.String ("GridName", datum.GridName);
}

void ReadProjection (FieldReader& in, db_Projection& projection) {
  in.DerivationCode ("Derivation", projection.Derivation);
  const FieldReader values = in.Group ("Projection");
  values.Enum ("ProjectionType", projection.ProjectionType);
  values.LLH ("OriginLocal", projection.OriginLocal);
  values.NEE ("OriginGrid", projection.OriginGrid);
  values.Double ("Scale", projection.Scale);
  values.Enum ("GridElevation", projection.GridElevation);
  values.Double ("Orientation1", projection.Orientation1);
  values.Double ("Orientation2", projection.Orientation2);
  values.Enum ("AzimuthFormat", projection.AzimuthFormat);
  values.Enum ("OriginCenter", projection.OriginCenter);
  values.Bool ("Rectify", projection.Rectify);
  values.Enum ("Area", projection.Area);
  values.String ("UKNorthGridFile", projection.UKNorthGridFile);
  values.String ("UKEastGridFile", projection.UKEastGridFile);
  values.String ("ProjectionGridFile", projection.ProjectionGridFile);
  values.String ("ShiftGridFile", projection.ShiftGridFile);
  ReadGroundScale (values.Group ("GroundScale"), projection.GroundScale);
}

void ReadPlane (FieldReader& in, db_Plane& plane) {
  in.DerivationCode ("Derivation", plane.Derivation);
  const FieldReader values = in.Group ("Plane");
  values.Enum ("PlaneType", plane.PlaneType);
  values.Double ("OriginNorth", plane.OriginNorth);
  values.Double ("OriginEast", plane.OriginEast);
  values.Double ("TranslationNorth", plane.TranslationNorth);
  values.Double ("TranslationEast", plane.TranslationEast);
  values.Double ("Rotation", plane.Rotation);
  values.Double ("ScaleFactor", plane.ScaleFactor);
}

void ReadHeight (FieldReader& in, db_Height& height) {
  in.DerivationCode ("Derivation", height.Derivation);
  const FieldReader values = in.Group ("Height");
  values.Enum ("HeightType", height.HeightType);
  values.Double ("OriginNorth", height.OriginNorth);
  values.Double ("OriginEast", height.OriginEast);
  values.Double ("NorthAdjustment", height.NorthAdjustment);
  values.Double ("EastAdjustment", height.EastAdjustment);
  values.Double ("ElevAdjustment", height.ElevAdjustment);
  values.String ("GeoidFilename", height.GeoidFilename);
}

void ReadCorrections (FieldReader& in, db_Corrections& corrections) {
  const FieldReader values = in.Group ("Corrections");
  values.Bool ("SouthAzimuth", corrections.SouthAzimuth);
  values.Enum ("GridOrientation", corrections.GridOrientation);
  values.Double ("MagneticDeclination", corrections.MagneticDeclination);
  values.Enum ("Distances", corrections.Distances);
  values.Enum ("SubDivideCode", corrections.SubDivideCode);
  values.BoolOr ("NeighbourhoodAdjustment", corrections.NeighbourhoodAdjustment, false);
  values.EnumOr ("WeightExponent", corrections.WeightExponent,
                 COORDSYS_WeightExponentZeroPointFive);
}

// The geometry of the roads follows.
void ConvertCorrections (WriteJobControl& job, const xml_element& element, const char* rec) {
  auto record = std::make_unique<db_Corrections> ();
  FieldReader in (&element, job.Version ());
  in.Note (record->Note);
  ReadCorrections (in, *record);
  CheckRec (element, rec);
  const db_Corrections corrections = *record;
  job.StoreRecord (element, std::move (record));
  job.Capture ().CorrectionsChanged (corrections);
}

void ReadCalibResiduals (const FieldReader& in, db_CalibResiduals& residuals) {
  in.Double ("OneD", residuals.OneD);
  in.Double ("TwoD", residuals.TwoD);
  in.Double ("ThreeD", residuals.ThreeD);
  in.Double ("North", residuals.North);
  in.Double ("East", residuals.East);
  in.Double ("Elev", residuals.Elev);
  in.Double ("DeltaNorth", residuals.DeltaNorth);
  in.Double ("DeltaEast", residuals.DeltaEast);
  in.Double ("DeltaElev", residuals.DeltaElev);
}

void ReadCalibPointName (const FieldReader& in, db_CalibPointName& name) {
  in.Enum ("Method", name.Method);
  double constant = 0.0;
  in.DoubleOr ("Constant", constant, 0.0);
  // Cut to a whole number, low 32 bits; no number, or one beyond 64 bits, is 0.
  const bool fits = !maths_IsNull (constant) && std::abs (constant) < 0x1p63;
  name.Constant = fits ? static_cast<int32_t> (static_cast<int64_t> (constant)) : 0;
  in.String ("Prefix", name.Prefix);
  in.String ("Suffix", name.Suffix);
}

void ReadCalibPoint (FieldReader& in, db_CalibPoint& calibPoint) {
  in.IntOrHex ("ListIndex", calibPoint.ListIndex);
  in.String ("NEEPointId", calibPoint.NEEPointId);
  in.String ("WGS84PointId", calibPoint.WGS84PointId);
  in.Enum ("Status", calibPoint.Status);
  ReadCalibResiduals (in.Group ("Residuals"), calibPoint.Residuals);
}

void ReadConfigCalib (FieldReader& in, db_ConfigCalib& configCalib) {
  in.Bool ("FixHorzScaleToOne", configCalib.FixHorzScaleToOne);
  in.Bool ("FixHorzRotationToZero", configCalib.FixHorzRotationToZero);
  in.Enum ("CalibType", configCalib.CalibType);
  in.Bool ("AutoCalibrate", configCalib.AutoCalibrate);
  in.Double ("MaxHorzResiduals", configCalib.MaxHorzResiduals);
  in.Double ("MaxVertResiduals", configCalib.MaxVertResiduals);
  in.Double ("MaxHorzScale", configCalib.MaxHorzScale);
  in.Double ("MinHorzScale", configCalib.MinHorzScale);
  in.Double ("MaxVertIncline", configCalib.MaxVertIncline);
  ReadCalibPointName (in.Group ("PointName"), configCalib.PointName);
}

void ReadCoordSystem (FieldReader& in, db_CoordSystem& coordSystem) {
  in.String ("SystemName", coordSystem.SystemName);
  in.String ("ZoneSiteName", coordSystem.ZoneSiteName, From (1130));
  in.String ("ZoneName", coordSystem.ZoneSiteName, Below (1130));
  in.String ("DatumName", coordSystem.DatumName);
  in.Bool ("UseGeoid", coordSystem.UseGeoid);
  in.Bool ("UseDatumGrid", coordSystem.UseDatumGrid);
  in.String ("GeoidFilename", coordSystem.GeoidFilename);
  ReadGroundScale (in.Group ("GroundScale"), coordSystem.GroundScale);
}

void ReadCoordSysControl (FieldReader& in, db_CoordSystemControl& coordSystemControl) {
  in.Bool ("HorzAdjust", coordSystemControl.HorzAdjust);
  in.Bool ("VertAdjust", coordSystemControl.VertAdjust);
  in.Bool ("DoGeolib", coordSystemControl.DoGeolib);
}

void ReadTimeZone (FieldReader& in, db_TimeZone& timeZone) {
  in.String ("TimeZoneName", timeZone.TimeZoneName);
  in.Double ("HoursToUTC", timeZone.HoursToUTC);
}

constexpr Conversion conversions[] = {
    {"DATABASE_EllipsoidRecord", "db_Ellipsoid", Convert<ReadEllipsoid>},
    {"DATABASE_DatumRecord", "db_Datum", Convert<ReadDatum>},
    {"DATABASE_ProjectionRecord", "db_Projection", Convert<ReadProjection>},
    {"DATABASE_PlaneRecord", "db_Plane", Convert<ReadPlane>},
    {"DATABASE_HeightRecord", "db_Height", Convert<ReadHeight>},
    {"DATABASE_CorrectionsRecord", "db_Corrections", ConvertCorrections},
    {"DATABASE_CalibBeginRecord", "db_CalibBegin", Convert<ReadNothing<db_CalibBegin>>},
    {"DATABASE_CalibPointRecord", "db_CalibPoint", Convert<ReadCalibPoint>},
    {"DATABASE_ConfigCalibRecord", "db_ConfigCalib", Convert<ReadConfigCalib>},
    {"DATABASE_CoordSystemRecord", "db_CoordSystem", Convert<ReadCoordSystem>},
    {"DATABASE_CoordSysControlRecord", "db_CoordSystemControl", Convert<ReadCoordSysControl>},
    {"DATABASE_TimeZoneRecord", "db_TimeZone", Convert<ReadTimeZone>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> CoordSystemConversions () noexcept { return conversions; }

}  // namespace clxml
