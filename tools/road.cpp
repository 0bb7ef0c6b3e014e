// clxml road: what a road file holds.
// Lists the road, checks it, answers places on its line and draws it. Only reads the road file.
// Leans on the road, the road file, CLI11 and the drawing.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "common.h"
#include "hostfile.h"
#include "road/roadfile.h"
#include "road/roadtransform.h"
#include "roadsvg.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

struct RoadOptions {
  std::string file;
  std::vector<std::string> places;
  std::string svg;
  bool check = false;
  bool force = false;
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
  if (!TakeStation (std::string_view (text).substr (0, colon), place.station) ||
      (colon != std::string::npos &&
       !TakeNumber (std::string_view (text).substr (colon + 1), place.offset)))
    throw Refusal{STATUS_Usage, "\"" + text + "\" is no STATION or STATION:OFFSET in metres"};
  return place;
}

// One line for a place. The offset runs at right angles to the line, to the right positive.
std::string PlaceLine (const NorvathRoad& road, const Place& place) {
  RoadPosition position;
  if (!PlaceOn (road, place.station, position)) return {};
  const double right = position.Azimuth + CONSTANT_PiOverTwo;
  const double north = position.Coordinate.North + place.offset * std::cos (right);
  const double east = position.Coordinate.East + place.offset * std::sin (right);
  return "station " + NumberText (place.station) + "  offset " + NumberText (place.offset) +
         "  north " + NumberText (north, 4) + "  east " + NumberText (east, 4) + "  azimuth " +
         AzimuthText (position.Azimuth) + "  elevation " +
         NumberText (road.Vertical.ElevationAt (place.station), 4) + "\n";
}

int RunRoad (Session& session, const RoadOptions& options) {
  std::vector<Place> places;
  for (const std::string& text : options.places) places.push_back (PlaceOf (text));
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
  if (places.empty () && !options.check && options.svg.empty ()) Print (RoadListing (road));
  for (std::size_t i = 0; i < places.size (); i++) {
    const std::string line = PlaceLine (road, places[i]);
    if (line.empty ()) {
      Say ("error: " + options.places[i] + ": no place on this road, which runs from " +
           NumberText (road.StartChainage ()) + " to " + NumberText (road.EndChainage ()));
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
  CLI::App* command = app.add_subcommand ("road", "Tell, check and draw what a road file holds");
  command->add_option ("FILE", options->file, "The road file (.rxl); it is only read")->required ();
  command
      ->add_option ("--at", options->places,
                    "Answer coordinate, azimuth and centre line elevation of a station, beside it "
                    "at an offset to the right")
      ->type_name ("STATION[:OFFSET]")
      ->expected (1)
      ->multi_option_policy (CLI::MultiOptionPolicy::TakeAll);
  command->add_flag ("--check", options->check, "Say what does not fit together in the road");
  command->add_option ("--svg", options->svg, "Draw plan and long section into this file")
      ->type_name ("OUT");
  command->add_flag ("--force", options->force, "Replace a drawing that stands there");
  command->footer (
      "Without any of --at, --check and --svg the road is listed: elements, vertical profile,\n"
      "templates, superelevation. Lengths are metres; a station may stand as 1+234.5.\n"
      "Exit status: 0 clean, 1 no road file, 2 a fault was found, 3 a place is not on the road,\n"
      "4 the drawing could not be made or written.\n"
      "Example: clxml road 'Main(Lot 7).rxl' --at 1+234.5:-3 --at 1+240");
  command->callback ([&session, options] {
    session.run = [&session, options] { return RunRoad (session, *options); };
  });
}

}  // namespace clxml::tool
