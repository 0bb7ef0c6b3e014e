// Between the forms of an observation.
#include "Library/position/reduce.h"

#include <cmath>

namespace clxml {

coord_Polar reduce_TurnToPolar (const coord_Unturned& unturned, double backBearingCircle,
                                double azimuth) {
  return {coord_NormaliseTwoPi (
              maths_Add (maths_Subtract (unturned.HorzCircle, backBearingCircle), azimuth)),
          unturned.HDist, unturned.VDist};
}

coord_Polar reduce_GroundToPolar (const coord_Ground& ground) {
  return {ground.Azimuth, maths_Multiply (maths_Sin (ground.VertAngle), ground.SlopeDist),
          maths_Multiply (maths_Cos (ground.VertAngle), ground.SlopeDist)};
}

coord_Ground reduce_PolarToGround (const coord_Polar& polar) {
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

}  // namespace clxml
