// The readers of an element's fields.
// A conversion asks for its fields by tag, in the order in which a fault is to be reported; each
// reader says what an absent, an empty and a bad text mean. Leans on xml, text and the
// enumerations.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

#include "Library/records/dbEnum.h"
#include "Library/records/dbField.h"
#include "Library/xml/xml.h"
#include "numerics/maths.h"
#include "str.h"

namespace clxml {

/// The job versions that a tag is read for; by default all.
struct Versions {
  int64_t from = std::numeric_limits<int64_t>::min ();
  int64_t below = std::numeric_limits<int64_t>::max ();
  constexpr bool Hold (int32_t version) const noexcept {
    return version >= from && version < below;
  }
};
constexpr Versions From (int32_t version) noexcept { return {.from = version}; }
constexpr Versions Below (int32_t version) noexcept { return {.below = version}; }
constexpr Versions Between (int32_t from, int32_t below) noexcept {
  return {.from = from, .below = below};
}

/// The message of a field that cannot be read: `Invalid TYPE name="TAG" with value="TEXT"`.
Str InvalidField (std::string_view typeWord, std::string_view tag, std::string_view value);
/// The number of "0x" and hexadecimal digits of either case, low 32 bits; anything else throws
/// InvalidField with a type word that begins with "hex number".
uint32_t ParseHex (std::string_view tag, std::string_view text);
/// Throws unless the element's attribute "rec" is recName.
void CheckRec (const xml_element& element, std::string_view recName);
/// The element's attribute "TimeStamp" as a number, null when it is missing or empty.
double ReadTimeStamp (const xml_element& element);
/// The text with the middle dot, U+00B7, for each byte 0x1F: how older jobs wrote it in codes.
Str CodeText (std::string_view text);

namespace fieldreader {
inline constexpr int32_t RaiseWhenEmpty = std::numeric_limits<int32_t>::min ();
/// What an empty text means for an enumeration; for all but two it is a fault.
template <class E>
inline constexpr int32_t WhenEmpty = RaiseWhenEmpty;
template <>
inline constexpr int32_t WhenEmpty<units_Type> = UNITS_None;
template <>
inline constexpr int32_t WhenEmpty<dbconfig_DeltasMode> = DBCONFIG_GridDeltas;
}  // namespace fieldreader

/// Reads the children of one element. A field takes the text of the first direct child with the
/// tag's name; a tag outside its job versions leaves the field as it is. What cannot be read throws
/// InvalidField. A reader of an absent element reads every tag as absent. Integers wider than their
/// field keep the low bits. Costs one walk over the direct children for each tag.
class FieldReader {
 public:
  /// Reads nothing of element's when it is null; it must outlive the reader.
  FieldReader (const xml_element* element, int32_t version) noexcept
      : _Element (element), _Version (version) {}

  bool IsPresent () const noexcept { return _Element != nullptr; }
  int32_t Version () const noexcept { return _Version; }
  bool Has (std::string_view tag) const noexcept { return Child (tag) != nullptr; }
  /// The first direct child of that name, or null.
  const xml_element* Child (std::string_view tag) const noexcept {
    return _Element ? _Element->FindChild (tag) : nullptr;
  }
  /// A reader of that child, or of nothing.
  FieldReader Group (std::string_view tag) const noexcept { return {Child (tag), _Version}; }
  /// The child's text; empty when it is absent.
  std::string_view Text (std::string_view tag) const noexcept {
    const xml_element* child = Child (tag);
    return child ? child->value : std::string_view ();
  }

