// A feature code library as JSON text, both ways.
// Uses the feature code library and nlohmann-json.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Library/codes/fclfile.h"

namespace clxml::tool {

/// "number", "text", "menu", "date", "time", "file" or "separator".
std::string_view AttributeWord (AttributeType type);

/// Appends a number in the shortest form that reads back bit for bit; null when it is not finite.
void AppendShortest (std::string& out, double value);

/// Appends a library as one JSON object, one feature a line: `file`, `status`, the fields of the
/// header, then `features`.
void AppendLibrary (std::string& out, std::string_view file, featureCode_Status status,
                    const falFormat_Library& library);

/// Reads such an object into an empty library. Keys that are left out have the values of a new
/// object; `code` and `type` are required. Refuses with STATUS_Input, naming the source and the
/// place, whatever is not one such object or would not come back from the file as it is here. Texts
/// that the file cannot hold as they are get a warning each and are otherwise taken.
void ReadLibrary (const std::string& source, std::string_view json, falFormat_Library& library,
                  std::vector<std::string>& warnings);

}  // namespace clxml::tool
