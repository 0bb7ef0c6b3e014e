// Files: names, opening and closing, reading and writing, the file as a whole.
#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "support/faults.h"
#include "support/hearing.h"
#include "support/mounted.h"

namespace clxml {
namespace {

using testing::FailingDisk;
using testing::Mounted;
using Texts = std::vector<std::string>;

class File : public testing::LibraryTest {
 protected:
  void Put (const std::string& name, const std::string& content) {
    std::ofstream (folder.Host (name), std::ios::binary) << content;
  }
  std::string Content (const std::string& name) {
    std::ifstream in (folder.Host (name), std::ios::binary);
    return {std::istreambuf_iterator<char> (in), {}};
  }
  bool Stands (const std::string& name) { return std::filesystem::exists (folder.path / name); }
  void Protect (const std::string& name) { ::chmod (folder.Host (name).c_str (), 0444); }
  std::size_t Entries () {
    return static_cast<std::size_t> (
        std::distance (std::filesystem::directory_iterator (folder.path), {}));
  }
  std::string Reported (int error, const std::string& name) {
    return std::to_string (error) + " " + folder.Device (name).Data ();
  }
  void ExpectReports (const Texts& expected) {
    EXPECT_EQ (std::exchange (hearing.fileErrors, {}), expected);
  }
  void ExpectAssertions (const Texts& expected) { EXPECT_EQ (hearing.TakeAssertions (), expected); }
};

TEST_F (File, SplitsAndJoinsNames) {
  const struct {
    const char* whole;
    const char* directory;
    const char* name;
    const char* extension;
    const char* joined;  // null: the same
  } cases[] = {
      {"a/b/c.job", "a\\b\\", "c", "job", "a\\b\\c.job"},
      {"\\Disk\\x.y.z", "\\Disk\\", "x.y", "z", nullptr},
      {"c.", "", "c", "", nullptr},
      {"c", "", "c", "", "c."},
      {"\\a.b\\c", "\\a.b\\", "c", "", "\\a.b\\c."},
      {"\\a\\.profile", "\\a\\", "", "profile", nullptr},
      {"D:x.job", "D:", "x", "job", nullptr},
      {"D:\\a\\x.job", "D:\\a\\", "x", "job", nullptr},
      {"\\a\\", "\\a\\", "", "", ""},
      {"", "", "", "", nullptr},
  };
  for (const auto& c : cases) {
    Str directory, name, extension;
    file_Class::SplitName (c.whole, directory, name, extension);
    EXPECT_STREQ (directory.Data (), c.directory) << c.whole;
    EXPECT_STREQ (name.Data (), c.name) << c.whole;
    EXPECT_STREQ (extension.Data (), c.extension) << c.whole;
    const file_Class file{Str (c.whole)};
    EXPECT_STREQ (file.GetWholeName ().Data (), c.joined ? c.joined : c.whole);
    if (*c.whole) {
      EXPECT_STREQ (file.Folder.Path.Data (), c.directory);
    }
  }
}

TEST_F (File, TheDirectoryTellsTheFolder) {
  Str locale = folder_Class (folder_Locale).Path;
  locale.MakeUpper ();
  const struct {
    Str whole;
    folder_Enum type;
  } cases[] = {{"\\DISK\\norvath data\\a.job", folder_Project},
               {"/Disk/Norvath Data/a.job", folder_Project},
               {locale + "a.txt", folder_Locale},
               {"\\Disk\\Norvath Data\\Export\\a.job", folder_NonStandard},
               {"a.job", folder_NonStandard},
               {"", folder_Unknown}};
  for (const auto& c : cases)
    EXPECT_EQ (file_Class (c.whole).Folder.Type, c.type) << c.whole.Data ();
  EXPECT_FALSE (file_Class (Str ()).Exists ());
  EXPECT_FALSE (file_Class (folder_Class (), "a", "b").Exists ());
}

TEST_F (File, CreateMakesOneMissingDirectory) {
  file_Class file;
  ASSERT_TRUE (file.Create (folder.Device ("new/a.job")));
  EXPECT_TRUE (file.CanWrite ());
  EXPECT_EQ (file.GetSize (), 0u);
  file.Close ();
  EXPECT_TRUE (Stands ("new/a.job"));
  ExpectReports ({});

  EXPECT_FALSE (file.Create (folder.Device ("two/levels/a.job")));
  EXPECT_FALSE (file.IsOpen ());
  EXPECT_FALSE (Stands ("two"));
  ExpectReports ({Reported (ENOENT, "two/levels/a.job")});
  EXPECT_FALSE (file.Create ("Q:\\a.job"));
  ExpectReports ({std::to_string (ENODEV) + " Q:\\a.job"});
  EXPECT_FALSE (file.Create (""));
}

TEST_F (File, CreateLeavesAnExistingFileAlone) {
  Put ("a.job", "precious");
  file_Class file;
  EXPECT_FALSE (file.Create (folder.Device ("a.job")));
  ExpectReports ({Reported (EEXIST, "a.job")});
  ExpectAssertions ({});
  Protect ("a.job");
  EXPECT_FALSE (file.Create (folder.Device ("a.job")));
  ExpectReports ({Reported (EEXIST, "a.job")});
  ExpectAssertions ({"readOnly == false"});
  EXPECT_EQ (Content ("a.job"), "precious");
  const Mounted disk ("\\Disk\\", folder.path.c_str ());
  EXPECT_FALSE (file.Create ("\\Disk\\A.JOB"));  // one file where case does not count
  ExpectAssertions ({"readOnly == false"});
}

TEST_F (File, MakesUniqueNames) {
  const auto taken = [&] (int from, int to) {
    for (int i = from; i <= to; ++i) Put ("n" + std::to_string (1000 + i).substr (1) + ".tmp", "");
  };
  const auto unique = [&] {
    file_Class file (folder.Device ("n.tmp"));
    const bool made = file.MakeUnique ();
    return std::string (made ? file.Name.Data () : "none") + (made ? "" : file.Name.Data ());
  };
  EXPECT_EQ (unique (), "n001");
  taken (1, 2);
  EXPECT_EQ (unique (), "n003");
  taken (3, 9);
  EXPECT_EQ (unique (), "n010");
  taken (10, 99);
  EXPECT_EQ (unique (), "n100");
  taken (100, 998);
  EXPECT_EQ (unique (), "n999");
  taken (999, 999);
  EXPECT_EQ (unique (), "nonen");

  const Mounted temporary ("\\Temp\\", folder.path.c_str ());
  Put ("_CL001.tmp", "");
  file_Class file;
  EXPECT_TRUE (file.CreateTemporary ());
  EXPECT_STREQ (file.GetWholeName ().Data (), "\\Temp\\_CL002.tmp");
  EXPECT_FALSE (Stands ("_CL002.tmp"));
}

TEST_F (File, OpensOnlyRegularFilesThatAreThere) {
  std::filesystem::create_directory (folder.path / "dir");
  ASSERT_EQ (::mkfifo (folder.Host ("pipe").c_str (), 0666), 0);
  Put ("plain", "x");
  const struct {
    const char* name;
    int32_t access;
    int error;
  } cases[] = {{"none.job", FILE_Read, ENOENT},   {"none.job", FILE_ReadWrite, ENOENT},
               {"dir", FILE_Read, EISDIR},        {"dir", FILE_ReadWrite, EISDIR},
               {"pipe", FILE_Read, EINVAL},       {"pipe", FILE_ReadWrite, EINVAL},
               {"plain/more", FILE_Read, ENOTDIR}};
  for (const auto& c : cases) {
    file_Class file;
    EXPECT_FALSE (file.Open (folder.Device (c.name), c.access)) << c.name;
    EXPECT_FALSE (file.IsOpen ());
    const Str whole = file.GetWholeName ();
    ExpectReports ({std::to_string (c.error) + " " + whole.Data ()});
  }
  file_Class file;
  EXPECT_FALSE (file.Open ("", FILE_Read));
  EXPECT_FALSE (file.Open (folder.Device ("plain"), 3));
  ExpectAssertions ({"access >= FILE_Read && access <= FILE_ReadWrite"});
  ASSERT_TRUE (file.Open (folder.Device ("plain"), FILE_Read));
  EXPECT_FALSE (file.Open (folder.Device ("plain"), FILE_Read));
  ExpectAssertions ({"!this->IsOpen()"});
  file.Close ();
  ExpectReports ({});
}

TEST_F (File, AReadOnlyFileOpensForReading) {
  Put ("a.job", "content");
  Protect ("a.job");
  for (const int32_t access : {FILE_Write, FILE_ReadWrite}) {
    file_Class file;
    ASSERT_TRUE (file.Open (folder.Device ("a.job"), access));
    EXPECT_TRUE (file.IsReadOnly ());
    EXPECT_FALSE (file.CanWrite ());
    ExpectReports ({});
    uint32_t written = 9;
    EXPECT_FALSE (file.Write ("x", 1, &written));
    EXPECT_EQ (written, 0u);
    EXPECT_FALSE (file.Append ("x", 1));
    EXPECT_FALSE (file.Truncate (0));
    const std::string refused = Reported (EACCES, "a.job");
    ExpectReports ({refused, refused, refused});
    char byte = 0;
    file.Seek (3);
    EXPECT_TRUE (file.Read (&byte, 1));
    EXPECT_EQ (byte, 't');
    file.Close ();
  }
  EXPECT_EQ (Content ("a.job"), "content");
  EXPECT_FALSE (file_Class (folder.Device ("none")).IsReadOnly ());
}

TEST_F (File, LargeFilesAreReadButNotWritten) {
  Put ("just", "");
  Put ("large", "start");
  std::filesystem::resize_file (folder.path / "just", 0xFFFFFFFFull);
  std::filesystem::resize_file (folder.path / "large", 0x140000000ull);
  file_Class file;
  EXPECT_FALSE (file.Open (folder.Device ("large"), FILE_ReadWrite));
  EXPECT_FALSE (file.IsOpen ());
  ExpectReports ({Reported (EFBIG, "large.")});
  ASSERT_TRUE (file.Open (folder.Device ("large"), FILE_Read));
  EXPECT_EQ (file.GetSize (), 0xFFFFFFFFu);
  file.Close ();
  EXPECT_EQ (std::filesystem::file_size (folder.path / "large"), 0x140000000ull);

  ASSERT_TRUE (file.Open (folder.Device ("just"), FILE_ReadWrite));
  EXPECT_EQ (file.GetSize (), 0xFFFFFFFFu);
  uint32_t written = 9;
  EXPECT_FALSE (file.Append ("x", 1));
  file.Seek (0xFFFFFFFE);
  EXPECT_FALSE (file.Write ("xy", 2, &written));
  EXPECT_EQ (written, 0u);
  ExpectReports ({Reported (EFBIG, "just."), Reported (EFBIG, "just.")});
  EXPECT_TRUE (file.Write ("x", 1));
  file.Close ();
}

TEST_F (File, ReadsUpToTheLogicalEnd) {
  Put ("a.bin", "0123456789");
  file_Class file;
  ASSERT_TRUE (file.Open (folder.Device ("a.bin"), FILE_Read));
  char bytes[20] = {};
  uint32_t got = 77;
  EXPECT_TRUE (file.Read (bytes, 4, &got));
  EXPECT_EQ (got, 4u);
  EXPECT_TRUE (file.Read (bytes + 4, 16, &got));
  EXPECT_EQ (got, 6u);
  EXPECT_STREQ (bytes, "0123456789");
  EXPECT_EQ (file.Tell (), 10u);
  got = 77;
  EXPECT_FALSE (file.Read (bytes, 1, &got));
  file.Seek (1000);
  EXPECT_FALSE (file.Read (bytes, 1, &got));
  EXPECT_EQ (got, 77u);
  // What others append is beyond the size that counts.
  Put ("a.bin", "0123456789abc");
  file.Seek (8);
  EXPECT_TRUE (file.Read (bytes, 10, &got));
  EXPECT_EQ (got, 2u);

  FailingDisk disk;
  disk.FailOnce (os_Operation::Read, 0, EIO);
  file.Seek (2);
  got = 77;
  EXPECT_FALSE (file.Read (bytes, 4, &got));
  EXPECT_EQ (got, 77u);
  EXPECT_LT (file.Tell (), file.GetSize ());  // an error, not the end
  ExpectReports ({Reported (EIO, "a.bin")});
  disk.AtMost (1);
  EXPECT_TRUE (file.Read (bytes, 4, &got));
  EXPECT_EQ (got, 4u);
  file.Close ();
}

TEST_F (File, WritesAndAppendsInOneCallEach) {
  file_Class file;
  ASSERT_TRUE (file.Create (folder.Device ("a.bin")));
  FailingDisk disk;
  EXPECT_TRUE (file.Write ("0123456789", 10));
  EXPECT_EQ (file.GetSize (), 10u);
  file.Seek (2);
  EXPECT_TRUE (file.Write ("xx", 2));
  EXPECT_EQ (file.GetSize (), 10u);
  EXPECT_EQ (file.Tell (), 4u);
  EXPECT_TRUE (file.Append ("abc", 3));
  EXPECT_EQ (file.GetSize (), 13u);
  EXPECT_EQ (file.Tell (), 13u);
  EXPECT_TRUE (file.Write ("", 0));
  file.Seek (15);
  EXPECT_TRUE (file.Write ("z", 1));
  EXPECT_EQ (file.GetSize (), 16u);
  EXPECT_TRUE (file.Flush ());
  EXPECT_EQ (disk.Calls (os_Operation::Write), 4u);
  EXPECT_EQ (disk.Calls (os_Operation::Sync), 1u);
  EXPECT_EQ (disk.Calls (os_Operation::Resize), 0u);
  char bytes[16] = {};
  file.Seek (0);
  EXPECT_TRUE (file.Read (bytes, 16));
  EXPECT_EQ (std::string (bytes, 16), std::string ("01xx456789abc\0\0z", 16));
  file.Close ();
  EXPECT_EQ (Content ("a.bin"), std::string ("01xx456789abc\0\0z", 16));
}

TEST_F (File, AFullDiskTakesAPartAndSaysSo) {
  file_Class file;
  ASSERT_TRUE (file.Create (folder.Device ("a.bin")));
  FailingDisk disk;
  disk.AtMost (3);
  disk.FullAfter (7);
  uint32_t written = 0;
  EXPECT_FALSE (file.Write ("0123456789", 10, &written));
  EXPECT_EQ (written, 7u);
  EXPECT_EQ (file.Tell (), 7u);
  EXPECT_EQ (file.GetSize (), 7u);
  EXPECT_FALSE (file.Append ("x", 1));
  const std::string full = Reported (ENOSPC, "a.bin");
  ExpectReports ({full, full});
  disk.Heal ();
  file.Seek (0);
  EXPECT_TRUE (file.Write ("0123456789", 10, &written));
  EXPECT_EQ (written, 10u);
  disk.FailOnce (os_Operation::Sync, 0);
  EXPECT_FALSE (file.Flush ());
  EXPECT_TRUE (file.Flush ());
  disk.FailOnce (os_Operation::Resize, 0);
  EXPECT_FALSE (file.Truncate (3));
  ExpectReports ({Reported (EIO, "a.bin"), Reported (EIO, "a.bin")});
  file.Close ();
  EXPECT_EQ (Content ("a.bin"), "0123456789");
}

TEST_F (File, CloseCutsDownToTheLogicalSize) {
  const struct {
    const char* name;
    int32_t access;
    const char* behind;  // what stands there when it is closed
    const char* left;
  } cases[] = {{"longer", FILE_ReadWrite, "0123456789", "0123"},
               {"longer, write only", FILE_Write, "0123456789", "0123"},
               {"longer, opened for reading", FILE_Read, "0123456789", "0123456789"},
               {"shorter", FILE_ReadWrite, "01", "01"}};
  for (const auto& c : cases) {
    Put ("a.bin", "0123");
    file_Class file;
    ASSERT_TRUE (file.Open (folder.Device ("a.bin"), c.access)) << c.name;
    Put ("a.bin", c.behind);
    file.Close ();
    EXPECT_EQ (Content ("a.bin"), c.left) << c.name;
  }
}

TEST_F (File, TruncateCutsTheFileButNotTheLogicalSize) {
  Put ("a.bin", "0123456789");
  file_Class file;
  ASSERT_TRUE (file.Open (folder.Device ("a.bin"), FILE_ReadWrite));
  EXPECT_TRUE (file.Truncate (4));
  EXPECT_EQ (Content ("a.bin"), "0123");
  EXPECT_EQ (file.GetSize (), 10u);
  EXPECT_EQ (file.Tell (), 4u);
  EXPECT_TRUE (file.Truncate (12));
  EXPECT_EQ (Content ("a.bin").size (), 12u);
  file.Close ();
  EXPECT_EQ (Content ("a.bin"), std::string ("0123\0\0\0\0\0\0", 10));
}

TEST_F (File, ReadsLines) {
  const std::string block (8191, 'b');
  const struct {
    const char* name;
    std::string content;
    int32_t room;
    Texts lines;
  } cases[] = {
      {"last line without end", "ab\r\ncd", 100, {"ab", "cd"}},
      {"last line with end", "ab\ncd\n", 100, {"ab", "cd"}},
      {"empty file", "", 100, {}},
      {"empty lines", "\n\r\n\n", 100, {"", "", ""}},
      {"only the last carriage return goes", "a\r\r\nb\rc\r", 100, {"a\r", "b\rc\r"}},
      {"room used up", "abcdef\n", 3, {"ab", "cd", "ef", ""}},
      {"room for one byte", "ab\n", 2, {"a", "b", ""}},
      {"a line in pieces leaves its carriage return behind", "ab\r\nc", 3, {"ab", "", "c"}},
      {"line feed at the first byte of a block", block + "b\nc", 9000, {block + "b", "c"}},
      {"carriage return at the end of a block", block + "\r\nc", 9000, {block, "c"}},
      {"line feed at the end of a block", block + "\nc", 9000, {block, "c"}},
      {"line over three blocks", block + block + block + "\n", 30000, {block + block + block}},
  };
  for (const auto& c : cases) {
    Put ("a.txt", c.content);
    file_Class file;
    ASSERT_TRUE (file.Open (folder.Device ("a.txt"), FILE_Read));
    std::vector<char> line (static_cast<std::size_t> (c.room) + 1, '#');
    Texts lines;
    while (lines.size () < 20 && file.ReadLine (line.data (), c.room))
      lines.emplace_back (line.data ());
    EXPECT_EQ (lines, c.lines) << c.name;
    EXPECT_EQ (line.back (), '#') << c.name;
    EXPECT_FALSE (file.ReadLine (line.data (), c.room)) << c.name;
    EXPECT_EQ (file.Tell (), c.content.size ()) << c.name;
    file.Close ();
  }
  Put ("a.txt", "ab\n");
  file_Class file;
  ASSERT_TRUE (file.Open (folder.Device ("a.txt"), FILE_Read));
  char line[2] = "#";
  EXPECT_FALSE (file.ReadLine (line, 1));
  EXPECT_FALSE (file.ReadLine (line, 0));
  EXPECT_EQ (file.Tell (), 0u);
  file.Close ();
}

TEST_F (File, LinesAndPositionsAgree) {
  std::string content;
  for (int i = 0; i < 3000; ++i) content += std::to_string (10000 + i) + "\n";  // 18,000 bytes
  Put ("a.txt", content);
  file_Class file;
  ASSERT_TRUE (file.Open (folder.Device ("a.txt"), FILE_ReadWrite));
  char line[20];
  const auto next = [&] { return file.ReadLine (line, sizeof line) ? std::string (line) : "end"; };
  // In and out of the window, back into one that is gone, to the end and behind it.
  for (const uint32_t i : {0u, 1u, 1000u, 999u, 1365u, 2999u, 2000u, 1999u, 0u, 1366u, 1300u}) {
    file.Seek (6 * i);
    EXPECT_EQ (file.Tell (), 6 * i);
    EXPECT_EQ (next (), std::to_string (10000 + i));
    EXPECT_EQ (file.Tell (), 6 * i + 6);
  }
  file.Seek (18000);
  EXPECT_EQ (next (), "end");
  file.Seek (20000);
  EXPECT_EQ (next (), "end");
  file.Seek (17999);
  EXPECT_EQ (next (), "");
  // Reading and writing go on behind the line, not behind what was read ahead.
  file.Seek (600);
  next ();
  EXPECT_TRUE (file.Read (line, 6));
  EXPECT_EQ (std::string (line, 5), "10101");
  EXPECT_EQ (next (), "10102");
  EXPECT_TRUE (file.Write ("x", 1));
  EXPECT_EQ (next (), "0103");
  EXPECT_TRUE (file.Append ("more\n", 5));
  file.Seek (618);
  EXPECT_EQ (next (), "x0103");
  file.Close ();
}

TEST_F (File, ASmallFileIsSoughtInItsWindow) {
  Put ("a.txt", "one\ntwo\nthree\n");
  file_Class file;
  ASSERT_TRUE (file.Open (folder.Device ("a.txt"), FILE_Read));
  char line[20];
  EXPECT_TRUE (file.ReadLine (line, sizeof line));
  file.Seek (8);
  EXPECT_TRUE (file.ReadLine (line, sizeof line));
  EXPECT_STREQ (line, "three");
  file.Seek (0);
  EXPECT_TRUE (file.ReadLine (line, sizeof line));
  EXPECT_STREQ (line, "one");
  ExpectAssertions ({});
  file.Seek (14);
  ExpectAssertions ({"_ReadIndex >= 0 && _ReadIndex < _ReadSize"});
  EXPECT_EQ (file.Tell (), 14u);
  EXPECT_FALSE (file.ReadLine (line, sizeof line));
  file.Close ();
}

TEST_F (File, AFailingRefillEndsTheLines) {
  Put ("a.txt", std::string (8000, 'a') + "\n" + std::string (2000, 'b') + "\n");
  file_Class file;
  ASSERT_TRUE (file.Open (folder.Device ("a.txt"), FILE_Read));
  std::vector<char> line (9000);
  EXPECT_TRUE (file.ReadLine (line.data (), 9000));
  {
    FailingDisk disk;
    disk.FailOnce (os_Operation::Read, 0);
    EXPECT_FALSE (file.ReadLine (line.data (), 9000));
    ExpectReports ({Reported (EIO, "a.txt")});
  }
  file.Seek (8001);
  EXPECT_TRUE (file.ReadLine (line.data (), 9000));
  EXPECT_EQ (line.data (), std::string (2000, 'b'));
  file.Close ();
}

TEST_F (File, ScrambledTextReadsAsPlainLines) {
  std::string text = "first line\r\nsecond\n";
  for (int i = 0; i < 12000; ++i) text += std::to_string (10000 + i) + "\n";  // past its period
  std::string scrambled = text;
  file_Scramble (scrambled.data (), scrambled.size (), 0);
  EXPECT_EQ (scrambled.find ("line"), std::string::npos);
  const std::string marker (reinterpret_cast<const char*> (FILE_ScrambleMarker), 8);
  Put ("a.txt", marker + scrambled);

  file_Class file;
  ASSERT_TRUE (file.Open (folder.Device ("a.txt"), FILE_Read));
  char line[20];
  std::string plain;
  while (file.ReadLine (line, sizeof line)) plain += line + std::string ("\n");
  text.erase (text.find ('\r'), 1);
  EXPECT_TRUE (plain == text);
  file.Seek (8 + 19 + 6 * 11500);
  EXPECT_TRUE (file.ReadLine (line, sizeof line));
  EXPECT_STREQ (line, "21500");
  file.Seek (8 + 12);
  EXPECT_TRUE (file.ReadLine (line, sizeof line));
  EXPECT_STREQ (line, "second");
  file.Seek (0);
  EXPECT_TRUE (file.ReadLine (line, sizeof line));
  EXPECT_STREQ (line, "first line");
  file.Close ();

  // The generator by its definition, at an offset that a block may start with.
  uint32_t x = FILE_ScrambleSeed;
  for (int i = 0; i <= 70000; ++i) x = (25173 * x + 13849) % 65536;
  unsigned char byte = 0;
  file_Scramble (&byte, 1, 70000);
  EXPECT_EQ (byte, x >> 8);

  // The marker alone is an empty text; a part of it, or one read from elsewhere, is plain.
  const struct {
    std::string content;
    uint32_t start;
    const char* line;
  } cases[] = {{marker, 0, nullptr},
               {marker.substr (0, 7), 0, "\x8ENCTXT1"},
               {marker + "\n\n", 1, "NCTXT1\x1A"}};
  for (const auto& c : cases) {
    Put ("b.txt", c.content);
    ASSERT_TRUE (file.Open (folder.Device ("b.txt"), FILE_Read));
    file.Seek (c.start);
    EXPECT_EQ (file.ReadLine (line, sizeof line), c.line != nullptr);
    EXPECT_STREQ (line, c.line ? c.line : "");
    file.Close ();
  }
}

TEST_F (File, StandardOutputIsAStream) {
  Put ("out", "before ");
  const int kept = ::dup (1);
  const int target = ::open (folder.Host ("out").c_str (), O_WRONLY | O_APPEND);
  ::dup2 (target, 1);
  ::close (target);
  for (const char* text : {"one ", "two"}) {
    file_Class file;
    EXPECT_TRUE (file.Open ("STDOUT$", FILE_Write));
    EXPECT_TRUE (file.Write (text, 2));
    file.Seek (0);
    EXPECT_TRUE (file.Append (text + 2, static_cast<uint32_t> (strlen (text)) - 2));
    EXPECT_TRUE (file.Flush ());
    EXPECT_EQ (file.GetSize (), 0u);
    char byte;
    EXPECT_FALSE (file.Read (&byte, 1));
    file.Close ();
  }
  ::dup2 (kept, 1);
  ::close (kept);
  EXPECT_EQ (Content ("out"), "before one two");
}

TEST_F (File, DeleteTakesTheFileAndSparesAReadOnlyOne) {
  Put ("a.job", "");
  Put ("b.job", "");
  Protect ("b.job");
  std::filesystem::create_directory (folder.path / "dir");
  EXPECT_TRUE (file_Class (folder.Device ("a.job")).Delete ());
  EXPECT_FALSE (Stands ("a.job"));
  EXPECT_FALSE (file_Class (folder.Device ("a.job")).Delete ());
  EXPECT_FALSE (file_Class (folder.Device ("no/such.job")).Delete ());
  EXPECT_FALSE (file_Class (Str ("Q:\\a.job")).Delete ());
  ExpectReports ({});
  EXPECT_FALSE (file_Class (folder.Device ("b.job")).Delete ());
  EXPECT_FALSE (file_Class (folder.Device ("dir")).Delete ());
  EXPECT_TRUE (Stands ("b.job"));
  ExpectReports ({Reported (EACCES, "b.job"), Reported (EISDIR, "dir.")});
}

TEST_F (File, RenameNeverReplaces) {
  Put ("a.job", "a");
  Put ("b.job", "b");
  file_Class file (folder.Device ("a.job"));
  EXPECT_FALSE (file.Rename (file_Class (folder.Device ("b.job"))));
  EXPECT_STREQ (file.Name.Data (), "a");
  EXPECT_EQ (Content ("b.job"), "b");
  ExpectReports ({Reported (EEXIST, "a.job") + " -> " + folder.Device ("b.job").Data ()});
  EXPECT_TRUE (file.Rename (file_Class (folder.Device ("c.txt"))));
  EXPECT_TRUE (file.GetWholeName () == folder.Device ("c.txt"));
  EXPECT_FALSE (Stands ("a.job"));
  EXPECT_EQ (Content ("c.txt"), "a");
  EXPECT_TRUE (file.Rename (file));
  EXPECT_FALSE (file_Class (folder.Device ("none")).Rename (file_Class (folder.Device ("d.job"))));
  EXPECT_EQ (std::exchange (hearing.fileErrors, {}).size (), 1u);

  const Mounted disk ("\\Disk\\", folder.path.c_str ());
  file_Class mounted (Str ("\\Disk\\b.job"));
  EXPECT_TRUE (mounted.Rename (file_Class (Str ("\\Disk\\B.JOB"))));
  EXPECT_TRUE (Stands ("B.JOB"));
  EXPECT_FALSE (Stands ("b.job"));
  EXPECT_FALSE (mounted.Rename (file_Class (Str ("\\Disk\\C.TXT"))));
}

TEST_F (File, CopyReplacesAtTheEndOnly) {
  const std::string content (700000, 'n');
  Put ("new", content);
  Put ("old", "old");
  ::chmod (folder.Host ("new").c_str (), 0640);
  const timespec times[2] = {{1000000000, 0}, {1000000000, 0}};
  ::utimensat (AT_FDCWD, folder.Host ("new").c_str (), times, 0);
  const file_Class file (folder.Device ("new"));
  {
    FailingDisk disk;
    for (const os_Operation operation :
         {os_Operation::Create, os_Operation::Read, os_Operation::Write, os_Operation::Sync,
          os_Operation::Move}) {
      disk.FailOnce (operation, operation == os_Operation::Write ? 1 : 0, EIO);
      EXPECT_FALSE (file.Copy (folder.Device ("old")));
      disk.Heal ();
      ExpectReports ({Reported (EIO, "new.")});
      EXPECT_EQ (Content ("old"), "old");
      EXPECT_EQ (Entries (), 2u);
    }
    disk.AtMost (100001);
    EXPECT_TRUE (file.Copy (folder.Device ("old")));
  }
  EXPECT_TRUE (Content ("old") == content);
  EXPECT_EQ (Entries (), 2u);
  struct stat status = {};
  ::stat (folder.Host ("old").c_str (), &status);
  EXPECT_EQ (status.st_mode & 07777, 0640u);
  EXPECT_EQ (status.st_mtime, 1000000000);
  EXPECT_TRUE (file.Copy (file_Class (folder.Device ("third"))));

  Put ("guarded", "old");
  Protect ("guarded");
  EXPECT_FALSE (file.Copy (folder.Device ("guarded")));
  EXPECT_EQ (Content ("guarded"), "old");
  EXPECT_FALSE (file.Copy (folder.Device ("no/directory")));
  EXPECT_FALSE (file_Class (folder.Device ("none")).Copy (folder.Device ("x")));
  ExpectReports (
      {Reported (EACCES, "new."), Reported (ENOENT, "new."), Reported (ENOENT, "none.")});
}

TEST_F (File, TellsTheLastWriteInLocalTime) {
  Put ("a.job", "");
  const time_t when = 1246453509;  // 2009-07-01 13:05:09 UTC
  const timespec times[2] = {{when, 0}, {when, 900000000}};
  ::utimensat (AT_FDCWD, folder.Host ("a.job").c_str (), times, 0);
  tm local = {};
  ::localtime_r (&when, &local);
  using namespace std::chrono;
  const auto days = sys_days (year (local.tm_year + 1900) / (local.tm_mon + 1) / local.tm_mday) -
                    sys_days (year (1980) / 1 / 1);
  const double expected = static_cast<double> (days.count ()) * 86400.0 + local.tm_hour * 3600.0 +
                          local.tm_min * 60.0 + local.tm_sec;
  file_Class file (folder.Device ("a.job"));
  EXPECT_EQ (file.GetTimeStamp (), expected);
  EXPECT_EQ (file.TimeStamp, expected);
  file_Class missing (folder.Device ("none"));
  missing.TimeStamp = 5.0;
  EXPECT_EQ (missing.GetTimeStamp (), 0.0);
  ExpectReports ({Reported (ENOENT, "none.")});
}

TEST_F (File, MisuseIsToldAndHarmless) {
  Put ("a.job", "abc");
  file_Class closed (folder.Device ("a.job"));
  char bytes[4];
  const std::function<bool ()> operations[] = {[&] { return closed.Read (bytes, 1); },
                                               [&] { return closed.Write ("x", 1); },
                                               [&] { return closed.Append ("x", 1); },
                                               [&] { return closed.Truncate (0); },
                                               [&] { return closed.ReadLine (bytes, 4); },
                                               [&] { return closed.Flush (); },
                                               [&] { return closed.Tell () != 0; },
                                               [&] {
                                                 closed.Seek (1);
                                                 return false;
                                               },
                                               [&] {
                                                 closed.Close ();
                                                 return false;
                                               }};
  for (const auto& operation : operations) {
    EXPECT_FALSE (operation ());
    ExpectAssertions ({"_WinHandle != NULL"});
  }
  {
    file_Class open;
    ASSERT_TRUE (open.Open (folder.Device ("a.job"), FILE_ReadWrite));
    file_Class copy (open);
    EXPECT_FALSE (copy.IsOpen ());
    EXPECT_STREQ (copy.Name.Data (), "a");
    ExpectAssertions ({"!file.IsOpen()"});
    open = closed;
    ExpectAssertions ({"!this->IsOpen()"});
    Put ("a.job", "abcdef");
  }
  ExpectAssertions ({"!this->IsOpen()"});
  EXPECT_EQ (Content ("a.job"), "abc");  // it was closed all the same
}

TEST_F (File, AnInvalidHandleIsAProgrammingFault) {
  const int next = ::dup (0);
  ::close (next);
  file_Class file;
  ASSERT_TRUE (file.Create (folder.Device ("a.job")));
  ::close (next);  // the lowest free number, so the file's
  EXPECT_FALSE (file.Write ("x", 1));
  ExpectAssertions ({"!\"Invalid File Handle\""});
  file.Close ();
  EXPECT_FALSE (file.IsOpen ());
  ExpectAssertions ({"!\"Invalid File Handle\"", "!\"Invalid File Handle\""});
}

TEST_F (File, ArraysOwnSortAndCopyTheirFiles) {
  const struct {
    const char* name;
    folder_Enum type;
    double time;
  } files[] = {{"b", folder_ROM, 20.0},
               {"A", folder_Project, 10.0},
               {"B", folder_Export, 30.0},
               {"a", folder_ROM, 10.0}};
  file_Array array;
  for (const auto& f : files) {
    file_Class file (folder_Class (f.type), f.name, "txt");
    file.TimeStamp = f.time;
    array.Add (file);
  }
  const auto names = [] (const file_Array& of) {
    std::string text;
    for (int i = 0; i < of.Count (); ++i) text += of[i].Name.Data ();
    return text;
  };
  const file_Class* const first = &array[0];
  file_Array copy (array);
  copy[0].Name = "z";
  array.Append (array);
  EXPECT_EQ (names (array), "bABabABa");
  EXPECT_EQ (&array[0], first);
  for (int i = 0; i < 4; ++i) array.RemoveAt (4);
  array.SortByName ();
  EXPECT_EQ (names (array), "AabB");
  array.SortByFolder ();
  EXPECT_EQ (names (array), "AabB");
  array.SortByTime ();
  EXPECT_EQ (names (array), "BbAa");
  EXPECT_EQ (names (copy), "zABa");
  copy = array;
  array.RemoveAt (1);
  EXPECT_EQ (names (copy) + names (array), "BbAaBAa");

  Put ("older", "");
  Put ("newer", "");
  const timespec times[2] = {{1000000000, 0}, {1000000000, 0}};
  ::utimensat (AT_FDCWD, folder.Host ("older").c_str (), times, 0);
  file_Array fresh;
  fresh.Add (file_Class (folder.Device ("older")));
  fresh.Add (file_Class (folder.Device ("newer")));
  fresh.SortByTime ();
  EXPECT_EQ (names (fresh), "newerolder");

  array.RemoveAt (3);
  array.RemoveAt (-1);
  EXPECT_TRUE (array[7].Name.IsEmpty ());
  ExpectAssertions ({"index < _Count", "index < _Count", "Index < _Count"});
}

}  // namespace
}  // namespace clxml
