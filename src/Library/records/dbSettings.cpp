// The fields of the settings records.
// The order of a list is the order of the fields in a job file. Leans on dbSettings.h.
#include "Library/records/dbSettings.h"

namespace clxml {

void db_Units::Fields (FieldVisitor& v) {
  FIELD (VerticalUnits);
  FIELD (HorizontalUnits);
  FIELD (AngleUnits);
  FIELD (LatLongUnits);
  FIELD (VelocityUnits);
  FIELD (CoordOrder);
  FIELD (TemperatureUnits);
  FIELD (PressureUnits);
  FIELD (CoordType);
  FIELD (Grade);
  FIELD (AreaUnits);
  FIELD (Stationing);
  FIELD (LaserVA);
  FIELD (GPSTimeDisplay);
  FIELD (DMSAngleDisplay);
  FIELD (DecAngleDisplay);
  FIELD (DistanceDisplay);
  FIELD (CoordinateDisplay);
  FIELD (AzimuthFormat);
}

void db_Coding::Fields (FieldVisitor& v) {
  FIELD (Comment);
  FIELD (Filename);
  FIELD (DDFFilename);
  FIELD (CheckSum);
  FIELD (AttributesActive);
  FIELD (UseAttributesOfBaseCode);
}

void db_DescriptionsDefinition::Fields (FieldVisitor& v) {
  FIELD (UseDescriptions);
  FIELD (Description1Label);
  FIELD (Description2Label);
}

void db_JobProperties::Fields (FieldVisitor& v) {
  FIELD (Reference);
  FIELD (Description);
  FIELD (Operator);
  FIELD (Notes);
}

std::unique_ptr<dbRecord_Class> db_Units::MergeDefaults (const dbRecord_Class& defaults) const {
  const db_Units* fromUnits = From (&defaults);
  if (!Assert (fromUnits != nullptr, "fromUnits")) return nullptr;
  auto merged = std::make_unique<db_Units> (*this);
  for (units_Type db_Units::*field :
       {&db_Units::VerticalUnits, &db_Units::HorizontalUnits, &db_Units::AngleUnits,
        &db_Units::LatLongUnits, &db_Units::VelocityUnits, &db_Units::TemperatureUnits,
        &db_Units::PressureUnits, &db_Units::Grade, &db_Units::AreaUnits}) {
    if ((*merged).*field == UNITS_None) (*merged).*field = fromUnits->*field;
  }
  if (merged->CoordType == COORD_NullType) merged->CoordType = fromUnits->CoordType;
  if (merged->IsEqual (*this)) return nullptr;
  return merged;
}

bool db_FileList::SetFilename (int slot, const Str& name) {
  if (slot < 0 || slot >= SlotCount) return false;
  if (Filenames.Count () == 0) {
    Filenames.Reserve (SlotCount);
    for (int i = 0; i < SlotCount; i++) Filenames.Add (Str ());
  }
  Filenames[slot] = name;
  return true;
}

void db_BackgroundFileList::Fields (FieldVisitor& v) { v.Slots ("Filenames", Filenames); }

}  // namespace clxml
