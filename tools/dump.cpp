// clxml dump: the records of a job, one JSON object a line.
// The job is replayed before the first line is written, so that a damage is known by then. Leans
// on dbaccess, recordjson and CLI11.
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "common.h"
#include "recordjson.h"

namespace clxml::tool {
namespace {

struct DumpOptions {
  std::string job;
  bool salvage = false;
};

int RunDump (const DumpOptions& options) {
  const OpenedJob job (options.job);
  job.MustBeOpen ();
  const std::string damage = job.path + ": " + job.Meaning ();
  if (job.status == JOBOPEN_Corrupt && !options.salvage)
    throw Refusal{STATUS_Damaged, damage + "; --salvage shows what stands before the damage"};

  constexpr std::size_t block = 1 << 18;
  std::string lines;
  lines.reserve (block + (1 << 16));
  const dbAccess& access = job.access;
  for (DBID id = access.GetFirstRecordId (); id != NODBID; id = access.GetNextRecordId (id)) {
    const dbRecord_Class* record = access.GetRecord (id);
    if (!record) continue;
    AppendRecord (lines, *record);
    lines += '\n';
    if (lines.size () < block) continue;
    Print (lines);
    lines.clear ();
  }
  Print (lines);
  if (job.status == JOBOPEN_Corrupt) Say ("error: " + damage);
  return job.ExitStatus ();
}

}  // namespace

void AddDump (CLI::App& app, Session& session) {
  const auto options = std::make_shared<DumpOptions> ();
  CLI::App* command = app.add_subcommand ("dump", "Print the records of a job as JSON lines");
  command->add_option ("JOB", options->job, "The job file; it is only read")->required ();
  command->add_flag ("--salvage", options->salvage,
                     "Of a damaged job print what stands before the damage");
  command->footer (
      "Exit status: 0 clean, 2 damaged, 1 not to be opened as a job.\n"
      "Example: clxml dump lot7.job | jq 'select (.type == \"db_Observation\") | .PointName'");
  command->callback (
      [&session, options] { session.run = [options] { return RunDump (*options); }; });
}

}  // namespace clxml::tool
