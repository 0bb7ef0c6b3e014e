// A job opened for reading with its index and its coordinate system.
// For the commands that need coordinates; info, dump and transform open a job without an index.
#pragma once

#include <memory>
#include <string>

#include "Library/index/jobfile.h"
#include "Library/job/dbJob.h"
#include "common.h"
#include "coordsystem.h"

namespace clxml::tool {

/// How a job with coordinates is opened.
struct IndexedJobOptions {
  std::string data;      ///< folder of the support files; empty for the folder of the job
  bool strict = false;   ///< refuse a job whose support files are missing or cannot be used
  bool salvage = false;  ///< read a damaged job up to the damage

  /// Declares --data, --strict and --salvage.
  void AddTo (CLI::App& command);
};

/// An open job with its index. The job file is not changed.
class IndexedJob {
 public:
  /// Opens the job of that host path, builds its index and its transform. Each support file that is
  /// missing or cannot be used is reported in a warning line with the folder searched. Refuses with
  /// STATUS_NotAJob, STATUS_Damaged (unless salvage) or, if strict, STATUS_Input.
  IndexedJob (const std::string& hostPath, const IndexedJobOptions& options, Ear& log);
  ~IndexedJob ();
  IndexedJob (const IndexedJob&) = delete;
  IndexedJob& operator= (const IndexedJob&) = delete;

  const std::string& Path () const { return _Path; }
  JobFile& Index () { return *_Index; }
  const Transform& System () { return _Index->CurrentTransform (); }
  /// STATUS_Clean, or STATUS_Damaged for a job that was read up to a damage.
  int ExitStatus () const { return _Status; }

 private:
  void OpenSalvaged (const std::string& meaning, uint64_t lastGood);

  std::string _Path;
  std::unique_ptr<ProjectFolder> _Data;
  std::string _Copy;  // the readable part of a damaged job
  JobDatabase _Job;
  JobFile* _Index = nullptr;
  int _Status = 0;
};

}  // namespace clxml::tool
