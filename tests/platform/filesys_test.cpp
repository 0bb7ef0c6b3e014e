// Searches in the folders of the device.
#include "platform/filesys.h"

#include <fstream>
#include <string>

#include "support/hearing.h"
#include "support/mounted.h"

namespace clxml {
namespace {

using testing::Mounted;
using Texts = std::vector<std::string>;

/// The device's folders, each below a temporary one.
class Search : public testing::LibraryTest {
 protected:
  Search () {
    for (const char* name : {"data", "rom", "languages"})
      std::filesystem::create_directory (folder.path / name);
  }
  void Put (const std::string& name, std::size_t size = 1) {
    std::ofstream (folder.Host (name)) << std::string (size, 'x');
  }
  static Texts Names (const file_Array& files) {
    Texts names;
    for (int i = 0; i < files.Count (); ++i)
      names.emplace_back (files[i].GetNameAndExtension ().Data ());
    return names;
  }
  folder_Class Data () { return folder_Class (folder_Project); }

  Mounted data{"\\Disk\\Norvath Data\\", folder.Host ("data").c_str ()};
  Mounted rom{folder_Class (folder_ROM).Path.Data (), folder.Host ("rom").c_str ()};
  Mounted languages{folder_Class (folder_Locale).Path.Data (), folder.Host ("languages").c_str ()};
};

TEST_F (Search, MasksTakeNames) {
  const struct {
    const char* name;
    const char* mask;
    bool takes;
  } cases[] = {
      {"ab.ggf", "*.GGF", true},
      {"ab.ggf", "a?.ggf", true},
      {"ab", "ab", false},
      {"ab", "AB.", true},
      {"ab", "*.", true},
      {"ab", "*.*", true},
      {"ab.c", "*.", false},
      {"\\dir.x\\ab.ggf", "ab.*", true},
      {"\\Disk\\ab.ggf", "C:*.ggf", true},
      {"ab.ggf", "a:b:*.ggf", false},
      {"ab.ggf", "*", true},
      {"ab.ggf", "?", false},
      {"ab.ggf", "??????", true},
      {"ab.ggf", "???????", false},
      {"aab.ggf", "*ab.ggf", true},
      {"abab.ggf", "*ab.ggf", true},
      {"ab.ggf", "*b*f", true},
      {"ab.ggf", "**?*", true},
      {"ab.ggf", "*.gg", false},
      {"a.b.c", "a.*.c", true},
      {".ggf", "*.ggf", true},
  };
  for (const auto& c : cases)
    EXPECT_EQ (MatchesMask (c.name, c.mask), c.takes) << c.name << " " << c.mask;
  // Any number of stars costs no more than the product of the lengths.
  std::string stars;
  for (int i = 0; i < 2000; ++i) stars += "*a";
  EXPECT_FALSE (MatchesMask (std::string (3000, 'a').c_str (), (stars + "b").c_str ()));
}

TEST_F (Search, ListsFilesSorted) {
  for (const char* name : {"b.txt", "A.TXT", "a.txt", "c", "d.e.f", "B.txt", "dot."})
    Put (std::string ("data/") + name);
  Put ("data/back\\slash.txt");
  std::filesystem::create_directory (folder.path / "data/a.dir");
  EXPECT_EQ (Names (FindFiles (Data (), "*.*")),
             (Texts{"A.TXT", "a.txt", "B.txt", "b.txt", "c.", "d.e.f", "dot.."}));
  EXPECT_EQ (Names (FindFiles (Data (), "*.")), (Texts{"c.", "dot.."}));
  EXPECT_EQ (Names (FindFiles (Data (), "?.tXt")), (Texts{"A.TXT", "a.txt", "B.txt", "b.txt"}));
  EXPECT_EQ (Names (FindFiles (Data (), "*.e*")), (Texts{"d.e.f"}));
  EXPECT_EQ (Names (FindFiles (Data (), "c")), (Texts{"c."}));
  const file_Array all = FindFiles (Data (), "*");
  for (int i = 0; i < all.Count (); ++i)  // every one leads back to its own
    EXPECT_TRUE (file_Class (all[i].GetWholeName ()).Exists ()) << all[i].Name.Data ();

  EXPECT_STREQ (FindFile (Data (), "*.txt").GetWholeName ().Data (), "\\Disk\\Norvath Data\\A.TXT");
  EXPECT_STREQ (FindFile (Data (), "a.*").Name.Data (), "A");
  EXPECT_TRUE (FindFile (Data (), "*.none").GetWholeName ().IsEmpty ());
  EXPECT_TRUE (hearing.fileErrors.empty ());
}

TEST_F (Search, TellsOfFoldersThatCannotBeSearched) {
  EXPECT_EQ (FindFiles (folder_Class (folder_Export), "*.*").Count (), 0);
  EXPECT_EQ (hearing.fileErrors,
             Texts{std::to_string (ENOENT) + " \\Disk\\Norvath Data\\Export\\*.*"});
  hearing.fileErrors.clear ();
  EXPECT_TRUE (FindFile (folder_Class (folder_Export), "*.*").Name.IsEmpty ());
  std::filesystem::create_directory (folder.path / "data/ThrashData");
  Put ("data/ThrashData/a.txt");
  EXPECT_EQ (FindFiles (folder_Class (folder_ThrashData), "*.*").Count (), 0);
  EXPECT_STREQ (FindFile (folder_Class (folder_ThrashData), "*.*").Name.Data (), "a");
  EXPECT_TRUE (hearing.fileErrors.empty ());

  EXPECT_EQ (FindFiles (folder_Class (), "*.*").Count (), 0);
  EXPECT_TRUE (FindFile (folder_Class (), "*").Name.IsEmpty ());
  EXPECT_EQ (FreeSpace (folder_Class ()), 0u);
  EXPECT_EQ (hearing.TakeAssertions (), Texts (3, "folder.Type != folder_Unknown"));
  EXPECT_EQ (FindFiles (Data (), "").Count (), 0);
  EXPECT_EQ (FindFiles (nullptr).Count (), 0);
  EXPECT_FALSE (MatchesMask ("a", nullptr));
  EXPECT_TRUE (FindSupportFile ("a", "").Name.IsEmpty ());
  EXPECT_EQ (hearing.TakeAssertions (), Texts (4, "mask && *mask"));
}

TEST_F (Search, LooksThroughThreeFolders) {
  for (const char* name : {"languages/a.ggf", "data/z.ggf", "rom/m.GGF", "rom/m.txt", "data/ggf"})
    Put (name);
  EXPECT_EQ (Names (FindFiles ("*.ggf")), (Texts{"z.ggf", "m.GGF", "a.ggf"}));
}

TEST_F (Search, FindsSupportFiles) {
  const struct {
    const char* name;
    std::vector<std::pair<const char*, std::size_t>> files;
    const char* stored;
    const char* mask;
    const char* found;
  } cases[] = {
      {"in the project folder, whatever its size",
       {{"data/geoid99.ggf", 0}, {"rom/geoid99.ggf", 9}},
       "geoid99",
       "*.GGF",
       "\\Disk\\Norvath Data\\geoid99.GGF"},
      {"exact but for case and blanks",
       {{"rom/Geoid99 .ggf", 1}, {"rom/geoid.ggf", 9}},
       "geoid99",
       "*.ggf",
       "Geoid99 .ggf"},
      {"near when nothing is exact", {{"rom/geoid.ggf", 1}}, "geoid99", "*.ggf", "geoid.ggf"},
      {"the largest exact one",
       {{"rom/g.ggf", 3}, {"rom/G .ggf", 5}, {"rom/G  .ggf", 5}},
       "G",
       "*.ggf",
       "G  .ggf"},
      {"the largest near one",
       {{"rom/eo.ggf", 2}, {"languages/geo.ggf", 7}, {"rom/x.ggf", 9}},
       "geoid",
       "*.ggf",
       "geo.ggf"},
      {"the only one may be empty", {{"rom/geo.ggf", 0}}, "geo", "*.ggf", "geo.ggf"},
      {"none of several empty ones", {{"rom/geo.ggf", 0}, {"rom/geo .ggf", 0}}, "geo", "*.ggf", ""},
      {"another extension", {{"rom/geo.pgf", 1}}, "geo", "*.*gf", ""},
      {"a file named by extension alone is near to nothing", {{"rom/.ggf", 1}}, "geo", "*.ggf", ""},
      {"no name", {{"rom/geo.ggf", 1}}, "", "*.ggf", ""},
      {"a name that leads elsewhere", {{"rom/geo.ggf", 1}}, "..\\rom\\geo", "*.ggf", "geo.ggf"},
  };
  for (const auto& c : cases) {
    for (const auto& [name, size] : c.files) Put (name, size);
    const Str whole = FindSupportFile (c.stored, c.mask).GetWholeName ();
    const std::string found = whole.Data ();
    const std::string expected = c.found;
    EXPECT_EQ (found.substr (found.size () - std::min (found.size (), expected.size ())), expected)
        << c.name;
    EXPECT_EQ (found.empty (), expected.empty ()) << c.name << ": " << found;
    for (const auto& [name, size] : c.files) std::filesystem::remove (folder.path / name);
  }
}

TEST_F (Search, TellsTheFreeSpace) {
  const uint32_t free = FreeSpace (Data ());
  const uint64_t system = std::filesystem::space (folder.path / "data").available;
  if (system > 0x1FFFFFFFFull)
    EXPECT_EQ (free, 0xFFFFFFFFu);
  else
    EXPECT_GT (free, 0u);
  EXPECT_EQ (FreeSpace (folder_Class (folder_NonStandard, "Q:\\")), 0u);
  EXPECT_EQ (hearing.fileErrors, Texts{std::to_string (ENODEV) + " Q:\\"});
}

}  // namespace
}  // namespace clxml
