// Attacks the reading of a feature code library with any bytes.
// A library that loads is saved, loads again with the same features, and is saved with the same
// bytes; every operation of the list runs on it. Uses the library and platform/folder.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Library/codes/fclfile.h"
#include "folder.h"

namespace {

using namespace clxml;

void Expect (bool holds) {
  if (!holds) std::abort ();
}

std::string Content (const std::filesystem::path& path) {
  std::ifstream in (path, std::ios::binary);
  return {std::istreambuf_iterator<char> (in), {}};
}

void UseList (falFormat_Library& library) {
  const int32_t count = library.Count ();
  if (count == 0) return;
  fclfile_Feature feature;
  feature.Assign (*library.At (count / 2));
  Expect (feature.IsEqual (*library.At (count / 2)));
  int32_t position = -1;
  Expect (library.Find (feature.Code, position) && position <= count / 2);
  library.Sort ();
  Expect (library.Insert (feature, position) && library.Count () == count + 1);
  Expect (library.At (position)->IsEqual (feature));
  Expect (library.Delete (position) == count);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size) {
  static const fuzz::OwnFolder folder;
  const std::filesystem::path in = folder.path / "in.fal", out = folder.path / "out.fal";
  std::ofstream (in, std::ios::binary)
      .write (reinterpret_cast<const char*> (data), static_cast<std::streamsize> (size));
  falFormat_Library library, again;
  if (library.Load (fuzz::Device (in)) != FEATURECODE_Ok) {
    Expect (library.Count () == 0);
    return 0;
  }
  Expect (library.Save (fuzz::Device (out)) == FEATURECODE_Ok);
  const std::string bytes = Content (out);
  Expect (again.Load (fuzz::Device (out)) == FEATURECODE_Ok && again.IsEqual (library));
  Expect (again.Save (fuzz::Device (out)) == FEATURECODE_Ok && Content (out) == bytes);
  UseList (library);
  return 0;
}
