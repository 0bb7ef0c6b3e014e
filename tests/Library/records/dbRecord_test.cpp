// Tests of what all records have in common.
// Identity, notes, downcasts, copies and their duties. Leans on record_support.
#include "Library/records/dbRecord.h"

#include <gtest/gtest.h>

#include "Library/records/dbGPS.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"
#include "Library/records/record_support.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

using Texts = std::vector<std::string>;

TEST (Record, NoteLines) {
  const struct {
    const char* note;
    Texts lines;
  } cases[] = {
      {"", {}},
      {"one", {"one"}},
      {"a\r\n\r\nb", {"a", "", "b"}},
      {"a\n\rb", {"a", "b"}},
      {"a\n\nb", {"a", "", "b"}},
      {"a\n\r\nb", {"a", "", "b"}},
      {"a\rb\r", {"a\rb\r"}},
      {"a\r\n", {"a"}},
      {"\r\n", {""}},
      {"\n", {""}},
  };
  for (const auto& one : cases) {
    db_Note note;
    note.Note = one.note;
    StrArray lines;
    lines.Add ("of before");
    note.GetNoteLines (lines);
    Texts texts;
    for (int i = 0; i < lines.Count (); i++) texts.emplace_back (lines[i].Data ());
    EXPECT_EQ (texts, one.lines) << one.note;
  }
}

TEST (Record, DowncastIsNullForNullAndForAnotherType) {
  db_Line line;
  dbRecord_Class* record = &line;
  EXPECT_EQ (db_Line::From (record), &line);
  EXPECT_EQ (db_Arc::From (record), nullptr);
  EXPECT_EQ (db_Line::From (static_cast<const dbRecord_Class*> (nullptr)), nullptr);
}

TEST (Record, DowncastToAbstractClassAcceptsItsClasses) {
  const dbRecord_Class* null = nullptr;
  EXPECT_EQ (db_Measurement::From (null), nullptr);
  EXPECT_EQ (db_Survey::From (null), nullptr);
  EXPECT_EQ (db_Radio::From (null), nullptr);
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    const std::unique_ptr<dbRecord_Class> record = CreateRecord (type);
    const std::string_view name = ClassName (type);
    EXPECT_EQ (db_Measurement::From (record.get ()) != nullptr, record->IsMeasurement ()) << name;
    EXPECT_EQ (db_Survey::From (record.get ()) != nullptr,
               name == "db_RoverSurvey" || name == "db_BaseSurvey");
    EXPECT_EQ (db_Radio::From (record.get ()) != nullptr,
               name == "db_RoverRadio" || name == "db_BaseRadio");
  }
}

TEST (Record, LoadsHeadThatSaveHeadWrote) {
  db_Line line;
  line.RecordId = {7};
  line.Note = "n";
  line.SetFeatures ("FENCE 1", false);
  line.Description2 = "d";
  OutBuffer head (ENDIAN_Little);
  line.SaveHead (head);
  const Bytes bytes (head.Data (), head.Data () + head.Length ());
  db_Line read;
  for (int length = 0; length <= head.Length (); length++) {
    int offset = 0;
    EXPECT_EQ (read.LoadHead (BufferOf (Bytes (bytes.begin (), bytes.begin () + length)), offset),
               length == head.Length ());
    EXPECT_LE (offset, length);
  }
  OutBuffer again (ENDIAN_Little);
  read.SaveHead (again);
  EXPECT_EQ (Bytes (again.Data (), again.Data () + again.Length ()), bytes);
  Hearing hearing;
  db_Arc arc;
  int offset = 0;
  EXPECT_FALSE (arc.LoadHead (BufferOf (bytes), offset));
  EXPECT_EQ (hearing.TakeAssertions (),
             Texts{"this->GetType() == (database_RecordType) buffer.GetUInt16 (byteOffset)"});
}

TEST (Record, WhatNeedsTheSameTypeRefusesAnother) {
  Hearing hearing;
  db_Line line;
  line.Note = "line";
  db_Arc arc;
  EXPECT_FALSE (arc.IsEqual (line));
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"this->GetType() == record.GetType ()"});
  arc.Assign (line);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"this->GetType() == other.GetType()"});
  CopyRecord (line, arc);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"Source.GetType () == Dest.GetType()"});
  EXPECT_TRUE (arc.Note.IsEmpty ());
  int offset = 0;
  EXPECT_FALSE (arc.Load (BufferOf (BodyOf (db_Note ())), offset));
  EXPECT_EQ (hearing.TakeAssertions (),
             Texts{"this->GetType() == (database_RecordType) buffer.GetUInt16 (byteOffset)"});
}

