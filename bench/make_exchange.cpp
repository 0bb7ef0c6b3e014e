// Writes an exchange file of a made-up survey, for benchmarks and tests at any size.
// The same options and seed give the same bytes on every machine. Leans on the standard library.

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

// How the file is to look. The defaults are those of a file that a field application writes:
// indented, one tag a line, record numbers that run on.
struct Options {
  uint64_t points = 1000;
  uint64_t seed = 1;
  int version = 1140;
  bool compact = false;  // few lines of some 12,000 bytes
  bool sparse = false;   // record numbers spread over 32 bits
  bool notes = false;    // a note of some kilobytes at each tenth point
  bool lists = false;    // areas of some thousand points
};

// SplitMix64 (Steele, Lea, Flood 2014): small, and the same everywhere.
class Random {
 public:
  explicit Random (uint64_t seed) : state (seed) {}
  uint64_t Next () {
    uint64_t z = (state += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
  }
  uint64_t Below (uint64_t n) { return Next () % n; }
  double Between (double low, double high) {
    return low + (high - low) * (static_cast<double> (Next () >> 11) * 0x1p-53);
  }

 private:
  uint64_t state;
};

// The text as it grows, and the numbering of records.
class Writer {
 public:
  explicit Writer (const Options& options) : options (options) {}
  ~Writer () { Flush (); }

  void Raw (std::string_view text) {
    buffer += text;
    if (buffer.size () > (1u << 20)) Flush ();
  }
  void Number (double value) {
    char digits[40];
    const auto end = std::to_chars (digits, digits + sizeof digits, value).ptr;
    Raw ({digits, static_cast<std::size_t> (end - digits)});
  }
  void Integer (uint64_t value, int base = 10) {
    char digits[24];
    const auto end = std::to_chars (digits, digits + sizeof digits, value, base).ptr;
    Raw ({digits, static_cast<std::size_t> (end - digits)});
  }
  // A new line; in a compact file only where the line would outgrow what a reader takes in one.
  void Line (int level) {
    if (options.compact && buffer.size () - lineStart < 12000) return;
    Raw ("\n");
    lineStart = buffer.size ();
    if (options.compact) return;
    for (int i = 0; i < level; i++) Raw ("  ");
  }
  // A record's start tag with the next record number, which is the answer.
  uint64_t Start (int level, std::string_view element, std::string_view rec, double time) {
    records++;
    Line (level);
    Raw ("<");
    Raw (element);
    Raw (" rec=\"");
    Raw (rec);
    Raw ("\" ID=\"0x");
    Integer (IdOf (records), 16);
    Raw ("\" TimeStamp=\"");
    Integer (static_cast<uint64_t> (time));
    Raw ("\">");
    return records;
  }
  void Open (int level, std::string_view tag) {
    Line (level);
    Raw ("<");
    Raw (tag);
    Raw (">");
  }
  void End (int level, std::string_view tag) {
    Line (level);
    Close (tag);
  }
  void Text (int level, std::string_view tag, std::string_view value) {
    Open (level, tag);
    Raw (value);
    Close (tag);
  }
  void Value (int level, std::string_view tag, double value) {
    Open (level, tag);
    Number (value);
    Close (tag);
  }
  // A reference to a record by the number that Start gave; 0 is none.
  void Reference (int level, std::string_view tag, uint64_t record) {
    Open (level, tag);
    if (record > 0) {
      Raw ("0x");
      Integer (IdOf (record), 16);
    }
    Close (tag);
  }
  void Flush () {
    if (std::fwrite (buffer.data (), 1, buffer.size (), stdout) != buffer.size ()) {
      std::perror ("make_exchange");
      std::exit (1);
    }
    buffer.clear ();
    lineStart = 0;
  }

 private:
  void Close (std::string_view tag) {
    Raw ("</");
    Raw (tag);
    Raw (">");
  }
  // Odd factors permute the numbers of 32 bits, so no two records share one.
  uint64_t IdOf (uint64_t record) const {
    return options.sparse ? static_cast<uint32_t> (record * 2654435761u) : record;
  }

  const Options& options;
  std::string buffer;
  std::size_t lineStart = 0;
  uint64_t records = 0;
};

constexpr const char* codes[] = {"FENCE", "TREE", "KERB", "EDGE", "MH", "POLE", "WALL", "BM"};
constexpr const char* species[] = {"Oak", "Beech", "Pine", "Maple"};

// One survey: points in a walk over the ground, each an entity of its own, with lines, areas and
// computed records between them.
class Survey {
 public:
  explicit Survey (const Options& options)
      : options (options), random (options.seed), out (options) {}

