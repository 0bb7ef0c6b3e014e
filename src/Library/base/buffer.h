// Bytes of binary files, read by offset and written at the end.
// Fixes byte order, width of each number and the two stored forms of a string for every binary
// file of the system. Leans on str.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "str.h"

namespace clxml {

/// Byte order of a buffer, chosen at construction.
enum ENDIAN : int32_t {
  ENDIAN_Little = 0,     ///< least significant byte first; all job files
  ENDIAN_Big = 1,        ///< most significant byte first
  ENDIAN_Undefined = 2,  ///< none chosen; no typed access is allowed
};

/// The order of this machine, whose values need no turning.
inline constexpr ENDIAN ENDIAN_Native =
    std::endian::native == std::endian::big ? ENDIAN_Big : ENDIAN_Little;
/// A value of width bytes from the machine's order to another or back; asserts
/// "data_Endian != ENDIAN_Undefined".
uint64_t buffer_Turned (uint64_t value, int width, ENDIAN data_Endian);

/// A filled region of bytes that is read by offset. Numbers assert that a byte order was chosen
/// ("data_Endian != ENDIAN_Undefined") and go on as ENDIAN_Little; texts and raw bytes have none.
/// Assignment takes the whole value, byte order included. Every read asserts that it stays within
/// the data; one that does not leaves the offset where it was and gives 0 or the empty string, and
/// touches nothing outside the region.
class Buffer {
 public:
  explicit Buffer (ENDIAN endian) noexcept : data_Endian (endian) {}
  /// length bytes, undefined.
  Buffer (int length, ENDIAN endian);
  /// A copy of length bytes.
  Buffer (int length, ENDIAN endian, const void* source);
  Buffer (const Buffer& other);
  /// Leaves an empty buffer behind.
  Buffer (Buffer&& other) noexcept;
  Buffer& operator= (const Buffer& other);
  Buffer& operator= (Buffer&& other) noexcept;

  /// Drops the contents and holds n bytes, undefined, with the cursor at 0; storage that is large
  /// enough is kept. Asserts "n > 0", and is empty otherwise.
  void Resize (int n);
  /// Cuts the data to n bytes if there are more; the storage stays.
  void Limit (int n) noexcept;
  uint8_t* Data () noexcept { return _Buffer.get (); }
  const uint8_t* Data () const noexcept { return _Buffer.get (); }
  int Length () const noexcept { return _DataLength; }
  ENDIAN Endian () const noexcept { return data_Endian; }
  bool AtEnd (int offset) const noexcept { return offset >= _DataLength; }

  uint8_t GetUInt8 (int& offset) const {
    return Get<uint8_t> (offset, "(Offset + 1) <= _DataLength");
  }
  bool GetBool (int& offset) const { return GetUInt8 (offset) != 0; }
  uint16_t GetUInt16 (int& offset) const {
    return Get<uint16_t> (offset, "(Offset + 2) <= _DataLength");
  }
  int16_t GetInt16 (int& offset) const { return static_cast<int16_t> (GetUInt16 (offset)); }
  /// The top byte of the result is 0.
  uint32_t GetUInt24 (int& offset) const;
  uint32_t GetUInt32 (int& offset) const {
    return Get<uint32_t> (offset, "(Offset + 4) <= _DataLength");
  }
  int32_t GetInt32 (int& offset) const { return static_cast<int32_t> (GetUInt32 (offset)); }
  int64_t GetInt64 (int& offset) const {
    return static_cast<int64_t> (Get<uint64_t> (offset, "(Offset + 8) <= _DataLength"));
  }
  float GetFloat (int& offset) const {
    return std::bit_cast<float> (
        Get<uint32_t> (offset, "(Offset + (int) sizeof (float)) <= _DataLength"));
  }
  double GetDouble (int& offset) const {
    return std::bit_cast<double> (
        Get<uint64_t> (offset, "(Offset + (int) sizeof (double)) <= _DataLength"));
  }
  /// Up to the first zero byte; the offset moves past it. Without a zero byte asserts
  /// "Offset <= _DataLength", takes what there is and moves the offset to the end.
  Str GetString (int& offset) const;
  /// The n bytes at the offset, cut at the first zero byte; the offset moves by n. Asserts
  /// "Offset + n <= _DataLength".
  Str GetString (int& offset, int n) const;
  /// Copies n bytes; a null destination only moves the offset. Asserts
  /// "Offset + n <= _DataLength".
  void GetBytes (void* destination, int& offset, int n) const;

  // The stream forms read at the cursor, which every construction, resize or assignment sets to 0.
  uint8_t GetUInt8 () { return GetUInt8 (_ReadPosition); }
  bool GetBool () { return GetBool (_ReadPosition); }
  uint16_t GetUInt16 () { return GetUInt16 (_ReadPosition); }
  int16_t GetInt16 () { return GetInt16 (_ReadPosition); }
  uint32_t GetUInt24 () { return GetUInt24 (_ReadPosition); }
  uint32_t GetUInt32 () { return GetUInt32 (_ReadPosition); }
  int32_t GetInt32 () { return GetInt32 (_ReadPosition); }
  int64_t GetInt64 () { return GetInt64 (_ReadPosition); }
  float GetFloat () { return GetFloat (_ReadPosition); }
  double GetDouble () { return GetDouble (_ReadPosition); }
  Str GetString () { return GetString (_ReadPosition); }
  Str GetStringOf (int n) { return GetString (_ReadPosition, n); }
  void GetBytes (void* destination, int n) { GetBytes (destination, _ReadPosition, n); }
  int GetReadPosition () const noexcept { return _ReadPosition; }
  void SetReadPosition (int n) noexcept { _ReadPosition = n; }

