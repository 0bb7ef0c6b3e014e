// What the drawing of a road is made of: the document, and the line as places.
#include "roadsheet.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "roadtext.h"

namespace clxml::tool {
namespace {

constexpr const char* style = R"(<style>
text { font-family: "DejaVu Sans", Helvetica, Arial, sans-serif; font-size: 2px; fill: #222; }
.title { font-size: 5px; font-weight: bold; }
.note { font-size: 2.6px; }
.word, .halo { font-size: 2.2px; }
.word, .halo, .small, .faint { paint-order: stroke; stroke: #fff; stroke-width: 0.7px; stroke-linejoin: round; }
.faint { fill: #667; }
.leftside { fill: #1f6fb2; } .rightside { fill: #b8322a; }
text.leftside, text.rightside { font-size: 1.8px; }
line, path, rect, circle { fill: none; stroke: #222; stroke-width: 0.18px; }
.grid { stroke: #ccd3da; stroke-width: 0.12px; }
.frame { stroke-width: 0.3px; }
.panel { fill: #fff; fill-opacity: 0.9; stroke-width: 0.15px; stroke: #99a; }
.solid { fill: #222; } .open { fill: #fff; }
.tick { stroke-width: 0.2px; }
.change { stroke: #889; stroke-width: 0.15px; }
.straight { stroke-width: 0.6px; }
.spiral { stroke: #1f6fb2; stroke-width: 0.6px; }
.arc { stroke: #b8322a; stroke-width: 0.6px; }
.profile { stroke: #b8322a; stroke-width: 0.5px; stroke-linejoin: round; }
.tangent { stroke: #667; stroke-dasharray: 1.6 0.8; }
.curvature { stroke-width: 0.35px; fill: #e8edf2; stroke-linejoin: round; }
.leftline { stroke: #1f6fb2; stroke-width: 0.35px; } .rightline { stroke: #b8322a; stroke-width: 0.35px; }
</style>
)";

}  // namespace

int DecimalsOf (double step) {
  int decimals = 0;
  for (; decimals < 3 && std::abs (step - std::round (step)) > 1e-6; decimals++) step *= 10.0;
  return decimals;
}

std::string Escaped (const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '>')
      escaped += "&gt;";
    else
      escaped += c;
  }
  return escaped;
}

void Svg::Add (const char* format, ...) {
  char line[512];
  va_list arguments;
  va_start (arguments, format);
  std::vsnprintf (line, sizeof line, format, arguments);
  va_end (arguments);
  _Text += line;
}

void Svg::Open (const std::string& title, double width, double height) {
  Add (
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%.0fmm\" height=\"%.0fmm\" "
      "viewBox=\"0 0 %.0f %.0f\" xml:space=\"preserve\">\n",
      width, height, width, height);
  Raw ("<title>" + Escaped (title) + "</title>\n");
  Raw (style);
  Add ("<rect x=\"0\" y=\"0\" width=\"%.0f\" height=\"%.0f\" style=\"fill:#fff;stroke:none\"/>\n",
       width, height);
}

std::string Svg::Close () {
  Raw ("</svg>\n");
  return std::move (_Text);
}

void Svg::Line (const char* kind, Point a, Point b) {
  Add ("<line class=\"%s\" x1=\"%.2f\" y1=\"%.2f\" x2=\"%.2f\" y2=\"%.2f\"/>\n", kind, a.x, a.y,
       b.x, b.y);
}

void Svg::Rectangle (const char* kind, const Box& box) {
  Add ("<rect class=\"%s\" x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" height=\"%.2f\"/>\n", kind,
       box.left, box.top, box.Width (), box.Height ());
}

void Svg::Words (const char* kind, Point at, const std::string& text, const char* anchor,
                 double turn) {
  Add ("<text class=\"%s\" text-anchor=\"%s\" x=\"%.2f\" y=\"%.2f\"", kind, anchor, at.x, at.y);
  if (turn != 0.0) Add (" transform=\"rotate(%.1f %.2f %.2f)\"", turn, at.x, at.y);
  Raw (">" + Escaped (text) + "</text>\n");
}

void Svg::Circle (const char* kind, Point at, double radius) {
  Add ("<circle class=\"%s\" cx=\"%.2f\" cy=\"%.2f\" r=\"%.2f\"/>\n", kind, at.x, at.y, radius);
}

void Svg::Path (const char* kind, const std::vector<Point>& points) {
  if (points.size () < 2) return;
  Add ("<path class=\"%s\" d=\"", kind);
  Point last = points.front ();
  Add ("M%.2f %.2f", last.x, last.y);
  for (std::size_t i = 1; i < points.size (); i++)
    if (i + 1 == points.size () || Distance (points[i], last) > 0.04) {
      last = points[i];
      Add ("L%.2f %.2f", last.x, last.y);
    }
  Raw ("\"/>\n");
}

Curvature CurvatureOf (const HorizontalBase& element) {
  const auto of = [] (const double* radius, bool clockwise) {
    if (!radius || maths_IsNull (*radius) || *radius == 0.0 || !std::isfinite (*radius)) return 0.0;
    return (clockwise ? 1.0 : -1.0) / *radius;
  };
  const bool clockwise = element.DirectionRef () && *element.DirectionRef ();
  return {of (element.StartRadiusRef (), clockwise), of (element.EndRadiusRef (), clockwise)};
}

std::string DescriptionOf (const HorizontalBase& element, double room) {
  std::string bend;
  if (const auto* spiral = RoadElement_Cast<HorizontalSpiral> (&element)) {
    const double small = spiral->IsEntry () ? spiral->EndRadius : spiral->StartRadius;
    const double large = spiral->IsEntry () ? spiral->StartRadius : spiral->EndRadius;
    // A^2 is the length over the difference of the curvatures at its ends.
    const double difference = maths_IsNull (large) ? 1.0 / small : 1.0 / small - 1.0 / large;
    if (IsUsable (small) && difference > 0.0 && std::isfinite (difference))
      bend = "A " + NumberText (std::sqrt (element.Length / difference), 2);
  } else if (const auto* arc = RoadElement_Cast<HorizontalArc> (&element)) {
    bend = "R " + NumberText (arc->Radius, 2);
  }
  const std::string length = "L " + NumberText (element.Length, 2);
  const auto fits = [room] (const std::string& text) {
    return 1.2 * static_cast<double> (text.size ()) + 1.0 < room;
  };
  const std::string both = bend.empty () ? length : bend + "  " + length;
  return fits (both) ? both : fits (bend) ? bend : std::string ();
}

std::vector<Stretch> StretchesOf (const NorvathRoad& road) {
  constexpr int MostPlaces = 400000;
  constexpr double Turn =
      0.02;  // radians from place to place: 1/20,000 of the radius beside the arc
  std::vector<Stretch> stretches;
  const int count = road.Horizontal.Count ();
  const int most = std::clamp (MostPlaces / std::max (count, 1), 4, 720);
  for (int i = 1; i < count; i++) {
    const HorizontalBase& element = *road.Horizontal.At (i);
    if (!IsUsable (element.Length) || element.Length <= 0.0 || !IsUsable (element.StartChainage))
      continue;
    const Curvature curvature = CurvatureOf (element);
    const double turn =
        element.Length * std::max (std::abs (curvature.start), std::abs (curvature.end));
    const int steps =
        static_cast<int> (std::clamp (std::ceil (turn / Turn), 1.0, static_cast<double> (most)));
    Stretch stretch{&element, {}};
    for (int k = 0; k <= steps; k++) {
      const coord_CorrectedGrid place =
          k == 0 ? element.StartCoordinate
          : k == steps
              ? element.EndCoordinate
              : element.PositionAt (element.StartChainage + element.Length * k / steps).Coordinate;
      if (IsUsable (place.East) && IsUsable (place.North))
        stretch.places.push_back ({place.East, place.North});
    }
    if (stretch.places.size () > 1) stretches.push_back (std::move (stretch));
  }
  return stretches;
}

}  // namespace clxml::tool
