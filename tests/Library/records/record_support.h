// What the tests of records share.
// Bytes of a body and back, and a walk that fills every field of any record with odd values from a
// seed. Leans on the records alone.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Library/records/dbRecord.h"

namespace clxml::testing {

using Bytes = std::vector<uint8_t>;

inline Bytes BodyOf (const dbRecord_Class& record) {
  OutBuffer out (ENDIAN_Little);
  record.Save (out);
  return Bytes (out.Data (), out.Data () + out.Length ());
}

inline Buffer BufferOf (const Bytes& bytes) {
  if (bytes.empty ()) return Buffer (ENDIAN_Little);
  return Buffer (static_cast<int> (bytes.size ()), ENDIAN_Little, bytes.data ());
}

/// The record of a body, or null; the body must be used up.
inline std::unique_ptr<dbRecord_Class> RecordOfBody (const Bytes& bytes) {
  int offset = 0;
  auto record = LoadRecord (BufferOf (bytes), offset);
  if (record && offset != static_cast<int> (bytes.size ())) return nullptr;
  return record;
}

/// Hexadecimal digits, and texts in single quotes: "0100 'ab' 00". Blanks mean nothing outside.
inline Bytes Hex (std::string_view text) {
  Bytes bytes;
  std::string digits;
  bool quoted = false;
  for (char c : text) {
    if (c == '\'') {
      quoted = !quoted;
    } else if (quoted) {
      bytes.push_back (static_cast<uint8_t> (c));
    } else if (c != ' ' && c != '\n') {
      digits += c;
      if (digits.size () == 2) {
        bytes.push_back (static_cast<uint8_t> (std::stoi (digits, nullptr, 16)));
        digits.clear ();
      }
    }
  }
  return bytes;
}

/// Fills all fields of a record, head included, from a seed. With a place, the field at that place
/// of the walk gets another value than it would have, and all others the same.
class Filler final : public FieldVisitor {
 public:
  explicit Filler (uint32_t seed, int other = -1) : random (seed), odd (other) {}

  void Fill (dbRecord_Class& record) {
    record.RecordId.value = static_cast<uint32_t> (random ());
    record.TimeStamp = Double ();
    record.Note = Word ();
    if (auto* featured = dynamic_cast<dbRecordWithFeatures_Class*> (&record)) {
      Features ("", featured->Features);
      Text ("", featured->Description1);
      Text ("", featured->Description2);
    }
    record.Fields (*this);
  }
  /// Fields met so far.
  int Count () const { return met; }

  void U8 (const char*, uint8_t& value) override { Integer (value); }
  void Bool (const char*, bool& value) override { value = (random () % 2 != 0) != IsOdd (); }
  void U16 (const char* name, uint16_t& value) override { Counted (name, value); }
  void I16 (const char*, int16_t& value) override { Integer (value); }
  void U32 (const char* name, uint32_t& value) override { Counted (name, value); }
  void I32 (const char* name, int32_t& value) override { Counted (name, value); }
  void I64 (const char*, int64_t& value) override { Integer (value); }
  void F64 (const char*, double& value) override {
    value = Double ();
    if (IsOdd ()) value = 12345.678;
  }
  void Text (const char*, Str& value) override {
    value = Word ();
    if (IsOdd ()) value += "!";
  }
  void Id (const char*, DBID& value) override { Integer (value.value); }
  void Characters (const char*, Derivation& value) override {
    Integer (value.first);
    Integer (value.second);
  }
  void Classification (const char*, db_PointClassification& value) override {
    int16_t number;
    Integer (number);
    value.value = number;
  }
  void Enum (const char*, void* place, int width, bool, const Enumeration&) override {
    uint32_t number;
    Integer (number);
    std::memcpy (place, &number, static_cast<std::size_t> (width));
  }
  void PaddedText (const char* name, Str& value, int width) override {
    Text (name, value);
    value.Truncate (width);
  }
  void Bytes (const char*, std::vector<uint8_t>& value, uint32_t) override {
    value.resize (random () % 9);
    for (uint8_t& byte : value) Integer (byte);
  }
  void Features (const char*, FeatureArray& value) override {
    value = FeatureArray ();
    for (auto i = random () % 4; i > 0; i--) {
      Feature feature;
      feature.Code = Word ();
      feature.Suffix = Word ();
      feature.AddNumber (Word (), Double ());
      feature.AddText (Word (), Word ());
      feature.AddMenu (Word (), static_cast<uint16_t> (random ()), Word ());
      feature.AddDate (Word (), Double ());
      feature.AddTime (Word (), Double ());
      feature.AddFile (Word (), Word ());
      feature.AddSeparator (Word ());
      Attribute unknown;
      unknown.Type = 4711;
      feature.Add (unknown);
      value.Append (feature);
    }
    if (IsOdd ()) value.Append (Feature ());
  }
  void BeginGroup (const char*) override {}
  void EndGroup () override {}
  void CountedTexts (const char*, StrArray& value, uint32_t count) override {
    value.Clear ();
    for (uint32_t i = 0; i < count; i++) value.Add (Word ());
    if (IsOdd ()) count == 0 ? value.Add ("odd") : (void)(value[0] += "!");
  }
  void TerminatedTexts (const char*, StrArray& value) override {
    value.Clear ();
    for (auto i = random () % 4; i > 0; i--) value.Add (Str ("x") + Word ());
    if (IsOdd ()) value.Add ("odd");
  }
  void Slots (const char*, StrArray& value) override {
    value.Clear ();
    for (int i = 0; i < 256; i++) value.Add (random () % 50 == 0 || i == 255 ? Word () : Str ());
    if (IsOdd ()) value[17] += "odd";
  }
  uint32_t BeginList (const char*, uint32_t count, CountForm form, int) override {
    if (form == CountForm::Before) return count;
    return static_cast<uint32_t> (random () % 4) + IsOdd ();
  }
  void BeginItem () override {}
  void EndItem () override {}
  void EndList () override {}
  void Nested (const char*, dbRecord_Class& record) override {
    record.TimeStamp = Double ();
    record.Note = Word ();
    record.Fields (*this);
  }
  bool IsReading () const override { return true; }

 private:
  bool IsOdd () { return met++ == odd; }
  template <class T>
  void Integer (T& value) {
    value = static_cast<T> (random ());
    if (IsOdd ()) value = static_cast<T> (value ^ 1);
  }
  // The number of entries that follow somewhere; the others may be anything.
  template <class T>
  void Counted (std::string_view name, T& value) {
    Integer (value);
    if (name.starts_with ("NumberOf")) value = static_cast<T> (value & 3);
  }
  double Double () {
    constexpr double odd[] = {0.0,
                              -0.0,
                              MATHS_Null,
                              3.14159265358979323846,
                              -1e-310,
                              std::numeric_limits<double>::infinity (),
                              std::numeric_limits<double>::quiet_NaN (),
                              6378137.25};
    return odd[random () % std::size (odd)];
  }
  Str Word () {
    constexpr std::string_view words[] = {
        "",         "a",
        "P 1",      "\xC3\xA9\xE2\x82\xAC",
        "\x01\xFF", "a text that is longer than any short buffer is"};
    return Str (words[random () % std::size (words)]);
  }

  std::mt19937 random;
  int odd;
  int met = 0;
};

}  // namespace clxml::testing
