// Comparing numbers within a tolerance.
// One table of six comparisons. Leans on maths and str.
#include "numerics/approx.h"

#include <cmath>

#include "numerics/maths.h"
#include "str.h"

namespace clxml {

bool approx (double a, approx_Operator op, double b, double delta) {
  Assert (delta > 0.0, "delta > 0.0");
  Assert (delta < 1, "delta < 1");
  if (maths_IsNull (a) || maths_IsNull (b)) return op == EQ ? a == b : op == NE && a != b;
  const double d = a - b;
  switch (op) {
    case EQ:
      return std::abs (d) <= delta;
    case NE:
      return std::abs (d) > delta;
    case LT:
      return d < -delta;
    case GT:
      return d > delta;
    case LE:
      return d <= delta;
    case GE:
      return d >= -delta;
  }
  return false;
}

bool approx_Decimals (double a, approx_Operator op, double b, int decimals) {
  return approx (a, op, b, std::pow (10.0, -decimals));
}

}  // namespace clxml
