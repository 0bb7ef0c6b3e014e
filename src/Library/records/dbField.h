// The walk over a record's fields.
// A record lists its fields once, in file order; saving, loading, comparing and every other view of
// a record are visitors over that one list. Leans on str, buffer and maths.
#pragma once

#include <compare>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include "numerics/maths.h"
#include "str.h"

namespace clxml {

class dbRecord_Class;
class FeatureArray;

/// A record identifier: the running count of a job's records, 1 for the first; 0 is none.
struct DBID {
  uint32_t value = 0;
  friend constexpr bool operator== (DBID, DBID) = default;
  friend constexpr auto operator<=> (DBID, DBID) = default;
};
inline constexpr DBID NODBID{};

/// Two characters that say how a record came about; stored in 16 bits, the first in the low byte.
struct Derivation {
  char first = ' ';
  char second = ' ';
  friend constexpr bool operator== (Derivation, Derivation) = default;
};

/// One name of an enumeration and its number. Several names may share a number.
struct Enumerator {
  std::string_view name;
  int32_t number;
};

/// An enumeration of the exchange format: its name and its rows in the order of matching.
struct Enumeration {
  std::string_view name;
  std::span<const Enumerator> rows;
  bool isFlags = false;  ///< the value is an OR of the rows' numbers
};

/// The table of an enumerated type; specialised for each in dbEnum.h.
template <class E>
const Enumeration& EnumerationOf ();

/// The search class of a point, -1 to 8: how much a coordinate of this origin is worth.
class db_PointClassification {
 public:
  enum Class : int32_t {
    None = -1,
    Check = 0,
    BackSight = 1,
    Stakeout = 2,
    Construction = 3,
    Normal = 4,
    MTA = 5,
    Adjusted = 6,
    Averaged = 7,
    Control = 8,
    MinValue = -1,
    MaxValue = 8,
  };
  constexpr db_PointClassification () = default;
  /// Asserts "i >= MinValue && i <= MaxValue"; a number outside is kept as it is.
  explicit db_PointClassification (int32_t i);
  constexpr db_PointClassification (Class c) noexcept : value (c) {}

  int32_t value = Check;
  friend constexpr bool operator== (const db_PointClassification& a,
                                    const db_PointClassification& b) {
    return a.value == b.value;
  }
  /// True if a point of this class is at least as good as one of class `filter`. The classes rise
  /// in this order: None, Check, Stakeout, Construction, then BackSight, Normal and MTA alike,
  /// Adjusted, Averaged, Control. A number outside the range covers None only and is covered by
  /// nothing.
  bool Covers (db_PointClassification filter) const noexcept;
  /// The name of the class ("Normal"); empty for a number outside the range.
  const char* ToText () const noexcept;
  /// Sets the class of that name and returns true. An empty text leaves the class unchanged and
  /// returns true; any other text leaves it unchanged and returns false.
  bool FromText (std::string_view name) noexcept;
  /// The class of a number 0 to 15 of older exchange files, in which N and N + 8 are the same.
  static db_PointClassification FromLegacy (int number) noexcept;
  /// The older number; 8 is added when flag is false. Asserts "this->value != None".
  int ToLegacy (bool flag) const;
  /// The same for the older set of classes, in which Construction to Averaged are one.
  int ToOldLegacy (bool flag) const;
};

/// What can be done to the fields of a record, by their stored form. A visitor that reads into
/// fields checks all it reads; one that only looks never writes back.
class FieldVisitor {
 public:
  /// How the number of entries of a list is stored; Before: as a field of its own that was visited
  /// before, and is what BeginList is given.
  enum class CountForm { I16, U16, I32, U32, Before };

