// Coordinates and observations.
// The values that all position work speaks in: absolute positions in each frame, raw and reduced
// observations, the ellipsoid, and the ranges of angles. Numbers only; they know no record and no
// transform. Leans on maths and dbEnum.
#pragma once

#include <array>
#include <cstdint>

#include "Library/records/dbEnum.h"
#include "numerics/maths.h"

namespace clxml {

/// True for the forms of a position: COORD_WGS84Type, the two local types, COORD_GridType,
/// COORD_ECEFType and COORD_ECEFGroundType.
constexpr bool coord_IsAbsolute (coord_Type type) noexcept {
  return type == COORD_WGS84Type || type == COORD_LocalType ||
         type == COORD_UncalibratedLocalType || type == COORD_GridType || type == COORD_ECEFType ||
         type == COORD_ECEFGroundType;
}

// Angles brought into a range by whole turns: a null stays null, and what is in range already is
// returned as it is. The InPlace forms change their argument.

/// Into minus to plus pi, both included; period 2 pi.
double coord_NormalisePlusMinusPi (double angle);
/// Into minus to plus pi/2, both included; period pi.
double coord_NormalisePlusMinusPiOverTwo (double angle);
/// Into 0 to 2 pi, 2 pi not included; period 2 pi.
double coord_NormaliseTwoPi (double angle);
inline void coord_NormalisePlusMinusPiInPlace (double& angle) {
  angle = coord_NormalisePlusMinusPi (angle);
}
inline void coord_NormalisePlusMinusPiOverTwoInPlace (double& angle) {
  angle = coord_NormalisePlusMinusPiOverTwo (angle);
}
inline void coord_NormaliseTwoPiInPlace (double& angle) { angle = coord_NormaliseTwoPi (angle); }

/// An ellipsoid of revolution. The derived values are null without a flattening.
struct coordsys_Ellipsoid {
  /// Both parameters null.
  coordsys_Ellipsoid () = default;
  coordsys_Ellipsoid (double earthRadius, double flattening) noexcept;

  double EarthRadius = MATHS_Null;                       ///< semi-major axis a, metres
  double Flattening = MATHS_Null;                        ///< f = (a - b)/a
  double EccentricitySquared = MATHS_Null;               ///< e² = 2 f - f²
  double OneMinusEccentricitySquared = MATHS_Null;       ///< 1 - e²
  double SecondEccentricitySquared = MATHS_Null;         ///< e'² = e²/(1 - e²)
  double OnePlusSecondEccentricitySquared = MATHS_Null;  ///< 1 + e'²
  double HalfSecondEccentricitySquared = MATHS_Null;     ///< e'²/2
  double SecondEccentricity = MATHS_Null;                ///< e'

  /// 1/f; null without a flattening and for a sphere.
  double InverseFlattening () const noexcept { return maths_Divide (1.0, Flattening); }
  /// b = (1 - f) a, metres; null when a parameter is.
  double MinorAxis () const noexcept {
    return maths_Multiply (maths_Subtract (1.0, Flattening), EarthRadius);
  }
};

/// WGS84: a = 6378137 m and the flattening that the semi-minor axis 6356752.3142 m gives.
const coordsys_Ellipsoid& coordsys_WGS84Ellipsoid () noexcept;

/// What all coordinates and observations answer.
class coord_BaseClass {
 public:
  /// A position, not a difference or an observation. Fixed for each class.
  virtual bool IsAbsolute () const noexcept = 0;
  /// Every tested field is null.
  virtual bool IsNull () const noexcept = 0;
  /// At least one tested field is null.
  virtual bool AnyNull () const noexcept = 0;
  /// The horizontal part is absent: both of its fields are null.
  virtual bool NullHorizontal () const noexcept = 0;
  /// The vertical part is absent.
  virtual bool NullVertical () const noexcept = 0;
  /// Every field as a new object has it.
  virtual void SetNull () noexcept = 0;