  void Write () {
    out.Raw ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<JobExchange version=\"");
    out.Integer (static_cast<uint64_t> (options.version));
    out.Raw ("\">");
    out.Line (1);
    out.Raw ("<DATABASE_JobRecord rec=\"db_Job\" ID=\"0x0\" TimeStamp=\"930000000\">Bench ");
    out.Integer (options.seed);
    out.Raw ("<Note>Made for measuring.</Note></DATABASE_JobRecord>");
    for (uint64_t i = 1; i <= options.points; i++) {
      if (i % 200 == 1) SetUp (i);
      Point (i);
      if (i % 20 == 0) Line (i);
      if (i % 50 == 0) Computed (i);
      if (i % (options.lists ? 2000 : 500) == 0) Area (i);
    }
    out.Raw ("\n</JobExchange>\n");
  }

 private:
  static std::string Name (uint64_t i) { return std::to_string (1000 + i); }

  // A new station with its instrument, air, target and back bearing, and a base for the satellites.
  void SetUp (uint64_t i) {
    const std::string station = "S" + std::to_string (i / 200 + 1);
    time += 600.0;
    const uint64_t instrument =
        out.Start (1, "DATABASE_InstrumentRecord", "db_TotalInstrument", time);
    out.Text (2, "Type", "TOTAL_NorvathR6");
    out.Value (2, "RefractiveIndex", 270.0);
    out.Value (2, "CarrierWavelength", 79.167);
    out.Text (2, "HasExtraInfo", "true");
    out.Text (2, "MeasurementMode", "TOTAL_EDMFine");
    out.Text (2, "SetHzCircleMode", "TOTAL_SetToAzimuth");
    out.Text (2, "Servo", "TOTAL_HAandVA");
    out.Value (2, "AnglesOnlyRate", 2.0);
    out.Text (2, "TurnToZero", "false");
    out.Text (2, "AverageMeasurements", "3");
    out.Open (2, "PortParam");
    out.Text (3, "BaudRate", "9600");
    out.Text (3, "DataBits", "8");
    out.Text (3, "StopBits", "1");
    out.Text (3, "Parity", "RS232_NoParity");
    out.Text (3, "FlowControl", "RS232_NoFlowControl");
    out.End (2, "PortParam");
    out.Open (2, "Precisions");
    out.Value (3, "HAPrecision", 4.848e-06);
    out.Value (3, "VAPrecision", 4.848e-06);
    out.Value (3, "EDMPrecision", 0.002);
    out.Value (3, "EDMppm", 2.0);
    out.End (2, "Precisions");
    out.Text (2, "EditInstrumentPrecisions", "false");
    out.Text (2, "Model", "R6 DR300");
    out.Text (2, "Serial", "71820364");
    out.End (1, "DATABASE_InstrumentRecord");

    const uint64_t air = out.Start (1, "DATABASE_AtmosphereRecord", "db_TotalAtmosphere", time);
    out.Value (2, "Pressure", random.Between (990.0, 1030.0));
    out.Value (2, "Temperature", random.Between (5.0, 30.0));
    out.Text (2, "PPM", "");
    out.Text (2, "Refraction", "TOTAL_Refraction0142");
    out.End (1, "DATABASE_AtmosphereRecord");

    stationId = out.Start (1, "DATABASE_StationRecord", "db_TotalStation", time);
    out.Text (2, "StationName", station);
    out.Value (2, "TheodoliteHt", random.Between (1.4, 1.7));
    out.Reference (2, "Instrument", instrument);
    out.Reference (2, "Atmosphere", air);
    out.Text (2, "StationType", "TOTAL_StationSetup");
    out.End (1, "DATABASE_StationRecord");

    // The element that all versions have.
    targetId = out.Start (1, "DATABASE_Target1Record", "db_TotalTarget1", time);
    out.Value (2, "TargetHeight", random.Between (1.3, 2.2));
    out.Value (2, "PrismConstant", -0.03);
    out.End (1, "DATABASE_Target1Record");

    backBearingId = out.Start (1, "DATABASE_BackBearingRecord", "db_TotalBackBearing", time);
    out.Text (2, "Station", station);
    out.Text (2, "BackSight", "S" + std::to_string (i / 200));
    out.Value (2, "F1HorzCircle", random.Between (0.0, 6.28));
    out.Text (2, "F2HorzCircle", "");
    out.End (1, "DATABASE_BackBearingRecord");

    antennaId = out.Start (1, "DATABASE_AntennaRecord", "db_Antenna", time);
    out.Value (2, "MeasuredHeight", 2.0);
    out.Text (2, "APCType", "DBGPS_Corrected1");
    out.Reference (2, "Equipment", 0);
    out.End (1, "DATABASE_AntennaRecord");

    referenceId = out.Start (1, "DATABASE_ReferenceRecord", "db_Reference", time);
    out.Text (2, "PointName", station);
    out.Reference (2, "Antenna", antennaId);
    out.Text (2, "Derivation", "KI");
    out.End (1, "DATABASE_ReferenceRecord");
  }