TEST (Record, AssignTakesIdentityToo) {
  db_TimeZone source, dest;
  source.RecordId.value = 12;
  source.TimeStamp = MATHS_Null;
  source.Note = "n";
  source.TimeZoneName = "NZST";
  dest.HoursToUTC = -12.0;
  static_cast<dbRecord_Class&> (dest).Assign (source);
  EXPECT_EQ (BodyOf (dest), BodyOf (source));
  dest.Assign (dest);
  EXPECT_EQ (BodyOf (dest), BodyOf (source));
}

TEST (Record, NumbersCompareByValue) {
  const double null = MATHS_Null;
  const double otherNull = std::bit_cast<double> (std::bit_cast<uint64_t> (null) + 1);
  const double nan = std::numeric_limits<double>::quiet_NaN ();
  const struct {
    double a, b;
    bool same;
  } cases[] = {{0.0, -0.0, true},  {null, otherNull, true}, {nan, -nan, true}, {1.0, 1.0, true},
               {null, nan, false}, {null, 0.0, false},      {1.0, -1.0, false}};
  for (const auto& one : cases) {
    {
      db_Grid a, b;
      a.North = one.a;
      b.North = one.b;
      EXPECT_EQ (a.IsEqual (b), one.same) << one.a << " " << one.b;
    }
    Attribute a, b;
    a.Number = one.a;
    b.Number = one.b;
    EXPECT_EQ (a == b, one.same) << one.a << " " << one.b;
  }
}

TEST (Record, AnObservationIsCopiedWithItsMeasurement) {
  db_Observation point;
  point.PointName = "P1";
  EXPECT_EQ (point.Measurement (), nullptr);
  auto grid = std::make_unique<db_Grid> ();
  grid->North = 1000.0;
  point.SetMeasurement (std::move (grid));

  const db_Observation copy = point;
  ASSERT_NE (copy.Measurement (), nullptr);
  EXPECT_NE (copy.Measurement (), point.Measurement ());
  EXPECT_EQ (db_Grid::From (copy.Measurement ())->North, 1000.0);

  const auto old = point.ReplaceMeasurement (std::make_unique<db_Azimuth> ());
  EXPECT_NE (db_Grid::From (old.get ()), nullptr);
  EXPECT_EQ (point.Measurement ()->GetCoordType (), COORD_NullType);
  // It is no part of the stored form and of equality.
  EXPECT_EQ (BodyOf (copy), BodyOf (point));
  EXPECT_TRUE (copy.IsEqual (point));
  point.SetMeasurement (nullptr);
  EXPECT_EQ (db_Observation (point).Measurement (), nullptr);
}

TEST (Record, CopyFromKeepsTheIdAndTheMeasurement) {
  db_Observation target, source;
  target.RecordId.value = 5;
  target.TimeStamp = 1.0;
  target.PointName = "old";
  target.SetMeasurement (std::make_unique<db_Grid> ());
  const db_Measurement* measurement = target.Measurement ();
  source.RecordId.value = 6;
  source.TimeStamp = 2.0;
  source.Note = "n";
  source.PointName = "new";
  source.Description2 = "d";
  source.SetFeatures ("FENCE", false);
  source.SetMeasurement (std::make_unique<db_Azimuth> ());
  target.CopyFrom (source);
  EXPECT_EQ (target.RecordId, DBID{5});
  EXPECT_EQ (target.Measurement (), measurement);
  EXPECT_EQ (target.TimeStamp, 2.0);
  EXPECT_EQ (target.Note, "n");
  EXPECT_TRUE (target.IsEqual (source));
  target.CopyFrom (target);
  EXPECT_TRUE (target.IsEqual (source));
  EXPECT_EQ (target.Measurement (), measurement);
}

TEST (Record, DescriptionsAndCodesCountForEquality) {
  db_Line a, b;
  b.Description1 = "x";
  EXPECT_FALSE (a.IsEqual (b));
  a.Description1 = "x";
  EXPECT_TRUE (a.IsEqual (b));
  a.SetFeatures ("KERB", false);
  EXPECT_FALSE (a.IsEqual (b));
}

}  // namespace
}  // namespace clxml::testing
