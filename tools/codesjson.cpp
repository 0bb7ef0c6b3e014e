// A feature code library as JSON text: writing by hand, reading through a tree of values.
// Every value that is read is checked against its field in the file, and every object for keys that
// have no meaning. Uses the feature code library and nlohmann-json.
#include "codesjson.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <set>
#include <utility>

#include <nlohmann/json.hpp>

#include "Library/base/unistr.h"
#include "common.h"
#include "recordjson.h"

namespace clxml::tool {
namespace {

using Json = nlohmann::json;

constexpr std::string_view words[] = {"number", "text", "menu",     "date",
                                      "time",   "file", "separator"};
constexpr uint16_t NoDefault = 0xFFFF;

// Writing.

class LibraryWriter {
 public:
  explicit LibraryWriter (std::string& out) : out (out) {}

  void Library (std::string_view file, featureCode_Status status,
                const falFormat_Library& library) {
    out += '{';
    Text ("file", file);
    Number ("status", static_cast<uint32_t> (status));
    Number ("formatVersion", library.GetFormatVersion ());
    Number ("layoutVersion", library.LayoutVersion);
    Text ("name", library.GetLibraryName ().View ());
    Text ("text", library.LibraryText.View ());
    Number ("headerOption", library.HeaderOption);
    Number ("headerValue", library.HeaderValue);
    Key ("features");
    out += '[';
    for (int32_t i = 0; i < library.Count (); i++) {
      out += i ? ",\n" : "\n";
      Feature (*library.At (i));
    }
    out += library.Count () > 0 ? "\n]}\n" : "]}\n";
  }

 private:
  void Feature (const fclfile_Feature& feature) {
    out += '{';
    Text ("code", feature.Code.View ());
    Text ("description", feature.Description.View ());
    Number ("flags", feature.GetFlags ());
    Number ("kind", feature.Kind);
    Number ("kindOption", feature.KindOption);
    Number ("kindVariant", feature.KindVariant);
    Key ("attributes");
    out += '[';
    const fclfile_Attribute* attribute = nullptr;
    for (int32_t i = 0; feature.GetAttribute (i, &attribute); i++) {
      if (i) out += ',';
      out += '{';
      Text ("type", AttributeWord (attribute->GetType ()));
      Text ("name", attribute->Name.View ());
      Number ("usage", attribute->Usage);
      fclfile_VisitType (attribute->GetType (),
                         [&]<class A> (A*) { Rest (static_cast<const A&> (*attribute)); });
      out += '}';
    }
    out += "]}";
  }
  void Rest (const fclfile_NumericalAttribute& attribute) {
    Double ("number1", attribute.Number1);
    Double ("number2", attribute.Number2);
    Double ("number3", attribute.Number3);
    Number ("option", attribute.NumberOption);
    Number ("mark", attribute.NumberMark);
  }
  void Rest (const fclfile_TextAttribute& attribute) { Number ("option", attribute.TextOption); }
  void Rest (const fclfile_MenuAttribute& attribute) {
    Key ("entries");
    out += '[';
    for (int i = 0; i < attribute.EntryCount (); i++) {
      if (i) out += ',';
      AppendText (out, attribute.Entries[i].View ());
    }
    out += ']';
    Flag ("hasDefault", attribute.HasDefault);
    Number ("defaultIndex", attribute.DefaultIndex);
    Text ("default", attribute.DefaultEntry.View ());
  }
  void Rest (const fclfile_DateAttribute& attribute) {
    Number ("option", attribute.DateOption);
    Flag ("flag", attribute.DateFlag);
  }
  void Rest (const fclfile_TimeAttribute& attribute) {
    Flag ("flag1", attribute.TimeFlag1);
    Flag ("flag2", attribute.TimeFlag2);
  }
  void Rest (const fclfile_FileAttribute& attribute) { Number ("option", attribute.FileOption); }
  void Rest (const fclfile_SeparatorAttribute&) {}

  void Key (std::string_view name) {
    if (out.back () != '{') out += ',';
    out += '"';
    out += name;
    out += "\":";
  }
  void Text (std::string_view name, std::string_view value) {
    Key (name);
    AppendText (out, value);
  }
  void Number (std::string_view name, uint32_t value) {
    Key (name);
    out += std::to_string (value);
  }
  void Double (std::string_view name, double value) {
    Key (name);
    AppendShortest (out, value);
  }
  void Flag (std::string_view name, bool value) {
    Key (name);
    out += value ? "true" : "false";
  }

  std::string& out;
};

// Reading.

struct Input {
  const std::string& source;
  std::vector<std::string>& warnings;