 protected:
  coord_BaseClass () = default;
  coord_BaseClass (const coord_BaseClass&) = default;
  coord_BaseClass& operator= (const coord_BaseClass&) = default;
  ~coord_BaseClass () = default;
};

/// Which fields of a class the operations of coord_BaseClass look at: the tested ones, and the two
/// whose absence makes the horizontal and the vertical part absent (twice the same one where one
/// field decides).
template <class T>
struct coord_Shape {
  using Field = double T::*;
  bool IsAbsolute;
  std::array<Field, 3> Tested;
  std::array<Field, 2> Horizontal;
  std::array<Field, 2> Vertical;
};

/// The operations of coord_BaseClass for a class T with a Shape ().
template <class T>
class coord_Family : public coord_BaseClass {
 public:
  bool IsAbsolute () const noexcept override { return T::Shape ().IsAbsolute; }
  bool IsNull () const noexcept override { return All (T::Shape ().Tested); }
  bool AnyNull () const noexcept override {
    for (const auto field : T::Shape ().Tested)
      if (maths_IsNull (Self ().*field)) return true;
    return false;
  }
  bool NullHorizontal () const noexcept override { return All (T::Shape ().Horizontal); }
  bool NullVertical () const noexcept override { return All (T::Shape ().Vertical); }
  void SetNull () noexcept override { static_cast<T&> (*this) = T (); }

 private:
  const T& Self () const noexcept { return static_cast<const T&> (*this); }
  template <class Fields>
  bool All (const Fields& fields) const noexcept {
    for (const auto field : fields)
      if (!maths_IsNull (Self ().*field)) return false;
    return true;
  }
};

// The classes. Each is copied by value, starts with every double null, and has a constructor from
// its fields in their order (coord_CorrectedGrid: see there). Angles are radians, lengths metres.

class coord_ECEF;
class coord_ECEFGround;

/// Geodetic on WGS84. Height above the ellipsoid.
class coord_WGS84 final : public coord_Family<coord_WGS84> {
 public:
  double Latitude = MATHS_Null;
  double Longitude = MATHS_Null;
  double Height = MATHS_Null;

  coord_WGS84 () = default;
  coord_WGS84 (double latitude, double longitude, double height)
      : Latitude (latitude), Longitude (longitude), Height (height) {}
  static constexpr coord_Shape<coord_WGS84> Shape () noexcept {
    using T = coord_WGS84;
    return {true,
            {&T::Latitude, &T::Longitude, &T::Height},
            {&T::Latitude, &T::Longitude},
            {&T::Height, &T::Height}};
  }

  /// Earth-centred: with N = a/sqrt (1 - e² sin² latitude), X = (N + h) cos latitude cos longitude,
  /// Y = (N + h) cos latitude sin longitude, Z = (N (1 - e²) + h) sin latitude. Null if AnyNull.
  coord_ECEF ToECEF (const coordsys_Ellipsoid& ellipsoid) const noexcept;
};

/// Geodetic on the local ellipsoid. Height above the ellipsoid.
class coord_Local final : public coord_Family<coord_Local> {
 public:
  double Latitude = MATHS_Null;
  double Longitude = MATHS_Null;
  double Height = MATHS_Null;

  coord_Local () = default;
  coord_Local (double latitude, double longitude, double height)
      : Latitude (latitude), Longitude (longitude), Height (height) {}
  static constexpr coord_Shape<coord_Local> Shape () noexcept {
    using T = coord_Local;
    return {true,
            {&T::Latitude, &T::Longitude, &T::Height},
            {&T::Latitude, &T::Longitude},
            {&T::Height, &T::Height}};
  }

  /// Latitude null or within minus to plus pi/2, longitude null or within minus to plus pi.
  virtual bool IsValid () const noexcept;
  /// As coord_WGS84::ToECEF.
  coord_ECEF ToECEF (const coordsys_Ellipsoid& ellipsoid) const noexcept;
};

/// Differences of grid coordinates.
class coord_GridDeltas final : public coord_Family<coord_GridDeltas> {
 public:
  double DeltaNorth = MATHS_Null;
  double DeltaEast = MATHS_Null;
  double DeltaElev = MATHS_Null;

