#include <quarrix/foundation/TextHelpers.h>

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace quarrix {
namespace {

TEST(NumberText, IntToStrAndHex) {
  EXPECT_EQ(IntToStr(-42), u"-42");
  EXPECT_EQ(IntToHex(255, 4), u"00FF");
  EXPECT_EQ(IntToHex(255, 0), u"FF");       // digits clamped to 1
  EXPECT_EQ(IntToHex(-1, 2), u"FFFFFFFF");  // 32-bit two's complement
  EXPECT_EQ(IntToHex(10, 100).GetLength(), 64);
  EXPECT_EQ(IntToHex(INT_MIN, 1), u"80000000");
}

TEST(NumberText, HexToIntFollowsWcstol) {
  struct Row {
    const char16_t* text;
    int expected;
  } rows[] = {
      {u"ff", 255},        {u"0x1A", 26},         {u"  -0X10", -16},     {u"+7fz", 127},
      {u"", 0},            {u"xyz", 0},           {u"0x", 0},            {u"0xg", 0},
      {u"7FFFFFFF", INT_MAX}, {u"80000000", INT_MAX}, {u"-80000000", INT_MIN}, {u"123456789abc", INT_MAX},
      {u"-123456789abc", INT_MIN}, {u"\t\n 1f", 31},
  };
  for (const Row& r : rows) EXPECT_EQ(HexToInt(r.text), r.expected) << CString(r.text);
}

TEST(NumberText, DblToStrTrimsInTwoSteps) {
  struct Row {
    double x;
    int decimals;
    bool trim;
    const char16_t* expected;
  } rows[] = {
      {1.23, 4, true, u"1.230"},   // "1.2300": a run of zeros becomes one zero
      {2.0, 3, true, u"2"},        // "2.000" -> "2.0" -> "2"
      {100.0, 0, true, u"10"},     // "100" -> "10": the rule looks at text only
      {1.5, 2, true, u"1.50"},     // a single trailing zero stays
      {0.0, 1, true, u"0"},        // "0.0" -> "0"
      {-3.0, 2, true, u"-3"},
      {1005.0, 0, true, u"1005"},
      {1.23, 4, false, u"1.2300"},
      {2.5, 0, false, u"2"},       // printf rounds half to even in binary
      {1.005, 2, false, u"1.00"},
      {3.14159, -2, false, u"3"},  // negative decimals count as 0
  };
  for (const auto& r : rows)
    EXPECT_EQ(DblToStr(r.x, r.decimals, r.trim), r.expected) << r.x << " with " << r.decimals;
}

TEST(CharSet, IsCharInSet) {
  EXPECT_EQ(IsCharInSet(u'b', u"abc"), 1);
  EXPECT_EQ(IsCharInSet(u'd', u"abc"), 0);
  EXPECT_EQ(IsCharInSet(u'a', u""), 0);
  EXPECT_EQ(IsCharInSet(u'a', nullptr), 0);
  EXPECT_EQ(IsCharInSet(u'\0', u"abc"), 0);  // the terminator is not a member
}

TEST(GetToken, EmptyTokensBetweenDelimiters) {
  CString token = u"unchanged";
  int pos = 0;
  std::u16string seen;
  while (GetToken(u"a,,b", u",", pos, token)) seen += token.view().empty() ? u"<>" : std::u16string(token.view()) + u";";
  EXPECT_EQ(seen, u"a;<>b;");
  EXPECT_EQ(token, u"b");  // the failing call leaves the last token
  EXPECT_EQ(pos, 5);
}

TEST(GetToken, EdgesOfPosition) {
  CString token = u"x";
  int pos = 3;
  EXPECT_EQ(GetToken(u"abc", u",", pos, token), 0);
  EXPECT_EQ(token, u"x");
  pos = -5;  // counts as 0
  EXPECT_EQ(GetToken(u"ab,c", u",", pos, token), 1);
  EXPECT_EQ(token, u"ab");
  EXPECT_EQ(pos, 3);
  pos = 0;
  EXPECT_EQ(GetToken(u",", u",", pos, token), 1);  // a leading delimiter gives an empty token
  EXPECT_EQ(token, u"");
  EXPECT_EQ(GetToken(u",", u",", pos, token), 0);  // a trailing delimiter gives no further token
  pos = 0;
  EXPECT_EQ(GetToken(u"abc", nullptr, pos, token), 1);
  EXPECT_EQ(token, u"abc");
}

struct MaskRow {
  const char16_t* text;
  const char16_t* mask;
  int ignoreCase;
  int expected;
};

TEST(MatchesToMask, Table) {
  const MaskRow rows[] = {
      {u"report.txt", u"*.TXT", 1, 1},
      {u"report.txt", u"*.TXT", 0, 0},
      {u"", u"**", 0, 1},
      {u"", u"", 0, 1},
      {u"", u"?", 0, 0},
      {u"ab", u"a", 0, 1},    // one extra trailing character is let through
      {u"abc", u"a", 0, 0},
      {u"abcd", u"abc", 0, 1},
      {u"abc", u"abc", 0, 1},
      {u"abc", u"a?c", 0, 1},
      {u"ac", u"a?c", 0, 0},
      {u"abc", u"a*", 0, 1},
      {u"abc", u"*c", 0, 1},
      {u"abcx", u"*c", 0, 1},  // the extra character again, behind a star
      {u"abcxy", u"*c", 0, 0},
      {u"a.b.c", u"*.*.*", 0, 1},
      {u"ABC", u"abc", 1, 1},
      {u"abc", u"ABC", 1, 1},
      {u"\u00e4", u"\u00c4", 1, 0},  // only ASCII letters fold
      {u"[x]", u"[?]", 0, 1},
      {u"aXbXc", u"a*b*c", 0, 1},
      {u"abab", u"*ab", 0, 1},
  };
  for (const MaskRow& r : rows)
    EXPECT_EQ(MatchesToMask(r.text, r.mask, r.ignoreCase), r.expected)
        << "text \"" << CString(r.text) << "\" mask \"" << CString(r.mask) << "\"";
  EXPECT_EQ(MatchesToMask(nullptr, u"*", 0), 1);
  EXPECT_EQ(MatchesToMask(u"x", nullptr, 0), 1);  // empty mask, one character left
}

TEST(MatchesToMask, FiftyStarsOnTenThousandCharacters) {
  std::u16string text(10000, u'a');
  std::u16string failing;
  for (int i = 0; i < 50; ++i) failing += u"*a";
  failing += u"*b";  // no b anywhere: every star has to give up
  std::u16string passing = failing.substr(0, failing.size() - 1) + u"a";
  EXPECT_EQ(MatchesToMask(text.c_str(), failing.c_str(), 0), 0);
  EXPECT_EQ(MatchesToMask(text.c_str(), passing.c_str(), 0), 1);
  std::u16string stars(50, u'*');
  EXPECT_EQ(MatchesToMask(text.c_str(), (stars + u"?").c_str(), 0), 1);
}

TEST(MatchesToMask, ManyStarsDoNotExhaustTheStack) {
  std::u16string mask;
  for (int i = 0; i < 200000; ++i) mask += u"*a";
  mask += u"*b";
  std::u16string text(300000, u'a');
  EXPECT_EQ(MatchesToMask(text.c_str(), mask.c_str(), 0), 0);
}

}  // namespace
}  // namespace quarrix
