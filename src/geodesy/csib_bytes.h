// Bytes of a coordinate system block and of grid files, read and written in order.
// The reader believes nothing: what does not fit makes it fail for good, and a failed reader gives
// zeros and empty texts, so that one test at the end of a section suffices before a value is used.
// Leans on csib_status.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "geodesy/csib_status.h"

namespace clxml {

/// The bytes of a number turned round.
template <class T>
T csib_Turned (T value) noexcept {
  static_assert (std::is_arithmetic_v<T>);
  unsigned char bytes[sizeof (T)];
  std::memcpy (bytes, &value, sizeof (T));
  for (std::size_t i = 0; i < sizeof (T) / 2; i++) std::swap (bytes[i], bytes[sizeof (T) - 1 - i]);
  std::memcpy (&value, bytes, sizeof (T));
  return value;
}

/// A cursor over bytes that it does not own.
class csib_Bytes {
 public:
  explicit csib_Bytes (std::span<const uint8_t> bytes, double version = 10.3) noexcept
      : _bytes (bytes), _version (version) {}

  /// Numbers and 16-bit texts have the other byte order.
  bool IsSwapped () const noexcept { return _swapped; }
  void SetSwapped (bool swapped) noexcept { _swapped = swapped; }
  /// The version of the block whose bytes these are: it tells which fields there are.
  double Version () const noexcept { return _version; }
  void SetVersion (double version) noexcept { _version = version; }

  /// False as soon as something was asked for that the bytes do not hold; the status keeps the
  /// first reason.
  bool IsGood () const noexcept { return _status == CSIB_Ok; }
  csib_Status Status () const noexcept { return _status; }
  void Fail (csib_Status status = CSIB_HeaderUnreadable) noexcept {
    if (IsGood ()) _status = status;
  }
  std::size_t Position () const noexcept { return _position; }
  std::size_t Left () const noexcept { return _bytes.size () - _position; }

  /// A number of any arithmetic type, in the order of the bytes; 0 when they end before.
  template <class T>
  T Number () noexcept {
    T value{};
    if (!Has (sizeof (T))) return value;
    std::memcpy (&value, _bytes.data () + _position, sizeof (T));
    _position += sizeof (T);
    return _swapped ? csib_Turned (value) : value;
  }
  uint8_t Byte () noexcept { return Number<uint8_t> (); }
  double Double () noexcept { return Number<double> (); }
  /// A double that is a number or null (1e308); CSIB_WrongFormat for an infinity or NaN, which no
  /// calculation is to meet, and 0.0.
  double Finite () noexcept;
  /// A double that is a number; null is refused too.
  double Known () noexcept;
  /// Up to the zero byte, which is passed; fails when there is none.
  std::string_view Text () noexcept;
  /// Up to the zero unit, which is passed; fails when there is none.
  std::u16string Text16 ();
  /// The next n bytes; empty, and failed, when there are fewer.
  std::span<const uint8_t> Take (std::size_t n) noexcept;
  void Skip (std::size_t n) noexcept { Take (n); }

 private:
  bool Has (std::size_t n) noexcept {
    if (n > Left ()) Fail ();
    return IsGood ();
  }

  std::span<const uint8_t> _bytes;
  std::size_t _position = 0;
  double _version;
  bool _swapped = false;
  csib_Status _status = CSIB_Ok;
};

/// A number that can be calculated with: neither NaN nor infinite, nor null or of its magnitude.
inline bool csib_IsKnown (double value) noexcept { return value > -1e300 && value < 1e300; }

/// A cursor that writes over bytes in the order of this machine; what does not fit fails it and is
/// not written. Without bytes it only counts.
class csib_Writer {
 public:
  explicit csib_Writer (std::span<uint8_t> bytes) noexcept : _bytes (bytes) {}
  /// Writes nowhere: Position tells how much it would have been.
  csib_Writer () noexcept : _counts (true) {}

  bool Counts () const noexcept { return _counts; }
  bool IsGood () const noexcept { return _good; }
  std::size_t Position () const noexcept { return _position; }

  template <class T>
  void Number (T value) noexcept {
    static_assert (std::is_arithmetic_v<T>);
    Put (&value, sizeof (T));
  }
  void Byte (uint8_t value) noexcept { Number (value); }
  void Double (double value) noexcept { Number (value); }
  /// With its terminating zero byte.
  void Text (std::string_view text) noexcept;
  /// With its terminating zero unit.
  void Text16 (std::u16string_view text) noexcept;
  void Bytes (std::span<const uint8_t> bytes) noexcept { Put (bytes.data (), bytes.size ()); }
  /// Passes n bytes and leaves them as they are.
  void Skip (std::size_t n) noexcept;

 private:
  bool Fits (std::size_t n) noexcept;
  void Put (const void* source, std::size_t n) noexcept;

  std::span<uint8_t> _bytes;
  std::size_t _position = 0;
  bool _good = true;
  bool _counts = false;
};

}  // namespace clxml
