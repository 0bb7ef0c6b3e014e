// Building the cross section of a road at a station.
// The templates placed before the station, tilted by superelevation and stretched by widening, give
// the section; a side whose template changes until the next placement is blended with the section
// that the templates placed after the station give.
#include "road/roadsections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Library/cogo/roadcogo.h"
#include "numerics/approx.h"
#include "numerics/grade.h"
#include "road/RoadNorvath.h"
#include "road/horizontalsteps.h"
#include "road/roadxs.h"

namespace clxml {

namespace {

// By which a vertical strip moves its outer node, so that offsets grow outwards; metres.
constexpr double verticalStripWidth = 5e-5;

constexpr dbroad_Side bothSides[] = {DBROAD_SideLeft, DBROAD_SideRight};

constexpr std::size_t IndexOf (dbroad_Side side) { return static_cast<std::size_t> (side); }

// The sum of two grades, added as tangents.
double CombineGrades (double a, double b) {
  return maths_ArcTan (maths_Add (maths_Tan (a), maths_Tan (b)));
}

// grade_Height for the grade of a strip. A negative width turns a grade beyond the vertical; its
// line is that of the grade half a turn away.
double StripHeight (double grade, double distance) {
  if (maths_IsNull (grade)) return MATHS_Null;
  if (!grade_IsValid (grade)) grade = std::remainder (grade, CONSTANT_Pi);
  return maths_NullUnlessFinite (grade_Height (grade, distance));
}

// What a road places on the two sides, and how it is tilted and widened.
struct SectionSource {
  SuperElevationWidening Super;
  std::array<SidePlacement, 2> TemplatePlacements;
  std::array<const CrossSectionTemplate*, 2> Templates = {nullptr, nullptr};

  // How much the superelevation tilts a side, as a grade; 0.0 where there is nothing to tilt.
  double DeltaGrade (dbroad_Side side) const {
    const CrossSectionTemplate* section = Templates[IndexOf (side)];
    const double wanted = Super.Superelevation[IndexOf (side)];
    const double grade = section != nullptr ? section->SuperelevationGrade () : MATHS_Null;
    if (maths_IsNull (wanted) || maths_IsNull (grade)) return 0.0;
    const double delta = CombineGrades (wanted, maths_Negate (grade));
    return grade_IsValid (delta) ? delta : 0.0;
  }

  // How much the centre line moves for the pivoting edge of a side to keep its height.
  double SideShift (dbroad_Side side) const {
    const CrossSectionTemplate* section = Templates[IndexOf (side)];
    if (section == nullptr) return 0.0;
    const double delta = DeltaGrade (side);
    const double widening =
        maths_Multiply (section->WideningStripCount (), Super.Widening[IndexOf (side)]);
    return maths_Subtract (grade_Height (-delta, section->SuperelevationWidth ()),
                           grade_Height (delta, widening));
  }

  double PivotShift () const {
    return Super.Pivot == SuperElevationWidening::Left    ? SideShift (DBROAD_SideLeft)
           : Super.Pivot == SuperElevationWidening::Right ? SideShift (DBROAD_SideRight)
                                                          : 0.0;
  }
};

// The strips of a template from the centre outwards; offsets are positive.
class SideBuilder {
 public:
  SideBuilder (double elevation, double deltaGrade, double widening, roadxs_Side& side)
      : _Elevation (elevation), _DeltaGrade (deltaGrade), _Widening (widening), _Side (side) {}

  void Add (const TemplateElement& element) {
    if (const auto* graded = RoadElement_Cast<TemplateDistanceGrade> (&element))
      AddGraded (*graded);
    else if (const auto* stepped = RoadElement_Cast<TemplateDistanceDelta> (&element))
      AddStepped (*stepped);
    else if (const auto* slope = RoadElement_Cast<TemplateSideSlope> (&element))
      AddSlope (*slope);
  }

 private:
  double WidthOf (const TemplateStrip& strip) const {
    return strip.ApplyWidening ? maths_Add (strip.HorizontalDistance, _Widening)
                               : strip.HorizontalDistance;
  }
  double Tilted (const TemplateStrip& strip, double grade) const {
    return strip.ApplySuperelevation ? CombineGrades (grade, _DeltaGrade) : grade;
  }

  void AddGraded (const TemplateDistanceGrade& strip) {
    const double width = WidthOf (strip);
    AddNode (strip, width, StripHeight (Tilted (strip, strip.Grade), width));
  }

  void AddStepped (const TemplateDistanceDelta& strip) {
    const double width = WidthOf (strip);
    AddNode (strip, width,
             width == 0.0 ? strip.VerticalDistance
                          : StripHeight (Tilted (strip, strip.ImpliedGrade ()), width));
  }

