// XML as we write it, byte for byte. Leans on xml_out, file and hearing.
#include "Library/xml/xml_out.h"

#include <gtest/gtest.h>

#include <limits>
#include <numbers>

#include "numerics/maths.h"
#include "platform/file.h"
#include "support/faults.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

constexpr double pi = std::numbers::pi;

TEST (XmlOut, WritesDoubles) {
  struct {
    double value;
    const char* text;
  } cases[] = {
      {MATHS_Null, ""},
      {0.0, "0"},
      {-0.0, "0"},
      {0.5, "0.5"},
      {-0.25, "-0.25"},
      {1e-14, "0.00000000000001"},
      {4e-15, "0"},
      {-1e-15, "0"},
      {0.999999999999999, "1"},
      {-0.999999999999999, "-1"},
      {1.0, "1"},
      {-1.0, "-1"},
      {100.0, "100"},
      {1234.5678, "1234.5678"},
      {12345678901234.5, "12345678901234"},
      {123456789012345.0, "1.2345678901234E+14"},
      {1e20, "1E+20"},
      {0.1 + 0.2, "0.3"},
      {std::numeric_limits<double>::infinity (), ""},
      {-std::numeric_limits<double>::infinity (), ""},
      {std::numeric_limits<double>::quiet_NaN (), ""},
  };
  for (const auto& c : cases) EXPECT_EQ (xml_DoubleText (c.value), c.text) << c.value;
}

TEST (XmlOut, WritesAnglesInDegrees) {
  EXPECT_EQ (xml_AngleText (MATHS_Null), "");
  EXPECT_EQ (xml_AngleText (pi / 2), "90");
  EXPECT_EQ (xml_AngleText (-pi), "-180");
  EXPECT_EQ (xml_AngleText (2 * pi), "0");
  EXPECT_EQ (xml_AngleText (2 * pi - 4e-13), "0");
  EXPECT_EQ (xml_AngleText (2 * pi + 4e-13), "0");
  EXPECT_EQ (xml_AngleText (2 * pi - 6e-13), "359.99999999997");
}

TEST (XmlOut, WritesGradesInPercent) {
  EXPECT_EQ (xml_GradeText (MATHS_Null, false), "");
  EXPECT_EQ (xml_GradeText (MATHS_Null, true), "");
  EXPECT_EQ (xml_GradeText (pi / 4, false), "100");
  EXPECT_EQ (xml_GradeText (pi / 4, true), "-100");
  EXPECT_EQ (xml_GradeText (0.0, true), "0");
}

TEST (XmlOut, WritesBooleans) {
  EXPECT_EQ (xml_BoolText (true), "true");
  EXPECT_EQ (xml_BoolText (false), "false");
}

TEST (XmlOut, EscapesTexts) {
  struct {
    const char* text;
    const char* escaped;
  } cases[] = {
      {"", ""},
      {"   ", ""},
      {"  a  b  ", "a  b"},
      {"a&b<c>d\"e'f", "a&amp;b&lt;c&gt;d&quot;e&apos;f"},
      {"&", "&amp;"},
      {" \t a\r\n ", "&#x009; a&#x00d;&#x00a;"},
      {"\x1f\x7f\x80\xff", "&#x01f;\x7f\x80\xff"},
  };
  for (const auto& c : cases) EXPECT_EQ (xml_Escape (c.text), c.escaped) << c.text;
  Hearing hearing;
  const Str longest (std::string_view (std::string (5195, 'x')));
  EXPECT_EQ (xml_Escape (longest), longest);
  EXPECT_EQ (xml_Escape (longest + "<"), longest + "&lt;");
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"strlen (string) < 5196"});
}

TEST (XmlOut, WritesATree) {
  xmlout_element root ("a");
  root.AddAttribute ("b", " 1\"2 ");
  root.AddAttribute ("c", "");
  root.AddChild (nullptr);
  root.Add ("empty");
  root.Add ("blank", " ");
  root.Add ("text", "x < y");
  xmlout_element& spaced = root.Add ("spaced");
  spaced.SpacedBlock = true;
  spaced.Add ("n", "1");
  xmlout_element& mixed = root.Add ("mixed", "v&");
  mixed.Add ("m");
  root.Add ("alone", "z").SpacedBlock = true;
  Str buffer ("-");
  EXPECT_TRUE (root.Write (nullptr, true, 0, buffer));
  EXPECT_EQ (buffer,
             "-<a b=\"1&quot;2\" c=\"\">\r\n"
             "    <empty/>\r\n"
             "    <blank></blank>\r\n"
             "    <text>x &lt; y</text>\r\n"
             "\r\n"
             "    <spaced>\r\n"
             "        <n>1</n>\r\n"
             "    </spaced>\r\n"
             "    <mixed>\r\n"
             "        v&amp;\r\n"
             "        <m/>\r\n"
             "    </mixed>\r\n"
             "\r\n"
             "    <alone>\r\n"
             "        z\r\n"
             "    </alone>\r\n"
             "</a>\r\n");
  Str plain;
  EXPECT_TRUE (mixed.Write (nullptr, false, 3, plain));
  EXPECT_EQ (plain, "<mixed>\r\nv&amp;\r\n<m/>\r\n</mixed>\r\n");
}

// Two and a half buffers: what is in the file and what still waits make the whole.
TEST (XmlOut, SendsWhatHasGatheredToTheFile) {
  Hearing hearing;
  TemporaryFolder folder;
  xmlout_element root ("r");
  for (int i = 0; i < 2500; i++) root.Add ("child", Str (std::string_view (std::string (46, 'v'))));
  Str whole;
  root.Write (nullptr, true, 0, whole);
  file_Class file;
  ASSERT_TRUE (file.Create (folder.Device ("x")));
  Str rest;
  EXPECT_TRUE (root.Write (&file, true, 0, rest));
  EXPECT_GT (file.GetSize (), 2u * xmlout_element::FlushAbove);
  EXPECT_LT (file.GetSize (), 2u * xmlout_element::FlushAbove + 200);
  EXPECT_EQ (file.GetSize () + static_cast<uint32_t> (rest.Length ()),
             static_cast<uint32_t> (whole.Length ()));
  EXPECT_EQ (rest, whole.From (static_cast<int> (file.GetSize ())));
  FailingDisk disk;
  disk.FullAfter (100);
  EXPECT_FALSE (root.Write (&file, true, 0, rest));
  disk.Heal ();
  hearing.fileErrors.clear ();
  file.Close ();
}

}  // namespace
}  // namespace clxml::testing
