// Groups, single actions, replay against what was live, and jobs that do not open.
// Leans on the job fixture.
#include "Library/job/dbaccess.h"

#include <random>

#include "Library/job/dbstore.h"
#include "jobfixture.h"
#include "support/faults.h"

namespace clxml::testing {
namespace {

using Texts = std::vector<std::string>;

class Access : public JobTest {
 protected:
  ~Access () override { access.Close (); }
  void Create (const std::string& name = "a.job") {
    ASSERT_TRUE (access.Create (folder.Device (name), FileHeader (FILEHDR_Journal)));
    Group ([&] { access.AddAction (DBACTION_Add, NODBID, MakeHeader ()); });
  }
  template <class F>
  void Group (F&& changes) {
    access.BeginGroup ();
    changes ();
    access.EndGroup ();
  }
  DBID Add (const dbRecord_Class& record) {
    return access.AddAction (DBACTION_Add, NODBID, record);
  }

  dbAccess access;
};

struct Ear : dbListener {
  void OnCommit (const dbTransaction& t) override { Note ("commit", t); }
  void OnCancel (const dbTransaction& t) override { Note ("cancel", t); }
  void Note (std::string text, const dbTransaction& t) {
    for (const dbModel_Action* a = t.First (); a; a = a->Next.get ())
      text += " " + std::to_string (a->DBRecord->RecordId.value) +
              (access->GetRecord (a->DBRecord->RecordId) ? "+" : "-");
    heard.push_back (text);
  }
  dbAccess* access = nullptr;
  Texts heard;
};

TEST_F (Access, CommitsNestedGroupsAsOneTransactionAtTheOutermostEnd) {
  Create ();
  Ear ear;
  ear.access = &access;
  access.SetListener (&ear);
  access.BeginGroup ();
  const DBID a = Add (MakeNote ("a"));
  access.BeginGroup ();
  const DBID b = Add (MakePoint ("b"));
  access.AddAction (DBACTION_Amend, b, db_Grid ());
  const int32_t waiting = access.Journal ().GetUnwritten ();
  access.EndGroup ();
  EXPECT_EQ (access.Journal ().GetUnwritten (), waiting);
  EXPECT_EQ (access.GetRecord (a), nullptr) << "the model has not seen it";
  EXPECT_EQ (access.GetLastRecordId (), b);
  EXPECT_EQ (access.GetLastOfType (DATABASE_NoteRecord), a);
  EXPECT_EQ (access.GetLatestRecord (DATABASE_NoteRecord)->Note, "a");
  EXPECT_EQ (access.GetFirstOfType (DATABASE_NoteRecord), NODBID);
  db_Note latest;
  EXPECT_TRUE (LoadLatest (access, latest));
  EXPECT_EQ (latest.RecordId, a);
  access.EndGroup ();
  EXPECT_EQ (ear.heard, Texts{"commit 2+ 3+ 4-"});
  EXPECT_NE (db_Observation::From (access.GetRecord (b))->Measurement (), nullptr);
  const std::vector<std::string> live = ChainOf (access);
  access.SetListener (nullptr);
  EXPECT_TRUE (access.Close ());
  const Bytes bytes = Read ("a.job");
  const std::vector<std::size_t> frames = FramesOf (bytes);
  ASSERT_EQ (frames.size (), 5u);
  EXPECT_EQ (bytes[frames[1] + flagsAt], 1);
  EXPECT_EQ (bytes[frames[2] + flagsAt], 0);
  EXPECT_EQ (bytes[frames[3] + flagsAt], 2);
  EXPECT_EQ (Open ("a.job").chain, live);
}

TEST_F (Access, GivesTheNumbersOfACancelledGroupBack) {
  Create ();
  Ear ear;
  ear.access = &access;
  access.SetListener (&ear);
  access.BeginGroup ();
  const DBID cancelled = Add (MakeNote ("no"));
  Add (MakeNote ("no"));
  access.CancelGroup ();
  access.BeginGroup ();
  access.CancelGroup ();  // of nothing: nobody hears, nothing is written
  DBID added;
  Group ([&] { added = Add (MakeNote ("yes")); });
  EXPECT_EQ (added, cancelled);
  EXPECT_EQ (ear.heard, (Texts{"cancel 2- 3-", "commit 2+"}));
  access.SetListener (nullptr);
  access.Close ();
  const Bytes bytes = Read ("a.job");
  const std::vector<std::size_t> frames = FramesOf (bytes);
  ASSERT_EQ (frames.size (), 5u);
  EXPECT_EQ (bytes[frames[1] + flagsAt], 1);
  EXPECT_EQ (bytes[frames[2] + flagsAt], 6);
  const Reopened job = Open ("a.job");
  EXPECT_EQ (job.ids, (std::vector<uint32_t>{1, 2}));
  EXPECT_TRUE (job.log.empty ());
  EXPECT_EQ (job.append, bytes.size ());
}

TEST_F (Access, MisusedGroupsAreAssertedAndChangeNothing) {
  Create ();
  access.EndGroup ();
  access.CancelGroup ();
  EXPECT_EQ (access.AddAction (DBACTION_Add, NODBID, MakeNote ("n")), NODBID);
  EXPECT_EQ (hearing.TakeAssertions (),
             (Texts{"this->_GroupNestCount > 0", "_GroupNestCount == 1", "InGroup()"}));
  access.BeginGroup ();
  access.BeginGroup ();
  access.CancelGroup ();
  EXPECT_EQ (access.AddAction (DBACTION_Reserved, NODBID, MakeNote ("n")), NODBID);
  EXPECT_EQ (access.AddAction (DBACTION_Add, NODBID, std::unique_ptr<dbRecord_Class> ()), NODBID);
  EXPECT_EQ (hearing.TakeAssertions (),
             (Texts{"_GroupNestCount == 1", "!\"Bad action\"", "record != NULL"}));
  access.EndGroup ();
  access.EndGroup ();
  EXPECT_EQ (access.Model ().PeekNextDBID (), DBID{2});
  {
    dbAccess left;
    ASSERT_TRUE (left.Create (folder.Device ("left.job"), FileHeader (FILEHDR_Journal)));
    left.BeginGroup ();
    left.AddAction (DBACTION_Add, NODBID, MakeNote ("n"));
  }
  EXPECT_EQ (hearing.TakeAssertions (),
             (Texts{"_GroupNestCount == 0", "_Transactions[i].Empty()"}));
}

// Threads of a host that numbers them.
struct Threads final : Environment {
  bool IsThreadSafe () override { return safe; }
  uint32_t GetCurrentThread () override { return thread; }
  void AssertFailed (const char* condition, const char*, int) override {
    assertions.emplace_back (condition);
  }
  bool safe = true;
  uint32_t thread = 3;
  Texts assertions;
};

TEST_F (Access, LeavesTheGroupWhenItsListenerThrows) {
  struct Throwing final : dbListener {
    void OnCommit (const dbTransaction&) override { Change (); }
    void OnCancel (const dbTransaction&) override { Change (); }
    void Change () {
      access->BeginGroup ();
      access->AddAction (DBACTION_Add, NODBID, MakeNote ("refused"));
      access->EndGroup ();
      throw 1;
    }
    dbAccess* access = nullptr;
  };
  Create ();
  Throwing listener;
  listener.access = &access;
  access.SetListener (&listener);
  EXPECT_THROW (Group ([&] { Add (MakeNote ("kept")); }), int);
  EXPECT_FALSE (access.InGroup ());
  EXPECT_THROW (
      {
        access.BeginGroup ();
        Add (MakeNote ("cancelled"));
        access.CancelGroup ();
      },
      int);
  EXPECT_FALSE (access.InGroup ());
  EXPECT_EQ (hearing.TakeAssertions (), Texts (6, "!_IsListenerCalled"));
  access.SetListener (nullptr);
  Group ([&] { Add (MakeNote ("later")); });
  const std::vector<std::string> live = ChainOf (access);
  EXPECT_EQ (live.size (), 3u);
  EXPECT_TRUE (access.Close ());
  EXPECT_EQ (Open ("a.job").chain, live);
}

TEST_F (Access, BelongsToTheThreadThatOpenedTheGroup) {
  Create ();
  Threads threads;
  Environment* before = Environment::Install (&threads);
  access.BeginGroup ();
  Add (MakeNote ("three"));
  threads.thread = 4;
  access.BeginGroup ();
  EXPECT_EQ (Add (MakeNote ("four")), NODBID);
  access.EndGroup ();
  access.CancelGroup ();
  EXPECT_EQ (access.GetLastRecordId (), DBID{1}) << "the queue of another thread is not seen";
  EXPECT_EQ (threads.assertions.size (), 4u);
  threads.thread = 3;
  EXPECT_EQ (access.GetLastRecordId (), DBID{2});
  access.EndGroup ();
  EXPECT_EQ (threads.assertions.size (), 4u);
  threads.assertions.clear ();
  threads.thread = 30;
  access.BeginGroup ();
  EXPECT_EQ (Add (MakeNote ("thirty")), NODBID);
  access.EndGroup ();
  EXPECT_EQ (threads.assertions.front (), "thread < 30");
  threads.assertions.clear ();
  threads.thread = 0;
  threads.safe = false;
  access.BeginGroup ();
  access.EndGroup ();
  EXPECT_EQ (threads.assertions,
             (Texts{"Environment::Get()->IsThreadSafe ()", "Environment::Get()->IsThreadSafe ()"}));
  Environment::Install (before);
  EXPECT_EQ (IdsOf (access), (std::vector<uint32_t>{1, 2}));
}

TEST_F (Access, CutsNothingThatItWroteItself) {
  Create ();
  ASSERT_TRUE (access.FlushToMedium ());
  const uint32_t size = access.Journal ().GetFileSize ();
  EXPECT_EQ (access.TruncateToLastGood (), size);
  EXPECT_EQ (Read ("a.job").size (), size);
}

TEST_F (Access, WalksAroundDeletedAndUnknownRecords) {
  Create ();
  Group ([&] {
    Add (db_EndEntity ());
    Add (db_EndEntity ());
    access.AddAction (DBACTION_Delete, {2}, db_EndEntity ());
  });
  EXPECT_EQ (IdsOf (access), (std::vector<uint32_t>{1, 3}));
  EXPECT_NE (access.GetRecord ({2}), nullptr);
  for (const uint32_t id : {0u, 2u, 4u, 4000000000u}) {
    EXPECT_EQ (access.GetNextRecordId ({id}), NODBID);
    EXPECT_EQ (access.GetPreviousRecordId ({id}), NODBID);
  }
}

TEST_F (Access, RefusesARecordThatNoFrameHoldsBeforeItTakesANumber) {
  Create ();
  // 7 bytes in front of the body, 15 of its head, 2 of the checksum.
  const std::string longest (JOURNAL_MaxFrame - 24, 'x');
  access.BeginGroup ();
  db_Note tooLong = MakeNote ((longest + "y").c_str ());
  EXPECT_EQ (access.AddAction (DBACTION_Add, NODBID, tooLong), NODBID);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"length <= JOURNAL_MaxFrame"});
  EXPECT_EQ (Add (MakeNote (longest.c_str ())), DBID{2});
  access.EndGroup ();
  access.SetSingleActionMode ();
  db_Observation point = MakePoint ("BIG7");
  point.Note = longest.c_str ();
  try {
    Add (point);
    ADD_FAILURE ();
  } catch (const Str& reason) {
    EXPECT_NE (reason.View ().find ("db_Observation \"BIG7\""), std::string_view::npos);
  }
  EXPECT_EQ (Add (MakeNote ("after")), DBID{3});
  EXPECT_TRUE (access.Close ());
  const Reopened job = Open ("a.job");
  EXPECT_EQ (job.status, JOBOPEN_Ok);
  EXPECT_EQ (job.ids, (std::vector<uint32_t>{1, 2, 3}));
  EXPECT_TRUE (job.log.empty ());
}

