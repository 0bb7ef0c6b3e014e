// Tests over all record classes of the catalogue.
// What holds for every class is held by a loop over the classes. Leans on record_support.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>

#include "Library/records/dbPoints.h"
#include "Library/records/record_support.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

constexpr uint32_t Seeds[] = {20260101, 20260102, 20260103, 20260104};

std::unique_ptr<dbRecord_Class> Filled (int type, uint32_t seed, int odd = -1) {
  auto record = CreateRecord (type);
  if (record) Filler (seed, odd).Fill (*record);
  return record;
}

// Names must be there when a record is saved; a filler may have left them empty.
void ForgetEmptyNames (Hearing& hearing) {
  for (const std::string& text : hearing.TakeAssertions ())
    if (!text.ends_with (".Length() > 0")) ADD_FAILURE () << text;
}

TEST (Catalogue, KnowsEveryTypeByItsNumberAndName) {
  std::set<std::string> names;
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    const auto record = CreateRecord (type);
    ASSERT_NE (record, nullptr) << type;
    EXPECT_EQ (record->GetType (), type);
    EXPECT_EQ (record->RecordId, NODBID);
    EXPECT_TRUE (record->Note.IsEmpty ());
    EXPECT_EQ (std::strncmp (ClassName (type), "db_", 3), 0) << type;
    EXPECT_TRUE (names.insert (ClassName (type)).second) << ClassName (type);
  }
  for (int type : {-1, 138, 65535}) {
    EXPECT_EQ (CreateRecord (type), nullptr);
    EXPECT_STREQ (ClassName (type), "");
  }
  EXPECT_NE (db_TimeZone::From (CreateRecord (137).get ()), nullptr);
}

TEST (Catalogue, EveryRecordReadsBackAsItWasWritten) {
  Hearing hearing;
  for (uint32_t seed : Seeds) {
    for (int type = 0; type < DATABASE_AllRecords; type++) {
      SCOPED_TRACE (std::string (ClassName (type)) + " from seed " + std::to_string (seed));
      const auto record = Filled (type, seed);
      const Bytes body = BodyOf (*record);
      const auto read = RecordOfBody (body);
      ASSERT_NE (read, nullptr);
      EXPECT_EQ (read->RecordId, record->RecordId);
      EXPECT_EQ (read->Note, record->Note);
      EXPECT_EQ (BodyOf (*read), body);
      if (type != DATABASE_ForeignRecord) {
        EXPECT_TRUE (read->IsEqual (*record));
      }
      EXPECT_EQ (BodyOf (*CloneRecord (*record)), body);
      // Of what the destination held nothing stays.
      const auto other = Filled (type, seed + 1);
      CopyRecord (*record, *other);
      EXPECT_EQ (BodyOf (*other), body);
      int offset = 0;
      const auto again = Filled (type, seed + 2);
      EXPECT_TRUE (again->Load (BufferOf (body), offset));
      EXPECT_EQ (BodyOf (*again), body);
    }
  }
  ForgetEmptyNames (hearing);
}

TEST (Catalogue, EqualityHeedsEveryFieldAndNothingElse) {
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    if (type == DATABASE_ForeignRecord) continue;
    SCOPED_TRACE (ClassName (type));
    const auto record = CreateRecord (type);
    Filler filler (Seeds[0]);
    filler.Fill (*record);
    for (int field = 0; field < filler.Count (); field++) {
      const auto other = Filled (type, Seeds[0], field);
      EXPECT_FALSE (record->IsEqual (*other)) << "field " << field;
      EXPECT_FALSE (other->IsEqual (*record)) << "field " << field;
    }
    const auto same = CloneRecord (*record);
    same->RecordId.value++;
    same->TimeStamp = 1.5;
    EXPECT_TRUE (record->IsEqual (*same));
    same->Note += "another";
    EXPECT_EQ (record->IsEqual (*same), type != DATABASE_NoteRecord);
  }
}

TEST (Catalogue, ABodyThatEndsTooEarlyDoesNotLoad) {
  Hearing hearing;
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    const Bytes body = BodyOf (*Filled (type, Seeds[1]));
    ForgetEmptyNames (hearing);
    for (std::size_t length = 0; length < body.size (); length++) {
      const Bytes cut (body.begin (), body.begin () + static_cast<std::ptrdiff_t> (length));
      int offset = 0;
      EXPECT_EQ (LoadRecord (BufferOf (cut), offset), nullptr)
          << ClassName (type) << " cut at " << length;
      EXPECT_LE (offset, static_cast<int> (length));
      // Counts of attributes are compared with what was read; nothing else is said.
      for (const std::string& text : hearing.TakeAssertions ())
        EXPECT_EQ (text, "AttribCountCheck == this->NumAttribs");
    }
  }
}

