// What the tests of the import stand on: exchange files made of strings, and jobs as text.
// A record is told in one line, every field of it by name, so that a table of cases is element in,
// line out. Leans on hearing and the exported functions.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Library/job/dbJob.h"
#include "clxmli.h"
#include "support/hearing.h"

namespace clxml::testing {

/// A record as text: its class, its note in brackets if it has one, then `Field=value` for each of
/// its fields in file order, groups as `Group.Field`. Doubles are "null" or %g, enumerations their
/// word, lists `Name=[entry;entry]`. An observation's measurement follows behind " <- ".
std::string Told (const dbRecord_Class& record);

/// A test that imports.
class ImportTest : public LibraryTest {
 protected:
  /// Writes a file into the test's folder.
  void Write (const std::string& name, const std::string& bytes) const;
  bool Exists (const std::string& name) const;
  std::string Bytes (const std::string& name) const;

  /// Imports the file "x.xml" to the job "x.job" through the exported function. Every call of the
  /// callback goes to `progress`, if it is set, and its percentage to `percents`.
  uint32_t ImportBytes (const std::string& bytes);
  /// The same of a whole file around these elements; a job element with the name "Job" comes first.
  uint32_t ImportElements (int version, const std::string& elements);
  /// Imports elements and tells the records behind the job's header. Fails when the import does.
  std::vector<std::string> Stored (int version, const std::string& elements);
  /// The text of the failure of an import of elements, as it was logged. Fails when it succeeds, or
  /// when a job is left.
  std::string Failure (int version, const std::string& elements);
  /// The records of the job "x.job", the header first.
  std::vector<std::string> Job ();

  std::function<uint32_t (uint32_t)> progress;
  std::vector<uint32_t> percents;
};

/// An exchange file around elements.
std::string Exchange (const std::string& version, const std::string& elements);

}  // namespace clxml::testing
