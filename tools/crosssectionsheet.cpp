// Cross sections as a drawing: sheets of sections to one scale, each over a table of its nodes.
#include <algorithm>
#include <array>
#include <cmath>

#include "crosssection.h"
#include "roadsheet.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

constexpr double sheetWidth = 420.0, sheetHeight = 297.0;  // A3, millimetres
constexpr Box body = {12.0, 24.0, 408.0, 280.0};           // of the sections on a sheet
constexpr double labelWidth = 24.0;                        // of titles and levels on the left
constexpr double columnWidth = 3.4;                        // of the label of one node
constexpr double fanHeight = 6.0;                          // where leaders spread to the columns
constexpr double slopeHeight = 1.0, slopeReach = 3.0;      // metres of a side slope that is shown
constexpr double groundReach = 50.0;                       // metres to the ground, at most
constexpr std::size_t mostNodes = 2000;                    // drawn of one section
constexpr double wordsWidth = 13.0;  // for the words of a side slope, on each side
constexpr std::array scaleSteps = {1.0, 1.25, 2.0, 2.5, 3.0, 4.0, 5.0, 7.5};
constexpr std::array exaggerations = {10.0, 5.0, 2.0, 1.0};

// The rows of the table below a section: title and height in millimetres.
struct Row {
  const char* title;
  double height;
};
constexpr Row rows[] = {
    {"Code", 14.0}, {"Offset", 12.0}, {"Level", 13.0}, {"Width", 9.0}, {"Grade outwards %", 9.0}};
constexpr double tableHeight = 14.0 + 12.0 + 13.0 + 9.0 + 9.0;

// A side slope as drawn: its places from the last node on (offset, elevation), and its words from
// long to short.
struct Slope {
  std::vector<Point> places;
  bool isFill;
  std::vector<std::string> words;
};

// A section as places, before any scale.
class Picture {
 public:
  Picture (const roadxs_CrossSection& section, std::optional<double> ground) : _Section (section) {
    TakeNodes ();
    if (ground && IsUsable (*ground) && IsUsable (section.Coordinate.Elevation))
      _Ground = section.Coordinate.Elevation + *ground;
    for (const dbroad_Side side : {DBROAD_SideLeft, DBROAD_SideRight}) TakeSlopes (side);
    MeasureExtent ();
  }

  const roadxs_CrossSection& Section () const { return _Section; }
  // From left to right; the centre is one of them, unless it has no elevation.
  const std::vector<roadxs_Node>& Nodes () const { return _Nodes; }
  std::size_t Centre () const { return _Centre; }
  const std::vector<Slope>& Slopes () const { return _Slopes; }
  const std::optional<double>& Ground () const { return _Ground; }
  // Offsets from left to right, elevations from top to bottom.
  const Box& Extent () const { return _Extent; }

 private:
  static bool IsDrawn (const roadxs_Node& node) {
    return IsUsable (node.Offset) && IsUsable (node.Elevation);
  }

  void TakeNodes () {
    const auto add = [this] (const std::vector<roadxs_Node>& nodes, auto begin, auto end) {
      const std::size_t step = nodes.size () / (mostNodes / 2) + 1;
      std::size_t i = 0;
      for (auto node = begin; node != end; ++node, i++)
        if (IsDrawn (*node) && (i % step == 0 || i + 1 == nodes.size ())) _Nodes.push_back (*node);
    };
    const std::vector<roadxs_Node>& left = _Section.Left ().Nodes;
    const std::vector<roadxs_Node>& right = _Section.Right ().Nodes;
    add (left, left.rbegin (), left.rend ());
    _Centre = _Nodes.size ();
    if (IsDrawn (_Section.Centre)) _Nodes.push_back (_Section.Centre);
    add (right, right.begin (), right.end ());
  }

  void TakeSlopes (dbroad_Side at) {
    const roadxs_Side& side = _Section.Side (at);
    const Point end = {_Section.EndOffset (at).Offset, _Section.EndElevation (at)};
    if (!side.HasBatter || !IsUsable (end.x) || !IsUsable (end.y)) return;
    const double sign = at == DBROAD_SideRight ? 1.0 : -1.0;
    const bool isFill = _Ground && end.y > *_Ground;
    if (!_Ground || isFill) TakeSlope (side, end, sign, true);
    if (!_Ground || !isFill) TakeSlope (side, end, sign, false);
  }

