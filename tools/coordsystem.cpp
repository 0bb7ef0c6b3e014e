// A coordinate system from the command line: reading its options.
// Numbers of one option are separated by commas; angles are degrees. Leans on CLI11,
// dbEnum, folder and the operating system.
#include "coordsystem.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

#include <CLI/CLI.hpp>

#include "common.h"
#include "geodesy/csib.h"
#include "geodesy/datum.h"
#include "hostfile.h"
#include "platform/folder.h"

namespace clxml::tool {
namespace {

constexpr double radians = CONSTANT_Pi / 180.0;

[[noreturn]] void Refuse (const char* option, const std::string& why) {
  throw Refusal{STATUS_Usage, std::string (option) + ": " + why};
}

std::vector<std::string> Pieces (const std::string& text) {
  std::vector<std::string> pieces (1);
  for (const char c : text)
    if (c == ',')
      pieces.emplace_back ();
    else
      pieces.back () += c;
  return pieces;
}

// The numbers of an option, as many as one of the two counts says.
std::vector<double> Numbers (const char* option, const std::string& text, std::size_t count,
                             std::size_t orCount = 0) {
  std::vector<double> numbers;
  for (const std::string& piece : Pieces (text)) {
    double number = 0.0;
    if (!NumberFrom (piece, number)) Refuse (option, "\"" + piece + "\" is not a number");
    numbers.push_back (number);
  }
  if (numbers.size () != count && numbers.size () != orCount)
    Refuse (option, "takes " + std::to_string (count) +
                        (orCount ? " or " + std::to_string (orCount) : std::string ()) +
                        " numbers, not " + std::to_string (numbers.size ()));
  return numbers;
}

double Factor (const char* option, const std::string& text) {
  const double factor = Numbers (option, text, 1)[0];
  if (factor <= 0.0) Refuse (option, "takes a factor above 0");
  return factor;
}

bool IsSame (std::string_view a, std::string_view b) { return Str (a).EqualInsensitive (Str (b)); }

constexpr std::string_view prefix = "COORDSYS_";

// A word of an enumeration without its prefix, in any case.
template <class E>
E Word (const char* option, const std::string& text) {
  std::string all;
  for (const Enumerator& row : EnumerationOf<E> ().rows) {
    std::string_view word = row.name;
    word.remove_prefix (prefix.size ());
    if (IsSame (word, text)) return static_cast<E> (row.number);
    all += (all.empty () ? "" : ", ") + std::string (word);
  }
  Refuse (option, "\"" + text + "\" is none of " + all);
}

struct NamedEllipsoid {
  const char* name;
  double a, inverseFlattening;
};
constexpr NamedEllipsoid ellipsoids[] = {
    {"GRS80", 6378137.0, 298.257222101},
    {"Airy", 6377563.396, 299.3249646},
    {"ANS", 6378160.0, 298.25},
    {"Bessel", 6377397.155, 299.1528128},
    {"Clarke1866", 6378206.4, 294.9786982138982},
    {"Clarke1880", 6378249.145, 293.465},
    {"Clarke1880IGN", 6378249.2, 293.4660212936269},
    {"International", 6378388.0, 297.0},
    {"Krassovsky", 6378245.0, 298.3},
};

// An angle of an option, in radians.
double Angle (const char* option, double degrees, double most) {
  if (std::abs (degrees) > most)
    Refuse (option, "takes degrees, " + std::to_string (std::lround (most)) + " at the most");
  return degrees * radians;
}

coordsys_Ellipsoid EllipsoidOf (const std::string& text) {
  if (text.empty () || IsSame (text, "WGS84")) return coordsys_WGS84Ellipsoid ();
  for (const NamedEllipsoid& known : ellipsoids)
    if (IsSame (text, known.name)) return {known.a, 1.0 / known.inverseFlattening};
  if (text.find (',') == std::string::npos) {
    std::string all = "WGS84";
    for (const NamedEllipsoid& known : ellipsoids) all += std::string (", ") + known.name;
    Refuse ("--ellipsoid", "\"" + text + "\" is none of " + all + ", and no A,RF");
  }
  const std::vector<double> n = Numbers ("--ellipsoid", text, 2);
  if (n[0] <= 0.0 || n[1] <= 1.0)
    Refuse ("--ellipsoid", "takes a semi-major axis in metres and an inverse flattening above 1");
  return {n[0], 1.0 / n[1]};
}

void SetZone (const std::string& text, coordsys_Projection& projection) {
  std::string number = text;
  bool isSouth = false;
  if (!number.empty () && std::string_view ("NnSs").find (number.back ()) != std::string::npos) {
    isSouth = number.back () == 'S' || number.back () == 's';
    number.pop_back ();
  }
  double zone = 0.0;
  if (!NumberFrom (number, zone) || zone < 1 || zone > 60 || zone != std::floor (zone))
    Refuse ("--utm", "\"" + text + "\" is not a zone from 1 to 60 with N or S after it");
  projection.ProjectionType = COORDSYS_UniversalTransverseMercator;
  projection.OriginLocal = coord_Local (0.0, (zone * 6.0 - 183.0) * radians, 0.0);
  projection.OriginGrid =
      coord_CorrectedGrid::FromNorthEastElevation (isSouth ? 1e7 : 0.0, 500000.0, 0.0);
  projection.Scale = 0.9996;
}

coord_Local PositionOf (const char* option, const std::string& text, double height) {
  const std::vector<double> n = Numbers (option, text, 2, 3);
  if (std::abs (n[0]) > 90.0 || std::abs (n[1]) > 360.0) Refuse (option, "is not a position");
  return {n[0] * radians, coord_NormalisePlusMinusPi (n[1] * radians),
          n.size () == 3 ? n[2] : height};
}

// The options that say something of a projection.
enum Taken : unsigned {
  TAKES_Origin = 1,
  TAKES_False = 2,
  TAKES_Scale = 4,
  TAKES_Parallels = 8,
  TAKES_Azimuth = 16,
  TAKES_Oblique = 32,
  TAKES_Meridian = 64,
  TAKES_Area = 128,
  TAKES_UKGrids = 256,
  TAKES_ProjectionGrid = 512,
};

unsigned TakenBy (coordsys_ProjectionType type) {
  constexpr unsigned placed = TAKES_Origin | TAKES_False;
  switch (type) {
    case COORDSYS_NoProjection:
    case COORDSYS_ScaleOnly:
    case COORDSYS_RDStereographic:
    case COORDSYS_NewZealandMapGrid:
    case COORDSYS_HungarianEOV:
    case COORDSYS_UPSNorth:
    case COORDSYS_UPSSouth:
      return 0;
    case COORDSYS_Plane:
    case COORDSYS_RSO:
      return placed | TAKES_Scale | TAKES_Azimuth;
    case COORDSYS_Lambert2Parallel:
    case COORDSYS_AlbersEqualAreaConic:
      return placed | TAKES_Parallels;
    case COORDSYS_ObliqueMercatorAngle:
      return placed | TAKES_Scale | TAKES_Azimuth | TAKES_Oblique;
    case COORDSYS_Krovak:
      return TAKES_Meridian;
    case COORDSYS_UnitedKingdomNationalGrid:
      return TAKES_UKGrids;
    case COORDSYS_Denmark:
      return TAKES_Area;
    case COORDSYS_ProjectionGrid:
      return TAKES_ProjectionGrid;
    default:
      return placed | TAKES_Scale;
  }
}

// An option that would change nothing is a mistake of who wrote it.
void RefuseWhatIsNotTaken (const SystemOptions& options, coordsys_ProjectionType type) {
  const bool hasProjection = !options.projection.empty () || !options.utm.empty ();
  unsigned taken = options.projection.empty () ? 0u : TakenBy (type);
  if (!options.axes.empty ()) taken |= TAKES_False;  // the axes are turned about it
  const struct {
    const char* option;
    bool isGiven;
    Taken bit;
  } rows[] = {
      {"--origin", !options.origin.empty (), TAKES_Origin},
      {"--false", !options.falseOrigin.empty (), TAKES_False},
      {"--scale", !options.scale.empty (), TAKES_Scale},
      {"--parallels", !options.parallels.empty (), TAKES_Parallels},
      {"--azimuth", !options.azimuth.empty (), TAKES_Azimuth},
      {"--geodetic-azimuth", options.geodeticAzimuth, TAKES_Oblique},
      {"--origin-at-center", options.originAtCenter, TAKES_Oblique},
      {"--rectify", options.rectify, TAKES_Oblique},
      {"--meridian", !options.meridian.empty (), TAKES_Meridian},
      {"--area", !options.area.empty (), TAKES_Area},
      {"--uk-grids", !options.ukGrids.empty (), TAKES_UKGrids},
      {"--projection-grid", !options.projectionGrid.empty (), TAKES_ProjectionGrid},
  };
  for (const auto& row : rows) {
    if (!row.isGiven || (taken & row.bit) != 0) continue;
    if (!hasProjection) Refuse (row.option, "belongs to a --projection");
    Refuse (row.option, "says nothing of this projection");
  }
  if (!options.shiftGrid.empty () && !hasProjection)
    Refuse ("--shift-grid", "belongs to a --projection");
  if (!options.project.empty () && options.ground.empty ())
    Refuse ("--project", "belongs to a --ground");
  if (!options.datum.empty () && !options.datumGrid.empty ())
    Refuse ("--datum", "is a datum; --datum-grid is another");
  if (!options.toWGS84.empty () && (!options.datum.empty () || !options.datumGrid.empty ()))
    Refuse ("--towgs84", std::string ("is a datum; ") +
                             (options.datum.empty () ? "--datum-grid" : "--datum") + " is another");
}

// What a projection cannot be without.
void DemandParameters (coordsys_Projection& projection) {
  switch (projection.ProjectionType) {
    case COORDSYS_Plane:
      if (maths_IsNull (projection.Orientation1)) projection.Orientation1 = 0.0;
      break;
    case COORDSYS_Lambert2Parallel:
    case COORDSYS_AlbersEqualAreaConic:
      if (maths_IsNull (projection.Orientation2))
        Refuse ("--parallels", "are missing, which this projection needs");
      break;
    case COORDSYS_ObliqueMercatorAngle:
    case COORDSYS_RSO:
      if (maths_IsNull (projection.Orientation1))
        Refuse ("--azimuth", "is missing, which this projection needs");
      break;
    case COORDSYS_Denmark:
      if (projection.Area == COORDSYS_AreaNone)
        Refuse ("--area", "is missing, which this projection needs");
      break;
    default:
      break;
  }
}

void SetProjection (const SystemOptions& options, coordsys_Projection& projection) {
  projection.OriginLocal = coord_Local (0.0, 0.0, 0.0);
  projection.OriginGrid = coord_CorrectedGrid::FromNorthEastElevation (0.0, 0.0, 0.0);
  if (!options.projection.empty ())
    projection.ProjectionType = Word<coordsys_ProjectionType> ("--projection", options.projection);
  if (!options.utm.empty ()) {
    if (!options.projection.empty ()) Refuse ("--utm", "is a projection; --projection is another");
    SetZone (options.utm, projection);
  }
  RefuseWhatIsNotTaken (options, projection.ProjectionType);
  if (!options.origin.empty ())
    projection.OriginLocal = PositionOf ("--origin", options.origin, 0.0);
  if (!options.falseOrigin.empty ()) {
    const std::vector<double> n = Numbers ("--false", options.falseOrigin, 2, 3);
    projection.OriginGrid =
        coord_CorrectedGrid::FromNorthEastElevation (n[0], n[1], n.size () == 3 ? n[2] : 0.0);
  }
  if (!options.scale.empty ()) projection.Scale = Factor ("--scale", options.scale);
  if (!options.parallels.empty ()) {
    const std::vector<double> n = Numbers ("--parallels", options.parallels, 2);
    projection.Orientation1 = Angle ("--parallels", n[0], 90.0);
    projection.Orientation2 = Angle ("--parallels", n[1], 90.0);
  }
  if (!options.azimuth.empty ())
    projection.Orientation1 =
        Angle ("--azimuth", Numbers ("--azimuth", options.azimuth, 1)[0], 360.0);
  if (!options.meridian.empty ())
    projection.Orientation1 =
        Angle ("--meridian", Numbers ("--meridian", options.meridian, 1)[0], 360.0);
  if (options.geodeticAzimuth) projection.AzimuthFormat = COORDSYS_GeodeticAzimuth;
  if (options.originAtCenter) projection.OriginCenter = COORDSYS_OriginAtProjectionCenter;
  projection.Rectify = options.rectify;
  if (!options.area.empty ())
    projection.Area = Word<coordsys_ProjectionArea> ("--area", "Area" + options.area);

  DemandParameters (projection);

  coordsys_GroundScale& ground = projection.GroundScale;
  if (IsSame (options.ground, "calculated")) {
    ground.Type = COORDSYS_CalculatedGroundScaleFactor;
  } else if (!options.ground.empty ()) {
    ground.Type = COORDSYS_KeyedInGroundScaleFactor;
    ground.Factor = Factor ("--ground", options.ground);
  }
  if (!options.project.empty ())
    ground.ProjectLocation = PositionOf ("--project", options.project, MATHS_Null);
  if (ground.Type == COORDSYS_CalculatedGroundScaleFactor &&
      maths_IsNull (ground.ProjectLocation.Height))
    Refuse ("--ground", "is calculated at a --project with a height");
  if (!options.offsets.empty ()) {
    const std::vector<double> n = Numbers ("--offsets", options.offsets, 2);
    ground.NorthingOffset = n[0];
    ground.EastingOffset = n[1];
  }
}

coordsys_Datum DatumOf (const std::string& text) {
  const std::vector<double> n = Numbers ("--datum", text, 3, 7);
  coordsys_Datum datum;
  datum.DatumType = n.size () == 7 ? COORDSYS_SevenParameter : COORDSYS_ThreeParameter;
  datum.TranslationX = n[0];
  datum.TranslationY = n[1];
  datum.TranslationZ = n[2];
  if (n.size () == 7) {
    datum.RotationX = n[3] * radians / 3600.0;
    datum.RotationY = n[4] * radians / 3600.0;
    datum.RotationZ = n[5] * radians / 3600.0;
    datum.Scale = 1.0 + n[6] * 1e-6;
  }
  return datum;
}

// As published: from the local datum to WGS84, P' = S R P + T, with R the turn of a position vector
// by the angles. That is the inverse of the turn M of the axes, so the record, which runs from
// WGS84 to the local datum, has the same angles: P = M P'/S - M T/S.
coordsys_Datum DatumOfPublished (const std::string& text) {
  std::vector<double> n = Numbers ("--towgs84", text, 3, 7);
  n.resize (7, 0.0);
  coordsys_Datum datum;
  datum.DatumType = COORDSYS_SevenParameter;
  datum.RotationX = n[3] * radians / 3600.0;
  datum.RotationY = n[4] * radians / 3600.0;
  datum.RotationZ = n[5] * radians / 3600.0;
  datum.Scale = 1.0 / (1.0 + n[6] * 1e-6);
  if (!(datum.Scale > 0.0) || !std::isfinite (datum.Scale))
    Refuse ("--towgs84", "takes parts in a million above -1000000");
  const csib_Rotation M = csib_RotationMatrix (datum.RotationX, datum.RotationY, datum.RotationZ);
  const auto row = [&] (const std::array<double, 3>& m) {
    return -(m[0] * n[0] + m[1] * n[1] + m[2] * n[2]) * datum.Scale;
  };
  datum.TranslationX = row (M[0]);
  datum.TranslationY = row (M[1]);
  datum.TranslationZ = row (M[2]);
  return datum;
}

constexpr struct {
  const char* name;
  coordsys_GridOrientation orientation;
  const char* meaning;
} allAxes[] = {{"NE", COORDSYS_IncreasingNorthEast, "north and east"},
               {"SW", COORDSYS_IncreasingSouthWest, "south and west"},
               {"NW", COORDSYS_IncreasingNorthWest, "north and west"},
               {"SE", COORDSYS_IncreasingSouthEast, "south and east"}};

// What a user should know of a projection beside its options.
const char* RemarkOf (coordsys_ProjectionType type) {
  switch (type) {
    case COORDSYS_NoProjection:
    case COORDSYS_ScaleOnly:
      return "not a map: converts no point";
    case COORDSYS_TransverseMercator:
    case COORDSYS_UniversalTransverseMercator:
      return "0.1 mm within 3.5 degrees of the central meridian";
    case COORDSYS_Denmark:
      return "polynomials of the two directions, up to 60 mm apart, refused beyond";
    case COORDSYS_HungarianEOV:
      return "all fixed; its published inverse is off by up to 30 mm at the border";
    case COORDSYS_Lambert1Parallel:
      return "the parallel is that of --origin";
    case COORDSYS_RSO:
      return "oblique, rectified, from the equator";
    case COORDSYS_RDStereographic:
    case COORDSYS_NewZealandMapGrid:
    case COORDSYS_UPSNorth:
    case COORDSYS_UPSSouth:
      return "all fixed";
    default:
      return "";
  }
}

void AppendRow (std::string& text, std::string name, std::size_t width, const std::string& what) {
  name.resize (std::max (width, name.size () + 1), ' ');
  text += "  " + name + what;
  text.erase (text.find_last_not_of (' ') + 1);
  text += '\n';
}

}  // namespace

std::string SystemList () {
  std::string text = "Projections (--projection), with their options:\n";
  const struct {
    Taken bit;
    const char* option;
  } takes[] = {{TAKES_Origin, "--origin"},
               {TAKES_False, "--false"},
               {TAKES_Scale, "--scale"},
               {TAKES_Parallels, "--parallels"},
               {TAKES_Azimuth, "--azimuth"},
               {TAKES_Oblique, "[--geodetic-azimuth --origin-at-center --rectify]"},
               {TAKES_Meridian, "--meridian"},
               {TAKES_Area, "--area"},
               {TAKES_UKGrids, "--uk-grids"},
               {TAKES_ProjectionGrid, "--projection-grid"}};
  for (const Enumerator& row : EnumerationOf<coordsys_ProjectionType> ().rows) {
    std::string_view name = row.name;
    name.remove_prefix (prefix.size ());
    const auto type = static_cast<coordsys_ProjectionType> (row.number);
    std::string what;
    for (const auto& [bit, option] : takes)
      if ((TakenBy (type) & bit) != 0) what += (what.empty () ? "" : " ") + std::string (option);
    const std::string remark = RemarkOf (type);
    if (!remark.empty ()) what += (what.empty () ? "(" : "  (") + remark + ")";
    AppendRow (text, std::string (name), 30, what);
  }
  text += "\nEllipsoids (--ellipsoid): semi-major axis in metres, inverse flattening\n";
  const auto number = [] (double value) {
    char digits[40];
    return std::string (digits, std::to_chars (digits, digits + sizeof digits, value).ptr);
  };
  AppendRow (text, "WGS84", 18, number (CSIB_WGS84MajorAxis) + " 298.257223563");
  for (const NamedEllipsoid& known : ellipsoids)
    AppendRow (text, known.name, 18, number (known.a) + " " + number (known.inverseFlattening));
  text += "\nAxes (--axes): the directions in which the grid grows\n";
  for (const auto& axes : allAxes) AppendRow (text, axes.name, 18, axes.meaning);
  return text;
}

void SystemOptions::AddTo (CLI::App& command) {
  const char* group = "Projection";
  const auto add = [&] (const char* name, auto& target, const char* type, const char* what) {
    command.add_option (name, target, what)->type_name (type)->group (group);
  };
  add ("--utm", utm, "ZONE", "A zone of UTM, 33 or 33S: all that a projection needs");
  add ("--projection", projection, "NAME",
       "TransverseMercator, Lambert2Parallel, RSO, Krovak ...; a wrong name shows them all");
  add ("--origin", origin, "LAT,LON[,H]", "Origin of the projection");
  add ("--false", falseOrigin, "N,E[,ELEV]", "False origin on the grid");
  add ("--scale", scale, "K", "Scale at the origin");
  add ("--parallels", parallels, "LAT,LAT", "Of Lambert2Parallel and AlbersEqualAreaConic");
  add ("--azimuth", azimuth, "DEG", "Of an oblique Mercator or RSO; the rotation of a plane");
  add ("--meridian", meridian, "DEG", "Offset of Krovak's prime meridian");
  command.add_flag ("--geodetic-azimuth", geodeticAzimuth, "The azimuth is no grid azimuth")
      ->group (group);
  command
      .add_flag ("--origin-at-center", originAtCenter, "The oblique grid counts from its centre")
      ->group (group);
  command.add_flag ("--rectify", rectify, "The oblique grid is rectified")->group (group);
  add ("--area", area, "NAME", "Of Denmark: Zeeland, Jutland or Bornholm");
  add ("--projection-grid", projectionGrid, "FILE", "The table of a ProjectionGrid (pjg)");
  add ("--uk-grids", ukGrids, "NORTH,EAST", "The files of UnitedKingdomNationalGrid (pgf)");
  add ("--shift-grid", shiftGrid, "FILE", "Shifts after the projection (sgf)");
  group = "Datum";
  add ("--ellipsoid", ellipsoid, "NAME|A,RF", "WGS84 if none is given");
  add (
      "--datum", datum, "X,Y,Z[,RX,RY,RZ,PPM]",
      "From WGS84 to the local datum: metres, seconds of arc of the axes (coordinate frame), parts "
      "in a million; three numbers by Molodensky's formulas");
  add ("--towgs84", toWGS84, "X,Y,Z[,RX,RY,RZ,PPM]",
       "From the local datum to WGS84 as published, rotations by position vector signs; three "
       "numbers are a geocentric translation");
  add ("--datum-grid", datumGrid, "FILE", "A combined datum grid (CDG)");
  group = "Site";
  add ("--geoid", geoid, "FILE", "Separations (ggf); without a datum the local one is WGS84");
  add ("--incline", incline, "N,E,SN,SE,C", "Inclined plane: origin, slopes, constant");
  add ("--plane", plane, "N,E,TN,TE,R,S",
       "Similarity on the grid: origin, translation, rotation in degrees, scale");
  add ("--axes", axes, "NE|SW|NW|SE", "The directions in which the grid grows");
  add ("--ground", ground, "K|calculated", "Scale from grid to ground about the project");
  add ("--project", project, "LAT,LON[,H]", "The project location");
  add ("--offsets", offsets, "N,E", "Taken off the grid");
}

bool SystemOptions::IsGiven () const {
  for (const std::string* text :
       {&ellipsoid, &projection, &utm,       &origin,         &falseOrigin, &scale,
        &parallels, &azimuth,    &meridian,  &area,           &ground,      &project,
        &offsets,   &datum,      &toWGS84,   &plane,          &incline,     &axes,
        &datumGrid, &geoid,      &shiftGrid, &projectionGrid, &ukGrids})
    if (!text->empty ()) return true;
  return geodeticAzimuth || originAtCenter || rectify;
}

coordsys_Parts PartsOf (const SystemOptions& options, ProjectFolder& folder) {
  coordsys_Parts parts;
  unsigned mask = COORDSYS_SetEllipsoid;
  parts.Ellipsoid = EllipsoidOf (options.ellipsoid);
  SetProjection (options, parts.Projection);
  if (!options.projection.empty () || !options.utm.empty ()) mask |= COORDSYS_SetProjection;
  const auto link = [&] (const std::string& path, const char* name, const char* extension,
                         Str& field) {
    if (path.empty ()) return;
    folder.Link (path, std::string (name) + "." + extension);
    field = name;
  };
  link (options.projectionGrid, "projection", "pjg", parts.Projection.ProjectionGridFile);
  link (options.shiftGrid, "shift", "sgf", parts.Projection.ShiftGridFile);
  if (!options.ukGrids.empty ()) {
    const std::vector<std::string> pair = Pieces (options.ukGrids);
    if (pair.size () != 2) Refuse ("--uk-grids", "takes two files, north and east");
    link (pair[0], "north", "pgf", parts.Projection.UKNorthGridFile);
    link (pair[1], "east", "pgf", parts.Projection.UKEastGridFile);
  }

  if (!options.datum.empty ()) parts.Datum = DatumOf (options.datum);
  if (!options.toWGS84.empty ()) parts.Datum = DatumOfPublished (options.toWGS84);
  if (!options.datumGrid.empty ()) parts.Datum.DatumType = COORDSYS_GridDatum;
  link (options.datumGrid, "datum", "CDG", parts.Datum.GridName);
  link (options.geoid, "geoid", "ggf", parts.Height.GeoidFilename);
  if (!options.geoid.empty () && parts.Datum.DatumType == COORDSYS_NoDatum)
    parts.Datum.DatumType = COORDSYS_ThreeParameter;
  if (parts.Datum.DatumType != COORDSYS_NoDatum) mask |= COORDSYS_SetDatum;

  if (!options.incline.empty ()) {
    const std::vector<double> n = Numbers ("--incline", options.incline, 5);
    parts.Height.OriginNorth = n[0];
    parts.Height.OriginEast = n[1];
    parts.Height.NorthAdjustment = n[2];
    parts.Height.EastAdjustment = n[3];
    parts.Height.ElevAdjustment = n[4];
  }
  if (!options.incline.empty () || !options.geoid.empty ()) {
    mask |= COORDSYS_SetVertAdjustment;
    parts.Height.HeightType = options.geoid.empty ()     ? COORDSYS_InclinedPlane
                              : options.incline.empty () ? COORDSYS_GeoidModel
                                                         : COORDSYS_GeoidAndPlane;
  }
  if (!options.plane.empty ()) {
    const std::vector<double> n = Numbers ("--plane", options.plane, 6);
    if (n[5] <= 0.0) Refuse ("--plane", "takes a scale above 0");
    parts.Plane = {COORDSYS_ValidHorizontal,       n[0], n[1], n[2], n[3],
                   Angle ("--plane", n[4], 360.0), n[5]};
    mask |= COORDSYS_SetHorzAdjustment;
  }
  if (!options.axes.empty ()) {
    bool isKnown = false;
    for (const auto& axes : allAxes) {
      if (!IsSame (options.axes, axes.name)) continue;
      parts.Corrections.GridOrientation = axes.orientation;
      isKnown = true;
    }
    if (!isKnown) Refuse ("--axes", "\"" + options.axes + "\" is none of NE, SW, NW, SE");
    mask |= COORDSYS_SetCorrections;
  }
  parts.Components = static_cast<uint16_t> (mask);
  return parts;
}

ProjectFolder::ProjectFolder () : _isOwn (true) {
  std::string pattern = (std::filesystem::temp_directory_path () / "clxml-XXXXXX").string ();
  if (!::mkdtemp (pattern.data ()))
    throw Refusal{STATUS_Output, "no temporary folder: " + host_Reason (errno)};
  _path = pattern;
  Mount ();
}

ProjectFolder::ProjectFolder (const std::filesystem::path& folder)
    : _path (folder), _isOwn (false) {
  Mount ();
}

void ProjectFolder::Mount () { folder_Mount (folder_Class (folder_Project).Path, _path.c_str ()); }

ProjectFolder::~ProjectFolder () {
  folder_Unmount (folder_Class (folder_Project).Path);
  std::error_code ignored;
  if (_isOwn) std::filesystem::remove_all (_path, ignored);
}

void ProjectFolder::Link (const std::string& path, const std::string& name) {
  if (!host_IsRegular (path)) throw Refusal{STATUS_Usage, path + ": no such file"};
  if (const int error = host_MayRead (path))
    throw Refusal{STATUS_Usage, path + ": " + host_Reason (error)};
  std::filesystem::create_symlink (std::filesystem::absolute (path), _path / name);
}

std::string Meaning (coordsys_Error error) {
  switch (error) {
    case COORDSYS_OutOfMemory:
      return "out of memory";
    case COORDSYS_GeoidFileError:
      return "the geoid file is missing or none";
    case COORDSYS_DatumGridError:
      return "the datum grid is missing or none";
    case COORDSYS_FileError:
      return "a grid file cannot be used";
    case COORDSYS_UKGridError:
      return "a national grid file is missing";
    case COORDSYS_ProjectionGridError:
      return "the projection grid is missing or none";
    case COORDSYS_ShiftGridError:
      return "the shift grid is missing or none";
    default:
      return "the parameters make no coordinate system";
  }
}

bool NumberFrom (std::string_view text, double& number) {
  if (text.starts_with ('+')) text.remove_prefix (1);
  double value = 0.0;
  const auto [end, error] = std::from_chars (text.data (), text.data () + text.size (), value);
  if (error != std::errc () || end != text.data () + text.size () || !std::isfinite (value) ||
      maths_IsNull (value))
    return false;
  number = value;
  return true;
}

}  // namespace clxml::tool
