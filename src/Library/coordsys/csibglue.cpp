// The assembly of a coordinate system block.
// Part after part in the order of the block's bytes, the round trip through these bytes, and what
// does not stand in them: the project location and its ground scale. Leans on csibglue, the datum
// parameters of the block and filesys.
#include "Library/coordsys/csibglue.h"

#include <new>
#include <vector>

#include "Library/coordsys/jobsystem.h"
#include "geodesy/datum.h"
#include "geodesy/grid.h"
#include "geodesy/gridded.h"

namespace clxml {

namespace {

// 17 degrees 40 minutes: Ferro west of Greenwich.
constexpr double FerroOffset = 0.3083415011856649;
constexpr double UPSFalseOrigin = 2000000.0;
constexpr double UPSScale = 0.994;
// The bytes that the writer leaves as they are.
constexpr uint8_t Untouched = 0xDB;

// Parameter bytes in this machine's order, as a component takes them.
class Parameters {
 public:
  Parameters& Byte (uint8_t value) {
    _bytes.push_back (value);
    return *this;
  }
  Parameters& Double (double value) {
    const auto* bytes = reinterpret_cast<const uint8_t*> (&value);
    _bytes.insert (_bytes.end (), bytes, bytes + sizeof value);
    return *this;
  }
  Parameters& Text (const Str& text) {
    const std::string_view view = text.View ();
    _bytes.insert (_bytes.end (), view.begin (), view.end ());
    return Byte (0);
  }
  // Never a null pointer, also when empty: that would remove a part.
  operator std::span<const uint8_t> () const { return {_bytes.data (), _bytes.size ()}; }

 private:
  std::vector<uint8_t> _bytes = [] {
    std::vector<uint8_t> room;
    room.reserve (64);
    return room;
  }();
};

bool HasAll (std::initializer_list<double> values) {
  for (const double value : values)
    if (maths_IsNull (value)) return false;
  return true;
}

class Assembly {
 public:
  Assembly (std::unique_ptr<csib_Block>& block, uint16_t components, uint32_t options,
            coordsys_Error& error, bool isQuiet)
      : _block (block),
        _components (components),
        _options (options),
        _error (error),
        _isQuiet (isQuiet) {}

  bool Build (const coordsys_Ellipsoid& ellipsoid, const coordsys_Projection& projection,
              const coordsys_Datum& datum, const coordsys_Plane& plane,
              const coordsys_Height& height, const coordsys_Corrections& corrections) {
    if (!Succeeds (csib_Create (_block, CSIB_ByName, CSIB_WGS84MajorAxis, CSIB_WGS84MinorAxis)))
      return false;
    if (Has (COORDSYS_SetDatum) && !SetDatum (datum)) return false;
    if (Has (COORDSYS_SetEllipsoid)) {
      if (maths_IsNull (ellipsoid.MinorAxis ())) return Fail (COORDSYS_InternalError);
      csib_SetEllipsoid (*_block, ellipsoid.EarthRadius, ellipsoid.MinorAxis ());
    }
    if (Has (COORDSYS_SetProjection) && !SetProjection (projection)) return false;
    coordsys_GridOrientation orientation = COORDSYS_IncreasingNorthEast;
    if (Has (COORDSYS_SetCorrections)) orientation = corrections.GridOrientation;
    SetSigns (orientation);
    const coordsys_Axes axes (_components, projection, orientation);
    if (Has (COORDSYS_SetVertAdjustment) && !SetHeight (axes.ToCogo (height))) return false;
    if (Has (COORDSYS_SetHorzAdjustment) && plane.PlaneType == COORDSYS_ValidHorizontal &&
        !SetPlane (axes.ToCogo (plane)))
      return false;
    if (!Parse ()) return false;
    if (Has (COORDSYS_SetProjection) && !SetGroundScale (projection.GroundScale)) return false;
    return _block->HasProjectLocation == 0 || MoveAdjustments (axes, plane, height);
  }

 private:
  bool Has (coordsys_Components bit) const { return (_components & bit) != 0; }
  bool Is (coordsys_Options bit) const { return (_options & bit) != 0; }

  bool Fail (coordsys_Error error) {
    _error = error;
    return false;
  }
  // Of a step without a file, where a wrong format is a number that cannot be.
  bool Succeeds (csib_Status status) {
    if (status == CSIB_WrongFormat) return Fail (COORDSYS_InternalError);
    return status == CSIB_Ok || Fail (coordsys_ErrorOf (status));
  }

