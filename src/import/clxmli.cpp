// The three exported functions.
// They turn the caller's texts into the library's and back, and nothing else. Leans on driver and
// extraoutput.
#include "clxmli.h"

#include <cstring>

#include "Library/base/unistr.h"
#include "import/driver.h"
#include "import/extraoutput.h"

uint32_t ImportCLXMLFile (const char* xmlPath, const char* jobPath, clxmli_Progress progress) {
  return clxml::ImportFile (clxml::Str (xmlPath), clxml::Str (jobPath), progress);
}

int32_t clxmli_ExtraOutputFileCount (void) { return clxml::ExtraOutputFileCount (); }

void clxmli_GetExtraOutputFileName (uint16_t* outBuffer, int32_t index) {
  if (!outBuffer) return;
  outBuffer[0] = 0;
  const clxml::Str name = clxml::TakeExtraOutputFile (index);
  if (name.Length () >= CLXMLI_NAME_UNITS) return;
  const clxml::UniStr wide = clxml::WideFromStr (name);
  std::memcpy (outBuffer, wide.Data (),
               (static_cast<size_t> (wide.Length ()) + 1) * sizeof (uint16_t));
}
