// The list of extra output files. Leans on str.
#include "import/extraoutput.h"

namespace clxml {

namespace {

StrArray& Files () {
  static StrArray files;
  return files;
}

}  // namespace

void AddExtraOutputFile (const Str& path) { Files ().Add (path); }

int32_t ExtraOutputFileCount () noexcept { return Files ().Count (); }

Str TakeExtraOutputFile (int32_t index) {
  StrArray& files = Files ();
  Str path;
  if (index < 0 || index >= files.Count ()) return path;
  path = files[index];
  if (index == files.Count () - 1) files.Clear ();
  return path;
}

}  // namespace clxml
