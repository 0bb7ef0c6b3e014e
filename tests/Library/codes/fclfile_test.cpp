// The feature code library: its list, its file byte for byte, damaged and hostile files.
#include "Library/codes/fclfile.h"

#include <sys/stat.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <limits>
#include <string>

#include "support/faults.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

using Bytes = std::string;
constexpr uint32_t None = 0xFFFFFFFF;

// Numbers as the file has them.
Bytes U (uint64_t value, int width) {
  Bytes bytes;
  for (int i = 0; i < width; i++) bytes += static_cast<char> (value >> (8 * i));
  return bytes;
}
Bytes D (double value) {
  uint64_t bits;
  std::memcpy (&bits, &value, sizeof bits);
  return U (bits, 8);
}
Bytes T (Bytes text, std::size_t width) {
  text.resize (width, '\0');
  return text;
}
Bytes Header (int features, uint32_t first, int format = 4, int layout = 4) {
  return U (static_cast<uint64_t> (format), 1) + U (7, 1) +
         U (static_cast<uint64_t> (features), 2) + T ("Site", 25) + U (0xBEEF, 2) + T ("Text", 61) +
         U (static_cast<uint64_t> (layout), 2) + U (first, 4);
}
Bytes FeatureRecord (const Bytes& code, int attributes, uint32_t first, uint32_t next,
                     uint32_t flags = 0) {
  return U (static_cast<uint64_t> (attributes), 2) + U (flags, 4) + T (code, 21) +
         T ("Description", 43) + U (first, 4) + U (next, 4);
}
Bytes Head (uint64_t type, const Bytes& name, uint32_t next) {
  return U (type, 2) + U (3, 2) + T (name, 21) + U (next, 4);
}

template <class A>
A& Add (fclfile_Feature& feature, const char* name) {
  auto attribute = std::make_unique<A> ();
  A& added = *attribute;
  added.Name = name;
  added.Usage = 3;
  feature.AddAttribute (std::move (attribute));
  return added;
}

class FeatureCodes : public LibraryTest {
 protected:
  Bytes Content (const std::string& name) {
    std::ifstream in (folder.Host (name), std::ios::binary);
    return {std::istreambuf_iterator<char> (in), {}};
  }
  featureCode_Status LoadBytes (falFormat_Library& library, const Bytes& bytes) {
    std::ofstream (folder.Host ("in"), std::ios::binary) << bytes;
    return library.Load (folder.Device ("in"));
  }
  // "A B" with one attribute of each type, then "C" without attributes.
  void Fill (falFormat_Library& library) {
    library.SetLibraryName ("Site");
    library.SetLibraryText ("Text");
    library.SetHeaderValue (0xBEEF);
    library.HeaderOption = 7;
    auto feature = std::make_unique<fclfile_Feature> ();
    feature->Code = "A·B";
    feature->Description = "Description";
    feature->SetFlags (513);
    auto& number = Add<fclfile_NumericalAttribute> (*feature, "Number");
    number.Number1 = -0.0;
    number.Number2 = 1e308;
    number.Number3 = std::numeric_limits<double>::quiet_NaN ();
    number.NumberOption = 255;
    Add<fclfile_TextAttribute> (*feature, "Text").TextOption = 65535;
    auto& menu = Add<fclfile_MenuAttribute> (*feature, "Menu");
    menu.AddEntry ("Øst");
    menu.AddEntry ("exactly 21 characters");
    menu.HasDefault = true;
    menu.DefaultIndex = 1;
    Add<fclfile_DateAttribute> (*feature, "Date").DateFlag = true;
    Add<fclfile_TimeAttribute> (*feature, "Time").TimeFlag2 = true;
    Add<fclfile_FileAttribute> (*feature, "File").FileOption = 2;
    Add<fclfile_SeparatorAttribute> (*feature, "Separator");
    library.Append (std::move (feature));
    feature = std::make_unique<fclfile_Feature> ();
    feature->Code = "C";
    feature->Description = "Description";
    library.Append (std::move (feature));
  }
  static Bytes Filled () {
    return Header (2, 98) +                           //
           FeatureRecord ("A B", 7, 176, 466, 513) +  // at 98
           Head (0, "Number", 232) + D (-0.0) + D (1e308) +
           D (std::numeric_limits<double>::quiet_NaN ()) + U (255, 1) + U (46, 2) +
           Head (1, "Text", 263) + U (65535, 2) +  // at 232
           Head (2, "Menu", 340) + U (2, 2) + U (1, 2) + U (1, 2) + T ("\xD8st", 21) +
           "exactly 21 characters" +  //
           Head (3, "Date", 373) + U (0, 2) + U (1, 2) + Head (4, "Time", 406) + U (0, 2) +
           U (1, 2) + Head (5, "File", 437) + U (2, 2) +  // at 406
           Head (6, "Separator", None) +                  // at 437
           FeatureRecord ("C", 0, None, None);            // at 466
  }
};

