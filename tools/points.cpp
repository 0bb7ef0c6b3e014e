// clxml points: the points of jobs with their coordinates, as a table, CSV, JSON lines or GeoJSON.
#include "points.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <memory>
#include <unordered_set>
#include <vector>

#include <CLI/CLI.hpp>

#include "Library/records/dbPoints.h"
#include "common.h"
#include "hostfile.h"

namespace clxml::tool {
namespace {

constexpr double degrees = 180.0 / CONSTANT_Pi;
constexpr std::size_t blockSize = 1 << 18;

struct PointsOptions {
  std::vector<std::string> arguments;  // jobs, then names
  IndexedJobOptions job;
  GeoOptions geo;
  std::string output, order, delimiter = ",", decimal = ".";
  bool all = false, json = false, csv = false, geojson = false, projectHeight = false;
};

// Text that goes to standard output, or to a file that appears whole at the end.
class Sink {
 public:
  explicit Sink (const std::string& path) : _Path (path) {
    if (_Path.empty ()) return;
    _Part = _Path + "." + std::to_string (::getpid ()) + ".part";
    _File = std::fopen (_Part.c_str (), "wbx");
    if (!_File) throw Refusal{STATUS_Output, _Path + ": " + host_Reason (errno)};
  }
  ~Sink () {
    if (!_File) return;
    std::fclose (_File);
    host_Remove (_Part);
  }
  Sink (const Sink&) = delete;
  Sink& operator= (const Sink&) = delete;

  void Write (std::string_view text) {
    if (!_File) return Print (text);
    if (std::fwrite (text.data (), 1, text.size (), _File) != text.size ()) Fail ();
  }
  void Finish () {
    if (!_File) return;
    const bool isWhole = std::fclose (_File) == 0;
    _File = nullptr;
    if (!isWhole || host_RenameOver (_Part, _Path) != 0) {
      const int error = errno;
      host_Remove (_Part);
      errno = error;
      Fail ();
    }
  }

