// Numbers as text, by the rules of the C functions in the "C" locale.
// std::from_chars and std::to_chars do the work, as they know no locale; what they read
// differently (signs, hexadecimal, "inf", "nan", numbers out of range) is done here by hand.
// Leans on str.
#include "Kernel/text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace clxml {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity ();

// A magnitude and the bytes that it took, 0 when there was no number.
struct Reading {
  double value = 0;
  std::size_t used = 0;
};

bool BeginsWith (std::string_view text, std::string_view lowerCase) noexcept {
  return text.size () >= lowerCase.size () &&
         std::equal (lowerCase.begin (), lowerCase.end (), text.begin (),
                     [] (char a, char b) { return a == text_ToLower (b); });
}

// An exponent at text[place], with its letter: the number and the bytes it takes, 0 and 0 when no
// digit follows. It is held far below where sums with counts of digits could overflow.
std::pair<int64_t, std::size_t> Exponent (std::string_view text, std::size_t place, char letter) {
  constexpr int64_t enough = 1'000'000'000'000;
  std::size_t at = place;
  if (at == text.size () || text_ToLower (text[at]) != letter) return {0, 0};
  at++;
  const bool negative = at < text.size () && text[at] == '-';
  if (at < text.size () && (text[at] == '-' || text[at] == '+')) at++;
  if (at == text.size () || !text_IsDigit (text[at])) return {0, 0};
  int64_t value = 0;
  for (; at < text.size () && text_IsDigit (text[at]); at++)
    if (value < enough) value = value * 10 + (text[at] - '0');
  return {negative ? -value : value, at - place};
}

// A decimal number that from_chars finds out of range or too long. The first 800 significant
// digits and a mark for what follows them decide every rounding, as the longest number halfway
// between two doubles has 767.
double ReadLongDecimal (std::string_view text) noexcept {
  constexpr std::size_t kept = 800;
  std::array<char, kept + 32> digits;
  std::size_t count = 0;
  int64_t order = 0;  // the power of ten behind the digits kept
  bool behindPoint = false, more = false;
  std::size_t at = 0;
  for (; at < text.size (); at++) {
    const char c = text[at];
    if (c == '.' && !behindPoint) {
      behindPoint = true;
      continue;
    }
    if (!text_IsDigit (c)) break;
    if (count == 0 && c == '0') {
      if (behindPoint) order--;
    } else if (count < kept) {
      digits[count++] = c;
      if (behindPoint) order--;
    } else {
      more |= c != '0';
      if (!behindPoint) order++;
    }
  }
  order += Exponent (text, at, 'e').first;
  if (count == 0) return 0;
  if (more) {
    digits[count++] = '1';
    order--;
  }
  const int64_t magnitude = order + static_cast<int64_t> (count);
  if (magnitude > 400) return Infinity;
  if (magnitude < -400) return 0;
  digits[count] = 'e';
  char* end =
      std::to_chars (digits.data () + count + 1, digits.data () + digits.size (), order).ptr;
  double value = 0;
  if (std::from_chars (digits.data (), end, value).ec == std::errc::result_out_of_range)
    return magnitude > 0 ? Infinity : 0;
  return value;
}

// text begins with a digit or a point.
Reading ReadDecimal (std::string_view text) noexcept {
  // Beyond this length a cut exponent and a run of zeros could meet within the range.
  constexpr std::ptrdiff_t longNumber = 60'000;
  Reading reading;
  const char* const first = text.data ();
  const auto [last, error] = std::from_chars (first, first + text.size (), reading.value);
  if (error == std::errc::invalid_argument) return {};
  reading.used = static_cast<std::size_t> (last - first);
  if (error == std::errc::result_out_of_range || last - first > longNumber) [[unlikely]]
    reading.value = ReadLongDecimal (text.substr (0, reading.used));
  return reading;
}

