// Numbers and characters as text, never depending on the process's locale.
// The C functions' exact readings (atof, atoi, strtol, sscanf) without their locale, at the speed
// of from_chars and to_chars. Leans on str.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "str.h"

namespace clxml {

/// The value of a hexadecimal digit of either case, -1 for any other byte.
constexpr int text_HexDigit (char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  c = text_ToLower (c);
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// As strtod in the "C" locale: leading white space, sign, decimal or hexadecimal digits with
/// exponent, "inf", "infinity", "nan", "nan(...)" of any case; overflow gives an infinity,
/// underflow the nearest number. A text that is no number gives 0.0.
/// used, if not null, takes the number of bytes that were read, 0 for no number.
double text_ToDouble (std::string_view text, std::size_t* used = nullptr) noexcept;
/// As sscanf with "%lf" in the "C" locale: nothing when no number could be read.
std::optional<double> text_ScanDouble (std::string_view text) noexcept;
/// As strtol in base 10 with a 64-bit long, cut to its low 32 bits as atoi does: leading white
/// space, a sign, digits; without digits 0; beyond 64 bits the nearest 64-bit value.
int32_t text_ToInt (std::string_view text) noexcept;
/// As strtol in base 10, held to 32 bits: beyond them the nearest 32-bit value.
int32_t text_ToInt32 (std::string_view text) noexcept;
/// As sscanf with "%u": nothing when no number could be read; a minus sign wraps.
std::optional<uint32_t> text_ScanUnsigned (std::string_view text) noexcept;

/// As printf "%.*f", "%.*G" with the decimal point of the "C" locale.
Str text_Fixed (double value, int digits);
Str text_General (double value, int digits);
/// As printf with one 32-bit value; asserts "length < 1000" and cuts there.
Str text_Format (const char* format, uint32_t value);
Str text_Format (const char* format, int32_t value);

/// Copies a zero-terminated text to a buffer of size bytes, always terminated; asserts
/// "strlen(src) < size" and then cuts.
void text_Copy (char* destination, const char* source, std::size_t size);

}  // namespace clxml
