// The null value of doubles.
// "No value" in every coordinate, observation and record field is one number; this says which and
// how it is recognised. Leans on nothing but the standard library.
#pragma once

#include <bit>
#include <cstdint>

namespace clxml {

/// Stands for "no value" in a double.
inline constexpr double MATHS_Null = 1e308;

/// True when the high 32 bits of the value are those of MATHS_Null, 7FE1CCF3 hexadecimal.
inline constexpr bool maths_IsNull (double value) noexcept {
  return static_cast<uint32_t> (std::bit_cast<uint64_t> (value) >> 32) == 0x7FE1CCF3u;
}

}  // namespace clxml
