// The index of a file without records that is linked to a job.
// Whoever reads such a file appends its objects; the index then takes part in searches by name and
// in selections.
#pragma once

#include "Library/index/dbindex.h"
#include "Library/index/dbselection.h"

namespace clxml {

/// An index of linked objects (linkedobject.h). JobFile::LinkIndex links it to a job.
class LinkedFile final : public dbIndex {
 public:
  /// kind is CommaSeparatedFile or BackgroundFile; path is the file's.
  LinkedFile (FileType kind, const Str& path);
  ~LinkedFile () override;

  void Clear () override;
  void GetFileName (Str& out) const override { out = _Path; }
  /// Objects that were appended since the last call are entered first.
  dbSelection& GetSelection () override;
  void SearchName (const Str& name, search_Results& results, uint32_t& status) override;
  /// The geometry of such an object is known from the start: sets its flags.
  void ComputeObject (dbObject& object) override;
  /// Searches the main job and all that is linked to it.
  void ComputeStatus (dbObject& object) override;

 private:
  Str _Path;
  dbSelection _All;
};

}  // namespace clxml
