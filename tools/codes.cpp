// clxml codes: a feature code library, listed, written from JSON, compared with a job.
// Uses the feature code library, codesjson, codescheck and CLI11.
#include <clxmli.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "Library/codes/fclfile.h"
#include "codescheck.h"
#include "codesjson.h"
#include "common.h"
#include "hostfile.h"
#include "roadtext.h"

namespace clxml::tool {
namespace {

struct CodesOptions {
  std::string file;
  std::string from;
  std::string job;
  bool json = false;
  bool force = false;
};

/// Exit statuses of this command beside the shared ones.
enum CodesStatus : int {
  CODES_NotAJob = 1,     ///< --check: the job is not to be opened as one
  CODES_NotRead = 2,     ///< the library has a status other than 0
  CODES_NotFitting = 3,  ///< --check: something of the job does not fit the library
  CODES_Exists = IMPORT_CannotCreateJob,  ///< --from: FILE exists already
};

std::string Meaning (featureCode_Status status, const falFormat_Library& library) {
  switch (status) {
    case FEATURECODE_CannotCreate:
      return "the file cannot be created";
    case FEATURECODE_CannotOpen:
      return "the file cannot be opened";
    case FEATURECODE_ReadFailed:
      return "a record lies behind the end of the file, or the records take more than its size";
    case FEATURECODE_WriteFailed:
      return "the file cannot be written";
    case FEATURECODE_SeekFailed:
      return "a record has no offset, or an attribute has no valid type";
    case FEATURECODE_NoMemory:
      return "out of memory";
    case FEATURECODE_WrongVersion:
      return "not a library, or not of a format that is read: format " +
             std::to_string (library.GetFormatVersion ()) + ", layout " +
             std::to_string (library.LayoutVersion);
    case FEATURECODE_Ok:
      break;
  }
  return "clean";
}

// The last failure of a system call, in brackets.
std::string Cause (const Session& session) {
  const std::string& cause = session.ear.LastFileError ();
  return cause.empty () ? "" : " (" + cause + ")";
}

featureCode_Status LoadLibrary (const std::string& path, falFormat_Library& library) {
  std::string device;
  try {
    device = DevicePath (path, CODES_NotRead);
  } catch (const Refusal&) {
    return FEATURECODE_CannotOpen;  // a name that no file of the library can have
  }
  return library.Load (device.c_str ());
}

std::string Padded (std::string text, std::size_t width) {
  // Bytes that continue a UTF-8 sequence take no column.
  for (const char c : std::string (text))
    if ((static_cast<unsigned char> (c) & 0xC0) == 0x80) width++;
  if (text.size () < width) text.resize (width, ' ');
  return text;
}

// What a listing says of an attribute besides type and name.
struct AttributeDetails {
  std::string operator() (const fclfile_NumericalAttribute& a) const {
    std::string text = "numbers ";
    AppendShortest (text, a.Number1);
    text += ", ";
    AppendShortest (text, a.Number2);
    text += ", ";
    AppendShortest (text, a.Number3);
    return text + "; option " + std::to_string (a.NumberOption) + ", mark " +
           std::to_string (a.NumberMark);
  }
  std::string operator() (const fclfile_TextAttribute& a) const { return Option (a.TextOption); }
  std::string operator() (const fclfile_MenuAttribute& a) const {
    std::string text;
    for (int i = 0; i < a.EntryCount (); i++) {
      text += (i ? " | " : "") + CleanText (a.Entries[i]);
      if (a.HasDefault && a.DefaultIndex == i) text += " (default)";
    }
    return text.empty () ? "no entries" : text;
  }
  std::string operator() (const fclfile_DateAttribute& a) const {
    return Option (a.DateOption) + (a.DateFlag ? ", flag" : "");
  }
  std::string operator() (const fclfile_TimeAttribute& a) const {
    return a.TimeFlag1 ? a.TimeFlag2 ? "flags 1 and 2" : "flag 1" : a.TimeFlag2 ? "flag 2" : "";
  }
  std::string operator() (const fclfile_FileAttribute& a) const { return Option (a.FileOption); }
  std::string operator() (const fclfile_SeparatorAttribute&) const { return ""; }