// Wherever a count, a length, a slot or a type stands, these bytes make it absurd.
TEST (Catalogue, AbsurdNumbersInABodyDoNoHarm) {
  const std::set<std::string> duties = {
      "NumFeatures < 100", "AttribCountCheck == this->NumAttribs",
      "this->GetType() == (database_RecordType) buffer.GetUInt16 (byteOffset)"};
  Hearing hearing;
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    const Bytes body = BodyOf (*Filled (type, Seeds[2]));
    for (std::string_view absurd : {"\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\x7F", "\xFF\x7F", "\x63"}) {
      for (std::size_t place = 0; place + absurd.size () <= body.size (); place++) {
        Bytes changed = body;
        std::copy (absurd.begin (), absurd.end (),
                   changed.begin () + static_cast<std::ptrdiff_t> (place));
        int offset = 0;
        const auto record = LoadRecord (BufferOf (changed), offset);
        EXPECT_LE (offset, static_cast<int> (changed.size ()));
        if (record) {
          EXPECT_LE (BodyOf (*record).size (), changed.size ());
        }
        for (const std::string& text : hearing.TakeAssertions ())
          EXPECT_TRUE (text.ends_with (".Length() > 0") || duties.contains (text))
              << ClassName (type) << ": " << text;
      }
    }
  }
}

TEST (Catalogue, AnOffsetOutsideTheBufferDoesNotLoad) {
  const Buffer buffer = BufferOf (BodyOf (db_Note ()));
  for (int offset : {-1, 14, 15, 16, 1 << 30}) {
    int moved = offset;
    EXPECT_EQ (LoadRecord (buffer, moved), nullptr) << offset;
    db_Note note;
    EXPECT_FALSE (note.Load (buffer, moved)) << offset;
  }
}

TEST (Catalogue, FlagsOfTypes) {
  std::set<std::string> persisted, inNewJob, affects;
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    const auto record = CreateRecord (type);
    if (record->IsPersisted ()) persisted.insert (ClassName (type));
    if (record->IsStoredInNewJob ()) inNewJob.insert (ClassName (type));
    if (record->AffectsPositions ()) affects.insert (ClassName (type));
  }
  const std::set<std::string> settingsOfAJob = {"db_Ellipsoid",
                                                "db_Datum",
                                                "db_Projection",
                                                "db_Plane",
                                                "db_Height",
                                                "db_Corrections",
                                                "db_Units",
                                                "db_Coding",
                                                "db_DescriptionsDefinition",
                                                "db_CoordSystemControl",
                                                "db_CoordSystem"};
  std::set<std::string> settings = {"db_RoadAvailableStations",
                                    "db_RoadConstructionOffsets",
                                    "db_StakeOut",
                                    "db_ConfigCalib",
                                    "db_TraverseAdjustment",
                                    "db_StakeoutList",
                                    "db_BackgroundFileList",
                                    "db_JobProperties"};
  settings.insert (settingsOfAJob.begin (), settingsOfAJob.end ());
  EXPECT_EQ (inNewJob, settingsOfAJob);
  EXPECT_EQ (persisted, settings);
  EXPECT_EQ (affects,
             (std::set<std::string>{"db_TotalAtmosphere", "db_TotalBackBearing", "db_TotalStation",
                                    "db_DualPrismOffset", "db_Ellipsoid", "db_Datum",
                                    "db_Projection", "db_Height", "db_Corrections", "db_Equipment",
                                    "db_Antenna", "db_RoverSurvey", "db_BaseSurvey",
                                    "db_Meterological", "db_CoordSystemControl", "db_CoordSystem",
                                    "db_LaserTargetHeight", "db_Target", "db_BoolAction"}));
}

TEST (Catalogue, CarriersChangeOnlyWhatTakesThem) {
  Hearing hearing;
  std::set<std::string> takeMarks, takeReferences, measurements;
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    const auto record = CreateRecord (type);
    if (record->IsMeasurement ()) measurements.insert (ClassName (type));
    EXPECT_FALSE (record->IsDeleted ());
    db_BoolAction action;
    record->ApplyBoolAction (action);
    if (hearing.TakeAssertions ().empty ()) {
      takeMarks.insert (ClassName (type));
      EXPECT_TRUE (record->IsDeleted ());
      action.Value = 2;
      record->ApplyBoolAction (action);
      EXPECT_TRUE (record->IsDeleted ());
      action.Value = 1;
      record->ApplyBoolAction (action);
      EXPECT_FALSE (record->IsDeleted ());
    }
    record->SetReference (DBID{7});
    if (hearing.TakeAssertions ().empty ()) takeReferences.insert (ClassName (type));
  }
  EXPECT_EQ (takeMarks,
             (std::set<std::string>{"db_Observation", "db_Line", "db_Arc", "db_Traverse"}));
  EXPECT_EQ (takeReferences, (std::set<std::string>{"db_ECEFDeltas", "db_ECEF", "db_Circle",
                                                    "db_MeanTurnedAngle", "db_Antenna"}));
  EXPECT_EQ (measurements,
             (std::set<std::string>{"db_ECEFDeltas", "db_ECEF", "db_ECEFGround", "db_WGS84",
                                    "db_Local", "db_Grid", "db_Polar", "db_LaserOffset",
                                    "db_Circle", "db_Azimuth", "db_MeanTurnedAngle"}));
}

}  // namespace
}  // namespace clxml::testing