  void TakeSlope (const roadxs_Side& side, Point end, double sign, bool isFill) {
    const double rise = maths_Tan (isFill ? maths_Negate (side.FillGrade) : side.CutGrade);
    if (!IsUsable (rise)) return;
    Slope slope{{end}, isFill, {}};
    if (!isFill && IsUsable (side.CutDitchWidth) && side.CutDitchWidth != 0.0)
      slope.places.push_back ({end.x + sign * std::abs (side.CutDitchWidth), end.y});
    const double height = _Ground ? *_Ground - end.y : std::copysign (slopeHeight, rise);
    double reach = rise != 0.0 ? height / rise : -1.0;
    const bool isMet = _Ground && reach >= 0.0 && reach <= groundReach;
    // A slope that does not meet the ground is shown as without one.
    if (!isMet && !(reach >= 0.0 && reach <= slopeReach)) reach = slopeReach;
    const Point from = slope.places.back ();
    slope.places.push_back ({from.x + sign * reach, from.y + rise * reach});
    const std::string grade = (isFill ? "fill " : "cut ") + NumberText (rise * 100.0, 1) + "%";
    const std::string toe = isMet ? " to " + NumberText (slope.places.back ().x) : std::string ();
    std::string both = grade;
    if (std::abs (rise) > 0.001) both += " (1:" + NumberText (1.0 / std::abs (rise), 2) + ")";
    if (!side.BatterCode.IsEmpty ())
      slope.words.push_back (CleanText (side.BatterCode) + " " + both + toe);
    slope.words.push_back (both + toe);
    slope.words.push_back (grade + toe);
    slope.words.push_back (grade);
    _Slopes.push_back (std::move (slope));
  }

  void MeasureExtent () {
    const auto widen = [this] (double offset, double elevation) {
      _Extent = {std::min (_Extent.left, offset), std::max (_Extent.top, elevation),
                 std::max (_Extent.right, offset), std::min (_Extent.bottom, elevation)};
    };
    for (const roadxs_Node& node : _Nodes) widen (node.Offset, node.Elevation);
    for (const Slope& slope : _Slopes)
      for (const Point& place : slope.places) widen (place.x, place.y);
    if (_Extent.left > _Extent.right) _Extent = {-5.0, 0.0, 5.0, 0.0};
    if (_Ground) widen (0.0, *_Ground);
    // A section is seen about its centre line, and never as a point.
    widen (-1.0, _Extent.top);
    widen (1.0, _Extent.top);
  }

  const roadxs_CrossSection& _Section;
  std::vector<roadxs_Node> _Nodes;
  std::size_t _Centre = 0;
  std::vector<Slope> _Slopes;
  std::optional<double> _Ground;
  Box _Extent = {1e300, -1e300, -1e300, 1e300};
};

// Columns for labels: as near as possible to their nodes, in the same order, one column width
// apart. By the pool adjacent violators algorithm (Ayer et al., 1955).
std::vector<double> ColumnsFor (const std::vector<double>& wanted, double left, double right) {
  struct Block {
    double sum;
    double count;
  };
  std::vector<Block> blocks;
  for (std::size_t i = 0; i < wanted.size (); i++) {
    blocks.push_back ({wanted[i] - static_cast<double> (i) * columnWidth, 1.0});
    while (blocks.size () > 1) {
      const Block last = blocks.back ();
      Block& before = blocks[blocks.size () - 2];
      if (before.sum / before.count <= last.sum / last.count) break;
      before = {before.sum + last.sum, before.count + last.count};
      blocks.pop_back ();
    }
  }
  const double room = right - left - static_cast<double> (wanted.size () - 1) * columnWidth;
  std::vector<double> columns;
  for (const Block& block : blocks)
    for (double k = 0.0; k < block.count; k++)
      columns.push_back (left +
                         std::clamp (block.sum / block.count - left, 0.0, std::max (room, 0.0)) +
                         static_cast<double> (columns.size ()) * columnWidth);
  return columns;
}