 private:
  static std::string Option (uint16_t option) { return "option " + std::to_string (option); }
};

std::string FeatureListing (const fclfile_Feature& feature) {
  std::string text = Padded (CleanText (feature.Code), 22) + CleanText (feature.Description);
  if (feature.Kind == 1)
    text += "  (kind 1, option " + std::to_string (feature.KindOption) + ")";
  else if (feature.Kind == 2)
    text += "  (kind 2, variant " + std::to_string (feature.KindVariant) + ")";
  text += '\n';
  const fclfile_Attribute* attribute = nullptr;
  for (int32_t i = 0; feature.GetAttribute (i, &attribute); i++) {
    std::string line = "  " + Padded (std::string (AttributeWord (attribute->GetType ())), 10) +
                       Padded (CleanText (attribute->Name), 22) + "usage " +
                       std::to_string (attribute->Usage);
    fclfile_VisitType (attribute->GetType (), [&]<class A> (A*) {
      const std::string details = AttributeDetails () (static_cast<const A&> (*attribute));
      if (!details.empty ()) line += "; " + details;
    });
    text += line + '\n';
  }
  return text;
}

void PrintListing (const std::string& path, const falFormat_Library& library) {
  Print ("file      " + path + "\nname      " + CleanText (library.GetLibraryName ()) +
         "\ntext      " + CleanText (library.LibraryText) + "\nformat    " +
         std::to_string (library.GetFormatVersion ()) + ", layout " +
         std::to_string (library.LayoutVersion) + ", header option " +
         std::to_string (library.HeaderOption) + ", header value " +
         std::to_string (library.HeaderValue) + "\nfeatures  " + std::to_string (library.Count ()) +
         "\n");
  for (int32_t i = 0; i < library.Count (); i++) Print ("\n" + FeatureListing (*library.At (i)));
}

int RunShow (const Session& session, const CodesOptions& options) {
  falFormat_Library library;
  const featureCode_Status status = LoadLibrary (options.file, library);
  if (options.json) {
    std::string text;
    AppendLibrary (text, options.file, status, library);
    Print (text);
  } else if (status == FEATURECODE_Ok) {
    PrintListing (options.file, library);
  }
  if (status == FEATURECODE_Ok) return STATUS_Clean;
  Say ("error: " + options.file + ": " + Meaning (status, library) + Cause (session));
  return CODES_NotRead;
}

// All bytes of a file, or of standard input for "-".
std::string ReadAll (const std::string& path) {
  constexpr std::size_t most = std::size_t{1} << 30;
  const bool isStandard = path == "-";
  std::FILE* file = isStandard ? stdin : std::fopen (path.c_str (), "rb");
  if (!file) throw Refusal{STATUS_Input, path + ": " + host_Reason (errno)};
  std::string bytes;
  std::vector<char> piece (1 << 16);
  while (const std::size_t n = std::fread (piece.data (), 1, piece.size (), file)) {
    bytes.append (piece.data (), n);
    if (bytes.size () > most) break;
  }
  const int error = std::ferror (file) ? errno : 0;
  if (!isStandard) std::fclose (file);
  if (error) throw Refusal{STATUS_Input, path + ": " + host_Reason (error)};
  if (bytes.size () > most) throw Refusal{STATUS_Input, path + ": more than 1 GiB"};
  return bytes;
}

int RunFrom (const Session& session, const CodesOptions& options) {
  const std::string device = DevicePath (options.file, STATUS_Usage);
  if (host_IsSame (options.from, options.file))
    throw Refusal{STATUS_Usage, "the JSON text and the library must be two files"};
  if (host_Stands (options.file) && !options.force)
    throw Refusal{CODES_Exists, options.file + " exists already; --force replaces it"};
  falFormat_Library library;
  std::vector<std::string> warnings;
  const std::string source = options.from == "-" ? "standard input" : options.from;
  ReadLibrary (source, ReadAll (options.from), library, warnings);
  for (const std::string& warning : warnings) Say ("warning: " + source + ": " + warning);
  const featureCode_Status status = library.Save (device.c_str ());
  if (status != FEATURECODE_Ok)
    throw Refusal{STATUS_Output, options.file + ": " + Meaning (status, library) + Cause (session)};
  return STATUS_Clean;
}

int RunCheck (const Session& session, const CodesOptions& options) {
  falFormat_Library library;
  const featureCode_Status status = LoadLibrary (options.file, library);
  if (status != FEATURECODE_Ok)
    throw Refusal{CODES_NotRead, options.file + ": " + Meaning (status, library) + Cause (session)};
  const OpenedJob job (options.job);
  job.MustBeOpen ();
  if (job.status == JOBOPEN_Corrupt) throw Refusal{CODES_NotRead, job.path + ": " + job.Meaning ()};
  const std::vector<CodeFinding> findings = CheckCodes (library, job.access);
  if (options.json)
    Print (FindingsJson (options.file, options.job, findings));
  else
    Print (findings.empty () ? "every code and attribute of the job fits the library\n"
                             : FindingsText (findings));
  if (!findings.empty ()) return CODES_NotFitting;
  return STATUS_Clean;
}

int RunCodes (const Session& session, const CodesOptions& options) {
  if (options.force && options.from.empty ())
    throw Refusal{STATUS_Usage, "--force is for --from, which writes a file"};
  if (!options.from.empty () && (options.json || !options.job.empty ()))
    throw Refusal{STATUS_Usage, "--from writes a library: neither --json nor --check go with it"};
  if (!options.from.empty ()) return RunFrom (session, options);
  return options.job.empty () ? RunShow (session, options) : RunCheck (session, options);
}

}  // namespace

void AddCodes (CLI::App& app, Session& session) {
  const auto options = std::make_shared<CodesOptions> ();
  CLI::App* command =
      app.add_subcommand ("codes", "List, write and compare a feature code library");
  command->add_option ("FILE", options->file, "The library file; it is only read, but for --from")
      ->required ();
  command->add_flag ("--json", options->json, "Print one JSON object");
  command
      ->add_option ("--from", options->from, "Write FILE from such an object; - for standard input")
      ->type_name ("JSON");
  command->add_flag ("--force", options->force, "Replace FILE if it exists");
  command
      ->add_option ("--check", options->job,
                    "List the codes of a job that the library does not have, and the attributes "
                    "that do not fit")
      ->type_name ("JOB");
  command->footer (
      "Exit status: 0 clean, 2 not read as a library; with --check 1 not to be opened as a job,\n"
      "2 damaged, 3 something does not fit; with --from 5 FILE exists already, 65 the JSON text\n"
      "is not a library, 74 FILE could not be written.\n"
      "Example: clxml codes site.fal --json >site.json\n"
      "         clxml codes --from site.json new.fal && clxml codes new.fal --check lot7.job");
  command->callback ([&session, options] {
    session.run = [&session, options] { return RunCodes (session, *options); };
  });
}

}  // namespace clxml::tool
