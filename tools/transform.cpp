// clxml transform: points from one side of a coordinate system to the other.
// Reads a point a line, converts it through the library's transform, prints a point a line and
// marks what looks wrong. Uses transfrm, pointline, CLI11 and the operating system.
#include <unistd.h>

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
#include "pointline.h"

namespace clxml::tool {
namespace {

constexpr std::size_t longestLine = 4096;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

struct TransformOptions {
  SystemOptions system;
  std::string job, files, columns, sides = "wgs84-grid";
  bool inverse = false, tolerate = false, seconds = false, strict = false, list = false;
};

// The two sides of a conversion: what their points are, and the ways between.
struct Sides {
  const char* name;
  const char* meaning;
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
    {"wgs84-grid", "WGS84 to the grid of the job: the whole pipeline", true, true,
     [] (const Transform& t, const Point& p) {
       return GridOfUncalibrated (t, LocalOfWGS84 (t, p));
     },
     [] (const Transform& t, const Point& p) {
       return WGS84OfLocal (t, UncalibratedOfGrid (t, p));
     }},
    {"uncalibrated-grid", "WGS84 after the datum alone, to the grid", true, false,
     GridOfUncalibrated, UncalibratedOfGrid},
    {"local-grid", "the point that projects to the grid without a calibration's plane, to the grid",
     true, false, GridOfLocal, LocalOfGrid},
    {"wgs84-uncalibrated", "the datum alone", false, true, LocalOfWGS84, WGS84OfLocal},
};

// An elevation is a height above the ellipsoid where the geoid has no value.
bool IsOutsideGeoid (const Transform& transform, const Point& point, bool isWGS84) {
  double separation = MATHS_Null;
  transform.GeoidSeparation (In<coord_WGS84> (isWGS84 ? point : WGS84OfLocal (transform, point)),
                             separation);
  return maths_IsNull (separation);
}

// The longitude about which a projection is used, for marks; null where it has none.
struct Zone {
  double meridian = MATHS_Null;  // radians
  bool isTransverse = false;     // its accuracy ends some degrees from the meridian
};

bool UsesGridFile (const coordsys_Parts& parts) {
  return parts.Datum.DatumType == COORDSYS_GridDatum ||
         parts.Projection.ProjectionType == COORDSYS_ProjectionGrid ||
         parts.Projection.ProjectionType == COORDSYS_UnitedKingdomNationalGrid ||
         !parts.Projection.ShiftGridFile.IsEmpty ();
}

Zone ZoneOf (const coordsys_Parts& parts) {
  constexpr double degree = CONSTANT_Pi / 180.0;
  const coordsys_Projection& projection = parts.Projection;
  switch (projection.ProjectionType) {
    case COORDSYS_NoProjection:
    case COORDSYS_ScaleOnly:
    case COORDSYS_PolarStereographic:
    case COORDSYS_UPSNorth:
    case COORDSYS_UPSSouth:
    case COORDSYS_ProjectionGrid:
    case COORDSYS_Mercator:
      return {};
    case COORDSYS_TransverseMercator:
    case COORDSYS_UniversalTransverseMercator:
    case COORDSYS_CassiniSoldner:
      return {projection.OriginLocal.Longitude, true};
    case COORDSYS_UnitedKingdomNationalGrid:
      return {-2.0 * degree, true};
    case COORDSYS_Denmark:
      return {(projection.Area == COORDSYS_AreaBornholm ? 15.0 : 9.0) * degree, true};
    case COORDSYS_RDStereographic:
      return {5.4 * degree, false};
    case COORDSYS_Krovak:
      return {17.5 * degree, false};
    case COORDSYS_NewZealandMapGrid:
      return {173.0 * degree, false};
    case COORDSYS_HungarianEOV:
      return {19.05 * degree, false};
    default:
      return {projection.OriginLocal.Longitude, false};
  }
}

// Reasons to suspect a point; it may have several.
enum Suspicion : unsigned {
  SUSPECT_NoPosition = 1,
  SUSPECT_NoHeight = 2,
  SUSPECT_OutsideGeoid = 4,
  SUSPECT_FarFromMeridian = 8,
  SUSPECT_Exchanged = 16,
  SUSPECT_OutsideGrid = 32,
};
constexpr struct {
  Suspicion bit;
  const char* mark;     // in the point's own line
  const char* warning;  // after "3 of 7 points"
} suspicions[] = {
    {SUSPECT_NoPosition, "no position on the other side", "have no position on the other side"},
    {SUSPECT_OutsideGrid, "outside the grid file: no position on the other side",
     "lie outside a grid file and have no position on the other side"},
    {SUSPECT_NoHeight, "no height on the other side", "have no height on the other side"},
    {SUSPECT_OutsideGeoid, "outside the geoid: the elevation is a height above the ellipsoid",
     "lie outside the geoid; their elevations are heights above the ellipsoid"},
    {SUSPECT_FarFromMeridian, "more than 10 degrees from the central meridian",
     "lie more than 10 degrees from the central meridian"},
    {SUSPECT_Exchanged, "are the two coordinates exchanged?",
     "look as if their two coordinates were exchanged"},
};

std::string MarkOf (unsigned suspicion) {
  std::string mark;
  for (const auto& row : suspicions)
    if ((suspicion & row.bit) != 0) mark += (mark.empty () ? "" : "; ") + std::string (row.mark);
  return mark;
}

// Counts suspect points and lines that were not converted.
class Outcome {
 public:
  void Count (unsigned suspicion) {
    _points++;
    for (std::size_t i = 0; i < std::size (suspicions); i++)
      _suspect[i] += (suspicion & suspicions[i].bit) != 0;
  }
  // Reports a line that is not converted; after twenty only their number is reported.
  void AddFault (uint64_t line, const std::string& why) {
    if (_faults++ < 20) Say ("line " + std::to_string (line) + ": " + why);
  }
  int Finish () const {
    for (std::size_t i = 0; i < std::size (suspicions); i++)
      if (_suspect[i] != 0)
        Say ("warning: " + std::to_string (_suspect[i]) + " of " + std::to_string (_points) +
             " points " + suspicions[i].warning);
    if (_faults != 0)
      Say ("error: " + std::to_string (_faults) + (_faults == 1 ? " line was" : " lines were") +
           " not converted");
    return _faults == 0 ? STATUS_Clean : STATUS_Input;
  }