  virtual ~FieldVisitor () = default;
  virtual void U8 (const char* name, uint8_t& value) = 0;
  virtual void Bool (const char* name, bool& value) = 0;  ///< one byte, 0 or 1
  virtual void U16 (const char* name, uint16_t& value) = 0;
  virtual void I16 (const char* name, int16_t& value) = 0;
  virtual void U32 (const char* name, uint32_t& value) = 0;
  virtual void I32 (const char* name, int32_t& value) = 0;
  virtual void I64 (const char* name, int64_t& value) = 0;
  virtual void F64 (const char* name, double& value) = 0;
  virtual void Text (const char* name, Str& value) = 0;               ///< zero-terminated
  virtual void Id (const char* name, DBID& value) = 0;                ///< 4 bytes
  virtual void Characters (const char* name, Derivation& value) = 0;  ///< 2 bytes
  virtual void Classification (const char* name, db_PointClassification& value) = 0;  ///< i16
  /// An enumerated field; width is 1, 2 or 4 bytes, isSigned that of its stored form. place holds
  /// the number in exactly that form.
  virtual void Enum (const char* name, void* place, int width, bool isSigned,
                     const Enumeration& table) = 0;
  /// Text in a fixed width, padded with zero bytes.
  virtual void PaddedText (const char* name, Str& value, int width) = 0;
  /// Raw bytes; their number was visited before as a field of its own.
  virtual void Bytes (const char* name, std::vector<uint8_t>& value, uint32_t length) = 0;
  virtual void Features (const char* name, FeatureArray& value) = 0;
  /// Fields up to the matching EndGroup belong to the group.
  virtual void BeginGroup (const char* name) = 0;
  virtual void EndGroup () = 0;
  /// Texts behind each other; their number was visited before as a field of its own.
  virtual void CountedTexts (const char* name, StrArray& value, uint32_t count) = 0;
  /// Texts behind each other, ended by an empty one. Empty entries are left out.
  virtual void TerminatedTexts (const char* name, StrArray& value) = 0;
  /// File names in slots 0 to 255, empty ones unused: the count of used slots (u32), then slot
  /// (u32) and name of each in slot order. value has 256 entries or none.
  virtual void Slots (const char* name, StrArray& value) = 0;
  /// A list of entries: answers how many entries to visit, which for a reading visitor is the
  /// number read, checked against the bytes that remain (each entry takes at least least bytes).
  /// Each entry stands between BeginItem and EndItem, the list ends with EndList.
  virtual uint32_t BeginList (const char* name, uint32_t count, CountForm form, int least) = 0;
  virtual void BeginItem () = 0;
  virtual void EndItem () = 0;
  virtual void EndList () = 0;
  /// The whole body of another record.
  virtual void Nested (const char* name, dbRecord_Class& record) = 0;
  /// True for a visitor that fills the fields: lists are then made to the size BeginList gave.
  virtual bool IsReading () const { return false; }
  /// False once a reading visitor met a fault; what follows reads as nothing.
  virtual bool IsGood () const { return true; }
};

/// A field whose type is an enumeration stored in another width than usual.
template <class Stored, class E>
requires std::is_enum_v<E>
void VisitFieldAs (FieldVisitor& v, const char* name, E& value) {
  Stored stored = static_cast<Stored> (value);
  v.Enum (name, &stored, static_cast<int> (sizeof (Stored)), std::is_signed_v<Stored>,
          EnumerationOf<E> ());
  if (v.IsReading ()) value = static_cast<E> (stored);
}

inline void VisitField (FieldVisitor& v, const char* name, uint8_t& f) { v.U8 (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, bool& f) { v.Bool (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, uint16_t& f) { v.U16 (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, int16_t& f) { v.I16 (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, uint32_t& f) { v.U32 (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, int32_t& f) { v.I32 (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, int64_t& f) { v.I64 (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, double& f) { v.F64 (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, Str& f) { v.Text (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, DBID& f) { v.Id (name, f); }
inline void VisitField (FieldVisitor& v, const char* name, Derivation& f) {
  v.Characters (name, f);
}
inline void VisitField (FieldVisitor& v, const char* name, db_PointClassification& f) {
  v.Classification (name, f);
}
inline void VisitField (FieldVisitor& v, const char* name, FeatureArray& f) {
  v.Features (name, f);
}
template <class T>
void VisitField (FieldVisitor& v, const char* name, T& f) {
  if constexpr (std::is_enum_v<T>) {
    using Stored = std::underlying_type_t<T>;
    v.Enum (name, &f, static_cast<int> (sizeof (Stored)), std::is_signed_v<Stored>,
            EnumerationOf<T> ());
  } else {  // a group with a list of its own
    v.BeginGroup (name);
    f.Fields (v);
    v.EndGroup ();
  }
}

/// A list of groups with its count in front; an entry takes at least `least` bytes.
template <class T>
void VisitList (FieldVisitor& v, const char* name, std::vector<T>& list,
                FieldVisitor::CountForm form, int least) {
  const uint32_t count = v.BeginList (name, static_cast<uint32_t> (list.size ()), form, least);
  if (v.IsReading ()) list.clear ();
  for (uint32_t i = 0; i < count && v.IsGood (); i++) {
    if (v.IsReading ()) list.emplace_back ();
    v.BeginItem ();
    list[i].Fields (v);
    v.EndItem ();
  }
  v.EndList ();
}

}  // namespace clxml

/// One line of a record's list of fields: the member is visited under its own name.
#define FIELD(member) ::clxml::VisitField (v, #member, member)
/// The same for an enumeration stored as `stored`.
#define FIELD_AS(stored, member) ::clxml::VisitFieldAs<stored> (v, #member, member)
