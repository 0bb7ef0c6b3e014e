// Numbers as text against the C functions themselves.
// The table holds the forms where from_chars and strtod part ways; generated texts do the rest, and
// a comma locale shows that none of it asks the locale. Leans on GoogleTest and the C library.
#include "Kernel/text.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>

#include "support/commalocale.h"
#include "support/hearing.h"

namespace clxml {
namespace {

using testing::Hearing;

uint64_t Bits (double value) { return std::bit_cast<uint64_t> (value); }

// Equal to the bit; every NaN equals every other of its sign.
::testing::AssertionResult Same (double a, double b) {
  if (std::isnan (a) && std::isnan (b) && std::signbit (a) == std::signbit (b))
    return ::testing::AssertionSuccess ();
  if (Bits (a) == Bits (b)) return ::testing::AssertionSuccess ();
  return ::testing::AssertionFailure () << std::hexfloat << a << " is not " << b;
}

void ReadsAsC (const std::string& text) {
  SCOPED_TRACE (text.substr (0, 100));
  char* end = nullptr;
  const double expected = std::strtod (text.c_str (), &end);
  std::size_t used = 0;
  EXPECT_TRUE (Same (text_ToDouble (text, &used), expected));
  EXPECT_EQ (used, static_cast<std::size_t> (end - text.c_str ()));

  double scanned = 0;
  const bool any = std::sscanf (text.c_str (), "%lf", &scanned) == 1;
  const std::optional<double> own = text_ScanDouble (text);
  ASSERT_EQ (own.has_value (), any);
  if (any) {
    EXPECT_TRUE (Same (*own, scanned));
  }

  EXPECT_EQ (text_ToInt (text), std::atoi (text.c_str ()));
  unsigned number = 0;
  const bool anyNumber = std::sscanf (text.c_str (), "%u", &number) == 1;
  const std::optional<uint32_t> ownNumber = text_ScanUnsigned (text);
  ASSERT_EQ (ownNumber.has_value (), anyNumber);
  if (anyNumber) {
    EXPECT_EQ (*ownNumber, number);
  }
}

void PrintsAsC (double value, int digits) {
  SCOPED_TRACE (::testing::Message () << std::hexfloat << value << " with " << digits);
  std::array<char, 4000> text;
  std::snprintf (text.data (), text.size (), "%.*f", digits, value);
  EXPECT_EQ (text_Fixed (value, digits).View (), text.data ());
  std::snprintf (text.data (), text.size (), "%.*G", digits, value);
  EXPECT_EQ (text_General (value, digits).View (), text.data ());
}

std::string Zeros (int n) { return std::string (static_cast<std::size_t> (n), '0'); }

TEST (Text, ReadsTheFormsOfC) {
  for (const char* text :
       {"", " ", "+", "-", ".", "-.", "--1", "+-1", "- 1", "+5", "-5", " \t\n\v\f\r5",
        "\xA0"
        "5",
        "5.", ".5", "-.5e1", ".e5", "1e", "1e+", "1e5x", "1e+x", "1E+05", "1.5.2", "1,5", "0", "-0",
        "-0.0", "inf", "-INF", "infi", "infinity", "Infinity9", "in", "nan", "-NaN", "nan(",
        "nan(a_1)", "nan(a b)", "nanx", "0x", "0X1", "0xg", "0x.", "0x.8", "0x1.8p3", "-0x1.8P-3",
        "0x1p", "0x1p+", "0x1p99999999999999999999", "0x1p-99999999999999999999", "0x0p99999999999",
        // Rounding at the borders of the range and halfway between two doubles.
        "1e400", "-1e400", "1e-400", "-1e-400", "4e-324", "2e-324", "2.5e-324", "1e-310",
        "1.7976931348623159e308", "1.7976931348623158e308", "2.2250738585072011e-308",
        "1e99999999999999999999", "0e99999999999999999999", "1e-99999999999999999999", "0x1p-1074",
        "0x1p-1075", "0x1.0000000000001p-1075", "0x1.8p-1075", "0x1p1023",
        "0x1.fffffffffffff8p1023", "0x1.fffffffffffff7p1023", "0x1.00000000000008p0",
        "0x1.00000000000018p0", "0x1.000000000000080000000000000001p0", "0x3.fffffffffffffcp-1024",
        "0x123456789abcdef0123456789p-99", "9007199254740993",
        "9007199254740993.0000000000000000000000000000001",
        // Whole numbers beyond 32 and 64 bits.
        "2147483647", "2147483648", "-2147483649", "4294967295", "4294967296",
        "9223372036854775807", "9223372036854775808", "-9223372036854775808",
        "-9223372036854775809", "18446744073709551615", "18446744073709551616",
        "-18446744073709551615", "-18446744073709551616", "010", "12abc"})
    ReadsAsC (text);
  // Long numbers, where the exponent and a run of zeros meet.
  for (const std::string& text :
       {"0." + Zeros (400) + "1e400", "1" + Zeros (400) + "e-400",
        "0." + Zeros (70000) + "25e70001", "0." + Zeros (100000) + "1e1000000",
        "1" + Zeros (1000000) + "e-1000000", "2.4703282292062327208" + Zeros (900) + "1e-324",
        "9007199254740993." + Zeros (900) + "1", "0x" + Zeros (100) + "1." + Zeros (100) + "1p4",
        "1" + Zeros (400) + "." + Zeros (9)})
    ReadsAsC (text);
}

TEST (Text, ReadsGeneratedTextsAsC) {
  constexpr unsigned seed = 20091;
  SCOPED_TRACE (seed);
  std::mt19937_64 random (seed);
  const std::string_view letters = "0123456789.eExXpP+-infatyNA() _0000a,";
  for (int i = 0; i < 30000 && !HasFailure (); i++) {
    std::string text;
    const double value = std::bit_cast<double> (random ());
    if (i % 3 == 0) {
      for (uint64_t n = random () % 12; n > 0; n--) text += letters[random () % letters.size ()];
    } else {
      std::array<char, 400> printed;
      std::snprintf (printed.data (), printed.size (), i % 3 == 1 ? "%.*g" : "%.*a",
                     static_cast<int> (random () % 25), value);
      text = printed.data ();
      if (i % 2 == 0) text[random () % text.size ()] = letters[random () % letters.size ()];
    }
    ReadsAsC (text);
  }
}

TEST (Text, HoldsWholeNumbersTo32Bits) {
  EXPECT_EQ (text_ToInt32 (" -12x"), -12);
  EXPECT_EQ (text_ToInt32 ("x"), 0);
  EXPECT_EQ (text_ToInt32 ("2147483648"), 2147483647);
  EXPECT_EQ (text_ToInt32 ("-99999999999999999999"), -2147483647 - 1);
}

TEST (Text, StopsAtTheEndOfItsView) {
  const std::string_view text = "1234.5e12";
  EXPECT_EQ (text_ToDouble (text.substr (0, 4)), 1234);
  EXPECT_EQ (text_ToDouble (text.substr (0, 7)), 1234.5);
  EXPECT_EQ (text_ToDouble (std::string_view ()), 0);
  EXPECT_EQ (text_ToDouble (std::string_view ("0x1f", 2)), 0);
  EXPECT_EQ (text_ToInt (text.substr (1, 2)), 23);
}

TEST (Text, PrintsAsC) {
  for (const double value : {0.0,
                             -0.0,
                             1.0,
                             0.5,
                             2.5,
                             1e21,
                             123456789.125,
                             9.5,
                             99999.95,
                             0.0001,
                             0.00001,
                             1e308,
                             1.7976931348623157e308,
                             5e-324,
                             1e100,
                             -1e-300,
                             double (INFINITY),
                             -double (INFINITY),
                             std::nan (""),
                             -std::nan ("")})
    for (const int digits : {-1, 0, 1, 2, 6, 14, 17, 40, 320, 1100, 1200})
      PrintsAsC (value, digits);
  constexpr unsigned seed = 20092;
  SCOPED_TRACE (seed);
  std::mt19937_64 random (seed);
  for (int i = 0; i < 5000 && !HasFailure (); i++) {
    // Half of any size, half like coordinates.
    const double any = std::bit_cast<double> (random ());
    const double value = i % 2 == 0 ? any : static_cast<double> (random () % 1000000000) / 1024;
    PrintsAsC (value, static_cast<int> (random () % 30));
  }
}

TEST (Text, AsksNoLocale) {
  const testing::CommaLocale comma;
  if (!comma.inForce) GTEST_SKIP () << "localedef made no locale with a decimal comma";
  ASSERT_EQ (std::strtod ("1,5", nullptr), 1.5);
  EXPECT_EQ (text_ToDouble ("1.5"), 1.5);
  EXPECT_EQ (text_ToDouble ("1,5"), 1);
  EXPECT_EQ (text_ToDouble ("0x1.8p0"), 1.5);
  EXPECT_EQ (text_ToDouble ("1.5e-400"), 0);
  EXPECT_EQ (text_ScanDouble ("2.25"), 2.25);
  EXPECT_EQ (text_Fixed (1234567.5, 2).View (), "1234567.50");
  EXPECT_EQ (text_General (1e-7, 14).View (), "1E-07");
  EXPECT_EQ (text_Format ("%u", 1234567u).View (), "1234567");
}

TEST (Text, FormatsOneNumber) {
  EXPECT_EQ (text_Format ("<%08X>", 0xBEEFu).View (), "<0000BEEF>");
  EXPECT_EQ (text_Format ("%+d", -7).View (), "-7");
  Hearing hearing;
  EXPECT_EQ (text_Format ("%999d", 1).Length (), 999);
  EXPECT_TRUE (hearing.TakeAssertions ().empty ());
  EXPECT_EQ (text_Format ("%1000d", 1).Length (), 999);
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string>{"length < 1000"});
}

TEST (Text, CopiesWithinBounds) {
  std::array<char, 4> room{'#', '#', '#', '#'};
  text_Copy (room.data (), "abc", 4);
  EXPECT_STREQ (room.data (), "abc");
  Hearing hearing;
  text_Copy (room.data (), "xyz", 3);
  EXPECT_STREQ (room.data (), "xy");
  text_Copy (nullptr, "x", 0);
  EXPECT_EQ (hearing.TakeAssertions (), std::vector<std::string> (2, "strlen(src) < size"));
}

}  // namespace
}  // namespace clxml
