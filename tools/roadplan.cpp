// The plan of a road's drawing: grid, line, station ticks and what changes where.
#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "roadsheet.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

const char* LineClass (const HorizontalBase& element) {
  return element.IsSpiral () ? "spiral" : element.HasRadius () ? "arc" : "straight";
}

// The surveyor's letters for a change of element.
std::string ChangeWord (const HorizontalBase& before, const HorizontalBase& element) {
  const auto letter = [] (const HorizontalBase& e) {
    return e.IsSpiral () ? 'S' : e.HasRadius () ? 'C' : 'T';
  };
  const char a = letter (before), b = letter (element);
  if (a == 'T' && b == 'C') return "PC";
  if (a == 'C' && b == 'T') return "PT";
  if (a == 'T' && b == 'T') return "PI";
  if (a == 'C' && b == 'C')
    return *before.DirectionRef () == *element.DirectionRef () ? "PCC" : "PRC";
  return {a, b};
}

// What stands on the plan already, as places in cells: words keep clear of it.
class Crowd {
 public:
  void Add (Point at) {
    std::vector<Point>* cell = CellAt (at);
    if (cell && cell->size () < 12) cell->push_back (at);
  }
  void Add (Point from, Point to) {
    Walk (from, to, [this] (Point at) {
      Add (at);
      return true;
    });
  }
  // A strip of words between two places has room on the plan and keeps its distance.
  bool HasRoom (Point from, Point to) const {
    return Walk (from, to, [this] (Point at) { return IsFree (at); });
  }

 private:
  static constexpr double Cell = 2.5;  // millimetres
  static constexpr int Columns = 160, Rows = 56;
  static_assert (Columns * Cell > SHEET_Plan.right - SHEET_Plan.left &&
                 Rows * Cell > SHEET_Plan.bottom - SHEET_Plan.top);

  static bool IsOnPlan (Point at) {
    return at.x > SHEET_Plan.left + 1.0 && at.x < SHEET_Plan.right - 1.0 &&
           at.y > SHEET_Plan.top + 1.0 && at.y < SHEET_Plan.bottom - 1.0;
  }
  static int ColumnOf (Point at) { return static_cast<int> ((at.x - SHEET_Plan.left) / Cell); }
  static int RowOf (Point at) { return static_cast<int> ((at.y - SHEET_Plan.top) / Cell); }
  std::vector<Point>* CellAt (Point at) {
    return IsOnPlan (at) ? &_Cells[static_cast<std::size_t> (RowOf (at) * Columns + ColumnOf (at))]
                         : nullptr;
  }
  bool IsFree (Point at) const {
    constexpr double Clear = 1.9;  // of two lines of words
    if (!IsOnPlan (at)) return false;
    for (int row = std::max (RowOf (at) - 1, 0); row <= std::min (RowOf (at) + 1, Rows - 1); row++)
      for (int column = std::max (ColumnOf (at) - 1, 0);
           column <= std::min (ColumnOf (at) + 1, Columns - 1); column++)
        for (const Point other : _Cells[static_cast<std::size_t> (row * Columns + column)])
          if (Distance (other, at) < Clear) return false;
    return true;
  }
  // Every millimetre from one place to the other, for as long as the call is true.
  template <class Call>
  static bool Walk (Point from, Point to, Call call) {
    const int steps = static_cast<int> (std::clamp (std::ceil (Distance (from, to)), 1.0, 1000.0));
    for (int k = 0; k <= steps; k++)
      if (!call (Point{from.x + (to.x - from.x) * k / steps, from.y + (to.y - from.y) * k / steps}))
        return false;
    return true;
  }

  std::vector<std::vector<Point>> _Cells{static_cast<std::size_t> (Columns * Rows)};
};

class Plan {
 public:
  Plan (const NorvathRoad& road, const std::vector<Stretch>& stretches)
      : _Road (road), _Stretches (stretches) {
    Box extent = {1e300, 1e300, -1e300, -1e300};
    for (const Stretch& stretch : stretches)
      for (const Point place : stretch.places) {
        extent.left = std::min (extent.left, place.x);
        extent.right = std::max (extent.right, place.x);
        extent.top = std::min (extent.top, place.y);
        extent.bottom = std::max (extent.bottom, place.y);
      }
    for (const Stretch& stretch : stretches) _Length += stretch.element->Length;
    constexpr double Border = 20.0;  // for labels
    const double needed =
        1000.0 * std::max (extent.Width () / (SHEET_Plan.Width () - 2.0 * Border),
                           extent.Height () / (SHEET_Plan.Height () - 2.0 * Border));
    _Scale = RoundUp (std::max (needed, 50.0), SHEET_ScaleSteps);
    _Middle = {(extent.left + extent.right) / 2.0, (extent.top + extent.bottom) / 2.0};
  }

