// Which template applies where.
// Finds the placements around a station. Leans on approx.
#include "road/placements.h"

#include <set>
#include <string_view>

#include "numerics/approx.h"

namespace clxml {

SidedTemplatePlacement TemplatePlacementArray::PreviousPlacement (double station) const {
  SidedTemplatePlacement previous;
  for (int i = 0; i < Count () && approx (At (i)->Left ().Chainage, LE, station); i++)
    for (const int side : {DBROAD_SideLeft, DBROAD_SideRight}) {
      const SidePlacement& here = At (i)->Sides[static_cast<std::size_t> (side)];
      if (here.Type != SidePlacement::Interpolate)
        previous.Sides[static_cast<std::size_t> (side)] = here;
    }
  return previous;
}

SidedTemplatePlacement TemplatePlacementArray::NextPlacement (double station) const {
  SidedTemplatePlacement next;
  std::array<bool, 2> isSet = {false, false};
  for (int i = 0; i < Count () && !(isSet[0] && isSet[1]); i++) {
    if (approx (At (i)->Left ().Chainage, LE, station)) continue;
    for (std::size_t side = 0; side < 2; side++) {
      const SidePlacement& here = At (i)->Sides[side];
      if (isSet[side] || here.Type == SidePlacement::Interpolate) continue;
      next.Sides[side] = here;
      isSet[side] = true;
    }
  }
  return next;
}

bool TemplatePlacementArray::HasTemplates () const noexcept {
  for (int i = 0; i < Count (); i++)
    for (const SidePlacement& side : At (i)->Sides)
      if (side.Type == SidePlacement::UserDefined) return true;
  return false;
}

void TemplatePlacementArray::AddChainages (ChainageElementArray& list) const {
  for (int i = 0; i < Count (); i++) list.Add (At (i)->Left ().Chainage, ChainageTemplate);
}

void TemplatePlacementArray::RenameTemplate (const Str& oldName, const Str& newName) {
  // The old name may be one of those that change.
  const Str wanted = oldName;
  for (int i = 0; i < Count (); i++)
    for (SidePlacement& side : At (i)->Sides)
      if (side.Type == SidePlacement::UserDefined && side.Name == wanted) side.Name = newName;
}

StrArray TemplatePlacementArray::UsedTemplateNames () const {
  StrArray names;
  std::set<std::string_view> seen;
  for (int i = 0; i < Count (); i++)
    for (const SidePlacement& side : At (i)->Sides)
      if (side.Type == SidePlacement::UserDefined && seen.insert (side.Name.View ()).second)
        names.Add (side.Name);
  return names;
}

bool TemplatePlacementArray::CheckConsistency (double start, double end) const {
  for (int i = 0; i < Count (); i++) {
    if (!approx (At (i)->Right ().Chainage, EQ, At (i)->Left ().Chainage)) return false;
    if (i > 0 && At (i - 1)->Left ().Chainage == At (i)->Left ().Chainage) return false;
  }
  return IsEmpty () || (approx (At (0)->Left ().Chainage, GE, start) &&
                        approx (Last ()->Left ().Chainage, LE, end));
}

}  // namespace clxml
