// Grades as angles.
// Heights and distances by the tangent, with the vertical set apart. Leans on maths and str.
#include "numerics/grade.h"

#include <cmath>

#include "numerics/maths.h"
#include "str.h"

namespace clxml {

namespace {

constexpr double verticalWithin = 1e-5;
constexpr double leastCosine = 0.0001;

bool IsUp (double grade) { return std::abs (grade - GRADE_Up) <= verticalWithin; }
bool IsDown (double grade) { return std::abs (grade - GRADE_Down) <= verticalWithin; }

}  // namespace

bool grade_IsValid (double grade) {
  return !maths_IsNull (grade) && grade <= GRADE_Up + verticalWithin &&
         grade >= GRADE_Down - verticalWithin;
}

double grade_Height (double grade, double distance) {
  if (maths_IsNull (grade) || maths_IsNull (distance)) return MATHS_Null;
  Assert (grade_IsValid (grade), "(!(*grade > GRADE_Up)) && (!(*grade < GRADE_Down))");
  if (IsUp (grade)) return distance;
  if (IsDown (grade)) return -distance;
  if (std::abs (std::cos (grade)) < leastCosine) return distance;
  return std::tan (grade) * distance;
}

double grade_Horizontal (double grade, double height) {
  if (maths_IsNull (grade) || maths_IsNull (height)) return MATHS_Null;
  Assert (grade_IsValid (grade), "(!(grade > GRADE_Up)) && (!(grade < GRADE_Down))");
  if (IsUp (grade) || IsDown (grade)) return 0.0;
  const double rise = std::tan (grade);
  if (std::abs (std::cos (grade)) < leastCosine || rise == 0.0) return MATHS_Null;
  return height / rise;
}

}  // namespace clxml
