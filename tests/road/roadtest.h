// What the tests of roads stand on: the road's transform, and a line by its curvature.
// The line is integrated numerically, so that no formula of the library checks itself. Leans on
// hearing and the road model.
#pragma once

#include <cmath>

#include "road/RoadNorvath.h"
#include "road/roadtransform.h"
#include "support/hearing.h"

namespace clxml::testing {

class RoadTest : public ::testing::Test {
 protected:
  RoadTest () { SetCurrentTransformation (coordsys_Corrections ()); }
  ~RoadTest () override { ReleaseCurrentTransformation (); }
  Hearing hearing;
};

/// A place on a line and the direction there.
struct Heading {
  double north, east, azimuth;

  coord_CorrectedGrid Beside (double offset) const {
    return {north - offset * std::sin (azimuth), east + offset * std::cos (azimuth), MATHS_Null};
  }
};

/// The integral of a function, by Gauss and Legendre's rule of five points on 64 panels.
template <class F>
double Integral (double from, double to, F f) {
  constexpr double x[] = {0.0, 0.5384693101056831, 0.9061798459386640};
  constexpr double w[] = {0.5688888888888889, 0.4786286704993665, 0.2369268850561891};
  constexpr int panels = 64;
  const double half = (to - from) / panels / 2;
  double sum = 0.0;
  for (int i = 0; i < panels; i++) {
    const double middle = from + (2 * i + 1) * half;
    sum += w[0] * f (middle);
    for (int k = 1; k < 3; k++) sum += w[k] * (f (middle - x[k] * half) + f (middle + x[k] * half));
  }
  return sum * half;
}

/// A distance s along a line whose curvature (1/m, positive to the right) runs linearly from k0 to
/// k1 over a length.
inline Heading Follow (const Heading& from, double k0, double k1, double length, double s) {
  const auto azimuth = [&] (double t) {
    return from.azimuth + k0 * t + (length == 0.0 ? 0.0 : (k1 - k0) * t * t / (2 * length));
  };
  return {from.north + Integral (0.0, s, [&] (double t) { return std::cos (azimuth (t)); }),
          from.east + Integral (0.0, s, [&] (double t) { return std::sin (azimuth (t)); }),
          azimuth (s)};
}

/// The signed curvatures of an element's two ends.
inline void CurvaturesOf (const HorizontalBase& element, double& k0, double& k1) {
  k0 = k1 = 0.0;
  if (!element.HasRadius ()) return;
  const double sign = *element.DirectionRef () ? 1.0 : -1.0;
  const auto curvature = [sign] (double radius) {
    return maths_IsNull (radius) ? 0.0 : sign / radius;
  };
  k0 = curvature (*element.StartRadiusRef ());
  k1 = curvature (*element.EndRadiusRef ());
}

inline double AzimuthError (double a, double b) {
  return std::abs (std::remainder (a - b, 2 * M_PI));
}

inline double Apart (const coord_CorrectedGrid& a, const coord_CorrectedGrid& b) {
  return std::hypot (a.North - b.North, a.East - b.East);
}

}  // namespace clxml::testing
