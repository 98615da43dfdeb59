#include <quarrix/framework/Trace.h>

#include <gtest/gtest.h>

#include <vector>

using namespace quarrix;

namespace {

TEST(TraceTest, HandlerReceivesFormattedTextUntilRemoved) {
  TraceHandler original = SetTraceHandler(TraceHandler());
  EXPECT_FALSE(IsTraceEnabled()) << "no handler: traces are off";
  AfxTrace(u"nobody hears %d", 1);

  std::vector<CString> first, second;
  EXPECT_FALSE(SetTraceHandler([&](const CString& t) { first.push_back(t); }));
  EXPECT_TRUE(IsTraceEnabled());
  AfxTrace(u"%d items in %s, %.1f%%", 3, u"list", 99.5);
  AfxTraceText(u"plain %d");

  TraceHandler previous = SetTraceHandler([&](const CString& t) { second.push_back(t); });
  ASSERT_TRUE(previous);
  AfxTrace(u"to second");
  previous(u"direct");

  EXPECT_TRUE(SetTraceHandler(TraceHandler()));
  EXPECT_FALSE(IsTraceEnabled());
  AfxTrace(u"silent again");
  SetTraceHandler(std::move(original));

  EXPECT_EQ(first, (std::vector<CString>{u"3 items in list, 99.5%", u"plain %d", u"direct"}));
  EXPECT_EQ(second, (std::vector<CString>{u"to second"}));
}

}  // namespace
