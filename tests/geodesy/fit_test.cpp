// The fit of seven parameters: what is known is found again, what is held stays, what is not
// determined is said. Leans on GoogleTest.
#include "geodesy/fit.h"

#include <gtest/gtest.h>

#include <cmath>

namespace clxml {
namespace {

using Points = std::vector<csib_Cartesian>;

// A network of some 60 km in central Europe.
const Points network = {{4075580.0, 931854.0, 4801568.0},
                        {4081941.0, 891034.0, 4804020.0},
                        {4060188.0, 912870.0, 4817605.0},
                        {4049203.0, 944211.0, 4821160.0},
                        {4091880.0, 925050.0, 4789410.0}};

Points Moved (const csib_SevenParameters& p, const Points& points) {
  const csib_Rotation m = csib_RotationMatrix (p.RX, p.RY, p.RZ);
  Points out;
  for (const csib_Cartesian& x : points)
    out.push_back ({p.S * (m[0][0] * x.X + m[0][1] * x.Y + m[0][2] * x.Z) + p.TX,
                    p.S * (m[1][0] * x.X + m[1][1] * x.Y + m[1][2] * x.Z) + p.TY,
                    p.S * (m[2][0] * x.X + m[2][1] * x.Y + m[2][2] * x.Z) + p.TZ});
  return out;
}

TEST (SevenParameterFit, FindsWhatMovedTheNetwork) {
  for (const csib_SevenParameters& known :
       {csib_SevenParameters{-582.0, -105.0, -414.0, 5e-6, 1.7e-6, -1.5e-5, 0.9999917},
        {1e5, -2e5, 3e5, 0.3, -0.5, 0.8, 1.25}}) {
    csib_SevenParameters found;
    Points residuals (network.size ());
    csib_Status status = CSIB_Singular;
    // 1e-6 m is a few units in the last place of the coordinates.
    ASSERT_TRUE (csib_FitSevenParameter (network, Moved (known, network), found, residuals, 1e-6,
                                         20, nullptr, CSIB_StopAtSmallResidual, &status));
    EXPECT_EQ (status, CSIB_Ok);
    EXPECT_NEAR (found.RX, known.RX, 1e-12);
    EXPECT_NEAR (found.RY, known.RY, 1e-12);
    EXPECT_NEAR (found.RZ, known.RZ, 1e-12);
    EXPECT_NEAR (found.S, known.S, 1e-12);
    // Over 60 km a rotation and a translation are nearly one: 1e-12 of 6400 km.
    EXPECT_NEAR (found.TX, known.TX, 2e-5);
    EXPECT_NEAR (found.TZ, known.TZ, 2e-5);
    for (const csib_Cartesian& r : residuals) EXPECT_LT (std::hypot (r.X, r.Y, r.Z), 1e-6);
  }
}

TEST (SevenParameterFit, SpreadsWhatDoesNotFit) {
  const csib_SevenParameters known{-582.0, -105.0, -414.0, 5e-6, 1.7e-6, -1.5e-5, 0.9999917};
  Points to = Moved (known, network);
  to[0].X += 0.03, to[1].Y -= 0.02, to[4].Z += 0.01;
  csib_SevenParameters found;
  Points residuals (network.size ());
  // The residuals never fall below the tolerance, but they come to rest.
  csib_Status status = CSIB_Ok;
  EXPECT_FALSE (csib_FitSevenParameter (network, to, found, residuals, 1e-6, 10, nullptr,
                                        CSIB_StopAtSmallResidual, &status));
  EXPECT_EQ (status, CSIB_DidNotConverge);
  EXPECT_NEAR (found.S, known.S, 1e-6);
  found = {};
  EXPECT_TRUE (csib_FitSevenParameter (network, to, found, residuals, 1e-6, 10, nullptr,
                                       CSIB_StopAtSteadyResidual));
  csib_Cartesian sum;
  double squares = 0.0;
  for (const csib_Cartesian& r : residuals) {
    sum = {sum.X + r.X, sum.Y + r.Y, sum.Z + r.Z};
    squares += r.X * r.X + r.Y * r.Y + r.Z * r.Z;
  }
  // Least squares leave no translation, and less than what was put in.
  EXPECT_NEAR (std::hypot (sum.X, sum.Y, sum.Z), 0.0, 1e-6);
  EXPECT_GT (squares, 1e-5);
  EXPECT_LT (squares, 0.03 * 0.03 + 0.02 * 0.02 + 0.01 * 0.01);
}

TEST (SevenParameterFit, HoldsWhatIsKnownBefore) {
  const csib_SevenParameters known{100.0, 50.0, -25.0, 0.0, 0.0, 2e-6, 1.0};
  csib_FitPriors priors;
  priors.Mask = CSIB_FitRX | CSIB_FitRY | CSIB_FitS;
  priors.Weights.fill (CSIB_FixedWeight);
  csib_SevenParameters found{.RX = 1e-7};
  Points residuals (network.size ());
  csib_FitSevenParameter (network, Moved (known, network), found, residuals, 1e-6, 10, &priors,
                          CSIB_StopAtSteadyResidual);
  EXPECT_EQ (found.RX, 1e-7);
  EXPECT_NEAR (found.RY, 0.0, 1e-60);
  EXPECT_EQ (found.S, 1.0);
  EXPECT_NEAR (found.RZ, 2e-6, 2e-7);
  // Held translations are taken from the turns' share.
  priors.Mask = CSIB_FitTX | CSIB_FitTY | CSIB_FitTZ;
  found = {100.0, 50.0, -25.0, 0.0, 0.0, 0.0, 1.001};
  EXPECT_TRUE (csib_FitSevenParameter (network, Moved (known, network), found, residuals, 1e-6, 10,
                                       &priors));
  EXPECT_EQ (found.TZ, -25.0);
  EXPECT_NEAR (found.RZ, 2e-6, 1e-14);
  EXPECT_NEAR (found.S, 1.0, 1e-14);
  // Two points determine four of the seven, if the others are held, and not all seven.
  const Points two (network.begin (), network.begin () + 2);
  priors.Mask = CSIB_FitRX | CSIB_FitRY | CSIB_FitS;
  EXPECT_TRUE (
      csib_FitSevenParameter (two, Moved (known, two), found = {}, residuals, 1e-6, 10, &priors));
  EXPECT_NEAR (found.RZ, 2e-6, 1e-10);
  csib_Status status = CSIB_Ok;
  EXPECT_FALSE (csib_FitSevenParameter (two, Moved (known, two), found, residuals, 1e-6, 10,
                                        nullptr, CSIB_StopAtSmallResidual, &status));
  EXPECT_EQ (status, CSIB_Singular);
  EXPECT_NEAR (found.RZ, 2e-6, 1e-10);  // as it was
  EXPECT_FALSE (csib_FitSevenParameter (network, two, found, residuals, 1e-6, 10, nullptr,
                                        CSIB_StopAtSmallResidual, &status));
  EXPECT_EQ (status, CSIB_NoOutput);
}

TEST (CsibMatrix, MultipliesInvertsAndRefusesOtherShapes) {
  csib_Matrix a (3, 3), inverse (3, 3), product (3, 3), difference (3, 3), wide (2, 3), tall (3, 2);
  const double values[3][3] = {{4.0, 2.0, -2.0}, {2.0, 10.0, 4.0}, {-2.0, 4.0, 9.0}};
  for (std::size_t i = 0; i < 3; i++)
    for (std::size_t j = 0; j < 3; j++) a[i][j] = inverse[i][j] = values[i][j];
  ASSERT_TRUE (csib_InvertSymmetric (inverse));
  ASSERT_TRUE (csib_Multiply (a, inverse, product));
  csib_SetIdentity (difference);
  ASSERT_TRUE (csib_Subtract (product, difference, difference));
  for (const double element : difference.Elements) EXPECT_NEAR (element, 0.0, 1e-15);
  wide[0][2] = 5.0;
  ASSERT_TRUE (csib_Transpose (wide, tall));
  EXPECT_EQ (tall[2][0], 5.0);
  csib_Vector three (3), two (2);
  three[2] = 2.0;
  ASSERT_TRUE (csib_Multiply (wide, three, two));
  EXPECT_EQ (two[0], 10.0);

  EXPECT_FALSE (csib_Multiply (a, wide, product) || csib_Multiply (a, product, product) ||
                csib_Multiply (wide, two, three) || csib_Add (wide, tall, wide) ||
                csib_Add (two, three, two) || csib_Subtract (two, two, three) ||
                csib_Transpose (wide, a) || csib_Transpose (a, a) || csib_SetIdentity (wide) ||
                csib_InvertSymmetric (wide));
  a[2][2] = 3.0;  // indefinite
  EXPECT_FALSE (csib_InvertSymmetric (a));
  csib_Clear (a);
  EXPECT_FALSE (csib_InvertSymmetric (a));
}

}  // namespace
}  // namespace clxml
