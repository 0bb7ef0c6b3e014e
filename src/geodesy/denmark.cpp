// Denmark, projection code 16: System 34 (Jutland, Zealand) and System 45 (Bornholm).
// Parameters: a byte, the area: 1 Jutland, 2 Zealand, 3 Bornholm. Transverse Mercator, and from UTM
// to the old systems by polynomials. Leans on transverse_mercator and denmark_tables.
#include "geodesy/denmark_tables.h"
#include "geodesy/projection_slots.h"
#include "geodesy/transverse_mercator.h"

namespace clxml {
namespace {

struct Bounds {
  double northAbove, northBelow, eastAbove, eastBelow;

  // NaN is outside.
  bool Hold (double north, double east) const noexcept {
    return north > northAbove && north < northBelow && east > eastAbove && east < eastBelow;
  }
};

struct Table {
  const double* numbers;
  std::size_t degree;
  Bounds bounds;  ///< of the input
};

struct Area {
  double centralMeridian;  ///< radians
  Table toLocal;
  Table toUTM;
};

constexpr std::array areas = {
    Area{0.15707963267948966,
         {denmark_JutlandToLocal.data (), 11, {5900000.0, 6500000.0, 300000.0, 900000.0}},
         {denmark_JutlandToUTM.data (), 11, {-100000.0, 500000.0, -100000.0, 500000.0}}},
    Area{0.15707963267948966,
         {denmark_ZealandToLocal.data (), 11, {5900000.0, 6400000.0, 400000.0, 1000000.0}},
         {denmark_ZealandToUTM.data (), 11, {-100000.0, 400000.0, -100000.0, 400000.0}}},
    Area{0.2617993877991494,
         {denmark_BornholmToLocal.data (), 4, {6000000.0, 6200000.0, 400000.0, 600000.0}},
         {denmark_BornholmToUTM.data (), 4, {-50000.0, 150000.0, -50000.0, 150000.0}}},
};

// K. Poder and the function uts34 of the National Survey and Cadastre of Denmark (1994): a
// polynomial in the second input whose coefficients are polynomials in the first for the first
// output, the other way round for the second, each by Horner's scheme from the end of its
// coefficients.
void Evaluate (const Table& table, double a, double b, double& first, double& second) noexcept {
  const double* T = table.numbers;
  const std::size_t d = table.degree;
  const std::size_t n = (d + 1) * (d + 2) / 2 + 1;
  const double u = a - T[n];
  const double v = b - T[2 * n];
  std::size_t p = n - 1;
  std::size_t q = 2 * n - 1;
  double r1 = T[p];
  double r2 = T[q];
  for (std::size_t j = d; j >= 1; j--) {
    double t1 = T[--p];
    double t2 = T[--q];
    for (std::size_t i = j; i <= d; i++) {
      t1 = u * t1 + T[--p];
      t2 = v * t2 + T[--q];
    }
    r1 = v * r1 + t1;
    r2 = u * r2 + t2;
  }
  first = r1;
  second = r2;
}

// One direction, checked by the other: outside its outlines the polynomials part.
csib_Status Transform (const Table& there, const Table& back, double& north,
                       double& east) noexcept {
  if (!there.bounds.Hold (north, east)) return CSIB_NoProjectionOperation;
  double first = 0.0;
  double second = 0.0;
  Evaluate (there, north, east, first, second);
  double northAgain = 0.0;
  double eastAgain = 0.0;
  Evaluate (back, first, second, northAgain, eastAgain);
  if (!(std::abs (northAgain - north) < 0.06) || !(std::abs (eastAgain - east) < 0.06))
    return CSIB_TablesDisagree;
  north = first;
  east = second;
  return CSIB_Ok;
}

constexpr double falseEast = 500000.0;

struct Denmark {
  csib_TransverseMercator utm;
  uint8_t areaCode = 0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    areaCode = in.Byte ();
    if (areaCode < 1 || areaCode > areas.size ()) in.Fail (CSIB_WrongFormat);
    if (!in.IsGood ()) return in.Status ();
    csib_ForceOrigin (block, 0.0, Of ().centralMeridian, 0.0, falseEast, 0.9996);
    const csib_ProjectionFrame frame (block);
    utm.Set (frame.a, frame.b, frame.latitude, frame.longitude, frame.scale);
    return CSIB_Ok;
  }

  void Write (csib_Writer& out) const noexcept { out.Byte (areaCode); }

  const Area& Of () const noexcept { return areas[areaCode - 1u]; }

  csib_Status Forward (double phi, double lambda, double& north, double& east) const noexcept {
    utm.Forward (phi, lambda, north, east);
    east += falseEast;
    const csib_Status status = Transform (Of ().toLocal, Of ().toUTM, north, east);
    east = -(east - falseEast);
    return status;
  }

  csib_Status Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    east = -east + falseEast;
    const csib_Status status = Transform (Of ().toUTM, Of ().toLocal, north, east);
    if (status == CSIB_Ok) utm.Inverse (north, east - falseEast, phi, lambda);
    return status;
  }

  double Scale (double phi, double lambda) const noexcept { return utm.Scale (phi, lambda); }

  double Convergence (double phi, double lambda) const noexcept {
    return utm.Convergence (phi, lambda);
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_DenmarkProjection =
    csib_ProjectionSlots<Denmark>::Table ();

}  // namespace clxml
