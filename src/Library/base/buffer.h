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

/// A filled region of bytes that is read by offset. Every read asserts that it stays within the
/// data; one that does not leaves the offset where it was and gives 0 or the empty string, and
/// touches nothing outside the region.
class Buffer {
 public:
  explicit Buffer (ENDIAN endian) noexcept : data_Endian (endian) {}
  Buffer (int length, ENDIAN endian);
  Buffer (int length, ENDIAN endian, const void* source);
  Buffer (const Buffer& other);
  Buffer (Buffer&& other) noexcept = default;
  Buffer& operator= (const Buffer& other);
  Buffer& operator= (Buffer&& other) noexcept = default;

  /// Drops the contents and holds n bytes, undefined; asserts "n > 0".
  void Resize (int n);
  /// Cuts the data to n bytes if there are more; the storage stays.
  void Limit (int n) noexcept;
  uint8_t* Data () noexcept { return _Buffer.get (); }
  const uint8_t* Data () const noexcept { return _Buffer.get (); }
  int Length () const noexcept { return _DataLength; }
  ENDIAN Endian () const noexcept { return data_Endian; }
  bool AtEnd (int offset) const noexcept { return offset >= _DataLength; }

  uint8_t GetUInt8 (int& offset) const;
  bool GetBool (int& offset) const;
  uint16_t GetUInt16 (int& offset) const;
  int16_t GetInt16 (int& offset) const;
  uint32_t GetUInt24 (int& offset) const;
  uint32_t GetUInt32 (int& offset) const;
  int32_t GetInt32 (int& offset) const;
  int64_t GetInt64 (int& offset) const;
  float GetFloat (int& offset) const;
  double GetDouble (int& offset) const;
  /// Up to the first zero byte; the offset moves past it. Without a zero byte asserts
  /// "Offset <= _DataLength" and takes what there is.
  Str GetString (int& offset) const;
  /// The n bytes at the offset, cut at the first zero byte; the offset moves by n.
  Str GetString (int& offset, int n) const;
  /// Copies n bytes; a null destination only moves the offset.
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

  /// The bytes of a equal as many bytes of b; the lengths are not compared.
  friend bool operator== (const Buffer& a, const Buffer& b) noexcept;

 private:
  template <class T>
  T Get (int& offset, const char* condition) const;
  bool Has (int offset, int n, const char* condition) const;

  ENDIAN data_Endian;
  int32_t _DataLength = 0;
  int32_t _Capacity = 0;
  std::unique_ptr<uint8_t[]> _Buffer;
  int32_t _ReadPosition = 0;
};

/// A region that grows as values are appended. Capacities are 256 times a power of 8. Growing
/// beyond 2 GiB throws a Str.
class OutBuffer {
 public:
  explicit OutBuffer (ENDIAN endian) noexcept : data_Endian (endian) {}
  OutBuffer (int reserve, ENDIAN endian);
  OutBuffer (const OutBuffer& other);
  OutBuffer (OutBuffer&& other) noexcept = default;
  OutBuffer& operator= (const OutBuffer& other);
  OutBuffer& operator= (OutBuffer&& other) noexcept = default;

  void PutUInt8 (uint8_t value) { *Room (1) = value; }
  void PutInt8 (int8_t value) { *Room (1) = static_cast<uint8_t> (value); }
  void PutBool (bool value) { *Room (1) = value ? 1 : 0; }
  void PutUInt16 (uint16_t value) { Put (value); }
  void PutInt16 (int16_t value) { Put (static_cast<uint16_t> (value)); }
  void PutUInt32 (uint32_t value) { Put (value); }
  void PutInt32 (int32_t value) { Put (static_cast<uint32_t> (value)); }
  void PutInt64 (uint32_t low, uint32_t high) {
    Put (static_cast<uint64_t> (high) << 32 | low);
  }
  void PutFloat (float value) { Put (std::bit_cast<uint32_t> (value)); }
  void PutDouble (double value) { Put (std::bit_cast<uint64_t> (value)); }
  /// The characters and one zero byte.
  void PutString (const char* text) { PutString (std::string_view (text)); }
  void PutString (const Str& text) { PutString (text.View ()); }
  void PutString (std::string_view text);
  /// The first n characters; a shorter text is filled up with pad. No terminator beyond that.
  void PutString (std::string_view text, int n, char pad);
  void PutBytes (const void* source, int n);
  void Append (const OutBuffer& other) { PutBytes (other.Data (), other.Length ()); }

  /// Overwrites; asserts "place < _DataLength", "place + 4 <= _DataLength".
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
    Assert (data_Endian != ENDIAN_Undefined, "data_Endian != ENDIAN_Undefined");
    uint8_t* place = Room (static_cast<int> (sizeof (T)));
    if (data_Endian != ENDIAN_Big) {
      for (std::size_t i = 0; i < sizeof (T); i++)
        place[i] = static_cast<uint8_t> (value >> (8 * i));
    } else {
      for (std::size_t i = 0; i < sizeof (T); i++)
        place[i] = static_cast<uint8_t> (value >> (8 * (sizeof (T) - 1 - i)));
    }
  }
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

/// A copy of the bytes of a string, without terminator, and their number.
std::unique_ptr<uint8_t[]> CopyOfBytes (const Str& text, int& length);

}  // namespace clxml
