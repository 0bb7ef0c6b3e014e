// Strings of the library and its window on the host: the longer operations.
// What is short and hot (empty strings, moves, appends within the buffer) stands in the header.
// Leans on nothing but the standard library.
#include "str.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <new>

namespace clxml {
namespace {

std::string_view ViewOf (const char* text) noexcept { return text != nullptr ? text : ""; }

}  // namespace

void Str::TakeLong (std::string_view text) {
  const std::size_t length = text.size ();
  char* buffer = length <= MaximumLength ? static_cast<char*> (std::malloc (length + 1)) : nullptr;
  if (buffer == nullptr) [[unlikely]]
    NoRoom (length);
  std::memcpy (buffer, text.data (), length);
  buffer[length] = 0;
  SetHeap (buffer, length, length);
}

void Str::Assign (const char* text, std::size_t length) {
  if (length > Capacity ()) {
    *this = Str (std::string_view (text, length), Whole ());
  } else if (length > 0 || Length () > 0) {
    // A part of this string always fits and comes here.
    if (length > 0) std::memmove (Text (), text, length);
    SetLength (length);
  }
}

Str::Str (char character)
    : Str (std::string_view (&character, character != 0 ? 1u : 0u), Whole ()) {}

Str::Str (const char* first, const char* second) : Str () {
  const std::string_view a = ViewOf (first), b = ViewOf (second);
  // One buffer of the exact size; should a step throw, the delegating constructor frees it.
  Reserve (a.size () + b.size ());
  Append (a.data (), a.size ());
  Append (b.data (), b.size ());
}

void Str::Reserve (std::size_t capacity) {
  if (capacity <= Capacity ()) return;
  if (capacity > MaximumLength) NoRoom (capacity);
  const auto length = static_cast<std::size_t> (Length ());
  if (capacity <= InlineRoom) {  // of the shared empty buffer
    _Store[0] = 0;
    _Store[Tag] = static_cast<char> (0x80);
    return;
  }
  // realloc moves large blocks by remapping them, not by copying.
  const bool isOnHeap = !IsInline () && HeapCapacity () > 0;
  void* buffer = std::realloc (isOnHeap ? HeapPointer () : nullptr, capacity + 1);
  if (buffer == nullptr) NoRoom (capacity);
  char* text = static_cast<char*> (buffer);
  if (!isOnHeap) std::memcpy (text, Data (), length);
  text[length] = 0;
  SetHeap (text, length, capacity);
}

void Str::GrowAndAppend (const char* text, std::size_t length) {
  const auto oldLength = static_cast<std::size_t> (Length ());
  if (length > MaximumLength - oldLength) NoRoom (oldLength + length);
  // What is appended may be a part of this string, whose buffer is about to move.
  const std::less<const char*> before;
  const bool own = !before (text, Data ()) && before (text, Data () + oldLength);
  const std::size_t place = own ? static_cast<std::size_t> (text - Data ()) : 0;
  // By half, so that n appended bytes are copied O(n) times; a first append is of the exact size.
  const std::size_t grown = oldLength > 0 ? Capacity () + Capacity () / 2 + 15 : 0;
  Reserve (std::clamp (grown, oldLength + length, MaximumLength));
  std::memcpy (Text () + oldLength, own ? Data () + place : text, length);
  SetLength (oldLength + length);
}

char& Str::Outside (int i) const {
  Assert (i < Length (), "i < _Length");
  Assert (i >= 0, "i >= 0");
  thread_local char nowhere;
  nowhere = 0;
  return nowhere;
}

void Str::NoRoom (std::size_t length) {
  if (length > MaximumLength) throw Str ("Text of more than 2147483646 bytes");
  throw std::bad_alloc ();
}

bool Str::EqualInsensitive (const Str& other) const noexcept {
  return std::ranges::equal (View (), other.View (), [] (char a, char b) {
    return a == b || text_ToLower (a) == text_ToLower (b);
  });
}

void Str::SetAt (int i, char character) {
  const bool inside = Assert (i < Length (), "i < _Length") && Assert (i >= 0, "i >= 0");
  if (Assert (character != 0, "Character") && inside) Text ()[i] = character;
}

void Str::Fill (char character, int count) {
  if (!Assert (character != 0, "Character") || !Assert (count >= 0, "Count >= 0")) return;
  const auto length = static_cast<std::size_t> (count);
  if (length == 0) return Truncate (0);
  Reserve (length);
  std::memset (Text (), character, length);
  SetLength (length);
}

void Str::Truncate (int length) {
  if (length < Length ()) SetLength (static_cast<std::size_t> (std::max (length, 0)));
}

void Str::MakeLower () {
  char* text = Text ();
  Assert (text != nullptr, "_Pointer");
  std::transform (text, text + Length (), text, text_ToLower);
}

void Str::MakeUpper () {
  char* text = Text ();
  Assert (text != nullptr, "_Pointer");
  std::transform (text, text + Length (), text, text_ToUpper);
}

int Str::Find (char character, int start) const noexcept {
  const std::size_t found =
      View ().find (character, static_cast<std::size_t> (std::max (start, 0)));
  return found == std::string_view::npos ? Length () : static_cast<int> (found);
}

int Str::Find (const char* text, int start) const noexcept {
  if (text == nullptr || start >= Length ()) return Length ();
  const std::size_t found = View ().find (text, static_cast<std::size_t> (std::max (start, 0)));
  return found == std::string_view::npos ? Length () : static_cast<int> (found);
}

int Str::ReverseFind (char character) const noexcept {
  const std::size_t found = View ().rfind (character);
  return found == std::string_view::npos ? Length () : static_cast<int> (found);
}

bool Str::Contains (char character) const noexcept { return Find (character) < Length (); }

void Str::TrimLeft (char character) {
  const char set[] = {character, 0};
  TrimLeft (set);
}

void Str::TrimLeft (const char* set) {
  const std::size_t kept = View ().find_first_not_of (ViewOf (set));
  Delete (0, kept == std::string_view::npos ? Length () : static_cast<int> (kept));
}

void Str::TrimRight (char character) {
  int length = Length ();
  while (length > 0 && Data ()[length - 1] == character) length--;
  Truncate (length);
}

void Str::Trim (char character) {
  TrimRight (character);
  TrimLeft (character);
}

void Str::Replace (char oldCharacter, char newCharacter) {
  if (!Assert (oldCharacter != 0 && newCharacter != 0, "Old && New")) return;
  std::replace (Text (), Text () + Length (), oldCharacter, newCharacter);
}

void Str::ReplaceAll (const char* oldText, const char* newText) {
  const std::string_view old = ViewOf (oldText), with = ViewOf (newText), text = View ();
  if (!Assert (!old.empty (), "LengthOld > 0")) return;
  std::size_t found = text.find (old);
  if (found == std::string_view::npos) return;
  // Into a new buffer, as both texts may be parts of this string.
  Str result;
  result.Reserve (with.size () <= old.size () ? text.size () : text.size () + with.size ());
  std::size_t done = 0;
  for (; found != std::string_view::npos; found = text.find (old, done)) {
    result.Append (text.data () + done, found - done);
    result.Append (with.data (), with.size ());
    done = found + old.size ();
  }
  result.Append (text.data () + done, text.size () - done);
  *this = std::move (result);
}

Str Str::Left (int n) const {
  if (n == 0 || !Assert (n > 0, "n > 0")) return Str ();
  return Str (View ().substr (0, static_cast<std::size_t> (n)));
}

Str Str::From (int i) const {
  if (!Assert (i >= 0, "i >= 0") || i >= Length ()) return Str ();
  return Str (View ().substr (static_cast<std::size_t> (i)));
}

Str Str::Mid (int start, int count) const {
  start = std::max (start, 0);
  if (start >= Length () || count <= 0) return Str ();
  return Str (View ().substr (static_cast<std::size_t> (start), static_cast<std::size_t> (count)));
}

void Str::Delete (int i, int n) {
  const bool validPlace = Assert (i >= 0, "i >= 0");
  if (!Assert (n >= 0, "n >= 0") || !validPlace || i >= Length () || n == 0) return;
  n = std::min (n, Length () - i);
  std::memmove (Text () + i, Data () + i + n, static_cast<std::size_t> (Length () - i - n));
  SetLength (static_cast<std::size_t> (Length () - n));
}

Str Str::ExtractLeft (int n) {
  Str left = Left (n);
  if (n > 0) Delete (0, n);
  return left;
}

Str operator+ (const Str& a, const Str& b) { return Str (a.Data (), b.Data ()); }
Str operator+ (const Str& a, const char* b) { return Str (a.Data (), b); }
Str operator+ (const char* a, const Str& b) { return Str (a, b.Data ()); }
Str operator+ (Str&& a, const Str& b) {
  a += b;
  return std::move (a);
}
Str operator+ (Str&& a, const char* b) {
  a += b;
  return std::move (a);
}

StrArray::StrArray (const StrArray& other) { Append (other); }

StrArray& StrArray::operator= (const StrArray& other) {
  if (this != &other) *this = StrArray (other);
  return *this;
}

StrArray& StrArray::operator= (StrArray&& other) noexcept {
  if (this != &other) {
    _Array = std::move (other._Array);
    other._Array.clear ();
    _Allocated = std::exchange (other._Allocated, 0);
  }
  return *this;
}

void StrArray::Reserve (int n) {
  if (n <= _Allocated) return;
  // Counted in 64 bits: a number near the limit is a refusal, not a wrap.
  const int64_t slots = static_cast<int64_t> (n) + 16;
  if (slots > std::numeric_limits<int32_t>::max ())
    throw Str ("Array of more than 2147483647 texts");
  if (static_cast<std::size_t> (n) > _Array.capacity ())
    _Array.reserve (std::max (static_cast<std::size_t> (slots), 2 * _Array.capacity ()));
  _Allocated = static_cast<int> (slots);
}

void StrArray::Add (const Str& text) {
  Reserve (Count () + 1);
  Assert (_Array.capacity () > 0, "_Array");
  _Array.push_back (std::make_unique<Str> (text));
}

void StrArray::Add (const char* text) { Add (Str (text)); }

void StrArray::Append (const StrArray& other) {
  const int count = other.Count ();
  if (count == 0) return;
  Reserve (Count () + count);
  // By index: the other array may be this one.
  for (int i = 0; i < count; i++) Add (other[i]);
}

void StrArray::RemoveAt (int index) {
  if (!Assert (index >= 0 && index < Count (), "Index < _Count")) return;
  _Array.erase (_Array.begin () + index);
}

Str& StrArray::operator[] (int index) {
  if (Assert (index >= 0 && index < Count (), "Index < _Count"))
    return *_Array[static_cast<std::size_t> (index)];
  thread_local Str nowhere;
  nowhere = Str ();
  return nowhere;
}

const Str& StrArray::operator[] (int index) const {
  static const Str nothing;
  return Assert (index >= 0 && index < Count (), "Index < _Count")
             ? *_Array[static_cast<std::size_t> (index)]
             : nothing;
}

int StrArray::Find (const Str& text) const noexcept {
  const auto found =
      std::find_if (_Array.begin (), _Array.end (),
                    [&] (const std::unique_ptr<Str>& each) { return *each == text; });
  return found == _Array.end () ? -1 : static_cast<int> (found - _Array.begin ());
}

void StrArray::Clear () noexcept { *this = StrArray (); }

bool operator== (const StrArray& a, const StrArray& b) noexcept {
  return std::equal (a._Array.begin (), a._Array.end (), b._Array.begin (), b._Array.end (),
                     [] (const auto& x, const auto& y) { return *x == *y; });
}

namespace {

class SilentEnvironment final : public Environment {};

constinit SilentEnvironment silent;
constinit std::atomic<Environment*> installed{nullptr};

}  // namespace

void Environment::LogMessage (const char*) {}
void Environment::ReportFileError (const char*, int, int, const char*) {}
void Environment::AssertFailed (const char*, const char*, int) {}

Environment* Environment::Get () noexcept {
  Environment* host = installed.load (std::memory_order_acquire);
  return host != nullptr ? host : &silent;
}

Environment* Environment::Install (Environment* host) noexcept {
  return installed.exchange (host, std::memory_order_acq_rel);
}

void AssertionFailed (const char* text, const char* file, int line) {
  const char* name = file;
  for (const char* c = name; *c != 0; c++)
    if (*c == '/' || *c == '\\') name = c + 1;
  Environment::Get ()->AssertFailed (text, name, line);
}

void LogNumber (const char* text, uint64_t number) {
  constexpr char digits[] = "0123456789abcdef";
  char hex[17] = {};
  char* first = hex + 16;
  do {
    *--first = digits[number & 15];
    number >>= 4;
  } while (number != 0);
  Str line (text, " 0x");
  line += first;
  Environment::Get ()->LogMessage (line.Data ());
}

}  // namespace clxml
