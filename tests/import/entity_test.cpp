// What holds an entity together: notes, ends, features, time events, and the road block.
// Leans on importing.
#include "import/importing.h"

namespace clxml::testing {
namespace {

class Entities : public ImportTest {};

std::string Note (const std::string& id, const std::string& tags) {
  return "<DATABASE_NoteRecord rec=\"db_Note\" ID=\"" + id + "\">" + tags +
         "</DATABASE_NoteRecord>";
}

const std::string end = "<DATABASE_EndEntityRecord rec=\"db_EndEntity\" ID=\"0x50\"/>";

std::string Line (const std::string& tags, const std::string& id = "0x2") {
  return "<DATABASE_LineRecord rec=\"db_Line\" ID=\"" + id +
         "\"><LineId>L</LineId><Method>DBENTITY_TwoPoints</Method>"
         "<Classification>DBENTITY_Normal</Classification>" +
         tags + "</DATABASE_LineRecord>";
}

// The line as it is told with this note and these features.
std::string ToldLine (const std::string& note, const std::string& features = "[]") {
  return "db_Line" + (note.empty () ? "" : " (" + note + ")") + " Features=" + features +
         " Description1= Description2= LineId=L Derivation=   Method=DBENTITY_TwoPoints "
         "OriginPoint= TargetPoint= BearingAzimuth=null BearingLength=null BearingGrade=null "
         "Deleted=0";
}

TEST_F (Entities, NotesInsideBecomeOneBehindTheEntitysOwn) {
  const std::string a = Note ("0x3", "<Note>a</Note><Note/>");
  const std::string b = Note ("0x4", "<Note>b</Note>");
  const struct {
    const char* name;
    int version;
    std::string elements;
    std::vector<std::string> stored;
  } cases[] = {
      {"outside", 1140, a + b, {"db_Note (a\r\n\r\n)", "db_Note (b\r\n)"}},
      {"inside", 1140, Line ("") + a + b + end, {ToldLine ("a\r\n\r\n\r\nb\r\n"), "db_EndEntity"}},
      {"with one of its own",
       1140,
       Line ("<Note>own</Note>") + b + end,
       {ToldLine ("own\r\nb\r\n"), "db_EndEntity"}},
      {"the end has notes too",
       1140,
       Line ("") + "<DATABASE_EndEntityRecord rec=\"db_EndEntity\" ID=\"0x5\"><Note>e</Note>"
                   "</DATABASE_EndEntityRecord>",
       {ToldLine (""), "db_EndEntity (e\r\n)"}},
      {"below 1100 the text is the element's own",
       1099,
       Note ("0x3", "<Note>x</Note>old  text"),
       {"db_Note (old text)"}},
      {"a second record of the kind takes the notes of the first",
       1140,
       Line ("") + a + Line ("", "0x6") + end,
       {ToldLine (""), ToldLine ("a\r\n\r\n"), "db_EndEntity"}},
      {"an end without a beginning", 1140, end + b, {"db_EndEntity", "db_Note (b\r\n)"}},
      {"a record of another kind neither opens nor closes",
       1140,
       Line ("") + "<DATABASE_StationingRecord rec=\"db_Stationing\" ID=\"0x7\"/>" + b + end,
       {ToldLine ("b\r\n"), "db_Stationing Start=null Increment=null", "db_EndEntity"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    EXPECT_EQ (Stored (c.version, c.elements), c.stored);
  }
}

TEST_F (Entities, NotesOfAnEntityThatNeverEndsAreToldInTheLog) {
  EXPECT_EQ (Stored (1140, Line ("") + Note ("0x3", "<Note>a</Note>")),
             std::vector<std::string>{ToldLine ("")});
  EXPECT_EQ (hearing.TakeLog (),
             std::vector<std::string>{"Import: notes of an entity that never ended dropped"});
}

TEST_F (Entities, NotesBeyondWhatAFrameTakesAreRefusedNotCut) {
  const std::string note =
      Note ("0x3", "<Note>" + std::string (9000, 'x') + "\n" + std::string (9000, 'y') + "</Note>");
  std::string elements = Line ("");
  for (int i = 0; i < 100; i++) elements += "\n" + note;  // 1.8 MB
  EXPECT_NE (Failure (1140, elements + end).find ("DATABASE_EndEntityRecord ID=\"0x50\""),
             std::string::npos);
}

TEST_F (Entities, EveryActionIsATransactionOfItsOwn) {
  Stored (1140, Line ("<DATABASE_FeaturesRecord rec=\"FeatureArray\" FeatureCount=\"1\">"
                      "<Feature Name=\"A\"/></DATABASE_FeaturesRecord>") +
                    Note ("0x3", "<Note>a</Note>") + end);
  const std::string bytes = Bytes ("x.job");
  const auto number = [&bytes] (std::size_t place, int width) {
    uint32_t value = 0;
    for (int i = width - 1; i >= 0; i--)
      value = value << 8 | static_cast<uint8_t> (bytes.at (place + static_cast<std::size_t> (i)));
    return value;
  };
  // A frame: length, then flags, verb, target, body and checksum.
  std::vector<std::vector<uint32_t>> frames;
  std::size_t at = 48;
  for (; at < bytes.size (); at += 4 + number (at, 4))
    frames.push_back ({number (at + 4, 1), number (at + 5, 2), number (at + 7, 4)});
  EXPECT_EQ (at, bytes.size ());
  EXPECT_EQ (frames, (std::vector<std::vector<uint32_t>>{{3, DBACTION_Add, 0},
                                                         {3, DBACTION_Add, 0},
                                                         {3, DBACTION_Amend, 2},
                                                         {3, DBACTION_Add, 0},
                                                         {3, DBACTION_Amend, 2}}));
}

TEST_F (Entities, FeaturesOfAllVersions) {
  const auto array = [] (const std::string& word, const std::string& rec,
                         const std::string& features) {
    return "<DATABASE_" + word + " rec=\"" + rec + "\" " + features + "</DATABASE_" + word + ">";
  };
  const std::string all =
      "FeatureCount=\"2\"><Feature Name=\"FENCE\" StringCode=\"12\" AttributeCount=\"7\">"
      "<A Name=\"n\" Type=\"Numerical\" Value=\"1.5\"/><A Name=\"t\" Type=\"Text\" Value=\"x\"/>"
      "<A Name=\"m\" Type=\"Menu\" ItemIndex=\"65538\" Item=\"Oak\"/>"
      "<A Name=\"d\" Type=\"Date\" Value=\"86400\"/><A Name=\"c\" Type=\"Time\" Value=\"\"/>"
      "<A Name=\"f\" Type=\"File\" Value=\"a.jpg\"/><A Name=\"s\" Type=\"Separator\"/>"
      "<A Name=\"beyond the count\" Type=\"Text\"/></Feature>"
      "<Feature Name=\"B\" AttributeCount=\"4294967295\">"
      "<A Name=\"n\" Type=\"Numerical\" Value=\"abc\"/></Feature><Feature Name=\"C\"/>";
  const std::string toldAll =
      "[FENCE/12,0:n=1.5,1:t=x,2:m=2.Oak,3:d=86400,4:c=null,5:f=a.jpg,6:s=;B/,0:n=null]";
  const std::string toldOld =
      "[FENCE/,0:n=1.5,1:t=x,2:m=2.Oak,3:d=86400,4:c=null,5:f=a.jpg,6:s=;12/;B/,0:n=null]";
  const struct {
    const char* name;
    int version;
    std::string elements;
    std::string features;
  } cases[] = {
      {"from 1140", 1140, Line (array ("FeaturesRecord", "FeatureArray", all)), toldAll},
      {"from 1120", 1120, Line (array ("FeaturesRecord", "db_FeatureArray", all)), toldAll},
      {"from 1120 a code is not read", 1120, Line ("<Code>X</Code>"), "[]"},
      {"below 1120 attributes go to the feature of that name", 1119,
       Line ("<Code>FENCE 12</Code>" +
             array ("FeatureAttribDataRecord", "db_FeatureAttribData", all)),
       toldOld},
      {"below 1120 numbers are not split off", 1110, Line ("<Code>TREE12 A-B</Code>"),
       "[TREE12/;A-B/]"},
      {"an older special character", 1110, Line ("<Code>A&#x1f;1&#31;</Code>"),
       "[A\xC2\xB7"
       "1\xC2\xB7/]"},
      {"as an element behind the record", 1140,
       Line (array ("FeaturesRecord", "FeatureArray", "FeatureCount=\"1\"><F Name=\"A\"/>")) +
           array ("FeatureAttribDataRecord", "FeatureArray",
                  "FeatureCount=\"1\"><F Name=\"A\" StringCode=\"&#x1f;\"/>"),
       "[A/;A/\xC2\xB7]"},
      {"a count that is none", 1140,
       Line (array ("FeaturesRecord", "FeatureArray", "FeatureCount=\"x\"><F Name=\"A\"/>")), "[]"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    EXPECT_EQ (Stored (c.version, c.elements), std::vector<std::string>{ToldLine ("", c.features)});
  }
}

TEST_F (Entities, FeaturesThatNobodyWouldReadAreRefused) {
  const auto features = [] (int count, const std::string& rec) {
    std::string list;
    for (int i = 0; i < count; i++) list += "<F Name=\"A\"/>";
    return Line ("<DATABASE_FeaturesRecord rec=\"" + rec + "\" FeatureCount=\"999\">" + list +
                 "</DATABASE_FeaturesRecord>");
  };
  EXPECT_EQ (Stored (1140, features (99, "FeatureArray")).size (), 1u);
  EXPECT_EQ (Failure (1140, features (100, "FeatureArray")),
             "XML read error: \na record takes fewer than 100 features\nDATABASE_LineRecord "
             "ID=\"0x2\"");
  EXPECT_EQ (Failure (1140, features (1, "db_FeatureArray")),
             "XML read error: \nwrong rec sttribute: db_FeatureArray instead of FeatureArray\n"
             "DATABASE_LineRecord ID=\"0x2\"");
  // A type of attribute that does not exist is a fault of the writer's.
  EXPECT_EQ (Stored (1140, Line ("<DATABASE_FeaturesRecord rec=\"FeatureArray\" "
                                 "FeatureCount=\"1\"><F Name=\"A\" AttributeCount=\"1\">"
                                 "<A Type=\"Colour\"/></F></DATABASE_FeaturesRecord>")),
             std::vector<std::string>{ToldLine ("", "[A/]")});
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"False"});
  hearing.TakeLog ();
  // Without an open entity there is nobody to take them.
  EXPECT_TRUE (Stored (1140, "<DATABASE_FeatureAttribDataRecord FeatureCount=\"1\"/>").empty ());
  EXPECT_EQ (hearing.TakeLog (),
             std::vector<std::string>{"Import: features without an open entity dropped: "
                                      "DATABASE_FeatureAttribDataRecord"});
}

TEST_F (Entities, TimeEventsBecomeNotes) {
  const auto event = [] (const std::string& word, const std::string& tags) {
    return "<DATABASE_TimeStampRecord rec=\"db_TimeStamp\" ID=\"0x2\"><TimeDerivation>DBCL_" +
           word + "</TimeDerivation>" + tags + "</DATABASE_TimeStampRecord>";
  };
  // 2009-07-01 13:05:09 on this clock.
  const std::string time = "<Time>930920709</Time>";
  const struct {
    const char* name;
    std::string elements;
    std::vector<std::string> stored;
  } cases[] = {
      {"system", event ("System", time), {}},
      {"deleted", event ("UserDeleted", time), {"db_Note (Deleted 13:05:09 2009/7/1)"}},
      {"undeleted", event ("UserUndeleted", time), {"db_Note (Undeleted 13:05:09 2009/7/1)"}},
      {"updated", event ("Updated", time), {"db_Note (Updated 13:05:09 2009/7/1)"}},
      {"setup", event ("UsedLastTSSetup", time), {"db_Note (Used last station setup)"}},
      {"no time", event ("Updated", ""), {"db_Note (Updated)"}},
      {"no time of any calendar", event ("Updated", "<Time>1e300</Time>"), {"db_Note (Updated)"}},
      {"with a note of its own",
       event ("Updated", "<Note>n</Note>"),
       {"db_Note (Updated\r\nn\r\n)"}},
      {"inside an entity it is appended",
       Line ("", "0x9") + event ("Updated", time) + end,
       {ToldLine (""), "db_Note (Updated 13:05:09 2009/7/1)", "db_EndEntity"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    EXPECT_EQ (Stored (1140, c.elements), c.stored);
  }
}

TEST_F (Entities, ARoadBlockSwallowsItsEndAndNothingElse) {
  const std::string road = "<DATABASE_HorzHeaderRecord ID=\"0x3\"/>";
  const std::string note = Note ("0x4", "<Note>a</Note>");
  const std::string unknown = "<DATABASE_FooRecord/>";
  const struct {
    const char* name;
    std::string elements;
    std::vector<std::string> stored;
  } cases[] = {
      {"end of a road", road + end, {}},
      {"notes do not end the block", road + note + end, {"db_Note (a\r\n)"}},
      {"nor does an end", road + end + end, {}},
      {"an unknown element does", road + unknown + end, {"db_EndEntity"}},
      {"an unknown element alone is ignored", unknown, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    EXPECT_EQ (Stored (1140, c.elements), c.stored);
  }
}

TEST_F (Entities, TimesAreThoseOfTheElements) {
  Stored (1140,
          "<DATABASE_StationingRecord rec=\"db_Stationing\" ID=\"0x2\" TimeStamp=\"12.5\"/>"
          "<DATABASE_StationingRecord rec=\"db_Stationing\" ID=\"0x3\" TimeStamp=\"\"/>"
          "<DATABASE_StationingRecord rec=\"db_Stationing\" ID=\"0x4\"/>" +
              Line ("") + Note ("0x6", "<Note>a</Note>") + end);
  JobDatabase job;
  ASSERT_TRUE (job.Open (folder.Device ("x.job"), false));
  EXPECT_EQ (job.JobHeader ().TimeStamp, 5.0);
  EXPECT_EQ (job.GetRecord (DBID{2})->TimeStamp, 12.5);
  EXPECT_TRUE (maths_IsNull (job.GetRecord (DBID{3})->TimeStamp));
  EXPECT_TRUE (maths_IsNull (job.GetRecord (DBID{4})->TimeStamp));
}

}  // namespace
}  // namespace clxml::testing