TEST_F (FeatureCodes, WritesEveryTypeByteForByteAndReadsItBack) {
  falFormat_Library library;
  Fill (library);
  ASSERT_EQ (library.Save (folder.Device ("out")), FEATURECODE_Ok);
  const Bytes expected = Filled ();
  EXPECT_EQ (Content ("out"), expected);

  falFormat_Library again;
  again.SetFormatVersion (3);
  ASSERT_EQ (again.Load (folder.Device ("out")), FEATURECODE_Ok);
  EXPECT_TRUE (library.IsEqual (again));
  ASSERT_EQ (again.Save (folder.Device ("again")), FEATURECODE_Ok);
  EXPECT_EQ (Content ("again"), expected);
  again.LibraryText = "other";
  EXPECT_TRUE (library.IsDifferent (again));
  EXPECT_TRUE (library.IsEqualBase (again));

  falFormat_Library empty;
  ASSERT_EQ (empty.Save (folder.Device ("out")), FEATURECODE_Ok);
  EXPECT_EQ (Content ("out").size (), 98u);
  EXPECT_EQ (Content ("out").substr (94), U (None, 4));
}

TEST_F (FeatureCodes, LoadsNothingOfAFileThatIsCutAnywhere) {
  const Bytes whole = Filled ();
  for (std::size_t n = 0; n < whole.size (); n++) {
    falFormat_Library cut;
    EXPECT_EQ (LoadBytes (cut, whole.substr (0, n)), FEATURECODE_ReadFailed) << n;
    EXPECT_EQ (cut.Count (), 0);
  }
  // Any flipped bit gives a status, or a library that comes back from its own file.
  for (std::size_t bit = 0; bit < 8 * whole.size (); bit++) {
    Bytes flipped = whole;
    flipped[bit / 8] = static_cast<char> (flipped[bit / 8] ^ (1 << bit % 8));
    falFormat_Library read, again;
    if (LoadBytes (read, flipped) != FEATURECODE_Ok) {
      EXPECT_EQ (read.Count (), 0);
      continue;
    }
    ASSERT_EQ (read.Save (folder.Device ("out")), FEATURECODE_Ok);
    ASSERT_EQ (again.Load (folder.Device ("out")), FEATURECODE_Ok);
    EXPECT_TRUE (read.IsEqual (again)) << bit;
  }
}

