// The elements of a road as nodes of the road file, and back.
// Leans on the road model, on xml_out for the forms of values and on text for reading them.
#include "road/roadnodes.h"

#include <cmath>
#include <span>
#include <string_view>

#include "Kernel/text.h"
#include "Library/xml/xml.h"
#include "numerics/approx.h"
#include "numerics/maths.h"
#include "road/horizontal.h"
#include "road/placements.h"
#include "road/superelevation.h"
#include "road/templates.h"
#include "road/vertical.h"

namespace clxml {

namespace {

// Words of the file, in the order of the values that they stand for.
using Words = std::span<const char* const>;
constexpr const char* StartMethods[] = {"UserDefinedCoordinates", "ExistingPoint"};
constexpr const char* StraightMethods[] = {"AzimuthAndLength", "AzimuthAndEndStation",
                                           "UserDefinedCoordinates", "ExistingPoint"};
constexpr const char* ArcMethods[] = {"RadiusAndLength",
                                      "RadiusAndEndStation",
                                      "DeltaAngleAndRadius",
                                      "DeflectionAngleAndLength",
                                      "DeflectionAngleAndEndStation",
                                      "EndCoordinates",
                                      "ExistingPoint"};
constexpr const char* SpiralMethods[] = {"RadiusAndLength", "RadiusAndEndStation"};
constexpr const char* VerticalMethods[] = {"VPI", "StartAndEndPoints"};
constexpr const char* PlacementTypes[] = {"UserDefined", "None", "Interpolate"};
constexpr const char* Pivots[] = {"Left", "Crown", "Right"};

// Adds the children of a node, in the order of the calls.
class NodeWriter {
 public:
  template <class T>
  using Of = const T;

  explicit NodeWriter (xmlout_element& node) : _Node (node) {}

  void Number (const char* tag, double value) { _Node.Add (tag, xml_DoubleText (value)); }
  void Angle (const char* tag, double radians) { _Node.Add (tag, xml_AngleText (radians)); }
  void Grade (const char* tag, double radians) { _Node.Add (tag, xml_GradeText (radians, false)); }
  void NegatedGrade (const char* tag, double radians) {
    _Node.Add (tag, xml_GradeText (radians, true));
  }
  void Bool (const char* tag, bool value) { _Node.Add (tag, xml_BoolText (value)); }
  void Text (const char* tag, const Str& value) { _Node.Add (tag, value); }
  void TextIf (bool isWanted, const char* tag, const Str& value) {
    if (isWanted) _Node.Add (tag, value);
  }
  template <class E>
  void Word (const char* tag, E value, Words words) {
    const auto number = static_cast<std::size_t> (value);
    _Node.Add (tag, number < words.size () ? Str (words[number]) : Str ());
  }
  void Tangential (bool isTangential) {
    if (!isTangential) Bool ("TangentialToPrevious", false);
  }
  void Direction (bool isClockwise) { _Node.Add ("Direction", isClockwise ? "Right" : "Left"); }
  NodeWriter Group (const char* tag, bool isSpaced = false) {
    xmlout_element& group = _Node.Add (tag);
    group.SpacedBlock = isSpaced;
    return NodeWriter (group);
  }

 private:
  xmlout_element& _Node;
};

// Reads the children of a node, each the first of its name; null stands for a node that is missing.
class NodeReader {
 public:
  template <class T>
  using Of = T;

  explicit NodeReader (const xml_element* node) : _Node (node) {}

  void Number (const char* tag, double& value) const {
    const std::string_view text = Value (tag);
    value = text.empty () ? MATHS_Null : text_ToDouble (text);
  }
  void Angle (const char* tag, double& radians) const {
    Number (tag, radians);
    if (maths_IsNull (radians)) return;
    radians = radians * CONSTANT_Pi / 180;
    if (std::fabs (radians - CONSTANT_TwoPi) <= 5e-13) radians = 0.0;
  }
  void Grade (const char* tag, double& radians) const {
    Number (tag, radians);
    if (!maths_IsNull (radians)) radians = std::atan (radians / 100);
  }
  void NegatedGrade (const char* tag, double& radians) const {
    Grade (tag, radians);
    if (!maths_IsNull (radians)) radians = -radians;
  }
  void Bool (const char* tag, bool& value) const { value = Is (tag, "true"); }
  void Text (const char* tag, Str& value) const { value = Value (tag); }
  void TextIf (bool isWanted, const char* tag, Str& value) const {
    if (isWanted) Text (tag, value);
  }
  // An unknown word leaves the value.
  template <class E>
  void Word (const char* tag, E& value, Words words) const {
    const std::string_view text = Value (tag);
    for (std::size_t i = 0; i < words.size (); i++)
      if (text == words[i]) value = static_cast<E> (i);
  }
  void Tangential (bool& isTangential) const {
    isTangential = !Is ("TangentialToPrevious", "false");
  }
  void Direction (bool& isClockwise) const {
    const std::string_view text = Value ("Direction");
    if (text == "Right") isClockwise = true;
    if (text == "Left") isClockwise = false;
  }
  NodeReader Group (const char* tag, bool = false) const {
    return NodeReader (_Node ? _Node->FindChild (tag) : nullptr);
  }

