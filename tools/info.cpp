// clxml info: what a job file is and what it holds.
// Opens for reading, changes nothing, and answers for every file that exists. Leans on dbaccess,
// CLI11 and nlohmann-json.
#include <array>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "Library/records/dbRecord.h"
#include "common.h"

namespace clxml::tool {
namespace {

struct InfoOptions {
  std::string job;
  bool json = false;
};

// How many records of each type stand on the chain.
struct Census {
  explicit Census (const dbAccess& access) {
    for (DBID id = access.GetFirstRecordId (); id != NODBID; id = access.GetNextRecordId (id)) {
      const dbRecord_Class* record = access.GetRecord (id);
      if (!record || record->GetType () >= DATABASE_AllRecords) continue;
      byType[record->GetType ()]++;
      all++;
    }
  }
  std::array<uint64_t, DATABASE_AllRecords> byType{};
  uint64_t all = 0;
};

std::string AsJson (const OpenedJob& job, const Census& census) {
  nlohmann::ordered_json object;
  object["file"] = job.path;
  object["stamp"] =
      job.stamp.empty () ? nlohmann::ordered_json (nullptr) : nlohmann::ordered_json (job.stamp);
  object["status"] = static_cast<int> (job.status);
  object["job"] =
      job.IsOpen () ? nlohmann::ordered_json (job.job) : nlohmann::ordered_json (nullptr);
  object["records"] = census.all;
  auto& types = object["types"] = nlohmann::ordered_json::object ();
  for (int type = 0; type < DATABASE_AllRecords; type++)
    if (census.byType[static_cast<std::size_t> (type)])
      types[ClassName (type)] = census.byType[static_cast<std::size_t> (type)];
  object["lastGood"] = job.lastGood;
  object["size"] = job.size;
  return object.dump (2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string AsText (const OpenedJob& job, const Census& census) {
  std::string text;
  const auto line = [&] (const char* label, const std::string& value) {
    text += label;
    text += value;
    text += '\n';
  };
  line ("file       ", job.path);
  line ("header     ", job.stamp.empty ()  ? "none"
                       : job.kind.empty () ? "older form, no name"
                                           : job.kind);
  line ("format     ", job.stamp.empty () ? "unknown" : job.stamp);
  line ("status     ", std::to_string (static_cast<int> (job.status)) + ", " + job.Meaning ());
  if (job.IsOpen ()) {
    line ("job        ", job.job);
    line ("records    ", std::to_string (census.all));
    for (int type = 0; type < DATABASE_AllRecords; type++)
      if (const uint64_t count = census.byType[static_cast<std::size_t> (type)]) {
        std::string name = ClassName (type);
        name.resize (std::max<std::size_t> (name.size () + 1, 34), ' ');
        line ("           ", name + std::to_string (count));
      }
  }
  line ("last good  ", std::to_string (job.lastGood));
  line ("size       ", std::to_string (job.size));
  return text;
}

int RunInfo (const InfoOptions& options) {
  const OpenedJob job (options.job);
  const Census census (job.access);
  Print (options.json ? AsJson (job, census) : AsText (job, census));
  if (job.status != JOBOPEN_Ok) Say ("error: " + job.path + ": " + job.Meaning ());
  return job.ExitStatus ();
}

}  // namespace

void AddInfo (CLI::App& app, Session& session) {
  const auto options = std::make_shared<InfoOptions> ();
  CLI::App* command = app.add_subcommand ("info", "Tell what a job file is and what it holds");
  command->add_option ("JOB", options->job, "The job file; it is only read")->required ();
  command->add_flag ("--json", options->json, "Print one JSON object");
  command->footer (
      "Exit status: 0 clean, 2 damaged, 1 not to be opened as a job.\n"
      "Example: clxml info lot7.job --json");
  command->callback (
      [&session, options] { session.run = [options] { return RunInfo (*options); }; });
}

}  // namespace clxml::tool
