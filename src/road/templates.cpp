// Cross-section templates.
// What superelevation and widening ask of a template, and the checks of a list of them. Leans on
// maths.
#include "road/templates.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "numerics/grade.h"

namespace clxml {

double TemplateDistanceDelta::ImpliedGrade () const noexcept {
  const double grade = maths_Atan2 (VerticalDistance, HorizontalDistance);
  return maths_IsNull (grade) ? 0.0 : grade;
}

double CrossSectionTemplate::SuperelevationGrade () const noexcept {
  for (int i = 0; i < Count (); i++) {
    const auto* strip = RoadElement_Cast<TemplateStrip> (At (i));
    if (strip == nullptr || !strip->ApplySuperelevation) continue;
    if (const auto* graded = RoadElement_Cast<TemplateDistanceGrade> (At (i))) {
      if (graded->Grade > GRADE_Down && graded->Grade < GRADE_Up) return graded->Grade;
    } else if (const auto* stepped = RoadElement_Cast<TemplateDistanceDelta> (At (i))) {
      if (stepped->HorizontalDistance != 0.0) return stepped->ImpliedGrade ();
    }
  }
  return MATHS_Null;
}

double CrossSectionTemplate::SuperelevationWidth () const noexcept {
  double width = 0.0;
  for (int i = 0; i < Count (); i++)
    if (const auto* strip = RoadElement_Cast<TemplateStrip> (At (i));
        strip != nullptr && strip->ApplySuperelevation)
      maths_AddTo (width, strip->HorizontalDistance);
  return width;
}

int CrossSectionTemplate::WideningStripCount () const noexcept {
  int count = 0;
  for (int i = 0; i < Count (); i++)
    if (const auto* strip = RoadElement_Cast<TemplateStrip> (At (i));
        strip != nullptr && strip->ApplyWidening)
      count++;
  return count;
}

bool CrossSectionTemplate::IsInvalid () const noexcept {
  for (int i = 0; i < Count (); i++)
    if (const auto* strip = RoadElement_Cast<TemplateStrip> (At (i));
        strip != nullptr && strip->HorizontalDistance < 0.0)
      return true;
  return false;
}

const CrossSectionTemplate* TemplateArray::FindByName (const Str& name) const noexcept {
  const auto found = std::find_if (
      begin (), end (), [&name] (const CrossSectionTemplate& one) { return one.Name == name; });
  return found == end () ? nullptr : &*found;
}

bool TemplateArray::NamesAreUnique () const {
  std::set<std::string_view> names;
  return std::all_of (begin (), end (), [&names] (const CrossSectionTemplate& one) {
    return names.insert (one.Name.View ()).second;
  });
}

bool TemplateArray::HasAll (const StrArray& names) const {
  std::set<std::string_view> known;
  for (const CrossSectionTemplate& one : *this) known.insert (one.Name.View ());
  for (int i = 0; i < names.Count (); i++)
    if (!known.contains (names[i].View ())) return false;
  return true;
}

bool TemplateArray::AnyInvalid () const noexcept {
  return std::any_of (begin (), end (),
                      [] (const CrossSectionTemplate& one) { return one.IsInvalid (); });
}

}  // namespace clxml
