// Measures points per second through projections and a whole pipeline, beside PROJ where it is.
// The same points in one run: a transverse Mercator and a Lambert in both directions, and a seven
// parameter datum with a geoid grid and a transverse Mercator behind it. Before anything is timed
// the two sides are held against each other, and no point may allocate. Leans on Google Benchmark
// and, where it is found, PROJ.
#include <benchmark/benchmark.h>
#ifdef CLXML_HAS_PROJ
#include <proj.h>
#endif
#include <unistd.h>

#include <atomic>
#include <bit>
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

#include "geodesy/csib.h"
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

// Points of a survey area, in the order in which a job would have them: near each other.
std::vector<csib_Geodetic> Points () {
  std::mt19937 random (5);
  std::uniform_real_distribution<double> step (-0.01, 0.01);
  std::vector<csib_Geodetic> points (count);
  double latitude = 48.0;
  double longitude = 10.0;
  for (csib_Geodetic& point : points) {
    latitude = std::clamp (latitude + step (random), 46.5, 49.5);
    longitude = std::clamp (longitude + step (random), 7.5, 12.5);
    point.Latitude = latitude * radian;
    point.Longitude = longitude * radian;
    point.EllipsoidalHeight = 500.0;
    point.HasEllipsoidal = true;
  }
  return points;
}

// The geoid as a grid file of ours and one of PROJ's, the same numbers of single precision in both.
struct Geoid {
  std::filesystem::path folder =
      std::filesystem::temp_directory_path () / ("bench_geodesy." + std::to_string (getpid ()));
  std::string ours = (folder / "geoid.ggf").string ();
  std::string theirs = (folder / "geoid.gtx").string ();

  Geoid () {
    std::filesystem::create_directory (folder);
    testing::GridFile grid;
    grid.latMin = 46.0;
    grid.lonMin = 7.0;
    grid.latSpacing = grid.lonSpacing = 0.0625;
    grid.rows = 65;
    grid.columns = 97;
    grid.element = 3;
    grid.method = 1;
    grid.value = [] (int row, int column) {
      return 46.0 + 2.0 * std::sin (0.1 * row) * std::cos (0.07 * column);
    };
    std::ofstream (ours, std::ios::binary) << grid.Bytes ();
    testing::GridBytes gtx (true);
    for (const double number : {grid.latMin, grid.lonMin, grid.latSpacing, grid.lonSpacing})
      gtx.Put (number);
    gtx.Put (grid.rows).Put (grid.columns);
    for (int row = 0; row < grid.rows; row++)
      for (int column = 0; column < grid.columns; column++)
        gtx.Put (static_cast<float> (grid.value (row, column)));
    std::ofstream (theirs, std::ios::binary) << gtx.text;
  }
  ~Geoid () { std::filesystem::remove_all (folder); }
};

const Geoid& TheGeoid () {
  static const Geoid geoid;
  return geoid;
}

template <class... Numbers>
std::vector<uint8_t> Bytes (std::vector<uint8_t> bytes, Numbers... numbers) {
  const auto put = [&bytes] (double number) {
    const auto raw = std::bit_cast<std::array<uint8_t, 8>> (number);
    bytes.insert (bytes.end (), raw.begin (), raw.end ());
  };
  (put (numbers), ...);
  return bytes;
}

// The series are PROJ's other transverse Mercator: quicker, and of the accuracy of ours.
enum Kind { TransverseMercator, Lambert, Pipeline, TransverseMercatorSeries };
constexpr const char* names[] = {"transverse Mercator", "Lambert", "datum, geoid, projection",
                                 "transverse Mercator by series"};

// Translations in metres, rotations in seconds of arc, scale in parts of a million: from the local
// ellipsoid to WGS84 by the coordinate frame's signs.
constexpr double shift[] = {598.1, 73.7, 418.2, -0.202, -0.045, 2.455, 6.7};

