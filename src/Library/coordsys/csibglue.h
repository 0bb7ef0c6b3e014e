// From the parts of a coordinate system to the coordinate system block.
// Maps every part to the block's codes and parameter bytes, finds the files that parts name, and
// maps the block's statuses to errors. Leans on coordsys and the block.
#pragma once

#include <cstdint>
#include <memory>

#include "Library/coordsys/coordsys.h"
#include "geodesy/csib.h"

namespace clxml {

/// Builds a block from the parts whose bits are set in `components` (coordsys_Components), by way
/// of the block's bytes, so that a block in use has always been parsed. `options` is a mask of
/// coordsys_Options. False, with the error and no block, on a failure. True with
/// COORDSYS_FileMissingTolerated when COORDSYS_TolerateMissingFiles let a component go for want of
/// its file.
///
/// A file is looked for by the part's name in folder_Project, with the extension of its kind, then
/// where FindSupportFile finds one. A name that is empty or holds a separator or a colon names no
/// file. Each file that is missing or refused is named in a log line, unless `isQuiet`.
///
/// A number that is missing or cannot be (no ellipsoid, no finite value, a factor of 0 where one is
/// divided by) is refused as COORDSYS_InternalError; a Danish projection without an area asserts
/// "projection.Area != COORDSYS_AreaNone" before that.
bool csib_FromParts (std::unique_ptr<csib_Block>& block, uint16_t components,
                     const coordsys_Ellipsoid& ellipsoid, const coordsys_Projection& projection,
                     const coordsys_Datum& datum, const coordsys_Plane& plane,
                     const coordsys_Height& height, const coordsys_Corrections& corrections,
                     uint32_t options, coordsys_Error* error, bool isQuiet = false);

/// The error that a status of the block stands for outside the steps that open a file.
coordsys_Error coordsys_ErrorOf (csib_Status status) noexcept;

}  // namespace clxml