TEST_F (Access, SingleActionsAreTransactionsOfTheirOwnAndAskTheMediumOnce) {
  FailingDisk disk;
  Ear ear;
  ear.access = &access;
  Create ();
  access.SetListener (&ear);
  access.SetSingleActionMode ();
  db_Observation point = MakePoint ("P");
  EXPECT_EQ (access.AddAction (DBACTION_Add, NODBID, point), DBID{2});
  EXPECT_EQ (point.RecordId, DBID{2}) << "the caller finds the DBID";
  access.AddAction (DBACTION_Amend, {2}, std::make_unique<db_Grid> ());
  Group ([&] {
    Add (MakeNote ("one"));
    Add (MakeNote ("two"));
  });
  db_Observation replacement = MakePoint ("Q");
  replacement.TimeStamp = 9.0;
  access.AddAction (DBACTION_Replace, {2}, replacement);
  const std::string text (30000, 'n');
  for (int i = 0; i < 5; i++) Add (MakeNote (text.c_str ()));
  EXPECT_GT (access.Journal ().GetFileSize (), 100000u) << "flushes write";
  EXPECT_EQ (disk.Calls (os_Operation::Sync), 0u);
  const std::vector<std::string> live = ChainOf (access);
  EXPECT_TRUE (access.Close ());
  EXPECT_EQ (disk.Calls (os_Operation::Sync), 1u);
  EXPECT_TRUE (ear.heard.empty ());
  const Bytes bytes = Read ("a.job");
  const std::vector<std::size_t> frames = FramesOf (bytes);
  const uint8_t flags[] = {3, 3, 3, 1, 2, 3};
  for (std::size_t i = 0; i < 6; i++) EXPECT_EQ (bytes[frames[i] + flagsAt], flags[i]) << i;
  // The frame has the time of the replacement, the model that of the target.
  EXPECT_EQ (Image (replacement).substr (6, 8),
             std::string (bytes.begin () + static_cast<std::ptrdiff_t> (frames[5]) + 17,
                          bytes.begin () + static_cast<std::ptrdiff_t> (frames[5]) + 25));
  EXPECT_EQ (access.GetRecord ({2}), nullptr);
  const Reopened job = Open ("a.job");
  EXPECT_EQ (job.chain, live);
  EXPECT_TRUE (job.log.empty ());
}

