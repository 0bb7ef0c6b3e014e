// The long section of a road's drawing: profile, grades, curvature and superelevation.
#include <algorithm>

#include "roadsheet.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

constexpr Box elevationBand = {36.0, 236.0, 404.0, 249.0};
constexpr Box gradeBand = {36.0, 249.0, 404.0, 257.0};
constexpr Box curvatureBand = {36.0, 257.0, 404.0, 269.0};
constexpr Box superBand = {36.0, 269.0, 404.0, 281.0};

class Section {
 public:
  Section (const NorvathRoad& road, const std::vector<Stretch>& stretches)
      : _Road (road), _Stretches (stretches) {
    _From = stretches.front ().element->StartChainage;
    _To = stretches.back ().element->StartChainage + stretches.back ().element->Length;
    if (!(_To > _From)) _To = _From + 1.0;
    _Scale = RoundUp (std::max ((_To - _From) * 1000.0 / SHEET_Profile.Width (), 50.0),
                      SHEET_ScaleSteps);
    _Step = RoundUp (16.0 * _Scale / 1000.0, SHEET_GridSteps);
    SampleProfile ();
    FitHeights ();
  }

  double Scale () const { return _Scale; }
  /// 0 without a profile.
  double Exaggeration () const { return _Exaggeration; }

  void Draw (Svg& svg) {
    svg.Raw ("<g id=\"section\">\n");
    Stations (svg);
    if (_Exaggeration > 0.0)
      Profile (svg);
    else
      None (svg, SHEET_Profile, "no vertical alignment");
    Grades (svg);
    Curvatures (svg);
    Supers (svg);
    for (const Box& band : {SHEET_Profile, elevationBand, gradeBand, curvatureBand, superBand})
      svg.Rectangle ("frame", band);
    svg.Raw ("</g>\n");
  }

 private:
  double X (double station) const {
    return SHEET_Profile.left +
           std::clamp ((station - _From) * 1000.0 / _Scale, 0.0, SHEET_Profile.Width ());
  }
  double Y (double elevation) const {
    return SHEET_Profile.bottom -
           std::clamp ((elevation - _Datum) * 1000.0 * _Exaggeration / _Scale, 0.0,
                       SHEET_Profile.Height ());
  }
  bool IsInside (double station) const {
    return IsUsable (station) && station >= _From - 0.0005 && station <= _To + 0.0005;
  }

  // The elements answer in turn: the alignment would walk to each station anew.
  void SampleProfile () {
    const VerticalElementArray& line = _Road.Vertical;
    const auto take = [&] (const VerticalBase& element, double station) {
      if (!IsInside (station)) return;
      const double elevation = element.ElevationAt (station);
      if (IsUsable (elevation)) _Profile.push_back ({station, elevation});
    };
    double least = 1e300;  // stations that a pen can tell apart
    const double apart = 0.05 * _Scale / 1000.0;
    for (int i = 0; i < line.Count (); i++) {
      const VerticalBase& element = *line.At (i);
      const double from = element.StartPoint.Station, to = element.EndPoint.Station;
      if (!IsUsable (from) || !IsUsable (to)) continue;
      if (i == 0) {
        if (IsInside (from) && IsUsable (element.StartPoint.Elevation))
          _Profile.push_back ({from, element.StartPoint.Elevation});
      }
      if (i > 0 && i + 1 < line.Count () && std::abs (to - least) < apart) continue;
      least = to;
      if (i > 0) take (element, from);
      if (element.ElementType () == ROAD_VerticalPoint || !(to > from)) continue;
      const int steps =
          static_cast<int> (std::clamp ((to - from) / (0.5 * _Scale / 1000.0), 2.0, 800.0));
      for (int k = 1; k <= steps; k++) take (element, from + (to - from) * k / steps);
    }
  }