  [[noreturn]] void Refuse (const std::string& place, const std::string& reason) const {
    throw Refusal{STATUS_Input, source + ": " + (place.empty () ? "" : place + ": ") + reason};
  }
};

// A value for a message, not longer than a line has room for.
std::string Shown (const Json& value) {
  constexpr std::size_t longest = 40;
  if (value.is_array ()) return "an array";
  if (value.is_object ()) return "an object";
  std::string text = value.dump (-1, ' ', true);
  if (text.size () > longest) text = text.substr (0, longest) + "...";
  return text;
}

std::string Item (const std::string& list, std::size_t i) {
  return list + "[" + std::to_string (i) + "]";
}

// A text of a field that is so many bytes wide in the file.
Str TextOf (const Input& input, const Json& value, const std::string& place, int width) {
  if (!value.is_string ()) input.Refuse (place, Shown (value) + " is not a text");
  const auto& given = value.get_ref<const std::string&> ();
  if (given.find ('\0') != std::string::npos)
    input.Refuse (place, "a text must not have a character 0");
  // The library's decoding knows sequences of up to three bytes; no character of the others is in
  // the legacy set.
  std::string known;
  for (std::size_t i = 0; i < given.size (); i++) {
    const bool isLong = static_cast<unsigned char> (given[i]) >= 0xF0;
    known += isLong ? '?' : given[i];
    if (isLong) i += 3;
  }
  const Str text (known.c_str ());
  const Str legacy = Utf8ToLegacy (text);
  if (LegacyToUtf8 (legacy) != given)
    input.warnings.push_back (
        place + ": characters that the file cannot hold become \"?\": " + Shown (value));
  if (legacy.Length () > width)
    input.warnings.push_back (place + ": cut to " + std::to_string (width) +
                              " characters: " + Shown (value));
  return text;
}

// An object whose keys are taken one by one; what is left at the end has no meaning.
class ObjectReader {
 public:
  ObjectReader (const Input& input, const Json& object, std::string place)
      : _Input (input), _Object (object), _Place (std::move (place)) {
    if (!object.is_object ()) Refuse (Shown (object) + " is not an object");
  }

  std::string PlaceOf (const char* key) const { return _Place.empty () ? key : _Place + "." + key; }
  [[noreturn]] void Refuse (const std::string& reason) const { _Input.Refuse (_Place, reason); }
  [[noreturn]] void Refuse (const char* key, const std::string& reason) const {
    _Input.Refuse (PlaceOf (key), reason);
  }

  /// The value of a key, or null.
  const Json* Take (const char* key) {
    const auto found = _Object.find (key);
    if (found == _Object.end ()) return nullptr;
    _Taken.insert (key);
    return &*found;
  }
  const Json& Need (const char* key) {
    const Json* value = Take (key);
    if (!value) Refuse (std::string ("the key \"") + key + "\" is missing");
    return *value;
  }
  /// A whole number from 0 to the largest of T; value stays when the key is left out.
  template <class T>
  bool Whole (const char* key, T& value) {
    const Json* found = Take (key);
    if (!found) return false;
    constexpr uint64_t largest = std::numeric_limits<T>::max ();
    if (!found->is_number_integer () || *found < 0 || found->get<uint64_t> () > largest)
      Refuse (key, Shown (*found) + " is not a whole number from 0 to " + std::to_string (largest));
    value = static_cast<T> (found->get<uint64_t> ());
    return true;
  }
  void Double (const char* key, double& value) {
    const Json* found = Take (key);
    if (!found) return;
    if (!found->is_number ()) Refuse (key, Shown (*found) + " is not a number");
    value = found->get<double> ();
    // A zero with a minus sign and no decimals is read as an integer.
    if (found->is_number_integer () && !found->is_number_unsigned () && value == 0.0) value = -0.0;
  }
  void Flag (const char* key, bool& value) {
    const Json* found = Take (key);
    if (!found) return;
    if (!found->is_boolean ()) Refuse (key, Shown (*found) + " is not true or false");
    value = found->get<bool> ();
  }
  void Text (const char* key, int width, Str& value) {
    if (const Json* found = Take (key)) value = TextOf (_Input, *found, PlaceOf (key), width);
  }
  /// The items of a list, none when it is left out.
  const Json& List (const char* key) {
    static const Json none = Json::array ();
    const Json* found = Take (key);
    if (!found) return none;
    if (!found->is_array ()) Refuse (key, Shown (*found) + " is not an array");
    if (found->size () > FCLFILE_MaximumCount)
      Refuse (key, std::to_string (found->size ()) + " are more than " +
                       std::to_string (FCLFILE_MaximumCount));
    return *found;
  }
  void Finish () const {
    for (const auto& [key, value] : _Object.items ())
      if (!_Taken.contains (key)) Refuse ("the key " + Shown (Json (key)) + " is not known");
  }