// One section in its box.
class Cell {
 public:
  Cell (const Picture& picture, const Box& box, double scale, double exaggeration)
      : _Picture (picture),
        _Box (box),
        _Plot (PlotOf (box)),
        _Scale (scale),
        _Exaggeration (exaggeration) {
    const Box& extent = picture.Extent ();
    _Middle = (extent.left + extent.right) / 2.0;
    const double metre = 1000.0 * exaggeration / scale;
    _HeightStep = RoundUp (5.0 / metre, SHEET_GridSteps);
    _Datum = (std::floor (extent.bottom / _HeightStep) - 1.0) * _HeightStep;
  }

  // Where the section itself is drawn.
  static Box PlotOf (const Box& box) {
    return {box.left + labelWidth, box.top + 13.0, box.right - 3.0,
            box.bottom - tableHeight - fanHeight};
  }
  // Metres on the sheet that heights need: with a step below and room for words above and below.
  static double HeightNeeded (const Box& extent, double scale, double exaggeration) {
    const double metre = 1000.0 * exaggeration / scale;
    const double step = RoundUp (5.0 / metre, SHEET_GridSteps);
    return (extent.top - extent.bottom + 2.0 * step) * metre + 6.0;
  }

  void Draw (Svg& svg) const {
    Head (svg);
    Levels (svg);
    Ground (svg);
    CentreLine (svg);
    for (const Slope& slope : _Picture.Slopes ()) DrawSlope (svg, slope);
    Nodes (svg);
  }

 private:
  double X (double offset) const {
    return (_Plot.left + _Plot.right) / 2.0 +
           std::clamp ((offset - _Middle) * 1000.0 / _Scale, -1000.0, 1000.0);
  }
  double Y (double elevation) const {
    return _Plot.bottom -
           std::clamp ((elevation - _Datum) * 1000.0 * _Exaggeration / _Scale, -1000.0, 1000.0);
  }
  Point At (const roadxs_Node& node) const { return {X (node.Offset), Y (node.Elevation)}; }

  void Head (Svg& svg) const {
    const roadxs_CrossSection& section = _Picture.Section ();
    const auto named = [] (const roadxs_Side& side) {
      std::string text = side.Template.IsEmpty () ? "none" : CleanText (side.Template);
      if (side.HasBatter && !side.BatterCode.IsEmpty ())
        text += ", slope " + CleanText (side.BatterCode);
      return text;
    };
    svg.Words ("station", {_Box.left, _Box.top + 4.0}, StationText (section.Station));
    svg.Words ("note", {_Box.left + 32.0, _Box.top + 4.0},
               "left " + named (section.Left ()) + "   right " + named (section.Right ()));
    std::string levels = "profile " + NumberText (section.Coordinate.Elevation) + "   north " +
                         NumberText (section.Coordinate.North) + "   east " +
                         NumberText (section.Coordinate.East);
    svg.Words ("small", {_Box.left + 32.0, _Box.top + 8.0}, levels);
  }

  void Levels (Svg& svg) const {
    if (_Picture.Nodes ().empty ()) return;
    const double top = _Datum + _Plot.Height () * _Scale / (1000.0 * _Exaggeration);
    ForMultiples (_Datum, top, _HeightStep, [&] (double elevation) {
      const double y = Y (elevation);
      if (y < _Plot.top) return;
      svg.Line (elevation < _Datum + _HeightStep / 2.0 ? "datum" : "grid", {_Plot.left, y},
                {_Plot.right, y});
      svg.Words ("small", {_Plot.left - 1.0, y + 0.7},
                 NumberText (elevation, DecimalsOf (_HeightStep)), "end");
    });
    svg.Words ("small", {_Box.left, Y (_Datum) + 0.7}, "datum");
  }

  void Ground (Svg& svg) const {
    if (!_Picture.Ground ()) return;
    const double y = Y (*_Picture.Ground ());
    svg.Line ("ground", {_Plot.left, y}, {_Plot.right, y});
    // Beside the centre line, and clear of the section: the slopes' words are at the ends.
    const double centre = Y (_Picture.Section ().Centre.Elevation);
    svg.Words ("faint", {X (0.0) + 2.0, centre < y ? y + 2.8 : y - 1.0},
               "ground " + NumberText (*_Picture.Ground ()));
  }

  void CentreLine (Svg& svg) const {
    const double x = X (0.0);
    svg.Line ("axis", {x, _Plot.top}, {x, _Plot.bottom});
    svg.Words ("small", {x, _Plot.top - 0.8}, "CL", "middle");
  }

