// The seam to the capture of legacy roads: what stands in for a capture, and the elements it gets.
// Leans on the conversion frame.
#include "import/roadcapture.h"

#include "import/conversion.h"
#include "import/writejob.h"

namespace clxml {

void RoadCapture::Capture (const xml_element&) {}
void RoadCapture::EndDefinition () {}
void RoadCapture::SetFolder (const Str&) {}
void RoadCapture::WriteRoads () {}

std::unique_ptr<RoadCapture> MakeRoadCapture (WriteJobControl&) {
  return std::make_unique<RoadCapture> ();
}

namespace {

void CaptureRoad (WriteJobControl& job, const xml_element& element, const char*) {
  job.InRoadBlock = true;
  job.Capture ().Capture (element);
}

constexpr Conversion conversions[] = {
    {"DATABASE_RoadHeaderRecord", "", CaptureRoad},
    {"DATABASE_HorzHeaderRecord", "", CaptureRoad},
    {"DATABASE_HorzStraightRecord", "", CaptureRoad},
    {"DATABASE_HorzArcAngLenRecord", "", CaptureRoad},
    {"DATABASE_HorzArcRadLenRecord", "", CaptureRoad},
    {"DATABASE_HorzArcRadAngRecord", "", CaptureRoad},
    {"DATABASE_HorzSpiralRecord", "", CaptureRoad},
    {"DATABASE_VertHeaderRecord", "", CaptureRoad},
    {"DATABASE_VertArcRecord", "", CaptureRoad},
    {"DATABASE_VertParabolaRecord", "", CaptureRoad},
    {"DATABASE_VertAsymParabolaRecord", "", CaptureRoad},
    {"DATABASE_VertPointRecord", "", CaptureRoad},
    {"DATABASE_ApplyTmpltsRecord", "", CaptureRoad},
    {"DATABASE_ApplySuperRecord", "", CaptureRoad},
    {"DATABASE_TmpltHeaderRecord", "", CaptureRoad},
    {"DATABASE_TmpltDistGradeRecord", "", CaptureRoad},
    {"DATABASE_TmpltDistDeltaRecord", "", CaptureRoad},
    {"DATABASE_TmpltBatterRecord", "", CaptureRoad},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> RoadConversions () noexcept { return conversions; }

}  // namespace clxml
