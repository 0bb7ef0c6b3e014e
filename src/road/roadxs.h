// The cross section of a road at a station.
// For each side a list of nodes from the centre line outwards that ends at most in a side slope. A
// section is a value: nothing in it refers to the road that it came from. Offsets are metres,
// positive to the right of the direction of travel.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Library/coords/coord.h"
#include "numerics/maths.h"
#include "road/placements.h"
#include "str.h"

namespace clxml {

/// The offsets that stand for the side slopes, metres.
inline constexpr double ROADXS_LeftBatterOffset = -5e306;
inline constexpr double ROADXS_RightBatterOffset = 5e306;

/// The node numbers of roadxs_Offset that name no node.
enum roadxs_NodeNumber : int32_t {
  ROADXS_Centre = 0,
  ROADXS_FreeNode = -32767,        ///< a free offset, not tied to a node
  ROADXS_LeftBatterNode = -32766,  ///< the left side slope
  ROADXS_LeftBeyondNode = -32765,  ///< beyond the last left node, where no side slope reaches
  ROADXS_RightBeyondNode = 32766,  ///< the same on the right
  ROADXS_RightBatterNode = 32767,  ///< the right side slope
};

/// One node of a section. Flag, Id and Value are for callers: the library copies and compares them
/// and never sets them.
class roadxs_Node {
 public:
  double Offset = MATHS_Null;     ///< metres
  double Elevation = MATHS_Null;  ///< metres
  Str Code;
  bool Flag = false;
  int32_t Id = 0;
  double Value = 0.0;

  /// Offset and Elevation are compared to 8 decimals, the rest exactly.
  bool operator== (const roadxs_Node& other) const;
};

/// A place on a section. Node -32766 always has the offset ROADXS_LeftBatterOffset, and 32767 has
/// ROADXS_RightBatterOffset; both are asserted.
class roadxs_Offset {
 public:
  Str Code;
  /// 0 the centre, n the n-th node of the right side, -n the n-th of the left side, counted from
  /// the centre, or a roadxs_NodeNumber.
  int32_t Node = ROADXS_FreeNode;
  double Offset = MATHS_Null;  ///< metres

  roadxs_Offset () = default;
  /// A free offset.
  explicit roadxs_Offset (double offset) : Offset (offset) {}

  /// The side on which the place lies: the right one for an Offset of 0 or above.
  dbroad_Side Side () const noexcept { return Offset >= 0.0 ? DBROAD_SideRight : DBROAD_SideLeft; }
  bool IsLeftBatter () const;
  bool IsRightBatter () const;
  bool IsBatter () const { return IsLeftBatter () || IsRightBatter (); }
};

/// One side of a section. Offsets and Extent are negative on the left side.
class roadxs_Side {
 public:
  Str Template;                    ///< name of the template that gave the side
  std::vector<roadxs_Node> Nodes;  ///< from the centre outwards
  double Extent = MATHS_Null;      ///< Offset of the last node, metres
  bool HasBatter = false;          ///< the side ends in a side slope
  double CutGrade = MATHS_Null;    ///< radians, positive rising outwards
  double FillGrade = MATHS_Null;   ///< radians, positive falling outwards
  Str BatterCode;
  double CutDitchWidth = 0.0;  ///< metres

  int32_t NodeCount () const noexcept { return static_cast<int32_t> (Nodes.size ()); }
  int32_t NodeCapacity () const noexcept { return static_cast<int32_t> (Nodes.capacity ()); }
  /// No nodes and no side slope.
  bool IsEmpty () const noexcept { return Nodes.empty () && !HasBatter; }
  /// Numbers are compared to 8 decimals.
  bool operator== (const roadxs_Side& other) const;
};

/// A cross section. An elevation, a grade or an offset that cannot be given is null.
class roadxs_CrossSection {
 public:
  Str RoadName;
  coord_CorrectedGrid Coordinate;  ///< on the centre line; Elevation is that of the alignment
  double Azimuth = MATHS_Null;     ///< of the right side: the tangent plus π/2, [0, 2π)
  double Station = MATHS_Null;     ///< metres; null in a section outside the road
  roadxs_Node Centre;  ///< offset 0.0; Elevation includes the correction for a pivot at an edge
  std::array<roadxs_Side, 2> Sides;     ///< by dbroad_Side: left first
  std::vector<roadxs_Node> ExtraNodes;  ///< for callers; no operation uses them