// The double nearest to m * 2^exponent, ties to even; more tells that m was cut.
double Nearest (uint64_t m, int64_t exponent, bool more) noexcept {
  if (m == 0) return 0;
  const int zeros = std::countl_zero (m);
  m <<= zeros;
  const int64_t top = exponent - zeros + 63;  // the power of two of the first bit
  if (top > 1023) return Infinity;
  if (top < -1075) return 0;
  const int bits = top >= -1022 ? 53 : static_cast<int> (top + 1075);
  const uint64_t whole = bits > 0 ? m >> (64 - bits) : 0;
  const uint64_t rest = bits > 0 ? m << bits : m;
  constexpr uint64_t half = uint64_t{1} << 63;
  const bool up = rest > half || (rest == half && (more || (whole & 1) != 0));
  return std::ldexp (static_cast<double> (whole + (up ? 1 : 0)), static_cast<int> (top + 1 - bits));
}

// text begins with "0x"; without a digit behind it the zero is the number.
Reading ReadHexadecimal (std::string_view text) noexcept {
  uint64_t m = 0;
  int64_t exponent = 0;
  bool behindPoint = false, any = false, more = false;
  std::size_t at = 2;
  for (; at < text.size (); at++) {
    if (text[at] == '.' && !behindPoint) {
      behindPoint = true;
      continue;
    }
    const int digit = text_HexDigit (text[at]);
    if (digit < 0) break;
    any = true;
    if (m >> 60 == 0) {
      m = m << 4 | static_cast<uint64_t> (digit);
      if (behindPoint) exponent -= 4;
    } else {
      more |= digit != 0;
      if (!behindPoint) exponent += 4;
    }
  }
  if (!any) return {0, 1};
  const auto [power, length] = Exponent (text, at, 'p');
  return {Nearest (m, exponent + power, more), at + length};
}

// text begins with a letter.
Reading ReadWord (std::string_view text) noexcept {
  if (BeginsWith (text, "infinity")) return {Infinity, 8};
  if (BeginsWith (text, "inf")) return {Infinity, 3};
  if (!BeginsWith (text, "nan")) return {};
  std::size_t used = 3;
  if (used < text.size () && text[used] == '(') {
    std::size_t at = used + 1;
    while (at < text.size () &&
           (text_IsDigit (text[at]) || text_IsLetter (text[at]) || text[at] == '_'))
      at++;
    if (at < text.size () && text[at] == ')') used = at + 1;
  }
  return {std::numeric_limits<double>::quiet_NaN (), used};
}

std::size_t SkipSpace (std::string_view text) noexcept {
  std::size_t at = 0;
  while (at < text.size () && text_IsSpace (text[at])) at++;
  return at;
}

// Reads as strtod does. lead takes the bytes in front of the magnitude.
Reading ReadNumber (std::string_view text, std::size_t& lead) noexcept {
  lead = SkipSpace (text);
  const bool negative = lead < text.size () && text[lead] == '-';
  if (lead < text.size () && (text[lead] == '-' || text[lead] == '+')) lead++;
  const std::string_view rest = text.substr (lead);
  if (rest.empty ()) return {};
  Reading reading;
  if (text_IsDigit (rest[0]) || rest[0] == '.')
    reading = BeginsWith (rest, "0x") ? ReadHexadecimal (rest) : ReadDecimal (rest);
  else
    reading = ReadWord (rest);
  if (negative && reading.used > 0) reading.value = -reading.value;
  return reading;
}

// The magnitude of a decimal whole number, held to 64 bits.
struct Whole {
  uint64_t magnitude = 0;
  bool negative = false;
  bool overflow = false;
  bool any = false;
};

Whole ReadWhole (std::string_view text) noexcept {
  Whole whole;
  std::size_t at = SkipSpace (text);
  if (at < text.size () && (text[at] == '-' || text[at] == '+')) whole.negative = text[at++] == '-';
  for (; at < text.size () && text_IsDigit (text[at]); at++) {
    const auto digit = static_cast<uint64_t> (text[at] - '0');
    constexpr uint64_t maximum = std::numeric_limits<uint64_t>::max ();
    if (whole.magnitude > (maximum - digit) / 10)
      whole.overflow = true;
    else
      whole.magnitude = whole.magnitude * 10 + digit;
    whole.any = true;
  }
  return whole;
}

