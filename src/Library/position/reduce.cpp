// Between the forms of an observation.
#include "Library/position/reduce.h"

#include <cmath>

#include "Library/records/dbConventional.h"
#include "str.h"

namespace clxml {
namespace {

double Reversed (double angle) noexcept {
  return coord_NormaliseTwoPi (maths_Subtract (CONSTANT_TwoPi, angle));
}

double Turned (double angle) noexcept {
  return coord_NormaliseTwoPi (maths_Add (angle, CONSTANT_Pi));
}

coord_Face Opposite (coord_Face face) noexcept {
  return face == COORD_Face1 ? COORD_Face2 : face == COORD_Face2 ? COORD_Face1 : face;
}

// A horizontal offset dh and a vertical offset dv of the measured point of a 360 prism, as
// polynomials of the zenith angle z in radians.
void Correct360 (double z, double constant, bool reverse, double& distance,
                 double& zenith) noexcept {
  const double sign = reverse ? 1.0 : -1.0;
  const double dh = maths_Subtract (
      -0.00544364081387558 * z * z + 0.0171017019896531 * z - 0.013424821050095, constant);
  const double dv = -0.0182449143622567 * z + 0.0286590444629203;
  const double h = maths_Add (maths_Multiply (distance, std::sin (z)), maths_Multiply (sign, dh));
  const double v = maths_Add (maths_Multiply (distance, std::cos (z)), sign * dv);
  distance = maths_SquareRoot (maths_Add (maths_Square (h), maths_Square (v)));
  zenith = maths_Subtract (CONSTANT_PiOverTwo, maths_Atan2 (v, h));
}

void CorrectMultiTrack (double z, double constant, bool isActive, bool reverse, double& distance,
                        double& zenith) noexcept {
  const double a = isActive ? -0.0120774850901667 : -0.0154818768605492;
  const double b = isActive ? 0.0379298060376605 : 0.0486568492020542;
  const double c = isActive ? 0.029799 : 0.038228;
  const double d = isActive ? 0.015 : 0.022;
  const double e = maths_Add (a * z * z + b * z - c, constant);
  distance = reverse ? maths_Subtract (distance, e) : maths_Add (distance, e);
  const double turn = maths_Divide (d * std::cos (z), distance);
  zenith = reverse ? maths_Subtract (z, turn) : maths_Add (z, turn);
}

// The true heights of a setup; false when the vertical part is not known.
bool Heights (const reduce_Setup& setup, double& station, double& target) noexcept {
  station = setup.StationHeight;
  target = setup.TargetHeight;
  if (setup.UseProjectHeight) {
    if (maths_IsNull (station)) station = 0.0;
    if (maths_IsNull (target)) target = 0.0;
  }
  return !maths_IsNull (station) && !maths_IsNull (target);
}

}  // namespace

double reduce_RefractionCoefficient (total_RefractionType refraction) noexcept {
  switch (refraction) {
    case TOTAL_Refraction0142:
      return 0.142;
    case TOTAL_Refraction02:
      return 0.2;
    default:
      return MATHS_Null;
  }
}

double reduce_PPM (const db_TotalAtmosphere& atmosphere,
                   const db_TotalInstrument& instrument) noexcept {
  if (!maths_IsNull (atmosphere.PPM)) return atmosphere.PPM;
  return maths_Subtract (
      instrument.RefractiveIndex,
      maths_Divide (maths_Multiply (instrument.CarrierWavelength, atmosphere.Pressure),
                    maths_Add (273.15, atmosphere.Temperature)));
}

bool reduce_IsFace2 (double vertical, coord_Face face) noexcept {
  return maths_IsNull (vertical) ? face == COORD_Face2
                                 : coord_NormaliseTwoPi (vertical) > CONSTANT_Pi;
}

void reduce_ToFace1 (coord_Corrected& corrected) noexcept {
  if (maths_IsNull (corrected.VertCircle) && corrected.Face != COORD_Face1 &&
      corrected.Face != COORD_Face2) {
    corrected.HorzCircle = MATHS_Null;
  } else if (reduce_IsFace2 (corrected.VertCircle, corrected.Face)) {
    corrected.HorzCircle = Turned (corrected.HorzCircle);
    corrected.VertCircle = maths_Subtract (CONSTANT_TwoPi, corrected.VertCircle);
    corrected.Face = COORD_Face1;
  }
}

coord_Corrected reduce_OppositeFace (const coord_Corrected& corrected) noexcept {
  return {Turned (corrected.HorzCircle), Reversed (corrected.VertCircle), corrected.SlopeDist,
          Opposite (corrected.Face)};
}

coord_Circle reduce_OppositeFace (const coord_Circle& circle) noexcept {
  coord_Circle other = circle;
  other.HorzCircle = Turned (circle.HorzCircle);
  other.VertCircle = Reversed (circle.VertCircle);
  other.Face = Opposite (circle.Face);
  return other;
}

void reduce_PrismCorrection (coord_Circle& circle, const reduce_Setup& setup,
                             bool reverse) noexcept {
  if (maths_IsNull (circle.EDMDistance) || circle.EDMDistance <= 0.0) {
    circle.EDMDistance = circle.EDMDistanceStdErr = MATHS_Null;
    return;
  }
  const total_Prism prism (setup.PrismConstant, setup.PrismType);
  if (!prism.IsAngleDependent ()) {
    if (maths_IsNull (setup.PrismConstant)) return;
    circle.EDMDistance = reverse ? maths_Subtract (circle.EDMDistance, setup.PrismConstant)
                                 : maths_Add (circle.EDMDistance, setup.PrismConstant);
    return;
  }
  if (maths_IsNull (circle.VertCircle)) return;
  const bool isFace2 = reduce_IsFace2 (circle.VertCircle, circle.Face);
  const double z = isFace2 ? CONSTANT_TwoPi - circle.VertCircle : circle.VertCircle;
  double zenith = MATHS_Null;
  if (setup.PrismType == TOTAL_KSeries360Prism) {
    Correct360 (z, setup.PrismConstant, reverse, circle.EDMDistance, zenith);
    if (maths_IsNull (zenith)) return;
  } else {
    CorrectMultiTrack (z, setup.PrismConstant, setup.RMTID != TOTAL_RMTIDNone, reverse,
                       circle.EDMDistance, zenith);
  }
  circle.VertCircle = isFace2 ? Reversed (zenith) : coord_NormaliseTwoPi (zenith);
}

void reduce_PrismCorrection (coord_Circle& circle, const total_Target& target,
                             bool reverse) noexcept {
  reduce_Setup setup;
  setup.PrismConstant = target.Prism.PrismConstant;
  setup.PrismType = target.Prism.PrismType;
  setup.RMTID = target.RMTID;
  reduce_PrismCorrection (circle, setup, reverse);
}

void reduce_PPMCorrection (coord_Circle& circle, double ppm, bool reverse) noexcept {
  if (maths_IsNull (ppm)) return;
  const double p = ppm * 1e-6;
  circle.EDMDistance = reverse
                           ? maths_Divide (circle.EDMDistance, 1.0 + p)
                           : maths_Add (maths_Multiply (circle.EDMDistance, p), circle.EDMDistance);
}

void reduce_PPMCorrection (coord_Circle& circle, const db_TotalAtmosphere& atmosphere,
                           const db_TotalInstrument& instrument, bool reverse) noexcept {
  reduce_PPMCorrection (circle, reduce_PPM (atmosphere, instrument), reverse);
}

void reduce_RefractionCorrection (coord_Circle& circle, double earthRadius, double k,
                                  bool reverse) noexcept {
  if (maths_IsNull (earthRadius) || maths_IsNull (k) || maths_IsNull (circle.EDMDistance) ||
      maths_IsNull (circle.VertCircle))
    return;
  double c = (1.0 - k) * circle.EDMDistance;
  if (reduce_IsFace2 (circle.VertCircle, circle.Face)) c = -c;
  if (reverse) c = -c;
  circle.VertCircle = maths_Subtract (circle.VertCircle, maths_Divide (c, 2.0 * earthRadius));
}

void reduce_CircleToCorrected (const coord_Circle& circle, coord_Corrected& corrected,
                               const reduce_Setup& setup) noexcept {
  coord_Circle reading = circle;
  reduce_PrismCorrection (reading, setup, false);
  reduce_PPMCorrection (reading, setup.PPM, false);
  reduce_RefractionCorrection (reading, setup.EarthRadius, setup.Refraction, false);
  corrected = {reading.HorzCircle, reading.VertCircle, reading.EDMDistance, reading.Face};
}

void reduce_CorrectedToCircle (const coord_Corrected& corrected, coord_Circle& circle,
                               const reduce_Setup& setup) noexcept {
  circle.HorzCircle = corrected.HorzCircle;
  circle.VertCircle = corrected.VertCircle;
  circle.EDMDistance = corrected.SlopeDist;
  circle.Face = corrected.Face;
  reduce_RefractionCorrection (circle, setup.EarthRadius, setup.Refraction, true);
  reduce_PPMCorrection (circle, setup.PPM, true);
  reduce_PrismCorrection (circle, setup, true);
}

void reduce_CorrectedToUnturned (const coord_Corrected& corrected, coord_Unturned& unturned,
                                 const reduce_Setup& setup) noexcept {
  coord_Corrected reading = corrected;
  reduce_ToFace1 (reading);
  double station, target;
  const bool isVerticalKnown = Heights (setup, station, target);
  if (isVerticalKnown)
    reduce_AdjustForHeights (reading.SlopeDist, reading.VertCircle, station, target, false);
  unturned = coord_Unturned (reading.HorzCircle, MATHS_Null, MATHS_Null);
  if (maths_IsNull (reading.VertCircle) || maths_IsNull (reading.SlopeDist)) return;
  unturned.HDist = maths_Multiply (
      setup.ScaleFactor, maths_Multiply (std::sin (reading.VertCircle), reading.SlopeDist));
  if (isVerticalKnown)
    unturned.VDist = maths_Multiply (std::cos (reading.VertCircle), reading.SlopeDist);
}

void reduce_UnturnedToCorrected (const coord_Unturned& unturned, coord_Corrected& corrected,
                                 const reduce_Setup& setup) noexcept {
  corrected = coord_Corrected (unturned.HorzCircle, MATHS_Null, MATHS_Null, COORD_Face1);
  if (maths_IsNull (unturned.HDist) || maths_IsNull (unturned.VDist)) return;
  const double h = maths_Divide (unturned.HDist, setup.ScaleFactor);
  double z = maths_Atan2 (h, unturned.VDist);
  if (z < 0.0) z = maths_Add (z, CONSTANT_Pi);
  corrected.VertCircle = z;
  corrected.SlopeDist =
      z != 0.0 && z != CONSTANT_TwoPi ? maths_Divide (h, maths_Sin (z)) : unturned.VDist;
  double station, target;
  Heights (setup, station, target);
  reduce_AdjustForHeights (corrected.SlopeDist, corrected.VertCircle, station, target, true);
}

void reduce_UnturnedToCircle (const coord_Unturned& unturned, coord_Circle& circle,
                              const reduce_Setup& setup) noexcept {
  coord_Corrected corrected;
  reduce_UnturnedToCorrected (unturned, corrected, setup);
  reduce_CorrectedToCircle (corrected, circle, setup);
}

void reduce_CircleToUnturned (const coord_Circle& circle, coord_Unturned& unturned,
                              const reduce_Setup& setup) noexcept {
  coord_Corrected corrected;
  reduce_CircleToCorrected (circle, corrected, setup);
  reduce_CorrectedToUnturned (corrected, unturned, setup);
}

void reduce_AdjustForHeights (double& slopeDistance, double& zenith, double stationHeight,
                              double targetHeight, bool reverse) noexcept {
  if (maths_IsNull (slopeDistance) || maths_IsNull (zenith) || maths_IsNull (stationHeight) ||
      maths_IsNull (targetHeight)) {
    slopeDistance = zenith = MATHS_Null;
    return;
  }
  const double rise = reverse ? targetHeight - stationHeight : stationHeight - targetHeight;
  const double v = slopeDistance * std::cos (zenith) + rise;
  const double h = slopeDistance * std::sin (zenith);
  if (h == 0.0 && v == 0.0) return;
  zenith = maths_Atan2 (h, v);
  slopeDistance = maths_SquareRoot (maths_Add (maths_Square (v), maths_Square (h)));
}

coord_Polar reduce_TurnToPolar (const coord_Unturned& unturned, double backBearingCircle,
                                double azimuth) noexcept {
  return {coord_NormaliseTwoPi (
              maths_Add (maths_Subtract (unturned.HorzCircle, backBearingCircle), azimuth)),
          unturned.HDist, unturned.VDist};
}

coord_Unturned reduce_PolarToUnturned (const coord_Polar& polar, double backBearingCircle,
                                       double azimuth) noexcept {
  return {
      coord_NormaliseTwoPi (maths_Subtract (maths_Add (polar.Azimuth, backBearingCircle), azimuth)),
      polar.HDist, polar.VDist};
}

coord_Polar reduce_GroundToPolar (const coord_Ground& ground) noexcept {
  return {ground.Azimuth, maths_Multiply (maths_Sin (ground.VertAngle), ground.SlopeDist),
          maths_Multiply (maths_Cos (ground.VertAngle), ground.SlopeDist)};
}

coord_Ground reduce_PolarToGround (const coord_Polar& polar) noexcept {
  coord_Ground ground;
  ground.Azimuth = polar.Azimuth;
  if (maths_IsNull (polar.HDist) || maths_IsNull (polar.VDist)) return ground;
  ground.VertAngle = maths_Atan2 (polar.HDist, polar.VDist);
  if (ground.VertAngle < 0.0) ground.VertAngle = maths_Add (ground.VertAngle, CONSTANT_PiOverTwo);
  constexpr double ThousandthOfADegree = 1.7453292519943296e-5;
  const double s = maths_Sin (ground.VertAngle);
  ground.SlopeDist =
      s < std::sin (ThousandthOfADegree) ? maths_Abs (polar.VDist) : maths_Divide (polar.HDist, s);
  return ground;
}

coord_Polar reduce_LaserToPolar (const coord_LaserOffset& laserOffset,
                                 const laser_Environment& env) noexcept {
  coord_LaserOffset reading = laserOffset;
  double azimuth = reading.Azimuth;
  if (!maths_IsNull (env.MagneticDeclination))
    azimuth = maths_Add (azimuth, env.MagneticDeclination);
  if (env.SouthAzimuth) azimuth = maths_Subtract (azimuth, CONSTANT_Pi);
  const bool isVerticalKnown = !maths_IsNull (env.LaserHeight) && !maths_IsNull (env.TargetHeight);
  if (isVerticalKnown)
    reduce_AdjustForHeights (reading.SlopeDist, reading.VertAngle, env.LaserHeight,
                             env.TargetHeight, false);
  coord_Polar polar (coord_NormaliseTwoPi (azimuth), MATHS_Null, MATHS_Null);
  if (reading.AnyNull ()) return polar;
  polar.HDist = maths_Multiply (reading.SlopeDist, std::sin (reading.VertAngle));
  if (isVerticalKnown)
    polar.VDist = maths_Multiply (reading.SlopeDist, std::cos (reading.VertAngle));
  return polar;
}

double BackBearingCircleFor (const db_TotalBackBearing& backBearing, double vertical,
                             bool isMTA) noexcept {
  if (isMTA) return 0.0;
  const bool isFace2 = reduce_IsFace2 (vertical, COORD_FaceNull)
                           ? !maths_IsNull (backBearing.F2HorzCircle)
                           : maths_IsNull (backBearing.F1HorzCircle);
  return isFace2 ? coord_NormaliseTwoPi (maths_Subtract (backBearing.F2HorzCircle, CONSTANT_Pi))
                 : backBearing.F1HorzCircle;
}

void reduce_DistanceOffset (const coord_Corrected& corrected,
                            dbconfig_OffsetPerspectiveMode perspective, double leftRight,
                            double inOut, double vertical, const reduce_Setup& setup,
                            coord_Corrected& out) {
  const coord_Corrected reading = corrected;  // out may be the input
  out = coord_Corrected ();
  if (maths_IsNull (reading.VertCircle) || maths_IsNull (reading.SlopeDist) ||
      (maths_IsNull (leftRight) && maths_IsNull (inOut) && maths_IsNull (vertical)))
    return;
  reduce_Setup atMarks = setup;
  atMarks.StationHeight = atMarks.TargetHeight = 0.0;
  coord_Unturned unturned;
  reduce_CorrectedToUnturned (reading, unturned, atMarks);
  if (maths_IsNull (unturned.HDist)) return;
  double l = reduce_LeftRightFromPerspective (leftRight, perspective);
  if (maths_IsNull (l)) l = 0.0;
  const double d = maths_IsNull (inOut) ? unturned.HDist : maths_Add (unturned.HDist, inOut);
  unturned.HDist = maths_SquareRoot (maths_Add (maths_Square (d), maths_Square (l)));
  if (d != 0.0)
    unturned.HorzCircle =
        coord_NormaliseTwoPi (maths_Add (unturned.HorzCircle, maths_Atan2 (l, d)));
  if (!maths_IsNull (vertical)) unturned.VDist = maths_Add (unturned.VDist, vertical);
  reduce_UnturnedToCorrected (unturned, out, atMarks);
  if (d == 0.0) out.VertCircle = reading.VertCircle;
}

double reduce_LeftRightFromPerspective (double value, dbconfig_OffsetPerspectiveMode perspective) {
  Assert (perspective != DBCONFIG_OffsetAutomatic,
          "displayPerspective != DBCONFIG_OffsetAutomatic");
  return perspective == DBCONFIG_OffsetFromTarget ? maths_Negate (value) : value;
}

double reduce_InOutFromPerspective (double value, dbconfig_OffsetPerspectiveMode perspective) {
  return reduce_LeftRightFromPerspective (value, perspective);
}

double reduce_AngleFromTo (double a, double b) noexcept {
  return coord_NormaliseTwoPi (maths_Subtract (b, a));
}

double reduce_AngleDifference (double a, double b) noexcept {
  return coord_NormalisePlusMinusPi (maths_Subtract (a, b));
}

double reduce_AngleSeparation (double a, double b) noexcept {
  const double turn = coord_NormaliseTwoPi (maths_Subtract (a, b));
  return !maths_IsNull (turn) && turn > CONSTANT_Pi ? CONSTANT_TwoPi - turn : turn;
}

}  // namespace clxml
