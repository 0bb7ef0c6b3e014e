// 16-bit text: the rules of decoding and encoding, and the code page table.
// Leans on GoogleTest.
#include "Library/base/unistr.h"

#include <string>

#include "support/hearing.h"

namespace clxml {
namespace {

using Wide = std::u16string;

TEST (UniStr, DecodesByTheFirstByte) {
  const struct {
    const char *name, *utf8;
    Wide wide;
    bool comesBack;
  } cases[] = {
      {"empty", "", u"", true},
      {"plain", "aZ", u"aZ", true},
      {"two bytes", "\xC3\xA9", u"\u00E9", true},
      {"borders of two", "\xC2\x80\xDF\xBF", u"\u0080\u07FF", true},
      {"three bytes", "\xE0\xA0\x80\xEF\xBF\xBF", u"\u0800\uFFFF", true},
      {"a surrogate", "\xED\xA0\x80", Wide (1, 0xD800), true},
      {"continuation alone", "\xA9", u"\u00A9", false},
      {"lead of four", "\xF0\x9F\x98\x80", u"\u00F0\u009F\u0098\u0080", false},
      {"untested continuation",
       "\xC3"
       "A",
       Wide (1, 0x3 << 6 | 1), false},
      {"cut in two", "a\xC3", u"a\u00C3", false},
      {"cut in three", "\xE2\x82", u"\u00E2\u0082", false},
      {"overlong", "\xC1\x81", u"A", false},
  };
  for (const auto& each : cases) {
    const UniStr wide (each.utf8);
    EXPECT_EQ (Wide (wide.Data ()), each.wide) << each.name;
    EXPECT_EQ (wide.Length (), static_cast<int> (each.wide.size ())) << each.name;
    EXPECT_EQ (Wide (WideFromStr (Str (each.utf8)).Data ()), each.wide) << each.name;
    EXPECT_EQ (CharacterCount (Str (each.utf8)), wide.Length ()) << each.name;
    EXPECT_EQ (wide.ToUtf8 () == each.utf8, each.comesBack) << each.name;
  }
}

TEST (UniStr, CarriesEveryCharacterThroughUtf8) {
  for (unsigned c = 1; c <= 0xFFFF; c++) {
    const UniStr wide (static_cast<char16_t> (c));
    const Str utf8 = wide.ToUtf8 ();
    ASSERT_EQ (utf8.Length (), c <= 0x7F ? 1 : c <= 0x7FF ? 2 : 3) << c;
    const UniStr back = WideFromStr (utf8);
    ASSERT_EQ (back.Length (), 1) << c;
    ASSERT_EQ (back.Data ()[0], c);
  }
  // A character 0 cannot be part of a Str.
  EXPECT_EQ (UniStr ("a\xC0\x80"
                     "b")
                 .Length (),
             3);
  EXPECT_EQ (UniStr ("a\xC0\x80"
                     "b")
                 .ToUtf8 ()
                 .View (),
             "ab");
}

TEST (UniStr, KeepsRoomByItsRules) {
  EXPECT_EQ (UniStr ().BlockSize (), 31);
  EXPECT_EQ (UniStr (u'x').BlockSize (), 31);
  EXPECT_EQ (UniStr (u"abc").BlockSize (), 34);
  EXPECT_EQ (UniStr (std::string (30, 'x').c_str ()).BlockSize (), 31);
  EXPECT_EQ (UniStr (std::string (31, 'x').c_str ()).BlockSize (), 124);
  EXPECT_EQ (UniStr (std::string (124, 'x').c_str ()).BlockSize (), 496);
  const UniStr joined (u"abc", Wide (40, u'x').c_str ());
  EXPECT_EQ (joined.BlockSize (), 136);
  EXPECT_EQ (joined.Length (), 43);
  EXPECT_EQ (Wide (UniStr (nullptr, u"b").Data ()), u"b");
}

TEST (CodePageTable, IsTheIdentityUpTo255) {
  for (unsigned c = 1; c < 256; c++) {
    const Str legacy (static_cast<char> (c));
    const Str utf8 = LegacyToUtf8 (legacy);
    EXPECT_EQ (UniStr (utf8.Data ()).Data ()[0], c);
    EXPECT_EQ (Utf8ToLegacy (utf8), legacy);
  }
  EXPECT_EQ (Utf8ToLegacy (Str ("a\xE2\x82\xAC"
                                "b"))
                 .View (),
             "a?b");
}

TEST (CodePageTable, JoinsALeadByteToTheNext) {
  CodePageTable& table = CodePageTable::Get ();
  const CodePageTable before = table;
  table.SetLead (0x81, true);
  table.Map (0x8140, 0x3000);
  EXPECT_EQ (LegacyToUtf8 (Str ("a\x81\x40"
                                "b\x81"))
                 .View (),
             "a\xE3\x80\x80"
             "b\xC2\x81");
  EXPECT_EQ (Utf8ToLegacy (Str ("\xE3\x80\x80")).View (), "\x81\x40");
  table = before;
  EXPECT_EQ (Utf8ToLegacy (Str ("\xE3\x80\x80")).View (), "?");
}

}  // namespace
}  // namespace clxml
