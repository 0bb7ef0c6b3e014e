// The part that all records of a job have in common: the head of the stored form, and the
// operations that are the same for every class. Uses dbVisitors.
#include "Library/records/dbRecord.h"

#include <array>
#include <string_view>

#include "Library/records/dbVisitors.h"
#include "platform/pool.h"

namespace clxml {

namespace {

enum Flag : uint8_t { Persisted = 1, StoredInNewJob = 2, AffectsPosition = 4 };

// The flags of each type. A setting that a job must have is one that carries over between jobs.
constexpr auto flags = [] {
  std::array<uint8_t, DATABASE_AllRecords> table{};
  for (database_RecordType type : {DATABASE_RoadAvailableStations, DATABASE_RoadConstructionOffsets,
                                   DATABASE_ConfigStakeOutRecord, DATABASE_ConfigCalibRecord,
                                   DATABASE_TraverseAdjustmentRecord, DATABASE_StakeoutListRecord,
                                   DATABASE_BackgroundFileListRecord, DATABASE_JobPropertiesRecord})
    table[type] |= Persisted;
  for (database_RecordType type :
       {DATABASE_EllipsoidRecord, DATABASE_DatumRecord, DATABASE_ProjectionRecord,
        DATABASE_PlaneRecord, DATABASE_HeightRecord, DATABASE_CorrectionsRecord,
        DATABASE_UnitsRecord, DATABASE_CodingRecord, DATABASE_DescriptionsDefinitionRecord,
        DATABASE_CoordSysControlRecord, DATABASE_CoordSystemRecord})
    table[type] |= Persisted | StoredInNewJob;
  for (database_RecordType type :
       {DATABASE_AtmosphereRecord, DATABASE_BackBearingRecord, DATABASE_StationRecord,
        DATABASE_DualPrismOffsetRecord, DATABASE_EllipsoidRecord, DATABASE_DatumRecord,
        DATABASE_ProjectionRecord, DATABASE_HeightRecord, DATABASE_CorrectionsRecord,
        DATABASE_EquipmentRecord, DATABASE_AntennaRecord, DATABASE_RoverSurveyRecord,
        DATABASE_BaseSurveyRecord, DATABASE_MeterologicalRecord, DATABASE_CoordSysControlRecord,
        DATABASE_CoordSystemRecord, DATABASE_LaserTargetHeightRecord, DATABASE_TargetRecord,
        DATABASE_BoolActionRecord})
    table[type] |= AffectsPosition;
  return table;
}();

void SaveRecordHead (const dbRecord_Class& record, OutBuffer& buffer) {
  buffer.PutUInt16 (record.GetType ());
  buffer.PutUInt32 (record.RecordId.value);
  buffer.PutDouble (record.TimeStamp);
  buffer.PutString (record.Note);
}

void LoadRecordHead (dbRecord_Class& record, BodyReader& reader) {
  reader.Numbers (record.RecordId.value, record.TimeStamp);
  reader.Text (record.Note);
}

}  // namespace

bool dbRecord_Class::IsPersisted () const { return flags[GetType ()] & Persisted; }
bool dbRecord_Class::IsStoredInNewJob () const { return flags[GetType ()] & StoredInNewJob; }
bool dbRecord_Class::AffectsPositions () const { return flags[GetType ()] & AffectsPosition; }

std::unique_ptr<dbRecord_Class> dbRecord_Class::MergeDefaults (const dbRecord_Class&) const {
  return nullptr;
}

bool dbRecord_Class::IsEqual (const dbRecord_Class& record) const {
  if (!Assert (GetType () == record.GetType (), "this->GetType() == record.GetType ()"))
    return false;
  CompareVisitor compare;
  Look (compare);
  compare.Turn ();
  record.Look (compare);
  return compare.IsEqual ();
}

void dbRecord_Class::Save (OutBuffer& buffer) const {
  SaveRecordHead (*this, buffer);
  SaveVisitor save (buffer);
  Look (save);
}

bool dbRecord_Class::Load (const Buffer& buffer, int& byteOffset) {
  BodyReader reader (buffer, byteOffset);
  LoadFrom (reader);
  byteOffset = reader.Offset ();
  return reader.IsGood ();
}

void dbRecord_Class::LoadType (BodyReader& in) const {
  uint16_t type = 0;
  in.Number (type);
  if (in.IsGood () &&
      !Assert (GetType () == type,
               "this->GetType() == (database_RecordType) buffer.GetUInt16 (byteOffset)"))
    in.Fail ();
}

bool dbRecord_Class::LoadFrom (BodyReader& in) {
  LoadType (in);
  return LoadRest (in);
}

bool dbRecord_Class::LoadRest (BodyReader& in) {
  LoadRecordHead (*this, in);
  LoadVisitor load (in);
  Fields (load);
  return in.IsGood ();
}

void* dbRecord_Class::operator new (std::size_t size) { return Pool::Make (size); }

void dbRecord_Class::operator delete (void* place, std::size_t size) noexcept {
  Pool::Free (place, size);
}

void dbRecord_Class::ApplyBoolAction (const db_BoolAction&) {
  Assert (false, "!\"Record takes no BoolAction\"");
}

void dbRecord_Class::SetReference (DBID) { Assert (false, "!\"Record takes no reference\""); }

void dbRecord_Class::Assign (const dbRecord_Class& other) {
  if (Assert (GetType () == other.GetType (), "this->GetType() == other.GetType()"))
    CopyRecord (other, *this);
}

void dbRecord_Class::GetNoteLines (StrArray& lines) const {
  lines.Clear ();
  const std::string_view text = Note.View ();
  std::size_t start = 0;
  for (std::size_t at = 0; at < text.size ();) {
    const std::string_view two = text.substr (at, 2);
    const std::size_t width = two == "\r\n" || two == "\n\r" ? 2 : text[at] == '\n' ? 1 : 0;
    if (width == 0) {
      at++;
      continue;
    }
    lines.Add (Str (text.substr (start, at - start)));
    at += width;
    start = at;
  }
  if (start < text.size ()) lines.Add (Str (text.substr (start)));
}

bool dbRecordWithFeatures_Class::IsEqual (const dbRecord_Class& record) const {
  if (!dbRecord_Class::IsEqual (record)) return false;
  const auto& other = static_cast<const dbRecordWithFeatures_Class&> (record);
  return Features.IsEqual (other.Features) && Description1 == other.Description1 &&
         Description2 == other.Description2;
}

void dbRecordWithFeatures_Class::SaveHead (OutBuffer& buffer) const {
  SaveRecordHead (*this, buffer);
  Features.Save (buffer);
  buffer.PutString (Description1);
  buffer.PutString (Description2);
}

void dbRecordWithFeatures_Class::Save (OutBuffer& buffer) const {
  SaveHead (buffer);
  SaveVisitor save (buffer);
  Look (save);
}

bool dbRecordWithFeatures_Class::LoadHead (const Buffer& buffer, int& byteOffset) {
  BodyReader reader (buffer, byteOffset);
  LoadType (reader);
  LoadHeadRest (reader);
  byteOffset = reader.Offset ();
  return reader.IsGood ();
}

void dbRecordWithFeatures_Class::LoadHeadRest (BodyReader& in) {
  LoadRecordHead (*this, in);
  Features.Load (in);
  in.Text (Description1);
  in.Text (Description2);
}

bool dbRecordWithFeatures_Class::LoadRest (BodyReader& in) {
  LoadHeadRest (in);
  LoadVisitor load (in);
  Fields (load);
  return in.IsGood ();
}

void dbRecordWithFeatures_Class::CopyFrom (const dbRecord_Class& other) {
  const DBID own = RecordId;
  CopyRecord (other, *this);
  RecordId = own;
}

}  // namespace clxml
