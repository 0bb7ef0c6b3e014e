// Tests of the stored forms of point and measurement records.
// Bodies written out by hand, and what a new record holds. Leans on record_support.
#include "Library/records/dbPoints.h"

#include <gtest/gtest.h>

#include "Library/records/dbMeasurements.h"
#include "Library/records/record_support.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

constexpr char Null[] = "A0C8EB85F3CCE17F";
constexpr char One[] = "000000000000F03F";
constexpr char Zero[] = "0000000000000000";

// A record of that id, made at second 1, with an empty note.
template <class T>
T Made (uint32_t id) {
  T record;
  record.RecordId.value = id;
  record.TimeStamp = 1.0;
  return record;
}

void ExpectBody (const dbRecord_Class& record, const std::string& expected) {
  EXPECT_EQ (BodyOf (record), Hex (expected)) << ClassName (record.GetType ());
}

std::string Head (const char* type) { return std::string (type) + "01000000" + One + "00"; }

TEST (PointRecords, BodiesByteForByte) {
  auto note = Made<db_Note> (0x01020304);
  note.Note = "ab";
  EXPECT_EQ (BodyOf (note).size (), 17u);
  ExpectBody (note, std::string ("0100 04030201") + One + "'ab' 00");

  auto header = Made<db_JobHeader> (1);
  header.JobName = "1234567890123456789012345678901234567890";
  ExpectBody (header, Head ("0000") + "'123456789012345678901234567890123'");
  header.JobName = "Job";
  ExpectBody (header, Head ("0000") + "'Job'" + std::string (60, '0'));

  auto point = Made<db_Observation> (1);
  point.PointName = "P1";
  point.Description2 = "d";
  point.Derivation = {'K', 'I'};
  point.Method = DBENTITY_ReflineSetup;
  point.SurveyMethod = DBENTITY_NetworkFix;
  point.Classification = db_PointClassification::None;
  point.Deleted = 1;
  point.SetFeatures ("FENCE12", true);
  point.Features.At (0).AddMenu ("m", 2, "t");
  point.Features.At (0).AddSeparator ("s");
  ExpectBody (point, Head ("0200") +
                         "01000000 '12' 00 'FENCE' 00 02000000"
                         "0200 'm' 00 0200 't' 00   0600 's' 00"
                         "00 'd' 00   'P1' 00 'KI' 3500 0900 FFFF 01");

  auto line = Made<db_Line> (1);
  line.LineId = "L";
  line.BearingGrade = MATHS_Null;
  ExpectBody (line,
              Head ("0300") + "00000000 00 00 'L' 00 2020 0000 00 00" + Zero + Zero + Null + "00");

  ExpectBody (Made<db_EndEntity> (1), Head ("1A00"));
  ExpectBody (Made<db_Area> (1), Head ("4B00") + "0000 0000" + Zero + Zero);
  auto area = Made<db_Area> (1);
  area.ListOfPoints.Add ("A");
  area.ListOfPoints.Add ("");
  area.NumberOfPoints = 2;
  area.Method = COORDSYS_CogoDistanceGrid;
  ExpectBody (area, Head ("4B00") + "0200 2000" + Zero + Zero + "'A' 00 00");

  auto traverse = Made<db_Traverse> (1);
  traverse.TraverseName = "T";
  const std::string fields = Head ("6D00") + "'T' 00 'TV' 00 00" + Zero + "00 00" + Zero + "00";
  ExpectBody (traverse, fields + "00");
  for (const char* name : {"S1", "", "S2"}) traverse.ListOfStations.Add (name);
  ExpectBody (traverse, fields + "'S1' 00 'S2' 00 00");

  auto closure = Made<db_TraverseClosure> (1);
  closure.TraversePtr.value = 258;
  closure.Results = DBENTITY_Adjusted;
  closure.TraverseLegs.resize (1);
  closure.TraverseLegs[0].ToPt = "B";
  closure.TraverseLegs[0].Polar.HDist = 1.0;
  ExpectBody (closure, Head ("6E00") + "02010000" + Zero + Zero + Zero + Zero + Zero + Zero + Zero +
                           "0200 0100  00 'B' 00" + Zero + One + Zero);

  auto foreign = Made<db_Foreign> (1);
  foreign.Name = "n";
  foreign.Data = {1, 0, 255};
  ExpectBody (foreign, Head ("8800") + "'n' 00 03000000 0100FF");

  auto grid = Made<db_Grid> (1);
  grid.East = 1.0;
  ExpectBody (grid, Head ("0D00") + Null + One + Zero);

  auto polar = Made<db_Polar> (1);
  polar.CreatedView = COORDSYS_CogoAzimuthGrid | COORDSYS_CogoOrthoHeights;
  ExpectBody (polar, Head ("0E00") + "00" + Zero + Zero + Zero + "0408");
  ExpectBody (Made<db_Inverse> (1),
              Head ("0500") + "00 00" + Null + Null + Null + "0000" + Null + Null);
}

