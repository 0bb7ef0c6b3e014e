// What the commands share: the ear, printing, and opening a job for reading.
// Standard output carries what was asked for, standard error everything else. Leans on dbJob,
// filehdr, file and clxmli.h.
#include "common.h"

#include <clxmli.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <vector>

#include "Library/job/dbjournal.h"
#include "Library/job/filehdr.h"
#include "Library/records/dbPoints.h"
#include "hostfile.h"

namespace clxml::tool {
namespace {

std::string WithSlashes (std::string text) {
  for (char& c : text)
    if (c == '\\') c = '/';
  return text;
}

}  // namespace

void Ear::LogMessage (const char* text) {
  if (verbose) Say ("log: " + std::string (text));
  if (_Listener) _Listener (text);
}

void Ear::ReportFileError (const char* source, int line, int error, const char* file) {
  _FileError = WithSlashes (file) + ": " + host_Reason (error);
  if (verbose)
    Say ("file error: " + _FileError + " (" + source + ":" + std::to_string (line) + ")");
}

void Ear::AssertFailed (const char* condition, const char* source, int line) {
  _Assertions[{std::string (source) + ":" + std::to_string (line), condition}]++;
}

void Ear::PrintAssertions () {
  for (const auto& [key, count] : _Assertions)
    Say ("warning: assertion failed: " + key.second + " (" + key.first + ")" +
         (count > 1 ? ", " + std::to_string (count) + " times" : std::string ()));
  _Assertions.clear ();
}

void Say (std::string_view text) {
  std::string line = "clxml: ";
  line += text;
  line += '\n';
  std::fwrite (line.data (), 1, line.size (), stderr);
}

std::string DevicePath (const std::string& hostPath, int status) {
  // A name that the device would read as a drive or as its standard output is one in this folder.
  const bool isPlain = hostPath.find ('/') == std::string::npos;
  const std::string named =
      isPlain && (hostPath.find (':') == 1 || hostPath == "STDOUT$") ? "./" + hostPath : hostPath;
  std::vector<char> device (named.size () + 1);
  if (hostPath.empty () || !clxmli_DevicePath (named.c_str (), device.data (), device.size ()))
    throw Refusal{status, "\"" + hostPath + "\": a path must not be empty or hold a backslash"};
  return device.data ();
}

void Print (std::string_view text) {
  if (std::fwrite (text.data (), 1, text.size (), stdout) != text.size ())
    throw Refusal{STATUS_Output, "cannot write to standard output"};
}

void FinishPrinting () {
  if (std::fflush (stdout) != 0 || std::ferror (stdout))
    throw Refusal{STATUS_Output, "cannot write to standard output"};
}

OpenedJob::OpenedJob (const std::string& hostPath) : path (hostPath) {
  const Str device (DevicePath (hostPath, STATUS_NotAJob).c_str ());
  if (!host_Stands (hostPath)) throw Refusal{STATUS_NotAJob, hostPath + ": no such file"};
  if (!host_IsRegular (hostPath)) return;
  std::error_code ignored;
  size = std::filesystem::file_size (hostPath, ignored);
  if (ignored) size = 0;

  access.Open (device, false);
  status = access.GetOpenStatus ();
  FileHeader header (FILEHDR_Journal);
  if (dbJournal::ReadHeader (device, header)) {
    kind = header.Name.Data ();
    // A file that is none of the system's has some bytes where the stamp would stand.
    if (!kind.empty () || header == FileHeader (FILEHDR_Journal)) stamp = header.Stamp ().Data ();
  }
  if (!IsOpen ()) {
    lastGood = status == JOBOPEN_NotAJob && header == FileHeader (FILEHDR_Journal)
                   ? FILEHDR_SizeOnDisk
                   : 0;
    return;
  }
  lastGood = access.Journal ().GetLastAppendPosition ();
  if (const auto* first = db_JobHeader::From (access.GetRecord (access.GetFirstRecordId ())))
    job = first->JobName.Data ();
}

OpenedJob::~OpenedJob () {
  if (access.IsOpen ()) access.Close ();
}

int OpenedJob::ExitStatus () const {
  switch (status) {
    case JOBOPEN_Ok:
      return STATUS_Clean;
    case JOBOPEN_Corrupt:
      return STATUS_Damaged;
    default:
      return STATUS_NotAJob;
  }
}

std::string OpenedJob::Meaning () const {
  switch (status) {
    case JOBOPEN_Ok:
      return "clean";
    case JOBOPEN_CannotOpen:
      if (!host_IsRegular (path)) return "no regular file";
      if (const int error = host_MayRead (path)) return "cannot be opened: " + host_Reason (error);
      return "too short for a job's header";
    case JOBOPEN_WrongVersion:
      return "a job of another format than " +
             std::string (FileHeader (FILEHDR_Journal).Stamp ().Data ());
    case JOBOPEN_NotAJob:
      return "not a job, or a job without any record";
    case JOBOPEN_Corrupt:
      return "damaged: records were read up to a frame that cannot be believed";
  }
  return "";
}

void OpenedJob::MustBeOpen () const {
  if (!IsOpen ()) throw Refusal{STATUS_NotAJob, path + ": " + Meaning ()};
}

}  // namespace clxml::tool
