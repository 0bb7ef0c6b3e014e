// The records of stakeout and road design.
// What was staked: the design a point came from, its deltas from it and the cross section at the
// time. Angles are radians, lengths metres; a uint8_t is a yes or no. Leans on dbRecord, dbGroups
// and dbSettings.
#pragma once

#include <optional>
#include <vector>

#include "Library/records/dbGroups.h"
#include "Library/records/dbRecord.h"
#include "Library/records/dbSettings.h"

namespace clxml {

/// How far a staked point may lie from its design.
struct db_StakeTolerance {
  double HDist = 0.0;
  double VDist = 0.0;
  double HorzAngle = 4.84813681109536e-05;  ///< 10 seconds of arc
  double VertAngle = 9.69627362219072e-05;  ///< 20 seconds of arc
  double SlopeDistance = 0.02;

  void Fields (FieldVisitor& v);
};

/// An element of a side slope.
struct db_SlopeElement {
  dbentity_OffsetElementType Type = DBENTITY_HorzAndVertDist;
  double HDist = 0.0;
  double VDist = 0.0;
  double SDist = 0.0;
  double Grade = 0.0;

  void Fields (FieldVisitor& v);
};

/// The grid position of a cross section; east comes first, unlike in db_NEE.
struct db_CenterGrid {
  double East = 0.0;
  double North = 0.0;
  double Elev = 0.0;

  void Fields (FieldVisitor& v);
};

/// How points, lines and roads are staked out.
class db_StakeOut final : public RecordOf<db_StakeOut, DATABASE_ConfigStakeOutRecord> {
 public:
  coordsys_CogoDistance DistanceType = COORDSYS_GridDistance;
  coord_Type DisplayPointType = COORD_GridDeltasType;
  uint8_t DisplayElevToDTM = 0;
  Str TerrainModel;           ///< file of the model
  double VOffsetToDTM = 0.0;  ///< from the model
  dbconfig_AsStaked AsStakedName = DBCONFIG_AutoPointName;
  dbconfig_AsStaked AsStakedCode = DBCONFIG_DesignName;
  dbconfig_QualityControl QualityControl = DBCONFIG_Qual1;
  double Duration = 5.0;      ///< seconds
  uint16_t Measurements = 3;  ///< the least number of epochs
  double HorzAcc = 0.015;
  double VertAcc = 0.02;
  double ZoomFactor = 4.0;
  uint8_t AutoFineMode = 1;
  dbconfig_AsStaked PointLabels = DBCONFIG_DesignName;
  dbconfig_OrientTo OrientTo = DBCONFIG_OrientToHeading;
  uint8_t GridDeltas = 1;
  dbconfig_DeltasMode GPSDeltas = DBCONFIG_GridDeltas;
  dbconfig_DeltasMode TSDeltas = DBCONFIG_DistanceDeltas;
  double TSAngleDeltaTolerance = 0.0001454441043328608;  ///< 30 seconds of arc
  double TSDistanceDeltaTolerance = 0.02;
  dbconfig_StakeMapMode MapMode = DBCONFIG_StakeMovingMap;
  dbconfig_TSStakeViewMode TSViewMode = DBCONFIG_TSStakeDirectionAndDistanceView;
  uint8_t DoToleranceCheck = 1;
  db_StakeTolerance Tolerance;
  uint16_t AutoPointIncr = 1;  ///< step of the number in a name
  uint8_t AutoSideSlope = 1;
  dbconfig_StakePerspectiveMode UserPerspective = DBCONFIG_StakeAutomatic;
  Str PointStakeoutStyleSheet;
  Str LineStakeoutStyleSheet;
  Str ArcStakeoutStyleSheet;
  Str DTMStakeoutStyleSheet;
  Str RoadStakeoutStyleSheet;

