#include "system/Dates.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "support/CheckText.h"
#include "support/Clock.h"
#include "support/EnvironmentKey.h"
#include "support/FailEachAllocation.h"

// What the calendars show, as long as a test has them fail or differ.
namespace {

const std::tm* utcStandIn = nullptr;
const std::tm* localStandIn = nullptr;
bool noCalendar = false;
bool noLocalCalendar = false;
bool noFormat = false;

}  // namespace

extern "C" {

std::tm* __real_gmtime(const std::time_t* time);
std::tm* __wrap_gmtime(const std::time_t* time) {
  if (noCalendar) return nullptr;
  return utcStandIn == nullptr ? __real_gmtime(time) : const_cast<std::tm*>(utcStandIn);
}

std::tm* __real_localtime(const std::time_t* time);
std::tm* __wrap_localtime(const std::time_t* time) {
  if (noLocalCalendar) return nullptr;
  return localStandIn == nullptr ? __real_localtime(time) : const_cast<std::tm*>(localStandIn);
}

std::size_t __real_strftime(char* out, std::size_t size, const char* format, const std::tm* time);
std::size_t __wrap_strftime(char* out, std::size_t size, const char* format, const std::tm* time) {
  return noFormat ? 0 : __real_strftime(out, size, format, time);
}

}  // extern "C"

namespace {

namespace fs = std::filesystem;

// A zone and an instant, put back afterwards.
class At {
 public:
  At(const char* zone, std::time_t now) {
    ::setenv("TZ", zone, 1);
    ::tzset();
    clockStandIn = now;
  }
  ~At() {
    clockStandIn.reset();
    ::unsetenv("TZ");
    ::tzset();
  }
  At(const At&) = delete;
  At& operator=(const At&) = delete;

