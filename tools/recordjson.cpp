// Records as JSON text: the walk over the fields that writes.
// Text is built by hand, because a tree of values for each record costs more than reading the job
// does. Leans on dbRecord, dbPoints and the enumerations.
#include "recordjson.h"

#include <charconv>
#include <cmath>

#include "Library/records/dbEnum.h"
#include "Library/records/dbPoints.h"
#include "Library/records/dbRecord.h"

namespace clxml::tool {
namespace {

constexpr char hexDigits[] = "0123456789abcdef";

template <class T>
void AppendNumber (std::string& out, T value) {
  char digits[32];
  const auto end = std::to_chars (digits, digits + sizeof digits, value).ptr;
  out.append (digits, end);
}

// The bytes of the UTF-8 sequence at the front of a text, 1 to 4; 0 when there is none, and then
// `bad` is the length of what stands for one replacement character: the longest start of a
// sequence, or one byte.
std::size_t SequenceLength (std::string_view text, std::size_t& bad) {
  const auto byte = [&] (std::size_t i) { return static_cast<unsigned char> (text[i]); };
  bad = 1;
  const unsigned first = byte (0);
  if (first < 0x80) return 1;
  std::size_t length = 0;
  unsigned low = 0x80, high = 0xBF;  // what the second byte may be
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3;
    if (first == 0xE0) low = 0xA0;   // no overlong form
    if (first == 0xED) high = 0x9F;  // no surrogates
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4;
    if (first == 0xF0) low = 0x90;
    if (first == 0xF4) high = 0x8F;  // not above U+10FFFF
  } else {
    return 0;
  }
  for (std::size_t i = 1; i < length; i++) {
    if (i == text.size () || byte (i) < low || byte (i) > high) {
      bad = i;
      return 0;
    }
    low = 0x80;
    high = 0xBF;
  }
  return length;
}

class RecordWriter final : public FieldVisitor {
 public:
  explicit RecordWriter (std::string& out) : out (out) {}

  void Record (const dbRecord_Class& record) {
    out += '{';
    first = true;
    Key ("type");
    AppendText (out, ClassName (record.GetType ()));
    Key ("id");
    AppendNumber (out, record.RecordId.value);
    Key ("time");
    AppendDouble (out, record.TimeStamp);
    Key ("note");
    AppendText (out, record.Note.View ());
    switch (record.GetType ()) {
      case DATABASE_ObservationRecord:
      case DATABASE_LineRecord:
      case DATABASE_ArcRecord: {
        const auto& tagged = static_cast<const dbRecordWithFeatures_Class&> (record);
        Key ("features");
        FeatureList (tagged.Features);
        Key ("Description1");
        AppendText (out, tagged.Description1.View ());
        Key ("Description2");
        AppendText (out, tagged.Description2.View ());
        break;
      }
      default:
        break;
    }
    record.Look (*this);
    if (const db_Observation* observation = db_Observation::From (&record)) {
      Key ("measurement");
      if (const db_Measurement* measurement = observation->Measurement ())
        Record (*measurement);
      else
        out += "null";
    }
    out += '}';
    first = false;
  }

 private:
  void U8 (const char* name, uint8_t& value) override { Number (name, unsigned{value}); }
  void Bool (const char* name, bool& value) override {
    Key (name);
    out += value ? "true" : "false";
  }
  void U16 (const char* name, uint16_t& value) override { Number (name, value); }
  void I16 (const char* name, int16_t& value) override { Number (name, value); }
  void U32 (const char* name, uint32_t& value) override { Number (name, value); }
  void I32 (const char* name, int32_t& value) override { Number (name, value); }
  void I64 (const char* name, int64_t& value) override { Number (name, value); }
  void F64 (const char* name, double& value) override {
    Key (name);
    AppendDouble (out, value);
  }
  void Text (const char* name, Str& value) override {
    Key (name);
    AppendText (out, value.View ());
  }
  void Id (const char* name, DBID& value) override { Number (name, value.value); }
  void Characters (const char* name, Derivation& value) override {
    const char pair[] = {value.first, value.second};
    Key (name);
    AppendText (out, std::string_view (pair, sizeof pair));
  }
  void Classification (const char* name, db_PointClassification& value) override {
    Key (name);
    const char* word = value.ToText ();
    if (*word)
      AppendText (out, word);
    else
      AppendNumber (out, value.value);
  }
  void Enum (const char* name, void* place, int width, bool isSigned,
             const Enumeration& table) override {
    Key (name);
    const int32_t number = Stored (place, width, isSigned);
    if (!table.isFlags) {
      if (const char* word = FindEnumText (table, number))
        AppendText (out, word);
      else
        AppendNumber (out, number);
      return;
    }
    const std::size_t start = out.size ();
    uint32_t rest = static_cast<uint32_t> (number);
    out += '[';
    for (const Enumerator& row : table.rows) {
      const uint32_t bits = static_cast<uint32_t> (row.number);
      if (!bits || (rest & bits) != bits) continue;
      if (out.back () != '[') out += ',';
      AppendText (out, row.name);
      rest &= ~bits;
    }
    out += ']';
    if (!rest) return;
    out.resize (start);
    AppendNumber (out, number);
  }
  void PaddedText (const char* name, Str& value, int) override { Text (name, value); }
  void Bytes (const char* name, std::vector<uint8_t>& value, uint32_t) override {
    Key (name);
    out += '"';
    for (const uint8_t byte : value) {
      out += hexDigits[byte >> 4];
      out += hexDigits[byte & 15];
    }
    out += '"';
  }
  void Features (const char*, FeatureArray& value) override {
    Key ("features");
    FeatureList (value);
  }
  void BeginGroup (const char* name) override {
    Key (name);
    out += '{';
    first = true;
  }
  void EndGroup () override {
    out += '}';
    first = false;
  }
  void CountedTexts (const char* name, StrArray& value, uint32_t) override {
    TextList (name, value);
  }
  void TerminatedTexts (const char* name, StrArray& value) override { TextList (name, value); }
  void Slots (const char* name, StrArray& value) override {
    Key (name);
    out += '{';
    first = true;
    for (int slot = 0; slot < value.Count (); slot++) {
      if (value[slot].IsEmpty ()) continue;
      Key (std::to_string (slot).c_str ());
      AppendText (out, value[slot].View ());
    }
    out += '}';
    first = false;
  }
  uint32_t BeginList (const char* name, uint32_t count, CountForm, int) override {
    Key (name);
    out += '[';
    first = true;
    return count;
  }
  void BeginItem () override {
    if (!first) out += ',';
    out += '{';
    first = true;
  }
  void EndItem () override {
    out += '}';
    first = false;
  }
  void EndList () override {
    out += ']';
    first = false;
  }
  void Nested (const char* name, dbRecord_Class& record) override {
    Key (name);
    Record (record);
  }