  void AddNode (const TemplateStrip& strip, double width, double height) {
    maths_AddTo (_Offset, width);
    if (width == 0.0) maths_AddTo (_Offset, verticalStripWidth);
    maths_AddTo (_Elevation, height);
    roadxs_Node& node = _Side.Nodes.emplace_back ();
    node.Offset = _Side.Extent = _Offset;
    node.Elevation = _Elevation;
    node.Code = strip.Code;
  }

  void AddSlope (const TemplateSideSlope& slope) {
    _Side.HasBatter = true;
    _Side.BatterCode = slope.Code;
    _Side.CutGrade = slope.CutGrade;
    _Side.FillGrade = slope.FillGrade;
    _Side.CutDitchWidth = slope.CutDitchWidth;
  }

  double _Offset = 0.0;
  double _Elevation;
  double _DeltaGrade;
  double _Widening;
  roadxs_Side& _Side;
};

void BuildSide (const SectionSource& source, dbroad_Side at, roadxs_CrossSection& section) {
  roadxs_Side& side = section.Side (at);
  const SidePlacement& placement = source.TemplatePlacements[IndexOf (at)];
  const CrossSectionTemplate* strips = source.Templates[IndexOf (at)];
  side = roadxs_Side ();
  side.Extent = 0.0;
  Assert (placement.Type != SidePlacement::Interpolate,
          "TemplatePlacements[Side].Type != SidePlacement::InterpolateTemplate");
  if (placement.Type != SidePlacement::None) side.Template = placement.Name;
  if (maths_IsNull (section.Coordinate.Elevation) || strips == nullptr) return;

  side.Nodes.reserve (static_cast<std::size_t> (strips->Count ()));
  SideBuilder builder (section.Centre.Elevation, source.DeltaGrade (at),
                       source.Super.Widening[IndexOf (at)], side);
  for (int i = 0; i < strips->Count (); i++) builder.Add (*strips->At (i));
  if (at == DBROAD_SideRight) return;
  side.Extent = maths_Negate (side.Extent);
  for (roadxs_Node& node : side.Nodes) node.Offset = maths_Negate (node.Offset);
}

void BuildSection (const SectionSource& source, roadxs_CrossSection& section) {
  section.Centre = roadxs_Node ();
  section.Centre.Offset = 0.0;
  section.Centre.Elevation = maths_Add (section.Coordinate.Elevation, source.PivotShift ());
  for (const dbroad_Side side : bothSides) BuildSide (source, side, section);
}

// The change of the templates of one side from one placement to the next, at a station between.
class SideBlend {
 public:
  SideBlend (const SectionSource& before, const SectionSource& after, dbroad_Side side,
             double station)
      : _Before (before.TemplatePlacements[IndexOf (side)]),
        _After (after.TemplatePlacements[IndexOf (side)]),
        _Station (station) {}

  bool IsNeeded () const {
    return _Before.Type != SidePlacement::None && _After.Type != SidePlacement::None &&
           !approx (_Station, EQ, _Before.Chainage) && _Before.Name != _After.Name;
  }

  // Without one of the two stations the first value stays.
  double Blend (double a, double b) const {
    if (maths_IsNull (_Before.Chainage) || maths_IsNull (_After.Chainage)) return a;
    return roadcogo_Interpolate (a, b, _Before.Chainage, _After.Chainage, _Station);
  }

  double BlendGrade (double a, double b) const {
    if (maths_IsNull (a) || maths_IsNull (b)) return MATHS_Null;
    return maths_ArcTan (Blend (StripHeight (a, 1.0), StripHeight (b, 1.0)));
  }

  // Blends a side into the same side of the other section. Nodes that only one of the two has start
  // from, or end in, the last node that both have.
  void Apply (roadxs_Side& a, const roadxs_Node& centre, const roadxs_Side& b,
              const roadxs_Node& otherCentre) const {
    const std::size_t countA = a.Nodes.size (), countB = b.Nodes.size ();
    const std::size_t common = std::min (countA, countB);
    const auto take = [&] (roadxs_Node& node, const roadxs_Node& from, const roadxs_Node& to) {
      const double elevation = Blend (from.Elevation, to.Elevation);
      node.Offset = a.Extent = Blend (from.Offset, to.Offset);
      node.Elevation = elevation;
    };
    for (std::size_t i = 0; i < common; i++) take (a.Nodes[i], a.Nodes[i], b.Nodes[i]);
    if (countA < countB) {
      const roadxs_Node last = common > 0 ? a.Nodes[common - 1] : centre;
      a.Nodes.reserve (countB);
      for (std::size_t i = common; i < countB; i++) {
        roadxs_Node& node = a.Nodes.emplace_back ();
        node.Code = b.Nodes[i].Code;
        take (node, last, b.Nodes[i]);
      }
    }
    const roadxs_Node& last = common > 0 ? b.Nodes[common - 1] : otherCentre;
    for (std::size_t i = common; i < countA; i++) take (a.Nodes[i], a.Nodes[i], last);
    if (!a.HasBatter || !b.HasBatter) return;
    a.CutGrade = BlendGrade (a.CutGrade, b.CutGrade);
    a.FillGrade = BlendGrade (a.FillGrade, b.FillGrade);
    if (!maths_IsNull (a.CutDitchWidth) && !maths_IsNull (b.CutDitchWidth))
      a.CutDitchWidth = Blend (a.CutDitchWidth, b.CutDitchWidth);
  }

