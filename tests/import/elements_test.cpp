// Every element, every tag and every word, at versions on all sides of the format's changes.
// What an element's tags mean stands in elements.txt, one line for each element; the test writes
// the exchange files and the records to be expected out of it. Leans on importing and
// record_fields.
#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "Library/records/record_fields.h"
#include "import/conversion.h"
#include "import/importing.h"

namespace clxml::testing {
namespace {

// A tag of elements.txt, whose head tells how it is written.
struct Row {
  std::string tag;
  std::string kind;  // of a reader, or the name of a group
  std::string detail;
  std::string absent;
  bool hasDefault = false;
  bool isDefaultForEmpty = false;
  bool keeps = false;
  bool isMoved = false;
  std::string field;
  int from = 0;
  int below = 10000;

  bool Holds (int version) const { return version >= from && version < below; }
  bool MustBeThere () const {
    return (kind == "b" || kind == "e" || kind == "C" || kind == "L" || kind == "S") && !hasDefault;
  }
};
using Rows = std::vector<Row>;

struct Element {
  std::string name;
  std::string rec;
  int type = 0;
  Rows rows;
};

struct Table {
  std::map<std::string, Rows> groups;
  std::vector<Element> elements;
};

// Takes the part of the token from the mark on, and cuts it off.
bool Cut (std::string& token, char mark, std::string& part) {
  const std::size_t at = token.find (mark);
  if (at == std::string::npos) return false;
  part = token.substr (at + 1);
  token.resize (at);
  std::replace (part.begin (), part.end (), '~', ' ');
  return true;
}

Row RowOf (std::string token) {
  Row row;
  std::string versions;
  if (Cut (token, '@', versions)) {
    if (versions[0] != '-') row.from = std::stoi (versions);
    if (versions.back () != '-') row.below = std::stoi (versions.substr (versions.find ('-') + 1));
  }
  row.isMoved = Cut (token, '>', row.field);
  if (token[0] == '!') {  // a field that the element itself fills
    row.kind = "!";
    Cut (token, '=', row.absent);
    row.field = token.substr (1);
    return row;
  }
  if (token.back () == '!') row.isDefaultForEmpty = true, token.pop_back ();
  row.hasDefault = Cut (token, '=', row.absent);
  if (token.back () == '~') row.keeps = true, token.pop_back ();
  row.kind = token.substr (token.find (':') + 1);
  Cut (row.kind, '.', row.detail);
  row.tag = token.substr (0, token.find (':'));
  return row;
}

int TypeOf (const std::string& className) {
  for (int type = 0; type < DATABASE_AllRecords; type++)
    if (ClassName (static_cast<database_RecordType> (type)) == className) return type;
  ADD_FAILURE () << className;
  return 0;
}

const Table& TheTable () {
  static const Table table = [] {
    Table made;
    std::ifstream file (CLXML_SOURCE_DIR "/tests/import/elements.txt");
    std::string line;
    Rows* rows = nullptr;
    while (std::getline (file, line)) {
      std::istringstream tokens (line);
      std::string token;
      if (line.starts_with ('#')) continue;
      if (line.starts_with ('@')) {
        tokens >> token;
        rows = &made.groups[token.substr (1)];
      } else if (!line.starts_with (' ')) {
        Element& element = made.elements.emplace_back ();
        tokens >> element.name >> element.rec;
        std::string className = element.rec;
        const auto at = tokens.tellg ();
        if (!(tokens >> token) || !token.starts_with ("db_")) {
          tokens.clear ();
          tokens.seekg (at < 0 ? std::streamoff (line.size ()) : std::streamoff (at));
        } else {
          className = token;
        }
        element.type = TypeOf (className);
        rows = &element.rows;
      }
      while (tokens >> token) rows->push_back (RowOf (token));
    }
    return made;
  }();
  return table;
}

const std::map<std::string, const Enumeration*>& Enumerations () {
  static const std::map<std::string, const Enumeration*> all = [] {
    FieldLister lister;
    for (int type = 0; type < DATABASE_AllRecords; type++) CreateRecord (type)->Look (lister);
    return std::map<std::string, const Enumeration*> (lister.tables.begin (), lister.tables.end ());
  }();
  return all;
}

// A told record by its fields, in order; the class, with its note, comes first.
using Fields = std::vector<std::pair<std::string, std::string>>;

Fields Split (const std::string& told) {
  Fields fields{{"", ""}};
  for (std::size_t i = 0; i < told.size (); i++) {
    std::size_t end = i + 1;
    while (end < told.size () && (std::isalnum (told[end]) || told[end] == '_' || told[end] == '.'))
      end++;
    if (told[i] == ' ' && end > i + 1 && told[end] == '=') {
      fields.emplace_back (told.substr (i + 1, end - i - 1), "");
      i = end;
    } else {
      fields.back ().second += told[i];
    }
  }
  return fields;
}

// Those of a new record.
const Fields& NewFields (int type) {
  static std::map<int, Fields> all;
  const auto [place, isNew] = all.try_emplace (type);
  if (isNew) place->second = Split (Told (*CreateRecord (type)));
  return place->second;
}

std::string Joined (const Fields& fields) {
  std::string told = fields[0].second;
  for (std::size_t i = 1; i < fields.size (); i++)
    told += " " + fields[i].first + "=" + fields[i].second;
  return told;
}

int MostWords (const Rows& rows) {
  int most = 0;
  for (const Row& row : rows) {
    const auto group = TheTable ().groups.find (row.kind);
    if (group != TheTable ().groups.end ()) most = std::max (most, MostWords (group->second));
    const auto table = Enumerations ().find (row.detail);
    if (table != Enumerations ().end ())
      most = std::max (most, static_cast<int> (table->second->rows.size ()));
  }
  return most;
}

// How an element is written: with all its tags, with all of them empty, or with none; but what
// must be there is.
enum class Pass { Full, Empty, Absent };

// One reader's tag to be spoilt: by a text, or by leaving it out.
struct Spoilt {
  std::string path;
  const char* text = nullptr;
};

// What tests saw.
struct Seen {
  std::set<std::string> elements;
  std::set<std::string> tags;
  std::set<std::string> words;
};

constexpr int Targets = 8;  // records to refer to, numbered 0x101 on, the first records of the job

// One element and the record that is to come of it.
class Made {
 public:
  Made (const Element& element, int version, Pass pass, int round, Seen* seen = nullptr,
        const Spoilt& spoilt = {})
      : version (version),
        pass (pass),
        round (round),
        name (element.name),
        seen (seen),
        spoilt (spoilt),
        fields (NewFields (element.type)) {
    if (pass == Pass::Full) fields[0].second += " (n\r\n)";
    const std::string tags = Tags (element.rows, "", "", true);
    xml = "<" + name + " rec=\"" + element.rec + "\" ID=\"0x9\" TimeStamp=\"7\">" +
          (pass == Pass::Full ? "<Note>n</Note>" : "") + tags + "</" + name + ">";
    if (seen) seen->elements.insert (name);
  }
  std::string Expected () const { return Joined (fields); }

