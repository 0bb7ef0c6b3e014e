// Seven parameters of a datum estimated from common points, and the small algebra for it.
// For a host that derives a datum of its own; no transform calls it. Leans on datum.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "geodesy/datum.h"

namespace clxml {

/// A vector of doubles; made with its length, freed with itself.
struct csib_Vector {
  csib_Vector () = default;
  explicit csib_Vector (std::size_t length) : Elements (length, 0.0) {}

  std::size_t Length () const noexcept { return Elements.size (); }
  double& operator[] (std::size_t i) noexcept { return Elements[i]; }
  double operator[] (std::size_t i) const noexcept { return Elements[i]; }

  std::vector<double> Elements;
};

/// A dense matrix of doubles, row after row; made with its shape, freed with itself.
struct csib_Matrix {
  csib_Matrix () = default;
  csib_Matrix (std::size_t rows, std::size_t columns)
      : Rows (rows), Columns (columns), Elements (rows * columns, 0.0) {}

  double* operator[] (std::size_t row) noexcept { return Elements.data () + row * Columns; }
  const double* operator[] (std::size_t row) const noexcept {
    return Elements.data () + row * Columns;
  }

  std::size_t Rows = 0;
  std::size_t Columns = 0;
  std::vector<double> Elements;
};

// Element operations. `out` has its shape already and is no operand of a product or a transpose;
// false, and nothing is done, when the shapes do not match.

void csib_Clear (csib_Vector& v) noexcept;
void csib_Clear (csib_Matrix& m) noexcept;
bool csib_SetIdentity (csib_Matrix& m) noexcept;
bool csib_Add (const csib_Vector& a, const csib_Vector& b, csib_Vector& out) noexcept;
bool csib_Add (const csib_Matrix& a, const csib_Matrix& b, csib_Matrix& out) noexcept;
bool csib_Subtract (const csib_Vector& a, const csib_Vector& b, csib_Vector& out) noexcept;
bool csib_Subtract (const csib_Matrix& a, const csib_Matrix& b, csib_Matrix& out) noexcept;
bool csib_Multiply (const csib_Matrix& a, const csib_Vector& b, csib_Vector& out) noexcept;
bool csib_Multiply (const csib_Matrix& a, const csib_Matrix& b, csib_Matrix& out) noexcept;
bool csib_Transpose (const csib_Matrix& m, csib_Matrix& out) noexcept;
/// The inverse of a symmetric positive definite matrix in its place, from its lower triangle.
/// False, with the content lost, when it is not square or not positive definite.
/// Source: Golub and Van Loan, Matrix Computations (4th edition, 2013), algorithm 4.2.1.
bool csib_InvertSymmetric (csib_Matrix& m) noexcept;

/// When the rounds of the fit stop.
enum csib_FitStop : uint8_t {
  CSIB_StopAtSteadyResidual = 0,  ///< the largest residual changes by less than the tolerance
  CSIB_StopAtSmallResidual = 1,   ///< the largest residual is itself below the tolerance
};

/// Bits of the parameters.
enum csib_FitParameter : uint8_t {
  CSIB_FitTX = 1,
  CSIB_FitTY = 2,
  CSIB_FitTZ = 4,
  CSIB_FitRX = 8,
  CSIB_FitRY = 16,
  CSIB_FitRZ = 32,
  CSIB_FitS = 64,
};

/// The weight that holds a parameter at its given value.
inline constexpr double CSIB_FixedWeight = 1e+70;

/// What is known of the parameters before the fit.
struct csib_FitPriors {
  uint8_t Mask = 0;                 ///< csib_FitParameter bits: which of the given values count
  std::array<double, 7> Weights{};  ///< 1/variance (points have weight 1), TX to S
};

/// Estimates the parameters of to = S M from + T from `count` pairs by least squares (Gauss-Newton
/// with the exact derivatives of M; every pair has weight 1 in every axis), starting at the given
/// ones. `residuals` has a place for every pair and gets to - (S M from + T) as the last round
/// found it, before its own correction. True on success; otherwise `status`, if there is one, says
/// CSIB_DidNotConverge after `maxRounds` rounds, with the last parameters stored; CSIB_Singular
/// when the points do not determine the parameters, CSIB_NoOutput when `to` or `residuals` is
/// shorter than `from`, or CSIB_OutOfMemory, with the parameters as they were.
/// Source: Ghilani, Adjustment Computations (6th edition, 2017), chapter 18.
bool csib_FitSevenParameter (std::span<const csib_Cartesian> from,
                             std::span<const csib_Cartesian> to, csib_SevenParameters& parameters,
                             std::span<csib_Cartesian> residuals, double tolerance, int maxRounds,
                             const csib_FitPriors* priors = nullptr,
                             csib_FitStop stop = CSIB_StopAtSmallResidual,
                             csib_Status* status = nullptr);

}  // namespace clxml
