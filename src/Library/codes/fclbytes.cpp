// Bytes of a feature code library file: the window of the reader, the block of the writer, texts.
// Uses file and the code page table.
#include "Library/codes/fclbytes.h"

#include <algorithm>
#include <cstring>

#include "Library/base/unistr.h"
#include "platform/file.h"

namespace clxml {
namespace {

// A jump costs one small read; a file whose records lie in order is read in large blocks.
constexpr uint32_t SmallWindow = 4096;
constexpr uint32_t LargeWindow = 262144;
constexpr int BlockSize = 262144;

constexpr char Blank = ' ';
constexpr char UnitSeparator = 31;

// The middle dot in the 8-bit form that the code page table gives it.
char LegacyMiddleDot () { return static_cast<char> (CodePageTable::Get ().ToLegacy (u'\u00B7')); }

}  // namespace

bool fclfile_Reader::Seek (uint32_t offset) noexcept {
  if (offset == FCLFILE_NoOffset) return false;
  _Position = offset;
  return true;
}

bool fclfile_Reader::Read (Buffer& buffer, int n) {
  const auto wanted = static_cast<uint64_t> (n);
  const uint64_t size = _File.GetSize ();
  if (wanted > size - _Taken || _Position > size || wanted > size - _Position) return false;
  buffer.Resize (n);
  for (uint64_t done = 0; done < wanted;) {
    if (_Position < _WindowStart || _Position >= _WindowStart + _WindowLength) {
      if (!FillWindow ()) return false;
    }
    const uint64_t at = _Position - _WindowStart;
    const uint64_t count = std::min (wanted - done, _WindowLength - at);
    std::memcpy (buffer.Data () + done, _Window.get () + at, count);
    done += count;
    _Position += count;
  }
  _Taken += wanted;
  return true;
}

bool fclfile_Reader::FillWindow () {
  const bool isInOrder = _WindowLength > 0 && _Position == _WindowStart + _WindowLength;
  _WindowWanted = isInOrder ? std::min (2 * _WindowWanted, LargeWindow) : SmallWindow;
  if (!_Window) _Window = std::make_unique_for_overwrite<uint8_t[]> (LargeWindow);
  _WindowStart = _Position;
  _WindowLength = 0;
  _File.Seek (static_cast<uint32_t> (_Position));
  return _File.Read (_Window.get (), _WindowWanted, &_WindowLength) && _WindowLength > 0;
}

bool fclfile_Writer::Write (const OutBuffer& record) {
  _Block.Append (record);
  return _Block.Length () < BlockSize ? _IsSound : Flush ();
}

bool fclfile_Writer::Flush () {
  if (_IsSound && _Block.Length () > 0)
    _IsSound = _File.Write (_Block.Data (), static_cast<uint32_t> (_Block.Length ()));
  _Block.Reset ();
  return _IsSound;
}

Str fclfile_GetText (const Buffer& buffer, int& offset, int n) {
  return LegacyToUtf8 (buffer.GetString (offset, n));
}

void fclfile_PutText (OutBuffer& out, const Str& text, int n) {
  out.PutString (Utf8ToLegacy (text), n, '\0');
}

Str fclfile_GetCode (const Buffer& buffer, int& offset, int n) {
  Str legacy = buffer.GetString (offset, n);
  const char dot = LegacyMiddleDot ();
  legacy.Replace (Blank, dot);
  legacy.Replace (UnitSeparator, dot);
  return LegacyToUtf8 (legacy);
}

void fclfile_PutCode (OutBuffer& out, const Str& code, int n) {
  Str legacy = Utf8ToLegacy (code);
  legacy.Replace (LegacyMiddleDot (), Blank);
  out.PutString (legacy, n, '\0');
}

Str fclfile_StoredText (const Str& text, int n) {
  return LegacyToUtf8 (Utf8ToLegacy (text).Left (n));
}

}  // namespace clxml
