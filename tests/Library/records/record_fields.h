// The fields of a record, for tests.
// As bytes, and as a list of dotted names with their values as text. Leans on record_support.
#pragma once

#include <charconv>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Library/records/dbRecord.h"
#include "Library/records/record_support.h"

namespace clxml::testing {

/// The bytes of type, id, time and an empty note.
inline constexpr int HeadLength = 15;

/// What stands behind the head of a record with an empty note.
inline Bytes FieldBytes (const dbRecord_Class& record) {
  Bytes body = BodyOf (record);
  body.erase (body.begin (), body.begin () + HeadLength);
  return body;
}

/// Lists what it visits: numbers in decimal, doubles with the digits they need and "null", texts in
/// quotes; lists as name[index].
class FieldLister final : public FieldVisitor {
 public:
  std::vector<std::pair<std::string, std::string>> fields;  ///< in file order
  std::map<std::string_view, const Enumeration*> tables;    ///< by name

  /// The fields of a record.
  static std::vector<std::pair<std::string, std::string>> Of (const dbRecord_Class& record) {
    FieldLister lister;
    record.Look (lister);
    return std::move (lister.fields);
  }
  /// The value of a field; "absent" when there is none of that name.
  static std::string Value (const dbRecord_Class& record, std::string_view name) {
    for (const auto& [field, value] : Of (record))
      if (field == name) return value;
    return "absent";
  }

  void U8 (const char* name, uint8_t& value) override { Number (name, value); }
  void Bool (const char* name, bool& value) override { Number (name, value); }
  void U16 (const char* name, uint16_t& value) override { Number (name, value); }
  void I16 (const char* name, int16_t& value) override { Number (name, value); }
  void U32 (const char* name, uint32_t& value) override { Number (name, value); }
  void I32 (const char* name, int32_t& value) override { Number (name, value); }
  void I64 (const char* name, int64_t& value) override { Number (name, value); }
  void F64 (const char* name, double& value) override {
    char text[32];
    char* end = std::to_chars (text, text + sizeof text, value).ptr;
    Add (name, maths_IsNull (value) ? "null" : std::string (text, end));
  }
  void Text (const char* name, Str& value) override { Quote (name, value); }
  void Id (const char* name, DBID& value) override { Number (name, value.value); }
  void Characters (const char* name, Derivation& value) override {
    Add (name, {'\'', value.first, value.second, '\''});
  }
  void Classification (const char* name, db_PointClassification& value) override {
    Number (name, value.value);
  }
  void Enum (const char* name, void* place, int width, bool isSigned,
             const Enumeration& table) override {
    tables[table.name] = &table;
    switch (width) {
      case 1:
        return Number (name, *static_cast<uint8_t*> (place));
      case 2:
        return isSigned ? Number (name, *static_cast<int16_t*> (place))
                        : Number (name, *static_cast<uint16_t*> (place));
      default:
        return Number (name, *static_cast<int32_t*> (place));
    }
  }
  void PaddedText (const char* name, Str& value, int) override { Quote (name, value); }
  void Bytes (const char* name, std::vector<uint8_t>& value, uint32_t) override {
    Add (name, std::to_string (value.size ()) + " bytes");
  }
  void Features (const char* name, FeatureArray& value) override {
    Add (name, value.ToString ().Data ());
  }
  void BeginGroup (const char* name) override { path.push_back (std::string (name) + "."); }
  void EndGroup () override { path.pop_back (); }
  void CountedTexts (const char* name, StrArray& value, uint32_t) override { Texts (name, value); }
  void TerminatedTexts (const char* name, StrArray& value) override { Texts (name, value); }
  void Slots (const char* name, StrArray& value) override { Texts (name, value); }
  uint32_t BeginList (const char* name, uint32_t count, CountForm, int) override {
    lists.push_back ({name, 0});
    return count;
  }
  void BeginItem () override {
    auto& [name, index] = lists.back ();
    path.push_back (name + "[" + std::to_string (index++) + "].");
  }
  void EndItem () override { path.pop_back (); }
  void EndList () override { lists.pop_back (); }
  void Nested (const char* name, dbRecord_Class& record) override {
    BeginGroup (name);
    record.Fields (*this);
    EndGroup ();
  }

 private:
  void Add (const char* name, std::string value) {
    std::string whole;
    for (const std::string& part : path) whole += part;
    fields.emplace_back (whole + name, std::move (value));
  }
  template <class T>
  void Number (const char* name, T value) {
    Add (name, std::to_string (static_cast<int64_t> (value)));
  }
  void Quote (const char* name, const Str& value) {
    Add (name, std::string ("'") + value.Data () + "'");
  }
  void Texts (const char* name, const StrArray& value) {
    for (int i = 0; i < value.Count (); i++)
      if (!value[i].IsEmpty ())
        Quote ((std::string (name) + "[" + std::to_string (i) + "]").c_str (), value[i]);
  }

  std::vector<std::string> path;
  std::vector<std::pair<std::string, int>> lists;
};

}  // namespace clxml::testing
