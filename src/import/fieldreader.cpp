// The readers of an element's fields: what texts mean, and what is thrown when they mean nothing.
// Every number is read as the C functions read it, whatever the process's locale. Leans on text.
#include "import/fieldreader.h"

#include "Kernel/text.h"

namespace clxml {

Str InvalidField (std::string_view typeWord, std::string_view tag, std::string_view value) {
  Str message ("Invalid ");
  message += typeWord;
  message += " name=\"";
  message += tag;
  message += "\" with value=\"";
  message += value;
  message += "\"";
  return message;
}

uint32_t ParseHex (std::string_view tag, std::string_view text) {
  if (!text.starts_with ("0x")) throw InvalidField ("hex number (missing 0x prefix)", tag, text);
  uint32_t number = 0;
  for (const char c : text.substr (2)) {
    const int digit = text_HexDigit (c);
    if (digit < 0) throw InvalidField ("hex number", tag, text);
    number = number << 4 | static_cast<uint32_t> (digit);
  }
  return number;
}

void CheckRec (const xml_element& element, std::string_view recName) {
  const xml_attribute* rec = element.FindAttribute ("rec");
  if (rec && rec->value == recName) return;
  Str message (rec ? "wrong rec sttribute: " : "missing rec=\"");
  if (rec) {
    message += rec->value;
    message += " instead of ";
    message += recName;
  } else {
    message += recName;
    message += "\"";
  }
  throw message;
}

double ReadTimeStamp (const xml_element& element) {
  const std::string_view text = element.AttributeValue ("TimeStamp");
  return text.empty () ? MATHS_Null : text_ToDouble (text);
}

Str CodeText (std::string_view text) {
  Str code (text);
  if (code.Contains ('\x1F')) code.ReplaceAll ("\x1F", "\xC2\xB7");
  return code;
}

void FieldReader::Note (Str& field) const {
  field = std::string_view ();
  if (!_Element) return;
  for (const xml_element* child = _Element->firstChild; child; child = child->nextSibling) {
    if (child->name != "Note") continue;
    field += child->value;
    field += "\r\n";
  }
}

void FieldReader::String (std::string_view tag, Str& field, Versions versions) const {
  if (versions.Hold (_Version)) field = Text (tag);
}

void FieldReader::Code (std::string_view tag, Str& field, Versions versions) const {
  if (versions.Hold (_Version)) field = CodeText (Text (tag));
}

void FieldReader::DoubleOr (std::string_view tag, double& field, double absent,
                            Versions versions) const {
  if (!versions.Hold (_Version)) return;
  const xml_element* child = Child (tag);
  if (!child) {
    field = absent;
  } else {
    field = child->value.empty () ? MATHS_Null : text_ToDouble (child->value);
  }
}

int32_t FieldReader::IntNumber (std::string_view tag, int32_t absent) const {
  const xml_element* child = Child (tag);
  return child ? text_ToInt (child->value) : absent;
}

uint32_t FieldReader::IntOrHexNumber (std::string_view tag, uint32_t absent) const {
  const xml_element* child = Child (tag);
  if (!child) return absent;
  if (child->value.starts_with ("0x")) return ParseHex (tag, child->value);
  return static_cast<uint32_t> (text_ToInt (child->value));
}

uint32_t FieldReader::HexNumber (std::string_view tag) const {
  const std::string_view text = Text (tag);
  return text.empty () ? 0 : ParseHex (tag, text);
}

void FieldReader::Int64 (std::string_view tag, int64_t& field, Versions versions) const {
  if (versions.Hold (_Version)) field = static_cast<uint32_t> (text_ToInt (Text (tag)));
}

bool FieldReader::BoolValue (std::string_view tag, std::string_view text) {
  const auto is = [text] (std::string_view word) {
    if (text.size () != word.size ()) return false;
    for (std::size_t i = 0; i < word.size (); i++)
      if (text_ToLower (text[i]) != word[i]) return false;
    return true;
  };
  if (is ("true")) return true;
  if (!is ("false")) throw InvalidField ("boolean", tag, text);
  return false;
}

int32_t FieldReader::EnumNumber (std::string_view tag, std::string_view text,
                                 const Enumeration& table, int32_t whenEmpty) {
  if (text.empty () && whenEmpty != fieldreader::RaiseWhenEmpty) return whenEmpty;
  int32_t number = 0;
  if (!EnumFromText (table, text, number)) throw InvalidField (table.name, tag, text);
  return number;
}

int32_t FieldReader::FlagsNumber (std::string_view tag, const Enumeration& table) const {
  int32_t number = 0;
  std::string_view unknown;
  if (!FlagsFromText (table, Text (tag), number, unknown))
    throw InvalidField (table.name, tag, unknown);
  return number;
}

void FieldReader::DerivationCode (std::string_view tag, Derivation& field) const {
  const std::string_view text = Text (tag);
  if (text.empty ()) {
    field = Derivation ();
  } else if (text.size () == 2) {
    field = {text[0], text[1]};
  } else {
    throw Str ("Derivation code is not 2 characters");
  }
}

void FieldReader::Items (std::string_view tag, StrArray& items, StrArray* indexes) const {
  items.Clear ();
  if (indexes) indexes->Clear ();
  const xml_element* list = Child (tag);
  for (const xml_element* item = list ? list->firstChild : nullptr; item && item->name == "item";
       item = item->nextSibling) {
    items.Add (Str (item->value));
    if (indexes) indexes->Add (Str (item->AttributeValue ("index")));
  }
}

void FieldReader::Descriptions (Str& description1, Str& description2) const {
  const FieldReader in = Group ("Descriptions");
  if (!in.IsPresent ()) return;
  in.String ("Description1", description1);
  in.String ("Description2", description2);
}

}  // namespace clxml
