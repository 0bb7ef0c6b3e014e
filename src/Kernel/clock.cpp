// Time as one number: the machine's clock, the calendar and the text forms.
// Calendar rules are those of std::chrono, day number 0 being 0000-01-01 of the proleptic
// Gregorian calendar. Leans on str, text and maths, and on the standard library for the clock.
#include "Kernel/clock.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>
#include <mutex>

#include "Kernel/text.h"
#include "numerics/maths.h"

namespace clxml {
namespace {

namespace chrono = std::chrono;

// Days from 0000-01-01 to a day.
constexpr int64_t DayNumber (chrono::year_month_day day) noexcept {
  constexpr chrono::sys_days zero = chrono::year{0} / chrono::January / 1;
  return (chrono::sys_days{day} - zero).count ();
}

constexpr int64_t Origin = DayNumber (chrono::year{1980} / chrono::January / 1);
// The first day of the calendar's use, 1582-10-15, and the last whose year fits 16 bits.
constexpr int64_t FirstDay = 578101;
constexpr int64_t LastDay = DayNumber (chrono::year{32767} / chrono::December / 31);
static_assert (DayNumber (chrono::year{1582} / chrono::October / 15) == FirstDay);

// Both calendar forms of a moment. The C functions share one result in the process.
void Calendars (std::tm& local, std::tm& universal) {
  static std::mutex lock;
  const std::lock_guard<std::mutex> guard (lock);
  const std::time_t now = chrono::system_clock::to_time_t (chrono::system_clock::now ());
  const std::tm* form = std::localtime (&now);
  local = form != nullptr ? *form : std::tm{};
  form = std::gmtime (&now);
  universal = form != nullptr ? *form : local;
}

uint32_t MachineTicks () {
  const auto since = chrono::steady_clock::now ().time_since_epoch ();
  return static_cast<uint32_t> (chrono::duration_cast<chrono::milliseconds> (since).count ());
}

void MachineLocalTime (int& year, int& month, int& day, int& hours, int& minutes, int& seconds) {
  std::tm local, universal;
  Calendars (local, universal);
  year = local.tm_year + 1900;
  month = local.tm_mon + 1;
  day = local.tm_mday;
  hours = local.tm_hour;
  minutes = local.tm_min;
  seconds = local.tm_sec;
}

double SecondsOf (const std::tm& form) {
  const chrono::year_month_day day = chrono::year{form.tm_year + 1900} /
                                     chrono::month{static_cast<unsigned> (form.tm_mon + 1)} /
                                     chrono::day{static_cast<unsigned> (form.tm_mday)};
  return static_cast<double> (DayNumber (day)) * CLOCK_Day +
         clock_FromTimeOfDay (form.tm_hour, form.tm_min, form.tm_sec);
}

double MachineBias () {
  std::tm local, universal;
  Calendars (local, universal);
  return SecondsOf (universal) - SecondsOf (local);
}

bool MachineZone (Str& name, double& hours) {
  std::tm local, universal;
  Calendars (local, universal);
  std::array<char, 64> zone;
  if (std::strftime (zone.data (), zone.size (), "%Z", &local) == 0) return false;
  name = zone.data ();
  hours = (SecondsOf (universal) - SecondsOf (local)) / 3600;
  return true;
}

void LeaveTheClockAlone (int, int, int, int, int, int) {}

constexpr clock_Source machine = {MachineTicks, MachineLocalTime, MachineBias, MachineZone,
                                  LeaveTheClockAlone};
constinit std::atomic<const clock_Source*> inForce{&machine};

const clock_Source& Source () noexcept { return *inForce.load (std::memory_order_acquire); }

// The cache of clock_Now has no lock, as a race costs one more reading.
constinit std::atomic<bool> cached{false};
constinit std::atomic<double> cachedTime{0};
constinit std::atomic<uint32_t> cachedTick{0};
// Holds on this thread; another thread's clock goes on.
constinit thread_local int holds = 0;

double ReadLocalTime () {
  int year = 1980, month = 1, day = 1, hours = 0, minutes = 0, seconds = 0;
  Source ().localTime (year, month, day, hours, minutes, seconds);
  const double date = clock_FromDate (static_cast<int16_t> (year), static_cast<int16_t> (month),
                                      static_cast<int16_t> (day));
  return maths_IsNull (date) ? date : date + clock_FromTimeOfDay (hours, minutes, seconds);
}

struct Counter {
  std::mutex lock;
  uint32_t last = 0;
  uint64_t offset = 0;
};
constinit Counter counter;

// Whether a time can be worked on: no null value (which is asserted), a number, and small enough
// that doubles still tell its seconds apart.
bool IsTime (double time) {
  constexpr double largest = 9007199254740992.0;
  return Assert (!maths_IsNull (time), "!maths_IsNull(time)") && std::abs (time) < largest;
}

// The date of a time that IsTime; false outside the calendar.
bool DateOf (double time, chrono::year_month_day& date) {
  const int64_t number = static_cast<int64_t> (std::floor (time / CLOCK_Day)) + Origin;
  if (number < FirstDay || number > LastDay) return false;
  constexpr chrono::sys_days zero = chrono::year{0} / chrono::January / 1;
  date = chrono::year_month_day{zero + chrono::days{number}};
  return true;
}

int YearOf (chrono::year_month_day date) { return static_cast<int> (date.year ()); }
int MonthOf (chrono::year_month_day date) {
  return static_cast<int> (static_cast<unsigned> (date.month ()));
}
int DayOf (chrono::year_month_day date) {
  return static_cast<int> (static_cast<unsigned> (date.day ()));
}

double NullUnlessFinite (double time) { return std::isfinite (time) ? time : MATHS_Null; }

Str TwoDigits (int number) { return text_Format ("%02d", number); }

constexpr const char* DayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                    "Thursday", "Friday", "Saturday"};
constexpr const char* MonthNames[] = {"January",   "February", "March",    "April",
                                      "May",       "June",     "July",     "August",
                                      "September", "October",  "November", "December"};

// The zone of a mail date: hours and minutes east of Greenwich.
Str MailZone (double bias) {
  const int minutes = static_cast<int> (std::lround (-bias / 60));
  const int size = std::abs (minutes);
  Str zone (minutes < 0 ? '-' : '+');
  zone += TwoDigits (size / 60);
  zone += TwoDigits (size % 60);
  return zone;
}

}  // namespace

