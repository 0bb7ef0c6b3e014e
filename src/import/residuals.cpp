// Conversions of what is left over from computed means and station set-ups, and of precisions.
// The old resection elements make the records of a station set-up. Leans on the conversion frame.
#include "Library/records/dbGPS.h"
#include "Library/records/dbMeasurements.h"
#include "import/conversion.h"

namespace clxml {

namespace {

template <class T>
void ReadAngleResidual (const FieldReader& in, T& residual) {
  in.Double ("HorzCircle", residual.HorzCircle);
  in.Double ("VertCircle", residual.VertCircle);
  in.Double ("SlopeDist", residual.SlopeDist);
  in.EnumOr ("Face", residual.Face, COORD_FaceNull);
}

void ReadMeanTurnedAngleResiduals (FieldReader& in, db_MeanTurnedAngleResiduals& residual) {
  in.String ("PointName", residual.PointName);
  in.Double ("HorzAngResidual", residual.HorzAngResidual);
  in.Double ("VertAngResidual", residual.VertAngResidual);
  in.Double ("SlopeDistResidual", residual.SlopeDistResidual);
  in.Int ("Round", residual.Round);
  in.Hex ("Observation", residual.Observation);
  in.Hex ("MeanTurnedAngle", residual.MeanTurnedAngle);
}

void ReadStationSetupResidual (FieldReader& in, db_StationSetupResiduals& residual) {
  in.DerivationCode ("Derivation", residual.Derivation);
  in.String ("PointName", residual.PointName);
  in.Enum ("Dimension", residual.Dimension);
  in.NEE ("Grid", residual.Grid);
  in.DeltasNEE ("GridResidual", residual.GridResidual);
  ReadAngleResidual (in.Group ("AngleResidual"), residual.AngleResidual);
  in.Double ("AzimuthResidual", residual.AzimuthResidual);
  in.Double ("LongitudinalDistanceResidual", residual.LongitudinalDistanceResidual);
  in.Double ("OrthogonalDistanceResidual", residual.OrthogonalDistanceResidual);
  in.Double ("RadialDistResidual", residual.RadialDistResidual);
  in.Int ("Round", residual.Round);
  in.BoolOr ("Backsight", residual.Backsight, false);
  in.Hex ("Observation", residual.Observation);
  in.Hex ("MeanTurnedAngle", residual.MeanTurnedAngle);
}

void ReadResectErrors (FieldReader& in, db_ResectErrors& errors) {
  in.DeltasNEE ("Deltas", errors);
}

void ReadGridStdDeviations (FieldReader& in, db_GridStdDeviations& deviations) {
  in.NEE ("StdDev", deviations);
}

void ReadPrecision (FieldReader& in, db_Precision& precision) {
  in.Double ("Horizontal", precision.Horizontal);
  in.Double ("Vertical", precision.Vertical);
}

constexpr Conversion conversions[] = {
    {"DATABASE_MeanTurnedAngleResidualsRecord", "db_MeanTurnedAngleResiduals",
     Convert<ReadMeanTurnedAngleResiduals>},
    {"DATABASE_ResectResidualRecord", "db_ResectResiduals", Convert<ReadStationSetupResidual>},
    {"DATABASE_StationSetupResidualRecord", "db_StationSetupResiduals",
     Convert<ReadStationSetupResidual>},
    {"DATABASE_ResectErrorsRecord", "db_ResectErrors", Convert<ReadResectErrors>},
    {"DATABASE_ResectBeginRecord", "db_ResectBegin",
     Convert<ReadNothing<db_StationSetupResidualsBegin>>},
    {"DATABASE_StationSetupResidualsBeginRecord", "db_StationSetupResidualsBegin",
     Convert<ReadNothing<db_StationSetupResidualsBegin>>},
    {"DATABASE_MeanTurnedAngleResidualsBeginRecord", "db_MeanTurnedAngleResidualsBegin",
     Convert<ReadNothing<db_MeanTurnedAngleResidualsBegin>>},
    {"DATABASE_GridStdDeviationsRecord", "db_GridStdDeviations", Convert<ReadGridStdDeviations>},
    {"DATABASE_PrecisionRecord", "db_Precision", Convert<ReadPrecision>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> ResidualConversions () noexcept { return conversions; }

}  // namespace clxml
