// The checksum of the frames of a job file.
// CRC-16/ARC, eight bytes a step. Leans on nothing.
#pragma once

#include <cstddef>
#include <cstdint>

namespace clxml {

/// CRC-16/ARC of n bytes: polynomial 0x8005 in reflected form (0xA001), initial value 0, no final
/// XOR, low bit first; 0xBB3D for the nine digits "123456789". crc is the checksum of the bytes in
/// front of them, 0 for none.
uint16_t crc16_Arc (const uint8_t* bytes, std::size_t n, uint16_t crc = 0) noexcept;

}  // namespace clxml