const clock_Source& clock_Machine () noexcept { return machine; }

const clock_Source* clock_Install (const clock_Source* source) noexcept {
  const clock_Source* before =
      inForce.exchange (source != nullptr ? source : &machine, std::memory_order_acq_rel);
  cached.store (false, std::memory_order_release);
  const std::lock_guard<std::mutex> guard (counter.lock);
  counter.last = 0;
  counter.offset = 0;
  return before;
}

double clock_Now () {
  const bool known = cached.load (std::memory_order_acquire);
  if (known && holds > 0) return cachedTime.load (std::memory_order_relaxed);
  const uint32_t tick = Source ().ticks ();
  // Unsigned, so that the difference is right through the counter's wrap.
  if (known && tick - cachedTick.load (std::memory_order_relaxed) < 1000)
    return cachedTime.load (std::memory_order_relaxed);
  const double time = ReadLocalTime ();
  cachedTime.store (time, std::memory_order_relaxed);
  cachedTick.store (tick, std::memory_order_relaxed);
  cached.store (true, std::memory_order_release);
  return time;
}

clock_Hold::clock_Hold () noexcept {
  if (holds == 0) clock_Now ();
  holds++;
}

clock_Hold::~clock_Hold () { holds--; }

double clock_Elapsed () {
  const std::lock_guard<std::mutex> guard (counter.lock);
  const uint32_t tick = Source ().ticks ();
  if (tick < counter.last) counter.offset += uint64_t{1} << 32;
  counter.last = tick;
  return static_cast<double> (counter.offset + tick) / 1000;
}

double clock_ElapsedPlus (double t) { return clock_Elapsed () + t; }
double clock_ElapsedSince (double t) { return clock_Elapsed () - t; }
bool clock_IsPast (double t) { return clock_Elapsed () >= t; }

void clock_SetLocalTime (double time) {
  chrono::year_month_day date;
  if (!IsTime (time) || !DateOf (time, date)) return;
  const int seconds = static_cast<int> (std::floor (time - clock_StartOfDay (time)));
  Source ().setLocalTime (YearOf (date), MonthOf (date), DayOf (date), seconds / 3600,
                          seconds / 60 % 60, seconds % 60);
}

double clock_Bias () { return Source ().bias (); }
bool clock_TimeZoneName (Str& name, double& hours) { return Source ().zone (name, hours); }

void clock_ToGPS (double time, int32_t* weeks, double* seconds) {
  if (!Assert (weeks != nullptr && seconds != nullptr, "weeks && seconds") || !IsTime (time))
    return;
  const double t = time + clock_Bias () - CLOCK_GPSEpoch;
  const double whole = std::floor (t / CLOCK_Week);
  if (!(std::abs (whole) <= std::numeric_limits<int32_t>::max ())) return;
  *weeks = static_cast<int32_t> (whole);
  *seconds = t - whole * CLOCK_Week;
}

double clock_FromGPS (int32_t weeks, double seconds) {
  const double time = clock_FromGPSNoBias (weeks, seconds);
  return maths_IsNull (time) ? time : time - clock_Bias ();
}

double clock_FromGPSNoBias (int32_t weeks, double seconds) {
  if (maths_IsNull (seconds)) return MATHS_Null;
  return NullUnlessFinite (weeks * CLOCK_Week + seconds + CLOCK_GPSEpoch);
}

