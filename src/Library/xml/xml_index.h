// Where the top-level elements of a small XML file stand.
// A list of the root's children with their tags and byte positions, read without building their
// trees; road files are looked into with it. Leans on str, and on platform/stream for the file.
#pragma once

#include <cstdint>
#include <memory>

#include "str.h"

namespace clxml {

/// The root of a file, or one of its children. Children can be counted, not entered.
class xml_file_index_node {
 public:
  xml_file_index_node () = default;
  xml_file_index_node (const xml_file_index_node&) = delete;
  xml_file_index_node& operator= (const xml_file_index_node&) = delete;
  ~xml_file_index_node ();

  Str name;                 ///< of the root its tag name; of a child its whole start tag's text
  Str filePath;             ///< the file, as it was asked for
  int32_t endOffset = 0;    ///< of a child: the byte position behind its end tag; 0 for the root
  int32_t startOffset = 0;  ///< of a child: the byte position of its "<"; 0 for the root
  std::unique_ptr<xml_file_index_node> firstChild;
  std::unique_ptr<xml_file_index_node> nextSibling;

  /// How many direct children have that name.
  int CountChildren (const Str& childName) const noexcept;
  /// Always null: an index has no elements to give.
  const xml_file_index_node* FindChild (const Str& childName) const noexcept;
  const xml_file_index_node* GetChild (const Str& childName, int n) const noexcept;
};

/// Reads the index of a file (device path). Null when it cannot be opened, has more than
/// 2,147,483,647 bytes, ends too early or has end tags that do not match; the reason goes to the
/// log. A child with attributes does not match its end tag, as the whole text of its start tag is
/// compared.
std::unique_ptr<xml_file_index_node> xml_ReadFileIndex (const Str& path);

}  // namespace clxml
