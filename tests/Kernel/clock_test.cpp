// Time: the calendar, GPS time, the text forms and what the machine is asked.
// A source of the test's own stands in for the machine. Leans on GoogleTest.
#include "Kernel/clock.h"

#include <array>
#include <limits>
#include <string>

#include "numerics/maths.h"
#include "support/hearing.h"

namespace clxml {
namespace {

using testing::Hearing;
using Texts = std::vector<std::string>;

// The machine as the test wants it.
struct Machine {
  uint32_t tick = 0;
  std::array<int, 6> time = {2009, 7, 1, 13, 5, 9};
  double bias = 0;
  int timeCalls = 0;
  std::array<int, 6> set = {};
};
Machine machine;

constexpr clock_Source testSource = {
    [] { return machine.tick; },
    [] (int& year, int& month, int& day, int& hours, int& minutes, int& seconds) {
      machine.timeCalls++;
      year = machine.time[0];
      month = machine.time[1];
      day = machine.time[2];
      hours = machine.time[3];
      minutes = machine.time[4];
      seconds = machine.time[5];
    },
    [] { return machine.bias; }, [] (Str&, double&) { return false; },
    [] (int year, int month, int day, int hours, int minutes, int seconds) {
      machine.set = {year, month, day, hours, minutes, seconds};
    }};

class Clock : public ::testing::Test {
 protected:
  Clock () {
    machine = Machine ();
    before = clock_Install (&testSource);
  }
  ~Clock () override { clock_Install (before); }
  const clock_Source* before;
};

double At (int16_t year, int16_t month, int16_t day, double seconds = 0) {
  return clock_FromDate (year, month, day) + seconds;
}

TEST_F (Clock, CountsDaysOfTheCalendar) {
  const struct {
    int16_t year, month, day;
    double seconds;
  } cases[] = {{1980, 1, 1, 0},
               {1980, 1, 6, CLOCK_GPSEpoch},
               {1979, 12, 31, -CLOCK_Day},
               {1970, 1, 1, -315532800.0},  // the origin of system time
               {2000, 2, 29, 7364 * CLOCK_Day},
               {2000, 3, 1, 7365 * CLOCK_Day},
               {1582, 10, 15, -145079 * CLOCK_Day}};  // day 578101 of 723180
  for (const auto& each : cases) {
    EXPECT_EQ (clock_FromDate (each.year, each.month, each.day), each.seconds) << each.year;
    int16_t year = 0, month = 0, day = 0;
    double timeOfDay = 0;
    clock_ToDate (each.seconds + 0.25, &year, &month, &day, &timeOfDay);
    EXPECT_EQ (year, each.year);
    EXPECT_EQ (month, each.month);
    EXPECT_EQ (day, each.day);
    EXPECT_EQ (timeOfDay, 0.25);
  }
  for (const auto& [year, month, day] : {std::array{2000, 2, 30},
                                         {1900, 2, 29},
                                         {1581, 12, 31},
                                         {2001, 0, 1},
                                         {2001, 13, 1},
                                         {2001, 257, 1},
                                         {2001, 1, 0},
                                         {2001, 1, 32},
                                         {2001, 1, -1},
                                         {2001, -11, 1}})
    EXPECT_TRUE (maths_IsNull (clock_FromDate (
        static_cast<int16_t> (year), static_cast<int16_t> (month), static_cast<int16_t> (day))))
        << year << "-" << month << "-" << day;
  EXPECT_FALSE (maths_IsNull (clock_FromDate (1582, 1, 1)));
}

TEST_F (Clock, RefusesDatesOutsideTheCalendar) {
  const double last = At (32767, 12, 31, CLOCK_Day - 1);
  int16_t year = 0, month = 0, day = 0;
  clock_ToDate (last, &year, &month, &day, nullptr);
  EXPECT_EQ (year, 32767);
  for (const double time :
       {At (1582, 10, 15, -1), last + 1, 1e300, -1e300, std::numeric_limits<double>::infinity (),
        std::numeric_limits<double>::quiet_NaN ()}) {
    double timeOfDay = -7;
    year = month = day = -7;
    clock_ToDate (time, &year, &month, &day, &timeOfDay);
    EXPECT_EQ (year + month + day + timeOfDay, -28) << time;
    EXPECT_TRUE (clock_FormatDate (time, false, false).IsEmpty ()) << time;
  }
}

TEST_F (Clock, SplitsTheTimeOfDay) {
  const struct {
    double time;
    int hours, minutes, seconds;
  } cases[] = {{0, 0, 0, 0},        {3599.6, 1, 0, 0},   {3599.4, 0, 59, 59},
               {86399.6, 24, 0, 0}, {90061.0, 25, 1, 1}, {-1, -1, 59, 59}};
  for (const auto& each : cases) {
    int32_t hours = -7, minutes = -7, seconds = -7;
    clock_ToTimeOfDay (each.time, &hours, &minutes, &seconds);
    EXPECT_EQ (hours, each.hours) << each.time;
    EXPECT_EQ (minutes, each.minutes) << each.time;
    EXPECT_EQ (seconds, each.seconds) << each.time;
  }
  EXPECT_EQ (clock_FromTimeOfDay (1, 2, 3), 3723);
  EXPECT_EQ (clock_FromTimeOfDay (2147483647, 0, 0), 2147483647 * 3600.0);
  EXPECT_EQ (clock_StartOfDay (-0.5), -CLOCK_Day);
  EXPECT_EQ (clock_TimeOfDay (-0.5), CLOCK_Day - 0.5);
  EXPECT_EQ (clock_Milliseconds (5.0), 0);
  EXPECT_EQ (clock_Milliseconds (5.1237), 124);
  EXPECT_EQ (clock_Milliseconds (5.9996), 999);
  EXPECT_EQ (clock_Milliseconds (-0.25), 750);
}

TEST_F (Clock, KnowsTheDayOfTheWeek) {
  EXPECT_EQ (clock_DayOfWeek (0), 2);
  EXPECT_EQ (clock_DayOfWeek (CLOCK_GPSEpoch), 0);
  EXPECT_EQ (clock_DayOfWeek (-0.5), 1);
  EXPECT_EQ (clock_DayOfWeek (-3 * CLOCK_Day), 6);
  EXPECT_EQ (clock_DayOfWeek (At (2009, 7, 1)), 3);
}

TEST_F (Clock, ConvertsGpsTime) {
  int32_t weeks = -7;
  double seconds = -7;
  clock_ToGPS (CLOCK_GPSEpoch, &weeks, &seconds);
  EXPECT_EQ (weeks, 0);
  EXPECT_EQ (seconds, 0);
  machine.bias = -3600;  // an hour east
  clock_ToGPS (CLOCK_GPSEpoch, &weeks, &seconds);
  EXPECT_EQ (weeks, -1);
  EXPECT_EQ (seconds, CLOCK_Week - 3600);
  EXPECT_EQ (clock_FromGPS (weeks, seconds), CLOCK_GPSEpoch);
  EXPECT_EQ (clock_FromGPSNoBias (1, 2), CLOCK_Week + 2 + CLOCK_GPSEpoch);
  EXPECT_EQ (clock_DaysFromGPS (1, 43200), 7.5);
  EXPECT_TRUE (maths_IsNull (clock_FromGPS (1, MATHS_Null)));
  EXPECT_TRUE (maths_IsNull (clock_FromGPSNoBias (1, MATHS_Null)));
  EXPECT_TRUE (maths_IsNull (clock_DaysFromGPS (1, MATHS_Null)));
  weeks = -7;
  clock_ToGPS (9e15, &weeks, &seconds);
  EXPECT_EQ (weeks, -7);
}

TEST_F (Clock, AssertsANullTimeAndLeavesOutputs) {
  int32_t a = -7, b = -7, c = -7;
  int16_t year = -7, month = -7, day = -7;
  double seconds = -7;
  Hearing hearing;
  const Texts null = {"!maths_IsNull(time)"};
  const auto asserted = [&] { return hearing.TakeAssertions () == null; };
  clock_ToGPS (MATHS_Null, &a, &seconds);
  EXPECT_TRUE (asserted ());
  clock_ToTimeOfDay (MATHS_Null, &a, &b, &c);
  EXPECT_TRUE (asserted ());
  clock_ToDate (MATHS_Null, &year, &month, &day, &seconds);
  EXPECT_TRUE (asserted ());
  EXPECT_EQ (a + b + c + year + month + day + seconds, -49);
  EXPECT_EQ (clock_Milliseconds (MATHS_Null), 0);
  EXPECT_TRUE (asserted ());
  EXPECT_TRUE (maths_IsNull (clock_TimeOfDay (MATHS_Null)));
  EXPECT_TRUE (asserted ());
  EXPECT_TRUE (maths_IsNull (clock_StartOfDay (MATHS_Null)));
  EXPECT_TRUE (asserted ());
  EXPECT_EQ (clock_DayOfWeek (MATHS_Null), 0);
  EXPECT_TRUE (asserted ());
  EXPECT_TRUE (clock_FormatTime (MATHS_Null).IsEmpty ());
  EXPECT_TRUE (asserted ());
  EXPECT_TRUE (clock_FormatDate (MATHS_Null, true, true).IsEmpty ());
  EXPECT_TRUE (asserted ());
  clock_SetLocalTime (MATHS_Null);
  EXPECT_TRUE (asserted ());
  EXPECT_EQ (machine.set[0], 0);
  clock_ToGPS (0, nullptr, &seconds);
  clock_ToTimeOfDay (0, &a, nullptr, &c);
  clock_ToDate (0, &year, &month, nullptr, nullptr);
  EXPECT_EQ (hearing.TakeAssertions (),
             (Texts{"weeks && seconds", "hours && minutes && seconds", "years && months && days"}));
}

TEST_F (Clock, WritesDatesAndTimes) {
  const double time = At (2009, 7, 1, 13 * 3600 + 5 * 60 + 9);
  EXPECT_EQ (clock_FormatTime (time).View (), "13:05:09");
  EXPECT_EQ (clock_FormatTime (At (2009, 7, 1, 86399.6)).View (), "23:59:59");
  EXPECT_EQ (clock_FormatDate (time, false, false).View (), "2009/7/1");
  EXPECT_EQ (clock_FormatDate (time, false, true).View (), "2009/7/1");
  EXPECT_EQ (clock_FormatDate (time, true, true).View (), "Wednesday, 01 Jul 2009");
  EXPECT_EQ (clock_FormatDate (time, true, false).View (), "Wednesday, 1 July 2009");
  StrArray formats;
  clock_DateFormats (formats);
  clock_DateFormats (formats);
  EXPECT_EQ (formats.Count (), 3);
}

TEST_F (Clock, TellsTheZoneOfAMailInFiveCharacters) {
  for (const auto& [bias, zone] : {std::pair{0.0, "+0000"},
                                   {-3600.0, "+0100"},
                                   {-20700.0, "+0545"},
                                   {-19800.0, "+0530"},
                                   {12600.0, "-0330"},
                                   {18000.0, "-0500"},
                                   {-45900.0, "+1245"},
                                   {39600.0, "-1100"}}) {
    machine.bias = bias;
    EXPECT_EQ (clock_MailDate ().View (), std::string ("Wednesday, 01 Jul 2009 13:05:09 ") + zone);
  }
}

TEST_F (Clock, AsksTheMachineOnceASecond) {
  machine.tick = 4294967000u;  // through the wrap of the counter
  const double start = clock_Now ();
  EXPECT_EQ (start, At (2009, 7, 1, 47109));
  machine.time[5] = 30;
  machine.tick += 999;
  EXPECT_EQ (clock_Now (), start);
  EXPECT_EQ (machine.timeCalls, 1);
  machine.tick += 1;
  EXPECT_EQ (clock_Now (), start + 21);
  EXPECT_EQ (machine.timeCalls, 2);
  clock_Install (&testSource);
  clock_Now ();
  EXPECT_EQ (machine.timeCalls, 3);
}

TEST_F (Clock, HoldsItsTime) {
  double start = 0;
  {
    const clock_Hold outer;
    start = clock_Now ();
    machine.tick += 5000;
    machine.time[5] = 30;
    {
      const clock_Hold inner;
      EXPECT_EQ (clock_Now (), start);
    }
    EXPECT_EQ (clock_Now (), start);
  }
  EXPECT_EQ (clock_Now (), start + 21);
}

TEST_F (Clock, GoesOnThroughTheCountersWrap) {
  machine.tick = 4294967295u;
  EXPECT_EQ (clock_Elapsed (), 4294967.295);
  machine.tick = 704;
  EXPECT_EQ (clock_Elapsed (), 4294968.0);
  EXPECT_EQ (clock_ElapsedPlus (2), 4294970.0);
  EXPECT_EQ (clock_ElapsedSince (8), 4294960.0);
  EXPECT_TRUE (clock_IsPast (4294968.0));
  EXPECT_FALSE (clock_IsPast (4294968.5));
}

TEST_F (Clock, SetsTheClockThroughItsHost) {
  clock_SetLocalTime (At (2009, 7, 1, 47109.75));
  EXPECT_EQ (machine.set, (std::array<int, 6>{2009, 7, 1, 13, 5, 9}));
}

TEST_F (Clock, KnowsTheMachine) {
  EXPECT_EQ (clock_Install (nullptr), &testSource);
  EXPECT_GT (clock_Now (), At (2020, 1, 1));
  const double bias = clock_Bias ();
  EXPECT_LE (std::abs (bias), 15 * 3600);
  Str name;
  double hours = 99;
  if (clock_TimeZoneName (name, hours)) {
    EXPECT_EQ (hours, bias / 3600);
    EXPECT_FALSE (name.IsEmpty ());
  }
  EXPECT_EQ (clock_Install (&testSource), &clock_Machine ());
}

}  // namespace
}  // namespace clxml