  std::string xml;

 private:
  std::string Tags (const Rows& rows, const std::string& path, const std::string& prefix,
                    bool isRead) {
    std::string xml;
    for (const Row& row : rows) {
      const bool isRowRead = isRead && row.Holds (version);
      if (row.kind == "!") {
        Expect (row.field, row.absent);
        continue;
      }
      const std::string at = row.tag.empty () ? path : path + row.tag;
      std::string field = row.isMoved ? row.field : row.tag;
      field = field.starts_with ('/') ? field.substr (1) : prefix + field;
      const auto group = TheTable ().groups.find (row.kind);
      if (group != TheTable ().groups.end ()) {
        if (pass == Pass::Absent && row.keeps) continue;
        const std::string below = row.isMoved && row.field.empty () ? prefix : field + ".";
        const std::string tags =
            Tags (group->second, row.tag.empty () ? path : at + "/", below, isRowRead);
        if (row.tag.empty ()) {
          xml += tags;
        } else if (pass != Pass::Absent || !tags.empty ()) {
          xml += "<" + row.tag + ">" + tags + "</" + row.tag + ">";
        }
        continue;
      }
      // Two rows may read one tag: it is written once.
      const auto [place, isNew] = numbers.emplace (at, static_cast<int> (numbers.size ()) + 1);
      Leaf leaf = LeafOf (row, place->second, isRowRead ? Value (field) : "");
      if (isNew && leaf.isThere) xml += Spoil (at, row.tag, leaf.xml);
      if (!isRowRead) continue;
      if (seen) seen->tags.insert (name + " " + at);
      if (!field.ends_with ('-')) Expect (field, leaf.told);
      if (row.kind == "C") Expect ("Deleted", "1");
    }
    return xml;
  }

