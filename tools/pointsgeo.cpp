// The points, lines and arcs of a job as GeoJSON (RFC 7946).
// Longitude comes first, angles are degrees of WGS84, heights are metres above the ellipsoid. Arcs
// are lines whose chords stay within a tolerance. A line that crosses the antimeridian is cut
// there.
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include <nlohmann/json.hpp>

#include "Library/coordsys/transfrm.h"
#include "Library/records/dbPoints.h"
#include "points.h"

namespace clxml::tool {
namespace {

using Json = nlohmann::ordered_json;
constexpr double degrees = 180.0 / CONSTANT_Pi;
constexpr double fullTurn = 2.0 * CONSTANT_Pi;

double Rounded (double value, double places) { return std::round (value * places) / places; }

class Writer {
 public:
  Writer (IndexedJob& job, const GeoOptions& options, const PointRequest& request)
      : _Job (job), _Options (options), _Request (request) {}

  /// The feature of an object; null for one without coordinates or of a kind that is not drawn.
  Json FeatureOf (dbObject& object) {
    switch (object.GetRecordType ()) {
      case DATABASE_ObservationRecord:
        return Point (static_cast<ObservationObject&> (object));
      case DATABASE_LineRecord:
        return Line (static_cast<LineObject&> (object));
      case DATABASE_ArcRecord:
        return Arc (static_cast<ArcObject&> (object));
      default:
        return nullptr;
    }
  }

 private:
  // A geodetic point needs a height to leave the local datum. Without one the ellipsoid serves,
  // which moves the point by less than the last digit, and the height is left out.
  Json Coordinates (const coord_CorrectedGrid& grid) {
    if (grid.NullHorizontal ()) return nullptr;
    const bool hasHeight = !maths_IsNull (grid.Elevation);
    if (_Options.isLocal) {
      Json place = {Rounded (grid.East, 1e4), Rounded (grid.North, 1e4)};
      if (hasHeight) place.push_back (Rounded (grid.Elevation, 1e4));
      return place;
    }
    const Transform& transform = _Job.System ();
    coord_CogoGrid cogo;
    coord_Local local;
    coord_WGS84 wgs84;
    transform.GridToCogoGrid (grid, cogo);
    transform.CogoGridToUncalibratedLocal (cogo, local);
    if (maths_IsNull (local.Height)) {
      local.Height = 0.0;
      transform.LocalToWGS84 (local, wgs84);
      wgs84.Height = MATHS_Null;
    } else {
      transform.LocalToWGS84 (local, wgs84);
    }
    return Coordinates (wgs84);
  }

  static Json Coordinates (const coord_WGS84& point) {
    if (point.NullHorizontal ()) return nullptr;
    Json place = {Rounded (point.Longitude * degrees, 1e9),
                  Rounded (point.Latitude * degrees, 1e9)};
    if (!maths_IsNull (point.Height)) place.push_back (Rounded (point.Height, 1e4));
    return place;
  }

  static Json Feature (Json geometry, Json properties) {
    Json feature;
    feature["type"] = "Feature";
    feature["geometry"] = std::move (geometry);
    feature["properties"] = std::move (properties);
    return feature;
  }

  Json Point (ObservationObject& object) {
    const PointRow row = RowOf (_Job, object, _Request);
    Json place = _Options.isLocal ? Coordinates (row.grid) : Coordinates (row.wgs84);
    if (place.is_null ()) place = Coordinates (row.grid);
    if (place.is_null ()) return nullptr;
    Json properties;
    properties["kind"] = "point";
    properties["name"] = object.GetName ();
    if (row.record) {
      properties["code"] = CodeOf (*row.record);
      properties["class"] = ClassWord (row);
      properties["method"] = MethodInWords (*row.record);
    }
    properties["north"] = Number (row.grid.North);
    properties["east"] = Number (row.grid.East);
    properties["elevation"] = Number (row.grid.Elevation);
    return Feature ({{"type", "Point"}, {"coordinates", std::move (place)}},
                    std::move (properties));
  }

  static Json Number (double value) {
    return maths_IsNull (value) ? Json (nullptr) : Json (Rounded (value, 1e4));
  }

  Json Properties (const char* kind, const dbObject& object) {
    Json properties;
    properties["kind"] = kind;
    properties["name"] = object.GetName ();
    if (const dbRecord_Class* record = object.GetRecord ()) properties["code"] = CodeOf (*record);
    return properties;
  }

  Json Line (LineObject& line) {
    _Job.Index ().GetCompleteObject (line.GetUniqueId ().GetSubscript ());
    return Path ({line.StartGrid, line.EndGrid}, Properties ("line", line));
  }

