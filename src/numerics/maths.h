// The null value of doubles, and arithmetic that knows it.
// "No value" in every coordinate, observation and record field is one number; this says which, how
// it is recognised and how numbers that may be absent are combined. Leans on nothing but the
// standard library.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace clxml {

/// Stands for "no value" in a double.
inline constexpr double MATHS_Null = 1e308;

inline constexpr double CONSTANT_Pi = 3.141592653589793;
inline constexpr double CONSTANT_PiOverTwo = 1.5707963267948966;
inline constexpr double CONSTANT_PiOverFour = 0.7853981633974483;
inline constexpr double CONSTANT_TwoPi = 6.283185307179586;

/// True when the high 32 bits of the value are those of MATHS_Null, 7FE1CCF3 hexadecimal.
inline constexpr bool maths_IsNull (double value) noexcept {
  return static_cast<uint32_t> (std::bit_cast<uint64_t> (value) >> 32) == 0x7FE1CCF3u;
}

/// The value, or null in place of an infinity or of what is no number.
inline double maths_NullUnlessFinite (double value) noexcept {
  return std::isfinite (value) ? value : MATHS_Null;
}

// Arithmetic of numbers that may be absent. Every operation gives null when an argument is null,
// and also where it has no finite value: a division by 0, the square root or the logarithm of a
// number below 0, an arc function outside its domain, a sum that overflows. None of them gives an
// infinity or what is no number. Angles are radians.

inline double maths_Add (double a, double b) noexcept {
  return maths_IsNull (a) || maths_IsNull (b) ? MATHS_Null : maths_NullUnlessFinite (a + b);
}
/// a - b
inline double maths_Subtract (double a, double b) noexcept {
  return maths_IsNull (a) || maths_IsNull (b) ? MATHS_Null : maths_NullUnlessFinite (a - b);
}
inline double maths_Multiply (double a, double b) noexcept {
  return maths_IsNull (a) || maths_IsNull (b) ? MATHS_Null : maths_NullUnlessFinite (a * b);
}
/// a / b; null for a b of 0.
inline double maths_Divide (double a, double b) noexcept {
  return maths_IsNull (a) || maths_IsNull (b) || b == 0.0 ? MATHS_Null
                                                          : maths_NullUnlessFinite (a / b);
}
/// x += y
inline void maths_AddTo (double& x, double y) noexcept { x = maths_Add (x, y); }
/// x -= y
inline void maths_SubtractFrom (double& x, double y) noexcept { x = maths_Subtract (x, y); }

inline double maths_Negate (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (-x);
}
inline double maths_Abs (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::abs (x));
}
inline double maths_Square (double x) noexcept { return maths_Multiply (x, x); }
/// Null for a negative number.
inline double maths_SquareRoot (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::sqrt (x));
}
inline double maths_Sin (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::sin (x));
}
inline double maths_Cos (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::cos (x));
}
inline double maths_Tan (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::tan (x));
}
/// Within minus to plus pi/2; null outside -1 to +1.
inline double maths_ArcSin (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::asin (x));
}
/// Within 0 to pi; null outside -1 to +1.
inline double maths_ArcCos (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::acos (x));
}
/// Within minus to plus pi/2.
inline double maths_ArcTan (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::atan (x));
}
/// The greatest whole number that is not above x.
inline double maths_Floor (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::floor (x));
}
/// base to the power of exponent; null where that is no real number or a pole.
inline double maths_Power (double base, double exponent) noexcept {
  return maths_IsNull (base) || maths_IsNull (exponent)
             ? MATHS_Null
             : maths_NullUnlessFinite (std::pow (base, exponent));
}
/// The natural logarithm; null for 0 and below.
inline double maths_Log (double x) noexcept {
  return maths_IsNull (x) ? MATHS_Null : maths_NullUnlessFinite (std::log (x));
}
/// The angle of the direction (x, y), within minus to plus pi: positive for y of 0, of either sign.
/// Null when both are 0.
inline double maths_Atan2 (double y, double x) noexcept {
  if (maths_IsNull (y) || maths_IsNull (x) || (y == 0.0 && x == 0.0)) return MATHS_Null;
  const double absX = std::abs (x), absY = std::abs (y);
  double angle =
      absX < absY ? CONSTANT_PiOverTwo - std::atan (absX / absY) : std::atan (absY / absX);
  if (x < 0.0) angle = CONSTANT_Pi - angle;
  return maths_NullUnlessFinite (y < 0.0 ? -angle : angle);
}

}  // namespace clxml
