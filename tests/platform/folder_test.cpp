// Folders, and the way of a path between device and host.
#include "platform/folder.h"

#include <sys/stat.h>

#include <fstream>
#include <string>

#include "support/hearing.h"
#include "support/mounted.h"

namespace clxml {
namespace {

using testing::Mounted;

class Folder : public testing::LibraryTest {
 protected:
  std::string HostOf (const char* device) { return folder_HostPath (device).Data (); }
  void Touch (const std::string& name) { std::ofstream (folder.Host (name)) << name; }
  void MakeDirectory (const std::string& name) {
    std::filesystem::create_directories (folder.path / name);
  }
};

TEST_F (Folder, StandardFoldersHaveTheirPaths) {
  Str root (std::filesystem::current_path ().c_str ());
  root.Replace ('/', '\\');
  root.MakeLower ();
  root += "\\";
  const struct {
    folder_Enum type;
    Str path;
    bool isStatic;
  } cases[] = {
      {folder_Unknown, "", false},
      {folder_Project, "\\Disk\\Norvath Data\\", false},
      {folder_ROM, root + "ROM\\", true},
      {folder_Locale, root + "Languages\\", true},
      {folder_Language, root + "Languages\\", true},
      {folder_NonStandard, root, false},
      {folder_ThrashData, "\\Disk\\Norvath Data\\ThrashData\\", false},
      {folder_Temp, "\\Temp\\", false},
      {folder_Export, "\\Disk\\Norvath Data\\Export\\", false},
      {folder_Email, "\\Disk\\Norvath Data\\Email\\", false},
  };
  for (const auto& c : cases) {
    const folder_Class standard (c.type);
    EXPECT_EQ (standard.Type, c.type);
    EXPECT_STREQ (standard.Path.Data (), c.path.Data ());
    EXPECT_EQ (standard.IsStatic, c.isStatic) << c.type;
    EXPECT_FALSE (standard.Spare);
  }
  const folder_Class german = folder_Class::ForLanguage ("German");
  EXPECT_TRUE (german.Path == root + "Languages\\German\\");
  EXPECT_TRUE (german.Language == "German");
}

TEST_F (Folder, RefusesTypesWithoutADirectory) {
  for (const int type : {static_cast<int> (folder_Receiver), -2, 10, 300}) {
    const folder_Class unknown (static_cast<folder_Enum> (type));
    EXPECT_EQ (unknown.Type, folder_Unknown);
    EXPECT_TRUE (unknown.Path.IsEmpty ());
  }
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"type != folder_Receiver", "", "", ""}));
  const folder_Class given (folder_Temp, "a/b");
  EXPECT_TRUE (given.Path == "a\\b\\");
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"type == folder_NonStandard"});
}

TEST_F (Folder, DevicePathsLeadToTheHostBySyntax) {
  const Mounted disk ("\\Disk", "/host/disk");
  const Mounted data ("/disk/Norvath Data/", "/data/");
  const Mounted drive ("D:", "/drive");
  const struct {
    const char* device;
    const char* host;
  } cases[] = {
      {"\\a\\b.job", "/a/b.job"},
      {"/a/b.job", "/a/b.job"},
      {"\\Disk\\x.txt", "/host/disk/x.txt"},
      {"\\DISK\\x.txt", "/host/disk/x.txt"},
      {"\\Disk", "/host/disk/"},
      {"\\Disks\\x", "/Disks/x"},
      {"\\Disk\\Norvath Data\\x.job", "/data/x.job"},
      {"\\Disk\\Norvath Data\\Export\\", "/data/Export/"},
      {"D:\\x.job", "/drive/x.job"},
      {"d:x.job", "/drive/x.job"},
      {"C:\\x.job", ""},
      {"C:", ""},
      {"a\\b.job", "a/b.job"},
      {"x.job", "x.job"},
      {"\\Temp\\x.tmp", "/tmp/x.tmp"},
      {"\\temp\\x.tmp", "/temp/x.tmp"},
      // the dot of a name without extension
      {"\\a\\name.", "/a/name"},
      {"name.", "name"},
      {"\\a.b\\c.d.", "/a.b/c.d"},
      {"\\a\\..", "/a/.."},
      {"\\a\\.", "/a/."},
      {"..", ".."},
      {"\\a.\\b", "/a./b"},
      {"", ""},
  };
  for (const auto& c : cases) EXPECT_EQ (HostOf (c.device), c.host) << c.device;
}

