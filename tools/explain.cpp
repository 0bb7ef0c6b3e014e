// clxml explain: how the coordinate of a point came about, with every number.
// Lists the records of a name in the order of the search, says why the best one beat each other,
// and shows the reduction of the best one step by step.
#include <charconv>
#include <cmath>
#include <memory>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "Library/coordsys/transfrm.h"
#include "Library/index/pointsearch.h"
#include "Library/position/position.h"
#include "Library/position/reduce.h"
#include "Library/position/trace.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"
#include "common.h"
#include "points.h"

namespace clxml::tool {
namespace {

using Json = nlohmann::ordered_json;

struct ExplainOptions {
  std::string job, name;
  bool json = false;
  IndexedJobOptions open;
};

// Why the best candidate counts and the other one does not; the rules of search_Better in words.
std::string WhyNot (ObservationObject& other, ObservationObject& best) {
  const search_Candidate a = search_CandidateOf (best), b = search_CandidateOf (other);
  const db_Observation* record = other.GetObservation ();
  if (record && record->IsDeleted ()) return "it is deleted";
  if (search_IsHiddenMethod (b.Method)) return "it is part of a mean and hidden";
  if (other.IsHidden () || other.IsDeleted ()) return "it is hidden";
  if (b.Method == DBENTITY_AzimuthOnly) return "it is an azimuth alone";
  if (b.Method == DBENTITY_ResectionInProgress) return "its resection is not finished";
  const bool isBestObserved = search_IsObservation (a.Method);
  const bool isOtherObserved = search_IsObservation (b.Method);
  if (!isBestObserved && isOtherObserved)
    return "keyed-in and computed coordinates count more than observations";
  if (isBestObserved && isOtherObserved) {
    const auto counted = [] (const search_Candidate& c) {
      return c.Method == DBENTITY_MeanTurnedAngle ? c.MTAMethod : c.Method;
    };
    if (search_Stronger (counted (a), counted (b)))
      return "the best one has the stronger measurement";
    const bool isOrdinary = b.Classification == db_PointClassification::Normal ||
                            b.Classification == db_PointClassification::BackSight;
    if (a.Classification == db_PointClassification::MTA && search_IsConventional (b.Method) &&
        isOrdinary && b.UniqueId.GetSubscript () < a.UniqueId.GetSubscript ())
      return "a mean turned angle gives way only to an observation from another station setup";
  }
  const bool covers = a.Classification.Covers (b.Classification);
  const bool isCovered = b.Classification.Covers (a.Classification);
  if (isCovered != covers)
    return std::string ("the class ") + a.Classification.ToText () + " counts more than " +
           (*b.Classification.ToText () ? b.Classification.ToText () : "None");
  return "of classes of one level, the older record counts";
}

// A list of labelled numbers, shown as text or as JSON.
class Steps {
 public:
  void Section (const char* title) { _Sections.push_back ({title, {}}); }
  void Length (const char* label, double metres) { Add (label, metres, "m", 4); }
  void Factor (const char* label, double value) { Add (label, value, "", 9); }
  void Angle (const char* label, double radians) {
    if (!maths_IsNull (radians))
      _Sections.back ().rows.push_back ({label, radians, InDegrees (radians)});
  }
  void Text (const char* label, const std::string& text) {
    if (!text.empty ()) _Sections.back ().rows.push_back ({label, MATHS_Null, text});
  }
  void Grid (const coord_CorrectedGrid& grid) {
    Length ("north", grid.North);
    Length ("east", grid.East);
    Length ("elevation", grid.Elevation);
  }

  std::string AsText () const {
    std::string text;
    for (const auto& section : _Sections) {
      if (section.rows.empty ()) continue;
      text += std::string (section.title) + "\n";
      for (const Row& row : section.rows) {
        std::string label = row.label;
        label.resize (std::max<std::size_t> (label.size () + 1, 28), ' ');
        text += "  " + label + row.shown + "\n";
      }
    }
    return text;
  }
  Json AsJson () const {
    Json steps = Json::array ();
    for (const auto& section : _Sections) {
      if (section.rows.empty ()) continue;
      Json values = Json::object ();
      for (const Row& row : section.rows)
        values[row.label] = maths_IsNull (row.value) ? Json (row.shown) : Json (row.value);
      steps.push_back ({{"step", section.title}, {"values", std::move (values)}});
    }
    return steps;
  }

