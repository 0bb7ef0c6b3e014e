// The element tree: look-ups and storage. Leans on xml.
#include "Library/xml/xml.h"

#include <gtest/gtest.h>

#include <memory>

#include "Library/xml/xml_support.h"

namespace clxml::testing {
namespace {

class XmlElement : public ::testing::Test {
 protected:
  XmlElement () {
    parser.Open (std::make_unique<xml_memory> (
        "<?xml?><r a=\"1\" b=\"2\" a=\"3\"><x>first</x><y><z>deep</z><z>other</z><e/></y>"
        "<x>second</x><y><z>late</z><only>there</only></y></r>"));
    root = parser.NextElement (tree);
  }
  xml_parser parser;
  xml_tree tree;
  const xml_element* root;
};

TEST_F (XmlElement, FindsTheFirstChildOfAName) {
  EXPECT_EQ (Shown (root->FindChild ("x")), "x'first'");
  EXPECT_EQ (root->FindChild ("X"), nullptr);
  EXPECT_EQ (root->FindChild ("z"), nullptr);
  EXPECT_EQ (root->ChildValue ("x"), "first");
  EXPECT_EQ (root->ChildValue ("none"), "");
  EXPECT_STREQ (root->ChildValue ("none").data (), "");
}

TEST_F (XmlElement, CountsChildrenFromOne) {
  EXPECT_EQ (root->GetChild (0), nullptr);
  EXPECT_EQ (Shown (root->GetChild (1)), "x'first'");
  EXPECT_EQ (Shown (root->GetChild (3)), "x'second'");
  EXPECT_EQ (root->GetChild (5), nullptr);
  EXPECT_EQ (root->GetChild (4294967295u), nullptr);
}

TEST_F (XmlElement, FindsTheFirstAttributeOfAName) {
  ASSERT_NE (root->FindAttribute ("a"), nullptr);
  EXPECT_EQ (root->FindAttribute ("a")->value, "1");
  EXPECT_EQ (root->FindAttribute ("c"), nullptr);
  EXPECT_EQ (root->AttributeValue ("b"), "2");
  EXPECT_EQ (root->AttributeValue ("c"), "");
  EXPECT_STREQ (root->AttributeValue ("c").data (), "");
}

TEST_F (XmlElement, FollowsPathsByTheFirstOfEachName) {
  struct {
    const char* path;
    const char* shown;
  } cases[] = {{"x", "x'first'"},  {"y/z", "z'deep'"}, {"y/e", "e"},
               {"y/only", "null"}, {"y/z/q", "null"},  {"q/z", "null"},
               {"", "null"},       {"/y", "null"},     {"y/", "null"}};
  for (const auto& c : cases) EXPECT_EQ (Shown (root->FindPath (c.path)), c.shown) << c.path;
}

TEST (XmlTree, EndsEveryTextWithAZeroByte) {
  xml_tree tree;
  EXPECT_STREQ (tree.Keep ("abcdef").data (), "abcdef");
  EXPECT_STREQ (tree.Keep (std::string_view ("abcdef", 3)).data (), "abc");
  EXPECT_STREQ (tree.Keep ("").data (), "");
  xml_element* element = tree.NewElement ("name");
  xml_attribute* attribute = tree.NewAttribute ("key", "");
  EXPECT_STREQ (element->name.data (), "name");
  EXPECT_STREQ (element->value.data (), "");
  EXPECT_STREQ (attribute->value.data (), "");
}

TEST (XmlTree, KeepsAMegabyteForTheNextElement) {
  xml_tree tree;
  const std::string part (1000, 'x');
  for (int round = 0; round < 3; round++) {
    std::vector<std::string_view> kept;
    for (int i = 0; i < 20000; i++) {
      kept.push_back (tree.Keep (part));
      tree.NewElement ("e");
    }
    for (std::string_view text : kept) ASSERT_EQ (text, part);
    EXPECT_GE (tree.Size (), std::size_t{20000} * 1000);
    EXPECT_LE (tree.Size (), std::size_t{40000} * 1000);
    tree.Clear ();
    EXPECT_EQ (tree.Root (), nullptr);
    EXPECT_LE (tree.Size (), std::size_t{1} << 20);
  }
  // A text longer than what was kept finds its place, and so does what follows it.
  const std::string large (3 << 20, 'y');
  std::string_view first = tree.Keep (part), second = tree.Keep (large), third = tree.Keep (part);
  EXPECT_EQ (first, part);
  EXPECT_EQ (second, large);
  EXPECT_EQ (third, part);
}

TEST (XmlTree, HoldsToItsLimit) {
  xml_tree tree (1000);
  tree.Keep (std::string (900, 'x'));
  EXPECT_THROW (tree.Keep (std::string (900, 'x')), Str);
  tree.Clear ();
  EXPECT_EQ (tree.Keep (std::string (999, 'x')).size (), 999u);
  EXPECT_THROW (tree.NewElement ("e"), Str);
}

TEST (XmlTree, IsEmptyWhenMovedFrom) {
  xml_tree tree;
  tree.SetRoot (tree.NewElement ("e"));
  xml_tree other (std::move (tree));
  EXPECT_EQ (Shown (other.Root ()), "e");
  EXPECT_EQ (tree.Root (), nullptr);
  EXPECT_EQ (tree.NewElement ("f")->name, "f");
  tree = std::move (other);
  EXPECT_EQ (Shown (tree.Root ()), "e");
}

}  // namespace
}  // namespace clxml::testing
