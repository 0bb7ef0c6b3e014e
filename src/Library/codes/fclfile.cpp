// The feature code library file. All numbers are little-endian; texts have a fixed width, are in
// the legacy 8-bit set and end at their first zero byte or at their width. An offset counts from
// the start of the file; 0xFFFFFFFF means "no such record".
//
// Header, 98 bytes at offset 0:
//   0   1  format version, 3 or 4      1   1  header option     2   2  number of features
//   4  25  library name               29   2  header value     31  61  library text
//  92   2  layout version, 4          94   4  offset of the first feature
// Feature, 78 bytes:
//   0   2  number of attributes        2   4  flags             6  21  code
//  27  43  description                70   4  offset of the first attribute
//  74   4  offset of the next feature
// Attribute: see fclattributes.cpp.
//
// Reading follows the offsets and relies on the counts for where to stop. Records may lie anywhere
// and may overlap; the bytes of all reads together must not exceed the file's size, which is tested
// before each read. Writing lays the records out in order, each feature before its attributes.
#include "Library/codes/fclfile.h"

#include <new>
#include <utility>

#include "Library/codes/fclbytes.h"
#include "platform/file.h"

namespace clxml {
namespace {

constexpr int HeaderSize = 98;
constexpr int FeatureSize = 78;
constexpr uint16_t ReadableLayout = 4;
constexpr uint64_t MaximumFileSize = 0xFFFFFFFF;

bool IsReadableFormat (uint8_t version) { return version == 3 || version == 4; }

// A feature as its record has it, without the attributes.
struct FeatureRecord {
  int numberAttributes = 0;
  uint32_t firstAttribute = FCLFILE_NoOffset;
  uint32_t nextFeature = FCLFILE_NoOffset;
};

bool ReadFeature (fclfile_Reader& reader, fclfile_Feature& feature, FeatureRecord& record) {
  Buffer buffer (ENDIAN_Little);
  if (!reader.Read (buffer, FeatureSize)) return false;
  int offset = 0;
  record.numberAttributes = buffer.GetUInt16 (offset);
  feature.SetFlags (buffer.GetUInt32 (offset));
  feature.Code = fclfile_GetCode (buffer, offset, FCLFILE_CodeSize);
  feature.Description = fclfile_GetText (buffer, offset, FCLFILE_DescriptionSize);
  record.firstAttribute = buffer.GetUInt32 (offset);
  record.nextFeature = buffer.GetUInt32 (offset);
  Assert (offset == FeatureSize, "offset == this->BytesOnDisk ()");
  return true;
}

bool WriteFeature (fclfile_Writer& writer, const fclfile_Feature& feature,
                   const FeatureRecord& record) {
  OutBuffer buffer (ENDIAN_Little);
  buffer.PutUInt16 (static_cast<uint16_t> (record.numberAttributes));
  buffer.PutUInt32 (feature.GetFlags ());
  fclfile_PutCode (buffer, feature.Code, FCLFILE_CodeSize);
  fclfile_PutText (buffer, feature.Description, FCLFILE_DescriptionSize);
  buffer.PutUInt32 (record.firstAttribute);
  buffer.PutUInt32 (record.nextFeature);
  Assert (buffer.Length () == FeatureSize, "buffer.Length() == this->BytesOnDisk ()");
  return writer.Write (buffer);
}

// Reads the attribute at an offset, which becomes that of the next one.
featureCode_Status ReadAttribute (fclfile_Reader& reader, uint32_t& offset,
                                  std::unique_ptr<fclfile_Attribute>& attribute) {
  if (!reader.Seek (offset)) return FEATURECODE_SeekFailed;
  constexpr int bufferSize = 2;
  Buffer buffer (ENDIAN_Little);
  if (!reader.Read (buffer, bufferSize)) return FEATURECODE_ReadFailed;
  int at = 0;
  attribute = fclfile_MakeAttribute (buffer.GetUInt16 (at));
  Assert (at == bufferSize, "offset == bufferSize");
  if (!attribute) return FEATURECODE_SeekFailed;
  return attribute->Load (reader, offset) ? FEATURECODE_Ok : FEATURECODE_ReadFailed;
}

const fclfile_Attribute& AttributeAt (const fclfile_Feature& feature, int32_t i) {
  const fclfile_Attribute* attribute = nullptr;
  feature.GetAttribute (i, &attribute);
  return *attribute;
}

// The bytes of a feature and its attributes; 0 when a count does not fit its field.
uint64_t SizeOf (const fclfile_Feature& feature) {
  if (feature.NumberAttributes () > FCLFILE_MaximumCount) return 0;
  uint64_t size = FeatureSize;
  for (int32_t i = 0; i < feature.NumberAttributes (); i++) {
    const fclfile_Attribute& attribute = AttributeAt (feature, i);
    if (attribute.GetType () == ATTRIBUTE_Menu &&
        static_cast<const fclfile_MenuAttribute&> (attribute).EntryCount () > FCLFILE_MaximumCount)
      return 0;
    size += static_cast<uint64_t> (attribute.BytesOnDisk ());
  }
  return size;
}

bool FitsFile (const featureCode_Library& library) {
  if (library.Count () > FCLFILE_MaximumCount) return false;
  uint64_t size = HeaderSize;
  for (int32_t i = 0; i < library.Count (); i++) {
    const uint64_t more = SizeOf (*library.At (i));
    if (more == 0) return false;
    size += more;
  }
  return size <= MaximumFileSize;
}

// Creates an empty file with a name of its own in the folder of the target.
bool CreateBeside (const file_Class& target, file_Class& file) {
  constexpr int attempts = 10;  // another process may take the free name first
  for (int i = 0; i < attempts; i++) {
    file = file_Class (target.Folder, "_CL", "tmp");
    if (!file.MakeUnique ()) return false;
    if (file.Create (file.GetWholeName ())) return true;
    if (!file.Exists ()) return false;
  }
  return false;
}

}  // namespace

bool falFormat_Library::IsEqual (const featureCode_Library& other) const {
  const auto* same = dynamic_cast<const falFormat_Library*> (&other);
  return same && HeaderValue == same->HeaderValue && LibraryText == same->LibraryText &&
         LibraryName == same->LibraryName && HeaderOption == same->HeaderOption &&
         LayoutVersion == same->LayoutVersion && IsEqualBase (other);
}

featureCode_Status falFormat_Library::Load (const Str& path) {
  Clear ();
  file_Class file;
  if (!file.Open (path, FILE_Read)) return FEATURECODE_CannotOpen;
  featureCode_Status status = FEATURECODE_Ok;
  try {
    status = Read (file);
  } catch (const std::bad_alloc&) {
    status = FEATURECODE_NoMemory;
  }
  file.Close ();
  if (status != FEATURECODE_Ok) Clear ();
  return status;
}

featureCode_Status falFormat_Library::Read (file_Class& file) {
  fclfile_Reader reader (file);
  Buffer buffer (ENDIAN_Little);
  if (!reader.Read (buffer, HeaderSize)) return FEATURECODE_ReadFailed;
  int offset = 0;
  FormatVersion = buffer.GetUInt8 (offset);
  HeaderOption = buffer.GetUInt8 (offset);
  const int numberFeatures = buffer.GetUInt16 (offset);
  LibraryName = fclfile_GetText (buffer, offset, FCLFILE_LibraryNameSize);
  HeaderValue = buffer.GetUInt16 (offset);
  LibraryText = fclfile_GetText (buffer, offset, FCLFILE_LibraryTextSize);
  LayoutVersion = buffer.GetUInt16 (offset);
  FeatureRecord record;
  record.nextFeature = buffer.GetUInt32 (offset);
  Assert (offset == HeaderSize, "offset == this->BytesOnDisk ()");
  if (!IsReadableFormat (FormatVersion) || LayoutVersion != ReadableLayout)
    return FEATURECODE_WrongVersion;

  // Features are made as they are read: a count alone allocates nothing.
  for (int i = 0; i < numberFeatures; i++) {
    auto feature = std::make_unique<fclfile_Feature> ();
    if (!reader.Seek (record.nextFeature)) return FEATURECODE_SeekFailed;
    if (!ReadFeature (reader, *feature, record)) return FEATURECODE_ReadFailed;
    for (int j = 0; j < record.numberAttributes; j++) {
      std::unique_ptr<fclfile_Attribute> attribute;
      const featureCode_Status status = ReadAttribute (reader, record.firstAttribute, attribute);
      if (status != FEATURECODE_Ok) return status;
      feature->AddAttribute (std::move (attribute));
    }
    Append (std::move (feature));
  }
  return FEATURECODE_Ok;
}

featureCode_Status falFormat_Library::Save (const Str& path) const {
  if (!FitsFile (*this)) return FEATURECODE_WriteFailed;
  const file_Class target (path);
  file_Class file;
  if (target.IsReadOnly () || !CreateBeside (target, file)) return FEATURECODE_CannotCreate;
  featureCode_Status status = FEATURECODE_Ok;
  try {
    status = Write (file) ? FEATURECODE_Ok : FEATURECODE_WriteFailed;
  } catch (const std::bad_alloc&) {
    status = FEATURECODE_NoMemory;
  }
  file.Close ();
  if (status == FEATURECODE_Ok && !file.Replace (target)) status = FEATURECODE_CannotCreate;
  if (status != FEATURECODE_Ok) file.Delete ();
  return status;
}

bool falFormat_Library::Write (file_Class& file) const {
  fclfile_Writer writer (file);
  OutBuffer buffer (ENDIAN_Little);
  buffer.PutUInt8 (FormatVersion);
  buffer.PutUInt8 (HeaderOption);
  buffer.PutUInt16 (static_cast<uint16_t> (Count ()));
  fclfile_PutText (buffer, LibraryName, FCLFILE_LibraryNameSize);
  buffer.PutUInt16 (HeaderValue);
  fclfile_PutText (buffer, LibraryText, FCLFILE_LibraryTextSize);
  buffer.PutUInt16 (LayoutVersion);
  buffer.PutUInt32 (Count () > 0 ? HeaderSize : FCLFILE_NoOffset);
  Assert (buffer.Length () == HeaderSize, "buffer.Length() == this->BytesOnDisk ()");
  if (!writer.Write (buffer)) return false;

  uint32_t place = HeaderSize;  // of the feature, then of its attributes
  for (int32_t i = 0; i < Count (); i++) {
    const fclfile_Feature& feature = *At (i);
    const uint32_t behind = place + static_cast<uint32_t> (SizeOf (feature));
    FeatureRecord record;
    record.numberAttributes = feature.NumberAttributes ();
    place += FeatureSize;
    if (record.numberAttributes > 0) record.firstAttribute = place;
    if (i + 1 < Count ()) record.nextFeature = behind;
    if (!WriteFeature (writer, feature, record)) return false;
    for (int32_t j = 0; j < record.numberAttributes; j++) {
      const fclfile_Attribute& attribute = AttributeAt (feature, j);
      place += static_cast<uint32_t> (attribute.BytesOnDisk ());
      const bool isLast = j + 1 == record.numberAttributes;
      if (!attribute.Save (writer, isLast ? FCLFILE_NoOffset : place)) return false;
    }
  }
  return writer.Flush () && file.Flush ();
}

}  // namespace clxml
