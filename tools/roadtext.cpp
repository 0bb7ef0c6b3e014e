// A road in words and numbers: the listing, the faults and the texts that the drawing shares.
#include "roadtext.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Library/cogo/cogo.h"

namespace clxml::tool {
namespace {

// A radius whose null is a straight line.
std::string RadiusText (double radius) {
  return maths_IsNull (radius) ? "inf" : NumberText (radius);
}

std::string HorizontalText (const NorvathRoad& road) {
  const HorizontalElementArray& elements = road.Horizontal;
  if (elements.IsEmpty ()) return "  none\n";
  Table table ({"", "element", "station", "north", "east", "azimuth", "length", "radius", "angle"});
  for (int i = 0; i < elements.Count (); i++) {
    const HorizontalBase& element = *elements.At (i);
    std::string radius, angle;
    if (const auto* arc = RoadElement_Cast<HorizontalArc> (&element)) {
      radius = NumberText (arc->Radius) + (arc->Clockwise ? " R" : " L");
      angle = AzimuthText (arc->Angle);
    } else if (const auto* spiral = RoadElement_Cast<HorizontalSpiral> (&element)) {
      radius = RadiusText (spiral->StartRadius) + " > " + RadiusText (spiral->EndRadius) +
               (spiral->Clockwise ? " R" : " L");
    }
    std::string word = ElementWord (element);
    if (!element.PointName.IsEmpty ()) word += " (" + CleanText (element.PointName) + ")";
    if (!element.TangentialToPrevious) word += ", not tangential";
    // A start point has no azimuth of its own in a road file.
    const bool isStart = element.ElementType () == ROAD_HorizontalStartPoint;
    table.Add ({std::to_string (i), word, NumberText (element.StartChainage),
                NumberText (element.StartCoordinate.North),
                NumberText (element.StartCoordinate.East),
                isStart ? "" : AzimuthText (element.StartAzimuth),
                isStart ? "" : NumberText (element.Length), radius, angle});
  }
  const HorizontalBase& last = *elements.Last ();
  table.Add ({"", "end", NumberText (last.EndChainage), NumberText (last.EndCoordinate.North),
              NumberText (last.EndCoordinate.East), AzimuthText (last.EndAzimuth), "", "", ""});
  return table.Text ();
}

std::string PointText (const VerticalPosition& point) {
  return point.IsNull () ? "-" : NumberText (point.Station) + " / " + NumberText (point.Elevation);
}

std::string VerticalText (const NorvathRoad& road) {
  const VerticalElementArray& elements = road.Vertical;
  if (elements.IsEmpty ()) return "  none\n";
  Table table ({"", "element", "station", "elevation", "grade in", "grade out", "size", "K", "from",
                "to", "sag or summit"});
  for (int i = 0; i < elements.Count (); i++) {
    const VerticalBase& element = *elements.At (i);
    std::string size, k, from, to, turn;
    if (const auto* arc = RoadElement_Cast<VerticalArc> (&element))
      size = "R " + NumberText (arc->Radius) + ", L " + NumberText (arc->Length);
    else if (const auto* parabola = RoadElement_Cast<VerticalParabola> (&element))
      size = "L " + NumberText (parabola->Length);
    else if (const auto* both = RoadElement_Cast<VerticalAsymmetricParabola> (&element))
      size = "L " + NumberText (both->LengthIn) + " + " + NumberText (both->LengthOut);
    if (element.ElementType () != ROAD_VerticalPoint) {
      const auto& curve = static_cast<const VerticalCurve&> (element);
      k = NumberText (curve.KFactor);
      from = PointText (curve.StartPoint);
      to = PointText (curve.EndPoint);
      turn = PointText (curve.SagSummitPoint);
    }
    table.Add ({std::to_string (i), ElementWord (element),
                NumberText (element.IntersectionPoint.Station),
                NumberText (element.IntersectionPoint.Elevation), GradeText (element.GradeIn),
                GradeText (element.GradeOut), size, k, from, to, turn});
  }
  return table.Text ();
}

std::string SideText (const SidePlacement& side) {
  switch (side.Type) {
    case SidePlacement::UserDefined:
      return CleanText (side.Name);
    case SidePlacement::Interpolate:
      return "(interpolate)";
    default:
      return "(none)";
  }
}

std::string PlacementText (const NorvathRoad& road) {
  if (road.TemplatePlacements.IsEmpty ()) return "  none\n";
  Table table ({"left", "right", "station"});
  for (int i = 0; i < road.TemplatePlacements.Count (); i++) {
    const SidedTemplatePlacement& placement = *road.TemplatePlacements.At (i);
    table.Add ({SideText (placement.Left ()), SideText (placement.Right ()),
                NumberText (placement.Left ().Chainage)});
  }
  return table.Text ();
}

std::string SuperText (const NorvathRoad& road) {
  if (road.Supers.IsEmpty ()) return "  none\n";
  Table table ({"", "pivot", "station", "left", "right", "widening left", "right"});
  for (int i = 0; i < road.Supers.Count (); i++) {
    const SuperElevationWidening& entry = *road.Supers.At (i);
    const char* pivot = entry.Pivot == SuperElevationWidening::Left    ? "left"
                        : entry.Pivot == SuperElevationWidening::Right ? "right"
                                                                       : "crown";
    table.Add ({std::to_string (i), pivot, NumberText (entry.Chainage),
                GradeText (entry.Superelevation[0]), GradeText (entry.Superelevation[1]),
                NumberText (entry.Widening[0]), NumberText (entry.Widening[1])});
  }
  return table.Text ();
}

std::string TemplateText (const CrossSectionTemplate& section) {
  if (section.IsEmpty ()) return "  no strips\n";
  Table table ({"code", "element", "width", "grade", "height", "tilts", "widens"});
  for (int i = 0; i < section.Count (); i++) {
    const TemplateElement& element = *section.At (i);
    const std::string code = CleanText (element.Code);
    if (const auto* slope = RoadElement_Cast<TemplateSideSlope> (&element)) {
      table.Add ({code, ElementWord (element), "",
                  "cut " + GradeText (slope->CutGrade) + ", fill " +
                      GradeText (maths_Negate (slope->FillGrade)),
                  "ditch " + NumberText (slope->CutDitchWidth), "", ""});
      continue;
    }
    const auto& strip = static_cast<const TemplateStrip&> (element);
    std::string grade, height;
    if (const auto* byGrade = RoadElement_Cast<TemplateDistanceGrade> (&element))
      grade = GradeText (byGrade->Grade);
    else if (const auto* byHeight = RoadElement_Cast<TemplateDistanceDelta> (&element))
      height = NumberText (byHeight->VerticalDistance);
    table.Add ({code, ElementWord (element), NumberText (strip.HorizontalDistance), grade, height,
                strip.ApplySuperelevation ? "yes" : "no", strip.ApplyWidening ? "yes" : "no"});
  }
  return table.Text ();
}

// Characters, not bytes: what follows a first byte does not count.
std::size_t Width (const std::string& text) {
  return static_cast<std::size_t> (std::count_if (text.begin (), text.end (), [] (char c) {
    return (static_cast<unsigned char> (c) & 0xC0) != 0x80;
  }));
}

}  // namespace

std::string Table::Text () const {
  std::vector<std::size_t> widths (_Rows.front ().size (), 0);
  for (const auto& row : _Rows)
    for (std::size_t i = 0; i < row.size (); i++) widths[i] = std::max (widths[i], Width (row[i]));
  std::string text;
  for (const auto& row : _Rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size (); i++) {
      const std::string padding (widths[i] - Width (row[i]), ' ');
      line += "  ";
      line += i < 2 ? row[i] + padding : padding + row[i];
    }
    line.erase (line.find_last_not_of (' ') + 1);
    text += line + '\n';
  }
  return text;
}

