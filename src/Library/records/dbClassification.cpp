// The search class of a point: the order of the classes, their names, and their numbers in older
// exchange files. Uses dbField.
#include "Library/records/dbField.h"

namespace clxml {
namespace {

// In the order of the classes from None on.
constexpr const char* names[] = {"None",   "Check", "BackSight", "Stakeout", "Construction",
                                 "Normal", "MTA",   "Adjusted",  "Averaged", "Control"};

bool IsInRange (int32_t i) {
  return i >= db_PointClassification::MinValue && i <= db_PointClassification::MaxValue;
}

// The rank of a class in a search. A number outside the range ranks with None.
int Level (int32_t value) {
  // In the order of the classes from None on.
  constexpr int levels[] = {0, 1, 4, 2, 3, 4, 4, 5, 6, 7};
  return IsInRange (value) ? levels[value - db_PointClassification::MinValue] : 0;
}

// The flag that older files carry in the class.
int WithFlag (int number, bool flag) { return flag ? number : number + 8; }

}  // namespace

db_PointClassification::db_PointClassification (int32_t i) : value (i) {
  Assert (IsInRange (i), "i >= MinValue && i <= MaxValue");
}

// A filter outside the range is covered by no class.
bool db_PointClassification::Covers (db_PointClassification filter) const noexcept {
  return IsInRange (filter.value) && Level (value) >= Level (filter.value);
}

const char* db_PointClassification::ToText () const noexcept {
  return IsInRange (value) ? names[value - MinValue] : "";
}

bool db_PointClassification::FromText (std::string_view name) noexcept {
  if (name.empty ()) return true;
  for (int32_t i = MinValue; i <= MaxValue; i++) {
    if (name == names[i - MinValue]) {
      value = i;
      return true;
    }
  }
  return false;
}

db_PointClassification db_PointClassification::FromLegacy (int number) noexcept {
  constexpr Class classes[] = {Check,  BackSight, Stakeout, Construction,
                               Normal, Adjusted,  Averaged, Control};
  return classes[number & 7];
}

int db_PointClassification::ToLegacy (bool flag) const {
  Assert (this->value != None, "this->value != None");
  switch (value) {
    case BackSight:
      return WithFlag (1, flag);
    case Stakeout:
      return WithFlag (2, flag);
    case Construction:
      return WithFlag (3, flag);
    case Normal:
    case MTA:
      return WithFlag (4, flag);
    case Adjusted:
      return WithFlag (5, flag);
    case Averaged:
      return WithFlag (6, flag);
    case Control:
      return WithFlag (7, flag);
    default:
      return WithFlag (0, flag);
  }
}

int db_PointClassification::ToOldLegacy (bool flag) const {
  if (value >= Construction && value <= Averaged) return WithFlag (4, flag);
  return ToLegacy (flag);
}

}  // namespace clxml
