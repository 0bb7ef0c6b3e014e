// How the finished strips are tilted and widened along the road.
// Entries in the order of their stations; values are interpolated linearly between them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "numerics/maths.h"
#include "road/chainage.h"
#include "road/placements.h"
#include "road/roadelement.h"
#include "road/stationindex.h"

namespace clxml {

class xmlout_element;

/// Superelevation and widening at one station.
class SuperElevationWidening final
    : public RoadElementOf<SuperElevationWidening, ROAD_SuperElevationWidening> {
 public:
  enum PivotPosition : int32_t { Left = 0, Crown = 1, Right = 2 };

  int32_t Pivot = Crown;         ///< PivotPosition
  double Chainage = MATHS_Null;  ///< metres
  /// Cross grade of each side (dbroad_Side), radians, positive rising outwards.
  std::array<double, 2> Superelevation = {MATHS_Null, MATHS_Null};
  /// Added width of each side, metres.
  std::array<double, 2> Widening = {0.0, 0.0};

  /// None of the four side values is null.
  bool IsComplete () const noexcept;
  bool operator== (const SuperElevationWidening&) const = default;
};

/// The entries of a road in the order of their stations. Stations are compared within 0.0005, rates
/// (radians for a metre) and grades within 1e-5.
class SuperElevationArray final
    : public RoadElementArrayOf<SuperElevationWidening, SuperElevationArray> {
 public:
  /// The values at a station: a complete entry at that station, otherwise the interpolation between
  /// the last entry at or before it and the first complete one at or after it, with the pivot of
  /// the former; superelevation is interpolated as an angle. A value that the former lacks is null.
  /// After the last complete entry the last entry at or before the station; before the first entry
  /// all four values are null. The default if there is no entry at or before the station and no
  /// complete one after it.
  SuperElevationWidening ValueAt (double station) const;
  /// Adds the stations at which superelevation or widening starts, ends, is full or changes rate.
  void AddChainages (ChainageElementArray& list) const;
  /// No two neighbours have exactly the same station, and the first and the last lie within the
  /// road from start to end.
  bool CheckConsistency (double start, double end) const;
  /// The SuperelevationAndWidening section of a road file.
  std::unique_ptr<xmlout_element> ToXml () const;

 private:
  // Entry i; i lies in the array.
  const SuperElevationWidening& Entry (int i) const noexcept { return *At (i); }
  double Rate (int side, int ndx) const noexcept;
  bool IsCrowned (int ndx) const noexcept;
  bool IsPlane (int ndx) const noexcept;
  bool RateChanges (int ndx) const noexcept;
  bool FlatAfter (int ndx) const noexcept;
  bool FlatBefore (int ndx) const noexcept;
  bool KeepsDirection (int side, int ndx) const noexcept;
  bool SidesOppose (int ndx) const noexcept;
  bool TurnsBack (int side, int ndx) const noexcept;
  bool BothTurn (int ndx) const noexcept;
  bool PassesLevel (int ndx) const noexcept;
  void AddSuperelevationEvents (ChainageElementArray& list) const;
  void AddWideningEvents (ChainageElementArray& list) const;
};

/// SuperElevationArray::ValueAt for many stations: each costs a binary search where the list is in
/// station order. The list must outlive the index and not change.
class SuperElevationIndex {
 public:
  explicit SuperElevationIndex (const SuperElevationArray& entries);
  SuperElevationWidening ValueAt (double station) const;

 private:
  const SuperElevationArray& _Entries;
  StationIndex _Stations;
  std::vector<int> _NextComplete;  // the first complete entry from entry n on, -1 for none
};

}  // namespace clxml
