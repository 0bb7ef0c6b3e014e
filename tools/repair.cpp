// clxml repair: cuts the damaged tail of a job.
// A cut copy is made and proved first; then the original becomes JOB.bak and the copy takes its
// place, so that no moment leaves less than the original. Leans on dbaccess, CLI11 and hostfile.
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "common.h"
#include "hostfile.h"

namespace clxml::tool {
namespace {

struct RepairOptions {
  std::string job;
  bool yes = false;
};

uint64_t CountRecords (const dbAccess& access) {
  uint64_t count = 0;
  for (DBID id = access.GetFirstRecordId (); id != NODBID; id = access.GetNextRecordId (id))
    count++;
  return count;
}

void Ask (const std::string& question) {
  if (!::isatty (STDIN_FILENO))
    throw Refusal{STATUS_Damaged,
                  "nothing was changed: without a terminal to ask on, --yes is needed"};
  std::cerr << question << " [y/N] " << std::flush;
  std::string answer;
  std::getline (std::cin, answer);
  if (answer != "y" && answer != "Y" && answer != "yes")
    throw Refusal{STATUS_Damaged, "nothing was changed"};
}

// Removes the copy unless it took the job's place.
struct CopyGuard {
  ~CopyGuard () {
    if (!path.empty ()) host_Remove (path);
  }
  std::string path;
};

// Cuts the copy at its last good frame and proves that it opens clean with as many records.
void CutAndProve (const std::string& copy, uint64_t records) {
  {
    dbAccess access;
    const Str device (DevicePath (copy, STATUS_Damaged).c_str ());
    const bool isOpen = access.Open (device, true);
    const bool isCut = isOpen && access.TruncateToLastGood () != 0;
    const bool isClosed = !isOpen || access.Close ();
    if (!isCut || !isClosed)
      throw Refusal{STATUS_Damaged, "the damaged tail could not be cut off; nothing was changed"};
  }
  const OpenedJob proof (copy);
  if (proof.status != JOBOPEN_Ok || CountRecords (proof.access) != records)
    throw Refusal{STATUS_Damaged, "the job would still not open clean (" + proof.Meaning () +
                                      "); nothing was changed"};
  if (const int error = host_Sync (copy))
    throw Refusal{STATUS_Damaged, copy + ": " + host_Reason (error)};
}

// The original gets a second name where that is possible, so that the job's own name is never
// without a file.
int KeepOriginal (const std::string& job, const std::string& backup) {
  if (::link (job.c_str (), backup.c_str ()) == 0) return 0;
  return errno == EEXIST ? EEXIST : host_RenameFresh (job, backup);
}

int RunRepair (const RepairOptions& options) {
  const std::string backup = options.job + ".bak";
  uint64_t records = 0;
  {
    const OpenedJob job (options.job);
    job.MustBeOpen ();
    if (job.status == JOBOPEN_Ok) {
      Say (job.path + " opens clean; there is nothing to repair");
      return STATUS_Clean;
    }
    records = CountRecords (job.access);
    Say (job.path + " is damaged at byte " + std::to_string (job.lastGood) + " of " +
         std::to_string (job.size) + ". " + std::to_string (records) +
         " records stand before the damage and stay; what the last " +
         std::to_string (job.size - job.lastGood) + " bytes held would be lost.");
  }
  if (host_Stands (backup))
    throw Refusal{STATUS_Damaged,
                  backup + " exists already and is not replaced; nothing was changed"};
  if (!options.yes) Ask ("Keep the original as " + backup + " and cut the job there?");

  CopyGuard copy{options.job + ".part"};
  const std::string part = copy.path;
  {
    HostLock leftover;
    if (leftover.Take (part) == EWOULDBLOCK) {
      copy.path.clear ();
      throw Refusal{STATUS_Damaged, "another process is writing " + part};
    }
    host_Remove (part);  // never through a link
    std::error_code error;
    std::filesystem::copy_file (options.job, part, error);
    if (error) throw Refusal{STATUS_Damaged, part + ": " + error.message ()};
  }
  CutAndProve (part, records);

  if (const int error = KeepOriginal (options.job, backup))
    throw Refusal{STATUS_Damaged, backup + ": " + host_Reason (error) + "; nothing was changed"};
  if (const int error = host_RenameOver (part, options.job))
    throw Refusal{STATUS_Damaged,
                  options.job + ": " + host_Reason (error) + "; the original is " + backup};
  copy.path.clear ();
  host_SyncFolderOf (options.job);
  const OpenedJob repaired (options.job);
  if (repaired.status != JOBOPEN_Ok)
    throw Refusal{repaired.ExitStatus (),
                  options.job + ": " + repaired.Meaning () + "; the original is " + backup};
  Say (options.job + " opens clean with " + std::to_string (records) +
       " records; the original is " + backup);
  return STATUS_Clean;
}

}  // namespace

void AddRepair (CLI::App& app, Session& session) {
  const auto options = std::make_shared<RepairOptions> ();
  CLI::App* command = app.add_subcommand ("repair", "Cut the damaged tail of a job");
  command->add_option ("JOB", options->job, "The job file; the original stays as JOB.bak")
      ->required ();
  command->add_flag ("-y,--yes", options->yes, "Do not ask");
  command->footer (
      "Exit status: 0 when the job opens clean, 2 when it is still damaged, 1 not to be opened as\n"
      "a job.\n"
      "Example: clxml repair lot7.job --yes");
  command->callback (
      [&session, options] { session.run = [options] { return RunRepair (*options); }; });
}

}  // namespace clxml::tool