TEST_F (Folder, EveryHostPathHasADevicePathThatLeadsBack) {
  const Mounted disk ("\\Disk\\", "/host/disk");
  const Mounted data ("\\Disk\\Norvath Data\\", "/data");
  const struct {
    const char* host;
    const char* device;
    const char* back;  // null: the same
  } cases[] = {
      {"/a/b.job", "\\a\\b.job", nullptr},
      {"/data/x.job", "\\Disk\\Norvath Data\\x.job", nullptr},
      {"/host/disk/sub/x", "\\Disk\\sub\\x", nullptr},
      // a mount hides this one from its own directory
      {"/host/disk/Norvath Data/x", "\\host\\disk\\Norvath Data\\x", nullptr},
      {"/Disk/x", "\\.\\Disk\\x", "/./Disk/x"},
      {"/Temp/x", "\\.\\Temp\\x", "/./Temp/x"},
      {"/temp/x", "\\temp\\x", nullptr},
      {"/a/name.", "\\a\\name..", nullptr},
      {"/a/...", "\\a\\....", nullptr},
      {"/a/..", "\\a\\..", nullptr},
      {"a/b", "a\\b", nullptr},
      {"c:x", ".\\c:x", "./c:x"},
      {"/a\\b", "", ""},
      {"", "", ""},
  };
  for (const auto& c : cases) {
    const Str device = folder_DevicePath (c.host);
    EXPECT_STREQ (device.Data (), c.device) << c.host;
    EXPECT_EQ (HostOf (device.Data ()), c.back ? c.back : c.host) << c.host;
  }
}

TEST_F (Folder, MountsMoveAndGo) {
  EXPECT_FALSE (folder_Mount ("relative\\", "/x"));
  EXPECT_FALSE (folder_Mount ("", "/x"));
  EXPECT_FALSE (folder_Mount ("\\Disk\\", ""));
  EXPECT_FALSE (folder_Unmount ("\\Disk\\"));
  ASSERT_TRUE (folder_Mount ("\\Disk\\", "/one"));
  ASSERT_TRUE (folder_Mount ("\\disk", "/two/"));
  EXPECT_EQ (HostOf ("\\Disk\\x"), "/two/x");
  EXPECT_TRUE (folder_Unmount ("/DISK/"));
  EXPECT_FALSE (folder_Unmount ("\\Disk\\"));
  EXPECT_EQ (HostOf ("\\Disk\\x"), "/Disk/x");

  const Mounted relative ("\\Here\\", "sub");
  EXPECT_EQ (HostOf ("\\Here\\x"), (std::filesystem::current_path () / "sub/x").string ());
  const Mounted temporary ("\\Temp\\", "/elsewhere");
  EXPECT_EQ (HostOf ("\\Temp\\x"), "/elsewhere/x");
}

TEST_F (Folder, NamesBelowAMountAreFoundWithoutCase) {
  MakeDirectory ("Export/Deep");
  Touch ("Export/Deep/File.TXT");
  Touch ("b.txt");
  Touch ("B.txt");
  Touch ("Plain");
  const Mounted disk ("\\Disk\\", folder.path.c_str ());
  const std::string base = folder.Host ("");
  const struct {
    const char* device;
    const char* host;
  } cases[] = {
      {"\\Disk\\Export\\Deep\\File.TXT", "Export/Deep/File.TXT"},
      {"\\disk\\EXPORT\\deep\\file.txt", "Export/Deep/File.TXT"},
      {"\\Disk\\export\\new\\File.txt", "Export/new/File.txt"},
      {"\\Disk\\export\\deep\\", "Export/Deep/"},
      {"\\Disk\\b.txt", "b.txt"},
      {"\\Disk\\B.TXT", "B.txt"},
      {"\\Disk\\PLAIN.", "Plain"},
      {"\\Disk\\b.txt\\more", "b.txt/more"},
      {"\\Disk\\none\\..\\b.TXT", "none/../b.TXT"},
  };
  for (const auto& c : cases) EXPECT_EQ (HostOf (c.device), base + c.host) << c.device;
  // By syntax alone elsewhere.
  Str unmounted = folder.Device ("EXPORT");
  EXPECT_EQ (HostOf (unmounted.Data ()), folder.Host ("EXPORT"));
}

TEST_F (Folder, TheInstallationIsFoundThoughItsRootIsInLowerCase) {
  Str shouted = folder_Class (folder_ROM).Path;
  shouted.MakeUpper ();
  const auto current = std::filesystem::current_path ();
  EXPECT_EQ (HostOf ((shouted + "NoSuch.ggf").Data ()), (current / "ROM/NoSuch.ggf").string ());
}

TEST_F (Folder, MakesItselfExistByOneLevel) {
  const Mounted disk ("\\Disk\\Norvath Data\\", folder.path.c_str ());
  const folder_Class exports (folder_Export);
  EXPECT_TRUE (exports.EnsureExists ());
  EXPECT_TRUE (exports.EnsureExists ());
  EXPECT_TRUE (std::filesystem::is_directory (folder.path / "Export"));
  EXPECT_FALSE (folder_Class ().EnsureExists ());
  EXPECT_TRUE (hearing.fileErrors.empty ());

  EXPECT_FALSE (folder_Class (folder_NonStandard, folder.Device ("a/b")).EnsureExists ());
  Touch ("file");
  EXPECT_FALSE (folder_Class (folder_NonStandard, folder.Device ("file")).EnsureExists ());
  EXPECT_FALSE (folder_Class (folder_NonStandard, "Q:\\x").EnsureExists ());
  EXPECT_EQ (hearing.fileErrors.size (), 3u);
}

}  // namespace
}  // namespace clxml
