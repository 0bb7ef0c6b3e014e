// The fields of the records of conventional surveys.
// The order of a list is the order of the fields in a job file. Leans on dbConventional.h.
#include "Library/records/dbConventional.h"

#include <cmath>

namespace clxml {

double total_TrueHeight (double rawHeight, total_TargetHeightMethod method, double horizontalOffset,
                         double verticalOffset) {
  if (method != ZorvanBottomNotch) return rawHeight;
  if (maths_IsNull (rawHeight) || maths_IsNull (horizontalOffset) || maths_IsNull (verticalOffset))
    return MATHS_Null;
  const double square = rawHeight * rawHeight - horizontalOffset * horizontalOffset;
  return square >= 0.0 ? std::sqrt (square) + verticalOffset : MATHS_Null;
}

void db_PortParam::Fields (FieldVisitor& v) {
  FIELD (BaudRate);
  FIELD (DataBits);
  FIELD (StopBits);
  FIELD (Parity);
  FIELD (FlowControl);
}

void db_InstrumentPrecisions::Fields (FieldVisitor& v) {
  FIELD (HAPrecision);
  FIELD (VAPrecision);
  FIELD (EDMPrecision);
  FIELD (EDMppm);
}

void db_InstrumentRadio::Fields (FieldVisitor& v) {
  FIELD (Channel);
  FIELD (StationAddress);
  FIELD (RemoteAddress);
}

void db_OffsetDistance::Fields (FieldVisitor& v) { FIELD (Distance); }

void db_TotalAtmosphere::Fields (FieldVisitor& v) {
  FIELD (Pressure);
  FIELD (Temperature);
  FIELD (PPM);
  FIELD (Refraction);
  FIELD (PressureInputMethod);
}

void db_TotalBackBearing::Fields (FieldVisitor& v) {
  FIELD (Station);
  FIELD (BackSight);
  FIELD (F1HorzCircle);
  FIELD (F2HorzCircle);
  FIELD (OrientationCorrectionStdError);
}

void db_TotalInstrument::Fields (FieldVisitor& v) {
  FIELD (Type);
  FIELD (RefractiveIndex);
  FIELD (CarrierWavelength);
  FIELD (HasExtraInfo);
  FIELD (MeasurementMode);
  FIELD (SetHzCircleMode);
  FIELD (Servo);
  FIELD (PortParam);
  FIELD (AnglesOnlyRate);
  FIELD (TurnToZero);
  FIELD (Precisions);
  FIELD (CenteringError);
  FIELD (Radio);
  FIELD (AverageMeasurements);
  FIELD (AutoMatchedFace1_2);
  FIELD (MeasureDistOnFace2);
  FIELD (StakeUsingTracking);
  FIELD (SendRecordAck);
  FIELD (EditInstrumentPrecisions);
  FIELD (Model);
  FIELD (Serial);
  FIELD (FirmwareVersion);
  FIELD (ModelNumber);
  FIELD (InstrumentAppliedHCollimation);
  FIELD (InstrumentAppliedVCollimation);
  FIELD (TrunionAxisTiltCorrection);
  FIELD (UserDefinedName);
  FIELD (InstrumentAppliedAutolockHCollimation);
  FIELD (InstrumentAppliedAutolockVCollimation);
  FIELD (AtmosphereCorrectionCoeff);
  FIELD (OffsetUserPerspective);
}

void db_TotalStation::Fields (FieldVisitor& v) {
  FIELD (StationName);
  FIELD (RawTheodoliteHt);
  FIELD (MeasurementMethod);
  FIELD (HorizontalOffset);
  FIELD (VerticalOffset);
  FIELD (Instrument);
  FIELD (Atmosphere);
  FIELD (NumberOfBacksightObservations);
  FIELD (NumberOfUniqueBacksights);
  FIELD (ScaleType);
  FIELD (ScaleFactor);
  FIELD (ScaleFactorStdError);
  FIELD (StationType);
}

void db_Target::Fields (FieldVisitor& v) {
  FIELD (Name);
  FIELD (IsDR);
  FIELD (RawTargetHeight);
  FIELD (MeasurementMethod);
  FIELD (HorizontalOffset);
  FIELD (VerticalOffset);
  FIELD (PrismType);
  FIELD (PrismConstant);
  FIELD (RMTID);
  FIELD (ZorvanCheckTargetID);
  FIELD (IsDualPrism);
}

void db_DualPrismOffset::Fields (FieldVisitor& v) {
  FIELD (PrismAObservation);
  FIELD (PrismBObservation);
  FIELD (PrismConstantA);
  FIELD (PrismConstantB);
  FIELD (DistanceAB);
  FIELD (DistanceBC);
  FIELD (CalculatedDistanceAB);
}

void db_CircularObject::Fields (FieldVisitor& v) {
  FIELD (FirstRawObservation);
  FIELD (SecondRawObservation);
  FIELD (Radius);
}

void db_RemoteObject::Fields (FieldVisitor& v) {
  FIELD (RawObservation);
  FIELD (ObjectHeight);
  FIELD (ObjectWidth);
  FIELD (ROBasePointName);
  FIELD (ROBasePointID);
}

void db_AngleOffset::Fields (FieldVisitor& v) {
  FIELD (FirstRawObservation);
  FIELD (SecondRawObservation);
}

db_DistanceOffset::db_DistanceOffset () {
  RawObservation.HorzCircleStdErr = MATHS_Null;
  RawObservation.VertCircleStdErr = MATHS_Null;
  RawObservation.EDMDistanceStdErr = MATHS_Null;
}

void db_DistanceOffset::Fields (FieldVisitor& v) {
  FIELD (RawObservation);
  FIELD (LeftRightOffset);
  FIELD (InOutOffset);
  FIELD (DownUpOffset);
  FIELD (DisplayOffsetPerspective);
}

void db_LaserBasePoint::Fields (FieldVisitor& v) { FIELD (TheName); }

void db_LaserHeight::Fields (FieldVisitor& v) { FIELD (Height); }

void db_LaserTargetHeight::Fields (FieldVisitor& v) { FIELD (Height); }

void db_LaserConfig::Fields (FieldVisitor& v) {
  FIELD (LaserType);
  FIELD_AS (uint8_t, Port);
  FIELD (BaudRate);
  FIELD (DataBits);
  FIELD (StopBits);
  FIELD (Parity);
  FIELD (Features);
  FIELD (UseFireCommand);
  FIELD (AutoStore);
  FIELD (DistancePrecision);
  FIELD (AzimuthPrecision);
  FIELD (InclinePrecision);
}

void db_Meterological::Fields (FieldVisitor& v) {
  FIELD (Pressure);
  FIELD (DryBulbTemperature);
  FIELD (WetBulbTemperature);
  FIELD (RelativeHumidity);
}

void db_SurfaceScan::Fields (FieldVisitor& v) {
  FIELD (SurfaceScanMethod);
  FIELD (LineMethod);
  FIELD (PointA);
  FIELD (PointB);
  FIELD (PointC);
  FIELD (HAstep);
  FIELD (VAstep);
  FIELD (Xstep);
  FIELD (Ystep);
  FIELD (MaxOffset);
  FIELD (Azimuth);
  FIELD (Distance);
  FIELD (PointsScanned);
  FIELD (PointsSkipped);
  FIELD (TimeTaken);
}

void db_Scanning::Fields (FieldVisitor& v) {
  FIELD (StationID);
  FIELD (BackBearingID);
  FIELD (ScanType);
  FIELD (FileName);
  FIELD (NumberOfPoints);
  FIELD (TimeTaken);
  FIELD (AtDistance);
  FIELD (HorizontalStep);
  FIELD (VerticalStep);
  FIELD (HorizontalDistInterval);
  FIELD (VerticalDistInterval);
}

void db_Image::Fields (FieldVisitor& v) {
  FIELD (StationID);
  FIELD (BackBearingID);
  FIELD (CameraID);
  FIELD (PointRecordID);
  FIELD (FileName);
  FIELD (HorizontalAngle);
  FIELD (VerticalAngle);
  FIELD (Width);
  FIELD (Height);
  FIELD (SourceX);
  FIELD (SourceY);
  FIELD (SourceWidth);
  FIELD (SourceHeight);
}

void db_Camera::Fields (FieldVisitor& v) {
  FIELD (X0);
  FIELD (Y0);
  FIELD (CK);
  FIELD (Kappa);
  FIELD (Phi);
  FIELD (Omega);
  FIELD (S0);
  FIELD (C0);
  FIELD (Z0);
  FIELD (I);
  FIELD (K1);
  FIELD (P1);
  FIELD (P2);
  FIELD (PixelSizeX);
  FIELD (PixelSizeY);
  FIELD (PixelCountX);
  FIELD (PixelCountY);
  FIELD (ErrMeas);
  FIELD (CalibDate64);
  FIELD (CalibType);
  FIELD (isCalibrated);
}

void db_Panorama::Fields (FieldVisitor& v) {
  FIELD (Method);
  FIELD (Top);
  FIELD (Left);
  FIELD (Bottom);
  FIELD (Right);
  FIELD (HAstep);
  FIELD (VAstep);
}

}  // namespace clxml
