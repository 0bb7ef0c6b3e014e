// The index of a job: numbering, objects, and how it follows commits.
#include "Library/index/jobfile.h"

#include <random>
#include <string>
#include <vector>

#include "Library/position/position.h"
#include "Library/records/dbCoordSystems.h"
#include "indexfixture.h"

namespace {

using namespace clxml;
using namespace clxml::testing;
using Texts = std::vector<std::string>;

class Index : public IndexTest {
 protected:
  DBID AddLine (const char* name, const char* from, const char* to) {
    db_Line line;
    line.LineId = name;
    line.OriginPoint = from;
    line.TargetPoint = to;
    return Add (line);
  }
  DBID AddGrid (const char* name, double north, double east) {
    db_Observation point = MakePoint (name);
    point.Method = DBENTITY_Coordinates;
    point.Classification = db_PointClassification::Normal;
    db_Grid grid;
    grid.North = north;
    grid.East = east;
    return AddPoint (point, &grid);
  }
  DBID AddPolar (const char* name, const char* from, double distance) {
    db_Observation point = MakePoint (name);
    point.Method = DBENTITY_BrngDistPoint;
    point.Classification = db_PointClassification::Normal;
    db_Polar polar = *Observed<db_Polar> ();
    polar.SourcePoint = from;
    polar.HDist = distance;
    return AddPoint (point, &polar);
  }
  coord_CorrectedGrid GridOf (DBID id) {
    return static_cast<ObservationObject*> (ObjectOf (id))->GetFinalGrid ();
  }
  // Everything that the index knows of its objects, without removed ones, with grids rounded to
  // the micrometre.
  Texts Image () {
    Texts image;
    const auto text = [] (const coord_CorrectedGrid& grid) {
      return grid.IsNull () ? std::string ("null")
                            : std::to_string (grid.North) + " " + std::to_string (grid.East) + " " +
                                  std::to_string (grid.Elevation);
    };
    for (int32_t i = 0; i < index->GetObjectCount (); i++) {
      dbObject* object = index->GetCompleteObject (i);
      if (object->Words ()[0] == 0) continue;
      std::string line = object->GetName () + (" " + std::to_string (object->GetRecordId ().value));
      object->GetStatus ();
      for (const uint32_t word : object->Words ()) line += " " + std::to_string (word);
      if (ObservationObject* point = AsObservation (object))
        line += " " + text (point->GetFinalGrid ());
      else if (const auto* drawn = dynamic_cast<const LineObject*> (object))
        line += " " + text (drawn->StartGrid) + " to " + text (drawn->EndGrid);
      image.push_back (line);
    }
    const dbSelection& items = index->GetSelection ();
    for (int32_t i = 0; i < items.GetItemCount (); i++)
      image.push_back ("item " + std::to_string (items.GetRecordId (i).value));
    return image;
  }
};

TEST_F (Index, NumbersStartAtOneAndTheTableCanBeFull) {
  Create ();
  EXPECT_EQ (index->GetIndexNumber (), 1);
  std::vector<std::unique_ptr<JobDatabase>> jobs;
  for (int i = 2; i < 257; i++) {
    jobs.push_back (std::make_unique<JobDatabase> ());
    JobFile::Use (*jobs.back ());
    ASSERT_TRUE (jobs.back ()->Create (folder.Device (std::to_string (i) + ".job"), "Job"));
    EXPECT_EQ (JobFile::Of (*jobs.back ())->GetIndexNumber (), i % 256);
  }
  JobDatabase last;
  JobFile::Use (last);
  EXPECT_FALSE (last.Create (folder.Device ("last.job"), "Job"));
  EXPECT_FALSE (Exists ("last.job"));
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"StaticIndexGlobals.NextInIndexList != start"});
  jobs[98].reset ();  // number 100
  EXPECT_TRUE (last.Create (folder.Device ("last.job"), "Job"));
  EXPECT_EQ (JobFile::Of (last)->GetIndexNumber (), 100);
  EXPECT_EQ (JobFile::GetHighestIndexNumber (), 255);
  last.Close ();
  jobs.clear ();
  Reopen ();
  EXPECT_EQ (index->GetIndexNumber (), 1) << "after the last index, numbers start again";
}

