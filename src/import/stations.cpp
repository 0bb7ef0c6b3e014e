// Conversions of instruments, stations and targets.
// Leans on the conversion frame.
#include "Library/records/dbConventional.h"
#include "Library/records/dbGPS.h"
#include "import/conversion.h"

namespace clxml {

namespace {

void ReadPortParam (const FieldReader& in, db_PortParam& port) {
  in.IntOrHex ("BaudRate", port.BaudRate);
  in.Int ("DataBits", port.DataBits);
  in.Int ("StopBits", port.StopBits);
  in.Enum ("Parity", port.Parity);
  in.Enum ("FlowControl", port.FlowControl);
}

void ReadPrecisions (const FieldReader& in, db_InstrumentPrecisions& precisions) {
  in.Double ("HAPrecision", precisions.HAPrecision);
  in.Double ("VAPrecision", precisions.VAPrecision);
  in.Double ("EDMPrecision", precisions.EDMPrecision);
  in.Double ("EDMppm", precisions.EDMppm);
}

void ReadRadioLink (const FieldReader& in, db_InstrumentRadio& radio) {
  in.Int ("Channel", radio.Channel);
  in.Int ("StationAddress", radio.StationAddress);
  in.Int ("RemoteAddress", radio.RemoteAddress);
}

void ReadAtmosphere (FieldReader& in, db_TotalAtmosphere& atmosphere) {
  in.Double ("Pressure", atmosphere.Pressure);
  in.Double ("Temperature", atmosphere.Temperature);
  in.Double ("PPM", atmosphere.PPM);
  in.Enum ("Refraction", atmosphere.Refraction);
  in.EnumOr ("PressureInputMethod", atmosphere.PressureInputMethod, TOTAL_KeyedIn);
}

void ReadBackBearing (FieldReader& in, db_TotalBackBearing& backBearing) {
  in.String ("Station", backBearing.Station);
  in.String ("BackSight", backBearing.BackSight);
  in.Double ("F1HorzCircle", backBearing.F1HorzCircle);
  in.Double ("F2HorzCircle", backBearing.F2HorzCircle);
  in.Double ("OrientationCorrectionStdError", backBearing.OrientationCorrectionStdError);
}

void ReadInstrument (FieldReader& in, db_TotalInstrument& instrument) {
  in.Enum ("Type", instrument.Type);
  in.Double ("RefractiveIndex", instrument.RefractiveIndex);
  in.Double ("CarrierWavelength", instrument.CarrierWavelength);
  in.Bool ("HasExtraInfo", instrument.HasExtraInfo);
  in.Enum ("MeasurementMode", instrument.MeasurementMode);
  in.Enum ("SetHzCircleMode", instrument.SetHzCircleMode);
  if (!in.Text ("AutoTurn").empty ()) {
    bool dropped = false;  // no field holds it, but a bad word is still a bad file
    in.Bool ("AutoTurn", dropped);
  }
  in.Enum ("Servo", instrument.Servo);
  in.Double ("AnglesOnlyRate", instrument.AnglesOnlyRate);
  in.Bool ("TurnToZero", instrument.TurnToZero);
  in.Int ("AverageMeasurements", instrument.AverageMeasurements);
  in.BoolOr ("AutoMatchedFace1_2", instrument.AutoMatchedFace1_2, false);
  in.BoolOr ("MeasureDistOnFace2", instrument.MeasureDistOnFace2, true);
  in.BoolOr ("StakeUsingTracking", instrument.StakeUsingTracking, true);
  in.BoolOr ("SendRecordAck", instrument.SendRecordAck, true);
  ReadPortParam (in.Group ("PortParam"), instrument.PortParam);
  ReadPrecisions (in.Group ("Precisions"), instrument.Precisions);
  in.DoubleOr ("CenteringError", instrument.CenteringError, 0.0, From (1100));
  in.Group ("Precisions").DoubleOr ("CenteringError", instrument.CenteringError, 0.0, Below (1100));
  in.Bool ("EditInstrumentPrecisions", instrument.EditInstrumentPrecisions, From (1140));
  ReadRadioLink (in.Group ("Radio"), instrument.Radio);
  in.String ("Model", instrument.Model);
  in.String ("Serial", instrument.Serial);
  in.String ("FirmwareVersion", instrument.FirmwareVersion);
  in.IntOrHexOr ("ModelNumber", instrument.ModelNumber, 0);
  in.Double ("InstrumentAppliedHCollimation", instrument.InstrumentAppliedHCollimation);
  in.Double ("InstrumentAppliedVCollimation", instrument.InstrumentAppliedVCollimation);
  in.Double ("TrunionAxisTiltCorrection", instrument.TrunionAxisTiltCorrection);
  in.String ("UserDefinedName", instrument.UserDefinedName);
  in.Double ("InstrumentAppliedAutolockHCollimation",
             instrument.InstrumentAppliedAutolockHCollimation);
  in.Double ("InstrumentAppliedAutolockVCollimation",
             instrument.InstrumentAppliedAutolockVCollimation);
  in.Double ("AtmosphereCorrectionCoeff", instrument.AtmosphereCorrectionCoeff);
  in.EnumOr ("OffsetUserPerspective", instrument.OffsetUserPerspective, DBCONFIG_OffsetAutomatic);
}

void ReadStation (FieldReader& in, db_TotalStation& station) {
  in.String ("StationName", station.StationName);
  double height = 0.0;
  in.Double ("TheodoliteHt", height);
  in.EnumOr ("MeasurementMethod", station.MeasurementMethod, TrueVertical);
  in.DoubleOr ("RawTheodoliteHt", station.RawTheodoliteHt, height);
  in.DoubleOr ("HorizontalOffset", station.HorizontalOffset, 0.0);
  in.DoubleOr ("VerticalOffset", station.VerticalOffset, 0.0);
  in.Hex ("Instrument", station.Instrument);
  in.Hex ("Atmosphere", station.Atmosphere);
  in.IntOr ("NumberOfBacksightObservations", station.NumberOfBacksightObservations, 1);
  in.IntOr ("NumberOfUniqueBacksights", station.NumberOfUniqueBacksights, 1);
  in.DoubleOr ("ScaleFactor", station.ScaleFactor, 1.0);
  in.EnumOr ("ScaleType", station.ScaleType, TOTAL_ScaleFixed);
  in.Double ("ScaleFactorStdError", station.ScaleFactorStdError);
  in.EnumOr ("StationType", station.StationType, TOTAL_UnknownType);
}

// What the target elements have in common. The raw height, where it is absent, is the height
// itself.
void ReadTargetFields (const FieldReader& in, db_Target& target) {
  double height = 0.0;
  in.Double ("TargetHeight", height);
  in.EnumOr ("MeasurementMethod", target.MeasurementMethod, TrueVertical);
  in.DoubleOr ("RawTargetHeight", target.RawTargetHeight, height);
  in.DoubleOr ("HorizontalOffset", target.HorizontalOffset, 0.0);
  in.DoubleOr ("VerticalOffset", target.VerticalOffset, 0.0);
  in.EnumOr ("PrismType", target.PrismType, TOTAL_UnknownPrism);
  in.Double ("PrismConstant", target.PrismConstant);
  in.EnumOr ("RMTID", target.RMTID, TOTAL_RMTIDNone);
  in.EnumOr ("ZorvanCheckTargetID", target.ZorvanCheckTargetID, TOTAL_TargetIDCheck_Off);
}

void ReadTarget (FieldReader& in, db_Target& target) {
  in.String ("Name", target.Name);
  if (target.Name.IsEmpty ()) target.Name = "Target 1";
  in.BoolOr ("IsDR", target.IsDR, false);
  ReadTargetFields (in, target);
  in.BoolOr ("IsDualPrism", target.IsDualPrism, false);
}

// The elements of older files whose target has a name by its element.
template <const char* const& name>
void ReadNamedTarget (FieldReader& in, db_Target& target) {
  target.Name = name;
  ReadTargetFields (in, target);
}
constexpr const char* FirstTarget = "Target 1";
constexpr const char* SecondTarget = "Target 2";
constexpr const char* ComputedTarget = "Target (computed)";

void ReadTSReading (FieldReader& in, db_TSReading& tsReading) {
  in.Bool ("ViewBeforeStorage", tsReading.ViewBeforeStorage);
  in.Int ("AutoPointIncr", tsReading.AutoPointIncr);
  in.Enum ("DisplayPointType", tsReading.DisplayPointType);
  in.EnumOr ("OffsetUserPerspective", tsReading.OffsetUserPerspective, DBCONFIG_OffsetAutomatic);
}

void ReadIntegratedTarget (FieldReader& in, db_IntegratedTarget& integratedTarget) {
  in.BoolOr ("UsingISRoverPole", integratedTarget.UsingISRoverPole, false);
  in.Double ("OffsetFromCenterOfPrismToAntenna", integratedTarget.OffsetFromCenterOfPrismToAntenna);
}

void ReadMeterological (FieldReader& in, db_Meterological& meterological) {
  in.Double ("Pressure", meterological.Pressure);
  in.Double ("DryBulbTemperature", meterological.DryBulbTemperature);
  in.Double ("WetBulbTemperature", meterological.WetBulbTemperature);
  in.Double ("RelativeHumidity", meterological.RelativeHumidity);
}

constexpr Conversion conversions[] = {
    {"DATABASE_AtmosphereRecord", "db_TotalAtmosphere", Convert<ReadAtmosphere>},
    {"DATABASE_BackBearingRecord", "db_TotalBackBearing", Convert<ReadBackBearing>},
    {"DATABASE_InstrumentRecord", "db_TotalInstrument", Convert<ReadInstrument>},
    {"DATABASE_StationRecord", "db_TotalStation", Convert<ReadStation>},
    {"DATABASE_TargetRecord", "db_Target", Convert<ReadTarget>},
    {"DATABASE_Target1Record", "db_TotalTarget1", Convert<ReadNamedTarget<FirstTarget>>},
    {"DATABASE_Target2Record", "db_TotalTarget2", Convert<ReadNamedTarget<SecondTarget>>},
    {"DATABASE_TargetSystemRecord", "db_TotalTargetSystem",
     Convert<ReadNamedTarget<ComputedTarget>>},
    {"DATABASE_TSReadingRecord", "db_TSReading", Convert<ReadTSReading>},
    {"DATABASE_IntegratedTargetRecord", "db_IntegratedTarget", Convert<ReadIntegratedTarget>},
    {"DATABASE_MeterologicalRecord", "db_Meterological", Convert<ReadMeterological>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> StationConversions () noexcept { return conversions; }

}  // namespace clxml
