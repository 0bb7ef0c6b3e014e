// Bytes of binary files: storage, texts and the assertions of reads.
// The typed reads and writes stand in the header, as loading and saving records is made of them.
// Leans on str.
#include "Library/base/buffer.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

namespace clxml {

uint64_t buffer_Turned (uint64_t value, int width, ENDIAN data_Endian) {
  Assert (data_Endian != ENDIAN_Undefined, "data_Endian != ENDIAN_Undefined");
  if ((data_Endian == ENDIAN_Big) == (ENDIAN_Native == ENDIAN_Big)) return value;
  uint64_t turned = 0;
  for (int i = 0; i < width; i++, value >>= 8) turned = turned << 8 | (value & 0xFF);
  return turned;
}

Buffer::Buffer (int length, ENDIAN endian) : data_Endian (endian) { Resize (length); }

Buffer::Buffer (int length, ENDIAN endian, const void* source) : data_Endian (endian) {
  Resize (length);
  if (_DataLength > 0) std::memcpy (_Buffer.get (), source, static_cast<std::size_t> (_DataLength));
}

Buffer::Buffer (const Buffer& other) : data_Endian (other.data_Endian) {
  if (other._DataLength == 0) return;
  Resize (other._DataLength);
  std::memcpy (_Buffer.get (), other._Buffer.get (), static_cast<std::size_t> (_DataLength));
}

Buffer::Buffer (Buffer&& other) noexcept
    : data_Endian (other.data_Endian),
      _DataLength (std::exchange (other._DataLength, 0)),
      _Capacity (std::exchange (other._Capacity, 0)),
      _Buffer (std::move (other._Buffer)) {
  other._ReadPosition = 0;
}

Buffer& Buffer::operator= (const Buffer& other) {
  if (this != &other) *this = Buffer (other);
  return *this;
}

Buffer& Buffer::operator= (Buffer&& other) noexcept {
  if (this == &other) return *this;
  data_Endian = other.data_Endian;
  _DataLength = std::exchange (other._DataLength, 0);
  _Capacity = std::exchange (other._Capacity, 0);
  _Buffer = std::move (other._Buffer);
  _ReadPosition = other._ReadPosition = 0;
  return *this;
}

void Buffer::Resize (int n) {
  _DataLength = 0;
  _ReadPosition = 0;
  if (!Assert (n > 0, "n > 0")) {
    _Buffer.reset ();
    _Capacity = 0;
    return;
  }
  if (n > _Capacity) {
    _Buffer.reset ();
    _Capacity = 0;
    _Buffer = std::make_unique_for_overwrite<uint8_t[]> (static_cast<std::size_t> (n));
    _Capacity = n;
  }
  _DataLength = n;
}

void Buffer::Limit (int n) noexcept { _DataLength = std::clamp (n, 0, _DataLength); }

bool Buffer::Has (int offset, int n, const char* condition) const {
  const bool inside = n >= 0 && offset >= 0 && n <= _DataLength && offset <= _DataLength - n;
  if (n != 0) Assert (_Buffer != nullptr, "_Buffer");
  return Assert (inside, condition);
}

int Buffer::Outside (const char* condition) const {
  Assert (data_Endian != ENDIAN_Undefined, "data_Endian != ENDIAN_Undefined");
  Assert (_Buffer != nullptr, "_Buffer");
  Assert (false, condition);
  return 0;
}

uint32_t Buffer::GetUInt24 (int& offset) const {
  if (offset < 0 || offset > _DataLength - 3)
    return static_cast<uint32_t> (Outside ("(Offset + 3) <= _DataLength"));
  const uint8_t* b = _Buffer.get () + offset;
  offset += 3;
  Assert (data_Endian != ENDIAN_Undefined, "data_Endian != ENDIAN_Undefined");
  const auto join = [] (uint32_t low, uint32_t middle, uint32_t high) {
    return low | middle << 8 | high << 16;
  };
  return data_Endian == ENDIAN_Big ? join (b[2], b[1], b[0]) : join (b[0], b[1], b[2]);
}

Str Buffer::GetString (int& offset) const {
  if (!Has (offset, 1, "Offset <= _DataLength")) return Str ();
  const char* text = reinterpret_cast<const char*> (_Buffer.get ()) + offset;
  const std::size_t rest = static_cast<std::size_t> (_DataLength - offset);
  const std::string_view found = std::string_view (text, rest);
  const std::size_t length = std::min (found.find ('\0'), rest);
  Assert (length < rest, "Offset <= _DataLength");
  offset = length < rest ? offset + static_cast<int> (length) + 1 : _DataLength;
  return Str (found.substr (0, length));
}

Str Buffer::GetString (int& offset, int n) const {
  if (!Has (offset, n, "Offset + n <= _DataLength") || n == 0) return Str ();
  const char* text = reinterpret_cast<const char*> (_Buffer.get ()) + offset;
  offset += n;
  return Str (std::string_view (text, static_cast<std::size_t> (n)));
}

void Buffer::GetBytes (void* destination, int& offset, int n) const {
  if (!Has (offset, n, "Offset + n <= _DataLength") || n == 0) return;
  if (destination != nullptr)
    std::memcpy (destination, _Buffer.get () + offset, static_cast<std::size_t> (n));
  offset += n;
}

bool operator== (const Buffer& a, const Buffer& b) noexcept {
  return a._DataLength <= b._DataLength &&
         std::equal (a._Buffer.get (), a._Buffer.get () + a._DataLength, b._Buffer.get ());
}

OutBuffer::OutBuffer (int reserve, ENDIAN endian) : data_Endian (endian) {
  if (Assert (reserve > 0, "n > 0")) Grow (reserve);
}

OutBuffer::OutBuffer (const OutBuffer& other) : data_Endian (other.data_Endian) { Append (other); }

OutBuffer::OutBuffer (OutBuffer&& other) noexcept
    : data_Endian (other.data_Endian),
      _DataLength (std::exchange (other._DataLength, 0)),
      _AllocatedLength (std::exchange (other._AllocatedLength, 0)),
      _Buffer (std::move (other._Buffer)) {}

OutBuffer& OutBuffer::operator= (const OutBuffer& other) {
  if (this != &other) *this = OutBuffer (other);
  return *this;
}

OutBuffer& OutBuffer::operator= (OutBuffer&& other) noexcept {
  if (this == &other) return *this;
  data_Endian = other.data_Endian;
  _DataLength = std::exchange (other._DataLength, 0);
  _AllocatedLength = std::exchange (other._AllocatedLength, 0);
  _Buffer = std::move (other._Buffer);
  return *this;
}

void OutBuffer::Grow (int64_t newLength) {
  constexpr int64_t maximum = std::numeric_limits<int32_t>::max ();
  if (newLength > maximum) throw Str ("Data of more than 2147483647 bytes");
  Assert (newLength >= _AllocatedLength, "newLength >= _AllocatedLength");
  int64_t capacity = 256;
  while (capacity < newLength) capacity *= 8;
  capacity = std::min (capacity, maximum);
  auto grown = std::make_unique_for_overwrite<uint8_t[]> (static_cast<std::size_t> (capacity));
  if (_DataLength > 0)
    std::memcpy (grown.get (), _Buffer.get (), static_cast<std::size_t> (_DataLength));
  _Buffer = std::move (grown);
  _AllocatedLength = static_cast<int32_t> (capacity);
}

void OutBuffer::PutText (std::string_view text) {
  if (text.size () >= static_cast<std::size_t> (std::numeric_limits<int32_t>::max ()))
    Grow (std::numeric_limits<int64_t>::max ());
  const int length = static_cast<int> (text.size ());
  uint8_t* place = Room (length + 1);
  if (length > 0) std::memcpy (place, text.data (), text.size ());
  place[length] = 0;
}

void OutBuffer::PutString (std::string_view text, int n, char pad) {
  if (!Assert (n >= 0, "n > 0") || n == 0) return;
  const std::size_t width = static_cast<std::size_t> (n);
  text = text.substr (0, std::min (text.find ('\0'), width));
  uint8_t* place = Room (n);
  if (!text.empty ()) std::memcpy (place, text.data (), text.size ());
  std::memset (place + text.size (), pad, width - text.size ());
}

void OutBuffer::PutBytes (const void* source, int n) {
  if (!Assert (n >= 0, "n > 0") || n == 0) return;
  const uint8_t* from = static_cast<const uint8_t*> (source);
  const std::less<const uint8_t*> before;
  const bool own = !before (from, _Buffer.get ()) && before (from, _Buffer.get () + _DataLength);
  const std::ptrdiff_t offset = own ? from - _Buffer.get () : 0;
  uint8_t* place = Room (n);
  std::memcpy (place, own ? _Buffer.get () + offset : from, static_cast<std::size_t> (n));
}

void OutBuffer::PutUInt8At (uint8_t value, int place) {
  Assert (_Buffer != nullptr, "_Buffer");
  Assert (data_Endian != ENDIAN_Undefined, "data_Endian != ENDIAN_Undefined");
  if (Assert (place >= 0 && place < _DataLength, "place < _DataLength"))
    _Buffer[static_cast<std::size_t> (place)] = value;
}

void OutBuffer::PutUInt32At (uint32_t value, int place) {
  Assert (_Buffer != nullptr, "_Buffer");
  if (!Assert (place >= 0 && place <= _DataLength - 4, "place + 4 <= _DataLength")) return;
  value = static_cast<uint32_t> (buffer_Turned (value, sizeof value, data_Endian));
  std::memcpy (_Buffer.get () + place, &value, sizeof value);
}

std::unique_ptr<uint8_t[]> CopyOfBytes (const Str& text, int& length) {
  length = text.Length ();
  const std::size_t n = static_cast<std::size_t> (length);
  auto copy = std::make_unique_for_overwrite<uint8_t[]> (n);
  if (n > 0) std::memcpy (copy.get (), text.Data (), n);
  return copy;
}

}  // namespace clxml