  void Point (uint64_t i) {
    north += random.Between (-4.0, 5.0);
    east += random.Between (-4.0, 5.0);
    time += 7.0;
    lastPoint = out.Start (1, "DATABASE_ObservationRecord", "db_Observation", time);
    out.Text (2, "PointName", Name (i));
    out.Text (2, "Derivation", "KI");
    out.Text (2, "Method", "DBENTITY_DirectReading");
    out.Text (2, "SurveyMethod", "DBENTITY_KeyedIn");
    out.Text (2, "Classification", "Normal");
    out.Text (2, "Deleted", "false");
    out.Open (2, "Descriptions");
    out.Text (3, "Description1", "Lot " + std::to_string (i % 97));
    out.Text (3, "Description2", "");
    out.End (2, "Descriptions");
    Features (i);
    Measurement (i);
    out.End (1, "DATABASE_ObservationRecord");
    if (i % 10 == 0) Note (i);
    EndEntity ();
  }

  void EndEntity () {
    out.Start (1, "DATABASE_EndEntityRecord", "db_EndEntity", time);
    out.End (1, "DATABASE_EndEntityRecord");
  }

  void Features (uint64_t i) {
    out.Line (2);
    out.Raw ("<DATABASE_FeaturesRecord rec=\"FeatureArray\" FeatureCount=\"1\">");
    out.Line (3);
    out.Raw ("<Feature Name=\"");
    out.Raw (codes[random.Below (8)]);
    out.Raw ("\" StringCode=\"");
    out.Integer (i % 9);
    out.Raw ("\" AttributeCount=\"2\">");
    out.Line (4);
    out.Raw ("<Attribute Name=\"Height\" Type=\"Numerical\" Value=\"");
    out.Number (random.Between (0.3, 20.0));
    out.Raw ("\"/>");
    out.Line (4);
    out.Raw ("<Attribute Name=\"Species\" Type=\"Text\" Value=\"");
    out.Raw (species[random.Below (4)]);
    out.Raw ("\"/>");
    out.End (3, "Feature");
    out.End (2, "DATABASE_FeaturesRecord");
  }

  void Measurement (uint64_t i) {
    switch (i % 4) {
      case 0:
        out.Start (2, "DATABASE_GridRecord", "db_Grid", time);
        out.Open (3, "Grid");
        out.Value (4, "North", north);
        out.Value (4, "East", east);
        out.Value (4, "Elev", random.Between (10.0, 60.0));
        out.End (3, "Grid");
        out.End (2, "DATABASE_GridRecord");
        break;
      case 1: {
        const bool isNew = options.version >= 1140;
        out.Start (2, "DATABASE_ECEFDeltasRecord", "db_ECEFDeltas", time);
        out.Open (3, "ECEFDeltas");
        out.Value (4, isNew ? "dX" : "XDelta", 0.6 * (north - 1000.0));
        out.Value (4, isNew ? "dY" : "YDelta", east - 2000.0);
        out.Value (4, isNew ? "dZ" : "ZDelta", 0.8 * (north - 1000.0));
        out.End (3, "ECEFDeltas");
        out.Reference (3, "Reference", referenceId);
        out.Reference (3, "Antenna", antennaId);
        out.End (2, "DATABASE_ECEFDeltasRecord");
        break;
      }
      default:
        out.Start (2, "DATABASE_CircleRecord", "db_Circle", time);
        out.Open (3, "Circle");
        out.Value (4, "HorzCircle", random.Between (0.0, 6.28));
        out.Value (4, "VertCircle", random.Between (1.4, 1.7));
        out.Value (4, "EDMDistance", random.Between (3.0, 180.0));
        out.Text (4, "Face", "COORD_Face1");
        out.Value (4, "HorzCircleStdErr", 9.69627362219072e-06);
        out.Value (4, "VertCircleStdErr", 9.69627362219072e-06);
        out.Value (4, "EDMDistanceStdErr", 0.002);
        out.Text (4, "EDMMeasurementMode", "TOTAL_EDMFine");
        out.End (3, "Circle");
        out.Reference (3, "Station", stationId);
        out.Reference (3, "Target", targetId);
        out.Reference (3, "BackBearing", backBearingId);
        out.Text (3, "CreatedView", "COORDSYS_CogoDistanceGrid COORDSYS_CogoOrthoHeights");
        out.End (2, "DATABASE_CircleRecord");
        break;
    }
  }

