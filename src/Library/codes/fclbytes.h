// Bytes of a feature code library file: reading at any offset within a bound, writing in order.
// A library file is not trusted, so that every read goes through fclfile_Reader, which limits the
// sum of all reads to the size of the file. Uses buffer, unistr and file.
#pragma once

#include <cstdint>
#include <memory>

#include "Library/base/buffer.h"
#include "str.h"

namespace clxml {

class file_Class;

/// The offset that means "no such record".
inline constexpr uint32_t FCLFILE_NoOffset = 0xFFFFFFFF;

/// Reads the records of an open file. The bytes of all reads together never exceed the file's size,
/// so that a chain that runs in circles ends and nothing larger than the file is allocated.
/// Reads pass through a window that grows while the records lie in order.
class fclfile_Reader {
 public:
  /// The file must be open and stay open.
  explicit fclfile_Reader (file_Class& file) noexcept : _File (file) {}
  fclfile_Reader (const fclfile_Reader&) = delete;
  fclfile_Reader& operator= (const fclfile_Reader&) = delete;

  /// Moves to an offset from the start of the file. False for FCLFILE_NoOffset, and only for that.
  bool Seek (uint32_t offset) noexcept;
  /// Fills the buffer with the next n bytes, n at least 1, and moves behind them. False, with
  /// undefined contents, when the sum of all reads would exceed the file's size, when the file has
  /// fewer bytes there, or when the system fails.
  bool Read (Buffer& buffer, int n);

 private:
  bool FillWindow ();

  file_Class& _File;
  uint64_t _Taken = 0;  // the sum of all reads
  uint64_t _Position = 0;
  std::unique_ptr<uint8_t[]> _Window;
  uint64_t _WindowStart = 0;
  uint32_t _WindowLength = 0;
  uint32_t _WindowWanted = 0;  // bytes that the next filling asks for
};

/// Writes records one after the other to an open file, in large blocks. After a failure every
/// further operation fails.
class fclfile_Writer {
 public:
  /// The file must be open for writing, at its start, and stay open.
  explicit fclfile_Writer (file_Class& file) : _File (file), _Block (ENDIAN_Little) {}
  fclfile_Writer (const fclfile_Writer&) = delete;
  fclfile_Writer& operator= (const fclfile_Writer&) = delete;

  /// Writes one record. False when a write failed.
  bool Write (const OutBuffer& record);
  /// Writes what is still in the block. False when a write failed.
  bool Flush ();

 private:
  file_Class& _File;
  OutBuffer _Block;
  bool _IsSound = true;
};

/// Reads a text of n bytes in the legacy set, up to its first zero byte, as UTF-8.
Str fclfile_GetText (const Buffer& buffer, int& offset, int n);
/// Appends a text as n bytes: translated to the legacy set, then cut to n bytes or padded with zero
/// bytes. A character that the legacy set does not have becomes "?".
void fclfile_PutText (OutBuffer& out, const Str& text, int n);

/// The same for a feature code. In the file its words are separated by blanks, in memory by the
/// middle dot U+00B7: reading turns each blank and each character 31 into the middle dot, writing
/// each middle dot into a blank.
Str fclfile_GetCode (const Buffer& buffer, int& offset, int n);
void fclfile_PutCode (OutBuffer& out, const Str& code, int n);

/// The text that reading returns after fclfile_PutText wrote it in n bytes.
Str fclfile_StoredText (const Str& text, int n);

}  // namespace clxml