  coord_GridDeltas () = default;
  coord_GridDeltas (double deltaNorth, double deltaEast, double deltaElev)
      : DeltaNorth (deltaNorth), DeltaEast (deltaEast), DeltaElev (deltaElev) {}
  static constexpr coord_Shape<coord_GridDeltas> Shape () noexcept {
    using T = coord_GridDeltas;
    return {false,
            {&T::DeltaNorth, &T::DeltaEast, &T::DeltaElev},
            {&T::DeltaNorth, &T::DeltaEast},
            {&T::DeltaElev, &T::DeltaElev}};
  }

  /// Within 0 to 2 pi from north over east; null without a horizontal part and for a length of 0.
  double Azimuth () const noexcept;
  double HorizontalDistance () const noexcept;
  /// Null if AnyNull.
  double SlopeDistance () const noexcept;
};

/// A grid position in the axes of all computations: north and east increasing.
class coord_CogoGrid final : public coord_Family<coord_CogoGrid> {
 public:
  double North = MATHS_Null;
  double East = MATHS_Null;
  double Elevation = MATHS_Null;

  coord_CogoGrid () = default;
  coord_CogoGrid (double north, double east, double elevation)
      : North (north), East (east), Elevation (elevation) {}
  static constexpr coord_Shape<coord_CogoGrid> Shape () noexcept {
    using T = coord_CogoGrid;
    return {true,
            {&T::North, &T::East, &T::Elevation},
            {&T::North, &T::East},
            {&T::Elevation, &T::Elevation}};
  }
};

/// A grid position as the job shows and stores it, behind the orientation of the grid and the
/// offsets of the ground scale. Not interchangeable with coord_CogoGrid. The fields stand as east,
/// elevation, north; the constructor takes north, east, elevation.
class coord_CorrectedGrid final : public coord_Family<coord_CorrectedGrid> {
 public:
  double East = MATHS_Null;
  double Elevation = MATHS_Null;
  double North = MATHS_Null;

  coord_CorrectedGrid () = default;
  coord_CorrectedGrid (double north, double east, double elevation)
      : East (east), Elevation (elevation), North (north) {}
  /// The constructor by a name that tells the order.
  static coord_CorrectedGrid FromNorthEastElevation (double north, double east, double elevation) {
    return {north, east, elevation};
  }
  static constexpr coord_Shape<coord_CorrectedGrid> Shape () noexcept {
    using T = coord_CorrectedGrid;
    return {true,
            {&T::East, &T::Elevation, &T::North},
            {&T::North, &T::East},
            {&T::Elevation, &T::Elevation}};
  }

  virtual void SetNullVertical () noexcept { Elevation = MATHS_Null; }
  virtual void SetNullHorizontal () noexcept { North = East = MATHS_Null; }
  void SetNull () noexcept override {
    SetNullHorizontal ();
    SetNullVertical ();
  }

  /// The horizontal distance is at most the tolerance; false when a part of it is null.
  bool IsCloseTo (const coord_CorrectedGrid& other, double tolerance) const noexcept;
  /// The three numbers exactly.
  bool operator== (const coord_CorrectedGrid& other) const noexcept {
    return North == other.North && East == other.East && Elevation == other.Elevation;
  }
};

// Field by field with null arithmetic.
coord_GridDeltas operator- (const coord_CogoGrid& a, const coord_CogoGrid& b) noexcept;
coord_CogoGrid operator+ (const coord_CogoGrid& a, const coord_GridDeltas& b) noexcept;
coord_GridDeltas operator- (const coord_CorrectedGrid& a, const coord_CorrectedGrid& b) noexcept;
coord_CorrectedGrid operator+ (const coord_CorrectedGrid& a, const coord_GridDeltas& b) noexcept;

/// Differences of earth-centred coordinates.
class coord_ECEFDeltas final : public coord_Family<coord_ECEFDeltas> {
 public:
  double XDelta = MATHS_Null;
  double YDelta = MATHS_Null;
  double ZDelta = MATHS_Null;