  /// All children "Note", in order, each followed by "\r\n".
  void Note (Str& field) const;
  /// The text as it stands.
  void String (std::string_view tag, Str& field, Versions versions = {}) const;
  /// The same with the rule of CodeText.
  void Code (std::string_view tag, Str& field, Versions versions = {}) const;
  /// Null when absent or empty; text that is no number gives 0.0.
  void Double (std::string_view tag, double& field, Versions versions = {}) const {
    DoubleOr (tag, field, MATHS_Null, versions);
  }
  /// The default when absent, null when empty.
  void DoubleOr (std::string_view tag, double& field, double absent, Versions versions = {}) const;
  /// 0 when absent or empty; decimal digits, anything behind them ignored.
  template <class T>
  void Int (std::string_view tag, T& field, Versions versions = {}) const {
    IntOr (tag, field, 0, versions);
  }
  /// The default when absent, 0 when empty.
  template <class T>
  void IntOr (std::string_view tag, T& field, int32_t absent, Versions versions = {}) const {
    if (versions.Hold (_Version)) field = static_cast<T> (IntNumber (tag, absent));
  }
  /// As Int, but a text that begins with "0x" is read as Hex.
  template <class T>
  void IntOrHex (std::string_view tag, T& field, Versions versions = {}) const {
    IntOrHexOr (tag, field, 0, versions);
  }
  template <class T>
  void IntOrHexOr (std::string_view tag, T& field, uint32_t absent, Versions versions = {}) const {
    if (versions.Hold (_Version)) field = static_cast<T> (IntOrHexNumber (tag, absent));
  }
  /// 0 when absent or empty; see ParseHex.
  template <class T>
  void Hex (std::string_view tag, T& field, Versions versions = {}) const {
    if (versions.Hold (_Version)) field = T{HexNumber (tag)};
  }
  /// The decimal text cut to 32 bits, with a zero upper half.
  void Int64 (std::string_view tag, int64_t& field, Versions versions = {}) const;
  /// "true" or "false" in any case; anything else, absence too, throws.
  template <class T>
  void Bool (std::string_view tag, T& field, Versions versions = {}) const {
    if (versions.Hold (_Version)) field = T{BoolValue (tag, Text (tag))};
  }
  /// The default when absent; a text that is there is read as Bool.
  template <class T>
  void BoolOr (std::string_view tag, T& field, bool absent, Versions versions = {}) const {
    if (!versions.Hold (_Version)) return;
    const xml_element* child = Child (tag);
    field = T{child ? BoolValue (tag, child->value) : absent};
  }
  /// True only for exactly "true".
  template <class T>
  void True (std::string_view tag, T& field, Versions versions = {}) const {
    if (versions.Hold (_Version)) field = T{Text (tag) == "true"};
  }
  /// One of the enumeration's words; anything else throws, absence too. For units_Type and
  /// dbconfig_DeltasMode an empty or absent text has a meaning of its own.
  template <class E>
  void Enum (std::string_view tag, E& field, Versions versions = {}) const {
    if (versions.Hold (_Version)) field = EnumValue<E> (tag, Text (tag));
  }
  /// The default when absent; a text that is there is read as Enum.
  template <class E>
  void EnumOr (std::string_view tag, E& field, E absent, Versions versions = {}) const {
    if (!versions.Hold (_Version)) return;
    const xml_element* child = Child (tag);
    field = child ? EnumValue<E> (tag, child->value) : absent;
  }
  /// The OR of blank-separated words of a flag set, 0 when absent or empty.
  template <class E>
  void Flags (std::string_view tag, E& field, Versions versions = {}) const {
    if (versions.Hold (_Version)) field = static_cast<E> (FlagsNumber (tag, EnumerationOf<E> ()));
  }
  /// Two bytes, or two blanks when absent or empty; any other length throws "Derivation code is not
  /// 2 characters".
  void DerivationCode (std::string_view tag, Derivation& field) const;
  /// The texts of the children "item" of the child, up to the first of another name; indexes, when
  /// given, takes their attributes "index", empty where there is none.
  void Items (std::string_view tag, StrArray& items, StrArray* indexes = nullptr) const;
  void Descriptions (Str& description1, Str& description2) const;

  // Groups: the sub-tags go to the members of the same name of any structure that has them. All are
  // null when the group is absent.
  template <class T>
  void NEE (std::string_view tag, T& group) const {
    const FieldReader in = Group (tag);
    in.Double ("North", group.North);
    in.Double ("East", group.East);
    in.Double ("Elev", group.Elev);
  }
  template <class T>
  void LLH (std::string_view tag, T& group) const {
    const FieldReader in = Group (tag);
    in.Double ("Lat", group.Lat);
    in.Double ("Long", group.Long);
    in.Double ("Height", group.Height);
  }
  template <class T>
  void XYZ (std::string_view tag, T& group) const {
    const FieldReader in = Group (tag);
    in.Double ("X", group.X);
    in.Double ("Y", group.Y);
    in.Double ("Z", group.Z);
  }
  template <class T>
  void DeltasNEE (std::string_view tag, T& group) const {
    const FieldReader in = Group (tag);
    in.Double ("dNorth", group.dNorth);
    in.Double ("dEast", group.dEast);
    in.Double ("dElev", group.dElev);
  }
  template <class T>
  void DeltasXYZ (std::string_view tag, T& group) const {
    const FieldReader in = Group (tag);
    const bool isNew = _Version >= 1140;
    in.Double (isNew ? "dX" : "XDelta", group.XDelta);
    in.Double (isNew ? "dY" : "YDelta", group.YDelta);
    in.Double (isNew ? "dZ" : "ZDelta", group.ZDelta);
  }
  template <class T>
  void Polar (std::string_view tag, T& group) const {
    const FieldReader in = Group (tag);
    in.Double ("Azimuth", group.Azimuth);
    in.Double ("HDist", group.HDist);
    in.Double ("VDist", group.VDist);
  }
  /// What an instrument read. When the group is absent its fields stay as they are.
  template <class T>
  void RawObservation (std::string_view tag, T& group, Versions versions = {}) const {
    const FieldReader in = Group (tag);
    if (!versions.Hold (_Version) || !in.IsPresent ()) return;
    in.Double ("HorzCircle", group.HorzCircle);
    in.Double ("VertCircle", group.VertCircle);
    in.Double ("EDMDistance", group.EDMDistance);
    in.Enum ("Face", group.Face);
    in.Double ("HorzCircleStdErr", group.HorzCircleStdErr);
    in.Double ("VertCircleStdErr", group.VertCircleStdErr);
    in.Double ("EDMDistanceStdErr", group.EDMDistanceStdErr);
    in.EnumOr ("EDMMeasurementMode", group.EDMMeasurementMode, TOTAL_EDMDefault);
  }

 private:
  int32_t IntNumber (std::string_view tag, int32_t absent) const;
  uint32_t IntOrHexNumber (std::string_view tag, uint32_t absent) const;
  uint32_t HexNumber (std::string_view tag) const;
  static bool BoolValue (std::string_view tag, std::string_view text);
  static int32_t EnumNumber (std::string_view tag, std::string_view text, const Enumeration& table,
                             int32_t whenEmpty);
  template <class E>
  static E EnumValue (std::string_view tag, std::string_view text) {
    return static_cast<E> (EnumNumber (tag, text, EnumerationOf<E> (), fieldreader::WhenEmpty<E>));
  }
  int32_t FlagsNumber (std::string_view tag, const Enumeration& table) const;

  const xml_element* _Element;
  int32_t _Version;
};

}  // namespace clxml