  double Scale () const { return _Scale; }

  void Draw (Svg& svg) {
    svg.Raw ("<g id=\"plan\" clip-path=\"url(#planclip)\">\n");
    Grid (svg);
    Corner (svg);
    Lines (svg);
    // The more a reader needs a word, the sooner it is placed.
    Changes (svg);
    Intervals (svg);
    for (const Stretch& stretch : _Stretches) Describe (svg, *stretch.element);
    svg.Raw ("</g>\n");
    svg.Rectangle ("frame", SHEET_Plan);
  }

 private:
  Point OnSheet (Point place) const {
    return {(SHEET_Plan.left + SHEET_Plan.right) / 2.0 + (place.x - _Middle.x) * 1000.0 / _Scale,
            (SHEET_Plan.top + SHEET_Plan.bottom) / 2.0 - (place.y - _Middle.y) * 1000.0 / _Scale};
  }

  void Grid (Svg& svg) const {
    const double step = RoundUp (40.0 * _Scale / 1000.0, SHEET_GridSteps);
    const double halfWidth = SHEET_Plan.Width () / 2.0 * _Scale / 1000.0;
    const double halfHeight = SHEET_Plan.Height () / 2.0 * _Scale / 1000.0;
    ForMultiples (_Middle.x - halfWidth, _Middle.x + halfWidth, step, [&] (double east) {
      const double x = OnSheet ({east, 0.0}).x;
      svg.Line ("grid", {x, SHEET_Plan.top}, {x, SHEET_Plan.bottom});
      svg.Words ("faint", {x + 0.8, SHEET_Plan.bottom - 1.0},
                 "E " + NumberText (east, DecimalsOf (step)));
    });
    ForMultiples (_Middle.y - halfHeight, _Middle.y + halfHeight, step, [&] (double north) {
      const double y = OnSheet ({0.0, north}).y;
      svg.Line ("grid", {SHEET_Plan.left, y}, {SHEET_Plan.right, y});
      svg.Words ("faint", {SHEET_Plan.left + 1.0, y - 0.8},
                 "N " + NumberText (north, DecimalsOf (step)));
    });
  }

  // North arrow, scale bar and what the colours mean, in the corner that the line leaves most free.
  void Corner (Svg& svg) {
    constexpr double Width = 104.0, Height = 24.0, Margin = 4.0;
    std::array<std::size_t, 4> crossed{};
    const auto boxOf = [&] (std::size_t corner) {
      const double left =
          corner % 2 ? SHEET_Plan.right - Width - Margin : SHEET_Plan.left + Margin + 14.0;
      const double top =
          corner / 2 ? SHEET_Plan.bottom - Height - Margin - 3.0 : SHEET_Plan.top + Margin;
      return Box{left, top, left + Width, top + Height};
    };
    for (std::size_t corner = 0; corner < 4; corner++) {
      const Box box = boxOf (corner);
      constexpr double Reach = 16.0;  // of the labels beside the line
      for (const Stretch& stretch : _Stretches)
        for (std::size_t i = 1; i < stretch.places.size (); i++) {
          const Point a = OnSheet (stretch.places[i - 1]), b = OnSheet (stretch.places[i]);
          const int parts = static_cast<int> (std::clamp (Distance (a, b) / 5.0, 1.0, 100.0));
          for (int k = 0; k <= parts; k++) {
            const Point p = {a.x + (b.x - a.x) * k / parts, a.y + (b.y - a.y) * k / parts};
            crossed[corner] += p.x > box.left - Reach && p.x < box.right + Reach &&
                               p.y > box.top - Reach && p.y < box.bottom + Reach;
          }
        }
    }
    const Box box = boxOf (static_cast<std::size_t> (
        std::min_element (crossed.begin (), crossed.end ()) - crossed.begin ()));
    svg.Rectangle ("panel", box);
    for (double y = box.top; y <= box.bottom; y += 2.0) _Crowd.Add ({box.left, y}, {box.right, y});

    const Point foot = {box.left + 8.0, box.bottom - 3.0};
    svg.Add ("<path class=\"solid\" d=\"M%.2f %.2fl-3 14l3 -3z\"/>\n", foot.x, foot.y - 15.0);
    svg.Add ("<path class=\"open\" d=\"M%.2f %.2fl3 14l-3 -3z\"/>\n", foot.x, foot.y - 15.0);
    svg.Words ("word", {foot.x, foot.y - 16.0}, "N", "middle");

    // The bar: four parts of a round length, at most 64 mm together.
    const double part = RoundUp (7.0 * _Scale / 1000.0, SHEET_GridSteps);
    const double onSheet = part * 1000.0 / _Scale;
    const Point bar = {box.left + 20.0, box.top + 5.0};
    for (int i = 0; i < 4; i++)
      svg.Add ("<rect class=\"%s\" x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" height=\"1.6\"/>\n",
               i % 2 ? "open" : "solid", bar.x + onSheet * i, bar.y, onSheet);
    for (const int i : {0, 2, 4})
      svg.Words ("small", {bar.x + onSheet * i, bar.y + 4.4},
                 NumberText (part * i, DecimalsOf (part)) + (i == 4 ? " m" : ""), "middle");
    svg.Words ("small", {bar.x, bar.y - 1.0},
               "Scale 1:" + NumberText (_Scale, DecimalsOf (_Scale)) + " on A3");

    double x = bar.x;
    for (const char* kind : {"straight", "spiral", "arc"}) {
      svg.Line (kind, {x, bar.y + 10.0}, {x + 8.0, bar.y + 10.0});
      svg.Words ("small", {x + 9.5, bar.y + 10.8}, kind);
      x += 26.0;
    }
    svg.Words ("small", {bar.x, bar.y + 16.0},
               "ticks every " + NumberText (TickStep (), DecimalsOf (TickStep ())) +
                   " m;  T straight, S spiral, C arc");
  }

