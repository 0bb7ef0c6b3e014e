// The plan line of a road.
// The elements in their order: recomputation by the way they were keyed in, where a station lies,
// which station a coordinate has, and whether the elements fit together. Leans on horizontal and
// chainage.
#pragma once

#include <memory>

#include "road/chainage.h"
#include "road/horizontal.h"

namespace clxml {

class xmlout_element;

/// A start point and what follows it.
class HorizontalElementArray final
    : public RoadElementArrayOf<HorizontalBase, HorizontalElementArray> {
 public:
  enum KeyinStyle : int32_t { ByLength, ByEndStation, ByEndCoordinate, Mixed };

  /// How all elements behind the first were keyed in; Mixed if not alike, and for fewer than two
  /// elements.
  KeyinStyle GetKeyinStyle () const noexcept;
  /// Turns the elements behind the first to another style, without computing anything; Mixed
  /// changes nothing. Asserts "NewKeyinStyle != HorizontalElementArray::ByEndCoordinate", to which
  /// nothing is turned.
  void ChangeKeyinStyle (KeyinStyle NewKeyinStyle);
  /// Computes every element behind the first again from its keyed values and the end of the one
  /// before; Mixed recomputes nothing. By end station, stations that go back are refused: false,
  /// and nothing is recomputed.
  bool RecomputeAll ();

  /// Of the first element; null if empty.
  double StartChainage () const noexcept;
  /// Of the last element; null if empty.
  double EndChainage () const noexcept;

  /// Where a station lies: the first element whose extent holds it answers. The ends are taken
  /// 0.0005 wide; at the very start the start point answers, with an azimuth of 0.0. False, and a
  /// null position, outside the alignment and where no element holds the station. Costs a walk over
  /// the elements before it.
  bool PositionAt (double station, RoadPosition& position) const;
  /// The coordinate at an offset (metres, to the right positive) beside the station; null where
  /// PositionAt is false.
  coord_CorrectedGrid PointAtStationOffset (double station, double offset) const;
  /// The same on the line itself.
  coord_CorrectedGrid PointAtStation (double station) const;
  /// Station and offset of a coordinate on the nearest element that it lies abreast of; both null
  /// when it lies nearer to an end of an element than abreast of any. Elevation is null. Costs a
  /// look at each element and a computation for the few that come near.
  coord_StationOffset StationOffsetOf (const coord_CorrectedGrid& coordinate) const;
  /// The box of all starts and ends, without heights: arcs and spirals do not widen it beyond their
  /// ends. Coordinates that an element lacks are left out. False, and two nulls, when none is
  /// known.
  bool GetExtent (coord_CorrectedGrid& min, coord_CorrectedGrid& max) const;

  /// Adds the start of each element behind the first with what happens there, and the end.
  void AddChainages (ChainageElementArray& list) const;
  /// A new element, without values, of the class that is most likely to follow element ndx; null
  /// for none. A start point in an empty alignment. Asserts "ndx < Count" otherwise and gives null.
  std::unique_ptr<HorizontalBase> SuggestNextElement (int ndx) const;
  /// Each element behind the first starts within 0.001 of the end of the one before.
  bool CheckContinuity () const;
  /// Each element behind the first ends where its own values say: within 0.001, and 5e-6 radians.
  bool CheckEndsComputable () const;
  /// The HorizontalAlignment section of a road file.
  std::unique_ptr<xmlout_element> ToXml () const;
};

}  // namespace clxml
