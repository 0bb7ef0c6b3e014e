// Conversions of the job's geometry and of what was computed from it.
// Points, lines and arcs, which open an entity; keyed-in points, inverses, areas, traverses and
// transformations. Leans on the conversion frame.
#include "Library/records/dbPoints.h"

#include "Library/records/dbCoordSystems.h"
#include "Library/records/dbStakeout.h"
#include "import/conversion.h"

namespace clxml {

namespace {

constexpr int MaxAreaPoints = 65535;    // its list has a 16-bit count
constexpr int MaxTraverseLegs = 32767;  // a signed one

// The older form: one word for the class of a point and its deleted mark.
void ReadLegacyClassification (const FieldReader& in, int32_t& number, uint8_t& deleted) {
  load_legacy_dbentity_Classification legacy{};
  in.Enum ("Classification", legacy);
  number = legacy;
  deleted = in.Text ("Classification").starts_with ("DBENTITY_Deleted");
}

void ReadClassification (const FieldReader& in, db_Observation& point) {
  if (in.Text ("Deleted").empty ()) {
    ReadLegacyClassification (in, point.Classification.value, point.Deleted);
    return;
  }
  const std::string_view name = in.Text ("Classification");
  if (name.empty () || !point.Classification.FromText (name))
    throw InvalidField ("dbentity_Classification", "Classification", name);
  in.Bool ("Deleted", point.Deleted);
}

void ReadPoint (FieldReader& in, db_Observation& point) {
  in.String ("PointName", point.PointName);
  in.DerivationCode ("Derivation", point.Derivation);
  in.Enum ("Method", point.Method);
  in.Enum ("SurveyMethod", point.SurveyMethod);
  ReadClassification (in, point);
}

void ReadObservation (FieldReader& in, db_Observation& observation) {
  ReadPoint (in, observation);
  in.Descriptions (observation.Description1, observation.Description2);
}

void ReadLine (FieldReader& in, db_Line& line) {
  in.String ("LineId", line.LineId);
  in.DerivationCode ("Derivation", line.Derivation);
  in.Enum ("Method", line.Method);
  ReadDeleted (in, line.Deleted);
  in.String ("OriginPoint", line.OriginPoint);
  in.String ("TargetPoint", line.TargetPoint);
  in.Double ("BearingLength", line.BearingLength, From (1100));
  in.Double ("BearingAzimuth", line.BearingAzimuth, From (1100));
  in.Double ("BearingGrade", line.BearingGrade, From (1100));
  in.Double ("Length", line.BearingLength, Below (1100));
  in.Double ("Azimuth", line.BearingAzimuth, Below (1100));
  in.Double ("Grade", line.BearingGrade, Below (1100));
  in.Descriptions (line.Description1, line.Description2);
}

void ReadArc (FieldReader& in, db_Arc& arc) {
  in.String ("ArcName", arc.ArcName);
  in.DerivationCode ("Derivation", arc.Derivation);
  in.Enum ("Method", arc.Method);
  in.String ("StartPoint", arc.StartPoint);
  in.String ("EndPoint", arc.EndPoint);
  in.String ("CenterPoint", arc.CenterPoint);
  in.Enum ("Direction", arc.Direction);
  in.Double ("Radius", arc.Radius);
  in.Double ("TangentAtStart", arc.TangentAtStart);
  in.Double ("BackwardTangent", arc.BackwardTangent);
  in.Double ("Length", arc.Length);
  in.Double ("ScribedAngle", arc.ScribedAngle);
  in.Double ("Chord", arc.Chord);
  in.Double ("Tangent", arc.Tangent);
  in.Double ("Grade", arc.Grade);
  ReadDeleted (in, arc.Deleted);
  in.Descriptions (arc.Description1, arc.Description2);
}

void ReadInverse (FieldReader& in, db_Inverse& inverse) {
  if (in.Version () < 1100) return;  // the older form says nothing that has a field
  in.String ("TargetPoint", inverse.TargetPoint);
  const FieldReader result = in.Group ("Result");
  result.String ("SourcePoint", inverse.Result.SourcePoint);
  result.Flags ("CreatedView", inverse.Result.CreatedView);
  result.Polar ("Polar", inverse.Result);
  in.Double ("SlopeDistance", inverse.SlopeDistance);
  in.Double ("Grade", inverse.Grade);
}

// Older inverses that are computed azimuths; which tags count depends on the method.
void ReadOldAzimuth (FieldReader& in, db_ComputeAzimuth& computed) {
  in.Enum ("AzimuthMethod", computed.AzimuthMethod);
  const FieldReader result = in.Group ("Result");
  if (result.IsPresent ()) result.Flags ("CreatedView", computed.CreatedView);
  in.Double ("ComputedAzimuth", computed.ComputedAzimuth);
  switch (computed.AzimuthMethod) {
    case DBENTITY_TwoPointAzimuth:
      in.String ("Entity1", computed.Point1);
      in.String ("Entity2", computed.Point2);
      break;
    case DBENTITY_BisectedAzimuths:
      in.Double ("Azimuth1", computed.Azimuth1);
      in.Double ("Azimuth2", computed.Azimuth2);
      break;
    case DBENTITY_BisectedCorner:
      in.String ("Entity1", computed.Point1);
      in.String ("Entity2", computed.CornerPoint);
      in.String ("Entity3", computed.Point2);
      break;
    case DBENTITY_AzimuthAndTurnedAngle:
      in.Double ("Azimuth1", computed.Azimuth1);
      in.Double ("Azimuth2", computed.TurnedAngle);
      break;
    case DBENTITY_AzimuthToLineOffset:
      in.String ("Entity1", computed.ReferenceLinearEntity);
      in.Double ("Distance1", computed.Stationing);
      in.Double ("Distance2", computed.Offset);
      break;
  }
}

void ReadOldDistance (FieldReader& in, db_ComputeDistance& computed) {
  in.Enum ("DistanceMethod", computed.DistanceMethod);
  const FieldReader result = in.Group ("Result");
  if (result.IsPresent ()) result.Flags ("CreatedView", computed.CreatedView);
  in.Double ("ComputedDistance", computed.ComputedDistance);
  in.String ("Entity1", computed.Point1);
  in.String ("Entity2", computed.DistanceMethod == DBENTITY_TwoPointDistance
                            ? computed.Point2
                            : computed.ReferenceLinearEntity);
}

void ConvertInverse (WriteJobControl& job, const xml_element& element, const char* rec) {
  const std::string_view type =
      job.Version () < 1100 ? element.ChildValue ("InverseType") : std::string_view ();
  if (type == "DBENTITY_CogoComputeAzimuth") {
    Convert<ReadOldAzimuth> (job, element, rec);
  } else if (type == "DBENTITY_CogoComputeDistance") {
    Convert<ReadOldDistance> (job, element, rec);
  } else {
    Convert<ReadInverse> (job, element, rec);
  }
}

void ReadComputeAzimuth (FieldReader& in, db_ComputeAzimuth& computed) {
  in.Enum ("AzimuthMethod", computed.AzimuthMethod);
  in.String ("Point1", computed.Point1);
  in.String ("Point2", computed.Point2);
  in.String ("CornerPoint", computed.CornerPoint);
  in.Double ("Azimuth1", computed.Azimuth1);
  in.Double ("Azimuth2", computed.Azimuth2);
  in.Double ("TurnedAngle", computed.TurnedAngle);
  in.String ("ReferenceLinearEntity", computed.ReferenceLinearEntity);
  in.BoolOr ("ReferenceLineDefinedByTwoPoints", computed.ReferenceLineDefinedByTwoPoints, false);
  in.String ("ReferenceLinePoint1Name", computed.ReferenceLinePoint1Name);
  in.String ("ReferenceLinePoint2Name", computed.ReferenceLinePoint2Name);
  in.Double ("Stationing", computed.Stationing);
  in.Double ("Offset", computed.Offset);
  in.Double ("ComputedAzimuth", computed.ComputedAzimuth);
  in.Flags ("CreatedView", computed.CreatedView);
}

void ReadComputeDistance (FieldReader& in, db_ComputeDistance& computed) {
  in.Enum ("DistanceMethod", computed.DistanceMethod);
  in.String ("Point1", computed.Point1);
  in.String ("Point2", computed.Point2);
  in.String ("ReferenceLinearEntity", computed.ReferenceLinearEntity);
  in.BoolOr ("ReferenceLineDefinedByTwoPoints", computed.ReferenceLineDefinedByTwoPoints, false);
  in.String ("ReferenceLinePoint1Name", computed.ReferenceLinePoint1Name);
  in.String ("ReferenceLinePoint2Name", computed.ReferenceLinePoint2Name);
  in.Double ("DistanceAlong", computed.DistanceAlong);
  in.Double ("ComputedDistance", computed.ComputedDistance);
  in.Flags ("CreatedView", computed.CreatedView);
}

void ReadPointKeyin (FieldReader& in, db_PointKeyin& keyin) {
  in.EnumOr ("Method", keyin.Method, DBENTITY_Unknown);
  in.String ("PointOne", keyin.PointOne);
  in.String ("PointTwo", keyin.PointTwo);
  in.String ("PointThree", keyin.PointThree);
  in.String ("PointFour", keyin.PointFour);
  in.Double ("AzimuthOne", keyin.AzimuthOne);
  in.Double ("DistanceOne", keyin.DistanceOne);
  in.Double ("AzimuthTwo", keyin.AzimuthTwo);
  in.Double ("DistanceTwo", keyin.DistanceTwo);
  in.Double ("TurnedAngle", keyin.TurnedAngle);
  in.Double ("VOffset", keyin.VOffset);
  in.EnumOr ("BearingDistanceAzimuthType", keyin.BearingDistanceAzimuthType, DBENTITY_OriginGrid);
  in.Flags ("CreatedView", keyin.CreatedView);
  in.EnumOr ("DirectionAlongLine", keyin.DirectionAlongLine, DBENTITY_InFromStart);
  in.RawObservation ("VerticalPlaneIntersectionRay", keyin.VerticalPlaneIntersectionRay);
}

// The number of points is what the list holds, whatever the element says.
void ReadArea (FieldReader& in, db_Area& area) {
  in.IntOrHex ("NumberOfPoints", area.NumberOfPoints);
  in.Flags ("Method", area.Method);
  in.Double ("Area", area.Area);
  in.Double ("Perimeter", area.Perimeter);
  in.Items ("ListOfPoints", area.ListOfPoints);
  if (area.ListOfPoints.Count () > MaxAreaPoints) throw Str ("an area takes at most 65535 points");
  area.NumberOfPoints = static_cast<uint16_t> (area.ListOfPoints.Count ());
}

void ReadStationing (FieldReader& in, db_Stationing& stationing) {
  in.Double ("Start", stationing.Start);
  in.Double ("Increment", stationing.Increment);
}

void ReadTraverse (FieldReader& in, db_Traverse& traverse) {
  in.String ("TraverseName", traverse.TraverseName);
  in.DerivationCode ("Derivation", traverse.Derivation);
  ReadDeleted (in, traverse.Deleted);
  in.String ("BSPoint", traverse.BSPoint);
  in.Double ("BSAzimuth", traverse.BSAzimuth);
  in.Bool ("BSAzimuthKeyedIn", traverse.BSAzimuthKeyedIn);
  in.String ("FSPoint", traverse.FSPoint);
  in.Double ("FSAzimuth", traverse.FSAzimuth);
  in.Bool ("FSAzimuthKeyedIn", traverse.FSAzimuthKeyedIn);
  // An empty name ends the stored list, so that there can be none inside it.
  StrArray stations;
  in.Items ("ListOfStations", stations);
  for (int i = 0; i < stations.Count (); i++)
    if (!stations[i].IsEmpty ()) traverse.ListOfStations.Add (stations[i]);
}

void ReadTraverseLegs (const FieldReader& in, std::vector<db_TraverseLeg>& legs) {
  for (const xml_element* child = in.Child ("Leg"); child && child->name == "Leg";
       child = child->nextSibling) {
    if (legs.size () == MaxTraverseLegs) throw Str ("a traverse takes at most 32767 legs");
    const FieldReader leg (child, in.Version ());
    db_TraverseLeg& stored = legs.emplace_back ();
    leg.String ("FromPt", stored.FromPt);
    leg.String ("ToPt", stored.ToPt);
    leg.Polar ("Polar", stored.Polar);
  }
}

void ReadTraverseClosure (FieldReader& in, db_TraverseClosure& closure) {
  in.Hex ("TraversePtr", closure.TraversePtr);
  in.Double ("AzimuthMisclose", closure.AzimuthMisclose);
  in.Double ("DistanceMisclose", closure.DistanceMisclose);
  in.Double ("TraverseLength", closure.TraverseLength);
  in.Double ("Precision", closure.Precision);
  in.Double ("DeltaNorth", closure.DeltaNorth);
  in.Double ("DeltaEast", closure.DeltaEast);
  in.Double ("DeltaElev", closure.DeltaElev);
  in.Enum ("Results", closure.Results);
  ReadTraverseLegs (in.Group ("TraverseLegs"), closure.TraverseLegs);
}

void ReadTraverseAdjustment (FieldReader& in, db_TraverseAdjustment& adjustment) {
  in.Enum ("Method", adjustment.Method);
  in.Enum ("Angle", adjustment.Angle);
  in.Enum ("Elevation", adjustment.Elevation);
}

void ReadCogoTransformation (FieldReader& in, db_CogoTransformation& transformation) {
  in.Bool ("Rotated", transformation.Rotated);
  in.Double ("rotationAngle", transformation.rotationAngle);
  in.String ("rotationOrigin", transformation.rotationOrigin);
  in.Double ("rotationOriginGrid.North", transformation.rotationOriginGrid.North);
  in.Double ("rotationOriginGrid.East", transformation.rotationOriginGrid.East);
  in.Double ("rotationOriginGrid.Elev", transformation.rotationOriginGrid.Elev);
  in.Bool ("Scaled", transformation.Scaled);
  in.Double ("scaleFactor", transformation.scaleFactor);
  in.String ("scaleOrigin", transformation.scaleOrigin);
  in.Double ("scaleOriginGrid.North", transformation.scaleOriginGrid.North);
  in.Double ("scaleOriginGrid.East", transformation.scaleOriginGrid.East);
  in.Double ("scaleOriginGrid.Elev", transformation.scaleOriginGrid.Elev);
  in.Bool ("Translated", transformation.Translated);
  in.Enum ("translationMethod", transformation.translationMethod);
  in.Double ("translation.dNorth", transformation.translationDelta.dNorth);
  in.Double ("translation.dEast", transformation.translationDelta.dEast);
  in.Double ("translation.dElev", transformation.translationDelta.dElev);
  in.String ("translationFrom", transformation.translationFrom);
  in.String ("translationTo", transformation.translationTo);
  in.Int ("pointsTransformed", transformation.pointsTransformed);
}

constexpr Conversion conversions[] = {
    {"DATABASE_PointRecord", "db_Point", Convert<ReadPoint, ReadFeatures>},
    {"DATABASE_ObservationRecord", "db_Observation",
     Convert<ReadObservation, ReadFeatures, ReadMeasurement>},
    {"DATABASE_LineRecord", "db_Line", Convert<ReadLine, ReadFeatures>},
    {"DATABASE_ArcRecord", "db_Arc", Convert<ReadArc, ReadFeatures>},
    {"DATABASE_InverseRecord", "db_Inverse", ConvertInverse},
    {"DATABASE_ComputeAzimuthRecord", "db_ComputeAzimuth", Convert<ReadComputeAzimuth>},
    {"DATABASE_ComputeDistanceRecord", "db_ComputeDistance", Convert<ReadComputeDistance>},
    {"DATABASE_PointKeyinRecord", "db_PointKeyin", Convert<ReadPointKeyin>},
    {"DATABASE_AreaRecord", "db_Area", Convert<ReadArea>},
    {"DATABASE_StationingRecord", "db_Stationing", Convert<ReadStationing>},
    {"DATABASE_TraverseHeaderRecord", "db_Traverse", Convert<ReadTraverse>},
    {"DATABASE_TraverseClosureRecord", "db_TraverseClosure", Convert<ReadTraverseClosure>},
    {"DATABASE_TraverseAdjustmentRecord", "db_TraverseAdjustment", Convert<ReadTraverseAdjustment>},
    {"DATABASE_CogoTransformationRecord", "db_CogoTransformation", Convert<ReadCogoTransformation>},
};
static_assert (AllDifferent (conversions));

}  // namespace

void ReadDeleted (const FieldReader& in, uint8_t& deleted) {
  if (in.Text ("Deleted").empty ()) {
    int32_t unused = 0;
    ReadLegacyClassification (in, unused, deleted);
  } else {
    in.Bool ("Deleted", deleted);
  }
}

std::span<const Conversion> PointConversions () noexcept { return conversions; }

}  // namespace clxml
