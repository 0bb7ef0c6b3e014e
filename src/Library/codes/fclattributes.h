// The attributes that a feature code asks for: numbers, texts, menus, dates, times, files,
// separators. To add a kind of attribute: a class here with its row in fclfile_VisitType; its
// instantiation in fclattributes.cpp; its word and keys in the tool's codesjson.cpp. Uses fclbytes
// and the attribute types of records.
#pragma once

#include <cstdint>
#include <memory>
#include <tuple>

#include "Library/codes/fclbytes.h"
#include "Library/records/dbFeatures.h"
#include "numerics/maths.h"
#include "str.h"

namespace clxml {

/// Bytes of an attribute's name, and of a menu entry.
inline constexpr int FCLFILE_NameSize = 21;
/// Bytes that all attributes begin with.
inline constexpr int FCLFILE_AttributeHeadSize = 29;
/// Features of a library, attributes of a feature and entries of a menu: no more than 16 bits
/// count.
inline constexpr int FCLFILE_MaximumCount = 65535;

/// One attribute of a feature: its definition, and the value that a user entered, which is not
/// stored. The meaning of Usage, and of every field named Option, Flag, Mark or Number with a
/// digit, is the host's: they are stored, compared and copied.
class fclfile_Attribute {
 public:
  virtual ~fclfile_Attribute () = default;

  /// Same type, name and usage.
  virtual bool IsEqualHead (const fclfile_Attribute& other) const;
  /// Same definition: the head and every field of the file form, not the entered value. A NaN
  /// is equal to a NaN, so that a copy is equal whatever it holds.
  virtual bool IsEqual (const fclfile_Attribute& other) const = 0;
  virtual bool IsDifferent (const fclfile_Attribute& other) const { return !IsEqual (other); }
  virtual AttributeType GetType () const = 0;
  /// Bytes of the record in the file, the head included.
  virtual int32_t BytesOnDisk () const = 0;
  /// Reads the record behind its type, and the offset of the feature's next attribute. False when a
  /// read failed; the object is then half read.
  virtual bool Load (fclfile_Reader& file, uint32_t& next) = 0;
  /// Writes the record with that offset of the next attribute. False when a write failed.
  virtual bool Save (fclfile_Writer& file, uint32_t next) const = 0;

  Str Name;               ///< stored in 21 bytes
  uint32_t Usage = 0;     ///< stored in 16 bits
  bool HasValue = false;  ///< a value was entered

 protected:
  fclfile_Attribute () = default;
  fclfile_Attribute (const fclfile_Attribute&) = default;
  fclfile_Attribute& operator= (const fclfile_Attribute&) = default;

  // Name, usage and next offset, which follow the type.
  void GetHead (const Buffer& buffer, int& offset, uint32_t& next);
  // Type, usage, name and next offset.
  void PutHead (OutBuffer& out, uint32_t next) const;
};

/// What the classes with fields of fixed width share. Self has a static template Fields (self) that
/// ties its fields in file order: double in 8 bytes, uint16_t in 2, uint8_t in 1, bool as 16 bits
/// (anything but 0 is true, and is written as 1).
template <class Self, AttributeType type>
class fclfile_AttributeOf : public fclfile_Attribute {
 public:
  bool IsEqual (const fclfile_Attribute& other) const final;
  AttributeType GetType () const final { return type; }
  int32_t BytesOnDisk () const final;
  bool Load (fclfile_Reader& file, uint32_t& next) final;
  bool Save (fclfile_Writer& file, uint32_t next) const final;
};

class fclfile_NumericalAttribute final
    : public fclfile_AttributeOf<fclfile_NumericalAttribute, ATTRIBUTE_Number> {
 public:
  double Number1 = 0.0;
  double Number2 = 0.0;
  double Number3 = 0.0;
  uint8_t NumberOption = 0;
  uint16_t NumberMark = 46;

  /// The entered number; null before one was entered.
  double GetValue () const { return _Value; }
  void SetValue (double value) { _Value = value, HasValue = true; }

  template <class A>
  static auto Fields (A& a) {
    return std::tie (a.Number1, a.Number2, a.Number3, a.NumberOption, a.NumberMark);
  }

 private:
  double _Value = MATHS_Null;
};

class fclfile_TextAttribute final
    : public fclfile_AttributeOf<fclfile_TextAttribute, ATTRIBUTE_Text> {
 public:
  uint16_t TextOption = 0;

  const Str& GetValue () const { return _Value; }
  void SetValue (const Str& value) { _Value = value, HasValue = true; }

  template <class A>
  static auto Fields (A& a) {
    return std::tie (a.TextOption);
  }

 private:
  Str _Value;
};

/// A choice among entries of up to 21 bytes each.
class fclfile_MenuAttribute final : public fclfile_Attribute {
 public:
  StrArray Entries;
  bool HasDefault = false;
  /// Stored as 0xFFFF without a default. May lie at or above the number of entries.
  uint16_t DefaultIndex = 0;
  /// The entry at DefaultIndex when the menu was read; empty without a default or such an entry.
  Str DefaultEntry;

