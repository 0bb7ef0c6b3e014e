// The operating system behind the platform folder, for POSIX systems.
// The only source of the library that makes system calls; a port to another system writes this
// file anew. Leans on os.h.
#define _FILE_OFFSET_BITS 64

#include "platform/os.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>

namespace clxml {

namespace {

constexpr mode_t WriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

os_Faults* installedFaults = nullptr;

int Fault (os_Operation operation, std::size_t& n) {
  return installedFaults ? installedFaults->Before (operation, n) : 0;
}
int Fault (os_Operation operation) {
  std::size_t none = 0;
  return Fault (operation, none);
}

int Descriptor (os_Handle handle) { return static_cast<int> (handle); }

/// The system call's answer, made again as long as a signal interrupts it.
template <typename Call>
auto Uninterrupted (Call call) {
  for (;;) {
    const auto answer = call ();
    if (answer >= 0 || errno != EINTR) return answer;
  }
}

/// All n bytes by repeated calls of transfer (offset, count); done is always set.
template <typename Transfer>
int Whole (os_Operation operation, std::size_t n, std::size_t& done, Transfer transfer) {
  done = 0;
  while (done < n) {
    std::size_t count = n - done;
    if (const int error = Fault (operation, count)) return error;
    const ssize_t moved = Uninterrupted ([&] { return transfer (done, count); });
    if (moved < 0) return errno;
    if (moved == 0) return operation == os_Operation::Write ? ENOSPC : 0;
    done += static_cast<std::size_t> (moved);
  }
  return 0;
}

/// A descriptor that closes itself.
class Open {
 public:
  explicit Open (int descriptor) : value (descriptor) {}
  ~Open () {
    if (value >= 0) ::close (value);
  }
  Open (const Open&) = delete;
  Open& operator= (const Open&) = delete;
  const int value;
};

int SyncDescriptor (int descriptor) {
  if (const int error = Fault (os_Operation::Sync)) return error;
#if defined(_POSIX_SYNCHRONIZED_IO) && _POSIX_SYNCHRONIZED_IO > 0
  return Uninterrupted ([&] { return ::fdatasync (descriptor); }) < 0 ? errno : 0;
#else
  return Uninterrupted ([&] { return ::fsync (descriptor); }) < 0 ? errno : 0;
#endif
}

/// The entry is a directory, or a link to one. Most systems say so without a call for each entry.
bool IsDirectory (DIR* stream, const struct dirent& entry) {
#ifdef _DIRENT_HAVE_D_TYPE
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
#endif
  struct stat status = {};
  return ::fstatat (::dirfd (stream), entry.d_name, &status, 0) == 0 && S_ISDIR (status.st_mode);
}

/// A whole copy of a regular file under a new temporary name in the directory of to.
int CopyBeside (const char* from, const char* to, Str& temporary) {
  const Open source (
      Uninterrupted ([&] { return ::open (from, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK); }));
  struct stat status = {};
  if (source.value < 0 || ::fstat (source.value, &status) < 0) return errno;
  if (!S_ISREG (status.st_mode)) return S_ISDIR (status.st_mode) ? EISDIR : EINVAL;

  if (const int error = Fault (os_Operation::Create)) return error;
  const char* const slash = std::strrchr (to, '/');
  temporary = std::string_view (to, slash ? static_cast<std::size_t> (slash + 1 - to) : 0);
  temporary += ".copy-XXXXXX";
  const auto pattern =
      std::make_unique<char[]> (static_cast<std::size_t> (temporary.Length ()) + 1);
  std::memcpy (pattern.get (), temporary.Data (),
               static_cast<std::size_t> (temporary.Length ()) + 1);
  const Open target (::mkstemp (pattern.get ()));
  if (target.value < 0) return errno;
  temporary = pattern.get ();
  ::fcntl (target.value, F_SETFD, FD_CLOEXEC);

  constexpr std::size_t BlockSize = 256 * 1024;
  const auto block = std::make_unique<char[]> (BlockSize);
  int error = 0;
  std::size_t got = BlockSize;
  for (uint64_t position = 0; got == BlockSize && error == 0; position += got) {
    std::size_t written = 0;
    error = os_ReadAt (source.value, block.get (), BlockSize, position, got);
    if (error == 0) error = os_WriteAt (target.value, block.get (), got, position, written);
  }
  const struct timespec times[2] = {status.st_atim, status.st_mtim};
  if (error == 0 &&
      (::futimens (target.value, times) < 0 || ::fchmod (target.value, status.st_mode & 07777) < 0))
    error = errno;
  if (error == 0) error = SyncDescriptor (target.value);
  if (error != 0) ::unlink (temporary.Data ());
  return error;
}

/// 0 when nothing has that name or a file that may be written, else the error for it.
int MayReplace (const char* path) {
  os_Attributes attributes = {};
  if (os_GetAttributes (path, attributes) != 0) return 0;
  if (attributes.isDirectory) return EISDIR;
  return attributes.isReadOnly ? EACCES : 0;
}

/// rename that never replaces, on one device.
int MoveHere (const char* from, const char* to) {
#ifdef RENAME_NOREPLACE
  if (::renameat2 (AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
#endif
  // A link refuses a name that is taken, in one step; only a file system without links leaves the
  // gap between the look and the move.
  if (::link (from, to) == 0) return ::unlink (from) == 0 ? 0 : errno;
  if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS && errno != EMLINK) return errno;
  if (os_NameIsTaken (to)) return EEXIST;
  return ::rename (from, to) == 0 ? 0 : errno;
}

}  // namespace

int os_Create (const char* path, os_Handle& handle) {
  if (const int error = Fault (os_Operation::Create)) return error;
  const int descriptor = Uninterrupted (
      [&] { return ::open (path, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY, 0666); });
  if (descriptor < 0) return errno;
  handle = descriptor;
  return 0;
}

int os_Open (const char* path, bool reading, bool writing, os_Handle& handle, uint64_t& size) {
  // Without waiting: a pipe that nobody writes would hold the open for ever.
  const int mode = writing ? (reading ? O_RDWR : O_WRONLY) : O_RDONLY;
  const int descriptor =
      Uninterrupted ([&] { return ::open (path, mode | O_CLOEXEC | O_NOCTTY | O_NONBLOCK); });
  if (descriptor < 0) return errno;
  struct stat status = {};
  int error = 0;
  if (::fstat (descriptor, &status) < 0) {
    error = errno;
  } else if (!S_ISREG (status.st_mode)) {
    error = S_ISDIR (status.st_mode) ? EISDIR : EINVAL;
  } else if (writing && (status.st_mode & WriteBits) == 0) {
    error = EACCES;
  }
  if (error != 0) {
    ::close (descriptor);
    return error;
  }
  handle = descriptor;
  size = static_cast<uint64_t> (status.st_size);
  return 0;
}

int os_Close (os_Handle handle) {
  // Never a second time: after an interruption the descriptor is gone or another's.
  return ::close (Descriptor (handle)) < 0 && errno != EINTR ? errno : 0;
}

os_Handle os_StandardOutput () noexcept { return STDOUT_FILENO; }

int os_ReadAt (os_Handle handle, void* destination, std::size_t n, uint64_t position,
               std::size_t& got) {
  return Whole (os_Operation::Read, n, got, [&] (std::size_t offset, std::size_t count) {
    return ::pread (Descriptor (handle), static_cast<char*> (destination) + offset, count,
                    static_cast<off_t> (position + offset));
  });
}

int os_WriteAt (os_Handle handle, const void* source, std::size_t n, uint64_t position,
                std::size_t& written) {
  return Whole (os_Operation::Write, n, written, [&] (std::size_t offset, std::size_t count) {
    return ::pwrite (Descriptor (handle), static_cast<const char*> (source) + offset, count,
                     static_cast<off_t> (position + offset));
  });
}

int os_WriteStream (os_Handle handle, const void* source, std::size_t n, std::size_t& written) {
  return Whole (os_Operation::Write, n, written, [&] (std::size_t offset, std::size_t count) {
    return ::write (Descriptor (handle), static_cast<const char*> (source) + offset, count);
  });
}

int os_SetSize (os_Handle handle, uint64_t size) {
  if (const int error = Fault (os_Operation::Resize)) return error;
  return Uninterrupted (
             [&] { return ::ftruncate (Descriptor (handle), static_cast<off_t> (size)); }) < 0
             ? errno
             : 0;
}

int os_GetSize (os_Handle handle, uint64_t& size) {
  struct stat status = {};
  if (::fstat (Descriptor (handle), &status) < 0) return errno;
  size = static_cast<uint64_t> (status.st_size);
  return 0;
}

int os_Sync (os_Handle handle) { return SyncDescriptor (Descriptor (handle)); }

int os_GetAttributes (const char* path, os_Attributes& attributes) {
  struct stat status = {};
  if (::stat (path, &status) < 0) return errno;
  attributes.isDirectory = S_ISDIR (status.st_mode);
  attributes.isReadOnly = (status.st_mode & WriteBits) == 0;
  return 0;
}

bool os_NameIsTaken (const char* path) noexcept {
  struct stat status = {};
  return ::lstat (path, &status) == 0;
}

int os_LastWrite (const char* path, os_LocalTime& time) {
  struct stat status = {};
  if (::stat (path, &status) < 0) return errno;
  struct tm local = {};
  const time_t seconds = status.st_mtime;
  if (::localtime_r (&seconds, &local) == nullptr) return errno;
  time = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     local.tm_sec};
  return 0;
}

int os_Delete (const char* path) { return ::unlink (path) < 0 ? errno : 0; }

int os_Move (const char* from, const char* to) {
  if (const int error = Fault (os_Operation::Move)) return error;
  const int error = MoveHere (from, to);
  if (error != EXDEV) return error;
  Str temporary;
  if (const int failed = CopyBeside (from, to, temporary)) return failed;
  if (const int failed = MoveHere (temporary.Data (), to)) {
    ::unlink (temporary.Data ());
    return failed;
  }
  return os_Delete (from);
}

int os_Replace (const char* from, const char* to) {
  if (const int error = MayReplace (to)) return error;
  struct stat status = {};
  if (::stat (to, &status) == 0 && ::chmod (from, status.st_mode & 07777) < 0) return errno;
  if (const int error = Fault (os_Operation::Move)) return error;
  return ::rename (from, to) < 0 ? errno : 0;
}

int os_Copy (const char* from, const char* to) {
  if (const int error = MayReplace (to)) return error;
  Str temporary;
  if (const int error = CopyBeside (from, to, temporary)) return error;
  int error = Fault (os_Operation::Move);
  if (error == 0 && ::rename (temporary.Data (), to) < 0) error = errno;
  if (error != 0) ::unlink (temporary.Data ());
  return error;
}

int os_CreateDirectory (const char* path) {
  if (const int error = Fault (os_Operation::Create)) return error;
  return ::mkdir (path, 0777) < 0 ? errno : 0;
}

int os_List (const char* directory, std::vector<os_Entry>& entries) {
  DIR* const stream = ::opendir (directory);
  if (stream == nullptr) return errno;
  int error = 0;
  for (;;) {
    errno = 0;
    const struct dirent* const entry = ::readdir (stream);
    if (entry == nullptr) {
      error = errno;
      break;
    }
    const char* const name = entry->d_name;
    if (std::strcmp (name, ".") == 0 || std::strcmp (name, "..") == 0) continue;
    entries.push_back ({Str (name), IsDirectory (stream, *entry)});
  }
  ::closedir (stream);
  return error;
}

int os_CurrentDirectory (Str& path) {
  for (std::size_t size = 256;; size *= 2) {
    const auto buffer = std::make_unique<char[]> (size);
    if (::getcwd (buffer.get (), size) != nullptr) {
      path = buffer.get ();
      return 0;
    }
    if (errno != ERANGE) return errno;
  }
}

const char* os_TemporaryDirectory () noexcept { return "/tmp/"; }

void* os_AllocatePages (std::size_t n) noexcept {
  constexpr std::size_t hugePage = 2097152;
  const std::size_t alignment = n < hugePage ? n : hugePage;
  // A piece of twice the size holds an aligned one; the rest goes back at once.
  const std::size_t taken = n + alignment;
  void* place = mmap (nullptr, taken, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (place == MAP_FAILED) return nullptr;
  char* begin = static_cast<char*> (place);
  const std::size_t before =
      (alignment - reinterpret_cast<std::uintptr_t> (begin) % alignment) % alignment;
  if (before > 0) munmap (begin, before);
  munmap (begin + before + n, taken - n - before);
#ifdef MADV_HUGEPAGE
  if (n >= hugePage) madvise (begin + before, n, MADV_HUGEPAGE);  // a wish: refusal costs time only
#endif
  return begin + before;
}

void os_FreePages (void* pages, std::size_t n) noexcept { munmap (pages, n); }

int os_FreeSpace (const char* directory, uint64_t& bytes) {
  struct statvfs status = {};
  if (Uninterrupted ([&] { return ::statvfs (directory, &status); }) < 0) return errno;
  bytes = static_cast<uint64_t> (status.f_bavail) * status.f_frsize;
  return 0;
}

void os_Report (int error, const Str& name, const char* file, int line) {
  if (const char* const slash = std::strrchr (file, '/')) file = slash + 1;
  Environment::Get ()->ReportFileError (file, line, error, name.Data ());
}

os_Faults* os_InstallFaults (os_Faults* faults) noexcept {
  os_Faults* const before = installedFaults;
  installedFaults = faults;
  return before;
}

}  // namespace clxml
