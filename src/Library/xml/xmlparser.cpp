// The reader of exchange files: one top-level element at a time.
// Builds elements straight from the bytes that the tokenizer holds. Leans on xml_tokenizer, and on
// platform/stream for files.
//
// What is read, on the tokens that xml_tokenizer.cpp describes. "<?" and "<!" begin markup that
// ends at its first ">"; it is skipped in front of a tag. A start tag is "<", a token whose text is
// the name, attributes, and ">" or "/" ">". An attribute is an identifier, or two with ":" between
// them, "=", and a value in double quotes. Between the tags every token but "<" adds its text to
// the element's text, white space one blank; blanks are trimmed from both ends in the end.
//
// Cost: each byte is looked at once and each text copied once, into the tree. Only a text that
// goes round children, or holds references or white space other than single blanks, is gathered in
// a buffer first; that buffer serves all open elements as a stack.
#include "Library/xml/xmlparser.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "Library/xml/xml_tokenizer.h"
#include "platform/stream.h"

namespace clxml {

namespace {

constexpr std::size_t keptText = std::size_t{1} << 20;

class FileSource final : public xml_source {
 public:
  bool Open (const Str& path) { return stream.Open (path); }
  uint64_t Size () const noexcept override { return stream.Size (); }
  int64_t Read (void* destination, std::size_t n) override { return stream.Read (destination, n); }

 private:
  file_Stream stream;
};

std::string_view Trimmed (const char* begin, const char* end) noexcept {
  while (begin != end && *begin == ' ') ++begin;
  while (begin != end && end[-1] == ' ') --end;
  return {begin, static_cast<std::size_t> (end - begin)};
}

// Over bytes that stand for themselves and single blanks between them: the longest stretch whose
// text is what stands there.
const char* PlainRun (const char* p, uint8_t use) noexcept {
  for (;;) {
    p = xml_Run (p, use);
    if (*p != ' ' || !xml_Is (p[1], use)) return p;
    ++p;
  }
}

}  // namespace

int64_t xml_memory::Read (void* destination, std::size_t n) {
  n = std::min (n, rest.size ());
  if (n > 0) std::memcpy (destination, rest.data (), n);
  rest.remove_prefix (n);
  return static_cast<int64_t> (n);
}

struct xml_parser::Reading {
  // An element whose end tag has not come yet, and where its text begins in the buffer.
  struct Open {
    xml_element* element;
    std::size_t textBegin;
  };

  Reading (std::unique_ptr<xml_source> source, const xml_sizes& sizes)
      : tokens (std::move (source), sizes) {}

  void SkipMarkup ();
  bool IsEndTag () const noexcept { return tokens.At ()[0] == '<' && tokens.At ()[1] == '/'; }
  xml_element* StartTag (xml_tree& tree, bool& isComplete);
  void Text (const xml_tree& tree, std::size_t textBegin);
  std::string_view KeepText (xml_tree& tree, std::size_t textBegin);
  void EndTag (std::string_view name);
  xml_element* Element (xml_tree& tree, int depth);

  xml_tokenizer tokens;
  std::string text;      // of all open elements, outermost first
  bool isSound = false;  // the last operation came to its end

 private:
  const char* Attributes (xml_tree& tree, xml_element& element, const char* p);
  xml_attribute* AttributeName (xml_tree& tree, const char*& p);
  const char* Value (xml_tree& tree, std::string_view& value, const char* p);
  bool Leaf (xml_tree& tree, xml_element& element);
  void Add (const xml_tree& tree, const char* begin, const char* end);
  void Add (const xml_tree& tree, char c) { Add (tree, &c, &c + 1); }
  const char* AddReference (const xml_tree& tree, const char* p);
  const char* AddSpace (const xml_tree& tree, std::size_t textBegin, const char* p);

