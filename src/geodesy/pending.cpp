// Weak stand-ins for the tables and stages that are still being written, so that the library links.
// Every one of them is gone with its first real definition; this file goes with the last.
#include "geodesy/projections.h"

namespace clxml {

[[gnu::weak]] const csib_ProjectionOperations* csib_ProjectionTable (uint8_t) noexcept {
  return nullptr;
}
[[gnu::weak]] double csib_PlaneHeightDifference (const csib_Block&) noexcept { return 0.0; }

}  // namespace clxml
