// Cross sections of a road as a table, as JSON and as a drawing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "road/roadxs.h"

namespace clxml::tool {

/// What is asked of each section.
struct SectionQuery {
  std::vector<double> offsets;   ///< metres, to the right positive
  std::optional<double> ground;  ///< height above the design elevation of the centre line, metres
};

/// The section as tables of places and offsets.
std::string SectionTable (const roadxs_CrossSection& section, const SectionQuery& query);
/// The section as one JSON object in one line; null for null, angles in radians.
std::string SectionJson (const roadxs_CrossSection& section, const SectionQuery& query);

/// The most sections that one drawing takes.
inline constexpr std::size_t SECTIONS_MostDrawn = 1000;

/// The sections as an SVG document in millimetres: one section on a sheet of A3, more sections four
/// to a sheet, the sheets one below the other. All sections have one scale and one exaggeration of
/// heights, which each sheet states. A section shows its nodes with codes, offsets and levels, the
/// widths and grades of its strips, and its side slopes in cut and fill; with a ground height, the
/// level ground and the slope that meets it. Empty if there is no section with a station.
std::string SectionDrawing (const std::string& road,
                            const std::vector<roadxs_CrossSection>& sections,
                            std::optional<double> ground);

}  // namespace clxml::tool
