// Conversions of the settings of a job and of its file lists.
// Leans on the conversion frame.
#include <algorithm>

#include "Kernel/text.h"
#include "Library/records/dbGPS.h"
#include "Library/records/dbSettings.h"
#include "Library/records/dbStakeout.h"
#include "import/conversion.h"

namespace clxml {

namespace {

void ReadUnits (FieldReader& in, db_Units& units) {
  in.Enum ("VerticalUnits", units.VerticalUnits);
  in.Enum ("HorizontalUnits", units.HorizontalUnits);
  in.Enum ("AngleUnits", units.AngleUnits);
  in.Enum ("LatLongUnits", units.LatLongUnits);
  in.Enum ("VelocityUnits", units.VelocityUnits);
  in.Enum ("CoordOrder", units.CoordOrder);
  in.Enum ("TemperatureUnits", units.TemperatureUnits);
  in.Enum ("PressureUnits", units.PressureUnits);
  in.Enum ("CoordType", units.CoordType);
  in.Enum ("Grade", units.Grade);
  in.Enum ("AreaUnits", units.AreaUnits);
  in.Enum ("Stationing", units.Stationing);
  in.Enum ("LaserVA", units.LaserVA);
  in.EnumOr ("GPSTimeDisplay", units.GPSTimeDisplay, DBCONFIG_DateTime);
  in.Enum ("DMSAngleDisplay", units.DMSAngleDisplay, From (1130));
  in.EnumOr ("DistanceDisplay", units.DistanceDisplay, DBCONFIG_DistanceDisplay0001, From (1130));
  in.EnumOr ("AzimuthFormat", units.AzimuthFormat, DBCONFIG_AzimuthFormatAzimuth, From (1130));
  in.Enum ("HAVAAngleDisplay", units.DMSAngleDisplay, Below (1130));
  in.EnumOr ("SDDisplay", units.DistanceDisplay, DBCONFIG_DistanceDisplay0001, Below (1130));
  in.EnumOr ("CoordinateDisplay", units.CoordinateDisplay, DBCONFIG_DistanceDisplay0001);
  in.EnumOr ("DecAngleDisplay", units.DecAngleDisplay, DBCONFIG_DecAngleDisplay00001);
}

void ReadCoding (FieldReader& in, db_Coding& coding) {
  in.String ("Comment", coding.Comment);
  in.String ("Filename", coding.Filename);
  in.String ("DDFFilename", coding.DDFFilename);
  in.IntOrHex ("CheckSum", coding.CheckSum);
  in.Bool ("AttributesActive", coding.AttributesActive);
  in.BoolOr ("UseAttributesOfBaseCode", coding.UseAttributesOfBaseCode, false);
}

void ReadDescriptionsDefinition (FieldReader& in,
                                 db_DescriptionsDefinition& descriptionsDefinition) {
  in.Bool ("UseDescriptions", descriptionsDefinition.UseDescriptions);
  in.String ("Description1Label", descriptionsDefinition.Description1Label);
  in.String ("Description2Label", descriptionsDefinition.Description2Label);
}

void ReadSurveyStyle (FieldReader& in, db_SurveyStyle& surveyStyle) {
  in.String ("ConfigName", surveyStyle.ConfigName);
  in.Enum ("Device", surveyStyle.Device);
  in.Enum ("Folder", surveyStyle.Folder);
}

void ReadIntegratedStyle (FieldReader& in, db_IntegratedStyle& integratedStyle) {
  in.BoolOr ("IntegratedStyle", integratedStyle.IntegratedStyle, false);
  in.String ("GPSStyleName", integratedStyle.GPSStyleName);
  in.String ("TSStyleName", integratedStyle.TSStyleName);
}

void ReadJobProperties (FieldReader& in, db_JobProperties& jobProperties) {
  in.String ("Reference", jobProperties.Reference);
  in.String ("Description", jobProperties.Description);
  in.String ("Operator", jobProperties.Operator);
  in.String ("Notes", jobProperties.Notes);
}

// File names by slot. A slot outside the list would be lost: it is refused.
template <class T>
void ReadFileList (FieldReader& in, T& list) {
  uint32_t count = 0;
  in.IntOrHex ("FilenameCount", count);
  StrArray names;
  StrArray indexes;
  in.Items ("Filenames", names, &indexes);
  const uint32_t held = std::min (count, static_cast<uint32_t> (names.Count ()));
  for (int i = 0; i < static_cast<int> (held); i++) {
    if (!list.SetFilename (text_ToInt (indexes[i].View ()), names[i]))
      throw InvalidField ("slot", "index", indexes[i].View ());
  }
}

constexpr Conversion conversions[] = {
    {"DATABASE_UnitsRecord", "db_Units", Convert<ReadUnits>},
    {"DATABASE_CodingRecord", "db_Coding", Convert<ReadCoding>},
    {"DATABASE_DescriptionsDefinitionRecord", "db_DescriptionsDefinition",
     Convert<ReadDescriptionsDefinition>},
    {"DATABASE_SurveyStyleRecord", "db_SurveyStyle", Convert<ReadSurveyStyle>},
    {"DATABASE_IntegratedStyleRecord", "db_IntegratedStyle", Convert<ReadIntegratedStyle>},
    {"DATABASE_JobPropertiesRecord", "db_JobProperties", Convert<ReadJobProperties>},
    {"DATABASE_StakeoutListRecord", "db_StakeoutList", Convert<ReadFileList<db_StakeoutList>>},
    {"DATABASE_BackgroundFileListRecord", "db_BackgroundFileList",
     Convert<ReadFileList<db_BackgroundFileList>>},
};
static_assert (AllDifferent (conversions));

}  // namespace

std::span<const Conversion> SettingConversions () noexcept { return conversions; }

}  // namespace clxml
