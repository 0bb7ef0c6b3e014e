// The attributes of a feature code, between memory and file.
// A record of 29 bytes and what its type adds, little-endian:
//   0   2  type          2   2  usage         4  21  name         25   4  offset of the next one
// number   29  8 x 3 numbers, 53 1 option, 54 2 mark             56 bytes
// text     29  2 option                                          31
// menu     29  2 count of entries, 31 2 has default, 33 2 default index, 35 21 each entry
// date     29  2 option, 31 2 flag                               33
// time     29  2 flag, 31 2 flag                                 33
// file     29  2 option                                          31
// separator                                                      29
// Uses fclbytes.
#include "Library/codes/fclattributes.h"

#include <utility>

#include "Library/records/dbVisitors.h"

namespace clxml {
namespace {

constexpr int TypeSize = 2;
constexpr int MenuHeadSize = 35;
constexpr uint16_t NoDefault = 0xFFFF;

// The fields of fixed width: how many bytes, reading, writing, comparing.
template <class T>
constexpr int widthOf = std::is_same_v<T, bool> ? 2 : static_cast<int> (sizeof (T));

void Get (const Buffer& in, int& offset, double& field) { field = in.GetDouble (offset); }
void Get (const Buffer& in, int& offset, uint8_t& field) { field = in.GetUInt8 (offset); }
void Get (const Buffer& in, int& offset, uint16_t& field) { field = in.GetUInt16 (offset); }
void Get (const Buffer& in, int& offset, bool& field) { field = in.GetUInt16 (offset) != 0; }

void Put (OutBuffer& out, double field) { out.PutDouble (field); }
void Put (OutBuffer& out, uint8_t field) { out.PutUInt8 (field); }
void Put (OutBuffer& out, uint16_t field) { out.PutUInt16 (field); }
void Put (OutBuffer& out, bool field) { out.PutUInt16 (field ? 1 : 0); }

template <class T>
bool IsSame (T a, T b) {
  return a == b;
}
bool IsSame (double a, double b) { return ComparableBits (a) == ComparableBits (b); }

// Writes one record, which is whole by now.
bool PutRecord (fclfile_Writer& file, const OutBuffer& buffer, int32_t bytesOnDisk) {
  Assert (buffer.Length () == bytesOnDisk, "buffer.Length() == this->BytesOnDisk ()");
  return file.Write (buffer);
}

}  // namespace

bool fclfile_Attribute::IsEqualHead (const fclfile_Attribute& other) const {
  return GetType () == other.GetType () && Name == other.Name && Usage == other.Usage;
}

void fclfile_Attribute::GetHead (const Buffer& buffer, int& offset, uint32_t& next) {
  Usage = buffer.GetUInt16 (offset);
  Name = fclfile_GetText (buffer, offset, FCLFILE_NameSize);
  next = buffer.GetUInt32 (offset);
}

void fclfile_Attribute::PutHead (OutBuffer& out, uint32_t next) const {
  out.PutUInt16 (GetType ());
  out.PutUInt16 (static_cast<uint16_t> (Usage));
  fclfile_PutText (out, Name, FCLFILE_NameSize);
  out.PutUInt32 (next);
}

template <class Self, AttributeType type>
bool fclfile_AttributeOf<Self, type>::IsEqual (const fclfile_Attribute& other) const {
  if (!IsEqualHead (other)) return false;
  const auto mine = Self::Fields (static_cast<const Self&> (*this));
  const auto others = Self::Fields (static_cast<const Self&> (other));
  return [&]<std::size_t... i> (std::index_sequence<i...>) {
    return (IsSame (std::get<i> (mine), std::get<i> (others)) && ...);
  }
  (std::make_index_sequence<std::tuple_size_v<decltype (mine)>> ());
}

template <class Self, AttributeType type>
int32_t fclfile_AttributeOf<Self, type>::BytesOnDisk () const {
  return std::apply (
      [] (const auto&... field) {
        return (FCLFILE_AttributeHeadSize + ... + widthOf<std::decay_t<decltype (field)>>);
      },
      Self::Fields (static_cast<const Self&> (*this)));
}

template <class Self, AttributeType type>
bool fclfile_AttributeOf<Self, type>::Load (fclfile_Reader& file, uint32_t& next) {
  Buffer buffer (ENDIAN_Little);
  if (!file.Read (buffer, BytesOnDisk () - TypeSize)) return false;
  int offset = 0;
  GetHead (buffer, offset, next);
  std::apply ([&] (auto&... field) { (Get (buffer, offset, field), ...); },
              Self::Fields (static_cast<Self&> (*this)));
  Assert (offset == BytesOnDisk () - TypeSize, "offset == this->BytesOnDisk () - 2");
  return true;
}

template <class Self, AttributeType type>
bool fclfile_AttributeOf<Self, type>::Save (fclfile_Writer& file, uint32_t next) const {
  OutBuffer buffer (ENDIAN_Little);
  PutHead (buffer, next);
  std::apply ([&] (const auto&... field) { (Put (buffer, field), ...); },
              Self::Fields (static_cast<const Self&> (*this)));
  return PutRecord (file, buffer, BytesOnDisk ());
}

template class fclfile_AttributeOf<fclfile_NumericalAttribute, ATTRIBUTE_Number>;
template class fclfile_AttributeOf<fclfile_TextAttribute, ATTRIBUTE_Text>;
template class fclfile_AttributeOf<fclfile_DateAttribute, ATTRIBUTE_Date>;
template class fclfile_AttributeOf<fclfile_TimeAttribute, ATTRIBUTE_Time>;
template class fclfile_AttributeOf<fclfile_FileAttribute, ATTRIBUTE_File>;
template class fclfile_AttributeOf<fclfile_SeparatorAttribute, ATTRIBUTE_Separator>;

bool fclfile_MenuAttribute::IsEqual (const fclfile_Attribute& other) const {
  if (!IsEqualHead (other)) return false;
  const auto& menu = static_cast<const fclfile_MenuAttribute&> (other);
  return HasDefault == menu.HasDefault && DefaultIndex == menu.DefaultIndex &&
         Entries == menu.Entries;
}

int32_t fclfile_MenuAttribute::BytesOnDisk () const {
  return MenuHeadSize + FCLFILE_NameSize * EntryCount ();
}

bool fclfile_MenuAttribute::Load (fclfile_Reader& file, uint32_t& next) {
  const int bufferSize = MenuHeadSize - TypeSize;
  Buffer buffer (ENDIAN_Little);
  if (!file.Read (buffer, bufferSize)) return false;
  int offset = 0;
  GetHead (buffer, offset, next);
  const int count = buffer.GetUInt16 (offset);
  HasDefault = buffer.GetUInt16 (offset) != 0;
  DefaultIndex = buffer.GetUInt16 (offset);
  Assert (offset == bufferSize, "offset == bufferSize");
  DefaultEntry = "";
  Entries.Clear ();
  if (!HasDefault) DefaultIndex = NoDefault;
  if (count == 0) return true;

  const int entriesSize = FCLFILE_NameSize * count;
  if (!file.Read (buffer, entriesSize)) return false;
  offset = 0;
  Entries.Reserve (count);
  for (int i = 0; i < count; i++) Entries.Add (fclfile_GetText (buffer, offset, FCLFILE_NameSize));
  Assert (offset == entriesSize, "offset == bufferSize");
  if (HasDefault && DefaultIndex < count) DefaultEntry = Entries[DefaultIndex];
  return true;
}

bool fclfile_MenuAttribute::Save (fclfile_Writer& file, uint32_t next) const {
  OutBuffer buffer (ENDIAN_Little);
  PutHead (buffer, next);
  Put (buffer, static_cast<uint16_t> (EntryCount ()));
  Put (buffer, HasDefault);
  Put (buffer, HasDefault ? DefaultIndex : NoDefault);
  for (int i = 0; i < EntryCount (); i++) fclfile_PutText (buffer, Entries[i], FCLFILE_NameSize);
  return PutRecord (file, buffer, BytesOnDisk ());
}

std::unique_ptr<fclfile_Attribute> fclfile_MakeAttribute (uint16_t type) {
  std::unique_ptr<fclfile_Attribute> made;
  fclfile_VisitType (type, [&]<class A> (A*) { made = std::make_unique<A> (); });
  return made;
}

std::unique_ptr<fclfile_Attribute> fclfile_CopyAttribute (const fclfile_Attribute& other) {
  std::unique_ptr<fclfile_Attribute> made;
  fclfile_VisitType (other.GetType (), [&]<class A> (A*) {
    made = std::make_unique<A> (static_cast<const A&> (other));
  });
  return made;
}

}  // namespace clxml