std::string NumberText (double value, int decimals) {
  if (maths_IsNull (value) || !std::isfinite (value)) return "-";
  char text[400];
  std::snprintf (text, sizeof text, "%.*f", decimals, value);
  // What rounds to nothing has no sign.
  if (text[0] == '-' && std::string_view (text + 1).find_first_not_of ("0.") == std::string::npos)
    return text + 1;
  return text;
}

std::string StationText (double station, int decimals) {
  if (maths_IsNull (station) || !(std::abs (station) < 1e12)) return NumberText (station, decimals);
  const double unit = std::pow (10.0, decimals);
  const auto whole = static_cast<long long> (std::llround (std::abs (station) * unit));
  const auto thousand = static_cast<long long> (unit) * 1000;
  char text[64];
  std::snprintf (text, sizeof text, "%s%lld+%0*.*f", station < 0.0 && whole != 0 ? "-" : "",
                 whole / thousand, decimals > 0 ? decimals + 4 : 3, decimals,
                 static_cast<double> (whole % thousand) / unit);
  return text;
}

std::string AzimuthText (double radians) {
  if (maths_IsNull (radians) || !(std::abs (radians) < 1e6)) return "-";
  const auto tenths =
      static_cast<long long> (std::llround (std::abs (radians) * 180.0 / CONSTANT_Pi * 36000.0));
  char text[64];
  std::snprintf (text, sizeof text, "%s%lld°%02lld'%02lld.%lld\"",
                 radians < 0.0 && tenths != 0 ? "-" : "", tenths / 36000, tenths / 600 % 60,
                 tenths / 10 % 60, tenths % 10);
  return text;
}

