// The parts of a coordinate system as values.
// Ellipsoid, projection, datum, plane, height and corrections, as the records of a job store them
// and as a Transform holds them; the masks and errors of an assembly; and the way between the axes
// of the computations and those of the job. Angles are radians, lengths metres. Leans on coord.
#pragma once

#include <cstdint>

#include "Library/coords/coord.h"
#include "Library/records/dbEnum.h"
#include "str.h"

namespace clxml {

class dbAccess;
class db_Corrections;
class db_Datum;
class db_Ellipsoid;
class db_Height;
class db_Plane;
class db_Projection;

/// Which parts of a transform are set: a mask.
enum coordsys_Components : uint16_t {
  COORDSYS_SetEllipsoid = 1,
  COORDSYS_SetDatum = 2,
  COORDSYS_SetProjection = 4,
  COORDSYS_SetHorzAdjustment = 8,
  COORDSYS_SetVertAdjustment = 16,
  COORDSYS_SetCorrections = 32,
  COORDSYS_SetScaleOnly = 64,  ///< the projection is COORDSYS_ScaleOnly; no part of its own
};

/// How an assembly treats the files of a coordinate system: a mask. What a Skip bit names is not
/// opened, and the transform computes without it.
enum coordsys_Options : uint32_t {
  COORDSYS_SkipGeoidFile = 2,
  COORDSYS_UsesGeoidFile = 4,  ///< set where the height has a geoid
  COORDSYS_SkipDatumGrid = 8,
  COORDSYS_UsesDatumGrid = 16,  ///< set where the datum is a grid
  COORDSYS_SkipUKGridFiles = 32,
  /// A missing file is not fatal: its component is dropped, the error is
  /// COORDSYS_FileMissingTolerated and the assembly goes on.
  COORDSYS_TolerateMissingFiles = 64,
  COORDSYS_SkipProjectionGrid = 128,
  COORDSYS_SkipShiftGrid = 256,
  COORDSYS_AllowNoProjectHeight = 512,  ///< a real projection may lack a project height
  COORDSYS_SkipAllFiles = COORDSYS_SkipGeoidFile | COORDSYS_SkipDatumGrid |
                          COORDSYS_SkipUKGridFiles | COORDSYS_SkipProjectionGrid |
                          COORDSYS_SkipShiftGrid,  ///< 426
};

/// How an assembly ended.
enum coordsys_Error : int32_t {
  COORDSYS_NoError = 0,
  COORDSYS_OutOfMemory = 1,
  COORDSYS_GeoidFileError = 2,
  COORDSYS_DatumGridError = 3,
  COORDSYS_FileError = 4,
  COORDSYS_UKGridError = 5,
  COORDSYS_InternalError = 6,
  COORDSYS_FileMissingTolerated = 7,
  COORDSYS_ProjectionGridError = 8,
  COORDSYS_ShiftGridError = 9,
  COORDSYS_NoProjectHeight = 10,
};

/// The scale between grid and ground, about a location of the project.
struct coordsys_GroundScale {
  coordsys_GroundScaleFactorType Type = COORDSYS_GridScaleFactor;
  double Factor =
      1.0;  ///< multiplies grid coordinates; null and 0, which new records have, count as 1
  coord_Local ProjectLocation;  ///< where grid and ground agree
  double NorthingOffset = 0.0;  ///< taken off on the way to the job's grid
  double EastingOffset = 0.0;
  double NorthingDelta = 0.0;  ///< what the factor moves the location by; computed
  double EastingDelta = 0.0;
};

/// A map projection. What the origins and orientations mean depends on its type.
struct coordsys_Projection {
  coordsys_ProjectionType ProjectionType = COORDSYS_ScaleOnly;
  coord_Local OriginLocal;
  coord_CorrectedGrid OriginGrid;  ///< false origin
  double Scale = 1.0;
  coordsys_GridElevation GridElevation = COORDSYS_Ground;
  double Orientation1 = MATHS_Null;
  double Orientation2 = MATHS_Null;
  coordsys_AzimuthFormat AzimuthFormat = COORDSYS_GridAzimuth;
  coordsys_OriginCenter OriginCenter = COORDSYS_OriginAtEquator;
  bool Rectify = false;
  coordsys_ProjectionArea Area = COORDSYS_AreaNone;
  Str UKNorthGridFile;
  Str UKEastGridFile;
  Str ProjectionGridFile;
  Str ShiftGridFile;
  coordsys_GroundScale GroundScale;
};

/// The way from WGS84 to the local datum.
struct coordsys_Datum {
  coordsys_DatumType DatumType = COORDSYS_NoDatum;
  double EarthRadius = 6378137.0;
  double Flattening = 0.0033528106718309905;
  double RotationX = 0.0;
  double RotationY = 0.0;
  double RotationZ = 0.0;
  double TranslationX = 0.0;
  double TranslationY = 0.0;
  double TranslationZ = 0.0;
  double Scale = 1.0;  ///< a factor near 1
  Str GridName;
};

/// The horizontal adjustment: a similarity about an origin of the job's grid.
struct coordsys_Plane {
  coordsys_PlaneType PlaneType = COORDSYS_NoHorizontal;
  double OriginNorth = MATHS_Null;
  double OriginEast = MATHS_Null;
  double TranslationNorth = MATHS_Null;
  double TranslationEast = MATHS_Null;
  double Rotation = MATHS_Null;
  double ScaleFactor = MATHS_Null;
};

/// The vertical adjustment: a plane about an origin of the job's grid, a geoid or both.
struct coordsys_Height {
  coordsys_HeightType HeightType = COORDSYS_NoVertical;
  double OriginNorth = MATHS_Null;
  double OriginEast = MATHS_Null;
  double NorthAdjustment = MATHS_Null;  ///< slope to the north, metres a metre
  double EastAdjustment = MATHS_Null;
  double ElevAdjustment = MATHS_Null;  ///< at the origin
  Str GeoidFilename;
};

/// How azimuths and distances of a job are understood.
struct coordsys_Corrections {
  coordsys_ValuesPresent ValuesPresent{127};
  bool SouthAzimuth = false;
  coordsys_GridOrientation GridOrientation = COORDSYS_IncreasingNorthEast;
  double MagneticDeclination = 0.0;
  coordsys_CogoDistance Distances = COORDSYS_GroundDistance;
  coordsys_SubdivideCode SubDivideCode = COORDSYS_UseName;
  bool NeighbourhoodAdjustment = false;
  coordsys_WeightExponent WeightExponent = COORDSYS_WeightExponentZeroPointFive;
};

// The parts that the records of a job stand for.
coordsys_Ellipsoid coordsys_FromRecord (const db_Ellipsoid& record);
coordsys_Datum coordsys_FromRecord (const db_Datum& record);
coordsys_Projection coordsys_FromRecord (const db_Projection& record);
coordsys_Plane coordsys_FromRecord (const db_Plane& record);
coordsys_Height coordsys_FromRecord (const db_Height& record);
coordsys_Corrections coordsys_FromRecord (const db_Corrections& record);

/// The parts of a coordinate system, which of them are set, and how their files are treated.
struct coordsys_Parts {
  coordsys_Ellipsoid Ellipsoid;
  coordsys_Projection Projection;
  coordsys_Datum Datum;
  coordsys_Plane Plane;
  coordsys_Height Height;
  coordsys_Corrections Corrections;
  uint16_t Components = 0;  ///< mask of coordsys_Components
  uint32_t Options = 0;     ///< mask of coordsys_Options
};
/// The parts that the newest records of a job say. A part is set where there is a record that says
/// something: an ellipsoid with both parameters, a projection, datum, plane or height that is not
/// none, any corrections. The options tell whether a datum grid or a geoid file is used.
coordsys_Parts coordsys_PartsOf (const dbAccess& job);

/// The frames in which a job computes, from its corrections, components and projection type.
coordsys_CogoSettings coordsys_CogoSystemOf (const coordsys_Corrections& corrections,
                                             uint16_t components,
                                             coordsys_ProjectionType projectionType) noexcept;

/// The way between the cogo grid and the job's grid: reflection about an origin, and the offsets of
/// the ground scale. Absent values stay absent; an absent offset is none.
class coordsys_Axes {
 public:
  /// The origin is that of the projection, where the components have one, its type is not
  /// COORDSYS_NoProjection and it has a false origin; else (0, 0).
  coordsys_Axes (uint16_t components, const coordsys_Projection& projection,
                 coordsys_GridOrientation orientation) noexcept;

  void ToGrid (const coord_CogoGrid& cogo, coord_CorrectedGrid& grid) const noexcept;
  void ToCogo (const coord_CorrectedGrid& grid, coord_CogoGrid& cogo) const noexcept;
  // The records: the origin as a point, slopes and translations negated along reversed axes.
  coordsys_Height ToGrid (coordsys_Height cogo) const noexcept;
  coordsys_Height ToCogo (coordsys_Height grid) const noexcept;
  coordsys_Plane ToGrid (coordsys_Plane cogo) const noexcept;
  coordsys_Plane ToCogo (coordsys_Plane grid) const noexcept;

 private:
  void MoveToGrid (double& north, double& east) const noexcept;
  void MoveToCogo (double& north, double& east) const noexcept;
  void Turn (double& alongNorth, double& alongEast) const noexcept;

  double _originNorth = 0.0;
  double _originEast = 0.0;
  double _northingOffset = 0.0;
  double _eastingOffset = 0.0;
  bool _northReversed;
  bool _eastReversed;
};

}  // namespace clxml