std::unique_ptr<csib_Block> Ours (Kind kind) {
  const bool isPipeline = kind == Pipeline;
  std::unique_ptr<csib_Block> block;
  const double a = isPipeline ? 6377397.155 : CSIB_WGS84MajorAxis;
  const double b = isPipeline ? 6377397.155 * (1.0 - 1.0 / 299.1528128) : CSIB_WGS84MinorAxis;
  if (csib_Create (block, CSIB_ByName, a, b) != CSIB_Ok) Fail ("no block");
  block->OriginLongitude = 9.0 * radian;
  block->ProjectionScale = kind == Lambert ? 1.0 : 0.9996;
  if (kind == Lambert) block->OriginLatitude = 48.0 * radian;
  const std::vector<uint8_t> parameters =
      kind == Lambert ? Bytes ({2}, 47.0 * radian, 49.0 * radian) : std::vector<uint8_t> ();
  const uint8_t none = 0;
  if (csib_SetProjection (*block, kind == Lambert ? CSIB_Lambert : CSIB_TransverseMercator,
                          {parameters.empty () ? &none : parameters.data (), parameters.size ()}) !=
      CSIB_Ok)
    Fail ("no projection");
  if (!isPipeline) return block;
  const std::vector<uint8_t> datum =
      Bytes ({}, shift[0], shift[1], shift[2], shift[3] * CSIB_Second, shift[4] * CSIB_Second,
             shift[5] * CSIB_Second, 1.0 + shift[6] * 1e-6);
  if (csib_SetDatum (*block, CSIB_SevenParameter, datum) != CSIB_Ok) Fail ("no datum");
  const std::string path = folder_DevicePath (Str (TheGeoid ().ours.c_str ())).Data ();
  std::vector<uint8_t> name (path.begin (), path.end ());
  name.push_back (0);
  if (const int status = csib_SetGeoid (*block, CSIB_GeoidGrid, name))
    Fail ("no geoid, status " + std::to_string (status));
  return block;
}

csib_Status Through (csib_Block& block, Kind kind, const csib_Geodetic& point, csib_Grid& out) {
  if (kind != Pipeline) return csib_Project (block, point, out);
  csib_Geodetic local;
  if (const csib_Status status = csib_WGS84ToLocal (block, point, local)) return status;
  return csib_Project (block, local, out);
}

#ifdef CLXML_HAS_PROJ
std::string Definition (Kind kind) {
  if (kind == TransverseMercator || kind == TransverseMercatorSeries)
    return std::string ("+proj=tmerc +lon_0=9 +k=0.9996 +a=6378137 +b=6356752.3142") +
           (kind == TransverseMercatorSeries ? " +approx" : "");
  if (kind == Lambert)
    return "+proj=lcc +lat_0=48 +lon_0=9 +lat_1=47 +lat_2=49 +a=6378137 +b=6356752.3142";
  char helmert[200];
  std::snprintf (helmert, sizeof helmert,
                 "+x=%g +y=%g +z=%g +rx=%g +ry=%g +rz=%g +s=%g +convention=coordinate_frame +exact",
                 shift[0], shift[1], shift[2], shift[3], shift[4], shift[5], shift[6]);
  return "+proj=pipeline +step +inv +proj=vgridshift +grids=" + TheGeoid ().theirs +
         " +multiplier=1 +step +proj=cart +a=6378137 +b=6356752.3142 +step +inv +proj=helmert " +
         helmert + " +step +inv +proj=cart +ellps=bessel +step +proj=tmerc +lon_0=9 +k=0.9996 " +
         "+ellps=bessel";
}

PJ* Theirs (Kind kind) {
  PJ* pj = proj_create (PJ_DEFAULT_CTX, Definition (kind).c_str ());
  if (pj == nullptr) Fail ("PROJ refuses " + Definition (kind));
  return pj;
}

std::vector<PJ_COORD> Coordinates (const std::vector<csib_Geodetic>& points) {
  std::vector<PJ_COORD> coordinates;
  for (const csib_Geodetic& point : points)
    coordinates.push_back (
        proj_coord (point.Longitude, point.Latitude, point.EllipsoidalHeight, 0.0));
  return coordinates;
}

// The two sides give the same: positions to 0.1 mm, and to 1 mm through the pipeline, where PROJ
// takes the separation off the height before the datum and not beside it; separations to 0.1 mm.
void Compare (Kind kind) {
  const std::unique_ptr<csib_Block> block = Ours (kind);
  PJ* pj = Theirs (kind);
  PJ* geoid =
      proj_create (PJ_DEFAULT_CTX,
                   ("+proj=vgridshift +grids=" + TheGeoid ().theirs + " +multiplier=1").c_str ());
  double worst = 0.0;
  double worstHeight = 0.0;
  for (const csib_Geodetic& point : Points ()) {
    csib_Grid grid;
    if (Through (*block, kind, point, grid) != CSIB_Ok) Fail ("a point has no answer");
    const PJ_COORD from =
        proj_coord (point.Longitude, point.Latitude, point.EllipsoidalHeight, 0.0);
    const PJ_COORD there = proj_trans (pj, PJ_FWD, from);
    worst =
        std::max ({worst, std::abs (there.xy.x - grid.East), std::abs (there.xy.y - grid.North)});
    if (kind != Pipeline) continue;
    const double elevation = proj_trans (geoid, PJ_INV, from).xyz.z;
    worstHeight = std::max (worstHeight, std::abs (elevation - grid.OrthometricHeight));
  }
  proj_destroy (geoid);
  proj_destroy (pj);
  if (!(worst < (kind == Pipeline ? 1e-3 : 1e-4)) || !(worstHeight < 1e-4))
    Fail ("the two sides part by " + std::to_string (worst) + " and " +
          std::to_string (worstHeight) + " m");
}
#endif

