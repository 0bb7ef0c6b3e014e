// Strings of the library and its window on the host.
// Str and StrArray carry every text (UTF-8 by convention, handled as bytes); Environment is where
// logs and failed assertions go. Leans on nothing but the standard library.
#pragma once

#include <atomic>
#include <compare>
#include <cstdint>
#include <memory>
#include <source_location>
#include <string_view>
#include <vector>

namespace clxml {

/// An owned, zero-terminated 8-bit string. Bytes are UTF-8 by convention; the class treats them as
/// bytes, and letters, digits and case in the sense of the "C" locale whatever the process's is.
/// A zero byte is never part of it. Thrown as a value it is the library's error: a whole message.
/// Lengths and positions are in bytes; an operation that finds nothing answers Length ().
class Str {
 public:
  /// The empty string; all empty strings made by construction share one buffer.
  Str () noexcept;
  Str (const Str& other);
  Str (Str&& other) noexcept;
  /// A copy of a zero-terminated text; null and "" give the empty string.
  Str (const char* text);
  /// A copy of the bytes of a view up to its end or its first zero byte.
  explicit Str (std::string_view text);
  /// One character; 0 gives the empty string.
  explicit Str (char character);
  /// Two zero-terminated texts behind each other; either may be null.
  Str (const char* first, const char* second);
  ~Str ();

  Str& operator= (const Str& other);
  Str& operator= (Str&& other) noexcept;
  Str& operator= (const char* text);
  Str& operator= (std::string_view text);
  /// Appends; the string itself, or a part of it, may be what is appended.
  Str& operator+= (const Str& other);
  Str& operator+= (const char* text);
  Str& operator+= (std::string_view text);
  /// Appends one character; 0 does nothing.
  Str& operator+= (char character);

  int Length () const noexcept { return _Length; }
  /// The bytes and their terminator; never null.
  const char* Data () const noexcept { return _Pointer; }
  std::string_view View () const noexcept {
    return {_Pointer, static_cast<std::size_t> (_Length)};
  }
  bool IsEmpty () const noexcept { return _Length == 0; }
  /// Equal lengths, and bytes that are equal or fold to the same lower-case letter.
  bool EqualInsensitive (const Str& other) const noexcept;

  /// Asserts "i < _Length" and "i >= 0"; outside the text it refers to a zero byte of its own.
  char operator[] (int i) const noexcept;
  char& operator[] (int i) noexcept;
  /// Sets one byte; asserts as operator[] and against 0, and then leaves the text as it is.
  void SetAt (int i, char character);
  /// Becomes count copies of character.
  void Fill (char character, int count);
  /// Cuts to length bytes if it is longer.
  void Truncate (int length);
  void MakeLower ();
  /// Changes only the bytes from "a" to "z".
  void MakeUpper ();

  /// First position at or behind start, or Length ().
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
  void Assign (std::string_view text);
  void Append (std::string_view text);
  void Grow (int64_t capacity);

  char* _Pointer;          // the shared empty buffer, or _Capacity + 1 bytes on the heap
  int32_t _Length = 0;
  int32_t _Capacity = 0;   // 0 with the shared buffer
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
  StrArray (StrArray&& other) noexcept = default;
  StrArray& operator= (const StrArray& other);
  StrArray& operator= (StrArray&& other) noexcept = default;
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
  /// Slots allocated.
  int Allocated () const noexcept { return _Allocated; }
  /// First index with the same bytes, or -1.
  int Find (const Str& text) const noexcept;
  void Clear () noexcept;
  friend bool operator== (const StrArray& a, const StrArray& b) noexcept;

 private:
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

/// Reports a programming fault with the given text when the condition is false; answers the
/// condition, so that a caller whose memory depends on it can turn back:
/// `if (!Assert (i < n, "i < n")) return;`. Going on is the default: it is no guard by itself.
inline bool Assert (bool condition, const char* text,
                    const std::source_location& where = std::source_location::current ()) {
  void AssertionFailed (const char* text, const std::source_location& where);
  if (!condition) [[unlikely]]
    AssertionFailed (text, where);
  return condition;
}

/// Logs the text, a blank, "0x" and the number in lower-case hexadecimal without leading zeros.
void LogNumber (const char* text, uint64_t number);

}  // namespace clxml
