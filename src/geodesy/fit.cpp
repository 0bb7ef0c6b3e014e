// Gauss-Newton for the seven parameters of a datum, and the vectors and matrices that it needs.
// For a host with common points. Leans on fit.
#include "geodesy/fit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace clxml {

namespace {

bool HasShapeOf (const csib_Vector& a, const csib_Vector& b) noexcept {
  return a.Length () == b.Length ();
}

bool HasShapeOf (const csib_Matrix& a, const csib_Matrix& b) noexcept {
  return a.Rows == b.Rows && a.Columns == b.Columns;
}

template <class T, class Operation>
bool Combine (const T& a, const T& b, T& out, Operation operation) noexcept {
  if (!HasShapeOf (a, b) || !HasShapeOf (a, out)) return false;
  std::transform (a.Elements.begin (), a.Elements.end (), b.Elements.begin (),
                  out.Elements.begin (), operation);
  return true;
}

}  // namespace

void csib_Clear (csib_Vector& v) noexcept {
  std::fill (v.Elements.begin (), v.Elements.end (), 0.0);
}

void csib_Clear (csib_Matrix& m) noexcept {
  std::fill (m.Elements.begin (), m.Elements.end (), 0.0);
}

bool csib_SetIdentity (csib_Matrix& m) noexcept {
  if (m.Rows != m.Columns) return false;
  csib_Clear (m);
  for (std::size_t i = 0; i < m.Rows; i++) m[i][i] = 1.0;
  return true;
}

bool csib_Add (const csib_Vector& a, const csib_Vector& b, csib_Vector& out) noexcept {
  return Combine (a, b, out, [] (double x, double y) { return x + y; });
}

bool csib_Add (const csib_Matrix& a, const csib_Matrix& b, csib_Matrix& out) noexcept {
  return Combine (a, b, out, [] (double x, double y) { return x + y; });
}

bool csib_Subtract (const csib_Vector& a, const csib_Vector& b, csib_Vector& out) noexcept {
  return Combine (a, b, out, [] (double x, double y) { return x - y; });
}

bool csib_Subtract (const csib_Matrix& a, const csib_Matrix& b, csib_Matrix& out) noexcept {
  return Combine (a, b, out, [] (double x, double y) { return x - y; });
}

bool csib_Multiply (const csib_Matrix& a, const csib_Vector& b, csib_Vector& out) noexcept {
  if (a.Columns != b.Length () || a.Rows != out.Length () || &b == &out) return false;
  for (std::size_t i = 0; i < a.Rows; i++) {
    double sum = 0.0;
    for (std::size_t k = 0; k < a.Columns; k++) sum += a[i][k] * b[k];
    out[i] = sum;
  }
  return true;
}

bool csib_Multiply (const csib_Matrix& a, const csib_Matrix& b, csib_Matrix& out) noexcept {
  if (a.Columns != b.Rows || a.Rows != out.Rows || b.Columns != out.Columns || &a == &out ||
      &b == &out)
    return false;
  for (std::size_t i = 0; i < a.Rows; i++) {
    for (std::size_t j = 0; j < b.Columns; j++) {
      double sum = 0.0;
      for (std::size_t k = 0; k < a.Columns; k++) sum += a[i][k] * b[k][j];
      out[i][j] = sum;
    }
  }
  return true;
}

bool csib_Transpose (const csib_Matrix& m, csib_Matrix& out) noexcept {
  if (m.Rows != out.Columns || m.Columns != out.Rows || &m == &out) return false;
  for (std::size_t i = 0; i < m.Rows; i++)
    for (std::size_t j = 0; j < m.Columns; j++) out[j][i] = m[i][j];
  return true;
}

// What remains of a diagonal element when its row depends on those before is rounding, and no
// pivot.
constexpr double leastPivot = 128.0 * std::numeric_limits<double>::epsilon ();

