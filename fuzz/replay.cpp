// Runs a fuzz target on files: its seeds as an ordinary test, or a finding once more.
// Takes files and folders; stands in for libFuzzer's own main. Leans on the standard library.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, std::size_t size);

namespace {

void Run (const std::filesystem::path& path) {
  std::ifstream file (path, std::ios::binary);
  const std::string bytes ((std::istreambuf_iterator<char> (file)), {});
  LLVMFuzzerTestOneInput (reinterpret_cast<const uint8_t*> (bytes.data ()), bytes.size ());
}

}  // namespace

int main (int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; i++) {
    if (!std::filesystem::is_directory (argv[i])) {
      Run (argv[i]);
      count++;
      continue;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator (argv[i])) {
      if (!entry.is_regular_file ()) continue;
      Run (entry.path ());
      count++;
    }
  }
  std::printf ("%d files\n", count);
  return count > 0 ? 0 : 1;
}
