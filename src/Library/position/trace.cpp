// A record of how one position was computed.
#include "Library/position/trace.h"

#include <algorithm>

namespace clxml {
namespace {

thread_local position_Trace* current = nullptr;

// Failures that are kept: a job whose points depend on each other in many ways has no more to say.
constexpr std::size_t maximumFailures = 200;

}  // namespace

position_Trace* position_TraceNow () noexcept { return current; }

void position_Fail (position_Reason reason, const Str& name, const Str& point) {
  if (current && current->Failures.size () < maximumFailures)
    current->Failures.push_back ({reason, name, point});
}

const position_Failure* position_Trace::Reason () const {
  return Failures.empty () ? nullptr : &Failures.back ();
}

Str position_ToText (const position_Failure& failure) {
  const Str& name = failure.Name;
  switch (failure.Reason) {
    case position_Reason::NoMeasurement:
      return "no measurement";
    case position_Reason::NoBaseName:
      return "the point it was measured from is not recorded";
    case position_Reason::BaseNotFound:
      return "no point " + name;
    case position_Reason::BaseWithoutPosition:
      return "point " + name + " has no position";
    case position_Reason::CircularReference:
      return "circular reference to " + name;
    case position_Reason::ChainTooLong:
      return "more than 50 points depend on each other";
    case position_Reason::SetupMissing:
      return name + " record missing";
    case position_Reason::LaserSetupMissing:
      return "declination, laser height or target height record missing";
    case position_Reason::NoDistanceFrame:
      return "the observation does not say how its distances are measured";
    case position_Reason::NoReading:
      return "no usable reading";
    case position_Reason::NoBacksightName:
      return "no backsight name";
    case position_Reason::BacksightNotFound:
      return "no position of backsight " + name + " to orient on";
    case position_Reason::BacksightWithoutPosition:
      return "backsight " + name + " has no position";
    case position_Reason::NoAzimuth:
      return "no azimuth to backsight " + name;
    case position_Reason::NoReferenceAntenna:
      return "antenna height of reference " + name + " not known";
    case position_Reason::NoTransform:
      break;
  }
  return "the coordinate system cannot convert it";
}

bool position_Explain (const position& point, const Transform& transform, position_Trace& trace) {
  position copy = point;
  copy.Object = UniqueId ();  // so that it neither reads nor writes the cached grid
  copy.TransformId = TRANSFORM_NoId;
  trace = position_Trace ();
  trace.Subject = &copy;
  trace.Base = copy.NameOfBase;
  trace.Backsight = copy.NameOfBacksight;
  position_Trace* const outer = current;
  current = &trace;
  if (copy.Original == COORD_NullType)
    position_Fail (position_Reason::NoMeasurement, copy.Name, copy.Name);
  else
    trace.Grid = copy.GetGrid (transform);
  if (trace.Grid.IsNull () && trace.Failures.empty ())
    position_Fail (position_Reason::NoTransform, copy.Name, copy.Name);
  current = outer;
  if (!trace.Grid.IsNull ()) {
    trace.Failures.clear ();  // of ways that were tried before the one that led to the grid
  } else {
    // The first failure of the position itself goes to the end, otherwise the first cause.
    auto& failures = trace.Failures;
    auto reason = std::find_if (failures.begin (), failures.end (),
                                [&] (const position_Failure& f) { return f.Point == copy.Name; });
    if (reason == failures.end ()) reason = failures.begin ();
    std::rotate (reason, reason + 1, failures.end ());
  }
  trace.Subject = nullptr;
  return !trace.Grid.IsNull ();
}

}  // namespace clxml
