// Files of the host: the system calls behind the tool's files.
// Everything here answers an error number and says nothing. Leans on POSIX.
#include "hostfile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace clxml::tool {
namespace {

int SyncHandle (const std::string& path, int flags) {
  const int handle = ::open (path.c_str (), flags | O_CLOEXEC);
  if (handle < 0) return errno;
  const int error = ::fsync (handle) == 0 ? 0 : errno;
  ::close (handle);
  return error;
}

}  // namespace

bool host_Stands (const std::string& path) {
  struct stat found {};
  return ::lstat (path.c_str (), &found) == 0;
}

bool host_IsRegular (const std::string& path) {
  struct stat found {};
  return ::stat (path.c_str (), &found) == 0 && S_ISREG (found.st_mode);
}

int host_MayRead (const std::string& path) {
  return ::access (path.c_str (), R_OK) == 0 ? 0 : errno;
}

bool host_IsSame (const std::string& a, const std::string& b) {
  struct stat first {
  }, second{};
  return ::stat (a.c_str (), &first) == 0 && ::stat (b.c_str (), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

int host_Sync (const std::string& path) { return SyncHandle (path, O_RDONLY); }

int host_SyncFolderOf (const std::string& path) {
  const std::size_t slash = path.rfind ('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr (0, slash + 1);
  const int error = SyncHandle (folder, O_RDONLY | O_DIRECTORY);
  return error == EINVAL ? 0 : error;  // a file system whose folders need no such call
}

int host_RenameFresh (const std::string& from, const std::string& to) {
  if (::renameat2 (AT_FDCWD, from.c_str (), AT_FDCWD, to.c_str (), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // A file system without that call: a second name is as careful, a plain look is the last resort.
  if (::link (from.c_str (), to.c_str ()) == 0) return host_Remove (from);
  if (errno == EEXIST) return EEXIST;
  if (host_Stands (to)) return EEXIST;
  return host_RenameOver (from, to);
}

int host_RenameOver (const std::string& from, const std::string& to) {
  return std::rename (from.c_str (), to.c_str ()) == 0 ? 0 : errno;
}

int host_Remove (const std::string& path) {
  return ::unlink (path.c_str ()) == 0 || errno == ENOENT ? 0 : errno;
}

int host_WriteWhole (const std::string& path, std::string_view bytes, bool mayReplace) {
  if (!mayReplace && host_Stands (path)) return EEXIST;
  const std::string part = path + "." + std::to_string (::getpid ()) + ".part";
  const int handle = ::open (part.c_str (), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (handle < 0) return errno;
  int error = 0;
  while (!bytes.empty () && !error) {
    const ssize_t written = ::write (handle, bytes.data (), bytes.size ());
    if (written < 0)
      error = errno == EINTR ? 0 : errno;
    else
      bytes.remove_prefix (static_cast<std::size_t> (written));
  }
  if (!error && ::fsync (handle) != 0 && errno != EINVAL) error = errno;
  if (::close (handle) != 0 && !error) error = errno;
  if (!error) error = mayReplace ? host_RenameOver (part, path) : host_RenameFresh (part, path);
  if (error) {
    host_Remove (part);
    return error;
  }
  return host_SyncFolderOf (path);
}

std::string host_Reason (int error) { return std::generic_category ().message (error); }

int HostLock::Take (const std::string& path) {
  Release ();
  const int handle = ::open (path.c_str (), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (handle < 0) return errno;
  if (::flock (handle, LOCK_EX | LOCK_NB) != 0) {
    const int error = errno;
    ::close (handle);
    return error;
  }
  _Handle = handle;
  return 0;
}

bool HostLock::StandsAt (const std::string& path) const {
  struct stat held {
  }, found{};
  return IsHeld () && ::fstat (_Handle, &held) == 0 && ::lstat (path.c_str (), &found) == 0 &&
         held.st_dev == found.st_dev && held.st_ino == found.st_ino;
}

void HostLock::Release () {
  if (_Handle >= 0) ::close (_Handle);
  _Handle = -1;
}

}  // namespace clxml::tool
