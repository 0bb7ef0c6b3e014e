// The checksum of the frames of a job file.
// Tables of the byte-wise algorithm for a byte at each of eight distances from the end, so that
// eight look-ups that do not wait for each other take eight bytes at once. Leans on nothing.
#include "Library/job/crc16.h"

#include <array>

namespace clxml {
namespace {

using Table = std::array<std::array<uint16_t, 256>, 8>;

// Table[0] is the classic table of the polynomial; Table[k] advances it by k more zero bytes.
constexpr Table MakeTables () {
  Table table{};
  for (unsigned i = 0; i < 256; i++) {
    unsigned value = i;
    for (int bit = 0; bit < 8; bit++) value = (value & 1) ? (value >> 1) ^ 0xA001u : value >> 1;
    table[0][i] = static_cast<uint16_t> (value);
  }
  for (unsigned k = 1; k < 8; k++) {
    for (unsigned i = 0; i < 256; i++) {
      const unsigned before = table[k - 1][i];
      table[k][i] = static_cast<uint16_t> ((before >> 8) ^ table[0][before & 0xFF]);
    }
  }
  return table;
}

constexpr Table tables = MakeTables ();

}  // namespace

uint16_t crc16_Arc (const uint8_t* bytes, std::size_t n, uint16_t crc) noexcept {
  while (n >= 8) {
    crc = static_cast<uint16_t> (tables[7][bytes[0] ^ (crc & 0xFF)] ^
                                 tables[6][bytes[1] ^ (crc >> 8)] ^ tables[5][bytes[2]] ^
                                 tables[4][bytes[3]] ^ tables[3][bytes[4]] ^ tables[2][bytes[5]] ^
                                 tables[1][bytes[6]] ^ tables[0][bytes[7]]);
    bytes += 8;
    n -= 8;
  }
  while (n-- > 0) crc = static_cast<uint16_t> ((crc >> 8) ^ tables[0][(crc ^ *bytes++) & 0xFF]);
  return crc;
}

}  // namespace clxml