TEST_F (FeatureCodes, TellsTheFaultOfAFile) {
  const Bytes separator = Head (6, "S", 176);  // leads to itself
  const struct {
    const char* name;
    Bytes bytes;
    featureCode_Status status;
    int count;
  } cases[] = {
      {"format 2", Header (0, None, 2), FEATURECODE_WrongVersion, 0},
      {"format 3", Header (0, None, 3), FEATURECODE_Ok, 0},
      {"format 5, cut", Header (0, None, 5).substr (0, 97), FEATURECODE_ReadFailed, 0},
      {"layout 3", Header (0, None, 4, 3), FEATURECODE_WrongVersion, 0},
      {"a feature without an offset", Header (1, None), FEATURECODE_SeekFailed, 0},
      {"a feature behind the end", Header (1, None - 1), FEATURECODE_ReadFailed, 0},
      {"a feature that overlaps the header", Header (1, 20) + Bytes (78, '\0'), FEATURECODE_Ok, 1},
      {"the last offset is not sought", Header (1, 98) + FeatureRecord ("A", 0, 5, 5),
       FEATURECODE_Ok, 1},
      {"a feature that leads to itself", Header (9, 98) + FeatureRecord ("A", 0, None, 98),
       FEATURECODE_ReadFailed, 0},
      {"more features than the chain has",
       Header (2, 98) + FeatureRecord ("A", 0, None, None) + Bytes (78, 'x'),
       FEATURECODE_SeekFailed, 0},
      {"a shared feature within the file's size",
       Header (2, 98) + FeatureRecord ("A", 0, None, 98) + Bytes (78, 'x'), FEATURECODE_Ok, 2},
      {"an attribute without an offset", Header (1, 98) + FeatureRecord ("A", 1, None, None),
       FEATURECODE_SeekFailed, 0},
      {"a type of which one byte is there",
       Header (1, 98) + FeatureRecord ("A", 1, 176, None) + "\x07", FEATURECODE_ReadFailed, 0},
      {"type 7, cut", Header (1, 98) + FeatureRecord ("A", 1, 176, None) + U (7, 2),
       FEATURECODE_SeekFailed, 0},
      {"type 6, cut", Header (1, 98) + FeatureRecord ("A", 1, 176, None) + separator.substr (0, 28),
       FEATURECODE_ReadFailed, 0},
      {"an attribute that leads to itself",
       Header (1, 98) + FeatureRecord ("A", 65535, 176, None) + separator, FEATURECODE_ReadFailed,
       0},
      {"entries beyond the file",
       Header (1, 98) + FeatureRecord ("A", 1, 176, None) + Head (2, "M", None) + U (65535, 2) +
           U (0, 4),
       FEATURECODE_ReadFailed, 0},
  };
  for (const auto& c : cases) {
    falFormat_Library library;
    EXPECT_EQ (LoadBytes (library, c.bytes), c.status) << c.name;
    EXPECT_EQ (library.Count (), c.count) << c.name;
  }
  falFormat_Library library;
  Fill (library);
  EXPECT_EQ (library.Load (folder.Device ("missing")), FEATURECODE_CannotOpen);
  EXPECT_EQ (library.Count (), 0);
  EXPECT_EQ (library.Load (folder.Device ("")), FEATURECODE_CannotOpen) << "a folder";
}

TEST_F (FeatureCodes, ReadsMenusAsTheyAreStored) {
  const auto load = [&] (falFormat_Library& library, uint64_t hasDefault, uint64_t index) {
    EXPECT_EQ (LoadBytes (library, Header (1, 98) + FeatureRecord ("A", 1, 176, None) +
                                       Head (2, "M", None) + U (1, 2) + U (hasDefault, 2) +
                                       U (index, 2) + T (Bytes ("e\0x", 3), 21)),
               FEATURECODE_Ok);
    fclfile_Attribute* attribute = nullptr;
    EXPECT_TRUE (library.At (0)->GetAttribute (0, &attribute));
    return static_cast<const fclfile_MenuAttribute*> (attribute);
  };
  falFormat_Library none, second, beyond;
  const fclfile_MenuAttribute* menu = load (none, 0, 0);
  EXPECT_EQ (menu->DefaultIndex, 0xFFFF);
  EXPECT_EQ (menu->DefaultEntry, "");
  menu = load (second, 0x100, 0);
  EXPECT_TRUE (menu->HasDefault);
  EXPECT_EQ (menu->DefaultEntry, "e");
  menu = load (beyond, 1, 1);
  EXPECT_EQ (menu->DefaultIndex, 1);
  EXPECT_EQ (menu->DefaultEntry, "");
}

