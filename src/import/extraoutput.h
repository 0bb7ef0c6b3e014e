// The list of extra output files.
// The paths of the road files that imports wrote beside their jobs, kept for the process until the
// caller has read the last. Leans on str.
#pragma once

#include <cstdint>

#include "str.h"

namespace clxml {

/// Appends a path (device form). The list outlives imports and gathers the names of all of them.
/// Not locked.
void AddExtraOutputFile (const Str& path);
int32_t ExtraOutputFileCount () noexcept;
/// The path at an index, empty for any other. Taking the last one empties the list.
Str TakeExtraOutputFile (int32_t index);

}  // namespace clxml
