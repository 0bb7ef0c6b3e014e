// The point operations of a block that need more than one of its components.
// Datum with geoid, projection with ground scale, and the scales, the convergence and the ground
// deltas that are measured where a projection has no formula. For the transform. Leans on csib and
// datum.
#include <cmath>
#include <numbers>

#include "geodesy/csib.h"
#include "geodesy/datum.h"

namespace clxml {

namespace {

constexpr double pi = std::numbers::pi;

// Radius of curvature in the prime vertical.
double PrimeVertical (const csib_Block& block, double phi) noexcept {
  const double sinPhi = std::sin (phi);
  return block.EarthRadius / std::sqrt (1.0 - block.EccentricitySquared * sinPhi * sinPhi);
}

csib_Status DatumInverse (csib_Block& block, const csib_Geodetic& point, csib_Geodetic& out) {
  if (block.Datum == nullptr) return CSIB_WrongDatumCode;
  return block.Datum->inverse (block, point, out);
}

// One look at how far a local height is wrong: with h on the point, its WGS84 position, the
// separation there, and what H + N exceeds the WGS84 height by.
csib_Status HeightError (csib_Block& block, csib_Geodetic& local, double h, csib_Geodetic& wgs84,
                         double& separation, double& error) {
  local.EllipsoidalHeight = h;
  local.HasEllipsoidal = true;
  csib_Status status = DatumInverse (block, local, wgs84);
  if (status == CSIB_Ok) status = csib_Separation (block, wgs84, separation);
  if (status != CSIB_Ok) return status;
  error = local.OrthometricHeight + separation - wgs84.EllipsoidalHeight;
  return std::isfinite (error) ? CSIB_Ok : CSIB_HeightDidNotConverge;
}

// The local height from the orthometric one by Newton's method on the rates of a seven parameter
// datum: a first step to the separation where the point would be at its orthometric height, and one
// to that where the first step leads. False, with `local` as it was, where there are no rates or
// the separation changes too much between the two for the second step to be the last.
bool HeightByRates (csib_Block& block, csib_Geodetic& local, csib_Geodetic& wgs84) {
  csib_Geodetic trial = local;
  csib_Geodetic rates;
  trial.EllipsoidalHeight = local.OrthometricHeight;
  trial.HasEllipsoidal = true;
  if (!csib_HeightRates (block, trial, wgs84, rates)) return false;
  const double rise = rates.EllipsoidalHeight;
  double first = 0.0;
  double second = 0.0;
  if (!(rise > 0.5) || csib_Separation (block, wgs84, first) != CSIB_Ok) return false;
  const auto move = [&] (double up) {
    trial.EllipsoidalHeight += up;
    wgs84.Latitude += rates.Latitude * up;
    wgs84.Longitude += rates.Longitude * up;
    wgs84.EllipsoidalHeight += rise * up;
  };
  const double error = local.OrthometricHeight + first - wgs84.EllipsoidalHeight;
  move (error / rise);
  if (csib_Separation (block, wgs84, second) != CSIB_Ok) return false;
  const double change = second - first;
  // The next change is smaller than this one in the ratio of the two.
  if (!(std::fabs (error) < 1000.0) || !(change * change <= 1e-10 * std::fabs (error)))
    return false;
  move (change / rise);
  wgs84.EllipsoidalHeight = local.OrthometricHeight + second;
  local = trial;
  return true;
}

}  // namespace

csib_Status csib_WGS84ToLocal (csib_Block& block, const csib_Geodetic& point, csib_Geodetic& out) {
  if (block.Datum == nullptr) return CSIB_WrongDatumCode;
  csib_Geodetic source = point;
  if (!source.HasEllipsoidal && source.HasOrthometric && block.Geoid != nullptr) {
    const csib_Status status = csib_HeightFromOrthometric (block, source);
    if (status != CSIB_Ok) return status;
  }
  csib_Geodetic result;
  const csib_Status status = block.Datum->forward (block, source, result);
  if (status != CSIB_Ok) return status;

  if (!result.HasOrthometric && block.Geoid == nullptr) {
    result.OrthometricHeight = result.EllipsoidalHeight;
    result.HasOrthometric = result.HasEllipsoidal;
  } else if (!result.HasOrthometric && source.HasEllipsoidal &&
             csib_OrthometricFromHeight (block, source) == CSIB_Ok) {
    // Outside the geoid a point loses this height alone.
    result.OrthometricHeight = source.OrthometricHeight;
    result.HasOrthometric = true;
  }
  out = result;
  return CSIB_Ok;
}

csib_Status csib_LocalToWGS84 (csib_Block& block, const csib_Geodetic& point, csib_Geodetic& out) {
  csib_Geodetic source = point;
  csib_Geodetic result;
  if (!source.HasEllipsoidal && !source.HasOrthometric) return CSIB_NoHeight;
  if (source.HasEllipsoidal || block.Geoid == nullptr) {
    // Without a geoid the orthometric height is the ellipsoidal one.
    if (!source.HasEllipsoidal) source.EllipsoidalHeight = source.OrthometricHeight;
    source.HasEllipsoidal = true;
    const csib_Status status = DatumInverse (block, source, result);
    if (status != CSIB_Ok) return status;
    result.HasOrthometric = false;
    out = result;
    return CSIB_Ok;
  }

  double h = source.OrthometricHeight;
  double separation = 0.0;
  for (int round = 0; round < 10; round++) {
    double d = 0.0;
    const csib_Status status = HeightError (block, source, h, result, separation, d);
    if (status != CSIB_Ok) return status;
    h += d;
    if (std::fabs (d) < 1e-15) break;
  }
  result.EllipsoidalHeight = source.OrthometricHeight + separation;
  result.HasEllipsoidal = true;
  out = result;
  return CSIB_Ok;
}

csib_Status csib_LocalHeightFromOrthometric (csib_Block& block, csib_Geodetic& local,
                                             csib_Geodetic* wgs84Out) {
  if (wgs84Out != nullptr) *wgs84Out = {};
  if (!local.HasOrthometric) return CSIB_Ok;
  if (block.Geoid == nullptr) {
    local.EllipsoidalHeight = local.OrthometricHeight;
    local.HasEllipsoidal = true;
    return CSIB_Ok;
  }
  csib_Geodetic found84;
  if (HeightByRates (block, local, found84)) {
    if (wgs84Out != nullptr) *wgs84Out = found84;
    return CSIB_Ok;
  }
  double h = local.OrthometricHeight;
  csib_Status status = CSIB_HeightDidNotConverge;
  for (int round = 0; round < 10; round++) {
    csib_Geodetic wgs84;
    double separation = 0.0;
    double d = 0.0;
    const csib_Status found = HeightError (block, local, h, wgs84, separation, d);
    if (found != CSIB_Ok) {
      status = found;
      break;
    }
    h += d;
    if (std::fabs (d) < 1e-6) {
      status = CSIB_Ok;
      break;
    }
  }
  local.EllipsoidalHeight = h;
  local.HasEllipsoidal = status == CSIB_Ok;
  return status;
}

void csib_ElevationOfLocal (csib_Block& block, const csib_Geodetic& local, csib_Grid& grid,
                            const csib_Geodetic* known) {
  grid.OrthometricHeight = local.EllipsoidalHeight;
  grid.HasOrthometric = local.HasEllipsoidal;
  if (block.Geoid == nullptr) return;

  csib_Geodetic wgs84;
  if (known != nullptr) wgs84 = *known;
  if (block.DatumCode == CSIB_NoDatum ||
      (known == nullptr && csib_LocalToWGS84 (block, local, wgs84) != CSIB_Ok)) {
    grid.HasOrthometric = false;
  } else if (csib_OrthometricFromHeight (block, wgs84) == CSIB_Ok) {
    grid.OrthometricHeight = wgs84.OrthometricHeight;
    grid.HasOrthometric = true;
  }
}

csib_Status csib_Project (csib_Block& block, const csib_Geodetic& point, csib_Grid& out) {
  if (block.Projection == nullptr || block.Projection->forward == nullptr)
    return CSIB_NoProjectionOperation;
  csib_Grid result;
  const csib_Status status = block.Projection->forward (block, point, result);
  if (status != CSIB_Ok) return status;
  result.North *= block.GroundScale;
  result.East *= block.GroundScale;
  if (!std::isfinite (result.North) || !std::isfinite (result.East))
    return CSIB_NoProjectionOperation;
  out = result;
  return CSIB_Ok;
}

csib_Status csib_Unproject (csib_Block& block, const csib_Grid& point, csib_Geodetic& out) {
  if (block.Projection == nullptr || block.Projection->inverse == nullptr || !point.HasNorth ||
      !point.HasEast)
    return CSIB_NoProjectionOperation;
  csib_Grid source = point;
  source.North /= block.GroundScale;
  source.East /= block.GroundScale;
  csib_Geodetic result;
  const csib_Status status = block.Projection->inverse (block, source, result);
  if (status != CSIB_Ok) return status;
  if (result.Longitude > pi) result.Longitude -= 2.0 * pi;
  if (result.Longitude < -pi) result.Longitude += 2.0 * pi;
  if (!(std::fabs (result.Latitude) < pi / 2.0) || !std::isfinite (result.Longitude))
    return CSIB_LatitudeOutOfRange;
  out = result;
  return CSIB_Ok;
}

csib_Status csib_Separation (csib_Block& block, const csib_Geodetic& wgs84, double& out) {
  if (block.Geoid == nullptr || block.Geoid->separation == nullptr)
    return CSIB_NoSeparationOperation;
  return block.Geoid->separation (block, wgs84, out);
}

csib_Status csib_HeightFromOrthometric (csib_Block& block, csib_Geodetic& wgs84) {
  double separation = 0.0;
  const csib_Status status = csib_Separation (block, wgs84, separation);
  if (status != CSIB_Ok) return status;
  if (!wgs84.HasOrthometric) return CSIB_NoHeight;
  wgs84.EllipsoidalHeight = wgs84.OrthometricHeight + separation;
  wgs84.HasEllipsoidal = true;
  return CSIB_Ok;
}

csib_Status csib_OrthometricFromHeight (csib_Block& block, csib_Geodetic& wgs84) {
  double separation = 0.0;
  const csib_Status status = csib_Separation (block, wgs84, separation);
  if (status != CSIB_Ok) return status;
  if (!wgs84.HasEllipsoidal) return CSIB_NoHeight;
  wgs84.OrthometricHeight = wgs84.EllipsoidalHeight - separation;
  wgs84.HasOrthometric = true;
  return CSIB_Ok;
}

csib_Status csib_PointScale (csib_Block& block, const csib_Geodetic& point, double& out) {
  if (block.Projection == nullptr || block.Projection->scale == nullptr)
    return CSIB_NoScaleOperation;
  double k = 0.0;
  if (block.Projection->scale (block, point, k) == CSIB_Ok &&
      std::isfinite (k * block.GroundScale)) {
    out = k * block.GroundScale;
    return CSIB_Ok;
  }

  // 5 m of grid to the north over the length of that line on the ellipsoid. Its chord is shorter
  // by a part in 10^14, and keeps its length next to a pole.
  constexpr double line = 5.0;
  csib_Grid grid;
  csib_Geodetic from;
  csib_Geodetic to;
  csib_Status status = csib_Project (block, point, grid);
  if (status == CSIB_Ok) status = csib_Unproject (block, grid, from);
  grid.North += line;
  if (status == CSIB_Ok) status = csib_Unproject (block, grid, to);
  if (status != CSIB_Ok) return status;
  csib_Cartesian ends[2];
  csib_Geodetic* const points[2] = {&from, &to};
  for (int i = 0; i < 2; i++) {
    points[i]->EllipsoidalHeight = 0.0;
    points[i]->HasEllipsoidal = true;
    csib_GeodeticToCartesian (block.EarthRadius, block.MinorAxis, *points[i], ends[i]);
  }
  const double length =
      std::hypot (ends[1].X - ends[0].X, ends[1].Y - ends[0].Y, ends[1].Z - ends[0].Z);
  if (!(length > 0.0) || !std::isfinite (line / length)) return CSIB_NoScaleOperation;
  out = line / length;
  return CSIB_Ok;
}

csib_Status csib_CombinedScale (csib_Block& block, const csib_Geodetic& point, double& out) {
  if (!point.HasEllipsoidal && !point.HasOrthometric) return CSIB_NoHeightForScale;
  double k = 0.0;
  const csib_Status status = csib_PointScale (block, point, k);
  if (status != CSIB_Ok) return status;
  const double R =
      block.FixedRadiusFlag != 0 ? block.FixedRadius : PrimeVertical (block, point.Latitude);
  const double h = point.HasEllipsoidal ? point.EllipsoidalHeight : point.OrthometricHeight;
  const double combined = k * R / (R + h);
  if (!std::isfinite (combined)) return CSIB_NoHeightForScale;
  out = combined;
  return CSIB_Ok;
}

csib_Status csib_Convergence (csib_Block& block, const csib_Geodetic& point, double& out) {
  if (block.Projection == nullptr || block.Projection->convergence == nullptr)
    return CSIB_NoConvergenceOperation;
  double angle = 0.0;
  csib_Status status = block.Projection->convergence (block, point, angle);
  if (status == CSIB_NoConvergence) return status;
  if (status == CSIB_Ok && std::isfinite (angle)) {
    out = angle;
    return CSIB_Ok;
  }

  // The azimuth of a line of 100 m to the north of the grid, by Cunningham's formula for the normal
  // section (Bomford, Geodesy, 4th edition 1980, chapter 2).
  csib_Grid grid;
  csib_Geodetic end;
  status = csib_Project (block, point, grid);
  grid.North += 100.0;
  if (status == CSIB_Ok) status = csib_Unproject (block, grid, end);
  if (status != CSIB_Ok) return status;
  const double e2 = block.EccentricitySquared;
  const double phi1 = point.Latitude;
  const double phi2 = end.Latitude;
  const double deltaLambda = end.Longitude - point.Longitude;
  const double N1 = PrimeVertical (block, phi1);
  const double N2 = PrimeVertical (block, phi2);
  const double q =
      (1.0 - e2) * std::tan (phi2) + e2 * N1 * std::sin (phi1) / (N2 * std::cos (phi2));
  angle = std::atan2 (std::sin (deltaLambda),
                      std::cos (phi1) * q - std::sin (phi1) * std::cos (deltaLambda));
  if (!std::isfinite (angle)) return CSIB_NoConvergence;
  out = angle;
  return CSIB_Ok;
}

void csib_GroundDeltas (csib_Block& block, double& north, double& east) {
  north = 0.0;
  east = 0.0;
  const double k = block.GroundScale;
  if (!block.HasProjectLocation || k == 1.0) return;

  // Asked for with every point, so projected once.
  auto& known = block.GroundDeltas;
  if (!known.IsKnown || known.GroundScale != k || known.ProjectLatitude != block.ProjectLatitude ||
      known.ProjectLongitude != block.ProjectLongitude) {
    csib_Geodetic location;
    location.Latitude = block.ProjectLatitude;
    location.Longitude = block.ProjectLongitude;
    location.HasEllipsoidal = true;
    csib_Grid grid;
    const bool isProjected = csib_Project (block, location, grid) == CSIB_Ok;
    known = {true,
             k,
             block.ProjectLatitude,
             block.ProjectLongitude,
             isProjected ? grid.North - grid.North / k : 0.0,
             isProjected ? grid.East - grid.East / k : 0.0};
  }
  north = known.North;
  east = known.East;
}

}  // namespace clxml