TEST_F (Access, AnswersForEveryWriteThatFails) {
  // A bulk import on a disk that fails at the nth call: it raises or Close says so, unless every
  // byte is there.
  const std::string text (9000, 'n');
  const auto import = [&] (const std::string& name) {
    dbAccess job;
    if (!job.Create (folder.Device (name), FileHeader (FILEHDR_Journal))) return false;
    job.SetSingleActionMode ();
    bool good = true;
    try {
      for (int i = 0; i < 20; i++) job.AddAction (DBACTION_Add, NODBID, MakeNote (text.c_str ()));
    } catch (const Str&) {
      good = false;
    }
    return job.Close () && good;
  };
  ASSERT_TRUE (import ("whole.job"));
  const Bytes whole = Read ("whole.job");
  for (const os_Operation operation : {os_Operation::Write, os_Operation::Sync}) {
    bool done = false;
    for (uint64_t call = 0; !done && call < 50; call++) {
      SCOPED_TRACE (call);
      const std::string name =
          std::to_string (call) + (operation == os_Operation::Write ? "w" : "s") + ".job";
      FailingDisk disk;
      disk.FailFrom (operation, call);
      done = import (name);
      if (!Exists (name)) {
        EXPECT_EQ (call, 0u) << "only a header that failed leaves nothing";
        continue;
      }
      // Whatever stands there is a prefix that ends in a whole frame.
      const Bytes bytes = Read (name);
      EXPECT_TRUE (std::equal (bytes.begin (), bytes.end (), whole.begin ()));
      EXPECT_EQ (FramesOf (bytes).back (), bytes.size ());
      EXPECT_TRUE (!done || bytes == whole);
    }
    EXPECT_TRUE (done);
  }
}