  void DrawSlope (Svg& svg, const Slope& slope) const {
    std::vector<Point> places;
    for (const Point& place : slope.places) places.push_back ({X (place.x), Y (place.y)});
    svg.Path (slope.isFill ? "fillslope" : "cutslope", places);
    // The longest words for which there is room outside the slope; without any, the words run back
    // over the slope. Above a cut and below a fill they are clear of the ground.
    const Point end = places.back ();
    const bool isRight = end.x > places.front ().x;
    const double room = (isRight ? _Plot.right - end.x : end.x - _Plot.left) - 1.5;
    const auto fitting =
        std::find_if (slope.words.begin (), slope.words.end (), [room] (const std::string& words) {
          return 1.15 * static_cast<double> (words.size ()) <= room;
        });
    const bool isOutside = fitting != slope.words.end ();
    svg.Words (slope.isFill ? "fillword" : "cutword",
               {end.x + (!isOutside ? 0.0
                         : isRight  ? 1.0
                                    : -1.0),
                slope.isFill ? end.y + 2.6 : end.y - 0.8},
               isOutside ? *fitting : slope.words.front (), isRight == isOutside ? "start" : "end");
  }

  // The section line, and the table of its nodes.
  void Nodes (Svg& svg) const {
    const std::vector<roadxs_Node>& nodes = _Picture.Nodes ();
    if (nodes.empty ()) {
      svg.Words ("faint", {_Plot.left + 3.0, (_Plot.top + _Plot.bottom) / 2.0},
                 "no design elevation at this station");
      return;
    }
    std::vector<std::size_t> labelled = LabelledNodes ();
    std::vector<double> wanted;
    for (const std::size_t i : labelled) wanted.push_back (X (nodes[i].Offset));
    const std::vector<double> columns =
        ColumnsFor (wanted, _Plot.left + columnWidth / 2.0, _Plot.right - columnWidth / 2.0);
    Frames (svg, labelled.size () < nodes.size ());
    const double tableTop = _Plot.bottom + fanHeight;
    const double nodesBottom = tableTop + rows[0].height + rows[1].height + rows[2].height;
    for (std::size_t i = 0; i < labelled.size (); i++) {
      const Point at = At (nodes[labelled[i]]);
      svg.Path ("leader", {at, {at.x, _Plot.bottom}, {columns[i], tableTop}});
    }
    std::vector<Point> line;
    for (const roadxs_Node& node : nodes) line.push_back (At (node));
    svg.Path ("section", line);
    for (std::size_t i = 0; i < labelled.size (); i++) {
      const roadxs_Node& node = nodes[labelled[i]];
      svg.Circle (labelled[i] == _Picture.Centre () ? "solid" : "open", At (node), 0.6);
      Label (svg, columns[i], tableTop, node, labelled[i] == _Picture.Centre ());
      if (i == 0) continue;
      const bool areNeighbours = labelled[i - 1] + 1 == labelled[i];
      if (areNeighbours) Strip (svg, columns[i - 1], columns[i], nodesBottom, labelled[i]);
    }
    for (const double column : {columns.front (), columns.back ()})
      svg.Line ("grid", {column, nodesBottom}, {column, _Box.bottom});
  }

  // All nodes that columns have room for: of more nodes, an even selection with the centre.
  std::vector<std::size_t> LabelledNodes () const {
    const std::size_t count = _Picture.Nodes ().size ();
    const auto room = static_cast<std::size_t> (_Plot.Width () / columnWidth);
    const std::size_t step = count / room + 1;
    std::vector<std::size_t> labelled;
    for (std::size_t i = 0; i < count; i++)
      if (i % step == 0 || i == _Picture.Centre () || i + 1 == count) labelled.push_back (i);
    // Labels run from left to right, whatever a section with negative widths does.
    const auto& nodes = _Picture.Nodes ();
    std::stable_sort (labelled.begin (), labelled.end (), [&] (std::size_t a, std::size_t b) {
      return nodes[a].Offset < nodes[b].Offset;
    });
    if (labelled.size () > room) labelled.resize (room);
    return labelled;
  }

