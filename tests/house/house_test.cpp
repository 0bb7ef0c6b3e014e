// The map of the house, held true.
// Reads every include line, compiles every header alone and looks at what the shared library
// exports. Leans on GoogleTest, the compiler of the build and binutils.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/hearing.h"

namespace {

namespace fs = std::filesystem;
using clxml::testing::TemporaryFolder;

const fs::path house = CLXML_SOURCE_DIR;

// The rooms in the order in which they may know each other: each its own and those before it.
constexpr std::array rooms = {
    std::string_view ("str"),
    std::string_view ("numerics"),
    std::string_view ("Kernel"),
    std::string_view ("platform"),
    std::string_view ("Library/base"),
    std::string_view ("Library/xml"),
    std::string_view ("Library/records"),
    std::string_view ("Library/job"),
    std::string_view ("Library/coords"),
    std::string_view ("Library/coordsys"),
    std::string_view ("Library/position"),
    std::string_view ("Library/cogo"),
    std::string_view ("Library/index"),
    std::string_view ("Library/codes"),
    std::string_view ("road"),
    std::string_view ("import"),
};
// Numerics of its own, beside the job library: knows files and bytes, and is known by coordinate
// systems and what stands on them.
constexpr std::string_view geodesy = "geodesy";

std::size_t Rank (std::string_view room) {
  return static_cast<std::size_t> (std::find (rooms.begin (), rooms.end (), room) - rooms.begin ());
}

// The room of a path below src/, empty for none: "str.h" is in "str", "Library/xml/xml.h" in
// "Library/xml".
std::string RoomOf (const std::string& path) {
  if (path == "str.h" || path == "str.cpp") return "str";
  const std::size_t slash = path.rfind ('/');
  const std::string folder = slash == std::string::npos ? std::string () : path.substr (0, slash);
  return folder == geodesy || Rank (folder) < rooms.size () ? folder : std::string ();
}

bool MayKnow (std::string_view from, std::string_view to) {
  if (from == to) return true;
  // Positions and coordinate geometry are one layer.
  if (from == "Library/position" && to == "Library/cogo") return true;
  if (from == geodesy) return Rank (to) <= Rank ("Library/base");
  if (to == geodesy) return Rank (from) >= Rank ("Library/coordsys") && Rank (from) < rooms.size ();
  return Rank (to) < Rank (from) && Rank (from) < rooms.size ();
}

struct Include {
  std::string name;
  bool isQuoted;
  int line;
};

std::vector<Include> IncludesOf (const fs::path& file) {
  std::vector<Include> found;
  std::ifstream in (file);
  std::string text;
  for (int line = 1; std::getline (in, text); line++) {
    std::size_t at = text.find_first_not_of (" \t");
    if (at == std::string::npos || text[at] != '#') continue;
    at = text.find_first_not_of (" \t", at + 1);
    if (at == std::string::npos || text.compare (at, 7, "include") != 0) continue;
    at = text.find_first_of ("\"<", at);
    if (at == std::string::npos) continue;
    const char close = text[at] == '"' ? '"' : '>';
    const std::size_t end = text.find (close, at + 1);
    if (end != std::string::npos)
      found.push_back ({text.substr (at + 1, end - at - 1), close == '"', line});
  }
  return found;
}

std::vector<fs::path> SourcesBelow (const std::vector<std::string>& folders, bool headersOnly) {
  std::vector<fs::path> files;
  for (const std::string& folder : folders) {
    if (!fs::exists (house / folder)) continue;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator (house / folder)) {
      const std::string extension = entry.path ().extension ().string ();
      if (extension == ".h" || (!headersOnly && (extension == ".cpp" || extension == ".c")))
        files.push_back (entry.path ());
    }
  }
  std::sort (files.begin (), files.end ());
  return files;
}

std::string Below (const fs::path& file, const std::string& folder) {
  return fs::relative (file, house / folder).generic_string ();
}