TEST (PointRecords, WhatANameOrListMustBeWhenSaved) {
  Hearing hearing;
  const auto heard = [&] (const dbRecord_Class& record) {
    BodyOf (record);
    return hearing.TakeAssertions ();
  };
  using Texts = std::vector<std::string>;
  EXPECT_EQ (heard (db_Observation ()), Texts{"this->PointName.Length() > 0"});
  EXPECT_EQ (heard (db_Line ()), Texts{"this->LineId.Length() > 0"});
  EXPECT_EQ (heard (db_Arc ()), Texts{"this->ArcName.Length() > 0"});
  EXPECT_EQ (heard (db_Traverse ()), Texts{"this->TraverseName.Length() > 0"});

  // The body stays one that reads back, whatever the count says.
  for (const uint16_t count : {uint16_t{0}, uint16_t{3}}) {
    db_Area area;
    area.ListOfPoints.Add ("A");
    area.NumberOfPoints = count;
    const Bytes body = BodyOf (area);
    EXPECT_EQ (hearing.TakeAssertions (), Texts{"ListOfPoints.Count () == NumberOfPoints"});
    const auto read = RecordOfBody (body);
    ASSERT_NE (read, nullptr);
    EXPECT_EQ (db_Area::From (read.get ())->ListOfPoints.Count (), count);
  }
  db_TraverseClosure closure;
  closure.TraverseLegs.resize (32768);
  const Bytes body = BodyOf (closure);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"list too long"});
  EXPECT_NE (RecordOfBody (body), nullptr);
  EXPECT_FALSE (db_Foreign ().IsEqual (db_Foreign ()));
  EXPECT_EQ (hearing.TakeAssertions ().size (), 1u);
}

TEST (PointRecords, NamesUsersKnowRecordsBy) {
  db_JobHeader header;
  header.JobName = "j";
  db_Observation point;
  point.PointName = "p";
  db_Line line;
  line.LineId = "l";
  db_Arc arc;
  arc.ArcName = "a";
  db_Traverse traverse;
  traverse.TraverseName = "t";
  const dbRecord_Class* const records[] = {&header, &point, &line, &arc, &traverse};
  std::string names;
  for (const dbRecord_Class* record : records) names += record->GetName ();
  EXPECT_EQ (names, "jplat");
  EXPECT_STREQ (db_TimeZone ().GetName (), "");
}

TEST (MeasurementRecords, ReferencesGoWhereTheyBelong) {
  db_ECEFDeltas deltas;
  db_ECEF ecef;
  db_Circle circle;
  db_MeanTurnedAngle angle;
  for (db_Measurement* one : {(db_Measurement*)&deltas, (db_Measurement*)&ecef,
                              (db_Measurement*)&circle, (db_Measurement*)&angle})
    one->SetReference (DBID{9});
  EXPECT_EQ (deltas.Antenna, DBID{9});
  EXPECT_EQ (deltas.Reference, NODBID);
  EXPECT_EQ (ecef.Antenna, DBID{9});
  EXPECT_EQ (circle.Target, DBID{9});
  EXPECT_EQ (circle.Station, NODBID);
  EXPECT_EQ (angle.Target, DBID{9});
}

TEST (MeasurementRecords, FormOfPosition) {
  const struct {
    database_RecordType type;
    coord_Type form;
  } cases[] = {{DATABASE_ECEFDeltasRecord, COORD_ECEFDeltasType},
               {DATABASE_ECEFRecord, COORD_ECEFType},
               {DATABASE_ECEFGroundRecord, COORD_ECEFGroundType},
               {DATABASE_WGS84Record, COORD_WGS84Type},
               {DATABASE_LocalRecord, COORD_LocalType},
               {DATABASE_GridRecord, COORD_GridType},
               {DATABASE_PolarRecord, COORD_PolarType},
               {DATABASE_LaserOffsetRecord, COORD_LaserOffsetType},
               {DATABASE_CircleRecord, COORD_CircleType},
               {DATABASE_AzimuthRecord, COORD_NullType},
               {DATABASE_MeanTurnedAngleRecord, COORD_MTAType}};
  for (const auto& one : cases) {
    const auto record = CreateRecord (one.type);
    EXPECT_EQ (static_cast<const db_Measurement&> (*record).GetCoordType (), one.form)
        << ClassName (one.type);
  }
}

}  // namespace
}  // namespace clxml::testing
