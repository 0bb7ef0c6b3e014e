// Checked reading of the bytes of a record's body.
// A body comes from a file that nobody vouches for: every read looks at what remains, the first one
// that does not fit is a fault, and from then on everything reads as nothing. Leans on buffer.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "Library/base/buffer.h"
#include "str.h"

namespace clxml {

/// Reads values behind each other from bytes that must outlive it.
class BodyReader {
 public:
  /// Bytes of a job file, least significant byte first.
  BodyReader (const uint8_t* bytes, uint32_t length) noexcept
      : _Begin (bytes),
        _At (bytes),
        _End (bytes + length),
        _Swapped (std::endian::native != std::endian::little) {}
  /// Asserts "data_Endian != ENDIAN_Undefined"; an offset outside the data is a fault.
  BodyReader (const Buffer& buffer, int offset) noexcept
      : _Begin (buffer.Data ()),
        _At (_Begin),
        _End (_Begin + buffer.Length ()),
        _Swapped ((buffer.Endian () == ENDIAN_Big) ==
                  (std::endian::native == std::endian::little)) {
    Assert (buffer.Endian () != ENDIAN_Undefined, "data_Endian != ENDIAN_Undefined");
    MoveTo (offset);
  }

  bool IsGood () const noexcept { return _Good; }
  /// Where the next value is read, counted from the buffer's begin.
  int Offset () const noexcept { return static_cast<int> (_At - _Begin); }
  void MoveTo (int offset) noexcept {
    if (offset < 0 || offset > _End - _Begin)
      Fail ();
    else
      _At = _Begin + offset;
  }
  /// Bytes that remain; 0 after a fault.
  uint32_t Remaining () const noexcept { return static_cast<uint32_t> (_End - _At); }
  /// Makes what was read a fault.
  void Fail () noexcept {
    _Good = false;
    _End = _At;
  }

  /// A number of its own width; as it was after a fault.
  template <class T>
  void Number (T& value) noexcept {
    static_assert (std::is_integral_v<T> || std::is_floating_point_v<T> || std::is_enum_v<T>);
    if (Remaining () < sizeof (T)) [[unlikely]]
      return Fail ();
    if (!_Swapped) [[likely]] {
      std::memcpy (&value, _At, sizeof (T));
    } else {
      uint8_t bytes[sizeof (T)];
      for (std::size_t i = 0; i < sizeof (T); i++) bytes[i] = _At[sizeof (T) - 1 - i];
      std::memcpy (&value, bytes, sizeof (T));
    }
    _At += sizeof (T);
  }
  /// Two numbers behind each other, looked at once.
  template <class A, class B>
  void Numbers (A& a, B& b) noexcept {
    if (Remaining () >= sizeof (A) + sizeof (B) && !_Swapped) [[likely]] {
      std::memcpy (&a, _At, sizeof (A));
      std::memcpy (&b, _At + sizeof (A), sizeof (B));
      _At += sizeof (A) + sizeof (B);
    } else {
      Number (a);
      Number (b);
    }
  }
  /// A text up to its zero byte; one without is a fault.
  void Text (Str& value) {
    if (_At != _End && *_At == 0) {
      _At++;
      if (!value.IsEmpty ()) value = std::string_view ();
      return;
    }
    FilledText (value);
  }
  /// A text of exactly width bytes, cut at its first zero byte.
  void PaddedText (Str& value, uint32_t width) {
    if (Remaining () < width) return Fail ();
    const void* zero = width == 0 ? nullptr : std::memchr (_At, 0, width);
    const auto length =
        zero ? static_cast<std::size_t> (static_cast<const uint8_t*> (zero) - _At) : width;
    value = std::string_view (reinterpret_cast<const char*> (_At), length);
    _At += width;
  }
  /// The place of length raw bytes, which are passed over; null after a fault.
  const uint8_t* Bytes (uint32_t length) noexcept {
    if (Remaining () < length) Fail ();
    if (!_Good) return nullptr;
    const uint8_t* place = _At;
    _At += length;
    return place;
  }
  /// True when that many entries of at least `least` bytes can follow; a fault otherwise. To be
  /// asked before anything is made for them.
  bool HasRoomFor (int64_t count, int64_t least) noexcept {
    if (count < 0 || count * least > Remaining ()) Fail ();
    return _Good;
  }

 private:
  void FilledText (Str& value);

  const uint8_t* _Begin;
  const uint8_t* _At;
  const uint8_t* _End;
  bool _Swapped;
  bool _Good = true;
};

}  // namespace clxml
