// Attacks everything that is computed of a job, with any bytes.
// The first byte is followed by a job file; an odd first byte has its frames' checksums mended. A
// job that opens is indexed, and each of its objects is computed in every form; then changes are
// committed and all is computed again.
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>

#include "Library/index/jobfile.h"
#include "Library/job/crc16.h"
#include "Library/position/position.h"
#include "Library/records/dbPoints.h"
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

void ComputeAll (JobFile& index) {
  for (int32_t i = 0; i < index.GetObjectCount (); i++) {
    dbObject* object = index.GetCompleteObject (i);
    object->GetStatus ();
    const Str name (object->GetName ());
    index.FindBestPoint (name);
    ObservationObject* point = AsObservation (object);
    if (!point) continue;
    point->GetFinalGrid ();
    position where;
    if (!position_LoadFromObject (where, *object)) continue;
    const Transform& transform = index.CurrentTransform ();
    where.GetWGS84 (transform);
    where.GetLocal (transform);
    where.GetPolar (transform);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size) {
  static const fuzz::OwnFolder folder;
  if (size < 1) return 0;
  std::string file (reinterpret_cast<const char*> (data) + 1, size - 1);
  if (data[0] % 2 == 1) MendChecksums (file);
  const std::filesystem::path path = folder.path / "in.job";
  std::ofstream (path, std::ios::binary) << file;

  JobDatabase job;
  JobFile::Use (job);
  job.SetOnCorruption ([] (JobDatabase&) { return true; });
  if (!job.Open (fuzz::Device (path), true)) return 0;
  JobFile& index = *JobFile::Of (job);
  ComputeAll (index);
  for (int32_t i = 0; i < index.GetObjectCount () && i < 8; i++)
    if (AsObservation (index.GetObject (i)) && !index.GetObject (i)->IsDeleted ())
      job.SetBoolean (index.GetRecordId (i), 0);
  db_Observation added;
  added.PointName = "A";
  job.AddRecord (added);
  ComputeAll (index);
  job.Close ();
  return 0;
}
