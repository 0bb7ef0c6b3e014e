// The header of job, antenna and style files.
// 48 bytes that say what a file is and of which format. Leans on file and buffer.
#pragma once

#include <cstdint>

#include "str.h"

namespace clxml {

class file_Class;

/// Bytes of a file header on disk.
inline constexpr int FILEHDR_SizeOnDisk = 48;

/// The kinds of file that have this header.
enum filehdr_FileType : int32_t {
  FILEHDR_Journal = 1,
  FILEHDR_Antenna = 2,
  FILEHDR_Style = 3,
};

class FileHeader {
 public:
  /// A header of this system's format stamp; any other type than 1 to 3 asserts "Bad file type"
  /// and leaves the name empty.
  explicit FileHeader (int32_t fileType);

  Str Name;  ///< at most 43 bytes reach the file
  int32_t FileType;
  int32_t Reserved = 0;
  int32_t MajorVersion = 12;
  int32_t MinorVersion = 10;
  int32_t Revision = 3;

  /// Reads the 48 bytes at offset 0 of an open file, which then stands behind them. A file that
  /// does not start with "Norvath" has the older form: an empty name and the five numbers at
  /// offset 0. False, and nothing changed, when 48 bytes could not be read.
  bool Read (file_Class& file);
  /// Writes the 48 bytes at offset 0 of an open file.
  bool Write (file_Class& file) const;
  /// "12.10.3"
  Str Stamp () const;

  /// By file type and version bytes.
  friend bool operator== (const FileHeader& a, const FileHeader& b) {
    return a.FileType == b.FileType && a.MajorVersion == b.MajorVersion &&
           a.MinorVersion == b.MinorVersion && a.Revision == b.Revision;
  }
};

}  // namespace clxml
