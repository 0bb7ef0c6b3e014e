// Comparisons within a tolerance, grades and matrices.
// Leans on GoogleTest and approx, grade, matrix.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "numerics/approx.h"
#include "numerics/grade.h"
#include "numerics/maths.h"
#include "numerics/matrix.h"
#include "support/hearing.h"

namespace clxml {
namespace {

using testing::Hearing;

constexpr double null = MATHS_Null;

TEST (Approx, ComparesWithinItsToleranceAndKnowsNulls) {
  Hearing hearing;
  struct Case {
    double a, b, delta;
    const char* holds;  // of EQ NE LT GT LE GE, in this order
  };
  for (const Case& c : {Case{1.0, 1.0, 0.0005, "+---++"}, Case{1.0, 0.9996, 0.0005, "+---++"},
                        Case{1.0, 1.0004, 0.0005, "+---++"}, Case{1.0, 1.0006, 0.0005, "-++-+-"},
                        Case{1.0, 0.9994, 0.0005, "-+-+-+"}, Case{0.0, -0.0, 0.0005, "+---++"},
                        Case{2.0, 2.25, 0.25, "+---++"},  // exactly delta apart
                        Case{null, null, 0.0005, "+-----"}, Case{null, 3.0, 0.0005, "-+----"},
                        Case{-3.0, null, 0.0005, "-+----"}}) {
    std::string holds;
    for (const approx_Operator op : {EQ, NE, LT, GT, LE, GE})
      holds += approx (c.a, op, c.b, c.delta) ? '+' : '-';
    EXPECT_EQ (holds, c.holds) << c.a << " and " << c.b << " within " << c.delta;
  }
  EXPECT_TRUE (approx_Decimals (1.0, EQ, 1.009, 2));
  EXPECT_FALSE (approx_Decimals (1.0, EQ, 1.011, 2));
  EXPECT_FALSE (approx (1.0, static_cast<approx_Operator> (6), 1.0));
  approx (1.0, EQ, 1.0, 0.0);
  approx (1.0, EQ, 1.0, 1.0);
  EXPECT_EQ (hearing.TakeAssertions (), (std::vector<std::string>{"delta > 0.0", "delta < 1"}));
}

TEST (Grade, GivesHeightsAndDistancesWithTheVerticalSetApart) {
  Hearing hearing;
  struct Case {
    double grade, value, height, horizontal;
  };
  for (const Case& c :
       {Case{0.0, 5.0, 0.0, null}, Case{std::atan (0.04), 50.0, 2.0, 1250.0},
        Case{std::atan (-0.5), 8.0, -4.0, -16.0}, Case{GRADE_Up - 1e-6, 5.0, 5.0, 0.0},
        Case{GRADE_Down + 1e-6, 5.0, -5.0, 0.0}, Case{GRADE_Up + 9e-6, 5.0, 5.0, 0.0},
        Case{GRADE_Up - 5e-5, 5.0, 5.0, null}, Case{null, 5.0, null, null},
        Case{0.1, null, null, null}}) {
    const double height = grade_Height (c.grade, c.value);
    const double horizontal = grade_Horizontal (c.grade, c.value);
    EXPECT_TRUE (approx (height, EQ, c.height, 1e-12)) << c.grade << ": " << height;
    EXPECT_TRUE (approx (horizontal, EQ, c.horizontal, 1e-9)) << c.grade << ": " << horizontal;
  }
  grade_Height (1.6, 1.0);
  grade_Horizontal (-1.6, 1.0);
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"(!(*grade > GRADE_Up)) && (!(*grade < GRADE_Down))",
                                       "(!(grade > GRADE_Up)) && (!(grade < GRADE_Down))"}));
  EXPECT_FALSE (grade_IsValid (GRADE_Up + 2e-5));
  EXPECT_FALSE (grade_IsValid (null));
}

