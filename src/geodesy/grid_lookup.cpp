// Looking a grid up: the nodes around a place, their decoded values, and the value between them.
// Relies on the checks of datum_GridOpen. Uses csib_bytes and platform/file.
//
// Of a grid in memory a look-up decodes the nodes that it needs. Of a grid in a file it reads
// nothing where the nodes lie in the cached square, and decodes a new square of `Window` lines
// otherwise, which costs as many reads. Neither allocates.
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

// The first of `needed` nodes of an axis, where `count` of them lie around the place f, which is
// not negative.
int32_t FirstNode (double f, int32_t count, int32_t needed, int32_t nodes) noexcept {
  f = std::min (f, static_cast<double> (nodes));
  auto low = static_cast<int32_t> (f);
  if (count % 2 == 0)
    low++;
  else if (f - low >= 0.5)
    low++;
  return std::clamp (low - count / 2, 0, nodes - needed);
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
          value (line + static_cast<std::size_t> (k) * grid.ElementSize, grid.Swapped) / divisor;
    }
  }
  grid.WindowColLow = colLow;
  grid.WindowColHigh = colLow + window - 1;
  grid.WindowRowLow = rowLow;
  grid.WindowRowHigh = rowLow + window - 1;
  return CSIB_Ok;
}

// The nodes of an interpolation from its first one on, to the north and to the east: either
// elements of the image or decoded values of the cached square.
struct Nodes {
  const uint8_t* first;
  std::ptrdiff_t rowStep, columnStep;  // bytes
  ValueOf value;
  bool isSwapped;
  double divisor;

  double At (int32_t row, int32_t column) const noexcept {
    return value (first + row * rowStep + column * columnStep, isSwapped) / divisor;
  }
};

Nodes InImage (const datum_Grid& grid, int32_t row, int32_t column) noexcept {
  const bool byColumns = grid.Has (DATUM_ColumnMajor);
  const std::ptrdiff_t size = grid.ElementSize;
  Nodes nodes{grid.Image.data () + DATUM_GridHeaderSize,
              byColumns ? size : size * grid.Columns,
              byColumns ? size * grid.Rows : size,
              elements[grid.ElementCode],
              grid.Swapped,
              grid.Has (DATUM_HasDivisor) ? grid.Divisor : 1.0};
  nodes.first += (grid.RowsAscend ? row : grid.Rows - 1 - row) * nodes.rowStep;
  nodes.first += (grid.ColumnsAscend ? column : grid.Columns - 1 - column) * nodes.columnStep;
  if (!grid.RowsAscend) nodes.rowStep = -nodes.rowStep;
  if (!grid.ColumnsAscend) nodes.columnStep = -nodes.columnStep;
  return nodes;
}

Nodes InSquare (const datum_Grid& grid, int32_t row, int32_t column) noexcept {
  constexpr std::ptrdiff_t size = sizeof (double);
  const double* const first =
      grid.Cells.data () + (row - grid.WindowRowLow) * grid.Window + column - grid.WindowColLow;
  return {reinterpret_cast<const uint8_t*> (first),
          grid.Window * size,
          size,
          Value<double>,
          false,
          1.0};
}

// A value between the nodes is a sum of node values, each with a weight of its column and one of
// its row, since every method runs the same formula along both axes. The weights of an axis are
// for a place t behind its first node.

// Newton's forward form through three nodes: y0 + t (y1 - y0) + t (t - 1)/2 (y2 - 2 y1 + y0). Of
// any order the first three nodes are used.
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
  const auto k = static_cast<int32_t> (std::clamp (t, 0.0, static_cast<double> (n - 2)));
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

double Bilinear (const Nodes& nodes, double u, double v) noexcept {
  return (1.0 - u) * (1.0 - v) * nodes.At (0, 0) + u * (1.0 - v) * nodes.At (0, 1) +
         u * v * nodes.At (1, 1) + (1.0 - u) * v * nodes.At (1, 0);
}

double Weighted (datum_Grid& grid, const Nodes& nodes, double u, double v) noexcept {
  double* const columns = grid.ColumnWeights.data ();
  double* const rows = grid.RowWeights.data ();
  int32_t count = grid.Needed;
  if (grid.Method == DATUM_Biquadratic) {
    count = 3;
    QuadraticWeights (u, columns);
    QuadraticWeights (v, rows);
  } else {
    SplineWeights (grid, u, columns);
    SplineWeights (grid, v, rows);
  }
  double sum = 0.0;
  for (int32_t j = 0; j < count; j++) {
    double line = 0.0;
    for (int32_t i = 0; i < count; i++) line += columns[i] * nodes.At (j, i);
    sum += rows[j] * line;
  }
  return sum;
}

bool HasNull (const datum_Grid& grid, const Nodes& nodes) noexcept {
  for (int32_t j = 0; j < grid.Needed; j++)
    for (int32_t i = 0; i < grid.Needed; i++)
      if (std::abs (nodes.At (j, i) - grid.NullValue) <= AtNull) return true;
  return false;
}

// False when the nodes could not be read.
bool FindNodes (datum_Grid& grid, double f, double g, int32_t row, int32_t column, Nodes& nodes) {
  if (!grid.Image.empty ()) {
    nodes = InImage (grid, row, column);
    return true;
  }
  const bool isCached = column >= grid.WindowColLow &&
                        column + grid.Needed - 1 <= grid.WindowColHigh &&
                        row >= grid.WindowRowLow && row + grid.Needed - 1 <= grid.WindowRowHigh;
  if (!isCached) {
    // Around the place, and over all needed nodes.
    const int32_t spare = grid.Window - grid.Needed;
    const int32_t columnLow = FirstNode (f, grid.Window, grid.Window, grid.Columns);
    const int32_t rowLow = FirstNode (g, grid.Window, grid.Window, grid.Rows);
    const csib_Status status = Fill (grid, std::clamp (columnLow, column - spare, column),
                                     std::clamp (rowLow, row - spare, row));
    if (status != CSIB_Ok) return false;
  }
  nodes = InSquare (grid, row, column);
  return true;
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
  const int32_t column = FirstNode (f, grid.Order, grid.Needed, grid.Columns);
  const int32_t row = FirstNode (g, grid.Order, grid.Needed, grid.Rows);
  Nodes nodes;
  if (!FindNodes (grid, f, g, row, column, nodes)) return CSIB_WrongFormat;
  value = grid.NullValue;
  if (grid.Has (DATUM_HasNull) && HasNull (grid, nodes)) return CSIB_NullInGrid;
  // A biquadratic of two nodes is the line through them.
  const double found =
      grid.Method == DATUM_Bilinear || (grid.Method == DATUM_Biquadratic && grid.Needed == 2)
          ? Bilinear (nodes, f - column, g - row)
          : Weighted (grid, nodes, f - column, g - row);
  if (!std::isfinite (found)) return CSIB_NullInGrid;
  value = found;
  return CSIB_Ok;
}

}  // namespace clxml
