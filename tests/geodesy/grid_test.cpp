// Grids: what opens, what is looked up, and what is refused.
#include "geodesy/grid.h"

#include <filesystem>
#include <limits>
#include <utility>

#include "support/faults.h"
#include "support/gridfile.h"
#include "support/hearing.h"

namespace clxml {
namespace {

using testing::GridFile;
using Line = std::vector<long double>;

// An evaluation of its own: long doubles, node by node, and the spline by its second derivatives.

int First (long double place, int order, int needed, int nodes) {
  const int h = order / 2;
  const int low = order % 2 != 0 ? static_cast<int> (std::floor (place + 0.5L)) - h
                                 : static_cast<int> (std::floor (place)) - h + 1;
  return std::max (0, std::min (low, nodes - needed));
}

long double Spline (const Line& y, long double t) {
  const std::size_t n = y.size ();
  Line second (n, 0.0L);
  for (int sweep = 0; sweep < 200; sweep++)  // Gauss and Seidel: the diagonal is dominant
    for (std::size_t i = 1; i + 1 < n; i++)
      second[i] = (6 * (y[i - 1] - 2 * y[i] + y[i + 1]) - second[i - 1] - second[i + 1]) / 4;
  if (t > static_cast<long double> (n - 1))
    return y[n - 1] +
           (t - static_cast<long double> (n - 1)) * (y[n - 1] - y[n - 2] + second[n - 2] / 6);
  const std::size_t k = std::min (static_cast<std::size_t> (t), n - 2);
  const long double b = t - static_cast<long double> (k);
  const long double a = 1 - b;
  return a * y[k] + b * y[k + 1] +
         ((a * a * a - a) * second[k] + (b * b * b - b) * second[k + 1]) / 6;
}

long double Along (const Line& y, long double t, uint8_t method) {
  if (method == 4) return Spline (y, t);
  if (method == 2) return y[0] + t * (y[1] - y[0]);
  return y[0] + t * (y[1] - y[0]) + t * (t - 1) / 2 * (y[2] - 2 * y[1] + y[0]);
}

double Expected (const GridFile& file, double latitude, double longitude) {
  const int order = file.method == 2 ? 2 : file.order;
  const long double f = (static_cast<long double> (longitude) - file.lonMin) / file.lonSpacing;
  const long double g = (static_cast<long double> (latitude) - file.latMin) / file.latSpacing;
  const int needed = file.method >= 8 ? std::max (order, 3) : order;
  const int col = First (f, order, needed, file.columns);
  const int row = First (g, order, needed, file.rows);
  Line rows;
  for (int j = row; j < row + needed; j++) {
    Line line;
    for (int i = col; i < col + needed; i++) line.push_back (file.Stored (j, i));
    rows.push_back (Along (line, f - col, file.method));
  }
  return static_cast<double> (Along (rows, g - row, file.method));
}

class Grid : public testing::LibraryTest {
 protected:
  csib_Status Open (const std::string& bytes) {
    testing::PutFile (folder.Host ("a.ggf"), bytes);
    return datum_GridOpen (grid, folder.Device ("a.ggf").View (), 0);
  }
  csib_Status OpenEmbedded (const std::string& bytes) {
    const std::string form = testing::EmbeddedGrid ("a.ggf", bytes);
    csib_Bytes source ({reinterpret_cast<const uint8_t*> (form.data ()), form.size ()});
    csib_Block block;
    block.StorageMode = CSIB_Embedded;
    const csib_Status status = datum_GridOpen (grid, block, source, 0);
    EXPECT_EQ (source.Left () == 0, status == CSIB_Ok);
    return status;
  }
  // The value, or the status.
  double At (double latitude, double longitude) {
    double value = -1e9;
    const csib_Status status = datum_GridLookup (*grid, latitude, longitude, value);
    return status == CSIB_Ok ? value : static_cast<double> (status);
  }

