// What actions do to the model: chain, look-up, type index, carriers, and actions that do not fit.
// Leans on the job fixture.
#include "Library/job/dbmodel.h"

#include <random>

#include "Library/records/dbGPS.h"
#include "Library/records/dbSettings.h"
#include "jobfixture.h"

namespace clxml::testing {
namespace {

using Texts = std::vector<std::string>;

class Model : public LibraryTest {
 protected:
  ~Model () override { model.Clear (); }

  // Applies one action as a group would; the DBID.
  DBID Do (dbModel_Verb verb, DBID target, const dbRecord_Class& record,
           ApplyMode mode = ApplyMode::Copy) {
    dbModel_Action action (verb, target, CloneRecord (record));
    action.DBRecord->RecordId = TakesNumber (verb) ? model.NextDBID () : target;
    const DBID id = action.DBRecord->RecordId;
    applied = model.Apply (action, mode);
    return id;
  }
  DBID Add (const dbRecord_Class& record) { return Do (DBACTION_Add, NODBID, record); }
  const dbRecord_Class* At (DBID id) {
    const dbModel_Node* node = model.Lookup (id);
    return node ? node->DBRecord.get () : nullptr;
  }
  std::vector<uint32_t> Forward () {
    std::vector<uint32_t> ids;
    for (const dbModel_Node* n = model.MainThread ().Front (); n; n = n->ChainForward)
      ids.push_back (n->DBRecord->RecordId.value);
    return ids;
  }
  std::vector<uint32_t> Backward () {
    std::vector<uint32_t> ids;
    for (const dbModel_Node* n = model.MainThread ().Back (); n; n = n->ChainBack)
      ids.insert (ids.begin (), n->DBRecord->RecordId.value);
    return ids;
  }
  void ExpectChain (const std::vector<uint32_t>& ids) {
    EXPECT_EQ (Forward (), ids);
    EXPECT_EQ (Backward (), ids);
  }

