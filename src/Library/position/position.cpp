// What every position does: loading from values, the change of transform, the attempt guard, the
// forms of each original, ellipsoids and convergence.
#include "Library/position/position.h"

#include "Library/coords/cogoellipsoid.h"
#include "Library/position/positionjob.h"

namespace clxml {
namespace {

// The Status bits that each stored form keeps under a new transform: its own, and those it may
// have brought along when it was loaded.
struct Kept {
  coord_Type original;
  uint32_t bit;
  uint32_t mayStay;
};
constexpr Kept kept[] = {
    {COORD_WGS84Type, POSITION_DoneWGS84, 0},
    {COORD_LocalType, POSITION_DoneLocal, 0},
    {COORD_UncalibratedLocalType, POSITION_DoneUncalibratedLocal, 0},
    {COORD_GridType, POSITION_DoneGrid, 0},
    {COORD_GridDeltasType, POSITION_DoneGridDeltas, 0},
    {COORD_ECEFType, POSITION_DoneECEF, 0},
    {COORD_ECEFGroundType, POSITION_DoneECEFGround, 0},
    {COORD_ECEFDeltasType, POSITION_DoneECEFDeltas, 0},
    {COORD_PolarType, POSITION_DonePolar, POSITION_DoneLaserOffset},
    {COORD_GroundType, POSITION_DoneGround, 0},
    {COORD_UnturnedType, POSITION_DoneUnturned, POSITION_DoneCircle},
    {COORD_CircleType, POSITION_DoneCircle, 0},
    {COORD_MTAType, POSITION_DoneCircle, 0},
    {COORD_LaserOffsetType, POSITION_DoneLaserOffset, 0},
};

const Kept* KeptBy (coord_Type original) {
  for (const Kept& row : kept)
    if (row.original == original) return &row;
  return nullptr;
}

template <class Form>
void Drop (Form& form, bool stays) {
  if (!stays) form.SetNull ();
}

bool HasProjection (const Transform& transform) {
  return (transform.Components & COORDSYS_SetProjection) != 0;
}

// sqrt (1 - e^2 sin^2 (latitude))
template <class Geodetic>
double W (const coordsys_Ellipsoid& ellipsoid, const Geodetic& point) {
  if (point.NullHorizontal ()) return MATHS_Null;
  const double s = maths_Sin (point.Latitude);
  return maths_SquareRoot (
      maths_Subtract (1.0, maths_Multiply (ellipsoid.EccentricitySquared, maths_Square (s))));
}

// The ellipsoid raised to the ground at a height, or to the project's; as it is where neither is.
coordsys_Ellipsoid AtGround (const coordsys_Ellipsoid& ellipsoid, double height,
                             const Transform& transform) {
  if (maths_IsNull (height)) height = transform.GetProjectHeight ();
  if (maths_IsNull (height)) return ellipsoid;
  return {maths_Add (ellipsoid.EarthRadius, height), ellipsoid.Flattening};
}

}  // namespace

void position::Reset () { *this = position (); }

void position::LoadFromWGS84 (const coord_WGS84& coordinate, const Transform* transform) {
  Load (WGS84, coordinate, COORD_WGS84Type, POSITION_DoneWGS84, transform);
}
void position::LoadFromLocal (const coord_Local& coordinate, const Transform* transform) {
  Load (Local, coordinate, COORD_LocalType, POSITION_DoneLocal, transform);
}
void position::LoadFromUncalibratedLocal (const coord_Local& coordinate,
                                          const Transform* transform) {
  Load (UncalibratedLocal, coordinate, COORD_UncalibratedLocalType, POSITION_DoneUncalibratedLocal,
        transform);
}
void position::LoadFromGrid (const coord_CorrectedGrid& coordinate, const Transform* transform) {
  Load (Grid, coordinate, COORD_GridType, POSITION_DoneGrid, transform);
}
void position::LoadFromCogoGrid (const coord_CogoGrid& coordinate, const Transform& transform) {
  coord_CorrectedGrid grid;
  transform.CogoGridToGrid (coordinate, grid);
  LoadFromGrid (grid, &transform);
}
void position::LoadFromECEF (const coord_ECEF& coordinate, const Transform* transform) {
  Load (ECEF, coordinate, COORD_ECEFType, POSITION_DoneECEF, transform);
}
void position::LoadFromECEFGround (const coord_ECEFGround& coordinate, const Transform* transform) {
  Load (ECEFGround, coordinate, COORD_ECEFGroundType, POSITION_DoneECEFGround, transform);
}
void position::LoadFromGridDeltas (const coord_GridDeltas& deltas, const Transform* transform) {
  Load (GridDeltas, deltas, COORD_GridDeltasType, POSITION_DoneGridDeltas, transform);
}
void position::LoadFromECEFDeltas (const coord_ECEFDeltas& deltas, const Transform* transform) {
  Load (ECEFDeltas, deltas, COORD_ECEFDeltasType, POSITION_DoneECEFDeltas, transform);
}
void position::LoadFromPolar (const coord_Polar& polar, const Transform* transform) {
  Load (Polar, polar, COORD_PolarType, POSITION_DonePolar, transform);
}
void position::LoadFromGround (const coord_Ground& ground, const Transform* transform) {
  Load (Ground, ground, COORD_GroundType, POSITION_DoneGround, transform);
}
void position::LoadFromUnturned (const coord_Unturned& unturned, double backBearingCircle,
                                 const Transform* transform) {
  Load (Unturned, unturned, COORD_UnturnedType, POSITION_DoneUnturned, transform);
  BackBearingCircle = backBearingCircle;
}
void position::LoadFromMTA (const coord_MTA& mean, const Transform* transform) {
  Load (MTA, mean, COORD_MTAType, POSITION_DoneCircle, transform);
  Circle = coord_Circle (MTA.HorzCircle, MTA.VertCircle, MTA.EDMDistance, COORD_Face1);
}

void position::SetTransform (const Transform& transform) {
  if (TransformId == transform.GetId ()) return;
  if (Original == COORD_NullType) {
    Status &= POSITION_DoneAntenna;
    return;
  }
  const Kept* row = KeptBy (Original);
  if (!Assert (row != nullptr, "Original is a stored form")) return;
  const uint32_t valid = Status;
  TransformId = transform.GetId ();
  Attempted = 0;
  Status = (valid & (POSITION_DoneAntenna | row->mayStay)) | row->bit;

  Drop (Grid, Original == COORD_GridType);
  Drop (Local, Original == COORD_LocalType);
  Drop (UncalibratedLocal, Original == COORD_UncalibratedLocalType);
  Drop (WGS84, Original == COORD_WGS84Type);
  Drop (ECEFGround, Original == COORD_ECEFGroundType);
  Drop (ECEF, Original == COORD_ECEFType);
  Drop (Ground, Original == COORD_GroundType);
  Drop (GridDeltas, Original == COORD_GridDeltasType);
  Drop (ECEFDeltas, Original == COORD_ECEFDeltasType);
  Drop (Polar, Original == COORD_PolarType || Original == COORD_LaserOffsetType);
  Drop (LaserOffset, (Status & POSITION_DoneLaserOffset) != 0);
  Drop (Circle, (Status & POSITION_DoneCircle) != 0);
  Drop (Corrected, Original == COORD_CircleType);
  Drop (Unturned, Original == COORD_UnturnedType || Original == COORD_CircleType);
  Drop (MTA, Original == COORD_MTAType);
}

bool position::IsObservation () const {
  return Original == COORD_PolarType || Original == COORD_GroundType ||
         Original == COORD_UnturnedType || Original == COORD_CircleType ||
         Original == COORD_LaserOffsetType || Original == COORD_MTAType;
}

// True when the form is to be computed now. It is not when it is there already, and not when it
// was tried under this transform: its own derivation may have come back to it.
bool position::BeginAttempt (uint32_t bit) {
  Assert (Original != COORD_NullType, "this->Original != COORD_NullType");
  if (((Status | Attempted) & bit) != 0) return false;
  Attempted |= bit;
  return true;
}

bool position::Finish (uint32_t bit, bool isThere) {
  if (isThere) Status |= bit;
  return isThere;
}

bool position::Needs (const Transform& transform, bool (position::*compute) (const Transform&)) {
  SetTransform (transform);
  return Original != COORD_NullType && (this->*compute) (transform);
}

coord_WGS84 position::GetWGS84 (const Transform& transform) {
  if (!Needs (transform, &position::ComputeWGS84)) WGS84.SetNull ();
  return WGS84;
}
coord_Local position::GetLocal (const Transform& transform) {
  if (!Needs (transform, &position::ComputeLocal)) Local.SetNull ();
  return Local;
}
coord_Local position::GetUncalibratedLocal (const Transform& transform) {
  if (!Needs (transform, &position::ComputeUncalibratedLocal)) UncalibratedLocal.SetNull ();
  return UncalibratedLocal;
}
coord_CorrectedGrid position::GetGrid (const Transform& transform) {
  if (!Needs (transform, &position::ComputeGrid)) Grid.SetNull ();
  return Grid;
}
coord_CogoGrid position::GetCogoGrid (const Transform& transform) {
  coord_CogoGrid grid;
  transform.GridToCogoGrid (GetGrid (transform), grid);
  return grid;
}
coord_ECEFGround position::GetECEFGround (const Transform& transform) {
  if (!Needs (transform, &position::ComputeECEFGround)) ECEFGround.SetNull ();
  return ECEFGround;
}
coord_ECEF position::GetECEF (const Transform& transform) {
  if (!Needs (transform, &position::ComputeECEF)) ECEF.SetNull ();
  return ECEF;
}
coord_GridDeltas position::GetGridDeltas (const Transform& transform) {
  if (!Needs (transform, &position::ComputeGridDeltas)) GridDeltas.SetNull ();
  return GridDeltas;
}
coord_ECEFDeltas position::GetECEFDeltas (const Transform& transform) {
  if (!Needs (transform, &position::ComputeECEFDeltas)) ECEFDeltas.SetNull ();
  return ECEFDeltas;
}
coord_Ground position::GetGround (const Transform& transform) {
  if (!Needs (transform, &position::ComputeGround)) Ground.SetNull ();
  return Ground;
}
coord_Unturned position::GetUnturned (const Transform& transform) {
  if (!Needs (transform, &position::ComputeUnturned)) Unturned.SetNull ();
  return Unturned;
}
coord_Corrected position::GetCorrected (const Transform& transform) {
  if (!Needs (transform, &position::ComputeUnturned) || (Status & POSITION_DoneCorrected) == 0)
    Corrected.SetNull ();
  return Corrected;
}
coord_Circle position::GetCircle (const Transform& transform) {
  SetTransform (transform);
  return Original == COORD_CircleType ? Circle : coord_Circle ();
}
coord_LaserOffset position::GetLaserOffset (const Transform& transform) {
  SetTransform (transform);
  return Original == COORD_LaserOffsetType ? LaserOffset : coord_LaserOffset ();
}
coord_MTA position::GetMTA (const Transform& transform) {
  SetTransform (transform);
  return Original == COORD_MTAType ? MTA : coord_MTA ();
}

double position::GetAntennaHeight () {
  return Original != COORD_NullType && ComputeAntenna () ? Antenna : MATHS_Null;
}

void position::SetAntenna (double antenna) {
  if ((Status & POSITION_DoneAntenna) != 0)
    Assert (antenna == this->Antenna, "antenna == this->Antenna");
  Antenna = antenna;
  Status |= POSITION_DoneAntenna;
}

void position::SetCogoSystem (coordsys_CogoSettings system) {
  if (!Assert (system != 0, "!system.IsNull()")) return;
  if (CogoSystem != 0) Assert (CogoSystem == system, "this->CogoSystem == system");
  CogoSystem = system;
}

void position::DropHeights () {
  if (!HorizontalOnly) return;
  Grid.Elevation = MATHS_Null;
  Local.Height = MATHS_Null;
  UncalibratedLocal.Height = MATHS_Null;
  WGS84.Height = MATHS_Null;
}

position_Frame position::DistanceFrame (const Transform& transform) const {
  if (transform.Projection.ProjectionType == COORDSYS_ScaleOnly) return position_Frame::Grid;
  coordsys_CogoSettings system = CogoSystem;
  if (IsObservation ()) {
    Assert (system != 0, "this->CogoSystem != 0u");
  } else {
    if (!Assert (SearchData != nullptr, "this->SearchData")) return position_Frame::None;
    system = SearchData->CogoSystem ();
  }
  const bool isGrid = (system & COORDSYS_CogoDistanceGrid) != 0;
  const bool isLocal = (system & COORDSYS_CogoDistanceLocal) != 0;
  const bool isWGS84 = (system & COORDSYS_CogoDistanceWGS84) != 0;
  Assert (isGrid + isLocal + isWGS84 == 1,
          "(cogoSystem & COORDSYS_CogoDistanceGrid) ^ (cogoSystem & COORDSYS_CogoDistanceLocal) ^ "
          "(cogoSystem & COORDSYS_CogoDistanceWGS84)");
  if (isGrid) return position_Frame::Grid;
  if (isLocal) return position_Frame::Local;
  return isWGS84 ? position_Frame::WGS84 : position_Frame::None;
}

bool position::ComputeGrid (const Transform& transform) {
  if (!BeginAttempt (POSITION_DoneGrid)) return (Status & POSITION_DoneGrid) != 0;
  if (Object && Object->IsLinked ()) {
    Grid = Object->LinkedGrid ();
    return Finish (POSITION_DoneGrid, !Grid.IsNull ());
  }
  if (LoadCachedGrid ()) return Finish (POSITION_DoneGrid, !Grid.IsNull ());

  coord_CogoGrid cogo;
  if (Original == COORD_LocalType) {
    transform.LocalToCogoGrid (Local, cogo);
    transform.CogoGridToGrid (cogo, Grid);
  } else if (Original == COORD_GridDeltasType) {
    const std::unique_ptr<position> base = Base (1);
    if (!base) return false;
    Grid = base->GetGrid (SearchData->CurrentTransform ()) + GridDeltas;
  } else if (IsObservation ()) {
    if (NameOfBase.IsEmpty () && !HasStationSetup) return false;
    const position_Frame frame = DistanceFrame (transform);
    if (frame == position_Frame::Grid) {
      position setup, target;
      std::unique_ptr<position> named;
      if (HasStationSetup)
        setup.LoadFromGrid (StationSetup.Grid, &transform);
      else if (!(named = Base (1)))
        return false;
      position& base = named ? *named : setup;
      const Transform& baseTransform = named ? SearchData->CurrentTransform () : transform;
      if (base.GetGrid (baseTransform).IsNull () ||
          !ComputePolar (transform, &base, baseTransform) ||
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
  if (!HasStationSetup && SearchData) SearchData->AdjustToNeighbours (Grid);
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
        const std::unique_ptr<position> base = Base (1);
        if (!base) return false;
        const Transform& current = SearchData->CurrentTransform ();
        position target;
        if (base->GetLocal (current).IsNull () || !ComputePolar (transform, base.get (), current) ||
            !ForwardFromBase (*base, current, target, COORD_LocalType))
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
        const std::unique_ptr<position> base = Base (1);
        if (!base) return false;
        const Transform& current = SearchData->CurrentTransform ();
        position target;
        if (base->GetWGS84 (current).IsNull () || !ComputePolar (transform, base.get (), current) ||
            !ForwardFromBase (*base, transform, target, COORD_WGS84Type))
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
    const std::unique_ptr<position> base = Base (0);
    if (!base) return false;
    coord_WGS84 reference = base->GetWGS84 (SearchData->CurrentTransform ());
    if (maths_IsNull (reference.Height) || maths_IsNull (ReferenceAntenna)) return false;
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
  const std::unique_ptr<position> base = Base (1);
  if (!base || !ComputeECEF (transform)) return false;
  ECEFDeltas = ECEF - base->GetECEF (SearchData->CurrentTransform ());
  return Finish (bit, !ECEFDeltas.IsNull ());
}

bool position::ComputeGridDeltas (const Transform& transform) {
  constexpr uint32_t bit = POSITION_DoneGridDeltas;
  if (!BeginAttempt (bit)) return (Status & bit) != 0;
  const std::unique_ptr<position> base = Base (1);
  if (!base || !ComputeGrid (transform)) return false;
  GridDeltas = Grid - base->GetGrid (SearchData->CurrentTransform ());
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
      return LoadCachedGrid () || ComputeUncalibratedLocal (transform);
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
  // Loaded anew, so to speak: what was derived without the height does not stand.
  TransformId = TRANSFORM_NoId;
  SetTransform (transform);
  *stored = height;
}

double position::GetConvergence (const Transform& transform) {
  SetTransform (transform);
  if ((Status & POSITION_DoneConvergence) != 0) return Convergence;
  Status |= POSITION_DoneConvergence;
  Convergence = 0.0;
  const coord_CogoGrid here = GetCogoGrid (transform);
  if (here.NullHorizontal ()) return Convergence;

  constexpr double Step = 100.0;
  position north;
  north.LoadFromCogoGrid ({maths_Add (here.North, Step), here.East, here.Elevation}, transform);
  north.CogoSystem = CogoSystem;
  north.SearchData = SearchData;
  const coord_Local from = GetLocal (transform), to = north.GetLocal (transform);
  double mean, azimuth, distance;
  cogo_EllipsoidInverse (transform.Ellipsoid, coord_NormalisePlusMinusPiOverTwo (from.Latitude),
                         coord_NormalisePlusMinusPi (from.Longitude), GetLocalW (transform),
                         coord_NormalisePlusMinusPiOverTwo (to.Latitude),
                         coord_NormalisePlusMinusPi (to.Longitude), north.GetLocalW (transform),
                         mean, azimuth, distance);
  Convergence = coord_NormalisePlusMinusPi (
      -((maths_IsNull (azimuth) ? 0.0 : azimuth) + transform.NorthAzimuth));
  return Convergence;
}

coordsys_Ellipsoid position::GetLocalEllipsoid (coordsys_CogoSettings system,
                                                const Transform& transform) {
  SetTransform (transform);
  const bool isGround = (system & COORDSYS_CogoGroundDistances) != 0;
  if ((Status & POSITION_DoneLocalEllipsoid) != 0 && _IsLocalGround == isGround)
    return LocalEllipsoid;
  LocalEllipsoid = transform.Ellipsoid;
  if (isGround && !maths_IsNull (LocalEllipsoid.EarthRadius) &&
      !maths_IsNull (LocalEllipsoid.Flattening))
    LocalEllipsoid = AtGround (LocalEllipsoid, GetLocal (transform).Height, transform);
  _IsLocalGround = isGround;
  Status |= POSITION_DoneLocalEllipsoid;
  return LocalEllipsoid;
}

coordsys_Ellipsoid position::GetWGS84Ellipsoid (coordsys_CogoSettings system,
                                                const Transform& transform) {
  SetTransform (transform);
  const bool isGround = (system & COORDSYS_CogoGroundDistances) != 0;
  if ((Status & POSITION_DoneWGS84Ellipsoid) != 0 && _IsWGS84Ground == isGround)
    return WGS84Ellipsoid;
  WGS84Ellipsoid = coordsys_WGS84Ellipsoid ();
  if (isGround) WGS84Ellipsoid = AtGround (WGS84Ellipsoid, GetWGS84 (transform).Height, transform);
  _IsWGS84Ground = isGround;
  Status |= POSITION_DoneWGS84Ellipsoid;
  return WGS84Ellipsoid;
}

double position::GetLocalW (const Transform& transform) {
  SetTransform (transform);
  if ((Status & POSITION_DoneLocalW) == 0) {
    LocalW = W (transform.Ellipsoid, GetLocal (transform));
    Status |= POSITION_DoneLocalW;
  }
  return LocalW;
}

double position::GetWGS84W (const Transform& transform) {
  SetTransform (transform);
  if ((Status & POSITION_DoneWGS84W) == 0) {
    WGS84W = W (coordsys_WGS84Ellipsoid (), GetWGS84 (transform));
    Status |= POSITION_DoneWGS84W;
  }
  return WGS84W;
}

}  // namespace clxml
