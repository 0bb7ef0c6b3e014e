// The feature codes of a job beside a feature code library.
// Uses the feature code library and the records of a job.
#pragma once

#include <string>
#include <vector>

#include "Library/codes/fclfile.h"
#include "Library/job/dbaccess.h"

namespace clxml::tool {

/// What does not fit: a code, or one attribute of a code.
enum class CodeFault {
  Code,       ///< the library has no such code
  Attribute,  ///< the code asks for no attribute of that name
  Type,       ///< the attribute is defined with another type
  Entry,      ///< the text is not an entry of the menu
  Missing,    ///< the code asks for an attribute that is not there
};
/// "code", "attribute", "type", "entry", "missing".
const char* CodeFaultWord (CodeFault fault);

/// One thing of one record that does not fit the library.
struct CodeFinding {
  CodeFault fault;
  DBID id;
  std::string point;      ///< the name of the point, line or arc
  std::string code;       ///< with its suffix
  std::string attribute;  ///< empty for an unknown code
  std::string detail;     ///< the value or the type at fault; empty where there is none
};

/// Compares the feature codes of all records that are not deleted, in record order. A code is
/// looked up with its suffix first, then without. Names and entries are compared as the file can
/// hold them. Separators hold no value and are never missing.
std::vector<CodeFinding> CheckCodes (const falFormat_Library& library, const dbAccess& job);

/// The findings for a reader: codes with their points, then attributes. Empty without findings.
std::string FindingsText (const std::vector<CodeFinding>& findings);
/// The findings as one JSON object with `library`, `job`, `findings`.
std::string FindingsJson (const std::string& library, const std::string& job,
                          const std::vector<CodeFinding>& findings);

}  // namespace clxml::tool
