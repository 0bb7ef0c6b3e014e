// Measures the index of a job beside the opening of the job, and beside SQLite.
// A job of points is made once: a fifth of the names occur twice. CPU times are of one process:
// opening alone, building the index, status and grid of every object, look-ups of random names.
// SQLite has a table of the same names with an index on them, and selects the same names. A second
// job has one name for all points.

#include <sqlite3.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Library/index/jobfile.h"
#include "Library/position/position.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"
#include "platform/folder.h"

namespace {

using namespace clxml;

[[noreturn]] void Fail (const std::string& text) {
  std::fprintf (stderr, "bench_index: %s\n", text.c_str ());
  std::exit (1);
}

// Seconds of this process.
double CpuTime () {
  rusage used{};
  getrusage (RUSAGE_SELF, &used);
  const auto seconds = [] (const timeval& t) {
    return static_cast<double> (t.tv_sec) + static_cast<double> (t.tv_usec) * 1e-6;
  };
  return seconds (used.ru_utime) + seconds (used.ru_stime);
}

double Measure (const std::function<void ()>& work) {
  const double start = CpuTime ();
  work ();
  return CpuTime () - start;
}

// Bytes in use of the heap and of mapped memory.
double MemoryInUse () {
  std::FILE* in = std::fopen ("/proc/self/statm", "r");
  long total = 0, resident = 0;
  if (!in || std::fscanf (in, "%ld %ld", &total, &resident) != 2) Fail ("no memory figures");
  std::fclose (in);
  return static_cast<double> (resident) * 4096;
}

std::string NameOf (int i, int points, bool isOneName) {
  return isOneName ? "P" : "PT" + std::to_string (100000 + i % (points / 12 * 10));
}

// Every second point is keyed in, the others are measured from the point before them.
void MakeJob (const std::string& path, int points, bool isOneName) {
  std::filesystem::remove (path);
  JobDatabase job;
  if (!job.Create (folder_DevicePath (Str (path.c_str ())), "Bench")) Fail ("cannot make " + path);
  job.Access ()->SetSingleActionMode ();
  db_Observation point;
  point.Classification = db_PointClassification::Normal;
  db_Grid grid;
  db_Polar polar;
  polar.CreatedView = COORDSYS_CogoAzimuthGrid | COORDSYS_CogoDistanceGrid |
                      COORDSYS_CogoEllipsoidDistances | COORDSYS_CogoOrthoHeights;
  polar.HDist = 10.0;
  db_EndEntity end;
  for (int i = 0; i < points; i++) {
    const std::string name = NameOf (i, points, isOneName);
    point.PointName = name.c_str ();
    point.Method = i % 2 == 0 ? DBENTITY_Coordinates : DBENTITY_BrngDistPoint;
    const DBID id = job.AddRecord (point);
    grid.North = i;
    grid.East = 2.0 * i;
    polar.SourcePoint = NameOf (i - i % 2, points, isOneName).c_str ();
    if (i % 2 == 0)
      job.SetRecord (id, grid);
    else
      job.SetRecord (id, polar);
    job.AddRecord (end);
  }
  job.Close ();
}

// The time of `looks` selects of random names in a table with an index on the names.
double SelectNames (int points, int looks) {
  sqlite3* db = nullptr;
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_open (":memory:", &db) != SQLITE_OK) Fail ("no database");
  sqlite3_exec (db, "create table point (id integer primary key, name text, north real, east real)",
                nullptr, nullptr, nullptr);
  sqlite3_exec (db, "begin", nullptr, nullptr, nullptr);
  sqlite3_prepare_v2 (db, "insert into point values (?,?,?,?)", -1, &statement, nullptr);
  for (int i = 0; i < points; i++) {
    const std::string name = NameOf (i, points, false);
    sqlite3_bind_int (statement, 1, i + 1);
    sqlite3_bind_text (statement, 2, name.c_str (), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double (statement, 3, i);
    sqlite3_bind_double (statement, 4, 2.0 * i);
    sqlite3_step (statement);
    sqlite3_reset (statement);
  }
  sqlite3_finalize (statement);
  const double indexing = Measure ([&] {
    sqlite3_exec (db, "create index by_name on point (name)", nullptr, nullptr, nullptr);
  });
  std::printf ("  SQLite, index on names   %8.3f s\n", indexing);
  sqlite3_prepare_v2 (db, "select north, east from point where name = ? order by id limit 1", -1,
                      &statement, nullptr);
  std::mt19937 random (3);
  const double selecting = Measure ([&] {
    for (int i = 0; i < looks; i++) {
      const std::string name =
          NameOf (static_cast<int> (random () % static_cast<unsigned> (points)), points, false);
      sqlite3_bind_text (statement, 1, name.c_str (), -1, SQLITE_TRANSIENT);
      if (sqlite3_step (statement) != SQLITE_ROW) Fail ("a name is missing");
      sqlite3_reset (statement);
    }
  });
  sqlite3_finalize (statement);
  sqlite3_close (db);
  return selecting;
}

void Report (const std::string& folder, int points, bool isOneName) {
  const std::string path = folder + "/bench_index.job";
  MakeJob (path, points, isOneName);
  const Str device = folder_DevicePath (Str (path.c_str ()));
  std::printf ("%d points%s\n", points, isOneName ? " of one name" : "");
  JobDatabase job;  // without an index
  const double opening = Measure ([&] {
    if (!job.Open (device, false)) Fail ("cannot open " + path);
  });
  const double before = MemoryInUse ();
  JobFile index;
  const double building = Measure ([&] {
    if (!index.Attach (job)) Fail ("no index");
  });
  const double bytes = (MemoryInUse () - before) / index.GetObjectCount ();
  const double status = Measure ([&] {
    for (int32_t i = 0; i < index.GetObjectCount (); i++) index.GetObject (i)->GetStatus ();
  });
  int known = 0;
  const double grids = Measure ([&] {
    for (int32_t i = 0; i < index.GetObjectCount (); i++)
      if (ObservationObject* point = AsObservation (index.GetObject (i)))
        known += point->GetFinalGrid ().NullHorizontal () ? 0 : 1;
  });
  std::printf ("  open                     %8.3f s\n", opening);
  std::printf ("  build the index          %8.3f s  %5.2f x open, %.0f bytes an object\n", building,
               building / opening, bytes);
  std::printf ("  status of all            %8.3f s\n", status);
  std::printf ("  grid of all (%d)     %8.3f s\n", known, grids);
  if (!isOneName) {
    constexpr int looks = 200000;
    std::mt19937 random (3);
    const double resolving = Measure ([&] {
      for (int i = 0; i < looks; i++) {
        const std::string name =
            NameOf (static_cast<int> (random () % static_cast<unsigned> (points)), points, false);
        if (!position_CreateResolved (index, Str (name.c_str ()), 1, false))
          Fail ("a name is missing");
      }
    });
    const double selecting = SelectNames (points, looks);
    std::printf ("  resolve a random name    %8.3f us   SQLite select %.3f us\n",
                 resolving / looks * 1e6, selecting / looks * 1e6);
  }
  index.Clear ();
  job.Close ();
  std::filesystem::remove (path);
  std::fflush (stdout);
}

}  // namespace

int main (int argc, char** argv) {
  const std::string folder = argc > 1 ? argv[1] : ".";
  std::vector<int> sizes;
  for (int i = 2; i < argc; i++) sizes.push_back (std::atoi (argv[i]));
  if (sizes.empty ()) sizes = {100000, 1000000};
  for (const int points : sizes) {
    Report (folder, points, false);
    Report (folder, points, true);
  }
  return 0;
}