  void Lines (Svg& svg) {
    std::vector<Point> points;
    const char* kind = "";
    for (const Stretch& stretch : _Stretches) {
      const char* own = LineClass (*stretch.element);
      const Point first = OnSheet (stretch.places.front ());
      if (std::string_view (own) != kind || points.empty () ||
          Distance (points.back (), first) > 0.04) {
        svg.Path (kind, points);
        points.clear ();
        kind = own;
      }
      for (const Point place : stretch.places) points.push_back (OnSheet (place));
    }
    svg.Path (kind, points);
    for (const Stretch& stretch : _Stretches)
      for (std::size_t i = 1; i < stretch.places.size (); i++)
        _Crowd.Add (OnSheet (stretch.places[i - 1]), OnSheet (stretch.places[i]));
  }

  // A line's direction on the sheet, degrees clockwise from the right.
  struct Mark {
    Point at;
    double direction;
  };
  std::optional<Mark> MarkAt (const HorizontalBase& element, double station) const {
    const RoadPosition position = element.PositionAt (station);
    if (!IsUsable (position.Coordinate.East) || !IsUsable (position.Coordinate.North) ||
        !IsUsable (position.Azimuth))
      return std::nullopt;
    return Mark{OnSheet ({position.Coordinate.East, position.Coordinate.North}),
                position.Azimuth * 180.0 / CONSTANT_Pi - 90.0};
  }
  // The place so far beside the line, to the right in the direction of travel.
  static Point Beside (const Mark& mark, double right) {
    const double a = (mark.direction + 90.0) * CONSTANT_Pi / 180.0;
    return {mark.at.x + right * std::cos (a), mark.at.y + right * std::sin (a)};
  }
  static double WidthOf (const std::string& text) {
    return 1.3 * static_cast<double> (text.size ());
  }
  // Words that run away from the line at right angles, to its right or (from below 0) to its left,
  // never upside down. False where they have no room.
  bool WordsBeside (Svg& svg, const char* kind, const Mark& mark, double from,
                    const std::string& text) {
    const double to = from + (from > 0.0 ? WidthOf (text) : -WidthOf (text));
    Point at = Beside (mark, from);
    if (!_Crowd.HasRoom (at, Beside (mark, to))) return false;
    _Crowd.Add (at, Beside (mark, to));
    double turn = std::remainder (mark.direction + (from > 0.0 ? 90.0 : -90.0), 360.0);
    const bool isFlipped = turn > 90.0 || turn <= -90.0;
    if (isFlipped) turn = std::remainder (turn + 180.0, 360.0);
    // The baseline lies a third of the letters' height off the middle.
    const double a = (turn + 90.0) * CONSTANT_Pi / 180.0;
    at.x += 0.7 * std::cos (a);
    at.y += 0.7 * std::sin (a);
    svg.Words (kind, at, text, isFlipped ? "end" : "start", turn);
    return true;
  }

