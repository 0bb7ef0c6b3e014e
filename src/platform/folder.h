// The folders of the device, and where they lie on the host.
// Turns a symbolic folder into a directory of the device, and a device path (backslashes) into a
// path of the host system and back. Leans on str and on the operating system behind this folder.
#pragma once

#include <cstdint>

#include "str.h"

namespace clxml {

/// The kinds of folder. Stored in records as 16 bits.
enum folder_Enum : int16_t {
  folder_Unknown = -1,     ///< no place at all
  folder_Project = 0,      ///< jobs and their side files
  folder_ROM = 1,          ///< what came with the installation
  folder_Locale = 2,       ///< the languages of the installation
  folder_Receiver = 3,     ///< has no directory here
  folder_Language = 4,     ///< one language: the code page tables "cp*.txt"
  folder_NonStandard = 5,  ///< a directory given by its path
  folder_ThrashData = 6,   ///< data of stress tests; never searched
  folder_Temp = 7,         ///< the system's temporary folder unless the host mounted another
  folder_Export = 8,
  folder_Email = 9,
  folder_EnumSize = 10
};

/// The second root of the device, a further place for data beside that of folder_Project.
inline constexpr char FOLDER_StorageCard[] = "\\Storage Card\\";

/// A folder of the device: its kind and its directory. A plain value.
class folder_Class {
 public:
  /// folder_Unknown.
  folder_Class () = default;
  /// A standard folder; folder_NonStandard gives the root, folder_Language the folder of all
  /// languages. folder_Receiver asserts "type != folder_Receiver" and a number outside -1 to 9
  /// asserts with an empty text; both give folder_Unknown.
  explicit folder_Class (folder_Enum type);
  /// A directory by its path ("/" counts as "\", and a "\" is put at its end). Another type than
  /// folder_NonStandard asserts "type == folder_NonStandard" and is then taken as that one.
  folder_Class (folder_Enum type, const Str& path);
  /// The folder of one language; its name is that of the directory.
  static folder_Class ForLanguage (const Str& language);

  /// Creates the directory (one level) when it is missing; true when a directory stands there
  /// afterwards. A failure is reported to Environment.
  bool EnsureExists () const;
  /// The directory as a path of the host, ending in "/"; "./" for the empty path, empty when the
  /// device is not there.
  Str HostDirectory () const;

  folder_Enum Type = folder_Unknown;
  Str Language;           ///< of folder_Language, else empty
  bool IsStatic = false;  ///< the contents belong to the installation: types 1, 2 and 4
  bool Spare = false;     ///< always false
  Str Path;               ///< ends in a backslash; empty for folder_Unknown
};

// Where device paths lie on the host. A device path is turned into a host path so:
// - "/" and "\" separate alike; a path below a mounted root goes below that root's host directory,
//   the longest root winning (roots are compared without case);
// - "\Temp\", spelt so, is the system's temporary folder unless the host mounted another;
// - any other path that begins with "\" is the same path with "/": "\a\b" is "/a/b";
// - a drive letter that is not mounted is a device that is not there;
// - any other path is relative and left to the system;
// - one trailing dot is dropped, as a name without extension is written with one.
// Exact names come first. Below a mounted root and in the folders ROM and Languages, names that are
// not there are looked for a second time without case (letters A to Z; first in sorted order).
// Mounts are state of the process without a lock: made by the host before it uses the library.

/// Puts a directory of the host in place of a root of the device ("\Disk\", "C:", "\"); a root that
/// is already mounted moves. A relative host directory is taken from the current one, now. False,
/// with nothing changed, for a root that is no absolute device path or an empty directory.
bool folder_Mount (const Str& deviceRoot, const Str& hostDirectory);
/// Takes a mount away; false when there is none of that root.
bool folder_Unmount (const Str& deviceRoot);
/// The host path of a device path, as above; empty when the device is not there.
Str folder_HostPath (const Str& devicePath);
/// A device path that folder_HostPath turns into this host path again; below a mounted directory
/// the mounted spelling. Empty when there is none (a backslash in a name).
Str folder_DevicePath (const Str& hostPath);

}  // namespace clxml
