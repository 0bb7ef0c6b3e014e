// Attacks the reader of exchange files with any bytes.
// What is told of a file may not depend on how it is cut into blocks. Leans on the tests' support.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "Library/xml/xml_support.h"

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size) {
  using namespace clxml;
  const std::string_view document (reinterpret_cast<const char*> (data), size);
  // The length chooses how it is read, so that seeds are plain files.
  const int levels = static_cast<int> (size % 4);
  const std::size_t piece = size % 3 == 0 ? 16383 : 5 + size % 61;
  const std::string whole =
      testing::Told (document, levels, {.piece = piece, .block = piece + 5000});
  const std::string blocks = testing::Told (document, levels, {.piece = piece, .block = piece + 3});
  if (whole != blocks) {
    std::fprintf (stderr, "%s---\n%s", whole.c_str (), blocks.c_str ());
    std::abort ();
  }
  return 0;
}