TEST_F (Index, KeepsSubscriptsOverManyBlocksAndASecondAttachment) {
  Create ();
  job.BeginGroup ();
  for (int i = 0; i < 2001; i++) {
    db_Observation point = MakePoint (("P" + std::to_string (i)).c_str ());
    point.Method = DBENTITY_Coordinates;
    job.AddRecord (point);
  }
  job.EndGroup ();
  EXPECT_EQ (index->GetObjectCount (), 2001);
  EXPECT_EQ (index->GetBlockCount (), 3);
  EXPECT_STREQ (index->GetName (999), "P999");
  EXPECT_STREQ (index->GetName (1000), "P1000");
  EXPECT_STREQ (index->GetName (-1), "");
  EXPECT_EQ (index->GetObject (7)->GetStatus (), 5u);
  ASSERT_TRUE (index->Attach (job));
  EXPECT_EQ (index->GetObjectCount (), 2001);
  EXPECT_EQ (index->GetObject (7)->GetFlags (), 0);
  EXPECT_EQ (index->GetObject (2001), nullptr);
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"subscript < this->_ObjectCount"});
  for (int i = 0; i < 2001; i += 100)
    EXPECT_EQ (index->FindByRecordId (index->GetRecordId (i)), index->GetUniqueId (i));
  EXPECT_TRUE (index->FindByRecordId ({1}).IsNull ());
}

TEST_F (Index, FindsRecordsWhoseNumbersFall) {
  // A point that was inserted in front of another.
  Bytes bytes = Header ();
  Append (bytes, FrameOf (DBACTION_Add, 0, MakeHeader (), 1));
  Append (bytes, FrameOf (DBACTION_Add, 0, MakePoint ("A"), 2));
  Append (bytes, FrameOf (DBACTION_Insert, 2, MakePoint ("B"), 3));
  Append (bytes, FrameOf (DBACTION_Add, 0, MakePoint ("C"), 4));
  Write ("b.job", bytes);
  ASSERT_TRUE (job.Open (folder.Device ("b.job"), true));
  index = JobFile::Of (job);
  const DBID added = AddPoint ("D");
  const DBID ids[] = {{3}, {2}, {4}, added};
  for (int i = 0; i < 4; i++) {
    EXPECT_EQ (index->GetRecordId (i), ids[i]);
    EXPECT_EQ (index->FindByRecordId (ids[i]), index->GetUniqueId (i));
  }
  db_Observation point = MakePoint ("E");
  job.BeginGroup ();
  job.Access ()->AddAction (DBACTION_Insert, {2}, point);
  job.EndGroup ();
  EXPECT_EQ (hearing.TakeAssertions (), Texts{"!\"Index cannot insert objects\""});
  EXPECT_EQ (index->GetObjectCount (), 4);
}

TEST_F (Index, KeepsDeletedPointsAndHidesRemovedOnes) {
  Create ();
  const DBID marked = AddPoint ("P"), removed = AddPoint ("P");
  job.SetBoolean (marked, 0);
  EXPECT_EQ (StatusOf (removed), 13u);
  EXPECT_TRUE (ObjectOf (marked)->IsDeleted ());
  dbSelection items;
  EXPECT_TRUE (index->GetPointsByName ("P", DATABASE_ObservationRecord, items));
  EXPECT_EQ (items.GetItemCount (), 2);
  const UniqueId id = ObjectOf (removed)->GetUniqueId ();
  job.DeleteEntity (removed);
  EXPECT_TRUE (index->GetPointsByName ("P", DATABASE_ObservationRecord, items));
  EXPECT_EQ (items.GetItemCount (), 1);
  EXPECT_EQ (index->FindByRecordId (removed), id);
  EXPECT_TRUE (ObjectOf (removed)->IsHidden ());
  EXPECT_EQ (ObjectOf (removed)->Words (), dbfilter_Words ());
  EXPECT_EQ (index->GetSelection ().GetItemCount (), 1);
  job.SetBoolean (marked, 1);
  EXPECT_EQ (StatusOf (marked), 13u);
}

