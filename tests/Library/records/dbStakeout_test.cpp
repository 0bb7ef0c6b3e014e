// Records of stakeout and cross sections, byte for byte.
// Leans on GoogleTest and dbStakeout.
#include "Library/records/dbStakeout.h"

#include <string>
#include <vector>

#include "Library/records/record_fields.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

// The fields of a record with a fixed time, nested ones included.
template <class T>
T At0 () {
  T record;
  record.TimeStamp = 0.0;
  return record;
}

// A body with that type, no id, time 0 and no note, as hexadecimal text.
std::string Body (const char* type, const char* fields) {
  return std::string (type) + " 00000000 0000000000000000 00 " + fields;
}

// A cross section that has all there is.
db_CrossSectionReport WholeReport () {
  auto report = At0<db_CrossSectionReport> ();
  report.Center.TimeStamp = 0.0;
  report.Center.Code = "CL";
  report.Center.Station = 1.0;
  report.Center.Grid = {2.0, 3.0, 4.0};
  report.LeftSide = At0<db_CrossSectionSide> ();
  report.LeftSide->Batter = At0<db_CrossSectionBatter> ();
  report.LeftSide->Batter->DitchWidth = 0.5;
  for (const char* code : {"N1", "N2", "N3"}) {
    auto node = At0<db_CrossSectionNode> ();
    node.Code = code;
    node.Offset = -3.5;
    report.LeftSide->Nodes.push_back (node);
  }
  report.RightSide = At0<db_CrossSectionSide> ();
  report.RightSide->Nodes.push_back (At0<db_CrossSectionNode> ());
  return report;
}

TEST (CrossSections, HaveFixedBytes) {
  EXPECT_EQ (FieldBytes (At0<db_CrossSectionSide> ()), Hex ("00 00000000"));

  auto report = At0<db_CrossSectionReport> ();
  report.Center.TimeStamp = 0.0;
  report.Center.Code = "C";
  report.Center.Grid = {1.0, 2.0, 0.0};
  EXPECT_EQ (FieldBytes (report),
             Hex ("00 00 " + Body ("6400",
                                   "'C' 00 0000000000000000 0000000000000000"
                                   "000000000000F03F 0000000000000040 0000000000000000")));

  auto side = At0<db_CrossSectionSide> ();
  side.Batter = At0<db_CrossSectionBatter> ();
  side.Batter->CutGrade = side.Batter->FillGrade = 0.0;
  side.Nodes.push_back (At0<db_CrossSectionNode> ());
  side.Nodes.back ().Code = "E";
  EXPECT_EQ (
      FieldBytes (side),
      Hex ("01 01000000" + Body ("6200", "00 0000000000000000 0000000000000000 0000000000000000") +
           Body ("6100", "'E' 00 0000000000000000 0000000000000000")));
}

TEST (CrossSections, ComeBackWhole) {
  Hearing hearing;
  const auto body = BodyOf (WholeReport ());
  const auto loaded = RecordOfBody (body);
  ASSERT_NE (loaded, nullptr);
  EXPECT_EQ (BodyOf (*loaded), body);
  EXPECT_TRUE (loaded->IsEqual (WholeReport ()));
  EXPECT_EQ (FieldLister::Value (*loaded, "LeftSide.Nodes[2].Node.Code"), "'N3'");
  EXPECT_EQ (FieldLister::Value (*loaded, "RightSide.HasBatter"), "0");

  // A record that held other sides before keeps nothing of them.
  db_CrossSectionReport reused = WholeReport ();
  const auto small = BodyOf (At0<db_CrossSectionReport> ());
  int offset = 0;
  EXPECT_TRUE (reused.Load (BufferOf (small), offset));
  EXPECT_FALSE (reused.LeftSide || reused.RightSide);
}