TEST_F (FeatureCodes, ExchangesBlanksOfCodesOnly) {
  falFormat_Library library;
  ASSERT_EQ (LoadBytes (library, Header (1, 98) + FeatureRecord ("A B\x1F"
                                                                 "C\xB7",
                                                                 0, None, None)),
             FEATURECODE_Ok);
  EXPECT_EQ (library.At (0)->Code, "A·B·C·");
  library.At (0)->Code = "A·B\x1F€ and more than 21 characters";
  library.At (0)->Description = "A·B";
  ASSERT_EQ (library.Save (folder.Device ("out")), FEATURECODE_Ok);
  EXPECT_EQ (Content ("out").substr (98 + 6, 25),
             "A B\x1F? and more than 2A\xB7"
             "B" +
                 Bytes (1, '\0'));
}

TEST_F (FeatureCodes, TurnsFlagsIntoKindsAndBack) {
  const struct {
    uint32_t flags, kind, option, variant, back;
  } cases[] = {{0, 0, 0, 0, 0},       {1, 2, 0, 0, 1},     {9, 2, 0, 1, 9},
               {17, 2, 0, 2, 17},     {33, 2, 0, 3, 33},   {513, 2, 0, 4, 513},
               {65, 2, 0, 5, 65},     {41, 2, 0, 1, 9},    {0x271, 2, 0, 3, 33},
               {0x251, 2, 0, 4, 513}, {0x51, 2, 0, 5, 65}, {5, 2, 0, 0, 1},
               {4, 1, 0, 0, 4},       {260, 1, 1, 0, 260}, {40, 0, 0, 0, 0},
               {0x100, 0, 0, 0, 0},   {None, 2, 0, 1, 9},  {None - 1, 1, 1, 0, 260}};
  for (const auto& c : cases) {
    fclfile_Feature feature;
    feature.Kind = feature.KindOption = feature.KindVariant = 77;
    feature.SetFlags (c.flags);
    EXPECT_EQ (feature.Kind, c.kind) << c.flags;
    EXPECT_EQ (feature.KindOption, c.option) << c.flags;
    EXPECT_EQ (feature.KindVariant, c.variant) << c.flags;
    EXPECT_EQ (feature.GetFlags (), c.back) << c.flags;
  }
  fclfile_Feature feature;
  feature.Kind = 2;
  feature.KindVariant = 6;
  EXPECT_EQ (feature.GetFlags (), 1u);
}

TEST_F (FeatureCodes, KeepsTheListInOrder) {
  falFormat_Library library;
  const auto codes = [&library] {
    std::string all;
    for (int32_t i = 0; i < library.Count (); i++)
      all += library.At (i)->Code.Data () + Bytes (" ");
    return all;
  };
  fclfile_Feature feature;
  Add<fclfile_MenuAttribute> (feature, "M").SetSelected (4, "chosen");
  int32_t position = -1;
  for (const auto& [code, at] :
       {std::pair ("tree", 0), {"Fence", 0}, {"FENCE", 0}, {"Ä", 3}, {"post", 2}, {"FENCE2", 2}}) {
    feature.Code = code;
    EXPECT_TRUE (library.Insert (feature, position));
    EXPECT_EQ (position, at) << code;
  }
  EXPECT_EQ (codes (), "FENCE Fence FENCE2 post tree Ä ");
  EXPECT_TRUE (library.At (0)->IsEqual (*library.At (0)));
  EXPECT_FALSE (library.At (0)->IsEqual (*library.At (1)));
  fclfile_Attribute* attribute = nullptr;
  ASSERT_TRUE (library.At (5)->GetAttribute (0, &attribute));
  EXPECT_EQ (static_cast<fclfile_MenuAttribute*> (attribute)->GetSelectedText (), "chosen");
  EXPECT_FALSE (library.At (5)->GetAttribute (1, &attribute));
  EXPECT_FALSE (library.At (5)->GetAttribute (0, static_cast<fclfile_Attribute**> (nullptr)));

  EXPECT_TRUE (library.Find ("fence", position));
  EXPECT_EQ (position, 0);
  EXPECT_FALSE (library.Find ("ä", position)) << "only letters A to Z have a case";
  EXPECT_EQ (position, 6);
  EXPECT_EQ (library.Delete (1), 5);
  EXPECT_EQ (library.Delete (5), 5);
  EXPECT_EQ (library.At (-1), nullptr);
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"n < this->NumberFeatures", "i > -1"}));
  library.At (0)->Code = "zaun";
  library.Sort ();
  EXPECT_EQ (codes (), "FENCE2 post tree zaun Ä ");
  EXPECT_TRUE (library.Reserve (100));
  EXPECT_FALSE (library.Reserve (-1));
  EXPECT_TRUE (library.HasAttributes ());
  library.Clear ();
  EXPECT_EQ (library.Count (), 0);
  EXPECT_FALSE (library.HasAttributes ());
}

