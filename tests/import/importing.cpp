// What the tests of the import stand on. Leans on dbJob and the exported functions.
#include "import/importing.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Library/records/dbEnum.h"
#include "Library/records/dbPoints.h"

namespace clxml::testing {

namespace {

class Teller final : public FieldVisitor {
 public:
  std::string text;

  void U8 (const char* name, uint8_t& value) override { Put (name, std::to_string (value)); }
  void Bool (const char* name, bool& value) override { Put (name, value ? "true" : "false"); }
  void U16 (const char* name, uint16_t& value) override { Put (name, std::to_string (value)); }
  void I16 (const char* name, int16_t& value) override { Put (name, std::to_string (value)); }
  void U32 (const char* name, uint32_t& value) override { Put (name, std::to_string (value)); }
  void I32 (const char* name, int32_t& value) override { Put (name, std::to_string (value)); }
  void I64 (const char* name, int64_t& value) override { Put (name, std::to_string (value)); }
  void F64 (const char* name, double& value) override { Put (name, Number (value)); }
  void Text (const char* name, Str& value) override { Put (name, value.Data ()); }
  void Id (const char* name, DBID& value) override {
    Put (name, "#" + std::to_string (value.value));
  }
  void Characters (const char* name, Derivation& value) override {
    Put (name, std::string{value.first, value.second});
  }
  void Classification (const char* name, db_PointClassification& value) override {
    Put (name, value.ToText ());
  }
  void Enum (const char* name, void* place, int width, bool isSigned,
             const Enumeration& table) override {
    int32_t number = 0;
    if (width == 4) {
      number = *static_cast<int32_t*> (place);
    } else if (width == 2) {
      number = isSigned ? *static_cast<int16_t*> (place) : *static_cast<uint16_t*> (place);
    } else {
      number = isSigned ? *static_cast<int8_t*> (place) : *static_cast<uint8_t*> (place);
    }
    const char* word = table.isFlags ? nullptr : FindEnumText (table, number);
    Put (name, word ? word : std::to_string (number));
  }
  void PaddedText (const char* name, Str& value, int) override { Put (name, value.Data ()); }
  void Bytes (const char* name, std::vector<uint8_t>& value, uint32_t) override {
    Put (name, std::to_string (value.size ()) + " bytes");
  }
  void Features (const char* name, FeatureArray& value) override {
    std::string list;
    for (int i = 0; i < value.Count (); i++) {
      const Feature& feature = value.At (i);
      list += std::string (i ? ";" : "") + feature.Code.Data () + "/" + feature.Suffix.Data ();
      for (int a = 0; a < feature.Count (); a++) {
        const Attribute& attribute = feature.At (a);
        list += "," + std::to_string (attribute.Type) + ":" + attribute.Name.Data () + "=";
        if (attribute.Type == ATTRIBUTE_Menu) list += std::to_string (attribute.MenuIndex) + ".";
        const bool isNumber = attribute.Type == ATTRIBUTE_Number ||
                              attribute.Type == ATTRIBUTE_Date || attribute.Type == ATTRIBUTE_Time;
        list += isNumber ? Number (attribute.Number) : std::string (attribute.Text.Data ());
      }
    }
    Put (name, "[" + list + "]");
  }
  void BeginGroup (const char* name) override { groups.emplace_back (name); }
  void EndGroup () override { groups.pop_back (); }
  void CountedTexts (const char* name, StrArray& value, uint32_t) override {
    TerminatedTexts (name, value);
  }
  void TerminatedTexts (const char* name, StrArray& value) override {
    std::string list;
    for (int i = 0; i < value.Count (); i++) list += std::string (i ? ";" : "") + value[i].Data ();
    Put (name, "[" + list + "]");
  }
  void Slots (const char* name, StrArray& value) override { TerminatedTexts (name, value); }
  uint32_t BeginList (const char* name, uint32_t count, CountForm, int) override {
    text += std::string (" ") + name + "=[";
    return count;
  }
  void BeginItem () override { text += "{"; }
  void EndItem () override { text += "}"; }
  void EndList () override { text += "]"; }
  void Nested (const char* name, dbRecord_Class& record) override { Put (name, Told (record)); }