// A = G G', the inverse of the triangle G in its place, and A^-1 = G'^-1 G^-1.
bool csib_InvertSymmetric (csib_Matrix& m) noexcept {
  if (m.Rows != m.Columns) return false;
  const std::size_t n = m.Rows;
  for (std::size_t j = 0; j < n; j++) {
    const double before = m[j][j];
    double pivot = before;
    for (std::size_t k = 0; k < j; k++) pivot -= m[j][k] * m[j][k];
    if (!(pivot > before * leastPivot) || !std::isfinite (pivot)) return false;
    m[j][j] = std::sqrt (pivot);
    for (std::size_t i = j + 1; i < n; i++) {
      double sum = m[i][j];
      for (std::size_t k = 0; k < j; k++) sum -= m[i][k] * m[j][k];
      m[i][j] = sum / m[j][j];
    }
  }
  for (std::size_t j = 0; j < n; j++) {
    m[j][j] = 1.0 / m[j][j];
    for (std::size_t i = j + 1; i < n; i++) {
      double sum = 0.0;
      for (std::size_t k = j; k < i; k++) sum -= m[i][k] * m[k][j];
      m[i][j] = sum / m[i][i];
    }
  }
  for (std::size_t j = 0; j < n; j++) {
    for (std::size_t i = j; i < n; i++) {
      double sum = 0.0;
      for (std::size_t k = i; k < n; k++) sum += m[k][i] * m[k][j];
      m[i][j] = sum;
      m[j][i] = sum;
    }
  }
  return true;
}

