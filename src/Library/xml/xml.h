// The element tree of an exchange file.
// A top-level element with everything below it, as the parser delivers it: names and texts are
// views into the tree's own storage. Leans on str.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include "str.h"

namespace clxml {

/// An attribute of an element. Both texts are zero-terminated and live as long as the tree.
struct xml_attribute {
  std::string_view name{"", 0};
  std::string_view value{"", 0};
  xml_attribute* next = nullptr;
};

/// An element: its name, its own text (all stretches in one, trimmed of blanks), its attributes
/// and children in document order. Texts are zero-terminated and live as long as the tree.
struct xml_element {
  std::string_view name{"", 0};
  std::string_view value{"", 0};
  xml_element* nextSibling = nullptr;
  xml_element* firstChild = nullptr;
  xml_attribute* firstAttribute = nullptr;
  xml_element* lastChild = nullptr;
  xml_attribute* lastAttribute = nullptr;

  /// The first direct child of that name, or null.
  const xml_element* FindChild (std::string_view childName) const noexcept;
  /// The n-th direct child, counted from 1, or null.
  const xml_element* GetChild (unsigned n) const noexcept;
  /// The text of the first direct child of that name; empty without one.
  std::string_view ChildValue (std::string_view childName) const noexcept;
  /// The attribute of that name, or null.
  const xml_attribute* FindAttribute (std::string_view attributeName) const noexcept;
  /// The value of that attribute; empty without it.
  std::string_view AttributeValue (std::string_view attributeName) const noexcept;
  /// Follows names separated by "/" from child to child, each time the first of that name.
  const xml_element* FindPath (std::string_view path) const noexcept;
};

/// The memory that one top-level element may take, in bytes.
inline constexpr std::size_t xml_MaximumElementSize = std::size_t{512} << 20;

/// Owns one element with all below it, and the storage that goes round from one element to the
/// next: Clear () keeps it, so reading a file allocates only while elements grow.
class xml_tree {
 public:
  /// limit is the number of bytes that the element may take; one that needs more throws the Str
  /// "element is too large".
  explicit xml_tree (std::size_t limit = xml_MaximumElementSize) noexcept : _Limit (limit) {}
  xml_tree (const xml_tree&) = delete;
  xml_tree& operator= (const xml_tree&) = delete;
  /// What was moved from is empty and may be used again.
  xml_tree (xml_tree&& other) noexcept;
  xml_tree& operator= (xml_tree&& other) noexcept;

  const xml_element* Root () const noexcept { return _Root; }
  void SetRoot (xml_element* root) noexcept { _Root = root; }
  /// Drops the element; storage beyond a megabyte is given back.
  void Clear () noexcept;

  xml_element* NewElement (std::string_view name) {
    std::string_view kept = Keep (name);
    xml_element* element = new (Take (sizeof (xml_element), alignof (xml_element))) xml_element;
    element->name = kept;
    return element;
  }
  xml_attribute* NewAttribute (std::string_view name, std::string_view value) {
    std::string_view keptName = Keep (name);
    std::string_view keptValue = Keep (value);
    xml_attribute* attribute =
        new (Take (sizeof (xml_attribute), alignof (xml_attribute))) xml_attribute;
    attribute->name = keptName;
    attribute->value = keptValue;
    return attribute;
  }
  /// A zero-terminated copy in the tree's storage.
  std::string_view Keep (std::string_view text) {
    if (text.empty ()) return {"", 0};
    char* place = static_cast<char*> (Take (text.size () + 1, 1));
    std::memcpy (place, text.data (), text.size ());
    place[text.size ()] = 0;
    return {place, text.size ()};
  }

  /// Bytes of storage that the element takes now, and the most that it may take.
  std::size_t Size () const noexcept { return _Size; }
  std::size_t Limit () const noexcept { return _Limit; }

 private:
  struct Chunk {
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size = 0;
  };

  // A bump of a pointer as long as the chunk has room: no destructor ever runs, so everything in
  // the storage is plain data.
  void* Take (std::size_t size, std::size_t alignment) {
    std::size_t padding = (0 - _Used) & (alignment - 1);
    if (size + padding > _Room - _Used) [[unlikely]] {
      NextChunk (size);
      padding = 0;
    }
    std::byte* place = _Bytes + _Used + padding;
    _Used += padding + size;
    return place;
  }
  void NextChunk (std::size_t size);

  std::byte* _Bytes = nullptr;  // the chunk in use
  std::size_t _Used = 0;        // bytes of it given out
  std::size_t _Room = 0;        // bytes of it
  std::size_t _Next = 0;        // the chunk after it
  std::size_t _Size = 0;        // bytes of the chunks up to the one in use
  std::size_t _Limit;
  std::vector<Chunk> _Chunks;
  xml_element* _Root = nullptr;
};

}  // namespace clxml
