/* The C interface as a host in C sees it: that it compiles, and what its helpers do.
 * The tests in C++ call what stands here. Leans on clxmli.h. */
#include "import/exports.h"

#include <string.h>

#include "clxmli.h"

uint32_t ImportFromC (const char* xmlPath, const char* jobPath, clxmli_Progress progress) {
  return ImportCLXMLFile (xmlPath, jobPath, progress);
}

int ExtraOutputFilesFromC (char* names, size_t size) {
  uint16_t wide[CLXMLI_NAME_UNITS];
  char name[3 * CLXMLI_NAME_UNITS];
  const int32_t count = clxmli_ExtraOutputFileCount ();
  int32_t i;
  names[0] = '\0';
  for (i = 0; i < count; i++) {
    clxmli_GetExtraOutputFileName (wide, i);
    if (!clxmli_HostPath (wide, name, sizeof name)) return -1;
    if (strlen (names) + strlen (name) + 2 > size) return -1;
    strcat (names, name);
    strcat (names, "\n");
  }
  return (int)count;
}
