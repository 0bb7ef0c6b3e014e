// A road in words and numbers, as the tool shows it.
// What the listing and the drawing both write: stations, azimuths, grades, and the words for
// elements. Leans on the road.
#pragma once

#include <string>
#include <vector>

#include "road/RoadNorvath.h"

namespace clxml::tool {

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
/// What does not hold in the road, one sentence each; empty for a valid road.
std::vector<std::string> RoadFaults (const NorvathRoad& road);

/// A place of the centre line. False outside the alignment and where its element lacks numbers.
/// Unlike the alignment itself it has the true azimuth at the very first station.
bool PlaceOn (const NorvathRoad& road, double station, RoadPosition& place);

}  // namespace clxml::tool
