// The transform: the one object that converts coordinates.
// Holds a coordinate system as values, and the coordinate system block that computes with it: WGS84
// to local geodetic, local geodetic to the grid of the job, and back. Every assembly has an
// identity of its own, which is all that a cache need compare. Leans on coordsys and on the block.
#pragma once

#include <cstdint>
#include <memory>

#include "Library/coords/coord.h"
#include "Library/coordsys/coordsys.h"

namespace clxml {

struct csib_Block;

/// The identity that stands for no transform; no transform has it.
inline constexpr uint32_t TRANSFORM_NoId = 0xFFFFFFFF;

/// A coordinate system in use.
///
/// The frames, from the satellites to the surveyor: WGS84; uncalibrated local, which is the datum
/// transformation alone; local, which also carries the calibration, so that it projects to the grid
/// without a horizontal adjustment on the way; cogo grid, with north and east increasing, as all
/// computations see it; grid, the same point as the job shows and stores it.
///
/// Conversions never throw and report no error: where there is no result the destination is the
/// null value of its class. They allocate nothing. Source and destination may be the same object
/// where they are of one type.
///
/// Changed by Set only. Look-ups in grids change caches inside, also through a const transform: one
/// transform serves one thread at a time.
class Transform {
 public:
  /// All parts at their defaults, no components; converts nothing.
  Transform ();
  /// Assembles at once; asserts "error == COORDSYS_NoError", so for sound parts only. Parameters as
  /// those of Set.
  Transform (uint16_t mask, const coordsys_Ellipsoid* ellipsoid,
             const coordsys_Projection* projection, const coordsys_Datum* datum,
             const coordsys_Plane* plane, const coordsys_Height* height,
             const coordsys_Corrections* corrections, uint32_t options);
  Transform (const Transform&) = delete;
  Transform& operator= (const Transform&) = delete;
  ~Transform ();

  /// A copy with a block of its own and the same identity. Asserts "false" and gives null when the
  /// block cannot be copied (a grid file has gone).
  std::unique_ptr<Transform> Clone () const;
  /// A clone on which Set is called; null on failure, with the error. The source stays.
  std::unique_ptr<Transform> CloneAndChange (
      uint16_t mask, const coordsys_Ellipsoid* ellipsoid, const coordsys_Projection* projection,
      const coordsys_Datum* datum, const coordsys_Plane* plane, const coordsys_Height* height,
      const coordsys_Corrections* corrections, uint32_t options, coordsys_Error* error) const;
  /// Assembles: takes the parts of the mask (coordsys_Components; COORDSYS_SetScaleOnly has none),
  /// keeps those set before, computes the ground scale, builds the block and takes a new identity.
  /// A bit without its pointer asserts ("ellipsoid != NULL" and so on) and fails with
  /// COORDSYS_InternalError before any part is taken; so does memory that is not there, with
  /// COORDSYS_OutOfMemory. Options are a mask of coordsys_Options. False, with the error, when
  /// there is no block: nothing converts then. True with COORDSYS_FileMissingTolerated when a
  /// component was dropped for want of its file.
  bool Set (uint16_t mask, const coordsys_Ellipsoid* ellipsoid,
            const coordsys_Projection* projection, const coordsys_Datum* datum,
            const coordsys_Plane* plane, const coordsys_Height* height,
            const coordsys_Corrections* corrections, uint32_t options, coordsys_Error* error);

  /// Changes with every Set, successful or not; a clone has that of its source. Never
  /// TRANSFORM_NoId, never given twice in a process.
  uint32_t GetId () const noexcept { return _id; }

  /// The datum alone: to uncalibrated local. A point without a height has a result only where the
  /// datum has a form without heights.
  void WGS84ToLocal (const coord_WGS84& source, coord_Local& destination) const;
  /// The datum alone: from uncalibrated local. Null for a point without a height.
  void LocalToWGS84 (const coord_Local& source, coord_WGS84& destination) const;
  /// Projection, shift grid, geoid and vertical adjustment.
  void LocalToCogoGrid (const coord_Local& source, coord_CogoGrid& destination) const;
  /// The same with the horizontal adjustment on the way.
  void UncalibratedLocalToCogoGrid (const coord_Local& source, coord_CogoGrid& destination) const;
  /// The height is null where it cannot be found, the position then stands.
  void CogoGridToLocal (const coord_CogoGrid& source, coord_Local& destination) const;
  void CogoGridToUncalibratedLocal (const coord_CogoGrid& source, coord_Local& destination) const;
  /// Reflection by the grid orientation about the false origin, and the ground scale's offsets.
  void CogoGridToGrid (const coord_CogoGrid& source, coord_CorrectedGrid& destination) const;
  void GridToCogoGrid (const coord_CorrectedGrid& source, coord_CogoGrid& destination) const;

