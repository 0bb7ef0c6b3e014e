// The walks that make, read and compare the stored form of a record.
// What Save, Load and IsEqual of all classes come down to. Leans on dbField and dbReader.
#pragma once

#include <cstdint>
#include <vector>

#include "Library/records/dbField.h"
#include "Library/records/dbReader.h"

namespace clxml {

/// The bits of a number in a form in which equal values have equal bits: there is one zero, one
/// null and one NaN.
int64_t ComparableBits (double value) noexcept;

/// Appends the fields to a buffer. Only looks at them.
class SaveVisitor final : public FieldVisitor {
 public:
  explicit SaveVisitor (OutBuffer& buffer) : _Out (buffer) {}

  void U8 (const char* name, uint8_t& value) override;
  void Bool (const char* name, bool& value) override;
  void U16 (const char* name, uint16_t& value) override;
  void I16 (const char* name, int16_t& value) override;
  void U32 (const char* name, uint32_t& value) override;
  void I32 (const char* name, int32_t& value) override;
  void I64 (const char* name, int64_t& value) override;
  void F64 (const char* name, double& value) override;
  void Text (const char* name, Str& value) override;
  void Id (const char* name, DBID& value) override;
  void Characters (const char* name, Derivation& value) override;
  void Classification (const char* name, db_PointClassification& value) override;
  void Enum (const char* name, void* place, int width, bool isSigned,
             const Enumeration& table) override;
  void PaddedText (const char* name, Str& value, int width) override;
  /// Writes exactly length bytes; asserts "length == Data.size ()" and fills up with zero bytes.
  void Bytes (const char* name, std::vector<uint8_t>& value, uint32_t length) override;
  void Features (const char* name, FeatureArray& value) override;
  void BeginGroup (const char*) override {}
  void EndGroup () override {}
  /// Writes exactly count texts, empty ones where the list is shorter.
  void CountedTexts (const char* name, StrArray& value, uint32_t count) override;
  void TerminatedTexts (const char* name, StrArray& value) override;
  void Slots (const char* name, StrArray& value) override;
  /// A list with more entries than its count can hold asserts "list too long" and is cut.
  uint32_t BeginList (const char* name, uint32_t count, CountForm form, int least) override;
  void BeginItem () override {}
  void EndItem () override {}
  void EndList () override {}
  void Nested (const char* name, dbRecord_Class& record) override;

 private:
  OutBuffer& _Out;
};

/// Fills the fields from a buffer, checking every length and count against the bytes that remain.
class LoadVisitor final : public FieldVisitor {
 public:
  explicit LoadVisitor (BodyReader& in) : _In (in) {}

  void U8 (const char* name, uint8_t& value) override;
  void Bool (const char* name, bool& value) override;
  void U16 (const char* name, uint16_t& value) override;
  void I16 (const char* name, int16_t& value) override;
  void U32 (const char* name, uint32_t& value) override;
  void I32 (const char* name, int32_t& value) override;
  void I64 (const char* name, int64_t& value) override;
  void F64 (const char* name, double& value) override;
  void Text (const char* name, Str& value) override;
  void Id (const char* name, DBID& value) override;
  void Characters (const char* name, Derivation& value) override;
  void Classification (const char* name, db_PointClassification& value) override;
  void Enum (const char* name, void* place, int width, bool isSigned,
             const Enumeration& table) override;
  void PaddedText (const char* name, Str& value, int width) override;
  void Bytes (const char* name, std::vector<uint8_t>& value, uint32_t length) override;
  void Features (const char* name, FeatureArray& value) override;
  void BeginGroup (const char*) override {}
  void EndGroup () override {}
  void CountedTexts (const char* name, StrArray& value, uint32_t count) override;
  void TerminatedTexts (const char* name, StrArray& value) override;
  void Slots (const char* name, StrArray& value) override;
  uint32_t BeginList (const char* name, uint32_t count, CountForm form, int least) override;
  void BeginItem () override {}
  void EndItem () override {}
  void EndList () override {}
  void Nested (const char* name, dbRecord_Class& record) override;
  bool IsReading () const override { return true; }
  bool IsGood () const override { return _In.IsGood (); }

 private:
  BodyReader& _In;
};

/// Compares the fields of two records of one type: walks the first, which is kept in mind, then
/// the second. Texts, lists and nested records must be members of the record, not temporaries of
/// its walk, as the first record's are looked at again during the second walk.
class CompareVisitor final : public FieldVisitor {
 public:
  CompareVisitor () { _Seen.reserve (48); }
  /// The fields that follow are those of the second record.
  void Turn () { _Second = true; }
  /// After both walks: they met the same values.
  bool IsEqual () const { return _Equal && _Next == _Seen.size (); }

  void U8 (const char* name, uint8_t& value) override;
  void Bool (const char* name, bool& value) override;
  void U16 (const char* name, uint16_t& value) override;
  void I16 (const char* name, int16_t& value) override;
  void U32 (const char* name, uint32_t& value) override;
  void I32 (const char* name, int32_t& value) override;
  void I64 (const char* name, int64_t& value) override;
  void F64 (const char* name, double& value) override;
  void Text (const char* name, Str& value) override;
  void Id (const char* name, DBID& value) override;
  void Characters (const char* name, Derivation& value) override;
  void Classification (const char* name, db_PointClassification& value) override;
  void Enum (const char* name, void* place, int width, bool isSigned,
             const Enumeration& table) override;
  void PaddedText (const char* name, Str& value, int width) override;
  void Bytes (const char* name, std::vector<uint8_t>& value, uint32_t length) override;
  void Features (const char* name, FeatureArray& value) override;
  void BeginGroup (const char*) override {}
  void EndGroup () override {}
  void CountedTexts (const char* name, StrArray& value, uint32_t count) override;
  void TerminatedTexts (const char* name, StrArray& value) override;
  void Slots (const char* name, StrArray& value) override;
  uint32_t BeginList (const char* name, uint32_t count, CountForm form, int least) override;
  void BeginItem () override {}
  void EndItem () override {}
  void EndList () override {}
  void Nested (const char* name, dbRecord_Class& record) override;

 private:
  void Number (int64_t value);
  template <class T, class Same>
  void Object (T& value, Same same);

  std::vector<uint64_t> _Seen;  // numbers as bits, objects as addresses
  std::size_t _Next = 0;
  bool _Second = false;
  bool _Equal = true;
};

}  // namespace clxml