 private:
  std::string_view Value (const char* tag) const {
    return _Node ? _Node->ChildValue (tag) : std::string_view ();
  }
  // The word in any case.
  bool Is (const char* tag, std::string_view word) const {
    const std::string_view text = Value (tag);
    if (text.size () != word.size ()) return false;
    for (std::size_t i = 0; i < word.size (); i++)
      if (text_ToLower (text[i]) != word[i]) return false;
    return true;
  }

  const xml_element* _Node;
};

template <class V, class T>
using Of = typename V::template Of<T>;

template <class V>
void Coordinate (V& v, const char* tag, Of<V, coord_CorrectedGrid>& coordinate) {
  V block = v.Group (tag, true);
  block.Number ("North", coordinate.North);
  block.Number ("East", coordinate.East);
}

template <class V>
void Point (V& v, const char* tag, Of<V, VerticalPosition>& point) {
  V block = v.Group (tag);
  block.Number ("Station", point.Station);
  block.Number ("Elevation", point.Elevation);
}

// The children of each class, in file order.

template <class V>
void Children (V& v, Of<V, HorizontalStartPoint>& start) {
  v.Word ("KeyinMethod", start.KeyinMethod, StartMethods);
  v.Number ("StartStation", start.StartChainage);
  v.TextIf (start.KeyedByExistingPoint (), "StartCoordinatesFromPoint", start.PointName);
  Coordinate (v, "StartCoordinate", start.StartCoordinate);
}

template <class V, class T>
void Start (V& v, T& element) {
  v.Number ("StartStation", element.StartChainage);
  v.Angle ("StartAzimuth", element.StartAzimuth);
  Coordinate (v, "StartCoordinate", element.StartCoordinate);
}

template <class V>
void Children (V& v, Of<V, HorizontalStraight>& straight) {
  v.Tangential (straight.TangentialToPrevious);
  v.Word ("KeyinMethod", straight.KeyinMethod, StraightMethods);
  Start (v, straight);
  v.Number ("Length", straight.Length);
  v.Number ("EndStation", straight.EndChainage);
  v.Angle ("EndAzimuth", straight.EndAzimuth);
  v.TextIf (straight.KeyedByExistingPoint (), "EndCoordinatesFromPoint", straight.PointName);
  Coordinate (v, "EndCoordinate", straight.EndCoordinate);
}

template <class V>
void Children (V& v, Of<V, HorizontalArc>& arc) {
  v.Tangential (arc.TangentialToPrevious);
  v.Word ("KeyinMethod", arc.KeyinMethod, ArcMethods);
  v.TextIf (arc.KeyedByExistingPoint (), "EndCoordinatesFromPoint", arc.PointName);
  Start (v, arc);
  v.Direction (arc.Clockwise);
  v.Number ("Length", arc.Length);
  v.Number ("Radius", arc.Radius);
  v.Angle ("Angle", arc.Angle);
  v.Number ("EndStation", arc.EndChainage);
  v.Angle ("EndAzimuth", arc.EndAzimuth);
  Coordinate (v, "EndCoordinate", arc.EndCoordinate);
}

template <class V, class T>
void SpiralChildren (V& v, T& spiral) {
  v.Tangential (spiral.TangentialToPrevious);
  v.Word ("KeyinMethod", spiral.KeyinMethod, SpiralMethods);
  Start (v, spiral);
  v.Direction (spiral.Clockwise);
  v.Number ("Length", spiral.Length);
  v.Number ("StartRadius", spiral.StartRadius);
  v.Number ("EndRadius", spiral.EndRadius);
  v.Number ("EndStation", spiral.EndChainage);
  v.Angle ("EndAzimuth", spiral.EndAzimuth);
  Coordinate (v, "EndCoordinate", spiral.EndCoordinate);
}

template <class V>
void Children (V& v, Of<V, HorizontalEntrySpiral>& spiral) {
  SpiralChildren (v, spiral);
}

template <class V>
void Children (V& v, Of<V, HorizontalExitSpiral>& spiral) {
  SpiralChildren (v, spiral);
}

template <class V, class T>
void Grades (V& v, T& element) {
  v.Grade ("GradeIn", element.GradeIn);
  v.Grade ("GradeOut", element.GradeOut);
}

// What the curves have in common.
template <class V, class T>
void Ends (V& v, T& curve) {
  Point (v, "StartPoint", curve.StartPoint);
  Point (v, "EndPoint", curve.EndPoint);
}
template <class V, class T>
void Shape (V& v, T& curve) {
  Point (v, "SagSummitPoint", curve.SagSummitPoint);
  Grades (v, curve);
  v.Number ("KFactor", curve.KFactor);
}

template <class V>
void Children (V& v, Of<V, VerticalPoint>& point) {
  v.Word ("KeyinMethod", point.KeyinMethod, VerticalMethods);
  Point (v, "IntersectionPoint", point.IntersectionPoint);
  Grades (v, point);
}

template <class V>
void Children (V& v, Of<V, VerticalArc>& arc) {
  v.Word ("KeyinMethod", arc.KeyinMethod, VerticalMethods);
  Point (v, "IntersectionPoint", arc.IntersectionPoint);
  v.Number ("Radius", arc.Radius);
  v.Number ("Length", arc.Length);
  Ends (v, arc);
  Point (v, "CentrePoint", arc.CentrePoint);
  Shape (v, arc);
}

template <class V>
void Children (V& v, Of<V, VerticalParabola>& parabola) {
  v.Word ("KeyinMethod", parabola.KeyinMethod, VerticalMethods);
  Point (v, "IntersectionPoint", parabola.IntersectionPoint);
  v.Number ("Length", parabola.Length);
  Ends (v, parabola);
  Shape (v, parabola);
}

template <class V>
void Children (V& v, Of<V, VerticalAsymmetricParabola>& parabola) {
  v.Word ("KeyinMethod", parabola.KeyinMethod, VerticalMethods);
  Point (v, "IntersectionPoint", parabola.IntersectionPoint);
  v.Number ("LengthIn", parabola.LengthIn);
  v.Number ("LengthOut", parabola.LengthOut);
  Ends (v, parabola);
  Shape (v, parabola);
}

constexpr const char* Sides[] = {"LeftSide", "RightSide"};

template <class V>
void Children (V& v, Of<V, SidedTemplatePlacement>& placement) {
  v.Number ("Station", placement.Sides[DBROAD_SideLeft].Chainage);
  for (std::size_t i = 0; i < 2; i++) {
    auto& side = placement.Sides[i];
    V in = v.Group (Sides[i]);
    in.Word ("Type", side.Type, PlacementTypes);
    in.TextIf (side.Type == SidePlacement::UserDefined, "Name", side.Name);
  }
}

template <class V>
void Children (V& v, Of<V, SuperElevationWidening>& super) {
  v.Number ("Station", super.Chainage);
  v.Word ("Pivot", super.Pivot, Pivots);
  for (std::size_t i = 0; i < 2; i++) {
    V in = v.Group (Sides[i]);
    in.Grade ("Superelevation", super.Superelevation[i]);
    in.Number ("Widening", super.Widening[i]);
  }
}

template <class V, class T>
void StripChildren (V& v, T& strip) {
  v.Text ("Code", strip.Code);
  v.Bool ("ApplySuperelevation", strip.ApplySuperelevation);
  v.Bool ("ApplyWidening", strip.ApplyWidening);
  v.Number ("HorizontalDistance", strip.HorizontalDistance);
}

template <class V>
void Children (V& v, Of<V, TemplateDistanceGrade>& strip) {
  StripChildren (v, strip);
  v.Grade ("Grade", strip.Grade);
}

template <class V>
void Children (V& v, Of<V, TemplateDistanceDelta>& strip) {
  StripChildren (v, strip);
  v.Number ("VerticalDistance", strip.VerticalDistance);
}

// A file has the fill's grade as a fall.
template <class V>
void Children (V& v, Of<V, TemplateSideSlope>& slope) {
  v.Text ("Code", slope.Code);
  v.Grade ("CutGrade", slope.CutGrade);
  v.NegatedGrade ("FillGrade", slope.FillGrade);
  v.Number ("CutDitchWidth", slope.CutDitchWidth);
}

// What follows from what was read.

void Complete (RoadElement&) {}

// The length stays null, so that at the first station the element after the start point answers.
void Complete (HorizontalStartPoint& start) {
  start.EndChainage = start.StartChainage;
  start.EndCoordinate = start.StartCoordinate;
}

void Complete (HorizontalStraight& straight) { straight.EndAzimuth = straight.StartAzimuth; }

void Complete (VerticalPoint& point) {
  point.EndPoint = point.StartPoint = point.Point = point.IntersectionPoint;
}

void Complete (SidedTemplatePlacement& placement) {
  placement.Sides[DBROAD_SideRight].Chainage = placement.Sides[DBROAD_SideLeft].Chainage;
}

// A vertical strip has no grade that superelevation could replace.
void Complete (TemplateDistanceGrade& strip) {
  constexpr double vertical = CONSTANT_PiOverTwo;
  if (approx (strip.Grade, EQ, vertical) || approx (strip.Grade, EQ, -vertical))
    strip.ApplySuperelevation = false;
}

// A class of elements and its name in the file.
struct Kind {
  RoadElementType type;
  const char* name;
  void (*write) (NodeWriter& node, const RoadElement& element);
  std::unique_ptr<RoadElement> (*read) (NodeReader& node);
};

template <class T>
constexpr Kind KindOf (RoadElementType type, const char* name) {
  return {type, name,
          [] (NodeWriter& node, const RoadElement& element) {
            Children (node, static_cast<const T&> (element));
          },
          [] (NodeReader& node) -> std::unique_ptr<RoadElement> {
            auto element = std::make_unique<T> ();
            Children (node, *element);
            Complete (*element);
            return element;
          }};
}

constexpr Kind kinds[] = {
    KindOf<HorizontalStartPoint> (ROAD_HorizontalStartPoint, "StartPoint"),
    KindOf<HorizontalStraight> (ROAD_HorizontalStraight, "Straight"),
    KindOf<HorizontalArc> (ROAD_HorizontalArc, "Arc"),
    KindOf<HorizontalEntrySpiral> (ROAD_HorizontalEntrySpiral, "EntrySpiral"),
    KindOf<HorizontalExitSpiral> (ROAD_HorizontalExitSpiral, "ExitSpiral"),
    KindOf<VerticalPoint> (ROAD_VerticalPoint, "VerticalPoint"),
    KindOf<VerticalArc> (ROAD_VerticalArc, "VerticalArc"),
    KindOf<VerticalParabola> (ROAD_VerticalParabola, "VerticalParabola"),
    KindOf<VerticalAsymmetricParabola> (ROAD_VerticalAsymmetricParabola,
                                        "VerticalAsymmetricParabola"),
    KindOf<SidedTemplatePlacement> (ROAD_SidedTemplatePlacement, "ApplyTemplates"),
    KindOf<SuperElevationWidening> (ROAD_SuperElevationWidening, "ApplySuperelevation"),
    KindOf<TemplateDistanceGrade> (ROAD_TemplateDistanceGrade, "DistanceAndGrade"),
    KindOf<TemplateDistanceDelta> (ROAD_TemplateDistanceDelta, "DistanceAndVerticalDistance"),
    KindOf<TemplateSideSlope> (ROAD_TemplateSideSlope, "SideSlope"),
};

}  // namespace

std::unique_ptr<xmlout_element> road_WriteXml (const RoadElement& element) {
  for (const Kind& kind : kinds) {
    if (kind.type != element.ElementType ()) continue;
    auto node = std::make_unique<xmlout_element> (kind.name);
    NodeWriter writer (*node);
    kind.write (writer, element);
    return node;
  }
  return nullptr;
}

std::unique_ptr<RoadElement> road_ReadXml (const xml_element& node) {
  for (const Kind& kind : kinds) {
    if (node.name != kind.name) continue;
    NodeReader reader (&node);
    return kind.read (reader);
  }
  return nullptr;
}

}  // namespace clxml
