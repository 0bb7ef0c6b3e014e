// The reader of exchange files: one top-level element at a time.
// A file of any size goes through a line buffer; one element tree is in memory at a time. It reads
// the subset of XML that the exchange format uses and treats text as bytes. Leans on xml, text and
// platform/stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "Library/xml/xml.h"

namespace clxml {

/// How many levels can be entered at once.
inline constexpr int maxParsingReturnLevels = 3;
/// How deep elements may be nested, the root included.
inline constexpr int xml_MaximumNesting = 256;
/// The log line that tells, once for a file, that it has lines longer than a piece.
inline constexpr const char* xml_LongLines =
    "XML reader: lines longer than 16383 bytes are read in pieces, with white space between them";

/// Where the bytes of an exchange file come from, front to back.
class xml_source {
 public:
  virtual ~xml_source () = default;
  /// The size in bytes, for percentages only.
  virtual uint64_t Size () const noexcept = 0;
  /// Reads up to n bytes; the number read, 0 at the end, -1 when the device fails.
  virtual int64_t Read (void* destination, std::size_t n) = 0;
};

/// A text in memory, which must outlive its use.
class xml_memory final : public xml_source {
 public:
  explicit xml_memory (std::string_view text) noexcept : all (text.size ()), rest (text) {}
  uint64_t Size () const noexcept override { return all; }
  int64_t Read (void* destination, std::size_t n) override;

 private:
  uint64_t all;
  std::string_view rest;
};

/// Lengths in bytes; tests make them small.
struct xml_sizes {
  std::size_t piece = 16383;   ///< the most that is taken from a line at once
  std::size_t block = 262144;  ///< the most that is read at once; at least a piece and a byte
};

/// Reads one file. Syntax errors are thrown as a Str; what was thrown through is good for nothing
/// but Close. Used by one thread, good for one file.
class xml_parser {
 public:
  explicit xml_parser (xml_sizes sizes = {}) noexcept;
  ~xml_parser ();
  xml_parser (const xml_parser&) = delete;
  xml_parser& operator= (const xml_parser&) = delete;

  /// Opens the file (device path) and proves that its first line begins with "<?xml"; false when
  /// it cannot be opened, is no regular file or does not begin so. Throws when that line holds a
  /// bad reference or a zero byte.
  bool Open (const Str& path);
  /// The same on bytes from elsewhere.
  bool Open (std::unique_ptr<xml_source> source);
  bool IsOpen () const noexcept { return reading != nullptr; }
  /// Reads count start tags (1 to maxParsingReturnLevels, asserts "count > 0" and "count <=
  /// maxParsingReturnLevels") and stops in front of the first child of the last one; text in front
  /// of a child is dropped. The element of the deepest level entered, with its name and attributes
  /// only, and its text when it has no children at all; null when the file holds no element or
  /// the level has no more children. It stays valid until its level is left; a level counts as
  /// entered, and is to be left, whatever stands there.
  const xml_element* EnterLevel (int count);
  /// The next complete child of the current level, built into tree in place of what it held; null
  /// when there are no more, however often it is asked. Without an entered level the root.
  const xml_element* NextElement (xml_tree& tree);
  /// Consumes the end tags of count levels, and what is left in front of them; the element of the
  /// level that is then current, or null outside the root.
  const xml_element* LeaveLevel (int count);
  /// Closes the file; true exactly if everything was consumed: nothing but white space, comments
  /// and processing instructions stood behind the root. Throws nothing.
  bool Close () noexcept;
  /// How far the line reads have come, 0 to 100; 0 when nothing is open or the file is empty.
  uint32_t PercentDone () const noexcept;

 private:
  struct Reading;
  void Begin ();
  xml_element* EnterOne (xml_tree& tree);
  bool IsLevelEnd ();

  xml_sizes sizes;
  std::unique_ptr<Reading> reading;
  int32_t depth = -1;       // of the element being read; 0 in the root, -1 outside it
  int32_t targetDepth = 0;  // how many levels are entered
  std::unique_ptr<xml_tree> levelElements[maxParsingReturnLevels];
};

}  // namespace clxml
