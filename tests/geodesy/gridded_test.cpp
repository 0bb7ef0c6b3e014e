// Components on grids: datum, national grid, projection grid, shift grid and geoid.
#include "geodesy/gridded.h"

#include <filesystem>
#include <numbers>

#include "geodesy/combined.h"
#include "support/gridfile.h"
#include "support/hearing.h"

namespace clxml {
namespace {

using testing::GridFile;

constexpr double degree = CSIB_RadiansOfDegree;

class Gridded : public testing::LibraryTest {
 protected:
  // Puts a file there and gives its path with the terminator, as parameters name it.
  std::string Named (const std::string& name, const std::string& bytes) {
    testing::PutFile (folder.Host (name), bytes);
    return std::string (folder.Device (name).View ()) + '\0';
  }
  template <class Operations>
  csib_Status Read (const Operations& table, const std::string& parameters, double version = 10.3) {
    csib_Bytes in ({reinterpret_cast<const uint8_t*> (parameters.data ()), parameters.size ()},
                   version);
    return table.read (block, in);
  }
  csib_Status ReadShift (const std::string& parameters) {
    csib_Bytes in ({reinterpret_cast<const uint8_t*> (parameters.data ()), parameters.size ()});
    block.HasShiftGrid = 1;
    return csib_ShiftRead (block, in);
  }

