// A feature code of a library: code, description, kind and the attributes it asks for.
// Uses fclattributes.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Library/codes/fclattributes.h"
#include "str.h"

namespace clxml {

/// Bytes of a feature's code and description.
inline constexpr int FCLFILE_CodeSize = 21;
inline constexpr int FCLFILE_DescriptionSize = 43;

/// A feature of a library. Owns its attributes.
class fclfile_Feature {
 public:
  fclfile_Feature () = default;
  virtual ~fclfile_Feature () = default;
  fclfile_Feature (const fclfile_Feature&) = delete;
  fclfile_Feature& operator= (const fclfile_Feature&) = delete;

  uint32_t Kind = 0;         ///< 0 to 2
  uint32_t KindOption = 0;   ///< of kind 1: 0 or 1
  uint32_t KindVariant = 0;  ///< of kind 2: 0 to 5
  Str Code;                  ///< words are separated by the middle dot
  Str Description;

  int32_t NumberAttributes () const noexcept { return static_cast<int32_t> (_Attributes.size ()); }
  /// Same code, description, kind fields and attributes, in order; entered values do not count.
  bool IsEqual (const fclfile_Feature& other) const;
  /// Becomes a deep copy; entered values are copied too.
  void Assign (const fclfile_Feature& other);
  /// Appends an attribute. A null pointer asserts "attribute != nullptr" and is not appended.
  void AddAttribute (std::unique_ptr<fclfile_Attribute> attribute);
  /// Sets *attribute to attribute i, which stays owned by the feature. False, without a change,
  /// when the pointer is null or there is no attribute i.
  bool GetAttribute (int32_t i, fclfile_Attribute** attribute);
  bool GetAttribute (int32_t i, const fclfile_Attribute** attribute) const;

  /// The kind fields as the flags of the file: kind 1 is 4, with option 1 260; kind 2 is 1, 9, 17,
  /// 33, 513 and 65 for the variants 0 to 5, and 1 for any other; every other kind is 0.
  uint32_t GetFlags () const noexcept;
  /// Sets the kind fields from the flags of a file. Fields without a meaning for the kind become 0.
  void SetFlags (uint32_t flags) noexcept;

 private:
  std::vector<std::unique_ptr<fclfile_Attribute>> _Attributes;
};

}  // namespace clxml
