// The tokens of an exchange file, told one at a time from the bytes.
// Reads the file in blocks, cuts them into pieces at line feeds, proves references. Leans on text.
//
// The format, as far as tokens go. A file is read in pieces: a line with its line feed, or 16,383
// bytes of a line that is longer. A piece is, from its front: runs of line feed, carriage return,
// tab and blank (one white space token); "&" up to the next ";" of the same piece (a literal);
// runs of letters, digits, "_", "-", "." (an identifier); < > = / ! ? " each by itself; any other
// byte (a literal). Behind each piece stands white space; neighbouring white space is one token,
// across pieces too. References: &amp; &lt; &gt; &apos; &quot;, decimal &#…; read as atoi does,
// hexadecimal &#x…;. A number keeps its low eight bits and stands for that byte, zero for none.
//
// Several lines are made current together as long as nothing in them can be refused; a line with
// a reference or a zero byte comes alone, so that it is refused exactly when it is reached.
#include "Library/xml/xml_tokenizer.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "Kernel/text.h"
#include "str.h"

namespace clxml {

namespace {

constexpr const char* tokenNames[] = {
    "<", ">", "=", "/", "!", "?", "\"", "white space", "an identifier", "a literal", "end-of-file"};

const char* Find (const char* begin, const char* end, char c) noexcept {
  const void* found = std::memchr (begin, c, static_cast<std::size_t> (end - begin));
  return found ? static_cast<const char*> (found) : end;
}

// Behind the last line feed, or null without one. Looks at the last bytes first, in strides that
// memchr takes at once, so that lines of the usual length cost a stride or two.
const char* EndOfLastLine (const char* begin, const char* end) noexcept {
  constexpr std::ptrdiff_t stride = 256;
  while (end > begin) {
    const char* from = end - begin > stride ? end - stride : begin;
    if (Find (from, end, '\n') != end) {
      while (end[-1] != '\n') --end;
      return end;
    }
    end = from;
  }
  return nullptr;
}

std::string_view View (const char* begin, const char* end) noexcept {
  return {begin, static_cast<std::size_t> (end - begin)};
}

[[noreturn]] void Refuse (const char* why, std::string_view text) { throw Str (why) + Str (text); }

// The byte that a whole reference, "&" to ";", stands for; 0 for none, -1 for a name that is none
// of the five, -2 for a bad hexadecimal digit.
int Decode (std::string_view reference) noexcept {
  std::string_view body = reference.substr (1, reference.size () - 2);
  if (body.empty () || body[0] != '#') {
    if (body == "amp") return '&';
    if (body == "lt") return '<';
    if (body == "gt") return '>';
    if (body == "apos") return '\'';
    if (body == "quot") return '"';
    return -1;
  }
  body.remove_prefix (1);
  if (!body.empty () && (body[0] == 'x' || body[0] == 'X')) {
    unsigned value = 0;
    for (char c : body.substr (1)) {
      const int digit = text_HexDigit (c);
      if (digit < 0) return -2;
      value = value << 4 | static_cast<unsigned> (digit);
    }
    return static_cast<int> (value & 0xFF);
  }
  return text_ToInt (body) & 0xFF;
}

}  // namespace

xml_tokenizer::xml_tokenizer (std::unique_ptr<xml_source> source, const xml_sizes& sizes)
    : _Source (std::move (source)),
      _PieceLength (std::max<std::size_t> (sizes.piece, 1)),
      _BlockLength (std::max (sizes.block, _PieceLength + 1)),
      _Block (std::make_unique_for_overwrite<char[]> (_BlockLength + 1)),
      _At (_Block.get ()),
      _End (_Block.get ()),
      _Filled (_Block.get ()),
      _Ampersand (_Block.get ()),
      _Zero (_Block.get ()) {
  *_End = 0;
}

bool xml_tokenizer::Begin () {
  Fill ();
  _Saved = *_End;
  constexpr std::string_view declaration = "<?xml";
  const std::size_t piece =
      std::min<std::size_t> (static_cast<std::size_t> (_Filled - _Block.get ()), _PieceLength);
  if (!std::string_view (_Block.get (), piece).starts_with (declaration)) return false;
  Load ();
  return true;
}

// Moves what is left to the front and reads until the block is full or the file is exhausted.
void xml_tokenizer::Fill () {
  char* block = _Block.get ();
  const std::size_t rest = static_cast<std::size_t> (_Filled - _End);
  std::memmove (block, _End, rest);
  _Offset += static_cast<uint64_t> (_End - block);
  _At = _End = block;
  _Filled = block + rest;
  while (!_IsSourceEnded && _Filled < block + _BlockLength) {
    const int64_t n =
        _Source->Read (_Filled, static_cast<std::size_t> (block + _BlockLength - _Filled));
    if (n < 0) throw Str ("device error while reading the file");
    _IsSourceEnded = n == 0;
    _Filled += n;
  }
  _Ampersand = Find (block, _Filled, '&');
  _Zero = Find (block, _Filled, 0);
}

const char* xml_tokenizer::Load () {
  *_End = _Saved;
  _At = _End;
  // One byte more than a piece tells whether a full one is the end of its line.
  if (static_cast<std::size_t> (_Filled - _End) <= _PieceLength && !_IsSourceEnded) Fill ();
  const char* begin = _End;
  const std::size_t available = static_cast<std::size_t> (_Filled - begin);
  const char* end = begin;
  if (available == 0)
    _IsEnded = true;
  else
    end = EndOfPieces (begin, begin + std::min (available, _PieceLength));
  _End = _Block.get () + (end - _Block.get ());
  _Saved = *_End;
  *_End = 0;
  return begin;
}

// The end of the pieces that become current together, out of one window of a piece's length.
const char* xml_tokenizer::EndOfPieces (const char* begin, const char* window) {
  if (_Ampersand < begin) _Ampersand = Find (begin, _Filled, '&');
  if (_Zero < begin) _Zero = Find (begin, _Filled, 0);
  const char* critical = std::min (_Ampersand, _Zero);
  if (const char* end = EndOfLastLine (begin, std::min (window, critical))) return end;
  const char* end = Find (begin, window, '\n');
  if (end != window) {
    ++end;
  } else if (window != _Filled && !_IsLongSaid) {
    _IsLongSaid = true;
    Environment::Get ()->LogMessage (xml_LongLines);
  }
  if (critical < end) Prove (begin, end);
  return end;
}

// Proves one piece: no zero byte in it, and each reference one that can be read.
void xml_tokenizer::Prove (const char* begin, const char* end) const {
  if (_Zero < end) throw Str ("unexpected zero byte");
  for (const char* p = begin; (p = Find (p, end, '&')) != end;) {
    const char* semicolon = Find (p, end, ';');
    if (semicolon == end) Refuse ("ampersand sequence needs semicolon: ", View (p, end));
    const std::string_view reference = View (p, semicolon + 1);
    if (reference == "&#;") Assert (reference.size () > 3, "reference.Length() > 3");
    const int value = Decode (reference);
    if (value == -1) Refuse ("unrecognised ampersand sequence: ", reference);
    if (value == -2) Refuse ("badly formed hex reference: ", reference);
    p = semicolon + 1;
  }
}

xml_token_type xml_tokenizer::Type (const char* p) const noexcept {
  switch (*p) {
    case '<':
      return XML_LessThan;
    case '>':
      return XML_GreaterThan;
    case '=':
      return XML_Equals;
    case '/':
      return XML_Slash;
    case '!':
      return XML_ExclamationMark;
    case '?':
      return XML_QuestionMark;
    case '"':
      return XML_DoubleQuote;
    case 0:
      return _IsEnded ? XML_EndOfFile : XML_WhiteSpace;
    default:
      break;
  }
  if (xml_Is (*p, XML_InSpace)) return XML_WhiteSpace;
  return xml_Is (*p, XML_InIdentifier) ? XML_Identifier : XML_Literal;
}

std::string_view xml_tokenizer::Take (const char*& p) {
  const char* begin = p;
  switch (Type (p)) {
    case XML_EndOfFile:
      return {};
    case XML_WhiteSpace:
      p = SkipSpace (p);
      return " ";
    case XML_Identifier:
      p = xml_Run (p, XML_InIdentifier);
      return View (begin, p);
    default:
      break;
  }
  if (*p != '&') return {p++, 1};
  _Decoded = TakeReference (p);
  return {&_Decoded, _Decoded != 0 ? std::size_t{1} : 0};
}

char xml_tokenizer::TakeReference (const char*& p) const noexcept {
  const char* begin = p;
  p = Find (p, _End, ';') + 1;
  return static_cast<char> (Decode (View (begin, p)));
}

const char* xml_tokenizer::Expect (xml_token_type type, const char* p) {
  p = SkipSpace (p);
  if (Type (p) != type) Unexpected (p);
  return p + 1;
}

void xml_tokenizer::Unexpected (const char* p) const {
  throw Str ("unexpected ", tokenNames[Type (p)]);
}

uint64_t xml_tokenizer::Position () const noexcept {
  const char* end = Find (_At, _End, '\n');
  if (end != _End) ++end;
  return _Offset + static_cast<uint64_t> (end - _Block.get ());
}

}  // namespace clxml
