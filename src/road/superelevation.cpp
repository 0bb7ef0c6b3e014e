// How the finished strips are tilted and widened along the road.
// Values between the entries, and the stations at which something begins, ends or changes.
#include "road/superelevation.h"

#include <cmath>

#include "Library/cogo/roadcogo.h"
#include "numerics/approx.h"

namespace clxml {

namespace {

// Two rates, or two grades, this close are one.
constexpr double sameRate = 1e-5;

bool IsSame (double a, double b) { return approx (a, EQ, b, sameRate); }

// -1, 0 or 1; a null has no sign.
int Sign (double value) { return maths_IsNull (value) || value == 0.0 ? 0 : value < 0.0 ? -1 : 1; }

double Width (const SuperElevationWidening& entry) {
  double sum = 0.0;
  for (const double width : entry.Widening)
    if (!maths_IsNull (width)) sum += width;
  return sum;
}

}  // namespace

bool SuperElevationWidening::IsComplete () const noexcept {
  return !maths_IsNull (Superelevation[0]) && !maths_IsNull (Superelevation[1]) &&
         !maths_IsNull (Widening[0]) && !maths_IsNull (Widening[1]);
}

namespace {

// The values at a station between two entries, of which the upper one is complete. Without a lower
// one they are null.
SuperElevationWidening Interpolate (const SuperElevationWidening* lower,
                                    const SuperElevationWidening& upper, double station) {
  SuperElevationWidening value;
  value.Chainage = station;
  value.Widening = {MATHS_Null, MATHS_Null};
  if (lower == nullptr) return value;
  value.Pivot = lower->Pivot;
  const auto between = [&] (double a, double b) {
    return maths_NullUnlessFinite (
        roadcogo_Interpolate (a, b, lower->Chainage, upper.Chainage, station));
  };
  for (std::size_t side = 0; side < 2; side++) {
    value.Superelevation[side] = between (lower->Superelevation[side], upper.Superelevation[side]);
    value.Widening[side] = between (lower->Widening[side], upper.Widening[side]);
  }
  return value;
}

}  // namespace

SuperElevationWidening SuperElevationArray::ValueAt (double station) const {
  const SuperElevationWidening* lower = nullptr;
  for (int i = 0; i < Count (); i++) {
    const SuperElevationWidening& entry = Entry (i);
    if (approx (entry.Chainage, EQ, station) && entry.IsComplete ()) return entry;
    if (approx (entry.Chainage, LE, station)) lower = &entry;
    if (approx (entry.Chainage, GE, station) && entry.IsComplete ())
      return Interpolate (lower, entry, station);
  }
  return lower != nullptr ? *lower : SuperElevationWidening ();
}

SuperElevationIndex::SuperElevationIndex (const SuperElevationArray& entries)
    : _Entries (entries), _NextComplete (static_cast<std::size_t> (entries.Count ()) + 1, -1) {
  for (int i = 0; i < entries.Count (); i++) _Stations.Add (entries.At (i)->Chainage);
  for (int i = entries.Count () - 1; i >= 0; i--) {
    const auto n = static_cast<std::size_t> (i);
    _NextComplete[n] = entries.At (i)->IsComplete () ? i : _NextComplete[n + 1];
  }
}

SuperElevationWidening SuperElevationIndex::ValueAt (double station) const {
  if (!_Stations.Answers (station)) return _Entries.ValueAt (station);
  const int upTo = _Stations.CountUpTo (station);
  const int next = _NextComplete[static_cast<std::size_t> (_Stations.CountBefore (station))];
  const SuperElevationWidening* lower = upTo > 0 ? _Entries.At (upTo - 1) : nullptr;
  if (next < 0) return lower != nullptr ? *lower : SuperElevationWidening ();
  // An entry at the station itself, or the first one after it.
  return next < upTo ? *_Entries.At (next) : Interpolate (lower, *_Entries.At (next), station);
}

// The rate at which a side's grade changes from the entry before ndx to ndx, 1 <= ndx < Count.
double SuperElevationArray::Rate (int side, int ndx) const noexcept {
  const auto s = static_cast<std::size_t> (side);
  const double change =
      maths_Subtract (Entry (ndx).Superelevation[s], Entry (ndx - 1).Superelevation[s]);
  return maths_Divide (change, maths_Subtract (Entry (ndx).Chainage, Entry (ndx - 1).Chainage));
}

// Both sides fall, or rise, alike from the centre line.
bool SuperElevationArray::IsCrowned (int ndx) const noexcept {
  const auto& [left, right] = Entry (ndx).Superelevation;
  return !maths_IsNull (left) && !maths_IsNull (right) && IsSame (left, right);
}

// The whole section is one plane.
bool SuperElevationArray::IsPlane (int ndx) const noexcept {
  const auto& [left, right] = Entry (ndx).Superelevation;
  return IsSame (maths_Abs (left), maths_Abs (right)) &&
         ((left > 0.0 && right < 0.0) || (left < 0.0 && right > 0.0) ||
          (left == 0.0 && right == 0.0));
}

bool SuperElevationArray::RateChanges (int ndx) const noexcept {
  return !IsSame (Rate (DBROAD_SideLeft, ndx), Rate (DBROAD_SideLeft, ndx + 1)) ||
         !IsSame (Rate (DBROAD_SideRight, ndx), Rate (DBROAD_SideRight, ndx + 1));
}

bool SuperElevationArray::FlatAfter (int ndx) const noexcept { return FlatBefore (ndx + 1); }

bool SuperElevationArray::FlatBefore (int ndx) const noexcept {
  return IsSame (Rate (DBROAD_SideLeft, ndx), 0.0) && IsSame (Rate (DBROAD_SideRight, ndx), 0.0);
}

bool SuperElevationArray::KeepsDirection (int side, int ndx) const noexcept {
  return Sign (Rate (side, ndx)) * Sign (Rate (side, ndx + 1)) > 0;
}

bool SuperElevationArray::SidesOppose (int ndx) const noexcept {
  return Sign (Rate (DBROAD_SideLeft, ndx + 1)) * Sign (Rate (DBROAD_SideRight, ndx + 1)) < 0;
}

// The side that was on its way outwards from the other one stops or returns.
bool SuperElevationArray::TurnsBack (int side, int ndx) const noexcept {
  const double here = Entry (ndx).Superelevation[static_cast<std::size_t> (side)];
  const double other = Entry (ndx).Superelevation[static_cast<std::size_t> (1 - side)];
  if (maths_IsNull (here) || maths_IsNull (other) || here == other) return false;
  const double before = Rate (side, ndx), after = Rate (side, ndx + 1);
  if (maths_IsNull (before) || maths_IsNull (after)) return false;
  const int outwards = other < here ? 1 : -1;
  const int b = outwards * Sign (before), a = outwards * Sign (after);
  return b >= 0 && a <= 0 && b != a;
}

bool SuperElevationArray::BothTurn (int ndx) const noexcept {
  return TurnsBack (DBROAD_SideLeft, ndx) && TurnsBack (DBROAD_SideRight, ndx);
}

// A crown that turns over into its opposite, each side at one rate.
bool SuperElevationArray::PassesLevel (int ndx) const noexcept {
  const auto& [left, right] = Entry (ndx).Superelevation;
  return approx (left, EQ, 0.0) && approx (right, EQ, 0.0) &&
         KeepsDirection (DBROAD_SideLeft, ndx) && KeepsDirection (DBROAD_SideRight, ndx) &&
         SidesOppose (ndx);
}

void SuperElevationArray::AddSuperelevationEvents (ChainageElementArray& list) const {
  list.Add (Entry (0).Chainage, ChainageSuperStart);
  for (int i = 1; i + 1 < Count (); i++) {
    const double station = Entry (i).Chainage;
    const bool changes = RateChanges (i);
    if (IsPlane (i) && BothTurn (i))
      list.Add (station, ChainageSuperFull);
    else if (IsPlane (i) && changes)
      list.Add (station, ChainageSuperPlaneRate);
    else if (IsCrowned (i) && changes && FlatAfter (i))
      list.Add (station, ChainageSuperEnd);
    else if (IsCrowned (i) && changes && FlatBefore (i))
      list.Add (station, ChainageSuperStart);
    else if (IsCrowned (i) && PassesLevel (i))
      list.Add (station, ChainageSuperEnd | ChainageSuperStart);
    else if (changes)
      list.Add (station, ChainageSuperRate);
  }
  if (IsCrowned (Count () - 1)) list.Add (Last ()->Chainage, ChainageSuperEnd);
}

void SuperElevationArray::AddWideningEvents (ChainageElementArray& list) const {
  const SuperElevationWidening* previous = At (0);
  const SuperElevationWidening* widest = previous;
  double best = std::abs (Width (*previous));
  bool isRising = false, isFalling = false;
  for (int i = 1; i < Count (); i++) {
    const SuperElevationWidening& entry = Entry (i);
    const double width = Width (entry);
    if (isRising) {
      if (best < width) {
        best = width;
        widest = &entry;
      } else if (best > width) {
        isRising = false;
        isFalling = true;
        if (previous->Chainage != widest->Chainage)
          list.Add (widest->Chainage, ChainageWideningFull);
        list.Add (previous->Chainage, ChainageWideningFull);
      }
    }
    if (width == 0.0) {
      isFalling = false;
      list.Add (entry.Chainage, ChainageWideningEnd);
    }
    if (!isRising && !isFalling && Width (*previous) < width) {
      isRising = true;
      best = width;
      widest = &entry;
      list.Add (previous->Chainage, ChainageWideningStart);
    }
    previous = &entry;
  }
}

void SuperElevationArray::AddChainages (ChainageElementArray& list) const {
  if (IsEmpty ()) return;
  AddSuperelevationEvents (list);
  AddWideningEvents (list);
}

bool SuperElevationArray::CheckConsistency (double start, double end) const {
  for (int i = 1; i < Count (); i++)
    if (Entry (i - 1).Chainage == Entry (i).Chainage) return false;
  return IsEmpty () ||
         (approx (Entry (0).Chainage, GE, start) && approx (Last ()->Chainage, LE, end));
}

}  // namespace clxml
