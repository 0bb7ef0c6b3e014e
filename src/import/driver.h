// One import, from an exchange file to a job file.
// Fixes the order of the steps, progress and cancelling, and what is removed on failure; the
// conversion itself lies below. Leans on clxmli.h, the exchange reader and dbJob.
#pragma once

#include <cstdint>

#include "clxmli.h"
#include "str.h"

namespace clxml {

/// Imports the exchange file at xmlPath into a new job file at jobPath, both in device form;
/// progress may be null. See ImportCLXMLFile, of which this is the whole. The text of an error goes
/// to Environment::LogMessage.
ImportResult ImportFile (const Str& xmlPath, const Str& jobPath, clxmli_Progress progress);

}  // namespace clxml