 private:
  [[noreturn]] void Fail () const {
    throw Refusal{STATUS_Output, _Path + ": " + host_Reason (errno)};
  }
  std::string _Path, _Part;
  std::FILE* _File = nullptr;
};

void AppendFixed (std::string& out, double value, int decimals) {
  if (maths_IsNull (value) || !std::isfinite (value)) return;
  char digits[400];
  const auto end =
      std::to_chars (digits, digits + sizeof digits, value, std::chars_format::fixed, decimals).ptr;
  std::string_view shown (digits, static_cast<std::size_t> (end - digits));
  if (shown.starts_with ('-') && shown.find_first_not_of ("-0.") == std::string_view::npos)
    shown.remove_prefix (1);
  out += shown;
}

// The columns of the CSV.
struct Column {
  const char* name;
  void (*append) (std::string& cell, const PointRow& row);
  bool isGeodetic;
};
constexpr Column columns[] = {
    {"name", [] (std::string& c, const PointRow& r) { c += r.object->GetName (); }, false},
    {"east", [] (std::string& c, const PointRow& r) { AppendFixed (c, r.grid.East, 4); }, false},
    {"north", [] (std::string& c, const PointRow& r) { AppendFixed (c, r.grid.North, 4); }, false},
    {"elevation", [] (std::string& c, const PointRow& r) { AppendFixed (c, r.grid.Elevation, 4); },
     false},
    {"code", [] (std::string& c, const PointRow& r) { c += r.record ? CodeOf (*r.record) : ""; },
     false},
    {"class", [] (std::string& c, const PointRow& r) { c += ClassWord (r); }, false},
    {"method",
     [] (std::string& c, const PointRow& r) { c += r.record ? MethodInWords (*r.record) : ""; },
     false},
    {"latitude",
     [] (std::string& c, const PointRow& r) {
       AppendFixed (c, maths_Multiply (r.wgs84.Latitude, degrees), 9);
     },
     true},
    {"longitude",
     [] (std::string& c, const PointRow& r) {
       AppendFixed (c, maths_Multiply (r.wgs84.Longitude, degrees), 9);
     },
     true},
    {"height", [] (std::string& c, const PointRow& r) { AppendFixed (c, r.wgs84.Height, 4); },
     true},
    {"time",
     [] (std::string& c, const PointRow& r) {
       if (r.record) c += TimeText (r.record->TimeStamp);
     },
     false},
};

std::vector<const Column*> ColumnsOf (std::string_view order) {
  std::vector<const Column*> chosen;
  if (order.empty ()) {
    for (const Column& column : columns) chosen.push_back (&column);
    return chosen;
  }
  for (;;) {
    const std::string_view word = order.substr (0, order.find (','));
    const auto* found = std::find_if (std::begin (columns), std::end (columns),
                                      [&] (const Column& column) { return word == column.name; });
    if (found == std::end (columns)) {
      std::string known;
      for (const Column& column : columns)
        known += (known.empty () ? "" : ",") + std::string (column.name);
      throw Refusal{STATUS_Usage, "--order: \"" + std::string (word) +
                                      "\" is not a column; the "
                                      "columns are " +
                                      known};
    }
    chosen.push_back (found);
    if (word.size () == order.size ()) return chosen;
    order.remove_prefix (word.size () + 1);
  }
}

char OneCharacter (const char* option, const std::string& text) {
  if (text == "tab" || text == "\\t") return '\t';
  if (text.size () == 1 && text[0] != '"' && text[0] != '\n' && text[0] != '\r') return text[0];
  throw Refusal{STATUS_Usage,
                std::string (option) + " takes one character, or the word tab, but no quote"};
}

// A cell as RFC 4180 has it.
void AppendCell (std::string& line, std::string_view cell, char delimiter) {
  if (cell.find_first_of (std::string ("\"\r\n") + delimiter) == std::string_view::npos) {
    line += cell;
    return;
  }
  line += '"';
  for (const char c : cell) {
    if (c == '"') line += '"';
    line += c;
  }
  line += '"';
}

// A job of the command line and the names that are asked for; all names if there are none.
struct Asked {
  std::vector<std::string> jobs;
  std::unordered_set<std::string> names;
};

// Arguments are jobs up to the first one that is not a file, which must not be the first.
Asked Sort (const std::vector<std::string>& arguments) {
  Asked asked;
  for (const std::string& argument : arguments) {
    const bool isJob = asked.names.empty () && (asked.jobs.empty () || host_Stands (argument));
    if (isJob)
      asked.jobs.push_back (argument);
    else if (argument.ends_with (".job"))
      throw Refusal{STATUS_NotAJob, argument + ": no such file"};
    else
      asked.names.insert (argument);
  }
  return asked;
}

class Points {
 public:
  Points (const PointsOptions& options, Sink& sink)
      : _Options (options),
        _Sink (sink),
        _Columns (ColumnsOf (options.order)),
        _Delimiter (OneCharacter ("--delimiter", options.delimiter)),
        _Decimal (OneCharacter ("--decimal", options.decimal)) {
    if (_Delimiter == _Decimal)
      throw Refusal{STATUS_Usage, "--delimiter and --decimal are the same character"};
    _Request.useProjectHeight = options.projectHeight;
    _Request.needsReason = !options.csv && !options.geojson;
    _Request.needsGeodetic =
        options.json || options.geojson ||
        (options.csv && std::any_of (_Columns.begin (), _Columns.end (),
                                     [] (const Column* column) { return column->isGeodetic; }));
  }

  int Run (Ear& log) {
    const Asked asked = Sort (_Options.arguments);
    _HasSeveral = asked.jobs.size () > 1;
    if (_Options.geojson && (_HasSeveral || !asked.names.empty ()))
      throw Refusal{STATUS_Usage, "--geojson takes one job and no names"};
    if (_Options.csv) Header ();
    int status = STATUS_Clean;
    std::unordered_set<std::string> missing = asked.names;
    for (const std::string& path : asked.jobs) {
      IndexedJob job (path, _Options.job, log);
      status = std::max (status, job.ExitStatus ());
      Print (job, asked, missing);
      _Sink.Write (_Text);
      _Text.clear ();
      if (_Without != 0)
        Say (path + ": " + std::to_string (_Without) + " of " + std::to_string (_Count) +
             " objects have no coordinates");
      _Without = _Count = 0;
    }
    for (const std::string& name : missing) Say ("error: no point has the name " + name);
    _Sink.Finish ();
    return !missing.empty () && status == STATUS_Clean ? int (STATUS_Input) : status;
  }

 private:
  void Header () {
    std::string line;
    if (_HasSeveral) line += std::string ("job") + _Delimiter;
    for (const Column* column : _Columns) {
      if (column != _Columns.front ()) line += _Delimiter;
      line += column->name;
    }
    if (_Options.all) line += std::string (1, _Delimiter) + "best" + _Delimiter + "state";
    _Text += line + "\r\n";
  }

