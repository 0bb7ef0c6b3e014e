// The rows that clxml points prints: one object of a job's index with its coordinates.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Library/coords/coord.h"
#include "indexedjob.h"

namespace clxml::tool {

/// What is computed for the rows.
struct PointRequest {
  bool needsGeodetic = true;      ///< WGS84, local and polar forms and what goes with them
  bool needsReason = true;        ///< the reason of a missing grid, which costs a second reduction
  bool useProjectHeight = false;  ///< missing heights of bases are the project height
};

/// One point with its coordinates. Angles are radians, lengths metres, null where there is none.
struct PointRow {
  ObservationObject* object = nullptr;
  const db_Observation* record = nullptr;
  uint32_t status = 0;
  coord_CorrectedGrid grid;
  coord_WGS84 wgs84;
  coord_Local local;
  coord_Polar polar;
  bool isPolar = false;  ///< the measurement is an observation form, which has a polar
  bool hasAntenna = false;
  bool hasReference = false;
  double convergence = MATHS_Null;
  double antenna = MATHS_Null;
  double referenceAntenna = MATHS_Null;
  std::string reason;  ///< why there is no grid; empty if there is one
};

/// Computes the row of a point, in this order: the status, the final grid, then WGS84, local and
/// polar form of one position.
PointRow RowOf (IndexedJob& job, ObservationObject& object, const PointRequest& request);

/// The word of a class: "Normal"; "None" for a point without one.
std::string ClassWord (const PointRow& row);
/// The feature codes as text.
std::string CodeOf (const dbRecord_Class& record);
/// The enumerator of a point's method; the number where there is none.
std::string MethodName (const db_Observation& point);
/// The method in words for people: "direct reading".
std::string MethodInWords (const db_Observation& point);

/// A record's time on the local clock as ISO 8601; empty for a null time.
std::string TimeText (double time);

/// Appends one object of the index as a JSON line: see `clxml points --help`.
void AppendObjectJson (std::string& out, IndexedJob& job, dbObject& object,
                       const PointRequest& request);

/// Orders names as people do: "P2" before "P10". Case decides last.
bool IsBeforeNaturally (std::string_view a, std::string_view b);

/// Writes the GeoJSON of a job: points, lines and arcs.
struct GeoOptions {
  bool isSequence = false;  ///< one feature a line (RFC 8142 without separators)
  bool isLocal = false;     ///< grid coordinates in place of WGS84
  bool all = false;         ///< every live point and not the best of each name alone
  double tolerance = 0.01;  ///< metres between an arc and its chords
};
/// Refuses with STATUS_Input a job without datum and projection unless isLocal. Returns how many
/// objects were left out for want of coordinates.
uint64_t WriteGeoJson (IndexedJob& job, const GeoOptions& options, const PointRequest& request,
                       const std::function<void (std::string_view)>& write);

}  // namespace clxml::tool