void Fill (matrix& m, int16_t rows, int16_t cols, std::initializer_list<double> values) {
  ASSERT_TRUE (matrix_Create (rows, cols, m));
  int16_t at = 0;
  for (const double value : values) {
    matrix_Set (m, static_cast<int16_t> (at / cols), static_cast<int16_t> (at % cols), value);
    at++;
  }
}

TEST (Matrix, InvertsWhatItsProductWithTheInverseProves) {
  Hearing hearing;
  std::mt19937 random (20);
  std::uniform_real_distribution<double> element (-10.0, 10.0);
  for (const int16_t n : {int16_t (1), int16_t (2), int16_t (7), int16_t (12)}) {
    matrix m, inverse, product;
    ASSERT_TRUE (matrix_Create (n, n, m) && matrix_Create (n, n, inverse) &&
                 matrix_Create (n, n, product));
    for (int16_t row = 0; row < n; row++)
      for (int16_t col = 0; col < n; col++) matrix_Set (m, row, col, element (random));
    if (n > 1) matrix_Set (m, 0, 0, 0.0);  // the first pivot must come from below
    ASSERT_EQ (matrix_Invert (m, inverse), MATRIX_Solved);
    matrix_Multiply (m, inverse, product);
    for (int16_t row = 0; row < n; row++)
      for (int16_t col = 0; col < n; col++)
        EXPECT_NEAR (matrix_Get (product, row, col), row == col, 1e-10) << n;
  }
  matrix singular, inverse;
  Fill (singular, 3, 3, {1, 0, 2, 3, 0, 4, 5, 0, 7});
  Fill (inverse, 3, 3, {});
  EXPECT_EQ (matrix_Invert (singular, inverse), MATRIX_Singular);
  EXPECT_EQ (matrix_Get (singular, 2, 2), 7.0);
}

// The straight line y = 2.5 + 0.75 x through four points that lie off it by +1, -1, -1, +1 at
// x = 0, 1, 2, 3: by symmetry the residuals do not change the slope and sum to nothing.
TEST (Matrix, FitsAStraightLine) {
  Hearing hearing;
  matrix design, observations, solution;
  Fill (design, 4, 2, {1, 0, 1, 1, 1, 2, 1, 3});
  Fill (observations, 4, 1, {3.5, 2.25, 3.0, 5.75});
  Fill (solution, 2, 1, {});
  ASSERT_EQ (matrix_LeastSquares (design, solution, observations), MATRIX_Solved);
  EXPECT_NEAR (matrix_Get (solution, 0, 0), 2.5, 1e-12);
  EXPECT_NEAR (matrix_Get (solution, 1, 0), 0.75, 1e-12);
  Fill (design, 4, 2, {1, 2, 1, 2, 1, 2, 1, 2});
  EXPECT_EQ (matrix_LeastSquares (design, solution, observations), MATRIX_Singular);
}

TEST (Matrix, RefusesShapesThatDoNotFit) {
  Hearing hearing;
  matrix two, wide;
  Fill (two, 2, 2, {1, 2, 3, 4});
  Fill (wide, 2, 3, {});
  matrix_Add (two, wide, two);
  matrix_Transpose (wide, two);
  matrix_Copy (wide, two);
  matrix_Set (two, 0, -1, 9.0);
  matrix_Multiply (wide, two, wide);
  EXPECT_EQ (matrix_Invert (wide, two), MATRIX_Singular);
  EXPECT_EQ (matrix_LeastSquares (wide, wide, wide), MATRIX_Singular);
  EXPECT_EQ (matrix_Get (two, 2, 0), null);
  EXPECT_EQ (hearing.TakeAssertions ().size (), 7u);
  for (int16_t i = 0; i < 4; i++) EXPECT_EQ (matrix_Get (two, i / 2, i % 2), i + 1.0);
  EXPECT_FALSE (matrix_Create (0, 3, two) || matrix_Create (3, -1, two));
}

}  // namespace
}  // namespace clxml
