// The Dutch RD grid, projection code 12, by its polynomials.
// No parameters: everything is fixed, the ellipsoid (Bessel) and the scale included. Leans on the
// slots alone.
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// The approximation of the Rijksdriehoeksmeting between the Bessel ellipsoid and RD, after G.L.
// Strang van Hees, Globale en lokale geodetische systemen, Nederlandse Commissie voor Geodesie,
// publication 30 (1994).
constexpr double originLatitude = 0.9102967268932393;
constexpr double originLongitude = 0.09403203751960007;

struct RD {
  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    csib_ForceOrigin (block, originLatitude, originLongitude, 463000.0, 155000.0, 0.9999079);
    return in.Status ();
  }

  // p, q: differences from the origin in units of 10000 seconds of arc.
  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const double p = (phi - originLatitude) * CSIB_DegreesOfRadian * 0.36;
    const double q = (lambda - originLongitude) * CSIB_DegreesOfRadian * 0.36;
    const double p2 = p * p;
    const double q2 = q * q;
    east =
        q * (190066.98903 + p * (-11830.85831 + p * (-114.19754 + p * (-2.34078 - p * 0.04158))) +
             q2 * (-32.3836 + p * (-0.60639 + p * 0.15774) - q2 * 0.00661));
    north = p * (309020.3181 + p * (72.97141 + p * (59.79734 - p * 0.03444))) +
            q2 * (3638.36193 + p * -157.95222 + p2 * (-6.43481 - p * 0.07379) +
                  q2 * (0.09351 - p * 0.05419));
  }

  // x, y: north and east in units of 100 km; the sums are seconds of arc.
  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    const double x = north / 100000.0;
    const double y = east / 100000.0;
    const double x2 = x * x;
    const double y2 = y * y;
    const double latitude =
        x * (3236.0331637 + x * (-0.2472814 + x * (-0.0655238 + x * 3.71e-05))) +
        y2 * (-32.5915821 + x * -0.8501341 + x2 * (-0.0171137 + x * -0.0003859 - x2 * 9e-06) +
              y2 * (0.0052771 + x * 0.0003314 + x2 * 1.43e-05));
    const double longitude =
        y * (5261.3028966 +
             x * (105.9780241 + x * (2.4576469 + x * (0.0560089 + x * (0.001277 + x * 2.91e-05)))) +
             y2 * (-0.8192156 + x * (-0.0560092 + x * (-0.0025614 - x * 9.73e-05)) +
                   y2 * (0.0002574 + x * 2.93e-05)));
    phi = originLatitude + latitude * CSIB_Second;
    lambda = originLongitude + longitude * CSIB_Second;
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_RDProjection = csib_ProjectionSlots<RD>::Table ();

}  // namespace clxml
