// 16-bit text at the borders where wide characters are wanted, and legacy 8-bit text.
// Decodes and encodes UTF-8 by rules that never fail, and maps legacy text through one table. Leans
// on str.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "str.h"

namespace clxml {

/// The map between legacy 8-bit text and 16-bit characters. As made, it is the identity for codes 0
/// to 255, no byte leads a pair, and everything from 256 up is 63, the question mark. One table
/// serves the process; a host that changes it does so before its first use.
/// The table reads no files: whoever loads a code page enters it here, so that this room needs
/// nothing of the file store.
class CodePageTable {
 public:
  CodePageTable () noexcept;

  /// The process-wide table.
  static CodePageTable& Get () noexcept;

  bool IsLead (uint8_t byte) const noexcept { return _Lead[byte]; }
  char16_t ToWide (uint16_t code) const noexcept { return _Wide[code]; }
  /// A code above 255 is a lead byte times 256 plus the byte behind it.
  uint16_t ToLegacy (char16_t character) const noexcept { return _Legacy[character]; }

  void SetLead (uint8_t byte, bool leads) noexcept { _Lead[byte] = leads; }
  /// Maps a code and a character to each other.
  void Map (uint16_t code, char16_t character) noexcept;

 private:
  std::array<bool, 256> _Lead{};
  std::array<char16_t, 65536> _Wide;
  std::array<uint16_t, 65536> _Legacy;
};

/// A zero-terminated string of 16-bit characters. Decoding takes the length of a UTF-8 sequence
/// from its first byte, 1 to 3, builds the character from the payload bits without a test of the
/// bytes that follow, and makes a byte that begins no such sequence, or one that the text's end
/// cuts off, the character of the same value. Surrogates are characters like any other.
class UniStr {
 public:
  UniStr ();
  /// From UTF-8; null gives the empty string.
  explicit UniStr (const char* utf8);
  /// From wide text; null gives the empty string.
  explicit UniStr (const char16_t* wide);
  explicit UniStr (char16_t character);
  /// Two wide texts behind each other; either may be null.
  UniStr (const char16_t* first, const char16_t* second);
  /// From legacy text, through the process-wide table.
  static UniStr FromLegacy (const Str& legacy);

  int Length () const noexcept { return static_cast<int> (_Text.size ()); }
  const char16_t* Data () const noexcept { return _Text.c_str (); }
  /// Characters allocated, terminator included.
  int BlockSize () const noexcept { return _BlockSize; }

  /// The same text in UTF-8, a character in 1 to 3 bytes; a character 0 is dropped.
  Str ToUtf8 () const;
  /// The same text through the process-wide table.
  Str ToLegacy () const;

 private:
  void Append (std::u16string_view wide);
  void AppendUtf8 (std::string_view utf8);
  void Reserve (std::size_t length);

  static constexpr int DefaultBlock = 31;
  std::u16string _Text;
  int32_t _BlockSize = DefaultBlock;

  friend UniStr WideFromStr (const Str& utf8);
};

UniStr WideFromStr (const Str& utf8);
Str LegacyToUtf8 (const Str& legacy);
Str Utf8ToLegacy (const Str& utf8);
/// The number of 16-bit characters that the UTF-8 text decodes to.
int CharacterCount (const Str& utf8);

}  // namespace clxml
