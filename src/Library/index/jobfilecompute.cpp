// The costly values of objects: grids of points, geometry of lines and arcs.
#include "Library/cogo/cogoarc.h"
#include "Library/index/jobfile.h"
#include "Library/position/position.h"
#include "Library/records/dbMeasurements.h"
#include "Library/records/dbPoints.h"

namespace clxml {

void JobFile::ComputeObject (dbObject& object) {
  if (!Assert (this->Database != nullptr, "this->Database")) return;
  switch (object.GetRecordType ()) {
    case DATABASE_ObservationRecord:
      return ComputePoint (static_cast<ObservationObject&> (object));
    case DATABASE_LineRecord:
      ComputeLine (static_cast<LineObject&> (object));
      break;
    case DATABASE_ArcRecord:
      ComputeArc (static_cast<ArcObject&> (object));
      break;
    default:
      break;
  }
  object.GetFlags () |= OBJECT_GridKnown | OBJECT_StatusKnown;
}

// From the measurement alone: the position has no object, so that it does not read its own grid.
void JobFile::ComputePoint (ObservationObject& point) {
  coord_CorrectedGrid grid;
  if (const db_Measurement* measurement = point.GetMeasurement ()) {
    point.GetStatus ();
    position measured;
    measured.LoadFromRecord (*this, *measurement);
    grid = measured.GetGrid (CurrentTransform ());
  }
  point.SetGrid (grid, true);
  NoteForwardNames (point);
}

// The grid of an observation; null for anything else and for a deleted one.
coord_CorrectedGrid JobFile::FinalGridOf (UniqueId id) {
  ObservationObject* point = AsObservation (ObjectOf (id));
  return point && !point->IsDeleted () ? point->GetFinalGrid () : coord_CorrectedGrid ();
}

void JobFile::ComputeLine (LineObject& line) {
  const db_Line* lineRec = db_Line::From (line.GetRecord ());
  if (!Assert (lineRec != nullptr, "lineRec")) return;
  line.SetWords (dbfilter_WordsOf (*lineRec));
  const int32_t subscript = line.GetUniqueId ().GetSubscript ();
  NoteForwardName (lineRec->OriginPoint.View (), subscript);
  line.Start = FindBestPoint (lineRec->OriginPoint);
  line.End = UniqueId ();
  line.StartGrid = FinalGridOf (line.Start);
  line.EndGrid.SetNull ();
  if (lineRec->Method == DBENTITY_TwoPoints) {
    NoteForwardName (lineRec->TargetPoint.View (), subscript);
    line.End = FindBestPoint (lineRec->TargetPoint);
    line.EndGrid = FinalGridOf (line.End);
    return;
  }
  if (lineRec->Method != DBENTITY_BrngDistLine) return;
  line.StartGrid.SetNull ();
  const ObservationObject* origin = AsObservation (ObjectOf (line.Start));
  if (!origin || origin->IsDeleted ()) return;
  position start, end;
  position_LoadFromObject (start, *origin);
  if (start.Original == COORD_NullType) return;
  const Transform& transform = CurrentTransform ();
  // Without a grade the line has no height difference.
  if (maths_IsNull (lineRec->BearingGrade))
    cogo_Forward (start, transform, lineRec->BearingAzimuth, lineRec->BearingLength, MATHS_Null,
                  end, CogoSystem ());
  else
    cogo_ForwardVertical (start, transform, lineRec->BearingAzimuth, lineRec->BearingLength,
                          lineRec->BearingGrade, end, CogoSystem ());
  line.StartGrid = start.GetGrid (transform);
  line.EndGrid = end.GetGrid (transform);
}

void JobFile::ComputeArc (ArcObject& arc) {
  const db_Arc* arcRec = db_Arc::From (arc.GetRecord ());
  if (!Assert (arcRec != nullptr, "arcRec")) return;
  arc.SetWords (dbfilter_WordsOf (*arcRec));
  arc.SetNull ();
  const int32_t subscript = arc.GetUniqueId ().GetSubscript ();
  for (const Str* name : {&arcRec->StartPoint, &arcRec->EndPoint, &arcRec->CenterPoint})
    NoteForwardName (name->View (), subscript);
  const Transform& transform = CurrentTransform ();
  Assert (this->_Transform != nullptr, "this->Transform");

  db_Arc solved = *arcRec;
  position start, end, centre, fourth;
  double azimuth = MATHS_Null;
  const auto lookUp = [this] (const Str& name, position& out) { return FindMeasured (name, out); };
  if (cogoarc_Solve (lookUp, transform, solved, start, end, centre, fourth, azimuth,
                     CogoSystem ()) != COGO_Ok)
    return;
  arc.Centre = centre.GetGrid (transform);
  arc.DeltaAngle = solved.ScribedAngle;
  arc.Radius = solved.Radius;
  arc.StartAzimuth = azimuth;
  arc.StartElevation = start.GetGrid (transform).Elevation;
  arc.Slope = maths_Tan (solved.Grade);
  arc.Start = FindBestPoint (start.Name);
  arc.End = FindBestPoint (end.Name);
  arc.CentrePoint = FindBestPoint (centre.Name);
  arc.FourthPoint = FindBestPoint (fourth.Name);
  arc.IsLeftHand = solved.Direction == DBENTITY_LeftHand;
  if (!arc.IsLeftHand) return;
  arc.StartAzimuth = coord_NormaliseTwoPi (maths_Subtract (arc.StartAzimuth, arc.DeltaAngle));
  maths_AddTo (arc.StartElevation,
               maths_Multiply (maths_Multiply (arc.DeltaAngle, arc.Radius), arc.Slope));
  arc.Slope = maths_Negate (arc.Slope);
  std::swap (arc.Start, arc.End);
}

}  // namespace clxml
