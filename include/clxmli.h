/* The C interface of the job importer: exchange files (XML) become binary job files.
 * One call imports one job; two more hand out the names of the road files it wrote beside the job.
 * Plain C11 and C++; needs nothing but the C standard headers below.
 *
 * Paths. The library speaks the handheld's form of a path ("device form"): UTF-8, zero-terminated,
 * with backslashes between folders. Only a backslash names the folder of a job, which is where the
 * road files go. A host turns its own paths into that form with clxmli_DevicePath () and the names
 * that come back with clxmli_HostPath ().
 *
 * Threads. All work is done on the caller's thread, and one import at a time per process: the list
 * of extra output files is shared and not locked.
 */
#ifndef CLXMLI_H
#define CLXMLI_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define CLXMLI_API __attribute__ ((visibility ("default")))
#else
#define CLXMLI_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* What ImportCLXMLFile answers. There is no code 3. */
typedef enum ImportResult {
  /* The job file is complete and closed; every byte of it reached the file. */
  IMPORT_Ok = 0,
  /* The progress callback asked to stop. The job file is gone. */
  IMPORT_Cancelled = 1,
  /* The exchange file holds an error (syntax, a field, a reference), or the job could not be
   * written to its end. A job file made by this call is gone. */
  IMPORT_Failed = 2,
  /* xmlPath cannot be opened or does not begin with "<?xml", holds no job element, or something
   * stands behind its root. A job file made by this call is gone. */
  IMPORT_BadInput = 4,
  /* The job file could not be made: a file stands at jobPath already, or its folder does not take
   * one. Nothing was changed. */
  IMPORT_CannotCreateJob = 5
} ImportResult;

/* Hears of the progress, in percent from 0 to 100, once after each top-level element of the
 * exchange file and once more with 100 when an import has succeeded.
 * Only the low eight bits of what it answers count: all of them zero asks the import to stop, which
 * ends it with IMPORT_Cancelled. The answer to the last call, with 100 at the end, is ignored. The
 * type is a whole 32-bit word, of which the library looks at the low byte alone, so that a function
 * which sets no more than a byte (one that was compiled to return bool or unsigned char) may be
 * cast to it.
 * It runs on the caller's thread in the middle of the import and may take its time. It may call the
 * two functions for extra output files. It must not start another import and must leave both files
 * alone. */
typedef uint32_t (*clxmli_Progress) (uint32_t percent);

/* Imports the exchange file at xmlPath into a new job file at jobPath.
 *
 * Both are zero-terminated UTF-8 in device form; a null path is taken as an empty one. progress may
 * be null. The answer is one of the codes of ImportResult.
 *
 * A file that stands at jobPath already is never touched: the answer is IMPORT_CannotCreateJob. A
 * job file that this call made is deleted whenever the answer is not IMPORT_Ok. Road files written
 * before a failure stay, and so do their names.
 *
 * Errors are told by the code alone, and no exception of the library's own leaves the call. What
 * the callback throws, and a lack of memory (std::bad_alloc), passes through to the caller as it
 * is, after the files were closed and the job file deleted; a caller in C must see to it that its
 * callback throws nothing. */
CLXMLI_API uint32_t ImportCLXMLFile (const char* xmlPath, const char* jobPath,
                                     clxmli_Progress progress);

/* The number of names in the list of extra output files: the road files of all imports since the
 * list was last emptied. An import neither clears the list nor forgets it when it fails. */
CLXMLI_API int32_t clxmli_ExtraOutputFileCount (void);

/* Room that clxmli_GetExtraOutputFileName needs, in 16-bit units. */
#define CLXMLI_NAME_UNITS 260

/* Writes the name at index (0 to count - 1) to outBuffer, as zero-terminated 16-bit characters.
 *
 * outBuffer has room for CLXMLI_NAME_UNITS units; with a null pointer nothing happens at all. Any
 * other index gives the empty text. So does a name of 260 bytes of UTF-8 or more: it is not cut.
 *
 * Reading the last name empties the list. So ask for the count once and fetch the names from 0 on;
 * in any other order the names behind the one fetched as last are lost.
 *
 * Each UTF-8 sequence of one, two or three bytes is one unit. A sequence of four bytes comes as
 * four units with the values of its bytes; clxmli_HostPath () knows that. */
CLXMLI_API void clxmli_GetExtraOutputFileName (uint16_t* outBuffer, int32_t index);

/* Writes the device form of a host path: slashes become backslashes.
 * devicePath has room for size bytes, the terminator included; the result is never longer than
 * hostPath. Answers 1; or 0, with an empty devicePath if size allows, when there is not enough room
 * or hostPath holds a backslash, which no device path can name. */
static inline int clxmli_DevicePath (const char* hostPath, char* devicePath, size_t size) {
  size_t i;
  if (size == 0) return 0;
  for (i = 0; hostPath[i] != '\0' && hostPath[i] != '\\' && i + 1 < size; i++)
    devicePath[i] = hostPath[i] == '/' ? '\\' : hostPath[i];
  if (hostPath[i] != '\0') i = 0;
  devicePath[i] = '\0';
  return i != 0 || hostPath[0] == '\0';
}

/* Writes the host form, in UTF-8, of a name that clxmli_GetExtraOutputFileName gave: backslashes
 * become slashes, and the bytes are those of the name as the library holds it.
 * hostPath has room for size bytes, the terminator included; three times CLXMLI_NAME_UNITS is
 * always enough. Answers 1; or 0, with an empty hostPath if size allows, when there is not enough
 * room. */
static inline int clxmli_HostPath (const uint16_t* name, char* hostPath, size_t size) {
  size_t used = 0;
  if (size == 0) return 0;
  hostPath[0] = '\0';
  while (*name != 0) {
    unsigned char bytes[4];
    size_t count = 0, i;
    const unsigned unit = *name;
    if (unit >= 0xF0u && unit <= 0xF4u && name[1] >= 0x80u && name[1] <= 0xBFu &&
        name[2] >= 0x80u && name[2] <= 0xBFu && name[3] >= 0x80u && name[3] <= 0xBFu) {
      while (count < 4) bytes[count++] = (unsigned char)*name++; /* a sequence of four bytes */
    } else {
      name++;
      if (unit < 0x80u) {
        bytes[count++] = (unsigned char)(unit == '\\' ? '/' : unit);
      } else if (unit < 0x800u) {
        bytes[count++] = (unsigned char)(0xC0u | (unit >> 6));
        bytes[count++] = (unsigned char)(0x80u | (unit & 0x3Fu));
      } else {
        bytes[count++] = (unsigned char)(0xE0u | (unit >> 12));
        bytes[count++] = (unsigned char)(0x80u | ((unit >> 6) & 0x3Fu));
        bytes[count++] = (unsigned char)(0x80u | (unit & 0x3Fu));
      }
    }
    if (count >= size - used) {
      hostPath[0] = '\0';
      return 0;
    }
    for (i = 0; i < count; i++) hostPath[used++] = (char)bytes[i];
  }
  hostPath[used] = '\0';
  return 1;
}

#ifdef __cplusplus
}
#endif

#endif
