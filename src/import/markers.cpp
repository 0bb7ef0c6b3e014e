// Conversions of the records that mark a place in the job.
// Leans on the conversion frame.
#include "Library/records/dbGPS.h"
#include "Library/records/dbMeasurements.h"
#include "import/conversion.h"

namespace clxml {

namespace {

void ReadStartRound (FieldReader& in, db_StartRound& startRound) {
  in.IntOrHex ("Round", startRound.Round);
}

constexpr Conversion conversions[] = {
    {"DATABASE_StartRoundsRecord", "db_StartRounds", Convert<ReadNothing<db_StartRounds>>},
    {"DATABASE_StartRoundRecord", "db_StartRound", Convert<ReadStartRound>},
    {"DATABASE_EndRoundRecord", "db_EndRound", Convert<ReadNothing<db_EndRound>>},
    {"DATABASE_EndRoundsRecord", "db_EndRounds", Convert<ReadNothing<db_EndRounds>>},
    {"DATABASE_EndContinuousRecord", "db_EndContinuous", Convert<ReadNothing<db_EndContinuous>>},
    {"DATABASE_EndStyleRecord", "db_EndSurveyStyle", Convert<ReadNothing<db_EndSurveyStyle>>},
    {"DATABASE_ContinuousRecord", "db_Continuous", Convert<ReadNothing<db_Continuous>>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> MarkerConversions () noexcept { return conversions; }

}  // namespace clxml