std::string GradeText (double radians) {
  const double grade = maths_Tan (radians);
  return maths_IsNull (grade) ? "-" : NumberText (grade * 100.0) + "%";
}

const char* ElementWord (const RoadElement& element) {
  switch (element.ElementType ()) {
    case ROAD_HorizontalStartPoint:
      return "start";
    case ROAD_HorizontalStraight:
      return "straight";
    case ROAD_HorizontalArc:
      return "arc";
    case ROAD_HorizontalEntrySpiral:
      return "entry spiral";
    case ROAD_HorizontalExitSpiral:
      return "exit spiral";
    case ROAD_VerticalPoint:
      return "point";
    case ROAD_VerticalArc:
      return "arc";
    case ROAD_VerticalParabola:
      return "parabola";
    case ROAD_VerticalAsymmetricParabola:
      return "asymmetric parabola";
    case ROAD_TemplateDistanceGrade:
      return "strip by grade";
    case ROAD_TemplateDistanceDelta:
      return "strip by height";
    case ROAD_TemplateSideSlope:
      return "side slope";
    default:
      return "element";
  }
}

std::string CleanText (const Str& text) {
  const std::string_view bytes = text.View ();
  std::string clean;
  for (std::size_t i = 0; i < bytes.size ();) {
    const auto first = static_cast<unsigned char> (bytes[i]);
    const std::size_t length = first < 0x80                     ? 1
                               : first >= 0xC2 && first <= 0xDF ? 2
                               : (first & 0xF0) == 0xE0         ? 3
                               : first >= 0xF0 && first <= 0xF4 ? 4
                                                                : 0;
    uint32_t code = length == 1 ? first : first & (0x7Fu >> length);
    bool isWhole = length > 0 && i + length <= bytes.size () && first >= 0x20 && first != 0x7F;
    for (std::size_t k = 1; isWhole && k < length; k++) {
      const auto next = static_cast<unsigned char> (bytes[i + k]);
      isWhole = (next & 0xC0) == 0x80;
      code = code << 6 | (next & 0x3F);
    }
    // Neither overlong, nor half a pair, nor beyond the last, nor a control or no character.
    if (isWhole && length > 1)
      isWhole = code >= (length == 2   ? 0xA0u
                         : length == 3 ? 0x800u
                                       : 0x10000u) &&
                !(code >= 0xD800 && code <= 0xDFFF) && code < 0x110000 && (code & 0xFFFE) != 0xFFFE;
    clean += isWhole ? std::string (bytes.substr (i, length)) : "?";
    i += isWhole ? length : 1;
  }
  return clean;
}

bool PlaceOn (const NorvathRoad& road, double station, RoadPosition& place) {
  return road.Horizontal.PositionAt (station, place) && !place.Coordinate.NullHorizontal () &&
         !maths_IsNull (place.Azimuth);
}