  Json Arc (ArcObject& arc) {
    _Job.Index ().GetCompleteObject (arc.GetUniqueId ().GetSubscript ());
    if (arc.Centre.NullHorizontal () || maths_IsNull (arc.Radius) ||
        maths_IsNull (arc.StartAzimuth) || maths_IsNull (arc.DeltaAngle) || !(arc.Radius > 0.0))
      return nullptr;
    // The sagitta of a chord over the angle a is r (1 - cos (a/2)).
    const double ratio = std::clamp (1.0 - _Options.tolerance / arc.Radius, 0.0, 1.0);
    const double largest = std::max (2.0 * std::acos (ratio), 1e-4);
    const double turn = std::clamp (std::abs (arc.DeltaAngle), 0.0, fullTurn);
    const int chords = std::clamp (static_cast<int> (std::ceil (turn / largest)), 1, 100000);
    std::vector<coord_CorrectedGrid> points;
    for (int i = 0; i <= chords; i++) {
      const double along = turn * i / chords;
      const double azimuth = arc.StartAzimuth + along;
      coord_CorrectedGrid point;
      point.North = arc.Centre.North + arc.Radius * std::cos (azimuth);
      point.East = arc.Centre.East + arc.Radius * std::sin (azimuth);
      point.Elevation =
          maths_Add (arc.StartElevation, maths_Multiply (along * arc.Radius, arc.Slope));
      points.push_back (point);
    }
    // It is kept clockwise; one that was surveyed to the left is written in its own direction.
    if (arc.IsLeftHand) std::reverse (points.begin (), points.end ());
    Json properties = Properties ("arc", arc);
    properties["radius"] = Number (arc.Radius);
    return Path (points, std::move (properties));
  }

  Json Path (const std::vector<coord_CorrectedGrid>& points, Json properties) {
    Json parts = Json::array ();
    Json part = Json::array ();
    double before = 0.0;
    for (const coord_CorrectedGrid& point : points) {
      Json place = Coordinates (point);
      if (place.is_null ()) return nullptr;
      const double longitude = place[0].get<double> ();
      if (!part.empty () && !_Options.isLocal && std::abs (longitude - before) > 180.0) {
        const Json last = part.back ();
        const double edge = before > 0.0 ? 180.0 : -180.0;
        const double beyond = longitude + (before > 0.0 ? 360.0 : -360.0);
        const double share = (edge - before) / (beyond - before);
        const double latitude =
            last[1].get<double> () + share * (place[1].get<double> () - last[1].get<double> ());
        part.push_back ({edge, latitude});
        parts.push_back (std::move (part));
        part = Json::array ({Json::array ({-edge, latitude})});
      }
      before = longitude;
      part.push_back (std::move (place));
    }
    if (parts.empty ())
      return Feature ({{"type", "LineString"}, {"coordinates", std::move (part)}},
                      std::move (properties));
    parts.push_back (std::move (part));
    return Feature ({{"type", "MultiLineString"}, {"coordinates", std::move (parts)}},
                    std::move (properties));
  }

  IndexedJob& _Job;
  const GeoOptions& _Options;
  const PointRequest& _Request;
};

}  // namespace

uint64_t WriteGeoJson (IndexedJob& job, const GeoOptions& options, const PointRequest& request,
                       const std::function<void (std::string_view)>& write) {
  const Transform& system = job.System ();
  const bool isGeodetic = (system.Components & COORDSYS_SetProjection) != 0 &&
                          (system.Components & COORDSYS_SetScaleOnly) == 0;
  if (!options.isLocal && !isGeodetic)
    throw Refusal{STATUS_Input,
                  job.Path () +
                      ": the job has no map projection, so its "
                      "points have no WGS84 position; --local writes grid coordinates"};
  Writer writer (job, options, request);
  if (!options.isSequence) {
    write ("{\"type\":\"FeatureCollection\",");
    if (options.isLocal)
      write (
          "\"description\":\"Coordinates are east, north and elevation of the job's grid in "
          "metres, not WGS84.\",");
    write ("\"features\":[");
  }
  uint64_t without = 0;
  bool isFirst = true;
  JobFile& index = job.Index ();
  for (int32_t i = 0; i < index.GetObjectCount (); i++) {
    dbObject& object = *index.GetObject (i);
    const database_RecordType type = object.GetRecordType ();
    if (type != DATABASE_ObservationRecord && type != DATABASE_LineRecord &&
        type != DATABASE_ArcRecord)
      continue;
    if (object.IsDeleted () || object.IsHidden ()) continue;
    if (type == DATABASE_ObservationRecord && !options.all &&
        (object.GetStatus () & DBSTATUS_Best) == 0)
      continue;
    Json feature = writer.FeatureOf (object);
    if (feature.is_null ()) {
      without++;
      continue;
    }
    if (options.isSequence && options.isLocal)
      feature["properties"]["coordinates"] = "east, north, elevation in metres";
    std::string text = feature.dump (-1, ' ', false, Json::error_handler_t::replace);
    if (options.isSequence)
      text += '\n';
    else
      text.insert (0, isFirst ? "\n" : ",\n");
    isFirst = false;
    write (text);
  }
  if (!options.isSequence) write ("\n]}\n");
  return without;
}

}  // namespace clxml::tool
