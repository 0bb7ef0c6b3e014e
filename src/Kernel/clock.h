// Time as one number: seconds since 1980-01-01 00:00:00 on the local clock.
// Reading the time, its calendar and time-of-day parts, GPS time, and text forms. Leans on str,
// text and maths; the clock of the machine comes in through one hook.
#pragma once

#include <cstdint>

#include "str.h"

namespace clxml {

inline constexpr double CLOCK_Day = 86400.0;
inline constexpr double CLOCK_Week = 604800.0;
/// 1980-01-06 00:00:00, the origin of GPS time, on this clock.
inline constexpr double CLOCK_GPSEpoch = 432000.0;

/// What the module asks of the machine. A host, a test or the tool may put another in force.
struct clock_Source {
  /// Milliseconds of a counter that wraps at 32 bits.
  uint32_t (*ticks) ();
  /// The local calendar time.
  void (*localTime) (int& year, int& month, int& day, int& hours, int& minutes, int& seconds);
  /// The bias of the local zone in seconds (UTC = local + bias), daylight saving included.
  double (*bias) ();
  /// The zone's name and its bias in hours; false when the machine does not say.
  bool (*zone) (Str& name, double& hours);
  /// Sets the machine's clock; by default nothing happens.
  void (*setLocalTime) (int year, int month, int day, int hours, int minutes, int seconds);
};
/// Puts a source in force and answers the one before; null restores the machine's own. The cache
/// of clock_Now is dropped.
const clock_Source* clock_Install (const clock_Source* source) noexcept;
/// The machine's own source.
const clock_Source& clock_Machine () noexcept;

/// Seconds on the local clock, whole seconds; asks the machine at most once a second.
double clock_Now ();

/// While one lives, clock_Now answers on its thread without looking at the counter: for loops that
/// make many records whose time is read or copied from elsewhere. Nestable.
class clock_Hold {
 public:
  clock_Hold () noexcept;
  ~clock_Hold ();
  clock_Hold (const clock_Hold&) = delete;
  clock_Hold& operator= (const clock_Hold&) = delete;
};

/// Seconds since the machine's counter started, going on through its wrap.
double clock_Elapsed ();
double clock_ElapsedPlus (double t);
double clock_ElapsedSince (double t);
/// True when clock_Elapsed () has reached t.
bool clock_IsPast (double t);
/// Sets the device clock, with milliseconds 0.
void clock_SetLocalTime (double time);
/// The zone's bias in seconds, daylight saving included; 0 when unknown.
double clock_Bias ();
bool clock_TimeZoneName (Str& name, double& hours);

// Every conversion asserts "!maths_IsNull(time)". A null or absurd time (no finite number, beyond
// 2^53 seconds, or outside what the result can hold) leaves outputs as they were and gives the null
// value (or an empty text, or 0).

/// GPS week and seconds of the week; asserts "weeks && seconds".
void clock_ToGPS (double time, int32_t* weeks, double* seconds);
double clock_FromGPS (int32_t weeks, double seconds);
double clock_FromGPSNoBias (int32_t weeks, double seconds);
double clock_DaysFromGPS (int32_t weeks, double seconds);
/// Seconds at the start of a day of the Gregorian calendar from 1582 on; null for an invalid date.
double clock_FromDate (int16_t year, int16_t month, int16_t day);
double clock_FromTimeOfDay (int32_t hours, int32_t minutes, int32_t seconds);
/// Rounded to the nearest second, so that hour 24 can come; asserts "hours && minutes && seconds".
void clock_ToTimeOfDay (double time, int32_t* hours, int32_t* minutes, int32_t* seconds);
/// The fraction of the second in whole milliseconds, rounded, at most 999.
int32_t clock_Milliseconds (double time);
/// The calendar date, from 1582-10-15 to the end of 32767; timeOfDay may be null; asserts
/// "years && months && days".
void clock_ToDate (double time, int16_t* years, int16_t* months, int16_t* days, double* timeOfDay);
double clock_TimeOfDay (double time);
double clock_StartOfDay (double time);
/// 0 to 6, Sunday being 0; asserts "dayOfWeek >= 0 && dayOfWeek < 7".
int32_t clock_DayOfWeek (double time);
/// The time of day, "13:05:09", rounded to the second within its day.
Str clock_FormatTime (double time);
/// Without useLocale the numbers "2009/7/1"; with useLocale "Wednesday, 1 July 2009", with longForm
/// as well "Wednesday, 01 Jul 2009". Names are English, whatever the process's locale.
Str clock_FormatDate (double time, bool useLocale, bool longForm);
/// Fills the list with the pictures of the date formats known.
void clock_DateFormats (StrArray& list);
/// The date line of a mail header, with a zone of five characters:
/// "Wednesday, 01 Jul 2009 13:05:09 +0545".
Str clock_MailDate ();

}  // namespace clxml
