#include "platform/system_clock.hpp"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

namespace lumodevice::platform {
namespace {

struct InTimeZone {
  explicit InTimeZone(const char* zone) {
    ::setenv("TZ", zone, 1);
    ::tzset();
  }
  ~InTimeZone() {
    ::unsetenv("TZ");
    ::tzset();
  }
  InTimeZone(const InTimeZone&) = delete;
  InTimeZone& operator=(const InTimeZone&) = delete;
};

TEST(SystemWallClock, givesTheLocalTimeOfTheSystem) {
  const InTimeZone zone("TEST-05:30");
  const std::time_t before = std::time(nullptr);
  const io::LocalTime now = SystemWallClock().now();
  const std::time_t after = std::time(nullptr);
  std::tm utc{};
  utc.tm_year = now.year - 1900;
  utc.tm_mon = now.month - 1;
  utc.tm_mday = now.day;
  utc.tm_hour = now.hour;
  utc.tm_min = now.minute - now.utcOffset;
  utc.tm_sec = now.second;
  const std::time_t moment = ::timegm(&utc);
  EXPECT_GE(moment, before);
  EXPECT_LE(moment, after);
  EXPECT_EQ(now.utcOffset, 330);
  EXPECT_GE(now.millisecond, 0);
  EXPECT_LT(now.millisecond, 1000);
}

TEST(SystemClock, neverGoesBackAndWaitsAtLeastAsLongAsAsked) {
  SystemClock clock;
  const auto before = clock.now();
  EXPECT_GE(before.count(), 0);
  clock.wait(std::chrono::milliseconds(5));
  EXPECT_GE(clock.now() - before, std::chrono::milliseconds(5));
  clock.wait(std::chrono::milliseconds(-5));
}

}  // namespace
}  // namespace lumodevice::platform