  void Log (const Str& name, const char* extension, const char* why) const {
    if (_isQuiet) return;
    Str text ("Coordinate system file \"");
    text += name;
    text += '.';
    text += extension;
    text += "\" ";
    text += why;
    Environment::Get ()->LogMessage (text.Data ());
  }

  // Says that a file does not serve. True when the assembly may go on without it.
  bool GoesOnWithout (const Str& name, const char* extension, const char* why,
                      coordsys_Error error) {
    Log (name, extension, why);
    if (!Is (COORDSYS_TolerateMissingFiles)) return Fail (error);
    _error = COORDSYS_FileMissingTolerated;
    return true;
  }

  // Finds the file and has the component set from its whole name. True when the component is set or
  // may be missing.
  template <class Setter>
  bool SetFromFile (const Str& name, const char* extension, coordsys_Error error, Setter&& set) {
    const Str whole = coordsys_FindFile (name, extension);
    if (whole.IsEmpty ()) return GoesOnWithout (name, extension, "is missing", error);
    const csib_Status status = set (whole);
    if (status == CSIB_Ok) return true;
    if (coordsys_ErrorOf (status) == COORDSYS_OutOfMemory) return Fail (COORDSYS_OutOfMemory);
    return GoesOnWithout (name, extension, "cannot be used", error);
  }

  bool SetDatum (const coordsys_Datum& datum) {
    switch (datum.DatumType) {
      case COORDSYS_NoDatum:
        return true;
      case COORDSYS_SevenParameter: {
        const csib_SevenParameters toLocal = {
            datum.TranslationX, datum.TranslationY, datum.TranslationZ, datum.RotationX,
            datum.RotationY,    datum.RotationZ,    datum.Scale};
        csib_SevenParameters toWGS84;
        if (!HasAll ({toLocal.TX, toLocal.TY, toLocal.TZ, toLocal.RX, toLocal.RY, toLocal.RZ,
                      toLocal.S}))
          return Fail (COORDSYS_InternalError);
        return Succeeds (csib_InvertSevenParameters (toLocal, toWGS84)) &&
               Succeeds (csib_SetDatum (*_block, CSIB_SevenParameter,
                                        Parameters ()
                                            .Double (toWGS84.TX)
                                            .Double (toWGS84.TY)
                                            .Double (toWGS84.TZ)
                                            .Double (toWGS84.RX)
                                            .Double (toWGS84.RY)
                                            .Double (toWGS84.RZ)
                                            .Double (toWGS84.S)));
      }
      case COORDSYS_ThreeParameter:
        if (!HasAll ({datum.TranslationX, datum.TranslationY, datum.TranslationZ}))
          return Fail (COORDSYS_InternalError);
        return Succeeds (csib_SetDatum (*_block, CSIB_Molodensky,
                                        Parameters ()
                                            .Double (-datum.TranslationX)
                                            .Double (-datum.TranslationY)
                                            .Double (-datum.TranslationZ)));
      case COORDSYS_GridDatum:
        if (Is (COORDSYS_SkipDatumGrid)) return true;
        return SetFromFile (datum.GridName, "CDG", COORDSYS_DatumGridError, [&] (const Str& whole) {
          return csib_SetDatum (*_block, CSIB_CombinedGridDatum, Parameters ().Text (whole));
        });
    }
    return Fail (COORDSYS_InternalError);
  }

  bool SetProjectionCode (csib_ProjectionCode code, const Parameters& parameters = {}) {
    return Succeeds (csib_SetProjection (*_block, code, parameters));
  }

  bool SetParallels (csib_ProjectionCode code, Parameters parameters,
                     const coordsys_Projection& projection) {
    _block->ProjectionScale = 1.0;
    return SetProjectionCode (
        code, parameters.Double (projection.Orientation1).Double (projection.Orientation2));
  }

  bool SetObliqueMercator (const coordsys_Projection& projection) {
    return SetProjectionCode (
        CSIB_ObliqueMercator,
        Parameters ()
            .Byte (projection.AzimuthFormat == COORDSYS_GridAzimuth ? 1 : 0)
            .Byte (projection.Rectify ? 1 : 0)
            .Byte (projection.OriginCenter == COORDSYS_OriginAtProjectionCenter ? 1 : 0)
            .Double (projection.Orientation1));
  }

