// The reader of exchange files: trees, messages, levels, ends and limits.
// Leans on xml_support; what is equal to the plain description is shown in xmlparser_model_test.
#include "Library/xml/xmlparser.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

#include "Library/xml/xml_support.h"
#include "support/hearing.h"

namespace clxml::testing {
namespace {

// The root of a document as it is built, or what was thrown.
std::string Root (std::string_view body) {
  const std::string document = std::string ("<?xml version=\"1.0\"?>\n").append (body);
  xml_parser parser;
  xml_tree tree;
  try {
    EXPECT_TRUE (parser.Open (std::make_unique<xml_memory> (document)));
    return Shown (parser.NextElement (tree));
  } catch (const Str& text) {
    return "! " + std::string (text.View ());
  }
}

// A parser on a text that must outlive it.
std::unique_ptr<xml_parser> On (std::string_view document, xml_sizes sizes = {}) {
  auto parser = std::make_unique<xml_parser> (sizes);
  EXPECT_TRUE (parser->Open (std::make_unique<xml_memory> (document)));
  return parser;
}

struct Case {
  const char* name;
  std::string body;
  std::string expected;
};

void Check (const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE (c.name);
    EXPECT_EQ (Root (c.body), c.expected);
  }
}

TEST (XmlParser, BuildsElements) {
  Check ({
      {"white space is one blank", "<a> x  \n  y </a>", "a'x y'"},
      {"all four kinds of white space", "<a>x\r\n\t y</a>", "a'x y'"},
      {"vertical tab and form feed are text", "<a>\vx\f</a>", "a'\vx\f'"},
      {"empty tag", "<a b=\"1\"/>", "a{b=\"1\"}"},
      {"blanks in an empty tag", "<a / >", "a"},
      {"text around a child", "<a>1<b/>2</a>", "a'12'[b]"},
      {"text around children and blanks", "<a> 1 <b/> <c/> 2 </a>", "a'1   2'[b c]"},
      {"text of each level for itself", "<a>1<b>2<c>3</c>4</b>5</a>", "a'15'[b'24'[c'3']]"},
      {"children in order", "<a><b/><c>x</c><b/></a>", "a[b c'x' b]"},
      {"qualified attribute", "<a xsi:type=\"q\"/>", "a{xsi:type=\"q\"}"},
      {"qualified by a reference", "<a xsi&#58;type=\"q\"/>", "a{xsi:type=\"q\"}"},
      {"attributes in order", "<a b=\"1\" c = \"2\"\n b=\"3\">t</a>",
       "a{b=\"1\" c=\"2\" b=\"3\"}'t'"},
      {"value: blanks", "<a b=\"  x \n\t y  \"/>", "a{b=\"x y\"}"},
      {"value: markup is text", "<a b=\"<x/>='&quot;\"/>", "a{b=\"<x/>='\"\"}"},
      {"value: empty", "<a b=\"\"/>", "a{b=\"\"}"},
      {"markup characters in text", "<a>/>=!?\"'</a>", "a'/>=!?\"''"},
      {"bytes of 128 and above", "<a>\xC3\xA9</a>", "a'\xC3\xA9'"},
      {"end tag with blanks", "<a>x</a\n >", "a'x'"},
      {"comment between children", "<a><b/><!-- c --><?p?><c/></a>", "a[b c]"},
      {"comment in front of an end tag", "<a>x<!-- c --> </a>", "a'x'"},
      {"markup ends at its first >", "<!-- <x> --><a/>", "! unexpected an identifier"},
      {"declaration in front of the root", "<!DOCTYPE a>\n<?p?><a/>", "a"},
      {"odd names", "<=><?x?></=>", "="},
      {"a blank as name", "< ></ >", " "},
      {"a name of one byte of many", "<\xC3></\xC3>", "\xC3"},
      {"a reference as name", "<&#97;></a>", "a"},
      {"tab by reference is no blank", "<&#9;></\t>", "! closing tag mismatch: \t vs  "},
  });
}

TEST (XmlParser, DecodesReferences) {
  Check ({
      {"five names", "<a>&amp;&lt;&gt;&apos;&quot;</a>", "a'&<>'\"'"},
      {"numbers", "<a>&#x41;&#66;&lt;</a>", "a'AB<'"},
      {"capital x and digits of both cases", "<a>&#X4a;&#x4A;</a>", "a'JJ'"},
      {"one byte, never a sequence", "<a>&#233;</a>", "a'\xE9'"},
      {"cut to eight bits", "<a>&#321;&#x141;</a>", "a'AA'"},
      {"wraps", "<a>&#xFFFFFFFFFFFFFFF41;</a>", "a'A'"},
      {"as atoi reads", "<a>&# +65xyz;</a>", "a'A'"},
      {"negative", "<a>&#-191;</a>", "a'A'"},
      {"what is not a number is nothing", "<a>x&#a;y</a>", "a'xy'"},
      {"zero is nothing", "<a>x&#0;&#256;&#x;y</a>", "a'xy'"},
      {"zero parts white space", "<a>x &#0; y</a>", "a'x  y'"},
      {"blank by reference is trimmed", "<a b=\"&#32;v &#32;\">&#32;x &#x20;</a>", "a{b=\"v\"}'x'"},
      {"blanks by reference inside stay", "<a>x&#32;&#32; y</a>", "a'x   y'"},
      {"reaches over markup", "<a>&#65</a><b>;</a>", "a'A'"},
      {"in a comment", "<!-- &#62; --><a/>", "a"},
      {"bad digit", "<a>&#x4g;</a>", "! badly formed hex reference: &#x4g;"},
      {"bad digit, as it was written", "<a>&#XAG;</a>", "! badly formed hex reference: &#XAG;"},
      {"unknown name", "<a>&nbsp;</a>", "! unrecognised ampersand sequence: &nbsp;"},
      {"names have their case", "<a>&AMP;</a>", "! unrecognised ampersand sequence: &AMP;"},
      {"no name", "<a>&;</a>", "! unrecognised ampersand sequence: &;"},
      {"no semicolon", "<a>&amp</a> rest\n;",
       "! ampersand sequence needs semicolon: &amp</a> rest\n"},
      {"no semicolon at the end", "<a>x&", "! ampersand sequence needs semicolon: &"},
      {"before anything of its line", "<a>x</b>&bad;", "! unrecognised ampersand sequence: &bad;"},
      {"not before its line", "<a>x</b>\n&bad;", "! closing tag mismatch: a vs b"},
  });
}

TEST (XmlParser, AssertsAnEmptyReferenceAndGoesOn) {
  Hearing hearing;
  EXPECT_EQ (Root ("<a>x&#;y</a>"), "a'xy'");
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"reference.Length() > 3"});
}

