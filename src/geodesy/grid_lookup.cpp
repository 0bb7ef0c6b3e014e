// Looking a grid up: the nodes around a place, their decoded values, and what lies between them.
// Trusts the grid, which datum_GridOpen checked. Leans on csib_bytes and platform/file.
//
// A look-up whose nodes lie in the cached square reads nothing and allocates nothing; another one
// decodes a square of `Window` lines, which costs as many reads.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "geodesy/grid.h"

namespace clxml {

namespace {

constexpr double AtBound = 1e-10;
constexpr double AtNull = 1e-5;

double OntoBounds (double value, double low, double high) noexcept {
  if (std::abs (value - low) < AtBound) return low;
  if (std::abs (value - high) < AtBound) return high;
  return value;
}

// The first of `count` nodes around the place f of an axis, which is not negative.
int32_t FirstNode (double f, int32_t count, int32_t half, int32_t nodes) noexcept {
  auto low = static_cast<int32_t> (f);
  if (count % 2 == 0)
    low++;
  else if (f - low >= 0.5)
    low++;
  return std::clamp (low - half, 0, nodes - count);
}

// The value of an element; where a 10-byte one has the other order, it is turned as a whole.
template <class T, std::size_t Size = sizeof (T)>
double Value (const uint8_t* bytes, bool isSwapped) noexcept {
  T value;
  std::memcpy (&value, isSwapped ? bytes + (Size - sizeof (T)) : bytes, sizeof (T));
  return static_cast<double> (isSwapped ? csib_Turned (value) : value);
}

using ValueOf = double (*) (const uint8_t*, bool) noexcept;
constexpr ValueOf elements[] = {Value<int8_t>, Value<int16_t>, Value<int32_t>,
                                Value<float>,  Value<double>,  Value<double, 10>};

// One line of elements as they are stored; null when the file does not give it.
const uint8_t* Line (datum_Grid& grid, uint64_t first) {
  const std::size_t place = DATUM_GridHeaderSize + first * grid.ElementSize;
  if (!grid.InFile) return grid.Image.data () + place;
  const auto size = static_cast<uint32_t> (grid.LineBuffer.size ());
  uint32_t got = 0;
  grid.File.Seek (grid.BaseOffset + static_cast<uint32_t> (place));
  if (!grid.File.Read (grid.LineBuffer.data (), size, &got) || got != size) return nullptr;
  return grid.LineBuffer.data ();
}

// Decodes the square whose low corner is this node. On a failure no square is cached.
csib_Status Fill (datum_Grid& grid, int32_t colLow, int32_t rowLow) {
  const bool byColumns = grid.Has (DATUM_ColumnMajor);
  const int32_t window = grid.Window;
  const int32_t outerNodes = byColumns ? grid.Columns : grid.Rows;
  const int32_t innerNodes = byColumns ? grid.Rows : grid.Columns;
  const int32_t outerLow = byColumns ? colLow : rowLow;
  const int32_t innerLow = byColumns ? rowLow : colLow;
  const bool outerAscends = byColumns ? grid.ColumnsAscend : grid.RowsAscend;
  const bool innerAscends = byColumns ? grid.RowsAscend : grid.ColumnsAscend;
  const int32_t innerFirst = innerAscends ? innerLow : innerNodes - innerLow - window;
  const bool isSwapped = grid.InFile && grid.Swapped;
  const ValueOf value = elements[grid.ElementCode];
  const double divisor = grid.Has (DATUM_HasDivisor) ? grid.Divisor : 1.0;

  grid.WindowColLow = grid.WindowColHigh = grid.WindowRowLow = grid.WindowRowHigh = 0;
  for (int32_t i = 0; i < window; i++) {
    const int32_t outer = outerAscends ? outerLow + i : outerNodes - 1 - (outerLow + i);
    const uint8_t* const line =
        Line (grid, static_cast<uint64_t> (outer) * static_cast<uint64_t> (innerNodes) +
                        static_cast<uint64_t> (innerFirst));
    if (line == nullptr) return CSIB_WrongFormat;
    for (int32_t k = 0; k < window; k++) {
      const int32_t j = innerAscends ? k : window - 1 - k;
      const int32_t cell = byColumns ? j * window + i : i * window + j;
      grid.Cells[static_cast<std::size_t> (cell)] =
          value (line + static_cast<std::size_t> (k) * grid.ElementSize, isSwapped) / divisor;
    }
  }
  grid.WindowColLow = colLow;
  grid.WindowColHigh = colLow + window - 1;
  grid.WindowRowLow = rowLow;
  grid.WindowRowHigh = rowLow + window - 1;
  return CSIB_Ok;
}

// A value between the nodes is a sum of node values, each with a weight of its column and one of
// its row, since every method runs the same formula along both axes. The weights of an axis are
// for a place t behind its first node.

// Newton's forward form through three nodes: y0 + t (y1 - y0) + t (t - 1)/2 (y2 - 2 y1 + y0).
void QuadraticWeights (double t, double* weights) noexcept {
  const double q = 0.5 * t * (t - 1.0);
  weights[0] = 1.0 - t + q;
  weights[1] = t - 2.0 * q;
  weights[2] = q;
}

// Natural cubic spline of unit spacing (de Boor, A Practical Guide to Splines, 1978, chapter IV).
// With a = 1 - b and b the part of t behind node k,
//     S = a y(k) + b y(k+1) + ((a^3 - a) M(k) + (b^3 - b) M(k+1))/6,
//     M(i-1) + 4 M(i) + M(i+1) = 6 (y(i-1) - 2 y(i) + y(i+1)),  M = 0 at both ends.
// S is linear in M, and M in y: instead of M for each line the transposed system is solved once for
// the two coefficients of M. Behind an end node the curve is its tangent there.
void SplineWeights (datum_Grid& grid, double t, double* weights) noexcept {
  const int32_t n = grid.Order;
  double* const z = grid.SplineWork.data ();
  const double* const inverse = grid.SplineInversePivots.data ();
  const int32_t k = std::clamp (static_cast<int32_t> (t), 0, n - 2);
  const double b = t - k;
  const double a = 1.0 - b;
  std::fill_n (z, n, 0.0);
  std::fill_n (weights, n, 0.0);
  weights[k] = a;
  weights[k + 1] = b;
  if (b < 0.0) {
    z[k + 1] = -b;
  } else if (b > 1.0) {
    z[k] = b - 1.0;
  } else {
    z[k] = a * a * a - a;
    z[k + 1] = b * b * b - b;
  }
  for (int32_t i = 2; i < n - 1; i++) z[i] -= z[i - 1] * inverse[i - 1];
  double next = 0.0;
  for (int32_t i = n - 2; i >= 1; i--) {
    next = (z[i] - next) * inverse[i];
    weights[i - 1] += next;
    weights[i] -= 2.0 * next;
    weights[i + 1] += next;
  }
}

double Bilinear (const double* cell, int32_t window, double u, double v) noexcept {
  return (1.0 - u) * (1.0 - v) * cell[0] + u * (1.0 - v) * cell[1] + u * v * cell[window + 1] +
         (1.0 - u) * v * cell[window];
}

double Weighted (datum_Grid& grid, const double* cell, double u, double v) noexcept {
  double* const columns = grid.ColumnWeights.data ();
  double* const rows = grid.RowWeights.data ();
  int32_t count = grid.Order;
  if (grid.Method == DATUM_Biquadratic) {
    count = 3;
    QuadraticWeights (u, columns);
    QuadraticWeights (v, rows);
  } else {
    SplineWeights (grid, u, columns);
    SplineWeights (grid, v, rows);
  }
  double sum = 0.0;
  for (int32_t j = 0; j < count; j++, cell += grid.Window) {
    double line = 0.0;
    for (int32_t i = 0; i < count; i++) line += columns[i] * cell[i];
    sum += rows[j] * line;
  }
  return sum;
}

bool HasNull (const datum_Grid& grid, const double* cell) noexcept {
  for (int32_t j = 0; j < grid.Order; j++, cell += grid.Window)
    for (int32_t i = 0; i < grid.Order; i++)
      if (std::abs (cell[i] - grid.NullValue) <= AtNull) return true;
  return false;
}

}  // namespace

csib_Status datum_GridLookup (datum_Grid& grid, double latitude, double longitude, double& value) {
  latitude = OntoBounds (latitude, grid.LatMin, grid.LatMax);
  longitude = OntoBounds (longitude, grid.LonMin, grid.LonMax);
  if (grid.Wraps) {
    // A whole turn leaves a rounding behind, so that the bounds are tried again.
    if (grid.LonMax > 180.0 && longitude < 0.0)
      longitude = OntoBounds (longitude + 360.0, grid.LonMin, grid.LonMax);
    if (longitude < grid.LonMin)
      longitude = OntoBounds (longitude + 360.0, grid.LonMin, grid.LonMax);
    if (longitude > grid.LonMax)
      longitude = OntoBounds (longitude - 360.0, grid.LonMin, grid.LonMax);
  }
  if (!(latitude >= grid.LatMin && latitude <= grid.LatMax && longitude >= grid.LonMin &&
        longitude <= grid.LonMax))
    return CSIB_OutsideGrid;

  const double f = (longitude - grid.LonMin) / grid.LonSpacing;
  const double g = (latitude - grid.LatMin) / grid.LatSpacing;
  const int32_t order = grid.Order;
  const int32_t col = FirstNode (f, order, order / 2, grid.Columns);
  const int32_t row = FirstNode (g, order, order / 2, grid.Rows);
  if (col < grid.WindowColLow || col + order - 1 > grid.WindowColHigh || row < grid.WindowRowLow ||
      row + order - 1 > grid.WindowRowHigh) {
    const csib_Status status =
        Fill (grid, FirstNode (f, grid.Window, grid.HalfWindow, grid.Columns),
              FirstNode (g, grid.Window, grid.HalfWindow, grid.Rows));
    if (status != CSIB_Ok) return status;
  }
  const double* const cell = &grid.Cells[static_cast<std::size_t> (
      (row - grid.WindowRowLow) * grid.Window + col - grid.WindowColLow)];
  value = grid.NullValue;
  if (grid.Has (DATUM_HasNull) && HasNull (grid, cell)) return CSIB_NullInGrid;
  const double found = grid.Method == DATUM_Bilinear
                           ? Bilinear (cell, grid.Window, f - col, g - row)
                           : Weighted (grid, cell, f - col, g - row);
  if (!std::isfinite (found)) return CSIB_NullInGrid;
  value = found;
  return CSIB_Ok;
}

}  // namespace clxml
