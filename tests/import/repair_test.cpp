// The repair of references, for every class that has some.
// Records are stored through the frame by hand, so that classes count whose elements no file of a
// test holds. Leans on importing.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>

#include "Library/records/dbPoints.h"
#include "Library/xml/xml.h"
#include "import/importing.h"
#include "import/writejob.h"

namespace clxml::testing {
namespace {

// Visits the identifiers of a record; sets each to a number when one is given.
class Identifiers final : public FieldVisitor {
 public:
  explicit Identifiers (uint32_t first) : next (first) {}
  std::vector<std::string> names;
  std::vector<uint32_t> values;

  void Id (const char* name, DBID& value) override {
    if (next) value = DBID{next++};
    names.emplace_back (name);
    values.push_back (value.value);
  }
  void U8 (const char*, uint8_t&) override {}
  void Bool (const char*, bool&) override {}
  void U16 (const char*, uint16_t&) override {}
  void I16 (const char*, int16_t&) override {}
  void U32 (const char*, uint32_t&) override {}
  void I32 (const char*, int32_t&) override {}
  void I64 (const char*, int64_t&) override {}
  void F64 (const char*, double&) override {}
  void Text (const char*, Str&) override {}
  void Characters (const char*, Derivation&) override {}
  void Classification (const char*, db_PointClassification&) override {}
  void Enum (const char*, void*, int, bool, const Enumeration&) override {}
  void PaddedText (const char*, Str&, int) override {}
  void Bytes (const char*, std::vector<uint8_t>&, uint32_t) override {}
  void Features (const char*, FeatureArray&) override {}
  void BeginGroup (const char*) override {}
  void EndGroup () override {}
  void CountedTexts (const char*, StrArray&, uint32_t) override {}
  void TerminatedTexts (const char*, StrArray&) override {}
  void Slots (const char*, StrArray&) override {}
  uint32_t BeginList (const char*, uint32_t count, CountForm, int) override { return count; }
  void BeginItem () override {}
  void EndItem () override {}
  void EndList () override {}
  void Nested (const char*, dbRecord_Class&) override {}

 private:
  uint32_t next;
};

class Repair : public ImportTest {
 protected:
  void SetUp () override {
    ASSERT_TRUE (job.Create (folder.Device ("x.job"), "Job"));
    job.Access ()->SetSingleActionMode ();
    control = std::make_unique<WriteJobControl> (job, 1140);
  }
  void TearDown () override {
    control.reset ();
    job.Close ();
  }
  void Store (const std::string& id, std::unique_ptr<dbRecord_Class> record) {
    xml_tree tree;
    xml_element* element = tree.NewElement ("element");
    xml_attribute* attribute = tree.NewAttribute ("ID", id);
    element->firstAttribute = element->lastAttribute = attribute;
    control->StoreRecord (*element, std::move (record));
  }
  void StorePoint (const std::string& id) {
    auto point = std::make_unique<db_Observation> ();
    point->PointName = "P";
    Store (id, std::move (point));
  }
  // Stores a record of the type whose identifiers are 0xA0, 0xA1 and so on.
  void StoreReferring (int type) {
    auto record = CreateRecord (type);
    Identifiers set (0xA0);
    record->Fields (set);
    if (record->IsMeasurement ()) StorePoint ("0x10");
    Store ("0x11", std::move (record));
  }
  // What a throw of the repair says.
  std::string Failing () {
    try {
      control->RepairPointers ();
    } catch (const Str& text) {
      return text.Data ();
    }
    return {};
  }