  void Fields (FieldVisitor& v) override;
};

/// The stations of a road that are offered for stakeout.
class db_RoadAvailableStations final
    : public RecordOf<db_RoadAvailableStations, DATABASE_RoadAvailableStations> {
 public:
  uint8_t RegularSections = 1;
  uint8_t HorizCurve = 1;
  uint8_t VerticalCurve = 1;
  uint8_t TemplateAssignment = 0;
  uint8_t SuperWiden = 0;

  void Fields (FieldVisitor& v) override;
};

/// The construction offsets of roads, for each kind of road (road definition, strings, LandXML)
/// and each way of staking: SAO station and offset, POR position on road, SSFA side slope from
/// alignment, NRO nearest road offset, SOS station on string.
class db_RoadConstructionOffsets final
    : public RecordOf<db_RoadConstructionOffsets, DATABASE_RoadConstructionOffsets> {
 public:
  double norvathSAOHorizontal = 0.0;
  double norvathSAOVertical = 0.0;
  double norvathPORVertical = 0.0;
  double norvathSSFAHorizontal = 0.0;
  double norvathSSFAVertical = 0.0;
  double norvathNROHorizontal = 0.0;
  double norvathNROVertical = 0.0;
  bool norvathSAOApplyOnSlopeNext = false;
  bool norvathSSFAApplyOnSlopeNext = false;
  bool norvathNROApplyOnSlopeNext = false;
  bool norvathSAOApplyOnSlopePrevious = false;
  bool norvathSSFAApplyOnSlopePrevious = false;
  bool norvathNROApplyOnSlopePrevious = false;
  bool norvathSAOApplyVertOnPerpendicular = false;
  bool norvathPORApplyVertOnPerpendicular = false;
  bool norvathSSFAApplyVertOnPerpendicular = false;
  bool norvathNROApplyVertOnPerpendicular = false;
  bool norvathNROApplyCalculatedOffset = false;
  double stringSOSHorizontal = 0.0;
  double stringSOSVertical = 0.0;
  double stringSOSStation = 0.0;
  double stringPORVertical = 0.0;
  double stringNROHorizontal = 0.0;
  double stringNROVertical = 0.0;
  bool stringSOSApplyOnSlopeNext = false;
  bool stringSOSApplyOnSlopePrevious = false;
  bool stringSOSApplyPerpendicularToSubString = false;
  bool stringNROApplyOnSlopeNext = false;
  bool stringNROApplyOnSlopePrevious = false;
  bool stringSOSApplyVertOnPerpendicular = false;
  bool stringPORApplyVertOnPerpendicular = false;
  bool stringNROApplyVertOnPerpendicular = false;
  bool stringSOSApplyOffsetAtString = false;
  double landxmlSAOHorizontal = 0.0;
  double landxmlSAOVertical = 0.0;
  bool landxmlSAOApplyOnSlopeNext = false;
  bool landxmlSAOApplyOnSlopePrevious = false;
  bool landxmlSAOApplyVertOnPerpendicular = false;

  void Fields (FieldVisitor& v) override;
};

/// Differences between design and staked position on the grid.
class db_GridDeltas final : public RecordOf<db_GridDeltas, DATABASE_GridDeltasRecord>,
                            public db_DeltasNEE {
 public:
  void Fields (FieldVisitor& v) override { db_DeltasNEE::Fields (v); }
};

/// Differences between design and staked position along a line or arc.
class db_LinearDeltas final : public RecordOf<db_LinearDeltas, DATABASE_LinearDeltasRecord> {
 public:
  double dChainage = 0.0;
  double dOffset = 0.0;
  double dElevation = 0.0;
  double GradeToLine = 0.0;  ///< from the staked point to the line

  void Fields (FieldVisitor& v) override;
};

/// The design point that was staked.
class db_PointDesign final : public RecordOf<db_PointDesign, DATABASE_PointDesignRecord> {
 public:
  Str TheName;  ///< of the point
  dbentity_StakeOutMethod StakeMethod = DBENTITY_ToThePoint;
  Str Code;
  double DesignElevation = MATHS_Null;
  bool DesignElevationEdited = false;
  double OriginalDesignElevation = MATHS_Null;  ///< before it was edited

