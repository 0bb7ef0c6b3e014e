// The journal on disk: what is written, what every kind of damage leaves, what a failing disk does.
// Leans on the job fixture.
#include "Library/job/dbjournal.h"

#include "jobfixture.h"
#include "support/faults.h"

namespace clxml::testing {
namespace {

using Texts = std::vector<std::string>;

class Journal : public JobTest {
 protected:
  // Frames with DBIDs 2 to 5 behind the header record: a note, a transaction of two, a note.
  Bytes SmallJob () {
    return Job ({FrameOf (DBACTION_Add, 0, MakeNote ("first"), 2),
                 FrameOf (DBACTION_Add, 0, MakePoint ("P1"), 3, 1),
                 FrameOf (DBACTION_Add, 0, MakeNote ("in two"), 4, 2),
                 FrameOf (DBACTION_Add, 0, MakeNote ("last"), 5)});
  }
  static std::string SizeLine (const Bytes& bytes) {
    return "-- Reported file size  " + Hex (bytes.size ());
  }
  static std::vector<uint32_t> UpTo (uint32_t last) {
    std::vector<uint32_t> ids;
    for (uint32_t id = 1; id <= last; id++) ids.push_back (id);
    return ids;
  }
};

TEST_F (Journal, WritesATransactionByteForByte) {
  dbJournal journal;
  ASSERT_TRUE (journal.Create (folder.Device ("j"), FileHeader (FILEHDR_Journal)));
  dbTransaction transaction;
  for (uint32_t id = 1; id <= 3; id++) {
    db_Note note = MakeNote ("ab");
    note.RecordId = {id};
    transaction.Add (
        std::make_unique<dbModel_Action> (DBACTION_Add, DBID{id - 1}, CloneRecord (note)));
  }
  EXPECT_TRUE (journal.WriteTransaction (transaction));
  transaction.Clear ();
  EXPECT_TRUE (journal.WriteTransaction (transaction));
  EXPECT_EQ (journal.GetFileSize (), 48u) << "frames wait in the buffer";
  EXPECT_TRUE (journal.Close ());
  const Bytes bytes = Read ("j");
  ASSERT_EQ (bytes.size (), 48u + 3 * (4 + 26));
  // The note body: type, DBID, time, text with its zero.
  const Bytes second = {26, 0, 0, 0, 0, 0x30, 0x2A, 1, 0, 0, 0, 1, 0, 2, 0, 0, 0};
  EXPECT_TRUE (std::equal (second.begin (), second.end (), bytes.begin () + 48 + 30));
  EXPECT_EQ (bytes[48 + flagsAt], 1);
  EXPECT_EQ (bytes[48 + 60 + flagsAt], 2);
  for (const std::size_t frame : {48, 78, 108}) {
    Bytes mended = bytes;
    MendChecksum (mended, frame);
    EXPECT_EQ (mended, bytes);
  }
}

TEST_F (Journal, CutAtEveryLengthKeepsWholeTransactions) {
  const Bytes whole = SmallJob ();
  const std::vector<std::size_t> frames = FramesOf (whole);
  // Records that stand behind so many whole frames.
  const uint32_t records[] = {0, 1, 2, 2, 4, 5};
  for (std::size_t length = 0; length < whole.size (); length++) {
    SCOPED_TRACE (length);
    const Bytes cut (whole.begin (), whole.begin () + static_cast<std::ptrdiff_t> (length));
    const Reopened job = Open (cut);
    if (length < FILEHDR_SizeOnDisk) {
      EXPECT_FALSE (job.opened);
      EXPECT_EQ (job.status, JOBOPEN_CannotOpen);
      EXPECT_TRUE (job.log.empty ());
      continue;
    }
    std::size_t before = 0;
    while (frames[before + 1] <= length) before++;
    const std::size_t position = frames[before], left = length - position;
    const bool inTwo = before == 3;
    Texts log;
    if (left > 0) {
      log.push_back ((left < 4 ? "Journal record length short read failure at filepos  "
                               : "Journal record short read failure at filepos  ") +
                     Hex (position));
      log.push_back (SizeLine (cut));
    }
    if (inTwo) {
      log.push_back ("Journal: Partial last transaction near filepos  " + Hex (length));
      log.push_back (SizeLine (cut));
    }
    EXPECT_EQ (job.log, log);
    if (before == 0) {
      EXPECT_FALSE (job.opened);
      EXPECT_EQ (job.status, JOBOPEN_NotAJob);
      continue;
    }
    ASSERT_TRUE (job.opened);
    EXPECT_EQ (job.status, left > 0 ? JOBOPEN_Corrupt : JOBOPEN_Ok);
    EXPECT_EQ (job.ids, UpTo (records[before]));
    EXPECT_EQ (job.lastGood, position);
    EXPECT_EQ (job.append, inTwo ? frames[2] : position);
  }
}

TEST_F (Journal, EveryFlippedBitIsSeenAtItsFrame) {
  const Bytes whole = SmallJob ();
  const std::vector<std::size_t> frames = FramesOf (whole);
  const Reopened sound = Open (whole);
  ASSERT_EQ (sound.status, JOBOPEN_Ok);
  const uint32_t records[] = {0, 1, 2, 2, 4};
  std::size_t frame = 0;
  for (std::size_t place = FILEHDR_SizeOnDisk; place < whole.size (); place++) {
    while (frames[frame + 1] <= place) frame++;
    for (int bit = 0; bit < 8; bit++) {
      SCOPED_TRACE (std::to_string (place) + " bit " + std::to_string (bit));
      Bytes bytes = whole;
      bytes[place] = static_cast<uint8_t> (bytes[place] ^ (1 << bit));
      const Reopened job = Open (bytes);
      EXPECT_EQ (job.opened, frame > 0);
      EXPECT_EQ (job.status, frame > 0 ? JOBOPEN_Corrupt : JOBOPEN_NotAJob);
      ASSERT_GE (job.log.size (), 2u);
      const std::string at = "  " + Hex (frames[frame]);
      const uint32_t length = UInt32At (bytes, frames[frame]);
      const bool crc = job.log[0] == "Journal: CRC error at" + at;
      if (place >= frames[frame] + 4) {
        EXPECT_TRUE (crc) << job.log[0];
      } else if (length < JOURNAL_MinFrame || length > JOURNAL_MaxFrame) {
        EXPECT_EQ (job.log[0], "Journal record length is unbelieveable at" + at);
      } else if (frames[frame] + 4 + length > bytes.size ()) {
        EXPECT_EQ (job.log[0], "Journal record short read failure at filepos" + at);
      } else {
        EXPECT_TRUE (crc) << job.log[0];
      }
      EXPECT_EQ (job.log[1], SizeLine (bytes));
      if (frame > 0) {
        EXPECT_EQ (job.ids, UpTo (records[frame]));
        EXPECT_EQ (job.lastGood, frames[frame]);
      }
    }
  }
}

TEST_F (Journal, EveryFlippedBitOfTheHeaderHasItsStatus) {
  const Bytes whole = SmallJob ();
  for (std::size_t place = 0; place < FILEHDR_SizeOnDisk; place++) {
    for (int bit = 0; bit < 8; bit++) {
      SCOPED_TRACE (std::to_string (place) + " bit " + std::to_string (bit));
      Bytes bytes = whole;
      bytes[place] = static_cast<uint8_t> (bytes[place] ^ (1 << bit));
      const Reopened job = Open (bytes);
      int32_t expected = JOBOPEN_Ok;  // the rest of the name, the reserved byte
      if (place < 7 || place == 43) expected = JOBOPEN_NotAJob;
      if (place > 44) expected = JOBOPEN_WrongVersion;
      EXPECT_EQ (job.status, expected);
      EXPECT_EQ (job.opened, expected == JOBOPEN_Ok);
    }
  }
}

// What the flags of the frames behind the header record make of them.
TEST_F (Journal, GroupsFramesByTheirFlags) {
  const struct {
    const char* name;
    std::vector<uint8_t> flags;
    std::vector<uint32_t> numbers;
    std::vector<uint32_t> ids;
    Texts log;  // without positions; each is followed by the file size
    bool clean = true;
  } cases[] = {
      {"one of one", {3}, {2}, {1, 2}, {}},
      {"three of one", {1, 0, 2}, {2, 3, 4}, {1, 2, 3, 4}, {}},
      {"cancelled one", {7, 3}, {2, 2}, {1, 2}, {}},
      {"cancelled two", {1, 6, 3}, {2, 3, 2}, {1, 2}, {}},
      {"cancelled at the end", {1, 6}, {2, 3}, {1}, {}},
      {"start twice",
       {1, 1, 2},
       {2, 2, 3},
       {1, 2, 3},
       {"Journal: Partial transaction near filepos  "}},
      {"start twice, ended at once",
       {1, 3, 3},
       {2, 2, 2},
       {1, 2},
       {"Journal: Partial transaction near filepos  "}},
      {"no start, ended at once",
       {2, 3},
       {2, 2},
       {1, 2},
       {"Journal: Transaction start flag missing near filepos  "}},
      {"no start, two frames",
       {0, 2},
       {2, 3},
       {1, 2, 3},
       {"Journal: Transaction start flag missing near filepos  "}},
      {"no end", {3, 1}, {2, 3}, {1, 2}, {"Journal: Partial last transaction near filepos  "}},
      {"a cancel that never ended does not reach the next",
       {5, 1, 2},
       {2, 2, 3},
       {1, 2, 3},
       {"Journal: Partial transaction near filepos  "}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    Bytes bytes = Job ({});
    for (std::size_t i = 0; i < c.flags.size (); i++)
      Append (bytes, FrameOf (DBACTION_Add, 0, MakeNote ("n"), c.numbers[i], c.flags[i]));
    // Room for the numbers, whatever the frames.
    const Reopened job = Open (bytes);
    EXPECT_EQ (job.status, JOBOPEN_Ok);
    EXPECT_EQ (job.ids, c.ids);
    Texts log;
    for (std::size_t i = 0; i < job.log.size (); i += 2)
      log.push_back (job.log[i].substr (0, job.log[i].find ("0x")));
    EXPECT_EQ (log, c.log);
    EXPECT_EQ (job.next, c.ids.back () + 1);
  }
}

TEST_F (Journal, SkipsHammeredFramesAndFollowsTheNumbersOnDisk) {
  const Bytes whole = Job (
      {FrameOf (DBACTION_Add, 0, MakePoint ("A"), 2), FrameOf (DBACTION_Amend, 2, db_Grid (), 3),
       FrameOf (DBACTION_Add, 0, MakeNote ("x"), 4), FrameOf (DBACTION_Add, 0, MakeNote ("y"), 5)});
  const std::vector<std::size_t> frames = FramesOf (whole);
  const auto hammer = [&] (std::size_t frame) {
    Bytes bytes = whole;
    for (std::size_t i = frames[frame] + 4; i < frames[frame + 1]; i++) bytes[i] = 0xBF;
    return bytes;
  };
  const auto marked = [&] (std::size_t frame) {
    return Texts{"Journal: Manual repair detected at  " + Hex (frames[frame]),
                 "-- Hammered record size  " + Hex (frames[frame + 1] - frames[frame] - 4)};
  };
  {  // The number of a note: one discontinuity, then all goes on.
    const Reopened job = Open (hammer (3));
    EXPECT_EQ (job.status, JOBOPEN_Ok);
    EXPECT_TRUE (job.repaired);
    EXPECT_EQ (job.ids, (std::vector<uint32_t>{1, 2, 5}));
    Texts log = marked (3);
    log.push_back ("DBID discontinuity.  Expected  0x4");
    log.push_back ("-- Actual DBID read  0x5");
    EXPECT_EQ (job.log, log);
    EXPECT_EQ (job.next, 6u);
  }
  {  // A target: its measurement has nowhere to go, and took no number.
    const Reopened job = Open (hammer (1));
    EXPECT_EQ (job.ids, (std::vector<uint32_t>{1, 4, 5}));
    Texts log = marked (1);
    for (const char* line :
         {"Target record missing from Model.  Target  0x2", "-- Offending record ID  0x3",
          "DBID discontinuity.  Expected  0x2", "-- Actual DBID read  0x4"})
      log.emplace_back (line);
    EXPECT_EQ (job.log, log);
  }
  {  // The last one leaves nothing to follow.
    const Reopened job = Open (hammer (4));
    EXPECT_EQ (job.log, marked (4));
    EXPECT_EQ (job.append, frames[4]);
  }
}

// Frames with a checksum that fits and contents that do not.
TEST_F (Journal, RefusesFramesThatDoNotHold) {
  const Bytes note = FrameOf (DBACTION_Add, 0, MakeNote ("abcdefgh"), 2);
  const auto with = [&] (std::size_t place, std::initializer_list<uint8_t> values) {
    Bytes frame = note;
    for (const uint8_t value : values) frame.at (place++) = value;
    MendChecksum (frame, 0);
    return frame;
  };
  const auto ofLength = [&] (uint32_t length) {
    Bytes frame (length + 4, 0);
    PutUInt32At (frame, 0, length);
    std::copy_n (note.begin () + 4, std::min<std::size_t> (length - 2, 24), frame.begin () + 4);
    MendChecksum (frame, 0);
    return frame;
  };
  const struct {
    const char* name;
    Bytes frame;
    const char* text;
  } cases[] = {
      {"length 11", ofLength (11), "Journal record length is unbelieveable at  "},
      {"length 12", ofLength (12), "Journal: Record corruption at filepos  "},
      {"length 23", ofLength (23), "Journal: Record corruption at filepos  "},
      {"length 24, text without end", ofLength (24), "Journal: Record corruption at filepos  "},
      {"length 24", FrameOf (DBACTION_Add, 0, MakeNote (""), 2), nullptr},
      {"length 524289", ofLength (524289), "Journal record length is unbelieveable at  "},
      {"length 524288", ofLength (524288), nullptr},
      {"action below", with (actionAt, {0x2F, 0x2A}), "Journal: Record corruption at filepos  "},
      {"action 10805", with (actionAt, {0x35, 0x2A}), "Journal: Record corruption at filepos  "},
      {"action 10807", with (actionAt, {0x37, 0x2A}), "Journal: Record corruption at filepos  "},
      {"type 138", with (bodyAt, {138, 0}), "Journal: Record corruption at filepos  "},
      {"type 65535", with (bodyAt, {255, 255}), "Journal: Record corruption at filepos  "},
      {"a body that is too short", with (bodyAt, {32, 0}),
       "Journal: Record corruption at filepos  "},
      {"DBID 0", with (idAt, {0, 0, 0, 0}), "Journal: Record corruption at filepos  "},
      {"DBID of another", with (idAt, {1, 0, 0, 0}), "Journal: Record corruption at filepos  "},
      {"DBID beyond the file", with (idAt, {5, 0, 0, 0}),
       "Journal: Record corruption at filepos  "},
      {"DBID far beyond the file", with (idAt, {255, 255, 255, 255}),
       "Journal: Record corruption at filepos  "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    Bytes bytes = Job ({});
    const std::size_t position = bytes.size ();
    Append (bytes, c.frame);
    const Reopened job = Open (bytes);
    ASSERT_TRUE (job.opened);
    if (c.text) {
      EXPECT_EQ (job.status, JOBOPEN_Corrupt);
      EXPECT_EQ (job.log, (Texts{c.text + Hex (position), SizeLine (bytes)}));
      EXPECT_EQ (job.ids, UpTo (1));
      EXPECT_EQ (job.lastGood, position);
    } else {
      EXPECT_EQ (job.status, JOBOPEN_Ok);
      EXPECT_EQ (job.ids, UpTo (2));
    }
  }
}

// What a checksum cannot find: any byte may have any meaning, and still nothing is asserted, lost
// track of or given out twice.
TEST_F (Journal, TakesAnyContentsBehindAGoodChecksum) {
  db_Features features;
  features.Features.Parse ("TREE", false);
  db_DBID reference;
  reference.Value = {7};
  Bytes whole = Job ({FrameOf (DBACTION_Add, 0, MakePoint ("A"), 2),
                      FrameOf (DBACTION_Amend, 2, db_Circle (), 3, 1),
                      FrameOf (DBACTION_Amend, 2, features, 4, 0),
                      FrameOf (DBACTION_Amend, 2, reference, 5, 2),
                      FrameOf (DBACTION_Amend, 2, db_BoolAction (), 6),
                      FrameOf (DBACTION_Amend, 2, db_Descriptions (), 7),
                      FrameOf (DBACTION_Insert, 2, db_EndEntity (), 8),
                      FrameOf (DBACTION_Replace, 8, db_EndEntity (), 8),
                      FrameOf (DBACTION_Replace, 2, MakeNote ("n"), 2),
                      FrameOf (DBACTION_Delete, 8, db_EndEntity (), 8),
                      FrameOf (DBACTION_Add, 0, db_TraverseClosure (), 9)});
  const std::vector<std::size_t> frames = FramesOf (whole);
  ASSERT_TRUE (Open (whole).log.empty ());
  std::size_t frame = 0;
  for (std::size_t place = FILEHDR_SizeOnDisk + 4; place < whole.size (); place++) {
    while (frames[frame + 1] <= place) frame++;
    if (place < frames[frame] + 4) continue;
    for (const int change : {1, 2, 4, 8, 16, 32, 64, 128, 255}) {
      SCOPED_TRACE (std::to_string (place) + " ^ " + std::to_string (change));
      Bytes bytes = whole;
      bytes[place] = static_cast<uint8_t> (bytes[place] ^ change);
      MendChecksum (bytes, frames[frame]);
      const Reopened job = Open (bytes);
      for (const uint32_t id : job.ids) EXPECT_LT (id, job.next);
      // The counts of features and attributes are asserted as well as refused, nothing else is.
      for (const std::string& text : hearing.TakeAssertions ())
        ASSERT_TRUE (text == "NumFeatures < 100" || text == "AttribCountCheck == this->NumAttribs")
            << text;
    }
  }
}

TEST_F (Journal, HonoursNumbersThatLeapAndLogsThem) {
  Bytes bytes = Job ({FrameOf (DBACTION_Add, 0, MakeNote ("abcdefghijklmnopqrstuvwxyz"), 3),
                      FrameOf (DBACTION_Add, 0, MakeNote ("abcdefghijklmnopqrstuvwxyz"), 4)});
  const Reopened job = Open (bytes);
  EXPECT_EQ (job.status, JOBOPEN_Ok);
  EXPECT_EQ (job.ids, (std::vector<uint32_t>{1, 3, 4}));
  EXPECT_EQ (job.log, (Texts{"DBID discontinuity.  Expected  0x2", "-- Actual DBID read  0x3"}));
}

TEST_F (Journal, AcceptsNumbersOutOfOrderAndLogsThem) {
  Bytes bytes = Job ({FrameOf (DBACTION_Add, 0, MakeNote ("c"), 3),
                      FrameOf (DBACTION_Add, 0, MakeNote ("b"), 2),
                      FrameOf (DBACTION_Add, 0, MakeNote ("d"), 4)});
  const Reopened job = Open (bytes);
  EXPECT_EQ (job.status, JOBOPEN_Ok);
  EXPECT_EQ (job.ids, (std::vector<uint32_t>{1, 3, 2, 4}));
  EXPECT_EQ (job.next, 5u);
  EXPECT_EQ (job.log, (Texts{"DBID discontinuity.  Expected  0x2", "-- Actual DBID read  0x3",
                             "DBID discontinuity.  Expected  0x4", "-- Actual DBID read  0x2"}));
}

TEST_F (Journal, ReadsFramesAcrossTheWindowsOfLargeFiles) {
  Bytes bytes = Job ({});
  const std::string text (9001, 'n');
  for (uint32_t id = 2; id < 120; id++)
    Append (bytes, FrameOf (DBACTION_Add, 0, MakeNote (text.c_str ()), id));
  Append (bytes, FrameOf (DBACTION_Add, 0, MakeNote (std::string (500000, 'm').c_str ()), 120));
  Append (bytes, FrameOf (DBACTION_Add, 0, MakeNote ("end"), 121));
  ASSERT_GT (bytes.size (), 3u * 262144);
  const Reopened job = Open (bytes);
  EXPECT_EQ (job.status, JOBOPEN_Ok);
  EXPECT_EQ (job.ids, UpTo (121));
  // A device error in the middle is no end of the file.
  for (uint64_t call = 2; call < 5; call++) {
    FailingDisk disk;
    disk.FailFrom (os_Operation::Read, call);
    const Reopened broken = Open ("open.job");
    EXPECT_EQ (broken.status, JOBOPEN_Corrupt);
    EXPECT_LT (broken.ids.size (), job.ids.size ());
    ASSERT_EQ (broken.log.size (), 2u);
    EXPECT_NE (broken.log[0].find ("short read failure"), std::string::npos);
  }
  hearing.fileErrors.clear ();
}

TEST_F (Journal, CutsAPartialTailBeforeItWritesBehindIt) {
  Bytes bytes = Job ({FrameOf (DBACTION_Add, 0, MakeNote ("a long note of the old tail"), 2, 1)});
  Write ("j", bytes);
  const std::size_t whole = FramesOf (bytes)[1];
  dbAccess access;
  ASSERT_TRUE (access.Open (folder.Device ("j"), true));
  EXPECT_EQ (access.GetOpenStatus (), JOBOPEN_Ok);
  EXPECT_EQ (Read ("j"), bytes) << "nothing is cut before something is written";
  access.BeginGroup ();
  access.AddAction (DBACTION_Add, NODBID, MakeNote ("b"));
  access.EndGroup ();
  EXPECT_TRUE (access.Close ());
  bytes.resize (whole);
  Append (bytes, FrameOf (DBACTION_Add, 0, MakeNote ("b"), 2));
  EXPECT_EQ (Read ("j"), bytes);
}

TEST_F (Journal, TriesTheSameBytesAtTheSamePlaceAfterAFailedWrite) {
  for (const bool partial : {false, true}) {
    SCOPED_TRACE (partial);
    const std::string name = partial ? "p" : "f";
    dbJournal journal;
    ASSERT_TRUE (journal.Create (folder.Device (name), FileHeader (FILEHDR_Journal)));
    dbTransaction transaction;
    db_Note note = MakeNote ("kept");
    note.RecordId = {1};
    transaction.Add (std::make_unique<dbModel_Action> (DBACTION_Add, NODBID, CloneRecord (note)));
    journal.WriteTransaction (transaction);
    {
      FailingDisk disk;
      if (partial)
        disk.FullAfter (7);
      else
        disk.FailOnce (os_Operation::Write, 0);
      hearing.TakeLog ();
      EXPECT_FALSE (journal.Flush ());
      EXPECT_EQ (hearing.TakeLog (), Texts{"Journal write failed (disk full?) at filepos 0x30"});
      EXPECT_EQ (journal.GetAppendPosition (), 48u);
      EXPECT_EQ (Read (name).size (), 48u) << "no torn frame stays";
    }
    EXPECT_TRUE (journal.Flush ());
    EXPECT_EQ (journal.GetUnwritten (), 0);
    EXPECT_TRUE (journal.Close ());
    Bytes expected = Header ();
    Append (expected, FrameOf (DBACTION_Add, 0, MakeNote ("kept"), 1));
    EXPECT_EQ (Read (name), expected);
  }
  hearing.fileErrors.clear ();
}

TEST_F (Journal, TellsWhatItCouldNotWriteWhenItCloses) {
  dbJournal journal;
  ASSERT_TRUE (journal.Create (folder.Device ("j"), FileHeader (FILEHDR_Journal)));
  dbTransaction transaction;
  db_Note note = MakeNote ("lost");
  note.RecordId = {1};
  transaction.Add (std::make_unique<dbModel_Action> (DBACTION_Add, NODBID, CloneRecord (note)));
  journal.WriteTransaction (transaction);
  const auto waiting = static_cast<uint64_t> (journal.GetUnwritten ());
  FailingDisk disk;
  disk.FullAfter (0);
  EXPECT_FALSE (journal.Close ());
  EXPECT_EQ (hearing.log,
             (Texts{"Journal write failed (disk full?) at filepos 0x30",
                    "Journal close: Flush() failed.  Bytes unwritten: " + Hex (waiting)}));
  EXPECT_EQ (Read ("j").size (), 48u);
}

TEST_F (Journal, LeavesNoFileWhenItsHeaderCannotBeWritten) {
  FailingDisk disk;
  disk.FailOnce (os_Operation::Write, 0);
  dbJournal journal;
  EXPECT_FALSE (journal.Create (folder.Device ("j"), FileHeader (FILEHDR_Journal)));
  EXPECT_TRUE (journal.IsHeaderFailed ());
  EXPECT_FALSE (Exists ("j"));
  // A file that stands there is another matter, and stays.
  Write ("k", {1, 2, 3});
  EXPECT_FALSE (journal.Create (folder.Device ("k"), FileHeader (FILEHDR_Journal)));
  EXPECT_FALSE (journal.IsHeaderFailed ());
  EXPECT_EQ (Read ("k"), (Bytes{1, 2, 3}));
}

TEST_F (Journal, FlushesByTimeAndBySize) {
  dbJournal journal;
  ASSERT_TRUE (journal.Create (folder.Device ("j"), FileHeader (FILEHDR_Journal)));
  dbTransaction transaction;
  db_Note note = MakeNote ("n");
  note.RecordId = {1};
  transaction.Add (std::make_unique<dbModel_Action> (DBACTION_Add, NODBID, CloneRecord (note)));
  journal.Tick (100.0);
  journal.WriteTransaction (transaction);
  journal.Tick (103.0);  // the first tick that sees it sets the time
  journal.Tick (105.9);
  EXPECT_EQ (journal.GetFileSize (), 48u);
  journal.HoldOutput ();
  journal.Tick (200.0);
  EXPECT_EQ (journal.GetFileSize (), 48u);
  journal.ReleaseOutput ();
  journal.Tick (106.0);
  EXPECT_GT (journal.GetFileSize (), 48u);
  const uint32_t before = journal.GetFileSize ();
  // A hold does not suspend the rule of size.
  journal.HoldOutput ();
  journal.HoldOutput ();
  journal.ReleaseOutput ();
  journal.ReleaseOutput ();
  EXPECT_EQ (hearing.TakeAssertions (), (Texts{"!_OutputOnHold", "_OutputOnHold"}));
  journal.HoldOutput ();
  int frames = 0;
  while (journal.GetFileSize () == before && frames < 5000) {
    journal.WriteTransaction (transaction);
    frames++;
  }
  EXPECT_EQ (frames, JOURNAL_FlushThreshold / 29 + 1);
  EXPECT_EQ (journal.GetUnwritten (), 0);
  journal.Close ();
}

TEST_F (Journal, CarriesForeignDataPastEveryReplay) {
  Write ("j", Job ({FrameOf (DBACTION_Add, 0, MakeNote ("n"), 2)}));
  const uint8_t data[] = {0, 1, 0xBF, 3};
  EXPECT_TRUE (dbJournal::AppendForeign (folder.Device ("j"), "office", data, 4));
  const Bytes bytes = Read ("j");
  const std::size_t frame = FramesOf (bytes)[2];
  EXPECT_EQ (bytes[frame + flagsAt], 3);
  EXPECT_EQ (UInt32At (bytes, frame + targetAt), 0u);
  const Reopened job = Open ("j");
  EXPECT_EQ (job.status, JOBOPEN_Ok);
  EXPECT_EQ (job.ids, UpTo (2));
  EXPECT_EQ (job.next, 3u);
  EXPECT_EQ (job.append, bytes.size ());
  // What is no job of this format, too much, and a file at its limit are left alone.
  Write ("no", Bytes (60, 1));
  EXPECT_FALSE (dbJournal::AppendForeign (folder.Device ("no"), "office", data, 4));
  EXPECT_EQ (Read ("no").size (), 60u);
  EXPECT_TRUE (hearing.assertions.empty ());
  const Bytes large (JOURNAL_MaxFrame, 0);
  EXPECT_FALSE (
      dbJournal::AppendForeign (folder.Device ("j"), "office", large.data (), JOURNAL_MaxFrame));
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"length <= JOURNAL_MaxFrame"});
  EXPECT_EQ (Read ("j"), bytes);
  std::filesystem::resize_file (folder.Host ("j"), JOURNAL_MaxFileSize - 10);
  EXPECT_FALSE (dbJournal::AppendForeign (folder.Device ("j"), "office", data, 4));
  EXPECT_EQ (std::filesystem::file_size (folder.Host ("j")), JOURNAL_MaxFileSize - 10);
}

TEST_F (Journal, CopiesItselfWholeOrNotAtAll) {
  Bytes bytes = Job ({FrameOf (DBACTION_Add, 0, MakeNote (std::string (70000, 'c').c_str ()), 2)});
  Write ("j", bytes);
  dbAccess access;
  ASSERT_TRUE (access.Open (folder.Device ("j"), true));
  access.BeginGroup ();
  access.AddAction (DBACTION_Add, NODBID, MakeNote ("waits"));
  access.EndGroup ();
  EXPECT_TRUE (access.CopyTo ("copy.job"));
  Append (bytes, FrameOf (DBACTION_Add, 0, MakeNote ("waits"), 3));
  EXPECT_EQ (Read ("copy.job"), bytes);
  EXPECT_FALSE (access.CopyTo ("copy.job")) << "exists";
  EXPECT_EQ (Read ("copy.job"), bytes);
  for (const os_Operation operation : {os_Operation::Read, os_Operation::Write}) {
    FailingDisk disk;
    disk.FailFrom (operation, 1);
    EXPECT_FALSE (access.CopyTo ("half.job"));
    EXPECT_FALSE (Exists ("half.job"));
  }
  access.Close ();
}

TEST_F (Journal, OpensAReadOnlyFileForReading) {
  const Bytes bytes = SmallJob ();
  Write ("j.job", bytes);
  std::filesystem::permissions (folder.Host ("j.job"), std::filesystem::perms::owner_read);
  dbJournal journal;
  ASSERT_TRUE (journal.Open (folder.Device ("j.job"), true));
  EXPECT_FALSE (journal.IsWritable ());
  EXPECT_EQ (hearing.log, Texts{std::string ("Journal Open : Job file is read-only: ") +
                                folder.Device ("j.job").Data ()});
  EXPECT_EQ (journal.Truncate (), 0u);
  EXPECT_FALSE (journal.WriteHeader (FileHeader (FILEHDR_Journal)));
  EXPECT_TRUE (journal.Close ());
  EXPECT_EQ (Read ("j.job"), bytes);
}

TEST_F (Journal, TruncatesAtTheLastGoodFrameAndWritesAgain) {
  Bytes bytes = SmallJob ();
  const std::vector<std::size_t> frames = FramesOf (bytes);
  bytes[frames[3] + 20] ^= 1;  // the second of the two
  Write ("j", bytes);
  dbAccess access;
  ASSERT_TRUE (access.Open (folder.Device ("j"), true));
  EXPECT_EQ (access.GetOpenStatus (), JOBOPEN_Corrupt);
  EXPECT_FALSE (access.Journal ().IsWritable ());
  EXPECT_EQ (access.TruncateToLastGood (), frames[3]);
  EXPECT_TRUE (access.Journal ().IsWritable ());
  EXPECT_EQ (access.Journal ().GetFileSize (), frames[3]);
  access.BeginGroup ();
  access.AddAction (DBACTION_Add, NODBID, MakeNote ("new"));
  access.EndGroup ();
  EXPECT_TRUE (access.Close ());
  const Reopened job = Open ("j");
  EXPECT_EQ (job.status, JOBOPEN_Ok);
  EXPECT_EQ (job.ids, UpTo (3));
  EXPECT_TRUE (job.log.empty ());
}

TEST_F (Journal, AsksForAClosedFileWhereItNeedsOne) {
  dbJournal journal;
  FileHeader header (FILEHDR_Style);
  EXPECT_FALSE (journal.GetHeader (header));
  EXPECT_TRUE (journal.Close ());
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"_File.IsOpen()"});
  ASSERT_TRUE (journal.Create (folder.Device ("j"), FileHeader (FILEHDR_Journal)));
  EXPECT_FALSE (journal.Create (folder.Device ("k"), FileHeader (FILEHDR_Journal)));
  EXPECT_FALSE (journal.Open (folder.Device ("j"), false));
  EXPECT_EQ (hearing.TakeAssertions (), (Texts{"!_File.IsOpen()", "!_File.IsOpen()"}));
  header.FileType = FILEHDR_Journal;
  header.Revision = 4;
  EXPECT_TRUE (journal.WriteHeader (header));
  journal.Close ();
  EXPECT_EQ (Read ("j")[47], 4);
}

}  // namespace
}  // namespace clxml::testing
