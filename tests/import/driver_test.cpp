// Whole imports: codes, words, the callback, and what stands on disk afterwards.
// Leans on importing and the failing disk.
#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "import/exports.h"
#include "import/extraoutput.h"
#include "import/importing.h"
#include "support/commalocale.h"
#include "support/faults.h"

namespace clxml::testing {
namespace {

class Driver : public ImportTest {};

const std::string head = "<?xml version=\"1.0\"?>\n";
const std::string jobElement =
    "<DATABASE_JobHeaderRecord TimeStamp=\"12.5\"><Note>a</Note> Job  1 <Note>b</Note>"
    "</DATABASE_JobHeaderRecord>";
const std::string stationing = "<DATABASE_StationingRecord rec=\"db_Stationing\" ID=\"0x2\"/>";
const std::string noJob =
    "could not find element named DATABASE_JobHeaderRecord or DATABASE_JobRecord";
const std::string notProcessed = "end of file was not processed";

TEST_F (Driver, EveryKindOfFileEndsInItsCode) {
  const std::string notXml =
      folder.Device ("x.xml").Data () + std::string (" does not exist or is not an XML file");
  // A line is read whole before its first element counts, so that faults need one of their own.
  const std::string body = "<a version=\"1140\">" + jobElement + stationing + "\n";
  const struct {
    const char* name;
    std::string bytes;
    uint32_t result;
    std::string log;  // the reason; empty for none
  } cases[] = {
      {"complete", head + body + "</a>", IMPORT_Ok, ""},
      {"comments and white space behind the root", head + body + "</a>\n<!-- c -->\n<?p?>\n \n",
       IMPORT_Ok, ""},
      {"empty", "", IMPORT_BadInput, notXml},
      {"byte order mark", "\xEF\xBB\xBF" + head + body + "</a>", IMPORT_BadInput, notXml},
      {"no declaration", body + "</a>", IMPORT_BadInput, notXml},
      {"blank in front", " " + head + body + "</a>", IMPORT_BadInput, notXml},
      {"nothing but the declaration", head, IMPORT_BadInput, noJob},
      {"root as one empty tag", head + "<a/>", IMPORT_BadInput, noJob},
      {"root without children", head + "<a></a>", IMPORT_BadInput, noJob},
      {"no job element", head + "<a>" + stationing + "</a>", IMPORT_BadInput, noJob},
      {"a job element deeper down", head + "<a><b>" + jobElement + "</b></a>", IMPORT_BadInput,
       noJob},
      {"an element behind the root", head + body + "</a><b/>", IMPORT_BadInput, notProcessed},
      {"text behind the root", head + body + "</a>x", IMPORT_BadInput, notProcessed},
      {"text behind a root without job", head + "<a></a>x", IMPORT_BadInput, notProcessed},
      {"root's end tag missing", head + body, IMPORT_Failed, "unexpected end-of-file"},
      {"root's end tag of another name", head + body + "</b>", IMPORT_Failed,
       "closing tag mismatch: a vs b"},
      {"syntax in front of the job element", head + "<a><b></c>" + jobElement + "</a>",
       IMPORT_Failed, "closing tag mismatch: b vs c"},
      {"syntax behind it", head + body + "<b c='1'/></a>", IMPORT_Failed, "unexpected a literal"},
      {"bad reference", head + body + "<b>&nbsp;</b></a>", IMPORT_Failed,
       "unrecognised ampersand sequence: &nbsp;"},
      {"bad field", head + body + "<DATABASE_AreaRecord rec=\"db_Area\" ID=\"7\"/></a>",
       IMPORT_Failed,
       "XML read error: \nInvalid hex number (missing 0x prefix) name=\"ID\" with "
       "value=\"7\"\nDATABASE_AreaRecord ID=\"7\""},
      {"dangling reference",
       head + body +
           "<DATABASE_TraverseClosureRecord rec=\"db_TraverseClosure\" ID=\"0x3\"><TraversePtr>"
           "0x40</TraversePtr><Results>DBENTITY_Closed</Results></DATABASE_TraverseClosureRecord>"
           "</a>",
       IMPORT_Failed,
       "Error while trying to fix database pointers: \nInvalid reference to XML record ID "
       "name=\"TraversePtr\" with value=\"0x00000040\"\nrecord type = 110 at position "
       "0x00000003"},
      {"zero byte", head + body + std::string (1, '\0') + "</a>", IMPORT_Failed, "?"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    std::filesystem::remove (folder.Host ("x.job"));
    hearing.log.clear ();
    EXPECT_EQ (ImportBytes (c.bytes), c.result);
    EXPECT_EQ (Exists ("x.job"), c.result == IMPORT_Ok);
    if (c.log.empty ()) {
      EXPECT_TRUE (hearing.log.empty ());
    } else if (c.log != "?") {
      EXPECT_EQ (hearing.log, std::vector<std::string>{c.log});
    }

    // A job that stood there before is not of this import: it stays, whatever comes.
    Write ("x.job", "the old one");
    const bool comesToCreate =
        c.bytes.find (jobElement) != std::string::npos && c.bytes.starts_with (head + "<a version");
    EXPECT_EQ (ImportBytes (c.bytes), comesToCreate ? uint32_t{IMPORT_CannotCreateJob} : c.result);
    EXPECT_EQ (Bytes ("x.job"), "the old one");
  }
}

TEST_F (Driver, PathsThatLeadNowhereEndInACode) {
  Write ("x.xml", head + "<a>" + jobElement + "</a>");
  const Str xml = folder.Device ("x.xml");
  const Str job = folder.Device ("x.job");
  EXPECT_EQ (ImportCLXMLFile (folder.Device ("none.xml").Data (), job.Data (), nullptr),
             uint32_t{IMPORT_BadInput});
  EXPECT_EQ (ImportCLXMLFile (nullptr, job.Data (), nullptr), uint32_t{IMPORT_BadInput});
  EXPECT_EQ (ImportCLXMLFile (folder.Device ("").Data (), job.Data (), nullptr),
             uint32_t{IMPORT_BadInput});
  EXPECT_EQ (ImportCLXMLFile (xml.Data (), folder.Device ("no/such/folder/x.job").Data (), nullptr),
             uint32_t{IMPORT_CannotCreateJob});
  EXPECT_EQ (ImportCLXMLFile (xml.Data (), nullptr, nullptr), uint32_t{IMPORT_CannotCreateJob});
  EXPECT_FALSE (Exists ("x.job"));
  hearing.fileErrors.clear ();
}

TEST_F (Driver, TheFirstJobElementMakesTheJob) {
  ASSERT_EQ (ImportBytes (head + "<a>" + stationing + jobElement +
                          "<DATABASE_JobRecord>Other</DATABASE_JobRecord>" + stationing + "</a>"),
             uint32_t{IMPORT_Ok});
  EXPECT_EQ (Job (), (std::vector<std::string>{"db_JobHeader (a\r\nb\r\n) JobName=Job 1",
                                               "db_Stationing Start=null Increment=null"}));
  JobDatabase job;
  ASSERT_TRUE (job.Open (folder.Device ("x.job"), false));
  EXPECT_EQ (job.JobHeader ().TimeStamp, 12.5);
}

TEST_F (Driver, VersionsAreReadLikeNumbers) {
  const std::string line =
      "<DATABASE_LineRecord rec=\"db_Line\" ID=\"0x2\"><LineId>L</LineId>"
      "<Method>DBENTITY_TwoPoints</Method><Deleted>true</Deleted><Length>1</Length>"
      "<BearingLength>2</BearingLength></DATABASE_LineRecord>";
  const struct {
    const char* version;
    bool isOld;
  } cases[] = {{" version=\"1099\"", true},     {" version=\"1100\"", false},
               {" version=\"\"", true},         {"", true},
               {" version=\" +1140x\"", false}, {" version=\"-1140\"", true},
               {" version=\"1e9\"", true},      {" version=\"99999999999\"", false},
               {" version=\"x\"", true},        {" version=\"2147483647\"", false}};
  for (const auto& c : cases) {
    SCOPED_TRACE (c.version);
    std::filesystem::remove (folder.Host ("x.job"));
    ASSERT_EQ (ImportBytes (head + "<a" + c.version + ">" + jobElement + line + "</a>"),
               uint32_t{IMPORT_Ok});
    EXPECT_NE (Job ().at (1).find (c.isOld ? "BearingLength=1 " : "BearingLength=2 "),
               std::string::npos);
  }
}

TEST_F (Driver, TheCallbackIsHeardOncePerElementAndAtTheEnd) {
  const std::string file = head + "<a>\n<b/>\n" + jobElement + "\n" + stationing + "\n<c/>\n</a>";
  ASSERT_EQ (ImportBytes (file), uint32_t{IMPORT_Ok});
  ASSERT_EQ (percents.size (), 5u);
  EXPECT_TRUE (std::is_sorted (percents.begin (), percents.end ()));
  EXPECT_EQ (percents.back (), 100u);

  // Zero in the low byte stops it, at each of the calls but the last; the rest of the word is
  // nobody's answer.
  for (std::size_t stop = 1; stop <= 5; stop++) {
    SCOPED_TRACE (stop);
    std::filesystem::remove (folder.Host ("x.job"));
    progress = [this, stop] (uint32_t) { return percents.size () == stop ? 0xFFFFFF00u : 0x80u; };
    EXPECT_EQ (ImportBytes (file), uint32_t{stop < 5 ? IMPORT_Cancelled : IMPORT_Ok});
    EXPECT_EQ (percents.size (), stop);
    EXPECT_EQ (Exists ("x.job"), stop == 5);
  }
  // What was there before is not what a stop takes away.
  Write ("x.job", "the old one");
  progress = [] (uint32_t) { return 0u; };
  EXPECT_EQ (ImportBytes (file), uint32_t{IMPORT_Cancelled});
  EXPECT_EQ (Bytes ("x.job"), "the old one");
}

TEST_F (Driver, WhatTheCallbackThrowsPassesThroughAndLeavesNoJob) {
  for (std::size_t call = 1; call <= 3; call++) {
    progress = [this, call] (uint32_t) -> uint32_t {
      if (percents.size () == call) throw std::runtime_error ("host");
      return 1;
    };
    EXPECT_THROW (ImportBytes (head + "<a>" + jobElement + stationing + "</a>"),
                  std::runtime_error);
    EXPECT_FALSE (Exists ("x.job"));
  }
}

TEST_F (Driver, ADiskThatFailsAtAnyMomentLeavesNoJob) {
  std::string elements;
  for (int i = 0; i < 200; i++)
    elements += "<DATABASE_NoteRecord rec=\"db_Note\" ID=\"0x2\"><Note>" + std::string (500, 'n') +
                "</Note></DATABASE_NoteRecord>\n";
  const std::string file = head + "<a version=\"1140\">" + jobElement + elements + "</a>";
  ASSERT_EQ (ImportBytes (file), uint32_t{IMPORT_Ok});
  const std::string whole = Bytes ("x.job");
  ASSERT_GT (whole.size (), 100000u);
  std::filesystem::remove (folder.Host ("x.job"));

  FailingDisk disk;
  const auto fails = [&] {
    const uint32_t result = ImportBytes (file);
    EXPECT_FALSE (Exists ("x.job"));
    disk.Heal ();
    return result;
  };
  for (const uint64_t room : {0ull, 1ull, 47ull, 48ull, 49ull, 40000ull, 50000ull, 90000ull,
                              static_cast<unsigned long long> (whole.size () - 1)}) {
    SCOPED_TRACE (room);
    disk.FullAfter (room);
    EXPECT_EQ (fails (), uint32_t{IMPORT_Failed});
  }
  const uint64_t before = disk.Calls (os_Operation::Write);
  ASSERT_EQ (ImportBytes (file), uint32_t{IMPORT_Ok});
  std::filesystem::remove (folder.Host ("x.job"));
  const uint64_t writes = disk.Calls (os_Operation::Write) - before;
  for (uint64_t call = 0; call < writes; call++) {
    SCOPED_TRACE (call);
    disk.FailFrom (os_Operation::Write, call);
    EXPECT_EQ (fails (), uint32_t{IMPORT_Failed});
  }
  disk.FailFrom (os_Operation::Sync, 0);
  EXPECT_EQ (fails (), uint32_t{IMPORT_Failed});
  disk.FailFrom (os_Operation::Read, 1);
  EXPECT_NE (fails (), uint32_t{IMPORT_Ok});
  // A write in small pieces is no failure.
  disk.AtMost (1000);
  EXPECT_EQ (ImportBytes (file), uint32_t{IMPORT_Ok});
  EXPECT_EQ (Bytes ("x.job"), whole);
  hearing.fileErrors.clear ();
}

TEST_F (Driver, InputThatMeansHarmEndsInACode) {
  std::string nested = head + "<a version=\"1140\">" + jobElement;
  for (int i = 0; i < 100000; i++) nested += "<b>\n";
  const auto with = [] (const std::string& elements) {
    return head + "<a version=\"1140\">" + jobElement + elements + "</a>";
  };
  const std::string longWord (600000, 'x');
  std::string longLines;
  for (int i = 0; i < 60; i++) longLines += std::string (10000, 'x') + "\n";
  const struct {
    const char* name;
    std::string bytes;
    uint32_t result;
  } cases[] = {
      {"nesting", nested, IMPORT_Failed},
      {"a word that never ends", head + "<a version=\"1140\">" + jobElement + "<" + longWord,
       IMPORT_Failed},
      {"a record beyond a frame",
       with ("<DATABASE_NoteRecord rec=\"db_Note\" ID=\"0x2\"><Note>" + longLines +
             "</Note></DATABASE_NoteRecord>"),
       IMPORT_Failed},
      {"counts without children",
       with ("<DATABASE_PointRecord rec=\"db_Point\" ID=\"0x2\"><PointName>P</PointName>"
             "<Method>DBENTITY_Unknown</Method><SurveyMethod>DBENTITY_Fix</SurveyMethod>"
             "<Classification>DBENTITY_Normal</Classification>"
             "<DATABASE_FeaturesRecord rec=\"FeatureArray\" FeatureCount=\"4294967295\">"
             "<F Name=\"A\" AttributeCount=\"4294967295\"/></DATABASE_FeaturesRecord>"
             "</DATABASE_PointRecord>"),
       IMPORT_Ok},
      {"a number of many digits",
       with ("<DATABASE_StationingRecord rec=\"db_Stationing\" ID=\"0x" + std::string (10000, '0') +
             "2\"/>"),
       IMPORT_Ok},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    std::filesystem::remove (folder.Host ("x.job"));
    EXPECT_EQ (ImportBytes (c.bytes), c.result);
    EXPECT_EQ (Exists ("x.job"), c.result == IMPORT_Ok);
  }
}

TEST_F (Driver, AsksNoLocale) {
  const std::string elements =
      "<DATABASE_StationingRecord rec=\"db_Stationing\" ID=\"0x2\" TimeStamp=\"1.5\">"
      "<Start>1.5</Start><Increment>2,5</Increment></DATABASE_StationingRecord>";
  ASSERT_EQ (ImportElements (1140, elements), uint32_t{IMPORT_Ok});
  const std::string bytes = Bytes ("x.job");
  std::filesystem::remove (folder.Host ("x.job"));
  const CommaLocale comma;
  if (!comma.inForce) GTEST_SKIP () << "no locale with a decimal comma, and localedef made none";
  ASSERT_EQ (ImportElements (1140, elements), uint32_t{IMPORT_Ok});
  EXPECT_EQ (Bytes ("x.job"), bytes);
}

TEST_F (Driver, TheExamplesImport) {
  const std::filesystem::path examples = std::filesystem::path (CLXML_SOURCE_DIR) / "examples";
  int imported = 0;
  for (const auto& example : std::filesystem::directory_iterator (examples)) {
    if (example.path ().extension () != ".xml") continue;
    const std::string name = example.path ().filename ().string ();
    SCOPED_TRACE (name);
    std::filesystem::remove (folder.Host ("x.job"));
    std::filesystem::copy_file (example.path (), folder.Host (name));
    EXPECT_EQ (ImportFromC (folder.Device (name).Data (), folder.Device ("x.job").Data (), nullptr),
               uint32_t{IMPORT_Ok})
        << (hearing.log.empty () ? "" : hearing.log.back ());
    EXPECT_GT (Job ().size (), 100u);
    imported++;
  }
  EXPECT_GE (imported, 2);
}

class ExtraOutput : public ::testing::Test {
 protected:
  void SetUp () override { Empty (); }
  void TearDown () override { Empty (); }
  static void Empty () {
    if (ExtraOutputFileCount () > 0) TakeExtraOutputFile (ExtraOutputFileCount () - 1);
  }
  static std::u16string Get (int32_t index) {
    uint16_t buffer[CLXMLI_NAME_UNITS];
    std::fill (std::begin (buffer), std::end (buffer), uint16_t{0x2020});
    clxmli_GetExtraOutputFileName (buffer, index);
    std::u16string name;
    for (const uint16_t* unit = buffer; *unit; unit++) name += static_cast<char16_t> (*unit);
    return name;
  }
};

TEST_F (ExtraOutput, ReadingTheLastNameEmptiesTheList) {
  for (const char* name : {"\\a", "\\b", "\\c"}) AddExtraOutputFile (name);
  EXPECT_EQ (clxmli_ExtraOutputFileCount (), 3);
  EXPECT_EQ (Get (5), u"");
  EXPECT_EQ (Get (3), u"");
  EXPECT_EQ (Get (-1), u"");
  EXPECT_EQ (Get (0), u"\\a");
  EXPECT_EQ (Get (0), u"\\a");
  EXPECT_EQ (clxmli_ExtraOutputFileCount (), 3);
  clxmli_GetExtraOutputFileName (nullptr, 2);
  EXPECT_EQ (clxmli_ExtraOutputFileCount (), 3);
  EXPECT_EQ (Get (2), u"\\c");
  EXPECT_EQ (clxmli_ExtraOutputFileCount (), 0);
  EXPECT_EQ (Get (0), u"");
}

TEST_F (ExtraOutput, NamesTooLongAreConsumedAndEmpty) {
  AddExtraOutputFile (Str (std::string (259, 'x')));
  EXPECT_EQ (Get (0), std::u16string (259, u'x'));
  AddExtraOutputFile (Str (std::string (260, 'x')));
  EXPECT_EQ (Get (0), u"");
  EXPECT_EQ (clxmli_ExtraOutputFileCount (), 0);
}

TEST_F (ExtraOutput, AHostInCGetsItsOwnPathsBack) {
  const char* const hostPaths[] = {"/data/Müller/M.rxl", "/€/\xF0\x9F\x98\x80.rxl", "plain.rxl"};
  std::string expected;
  for (const char* path : hostPaths) {
    char device[100];
    ASSERT_EQ (clxmli_DevicePath (path, device, sizeof device), 1);
    EXPECT_EQ (std::string (device).find ('/'), std::string::npos);
    AddExtraOutputFile (device);
    expected += std::string (path) + "\n";
  }
  char names[1000];
  EXPECT_EQ (ExtraOutputFilesFromC (names, sizeof names), 3);
  EXPECT_EQ (names, expected);
}

TEST (HostPaths, RefuseWhatDoesNotFit) {
  char room[6] = "#####";
  EXPECT_EQ (clxmli_DevicePath ("/a/bc", room, 6), 1);
  EXPECT_STREQ (room, "\\a\\bc");
  EXPECT_EQ (clxmli_DevicePath ("/a/bcd", room, 6), 0);
  EXPECT_STREQ (room, "");
  EXPECT_EQ (clxmli_DevicePath ("a\\b", room, 6), 0);
  EXPECT_EQ (clxmli_DevicePath ("", room, 1), 1);
  EXPECT_EQ (clxmli_DevicePath ("a", room, 1), 0);
  EXPECT_EQ (clxmli_DevicePath ("a", room, 0), 0);
  const uint16_t name[] = {'\\', 0xE9, 0x20AC, 0};
  char host[7];
  EXPECT_EQ (clxmli_HostPath (name, host, 7), 1);
  EXPECT_STREQ (host, "/é€");
  EXPECT_EQ (clxmli_HostPath (name, host, 6), 0);
  EXPECT_STREQ (host, "");
  EXPECT_EQ (clxmli_HostPath (name, host, 0), 0);
}

}  // namespace
}  // namespace clxml::testing
