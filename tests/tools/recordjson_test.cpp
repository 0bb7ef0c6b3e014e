// Records as JSON text: every class, and the values that have no plain form.
// Parsed back by an independent reader, which also finds keys that stand twice. Leans on
// GoogleTest, nlohmann-json and the tool's recordjson.
#include "recordjson.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"
#include "Library/records/dbRecord.h"

namespace {

using namespace clxml;
using nlohmann::json;

// The parsed text; a key that stands twice in one object fails the test.
json Parsed (const std::string& text) {
  std::vector<std::set<std::string>> open;
  const auto look = [&] (int, json::parse_event_t event, json& value) {
    if (event == json::parse_event_t::object_start) open.emplace_back ();
    if (event == json::parse_event_t::object_end) open.pop_back ();
    if (event == json::parse_event_t::key) {
      EXPECT_TRUE (open.back ().insert (value.get<std::string> ()).second) << value << "\n" << text;
    }
    return true;
  };
  return json::parse (text, look);
}

json Parsed (const dbRecord_Class& record) {
  std::string text;
  tool::AppendRecord (text, record);
  EXPECT_EQ (text.find ('\n'), std::string::npos);
  return Parsed (text);
}

TEST (RecordJson, EveryClassIsAnObjectWithItsHead) {
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    const std::unique_ptr<dbRecord_Class> record = CreateRecord (type);
    ASSERT_TRUE (record) << type;
    record->RecordId = DBID{4294967295u};
    record->TimeStamp = 984556630.5;
    record->Note = "one\r\ntwo";
    const json object = Parsed (*record);
    EXPECT_EQ (object.at ("type"), ClassName (type));
    EXPECT_EQ (object.at ("id"), 4294967295u) << type;
    EXPECT_EQ (object.at ("time"), 984556630.5) << type;
    EXPECT_EQ (object.at ("note"), "one\r\ntwo") << type;
  }
}

TEST (RecordJson, NumbersWithoutAPlainForm) {
  struct Case {
    double value;
    json expected;
  };
  for (const Case& c :
       {Case{MATHS_Null, nullptr}, Case{std::numeric_limits<double>::infinity (), "inf"},
        Case{-std::numeric_limits<double>::infinity (), "-inf"},
        Case{std::numeric_limits<double>::quiet_NaN (), "nan"}, Case{-0.0, -0.0},
        Case{5e-324, 5e-324}, Case{1.7976931348623157e308, 1.7976931348623157e308},
        Case{0.1, 0.1}}) {
    db_Grid grid;
    grid.North = c.value;
    grid.TimeStamp = c.value;
    const json object = Parsed (grid);
    EXPECT_EQ (object.at ("North"), c.expected);
    EXPECT_EQ (object.at ("time"), c.expected);
  }
}

TEST (RecordJson, NumbersWithoutAWordStayNumbers) {
  db_Observation point;
  point.Method = static_cast<dbentity_PointMethod> (54);
  point.SurveyMethod = static_cast<dbentity_SurveyMethod> (-1);
  point.Classification.value = 9;
  db_PointKeyin keyin;
  keyin.CreatedView = static_cast<coordsys_CogoSettings> (4 | 512);
  EXPECT_EQ (Parsed (point).at ("Method"), 54);
  EXPECT_EQ (Parsed (point).at ("SurveyMethod"), -1);
  EXPECT_EQ (Parsed (point).at ("Classification"), 9);
  EXPECT_EQ (Parsed (keyin).at ("CreatedView"), 516);
  keyin.CreatedView = COORDSYS_CogoAzimuthGrid | COORDSYS_CogoOrthoHeights;
  EXPECT_EQ (Parsed (keyin).at ("CreatedView"),
             json::array ({"COORDSYS_CogoAzimuthGrid", "COORDSYS_CogoOrthoHeights"}));
  keyin.CreatedView = {};
  EXPECT_EQ (Parsed (keyin).at ("CreatedView"), json::array ());
  // Of words with one number the first is told.
  point.Method = static_cast<dbentity_PointMethod> (42);
  EXPECT_EQ (Parsed (point).at ("Method"), "DBENTITY_RemoteObject");
}

TEST (RecordJson, APointHasItsFeaturesAndItsMeasurement) {
  db_Observation point;
  EXPECT_EQ (Parsed (point).at ("measurement"), nullptr);
  EXPECT_EQ (Parsed (point).at ("features"), json::array ());
  Feature feature;
  feature.Code = "TREE";
  feature.Suffix = "12";
  feature.AddMenu ("Species", 3, "Oak");
  feature.AddNumber ("Girth", MATHS_Null);
  Attribute strange;
  strange.Type = 77;
  strange.Name = "?";
  feature.Add (strange);
  point.Features.Append (feature);
  point.Features.Append (Feature ());
  point.SetMeasurement (std::make_unique<db_WGS84> ());
  const json object = Parsed (point);
  EXPECT_EQ (object.at ("measurement").at ("type"), "db_WGS84");
  EXPECT_EQ (object.at ("features"),
             json::parse (R"([{"code": "TREE", "suffix": "12", "attributes": [
                {"name": "Species", "type": "menu", "index": 3, "value": "Oak"},
                {"name": "Girth", "type": "number", "value": null},
                {"name": "?", "type": 77}]},
                {"code": "", "suffix": "", "attributes": []}])"));
}

TEST (RecordJson, TextsAreUtf8WhateverTheirBytes) {
  struct Case {
    std::string bytes;
    std::string expected;
  };
  const std::string bad = "\xEF\xBF\xBD";
  for (const Case& c :
       {Case{"plain", "plain"}, Case{"q\"\\/\b\x7F\x01", "q\"\\/\b\x7F\x01"},
        Case{"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
        Case{"\xFF", bad}, Case{"a\x80z", "a" + bad + "z"}, Case{"\xC0\xAF", bad + bad},
        Case{"\xE2\x82", bad}, Case{"\xE2\x82z", bad + "z"}, Case{"\xE0\x80\x80", bad + bad + bad},
        Case{"\xED\xA0\x80", bad + bad + bad}, Case{"\xF0\x9F\x98", bad},
        Case{"\xF4\x90\x80\x80", bad + bad + bad + bad}, Case{"\xF5", bad},
        Case{"\xEF\xBF\xBF\xF4\x8F\xBF\xBF", "\xEF\xBF\xBF\xF4\x8F\xBF\xBF"}}) {
    std::string text;
    tool::AppendText (text, c.bytes);
    EXPECT_EQ (json::parse (text).get<std::string> (), c.expected) << text;
  }
  // Every pair of bytes, and what follows it is not swallowed.
  for (int first = 1; first < 256; first++)
    for (int second = 1; second < 256; second++) {
      const std::string bytes = {static_cast<char> (first), static_cast<char> (second), '!'};
      std::string text;
      tool::AppendText (text, bytes);
      const json parsed = json::parse (text, nullptr, false);
      ASSERT_FALSE (parsed.is_discarded ()) << first << " " << second;
      EXPECT_EQ (parsed.get<std::string> ().back (), '!') << first << " " << second;
    }
}

TEST (RecordJson, OutsideDataComesAsDigits) {
  db_Foreign foreign;
  foreign.Data = {0x00, 0x7F, 0xFF};
  EXPECT_EQ (Parsed (foreign).at ("Data"), "007fff");
}

}  // namespace
