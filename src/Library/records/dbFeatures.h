// Feature codes of a record and their attributes.
// The codes a surveyor tags a point, line or arc with, and the values that hang on them. Leans on
// str and buffer.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "Library/base/buffer.h"
#include "platform/pool.h"
#include "str.h"

namespace clxml {

class BodyReader;

/// The longest feature code in bytes.
inline constexpr int DBTYPE_CodeSize = 42;
/// A record holds fewer features than this.
inline constexpr int DBTYPE_MaxFeatures = 100;

/// The kinds of attribute, as stored; any other number has no value part.
enum AttributeType : uint16_t {
  ATTRIBUTE_Number = 0,
  ATTRIBUTE_Text = 1,
  ATTRIBUTE_Menu = 2,
  ATTRIBUTE_Date = 3,
  ATTRIBUTE_Time = 4,
  ATTRIBUTE_File = 5,
  ATTRIBUTE_Separator = 6,
};

/// One value of a feature.
struct Attribute {
  Str Name;
  Str Text;                       ///< of texts, menus and files
  double Number = 0.0;            ///< of numbers, dates and times; may be null
  std::array<uint8_t, 8> Mark{};  ///< not stored
  uint16_t Type = ATTRIBUTE_Separator;
  uint16_t MenuIndex = 0;  ///< the chosen entry of a menu

  /// By type, name, number, text and menu index.
  friend bool operator== (const Attribute& a, const Attribute& b);
};

/// The attributes of a feature, in order.
class Attributes {
 public:
  virtual ~Attributes () = default;
  Attributes () = default;
  Attributes (const Attributes&) = default;
  Attributes (Attributes&&) noexcept = default;
  Attributes& operator= (const Attributes&) = default;
  Attributes& operator= (Attributes&&) noexcept = default;

  int Count () const noexcept { return static_cast<int> (Attribs.size ()); }
  void Add (const Attribute& attribute) { Attribs.push_back (attribute); }
  void AddNumber (const Str& name, double value);
  void AddText (const Str& name, const Str& value);
  void AddMenu (const Str& name, uint16_t index, const Str& item);
  void AddDate (const Str& name, double value);
  void AddTime (const Str& name, double value);
  void AddFile (const Str& name, const Str& file);
  void AddSeparator (const Str& name);
  /// Asserts "pos >= 0" and "pos < this->NumAttribs"; outside an empty attribute.
  const Attribute& At (int pos) const;
  /// False outside the range.
  bool Get (int pos, Attribute& attribute) const;
  void Clear () { Attribs.clear (); }
  void ClearMarks ();
  /// Appends their number and the attributes.
  void Save (OutBuffer& buffer) const;
  /// Reads the same; asserts "AttribCountCheck == this->NumAttribs" when there are fewer than
  /// their number says.
  void Load (BodyReader& reader);
  friend bool operator== (const Attributes& a, const Attributes& b) {
    return a.Attribs == b.Attribs;
  }

 protected:
  std::vector<Attribute, PoolAllocator<Attribute>> Attribs;
};

/// A feature code with its attributes.
class Feature : public Attributes {
 public:
  Str Code;
  Str Suffix;
  friend bool operator== (const Feature& a, const Feature& b);
};

/// The feature codes of one record.
class FeatureArray {
 public:
  FeatureArray () = default;
  FeatureArray (const FeatureArray&) = default;
  FeatureArray (FeatureArray&&) noexcept = default;
  FeatureArray& operator= (const FeatureArray&) = default;
  FeatureArray& operator= (FeatureArray&&) noexcept = default;
  virtual ~FeatureArray () = default;

  virtual bool IsEqual (const FeatureArray& other) const;
  virtual bool IsDifferent (const FeatureArray& other) const { return !IsEqual (other); }
  /// The two are one object.
  virtual bool IsSameStorage (const FeatureArray& other) const { return this == &other; }
  virtual void Assign (const FeatureArray& other) { *this = other; }

  int Count () const noexcept { return static_cast<int> (Features.size ()); }
  /// Asserts "addAtNdx >= 0 && addAtNdx <= NumFeatures" and then does nothing.
  void InsertAt (const Feature& feature, int addAtNdx);
  void Append (const Feature& feature) { Features.push_back (feature); }
  void Append (Feature&& feature) { Features.push_back (std::move (feature)); }
  /// Takes a pointer to an element of this array; asserts "found" otherwise.
  void Remove (const Feature* feature);
  /// Asserts "pos >= 0" and "pos < NumFeatures"; outside an empty feature.
  Feature& At (int pos);
  const Feature& At (int pos) const;
  /// The position of the first feature with that code from startAt on, or -1. Asserts
  /// "startAt >= 0" and "startAt < NumFeatures" unless the array is empty.
  int Find (std::string_view code, int startAt) const;
  bool HasAttributes () const;
  int CountWithAttributes () const;
  void ClearAttributes ();
  void ClearSuffixes ();
  void ClearMarks ();
  /// Replaces the array by the codes of a feature text; splitNumbers cuts a trailing number off
  /// as suffix.
  void Parse (std::string_view text, bool splitNumbers);
  /// As Parse, but attributes of old features of the same code (without case) stay.
  void MergeFrom (std::string_view text, bool splitNumbers);
  /// Code and suffix of each, with a blank between features.
  Str ToString () const;
  void Save (OutBuffer& buffer) const;
  /// False, with what was read so far, when the bytes end too early, a count does not fit them,
  /// or there are 100 features or more (asserts "NumFeatures < 100").
  bool Load (const Buffer& buffer, int& byteOffset);
  /// The same within a body that is being read.
  bool Load (BodyReader& reader);
  /// All features of this array, which is empty afterwards.
  FeatureArray Take ();

 private:
  std::vector<Feature, PoolAllocator<Feature>> Features;
};

/// Takes the next code off the front of a feature text, and the blanks behind it. A code ends at a
/// blank, a zero byte or a minus sign that is the last byte of the text, which stays in it. False,
/// with both as they were, when the text is empty, has more than DBTYPE_CodeSize bytes or does not
/// start with a code.
bool NextCode (std::string_view& text, Str& code);
/// Splits a code into base code and suffix: the suffix is what follows its first blank, or else the
/// run of digits at its end ("FENCE12": "FENCE", "12"), in which the middle dot U+00B7 counts as a
/// digit. A code that is nothing but suffix stays whole, without a suffix.
void SplitCode (std::string_view whole, Str& code, Str& suffix);

}  // namespace clxml