TEST (XmlParser, RefusesWithItsWords) {
  Check ({
      {"single quotes", "<a b='1'/>", "! unexpected a literal"},
      {"no value", "<a b/>", "! unexpected /"},
      {"no equals sign", "<a b \"1\"/>", "! unexpected \""},
      {"no quote", "<a b=1/>", "! unexpected an identifier"},
      {"attribute name", "<a =\"1\"/>", "! unexpected syntax"},
      {"attribute name behind the colon", "<a b: c=\"1\"/>", "! unexpected syntax"},
      {"two colons", "<a b:c:d=\"1\"/>", "! unexpected a literal"},
      {"colon in an element name", "<a:b/>", "! unexpected syntax"},
      {"mismatch", "<a></b>", "! closing tag mismatch: a vs b"},
      {"mismatch by a longer name", "<a></ab>", "! closing tag mismatch: a vs ab"},
      {"mismatch by a shorter name", "<ab></a>", "! closing tag mismatch: ab vs a"},
      {"mismatch inside", "<a><b>x</a>", "! closing tag mismatch: b vs a"},
      {"blank in front of the name", "<a></ a>", "! closing tag mismatch: a vs  "},
      {"more in an end tag", "<a></a b>", "! unexpected an identifier"},
      {"empty tag goes on", "<a/b>", "! unexpected an identifier"},
      {"comment in front of text", "<a><!-- c -->t</a>", "! unexpected an identifier"},
      {"comment in front of other text", "<a><!-- c -->:</a>", "! unexpected a literal"},
      {"text in front of the root", "x<a/>", "! unexpected an identifier"},
      {"=", "= <a/>", "! unexpected ="},
      {">", "> <a/>", "! unexpected >"},
      {"?", "? <a/>", "! unexpected ?"},
      {"!", "! <a/>", "! unexpected !"},
      {"end in text", "<a>x", "! unexpected end-of-file"},
      {"end behind a start tag", "<a>", "! unexpected end-of-file"},
      {"end in a start tag", "<a", "! unexpected end-of-file"},
      {"end in an attribute", "<a b", "! unexpected end-of-file"},
      {"end behind the equals sign", "<a b=", "! unexpected end-of-file"},
      {"end in a value", "<a b=\"x", "! unexpected end-of-file"},
      {"end in an end tag", "<a>x</a", "! unexpected end-of-file"},
      {"end in a comment", "<a><!-- x", "! unexpected end-of-file"},
      {"end behind a comment", "<a><!-- x -->", "! unexpected end-of-file"},
      {"end in a declaration", "<!DOCTYPE", "! unexpected end-of-file"},
      {"zero byte", std::string ("<a>\0</a>", 8), "! unexpected zero byte"},
      {"zero byte behind", std::string ("<a/>\0", 5), "! unexpected zero byte"},
      {"zero byte in a later line", std::string ("<a/>\n\0", 6), "a"},
      {"no element", " <!-- --> ", "null"},
      {"end tag alone", "</a>", "null"},
  });
}