  int32_t EntryCount () const noexcept { return Entries.Count (); }
  void AddEntry (const Str& text) { Entries.Add (text); }
  /// The chosen entry; 0 and empty before one was chosen.
  int32_t GetSelectedIndex () const { return _SelectedIndex; }
  const Str& GetSelectedText () const { return _SelectedText; }
  void SetSelected (int32_t index, const Str& text) {
    _SelectedIndex = index, _SelectedText = text, HasValue = true;
  }

  bool IsEqual (const fclfile_Attribute& other) const override;
  AttributeType GetType () const override { return ATTRIBUTE_Menu; }
  int32_t BytesOnDisk () const override;
  bool Load (fclfile_Reader& file, uint32_t& next) override;
  bool Save (fclfile_Writer& file, uint32_t next) const override;

 private:
  int32_t _SelectedIndex = 0;
  Str _SelectedText;
};

class fclfile_DateAttribute final
    : public fclfile_AttributeOf<fclfile_DateAttribute, ATTRIBUTE_Date> {
 public:
  uint16_t DateOption = 0;
  bool DateFlag = false;

  double GetValue () const { return _Value; }
  void SetValue (double value) { _Value = value, HasValue = true; }

  template <class A>
  static auto Fields (A& a) {
    return std::tie (a.DateOption, a.DateFlag);
  }

 private:
  double _Value = MATHS_Null;
};

class fclfile_TimeAttribute final
    : public fclfile_AttributeOf<fclfile_TimeAttribute, ATTRIBUTE_Time> {
 public:
  bool TimeFlag1 = false;
  bool TimeFlag2 = false;

  double GetValue () const { return _Value; }
  void SetValue (double value) { _Value = value, HasValue = true; }

  template <class A>
  static auto Fields (A& a) {
    return std::tie (a.TimeFlag1, a.TimeFlag2);
  }

 private:
  double _Value = MATHS_Null;
};

class fclfile_FileAttribute final
    : public fclfile_AttributeOf<fclfile_FileAttribute, ATTRIBUTE_File> {
 public:
  uint16_t FileOption = 0;

  const Str& GetValue () const { return _Value; }
  void SetValue (const Str& value) { _Value = value, HasValue = true; }

  template <class A>
  static auto Fields (A& a) {
    return std::tie (a.FileOption);
  }

 private:
  Str _Value;
};

/// A heading between attributes.
class fclfile_SeparatorAttribute final
    : public fclfile_AttributeOf<fclfile_SeparatorAttribute, ATTRIBUTE_Separator> {
 public:
  template <class A>
  static auto Fields (A&) {
    return std::tuple<> ();
  }
};

/// Calls visit with a null pointer of the class of that type; false, without a call, for a type
/// that no class has.
template <class Visit>
bool fclfile_VisitType (uint16_t type, Visit visit) {
  switch (type) {
    case ATTRIBUTE_Number:
      return visit (static_cast<fclfile_NumericalAttribute*> (nullptr)), true;
    case ATTRIBUTE_Text:
      return visit (static_cast<fclfile_TextAttribute*> (nullptr)), true;
    case ATTRIBUTE_Menu:
      return visit (static_cast<fclfile_MenuAttribute*> (nullptr)), true;
    case ATTRIBUTE_Date:
      return visit (static_cast<fclfile_DateAttribute*> (nullptr)), true;
    case ATTRIBUTE_Time:
      return visit (static_cast<fclfile_TimeAttribute*> (nullptr)), true;
    case ATTRIBUTE_File:
      return visit (static_cast<fclfile_FileAttribute*> (nullptr)), true;
    case ATTRIBUTE_Separator:
      return visit (static_cast<fclfile_SeparatorAttribute*> (nullptr)), true;
    default:
      return false;
  }
}

/// A new attribute of a type; null for a number outside 0 to 6.
std::unique_ptr<fclfile_Attribute> fclfile_MakeAttribute (uint16_t type);
/// A new attribute with everything that another has, the entered value included.
std::unique_ptr<fclfile_Attribute> fclfile_CopyAttribute (const fclfile_Attribute& other);

}  // namespace clxml
