// The list of feature codes that a surveyor may use, whatever file it comes from.
// Uses fclfeature.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Library/codes/fclfeature.h"
#include "str.h"

namespace clxml {

/// What became of loading or saving a library. The numbers are part of the interface.
enum featureCode_Status : int32_t {
  FEATURECODE_Ok = 0,
  FEATURECODE_CannotCreate = 1,
  FEATURECODE_CannotOpen = 2,
  FEATURECODE_ReadFailed = 3,
  FEATURECODE_WriteFailed = 4,
  FEATURECODE_SeekFailed = 6,  ///< an offset leads nowhere, or an attribute has no valid type
  FEATURECODE_NoMemory = 8,
  FEATURECODE_WrongVersion = 9,
};

/// A list of features, which it owns. A class of it adds a file format. Codes are compared and
/// ordered in upper case (letters A to Z only), byte by byte.
class featureCode_Library {
 public:
  virtual ~featureCode_Library () = default;
  featureCode_Library (const featureCode_Library&) = delete;
  featureCode_Library& operator= (const featureCode_Library&) = delete;

  /// Same format version and the same features, in order.
  virtual bool IsEqualBase (const featureCode_Library& other) const;
  /// As IsEqualBase; a class adds its own fields.
  virtual bool IsEqual (const featureCode_Library& other) const { return IsEqualBase (other); }
  virtual bool IsDifferent (const featureCode_Library& other) const { return !IsEqual (other); }
  /// Frees all features; the other fields stay.
  virtual void Clear () { _Features.clear (); }
  /// Without a file format asserts "!\"featureCode_Library::Load\"", FEATURECODE_CannotOpen.
  virtual featureCode_Status Load (const Str& path);
  /// Without a file format asserts "!\"featureCode_Library::Save\"", FEATURECODE_WriteFailed.
  virtual featureCode_Status Save (const Str& path) const;
  virtual int32_t Count () const { return static_cast<int32_t> (_Features.size ()); }
  virtual uint8_t GetFormatVersion () const { return FormatVersion; }
  virtual void SetFormatVersion (uint8_t value) { FormatVersion = value; }
  virtual Str GetLibraryName () const { return LibraryName; }
  virtual void SetLibraryName (const Str& text) { LibraryName = text; }
  /// 0 without a file format.
  virtual uint16_t GetHeaderValue () const { return 0; }
  /// Empty without a file format.
  virtual Str GetLibraryText () const { return {}; }
  /// Frees feature n; the later ones move down. Returns the new count. Asserts "n > -1" and
  /// "n < this->NumberFeatures", and then frees nothing.
  virtual int32_t Delete (int32_t n);
  /// Inserts a copy before the first feature whose code is not below its own, so that an ordered
  /// list stays ordered and equal codes come newest first. Sets position; always true.
  virtual bool Insert (const fclfile_Feature& feature, int32_t& position);
  /// Always true.
  virtual bool Accepts (int32_t value) const;
  /// Feature i. Asserts "i > -1" and "i < this->NumberFeatures", and is then null.
  virtual fclfile_Feature* At (int32_t i);
  virtual const fclfile_Feature* At (int32_t i) const;
  /// Sets *feature to feature i, which stays owned by the library. False, without a change, when
  /// the pointer is null or there is no feature i.
  virtual bool Get (int32_t i, fclfile_Feature** feature);
  /// Looks for a code, from the first feature on. Sets position to its index, or to Count () when
  /// there is none, and then false.
  virtual bool Find (const Str& code, int32_t& position) const;
  /// Some feature has an attribute.
  virtual bool HasAttributes () const;
  /// Sorts by code; equal codes keep their order.
  virtual void Sort ();
  /// Makes room for extra more features; the count does not change. False, without a change, when
  /// out of memory or when extra is negative.
  virtual bool Reserve (int32_t extra);

  /// Appends a feature whatever its code. A null pointer asserts "feature != nullptr" and is not
  /// appended.
  void Append (std::unique_ptr<fclfile_Feature> feature);

 protected:
  featureCode_Library () = default;

  uint8_t FormatVersion = 4;
  Str LibraryName;

 private:
  bool IsIndex (int32_t i) const;

  std::vector<std::unique_ptr<fclfile_Feature>> _Features;
};

}  // namespace clxml
