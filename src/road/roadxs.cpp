// The cross section of a road at a station.
// Elevations and grades at offsets, and the walk from place to place.
#include "road/roadxs.h"

#include <cmath>

#include "Library/cogo/roadcogo.h"
#include "numerics/approx.h"

namespace clxml {

namespace {

constexpr int sameDecimals = 8;

bool IsSame (double a, double b) { return approx_Decimals (a, EQ, b, sameDecimals); }

bool IsBeyondNode (int32_t number) {
  return number == ROADXS_LeftBeyondNode || number == ROADXS_RightBeyondNode;
}

double Interpolate (const roadxs_Node& a, const roadxs_Node& b, double offset) {
  return maths_NullUnlessFinite (
      roadcogo_Interpolate (a.Elevation, b.Elevation, a.Offset, b.Offset, offset));
}

}  // namespace

bool roadxs_Node::operator== (const roadxs_Node& other) const {
  return Code == other.Code && Id == other.Id && Flag == other.Flag && Value == other.Value &&
         IsSame (Offset, other.Offset) && IsSame (Elevation, other.Elevation);
}

bool roadxs_Side::operator== (const roadxs_Side& other) const {
  return Template == other.Template && Nodes == other.Nodes && IsSame (Extent, other.Extent) &&
         HasBatter == other.HasBatter && IsSame (CutGrade, other.CutGrade) &&
         IsSame (FillGrade, other.FillGrade) && BatterCode == other.BatterCode &&
         IsSame (CutDitchWidth, other.CutDitchWidth);
}

bool roadxs_CrossSection::operator== (const roadxs_CrossSection& other) const {
  return RoadName == other.RoadName && Station == other.Station &&
         IsSame (Coordinate.Elevation, other.Coordinate.Elevation) &&
         IsSame (Coordinate.East, other.Coordinate.East) &&
         IsSame (Coordinate.North, other.Coordinate.North) && IsSame (Azimuth, other.Azimuth) &&
         Centre == other.Centre && Sides == other.Sides;
}

bool roadxs_Offset::IsLeftBatter () const {
  return Node == ROADXS_LeftBatterNode &&
         Assert (Offset == ROADXS_LeftBatterOffset, "Offset == ROADXS_LeftBatterOffset");
}

bool roadxs_Offset::IsRightBatter () const {
  return Node == ROADXS_RightBatterNode &&
         Assert (Offset == ROADXS_RightBatterOffset, "Offset == ROADXS_RightBatterOffset");
}

namespace {

// A place that is no side slope.
bool HasDistance (const roadxs_Offset& Offset) {
  return Assert (Offset.Offset != ROADXS_LeftBatterOffset,
                 "Offset.Offset != ROADXS_LeftBatterOffset") &&
         Assert (Offset.Offset != ROADXS_RightBatterOffset,
                 "Offset.Offset != ROADXS_RightBatterOffset");
}

}  // namespace

double roadxs_CrossSection::DesignElevation (const roadxs_Offset& Offset) const {
  if (!HasDistance (Offset)) return MATHS_Null;
  if (IsEmpty () && Offset.Offset == 0.0) return Coordinate.Elevation;
  return BeyondEnd (Offset) ? MATHS_Null : SearchNodes (Offset);
}

double roadxs_CrossSection::DesignElevationWithGround (const roadxs_Offset& Offset,
                                                       double groundHeight) const {
  if (!HasDistance (Offset)) return MATHS_Null;
  return BeyondEnd (Offset) ? BatterElevation (Offset, groundHeight) : DesignElevation (Offset);
}

double roadxs_CrossSection::SearchNodes (const roadxs_Offset& place) const {
  const double x = place.Offset;
  const roadxs_Side& near = Side (place.Side ());
  const roadxs_Side& far =
      Side (place.Side () == DBROAD_SideRight ? DBROAD_SideLeft : DBROAD_SideRight);
  if (x == 0.0 && !maths_IsNull (Centre.Offset)) return Centre.Elevation;
  if (IsBeyondNode (place.Node) || near.IsEmpty ()) return x == 0.0 ? Centre.Elevation : MATHS_Null;
  const bool isAnyWanted = place.Node == ROADXS_FreeNode || place.Node == ROADXS_LeftBatterNode ||
                           place.Node == ROADXS_RightBatterNode;
  const int64_t wanted = std::abs (int64_t{place.Node});

  const roadxs_Node* previous = &Centre;
  if (maths_IsNull (Centre.Offset) && !near.Nodes.empty ()) {
    // Without a centre the strip across it runs between the first nodes of the two sides.
    previous = &near.Nodes.front ();
    if (!far.Nodes.empty () && std::abs (x) < std::abs (previous->Offset))
      return Interpolate (far.Nodes.front (), *previous, x);
  }
  int64_t number = 0;
  for (const roadxs_Node& node : near.Nodes) {
    number++;
    if (approx (node.Offset, EQ, x) && (isAnyWanted || number == wanted)) return node.Elevation;
    if (std::abs (node.Offset) > std::abs (x)) return Interpolate (*previous, node, x);
    previous = &node;
  }
  return MATHS_Null;
}

// On the side slope of the offset's side.
double roadxs_CrossSection::BatterElevation (const roadxs_Offset& place,
                                             double groundHeight) const {
  const roadxs_Side& side = Side (place.Side ());
  const double end = EndElevation (place.Side ());
  const double x = maths_Abs (place.Offset);
  const double toEnd = maths_Abs (EndOffset (place.Side ()).Offset);
  const double endHeight = maths_Subtract (end, Coordinate.Elevation);
  if (!side.HasBatter || maths_IsNull (x) || maths_IsNull (toEnd) || maths_IsNull (endHeight) ||
      maths_IsNull (groundHeight))
    return MATHS_Null;
  if (endHeight > groundHeight)
    return maths_Subtract (end, maths_Multiply (x - toEnd, maths_Tan (side.FillGrade)));
  const double toSlope =
      maths_IsNull (side.CutDitchWidth) ? toEnd : toEnd + std::abs (side.CutDitchWidth);
  if (!(toSlope < x)) return end;
  return maths_Add (end, maths_Multiply (x - toSlope, maths_Tan (side.CutGrade)));
}

double roadxs_CrossSection::GradeAt (const roadxs_Offset& Offset) const {
  const double x = Offset.Offset;
  if (x == 0.0) return 0.0;
  if (IsBeyondNode (Offset.Node) || Offset.IsBatter ()) return MATHS_Null;
  const dbroad_Side side = Offset.Side ();
  const roadxs_Node* previous = &Centre;
  for (const roadxs_Node& node : Side (side).Nodes) {
    if (!approx (node.Offset, side == DBROAD_SideRight ? GE : LE, x)) {
      previous = &node;
      continue;
    }
    const double rise = maths_IsNull (previous->Elevation)
                            ? 0.0
                            : maths_Subtract (node.Elevation, previous->Elevation);
    const double deltaHorz = maths_Abs (maths_Subtract (node.Offset, previous->Offset));
    Assert (deltaHorz != 0.0, "deltaHorz != 0.0");
    return maths_ArcTan (maths_Divide (rise, deltaHorz));
  }
  return MATHS_Null;
}

roadxs_Offset roadxs_CrossSection::EndOffset (dbroad_Side side) const {
  roadxs_Offset end;
  TakeNode (end, side == DBROAD_SideRight ? Right ().NodeCount () : -Left ().NodeCount ());
  return end;
}

double roadxs_CrossSection::EndElevation (dbroad_Side side) const {
  const std::vector<roadxs_Node>& nodes = Side (side).Nodes;
  return nodes.empty () ? Centre.Elevation : nodes.back ().Elevation;
}

double roadxs_CrossSection::EndGrade (dbroad_Side side) const {
  const double grade = GradeAt (EndOffset (side));
  return maths_IsNull (grade) ? 0.0 : grade;
}

bool roadxs_CrossSection::BeyondEnd (const roadxs_Offset& Offset) const {
  return std::abs (Offset.Offset) > std::abs (EndOffset (Offset.Side ()).Offset);
}

void roadxs_CrossSection::BatterOffset (roadxs_Offset& Offset) const {
  TakeNode (Offset,
            Offset.Side () == DBROAD_SideRight ? ROADXS_RightBatterNode : ROADXS_LeftBatterNode);
}

bool roadxs_CrossSection::NextOutwards (roadxs_Offset& Offset) const {
  return Next (Offset, Offset.Side ());
}

bool roadxs_CrossSection::NextRight (roadxs_Offset& Offset) const {
  return Next (Offset, DBROAD_SideRight);
}

bool roadxs_CrossSection::NextLeft (roadxs_Offset& Offset) const {
  return Next (Offset, DBROAD_SideLeft);
}

// The next place towards a side. Numbers and offsets grow to the right; to the left everything is
// mirrored, so all is done as if to the right, with `sign` turning numbers and offsets.
bool roadxs_CrossSection::Next (roadxs_Offset& place, dbroad_Side side) const {
  const bool isRight = side == DBROAD_SideRight;
  const int32_t sign = isRight ? 1 : -1;
  const roadxs_Side& ahead = Side (side);
  const roadxs_Side& behind = Side (isRight ? DBROAD_SideLeft : DBROAD_SideRight);
  const int32_t batter = isRight ? ROADXS_RightBatterNode : ROADXS_LeftBatterNode;
  const int32_t count = ahead.NodeCount ();

  if (isRight ? place.IsRightBatter () : place.IsLeftBatter ()) return false;
  switch (place.Node) {
    case ROADXS_Centre:
      if (ahead.IsEmpty ()) return false;
      if (count == 0)
        Assert (ahead.HasBatter,
                isRight ? "Sides[DBROAD_SideRight].HasBatter" : "Sides[DBROAD_SideLeft].HasBatter");
      TakeNode (place, count > 0 ? sign : batter);
      return true;
    case ROADXS_FreeNode:
    case ROADXS_LeftBatterNode:
    case ROADXS_LeftBeyondNode:
    case ROADXS_RightBeyondNode:
    case ROADXS_RightBatterNode: {
      const auto isAhead = [&] (const roadxs_Node& node) {
        return isRight ? node.Offset > place.Offset : node.Offset < place.Offset;
      };
      for (int32_t i = behind.NodeCount (); i > 0; i--)
        if (isAhead (behind.Nodes[static_cast<std::size_t> (i - 1)])) {
          TakeNode (place, -sign * i);
          return true;
        }
      if (isRight ? place.Offset < 0.0 : place.Offset > 0.0) {
        TakeNode (place, ROADXS_Centre);
        return true;
      }
      for (int32_t i = 1; i <= count; i++)
        if (isAhead (ahead.Nodes[static_cast<std::size_t> (i - 1)])) {
          TakeNode (place, sign * i);
          return true;
        }
      TakeNode (place, ahead.HasBatter ? batter : sign * count);
      return true;
    }
    default: {
      // The number among all nodes, growing ahead. One outside the lists is no place.
      const int64_t number = int64_t{sign} * place.Node;
      if (number > count || number < -behind.NodeCount ()) return false;
      if (number < count) {
        TakeNode (place, place.Node + sign);
        return true;
      }
      if (!ahead.HasBatter) return false;
      TakeNode (place, batter);
      return true;
    }
  }
}

// The place becomes the node, the centre or the side slope of that number.
void roadxs_CrossSection::TakeNode (roadxs_Offset& place, int32_t number) const {
  place.Node = number;
  if (number == ROADXS_RightBatterNode || number == ROADXS_LeftBatterNode) {
    const bool isRight = number == ROADXS_RightBatterNode;
    place.Offset = isRight ? ROADXS_RightBatterOffset : ROADXS_LeftBatterOffset;
    place.Code = isRight ? Right ().BatterCode : Left ().BatterCode;
    return;
  }
  const roadxs_Node& node = number == 0  ? Centre
                            : number > 0 ? Right ().Nodes[static_cast<std::size_t> (number - 1)]
                                         : Left ().Nodes[static_cast<std::size_t> (-number - 1)];
  place.Offset = node.Offset;
  place.Code = node.Code;
}

int32_t roadxs_CrossSection::NodeCount () const noexcept {
  return (maths_IsNull (Centre.Offset) ? 0 : 1) + Left ().NodeCount () + Right ().NodeCount () +
         (Left ().HasBatter ? 1 : 0) + (Right ().HasBatter ? 1 : 0);
}

int32_t roadxs_CrossSection::NodeId (int32_t node) const {
  if (!Assert (node >= 0, "node >= 0") || !Assert (node < NodeCount (), "node < NodeCount()"))
    return 0;
  const int32_t left = Left ().NodeCount ();
  int32_t number = node - (Left ().HasBatter ? 1 : 0);
  if (number < 0) return 0;
  if (number < left) return Left ().Nodes[static_cast<std::size_t> (left - 1 - number)].Id;
  number -= left;
  if (!maths_IsNull (Centre.Offset) && number-- == 0) return Centre.Id;
  return number < Right ().NodeCount () ? Right ().Nodes[static_cast<std::size_t> (number)].Id : 0;
}

bool roadxs_CrossSection::IsFurtherOut (const roadxs_Offset& a, const roadxs_Offset& b) {
  if (a.Offset == 0.0) return false;
  if (b.Offset == 0.0) return true;
  const bool isBatter = a.IsBatter ();
  if (isBatter && a.Node == b.Node) return false;
  if (isBatter) return true;
  const bool isRight = a.Side () == DBROAD_SideRight;
  if (isRight ? b.IsRightBatter () : b.IsLeftBatter ()) return false;
  if (maths_IsNull (a.Offset) || maths_IsNull (b.Offset)) return false;
  return isRight ? b.Offset < a.Offset : b.Offset > a.Offset;
}

}  // namespace clxml
