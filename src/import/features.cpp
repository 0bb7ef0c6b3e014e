// Conversion of feature codes and their attributes.
// A features element hangs below a point, line or arc, or stands behind it; either way its codes
// go to the record whose entity is open. Leans on the conversion frame and text.
#include "Kernel/text.h"
#include "Library/records/dbFeatures.h"
#include "import/conversion.h"

namespace clxml {

namespace {

// A count or an index of an attribute; whatever it says, it is only compared, never allocated by.
uint32_t Number (const xml_element& element, std::string_view attribute) {
  return text_ScanUnsigned (element.AttributeValue (attribute)).value_or (0);
}

double Value (const xml_element& element) {
  return text_ScanDouble (element.AttributeValue ("Value")).value_or (MATHS_Null);
}

void AddAttribute (const xml_element& element, Feature& feature) {
  const Str name (element.AttributeValue ("Name"));
  const std::string_view type = element.AttributeValue ("Type");
  if (type == "Numerical") {
    feature.AddNumber (name, Value (element));
  } else if (type == "Text") {
    feature.AddText (name, Str (element.AttributeValue ("Value")));
  } else if (type == "Menu") {
    feature.AddMenu (name, static_cast<uint16_t> (Number (element, "ItemIndex")),
                     Str (element.AttributeValue ("Item")));
  } else if (type == "Date") {
    feature.AddDate (name, Value (element));
  } else if (type == "Time") {
    feature.AddTime (name, Value (element));
  } else if (type == "File") {
    feature.AddFile (name, Str (element.AttributeValue ("Value")));
  } else if (type == "Separator") {
    feature.AddSeparator (name);
  } else {
    Assert (false, "False");
  }
}

// The feature that a child describes: a new one, or below 1120 the one of that code.
Feature& FeatureOf (const xml_element& child, FeatureArray& features, bool isNew) {
  const Str code = CodeText (child.AttributeValue ("Name"));
  if (!isNew && features.Count () > 0) {
    const int at = features.Find (code.View (), 0);
    if (at >= 0) return features.At (at);
  }
  Feature feature;
  feature.Code = code;
  if (isNew) feature.Suffix = CodeText (child.AttributeValue ("StringCode"));
  features.Append (std::move (feature));
  return features.At (features.Count () - 1);
}

const char* RecOfFeatures (int32_t version) {
  if (version >= 1140) return "FeatureArray";
  return version >= 1120 ? "db_FeatureArray" : "db_FeatureAttribData";
}

void ConvertFeatures (WriteJobControl& job, const xml_element& element, const char*) {
  const dbRecordWithFeatures_Class* entity = job.Entity ();
  if (!entity) {
    Str line ("Import: features without an open entity dropped: ");
    line += element.name;
    Environment::Get ()->LogMessage (line.Data ());
    return;
  }
  FeatureArray features = entity->GetFeatures ();
  const bool isNew = job.Version () >= 1120;
  uint32_t left = Number (element, "FeatureCount");
  // The hundredth feature is refused below; the rest need not be read.
  for (const xml_element* child = element.firstChild;
       child && left > 0 && features.Count () < DBTYPE_MaxFeatures;
       child = child->nextSibling, left--) {
    Feature& feature = FeatureOf (*child, features, isNew);
    uint32_t attributes = Number (*child, "AttributeCount");
    for (const xml_element* attribute = child->firstChild; attribute && attributes > 0;
         attribute = attribute->nextSibling, attributes--)
      AddAttribute (*attribute, feature);
  }
  job.SetEntityFeatures (std::move (features));
  CheckRec (element, RecOfFeatures (job.Version ()));
}

constexpr Conversion conversions[] = {
    {"DATABASE_FeatureAttribDataRecord", "", ConvertFeatures},
};

}  // namespace

void ReadFeatures (WriteJobControl& job, const xml_element& element) {
  if (job.Version () >= 1120) {
    if (const xml_element* child = element.FindChild ("DATABASE_FeaturesRecord"))
      ConvertFeatures (job, *child, "");
    return;
  }
  FeatureArray features;
  features.Parse (CodeText (element.ChildValue ("Code")).View (), false);
  job.SetEntityFeatures (std::move (features));
  if (const xml_element* child = element.FindChild ("DATABASE_FeatureAttribDataRecord"))
    ConvertFeatures (job, *child, "");
}

std::span<const Conversion> FeatureConversions () noexcept { return conversions; }

}  // namespace clxml