  void Note (uint64_t i) {
    out.Start (1, "DATABASE_NoteRecord", "db_Note", time);
    std::string text = "Seen beside mark " + Name (i) + ", ground wet &amp; soft";
    if (options.notes)
      for (int k = 0; k < 100; k++) text += " and then the hedge went on for another forty metres";
    out.Text (2, "Note", text);
    out.End (1, "DATABASE_NoteRecord");
  }

  void Line (uint64_t i) {
    out.Start (1, "DATABASE_LineRecord", "db_Line", time);
    out.Text (2, "LineId", "L" + std::to_string (i));
    out.Text (2, "Derivation", "KI");
    out.Text (2, "Method", "DBENTITY_TwoPoints");
    out.Text (2, "Deleted", "false");
    out.Text (2, "OriginPoint", Name (i - 1));
    out.Text (2, "TargetPoint", Name (i));
    out.Text (2, "BearingLength", "");
    out.Text (2, "BearingAzimuth", "");
    out.Text (2, "BearingGrade", "");
    out.End (1, "DATABASE_LineRecord");
    EndEntity ();
  }

  void Computed (uint64_t i) {
    out.Start (1, "DATABASE_InverseRecord", "db_Inverse", time);
    out.Text (2, "TargetPoint", Name (i));
    out.Open (2, "Result");
    out.Text (3, "SourcePoint", Name (i - 1));
    out.Text (3, "CreatedView", "COORDSYS_CogoDistanceGrid");
    out.Open (3, "Polar");
    out.Value (4, "Azimuth", random.Between (0.0, 6.28));
    out.Value (4, "HDist", random.Between (1.0, 50.0));
    out.Value (4, "VDist", random.Between (-1.0, 1.0));
    out.End (3, "Polar");
    out.End (2, "Result");
    out.Value (2, "SlopeDistance", random.Between (1.0, 50.0));
    out.Value (2, "Grade", random.Between (-0.1, 0.1));
    out.End (1, "DATABASE_InverseRecord");
    out.Start (1, "DATABASE_MeanTurnedAngleResidualsRecord", "db_MeanTurnedAngleResiduals", time);
    out.Text (2, "PointName", Name (i));
    out.Value (2, "HorzAngResidual", random.Between (-1e-5, 1e-5));
    out.Value (2, "VertAngResidual", random.Between (-1e-5, 1e-5));
    out.Value (2, "SlopeDistResidual", random.Between (-2e-3, 2e-3));
    out.Text (2, "Round", "1");
    out.Reference (2, "Observation", lastPoint);
    out.Reference (2, "MeanTurnedAngle", 0);
    out.End (1, "DATABASE_MeanTurnedAngleResidualsRecord");
  }

  void Area (uint64_t i) {
    const uint64_t corners = options.lists ? 2000 : 12;
    out.Start (1, "DATABASE_AreaRecord", "db_Area", time);
    out.Text (2, "NumberOfPoints", std::to_string (corners));
    out.Text (2, "Method", "COORDSYS_CogoDistanceGrid");
    out.Value (2, "Area", random.Between (100.0, 90000.0));
    out.Value (2, "Perimeter", random.Between (40.0, 2000.0));
    out.Open (2, "ListOfPoints");
    for (uint64_t k = 0; k < corners; k++) out.Text (3, "item", Name (i - k % i));
    out.End (2, "ListOfPoints");
    out.End (1, "DATABASE_AreaRecord");
  }

  const Options& options;
  Random random;
  Writer out;
  double north = 1000.0;
  double east = 2000.0;
  double time = 930000000.0;
  uint64_t lastPoint = 0;
  uint64_t stationId = 0;
  uint64_t targetId = 0;
  uint64_t backBearingId = 0;
  uint64_t antennaId = 0;
  uint64_t referenceId = 0;
};

int Usage () {
  std::fputs (
      "usage: make_exchange POINTS [--seed N] [--version N] [--compact] [--sparse] [--notes] "
      "[--lists] > FILE\n",
      stderr);
  return 64;
}

}  // namespace

int main (int argc, char** argv) {
  Options options;
  if (argc < 2) return Usage ();
  options.points = std::strtoull (argv[1], nullptr, 10);
  for (int i = 2; i < argc; i++) {
    const std::string_view option = argv[i];
    if (option == "--compact")
      options.compact = true;
    else if (option == "--sparse")
      options.sparse = true;
    else if (option == "--notes")
      options.notes = true;
    else if (option == "--lists")
      options.lists = true;
    else if (option == "--seed" && i + 1 < argc)
      options.seed = std::strtoull (argv[++i], nullptr, 10);
    else if (option == "--version" && i + 1 < argc)
      options.version = std::atoi (argv[++i]);
    else
      return Usage ();
  }
  if (options.points == 0) return Usage ();
  Survey (options).Write ();
  return 0;
}
