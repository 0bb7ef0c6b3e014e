// Strings of the library and its window on the host.
// Str and StrArray carry every text (UTF-8 by convention, handled as bytes); Environment is where
// logs and failed assertions go. Leans on nothing but the standard library.
#pragma once

#include <atomic>
#include <compare>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace clxml {

/// Character classes and case of the "C" locale; bytes of 128 and above belong to no class.
constexpr bool text_IsSpace (char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool text_IsDigit (char c) noexcept { return c >= '0' && c <= '9'; }
constexpr bool text_IsLetter (char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr char text_ToLower (char c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<char> (c + 32) : c;
}
constexpr char text_ToUpper (char c) noexcept {
  return c >= 'a' && c <= 'z' ? static_cast<char> (c - 32) : c;
}

/// An owned, zero-terminated 8-bit string. Bytes are UTF-8 by convention; the class treats them as
/// bytes, and letters, digits and case in the sense of the "C" locale whatever the process's is.
/// A zero byte is never part of it. Thrown as a value it is the library's error: a whole message.
/// Lengths and positions are in bytes; an operation that finds nothing answers Length ().
class Str {
 public:
  /// The empty string; all empty strings made by construction share one buffer.
  Str () noexcept { BecomeEmpty (); }
  Str (const Str& other) : Str (other.View (), Whole ()) {}
  /// Leaves the empty string behind.
  Str (Str&& other) noexcept { MoveFrom (other); }
  /// A copy of a zero-terminated text; null and "" give the empty string.
  Str (const char* text) : Str (std::string_view (text != nullptr ? text : ""), Whole ()) {}
  /// A copy of the bytes of a view up to its end or its first zero byte.
  explicit Str (std::string_view text) : Str (text.substr (0, UpToZero (text)), Whole ()) {}
  /// One character; 0 gives the empty string.
  explicit Str (char character);
  /// Two zero-terminated texts behind each other; either may be null.
  Str (const char* first, const char* second);
  ~Str () { Free (); }

  Str& operator= (const Str& other) {
    Assign (other.Data (), static_cast<std::size_t> (other.Length ()));
    return *this;
  }
  Str& operator= (Str&& other) noexcept {
    if (this != &other) {
      Free ();
      MoveFrom (other);
    }
    return *this;
  }
  /// Null and "" set the length to 0; a part of the string itself may be what is assigned.
  Str& operator= (const char* text) {
    Assign (text, text != nullptr ? std::strlen (text) : 0);
    return *this;
  }
  Str& operator= (std::string_view text) {
    Assign (text.data (), UpToZero (text));
    return *this;
  }
  /// Becomes a copy of n bytes, none of them zero: for readers that found the end themselves.
  void SetBytes (const char* bytes, std::size_t n) { Assign (bytes, n); }
  /// The same for 1 to ShortLength bytes of which ShortLength can be read, in no more than a few
  /// steps.
  void SetShort (const char* bytes, std::size_t n) {
    if (!IsInline () && HeapCapacity () > 0) return Assign (bytes, n);
    std::memcpy (_Store, bytes, ShortLength);
    _Store[n] = 0;
    _Store[Tag] = static_cast<char> (0x80 | n);
  }
  static constexpr std::size_t ShortLength = 14;
  /// Appends; the string itself, or a part of it, may be what is appended.
  Str& operator+= (const Str& other) {
    Append (other.Data (), static_cast<std::size_t> (other.Length ()));
    return *this;
  }
  Str& operator+= (const char* text) {
    if (text != nullptr) Append (text, std::strlen (text));
    return *this;
  }
  Str& operator+= (std::string_view text) {
    Append (text.data (), UpToZero (text));
    return *this;
  }
  /// Appends one character; 0 does nothing.
  Str& operator+= (char character) {
    if (character != 0) Append (&character, 1);
    return *this;
  }

  int Length () const noexcept { return IsInline () ? _Store[Tag] & 0x7F : HeapLength (); }
  /// The bytes and their terminator; never null, valid until the string changes or moves.
  const char* Data () const noexcept { return IsInline () ? _Store : HeapPointer (); }
  std::string_view View () const noexcept {
    return {Data (), static_cast<std::size_t> (Length ())};
  }
  bool IsEmpty () const noexcept { return *Data () == 0; }
  /// Equal lengths, and bytes that are equal or fold to the same lower-case letter.
  bool EqualInsensitive (const Str& other) const noexcept;

  /// Asserts "i < _Length" and "i >= 0"; outside the text it refers to a zero byte of its own.
  char operator[] (int i) const { return i >= 0 && i < Length () ? Data ()[i] : Outside (i); }
  char& operator[] (int i) { return i >= 0 && i < Length () ? Text ()[i] : Outside (i); }
  /// Sets one byte; asserts as operator[] and against 0 ("Character"), and then leaves the text as
  /// it is.
  void SetAt (int i, char character);
  /// Becomes count copies of character; asserts "Character" and "Count >= 0", and then leaves the
  /// text as it is.
  void Fill (char character, int count);
  /// Cuts to length bytes if it is longer; a negative length counts as 0.
  void Truncate (int length);
  void MakeLower ();
  /// Changes only the bytes from "a" to "z".
  void MakeUpper ();

  /// First position at or behind start, or Length (); a negative start counts as 0, a null text is
  /// found nowhere, an empty one at start.
  int Find (char character, int start = 0) const noexcept;
  int Find (const char* text, int start = 0) const noexcept;
  /// Last position, or Length ().
  int ReverseFind (char character) const noexcept;
  bool Contains (char character) const noexcept;

  void TrimLeft (char character);
  /// Removes leading bytes that stand in a zero-terminated set.
  void TrimLeft (const char* set);
  void TrimRight (char character);
  void Trim (char character);
  /// Asserts "Old && New".
  void Replace (char oldCharacter, char newCharacter);
  /// Replaces every non-overlapping occurrence, left to right; asserts "LengthOld > 0".
  void ReplaceAll (const char* oldText, const char* newText);

  /// The first n bytes; 0 gives empty, a negative n asserts "n > 0" and gives empty.
  Str Left (int n) const;
  /// The rest from i on; asserts "i >= 0".
  Str From (int i) const;
  /// Up to count bytes from start on; a negative start counts as 0, a negative count gives empty.
  Str Mid (int start, int count) const;
  /// Removes up to n bytes from i on; asserts "i >= 0" and "n >= 0".
  void Delete (int i, int n);
  /// Left (n), which is then deleted from the string.
  Str ExtractLeft (int n);

  friend bool operator== (const Str& a, const Str& b) noexcept { return a.View () == b.View (); }
  friend bool operator== (const Str& a, const char* b) noexcept {
    return a.View () == std::string_view (b ? b : "");
  }
  friend bool operator== (const Str& a, std::string_view b) noexcept { return a.View () == b; }
  friend std::strong_ordering operator<=> (const Str& a, const Str& b) noexcept {
    return a.View () <=> b.View ();
  }

 private:
  // The bytes of a view in front of its first zero byte.
  static std::size_t UpToZero (std::string_view text) noexcept {
    if (text.empty ()) return 0;
    const void* zero = std::memchr (text.data (), 0, text.size ());
    return zero == nullptr
               ? text.size ()
               : static_cast<std::size_t> (static_cast<const char*> (zero) - text.data ());
  }
  // Most texts of a survey are short: up to 14 bytes stand in the object itself, with a tag of 0x80
  // plus the length behind them. Of a longer one it holds pointer, length and capacity, whose
  // highest byte is the tag and below 0x80; the empty string is of this kind, with capacity 0.
  static constexpr int Tag = 15;
  static constexpr std::size_t InlineRoom = ShortLength;

  bool IsInline () const noexcept { return (_Store[Tag] & 0x80) != 0; }
  char* HeapPointer () const noexcept {
    char* pointer;
    std::memcpy (&pointer, _Store, sizeof pointer);
    return pointer;
  }
  int32_t HeapLength () const noexcept {
    int32_t length;
    std::memcpy (&length, _Store + 8, sizeof length);
    return length;
  }
  int32_t HeapCapacity () const noexcept {
    uint32_t capacity = 0;
    for (int i = 0; i < 4; i++)
      capacity |= static_cast<uint32_t> (static_cast<uint8_t> (_Store[12 + i])) << (8 * i);
    return static_cast<int32_t> (capacity);
  }
  void SetHeap (char* pointer, std::size_t length, std::size_t capacity) noexcept {
    static_assert (sizeof pointer <= 8);
    std::memcpy (_Store, &pointer, sizeof pointer);
    const auto count = static_cast<int32_t> (length);
    std::memcpy (_Store + 8, &count, sizeof count);
    for (int i = 0; i < 4; i++) _Store[12 + i] = static_cast<char> (capacity >> (8 * i));
  }
  char* Text () noexcept { return IsInline () ? _Store : HeapPointer (); }
  std::size_t Capacity () const noexcept {
    return IsInline () ? InlineRoom : static_cast<std::size_t> (HeapCapacity ());
  }
  // Sets the length, at most the capacity, and the terminator.
  void SetLength (std::size_t length) noexcept {
    if (IsInline ()) {
      _Store[length] = 0;
      _Store[Tag] = static_cast<char> (0x80 | length);
    } else {
      const auto count = static_cast<int32_t> (length);
      std::memcpy (_Store + 8, &count, sizeof count);
      HeapPointer ()[length] = 0;
    }
  }
  void BecomeEmpty () noexcept { SetHeap (_Empty, 0, 0); }
  void Free () noexcept {
    if (!IsInline () && HeapCapacity () > 0) std::free (HeapPointer ());
  }
  void MoveFrom (Str& other) noexcept {
    std::memcpy (_Store, other._Store, sizeof _Store);
    other.BecomeEmpty ();
  }
  // A text without a zero byte in it.
  struct Whole {};
  Str (std::string_view text, Whole) {
    if (text.empty ())
      BecomeEmpty ();
    else if (text.size () <= InlineRoom) {
      std::memcpy (_Store, text.data (), text.size ());
      _Store[text.size ()] = 0;
      _Store[Tag] = static_cast<char> (0x80 | text.size ());
    } else {
      TakeLong (text);
    }
  }
  void TakeLong (std::string_view text);
  // The bytes may be a part of the string itself.
  void Assign (const char* text, std::size_t length);
  void Append (const char* text, std::size_t length) {
    if (length == 0) return;
    const auto held = static_cast<std::size_t> (Length ());
    if (length > Capacity () - held) {
      GrowAndAppend (text, length);
      return;
    }
    std::memcpy (Text () + held, text, length);
    SetLength (held + length);
  }
  // Room for capacity bytes and the terminator.
  void Reserve (std::size_t capacity);
  void GrowAndAppend (const char* text, std::size_t length);
  // Asserts, and gives a zero byte that belongs to no text.
  char& Outside (int i) const;
  // Throws: a Str when the length is beyond the limit, std::bad_alloc when it is not.
  [[noreturn]] static void NoRoom (std::size_t length);

  static constexpr std::size_t MaximumLength = 0x7FFFFFFE;
  // Shared by all empty strings; only zeros are written to it.
  static inline constinit char _Empty[1] = {0};

  alignas (char*) char _Store[16] = {};
};

Str operator+ (const Str& a, const Str& b);
Str operator+ (const Str& a, const char* b);
Str operator+ (const char* a, const Str& b);
Str operator+ (Str&& a, const Str& b);
Str operator+ (Str&& a, const char* b);

/// A growable array of Str. Elements are owned and keep their address when the array grows.
class StrArray {
 public:
  StrArray () = default;
  StrArray (const StrArray& other);
  StrArray (StrArray&& other) noexcept
      : _Array (std::move (other._Array)), _Allocated (std::exchange (other._Allocated, 0)) {}
  StrArray& operator= (const StrArray& other);
  StrArray& operator= (StrArray&& other) noexcept;
  virtual ~StrArray () = default;

  /// Makes room for n elements: n + 16 slots when n is above what is allocated.
  void Reserve (int n);
  void Add (const Str& text);
  void Add (const char* text);
  void Append (const StrArray& other);
  /// Asserts "Index < _Count"; outside the array nothing happens.
  void RemoveAt (int index);
  /// Asserts "Index < _Count"; outside the array a string of its own, empty.
  Str& operator[] (int index);
  const Str& operator[] (int index) const;
  Str GetAt (int index) const { return (*this)[index]; }
  int Count () const noexcept { return static_cast<int> (_Array.size ()); }
  /// Slots allocated, as Reserve counts them.
  int Allocated () const noexcept { return _Allocated; }
  /// First index with the same bytes, or -1.
  int Find (const Str& text) const noexcept;
  void Clear () noexcept;
  friend bool operator== (const StrArray& a, const StrArray& b) noexcept;

 private:
  // The vector's own capacity grows by a factor, so that a million additions stay linear.
  std::vector<std::unique_ptr<Str>> _Array;
  int _Allocated = 0;
};

/// What the library asks of its host: a place for logs and assertions, and threads. Every
/// operation does nothing by default. One instance serves the process.
class Environment {
 public:
  constexpr Environment () = default;
  Environment (const Environment&) = delete;
  Environment& operator= (const Environment&) = delete;

  virtual bool IsThreadSafe () { return true; }
  /// The number of the calling thread, 0 to 29.
  virtual uint32_t GetCurrentThread () { return 0; }
  virtual uint32_t GetThreadValue () { return 0; }
  /// Called now and then on long work.
  virtual void Yield () {}
  /// One line for the log, zero-terminated, without line end.
  virtual void LogMessage (const char* text);
  /// A system call failed: the module's source, its line, the system's error number, the file.
  virtual void ReportFileError (const char* source, int line, int error, const char* file);
  /// An assertion failed: the condition's text, the source's base name, the line.
  virtual void AssertFailed (const char* condition, const char* source, int line);

  /// The instance in force; never null.
  static Environment* Get () noexcept;
  /// Puts a host's environment in force and answers the one before (null for the default). It is
  /// not owned and must outlive its use; null restores the default. Works before main.
  static Environment* Install (Environment* host) noexcept;

 protected:
  ~Environment () = default;
};

/// Hands a failed assertion to the Environment; Assert calls it. file may have folders in front.
void AssertionFailed (const char* text, const char* file, int line);

/// Reports a programming fault with the given text when the condition is false; answers the
/// condition, so that a caller whose memory depends on it can turn back:
/// `if (!Assert (i < n, "i < n")) return;`. Going on is the default: it is no guard by itself.
/// The place is the caller's own: what std::source_location gives, which clang 14 lacks.
inline bool Assert (bool condition, const char* text, const char* file = __builtin_FILE(),
                    int line = __builtin_LINE()) {
  if (!condition) [[unlikely]]
    AssertionFailed (text, file, line);
  return condition;
}

/// Logs the text, a blank, "0x" and the number in lower-case hexadecimal without leading zeros.
void LogNumber (const char* text, uint64_t number);

}  // namespace clxml
