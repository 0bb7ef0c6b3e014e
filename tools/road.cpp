// clxml road: lists a road file, checks it, gives positions and cross sections, and draws it.
// The road file is only read.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "common.h"
#include "crosssection.h"
#include "hostfile.h"
#include "road/roadfile.h"
#include "road/roadsections.h"
#include "road/roadtransform.h"
#include "roadsvg.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

struct RoadOptions {
  std::string file;
  std::vector<std::string> places;
  std::vector<std::string> sections;
  std::string every;
  std::vector<std::string> offsets;
  std::string ground;
  std::string svg;
  bool json = false;
  bool check = false;
  bool force = false;

  bool HasSections () const { return !sections.empty () || !every.empty (); }
};

/// Exit statuses of this command beside the shared ones.
enum RoadStatus : int {
  ROAD_NotARoad = 1,   ///< not to be read as a road file
  ROAD_Faulty = 2,     ///< --check found a fault
  ROAD_NoPlace = 3,    ///< a place asked for is not on the road
  ROAD_NoDrawing = 4,  ///< the drawing could not be made or written
};

struct Place {
  double station = 0.0;
  double offset = 0.0;
  bool hasOffset = false;
};

bool TakeNumber (std::string_view text, double& number) {
  if (!text.empty () && text.front () == '+') text.remove_prefix (1);
  const char* end = text.data () + text.size ();
  const auto [stop, error] = std::from_chars (text.data (), end, number, std::chars_format::fixed);
  return error == std::errc () && stop == end && std::isfinite (number);
}

// "1234.5", or "1+234.5" with thousands of metres in front of the plus sign.
bool TakeStation (std::string_view text, double& station) {
  const std::size_t plus = text.find ('+', 1);
  if (plus == std::string_view::npos) return TakeNumber (text, station);
  const std::string_view metres = text.substr (plus + 1);
  double thousands = 0.0, rest = 0.0;
  if (metres.empty () || metres.front () < '0' || metres.front () > '9' ||
      !TakeNumber (text.substr (0, plus), thousands) || thousands != std::trunc (thousands) ||
      !TakeNumber (metres, rest))
    return false;
  station = thousands * 1000.0 + (std::signbit (thousands) ? -rest : rest);
  return true;
}

Place PlaceOf (const std::string& text) {
  Place place;
  const std::size_t colon = text.find (':');
  place.hasOffset = colon != std::string::npos;
  if (!TakeStation (std::string_view (text).substr (0, colon), place.station) ||
      (colon != std::string::npos &&
       !TakeNumber (std::string_view (text).substr (colon + 1), place.offset)))
    throw Refusal{STATUS_Usage, "\"" + text + "\" is no STATION or STATION:OFFSET in metres"};
  return place;
}

// One line for a place. The offset runs at right angles to the line, to the right positive. With
// an offset the elevation is the design elevation there, without one that of the centre line.
std::string PlaceLine (const NorvathRoad& road, const Place& place) {
  RoadPosition position;
  if (!PlaceOn (road, place.station, position)) return {};
  const double right = position.Azimuth + CONSTANT_PiOverTwo;
  const double north = position.Coordinate.North + place.offset * std::cos (right);
  const double east = position.Coordinate.East + place.offset * std::sin (right);
  return "station " + NumberText (place.station) + "  offset " + NumberText (place.offset) +
         "  north " + NumberText (north, 4) + "  east " + NumberText (east, 4) + "  azimuth " +
         AzimuthText (position.Azimuth) +
         (place.hasOffset
              ? "  design elevation " +
                    NumberText (road.DesignElevationAt (place.station, place.offset), 4)
              : "  elevation " + NumberText (road.Vertical.ElevationAt (place.station), 4)) +
         "\n";
}

double NumberOf (const std::string& option, const std::string& text) {
  double number = 0.0;
  if (!TakeNumber (text, number))
    throw Refusal{STATUS_Usage, option + ": \"" + text + "\" is not a number of metres"};
  return number;
}

// The numbers of the options that sections take; refuses options without sections.
SectionQuery QueryOf (const RoadOptions& options) {
  if (!options.HasSections () &&
      (options.json || !options.offsets.empty () || !options.ground.empty ()))
    throw Refusal{STATUS_Usage, "--json, --offset and --ground need --section or --sections"};
  SectionQuery query;
  for (const std::string& text : options.offsets)
    query.offsets.push_back (NumberOf ("--offset", text));
  if (!options.ground.empty ()) query.ground = NumberOf ("--ground", options.ground);
  return query;
}

