// The element tree of an exchange file: look-ups and storage.
// Conversions ask an element for its fields by name; the parser takes storage from the tree.
// Leans on str.
#include "Library/xml/xml.h"

#include <algorithm>
#include <utility>

namespace clxml {

namespace {

constexpr std::size_t smallestChunk = std::size_t{64} << 10;
constexpr std::size_t largestChunk = std::size_t{8} << 20;
constexpr std::size_t keptStorage = std::size_t{1} << 20;

}  // namespace

const xml_element* xml_element::FindChild (std::string_view childName) const noexcept {
  const xml_element* child = firstChild;
  while (child && child->name != childName) child = child->nextSibling;
  return child;
}

const xml_element* xml_element::GetChild (unsigned n) const noexcept {
  if (n == 0) return nullptr;
  const xml_element* child = firstChild;
  while (child && --n > 0) child = child->nextSibling;
  return child;
}

std::string_view xml_element::ChildValue (std::string_view childName) const noexcept {
  const xml_element* child = FindChild (childName);
  return child ? child->value : std::string_view{"", 0};
}

const xml_attribute* xml_element::FindAttribute (std::string_view attributeName) const noexcept {
  const xml_attribute* attribute = firstAttribute;
  while (attribute && attribute->name != attributeName) attribute = attribute->next;
  return attribute;
}

std::string_view xml_element::AttributeValue (std::string_view attributeName) const noexcept {
  const xml_attribute* attribute = FindAttribute (attributeName);
  return attribute ? attribute->value : std::string_view{"", 0};
}

const xml_element* xml_element::FindPath (std::string_view path) const noexcept {
  const xml_element* element = this;
  while (element) {
    std::size_t slash = path.find ('/');
    element = element->FindChild (path.substr (0, slash));
    if (slash == std::string_view::npos) break;
    path.remove_prefix (slash + 1);
  }
  return element;
}

xml_tree::xml_tree (xml_tree&& other) noexcept : _Limit (other._Limit) {
  *this = std::move (other);
}

xml_tree& xml_tree::operator= (xml_tree&& other) noexcept {
  if (this == &other) return *this;
  _Bytes = std::exchange (other._Bytes, nullptr);
  _Used = std::exchange (other._Used, 0);
  _Room = std::exchange (other._Room, 0);
  _Next = std::exchange (other._Next, 0);
  _Size = std::exchange (other._Size, 0);
  _Limit = other._Limit;
  _Chunks = std::move (other._Chunks);
  other._Chunks.clear ();
  _Root = std::exchange (other._Root, nullptr);
  return *this;
}

void xml_tree::Clear () noexcept {
  std::size_t kept = 0, total = 0;
  while (kept < _Chunks.size () && total + _Chunks[kept].size <= keptStorage)
    total += _Chunks[kept++].size;
  _Chunks.resize (kept);
  _Bytes = nullptr;
  _Used = _Room = _Next = _Size = 0;
  _Root = nullptr;
  if (kept == 0) return;
  _Bytes = _Chunks[0].bytes.get ();
  _Room = _Size = _Chunks[0].size;
  _Next = 1;
}

// Chunks double with the element, so a large one costs few allocations; one that is left over from
// an earlier element is taken again when the bytes fit in.
void xml_tree::NextChunk (std::size_t size) {
  if (size > _Limit - _Size) throw Str ("element is too large");
  if (_Next == _Chunks.size () || _Chunks[_Next].size < size ||
      _Chunks[_Next].size > _Limit - _Size) {
    Chunk chunk;
    chunk.size = std::clamp (_Size, smallestChunk, largestChunk);
    chunk.size = std::max (std::min (chunk.size, _Limit - _Size), size);
    chunk.bytes = std::make_unique_for_overwrite<std::byte[]> (chunk.size);
    _Chunks.insert (_Chunks.begin () + static_cast<std::ptrdiff_t> (_Next), std::move (chunk));
  }
  _Bytes = _Chunks[_Next].bytes.get ();
  _Room = _Chunks[_Next].size;
  _Size += _Room;
  _Used = 0;
  _Next++;
}

}  // namespace clxml