TEST (CrossSections, DifferInTheirNestedRecords) {
  db_CrossSectionReport other = WholeReport ();
  other.LeftSide->Nodes[1].TimeStamp = 5.0;
  EXPECT_TRUE (other.IsEqual (WholeReport ())) << "times do not count";
  other.LeftSide->Nodes[1].Offset = 0.0;
  EXPECT_FALSE (other.IsEqual (WholeReport ()));
  other = WholeReport ();
  other.LeftSide->Nodes.pop_back ();
  EXPECT_FALSE (other.IsEqual (WholeReport ()));
  other = WholeReport ();
  other.RightSide.reset ();
  EXPECT_FALSE (other.IsEqual (WholeReport ()));
}

TEST (CrossSections, WithANumberOfNodesThatTheirBytesCannotHoldDoNotLoad) {
  Hearing hearing;
  for (const uint32_t number : {2u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    auto side = At0<db_CrossSectionSide> ();
    side.Nodes.push_back (At0<db_CrossSectionNode> ());
    auto body = BodyOf (side);
    for (std::size_t i = 0; i < 4; i++)
      body[HeadLength + 1 + i] = static_cast<uint8_t> (number >> (8 * i));
    EXPECT_EQ (RecordOfBody (body), nullptr) << number;
  }
}

TEST (CrossSections, WithANestedRecordOfAnotherTypeDoNotLoad) {
  Hearing hearing;
  auto side = At0<db_CrossSectionSide> ();
  side.Nodes.push_back (At0<db_CrossSectionNode> ());
  auto body = BodyOf (side);
  ASSERT_EQ (body[HeadLength + 5], DATABASE_CrossSectionNodeRecord);
  body[HeadLength + 5] = DATABASE_CrossSectionSideRecord;
  EXPECT_EQ (RecordOfBody (body), nullptr);
  EXPECT_EQ (hearing.TakeAssertions ().size (), 1u);
}

TEST (StakeoutLists, HaveFixedBytes) {
  auto list = At0<db_StakeoutList> ();
  EXPECT_EQ (FieldBytes (list), Hex ("00000000 00000000"));
  list.SetFilename (200, "b");
  list.SetFilename (3, "ac");
  list.Uniques = {7, 0x01020304};
  const Bytes bytes = Hex ("02000000 03000000 'ac' 00 C8000000 'b' 00 02000000 07000000 04030201");
  EXPECT_EQ (FieldBytes (list), bytes);
  const auto loaded = RecordOfBody (BodyOf (list));
  ASSERT_NE (loaded, nullptr);
  EXPECT_EQ (FieldBytes (*loaded), bytes);
  EXPECT_TRUE (loaded->IsEqual (list));
}

TEST (StakeoutLists, WithFalseCountsDoNotLoad) {
  struct Case {
    const char* name;
    std::size_t place;  // of a 32-bit number behind the head
    uint32_t number;
  };
  const Case cases[] = {
      {"one file too many", 0, 3},
      {"endless files", 0, 0xFFFFFFFF},
      {"slot 256", 4, 256},
      {"slot beyond", 4, 0xFFFFFFFF},
      {"one entry too many", 17, 3},
      {"endless entries", 17, 0xFFFFFFFF},
      {"entries that wrap", 17, 1u << 30},
  };
  Hearing hearing;
  auto list = At0<db_StakeoutList> ();
  list.SetFilename (3, "ac");
  list.SetFilename (200, "b");
  list.Uniques = {7, 8};
  const auto body = BodyOf (list);
  for (const Case& c : cases) {
    auto changed = body;
    for (std::size_t i = 0; i < 4; i++)
      changed[HeadLength + c.place + i] = static_cast<uint8_t> (c.number >> (8 * i));
    EXPECT_EQ (RecordOfBody (changed), nullptr) << c.name;
  }
}

TEST (GridDeltas, StoreNorthFirst) {
  db_GridDeltas deltas;
  deltas.dNorth = 1.0;
  deltas.dEast = 2.0;
  EXPECT_EQ (FieldBytes (deltas), Hex ("000000000000F03F 0000000000000040 0000000000000000"));
}

}  // namespace
}  // namespace clxml::testing
