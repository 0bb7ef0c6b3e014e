// Stations of interest along a road.
// Keeps them in order while they are added, and walks them. Leans on approx.
#include "road/chainage.h"

#include <algorithm>
#include <memory>

#include "numerics/approx.h"

namespace clxml {

void ChainageElementArray::Append (double station, uint32_t flags) {
  New<ChainageElement> (station, flags);
}

void ChainageElementArray::Add (double station, uint32_t flags) {
  if (IsEmpty ()) {
    if (approx (station, EQ, StartChainage) || approx (station, EQ, EndChainage) ||
        (StartChainage < station && station < EndChainage))
      Append (station, flags);
    return;
  }
  if (approx (station, EQ, StartChainage) && StartChainage < At (0)->Chainage) {
    Insert (0, std::make_unique<ChainageElement> (station, flags));
    return;
  }
  if (approx (station, LT, StartChainage)) return;

  // The first element that can be the same station or lie behind it; those before it are neither.
  // With a null in play the order means nothing, and all are looked at.
  int i = 0;
  if (!maths_IsNull (station) && !maths_IsNull (StartChainage)) {
    const auto first = std::partition_point (
        _Elements.begin (), _Elements.end (), [station] (const auto& element) {
          return static_cast<const ChainageElement&> (*element).Chainage < station - APPROX_Delta;
        });
    i = static_cast<int> (first - _Elements.begin ());
  }
  double previous = i == 0 ? StartChainage : At (i - 1)->Chainage;
  for (; i < Count (); i++) {
    ChainageElement& element = *At (i);
    if (approx (station, EQ, element.Chainage)) {
      element.Flags |= flags;
      return;
    }
    if (previous < station && element.Chainage > station) {
      Insert (i, std::make_unique<ChainageElement> (station, flags));
      return;
    }
    previous = element.Chainage;
  }
  if (approx (station, LE, EndChainage)) Append (station, flags);
}

namespace {

void Answer (const ChainageElement& element, ChainageItem& item) {
  item.Chainage = element.Chainage;
  item.Flags = element.Flags;
}

}  // namespace

double RxlChainageList::FirstChainage () const {
  return Elements.IsEmpty () ? MATHS_Null : Elements.At (0)->Chainage;
}

double RxlChainageList::LastChainage () const {
  return Elements.IsEmpty () ? MATHS_Null : Elements.Last ()->Chainage;
}

bool RxlChainageList::Next (ChainageItem& item) const {
  for (int i = 0; i < Elements.Count (); i++)
    if (Elements.At (i)->Chainage > item.Chainage) {
      Answer (*Elements.At (i), item);
      return true;
    }
  return false;
}

bool RxlChainageList::Previous (ChainageItem& item) const {
  for (int i = Elements.Count () - 1; i >= 0; i--)
    if (Elements.At (i)->Chainage < item.Chainage) {
      Answer (*Elements.At (i), item);
      return true;
    }
  return false;
}

bool RxlChainageList::ByIndex (int index, ChainageItem& item) const {
  if (index < 1 || index > Elements.Count ()) return false;
  Answer (*Elements.At (index - 1), item);
  return true;
}

bool RxlChainageList::FindIndexes (double station, int& before, int& after, int& nearest) const {
  for (int i = 1; i < Elements.Count (); i++) {
    const double lower = Elements.At (i - 1)->Chainage, upper = Elements.At (i)->Chainage;
    if (lower == station || upper == station) {
      before = after = nearest = lower == station ? i : i + 1;
      return true;
    }
    if (lower < station && station < upper) {
      before = i;
      after = i + 1;
      nearest = station - lower < upper - station ? before : after;
      return true;
    }
  }
  return false;
}

}  // namespace clxml
