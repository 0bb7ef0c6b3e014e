// A road as a drawing: the sheet with plan and long section.
#include "roadsvg.h"

#include "roadsheet.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

constexpr Box sheet = {0.0, 0.0, 420.0, 297.0};

}  // namespace

std::string RoadDrawing (const NorvathRoad& road) {
  const std::vector<Stretch> stretches = StretchesOf (road);
  if (stretches.empty ()) return {};
  const std::string name = CleanText (road.Name);

  Svg svg;
  svg.Open (name, sheet.Width (), sheet.Height ());
  svg.Add (
      "<clipPath id=\"planclip\"><rect x=\"%.2f\" y=\"%.2f\" width=\"%.2f\" "
      "height=\"%.2f\"/></clipPath>\n",
      SHEET_Plan.left, SHEET_Plan.top, SHEET_Plan.Width (), SHEET_Plan.Height ());
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
  return svg.Close ();
}

}  // namespace clxml::tool