  JobDatabase job;
  std::unique_ptr<WriteJobControl> control;
};

struct Referring {
  int type;
  std::vector<std::string> names;
};
const Referring referring[] = {
    {19, {"Observation", "MeanTurnedAngle"}},
    {24, {"Instrument", "Atmosphere"}},
    {41, {"Equipment"}},
    {62, {"Antenna"}},
    {63, {"Previous", "Antenna"}},
    {107, {"Observation", "MeanTurnedAngle"}},
    {110, {"TraversePtr"}},
    {124, {"ROBasePointID"}},
    {130, {"StationID", "BackBearingID"}},
    {131, {"StationID", "BackBearingID", "CameraID"}},
    {8, {"Reference", "Antenna"}},
    {9, {"Antenna"}},
    {15, {"BasePoint", "LaserHeight", "TargetHeight", "MagneticDeclination"}},
    {16, {"Station", "Target", "BackBearing"}},
    {18, {"Station", "Target", "BackBearing"}},
};

TEST_F (Repair, ResolvesEveryReferenceAndNothingElse) {
  for (const Referring& c : referring) {
    SCOPED_TRACE (c.type);
    TearDown ();
    std::filesystem::remove (folder.Host ("x.job"));
    SetUp ();
    StoreReferring (c.type);
    const DBID position = job.Access ()->GetLastRecordId ();
    // The targets come behind, in reverse order.
    for (const char* id : {"0xa4", "0xa3", "0xA2", "0xa1", "0xA0"}) StorePoint (id);
    std::map<uint32_t, uint32_t> target;
    for (uint32_t i = 0; i < 5; i++) target[0xA0 + i] = job.Access ()->GetLastRecordId ().value - i;
    control->RepairPointers ();

    auto record = CloneRecord (*job.GetRecord (position));
    if (auto* observation = db_Observation::From (record.get ()))
      record = observation->ReplaceMeasurement (nullptr);
    Identifiers found (0);
    record->Fields (found);
    std::size_t resolved = 0;
    for (std::size_t i = 0; i < found.names.size (); i++) {
      const uint32_t number = 0xA0 + static_cast<uint32_t> (i);
      const bool isReference =
          std::find (c.names.begin (), c.names.end (), found.names[i]) != c.names.end ();
      resolved += isReference;
      EXPECT_EQ (found.values[i], isReference ? target[number] : number) << found.names[i];
    }
    EXPECT_EQ (resolved, c.names.size ());
  }
}

TEST_F (Repair, ADanglingReferenceNamesFieldTypeAndPlace) {
  for (const Referring& c : referring) {
    SCOPED_TRACE (c.type);
    TearDown ();
    std::filesystem::remove (folder.Host ("x.job"));
    SetUp ();
    StoreReferring (c.type);
    const DBID position = job.Access ()->GetLastRecordId ();
    const int type = job.GetRecord (position)->GetType ();
    char expected[200];
    std::snprintf (expected, sizeof expected,
                   "Error while trying to fix database pointers: \nInvalid reference to XML record "
                   "ID name=\"%s\" with value=\"0x000000a0\"\nrecord type = %03d at position "
                   "0x%08x",
                   c.names[0].c_str (), type, position.value);
    EXPECT_EQ (Failing (), expected);
  }
}

TEST_F (Repair, LeavesRecordsWithoutReferencesAlone) {
  // Each record that is rewritten costs a frame; the others none.
  const auto framesOf = [this] (int type) {
    TearDown ();
    std::filesystem::remove (folder.Host ("x.job"));
    SetUp ();
    auto record = CreateRecord (type);
    if (record->IsMeasurement ()) StorePoint ("0x10");
    Store ("0x11", std::move (record));
    job.Access ()->FlushToMedium ();
    const uint32_t before = job.Access ()->Journal ().GetAppendPosition ();
    control->RepairPointers ();
    job.Access ()->FlushToMedium ();
    return job.Access ()->Journal ().GetAppendPosition () - before;
  };
  for (int type = 1; type < DATABASE_AllRecords; type++) {
    SCOPED_TRACE (ClassName (type));
    // Carriers and points are told apart elsewhere; their bodies assert a name.
    if (type == DATABASE_ObservationRecord || type == DATABASE_LineRecord ||
        type == DATABASE_ArcRecord || type == DATABASE_TraverseHeaderRecord ||
        (type >= DATABASE_BoolActionRecord && type <= DATABASE_DescriptionsRecord) ||
        type == DATABASE_ForeignRecord)
      continue;
    const bool isReferring = std::any_of (std::begin (referring), std::end (referring),
                                          [type] (const Referring& c) { return c.type == type; });
    EXPECT_EQ (framesOf (type) > 0, isReferring);
  }
}

TEST_F (Repair, NumbersMayStandTwiceAndComeFromMeasurementsAndNotes) {
  const std::string point =
      "<DATABASE_PointRecord rec=\"db_Point\" ID=\"0x%\"><PointName>P</PointName>"
      "<Method>DBENTITY_Unknown</Method><SurveyMethod>DBENTITY_Fix</SurveyMethod>"
      "<Classification>DBENTITY_Normal</Classification></DATABASE_PointRecord>";
  const auto at = [&point] (const std::string& id) {
    std::string made = point;
    return made.replace (made.find ('%'), 1, id);
  };
  const auto refer = [] (const std::string& id) {
    return "<DATABASE_TraverseClosureRecord rec=\"db_TraverseClosure\" ID=\"0x99\"><TraversePtr>" +
           id + "</TraversePtr><Results>DBENTITY_Closed</Results></DATABASE_TraverseClosureRecord>";
  };
  const std::string grid = "<DATABASE_GridRecord rec=\"db_Grid\" ID=\"0x7\"/>";
  const std::string note = "<DATABASE_NoteRecord rec=\"db_Note\" ID=\"0x8\"/>";
  TearDown ();
  const auto resolved = [this] (const std::string& elements) {
    for (const std::string& told : Stored (1140, elements))
      if (told.starts_with ("db_TraverseClosure")) return told.substr (19, 14);
    return std::string ();
  };
  EXPECT_EQ (resolved (at ("5") + at ("5") + refer ("0x5")), "TraversePtr=#3");
  EXPECT_EQ (resolved (refer ("0x5") + at ("5")), "TraversePtr=#3");
  EXPECT_EQ (resolved (at ("5") + grid + refer ("0x7")), "TraversePtr=#2");
  EXPECT_EQ (resolved (note + refer ("0x8")), "TraversePtr=#2");
  EXPECT_EQ (resolved (at ("5") + refer ("")), "TraversePtr=#0");
  EXPECT_NE (Failure (1140, at ("5") + note + refer ("0x8")).find ("value=\"0x00000008\""),
             std::string::npos);
}

}  // namespace
}  // namespace clxml::testing