TEST_F (Access, RefusesWhatIsNoJobOfThisFormatAndLeavesItAlone) {
  const Bytes job = Job ({FrameOf (DBACTION_Add, 0, MakeNote ("n"), 2)});
  const struct {
    const char* name;
    std::size_t place;
    uint8_t value;
    int32_t status;
  } cases[] = {{"antenna file", 43, 2, JOBOPEN_NotAJob},
               {"major", 45, 13, JOBOPEN_WrongVersion},
               {"minor", 46, 9, JOBOPEN_WrongVersion},
               {"revision", 47, 4, JOBOPEN_WrongVersion}};
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    Bytes bytes = job;
    bytes[c.place] = c.value;
    Write ("x.job", bytes);
    dbAccess other;
    EXPECT_FALSE (other.Open (folder.Device ("x.job"), true));
    EXPECT_EQ (other.GetOpenStatus (), c.status);
    EXPECT_FALSE (other.IsOpen ());
    EXPECT_EQ (Read ("x.job"), bytes);
  }
  Write ("x.job", Header ());
  dbAccess empty;
  EXPECT_FALSE (empty.Open (folder.Device ("x.job"), true));
  EXPECT_EQ (empty.GetOpenStatus (), JOBOPEN_NotAJob);
  EXPECT_FALSE (empty.Open (folder.Device ("none.job"), true));
  EXPECT_EQ (empty.GetOpenStatus (), JOBOPEN_CannotOpen);
  hearing.fileErrors.clear ();
}

