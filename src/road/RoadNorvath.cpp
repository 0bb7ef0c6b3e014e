// The road of a road file.
// Its names, its stations of interest, its validation and its coordinates; roadfile.cpp reads and
// writes it, roadsections.cpp builds its cross sections.
#include "road/RoadNorvath.h"

#include <cmath>

#include "numerics/approx.h"
#include "road/roadxs.h"

namespace clxml {

void NorvathRoad::SetFileName (const Str& path) {
  FileName = path;
  const int backslash = FileName.ReverseFind ('\\');
  if (backslash < FileName.Length ()) SetNameFromFile (FileName.From (backslash + 1));
}

void NorvathRoad::SetNameFromFile (const Str& name) { Name = name.Left (name.Find ('.')); }

const char* NorvathRoad::FirstFault () const {
  const double start = StartChainage (), end = EndChainage ();
  if (!Horizontal.CheckContinuity ())
    return "a horizontal element does not start where the one before it ends";
  if (!Horizontal.CheckEndsComputable ())
    return "a horizontal element does not end where its own values say";
  if (!Vertical.CheckConsistency ())
    return "vertical curves overlap, cannot be computed, or the last element is no point";
  if (!TemplatePlacements.CheckConsistency (start, end))
    return "template placements share a station or lie outside the alignment";
  if (!Supers.CheckConsistency (start, end))
    return "superelevation entries share a station or lie outside the alignment";
  if (!Templates.NamesAreUnique ()) return "two templates bear the same name";
  if (!Templates.HasAll (TemplatePlacements.UsedTemplateNames ()))
    return "a placement uses a template that does not exist";
  if (Templates.AnyInvalid ()) return "a template has a strip of negative width";
  return nullptr;
}

double NorvathRoad::StationAtPoint (const coord_CorrectedGrid& coordinate) const {
  return Horizontal.StationOffsetOf (coordinate).Station;
}

namespace {

// Every multiple of an interval from start to end, in order.
void AddIntervals (double start, double end, double interval, ChainageElementArray& list) {
  if (maths_IsNull (interval) || !(interval > 0.0) || maths_IsNull (start) || maths_IsNull (end))
    return;
  const double rest = std::fmod (start, interval);
  const double first = rest == 0.0 ? start : rest < 0.0 ? start - rest : start + interval - rest;
  // The stations are counted first: far from 0 an interval can be too small to change a station.
  const double count = std::floor ((end + APPROX_Delta - first) / interval) + 1.0;
  if (!(count <= NorvathRoad::MaximumStations)) {
    Environment::Get ()->LogMessage (
        "Road: more than 1000000 interval stations, none is listed; use a larger interval");
    return;
  }
  for (int i = 0; i < count; i++) {
    const double station = first + i * interval;
    if (approx (station, LE, end)) list.Append (station, ChainageInterval);
  }
}

}  // namespace

void NorvathRoad::BuildChainageList (const ChainageOptions& options) {
  ChainageElementArray list;
  const double start = StartChainage (), end = EndChainage ();
  if (options.Interval) AddIntervals (start, end, StationInterval, list);
  list.StartChainage = start;
  list.EndChainage = end;
  if (options.Horizontal) Horizontal.AddChainages (list);
  if (options.Vertical) Vertical.AddChainages (list);
  if (options.Templates) TemplatePlacements.AddChainages (list);
  if (options.SuperElevation) Supers.AddChainages (list);
  Chainages.Elements = std::move (list);
}

double NorvathRoad::DesignElevationAt (double station, double offset) const {
  roadxs_CrossSection section;
  CrossSectionAt (station, section);
  const double elevation = section.DesignElevation (roadxs_Offset (offset));
  if (!maths_IsNull (elevation) || !approx (offset, EQ, 0.0)) return elevation;
  return section.DesignElevation (roadxs_Offset (0.0));
}

coord_CorrectedGrid NorvathRoad::GetCoordinateAt (double station, double offset,
                                                  double heightDelta) const {
  coord_CorrectedGrid place = Horizontal.PointAtStationOffset (station, offset);
  if (!place.NullHorizontal ())
    place.Elevation = maths_Add (DesignElevationAt (station, offset), heightDelta);
  return place;
}

coord_StationOffset NorvathRoad::GetStationOffset (const coord_CorrectedGrid& coordinate) const {
  coord_StationOffset place = Horizontal.StationOffsetOf (coordinate);
  if (!maths_IsNull (place.Station))
    place.Elevation =
        maths_Subtract (coordinate.Elevation, DesignElevationAt (place.Station, place.Offset));
  return place;
}

}  // namespace clxml
