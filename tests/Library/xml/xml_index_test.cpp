// The index of a file's top-level elements. Leans on xml_index.
#include "Library/xml/xml_index.h"

#include <filesystem>
#include <fstream>

#include "support/hearing.h"

namespace clxml::testing {
namespace {

class XmlIndex : public LibraryTest {
 protected:
  std::unique_ptr<xml_file_index_node> Read (const std::string& bytes) {
    std::ofstream (folder.Host ("f.xml"), std::ios::binary) << bytes;
    return xml_ReadFileIndex (folder.Device ("f.xml"));
  }
  // root: child@start-end …, or the reason why there is none.
  std::string Shown (const std::string& bytes) {
    hearing.TakeLog ();
    auto root = Read (bytes);
    if (!root) {
      auto log = hearing.TakeLog ();
      return log.size () == 1 ? "! " + log[0].substr (log[0].find (": ") + 2) : "! no reason";
    }
    std::string shown = std::string (root->name.View ()) + ":";
    for (auto* child = root->firstChild.get (); child; child = child->nextSibling.get ())
      shown += " " + std::string (child->name.View ()) + "@" + std::to_string (child->startOffset) +
               "-" + std::to_string (child->endOffset);
    return shown;
  }
};

TEST_F (XmlIndex, ListsTheChildrenOfTheRoot) {
  struct {
    const char* name;
    std::string bytes;
    std::string shown;
  } cases[] = {
      {"none", "<r></r>", "r:"},
      {"root with attributes", "<?xml?>\n<r a=\"1\" b=\"2\"></r>", "r:"},
      {"children", "<r><a></a> <b>x</b></r>", "r: a@3-10 b@11-19"},
      {"whole elements", "<r><a/><b c=\"1\"/></r>", "r: a/@3-7 b c=\"1\"/@7-17"},
      {"nested", "<r><a><a><b/></a><c>t</c></a><d/></r>", "r: a@3-29 d/@29-33"},
      {"nothing behind the last is looked at", "<r><a/></", "r: a/@3-7"},
      {"attributes never match their end tag", "<r><a b=\"1\"></a></r>", "! unexpected end tag"},
      {"another end tag", "<r><a></b></r>", "! unexpected end tag"},
      {"a blank in the end tag", "<r><a></a ></r>", "! unexpected end tag"},
      {"end tag first", "</r>", "! unexpected end tag"},
      {"end tag behind the declaration", "<?xml?></r>", "! unexpected end tag"},
      {"no tag", "text", "! unexpected eof"},
      {"empty file", "", "! unexpected eof"},
      {"root only", "<r/>", "! unexpected eof"},
      {"child without end", "<r><a>", "! unexpected eof"},
      {"ends in a tag", "<r><a", "! unexpected eof"},
      {"ends at <", "<r><", "! unexpected eof"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    EXPECT_EQ (Shown (c.bytes), c.shown);
  }
}

TEST_F (XmlIndex, CountsChildrenAndGivesNone) {
  auto root = Read ("<?xml?><r><T></T><U></U><T></T><T/></r>");
  ASSERT_NE (root, nullptr);
  EXPECT_EQ (root->CountChildren ("T"), 2);
  EXPECT_EQ (root->CountChildren ("T/"), 1);
  EXPECT_EQ (root->CountChildren ("r"), 0);
  EXPECT_EQ (root->FindChild ("T"), nullptr);
  EXPECT_EQ (root->GetChild ("T", 1), nullptr);
  EXPECT_EQ (root->filePath, folder.Device ("f.xml"));
  EXPECT_EQ (root->firstChild->filePath, folder.Device ("f.xml"));
}

TEST_F (XmlIndex, SlidesItsWindowOverTheFile) {
  // Tags fall on the window's end in every way when the filler in front grows byte by byte.
  for (std::size_t filler = 102400 - 20; filler <= 102400; filler++) {
    const std::string bytes = "<r>" + std::string (filler, ' ') + "<ab>text</ab><c/></r>";
    const std::size_t begin = 3 + filler;
    EXPECT_EQ (Shown (bytes), "r: ab@" + std::to_string (begin) + "-" +
                                  std::to_string (begin + 13) + " c/@" +
                                  std::to_string (begin + 13) + "-" + std::to_string (begin + 17));
  }
}

TEST_F (XmlIndex, SurvivesAMillionChildren) {
  std::string bytes = "<r>";
  for (int i = 0; i < 1000000; i++) bytes += "<a/>";
  auto root = Read (bytes + "</r>");
  ASSERT_NE (root, nullptr);
  EXPECT_EQ (root->CountChildren ("a/"), 1000000);
}

TEST_F (XmlIndex, IsNullForWhatCannotBeRead) {
  EXPECT_EQ (xml_ReadFileIndex (folder.Device ("missing.xml")), nullptr);
  EXPECT_EQ (hearing.log.size (), 1u);
  EXPECT_TRUE (hearing.log[0].ends_with (": unable to open file"));
  // A sparse file beyond what an offset can tell.
  std::ofstream (folder.Host ("large.xml")) << "<r>";
  std::filesystem::resize_file (folder.Host ("large.xml"), 2147483648u);
  EXPECT_EQ (xml_ReadFileIndex (folder.Device ("large.xml")), nullptr);
  EXPECT_TRUE (hearing.log.back ().ends_with (": file is too large"));
}

}  // namespace
}  // namespace clxml::testing
