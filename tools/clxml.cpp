// clxml, the command line tool over the library.
// Reads the command line, puts the ear and a fixed clock in force, runs one command and answers
// its exit status. Leans on CLI11 and the commands.
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "Kernel/clock.h"
#include "Library/job/filehdr.h"
#include "common.h"

namespace {

using namespace clxml;
using namespace clxml::tool;

// The clock of a run that is to be repeatable: it stands still at the moment that SOURCE_DATE_EPOCH
// names, in universal time.
int64_t epoch = 0;

void EpochTime (int& year, int& month, int& day, int& hours, int& minutes, int& seconds) {
  std::tm parts{};
  const std::time_t moment = static_cast<std::time_t> (epoch);
  gmtime_r (&moment, &parts);
  year = parts.tm_year + 1900;
  month = parts.tm_mon + 1;
  day = parts.tm_mday;
  hours = parts.tm_hour;
  minutes = parts.tm_min;
  seconds = parts.tm_sec;
}

constexpr clock_Source epochClock = {
    [] () -> uint32_t { return 0; },
    EpochTime,
    [] () -> double { return 0.0; },
    [] (Str& name, double& hours) -> bool {
      name = "UTC";
      hours = 0.0;
      return true;
    },
    [] (int, int, int, int, int, int) {},
};

void InstallEpoch () {
  const char* text = std::getenv ("SOURCE_DATE_EPOCH");
  if (!text || !*text) return;
  char* end = nullptr;
  errno = 0;
  const long long value = std::strtoll (text, &end, 10);
  // Up to the year 9999, which is as far as four digits of a date go.
  if (errno || *end || text[0] < '0' || text[0] > '9' || value > 253402300799LL)
    throw Refusal{STATUS_Usage,
                  "SOURCE_DATE_EPOCH is no time in seconds since 1970: " + std::string (text)};
  epoch = value;
  clock_Install (&epochClock);
}

int Run (int argc, char** argv) {
  Session session;
  CLI::App app (
      "Turns the exchange files of old jobs into job files of the field application, and looks "
      "after job files.");
  app.name ("clxml");
  app.option_defaults ()->always_capture_default (false);
  app.set_version_flag (
      "--version",
      "clxml, job format " + std::string (FileHeader (FILEHDR_Journal).Stamp ().Data ()),
      "Print the version of the job format and exit");
  app.set_help_flag ("-h,--help", "Print this help and exit");
  app.add_flag ("-v,--verbose", session.ear.verbose,
                "Print the library's log lines and file errors too");
  app.fallthrough ();
  app.require_subcommand (1);
  app.footer (
      "Example: clxml import examples/boundary_1140.xml lot7.job && clxml info lot7.job\n"
      "Each command has a help of its own: clxml import --help");
  AddImport (app, session);
  AddInfo (app, session);
  AddDump (app, session);
  AddRepair (app, session);
  AddTransform (app, session);
  AddRoad (app, session);
  AddPoints (app, session);
  AddCodes (app, session);
  AddExplain (app, session);

  try {
    app.parse (argc, argv);
  } catch (const CLI::ParseError& error) {
    const bool isHelp = error.get_exit_code () == static_cast<int> (CLI::ExitCodes::Success);
    app.exit (error);
    std::cout.flush ();
    if (!std::cout) throw Refusal{STATUS_Output, "cannot write to standard output"};
    return isHelp ? STATUS_Clean : STATUS_Usage;
  }
  InstallEpoch ();
  int status = STATUS_Clean;
  try {
    status = session.run ();
    FinishPrinting ();
  } catch (...) {
    session.ear.PrintAssertions ();
    throw;
  }
  session.ear.PrintAssertions ();
  return status;
}

}  // namespace

int main (int argc, char** argv) {
  std::signal (SIGXFSZ, SIG_IGN);  // a limit on the size of files is an error of the write
  try {
    return Run (argc, argv);
  } catch (const Refusal& refusal) {
    Say ("error: " + refusal.message);
    return refusal.status;
  } catch (const std::exception& fault) {
    Say ("error: " + std::string (fault.what ()));
    return STATUS_Output;
  }
}
