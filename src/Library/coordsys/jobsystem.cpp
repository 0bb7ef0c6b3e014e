// The coordinate system of a job: correction of file names, project height, assembly.
#include "Library/coordsys/jobsystem.h"

#include "Library/coordsys/transfrm.h"
#include "platform/filesys.h"

namespace clxml {
namespace {

// Replaces a stored file name by the base name of the file that serves, or by the empty name if
// none does. True if a file was found under another name.
bool CorrectName (Str& name, const char* extension) {
  const file_Class found = FindSupportFile (name, (Str ("*.") + extension).Data ());
  if (found.Name == name) return false;
  name = found.Name;
  return !name.IsEmpty ();
}

}  // namespace

const char* coordsys_ExtensionOf (coordsys_SupportFile file) {
  switch (file) {
    case COORDSYS_GeoidFile:
      return "GGF";
    case COORDSYS_DatumGridFile:
      return "CDG";
    case COORDSYS_ProjectionGridFile:
      return "PJG";
    case COORDSYS_ShiftGridFile:
      return "SGF";
    default:
      return "PGF";
  }
}

Str coordsys_FindFile (const Str& storedName, const char* extension) {
  const Str& name = storedName;
  if (name.IsEmpty () || name.Contains ('\\') || name.Contains ('/') || name.Contains (':'))
    return {};
  const file_Class found = FindSupportFile (name, (Str ("*.") + extension).Data ());
  return found.Name.IsEmpty () ? Str () : found.GetWholeName ();
}

std::unique_ptr<Transform> coordsys_AssembleJob (const dbAccess& job, uint32_t options,
                                                 coordsys_JobSystem& system,
                                                 coordsys_Error& error) {
  system = {};
  coordsys_Parts& parts = system.Parts;
  coordsys_FileNames& names = system.FileNames;
  parts = coordsys_PartsOf (job);
  parts.Options |= options;
  error = COORDSYS_NoError;

  if ((parts.Options & COORDSYS_UsesGeoidFile) != 0) {
    names[COORDSYS_GeoidFile] = parts.Height.GeoidFilename;
    system.IsGeoidRenamed =
        CorrectName (parts.Height.GeoidFilename, coordsys_ExtensionOf (COORDSYS_GeoidFile));
  }
  if ((parts.Options & COORDSYS_UsesDatumGrid) != 0) {
    names[COORDSYS_DatumGridFile] = parts.Datum.GridName;
    system.IsDatumGridRenamed =
        CorrectName (parts.Datum.GridName, coordsys_ExtensionOf (COORDSYS_DatumGridFile));
  }
  const coordsys_Projection& projection = parts.Projection;
  if (projection.ProjectionType == COORDSYS_UnitedKingdomNationalGrid) {
    names[COORDSYS_UKNorthFile] = projection.UKNorthGridFile;
    names[COORDSYS_UKEastFile] = projection.UKEastGridFile;
  } else if (projection.ProjectionType == COORDSYS_ProjectionGrid) {
    names[COORDSYS_ProjectionGridFile] = projection.ProjectionGridFile;
  }
  if (projection.ProjectionType != COORDSYS_NoProjection &&
      projection.ProjectionType != COORDSYS_ScaleOnly) {
    if ((parts.Options & COORDSYS_AllowNoProjectHeight) == 0 &&
        maths_IsNull (projection.GroundScale.ProjectLocation.Height)) {
      error = COORDSYS_NoProjectHeight;
      return nullptr;
    }
    names[COORDSYS_ShiftGridFile] = projection.ShiftGridFile;
  }

  auto transform = std::make_unique<Transform> ();
  // An assembly takes only the parts of the mask, which a projection of type 0 has no bit in. Its
  // type counts all the same: a job without any projection record computes on a plane, this one
  // does not.
  if (projection.ProjectionType == COORDSYS_NoProjection)
    transform->Projection.ProjectionType = COORDSYS_NoProjection;
  if (!transform->Set (parts.Components, &parts.Ellipsoid, &projection, &parts.Datum, &parts.Plane,
                       &parts.Height, &parts.Corrections, parts.Options, &error))
    return nullptr;
  return transform;
}

}  // namespace clxml
