// Which record of a name counts as the point: the rule in rows, and the searches by purpose.
#include "Library/index/pointsearch.h"

#include <string>
#include <vector>

#include "Library/index/linkedfile.h"
#include "Library/index/linkedobject.h"
#include "Library/position/position.h"
#include "indexfixture.h"

namespace {

using namespace clxml;
using namespace clxml::testing;
using Class = db_PointClassification;
using Texts = std::vector<std::string>;

class PointSearch : public IndexTest {};

// A point of the name P: method, class, measurement (MakeMeasurement). Method S is a station
// setup instead.
struct Entry {
  int method;
  Class::Class classification = Class::Normal;
  char measurement = 'G';
  bool isDeleted = false;
};
constexpr int S = -1;

struct Case {
  const char* name;
  std::vector<Entry> entries;  // oldest first
  int any, grid, gps;          // the entry that is best, -1 for none
  uint32_t others = 1;         // bits that all points have besides
};

const Case cases[] = {
    {"coordinates alone", {{1}}, 0, 0, -1},
    {"the older of equals", {{1}, {1}, {1}}, 0, 0, -1},
    {"the higher class, older", {{1, Class::Control}, {1}}, 0, 0, -1},
    {"the higher class, newer", {{1}, {1, Class::Control}}, 1, 1, -1},
    {"coordinates beat observed control", {{34, Class::Control, 'C'}, {1}}, 1, 1, -1},
    {"coordinates beat observed control, older", {{1}, {34, Class::Control, 'C'}}, 0, 0, -1},
    {"classes alike: backsight and mean", {{1, Class::BackSight}, {1, Class::MTA}}, 0, 0, -1},
    {"construction above stakeout", {{1, Class::Stakeout}, {1, Class::Construction}}, 1, 1, -1, 65},
    {"stakeout above check", {{1, Class::Check}, {1, Class::Stakeout}}, 1, 1, -1, 65},
    {"check above none", {{1, Class::None}, {1, Class::Check}}, 1, 1, -1},
    {"stakeout against none", {{1, Class::Stakeout}, {1, Class::None}}, 0, 0, -1, 65},
    {"averaged above adjusted", {{1, Class::Adjusted}, {1, Class::Averaged}}, 1, 1, -1},
    {"a group each", {{11, Class::Normal, 'W'}, {34, Class::Normal, 'C'}}, 0, 1, 0},
    {"a measurement of neither group", {{34, Class::Normal, 'P'}}, 0, -1, -1},
    {"no measurement", {{1, Class::Normal, '-'}}, 0, -1, -1},
    {"azimuth alone", {{31, Class::Normal, 'A'}}, -1, -1, -1},
    {"azimuth beside a point", {{1}, {31, Class::Control, 'A'}}, 0, 0, -1},
    {"distance above angles, older",
     {{34, Class::Check, 'C'}, {32, Class::Control, 'C'}},
     0,
     0,
     -1},
    {"distance above angles, newer",
     {{33, Class::Control, 'C'}, {34, Class::Check, 'C'}},
     1,
     1,
     -1},
    {"anything above a matched pair",
     {{43, Class::Control, 'C'}, {32, Class::Check, 'C'}},
     1,
     1,
     -1},
    {"a mean is a direct reading", {{45, Class::MTA, 'M'}, {32, Class::Control, 'C'}}, 0, 0, -1},
    {"a mean of angles is angles", {{45, Class::Control, 'm'}, {34, Class::Normal, 'C'}}, 1, 1, -1},
    {"a mean without its record is angles",
     {{45, Class::Control, 'C'}, {34, Class::Normal, 'C'}},
     1,
     1,
     -1},
    {"mean, newer, same setup", {{34, Class::Normal, 'C'}, {45, Class::MTA, 'M'}}, 1, 1, -1},
    {"mean, newer, other setup", {{34, Class::Normal, 'C'}, {S}, {45, Class::MTA, 'M'}}, 0, 0, -1},
    {"mean, backsight, other setup",
     {{34, Class::BackSight, 'C'}, {S}, {45, Class::MTA, 'M'}},
     0,
     0,
     -1},
    {"mean, station in front of both",
     {{S}, {34, Class::Normal, 'C'}, {45, Class::MTA, 'M'}},
     2,
     2,
     -1},
    {"mean, satellite point, same setup",
     {{11, Class::Normal, 'W'}, {45, Class::MTA, 'M'}},
     0,
     1,
     0},
    {"hidden parts", {{44, Class::Control, 'C'}, {46, Class::Control, 'M'}}, -1, -1, -1},
    {"deleted", {{1, Class::Control, 'G', true}, {1}}, 1, 1, -1},
    {"deleted stakeout", {{1, Class::Stakeout, 'G', true}, {1}}, 1, 1, -1},
    {"live stakeout", {{1, Class::Stakeout}, {1}}, 1, 1, -1, 65},
    {"a resection in progress alone", {{48}}, 0, 0, -1, 1025},
    {"unknown method gives way", {{1, Class::Check}, {0, Class::Control}}, 0, 0, -1},
};

TEST_F (PointSearch, FindsTheBestOfAName) {
  for (const Case& c : cases) {
    SCOPED_TRACE (c.name);
    std::filesystem::remove (folder.Host ("a.job"));
    Create ();
    std::vector<DBID> ids;
    for (const Entry& entry : c.entries) {
      if (entry.method == S) {
        ids.push_back (Add (db_TotalStation ()));
        continue;
      }
      ids.push_back (AddPoint ("P", static_cast<dbentity_PointMethod> (entry.method),
                               entry.classification, entry.measurement));
      if (entry.isDeleted) job.SetBoolean (ids.back (), 0);
    }
    for (const bool isReopened : {false, true}) {
      if (isReopened) Reopen ();
      for (int i = 0; i < static_cast<int> (ids.size ()); i++) {
        if (c.entries[static_cast<std::size_t> (i)].method == S) continue;
        const uint32_t best =
            (i == c.any ? 4u : 0u) | (i == c.grid ? 8u : 0u) | (i == c.gps ? 16u : 0u);
        EXPECT_EQ (StatusOf (ids[static_cast<std::size_t> (i)]), c.others | best)
            << "entry " << i << (isReopened ? " of a new index" : "");
      }
      // The best is what the search over a selection of the name gives, and what a look-up finds.
      const ObservationObject* measured = index->FindBestMeasuredPoint ("P");
      EXPECT_EQ (measured ? measured->GetRecordId () : NODBID,
                 c.any < 0 ? NODBID : ids[static_cast<std::size_t> (c.any)]);
      position found;
      EXPECT_EQ (index->Find ("P", 1, false, found), c.any >= 0);
      EXPECT_EQ (index->Find ("P", 0, false, found), c.gps >= 0);
      dbSelection items;
      EXPECT_EQ (index->GetSelection ().Find ("P", DATABASE_ObservationRecord, DBSEARCH_FirstBest),
                 c.any >= 0);
    }
    job.Close ();
  }
}

TEST_F (PointSearch, ResectionInProgressGivesWayToAnything) {
  Create ();
  const DBID resection = AddPoint ("P", DBENTITY_ResectionInProgress, Class::Control);
  const DBID check = AddPoint ("P", DBENTITY_AngleOnly, Class::Check, 'C');
  EXPECT_EQ (StatusOf (resection), 1025u);
  EXPECT_EQ (StatusOf (check), 13u);
}

TEST_F (PointSearch, WantsOfTheNextSearchWhatIsEmpty) {
  Create ();
  AddPoint ("P", DBENTITY_Coordinates, Class::Normal, 'G');
  search_Results results;
  uint32_t status = 0;
  index->SearchName ("P", results, status);
  EXPECT_FALSE (results.WantAny);
  EXPECT_FALSE (results.WantGrid);
  EXPECT_TRUE (results.WantGPS);
  const DBID first = results.Entries[SEARCH_Any].Location;
  AddPoint ("P", DBENTITY_Coordinates, Class::Control, 'W');
  index->SearchName ("P", results, status);
  EXPECT_EQ (results.Entries[SEARCH_Any].Location, first);
  EXPECT_FALSE (results.Entries[SEARCH_GPS].IsEmpty ());
}

TEST_F (PointSearch, FindsByPurpose) {
  Create ();
  db_TotalStation station;
  station.StationName = "Stn";
  const DBID setup = Add (station), later = Add (station);
  db_TotalBackBearing backBearing;
  backBearing.Station = "STN";
  backBearing.BackSight = "bs";
  const DBID oriented = Add (backBearing);
  const auto observe = [&] (const char* name, dbentity_PointMethod method,
                            Class::Class classification, DBID from) {
    db_Observation point = MakePoint (name);
    point.Method = method;
    point.Classification = classification;
    db_Circle circle;
    circle.CreatedView = gridSystem;
    circle.Station = circle.Target = from;
    circle.BackBearing = oriented;
    return AddPoint (point, &circle);
  };
  const DBID gps = AddPoint ("P", DBENTITY_GpsStaticObs, Class::Normal, 'W');
  const DBID fromFirst = observe ("P", DBENTITY_DirectReading, Class::Normal, setup);
  const DBID check = observe ("P", DBENTITY_DirectReading, Class::Check, later);
  const DBID backsight = observe ("BS", DBENTITY_DirectReading, Class::Normal, setup);
  const DBID mean = AddPoint ("P", DBENTITY_MeanTurnedAngle, Class::MTA, 'M');

  EXPECT_EQ (index->FindBestGPSPoint ("P")->GetRecordId (), gps);
  EXPECT_EQ (index->FindBestGridPoint ("P")->GetRecordId (), mean);
  EXPECT_EQ (index->FindBestFromStation ("P", setup)->GetRecordId (), fromFirst);
  EXPECT_EQ (index->FindBestFromStation ("P", later), nullptr) << "a check does not count";
  DBID location;
  EXPECT_EQ (index->FindOnLastBackBearing ("P", location)->GetRecordId (), fromFirst);
  EXPECT_EQ (location, mean);
  EXPECT_EQ (index->FindOnLastStation ("P")->GetRecordId (), mean);
  DBID from;
  EXPECT_TRUE (index->FindObservedFrom ("P", "BS", "stn", location, from));
  EXPECT_EQ (location, fromFirst);
  EXPECT_EQ (from, setup);
  job.SetBoolean (backsight, 0);
  EXPECT_FALSE (index->FindObservedFrom ("P", "BS", "stn", location, from));
  EXPECT_TRUE (index->FindObservedFrom ("P", "", "stn", location, from));
  EXPECT_FALSE (index->FindObservedFrom ("P", "", "other", location, from));
  EXPECT_EQ (index->FindByNameAndRecord ("P", check), ObjectOf (check)->GetUniqueId ());
  EXPECT_EQ (index->FindLastLive ("P", DATABASE_ObservationRecord)->GetRecordId (), mean);
  Str spelling;
  EXPECT_TRUE (index->FindSpelling ("bs", spelling));
  EXPECT_EQ (spelling, "BS");
  EXPECT_FALSE (index->FindSpelling ("none", spelling));
  EXPECT_EQ (index->FindBestPoint (""), UniqueId ());

  db_Observation loaded;
  int32_t itemNum = -1;
  ASSERT_TRUE (index->LoadLast ("P", &loaded, &location, &itemNum));
  EXPECT_EQ (location, mean);
  std::vector<DBID> older;
  while (index->LoadPrevious ("P", &loaded, &location, &itemNum)) older.push_back (location);
  EXPECT_EQ (older, (std::vector<DBID>{check, fromFirst, gps}));
}

TEST_F (PointSearch, FindsTheKeyedAzimuthAndTheBacksight) {
  Create ();
  db_TotalStation station;
  station.StationName = "A";
  db_TotalBackBearing backBearing;
  backBearing.Station = "A";
  backBearing.BackSight = "B";
  db_Circle circle;
  circle.CreatedView = gridSystem;
  circle.Station = circle.Target = Add (station);
  circle.BackBearing = Add (backBearing);
  EXPECT_EQ (index->KeyedAzimuth ("A", "B"), nullptr);
  position found;
  EXPECT_FALSE (index->FindBacksight ("A", "B", found));

  const auto azimuth = [&] (const char* from, double value) {
    db_Observation point = MakePoint ("B");
    point.Method = DBENTITY_AzimuthOnly;
    db_Azimuth measurement;
    measurement.CreatedView = gridSystem;
    measurement.SourcePoint = from;
    measurement.Azimuth = value;
    return AddPoint (point, &measurement);
  };
  azimuth ("other", 0.5);
  const DBID older = azimuth ("a", 1.0);
  azimuth ("A", 2.0);
  AddPoint ("B", DBENTITY_AzimuthOnly, Class::Normal, 'G');  // not a db_Azimuth
  ASSERT_NE (index->KeyedAzimuth ("A", "B"), nullptr);
  EXPECT_EQ (index->KeyedAzimuth ("A", "B")->Azimuth, 1.0);
  job.SetBoolean (older, 0);
  EXPECT_EQ (index->KeyedAzimuth ("A", "B")->Azimuth, 2.0);

  // The observation that was oriented by the backsight itself does not count.
  db_Observation depends = MakePoint ("B");
  depends.Method = DBENTITY_DirectReading;
  depends.Classification = Class::Control;
  AddPoint (depends, &circle);
  const DBID gps = AddPoint ("B", DBENTITY_GpsStaticObs, Class::Normal, 'W');
  ASSERT_TRUE (index->FindBacksight ("a", "B", found));
  EXPECT_EQ (found.Object, ObjectOf (gps)->GetUniqueId ());
  ASSERT_TRUE (index->FindBacksight ("C", "B", found));
  EXPECT_EQ (found.Original, COORD_CircleType);
}

TEST_F (PointSearch, LooksUpAnyNumberOfBases) {
  Create ();
  AddPoint ("Base");
  db_Observation shot = MakePoint ("Shot");
  shot.Method = DBENTITY_BrngDistPoint;
  const auto polar = Observed<db_Polar> ();
  polar->SourcePoint = "Base";
  AddPoint (shot, polar.get ());
  position found;
  for (int i = 0; i < 10000; i++)
    ASSERT_TRUE (position_Resolve (*index, "Shot", 1, true, found)) << "look-up " << i;
}

TEST_F (PointSearch, SearchesLinkedFiles) {
  Create ();
  const DBID own = AddPoint ("P", DBENTITY_Coordinates, Class::Check);
  auto list = std::make_unique<LinkedFile> (dbIndex::CommaSeparatedFile, "points.csv");
  LinkedFile& csv = *list;
  ASSERT_TRUE (index->LinkIndex (std::move (list)));
  for (const char* name : {"Q", "P", "Q"}) {
    auto point = std::make_unique<CSVPointObject> (coord_CorrectedGrid (1.0, 2.0, 3.0));
    point->SetName (name);
    csv.AppendObject (std::move (point));
  }
  auto other = std::make_unique<JobDatabase> ();
  JobFile::Use (*other);
  ASSERT_TRUE (other->Create (folder.Device ("b.job"), "Other"));
  db_Observation point = MakePoint ("R");
  point.Method = DBENTITY_Coordinates;
  other->AddRecord (point);
  JobFile* linked = JobFile::Of (*other);
  ASSERT_TRUE (index->LinkIndex (std::move (other)));
  EXPECT_EQ (index->GetLinkedIndex (csv.GetIndexNumber ()), &csv);

  EXPECT_EQ (StatusOf (own), 13u) << "over all files it has no bits in the main job";
  EXPECT_EQ (csv.GetObject (0)->GetStatus (), 397u) << "its own best, and of all files";
  EXPECT_EQ (csv.GetObject (2)->GetStatus (), 1u) << "the older of equals is best";
  EXPECT_EQ (csv.GetObject (1)->GetStatus (), 13u) << "the main job has this name";
  EXPECT_EQ (linked->GetObject (0)->GetStatus (), 133u);
  EXPECT_EQ (static_cast<ObservationObject*> (csv.GetObject (0))->GetGrid ().East, 2.0);
  position found;
  EXPECT_TRUE (position_LoadFromObject (found, *csv.GetObject (1)));
  EXPECT_EQ (found.Original, COORD_GridType);
  coord_CorrectedGrid grid;
  EXPECT_TRUE (index->LinkedGrid (found.Object, grid));

  const int32_t number = linked->GetIndexNumber ();
  index->UnlinkIndex (number);
  EXPECT_EQ (index->GetLinkedIndex (number), nullptr);
  job.Close ();
  EXPECT_EQ (JobFile::GetHighestIndexNumber (), 1);
}

}  // namespace
