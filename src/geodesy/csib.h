// The coordinate system block: the numerical engine under every transform.
// One ellipsoid, datum, projection, geoid, horizontal and vertical adjustment and shift grid, with
// the operations of each as a table of functions, and the byte string in which all of it is stored.
// It knows no class of the job: plain structures, 8-bit and 16-bit texts and signed 16-bit
// statuses. Leans on csib_bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "geodesy/csib_bytes.h"
#include "geodesy/csib_status.h"

namespace clxml {

// The WGS84 ellipsoid of every datum transformation, and its flattening where the differences of
// Molodensky need it. That one is the ellipsoid's own as published; the axes have 0.00335281067183,
// which is also the default of records and coordinates. So a datum of three parameters without any
// shift between two WGS84 ellipsoids still moves a height by 0.045 mm times the squared sine of the
// latitude.
inline constexpr double CSIB_WGS84MajorAxis = 6378137.0;
inline constexpr double CSIB_WGS84MinorAxis = 6356752.3142;
inline constexpr double CSIB_WGS84Flattening = 0.003352810664747;

/// Radians in one second of arc, and the factors between degrees and radians.
inline constexpr double CSIB_Second = 4.84813681109536e-6;
inline constexpr double CSIB_DegreesOfRadian = 57.29577951308232;
inline constexpr double CSIB_RadiansOfDegree = 0.017453292519943295;

/// A geodetic point inside the block: radians, metres. A height counts only with its flag.
struct csib_Geodetic {
  double Latitude = 0.0;
  double Longitude = 0.0;
  double EllipsoidalHeight = 0.0;
  double OrthometricHeight = 0.0;
  bool HasEllipsoidal = false;
  bool HasOrthometric = false;
};

/// A grid point inside the block, without the false origin: metres. The elevation of a grid point
/// stands in the orthometric height.
struct csib_Grid {
  double North = 0.0;
  double East = 0.0;
  double EllipsoidalHeight = 0.0;
  double OrthometricHeight = 0.0;
  bool HasEllipsoidal = false;
  bool HasOrthometric = false;
  bool HasNorth = true;
  bool HasEast = true;
};

/// Earth-centred Cartesian coordinates, metres.
struct csib_Cartesian {
  double X = 0.0;
  double Y = 0.0;
  double Z = 0.0;
};

struct csib_Block;

/// What a component computes once and keeps: each kind derives its own.
struct csib_Data {
  virtual ~csib_Data () = default;
};

/// How grids are stored: written as their names, or with their bytes.
enum csib_StorageMode : uint8_t { CSIB_Embedded = 0, CSIB_ByName = 1 };

// The operations of a component, one table a code; a missing operation is a null slot. `read` takes
// the parameters from the bytes, checks every one of them and derives what can be derived once; on
// a failure the caller drops the component. `write` and `size` agree byte for byte. `unload` gives
// the files of the component back if one of them has that path (compared without case) and keeps
// what `load` needs to open them again; components without files have empty ones. `parameters`
// gives the bytes that `read` would take.

struct csib_DatumOperations {
  csib_Status (*read) (csib_Block& block, csib_Bytes& in) = nullptr;
  csib_Status (*unload) (csib_Block& block, std::string_view path) = nullptr;
  csib_Status (*load) (csib_Block& block, std::string_view path) = nullptr;
  void (*free) (csib_Block& block) = nullptr;
  csib_Status (*write) (const csib_Block& block, csib_Writer& out, csib_StorageMode mode) = nullptr;
  /// WGS84 to local.
  csib_Status (*forward) (csib_Block& block, const csib_Geodetic& point,
                          csib_Geodetic& out) = nullptr;
  /// Local to WGS84.
  csib_Status (*inverse) (csib_Block& block, const csib_Geodetic& point,
                          csib_Geodetic& out) = nullptr;
  csib_Status (*parameters) (const csib_Block& block, std::vector<uint8_t>& out) = nullptr;
  csib_Status (*size) (const csib_Block& block, csib_StorageMode mode, std::size_t& out) = nullptr;
};

struct csib_ProjectionOperations {
  csib_Status (*read) (csib_Block& block, csib_Bytes& in) = nullptr;
  csib_Status (*unload) (csib_Block& block, std::string_view path) = nullptr;
  csib_Status (*load) (csib_Block& block, std::string_view path) = nullptr;
  void (*free) (csib_Block& block) = nullptr;
  csib_Status (*write) (const csib_Block& block, csib_Writer& out, csib_StorageMode mode) = nullptr;
  /// Geodetic to grid, without false origin and ground scale.
  csib_Status (*forward) (csib_Block& block, const csib_Geodetic& point, csib_Grid& out) = nullptr;
  /// Grid to geodetic, the same.
  csib_Status (*inverse) (csib_Block& block, const csib_Grid& point, csib_Geodetic& out) = nullptr;
  /// The point scale factor at a geodetic point.
  csib_Status (*scale) (csib_Block& block, const csib_Geodetic& point, double& out) = nullptr;
  /// The convergence of the meridians at a geodetic point, radians.
  csib_Status (*convergence) (csib_Block& block, const csib_Geodetic& point, double& out) = nullptr;
  csib_Status (*parameters) (const csib_Block& block, std::vector<uint8_t>& out) = nullptr;
  csib_Status (*size) (const csib_Block& block, csib_StorageMode mode, std::size_t& out) = nullptr;
};

struct csib_GeoidOperations {
  csib_Status (*read) (csib_Block& block, csib_Bytes& in) = nullptr;
  csib_Status (*unload) (csib_Block& block, std::string_view path) = nullptr;
  csib_Status (*load) (csib_Block& block, std::string_view path) = nullptr;
  void (*free) (csib_Block& block) = nullptr;
  csib_Status (*write) (const csib_Block& block, csib_Writer& out, csib_StorageMode mode) = nullptr;
  /// Ellipsoidal less orthometric height at a WGS84 position, metres.
  csib_Status (*separation) (csib_Block& block, const csib_Geodetic& point, double& out) = nullptr;
  csib_Status (*parameters) (const csib_Block& block, std::vector<uint8_t>& out) = nullptr;
  csib_Status (*size) (const csib_Block& block, csib_StorageMode mode, std::size_t& out) = nullptr;
};

/// Codes of the datum; 2, a regression, is refused.
enum csib_DatumCode : uint8_t {
  CSIB_NoDatum = 0,
  CSIB_Molodensky = 1,
  CSIB_RegressionDatum = 2,
  CSIB_SevenParameter = 3,
  CSIB_EmbeddedGridDatum = 4,
  CSIB_CombinedGridDatum = 5,
};

/// Codes of the projection; 13, the Cartesian plane on WGS84, is refused.
enum csib_ProjectionCode : uint8_t {
  CSIB_NoProjection = 0,
  CSIB_Albers = 1,
  CSIB_Cassini = 2,
  CSIB_Krovak = 3,
  CSIB_Lambert = 4,
  CSIB_Mercator = 5,
  CSIB_NewZealand = 6,
  CSIB_ObliqueConformalCylindrical = 7,
  CSIB_ObliqueMercator = 8,
  CSIB_ObliqueStereographic = 9,
  CSIB_Plane = 10,
  CSIB_PolarStereographic = 11,
  CSIB_RD = 12,
  CSIB_CartesianPlane = 13,
  CSIB_TransverseMercator = 14,
  CSIB_UKNationalGrid = 15,
  CSIB_Denmark = 16,
  CSIB_HungarianEOV = 17,
  CSIB_DoubleStereographic = 18,
  CSIB_ProjectionGrid = 19,
};

/// Codes of the geoid.
enum csib_GeoidCode : uint8_t {
  CSIB_NoGeoid = 0,
  CSIB_GeoidGrid = 1,
  CSIB_GeoidPlane = 2,
  CSIB_ConstantSeparation = 3,
};

/// Three texts that name a thing; carried from parse to write, never looked at.
struct csib_Label {
  std::string First;
  std::string Second;
  std::u16string Third;
};

/// A similarity on the grid. The origin is in block coordinates: the true origin less the false one
/// plus the ground delta.
struct csib_Horizontal {
  double OriginNorth = 0.0;
  double OriginEast = 0.0;
  double TranslationNorth = 0.0;
  double TranslationEast = 0.0;
  double Rotation = 0.0;  ///< radians
  double ScaleFactor = 1.0;
  // Derived when it is set.
  double SinMinusRotation = 0.0;
  double CosMinusRotation = 1.0;
  double SinRotation = 0.0;
  double CosRotation = 1.0;
  double InverseScale = 1.0;
  double InverseTranslationNorth = 0.0;
  double InverseTranslationEast = 0.0;
};

/// An inclined plane on the elevation; the origin as that of csib_Horizontal.
struct csib_Vertical {
  double OriginNorth = 0.0;
  double OriginEast = 0.0;
  double ElevAdjustment = 0.0;
  double NorthAdjustment = 0.0;  ///< metres of elevation a metre to the north
  double EastAdjustment = 0.0;
};

/// A coordinate system. Made by csib_Create or csib_Read; its grids are open while it lives. Owned
/// by one user: look-ups change the caches of its grids.
struct csib_Block {
  csib_Block () = default;
  csib_Block (const csib_Block&) = delete;
  csib_Block& operator= (const csib_Block&) = delete;