double EveryOf (const RoadOptions& options) {
  if (options.every.empty ()) return MATHS_Null;
  const double every = NumberOf ("--sections", options.every);
  if (!(every > 0.0)) throw Refusal{STATUS_Usage, "--sections: the interval must be above 0"};
  return every;
}

// The start of the road, the multiples of the interval and the end.
std::vector<double> StationsEvery (const NorvathRoad& road, double every) {
  const double start = road.StartChainage (), end = road.EndChainage ();
  if (maths_IsNull (start) || maths_IsNull (end)) return {};
  if ((end - start) / every > NorvathRoad::MaximumStations)
    throw Refusal{STATUS_Usage, "--sections: the interval is too small for this road"};
  constexpr double same = 0.0005;
  std::vector<double> stations = {start};
  for (double k = std::floor (start / every); k * every < end - same; k++)
    if (k * every > start + same) stations.push_back (k * every);
  if (end > start + same) stations.push_back (end);
  return stations;
}

std::string NoPlace (const NorvathRoad& road, const std::string& station) {
  return "error: " + station + ": no place on this road, which runs from " +
         NumberText (road.StartChainage ()) + " to " + NumberText (road.EndChainage ());
}

// Prints the sections, or draws them; an exit status.
int ShowSections (const NorvathRoad& road, const RoadOptions& options,
                  const std::vector<double>& stations, const SectionQuery& query) {
  const bool isDrawn = !options.svg.empty ();
  const RoadSections sections (road);
  std::vector<roadxs_CrossSection> drawn;
  int status = STATUS_Clean;
  if (isDrawn && stations.size () > SECTIONS_MostDrawn)
    throw Refusal{ROAD_NoDrawing, std::to_string (stations.size ()) +
                                      " sections are more than the " +
                                      std::to_string (SECTIONS_MostDrawn) + " of a drawing"};
  bool isFirst = true;
  for (const double station : stations) {
    roadxs_CrossSection section;
    sections.CrossSectionAt (station, section);
    const bool isThere = !maths_IsNull (section.Station);
    if (!isThere) {
      Say (NoPlace (road, NumberText (station)));
      status = ROAD_NoPlace;
    }
    if (options.json) {
      Print (SectionJson (section, query));
    } else if (!isDrawn && isThere) {
      Print ((isFirst ? "" : "\n") + SectionTable (section, query));
      isFirst = false;
    }
    if (isDrawn && isThere) drawn.push_back (std::move (section));
  }
  if (!isDrawn) return status;
  if (drawn.empty ()) throw Refusal{ROAD_NoDrawing, options.file + ": there is no section to draw"};
  const std::string drawing = SectionDrawing (CleanText (road.Name), drawn, query.ground);
  if (const int error = host_WriteWhole (options.svg, drawing, options.force))
    throw Refusal{ROAD_NoDrawing, options.svg + ": " + host_Reason (error)};
  return status;
}

