// Strings, arrays of strings and the window on the host.
// Tables of operations with their results, and the cases where memory would be at stake. Leans on
// GoogleTest.
#include "str.h"

#include <string>

#include "support/hearing.h"

namespace clxml {
namespace {

using testing::Hearing;
using Texts = std::vector<std::string>;

TEST (Str, EmptyStringsShareOneBuffer) {
  const Str made, fromEmpty (""), fromNull (static_cast<const char*> (nullptr)), fromZero ('\0');
  Str moved ("abc");
  const Str taken (std::move (moved));
  for (const Str* text : {&fromEmpty, &fromNull, &fromZero, static_cast<const Str*> (&moved)}) {
    EXPECT_EQ (text->Data (), made.Data ());
    EXPECT_TRUE (text->IsEmpty ());
  }
  EXPECT_EQ (taken.View (), "abc");
  static_assert (sizeof (Str) == 16);
}

TEST (Str, EndsAtTheFirstZeroByte) {
  using namespace std::string_view_literals;
  EXPECT_EQ (Str ("ab\0cd"sv).Length (), 2);
  EXPECT_TRUE (Str ("\0cd"sv).IsEmpty ());
  Str text ("x");
  text += "ab\0cd"sv;
  text += '\0';
  EXPECT_EQ (text.View (), "xab");
  text = "q\0r"sv;
  EXPECT_EQ (text.View (), "q");
}

TEST (Str, IsMadeOfTwoTexts) {
  EXPECT_EQ (Str ("ab", "cd").View (), "abcd");
  EXPECT_EQ (Str (nullptr, "cd").View (), "cd");
  EXPECT_EQ (Str ("ab", nullptr).View (), "ab");
  const Str a ("ab");
  EXPECT_EQ ((a + a + "!" + a).View (), "abab!ab");
  EXPECT_EQ (("<" + a).View (), "<ab");
}

TEST (Str, TakesPartsOfItself) {
  Str text ("abc");
  text += text;
  EXPECT_EQ (text.View (), "abcabc");
  for (int i = 0; i < 10; i++) text += text.Data () + 1;
  EXPECT_EQ (text.Length (), 5 * 1024 + 1);
  EXPECT_EQ (text.Left (12).View (), "abcabcbcabcb");
  Str same ("abcdef");
  const Str& alias = same;
  same = alias;
  EXPECT_EQ (same.View (), "abcdef");
  same = same.Data () + 2;
  EXPECT_EQ (same.View (), "cdef");
  same.ReplaceAll (same.Data () + 2, same.Data ());
  EXPECT_EQ (same.View (), "cdcdef");
}

TEST (Str, KeepsItsBufferWhenItIsEmptied) {
  Str text ("abc");
  const char* buffer = text.Data ();
  text = "";
  EXPECT_EQ (text.Data (), buffer);
  EXPECT_EQ (*text.Data (), 0);
  Str cut ("abc");
  cut.Truncate (-1);
  EXPECT_TRUE (cut.IsEmpty ());
  EXPECT_NE (cut.Data (), Str ().Data ());
}

TEST (Str, GrowsByTheCharacterInLinearTime) {
  // Exact reallocation would copy 2 * 10^12 bytes here.
  Str text;
  for (int i = 0; i < 2'000'000; i++) text += static_cast<char> ('a' + i % 26);
  EXPECT_EQ (text.Length (), 2'000'000);
  EXPECT_EQ (text.Find ("zab", 1'000'000), 1'000'011);
}

TEST (Str, FindsOrAnswersItsLength) {
  const Str abc ("abc"), dots ("a.b.c"), empty;
  const struct {
    const char* name;
    int found, expected;
  } cases[] = {
      {"character", abc.Find ('b'), 1},
      {"absent character", abc.Find ('z', 0), 3},
      {"start behind the end", abc.Find ('a', 5), 3},
      {"start at the end", abc.Find ("", 3), 3},
      {"negative start", abc.Find ('a', -4), 0},
      {"zero character", abc.Find ('\0'), 3},
      {"text from a start", dots.Find (".", 2), 3},
      {"absent text", dots.Find ("..", 0), 5},
      {"null text", dots.Find (static_cast<const char*> (nullptr)), 5},
      {"last", dots.ReverseFind ('.'), 3},
      {"no last", abc.ReverseFind ('.'), 3},
      {"last in empty", empty.ReverseFind ('.'), 0},
  };
  for (const auto& each : cases) EXPECT_EQ (each.found, each.expected) << each.name;
  EXPECT_TRUE (abc.Contains ('c'));
  EXPECT_FALSE (abc.Contains ('\0'));
  EXPECT_FALSE (empty.Contains ('\0'));
}

TEST (Str, ChangesInPlace) {
  const struct {
    const char *name, *before;
    void (*change) (Str&);
    const char* after;
  } cases[] = {
      {"trim left", "  a b ", [] (Str& s) { s.TrimLeft (' '); }, "a b "},
      {"trim left of a set", "\t \r\na b", [] (Str& s) { s.TrimLeft (" \n\r\t"); }, "a b"},
      {"trim all", "xxxx", [] (Str& s) { s.TrimLeft ("xy"); }, ""},
      {"trim right", " a  ", [] (Str& s) { s.TrimRight (' '); }, " a"},
      {"trim right all", "    ", [] (Str& s) { s.TrimRight (' '); }, ""},
      {"trim both", "--a-b--", [] (Str& s) { s.Trim ('-'); }, "a-b"},
      {"replace", "a/b/c", [] (Str& s) { s.Replace ('/', '\\'); }, "a\\b\\c"},
      {"replace all, longer", "aXbXc", [] (Str& s) { s.ReplaceAll ("X", "YY"); }, "aYYbYYc"},
      {"replace all, shorter", "ababa", [] (Str& s) { s.ReplaceAll ("aba", ""); }, "ba"},
      {"replace all, with its own", "aa", [] (Str& s) { s.ReplaceAll ("a", "aa"); }, "aaaa"},
      {"replace none", "abc", [] (Str& s) { s.ReplaceAll ("abcd", "x"); }, "abc"},
      {"replace with null", "axa", [] (Str& s) { s.ReplaceAll ("x", nullptr); }, "aa"},
      {"delete too many", "abc", [] (Str& s) { s.Delete (1, 50); }, "a"},
      {"delete inside", "abcd", [] (Str& s) { s.Delete (1, 2); }, "ad"},
      {"delete most", "abcd", [] (Str& s) { s.Delete (2, 2147483647); }, "ab"},
      {"delete behind", "abc", [] (Str& s) { s.Delete (3, 1); }, "abc"},
      {"truncate", "abc", [] (Str& s) { s.Truncate (2); }, "ab"},
      {"truncate beyond", "abc", [] (Str& s) { s.Truncate (4); }, "abc"},
      {"fill", "abc", [] (Str& s) { s.Fill ('x', 5); }, "xxxxx"},
      {"fill none", "abc", [] (Str& s) { s.Fill ('x', 0); }, ""},
      {"set", "abc", [] (Str& s) { s.SetAt (2, 'x'); }, "abx"},
      {"lower", "AZ[\xC3\x89@", [] (Str& s) { s.MakeLower (); }, "az[\xC3\x89@"},
      {"upper", "az{\xC3\xA9`", [] (Str& s) { s.MakeUpper (); }, "AZ{\xC3\xA9`"},
  };
  for (const auto& each : cases) {
    Str text (each.before);
    each.change (text);
    EXPECT_EQ (text.View (), each.after) << each.name;
    EXPECT_EQ (std::strlen (text.Data ()), text.View ().size ()) << each.name;
  }
}

TEST (Str, GivesPieces) {
  Str text ("abc");
  EXPECT_EQ (text.Left (2).View (), "ab");
  EXPECT_EQ (text.Left (10).View (), "abc");
  EXPECT_EQ (text.Left (0).View (), "");
  EXPECT_EQ (text.From (1).View (), "bc");
  EXPECT_EQ (text.From (3).View (), "");
  EXPECT_EQ (text.Mid (1, 2147483647).View (), "bc");
  EXPECT_EQ (text.Mid (1, 1).View (), "b");
  EXPECT_EQ (text.Mid (3, 1).View (), "");
  EXPECT_EQ (text.ExtractLeft (0).View (), "");
  EXPECT_EQ (text.ExtractLeft (2).View (), "ab");
  EXPECT_EQ (text.ExtractLeft (2).View (), "c");
  EXPECT_TRUE (text.IsEmpty ());
}

TEST (Str, ComparesBytesAndFoldsOnlyLetters) {
  EXPECT_TRUE (Str ("abc") == "abc");
  EXPECT_FALSE (Str ("abc") == Str ("abC"));
  EXPECT_TRUE (Str () == static_cast<const char*> (nullptr));
  EXPECT_LT (Str ("a"), Str ("\xC3"));  // by unsigned bytes
  EXPECT_TRUE (Str ("aBz9").EqualInsensitive (Str ("AbZ9")));
  EXPECT_FALSE (Str ("ab").EqualInsensitive (Str ("abc")));
  EXPECT_FALSE (Str ("[").EqualInsensitive (Str ("{")));
  EXPECT_FALSE (Str ("\xC3\x89").EqualInsensitive (Str ("\xC3\xA9")));
}

TEST (Str, AssertsAndTouchesNothingOutside) {
  const struct {
    const char* name;
    void (*act) (Str&);
    Texts asserted;
  } cases[] = {
      {"behind the text", [] (Str& s) { s[3] = 'x'; }, {"i < _Length"}},
      {"in front of it", [] (Str& s) { s[-1] = 'x'; }, {"i >= 0"}},
      {"far outside", [] (Str& s) { EXPECT_EQ (std::as_const (s)[1 << 30], 0); }, {"i < _Length"}},
      {"set outside", [] (Str& s) { s.SetAt (7, 'x'); }, {"i < _Length"}},
      {"set zero", [] (Str& s) { s.SetAt (0, '\0'); }, {"Character"}},
      {"fill with zeros", [] (Str& s) { s.Fill ('\0', 2); }, {"Character"}},
      {"replace zero", [] (Str& s) { s.Replace ('\0', 'x'); }, {"Old && New"}},
      {"replace with zero", [] (Str& s) { s.Replace ('a', '\0'); }, {"Old && New"}},
      {"replace nothing", [] (Str& s) { s.ReplaceAll ("", "x"); }, {"LengthOld > 0"}},
      {"negative left", [] (Str& s) { EXPECT_TRUE (s.Left (-1).IsEmpty ()); }, {"n > 0"}},
      {"negative from", [] (Str& s) { EXPECT_TRUE (s.From (-1).IsEmpty ()); }, {"i >= 0"}},
      {"negative delete", [] (Str& s) { s.Delete (-1, -1); }, {"i >= 0", "n >= 0"}},
      {"negative extract", [] (Str& s) { s.ExtractLeft (-2); }, {"n > 0"}},
  };
  for (const auto& each : cases) {
    Hearing hearing;
    Str text ("abc");
    each.act (text);
    EXPECT_EQ (hearing.TakeAssertions (), each.asserted) << each.name;
    EXPECT_EQ (text.View (), "abc") << each.name;
  }
  Hearing hearing;
  Str text ("abc");
  text[9] = 'x';
  EXPECT_EQ (text[9], 0);  // what was written outside is not read back
  hearing.TakeAssertions ();
}

TEST (Str, RefusesATextBeyondItsLimit) {
  Str text ("abc");
  EXPECT_THROW (text.Fill ('x', 2147483647), Str);
  EXPECT_EQ (text.View (), "abc");
  StrArray array;
  EXPECT_THROW (array.Reserve (2147483647), Str);
}

TEST (StrArray, CountsSlotsAndKeepsAddresses) {
  StrArray array;
  EXPECT_EQ (array.Allocated (), 0);
  EXPECT_EQ (array.Find (Str ("a")), -1);
  array.Reserve (1);
  EXPECT_EQ (array.Allocated (), 17);
  array.Add ("0");
  const Str* first = &array[0];
  for (int i = 1; i < 18; i++) array.Add (Str (static_cast<char> ('0' + i)));
  EXPECT_EQ (array.Allocated (), 34);
  EXPECT_EQ (&array[0], first);
  array.RemoveAt (1);
  EXPECT_EQ (array.Count (), 17);
  EXPECT_EQ (array[1].View (), "2");
  EXPECT_EQ (array.Find (Str ("2")), 1);
  array.Append (array);
  EXPECT_EQ (array.Count (), 34);
  EXPECT_EQ (array[18].View (), "2");
}

TEST (StrArray, CopiesDeeply) {
  StrArray a;
  a.Add ("x");
  StrArray b (a), c;
  EXPECT_TRUE (a == b);
  b[0] += "y";
  EXPECT_FALSE (a == b);
  EXPECT_EQ (a[0].View (), "x");
  c = b;
  const StrArray& alias = c;
  c = alias;
  EXPECT_TRUE (c == b);
  c.Clear ();
  EXPECT_EQ (c.Allocated (), 0);
  const StrArray moved (std::move (b));
  EXPECT_EQ (b.Count () + b.Allocated (), 0);
  EXPECT_EQ (moved.GetAt (0).View (), "xy");
}

TEST (StrArray, AssertsOutsideItsElements) {
  Hearing hearing;
  StrArray array;
  array.Add ("x");
  array[1] = "lost";
  EXPECT_TRUE (array[-1].IsEmpty ());
  EXPECT_TRUE (std::as_const (array)[1].IsEmpty ());
  array.RemoveAt (1);
  EXPECT_EQ (hearing.TakeAssertions (), Texts (4, "Index < _Count"));
  EXPECT_EQ (array.Count (), 1);
}

TEST (Environment, IsInstalledAndGivenBack) {
  Environment* const around = Environment::Get ();
  {
    Hearing outer;
    EXPECT_EQ (Environment::Get (), &outer);
    EXPECT_EQ (Environment::Install (nullptr), &outer);
    // The default keeps silent and knows one thread.
    EXPECT_TRUE (Environment::Get ()->IsThreadSafe ());
    EXPECT_EQ (Environment::Get ()->GetCurrentThread (), 0u);
    EXPECT_FALSE (Assert (false, "unheard"));
    EXPECT_EQ (Environment::Install (&outer), nullptr);
    EXPECT_TRUE (outer.assertions.empty ());
  }
  EXPECT_EQ (Environment::Get (), around);
}

TEST (Environment, HearsWhereAnAssertionStands) {
  Hearing hearing;
  EXPECT_TRUE (Assert (true, "a == a"));
  EXPECT_FALSE (Assert (false, "a == b"));
  const std::string place = "str_test.cpp:" + std::to_string (__LINE__ - 1);
  AssertionFailed ("c", "a\\b/c.cpp", 7);
  EXPECT_EQ (hearing.TakeAssertions (), (Texts{"a == b", "c"}));
  EXPECT_EQ (hearing.places, (Texts{place, "c.cpp:7"}));
}

TEST (Environment, LogsNumbersInHexadecimal) {
  Hearing hearing;
  LogNumber ("at", 0);
  LogNumber ("at", 0x1A0);
  LogNumber ("at", UINT64_MAX);
  EXPECT_EQ (hearing.TakeLog (), (Texts{"at 0x0", "at 0x1a0", "at 0xffffffffffffffff"}));
}

}  // namespace
}  // namespace clxml