  Open open[xml_MaximumNesting];
};

// Skips markup and the white space before and behind it. Stays in front of anything else.
void xml_parser::Reading::SkipMarkup () {
  const char* p = tokens.SkipSpace (tokens.At ());
  while (*p == '<' && (p[1] == '?' || p[1] == '!')) {
    p = xml_Run (p + 2, XML_InMarkup);
    while (*p != '>') {
      if (*p == '&')
        tokens.TakeReference (p);
      else if (tokens.IsEnd (p))
        tokens.Unexpected (p);
      else
        p = tokens.Load ();
      p = xml_Run (p, XML_InMarkup);
    }
    p = tokens.SkipSpace (p + 1);
  }
  tokens.MoveTo (p);
}

// Reads a start tag; isComplete tells that it was an empty tag.
xml_element* xml_parser::Reading::StartTag (xml_tree& tree, bool& isComplete) {
  const char* p = tokens.Expect (XML_LessThan, tokens.At ());
  xml_element* element = tree.NewElement (tokens.Take (p));
  if (*p != '>') p = Attributes (tree, *element, p);
  isComplete = *p == '/';
  tokens.MoveTo (isComplete ? tokens.Expect (XML_GreaterThan, p + 1) : p + 1);
  return element;
}

// Reads attributes up to the "/" or ">" behind them.
const char* xml_parser::Reading::Attributes (xml_tree& tree, xml_element& element, const char* p) {
  for (;;) {
    p = tokens.SkipSpace (p);
    if (*p == '/' || *p == '>') return p;
    xml_attribute* attribute = AttributeName (tree, p);
    p = tokens.Expect (XML_Equals, p);
    p = tokens.Expect (XML_DoubleQuote, p);
    p = Value (tree, attribute->value, p);
    (element.lastAttribute ? element.lastAttribute->next : element.firstAttribute) = attribute;
    element.lastAttribute = attribute;
  }
}

xml_attribute* xml_parser::Reading::AttributeName (xml_tree& tree, const char*& p) {
  if (tokens.IsEnd (p)) tokens.Unexpected (p);
  if (!xml_Is (*p, XML_InIdentifier)) throw Str ("unexpected syntax");
  const std::string_view name = tokens.Take (p);
  // A reference to the colon's number is a colon, too.
  const char* behind = p;
  if ((*p != ':' && *p != '&') || tokens.Take (behind) != ":") return tree.NewAttribute (name, {});
  p = behind;
  if (!xml_Is (*p, XML_InIdentifier)) throw Str ("unexpected syntax");
  return tree.NewAttribute (std::string (name).append (":").append (tokens.Take (p)), {});
}

// Reads a value, whose opening quote is behind, and its closing quote.
const char* xml_parser::Reading::Value (xml_tree& tree, std::string_view& value, const char* p) {
  const char* end = PlainRun (p, XML_InValue);
  if (*end == '"') [[likely]] {
    value = tree.Keep (Trimmed (p, end));
    return end + 1;
  }
  const std::size_t begin = text.size ();
  for (;;) {
    end = PlainRun (p, XML_InValue);
    Add (tree, p, end);
    p = end;
    if (*p == '"') break;
    p = *p == '&' ? AddReference (tree, p) : AddSpace (tree, begin, p);
  }
  value = KeepText (tree, begin);
  return p + 1;
}

// Reads the text of the innermost open element up to the next "<".
void xml_parser::Reading::Text (const xml_tree& tree, std::size_t textBegin) {
  const char* p = tokens.At ();
  for (;;) {
    const char* end = PlainRun (p, XML_InText);
    if (end != p) Add (tree, p, end);
    p = end;
    if (*p == '<') break;
    p = *p == '&' ? AddReference (tree, p) : AddSpace (tree, textBegin, p);
  }
  tokens.MoveTo (p);
}

// A text counts twice, here and in the tree that it goes to.
void xml_parser::Reading::Add (const xml_tree& tree, const char* begin, const char* end) {
  const std::size_t n = static_cast<std::size_t> (end - begin);
  if (2 * (text.size () + n) > tree.Limit () - tree.Size ()) throw Str ("element is too large");
  text.append (begin, n);
}

const char* xml_parser::Reading::AddReference (const xml_tree& tree, const char* p) {
  const char c = tokens.TakeReference (p);
  if (c != 0) Add (tree, c);
  return p;
}

// White space in front of a text would be trimmed in the end, so it is not added at all.
const char* xml_parser::Reading::AddSpace (const xml_tree& tree, std::size_t textBegin,
                                           const char* p) {
  if (tokens.IsEnd (p)) tokens.Unexpected (p);
  if (text.size () > textBegin) Add (tree, ' ');
  return tokens.SkipSpace (p);
}

// Takes a text out of the buffer, trimmed.
std::string_view xml_parser::Reading::KeepText (xml_tree& tree, std::size_t textBegin) {
  const std::string_view kept =
      tree.Keep (Trimmed (text.data () + textBegin, text.data () + text.size ()));
  text.resize (textBegin);
  return kept;
}

void xml_parser::Reading::EndTag (std::string_view name) {
  const char* p = tokens.At () + 2;
  // Only an identifier can be compared byte by byte; every name ends in a zero byte.
  if (xml_Is (*name.data (), XML_InIdentifier)) [[likely]] {
    const char* n = name.data ();
    const char* q = p;
    while (*n != 0 && *q == *n) ++q, ++n;
    if (*n == 0 && *q == '>') [[likely]] {
      tokens.MoveTo (q + 1);
      return;
    }
  }
  // White space there is compared before it is passed, which may take the next piece.
  const std::string_view found =
      tokens.Type (p) == XML_WhiteSpace ? std::string_view (" ") : tokens.Take (p);
  if (found != name) throw Str ("closing tag mismatch: ") + Str (name) + Str (" vs ") + Str (found);
  tokens.MoveTo (tokens.Expect (XML_GreaterThan, p));
}

// Reads the rest of an element without children whose text can be taken as it stands, which most
// elements are; false, with nothing but white space read, when it is another.
bool xml_parser::Reading::Leaf (xml_tree& tree, xml_element& element) {
  const char* p = tokens.SkipSpace (tokens.At ());
  const char* end = PlainRun (p, XML_InText);
  const bool isLeaf = end[0] == '<' && end[1] == '/';
  tokens.MoveTo (isLeaf ? end : p);
  if (!isLeaf) return false;
  element.value = tree.Keep (Trimmed (p, end));
  EndTag (element.name);
  return true;
}

// Reads the element in front of which the tokens stand, with everything below it; depth is that
// of the element around it.
xml_element* xml_parser::Reading::Element (xml_tree& tree, int depth) {
  const int outside = depth;
  xml_element* root = nullptr;
  for (;;) {
    if (depth + 1 >= xml_MaximumNesting) throw Str ("elements are nested too deep");
    bool isComplete;
    xml_element* element = StartTag (tree, isComplete);
    if (depth == outside) {
      root = element;
    } else {
      xml_element& parent = *open[depth].element;
      (parent.lastChild ? parent.lastChild->nextSibling : parent.firstChild) = element;
      parent.lastChild = element;
    }
    if (!isComplete && !Leaf (tree, *element)) open[++depth] = {element, text.size ()};
    for (;;) {
      if (depth == outside) return root;
      Text (tree, open[depth].textBegin);
      // Markup in front of an end tag is skipped like any other; text behind it is refused.
      if (tokens.At ()[1] == '?' || tokens.At ()[1] == '!') SkipMarkup ();
      if (!IsEndTag ()) break;
      open[depth].element->value = KeepText (tree, open[depth].textBegin);
      EndTag (open[depth].element->name);
      depth--;
    }
  }
}

xml_parser::xml_parser (xml_sizes sizes) noexcept : sizes (sizes) {}

xml_parser::~xml_parser () = default;

bool xml_parser::Open (const Str& path) {
  auto file = std::make_unique<FileSource> ();
  return file->Open (path) && Open (std::move (file));
}

bool xml_parser::Open (std::unique_ptr<xml_source> source) {
  if (!Assert (!IsOpen (), "!IsOpen ()")) return false;
  auto opened = std::make_unique<Reading> (std::move (source), sizes);
  if (!opened->tokens.Begin ()) return false;
  reading = std::move (opened);
  reading->isSound = true;
  return true;
}

// An operation makes the reading unsound while it works, so that one that threw leaves it so.
void xml_parser::Begin () {
  if (!reading->isSound) throw Str ("the file has been refused before");
  reading->isSound = false;
}

const xml_element* xml_parser::EnterLevel (int count) {
  if (!Assert (IsOpen (), "IsOpen ()") || !Assert (count > 0, "count > 0") ||
      !Assert (count <= maxParsingReturnLevels, "count <= maxParsingReturnLevels") ||
      !Assert (count <= maxParsingReturnLevels - targetDepth,
               "targetDepth + count <= maxParsingReturnLevels"))
    return nullptr;
  Begin ();
  for (; count > 0; count--) {
    const bool isOpen = depth == targetDepth - 1;
    levelElements[targetDepth] = std::make_unique<xml_tree> ();
    xml_tree& tree = *levelElements[targetDepth++];
    if (isOpen) tree.SetRoot (EnterOne (tree));
  }
  reading->isSound = true;
  return levelElements[targetDepth - 1]->Root ();
}

// Reads a start tag and stops in front of the first child; an element without children is read to
// its end, so that its level is over as soon as it is entered.
xml_element* xml_parser::EnterOne (xml_tree& tree) {
  if (IsLevelEnd ()) return nullptr;
  bool isComplete;
  xml_element* element = reading->StartTag (tree, isComplete);
  if (isComplete) return element;
  depth++;
  reading->Text (tree, 0);
  if (reading->IsEndTag ()) {
    element->value = reading->KeepText (tree, 0);
    reading->EndTag (element->name);
    depth--;
  }
  reading->text.clear ();
  return element;
}

// Goes in front of the next child; true when there is none: at the end tag of the level's element
// or, outside the root, at the end of the file.
bool xml_parser::IsLevelEnd () {
  reading->SkipMarkup ();
  return reading->IsEndTag () || (depth == -1 && reading->tokens.IsEnd (reading->tokens.At ()));
}

const xml_element* xml_parser::NextElement (xml_tree& tree) {
  tree.Clear ();
  if (!Assert (IsOpen (), "IsOpen ()")) return nullptr;
  if (depth < targetDepth - 1) return nullptr;
  Begin ();
  if (!IsLevelEnd ()) tree.SetRoot (reading->Element (tree, depth));
  if (reading->text.capacity () > keptText) reading->text = {};
  reading->isSound = true;
  return tree.Root ();
}

const xml_element* xml_parser::LeaveLevel (int count) {
  if (!Assert (IsOpen (), "IsOpen ()") || !Assert (count > 0, "count > 0") ||
      !Assert (count <= targetDepth, "count <= targetDepth"))
    return nullptr;
  for (; count > 0; count--) {
    xml_tree rest;
    while (NextElement (rest)) continue;
    Begin ();
    targetDepth--;
    if (depth == targetDepth) {
      reading->EndTag (levelElements[targetDepth]->Root ()->name);
      depth--;
    }
    levelElements[targetDepth].reset ();
    reading->isSound = true;
  }
  return depth >= 0 ? levelElements[depth]->Root () : nullptr;
}

bool xml_parser::Close () noexcept {
  bool isClean = false;
  if (IsOpen () && reading->isSound && depth == -1) {
    try {
      reading->SkipMarkup ();
      isClean = reading->tokens.IsEnd (reading->tokens.At ());
    } catch (...) {
      // What cannot be read is no clean end.
    }
  }
  reading.reset ();
  for (auto& level : levelElements) level.reset ();
  depth = -1;
  targetDepth = 0;
  return isClean;
}

uint32_t xml_parser::PercentDone () const noexcept {
  if (!IsOpen () || reading->tokens.FileSize () == 0) return 0;
  const uint64_t percent = reading->tokens.Position () * 100 / reading->tokens.FileSize ();
  return static_cast<uint32_t> (std::min<uint64_t> (percent, 100));
}

}  // namespace clxml