// Runs a command; its output, and its exit status.
std::string RunCommand (const std::string& command, int& status) {
  std::string output;
  std::FILE* pipe = popen ((command + " 2>&1").c_str (), "r");
  if (!pipe) {
    status = -1;
    return output;
  }
  char piece[4096];
  while (const std::size_t n = std::fread (piece, 1, sizeof piece, pipe)) output.append (piece, n);
  status = pclose (pipe);
  return output;
}

TEST (House, TellsWhichRoomsMayKnowWhich) {
  struct Case {
    const char* from;
    const char* to;
    bool may;
  };
  for (const Case& c :
       {Case{"Library/job", "Library/records", true}, Case{"Library/records", "Library/job", false},
        Case{"Library/xml", "Library/records", false}, Case{"str", "numerics", false},
        Case{"import", "road", true}, Case{"road", "import", false},
        Case{"geodesy", "Library/base", true}, Case{"geodesy", "Library/xml", false},
        Case{"geodesy", "Library/job", false}, Case{"geodesy", "numerics", true},
        Case{"Library/position", "Library/cogo", true},
        Case{"Library/cogo", "Library/index", false}, Case{"Library/coordsys", "geodesy", true},
        Case{"Library/job", "geodesy", false}, Case{"attic", "str", false}})
    EXPECT_EQ (MayKnow (c.from, c.to), c.may) << c.from << " -> " << c.to;
}

TEST (House, IncludesPointDownwards) {
  int lines = 0;
  for (const fs::path& file : SourcesBelow ({"src"}, false)) {
    const std::string path = Below (file, "src");
    const std::string room = RoomOf (path);
    EXPECT_FALSE (room.empty ()) << path << " lies in no room of the house";
    for (const Include& include : IncludesOf (file)) {
      lines++;
      const std::string where = path + ":" + std::to_string (include.line) + " " + include.name;
      if (!include.isQuoted) {
        // The language's own headers have neither folder nor extension; the system's are for the
        // one source that speaks to it.
        const bool isSystemSource =
            room == "platform" && file.filename ().string ().rfind ("os_", 0) == 0;
        EXPECT_TRUE (isSystemSource || include.name.find_first_of ("./") == std::string::npos)
            << where << " is no header of the standard library";
        continue;
      }
      if (include.name == "clxmli.h") {
        EXPECT_EQ (room, "import") << where;
        continue;
      }
      ASSERT_TRUE (fs::exists (house / "src" / include.name)) << where << " is not named from src/";
      EXPECT_TRUE (MayKnow (room, RoomOf (include.name))) << where << " points upwards";
      if (include.name == "platform/os.h") {
        EXPECT_EQ (room, "platform") << where;
      }
    }
  }
  EXPECT_GT (lines, 100) << "the include lines were not found";
}

TEST (House, TheRestNamesWhatIsThere) {
  for (const fs::path& file : SourcesBelow ({"tools", "tests", "bench", "fuzz"}, false)) {
    const std::string path = Below (file, "");
    for (const Include& include : IncludesOf (file)) {
      if (!include.isQuoted) continue;
      const std::string where = path + ":" + std::to_string (include.line) + " " + include.name;
      bool isFound = false;
      for (const fs::path& root :
           {house / "src", house / "include", house / "tests", house / "tools", house / "bench",
            house / "fuzz", file.parent_path ()})
        isFound = isFound || fs::exists (root / include.name);
      EXPECT_TRUE (isFound) << where << " is not there";
      if (include.name == "platform/os.h") {
        EXPECT_EQ (path.rfind ("tests/", 0), 0u) << where;
      }
    }
  }
}

TEST (House, FilesBeginWithWhatTheyAre) {
  for (const fs::path& file :
       SourcesBelow ({"src", "include", "tools", "tests", "bench", "fuzz"}, false)) {
    std::ifstream in (file);
    std::string first;
    std::getline (in, first);
    EXPECT_TRUE (first.rfind ("// ", 0) == 0 || first.rfind ("/* ", 0) == 0) << file;
  }
}

// The flags of the build, without making anything.
const std::string compile = " -fsyntax-only -Wall -Wextra -Wconversion -Wpedantic -Werror -I" +
                            (house / "src").string () + " -I" + (house / "include").string () + " ";

