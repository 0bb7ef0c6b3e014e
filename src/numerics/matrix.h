// A plain dense matrix of doubles.
// Gaussian inversion and least squares for small systems. Leans on str.
#pragma once

#include <cstdint>
#include <memory>

namespace clxml {

/// Rows and columns are counted from 0. Each row is allocated by itself, so that two rows are
/// exchanged by exchanging two pointers; the matrix frees what it holds when it goes.
struct matrix {
  matrix () = default;
  matrix (const matrix&) = delete;  // matrix_Copy copies
  matrix& operator= (const matrix&) = delete;

  int16_t Rows = 0;
  int16_t Cols = 0;
  std::unique_ptr<std::unique_ptr<double[]>[]> Data;  ///< Rows pointers; null in an empty matrix
};

/// What an inversion or a least squares solution came to.
enum matrix_Result : int { MATRIX_NoMemory = 0, MATRIX_Singular = 1, MATRIX_Solved = 2 };

/// Gives out that many rows and columns, all elements 0.0, in place of what it held. False, and
/// out is empty, when there is no memory or a count is below 1.
bool matrix_Create (int16_t rows, int16_t cols, matrix& out);
/// Frees the rows and Data and leaves an empty matrix.
void matrix_Free (matrix& m);

/// An element. Asserts "row < matrix->Rows" and "col < matrix->Cols"; outside, Get answers null and
/// Set does nothing.
double matrix_Get (const matrix& m, int16_t row, int16_t col);
void matrix_Set (matrix& m, int16_t row, int16_t col, double value);

/// Sets all elements to 0.0; asserts "matrix->Data".
void matrix_Zero (matrix& m);
/// Ones on the diagonal, 0.0 elsewhere; asserts "matrix_IsSquare (matrix)" and then does nothing.
void matrix_Identity (matrix& m);
/// Copies the elements; asserts
/// "matrix_RowsMatch (source, dest) && matrix_ColsMatch (source, dest)" and then does nothing.
void matrix_Copy (const matrix& source, matrix& dest);

/// As many rows in both; as many columns in both; as many rows in a as columns in b; as many rows
/// as columns.
bool matrix_RowsMatch (const matrix& a, const matrix& b);
bool matrix_ColsMatch (const matrix& a, const matrix& b);
bool matrix_RowsMatchCols (const matrix& a, const matrix& b);
bool matrix_IsSquare (const matrix& a);

/// The sum, element by element; all three have one shape, which is asserted
/// ("matrix_RowsMatch (m1, m2) && matrix_ColsMatch (m1, m2)" and the same with result); with any
/// other nothing is done. The result may be one of the two.
void matrix_Add (const matrix& m1, const matrix& m2, matrix& result);
/// m1 times m2. Asserts "matrix_RowsMatchCols (m2, m1)" and
/// "matrix_RowsMatch (m1, result) && matrix_ColsMatch (m2, result)"; otherwise nothing is done. The
/// result is a third matrix.
void matrix_Multiply (const matrix& m1, const matrix& m2, matrix& result);
/// The transpose into another matrix. Asserts "matrix_RowsMatchCols (matrix, tMatrix) &&
/// matrix_RowsMatchCols (tMatrix, matrix)" (in one line) and otherwise does nothing.
void matrix_Transpose (const matrix& m, matrix& tMatrix);

/// The inverse by Gauss-Jordan elimination with partial pivoting (Press et al., Numerical Recipes,
/// 2nd edition 1992, section 2.1). MATRIX_Singular when a pivot is exactly 0.0 or no number.
/// Asserts "matrix_IsSquare (matrix) && matrix_IsSquare (inverse) && matrix_RowsMatch (matrix,
/// inverse)" (in one line) and otherwise answers MATRIX_Singular. The matrix is left as it was; the
/// inverse is the matrix's own only when solved.
matrix_Result matrix_Invert (const matrix& m, matrix& inverse);

/// The least squares solution of design * solution = observations by the normal equations,
/// solution = ((A'A)^-1 A') b: the design has a row per observation and a column per unknown,
/// observations and solution are columns. The solution is set only when MATRIX_Solved comes back.
/// Asserts the shapes ("matrix_RowsMatch (design, observations)" and
/// "matrix_RowsMatchCols (solution, design)") and otherwise answers MATRIX_Singular.
matrix_Result matrix_LeastSquares (const matrix& design, matrix& solution,
                                   const matrix& observations);

}  // namespace clxml