  void Frames (Svg& svg, bool isSelection) const {
    double y = _Plot.bottom + fanHeight;
    for (const Row& row : rows) {
      svg.Rectangle ("frame", {_Box.left, y, _Plot.right, y + row.height});
      svg.Words ("small", {_Box.left + 1.0, y + row.height / 2.0 + 0.7}, row.title);
      y += row.height;
    }
    svg.Line ("frame", {_Plot.left, _Plot.bottom + fanHeight}, {_Plot.left, y});
    if (isSelection)
      svg.Words ("faint", {_Plot.left + 3.0, _Plot.top + 3.0}, "not all nodes are labelled");
  }

  void Label (Svg& svg, double x, double top, const roadxs_Node& node, bool isCentre) const {
    const std::string texts[] = {
        isCentre && node.Code.IsEmpty () ? std::string ("CL") : CleanText (node.Code),
        NumberText (node.Offset), NumberText (node.Elevation)};
    for (std::size_t i = 0; i < 3; i++) {
      top += rows[i].height;
      svg.Words ("cell", {x + 0.7, top - 1.0}, Fitted (texts[i], rows[i].height - 2.0), "start",
                 -90.0);
    }
  }

  // Width and grade between two neighbouring nodes.
  void Strip (Svg& svg, double from, double to, double top, std::size_t node) const {
    const roadxs_Node& b = _Picture.Nodes ()[node];
    const roadxs_Node& a = _Picture.Nodes ()[node - 1];
    const double width = b.Offset - a.Offset;
    const double rise = (b.Elevation - a.Elevation) * (node > _Picture.Centre () ? 1.0 : -1.0);
    const bool isVertical = std::abs (width) < 0.0005;
    const std::string texts[] = {
        isVertical ? "0" : NumberText (std::abs (width), 2),
        isVertical ? "step" : NumberText (rise / std::abs (width) * 100.0, 2)};
    svg.Line ("grid", {from, top}, {from, top + rows[3].height + rows[4].height});
    for (std::size_t i = 0; i < 2; i++) {
      const double height = rows[3 + i].height;
      const double x = (from + to) / 2.0, middle = top + height / 2.0;
      if (1.25 * static_cast<double> (texts[i].size ()) + 1.0 < to - from)
        svg.Words ("cell", {x, middle + 0.7}, texts[i], "middle");
      else
        svg.Words ("cell", {x + 0.7, middle}, texts[i], "middle", -90.0);
      top += height;
    }
  }

  // The text, or its beginning, in so many millimetres.
  static std::string Fitted (const std::string& text, double room) {
    const auto most = static_cast<std::size_t> (room / 1.25);
    if (text.size () <= most) return text;
    std::size_t end = most - 1;
    while (end > 0 && (static_cast<unsigned char> (text[end]) & 0xC0) == 0x80) end--;
    return text.substr (0, end) + "…";
  }

  const Picture& _Picture;
  Box _Box, _Plot;
  double _Scale, _Exaggeration;
  double _Middle = 0.0;  // the offset in the middle of the box
  double _HeightStep = 1.0;
  double _Datum = 0.0;
};

