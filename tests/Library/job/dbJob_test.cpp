// A job in terms of the survey: creation, opening, entities, notes, targets, defaults.
// Leans on the job fixture.
#include "Library/job/dbJob.h"

#include <sys/stat.h>

#include <new>

#include "Library/job/dbstore.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbCoordSystems.h"
#include "Library/records/dbGPS.h"
#include "Library/records/dbSettings.h"
#include "jobfixture.h"
#include "support/faults.h"

namespace clxml::testing {
namespace {

using Texts = std::vector<std::string>;

class Database : public JobTest {
 protected:
  ~Database () override { job.Close (); }
  void Create () { ASSERT_TRUE (job.Create (folder.Device ("a.job"), "Quarry")); }
  DBID AddPoint (const char* name, const dbRecord_Class& measurement) {
    db_Observation point = MakePoint (name);
    const DBID id = job.AddObservation (point);
    job.SetRecord (id, measurement);
    job.EndEntity ();
    return id;
  }
  Str NoteOf (DBID id) { return job.GetRecord (id)->Note; }

  JobDatabase job;
};

// An index that only listens.
struct Listening final : JobIndex {
  explicit Listening (Texts& list) : heard (list) {}
  bool Attach (JobDatabase& job) override {
    heard.push_back ("attach " + std::to_string (job.Access ()->GetFirstRecordId ().value));
    return true;
  }
  void OnCommit (const dbTransaction&) override { heard.emplace_back ("commit"); }
  void Clear () override { heard.emplace_back ("clear"); }
  DBID FindTarget (const char* name) override {
    heard.push_back (std::string ("find ") + name);
    return target;
  }
  bool HideObservation (DBID id) override {
    heard.push_back ("hide " + std::to_string (id.value));
    return id == complete;
  }
  Texts& heard;
  DBID target, complete;
};

TEST_F (Database, NewJobIsAHeaderAndOneFrame) {
  job.JobHeader ().TimeStamp = 1.0;
  job.JobHeader ().Note = "made\r\n";
  Create ();
  EXPECT_EQ (job.GetOpenStatus (), JOBOPEN_Ok);
  EXPECT_TRUE (job.Close ());
  EXPECT_TRUE (job.Close ());
  db_JobHeader header = MakeHeader ();
  header.JobName = "Quarry";
  header.Note = "made\r\n";
  Bytes expected = Header ();
  Append (expected, FrameOf (DBACTION_Add, 0, header, 1));
  EXPECT_EQ (Read ("a.job"), expected);
  EXPECT_FALSE (job.Create (folder.Device ("a.job"), "Other"));
  EXPECT_EQ (Read ("a.job"), expected);
  ASSERT_TRUE (job.Open (folder.Device ("a.job"), true));
  EXPECT_EQ (job.JobHeader ().JobName, "Quarry");
}

TEST_F (Database, CutsItsNameBetweenCharacters) {
  const std::string a31 (31, 'a'), a32 (32, 'a'), a33 (33, 'a');
  const struct {
    std::string name, kept;
  } cases[] = {{a33, a33},
               {a33 + "b", a33},
               {a32 + "\xC3\xA9", a32},
               {a31 + "\xC3\xA9", a31 + "\xC3\xA9"},
               {a31 + "\xE2\x82\xAC", a31},
               {a31 + "\xE2\x82\xAC" + "x", a31},
               {std::string (30, 'a') + "\xF0\x9F\x98\x80", std::string (30, 'a')},
               {std::string (40, '\x80'), std::string (33, '\x80')}};
  for (const auto& c : cases) {
    JobDatabase named;
    std::filesystem::remove (folder.Host ("n.job"));
    ASSERT_TRUE (named.Create (folder.Device ("n.job"), Str (c.name.c_str ())));
    named.Close ();
    ASSERT_TRUE (named.Open (folder.Device ("n.job"), false));
    EXPECT_EQ (named.JobHeader ().JobName, c.kept.c_str ());
  }
}

TEST_F (Database, RaisesWhenTheHeaderOfANewJobCannotBeWritten) {
  FailingDisk disk;
  disk.FailOnce (os_Operation::Write, 0);
  EXPECT_THROW (job.Create (folder.Device ("a.job"), "Job"), Str);
  EXPECT_FALSE (job.IsOpen ());
  EXPECT_FALSE (Exists ("a.job"));
}

TEST_F (Database, RaisesForAHeaderRecordThatNoJobHolds) {
  job.JobHeader ().Note = std::string (JOURNAL_MaxFrame, 'n').c_str ();
  EXPECT_THROW (job.Create (folder.Device ("a.job"), "Job"), Str);
  EXPECT_FALSE (Exists ("a.job"));
}

TEST_F (Database, DamagedJobIsOpenedOnlyWhenItMayBeCut) {
  Bytes bytes = Job (
      {FrameOf (DBACTION_Add, 0, MakeNote ("n"), 2), FrameOf (DBACTION_Add, 0, MakeNote ("m"), 3)});
  const std::size_t last = FramesOf (bytes)[2];
  bytes[last + 20] ^= 1;
  Write ("d.job", bytes);
  EXPECT_FALSE (job.Open (folder.Device ("d.job"), true));
  EXPECT_EQ (job.GetOpenStatus (), JOBOPEN_Corrupt);
  bool answer = false;
  job.SetOnCorruption ([&] (JobDatabase& damaged) {
    EXPECT_EQ (damaged.Access ()->GetLastRecordId (), DBID{2});
    return answer;
  });
  EXPECT_FALSE (job.Open (folder.Device ("d.job"), true));
  EXPECT_EQ (Read ("d.job"), bytes);
  answer = true;
  EXPECT_FALSE (job.Open (folder.Device ("d.job"), false)) << "reading cuts nothing";
  EXPECT_EQ (Read ("d.job"), bytes);
  hearing.TakeLog ();
  ASSERT_TRUE (job.Open (folder.Device ("d.job"), true));
  EXPECT_EQ (hearing.TakeLog ().back (), "Journal truncated at file position " + Hex (last));
  job.Close ();
  bytes.resize (last);
  EXPECT_EQ (Read ("d.job"), bytes);
}

TEST_F (Database, WritesWaitingNotesIntoTheNextObservationOrBehindTheJob) {
  Create ();
  StrArray lines;
  lines.Add ("one");
  lines.Add ("two");
  job.AddPendingNotes (lines);
  db_Observation point = MakePoint ("P");
  point.Note = "own\r\n";
  job.AddObservation (point);
  EXPECT_EQ (point.Note, "own\r\none\r\ntwo\r\n");
  EXPECT_TRUE (job.InGroup ());
  EXPECT_EQ (job.EndEntity (), DBID{3});
  EXPECT_FALSE (job.InGroup ());
  EXPECT_EQ (NoteOf ({2}), point.Note);
  job.AppendToNote ({2}, "line");
  EXPECT_EQ (NoteOf ({2}), "line\r\nown\r\none\r\ntwo\r\n");
  job.PrependToNote ({2}, lines);
  EXPECT_EQ (NoteOf ({2}), "one\r\ntwo\r\nline\r\nown\r\none\r\ntwo\r\n");
  job.AddPendingNotes (lines);
  job.BeginGroup ();
  db_Note dropped = MakeNote ("in a group that closing cancels");
  job.AddRecord (dropped);
  EXPECT_TRUE (job.Close ());
  const Reopened reopened = Open ("a.job");
  EXPECT_EQ (reopened.ids, (std::vector<uint32_t>{1, 2, 3, 6}));
  EXPECT_NE (reopened.chain.back ().find ("one\r\ntwo\r\n"), std::string::npos);
}

TEST_F (Database, DeletesAnEntityUpToItsEndButNoOther) {
  Create ();
  db_Note note = MakeNote ("stays");
  db_Observation bare = MakePoint ("bare");
  job.AddRecord (bare);                           // 2
  const DBID point = AddPoint ("P", db_Grid ());  // 3, 4 the grid, 5 its end
  db_Observation open = MakePoint ("Q");
  job.AddObservation (open);  // 6
  job.AddRecord (note);       // 7
  job.EndEntity ();           // 8
  job.DeleteEntity (point);
  EXPECT_EQ (IdsOf (*job.Access ()), (std::vector<uint32_t>{1, 2, 6, 7, 8}));
  job.DeleteEntity ({6});
  EXPECT_EQ (IdsOf (*job.Access ()), (std::vector<uint32_t>{1, 2, 7}));
  job.DeleteEntity ({2});
  EXPECT_EQ (IdsOf (*job.Access ()), (std::vector<uint32_t>{1, 7}));
  job.DeleteEntity (NODBID);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"recordId != NODBID"});
}

