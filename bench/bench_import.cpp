// Measures the whole import, opening and dumping, each as a child process of its own.
// CPU time beside yardsticks on the same data in the same run: an expat pass over the exchange
// file, a bare walk of the job's frames with their checksums, SQLite's read of as many rows.
// Leans on the library, expat, SQLite and POSIX.

#include <expat.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "Library/job/crc16.h"
#include "Library/job/dbaccess.h"
#include "clxmli.h"
#include "platform/folder.h"

namespace {

using namespace clxml;

[[noreturn]] void Fail (const std::string& text) {
  std::fprintf (stderr, "bench_import: %s\n", text.c_str ());
  std::exit (1);
}

std::string Device (const std::string& host) {
  return folder_DevicePath (Str (host.c_str ())).Data ();
}

// What one child process used.
struct Cost {
  double cpu = 0;       // seconds, user and system
  double peak = 0;      // bytes of memory at most
  uint64_t answer = 0;  // what the work gave
};

// Runs the work in a child, so that its memory and time are its own.
Cost Measure (const std::function<uint64_t ()>& work) {
  int ends[2];
  if (pipe (ends) != 0) Fail ("no pipe");
  std::fflush (nullptr);  // what waits is the parent's to write
  const pid_t child = fork ();
  if (child == 0) {
    const uint64_t answer = work ();
    const bool told = write (ends[1], &answer, sizeof answer) == sizeof answer;
    _exit (told ? 0 : 1);
  }
  close (ends[1]);
  Cost cost;
  const bool heard = read (ends[0], &cost.answer, sizeof cost.answer) == sizeof cost.answer;
  close (ends[0]);
  int status = 0;
  rusage used{};
  wait4 (child, &status, 0, &used);
  if (!heard || status != 0) Fail ("a measured process failed");
  const auto seconds = [] (const timeval& t) {
    return static_cast<double> (t.tv_sec) + static_cast<double> (t.tv_usec) * 1e-6;
  };
  cost.cpu = seconds (used.ru_utime) + seconds (used.ru_stime);
  cost.peak = static_cast<double> (used.ru_maxrss) * 1024;
  return cost;
}

// The middle of several runs, by CPU time.
Cost Median (int rounds, const std::function<uint64_t ()>& work) {
  std::vector<Cost> costs;
  for (int i = 0; i < rounds; i++) costs.push_back (Measure (work));
  std::sort (costs.begin (), costs.end (),
             [] (const Cost& a, const Cost& b) { return a.cpu < b.cpu; });
  return costs[costs.size () / 2];
}

uint64_t PassOfExpat (const std::string& file) {
  std::FILE* in = std::fopen (file.c_str (), "rb");
  if (!in) Fail ("cannot open " + file);
  XML_Parser parser = XML_ParserCreate (nullptr);
  uint64_t elements = 0;
  XML_SetUserData (parser, &elements);
  XML_SetElementHandler (
      parser, [] (void* n, const char*, const char**) { ++*static_cast<uint64_t*> (n); },
      [] (void*, const char*) {});
  XML_SetCharacterDataHandler (parser, [] (void*, const char*, int) {});
  for (;;) {
    void* room = XML_GetBuffer (parser, 1 << 18);
    const std::size_t got = std::fread (room, 1, 1 << 18, in);
    if (!XML_ParseBuffer (parser, static_cast<int> (got), got == 0)) Fail ("expat refuses " + file);
    if (got == 0) break;
  }
  XML_ParserFree (parser);
  std::fclose (in);
  return elements;
}

uint64_t Import (const std::string& file, const std::string& job) {
  std::filesystem::remove (job);
  return ImportCLXMLFile (Device (file).c_str (), Device (job).c_str (), nullptr);
}

uint64_t WalkOfFrames (const std::string& job) {
  std::FILE* in = std::fopen (job.c_str (), "rb");
  if (!in) Fail ("cannot open " + job);
  std::vector<unsigned char> block (1 << 20);
  std::size_t held = std::fread (block.data (), 1, block.size (), in);
  std::size_t place = 48;
  uint64_t frames = 0;
  for (;;) {
    uint32_t length = 0;
    if (held - place >= 4) std::memcpy (&length, block.data () + place, 4);
    if (held - place < 4 || held - place - 4 < length) {
      held -= place;
      std::memmove (block.data (), block.data () + place, held);
      place = 0;
      const std::size_t got = std::fread (block.data () + held, 1, block.size () - held, in);
      if (got == 0) break;
      held += got;
      continue;
    }
    const unsigned char* frame = block.data () + place + 4;
    uint16_t stored = 0;
    std::memcpy (&stored, frame + length - 2, 2);
    if (crc16_Arc (frame, length - 2) != stored) Fail ("a frame's checksum is wrong");
    frames++;
    place += 4 + length;
  }
  std::fclose (in);
  return frames;
}

uint64_t OpenAndReplay (const std::string& job) {
  dbAccess access;
  if (!access.Open (Str (Device (job).c_str ()), false)) Fail ("cannot open " + job);
  const auto records = static_cast<uint64_t> (access.Model ().RecordCount ());
  access.Close ();
  return records;
}

void MakeRows (const std::string& path, uint64_t rows) {
  std::filesystem::remove (path);
  sqlite3* db = nullptr;
  if (sqlite3_open (path.c_str (), &db) != SQLITE_OK) Fail ("no database");
  sqlite3_exec (db,
                "create table record (id integer primary key, type text, time real, note text, "
                "name text, code text, north real, east real, elev real); begin",
                nullptr, nullptr, nullptr);
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2 (db, "insert into record values (?,'db_Observation',?,'',?,'FENCE',?,?,?)", -1,
                      &insert, nullptr);
  for (uint64_t i = 1; i <= rows; i++) {
    const double x = static_cast<double> (i) * 1.000123;
    sqlite3_bind_int64 (insert, 1, static_cast<int64_t> (i));
    sqlite3_bind_double (insert, 2, 9.3e8 + x);
    const std::string name = std::to_string (i);
    sqlite3_bind_text (insert, 3, name.c_str (), -1, SQLITE_TRANSIENT);
    for (int k = 4; k <= 6; k++) sqlite3_bind_double (insert, k, x * k);
    sqlite3_step (insert);
    sqlite3_reset (insert);
  }
  sqlite3_finalize (insert);
  sqlite3_exec (db, "commit", nullptr, nullptr, nullptr);
  sqlite3_close (db);
}

uint64_t ReadRows (const std::string& path) {
  sqlite3* db = nullptr;
  if (sqlite3_open (path.c_str (), &db) != SQLITE_OK) Fail ("no database");
  sqlite3_stmt* select = nullptr;
  sqlite3_prepare_v2 (db, "select * from record", -1, &select, nullptr);
  uint64_t bytes = 0;
  while (sqlite3_step (select) == SQLITE_ROW)
    for (int k = 0; k < 9; k++) {
      const char* text = reinterpret_cast<const char*> (sqlite3_column_text (select, k));
      bytes += text ? std::strlen (text) : 0;
    }
  sqlite3_finalize (select);
  sqlite3_close (db);
  return bytes;
}

uint64_t Dump (const std::string& tool, const std::string& job) {
  const pid_t child = fork ();
  if (child == 0) {
    if (!std::freopen ("/dev/null", "w", stdout)) _exit (1);
    execl (tool.c_str (), "clxml", "dump", job.c_str (), static_cast<char*> (nullptr));
    _exit (1);
  }
  int status = 0;
  waitpid (child, &status, 0);
  if (status != 0) Fail ("dump failed");
  return 0;
}

void Report (const std::string& file, const std::string& tool, int rounds) {
  const std::string job = file + ".bench.job";
  const std::string rows = file + ".bench.db";
  const Cost expat = Median (rounds, [&] { return PassOfExpat (file); });
  const Cost import = Median (rounds, [&] { return Import (file, job); });
  if (import.answer != 0) Fail ("import gave " + std::to_string (import.answer));
  const Cost walk = Median (rounds, [&] { return WalkOfFrames (job); });
  const Cost open = Median (rounds, [&] { return OpenAndReplay (job); });
  const double records = static_cast<double> (open.answer);
  std::printf ("%s: %.1f MB, %.0f elements, %.0f frames, %.0f records\n", file.c_str (),
               static_cast<double> (std::filesystem::file_size (file)) * 1e-6,
               static_cast<double> (expat.answer), static_cast<double> (walk.answer), records);
  std::printf ("  expat pass   %7.3f s\n", expat.cpu);
  std::printf ("  import       %7.3f s  %5.2f x expat   %4.0f bytes/record\n", import.cpu,
               import.cpu / expat.cpu, import.peak / records);
  std::printf ("  frame walk   %7.3f s\n", walk.cpu);
  std::printf ("  open, replay %7.3f s  %5.2f x walk    %4.0f bytes/record\n", open.cpu,
               open.cpu / walk.cpu, open.peak / records);
  if (!tool.empty ()) {
    MakeRows (rows, open.answer);
    const Cost read = Median (rounds, [&] { return ReadRows (rows); });
    const Cost dump = Median (rounds, [&] { return Dump (tool, job); });
    std::printf ("  SQLite read  %7.3f s\n", read.cpu);
    std::printf ("  clxml dump   %7.3f s  %5.2f x SQLite\n", dump.cpu, dump.cpu / read.cpu);
    std::filesystem::remove (rows);
  }
  std::filesystem::remove (job);
  std::fflush (stdout);
}

}  // namespace

int main (int argc, char** argv) {
  int rounds = 5;
  std::string tool;
  std::vector<std::string> files;
  for (int i = 1; i < argc; i++) {
    if (std::strcmp (argv[i], "--rounds") == 0 && i + 1 < argc)
      rounds = std::atoi (argv[++i]);
    else if (std::strcmp (argv[i], "--tool") == 0 && i + 1 < argc)
      tool = argv[++i];
    else
      files.emplace_back (argv[i]);
  }
  if (files.empty () || rounds < 1) {
    std::fputs ("usage: bench_import [--rounds N] [--tool CLXML] EXCHANGE...\n", stderr);
    return 64;
  }
  for (const std::string& file : files) Report (file, tool, rounds);
  return 0;
}
