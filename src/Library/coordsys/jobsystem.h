// The coordinate system of a job, assembled from its newest records.
// The one place where the names of geoid and datum grid files are corrected by the files that
// exist.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "Library/coordsys/coordsys.h"
#include "str.h"

namespace clxml {

class Transform;
class dbAccess;

/// The support files that a coordinate system can name, in the order of coordsys_FileNames.
enum coordsys_SupportFile {
  COORDSYS_GeoidFile,
  COORDSYS_DatumGridFile,
  COORDSYS_UKNorthFile,
  COORDSYS_UKEastFile,
  COORDSYS_ProjectionGridFile,
  COORDSYS_ShiftGridFile,
  COORDSYS_SupportFileCount
};

/// The stored name of each support file, without directory and extension; empty where none is used.
using coordsys_FileNames = std::array<Str, COORDSYS_SupportFileCount>;

/// A job's coordinate system before its assembly.
struct coordsys_JobSystem {
  coordsys_Parts Parts;          ///< Options are those asked for and those that the records imply
  coordsys_FileNames FileNames;  ///< as stored, reported as far as the assembly came
  /// A geoid or datum grid file was found under another name than the stored one, which the part
  /// now has: the record in the job should follow.
  bool IsGeoidRenamed = false;
  bool IsDatumGridRenamed = false;
};

/// Assembles the transform of a job from its newest coordinate system records. `options` is a mask
/// of coordsys_Options. Without a projection record the projection type is COORDSYS_ScaleOnly with
/// scale 1; without a corrections record the values of a new one count.
///
/// Null with the error when there is no transform: COORDSYS_NoProjectHeight for a map projection
/// without a project height (unless `options` has COORDSYS_AllowNoProjectHeight), otherwise what
/// Transform::Set reports. `system` receives the parts and names in every case.
std::unique_ptr<Transform> coordsys_AssembleJob (const dbAccess& job, uint32_t options,
                                                 coordsys_JobSystem& system, coordsys_Error& error);

/// The whole name of the file that serves under a stored name: FindSupportFile with the mask of the
/// extension. Empty when there is none, and for a name that is empty or contains a separator or a
/// colon.
Str coordsys_FindFile (const Str& storedName, const char* extension);

/// The extension of a support file's kind, in upper case.
const char* coordsys_ExtensionOf (coordsys_SupportFile file);

}  // namespace clxml