  void FitHeights () {
    if (_Profile.size () < 2) return;
    double low = 1e300, high = -1e300;
    const auto widen = [&] (double elevation) {
      low = std::min (low, elevation);
      high = std::max (high, elevation);
    };
    for (const Point& p : _Profile) widen (p.y);
    for (int i = 0; i < _Road.Vertical.Count (); i++) {
      const VerticalPosition& vpi = _Road.Vertical.At (i)->IntersectionPoint;
      if (!vpi.IsNull () && IsInside (vpi.Station) && IsUsable (vpi.Elevation))
        widen (vpi.Elevation);
    }
    for (const double exaggeration :
         {100.0, 50.0, 25.0, 20.0, 10.0, 5.0, 2.0, 1.0, 0.5, 0.1, 0.01}) {
      const double metre = 1000.0 * exaggeration / _Scale;  // on the sheet
      _HeightStep = RoundUp (5.0 / metre, SHEET_GridSteps);
      _Datum = std::floor (low / _HeightStep) * _HeightStep;
      _Exaggeration = exaggeration;
      if ((std::ceil (high / _HeightStep) * _HeightStep - _Datum) * metre <=
          SHEET_Profile.Height ())
        break;
    }
  }

  static void Title (Svg& svg, const Box& band, const std::string& text, double row = 0.5) {
    svg.Words ("small", {SHEET_Plan.left, band.top + band.Height () * row + 0.8}, text);
  }

  static void None (Svg& svg, const Box& band, const char* text) {
    svg.Words ("faint", {band.left + 3.0, (band.top + band.bottom) / 2.0 + 0.8}, text);
  }

  void Stations (Svg& svg) const {
    Title (svg, elevationBand, "Elevation");
    svg.Words ("small", {SHEET_Plan.left, superBand.bottom + 3.2}, "Station");
    ForMultiples (_From, _To, _Step, [&] (double station) {
      const double x = X (station);
      svg.Line ("grid", {x, SHEET_Profile.top}, {x, superBand.bottom});
      svg.Words ("small", {x, superBand.bottom + 3.2}, StationText (station, DecimalsOf (_Step)),
                 "middle");
      const double elevation = _Road.Vertical.ElevationAt (station);
      if (IsUsable (elevation))
        svg.Words ("small", {x + 2.4, elevationBand.bottom - 1.0}, NumberText (elevation, 2),
                   "start", -90.0);
    });
  }

  void Profile (Svg& svg) const {
    ForMultiples (_Datum, _Datum + SHEET_Profile.Height () * _Scale / (1000.0 * _Exaggeration),
                  _HeightStep, [&] (double elevation) {
                    const double y = Y (elevation);
                    svg.Line ("grid", {SHEET_Profile.left, y}, {SHEET_Profile.right, y});
                    svg.Words ("small", {SHEET_Profile.left - 1.0, y + 0.8},
                               NumberText (elevation, DecimalsOf (_HeightStep)), "end");
                  });
    std::vector<Point> tangents, points;
    double lastNote = -1e300;
    for (int i = 0; i < _Road.Vertical.Count (); i++) {
      const VerticalBase& element = *_Road.Vertical.At (i);
      const VerticalPosition& vpi = element.IntersectionPoint;
      if (vpi.IsNull () || !IsInside (vpi.Station) || !IsUsable (vpi.Elevation)) continue;
      const Point at = {X (vpi.Station), Y (vpi.Elevation)};
      tangents.push_back (at);
      if (at.x - lastNote < 6.4) continue;
      lastNote = at.x;
      Note (svg, element, at);
    }
    svg.Path ("tangent", tangents);
    for (const Point& p : _Profile) points.push_back ({X (p.x), Y (p.y)});
    svg.Path ("profile", points);
  }

