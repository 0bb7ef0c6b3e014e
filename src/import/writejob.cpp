// The conversion frame: dispatch, storing, and what attaches to an entity.
// Each record is made once on the heap and given away to the job; nothing on this path copies one.
// The job takes single actions: each is a group, and a transaction in the file, of its own.
// Leans on the tables of conversions.
#include "import/writejob.h"

#include "Kernel/clock.h"
#include "Library/records/dbPoints.h"
#include "import/conversion.h"
#include "import/roadcapture.h"

namespace clxml {

namespace {

// Text that no frame takes anyway: what an entity's notes hold beyond it need not be kept to be
// refused.
constexpr int64_t NoteLimit = 1 << 20;

Str AboutElement (const char* what, const xml_element& element) {
  Str line (what);
  line += element.name;
  if (const xml_attribute* id = element.FindAttribute ("ID")) {
    line += " ID=\"";
    line += id->value;
    line += "\"";
  }
  return line;
}

bool OpensEntity (database_RecordType type) {
  return type == DATABASE_ObservationRecord || type == DATABASE_LineRecord ||
         type == DATABASE_ArcRecord;
}

}  // namespace

WriteJobControl::WriteJobControl (JobDatabase& job, int32_t version)
    : database (job.Access ()),
      version (version),
      capture (std::make_unique<RoadCapture> (*this, job)) {}

WriteJobControl::~WriteJobControl () = default;

void WriteJobControl::Dispatch (const xml_element& element) {
  try {
    if (element.name != "DATABASE_EndEntityRecord" && element.name != "DATABASE_NoteRecord")
      InRoadBlock = false;
    const Conversion* conversion = FindConversion (element.name);
    if (!conversion) return;
    // One look at the clock for all the records that an element makes.
    clock_Now ();
    const clock_Hold hold;
    conversion->convert (*this, element, conversion->rec);
  } catch (const Str& text) {
    throw AboutElement (("XML read error: \n" + text + "\n").Data (), element);
  }
}

void WriteJobControl::StoreRecord (const xml_element& element,
                                   std::unique_ptr<dbRecord_Class> record) {
  record->TimeStamp = ReadTimeStamp (element);
  const database_RecordType type = record->GetType ();
  DBID id;
  if (record->IsMeasurement ()) {
    id = Attach (element, std::move (record));
  } else {
    id = database->AddAction (DBACTION_Add, NODBID, std::move (record));
  }
  records.Add (ParseHex ("ID", element.AttributeValue ("ID")), id);
  if (OpensEntity (type)) {
    pendingEntity = id;
  } else if (type == DATABASE_EndEntityRecord) {
    CloseEntity ();
  }
}

// The observation that took the measurement, or NODBID when there was none to take it.
DBID WriteJobControl::Attach (const xml_element& element,
                              std::unique_ptr<dbRecord_Class> measurement) {
  if (!db_Observation::From (Entity ())) {
    const Str line =
        AboutElement ("Import: measurement without an open observation dropped: ", element);
    Environment::Get ()->LogMessage (line.Data ());
    return NODBID;
  }
  database->AddAction (DBACTION_Amend, pendingEntity, std::move (measurement));
  if (pendingOffset) database->AddAction (DBACTION_Add, NODBID, std::move (pendingOffset));
  return pendingEntity;
}

void WriteJobControl::HoldOffset (const xml_element& element,
                                  std::unique_ptr<dbRecord_Class> offset) {
  offset->TimeStamp = ReadTimeStamp (element);
  if (pendingOffset) database->AddAction (DBACTION_Add, NODBID, std::move (pendingOffset));
  pendingOffset = std::move (offset);
}

void WriteJobControl::CollectNote (const Str& text) {
  if (pendingNoteBytes > NoteLimit) return;
  pendingNotes.Add (text);
  pendingNoteBytes += text.Length ();
}

// The collected notes become one note of the entity. It replaces the entity's own note, whose text
// is therefore put in front.
void WriteJobControl::CloseEntity () {
  if (pendingNotes.Count () > 0) {
    auto note = std::make_unique<db_Note> ();
    if (const dbRecord_Class* entity = Entity ()) note->Note = entity->Note;
    const std::string_view own = note->Note.View ();
    const bool isOpenLine = !own.empty () && own.back () != '\n' && own.back () != '\r';
    for (int i = 0; i < pendingNotes.Count (); i++) {
      if (i > 0 || isOpenLine) note->Note += "\r\n";
      note->Note += pendingNotes[i];
    }
    database->AddAction (DBACTION_Amend, pendingEntity, std::move (note));
    pendingNotes.Clear ();
    pendingNoteBytes = 0;
  }
  pendingEntity = NODBID;
}

const dbRecordWithFeatures_Class* WriteJobControl::Entity () const {
  const dbRecord_Class* record = database->GetRecord (pendingEntity);
  if (!record || !Assert (OpensEntity (record->GetType ()), "recWithFeatures")) return nullptr;
  return static_cast<const dbRecordWithFeatures_Class*> (record);
}

void WriteJobControl::SetEntityFeatures (FeatureArray&& features) {
  if (features.Count () >= DBTYPE_MaxFeatures) throw Str ("a record takes fewer than 100 features");
  auto carrier = std::make_unique<db_Features> ();
  carrier->Features = std::move (features);
  database->AddAction (DBACTION_Amend, pendingEntity, std::move (carrier));
}

void WriteJobControl::LogUnfinished () const {
  if (pendingNotes.Count () > 0)
    Environment::Get ()->LogMessage ("Import: notes of an entity that never ended dropped");
  if (pendingOffset)
    Environment::Get ()->LogMessage ("Import: distance offset without a measurement dropped");
}

}  // namespace clxml
