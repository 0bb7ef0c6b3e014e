// Arithmetic of numbers that may be absent.
// Leans on GoogleTest.
#include "numerics/maths.h"

#include <gtest/gtest.h>

#include <limits>

namespace clxml {
namespace {

constexpr double null = MATHS_Null;
constexpr double nan = std::numeric_limits<double>::quiet_NaN ();
constexpr double inf = std::numeric_limits<double>::infinity ();

TEST (Maths, GivesNullInPlaceOfWhatIsNoNumber) {
  const double nearNull = std::bit_cast<double> (0x7FE1CCF300000001ull);
  const struct {
    const char* name;
    double value;
    double expected;
  } cases[] = {
      {"add", maths_Add (1.5, 2.0), 3.5},
      {"add null", maths_Add (nearNull, 2.0), null},
      {"overflow", maths_Multiply (1e300, 1e300), null},
      {"infinity less itself", maths_Subtract (inf, inf), null},
      {"by zero", maths_Divide (1.0, -0.0), null},
      {"negative root", maths_SquareRoot (-1e-300), null},
      {"arc sine at 1", maths_ArcSin (1.0), CONSTANT_PiOverTwo},
      {"arc sine beyond", maths_ArcSin (std::nextafter (1.0, 2.0)), null},
      {"arc cosine beyond", maths_ArcCos (-1.0000001), null},
      {"sine of infinity", maths_Sin (inf), null},
      {"log 0", maths_Log (0.0), null},
      {"log e", maths_Log (std::exp (2.0)), 2.0},
      {"root by power", maths_Power (-8.0, 1.0 / 3.0), null},
      {"power", maths_Power (-2.0, 3.0), -8.0},
      {"null power", maths_Power (null, 0.0), null},
      {"floor", maths_Floor (-0.5), -1.0},
      {"no number", maths_Negate (nan), null},
      {"atan2 origin", maths_Atan2 (0.0, -0.0), null},
      {"atan2 west", maths_Atan2 (-0.0, -1.0), CONSTANT_Pi},
      {"atan2 south", maths_Atan2 (-2.0, 0.0), -CONSTANT_PiOverTwo},
      {"atan2 third quadrant", maths_Atan2 (-1.0, -2.0), std::atan2 (-1.0, -2.0)},
      {"atan2 second quadrant, steep", maths_Atan2 (5.0, -2.0), std::atan2 (5.0, -2.0)},
  };
  for (const auto& c : cases) EXPECT_NEAR (c.value, c.expected, 4e-15) << c.name;
  double x = 3.0;
  maths_AddTo (x, 2.0);
  maths_SubtractFrom (x, 1.0);
  EXPECT_EQ (x, 4.0);
  maths_SubtractFrom (x, null);
  EXPECT_TRUE (maths_IsNull (x));
}

}  // namespace
}  // namespace clxml
