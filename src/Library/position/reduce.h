// Between the forms of an observation.
// From the raw reading of a total station or a laser rangefinder to azimuth and distances, and
// back. Numbers only: allocates nothing and knows no job. Angles are radians, lengths metres; a
// null input gives a null output.
#pragma once

#include "Library/coords/coord.h"
#include "Library/position/total.h"
#include "Library/records/dbEnum.h"

namespace clxml {

class db_TotalAtmosphere;
class db_TotalBackBearing;
class db_TotalInstrument;

/// The radius of the earth for refraction and curvature, metres.
inline constexpr double REDUCE_EarthRadius = 6378137.298;

/// The numbers of a setup and a target that a reduction uses.
struct reduce_Setup {
  double EarthRadius = REDUCE_EarthRadius;
  double Refraction = MATHS_Null;     ///< coefficient k; null for no correction
  double PPM = MATHS_Null;            ///< of the distance; null for no correction
  double StationHeight = MATHS_Null;  ///< true height of the instrument
  double TargetHeight = MATHS_Null;   ///< true height of the target
  double ScaleFactor = 1.0;           ///< of horizontal distances
  double PrismConstant = MATHS_Null;
  total_PrismTypes PrismType = TOTAL_UnknownPrism;
  total_RMTIDs RMTID = TOTAL_RMTIDNone;
  bool UseProjectHeight = false;  ///< a null height counts as 0.0
};

/// What a laser observation is reduced with.
struct laser_Environment {
  double LaserHeight = MATHS_Null;
  double TargetHeight = MATHS_Null;
  double MagneticDeclination = MATHS_Null;
  bool SouthAzimuth = false;
};

/// The refraction coefficient k; null where the correction is off.
double reduce_RefractionCoefficient (total_RefractionType refraction) noexcept;
/// The atmosphere's PPM. If it is null, the instrument's refractive index less its carrier
/// wavelength * pressure / (273.15 + temperature).
double reduce_PPM (const db_TotalAtmosphere& atmosphere,
                   const db_TotalInstrument& instrument) noexcept;

/// True for a reading on face 2: the vertical circle is above pi, or, if it is null, face says so.
bool reduce_IsFace2 (double vertical, coord_Face face) noexcept;
/// Brings a reading to face 1. Without a vertical circle and a face both circles become null.
void reduce_ToFace1 (coord_Corrected& corrected) noexcept;
/// The same observation as read on the other face.
coord_Corrected reduce_OppositeFace (const coord_Corrected& corrected) noexcept;
coord_Circle reduce_OppositeFace (const coord_Circle& circle) noexcept;

// The corrections of a raw reading, in place. reverse turns a corrected reading into a raw one.

/// Adds the prism constant, or the correction of an angle-dependent prism, which changes the
/// vertical circle too. Drops a distance that is not above 0, with its standard error.
void reduce_PrismCorrection (coord_Circle& circle, const reduce_Setup& setup,
                             bool reverse) noexcept;
void reduce_PrismCorrection (coord_Circle& circle, const total_Target& target,
                             bool reverse) noexcept;
/// Scales the distance by 1 + PPM * 1e-6. A null PPM leaves it unchanged.
void reduce_PPMCorrection (coord_Circle& circle, double ppm, bool reverse) noexcept;
void reduce_PPMCorrection (coord_Circle& circle, const db_TotalAtmosphere& atmosphere,
                           const db_TotalInstrument& instrument, bool reverse) noexcept;
/// Corrects the vertical circle for refraction and the curvature of the earth: by
/// (1 - k) * distance / (2 * earthRadius).
void reduce_RefractionCorrection (coord_Circle& circle, double earthRadius, double k,
                                  bool reverse) noexcept;

/// Prism, PPM and refraction.
void reduce_CircleToCorrected (const coord_Circle& circle, coord_Corrected& corrected,
                               const reduce_Setup& setup) noexcept;
/// The inverse. Only the four main fields of circle are set.
void reduce_CorrectedToCircle (const coord_Corrected& corrected, coord_Circle& circle,
                               const reduce_Setup& setup) noexcept;
/// Face 1, from instrument and target to their marks, horizontal and vertical distance. Without
/// both heights the vertical distance is null.
void reduce_CorrectedToUnturned (const coord_Corrected& corrected, coord_Unturned& unturned,
                                 const reduce_Setup& setup) noexcept;
/// The inverse, on face 1. Without both heights vertical circle and distance are null.
void reduce_UnturnedToCorrected (const coord_Unturned& unturned, coord_Corrected& corrected,
                                 const reduce_Setup& setup) noexcept;
void reduce_UnturnedToCircle (const coord_Unturned& unturned, coord_Circle& circle,
                              const reduce_Setup& setup) noexcept;
void reduce_CircleToUnturned (const coord_Circle& circle, coord_Unturned& unturned,
                              const reduce_Setup& setup) noexcept;

/// Moves a line of sight from instrument and target to their marks, or back with reverse. Both
/// results are null if a value is; a line without length stays unchanged.
void reduce_AdjustForHeights (double& slopeDistance, double& zenith, double stationHeight,
                              double targetHeight, bool reverse) noexcept;

/// Azimuth = horizontal circle - backBearingCircle + azimuth, within 0 to 2 pi; null if one of the
/// three is. azimuth is that of the backsight. The distances are copied.
coord_Polar reduce_TurnToPolar (const coord_Unturned& unturned, double backBearingCircle,
                                double azimuth) noexcept;
/// Horizontal circle = azimuth of polar + backBearingCircle - azimuth, likewise.
coord_Unturned reduce_PolarToUnturned (const coord_Polar& polar, double backBearingCircle,
                                       double azimuth) noexcept;
/// Horizontal and vertical distance from the zenith angle and the slope distance; both null if one
/// of these is.
coord_Polar reduce_GroundToPolar (const coord_Ground& ground) noexcept;
/// The reverse. A shot that is vertical to a thousandth of a degree has its slope distance from the
/// vertical one alone. Angle and slope distance are null if one of the distances is.
coord_Ground reduce_PolarToGround (const coord_Polar& polar) noexcept;
/// The polar of a laser observation: magnetic declination, south azimuths, heights. Distances are
/// null if a value of the observation is; the vertical distance is null without both heights.
coord_Polar reduce_LaserToPolar (const coord_LaserOffset& laserOffset,
                                 const laser_Environment& env) noexcept;

/// The horizontal circle of the backsight for a reading whose raw vertical circle is given: that of
/// its face, or of the other face where that is null; the one of face 2 less pi. 0.0 for a mean
/// turned angle.
double BackBearingCircleFor (const db_TotalBackBearing& backBearing, double vertical,
                             bool isMTA) noexcept;

/// Moves a reading by offsets: to the right, outwards and upwards, null for none. out is null if
/// the vertical circle or the distance is null, or if all three offsets are.
void reduce_DistanceOffset (const coord_Corrected& corrected,
                            dbconfig_OffsetPerspectiveMode perspective, double leftRight,
                            double inOut, double vertical, const reduce_Setup& setup,
                            coord_Corrected& out);
/// The offset as seen from the instrument: negated for DBCONFIG_OffsetFromTarget. Both assert
/// "displayPerspective != DBCONFIG_OffsetAutomatic".
double reduce_LeftRightFromPerspective (double value, dbconfig_OffsetPerspectiveMode perspective);
double reduce_InOutFromPerspective (double value, dbconfig_OffsetPerspectiveMode perspective);

/// b - a within 0 to 2 pi.
double reduce_AngleFromTo (double a, double b) noexcept;
/// a - b within minus to plus pi.
double reduce_AngleDifference (double a, double b) noexcept;
/// The angle between a and b, 0 to pi.
double reduce_AngleSeparation (double a, double b) noexcept;

}  // namespace clxml
