// A file read from front to back.
#include "platform/stream.h"

#include <sys/stat.h>

#include <fstream>
#include <string>

#include "support/faults.h"
#include "support/hearing.h"

namespace clxml {
namespace {

using Stream = testing::LibraryTest;

TEST_F (Stream, ReadsToTheEndAndTellsErrorsFromIt) {
  std::ofstream (folder.Host ("a.xml")) << "0123456789";
  file_Stream stream;
  ASSERT_TRUE (stream.Open (folder.Device ("a.xml")));
  EXPECT_EQ (stream.Size (), 10u);
  char bytes[16] = {};
  testing::FailingDisk disk;
  disk.AtMost (2);
  EXPECT_EQ (stream.Read (bytes, 5), 5);
  disk.FailOnce (os_Operation::Read, 1);
  EXPECT_EQ (stream.Read (bytes + 5, 4), 2);  // what came before the error
  disk.FailOnce (os_Operation::Read, 0);
  EXPECT_TRUE (hearing.fileErrors.empty ());
  EXPECT_EQ (stream.Read (bytes + 7, 4), -1);
  EXPECT_EQ (hearing.fileErrors, std::vector<std::string>{std::to_string (EIO) + " " +
                                                          folder.Device ("a.xml").Data ()});
  EXPECT_EQ (stream.Read (bytes + 7, 9), 3);
  EXPECT_STREQ (bytes, "0123456789");
  EXPECT_EQ (stream.Read (bytes, 9), 0);
  stream.Close ();
  EXPECT_FALSE (stream.IsOpen ());
  stream.Close ();
}

TEST_F (Stream, OpensRegularFilesOfAnySizeOnly) {
  std::filesystem::create_directory (folder.path / "dir");
  ASSERT_EQ (::mkfifo (folder.Host ("pipe").c_str (), 0666), 0);
  file_Stream stream;
  for (const char* name : {"none", "dir", "pipe"})
    EXPECT_FALSE (stream.Open (folder.Device (name))) << name;
  EXPECT_FALSE (stream.Open (""));
  EXPECT_FALSE (stream.Open ("Q:\\a.xml"));
  EXPECT_TRUE (hearing.fileErrors.empty ());

  std::ofstream (folder.Host ("large"));
  std::filesystem::resize_file (folder.path / "large", 0x140000000ull);
  ASSERT_TRUE (stream.Open (folder.Device ("large")));
  EXPECT_EQ (stream.Size (), 0x140000000ull);
}

}  // namespace
}  // namespace clxml
