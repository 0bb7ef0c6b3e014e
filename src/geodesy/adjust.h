// The adjustments of the grid in a block's bytes: a similarity and an inclined plane.
// What they do to a point is declared with the other stages, in csib. Leans on csib.
#pragma once

#include "geodesy/csib.h"

namespace clxml {

// The six and the five doubles of a part as they stand in the bytes: with the origin's true values
// if `isTrueOrigin`, in which case the false origin is taken off on reading and added on writing.

csib_Status csib_ReadHorizontal (csib_Block& block, csib_Bytes& in, bool isTrueOrigin);
csib_Status csib_ReadVertical (csib_Block& block, csib_Bytes& in, bool isTrueOrigin);
void csib_WriteHorizontal (const csib_Block& block, csib_Writer& out) noexcept;
void csib_WriteVertical (const csib_Block& block, csib_Writer& out) noexcept;

}  // namespace clxml
