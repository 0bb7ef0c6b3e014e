// 16-bit text: decoding, encoding and the code page table.
// The rules take any bytes and any characters and lose nothing that they can carry. Leans on str.
#include "Library/base/unistr.h"

#include <algorithm>
#include <limits>

namespace clxml {
namespace {

// The character at the front of a text that is not empty, and the bytes it takes.
struct Decoded {
  char16_t character;
  std::size_t length;
};

Decoded DecodeFirst (std::string_view utf8) noexcept {
  const auto bits = [&] (std::size_t place, unsigned mask) {
    return static_cast<unsigned char> (utf8[place]) & mask;
  };
  const unsigned first = bits (0, 0xFF);
  if ((first & 0xE0) == 0xC0 && utf8.size () >= 2)
    return {static_cast<char16_t> (bits (0, 0x1F) << 6 | bits (1, 0x3F)), 2};
  if ((first & 0xF0) == 0xE0 && utf8.size () >= 3)
    return {static_cast<char16_t> (bits (0, 0x0F) << 12 | bits (1, 0x3F) << 6 | bits (2, 0x3F)), 3};
  return {static_cast<char16_t> (first), 1};
}

void Encode (Str& utf8, char16_t character) {
  const unsigned c = character;
  const auto put = [&] (unsigned byte) { utf8 += static_cast<char> (byte); };
  if (c <= 0x7F) {
    put (c);
  } else if (c >> 8 < 8) {
    put (0xC0 | c >> 6);
    put (0x80 | (c & 0x3F));
  } else {
    put (0xE0 | c >> 12);
    put (0x80 | (c >> 6 & 0x3F));
    put (0x80 | (c & 0x3F));
  }
}

std::u16string_view ViewOf (const char16_t* wide) noexcept {
  return wide != nullptr ? std::u16string_view (wide) : std::u16string_view ();
}

}  // namespace

CodePageTable::CodePageTable () noexcept {
  for (std::size_t i = 0; i < _Wide.size (); i++) {
    _Wide[i] = static_cast<char16_t> (i < 256 ? i : '?');
    _Legacy[i] = static_cast<uint16_t> (i < 256 ? i : '?');
  }
}

CodePageTable& CodePageTable::Get () noexcept {
  static CodePageTable table;
  return table;
}

void CodePageTable::Map (uint16_t code, char16_t character) noexcept {
  _Wide[code] = character;
  _Legacy[character] = code;
}

UniStr::UniStr () { _Text.reserve (DefaultBlock - 1); }

UniStr::UniStr (const char* utf8) : UniStr () {
  if (utf8 != nullptr) AppendUtf8 (utf8);
}

UniStr::UniStr (const char16_t* wide) : UniStr (wide, nullptr) {}

UniStr::UniStr (char16_t character) : UniStr () {
  if (character != 0) _Text += character;
}

UniStr::UniStr (const char16_t* first, const char16_t* second) {
  const std::u16string_view a = ViewOf (first);
  // Room for 30 characters more, and the terminator.
  constexpr std::size_t maximum = std::numeric_limits<int32_t>::max ();
  if (a.size () > maximum - DefaultBlock) throw Str ("Text of more than 2147483616 characters");
  _BlockSize = static_cast<int32_t> (a.size ()) + DefaultBlock;
  _Text.reserve (a.size () + DefaultBlock - 1);
  Append (a);
  Append (ViewOf (second));
}

UniStr UniStr::FromLegacy (const Str& legacy) {
  const CodePageTable& table = CodePageTable::Get ();
  const std::string_view text = legacy.View ();
  UniStr wide;
  wide.Reserve (text.size ());
  for (std::size_t i = 0; i < text.size (); i++) {
    unsigned code = static_cast<unsigned char> (text[i]);
    // A lead byte at the end has nothing to join and stands for itself.
    if (table.IsLead (static_cast<uint8_t> (code)) && i + 1 < text.size ())
      code = code << 8 | static_cast<unsigned char> (text[++i]);
    wide._Text += table.ToWide (static_cast<uint16_t> (code));
  }
  return wide;
}

void UniStr::Reserve (std::size_t length) {
  constexpr int64_t maximum = std::numeric_limits<int32_t>::max ();
  if (length >= static_cast<std::size_t> (maximum))
    throw Str ("Text of more than 2147483646 characters");
  int64_t block = _BlockSize;
  while (block <= static_cast<int64_t> (length)) block *= 4;
  _BlockSize = static_cast<int32_t> (std::min (block, maximum));
  _Text.reserve (static_cast<std::size_t> (_BlockSize) - 1);
}

void UniStr::Append (std::u16string_view wide) {
  Reserve (_Text.size () + wide.size ());
  _Text += wide;
}

void UniStr::AppendUtf8 (std::string_view utf8) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < utf8.size (); count++) at += DecodeFirst (utf8.substr (at)).length;
  Reserve (_Text.size () + count);
  while (!utf8.empty ()) {
    const Decoded decoded = DecodeFirst (utf8);
    _Text += decoded.character;
    utf8.remove_prefix (decoded.length);
  }
}

Str UniStr::ToUtf8 () const {
  Str utf8;
  for (const char16_t character : _Text) Encode (utf8, character);
  return utf8;
}

Str UniStr::ToLegacy () const {
  const CodePageTable& table = CodePageTable::Get ();
  Str legacy;
  for (const char16_t character : _Text) {
    const unsigned code = table.ToLegacy (character);
    if (code > 0xFF) legacy += static_cast<char> (code >> 8);
    legacy += static_cast<char> (code & 0xFF);
  }
  return legacy;
}

UniStr WideFromStr (const Str& utf8) {
  UniStr wide;
  wide.AppendUtf8 (utf8.View ());
  return wide;
}

Str LegacyToUtf8 (const Str& legacy) { return UniStr::FromLegacy (legacy).ToUtf8 (); }
Str Utf8ToLegacy (const Str& utf8) { return WideFromStr (utf8).ToLegacy (); }

int CharacterCount (const Str& utf8) {
  const std::string_view text = utf8.View ();
  int count = 0;
  for (std::size_t at = 0; at < text.size (); count++) at += DecodeFirst (text.substr (at)).length;
  return count;
}

}  // namespace clxml
