// Conversions of observations that are offset from the point.
// An offset that stands in front of its point waits for the point's measurement. Leans on the
// conversion frame.
#include "Library/records/dbConventional.h"
#include "import/conversion.h"

namespace clxml {

namespace {

// The single offset of older files: a direction and a distance.
void ReadOldOffset (const FieldReader& in, db_DistanceOffset& offset) {
  offset.LeftRightOffset.Distance = 0.0;
  offset.InOutOffset.Distance = 0.0;
  offset.DownUpOffset.Distance = 0.0;
  const std::string_view direction = in.Text ("Direction");
  double distance = 0.0;
  in.DoubleOr ("Distance", distance, 0.0);
  const bool isNegative = direction == "DBTYPE_Left" || direction == "DBTYPE_In";
  if (isNegative && !maths_IsNull (distance)) distance = -distance;
  if (direction == "DBTYPE_Left" || direction == "DBTYPE_Right") {
    offset.LeftRightOffset.Distance = distance;
  } else if (direction == "DBTYPE_In" || direction == "DBTYPE_Out") {
    offset.InOutOffset.Distance = distance;
  }
}

void ReadDistanceOffset (FieldReader& in, db_DistanceOffset& offset) {
  in.RawObservation ("RawObservation", offset.RawObservation, From (1100));
  in.RawObservation ("Circle", offset.RawObservation, Below (1100));
  in.DoubleOr ("LeftRightOffset", offset.LeftRightOffset.Distance, 0.0, From (1130));
  in.DoubleOr ("InOutOffset", offset.InOutOffset.Distance, 0.0, From (1130));
  in.DoubleOr ("DownUpOffset", offset.DownUpOffset.Distance, 0.0, From (1130));
  in.EnumOr ("DisplayOffsetPerspective", offset.DisplayOffsetPerspective,
             DBCONFIG_OffsetFromInstrument, From (1130));
  if (in.Version () < 1130) ReadOldOffset (in, offset);
}

void ConvertDistanceOffset (WriteJobControl& job, const xml_element& element, const char* rec) {
  auto offset = std::make_unique<db_DistanceOffset> ();
  FieldReader in (&element, job.Version ());
  in.Note (offset->Note);
  ReadDistanceOffset (in, *offset);
  CheckRec (element, rec);
  if (job.IsEntityOpen ()) {
    job.StoreRecord (element, std::move (offset));
  } else {
    job.HoldOffset (element, std::move (offset));
  }
}

constexpr Conversion conversions[] = {
    {"DATABASE_DistanceOffsetRecord", "db_DistanceOffset", ConvertDistanceOffset},
};

}  // namespace

std::span<const Conversion> OffsetConversions () noexcept { return conversions; }

}  // namespace clxml
