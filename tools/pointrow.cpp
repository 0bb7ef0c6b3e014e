// The rows that clxml points prints: computing one, its words, and its JSON line.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <string_view>

#include "Kernel/clock.h"
#include "Library/position/azimuth.h"
#include "Library/position/position.h"
#include "Library/position/trace.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"
#include "points.h"
#include "recordjson.h"

namespace clxml::tool {
namespace {

bool HasPolar (database_RecordType measurement) {
  switch (measurement) {
    case DATABASE_PolarRecord:
    case DATABASE_AzimuthRecord:
    case DATABASE_LaserOffsetRecord:
    case DATABASE_CircleRecord:
    case DATABASE_MeanTurnedAngleRecord:
      return true;
    default:
      return false;
  }
}

std::string ReasonOf (const ObservationObject& object, const position& where,
                      const Transform& transform) {
  if (!object.GetMeasurement ()) return "the record has no measurement";
  position_Trace trace;
  if (position_Explain (where, transform, trace)) return "";
  const position_Failure* reason = trace.Reason ();
  return reason ? std::string (position_ToText (*reason).Data ())
                : "the coordinate cannot be computed";
}

// Writes the members of one JSON object.
class JsonObject {
 public:
  explicit JsonObject (std::string& out) : _Out (out) { _Out += '{'; }
  void End () { _Out += '}'; }
  void Key (const char* name) {
    if (_Out.back () != '{') _Out += ',';
    AppendText (_Out, name);
    _Out += ':';
  }
  void Text (const char* name, std::string_view value) {
    Key (name);
    AppendText (_Out, value);
  }
  void Number (const char* name, int64_t value) {
    Key (name);
    _Out += std::to_string (value);
  }
  void Double (const char* name, double value) {
    Key (name);
    AppendDouble (_Out, value);
  }
  void Bool (const char* name, bool value) {
    Key (name);
    _Out += value ? "true" : "false";
  }
  void Null (const char* name) {
    Key (name);
    _Out += "null";
  }
  void Triple (const char* name, const char* a, double x, const char* b, double y, const char* c,
               double z) {
    Key (name);
    JsonObject inner (_Out);
    inner.Double (a, x);
    inner.Double (b, y);
    inner.Double (c, z);
    inner.End ();
  }
  void Grid (const char* name, const coord_CorrectedGrid& grid) {
    Triple (name, "north", grid.North, "east", grid.East, "elevation", grid.Elevation);
  }
  template <class Geodetic>
  void Geodetic3 (const char* name, const Geodetic& point) {
    Triple (name, "latitude", point.Latitude, "longitude", point.Longitude, "height", point.Height);
  }

