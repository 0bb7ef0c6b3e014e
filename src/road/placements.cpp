// Which template applies where.
// Finds the placements before and after a station.
#include "road/placements.h"

#include <set>
#include <string_view>

#include "numerics/approx.h"

namespace clxml {

namespace {

// The sides found, copied; the default where there is none.
SidedTemplatePlacement PlacementOf (const std::array<const SidePlacement*, 2>& found) {
  SidedTemplatePlacement placement;
  for (std::size_t side = 0; side < 2; side++)
    if (found[side] != nullptr) placement.Sides[side] = *found[side];
  return placement;
}

}  // namespace

SidedTemplatePlacement TemplatePlacementArray::PreviousPlacement (double station) const {
  std::array<const SidePlacement*, 2> found = {nullptr, nullptr};
  for (int i = 0; i < Count () && approx (At (i)->Left ().Chainage, LE, station); i++)
    for (std::size_t side = 0; side < 2; side++)
      if (At (i)->Sides[side].Type != SidePlacement::Interpolate)
        found[side] = &At (i)->Sides[side];
  return PlacementOf (found);
}

SidedTemplatePlacement TemplatePlacementArray::NextPlacement (double station) const {
  std::array<const SidePlacement*, 2> found = {nullptr, nullptr};
  for (int i = 0; i < Count () && !(found[0] && found[1]); i++) {
    if (approx (At (i)->Left ().Chainage, LE, station)) continue;
    for (std::size_t side = 0; side < 2; side++)
      if (!found[side] && At (i)->Sides[side].Type != SidePlacement::Interpolate)
        found[side] = &At (i)->Sides[side];
  }
  return PlacementOf (found);
}

TemplatePlacementIndex::TemplatePlacementIndex (const TemplatePlacementArray& placements)
    : _Placements (placements),
      _Previous (static_cast<std::size_t> (placements.Count ()) + 1, BySide{-1, -1}),
      _Next (_Previous) {
  const auto take = [this] (BySide& found, int i) {
    for (std::size_t side = 0; side < 2; side++)
      if (_Placements.At (i)->Sides[side].Type != SidePlacement::Interpolate) found[side] = i;
  };
  for (int i = 0; i < placements.Count (); i++) {
    const auto n = static_cast<std::size_t> (i);
    _Stations.Add (placements.At (i)->Left ().Chainage);
    _Previous[n + 1] = _Previous[n];
    take (_Previous[n + 1], i);
  }
  for (int i = placements.Count () - 1; i >= 0; i--) {
    const auto n = static_cast<std::size_t> (i);
    _Next[n] = _Next[n + 1];
    take (_Next[n], i);
  }
}

SidedTemplatePlacement TemplatePlacementIndex::At (const BySide& found) const {
  std::array<const SidePlacement*, 2> sides = {nullptr, nullptr};
  for (std::size_t side = 0; side < 2; side++)
    if (found[side] >= 0) sides[side] = &_Placements.At (found[side])->Sides[side];
  return PlacementOf (sides);
}

SidedTemplatePlacement TemplatePlacementIndex::PreviousPlacement (double station) const {
  if (!_Stations.Answers (station)) return _Placements.PreviousPlacement (station);
  return At (_Previous[static_cast<std::size_t> (_Stations.CountUpTo (station))]);
}

SidedTemplatePlacement TemplatePlacementIndex::NextPlacement (double station) const {
  if (!_Stations.Answers (station)) return _Placements.NextPlacement (station);
  return At (_Next[static_cast<std::size_t> (_Stations.CountUpTo (station))]);
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
