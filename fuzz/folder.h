// A folder of a fuzz target's own, gone when the program ends.
// Where the files stand that a target hands to the library. Leans on platform/folder.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/folder.h"

namespace clxml::fuzz {

/// Made on construction in the system's temporary folder; ends the program when that fails.
class OwnFolder {
 public:
  OwnFolder () {
    std::string pattern = (std::filesystem::temp_directory_path () / "clxml-fuzz-XXXXXX").string ();
    if (mkdtemp (pattern.data ()) == nullptr) std::abort ();
    path = pattern;
  }
  ~OwnFolder () {
    std::error_code ignored;
    std::filesystem::remove_all (path, ignored);
  }
  OwnFolder (const OwnFolder&) = delete;
  OwnFolder& operator= (const OwnFolder&) = delete;

  std::filesystem::path path;
};

/// The path as the library spells it.
inline Str Device (const std::filesystem::path& host) {
  return folder_DevicePath (Str (host.c_str ()));
}

}  // namespace clxml::fuzz
