// The feature codes of a job beside a feature code library: comparing and showing.
// Codes are found through a table, so that the time grows with the job alone. Uses the library,
// dbaccess and recordjson.
#include "codescheck.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include "Library/records/dbPoints.h"
#include "codesjson.h"
#include "recordjson.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

std::string UpperCase (const Str& text) {
  Str upper = text;
  upper.MakeUpper ();
  return upper.Data ();
}

const dbRecordWithFeatures_Class* WithFeatures (const dbRecord_Class* record) {
  if (!record) return nullptr;
  switch (record->GetType ()) {
    case DATABASE_ObservationRecord:
    case DATABASE_LineRecord:
    case DATABASE_ArcRecord:
      return static_cast<const dbRecordWithFeatures_Class*> (record);
    default:
      return nullptr;
  }
}

class Checker {
 public:
  explicit Checker (const falFormat_Library& library) {
    for (int32_t i = 0; i < library.Count (); i++)
      _Features.try_emplace (UpperCase (library.At (i)->Code), library.At (i));
  }

  void Record (const dbRecordWithFeatures_Class& record) {
    for (int i = 0; i < record.Features.Count (); i++) {
      const Feature& feature = record.Features.At (i);
      const Str whole = feature.Code + feature.Suffix;
      _Head = {CodeFault::Code, record.RecordId, record.GetName (), whole.Data (), "", ""};
      const fclfile_Feature* definition = Definition (whole);
      if (!definition) definition = Definition (feature.Code);
      if (definition)
        AttributesOf (feature, *definition);
      else
        Report (CodeFault::Code, "", "");
    }
  }

  std::vector<CodeFinding> findings;

 private:
  const fclfile_Feature* Definition (const Str& code) const {
    const auto found = _Features.find (UpperCase (fclfile_StoredText (code, FCLFILE_CodeSize)));
    return found == _Features.end () ? nullptr : found->second;
  }

  void AttributesOf (const Feature& feature, const fclfile_Feature& definition) {
    for (int i = 0; i < feature.Count (); i++) Compare (feature.At (i), definition);
    const fclfile_Attribute* defined = nullptr;
    for (int32_t i = 0; definition.GetAttribute (i, &defined); i++) {
      if (defined->GetType () == ATTRIBUTE_Separator) continue;
      bool isThere = false;
      for (int j = 0; j < feature.Count () && !isThere; j++)
        isThere = fclfile_StoredText (feature.At (j).Name, FCLFILE_NameSize) == defined->Name;
      if (!isThere) Report (CodeFault::Missing, defined->Name, "");
    }
  }

  void Compare (const Attribute& attribute, const fclfile_Feature& definition) {
    const Str name = fclfile_StoredText (attribute.Name, FCLFILE_NameSize);
    const fclfile_Attribute* defined = nullptr;
    const fclfile_Attribute* sameName = nullptr;
    for (int32_t i = 0; definition.GetAttribute (i, &defined); i++) {
      if (defined->Name != name) continue;
      sameName = defined;
      if (defined->GetType () == attribute.Type) break;
    }
    if (!sameName) return Report (CodeFault::Attribute, attribute.Name, "");
    if (sameName->GetType () != attribute.Type) {
      const std::string type = attribute.Type <= ATTRIBUTE_Separator
                                   ? std::string (AttributeWord (AttributeType{attribute.Type}))
                                   : "type " + std::to_string (attribute.Type);
      return Report (CodeFault::Type, attribute.Name,
                     type + " in place of " + std::string (AttributeWord (sameName->GetType ())));
    }
    if (attribute.Type != ATTRIBUTE_Menu) return;
    const auto& menu = static_cast<const fclfile_MenuAttribute&> (*sameName);
    if (menu.Entries.Find (fclfile_StoredText (attribute.Text, FCLFILE_NameSize)) < 0)
      Report (CodeFault::Entry, attribute.Name, attribute.Text.Data ());
  }

  void Report (CodeFault fault, const Str& attribute, const std::string& detail) {
    findings.push_back (_Head);
    findings.back ().fault = fault;
    findings.back ().attribute = attribute.Data ();
    findings.back ().detail = detail;
  }

  std::unordered_map<std::string, const fclfile_Feature*> _Features;  // by code in upper case
  CodeFinding _Head;
};

std::string Clean (const std::string& text) { return CleanText (Str (text.c_str ())); }

std::string Sentence (const CodeFinding& finding) {
  switch (finding.fault) {
    case CodeFault::Attribute:
      return "is not in the library";
    case CodeFault::Type:
      return "is a " + finding.detail;
    case CodeFault::Entry:
      return "\"" + Clean (finding.detail) + "\" is not an entry of the menu";
    case CodeFault::Missing:
      return "is missing";
    case CodeFault::Code:
      break;
  }
  return "";
}

}  // namespace

const char* CodeFaultWord (CodeFault fault) {
  static constexpr const char* words[] = {"code", "attribute", "type", "entry", "missing"};
  return words[static_cast<int> (fault)];
}

std::vector<CodeFinding> CheckCodes (const falFormat_Library& library, const dbAccess& job) {
  Checker checker (library);
  for (DBID id = job.GetFirstRecordId (); id != NODBID; id = job.GetNextRecordId (id)) {
    const dbRecordWithFeatures_Class* record = WithFeatures (job.GetRecord (id));
    if (record && !record->IsDeleted ()) checker.Record (*record);
  }
  return std::move (checker.findings);
}

std::string FindingsText (const std::vector<CodeFinding>& findings) {
  std::map<std::string, std::vector<const CodeFinding*>> unknown;
  std::string attributes;
  for (const CodeFinding& finding : findings) {
    if (finding.fault == CodeFault::Code)
      unknown[finding.code].push_back (&finding);
    else
      attributes += "  " + Clean (finding.point) + "  " + Clean (finding.code) + "  " +
                    Clean (finding.attribute) + ": " + Sentence (finding) + "\n";
  }
  std::string text;
  if (!unknown.empty ()) text += "codes that are not in the library:\n";
  for (const auto& [code, places] : unknown) {
    text += "  " + Clean (code) + "  at ";
    for (std::size_t i = 0; i < places.size (); i++)
      text += (i ? ", " : "") + Clean (places[i]->point);
    text += "\n";
  }
  if (!attributes.empty ())
    text += "attributes that do not fit the library (point, code, attribute):\n" + attributes;
  return text;
}

std::string FindingsJson (const std::string& library, const std::string& job,
                          const std::vector<CodeFinding>& findings) {
  std::string out = "{\"library\":";
  AppendText (out, library);
  out += ",\"job\":";
  AppendText (out, job);
  out += ",\"findings\":[";
  const char* separator = "\n";
  for (const CodeFinding& finding : findings) {
    out += std::exchange (separator, ",\n");
    out += "{\"fault\":\"";
    out += CodeFaultWord (finding.fault);
    out += "\",\"id\":" + std::to_string (finding.id.value) + ",\"point\":";
    AppendText (out, finding.point);
    out += ",\"code\":";
    AppendText (out, finding.code);
    out += ",\"attribute\":";
    AppendText (out, finding.attribute);
    out += ",\"detail\":";
    AppendText (out, finding.detail);
    out += "}";
  }
  out += findings.empty () ? "]}\n" : "\n]}\n";
  return out;
}

}  // namespace clxml::tool
