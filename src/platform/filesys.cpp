// Searches in the folders of the device.
// A directory is read whole and sorted before a mask is tried. Leans on file, folder, text and os.
#include "platform/filesys.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "Kernel/text.h"
#include "platform/os.h"

namespace clxml {

namespace {

/// Whether a mask takes a name, without regard to case. On a mismatch only the last "*" takes one
/// character more, so the cost is at most the product of both lengths.
bool Takes (std::string_view mask, std::string_view name) {
  std::size_t m = 0;
  std::size_t n = 0;
  std::size_t star = mask.npos;
  std::size_t resume = 0;
  while (n < name.size ()) {
    if (m < mask.size () && mask[m] == '*') {
      star = m++;
      resume = n;
    } else if (m < mask.size () &&
               (mask[m] == '?' || text_ToUpper (mask[m]) == text_ToUpper (name[n]))) {
      ++m;
      ++n;
    } else if (star != mask.npos) {
      m = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (m < mask.size () && mask[m] == '*') ++m;
  return m == mask.size ();
}

/// As the system compares entries with a mask: a name without a dot may be taken as one that ends
/// in it, so that "*.*" takes everything.
bool DirectoryTakes (std::string_view mask, const Str& name) {
  return Takes (mask, name.View ()) || (!name.Contains ('.') && Takes (mask, (name + ".").View ()));
}

/// The names of files in a directory that a mask takes, sorted by folded case, then bytes.
int List (const folder_Class& folder, const char* mask, std::vector<Str>& names) {
  const Str directory = folder.HostDirectory ();
  if (directory.IsEmpty ()) return OS_NoDevice;
  std::vector<os_Entry> entries;
  const int error = os_List (directory.Data (), entries);
  std::vector<std::pair<Str, Str>> sorted;  // folded, as it is
  for (const os_Entry& entry : entries) {
    // A backslash in a name of the host has no spelling here.
    if (entry.isDirectory || entry.name.Contains ('\\') || !DirectoryTakes (mask, entry.name))
      continue;
    Str folded = entry.name;
    folded.MakeLower ();
    sorted.emplace_back (folded, entry.name);
  }
  std::sort (sorted.begin (), sorted.end ());
  for (std::pair<Str, Str>& entry : sorted) names.push_back (std::move (entry.second));
  return error;
}

/// The file of that name in the folder. The host's own last dot belongs to the base name, as the
/// one of the whole name is dropped on the way back.
file_Class InFolder (const folder_Class& folder, const Str& entry) {
  const std::string_view name = entry.View ();
  const std::size_t dot = name.back () == '.' ? name.npos : name.rfind ('.');
  return {folder, Str (name.substr (0, dot)),
          dot == name.npos ? Str () : Str (name.substr (dot + 1))};
}

bool IsSearchable (const folder_Class& folder, const char* mask) {
  const bool isKnown = Assert (folder.Type != folder_Unknown, "folder.Type != folder_Unknown");
  return Assert (mask && *mask, "mask && *mask") && isKnown;
}

/// The largest of some files that opens and is not empty; of equals the first.
file_Class Largest (const std::vector<const file_Class*>& files) {
  if (files.size () == 1) return *files.front ();
  const file_Class* best = nullptr;
  uint32_t bestSize = 0;
  for (const file_Class* candidate : files) {
    file_Class file;
    if (!file.Open (candidate->GetWholeName (), FILE_Read)) continue;
    if (file.GetSize () > bestSize) {
      best = candidate;
      bestSize = file.GetSize ();
    }
    file.Close ();
  }
  return best ? *best : file_Class ();
}

}  // namespace

file_Class FindFile (const folder_Class& folder, const char* mask) {
  if (!IsSearchable (folder, mask)) return {};
  std::vector<Str> names;
  const int error = List (folder, mask, names);
  if (error != 0 && !os_IsMissing (error)) os_Report (error, folder.Path + mask);
  return names.empty () ? file_Class () : InFolder (folder, names.front ());
}

file_Array FindFiles (const folder_Class& folder, const char* mask) {
  file_Array files;
  if (!IsSearchable (folder, mask) || folder.Type == folder_ThrashData) return files;
  std::vector<Str> names;
  if (const int error = List (folder, mask, names)) os_Report (error, folder.Path + mask);
  for (const Str& name : names) files.Add (InFolder (folder, name));
  return files;
}

file_Array FindFiles (const char* mask) {
  file_Array accepted;
  if (!Assert (mask && *mask, "mask && *mask")) return accepted;
  for (const folder_Enum type : {folder_Project, folder_ROM, folder_Locale}) {
    const file_Array files = FindFiles (folder_Class (type), "*.*");
    for (int i = 0; i < files.Count (); ++i)
      if (MatchesMask (files[i].GetNameAndExtension (), mask)) accepted.Add (files[i]);
  }
  return accepted;
}

bool MatchesMask (const Str& name, const char* mask) {
  if (!Assert (mask && *mask, "mask && *mask")) return false;
  std::string_view picture (mask);
  picture.remove_prefix (picture.find (':') + 1);  // npos + 1 is 0
  Str directory;
  Str base;
  Str extension;
  file_Class::SplitName (name, directory, base, extension);
  return Takes (picture, (base + "." + extension).View ());
}

file_Class FindSupportFile (const Str& storedName, const char* mask) {
  if (!Assert (mask && *mask, "mask && *mask")) return {};
  const Str picture (mask);
  Str extension = picture.From (picture.ReverseFind ('.') + 1);
  // A record knows a name; one that leads into another directory is none.
  const bool isName =
      !storedName.Contains ('\\') && !storedName.Contains ('/') && !storedName.Contains (':');
  if (!storedName.IsEmpty () && isName) {
    file_Class file (folder_Class (folder_Project), storedName, extension);
    if (file.Exists ()) return file;
  }
  Str stored = storedName;
  stored.MakeLower ();
  extension.MakeLower ();
  const file_Array files = FindFiles (mask);
  std::vector<const file_Class*> exact;
  std::vector<const file_Class*> near;
  for (int i = 0; i < files.Count (); ++i) {
    const file_Class& file = files[i];
    Str base = file.Name;
    base.TrimRight (' ');
    base.MakeLower ();
    if (!file.Extension.EqualInsensitive (extension) || base.IsEmpty ()) continue;
    if (base == stored) exact.push_back (&file);
    if (stored.View ().find (base.View ()) != std::string_view::npos) near.push_back (&file);
  }
  return Largest (exact.empty () ? near : exact);
}

uint32_t FreeSpace (const folder_Class& folder) {
  if (!Assert (folder.Type != folder_Unknown, "folder.Type != folder_Unknown")) return 0;
  const Str directory = folder.HostDirectory ();
  uint64_t bytes = 0;
  const int error = directory.IsEmpty () ? OS_NoDevice : os_FreeSpace (directory.Data (), bytes);
  if (error != 0) {
    os_Report (error, folder.Path);
    return 0;
  }
  return static_cast<uint32_t> (std::min<uint64_t> (bytes, 0xFFFFFFFF));
}

}  // namespace clxml
