// Conformal mappings by way of a sphere: Gauss's onto it, and the stereographic from it.
// What the oblique and the double stereographic and the oblique cylindrical share. Leans on
// latitudes.
#pragma once

#include "geodesy/latitudes.h"

namespace clxml {

/// Gauss's conformal mapping of the ellipsoid onto a sphere, with least distortion at an origin:
/// latitudes b of the sphere by psi_sphere = alpha psi + K, longitudes times alpha.
/// Source: C.F. Gauss, Untersuchungen ueber Gegenstaende der hoeheren Geodaesie, Goettingen (1843);
/// Federal Office of Topography swisstopo, Formulas and constants for the calculation of the Swiss
/// conformal cylindrical projection (2016), section 3.1 and 3.2.
struct csib_GaussSphere {
  csib_IsometricLatitude isometric;
  double a = 0.0;
  double alpha = 1.0;
  double K = 0.0;
  double R = 0.0;  ///< radius sqrt (M0 N0), metres
  double sin0 = 0.0;
  double cos0 = 1.0;  ///< of the origin's latitude on the sphere

  void Set (double majorAxis, double minorAxis, double originLatitude) noexcept {
    isometric.Set (majorAxis, minorAxis);
    a = majorAxis;
    const double e2 = isometric.e2;
    const double s = std::sin (originLatitude);
    const double c = std::cos (originLatitude);
    alpha = std::sqrt (1.0 + e2 * c * c * c * c / (1.0 - e2));
    sin0 = s / alpha;
    cos0 = std::sqrt (1.0 - sin0 * sin0);
    K = std::atanh (sin0) - alpha * isometric.Of (s, c);
    R = a * std::sqrt (1.0 - e2) / (1.0 - e2 * s * s);
  }

  /// True for an origin at a pole: the isometric latitude is infinite there and the mapping has no
  /// constant K.
  bool IsPolar () const noexcept { return std::isinf (K); }

  /// Sine and cosine of the latitude b on the sphere.
  void Forward (double phi, double& sinB, double& cosB) const noexcept {
    const double psi = alpha * isometric.Of (phi) + K;
    const double t = std::exp (-std::abs (psi));
    sinB = std::copysign ((1.0 - t * t) / (1.0 + t * t), psi);
    cosB = 2.0 * t / (1.0 + t * t);
  }

  /// The geodetic latitude of the point whose latitude on the sphere has this tangent.
  double Latitude (double tanB) const noexcept {
    return isometric.Latitude ((std::asinh (tanB) - K) / alpha);
  }

  /// Scale of the mapping, by the cosine of both latitudes.
  double Scale (double phi, double cosB) const noexcept {
    const double s = std::sin (phi);
    return alpha * R * cosB * std::sqrt (1.0 - isometric.e2 * s * s) / (a * std::cos (phi));
  }
};

/// The stereographic projection of a sphere about an origin.
/// Source: Snyder (1987), eq. 21-2 to 21-15 and 20-14 to 20-18; the sine and cosine of the angular
/// distance c = 2 atan h are written as rational functions of h.
struct csib_SphereStereographic {
  double diameter = 0.0;  ///< of the sphere times the scale, metres
  double sin0 = 0.0;
  double cos0 = 1.0;

  /// From a latitude's sine and cosine, and a longitude difference l.
  void Forward (double s, double c, double l, double& north, double& east) const noexcept {
    const double cosL = std::cos (l);
    const double A = diameter / (1.0 + sin0 * s + cos0 * c * cosL);
    north = A * (cos0 * s - sin0 * c * cosL);
    east = A * c * std::sin (l);
  }

  /// To the tangent of the latitude, and the longitude difference.
  void Inverse (double north, double east, double& tanLatitude, double& l) const noexcept {
    const double x = east / diameter;
    const double y = north / diameter;
    const double h2 = x * x + y * y;
    const double along = cos0 * (1.0 - h2) - 2.0 * y * sin0;
    tanLatitude = (sin0 * (1.0 - h2) + 2.0 * y * cos0) / std::hypot (2.0 * x, along);
    l = std::atan2 (2.0 * x, along);
  }

  /// Diameter over the sphere's, times this: the point scale.
  double Scale (double s, double c, double l) const noexcept {
    return 2.0 / (1.0 + sin0 * s + cos0 * c * std::cos (l));
  }

  /// Azimuth of grid north: what the great circle from the origin turns on its way, by Napier's
  /// analogies (I. Todhunter and J.G. Leathem, Spherical Trigonometry, 1901, art. 52).
  double Convergence (double s, double c, double l) const noexcept {
    const double cosL = std::cos (l);
    return std::atan2 ((sin0 + s) * std::sin (l), cos0 * c + (1.0 + sin0 * s) * cosL);
  }
};

}  // namespace clxml