 private:
  uint64_t _points = 0, _faults = 0;
  std::array<uint64_t, std::size (suspicions)> _suspect{};
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

// A conversion in one direction; recognises suspect points.
class Conversion {
 public:
  Conversion (const Transform& transform, const Sides& sides, bool inverse, bool hasGeoid,
              const coordsys_Parts& parts)
      : FromGeodetic (!inverse || !sides.needsProjection),
        ToGeodetic (inverse || !sides.needsProjection),
        _transform (transform),
        _sides (sides),
        _inverse (inverse),
        _asksGeoid (hasGeoid && sides.needsProjection && !inverse),
        _usesGridFile (UsesGridFile (parts)),
        _zone (sides.needsProjection ? ZoneOf (parts) : Zone ()) {}

  Point Convert (const Point& point) const {
    return _inverse ? _sides.inverse (_transform, point) : _sides.forward (_transform, point);
  }

  unsigned SuspicionOf (const Point& point, const Point& result) const {
    unsigned suspicion = 0;
    if (maths_IsNull (result[0]))
      suspicion |= _usesGridFile ? SUSPECT_OutsideGrid : SUSPECT_NoPosition;
    else if (maths_IsNull (result[2]))
      suspicion |= maths_IsNull (point[2]) ? 0u : SUSPECT_NoHeight;
    else if (_asksGeoid && IsOutsideGeoid (_transform, point, _sides.fromWGS84))
      suspicion |= SUSPECT_OutsideGeoid;
    const bool isMissing =
        maths_IsNull (point[0]) || maths_IsNull (point[1]) || (_inverse && maths_IsNull (point[2]));
    if (maths_IsNull (_zone.meridian) || isMissing) return suspicion;
    const double away = Away (point, result);
    if (_zone.isTransverse && !maths_IsNull (away) && away > 10.0)
      suspicion |= SUSPECT_FarFromMeridian;
    // Exchanged they must lie nearer the meridian than a point that is right would without need.
    if (away <= (_zone.isTransverse ? 6.0 : 10.0)) return suspicion;
    const Point exchanged = {point[1], point[0], point[2]};
    if (FromGeodetic && std::abs (exchanged[0]) > CONSTANT_PiOverTwo) return suspicion;
    if (Away (exchanged, Convert (exchanged)) <= (_zone.isTransverse ? 4.0 : 10.0))
      suspicion |= SUSPECT_Exchanged;
    return suspicion;
  }

  const bool FromGeodetic, ToGeodetic;

 private:
  // Degrees between a point and the central meridian; null without a position.
  double Away (const Point& point, const Point& result) const {
    const double longitude = _inverse ? result[1] : point[1];
    if (maths_IsNull (longitude) || maths_IsNull (result[0])) return MATHS_Null;
    return std::abs (std::remainder (longitude - _zone.meridian, CONSTANT_TwoPi)) * 180.0 /
           CONSTANT_Pi;
  }

