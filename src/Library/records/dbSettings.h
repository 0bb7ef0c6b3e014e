// The records of a job's settings.
// Units, feature coding, labels, job properties and lists of files; a uint8_t is a yes or no.
// Leans on dbRecord and dbEnum.
#pragma once

#include <memory>

#include "Library/records/dbEnum.h"
#include "Library/records/dbRecord.h"

namespace clxml {

/// Units and formats of a job.
class db_Units final : public RecordOf<db_Units, DATABASE_UnitsRecord> {
 public:
  units_Type VerticalUnits = UNITS_Meters;
  units_Type HorizontalUnits = UNITS_Meters;
  units_Type AngleUnits = UNITS_Ddmmss;
  units_Type LatLongUnits = UNITS_Ddmmss;
  units_Type VelocityUnits = UNITS_MeterPerSecond;
  dbconfig_CoordOrder CoordOrder = DBCONFIG_NEElev;
  units_Type TemperatureUnits = UNITS_Celcius;
  units_Type PressureUnits = UNITS_MilliBar;
  coord_Type CoordType = COORD_GridType;
  units_Type Grade = UNITS_Percentage;
  units_Type AreaUnits = UNITS_SqMetres;
  dbconfig_Stationing Stationing = DBCONFIG_StationingThousands;
  dbconfig_LaserVA LaserVA = DBCONFIG_ZenithAngle;
  dbconfig_GPSTimeDisplay GPSTimeDisplay = DBCONFIG_DateTime;
  dbconfig_DMSAngleDisplay DMSAngleDisplay = DBCONFIG_DMSAngleDisplay1;
  dbconfig_DecAngleDisplay DecAngleDisplay = DBCONFIG_DecAngleDisplay00001;
  dbconfig_DistanceDisplay DistanceDisplay = DBCONFIG_DistanceDisplay0001;
  dbconfig_DistanceDisplay CoordinateDisplay = DBCONFIG_DistanceDisplay0001;
  dbconfig_AzimuthFormat AzimuthFormat = DBCONFIG_AzimuthFormatAzimuth;

  /// A copy in which every unit that is UNITS_None, and CoordType when it is COORD_NullType, comes
  /// from the defaults; null when there is none. Asserts "fromUnits", and gives null, unless the
  /// defaults are a db_Units.
  std::unique_ptr<dbRecord_Class> MergeDefaults (const dbRecord_Class& defaults) const override;
  void Fields (FieldVisitor& v) override;
};

/// The feature code library of a job.
class db_Coding final : public RecordOf<db_Coding, DATABASE_CodingRecord> {
 public:
  Str Comment;
  Str Filename;           ///< feature code library
  Str DDFFilename;        ///< data dictionary
  uint16_t CheckSum = 0;  ///< of the library
  uint8_t AttributesActive = 0;
  bool UseAttributesOfBaseCode = false;

  void Fields (FieldVisitor& v) override;
};

/// The labels of the two description fields.
class db_DescriptionsDefinition final
    : public RecordOf<db_DescriptionsDefinition, DATABASE_DescriptionsDefinitionRecord> {
 public:
  bool UseDescriptions = false;
  Str Description1Label;
  Str Description2Label;

  void Fields (FieldVisitor& v) override;
};

/// Texts that describe a job.
class db_JobProperties final : public RecordOf<db_JobProperties, DATABASE_JobPropertiesRecord> {
 public:
  Str Reference;
  Str Description;
  Str Operator;
  Str Notes;

  void Fields (FieldVisitor& v) override;
};

/// A record with file names in fixed slots.
class db_FileList : public dbRecord_Class {
 public:
  static constexpr int SlotCount = 256;

  /// One name for each slot, empty where the slot is not used; no names at all when none is.
  StrArray Filenames;

  /// Puts a name into a slot, 0 to 255; false, and nothing done, for another number.
  bool SetFilename (int slot, const Str& name);
};

/// The files shown behind the map of a job.
class db_BackgroundFileList final
    : public RecordOf<db_BackgroundFileList, DATABASE_BackgroundFileListRecord, db_FileList> {
 public:
  void Fields (FieldVisitor& v) override;
};

}  // namespace clxml