 private:
  static std::string Number (double value) {
    if (maths_IsNull (value)) return "null";
    char buffer[40];
    std::snprintf (buffer, sizeof buffer, "%.10g", value);
    return buffer;
  }
  void Put (const char* name, const std::string& value) {
    text += " ";
    for (const std::string& group : groups) text += group + ".";
    text += name;
    text += "=" + value;
  }
  std::vector<std::string> groups;
};

}  // namespace

std::string Told (const dbRecord_Class& record) {
  Teller teller;
  teller.text = ClassName (record.GetType ());
  if (!record.Note.IsEmpty ()) teller.text += std::string (" (") + record.Note.Data () + ")";
  const auto type = record.GetType ();
  if (type == DATABASE_ObservationRecord || type == DATABASE_LineRecord ||
      type == DATABASE_ArcRecord) {
    auto copy = CloneRecord (record);
    auto& with = static_cast<dbRecordWithFeatures_Class&> (*copy);
    teller.Features ("Features", with.Features);
    teller.Text ("Description1", with.Description1);
    teller.Text ("Description2", with.Description2);
  }
  record.Look (teller);
  if (const auto* observation = db_Observation::From (&record))
    if (observation->Measurement ()) teller.text += " <- " + Told (*observation->Measurement ());
  return teller.text;
}

std::string Exchange (const std::string& version, const std::string& elements) {
  return "<?xml version=\"1.0\"?>\n<NorvathJob version=\"" + version + "\">\n" + elements +
         "\n</NorvathJob>\n";
}

void ImportTest::Write (const std::string& name, const std::string& bytes) const {
  std::ofstream (folder.Host (name), std::ios::binary) << bytes;
}

bool ImportTest::Exists (const std::string& name) const {
  return std::filesystem::exists (folder.Host (name));
}

std::string ImportTest::Bytes (const std::string& name) const {
  std::ostringstream bytes;
  bytes << std::ifstream (folder.Host (name), std::ios::binary).rdbuf ();
  return bytes.str ();
}

uint32_t ImportTest::ImportBytes (const std::string& bytes) {
  Write ("x.xml", bytes);
  static std::function<uint32_t (uint32_t)> hear;
  hear = [this] (uint32_t percent) {
    percents.push_back (percent);
    return progress ? progress (percent) : 1u;
  };
  percents.clear ();
  return ImportCLXMLFile (folder.Device ("x.xml").Data (), folder.Device ("x.job").Data (),
                          [] (uint32_t percent) { return hear (percent); });
}

uint32_t ImportTest::ImportElements (int version, const std::string& elements) {
  return ImportBytes (Exchange (
      std::to_string (version),
      "<DATABASE_JobRecord rec=\"db_Job\" ID=\"0x1\" TimeStamp=\"5\">Job</DATABASE_JobRecord>" +
          elements));
}

std::vector<std::string> ImportTest::Job () {
  JobDatabase job;
  std::vector<std::string> told;
  if (!job.Open (folder.Device ("x.job"), false)) {
    ADD_FAILURE () << "the job does not open: " << job.GetOpenStatus ();
    return told;
  }
  for (DBID id = job.Access ()->GetFirstRecordId (); id != NODBID;
       id = job.Access ()->GetNextRecordId (id))
    told.push_back (Told (*job.GetRecord (id)));
  return told;
}

std::vector<std::string> ImportTest::Stored (int version, const std::string& elements) {
  std::filesystem::remove (folder.Host ("x.job"));
  const uint32_t result = ImportElements (version, elements);
  EXPECT_EQ (result, IMPORT_Ok) << (hearing.log.empty () ? "" : hearing.log.back ());
  if (result != IMPORT_Ok) return {};
  std::vector<std::string> told = Job ();
  if (!told.empty ()) told.erase (told.begin ());
  return told;
}

std::string ImportTest::Failure (int version, const std::string& elements) {
  std::filesystem::remove (folder.Host ("x.job"));
  hearing.log.clear ();
  EXPECT_EQ (ImportElements (version, elements), IMPORT_Failed);
  EXPECT_FALSE (Exists ("x.job"));
  return hearing.log.empty () ? std::string () : hearing.log.back ();
}

}  // namespace clxml::testing