  struct Leaf {
    std::string xml;  // the text, or the whole tags when it begins with a tag
    std::string told;
    bool isThere = true;
  };

  // k tells one tag from another; before is what a new record has in the field.
  Leaf LeafOf (const Row& row, int k, const std::string& before) {
    const char kind = row.kind[0];
    const std::string number = std::to_string (k);
    const bool isGiven =
        pass == Pass::Full || row.MustBeThere () ||
        (pass == Pass::Empty && !row.isDefaultForEmpty && (kind == 'b' || kind == 'e'));
    if (row.isDefaultForEmpty && pass != Pass::Full) return {"", row.absent, pass == Pass::Empty};
    if (isGiven) return Given (row, k, before);
    const bool isThere = pass == Pass::Empty;
    if (row.hasDefault && (!isThere || kind == 's')) {
      if (kind == 'b') return {"", Truth (row.absent == "true", before), isThere};
      return {"", row.absent, isThere};
    }
    switch (kind) {
      case 'd':
        return {"", "null", isThere};
      case 'x':
      case 'H':
        return {"", "#0", isThere};
      case 's':
      case 'c':
      case 'o':
        return {"", "", isThere};
      case 'D':
        return {"", "  ", isThere};
      case 'l':
        return {"", "[]", isThere};
      case 'w':
        return {"", Truth (false, before), isThere};
      case 'i':
        return {"", row.detail.empty () ? "0" : WordOf (row.detail, 0), isThere};
      default:
        return {"", "0", isThere};
    }
  }

  Leaf Given (const Row& row, int k, const std::string& before) {
    const std::string number = std::to_string (k);
    const bool bit = ((k >> (round % 6)) & 1) != 0;
    switch (row.kind[0]) {
      case 's':
      case 'S':
        return {"s" + number, "s" + number};
      case 'c':
        return {"c" + number + "\x1Fx", "c" + number + "\xC2\xB7x"};
      case 'd':
        return {number + ".25", number + ".25"};
      case 'i':
        return {number, row.detail.empty () ? number : WordOf (row.detail, k)};
      case 'j':
        return {round % 2 ? "0x" + Hex (k) : number, number};
      case 'k':
        return {(bit ? "-" : "") + number + ".75", (bit ? "-" : "") + number};
      case 'n':
        return {number, "2"};
      case 'x':
        return {"0x" + Hex (0x101 + k % Targets), "#" + std::to_string (2 + k % Targets)};
      case 'h':
        return {"0x" + Hex (k + 0xA00), std::to_string (k + 0xA00)};
      case 'H':
        return {"0x" + Hex (k + 0xA00), "#" + std::to_string (k + 0xA00)};
      case 'b':
        return {bit ? "tRue" : "false", Truth (bit, before)};
      case 'o':
        return {bit ? "true" : "FALSE", ""};
      case 'w':
        return {bit ? row.detail : "DBENTITY_Other", Truth (bit, before)};
      case 'D':
        return {std::string{'A', static_cast<char> ('a' + k % 26)},
                std::string{'A', static_cast<char> ('a' + k % 26)}};
      case 'l':
        return {"<" + row.tag + "><item>L</item><item>" + number + "</item></" + row.tag + ">",
                "[L;" + number + "]"};
      case 'C':
        return {"<Classification>Adjusted</Classification><Deleted>true</Deleted>", "Adjusted"};
      case 'L':
        return {"true", "1"};
      case 'e':
      case 'f':
        return Word (row, k, before);
    }
    ADD_FAILURE () << row.kind;
    return {};
  }

  Leaf Word (const Row& row, int k, const std::string& before) {
    const Enumeration& table = *Enumerations ().at (row.detail);
    const auto& rows = table.rows;
    const std::size_t at = static_cast<std::size_t> (k + round);
    const Enumerator& word = rows[at % rows.size ()];
    if (seen && !before.empty ()) seen->words.insert (row.detail + " " + std::string (word.name));
    if (row.kind == "e") return {std::string (word.name), WordOf (row.detail, word.number)};
    const Enumerator& second = rows[(at + 3) % rows.size ()];
    return {std::string (word.name) + " " + std::string (second.name),
            std::to_string (word.number | second.number)};
  }