TEST (XmlParser, OpensOnlyWhatBeginsLikeXml) {
  Hearing hearing;
  TemporaryFolder folder;
  struct {
    const char* name;
    std::string bytes;
    bool opens;
  } cases[] = {
      {"empty", "", false},
      {"four bytes", "<?xm", false},
      {"five bytes", "<?xml", true},
      {"a blank in front", " <?xml?>", false},
      {"byte order mark", "\xEF\xBB\xBF<?xml?>", false},
      {"16-bit text", std::string ("\xFF\xFE<\0?\0x\0", 8), false},
      {"second line", "\n<?xml?>", false},
      {"capital letters", "<?XML?>", false},
      {"whole", "<?xml version=\"1.0\"?>\n<a>x</a>\n", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    std::ofstream (folder.Host ("f.xml"), std::ios::binary) << c.bytes;
    xml_parser parser;
    EXPECT_EQ (parser.Open (folder.Device ("f.xml")), c.opens);
    EXPECT_EQ (parser.IsOpen (), c.opens);
  }
  xml_parser parser;
  EXPECT_FALSE (parser.Open (folder.Device ("missing.xml")));
  EXPECT_FALSE (parser.Open (folder.Device ("")));
  ASSERT_TRUE (parser.Open (folder.Device ("f.xml")));
  xml_tree tree;
  EXPECT_EQ (Shown (parser.NextElement (tree)), "a'x'");
  EXPECT_TRUE (parser.Close ());
}

TEST (XmlParser, EntersAndLeavesLevels) {
  struct {
    const char* name;
    const char* document;
    int levels;
    const char* told;
  } cases[] = {
      {"one level", "<?xml?><r v=\"1\"> t <a>x</a><!-- --><b/></r>\n", 1,
       "opened 100%\nin r{v=\"1\"} 100%\na'x' 100%\nb 100%\nno more 100%\nout null 100%\nclean\n"},
      {"lines", "<?xml?>\n<r>\n<a>\n</a>\n</r>\n\n", 1,
       "opened 29%\nin r 59%\na 77%\nno more 96%\nout null 96%\nclean\n"},
      {"two levels", "<?xml?><r><c i=\"2\">t<a/><b/></c></r>", 2,
       "opened 100%\nin c{i=\"2\"} 100%\na 100%\nb 100%\nno more 100%\nout null 100%\nclean\n"},
      {"root without children", "<?xml?><r v=\"1\">text</r>", 1,
       "opened 100%\nin r{v=\"1\"}'text' 100%\nno more 100%\nout null 100%\nclean\n"},
      {"root is an empty tag", "<?xml?><r v=\"1\"/>", 1,
       "opened 100%\nin r{v=\"1\"} 100%\nno more 100%\nout null 100%\nclean\n"},
      {"second level is an empty tag", "<?xml?><r><c/><d/></r>", 2,
       "opened 100%\nin c 100%\nno more 100%\nout null 100%\nclean\n"},
      {"second level is not there", "<?xml?><r><c/></r>", 3,
       "opened 100%\nin null 100%\nno more 100%\nout null 100%\nclean\n"},
      {"no root", "<?xml?><!-- -->", 1,
       "opened 100%\nin null 100%\nno more 100%\nout null 100%\nclean\n"},
      {"only an end tag", "<?xml?></r>", 1,
       "opened 100%\nin null 100%\nno more 100%\nout null 100%\nunclean\n"},
      {"wrong end tag", "<?xml?><r><a/></s>", 1,
       "opened 100%\nin r 100%\na 100%\nno more 100%\nthrown: closing tag mismatch: r vs "
       "s\nunclean\n"},
      {"no end tag", "<?xml?><r><a/>", 1,
       "opened 100%\nin r 100%\na 100%\nthrown: unexpected end-of-file\nunclean\n"},
      {"text behind the root", "<?xml?><r><a/></r> x", 1,
       "opened 100%\nin r 100%\na 100%\nno more 100%\nout null 100%\nunclean\n"},
      {"element behind the root", "<?xml?><r/><s/>", 1,
       "opened 100%\nin r 100%\nno more 100%\nout null 100%\nunclean\n"},
      {"markup behind the root", "<?xml?><r><a/></r>\n<!-- --> <?p?>\n", 1,
       "opened 55%\nin r 55%\na 55%\nno more 55%\nout null 55%\nclean\n"},
      {"markup without end behind the root", "<?xml?><r><a/></r><!-- ", 1,
       "opened 100%\nin r 100%\na 100%\nno more 100%\nout null 100%\nunclean\n"},
      {"bad reference behind the root", "<?xml?><r><a/></r>\n&", 1,
       "opened 95%\nin r 95%\na 95%\nno more 95%\nout null 95%\nunclean\n"},
      {"comment in front of the end tag", "<?xml?><r><a/><!-- --></r>", 1,
       "opened 100%\nin r 100%\na 100%\nno more 100%\nout null 100%\nclean\n"},
      {"whole documents without a level", "<?xml?><r><a/></r>", 0,
       "opened 100%\nr[a] 100%\nno more 100%\nclean\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    EXPECT_EQ (Told (c.document, c.levels), c.told);
  }
}

TEST (XmlParser, StepsThroughLevelsOneByOne) {
  auto parser = On ("<?xml?><r><c n=\"1\"><a/>\n<b>x</b></c><c n=\"2\"/><d>end</d></r>");
  xml_tree tree;
  EXPECT_EQ (Shown (parser->EnterLevel (1)), "r");
  EXPECT_EQ (Shown (parser->EnterLevel (1)), "c{n=\"1\"}");
  EXPECT_EQ (Shown (parser->NextElement (tree)), "a");
  // What is left of a level is passed over.
  EXPECT_EQ (Shown (parser->LeaveLevel (1)), "r");
  EXPECT_EQ (Shown (parser->EnterLevel (1)), "c{n=\"2\"}");
  EXPECT_EQ (parser->NextElement (tree), nullptr);
  EXPECT_EQ (Shown (parser->LeaveLevel (1)), "r");
  EXPECT_EQ (Shown (parser->NextElement (tree)), "d'end'");
  for (int i = 0; i < 3; i++) EXPECT_EQ (parser->NextElement (tree), nullptr);
  EXPECT_EQ (parser->LeaveLevel (1), nullptr);
  EXPECT_TRUE (parser->Close ());
  EXPECT_FALSE (parser->Close ());
}

TEST (XmlParser, ClosingEarlyIsNoCleanEnd) {
  auto parser = On ("<?xml?><r><a/></r>");
  parser->EnterLevel (1);
  EXPECT_FALSE (parser->Close ());
  EXPECT_EQ (parser->PercentDone (), 0u);
}

TEST (XmlParser, AssertsWhatACallerMayNotDo) {
  Hearing hearing;
  xml_tree tree;
  xml_parser closed;
  EXPECT_EQ (closed.NextElement (tree), nullptr);
  EXPECT_EQ (closed.EnterLevel (1), nullptr);
  EXPECT_EQ (closed.LeaveLevel (1), nullptr);
  EXPECT_EQ (hearing.TakeAssertions ().size (), 3u);
  auto parser = On ("<?xml?><r><a><b><c/></b></a></r>");
  EXPECT_EQ (parser->EnterLevel (0), nullptr);
  EXPECT_EQ (parser->EnterLevel (4), nullptr);
  EXPECT_EQ (Shown (parser->EnterLevel (3)), "b");
  EXPECT_EQ (parser->EnterLevel (1), nullptr);
  EXPECT_EQ (parser->LeaveLevel (4), nullptr);
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"count > 0", "count <= maxParsingReturnLevels",
                                       "targetDepth + count <= maxParsingReturnLevels",
                                       "count <= targetDepth"}));
  EXPECT_EQ (parser->LeaveLevel (3), nullptr);
  EXPECT_TRUE (parser->Close ());
}

