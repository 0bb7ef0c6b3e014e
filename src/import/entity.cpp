// Conversions of what holds an entity together: notes, time events, ends of entities.
// Notes inside an entity are collected and become one note at its end. Leans on the conversion
// frame and clock.
#include "Kernel/clock.h"
#include "Library/records/dbPoints.h"
#include "import/conversion.h"
#include "import/roadcapture.h"

namespace clxml {

namespace {

void ConvertNote (WriteJobControl& job, const xml_element& element, const char* rec) {
  auto note = std::make_unique<db_Note> ();
  if (job.Version () < 1100) {
    note->Note = element.value;
  } else {
    FieldReader (&element, job.Version ()).Note (note->Note);
  }
  CheckRec (element, rec);
  if (job.IsEntityOpen ()) {
    job.CollectNote (note->Note);
  } else {
    job.StoreRecord (element, std::move (note));
  }
}

// The end of a road's definition looks the same as that of an entity.
void ConvertEndEntity (WriteJobControl& job, const xml_element& element, const char* rec) {
  if (job.InRoadBlock) {
    job.Capture ().FinishCurrentCache ();
  } else {
    Convert<ReadNothing<db_EndEntity>> (job, element, rec);
  }
}

// A note that says what happened and when; empty when the event is worth none.
Str EventText (const FieldReader& in) {
  dbcl_TimeDerivation derivation{};
  in.Enum ("TimeDerivation", derivation);
  Str text;
  switch (derivation) {
    case DBCL_UserDeleted:
      text = "Deleted";
      break;
    case DBCL_UserUndeleted:
      text = "Undeleted";
      break;
    case DBCL_Updated:
      text = "Updated";
      break;
    case DBCL_UsedLastTSSetup:
      return Str ("Used last station setup");
    default:
      return text;
  }
  double time = MATHS_Null;
  in.Double ("Time", time);
  if (maths_IsNull (time)) return text;
  const Str date = clock_FormatDate (time, false, false);
  if (date.IsEmpty ()) return text;  // no time that a calendar knows
  return text + " " + clock_FormatTime (time) + " " + date;
}

void ConvertTimeStamp (WriteJobControl& job, const xml_element& element, const char* rec) {
  const FieldReader in (&element, job.Version ());
  auto note = std::make_unique<db_Note> ();
  in.Note (note->Note);
  Str event = EventText (in);
  if (event.IsEmpty ()) return;
  // Notes of its own are rare; they follow the event.
  if (!note->Note.IsEmpty ()) event += "\r\n";
  note->Note = event + note->Note;
  CheckRec (element, rec);
  job.StoreRecord (element, std::move (note));
}

constexpr Conversion conversions[] = {
    {"DATABASE_NoteRecord", "db_Note", ConvertNote},
    {"DATABASE_EndEntityRecord", "db_EndEntity", ConvertEndEntity},
    {"DATABASE_TimeStampRecord", "db_TimeStamp", ConvertTimeStamp},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> EntityConversions () noexcept { return conversions; }

}  // namespace clxml