  dbModel model;
  bool applied = false;
};

TEST_F (Model, DeletesAtEveryPlaceOfTheChainAndKeepsTheRecordReachable) {
  for (const uint32_t first : {1u, 2u, 3u}) {
    model.Clear ();
    for (int i = 0; i < 3; i++) Add (MakeNote ("n"));
    EXPECT_EQ (model.NextDBID (), DBID{4});
    db_EndEntity any;
    std::vector<uint32_t> left = {1, 2, 3};
    for (uint32_t i = 0; i < 3; i++) {
      const DBID id{(first + i - 1) % 3 + 1};
      Do (DBACTION_Delete, id, any);
      EXPECT_TRUE (applied);
      std::erase (left, id.value);
      ExpectChain (left);
      ASSERT_NE (At (id), nullptr);
      EXPECT_TRUE (model.Lookup (id)->IsOffChain ());
    }
    EXPECT_EQ (model.MainThread ().Front (), nullptr);
    EXPECT_EQ (model.MainThread ().Back (), nullptr);
    EXPECT_EQ (model.RecordCount (), 3);
    EXPECT_EQ (model.TypeIndex (DATABASE_NoteRecord).Last, DBID{3});
    model.ReleaseRetired ();
    EXPECT_NE (At ({2}), nullptr);
  }
}

TEST_F (Model, InsertsInFrontAndKeepsTheTypeIndexInChainOrder) {
  Add (MakeNote ("1"));
  Add (MakePoint ("2"));
  Add (MakeNote ("3"));
  // A type that is new to the job.
  Do (DBACTION_Insert, {1}, db_EndEntity ());
  ExpectChain ({4, 1, 2, 3});
  EXPECT_EQ (model.TypeIndex (DATABASE_EndEntityRecord).First, DBID{4});
  EXPECT_EQ (model.TypeIndex (DATABASE_EndEntityRecord).Last, DBID{4});
  // In front of the last of its type, and behind it.
  Do (DBACTION_Insert, {1}, MakePoint ("5"));
  EXPECT_EQ (model.TypeIndex (DATABASE_ObservationRecord).First, DBID{2}) << "stays";
  EXPECT_EQ (model.TypeIndex (DATABASE_ObservationRecord).Last, DBID{2});
  Do (DBACTION_Insert, {3}, MakePoint ("6"));
  EXPECT_EQ (model.TypeIndex (DATABASE_ObservationRecord).Last, DBID{6});
  ExpectChain ({4, 5, 1, 2, 6, 3});
  EXPECT_EQ (model.TypeIndex (DATABASE_ObservationRecord).Count, 3);
  EXPECT_EQ (model.RecordCount (), 6);
}

// The last record of each type, against a walk over the whole chain. Most records go to the same
// place, so that the order of the chain must be tagged anew.
TEST_F (Model, KeepsLastOfTypeThroughInsertsAndDeletes) {
  const uint32_t seed = 20250611;
  std::mt19937 random (seed);
  const auto any = [&] () -> std::unique_ptr<dbRecord_Class> {
    switch (random () % 3) {
      case 0:
        return std::make_unique<db_EndEntity> ();
      case 1:
        return std::make_unique<db_PointKeyin> ();
      default:
        return std::make_unique<db_Units> ();
    }
  };
  for (int i = 0; i < 20; i++) Add (*any ());
  DBID target{10};
  for (int round = 0; round < 3000; round++) {
    SCOPED_TRACE (round);
    const std::unique_ptr<dbRecord_Class> record = any ();
    const DBID next = model.PeekNextDBID ();
    if (random () % 50 == 0) target = {static_cast<uint32_t> (random () % (next.value - 1) + 1)};
    if (random () % 8 == 0) {
      Add (*record);
    } else if (random () % 8 == 0) {
      const DBID id{static_cast<uint32_t> (random () % (next.value - 1) + 1)};
      if (!model.Lookup (id)->IsOffChain ()) Do (DBACTION_Delete, id, *record);
    } else if (!model.Lookup (target)->IsOffChain ()) {
      bool isLater = false;
      const database_RecordType type = record->GetType ();
      for (const dbModel_Node* node = model.Lookup (target); node; node = node->ChainForward)
        isLater = isLater || node->DBRecord->GetType () == type;
      const DBID before = model.TypeIndex (type).Last;
      const DBID id = Do (DBACTION_Insert, target, *record,
                          random () % 2 == 0 ? ApplyMode::Replay : ApplyMode::Copy);
      ASSERT_EQ (model.TypeIndex (type).Last, isLater ? before : id);
      // In front of the target, of the new record, or before all others.
      if (random () % 2 == 0) target = id;
      if (random () % 100 == 0) target = model.MainThread ().Front ()->DBRecord->RecordId;
    }
  }
}

TEST_F (Model, ReplacesKeepingPlaceTimeAndId) {
  Add (MakeNote ("1"));
  db_EndEntity old;
  old.TimeStamp = 5.0;
  old.Note = "old";
  const DBID id = Add (old);
  Add (MakeNote ("3"));
  const dbRecord_Class* before = At (id);
  db_EndEntity replacement;
  replacement.TimeStamp = 9.0;
  replacement.Note = "new";
  Do (DBACTION_Replace, id, replacement);
  ExpectChain ({1, 2, 3});
  EXPECT_NE (At (id), before);
  EXPECT_EQ (before->Note, "old") << "a reader may still hold it";
  EXPECT_EQ (At (id)->Note, "new");
  EXPECT_EQ (At (id)->TimeStamp, 5.0);
  EXPECT_EQ (model.RetiredCount (), 1);
  model.ReleaseRetired ();
  EXPECT_EQ (model.RetiredCount (), 0);
  EXPECT_EQ (model.TypeIndex (DATABASE_EndEntityRecord).Count, 1);

  // Points change where they stand, and keep their measurement.
  const DBID point = Add (MakePoint ("P"));
  db_Grid grid;
  grid.North = 7.0;
  Do (DBACTION_Amend, point, grid);
  const dbRecord_Class* stands = At (point);
  db_Observation other = MakePoint ("Q");
  other.TimeStamp = 3.0;
  other.SetMeasurement (std::make_unique<db_ECEF> ());
  Do (DBACTION_Replace, point, other);
  EXPECT_EQ (At (point), stands);
  const db_Observation* now = db_Observation::From (stands);
  EXPECT_EQ (now->PointName, "Q");
  EXPECT_EQ (now->TimeStamp, 2000.0);
  EXPECT_EQ (now->RecordId, point);
  EXPECT_EQ (db_Grid::From (now->Measurement ())->North, 7.0);
}

TEST_F (Model, TakesMeasurementsByAmendOnly) {
  db_Observation with = MakePoint ("P");
  with.SetMeasurement (std::make_unique<db_ECEF> ());
  const DBID id = Add (with);
  const db_Observation* point = db_Observation::From (At (id));
  EXPECT_EQ (point->Measurement (), nullptr);
  const DBID first = Do (DBACTION_Amend, id, db_Grid ());
  EXPECT_EQ (At (first), nullptr) << "a carrier has a number, but no place";
  const db_Measurement* old = point->Measurement ();
  Do (DBACTION_Amend, id, db_Circle ());
  EXPECT_NE (db_Circle::From (point->Measurement ()), nullptr);
  EXPECT_EQ (old->GetType (), DATABASE_GridRecord) << "still there for a reader";
  EXPECT_EQ (model.NextDBID (), DBID{4});
}

TEST_F (Model, CarriersChangeTheirTarget) {
  const DBID id = Add (MakePoint ("P"));
  const db_Observation* point = db_Observation::From (At (id));
  db_BoolAction mark;
  Do (DBACTION_Amend, id, mark);
  EXPECT_TRUE (point->IsDeleted ());
  mark.Value = 1;
  Do (DBACTION_Amend, id, mark);
  EXPECT_FALSE (point->IsDeleted ());

  db_Features features;
  features.Features.Parse ("TREE KERB", false);
  Do (DBACTION_Amend, id, features);
  EXPECT_EQ (point->Features.ToString (), "TREE KERB");
  EXPECT_EQ (model.RetiredCount (), 0) << "there was no list to keep";
  const Feature* held = &point->Features.At (0);
  Do (DBACTION_Amend, id, features);
  EXPECT_EQ (&point->Features.At (0), held) << "equal lists change nothing";
  features.Features.Parse ("WALL", false);
  Do (DBACTION_Amend, id, features);
  EXPECT_EQ (point->Features.ToString (), "WALL");
  EXPECT_EQ (held->Code, "TREE");
  EXPECT_EQ (model.RetiredCount (), 1);

  db_Descriptions descriptions;
  descriptions.Description1 = "one";
  descriptions.Description2 = "two";
  Do (DBACTION_Amend, id, descriptions);
  EXPECT_EQ (point->Description1, "one");
  EXPECT_EQ (point->Description2, "two");

  Do (DBACTION_Amend, id, MakeNote ("text"));
  EXPECT_EQ (point->Note, "text");
  Do (DBACTION_Replace, id, MakeNote ("text 2"));
  EXPECT_EQ (point->Note, "text 2");
  EXPECT_EQ (point->TimeStamp, 2000.0);

  db_DBID reference;
  reference.Value = {77};
  Do (DBACTION_Amend, id, db_Circle ());
  Do (DBACTION_Amend, id, reference);
  EXPECT_EQ (db_Circle::From (point->Measurement ())->Target, DBID{77});
  const DBID antenna = Add (db_Antenna ());
  Do (DBACTION_Amend, antenna, reference);
  EXPECT_EQ (db_Antenna::From (At (antenna))->Equipment, DBID{77});
  const DBID note = Add (MakeNote ("n"));
  Do (DBACTION_Amend, note, reference);
  EXPECT_TRUE (applied) << "other targets are left alone";
}

// Each is skipped and logged; live it is also asserted, from a file it is not.
TEST_F (Model, SkipsActionsThatDoNotFit) {
  const DBID note = Add (MakeNote ("n")), point = Add (MakePoint ("P")),
             gone = Add (db_EndEntity ()), other = Add (db_EndEntity ());
  Do (DBACTION_Delete, gone, db_EndEntity ());
  const DBID none{999};
  const db_Grid grid;
  const db_BoolAction mark;
  const db_DBID reference;
  const db_Features features;
  const db_Descriptions descriptions;
  const db_EndEntity end;
  const char* const missing = "Target record missing from Model.  Target  ";
  const char* const kind = "Target record of another kind in Model.  Target  ";
  const char* const verb = "Verb that the record does not take in Model.  Target  ";
  const struct {
    dbModel_Verb verb;
    DBID target;
    const dbRecord_Class& record;
    const char* assertion;
    const char* log;
  } cases[] = {
      {DBACTION_Amend, none, grid, "obs", missing},
      {DBACTION_Amend, note, grid, "obs", kind},
      {DBACTION_Replace, point, grid, "!\"Bad action\"", verb},
      {DBACTION_Amend, none, MakeNote ("x"), "target", missing},
      {DBACTION_Delete, note, MakeNote ("x"), "!\"Bad action\"", verb},
      {DBACTION_Replace, none, MakePoint ("Q"), "rwfc", missing},
      {DBACTION_Replace, note, MakePoint ("Q"), "rwfc", kind},
      {DBACTION_Replace, point, db_Line (), "rwfc->GetType() == action->DBRecord->GetType()", kind},
      {DBACTION_Amend, none, mark, "target", missing},
      {DBACTION_Amend, note, mark, "target", kind},
      {DBACTION_Amend, none, reference, "target", missing},
      {DBACTION_Amend, point, reference, "measurement", kind},
      {DBACTION_Amend, NODBID, features, "action->Target.value != NODBID", missing},
      {DBACTION_Amend, none, features, "rwf", missing},
      {DBACTION_Amend, note, features, "rwf", kind},
      {DBACTION_Amend, note, descriptions, "rwf", kind},
      {DBACTION_Amend, other, end, "!\"Bad action\"", verb},
      {DBACTION_Replace, none, end, "oldRecord", missing},
      {DBACTION_Replace, gone, end, "oldRecord", missing},
      {DBACTION_Replace, note, end, "oldRecord->DBRecord->GetType() == record->GetType()", kind},
      {DBACTION_Delete, gone, end, "oldRecord", missing},
      {DBACTION_Insert, gone, end, "target", missing},
      {DBACTION_Insert, NODBID, end, "target", missing},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (std::to_string (c.verb) + " " + ClassName (c.record.GetType ()) + " at " +
                  std::to_string (c.target.value));
    hearing.TakeLog ();
    for (const ApplyMode mode : {ApplyMode::Copy, ApplyMode::Take, ApplyMode::Replay}) {
      const DBID id = Do (c.verb, c.target, c.record, mode);
      EXPECT_FALSE (applied);
      EXPECT_EQ (hearing.TakeAssertions (),
                 mode == ApplyMode::Replay ? Texts{} : Texts{c.assertion});
      EXPECT_EQ (hearing.TakeLog (), (Texts{c.log + Hex (c.target.value),
                                            "-- Offending record ID  " + Hex (id.value)}));
    }
  }
  ExpectChain ({1, 2, 4});
}

TEST_F (Model, MakesBlocksOfTheLookupOnlyWhereUsed) {
  for (uint32_t i = 1; i <= 1018; i++) Add (MakeNote ("n"));
  EXPECT_EQ (model.BlockCount (), 2u);
  EXPECT_EQ (At ({1018})->RecordId, DBID{1018});
  EXPECT_EQ (At ({1017})->RecordId, DBID{1017});
  EXPECT_EQ (At (NODBID), nullptr);
  EXPECT_EQ (At ({1019}), nullptr);
  EXPECT_EQ (At ({4000000000u}), nullptr);
  model.SetNextDBID ({1018 * 1000});
  Add (MakeNote ("far"));
  EXPECT_EQ (model.BlockCount (), 1001u);
  EXPECT_EQ (At ({5000}), nullptr);
  EXPECT_EQ (At ({1018 * 1000})->Note, "far");
}

TEST_F (Model, WantsToBeClearedBeforeItGoes) {
  {
    dbModel full;
    dbModel_Action action (DBACTION_Add, NODBID, std::make_unique<db_Note> ());
    action.DBRecord->RecordId = full.NextDBID ();
    full.Apply (action, ApplyMode::Take);
    EXPECT_EQ (action.DBRecord, nullptr) << "taken over";
  }
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"_MainThread._FrontPointer == NULL"});
}

TEST (Transactions, AnswerByTheirLastAction) {
  dbTransaction transaction;
  EXPECT_FALSE (transaction.IsCancelled ());
  EXPECT_FALSE (transaction.IsComplete ());
  transaction.MarkEnd ();
  for (int i = 0; i < 200000; i++) transaction.Add (transaction.NewAction ());
  EXPECT_FALSE (transaction.IsComplete ());
  transaction.MarkEnd ();
  EXPECT_EQ (transaction.Last ()->Flags, 2u);
  transaction.MarkCancelled ();
  EXPECT_EQ (transaction.Last ()->Flags, 6u);
  EXPECT_EQ (transaction.First ()->Flags, 0u);
  EXPECT_TRUE (transaction.IsCancelled () && transaction.IsComplete ());
  transaction.Clear ();  // not by recursion: the stack would not hold it
  EXPECT_TRUE (transaction.IsEmpty ());
  EXPECT_EQ (transaction.NewAction ()->Flags, 0u) << "a kept action comes back empty";
}

}  // namespace
}  // namespace clxml::testing