TEST_F (Database, DeletesOnlyTheRecordWithoutAnEntity) {
  Create ();
  db_Note note = MakeNote ("stays");
  db_Units units;
  db_Coding coding;
  job.AddRecord (note);    // 2
  job.AddRecord (units);   // 3
  job.AddRecord (coding);  // 4
  for (const uint32_t id : {2u, 99u}) job.DeleteEntity ({id});
  EXPECT_EQ (IdsOf (*job.Access ()), (std::vector<uint32_t>{1, 2, 3, 4}));
  for (int i = 0; i < 2; i++) job.DeleteEntity ({3});
  EXPECT_EQ (IdsOf (*job.Access ()), (std::vector<uint32_t>{1, 2, 4}));
}

TEST_F (Database, CommitCallbackMayChangeTheJob) {
  Create ();
  Texts calls;
  int depth = 0;
  job.SetOnCommit ([&] (JobDatabase& own, const dbTransaction& transaction) {
    EXPECT_EQ (depth++, 0) << "callbacks are not nested";
    EXPECT_FALSE (own.InGroup ());
    const dbRecord_Class& record = *transaction.First ()->DBRecord;
    calls.emplace_back (record.Note.Data ());
    if (record.Note.Length () < 3) {
      db_Note longer = MakeNote ((record.Note + "x").Data ());
      EXPECT_NE (own.AddRecord (longer), NODBID);
      EXPECT_NE (own.GetRecord (longer.RecordId), nullptr);
    }
    EXPECT_FALSE (own.Close ());
    depth--;
    if (record.Note == "x") throw 5;
  });
  db_Note note = MakeNote ("x");
  EXPECT_THROW (job.AddRecord (note), int);
  EXPECT_EQ (calls, (Texts{"x", "xx", "xxx"}));
  EXPECT_EQ (hearing.TakeAssertions (), Texts (3, "!_Listener->IsCalling()"));
  EXPECT_FALSE (job.InGroup ());
  job.SetOnCommit ({});
  job.AddRecord (note);
  const std::vector<std::string> live = ChainOf (*job.Access ());
  EXPECT_EQ (live.size (), 5u);
  EXPECT_TRUE (job.Close ());
  EXPECT_EQ (Open ("a.job").chain, live);
}

