// The capture of legacy roads: the handlers of their elements, and the files at the end.
// An exit spiral's end waits for the radius that the next element begins with; a road's parts wait
// for its groups. Leans on the conversion frame, the road model and the extra output list.
#include "import/roadcapture.h"

#include <cmath>
#include <utility>

#include "Kernel/text.h"
#include "Library/cogo/cogo.h"
#include "Library/job/dbJob.h"
#include "import/conversion.h"
#include "import/extraoutput.h"
#include "platform/folder.h"
#include "road/roadtransform.h"

namespace clxml {

namespace {

constexpr const char* HorizontalCache = "Horizontal";
constexpr const char* VerticalCache = "Vertical";
constexpr const char* PlacementCache = "TemplatePlacement";
constexpr const char* SuperCache = "SuperWidening";

// Bytes that no file name of the handheld has; with them no file leaves the folder.
constexpr std::string_view ForbiddenInNames = "\"*/:<>?\\|";

bool IsDeleted (const FieldReader& in) {
  uint8_t deleted = 0;
  ReadDeleted (in, deleted);
  return deleted != 0;
}

void ReadCoordinate (const FieldReader& in, coord_CorrectedGrid& coordinate) {
  in.Double ("North", coordinate.North);
  in.Double ("East", coordinate.East);
  in.Double ("Elev", coordinate.Elevation);
}

void ReadPosition (const FieldReader& in, VerticalPosition& position) {
  in.Double ("Chainage", position.Station);
  in.Double ("Elevation", position.Elevation);
}

// Two texts of a list, one for each side; what the list lacks is empty.
StrArray ReadSides (const FieldReader& in, const char* tag) {
  StrArray sides;
  in.Items (tag, sides);
  while (sides.Count () < 2) sides.Add (Str ());
  return sides;
}

double Number (const Str& text) {
  return text.IsEmpty () ? MATHS_Null : text_ToDouble (text.View ());
}

int32_t PlacementType (const Str& word) {
  if (word == "DBROAD_UserDefinedTemplate") return SidePlacement::UserDefined;
  if (word == "DBROAD_InterpolateTemplate") return SidePlacement::Interpolate;
  return SidePlacement::None;
}

int32_t PivotPosition (std::string_view word) {
  if (word == "DBROAD_PivotLeft") return SuperElevationWidening::Left;
  if (word == "DBROAD_PivotRight") return SuperElevationWidening::Right;
  return SuperElevationWidening::Crown;
}

// A straight of no length, which stands for nothing but an azimuth.
bool IsEmptyStraight (const HorizontalBase* element) {
  const auto* straight = RoadElement_Cast<HorizontalStraight> (element);
  return straight && straight->Length == 0.0;
}

// Where an element leaves the tangent of the one before it, it says so. The first behind the start
// point keeps what it has.
void ClearTangency (HorizontalElementArray& alignment) {
  constexpr double SameAzimuth = 5e-6;
  for (int i = 2; i < alignment.Count (); i++) {
    const double difference =
        AngleSmallest (alignment.At (i - 1)->EndAzimuth, alignment.At (i)->StartAzimuth);
    if (difference > SameAzimuth) alignment.At (i)->TangentialToPrevious = false;
  }
}

}  // namespace

RoadCapture::RoadCapture (WriteJobControl& frame, JobDatabase& job) : Frame (frame), Job (job) {
  if (!job.IsOpen ()) return;
  if (const db_Corrections* corrections = job.GetLatest<db_Corrections> ())
    Corrections = *corrections;
}

RoadCapture::~RoadCapture () {
  if (HasTransformation) ReleaseCurrentTransformation ();
}

void RoadCapture::CorrectionsChanged (const db_Corrections& corrections) {
  Corrections = corrections;
  AreCorrectionsNew = true;
}

// Most jobs have no roads, so the transform is made when an element first needs it.
void RoadCapture::UseCorrections () {
  if (!AreCorrectionsNew) return;
  SetCurrentTransformation (coordsys_FromRecord (Corrections));
  HasTransformation = true;
  AreCorrectionsNew = false;
}

FieldReader RoadCapture::Reader (const xml_element& element) const {
  return FieldReader (&element, Frame.Version ());
}

// Groups.

void RoadCapture::Open (const char* cacheType, const xml_element& element) {
  FinishCurrentCache ();
  CurrentCache.CacheType = cacheType;
  CurrentCache.ID = element.AttributeValue ("ID");
}

void RoadCapture::Continue (const char* cacheType, const xml_element& element) {
  if (CurrentCache.IsEmpty ()) Open (cacheType, element);
  Require (cacheType);
}

// An element belongs to the group of its kind that is open.
void RoadCapture::Require (const char* cacheType) const {
  if (CurrentCache.CacheType == cacheType) return;
  const Str& open = CurrentCache.CacheType;
  throw "road element of a group \"" + Str (cacheType) +
      (open.IsEmpty () ? Str ("\", of which none is open") : "\" in one \"" + open + "\"");
}

void RoadCapture::FinishCurrentCache () {
  if (!CurrentCache.IsEmpty ()) Alignments.push_back (std::move (CurrentCache));
  CurrentCache = CachedAlignment ();
}

// Roads.

void RoadCapture::RoadHeader (const xml_element& element) {
  const FieldReader in = Reader (element);
  if (IsDeleted (in)) return;
  RoadDefinition definition;
  in.String ("RoadName", definition.Name);
  in.String ("VertAlignment", definition.VertAlignment);
  in.String ("HorzAlignment", definition.HorzAlignment);
  in.String ("SuperApplication", definition.SuperApplication);
  in.String ("TemplateApplication", definition.TemplateApplication);
  in.Double ("SectionInterval", definition.SectionInterval);
  auto note = std::make_unique<db_Note> ();
  note->Note = definition.Name +
               " has been extracted to \\Norvath Data. To review or edit use Key in / Roads.";
  Definitions.push_back (std::move (definition));
  Frame.StoreRecord (element, std::move (note));
}

// Horizontal alignments.

// The last element of the group but back ones, null when there are not so many.
HorizontalBase* RoadCapture::Horizontal (int back) {
  const int index = CurrentCache.Count () - 1 - back;
  return index < 0 ? nullptr : RoadElement_Cast<HorizontalBase> (CurrentCache.Element (index));
}

void RoadCapture::ComputeEnd (HorizontalBase& element) {
  UseCorrections ();
  element.ComputeEnd ();
}

void RoadCapture::Recompute (HorizontalSpiral& spiral) {
  UseCorrections ();
  spiral.Recompute (SpiralResolution);
}

void RoadCapture::HorzHeader (const xml_element& element) {
  Open (HorizontalCache, element);
  const FieldReader in = Reader (element);
  auto start = std::make_unique<HorizontalStartPoint> ();
  start->Length = 0.0;
  in.Double ("Azimuth", start->StartAzimuth);
  in.Double ("StartChainage", start->StartChainage);
  ReadCoordinate (in.Group ("Coordinate"), start->StartCoordinate);
  start->EndAzimuth = start->StartAzimuth;
  start->EndChainage = start->StartChainage;
  start->EndCoordinate = start->StartCoordinate;
  const std::string_view method = in.Text ("Method");
  if (method == "DBROAD_UserDefinedCoords")
    start->KeyinMethod = HorizontalStartPoint::UserDefinedCoords;
  else if (method == "DBROAD_ExistingPoint")
    start->KeyinMethod = HorizontalStartPoint::ExistingPoint;
  in.String ("StartPointName", start->PointName);
  CurrentCache.Add (std::move (start));
}

// The element that follows begins with this radius: an exit spiral that waits for it, directly or
// behind a straight of no length, runs out to it, and the straight moves to where it then ends.
void RoadCapture::CloseExitSpiral (double radius) {
  HorizontalBase* previous = Horizontal (0);
  HorizontalBase* empty = IsEmptyStraight (previous) ? previous : nullptr;
  auto* spiral = RoadElement_Cast<HorizontalExitSpiral> (empty ? Horizontal (1) : previous);
  if (!spiral) return;
  spiral->EndRadius = radius;
  Recompute (*spiral);
  if (empty) empty->StartCoordinate = empty->EndCoordinate = spiral->EndCoordinate;
}

// The radius with which a curve before the next element ends; null is a straight line.
double RoadCapture::RadiusInForce () {
  const HorizontalBase* previous = Horizontal (0);
  if (IsEmptyStraight (previous)) previous = Horizontal (1);
  const double* radius = previous ? previous->EndRadiusRef () : nullptr;
  return radius ? *radius : MATHS_Null;
}

// Start and stations of an element whose Length is known.
void RoadCapture::TakeStart (HorizontalBase& element) {
  const HorizontalBase* previous = Horizontal (0);
  if (!previous) return;
  element.StartAzimuth = previous->EndAzimuth;
  element.StartChainage = previous->EndChainage;
  element.StartCoordinate = previous->EndCoordinate;
  element.EndChainage = maths_Add (element.StartChainage, element.Length);
}

void RoadCapture::HorzStraight (const xml_element& element) {
  Require (HorizontalCache);
  const FieldReader in = Reader (element);
  auto straight = std::make_unique<HorizontalStraight> ();
  double azimuth = MATHS_Null;
  in.Double ("Distance", straight->Length);
  in.Double ("Azimuth", azimuth);
  HorizontalBase* previous = Horizontal (0);
  if (straight->Length == 0.0 && IsEmptyStraight (previous)) {
    previous->StartAzimuth = previous->EndAzimuth = azimuth;
    return;
  }
  if (straight->Length != 0.0) CloseExitSpiral (MATHS_Null);
  straight->KeyinMethod = HorizontalStraight::AzimuthAndLength;
  in.String ("KeyinEndPointName", straight->PointName);
  TakeStart (*straight);
  straight->StartAzimuth = azimuth;
  ComputeEnd (*straight);
  CurrentCache.Add (std::move (straight));
}

void RoadCapture::AddArc (std::unique_ptr<HorizontalArc> arc) {
  CloseExitSpiral (arc->Radius);
  TakeStart (*arc);
  ComputeEnd (*arc);
  CurrentCache.Add (std::move (arc));
}

void RoadCapture::HorzArcRadAng (const xml_element& element) {
  Require (HorizontalCache);
  const FieldReader in = Reader (element);
  auto arc = std::make_unique<HorizontalArc> ();
  arc->KeyinMethod = HorizontalArc::AngleAndRadius;
  in.Bool ("ClockwiseAngle", arc->Clockwise);
  in.Double ("Angle", arc->Angle);
  in.Double ("Radius", arc->Radius);
  arc->Length = maths_Multiply (arc->Radius, arc->Angle);
  AddArc (std::move (arc));
}

void RoadCapture::HorzArcAngLen (const xml_element& element) {
  Require (HorizontalCache);
  const FieldReader in = Reader (element);
  auto arc = std::make_unique<HorizontalArc> ();
  arc->KeyinMethod = HorizontalArc::AngleAndLength;
  in.Bool ("ClockwiseAngle", arc->Clockwise);
  in.Double ("Angle", arc->Angle);
  in.Double ("Length", arc->Length);
  arc->Radius = maths_Divide (arc->Length, arc->Angle);
  AddArc (std::move (arc));
}

void RoadCapture::HorzArcRadLen (const xml_element& element) {
  Require (HorizontalCache);
  const FieldReader in = Reader (element);
  auto arc = std::make_unique<HorizontalArc> ();
  arc->KeyinMethod = HorizontalArc::RadiusAndLength;
  in.Bool ("ClockwiseAngle", arc->Clockwise);
  in.Double ("Length", arc->Length);
  in.Double ("Radius", arc->Radius);
  const double angle = maths_Divide (arc->Length, arc->Radius);
  if (std::abs (angle) < CONSTANT_TwoPi) arc->Angle = coord_NormaliseTwoPi (angle);
  AddArc (std::move (arc));
}

void RoadCapture::HorzSpiral (const xml_element& element) {
  Require (HorizontalCache);
  const FieldReader in = Reader (element);
  bool isEntry = false;
  in.Bool ("EntrySpiral", isEntry);
  std::unique_ptr<HorizontalSpiral> spiral;
  if (isEntry) {
    spiral = std::make_unique<HorizontalEntrySpiral> ();
    in.Double ("Radius", spiral->EndRadius);
    spiral->StartRadius = RadiusInForce ();
  } else {
    spiral = std::make_unique<HorizontalExitSpiral> ();
    in.Double ("Radius", spiral->StartRadius);
  }
  spiral->KeyinMethod = HorizontalSpiral::RadiusAndLength;
  in.Double ("Length", spiral->Length);
  in.Bool ("ClockwiseSpiral", spiral->Clockwise);
  TakeStart (*spiral);
  Recompute (*spiral);
  CurrentCache.Add (std::move (spiral));
}

// Vertical alignments. They are computed as a whole, when the road is written.

namespace {

std::unique_ptr<VerticalPoint> PointAt (const FieldReader& in) {
  auto point = std::make_unique<VerticalPoint> ();
  ReadPosition (in, point->Point);
  point->EndPoint = point->StartPoint = point->IntersectionPoint = point->Point;
  return point;
}

}  // namespace

void RoadCapture::VertHeader (const xml_element& element) {
  Open (VerticalCache, element);
  const FieldReader in = Reader (element);
  auto start = PointAt (in.Group ("Start"));
  in.Double ("GradeIn", start->GradeIn);
  CurrentCache.Add (std::move (start));
}

void RoadCapture::VertPoint (const xml_element& element) {
  Require (VerticalCache);
  CurrentCache.Add (PointAt (Reader (element).Group ("Point")));
}

void RoadCapture::VertArc (const xml_element& element) {
  Require (VerticalCache);
  const FieldReader in = Reader (element);
  auto arc = std::make_unique<VerticalArc> ();
  in.Double ("Radius", arc->Radius);
  ReadPosition (in.Group ("IntersectionPoint"), arc->IntersectionPoint);
  CurrentCache.Add (std::move (arc));
}

void RoadCapture::VertParabola (const xml_element& element) {
  Require (VerticalCache);
  const FieldReader in = Reader (element);
  auto parabola = std::make_unique<VerticalParabola> ();
  in.Double ("Length", parabola->Length);
  ReadPosition (in.Group ("IntersectionPoint"), parabola->IntersectionPoint);
  CurrentCache.Add (std::move (parabola));
}

void RoadCapture::VertAsymParabola (const xml_element& element) {
  Require (VerticalCache);
  const FieldReader in = Reader (element);
  auto parabola = std::make_unique<VerticalAsymmetricParabola> ();
  in.Double ("ExitLength", parabola->LengthOut);
  in.Double ("EntryLength", parabola->LengthIn);
  ReadPosition (in.Group ("IntersectionPoint"), parabola->IntersectionPoint);
  CurrentCache.Add (std::move (parabola));
}

// What applies where.

void RoadCapture::ApplyTmplts (const xml_element& element) {
  Continue (PlacementCache, element);
  const FieldReader in = Reader (element);
  const StrArray types = ReadSides (in, "types");
  const StrArray names = ReadSides (in, "names");
  double chainage = MATHS_Null;
  in.Double ("Chainage", chainage);
  auto placement = std::make_unique<SidedTemplatePlacement> ();
  for (const int i : {DBROAD_SideLeft, DBROAD_SideRight}) {
    SidePlacement& side = placement->Sides[static_cast<std::size_t> (i)];
    side.Chainage = chainage;
    side.Type = PlacementType (types[i]);
    if (side.Type == SidePlacement::UserDefined) side.Name = names[i];
  }
  CurrentCache.Add (std::move (placement));
}

void RoadCapture::ApplySuper (const xml_element& element) {
  Continue (SuperCache, element);
  const FieldReader in = Reader (element);
  const StrArray supers = ReadSides (in, "supers");
  const StrArray widenings = ReadSides (in, "widenings");
  auto super = std::make_unique<SuperElevationWidening> ();
  super->Pivot = PivotPosition (in.Text ("Pivot"));
  in.Double ("Chainage", super->Chainage);
  for (const int i : {DBROAD_SideLeft, DBROAD_SideRight}) {
    super->Superelevation[static_cast<std::size_t> (i)] = Number (supers[i]);
    super->Widening[static_cast<std::size_t> (i)] = Number (widenings[i]);
  }
  CurrentCache.Add (std::move (super));
}

// Templates.

void RoadCapture::TmpltHeader (const xml_element& element) {
  const FieldReader in = Reader (element);
  CurrentTemplate = -1;
  if (IsDeleted (in)) return;
  CrossSectionTemplate crossSection;
  in.String ("TmpltName", crossSection.Name);
  if (Templates.Add (std::move (crossSection))) CurrentTemplate = Templates.Count () - 1;
}

namespace {

void ReadStrip (const FieldReader& in, TemplateStrip& strip) {
  in.Code ("Code", strip.Code);
  in.Double ("HorzDistance", strip.HorizontalDistance);
  in.Bool ("ApplySuper", strip.ApplySuperelevation);
  in.Bool ("ApplyWidening", strip.ApplyWidening);
}

}  // namespace

// A vertical strip has a height and no grade.
void RoadCapture::TmpltDistGrade (const xml_element& element) {
  if (CurrentTemplate < 0) return;
  constexpr double Vertical = 0.00001;
  const FieldReader in = Reader (element);
  double grade = MATHS_Null;
  in.Double ("Grade", grade);
  if (std::abs (std::abs (grade) - CONSTANT_PiOverTwo) <= Vertical) {
    auto strip = std::make_unique<TemplateDistanceDelta> ();
    in.Double ("VertDistance", strip->VerticalDistance);
    ReadStrip (in, *strip);
    Templates.At (CurrentTemplate)->Add (std::move (strip));
  } else {
    auto strip = std::make_unique<TemplateDistanceGrade> ();
    strip->Grade = grade;
    ReadStrip (in, *strip);
    Templates.At (CurrentTemplate)->Add (std::move (strip));
  }
}

void RoadCapture::TmpltDistDelta (const xml_element& element) {
  if (CurrentTemplate < 0) return;
  const FieldReader in = Reader (element);
  auto strip = std::make_unique<TemplateDistanceDelta> ();
  in.Double ("HorzDistance", strip->HorizontalDistance);
  in.Double ("HeightDifference", strip->VerticalDistance);
  if (strip->HorizontalDistance == 0.0 || strip->VerticalDistance == 0.0) return;
  ReadStrip (in, *strip);
  Templates.At (CurrentTemplate)->Add (std::move (strip));
}

void RoadCapture::TmpltBatter (const xml_element& element) {
  if (CurrentTemplate < 0) return;
  const FieldReader in = Reader (element);
  auto slope = std::make_unique<TemplateSideSlope> ();
  in.Code ("Code", slope->Code);
  in.Double ("Cut", slope->CutGrade);
  in.Double ("Fill", slope->FillGrade);
  in.Double ("DitchOffset", slope->CutDitchWidth);
  Templates.At (CurrentTemplate)->Add (std::move (slope));
}

// The end of the import.

void RoadCapture::Spare (const Str& path) { Spared.Add (folder_HostPath (path)); }

namespace {

// How many elements of a group a list of the class takes. All elements of a group are of one
// family, so the first one decides.
template <class T, class Self>
int64_t TakenCount (const RoadElementArrayOf<T, Self>&, const RoadElementArray* group) {
  if (group == nullptr || group->IsEmpty ()) return 0;
  return T::IsType (group->Element (0)->ElementType ()) ? group->Count () : 0;
}

}  // namespace

// The road's file replaces no spared file, and the elements of all files together stay in
// proportion to the captured ones.
bool RoadCapture::MayWrite (const Str& fileName, int64_t elements) {
  if (elements > ElementsLeft || Spared.Find (folder_HostPath (fileName)) >= 0) return false;
  ElementsLeft -= elements;
  return true;
}

void RoadCapture::WriteRoad (const RoadDefinition& definition, const GroupsByID& groups,
                             const Str& jobText) {
  NorvathRoad road;
  road.Name = definition.Name;
  road.StationInterval = definition.SectionInterval;
  const auto group = [&groups] (const Str& identifier) -> const RoadElementArray* {
    const auto found = groups.find (identifier.View ());
    return found != groups.end () ? found->second : nullptr;
  };
  // Calls with each list of the road and its group, which may be null.
  const auto forEachList = [&] (auto call) {
    call (road.Vertical, group (definition.VertAlignment));
    call (road.Horizontal, group (definition.HorzAlignment));
    call (road.TemplatePlacements, group (definition.TemplateApplication));
    call (road.Supers, group (definition.SuperApplication));
  };

  const bool isName = definition.Name.View ().find_first_of (ForbiddenInNames) == std::string::npos;
  const Str fileName = Folder + (isName ? definition.Name : Str ("road")) + "(" + jobText + ").rxl";
  AddExtraOutputFile (fileName);
  road.SetFileName (fileName);
  // The elements are counted before they are copied: a refused road costs nothing.
  int64_t elements = 1 + TemplateElements;
  forEachList ([&elements] (const auto& list, const RoadElementArray* taken) {
    elements += TakenCount (list, taken);
  });
  bool isWritten = MayWrite (fileName, elements);
  if (isWritten) {
    forEachList ([] (auto& list, const RoadElementArray* taken) {
      if (taken != nullptr) list.TakeFrom (*taken);
    });
    road.Vertical.Settle ();
    ClearTangency (road.Horizontal);
    // Each road has all templates; they are lent, not copied.
    std::swap (road.Templates, Templates);
    isWritten = road.Save ();
    std::swap (road.Templates, Templates);
  }
  if (!isWritten)
    Environment::Get ()->LogMessage ((ROADCAPTURE_NotWritten + fileName).Data ());
  else if (!Written.insert (folder_HostPath (fileName).Data ()).second)
    Environment::Get ()->LogMessage ((ROADCAPTURE_Replaced + fileName).Data ());
}

void RoadCapture::WriteRoads () {
  FinishCurrentCache ();
  GroupsByID groups;
  int64_t captured = static_cast<int64_t> (Definitions.size ());
  for (const CachedAlignment& group : Alignments) {
    captured += group.Count ();
    // The first of an identifier; an empty one names no group.
    if (!group.ID.IsEmpty ()) groups.emplace (group.ID.View (), &group);
  }
  TemplateElements = 0;
  for (const CrossSectionTemplate& crossSection : Templates)
    TemplateElements += 1 + crossSection.Count ();
  captured += TemplateElements;
  ElementsLeft = FreeElements + MaximumCopies * captured;

  Str jobText = Job.JobHeader ().JobName;
  for (const char forbidden : ForbiddenInNames) jobText.Replace (forbidden, '_');
  for (const RoadDefinition& definition : Definitions) WriteRoad (definition, groups, jobText);
  Definitions.clear ();
}

// The conversions of the elements.

namespace {

template <void (RoadCapture::*handler) (const xml_element&)>
void CaptureRoad (WriteJobControl& job, const xml_element& element, const char*) {
  job.InRoadBlock = true;
  (job.Capture ().*handler) (element);
}

constexpr Conversion conversions[] = {
    {"DATABASE_RoadHeaderRecord", "", CaptureRoad<&RoadCapture::RoadHeader>},
    {"DATABASE_HorzHeaderRecord", "", CaptureRoad<&RoadCapture::HorzHeader>},
    {"DATABASE_HorzStraightRecord", "", CaptureRoad<&RoadCapture::HorzStraight>},
    {"DATABASE_HorzArcAngLenRecord", "", CaptureRoad<&RoadCapture::HorzArcAngLen>},
    {"DATABASE_HorzArcRadLenRecord", "", CaptureRoad<&RoadCapture::HorzArcRadLen>},
    {"DATABASE_HorzArcRadAngRecord", "", CaptureRoad<&RoadCapture::HorzArcRadAng>},
    {"DATABASE_HorzSpiralRecord", "", CaptureRoad<&RoadCapture::HorzSpiral>},
    {"DATABASE_VertHeaderRecord", "", CaptureRoad<&RoadCapture::VertHeader>},
    {"DATABASE_VertArcRecord", "", CaptureRoad<&RoadCapture::VertArc>},
    {"DATABASE_VertParabolaRecord", "", CaptureRoad<&RoadCapture::VertParabola>},
    {"DATABASE_VertAsymParabolaRecord", "", CaptureRoad<&RoadCapture::VertAsymParabola>},
    {"DATABASE_VertPointRecord", "", CaptureRoad<&RoadCapture::VertPoint>},
    {"DATABASE_ApplyTmpltsRecord", "", CaptureRoad<&RoadCapture::ApplyTmplts>},
    {"DATABASE_ApplySuperRecord", "", CaptureRoad<&RoadCapture::ApplySuper>},
    {"DATABASE_TmpltHeaderRecord", "", CaptureRoad<&RoadCapture::TmpltHeader>},
    {"DATABASE_TmpltDistGradeRecord", "", CaptureRoad<&RoadCapture::TmpltDistGrade>},
    {"DATABASE_TmpltDistDeltaRecord", "", CaptureRoad<&RoadCapture::TmpltDistDelta>},
    {"DATABASE_TmpltBatterRecord", "", CaptureRoad<&RoadCapture::TmpltBatter>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> RoadConversions () noexcept { return conversions; }

}  // namespace clxml
