// clxml transform: points from one side of a coordinate system to the other.
// Reads a point a line, converts it through the library's transform, prints a point a line. Leans
// on transfrm, CLI11 and the operating system.
#include <unistd.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

#include "Library/coordsys/transfrm.h"
#include "common.h"
#include "coordsystem.h"

namespace clxml::tool {
namespace {

constexpr double radians = CONSTANT_Pi / 180.0;
constexpr std::size_t longestLine = 4096;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

struct TransformOptions {
  SystemOptions system;
  std::string job, files, sides = "wgs84-grid";
  bool inverse = false, tolerate = false;
};

// Latitude, longitude, height or north, east, elevation; null for what is absent.
using Point = std::array<double, 3>;

// The two sides of a conversion: what their points are, and the ways between.
struct Sides {
  const char* name;
  bool needsProjection;
  bool fromWGS84;
  Point (*forward) (const Transform& transform, const Point& point);
  Point (*inverse) (const Transform& transform, const Point& point);
};

template <class Geodetic>
Geodetic In (const Point& p) {
  return {p[0], p[1], p[2]};
}
template <class Geodetic>
Point Out (const Geodetic& g) {
  return {g.Latitude, g.Longitude, g.Height};
}
Point GridOf (const Transform& transform, const coord_CogoGrid& cogo) {
  coord_CorrectedGrid grid;
  transform.CogoGridToGrid (cogo, grid);
  return {grid.North, grid.East, grid.Elevation};
}
coord_CogoGrid CogoOf (const Transform& transform, const Point& p) {
  coord_CogoGrid cogo;
  transform.GridToCogoGrid (coord_CorrectedGrid::FromNorthEastElevation (p[0], p[1], p[2]), cogo);
  return cogo;
}

Point LocalOfWGS84 (const Transform& transform, const Point& point) {
  coord_Local local;
  transform.WGS84ToLocal (In<coord_WGS84> (point), local);
  return Out (local);
}
Point WGS84OfLocal (const Transform& transform, const Point& point) {
  coord_WGS84 wgs84;
  transform.LocalToWGS84 (In<coord_Local> (point), wgs84);
  return Out (wgs84);
}
Point GridOfLocal (const Transform& transform, const Point& point) {
  coord_CogoGrid cogo;
  transform.LocalToCogoGrid (In<coord_Local> (point), cogo);
  return GridOf (transform, cogo);
}
Point LocalOfGrid (const Transform& transform, const Point& point) {
  coord_Local local;
  transform.CogoGridToLocal (CogoOf (transform, point), local);
  return Out (local);
}
Point GridOfUncalibrated (const Transform& transform, const Point& point) {
  coord_CogoGrid cogo;
  transform.UncalibratedLocalToCogoGrid (In<coord_Local> (point), cogo);
  return GridOf (transform, cogo);
}
Point UncalibratedOfGrid (const Transform& transform, const Point& point) {
  coord_Local local;
  transform.CogoGridToUncalibratedLocal (CogoOf (transform, point), local);
  return Out (local);
}

constexpr Sides allSides[] = {
    {"wgs84-grid", true, true,
     [] (const Transform& t, const Point& p) {
       return GridOfUncalibrated (t, LocalOfWGS84 (t, p));
     },
     [] (const Transform& t, const Point& p) {
       return WGS84OfLocal (t, UncalibratedOfGrid (t, p));
     }},
    {"uncalibrated-grid", true, false, GridOfUncalibrated, UncalibratedOfGrid},
    {"local-grid", true, false, GridOfLocal, LocalOfGrid},
    {"wgs84-uncalibrated", false, true, LocalOfWGS84, WGS84OfLocal},
};

// An elevation is a height above the ellipsoid where the geoid has no value.
bool IsOutsideGeoid (const Transform& transform, const Point& point, bool isWGS84) {
  double separation = MATHS_Null;
  transform.GeoidSeparation (In<coord_WGS84> (isWGS84 ? point : WGS84OfLocal (transform, point)),
                             separation);
  return maths_IsNull (separation);
}

// What did not come through whole.
struct Losses {
  uint64_t points = 0, places = 0, heights = 0, outside = 0;