  static std::string WordOf (const std::string& table, int number) {
    return FindEnumText (*Enumerations ().at (table), number);
  }
  static std::string Hex (int number) {
    std::ostringstream text;
    text << std::hex << number;
    return text.str ();
  }
  // As the field has it: some truths are stored as bytes.
  static std::string Truth (bool is, const std::string& before) {
    if (before == "0" || before == "1") return is ? "1" : "0";
    return is ? "true" : "false";
  }

  std::string Spoil (const std::string& at, const std::string& tag, const std::string& text) const {
    if (at == spoilt.path) {
      if (!spoilt.text) return "";
      return "<" + tag + ">" + spoilt.text + "</" + tag + ">";
    }
    return text.starts_with ('<') ? text : "<" + tag + ">" + text + "</" + tag + ">";
  }

  std::string Value (const std::string& field) const {
    for (const auto& [known, value] : fields)
      if (known == field) return value;
    return "";
  }
  void Expect (const std::string& field, const std::string& value) {
    for (auto& [known, old] : fields) {
      if (known != field) continue;
      old = value;
      return;
    }
    ADD_FAILURE () << name << " has no field " << field;
  }

  const int version;
  const Pass pass;
  const int round;
  const std::string name;
  Seen* const seen;
  const Spoilt spoilt;
  std::map<std::string, int> numbers;
  Fields fields;
};

class Elements : public ImportTest {
 protected:
  static std::string ToReferTo () {
    std::string xml;
    for (int i = 0; i < Targets; i++)
      xml += "<DATABASE_StartRoundsRecord rec=\"db_StartRounds\" ID=\"0x10" +
             std::to_string (i + 1) + "\"/>";
    return xml;
  }
  // What needs an open point gets one; what opens an entity is closed again.
  static std::string InPlace (const Element& element, const std::string& xml) {
    const std::string point =
        "<DATABASE_PointRecord rec=\"db_Point\" ID=\"0x8\"><PointName>P</PointName>"
        "<Method>DBENTITY_Unknown</Method><SurveyMethod>DBENTITY_Fix</SurveyMethod>"
        "<Classification>Normal</Classification><Deleted>false</Deleted></DATABASE_PointRecord>";
    const std::string end = "<DATABASE_EndEntityRecord rec=\"db_EndEntity\" ID=\"0x7\"/>";
    if (NeedsPoint (element)) return point + xml + end;
    return OpensEntity (element) ? xml + end : xml;
  }
  static bool IsMeasurement (const Element& element) {
    return CreateRecord (element.type)->IsMeasurement ();
  }
  static bool NeedsPoint (const Element& element) {
    return IsMeasurement (element) || element.type == DATABASE_DistanceOffsetRecord;
  }
  static bool OpensEntity (const Element& element) {
    return element.type >= DATABASE_ObservationRecord && element.type <= DATABASE_ArcRecord;
  }

