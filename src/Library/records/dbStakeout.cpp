// The fields of the records of stakeout and road design.
// The order of a list is the order of the fields in a job file. Leans on dbStakeout.h.
#include "Library/records/dbStakeout.h"

namespace clxml {

namespace {

// The smallest body of a record: type, id, time and an empty note.
constexpr int LeastBody = 15;

// The body of a record that is there when the flag, visited before, says so.
template <class T>
void VisitNested (FieldVisitor& v, const char* name, bool isThere, std::optional<T>& record) {
  if (v.IsReading ()) record.reset ();
  if (!isThere) return;
  if (v.IsReading ()) record.emplace ();
  v.Nested (name, *record);
}

}  // namespace

void db_StakeTolerance::Fields (FieldVisitor& v) {
  FIELD (HDist);
  FIELD (VDist);
  FIELD (HorzAngle);
  FIELD (VertAngle);
  FIELD (SlopeDistance);
}

void db_SlopeElement::Fields (FieldVisitor& v) {
  FIELD (Type);
  FIELD (HDist);
  FIELD (VDist);
  FIELD (SDist);
  FIELD (Grade);
}

void db_CenterGrid::Fields (FieldVisitor& v) {
  FIELD (East);
  FIELD (North);
  FIELD (Elev);
}

void db_StakeOut::Fields (FieldVisitor& v) {
  FIELD (DistanceType);
  FIELD (DisplayPointType);
  FIELD (DisplayElevToDTM);
  FIELD (TerrainModel);
  FIELD (VOffsetToDTM);
  FIELD (AsStakedName);
  FIELD (AsStakedCode);
  FIELD (QualityControl);
  FIELD (Duration);
  FIELD (Measurements);
  FIELD (HorzAcc);
  FIELD (VertAcc);
  FIELD (ZoomFactor);
  FIELD (AutoFineMode);
  FIELD (PointLabels);
  FIELD (OrientTo);
  FIELD (GridDeltas);
  FIELD (GPSDeltas);
  FIELD (TSDeltas);
  FIELD (TSAngleDeltaTolerance);
  FIELD (TSDistanceDeltaTolerance);
  FIELD (MapMode);
  FIELD (TSViewMode);
  FIELD (DoToleranceCheck);
  FIELD (Tolerance);
  FIELD (AutoPointIncr);
  FIELD (AutoSideSlope);
  FIELD (UserPerspective);
  FIELD (PointStakeoutStyleSheet);
  FIELD (LineStakeoutStyleSheet);
  FIELD (ArcStakeoutStyleSheet);
  FIELD (DTMStakeoutStyleSheet);
  FIELD (RoadStakeoutStyleSheet);
}

void db_RoadAvailableStations::Fields (FieldVisitor& v) {
  FIELD (RegularSections);
  FIELD (HorizCurve);
  FIELD (VerticalCurve);
  FIELD (TemplateAssignment);
  FIELD (SuperWiden);
}

void db_RoadConstructionOffsets::Fields (FieldVisitor& v) {
  FIELD (norvathSAOHorizontal);
  FIELD (norvathSAOVertical);
  FIELD (norvathPORVertical);
  FIELD (norvathSSFAHorizontal);
  FIELD (norvathSSFAVertical);
  FIELD (norvathNROHorizontal);
  FIELD (norvathNROVertical);
  FIELD (norvathSAOApplyOnSlopeNext);
  FIELD (norvathSSFAApplyOnSlopeNext);
  FIELD (norvathNROApplyOnSlopeNext);
  FIELD (norvathSAOApplyOnSlopePrevious);
  FIELD (norvathSSFAApplyOnSlopePrevious);
  FIELD (norvathNROApplyOnSlopePrevious);
  FIELD (norvathSAOApplyVertOnPerpendicular);
  FIELD (norvathPORApplyVertOnPerpendicular);
  FIELD (norvathSSFAApplyVertOnPerpendicular);
  FIELD (norvathNROApplyVertOnPerpendicular);
  FIELD (norvathNROApplyCalculatedOffset);
  FIELD (stringSOSHorizontal);
  FIELD (stringSOSVertical);
  FIELD (stringSOSStation);
  FIELD (stringPORVertical);
  FIELD (stringNROHorizontal);
  FIELD (stringNROVertical);
  FIELD (stringSOSApplyOnSlopeNext);
  FIELD (stringSOSApplyOnSlopePrevious);
  FIELD (stringSOSApplyPerpendicularToSubString);
  FIELD (stringNROApplyOnSlopeNext);
  FIELD (stringNROApplyOnSlopePrevious);
  FIELD (stringSOSApplyVertOnPerpendicular);
  FIELD (stringPORApplyVertOnPerpendicular);
  FIELD (stringNROApplyVertOnPerpendicular);
  FIELD (stringSOSApplyOffsetAtString);
  FIELD (landxmlSAOHorizontal);
  FIELD (landxmlSAOVertical);
  FIELD (landxmlSAOApplyOnSlopeNext);
  FIELD (landxmlSAOApplyOnSlopePrevious);
  FIELD (landxmlSAOApplyVertOnPerpendicular);
}

void db_LinearDeltas::Fields (FieldVisitor& v) {
  FIELD (dChainage);
  FIELD (dOffset);
  FIELD (dElevation);
  FIELD (GradeToLine);
}

void db_PointDesign::Fields (FieldVisitor& v) {
  FIELD (TheName);
  FIELD (StakeMethod);
  FIELD (Code);
  FIELD (DesignElevation);
  FIELD (DesignElevationEdited);
  FIELD (OriginalDesignElevation);
}

void db_LinearDesign::Fields (FieldVisitor& v) {
  FIELD (EntityType);
  FIELD (StakeMethod);
  FIELD (TheName);
  FIELD (Chainage);
  FIELD (Offset);
  FIELD (Elevation);
  FIELD (DesignElevationEdited);
  FIELD (OriginalDesignElevation);
  FIELD (StakedFromElementStartPoint);
  FIELD (ElementLength);
  FIELD (Code);
}

void db_DTMDesign::Fields (FieldVisitor& v) {
  FIELD (TheName);
  FIELD (Elevation);
}

void db_DTMDeltas::Fields (FieldVisitor& v) { FIELD (VDist); }

void db_RelativeDTMDeltas::Fields (FieldVisitor& v) {
  FIELD (DTMName);
  FIELD (VerticalOffset);
  FIELD (DeltaElevation);
}

void db_SlopeDesign::Fields (FieldVisitor& v) {
  FIELD (SlopeL);
  FIELD (SlopeR);
}

void db_RoadDesign::Fields (FieldVisitor& v) {
  FIELD (Code);
  FIELD (BatterIsFill);
  FIELD (BatterGrade);
  FIELD (ApplyConstructionHOffsetOnSlopePrevious);
  FIELD (ApplyConstructionHOffsetOnSlopeNext);
  FIELD (ApplyConstructionHOffsetOnCalculated);
  FIELD (ApplyConstructionHOffsetPerpendicularToSubString);
  FIELD (ApplyConstructionVOffsetOnPerpendicular);
  FIELD (ConstructionHOffset);
  FIELD (ConstructionVOffset);
  FIELD (ConstructionStationOffset);
  FIELD (DitchOffset);
  FIELD (ChainageClass);
  FIELD (NewSideSlopeOffsetSelected);
  FIELD (NewSideSlopeOffset);
  FIELD (SSFAHingeDefined);
  FIELD (SSFAHingeMethod);
  FIELD (SSFAHingeOffset);
  FIELD (SSFAHingeElevation);
  FIELD (SSFAHingeSlope);
  FIELD (SSFAHingeVerticalDistance);
  FIELD (CrossSlopeDelta);
  FIELD (CrossSlopeOffset);
  FIELD (SubgradeDepth);
  FIELD (RoadType);
  FIELD (StakingSubgradeIntersection);
}

void db_RoadDeltas::Fields (FieldVisitor& v) {
  FIELD (OffsetToCatch);
  FIELD (OrthometricHeight);
  FIELD (BatterToCatchHDist);
  FIELD (BatterToCatchVDist);
  FIELD (BatterToCatchSDist);
  FIELD (BatterToCatchConstrSDist);
  FIELD (AsStakedBatterIsFill);
  FIELD (AsStakedBatterGrade);
}

void db_SecondaryRoadDeltas::Fields (FieldVisitor& v) {
  FIELD (RoadName);
  FIELD (HDist);
  FIELD (VDist);
  FIELD (DistanceToCL);
  FIELD (Chainage);
  FIELD (CrossSlopeDelta);
  FIELD (CrossSlopeOffset);
}

void db_RoadCatchDeltas::Fields (FieldVisitor& v) {
  FIELD (Code);
  FIELD (Offset);
  FIELD (Height);
}

void db_CrossSectionNode::Fields (FieldVisitor& v) {
  FIELD (Code);
  FIELD (Offset);
  FIELD (Elevation);
}

void db_CrossSectionBatter::Fields (FieldVisitor& v) {
  FIELD (Code);
  FIELD (CutGrade);
  FIELD (FillGrade);
  FIELD (DitchWidth);
}

void db_CrossSectionCenterNode::Fields (FieldVisitor& v) {
  FIELD (Code);
  FIELD (Station);
  FIELD (RightAzimuth);
  FIELD (Grid);
}

void db_CrossSectionSide::Fields (FieldVisitor& v) {
  bool HasBatter = Batter.has_value ();
  FIELD (HasBatter);
  int32_t NumberOfNodes = static_cast<int32_t> (Nodes.size ());
  FIELD (NumberOfNodes);
  VisitNested (v, "Batter", HasBatter, Batter);
  // A negative number counts as one that no body has room for.
  const uint32_t count = v.BeginList ("Nodes", static_cast<uint32_t> (NumberOfNodes),
                                      FieldVisitor::CountForm::Before, LeastBody);
  if (v.IsReading ()) Nodes.clear ();
  for (uint32_t i = 0; i < count && v.IsGood (); i++) {
    if (v.IsReading ()) Nodes.emplace_back ();
    v.BeginItem ();
    v.Nested ("Node", Nodes[i]);
    v.EndItem ();
  }
  v.EndList ();
}

void db_CrossSectionReport::Fields (FieldVisitor& v) {
  bool HasLeftSide = LeftSide.has_value ();
  FIELD (HasLeftSide);
  bool HasRightSide = RightSide.has_value ();
  FIELD (HasRightSide);
  v.Nested ("Center", Center);
  VisitNested (v, "LeftSide", HasLeftSide, LeftSide);
  VisitNested (v, "RightSide", HasRightSide, RightSide);
}

void db_StakeoutList::Fields (FieldVisitor& v) {
  v.Slots ("Filenames", Filenames);
  const uint32_t count = v.BeginList ("Uniques", static_cast<uint32_t> (Uniques.size ()),
                                      FieldVisitor::CountForm::U32, sizeof (uint32_t));
  if (v.IsReading ()) Uniques.clear ();
  for (uint32_t i = 0; i < count && v.IsGood (); i++) {
    if (v.IsReading ()) Uniques.emplace_back ();
    v.BeginItem ();
    v.U32 ("Unique", Uniques[i]);
    v.EndItem ();
  }
  v.EndList ();
}

void db_StationOffset::Fields (FieldVisitor& v) {
  FIELD (EntityType);
  FIELD (EntityName);
  FIELD (Station);
  FIELD (Offset);
  FIELD (VDist);
  FIELD (Code);
}

void db_Stationing::Fields (FieldVisitor& v) {
  FIELD (Start);
  FIELD (Increment);
}

}  // namespace clxml
