// Conversions of measurements: the position data of an observation.
// Each attaches to the observation whose entity is open. Leans on the conversion frame.
#include "Library/records/dbMeasurements.h"

#include "import/conversion.h"

namespace clxml {

namespace {

void ReadECEFDeltas (FieldReader& in, db_ECEFDeltas& deltas) {
  in.DeltasXYZ ("ECEFDeltas", deltas);
  in.Hex ("Reference", deltas.Reference);
  in.Hex ("Antenna", deltas.Antenna);
}

void ReadECEF (FieldReader& in, db_ECEF& position) {
  in.XYZ ("ECEF", position);
  in.Hex ("Antenna", position.Antenna);
}

void ReadECEFGround (FieldReader& in, db_ECEFGround& position) { in.XYZ ("ECEFGround", position); }
void ReadWGS84 (FieldReader& in, db_WGS84& position) { in.LLH ("WGS84", position); }
void ReadLocal (FieldReader& in, db_Local& position) { in.LLH ("Local", position); }
void ReadGrid (FieldReader& in, db_Grid& position) { in.NEE ("Grid", position); }

void ReadPolarRecord (FieldReader& in, db_Polar& polar) {
  in.String ("SourcePoint", polar.SourcePoint);
  in.Polar ("Polar", polar);
  in.Flags ("CreatedView", polar.CreatedView);
}

void ReadLaserOffset (FieldReader& in, db_LaserOffset& laser) {
  const FieldReader offset = in.Group ("LaserOffset");
  offset.Double ("Azimuth", laser.Azimuth);
  offset.Double ("VertAngle", laser.VertAngle);
  offset.Double ("SlopeDist", laser.SlopeDist, From (1140));
  offset.Double ("SlopeDistance", laser.SlopeDist, Below (1140));
  in.Hex ("BasePoint", laser.BasePoint);
  in.Hex ("LaserHeight", laser.LaserHeight);
  in.Hex ("TargetHeight", laser.TargetHeight);
  in.Hex ("MagneticDeclination", laser.MagneticDeclination);
  in.Flags ("CreatedView", laser.CreatedView);
}

void ReadCircle (FieldReader& in, db_Circle& circle) {
  in.RawObservation ("Circle", circle);
  in.Hex ("Station", circle.Station);
  in.Hex ("Target", circle.Target);
  in.Hex ("BackBearing", circle.BackBearing);
  in.Flags ("CreatedView", circle.CreatedView);
}

void ReadAzimuth (FieldReader& in, db_Azimuth& azimuth) {
  in.String ("SourcePoint", azimuth.SourcePoint);
  in.Double ("Azimuth", azimuth.Azimuth);
  in.Flags ("CreatedView", azimuth.CreatedView);
}

void ReadMeanTurnedAngle (FieldReader& in, db_MeanTurnedAngle& mean) {
  const FieldReader angles = in.Group ("MTA");
  angles.Double ("HorzCircle", mean.HorzCircle);
  angles.Double ("VertCircle", mean.VertCircle);
  angles.Double ("EDMDistance", mean.EDMDistance);
  angles.Double ("HorzCircleStdErr", mean.HorzCircleStdErr);
  angles.Double ("VertCircleStdErr", mean.VertCircleStdErr);
  angles.Double ("EDMDistanceStdErr", mean.EDMDistanceStdErr);
  angles.Int ("NumberOfHAngles", mean.NumberOfHAngles);
  angles.Int ("NumberOfVAngles", mean.NumberOfVAngles);
  angles.Int ("NumberOfDistances", mean.NumberOfDistances);
  in.Hex ("Station", mean.Station);
  in.Hex ("Target", mean.Target);
  in.Hex ("BackBearing", mean.BackBearing);
  in.Flags ("CreatedView", mean.CreatedView);
}

// In the order in which an observation looks for a measurement among its children.
constexpr Conversion conversions[] = {
    {"DATABASE_AzimuthRecord", "db_Azimuth", Convert<ReadAzimuth>},
    {"DATABASE_CircleRecord", "db_Circle", Convert<ReadCircle>},
    {"DATABASE_ECEFRecord", "db_ECEF", Convert<ReadECEF>},
    {"DATABASE_ECEFDeltasRecord", "db_ECEFDeltas", Convert<ReadECEFDeltas>},
    {"DATABASE_ECEFGroundRecord", "db_ECEFGround", Convert<ReadECEFGround>},
    {"DATABASE_GridRecord", "db_Grid", Convert<ReadGrid>},
    {"DATABASE_LaserOffsetRecord", "db_LaserOffset", Convert<ReadLaserOffset>},
    {"DATABASE_LocalRecord", "db_Local", Convert<ReadLocal>},
    {"DATABASE_MeanTurnedAngleRecord", "db_MeanTurnedAngle", Convert<ReadMeanTurnedAngle>},
    {"DATABASE_PolarRecord", "db_Polar", Convert<ReadPolarRecord>},
    {"DATABASE_WGS84Record", "db_WGS84", Convert<ReadWGS84>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> MeasurementConversions () noexcept { return conversions; }

// One walk over the children; of several measurements the one whose row comes first counts.
void ReadMeasurement (WriteJobControl& job, const xml_element& element) {
  const Conversion* best = std::end (conversions);
  const xml_element* measurement = nullptr;
  for (const xml_element* child = element.firstChild; child; child = child->nextSibling) {
    if (!child->name.starts_with ("DATABASE_")) continue;
    for (const Conversion* row = conversions; row != best; row++) {
      if (row->element != child->name) continue;
      best = row;
      measurement = child;
      break;
    }
  }
  if (measurement) best->convert (job, *measurement, best->rec);
}

}  // namespace clxml
