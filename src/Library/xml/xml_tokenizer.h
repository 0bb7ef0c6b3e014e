// The tokens of an exchange file, told one at a time from the bytes.
// The parser walks over the bytes of whole lines and asks here what stands at a place, what lies
// behind white space, and for the next lines. Leans on xmlparser for the source of the bytes.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "Library/xml/xmlparser.h"

namespace clxml {

/// The kinds of token.
enum xml_token_type : uint8_t {
  XML_LessThan = 0,
  XML_GreaterThan = 1,
  XML_Equals = 2,
  XML_Slash = 3,
  XML_ExclamationMark = 4,
  XML_QuestionMark = 5,
  XML_DoubleQuote = 6,
  XML_WhiteSpace = 7,  ///< any run of it, the end of a piece included; its text is one blank
  XML_Identifier = 8,  ///< the longest run of letters, digits, "_", "-" and "."
  XML_Literal = 9,     ///< one other byte, or what a reference stands for: one byte or none
  XML_EndOfFile = 10,
};

/// What a byte can begin or continue, as bits. A zero byte has none: it ends a stretch.
enum xml_byte_use : uint8_t {
  XML_InSpace = 1,       ///< line feed, carriage return, tab, blank
  XML_InIdentifier = 2,  ///< part of an identifier
  XML_InText = 4,        ///< in element text it stands for itself
  XML_InValue = 8,       ///< in an attribute value it stands for itself
  XML_InMarkup = 16,     ///< in skipped markup it means nothing
};

namespace xml_bytes {

constexpr bool IsIdentifier (int c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '.';
}

constexpr std::array<uint8_t, 256> Uses () noexcept {
  std::array<uint8_t, 256> uses{};
  for (int c = 1; c < 256; c++) {
    const bool isSpace = c == '\n' || c == '\r' || c == '\t' || c == ' ';
    int use = isSpace ? XML_InSpace : 0;
    if (IsIdentifier (c)) use |= XML_InIdentifier;
    if (!isSpace && c != '&' && c != '<') use |= XML_InText;
    if (!isSpace && c != '&' && c != '"') use |= XML_InValue;
    if (c != '&' && c != '>') use |= XML_InMarkup;
    uses[static_cast<std::size_t> (c)] = static_cast<uint8_t> (use);
  }
  return uses;
}

inline constexpr std::array<uint8_t, 256> uses = Uses ();

}  // namespace xml_bytes

/// True when the byte has one of the uses.
inline bool xml_Is (char c, uint8_t use) noexcept {
  return (xml_bytes::uses[static_cast<unsigned char> (c)] & use) != 0;
}
/// The first byte from p on that has none of the uses; a zero byte ends every run.
inline const char* xml_Run (const char* p, uint8_t use) noexcept {
  while (xml_Is (*p, use)) ++p;
  return p;
}

/// Holds the bytes of some whole pieces of a file, ended by a zero byte, and tells tokens from
/// them. A piece is a line, or 16,383 bytes of a longer one; its references are proved and zero
/// bytes refused before any token of it is told, and its end counts as white space. Nothing is
/// kept for a token: a place in the bytes is all there is, and it stays good until more is loaded.
class xml_tokenizer {
 public:
  xml_tokenizer (std::unique_ptr<xml_source> source, const xml_sizes& sizes);

  /// Loads the first piece; false unless it begins with "<?xml". Throws as Load does.
  bool Begin ();
  /// Where the parser stands.
  const char* At () const noexcept { return _At; }
  void MoveTo (const char* p) noexcept { _At = p; }

  /// The kind of the token at p.
  xml_token_type Type (const char* p) const noexcept;
  /// True when p is where the file ends.
  bool IsEnd (const char* p) const noexcept { return *p == 0 && _IsEnded; }
  /// Behind the white space at p, if there is some, in whatever piece that is.
  const char* SkipSpace (const char* p) {
    for (;;) {
      p = xml_Run (p, XML_InSpace);
      if (*p != 0 || _IsEnded) [[likely]]
        return p;
      p = Load ();
    }
  }
  /// The text of the token at p, which moves behind it. It stays good until the next call of
  /// something here.
  std::string_view Take (const char*& p);
  /// The byte that the reference at p stands for, 0 for none; p moves behind it.
  char TakeReference (const char*& p) const noexcept;
  /// Behind one white space token, if there is one, and a token of that kind, which is one byte;
  /// throws "unexpected …" when another stands there.
  const char* Expect (xml_token_type type, const char* p);
  /// Throws "unexpected " and the name of what stands at p.
  [[noreturn]] void Unexpected (const char* p) const;

  /// Makes the next pieces current and answers their begin, or the end of the file, which is a
  /// zero byte. Throws on a bad reference, a zero byte and a device error.
  const char* Load ();
  /// Bytes of the file up to the end of the line that holds the token at the parser's place.
  uint64_t Position () const noexcept;
  uint64_t FileSize () const noexcept { return _Source->Size (); }

 private:
  void Fill ();
  const char* EndOfPieces (const char* begin, const char* end);
  void Prove (const char* begin, const char* end) const;

  std::unique_ptr<xml_source> _Source;
  std::size_t _PieceLength;
  std::size_t _BlockLength;
  std::unique_ptr<char[]> _Block;
  const char* _At;  // the parser's place, in or at the end of the current pieces
  char* _End;       // their end, where a zero byte stands for the byte in _Saved
  char* _Filled;    // the end of what was read
  char _Saved = 0;
  bool _IsSourceEnded = false;
  bool _IsEnded = false;  // nothing is behind the current pieces
  bool _IsLongSaid = false;
  const char* _Ampersand;  // the next ones from the current pieces on, found once
  const char* _Zero;
  uint64_t _Offset = 0;  // of the block's first byte in the file
  char _Decoded = 0;     // the text of the reference told last
};

}  // namespace clxml