void Count (benchmark::State& state, Kind kind) {
  state.SetLabel (names[kind]);
  state.SetItemsProcessed (state.iterations () * static_cast<int64_t> (count));
}

void Forward (benchmark::State& state) {
  const Kind kind = static_cast<Kind> (state.range (0));
  const std::unique_ptr<csib_Block> block = Ours (kind);
  const std::vector<csib_Geodetic> points = Points ();
  csib_Grid grid;
  Through (*block, kind, points.front (), grid);
  const std::size_t before = allocations;
  std::size_t during = 0;
  for (auto _ : state) {
    for (const csib_Geodetic& point : points) {
      if (Through (*block, kind, point, grid) != CSIB_Ok) state.SkipWithError ("no answer");
      benchmark::DoNotOptimize (grid);
    }
    during = allocations - before;
  }
  if (during != 0) state.SkipWithError ("a point allocates");
  Count (state, kind);
}

void Inverse (benchmark::State& state) {
  const Kind kind = static_cast<Kind> (state.range (0));
  const std::unique_ptr<csib_Block> block = Ours (kind);
  std::vector<csib_Grid> grids;
  for (const csib_Geodetic& point : Points ()) Through (*block, kind, point, grids.emplace_back ());
  csib_Geodetic back;
  const std::size_t before = allocations;
  std::size_t during = 0;
  for (auto _ : state) {
    for (const csib_Grid& grid : grids) {
      if (csib_Unproject (*block, grid, back) != CSIB_Ok) state.SkipWithError ("no answer");
      benchmark::DoNotOptimize (back);
    }
    during = allocations - before;
  }
  if (during != 0) state.SkipWithError ("a point allocates");
  Count (state, kind);
}

BENCHMARK (Forward)->ArgName ("kind")->Arg (TransverseMercator)->Arg (Lambert)->Arg (Pipeline);
BENCHMARK (Inverse)->ArgName ("kind")->Arg (TransverseMercator)->Arg (Lambert);

#ifdef CLXML_HAS_PROJ
// PROJ's call for many points at once, the faster of its two; each round has the points anew.
void PROJ (benchmark::State& state, PJ_DIRECTION direction) {
  const Kind kind = static_cast<Kind> (state.range (0));
  PJ* pj = Theirs (kind);
  std::vector<PJ_COORD> points = Coordinates (Points ());
  if (direction == PJ_INV) proj_trans_array (pj, PJ_FWD, points.size (), points.data ());
  std::vector<PJ_COORD> work = points;
  for (auto _ : state) {
    std::copy (points.begin (), points.end (), work.begin ());
    if (proj_trans_array (pj, direction, work.size (), work.data ()) != 0)
      state.SkipWithError ("no answer");
    benchmark::ClobberMemory ();
  }
  proj_destroy (pj);
  Count (state, kind);
}

void PROJForward (benchmark::State& state) { PROJ (state, PJ_FWD); }
void PROJInverse (benchmark::State& state) { PROJ (state, PJ_INV); }

BENCHMARK (PROJForward)
    ->ArgName ("kind")
    ->Arg (TransverseMercator)
    ->Arg (TransverseMercatorSeries)
    ->Arg (Lambert)
    ->Arg (Pipeline);
BENCHMARK (PROJInverse)
    ->ArgName ("kind")
    ->Arg (TransverseMercator)
    ->Arg (TransverseMercatorSeries)
    ->Arg (Lambert);
#endif

}  // namespace

int main (int argc, char** argv) {
  benchmark::Initialize (&argc, argv);
#ifdef CLXML_HAS_PROJ
  for (const Kind kind : {TransverseMercator, Lambert, Pipeline}) Compare (kind);
#endif
  benchmark::RunSpecifiedBenchmarks ();
}
