// The azimuth from a station to its backsight.
#include "Library/position/azimuth.h"

#include "Library/cogo/cogo.h"
#include "Library/position/position.h"
#include "Library/position/trace.h"
#include "Library/records/dbConventional.h"
#include "Library/records/dbMeasurements.h"

namespace clxml {
namespace {

// What the trace is told about the setup of the traced position.
void NoteAzimuth (const Str& baseName, const Str& backsightName, position_AzimuthSource source,
                  double azimuth) {
  position_Trace* trace = position_TraceNow ();
  if (!trace || !trace->Base.EqualInsensitive (baseName) ||
      !trace->Backsight.EqualInsensitive (backsightName))
    return;
  trace->AzimuthSource = source;
  trace->Azimuth = azimuth;
}

}  // namespace

bool ResolveAzimuth (position_Job& job, position& base, const Transform& transform,
                     const Str& backsightName, double& azimuth, bool& azimuthKeyedIn) {
  azimuth = MATHS_Null;
  azimuthKeyedIn = false;
  if (base.Name.IsEmpty () || backsightName.IsEmpty ()) {
    position_Fail (position_Reason::NoBacksightName, backsightName, base.Name);
    return false;
  }
  const db_Azimuth* keyed = job.KeyedAzimuth (base.Name, backsightName);
  if (keyed && !maths_IsNull (keyed->Azimuth)) {
    azimuth = keyed->Azimuth;
    azimuthKeyedIn = true;
    NoteAzimuth (base.Name, backsightName, position_AzimuthSource::KeyedIn, azimuth);
    return true;
  }

  if (backsightName.EqualInsensitive (base.NameOfBase) &&
      base.GetGrid (transform).NullHorizontal ()) {
    const resolutionChain_Hold hold (job, base.Name);
    if (!hold.IsEntered ()) return false;
    azimuth = coord_NormaliseTwoPi (maths_Add (base.GetPolar (transform).Azimuth, CONSTANT_Pi));
    NoteAzimuth (base.Name, backsightName, position_AzimuthSource::ReverseOfOwn, azimuth);
    if (maths_IsNull (azimuth))
      position_Fail (position_Reason::NoAzimuth, backsightName, base.Name);
    return !maths_IsNull (azimuth);
  }

  position target;
  if (!job.FindBacksight (base.Name, backsightName, target)) {
    position_Fail (position_Reason::BacksightNotFound, backsightName, base.Name);
    return false;
  }
  const Transform& current = job.CurrentTransform ();
  const auto isAbsolute = [&] (position& point, const Str& name, const Transform& under) {
    const resolutionChain_Hold hold (job, name);
    return hold.IsEntered () && point.ComputeAbsolute (under);
  };
  if (!isAbsolute (base, base.Name, transform)) {
    position_Fail (position_Reason::BaseWithoutPosition, base.Name, base.Name);
    return false;
  }
  Assert (current.GetId () == transform.GetId (),
          "jobfile->Transform->GetId() == baseTransform->GetId()");
  if (!isAbsolute (target, backsightName, current)) {
    position_Fail (position_Reason::BacksightWithoutPosition, backsightName, base.Name);
    return false;
  }
  cogo_Azimuth (base, target, transform, azimuth, job.CogoSystem ());
  if (maths_IsNull (azimuth)) {
    position_Fail (position_Reason::NoAzimuth, backsightName, base.Name);
    return false;
  }
  NoteAzimuth (base.Name, backsightName, position_AzimuthSource::ToBacksight, azimuth);
  if (position_Trace* trace = position_TraceNow ();
      trace && trace->Azimuth == azimuth && trace->BacksightGrid.IsNull ())
    trace->BacksightGrid = target.GetGrid (transform);
  return true;
}

bool ResolveBacksightAzimuth (position_Job& job, const Str& baseName, const Str& backsightName,
                              double& azimuth, bool& azimuthKeyedIn) {
  azimuth = MATHS_Null;
  azimuthKeyedIn = false;
  position base;
  return !baseName.IsEmpty () && !backsightName.IsEmpty () && job.Find (baseName, 1, false, base) &&
         ResolveAzimuth (job, base, job.CurrentTransform (), backsightName, azimuth,
                         azimuthKeyedIn);
}

double OrientationCorrection (position_Job& job, const db_TotalBackBearing& backBearing) {
  double azimuth;
  bool isKeyedIn;
  if (!ResolveBacksightAzimuth (job, backBearing.Station, backBearing.BackSight, azimuth,
                                isKeyedIn))
    return MATHS_Null;
  double a = coord_NormalisePlusMinusPi (maths_Subtract (azimuth, backBearing.F1HorzCircle));
  const double b = coord_NormalisePlusMinusPi (
      maths_Subtract (azimuth, maths_Subtract (backBearing.F2HorzCircle, CONSTANT_Pi)));
  if (maths_IsNull (a)) return b;
  if (maths_IsNull (b)) return a;
  // Both on the same side of the seam at pi before they are averaged.
  if (a - b < -CONSTANT_Pi)
    a += CONSTANT_TwoPi;
  else if (a - b >= CONSTANT_Pi)
    a -= CONSTANT_TwoPi;
  return coord_NormalisePlusMinusPi ((a + b) / 2.0);
}

}  // namespace clxml