  void Print (IndexedJob& job, const Asked& asked, std::unordered_set<std::string>& missing) {
    if (_Options.geojson) {
      GeoOptions geo = _Options.geo;
      geo.all = _Options.all;
      _Without =
          WriteGeoJson (job, geo, _Request, [this] (std::string_view text) { _Sink.Write (text); });
      _Count = static_cast<uint64_t> (job.Index ().GetObjectCount ());
      return;
    }
    std::vector<dbObject*> objects;
    for (int32_t i = 0; i < job.Index ().GetObjectCount (); i++) {
      dbObject* object = job.Index ().GetObject (i);
      if (!asked.names.empty ()) {
        const std::string name = object->GetName ();
        if (!asked.names.contains (name)) continue;
        missing.erase (name);
      }
      if (!_Options.all && !IsListed (*object)) continue;
      if (_Options.all || _Options.json) {
        One (job, *object);
      } else {
        objects.push_back (object);
      }
    }
    std::stable_sort (objects.begin (), objects.end (), [] (dbObject* a, dbObject* b) {
      return IsBeforeNaturally (a->GetName (), b->GetName ());
    });
    for (dbObject* object : objects) One (job, *object);
    if (!_Options.json && !_Options.csv) Table (job);
  }

  // Without --all: the best live point of each name.
  static bool IsListed (dbObject& object) {
    return AsObservation (&object) && !object.IsDeleted () && !object.IsHidden () &&
           (object.GetStatus () & DBSTATUS_Best) != 0;
  }

  void One (IndexedJob& job, dbObject& object) {
    ObservationObject* point = AsObservation (&object);
    if (_Options.json) {
      _Count++;
      AppendObjectJson (_Text, job, object, _Request);
      if (point && point->KeptGrid ().IsNull ()) _Without++;
    } else if (point) {
      _Count++;
      const PointRow row = RowOf (job, *point, _Request);
      if (row.grid.IsNull ()) _Without++;
      if (_Options.csv)
        Line (job, row);
      else
        Cells (row);
    }
    if (_Text.size () < blockSize) return;
    _Sink.Write (_Text);
    _Text.clear ();
  }

  static const char* StateOf (const PointRow& row) {
    if (row.record && row.record->IsDeleted ()) return "deleted";
    return row.object->IsHidden () || row.object->IsDeleted () ? "hidden" : "live";
  }

  void Line (IndexedJob& job, const PointRow& row) {
    if (_HasSeveral) {
      AppendCell (_Text, job.Path (), _Delimiter);
      _Text += _Delimiter;
    }
    for (const Column* column : _Columns) {
      if (column != _Columns.front ()) _Text += _Delimiter;
      _Cell.clear ();
      column->append (_Cell, row);
      const bool isNumber = column->isGeodetic || column->name == std::string_view ("east") ||
                            column->name == std::string_view ("north") ||
                            column->name == std::string_view ("elevation");
      if (isNumber && _Decimal != '.') std::replace (_Cell.begin (), _Cell.end (), '.', _Decimal);
      AppendCell (_Text, _Cell, _Delimiter);
    }
    if (_Options.all) {
      _Text += _Delimiter;
      _Text += (row.status & DBSTATUS_Best) != 0 ? "yes" : "no";
      _Text += _Delimiter;
      _Text += StateOf (row);
    }
    _Text += "\r\n";
  }

  // One row of the table, kept until the widths are known.
  void Cells (const PointRow& row) {
    std::array<std::string, 8> cells;
    cells[0] = row.object->GetName ();
    if (row.grid.IsNull ()) {
      cells[1] = "-";
      cells[7] = "(" + row.reason + ")";
    } else {
      AppendFixed (cells[1], row.grid.North, 4);
      AppendFixed (cells[2], row.grid.East, 4);
      AppendFixed (cells[3], row.grid.Elevation, 4);
    }
    for (std::size_t i = 1; i < 4; i++)
      if (cells[i].empty ()) cells[i] = "-";
    cells[4] = row.record ? CodeOf (*row.record) : "";
    cells[5] = ClassWord (row);
    cells[6] = row.record ? MethodInWords (*row.record) : "";
    if (_Options.all) {
      std::string state = StateOf (row);
      if (state == "live") state = (row.status & DBSTATUS_Best) != 0 ? "best" : "";
      if (!state.empty ()) cells[7] = state + (cells[7].empty () ? "" : " ") + cells[7];
    }
    _Rows.push_back (std::move (cells));
  }

