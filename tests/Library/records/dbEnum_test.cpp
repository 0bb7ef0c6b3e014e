// Enumerations: every word and number there and back.
// Leans on GoogleTest and dbEnum.
#include "Library/records/dbEnum.h"

#include <map>
#include <set>
#include <string>
#include <vector>

#include "Library/records/dbRecord.h"
#include "Library/records/record_fields.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

// The enumerations that no record stores in a field of its own.
std::map<std::string_view, const Enumeration*> UnstoredTables () {
  std::map<std::string_view, const Enumeration*> tables;
  for (const Enumeration* table :
       {&EnumerationOf<dbcl_TimeDerivation> (), &EnumerationOf<dbconfig_FaceOrder> (),
        &EnumerationOf<dbconfig_ObservationOrder> (), &EnumerationOf<dbgps_ConnectionType> (),
        &EnumerationOf<dbgps_InternetBaseMode> (), &EnumerationOf<dbgps_OnOff> (),
        &EnumerationOf<dbroad_KeyinArcMethod> (), &EnumerationOf<dbroad_KeyinSpiralMethod> (),
        &EnumerationOf<dbroad_KeyinStraightMethod> (), &EnumerationOf<dbroad_Pivot> (),
        &EnumerationOf<dbroad_StartMethod> (), &EnumerationOf<dbroad_TemplateMethod> (),
        &EnumerationOf<dbroad_VerticalKeyinMethod> (),
        &EnumerationOf<load_legacy_dbentity_Classification> ()})
    tables[table->name] = table;
  return tables;
}

// Those, and all that the fields of the records have.
std::map<std::string_view, const Enumeration*> AllTables () {
  std::map<std::string_view, const Enumeration*> tables = UnstoredTables ();
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    FieldLister lister;
    const auto record = CreateRecord (type);
    if (record) record->Look (lister);
    tables.insert (lister.tables.begin (), lister.tables.end ());
  }
  return tables;
}

TEST (Enumerations, EveryWordLeadsToItsNumberAndBackToTheFirstWordOfIt) {
  Hearing hearing;
  const auto tables = AllTables ();
  EXPECT_GT (tables.size (), 100u);
  std::set<std::string_view> words;
  for (const auto& [name, table] : tables) {
    SCOPED_TRACE (std::string (name));
    EXPECT_FALSE (table->rows.empty ());
    for (const Enumerator& row : table->rows) {
      SCOPED_TRACE (std::string (row.name));
      EXPECT_TRUE (words.insert (row.name).second) << "one word, two meanings";
      EXPECT_EQ (row.name.find_first_not_of ("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                             "0123456789_"),
                 std::string_view::npos);
      int32_t number = -99;
      ASSERT_TRUE (EnumFromText (*table, row.name, number));
      EXPECT_EQ (number, row.number);
      const std::string_view back = EnumToText (*table, number);
      int32_t again = -99;
      ASSERT_TRUE (EnumFromText (*table, back, again));
      EXPECT_EQ (again, number);
      EXPECT_LE (back.data (), row.name.data ()) << "a later synonym";
    }
  }
}

TEST (Enumerations, WordsHaveTheirNumbers) {
  struct Case {
    const Enumeration& table;
    std::string_view word;
    int32_t number;
    std::string_view back;
  };
  const Case cases[] = {
      {EnumerationOf<coord_Type> (), "COORD_AsStoredType", 19, "COORD_AsStoredType"},
      {EnumerationOf<coordsys_GroundScaleFactorType> (), "COORDSYS_NoGroundScaleFactor", 0,
       "COORDSYS_GridScaleFactor"},
      {EnumerationOf<dbcl_PositioningTechnology> (), "DBCL_TS", 1, "DBCL_Conventional"},
      {EnumerationOf<dbconfig_DMSAngleDisplay> (), "DBCONFIG_HAVAAngleNULL", 2,
       "DBCONFIG_DMSAngleNULL"},
      {EnumerationOf<dbconfig_TSStakeViewMode> (), "DBCONFIG_TSStakeMapView", 0,
       "DBCONFIG_TSStakeDirectionAndDistanceView"},
      {EnumerationOf<dbentity_PointMethod> (), "DBENTITY_ReflineSetup", 53,
       "DBENTITY_ReflineSetup"},
      {EnumerationOf<dbentity_PointMethod> (), "DBENTITY_GpsContOffsetRightPt", 29,
       "DBENTITY_GpsContOffsetPt2"},
      {EnumerationOf<dbgps_RadioType> (), "DBGPS_LBRS", 18, "DBGPS_NorvathL"},
      {EnumerationOf<dbgps_RTKRecordType> (), "DBGPS_NetworkCMRNet", 13, "DBGPS_NetworkCMRNet"},
      {EnumerationOf<dbroad_VerticalKeyinMethod> (), "VerticalKeyin_EndPoints", 1,
       "VerticalKeyin_EndPoints"},
      {EnumerationOf<folder_Enum> (), "folder_Unknown", -1, "folder_Unknown"},
      {EnumerationOf<folder_Enum> (), "folder_Email", 9, "folder_Email"},
      {EnumerationOf<load_legacy_dbentity_Classification> (), "DBENTITY_Normal", 4,
       "DBENTITY_DeletedNormal"},
      {EnumerationOf<total_InstrumentType> (), "TOTAL_Null", 37, "TOTAL_Null"},
      {EnumerationOf<total_InstrumentType> (), "TOTAL_Zorvan", 0, "TOTAL_Zorvan"},
      {EnumerationOf<total_PrismTypes> (), "TOTAL_UnknownPrism", -1, "TOTAL_UnknownPrism"},
      {EnumerationOf<total_RMTIDs> (), "RMTID_6", 7, "TOTAL_RMTID6"},
      {EnumerationOf<total_TargetHeightMethod> (), "ZorvanBottomNotch", 1, "ZorvanBottomNotch"},
      {EnumerationOf<units_Type> (), "UNITS_None", 46, "UNITS_None"},
  };
  Hearing hearing;
  for (const Case& c : cases) {
    SCOPED_TRACE (std::string (c.word));
    int32_t number = -99;
    EXPECT_TRUE (EnumFromText (c.table, c.word, number));
    EXPECT_EQ (number, c.number);
    EXPECT_EQ (std::string_view (EnumToText (c.table, number)), c.back);
  }
}

TEST (Enumerations, AWordCountsOnlyLetterForLetter) {
  const Enumeration& table = EnumerationOf<dbentity_ArcMethod> ();
  for (const char* text : {"", "x", "dbentity_threepoints", "DBENTITY_ThreePoint",
                           "DBENTITY_ThreePoints ", " DBENTITY_ThreePoints", "5"}) {
    SCOPED_TRACE (text);
    int32_t number = 77;
    EXPECT_FALSE (EnumFromText (table, text, number));
    EXPECT_EQ (number, 77);
  }
}

TEST (Enumerations, ANumberWithoutAWordIsAssertedAndGivesNoText) {
  Hearing hearing;
  EXPECT_STREQ (EnumToText (EnumerationOf<rs232_Ports> (), 11), "");
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"!\"improper rs232_Ports\""});
  EXPECT_EQ (FindEnumText (EnumerationOf<rs232_Ports> (), 11), nullptr);
  EXPECT_EQ (FindEnumText (EnumerationOf<total_InstrumentType> (), -1), nullptr);
}