TEST_F (Database, CreateAndOpenEndTheSharingOfAnotherJob) {
  JobDatabase closed, copy;
  copy.AttachCopy (closed);
  ASSERT_TRUE (copy.Create (folder.Device ("c.job"), "Copy"));
  EXPECT_FALSE (copy.Refers (closed));
  EXPECT_TRUE (copy.Close ());
  EXPECT_EQ (Open ("c.job").ids, (std::vector<uint32_t>{1}));
  copy.AttachCopy (closed);
  ASSERT_TRUE (copy.Open (folder.Device ("c.job"), true));
  db_Note note = MakeNote ("n");
  copy.AddRecord (note);
  EXPECT_TRUE (copy.Close ());
  EXPECT_EQ (Open ("c.job").ids, (std::vector<uint32_t>{1, 2}));
}

TEST_F (Database, FailedCreateLeavesNoFile) {
  struct Threads final : Environment {
    uint32_t GetCurrentThread () override { return 100; }
  } threads;
  Environment* before = Environment::Install (&threads);
  const mode_t mask = umask (0222);  // the new file is read-only
  EXPECT_FALSE (job.Create (folder.Device ("a.job"), "Job"));
  EXPECT_FALSE (job.IsOpen ());
  Environment::Install (before);
  EXPECT_FALSE (Exists ("a.job"));
  job.SetIndexMaker ([] () -> std::unique_ptr<JobIndex> { throw std::bad_alloc (); });
  EXPECT_THROW (job.Create (folder.Device ("a.job"), "Job"), std::bad_alloc);
  umask (mask);
  EXPECT_FALSE (job.IsOpen ());
  EXPECT_FALSE (Exists ("a.job"));
}

