// Comparing numbers within a tolerance.
// Stations, offsets and elevations are equal when no surveyor could tell them apart; a null is
// equal to a null and to nothing else. Leans on maths and str.
#pragma once

namespace clxml {

/// How two numbers are compared; d is the first minus the second.
enum approx_Operator : int {
  EQ = 0,  ///< |d| <= delta
  NE = 1,  ///< |d| > delta
  LT = 2,  ///< d < -delta
  GT = 3,  ///< d > delta
  LE = 4,  ///< d <= delta
  GE = 5,  ///< d >= -delta
};

/// The tolerance of a comparison that names none: half a millimetre.
inline constexpr double APPROX_Delta = 0.0005;

/// True when the comparison holds within delta, which has the unit of the numbers and lies strictly
/// between 0 and 1 (asserts "delta > 0.0" and "delta < 1"). With a null on either side EQ is exact
/// equality, NE its opposite, and everything else false. An operator outside the six is false.
bool approx (double a, approx_Operator op, double b, double delta = APPROX_Delta);

/// The same within 10 to the power of -decimals, decimals being 1 or more.
bool approx_Decimals (double a, approx_Operator op, double b, int decimals);

}  // namespace clxml
