// New Zealand Map Grid, projection code 6.
// No parameters: origin, false origin and scale are fixed, and only the semi-major axis is the
// block's. Leans on the slots alone.
#include <complex>

#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// W.I. Reilly, A conformal mapping projection with minimum scale error, Survey Review 22 (168),
// 1973; I.F. Stirling, New Zealand Map Grid, Department of Lands and Survey Technical Circular
// 1973/32; Office of the Surveyor-General Technical Report 4.1 (1998).
//   zeta   difference of isometric latitude + i difference of longitude, radians
//   z      (north + i east)/a
// A gives the difference of isometric latitude from that of latitude in units of 1e5 seconds of
// arc, D the latitude back; B gives z from zeta, C a first zeta from z.
constexpr double originLatitude = -0.7155849933176751;
constexpr double originLongitude = 3.01941960595019;
constexpr double unitsOfRadian = 1e-5 / CSIB_Second;

constexpr std::array A = {0.6399175073, -0.1358797613, 0.063294409, -0.02526853, 0.0117879,
                          -0.0055161,   0.0026906,     -0.001333,   0.00067,     -0.00034};
constexpr std::array<std::complex<double>, 6> B = {{{0.7557853228, 0.0},
                                                    {0.249204646, 0.003371507},
                                                    {-0.001541739, 0.04105856},
                                                    {-0.10162907, 0.01727609},
                                                    {-0.26623489, -0.36249218},
                                                    {-0.6870983, -1.1651967}}};
constexpr std::array<std::complex<double>, 6> C = {{{1.3231270439, 0.0},
                                                    {-0.577245789, -0.007809598},
                                                    {0.508307513, -0.112208952},
                                                    {-0.15094762, 0.18200602},
                                                    {1.01418179, 1.64497696},
                                                    {1.9660549, 2.5127645}}};
constexpr std::array D = {1.5627014243, 0.5185406398, -0.03333098, -0.1052906, -0.0368594,
                          0.007317,     0.0122,       0.00394,     -0.0013};

// The library's complex product looks for infinities; what is not finite is refused at the end.
constexpr std::complex<double> Times (std::complex<double> x, std::complex<double> y) noexcept {
  return {x.real () * y.real () - x.imag () * y.imag (),
          x.real () * y.imag () + x.imag () * y.real ()};
}

std::complex<double> Over (std::complex<double> x, std::complex<double> y) noexcept {
  const double norm = y.real () * y.real () + y.imag () * y.imag ();
  const std::complex<double> product = Times (x, std::conj (y));
  return {product.real () / norm, product.imag () / norm};
}

// c[0] x + c[1] x^2 + ...
template <std::size_t N>
double Powers (const std::array<double, N>& c, double x) noexcept {
  double sum = 0.0;
  for (std::size_t k = N; k-- > 0;) sum = (sum + c[k]) * x;
  return sum;
}

std::complex<double> Powers (const std::array<std::complex<double>, 6>& c,
                             std::complex<double> x) noexcept {
  std::complex<double> sum = 0.0;
  for (std::size_t k = c.size (); k-- > 0;) sum = Times (sum + c[k], x);
  return sum;
}

struct NewZealand {
  double a = 0.0;
  double e2 = 0.0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    csib_ForceOrigin (block, originLatitude, originLongitude, 6023150.0, 2510000.0, 1.0);
    const csib_ProjectionFrame frame (block);
    a = frame.a;
    e2 = (frame.a - frame.b) * (frame.a + frame.b) / (frame.a * frame.a);
    return in.Status ();
  }

  static std::complex<double> Zeta (double phi, double lambda) noexcept {
    return {Powers (A, (phi - originLatitude) * unitsOfRadian),
            csib_WithinPi (lambda - originLongitude)};
  }

  // dz/dzeta
  static std::complex<double> Slope (std::complex<double> zeta) noexcept {
    std::complex<double> sum = 0.0;
    for (std::size_t k = B.size (); k-- > 0;)
      sum = Times (sum, zeta) + static_cast<double> (k + 1) * B[k];
    return sum;
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const std::complex<double> z = Powers (B, Zeta (phi, lambda));
    north = a * z.real ();
    east = a * z.imag ();
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    const std::complex<double> z (north / a, east / a);
    std::complex<double> zeta = Powers (C, z);
    for (int round = 0; round < 2; round++) zeta += Over (z - Powers (B, zeta), Slope (zeta));
    phi = originLatitude + Powers (D, zeta.real ()) / unitsOfRadian;
    lambda = originLongitude + zeta.imag ();
  }

  // Conformal: scale and turn of the mapping from the isometric plane are those of dz/dzeta
  // (Reilly 1973).
  double Scale (double phi, double lambda) const noexcept {
    const double s = std::sin (phi);
    return std::abs (Slope (Zeta (phi, lambda))) * std::sqrt (1.0 - e2 * s * s) / std::cos (phi);
  }

  double Convergence (double phi, double lambda) const noexcept {
    return -std::arg (Slope (Zeta (phi, lambda)));
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_NewZealandProjection =
    csib_ProjectionSlots<NewZealand>::Table ();

}  // namespace clxml
