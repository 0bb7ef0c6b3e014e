// A plain dense matrix of doubles.
// Elimination works on rows and swaps pointers, never elements. Leans on maths and str.
#include "numerics/matrix.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "numerics/maths.h"
#include "str.h"

namespace clxml {

namespace {

double* Row (const matrix& m, int row) { return m.Data[static_cast<std::size_t> (row)].get (); }

bool Holds (const matrix& m, int row, int col) {
  const bool isRow = Assert (row < m.Rows, "row < matrix->Rows");
  const bool isCol = Assert (col < m.Cols, "col < matrix->Cols");
  return isRow && isCol && row >= 0 && col >= 0;
}

// Adds factor times row `from` to row `to`.
void AddRow (matrix& m, int from, int to, double factor) {
  const double* source = Row (m, from);
  double* dest = Row (m, to);
  for (int col = 0; col < m.Cols; col++) dest[col] += factor * source[col];
}

// Clears the element of row `to` in column c by row c, in both matrices.
void Clear (matrix& work, matrix& inverse, int c, int to) {
  const double factor = -Row (work, to)[c];
  AddRow (work, c, to, factor);
  AddRow (inverse, c, to, factor);
}

bool SameShape (const matrix& a, const matrix& b) {
  return matrix_RowsMatch (a, b) && matrix_ColsMatch (a, b);
}

}  // namespace

bool matrix_Create (int16_t rows, int16_t cols, matrix& out) {
  matrix_Free (out);
  if (rows < 1 || cols < 1) return false;
  const auto n = static_cast<std::size_t> (rows);
  out.Data.reset (new (std::nothrow) std::unique_ptr<double[]>[n]);
  if (!out.Data) return false;
  for (std::size_t row = 0; row < n; row++) {
    out.Data[row].reset (new (std::nothrow) double[static_cast<std::size_t> (cols)]());
    if (!out.Data[row]) {
      out.Data.reset ();
      return false;
    }
  }
  out.Rows = rows;
  out.Cols = cols;
  return true;
}

void matrix_Free (matrix& m) {
  m.Data.reset ();
  m.Rows = m.Cols = 0;
}

double matrix_Get (const matrix& m, int16_t row, int16_t col) {
  return Holds (m, row, col) ? Row (m, row)[col] : MATHS_Null;
}

void matrix_Set (matrix& m, int16_t row, int16_t col, double value) {
  if (Holds (m, row, col)) Row (m, row)[col] = value;
}

void matrix_Zero (matrix& m) {
  Assert (m.Data != nullptr, "matrix->Data");
  for (int row = 0; row < m.Rows; row++) std::fill_n (Row (m, row), m.Cols, 0.0);
}

void matrix_Identity (matrix& m) {
  if (!Assert (matrix_IsSquare (m), "matrix_IsSquare (matrix)")) return;
  matrix_Zero (m);
  for (int row = 0; row < m.Rows; row++) Row (m, row)[row] = 1.0;
}

void matrix_Copy (const matrix& source, matrix& dest) {
  if (!Assert (SameShape (source, dest),
               "matrix_RowsMatch (source, dest) && matrix_ColsMatch (source, dest)"))
    return;
  for (int row = 0; row < source.Rows; row++)
    std::copy_n (Row (source, row), source.Cols, Row (dest, row));
}

bool matrix_RowsMatch (const matrix& a, const matrix& b) { return a.Rows == b.Rows; }
bool matrix_ColsMatch (const matrix& a, const matrix& b) { return a.Cols == b.Cols; }
bool matrix_RowsMatchCols (const matrix& a, const matrix& b) { return a.Rows == b.Cols; }
bool matrix_IsSquare (const matrix& a) { return a.Rows == a.Cols; }

void matrix_Add (const matrix& m1, const matrix& m2, matrix& result) {
  if (!Assert (SameShape (m1, m2), "matrix_RowsMatch (m1, m2) && matrix_ColsMatch (m1, m2)") ||
      !Assert (SameShape (m1, result),
               "matrix_RowsMatch (m1, result) && matrix_ColsMatch (m1, result)"))
    return;
  for (int row = 0; row < m1.Rows; row++)
    for (int col = 0; col < m1.Cols; col++)
      Row (result, row)[col] = Row (m1, row)[col] + Row (m2, row)[col];
}

void matrix_Multiply (const matrix& m1, const matrix& m2, matrix& result) {
  if (!Assert (matrix_RowsMatchCols (m2, m1), "matrix_RowsMatchCols (m2, m1)") ||
      !Assert (matrix_RowsMatch (m1, result) && matrix_ColsMatch (m2, result),
               "matrix_RowsMatch (m1, result) && matrix_ColsMatch (m2, result)"))
    return;
  for (int row = 0; row < m1.Rows; row++)
    for (int col = 0; col < m2.Cols; col++) {
      double sum = 0.0;
      for (int k = 0; k < m1.Cols; k++) sum += Row (m1, row)[k] * Row (m2, k)[col];
      Row (result, row)[col] = sum;
    }
}

void matrix_Transpose (const matrix& m, matrix& tMatrix) {
  if (!Assert (matrix_RowsMatchCols (m, tMatrix) && matrix_RowsMatchCols (tMatrix, m),
               "matrix_RowsMatchCols (matrix, tMatrix) && matrix_RowsMatchCols (tMatrix, matrix)"))
    return;
  for (int row = 0; row < m.Rows; row++)
    for (int col = 0; col < m.Cols; col++) Row (tMatrix, col)[row] = Row (m, row)[col];
}

matrix_Result matrix_Invert (const matrix& m, matrix& inverse) {
  if (!Assert (matrix_IsSquare (m) && matrix_IsSquare (inverse) && matrix_RowsMatch (m, inverse),
               "matrix_IsSquare (matrix) && matrix_IsSquare (inverse) && "
               "matrix_RowsMatch (matrix, inverse)"))
    return MATRIX_Singular;
  matrix work;
  if (!matrix_Create (m.Rows, m.Cols, work)) return MATRIX_NoMemory;
  matrix_Copy (m, work);
  matrix_Identity (inverse);
  const int n = work.Rows;
  for (int c = 0; c < n; c++) {
    int pivotRow = c;
    for (int row = c + 1; row < n; row++)
      if (std::abs (Row (work, row)[c]) > std::abs (Row (work, pivotRow)[c])) pivotRow = row;
    std::swap (work.Data[static_cast<std::size_t> (c)],
               work.Data[static_cast<std::size_t> (pivotRow)]);
    std::swap (inverse.Data[static_cast<std::size_t> (c)],
               inverse.Data[static_cast<std::size_t> (pivotRow)]);
    const double pivot = Row (work, c)[c];
    if (!(std::abs (pivot) > 0.0)) return MATRIX_Singular;
    for (int col = 0; col < n; col++) {
      Row (work, c)[col] /= pivot;
      Row (inverse, c)[col] /= pivot;
    }
    for (int row = c + 1; row < n; row++) Clear (work, inverse, c, row);
  }
  for (int c = n - 1; c > 0; c--)
    for (int row = c - 1; row >= 0; row--) Clear (work, inverse, c, row);
  return MATRIX_Solved;
}

matrix_Result matrix_LeastSquares (const matrix& design, matrix& solution,
                                   const matrix& observations) {
  if (!Assert (matrix_RowsMatch (design, observations),
               "matrix_RowsMatch (design, observations)") ||
      !Assert (matrix_RowsMatchCols (solution, design), "matrix_RowsMatchCols (solution, design)"))
    return MATRIX_Singular;
  matrix transpose, normal, inverse, weight;
  if (!matrix_Create (design.Cols, design.Rows, transpose) ||
      !matrix_Create (design.Cols, design.Cols, normal) ||
      !matrix_Create (design.Cols, design.Cols, inverse) ||
      !matrix_Create (design.Cols, design.Rows, weight))
    return MATRIX_NoMemory;
  matrix_Transpose (design, transpose);
  matrix_Multiply (transpose, design, normal);
  const matrix_Result result = matrix_Invert (normal, inverse);
  if (result != MATRIX_Solved) return result;
  matrix_Multiply (inverse, transpose, weight);
  matrix_Multiply (weight, observations, solution);
  return result;
}

}  // namespace clxml
