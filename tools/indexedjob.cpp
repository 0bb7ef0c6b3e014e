// A job opened for reading with its index and its coordinate system: opening, salvage, warnings.
#include "indexedjob.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include <CLI/CLI.hpp>

#include "hostfile.h"

namespace clxml::tool {

void IndexedJobOptions::AddTo (CLI::App& command) {
  command
      .add_option ("--data", data,
                   "Where geoid and grid files of the job are; the job's folder if not given")
      ->type_name ("FOLDER");
  command.add_flag ("--strict", strict, "Refuse a job whose geoid or grid files are missing");
  command.add_flag ("--salvage", salvage, "Read a damaged job up to the damage");
}

IndexedJob::IndexedJob (const std::string& hostPath, const IndexedJobOptions& options, Ear& log)
    : _Path (hostPath) {
  const std::string beside = std::filesystem::path (hostPath).parent_path ().string ();
  const std::string data = !options.data.empty () ? options.data : beside.empty () ? "." : beside;
  _Data = std::make_unique<ProjectFolder> (data);

  JobFile::Use (_Job);
  if (!_Job.Open (Str (DevicePath (hostPath, STATUS_NotAJob).c_str ()), false)) {
    const OpenedJob refused (hostPath);
    refused.MustBeOpen ();
    const std::string meaning = hostPath + ": " + refused.Meaning ();
    if (!options.salvage)
      throw Refusal{STATUS_Damaged, meaning + "; --salvage reads the job up to the damage"};
    OpenSalvaged (meaning, refused.lastGood);
  }
  _Index = JobFile::Of (_Job);
  if (!_Index) throw Refusal{STATUS_NotAJob, hostPath + ": the job has no index"};

  std::vector<std::string> faults;
  log.Listen ([&] (std::string_view text) { faults.emplace_back (text); });
  _Index->CurrentTransform ();
  log.Listen (nullptr);
  for (const std::string& fault : faults)
    Say ("warning: " + hostPath + ": " + fault + "; files are searched in " + data +
         (options.data.empty () ? " (see --data)" : ""));
  if (!faults.empty () && options.strict)
    throw Refusal{STATUS_Input, hostPath + ": the coordinate system is incomplete (--strict)"};
}

// JobDatabase does not open a damaged job without cutting it, so the frames before the damage are
// copied to a file of their own.
void IndexedJob::OpenSalvaged (const std::string& meaning, uint64_t lastGood) {
  Say ("error: " + meaning);
  std::error_code failed;
  const std::filesystem::path folder = std::filesystem::temp_directory_path (failed);
  _Copy = (folder / ("clxml." + std::to_string (::getpid ()) + ".job")).string ();
  std::ifstream in (_Path, std::ios::binary);
  std::ofstream out (_Copy, std::ios::binary | std::ios::trunc);
  std::vector<char> block (1 << 16);
  for (uint64_t left = lastGood; left > 0 && in && out;) {
    in.read (block.data (),
             static_cast<std::streamsize> (std::min<uint64_t> (left, block.size ())));
    if (in.gcount () == 0) break;
    out.write (block.data (), in.gcount ());
    left -= static_cast<uint64_t> (in.gcount ());
  }
  out.close ();
  if (failed || !out || !_Job.Open (Str (DevicePath (_Copy, STATUS_Output).c_str ()), false))
    throw Refusal{STATUS_Output, _Copy + ": the readable part of the job cannot be copied"};
  _Status = STATUS_Damaged;
}

IndexedJob::~IndexedJob () {
  _Job.Close ();
  if (!_Copy.empty ()) host_Remove (_Copy);
}

}  // namespace clxml::tool
