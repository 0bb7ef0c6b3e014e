// The checksum of frames against its definition. Leans on crc16.
#include "Library/job/crc16.h"

#include <gtest/gtest.h>

#include <vector>

namespace clxml {
namespace {

// One bit at a time, straight from the polynomial.
uint16_t BitByBit (const uint8_t* bytes, std::size_t n) {
  unsigned crc = 0;
  for (std::size_t i = 0; i < n; i++) {
    crc ^= bytes[i];
    for (int bit = 0; bit < 8; bit++) crc = (crc & 1) ? (crc >> 1) ^ 0xA001u : crc >> 1;
  }
  return static_cast<uint16_t> (crc);
}

TEST (Crc16, GivesThePublishedCheckValue) {
  EXPECT_EQ (crc16_Arc (reinterpret_cast<const uint8_t*> ("123456789"), 9), 0xBB3D);
  EXPECT_EQ (crc16_Arc (nullptr, 0), 0);
}

TEST (Crc16, AgreesWithTheBitwiseFormAtEveryLengthAndCut) {
  std::vector<uint8_t> bytes (67);
  unsigned x = 12345;
  for (uint8_t& byte : bytes) byte = static_cast<uint8_t> ((x = x * 1103515245u + 12345u) >> 16);
  for (std::size_t n = 0; n <= bytes.size (); n++) {
    const uint16_t whole = BitByBit (bytes.data (), n);
    EXPECT_EQ (crc16_Arc (bytes.data (), n), whole) << n;
    for (std::size_t cut = 0; cut <= n; cut += 5)
      EXPECT_EQ (crc16_Arc (bytes.data () + cut, n - cut, crc16_Arc (bytes.data (), cut)), whole);
  }
}

}  // namespace
}  // namespace clxml
