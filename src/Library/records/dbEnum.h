// The enumerations of records and their words.
// In a job file an enumerated field is a bare number, in the exchange format it is a word; each
// enumeration stands here once, as C++ and as the table between the two. Leans on dbField and str.
#pragma once

#include <cstdint>
#include <string_view>

#include "Library/records/dbField.h"
#include "str.h"

// An enumeration: its name, its stored form and its words in the order in which an exchange file's
// word is matched. Words of the same number are synonyms; the first is the one written. Every
// number of the stored form is a valid value, named or not, because a job file may hold it.
// Of one line the header makes the type, and dbEnum.cpp, which defines DBENUM_TABLES, its table.
#ifdef DBENUM_TABLES
#define DBENUM_TABLE(Type, flags, ...)                                           \
  constexpr auto Type##_Words = CutWords (#__VA_ARGS__);                         \
  constexpr auto Type##_Rows = CutRows<CountRows (#__VA_ARGS__)> (Type##_Words); \
  constexpr Enumeration Type##_Table = {#Type, Type##_Rows, flags};
#else
#define DBENUM_TABLE(Type, flags, ...)
#endif
#define DBENUM_TYPE(Type, Stored, flags, ...)        \
  enum Type : Stored { __VA_ARGS__ };                \
  extern const Enumeration Type##_Table;             \
  DBENUM_TABLE (Type, flags, __VA_ARGS__)            \
  template <>                                        \
  inline const Enumeration& EnumerationOf<Type> () { \
    return Type##_Table;                             \
  }
#define ENUMERATION(Type, Stored, ...)           \
  DBENUM_TYPE (Type, Stored, false, __VA_ARGS__) \
  enum Type : Stored
// A set of flags: a value is the OR of the numbers of its words.
#define FLAGS(Type, Stored, ...)                        \
  DBENUM_TYPE (Type, Stored, true, __VA_ARGS__)         \
  constexpr Type operator| (Type a, Type b) {           \
    return static_cast<Type> (Stored (a) | Stored (b)); \
  }                                                     \
  enum Type : Stored