  static std::size_t Width (std::string_view text) {
    return static_cast<std::size_t> (
        std::count_if (text.begin (), text.end (), [] (char c) { return (c & 0xC0) != 0x80; }));
  }

  void Table (const IndexedJob& job) {
    static const std::array<std::string, 8> heads = {"name", "north", "east",   "elevation",
                                                     "code", "class", "method", ""};
    std::array<std::size_t, 8> widths{};
    _Rows.insert (_Rows.begin (), heads);
    for (const auto& row : _Rows)
      for (std::size_t i = 0; i < row.size (); i++)
        widths[i] = std::max (widths[i], Width (row[i]));
    if (_HasSeveral) _Text += job.Path () + "\n";
    for (const auto& row : _Rows) {
      std::string line;
      for (std::size_t i = 0; i < row.size (); i++) {
        const std::string pad (widths[i] - Width (row[i]), ' ');
        const bool isNumber = i >= 1 && i <= 3;
        if (i != 0) line += "  ";
        line += isNumber ? pad + row[i] : row[i] + pad;
      }
      line.erase (line.find_last_not_of (' ') + 1);
      _Text += line + "\n";
    }
    _Rows.clear ();
  }

  const PointsOptions& _Options;
  Sink& _Sink;
  std::vector<const Column*> _Columns;
  char _Delimiter, _Decimal;
  PointRequest _Request;
  bool _HasSeveral = false;
  std::string _Text, _Cell;
  std::vector<std::array<std::string, 8>> _Rows;
  uint64_t _Count = 0, _Without = 0;
};

}  // namespace

void AddPoints (CLI::App& app, Session& session) {
  const auto options = std::make_shared<PointsOptions> ();
  CLI::App* command =
      app.add_subcommand ("points", "List the points of jobs with their coordinates");
  command
      ->add_option ("JOB", options->arguments, "Job files, then the names of points; all if none")
      ->required ();
  command->add_flag ("--all", options->all,
                     "Every object of the job in its order, not the best point of each name alone");
  CLI::Option* json = command->add_flag ("--json", options->json, "One JSON object a line");
  CLI::Option* csv = command->add_flag ("--csv", options->csv, "Comma-separated values (RFC 4180)");
  CLI::Option* geojson =
      command->add_flag ("--geojson", options->geojson, "GeoJSON (RFC 7946) in WGS84");
  json->excludes (csv)->excludes (geojson);
  csv->excludes (geojson);
  command->add_flag ("--seq", options->geo.isSequence, "GeoJSON with one feature a line")
      ->needs (geojson);
  command
      ->add_flag ("--local", options->geo.isLocal, "GeoJSON with the coordinates of the job's grid")
      ->needs (geojson);
  command
      ->add_option ("--tolerance", options->geo.tolerance,
                    "GeoJSON: metres between an arc and its chords")
      ->needs (geojson)
      ->check (CLI::Range (1e-4, 1e6))
      ->capture_default_str ();
  command->add_option ("--order", options->order, "CSV: the columns wanted, by name")
      ->type_name ("NAME,...")
      ->needs (csv);
  command->add_option ("--delimiter", options->delimiter, "CSV: between columns; tab for a tab")
      ->needs (csv);
  command->add_option ("--decimal", options->decimal, "CSV: the decimal sign")->needs (csv);
  command->add_flag ("--project-height", options->projectHeight,
                     "Use the project height where a height is missing");
  command->add_option ("-o,--output", options->output, "Write to a file instead of standard output")
      ->type_name ("FILE");
  options->job.AddTo (*command);
  command->footer (
      "Lengths are metres. JSON has angles in radians, CSV and GeoJSON in degrees of WGS84.\n"
      "Points without coordinates are listed with the reason and counted on standard error.\n"
      "Exit status: 0 done, 1 not to be opened as a job, 2 the job is damaged, 64 wrong options,\n"
      "65 a name that no point has, or no coordinate system for what was asked.\n"
      "Example: clxml points lot7.job\n"
      "         clxml points lot7.job --csv --order name,north,east,elevation,code -o lot7.csv\n"
      "         clxml points lot7.job --geojson -o lot7.geojson");
  command->callback ([&session, options] {
    session.run = [&session, options] {
      Sink sink (options->output);
      return Points (*options, sink).Run (session.ear);
    };
  });
}

}  // namespace clxml::tool