  /// The bytes of a equal as many bytes of b; the lengths are not compared, but b must have as
  /// many.
  friend bool operator== (const Buffer& a, const Buffer& b) noexcept;

 private:
  template <class T>
  T Get (int& offset, const char* condition) const {
    constexpr int width = sizeof (T);
    if (offset < 0 || offset > _DataLength - width) [[unlikely]]
      return static_cast<T> (Outside (condition));
    T value;
    std::memcpy (&value, _Buffer.get () + offset, sizeof (T));
    offset += width;
    if (data_Endian != ENDIAN_Native) [[unlikely]]
      value = static_cast<T> (buffer_Turned (value, width, data_Endian));
    return value;
  }
  // Makes the assertions of a typed read outside the data; gives 0.
  int Outside (const char* condition) const;
  // The assertions of raw bytes; answers whether they lie within the data.
  bool Has (int offset, int n, const char* condition) const;

  ENDIAN data_Endian;
  int32_t _DataLength = 0;
  int32_t _Capacity = 0;
  std::unique_ptr<uint8_t[]> _Buffer;
  int32_t _ReadPosition = 0;
};

/// A region that grows as values are appended. Capacities are 256 times a power of 8, held to
/// 2147483647; growing beyond that throws a Str and leaves the contents as they were. Numbers
/// assert that a byte order was chosen and go on as ENDIAN_Little. Copies and assignments compute
/// their capacity from the data's length and take the byte order with them.
class OutBuffer {
 public:
  explicit OutBuffer (ENDIAN endian) noexcept : data_Endian (endian) {}
  /// Empty, with room for reserve bytes; asserts "n > 0".
  OutBuffer (int reserve, ENDIAN endian);
  OutBuffer (const OutBuffer& other);
  /// Leaves an empty buffer without storage behind.
  OutBuffer (OutBuffer&& other) noexcept;
  OutBuffer& operator= (const OutBuffer& other);
  OutBuffer& operator= (OutBuffer&& other) noexcept;

  void PutUInt8 (uint8_t value) { Put (value); }
  void PutInt8 (int8_t value) { Put (static_cast<uint8_t> (value)); }
  void PutBool (bool value) { Put (static_cast<uint8_t> (value ? 1 : 0)); }
  void PutUInt16 (uint16_t value) { Put (value); }
  void PutInt16 (int16_t value) { Put (static_cast<uint16_t> (value)); }
  void PutUInt32 (uint32_t value) { Put (value); }
  void PutInt32 (int32_t value) { Put (static_cast<uint32_t> (value)); }
  void PutInt64 (uint32_t low, uint32_t high) { Put (static_cast<uint64_t> (high) << 32 | low); }
  void PutFloat (float value) { Put (std::bit_cast<uint32_t> (value)); }
  void PutDouble (double value) { Put (std::bit_cast<uint64_t> (value)); }
  /// The characters up to the first zero byte, and one zero byte; null counts as "".
  void PutString (const char* text) {
    PutText (text != nullptr ? std::string_view (text) : std::string_view ());
  }
  void PutString (const Str& text) { PutText (text.View ()); }
  void PutString (std::string_view text) { PutText (text.substr (0, text.find ('\0'))); }
  /// The first n characters; a shorter text is filled up with pad. No terminator beyond that. A
  /// negative n asserts "n > 0" and writes nothing.
  void PutString (std::string_view text, int n, char pad);
  void PutString (const char* text, int n, char pad) {
    PutString (text != nullptr ? std::string_view (text) : std::string_view (), n, pad);
  }
  void PutString (const Str& text, int n, char pad) { PutString (text.View (), n, pad); }
  /// n raw bytes, which may lie in this buffer. A negative n asserts "n > 0" and writes nothing.
  void PutBytes (const void* source, int n);
  void Append (const OutBuffer& other) { PutBytes (other.Data (), other.Length ()); }

  /// Overwrites; asserts "place < _DataLength", "place + 4 <= _DataLength", and then writes
  /// nothing.
  void PutUInt8At (uint8_t value, int place);
  void PutUInt32At (uint32_t value, int place);

  int Length () const noexcept { return _DataLength; }
  int AllocatedLength () const noexcept { return _AllocatedLength; }
  const uint8_t* Data () const noexcept { return _Buffer.get (); }
  ENDIAN Endian () const noexcept { return data_Endian; }
  /// Empty again; the storage stays.
  void Reset () noexcept { _DataLength = 0; }
  /// Keeps the first n bytes, if there are more.
  void Shorten (int n) noexcept {
    if (n >= 0 && n < _DataLength) _DataLength = n;
  }

 private:
  template <class T>
  void Put (T value) {
    if (data_Endian != ENDIAN_Native) [[unlikely]]
      value = static_cast<T> (buffer_Turned (value, sizeof (T), data_Endian));
    std::memcpy (Room (static_cast<int> (sizeof (T))), &value, sizeof (T));
  }
  void PutText (std::string_view text);
  // Where n more bytes go, counted as written.
  uint8_t* Room (int n) {
    if (n > _AllocatedLength - _DataLength) [[unlikely]]
      Grow (static_cast<int64_t> (_DataLength) + n);
    uint8_t* place = _Buffer.get () + _DataLength;
    _DataLength += n;
    return place;
  }
  void Grow (int64_t newLength);

  ENDIAN data_Endian;
  int32_t _DataLength = 0;
  int32_t _AllocatedLength = 0;
  std::unique_ptr<uint8_t[]> _Buffer;
};

/// A copy of the bytes of a string, without terminator, and their number; never null.
std::unique_ptr<uint8_t[]> CopyOfBytes (const Str& text, int& length);

}  // namespace clxml
