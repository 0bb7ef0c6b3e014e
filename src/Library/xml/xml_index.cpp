// Where the top-level elements of a small XML file stand.
// Walks over the tags of a file in one pass. Leans on platform/stream.
//
// A tag is what stands between "<" and the next ">". In front of the root, tags that begin with
// "?" are passed over. Below the root a tag that begins with "/" is an end tag, one that ends with
// "/" is a whole element, any other opens an element; comments are not told apart.
#include "Library/xml/xml_index.h"

#include <limits>
#include <string>
#include <string_view>

#include "Library/xml/xml.h"
#include "platform/stream.h"

namespace clxml {

namespace {

constexpr std::size_t windowSize = 102400;
constexpr uint64_t largestOffset = std::numeric_limits<int32_t>::max ();

// A window that slides over the file, and the place in it.
class TagReader {
 public:
  explicit TagReader (const Str& path) : window (windowSize + 1, '\0') {
    if (!file.Open (path)) throw Str ("unable to open file");
    if (file.Size () > largestOffset) throw Str ("file is too large");
    Refill ();
  }

  int32_t Position () const noexcept { return static_cast<int32_t> (offset + index); }
  char Current () {
    if (index == filled) Refill ();
    return window[index];
  }
  void Step () {
    Current ();
    index++;
  }
  // Goes to the next "<", from the place on, and answers the byte behind it, where it then stands.
  char NextTag () {
    while (Current () != '<') index++;
    tagBegin = Position ();
    Step ();
    return Current ();
  }
  int32_t TagBegin () const noexcept { return tagBegin; }
  // The text up to the next ">", and over it. Good until the next one is read.
  std::string_view TagText () {
    text.clear ();
    for (; Current () != '>'; index++) {
      Pay (1);
      text += window[index];
    }
    budget += text.size ();
    index++;
    return text;
  }
  // What the index keeps is bounded like an element of the parser.
  void Pay (std::size_t bytes) {
    if (bytes > budget) throw Str ("element is too large");
    budget -= bytes;
  }

 private:
  void Refill () {
    offset += filled;
    index = filled = 0;
    const int64_t n = file.Read (window.data (), windowSize);
    if (n < 0) throw Str ("device error while reading the file");
    if (n == 0) throw Str ("unexpected eof");
    if (offset + static_cast<uint64_t> (n) > largestOffset) throw Str ("file is too large");
    filled = static_cast<std::size_t> (n);
  }

  file_Stream file;
  std::string window;
  uint64_t offset = 0;  // of the window in the file
  std::size_t index = 0;
  std::size_t filled = 0;
  int32_t tagBegin = 0;
  std::string text;
  std::size_t budget = xml_MaximumElementSize;
};

bool IsWhole (std::string_view tag) noexcept { return tag.ends_with ('/'); }

// Reads on from behind the start tag of an element to behind its end tag.
void PassElement (TagReader& tags, const Str& startTag) {
  int64_t nesting = 1;
  std::string_view tag;
  while (nesting > 0) {
    const bool isEnd = tags.NextTag () == '/';
    tag = tags.TagText ();
    if (isEnd)
      nesting--;
    else if (!IsWhole (tag))
      nesting++;
  }
  if (Str (tag.substr (1)) != startTag) throw Str ("unexpected end tag");
}

std::unique_ptr<xml_file_index_node> NewNode (std::string_view name, const Str& path) {
  auto node = std::make_unique<xml_file_index_node> ();
  node->name = name;
  node->filePath = path;
  return node;
}

std::unique_ptr<xml_file_index_node> Read (const Str& path) {
  TagReader tags (path);
  for (;;) {
    const char behind = tags.NextTag ();
    if (behind == '/') throw Str ("unexpected end tag");
    if (behind != '?') break;
    tags.Step ();
  }
  std::string_view rootTag = tags.TagText ();
  auto root = NewNode (rootTag.substr (0, rootTag.find (' ')), path);

  std::unique_ptr<xml_file_index_node>* last = &root->firstChild;
  while (tags.NextTag () != '/') {
    const int32_t begin = tags.TagBegin ();
    std::string_view tag = tags.TagText ();
    tags.Pay (sizeof (xml_file_index_node) + tag.size () +
              static_cast<std::size_t> (path.Length ()));
    auto child = NewNode (tag, path);
    child->startOffset = begin;
    if (!IsWhole (tag)) PassElement (tags, child->name);
    child->endOffset = tags.Position ();
    *last = std::move (child);
    last = &(*last)->nextSibling;
  }
  return root;
}

}  // namespace

// One after the other: a chain of a million siblings must not become a million calls.
xml_file_index_node::~xml_file_index_node () {
  std::unique_ptr<xml_file_index_node> next = std::move (nextSibling);
  while (next) next = std::move (next->nextSibling);
}

int xml_file_index_node::CountChildren (const Str& childName) const noexcept {
  int count = 0;
  for (const xml_file_index_node* child = firstChild.get (); child;
       child = child->nextSibling.get ())
    if (child->name == childName) count++;
  return count;
}

const xml_file_index_node* xml_file_index_node::FindChild (const Str&) const noexcept {
  return nullptr;
}

const xml_file_index_node* xml_file_index_node::GetChild (const Str&, int) const noexcept {
  return nullptr;
}

std::unique_ptr<xml_file_index_node> xml_ReadFileIndex (const Str& path) {
  try {
    return Read (path);
  } catch (const Str& reason) {
    Environment::Get ()->LogMessage ((path + ": " + reason).Data ());
    return nullptr;
  }
}

}  // namespace clxml
