// The header of job, antenna and style files.
//
// Offset Width Field
//      0    43 Name, padded with zero bytes, no terminator beyond the padding
//     43     1 FileType   1 journal, 2 antenna file, 3 style file
//     44     1 Reserved   0
//     45     1 MajorVersion
//     46     1 MinorVersion
//     47     1 Revision
//
// A file that does not start with the seven letters "Norvath" is of an older form, without a name:
// the five numbers stand at offsets 0 to 4.
#include "Library/job/filehdr.h"

#include <string>

#include "Library/base/buffer.h"
#include "platform/file.h"

namespace clxml {
namespace {

constexpr int nameSize = 43;
constexpr std::string_view maker = "Norvath";

}  // namespace

FileHeader::FileHeader (int32_t fileType) : FileType (fileType) {
  switch (fileType) {
    case FILEHDR_Journal:
      Name = "Norvath Chartwork Logbook Journal";
      break;
    case FILEHDR_Antenna:
      Name = "Norvath Chartwork Logbook Antenna";
      break;
    case FILEHDR_Style:
      Name = "Norvath Chartwork Logbook Style";
      break;
    default:
      Assert (false, "Bad file type");
  }
}

bool FileHeader::Read (file_Class& file) {
  Buffer buffer (FILEHDR_SizeOnDisk, ENDIAN_Little);
  uint32_t got = 0;
  file.Seek (0);
  if (!file.Read (buffer.Data (), FILEHDR_SizeOnDisk, &got) || got < FILEHDR_SizeOnDisk)
    return false;
  int offset = 0;
  const Str name = buffer.GetString (offset, nameSize);
  if (name.View ().starts_with (maker)) {
    Name = name;
  } else {
    Name = "";
    offset = 0;
  }
  FileType = buffer.GetUInt8 (offset);
  Reserved = buffer.GetUInt8 (offset);
  MajorVersion = buffer.GetUInt8 (offset);
  MinorVersion = buffer.GetUInt8 (offset);
  Revision = buffer.GetUInt8 (offset);
  return true;
}

bool FileHeader::Write (file_Class& file) const {
  OutBuffer buffer (FILEHDR_SizeOnDisk, ENDIAN_Little);
  buffer.PutString (Name.View (), nameSize, 0);
  for (const int32_t value : {FileType, Reserved, MajorVersion, MinorVersion, Revision})
    buffer.PutUInt8 (static_cast<uint8_t> (value));
  file.Seek (0);
  return file.Write (buffer.Data (), FILEHDR_SizeOnDisk);
}

Str FileHeader::Stamp () const {
  Str stamp;
  for (const int32_t value : {MajorVersion, MinorVersion, Revision}) {
    if (!stamp.IsEmpty ()) stamp += '.';
    stamp += std::string_view (std::to_string (value));
  }
  return stamp;
}

}  // namespace clxml
