// The coordinate system block as bytes: every version and order, hostile bytes, components
// replaced. An encoder of its own, written from the form and not from the writer, makes the blocks.
// Leans on GoogleTest.
#include "geodesy/csib.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>

#include "support/gridfile.h"
#include "support/hearing.h"

namespace clxml {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr double nan = std::numeric_limits<double>::quiet_NaN ();
constexpr double infinity = std::numeric_limits<double>::infinity ();

// What a block says, with a value of its own in every field; the numbers of places are sums of few
// powers of two, so that taking a false origin off and adding it again is exact.
struct Content {
  std::string magic = "QRV CSIB";
  double version = 10.3;
  bool swapped = false;
  uint8_t storage = CSIB_ByName;
  uint8_t datum = CSIB_SevenParameter;
  double a = 6377563.396, b = 6356256.909;
  std::vector<double> datumValues = {446.5, -125.25, 542.0, -7e-7, -1e-6, -4e-6, 0.99998};
  uint8_t projection = CSIB_TransverseMercator;
  std::vector<double> origin = {0.8552113, -0.0349066, -100000.0, 400000.0, 0.9996};
  std::vector<double> ground = {1.00025, 0.25, -0.5};
  uint8_t hasLocation = 1;
  std::vector<double> location = {0.9, -0.03, 120.5};
  uint8_t fixedRadiusFlag = 1;
  double fixedRadius = 6371000.0;
  Bytes projectionBytes;
  std::vector<double> projectionValues;
  uint8_t geoid = CSIB_ConstantSeparation;
  std::vector<double> geoidValues = {47.5};
  std::vector<double> horizontal = {500000.0, 300000.0, 12.5, -3.25, 1e-5, 1.00001};
  std::vector<double> vertical = {500000.0, 300000.0, 0.125, 1e-5, -2e-5};
  uint8_t unknownSection = 0;
  std::u16string unknownText;
};

struct Encoder {
  Bytes out;
  bool swapped;

