// What every position does: loading from values, the change of transform, the attempt guard, the
// answers, ellipsoids and convergence. How one form follows from another is in positionforms.
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