TEST_F (Index, HidesTheObservationOfAMarkedEntityAndFindsTargets) {
  Create ();
  db_Observation point = MakePoint ("P");
  const DBID id = job.AddObservation (point);
  job.EndEntityMarked ();
  EXPECT_TRUE (ObjectOf (id)->IsHidden ());
  db_Target target;
  target.Name = "T";
  const DBID first = job.AddTargetIfNew (target);
  EXPECT_EQ (index->FindTarget ("T"), first);
  job.BeginGroup ();
  job.Access ()->AddAction (DBACTION_Delete, first, target);
  job.EndGroup ();
  EXPECT_EQ (index->FindTarget ("T"), NODBID);
}

TEST_F (Index, ComputesLinesAgainWhenAPointChanges) {
  Create ();
  const DBID line = AddLine ("L", "A", "B");  // before its points
  const auto* drawn = static_cast<const LineObject*> (ObjectOf (line));
  const auto compute = [&] {
    drawn = static_cast<const LineObject*> (
        index->GetCompleteObject (ObjectOf (line)->GetUniqueId ().GetSubscript ()));
  };
  compute ();
  EXPECT_TRUE (drawn->StartGrid.IsNull ());
  EXPECT_TRUE (drawn->Start.IsNull ());
  const DBID start = AddGrid ("A", 10.0, 20.0);
  const DBID polar = AddPolar ("B", "A", 5.0);
  compute ();
  EXPECT_EQ (drawn->StartGrid.North, 10.0);
  EXPECT_NEAR (drawn->EndGrid.North, 15.0, 1e-9);
  EXPECT_EQ (drawn->End, ObjectOf (polar)->GetUniqueId ());
  db_Grid moved;
  moved.North = 110.0;
  moved.East = 20.0;
  job.SetRecord (start, moved);
  compute ();
  EXPECT_NEAR (drawn->EndGrid.North, 115.0, 1e-9);
  job.SetBoolean (polar, 0);
  compute ();
  EXPECT_TRUE (drawn->EndGrid.IsNull ());
  EXPECT_FALSE (drawn->End.IsNull ());
}

TEST_F (Index, ComputesArcsAndTurnsLeftHandOnesRound) {
  Create ();
  const DBID start = AddGrid ("S", 100.0, 0.0), end = AddGrid ("E", 0.0, 100.0);
  AddGrid ("C", 0.0, 0.0);
  db_Arc arc;
  arc.ArcName = "Arc";
  arc.Method = DBENTITY_TwoPointsAndCentrePoint;
  arc.StartPoint = "S";
  arc.EndPoint = "E";
  arc.CenterPoint = "C";
  const DBID right = Add (arc);
  std::swap (arc.StartPoint, arc.EndPoint);
  arc.Direction = DBENTITY_LeftHand;
  const DBID left = Add (arc);
  arc.CenterPoint = "none";
  const DBID unsolved = Add (arc);
  for (const DBID id : {right, left}) {
    const auto& solved = static_cast<const ArcObject&> (
        *index->GetCompleteObject (ObjectOf (id)->GetUniqueId ().GetSubscript ()));
    EXPECT_NEAR (solved.Radius, 100.0, 1e-9);
    EXPECT_NEAR (coord_NormalisePlusMinusPi (solved.StartAzimuth), 0.0, 1e-12);
    EXPECT_NEAR (solved.DeltaAngle, CONSTANT_PiOverTwo, 1e-12);
    EXPECT_EQ (solved.IsLeftHand, id == left);
    EXPECT_EQ (solved.Start, ObjectOf (start)->GetUniqueId ());
    EXPECT_EQ (solved.End, ObjectOf (end)->GetUniqueId ());
  }
  const auto& none = static_cast<const ArcObject&> (
      *index->GetCompleteObject (ObjectOf (unsolved)->GetUniqueId ().GetSubscript ()));
  EXPECT_TRUE (maths_IsNull (none.Radius));
  EXPECT_FALSE (none.IsLeftHand);
}

