// Records of satellite surveys, byte for byte.
// Leans on GoogleTest and dbGPS.
#include "Library/records/dbGPS.h"

#include <string>

#include "Library/records/record_fields.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

TEST (GPSRecords, OfRoverAndBaseShareTheirForm) {
  db_RoverSurvey rover;
  db_BaseSurvey base;
  EXPECT_TRUE (rover.IsRover ());
  EXPECT_FALSE (base.IsRover ());
  static_cast<db_Survey&> (base) = rover;
  EXPECT_EQ (FieldBytes (base), FieldBytes (rover));
  EXPECT_EQ (base.GetType (), DATABASE_BaseSurveyRecord);

  db_RoverRadio roverRadio;
  db_BaseRadio baseRadio;
  EXPECT_TRUE (roverRadio.IsRover ());
  EXPECT_FALSE (baseRadio.IsRover ());
  static_cast<db_Radio&> (roverRadio) = baseRadio;
  EXPECT_EQ (FieldBytes (baseRadio), FieldBytes (roverRadio));
}

TEST (GPSRecords, StoreNoStationIndexAsAllOnes) {
  const auto body = BodyOf (db_RoverSurvey ());
  // Behind the head: three enumerations, a byte, the empty name, two doubles, four enumerations,
  // two bytes, an enumeration, a byte.
  const std::size_t place = HeadLength + 6 + 1 + 1 + 16 + 8 + 2 + 2 + 1;
  ASSERT_GT (body.size (), place + 1);
  EXPECT_EQ (body[place], 0xFF);
  EXPECT_EQ (body[place + 1], 0xFF);
}

TEST (GPSRecords, OfTimesAreTheirTimesAlone) {
  db_L2OTFTimes times;
  times.TimeFor4SVs = 2.0;
  times.TimeFor5SVs = times.TimeFor6SVs = 0.0;
  EXPECT_EQ (FieldBytes (times), Hex ("01 0000000000000040 0000000000000000 0000000000000000"));
}

TEST (GPSRecords, AnAntennaTakesAnotherEquipment) {
  Hearing hearing;
  db_Antenna antenna;
  antenna.SetReference (DBID{77});
  EXPECT_EQ (antenna.Equipment, DBID{77});
}

TEST (GPSRecords, ThatMarkAPlaceHaveNothingButTheHead) {
  EXPECT_EQ (FieldBytes (db_Continuous ()), Bytes ());
  EXPECT_EQ (FieldBytes (db_EndContinuous ()), Bytes ());
  EXPECT_EQ (FieldBytes (db_EndSurveyStyle ()), Bytes ());
}

}  // namespace
}  // namespace clxml::testing