  void Byte (uint8_t value) { out.push_back (value); }
  template <class T>
  void Number (T value) {
    if (swapped) value = csib_Turned (value);
    const auto* bytes = reinterpret_cast<const uint8_t*> (&value);
    out.insert (out.end (), bytes, bytes + sizeof value);
  }
  void Doubles (const std::vector<double>& values) {
    for (const double value : values) Number (value);
  }
  void Texts (std::initializer_list<const char*> texts) {
    for (const char* text : texts) out.insert (out.end (), text, text + strlen (text) + 1);
  }
  void Text16 (const std::u16string& text) {
    for (const char16_t unit : text) Number (static_cast<uint16_t> (unit));
    Number (uint16_t{0});
  }
  void Reserved (std::size_t n) { out.insert (out.end (), n, 0xDB); }
};

Bytes Encoded (const Content& c) {
  Encoder e{{c.magic.begin (), c.magic.end ()}, c.swapped};
  e.Number (c.version);
  e.Texts ({"s21", "s22", "s31", "", "s11", "s12"});
  e.Reserved (24);
  e.Byte (c.storage);
  e.Byte (c.datum);
  e.Texts ({"d21", "d22", "d31", "d32", "d11", "d12"});
  e.Doubles ({c.a, c.b});
  e.Doubles (c.datumValues);
  e.Byte (c.projection);
  if (c.projection != 0) {
    e.Texts ({"p1", "p2"});
    e.Doubles (c.origin);
    if (c.version >= 1.4) {
      e.Doubles (c.ground);
      e.Byte (c.hasLocation);
      if (c.hasLocation) {
        e.Byte (7);
        e.Doubles (c.location);
      }
    }
    e.Byte (5);
    e.Byte (c.fixedRadiusFlag);
    e.Number (c.fixedRadius);
    for (const uint8_t byte : c.projectionBytes) e.Byte (byte);
    e.Doubles (c.projectionValues);
  }
  e.Byte (c.geoid);
  if (c.geoid != 0) {
    e.Texts ({"g11", "g12", "g21", "g22"});
    e.Doubles (c.geoidValues);
  }
  // In version 1.0 the origins are without the false one.
  const bool isTrue = c.version > 1.0 && c.projection != 0;
  for (const std::vector<double>* part : {&c.horizontal, &c.vertical}) {
    e.Byte (part->empty () ? 0 : 1);
    if (part->empty ()) continue;
    e.Texts ({"h1", "h2"});
    std::vector<double> values = *part;
    if (isTrue) values[0] += c.origin[2];
    if (isTrue) values[1] += c.origin[3];
    e.Doubles (values);
  }
  if (c.version == 1.0) return e.out;
  e.Byte (c.unknownSection);
  if (c.version > 10.2) e.Byte (0);
  e.Reserved (32);
  for (const int flag : {9, 8, 7, 2, 1, 6, 5}) e.Byte (static_cast<uint8_t> (flag));
  for (int i = 0; i < 11; i++) e.Text16 (std::u16string (1, static_cast<char16_t> (u'\u0410' + i)));
  e.Text16 (c.unknownText);
  if (c.version > 10.2) e.Text16 (u"shift");
  return e.out;
}

// Bytes on the heap, so that a read beyond their end is heard.
csib_Status Read (std::unique_ptr<csib_Block>& block, const Bytes& bytes) {
  return csib_Read (block, Bytes (bytes));
}

Bytes Written (const csib_Block& block) {
  std::size_t size = 0;
  EXPECT_EQ (csib_Size (block, CSIB_ByName, &size), CSIB_Ok);
  Bytes bytes (size, 0xDB);
  EXPECT_EQ (csib_Write (block, bytes, CSIB_ByName), CSIB_Ok);
  return bytes;
}

TEST (CsibBlock, IsReadInEveryVersionAndOrder) {
  for (const double version : {1.0, 1.05, 1.2, 1.3, 1.4, 10.2, 10.3, 20.0}) {
    for (const bool swapped : {false, true}) {
      SCOPED_TRACE (::testing::Message () << version << (swapped ? " swapped" : ""));
      Content c;
      c.version = version;
      c.swapped = swapped;
      std::unique_ptr<csib_Block> block;
      ASSERT_EQ (Read (block, Encoded (c)), CSIB_Ok);
      const csib_Block& b = *block;
      EXPECT_EQ (b.Version, 10.3);
      EXPECT_EQ (b.SystemLabels[0].Second + b.SystemLabels[2].First, "s12s31");
      EXPECT_EQ (b.DatumLabels[1].First + b.ProjectionLabel.Second + b.GeoidLabels[1].First,
                 "d21p2g21");
      EXPECT_EQ (b.EarthRadius, 6377563.396);
      EXPECT_EQ (b.DatumCode, CSIB_SevenParameter);
      EXPECT_EQ (b.OriginLatitude, 0.8552113);
      EXPECT_EQ (b.FalseEast, 400000.0);
      EXPECT_EQ (b.ProjectionScale, 0.9996);
      const bool hasGround = version >= 1.4;
      EXPECT_EQ (b.GroundScale, hasGround ? 1.00025 : 1.0);
      EXPECT_EQ (b.GroundOffsetEast, hasGround ? -0.5 : 0.0);
      EXPECT_EQ (b.LocationFlag, hasGround ? 7 : 0);
      EXPECT_EQ (b.ProjectHeight, hasGround ? 120.5 : 0.0);
      EXPECT_EQ (b.RadiusFlag, 5);
      EXPECT_EQ (b.FixedRadius, 6371000.0);
      EXPECT_EQ (b.Horizontal.OriginNorth, 500000.0);
      EXPECT_EQ (b.Horizontal.ScaleFactor, 1.00001);
      EXPECT_EQ (b.Vertical.OriginEast, 300000.0);
      EXPECT_EQ (b.Vertical.EastAdjustment, -2e-5);
      EXPECT_EQ (b.NorthSign (), version == 1.0 ? 1 : 2);
      EXPECT_EQ (b.Flags[6], version == 1.0 ? 2 : 5);
      EXPECT_EQ (b.VerticalLabel.Third, version == 1.0 ? u"" : u"\u041A");
      EXPECT_EQ (b.SystemLabels[1].Third, version == 1.0 ? u"" : u"\u0410");
      EXPECT_EQ (b.ShiftLabel.Third, version > 10.2 ? u"shift" : u"");

      // What is written is this machine's order and version 10.3, and stays that.
      const Bytes written = Written (b);
      std::unique_ptr<csib_Block> again;
      ASSERT_EQ (Read (again, written), CSIB_Ok);
      EXPECT_TRUE (Written (*again) == written);
      if (version == 10.3) {
        c.swapped = false;
        EXPECT_TRUE (written == Encoded (c));
      }
    }
  }
}

TEST (CsibBlock, WritesEveryComponentAsItWasRead) {
  using Doubles = std::vector<double>;
  struct Case {
    uint8_t datum, projection, geoid;
    Bytes bytes;
    Doubles values, datumValues, geoidValues;
  };
  const Doubles seven = {1.0, 2.0, 3.0, 0.1, 0.2, 0.3, 1.5};
  const Case cases[] = {{0, 0, 0, {}, {}, {}, {}},
                        {1, 1, 2, {}, {0.75, 0.85}, {84.0, -96.5, 116.0}, seven},
                        {0, 2, 3, {}, {}, {}, {-12.5}},
                        {3, 3, 0, {}, {0.308}, seven, {}},
                        {0, 4, 0, {1}, {}, {}, {}},
                        {0, 4, 0, {2}, {0.8, 0.9}, {}, {}},
                        {0, 5, 0, {}, {}, {}, {}},
                        {0, 6, 0, {}, {}, {}, {}},
                        {0, 7, 0, {}, {}, {}, {}},
                        {0, 8, 0, {1, 1, 0}, {0.5}, {}, {}},
                        {0, 8, 0, {0, 0, 1}, {0.5}, {}, {}},
                        {0, 9, 0, {}, {}, {}, {}},
                        {0, 10, 0, {}, {0.25, 100.0, 50.0}, {}, {}},
                        {0, 11, 0, {}, {}, {}, {}},
                        {0, 12, 0, {}, {}, {}, {}},
                        {0, 16, 0, {2}, {}, {}, {}},
                        {0, 17, 0, {}, {}, {}, {}},
                        {0, 18, 0, {}, {}, {}, {}}};
  for (const Case& row : cases) {
    SCOPED_TRACE (::testing::Message () << "projection " << int (row.projection));
    Content c;
    c.datum = row.datum;
    c.datumValues = row.datumValues;
    c.projection = row.projection;
    c.projectionBytes = row.bytes;
    c.projectionValues = row.values;
    c.geoid = row.geoid;
    c.geoidValues = row.geoidValues;
    std::unique_ptr<csib_Block> block;
    ASSERT_EQ (Read (block, Encoded (c)), CSIB_Ok);
    // National grids replace the origin, which stands between what they leave.
    const Bytes written = Written (*block);
    const bool isNational = row.projection == 3 || row.projection == 6 || row.projection == 12 ||
                            row.projection == 16 || row.projection == 17;
    EXPECT_EQ (written.size (), Encoded (c).size ());
    EXPECT_TRUE (isNational || written == Encoded (c));
    std::unique_ptr<csib_Block> again;
    ASSERT_EQ (Read (again, written), CSIB_Ok);
    EXPECT_TRUE (Written (*again) == written);
    Bytes parameters;
    if (block->Projection) {
      EXPECT_EQ (block->Projection->parameters (*block, parameters), CSIB_Ok);
      Encoder e{row.bytes, false};
      e.Doubles (row.values);
      EXPECT_EQ (parameters, e.out);
    }
  }
}

TEST (CsibBlock, EndsInAStatusWhereverItIsCut) {
  for (const double version : {1.0, 10.3}) {
    Content c;
    c.version = version;
    const Bytes whole = Encoded (c);
    for (std::size_t length = 0; length < whole.size (); length++) {
      std::unique_ptr<csib_Block> block = std::make_unique<csib_Block> ();
      const auto end = whole.begin () + static_cast<std::ptrdiff_t> (length);
      EXPECT_EQ (Read (block, {whole.begin (), end}), CSIB_HeaderUnreadable) << length;
      EXPECT_EQ (block, nullptr);
    }
  }
}

TEST (CsibBlock, RefusesWhatItIsNot) {
  struct Case {
    const char* name;
    std::function<void (Content&)> change;
    csib_Status status;
  };
  const Case cases[] = {
      {"magic", [] (Content& c) { c.magic = "QRV CSIC"; }, CSIB_WrongMagic},
      {"version 0.9", [] (Content& c) { c.version = 0.9; }, CSIB_WrongVersion},
      {"version 20.1", [] (Content& c) { c.version = 20.1; }, CSIB_WrongVersion},
      {"version NaN", [] (Content& c) { c.version = nan; }, CSIB_WrongVersion},
      {"storage", [] (Content& c) { c.storage = 2; }, CSIB_WrongFormat},
      {"regression", [] (Content& c) { c.datum = 2; }, CSIB_WrongDatumCode},
      {"datum", [] (Content& c) { c.datum = 6; }, CSIB_WrongDatumCode},
      {"Cartesian plane", [] (Content& c) { c.projection = 13; }, CSIB_WrongProjectionCode},
      {"projection", [] (Content& c) { c.projection = 20; }, CSIB_WrongProjectionCode},
      {"geoid", [] (Content& c) { c.geoid = 4; }, CSIB_WrongGeoidCode},
      {"section", [] (Content& c) { c.unknownSection = 1; }, CSIB_UnknownSection},
      {"long text", [] (Content& c) { c.unknownText.assign (33000, u'x'); }, CSIB_HeaderUnreadable},
      {"short text", [] (Content& c) { c.unknownText.assign (32767, u'x'); }, CSIB_Ok},
      {"a NaN", [] (Content& c) { c.a = nan; }, CSIB_WrongFormat},
      {"a 0", [] (Content& c) { c.a = c.b = 0.0; }, CSIB_WrongFormat},
      {"a infinite", [] (Content& c) { c.a = c.b = infinity; }, CSIB_WrongFormat},
      {"b negative", [] (Content& c) { c.b = -c.b; }, CSIB_WrongFormat},
      {"prolate", [] (Content& c) { c.b = c.a + 1.0; }, CSIB_WrongFormat},
      {"sphere", [] (Content& c) { c.b = c.a; }, CSIB_Ok},
      {"datum NaN", [] (Content& c) { c.datumValues[4] = nan; }, CSIB_WrongFormat},
      {"datum null", [] (Content& c) { c.datumValues[0] = 1e308; }, CSIB_WrongFormat},
      {"datum scale", [] (Content& c) { c.datumValues[6] = 0.0; }, CSIB_WrongFormat},
      {"false north NaN", [] (Content& c) { c.origin[2] = nan; }, CSIB_WrongFormat},
      {"ground scale", [] (Content& c) { c.ground[0] = 0.0; }, CSIB_WrongFormat},
      {"location", [] (Content& c) { c.location[1] = -infinity; }, CSIB_WrongFormat},
      {"fixed radius", [] (Content& c) { c.fixedRadius = nan; }, CSIB_WrongFormat},
      {"free radius", [] (Content& c) { c.fixedRadiusFlag = 0, c.fixedRadius = nan; }, CSIB_Ok},
      {"separation", [] (Content& c) { c.geoidValues[0] = nan; }, CSIB_WrongFormat},
      {"plane scale", [] (Content& c) { c.horizontal[5] = 0.0; }, CSIB_WrongFormat},
      {"slope", [] (Content& c) { c.vertical[3] = 1e308; }, CSIB_WrongFormat}};
  for (const Case& row : cases) {
    Content c;
    row.change (c);
    std::unique_ptr<csib_Block> block;
    EXPECT_EQ (Read (block, Encoded (c)), row.status) << row.name;
    EXPECT_EQ (block != nullptr, row.status == CSIB_Ok) << row.name;
  }
}

// What opens after any damage of a bit can be written and read again, and calculates without NaN.
TEST (CsibBlock, StaysSoundWhateverBitIsFlipped) {
  for (const uint8_t projection : Bytes{1, 4, 8, 14}) {
    Content c;
    c.projection = projection;
    if (projection == 4) c.projectionBytes = {2};
    if (projection == 8) c.projectionBytes = {1, 1, 0};
    c.projectionValues.assign (projection == 14 ? 0u : projection == 8 ? 1u : 2u, 0.8);
    Bytes bytes = Encoded (c);
    for (std::size_t bit = 0; bit < bytes.size () * 8; bit++) {
      const auto flip = static_cast<uint8_t> (1 << bit % 8);
      bytes[bit / 8] ^= flip;
      std::unique_ptr<csib_Block> block, again;
      if (Read (block, bytes) == CSIB_Ok) {
        ASSERT_EQ (Read (again, Written (*block)), CSIB_Ok) << bit;
        csib_Geodetic point{0.9, -0.03, 100.0, 0.0, true, false}, local, back;
        csib_Grid grid;
        if (csib_WGS84ToLocal (*block, point, local) == CSIB_Ok &&
            csib_Project (*block, local, grid) == CSIB_Ok &&
            csib_Unproject (*block, grid, back) == CSIB_Ok) {
          EXPECT_TRUE (std::isfinite (grid.North + grid.East + back.Latitude + back.Longitude))
              << bit;
        }
      }
      bytes[bit / 8] ^= flip;
    }
  }
}

TEST (CsibBlock, ReplacesItsComponents) {
  std::unique_ptr<csib_Block> block, clone;
  ASSERT_EQ (Read (block, Encoded ({})), CSIB_Ok);
  EXPECT_EQ (csib_Size (*block, CSIB_ByName, nullptr), CSIB_NoOutput);
  ASSERT_EQ (csib_Clone (clone, *block), CSIB_Ok);
  EXPECT_TRUE (Written (*clone) == Written (*block));
  Bytes tooSmall (Written (*block).size () - 1);
  EXPECT_EQ (csib_Write (*block, tooSmall, CSIB_ByName), CSIB_NoOutput);

  // Refused parameters leave a block without the component; the clone keeps its own.
  const csib_Geodetic point{0.9, -0.03, 100.0, 0.0, true, false};
  csib_Geodetic out;
  csib_Grid grid;
  double separation = 0.0;
  EXPECT_EQ (csib_SetDatum (*block, CSIB_Molodensky, Bytes (23)), CSIB_HeaderUnreadable);
  EXPECT_EQ (csib_WGS84ToLocal (*block, point, out), CSIB_Ok);
  EXPECT_EQ (out.Latitude, point.Latitude);
  EXPECT_EQ (csib_SetProjection (*block, CSIB_CartesianPlane, Bytes (80)),
             CSIB_WrongProjectionCode);
  EXPECT_EQ (csib_Project (*block, point, grid), CSIB_NoProjectionOperation);
  EXPECT_EQ (csib_Unproject (*block, grid, out), CSIB_NoProjectionOperation);
  EXPECT_EQ (csib_PointScale (*block, point, separation), CSIB_NoScaleOperation);
  EXPECT_EQ (csib_Convergence (*block, point, separation), CSIB_NoConvergenceOperation);
  EXPECT_EQ (csib_SetGeoid (*block, 4, {}), CSIB_WrongGeoidCode);
  EXPECT_EQ (csib_Separation (*block, point, separation), CSIB_NoSeparationOperation);
  csib_Horizontal flat{.ScaleFactor = 0.0};
  EXPECT_EQ (csib_SetHorizontal (*block, &flat), CSIB_WrongFormat);
  EXPECT_EQ (csib_SetVertical (*block, nullptr), CSIB_Ok);
  EXPECT_EQ (csib_SetShiftGrid (*block, {}), CSIB_Ok);
  EXPECT_EQ (block->HasHorizontal + block->HasVertical + block->HasShiftGrid, 0);
  EXPECT_EQ (csib_Separation (*clone, point, separation), CSIB_Ok);
  EXPECT_EQ (separation, 47.5);
  csib_Free (block);
  EXPECT_EQ (block, nullptr);
  csib_Free (block);
}

class CsibFiles : public testing::LibraryTest {};

// A geoid alone, so that its file is the only one.
TEST_F (CsibFiles, GoAndComeWhileTheBlockLives) {
  testing::GridFile file;
  file.rows = file.columns = 3;
  file.latMin = 50.0, file.lonMin = -3.0;
  file.value = [] (int, int) { return 45.0; };
  testing::PutFile (folder.Host ("uk.ggf"), file.Bytes ());
  const Str path = folder.Device ("uk.ggf");
  const std::string bytes (path.View ());
  std::unique_ptr<csib_Block> block, clone;
  ASSERT_EQ (Read (block, Encoded ({})), CSIB_Ok);
  ASSERT_EQ (csib_SetGeoid (*block, CSIB_GeoidGrid,
                            {reinterpret_cast<const uint8_t*> (bytes.c_str ()), bytes.size () + 1}),
             CSIB_Ok);

  const csib_Geodetic point{0.9, -0.03, 100.0, 0.0, true, false};
  double N = 0.0;
  EXPECT_EQ (csib_ReleaseFile (*block, "other.ggf"), CSIB_Ok);
  EXPECT_EQ (csib_Separation (*block, point, N), CSIB_Ok);
  EXPECT_EQ (N, 45.0);
  EXPECT_EQ (csib_ReleaseFile (*block, folder.Device ("UK.GGF").View ()), CSIB_Ok);
  EXPECT_EQ (csib_Separation (*block, point, N), CSIB_Unloaded);
  EXPECT_EQ (csib_ReleaseFile (*block, path.View ()), CSIB_UnloadedTwice);
  file.value = [] (int, int) { return 46.0; };
  testing::PutFile (folder.Host ("uk.ggf"), file.Bytes ());
  EXPECT_EQ (csib_ReloadFile (*block, path.View ()), CSIB_Ok);
  EXPECT_EQ (csib_Separation (*block, point, N), CSIB_Ok);
  EXPECT_EQ (N, 46.0);

  // A clone goes by names, also of what is embedded.
  std::size_t size = 0;
  ASSERT_EQ (csib_Size (*block, CSIB_Embedded, &size), CSIB_Ok);
  Bytes embedded (size);
  ASSERT_EQ (csib_Write (*block, embedded, CSIB_Embedded), CSIB_Ok);
  ASSERT_EQ (Read (block, embedded), CSIB_Ok);
  ASSERT_EQ (csib_Clone (clone, *block), CSIB_Ok);
  EXPECT_EQ (block->StorageMode, CSIB_Embedded);
  EXPECT_EQ (clone->StorageMode, CSIB_ByName);
  EXPECT_EQ (csib_Separation (*clone, point, N), CSIB_Ok);
  EXPECT_EQ (N, 46.0);
  csib_Free (clone);
  const Bytes byName = Written (*block);
  std::filesystem::remove (folder.Host ("uk.ggf"));
  EXPECT_EQ (csib_Clone (clone, *block), CSIB_FileNotOpened);
  EXPECT_EQ (csib_Separation (*block, point, N), CSIB_Ok);
  EXPECT_EQ (Read (block, byName), CSIB_FileNotOpened);
}

}  // namespace
}  // namespace clxml
