// Conversions of observations that are offset from the point, and of the laser rangefinder.
// An offset that stands in front of its point waits for the point's measurement. Leans on the
// conversion frame.
#include "Library/records/dbConventional.h"
#include "import/conversion.h"

namespace clxml {

namespace {

// The single offset of older files: a direction and a distance.
void ReadOldOffset (const FieldReader& in, db_DistanceOffset& offset) {
  offset.LeftRightOffset.Distance = 0.0;
  offset.InOutOffset.Distance = 0.0;
  offset.DownUpOffset.Distance = 0.0;
  const std::string_view direction = in.Text ("Direction");
  double distance = 0.0;
  in.DoubleOr ("Distance", distance, 0.0);
  const bool isNegative = direction == "DBTYPE_Left" || direction == "DBTYPE_In";
  if (isNegative && !maths_IsNull (distance)) distance = -distance;
  if (direction == "DBTYPE_Left" || direction == "DBTYPE_Right") {
    offset.LeftRightOffset.Distance = distance;
  } else if (direction == "DBTYPE_In" || direction == "DBTYPE_Out") {
    offset.InOutOffset.Distance = distance;
  }
}

void ReadDistanceOffset (FieldReader& in, db_DistanceOffset& offset) {
  in.RawObservation ("RawObservation", offset.RawObservation, From (1100));
  in.RawObservation ("Circle", offset.RawObservation, Below (1100));
  in.DoubleOr ("LeftRightOffset", offset.LeftRightOffset.Distance, 0.0, From (1130));
  in.DoubleOr ("InOutOffset", offset.InOutOffset.Distance, 0.0, From (1130));
  in.DoubleOr ("DownUpOffset", offset.DownUpOffset.Distance, 0.0, From (1130));
  in.EnumOr ("DisplayOffsetPerspective", offset.DisplayOffsetPerspective,
             DBCONFIG_OffsetFromInstrument, From (1130));
  if (in.Version () < 1130) ReadOldOffset (in, offset);
}

void ConvertDistanceOffset (WriteJobControl& job, const xml_element& element, const char* rec) {
  auto offset = std::make_unique<db_DistanceOffset> ();
  FieldReader in (&element, job.Version ());
  in.Note (offset->Note);
  ReadDistanceOffset (in, *offset);
  CheckRec (element, rec);
  if (job.IsEntityOpen ()) {
    job.StoreRecord (element, std::move (offset));
  } else {
    job.HoldOffset (element, std::move (offset));
  }
}

void ReadDualPrismOffset (FieldReader& in, db_DualPrismOffset& dualPrismOffset) {
  in.RawObservation ("PrismAObservation", dualPrismOffset.PrismAObservation);
  in.RawObservation ("PrismBObservation", dualPrismOffset.PrismBObservation);
  in.Double ("PrismConstantA", dualPrismOffset.PrismConstantA);
  in.Double ("PrismConstantB", dualPrismOffset.PrismConstantB);
  in.Double ("DistanceAB", dualPrismOffset.DistanceAB);
  in.Double ("DistanceBC", dualPrismOffset.DistanceBC);
  in.Double ("CalculatedDistanceAB", dualPrismOffset.CalculatedDistanceAB);
}

void ReadCircularObject (FieldReader& in, db_CircularObject& circularObject) {
  in.RawObservation ("FirstRawObservation", circularObject.FirstRawObservation);
  in.RawObservation ("SecondRawObservation", circularObject.SecondRawObservation);
  in.Double ("Radius", circularObject.Radius);
}

void ReadRemoteObject (FieldReader& in, db_RemoteObject& remoteObject) {
  in.RawObservation ("RawObservation", remoteObject.RawObservation);
  in.Double ("ObjectHeight", remoteObject.ObjectHeight);
  in.Double ("ObjectWidth", remoteObject.ObjectWidth);
  in.String ("ROBasePointName", remoteObject.ROBasePointName);
  in.Hex ("ROBasePointID", remoteObject.ROBasePointID);
}

void ReadAngleOffset (FieldReader& in, db_AngleOffset& angleOffset) {
  in.RawObservation ("FirstRawObservation", angleOffset.FirstRawObservation);
  in.RawObservation ("SecondRawObservation", angleOffset.SecondRawObservation);
}

void ReadLaserBasePoint (FieldReader& in, db_LaserBasePoint& laserBasePoint) {
  in.String ("TheName", laserBasePoint.TheName);
}

void ReadLaserHeight (FieldReader& in, db_LaserHeight& laserHeight) {
  in.Double ("Height", laserHeight.Height);
}

void ReadLaserTargetHeight (FieldReader& in, db_LaserTargetHeight& laserTargetHeight) {
  in.Double ("Height", laserTargetHeight.Height);
}

void ReadLaserConfig (FieldReader& in, db_LaserConfig& laserConfig) {
  in.Enum ("LaserType", laserConfig.LaserType);
  in.Enum ("Port", laserConfig.Port);
  in.IntOrHex ("BaudRate", laserConfig.BaudRate);
  in.Int ("DataBits", laserConfig.DataBits);
  in.Int ("StopBits", laserConfig.StopBits);
  in.Enum ("Parity", laserConfig.Parity);
  in.Flags ("Features", laserConfig.Features);
  in.Bool ("UseFireCommand", laserConfig.UseFireCommand);
  in.Bool ("AutoStore", laserConfig.AutoStore);
  in.Double ("DistancePrecision", laserConfig.DistancePrecision);
  in.Double ("AzimuthPrecision", laserConfig.AzimuthPrecision);
  in.Double ("InclinePrecision", laserConfig.InclinePrecision);
}

constexpr Conversion conversions[] = {
    {"DATABASE_DistanceOffsetRecord", "db_DistanceOffset", ConvertDistanceOffset},
    {"DATABASE_DualPrismOffsetRecord", "db_DualPrismOffset", Convert<ReadDualPrismOffset>},
    {"DATABASE_CircularObjectRecord", "db_CircularObject", Convert<ReadCircularObject>},
    {"DATABASE_RemoteObjectRecord", "db_RemoteObject", Convert<ReadRemoteObject>},
    {"DATABASE_AngleOffsetRecord", "db_AngleOffset", Convert<ReadAngleOffset>},
    {"DATABASE_LaserBasePointRecord", "db_LaserBasePoint", Convert<ReadLaserBasePoint>},
    {"DATABASE_LaserHeightRecord", "db_LaserHeight", Convert<ReadLaserHeight>},
    {"DATABASE_LaserTargetHeightRecord", "db_LaserTargetHeight", Convert<ReadLaserTargetHeight>},
    {"DATABASE_LaserConfigRecord", "db_LaserConfig", Convert<ReadLaserConfig>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> OffsetConversions () noexcept { return conversions; }

}  // namespace clxml
