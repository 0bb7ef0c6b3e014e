// What the commands of the tool share.
// Exit statuses, refusals, the ear on the library, paths, and output that is written whole. Leans
// on the library and CLI11.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "Library/job/dbaccess.h"
#include "str.h"

namespace CLI {
class App;
}

namespace clxml::tool {

/// Exit statuses beside those of an import.
enum Status : int {
  STATUS_Clean = 0,
  STATUS_NotAJob = 1,  ///< not to be opened as a job
  STATUS_Damaged = 2,  ///< opened up to a damage
  STATUS_Usage = 64,   ///< the command line is wrong
  STATUS_Input = 65,   ///< what was read is no data for the command
  STATUS_Output = 74,  ///< what was to be printed could not be written
};

/// Ends a command: a message for standard error and the exit status. Thrown as a value.
struct Refusal {
  int status;
  std::string message;
};

/// Hears what the library tells its host: passes log lines and file errors on to standard error
/// when verbose, keeps the thrown text of a failed import, and counts failed assertions.
class Ear final : public Environment {
 public:
  Ear () : _Before (Environment::Install (this)) {}
  ~Ear () { Environment::Install (_Before); }

  void LogMessage (const char* text) override;
  void ReportFileError (const char* source, int line, int error, const char* file) override;
  void AssertFailed (const char* condition, const char* source, int line) override;

  /// Prints each failed assertion once, with its count, and forgets them.
  void PrintAssertions ();
  /// The last failure of a system call, as a sentence, or nothing.
  const std::string& LastFileError () const noexcept { return _FileError; }
  /// Hands every log line to a listener as well; an empty function ends that.
  void Listen (std::function<void (std::string_view)> listener) {
    _Listener = std::move (listener);
  }

  bool verbose = false;

 private:
  Environment* _Before;
  std::function<void (std::string_view)> _Listener;
  std::string _FileError;
  std::map<std::pair<std::string, std::string>, uint64_t> _Assertions;  // place, condition
};

/// One line on standard error: "clxml: " and the text.
void Say (std::string_view text);

/// The device form of a host path. Refuses, with the status, a path that has none.
std::string DevicePath (const std::string& hostPath, int status);

/// Writes to standard output; refuses with STATUS_Output when it does not take the bytes.
void Print (std::string_view text);
/// Makes sure that all that was printed has gone out; refuses as Print.
void FinishPrinting ();

/// A job opened for reading, whatever became of it.
struct OpenedJob {
  /// Opens the file of that host path; refuses with STATUS_NotAJob when there is no such file.
  explicit OpenedJob (const std::string& hostPath);
  ~OpenedJob ();
  OpenedJob (const OpenedJob&) = delete;
  OpenedJob& operator= (const OpenedJob&) = delete;

  /// Opened clean, or up to a damage.
  bool IsOpen () const { return status == JOBOPEN_Ok || status == JOBOPEN_Corrupt; }
  /// The exit status that tells of the open status.
  int ExitStatus () const;
  /// The open status in words.
  std::string Meaning () const;
  /// Refuses when it could not be opened as a job.
  void MustBeOpen () const;

  std::string path;  ///< as given
  dbAccess access;
  job_OpenStatus status = JOBOPEN_CannotOpen;
  std::string stamp;  ///< of the file's header; empty when there is none
  std::string kind;   ///< the header's name
  std::string job;    ///< the job's name
  uint64_t size = 0;
  uint64_t lastGood = 0;  ///< position behind the last frame that read without fault
};

/// What a command line asked for.
struct Session {
  Ear ear;
  std::function<int ()> run;  ///< the command; answers the exit status
};

void AddImport (CLI::App& app, Session& session);
void AddInfo (CLI::App& app, Session& session);
void AddDump (CLI::App& app, Session& session);
void AddRepair (CLI::App& app, Session& session);
void AddTransform (CLI::App& app, Session& session);
void AddRoad (CLI::App& app, Session& session);
void AddPoints (CLI::App& app, Session& session);
void AddCodes (CLI::App& app, Session& session);
void AddExplain (CLI::App& app, Session& session);

}  // namespace clxml::tool