namespace clxml {

/// Takes the number of exactly that word (case counts); false, with the number as it was, when the
/// table has no such word.
bool EnumFromText (const Enumeration& table, std::string_view text, int32_t& number) noexcept;
/// The first word of that number, or null.
const char* FindEnumText (const Enumeration& table, int32_t number) noexcept;
/// The same; for a number without a word asserts "!"improper T"", T being the enumeration's name,
/// and gives an empty text.
const char* EnumToText (const Enumeration& table, int32_t number);

/// Takes the OR of blank-separated words, 0 when there is none. False, with the number as it was
/// and the word in `unknown`, when one of them is not in the table.
bool FlagsFromText (const Enumeration& table, std::string_view text, int32_t& number,
                    std::string_view& unknown);
/// Blank-separated words of the bits that are set, in the order of the table; for a bit without a
/// word asserts "!"improper T"" and gives an empty text.
Str FlagsToText (const Enumeration& table, int32_t number);

/// The face of a theodolite that an observation was taken on.
ENUMERATION (coord_Face, int16_t, COORD_FaceNull = 0, COORD_Face1 = 1, COORD_Face2 = 2);

/// The form in which a position is given.
ENUMERATION (coord_Type, int16_t, COORD_NullType = 0, COORD_WGS84Type = 1, COORD_LocalType = 2,
             COORD_UncalibratedLocalType = 3, COORD_GridType = 4, COORD_GridDeltasType = 5,
             COORD_ECEFType = 6, COORD_ECEFGroundType = 7, COORD_ECEFDeltasType = 8,
             COORD_PolarType = 9, COORD_GroundType = 10, COORD_UnturnedType = 11,
             COORD_F2PolarType = 12, COORD_CircleType = 13, COORD_CorrectedType = 14,
             COORD_OrientedType = 15, COORD_LaserOffsetType = 16, COORD_StationOffsetType = 17,
             COORD_MTAType = 18, COORD_AsStoredType = 19);

/// What the azimuth of an oblique projection is measured against.
ENUMERATION (coordsys_AzimuthFormat, int16_t, COORDSYS_GridAzimuth = 0,
             COORDSYS_GeodeticAzimuth = 1);

/// Where distances are measured: on the grid, the ellipsoid or the ground.
ENUMERATION (coordsys_CogoDistance, int16_t, COORDSYS_GridDistance = 0,
             COORDSYS_EllipsoidDistance = 1, COORDSYS_GroundDistance = 2);

/// How computed azimuths, distances and heights are understood. The last three words are accepted
/// and mean nothing.
FLAGS (coordsys_CogoSettings, uint16_t, COORDSYS_CogoAzimuthWGS84 = 1,
       COORDSYS_CogoAzimuthLocal = 2, COORDSYS_CogoAzimuthGrid = 4, COORDSYS_CogoDistanceWGS84 = 8,
       COORDSYS_CogoDistanceLocal = 16, COORDSYS_CogoDistanceGrid = 32,
       COORDSYS_CogoGroundDistances = 64, COORDSYS_CogoEllipsoidDistances = 128,
       COORDSYS_CogoEllipsoidHeights = 1024, COORDSYS_CogoOrthoHeights = 2048,
       COORDSYS_CogoSystemSet = 0, COORDSYS_CogoCurveDistances = 0,
       COORDSYS_CogoChordDistances = 0);

/// How a datum is transformed.
ENUMERATION (coordsys_DatumType, int16_t, COORDSYS_NoDatum = 0, COORDSYS_SevenParameter = 1,
             COORDSYS_ThreeParameter = 2, COORDSYS_GridDatum = 3);

/// Whether coordinates are scaled to the ground or stay on the grid.
ENUMERATION (coordsys_GridElevation, int16_t, COORDSYS_Ground = 0, COORDSYS_Grid = 1);

/// The directions in which grid coordinates grow.
ENUMERATION (coordsys_GridOrientation, int16_t, COORDSYS_IncreasingNorthEast = 0,
             COORDSYS_IncreasingSouthWest = 1, COORDSYS_IncreasingNorthWest = 2,
             COORDSYS_IncreasingSouthEast = 3);

/// Where the factor from grid to ground comes from.
ENUMERATION (coordsys_GroundScaleFactorType, int16_t, COORDSYS_GridScaleFactor = 0,
             COORDSYS_NoGroundScaleFactor = 0, COORDSYS_KeyedInGroundScaleFactor = 1,
             COORDSYS_CalculatedGroundScaleFactor = 2);

/// How ellipsoid heights become elevations.
ENUMERATION (coordsys_HeightType, int16_t, COORDSYS_NoVertical = 0, COORDSYS_InclinedPlane = 1,
             COORDSYS_GeoidModel = 2, COORDSYS_GeoidAndPlane = 3);

/// Where the false origin of an oblique projection lies.
ENUMERATION (coordsys_OriginCenter, int16_t, COORDSYS_OriginAtEquator = 0,
             COORDSYS_OriginAtProjectionCenter = 1);

/// Whether there is a horizontal adjustment.
ENUMERATION (coordsys_PlaneType, int16_t, COORDSYS_NoHorizontal = 0, COORDSYS_ValidHorizontal = 1);

/// The area of the Danish projection.
ENUMERATION (coordsys_ProjectionArea, int16_t, COORDSYS_AreaNone = 0, COORDSYS_AreaZeeland = 1,
             COORDSYS_AreaJutland = 2, COORDSYS_AreaBornholm = 3);

/// The kind of map projection.
ENUMERATION (coordsys_ProjectionType, int16_t, COORDSYS_NoProjection = 0, COORDSYS_ScaleOnly = 1,
             COORDSYS_Plane = 2, COORDSYS_Mercator = 3, COORDSYS_TransverseMercator = 4,
             COORDSYS_UniversalTransverseMercator = 5, COORDSYS_Lambert1Parallel = 6,
             COORDSYS_Lambert2Parallel = 7, COORDSYS_ObliqueMercatorAngle = 8,
             COORDSYS_ObliqueConformalCylindrical = 9, COORDSYS_ObliqueStereographic = 10,
             COORDSYS_PolarStereographic = 11, COORDSYS_RDStereographic = 12,
             COORDSYS_AlbersEqualAreaConic = 13, COORDSYS_CassiniSoldner = 14, COORDSYS_Krovak = 15,
             COORDSYS_NewZealandMapGrid = 16, COORDSYS_UnitedKingdomNationalGrid = 17,
             COORDSYS_Denmark = 18, COORDSYS_HungarianEOV = 19, COORDSYS_StereographicDouble = 20,
             COORDSYS_RSO = 21, COORDSYS_UPSNorth = 22, COORDSYS_UPSSouth = 23,
             COORDSYS_ProjectionGrid = 24);

/// The code that new points of a subdivision get.
ENUMERATION (coordsys_SubdivideCode, int16_t, COORDSYS_UseName = 0, COORDSYS_UseCode = 1,
             COORDSYS_UseCustom = 2);

/// Which fields of the corrections a job has set itself.
FLAGS (coordsys_ValuesPresent, uint32_t, COORDSYS_SouthAzimuthPresent = 1,
       COORDSYS_GridOrientationPresent = 2, COORDSYS_MagDeclinationPresent = 4,
       COORDSYS_DistancesPresent = 8, COORDSYS_SubDivideCodePresent = 16,
       COORDSYS_NeighbourhoodAdjustmentPresent = 32, COORDSYS_WeightExponentPresent = 64);

/// The exponent of the distance weights of the neighbourhood adjustment.
ENUMERATION (coordsys_WeightExponent, int16_t, COORDSYS_WeightExponentZeroPointFive = 0,
             COORDSYS_WeightExponentOnePointZero = 1, COORDSYS_WeightExponentOnePointFive = 2,
             COORDSYS_WeightExponentTwoPointZero = 3);

/// How a calibration point gets its name.
ENUMERATION (dbcl_CalibPointNameMethod, int16_t, DBCL_SamePointName = 0,
             DBCL_AddPrefixToPointName = 1, DBCL_AddSuffixToPointName = 2,
             DBCL_AddConstantToPointName = 3);

/// The dimensions in which a point takes part in the calibration.
ENUMERATION (dbcl_CalibrateStatus, int16_t, DBCL_0D = 0, DBCL_1D = 1, DBCL_2D = 2, DBCL_3D = 3,
             DBCL_Any = 4);

/// How calibration points are observed.
ENUMERATION (dbcl_ObservationType, int16_t, DBCL_TopoPoint = 0, DBCL_KinematicPoint = 1,
             DBCL_RapidPoint = 2);

/// The kind of instrument that a survey style is for.
ENUMERATION (dbcl_PositioningTechnology, int16_t, DBCL_GPS = 0, DBCL_Conventional = 1, DBCL_TS = 1,
             DBCL_None = 2);

/// Why a time stamp was noted.
ENUMERATION (dbcl_TimeDerivation, int16_t, DBCL_System = 0, DBCL_UserDeleted = 1,
             DBCL_UserUndeleted = 2, DBCL_Updated = 3, DBCL_UsedLastTSSetup = 4);

/// What names, codes and labels of staked points are made of.
ENUMERATION (dbconfig_AsStaked, int16_t, DBCONFIG_DesignName = 0, DBCONFIG_AutoPointName = 1,
             DBCONFIG_DesignCode = 2, DBCONFIG_LastCodeUsed = 3,
             DBCONFIG_DesignStationAndOffset = 4);

/// How azimuths are shown.
ENUMERATION (dbconfig_AzimuthFormat, int16_t, DBCONFIG_AzimuthFormatAzimuth = 0,
             DBCONFIG_AzimuthFormatQuadrantBearing = 1);

/// Where the name of an as-built point comes from.
ENUMERATION (dbconfig_BuildId, int16_t, DBCONFIG_BuildAuto = 0, DBCONFIG_BuildDesign = 1);

/// The order in which coordinates are shown.
ENUMERATION (dbconfig_CoordOrder, int16_t, DBCONFIG_NEElev = 0, DBCONFIG_ENElev = 1,
             DBCONFIG_ENElev_YXZ = 2, DBCONFIG_NEElev_XYZ = 3, DBCONFIG_YXZ = 2, DBCONFIG_XYZ = 3);

/// Decimals of angles shown in decimal degrees.
ENUMERATION (dbconfig_DecAngleDisplay, int16_t, DBCONFIG_DecAngleDisplay0001 = 0,
             DBCONFIG_DecAngleDisplay00001 = 1, DBCONFIG_DecAngleDisplay000001 = 2);

/// The deltas shown during stakeout.
ENUMERATION (dbconfig_DeltasMode, int16_t, DBCONFIG_DistanceDeltas = 0,
             DBCONFIG_AngleDistanceDeltas = 1, DBCONFIG_AnglesSlope = 2,
             DBCONFIG_AzimuthDistance = 3, DBCONFIG_GridDeltas = 4, DBCONFIG_StationOffset = 5);

/// Decimals of distances and coordinates shown.
ENUMERATION (dbconfig_DistanceDisplay, int16_t, DBCONFIG_DistanceDisplay01 = 0,
             DBCONFIG_DistanceDisplay001 = 1, DBCONFIG_DistanceDisplay0001 = 2,
             DBCONFIG_DistanceDisplay00001 = 3, DBCONFIG_SDDisplay01 = 0, DBCONFIG_SDDisplay001 = 1,
             DBCONFIG_SDDisplay0001 = 2, DBCONFIG_SDDisplay00001 = 3);

/// Decimals of the seconds of angles shown.
ENUMERATION (dbconfig_DMSAngleDisplay, int16_t, DBCONFIG_DMSAngleNULL = 2,
             DBCONFIG_DMSAngleDisplay01 = 0, DBCONFIG_DMSAngleDisplay1 = 1,
             DBCONFIG_HAVAAngleNULL = 2, DBCONFIG_HAVAAngleDisplay01 = 0,
             DBCONFIG_HAVAAngleDisplay1 = 1);

/// The order of the faces in rounds of observations.
ENUMERATION (dbconfig_FaceOrder, int16_t, DBCONFIG_F1Only = 0, DBCONFIG_F1ThenF2 = 1,
             DBCONFIG_F1F2Paired = 2);

/// How GPS times are shown.
ENUMERATION (dbconfig_GPSTimeDisplay, int16_t, DBCONFIG_DateTime = 0, DBCONFIG_GPSWeekSeconds = 1,
             DBCONFIG_GPSTimeDisplayNULL = 2);

/// How the vertical angle of a laser is shown.
ENUMERATION (dbconfig_LaserVA, int16_t, DBCONFIG_LaserVerticalAngleNULL = 2,
             DBCONFIG_ZenithAngle = 0, DBCONFIG_Inclination = 1);

/// The order in which the second face is observed.
ENUMERATION (dbconfig_ObservationOrder, int16_t, DBCONFIG_SameOrder = 0, DBCONFIG_ReverseOrder = 1);

/// From where left and right of an offset are seen.
ENUMERATION (dbconfig_OffsetPerspectiveMode, int16_t, DBCONFIG_OffsetAutomatic = 0,
             DBCONFIG_OffsetFromInstrument = 1, DBCONFIG_OffsetFromTarget = 2,
             DBCONFIG_TSTopoOffsetAutomatic = 0, DBCONFIG_TSTopoOffsetFromInstrument = 1,
             DBCONFIG_TSTopoOffsetFromTarget = 2);

/// Where the top of the stakeout display points.
ENUMERATION (dbconfig_OrientTo, int16_t, DBCONFIG_OrientToHeading = 0, DBCONFIG_OrientToNorth = 1);

/// The quality records stored with a point.
ENUMERATION (dbconfig_QualityControl, int16_t, DBCONFIG_QualNone = 0, DBCONFIG_Qual1 = 1,
             DBCONFIG_Qual1and2 = 2, DBCONFIG_Qual1and3 = 3);

/// What moves on the stakeout display.
ENUMERATION (dbconfig_StakeMapMode, int16_t, DBCONFIG_StakeMovingMap = 0,
             DBCONFIG_StakeMovingCursor = 1);

/// From where the stakeout display is seen.
ENUMERATION (dbconfig_StakePerspectiveMode, uint16_t, DBCONFIG_StakeAutomatic = 0,
             DBCONFIG_StakeAtPole = 2, DBCONFIG_StakeBehindTS = 1);

/// How stations are written.
ENUMERATION (dbconfig_Stationing, int16_t, DBCONFIG_StationingNULL = 3,
             DBCONFIG_StationingNormal = 0, DBCONFIG_StationingHundreds = 1,
             DBCONFIG_StationingThousands = 2);

/// The satellite signal that is tracked.
ENUMERATION (dbconfig_TrackingMode, int16_t, DBCONFIG_TrackingCACode = 0,
             DBCONFIG_TrackingPCode = 1, DBCONFIG_TrackingYCode = 2, DBCONFIG_TrackingXCode = 3,
             DBCONFIG_TrackingCCode = 4, DBCONFIG_TrackingYorPCode = 5,
             DBCONFIG_TrackingTracked = 6, DBCONFIG_TrackingAuto = 7, DBCONFIG_TrackingNone = 8);

/// The stakeout display of a total station.
ENUMERATION (dbconfig_TSStakeViewMode, int16_t, DBCONFIG_TSStakeInOutAndLeftRightView = 1,
             DBCONFIG_TSStakeDirectionAndDistanceView = 0, DBCONFIG_TSStakeDirectionsView = 1,
             DBCONFIG_TSStakeMapView = 0);

/// Which way an arc turns, seen from its start.
ENUMERATION (dbentity_ArcDirection, int16_t, DBENTITY_RightHand = 0, DBENTITY_LeftHand = 1);

/// What an arc was computed from.
ENUMERATION (dbentity_ArcMethod, int16_t, DBENTITY_TwoPointsAndRadius = 0,
             DBENTITY_CurveLengthAndRadius = 1, DBENTITY_DeltaAngleAndRadius = 2,
             DBENTITY_IPAndTangents = 3, DBENTITY_TwoPointsAndCentrePoint = 4,
             DBENTITY_ThreePoints = 5);

/// What an azimuth counts from.
ENUMERATION (dbentity_AzimuthType, int16_t, DBENTITY_OriginTrue = 0, DBENTITY_OriginGrid = 1,
             DBENTITY_OriginMag = 2, DBENTITY_OriginSun = 3);

/// What a translation of points is given by.
ENUMERATION (dbentity_CogoTranslationMethod, int16_t, DBENTITY_CogoDeltas = 0,
             DBENTITY_CogoTwoPoints = 1);

/// What an azimuth was computed from.
ENUMERATION (dbentity_ComputeAzimuthMethod, int16_t, DBENTITY_TwoPointAzimuth = 0,
             DBENTITY_BisectedAzimuths = 1, DBENTITY_BisectedCorner = 2,
             DBENTITY_AzimuthAndTurnedAngle = 3, DBENTITY_AzimuthToLineOffset = 4);

/// What a distance was computed from.
ENUMERATION (dbentity_ComputeDistanceMethod, int16_t, DBENTITY_TwoPointDistance = 0,
             DBENTITY_BetweenPointAndLine = 1, DBENTITY_BetweenPointAndArc = 2);

/// The direction and the end from which a distance along a line counts.
ENUMERATION (dbentity_DirectionAlongLine, int16_t, DBENTITY_InFromStart = 0,
             DBENTITY_OutFromStart = 1, DBENTITY_InFromEnd = 2, DBENTITY_OutFromEnd = 3);

/// What a line was computed from.
ENUMERATION (dbentity_LineMethod, int16_t, DBENTITY_TwoPoints = 0, DBENTITY_BrngDistLine = 1);

/// What an element of a side slope is given by.
ENUMERATION (dbentity_OffsetElementType, int16_t, DBENTITY_HorzAndVertDist = 0,
             DBENTITY_GradeAndSlopeDist = 1, DBENTITY_GradeAndHorzDist = 2);

/// The extent of a panorama.
ENUMERATION (dbentity_PanoramaMethod, int16_t, DBENTITY_FullCircle = 0,
             DBENTITY_PartialPanorama = 1);

/// How a point came about.
ENUMERATION (
    dbentity_PointMethod, int16_t, DBENTITY_Unknown = 0, DBENTITY_Coordinates = 1,
    DBENTITY_FourPointInter = 2, DBENTITY_FromABaseline = 3, DBENTITY_BrngDistPoint = 4,
    DBENTITY_TurnedAngleDistance = 5, DBENTITY_BrngDistPtInter = 6,
    DBENTITY_BrngVerticalPlaneInter = 7, DBENTITY_BrngDistInter = 8, DBENTITY_BrngBrngInter = 9,
    DBENTITY_DistDistInter = 10, DBENTITY_GpsStaticObs = 11, DBENTITY_GpsFastStaticObs = 12,
    DBENTITY_GpsRTKCtrlPoint = 13, DBENTITY_GpsRTKQuickMark = 14, DBENTITY_Gps2PtOffset = 15,
    DBENTITY_Gps4PtInter = 16, DBENTITY_GpsCheckShot = 17, DBENTITY_GpsLoggingInit = 18,
    DBENTITY_GpsStakeOutObs = 19, DBENTITY_GpsCalibrationPt = 20, DBENTITY_GpsSingleAutoPt = 21,
    DBENTITY_GpsAverageAutoPt = 22, DBENTITY_GpsContDistancePt = 23, DBENTITY_GpsContTimePt = 24,
    DBENTITY_GpsContDistAndTimePt = 25, DBENTITY_GpsContDistOrTimePt = 26,
    DBENTITY_GpsContStopAndGoPt = 27, DBENTITY_GpsContOffsetPt1 = 28,
    DBENTITY_GpsContOffsetLeftPt = 28, DBENTITY_GpsContOffsetPt2 = 29,
    DBENTITY_GpsContOffsetRightPt = 29, DBENTITY_CogoCalc = 30, DBENTITY_AzimuthOnly = 31,
    DBENTITY_AngleOnly = 32, DBENTITY_HAngleOnly = 33, DBENTITY_DirectReading = 34,
    DBENTITY_AvgMeasurements = 35, DBENTITY_AngleOffset = 36, DBENTITY_HAngleOffset = 37,
    DBENTITY_VAngleOffset = 38, DBENTITY_DistanceOffset = 39, DBENTITY_TwoPointOffset = 40,
    DBENTITY_RadialAndTangent = 41, DBENTITY_RemoteObject = 42, DBENTITY_RemoteObjectElevation = 42,
    DBENTITY_MatchedPair = 43, DBENTITY_MatchedPairHidden = 44, DBENTITY_MeanTurnedAngle = 45,
    DBENTITY_MeanTurnedAngleHidden = 46, DBENTITY_Resection = 47, DBENTITY_ResectionInProgress = 48,
    DBENTITY_LaserOffset = 49, DBENTITY_CopiedPoint = 50, DBENTITY_FromBase = 51,
    DBENTITY_TraverseAdjusted = 52, DBENTITY_ReflineSetup = 53);

/// The format that a road was defined in.
ENUMERATION (dbentity_RoadType, uint8_t, DBENTITY_NorvathRoad = 0, DBENTITY_GenioRoad = 1,
             DBENTITY_LandXmlRoad = 2);

/// The outline of a scan.
ENUMERATION (dbentity_ScanType, int16_t, DBENTITY_ScanFullCircle = 0, DBENTITY_ScanRectangle = 1,
             DBENTITY_ScanPolygon = 2);

/// What the hinge of a side slope is given by.
ENUMERATION (dbentity_SideSlopeHingeDerv, int16_t, DBENTITY_HingeDervOffsetAndElev = 0,
             DBENTITY_HingeDervOffsetAndSlope = 1, DBENTITY_HingeDervOffsetAndVDiff = 2);

/// What is staked out.
ENUMERATION (dbentity_StakeOutEntity, int16_t, DBENTITY_NonEntity = 0, DBENTITY_PointEntity = 1,
             DBENTITY_LineEntity = 2, DBENTITY_ArcEntity = 3, DBENTITY_DTMEntity = 4,
             DBENTITY_RoadEntity = 5);

/// How it is staked out.
ENUMERATION (dbentity_StakeOutMethod, int16_t, DBENTITY_ToThePoint = 0, DBENTITY_FromAPoint = 1,
             DBENTITY_FromStartPosition = 2, DBENTITY_FromLastPointStaked = 3,
             DBENTITY_ToTheLine = 4, DBENTITY_ToTheArc = 5, DBENTITY_PointsOffsetFromLine = 6,
             DBENTITY_PointsOffsetFromArc = 7, DBENTITY_OffsetLine = 8, DBENTITY_OffsetArc = 9,
             DBENTITY_PointsOnLine = 10, DBENTITY_PointsOnArc = 11,
             DBENTITY_IntersectPointOfArc = 12, DBENTITY_CentrePointOfArc = 13,
             DBENTITY_SlopeFromLine = 14, DBENTITY_SlopeFromArc = 15,
             DBENTITY_StationAndOffset = 16, DBENTITY_PositionOnRoad = 17,
             DBENTITY_SideSlopeFromAlignment = 18, DBENTITY_StationOnString = 19,
             DBENTITY_NearestRoadOffset = 20, DBENTITY_ToTheDTM = 21);

/// What the line of a surface scan is given by.
ENUMERATION (dbentity_SurfaceScanLineMethod, int16_t, DBENTITY_SurfaceScanTwoPoints = 0,
             DBENTITY_SurfaceScanBearingDistance = 1);

/// The pattern of a surface scan.
ENUMERATION (dbentity_SurfaceScanMethod, int16_t, DBENTITY_SurfaceScanAngularStep = 0,
             DBENTITY_SurfaceScanRectPlane = 1, DBENTITY_SurfaceScanLine = 2);

/// How a position was come by.
ENUMERATION (dbentity_SurveyMethod, int16_t, DBENTITY_KeyedIn = 0, DBENTITY_Autonomous = 1,
             DBENTITY_Float = 2, DBENTITY_Fix = 3, DBENTITY_Copied = 4, DBENTITY_Code = 5,
             DBENTITY_WAAS = 6, DBENTITY_Inertial = 7, DBENTITY_NetworkFloat = 8,
             DBENTITY_NetworkFix = 9);

/// The rule by which a traverse is adjusted.
ENUMERATION (dbentity_TrvAdjustmentMethod, int16_t, DBENTITY_CompassMethod = 0,
             DBENTITY_TransitMethod = 1);

/// How a misclosure is shared out along a traverse.
ENUMERATION (dbentity_TrvAdjustmentType, int16_t, DBENTITY_WeightedMethod = 0,
             DBENTITY_LinearMethod = 1, DBENTITY_NoMethod = 2);

/// How far the computation of a traverse has come.
ENUMERATION (dbentity_TrvResultType, int16_t, DBENTITY_NotAdjusted = 0, DBENTITY_Closed = 1,
             DBENTITY_Adjusted = 2);

/// How an antenna height was measured: to the phase centre, or to a mark of the antenna, with the
/// corrections of its measuring methods.
ENUMERATION (dbgps_APCType, int16_t, DBGPS_Absolute = 0, DBGPS_Relative = 1, DBGPS_Corrected0 = 2,
             DBGPS_Corrected1 = 3, DBGPS_Corrected2 = 4, DBGPS_Corrected3 = 5, DBGPS_Corrected4 = 6,
             DBGPS_Corrected5 = 7, DBGPS_Corrected6 = 8, DBGPS_Corrected7 = 9,
             DBGPS_Corrected8 = 10, DBGPS_Corrected9 = 11);

/// The bearer of an internet connection.
ENUMERATION (dbgps_ConnectionType, int16_t, DBGPS_GPRSConnection = 0, DBGPS_CDPDConnection = 1,
             DBGPS_DIALUPConnection = 2);

/// What triggers a point of a continuous survey.
ENUMERATION (dbgps_ContMethod, int16_t, DBGPS_ContDistancePt = 0, DBGPS_ContTimePt = 1,
             DBGPS_ContDistAndTimePt = 2, DBGPS_ContDistOrTimePt = 3, DBGPS_ContStopAndGoPt = 4);

/// The number of offset points at each point of a continuous survey.
ENUMERATION (dbgps_ContOffsetOption, int16_t, DBGPS_ContNone = 0, DBGPS_ContOne = 1,
             DBGPS_ContTwo = 2);

/// The kind of an internal radio.
ENUMERATION (dbgps_eRadioSubtype, int16_t, DBGPS_UHF = 0, DBGPS_GSM = 1, DBGPS_GPRS = 2);

/// Whether a file for postprocessing holds usable data.
ENUMERATION (dbgps_FileStatus, int16_t, DBGPS_UselessData = 0, DBGPS_ValidData = 1);

/// What happened to the initialisation.
ENUMERATION (dbgps_InitEvent, int16_t, DBGPS_GainInit = 0, DBGPS_LostInit = 1, DBGPS_FailedInit = 2,
             DBGPS_BadInit = 3, DBGPS_HighRMS = 4, DBGPS_GoodRMS = 5, DBGPS_UserCancelled = 6);

/// The system that is initialised.
ENUMERATION (dbgps_InitSystem, int16_t, DBGPS_RealTimeSystem = 0, DBGPS_PostprocessSystem = 1,
             DBGPS_InfillSystem = 2);

/// The way of initialisation.
ENUMERATION (dbgps_InitType, int16_t, DBGPS_Plate = 0, DBGPS_KnownPoint = 1, DBGPS_NewPoint = 2,
             DBGPS_OnTheFly = 3, DBGPS_Null = 4);

/// Whether inertial positions are used.
ENUMERATION (dbgps_INSPositionType, int16_t, DBGPS_RTKOnly = 0, DBGPS_RTKAndINS = 1,
             DBGPS_INSOnly = 2);

/// The part that a base plays on the internet.
ENUMERATION (dbgps_InternetBaseMode, int16_t, DBGPS_IPBaseServer = 0, DBGPS_IPBaseSender = 1);

/// Where raw data are logged.
ENUMERATION (dbgps_LoggingDevice, int16_t, DBGPS_HandHeld = 0, DBGPS_Receiver = 1);

/// Whether the position of the monitored station agreed.
ENUMERATION (dbgps_MonitorState, int16_t, DBGPS_NotMonitored = 0, DBGPS_MonitorFailed = 1,
             DBGPS_MonitorOK = 2);

/// A switch.
ENUMERATION (dbgps_OnOff, int16_t, DBGPS_On = 0, DBGPS_Off = 1);

/// The kind of radio.
ENUMERATION (dbgps_RadioType, int16_t, DBGPS_CellularModem = 0, DBGPS_CustomRadio = 1,
             DBGPS_PacificCrest = 2, DBGPS_DeltaInternalRadio = 3, DBGPS_VathComm = 4,
             DBGPS_VathMark = 5, DBGPS_VathMarkIII = 6, DBGPS_VathTalk450S = 7,
             DBGPS_InternetConnection = 8, DBGPS_VathTalk = 9, DBGPS_VathTalk900 = 10,
             DBGPS_VathMarkRover = 11, DBGPS_Clarion = 12, DBGPS_Satel = 13,
             DBGPS_MilitaryRadio = 14, DBGPS_VathNetBase900 = 15, DBGPS_NorvathP450 = 16,
             DBGPS_NorvathH450 = 17, DBGPS_NorvathL = 18, DBGPS_LBRS = 18);

/// A port of the receiver.
ENUMERATION (dbgps_ReceiverPort, int16_t, DBGPS_Port1 = 0, DBGPS_Port2 = 1, DBGPS_Port3 = 2,
             DBGPS_Port4 = 3, DBGPS_Port5 = 4, DBGPS_Port6 = 5, DBGPS_Port7 = 6, DBGPS_Port8 = 7,
             DBGPS_Port9 = 8, DBGPS_Port10 = 9);

/// The oldest corrections that are used, seconds.
ENUMERATION (dbgps_RTCMAgeLimit, int16_t, DBGPS_Age5 = 0, DBGPS_Age10 = 1, DBGPS_Age20 = 2,
             DBGPS_Age50 = 3, DBGPS_Age100 = 4);

/// The way in which real-time positions are fixed.
ENUMERATION (dbgps_RTKApplication, int16_t, DBGPS_RTK2WithWidelane = 0, DBGPS_RTK2WithL1Fixed = 1);

/// The format of the corrections broadcast.
ENUMERATION (dbgps_RTKRecordType, int16_t, DBGPS_RTCMCode = 0, DBGPS_WAASOnly = 1,
             DBGPS_EGNOSOnly = 2, DBGPS_RTCMCtrl = 3, DBGPS_RTCMCtrl21 = 4, DBGPS_RTCMCtrl22 = 5,
             DBGPS_RTCMCtrl23 = 6, DBGPS_RTCMCtrl30 = 7, DBGPS_CMR2Ctrl = 8, DBGPS_CMR2Plus = 9,
             DBGPS_CMR2Plus5Hz = 10, DBGPS_NetworkADV = 11, DBGPS_NetworkVRS = 12,
             DBGPS_NetworkCMR = 14, DBGPS_NetworkCMRNet = 13, DBGPS_NetworkDiff = 15,
             DBGPS_MultiStationCMR = 17, DBGPS_MultiStationRTCM = 16, DBGPS_RTCMNet = 18);

/// The satellite service that gives corrections.
ENUMERATION (dbgps_SatDiffCorrection, int16_t, DBGPS_NoSatDiff = 0, DBGPS_WAAS = 1,
             DBGPS_EGNOS = 2);

/// What happened to the survey.
ENUMERATION (dbgps_SurveyEvent, int16_t, DBGPS_StartBaseSurvey = 0, DBGPS_StartRoverSurvey = 1,
             DBGPS_AbortSurvey = 2, DBGPS_EndSurvey = 3, DBGPS_BaseStarted = 4,
             DBGPS_ReceiverModeSetError = 5, DBGPS_CommunicationsError = 6,
             DBGPS_InfillSystemAdopted = 7, DBGPS_RealtimeSystemAdopted = 8);

/// The kind of satellite survey.
ENUMERATION (dbgps_SurveyType, int16_t, DBGPS_RTK = 0, DBGPS_RTKAndInfill = 1,
             DBGPS_RTKAndDataLogging = 2, DBGPS_FastStatic = 3, DBGPS_PPKinematic = 4,
             DBGPS_RTDifferential = 5, DBGPS_RTDiffAndInfill = 6, DBGPS_RTDiffAndDataLogging = 7,
             DBGPS_PPDifferential = 8, DBGPS_NoGPS = 9, DBGPS_ListEnd = 10);

/// How the rate of data is adapted to the link.
ENUMERATION (dbgps_Throttling, int16_t, DBGPS_RateAllOff = 0, DBGPS_RateAutoNoInit = 1,
             DBGPS_RateAutowInit = 2, DBGPS_RateAutoFullNoBase = 3, DBGPS_RateAutoFullwBase = 4);

/// How points from a network of bases are stored.
ENUMERATION (dbgps_VRSStoreType, int16_t, DBGPS_StoreAsPositions = 0, DBGPS_StoreAsVectors = 1);

/// What a laser rangefinder can do.
FLAGS (dblaser_Features, uint32_t, DBLASER_HasFireCommand = 1, DBLASER_HasEDM = 2,
       DBLASER_HasCompass = 4, DBLASER_HasInclinometer = 8, DBLASER_SupportsSerial = 16,
       DBLASER_SupportsBluetooth = 32);

/// The model of a laser rangefinder.
ENUMERATION (dblaser_LaserType, int16_t, DBLASER_None = 0, DBLASER_Criterion300 = 1,
             DBLASER_Criterion400 = 2, DBLASER_Impulse = 3, DBLASER_ProSurvey1000 = 4,
             DBLASER_AtlantaAdvantage = 5, DBLASER_Ledha = 6, DBLASER_MDLLaserAce = 7,
             DBLASER_MDLGenerationII = 8, DBLASER_DataDisto = 9, DBLASER_DistoMemo = 10,
             DBLASER_VectorGIS = 11, DBLASER_Bosch = 12, DBLASER_LaserCraft = 13,
             DBLASER_DistoPlus = 14);

/// What an arc of a horizontal alignment is given by.
ENUMERATION (dbroad_KeyinArcMethod, int16_t, DBROAD_ArcByRadiusAndLength = 0,
             DBROAD_ArcByRadiusAndEndStation = 1, DBROAD_ArcByAngleAndRadius = 2,
             DBROAD_ArcByAngleAndLength = 3, DBROAD_ArcByAngleAndEndStation = 4);

/// What a spiral of a horizontal alignment is given by.
ENUMERATION (dbroad_KeyinSpiralMethod, int16_t, DBROAD_SpiralByRadiusAndLength = 0,
             DBROAD_SpiralByRadiusAndEndStation = 1);

/// What a straight of a horizontal alignment is given by.
ENUMERATION (dbroad_KeyinStraightMethod, int16_t, DBROAD_StraightByAzimuthAndLength = 0,
             DBROAD_StraightByAzimuthAndEndStation = 1, DBROAD_StraightByUserDefinedCoords = 2,
             DBROAD_StraightByExistingPoint = 3);

/// The point about which superelevation turns a cross section.
ENUMERATION (dbroad_Pivot, int16_t, DBROAD_PivotLeft = 0, DBROAD_PivotCentre = 1,
             DBROAD_PivotRight = 2);

/// What the start of a horizontal alignment is given by.
ENUMERATION (dbroad_StartMethod, int16_t, DBROAD_UserDefinedCoords = 0, DBROAD_ExistingPoint = 1);

/// Where the template of a station comes from.
ENUMERATION (dbroad_TemplateMethod, int16_t, DBROAD_UserDefinedTemplate = 0, DBROAD_NoTemplate = 1,
             DBROAD_InterpolateTemplate = 2);

/// What the elements of a vertical alignment are given by.
ENUMERATION (dbroad_VerticalKeyinMethod, int16_t, VerticalKeyin_VPI = 0,
             VerticalKeyin_EndPoints = 1);

/// The dimensions of a position.
ENUMERATION (dbtype_Dimension, int16_t, DBTYPE_None = 0, DBTYPE_1d = 1, DBTYPE_2d = 2,
             DBTYPE_3d = 3);

/// Its values stand in platform/folder.h.
enum folder_Enum : int16_t;
template <>
const Enumeration& EnumerationOf<folder_Enum> ();

/// The classes of older exchange files; the deleted ones are told apart elsewhere.
ENUMERATION (load_legacy_dbentity_Classification, int16_t, DBENTITY_DeletedCheck = 0,
             DBENTITY_DeletedBackSight = 1, DBENTITY_DeletedAsBuilt = 2,
             DBENTITY_DeletedConstruction = 3, DBENTITY_DeletedNormal = 4,
             DBENTITY_DeletedControl = 8, DBENTITY_Check = 0, DBENTITY_BackSight = 1,
             DBENTITY_AsBuilt = 2, DBENTITY_Construction = 3, DBENTITY_Normal = 4,
             DBENTITY_Control = 8);

/// The flow control of a serial line.
ENUMERATION (rs232_FlowControls, int16_t, RS232_NoFlowControl = 0, RS232_XonXoffFlowControl = 1,
             RS232_RtsCtsFlowControl = 2, RS232_DtrDsrFlowControl = 3);

/// The parity of a serial line.
ENUMERATION (rs232_ParityCodes, int16_t, RS232_NoParity = 0, RS232_OddParity = 1,
             RS232_EvenParity = 2, RS232_MarkParity = 3, RS232_SpaceParity = 4);

/// A serial port of the handheld.
ENUMERATION (rs232_Ports, int16_t, RS232_COM1 = 0, RS232_COM2 = 1, RS232_COM3 = 2, RS232_COM4 = 3,
             RS232_COM5 = 4, RS232_COM6 = 5, RS232_COM7 = 6, RS232_COM8 = 7, RS232_COM9 = 8,
             RS232_COM10 = 9, RS232_NumberOfPorts = 10);

/// Where air pressure comes from.
ENUMERATION (total_AtmosphereMethod, int16_t, TOTAL_KeyedIn = 0, TOTAL_ReadFromInstrument = 1);

/// The model of a total station.
ENUMERATION (total_InstrumentType, int16_t, TOTAL_NorvathR1 = 1, TOTAL_NorvathR2 = 2,
             TOTAL_NorvathR3E = 3, TOTAL_NorvathR3G = 4, TOTAL_NorvathR4 = 5, TOTAL_NorvathR5 = 6,
             TOTAL_NorvathR6 = 7, TOTAL_Zorvan = 0, TOTAL_SETBasic = 8, TOTAL_SETEnhanced = 9,
             TOTAL_Lumenar400 = 10, TOTAL_Lumenar500Servo = 11, TOTAL_Lumenar600 = 12,
             TOTAL_Lumenar600Servo = 13, TOTAL_Lumenar600Robotic = 14, TOTAL_Lumenar4000 = 15,
             TOTAL_LeicaTC300 = 16, TOTAL_LeicaTC500 = 17, TOTAL_LeicaTC800 = 18,
             TOTAL_LeicaT1000_6 = 19, TOTAL_LeicaT1000_14 = 20, TOTAL_LeicaTC1100 = 21,
             TOTAL_LeicaTC1100ServoGeoCom = 22, TOTAL_LeicaTC1100ServoGSI = 22,
             TOTAL_LeicaTC1100RoboticGeoCom = 23, TOTAL_LeicaTC1600 = 24, TOTAL_LeicaTC2000 = 25,
             TOTAL_Nikon = 26, TOTAL_Pentax = 27, TOTAL_TopconGeneric = 28, TOTAL_Topcon500 = 29,
             TOTAL_ZeissElta2 = 30, TOTAL_ZeissElta3 = 31, TOTAL_ZeissElta4 = 32,
             TOTAL_ZeissEltaC = 33, TOTAL_ZeissRecEltaE = 34, TOTAL_ZeissRSeries = 35,
             TOTAL_Manual = 36, TOTAL_Null = 37);

/// How a distance is measured.
ENUMERATION (total_MeasurementMode, int16_t, TOTAL_EDMFine = 0, TOTAL_EDMCoarse = 1,
             TOTAL_EDMTrack = 2, TOTAL_EDM5mm = 3, TOTAL_EDM10mm = 4, TOTAL_EDM20mm = 5,
             TOTAL_EDMDefault = 6, TOTAL_EDMNull = 7);

/// The kind of prism.
ENUMERATION (total_PrismTypes, int32_t, TOTAL_KSeries360Prism = 1, TOTAL_KSeriesTraversePrism = 2,
             TOTAL_Small318mmTiltablePrism = 3, TOTAL_Large635mmTiltablePrism = 4,
             TOTAL_MiniPrism = 5, TOTAL_SuperPrism = 6, TOTAL_CustomPrism = 7,
             TOTAL_KSeriesMultiTrack = 0, TOTAL_UnknownPrism = -1);

/// The coefficient of refraction.
ENUMERATION (total_RefractionType, int16_t, TOTAL_Refraction0 = 0, TOTAL_Refraction0142 = 1,
             TOTAL_Refraction02 = 2);

/// The identity of an active target.
ENUMERATION (total_RMTIDs, int32_t, TOTAL_RMTIDNone = 0, TOTAL_RMTID0 = 1, TOTAL_RMTID1 = 2,
             TOTAL_RMTID2 = 3, TOTAL_RMTID3 = 4, TOTAL_RMTID4 = 5, TOTAL_RMTID5 = 6,
             TOTAL_RMTID6 = 7, TOTAL_RMTID7 = 8, TOTAL_RMTID8 = 9, RMTID_0 = 1, RMTID_2 = 3,
             RMTID_4 = 5, RMTID_6 = 7);

/// Whether a station has a scale factor of its own.
ENUMERATION (total_ScaleFactorType, int16_t, TOTAL_ScaleFixed = 0, TOTAL_ScaleFree = 1);

/// What the motors of an instrument turn.
ENUMERATION (total_ServoOptions, int16_t, TOTAL_HAOnly = 0, TOTAL_HAandVA = 1, TOTAL_NoServo = 2,
             TOTAL_VAOnly = 3);

/// What the horizontal circle is set to when a station is set up.
ENUMERATION (total_SetHzCircleMode, int16_t, TOTAL_DoNothing = 0, TOTAL_Zero = 1,
             TOTAL_SetToAzimuth = 2, TOTAL_SetHzNull = 3);

/// How a station was set up.
ENUMERATION (total_StationType, int16_t, TOTAL_UnknownType = 0, TOTAL_StationSetup = 1,
             TOTAL_StationSetupPlus = 2, TOTAL_StandardResection = 3, TOTAL_HelmertResection = 4,
             TOTAL_ReflineStationSetup = 5, TOTAL_KnownStation = 1, TOTAL_KnownStationPlus = 2);

/// To where the height of a target or an instrument was measured.
ENUMERATION (total_TargetHeightMethod, int16_t, TrueVertical = 0, ZorvanBottomNotch = 1);

/// When the identity of an active target is checked.
ENUMERATION (total_ZorvanTargetIDCheckType, int32_t, TOTAL_TargetIDCheck_Search = 1,
             TOTAL_TargetIDCheck_SearchAndMeasure = 2, TOTAL_TargetIDCheck_Always = 3,
             TOTAL_TargetIDCheck_Off = 0);

/// Units of values shown.
ENUMERATION (units_Type, int16_t, UNITS_Meters = 0, UNITS_Millimeters = 1, UNITS_Centimeter = 2,
             UNITS_Kilometer = 3, UNITS_Inch = 4, UNITS_Foot = 5, UNITS_USFoot = 6, UNITS_Yard = 7,
             UNITS_Link = 8, UNITS_Chain = 9, UNITS_Mile = 10, UNITS_NauticalMile = 11,
             UNITS_Latitude = 12, UNITS_Longitude = 13, UNITS_Ddmmss = 14, UNITS_Degrees = 15,
             UNITS_MinutesAngle = 16, UNITS_SecondsAngle = 17, UNITS_Mil = 18, UNITS_Gon = 19,
             UNITS_MeterPerSecond = 20, UNITS_Seconds = 21, UNITS_Hours = 22, UNITS_Minutes = 23,
             UNITS_HoursMinutes = 24, UNITS_Kilobytes = 25, UNITS_Percentage = 26,
             UNITS_PercentScalar = 27, UNITS_Celcius = 28, UNITS_Fahrenheit = 29,
             UNITS_MilliBar = 30, UNITS_InchHg = 31, UNITS_MMHg = 32, UNITS_RatioRiseRun = 33,
             UNITS_RatioRunRise = 34, UNITS_Angle = 35, UNITS_SqMetres = 36, UNITS_SqMile = 37,
             UNITS_SqFeet = 38, UNITS_Acres = 39, UNITS_Hectares = 40, UNITS_Quad = 41,
             UNITS_PPMSlope = 42, UNITS_PPMScalar = 43, UNITS_Ddmm = 44,
             UNITS_InverseFlattening = 45, UNITS_None = 46);

}  // namespace clxml

#undef ENUMERATION
#undef FLAGS
#undef DBENUM_TYPE
#undef DBENUM_TABLE
