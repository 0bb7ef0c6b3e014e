// Settings of a job: merging and file lists.
// Leans on GoogleTest and dbSettings.
#include "Library/records/dbSettings.h"

#include <string>
#include <vector>

#include "Library/records/dbCoordSystems.h"
#include "Library/records/record_fields.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

TEST (Units, TakeFromTheDefaultsWhatTheJobHasNotSet) {
  struct Case {
    const char* name;
    void (*clear) (db_Units& units);
  };
  const Case cases[] = {
      {"VerticalUnits", [] (db_Units& u) { u.VerticalUnits = UNITS_None; }},
      {"HorizontalUnits", [] (db_Units& u) { u.HorizontalUnits = UNITS_None; }},
      {"AngleUnits", [] (db_Units& u) { u.AngleUnits = UNITS_None; }},
      {"LatLongUnits", [] (db_Units& u) { u.LatLongUnits = UNITS_None; }},
      {"VelocityUnits", [] (db_Units& u) { u.VelocityUnits = UNITS_None; }},
      {"TemperatureUnits", [] (db_Units& u) { u.TemperatureUnits = UNITS_None; }},
      {"PressureUnits", [] (db_Units& u) { u.PressureUnits = UNITS_None; }},
      {"CoordType", [] (db_Units& u) { u.CoordType = COORD_NullType; }},
      {"Grade", [] (db_Units& u) { u.Grade = UNITS_None; }},
      {"AreaUnits", [] (db_Units& u) { u.AreaUnits = UNITS_None; }},
  };
  db_Units defaults;  // every field another one than a new record's
  defaults.VerticalUnits = defaults.HorizontalUnits = UNITS_USFoot;
  defaults.AngleUnits = defaults.LatLongUnits = UNITS_Gon;
  defaults.VelocityUnits = UNITS_Hours;
  defaults.CoordOrder = DBCONFIG_ENElev;
  defaults.TemperatureUnits = UNITS_Fahrenheit;
  defaults.PressureUnits = UNITS_InchHg;
  defaults.CoordType = COORD_LocalType;
  defaults.Grade = UNITS_RatioRiseRun;
  defaults.AreaUnits = UNITS_Acres;
  defaults.Stationing = DBCONFIG_StationingNULL;
  defaults.DMSAngleDisplay = DBCONFIG_DMSAngleNULL;
  for (const Case& c : cases) {
    SCOPED_TRACE (c.name);
    db_Units units;
    c.clear (units);
    const auto merged = units.MergeDefaults (defaults);
    ASSERT_NE (merged, nullptr);
    for (const auto& [name, value] : FieldLister::Of (*merged)) {
      const dbRecord_Class& source = name == c.name ? defaults : db_Units ();
      EXPECT_EQ (value, FieldLister::Value (source, name)) << name;
    }
  }
  EXPECT_EQ (db_Units ().MergeDefaults (defaults), nullptr) << "nothing to take";
}

TEST (Units, MergeWithNothingButUnits) {
  Hearing hearing;
  db_Units units;
  units.Grade = UNITS_None;
  EXPECT_EQ (units.MergeDefaults (db_Corrections ()), nullptr);
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"fromUnits"});
}

TEST (FileLists, HoldNamesInSlots) {
  Hearing hearing;
  db_BackgroundFileList list;
  EXPECT_FALSE (list.SetFilename (-1, "a"));
  EXPECT_FALSE (list.SetFilename (256, "a"));
  EXPECT_TRUE (FieldLister::Of (list).empty ());
  EXPECT_TRUE (list.SetFilename (255, "last.dxf"));
  EXPECT_TRUE (list.SetFilename (0, "first.dxf"));
  EXPECT_TRUE (list.SetFilename (7, "gone.dxf"));
  EXPECT_TRUE (list.SetFilename (7, ""));
  EXPECT_EQ (FieldLister::Of (list),
             (std::vector<std::pair<std::string, std::string>>{{"Filenames[0]", "'first.dxf'"},
                                                               {"Filenames[255]", "'last.dxf'"}}));
}

}  // namespace
}  // namespace clxml::testing