  bool SetUPS (double originLatitude) {
    _block->OriginLatitude = originLatitude;
    _block->OriginLongitude = 0.0;
    _block->FalseNorth = _block->FalseEast = UPSFalseOrigin;
    _block->ProjectionScale = UPSScale;
    return SetProjectionCode (CSIB_PolarStereographic);
  }

  bool SetDenmark (coordsys_ProjectionArea area) {
    switch (area) {
      case COORDSYS_AreaJutland:
        return SetProjectionCode (CSIB_Denmark, Parameters ().Byte (1));
      case COORDSYS_AreaZeeland:
        return SetProjectionCode (CSIB_Denmark, Parameters ().Byte (2));
      case COORDSYS_AreaBornholm:
        return SetProjectionCode (CSIB_Denmark, Parameters ().Byte (3));
      default:
        Assert (false, "projection.Area != COORDSYS_AreaNone");
        return Fail (COORDSYS_InternalError);
    }
  }

  bool SetUKGrid (const coordsys_Projection& projection) {
    if (Is (COORDSYS_SkipUKGridFiles)) return true;
    const Str names[] = {projection.UKNorthGridFile, projection.UKEastGridFile};
    Parameters paths;
    bool isThere = true;
    for (const Str& name : names) {
      const Str whole = coordsys_FindFile (name, "pgf");
      if (whole.IsEmpty ()) {
        isThere = false;
        if (!GoesOnWithout (name, "pgf", "is missing", COORDSYS_UKGridError)) return false;
      }
      paths.Text (whole);
    }
    if (!isThere) return true;
    const csib_Status status = csib_SetProjection (*_block, CSIB_UKNationalGrid, paths);
    if (status == CSIB_Ok) return true;
    for (const Str& name : names) {
      std::unique_ptr<datum_Grid> grid;
      if (datum_GridOpen (grid, coordsys_FindFile (name, "pgf").View (), 0) != CSIB_Ok)
        Log (name, "pgf", "cannot be used");
    }
    return Fail (coordsys_ErrorOf (status));
  }

  bool SetProjectionGrid (const coordsys_Projection& projection) {
    if (Is (COORDSYS_SkipProjectionGrid)) return true;
    _block->FalseNorth = _block->FalseEast = 0.0;
    return SetFromFile (
        projection.ProjectionGridFile, "pjg", COORDSYS_ProjectionGridError, [&] (const Str& whole) {
          return csib_SetProjection (*_block, CSIB_ProjectionGrid,
                                     Parameters ().Byte (CSIB_GridsByPath).Text (whole));
        });
  }

  bool SetProjection (const coordsys_Projection& projection) {
    _block->OriginLatitude = projection.OriginLocal.Latitude;
    _block->OriginLongitude = projection.OriginLocal.Longitude;
    _block->FalseNorth = projection.OriginGrid.North;
    _block->FalseEast = projection.OriginGrid.East;
    _block->ProjectionScale = projection.Scale;
    if (!SetProjectionOfType (projection)) return false;
    if (projection.ShiftGridFile.IsEmpty () || Is (COORDSYS_SkipShiftGrid)) return true;
    return SetFromFile (
        projection.ShiftGridFile, "sgf", COORDSYS_ShiftGridError, [&] (const Str& whole) {
          return csib_SetShiftGrid (*_block, Parameters ().Byte (CSIB_GridsByPath).Text (whole));
        });
  }