  // A change of grade: its place, its curve with begin and end, and the lowest or highest point.
  void Note (Svg& svg, const VerticalBase& element, Point at) const {
    const VerticalPosition& vpi = element.IntersectionPoint;
    svg.Line ("change", {at.x, SHEET_NoteTop + 25.0}, at);
    svg.Add ("<path class=\"open\" d=\"M%.2f %.2fl-1 1.7h2z\"/>\n", at.x, at.y - 1.1);
    const bool isLast = at.x > SHEET_Profile.right - 4.0;
    const double first = isLast ? at.x - 3.4 : at.x - 0.5;
    svg.Words ("small", {first, SHEET_NoteTop + 25.0},
               StationText (vpi.Station) + " / " + NumberText (vpi.Elevation), "start", -90.0);
    if (element.ElementType () == ROAD_VerticalPoint) return;
    const auto& curve = static_cast<const VerticalCurve&> (element);
    std::string size;
    if (const auto* arc = RoadElement_Cast<VerticalArc> (&element))
      size = "R " + NumberText (arc->Radius, 1) + "  L " + NumberText (arc->Length, 1);
    else if (const auto* parabola = RoadElement_Cast<VerticalParabola> (&element))
      size = "L " + NumberText (parabola->Length, 1) + "  K " + NumberText (curve.KFactor, 1);
    else if (const auto* both = RoadElement_Cast<VerticalAsymmetricParabola> (&element))
      size = "L " + NumberText (both->LengthIn, 1) + " + " + NumberText (both->LengthOut, 1);
    svg.Words ("small", {first + 2.9, SHEET_NoteTop + 25.0}, size, "start", -90.0);
    for (const VerticalPosition& end : {curve.StartPoint, curve.EndPoint})
      if (!end.IsNull () && IsInside (end.Station) && IsUsable (end.Elevation)) {
        const Point p = {X (end.Station), Y (end.Elevation)};
        svg.Line ("change", p, {p.x, SHEET_Profile.bottom});
        svg.Circle ("open", p, 0.6);
      }
    const VerticalPosition& turn = curve.SagSummitPoint;
    if (!turn.IsNull () && IsInside (turn.Station) && IsUsable (turn.Elevation)) {
      const Point p = {X (turn.Station), Y (turn.Elevation)};
      svg.Circle ("solid", p, 0.6);
      const bool isSag = curve.GradeIn < curve.GradeOut;
      svg.Words ("faint", {p.x, std::min (p.y + (isSag ? -2.0 : 3.6), SHEET_Profile.bottom - 1.0)},
                 (isSag ? "low " : "high ") + StationText (turn.Station) + " / " +
                     NumberText (turn.Elevation),
                 "middle");
    }
  }

  void Grades (Svg& svg) const {
    Title (svg, gradeBand, "Grade, length");
    const VerticalElementArray& line = _Road.Vertical;
    const VerticalPosition* before = nullptr;
    for (int i = 0; i < line.Count (); i++) {
      const VerticalPosition& vpi = line.At (i)->IntersectionPoint;
      if (vpi.IsNull () || !IsUsable (vpi.Station) || !IsUsable (vpi.Elevation)) continue;
      if (before && vpi.Station > _From && before->Station < _To) {
        const double left = X (before->Station), right = X (vpi.Station);
        const double rise = vpi.Elevation - before->Elevation;
        if (right - left > 0.3) {
          const double up = rise > 0.0 ? gradeBand.top + 1.0 : gradeBand.bottom - 1.0;
          const double down = rise > 0.0 ? gradeBand.bottom - 1.0 : gradeBand.top + 1.0;
          svg.Line ("change", {left, down}, {right, up});
          svg.Line ("tick", {right, gradeBand.top}, {right, gradeBand.bottom});
        }
        const double run = vpi.Station - before->Station;
        if (right - left > 20.0 && run > 0.0)
          svg.Words ("halo", {(left + right) / 2.0, gradeBand.top + 4.8},
                     (rise > 0.0 ? "+" : "") + NumberText (rise / run * 100.0) + "%  " +
                         NumberText (run, 2),
                     "middle");
      }
      before = &vpi;
    }
  }

