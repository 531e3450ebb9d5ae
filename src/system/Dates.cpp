#include "Dates.h"

#include <time.h>  // tzset: POSIX, not in <ctime>

#include <array>
#include <ctime>
#include <optional>
#include <string_view>

#include "StartUp.h"

inline namespace mailhearth {

namespace {

[[gnu::init_priority(kStartUpPriority)]] const StartUpGuard startUp;

constexpr int kSecondsPerDay = 86400;

// One reading of the clock, in both calendars.
struct Moment {
  std::tm utc;
  std::tm local;
};

// Returns the current moment; nothing where its year is past what a calendar holds.
std::optional<Moment> Now() {
  const std::time_t now = std::time(nullptr);
  const std::tm* const utc = std::gmtime(&now);
  if (utc == nullptr) return std::nullopt;
  const std::tm kept = *utc;  // the C library has one place for both
  const std::tm* const local = std::localtime(&now);
  if (local == nullptr) return std::nullopt;
  return Moment{kept, *local};
}

// Returns how many days the local calendar is ahead of that of UTC.
int DaysAhead(const Moment& now) {
  if (now.local.tm_year != now.utc.tm_year) return now.local.tm_year > now.utc.tm_year ? 1 : -1;
  if (now.local.tm_yday != now.utc.tm_yday) return now.local.tm_yday > now.utc.tm_yday ? 1 : -1;
  return 0;
}

// Returns the zone by the difference of the two clock faces, so that it is right whatever
// the C library's calendars carry beside them.
SString NumericZone(const Moment& now) {
  int d = (now.local.tm_hour - now.utc.tm_hour) * 3600 + (now.local.tm_min - now.utc.tm_min) * 60 +
          DaysAhead(now) * kSecondsPerDay;
  const char sign = d < 0 ? '-' : '+';
  if (d < 0) d = -d;
  if (d > kSecondsPerDay) d %= kSecondsPerDay;  // a whole day is let stand
  const auto digit = [](int n) { return static_cast<char>('0' + n); };
  const std::array<char, 5> zone = {sign, digit(d / 36000 % 3), digit(d / 3600 % 10),
                                    digit(d / 600 % 6), digit(d / 60 % 10)};
  return SString(std::string_view(zone.data(), zone.size()));
}

// Returns the time in a format of strftime; an undefined string if the text is too long.
SString Formatted(const char* format, const std::tm& time) {
  std::array<char, 64> text;
  if (std::strftime(text.data(), text.size(), format, &time) == 0) return {};
  return SString(text.data());
}

constexpr const char* kDigits = "%Y%m%d%H%M%S";

// As RFC 822 has them: "%a" and "%b" would be those of the program's locale.
constexpr const char* kWeekdays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

}  // namespace

SString RFC822Date() {
  constexpr int kDay = 5;  // behind the weekday's three letters, a comma and a blank
  const std::optional<Moment> now = Now();
  if (!now) return {};
  const SString format = SString(kWeekdays[now->local.tm_wday]) + ", %d " +
                         kMonths[now->local.tm_mon] + " %Y %H:%M:%S ";
  SString date = Formatted(format.Data(), now->local);
  if (!date.Defined()) return {};
  if (date[kDay] == '0') date.Segment(kDay, 1) = "";
  return date + NumericZone(*now);
}

SString MessageIdDate() {
  const std::optional<Moment> now = Now();
  return now ? Formatted(kDigits, now->utc) : SString();
}

SString LogFileDate() {
  const std::optional<Moment> now = Now();
  if (!now) return {};
  const SString date = Formatted(kDigits, now->local);
  return date.Defined() ? date + NumericZone(*now) : date;
}

int DaysSince1970() { return static_cast<int>(std::time(nullptr) / kSecondsPerDay); }

SdatetimeInit::SdatetimeInit() { ::tzset(); }

}  // namespace mailhearth