  bool SetProjectionOfType (const coordsys_Projection& projection) {
    switch (projection.ProjectionType) {
      case COORDSYS_NoProjection:
      case COORDSYS_ScaleOnly:
        return true;
      case COORDSYS_Plane:
        return SetProjectionCode (CSIB_Plane, Parameters ()
                                                  .Double (projection.Orientation1)
                                                  .Double (projection.OriginLocal.Height)
                                                  .Double (projection.OriginGrid.Elevation));
      case COORDSYS_Mercator:
        if (maths_IsNull (_block->OriginLatitude)) _block->OriginLatitude = 0.0;
        return SetProjectionCode (CSIB_Mercator);
      case COORDSYS_TransverseMercator:
      case COORDSYS_UniversalTransverseMercator:
        return SetProjectionCode (CSIB_TransverseMercator);
      case COORDSYS_Lambert1Parallel:
        return SetProjectionCode (CSIB_Lambert, Parameters ().Byte (1));
      case COORDSYS_Lambert2Parallel:
        return SetParallels (CSIB_Lambert, Parameters ().Byte (2), projection);
      case COORDSYS_ObliqueMercatorAngle:
        return SetObliqueMercator (projection);
      case COORDSYS_ObliqueConformalCylindrical:
        return SetProjectionCode (CSIB_ObliqueConformalCylindrical);
      case COORDSYS_ObliqueStereographic:
        return SetProjectionCode (CSIB_ObliqueStereographic);
      case COORDSYS_PolarStereographic:
        return SetProjectionCode (CSIB_PolarStereographic);
      case COORDSYS_RDStereographic:
        return SetProjectionCode (CSIB_RD);
      case COORDSYS_AlbersEqualAreaConic:
        return SetParallels (CSIB_Albers, Parameters (), projection);
      case COORDSYS_CassiniSoldner:
        return SetProjectionCode (CSIB_Cassini);
      case COORDSYS_Krovak:
        return SetProjectionCode (CSIB_Krovak,
                                  Parameters ().Double (maths_IsNull (projection.Orientation1)
                                                            ? FerroOffset
                                                            : projection.Orientation1));
      case COORDSYS_NewZealandMapGrid:
        return SetProjectionCode (CSIB_NewZealand);
      case COORDSYS_UnitedKingdomNationalGrid:
        return SetUKGrid (projection);
      case COORDSYS_Denmark:
        return SetDenmark (projection.Area);
      case COORDSYS_HungarianEOV:
        return SetProjectionCode (CSIB_HungarianEOV);
      case COORDSYS_StereographicDouble:
        return SetProjectionCode (CSIB_DoubleStereographic);
      case COORDSYS_RSO: {
        coordsys_Projection rectified = projection;
        rectified.AzimuthFormat = COORDSYS_GridAzimuth;
        rectified.OriginCenter = COORDSYS_OriginAtEquator;
        rectified.Rectify = true;
        return SetObliqueMercator (rectified);
      }
      case COORDSYS_UPSNorth:
        return SetUPS (CONSTANT_PiOverTwo);
      case COORDSYS_UPSSouth:
        return SetUPS (-CONSTANT_PiOverTwo);
      case COORDSYS_ProjectionGrid:
        return SetProjectionGrid (projection);
    }
    return Fail (COORDSYS_InternalError);
  }

  void SetSigns (coordsys_GridOrientation orientation) {
    const bool isSouth =
        orientation == COORDSYS_IncreasingSouthWest || orientation == COORDSYS_IncreasingSouthEast;
    const bool isWest =
        orientation == COORDSYS_IncreasingSouthWest || orientation == COORDSYS_IncreasingNorthWest;
    _block->Flags[3] = isSouth ? 2 : 1;
    _block->Flags[4] = isWest ? 2 : 1;
  }

  static bool HasPlane (const coordsys_Height& height) {
    return height.HeightType == COORDSYS_InclinedPlane ||
           height.HeightType == COORDSYS_GeoidAndPlane;
  }

  // A height in the cogo form.
  bool SetHeight (const coordsys_Height& height) {
    const bool hasGeoid =
        height.HeightType == COORDSYS_GeoidModel || height.HeightType == COORDSYS_GeoidAndPlane;
    if (hasGeoid && !Is (COORDSYS_SkipGeoidFile) &&
        !SetFromFile (height.GeoidFilename, "ggf", COORDSYS_GeoidFileError, [&] (const Str& whole) {
          return csib_SetGeoid (*_block, CSIB_GeoidGrid, Parameters ().Text (whole));
        }))
      return false;
    return !HasPlane (height) || SetInclinedPlane (height);
  }

  // The part from its cogo form, about its origin as the block's points are: less the false origin,
  // plus the ground delta.
  bool SetInclinedPlane (const coordsys_Height& height) {
    const csib_Vertical part = {Inside (height.OriginNorth, _block->FalseNorth, _deltaNorth),
                                Inside (height.OriginEast, _block->FalseEast, _deltaEast),
                                height.ElevAdjustment, height.NorthAdjustment,
                                height.EastAdjustment};
    if (!HasAll ({height.OriginNorth, height.OriginEast, height.ElevAdjustment,
                  height.NorthAdjustment, height.EastAdjustment}))
      return Fail (COORDSYS_InternalError);
    return Succeeds (csib_SetVertical (*_block, &part));
  }

