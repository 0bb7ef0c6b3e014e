// clxml import: an exchange file becomes a job, or many become one each.
// Each import runs through the exported functions, into JOB.part, which takes its name at the end.
// Leans on clxmli.h, CLI11 and hostfile.
#include <clxmli.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Library/xml/xmlparser.h"
#include "common.h"
#include "hostfile.h"
#include "import/roadcapture.h"
#include "platform/folder.h"

namespace clxml::tool {
namespace {

struct ImportOptions {
  std::string exchange;
  std::string job;
  bool quiet = false;
  bool force = false;
  std::string label;  // behind the progress bar
};

// As the command line gives them.
struct ImportArguments {
  std::vector<std::string> paths;  // EXCHANGE JOB, or EXCHANGE... with a folder
  std::string into;
  bool quiet = false;
  bool force = false;
};

// A bar on standard error, on a terminal only.
class ProgressBar {
 public:
  // The label stands behind the bar.
  ProgressBar (bool wanted, std::string label)
      : _Wanted (wanted && ::isatty (STDERR_FILENO)), _Label (std::move (label)) {
    _Label.resize (std::min<std::size_t> (_Label.size (), 60));
  }
  ~ProgressBar () { Clear (); }

  // Called for every element, so it looks at the clock only now and then.
  void Show (uint32_t percent) {
    if (!_Wanted || (percent == _Percent && ++_Calls % 512 != 0)) return;
    const auto elapsed = std::chrono::duration_cast<std::chrono::seconds> (
        std::chrono::steady_clock::now () - _Start);
    const long seconds = static_cast<long> (elapsed.count ());
    if (percent == _Percent && seconds == _Seconds) return;
    _Percent = percent;
    _Seconds = seconds;
    constexpr int width = 40;
    const int full = static_cast<int> (percent > 100 ? 100 : percent) * width / 100;
    std::string bar (static_cast<std::size_t> (full), '#');
    bar.resize (width, '.');
    std::fprintf (stderr, "\r[%s] %3u %%  %ld:%02ld  %s", bar.c_str (), percent, seconds / 60,
                  seconds % 60, _Label.c_str ());
    std::fflush (stderr);
    _IsShown = true;
  }
  void Clear () {
    if (_IsShown) std::fprintf (stderr, "\r%*s\r", 64 + static_cast<int> (_Label.size ()), "");
    _IsShown = false;
  }

 private:
  bool _Wanted;
  std::string _Label;
  bool _IsShown = false;
  uint32_t _Percent = UINT32_MAX;
  unsigned _Calls = 0;
  long _Seconds = -1;
  std::chrono::steady_clock::time_point _Start = std::chrono::steady_clock::now ();
};

volatile std::sig_atomic_t isInterrupted = 0;

// While one lives, the first Ctrl-C (or a request to end) asks the import to stop; the second one
// ends the process as ever. A signal that the caller had ignored stays ignored.
class Interruptions {
 public:
  Interruptions () {
    isInterrupted = 0;
    for (std::size_t i = 0; i < std::size (signals); i++) {
      struct sigaction action {};
      action.sa_handler = [] (int) { isInterrupted = 1; };
      action.sa_flags = static_cast<int> (SA_RESETHAND);
      ::sigaction (signals[i], nullptr, &_Before[i]);
      if (_Before[i].sa_handler != SIG_IGN) ::sigaction (signals[i], &action, nullptr);
    }
  }
  ~Interruptions () {
    for (std::size_t i = 0; i < std::size (signals); i++)
      ::sigaction (signals[i], &_Before[i], nullptr);
  }
  Interruptions (const Interruptions&) = delete;
  Interruptions& operator= (const Interruptions&) = delete;