 private:
  struct Row {
    const char* label;
    double value;
    std::string shown;
  };
  struct Group {
    const char* title;
    std::vector<Row> rows;
  };

  static std::string Fixed (double value, int decimals) {
    char digits[400];
    const auto end =
        std::to_chars (digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    return {digits, end.ptr};
  }
  void Add (const char* label, double value, const char* unit, int decimals) {
    if (maths_IsNull (value)) return;
    _Sections.back ().rows.push_back (
        {label, value, Fixed (value, decimals) + (*unit ? std::string (" ") + unit : "")});
  }
  // Degrees, minutes and seconds to a hundredth, with the decimal degrees for a calculator.
  static std::string InDegrees (double radians) {
    const double degrees = radians * 180.0 / CONSTANT_Pi;
    if (!std::isfinite (degrees) || std::abs (degrees) > 1e6) return "not a number";
    const int64_t hundredths = std::llround (std::abs (degrees) * 360000.0);
    const auto two = [] (int64_t n) { return (n < 10 ? "0" : "") + std::to_string (n); };
    return std::string (radians < 0 && hundredths ? "-" : "") +
           std::to_string (hundredths / 360000) + "°" + two (hundredths / 6000 % 60) + "'" +
           two (hundredths / 100 % 60) + "." + two (hundredths % 100) + "\"  (" +
           Fixed (degrees, 8) + "°)";
  }

  std::vector<Group> _Sections;
};

void Reading (Steps& steps, const char* title, const coord_Circle& reading) {
  steps.Section (title);
  steps.Angle ("horizontal circle", reading.HorzCircle);
  steps.Angle ("vertical circle", reading.VertCircle);
  steps.Length ("distance", reading.EDMDistance);
}

const char* FrameName (position_Frame frame) {
  switch (frame) {
    case position_Frame::Grid:
      return "grid";
    case position_Frame::Local:
      return "local ellipsoid";
    case position_Frame::WGS84:
      return "WGS84";
    default:
      return "";
  }
}

const char* SourceName (position_AzimuthSource source) {
  switch (source) {
    case position_AzimuthSource::StationSetup:
      return "of the station setup";
    case position_AzimuthSource::KeyedIn:
      return "keyed in";
    case position_AzimuthSource::ReverseOfOwn:
      return "reverse of the observation of the station from the backsight";
    case position_AzimuthSource::ToBacksight:
      return "computed from the coordinates of station and backsight";
    default:
      return "";
  }
}

Steps StepsOf (const position& where, const position_Trace& trace) {
  Steps steps;
  steps.Section ("stored");
  steps.Length ("north", where.Original == COORD_GridType ? where.Grid.North : MATHS_Null);
  steps.Length ("east", where.Original == COORD_GridType ? where.Grid.East : MATHS_Null);
  steps.Length ("elevation", where.Original == COORD_GridType ? where.Grid.Elevation : MATHS_Null);
  if (where.Original == COORD_WGS84Type) {
    steps.Angle ("latitude", where.WGS84.Latitude);
    steps.Angle ("longitude", where.WGS84.Longitude);
    steps.Length ("height", where.WGS84.Height);
  }
  if (where.Original == COORD_LocalType) {
    steps.Angle ("latitude", where.Local.Latitude);
    steps.Angle ("longitude", where.Local.Longitude);
    steps.Length ("height", where.Local.Height);
  }
  if (where.Original == COORD_ECEFType) {
    steps.Length ("X", where.ECEF.X);
    steps.Length ("Y", where.ECEF.Y);
    steps.Length ("Z", where.ECEF.Z);
  }
  if (where.Original == COORD_ECEFDeltasType) {
    steps.Length ("delta X", where.ECEFDeltas.XDelta);
    steps.Length ("delta Y", where.ECEFDeltas.YDelta);
    steps.Length ("delta Z", where.ECEFDeltas.ZDelta);
  }
  if (where.Original == COORD_LaserOffsetType) {
    steps.Angle ("azimuth", where.LaserOffset.Azimuth);
    steps.Angle ("vertical angle", where.LaserOffset.VertAngle);
    steps.Length ("slope distance", where.LaserOffset.SlopeDist);
  }
  if (trace.HasReading) {
    Reading (steps, "reading", trace.Raw);
    Reading (steps, "after the prism correction", trace.AfterPrism);
    steps.Length ("prism constant", trace.Setup.PrismConstant);
    Reading (steps, "after the PPM correction", trace.AfterPPM);
    steps.Factor ("PPM", trace.Setup.PPM);
    Reading (steps, "after refraction and curvature", trace.AfterRefraction);
    steps.Factor ("refraction coefficient", trace.Setup.Refraction);
    steps.Length ("earth radius", trace.Setup.EarthRadius);
    steps.Section ("on face 1");
    steps.Angle ("horizontal circle", trace.Face1.HorzCircle);
    steps.Angle ("vertical circle", trace.Face1.VertCircle);
    steps.Section ("between the marks");
    steps.Length ("instrument height", trace.Setup.StationHeight);
    steps.Length ("target height", trace.Setup.TargetHeight);
    steps.Factor ("scale factor", trace.Setup.ScaleFactor);
    steps.Angle ("horizontal circle", trace.Unturned.HorzCircle);
    steps.Length ("horizontal distance", trace.Unturned.HDist);
    steps.Length ("height difference", trace.Unturned.VDist);
    steps.Section ("orientation");
    steps.Text ("station", trace.Base.Data ());
    steps.Text ("backsight", trace.Backsight.Data ());
    steps.Angle ("circle of the backsight", trace.BackBearingCircle);
    steps.Angle ("azimuth to the backsight", trace.Azimuth);
    steps.Text ("azimuth is", SourceName (trace.AzimuthSource));
  }
  if (where.Original == COORD_LaserOffsetType) {
    steps.Section ("laser");
    steps.Length ("laser height", trace.Laser.LaserHeight);
    steps.Length ("target height", trace.Laser.TargetHeight);
    steps.Angle ("magnetic declination", trace.Laser.MagneticDeclination);
  }
  steps.Section ("backsight");
  steps.Grid (trace.BacksightGrid);
  steps.Section ("base");
  steps.Text ("name", where.NameOfBase.Data ());
  steps.Grid (trace.BaseGrid);
  steps.Section ("from the base");
  steps.Text ("distances are of the", FrameName (trace.Frame));
  steps.Angle ("azimuth", trace.Polar.Azimuth);
  steps.Length ("horizontal distance", trace.Polar.HDist);
  steps.Length ("height difference", trace.Polar.VDist);
  steps.Section ("before the neighbourhood adjustment");
  if (!maths_IsNull (trace.Neighbourhood.DeltaNorth)) steps.Grid (trace.Target);
  steps.Section ("neighbourhood adjustment");
  steps.Length ("north", trace.Neighbourhood.DeltaNorth);
  steps.Length ("east", trace.Neighbourhood.DeltaEast);
  return steps;
}

int RunExplain (const ExplainOptions& options, Ear& log) {
  IndexedJob job (options.job, options.open, log);
  dbSelection items;
  JobFile& index = job.Index ();
  if (!index.GetPointsByName (Str (options.name.c_str ()), DATABASE_ObservationRecord, items)) {
    Str spelling;
    const bool isOther = index.FindSpelling (Str (options.name.c_str ()), spelling) &&
                         options.name != spelling.Data ();
    throw Refusal{STATUS_Input, options.job + ": no point has the name " + options.name +
                                    (isOther ? std::string ("; did you mean ") + spelling.Data ()
                                             : std::string ())};
  }
  std::vector<ObservationObject*> points;  // newest first, as the search goes
  ObservationObject* best = nullptr;
  for (int32_t i = items.GetItemCount (); i-- > 0;) {
    ObservationObject* point = AsObservation (items.GetObject (i));
    if (!point) continue;
    points.push_back (point);
    if ((point->GetStatus () & DBSTATUS_Best) != 0) best = point;
  }

  std::string text = options.name + ": " + std::to_string (points.size ()) +
                     (points.size () == 1 ? " record\n" : " records, newest first\n");
  Json object;
  object["name"] = options.name;
  object["records"] = Json::array ();
  for (ObservationObject* point : points) {
    const db_Observation* record = point->GetObservation ();
    const db_Measurement* measurement = point->GetMeasurement ();
    if (!record) continue;
    const std::string kind = measurement ? ClassName (measurement->GetType ()) : "no measurement";
    const char* word = record->Classification.ToText ();
    const std::string reason = point == best ? "best"
                               : best        ? WhyNot (*point, *best)
                                             : "it cannot count as a point";
    text += "  record " + std::to_string (record->RecordId.value) + "  " +
            TimeText (record->TimeStamp) + "  " + (*word ? word : "None") + "  " +
            MethodInWords (*record) + "  " + kind + "  " + reason + "\n";
    object["records"].push_back ({{"id", record->RecordId.value},
                                  {"time", TimeText (record->TimeStamp)},
                                  {"class", *word ? word : "None"},
                                  {"method", MethodName (*record)},
                                  {"measurement", kind},
                                  {"best", point == best},
                                  {"why", reason}});
  }

  ObservationObject* shown = best ? best : points.front ();
  position where;
  position_LoadFromObject (where, *shown);
  position_Trace trace;
  const bool hasGrid =
      where.Original != COORD_NullType && position_Explain (where, job.System (), trace);
  const Steps steps = StepsOf (where, trace);
  text += steps.AsText ();
  Steps result;
  result.Section ("grid");
  result.Grid (trace.Grid);
  text += result.AsText ();
  object["explained"] = shown->GetRecordId ().value;
  object["steps"] = steps.AsJson ();
  const auto number = [] (double value) {
    return maths_IsNull (value) ? Json (nullptr) : Json (value);
  };
  object["grid"] = {{"north", number (trace.Grid.North)},
                    {"east", number (trace.Grid.East)},
                    {"elevation", number (trace.Grid.Elevation)}};
  if (!hasGrid) {
    const position_Failure* failure = trace.Reason ();
    const std::string reason = where.Original == COORD_NullType ? "the record has no measurement"
                               : failure                        ? position_ToText (*failure).Data ()
                                         : "the coordinate cannot be computed";
    text += "no coordinates: " + reason + "\n";
    object["reason"] = reason;
    for (const position_Failure& step : trace.Failures)
      text +=
          std::string ("  at ") + step.Point.Data () + ": " + position_ToText (step).Data () + "\n";
  }
  Print (options.json ? object.dump (2, ' ', false, Json::error_handler_t::replace) + "\n" : text);
  return job.ExitStatus ();
}

}  // namespace

void AddExplain (CLI::App& app, Session& session) {
  const auto options = std::make_shared<ExplainOptions> ();
  CLI::App* command =
      app.add_subcommand ("explain", "Show how the coordinates of a point came about");
  command->add_option ("JOB", options->job, "The job file; it is only read")->required ();
  command->add_option ("NAME", options->name, "The name of the point")->required ();
  command->add_flag ("--json", options->json, "One JSON object; angles in radians");
  options->open.AddTo (*command);
  command->footer (
      "Lists the records of the name in the order of the search, newest first, with the reason "
      "why\n"
      "each is the best or not, then the reduction of the best one with every number.\n"
      "Exit status: 0 done, 1 not to be opened as a job, 2 the job is damaged, 65 no such point.\n"
      "Example: clxml explain lot7.job HSE2");
  command->callback ([&session, options] {
    session.run = [&session, options] { return RunExplain (*options, session.ear); };
  });
}

}  // namespace clxml::tool