constexpr const char* sectionStyle = R"(<style>
.station { font-size: 3.4px; font-weight: bold; }
.cell { font-size: 1.9px; }
.section { stroke: #222; stroke-width: 0.5px; stroke-linejoin: round; }
.leader { stroke: #aab; stroke-width: 0.12px; }
.axis { stroke: #667; stroke-width: 0.15px; stroke-dasharray: 3 0.8 0.6 0.8; }
.datum { stroke: #667; stroke-width: 0.2px; }
.ground { stroke: #5a7d3a; stroke-width: 0.3px; stroke-dasharray: 1.6 0.8; }
.cutslope { stroke: #b8322a; stroke-width: 0.35px; stroke-dasharray: 2 0.8; }
.fillslope { stroke: #1f6fb2; stroke-width: 0.35px; stroke-dasharray: 2 0.8; }
.cutword { fill: #b8322a; } .fillword { fill: #1f6fb2; }
.cutword, .fillword { paint-order: stroke; stroke: #fff; stroke-width: 0.7px; }
</style>
)";

// A bar of some 40 mm in round metres.
void ScaleBar (Svg& svg, double scale, Point at) {
  const double metres = RoundUp (25.0 * scale / 1000.0, SHEET_GridSteps);
  const double part = metres * 1000.0 / scale / 2.0;
  const int decimals = DecimalsOf (metres / 2.0);
  svg.Rectangle ("solid", {at.x, at.y, at.x + part, at.y + 1.0});
  svg.Rectangle ("open", {at.x + part, at.y, at.x + 2.0 * part, at.y + 1.0});
  for (int i = 0; i < 3; i++)
    svg.Words ("small", {at.x + i * part, at.y + 3.4}, NumberText (metres / 2.0 * i, decimals),
               "middle");
  svg.Words ("small", {at.x + 2.0 * part + 3.5, at.y + 3.4}, "m");
}

}  // namespace

std::string SectionDrawing (const std::string& road,
                            const std::vector<roadxs_CrossSection>& sections,
                            std::optional<double> ground) {
  std::vector<Picture> pictures;
  for (const roadxs_CrossSection& section : sections)
    if (!maths_IsNull (section.Station) && pictures.size () < SECTIONS_MostDrawn)
      pictures.emplace_back (section, ground);
  if (pictures.empty ()) return {};

  // One section has the sheet, more have a quarter of it each, from top left to bottom right.
  const int columns = pictures.size () == 1 ? 1 : 2, lines = columns;
  const auto perSheet = static_cast<std::size_t> (columns * lines);
  const auto boxOf = [&] (std::size_t place) {
    constexpr double gap = 6.0;
    const double width = (body.Width () - gap * (columns - 1)) / columns;
    const double height = (body.Height () - gap * (lines - 1)) / lines;
    const double left =
        body.left +
        static_cast<double> (place % static_cast<std::size_t> (columns)) * (width + gap);
    const double top = body.top + static_cast<double> (place / static_cast<std::size_t> (columns)) *
                                      (height + gap);
    return Box{left, top, left + width, top + height};
  };
  const Box plot = Cell::PlotOf (boxOf (0));
  double scale = 10.0;
  for (const Picture& picture : pictures)
    scale =
        std::max (scale, picture.Extent ().Width () * 1000.0 / (plot.Width () - 2.0 * wordsWidth));
  scale = RoundUp (scale, scaleSteps);
  const auto allFit = [&] (double exaggeration) {
    return std::all_of (pictures.begin (), pictures.end (), [&] (const Picture& picture) {
      return Cell::HeightNeeded (picture.Extent (), scale, exaggeration) <= plot.Height ();
    });
  };
  while (!allFit (1.0) && scale < 1e15) scale = RoundUp (scale * 1.01, scaleSteps);
  double exaggeration = 1.0;
  for (const double wanted : exaggerations)
    if (allFit (wanted)) {
      exaggeration = wanted;
      break;
    }

  const std::size_t sheets = (pictures.size () + perSheet - 1) / perSheet;
  const auto oneTo = [] (double denominator) {
    return "1:" + NumberText (denominator, DecimalsOf (denominator));
  };
  Svg svg;
  svg.Open (road, sheetWidth, sheetHeight * static_cast<double> (sheets));
  svg.Raw (sectionStyle);
  for (std::size_t sheet = 0; sheet < sheets; sheet++) {
    svg.Add ("<g transform=\"translate(0 %.0f)\">\n", sheetHeight * static_cast<double> (sheet));
    svg.Rectangle ("frame", {6.0, 6.0, sheetWidth - 6.0, sheetHeight - 6.0});
    svg.Words ("title", {body.left, 15.0}, road);
    svg.Words ("note", {body.right, 15.0},
               "cross sections, looking forwards    scale " + oneTo (scale) + ", heights " +
                   oneTo (scale / exaggeration) + " (vertical exaggeration " +
                   NumberText (exaggeration, 0) + ")    sheet " + std::to_string (sheet + 1) +
                   " of " + std::to_string (sheets),
               "end");
    ScaleBar (svg, scale, {body.left + 6.0, 284.5});
    svg.Words ("small", {body.right, 287.9},
               "offsets and levels in metres, offsets to the right positive; red cut, blue fill",
               "end");
    for (std::size_t i = sheet * perSheet; i < std::min ((sheet + 1) * perSheet, pictures.size ());
         i++)
      Cell (pictures[i], boxOf (i % perSheet), scale, exaggeration).Draw (svg);
    svg.Raw ("</g>\n");
  }
  return svg.Close ();
}

}  // namespace clxml::tool