  /// Ellipsoidal less orthometric height, metres; null without a horizontal part or where the geoid
  /// has no value (or there is none).
  void GeoidSeparation (const coord_WGS84& point, double& separation) const;
  /// One stage alone, forward, in place. Empty where there is no such part; null without a
  /// horizontal part.
  void ApplyHorizontalAdjustment (coord_CogoGrid& point) const;
  void ApplyVerticalAdjustment (coord_CogoGrid& point) const;

  double GetScale () const noexcept { return Projection.Scale; }
  /// The height of the project location, metres; null for none.
  double GetProjectHeight () const noexcept {
    return Projection.GroundScale.ProjectLocation.Height;
  }
  /// What a distance on the grid is multiplied by to become one on the ground: 1/(k R/(R + h)), k
  /// the point scale, R the prime vertical radius, h the height of the point or else of the
  /// project. For COORDSYS_ScaleOnly the scale of the projection whatever the point. Null without a
  /// horizontal part, a height or a projection.
  double GroundScaleAt (const coord_Local& point) const;
  void GetAzimuthCorrection (double& northAzimuth,
                             coordsys_GridOrientation& orientation) const noexcept;
  /// The azimuth turned by pi for a grid whose north runs to the south, and by pi for azimuths that
  /// count from south, within 0 to 2 pi; null stays null.
  static double AzimuthCorrected (coordsys_GridOrientation orientation, bool southAzimuth,
                                  double azimuth);

  // Adjustment records between the job's grid, in which they are stored, and the cogo grid.
  coordsys_Height ConvertHeightToCogo (const coordsys_Height& height) const;
  coordsys_Height ConvertHeightToGrid (const coordsys_Height& height) const;
  coordsys_Plane ConvertPlaneToCogo (const coordsys_Plane& plane) const;
  coordsys_Plane ConvertPlaneToGrid (const coordsys_Plane& plane) const;

  // What it was assembled of, to be read; Set alone changes it.
  coordsys_Ellipsoid Ellipsoid;
  coordsys_Projection Projection;
  coordsys_Datum Datum;
  coordsys_Plane Plane;
  coordsys_Height Height;
  double NorthAzimuth = 0.0;  ///< pi for azimuths that count from south, else 0
  coordsys_GridOrientation GridOrientationCopy = COORDSYS_IncreasingNorthEast;
  uint16_t Components = 0;  ///< mask of coordsys_Components
  coordsys_Corrections Corrections;
  uint32_t Options = 0;  ///< mask of coordsys_Options of the last assembly

 private:
  class GridDoor;
  struct CopyParts {};
  // The parts and the identity, without a block.
  Transform (const Transform& other, CopyParts);

  coordsys_Axes Axes () const noexcept;
  double GroundScaleIn (csib_Block& block, const coord_Local& point) const;
  void ComputeGroundScale ();
  void ToCogoGrid (const coord_Local& source, coord_CogoGrid& destination, bool isCalibrated) const;
  void ToLocal (const coord_CogoGrid& source, coord_Local& destination, bool isCalibrated) const;

  // The pair of points that a conversion of the datum found last, where the datum has seven
  // parameters: a point runs through datum and grid in one go, and the second conversion needs what
  // the first one knew.
  struct DatumPair {
    coord_Local Local;
    coord_WGS84 WGS84;
  };
  bool RemembersPairs () const noexcept;
  bool IsRemembered (const coord_Local& local) const noexcept;

  mutable DatumPair _pair;             // null, or of this block
  std::unique_ptr<csib_Block> _block;  // null until an assembly succeeded
  uint32_t _id;
};

/// Allocates and assembles; null on failure, with the error. Parameters as those of Transform::Set.
std::unique_ptr<Transform> Transform_Create (
    uint16_t mask, const coordsys_Ellipsoid* ellipsoid, const coordsys_Projection* projection,
    const coordsys_Datum* datum, const coordsys_Plane* plane, const coordsys_Height* height,
    const coordsys_Corrections* corrections, uint32_t options, coordsys_Error* error);

}  // namespace clxml
