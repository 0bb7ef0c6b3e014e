// The name of one object of an index.
// A plain value: the number of the index and the subscript of the object in it. It stays valid as
// long as the index exists.
#pragma once

#include <compare>
#include <cstdint>

namespace clxml {

class dbIndex;

/// Names an object of an index. Ordered by index number, then by subscript.
class UniqueId {
 public:
  /// The null value: both parts are -1.
  constexpr UniqueId () noexcept = default;
  constexpr UniqueId (int32_t indexNumber, int32_t subscript) noexcept
      : _IndexNumber (indexNumber), _Subscript (subscript) {}

  /// True when the index number is -1, whatever the subscript is.
  constexpr bool IsNull () const noexcept { return _IndexNumber == -1; }
  constexpr int32_t GetIndexNumber () const noexcept { return _IndexNumber; }
  constexpr int32_t GetSubscript () const noexcept { return _Subscript; }
  /// The index of that number; null for a null id and for a number that is not in use.
  dbIndex* GetIndex () const;

  /// The packed form: index number in the top 8 bits, subscript in the low 24. All bits are set for
  /// the null value.
  constexpr uint32_t Pack () const noexcept {
    return static_cast<uint32_t> (_IndexNumber) << 24 |
           (static_cast<uint32_t> (_Subscript) & 0xFFFFFFu);
  }
  /// The id of a packed form; null when all bits are set.
  static constexpr UniqueId FromPacked (uint32_t packed) noexcept {
    if (packed == 0xFFFFFFFFu) return {};
    return {static_cast<int32_t> (packed >> 24), static_cast<int32_t> (packed & 0xFFFFFFu)};
  }

  friend constexpr auto operator<=> (const UniqueId&, const UniqueId&) noexcept = default;

 private:
  int32_t _IndexNumber = -1;
  int32_t _Subscript = -1;
};

}  // namespace clxml