  coord_ECEFDeltas () = default;
  coord_ECEFDeltas (double xDelta, double yDelta, double zDelta)
      : XDelta (xDelta), YDelta (yDelta), ZDelta (zDelta) {}
  static constexpr coord_Shape<coord_ECEFDeltas> Shape () noexcept {
    using T = coord_ECEFDeltas;
    return {false,
            {&T::XDelta, &T::YDelta, &T::ZDelta},
            {&T::XDelta, &T::YDelta},
            {&T::ZDelta, &T::ZDelta}};
  }

  /// atan2 (XDelta, YDelta) within 0 to 2 pi, null as coord_GridDeltas::Azimuth.
  double Azimuth () const noexcept;
  /// In the plane of X and Y.
  double HorizontalDistance () const noexcept;
  /// Null if AnyNull.
  double SlopeDistance () const noexcept;
};

/// Earth-centred on WGS84.
class coord_ECEF final : public coord_Family<coord_ECEF> {
 public:
  double X = MATHS_Null;
  double Y = MATHS_Null;
  double Z = MATHS_Null;

  coord_ECEF () = default;
  coord_ECEF (double x, double y, double z) : X (x), Y (y), Z (z) {}
  explicit coord_ECEF (const coord_ECEFGround& ground) noexcept;
  static constexpr coord_Shape<coord_ECEF> Shape () noexcept {
    using T = coord_ECEF;
    return {true, {&T::X, &T::Y, &T::Z}, {&T::X, &T::Y}, {&T::Z, &T::Z}};
  }

  /// Geodetic, by six rounds of latitude = arctan ((e²/p) N sin latitude + Z/p), p the distance
  /// from the axis; on the axis latitude pi/2 and longitude 0. Null if AnyNull.
  coord_WGS84 ToWGS84 (const coordsys_Ellipsoid& ellipsoid) const noexcept;
  /// The same numbers as a local position.
  coord_Local ToLocal (const coordsys_Ellipsoid& ellipsoid) const noexcept;
};

/// Earth-centred on WGS84, of the ground mark rather than the antenna.
class coord_ECEFGround final : public coord_Family<coord_ECEFGround> {
 public:
  double X = MATHS_Null;
  double Y = MATHS_Null;
  double Z = MATHS_Null;

  coord_ECEFGround () = default;
  coord_ECEFGround (double x, double y, double z) : X (x), Y (y), Z (z) {}
  explicit coord_ECEFGround (const coord_ECEF& position) noexcept
      : X (position.X), Y (position.Y), Z (position.Z) {}
  static constexpr coord_Shape<coord_ECEFGround> Shape () noexcept {
    using T = coord_ECEFGround;
    return {true, {&T::X, &T::Y, &T::Z}, {&T::X, &T::Y}, {&T::Z, &T::Z}};
  }
};

// Null when a field of either side is.
coord_ECEFDeltas operator- (const coord_ECEF& a, const coord_ECEF& b) noexcept;
coord_ECEF operator+ (const coord_ECEFDeltas& a, const coord_ECEF& b) noexcept;

/// Azimuth with horizontal and vertical distance.
class coord_Polar : public coord_Family<coord_Polar> {
 public:
  double Azimuth = MATHS_Null;
  double HDist = MATHS_Null;
  double VDist = MATHS_Null;

  coord_Polar () = default;
  coord_Polar (double azimuth, double hDist, double vDist)
      : Azimuth (azimuth), HDist (hDist), VDist (vDist) {}
  static constexpr coord_Shape<coord_Polar> Shape () noexcept {
    using T = coord_Polar;
    return {false,
            {&T::Azimuth, &T::HDist, &T::VDist},
            {&T::Azimuth, &T::HDist},
            {&T::Azimuth, &T::VDist}};
  }
};

/// A coord_Polar measured in the second face.
class coord_F2Polar final : public coord_Polar {
 public:
  using coord_Polar::coord_Polar;
};

/// A polar observation whose horizontal circle is not turned into an azimuth.
class coord_Unturned final : public coord_Family<coord_Unturned> {
 public:
  double HorzCircle = MATHS_Null;
  double HDist = MATHS_Null;
  double VDist = MATHS_Null;