  // The road's interval, or so many of them that the ticks stand apart and are not too many.
  double StepOf (double apart) const {
    const double least = std::max (apart * _Scale / 1000.0, _Length / 2000.0);
    double step = _Road.StationInterval;
    if (!IsUsable (step) || step < 1e-3) return RoundUp (std::max (least, 1e-3), SHEET_GridSteps);
    if (step < least) step *= RoundUp (std::ceil (least / step), SHEET_GridSteps);
    return step;
  }
  double TickStep () const { return StepOf (2.4); }

  void Intervals (Svg& svg) {
    const double step = TickStep ();
    double labelled = StepOf (9.0);
    // Labels stand at ticks.
    labelled = step * std::max (1.0, std::round (labelled / step));
    for (const Stretch& stretch : _Stretches) {
      const HorizontalBase& element = *stretch.element;
      ForMultiples (element.StartChainage, element.StartChainage + element.Length, step,
                    [&] (double station) {
                      const auto mark = MarkAt (element, station);
                      if (!mark) return;
                      const double count = station / labelled;
                      const bool isLabelled = std::abs (count - std::round (count)) < 1e-6;
                      const double half = isLabelled ? 1.5 : 0.8;
                      svg.Line ("tick", Beside (*mark, half), Beside (*mark, -half));
                      if (isLabelled)
                        WordsBeside (svg, "small", *mark, -2.2,
                                     StationText (station, DecimalsOf (step)));
                    });
    }
  }

  // The circle of each change, and its words on the side and at the distance that have room.
  void Changes (Svg& svg) {
    std::optional<Point> last;
    const auto note = [&] (const HorizontalBase& element, double station, const std::string& word) {
      const auto mark = MarkAt (element, station);
      if (!mark || (last && Distance (*last, mark->at) < 0.5)) return;
      last = mark->at;
      for (const double from : {4.0, -9.5, 26.0, -30.0})
        if (WordsBeside (svg, "word", *mark, from, word + " " + StationText (station))) {
          svg.Line ("change", mark->at, Beside (*mark, from > 0.0 ? from - 0.6 : from + 0.6));
          break;
        }
      svg.Circle ("open", mark->at, 0.7);
    };
    for (std::size_t i = 0; i < _Stretches.size (); i++) {
      const HorizontalBase& element = *_Stretches[i].element;
      note (element, element.StartChainage,
            i == 0 ? "BOP" : ChangeWord (*_Stretches[i - 1].element, element));
    }
    const HorizontalBase& end = *_Stretches.back ().element;
    note (end, end.StartChainage + end.Length, "EOP");
  }

  // What an element is, along its middle, where there is room.
  void Describe (Svg& svg, const HorizontalBase& element) {
    const std::string text = DescriptionOf (element, element.Length * 1000.0 / _Scale - 3.0);
    if (text.empty ()) return;
    const auto mark = MarkAt (element, element.StartChainage + element.Length / 2.0);
    if (!mark) return;
    const double a = mark->direction * CONSTANT_Pi / 180.0, half = WidthOf (text) / 2.0 - 1.0;
    const Point middle = Beside (*mark, 3.0);
    const Point from = {middle.x - half * std::cos (a), middle.y - half * std::sin (a)};
    const Point to = {middle.x + half * std::cos (a), middle.y + half * std::sin (a)};
    if (!_Crowd.HasRoom (from, to)) return;
    _Crowd.Add (from, to);
    double turn = std::remainder (mark->direction, 360.0);
    const bool isFlipped = turn > 90.0 || turn <= -90.0;
    if (isFlipped) turn = std::remainder (turn + 180.0, 360.0);
    svg.Words ("faint", Beside (*mark, isFlipped ? 2.3 : 3.7), text, "middle", turn);
  }

  const NorvathRoad& _Road;
  const std::vector<Stretch>& _Stretches;
  double _Length = 0.0;  // metres
  double _Scale = 0.0;   // one to
  Point _Middle;         // east, north
  Crowd _Crowd;
};

}  // namespace

double DrawPlan (Svg& svg, const NorvathRoad& road, const std::vector<Stretch>& stretches) {
  Plan plan (road, stretches);
  plan.Draw (svg);
  return plan.Scale ();
}

}  // namespace clxml::tool