 private:
  const Input& _Input;
  const Json& _Object;
  std::string _Place;
  std::set<std::string, std::less<>> _Taken;
};

void ReadRest (const Input&, ObjectReader& object, fclfile_NumericalAttribute& attribute) {
  object.Double ("number1", attribute.Number1);
  object.Double ("number2", attribute.Number2);
  object.Double ("number3", attribute.Number3);
  object.Whole ("option", attribute.NumberOption);
  object.Whole ("mark", attribute.NumberMark);
}

void ReadRest (const Input&, ObjectReader& object, fclfile_TextAttribute& attribute) {
  object.Whole ("option", attribute.TextOption);
}

void ReadRest (const Input& input, ObjectReader& object, fclfile_MenuAttribute& attribute) {
  const Json& entries = object.List ("entries");
  for (std::size_t i = 0; i < entries.size (); i++)
    attribute.AddEntry (
        TextOf (input, entries[i], Item (object.PlaceOf ("entries"), i), FCLFILE_NameSize));
  object.Flag ("hasDefault", attribute.HasDefault);
  const bool hasIndex = object.Whole ("defaultIndex", attribute.DefaultIndex);
  const Json* entry = object.Take ("default");
  if (entry && !entry->is_string ()) object.Refuse ("default", Shown (*entry) + " is not a text");

  // A new menu has the index 0; a menu of a file without a default has 65535.
  if (!attribute.HasDefault) {
    if (hasIndex && attribute.DefaultIndex != 0 && attribute.DefaultIndex != NoDefault)
      object.Refuse ("defaultIndex", "a menu without a default must have 0 or 65535");
    if (entry && !entry->get_ref<const std::string&> ().empty ())
      object.Refuse ("default", "a menu without a default must have an empty text");
    return;
  }
  const std::size_t index = attribute.DefaultIndex;
  const Json chosen = index < entries.size () ? entries[index] : Json ("");
  if (entry && *entry != chosen)
    object.Refuse ("default",
                   Shown (*entry) + " is not the entry with the index " + std::to_string (index));
  if (index < entries.size ()) attribute.DefaultEntry = attribute.Entries[static_cast<int> (index)];
}

void ReadRest (const Input&, ObjectReader& object, fclfile_DateAttribute& attribute) {
  object.Whole ("option", attribute.DateOption);
  object.Flag ("flag", attribute.DateFlag);
}

void ReadRest (const Input&, ObjectReader& object, fclfile_TimeAttribute& attribute) {
  object.Flag ("flag1", attribute.TimeFlag1);
  object.Flag ("flag2", attribute.TimeFlag2);
}

void ReadRest (const Input&, ObjectReader& object, fclfile_FileAttribute& attribute) {
  object.Whole ("option", attribute.FileOption);
}

void ReadRest (const Input&, ObjectReader&, fclfile_SeparatorAttribute&) {}

std::unique_ptr<fclfile_Attribute> ReadAttribute (const Input& input, const Json& value,
                                                  const std::string& place) {
  ObjectReader object (input, value, place);
  const Json& word = object.Need ("type");
  uint16_t type = 0;
  while (type < std::size (words) && word != words[type]) type++;
  if (type == std::size (words)) object.Refuse ("type", Shown (word) + " is not an attribute type");
  std::unique_ptr<fclfile_Attribute> attribute = fclfile_MakeAttribute (type);
  object.Text ("name", FCLFILE_NameSize, attribute->Name);
  uint16_t usage = 0;
  object.Whole ("usage", usage);
  attribute->Usage = usage;
  fclfile_VisitType (type,
                     [&]<class A> (A*) { ReadRest (input, object, static_cast<A&> (*attribute)); });
  object.Finish ();
  return attribute;
}

// Flags and kind fields. Either may be left out and follows from the other.
void ReadKind (ObjectReader& object, fclfile_Feature& feature) {
  fclfile_Feature given;
  uint32_t flags = 0;
  const bool hasFlags = object.Whole ("flags", flags);
  const struct {
    const char* key;
    uint32_t fclfile_Feature::*field;
    bool isGiven;
  } fields[] = {
      {"kind", &fclfile_Feature::Kind, object.Whole ("kind", given.Kind)},
      {"kindOption", &fclfile_Feature::KindOption, object.Whole ("kindOption", given.KindOption)},
      {"kindVariant", &fclfile_Feature::KindVariant,
       object.Whole ("kindVariant", given.KindVariant)}};
  if (!hasFlags) flags = given.GetFlags ();
  feature.SetFlags (flags);
  if (feature.GetFlags () != flags)
    object.Refuse (
        "flags", std::to_string (flags) + " would become " + std::to_string (feature.GetFlags ()));
  for (const auto& [key, field, isGiven] : fields)
    if (isGiven && given.*field != feature.*field)
      object.Refuse (
          key, std::to_string (given.*field) +
                   (hasFlags ? " does not fit the flags " + std::to_string (flags) + ", which mean "
                             : std::string (" would become ")) +
                   std::to_string (feature.*field));
}

std::unique_ptr<fclfile_Feature> ReadFeature (const Input& input, const Json& value,
                                              const std::string& place) {
  ObjectReader object (input, value, place);
  auto feature = std::make_unique<fclfile_Feature> ();
  object.Need ("code");
  object.Text ("code", FCLFILE_CodeSize, feature->Code);
  object.Text ("description", FCLFILE_DescriptionSize, feature->Description);
  ReadKind (object, *feature);
  const Json& attributes = object.List ("attributes");
  for (std::size_t i = 0; i < attributes.size (); i++)
    feature->AddAttribute (
        ReadAttribute (input, attributes[i], Item (object.PlaceOf ("attributes"), i)));
  object.Finish ();
  return feature;
}

// Looks for a key that an object has twice, which the tree of values would not show. Not the
// parser's own callback: that takes time with the square of a list's length.
class KeyChecker final : public nlohmann::json_sax<Json> {
 public:
  explicit KeyChecker (const Input& input) : _Input (input) {}