  std::unique_ptr<datum_Grid> grid;
};

GridFile Hills () {
  GridFile file;
  file.latMin = 47.25;
  file.lonMin = 5.5;
  file.latSpacing = 0.25;
  file.lonSpacing = 0.5;
  file.rows = 8;
  file.columns = 11;
  file.flags = 2;
  file.divisor = 10.0;
  file.value = [] (int row, int column) {
    return 2.1 * std::sin (1.1 * row) + 6.2 * std::cos (0.9 * column) + 0.3 * row - 0.1 * column;
  };
  return file;
}

TEST_F (Grid, LooksEveryKindUpAsAnIndependentEvaluation) {
  GridFile file = Hills ();
  // Nodes, cells, edges, corners, far apart and near each other.
  std::vector<std::pair<double, double>> places;
  for (const double g : {0.0, 0.3, 0.5, 3.0, 3.49, 3.5, 4.2, 6.6, 7.0})
    for (const double f : {0.0, 0.49, 2.0, 2.5, 5.3, 9.0, 9.7, 10.0})
      places.emplace_back (file.latMin + g * file.latSpacing, file.lonMin + f * file.lonSpacing);
  const std::pair<uint8_t, uint16_t> methods[] = {{2, 2},  {2, 4}, {0, 3}, {8, 2}, {8, 3}, {16, 4},
                                                  {16, 7}, {4, 2}, {4, 3}, {4, 4}, {4, 8}};
  for (const auto& [method, order] : methods)
    for (file.element = 0; file.element < 6; file.element++) {
      file.method = method == 0 ? 2 : method;
      file.order = order;
      std::vector<double> expected;
      for (const auto& [latitude, longitude] : places)
        expected.push_back (Expected (file, latitude, longitude));
      file.method = method;
      for (int form = 0; form < 32; form++) {
        file.rowsAscend = (form & 1) != 0;
        file.columnsAscend = (form & 2) != 0;
        file.bigEndian = (form & 4) != 0;
        file.flags = static_cast<uint8_t> ((form & 8) != 0 ? 2 | 64 : 2);
        const bool isEmbedded = (form & 16) != 0;
        ASSERT_EQ (isEmbedded ? OpenEmbedded (file.Bytes ()) : Open (file.Bytes ()), CSIB_Ok);
        for (std::size_t i = 0; i < places.size (); i++)
          ASSERT_NEAR (At (places[i].first, places[i].second), expected[i], 1e-12)
              << "method " << +method << " order " << order << " element " << file.element
              << " form " << form << " place " << i;
      }
    }
}

// A bound may lie beyond the last node; beyond the bound there is no value.
TEST_F (Grid, GoesOnBehindTheLastNode) {
  GridFile file = Hills ();
  for (const double beyond : {0.9, 300.9})
    for (const auto& [method, order] :
         {std::pair<uint8_t, uint16_t> (2, 2), {8, 3}, {4, 2}, {4, 5}}) {
      file.method = method;
      file.order = order;
      std::string bytes = file.Bytes ();
      const double bound = file.LatMax () + beyond * file.latSpacing;
      std::memcpy (bytes.data () + 56, &bound, sizeof bound);
      ASSERT_EQ (Open (bytes), CSIB_Ok);
      const double latitude = file.LatMax () + (beyond - 0.2) * file.latSpacing;
      const double expected = Expected (file, latitude, 8.1);
      EXPECT_NEAR (At (latitude, 8.1), expected, 1e-12 * (1.0 + beyond * beyond)) << +method;
      EXPECT_EQ (At (bound + 0.1 * file.latSpacing, 8.1), CSIB_OutsideGrid);
    }
}

TEST_F (Grid, KeepsToItsNodesWhateverTheBoundsSay) {
  struct Case {
    const char* name;
    std::size_t place;
    double value, latitude, longitude, expected;
  };
  const GridFile file = Hills ();
  const double inside = Expected (file, 48.1, 8.1);
  for (const Case& c : {Case{"fewer degrees than nodes", 72, 8.2, 48.1, 8.1, inside},
                        Case{"outside those", 72, 8.0, 48.1, 8.1, CSIB_OutsideGrid},
                        Case{"longitudes exchanged", 64, 60.0, 48.1, 8.1, CSIB_OutsideGrid},
                        Case{"latitudes exchanged", 48, 60.0, 48.1, 8.1, CSIB_OutsideGrid},
                        Case{"on an exchanged bound", 64, 60.0, 48.1, 60.0, CSIB_OutsideGrid},
                        Case{"bounds far apart", 72, 1e300, 48.1, 8.1, inside},
                        Case{"tiny spacing", 88, 1e-310, 48.1, 8.1, CSIB_NullInGrid}}) {
    std::string bytes = file.Bytes ();
    std::memcpy (bytes.data () + c.place, &c.value, sizeof c.value);
    ASSERT_EQ (Open (bytes), CSIB_Ok) << c.name;
    EXPECT_NEAR (At (c.latitude, c.longitude), c.expected, 1e-12) << c.name;
  }
}

TEST_F (Grid, FindsTheBoundsAndTheTurn) {
  struct Case {
    const char* name;
    double lonMin;
    uint8_t flags;
    double latitude, longitude;
    double expected;  // the row and column of the place, 10 row + column, or a status
  };
  const double nan = std::numeric_limits<double>::quiet_NaN ();
  for (const Case& c : {
           Case{"last node", 180, 0, 4, 200, 44},
           Case{"a little beyond it", 180, 0, 4 + 9e-11, 200 + 9e-11, 44},
           Case{"a little before the first", 180, 0, -9e-11, 180 - 9e-11, 0},
           Case{"beyond it", 180, 32, 2, 200.001, CSIB_OutsideGrid},
           Case{"north of it", 180, 0, 4.001, 190, CSIB_OutsideGrid},
           Case{"west longitude", 180, 0, 2, -170, 22},
           Case{"not turned", 180, 32, 2, -170, CSIB_OutsideGrid},
           Case{"a turn's rounding", 180.2, 0, 1, -179.8, 10},
           Case{"below the first by a turn", 10, 0, 1, -345, 11},
           Case{"above the last by a turn", -20, 0, 1, 350, 12},
           Case{"two turns", -20, 0, 1, 710, CSIB_OutsideGrid},
           Case{"no number", 180, 0, nan, 190, CSIB_OutsideGrid},
           Case{"no longitude", 180, 0, 1, nan, CSIB_OutsideGrid},
           Case{"null", 180, 0, 1e308, 1e308, CSIB_OutsideGrid},
       }) {
    GridFile file;
    file.rows = file.columns = 5;
    file.lonMin = c.lonMin;
    file.lonSpacing = 5;
    file.flags = c.flags;
    file.value = [] (int row, int column) { return 10.0 * row + column; };
    for (file.method = 2; file.method <= 8; file.method = static_cast<uint8_t> (2 * file.method)) {
      file.order = 3;
      ASSERT_EQ (Open (file.Bytes ()), CSIB_Ok);
      EXPECT_NEAR (At (c.latitude, c.longitude), c.expected, 1e-9) << c.name << +file.method;
    }
  }
}

TEST_F (Grid, GivesNullWhereANodeOfTheInterpolationIsNull) {
  GridFile file;
  file.rows = file.columns = 6;
  file.flags = 4;
  file.nullValue = 88.8888;
  file.value = [] (int row, int column) {
    return row == 2 && column == 2 ? 88.8888 + 0.9e-5 : 1.0 * row;
  };
  ASSERT_EQ (Open (file.Bytes ()), CSIB_Ok);
  double value = 0.0;
  EXPECT_EQ (datum_GridLookup (*grid, 1.0, 2.0, value), CSIB_NullInGrid);  // on another node
  EXPECT_EQ (value, 88.8888);
  EXPECT_EQ (At (2.5, 3.0), 2.5);  // the null is in the cached square alone
  file.flags = 0;
  ASSERT_EQ (Open (file.Bytes ()), CSIB_Ok);
  EXPECT_NEAR (At (2.0, 2.0), 88.8888, 1e-4);
  file.value = [] (int row, int) { return row == 2 ? INFINITY : 1.0; };
  ASSERT_EQ (Open (file.Bytes ()), CSIB_Ok);
  EXPECT_EQ (At (2.2, 2.0), CSIB_NullInGrid);
}

TEST_F (Grid, ReadsItsFileOnceIntoMemory) {
  testing::FailingDisk disk;
  ASSERT_EQ (Open (Hills ().Bytes ()), CSIB_Ok);
  const uint64_t before = disk.Calls (os_Operation::Read);
  std::filesystem::remove (folder.Host ("a.ggf"));
  for (int i = 0; i < 100; i++)
    EXPECT_GT (At (47.25 + 0.0175 * i, 5.5 + 0.05 * (i * 37 % 100)), -100.0);
  EXPECT_EQ (disk.Calls (os_Operation::Read), before);
  testing::PutFile (folder.Host ("a.ggf"), Hills ().Bytes ());
  disk.FailFrom (os_Operation::Read, 1);
  EXPECT_EQ (datum_GridOpen (grid, folder.Device ("a.ggf").View (), 0), CSIB_WrongFormat);
}

// The north-west corner of a grid that is too large for memory has the values of a small one.
TEST_F (Grid, ReadsALargeFileOnlyWhereTheSquareEnds) {
  GridFile file = Hills ();
  const auto openLarge = [&] {
    constexpr int nodes = 3000;
    std::string small = file.Bytes (), line (nodes * 8, '\0');
    const double size = (nodes - 1) * file.lonSpacing + file.lonMin;
    std::memcpy (small.data () + 72, &size, sizeof size);
    std::string large = small.substr (0, DATUM_GridHeaderSize);
    std::memcpy (large.data () + 96, &nodes, sizeof nodes);
    std::memcpy (large.data () + 100, &nodes, sizeof nodes);
    for (int row = 0; row < file.rows; row++) {
      const std::size_t length = static_cast<std::size_t> (file.columns) * 8;
      small.copy (line.data (), length,
                  DATUM_GridHeaderSize + static_cast<std::size_t> (row) * length);
      large += line;
    }
    testing::PutFile (folder.Host ("large.ggf"), large);
    std::filesystem::resize_file (folder.Host ("large.ggf"),
                                  DATUM_GridHeaderSize + nodes * nodes * 8);
    return datum_GridOpen (grid, folder.Device ("large.ggf").View (), 0);
  };
  for (const auto& [method, order] :
       {std::pair<uint8_t, uint16_t> (4, 4), {16, 5}, {8, 2}, {2, 2}}) {
    file.method = method;
    file.order = order;
    ASSERT_EQ (openLarge (), CSIB_Ok);
    ASSERT_TRUE (grid->Image.empty ());
    for (const auto& [latitude, longitude] :
         {std::pair (47.3, 5.6), {48.1, 8.1}, {47.6, 9.2}, {48.24, 5.51}, {47.25, 9.0}})
      EXPECT_NEAR (At (latitude, longitude), Expected (file, latitude, longitude), 1e-12)
          << +method << " " << latitude;
  }
  testing::FailingDisk disk;
  const auto reads = [&] { return disk.Calls (os_Operation::Read); };
  ASSERT_EQ (openLarge (), CSIB_Ok);
  const double first = At (48.1, 8.1);
  const uint64_t before = reads ();
  for (int i = 0; i < 100; i++) EXPECT_NE (At (48.0 + 0.004 * i, 7.8 + 0.009 * i), 0.0);
  EXPECT_EQ (At (48.1, 8.1), first);
  EXPECT_EQ (reads (), before);
  // A square that could not be read is no square, nor is the one before it.
  disk.FailFrom (os_Operation::Read, 2);
  EXPECT_EQ (At (47.3, 10.4), CSIB_WrongFormat);
  EXPECT_EQ (At (48.1, 8.1), CSIB_WrongFormat);
  disk.Heal ();
  EXPECT_EQ (At (48.1, 8.1), first);
  EXPECT_FALSE (hearing.fileErrors.empty ());
}

TEST_F (Grid, RefusesHeadersThatCannotBe) {
  const auto bytesOf = [] (auto value) {
    return std::string (reinterpret_cast<const char*> (&value), sizeof value);
  };
  const double nan = std::numeric_limits<double>::quiet_NaN ();
  const struct {
    const char* name;
    std::size_t place;
    std::string bytes;
    csib_Status status;
  } cases[] = {
      {"magic", 3, "r", CSIB_WrongGridMagic},
      {"magic without its end", 15, " ", CSIB_WrongGridMagic},
      {"no rows", 96, bytesOf (0), CSIB_WrongFormat},
      {"rows in neither order", 96, bytesOf (0x11111111), CSIB_WrongFormat},
      {"more rows than elements", 96, bytesOf (9), CSIB_WrongFormat},
      {"no columns", 100, bytesOf (0), CSIB_WrongFormat},
      {"negative columns", 100, bytesOf (-1), CSIB_WrongFormat},
      {"columns beyond 32 bits of bytes", 100, bytesOf (0x7FFFFFFF), CSIB_WrongFormat},
      {"a bound without number", 56, bytesOf (nan), CSIB_WrongFormat},
      {"zero spacing", 80, bytesOf (0.0), CSIB_WrongFormat},
      {"negative spacing", 88, bytesOf (-0.5), CSIB_WrongFormat},
      {"spacing without number", 88, bytesOf (nan), CSIB_WrongFormat},
      {"zero divisor", 128, bytesOf (0.0), CSIB_WrongFormat},
      {"divisor without number", 128, bytesOf (nan), CSIB_WrongFormat},
      {"order above the rows", 136, bytesOf (uint16_t{9}), CSIB_WindowTooLarge},
      {"negative order", 136, bytesOf (int16_t{-3}), CSIB_WindowTooLarge},
      {"order of no spline", 136, bytesOf (uint16_t{1}), CSIB_UnknownInterpolation},
      {"no order", 136, bytesOf (uint16_t{0}), CSIB_UnknownInterpolation},
      {"no element", 141, std::string (1, '\0'), CSIB_WrongFormat},
      {"unknown element", 141, std::string (1, '\x40'), CSIB_WrongFormat},
      {"larger element", 141, std::string (1, '\x20'), CSIB_WrongFormat},
  };
  GridFile file = Hills ();
  file.method = 4;
  file.order = 8;
  const std::string whole = file.Bytes ();
  for (const auto& c : cases) {
    std::string bytes = whole;
    bytes.replace (c.place, c.bytes.size (), c.bytes);
    EXPECT_EQ (Open (bytes), c.status) << c.name;
    EXPECT_FALSE (grid) << c.name;
    // A source that ends is told from a file that is too short.
    const csib_Status embedded = OpenEmbedded (bytes);
    EXPECT_TRUE (embedded == c.status || embedded == CSIB_HeaderUnreadable) << c.name << embedded;
  }
  for (const std::size_t length : {std::size_t{0}, std::size_t{145}, whole.size () - 1}) {
    EXPECT_EQ (Open (whole.substr (0, length)),
               length > 145 ? CSIB_WrongFormat : CSIB_HeaderUnreadable);
  }
  EXPECT_EQ (datum_GridOpen (grid, folder.Device ("none").View (), 0), CSIB_FileNotOpened);
  EXPECT_EQ (datum_GridOpen (grid, "", 0), CSIB_NameMissing);
  EXPECT_EQ (datum_GridOpen (grid, folder.Device ("a.ggf").View (), 0xFFFFFFFF),
             CSIB_HeaderUnreadable);
}

TEST_F (Grid, TakesTheSmallestGridAndTheLargestOrder) {
  GridFile small;
  small.value = [] (int row, int column) { return 2.0 * row + column; };
  ASSERT_EQ (Open (small.Bytes ()), CSIB_Ok);
  EXPECT_EQ (At (0.5, 0.25), 1.25);
  small.method = 4;
  small.order = 3;
  EXPECT_EQ (Open (small.Bytes ()), CSIB_WindowTooLarge);
  // The order of the bytes is told even where the rows are more than those that tell it.
  GridFile tall;
  tall.rows = 10001;
  tall.element = 1;
  tall.value = [] (int row, int) { return row - 5000; };
  for (const bool bigEndian : {false, true}) {
    tall.bigEndian = bigEndian;
    ASSERT_EQ (Open (tall.Bytes ()), CSIB_Ok) << bigEndian;
    EXPECT_EQ (At (9999.5, 0.5), 4999.5);
  }
  GridFile large;
  large.rows = large.columns = DATUM_LargestOrder + 1;
  large.element = 1;
  large.method = 4;
  large.order = DATUM_LargestOrder;
  large.value = [] (int row, int column) { return row - 2.0 * column; };
  ASSERT_EQ (Open (large.Bytes ()), CSIB_Ok);
  EXPECT_NEAR (At (100.25, 30.5), 39.25, 1e-9);
  large.order++;
  EXPECT_EQ (Open (large.Bytes ()), CSIB_UnknownInterpolation);
}

TEST_F (Grid, WritesItsFormInsideABlock) {
  const auto written = [this] (csib_StorageMode mode) {
    std::size_t size = 0;
    EXPECT_EQ (datum_GridSize (*grid, mode, size), CSIB_Ok);
    std::vector<uint8_t> bytes (size);
    csib_Writer out (bytes);
    EXPECT_EQ (datum_GridWrite (*grid, out, mode), CSIB_Ok);
    EXPECT_EQ (out.Position (), size);
    return std::string (bytes.begin (), bytes.end ());
  };
  GridFile file = Hills ();
  const std::string native = file.Bytes ();
  file.bigEndian = ENDIAN_Native == ENDIAN_Little;
  const std::string turned = file.Bytes ();
  // Bytes in the other order are turned once, in memory; a file is copied as it stands.
  ASSERT_EQ (OpenEmbedded (turned), CSIB_Ok);
  EXPECT_EQ (written (CSIB_Embedded), testing::EmbeddedGrid ("a.ggf", native));
  EXPECT_EQ (written (CSIB_ByName), std::string ("a.ggf") + '\0');
  ASSERT_EQ (Open (turned), CSIB_Ok);
  EXPECT_EQ (written (CSIB_Embedded), testing::EmbeddedGrid (datum_GridGetName (*grid), turned));

  file.element = 0;
  for (const auto& [columns, status] :
       {std::pair (8173, CSIB_Ok), std::pair (8174, CSIB_FileTooLong)}) {  // 146 + 8 x columns
    file.columns = columns;
    ASSERT_EQ (Open (file.Bytes ()), CSIB_Ok);
    std::vector<uint8_t> bytes (100000);
    csib_Writer out (bytes);
    EXPECT_EQ (datum_GridWrite (*grid, out, CSIB_Embedded), status);
  }
}

}  // namespace
}  // namespace clxml
