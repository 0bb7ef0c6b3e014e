// Mercator, projection code 5: ellipsoidal, true to scale at the origin latitude.
// No parameters of its own. North counts from the equator. Leans on latitudes.
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// J.P. Snyder, Map Projections - A Working Manual, USGS Professional Paper 1395 (1987), eq. 7-6 to
// 7-10; the scale at a standard parallel after IOGP Guidance Note 7-2 (2021), method 9805.
//   K   a k m1 with m = cos phi / sqrt (1 - e2 sin2 phi), metres
struct Mercator {
  csib_IsometricLatitude isometric;
  double K = 0.0;
  double a = 0.0;
  double lambda0 = 0.0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    // Older blocks have a latitude there that meant nothing.
    if (in.Version () <= 1.1) block.OriginLatitude = 0.0;
    const csib_ProjectionFrame frame (block);
    isometric.Set (frame.a, frame.b);
    a = frame.a;
    lambda0 = frame.longitude;
    // The parallel of true scale is no pole, where it has no length.
    if (std::abs (frame.latitude) > std::numbers::pi / 2.0 - 1e-9) in.Fail (CSIB_WrongFormat);
    K = a * frame.scale * isometric.M (frame.latitude);
    return in.Status ();
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    north = K * isometric.Of (phi);
    east = K * csib_WithinPi (lambda - lambda0);
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    phi = isometric.Latitude (north / K);
    lambda = lambda0 + east / K;
  }

  double Scale (double phi, double) const noexcept { return K / (a * isometric.M (phi)); }

  double Convergence (double, double) const noexcept { return 0.0; }
};

}  // namespace

constinit const csib_ProjectionOperations csib_MercatorProjection =
    csib_ProjectionSlots<Mercator>::Table ();

}  // namespace clxml
