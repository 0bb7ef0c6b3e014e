// Attacks the index of a file's top-level elements with any bytes.
// What it lists must lie in the file, in order. Leans on xml_index and POSIX.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "Library/xml/xml_index.h"
#include "platform/folder.h"

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size) {
  using namespace clxml;
  static const std::string path =
      (std::filesystem::temp_directory_path () / ("fuzz_xml_index-" + std::to_string (getpid ())))
          .string ();
  std::ofstream (path, std::ios::binary)
      .write (reinterpret_cast<const char*> (data), static_cast<std::streamsize> (size));
  auto root = xml_ReadFileIndex (folder_DevicePath (Str (path.c_str ())));
  std::filesystem::remove (path);
  int32_t last = 0;
  for (auto* child = root ? root->firstChild.get () : nullptr; child;
       child = child->nextSibling.get ()) {
    if (child->startOffset < last || child->endOffset <= child->startOffset) std::abort ();
    last = child->endOffset;
    if (static_cast<std::size_t> (last) > size || data[child->startOffset] != '<' ||
        data[last - 1] != '>')
      std::abort ();
  }
  return 0;
}
