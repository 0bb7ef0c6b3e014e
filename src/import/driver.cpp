// One import: the order of its steps, and what is left behind when one of them fails.
// A thrown Str ends here and nowhere else. Leans on the conversion frame and the exchange reader.
#include "import/driver.h"

#include <memory>

#include "Kernel/text.h"
#include "Library/job/dbJob.h"
#include "Library/xml/xmlparser.h"
#include "import/fieldreader.h"
#include "import/roadcapture.h"
#include "import/writejob.h"
#include "platform/file.h"

namespace clxml {

namespace {

// The newest version of the exchange format that the conversions know.
constexpr int32_t NewestVersion = 1140;

// The state of one import. Runs once.
class Import {
 public:
  Import (const Str& xmlPath, const Str& jobPath, clxmli_Progress progress)
      : xmlPath (xmlPath), jobPath (jobPath), progress (progress) {}

  ImportResult Run ();

 private:
  // How far the elements came.
  enum class Elements { Done, Cancelled, NoJob };

  void OpenExchangeFile ();
  Elements ReadElements ();
  bool CreateJob (const xml_element& element);
  void WriteRoads ();
  void Finish ();
  void Remove () noexcept;
  bool GoOn (uint32_t percent) const {
    return !progress || (progress (percent) & 0xFFu) != 0;  // no more than a byte is an answer
  }
  [[noreturn]] void BadInput (const Str& text) {
    result = IMPORT_BadInput;
    throw text;
  }

  const Str& xmlPath;
  const Str& jobPath;
  const clxmli_Progress progress;
  ImportResult result = IMPORT_Ok;
  xml_parser reader;
  int32_t version = 0;
  JobDatabase job;
  bool isJobCreated = false;
  std::unique_ptr<WriteJobControl> control;  // from then on
};

void Import::OpenExchangeFile () {
  if (!reader.Open (xmlPath)) BadInput (xmlPath + " does not exist or is not an XML file");
  const xml_element* root = reader.EnterLevel (1);
  if (root) version = text_ToInt32 (root->AttributeValue ("version"));
  if (version > NewestVersion) {
    const Str line = "Import: exchange format version " + text_Format ("%d", version) +
                     " is newer than 1140; read as 1140";
    Environment::Get ()->LogMessage (line.Data ());
  }
}

// Takes the job element: name, time and note of the job. False when the file cannot be made.
bool Import::CreateJob (const xml_element& element) {
  db_JobHeader& header = job.JobHeader ();
  header.TimeStamp = ReadTimeStamp (element);
  FieldReader (&element, version).Note (header.Note);
  if (!job.Create (jobPath, Str (element.value))) return false;
  isJobCreated = true;
  job.Access ()->SetSingleActionMode ();
  control = std::make_unique<WriteJobControl> (job, version);
  return true;
}

// The hot loop: one top-level element at a time, in storage that goes round.
Import::Elements Import::ReadElements () {
  xml_tree tree;
  while (const xml_element* element = reader.NextElement (tree)) {
    if (control) {
      control->Dispatch (*element);
    } else if (element->name == "DATABASE_JobHeaderRecord" ||
               element->name == "DATABASE_JobRecord") {
      if (!CreateJob (*element)) return Elements::NoJob;
    }
    tree.Clear ();
    if (!GoOn (reader.PercentDone ())) return Elements::Cancelled;
  }
  return Elements::Done;
}

// Road files go beside the job, in the folder that a backslash names.
void Import::WriteRoads () {
  const int slash = jobPath.ReverseFind ('\\');
  RoadCapture& capture = control->Capture ();
  capture.SetFolder (slash < jobPath.Length () ? jobPath.Left (slash + 1) : Str ());
  capture.Spare (jobPath);
  capture.Spare (xmlPath);
  capture.WriteRoads ();
}

// Everything behind the last element.
void Import::Finish () {
  if (control) WriteRoads ();
  reader.LeaveLevel (1);
  if (!reader.Close ()) BadInput ("end of file was not processed");
  if (!control)
    BadInput ("could not find element named DATABASE_JobHeaderRecord or DATABASE_JobRecord");
  control->LogUnfinished ();
  control->RepairPointers ();
  if (!job.Close ()) throw Str ("the job file could not be written to its end: ") + jobPath;
  GoOn (100);
}

// Leaves nothing of this import at the job's path; what it did not create is not touched. What goes
// wrong here adds nothing to the failure that is being answered: each step is taken all the same.
void Import::Remove () noexcept {
  if (reader.IsOpen ()) reader.Close ();
  if (!isJobCreated) return;
  try {
    job.Close ();
  } catch (...) {
    Environment::Get ()->LogMessage ("Import: the job that failed could not be closed");
  }
  try {
    file_Class (jobPath).DeleteCreated ();
  } catch (...) {
    Environment::Get ()->LogMessage ("Import: the job that failed could not be deleted");
  }
}

ImportResult Import::Run () {
  try {
    OpenExchangeFile ();
    switch (ReadElements ()) {
      case Elements::NoJob:
        reader.Close ();
        return IMPORT_CannotCreateJob;
      case Elements::Cancelled:
        Remove ();
        return IMPORT_Cancelled;
      case Elements::Done:
        Finish ();
    }
  } catch (const Str& text) {
    Remove ();
    // The last line of a failed import is its reason, whatever closing the job had to say.
    Environment::Get ()->LogMessage (text.Data ());
    if (result == IMPORT_Ok) result = IMPORT_Failed;
  } catch (...) {  // not ours to answer, but no half a job stays
    Remove ();
    throw;
  }
  return result;
}

}  // namespace

ImportResult ImportFile (const Str& xmlPath, const Str& jobPath, clxmli_Progress progress) {
  return Import (xmlPath, jobPath, progress).Run ();
}

}  // namespace clxml