  csib_Block block;
};

// a + b row + c column: what lies between the nodes is known without a look-up.
GridFile Plane (double a, double b, double c, uint8_t flags = 0) {
  GridFile file;
  file.latMin = 50.0;
  file.lonMin = -4.0;
  file.latSpacing = 0.5;
  file.lonSpacing = 0.25;
  file.rows = 9;
  file.columns = 17;
  file.flags = flags;
  file.value = [=] (int row, int column) { return a + b * row + c * column; };
  return file;
}

// The same over metres.
GridFile Metres (double a, double b, double c, uint8_t flags = 0) {
  GridFile file = Plane (a, b, c, flags);
  file.latMin = 313000.0;
  file.lonMin = 651000.0;
  file.latSpacing = file.lonSpacing = 100.0;
  return file;
}

TEST_F (Gridded, DatumGridsShiftDirectlyOnOneSideAndIterateOnTheOther) {
  const csib_Geodetic source = {52.3 * degree, -1.1 * degree, 40.0, 35.0, true, true};
  const double row = 2.3 / 0.5;
  const double column = 2.9 / 0.25;
  for (int form = 0; form < 12; form++) {
    const bool isBySource = form % 2 == 0;
    const bool hasHeight = form / 2 % 2 == 0;
    const int kind = form / 4;  // combined, by name, embedded
    SCOPED_TRACE (form);
    const auto flags = static_cast<uint8_t> (isBySource ? 128 : 0);
    std::vector<std::string> grids = {Plane (2.0, 0.3, -0.2, flags).Bytes (),
                                      Plane (-4.0, 0.1, 0.5, flags).Bytes ()};
    if (hasHeight) grids.push_back (Plane (45.0, 0.2, 0.1).Bytes ());
    std::string parameters;
    std::size_t mark = 0;
    for (std::size_t i = 0; i < grids.size (); i++) {
      const std::string name = std::to_string (i) + ".gri";
      parameters += kind == 1 ? Named (name, grids[i]) : testing::EmbeddedGrid (name, grids[i]);
      if (i != 1) continue;
      mark = parameters.size ();
      parameters += hasHeight ? '\xF0' : '\x0F';
    }
    if (kind == 0) parameters = Named ("a.CDG", testing::CombinedDatumGrid (grids, isBySource));
    block.StorageMode = kind == 2 ? CSIB_Embedded : CSIB_ByName;
    const csib_DatumOperations& table = kind == 0 ? csib_CombinedGridDatum : csib_EmbeddedGridDatum;
    ASSERT_EQ (Read (table, parameters), CSIB_Ok);

    const double sign = isBySource ? 1.0 : -1.0;
    csib_Geodetic direct;
    csib_Geodetic back;
    ASSERT_EQ ((isBySource ? table.forward : table.inverse) (block, source, direct), CSIB_Ok);
    EXPECT_NEAR (direct.Latitude,
                 source.Latitude - sign * (2.0 + 0.3 * row - 0.2 * column) * CSIB_Second, 1e-15);
    EXPECT_NEAR (direct.Longitude,
                 source.Longitude + sign * (-4.0 + 0.1 * row + 0.5 * column) * CSIB_Second, 1e-15);
    EXPECT_NEAR (direct.EllipsoidalHeight,
                 hasHeight ? 40.0 + sign * (45.0 + 0.2 * row + 0.1 * column) : 40.0, 1e-11);
    EXPECT_EQ (direct.OrthometricHeight, 35.0);
    ASSERT_EQ ((isBySource ? table.inverse : table.forward) (block, direct, back), CSIB_Ok);
    EXPECT_NEAR (back.Latitude, source.Latitude, 1e-15);
    EXPECT_NEAR (back.Longitude, source.Longitude, 1e-15);
    EXPECT_NEAR (back.EllipsoidalHeight, 40.0, 1e-11);

    csib_Geodetic flat = {source.Latitude, source.Longitude, 40.0, 0.0, false, false};
    ASSERT_EQ (table.forward (block, flat, flat), CSIB_Ok);
    EXPECT_EQ (flat.HasEllipsoidal, hasHeight);
    EXPECT_NEAR (flat.EllipsoidalHeight, hasHeight ? 45.0 + 0.2 * row + 0.1 * column : 40.0, 1e-3);
    EXPECT_EQ (table.forward (block, {0.0, 0.0, 0.0, 0.0, true, false}, back), CSIB_OutsideGrid);
    if (kind == 0) continue;
    EXPECT_EQ (Read (table, parameters, 1.1), CSIB_Ok);  // no height yet, nor a mark of it
    ASSERT_EQ (table.forward (block, source, back), CSIB_Ok);
    EXPECT_EQ (back.EllipsoidalHeight, 40.0);
    parameters[mark] = '\x01';
    EXPECT_NE (Read (table, parameters), CSIB_Ok);
  }
}

TEST_F (Gridded, CombinedDatumGridsAreReadByTheirFirstSet) {
  const std::string grid = Plane (0.0, 0.0, 0.0).Bytes ();
  const std::string whole = testing::CombinedDatumGrid ({grid, grid});
  const struct {
    const char* name;
    std::size_t place;
    std::string bytes;
    csib_Status status;
    bool hasEllipsoid;
  } cases[] = {
      {"as it is", 0, "", CSIB_Ok, true},
      {"offset of the sets", 0, "\x3E", CSIB_WrongFormat, false},
      {"version", 2, "\x02", CSIB_Ok, false},
      {"signature", 4, "X", CSIB_WrongFormat, false},
      {"no sets", 60, std::string (1, '\0'), CSIB_WrongFormat, false},
      {"a set of another type", 63, "\x07", CSIB_Ok, false},
      {"sets that stand still", 60, std::string ("\xFF\0\0\x07\0", 5), CSIB_Ok, false},
      {"three grids of which one is none", 63, "\x02", CSIB_HeaderUnreadable, false},
      {"offset behind the file", 65, "\xFF\xFF\xFF\xFF", CSIB_HeaderUnreadable, true},
      {"no axis", 61 + 12 + 128, std::string (8, '\0'), CSIB_Ok, false},
      {"no flattening", 61 + 12 + 136, std::string (8, '\0'), CSIB_Ok, false},
  };
  for (const auto& c : cases) {
    std::string bytes = whole;
    bytes.replace (c.place, c.bytes.size (), c.bytes);
    EXPECT_EQ (Read (csib_CombinedGridDatum, Named ("a.CDG", bytes)), c.status) << c.name;
    datum_CDGEllipsoid ellipsoid = {-1.0, 2.0};
    EXPECT_EQ (datum_ReadCDGEllipsoid (folder.Device ("a.CDG"), ellipsoid), c.hasEllipsoid)
        << c.name;
    EXPECT_EQ (ellipsoid.SemiMajorAxis == -1.0, !c.hasEllipsoid) << c.name;
  }
  for (std::size_t length = 0; length < 225; length += 8)
    EXPECT_NE (Read (csib_CombinedGridDatum, Named ("a.CDG", whole.substr (0, length))), CSIB_Ok);

  datum_CDGEllipsoid ellipsoid;
  Named ("b.CDG", testing::CombinedDatumGrid ({grid, grid, grid}, true));
  ASSERT_TRUE (datum_ReadCDGEllipsoid (folder.Device ("b.CDG"), ellipsoid));
  EXPECT_EQ (ellipsoid.SemiMajorAxis, 6377563.396);
  EXPECT_EQ (ellipsoid.Flattening, 1.0 / 299.3249);
  EXPECT_FALSE (datum_ReadCDGEllipsoid (folder.Device ("none.CDG"), ellipsoid));

  OutBuffer out (ENDIAN_Little);
  const Str tooLong (std::string (64, 'x').c_str ());
  datum_CDGSet set;
  set.LonFilename = tooLong;
  EXPECT_FALSE (datum_WriteCDGHeader (out, "model", {set}));
  set.LonFilename = "";
  set.SetType = 2;
  set.HeightFilename = tooLong;
  EXPECT_FALSE (datum_WriteCDGHeader (out, "model", {set}));
  set.SetType = 3;
  EXPECT_FALSE (datum_WriteCDGHeader (out, "model", {set}));
  EXPECT_FALSE (datum_WriteCDGHeader (out, tooLong, {datum_CDGSet ()}));
  EXPECT_EQ (hearing.TakeAssertions (),
             (std::vector<std::string>{"lonFilename.Length() < DATUM_CDGSourceFileSize",
                                       "heightFilename.Length() < DATUM_CDGSourceFileSize",
                                       "(header->SetType == 1u) || (header->SetType == 2u)",
                                       "modelName.Length() < DATUM_CDGModelSize"}));
  EXPECT_EQ (out.Length (), 0);
}

TEST_F (Gridded, TheNationalGridIsCorrectedOnItsOwnEllipsoid) {
  // ETRS89 to projected on GRS80: Ordnance Survey, Transformations and OSGM15 user guide, worked
  // example. The corrections are this test's.
  csib_Geodetic source = {
      52.65800783333333 * degree, 1.7160739722222222 * degree, 108.05, 0.0, true, false};
  const double north = 313255.6859;
  const double east = 651307.0030;
  ASSERT_EQ (
      Read (csib_UKNationalGridProjection, Named ("n.pgf", Metres (-78.0, -0.2, 0.1).Bytes ()) +
                                               Named ("e.pgf", Metres (102.0, 0.3, 0.2).Bytes ())),
      CSIB_Ok);
  EXPECT_EQ (block.FalseNorth, -100000.0);
  EXPECT_EQ (block.ProjectionScale, 0.9996012717);
  csib_Grid grid;
  csib_Geodetic back;
  ASSERT_EQ (csib_UKNationalGridProjection.forward (block, source, grid), CSIB_Ok);
  EXPECT_NEAR (grid.North + block.FalseNorth,
               north - 78.0 - 0.2 * (north / 100 - 3130) + 0.1 * (east / 100 - 6510), 2e-4);
  EXPECT_NEAR (grid.East + block.FalseEast,
               east + 102.0 + 0.3 * (north / 100 - 3130) + 0.2 * (east / 100 - 6510), 2e-4);
  EXPECT_TRUE (grid.HasEllipsoidal && grid.EllipsoidalHeight == 108.05);
  ASSERT_EQ (csib_UKNationalGridProjection.inverse (block, grid, back), CSIB_Ok);
  EXPECT_NEAR (back.Latitude, source.Latitude, 1e-12);
  EXPECT_NEAR (back.Longitude, source.Longitude, 1e-12);
  // Differences of PROJ's tmerc along the meridian there.
  double scale = 0.0;
  double convergence = 0.0;
  EXPECT_EQ (csib_UKNationalGridProjection.scale (block, source, scale), CSIB_Ok);
  EXPECT_NEAR (scale, 1.00037653579, 1e-10);
  EXPECT_EQ (csib_UKNationalGridProjection.convergence (block, source, convergence), CSIB_Ok);
  EXPECT_NEAR (convergence, 2.9559227 * degree, 1e-9);
  source.Latitude = 0.0;
  EXPECT_EQ (csib_UKNationalGridProjection.forward (block, source, grid), CSIB_OutsideGrid);
}

TEST_F (Gridded, AProjectionGridIsALookUpAndASearch) {
  const csib_ProjectionOperations& table = csib_ProjectionGridProjection;
  const double corners[] = {0.0, 0.5, 1.0};
  for (const double longitude : {0.1, std::numbers::pi - 1e-4, -2.0}) {
    const std::string chart =
        testing::GridPair (DATUM_ProjectionSignature, Metres (0.6, 2e-5, 1e-6).Bytes (),
                           Metres (longitude, -1e-6, 3e-5).Bytes (), longitude < 0);
    ASSERT_EQ (Read (table, '\0' + Named ("a.pjg", chart)), CSIB_Ok);
    for (const uint8_t sign : {uint8_t{1}, uint8_t{2}}) {
      block.Flags[3] = sign;
      block.Flags[4] = static_cast<uint8_t> (3 - sign);
      for (const double g : corners)
        for (const double f : corners) {
          csib_Grid grid;
          grid.North = (313000.0 + 800.0 * g) * (sign == 2 ? -1.0 : 1.0);
          grid.East = (651000.0 + 1600.0 * f) * (sign == 2 ? 1.0 : -1.0);
          grid.OrthometricHeight = 7.0;
          grid.HasOrthometric = true;
          csib_Geodetic point;
          ASSERT_EQ (table.inverse (block, grid, point), CSIB_Ok);
          EXPECT_NEAR (point.Latitude, 0.6 + 2e-5 * 8 * g + 1e-6 * 16 * f, 1e-14);
          const double expected = longitude - 1e-6 * 8 * g + 3e-5 * 16 * f;
          EXPECT_NEAR (point.Longitude,
                       expected > std::numbers::pi ? expected - 2 * std::numbers::pi : expected,
                       1e-14);
          EXPECT_TRUE (point.HasOrthometric && point.OrthometricHeight == 7.0);
          csib_Grid again;
          ASSERT_EQ (table.forward (block, point, again), CSIB_Ok) << g << " " << f;
          EXPECT_NEAR (again.North, grid.North, 1e-5);
          EXPECT_NEAR (again.East, grid.East, 1e-5);
          point.Latitude += g > 0.6 ? 1e-4 : -1e-3;  // off the chart
          EXPECT_EQ (table.forward (block, point, again), CSIB_DidNotConverge);
          grid.North += grid.North;
          EXPECT_EQ (table.inverse (block, grid, point), CSIB_OutsideProjectionGrid);
        }
    }
  }
  double value = 0.0;
  EXPECT_NE (table.scale (block, {}, value), CSIB_Ok);  // the block measures it
  EXPECT_EQ (table.convergence (block, {}, value), CSIB_NoConvergence);

  const std::string flat = Metres (0.6, 0.0, 0.0).Bytes ();
  const std::string pair = testing::GridPair (DATUM_ProjectionSignature, flat, flat);
  const std::string shift = testing::GridPair (DATUM_ShiftSignature, flat, flat);
  EXPECT_EQ (Read (table, '\0' + Named ("a.pjg", pair)), CSIB_WrongFormat);  // spans nothing
  EXPECT_EQ (Read (table, '\0' + Named ("a.pjg", shift)), CSIB_WrongFormat);
  for (std::size_t length = 0; length < 45; length++)
    EXPECT_EQ (Read (table, '\0' + Named ("a.pjg", pair.substr (0, length))), CSIB_HeaderUnreadable)
        << length;
  std::string endless = pair;
  endless[4 + 32] = 's';
  EXPECT_EQ (Read (table, '\0' + Named ("a.pjg", endless)), CSIB_WrongFormat);
  EXPECT_EQ (Read (table, '\0' + Named ("a.pjg", std::string (90, '\1'))), CSIB_WrongFormat);
  EXPECT_EQ (Read (table, "\2"), CSIB_WrongFormat);
  EXPECT_EQ (Read (table, std::string ("\0x", 2)), CSIB_HeaderUnreadable);
}

TEST_F (Gridded, AShiftGridWorksOnTrueCoordinates) {
  block.FalseNorth = 300000.0;
  block.FalseEast = -40000.0;
  for (const uint8_t flags : {uint8_t{0}, uint8_t{128}}) {
    ASSERT_EQ (ReadShift ('\0' + Named ("a.sgf", testing::GridPair (
                                                     DATUM_ShiftSignature,
                                                     Metres (1.0, 0.2, 0.1, flags).Bytes (),
                                                     Metres (-2.0, 0.1, 0.05).Bytes (), true))),
               CSIB_Ok);
    csib_Grid point;
    point.North = 13250.0;
    point.East = 691500.0;
    if (flags == 128) {
      EXPECT_EQ (csib_ShiftForward (block, point), CSIB_WrongFormat);
      EXPECT_EQ (csib_ShiftInverse (block, point), CSIB_Ok);
      continue;
    }
    ASSERT_EQ (csib_ShiftForward (block, point), CSIB_Ok);
    EXPECT_NEAR (point.North, 13250.0 + 1.0 + 0.2 * 2.5 + 0.1 * 5.0, 1e-9);
    EXPECT_NEAR (point.East, 691500.0 - 2.0 + 0.1 * 2.5 + 0.05 * 5.0, 1e-9);
    ASSERT_EQ (csib_ShiftInverse (block, point), CSIB_Ok);
    EXPECT_NEAR (point.North, 13250.0, 1e-9);
    EXPECT_NEAR (point.East, 691500.0, 1e-9);
    // Metres are not turned by 360.
    point.East = 692600.0 + 100.0;
    EXPECT_EQ (csib_ShiftForward (block, point), CSIB_OutsideGrid);
    EXPECT_EQ (csib_ShiftInverse (block, point), CSIB_OutsideGrid);
  }
}

// The life of a component and of its files is the same for all.
TEST_F (Gridded, FilesAreReleasedReplacedAndLoadedAgain) {
  struct Kind {
    const char* name;
    std::function<std::string (double)> parameters;  // with all values more by that
    std::function<csib_Status (csib_Bytes&)> read;
    std::function<csib_Status (std::string_view)> unload, load;
    std::function<csib_Status (csib_Writer&, csib_StorageMode)> write;
    std::function<csib_Status (csib_StorageMode, std::size_t&)> size;
    std::function<csib_Status (std::vector<uint8_t>&)> again;
    std::function<csib_Status (double&)> value;
    bool isByPath;
  };
  const auto kindOf = [this] (const char* name, auto parameters, const auto& table, auto value,
                              bool isByPath) {
    return Kind{
        name,
        parameters,
        [&] (csib_Bytes& in) { return table.read (block, in); },
        [&] (std::string_view path) { return table.unload (block, path); },
        [&] (std::string_view path) { return table.load (block, path); },
        [&] (csib_Writer& o, csib_StorageMode mode) { return table.write (block, o, mode); },
        [&] (csib_StorageMode mode, std::size_t& n) { return table.size (block, mode, n); },
        [&] (std::vector<uint8_t>& bytes) { return table.parameters (block, bytes); },
        value,
        isByPath};
  };
  const csib_DatumOperations shiftTable = {csib_ShiftRead, csib_ShiftUnload,     csib_ShiftLoad,
                                           nullptr,        csib_ShiftWrite,      nullptr,
                                           nullptr,        csib_ShiftParameters, csib_ShiftSize};
  const auto geodetic = [this] (auto operation) {
    return [this, operation] (double& value) {
      csib_Geodetic out;
      const csib_Status status = operation (block, {52.0 * degree, -2.0 * degree}, out);
      value = out.Latitude;
      return status;
    };
  };
  const auto latitudes = [] (double more) { return Plane (1.0 + more, 0.1, 0.1).Bytes (); };
  const auto metres = [] (double more) { return Metres (1.0 + more, 0.1, 0.1).Bytes (); };
  const Kind kinds[] = {
      kindOf (
          "datum by names",
          [&] (double more) {
            return Named ("One.x", latitudes (more)) + Named ("two.x", latitudes (0)) + '\x0F';
          },
          csib_EmbeddedGridDatum, geodetic (csib_EmbeddedGridDatum.forward), false),
      kindOf (
          "combined datum",
          [&] (double more) {
            return Named ("One.x", testing::CombinedDatumGrid (
                                       {latitudes (more), latitudes (0), latitudes (more)}));
          },
          csib_CombinedGridDatum, geodetic (csib_CombinedGridDatum.inverse), true),
      kindOf (
          "national grid",
          [&] (double more) {
            return Named ("two.x", metres (0)) + Named ("One.x", metres (more));
          },
          csib_UKNationalGridProjection,
          [this] (double& value) {
            csib_Geodetic out;
            csib_Grid point;
            point.North = 413300.0;
            point.East = 251500.0;
            const csib_Status status = csib_UKNationalGridProjection.inverse (block, point, out);
            value = out.Longitude;
            return status;
          },
          false),
      kindOf (
          "projection grid",
          [&] (double more) {
            return '\0' + Named ("One.x", testing::GridPair (DATUM_ProjectionSignature,
                                                             metres (more), metres (0)));
          },
          csib_ProjectionGridProjection,
          [this] (double& value) {
            csib_Geodetic out;
            csib_Grid point;
            point.North = 313300.0;
            point.East = 651500.0;
            const csib_Status status = csib_ProjectionGridProjection.inverse (block, point, out);
            value = out.Latitude;
            return status;
          },
          true),
      kindOf (
          "shift grid",
          [&] (double more) {
            return '\0' + Named ("One.x", testing::GridPair (DATUM_ShiftSignature, metres (more),
                                                             metres (0)));
          },
          shiftTable,
          [this] (double& value) {
            csib_Grid point;
            point.North = 313300.0;
            point.East = 651500.0;
            const csib_Status status = csib_ShiftForward (block, point);
            value = point.North;
            return status;
          },
          true),
      kindOf (
          "geoid", [&] (double more) { return Named ("One.x", latitudes (more)); },
          csib_GeoidGridGeoid,
          [this] (double& value) {
            return csib_GeoidGridGeoid.separation (block, {52.0 * degree, -2.0 * degree}, value);
          },
          false),
  };
  block.HasShiftGrid = 1;
  for (const Kind& kind : kinds) {
    SCOPED_TRACE (kind.name);
    block.StorageMode = CSIB_ByName;
    block.FalseNorth = block.FalseEast = 0.0;  // as the national grid left them
    const std::string parameters = kind.parameters (0.0);
    const std::vector<uint8_t> bytes (parameters.begin (), parameters.end ());
    csib_Bytes in (bytes);
    ASSERT_EQ (kind.read (in), CSIB_Ok);
    EXPECT_EQ (in.Left (), 0u);
    double first = 0.0;
    ASSERT_EQ (kind.value (first), CSIB_Ok);
    const auto written = [&] (csib_StorageMode mode) {
      std::size_t size = 0;
      EXPECT_EQ (kind.size (mode, size), CSIB_Ok);
      std::vector<uint8_t> out (size);
      csib_Writer writer (out);
      EXPECT_EQ (kind.write (writer, mode), CSIB_Ok);
      EXPECT_EQ (writer.Position (), size);
      return out;
    };
    EXPECT_EQ (written (CSIB_ByName), bytes);
    const std::vector<uint8_t> embedded = written (CSIB_Embedded);

    const std::string path (folder.Device ("oNE.X").View ());
    std::string slashed = path;
    std::replace (slashed.begin (), slashed.end (), '\\', '/');
    double value = 0.0;
    EXPECT_EQ (kind.unload (path + "y"), CSIB_Ok);
    EXPECT_EQ (kind.unload (""), CSIB_Ok);
    EXPECT_EQ (kind.value (value), CSIB_Ok);
    EXPECT_EQ (kind.unload (slashed), CSIB_Ok);
    EXPECT_EQ (kind.value (value), CSIB_Unloaded);
    EXPECT_EQ (kind.unload (path), CSIB_UnloadedTwice);
    std::size_t size = 0;
    EXPECT_EQ (written (CSIB_ByName), bytes);
    if (embedded == bytes)
      EXPECT_EQ (written (CSIB_Embedded), bytes);  // a path in both modes
    else
      EXPECT_EQ (kind.size (CSIB_Embedded, size), CSIB_Unloaded);
    std::vector<uint8_t> again;
    EXPECT_EQ (kind.again (again), CSIB_Ok);
    EXPECT_EQ (again, bytes);
    std::filesystem::remove (folder.Host ("One.x"));
    EXPECT_EQ (kind.load (path), CSIB_FileNotOpened);
    EXPECT_EQ (kind.value (value), CSIB_Unloaded);
    kind.parameters (0.5);
    EXPECT_EQ (kind.load ("other"), CSIB_Ok);
    EXPECT_EQ (kind.value (value), CSIB_Unloaded);
    EXPECT_EQ (kind.load (path), CSIB_Ok);
    EXPECT_EQ (kind.value (value), CSIB_Ok);
    EXPECT_NE (value, first);

    // Embedded, it needs no file and gives the same bytes again.
    block.StorageMode = CSIB_Embedded;
    std::filesystem::remove (folder.Host ("One.x"));
    csib_Bytes whole (embedded);
    EXPECT_EQ (kind.read (whole), embedded == bytes ? CSIB_FileNotOpened : CSIB_Ok);
    if (embedded == bytes) continue;
    EXPECT_EQ (kind.value (value), CSIB_Ok);
    EXPECT_EQ (value, first);
    EXPECT_EQ (kind.unload (path), CSIB_Ok);
    EXPECT_EQ (kind.value (value), CSIB_Ok);
    EXPECT_EQ (written (CSIB_Embedded), embedded);
    EXPECT_EQ (kind.again (again), CSIB_Ok);
    EXPECT_EQ (again, embedded);
    for (std::size_t length = 0; length < embedded.size (); length += 37) {
      csib_Bytes cut ({embedded.data (), length});
      EXPECT_EQ (kind.read (cut), CSIB_HeaderUnreadable);
    }
  }
}

}  // namespace
}  // namespace clxml