TEST_F (Database, TakesTheHeaderFromTheFirstDBID) {
  Create ();
  db_EndEntity front;
  job.BeginGroup ();
  EXPECT_EQ (InsertInJob (*job.Access (), {1}, &front), DBID{2});
  job.EndGroup ();
  EXPECT_TRUE (job.Close ());
  EXPECT_TRUE (job.JobHeader ().JobName.IsEmpty ());
  ASSERT_TRUE (job.Open (folder.Device ("a.job"), false));
  EXPECT_EQ (job.JobHeader ().JobName, "Quarry");
  job.Close ();
  job.JobHeader ().Note = "old";
  EXPECT_FALSE (job.Open (folder.Device ("none.job"), false));
  EXPECT_TRUE (job.JobHeader ().Note.IsEmpty ());
  hearing.fileErrors.clear ();
}

TEST_F (Database, KeepsPendingNotesThatNoRecordTook) {
  Create ();
  StrArray lines;
  lines.Add (std::string (JOURNAL_MaxFrame, 'n').c_str ());
  job.AddPendingNotes (lines);
  db_Observation point = MakePoint ("P");
  point.Note = "own";
  EXPECT_EQ (job.AddObservation (point), NODBID);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"length <= JOURNAL_MaxFrame"});
  EXPECT_EQ (job.PendingNotes ().Count (), 1);
  EXPECT_EQ (point.Note, "own");
  job.CancelGroup ();
  job.Access ()->SetSingleActionMode ();
  EXPECT_THROW (job.AddObservation (point), Str);
  EXPECT_FALSE (job.InGroup ());
  EXPECT_EQ (job.PendingNotes ().Count (), 1);
  EXPECT_FALSE (job.Close ()) << "they fit in no note either";
}

TEST_F (Database, KeepsToOneLevelOfGroups) {
  Create ();
  job.EndGroup ();
  EXPECT_EQ (hearing.TakeAssertions (),
             (Texts{"this->_GroupNestCount == 1", "this->_GroupNestCount > 0"}));
  job.CancelGroup ();
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"_GroupNestCount == 1"});
  job.BeginGroup ();
  job.BeginGroup ();
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"!InGroup()"});
  job.WriteSettingsToJob ();
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"!this->InTransaction()"});
}

TEST_F (Database, TellsItsIndexAndItsHost) {
  Texts heard;
  Listening* index = nullptr;
  job.SetIndexMaker ([&] {
    auto made = std::make_unique<Listening> (heard);
    index = made.get ();
    return made;
  });
  job.SetOnCommit ([&] (JobDatabase&, const dbTransaction&) { heard.emplace_back ("host"); });
  Create ();
  EXPECT_EQ (std::exchange (heard, {}), Texts{"attach 1"});
  db_Observation point = MakePoint ("P");
  index->complete = {2};
  job.AddObservation (point);
  job.SetRecord (point.RecordId, db_Grid ());
  db_PointKeyin keyin;
  job.AddRecord (keyin);
  job.EndEntityMarked ();
  EXPECT_EQ (std::exchange (heard, {}), (Texts{"commit", "host", "hide 4", "hide 2"}));
  db_Target target;
  target.Name = "T";
  index->target = job.AddTargetIfNew (target);
  heard.clear ();
  db_Target other;
  other.Name = "T";
  other.RawTargetHeight = 2.0;
  EXPECT_NE (job.AddTargetIfNew (other), index->target);
  heard.clear ();
  // Batch mode is silent, and a copy owns nothing.
  job.Access ()->SetSingleActionMode ();
  job.AddRecord (keyin);
  EXPECT_TRUE (heard.empty ());
  {
    JobDatabase copy;
    job.SetExternalLink (true);
    copy.AttachCopy (job);
    EXPECT_TRUE (copy.IsLinked ());
    EXPECT_TRUE (copy.Refers (job));
    EXPECT_FALSE (job.Refers (copy));
    EXPECT_NE (copy.GetRecord ({1}), nullptr);
    copy.Close ();
    EXPECT_FALSE (copy.Refers (job));
  }
  EXPECT_TRUE (job.IsOpen ());
  EXPECT_TRUE (heard.empty ());
  job.Close ();
  EXPECT_EQ (heard, Texts{"clear"});
}

