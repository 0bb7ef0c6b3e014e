// The walks that make, read and compare the stored form of a record.
// Each stored form stands here once in each direction. Leans on dbRecord, dbFeatures and buffer.
#include "Library/records/dbVisitors.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "Library/records/dbFeatures.h"
#include "Library/records/dbRecord.h"

namespace clxml {

namespace {

constexpr int SlotCount = 256;
// A slot takes its number and at least the end of its name.
constexpr int LeastSlot = 5;

int64_t EnumNumber (const void* place, int width, bool isSigned) {
  switch (width) {
    case 1: {
      uint8_t number;
      std::memcpy (&number, place, sizeof number);
      return isSigned ? int64_t{static_cast<int8_t> (number)} : int64_t{number};
    }
    case 2: {
      uint16_t number;
      std::memcpy (&number, place, sizeof number);
      return isSigned ? int64_t{static_cast<int16_t> (number)} : int64_t{number};
    }
    default: {
      uint32_t number;
      std::memcpy (&number, place, sizeof number);
      return isSigned ? int64_t{static_cast<int32_t> (number)} : int64_t{number};
    }
  }
}

std::string_view SlotName (const StrArray& slots, int i) {
  return i < slots.Count () ? slots[i].View () : std::string_view ();
}

// What a count of that form can hold.
uint32_t Greatest (FieldVisitor::CountForm form) {
  switch (form) {
    case FieldVisitor::CountForm::I16:
      return INT16_MAX;
    case FieldVisitor::CountForm::U16:
      return UINT16_MAX;
    case FieldVisitor::CountForm::I32:
      return INT32_MAX;
    default:
      return UINT32_MAX;
  }
}

}  // namespace

int64_t ComparableBits (double value) noexcept {
  if (maths_IsNull (value)) value = MATHS_Null;
  if (std::isnan (value)) value = std::numeric_limits<double>::quiet_NaN ();
  if (value == 0.0) value = 0.0;
  return std::bit_cast<int64_t> (value);
}

void SaveVisitor::U8 (const char*, uint8_t& value) { _Out.PutUInt8 (value); }
void SaveVisitor::Bool (const char*, bool& value) { _Out.PutBool (value); }
void SaveVisitor::U16 (const char*, uint16_t& value) { _Out.PutUInt16 (value); }
void SaveVisitor::I16 (const char*, int16_t& value) { _Out.PutInt16 (value); }
void SaveVisitor::U32 (const char*, uint32_t& value) { _Out.PutUInt32 (value); }
void SaveVisitor::I32 (const char*, int32_t& value) { _Out.PutInt32 (value); }
void SaveVisitor::I64 (const char*, int64_t& value) {
  _Out.PutInt64 (static_cast<uint32_t> (value),
                 static_cast<uint32_t> (static_cast<uint64_t> (value) >> 32));
}
void SaveVisitor::F64 (const char*, double& value) { _Out.PutDouble (value); }
void SaveVisitor::Text (const char*, Str& value) { _Out.PutString (value); }
void SaveVisitor::Id (const char*, DBID& value) { _Out.PutUInt32 (value.value); }

void SaveVisitor::Characters (const char*, Derivation& value) {
  _Out.PutUInt16 (static_cast<uint16_t> (static_cast<uint8_t> (value.first) |
                                         static_cast<uint8_t> (value.second) << 8));
}

void SaveVisitor::Classification (const char*, db_PointClassification& value) {
  _Out.PutInt16 (static_cast<int16_t> (value.value));
}

void SaveVisitor::Enum (const char*, void* place, int width, bool isSigned, const Enumeration&) {
  const int64_t number = EnumNumber (place, width, isSigned);
  switch (width) {
    case 1:
      return _Out.PutUInt8 (static_cast<uint8_t> (number));
    case 2:
      return _Out.PutUInt16 (static_cast<uint16_t> (number));
    default:
      return _Out.PutUInt32 (static_cast<uint32_t> (number));
  }
}

void SaveVisitor::PaddedText (const char*, Str& value, int width) {
  _Out.PutString (value.View (), width, '\0');
}

void SaveVisitor::Bytes (const char*, std::vector<uint8_t>& value, uint32_t length) {
  Assert (length == value.size (), "length == Data.size ()");
  const auto held = std::min (length, static_cast<uint32_t> (value.size ()));
  if (held != 0) _Out.PutBytes (value.data (), static_cast<int> (held));
  for (uint32_t i = held; i < length; i++) _Out.PutUInt8 (0);
}

void SaveVisitor::Features (const char*, FeatureArray& value) { value.Save (_Out); }

void SaveVisitor::CountedTexts (const char*, StrArray& value, uint32_t count) {
  const auto held = static_cast<uint32_t> (value.Count ());
  for (uint32_t i = 0; i < count; i++)
    _Out.PutString (i < held ? value[static_cast<int> (i)].View () : std::string_view ());
}

void SaveVisitor::TerminatedTexts (const char*, StrArray& value) {
  for (int i = 0; i < value.Count (); i++)
    if (!value[i].IsEmpty ()) _Out.PutString (value[i]);
  _Out.PutUInt8 (0);
}

void SaveVisitor::Slots (const char*, StrArray& value) {
  uint32_t fileCount = 0;
  for (int i = 0; i < SlotCount; i++) fileCount += !SlotName (value, i).empty ();
  _Out.PutUInt32 (fileCount);
  for (int i = 0; i < SlotCount; i++) {
    const std::string_view name = SlotName (value, i);
    if (name.empty ()) continue;
    _Out.PutUInt32 (static_cast<uint32_t> (i));
    _Out.PutString (name);
    fileCount--;
  }
  Assert (fileCount == 0, "fileCount == 0");
}

uint32_t SaveVisitor::BeginList (const char*, uint32_t count, CountForm form, int) {
  if (!Assert (count <= Greatest (form), "list too long")) count = Greatest (form);
  switch (form) {
    case CountForm::I16:
    case CountForm::U16:
      _Out.PutUInt16 (static_cast<uint16_t> (count));
      break;
    case CountForm::I32:
    case CountForm::U32:
      _Out.PutUInt32 (count);
      break;
    case CountForm::Before:
      break;
  }
  return count;
}

void SaveVisitor::Nested (const char*, dbRecord_Class& record) { record.Save (_Out); }

void LoadVisitor::U8 (const char*, uint8_t& value) { _In.Number (value); }
void LoadVisitor::Bool (const char*, bool& value) {
  uint8_t byte = value;
  _In.Number (byte);
  value = byte != 0;
}
void LoadVisitor::U16 (const char*, uint16_t& value) { _In.Number (value); }
void LoadVisitor::I16 (const char*, int16_t& value) { _In.Number (value); }
void LoadVisitor::U32 (const char*, uint32_t& value) { _In.Number (value); }
void LoadVisitor::I32 (const char*, int32_t& value) { _In.Number (value); }
void LoadVisitor::I64 (const char*, int64_t& value) { _In.Number (value); }
void LoadVisitor::F64 (const char*, double& value) { _In.Number (value); }
void LoadVisitor::Text (const char*, Str& value) { _In.Text (value); }
void LoadVisitor::Id (const char*, DBID& value) { _In.Number (value.value); }

void LoadVisitor::Characters (const char*, Derivation& value) {
  uint16_t packed = 0;
  _In.Number (packed);
  if (!_In.IsGood ()) return;
  value.first = static_cast<char> (packed & 0xFF);
  value.second = static_cast<char> (packed >> 8);
}

void LoadVisitor::Classification (const char*, db_PointClassification& value) {
  int16_t number = static_cast<int16_t> (value.value);
  _In.Number (number);
  value.value = number;  // any number: what a job holds is kept
}

void LoadVisitor::Enum (const char*, void* place, int width, bool, const Enumeration&) {
  // The number has the very form of the place; only its width counts.
  switch (width) {
    case 1: {
      uint8_t number;
      std::memcpy (&number, place, sizeof number);
      _In.Number (number);
      std::memcpy (place, &number, sizeof number);
      break;
    }
    case 2: {
      uint16_t number;
      std::memcpy (&number, place, sizeof number);
      _In.Number (number);
      std::memcpy (place, &number, sizeof number);
      break;
    }
    default: {
      uint32_t number;
      std::memcpy (&number, place, sizeof number);
      _In.Number (number);
      std::memcpy (place, &number, sizeof number);
    }
  }
}

void LoadVisitor::PaddedText (const char*, Str& value, int width) {
  _In.PaddedText (value, static_cast<uint32_t> (width));
}

void LoadVisitor::Bytes (const char*, std::vector<uint8_t>& value, uint32_t length) {
  const uint8_t* place = _In.Bytes (length);
  if (place)
    value.assign (place, place + length);
  else
    value.clear ();
}

void LoadVisitor::Features (const char*, FeatureArray& value) { value.Load (_In); }

void LoadVisitor::CountedTexts (const char*, StrArray& value, uint32_t count) {
  value.Clear ();
  if (!_In.HasRoomFor (count, 1)) return;
  value.Reserve (static_cast<int> (count));
  Str text;
  for (uint32_t i = 0; i < count; i++) {
    _In.Text (text);
    if (!_In.IsGood ()) return;
    value.Add (text);
  }
}

void LoadVisitor::TerminatedTexts (const char*, StrArray& value) {
  value.Clear ();
  Str text;
  for (;;) {
    _In.Text (text);
    if (!_In.IsGood () || text.IsEmpty ()) return;
    value.Add (text);
  }
}

void LoadVisitor::Slots (const char*, StrArray& value) {
  value.Clear ();
  uint32_t fileCount = 0;
  _In.Number (fileCount);
  if (!_In.HasRoomFor (fileCount, LeastSlot) || fileCount == 0) return;
  value.Reserve (SlotCount);
  for (int i = 0; i < SlotCount; i++) value.Add ("");
  for (uint32_t i = 0; i < fileCount; i++) {
    uint32_t slot = 0;
    _In.Number (slot);
    if (slot >= SlotCount) _In.Fail ();
    if (!_In.IsGood ()) return;
    _In.Text (value[static_cast<int> (slot)]);
  }
}

uint32_t LoadVisitor::BeginList (const char*, uint32_t count, CountForm form, int least) {
  int64_t number = count;
  switch (form) {
    case CountForm::I16: {
      int16_t stored = 0;
      _In.Number (stored);
      number = stored;
      break;
    }
    case CountForm::U16: {
      uint16_t stored = 0;
      _In.Number (stored);
      number = stored;
      break;
    }
    case CountForm::I32: {
      int32_t stored = 0;
      _In.Number (stored);
      number = stored;
      break;
    }
    case CountForm::U32: {
      uint32_t stored = 0;
      _In.Number (stored);
      number = stored;
      break;
    }
    case CountForm::Before:
      break;
  }
  return _In.HasRoomFor (number, least) ? static_cast<uint32_t> (number) : 0;
}

void LoadVisitor::Nested (const char*, dbRecord_Class& record) {
  if (_In.IsGood ()) record.LoadFrom (_In);
}

void CompareVisitor::Number (int64_t value) {
  const auto bits = static_cast<uint64_t> (value);
  if (!_Second)
    _Seen.push_back (bits);
  else
    _Equal = _Equal && _Next < _Seen.size () && _Seen[_Next++] == bits;
}

template <class T, class Same>
void CompareVisitor::Object (T& value, Same same) {
  if (!_Second) {
    _Seen.push_back (reinterpret_cast<uintptr_t> (&value));
    return;
  }
  // As long as all was equal the walks are in step, and the entry is of this kind.
  _Equal = _Equal && _Next < _Seen.size () &&
           same (*reinterpret_cast<const T*> (static_cast<uintptr_t> (_Seen[_Next++])), value);
}

void CompareVisitor::U8 (const char*, uint8_t& value) { Number (value); }
void CompareVisitor::Bool (const char*, bool& value) { Number (value); }
void CompareVisitor::U16 (const char*, uint16_t& value) { Number (value); }
void CompareVisitor::I16 (const char*, int16_t& value) { Number (value); }
void CompareVisitor::U32 (const char*, uint32_t& value) { Number (value); }
void CompareVisitor::I32 (const char*, int32_t& value) { Number (value); }
void CompareVisitor::I64 (const char*, int64_t& value) { Number (value); }

void CompareVisitor::F64 (const char*, double& value) { Number (ComparableBits (value)); }

void CompareVisitor::Text (const char*, Str& value) {
  Object (value, [] (const Str& a, const Str& b) { return a == b; });
}
void CompareVisitor::Id (const char*, DBID& value) { Number (value.value); }
void CompareVisitor::Characters (const char*, Derivation& value) {
  Number (static_cast<uint8_t> (value.first) | static_cast<uint8_t> (value.second) << 8);
}
void CompareVisitor::Classification (const char*, db_PointClassification& value) {
  Number (value.value);
}
void CompareVisitor::Enum (const char*, void* place, int width, bool isSigned, const Enumeration&) {
  Number (EnumNumber (place, width, isSigned));
}
void CompareVisitor::PaddedText (const char* name, Str& value, int) { Text (name, value); }
void CompareVisitor::Bytes (const char*, std::vector<uint8_t>& value, uint32_t) {
  Object (value, [] (const auto& a, const auto& b) { return a == b; });
}
void CompareVisitor::Features (const char*, FeatureArray& value) {
  Object (value, [] (const FeatureArray& a, const FeatureArray& b) { return a.IsEqual (b); });
}
void CompareVisitor::CountedTexts (const char* name, StrArray& value, uint32_t) {
  TerminatedTexts (name, value);
}
void CompareVisitor::TerminatedTexts (const char*, StrArray& value) {
  Object (value, [] (const StrArray& a, const StrArray& b) { return a == b; });
}
void CompareVisitor::Slots (const char*, StrArray& value) {
  Object (value, [] (const StrArray& a, const StrArray& b) {
    for (int i = 0; i < SlotCount; i++)
      if (SlotName (a, i) != SlotName (b, i)) return false;
    return true;
  });
}
uint32_t CompareVisitor::BeginList (const char*, uint32_t count, CountForm, int) {
  Number (count);
  return count;
}
void CompareVisitor::Nested (const char*, dbRecord_Class& record) {
  Object (record, [] (const dbRecord_Class& a, const dbRecord_Class& b) { return a.IsEqual (b); });
}

}  // namespace clxml
