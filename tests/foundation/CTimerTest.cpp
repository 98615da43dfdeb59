#include <quarrix/foundation/CTimer.h>

#include <quarrix/framework/MessageBox.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

#include <chrono>
#include <thread>
#include <vector>

namespace quarrix {
namespace {

void Sleep(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

TEST(CTimer, AccumulatesIntervalsUntilReset) {
  CTimer timer;
  timer.Start(3);
  Sleep(10);
  timer.Stop(3);
  Sleep(20);  // not counted: the stopwatch is stopped
  timer.Start(3);
  Sleep(15);
  timer.Stop(3);
  EXPECT_GE(timer.GetTime(3), 25.0);
  EXPECT_LT(timer.GetTime(3), 45.0 + 1000.0);  // generous: only the stopped gap must be missing
  EXPECT_EQ(timer.GetTime(4), 0.0);           // stopwatches are independent
  timer.Reset(3);
  EXPECT_EQ(timer.GetTime(3), 0.0);
}

TEST(CTimer, ElapsedDoesNotStop) {
  CTimer timer;
  timer.Start(0);
  Sleep(5);
  const double elapsed = timer.GetElapsedTime(0);
  EXPECT_GE(elapsed, 5.0);
  EXPECT_EQ(timer.GetTime(0), 0.0);
  EXPECT_GE(timer.GetElapsedTime(0), elapsed);
}

TEST(CTimer, StopWithoutStartCountsFromTheClocksOrigin) {
  CTimer timer;
  timer.Stop(1);
  EXPECT_GT(timer.GetTime(1), 0.0);
}

TEST(CTimer, IndicesOutsideTheTwentyAreIgnored) {
  CTimer timer;
  for (int i : {-1, 20, 1000, -2147483647 - 1}) {
    timer.Start(i);
    timer.Stop(i);
    timer.Reset(i);
    EXPECT_EQ(timer.GetTime(i), 0.0) << i;
    EXPECT_EQ(timer.GetElapsedTime(i), 0.0) << i;
  }
  EXPECT_EQ(timer.ReportTime(20, u"x", true, false), u"Time x: 0.000 Seconds");
}

TEST(CTimer, ReportTexts) {
  std::vector<CString> shown;
  CTimer timer;
  {
    test::ScopedMessageBoxHandler recorder([&](const CString& text, const CString&, UINT type) {
      shown.push_back(text);
      EXPECT_EQ(type, MB_OK);
      return IDOK;
    });
    EXPECT_EQ(timer.ReportTime(2, u"Load", true, true), u"Time Load: 0.000 Seconds");
    EXPECT_EQ(timer.ReportTime(2, u"", false, true), u"Time: 0.000 Milliseconds");
    EXPECT_EQ(timer.ReportTime(2, u"quiet", false, false), u"Time quiet: 0.000 Milliseconds");
  }
  EXPECT_EQ(shown, (std::vector<CString>{u"Time Load: 0.000 Seconds", u"Time: 0.000 Milliseconds"}));

  timer.Start(5);
  Sleep(2);
  timer.Stop(5);
  const CString ms = timer.ReportTime(5, u"Run", false, false);
  EXPECT_EQ(ms, cstringf(u"Time Run: %0.3f Milliseconds", timer.GetTime(5)));
  EXPECT_EQ(timer.ReportTime(5, u"Run", true, false), cstringf(u"Time Run: %0.3f Seconds", timer.GetTime(5) / 1000));
}

}  // namespace
}  // namespace quarrix