// Whatever is done to a job, its index is that of the same job opened anew.
TEST_F (Index, EqualsANewOneAfterAnySequence) {
  Create ();
  std::mt19937 random (17);
  const auto below = [&random] (std::size_t n) { return random () % n; };
  const Texts names = {"A", "B", "C", "D", "E"};
  std::vector<DBID> points, lines, backBearings;
  const auto name = [&] { return names[below (names.size ())].c_str (); };
  const auto classification = [&] {
    return db_PointClassification (static_cast<int32_t> (below (10)) - 1);
  };
  for (int round = 0; round < 120; round++) {
    const bool isGrouped = below (4) == 0;
    if (isGrouped) job.Access ()->BeginGroup ();
    for (std::size_t step = 0; step < 1 + below (4); step++) {
      const DBID target = points.empty () ? NODBID : points[below (points.size ())];
      switch (target == NODBID ? 0 : below (14)) {
        case 0:
        case 1: {
          db_Observation point = MakePoint (name ());
          point.Method = below (2) ? DBENTITY_Coordinates : DBENTITY_DirectReading;
          point.Classification = classification ();
          points.push_back (job.AddRecord (point));
          db_Grid grid;
          grid.North = static_cast<double> (below (1000));
          job.SetRecord (points.back (), grid);
          break;
        }
        case 2:
        case 3:
        case 4: {
          db_Observation point = MakePoint (name ());
          point.Method = below (3) ? DBENTITY_BrngDistPoint : DBENTITY_AzimuthOnly;
          point.Classification = classification ();
          points.push_back (job.AddRecord (point));
          db_Polar polar = *Observed<db_Polar> ();
          polar.SourcePoint = name ();
          polar.HDist = static_cast<double> (below (1000));
          job.SetRecord (points.back (), polar);
          break;
        }
        case 5:
          job.SetBoolean (target, static_cast<uint8_t> (below (2)));
          break;
        case 6: {
          db_Observation point = *db_Observation::From (job.GetRecord (target));
          point.PointName = name ();
          point.Classification = classification ();
          point.SetMeasurement (nullptr);
          const bool own = !job.InGroup ();
          if (own) job.BeginGroup ();
          job.Access ()->AddAction (DBACTION_Replace, target, point);
          if (own) job.EndGroup ();
          break;
        }
        case 7: {
          if (job.InGroup ()) break;  // an entity is deleted in a group of its own
          job.BeginGroup ();
          const db_Observation point = *db_Observation::From (job.GetRecord (target));
          job.Access ()->AddAction (DBACTION_Delete, target, point);
          job.EndGroup ();
          points.erase (std::find (points.begin (), points.end (), target));
          break;
        }
        case 8:
          job.SetRecord (target, *MakeMeasurement ("GWm"[below (3)]));
          break;
        case 9: {
          db_Features features;
          job.SetRecord (target, features);
          break;
        }
        case 10: {
          db_Note note;
          const bool own = !job.InGroup ();
          if (own) job.BeginGroup ();
          job.Access ()->AddAction (DBACTION_Insert, target, note);
          if (own) job.EndGroup ();
          break;
        }
        case 11:
          lines.push_back (AddLine (name (), name (), name ()));
          break;
        case 12:
          Add (db_TotalStation ());
          break;
        default: {
          db_Corrections corrections;
          job.AddRecord (corrections);
          break;
        }
      }
    }
    if (isGrouped) job.Access ()->EndGroup ();
    if (below (3) != 0) Image ();  // what was computed before must not outlive a change
    if (round % 10 != 9) continue;
    const Texts live = Image ();
    Reopen ();
    ASSERT_EQ (live, Image ()) << "after round " << round;
  }
}

}  // namespace