TEST (FlagSets, AreReadWordByWord) {
  struct Case {
    const char* name;
    const Enumeration& table;
    std::string_view text;
    int32_t number;
  };
  const Enumeration& cogo = EnumerationOf<coordsys_CogoSettings> ();
  const Case cases[] = {
      {"none", cogo, "", 0},
      {"blanks only", cogo, "   ", 0},
      {"two", cogo, "COORDSYS_CogoAzimuthGrid COORDSYS_CogoOrthoHeights", 2052},
      {"much room", cogo, "  COORDSYS_CogoAzimuthGrid    COORDSYS_CogoOrthoHeights ", 2052},
      {"one twice", cogo, "COORDSYS_CogoAzimuthLocal COORDSYS_CogoAzimuthLocal", 2},
      {"words without a bit", cogo,
       "COORDSYS_CogoSystemSet COORDSYS_CogoCurveDistances COORDSYS_CogoDistanceGrid "
       "COORDSYS_CogoChordDistances",
       32},
      {"laser", EnumerationOf<dblaser_Features> (), "DBLASER_SupportsBluetooth DBLASER_HasEDM", 34},
  };
  Hearing hearing;
  for (const Case& c : cases) {
    SCOPED_TRACE (c.name);
    EXPECT_TRUE (c.table.isFlags);
    int32_t number = -1;
    std::string_view unknown;
    EXPECT_TRUE (FlagsFromText (c.table, c.text, number, unknown));
    EXPECT_EQ (number, c.number);
  }
}

TEST (FlagSets, NameTheWordTheyDoNotKnow) {
  int32_t number = 5;
  std::string_view unknown;
  EXPECT_FALSE (FlagsFromText (EnumerationOf<dblaser_Features> (),
                               "DBLASER_HasEDM DBLASER_HasLamp DBLASER_HasHorn", number, unknown));
  EXPECT_EQ (unknown, "DBLASER_HasLamp");
  EXPECT_EQ (number, 5);
}

TEST (FlagSets, AreWrittenInTheOrderOfTheTable) {
  Hearing hearing;
  const Enumeration& cogo = EnumerationOf<coordsys_CogoSettings> ();
  EXPECT_EQ (FlagsToText (cogo, 0), "");
  EXPECT_EQ (FlagsToText (cogo, COORDSYS_CogoOrthoHeights | COORDSYS_CogoAzimuthGrid),
             "COORDSYS_CogoAzimuthGrid COORDSYS_CogoOrthoHeights");
  EXPECT_EQ (FlagsToText (cogo, 4 + 256), "");
  EXPECT_EQ (hearing.TakeAssertions (),
             std::vector<std::string>{"!\"improper coordsys_CogoSettings\""});
}

}  // namespace
}  // namespace clxml::testing