  double Version = 10.3;
  double EarthRadius = CSIB_WGS84MajorAxis;  ///< semi-major axis a of the local ellipsoid
  double MinorAxis = CSIB_WGS84MinorAxis;    ///< semi-minor axis b
  double Flattening = 0.0;                   ///< (a - b) / a
  double Eccentricity = 0.0;
  double EccentricitySquared = 0.0;  ///< 1 - b²/a²
  csib_StorageMode StorageMode = CSIB_ByName;

  csib_DatumCode DatumCode = CSIB_NoDatum;
  const csib_DatumOperations* Datum = nullptr;
  std::unique_ptr<csib_Data> DatumData;

  csib_ProjectionCode ProjectionCode = CSIB_NoProjection;
  const csib_ProjectionOperations* Projection = nullptr;
  std::unique_ptr<csib_Data> ProjectionData;
  double OriginLatitude = 0.0;
  double OriginLongitude = 0.0;
  double FalseNorth = 0.0;  ///< null where the job has none; no grid point is known then
  double FalseEast = 0.0;
  double ProjectionScale = 1.0;
  double GroundScale = 1.0;
  double GroundOffsetNorth = 0.0;
  double GroundOffsetEast = 0.0;
  uint8_t LocationFlag = 0;
  uint8_t HasProjectLocation = 0;
  double ProjectLatitude = 0.0;
  double ProjectLongitude = 0.0;
  double ProjectHeight = 0.0;
  uint8_t RadiusFlag = 0;
  uint8_t FixedRadiusFlag = 0;
  double FixedRadius = 0.0;

