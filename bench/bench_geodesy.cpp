// Measures points per second through a Transform, beside PROJ where it is installed.
// Forward and inverse, near and scattered points: a transverse Mercator, a Lambert, and a seven
// parameter datum with a geoid grid and a transverse Mercator. PROJ runs with its exact transverse
// Mercator and with +approx. Before anything is timed the results of the two sides are compared; a
// difference ends the program with status 1. No point may allocate. Uses Google Benchmark and,
// where it is found, PROJ.
#include <benchmark/benchmark.h>
#ifdef CLXML_HAS_PROJ
#include <proj.h>
#endif
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "Library/coordsys/transfrm.h"
#include "geodesy/csib.h"
#include "geodesy/datum.h"
#include "platform/folder.h"
#include "support/gridfile.h"

namespace {

std::atomic<std::size_t> allocations = 0;

}  // namespace

// Inlined, the pair looks to the compiler like a delete that ends in a free.
[[gnu::noinline]] void* operator new (std::size_t size) {
  allocations++;
  if (void* memory = std::malloc (size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc ();
}
[[gnu::noinline]] void operator delete (void* memory) noexcept { std::free (memory); }
[[gnu::noinline]] void operator delete (void* memory, std::size_t) noexcept { std::free (memory); }

namespace {

using namespace clxml;

constexpr double radian = CSIB_RadiansOfDegree;
constexpr std::size_t count = 4096;

[[noreturn]] void Fail (const std::string& text) {
  std::fprintf (stderr, "bench_geodesy: %s\n", text.c_str ());
  std::exit (1);
}

enum Order { Near, Scattered };
constexpr const char* orders[] = {"near", "scattered"};

// Points within three degrees of the central meridian: in the order in which a job has them, near
// each other, or anywhere in the geoid's area.
std::vector<coord_WGS84> Points (Order order) {
  std::mt19937 random (5);
  std::uniform_real_distribution<double> step (-0.01, 0.01), part (0.0, 1.0);
  std::vector<coord_WGS84> points;
  double latitude = 48.0;
  double longitude = 10.0;
  for (std::size_t i = 0; i < count; i++) {
    latitude = std::clamp (latitude + step (random), 46.5, 49.5);
    longitude = std::clamp (longitude + step (random), 7.5, 12.0);
    if (order == Scattered) {
      latitude = 46.1 + 3.8 * part (random);
      longitude = 7.1 + 4.9 * part (random);
    }
    points.emplace_back (latitude * radian, longitude * radian, 500.0);
  }
  return points;
}

// The geoid as a grid file of ours and one of PROJ's, the same numbers of single precision in both.
struct Geoid {
  std::filesystem::path folder =
      std::filesystem::temp_directory_path () / ("bench_geodesy." + std::to_string (getpid ()));
  std::string theirs = (folder / "geoid.gtx").string ();

  Geoid () {
    std::filesystem::create_directory (folder);
    folder_Mount (folder_Class (folder_Project).Path, folder.c_str ());
    testing::GridFile grid;
    grid.latMin = 46.0;
    grid.lonMin = 7.0;
    grid.latSpacing = grid.lonSpacing = 1.0 / 64.0;
    grid.rows = 257;
    grid.columns = 385;
    grid.element = 3;
    grid.method = 2;
    grid.value = [] (int row, int column) {
      return 46.0 + 2.0 * std::sin (0.025 * row) * std::cos (0.018 * column);
    };
    testing::PutFile ((folder / "geoid.ggf").string (), grid.Bytes ());
    testing::GridBytes gtx (true);
    for (const double number : {grid.latMin, grid.lonMin, grid.latSpacing, grid.lonSpacing})
      gtx.Put (number);
    gtx.Put (grid.rows).Put (grid.columns);
    for (int row = 0; row < grid.rows; row++)
      for (int column = 0; column < grid.columns; column++)
        gtx.Put (static_cast<float> (grid.value (row, column)));
    testing::PutFile (theirs, gtx.text);
  }
  ~Geoid () { std::filesystem::remove_all (folder); }
};

const Geoid& TheGeoid () {
  static const Geoid geoid;
  return geoid;
}

enum Kind { TransverseMercator, Lambert, Pipeline };
constexpr const char* kinds[] = {"transverse_Mercator", "Lambert", "datum_geoid_projection"};
constexpr Kind allKinds[] = {TransverseMercator, Lambert, Pipeline};
constexpr Order allOrders[] = {Near, Scattered};

// From the local ellipsoid to WGS84 by the coordinate frame's signs: metres, seconds of arc, parts
// of a million.
constexpr double shift[] = {598.1, 73.7, 418.2, -0.202, -0.045, 2.455, 6.7};

std::unique_ptr<Transform> Ours (Kind kind) {
  TheGeoid ();
  int parts = COORDSYS_SetEllipsoid | COORDSYS_SetProjection;
  coordsys_Ellipsoid ellipsoid = coordsys_WGS84Ellipsoid ();
  coordsys_Projection projection;
  projection.ProjectionType =
      kind == Lambert ? COORDSYS_Lambert2Parallel : COORDSYS_TransverseMercator;
  projection.OriginLocal = coord_Local ((kind == Lambert ? 48.0 : 0.0) * radian, 9.0 * radian, 0.0);
  projection.OriginGrid = coord_CorrectedGrid (0.0, 0.0, 0.0);
  projection.Scale = kind == Lambert ? 1.0 : 0.9996;
  projection.Orientation1 = 47.0 * radian;
  projection.Orientation2 = 49.0 * radian;
  coordsys_Datum datum;
  coordsys_Height height;
  if (kind == Pipeline) {
    parts |= COORDSYS_SetDatum | COORDSYS_SetVertAdjustment;
    ellipsoid = coordsys_Ellipsoid (6377397.155, 1.0 / 299.1528128);
    csib_SevenParameters record;  // which a job has from WGS84 to local
    const csib_SevenParameters toWGS84{shift[0],
                                       shift[1],
                                       shift[2],
                                       shift[3] * CSIB_Second,
                                       shift[4] * CSIB_Second,
                                       shift[5] * CSIB_Second,
                                       1.0 + shift[6] * 1e-6};
    if (csib_InvertSevenParameters (toWGS84, record) != CSIB_Ok) Fail ("no inverse datum");
    datum.DatumType = COORDSYS_SevenParameter;
    datum.TranslationX = record.TX;
    datum.TranslationY = record.TY;
    datum.TranslationZ = record.TZ;
    datum.RotationX = record.RX;
    datum.RotationY = record.RY;
    datum.RotationZ = record.RZ;
    datum.Scale = record.S;
    height.HeightType = COORDSYS_GeoidModel;
    height.GeoidFilename = "geoid";
  }
  coordsys_Error error = COORDSYS_NoError;
  auto transform = Transform_Create (static_cast<uint16_t> (parts), &ellipsoid, &projection, &datum,
                                     nullptr, &height, nullptr, 0, &error);
  if (!transform) Fail ("no transform, error " + std::to_string (error));
  return transform;
}

bool ToGrid (const Transform& transform, Kind kind, const coord_WGS84& point, coord_CogoGrid& out) {
  coord_Local local (point.Latitude, point.Longitude, point.Height);
  if (kind == Pipeline) transform.WGS84ToLocal (point, local);
  transform.LocalToCogoGrid (local, out);
  return !maths_IsNull (out.North) && !maths_IsNull (out.Elevation);
}

bool FromGrid (const Transform& transform, Kind kind, const coord_CogoGrid& point,
               coord_WGS84& out) {
  coord_Local local;
  transform.CogoGridToLocal (point, local);
  if (kind == Pipeline)
    transform.LocalToWGS84 (local, out);
  else
    out = coord_WGS84 (local.Latitude, local.Longitude, local.Height);
  return !maths_IsNull (out.Latitude) && !maths_IsNull (out.Height);
}

std::vector<coord_CogoGrid> Grids (const Transform& transform, Kind kind, Order order) {
  std::vector<coord_CogoGrid> grids;
  for (const coord_WGS84& point : Points (order))
    if (!ToGrid (transform, kind, point, grids.emplace_back ())) Fail ("a point has no grid");
  return grids;
}

#ifdef CLXML_HAS_PROJ
std::string Definition (Kind kind, bool isApproximate) {
  const std::string mercator =
      std::string ("+proj=tmerc +lon_0=9 +k=0.9996") + (isApproximate ? " +approx" : "");
  const std::string wgs84 = "+a=6378137 +rf=298.257223563";
  if (kind == TransverseMercator) return mercator + " " + wgs84;
  if (kind == Lambert) return "+proj=lcc +lat_0=48 +lon_0=9 +lat_1=47 +lat_2=49 " + wgs84;
  char helmert[200];
  std::snprintf (helmert, sizeof helmert,
                 "+x=%g +y=%g +z=%g +rx=%g +ry=%g +rz=%g +s=%g +convention=coordinate_frame +exact",
                 shift[0], shift[1], shift[2], shift[3], shift[4], shift[5], shift[6]);
  return "+proj=pipeline +step +inv +proj=vgridshift +grids=" + TheGeoid ().theirs +
         " +multiplier=1 +step +proj=cart " + wgs84 + " +step +inv +proj=helmert " + helmert +
         " +step +inv +proj=cart +ellps=bessel +step " + mercator + " +ellps=bessel";
}

struct Projection {
  explicit Projection (const std::string& definition)
      : pj (proj_create (PJ_DEFAULT_CTX, definition.c_str ())) {
    if (pj == nullptr) Fail ("PROJ refuses " + definition);
  }
  ~Projection () { proj_destroy (pj); }
  PJ* const pj;
};

// The two sides have the same results: grids to 0.1 mm, and to 1 mm through the pipeline, where
// PROJ takes the separation off the height before the datum and not beside it; separations and the
// way back to 0.1 mm.
void Compare (Kind kind, Order order, bool isApproximate) {
  const auto transform = Ours (kind);
  const Projection theirs (Definition (kind, isApproximate));
  const Projection geoid ("+proj=vgridshift +grids=" + TheGeoid ().theirs + " +multiplier=1");
  const double earth = 6.4e6;
  double grid = 0.0, height = 0.0, back = 0.0;
  for (const coord_WGS84& point : Points (order)) {
    coord_CogoGrid ours;
    coord_WGS84 again;
    if (!ToGrid (*transform, kind, point, ours) || !FromGrid (*transform, kind, ours, again))
      Fail ("a point has no result");
    const PJ_COORD from = proj_coord (point.Longitude, point.Latitude, point.Height, 0.0);
    const PJ_COORD there = proj_trans (theirs.pj, PJ_FWD, from);
    const PJ_COORD theirBack = proj_trans (theirs.pj, PJ_INV, there);
    grid = std::max ({grid, std::abs (there.xy.x - ours.East), std::abs (there.xy.y - ours.North)});
    back = std::max ({back, std::abs (theirBack.lp.phi - again.Latitude) * earth,
                      std::abs (theirBack.lp.lam - again.Longitude) * earth,
                      std::abs (theirBack.lpz.z - again.Height)});
    if (kind == Pipeline)
      height =
          std::max (height, std::abs (proj_trans (geoid.pj, PJ_INV, from).xyz.z - ours.Elevation));
  }
  if (!(grid < (kind == Pipeline ? 1e-3 : 1e-4)) || !(height < 1e-4) || !(back < 1e-4))
    Fail (std::string (kinds[kind]) + ": the two sides differ by " + std::to_string (grid) +
          " m, heights by " + std::to_string (height) + " m, on the way back by " +
          std::to_string (back) + " m");
}

// PROJ's call for many points at once, the faster of its two; each round has the points anew.
void MeasurePROJ (benchmark::State& state, Kind kind, Order order, bool isForward,
                  bool isApproximate) {
  const Projection theirs (Definition (kind, isApproximate));
  std::vector<PJ_COORD> points;
  for (const coord_WGS84& point : Points (order))
    points.push_back (proj_coord (point.Longitude, point.Latitude, point.Height, 0.0));
  if (!isForward) proj_trans_array (theirs.pj, PJ_FWD, points.size (), points.data ());
  std::vector<PJ_COORD> work = points;
  for (auto _ : state) {
    std::copy (points.begin (), points.end (), work.begin ());
    if (proj_trans_array (theirs.pj, isForward ? PJ_FWD : PJ_INV, work.size (), work.data ()) != 0)
      state.SkipWithError ("no result");
    benchmark::ClobberMemory ();
  }
  state.SetItemsProcessed (state.iterations () * static_cast<int64_t> (count));
}
#endif

// Runs `convert` over all points and refuses an allocation.
template <class From, class To, class Convert>
void Measure (benchmark::State& state, const std::vector<From>& points, Convert convert) {
  To out;
  const std::size_t before = allocations;
  std::size_t during = 0;
  for (auto _ : state) {
    for (const From& point : points) {
      if (!convert (point, out)) state.SkipWithError ("no result");
      benchmark::DoNotOptimize (out);
    }
    during = allocations - before;
  }
  if (during != 0) state.SkipWithError ("a point allocates");
  state.SetItemsProcessed (state.iterations () * static_cast<int64_t> (count));
}

void MeasureTransform (benchmark::State& state, Kind kind, Order order, bool isForward) {
  const auto transform = Ours (kind);
  if (isForward)
    Measure<coord_WGS84, coord_CogoGrid> (state, Points (order),
                                          [&] (const coord_WGS84& point, coord_CogoGrid& out) {
                                            return ToGrid (*transform, kind, point, out);
                                          });
  else
    Measure<coord_CogoGrid, coord_WGS84> (state, Grids (*transform, kind, order),
                                          [&] (const coord_CogoGrid& point, coord_WGS84& out) {
                                            return FromGrid (*transform, kind, point, out);
                                          });
}

void Register () {
  for (const Kind kind : allKinds)
    for (const bool isForward : {true, false})
      for (const Order order : allOrders) {
        const std::string row = std::string (isForward ? "forward/" : "inverse/") + kinds[kind] +
                                "/" + orders[order] + "/";
        benchmark::RegisterBenchmark ((row + "Transform").c_str (), MeasureTransform, kind, order,
                                      isForward);
#ifdef CLXML_HAS_PROJ
        for (const bool isApproximate : {false, true})
          if (kind != Lambert || !isApproximate)
            benchmark::RegisterBenchmark ((row + (isApproximate ? "PROJ+approx" : "PROJ")).c_str (),
                                          MeasurePROJ, kind, order, isForward, isApproximate);
#endif
      }
}

}  // namespace

int main (int argc, char** argv) {
  benchmark::Initialize (&argc, argv);
#ifdef CLXML_HAS_PROJ
  for (const Kind kind : allKinds)
    for (const Order order : allOrders)
      for (const bool isApproximate : {false, true}) Compare (kind, order, isApproximate);
#endif
  Register ();
  benchmark::RunSpecifiedBenchmarks ();
}
