// Numbers as they stand in the XML files that we write. Leans on xml_out.
#include "Library/xml/xml_out.h"

#include <gtest/gtest.h>

#include <limits>
#include <numbers>

#include "numerics/maths.h"

namespace clxml::testing {
namespace {

constexpr double pi = std::numbers::pi;

TEST (XmlOut, WritesDoubles) {
  struct {
    double value;
    const char* text;
  } cases[] = {
      {MATHS_Null, ""},
      {0.0, "0"},
      {-0.0, "0"},
      {0.5, "0.5"},
      {-0.25, "-0.25"},
      {1e-14, "0.00000000000001"},
      {4e-15, "0"},
      {-1e-15, "0"},
      {0.999999999999999, "1"},
      {-0.999999999999999, "-1"},
      {1.0, "1"},
      {-1.0, "-1"},
      {100.0, "100"},
      {1234.5678, "1234.5678"},
      {12345678901234.5, "12345678901234"},
      {123456789012345.0, "1.2345678901234E+14"},
      {1e20, "1E+20"},
      {0.1 + 0.2, "0.3"},
      {std::numeric_limits<double>::infinity (), "INF"},
  };
  for (const auto& c : cases) EXPECT_EQ (xml_DoubleText (c.value), c.text) << c.value;
}

TEST (XmlOut, WritesAnglesInDegrees) {
  EXPECT_EQ (xml_AngleText (MATHS_Null), "");
  EXPECT_EQ (xml_AngleText (pi / 2), "90");
  EXPECT_EQ (xml_AngleText (-pi), "-180");
  EXPECT_EQ (xml_AngleText (2 * pi), "0");
  EXPECT_EQ (xml_AngleText (2 * pi - 4e-13), "0");
  EXPECT_EQ (xml_AngleText (2 * pi + 4e-13), "0");
  EXPECT_EQ (xml_AngleText (2 * pi - 6e-13), "359.99999999997");
}

TEST (XmlOut, WritesGradesInPercent) {
  EXPECT_EQ (xml_GradeText (MATHS_Null, false), "");
  EXPECT_EQ (xml_GradeText (MATHS_Null, true), "");
  EXPECT_EQ (xml_GradeText (pi / 4, false), "100");
  EXPECT_EQ (xml_GradeText (pi / 4, true), "-100");
  EXPECT_EQ (xml_GradeText (0.0, true), "0");
}

TEST (XmlOut, WritesBooleans) {
  EXPECT_EQ (xml_BoolText (true), "true");
  EXPECT_EQ (xml_BoolText (false), "false");
}

}  // namespace
}  // namespace clxml::testing
