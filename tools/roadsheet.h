// What the drawing of a road is made of.
// The sheet and its boxes, the document as it grows, the line of a road as places, and the two
// pictures of which the drawing consists. Leans on the road.
#pragma once

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "road/RoadNorvath.h"

namespace clxml::tool {

/// Of the sheet, millimetres; y runs down.
struct Box {
  double left, top, right, bottom;
  double Width () const { return right - left; }
  double Height () const { return bottom - top; }
};
inline constexpr Box SHEET_Plan = {12.0, 20.0, 408.0, 156.0};
inline constexpr double SHEET_NoteTop = 159.5;  ///< of the notes above the profile
inline constexpr Box SHEET_Profile = {36.0, 186.0, 404.0, 236.0};

/// A place on the sheet, or in the country (east, north) or along a road (station, elevation).
struct Point {
  double x = 0.0, y = 0.0;
};
inline double Distance (Point a, Point b) { return std::hypot (a.x - b.x, a.y - b.y); }

/// Neither null nor too large for a drawing.
inline bool IsUsable (double value) { return !maths_IsNull (value) && std::abs (value) < 1e12; }

/// The least number at or above value (which is above 0) among the steps times a power of ten.
template <std::size_t n>
double RoundUp (double value, const std::array<double, n>& steps) {
  const double power = std::pow (10.0, std::floor (std::log10 (value)));
  for (const double step : steps)
    if (step * power >= value * (1.0 - 1e-9)) return step * power;
  return 10.0 * power;
}
inline constexpr std::array SHEET_ScaleSteps = {1.0, 1.25, 1.5, 2.0, 2.5, 3.0, 4.0, 5.0, 7.5};
inline constexpr std::array SHEET_GridSteps = {1.0, 2.0, 5.0};

/// Decimals, at most 3, that show a multiple of the step.
int DecimalsOf (double step);
/// Calls with each multiple of the step in an interval, whose ends are taken half a millimetre
/// wide.
template <class Call>
void ForMultiples (double from, double to, double step, Call call) {
  for (double k = std::ceil ((from - 0.0005) / step); k * step <= to + 0.0005; k++) call (k * step);
}

/// The document as it grows. Coordinates are written to a hundredth of a millimetre; kind is the
/// class of the style.
class Svg {
 public:
  /// Begins the document: its size in millimetres, its style and a white ground.
  void Open (const std::string& title, double width, double height);
  /// Ends the document and returns it.
  std::string Close ();
  [[gnu::format (printf, 2, 3)]] void Add (const char* format, ...);
  void Raw (const std::string& text) { _Text += text; }
  void Line (const char* kind, Point a, Point b);
  void Rectangle (const char* kind, const Box& box);
  /// Turned about its place by so many degrees, clockwise.
  void Words (const char* kind, Point at, const std::string& text, const char* anchor = "start",
              double turn = 0.0);
  void Circle (const char* kind, Point at, double radius);
  /// What lies closer to the last point than a pen can show is left out.
  void Path (const char* kind, const std::vector<Point>& points);

 private:
  std::string _Text;
};
/// Text of a document.
std::string Escaped (const std::string& text);

/// Curvature to the right at the ends of an element, one over metres.
struct Curvature {
  double start = 0.0, end = 0.0;
};
Curvature CurvatureOf (const HorizontalBase& element);
/// Radius or parameter, and length of an element, or less of it, or nothing: what goes into a room
/// of so many millimetres. "R 250.00  L 182.64", "A 122.47".
std::string DescriptionOf (const HorizontalBase& element, double room);

/// One element of the line as drawn: its places in metres, east and north, two or more.
struct Stretch {
  const HorizontalBase* element;
  std::vector<Point> places;
};
/// The elements that have a place and a length.
std::vector<Stretch> StretchesOf (const NorvathRoad& road);

/// Draws the plan and returns the denominator of its scale. There is at least one stretch.
double DrawPlan (Svg& svg, const NorvathRoad& road, const std::vector<Stretch>& stretches);

struct SectionScales {
  double scale;         ///< one to
  double exaggeration;  ///< of the heights; 0 without a profile
};
/// Draws the long section and its bands. There is at least one stretch.
SectionScales DrawSection (Svg& svg, const NorvathRoad& road,
                           const std::vector<Stretch>& stretches);

}  // namespace clxml::tool