 private:
  static constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};
  struct sigaction _Before[std::size (signals)];
};

// The import that runs. The exported callback has no argument for it.
struct Running {
  std::string part;
  HostLock lock;  // on the part file from the first element on: two imports cannot share it
  ProgressBar bar;
  bool isTaken = false;
};
Running* running = nullptr;

uint32_t OnProgress (uint32_t percent) {
  if (!running->lock.IsHeld ()) {
    const int error = running->lock.Take (running->part);
    running->isTaken = error == EWOULDBLOCK;
    if (running->isTaken) return 0;
  }
  running->bar.Show (percent);
  return isInterrupted ? 0 : 1;
}

// The road files of the import that stand beside the job, each once: the list of the library has
// those that could not be written too.
std::vector<std::string> FetchExtraOutputs (const std::vector<std::string>& notWritten) {
  std::vector<std::string> names;
  const auto isIn = [] (const std::vector<std::string>& list, const std::string& name) {
    return std::find (list.begin (), list.end (), name) != list.end ();
  };
  const int32_t count = clxmli_ExtraOutputFileCount ();
  for (int32_t i = 0; i < count; i++) {
    uint16_t name[CLXMLI_NAME_UNITS];
    char path[3 * CLXMLI_NAME_UNITS + 1];
    clxmli_GetExtraOutputFileName (name, i);
    if (name[0] == 0)
      Say ("warning: an extra output file has a name of 260 bytes or more, which cannot be told");
    else if (clxmli_HostPath (name, path, sizeof path) && !isIn (notWritten, path) &&
             !isIn (names, path))
      names.emplace_back (path);
  }
  return names;
}

// The paths in a message of the library, as the user wrote them.
std::string InHostForm (std::string text, const std::string& device, const std::string& host) {
  for (std::size_t at = 0; (at = text.find (device, at)) != std::string::npos; at += host.size ())
    text.replace (at, device.size (), host);
  return text;
}

// The road file that a log line with that beginning tells of, as a host path; empty for another
// line.
std::string RoadFileIn (std::string_view line, std::string_view beginning) {
  if (!line.starts_with (beginning)) return {};
  return folder_HostPath (Str (line.substr (beginning.size ()))).Data ();
}

// What a failure has to say of road files, which survive it.
std::string Remaining (const std::vector<std::string>& extras) {
  std::string text;
  for (const std::string& name : extras)
    text += (text.empty () ? "\nRoad files that were written stay: " : ", ") + name;
  return text;
}

// What stands in the way before anything is read.
void MakeRoom (const ImportOptions& options, const std::string& part) {
  if (host_IsSame (options.exchange, options.job) || host_IsSame (options.exchange, part))
    throw Refusal{STATUS_Usage, "the exchange file and the job must be two files"};
  if (host_Stands (options.job)) {
    if (!options.force)
      throw Refusal{IMPORT_CannotCreateJob,
                    options.job + " exists already; --force replaces it at the end of the import"};
    if (!host_IsRegular (options.job))
      throw Refusal{IMPORT_CannotCreateJob, options.job + " is no regular file"};
  }
  HostLock leftover;
  const int error = leftover.Take (part);
  if (error == EWOULDBLOCK)
    throw Refusal{IMPORT_CannotCreateJob, "another import is writing " + part};
  if (const int failed = host_Remove (part))
    throw Refusal{IMPORT_CannotCreateJob, part + ": " + host_Reason (failed)};
}

// The finished part file becomes the job.
void TakeName (const ImportOptions& options, Running& run, const std::string& remaining) {
  const auto refuse = [&] (int status, const std::string& message) {
    if (run.lock.StandsAt (run.part)) host_Remove (run.part);
    throw Refusal{status, message + remaining};
  };
  if (isInterrupted) refuse (IMPORT_Cancelled, "cancelled; no job was written");
  if (!run.lock.StandsAt (run.part))
    refuse (IMPORT_Failed, run.part + " was taken away during the import");
  if (const int error = host_Sync (run.part))
    refuse (IMPORT_Failed, run.part + ": " + host_Reason (error));
  const int error = options.force ? host_RenameOver (run.part, options.job)
                                  : host_RenameFresh (run.part, options.job);
  if (error == EEXIST)
    refuse (IMPORT_CannotCreateJob, options.job + " came to exist during the import");
  if (error) refuse (IMPORT_CannotCreateJob, options.job + ": " + host_Reason (error));
  if (const int failed = host_SyncFolderOf (options.job))
    Say ("warning: the folder of " + options.job +
         " was not brought to the medium: " + host_Reason (failed));
}

// Answers the road files that stand beside the job; refuses when there is no job.
std::vector<std::string> ImportOne (const ImportOptions& options, Ear& ear) {
  Running run{options.job + ".part", {}, ProgressBar (!options.quiet, options.label)};
  const std::string exchange = DevicePath (options.exchange, IMPORT_BadInput);
  const std::string part = DevicePath (run.part, IMPORT_CannotCreateJob);
  MakeRoom (options, run.part);

  std::string reason;  // the last line that is logged: the text of a failure
  std::vector<std::string> notWritten;
  const auto warn = [&] (const std::string& text) {
    run.bar.Clear ();
    Say ("warning: " + text);
  };
  ear.Listen ([&] (std::string_view text) {
    if (text == xml_LongLines) {
      warn (options.exchange + ": " + std::string (text));
    } else if (std::string road = RoadFileIn (text, ROADCAPTURE_NotWritten); !road.empty ()) {
      warn (road + ": the road file could not be written");
      notWritten.push_back (std::move (road));
    } else if (road = RoadFileIn (text, ROADCAPTURE_Replaced); !road.empty ()) {
      warn (road + ": two roads have this file, which holds the later one");
    } else {
      reason = text;
    }
  });
  uint32_t result = IMPORT_Failed;
  std::vector<std::string> extras;
  {
    const Interruptions interruptions;
    running = &run;
    try {
      result = ImportCLXMLFile (exchange.c_str (), part.c_str (), OnProgress);
    } catch (const std::bad_alloc&) {
      reason = "out of memory";
    }
    running = nullptr;
    run.bar.Clear ();
    ear.Listen (nullptr);
    extras = FetchExtraOutputs (notWritten);
    if (result == IMPORT_Ok) TakeName (options, run, Remaining (extras));
  }
  if (result == IMPORT_Ok) return extras;
  if (run.isTaken) throw Refusal{IMPORT_CannotCreateJob, "another import is writing " + run.part};
  std::string message;
  switch (result) {
    case IMPORT_Cancelled:
      message = "cancelled; no job was written";
      break;
    case IMPORT_CannotCreateJob:
      message = "cannot make the job";
      if (!ear.LastFileError ().empty ()) message += ": " + ear.LastFileError ();
      break;
    default:
      message = InHostForm (reason.empty () ? "the import failed" : reason, part, run.part);
      message = InHostForm (message, exchange, options.exchange);
      if (!message.starts_with (options.exchange)) message = options.exchange + ": " + message;
      if (!ear.LastFileError ().empty ()) message += "\n" + ear.LastFileError ();
  }
  throw Refusal{static_cast<int> (result), message + Remaining (extras)};
}

std::vector<ImportOptions> OneEach (const ImportArguments& arguments) {
  std::error_code ignored;
  if (!std::filesystem::is_directory (arguments.into, ignored))
    throw Refusal{IMPORT_CannotCreateJob, arguments.into + " is no folder"};
  std::vector<ImportOptions> imports;
  std::map<std::string, std::string> takenBy;
  for (const std::string& exchange : arguments.paths) {
    const std::filesystem::path name = std::filesystem::path (exchange).stem ();
    const std::string job = (arguments.into / name).string () + ".job";
    const auto [other, isFree] = takenBy.try_emplace (job, exchange);
    if (!isFree)
      throw Refusal{STATUS_Usage, other->second + " and " + exchange + " would both become " + job};
    imports.push_back ({exchange, job, arguments.quiet, arguments.force,
                        std::to_string (imports.size () + 1) + " of " +
                            std::to_string (arguments.paths.size ()) + ": " +
                            std::filesystem::path (exchange).filename ().string ()});
  }
  return imports;
}

// One that fails does not keep the others from their jobs. The first status other than 0 stays.
int ImportMany (const std::vector<ImportOptions>& imports, Ear& ear) {
  int status = IMPORT_Ok;
  std::size_t done = 0;
  std::map<std::string, std::string> roadOf;
  for (const ImportOptions& options : imports) {
    try {
      for (const std::string& road : ImportOne (options, ear)) {
        Print (road + "\n");
        const auto [other, isNew] = roadOf.try_emplace (road, options.job);
        if (isNew) continue;
        Say ("warning: " + road + " of " + other->second + " was replaced by that of " +
             options.job);
        other->second = options.job;
      }
      done++;
    } catch (const Refusal& refusal) {
      if (refusal.status == STATUS_Output) throw;
      Say ("error: " + refusal.message);
      if (status == IMPORT_Ok || refusal.status == IMPORT_Cancelled) status = refusal.status;
      if (refusal.status == IMPORT_Cancelled) break;
    }
  }
  if (status != IMPORT_Ok || !imports.front ().quiet)
    Say (std::to_string (done) + " of " + std::to_string (imports.size ()) +
         " exchange files imported");
  return status;
}

int RunImport (const ImportArguments& arguments, Ear& ear) {
  if (!arguments.into.empty ()) return ImportMany (OneEach (arguments), ear);
  if (arguments.paths.size () != 2)
    throw Refusal{STATUS_Usage,
                  "import takes an exchange file and a job file; several exchange files with "
                  "--into FOLDER"};
  const auto roads = ImportOne (
      {arguments.paths[0], arguments.paths[1], arguments.quiet, arguments.force, {}}, ear);
  for (const std::string& road : roads) Print (road + "\n");
  return IMPORT_Ok;
}

}  // namespace

