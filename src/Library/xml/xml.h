// The element tree of an exchange file.
// A top-level element with everything below it, as the parser delivers it: names and texts are
// views into the tree's own storage. Leans on str.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "str.h"

namespace clxml {

/// An attribute of an element. Both texts are zero-terminated and live as long as the tree.
struct xml_attribute {
  std::string_view name;
  std::string_view value;
  xml_attribute* next = nullptr;
};

/// An element: its name, its own text (all stretches in one, trimmed of blanks), its attributes
/// and children in document order. Texts are zero-terminated and live as long as the tree.
struct xml_element {
  std::string_view name;
  std::string_view value;
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

/// Owns one element with all below it, and the storage that goes round from one element to the
/// next: Clear () keeps it, so reading a file allocates only while elements grow.
class xml_tree {
 public:
  xml_tree () = default;
  xml_tree (const xml_tree&) = delete;
  xml_tree& operator= (const xml_tree&) = delete;
  xml_tree (xml_tree&&) noexcept = default;
  xml_tree& operator= (xml_tree&&) noexcept = default;

  const xml_element* Root () const noexcept { return _Root; }
  void SetRoot (xml_element* root) noexcept { _Root = root; }
  /// Drops the element; storage beyond a megabyte is given back.
  void Clear () noexcept;

  xml_element* NewElement (std::string_view name);
  xml_attribute* NewAttribute (std::string_view name, std::string_view value);
  /// A zero-terminated copy in the tree's storage.
  std::string_view Keep (std::string_view text);

 private:
  void* Take (std::size_t size, std::size_t alignment);

  struct Chunk {
    std::unique_ptr<std::byte[]> bytes;
    std::size_t size = 0;
  };
  std::vector<Chunk> _Chunks;
  std::size_t _Current = 0;  // the chunk in use
  std::size_t _Used = 0;     // bytes of it given out
  std::size_t _Total = 0;    // bytes of all chunks given out since Clear
  xml_element* _Root = nullptr;
};

}  // namespace clxml
