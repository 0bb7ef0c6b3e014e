// Attacks the whole import with any bytes.
// Whatever the exchange file holds, a result code comes back, a finished job opens clean record for
// record, a failed import leaves no job, and road files stand in the job's folder. Leans on the
// library.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Library/job/dbaccess.h"
#include "clxmli.h"
#include "folder.h"

namespace {

using namespace clxml;

[[noreturn]] void Complain (const char* text, uint32_t result) {
  std::fprintf (stderr, "%s, result %u\n", text, result);
  std::abort ();
}

// The road files that the import made, which go again.
void RemoveRoads (const std::filesystem::path& folder) {
  uint16_t name[CLXMLI_NAME_UNITS];
  const int32_t count = clxmli_ExtraOutputFileCount ();
  if (count > 0) clxmli_GetExtraOutputFileName (name, count - 1);
  int32_t files = 0;
  for (const auto& entry : std::filesystem::directory_iterator (folder)) {
    if (entry.path ().extension () != ".rxl") continue;
    std::filesystem::remove (entry.path ());
    files++;
  }
  if (files > count) Complain ("more road files than names", 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size) {
  using fuzz::Device;
  static const fuzz::OwnFolder folder;
  const std::filesystem::path exchange = folder.path / "in.xml";
  const std::filesystem::path job = folder.path / "out.job";
  {
    std::ofstream out (exchange, std::ios::binary);
    out.write (reinterpret_cast<const char*> (data), static_cast<std::streamsize> (size));
  }
  std::filesystem::remove (job);
  const uint32_t result =
      ImportCLXMLFile (Device (exchange).Data (), Device (job).Data (), nullptr);
  RemoveRoads (folder.path);
  if (result != IMPORT_Ok) {
    if (result != IMPORT_Failed && result != IMPORT_BadInput) Complain ("odd code", result);
    if (std::filesystem::exists (job)) Complain ("a failed import left a job", result);
    return 0;
  }
  dbAccess access;
  if (!access.Open (Device (job), false) || access.GetOpenStatus () != JOBOPEN_Ok)
    Complain ("the job does not open clean", result);
  if (access.Journal ().GetLastAppendPosition () != std::filesystem::file_size (job))
    Complain ("the job has a tail", result);
  access.Close ();
  return 0;
}
