// A file read from front to back, of any size.
// What the exchange reader stands on: 64-bit sizes and positions, large reads, nothing written.
// Leans on str and on the operating system behind this folder.
#pragma once

#include <cstddef>
#include <cstdint>

#include "str.h"

namespace clxml {

/// An open file for sequential reading. Neither copied nor moved; closes itself.
class file_Stream {
 public:
  file_Stream () = default;
  file_Stream (const file_Stream&) = delete;
  file_Stream& operator= (const file_Stream&) = delete;
  ~file_Stream () { Close (); }

  /// Opens an existing regular file by its device path; false, with nothing reported, when it
  /// does not exist, may not be read or is no regular file.
  bool Open (const Str& path);
  void Close ();
  bool IsOpen () const noexcept { return _Handle >= 0; }
  /// The size in bytes when it was opened.
  uint64_t Size () const noexcept { return _Size; }
  /// Reads up to n bytes; the number read, 0 at the end of the file, -1 on a device error, which
  /// is reported to Environment.
  int64_t Read (void* destination, std::size_t n);

 private:
  int64_t _Handle = -1;
  uint64_t _Size = 0;
  uint64_t _Position = 0;
  Str _Path;
};

}  // namespace clxml
