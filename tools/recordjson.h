// Records as JSON text.
// One object for a record, with its fields by their names, written straight from the walk over the
// fields. Leans on dbRecord.
#pragma once

#include <string>
#include <string_view>

namespace clxml {
class dbRecord_Class;
}

namespace clxml::tool {

/// Appends a record as one JSON object without line ends: `type`, `id`, `time`, `note`, then for a
/// record with features `features`, `Description1` and `Description2`, then the fields in file
/// order, then an observation's `measurement` (null when it has none).
/// The null value is null, an infinity or not-a-number a string ("inf", "-inf", "nan"), an
/// enumeration its word or the number where it has none, a flag set the list of its words or the
/// number when a bit has none, raw bytes hexadecimal digits.
void AppendRecord (std::string& out, const dbRecord_Class& record);

/// Appends a number: the shortest digits that read back the same, null for the null value, a string
/// ("inf", "-inf", "nan") for one that is not finite.
void AppendDouble (std::string& out, double value);

/// Appends a text as a JSON string; each part of it that is no UTF-8 becomes U+FFFD.
void AppendText (std::string& out, std::string_view text);

}  // namespace clxml::tool