  void Fields (FieldVisitor& v) override;
};

/// The place on a design line, arc or road that was staked.
class db_LinearDesign final : public RecordOf<db_LinearDesign, DATABASE_LinearDesignRecord> {
 public:
  dbentity_StakeOutEntity EntityType = DBENTITY_PointEntity;
  dbentity_StakeOutMethod StakeMethod = DBENTITY_ToThePoint;
  Str TheName;            ///< of the line, arc or road
  double Chainage = 0.0;  ///< the station
  double Offset = 0.0;
  double Elevation = 0.0;
  bool DesignElevationEdited = false;
  double OriginalDesignElevation = MATHS_Null;  ///< before it was edited
  bool StakedFromElementStartPoint = true;
  double ElementLength = MATHS_Null;
  Str Code;

  void Fields (FieldVisitor& v) override;
};

/// The terrain model that was staked.
class db_DTMDesign final : public RecordOf<db_DTMDesign, DATABASE_DTMDesignRecord> {
 public:
  Str TheName;  ///< of the model
  double Elevation = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// The difference to the terrain model.
class db_DTMDeltas final : public RecordOf<db_DTMDeltas, DATABASE_DTMDeltasRecord> {
 public:
  double VDist = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// The difference to a terrain model beside the staked design.
class db_RelativeDTMDeltas final
    : public RecordOf<db_RelativeDTMDeltas, DATABASE_RelativeDTMDeltasRecord> {
 public:
  Str DTMName;
  double VerticalOffset = 0.0;
  double DeltaElevation = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// The side slopes left and right that were staked.
class db_SlopeDesign final : public RecordOf<db_SlopeDesign, DATABASE_SlopeDesignRecord> {
 public:
  db_SlopeElement SlopeL;
  db_SlopeElement SlopeR;

  void Fields (FieldVisitor& v) override;
};

/// The place on a road cross section that was staked.
class db_RoadDesign final : public RecordOf<db_RoadDesign, DATABASE_RoadDesignRecord> {
 public:
  Str Code;
  uint8_t BatterIsFill = 0;
  double BatterGrade = 0.0;  ///< an angle
  bool ApplyConstructionHOffsetOnSlopePrevious = false;
  bool ApplyConstructionHOffsetOnSlopeNext = false;
  bool ApplyConstructionHOffsetOnCalculated = false;
  bool ApplyConstructionHOffsetPerpendicularToSubString = false;
  bool ApplyConstructionVOffsetOnPerpendicular = false;
  double ConstructionHOffset = 0.0;
  double ConstructionVOffset = 0.0;
  double ConstructionStationOffset = 0.0;
  double DitchOffset = 0.0;
  uint32_t ChainageClass = 0;  ///< what makes the station one: bits
  uint8_t NewSideSlopeOffsetSelected = 0;
  double NewSideSlopeOffset = MATHS_Null;
  uint8_t SSFAHingeDefined = 0;
  dbentity_SideSlopeHingeDerv SSFAHingeMethod = DBENTITY_HingeDervOffsetAndElev;
  double SSFAHingeOffset = MATHS_Null;
  double SSFAHingeElevation = MATHS_Null;
  double SSFAHingeSlope = MATHS_Null;
  double SSFAHingeVerticalDistance = MATHS_Null;
  double CrossSlopeDelta = MATHS_Null;
  double CrossSlopeOffset = MATHS_Null;
  double SubgradeDepth = MATHS_Null;
  dbentity_RoadType RoadType = DBENTITY_NorvathRoad;
  bool StakingSubgradeIntersection = false;

  void Fields (FieldVisitor& v) override;
};

/// Differences between a staked side slope and its catch point.
class db_RoadDeltas final : public RecordOf<db_RoadDeltas, DATABASE_RoadDeltasRecord> {
 public:
  double OffsetToCatch = 0.0;
  double OrthometricHeight = 0.0;
  double BatterToCatchHDist = 0.0;
  double BatterToCatchVDist = 0.0;
  double BatterToCatchSDist = 0.0;
  double BatterToCatchConstrSDist = 0.0;
  uint8_t AsStakedBatterIsFill = 0;
  double AsStakedBatterGrade = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// Differences to a second road.
class db_SecondaryRoadDeltas final
    : public RecordOf<db_SecondaryRoadDeltas, DATABASE_SecondaryRoadDeltasRecord> {
 public:
  Str RoadName;
  double HDist = MATHS_Null;
  double VDist = MATHS_Null;
  double DistanceToCL = MATHS_Null;
  double Chainage = MATHS_Null;  ///< the station
  double CrossSlopeDelta = MATHS_Null;
  double CrossSlopeOffset = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

/// A place of the cross section seen from the catch point.
class db_RoadCatchDeltas final
    : public RecordOf<db_RoadCatchDeltas, DATABASE_RoadCatchDeltaRecord> {
 public:
  Str Code;
  double Offset = 0.0;
  double Height = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// A node of a cross section.
class db_CrossSectionNode final
    : public RecordOf<db_CrossSectionNode, DATABASE_CrossSectionNodeRecord> {
 public:
  Str Code;
  double Offset = 0.0;
  double Elevation = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// The side slope of a cross section.
class db_CrossSectionBatter final
    : public RecordOf<db_CrossSectionBatter, DATABASE_CrossSectionBatterRecord> {
 public:
  Str Code;
  double CutGrade = MATHS_Null;
  double FillGrade = MATHS_Null;
  double DitchWidth = 0.0;

  void Fields (FieldVisitor& v) override;
};

/// The node of a cross section on the alignment.
class db_CrossSectionCenterNode final
    : public RecordOf<db_CrossSectionCenterNode, DATABASE_CrossSectionCenterNodeRecord> {
 public:
  Str Code;
  double Station = 0.0;
  double RightAzimuth = 0.0;  ///< azimuth to the right of the alignment
  db_CenterGrid Grid;

  void Fields (FieldVisitor& v) override;
};

/// One side of a cross section: its nodes from the alignment outwards, and its side slope. The
/// nested records are no records of the job: their RecordId stays NODBID.
class db_CrossSectionSide final
    : public RecordOf<db_CrossSectionSide, DATABASE_CrossSectionSideRecord> {
 public:
  std::optional<db_CrossSectionBatter> Batter;
  std::vector<db_CrossSectionNode> Nodes;

  void Fields (FieldVisitor& v) override;
};

/// The cross section of a road at a staked station. The nested records are no records of the job.
class db_CrossSectionReport final
    : public RecordOf<db_CrossSectionReport, DATABASE_CrossSectionReport> {
 public:
  db_CrossSectionCenterNode Center;
  std::optional<db_CrossSectionSide> LeftSide;
  std::optional<db_CrossSectionSide> RightSide;

  void Fields (FieldVisitor& v) override;
};

/// The files to stake from, and the entries of a file that are chosen.
class db_StakeoutList final
    : public RecordOf<db_StakeoutList, DATABASE_StakeoutListRecord, db_FileList> {
 public:
  std::vector<uint32_t> Uniques;

  void Fields (FieldVisitor& v) override;
};

/// A station and offset relative to a line, arc or road.
class db_StationOffset final : public RecordOf<db_StationOffset, DATABASE_StationOffsetRecord> {
 public:
  dbentity_StakeOutEntity EntityType = DBENTITY_PointEntity;
  Str EntityName;
  double Station = 0.0;
  double Offset = 0.0;
  double VDist = 0.0;
  Str Code;

  void Fields (FieldVisitor& v) override;
};

/// The stationing of a line or arc.
class db_Stationing final : public RecordOf<db_Stationing, DATABASE_StationingRecord> {
 public:
  double Start = 0.0;
  double Increment = MATHS_Null;

  void Fields (FieldVisitor& v) override;
};

}  // namespace clxml