  bool null () override { return true; }
  bool boolean (bool) override { return true; }
  bool number_integer (number_integer_t) override { return true; }
  bool number_unsigned (number_unsigned_t) override { return true; }
  bool number_float (number_float_t, const string_t&) override { return true; }
  bool string (string_t&) override { return true; }
  bool binary (binary_t&) override { return true; }
  bool start_object (std::size_t) override { return _Keys.emplace_back (), true; }
  bool end_object () override { return _Keys.pop_back (), true; }
  bool start_array (std::size_t) override { return true; }
  bool end_array () override { return true; }
  bool key (string_t& name) override {
    if (!_Keys.back ().insert (name).second)
      _Input.Refuse ("", "the key " + Shown (Json (name)) + " occurs twice in one object");
    return true;
  }
  // The second reading reports it.
  bool parse_error (std::size_t, const std::string&, const Json::exception&) override {
    return false;
  }

 private:
  const Input& _Input;
  std::vector<std::set<std::string>> _Keys;
};

// The tree of values; refuses what is not one JSON value, and a key that an object has twice.
Json Parsed (const Input& input, std::string_view json) {
  KeyChecker checker (input);
  Json::sax_parse (json, &checker);
  try {
    return Json::parse (json);
  } catch (const Json::exception& fault) {
    // The parser's own number and name of the fault come first, in brackets.
    const std::string_view what = fault.what ();
    const std::size_t bracket = what.find ("] ");
    input.Refuse ("", std::string (bracket == what.npos ? what : what.substr (bracket + 2)));
  }
}

}  // namespace

std::string_view AttributeWord (AttributeType type) { return words[type]; }

void AppendShortest (std::string& out, double value) {
  if (!std::isfinite (value)) {
    out += "null";
    return;
  }
  char digits[32];
  const char* const end = std::to_chars (digits, digits + sizeof digits, value).ptr;
  const std::string_view text (digits, static_cast<std::size_t> (end - digits));
  // Many readers take "-0" for an integer, which has no sign.
  out += text == "-0" ? std::string_view ("-0.0") : text;
}

void AppendLibrary (std::string& out, std::string_view file, featureCode_Status status,
                    const falFormat_Library& library) {
  LibraryWriter (out).Library (file, status, library);
}

void ReadLibrary (const std::string& source, std::string_view json, falFormat_Library& library,
                  std::vector<std::string>& warnings) {
  const Input input{source, warnings};
  const Json value = Parsed (input, json);
  ObjectReader object (input, value, "");
  if (const Json* file = object.Take ("file"); file && !file->is_string ())
    object.Refuse ("file", Shown (*file) + " is not a text");
  uint32_t status = 0;
  object.Whole ("status", status);
  if (status != 0) object.Refuse ("status", "only a library that was read clean can be written");
  uint8_t formatVersion = library.GetFormatVersion ();
  object.Whole ("formatVersion", formatVersion);
  if (formatVersion != 3 && formatVersion != 4)
    object.Refuse ("formatVersion", std::to_string (formatVersion) + " is not 3 or 4");
  library.SetFormatVersion (formatVersion);
  object.Whole ("layoutVersion", library.LayoutVersion);
  if (library.LayoutVersion != 4)
    object.Refuse ("layoutVersion", std::to_string (library.LayoutVersion) + " is not 4");
  Str name;
  object.Text ("name", FCLFILE_LibraryNameSize, name);
  library.SetLibraryName (name);
  object.Text ("text", FCLFILE_LibraryTextSize, library.LibraryText);
  object.Whole ("headerOption", library.HeaderOption);
  object.Whole ("headerValue", library.HeaderValue);
  const Json& features = object.List ("features");
  for (std::size_t i = 0; i < features.size (); i++)
    library.Append (ReadFeature (input, features[i], Item ("features", i)));
  object.Finish ();
}

}  // namespace clxml::tool