TEST (XmlParser, IsGoodForNothingButClosingAfterARefusal) {
  auto parser = On ("<?xml?><r>\n&;\n</r>");
  xml_tree tree;
  EXPECT_THROW (parser->EnterLevel (1), Str);
  EXPECT_THROW (parser->NextElement (tree), Str);
  EXPECT_LE (parser->PercentDone (), 100u);
  EXPECT_FALSE (parser->Close ());
}

// A source that gives a few bytes at a time and then fails.
class FailingSource final : public xml_source {
 public:
  explicit FailingSource (std::string text) : bytes (std::move (text)) {}
  uint64_t Size () const noexcept override { return 1000; }
  int64_t Read (void* destination, std::size_t n) override {
    if (given == bytes.size ()) return -1;
    n = std::min<std::size_t> ({n, 3, bytes.size () - given});
    bytes.copy (static_cast<char*> (destination), n, given);
    given += n;
    return static_cast<int64_t> (n);
  }

 private:
  std::string bytes;
  std::size_t given = 0;
};

TEST (XmlParser, RaisesADeviceErrorWhenItIsReached) {
  xml_parser parser ({.piece = 16, .block = 17});
  ASSERT_TRUE (
      parser.Open (std::make_unique<FailingSource> ("<?xml?>\n<r>\n<a>1</a>\n<a>2</a>\n")));
  xml_tree tree;
  try {
    parser.EnterLevel (1);
    while (parser.NextElement (tree)) continue;
    ADD_FAILURE () << "nothing was thrown";
  } catch (const Str& text) {
    EXPECT_EQ (text, "device error while reading the file");
  }
  EXPECT_FALSE (parser.Close ());
}

