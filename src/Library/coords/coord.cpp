// Operations of coordinates, the ellipsoid's derived values and the ranges of angles.
// Leans on coord.
#include "Library/coords/coord.h"

#include <cmath>

#include "str.h"

namespace clxml {

namespace {

// The angle within minus to plus half a period, give or take half a turn too many: r = x - k
// period, k = x/period cut to a whole number. An angle so large that its own rounding exceeds a
// turn has no direction left; fmod keeps the result in range all the same.
double Reduce (double angle, double period) {
  const double reduced = angle - std::trunc (angle / period) * period;
  return std::abs (reduced) <= period ? reduced : std::fmod (angle, period);
}

double PlusMinus (double angle, double period, double limit) {
  if (maths_IsNull (angle) || (angle >= -limit && angle <= limit)) return angle;
  if (!std::isfinite (angle)) return MATHS_Null;
  double output = Reduce (angle, period);
  if (output < -limit) output += period;
  if (output > limit) output -= period;
  return output;
}

// Azimuth of a difference, within 0 to 2 pi from the first axis over the second.
double AzimuthOf (double first, double second) {
  return coord_NormaliseTwoPi (maths_Atan2 (second, first));
}

double LengthOf (double a, double b) {
  return maths_SquareRoot (maths_Add (maths_Square (a), maths_Square (b)));
}

double LengthOf (double a, double b, double c) {
  return maths_SquareRoot (
      maths_Add (maths_Add (maths_Square (a), maths_Square (b)), maths_Square (c)));
}

template <class Geodetic>
coord_ECEF EarthCentred (const Geodetic& point, const coordsys_Ellipsoid& ellipsoid) {
  const double a = ellipsoid.EarthRadius;
  const double e2 = ellipsoid.EccentricitySquared;
  if (point.AnyNull () || maths_IsNull (a) || maths_IsNull (e2)) return {};
  const double s = std::sin (point.Latitude);
  const double N = a / std::sqrt (1.0 - e2 * s * s);
  const double r = (N + point.Height) * std::cos (point.Latitude);
  const coord_ECEF result (r * std::cos (point.Longitude), r * std::sin (point.Longitude),
                           (N * (1.0 - e2) + point.Height) * s);
  return std::isfinite (result.X + result.Y + result.Z) ? result : coord_ECEF ();
}

}  // namespace

double coord_NormalisePlusMinusPi (double angle) {
  const double output = PlusMinus (angle, CONSTANT_TwoPi, CONSTANT_Pi);
  if (!maths_IsNull (output)) {
    Assert (output >= -CONSTANT_Pi, "output >= -CONSTANT_Pi");
    Assert (output <= CONSTANT_Pi, "output <= CONSTANT_Pi");
  }
  return output;
}

double coord_NormalisePlusMinusPiOverTwo (double angle) {
  const double output = PlusMinus (angle, CONSTANT_Pi, CONSTANT_PiOverTwo);
  if (!maths_IsNull (output)) {
    Assert (output >= -CONSTANT_PiOverTwo, "output >= -CONSTANT_PiOverTwo");
    Assert (output <= CONSTANT_PiOverTwo, "output <= CONSTANT_PiOverTwo");
  }
  return output;
}

double coord_NormaliseTwoPi (double angle) {
  if (maths_IsNull (angle) || (angle >= 0.0 && angle < CONSTANT_TwoPi)) return angle;
  if (!std::isfinite (angle)) return MATHS_Null;
  double output = Reduce (angle, CONSTANT_TwoPi);
  if (output < 0.0) output += CONSTANT_TwoPi;
  // An angle just below 0 becomes a whole turn by rounding.
  if (output >= CONSTANT_TwoPi) output -= CONSTANT_TwoPi;
  Assert (output >= 0.0, "output >= 0.0");
  Assert (output < CONSTANT_TwoPi, "output < CONSTANT_TwoPi");
  return output;
}

coordsys_Ellipsoid::coordsys_Ellipsoid (double earthRadius, double flattening) noexcept
    : EarthRadius (earthRadius),
      Flattening (flattening),
      EccentricitySquared (
          maths_Subtract (maths_Multiply (2.0, flattening), maths_Square (flattening))),
      OneMinusEccentricitySquared (maths_Subtract (1.0, EccentricitySquared)),
      SecondEccentricitySquared (maths_Divide (EccentricitySquared, OneMinusEccentricitySquared)),
      OnePlusSecondEccentricitySquared (maths_Add (1.0, SecondEccentricitySquared)),
      HalfSecondEccentricitySquared (maths_Divide (SecondEccentricitySquared, 2.0)),
      SecondEccentricity (maths_SquareRoot (SecondEccentricitySquared)) {}

const coordsys_Ellipsoid& coordsys_WGS84Ellipsoid () noexcept {
  static const coordsys_Ellipsoid wgs84 (6378137.0, 0.0033528106718309905);
  return wgs84;
}

coord_ECEF coord_WGS84::ToECEF (const coordsys_Ellipsoid& ellipsoid) const noexcept {
  return EarthCentred (*this, ellipsoid);
}

coord_ECEF coord_Local::ToECEF (const coordsys_Ellipsoid& ellipsoid) const noexcept {
  return EarthCentred (*this, ellipsoid);
}

bool coord_Local::IsValid () const noexcept {
  return (maths_IsNull (Latitude) || std::abs (Latitude) <= CONSTANT_PiOverTwo) &&
         (maths_IsNull (Longitude) || std::abs (Longitude) <= CONSTANT_Pi);
}

coord_WGS84 coord_ECEF::ToWGS84 (const coordsys_Ellipsoid& ellipsoid) const noexcept {
  const double a = ellipsoid.EarthRadius;
  const double e2 = ellipsoid.EccentricitySquared;
  if (AnyNull () || maths_IsNull (a) || maths_IsNull (e2)) return {};
  double latitude = CONSTANT_PiOverTwo, longitude = 0.0, p = 0.0;
  if (X != 0.0 || Y != 0.0) {
    p = std::sqrt (X * X + Y * Y);
    const double t = Z / p;
    latitude = std::atan (t / (1.0 - e2));
    // Six rounds, without a test: they reach the last digit for any point above the core.
    for (int round = 0; round < 6; round++) {
      const double s = std::sin (latitude);
      const double N = a / std::sqrt (1.0 - e2 * s * s);
      latitude = std::atan (e2 / p * N * s + t);
    }
    longitude = maths_Atan2 (Y, X);
  }
  const double s = std::sin (latitude);
  const double N = a / std::sqrt (1.0 - e2 * s * s);
  const double height = std::abs (latitude) <= CONSTANT_PiOverFour ? p / std::cos (latitude) - N
                                                                   : Z / s - N * (1.0 - e2);
  return std::isfinite (latitude + longitude + height) && !maths_IsNull (longitude)
             ? coord_WGS84 (latitude, longitude, height)
             : coord_WGS84 ();
}

coord_Local coord_ECEF::ToLocal (const coordsys_Ellipsoid& ellipsoid) const noexcept {
  const coord_WGS84 point = ToWGS84 (ellipsoid);
  return {point.Latitude, point.Longitude, point.Height};
}

coord_ECEF::coord_ECEF (const coord_ECEFGround& ground) noexcept
    : X (ground.X), Y (ground.Y), Z (ground.Z) {}

double coord_GridDeltas::Azimuth () const noexcept { return AzimuthOf (DeltaNorth, DeltaEast); }
double coord_GridDeltas::HorizontalDistance () const noexcept {
  return LengthOf (DeltaNorth, DeltaEast);
}
double coord_GridDeltas::SlopeDistance () const noexcept {
  return LengthOf (DeltaNorth, DeltaEast, DeltaElev);
}

double coord_ECEFDeltas::Azimuth () const noexcept { return AzimuthOf (YDelta, XDelta); }
double coord_ECEFDeltas::HorizontalDistance () const noexcept { return LengthOf (XDelta, YDelta); }
double coord_ECEFDeltas::SlopeDistance () const noexcept {
  return LengthOf (XDelta, YDelta, ZDelta);
}

bool coord_CorrectedGrid::IsCloseTo (const coord_CorrectedGrid& other,
                                     double tolerance) const noexcept {
  const double squared = maths_Add (maths_Square (maths_Subtract (North, other.North)),
                                    maths_Square (maths_Subtract (East, other.East)));
  return !maths_IsNull (squared) && !maths_IsNull (tolerance) && squared <= tolerance * tolerance;
}

coord_GridDeltas operator- (const coord_CogoGrid& a, const coord_CogoGrid& b) noexcept {
  return {maths_Subtract (a.North, b.North), maths_Subtract (a.East, b.East),
          maths_Subtract (a.Elevation, b.Elevation)};
}
coord_CogoGrid operator+ (const coord_CogoGrid& a, const coord_GridDeltas& b) noexcept {
  return {maths_Add (a.North, b.DeltaNorth), maths_Add (a.East, b.DeltaEast),
          maths_Add (a.Elevation, b.DeltaElev)};
}
coord_GridDeltas operator- (const coord_CorrectedGrid& a, const coord_CorrectedGrid& b) noexcept {
  return {maths_Subtract (a.North, b.North), maths_Subtract (a.East, b.East),
          maths_Subtract (a.Elevation, b.Elevation)};
}
coord_CorrectedGrid operator+ (const coord_CorrectedGrid& a, const coord_GridDeltas& b) noexcept {
  return {maths_Add (a.North, b.DeltaNorth), maths_Add (a.East, b.DeltaEast),
          maths_Add (a.Elevation, b.DeltaElev)};
}

coord_ECEFDeltas operator- (const coord_ECEF& a, const coord_ECEF& b) noexcept {
  if (a.AnyNull () || b.AnyNull ()) return {};
  return {maths_Subtract (a.X, b.X), maths_Subtract (a.Y, b.Y), maths_Subtract (a.Z, b.Z)};
}
coord_ECEF operator+ (const coord_ECEFDeltas& a, const coord_ECEF& b) noexcept {
  if (a.AnyNull () || b.AnyNull ()) return {};
  return {maths_Add (a.XDelta, b.X), maths_Add (a.YDelta, b.Y), maths_Add (a.ZDelta, b.Z)};
}

}  // namespace clxml
