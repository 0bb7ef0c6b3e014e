// A file read from front to back, of any size.
// One positioned system call a read; nothing is buffered here. Leans on folder and os.
#include "platform/stream.h"

#include "platform/folder.h"
#include "platform/os.h"

namespace clxml {

bool file_Stream::Open (const Str& path) {
  Close ();
  const Str host = folder_HostPath (path);
  os_Handle handle = OS_NoHandle;
  if (host.IsEmpty () || os_Open (host.Data (), true, false, handle, _Size) != 0) return false;
  _Handle = handle;
  _Position = 0;
  _Path = path;
  return true;
}

void file_Stream::Close () {
  if (!IsOpen ()) return;
  os_Close (_Handle);
  _Handle = OS_NoHandle;
}

int64_t file_Stream::Read (void* destination, std::size_t n) {
  if (!Assert (IsOpen (), "_WinHandle != NULL")) return -1;
  std::size_t got = 0;
  const int error = os_ReadAt (_Handle, destination, n, _Position, got);
  _Position += got;
  if (error == 0 || got > 0) return static_cast<int64_t> (got);  // an error comes again
  os_Report (error, _Path);
  return -1;
}

}  // namespace clxml