TEST_F (Database, AddsATargetAntennaOrEquipmentOnlyWhenItIsNew) {
  Create ();
  db_Target a, b;
  a.Name = "A";
  b.Name = "B";
  const DBID first = job.AddTargetIfNew (a);
  job.AddTargetIfNew (b);
  db_Target again = a;
  again.TimeStamp = 5.0;
  EXPECT_EQ (job.AddTargetIfNew (again), first);
  again.RawTargetHeight = 1.5;
  const DBID second = job.AddTargetIfNew (again);
  EXPECT_NE (second, first);
  EXPECT_EQ (job.AddTargetIfNew (again), second);
  job.BeginGroup ();
  again.RawTargetHeight = 1.7;
  const DBID third = job.AddTargetIfNew (again);
  EXPECT_EQ (job.AddTargetIfNew (again), third) << "in the open group";
  job.EndGroup ();
  db_Antenna antenna;
  const DBID antennaId = job.AddAntennaIfNew (antenna);
  EXPECT_EQ (job.AddAntennaIfNew (antenna), antennaId);
  db_Equipment equipment;
  const DBID equipmentId = job.AddEquipmentIfNew (equipment);
  EXPECT_EQ (job.AddEquipmentIfNew (equipment), equipmentId);
  db_EndSurveyStyle end;
  job.AddRecord (end);
  EXPECT_GT (job.AddTargetIfNew (again), third);
  EXPECT_GT (job.AddAntennaIfNew (antenna), antennaId);
  EXPECT_GT (job.AddEquipmentIfNew (equipment), equipmentId);
}

TEST_F (Database, ChangingATargetLeavesLaterObservationsAsTheyWere) {
  Create ();
  db_Target target;
  target.Name = "T";
  target.RawTargetHeight = 1.5;
  const DBID oldId = job.AddRecord (target);
  db_Circle circle;
  circle.Target = oldId;
  const DBID first = AddPoint ("1", circle), second = AddPoint ("2", circle),
             other = AddPoint ("3", db_Grid ()), last = AddPoint ("4", circle);
  const auto targetOf = [&] (DBID id) {
    return db_Circle::From (db_Observation::From (job.GetRecord (id))->Measurement ())->Target;
  };
  db_Target higher = target;
  higher.RawTargetHeight = 1.8;
  const DBID newId = job.ChangeTarget (second, higher);
  EXPECT_EQ (targetOf (first), oldId);
  EXPECT_EQ (targetOf (second), newId);
  EXPECT_NE (targetOf (last), oldId);
  EXPECT_EQ (db_Target::From (job.GetRecord (targetOf (last)))->RawTargetHeight, 1.5);
  EXPECT_EQ (db_Target::From (job.GetRecord (newId))->RawTargetHeight, 1.8);
  // Of the newest one: two Adds and one Amend, no more.
  const uint32_t before = job.Access ()->Model ().PeekNextDBID ().value;
  job.ChangeTarget (last, higher);
  EXPECT_EQ (job.Access ()->Model ().PeekNextDBID ().value, before + 3);
  EXPECT_EQ (job.ChangeTarget (oldId, higher), NODBID);
  EXPECT_EQ (job.ChangeTarget (other, higher), NODBID);
  EXPECT_EQ (hearing.TakeAssertions (), (Texts{"observation", "oldTargetPtr"}));

  db_Antenna antenna;
  db_ECEF ecef;
  ecef.Antenna = job.AddRecord (antenna);
  const DBID rover = AddPoint ("5", ecef);
  antenna.MeasuredHeight = 2.0;
  const DBID changed = job.ChangeAntenna (rover, antenna);
  EXPECT_EQ (db_ECEF::From (db_Observation::From (job.GetRecord (rover))->Measurement ())->Antenna,
             changed);
  EXPECT_EQ (job.ChangeAntenna (last, antenna), NODBID);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"oldAntennaPtr"});
}

TEST_F (Database, AmendsFeaturesMarksAndReferences) {
  Create ();
  const DBID point = AddPoint ("P", db_Circle ());
  FeatureArray features;
  features.Parse ("TREE", false);
  job.SetFeatures (point, features);
  job.SetReference (point, {9});
  job.SetBoolean (point, 0);
  const db_Observation* stored = db_Observation::From (job.GetRecord (point));
  EXPECT_EQ (stored->Features.ToString (), "TREE");
  EXPECT_TRUE (stored->IsDeleted ());
  EXPECT_EQ (db_Circle::From (stored->Measurement ())->Target, DBID{9});
}

