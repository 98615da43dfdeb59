#include <quarrix/foundation/StringTools.h>

#include <gtest/gtest.h>

namespace quarrix {
namespace {

std::vector<CString> Split(const char16_t* s, const char16_t* delims) { return StringTools::split(s, delims); }

TEST(StringTools, SplitDropsEmptyTokens) {
  EXPECT_EQ(Split(u",,a,b;;c,", u",;"), (std::vector<CString>{u"a", u"b", u"c"}));
  EXPECT_TRUE(Split(u"", u",").empty());
  EXPECT_TRUE(Split(u",,,", u",").empty());
  EXPECT_EQ(Split(u"abc", u""), (std::vector<CString>{u"abc"}));
  EXPECT_EQ(Split(u"a b", u" "), (std::vector<CString>{u"a", u"b"}));
}

TEST(StringTools, GermanCaseHelpers) {
  CString s = u"Grüße aus Köln, Ärger";
  EXPECT_EQ(&StringTools::MakeUpperGerman(s), &s);
  EXPECT_EQ(s, u"GRÜßE AUS KÖLN, ÄRGER");  // ß has no one-unit capital
  CString lower = u"ÄÖÜ ABC";
  StringTools::MakeLowerGerman(lower);
  EXPECT_EQ(lower, u"äöü abc");
}

TEST(StringTools, CompareNoCaseGermanChangesBothArguments) {
  CString a = u"müller";
  CString b = u"MÜLLER";
  EXPECT_EQ(StringTools::CompareNoCaseGerman(a, b), 0);
  EXPECT_EQ(a, u"MÜLLER");
  EXPECT_EQ(b, u"MÜLLER");
  CString x = u"äpfel", y = u"birnen";
  EXPECT_GT(StringTools::CompareNoCaseGerman(x, y), 0);  // Ä sorts after B by code unit
}

}  // namespace
}  // namespace quarrix
