// A road in words and numbers, as the tool shows it.
// What the listing and the drawing both write: stations, azimuths, grades, and the words for
// elements. Leans on the road.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "road/RoadNorvath.h"

namespace clxml::tool {

/// Lines of cells under a head, each column as wide as its widest cell. The first two columns are
/// aligned to the left, the others to the right. All rows have as many cells as the head.
class Table {
 public:
  explicit Table (std::vector<std::string> head) { Add (std::move (head)); }
  void Add (std::vector<std::string> row) { _Rows.push_back (std::move (row)); }
  std::string Text () const;

 private:
  std::vector<std::vector<std::string>> _Rows;
};

/// A number with that many decimals; "-" for null and for what is no number.
std::string NumberText (double value, int decimals = 3);
/// A station of a drawing: thousands of metres, a plus sign, metres: "1+234.500".
std::string StationText (double station, int decimals = 3);
/// An azimuth in degrees, minutes and seconds with one decimal; "-" for null.
std::string AzimuthText (double radians);
/// A grade angle in percent; "-" for null.
std::string GradeText (double radians);
/// "start", "straight", "arc", "entry spiral", "exit spiral", "point" and so on.
const char* ElementWord (const RoadElement& element);
/// The text with each byte that is no part of clean UTF-8, and each control character, as "?".
std::string CleanText (const Str& text);

/// The whole road: elements, vertical profile, placements, superelevation, templates.
std::string RoadListing (const NorvathRoad& road);
/// The faults of the road, one sentence each; empty for a valid road.
std::vector<std::string> RoadFaults (const NorvathRoad& road);

/// A place of the centre line. False outside the alignment and where its element lacks numbers.
bool PlaceOn (const NorvathRoad& road, double station, RoadPosition& place);

}  // namespace clxml::tool