int64_t ToInt64 (std::string_view text) noexcept {
  constexpr int64_t maximum = std::numeric_limits<int64_t>::max ();
  constexpr int64_t minimum = std::numeric_limits<int64_t>::min ();
  const Whole whole = ReadWhole (text);
  if (whole.overflow || whole.magnitude > static_cast<uint64_t> (maximum))
    return whole.negative ? minimum : maximum;
  const int64_t value = static_cast<int64_t> (whole.magnitude);
  return whole.negative ? -value : value;
}

// The digits of a double end before both: 309 in front of the point, 1074 behind it.
constexpr int MaximumDigits = 1100;
using NumberText = std::array<char, MaximumDigits + 320>;

template <class Number>
Str Format (const char* format, Number value) {
  constexpr int size = 1000;
  std::array<char, size> buffer;
  const int length = std::snprintf (buffer.data (), buffer.size (), format, value);
  if (length < 0) return Str ();
  Assert (length < size, "length < 1000");
  return Str (buffer.data ());
}

}  // namespace

double text_ToDouble (std::string_view text, std::size_t* used) noexcept {
  std::size_t lead = 0;
  const Reading reading = ReadNumber (text, lead);
  if (used != nullptr) *used = reading.used > 0 ? lead + reading.used : 0;
  return reading.value;
}

std::optional<double> text_ScanDouble (std::string_view text) noexcept {
  std::size_t lead = 0;
  const Reading reading = ReadNumber (text, lead);
  if (reading.used == 0) return std::nullopt;
  // sscanf gives nothing back once it has begun a form: "infi" must become "infinity", and "0x"
  // must go on.
  const std::string_view rest = text.substr (lead);
  if (reading.used == 3 && BeginsWith (rest, "infi")) return std::nullopt;
  if (reading.used == 1 && BeginsWith (rest, "0x") && (rest.size () == 2 || rest[2] != '.'))
    return std::nullopt;
  return reading.value;
}

int32_t text_ToInt (std::string_view text) noexcept {
  return static_cast<int32_t> (static_cast<uint32_t> (static_cast<uint64_t> (ToInt64 (text))));
}

int32_t text_ToInt32 (std::string_view text) noexcept {
  return static_cast<int32_t> (std::clamp<int64_t> (
      ToInt64 (text), std::numeric_limits<int32_t>::min (), std::numeric_limits<int32_t>::max ()));
}

std::optional<uint32_t> text_ScanUnsigned (std::string_view text) noexcept {
  const Whole whole = ReadWhole (text);
  if (!whole.any) return std::nullopt;
  if (whole.overflow) return std::numeric_limits<uint32_t>::max ();
  return static_cast<uint32_t> (whole.negative ? 0 - whole.magnitude : whole.magnitude);
}

Str text_Fixed (double value, int digits) {
  if (digits < 0) digits = 6;
  NumberText text;
  const int kept = std::min (digits, MaximumDigits);
  const auto end = std::to_chars (text.data (), text.data () + text.size (), value,
                                  std::chars_format::fixed, kept);
  Str fixed (std::string_view (text.data (), static_cast<std::size_t> (end.ptr - text.data ())));
  if (digits > kept && std::isfinite (value)) {
    Str zeros;
    zeros.Fill ('0', digits - kept);
    fixed += zeros;
  }
  return fixed;
}

Str text_General (double value, int digits) {
  if (digits < 0) digits = 6;
  NumberText text;
  const auto end = std::to_chars (text.data (), text.data () + text.size (), value,
                                  std::chars_format::general, std::min (digits, MaximumDigits));
  std::transform (text.data (), end.ptr, text.data (), text_ToUpper);
  return Str (std::string_view (text.data (), static_cast<std::size_t> (end.ptr - text.data ())));
}

Str text_Format (const char* format, uint32_t value) { return Format (format, value); }
Str text_Format (const char* format, int32_t value) { return Format (format, value); }

void text_Copy (char* destination, const char* source, std::size_t size) {
  const std::size_t length = std::strlen (source);
  if (!Assert (length < size, "strlen(src) < size") && size == 0) return;
  const std::size_t copied = std::min (length, size - 1);
  std::memcpy (destination, source, copied);
  destination[copied] = 0;
}

}  // namespace clxml
