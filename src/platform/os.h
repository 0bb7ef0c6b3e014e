// What the library asks of the operating system: files, directories, the disk.
// One source per system stands behind it (os_posix.cpp), and only the sources of this folder stand
// on it: everything else goes through file_Class, file_Stream and the searches. Leans on str.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "str.h"

namespace clxml {

// Paths are the host's, zero-terminated, their bytes handed over unchanged. Every operation answers
// 0 or the system's error number, interrupted calls are gone on with, and outputs are set on
// success only where nothing else is said.

/// An open file; negative for none.
using os_Handle = int64_t;
inline constexpr os_Handle OS_NoHandle = -1;

/// The error for a path on a device that is not there.
inline constexpr int OS_NoDevice = ENODEV;
/// The error for a file that the 32 bits of file_Class cannot write.
inline constexpr int OS_TooLarge = EFBIG;
/// The error for an operation that the file was not opened for.
inline constexpr int OS_Refused = EACCES;
/// The error for a name that nothing has.
inline constexpr int OS_Missing = ENOENT;

/// Nothing of that name is there.
constexpr bool os_IsMissing (int error) noexcept {
  return error == ENOENT || error == ENOTDIR || error == ENODEV;
}
/// A directory on the way is missing, or the last name itself.
constexpr bool os_IsPathNotFound (int error) noexcept { return error == ENOENT; }
/// Writing is refused for want of permission: by the file, a directory, or the medium.
constexpr bool os_IsRefused (int error) noexcept {
  return error == EACCES || error == EPERM || error == EROFS || error == ETXTBSY;
}
constexpr bool os_IsInvalidHandle (int error) noexcept { return error == EBADF; }

/// Creates a file that is not there, for reading and writing.
int os_Create (const char* path, os_Handle& handle);
/// Opens an existing regular file (anything else is refused, without waiting on it) and tells its
/// size. For writing, a file without any write bit is refused whoever asks.
int os_Open (const char* path, bool reading, bool writing, os_Handle& handle, uint64_t& size);
int os_Close (os_Handle handle);
/// The process's standard output; not to be closed.
os_Handle os_StandardOutput () noexcept;
/// Reads n bytes at a position, or fewer only at the end of the file; got is always set, also to
/// what came before an error.
int os_ReadAt (os_Handle handle, void* destination, std::size_t n, uint64_t position,
               std::size_t& got);
/// Writes all n bytes at a position, in as many calls as it takes; written is always set.
int os_WriteAt (os_Handle handle, const void* source, std::size_t n, uint64_t position,
                std::size_t& written);
/// The same to a stream without positions.
int os_WriteStream (os_Handle handle, const void* source, std::size_t n, std::size_t& written);
/// Sets the end of the file.
int os_SetSize (os_Handle handle, uint64_t size);
int os_GetSize (os_Handle handle, uint64_t& size);
/// Answers when everything written is on the medium.
int os_Sync (os_Handle handle);

struct os_Attributes {
  bool isDirectory;
  bool isReadOnly;  ///< no write bit is set, whoever asks
};
int os_GetAttributes (const char* path, os_Attributes& attributes);
/// Something has that name, be it a link to nothing.
bool os_NameIsTaken (const char* path) noexcept;
/// The last-write time on the local clock, whole seconds.
struct os_LocalTime {
  int year, month, day, hours, minutes, seconds;
};
int os_LastWrite (const char* path, os_LocalTime& time);
/// Deletes a file.
int os_Delete (const char* path);
/// Moves a file, to another device as well; never replaces.
int os_Move (const char* from, const char* to);
/// Moves a file over another one on the same device, in one step; the mode of a replaced file
/// stays. A destination that is a directory, or has no write bit, is refused.
int os_Replace (const char* from, const char* to);
/// Copies a file with mode and last-write time; the destination changes at once and at the end. A
/// destination without any write bit is refused.
int os_Copy (const char* from, const char* to);
/// One level.
int os_CreateDirectory (const char* path);
struct os_Entry {
  Str name;
  bool isDirectory;
};
/// Appends the entries of a directory without "." and "..", in no order; those read before an error
/// stay.
int os_List (const char* directory, std::vector<os_Entry>& entries);
/// Without a slash at its end, but for "/".
int os_CurrentDirectory (Str& path);
/// Ends in a slash; no environment variable is asked.
const char* os_TemporaryDirectory () noexcept;
/// Bytes free to the caller on the device of a directory.
int os_FreeSpace (const char* directory, uint64_t& bytes);

/// Fresh pages filled with zero bytes, n a power of two from 65536 on; they start at a multiple of
/// n or of 2 MiB, whichever is less, and large ones come in few large pages where the system has
/// such. Null when there is no memory.
void* os_AllocatePages (std::size_t n) noexcept;
/// Gives pages back, n being what they were asked for with.
void os_FreePages (void* pages, std::size_t n) noexcept;

/// Tells Environment of a failure: the caller's source and line, the error, the file's whole name.
void os_Report (int error, const Str& name, const char* file = __builtin_FILE(),
                int line = __builtin_LINE());

/// What a fault can strike.
enum class os_Operation { Read, Write, Resize, Sync, Create, Move };
/// A test's hand between the library and the disk: while one is installed it is asked before each
/// of these system calls. It answers 0 to let the call go on or an error number in its place; for
/// Read and Write it may lower n, as a disk does that fills up. With none installed, the normal
/// state, the cost is one look at a pointer.
class os_Faults {
 public:
  virtual int Before (os_Operation operation, std::size_t& n) = 0;

 protected:
  ~os_Faults () = default;
};
/// Installs one (not owned), or none with null; answers the one before. Not guarded by a lock.
os_Faults* os_InstallFaults (os_Faults* faults) noexcept;

}  // namespace clxml