  // One file of all elements, each in all passes.
  void ImportAll (int version, Seen& seen) {
    struct Want {
      std::size_t index;
      bool isMeasurement;
      std::string what;
      std::string record;
    };
    std::vector<Want> wanted;
    std::string xml = ToReferTo ();
    std::size_t index = Targets;
    for (const Element& element : TheTable ().elements) {
      // Six tell all truth values apart; the newest version's show every word too.
      const int rounds = version == 1140 ? std::max (6, MostWords (element.rows)) : 6;
      for (int round = -2; round < rounds; round++) {
        const Pass pass = round == -2 ? Pass::Absent : round == -1 ? Pass::Empty : Pass::Full;
        const Made made (element, version, pass, std::max (round, 0), &seen);
        xml += "\n" + InPlace (element, made.xml);
        if (element.name == "DATABASE_RoadConstructionOffsets" && version < 1120) continue;
        const std::size_t at = index + (element.type == DATABASE_DistanceOffsetRecord ? 1 : 0);
        wanted.push_back ({at, IsMeasurement (element),
                           element.name + " in round " + std::to_string (round), made.Expected ()});
        index += element.type == DATABASE_DistanceOffsetRecord      ? 3
                 : OpensEntity (element) || IsMeasurement (element) ? 2
                                                                    : 1;
      }
    }
    const std::vector<std::string> stored = Stored (version, xml);
    ASSERT_EQ (stored.size (), index);
    for (const Want& want : wanted) {
      std::string record = stored[want.index];
      if (want.isMeasurement) record.erase (0, record.find (" <- ") + 4);
      EXPECT_EQ (record, want.record) << want.what;
    }
    EXPECT_EQ (hearing.TakeLog (), std::vector<std::string> ());
  }
};

TEST_F (Elements, MakeTheirRecordsInEveryVersion) {
  Seen seen;
  for (const int version : {1090, 1110, 1125, 1135, 1140}) {
    SCOPED_TRACE (version);
    ImportAll (version, seen);
  }
  // These are no records of fields; their own tests tell what they do.
  for (const char* name : {"Note", "TimeStamp", "FeatureAttribData"})
    seen.elements.insert (std::string ("DATABASE_") + name + "Record");
  std::set<std::string> known;
  for (const auto family : AllConversions ())
    for (const Conversion& row : family)
      if (family.data () != RoadConversions ().data ()) known.insert (std::string (row.element));
  EXPECT_EQ (known.size (), 136u);
  EXPECT_EQ (seen.elements, known);

  std::set<std::string> carried;
  for (const std::string& word : seen.words) carried.insert (word.substr (0, word.find (' ')));
  std::size_t words = 0;
  for (const std::string& name : carried) words += Enumerations ().at (name)->rows.size ();
  EXPECT_EQ (seen.words.size (), words);
  EXPECT_EQ (seen.tags.size (), 1171u);
}

// A tag with a word or a truth value is refused when it is missing without a default; with one,
// when it is empty or holds anything else.
TEST_F (Elements, RefuseWhatTheyCannotRead) {
  int refusals = 0;
  const auto refuse = [&] (const Element& element, int version, const std::string& path,
                           const Row& row, const char* text) {
    const Made made (element, version, Pass::Full, 1, nullptr, {path, text});
    const std::string word = row.kind == "b" || row.kind == "o" ? "boolean" : row.detail;
    EXPECT_EQ (Failure (version, ToReferTo () + InPlace (element, made.xml)),
               "XML read error: \nInvalid " + word + " name=\"" + row.tag + "\" with value=\"" +
                   (text ? text : "") + "\"\n" + element.name + " ID=\"0x9\"");
    refusals++;
  };
  const std::function<void (const Element&, const Rows&, const std::string&, int)> walk =
      [&] (const Element& element, const Rows& rows, const std::string& path, int newest) {
        for (const Row& row : rows) {
          const int version = row.Holds (newest) ? newest : row.below - 5;
          const auto group = TheTable ().groups.find (row.kind);
          if (group != TheTable ().groups.end ()) {
            walk (element, group->second, row.tag.empty () ? path : path + row.tag + "/", version);
            continue;
          }
          const std::string at = path + row.tag;
          const bool isRefused = row.kind == "b" || row.kind == "e";
          if (isRefused && !row.hasDefault) {
            refuse (element, version, at, row, nullptr);
          } else if (isRefused || row.kind == "f" || row.kind == "o") {
            refuse (element, version, at, row, "zzz");
            if (isRefused && !row.isDefaultForEmpty) refuse (element, version, at, row, "");
          }
        }
      };
  for (const Element& element : TheTable ().elements) walk (element, element.rows, "", 1140);
  EXPECT_EQ (refusals, 497);
}

TEST_F (Elements, TellOddFormsApart) {
  const auto element = [] (const std::string& word, const std::string& rec,
                           const std::string& tags) {
    return "<DATABASE_" + word + " rec=\"db_" + rec + "\" ID=\"0x9\">" + tags + "</DATABASE_" +
           word + ">";
  };
  const auto list = [&] (const std::string& count, const std::string& items) {
    return element (
        "StakeoutListRecord", "StakeoutList",
        "<FilenameCount>" + count + "</FilenameCount><Filenames>" + items + "</Filenames>");
  };
  const auto road = [&] (const std::string& tags) {
    return element ("RoadDesignRecord", "RoadDesign", "<BatterIsFill>false</BatterIsFill>" + tags);
  };
  const auto section = [&] (const std::string& tags) {
    return element ("CrossSectionReport", "CrossSectionReport", tags);
  };
  const std::string two = "<item index=\"1\">b</item><item index=\"0\">a</item>";
  const std::string sides =
      "<LeftSide><NumberOfNodes>2</NumberOfNodes><Other/><Node><Code>k\x1F</Code><Offset>-3</"
      "Offset>"
      "<Elevation>9</Elevation></Node><Node/><Node/></LeftSide><RightSide><Batter><Code>b</Code>"
      "<CutGrade>1</CutGrade><FillGrade>2</FillGrade><DitchWidth/></Batter></RightSide>";
  const struct {
    const char* name;
    int version;
    std::string xml;
    std::vector<std::string> parts;  // of the record
  } cases[] = {
      {"a station's raw height is its height",
       1140,
       element ("StationRecord", "TotalStation", "<TheodoliteHt>1.5</TheodoliteHt>"),
       {"RawTheodoliteHt=1.5 "}},
      {"a target's too",
       1140,
       element ("Target1Record", "TotalTarget1", "<TargetHeight>1.5</TargetHeight>"),
       {"Name=Target 1 ", "RawTargetHeight=1.5 "}},
      {"unless it is there",
       1140,
       element ("TargetRecord", "Target",
                "<TargetHeight>1.5</TargetHeight><RawTargetHeight/><Name>N</Name>"),
       {"Name=N ", "RawTargetHeight=null "}},
      {"a road of the old kind",
       1110,
       road ("<GenioStakeout>true</GenioStakeout>"),
       {"RoadType=DBENTITY_GenioRoad "}},
      {"its word has one form",
       1110,
       road ("<GenioStakeout>TRUE</GenioStakeout>"),
       {"RoadType=DBENTITY_NorvathRoad "}},
      {"and counts in old files only",
       1120,
       road ("<GenioStakeout>true</GenioStakeout>"),
       {"RoadType=DBENTITY_NorvathRoad "}},
      {"names in order of their slots", 1140, list ("2", two), {"Filenames=[a;b"}},
      {"no more of them than counted", 1140, list ("0x1", two), {"Filenames=[;b"}},
      {"and no more than there are", 1140, list ("4294967295", two), {"Filenames=[a;b"}},
      {"a section without sides", 1140, section (""), {"HasLeftSide=false HasRightSide=false"}},
      {"a section with both",
       1140,
       section (sides),
       {"HasLeftSide=true HasRightSide=true", "NumberOfNodes=2",
        "Code=k\xC2\xB7 Offset=-3 Elevation=9", "Code= Offset=null Elevation=null",
        "NumberOfNodes=0", "Code=b CutGrade=1 FillGrade=2 DitchWidth=null"}},
      {"fewer nodes than counted",
       1140,
       section ("<LeftSide><NumberOfNodes>1000000</NumberOfNodes><Node/></LeftSide>"),
       {"NumberOfNodes=1"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE (c.name);
    const std::vector<std::string> stored = Stored (c.version, c.xml);
    ASSERT_EQ (stored.size (), 1u);
    for (const std::string& part : c.parts)
      EXPECT_NE (stored[0].find (part), std::string::npos) << part << "\nin " << stored[0];
  }
  EXPECT_TRUE (Stored (1110, "<DATABASE_RoadConstructionOffsets/>").empty ());

  const auto refused = [] (const std::string& fault, const std::string& name) {
    return "XML read error: \nInvalid " + fault + "\nDATABASE_" + name + " ID=\"0x9\"";
  };
  for (const char* index : {"256", "-1", "2147483648"})
    EXPECT_EQ (Failure (1140, list ("1", "<item index=\"" + std::string (index) + "\">x</item>")),
               refused ("slot name=\"index\" with value=\"" + std::string (index) + "\"",
                        "StakeoutListRecord"));
  for (const char* count : {"-1", "0xFFFFFFFF", "1000001"})
    EXPECT_EQ (Failure (1140, section ("<RightSide><NumberOfNodes>" + std::string (count) +
                                       "</NumberOfNodes></RightSide>")),
               refused ("number of nodes name=\"NumberOfNodes\" with value=\"" +
                            std::string (count) + "\"",
                        "CrossSectionReport"));
}

}  // namespace
}  // namespace clxml::testing
