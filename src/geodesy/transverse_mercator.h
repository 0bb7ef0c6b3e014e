// Transverse Mercator: the constants and formulas that the grids standing on it share.
// Plain numbers in and out, without the false origin: radians, metres. Leans on latitudes.
#pragma once

#include "geodesy/latitudes.h"

namespace clxml {

/// Redfearn's series, with a meridian arc exact to rounding. Inside a zone of 3.5 degrees on either
/// side of the central meridian it is within 0.1 mm of the exact projection; far outside it grows
/// without warning, and near a pole the inverse may be not finite. Nothing here tests its input:
/// what is not finite gives what is not finite, in bounded time.
struct csib_TransverseMercator {
  double a = 0.0;  ///< semi-major axis, metres
  double e2 = 0.0;
  double psiFactor = 1.0;        ///< 1/(1 - e2)
  double originLongitude = 0.0;  ///< of the central meridian, radians
  double k0 = 1.0;               ///< scale on the central meridian
  double inverseScale = 1.0;     ///< 1/k0
  double inverseRadius = 0.0;    ///< 1/(k0 a)
  double originArc = 0.0;        ///< meridian arc of the origin, metres
  csib_MeridianArc arc;

  /// Axes in metres, origin in radians, scale on the central meridian.
  void Set (double a, double b, double originLatitude, double originLongitude,
            double scale) noexcept;
  /// Latitude and longitude to north and east of the origin.
  void Forward (double latitude, double longitude, double& north, double& east) const noexcept;
  /// North and east of the origin to latitude and longitude, the longitude near the central
  /// meridian's and perhaps beyond pi.
  void Inverse (double north, double east, double& latitude, double& longitude) const noexcept;
  /// Point scale factor at a geodetic point.
  double Scale (double latitude, double longitude) const noexcept;
  /// Azimuth of grid north at a geodetic point, radians: positive east of the central meridian in
  /// the northern hemisphere.
  double Convergence (double latitude, double longitude) const noexcept;
};

}  // namespace clxml
