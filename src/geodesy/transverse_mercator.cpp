// Transverse Mercator, projection code 14, by Redfearn's series.
// No parameters of its own: the origin, scale and ellipsoid of the block. Leans on latitudes.
#include "geodesy/transverse_mercator.h"

#include "geodesy/projection_slots.h"

namespace clxml {

// J.C.B. Redfearn, Transverse Mercator formulae, Empire Survey Review 9 (69), 1948, 318-322; the
// arrangement in psi = nu/rho is that of the Geocentric Datum of Australia Technical Manual, ICSM
// (2002), chapter 5. Powers of the longitude difference w go to the eighth. Written here in the
// sine and cosine of the latitude instead of its tangent t (c2 t2 = s2), so that a pole is no
// special case of the forward side.
//   nu, rho   radii of curvature in the prime vertical and the meridian, metres
//   psi       nu/rho = v2/(1 - e2), v2 = 1 - e2 s2
namespace {

struct Terms {
  double w, s, c, w2, s2, c2, v2, psi;
};

[[gnu::always_inline]] inline Terms TermsAt (const csib_TransverseMercator& tm, double latitude,
                                             double longitude) noexcept {
  const double w = csib_WithinPi (longitude - tm.originLongitude);
  const double s = std::sin (latitude);
  const double c = std::cos (latitude);
  const double v2 = 1.0 - tm.e2 * s * s;
  return {w, s, c, w * w, s * s, c * c, v2, v2 * tm.psiFactor};
}

// 1/n!, of the series' terms: a product costs a fraction of a quotient.
constexpr double f2 = 1.0 / 2, f3 = 1.0 / 6, f4 = 1.0 / 24, f5 = 1.0 / 120, f6 = 1.0 / 720,
                 f7 = 1.0 / 5040, f8 = 1.0 / 40320;

}  // namespace

void csib_TransverseMercator::Set (double majorAxis, double minorAxis, double originLatitude,
                                   double longitude, double scale) noexcept {
  a = majorAxis;
  e2 = (majorAxis - minorAxis) * (majorAxis + minorAxis) / (majorAxis * majorAxis);
  psiFactor = 1.0 / (1.0 - e2);
  originLongitude = longitude;
  k0 = scale;
  inverseScale = 1.0 / scale;
  inverseRadius = 1.0 / (scale * majorAxis);
  arc.Set (majorAxis, minorAxis);
  originArc = arc.Of (originLatitude);
}

void csib_TransverseMercator::Forward (double latitude, double longitude, double& north,
                                       double& east) const noexcept {
  const auto [w, s, c, w2, s2, c2, v2, psi] = TermsAt (*this, latitude, longitude);
  const double nu = a / std::sqrt (v2);
  const double n4 = c2 * (4.0 * psi + 1.0) * psi - s2;
  const double n6 =
      c2 * psi *
          (psi * (psi * (8.0 * psi * (11.0 * c2 - 24.0 * s2) - 28.0 * (c2 - 6.0 * s2)) +
                  (c2 - 32.0 * s2)) -
           2.0 * s2) +
      s2 * s2;
  const double n8 = c2 * (c2 * (1385.0 * c2 - 3111.0 * s2) + 543.0 * s2 * s2) - s2 * s2 * s2;
  const double e3 = psi * c2 - s2;
  const double e5 =
      c2 * psi * (psi * (4.0 * psi * (c2 - 6.0 * s2) + (c2 + 8.0 * s2)) - 2.0 * s2) + s2 * s2;
  const double e7 = c2 * (c2 * (61.0 * c2 - 479.0 * s2) + 179.0 * s2 * s2) - s2 * s2 * s2;
  north = k0 * (arc.Of (latitude, s, c) - originArc +
                nu * s * c * w2 * (f2 + w2 * (n4 * f4 + w2 * (n6 * f6 + w2 * (n8 * f8)))));
  east = k0 * nu * c * w * (1.0 + w2 * (e3 * f3 + w2 * (e5 * f5 + w2 * (e7 * f7))));
}

// The same source; x = E / (k0 nu), t the tangent, all at the footpoint latitude.
void csib_TransverseMercator::Inverse (double north, double east, double& latitude,
                                       double& longitude) const noexcept {
  double s = 0.0;
  double c = 0.0;
  const double phi = arc.Footpoint (originArc + north * inverseScale, s, c);
  const double inverseCosine = 1.0 / c;
  const double t = s * inverseCosine;
  const double t2 = t * t;
  const double v2 = 1.0 - e2 * s * s;
  const double psi = v2 * psiFactor;
  const double x = east * std::sqrt (v2) * inverseRadius;
  const double x2 = x * x;
  const double p4 = psi * (-4.0 * psi + 9.0 * (1.0 - t2)) + 12.0 * t2;
  const double p6 =
      psi * (psi * (psi * (8.0 * psi * (11.0 - 24.0 * t2) - 12.0 * (21.0 - 71.0 * t2)) +
                    15.0 * (15.0 + t2 * (-98.0 + 15.0 * t2))) +
             180.0 * t2 * (5.0 - 3.0 * t2)) +
      360.0 * t2 * t2;
  const double p8 = 1385.0 + t2 * (3633.0 + t2 * (4095.0 + 1575.0 * t2));
  const double l3 = psi + 2.0 * t2;
  const double l5 = psi * (psi * (-4.0 * psi * (1.0 - 6.0 * t2) + (9.0 - 68.0 * t2)) + 72.0 * t2) +
                    24.0 * t2 * t2;
  const double l7 = 61.0 + t2 * (662.0 + t2 * (1320.0 + 720.0 * t2));
  latitude = phi - t * psi * x2 * (f2 - x2 * (p4 * f4 - x2 * (p6 * f6 - x2 * (p8 * f8))));
  longitude = originLongitude +
              x * inverseCosine * (1.0 - x2 * (l3 * f3 - x2 * (l5 * f5 - x2 * (l7 * f7))));
}

double csib_TransverseMercator::Scale (double latitude, double longitude) const noexcept {
  const auto [w, s, c, w2, s2, c2, v2, psi] = TermsAt (*this, latitude, longitude);
  const double k4 = psi * (psi * (4.0 * psi * (c2 - 6.0 * s2) + (c2 + 24.0 * s2)) - 4.0 * s2);
  const double k6 = c2 * (61.0 * c2 - 148.0 * s2) + 16.0 * s2 * s2;
  return k0 * (1.0 + c2 * w2 * (psi * f2 + w2 * (k4 * f4 + w2 * (k6 * f6))));
}

double csib_TransverseMercator::Convergence (double latitude, double longitude) const noexcept {
  const auto [w, s, c, w2, s2, c2, v2, psi] = TermsAt (*this, latitude, longitude);
  const double g3 = c2 * psi * (2.0 * psi - 1.0);
  const double g5 = c2 * psi *
                    (psi * (psi * (psi * (11.0 * c2 - 24.0 * s2) - (11.0 * c2 - 36.0 * s2)) +
                            2.0 * (c2 - 7.0 * s2)) +
                     s2);
  const double g7 = c2 * (c2 * (17.0 * c2 - 26.0 * s2) + 2.0 * s2 * s2);
  return s * w * (1.0 + w2 * (g3 / 3 + w2 * (g5 / 15 + w2 * g7 / 315)));
}

namespace {

struct TransverseMercator : csib_TransverseMercator {
  csib_Status Read (csib_Block& block, csib_Bytes& in) noexcept {
    const csib_ProjectionFrame frame (block);
    Set (frame.a, frame.b, frame.latitude, frame.longitude, frame.scale);
    return in.Status ();
  }
};

}  // namespace

constinit const csib_ProjectionOperations csib_TransverseMercatorProjection =
    csib_ProjectionSlots<TransverseMercator>::Table ();

}  // namespace clxml
