// A locale whose decimal point is a comma.
// For tests that show that a reading or a writing of numbers does not ask the locale. Leans on
// hearing and the C library.
#pragma once

#include <clocale>
#include <cstdlib>
#include <string>

#include "support/hearing.h"

namespace clxml::testing {

/// In force while it lives, if the system has such a locale or can make one.
class CommaLocale {
 public:
  CommaLocale () {
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE", "nl_NL.UTF-8"})
      if (Set (name)) return;
    const std::string command =
        "localedef -c -i de_DE -f UTF-8 '" + folder.Host ("de_DE.UTF-8") + "' >/dev/null 2>&1";
    if (std::system (command.c_str ()) != 0) return;
    setenv ("LOCPATH", folder.path.c_str (), 1);
    Set ("de_DE.UTF-8");
    unsetenv ("LOCPATH");
  }
  ~CommaLocale () { std::setlocale (LC_ALL, "C"); }
  CommaLocale (const CommaLocale&) = delete;
  CommaLocale& operator= (const CommaLocale&) = delete;

  bool inForce = false;

 private:
  bool Set (const char* name) {
    inForce = std::setlocale (LC_ALL, name) != nullptr && *std::localeconv ()->decimal_point == ',';
    return inForce;
  }
  TemporaryFolder folder;
};

}  // namespace clxml::testing