void AddImport (CLI::App& app, Session& session) {
  const auto options = std::make_shared<ImportArguments> ();
  CLI::App* command =
      app.add_subcommand ("import", "Make a job file from an exchange file, or one from each");
  command
      ->add_option ("EXCHANGE", options->paths,
                    "Exchange file (XML) and job to make; with --into exchange files alone")
      ->required ()
      ->option_text (" ");
  command
      ->add_option ("--into", options->into,
                    "Import each EXCHANGE to FOLDER, as a job of its own name")
      ->option_text ("FOLDER");
  command->add_flag ("-q,--quiet", options->quiet, "No progress bar");
  command->add_flag ("-f,--force", options->force,
                     "Replace a job that exists, at the end of a whole import");
  command->footer (
      "The job is written to JOB.part and takes its name at the end. Files that were written\n"
      "beside the job are listed on standard output, one a line. Of several exchange files one\n"
      "that fails is told, and the others are imported all the same; Ctrl-C ends them all.\n"
      "Exit status: 0 done, 1 cancelled (Ctrl-C), 2 the import failed, 4 no usable exchange file,\n"
      "5 the job cannot be made; of several files the status of the first that failed.\n"
      "Example: clxml import examples/boundary_1140.xml lot7.job\n"
      "         clxml import --into jobs old/*.xml");
  command->callback ([&session, options] {
    session.run = [&session, options] { return RunImport (*options, session.ear); };
  });
}

}  // namespace clxml::tool
