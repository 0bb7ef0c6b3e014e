// Files: names, opening and closing, reading and writing.
// The object keeps position and logical size, so that reading and writing are one positioned system
// call each. Leans on folder for the way to the host, on clock for time stamps, on os.
#include "platform/file.h"

#include <algorithm>
#include <cstring>

#include "Kernel/clock.h"
#include "numerics/maths.h"
#include "platform/os.h"

namespace clxml {

namespace {

constexpr int32_t LineBufferSize = 8192;
constexpr uint32_t MarkerSize = sizeof FILE_ScrambleMarker;
constexpr uint64_t LargestSize = 0xFFFFFFFF;
constexpr char StandardOutputName[] = "STDOUT$";

/// The generator of scrambled files after n steps, by squaring: at most 16 rounds.
uint16_t Generator (uint32_t n) {
  uint32_t factor = 25173;  // of one step, then two, four ...
  uint32_t offset = 13849;
  uint32_t x = FILE_ScrambleSeed;
  for (n %= 65536; n != 0; n /= 2) {  // its period is 65536
    if (n % 2 != 0) x = (factor * x + offset) % 65536;
    offset = (factor * offset + offset) % 65536;
    factor = (factor * factor) % 65536;
  }
  return static_cast<uint16_t> (x);
}

}  // namespace

void file_Scramble (void* bytes, std::size_t n, uint32_t offset) {
  auto* const text = static_cast<unsigned char*> (bytes);
  uint32_t x = Generator (offset);
  for (std::size_t i = 0; i < n; ++i) {
    x = (25173 * x + 13849) % 65536;
    text[i] = static_cast<unsigned char> (text[i] ^ (x >> 8));
  }
}

// Names.

file_Class::file_Class (const Str& whole) { SetName (whole); }

file_Class::file_Class (const folder_Class& folder, const Str& name, const Str& extension)
    : Folder (folder), Name (name), Extension (extension) {
  Name.Replace ('/', '\\');
  Extension.Replace ('/', '\\');
}

file_Class::file_Class (const file_Class& file)
    : Folder (file.Folder),
      Name (file.Name),
      Extension (file.Extension),
      TimeStamp (file.TimeStamp),
      _FileSize (file._FileSize) {
  Assert (!file.IsOpen (), "!file.IsOpen()");
}

file_Class& file_Class::operator= (const file_Class& file) {
  if (this == &file) return *this;
  Assert (!file.IsOpen (), "!file.IsOpen()");
  if (!Assert (!IsOpen (), "!this->IsOpen()")) return *this;
  Folder = file.Folder;
  Name = file.Name;
  Extension = file.Extension;
  TimeStamp = file.TimeStamp;
  _FileSize = file._FileSize;
  return *this;
}

file_Class::~file_Class () {
  if (!Assert (!IsOpen (), "!this->IsOpen()")) Close ();
}

void file_Class::SplitName (const Str& whole, Str& directory, Str& name, Str& extension) {
  Str path = whole;
  path.Replace ('/', '\\');
  const std::string_view text = path.View ();
  std::size_t start = text.rfind ('\\') + 1;  // npos + 1 is 0
  if (start == 0 && text.size () >= 2 && text[1] == ':') start = 2;
  const std::string_view last = text.substr (start);
  const std::size_t dot = last.rfind ('.');
  directory = text.substr (0, start);
  name = last.substr (0, dot);
  extension = dot == last.npos ? std::string_view () : last.substr (dot + 1);
}

void file_Class::SetName (const Str& whole) {
  if (whole.IsEmpty ()) {
    Folder = folder_Class ();
    Name = Extension = "";
    return;
  }
  Str directory;
  SplitName (whole, directory, Name, Extension);
  for (const folder_Enum type : {folder_Project, folder_Locale}) {
    folder_Class standard (type);
    if (!standard.Path.EqualInsensitive (directory)) continue;
    Folder = standard;
    return;
  }
  Folder = folder_Class (folder_NonStandard, directory);
}

Str file_Class::GetNameAndExtension () const {
  if (Name.IsEmpty () && Extension.IsEmpty ()) return {};
  return Name + "." + Extension;
}

Str file_Class::GetWholeName () const {
  if (Name.IsEmpty () && Extension.IsEmpty ()) return {};
  return Folder.Path + GetNameAndExtension ();
}

bool file_Class::HostName (Str& host) const {
  host = folder_HostPath (GetWholeName ());
  return !host.IsEmpty ();
}

bool file_Class::Exists () const {
  if (Folder.Type == folder_Unknown || (Name.IsEmpty () && Extension.IsEmpty ())) return false;
  Str host;
  return HostName (host) && os_NameIsTaken (host.Data ());
}

bool file_Class::IsReadOnly () const {
  Str host;
  os_Attributes attributes = {};
  return HostName (host) && os_GetAttributes (host.Data (), attributes) == 0 &&
         attributes.isReadOnly;
}

bool file_Class::CreateTemporary () {
  Folder = folder_Class (folder_Temp);
  Name = "_CL";
  Extension = "tmp";
  return MakeUnique ();
}

bool file_Class::MakeUnique () {
  const Str base = Name;
  for (int counter = 1; counter <= 999; ++counter) {
    const char digits[] = {static_cast<char> ('0' + counter / 100),
                           static_cast<char> ('0' + counter / 10 % 10),
                           static_cast<char> ('0' + counter % 10), '\0'};
    Name = base + digits;
    if (!Exists ()) return true;
  }
  Name = base;
  return false;
}

// Opening and closing.

void file_Class::Opened (int64_t handle, int32_t access, uint32_t size, bool isStream) {
  _WinHandle = handle;
  _Access = access;
  _FileSize = size;
  _Position = 0;
  _ReadIndex = 0;
  _ReadSize = 0;
  _IsStream = isStream;
  _IsScrambled = false;
}

bool file_Class::Create (const Str& whole) {
  if (!Assert (!IsOpen (), "!this->IsOpen()")) return false;
  SetName (whole);
  if (GetWholeName ().IsEmpty ()) return false;
  const bool readOnly = IsReadOnly ();
  Assert (readOnly == false, "readOnly == false");
  for (;;) {
    Str host;
    os_Handle handle = OS_NoHandle;
    const int error = HostName (host) ? os_Create (host.Data (), handle) : OS_NoDevice;
    if (error == 0) {
      Opened (handle, FILE_ReadWrite, 0, false);
      return true;
    }
    if (!os_IsPathNotFound (error) || os_CreateDirectory (Folder.HostDirectory ().Data ()) != 0) {
      os_Report (error, GetWholeName ());
      return false;
    }
  }
}

bool file_Class::Open (const Str& whole, int32_t access) {
  if (!Assert (!IsOpen (), "!this->IsOpen()")) return false;
  if (!Assert (access >= FILE_Read && access <= FILE_ReadWrite,
               "access >= FILE_Read && access <= FILE_ReadWrite"))
    return false;
  SetName (whole);
  if (GetWholeName ().IsEmpty ()) return false;
  if (whole == StandardOutputName) {
    Opened (os_StandardOutput (), FILE_Write, 0, true);
    return true;
  }
  Str host;
  os_Handle handle = OS_NoHandle;
  uint64_t size = 0;
  int error = OS_NoDevice;
  if (HostName (host)) {
    error = os_Open (host.Data (), access != FILE_Write, access != FILE_Read, handle, size);
    if (access != FILE_Read && os_IsRefused (error)) {
      access = FILE_Read;
      error = os_Open (host.Data (), true, false, handle, size);
    }
  }
  if (error == 0 && size > LargestSize && access != FILE_Read) {
    os_Close (handle);
    error = OS_TooLarge;
  }
  if (error != 0) {
    os_Report (error, GetWholeName ());
    return false;
  }
  Opened (handle, access, static_cast<uint32_t> (std::min (size, LargestSize)), false);
  return true;
}

void file_Class::Close () {
  if (!Assert (IsOpen (), "_WinHandle != NULL")) return;
  _LineBuffer.reset ();
  const auto check = [this] (int error) {
    if (error == 0) return;
    Assert (!os_IsInvalidHandle (error), "!\"Invalid File Handle\"");
    os_Report (error, GetWholeName ());
  };
  if (!_IsStream) {
    if (CanWrite ()) {
      uint64_t size = 0;
      int error = os_GetSize (_WinHandle, size);
      if (error == 0 && size > _FileSize) error = os_SetSize (_WinHandle, _FileSize);
      check (error);
    }
    check (os_Close (_WinHandle));
  }
  _WinHandle = OS_NoHandle;
}

// Position, reading and writing.

uint32_t file_Class::ReadAhead () const noexcept {
  return static_cast<uint32_t> (_ReadSize - _ReadIndex);
}

void file_Class::DropReadAhead () {
  _Position -= ReadAhead ();
  _ReadIndex = _ReadSize = 0;
}

void file_Class::Seek (uint32_t position) {
  if (!Assert (IsOpen (), "_WinHandle != NULL")) return;
  if (_IsStream) return;
  if (_ReadSize > 0) {
    const int64_t index = static_cast<int64_t> (position) - _Position + _ReadSize;
    const bool isBuffered = index >= 0 && index < _ReadSize;
    if (isBuffered || _FileSize <= static_cast<uint32_t> (LineBufferSize)) {
      if (Assert (isBuffered, "_ReadIndex >= 0 && _ReadIndex < _ReadSize")) {
        _ReadIndex = static_cast<int32_t> (index);
        return;
      }
    }
    _ReadIndex = _ReadSize = 0;
  }
  _Position = position;
}

uint32_t file_Class::Tell () const {
  if (!Assert (IsOpen (), "_WinHandle != NULL")) return 0;
  return _Position - ReadAhead ();
}

bool file_Class::RawRead (void* destination, uint32_t n, uint32_t& got) {
  std::size_t count = 0;
  const int error =
      _Access == FILE_Write ? OS_Refused : os_ReadAt (_WinHandle, destination, n, _Position, count);
  got = static_cast<uint32_t> (count);
  _Position += got;
  if (error == 0 || got > 0) return true;  // an error behind some bytes comes again
  os_Report (error, GetWholeName ());
  return false;
}

bool file_Class::Read (void* destination, uint32_t n, uint32_t* got) {
  if (!Assert (IsOpen (), "_WinHandle != NULL")) return false;
  DropReadAhead ();
  if (_Position >= _FileSize) return false;
  uint32_t count = 0;
  if (!RawRead (destination, std::min (n, _FileSize - _Position), count) || count == 0)
    return false;
  if (got) *got = count;
  return true;
}

bool file_Class::Write (const void* source, uint32_t n, uint32_t* written) {
  if (written) *written = 0;
  if (!Assert (IsOpen (), "_WinHandle != NULL")) return false;
  DropReadAhead ();
  std::size_t count = 0;
  int error = 0;
  if (_Access == FILE_Read)
    error = OS_Refused;
  else if (_IsStream)
    error = os_WriteStream (_WinHandle, source, n, count);
  else if (n > LargestSize - _Position)
    error = OS_TooLarge;
  else
    error = os_WriteAt (_WinHandle, source, n, _Position, count);
  _Position += static_cast<uint32_t> (count);
  if (!_IsStream) _FileSize = std::max (_FileSize, _Position);
  if (written) *written = static_cast<uint32_t> (count);
  if (error == 0) return true;
  Assert (!os_IsInvalidHandle (error), "!\"Invalid File Handle\"");
  os_Report (error, GetWholeName ());
  return false;
}

bool file_Class::Append (const void* source, uint32_t n) {
  if (!Assert (IsOpen (), "_WinHandle != NULL")) return false;
  DropReadAhead ();
  if (!_IsStream) _Position = _FileSize;
  return Write (source, n);
}

bool file_Class::Truncate (uint32_t position) {
  if (!Assert (IsOpen (), "_WinHandle != NULL")) return false;
  DropReadAhead ();
  if (!_IsStream) _Position = position;
  const int error = CanWrite () && !_IsStream ? os_SetSize (_WinHandle, position) : OS_Refused;
  if (error == 0) return true;
  os_Report (error, GetWholeName ());
  return false;
}

bool file_Class::Flush () {
  if (!Assert (IsOpen (), "_WinHandle != NULL")) return false;
  if (_IsStream) return true;
  const int error = os_Sync (_WinHandle);
  if (error == 0) return true;
  os_Report (error, GetWholeName ());
  return false;
}

/// Fills the empty line buffer from the position on; false on an error. At the end it stays empty.
bool file_Class::Refill () {
  const uint32_t start = _Position;
  const uint32_t remaining = start < _FileSize ? _FileSize - start : 0;
  uint32_t got = 0;
  _ReadIndex = _ReadSize = 0;
  if (remaining == 0) return true;
  if (!RawRead (_LineBuffer.get (), std::min<uint32_t> (LineBufferSize, remaining), got))
    return false;
  _ReadSize = static_cast<int32_t> (got);
  if (start == 0)
    _IsScrambled =
        got >= MarkerSize && std::memcmp (_LineBuffer.get (), FILE_ScrambleMarker, MarkerSize) == 0;
  if (_IsScrambled) {
    const uint32_t marker = start < MarkerSize ? std::min (MarkerSize - start, got) : 0;
    file_Scramble (_LineBuffer.get () + marker, got - marker, start + marker - MarkerSize);
  }
  return true;
}

bool file_Class::ReadLine (char* destination, int32_t n) {
  if (n >= 1) *destination = '\0';
  if (!Assert (IsOpen (), "_WinHandle != NULL") || n < 2) return false;
  if (!_LineBuffer) _LineBuffer = std::make_unique<char[]> (LineBufferSize);
  int32_t used = 0;
  for (;;) {
    if (ReadAhead () == 0) {
      if (!Refill ()) {
        _LineBuffer.reset ();
        return false;
      }
      if (_ReadSize == 0) {
        destination[used] = '\0';
        return used > 0;
      }
    }
    if (_IsScrambled && Tell () < MarkerSize)
      _ReadIndex = std::min (_ReadSize, _ReadIndex + static_cast<int32_t> (MarkerSize - Tell ()));
    const char* const from = _LineBuffer.get () + _ReadIndex;
    const auto scan = static_cast<std::size_t> (std::min (_ReadSize - _ReadIndex, n - 1 - used));
    const auto* const end = static_cast<const char*> (std::memchr (from, '\n', scan));
    const auto take = end ? static_cast<int32_t> (end - from) : static_cast<int32_t> (scan);
    std::memcpy (destination + used, from, static_cast<std::size_t> (take));
    used += take;
    _ReadIndex += take + (end ? 1 : 0);
    if (end && used > 0 && destination[used - 1] == '\r') --used;
    destination[used] = '\0';
    if (end || used == n - 1) return true;
  }
}

// The file as a whole.

bool file_Class::Delete () {
  if (!IsReadOnly ()) return DeleteCreated ();
  os_Report (OS_Refused, GetWholeName ());
  return false;
}

bool file_Class::DeleteCreated () {
  Str host;
  const int error = HostName (host) ? os_Delete (host.Data ()) : OS_NoDevice;
  if (error == 0) return true;
  if (!os_IsMissing (error)) os_Report (error, GetWholeName ());
  return false;
}

bool file_Class::Rename (const file_Class& other) {
  const Str oldName = GetWholeName ();
  const Str newName = other.GetWholeName ();
  Str from;
  Str to;
  int error = OS_NoDevice;
  if (HostName (from) && other.HostName (to)) {
    // When only the case of the name changes, the second look found this very file.
    if (to == from && newName != oldName) {
      to = to.Left (to.ReverseFind ('/') + 1) + other.Name;
      if (!other.Extension.IsEmpty ()) to += "." + other.Extension;
    }
    if (to == from)
      error = os_NameIsTaken (from.Data ()) ? 0 : OS_Missing;
    else
      error = os_Move (from.Data (), to.Data ());
  }
  if (error != 0) {
    os_Report (error, oldName + " -> " + newName);
    return false;
  }
  Folder = other.Folder;
  Name = other.Name;
  Extension = other.Extension;
  return true;
}

bool file_Class::Replace (const file_Class& other) {
  Str from;
  Str to;
  const int error =
      HostName (from) && other.HostName (to) ? os_Replace (from.Data (), to.Data ()) : OS_NoDevice;
  if (error != 0) {
    os_Report (error, GetWholeName () + " -> " + other.GetWholeName ());
    return false;
  }
  Folder = other.Folder;
  Name = other.Name;
  Extension = other.Extension;
  return true;
}

bool file_Class::Copy (const Str& destination) const { return Copy (file_Class (destination)); }

bool file_Class::Copy (const file_Class& destination) const {
  Str from;
  Str to;
  const int error = HostName (from) && destination.HostName (to)
                        ? os_Copy (from.Data (), to.Data ())
                        : OS_NoDevice;
  if (error == 0) return true;
  os_Report (error, GetWholeName ());
  return false;
}

double file_Class::GetTimeStamp () {
  Str host;
  os_LocalTime time = {};
  const int error = HostName (host) ? os_LastWrite (host.Data (), time) : OS_NoDevice;
  if (error != 0) {
    os_Report (error, GetWholeName ());
    return TimeStamp = 0.0;
  }
  const double day =
      clock_FromDate (static_cast<int16_t> (time.year), static_cast<int16_t> (time.month),
                      static_cast<int16_t> (time.day));
  TimeStamp =
      maths_IsNull (day) ? 0.0 : day + clock_FromTimeOfDay (time.hours, time.minutes, time.seconds);
  return TimeStamp;
}

}  // namespace clxml