  void Tell () const {
    const std::string of = " of " + std::to_string (points);
    if (places != 0)
      Say ("warning: " + std::to_string (places) + of + " points have no place on the other side");
    if (heights != 0)
      Say ("warning: " + std::to_string (heights) + of +
           " points have no height on the other side");
    if (outside != 0)
      Say ("warning: " + std::to_string (outside) + of +
           " points lie outside the geoid; their elevations are heights above the ellipsoid");
  }
};

// One line without its end; false at the end of the input. A line longer than any point is cut.
bool ReadLine (std::string& line) {
  line.clear ();
  int c = std::getchar ();
  if (c == EOF) return false;
  for (; c != EOF && c != '\n'; c = std::getchar ())
    if (line.size () <= longestLine) line += static_cast<char> (c);
  if (!line.empty () && line.back () == '\r') line.pop_back ();
  return true;
}

[[noreturn]] void RefuseLine (uint64_t number, const std::string& why) {
  throw Refusal{STATUS_Input, "line " + std::to_string (number) + ": " + why};
}

// What of a wrong word can be shown.
std::string Shown (std::string_view word) {
  std::string shown (word.substr (0, 40));
  for (char& c : shown)
    if (static_cast<unsigned char> (c) < ' ') c = '?';
  return "\"" + shown + "\"";
}

// Two or three numbers with blanks, tabs, a comma or a semicolon between them; "-" stands for none.
Point PointFrom (std::string_view line, uint64_t number) {
  constexpr std::string_view blanks = " \t";
  if (line.size () > longestLine) RefuseLine (number, "too long for a point");
  Point point = {MATHS_Null, MATHS_Null, MATHS_Null};
  std::size_t count = 0;
  const auto skipBlanks = [&] {
    line.remove_prefix (std::min (line.find_first_not_of (blanks), line.size ()));
  };
  for (skipBlanks (); !line.empty (); skipBlanks ()) {
    const std::string_view word = line.substr (0, line.find_first_of (" \t,;"));
    if (count == point.size ())
      RefuseLine (number, "more than three numbers, from " + Shown (line) + " on");
    if (word != "-" && !NumberFrom (word, point[count]))
      RefuseLine (number, Shown (word) + " is no number");
    count++;
    line.remove_prefix (word.size ());
    skipBlanks ();
    if (line.starts_with (',') || line.starts_with (';')) line.remove_prefix (1);
  }
  if (count < 2) RefuseLine (number, "a point has two or three numbers");
  return point;
}

void ToRadians (Point& point, uint64_t number) {
  if (!maths_IsNull (point[0]) && std::abs (point[0]) > 90.0)
    RefuseLine (number, "a latitude lies within 90 degrees");
  if (!maths_IsNull (point[1]) && std::abs (point[1]) > 360.0)
    RefuseLine (number, "a longitude lies within 360 degrees");
  point[0] = maths_Multiply (point[0], radians);
  point[1] = coord_NormalisePlusMinusPi (maths_Multiply (point[1], radians));
}

void Append (std::string& text, double value, int decimals) {
  if (maths_IsNull (value)) {
    text += '-';
    return;
  }
  char digits[400];
  const auto end =
      std::to_chars (digits, digits + sizeof digits, value, std::chars_format::fixed, decimals).ptr;
  std::string_view shown (digits, static_cast<std::size_t> (end - digits));
  if (shown.find_first_not_of ("-0.") == std::string_view::npos && shown.starts_with ('-'))
    shown.remove_prefix (1);
  text += shown;
}

// A tenth of a millimetre, and less of an angle.
void Append (std::string& text, Point point, bool isGeodetic) {
  if (isGeodetic) {
    point[0] = maths_Divide (point[0], radians);
    point[1] = maths_Divide (point[1], radians);
  }
  Append (text, point[0], isGeodetic ? 11 : 4);
  text += ' ';
  Append (text, point[1], isGeodetic ? 11 : 4);
  text += ' ';
  Append (text, point[2], 4);
  text += '\n';
}

void ConvertInput (const Transform& transform, const Sides& sides, bool inverse, bool hasGeoid) {
  const bool fromGeodetic = !inverse || !sides.needsProjection;
  const bool toGeodetic = inverse || !sides.needsProjection;
  const bool isTyped = ::isatty (STDIN_FILENO) != 0;
  const bool asksGeoid = hasGeoid && sides.needsProjection && !inverse;
  Losses losses;
  std::string line, out;
  try {
    for (uint64_t number = 1; ReadLine (line); number++) {
      if (number == 1 && line.starts_with (byteOrderMark)) line.erase (0, byteOrderMark.size ());
      const std::size_t start = line.find_first_not_of (" \t");
      if (start == std::string::npos || line[start] == '#') {
        out += line + "\n";
      } else {
        Point point = PointFrom (line, number);
        if (fromGeodetic) ToRadians (point, number);
        const Point result =
            inverse ? sides.inverse (transform, point) : sides.forward (transform, point);
        losses.points++;
        if (maths_IsNull (result[0]))
          losses.places++;
        else if (maths_IsNull (result[2]))
          losses.heights += !maths_IsNull (point[2]);
        else if (asksGeoid)
          losses.outside += IsOutsideGeoid (transform, point, sides.fromWGS84);
        Append (out, result, toGeodetic);
      }
      if (out.size () < 65536 && !isTyped) continue;
      Print (out);
      out.clear ();
      if (isTyped) FinishPrinting ();
    }
  } catch (const Refusal&) {
    Print (out);
    FinishPrinting ();
    throw;
  }
  Print (out);
  if (std::ferror (stdin)) throw Refusal{STATUS_Input, "standard input cannot be read"};
  losses.Tell ();
}

int RunTransform (const TransformOptions& options, Ear& ear) {
  const Sides* sides = nullptr;
  for (const Sides& known : allSides)
    if (options.sides == known.name) sides = &known;
  if (options.job.empty () && !options.files.empty ())
    throw Refusal{STATUS_Usage, "--files tells where the files of a --job are"};
  if (!options.job.empty () && options.system.IsGiven ())
    throw Refusal{STATUS_Usage, "--job brings its coordinate system; no other can be given"};

  std::unique_ptr<ProjectFolder> folder;
  std::unique_ptr<OpenedJob> job;
  coordsys_Parts parts;
  if (options.job.empty ()) {
    folder = std::make_unique<ProjectFolder> ();
    parts = PartsOf (options.system, *folder);
  } else {
    job = std::make_unique<OpenedJob> (options.job);
    job->MustBeOpen ();
    parts = coordsys_PartsOf (job->access);
    const std::string files = options.files.empty ()
                                  ? std::filesystem::path (options.job).parent_path ().string ()
                                  : options.files;
    folder = std::make_unique<ProjectFolder> (files.empty () ? "." : files);
  }
  const std::string source = job ? options.job + ": " : std::string ();
  const int status = job ? STATUS_Input : STATUS_Usage;
  const auto type = parts.Projection.ProjectionType;
  if (sides->needsProjection && ((parts.Components & COORDSYS_SetProjection) == 0 ||
                                 type == COORDSYS_NoProjection || type == COORDSYS_ScaleOnly))
    throw Refusal{status, source + (job ? "the job has no map projection"
                                        : "no map projection: give --projection, --utm or --job")};
  if (options.tolerate) parts.Options |= COORDSYS_TolerateMissingFiles;

  ear.Listen ([&] (std::string_view text) { Say ("warning: " + source + std::string (text)); });
  coordsys_Error error = COORDSYS_NoError;
  const std::unique_ptr<Transform> transform =
      Transform_Create (parts.Components, &parts.Ellipsoid, &parts.Projection, &parts.Datum,
                        &parts.Plane, &parts.Height, &parts.Corrections, parts.Options, &error);
  ear.Listen (nullptr);
  if (!transform) throw Refusal{status, source + Meaning (error)};
  const bool hasGeoid =
      error != COORDSYS_FileMissingTolerated && (parts.Height.HeightType == COORDSYS_GeoidModel ||
                                                 parts.Height.HeightType == COORDSYS_GeoidAndPlane);
  ConvertInput (*transform, *sides, options.inverse, hasGeoid);
  if (job && job->status == JOBOPEN_Corrupt) Say ("error: " + job->path + ": " + job->Meaning ());
  return job ? job->ExitStatus () : STATUS_Clean;
}

}  // namespace

void AddTransform (CLI::App& app, Session& session) {
  const auto options = std::make_shared<TransformOptions> ();
  CLI::App* command =
      app.add_subcommand ("transform", "Convert points between WGS84 and the grid of a job");
  command->add_option ("--job", options->job, "Take the newest coordinate system of a job file")
      ->type_name ("JOB");
  command
      ->add_option ("--files", options->files,
                    "Where the grid files of the job are; beside it "
                    "if not given")
      ->type_name ("FOLDER");
  command->add_flag ("--tolerate-missing", options->tolerate, "Do without files that are missing");
  command->add_flag ("-i,--inverse", options->inverse, "From the grid, or the local side");
  std::vector<std::string> names;
  for (const Sides& sides : allSides) names.emplace_back (sides.name);
  command->add_option ("--sides", options->sides, "The two sides")
      ->check (CLI::IsMember (names))
      ->capture_default_str ();
  options->system.AddTo (*command);
  command->footer (
      "Standard input has a point a line: latitude, longitude (degrees, north and east positive)\n"
      "and height (metres above the ellipsoid), or with --inverse north, east and elevation.\n"
      "Blanks, a comma or a semicolon stand between them, \"-\" or nothing for no height. Empty\n"
      "lines and those that begin with # pass through. A point without a place on the other side\n"
      "becomes \"- - -\"; without a height there is no way back to WGS84. Several numbers of an\n"
      "option stand with commas and no blanks.\n"
      "Sides: wgs84-grid is the whole way, uncalibrated is WGS84 behind the datum alone, local is\n"
      "the geodetic point that projects to the grid without the plane of a calibration.\n"
      "Exit status: 0 done, 64 wrong options, 65 a line that is no point or a job without a\n"
      "usable coordinate system, 1 not to be opened as a job, 2 the job is damaged.\n"
      "Example: clxml transform --utm 33 <points.txt\n"
      "         echo 5327000 4470000 512 | clxml transform --inverse --ellipsoid Bessel \\\n"
      "           --projection TransverseMercator --origin 0,12 --false 0,4500000 \\\n"
      "           --datum -598.1,-73.7,-418.2,0.202,0.045,-2.455,-6.7");
  command->callback ([&session, options] {
    session.run = [&session, options] { return RunTransform (*options, session.ear); };
  });
}

}  // namespace clxml::tool
