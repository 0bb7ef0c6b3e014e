/* What the host in C offers to the tests. */
#ifndef EXPORTS_H
#define EXPORTS_H

#include "clxmli.h"

#ifdef __cplusplus
extern "C" {
#endif

/* An import through the C header. */
uint32_t ImportFromC (const char* xmlPath, const char* jobPath, clxmli_Progress progress);
/* Fetches the names of all extra output files in order, each as a host path and a line feed; their
 * number, -1 when something does not fit. */
int ExtraOutputFilesFromC (char* names, size_t size);

#ifdef __cplusplus
}
#endif

#endif