  static int32_t Stored (const void* place, int width, bool isSigned) {
    switch (width) {
      case 1:
        return isSigned ? *static_cast<const int8_t*> (place)
                        : *static_cast<const uint8_t*> (place);
      case 2:
        return isSigned ? *static_cast<const int16_t*> (place)
                        : *static_cast<const uint16_t*> (place);
      default:
        return *static_cast<const int32_t*> (place);
    }
  }
  // Names of fields are identifiers: nothing in them needs an escape.
  void Key (const char* name) {
    if (!first) out += ',';
    first = false;
    out += '"';
    out += name;
    out += "\":";
  }
  template <class T>
  void Number (const char* name, T value) {
    Key (name);
    AppendNumber (out, value);
  }
  void TextList (const char* name, const StrArray& list) {
    Key (name);
    out += '[';
    for (int i = 0; i < list.Count (); i++) {
      if (i) out += ',';
      AppendText (out, list[i].View ());
    }
    out += ']';
  }
  void FeatureList (const FeatureArray& features) {
    out += '[';
    for (int i = 0; i < features.Count (); i++) {
      const Feature& feature = features.At (i);
      if (i) out += ',';
      out += "{\"code\":";
      AppendText (out, feature.Code.View ());
      out += ",\"suffix\":";
      AppendText (out, feature.Suffix.View ());
      out += ",\"attributes\":[";
      for (int j = 0; j < feature.Count (); j++) {
        if (j) out += ',';
        AttributeObject (feature.At (j));
      }
      out += "]}";
    }
    out += ']';
  }
  void AttributeObject (const Attribute& attribute) {
    static constexpr std::string_view words[] = {"number", "text", "menu",     "date",
                                                 "time",   "file", "separator"};
    out += "{\"name\":";
    AppendText (out, attribute.Name.View ());
    out += ",\"type\":";
    if (attribute.Type < std::size (words))
      AppendText (out, words[attribute.Type]);
    else
      AppendNumber (out, attribute.Type);
    switch (attribute.Type) {
      case ATTRIBUTE_Number:
      case ATTRIBUTE_Date:
      case ATTRIBUTE_Time:
        out += ",\"value\":";
        AppendDouble (out, attribute.Number);
        break;
      case ATTRIBUTE_Menu:
        out += ",\"index\":";
        AppendNumber (out, attribute.MenuIndex);
        [[fallthrough]];
      case ATTRIBUTE_Text:
      case ATTRIBUTE_File:
        out += ",\"value\":";
        AppendText (out, attribute.Text.View ());
        break;
      default:
        break;
    }
    out += '}';
  }

  std::string& out;
  bool first = true;  // nothing stands yet in the object or list at hand
};

}  // namespace

void AppendDouble (std::string& out, double value) {
  if (maths_IsNull (value)) {
    out += "null";
  } else if (std::isfinite (value)) {
    AppendNumber (out, value);
  } else {
    out += std::isnan (value) ? "\"nan\"" : value > 0 ? "\"inf\"" : "\"-inf\"";
  }
}

void AppendText (std::string& out, std::string_view text) {
  out += '"';
  std::size_t plain = 0;  // what is not yet copied
  const auto replace = [&] (std::size_t at, std::size_t length, std::string_view by) {
    out.append (text, plain, at - plain);
    out += by;
    plain = at + length;
  };
  for (std::size_t i = 0; i < text.size ();) {
    const unsigned char byte = static_cast<unsigned char> (text[i]);
    std::size_t length = 1;
    if (byte == '"') {
      replace (i, 1, "\\\"");
    } else if (byte == '\\') {
      replace (i, 1, "\\\\");
    } else if (byte == '\n') {
      replace (i, 1, "\\n");
    } else if (byte == '\r') {
      replace (i, 1, "\\r");
    } else if (byte == '\t') {
      replace (i, 1, "\\t");
    } else if (byte < 0x20 || byte == 0x7F) {
      const char escape[] = {'\\', 'u', '0', '0', hexDigits[byte >> 4], hexDigits[byte & 15]};
      replace (i, 1, std::string_view (escape, sizeof escape));
    } else if (byte >= 0x80) {
      std::size_t bad = 0;
      length = SequenceLength (text.substr (i), bad);
      if (!length) {
        replace (i, bad, "\xEF\xBF\xBD");
        length = bad;
      }
    }
    i += length;
  }
  out.append (text, plain);
  out += '"';
}

void AppendRecord (std::string& out, const dbRecord_Class& record) {
  RecordWriter (out).Record (record);
}

}  // namespace clxml::tool