 private:
  std::string& _Out;
};

void AppendPoint (JsonObject& json, IndexedJob& job, ObservationObject& object,
                  const PointRequest& request) {
  const PointRow row = RowOf (job, object, request);
  json.Text ("class", ClassWord (row));
  json.Number ("method", row.record ? row.record->Method : 0);
  json.Text ("methodName", row.record ? MethodName (*row.record) : "");
  json.Number ("kind", object.Words ()[1]);
  json.Number ("status", row.status);
  json.Bool ("best", (row.status & DBSTATUS_Best) != 0);
  json.Bool ("bestGrid", (row.status & DBSTATUS_BestGrid) != 0);
  json.Bool ("bestGPS", (row.status & DBSTATUS_BestGPS) != 0);
  json.Text ("code", row.record ? CodeOf (*row.record) : "");
  json.Grid ("grid", row.grid);
  json.Geodetic3 ("wgs84", row.wgs84);
  json.Geodetic3 ("local", row.local);
  if (row.isPolar)
    json.Triple ("polar", "azimuth", row.polar.Azimuth, "horizontal", row.polar.HDist, "vertical",
                 row.polar.VDist);
  else
    json.Null ("polar");
  json.Number ("mtaMethod", object.GetMTAMethod ());
  json.Double ("convergence", row.convergence);
  if (row.hasAntenna) json.Double ("antenna", row.antenna);
  if (row.hasReference) json.Double ("referenceAntenna", row.referenceAntenna);
  if (!row.reason.empty ()) json.Text ("reason", row.reason);
}

void AppendArc (JsonObject& json, const ArcObject& arc) {
  json.Grid ("centre", arc.Centre);
  json.Double ("radius", arc.Radius);
  json.Double ("startAzimuth", arc.StartAzimuth);
  json.Double ("deltaAngle", arc.DeltaAngle);
  json.Double ("startElevation", arc.StartElevation);
  json.Double ("slope", arc.Slope);
  json.Bool ("leftHand", arc.IsLeftHand);
}

}  // namespace

PointRow RowOf (IndexedJob& job, ObservationObject& object, const PointRequest& request) {
  PointRow row;
  row.object = &object;
  row.record = object.GetObservation ();
  row.status = object.GetStatus ();
  const Transform& transform = job.System ();
  const database_RecordType type = object.GetMeasurementType ();

  position where;
  where.UseProjectHeight = request.useProjectHeight;
  if (request.useProjectHeight) {
    position_LoadFromObject (where, object);
    where.UseProjectHeight = true;
    if (where.Original != COORD_NullType) where.ComputeAbsolute (transform);
    row.grid = where.GetGrid (transform);
  } else {
    row.grid = object.GetFinalGrid ();
    if (request.needsGeodetic || (row.grid.IsNull () && request.needsReason))
      position_LoadFromObject (where, object);
  }
  if (request.needsGeodetic) {
    row.wgs84 = where.GetWGS84 (transform);
    row.local = where.GetLocal (transform);
    row.polar = where.GetPolar (transform);
    row.isPolar = HasPolar (type);
    row.hasReference = type == DATABASE_ECEFDeltasRecord;
    row.hasAntenna = row.hasReference || type == DATABASE_ECEFRecord;
    if (where.Original != COORD_NullType) row.convergence = where.GetConvergence (transform);
    if (row.hasAntenna) row.antenna = where.GetAntennaHeight ();
    if (row.hasReference) row.referenceAntenna = where.ReferenceAntenna;
  }
  if (row.grid.IsNull () && request.needsReason) row.reason = ReasonOf (object, where, transform);
  return row;
}

std::string ClassWord (const PointRow& row) {
  if (!row.record) return "None";
  const char* word = row.record->Classification.ToText ();
  return *word ? word : "None";
}

std::string CodeOf (const dbRecord_Class& record) {
  switch (record.GetType ()) {
    case DATABASE_ObservationRecord:
    case DATABASE_LineRecord:
    case DATABASE_ArcRecord:
      return static_cast<const dbRecordWithFeatures_Class&> (record).Features.ToString ().Data ();
    default:
      return "";
  }
}

std::string MethodName (const db_Observation& point) {
  const char* word = FindEnumText (EnumerationOf<dbentity_PointMethod> (), point.Method);
  return word ? word : std::to_string (point.Method);
}

std::string MethodInWords (const db_Observation& point) {
  const std::string whole = MethodName (point);
  std::string_view name (whole);
  if (const std::size_t prefix = name.find ('_'); prefix != std::string_view::npos)
    name.remove_prefix (prefix + 1);
  // A word begins at a capital after a small letter, and at the last capital of several.
  std::string words;
  const auto isUpper = [] (char c) { return c >= 'A' && c <= 'Z'; };
  for (std::size_t i = 0; i < name.size (); i++) {
    const bool isLast = i + 1 == name.size ();
    const bool nextIsSmall = !isLast && !isUpper (name[i + 1]);
    if (i > 0 && isUpper (name[i]) && (!isUpper (name[i - 1]) || nextIsSmall)) words += ' ';
    words +=
        isUpper (name[i]) && (isLast || nextIsSmall) ? static_cast<char> (name[i] | 0x20) : name[i];
  }
  if (words.starts_with ("gps ")) words.replace (0, 3, "GPS");
  return words;
}

std::string TimeText (double time) {
  if (maths_IsNull (time)) return "";
  int16_t year = 0, month = 0, day = 0;
  double ofDay = 0.0;
  clock_ToDate (time, &year, &month, &day, &ofDay);
  const int seconds = std::clamp (static_cast<int> (ofDay), 0, 86399);
  char text[40];
  std::snprintf (text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", year, month, day,
                 seconds / 3600, seconds / 60 % 60, seconds % 60);
  return text;
}

void AppendObjectJson (std::string& out, IndexedJob& job, dbObject& object,
                       const PointRequest& request) {
  JsonObject json (out);
  const dbRecord_Class* record = object.GetRecord ();
  json.Text ("name", object.GetName ());
  json.Text ("record", ClassName (object.GetRecordType ()));
  json.Number ("id", object.GetRecordId ().value);
  json.Bool ("deleted", record && record->IsDeleted ());
  json.Bool ("hidden", object.IsHidden ());
  ObservationObject* point = AsObservation (&object);
  if (!point) job.Index ().GetCompleteObject (object.GetUniqueId ().GetSubscript ());
  json.Number ("typeWord", object.Words ()[0]);
  json.Number ("kindWord", object.Words ()[1]);
  if (point) {
    AppendPoint (json, job, *point, request);
  } else if (object.GetRecordType () == DATABASE_LineRecord) {
    const auto& line = static_cast<const LineObject&> (object);
    json.Grid ("start", line.StartGrid);
    json.Grid ("end", line.EndGrid);
  } else if (object.GetRecordType () == DATABASE_ArcRecord) {
    AppendArc (json, static_cast<const ArcObject&> (object));
  } else if (const auto* backBearing = db_TotalBackBearing::From (record)) {
    json.Double ("orientation", OrientationCorrection (job.Index (), *backBearing));
  }
  json.End ();
  out += '\n';
}

bool IsBeforeNaturally (std::string_view a, std::string_view b) {
  const auto isDigit = [] (char c) { return c >= '0' && c <= '9'; };
  std::size_t i = 0, j = 0;
  while (i < a.size () && j < b.size ()) {
    if (isDigit (a[i]) && isDigit (b[j])) {
      const auto run = [&] (std::string_view text, std::size_t& at) {
        while (at < text.size () && text[at] == '0') at++;
        const std::size_t start = at;
        while (at < text.size () && isDigit (text[at])) at++;
        return text.substr (start, at - start);
      };
      const std::string_view m = run (a, i), n = run (b, j);
      if (m.size () != n.size ()) return m.size () < n.size ();
      if (m != n) return m < n;
      continue;
    }
    const int c = std::tolower (static_cast<unsigned char> (a[i]));
    const int d = std::tolower (static_cast<unsigned char> (b[j]));
    if (c != d) return c < d;
    i++, j++;
  }
  if (a.size () - i != b.size () - j) return a.size () - i < b.size () - j;
  return a < b;
}

}  // namespace clxml::tool
