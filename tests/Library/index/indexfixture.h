// A job with an index, and short ways to put points into it.
// Gives the tests of the index an open job, points of any method, class and measurement, and what
// an index says of each object. Uses the job fixture.
#pragma once

#include <memory>
#include <string>

#include "../job/jobfixture.h"
#include "Library/index/jobfile.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbMeasurements.h"

namespace clxml::testing {

/// The settings of every observation of these tests: those of the grid.
inline constexpr auto gridSystem = COORDSYS_CogoAzimuthGrid | COORDSYS_CogoDistanceGrid |
                                   COORDSYS_CogoEllipsoidDistances | COORDSYS_CogoOrthoHeights;

template <class T>
std::unique_ptr<T> Observed () {
  auto measurement = std::make_unique<T> ();
  measurement->CreatedView = gridSystem;
  return measurement;
}

/// A measurement whose records are all the job's header: they lead nowhere.
template <class T>
std::unique_ptr<T> ObservedFromNowhere () {
  auto measurement = Observed<T> ();
  measurement->Station = measurement->Target = measurement->BackBearing = {1};
  return measurement;
}

/// The measurement of one letter: Grid, Wgs84, Polar, Circle, Mean (with a distance), mean without
/// a distance (m), Azimuth; any other letter has none.
inline std::unique_ptr<db_Measurement> MakeMeasurement (char letter) {
  switch (letter) {
    case 'G': {
      auto grid = std::make_unique<db_Grid> ();
      grid->North = 100.0;
      return grid;
    }
    case 'W':
      return std::make_unique<db_WGS84> ();
    case 'P':
      return Observed<db_Polar> ();
    case 'C':
      return ObservedFromNowhere<db_Circle> ();
    case 'M': {
      auto mean = ObservedFromNowhere<db_MeanTurnedAngle> ();
      mean->EDMDistance = 10.0;
      return mean;
    }
    case 'm':
      return ObservedFromNowhere<db_MeanTurnedAngle> ();
    case 'A':
      return Observed<db_Azimuth> ();
    default:
      return nullptr;
  }
}

class IndexTest : public JobTest {
 protected:
  IndexTest () { JobFile::Use (job); }

  void Create () {
    ASSERT_TRUE (job.Create (folder.Device ("a.job"), "Quarry"));
    index = JobFile::Of (job);
    ASSERT_NE (index, nullptr);
  }
  /// Closes the job and opens it, with a new index.
  void Reopen () {
    job.Close ();
    ASSERT_TRUE (job.Open (folder.Device ("a.job"), true));
    index = JobFile::Of (job);
  }
  DBID AddPoint (const char* name, dbentity_PointMethod method = DBENTITY_Coordinates,
                 db_PointClassification classification = db_PointClassification::Normal,
                 char measurement = 'G') {
    db_Observation point = MakePoint (name);
    point.Method = method;
    point.Classification = classification;
    return AddPoint (point, MakeMeasurement (measurement).get ());
  }
  DBID AddPoint (db_Observation& point, const db_Measurement* measurement) {
    const DBID id = job.AddObservation (point);
    if (measurement) job.SetRecord (id, *measurement);
    job.EndEntity ();
    return id;
  }
  template <class T>
  DBID Add (T record) {
    return job.AddRecord (record);
  }
  dbObject* ObjectOf (DBID id) const {
    const UniqueId found = index->FindByRecordId (id);
    return found.IsNull () ? nullptr : index->GetObject (found.GetSubscript ());
  }
  uint32_t StatusOf (DBID id) const { return ObjectOf (id)->GetStatus (); }

  JobDatabase job;
  JobFile* index = nullptr;
};

}  // namespace clxml::testing
