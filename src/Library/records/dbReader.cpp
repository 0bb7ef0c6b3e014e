// Checked reading of the bytes of a record's body: the texts that are not empty.
#include "Library/records/dbReader.h"

namespace clxml {

void BodyReader::FilledText (Str& value) {
  const void* zero = _At == _End ? nullptr : std::memchr (_At, 0, Remaining ());
  if (!zero) return Fail ();
  const auto length = static_cast<std::size_t> (static_cast<const uint8_t*> (zero) - _At);
  value.SetBytes (reinterpret_cast<const char*> (_At), length);
  _At += length + 1;
}

}  // namespace clxml