 private:
  EnvironmentKey key_{"TZ"};
};

constexpr std::time_t kFifth = 1'793'866'023;  // 5 November 2026, 08:07:03 UTC
constexpr std::time_t kDay = 86400;

TEST(RFC822Date, HasNoZeroBeforeTheDay) {
  const At at("MEZ-1", kFifth);
  CheckText(RFC822Date(), "Thu, 5 Nov 2026 09:07:03 +0100");
}

TEST(RFC822Date, KeepsBothDigitsOfTheDay) {
  const At at("EST5", kFifth + 10 * kDay);
  CheckText(RFC822Date(), "Sun, 15 Nov 2026 03:07:03 -0500");
  clockStandIn = kFifth + 15 * kDay;
  CheckText(RFC822Date(), "Fri, 20 Nov 2026 03:07:03 -0500");
}

TEST(RFC822Date, OfTheBeginning) {
  const At at("UTC0", 0);
  CheckText(RFC822Date(), "Thu, 1 Jan 1970 00:00:00 +0000");
}

TEST(RFC822Date, NamesTheDaysAndTheMonths) {
  const std::string days = "SunMonTueWedThuFriSat", months = "JanFebMarAprMayJunJulAugSepOctNovDec";
  const At at("UTC0", 0);
  for (int day = 0; day < 365; ++day) {  // from 1 January 1970 on, a Thursday
    clockStandIn = day * kDay;
    const std::tm* const time = std::gmtime(&*clockStandIn);
    const std::string weekday = days.substr(static_cast<std::size_t>((day + 4) % 7 * 3), 3);
    const std::string month = months.substr(static_cast<std::size_t>(time->tm_mon * 3), 3);
    CheckText(RFC822Date(), weekday + ", " + std::to_string(time->tm_mday) + ' ' + month +
                                " 1970 00:00:00 +0000");
  }
}

TEST(MessageIdDate, IsTheSameInEveryZone) {
  for (const char* const zone : {"UTC0", "EST5", "ABC-14", "IST-5:30"}) {
    const At at(zone, kFifth);
    CheckText(MessageIdDate(), "20261105080703");
  }
}

TEST(LogFileDate, IsLocalAndSaysItsZone) {
  {
    const At at("EST5", kFifth);
    CheckText(LogFileDate(), "20261105030703-0500");
  }
  const At at("IST-5:30", kFifth);
  CheckText(LogFileDate(), "20261105133703+0530");
}

TEST(LogFileDate, KeepsTheSignAcrossMidnightAndNewYear) {
  constexpr std::time_t kNewYear = 1'798'761'600;  // 2027 in UTC
  struct Row {
    const char* zone;
    std::time_t now;
    const char* expected;
  };
  const Row rows[] = {
      {"MEZ-1", kNewYear - 1800, "20270101003000+0100"},
      {"EST5", kNewYear + 1800, "20261231193000-0500"},
      {"MEZ-1", kNewYear + kDay - 1800, "20270102003000+0100"},
      {"EST5", kNewYear + kDay + 1800, "20270101193000-0500"},
      {"ABC-14", kNewYear - 14 * 3600, "20270101000000+1400"},
      {"ABC12", kNewYear, "20261231120000-1200"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.expected);
    const At at(row.zone, row.now);
    CheckText(LogFileDate(), row.expected);
  }
}

// The zone between two clock faces on days of one year.
std::string ZoneBetween(int utcDay, int utcHour, int localDay, int localHour) {
  std::tm utc = {}, local = {};
  utc.tm_mday = local.tm_mday = 1;
  utc.tm_yday = utcDay;
  utc.tm_hour = utcHour;
  local.tm_yday = localDay;
  local.tm_hour = localHour;
  utcStandIn = &utc;
  localStandIn = &local;
  const std::string zone(LogFileDate().View().substr(14));
  utcStandIn = localStandIn = nullptr;
  return zone;
}

TEST(LogFileDate, TakesDifferencesPastADayByTheirRest) {
  EXPECT_EQ(ZoneBetween(5, 3, 6, 3), "+2400") << "a whole day stands";
  EXPECT_EQ(ZoneBetween(6, 3, 5, 3), "-2400");
  EXPECT_EQ(ZoneBetween(5, 3, 6, 4), "+0100");
  EXPECT_EQ(ZoneBetween(6, 4, 5, 3), "-0100");
  EXPECT_EQ(ZoneBetween(5, 3, 6, 2), "+2300");
}

TEST(DaysSince1970, AreWhole) {
  const At at("ABC-14", 0);
  EXPECT_EQ(DaysSince1970(), 0);
  clockStandIn = kDay - 1;
  EXPECT_EQ(DaysSince1970(), 0);
  clockStandIn = kDay;
  EXPECT_EQ(DaysSince1970(), 1);
  clockStandIn = kFifth;
  EXPECT_EQ(DaysSince1970(), 20762);
}

TEST(Dates, ReadTheClockOnce) {
  int before = clockReadings;
  static_cast<void>(RFC822Date());
  EXPECT_EQ(clockReadings, ++before);
  static_cast<void>(MessageIdDate());
  EXPECT_EQ(clockReadings, ++before);
  static_cast<void>(LogFileDate());
  EXPECT_EQ(clockReadings, ++before);
  static_cast<void>(DaysSince1970());
  EXPECT_EQ(clockReadings, ++before);
}

TEST(Dates, ThatCannotBeMadeAreUndefined) {
  for (bool* const fault : {&noCalendar, &noLocalCalendar, &noFormat}) {
    *fault = true;
    CheckUndefined(RFC822Date());
    CheckUndefined(MessageIdDate());
    CheckUndefined(LogFileDate());
    *fault = false;
  }
}

TEST(Dates, HoldAYearOfTenDigits) {
  const At at("UTC0", 67'767'976'233'532'799);  // its last second
  CheckText(LogFileDate(), "21474836471231235959+0000");
  CheckText(MessageIdDate(), "21474836471231235959");
  EXPECT_TRUE(RFC822Date().View().ends_with(" 31 Dec 2147483647 23:59:59 +0000"));
  clockStandIn = 67'768'036'191'676'800;  // past what the number of a year holds
  CheckUndefined(RFC822Date());
  CheckUndefined(LogFileDate());
}

TEST(Dates, WithoutMemoryAreNotHalfMade) {
  const At at("MEZ-1", kFifth);
  SString mail, id, log;
  const int failed = FailEachAllocation(
      [&] {
        mail = RFC822Date();
        id = MessageIdDate();
        log = LogFileDate();
      },
      [] {});
  EXPECT_GE(failed, 3);
  CheckText(mail, "Thu, 5 Nov 2026 09:07:03 +0100");
  CheckText(id, "20261105080703");
  CheckText(log, "20261105090703+0100");
}

// The names of all zones that the system knows.
std::vector<std::string> Zones() {
  std::vector<std::string> zones;
  const fs::path root = "/usr/share/zoneinfo";
  if (!fs::is_directory(root)) return zones;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    std::string magic(4, '\0');
    std::ifstream(entry.path(), std::ios::binary).read(magic.data(), 4);
    const std::string name = entry.path().lexically_relative(root).string();
    // "right/" counts leap seconds: its clock faces are seconds off those of UTC.
    if (magic == "TZif" && !name.starts_with("right/")) zones.push_back(name);
  }
  return zones;
}

TEST(Dates, ShowTheOffsetOfEveryZoneOfTheSystem) {
  const std::vector<std::string> zones = Zones();
  if (zones.empty()) GTEST_SKIP() << "no zones (package tzdata)";
  std::mt19937 random(20261105);
  constexpr std::time_t kEnd = 2'145'916'800;  // 2038
  std::uniform_int_distribution<std::time_t> instants(0, kEnd - 1);
  for (const std::string& zone : zones) {
    const At at(zone.c_str(), 0);
    for (int i = 0; i < 50; ++i) {
      clockStandIn = instants(random);
      const SString date = LogFileDate();
      ASSERT_EQ(date.Length(), 19);
      int hours = 0, minutes = 0;
      ASSERT_EQ(std::sscanf(date.Data() + 15, "%2d%2d", &hours, &minutes), 2);
      const long shown = (hours * 60L + minutes) * 60 * (date[14] == '-' ? -1 : 1);
      const long offset = std::localtime(&*clockStandIn)->tm_gmtoff;
      if (offset % 60 == 0) {
        ASSERT_EQ(shown, offset) << zone << ' ' << *clockStandIn;
      } else {
        ASSERT_LT(std::abs(shown - offset), 60) << zone << ' ' << *clockStandIn;
      }
    }
  }
}

}  // namespace
