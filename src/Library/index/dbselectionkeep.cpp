// Narrowing a selection: by words, flags, codes, names and place, and rebuilding it by name.
#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_set>

#include "Library/index/dbobject.h"
#include "Library/index/dbselection.h"
#include "Library/index/jobfile.h"

namespace clxml {
namespace {

// A line shorter than this along both axes is a point, metres.
constexpr double noLength = 1e-10;
// How often a host is called on long work.
constexpr int32_t itemsPerYield = 300;

bool HasCode (const dbObject& object) {
  switch (object.GetRecordType ()) {
    case DATABASE_ObservationRecord:
    case DATABASE_LineRecord:
    case DATABASE_ArcRecord:
      return true;
    default:
      return object.IsLinked ();
  }
}

// A place in plan.
struct Plan {
  double North, East;
};

bool GetPlan (const coord_CorrectedGrid& grid, Plan& out) {
  out = {grid.North, grid.East};
  return !maths_IsNull (grid.North) && !maths_IsNull (grid.East);
}

double SquaredDistance (Plan a, Plan b) {
  const double north = a.North - b.North, east = a.East - b.East;
  return north * north + east * east;
}

struct Rectangle {
  Plan Least, Most;
  bool Contains (Plan p) const {
    return p.North >= Least.North && p.North <= Most.North && p.East >= Least.East &&
           p.East <= Most.East;
  }
};

// Offers the ends of an arc and the outermost points of its circle that it reaches, until one is
// refused; false for an arc without geometry.
template <class Accepts>
bool AllOfArc (const ArcObject& arc, bool isReversed, coordsys_GridOrientation orientation,
               Accepts accepts) {
  Plan centre;
  if (!GetPlan (arc.Centre, centre) || maths_IsNull (arc.Radius) ||
      maths_IsNull (arc.StartAzimuth) || maths_IsNull (arc.DeltaAngle))
    return false;
  const double north =
      orientation == COORDSYS_IncreasingSouthWest || orientation == COORDSYS_IncreasingSouthEast
          ? -arc.Radius
          : arc.Radius;
  const double east =
      orientation == COORDSYS_IncreasingSouthWest || orientation == COORDSYS_IncreasingNorthWest
          ? -arc.Radius
          : arc.Radius;
  const auto at = [&] (double azimuth) {
    if (isReversed) azimuth += CONSTANT_Pi;
    return accepts (
        Plan{centre.North + north * std::cos (azimuth), centre.East + east * std::sin (azimuth)});
  };
  if (!at (arc.StartAzimuth) || !at (arc.StartAzimuth + arc.DeltaAngle)) return false;
  for (int quarter = 0; quarter < 4; quarter++) {
    const double azimuth = quarter * CONSTANT_PiOverTwo;
    const double turn = coord_NormaliseTwoPi (azimuth - arc.StartAzimuth);
    if (turn <= arc.DeltaAngle && !at (azimuth)) return false;
  }
  return true;
}

bool IsLineNear (const LineObject& line, Plan centre, double squaredRadius) {
  Plan start, end;
  if (!GetPlan (line.StartGrid, start) || !GetPlan (line.EndGrid, end)) return false;
  const double north = end.North - start.North, east = end.East - start.East;
  double part = 0.0;
  if (std::abs (north) >= noLength || std::abs (east) >= noLength)
    part = ((centre.North - start.North) * north + (centre.East - start.East) * east) /
           (north * north + east * east);
  part = std::clamp (part, 0.0, 1.0);
  return SquaredDistance (centre, {start.North + part * north, start.East + part * east}) <=
         squaredRadius;
}

bool IsArcNear (const ArcObject& arc, Plan centre, double radius) {
  Plan arcCentre;
  if (!GetPlan (arc.Centre, arcCentre) || maths_IsNull (arc.Radius)) return false;
  return std::abs (std::sqrt (SquaredDistance (centre, arcCentre)) - arc.Radius) <= radius;
}

}  // namespace

// Keeps the items that fit; keeps (number of the item, object) decides. The number removed.
template <class Keeps>
int32_t dbSelection::Keep (Keeps keeps) {
  int32_t write = 0;
  const int32_t count = _ItemCount;
  for (int32_t read = 0; read < count; read++) {
    dbObject* object = ObjectAt (read);
    if (!object || !keeps (read, *object)) continue;
    Put (write++, *Place (read), PackedAt (read));
  }
  _ItemCount = write;
  return count - write;
}

void dbSelection::ApplyFilter (const dbfilter_Words& words) {
  _CurrentFilter = words;
  Keep ([&] (int32_t, dbObject& object) {
    return (object.Words ()[0] & words[0]) != 0 && (object.Words ()[1] & words[1]) != 0 &&
           (object.GetStatus () & words[2]) != 0;
  });
}

void dbSelection::KeepByItemFlags (uint8_t mask, uint8_t value) {
  Keep ([&] (int32_t i, dbObject&) { return (*Place (i) & mask) == value; });
}

void dbSelection::KeepByObjectFlags (uint16_t mask, uint16_t value) {
  Keep ([&] (int32_t, dbObject& object) { return (object.GetFlags () & mask) == value; });
}

void dbSelection::KeepByCode (const Str& text) {
  Str code;
  Keep ([&] (int32_t, dbObject& object) {
    if (HasCode (object))
      object.GetCode (code);
    else
      code = Str ();
    return code.EqualInsensitive (text);
  });
}

void dbSelection::KeepNameRange (std::string_view first, std::string_view last) {
  bool isInside = false;
  Keep ([&] (int32_t, dbObject& object) {
    const std::string_view name = object.GetName ();
    if (name == first) isInside = true;
    const bool keeps = isInside;
    if (name == last) isInside = false;
    return keeps;
  });
}

void dbSelection::KeepWithHorizontal () {
  Keep ([] (int32_t, dbObject& object) {
    ObservationObject* point = AsObservation (&object);
    return point && point->HasHorizontal ();
  });
}

void dbSelection::KeepWithEither () {
  Keep ([] (int32_t, dbObject& object) {
    ObservationObject* point = AsObservation (&object);
    return point && (point->HasHorizontal () || point->HasVertical ());
  });
}

int32_t dbSelection::RemoveInvalid () {
  return Keep ([] (int32_t, dbObject&) { return true; });
}

int32_t dbSelection::RemoveDeleted () {
  return Keep ([] (int32_t, dbObject& object) { return !object.IsDeleted (); });
}

void dbSelection::RemoveHidden () {
  Keep ([] (int32_t, dbObject& object) { return !object.IsHidden (); });
}

void dbSelection::RemoveMTAHidden () {
  Keep ([] (int32_t, dbObject& object) {
    const ObservationObject* point = AsObservation (&object);
    if (!point || point->GetMethod () != DBENTITY_MeanTurnedAngleHidden) return true;
    db_PointClassification classification;
    point->GetClassification (classification);
    return !(classification == db_PointClassification::MTA);
  });
}

void dbSelection::RemoveItemsOf (const dbSelection& set) {
  const std::vector<uint32_t> others = set.SortedIds ();
  Keep ([&] (int32_t i, dbObject&) {
    *Place (i) &= static_cast<uint8_t> (~WorkingMark);
    return !std::binary_search (others.begin (), others.end (), PackedAt (i));
  });
}

void dbSelection::KeepInRectangle (const coord_CorrectedGrid& corner1,
                                   const coord_CorrectedGrid& corner2, bool isReversed,
                                   coordsys_GridOrientation orientation) {
  Plan one, other;
  const bool isThere = GetPlan (corner1, one) && GetPlan (corner2, other);
  if (!isThere) return Empty ();
  const Rectangle rectangle{{std::min (one.North, other.North), std::min (one.East, other.East)},
                            {std::max (one.North, other.North), std::max (one.East, other.East)}};
  const auto contains = [&] (const coord_CorrectedGrid& grid) {
    Plan place;
    return GetPlan (grid, place) && rectangle.Contains (place);
  };
  Keep ([&] (int32_t i, dbObject& object) {
    switch (object.GetRecordType ()) {
      case DATABASE_ObservationRecord:
        return contains (static_cast<ObservationObject&> (object).GetGrid ());
      case DATABASE_LineRecord: {
        const auto* line = static_cast<const LineObject*> (GetObject (i));
        return contains (line->StartGrid) && contains (line->EndGrid);
      }
      case DATABASE_ArcRecord:
        return AllOfArc (*static_cast<const ArcObject*> (GetObject (i)), isReversed, orientation,
                         [&] (Plan place) { return rectangle.Contains (place); });
      default:
        return false;
    }
  });
}

void dbSelection::KeepWithinRadius (const coord_CorrectedGrid& centre, double radius) {
  Plan middle;
  if (!GetPlan (centre, middle) || maths_IsNull (radius)) return Empty ();
  const double squaredRadius = radius * radius;
  Keep ([&] (int32_t i, dbObject& object) {
    switch (object.GetRecordType ()) {
      case DATABASE_ObservationRecord: {
        Plan place;
        return GetPlan (static_cast<ObservationObject&> (object).GetGrid (), place) &&
               SquaredDistance (middle, place) <= squaredRadius;
      }
      case DATABASE_LineRecord:
        return IsLineNear (*static_cast<const LineObject*> (GetObject (i)), middle, squaredRadius);
      case DATABASE_ArcRecord:
        return IsArcNear (*static_cast<const ArcObject*> (GetObject (i)), middle, radius);
      default:
        return false;
    }
  });
}

int32_t dbSelection::NearestPoint (const coord_CorrectedGrid& grid) const {
  Plan wanted, place;
  if (!GetPlan (grid, wanted)) return -1;
  int32_t nearest = -1;
  double least = 0.0;
  for (int32_t i = 0; i < _ItemCount; i++) {
    ObservationObject* point = AsObservation (ObjectAt (i));
    if (!point || !GetPlan (point->GetGrid (), place)) continue;
    const double distance = SquaredDistance (wanted, place);
    if (nearest >= 0 && distance >= least) continue;
    nearest = i;
    least = distance;
  }
  return nearest;
}

void dbSelection::ExpandByName (dbIndex& index, bool allIndexes) {
  struct Source {
    dbSelection* Items;
    uint32_t BestBit;
  };
  std::vector<Source> sources{{&index.GetSelection (), DBSTATUS_Best}};
  if (const JobFile* job = index.GetMainJobFile (); job && allIndexes)
    for (int32_t number = 0; number < DBINDEX_IndexCount; number++)
      if (dbIndex* linked = job->GetLinkedIndex (number); linked && linked != &index)
        sources.push_back ({&linked->GetSelection (), DBSTATUS_BestOfAll});

  std::unordered_set<std::string> done;
  std::vector<UniqueId> expanded;
  for (int32_t i = 0; i < _ItemCount; i++) {
    if ((i + 1) % itemsPerYield == 0) Environment::Get ()->Yield ();
    const UniqueId id = GetUniqueId (i);
    if (!ObjectAt (i) || (!allIndexes && id.GetIndexNumber () != index.GetIndexNumber ())) continue;
    const std::string name = GetName (i);
    if (!done.insert (name).second) continue;
    const std::size_t first = expanded.size ();
    bool hasBest = false;
    for (const Source& source : sources) {
      const dbSelection& items = *source.Items;
      for (int32_t k = items.LowerBound (name), end = items.UpperBound (name); k < end; k++) {
        dbObject* object = items.ObjectAt (k);
        if (!object) continue;
        const UniqueId found = items.GetUniqueId (k);
        if (!hasBest && AsObservation (object) && (object->GetStatus () & source.BestBit) != 0) {
          expanded.insert (expanded.begin () + static_cast<std::ptrdiff_t> (first), found);
          hasBest = true;
        } else {
          expanded.push_back (found);
        }
      }
    }
  }
  Empty ();
  _SortedByName = false;
  Reserve (static_cast<int32_t> (expanded.size ()));
  for (const UniqueId id : expanded) Insert (id);
}

bool dbSelection::ReplaceByBest () {
  bool isBest = true;
  int32_t write = 0;
  for (int32_t i = 0; i < _ItemCount; i++) {
    const dbselection_Item item = GetItem (i);
    dbObject* object = ObjectAt (i);
    if (!object) continue;
    uint32_t packed = item.Id.Pack ();
    if (AsObservation (object) && !object->IsBest (false)) {
      isBest = false;
      JobFile* job = object->GetIndex ()->GetJobFile ();
      const UniqueId best = job ? job->FindBestPoint (Str (object->GetName ())) : UniqueId ();
      if (best.IsNull ()) continue;
      packed = best.Pack ();
    }
    Put (write++, item.Flags, packed);
  }
  _ItemCount = write;
  if (!isBest) _SortedByName = false;
  return isBest;
}

}  // namespace clxml