TEST_F (Access, FirstRecordThatIsNoHeaderGivesAnEmptyOne) {
  Bytes bytes = Header ();
  Append (bytes, FrameOf (DBACTION_Add, 0, MakeNote ("n"), 1));
  Write ("x.job", bytes);
  ASSERT_TRUE (access.Open (folder.Device ("x.job"), false));
  db_JobHeader header = MakeHeader ();
  EXPECT_EQ (LoadJobHeader (access, header), DBID{1});
  EXPECT_TRUE (header.JobName.IsEmpty ());
  EXPECT_EQ (GetRecordType (&access, {1}), DATABASE_NoteRecord);
  EXPECT_EQ (GetRecordType (&access, {2}), DATABASE_AllRecords);
  EXPECT_EQ (GetRecordType (nullptr, {1}), DATABASE_AllRecords);
  EXPECT_EQ (hearing.TakeAssertions ().size (), 2u);
}

TEST_F (Access, StoresNoMeasurementAsARecord) {
  Create ();
  access.BeginGroup ();
  db_Grid grid;
  EXPECT_EQ (AddToJob (access, &grid), NODBID);
  EXPECT_EQ (ReplaceInJob (access, {1}, nullptr), NODBID);
  EXPECT_EQ (hearing.TakeAssertions (), (Texts{"!record->IsMeasurement ()", "record != NULL"}));
  db_Note note = MakeNote ("n");
  EXPECT_EQ (InsertInJob (access, {1}, &note), DBID{2});
  EXPECT_EQ (note.RecordId, DBID{2});
  access.EndGroup ();
  EXPECT_EQ (IdsOf (access), (std::vector<uint32_t>{2, 1}));
  db_Note again = MakeNote ("m");
  EXPECT_EQ (AddToJob (access, &again, Grouping::Own), DBID{3});
}

