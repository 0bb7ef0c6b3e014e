// Datums without grids: none, three and seven parameters, each as a table of operations.
// For the block, which looks its datum up here by the code. Leans on datum, and on gridded for the
// codes that stand on grids.
#include "geodesy/datum.h"

#include <cmath>

#include "geodesy/gridded.h"

namespace clxml {

namespace {

// ---------------------------------------------------------------------------------------------
// What every datum without files has in common

template <class Data>
const Data& Own (const csib_Block& block) noexcept {
  return static_cast<const Data&> (*block.DatumData);
}

csib_Status NoFile (csib_Block&, std::string_view) { return CSIB_Ok; }

void Free (csib_Block& block) { block.DatumData.reset (); }

// The parameters of a datum are a row of doubles, which is all that its bytes hold.
template <class Data>
csib_Status Write (const csib_Block& block, csib_Writer& out, csib_StorageMode) {
  for (const double value : Own<Data> (block).Parameters ()) out.Double (value);
  return CSIB_Ok;
}

template <class Data>
csib_Status Size (const csib_Block& block, csib_StorageMode, std::size_t& out) {
  out = sizeof (Own<Data> (block).Parameters ());
  return CSIB_Ok;
}

template <class Data>
csib_Status Parameters (const csib_Block& block, std::vector<uint8_t>& out) {
  out.resize (sizeof (Own<Data> (block).Parameters ()));
  csib_Writer writer (out);
  return Write<Data> (block, writer, CSIB_ByName);
}

// ---------------------------------------------------------------------------------------------
// No datum

csib_Status ReadNone (csib_Block&, csib_Bytes&) { return CSIB_Ok; }

csib_Status WriteNone (const csib_Block&, csib_Writer&, csib_StorageMode) { return CSIB_Ok; }

csib_Status Copy (csib_Block&, const csib_Geodetic& point, csib_Geodetic& out) {
  out = point;
  return CSIB_Ok;
}

csib_Status NoParameters (const csib_Block&, std::vector<uint8_t>& out) {
  out.clear ();
  return CSIB_Ok;
}

csib_Status SizeOfNone (const csib_Block&, csib_StorageMode, std::size_t& out) {
  out = 0;
  return CSIB_Ok;
}

constexpr csib_DatumOperations none = {ReadNone, NoFile, NoFile,       Free,      WriteNone,
                                       Copy,     Copy,   NoParameters, SizeOfNone};

// ---------------------------------------------------------------------------------------------
// Three parameters: Molodensky from local to WGS84

struct Molodensky final : csib_Data {
  double DX = 0.0;  // metres, local to WGS84
  double DY = 0.0;
  double DZ = 0.0;
  double DA = 0.0;  // WGS84 less local: the semi-major axis, metres, and the flattening
  double DF = 0.0;

