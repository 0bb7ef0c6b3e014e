// How each form of a position follows from the stored one.
// One operation a form, each tried at most once under a transform; what a base or the geometry of a
// job gives comes through positionjob.
#include "Library/position/neighbourhood.h"
#include "Library/position/position.h"
#include "Library/position/positionjob.h"
#include "Library/position/trace.h"

namespace clxml {
namespace {

bool HasProjection (const Transform& transform) {
  return (transform.Components & COORDSYS_SetProjection) != 0;
}

}  // namespace

bool position::ComputeGrid (const Transform& transform) {
  if (!BeginAttempt (POSITION_DoneGrid)) return (Status & POSITION_DoneGrid) != 0;
  if (SearchData && SearchData->LinkedGrid (Object, Grid))
    return Finish (POSITION_DoneGrid, !Grid.IsNull ());
  if (LoadCachedGrid ()) return Finish (POSITION_DoneGrid, !Grid.IsNull ());

  coord_CogoGrid cogo;
  if (Original == COORD_LocalType) {
    transform.LocalToCogoGrid (Local, cogo);
    transform.CogoGridToGrid (cogo, Grid);
  } else if (Original == COORD_GridDeltasType) {
    position base;
    if (!Base (1, base)) return false;
    Grid = base.GetGrid (SearchData->CurrentTransform ()) + GridDeltas;
  } else if (IsObservation ()) {
    if (NameOfBase.IsEmpty () && !HasStationSetup) {
      position_Fail (position_Reason::NoBaseName, NameOfBase, Name);
      return false;
    }
    const position_Frame frame = DistanceFrame (transform);
    position_Trace* const trace = position_TraceNow ();
    if (trace && trace->Subject == this) trace->Frame = frame;
    if (frame == position_Frame::None)
      position_Fail (position_Reason::NoDistanceFrame, NameOfBase, Name);
    if (frame == position_Frame::Grid) {
      position base, target;
      if (HasStationSetup)
        base.LoadFromGrid (StationSetup.Grid, &transform);
      else if (!Base (1, base))
        return false;
      const Transform& baseTransform =
          HasStationSetup ? transform : SearchData->CurrentTransform ();
      if (base.GetGrid (baseTransform).IsNull ()) {
        position_Fail (position_Reason::BaseWithoutPosition, NameOfBase, Name);
        return false;
      }
      if (trace && trace->Subject == this) trace->BaseGrid = base.Grid;
      if (!ComputePolar (transform, &base, baseTransform) ||
          !ForwardFromBase (base, transform, target, COORD_GridType))
        return false;
      Grid = target.Grid;
    } else if (frame == position_Frame::Local) {
      if (!ComputeUncalibratedLocal (transform)) return false;
      transform.LocalToCogoGrid (GetLocal (transform), cogo);
      transform.CogoGridToGrid (cogo, Grid);
    } else if (frame == position_Frame::WGS84) {
      if (!ComputeUncalibratedLocal (transform)) return false;
      transform.UncalibratedLocalToCogoGrid (UncalibratedLocal, cogo);
      transform.CogoGridToGrid (cogo, Grid);
    }
  } else {
    if (!ComputeUncalibratedLocal (transform)) return false;
    transform.UncalibratedLocalToCogoGrid (UncalibratedLocal, cogo);
    transform.CogoGridToGrid (cogo, Grid);
  }
  if (Grid.IsNull ()) return false;
  if (position_Trace* trace = position_TraceNow (); trace && trace->Subject == this) {
    trace->Target = Grid;
    trace->Polar = Polar;
  }
  NeighbourhoodAdjustment (*this, transform);
  Finish (POSITION_DoneGrid, true);
  StoreCachedGrid ();
  return true;
}

bool position::ComputeUncalibratedLocal (const Transform& transform) {
  constexpr uint32_t bit = POSITION_DoneUncalibratedLocal;
  if (!BeginAttempt (bit)) return (Status & bit) != 0;
  const auto fromGrid = [&] {
    if (!ComputeGrid (transform)) return;
    coord_CogoGrid cogo;
    transform.GridToCogoGrid (Grid, cogo);
    transform.CogoGridToUncalibratedLocal (cogo, UncalibratedLocal);
  };
  const auto fromWGS84 = [&] {
    if (ComputeWGS84 (transform)) transform.WGS84ToLocal (WGS84, UncalibratedLocal);
  };
  switch (Original) {
    case COORD_LocalType:
      if (HasProjection (transform)) {
        fromGrid ();
      } else {
        Assert ((COORDSYS_SetHorzAdjustment & transform.Components) == 0,
                "!(COORDSYS_SetHorzAdjustment & currentTransform->Components)");
        UncalibratedLocal = Local;
      }
      break;
    case COORD_GridType:
    case COORD_GridDeltasType:
      fromGrid ();
      break;
    case COORD_WGS84Type:
    case COORD_ECEFType:
    case COORD_ECEFGroundType:
    case COORD_ECEFDeltasType:
      fromWGS84 ();
      break;
    default: {
      if (!IsObservation () || NameOfBase.IsEmpty ()) return false;
      const position_Frame frame = DistanceFrame (transform);
      if (frame == position_Frame::Grid) {
        fromGrid ();
      } else if (frame == position_Frame::Local) {
        position base;
        if (!Base (1, base)) return false;
        const Transform& current = SearchData->CurrentTransform ();
        position target;
        if (base.GetLocal (current).IsNull ()) {
          position_Fail (position_Reason::BaseWithoutPosition, NameOfBase, Name);
          return false;
        }
        if (position_Trace* trace = position_TraceNow (); trace && trace->Subject == this)
          trace->BaseGrid = base.GetGrid (current);
        if (!ComputePolar (transform, &base, current) ||
            !ForwardFromBase (base, current, target, COORD_LocalType))
          return false;
        Local = target.Local;
        Finish (POSITION_DoneLocal, !Local.IsNull ());
        UncalibratedLocal = target.GetUncalibratedLocal (current);
      } else if (frame == position_Frame::WGS84) {
        fromWGS84 ();
      }
    }
  }
  return Finish (bit, !UncalibratedLocal.IsNull ());
}

bool position::ComputeLocal (const Transform& transform) {
  constexpr uint32_t bit = POSITION_DoneLocal;
  if (!BeginAttempt (bit)) return (Status & bit) != 0;
  if (HasProjection (transform)) {
    if (!ComputeGrid (transform)) return false;
    if ((Status & bit) != 0) return true;
    coord_CogoGrid cogo;
    transform.GridToCogoGrid (Grid, cogo);
    transform.CogoGridToLocal (cogo, Local);
  } else {
    if (!ComputeUncalibratedLocal (transform)) return false;
    Local = UncalibratedLocal;
  }
  return Finish (bit, !Local.IsNull ());
}

bool position::ComputeWGS84 (const Transform& transform) {
  constexpr uint32_t bit = POSITION_DoneWGS84;
  if (!BeginAttempt (bit)) return (Status & bit) != 0;
  const auto fromAntenna = [&] {
    WGS84 = ECEF.ToWGS84 (coordsys_WGS84Ellipsoid ());
    WGS84.Height = ComputeAntenna () ? maths_Subtract (WGS84.Height, Antenna) : MATHS_Null;
  };
  switch (Original) {
    case COORD_ECEFType:
      fromAntenna ();
      break;
    case COORD_ECEFDeltasType:
      if (!ComputeECEF (transform)) return false;
      fromAntenna ();
      break;
    case COORD_ECEFGroundType:
      WGS84 = coord_ECEF (ECEFGround).ToWGS84 (coordsys_WGS84Ellipsoid ());
      break;
    case COORD_UncalibratedLocalType:
      transform.LocalToWGS84 (UncalibratedLocal, WGS84);
      break;
    case COORD_LocalType:
    case COORD_GridType:
    case COORD_GridDeltasType:
      if (!ComputeUncalibratedLocal (transform)) return false;
      transform.LocalToWGS84 (UncalibratedLocal, WGS84);
      break;
    default: {
      if (!IsObservation () || NameOfBase.IsEmpty ()) return false;
      const position_Frame frame = DistanceFrame (transform);
      if (frame == position_Frame::Grid || frame == position_Frame::Local) {
        const coord_Local local = GetUncalibratedLocal (transform);
        if (local.IsNull ()) return false;
        transform.LocalToWGS84 (local, WGS84);
      } else if (frame == position_Frame::WGS84) {
        position base;
        if (!Base (1, base)) return false;
        const Transform& current = SearchData->CurrentTransform ();
        position target;
        if (base.GetWGS84 (current).IsNull ()) {
          position_Fail (position_Reason::BaseWithoutPosition, NameOfBase, Name);
          return false;
        }
        if (position_Trace* trace = position_TraceNow (); trace && trace->Subject == this)
          trace->BaseGrid = base.GetGrid (current);
        if (!ComputePolar (transform, &base, current) ||
            !ForwardFromBase (base, transform, target, COORD_WGS84Type))
          return false;
        WGS84 = target.WGS84;
      }
    }
  }
  return Finish (bit, !WGS84.IsNull ());
}

// The phase centre is known where the antenna is: a point without one has none.
bool position::ComputeECEF (const Transform& transform) {
  constexpr uint32_t bit = POSITION_DoneECEF;
  if (!BeginAttempt (bit)) return (Status & bit) != 0;
  ComputeAntenna ();
  if (Original == COORD_ECEFDeltasType) {
    position base;
    if (!Base (0, base)) return false;
    coord_WGS84 reference = base.GetWGS84 (SearchData->CurrentTransform ());
    if (maths_IsNull (reference.Height) || maths_IsNull (ReferenceAntenna)) {
      position_Fail (position_Reason::NoReferenceAntenna, NameOfBase, Name);
      return false;
    }
    reference.Height = maths_Add (reference.Height, ReferenceAntenna);
    ECEF = ECEFDeltas + reference.ToECEF (coordsys_WGS84Ellipsoid ());
  } else {
    if (!ComputeWGS84 (transform) || maths_IsNull (WGS84.Height)) return false;
    coord_WGS84 antenna = WGS84;
    antenna.Height = maths_Add (antenna.Height, Antenna);
    ECEF = antenna.ToECEF (coordsys_WGS84Ellipsoid ());
  }
  return Finish (bit, !ECEF.IsNull ());
}

bool position::ComputeECEFGround (const Transform& transform) {
  constexpr uint32_t bit = POSITION_DoneECEFGround;
  if (!BeginAttempt (bit)) return (Status & bit) != 0;
  if (!ComputeWGS84 (transform) || WGS84.AnyNull ()) return false;
  ECEFGround = coord_ECEFGround (WGS84.ToECEF (coordsys_WGS84Ellipsoid ()));
  return Finish (bit, !ECEFGround.IsNull ());
}

bool position::ComputeECEFDeltas (const Transform& transform) {
  constexpr uint32_t bit = POSITION_DoneECEFDeltas;
  if (!BeginAttempt (bit)) return (Status & bit) != 0;
  position base;
  if (!Base (1, base) || !ComputeECEF (transform)) return false;
  ECEFDeltas = ECEF - base.GetECEF (SearchData->CurrentTransform ());
  return Finish (bit, !ECEFDeltas.IsNull ());
}

bool position::ComputeGridDeltas (const Transform& transform) {
  constexpr uint32_t bit = POSITION_DoneGridDeltas;
  if (!BeginAttempt (bit)) return (Status & bit) != 0;
  position base;
  if (!Base (1, base) || !ComputeGrid (transform)) return false;
  GridDeltas = Grid - base.GetGrid (SearchData->CurrentTransform ());
  return Finish (bit, !GridDeltas.IsNull ());
}

bool position::ComputeAbsolute (const Transform& transform) {
  SetTransform (transform);
  if (coord_IsAbsolute (Original)) {
    if (UseProjectHeight) ApplyProjectHeight (transform);
    return true;
  }
  switch (Original) {
    case COORD_GridDeltasType:
      return LoadCachedGrid () || ComputeGrid (transform);
    case COORD_ECEFDeltasType:
      return ComputeECEF (transform);
    default:
      break;
  }
  if (!IsObservation () || NameOfBase.IsEmpty ()) return false;
  switch (DistanceFrame (transform)) {
    case position_Frame::Grid:
      return LoadCachedGrid () || ComputeGrid (transform);
    case position_Frame::Local:
      if (LoadCachedGrid ()) return true;
      // The grid comes first, so that the result does not depend on whether it was cached.
      ComputeGrid (transform);
      return ComputeUncalibratedLocal (transform);
    case position_Frame::WGS84:
      return ComputeWGS84 (transform);
    case position_Frame::None:
      break;
  }
  return false;
}

void position::ApplyProjectHeight (const Transform& transform) {
  const double height = transform.Projection.ProjectionType == COORDSYS_ScaleOnly
                            ? 0.0
                            : transform.GetProjectHeight ();
  if (maths_IsNull (height)) return;
  double* stored = nullptr;
  switch (Original) {
    case COORD_WGS84Type:
      stored = &WGS84.Height;
      break;
    case COORD_LocalType:
      stored = &Local.Height;
      break;
    case COORD_UncalibratedLocalType:
      stored = &UncalibratedLocal.Height;
      break;
    case COORD_GridType:
      stored = &Grid.Elevation;
      break;
    default:
      return;
  }
  if (!maths_IsNull (*stored)) return;
  // As if loaded again: forms that were derived without the height are dropped.
  TransformId = TRANSFORM_NoId;
  SetTransform (transform);
  *stored = height;
}

}  // namespace clxml