TEST_F (FeatureCodes, KeepsTheOldFileUntilTheNewOneIsWhole) {
  falFormat_Library library;
  Fill (library);
  ASSERT_EQ (library.Save (folder.Device ("out")), FEATURECODE_Ok);
  const Bytes old = Content ("out");
  ::chmod (folder.Host ("out").c_str (), 0640);
  library.Delete (1);
  FailingDisk disk;
  const struct {
    const char* name;
    std::function<void ()> fail;
    featureCode_Status status;
  } cases[] = {
      {"no file", [&] { disk.FailFrom (os_Operation::Create, 0); }, FEATURECODE_CannotCreate},
      {"full disk", [&] { disk.FullAfter (old.size () / 2); }, FEATURECODE_WriteFailed},
      {"not on the medium", [&] { disk.FailFrom (os_Operation::Sync, 0); },
       FEATURECODE_WriteFailed},
      {"not moved", [&] { disk.FailFrom (os_Operation::Move, 0); }, FEATURECODE_CannotCreate},
  };
  for (const auto& c : cases) {
    c.fail ();
    EXPECT_EQ (library.Save (folder.Device ("out")), c.status) << c.name;
    disk.Heal ();
    EXPECT_EQ (Content ("out"), old) << c.name;
    EXPECT_EQ (std::distance (std::filesystem::directory_iterator (folder.path), {}), 1) << c.name;
  }
  EXPECT_EQ (library.Save (folder.Device ("out")), FEATURECODE_Ok);
  EXPECT_LT (Content ("out").size (), old.size ());
  EXPECT_EQ (static_cast<int> (std::filesystem::status (folder.Host ("out")).permissions ()), 0640);
  ::chmod (folder.Host ("out").c_str (), 0440);
  EXPECT_EQ (library.Save (folder.Device ("out")), FEATURECODE_CannotCreate) << "read-only";
  EXPECT_EQ (library.Save (folder.Device ("")), FEATURECODE_CannotCreate) << "a folder";
}

TEST_F (FeatureCodes, RefusesCountsBeyondSixteenBits) {
  falFormat_Library library;
  auto feature = std::make_unique<fclfile_Feature> ();
  auto& menu = Add<fclfile_MenuAttribute> (*feature, "M");
  for (int i = 0; i < 65535; i++) menu.AddEntry ("e");
  library.Append (std::move (feature));
  EXPECT_EQ (library.Save (folder.Device ("out")), FEATURECODE_Ok);
  EXPECT_EQ (library.Load (folder.Device ("out")), FEATURECODE_Ok);
  fclfile_Attribute* read = nullptr;
  ASSERT_TRUE (library.At (0)->GetAttribute (0, &read));
  EXPECT_EQ (read->BytesOnDisk (), 35 + 21 * 65535);
  static_cast<fclfile_MenuAttribute*> (read)->AddEntry ("e");
  EXPECT_EQ (library.Save (folder.Device ("none")), FEATURECODE_WriteFailed);
  library.Clear ();
  for (int i = 0; i < 65536; i++) library.Append (std::make_unique<fclfile_Feature> ());
  EXPECT_EQ (library.Save (folder.Device ("none")), FEATURECODE_WriteFailed);
  EXPECT_FALSE (std::filesystem::exists (folder.Host ("none")));
}

}  // namespace
}  // namespace clxml::testing