  const roadxs_Side& Left () const noexcept { return Sides[DBROAD_SideLeft]; }
  const roadxs_Side& Right () const noexcept { return Sides[DBROAD_SideRight]; }
  const roadxs_Side& Side (dbroad_Side side) const noexcept {
    return Sides[static_cast<std::size_t> (side)];
  }
  roadxs_Side& Side (dbroad_Side side) noexcept { return Sides[static_cast<std::size_t> (side)]; }

  /// The elevation at a place; null beyond the last node of its side. A node within 0.0005 gives
  /// its own elevation: a place tied to a node the elevation of that node, a free offset that of
  /// the inner one of two. Not for side slopes ("Offset.Offset != ROADXS_LeftBatterOffset",
  /// "Offset.Offset != ROADXS_RightBatterOffset"), which give null.
  double DesignElevation (const roadxs_Offset& Offset) const;
  /// The same, and beyond the last node the elevation of the side slope: in fill if the last node
  /// is above the ground, otherwise in cut. groundHeight is the height of the ground above
  /// Coordinate.Elevation, metres.
  double DesignElevationWithGround (const roadxs_Offset& Offset, double groundHeight) const;
  /// The grade (radians, positive rising outwards) of the strip that contains the offset; on a node
  /// that of the strip inside it, 0.0 at the centre. Null beyond the last node by more than 0.0005
  /// and for side slopes.
  double GradeAt (const roadxs_Offset& Offset) const;
  /// The last node of a side, or the centre.
  roadxs_Offset EndOffset (dbroad_Side side) const;
  double EndElevation (dbroad_Side side) const;
  /// GradeAt of EndOffset; 0.0 if that is null.
  double EndGrade (dbroad_Side side) const;
  /// The offset is greater, in absolute value, than the end of its side.
  bool BeyondEnd (const roadxs_Offset& Offset) const;
  /// Moves a place to the side slope of its side, with that side's BatterCode.
  void BatterOffset (roadxs_Offset& Offset) const;
  /// NextRight on the right side, NextLeft on the left side.
  bool NextOutwards (roadxs_Offset& Offset) const;
  /// Moves a place to the next one to the right (to the left): nodes, centre and side slope. From a
  /// place between nodes to the next node. False, and the place stays, when there is none. A place
  /// beyond the last node goes to the side slope or, without one, back to the last node.
  bool NextRight (roadxs_Offset& Offset) const;
  bool NextLeft (roadxs_Offset& Offset) const;
  /// The number of places: the centre unless its Offset is null, all nodes and the side slopes.
  int32_t NodeCount () const noexcept;
  /// The Id of a place by its number from 0, from the outermost on the left to the outermost on the
  /// right; 0 for a side slope. Asserts "node >= 0" and "node < NodeCount()", and then gives 0.
  int32_t NodeId (int32_t node) const;
  /// No nodes and no side slopes.
  bool IsEmpty () const noexcept { return Left ().IsEmpty () && Right ().IsEmpty (); }
  /// True if a lies further out than b: a side slope is further out than all nodes of its side, and
  /// everything is further out than the centre. False for nulls.
  static bool IsFurtherOut (const roadxs_Offset& a, const roadxs_Offset& b);

  /// RoadName and Station exactly, Coordinate and Azimuth to 8 decimals, Centre and Sides.
  bool operator== (const roadxs_CrossSection& other) const;

 private:
  double SearchNodes (const roadxs_Offset& place) const;
  double BatterElevation (const roadxs_Offset& place, double groundHeight) const;
  bool Next (roadxs_Offset& place, dbroad_Side side) const;
  void TakeNode (roadxs_Offset& place, int32_t number) const;
};

}  // namespace clxml