  bool SetPlane (const coordsys_Plane& plane) {
    csib_Horizontal part;
    part.OriginNorth = Inside (plane.OriginNorth, _block->FalseNorth, _deltaNorth);
    part.OriginEast = Inside (plane.OriginEast, _block->FalseEast, _deltaEast);
    part.TranslationNorth = plane.TranslationNorth;
    part.TranslationEast = plane.TranslationEast;
    part.Rotation = plane.Rotation;
    part.ScaleFactor = plane.ScaleFactor;
    if (!HasAll ({plane.OriginNorth, plane.OriginEast, plane.TranslationNorth,
                  plane.TranslationEast, plane.Rotation, plane.ScaleFactor}))
      return Fail (COORDSYS_InternalError);
    return Succeeds (csib_SetHorizontal (*_block, &part));
  }

  // Without a false origin nothing converts, so it need not be right then.
  static double Inside (double origin, double falseOrigin, double delta) {
    return origin - (maths_IsNull (falseOrigin) ? 0.0 : falseOrigin) + delta;
  }

  // Through the bytes.
  bool Parse () {
    std::size_t size = 0;
    if (!Succeeds (csib_Size (*_block, CSIB_ByName, &size))) return false;
    std::vector<uint8_t> bytes (size, Untouched);
    if (!Succeeds (csib_Write (*_block, bytes, CSIB_ByName))) return false;
    csib_Free (_block);
    return Succeeds (csib_Read (_block, bytes));
  }

  bool SetGroundScale (const coordsys_GroundScale& scale) {
    const coord_Local& location = scale.ProjectLocation;
    if (!maths_IsNull (location.Latitude) && !maths_IsNull (location.Longitude)) {
      _block->HasProjectLocation = 1;
      _block->ProjectLatitude = location.Latitude;
      _block->ProjectLongitude = location.Longitude;
    }
    const bool isScaled = !maths_IsNull (scale.Factor) && scale.Factor != 0.0;
    _block->GroundScale = isScaled ? scale.Factor : 1.0;
    _block->GroundOffsetNorth = _block->GroundOffsetEast = 0.0;
    const bool isKnown = csib_IsKnown (_block->GroundScale) &&
                         csib_IsKnown (_block->ProjectLatitude) &&
                         csib_IsKnown (_block->ProjectLongitude);
    return isKnown || Fail (COORDSYS_InternalError);
  }

  // The adjustments again, now that the block knows its ground deltas.
  bool MoveAdjustments (const coordsys_Axes& axes, const coordsys_Plane& plane,
                        const coordsys_Height& height) {
    csib_GroundDeltas (*_block, _deltaNorth, _deltaEast);
    return (_block->HasVertical == 0 || SetInclinedPlane (axes.ToCogo (height))) &&
           (_block->HasHorizontal == 0 || SetPlane (axes.ToCogo (plane)));
  }

  std::unique_ptr<csib_Block>& _block;
  const uint16_t _components;
  const uint32_t _options;
  coordsys_Error& _error;
  const bool _isQuiet;
  double _deltaNorth = 0.0;
  double _deltaEast = 0.0;
};

}  // namespace

coordsys_Error coordsys_ErrorOf (csib_Status status) noexcept {
  switch (status) {
    case CSIB_Ok:
      return COORDSYS_NoError;
    case CSIB_OutOfMemory:
    case CSIB_OutOfMemoryForWindow:
      return COORDSYS_OutOfMemory;
    case CSIB_UnloadedTwice:
    case CSIB_Unloaded:
    case CSIB_FileNotOpened:
    case CSIB_HeaderUnreadable:
    case CSIB_WrongGridMagic:
    case CSIB_UnknownInterpolation:
    case CSIB_WrongFormat:
    case CSIB_NameMissing:
    case CSIB_WindowTooLarge:
      return COORDSYS_FileError;
    default:
      return COORDSYS_InternalError;
  }
}

bool csib_FromParts (std::unique_ptr<csib_Block>& block, uint16_t components,
                     const coordsys_Ellipsoid& ellipsoid, const coordsys_Projection& projection,
                     const coordsys_Datum& datum, const coordsys_Plane& plane,
                     const coordsys_Height& height, const coordsys_Corrections& corrections,
                     uint32_t options, coordsys_Error* error, bool isQuiet) {
  csib_Free (block);
  *error = COORDSYS_NoError;
  bool isBuilt = false;
  try {
    Assembly assembly (block, components, options, *error, isQuiet);
    isBuilt = assembly.Build (ellipsoid, projection, datum, plane, height, corrections);
  } catch (const std::bad_alloc&) {
    *error = COORDSYS_OutOfMemory;
  }
  if (!isBuilt) csib_Free (block);
  return isBuilt;
}

}  // namespace clxml