namespace {

csib_Cartesian Turned (const csib_Rotation& m, const csib_Cartesian& p) noexcept {
  return {m[0][0] * p.X + m[0][1] * p.Y + m[0][2] * p.Z,
          m[1][0] * p.X + m[1][1] * p.Y + m[1][2] * p.Z,
          m[2][0] * p.X + m[2][1] * p.Y + m[2][2] * p.Z};
}

csib_Rotation Product (const csib_Rotation& a, const csib_Rotation& b) noexcept {
  csib_Rotation out{};
  for (std::size_t i = 0; i < 3; i++)
    for (std::size_t j = 0; j < 3; j++)
      out[i][j] = a[i][0] * b[0][j] + a[i][1] * b[1][j] + a[i][2] * b[2][j];
  return out;
}

// M is Z Y X, a turn about each axis. A turn's derivative by its own angle is itself after the
// derivative at 0, so that dM/dRZ = G_z M, dM/dRX = M G_x, and between them that of Y.
struct Turns {
  csib_Rotation M;
  csib_Rotation ByX;
  csib_Rotation ByY;
  csib_Rotation ByZ;
};

Turns TurnsOf (const csib_SevenParameters& p) noexcept {
  constexpr csib_Rotation aboutX = {{{0.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, {0.0, -1.0, 0.0}}};
  constexpr csib_Rotation aboutY = {{{0.0, 0.0, -1.0}, {0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}}};
  constexpr csib_Rotation aboutZ = {{{0.0, 1.0, 0.0}, {-1.0, 0.0, 0.0}, {0.0, 0.0, 0.0}}};
  Turns turns;
  turns.M = csib_RotationMatrix (p.RX, p.RY, p.RZ);
  turns.ByX = Product (turns.M, aboutX);
  turns.ByY = Product (Product (csib_RotationMatrix (0.0, 0.0, p.RZ), aboutY),
                       csib_RotationMatrix (p.RX, p.RY, 0.0));
  turns.ByZ = Product (aboutZ, turns.M);
  return turns;
}

std::array<double*, 7> Places (csib_SevenParameters& p) noexcept {
  return {&p.TX, &p.TY, &p.TZ, &p.RX, &p.RY, &p.RZ, &p.S};
}

// The rows of one point for the three axes, by RX, RY, RZ and S.
using Design = std::array<std::array<double, 4>, 3>;

Design DesignAt (const Turns& turns, double S, const csib_Cartesian& point) noexcept {
  const csib_Cartesian byX = Turned (turns.ByX, point);
  const csib_Cartesian byY = Turned (turns.ByY, point);
  const csib_Cartesian byZ = Turned (turns.ByZ, point);
  const csib_Cartesian byS = Turned (turns.M, point);
  return {{{S * byX.X, S * byY.X, S * byZ.X, byS.X},
           {S * byX.Y, S * byY.Y, S * byZ.Y, byS.Y},
           {S * byX.Z, S * byY.Z, S * byZ.Z, byS.Z}}};
}

csib_Cartesian Centre (std::span<const csib_Cartesian> points) noexcept {
  csib_Cartesian sum;
  for (const csib_Cartesian& point : points)
    sum = {sum.X + point.X, sum.Y + point.Y, sum.Z + point.Z};
  const auto n = static_cast<double> (points.size ());
  return {sum.X / n, sum.Y / n, sum.Z / n};
}

// The normal equations of the seven, of which the three translations are eliminated beforehand:
// their block is diagonal, n + W with the weights W of the priors, and what is left of the others
// is the sum over the points as seen from their centre, plus W n/(n + W) times the centre itself.
// Left in, a network far from the origin would lose the turns in the rounding of the translations.
csib_Status Fit (std::span<const csib_Cartesian> from, std::span<const csib_Cartesian> to,
                 csib_SevenParameters& parameters, std::span<csib_Cartesian> residuals,
                 double tolerance, int maxRounds, const csib_FitPriors* priors, csib_FitStop stop) {
  if (to.size () < from.size () || residuals.size () < from.size ()) return CSIB_NoOutput;
  if (from.empty ()) return CSIB_Singular;
  csib_SevenParameters start = parameters;
  csib_SevenParameters p = parameters;
  std::array<double, 7> weights{};
  for (std::size_t j = 0; priors && j < 7; j++)
    if ((priors->Mask >> j & 1) != 0) weights[j] = priors->Weights[j];
  const auto n = static_cast<double> (from.size ());
  const csib_Cartesian centre = Centre (from);
  csib_Matrix normal (4, 4);
  csib_Vector right (4);
  csib_Vector turn (4);
  double largestBefore = std::numeric_limits<double>::infinity ();

  for (int round = 0; round < maxRounds; round++) {
    csib_Clear (normal);
    csib_Clear (right);
    const Turns turns = TurnsOf (p);
    const auto add = [&] (const Design& design, std::size_t axis, double weight, double misfit) {
      for (std::size_t j = 0; j < 4; j++) {
        right[j] += design[axis][j] * misfit;
        for (std::size_t k = 0; k <= j; k++)
          normal[j][k] += design[axis][j] * design[axis][k] * weight;
      }
    };
    double largest = 0.0;
    double sum[3] = {};
    for (std::size_t i = 0; i < from.size (); i++) {
      const csib_Cartesian turned = Turned (turns.M, from[i]);
      const double misfit[3] = {to[i].X - (p.S * turned.X + p.TX),
                                to[i].Y - (p.S * turned.Y + p.TY),
                                to[i].Z - (p.S * turned.Z + p.TZ)};
      residuals[i] = {misfit[0], misfit[1], misfit[2]};
      const double length = std::hypot (misfit[0], misfit[1], misfit[2]);
      if (!std::isfinite (length)) return CSIB_Singular;
      largest = std::max (largest, length);
      const Design design =
          DesignAt (turns, p.S, {from[i].X - centre.X, from[i].Y - centre.Y, from[i].Z - centre.Z});
      for (std::size_t axis = 0; axis < 3; axis++) {
        add (design, axis, 1.0, misfit[axis]);
        sum[axis] += misfit[axis];
      }
    }

    const Design atCentre = DesignAt (turns, p.S, centre);
    double fromStart[7];
    for (std::size_t j = 0; j < 7; j++) fromStart[j] = *Places (start)[j] - *Places (p)[j];
    for (std::size_t axis = 0; axis < 3; axis++) {
      const double held = weights[axis] / (n + weights[axis]);
      add (atCentre, axis, held * n, held * (sum[axis] - n * fromStart[axis]));
    }
    for (std::size_t j = 0; j < 4; j++) {
      normal[j][j] += weights[j + 3];
      right[j] += weights[j + 3] * fromStart[j + 3];
    }
    if (!csib_InvertSymmetric (normal)) return CSIB_Singular;
    csib_Multiply (normal, right, turn);
    for (std::size_t axis = 0; axis < 3; axis++) {
      double moved = 0.0;
      for (std::size_t j = 0; j < 4; j++) moved += atCentre[axis][j] * turn[j];
      *Places (p)[axis] +=
          (sum[axis] - n * moved + weights[axis] * fromStart[axis]) / (n + weights[axis]);
    }
    for (std::size_t j = 0; j < 4; j++) *Places (p)[j + 3] += turn[j];

    const double measure =
        stop == CSIB_StopAtSteadyResidual ? std::fabs (largest - largestBefore) : largest;
    if (measure < tolerance) {
      parameters = p;
      return CSIB_Ok;
    }
    largestBefore = largest;
  }
  parameters = p;
  return CSIB_DidNotConverge;
}

}  // namespace

bool csib_FitSevenParameter (std::span<const csib_Cartesian> from,
                             std::span<const csib_Cartesian> to, csib_SevenParameters& parameters,
                             std::span<csib_Cartesian> residuals, double tolerance, int maxRounds,
                             const csib_FitPriors* priors, csib_FitStop stop, csib_Status* status) {
  csib_Status result = CSIB_OutOfMemory;
  try {
    result = Fit (from, to, parameters, residuals, tolerance, maxRounds, priors, stop);
  } catch (const std::bad_alloc&) {
  }
  if (status) *status = result;
  return result == CSIB_Ok;
}

}  // namespace clxml