TEST_F (Database, FindsTheLatestRecordOrTheDefault) {
  EXPECT_NE (job.GetLatest<db_Units> (), nullptr) << "the default of a closed job";
  EXPECT_EQ (job.Defaults ().Count (), 1);
  Create ();
  db_Units units;
  const DBID id = job.AddRecord (units);
  EXPECT_EQ (job.GetLatest<db_Units> ()->RecordId, id);
  job.BeginGroup ();
  const DBID queued = job.AddRecord (units);
  EXPECT_EQ (job.GetLatest<db_Units> ()->RecordId, queued);
  job.EndGroup ();
  EXPECT_EQ (job.GetLatest (DATABASE_AntennaRecord), nullptr);
  EXPECT_EQ (job.GetLatest (138), nullptr);
  EXPECT_EQ (hearing.TakeAssertions (), (Texts{"def->IsPersisted()", "def"}));
}

TEST_F (Database, CarriesDefaultsThroughAFile) {
  Create ();
  db_Units units;
  units.Note = "first";
  job.AddRecord (units);
  units.Note = "second";
  job.AddRecord (units);
  db_Note note = MakeNote ("no setting");
  job.AddRecord (note);
  ASSERT_EQ (job.Defaults ().Count (), 1) << "commits feed the defaults";
  EXPECT_EQ (job.Defaults ().At (0)->Note, "second");
  job.Defaults ().Clear ();
  job.SaveSettingsToDefaults ();
  db_Coding coding;
  job.Defaults ().Store (coding);
  Write ("d.dat", {1, 2, 3});
  EXPECT_TRUE (job.WriteDefaults (folder.Device ("d.dat")));
  const Bytes bytes = Read ("d.dat");
  const std::vector<std::size_t> frames = FramesOf (bytes);
  ASSERT_EQ (frames.size (), 4u);
  EXPECT_EQ (UInt32At (bytes, frames[2] + idAt), 3u);
  EXPECT_EQ (Open ("d.dat").ids, (std::vector<uint32_t>{1, 2, 3}));

  JobDatabase other;
  EXPECT_TRUE (other.ReadDefaults (folder.Device ("d.dat")));
  ASSERT_EQ (other.Defaults ().Count (), 2);
  EXPECT_EQ (other.GetLatest<db_Units> ()->Note, "second");
  Bytes damaged = bytes;
  damaged[frames[2] + 20] ^= 1;
  Write ("d.dat", damaged);
  EXPECT_FALSE (other.ReadDefaults (folder.Device ("d.dat")));
  damaged = bytes;
  damaged[47]++;
  Write ("d.dat", damaged);
  EXPECT_FALSE (other.ReadDefaults (folder.Device ("d.dat")));
  EXPECT_EQ (other.Defaults ().Count (), 0);
  EXPECT_FALSE (other.ReadDefaults (folder.Device ("none.dat")));
  EXPECT_EQ (other.Defaults ().GetDefault (DATABASE_NoteRecord), nullptr);
  EXPECT_EQ (other.Defaults ().Store (note), -1);
  EXPECT_EQ (other.Defaults ().At (7), nullptr);
  EXPECT_EQ (hearing.TakeAssertions (),
             (Texts{"def->IsPersisted()", "record->IsPersisted()", "(i >= 0) && (i < count)"}));
}

TEST_F (Database, GivesANewJobTheSettingsItMustHave) {
  Create ();
  job.WriteSettingsToJob ();
  Texts types;
  for (const uint32_t id : IdsOf (*job.Access ()))
    types.emplace_back (ClassName (job.GetRecord ({id})->GetType ()));
  EXPECT_EQ (types, (Texts{"db_JobHeader", "db_Units", "db_Coding", "db_Corrections",
                           "db_DescriptionsDefinition"}));
  // What the job has goes the other way.
  db_Coding coding;
  coding.Note = "of the job";
  job.Access ()->SetListener (nullptr);
  job.AddRecord (coding);
  job.WriteSettingsToJob ();
  EXPECT_EQ (job.Defaults ().GetDefault (DATABASE_CodingRecord)->Note, "of the job");
}

TEST_F (Database, SaysSoWhenClosingLosesSomething) {
  Create ();
  StrArray lines;
  lines.Add ("lost");
  job.AddPendingNotes (lines);
  job.Access ()->SetSingleActionMode ();
  FailingDisk disk;
  disk.FullAfter (10);
  EXPECT_FALSE (job.Close ());
  EXPECT_FALSE (job.IsOpen ());
  hearing.fileErrors.clear ();
}

}  // namespace
}  // namespace clxml::testing
