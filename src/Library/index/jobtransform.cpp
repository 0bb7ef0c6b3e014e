// The transform of a job: assembled from its records when it is first used, and again after a
// coordinate system record was committed.
#include "Library/coordsys/jobsystem.h"
#include "Library/index/jobfile.h"
#include "Library/records/dbCoordSystems.h"

namespace clxml {

const Transform& JobFile::CurrentTransform () {
  if (!_IsTransformStale) return *_Transform;
  constexpr uint32_t tolerant = COORDSYS_TolerateMissingFiles | COORDSYS_AllowNoProjectHeight;
  coordsys_Error error = COORDSYS_NoError;
  if (RebuildTransform (error, tolerant)) return *_Transform;

  // Reported once: the next attempt follows the next change of the coordinate system.
  _IsTransformStale = false;
  LogNumber ("Coordinate system of the job cannot be used, error", static_cast<uint32_t> (error));
  if (!_Transform) UseCorrectionsAlone ();
  return *_Transform;
}

coordsys_CogoSettings JobFile::CogoSystem () {
  CurrentTransform ();
  return _CogoSystem;
}

bool JobFile::RebuildTransform (coordsys_Error& error, uint32_t options,
                                std::array<Str, 6>* fileNames) {
  error = COORDSYS_InternalError;
  if (!Database) return false;
  coordsys_JobSystem system;
  std::unique_ptr<Transform> made = coordsys_AssembleJob (*Database, options, system, error);
  if (fileNames) *fileNames = system.FileNames;
  if (made) UseTransform (std::move (made));
  StoreFileNames (system);
  if (error != COORDSYS_NoError && error != COORDSYS_FileMissingTolerated) return false;
  _IsTransformStale = false;
  return true;
}

void JobFile::UseTransform (std::unique_ptr<Transform> transform) {
  _CogoSystem = coordsys_CogoSystemOf (transform->Corrections, transform->Components,
                                       transform->Projection.ProjectionType);
  _Transform = std::move (transform);
  // What was derived under the old transform is as stale as after a commit.
  _Revision++;
  DropGrids ();
}

void JobFile::UseCorrectionsAlone () {
  auto transform = std::make_unique<Transform> ();
  if (Database) {
    const coordsys_Parts parts = coordsys_PartsOf (*Database);
    coordsys_Error ignored = COORDSYS_NoError;
    transform->Set (COORDSYS_SetCorrections, nullptr, nullptr, nullptr, nullptr, nullptr,
                    &parts.Corrections, COORDSYS_SkipAllFiles, &ignored);
  }
  UseTransform (std::move (transform));
}

// The records follow the files that were found. A job that is open for reading only, or in a group,
// keeps its records: the corrected name is then used without being stored.
void JobFile::StoreFileNames (const coordsys_JobSystem& system) {
  if (!system.IsGeoidRenamed && !system.IsDatumGridRenamed) return;
  if (!Database->Journal ().IsWritable () || Database->InGroup ()) return;
  Database->BeginGroup ();
  if (const auto* stored = db_Height::From (Database->GetLatestRecord (db_Height::Number));
      stored && system.IsGeoidRenamed) {
    db_Height renamed = *stored;
    renamed.GeoidFilename = system.Parts.Height.GeoidFilename;
    Database->AddAction (DBACTION_Replace, stored->RecordId, renamed);
  }
  if (const auto* stored = db_Datum::From (Database->GetLatestRecord (db_Datum::Number));
      stored && system.IsDatumGridRenamed) {
    db_Datum renamed = *stored;
    renamed.GridName = system.Parts.Datum.GridName;
    Database->AddAction (DBACTION_Replace, stored->RecordId, renamed);
  }
  Database->EndGroup ();
}

}  // namespace clxml
