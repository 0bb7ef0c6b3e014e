// Checked reading of the bytes of a record's body: the texts that are not empty.
#include "Library/records/dbReader.h"

namespace clxml {
namespace {

// The position of the first zero byte of eight, 8 when there is none. The lowest bit that the sum
// leaves stands in that byte; what it leaves in higher ones may be a carry.
unsigned ZeroOfEight (const uint8_t* bytes) noexcept {
  uint64_t word;
  std::memcpy (&word, bytes, sizeof word);
  const uint64_t zeros = (word - 0x0101010101010101u) & ~word & 0x8080808080808080u;
  return static_cast<unsigned> (std::countr_zero (zeros)) / 8;
}

}  // namespace

void BodyReader::FilledText (Str& value) {
  if constexpr (std::endian::native == std::endian::little) {
    if (Remaining () >= 16) {
      unsigned length = ZeroOfEight (_At);
      if (length == 8) length += ZeroOfEight (_At + 8);
      if (length <= Str::ShortLength) {
        value.SetShort (reinterpret_cast<const char*> (_At), length);
        _At += length + 1;
        return;
      }
    }
  }
  const void* zero = _At == _End ? nullptr : std::memchr (_At, 0, Remaining ());
  if (!zero) return Fail ();
  const auto length = static_cast<std::size_t> (static_cast<const uint8_t*> (zero) - _At);
  value.SetBytes (reinterpret_cast<const char*> (_At), length);
  _At += length + 1;
}

}  // namespace clxml
