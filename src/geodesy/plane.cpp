// The plane, projection code 10: a local tangent plane at an origin, turned and scaled.
// Parameters: the rotation, radians; the origin's height above the ellipsoid and its elevation,
// metres. Leans on datum.
#include "geodesy/datum.h"
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// Topocentric coordinates of the point at the origin's height: IOGP Guidance Note 7-2 (2021),
// method 9837, turned by theta.
struct Plane {
  double rotation = 0.0;
  double originHeight = 0.0;
  double originElevation = 0.0;
  double a = 0.0;
  double b = 0.0;
  double k = 1.0;
  csib_Cartesian P0;
  double cosineRadius = 0.0;                ///< a / sqrt (1 - e2 cos2 phi0), metres
  double sinC = 0.0, cosC = 1.0;            ///< of the origin's colatitude
  double sinLambda = 0.0, cosLambda = 1.0;  ///< of its longitude
  double sinTheta = 0.0, cosTheta = 1.0;    ///< of the rotation

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    rotation = in.Finite ();
    originHeight = in.Finite ();
    originElevation = in.Finite ();
    if (!in.IsGood ()) return in.Status ();
    const csib_ProjectionFrame frame (block);
    a = frame.a;
    b = frame.b;
    k = frame.scale;
    csib_Geodetic origin;
    origin.Latitude = frame.latitude;
    origin.Longitude = frame.longitude;
    origin.EllipsoidalHeight = csib_ProjectionFrame::NaNUnlessKnown (originHeight);
    origin.HasEllipsoidal = true;
    // With an unknown height or elevation no point has an answer.
    csib_GeodeticToCartesian (a, b, origin, P0);
    P0.X += 0.0 * csib_ProjectionFrame::NaNUnlessKnown (originElevation);
    const double c = std::numbers::pi / 2.0 - frame.latitude;
    const double theta = csib_ProjectionFrame::NaNUnlessKnown (rotation);
    sinC = std::sin (c);
    cosC = std::cos (c);
    sinLambda = std::sin (frame.longitude);
    cosLambda = std::cos (frame.longitude);
    sinTheta = std::sin (theta);
    cosTheta = std::cos (theta);
    const double e2 = (a - b) * (a + b) / (a * a);
    const double cosPhi = std::cos (frame.latitude);
    cosineRadius = a / std::sqrt (1.0 - e2 * cosPhi * cosPhi);
    return CSIB_Ok;
  }

  void Write (csib_Writer& out) const noexcept {
    out.Double (rotation);
    out.Double (originHeight);
    out.Double (originElevation);
  }

  template <class From, class To>
  void PassHeights (const From& point, To& out) const noexcept {
    const double difference = originHeight - originElevation;
    const bool hasElevation = point.HasOrthometric;
    const bool hasHeight = hasElevation || point.HasEllipsoidal;
    const double elevation =
        hasElevation ? point.OrthometricHeight : point.EllipsoidalHeight - difference;
    const double height = hasElevation ? elevation + difference : point.EllipsoidalHeight;
    out.OrthometricHeight = hasHeight ? elevation : 0.0;
    out.EllipsoidalHeight = hasHeight ? height : 0.0;
    out.HasOrthometric = out.HasEllipsoidal = hasHeight;
  }

  csib_Status Forward (const csib_Geodetic& point, csib_Grid& out) const noexcept {
    csib_Geodetic atOrigin = point;
    atOrigin.EllipsoidalHeight = originHeight;
    atOrigin.HasEllipsoidal = true;
    csib_Cartesian P;
    if (const csib_Status status = csib_GeodeticToCartesian (a, b, atOrigin, P)) return status;
    const double x = P.X - P0.X;
    const double y = P.Y - P0.Y;
    const double z = P.Z - P0.Z;
    const double x1 = x * cosLambda + y * sinLambda;
    const double y1 = y * cosLambda - x * sinLambda;
    const double n = -k * (x1 * cosC - z * sinC);
    const double e = k * y1;
    const double north = n * cosTheta + e * sinTheta;
    const double east = e * cosTheta - n * sinTheta;
    if (!csib_IsKnown (north) || !csib_IsKnown (east)) return CSIB_NoProjectionOperation;
    PassHeights (point, out);
    out.North = north;
    out.East = east;
    out.HasNorth = out.HasEast = true;
    return CSIB_Ok;
  }

  csib_Status Inverse (const csib_Grid& point, csib_Geodetic& out) const noexcept {
    const double n = (point.North * cosTheta - point.East * sinTheta) / k;
    const double e = (point.East * cosTheta + point.North * sinTheta) / k;
    csib_Geodetic found;
    if (const csib_Status status = FromPlane (n, e, originElevation, found)) return status;
    // How far the ellipsoid has fallen off below the plane; once is enough for the size of a job.
    const double correction = (found.EllipsoidalHeight - originHeight) *
                              std::cos (std::sqrt (n * n + e * e) / (originHeight + cosineRadius));
    if (const csib_Status status = FromPlane (n, e, originElevation - correction, found))
      return status;
    if (!csib_IsKnown (found.Latitude) || !csib_IsKnown (found.Longitude))
      return CSIB_NoProjectionOperation;
    PassHeights (point, out);
    out.Latitude = found.Latitude;
    out.Longitude = found.Longitude;
    return CSIB_Ok;
  }

  csib_Status FromPlane (double n, double e, double up, csib_Geodetic& out) const noexcept {
    const double x1 = -n * cosC + up * sinC;
    const double z = n * sinC + up * cosC;
    const csib_Cartesian P{P0.X + x1 * cosLambda - e * sinLambda,
                           P0.Y + e * cosLambda + x1 * sinLambda, P0.Z + z};
    return csib_CartesianToGeodetic (a, b, P, out);
  }
};

using Slots = csib_ProjectionSlots<Plane>;

csib_Status Forward (csib_Block& block, const csib_Geodetic& point, csib_Grid& out) {
  const Plane* p = csib_Held<Plane> (block);
  return p == nullptr ? CSIB_NoProjectionOperation : p->Forward (point, out);
}

csib_Status Inverse (csib_Block& block, const csib_Grid& point, csib_Geodetic& out) {
  const Plane* p = csib_Held<Plane> (block);
  if (p == nullptr || !point.HasNorth || !point.HasEast) return CSIB_NoProjectionOperation;
  return p->Inverse (point, out);
}

}  // namespace

constinit const csib_ProjectionOperations csib_PlaneProjection = {
    Slots::Read, Slots::NoFile, Slots::NoFile,      Slots::Free,       Slots::Write, Forward,
    Inverse,     Slots::Scale,  Slots::Convergence, Slots::Parameters, Slots::Size};

double csib_PlaneHeightDifference (const csib_Block& block) noexcept {
  if (block.ProjectionCode != CSIB_Plane) return 0.0;
  const Plane* p = csib_Held<Plane> (block);
  return p == nullptr ? 0.0 : p->originHeight - p->originElevation;
}

}  // namespace clxml
