#include <quarrix/foundation/SystemError.h>
#include <quarrix/foundation/TimeTools.h>

#include <quarrix/framework/CException.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

#include <cerrno>
#include <ctime>

namespace quarrix {
namespace {

// Runs the tests of this file in a fixed zone with daylight saving, given as a POSIX rule (needs no tzdata).
class TimeToolsTest : public ::testing::Test {
 private:
  test::ScopedTimeZone m_zone{"CET-1CEST,M3.5.0,M10.5.0/3"};
};

TEST_F(TimeToolsTest, TimeStamps) {
  CTime t(2024, 3, 9, 17, 5, 9);
  EXPECT_EQ(GetTimeStampAsText(false, &t), u"2024-03-09 17:05:09");
  EXPECT_EQ(GetTimeStampAsText(true, &t), u"2024-03-09");
  EXPECT_EQ(GetTimeStampAsText(true, nullptr), CTime::GetCurrentTime().Format(u"%Y-%m-%d"));
}

TEST_F(TimeToolsTest, DateFromTimeIsLocalMidnight) {
  const CTime summer(2024, 7, 1, 23, 59, 59);
  EXPECT_EQ(TimeTools::GetDateFromTime(summer).Format(u"%Y-%m-%d %H:%M:%S"), u"2024-07-01 00:00:00");
  // The day daylight saving starts (2024-03-31): midnight is still standard time.
  const CTime change(2024, 3, 31, 12, 0, 0);
  const CTime midnight = TimeTools::GetDateFromTime(change);
  EXPECT_EQ(midnight.Format(u"%H:%M:%S %Z"), u"00:00:00 CET");
  EXPECT_EQ(change.GetTime() - midnight.GetTime(), 11 * 3600);  // one hour skipped in between
  EXPECT_EQ(TimeTools::GetDateFromTime(CTime(0)).GetTime(), 0);
  EXPECT_EQ(TimeTools::GetDateFromTime(CTime(-86400)).GetTime(), 0);
}

TEST_F(TimeToolsTest, TimesWithoutALocalTimeAreRejected) {
  // Far beyond any year a struct tm can hold: the system cannot break it down.
  const CTime far(std::int64_t{1} << 62);
  EXPECT_THROW(TimeTools::GetDateFromTime(far), CInvalidArgException);
  CTime copy = far;
  EXPECT_THROW(GetTimeStampAsText(false, &copy), CInvalidArgException);
}

TEST(SystemError, TextsOfErrnoValues) {
  EXPECT_EQ(GetLastErrorMessage(ENOENT), u"No such file or directory");
  EXPECT_EQ(GetLastErrorMessage(EACCES), u"Permission denied");
  EXPECT_EQ(GetLastErrorMessage(99999), u"");
  EXPECT_EQ(GetLastErrorMessage(0xFFFFFFFFu), u"");
  errno = ENOTDIR;
  EXPECT_EQ(GetLastErrorString(), u"Not a directory");
}

}  // namespace
}  // namespace quarrix