TEST (XmlParser, ReadsLongLinesInPiecesAndSaysSoOnce) {
  Hearing hearing;
  const std::string declaration = "<?xml?>\n";
  struct {
    const char* name;
    std::size_t length;  // of the line, its line feed included
    std::size_t blankAt;
    bool isSaid;
  } cases[] = {{"just fits", 16383, std::string::npos, false},
               {"the line feed is too much", 16384, std::string::npos, true},
               {"in the text", 16384 + 10, 16383 - 3, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    std::string text (c.length - 8, 'x');
    for (int copies = 1; copies <= 2; copies++) {
      std::string document = declaration;
      for (int i = 0; i < copies; i++) document += "<a>" + text + "</a>\n";
      std::string expected = text;
      if (c.blankAt != std::string::npos) expected.insert (c.blankAt, " ");
      auto parser = On (document);
      xml_tree tree;
      for (int i = 0; i < copies; i++)
        EXPECT_EQ (Shown (parser->NextElement (tree)), "a'" + expected + "'");
      EXPECT_EQ (hearing.TakeLog ().size (), c.isSaid ? 1u : 0u);
    }
  }
  std::string cut = declaration + "<a>" + std::string (16383 - 5, 'x') + "&amp;</a>\n";
  auto parser = On (cut);
  xml_tree tree;
  try {
    parser->NextElement (tree);
    ADD_FAILURE () << "nothing was thrown";
  } catch (const Str& text) {
    EXPECT_EQ (text, "ampersand sequence needs semicolon: &a");
  }
  EXPECT_EQ (hearing.TakeLog (), std::vector<std::string>{xml_LongLines});
}

TEST (XmlParser, RefusesWhatIsNestedTooDeep) {
  auto Nested = [] (int n) {
    std::string text;
    for (int i = 0; i < n; i++) text += "<a>\n";
    for (int i = 0; i < n; i++) text += "</a>\n";
    return text;
  };
  EXPECT_TRUE (Root (Nested (256)).starts_with ("a[a[a["));
  EXPECT_EQ (Root (Nested (257)), "! elements are nested too deep");
  EXPECT_EQ (Root (Nested (100000)), "! elements are nested too deep");
  std::string document = "<?xml?><r>" + Nested (256) + "</r>";
  EXPECT_NE (Told (document, 1).find ("thrown: elements are nested too deep"), std::string::npos);
}

// Each of these is of several megabytes; a cost that grows with the square would take minutes.
TEST (XmlParser, TakesTimeInProportion) {
  Hearing hearing;
  auto Many = [] (std::string_view part, int count = 300000) {
    std::string text;
    for (int i = 0; i < count; i++) text += part;
    return text;
  };
  std::pair<const char*, std::string> cases[] = {
      {"one line", "<a>" + std::string (8 << 20, 'x') + "</a>"},
      {"only line feeds", "<a>" + std::string (4 << 20, '\n') + "</a>"},
      {"references on long lines", "<a>" + Many (Many ("&amp;", 3000) + "\n", 100) + "</a>"},
      {"references on lines", "<a>" + Many ("&amp;\n") + "</a>"},
      {"attributes", "<a " + Many (" b=\"1\"") + "/>"},
      {"attributes on lines", "<a " + Many (" b=\"&lt;\"\n") + "/>"},
      {"children", "<a>" + Many ("<b/>\n") + "</a>"},
      {"text between children", "<a>" + Many ("x<b/>\n") + "</a>"},
      {"comments", Many ("<!---->\n") + "<a/>"},
  };
  for (const auto& [name, body] : cases) {
    SCOPED_TRACE (name);
    const auto begin = std::chrono::steady_clock::now ();
    std::string root = Root (body);
    EXPECT_TRUE (root.starts_with ("a")) << root.substr (0, 100);
    EXPECT_LT (std::chrono::steady_clock::now () - begin, std::chrono::seconds (20));
  }
}

TEST (XmlParser, BoundsTheMemoryOfAnElement) {
  std::string filler (3000, 'x');
  std::string document = "<?xml?>\n<r>\n<a>small</a>\n";
  struct {
    const char* name;
    std::string body;
  } cases[] = {{"one text", ""}, {"a text in stretches", ""}, {"children", ""}, {"a value", ""}};
  for (int i = 0; i < 100; i++) {
    cases[0].body += filler + "\n";
    cases[1].body += filler + "<b/>\n";
    cases[2].body += "<b>" + filler + "</b>\n";
    cases[3].body += filler + "&amp;\n";
  }
  cases[3].body = "<b c=\"" + cases[3].body + "\"/>";
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    std::string text = document + "<a>" + c.body + "</a></r>";
    auto parser = On (text);
    parser->EnterLevel (1);
    xml_tree tree (std::size_t{200} << 10);
    EXPECT_EQ (Shown (parser->NextElement (tree)), "a'small'");
    try {
      parser->NextElement (tree);
      ADD_FAILURE () << "nothing was thrown";
    } catch (const Str& thrown) {
      EXPECT_EQ (thrown, "element is too large");
    }
    EXPECT_LE (tree.Size (), tree.Limit ());
  }
}

}  // namespace
}  // namespace clxml::testing
