// Bytes of a coordinate system block, the texts and raw parts of the two cursors.
#include "geodesy/csib_bytes.h"

#include <cmath>

namespace clxml {

double csib_Bytes::Finite () noexcept {
  const double value = Double ();
  if (std::isfinite (value)) return value;
  Fail (CSIB_WrongFormat);
  return 0.0;
}

double csib_Bytes::Known () noexcept {
  const double value = Double ();
  if (csib_IsKnown (value)) return value;
  Fail (CSIB_WrongFormat);
  return 0.0;
}

std::string_view csib_Bytes::Text () noexcept {
  if (!IsGood ()) return {};
  const std::span<const uint8_t> rest = _bytes.subspan (_position);
  const void* end = rest.empty () ? nullptr : std::memchr (rest.data (), 0, rest.size ());
  if (end == nullptr) {
    Fail ();
    return {};
  }
  const std::size_t length =
      static_cast<std::size_t> (static_cast<const uint8_t*> (end) - rest.data ());
  _position += length + 1;
  return {reinterpret_cast<const char*> (rest.data ()), length};
}

std::u16string csib_Bytes::Text16 () {
  std::u16string text;
  while (const uint16_t unit = Number<uint16_t> ()) text += static_cast<char16_t> (unit);
  if (!IsGood ()) text.clear ();
  return text;
}

std::span<const uint8_t> csib_Bytes::Take (std::size_t n) noexcept {
  if (!Has (n)) return {};
  const std::span<const uint8_t> taken = _bytes.subspan (_position, n);
  _position += n;
  return taken;
}

void csib_Writer::Text (std::string_view text) noexcept {
  Put (text.data (), text.size ());
  Byte (0);
}

void csib_Writer::Text16 (std::u16string_view text) noexcept {
  for (const char16_t unit : text) Number (static_cast<uint16_t> (unit));
  Number (uint16_t{0});
}

bool csib_Writer::Fits (std::size_t n) noexcept {
  if (!_counts && n > _bytes.size () - _position) _good = false;
  return _good;
}

void csib_Writer::Skip (std::size_t n) noexcept {
  if (Fits (n)) _position += n;
}

void csib_Writer::Put (const void* source, std::size_t n) noexcept {
  if (!Fits (n)) return;
  if (!_counts && n > 0) std::memcpy (_bytes.data () + _position, source, n);
  _position += n;
}

}  // namespace clxml