 private:
  const SidePlacement& _Before;
  const SidePlacement& _After;
  double _Station;
};

// Evaluates a section. The lookups give the placements before and after the station, the
// superelevation there, and a template by its name.
template <class Previous, class Next, class ValueAt, class FindTemplate>
void Evaluate (const NorvathRoad& road, double station, roadxs_CrossSection& section,
               Previous previous, Next next, ValueAt valueAt, FindTemplate findTemplate) {
  section = roadxs_CrossSection ();
  RoadPosition position;
  if (!road.Horizontal.PositionAt (station, position)) return;
  section.Station = station;
  section.RoadName = road.Name;
  section.Coordinate = position.Coordinate;
  section.Azimuth = road_Turned (position.Azimuth, CONSTANT_PiOverTwo, true);
  section.Coordinate.Elevation = road.Vertical.ElevationAt (station);

  const auto fill = [&findTemplate] (SectionSource& source, SidedTemplatePlacement placement) {
    source.TemplatePlacements = std::move (placement.Sides);
    for (std::size_t i = 0; i < 2; i++)
      if (source.TemplatePlacements[i].Type != SidePlacement::None)
        source.Templates[i] = findTemplate (source.TemplatePlacements[i].Name);
  };
  SectionSource before, after;
  fill (before, previous (station));
  fill (after, next (station));
  before.Super = valueAt (station);
  for (double& widening : before.Super.Widening)
    if (maths_IsNull (widening)) widening = 0.0;
  after.Super = before.Super;

  BuildSection (before, section);
  const std::array<SideBlend, 2> blends = {SideBlend (before, after, DBROAD_SideLeft, station),
                                           SideBlend (before, after, DBROAD_SideRight, station)};
  if (!blends[0].IsNeeded () && !blends[1].IsNeeded ()) return;
  roadxs_CrossSection other;
  other.RoadName = section.RoadName;
  other.Station = section.Station;
  other.Azimuth = section.Azimuth;
  other.Coordinate = section.Coordinate;
  BuildSection (after, other);
  for (const dbroad_Side side : bothSides)
    if (blends[IndexOf (side)].IsNeeded ())
      blends[IndexOf (side)].Apply (section.Side (side), section.Centre, other.Side (side),
                                    other.Centre);
  // The pivots of both sources are equal: there is one superelevation.
  const dbroad_Side pivot =
      before.Super.Pivot == SuperElevationWidening::Left ? DBROAD_SideLeft : DBROAD_SideRight;
  const double shift = maths_Subtract (after.PivotShift (), before.PivotShift ());
  maths_AddTo (section.Centre.Elevation, blends[IndexOf (pivot)].Blend (0.0, shift));
}

}  // namespace

RoadSections::RoadSections (const NorvathRoad& road)
    : _Road (road), _Placements (road.TemplatePlacements), _Supers (road.Supers) {
  // Of equal names the first counts.
  for (const CrossSectionTemplate& one : road.Templates)
    _Templates.try_emplace (one.Name.View (), &one);
}

void RoadSections::CrossSectionAt (double station, roadxs_CrossSection& section) const {
  Evaluate (
      _Road, station, section, [this] (double at) { return _Placements.PreviousPlacement (at); },
      [this] (double at) { return _Placements.NextPlacement (at); },
      [this] (double at) { return _Supers.ValueAt (at); },
      [this] (const Str& name) -> const CrossSectionTemplate* {
        const auto found = _Templates.find (name.View ());
        return found != _Templates.end () ? found->second : nullptr;
      });
}

void NorvathRoad::CrossSectionAt (double station, roadxs_CrossSection& section) const {
  Evaluate (
      *this, station, section,
      [this] (double at) { return TemplatePlacements.PreviousPlacement (at); },
      [this] (double at) { return TemplatePlacements.NextPlacement (at); },
      [this] (double at) { return Supers.ValueAt (at); },
      [this] (const Str& name) { return Templates.FindByName (name); });
}

}  // namespace clxml