// Whatever is done to a job, opening it again gives the same job.
TEST_F (Access, ReplayGivesWhatWasLive) {
  const uint32_t seed = 20240917;
  SCOPED_TRACE (seed);
  std::mt19937 random (seed);
  Create ();
  std::vector<DBID> points, notes, ends;
  const auto any = [&] (const std::vector<DBID>& ids) {
    return ids.empty () ? DBID{1} : ids[random () % ids.size ()];
  };
  for (int group = 0; group < 400; group++) {
    const auto kept = std::tuple (points, notes, ends);
    access.BeginGroup ();
    for (int i = static_cast<int> (random () % 5); i >= 0; i--) {
      const std::string name = std::to_string (random () % 1000 + 1);
      switch (random () % 11) {
        case 0:
        case 1:
          points.push_back (Add (MakePoint (name.c_str ())));
          break;
        case 2:
          notes.push_back (Add (MakeNote (name.c_str ())));
          break;
        case 3:
          ends.push_back (Add (db_EndEntity ()));
          break;
        case 4: {
          db_Circle circle;
          circle.HorzCircle = static_cast<double> (random ());
          if (!points.empty ()) access.AddAction (DBACTION_Amend, any (points), circle);
          break;
        }
        case 5: {
          db_Observation point = MakePoint (name.c_str ());
          point.TimeStamp = static_cast<double> (random ());
          if (!points.empty ()) access.AddAction (DBACTION_Replace, any (points), point);
          break;
        }
        case 6: {
          db_BoolAction mark;
          mark.Value = static_cast<uint8_t> (random () % 3);
          if (!points.empty ()) access.AddAction (DBACTION_Amend, any (points), mark);
          break;
        }
        case 7: {
          db_Features features;
          features.Features.Parse (name, true);
          if (!points.empty ()) access.AddAction (DBACTION_Amend, any (points), features);
          break;
        }
        case 8:
          access.AddAction (DBACTION_Replace, any (notes), MakeNote (name.c_str ()));
          break;
        case 9:
          ends.push_back (access.AddAction (DBACTION_Insert, any (points), db_EndEntity ()));
          break;
        default:
          if (!ends.empty ()) {
            access.AddAction (DBACTION_Delete, ends.back (), db_EndEntity ());
            ends.pop_back ();
          }
      }
    }
    if (random () % 6 == 0) {
      access.CancelGroup ();
      std::tie (points, notes, ends) = kept;
    } else {
      access.EndGroup ();
    }
  }
  const std::vector<std::string> live = ChainOf (access);
  const DBID next = access.Model ().PeekNextDBID ();
  std::vector<DBID> firsts, lasts;
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    firsts.push_back (access.GetFirstOfType (static_cast<database_RecordType> (type)));
    lasts.push_back (access.GetLastOfType (static_cast<database_RecordType> (type)));
  }
  ASSERT_TRUE (access.Close ());
  ASSERT_TRUE (access.Open (folder.Device ("a.job"), false));
  EXPECT_EQ (access.GetOpenStatus (), JOBOPEN_Ok);
  EXPECT_EQ (ChainOf (access), live);
  EXPECT_EQ (access.Model ().PeekNextDBID (), next);
  EXPECT_EQ (access.Model ().RetiredCount (), 0);
  for (int type = 0; type < DATABASE_AllRecords; type++) {
    const auto at = static_cast<std::size_t> (type);
    EXPECT_EQ (access.GetFirstOfType (static_cast<database_RecordType> (type)), firsts[at]);
    EXPECT_EQ (access.GetLastOfType (static_cast<database_RecordType> (type)), lasts[at]);
  }
  EXPECT_TRUE (hearing.log.empty ()) << hearing.log.front ();
}

}  // namespace
}  // namespace clxml::testing
