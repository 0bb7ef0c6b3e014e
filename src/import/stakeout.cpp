// Conversions of stakeout: its settings, what was staked and how far off, and road designs.
// Leans on the conversion frame.
#include <optional>

#include "Library/records/dbMeasurements.h"
#include "Library/records/dbStakeout.h"
#include "import/conversion.h"

namespace clxml {

namespace {

void ReadSlope (const FieldReader& in, db_SlopeElement& slope) {
  in.Enum ("Type", slope.Type);
  in.Double ("HDist", slope.HDist);
  in.Double ("VDist", slope.VDist);
  in.Double ("SDist", slope.SDist);
  in.Double ("Grade", slope.Grade);
}

void ReadSectionCenter (const FieldReader& in, db_CrossSectionCenterNode& center) {
  in.String ("Code", center.Code);
  in.Double ("Station", center.Station);
  in.Double ("RightAzimuth", center.RightAzimuth);
  in.NEE ("Grid", center.Grid);
}

void ReadStakeTolerance (const FieldReader& in, db_StakeTolerance& tolerance) {
  in.Double ("HDist", tolerance.HDist);
  in.Double ("VDist", tolerance.VDist);
  in.Double ("HorzAngle", tolerance.HorzAngle);
  in.Double ("VertAngle", tolerance.VertAngle);
  in.Double ("SlopeDistance", tolerance.SlopeDistance);
}

void ReadConfigStakeOut (FieldReader& in, db_StakeOut& stakeOut) {
  in.Enum ("DistanceType", stakeOut.DistanceType);
  in.Enum ("DisplayPointType", stakeOut.DisplayPointType);
  in.Bool ("DisplayElevToDTM", stakeOut.DisplayElevToDTM);
  in.String ("TerrainModel", stakeOut.TerrainModel);
  in.DoubleOr ("VOffsetToDTM", stakeOut.VOffsetToDTM, 0.0);
  in.Enum ("AsStakedName", stakeOut.AsStakedName);
  in.Enum ("AsStakedCode", stakeOut.AsStakedCode);
  in.Enum ("QualityControl", stakeOut.QualityControl);
  in.Double ("Duration", stakeOut.Duration);
  in.IntOrHex ("Measurements", stakeOut.Measurements);
  in.Double ("HorzAcc", stakeOut.HorzAcc);
  in.Double ("VertAcc", stakeOut.VertAcc);
  in.Double ("ZoomFactor", stakeOut.ZoomFactor);
  in.BoolOr ("AutoFineMode", stakeOut.AutoFineMode, false);
  in.Enum ("PointLabels", stakeOut.PointLabels);
  in.Enum ("OrientTo", stakeOut.OrientTo);
  in.Bool ("GridDeltas", stakeOut.GridDeltas);
  in.Enum ("GPSDeltas", stakeOut.GPSDeltas);
  in.Enum ("TSDeltas", stakeOut.TSDeltas);
  in.Double ("TSAngleDeltaTolerance", stakeOut.TSAngleDeltaTolerance);
  in.Double ("TSDistanceDeltaTolerance", stakeOut.TSDistanceDeltaTolerance);
  in.Enum ("MapMode", stakeOut.MapMode);
  in.Enum ("TSViewMode", stakeOut.TSViewMode);
  in.Bool ("DoToleranceCheck", stakeOut.DoToleranceCheck);
  ReadStakeTolerance (in.Group ("Tolerance"), stakeOut.Tolerance);
  in.IntOrHex ("AutoPointIncr", stakeOut.AutoPointIncr);
  in.BoolOr ("AutoSideSlope", stakeOut.AutoSideSlope, true);
  in.EnumOr ("UserPerspective", stakeOut.UserPerspective, DBCONFIG_StakeAutomatic);
  in.String ("PointStakeoutStyleSheet", stakeOut.PointStakeoutStyleSheet);
  in.String ("LineStakeoutStyleSheet", stakeOut.LineStakeoutStyleSheet);
  in.String ("ArcStakeoutStyleSheet", stakeOut.ArcStakeoutStyleSheet);
  in.String ("DTMStakeoutStyleSheet", stakeOut.DTMStakeoutStyleSheet);
  in.String ("RoadStakeoutStyleSheet", stakeOut.RoadStakeoutStyleSheet);
}

void ReadPointDesign (FieldReader& in, db_PointDesign& design) {
  in.String ("TheName", design.TheName);
  in.Enum ("StakeMethod", design.StakeMethod);
  in.Code ("Code", design.Code);
  in.Double ("DesignElevation", design.DesignElevation);
  in.BoolOr ("DesignElevationEdited", design.DesignElevationEdited, false);
  in.Double ("OriginalDesignElevation", design.OriginalDesignElevation);
}

void ReadLinearDesign (FieldReader& in, db_LinearDesign& design) {
  in.Enum ("EntityType", design.EntityType);
  in.Enum ("StakeMethod", design.StakeMethod);
  in.String ("TheName", design.TheName);
  in.Double ("Chainage", design.Chainage);
  in.Double ("Offset", design.Offset);
  in.Double ("Elevation", design.Elevation);
  in.BoolOr ("DesignElevationEdited", design.DesignElevationEdited, false);
  in.Double ("OriginalDesignElevation", design.OriginalDesignElevation);
  in.BoolOr ("StakedFromElementStartPoint", design.StakedFromElementStartPoint, true);
  in.Double ("ElementLength", design.ElementLength);
  in.Code ("Code", design.Code);
}

void ReadDTMDesign (FieldReader& in, db_DTMDesign& design) {
  in.String ("TheName", design.TheName);
  in.Double ("Elevation", design.Elevation);
}

void ReadDTMDeltas (FieldReader& in, db_DTMDeltas& deltas) { in.Double ("VDist", deltas.VDist); }

void ReadRelativeDTMDeltas (FieldReader& in, db_RelativeDTMDeltas& deltas) {
  in.String ("DTMName", deltas.DTMName);
  in.DoubleOr ("VerticalOffset", deltas.VerticalOffset, 0.0);
  in.Double ("DeltaElevation", deltas.DeltaElevation);
}

void ReadSlopeDesign (FieldReader& in, db_SlopeDesign& design) {
  ReadSlope (in.Group ("SlopeL"), design.SlopeL);
  ReadSlope (in.Group ("SlopeR"), design.SlopeR);
}

void ReadRoadDesign (FieldReader& in, db_RoadDesign& design) {
  in.Code ("Code", design.Code);
  in.Bool ("BatterIsFill", design.BatterIsFill);
  in.Double ("BatterGrade", design.BatterGrade);
  in.Double ("ConstructionHOffset", design.ConstructionHOffset);
  in.Double ("ConstructionVOffset", design.ConstructionVOffset);
  in.DoubleOr ("ConstructionStationOffset", design.ConstructionStationOffset, 0.0);
  in.Double ("CrossSlopeDelta", design.CrossSlopeDelta, From (1130));
  in.Double ("CrossSlopeOffset", design.CrossSlopeDelta, Below (1130));
  in.Double ("CrossSlopeOffset", design.CrossSlopeOffset);
  in.Double ("SubgradeDepth", design.SubgradeDepth);
  in.BoolOr ("StakingSubgradeIntersection", design.StakingSubgradeIntersection, false);
  in.Double ("DitchOffset", design.DitchOffset);
  in.Hex ("ChainageClass", design.ChainageClass);
  in.BoolOr ("NewSideSlopeOffsetSelected", design.NewSideSlopeOffsetSelected, false);
  in.Double ("NewSideSlopeOffset", design.NewSideSlopeOffset);
  in.BoolOr ("SSFAHingeDefined", design.SSFAHingeDefined, false);
  in.EnumOr ("SSFAHingeMethod", design.SSFAHingeMethod, DBENTITY_HingeDervOffsetAndElev);
  in.Double ("SSFAHingeOffset", design.SSFAHingeOffset);
  in.Double ("SSFAHingeElevation", design.SSFAHingeElevation);
  in.Double ("SSFAHingeSlope", design.SSFAHingeSlope);
  in.Double ("SSFAHingeVerticalDistance", design.SSFAHingeVerticalDistance);
  in.BoolOr ("ApplyConstructionHOffsetOnSlopePrevious",
             design.ApplyConstructionHOffsetOnSlopePrevious, false, From (1130));
  in.BoolOr ("ApplyConstructionHOffsetOnSlope", design.ApplyConstructionHOffsetOnSlopePrevious,
             false, Between (1120, 1130));
  in.BoolOr ("ApplyConstructionHOffsetOnSlopeNext", design.ApplyConstructionHOffsetOnSlopeNext,
             false, From (1120));
  in.BoolOr ("ApplyConstructionHOffsetOnCalculated", design.ApplyConstructionHOffsetOnCalculated,
             false, From (1120));
  in.BoolOr ("ApplyConstructionHOffsetPerpendicularToSubString",
             design.ApplyConstructionHOffsetPerpendicularToSubString, false, From (1120));
  in.BoolOr ("ApplyConstructionVOffsetOnPerpendicular",
             design.ApplyConstructionVOffsetOnPerpendicular, false, From (1120));
  in.EnumOr ("RoadType", design.RoadType, DBENTITY_NorvathRoad, From (1120));
  if (in.Version () < 1120) {
    // Words where newer files have flags; any other word is the first of each pair.
    design.ApplyConstructionHOffsetOnSlopePrevious =
        in.Text ("StakeToGradeApplied") == "DBENTITY_StakeGradeSlope";
    design.ApplyConstructionHOffsetPerpendicularToSubString =
        in.Text ("HorzOffsetMethod") == "DBENTITY_TangentialToSubstring";
    bool isGenio = false;
    in.True ("GenioStakeout", isGenio);
    design.RoadType = isGenio ? DBENTITY_GenioRoad : DBENTITY_NorvathRoad;
  }
}

void ReadRoadDeltas (FieldReader& in, db_RoadDeltas& deltas) {
  in.Double ("OffsetToCatch", deltas.OffsetToCatch);
  in.Double ("OrthometricHeight", deltas.OrthometricHeight);
  in.Double ("BatterToCatchHDist", deltas.BatterToCatchHDist);
  in.Double ("BatterToCatchVDist", deltas.BatterToCatchVDist);
  in.Double ("BatterToCatchSDist", deltas.BatterToCatchSDist);
  in.Double ("BatterToCatchConstrSDist", deltas.BatterToCatchConstrSDist);
  in.BoolOr ("AsStakedBatterIsFill", deltas.AsStakedBatterIsFill, false);
  in.Double ("AsStakedBatterGrade", deltas.AsStakedBatterGrade);
}

void ReadSecondaryRoadDeltas (FieldReader& in, db_SecondaryRoadDeltas& deltas) {
  in.String ("RoadName", deltas.RoadName);
  in.Double ("HDist", deltas.HDist);
  in.Double ("VDist", deltas.VDist);
  in.Double ("DistanceToCL", deltas.DistanceToCL, From (1120));
  in.Double ("Offset", deltas.DistanceToCL, Below (1120));
  in.Double ("Chainage", deltas.Chainage);
  in.Double ("CrossSlopeDelta", deltas.CrossSlopeDelta, From (1130));
  in.Double ("CrossSlopeOffset", deltas.CrossSlopeDelta, Below (1130));
  in.Double ("CrossSlopeOffset", deltas.CrossSlopeOffset);
}

void ReadRoadCatchDelta (FieldReader& in, db_RoadCatchDeltas& deltas) {
  in.Code ("Code", deltas.Code);
  in.Double ("Offset", deltas.Offset);
  in.Double ("Height", deltas.Height);
}

// A side of the section, absent without its tag. Nodes are the first "Node" and its next siblings,
// up to the count, or as many as there are. Nothing is allocated by the count.
void ReadSectionSide (const FieldReader& in, std::optional<db_CrossSectionSide>& side) {
  if (!in.IsPresent ()) return;
  side.emplace ();
  constexpr int32_t MaxNodes = 1'000'000;
  int32_t count = 0;
  in.IntOrHex ("NumberOfNodes", count);
  if (count < 0 || count > MaxNodes)
    throw InvalidField ("number of nodes", "NumberOfNodes", in.Text ("NumberOfNodes"));
  const xml_element* node = in.Child ("Node");
  for (int32_t i = 0; i < count && node; i++, node = node->nextSibling) {
    const FieldReader of (node, in.Version ());
    db_CrossSectionNode& read = side->Nodes.emplace_back ();
    of.Code ("Code", read.Code);
    of.Double ("Offset", read.Offset);
    of.Double ("Elevation", read.Elevation);
  }
  const FieldReader batter = in.Group ("Batter");
  if (!batter.IsPresent ()) return;
  side->Batter.emplace ();
  batter.Code ("Code", side->Batter->Code);
  batter.Double ("CutGrade", side->Batter->CutGrade);
  batter.Double ("FillGrade", side->Batter->FillGrade);
  batter.Double ("DitchWidth", side->Batter->DitchWidth);
}

void ReadCrossSectionReport (FieldReader& in, db_CrossSectionReport& report) {
  ReadSectionCenter (in.Group ("Center"), report.Center);
  ReadSectionSide (in.Group ("LeftSide"), report.LeftSide);
  ReadSectionSide (in.Group ("RightSide"), report.RightSide);
}

void ReadGridDeltas (FieldReader& in, db_GridDeltas& deltas) {
  in.DeltasNEE ("GridDeltas", deltas);
}

void ReadLinearDeltas (FieldReader& in, db_LinearDeltas& deltas) {
  in.Double ("dChainage", deltas.dChainage);
  in.Double ("dOffset", deltas.dOffset);
  in.Double ("dElevation", deltas.dElevation);
  in.Double ("GradeToLine", deltas.GradeToLine);
}

void ReadPolarDeltas (FieldReader& in, db_PolarDeltas& deltas) { in.Polar ("Polar", deltas); }

void ReadStationOffset (FieldReader& in, db_StationOffset& stationOffset) {
  in.Enum ("EntityType", stationOffset.EntityType);
  in.String ("EntityName", stationOffset.EntityName);
  in.Double ("Station", stationOffset.Station);
  in.Double ("Offset", stationOffset.Offset);
  in.Double ("VDist", stationOffset.VDist);
  in.Code ("Code", stationOffset.Code);
}

void ReadRoadAvailableStations (FieldReader& in, db_RoadAvailableStations& stations) {
  in.Bool ("RegularSections", stations.RegularSections);
  in.Bool ("HorizCurve", stations.HorizCurve);
  in.Bool ("VerticalCurve", stations.VerticalCurve);
  in.Bool ("TemplateAssignment", stations.TemplateAssignment);
  in.Bool ("SuperWiden", stations.SuperWiden);
}

void ReadRoadConstructionOffsets (FieldReader& in, db_RoadConstructionOffsets& offsets) {
  in.Double ("norvathSAOHorizontal", offsets.norvathSAOHorizontal);
  in.Double ("norvathSAOVertical", offsets.norvathSAOVertical);
  in.BoolOr ("norvathSAOApplyOnSlopeNext", offsets.norvathSAOApplyOnSlopeNext, false, From (1130));
  in.BoolOr ("norvathSAOApplyOnSlopePrevious", offsets.norvathSAOApplyOnSlopePrevious, false,
             From (1130));
  in.BoolOr ("norvathSSFAApplyOnSlopeNext", offsets.norvathSSFAApplyOnSlopeNext, false,
             From (1130));
  in.BoolOr ("norvathSSFAApplyOnSlopePrevious", offsets.norvathSSFAApplyOnSlopePrevious, false,
             From (1130));
  in.BoolOr ("norvathNROApplyOnSlopeNext", offsets.norvathNROApplyOnSlopeNext, false, From (1130));
  in.BoolOr ("norvathNROApplyOnSlopePrevious", offsets.norvathNROApplyOnSlopePrevious, false,
             From (1130));
  in.BoolOr ("norvathNROApplyCalculatedOffset", offsets.norvathNROApplyCalculatedOffset, false,
             From (1130));
  in.BoolOr ("stringSOSApplyOnSlopeNext", offsets.stringSOSApplyOnSlopeNext, false, From (1130));
  in.BoolOr ("stringSOSApplyOnSlopePrevious", offsets.stringSOSApplyOnSlopePrevious, false,
             From (1130));
  in.BoolOr ("landxmlSAOApplyOnSlopeNext", offsets.landxmlSAOApplyOnSlopeNext, false, From (1130));
  in.BoolOr ("landxmlSAOApplyOnSlopePrevious", offsets.landxmlSAOApplyOnSlopePrevious, false,
             From (1130));
  in.BoolOr ("stringNROApplyOnSlopeNext", offsets.stringNROApplyOnSlopeNext, false, From (1130));
  in.BoolOr ("stringNROApplyOnSlopePrevious", offsets.stringNROApplyOnSlopePrevious, false,
             From (1130));
  in.BoolOr ("norvathSAOApplyOnSlope", offsets.norvathSAOApplyOnSlopePrevious, false, Below (1130));
  in.BoolOr ("norvathSSFAApplyOnSlope", offsets.norvathSSFAApplyOnSlopePrevious, false,
             Below (1130));
  in.BoolOr ("norvathNROApplyOnSlope", offsets.norvathNROApplyOnSlopePrevious, false, Below (1130));
  in.BoolOr ("stringSOSApplyOnSlope", offsets.stringSOSApplyOnSlopePrevious, false, Below (1130));
  in.BoolOr ("stringNROApplyOnSlope", offsets.stringNROApplyOnSlopePrevious, false, Below (1130));
  in.BoolOr ("landxmlSAOApplyOnSlope", offsets.landxmlSAOApplyOnSlopePrevious, false, Below (1130));
  in.BoolOr ("norvathSAOApplyVertOnPerpendicular", offsets.norvathSAOApplyVertOnPerpendicular,
             false);
  in.DoubleOr ("norvathPORVertical", offsets.norvathPORVertical, 0.0);
  in.BoolOr ("norvathPORApplyVertOnPerpendicular", offsets.norvathPORApplyVertOnPerpendicular,
             false);
  in.DoubleOr ("norvathSSFAHorizontal", offsets.norvathSSFAHorizontal, 0.0);
  in.DoubleOr ("norvathSSFAVertical", offsets.norvathSSFAVertical, 0.0);
  in.BoolOr ("norvathSSFAApplyVertOnPerpendicular", offsets.norvathSSFAApplyVertOnPerpendicular,
             false);
  in.DoubleOr ("norvathNROHorizontal", offsets.norvathNROHorizontal, 0.0);
  in.DoubleOr ("norvathNROVertical", offsets.norvathNROVertical, 0.0);
  in.BoolOr ("norvathNROApplyVertOnPerpendicular", offsets.norvathNROApplyVertOnPerpendicular,
             false);
  in.DoubleOr ("stringSOSHorizontal", offsets.stringSOSHorizontal, 0.0);
  in.DoubleOr ("stringSOSVertical", offsets.stringSOSVertical, 0.0);
  in.DoubleOr ("stringSOSStation", offsets.stringSOSStation, 0.0);
  in.BoolOr ("stringSOSApplyVertOnPerpendicular", offsets.stringSOSApplyVertOnPerpendicular, false);
  in.BoolOr ("stringSOSApplyPerpendicularToSubString",
             offsets.stringSOSApplyPerpendicularToSubString, false);
  in.DoubleOr ("stringPORVertical", offsets.stringPORVertical, 0.0);
  in.BoolOr ("stringPORApplyVertOnPerpendicular", offsets.stringPORApplyVertOnPerpendicular, false);
  in.DoubleOr ("stringNROHorizontal", offsets.stringNROHorizontal, 0.0);
  in.DoubleOr ("stringNROVertical", offsets.stringNROVertical, 0.0);
  in.BoolOr ("stringNROApplyVertOnPerpendicular", offsets.stringNROApplyVertOnPerpendicular, false);
  in.BoolOr ("stringSOSApplyOffsetAtString", offsets.stringSOSApplyOffsetAtString, false);
  in.DoubleOr ("landxmlSAOHorizontal", offsets.landxmlSAOHorizontal, 0.0);
  in.DoubleOr ("landxmlSAOVertical", offsets.landxmlSAOVertical, 0.0);
  in.BoolOr ("landxmlSAOApplyVertOnPerpendicular", offsets.landxmlSAOApplyVertOnPerpendicular,
             false);
}

// The element came with version 1120; what an older file calls so is left alone, whatever it holds.
void ConvertRoadConstructionOffsets (WriteJobControl& job, const xml_element& element,
                                     const char* rec) {
  if (job.Version () >= 1120) Convert<ReadRoadConstructionOffsets> (job, element, rec);
}

constexpr Conversion conversions[] = {
    {"DATABASE_ConfigStakeOutRecord", "db_StakeOut", Convert<ReadConfigStakeOut>},
    {"DATABASE_PointDesignRecord", "db_PointDesign", Convert<ReadPointDesign>},
    {"DATABASE_LinearDesignRecord", "db_LinearDesign", Convert<ReadLinearDesign>},
    {"DATABASE_DTMDesignRecord", "db_DTMDesign", Convert<ReadDTMDesign>},
    {"DATABASE_DTMDeltasRecord", "db_DTMDeltas", Convert<ReadDTMDeltas>},
    {"DATABASE_RelativeDTMDeltasRecord", "db_RelativeDTMDeltas", Convert<ReadRelativeDTMDeltas>},
    {"DATABASE_SlopeDesignRecord", "db_SlopeDesign", Convert<ReadSlopeDesign>},
    {"DATABASE_RoadDesignRecord", "db_RoadDesign", Convert<ReadRoadDesign>},
    {"DATABASE_RoadDeltasRecord", "db_RoadDeltas", Convert<ReadRoadDeltas>},
    {"DATABASE_SecondaryRoadDeltasRecord", "db_SecondaryRoadDeltas",
     Convert<ReadSecondaryRoadDeltas>},
    {"DATABASE_RoadCatchDeltaRecord", "db_RoadCatchDeltas", Convert<ReadRoadCatchDelta>},
    {"DATABASE_CrossSectionReport", "db_CrossSectionReport", Convert<ReadCrossSectionReport>},
    {"DATABASE_GridDeltasRecord", "db_GridDeltas", Convert<ReadGridDeltas>},
    {"DATABASE_LinearDeltasRecord", "db_LinearDeltas", Convert<ReadLinearDeltas>},
    {"DATABASE_PolarDeltasRecord", "db_PolarDeltas", Convert<ReadPolarDeltas>},
    {"DATABASE_StationOffsetRecord", "db_StationOffset", Convert<ReadStationOffset>},
    {"DATABASE_RoadAvailableStations", "db_RoadAvailableStations",
     Convert<ReadRoadAvailableStations>},
    {"DATABASE_RoadConstructionOffsets", "db_RoadConstructionOffsets",
     ConvertRoadConstructionOffsets},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> StakeoutConversions () noexcept { return conversions; }

}  // namespace clxml
