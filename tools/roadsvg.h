// A road as a drawing.
// One sheet in the size of A3 with plan and long section, as an engineer draws them. Leans on the
// road.
#pragma once

#include <string>

namespace clxml {
class NorvathRoad;
}

namespace clxml::tool {

/// The sheet as an SVG document in millimetres: the plan at a round scale with grid, north arrow,
/// scale bar, station ticks and the station of each change of element; below it the long section
/// with its exaggeration, grades and curves, and the bands of curvature and superelevation. What
/// the road lacks is left out. Empty when there is no line to draw. A road of any size gives a
/// drawing of bounded size.
std::string RoadDrawing (const NorvathRoad& road);

}  // namespace clxml::tool
