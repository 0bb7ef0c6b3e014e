// Attacks the opening of a job with any bytes.
// Behind the first byte stands a job file; an odd first byte has its frames' checksums mended, so
// that damage reaches what lies behind them. What opens is walked, saved again and closed; nothing
// of the file changes. Leans on the library.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Library/job/crc16.h"
#include "Library/job/dbJob.h"
#include "folder.h"

namespace {

using namespace clxml;

void MendChecksums (std::string& file) {
  auto* bytes = reinterpret_cast<uint8_t*> (file.data ());
  std::size_t place = FILEHDR_SizeOnDisk;
  while (file.size () >= place + 4) {
    uint32_t length = 0;
    std::memcpy (&length, bytes + place, sizeof length);
    place += 4;
    if (length < JOURNAL_MinFrame || length > file.size () - place) return;
    const uint16_t checksum = crc16_Arc (bytes + place, length - 2);
    std::memcpy (bytes + place + length - 2, &checksum, sizeof checksum);
    place += length;
  }
}

std::string Content (const std::filesystem::path& path) {
  std::ifstream in (path, std::ios::binary);
  return {std::istreambuf_iterator<char> (in), {}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size) {
  static const fuzz::OwnFolder folder;
  if (size < 1) return 0;
  std::string file (reinterpret_cast<const char*> (data) + 1, size - 1);
  if (data[0] % 2 == 1) MendChecksums (file);
  const std::filesystem::path path = folder.path / "in.job";
  std::ofstream (path, std::ios::binary) << file;
  const Str device = fuzz::Device (path);

  dbAccess access;
  if (access.Open (device, false)) {
    OutBuffer body (ENDIAN_Little);
    DBID before = NODBID;
    for (DBID id = access.GetFirstRecordId (); id != NODBID; id = access.GetNextRecordId (id)) {
      const dbRecord_Class* record = access.GetRecord (id);
      if (!record || record->RecordId != id || access.GetPreviousRecordId (id) != before)
        std::abort ();
      body.Reset ();
      record->Save (body);
      before = id;
    }
  }
  access.Close ();
  if (Content (path) != file) std::abort ();  // opened for reading, a file stays as it is

  // A job that the host wants cut is cut and then opens clean.
  JobDatabase job;
  job.SetOnCorruption ([] (JobDatabase&) { return true; });
  if (job.Open (device, true)) {
    job.Close ();
    dbAccess again;
    if (again.Open (device, false) && again.GetOpenStatus () != JOBOPEN_Ok) std::abort ();
    again.Close ();
  }
  return 0;
}
