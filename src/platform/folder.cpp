// The folders of the device, and where they lie on the host.
// The table of standard folders, the table of mounts, and the way of a path between device and
// host. Leans on text for letters without a locale, and on os.
#include "platform/folder.h"

#include <string_view>
#include <vector>

#include "Kernel/text.h"
#include "platform/os.h"

namespace clxml {

namespace {

bool BeginsWith (std::string_view text, std::string_view start, bool withoutCase) {
  if (text.size () < start.size ()) return false;
  for (std::size_t i = 0; i < start.size (); ++i) {
    if (text[i] == start[i]) continue;
    if (!withoutCase || text_ToLower (text[i]) != text_ToLower (start[i])) return false;
  }
  return true;
}

bool EqualWithoutCase (std::string_view a, std::string_view b) {
  return a.size () == b.size () && BeginsWith (a, b, true);
}

/// The part of a path below a directory that ends in a separator; the directory itself may come
/// without it. False when the path lies elsewhere.
bool IsBelow (std::string_view path, std::string_view directory, bool withoutCase,
              std::string_view& rest) {
  if (path.size () + 1 == directory.size ()) {
    rest = {};
    return BeginsWith (directory, path, withoutCase);
  }
  if (!BeginsWith (path, directory, withoutCase)) return false;
  rest = path.substr (directory.size ());
  return true;
}

bool HasDrive (std::string_view path) { return path.size () >= 2 && path[1] == ':'; }

Str WithSeparators (const Str& path, char from, char to) {
  Str result (path);
  result.Replace (from, to);
  return result;
}

void EndWith (Str& path, char separator) {
  if (path.IsEmpty () || path.View ().back () != separator) path += separator;
}

/// The process's current directory, read once.
struct CurrentDirectory {
  Str host;    ///< as the host spells it
  Str device;  ///< as the device's root, in lower case
};

const CurrentDirectory& Current () {
  static const CurrentDirectory current = [] {
    CurrentDirectory read;
    if (const int error = os_CurrentDirectory (read.host)) os_Report (error, read.host);
    EndWith (read.host, '/');
    read.device = WithSeparators (read.host, '/', '\\');
    read.device.MakeLower ();
    return read;
  }();
  return current;
}

const Str& Root () { return Current ().device; }

/// The root in lower case is the name of no host directory, because the real one has capitals.
bool IsRootMisspelt () {
  const Str lower = WithSeparators (Root (), '\\', '/');
  return lower != Current ().host && !os_NameIsTaken (lower.Data ());
}

/// A directory as the device has it: absolute ones as they stand, others behind the root.
Str Placed (const char* path) {
  const bool isAbsolute = path[0] == '\\' || HasDrive (path);
  return isAbsolute ? Str (path) : Root () + path;
}

/// The paths of the standard folders, computed once.
const Str& StandardPath (folder_Enum type) {
  struct Paths {
    Str of[folder_EnumSize];
  };
  static const Paths paths = [] {
    Paths p;
    p.of[folder_Project] = Placed ("\\Disk\\Norvath Data\\");
    p.of[folder_ROM] = Placed ("ROM\\");
    p.of[folder_Locale] = Placed ("Languages\\");
    p.of[folder_Language] = p.of[folder_Locale];
    p.of[folder_NonStandard] = Root ();
    p.of[folder_ThrashData] = p.of[folder_Project] + "ThrashData\\";
    p.of[folder_Temp] = Placed ("\\Temp\\");
    p.of[folder_Export] = Placed ("\\Disk\\Norvath Data\\Export\\");
    p.of[folder_Email] = Placed ("\\Disk\\Norvath Data\\Email\\");
    return p;
  }();
  return paths.of[type];
}

struct Mount {
  Str root;  // ends in a backslash
  Str host;  // ends in a slash
};

std::vector<Mount>& Mounts () {
  static std::vector<Mount> mounts;
  return mounts;
}

/// The root in its one spelling: backslashes, one at the end; empty when it is no absolute path.
Str NormalRoot (const Str& deviceRoot) {
  Str root = WithSeparators (deviceRoot, '/', '\\');
  if (root.IsEmpty () || (root.View ().front () != '\\' && !HasDrive (root.View ()))) return {};
  EndWith (root, '\\');
  return root;
}

/// A name without extension is written with a dot behind it; the host has no such dot.
std::string_view WithoutLastDot (std::string_view path) {
  if (path.empty () || path.back () != '.') return path;
  const std::string_view name = path.substr (path.rfind ('/') + 1);  // npos + 1 is 0
  return name == "." || name == ".." ? path : path.substr (0, path.size () - 1);
}

/// A device path on the host by syntax alone: base is taken as it is, rest may get a second look.
struct Place {
  bool isThere = true;
  bool isCaseless = false;
  Str base;
  Str rest;
};

Place Locate (const Str& devicePath) {
  Str device = WithSeparators (devicePath, '/', '\\');
  // The device keeps no current directory for each drive: "c:a" is "c:\a".
  if (HasDrive (device.View ()) && device.Length () > 2 && device.View ()[2] != '\\')
    device = device.Left (2) + "\\" + device.From (2);
  Place place;
  std::string_view rest = device.View ();
  const Mount* best = nullptr;
  for (const Mount& mount : Mounts ()) {
    std::string_view below;
    if (!IsBelow (device.View (), mount.root.View (), true, below)) continue;
    if (best && best->root.Length () >= mount.root.Length ()) continue;
    best = &mount;
    rest = below;
  }
  // Spelt exactly, and not where the host program put another: "/temp" is an ordinary directory.
  const std::string_view temporary = StandardPath (folder_Temp).View ();
  std::string_view below;
  if ((!best || static_cast<std::size_t> (best->root.Length ()) < temporary.size ()) &&
      IsBelow (device.View (), temporary, false, below)) {
    place.base = os_TemporaryDirectory ();
    place.isCaseless = true;
    rest = below;
  } else if (best) {
    place.base = best->host;
    place.isCaseless = true;
  } else if (HasDrive (device.View ())) {
    place.isThere = false;
    return place;
  } else {
    place.isCaseless = IsBelow (device.View (), StandardPath (folder_ROM).View (), true, below) ||
                       IsBelow (device.View (), StandardPath (folder_Locale).View (), true, below);
    if (IsBelow (device.View (), Root ().View (), false, below) && IsRootMisspelt ()) {
      place.base = Current ().host;
      rest = below;
    }
  }
  place.rest = rest;
  place.rest.Replace ('\\', '/');
  place.rest = Str (WithoutLastDot (place.rest.View ()));
  return place;
}

/// The entry of a host directory that is a name but for case: the first in the order of bytes.
bool FindCaseless (const Str& directory, std::string_view name, Str& found) {
  std::vector<os_Entry> entries;
  os_List (directory.IsEmpty () ? "./" : directory.Data (), entries);
  const os_Entry* best = nullptr;
  for (const os_Entry& entry : entries)
    if (EqualWithoutCase (entry.name.View (), name) && (!best || entry.name < best->name))
      best = &entry;
  if (best) found = best->name;
  return best != nullptr;
}

/// The path with every name that is not there as spelt, up to the first that is not there at all,
/// replaced by one that differs in case only. Costs a directory's length for each such name.
Str SecondLook (const Place& place) {
  Str path = place.base;
  std::string_view rest = place.rest.View ();
  while (!rest.empty ()) {
    const std::size_t slash = rest.find ('/');
    const std::string_view name = rest.substr (0, slash);
    const std::string_view tail = slash == rest.npos ? std::string_view () : rest.substr (slash);
    Str next = path;
    next += name;
    Str found;
    if (!name.empty () && !os_NameIsTaken (next.Data ())) {
      if (!FindCaseless (path, name, found)) break;
      next = path + found;
    }
    path = next;
    rest = tail;
    if (!rest.empty ()) {
      path += '/';
      rest.remove_prefix (1);
    }
  }
  path += rest;
  return path;
}

}  // namespace

folder_Class::folder_Class (folder_Enum type) {
  if (type == folder_Unknown) return;
  if (!Assert (type > folder_Unknown && type < folder_EnumSize, "")) return;
  if (!Assert (type != folder_Receiver, "type != folder_Receiver")) return;
  Type = type;
  IsStatic = type == folder_ROM || type == folder_Locale || type == folder_Language;
  Path = StandardPath (type);
}

folder_Class::folder_Class (folder_Enum type, const Str& path) : Type (folder_NonStandard) {
  Assert (type == folder_NonStandard, "type == folder_NonStandard");
  Path = WithSeparators (path, '/', '\\');
  const bool isDriveAlone = Path.Length () == 2 && HasDrive (Path.View ());
  if (!Path.IsEmpty () && !isDriveAlone) EndWith (Path, '\\');
}

folder_Class folder_Class::ForLanguage (const Str& language) {
  folder_Class folder (folder_Language);
  folder.Language = language;
  if (!language.IsEmpty ()) folder.Path = folder.Path + language + "\\";
  return folder;
}

Str folder_Class::HostDirectory () const {
  if (Path.IsEmpty ()) return "./";
  Str host = folder_HostPath (Path);
  if (!host.IsEmpty ()) EndWith (host, '/');
  return host;
}

bool folder_Class::EnsureExists () const {
  if (Type == folder_Unknown) return false;
  const Str host = HostDirectory ();
  int error = host.IsEmpty () ? OS_NoDevice : os_CreateDirectory (host.Data ());
  if (error == 0) return true;
  os_Attributes attributes = {};
  if (!host.IsEmpty () && os_GetAttributes (host.Data (), attributes) == 0 &&
      attributes.isDirectory)
    return true;
  os_Report (error, Path);
  return false;
}

bool folder_Mount (const Str& deviceRoot, const Str& hostDirectory) {
  const Str root = NormalRoot (deviceRoot);
  if (root.IsEmpty () || hostDirectory.IsEmpty ()) return false;
  Str host = hostDirectory;
  if (host.View ().front () != '/') {
    Str current;
    if (const int error = os_CurrentDirectory (current)) {
      os_Report (error, hostDirectory);
      return false;
    }
    EndWith (current, '/');
    host = current + host;
  }
  EndWith (host, '/');
  folder_Unmount (root);
  Mounts ().push_back ({root, host});
  return true;
}

bool folder_Unmount (const Str& deviceRoot) {
  const Str root = NormalRoot (deviceRoot);
  return std::erase_if (Mounts (), [&] (const Mount& mount) {
           return EqualWithoutCase (mount.root.View (), root.View ());
         }) > 0;
}

Str folder_HostPath (const Str& devicePath) {
  const Place place = Locate (devicePath);
  if (!place.isThere) return {};
  Str exact = place.base + place.rest;
  if (!place.isCaseless || os_NameIsTaken (exact.Data ())) return exact;
  return SecondLook (place);
}

Str folder_DevicePath (const Str& hostPath) {
  if (hostPath.IsEmpty () || hostPath.Contains ('\\')) return {};
  // A last dot of the host's own needs one more, which the way back drops.
  Str host = hostPath;
  const std::string_view name = host.View ().substr (host.View ().rfind ('/') + 1);
  if (!name.empty () && name.back () == '.' && name != "." && name != "..") host += '.';
  const auto leadsTo = [] (const Str& device, const Str& expected) {
    const Place place = Locate (device);
    return place.isThere && place.base + place.rest == expected;
  };

  const Mount* best = nullptr;
  std::string_view rest;
  for (const Mount& mount : Mounts ()) {
    std::string_view below;
    if (!IsBelow (host.View (), mount.host.View (), false, below)) continue;
    if (best && best->host.Length () >= mount.host.Length ()) continue;
    best = &mount;
    rest = below;
  }
  if (best) {
    Str device = best->root;
    device += rest;
    device.Replace ('/', '\\');
    if (leadsTo (device, best->host + Str (WithoutLastDot (rest)))) return device;
  }
  Str plain = WithSeparators (host, '/', '\\');
  if (leadsTo (plain, hostPath)) return plain;
  // Some root of the device has this spelling; a step through "." avoids it.
  const bool isAbsolute = host.View ().front () == '/';
  const Str step = isAbsolute ? "/." : "./";
  Str aside = WithSeparators (step, '/', '\\') + plain;
  return leadsTo (aside, step + hostPath) ? aside : Str ();
}

}  // namespace clxml