  std::array<double, 3> Parameters () const noexcept { return {DX, DY, DZ}; }
};

struct Deltas {
  double Latitude = 0.0;
  double Longitude = 0.0;
  double Height = 0.0;
};

// Source: Department of Defense World Geodetic System 1984, TR 8350.2 (3rd edition, 2000), section
// 7.2.4.1 for the standard formulas, and Molodensky et al. (1960) as abridged there in earlier
// editions (EPSG methods 9604 and 9605). a, b, f, e² are those of the local ellipsoid, M and N its
// radii in the meridian and the prime vertical.
Deltas DeltasAt (const csib_Block& block, const Molodensky& shift,
                 const csib_Geodetic& point) noexcept {
  const double a = block.EarthRadius;
  const double f = block.Flattening;
  const double e2 = block.EccentricitySquared;
  const double sinPhi = std::sin (point.Latitude);
  const double cosPhi = std::cos (point.Latitude);
  const double sinLambda = std::sin (point.Longitude);
  const double cosLambda = std::cos (point.Longitude);
  const double W2 = 1.0 - e2 * sinPhi * sinPhi;
  const double N = a / std::sqrt (W2);
  const double M = N * (1.0 - e2) / W2;

  const double toNorth =
      -shift.DX * sinPhi * cosLambda - shift.DY * sinPhi * sinLambda + shift.DZ * cosPhi;
  const double toEast = -shift.DX * sinLambda + shift.DY * cosLambda;
  if (!point.HasEllipsoidal)
    return {(toNorth + (a * shift.DF + f * shift.DA) * 2.0 * sinPhi * cosPhi) / M,
            toEast / (N * cosPhi), 0.0};

  const double h = point.EllipsoidalHeight;
  const double bToA = 1.0 - f;
  return {(toNorth + shift.DA * N * e2 * sinPhi * cosPhi / a +
           shift.DF * (M / bToA + N * bToA) * sinPhi * cosPhi) /
              (M + h),
          toEast / ((N + h) * cosPhi),
          shift.DX * cosPhi * cosLambda + shift.DY * cosPhi * sinLambda + shift.DZ * sinPhi -
              shift.DA * a / N + shift.DF * bToA * N * sinPhi * sinPhi};
}

bool IsSound (const csib_Geodetic& point) noexcept {
  return std::isfinite (point.Latitude) && std::isfinite (point.Longitude) &&
         (!point.HasEllipsoidal || std::isfinite (point.EllipsoidalHeight));
}

csib_Status ReadMolodensky (csib_Block& block, csib_Bytes& in) {
  auto shift = std::make_unique<Molodensky> ();
  shift->DX = in.Known ();
  shift->DY = in.Known ();
  shift->DZ = in.Known ();
  shift->DA = CSIB_WGS84MajorAxis - block.EarthRadius;
  shift->DF = CSIB_WGS84Flattening - block.Flattening;
  block.DatumData = std::move (shift);
  return in.Status ();
}

csib_Status MolodenskyInverse (csib_Block& block, const csib_Geodetic& point, csib_Geodetic& out) {
  const Deltas d = DeltasAt (block, Own<Molodensky> (block), point);
  out = point;
  out.Latitude += d.Latitude;
  out.Longitude += d.Longitude;
  out.EllipsoidalHeight += d.Height;
  return IsSound (out) ? CSIB_Ok : CSIB_DidNotConverge;
}

// Inverts MolodenskyInverse: the shift that leads from the result to the source is that at the
// result. Stops when a round changes the shifts by less than 1e-15 rad and 1e-12 m; 100 rounds.
csib_Status MolodenskyForward (csib_Block& block, const csib_Geodetic& point, csib_Geodetic& out) {
  const Molodensky& shift = Own<Molodensky> (block);
  csib_Geodetic result = point;
  Deltas before;
  for (int round = 0; round < 100; round++) {
    const Deltas d = DeltasAt (block, shift, result);
    result.Latitude = point.Latitude - d.Latitude;
    result.Longitude = point.Longitude - d.Longitude;
    result.EllipsoidalHeight = point.EllipsoidalHeight - d.Height;
    if (std::fabs (d.Latitude - before.Latitude) < 1e-15 &&
        std::fabs (d.Longitude - before.Longitude) < 1e-15 &&
        std::fabs (d.Height - before.Height) < 1e-12) {
      out = result;
      return CSIB_Ok;
    }
    before = d;
  }
  return CSIB_DidNotConverge;
}

constexpr csib_DatumOperations threeParameters = {ReadMolodensky,
                                                  NoFile,
                                                  NoFile,
                                                  Free,
                                                  Write<Molodensky>,
                                                  MolodenskyForward,
                                                  MolodenskyInverse,
                                                  Parameters<Molodensky>,
                                                  Size<Molodensky>};

// ---------------------------------------------------------------------------------------------
// Seven parameters

struct SevenParameter final : csib_Data {
  csib_SevenParameters Shift;  // local to WGS84
  csib_Rotation M{};