  coord_Unturned () = default;
  coord_Unturned (double horzCircle, double hDist, double vDist)
      : HorzCircle (horzCircle), HDist (hDist), VDist (vDist) {}
  static constexpr coord_Shape<coord_Unturned> Shape () noexcept {
    using T = coord_Unturned;
    return {false,
            {&T::HorzCircle, &T::HDist, &T::VDist},
            {&T::HorzCircle, &T::HDist},
            {&T::HorzCircle, &T::VDist}};
  }
};

/// What coord_Ground, coord_Oriented and coord_LaserOffset have in common: azimuth, vertical angle
/// and slope distance.
template <class T>
class coord_Sloped : public coord_Family<T> {
 public:
  double Azimuth = MATHS_Null;
  double VertAngle = MATHS_Null;
  double SlopeDist = MATHS_Null;

  coord_Sloped () = default;
  coord_Sloped (double azimuth, double vertAngle, double slopeDist)
      : Azimuth (azimuth), VertAngle (vertAngle), SlopeDist (slopeDist) {}
  static constexpr coord_Shape<coord_Sloped> Shape () noexcept {
    using S = coord_Sloped;
    return {false,
            {&S::Azimuth, &S::VertAngle, &S::SlopeDist},
            {&S::Azimuth, &S::SlopeDist},
            {&S::VertAngle, &S::SlopeDist}};
  }
};

/// From ground mark to ground mark.
class coord_Ground final : public coord_Sloped<coord_Ground> {
 public:
  using coord_Sloped::coord_Sloped;
};
/// From instrument to target, the circle oriented.
class coord_Oriented final : public coord_Sloped<coord_Oriented> {
 public:
  using coord_Sloped::coord_Sloped;
};
/// An offset measured with a laser rangefinder.
class coord_LaserOffset final : public coord_Sloped<coord_LaserOffset> {
 public:
  using coord_Sloped::coord_Sloped;
};

/// Circle readings with the instrument's corrections applied. A face of COORD_FaceNull counts as a
/// null field.
class coord_Corrected final : public coord_Family<coord_Corrected> {
 public:
  double HorzCircle = MATHS_Null;
  double VertCircle = MATHS_Null;
  double SlopeDist = MATHS_Null;
  coord_Face Face = COORD_FaceNull;

  coord_Corrected () = default;
  coord_Corrected (double horzCircle, double vertCircle, double slopeDist, coord_Face face)
      : HorzCircle (horzCircle), VertCircle (vertCircle), SlopeDist (slopeDist), Face (face) {}
  static constexpr coord_Shape<coord_Corrected> Shape () noexcept {
    using T = coord_Corrected;
    return {false,
            {&T::HorzCircle, &T::VertCircle, &T::SlopeDist},
            {&T::HorzCircle, &T::SlopeDist},
            {&T::VertCircle, &T::SlopeDist}};
  }

  bool IsNull () const noexcept override {
    return Face == COORD_FaceNull && coord_Family::IsNull ();
  }
  bool AnyNull () const noexcept override {
    return Face == COORD_FaceNull || coord_Family::AnyNull ();
  }
};

/// Raw readings of a total station. Face and standard errors never make it null.
class coord_Circle final : public coord_Family<coord_Circle> {
 public:
  double HorzCircle = MATHS_Null;
  double VertCircle = MATHS_Null;
  double EDMDistance = MATHS_Null;
  coord_Face Face = COORD_FaceNull;
  double HorzCircleStdErr = MATHS_Null;
  double VertCircleStdErr = MATHS_Null;
  double EDMDistanceStdErr = MATHS_Null;
  total_MeasurementMode EDMMeasurementMode = TOTAL_EDMNull;