TEST (House, EveryHeaderCompilesAlone) {
  const TemporaryFolder folder;
  const std::size_t hands = std::clamp (std::thread::hardware_concurrency (), 1u, 4u);
  std::vector<std::string> batches (hands);
  std::size_t count = 0;
  for (const fs::path& header : SourcesBelow ({"src", "include"}, true)) {
    const std::string unit = folder.Host (std::to_string (count) + ".cpp");
    std::ofstream (unit) << "#include \"" << header.string () << "\"\n";
    batches[count++ % hands] += unit + " ";
  }
  ASSERT_GT (count, 10u);
  std::vector<std::string> output (hands);
  std::vector<int> status (hands);
  std::vector<std::thread> workers;
  for (std::size_t i = 0; i < hands; i++)
    workers.emplace_back ([&, i] {
      if (!batches[i].empty ())
        output[i] = RunCommand (CLXML_CXX_COMPILER " -std=c++20" + compile + batches[i], status[i]);
    });
  for (std::thread& worker : workers) worker.join ();
  for (std::size_t i = 0; i < hands; i++) EXPECT_EQ (status[i], 0) << output[i];
}

TEST (House, TheInterfaceIsCleanInCAndCpp) {
  const TemporaryFolder folder;
  // A host that uses everything, so that unused inline functions hide nothing.
  const char* host =
      "#include <clxmli.h>\n"
      "static uint32_t Go (uint32_t percent) { return percent <= 100; }\n"
      "int main (void) {\n"
      "  char device[64], path[3 * CLXMLI_NAME_UNITS];\n"
      "  uint16_t name[CLXMLI_NAME_UNITS];\n"
      "  if (!clxmli_DevicePath (\"a/b.xml\", device, sizeof device)) return 1;\n"
      "  if (ImportCLXMLFile (device, \"b.job\", Go) != IMPORT_Ok) return 2;\n"
      "  if (clxmli_ExtraOutputFileCount () > 0) clxmli_GetExtraOutputFileName (name, 0);\n"
      "  else name[0] = 0;\n"
      "  return !clxmli_HostPath (name, path, sizeof path);\n"
      "}\n";
  struct Case {
    const char* compiler;
    const char* extension;
  };
  for (const Case& c :
       {Case{CLXML_C_COMPILER " -std=c11", ".c"}, Case{CLXML_C_COMPILER " -std=c17", ".c"},
        Case{CLXML_CXX_COMPILER " -std=c++11", ".cpp"},
        Case{CLXML_CXX_COMPILER " -std=c++20", ".cpp"}}) {
    const std::string unit = folder.Host (std::string ("host") + c.extension);
    std::ofstream (unit) << host;
    int status = 0;
    const std::string output =
        RunCommand (c.compiler + compile + "-pedantic-errors " + unit, status);
    EXPECT_EQ (status, 0) << c.compiler << "\n" << output;
  }
}

TEST (House, TheSharedLibraryExportsThreeFunctions) {
  const std::string library = CLXML_BINARY_DIR "/libclxmli.so";
  int status = 0;
  std::istringstream symbols (RunCommand ("nm -D --defined-only " + library, status));
  ASSERT_EQ (status, 0) << symbols.str ();
  std::vector<std::string> names;
  for (std::string line; std::getline (symbols, line);) {
    const std::size_t blank = line.rfind (' ');
    names.push_back (line.substr (line.find (' ') + 1, 1) + " " + line.substr (blank + 1));
  }
  std::sort (names.begin (), names.end ());
  EXPECT_EQ (names, (std::vector<std::string>{"A CLXMLI_12", "T ImportCLXMLFile@@CLXMLI_12",
                                              "T clxmli_ExtraOutputFileCount@@CLXMLI_12",
                                              "T clxmli_GetExtraOutputFileName@@CLXMLI_12"}));
  const std::string dynamic = RunCommand ("readelf -d " + library, status);
  ASSERT_EQ (status, 0) << dynamic;
  EXPECT_NE (dynamic.find ("soname: [libclxmli.so.12]"), std::string::npos) << dynamic;
}

}  // namespace
