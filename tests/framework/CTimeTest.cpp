#include <quarrix/framework/CTime.h>

#include <quarrix/framework/CException.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>

using namespace quarrix;
using quarrix::test::ExpectInvalidArg;
using quarrix::test::ScopedTimeZone;

namespace {

// Central European time: a zone with daylight saving that needs no time-zone database.
constexpr const char* kBerlin = "CET-1CEST,M3.5.0,M10.5.0/3";

TEST(CTimeTest, FieldsInUtc) {
  ScopedTimeZone utc("UTC");
  struct Row {
    const char* name;
    int year, month, day, hour, minute, second;
    std::int64_t time;
    int dayOfWeek;
  };
  const Row rows[] = {
      {"leap day", 2024, 2, 29, 13, 45, 30, 1709214330, 5},
      {"epoch", 1970, 1, 1, 0, 0, 0, 0, 5},
      {"one second before the epoch", 1969, 12, 31, 23, 59, 59, -1, 4},
      {"millennium", 2000, 1, 1, 0, 0, 0, 946684800, 7},
      {"past 32-bit time_t", 2038, 1, 19, 3, 14, 8, 2147483648LL, 3},
      {"earliest year", 1900, 1, 1, 0, 0, 0, -2208988800LL, 2},
      {"day 31 of a 30-day month rolls over", 2023, 4, 31, 12, 0, 0, 1682942400, 2},
  };
  for (const auto& r : rows) {
    const CTime t(r.year, r.month, r.day, r.hour, r.minute, r.second);
    EXPECT_EQ(t.GetTime(), r.time) << r.name;
    EXPECT_EQ(t.GetDayOfWeek(), r.dayOfWeek) << r.name;
    if (r.day <= 30) {
      EXPECT_EQ(t.GetYear(), r.year) << r.name;
      EXPECT_EQ(t.GetMonth(), r.month) << r.name;
      EXPECT_EQ(t.GetDay(), r.day) << r.name;
      EXPECT_EQ(t.GetHour(), r.hour) << r.name;
      EXPECT_EQ(t.GetMinute(), r.minute) << r.name;
      EXPECT_EQ(t.GetSecond(), r.second) << r.name;
    }
  }
  for (int day = 1; day <= 7; ++day)
    EXPECT_EQ(CTime(2024, 9, day, 12, 0, 0).GetDayOfWeek(), day) << "2024-09-01 is a Sunday";
}

TEST(CTimeTest, FieldsWithDaylightSaving) {
  ScopedTimeZone berlin(kBerlin);
  EXPECT_EQ(CTime(2024, 7, 1, 12, 0, 0).GetTime(), 1719828000) << "summer: UTC+2";
  EXPECT_EQ(CTime(2024, 1, 15, 12, 0, 0).GetTime(), 1705316400) << "winter: UTC+1";
  // 02:30 on the last Sunday of October happens twice; nDST chooses which.
  EXPECT_EQ(CTime(2024, 10, 27, 2, 30, 0, 1).GetTime(), 1729989000);
  EXPECT_EQ(CTime(2024, 10, 27, 2, 30, 0, 0).GetTime(), 1729992600);

  const CTime summer(1719828000);
  EXPECT_EQ(summer.GetHour(), 12);
  EXPECT_EQ(summer.Format(u"%H:%M %Z"), CString(u"12:00 CEST"));
  EXPECT_EQ(summer.FormatGmt(u"%H:%M"), CString(u"10:00"));
  struct tm tm;
  ASSERT_NE(summer.GetGmtTm(&tm), nullptr);
  EXPECT_EQ(tm.tm_hour, 10);
  ASSERT_NE(summer.GetLocalTm(&tm), nullptr);
  EXPECT_EQ(tm.tm_isdst, 1);
  EXPECT_EQ(summer.GetLocalTm(nullptr), nullptr);

  // Spans are absolute seconds: one day after noon before the spring change is 13:00 local.
  const CTime beforeChange(2024, 3, 30, 12, 0, 0);
  const CTime dayLater = beforeChange + CTimeSpan(1, 0, 0, 0);
  EXPECT_EQ(dayLater.GetDay(), 31);
  EXPECT_EQ(dayLater.GetHour(), 13);
}

TEST(CTimeTest, OutOfRangeFieldsThrow) {
  ScopedTimeZone utc("UTC");
  struct Row {
    const char* name;
    int year, month, day, hour, minute, second;
  };
  const Row rows[] = {
      {"year 1899", 1899, 12, 31, 0, 0, 0}, {"month 0", 2024, 0, 1, 0, 0, 0},
      {"month 13", 2024, 13, 1, 0, 0, 0},   {"day 0", 2024, 1, 0, 0, 0, 0},
      {"day 32", 2024, 1, 32, 0, 0, 0},     {"hour -1", 2024, 1, 1, -1, 0, 0},
      {"hour 24", 2024, 1, 1, 24, 0, 0},    {"minute 60", 2024, 1, 1, 0, 60, 0},
      {"second 60", 2024, 1, 1, 0, 0, 60},  {"second -1", 2024, 1, 1, 0, 0, -1},
  };
  for (const auto& r : rows)
    ExpectInvalidArg([&] { CTime(r.year, r.month, r.day, r.hour, r.minute, r.second); }, nullptr, r.name);
  ExpectInvalidArg([] { CTime(2024, 13, 1, 0, 0, 0); }, u"the date 2024-13-01 00:00:00 is out of range",
                   "detail names the date");
}

TEST(CTimeTest, FormatFollowsStrftime) {
  ScopedTimeZone utc("UTC");
  const CTime t(2024, 2, 29, 13, 45, 30);
  struct Row {
    const char* name;
    const char16_t* format;
    const char16_t* expected;
  };
  const Row rows[] = {
      {"date and time", u"%Y-%m-%d %H:%M:%S", u"2024-02-29 13:45:30"},
      {"names", u"%A %a %B %b %p", u"Thursday Thu February Feb PM"},
      {"numbers", u"%j %y %I %w %%", u"060 24 01 4 %"},
      {"non-ASCII text kept", u"Zeit: %H Uhr – ä", u"Zeit: 13 Uhr – ä"},
      {"empty format", u"", u""},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(t.Format(r.format), CString(r.expected)) << r.name;
    EXPECT_EQ(t.FormatGmt(r.format), CString(r.expected)) << r.name << " (GMT)";
  }
  EXPECT_EQ(t.Format(nullptr), CString());
  const CTime farFuture(INT64_MAX);
  struct tm tm;
  EXPECT_EQ(farFuture.GetLocalTm(&tm), nullptr) << "beyond the years struct tm holds";
  EXPECT_EQ(farFuture.Format(u"%Y"), CString());
  EXPECT_EQ(farFuture.FormatGmt(u"%Y"), CString());

  const CString dashes125(u'-', 125);
  EXPECT_EQ(t.Format(u"%H" + dashes125), u"13" + dashes125) << "exactly 127 units";
  EXPECT_EQ(t.Format(u"%H-" + dashes125), CString()) << "128 units give nothing";
  EXPECT_EQ(t.FormatGmt(u"%H-" + dashes125), CString()) << "128 units give nothing (GMT)";
  // The limit counts UTF-16 units, not bytes: 127 two-byte letters fit, 128 do not.
  EXPECT_EQ(t.Format(CString(u'ä', 127)).GetLength(), 127);
  EXPECT_EQ(t.Format(CString(u'ä', 128)), CString());
  const CString pairs = CString(u"x") + CString(u"\U0001F600\U0001F600") + CString(u'y', 122);
  EXPECT_EQ(t.Format(pairs), pairs) << "127 units of mixed width";
}

TEST(CTimeTest, ArithmeticWithSpans) {
  ScopedTimeZone utc("UTC");
  const CTimeSpan span(1, 2, 3, 4);
  EXPECT_EQ(span.GetTotalSeconds(), 93784);
  EXPECT_EQ(span.GetDays(), 1);
  EXPECT_EQ(span.GetTotalHours(), 26);
  EXPECT_EQ(span.GetHours(), 2);
  EXPECT_EQ(span.GetMinutes(), 3);
  EXPECT_EQ(span.GetSeconds(), 4);
  const CTimeSpan negative(-90);
  EXPECT_EQ(negative.GetMinutes(), -1) << "parts truncate toward zero";
  EXPECT_EQ(negative.GetSeconds(), -30);

  const CTime start(2024, 12, 31, 23, 0, 0);
  CTime t = start + span;
  EXPECT_EQ(t.Format(u"%Y-%m-%d %H:%M:%S"), CString(u"2025-01-02 01:03:04"));
  EXPECT_EQ(t - start, span);
  EXPECT_EQ(t - span, start);
  t -= span;
  EXPECT_EQ(t, start);
  t += CTimeSpan(-1);
  EXPECT_LT(t, start);
  EXPECT_EQ(start - t, CTimeSpan(1));

  const auto now = static_cast<std::int64_t>(std::time(nullptr));
  EXPECT_NEAR(static_cast<double>(CTime::GetCurrentTime().GetTime()), static_cast<double>(now), 2.0);
}

}  // namespace