std::string RoadListing (const NorvathRoad& road) {
  const double length = maths_Subtract (road.EndChainage (), road.StartChainage ());
  std::string text = "road       " + CleanText (road.Name) + "\n";
  text += "length     " + NumberText (length) + " m, station " +
          NumberText (road.StartChainage ()) + " to " + NumberText (road.EndChainage ()) + "\n";
  text += "interval   " + NumberText (road.StationInterval) + " m\n";
  text += "\nhorizontal alignment\n" + HorizontalText (road);
  text += "\nvertical alignment\n" + VerticalText (road);
  text += "\ntemplate positioning\n" + PlacementText (road);
  text += "\nsuperelevation and widening\n" + SuperText (road);
  for (const CrossSectionTemplate& section : road.Templates)
    text += "\ntemplate " + CleanText (section.Name) + "\n" + TemplateText (section);
  return text;
}

std::vector<std::string> RoadFaults (const NorvathRoad& road) {
  std::vector<std::string> faults;
  // Where an element is at fault the sentence names it; the verdict is the model's.
  const auto named = [&] (int i) {
    const HorizontalBase& element = *road.Horizontal.At (i);
    return "element " + std::to_string (i) + " (" + ElementWord (element) + " at " +
           NumberText (element.StartChainage) + ")";
  };
  const HorizontalElementArray& line = road.Horizontal;
  if (!line.CheckContinuity ())
    for (int i = 1; i < line.Count (); i++) {
      const double gap =
          (line.At (i)->StartCoordinate - line.At (i - 1)->EndCoordinate).HorizontalDistance ();
      if (!line.At (i)->StartCoordinate.IsCloseTo (line.At (i - 1)->EndCoordinate, 0.001))
        faults.push_back (named (i) + " does not start where the one before ends: " +
                          NumberText (gap) + " m apart");
    }
  if (!line.CheckEndsComputable ())
    for (int i = 1; i < line.Count (); i++) {
      const auto clone = line.At (i)->Clone ();
      auto* computed = RoadElement_Cast<HorizontalBase> (clone.get ());
      computed->ComputeEnd ();
      const double apart =
          (computed->EndCoordinate - line.At (i)->EndCoordinate).HorizontalDistance ();
      if (!computed->EndCoordinate.IsCloseTo (line.At (i)->EndCoordinate, 0.001))
        faults.push_back (named (i) + " does not end where its values lead: " + NumberText (apart) +
                          " m apart");
      else if (const double turn = AngleSmallest (computed->EndAzimuth, line.At (i)->EndAzimuth);
               maths_IsNull (turn) || turn > 5e-6)
        faults.push_back (named (i) + " does not end in the direction that its values give: " +
                          AzimuthText (turn) + " apart");
    }
  if (!road.Vertical.CheckConsistency ())
    faults.emplace_back (
        "the vertical alignment does not fit together: a curve runs into its neighbour or cannot "
        "exist, or the last element is no point");
  if (!road.TemplatePlacements.CheckConsistency (road.StartChainage (), road.EndChainage ()))
    faults.emplace_back (
        "template placements share a station, have sides apart or lie outside the road");
  if (!road.Supers.CheckConsistency (road.StartChainage (), road.EndChainage ()))
    faults.emplace_back ("superelevation entries share a station or lie outside the road");
  if (!road.Templates.NamesAreUnique ()) faults.emplace_back ("two templates have one name");
  const StrArray used = road.TemplatePlacements.UsedTemplateNames ();
  for (int i = 0; i < used.Count (); i++)
    if (!road.Templates.FindByName (used[i]))
      faults.push_back ("template \"" + CleanText (used[i]) + "\" is placed and does not exist");
  if (road.Templates.AnyInvalid ())
    for (const CrossSectionTemplate& section : road.Templates)
      if (section.IsInvalid ())
        faults.push_back ("template \"" + CleanText (section.Name) +
                          "\" has a strip of negative width");
  // Whatever else the model finds.
  if (const char* first = road.FirstFault (); first && faults.empty ()) faults.emplace_back (first);
  return faults;
}

}  // namespace clxml::tool