  void Curvatures (Svg& svg) const {
    Title (svg, curvatureBand, "Curvature", 0.32);
    Title (svg, curvatureBand, "right up, left down", 0.68);
    const double middle = (curvatureBand.top + curvatureBand.bottom) / 2.0;
    double most = 0.0;
    for (const Stretch& stretch : _Stretches) {
      const Curvature c = CurvatureOf (*stretch.element);
      most = std::max ({most, std::abs (c.start), std::abs (c.end)});
    }
    svg.Line ("tick", {curvatureBand.left, middle}, {X (_To), middle});
    std::vector<Point> outline = {{X (_From), middle}};
    double lastX = -1e300;
    for (const Stretch& stretch : _Stretches) {
      const HorizontalBase& element = *stretch.element;
      const Curvature c = CurvatureOf (element);
      const double left = X (element.StartChainage),
                   right = X (element.StartChainage + element.Length);
      const auto y = [&] (double curvature) {
        return middle - (most > 0.0 ? curvature / most * 4.6 : 0.0);
      };
      outline.push_back ({left, y (c.start)});
      outline.push_back ({right, y (c.end)});
      const std::string text = DescriptionOf (element, right - left);
      if (!text.empty () && left >= lastX - 0.01) {
        const bool isUp = c.start + c.end > 0.0;
        svg.Words ("halo", {(left + right) / 2.0, isUp ? middle + 3.4 : middle - 1.6}, text,
                   "middle");
        lastX = right;
      }
    }
    outline.push_back ({X (_To), middle});
    svg.Path ("curvature", outline);
  }

  void Supers (Svg& svg) const {
    Title (svg, superBand, "Superelevation", 0.32);
    svg.Add (
        "<text class=\"small\" x=\"%.2f\" y=\"%.2f\"><tspan class=\"leftside\">left</tspan>, "
        "<tspan class=\"rightside\">right</tspan>, %%</text>\n",
        SHEET_Plan.left, superBand.top + superBand.Height () * 0.68 + 0.8);
    const SuperElevationArray& entries = _Road.Supers;
    if (entries.IsEmpty ()) return None (svg, superBand, "none");
    const double middle = (superBand.top + superBand.bottom) / 2.0;
    double most = 0.0;
    for (int i = 0; i < entries.Count (); i++)
      for (const double grade : entries.At (i)->Superelevation)
        if (IsUsable (grade)) most = std::max (most, std::abs (grade));
    svg.Line ("tick", {superBand.left, middle}, {X (_To), middle});
    for (std::size_t side = 0; side < 2; side++) {
      std::vector<Point> points;
      double lastX = -1e300;
      for (int i = 0; i < entries.Count (); i++) {
        const double station = entries.At (i)->Chainage;
        const double grade = entries.At (i)->Superelevation[side];
        if (!IsInside (station) || !IsUsable (grade)) continue;
        const Point p = {X (station), middle - (most > 0.0 ? grade / most * 3.4 : 0.0)};
        points.push_back (p);
        if (p.x - lastX < 8.0) continue;
        lastX = p.x;
        svg.Words (
            side == DBROAD_SideLeft ? "leftside" : "rightside",
            {p.x + 0.4, side == DBROAD_SideLeft ? superBand.top + 2.0 : superBand.bottom - 0.6},
            NumberText (std::tan (grade) * 100.0, 1),
            p.x < superBand.left + 3.0 ? "start" : "middle");
      }
      // The last entry's values stay to the end.
      if (!points.empty () && points.back ().x < X (_To))
        points.push_back ({X (_To), points.back ().y});
      svg.Path (side == DBROAD_SideLeft ? "leftline" : "rightline", points);
    }
  }

  const NorvathRoad& _Road;
  const std::vector<Stretch>& _Stretches;
  double _From = 0.0, _To = 0.0;  // stations
  double _Scale = 0.0;            // one to
  double _Step = 0.0;             // of the station labels
  std::vector<Point> _Profile;    // station, elevation
  double _Datum = 0.0;            // the lowest elevation shown
  double _HeightStep = 1.0;
  double _Exaggeration = 0.0;
};

}  // namespace

SectionScales DrawSection (Svg& svg, const NorvathRoad& road,
                           const std::vector<Stretch>& stretches) {
  Section section (road, stretches);
  section.Draw (svg);
  return {section.Scale (), section.Exaggeration ()};
}

}  // namespace clxml::tool
