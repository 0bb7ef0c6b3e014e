// The datum transformations that need no grid, and the Cartesian conversions under them.
// No datum, three parameters (Molodensky) and seven parameters; the block reaches them by the table
// of its datum code. Leans on csib.
#pragma once

#include <array>

#include "geodesy/csib.h"

namespace clxml {

/// Geodetic to Cartesian on the ellipsoid with the semi-axes a and b (metres), by the ellipsoidal
/// height. CSIB_NoHeightForCartesian without one.
/// Source: Heiskanen and Moritz, Physical Geodesy (1967), equation 5-3.
csib_Status csib_GeodeticToCartesian (double a, double b, const csib_Geodetic& point,
                                      csib_Cartesian& xyz) noexcept;
/// Cartesian to geodetic; the result has its ellipsoidal height, and longitude 0.0 on the axis.
/// Two steps of Bowring; where the second still turns phi by 1e-12, at most 100 rounds of
/// phi = atan2 (z + e² N sin phi, p) until phi changes by less than 1e-15, then
/// CSIB_CartesianDidNotConverge: near the centre, and for NaN.
/// Source: B.R. Bowring, Survey Review 23 (1976), 323-327, and 28 (1985), 202-206 for the height;
/// Heiskanen and Moritz (1967), equation 5-8.
csib_Status csib_CartesianToGeodetic (double a, double b, const csib_Cartesian& xyz,
                                      csib_Geodetic& point) noexcept;

/// The WGS84 point of a local one with an ellipsoidal height, and what a metre more of that height
/// adds to its latitude, longitude (radians) and height. Over the hundred metres between two
/// ellipsoids that is exact to 1e-8 m. False, with both outs undefined, for a datum other than
/// seven parameters, without the height, near the axis and where there is no WGS84 point.
bool csib_HeightRates (const csib_Block& block, const csib_Geodetic& local, csib_Geodetic& wgs84,
                       csib_Geodetic& rates) noexcept;

/// A seven parameter transformation P' = S M P + T: metres, radians and a multiplier near 1. The
/// block's runs from local to WGS84, that of a job's record from WGS84 to local.
struct csib_SevenParameters {
  double TX = 0.0;
  double TY = 0.0;
  double TZ = 0.0;
  double RX = 0.0;
  double RY = 0.0;
  double RZ = 0.0;
  double S = 1.0;
};

/// A rotation matrix, three rows.
using csib_Rotation = std::array<std::array<double, 3>, 3>;

/// M of three angles: the turns about X, Y and Z one after the other, exact for any angle, with the
/// signs of a rotation of the axes (coordinate frame).
csib_Rotation csib_RotationMatrix (double rx, double ry, double rz) noexcept;
/// The parameters of the opposite direction, exactly: the angles are read from the inverse of M,
/// S' = 1/S, T' = -M' T/S. CSIB_Singular when a value is no number, the scale is 0.0 or a
/// rotation of the inverse is not within a right angle; `out` stays as it was.
csib_Status csib_InvertSevenParameters (const csib_SevenParameters& parameters,
                                        csib_SevenParameters& out) noexcept;

}  // namespace clxml
