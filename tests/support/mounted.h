// A mount that goes with the test.
// Puts a host directory in place of a device root while it lives. Leans on folder.
#pragma once

#include <gtest/gtest.h>

#include "platform/folder.h"

namespace clxml::testing {

class Mounted {
 public:
  Mounted (const char* deviceRoot, const char* hostDirectory) : root (deviceRoot) {
    EXPECT_TRUE (folder_Mount (root, hostDirectory)) << deviceRoot;
  }
  ~Mounted () { folder_Unmount (root); }
  Mounted (const Mounted&) = delete;
  Mounted& operator= (const Mounted&) = delete;

 private:
  Str root;
};

}  // namespace clxml::testing