  const Transform& _transform;
  const Sides& _sides;
  const bool _inverse, _asksGeoid, _usesGridFile;
  const Zone _zone;
};

int ConvertInput (const Conversion& conversion, const TransformOptions& options) {
  PointLines lines (options.columns, conversion.FromGeodetic, conversion.ToGeodetic,
                    options.seconds);
  if (options.seconds && !conversion.ToGeodetic)
    throw Refusal{STATUS_Usage, "--dms: the output is north and east, not degrees"};
  const bool isTyped = ::isatty (STDIN_FILENO) != 0;
  Outcome outcome;
  std::string line, out;
  for (uint64_t number = 1; ReadLine (line); number++) {
    if (number == 1 && line.starts_with (byteOrderMark)) line.erase (0, byteOrderMark.size ());
    const std::size_t start = line.find_first_not_of (" \t");
    if (start == std::string::npos || line[start] == '#') {
      out += line + "\n";
    } else if (number == 1 && lines.IsHead (line)) {
      lines.WriteHead (out, line);
    } else {
      try {
        const Point point = lines.Read (line);
        const Point result = conversion.Convert (point);
        const unsigned suspicion = conversion.SuspicionOf (point, result);
        const std::string mark = MarkOf (suspicion);
        if (options.strict && suspicion != 0) throw LineFault{mark};
        outcome.Count (suspicion);
        lines.Write (out, result, mark);
      } catch (const LineFault& fault) {
        outcome.AddFault (number, fault.why);
        out += "# line " + std::to_string (number) + ": " + fault.why + "\n";
      }
    }
    if (out.size () < 65536 && !isTyped) continue;
    Print (out);
    out.clear ();
    if (isTyped) FinishPrinting ();
  }
  Print (out);
  if (std::ferror (stdin)) throw Refusal{STATUS_Input, "standard input cannot be read"};
  return outcome.Finish ();
}

int PrintList () {
  std::string text = SystemList () + "\nDirections (--sides), each also with --inverse:\n";
  for (const Sides& sides : allSides) {
    std::string name = sides.name;
    name.resize (20, ' ');
    text += "  " + name + sides.meaning + "\n";
  }
  Print (text);
  return STATUS_Clean;
}

int RunTransform (const TransformOptions& options, Ear& ear) {
  if (options.list) return PrintList ();
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
  const int converted =
      ConvertInput (Conversion (*transform, *sides, options.inverse, hasGeoid, parts), options);
  if (job && job->status == JOBOPEN_Corrupt) Say ("error: " + job->path + ": " + job->Meaning ());
  if (converted != STATUS_Clean) return converted;
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
  command
      ->add_option ("--columns", options->columns,
                    "What a line has: lat, lon, h or north, east, elev and other names, which pass "
                    "through")
      ->type_name ("NAME,...");
  command->add_flag ("--dms", options->seconds, "Print angles in degrees, minutes and seconds");
  command->add_flag ("--strict", options->strict, "Refuse points that would be marked");
  command->add_flag ("--list", options->list,
                     "Show projections with their parameters, ellipsoids and directions, and end");
  options->system.AddTo (*command);
  command->footer (
      "Standard input has a point a line: latitude, longitude and height (metres above the\n"
      "ellipsoid), or with --inverse north, east and elevation. Latitudes are positive to the "
      "north,\n"
      "longitudes to the east. Angles are degrees, as 48.1, 48d06'00\", 48:06:00 or "
      "48\u00b006'00\"N.\n"
      "Numbers are separated by blanks, a comma or a semicolon, \"-\" or nothing means no height.\n"
      "With --columns name,lat,lon,h,code the columns are separated by commas, or semicolons, or\n"
      "tabs, or blanks, and all but the coordinates pass through. Empty lines and those that "
      "begin\n"
      "with # pass through.\n"
      "A line that is not a point is reported, and the others are converted. A point that looks "
      "wrong\n"
      "is converted and marked after # in its line: outside a geoid or grid, more than 10 "
      "degrees\n"
      "from the central meridian, or with its two coordinates exchanged; --strict refuses it. A\n"
      "point without a position on the other side becomes \"- - -\"; without a height there is no\n"
      "way back to WGS84. Several numbers of an option have commas and no blanks between them.\n"
      "Datum: --datum takes the parameters as a job stores them, from WGS84 to the local datum, "
      "with\n"
      "rotations of the axes (coordinate frame); its three numbers are used by the formulas of\n"
      "Molodensky. --towgs84 takes them as they are published, from the local datum to WGS84, "
      "with\n"
      "position vector rotations; its three numbers are a geocentric translation.\n"
      "Exit status: 0 done, 64 wrong options, 65 a line that is not a point (or a point that "
      "--strict\n"
      "refuses) or a job without a usable coordinate system, 1 not to be opened as a job, 2 the "
      "job\n"
      "is damaged.\n"
      "Example: clxml transform --utm 33 <points.txt\n"
      "         echo 5327000 4470000 512 | clxml transform --inverse --ellipsoid Bessel \\\n"
      "           --projection TransverseMercator --origin 0,12 --false 0,4500000 \\\n"
      "           --towgs84 598.1,73.7,418.2,0.202,0.045,-2.455,6.7");
  command->callback ([&session, options] {
    session.run = [&session, options] { return RunTransform (*options, session.ear); };
  });
}

}  // namespace clxml::tool
