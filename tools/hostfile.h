// Files of the host, as the tool handles them beside the library.
// Taking a file's place without a moment at which something half done stands there. Leans on the
// operating system.
#pragma once

#include <string>
#include <string_view>

namespace clxml::tool {

/// Something of that name stands there, a dangling link included.
bool host_Stands (const std::string& path);
/// A regular file, links followed.
bool host_IsRegular (const std::string& path);
/// 0 when this process may read the file, else an errno value.
int host_MayRead (const std::string& path);
/// The two names lead to one file.
bool host_IsSame (const std::string& a, const std::string& b);
/// Has the system bring the file and then its folder's entry to the medium. An errno value or 0.
int host_Sync (const std::string& path);
int host_SyncFolderOf (const std::string& path);
/// Gives a file a new name that must be free: EEXIST when it is not. An errno value or 0.
int host_RenameFresh (const std::string& from, const std::string& to);
/// Gives a file a new name and replaces what is there. An errno value or 0.
int host_RenameOver (const std::string& from, const std::string& to);
/// Removes a file; 0 also when there is none. An errno value or 0.
int host_Remove (const std::string& path);
/// Makes a file of these bytes that appears at its path whole or not at all: it is written under
/// another name beside it, brought to the medium and then renamed. EEXIST when something stands
/// there that may not be replaced. An errno value or 0.
int host_WriteWhole (const std::string& path, std::string_view bytes, bool mayReplace);
/// The words for an errno value.
std::string host_Reason (int error);

/// A file that this process keeps for itself among all that lock it so, until it goes.
class HostLock {
 public:
  HostLock () = default;
  HostLock (const HostLock&) = delete;
  HostLock& operator= (const HostLock&) = delete;
  ~HostLock () { Release (); }

  /// Opens and locks the file. ENOENT when there is none, EWOULDBLOCK when another has it.
  int Take (const std::string& path);
  bool IsHeld () const noexcept { return _Handle >= 0; }
  /// The file that stands at the path is still the locked one.
  bool StandsAt (const std::string& path) const;
  void Release ();

 private:
  int _Handle = -1;
};

}  // namespace clxml::tool
