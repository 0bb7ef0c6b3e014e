// Cassini-Soldner, projection code 2, by series.
// No parameters of its own; the scale is a factor of both coordinates. Leans on latitudes.
#include "geodesy/projection_slots.h"

namespace clxml {
namespace {

// Snyder (1987), eq. 13-7 to 13-12, forward in the sine and cosine of the latitude in place of its
// tangent, so that a pole is no special case there.
//   A   difference of longitude times cos phi      N   radius in the prime vertical, metres
//   T   tan2 phi      C   e'2 cos2 phi             R   radius in the meridian, metres
struct Cassini {
  static constexpr csib_Status NoScale = CSIB_NoCassiniScale;

  csib_MeridianArc arc;
  double a = 0.0;
  double k = 1.0;
  double M0 = 0.0;
  double lambda0 = 0.0;

  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    const csib_ProjectionFrame frame (block);
    arc.Set (frame.a, frame.b);
    a = frame.a;
    k = frame.scale;
    M0 = arc.Of (frame.latitude);
    lambda0 = frame.longitude;
    return in.Status ();
  }

  void Forward (double phi, double lambda, double& north, double& east) const noexcept {
    const double w = csib_WithinPi (lambda - lambda0);
    const double s = std::sin (phi);
    const double c = std::cos (phi);
    const double s2 = s * s;
    const double c2 = c * c;
    const double w2 = w * w;
    const double N = a / std::sqrt (1.0 - arc.e2 * s2);
    const double C = arc.e2 / (1.0 - arc.e2) * c2;
    east = k * N * c * w * (1.0 - w2 * s2 * (1.0 / 6 + w2 * ((8.0 + 8.0 * C) * c2 - s2) / 120));
    north = k * (arc.Of (phi, s, c) - M0 +
                 N * s * c * w2 * (1.0 / 2 + w2 * ((5.0 + 6.0 * C) * c2 - s2) / 24));
  }

  void Inverse (double north, double east, double& phi, double& lambda) const noexcept {
    double s = 0.0;
    double c = 0.0;
    const double phi1 = arc.Footpoint (M0 + north / k, s, c);
    const double t = s / c;
    const double T = t * t;
    const double v2 = 1.0 - arc.e2 * s * s;
    const double D = east / k * std::sqrt (v2) / a;
    const double D2 = D * D;
    const double NoverR = v2 / (1.0 - arc.e2);
    phi = phi1 - NoverR * t * D2 * (1.0 / 2 - (1.0 + 3.0 * T) * D2 / 24);
    lambda = lambda0 + D / c * (1.0 - T * D2 * (1.0 / 3 - (1.0 + 3.0 * T) * D2 / 15));
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_CassiniProjection =
    csib_ProjectionSlots<Cassini>::Table ();

}  // namespace clxml