  std::array<double, 7> Parameters () const noexcept {
    return {Shift.TX, Shift.TY, Shift.TZ, Shift.RX, Shift.RY, Shift.RZ, Shift.S};
  }
};

csib_Status ReadSevenParameter (csib_Block& block, csib_Bytes& in) {
  auto data = std::make_unique<SevenParameter> ();
  csib_SevenParameters& shift = data->Shift;
  for (double* value : {&shift.TX, &shift.TY, &shift.TZ, &shift.RX, &shift.RY, &shift.RZ, &shift.S})
    *value = in.Known ();
  if (in.IsGood () && shift.S == 0.0) in.Fail (CSIB_WrongFormat);
  data->M = csib_RotationMatrix (shift.RX, shift.RY, shift.RZ);
  block.DatumData = std::move (data);
  return in.Status ();
}

// The height above the geoid is no matter of the datum.
csib_Status ToGeodetic (double a, double b, const csib_Cartesian& xyz, const csib_Geodetic& source,
                        csib_Geodetic& out) noexcept {
  csib_Geodetic result;
  const csib_Status status = csib_CartesianToGeodetic (a, b, xyz, result);
  if (status != CSIB_Ok) return status;
  result.OrthometricHeight = source.OrthometricHeight;
  result.HasOrthometric = source.HasOrthometric;
  out = result;
  return CSIB_Ok;
}

// S M of a vector.
csib_Cartesian Turned (const csib_SevenParameters& shift, const csib_Rotation& M,
                       const csib_Cartesian& p) noexcept {
  return {shift.S * (M[0][0] * p.X + M[0][1] * p.Y + M[0][2] * p.Z),
          shift.S * (M[1][0] * p.X + M[1][1] * p.Y + M[1][2] * p.Z),
          shift.S * (M[2][0] * p.X + M[2][1] * p.Y + M[2][2] * p.Z)};
}

csib_Status SevenParameterInverse (csib_Block& block, const csib_Geodetic& point,
                                   csib_Geodetic& out) {
  if (!point.HasEllipsoidal) return CSIB_NoEllipsoidalHeight;
  const csib_SevenParameters& shift = Own<SevenParameter> (block).Shift;
  csib_Cartesian p;
  csib_GeodeticToCartesian (block.EarthRadius, block.MinorAxis, point, p);
  csib_Cartesian turned = Turned (shift, Own<SevenParameter> (block).M, p);
  turned.X += shift.TX;
  turned.Y += shift.TY;
  turned.Z += shift.TZ;
  return ToGeodetic (CSIB_WGS84MajorAxis, CSIB_WGS84MinorAxis, turned, point, out);
}

csib_Status SevenParameterForward (csib_Block& block, const csib_Geodetic& point,
                                   csib_Geodetic& out) {
  if (!point.HasEllipsoidal) return CSIB_NoEllipsoidalHeight;
  const csib_SevenParameters& shift = Own<SevenParameter> (block).Shift;
  const csib_Rotation& M = Own<SevenParameter> (block).M;
  csib_Cartesian p;
  csib_GeodeticToCartesian (CSIB_WGS84MajorAxis, CSIB_WGS84MinorAxis, point, p);
  const double x = p.X - shift.TX;
  const double y = p.Y - shift.TY;
  const double z = p.Z - shift.TZ;
  const csib_Cartesian turned = {(M[0][0] * x + M[1][0] * y + M[2][0] * z) / shift.S,
                                 (M[0][1] * x + M[1][1] * y + M[2][1] * z) / shift.S,
                                 (M[0][2] * x + M[1][2] * y + M[2][2] * z) / shift.S};
  return ToGeodetic (block.EarthRadius, block.MinorAxis, turned, point, out);
}

constexpr csib_DatumOperations sevenParameters = {ReadSevenParameter,
                                                  NoFile,
                                                  NoFile,
                                                  Free,
                                                  Write<SevenParameter>,
                                                  SevenParameterForward,
                                                  SevenParameterInverse,
                                                  Parameters<SevenParameter>,
                                                  Size<SevenParameter>};

}  // namespace

const csib_DatumOperations* csib_DatumTable (uint8_t code) noexcept {
  switch (code) {
    case CSIB_NoDatum:
      return &none;
    case CSIB_Molodensky:
      return &threeParameters;
    case CSIB_SevenParameter:
      return &sevenParameters;
    case CSIB_EmbeddedGridDatum:
      return &csib_EmbeddedGridDatum;
    case CSIB_CombinedGridDatum:
      return &csib_CombinedGridDatum;
    default:
      return nullptr;
  }
}

csib_Status csib_GeodeticToCartesian (double a, double b, const csib_Geodetic& point,
                                      csib_Cartesian& xyz) noexcept {
  if (!point.HasEllipsoidal) return CSIB_NoHeightForCartesian;
  const double ratio2 = (b * b) / (a * a);  // 1 - e²
  const double sinPhi = std::sin (point.Latitude);
  const double cosPhi = std::cos (point.Latitude);
  const double N = a / std::sqrt (1.0 - (1.0 - ratio2) * sinPhi * sinPhi);
  const double h = point.EllipsoidalHeight;
  xyz.X = (N + h) * cosPhi * std::cos (point.Longitude);
  xyz.Y = (N + h) * cosPhi * std::sin (point.Longitude);
  xyz.Z = (ratio2 * N + h) * sinPhi;
  return CSIB_Ok;
}

namespace {

// The distance p from the axis, and the sine and cosine of the latitude. Everything is done with
// these two, or with multiples of both, so that no round needs a function that costs more than a
// root.
csib_Status Solve (double a, double b, const csib_Cartesian& xyz, double& p, double& sinPhi,
                   double& cosPhi) noexcept {
  // Beyond this the squares overflow; NaN has no position either.
  if (!(std::fabs (xyz.X) < 1e100 && std::fabs (xyz.Y) < 1e100 && std::fabs (xyz.Z) < 1e100))
    return CSIB_CartesianDidNotConverge;
  const double ratio2 = (b * b) / (a * a);
  const double e2 = 1.0 - ratio2;
  p = std::sqrt (xyz.X * xyz.X + xyz.Y * xyz.Y);

  // Bowring's step from the reduced latitude beta: tan phi = up/out, tan beta = b/a tan phi. Twice;
  // near the ellipsoid a step divides the error by a million.
  const double e2a = e2 * a;
  const double e2b = e2 / ratio2 * b;
  double up = a * xyz.Z;  // here the point itself, tan beta = a z/(b p)
  double out = b * p;
  const auto step = [&] {
    const double inverse = 1.0 / std::sqrt (up * up + out * out);
    const double sinBeta = up * inverse;
    const double cosBeta = out * inverse;
    up = xyz.Z + e2b * sinBeta * sinBeta * sinBeta;
    out = p - e2a * cosBeta * cosBeta * cosBeta;
  };
  step ();
  const double firstUp = up;
  const double firstOut = out;
  up *= b;
  out *= a;
  step ();
  const double length2 = up * up + out * out;
  const double turn = up * firstOut - out * firstUp;

  sinPhi = std::sqrt (0.5);  // where phi starts if both steps failed, at the centre
  cosPhi = sinPhi;
  if (length2 > 0.0) {
    const double inverse = 1.0 / std::sqrt (length2);
    sinPhi = up * inverse;
    cosPhi = out * inverse;
  }
  bool isFound = out >= 0.0 && std::fabs (turn) < 1e-12 * length2;
  for (int round = 0; !isFound; round++) {
    if (round == 100) return CSIB_CartesianDidNotConverge;
    const double N = a / std::sqrt (1.0 - e2 * sinPhi * sinPhi);
    const double rise = xyz.Z + e2 * N * sinPhi;
    const double length = std::sqrt (rise * rise + p * p);
    const double sinNext = rise / length;
    const double cosNext = p / length;
    const double change = sinNext * cosPhi - cosNext * sinPhi;
    sinPhi = sinNext;
    cosPhi = cosNext;
    isFound = std::fabs (change) < 1e-15;
  }
  return CSIB_Ok;
}

void ToPoint (double a, double b, const csib_Cartesian& xyz, double p, double sinPhi, double cosPhi,
              csib_Geodetic& point) noexcept {
  const double e2 = 1.0 - (b * b) / (a * a);
  point = {};
  point.Latitude = std::atan2 (sinPhi, cosPhi);
  point.Longitude = xyz.X == 0.0 && xyz.Y == 0.0 ? 0.0 : std::atan2 (xyz.Y, xyz.X);
  // An error of phi enters this form of the height by its square.
  point.EllipsoidalHeight =
      p * cosPhi + xyz.Z * sinPhi - a * std::sqrt (1.0 - e2 * sinPhi * sinPhi);
  point.HasEllipsoidal = true;
}

}  // namespace

csib_Status csib_CartesianToGeodetic (double a, double b, const csib_Cartesian& xyz,
                                      csib_Geodetic& point) noexcept {
  double p, sinPhi, cosPhi;
  const csib_Status status = Solve (a, b, xyz, p, sinPhi, cosPhi);
  if (status == CSIB_Ok) ToPoint (a, b, xyz, p, sinPhi, cosPhi, point);
  return status;
}

bool csib_HeightRates (const csib_Block& block, const csib_Geodetic& local, csib_Geodetic& wgs84,
                       csib_Geodetic& rates) noexcept {
  if (block.DatumCode != CSIB_SevenParameter || !local.HasEllipsoidal) return false;
  const csib_SevenParameters& shift = Own<SevenParameter> (block).Shift;
  const csib_Rotation& M = Own<SevenParameter> (block).M;
  const double cosLatitude = std::cos (local.Latitude);
  const csib_Cartesian normal = {cosLatitude * std::cos (local.Longitude),
                                 cosLatitude * std::sin (local.Longitude),
                                 std::sin (local.Latitude)};
  const double ratio2 =
      (block.MinorAxis * block.MinorAxis) / (block.EarthRadius * block.EarthRadius);
  const double N = block.EarthRadius / std::sqrt (1.0 - (1.0 - ratio2) * normal.Z * normal.Z);
  const double h = local.EllipsoidalHeight;
  csib_Cartesian q =
      Turned (shift, M, {(N + h) * normal.X, (N + h) * normal.Y, (ratio2 * N + h) * normal.Z});
  q.X += shift.TX;
  q.Y += shift.TY;
  q.Z += shift.TZ;
  double p, sinPhi, cosPhi;
  constexpr double a = CSIB_WGS84MajorAxis, b = CSIB_WGS84MinorAxis;
  if (Solve (a, b, q, p, sinPhi, cosPhi) != CSIB_Ok || !(p > 1.0)) return false;
  ToPoint (a, b, q, p, sinPhi, cosPhi, wgs84);

  // The turned normal by its parts to the east, the north and upwards at the WGS84 point.
  const csib_Cartesian V = Turned (shift, M, normal);
  const double outward = (q.X * V.X + q.Y * V.Y) / p;
  constexpr double e2 = 1.0 - (b * b) / (a * a);
  const double W2 = 1.0 - e2 * sinPhi * sinPhi;
  const double meridian = a * (1.0 - e2) / (W2 * std::sqrt (W2));
  rates = {};
  rates.Latitude = (cosPhi * V.Z - sinPhi * outward) / (meridian + wgs84.EllipsoidalHeight);
  rates.Longitude = (q.X * V.Y - q.Y * V.X) / (p * p);
  rates.EllipsoidalHeight = cosPhi * outward + sinPhi * V.Z;
  return true;
}

csib_Rotation csib_RotationMatrix (double rx, double ry, double rz) noexcept {
  const double s1 = std::sin (rx), c1 = std::cos (rx);
  const double s2 = std::sin (ry), c2 = std::cos (ry);
  const double s3 = std::sin (rz), c3 = std::cos (rz);
  return {{{c2 * c3, s1 * s2 * c3 + c1 * s3, -c1 * s2 * c3 + s1 * s3},
           {-c2 * s3, -s1 * s2 * s3 + c1 * c3, c1 * s2 * s3 + s1 * c3},
           {s2, -s1 * c2, c1 * c2}}};
}

csib_Status csib_InvertSevenParameters (const csib_SevenParameters& parameters,
                                        csib_SevenParameters& out) noexcept {
  const csib_SevenParameters& in = parameters;
  for (const double value : {in.TX, in.TY, in.TZ, in.RX, in.RY, in.RZ, in.S})
    if (!csib_IsKnown (value)) return CSIB_Singular;
  if (in.S == 0.0) return CSIB_Singular;

  const csib_Rotation M = csib_RotationMatrix (in.RX, in.RY, in.RZ);
  const double D = M[0][0] * (M[1][1] * M[2][2] - M[1][2] * M[2][1]) -
                   M[0][1] * (M[1][0] * M[2][2] - M[1][2] * M[2][0]) +
                   M[0][2] * (M[1][0] * M[2][1] - M[1][1] * M[2][0]);
  csib_SevenParameters inverse;
  inverse.RY = std::asin ((M[1][0] * M[2][1] - M[1][1] * M[2][0]) / D);
  const double cosRY = std::cos (inverse.RY);
  inverse.RX = std::asin ((M[0][0] * M[2][1] - M[0][1] * M[2][0]) / (cosRY * D));
  inverse.RZ = std::asin ((M[1][0] * M[2][2] - M[1][2] * M[2][0]) / (cosRY * D));
  inverse.S = 1.0 / in.S;

  const csib_Rotation turn = csib_RotationMatrix (inverse.RX, inverse.RY, inverse.RZ);
  const auto row = [&] (const std::array<double, 3>& m) {
    return -(m[0] * in.TX + m[1] * in.TY + m[2] * in.TZ) / in.S;
  };
  inverse.TX = row (turn[0]);
  inverse.TY = row (turn[1]);
  inverse.TZ = row (turn[2]);
  // The arc sines answer for angles within a right angle; others would be silently another turn.
  for (std::size_t i = 0; i < 3; i++) {
    for (std::size_t j = 0; j < 3; j++) {
      const double product = turn[i][0] * M[0][j] + turn[i][1] * M[1][j] + turn[i][2] * M[2][j];
      if (!(std::fabs (product - (i == j ? 1.0 : 0.0)) < 1e-9)) return CSIB_Singular;
    }
  }
  for (const double value : {inverse.TX, inverse.TY, inverse.TZ, inverse.S})
    if (!csib_IsKnown (value)) return CSIB_Singular;
  out = inverse;
  return CSIB_Ok;
}

}  // namespace clxml