  coord_Circle () = default;
  coord_Circle (double horzCircle, double vertCircle, double edmDistance, coord_Face face,
                double horzCircleStdErr = MATHS_Null, double vertCircleStdErr = MATHS_Null,
                double edmDistanceStdErr = MATHS_Null,
                total_MeasurementMode edmMeasurementMode = TOTAL_EDMNull)
      : HorzCircle (horzCircle),
        VertCircle (vertCircle),
        EDMDistance (edmDistance),
        Face (face),
        HorzCircleStdErr (horzCircleStdErr),
        VertCircleStdErr (vertCircleStdErr),
        EDMDistanceStdErr (edmDistanceStdErr),
        EDMMeasurementMode (edmMeasurementMode) {}
  static constexpr coord_Shape<coord_Circle> Shape () noexcept {
    using T = coord_Circle;
    return {false,
            {&T::HorzCircle, &T::VertCircle, &T::EDMDistance},
            {&T::HorzCircle, &T::EDMDistance},
            {&T::VertCircle, &T::EDMDistance}};
  }
};

/// Mean of the readings in several rounds (mean turned angle), with how many of each it is made of.
class coord_MTA final : public coord_Family<coord_MTA> {
 public:
  double HorzCircle = MATHS_Null;
  double VertCircle = MATHS_Null;
  double EDMDistance = MATHS_Null;
  double HorzCircleStdErr = MATHS_Null;
  double VertCircleStdErr = MATHS_Null;
  double EDMDistanceStdErr = MATHS_Null;
  uint32_t NumberOfHAngles = 0;
  uint32_t NumberOfVAngles = 0;
  uint32_t NumberOfDistances = 0;

  coord_MTA () = default;
  coord_MTA (double horzCircle, double vertCircle, double edmDistance,
             double horzCircleStdErr = MATHS_Null, double vertCircleStdErr = MATHS_Null,
             double edmDistanceStdErr = MATHS_Null, uint32_t numberOfHAngles = 0,
             uint32_t numberOfVAngles = 0, uint32_t numberOfDistances = 0)
      : HorzCircle (horzCircle),
        VertCircle (vertCircle),
        EDMDistance (edmDistance),
        HorzCircleStdErr (horzCircleStdErr),
        VertCircleStdErr (vertCircleStdErr),
        EDMDistanceStdErr (edmDistanceStdErr),
        NumberOfHAngles (numberOfHAngles),
        NumberOfVAngles (numberOfVAngles),
        NumberOfDistances (numberOfDistances) {}
  static constexpr coord_Shape<coord_MTA> Shape () noexcept {
    using T = coord_MTA;
    return {false,
            {&T::HorzCircle, &T::VertCircle, &T::EDMDistance},
            {&T::HorzCircle, &T::EDMDistance},
            {&T::VertCircle, &T::EDMDistance}};
  }
};

/// A place along an alignment: distance along it, distance to the right of it, elevation.
class coord_StationOffset final : public coord_Family<coord_StationOffset> {
 public:
  double Station = MATHS_Null;
  double Offset = MATHS_Null;
  double Elevation = MATHS_Null;

  coord_StationOffset () = default;
  coord_StationOffset (double station, double offset, double elevation)
      : Station (station), Offset (offset), Elevation (elevation) {}
  static constexpr coord_Shape<coord_StationOffset> Shape () noexcept {
    using T = coord_StationOffset;
    return {false,
            {&T::Station, &T::Offset, &T::Elevation},
            {&T::Station, &T::Offset},
            {&T::Elevation, &T::Elevation}};
  }
};

/// Where an instrument stood and the azimuth of its circle's zero.
class coord_StationSetupData final : public coord_BaseClass {
 public:
  coord_CorrectedGrid Grid;
  double Azimuth = MATHS_Null;

  coord_StationSetupData () = default;
  coord_StationSetupData (const coord_CorrectedGrid& grid, double azimuth)
      : Grid (grid), Azimuth (azimuth) {}

  bool IsAbsolute () const noexcept override { return false; }
  bool IsNull () const noexcept override { return maths_IsNull (Azimuth) && Grid.IsNull (); }
  bool AnyNull () const noexcept override { return maths_IsNull (Azimuth) || Grid.AnyNull (); }
  /// Both the azimuth and the horizontal part of Grid are absent.
  bool NullHorizontal () const noexcept override {
    return maths_IsNull (Azimuth) && Grid.NullHorizontal ();
  }
  bool NullVertical () const noexcept override { return Grid.NullVertical (); }
  void SetNull () noexcept override { *this = coord_StationSetupData (); }
};

}  // namespace clxml
