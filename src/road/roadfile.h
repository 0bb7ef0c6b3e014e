// Road files at any path.
// NorvathRoad reads the files of the project folder by name; this reads one wherever it lies. Leans
// on RoadNorvath.
#pragma once

#include <cstddef>

#include "str.h"

namespace clxml {

class NorvathRoad;

/// How much memory the tree of a road file may take, in bytes: that of a road of some 90,000
/// elements. A file that needs more is refused.
inline constexpr std::size_t ROADFILE_MaximumSize = std::size_t{128} << 20;

/// As NorvathRoad::Load, and with horizontalOnly as NorvathRoad::LoadHorizontal, of the file at a
/// device path; FileName becomes the path, and Name what stands behind its last backslash, up to a
/// dot, until the file tells it. False, with the reason in the log, when the file cannot be read,
/// is no well-formed XML file of a road to its end or is too large; the lists of the road are then
/// as they were.
bool road_LoadFile (NorvathRoad& road, const Str& path, bool horizontalOnly = false);

}  // namespace clxml
