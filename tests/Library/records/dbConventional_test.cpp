// Records of conventional surveys: heights of marks and odd first values.
// Leans on GoogleTest and dbConventional.
#include "Library/records/dbConventional.h"

#include <cmath>
#include <limits>
#include <string>

#include "Library/records/record_fields.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

TEST (TrueHeight, FollowsTheMethod) {
  struct Case {
    const char* name;
    double raw;
    total_TargetHeightMethod method;
    double horizontal, vertical;
    double expected;
  };
  const Case cases[] = {
      {"vertical", 1.5, TrueVertical, 0.0, 0.0, 1.5},
      {"vertical, offsets do not count", 1.5, TrueVertical, 0.091, 0.158, 1.5},
      {"vertical, none", MATHS_Null, TrueVertical, 0.0, 0.0, MATHS_Null},
      {"notch", 1.5, ZorvanBottomNotch, 0.091, 0.158, 1.6552371},  // by hand
      {"notch, a 3-4-5 triangle", 5.0, ZorvanBottomNotch, 3.0, 1.0, 5.0},
      {"notch, none", MATHS_Null, ZorvanBottomNotch, 0.091, 0.158, MATHS_Null},
      {"notch without horizontal", 1.5, ZorvanBottomNotch, MATHS_Null, 0.158, MATHS_Null},
      {"notch without vertical", 1.5, ZorvanBottomNotch, 0.091, MATHS_Null, MATHS_Null},
      {"notch, as long as the offset", 0.091, ZorvanBottomNotch, 0.091, 0.158, 0.158},
      {"notch, too short", 0.05, ZorvanBottomNotch, 0.091, 0.158, MATHS_Null},
      {"notch, no number", std::numeric_limits<double>::quiet_NaN (), ZorvanBottomNotch, 0.0, 0.0,
       MATHS_Null},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE (c.name);
    db_Target target;
    target.RawTargetHeight = c.raw;
    target.MeasurementMethod = c.method;
    target.HorizontalOffset = c.horizontal;
    target.VerticalOffset = c.vertical;
    db_TotalStation station;
    station.RawTheodoliteHt = c.raw;
    station.MeasurementMethod = c.method;
    station.HorizontalOffset = c.horizontal;
    station.VerticalOffset = c.vertical;
    EXPECT_EQ (maths_IsNull (target.TargetHeight ()), maths_IsNull (c.expected));
    EXPECT_NEAR (target.TargetHeight (), c.expected, 5e-8);  // the digits given above
    EXPECT_EQ (station.TheodoliteHt (), target.TargetHeight ());
  }
}

TEST (ConventionalRecords, AreKnownByTheirPoints) {
  db_TotalBackBearing bearing;
  bearing.Station = "S1";
  bearing.BackSight = "B1";
  EXPECT_STREQ (bearing.GetName (), "S1");
  db_TotalStation station;
  station.StationName = "S1";
  EXPECT_STREQ (station.GetName (), "S1");
  db_Target target;
  target.Name = "Target 1";
  EXPECT_STREQ (target.GetName (), "Target 1");
  db_LaserBasePoint base;
  base.TheName = "L1";
  EXPECT_STREQ (base.GetName (), "L1");
}

TEST (ConventionalRecords, StoreEnumerationsInTheWidthOfTheField) {
  db_Target target;
  target.PrismType = TOTAL_UnknownPrism;
  target.RMTID = TOTAL_RMTID8;
  // Name, IsDR, three doubles around the method, then the prism.
  EXPECT_EQ (
      FieldBytes (target),
      Hex ("00 00 A0 C8 EB 85 F3 CC E1 7F 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
           "FF FF FF FF 00 00 00 00 00 00 00 00 09 00 00 00 00 00 00 00 00"));

  db_LaserConfig laser;
  laser.LaserType = DBLASER_DistoPlus;
  laser.Port = RS232_COM10;
  laser.Features = DBLASER_HasEDM | DBLASER_SupportsBluetooth;
  laser.DistancePrecision = laser.AzimuthPrecision = laser.InclinePrecision = 0.0;
  EXPECT_EQ (FieldBytes (laser),
             Hex ("0E 00 09 C0 12 00 00 08 00 00 00 01 00 00 00 00 00 22 00 00 00 00 00 "
                  "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
}

TEST (ConventionalRecords, KeepNumbersThatHaveNoWord) {
  Hearing hearing;
  db_TotalInstrument instrument;
  instrument.Type = static_cast<total_InstrumentType> (999);
  instrument.OffsetUserPerspective = static_cast<dbconfig_OffsetPerspectiveMode> (-7);
  const auto body = BodyOf (instrument);
  const auto loaded = RecordOfBody (body);
  ASSERT_NE (loaded, nullptr);
  EXPECT_EQ (db_TotalInstrument::From (loaded.get ())->Type, 999);
  EXPECT_EQ (BodyOf (*loaded), body);
}

}  // namespace
}  // namespace clxml::testing