int RunRoad (Session& session, const RoadOptions& options) {
  std::vector<Place> places;
  for (const std::string& text : options.places) places.push_back (PlaceOf (text));
  std::vector<double> stations;
  for (const std::string& text : options.sections) {
    double station = 0.0;
    if (!TakeStation (text, station))
      throw Refusal{STATUS_Usage, "--section: \"" + text + "\" is not a station in metres"};
    stations.push_back (station);
  }
  const SectionQuery query = QueryOf (options);
  const double every = EveryOf (options);
  if (!options.svg.empty () && host_IsSame (options.file, options.svg))
    throw Refusal{STATUS_Usage, "the drawing would take the place of the road file"};

  NorvathRoad road;
  std::string reason;
  session.ear.Listen ([&reason] (std::string_view line) { reason = line; });
  const bool isRead = road_LoadFile (road, DevicePath (options.file, ROAD_NotARoad).c_str ());
  session.ear.Listen ({});
  if (!isRead) {
    if (reason.empty ()) reason = session.ear.LastFileError ();
    throw Refusal{ROAD_NotARoad, options.file + ": " + (reason.empty () ? "no road file" : reason)};
  }
  // Road files hold grid coordinates, and nothing of the job's axes.
  SetCurrentTransformation (coordsys_Corrections ());
  struct Release {
    ~Release () { ReleaseCurrentTransformation (); }
  } const release;

  int status = STATUS_Clean;
  if (places.empty () && !options.check && options.svg.empty () && !options.HasSections ())
    Print (RoadListing (road));
  for (std::size_t i = 0; i < places.size (); i++) {
    const std::string line = PlaceLine (road, places[i]);
    if (line.empty ()) {
      Say (NoPlace (road, options.places[i]));
      status = ROAD_NoPlace;
    }
    Print (line);
  }
  if (options.check) {
    const std::vector<std::string> faults = RoadFaults (road);
    for (const std::string& fault : faults) Print (fault + "\n");
    if (faults.empty ())
      Print ("no fault found\n");
    else
      status = ROAD_Faulty;
  }
  if (options.HasSections ()) {
    if (!maths_IsNull (every))
      for (const double station : StationsEvery (road, every)) stations.push_back (station);
    return std::max (status, ShowSections (road, options, stations, query));
  }
  if (!options.svg.empty ()) {
    const std::string drawing = RoadDrawing (road);
    if (drawing.empty ())
      throw Refusal{ROAD_NoDrawing, options.file + ": there is nothing to draw"};
    if (const int error = host_WriteWhole (options.svg, drawing, options.force))
      throw Refusal{ROAD_NoDrawing, options.svg + ": " + host_Reason (error)};
  }
  return status;
}

}  // namespace

void AddRoad (CLI::App& app, Session& session) {
  const auto options = std::make_shared<RoadOptions> ();
  CLI::App* command =
      app.add_subcommand ("road", "List, check and draw a road file, and give its cross sections");
  command->add_option ("FILE", options->file, "The road file (.rxl); it is only read")->required ();
  command
      ->add_option ("--at", options->places,
                    "Give coordinate, azimuth and centre line elevation of a station, or the "
                    "coordinate and design elevation at an offset to the right of it")
      ->type_name ("STATION[:OFFSET]")
      ->expected (1)
      ->multi_option_policy (CLI::MultiOptionPolicy::TakeAll);
  command
      ->add_option ("--section", options->sections,
                    "Give the cross section at a station: nodes, codes, grades and side slopes")
      ->type_name ("STATION")
      ->expected (1, CLI::detail::expected_max_vector_size);
  command
      ->add_option ("--sections", options->every,
                    "Give the cross sections at the start, the multiples of an interval and the "
                    "end of the road")
      ->type_name ("EVERY");
  command
      ->add_option ("--offset", options->offsets,
                    "Give design elevation and grade of each section at an offset")
      ->type_name ("X")
      ->expected (1, CLI::detail::expected_max_vector_size);
  command
      ->add_option (
          "--ground", options->ground,
          "Height of the ground above the centre line's design elevation: side slopes run "
          "to it")
      ->type_name ("H");
  command->add_flag ("--json", options->json,
                     "Print each section as one JSON object in one line, angles in radians");
  command->add_flag ("--check", options->check, "Say what does not fit together in the road");
  command
      ->add_option ("--svg", options->svg,
                    "Draw plan and long section, or the cross sections, into this file")
      ->type_name ("OUT");
  command->add_flag ("--force", options->force, "Replace an existing drawing");
  command->footer (
      "Without any of --at, --section, --sections, --check and --svg the road is listed: "
      "elements,\n"
      "vertical profile, templates, superelevation. Lengths are metres, offsets to the right\n"
      "positive; a station may be written as 1+234.5.\n"
      "Exit status: 0 clean, 1 no road file, 2 a fault was found, 3 a place is not on the road,\n"
      "4 the drawing could not be made or written.\n"
      "Example: clxml road 'Main(Lot 7).rxl' --at 1+234.5:-3 --at 1+240\n"
      "         clxml road 'Main(Lot 7).rxl' --section 1+234.5 --offset -3 4.25 --json\n"
      "         clxml road 'Main(Lot 7).rxl' --sections 20 --svg sections.svg");
  command->callback ([&session, options] {
    session.run = [&session, options] { return RunRoad (session, *options); };
  });
}

}  // namespace clxml::tool