double clock_DaysFromGPS (int32_t weeks, double seconds) {
  if (maths_IsNull (seconds)) return MATHS_Null;
  return NullUnlessFinite (weeks * 7.0 + seconds / CLOCK_Day);
}

double clock_FromDate (int16_t year, int16_t month, int16_t day) {
  if (year < 1582 || month < 1 || month > 12 || day < 1 || day > 31) return MATHS_Null;
  const chrono::year_month_day date = chrono::year{year} /
                                      chrono::month{static_cast<unsigned> (month)} /
                                      chrono::day{static_cast<unsigned> (day)};
  if (!date.ok ()) return MATHS_Null;
  return static_cast<double> (DayNumber (date) - Origin) * CLOCK_Day;
}

double clock_FromTimeOfDay (int32_t hours, int32_t minutes, int32_t seconds) {
  return hours * 3600.0 + minutes * 60.0 + seconds;
}

void clock_ToTimeOfDay (double time, int32_t* hours, int32_t* minutes, int32_t* seconds) {
  if (!Assert (hours != nullptr && minutes != nullptr && seconds != nullptr,
               "hours && minutes && seconds") ||
      !IsTime (time))
    return;
  const double t = time + 0.5;
  const double wholeHours = std::floor (t / 3600);
  if (std::abs (wholeHours) > std::numeric_limits<int32_t>::max ()) return;
  const double rest = t - wholeHours * 3600;
  *hours = static_cast<int32_t> (wholeHours);
  *minutes = static_cast<int32_t> (rest / 60);
  *seconds = static_cast<int32_t> (rest - *minutes * 60);
}

int32_t clock_Milliseconds (double time) {
  if (!IsTime (time)) return 0;
  return static_cast<int32_t> (std::min (999L, std::lround ((time - std::floor (time)) * 1000)));
}

void clock_ToDate (double time, int16_t* years, int16_t* months, int16_t* days, double* timeOfDay) {
  chrono::year_month_day date;
  if (!Assert (years != nullptr && months != nullptr && days != nullptr,
               "years && months && days") ||
      !IsTime (time) || !DateOf (time, date))
    return;
  *years = static_cast<int16_t> (YearOf (date));
  *months = static_cast<int16_t> (MonthOf (date));
  *days = static_cast<int16_t> (DayOf (date));
  if (timeOfDay != nullptr) *timeOfDay = clock_TimeOfDay (time);
}

double clock_TimeOfDay (double time) {
  const double start = clock_StartOfDay (time);
  return maths_IsNull (start) ? start : time - start;
}

double clock_StartOfDay (double time) {
  return IsTime (time) ? std::floor (time / CLOCK_Day) * CLOCK_Day : MATHS_Null;
}

int32_t clock_DayOfWeek (double time) {
  if (!IsTime (time)) return 0;
  const int64_t day = static_cast<int64_t> (std::floor (time / CLOCK_Day));
  const int32_t dayOfWeek = static_cast<int32_t> (((day + 2) % 7 + 7) % 7);
  Assert (dayOfWeek >= 0 && dayOfWeek < 7, "dayOfWeek >= 0 && dayOfWeek < 7");
  return dayOfWeek;
}

Str clock_FormatTime (double time) {
  if (!IsTime (time)) return Str ();
  int32_t hours = 0, minutes = 0, seconds = 0;
  clock_ToTimeOfDay (clock_TimeOfDay (time), &hours, &minutes, &seconds);
  // Rounding does not lead into the next day, whose date would stand beside it.
  if (hours == 24) {
    hours = 23;
    minutes = seconds = 59;
  }
  return TwoDigits (hours) + ":" + TwoDigits (minutes) + ":" + TwoDigits (seconds);
}

Str clock_FormatDate (double time, bool useLocale, bool longForm) {
  chrono::year_month_day date;
  if (!IsTime (time) || !DateOf (time, date)) return Str ();
  const Str year = text_Format ("%d", YearOf (date));
  if (!useLocale)
    return year + "/" + text_Format ("%d", MonthOf (date)) + "/" + text_Format ("%d", DayOf (date));
  const Str weekday (DayNames[clock_DayOfWeek (time)], ", ");
  const char* month = MonthNames[MonthOf (date) - 1];
  if (!longForm) return weekday + text_Format ("%d", DayOf (date)) + " " + month + " " + year;
  return weekday + TwoDigits (DayOf (date)) + " " + Str (month).Left (3) + " " + year;
}

void clock_DateFormats (StrArray& list) {
  list.Clear ();
  for (const char* format : {"yyyy/M/d", "dddd',' d MMMM yyyy", "dddd',' dd MMM yyyy"})
    list.Add (format);
}

Str clock_MailDate () {
  const double now = clock_Now ();
  return clock_FormatDate (now, true, true) + " " + clock_FormatTime (now) + " " +
         MailZone (clock_Bias ());
}

}  // namespace clxml
