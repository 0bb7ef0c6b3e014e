// A road as a drawing: the sheet that plan and long section stand on.
#include "roadsvg.h"

#include "roadsheet.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

constexpr Box sheet = {0.0, 0.0, 420.0, 297.0};

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

std::string RoadDrawing (const NorvathRoad& road) {
  const std::vector<Stretch> stretches = StretchesOf (road);
  if (stretches.empty ()) return {};
  const std::string name = CleanText (road.Name);

  Svg svg;
  svg.Add (
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%.0fmm\" height=\"%.0fmm\" "
      "viewBox=\"0 0 %.0f %.0f\" xml:space=\"preserve\">\n",
      sheet.Width (), sheet.Height (), sheet.Width (), sheet.Height ());
  svg.Raw ("<title>" + Escaped (name) + "</title>\n");
  svg.Raw (style);
  svg.Add (
      "<clipPath id=\"planclip\"><rect x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" "
      "height=\"%.2f\"/></clipPath>\n",
      SHEET_Plan.left, SHEET_Plan.top, SHEET_Plan.Width (), SHEET_Plan.Height ());
  svg.Add (
      "<rect x=\"0\" y=\"0\" width=\"%.0f\" height=\"%.0f\" style=\"fill:#fff;stroke:none\"/>\n",
      sheet.Width (), sheet.Height ());
  svg.Rectangle ("frame", {6.0, 6.0, sheet.right - 6.0, sheet.bottom - 6.0});
  svg.Words ("title", {SHEET_Plan.left, 15.0}, name);
  const double plan = DrawPlan (svg, road, stretches);
  const auto [scale, exaggeration] = DrawSection (svg, road, stretches);
  const auto oneTo = [] (double denominator) {
    return "1:" + NumberText (denominator, DecimalsOf (denominator));
  };
  std::string scales = "station " + StationText (road.StartChainage ()) + " to " +
                       StationText (road.EndChainage ()) + "    plan " + oneTo (plan) +
                       "    long section " + oneTo (scale);
  if (exaggeration > 0.0)
    scales += ", heights " + oneTo (scale / exaggeration) + " (" +
              NumberText (exaggeration, DecimalsOf (exaggeration)) + " times)";
  svg.Words ("note", {SHEET_Plan.right, 15.0}, scales, "end");
  svg.Raw ("</svg>\n");
  return svg.Take ();
}

}  // namespace clxml::tool
