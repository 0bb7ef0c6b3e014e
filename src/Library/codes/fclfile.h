// The feature code library file.
// Uses fcllibrary.
#pragma once

#include <cstdint>

#include "Library/codes/fcllibrary.h"
#include "str.h"

namespace clxml {

class file_Class;

/// Bytes of a library's name and text.
inline constexpr int FCLFILE_LibraryNameSize = 25;
inline constexpr int FCLFILE_LibraryTextSize = 61;

/// A feature code library with its binary file. A new object is an empty library of the newest
/// format.
class falFormat_Library final : public featureCode_Library {
 public:
  falFormat_Library () = default;

  uint16_t HeaderValue = 0;  ///< meaning left to the host
  Str LibraryText;
  uint8_t HeaderOption = 0;    ///< meaning left to the host
  uint16_t LayoutVersion = 4;  ///< 4 in every readable file

  /// Also HeaderValue, LibraryText, LibraryName, HeaderOption and LayoutVersion; not equal to a
  /// library of another class.
  bool IsEqual (const featureCode_Library& other) const override;
  /// Reads a library file; the file is opened for reading only. After a failure there are no
  /// features; the fields of the header are those of the file once the header was read. The file is
  /// not trusted: nothing is read or allocated beyond its size, and every chain ends.
  featureCode_Status Load (const Str& path) override;
  /// Writes the library to a temporary file beside the path, which then takes its name, so that a
  /// file at the path is replaced by a whole library or not at all. FEATURECODE_CannotCreate when
  /// no file can be created there: no such folder, a directory, or a file without a write bit.
  /// FEATURECODE_WriteFailed also, with nothing written, for more than FCLFILE_MaximumCount
  /// features, attributes of one feature or entries of a menu, and when an offset would not fit
  /// 32 bits.
  featureCode_Status Save (const Str& path) const override;
  uint16_t GetHeaderValue () const override { return HeaderValue; }
  Str GetLibraryText () const override { return LibraryText; }

  virtual void SetHeaderValue (uint16_t value) { HeaderValue = value; }
  virtual void SetLibraryText (const Str& text) { LibraryText = text; }

 private:
  featureCode_Status Read (file_Class& file);
  bool Write (file_Class& file) const;
};

}  // namespace clxml
