// What every test stands on: a folder of its own and an ear on the library.
// An assertion that a test did not expect fails it. Leans on GoogleTest and str.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "str.h"

namespace clxml::testing {

/// Hears everything the library tells its host while it lives. Failed assertions that were not
/// taken with TakeAssertions () fail the test when it dies.
class Hearing final : public Environment {
 public:
  Hearing () : before (Environment::Install (this)) {}
  ~Hearing () {
    Environment::Install (before);
    for (const std::string& text : assertions) ADD_FAILURE () << "assertion failed: " << text;
  }
  void LogMessage (const char* text) override { log.emplace_back (text); }
  void ReportFileError (const char*, int, int error, const char* file) override {
    fileErrors.emplace_back (std::to_string (error) + " " + file);
  }
  void AssertFailed (const char* condition, const char* source, int line) override {
    assertions.emplace_back (condition);
    places.emplace_back (std::string (source) + ":" + std::to_string (line));
  }
  std::vector<std::string> TakeAssertions () { return std::exchange (assertions, {}); }
  std::vector<std::string> TakeLog () { return std::exchange (log, {}); }

  std::vector<std::string> log;
  std::vector<std::string> fileErrors;
  std::vector<std::string> assertions;
  std::vector<std::string> places;

 private:
  Environment* before;
};

/// A folder that goes with the test.
class TemporaryFolder {
 public:
  TemporaryFolder () {
    std::string pattern = (std::filesystem::temp_directory_path () / "clxml-XXXXXX").string ();
    if (mkdtemp (pattern.data ()) == nullptr) ADD_FAILURE () << "no temporary folder";
    path = pattern;
  }
  ~TemporaryFolder () {
    std::error_code ignored;
    std::filesystem::remove_all (path, ignored);
  }
  TemporaryFolder (const TemporaryFolder&) = delete;
  TemporaryFolder& operator= (const TemporaryFolder&) = delete;

  std::string Host (const std::string& name) const { return (path / name).string (); }
  /// The same path as the library spells it.
  Str Device (const std::string& name) const {
    Str device (Host (name).c_str ());
    device.Replace ('/', '\\');
    return device;
  }

  std::filesystem::path path;
};

/// A test with both.
class LibraryTest : public ::testing::Test {
 protected:
  Hearing hearing;
  TemporaryFolder folder;
};

}  // namespace clxml::testing
