// Feature codes of a record and their attributes.
// Stored form: count (i32), then for each feature suffix, code, count of attributes (i32) and the
// attributes: type (u16), name, and by type number (f64), text, or menu index (u16) and text.
// Numbers are in the byte order of the buffer, texts end with a zero byte. Leans on dbReader.
#include "Library/records/dbFeatures.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Kernel/text.h"
#include "Library/records/dbVisitors.h"

namespace clxml {

namespace {

// The fewest bytes of a feature and of an attribute.
constexpr int LeastFeature = 6;
constexpr int LeastAttribute = 3;

// The middle dot U+00B7 as UTF-8.
constexpr std::string_view MiddleDot = "\xC2\xB7";

bool HasNumber (uint16_t type) {
  return type == ATTRIBUTE_Number || type == ATTRIBUTE_Date || type == ATTRIBUTE_Time;
}
bool HasText (uint16_t type) {
  return type == ATTRIBUTE_Text || type == ATTRIBUTE_Menu || type == ATTRIBUTE_File;
}

void SaveAttribute (const Attribute& attribute, OutBuffer& buffer) {
  buffer.PutUInt16 (attribute.Type);
  buffer.PutString (attribute.Name);
  if (HasNumber (attribute.Type)) buffer.PutDouble (attribute.Number);
  if (attribute.Type == ATTRIBUTE_Menu) buffer.PutUInt16 (attribute.MenuIndex);
  if (HasText (attribute.Type)) buffer.PutString (attribute.Text);
}

void LoadAttribute (Attribute& attribute, BodyReader& reader) {
  reader.Number (attribute.Type);
  reader.Text (attribute.Name);
  if (HasNumber (attribute.Type)) reader.Number (attribute.Number);
  if (attribute.Type == ATTRIBUTE_Menu) reader.Number (attribute.MenuIndex);
  if (HasText (attribute.Type)) reader.Text (attribute.Text);
}

Attribute MakeAttribute (AttributeType type, const Str& name) {
  Attribute attribute;
  attribute.Type = type;
  attribute.Name = name;
  return attribute;
}

}  // namespace

bool operator== (const Attribute& a, const Attribute& b) {
  return a.Type == b.Type && a.MenuIndex == b.MenuIndex &&
         ComparableBits (a.Number) == ComparableBits (b.Number) && a.Name == b.Name &&
         a.Text == b.Text;
}

void Attributes::AddNumber (const Str& name, double value) {
  Attribs.push_back (MakeAttribute (ATTRIBUTE_Number, name));
  Attribs.back ().Number = value;
}
void Attributes::AddText (const Str& name, const Str& value) {
  Attribs.push_back (MakeAttribute (ATTRIBUTE_Text, name));
  Attribs.back ().Text = value;
}
void Attributes::AddMenu (const Str& name, uint16_t index, const Str& item) {
  Attribs.push_back (MakeAttribute (ATTRIBUTE_Menu, name));
  Attribs.back ().MenuIndex = index;
  Attribs.back ().Text = item;
}
void Attributes::AddDate (const Str& name, double value) {
  Attribs.push_back (MakeAttribute (ATTRIBUTE_Date, name));
  Attribs.back ().Number = value;
}
void Attributes::AddTime (const Str& name, double value) {
  Attribs.push_back (MakeAttribute (ATTRIBUTE_Time, name));
  Attribs.back ().Number = value;
}
void Attributes::AddFile (const Str& name, const Str& file) {
  Attribs.push_back (MakeAttribute (ATTRIBUTE_File, name));
  Attribs.back ().Text = file;
}
void Attributes::AddSeparator (const Str& name) {
  Attribs.push_back (MakeAttribute (ATTRIBUTE_Separator, name));
}

const Attribute& Attributes::At (int pos) const {
  static const Attribute outside;
  const bool isInside =
      Assert (pos >= 0, "pos >= 0") && Assert (pos < Count (), "pos < this->NumAttribs");
  return isInside ? Attribs[static_cast<std::size_t> (pos)] : outside;
}

bool Attributes::Get (int pos, Attribute& attribute) const {
  if (pos < 0 || pos >= Count ()) return false;
  attribute = Attribs[static_cast<std::size_t> (pos)];
  return true;
}

void Attributes::ClearMarks () {
  for (Attribute& attribute : Attribs) attribute.Mark.fill (0);
}

void Attributes::Save (OutBuffer& buffer) const {
  buffer.PutInt32 (Count ());
  for (const Attribute& attribute : Attribs) SaveAttribute (attribute, buffer);
}

void Attributes::Load (BodyReader& reader) {
  Attribs.clear ();
  int32_t count = 0;
  reader.Number (count);
  if (!reader.IsGood ()) return;
  if (reader.HasRoomFor (count, LeastAttribute)) Attribs.reserve (static_cast<std::size_t> (count));
  int32_t read = 0;
  while (read < count && reader.IsGood ()) {
    LoadAttribute (Attribs.emplace_back (), reader);
    if (reader.IsGood ())
      read++;
    else
      Attribs.pop_back ();
  }
  Assert (read == count, "AttribCountCheck == this->NumAttribs");
}

bool operator== (const Feature& a, const Feature& b) {
  return a.Code == b.Code && a.Suffix == b.Suffix &&
         static_cast<const Attributes&> (a) == static_cast<const Attributes&> (b);
}

bool FeatureArray::IsEqual (const FeatureArray& other) const { return Features == other.Features; }

void FeatureArray::InsertAt (const Feature& feature, int addAtNdx) {
  if (!Assert (addAtNdx >= 0 && addAtNdx <= Count (), "addAtNdx >= 0 && addAtNdx <= NumFeatures"))
    return;
  Features.insert (Features.begin () + addAtNdx, feature);
}

void FeatureArray::Remove (const Feature* feature) {
  const auto place = std::find_if (Features.begin (), Features.end (),
                                   [&] (const Feature& one) { return &one == feature; });
  if (Assert (place != Features.end (), "found")) Features.erase (place);
}

Feature& FeatureArray::At (int pos) {
  const bool isInside =
      Assert (pos >= 0, "pos >= 0") && Assert (pos < Count (), "pos < NumFeatures");
  if (isInside) return Features[static_cast<std::size_t> (pos)];
  thread_local Feature outside;
  return outside = Feature ();
}

const Feature& FeatureArray::At (int pos) const {
  return const_cast<FeatureArray*> (this)->At (pos);
}

int FeatureArray::Find (std::string_view code, int startAt) const {
  if (Features.empty ()) return -1;
  if (!Assert (startAt >= 0, "startAt >= 0") ||
      !Assert (startAt < Count (), "startAt < NumFeatures"))
    return -1;
  for (int i = startAt; i < Count (); i++)
    if (Features[static_cast<std::size_t> (i)].Code == code) return i;
  return -1;
}

bool FeatureArray::HasAttributes () const { return CountWithAttributes () != 0; }

int FeatureArray::CountWithAttributes () const {
  return static_cast<int> (std::count_if (Features.begin (), Features.end (),
                                          [] (const Feature& one) { return one.Count () != 0; }));
}

void FeatureArray::ClearAttributes () {
  for (Feature& feature : Features) feature.Clear ();
}
void FeatureArray::ClearSuffixes () {
  for (Feature& feature : Features) feature.Suffix = Str ();
}
void FeatureArray::ClearMarks () {
  for (Feature& feature : Features) feature.ClearMarks ();
}

bool NextCode (std::string_view& text, Str& code) {
  if (text.empty () || text.size () > static_cast<std::size_t> (DBTYPE_CodeSize)) return false;
  std::size_t charsScanned = 0;
  while (charsScanned < text.size ()) {
    const char c = text[charsScanned];
    if (c == '\0' || c == ' ' || (c == '-' && charsScanned + 1 == text.size ())) break;
    charsScanned++;
  }
  if (charsScanned == 0) return false;
  code = text.substr (0, charsScanned);
  text.remove_prefix (charsScanned);
  text.remove_prefix (std::min (text.find_first_not_of (' '), text.size ()));
  return true;
}

void SplitCode (std::string_view whole, Str& code, Str& suffix) {
  std::size_t codeEnd = whole.find (' ');
  std::size_t suffixStart = codeEnd + 1;
  if (codeEnd == std::string_view::npos) {
    codeEnd = whole.size ();
    for (;;) {
      if (codeEnd > 0 && text_IsDigit (whole[codeEnd - 1]))
        codeEnd--;
      else if (whole.substr (0, codeEnd).ends_with (MiddleDot))
        codeEnd -= MiddleDot.size ();
      else
        break;
    }
    suffixStart = codeEnd;
  }
  code = whole.substr (0, codeEnd);
  suffix = whole.substr (suffixStart);
  if (code.IsEmpty ()) std::swap (code, suffix);
}

void FeatureArray::Parse (std::string_view text, bool splitNumbers) {
  Features.clear ();
  Str whole;
  while (NextCode (text, whole)) {
    Feature& feature = Features.emplace_back ();
    if (splitNumbers)
      SplitCode (whole.View (), feature.Code, feature.Suffix);
    else
      feature.Code = std::move (whole);
  }
}

void FeatureArray::MergeFrom (std::string_view text, bool splitNumbers) {
  FeatureArray merged;
  merged.Parse (text, splitNumbers);
  for (Feature& feature : merged.Features) {
    const auto old = std::find_if (Features.begin (), Features.end (), [&] (const Feature& one) {
      return one.Code.EqualInsensitive (feature.Code);
    });
    if (old != Features.end ()) static_cast<Attributes&> (feature) = *old;
  }
  *this = std::move (merged);
}

Str FeatureArray::ToString () const {
  Str text;
  for (const Feature& feature : Features) {
    Assert (static_cast<std::size_t> (feature.Code.Length ()) == std::strlen (feature.Code.Data ()),
            "Features[i].GetCode().Length() == strlen(Features[i].GetCode().Data())");
    if (&feature != &Features.front ()) text += ' ';
    text += feature.Code;
    text += feature.Suffix;
  }
  return text;
}

void FeatureArray::Save (OutBuffer& buffer) const {
  buffer.PutInt32 (Count ());
  for (const Feature& feature : Features) {
    buffer.PutString (feature.Suffix);
    buffer.PutString (feature.Code);
    feature.Save (buffer);
  }
}

bool FeatureArray::Load (const Buffer& buffer, int& byteOffset) {
  BodyReader reader (buffer, byteOffset);
  Load (reader);
  byteOffset = reader.Offset ();
  return reader.IsGood ();
}

bool FeatureArray::Load (BodyReader& reader) {
  Features.clear ();
  int32_t count = 0;
  reader.Number (count);
  if (!Assert (count < DBTYPE_MaxFeatures, "NumFeatures < 100")) reader.Fail ();
  if (count == 0 || !reader.HasRoomFor (count, LeastFeature)) return reader.IsGood ();
  Features.reserve (static_cast<std::size_t> (count));
  for (int32_t i = 0; i < count && reader.IsGood (); i++) {
    Feature& feature = Features.emplace_back ();
    reader.Text (feature.Suffix);
    reader.Text (feature.Code);
    feature.Load (reader);
    if (!reader.IsGood ()) Features.pop_back ();
  }
  return reader.IsGood ();
}

FeatureArray FeatureArray::Take () { return std::exchange (*this, FeatureArray ()); }

}  // namespace clxml
