// The reader of exchange files: one top-level element at a time.
// A file of any size goes through a line buffer; one element tree is in memory at a time. It reads
// the subset of XML that the exchange format uses and treats text as bytes. Leans on xml, text and
// platform/stream.
#pragma once

#include <cstdint>
#include <memory>

#include "Library/xml/xml.h"

namespace clxml {

class xml_tokenizer;

/// How many levels can be entered at once.
inline constexpr int maxParsingReturnLevels = 3;

/// Reads one file. Syntax errors are thrown as a Str. Used by one thread, good for one file.
class xml_parser {
 public:
  xml_parser ();
  ~xml_parser ();
  xml_parser (const xml_parser&) = delete;
  xml_parser& operator= (const xml_parser&) = delete;

  /// Opens the file (device path) and proves that its first line begins with "<?xml"; false when
  /// it cannot be opened, is no regular file or does not begin so. Throws when that line holds a
  /// bad reference.
  bool Open (const Str& path);
  bool IsOpen () const noexcept;
  /// Reads count start tags (1 to maxParsingReturnLevels) and stops in front of the first child of
  /// the last one. The element of the deepest level entered, with its name and attributes only;
  /// null when the file holds no element. It stays valid until its level is left.
  const xml_element* EnterLevel (int count);
  /// The next complete child of the current level, built into tree in place of what it held; null
  /// when there are no more.
  const xml_element* NextElement (xml_tree& tree);
  /// Consumes the end tags of count levels; the element of the level that is then current, or
  /// null outside the root.
  const xml_element* LeaveLevel (int count);
  /// Closes the file; true exactly if everything was consumed: nothing but white space, comments
  /// and processing instructions stood behind the root. Throws nothing.
  bool Close ();
  /// How far the line reads have come, 0 to 100.
  uint32_t PercentDone () const noexcept;

 private:
  struct Level;
  std::unique_ptr<xml_tokenizer> tokens;
  int32_t depth = -1;
  int32_t targetDepth = 0;
  bool levelMode = false;
  std::unique_ptr<xml_tree> levelElements[maxParsingReturnLevels];
};

}  // namespace clxml
