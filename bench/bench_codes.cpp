// Measures a feature code library of 10,000 features: loading, saving, finding, building in order.
// Each feature asks for four attributes, among them a menu. The yardstick reads and writes the
// bytes of the same file alone. Uses Google Benchmark and the feature code library.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "Library/codes/fclfile.h"
#include "platform/folder.h"

namespace {

using namespace clxml;

// In an order that is not the one of the codes.
Str CodeOf (int i, int count) { return ("CODE " + std::to_string (i * 7919 % count)).c_str (); }

std::unique_ptr<fclfile_Feature> MakeFeature (const Str& code) {
  auto feature = std::make_unique<fclfile_Feature> ();
  feature->Code = code;
  feature->Description = "A feature of the benchmark";
  feature->SetFlags (9);
  for (const uint16_t type : {ATTRIBUTE_Number, ATTRIBUTE_Text, ATTRIBUTE_Menu, ATTRIBUTE_Date}) {
    auto attribute = fclfile_MakeAttribute (type);
    attribute->Name = "Height above ground";
    if (type == ATTRIBUTE_Menu)
      for (const char* entry : {"Post & wire", "Deer netting", "Concrete panel", "Hedge", "None"})
        static_cast<fclfile_MenuAttribute&> (*attribute).AddEntry (entry);
    feature->AddAttribute (std::move (attribute));
  }
  return feature;
}

// A folder with the file of a library, gone with the benchmark.
class Files {
 public:
  explicit Files (int count) {
    std::string pattern =
        (std::filesystem::temp_directory_path () / "clxml-bench-XXXXXX").string ();
    if (mkdtemp (pattern.data ()) == nullptr) std::abort ();
    _Path = pattern;
    for (int i = 0; i < count; i++) library.Append (MakeFeature (CodeOf (i, count)));
    if (library.Save (Device ("in.fal")) != FEATURECODE_Ok) std::abort ();
  }
  ~Files () { std::filesystem::remove_all (_Path); }
  Files (const Files&) = delete;
  Files& operator= (const Files&) = delete;

  std::filesystem::path Host (const char* name) const { return _Path / name; }
  Str Device (const char* name) const { return folder_DevicePath (Str (Host (name).c_str ())); }
  int64_t Size () const {
    return static_cast<int64_t> (std::filesystem::file_size (Host ("in.fal")));
  }

  falFormat_Library library;

 private:
  std::filesystem::path _Path;
};

void LoadLibrary (benchmark::State& state) {
  const Files files (static_cast<int> (state.range (0)));
  for (auto _ : state) {
    falFormat_Library library;
    if (library.Load (files.Device ("in.fal")) != FEATURECODE_Ok) state.SkipWithError ("not read");
  }
  state.SetItemsProcessed (state.iterations () * state.range (0));
  state.SetBytesProcessed (state.iterations () * files.Size ());
}

void SaveLibrary (benchmark::State& state) {
  const Files files (static_cast<int> (state.range (0)));
  for (auto _ : state)
    if (files.library.Save (files.Device ("out.fal")) != FEATURECODE_Ok)
      state.SkipWithError ("not written");
  state.SetItemsProcessed (state.iterations () * state.range (0));
  state.SetBytesProcessed (state.iterations () * files.Size ());
}

// The yardstick of loading: the bytes and nothing else.
void ReadBytes (benchmark::State& state) {
  const Files files (static_cast<int> (state.range (0)));
  for (auto _ : state) {
    std::ifstream in (files.Host ("in.fal"), std::ios::binary);
    benchmark::DoNotOptimize (std::string (std::istreambuf_iterator<char> (in), {}));
  }
  state.SetBytesProcessed (state.iterations () * files.Size ());
}

void FindCode (benchmark::State& state) {
  const int count = static_cast<int> (state.range (0));
  const Files files (count);
  int i = 0;
  for (auto _ : state) {
    int32_t position = 0;
    if (!files.library.Find (CodeOf (i++ % count, count), position))
      state.SkipWithError ("not found");
  }
  state.SetItemsProcessed (state.iterations ());
}

// All features one by one, each to its place.
void InsertAll (benchmark::State& state) {
  const int count = static_cast<int> (state.range (0));
  const auto feature = MakeFeature ("");
  for (auto _ : state) {
    falFormat_Library library;
    int32_t position = 0;
    for (int i = 0; i < count; i++) {
      feature->Code = CodeOf (i, count);
      library.Insert (*feature, position);
    }
    benchmark::DoNotOptimize (position);
  }
  state.SetItemsProcessed (state.iterations () * count);
}

BENCHMARK (LoadLibrary)->Arg (1000)->Arg (10000)->Unit (benchmark::kMillisecond);
BENCHMARK (ReadBytes)->Arg (10000)->Unit (benchmark::kMillisecond);
BENCHMARK (SaveLibrary)->Arg (1000)->Arg (10000)->Unit (benchmark::kMillisecond);
BENCHMARK (FindCode)->Arg (10000)->Unit (benchmark::kMicrosecond);
BENCHMARK (InsertAll)->Arg (1000)->Arg (10000)->Unit (benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN ();