  csib_GeoidCode GeoidCode = CSIB_NoGeoid;
  const csib_GeoidOperations* Geoid = nullptr;
  std::unique_ptr<csib_Data> GeoidData;

  uint8_t HasHorizontal = 0;
  csib_Horizontal Horizontal;
  uint8_t HasVertical = 0;
  csib_Vertical Vertical;
  uint8_t HasShiftGrid = 0;
  std::unique_ptr<csib_Data> ShiftData;

  std::array<uint8_t, 7> Flags = {1, 1, 1, 1, 1, 1, 2};
  uint8_t NorthSign () const noexcept { return Flags[3]; }  ///< 2: the axis runs to the south
  uint8_t EastSign () const noexcept { return Flags[4]; }   ///< 2: the axis runs to the west

  std::array<csib_Label, 3> SystemLabels;
  std::array<csib_Label, 3> DatumLabels;
  csib_Label ProjectionLabel;
  std::array<csib_Label, 2> GeoidLabels;
  csib_Label HorizontalLabel;
  csib_Label VerticalLabel;
  csib_Label ShiftLabel;

  /// What csib_GroundDeltas found, and for which ground scale and project location; a new
  /// ellipsoid or projection empties it.
  struct {
    bool IsKnown = false;
    double GroundScale = 1.0;
    double ProjectLatitude = 0.0;
    double ProjectLongitude = 0.0;
    double North = 0.0;
    double East = 0.0;
  } GroundDeltas;
};

// The tables by code, null for a code that has none: 0 of projection and geoid, and the refused
// ones.
const csib_DatumOperations* csib_DatumTable (uint8_t code) noexcept;
const csib_ProjectionOperations* csib_ProjectionTable (uint8_t code) noexcept;
const csib_GeoidOperations* csib_GeoidTable (uint8_t code) noexcept;

// ---------------------------------------------------------------------------------------------
// Life of a block and its bytes

/// A block of version 10.3 with these axes, its derived values and nothing else. CSIB_OutOfMemory.
csib_Status csib_Create (std::unique_ptr<csib_Block>& block, csib_StorageMode mode, double a,
                         double b);
/// Takes the axes and derives the flattening and the eccentricities.
void csib_SetEllipsoid (csib_Block& block, double a, double b) noexcept;
/// Parses a block in either byte order, of every version. The bytes are not trusted: any length,
/// code, count or text that does not fit ends in a status, with `block` empty: CSIB_WrongMagic,
/// CSIB_WrongVersion, CSIB_HeaderUnreadable where the bytes end too early, CSIB_WrongFormat for
/// what is no number, axes that span no ellipsoid and a storage byte that is none, the codes'
/// statuses, and those of the components. Bytes behind the end are not looked at.
csib_Status csib_Read (std::unique_ptr<csib_Block>& block, std::span<const uint8_t> bytes);
/// The size of the written form; CSIB_NoOutput for a null `size`.
csib_Status csib_Size (const csib_Block& block, csib_StorageMode mode, std::size_t* size);
/// Writes the block over `bytes`, which has the size that csib_Size gives; reserved bytes stay as
/// they are.
csib_Status csib_Write (const csib_Block& block, std::span<uint8_t> bytes, csib_StorageMode mode);
/// Frees all that the block owns and closes its grids; an empty one is accepted.
void csib_Free (std::unique_ptr<csib_Block>& block) noexcept;
/// A block of its own with the same parts, by way of the bytes. Grids go by name, also those that
/// are embedded in the source: the clone opens the files of these names, and CSIB_FileNotOpened
/// says that one is not there, CSIB_NameMissing that a grid has no name.
csib_Status csib_Clone (std::unique_ptr<csib_Block>& block, const csib_Block& source);

// Replace one component of a live block from its parameter bytes. Without bytes (a null data
// pointer) the horizontal, vertical and shift parts are removed. On a failure the component is
// gone. Code 0 leaves a block without that component (a datum of code 0 copies). The statuses are
// those of csib_Read; CSIB_WrongFormat for an adjustment with a value that is no number or with the
// scale factor 0.
csib_Status csib_SetDatum (csib_Block& block, uint8_t code, std::span<const uint8_t> parameters);
csib_Status csib_SetProjection (csib_Block& block, uint8_t code,
                                std::span<const uint8_t> parameters);
csib_Status csib_SetGeoid (csib_Block& block, uint8_t code, std::span<const uint8_t> parameters);
csib_Status csib_SetHorizontal (csib_Block& block, const csib_Horizontal* part);
csib_Status csib_SetVertical (csib_Block& block, const csib_Vertical* part);
csib_Status csib_SetShiftGrid (csib_Block& block, std::span<const uint8_t> parameters);

/// Gives the open file of that path (compared without case) back in every component that uses it,
/// so that it can be replaced; until csib_ReloadFile the component answers CSIB_Unloaded. A second
/// one is CSIB_UnloadedTwice.
csib_Status csib_ReleaseFile (csib_Block& block, std::string_view path);
csib_Status csib_ReloadFile (csib_Block& block, std::string_view path);

// ---------------------------------------------------------------------------------------------
// Point operations

// `point` and `out` may be the same; `out` counts only with CSIB_Ok.

/// WGS84 to local by the datum; the orthometric height is completed by the geoid (absent where the
/// geoid has no value), or is the ellipsoidal one when there is none. A point with an orthometric
/// height only gets its ellipsoidal one from the geoid first, and fails where there is no value.
csib_Status csib_WGS84ToLocal (csib_Block& block, const csib_Geodetic& point, csib_Geodetic& out);
/// Local to WGS84 by the datum; a point with an orthometric height only has its ellipsoidal one
/// found by iteration: at most 10 rounds, until a round changes it by less than 1e-15 m; the last
/// value counts. CSIB_NoHeight for a point with neither.
csib_Status csib_LocalToWGS84 (csib_Block& block, const csib_Geodetic& point, csib_Geodetic& out);
/// Projects, and applies the ground scale. CSIB_NoProjectionOperation without a projection, and
/// where its formulas give no number.
csib_Status csib_Project (csib_Block& block, const csib_Geodetic& point, csib_Grid& out);
/// Takes the ground scale off and unprojects; the longitude lies within minus to plus pi.
/// CSIB_LatitudeOutOfRange where the latitude reaches a pole or is no number,
/// CSIB_NoProjectionOperation without a projection or without north or east.
csib_Status csib_Unproject (csib_Block& block, const csib_Grid& point, csib_Geodetic& out);
/// The last step from the grid: finds the ellipsoidal height of a local point from its orthometric
/// one. Without a geoid it is the same; with one at most 10 rounds, until a round changes it by
/// less than 1e-6 m, or CSIB_HeightDidNotConverge. On a failure the point has no ellipsoidal
/// height. Nothing happens to a point without an orthometric height. `wgs84`, where it is asked
/// for, is the WGS84 point of the result with its height, or has none where that was not computed.
csib_Status csib_LocalHeightFromOrthometric (csib_Block& block, csib_Geodetic& local,
                                             csib_Geodetic* wgs84 = nullptr);
/// The step before the grid: the elevation of a projected local point. Without a geoid it is the
/// ellipsoidal height; with a geoid and a datum the height less the separation at the WGS84
/// position, or the ellipsoidal height where the geoid has no value there; absent where the point
/// has no WGS84 position or the datum is none. `known`, where it is given, is the WGS84 point of
/// the local one, which then need not be computed.
void csib_ElevationOfLocal (csib_Block& block, const csib_Geodetic& local, csib_Grid& grid,
                            const csib_Geodetic* known = nullptr);
/// Ellipsoidal less orthometric height at a WGS84 position; CSIB_NoSeparationOperation without a
/// geoid and for one of code 2, whose values are carried but have no published meaning.
csib_Status csib_Separation (csib_Block& block, const csib_Geodetic& wgs84, double& out);
/// Fills the ellipsoidal height h = H + N with its flag. CSIB_NoHeight without an orthometric one.
csib_Status csib_HeightFromOrthometric (csib_Block& block, csib_Geodetic& wgs84);
/// Fills the orthometric height H = h - N with its flag. CSIB_NoHeight without an ellipsoidal one.
csib_Status csib_OrthometricFromHeight (csib_Block& block, csib_Geodetic& wgs84);
// The adjustments: empty where the block has no such part. An elevation that overflows is absent.
void csib_HorizontalForward (const csib_Block& block, csib_Grid& point) noexcept;
void csib_HorizontalInverse (const csib_Block& block, csib_Grid& point) noexcept;
void csib_VerticalForward (const csib_Block& block, csib_Grid& point) noexcept;
void csib_VerticalInverse (const csib_Block& block, csib_Grid& point) noexcept;
/// The shift stages: empty where the block has no shift grid.
csib_Status csib_ShiftForward (csib_Block& block, csib_Grid& point);
csib_Status csib_ShiftInverse (csib_Block& block, csib_Grid& point);
/// The projection's point scale at a geodetic point times the ground scale; measured over 5 m where
/// the projection has no formula. CSIB_NoScaleOperation.
csib_Status csib_PointScale (csib_Block& block, const csib_Geodetic& point, double& out);
/// The point scale k combined with the height h above the ellipsoid, k R/(R + h), R the prime
/// vertical radius or the fixed radius. CSIB_NoHeightForScale for a point without either height, or
/// one at the centre.
csib_Status csib_CombinedScale (csib_Block& block, const csib_Geodetic& point, double& out);
/// The convergence of the meridians at a geodetic point, radians; measured over 100 m where the
/// projection's formula fails. CSIB_NoConvergenceOperation, CSIB_NoConvergence.
csib_Status csib_Convergence (csib_Block& block, const csib_Geodetic& point, double& out);
/// What the ground scale moves the project location by; 0.0 without a location or with a scale
/// of 1.
void csib_GroundDeltas (csib_Block& block, double& north, double& east);

}  // namespace clxml
