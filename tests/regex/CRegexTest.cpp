// CRegex as the rest of the library uses it: state, iteration, result access, replacement, the deliberate
// oddities of its interface, and the patterns other parts run through it.
#include "RegexTestUtil.h"

#include <atomic>
#include <climits>
#include <thread>

namespace quarrix {
namespace {

TEST(CRegexTest, DefaultObjectMatchesNothing) {
  CRegex re;
  EXPECT_EQ(re.GetExpression(), u"");
  EXPECT_EQ(re.GetSearchFlags(), 0);
  EXPECT_EQ(re.Match(u"abc"), 0);
  EXPECT_EQ(re.IsLastMatchSuccessfull(), 0);
  EXPECT_EQ(re.GetMatchStart(), -1);
  EXPECT_EQ(re.MatchNext(), 0);  // not prepared
  // An empty expression that was set matches the empty string.
  re.SetExpression(u"");
  EXPECT_EQ(re.Match(u"abc"), 1);
  EXPECT_EQ(re.GetMatchEnd(), 0);
}

TEST(CRegexTest, IsMatchStartsWhereTheFlagsSay) {
  EXPECT_EQ(CRegex::IsMatch(u"b+", u"abbc"), 1);
  EXPECT_EQ(CRegex::IsMatch(u"B", u"abc"), 0);
  EXPECT_EQ(CRegex::IsMatch(u"B", u"abc", CRegex::FlagIgnoreCase), 1);
  // Right to left, IsMatch starts at the end while Match starts at 0.
  EXPECT_EQ(CRegex::IsMatch(u"c", u"abc", CRegex::FlagRightToLeft), 1);
  CRegex re(u"c", CRegex::FlagRightToLeft);
  EXPECT_EQ(re.Match(u"abc"), 0);
}

TEST(CRegexTest, MatchExactRewritesExpressionAndFlagsForGood) {
  CRegex re(u"ab", CRegex::FlagIgnoreCase | CRegex::FlagSingleLine | CRegex::FlagMultiLine);
  EXPECT_EQ(re.Match(u"xAB"), 1);
  EXPECT_EQ(re.MatchExact(u"ab"), 1);
  EXPECT_EQ(re.GetExpression(), u"^ab$");
  EXPECT_EQ(re.GetSearchFlags(), CRegex::FlagSingleLine);
  EXPECT_EQ(re.MatchExact(u"xab"), 0);
  EXPECT_EQ(re.GetExpression(), u"^^ab$$");  // wrapped again, still anchored
  EXPECT_EQ(re.MatchExact(u"ab"), 1);
  EXPECT_EQ(re.Match(u"AB"), 0);  // ignore-case is gone for good
  EXPECT_EQ(re.Match(u"ab\n"), 1);  // $ still allows a final line feed
}

TEST(CRegexTest, IterationWithMatchNext) {
  CRegex re(u"(\\d+)", 0);
  EXPECT_EQ(re.MatchNext(), 0);  // before PrepareMatch: no search at all
  re.PrepareMatch(u"a1 22 333");
  std::vector<CString> found;
  while (re.MatchNext()) found.push_back(re.GetMatchGroupText(1));
  EXPECT_EQ(found, (std::vector<CString>{u"1", u"22", u"333"}));
  EXPECT_EQ(re.IsLastMatchSuccessfull(), 0);
  re.ResetMatch();
  ASSERT_EQ(re.MatchNext(), 1);
  EXPECT_EQ(re.GetMatchText(), u"1");
  // SetExpression resets the next start too.
  re.SetExpression(u"\\d\\d");
  ASSERT_EQ(re.MatchNext(), 1);
  EXPECT_EQ(re.GetMatchStart(), 3);
}

TEST(CRegexTest, MatchNextDoesNotStepOverAnEmptyMatch) {
  CRegex re(u"x*", 0);
  re.PrepareMatch(u"ab");
  ASSERT_EQ(re.MatchNext(), 1);
  EXPECT_EQ(re.GetMatchEnd(), 0);
  ASSERT_EQ(re.MatchNext(), 1);
  EXPECT_EQ(re.GetMatchStart(), 0);  // the same empty match again
}

TEST(CRegexTest, ResultAccessBeyondTheResult) {
  CRegex re(u"(a)(b)", 0);
  ASSERT_EQ(re.Match(u"xab"), 1);
  EXPECT_EQ(re.GetLastMatchResult().GetAt(0), 1);
  EXPECT_EQ(re.GetLastMatchResult().GetAt(1), 2);
  EXPECT_EQ(re.GetMatchGroupStart(2), 2);
  EXPECT_EQ(re.GetMatchGroupEnd(2), 3);
  EXPECT_EQ(re.GetMatchGroupStart(99), -1);
  EXPECT_EQ(re.GetMatchGroupEnd(-5), -1);
  EXPECT_EQ(re.GetMatchGroupStart(INT_MAX), -1);
  EXPECT_EQ(re.GetMatchGroupEnd(INT_MIN), -1);
  EXPECT_EQ(re.GetMatchGroupText(99), u"");
  EXPECT_EQ(re.GetMatchText(), u"ab");
  EXPECT_EQ(CRegex::GetMatchGroupText(&re.GetLastMatchResult(), u"xab", 1), u"a");
  EXPECT_EQ(CRegex::GetMatchText(nullptr, u"xab"), u"");
  // A failed match keeps its group count, with every span -1.
  EXPECT_EQ(re.Match(u"zz"), 0);
  EXPECT_EQ(re.GetLastMatchResult().GetSize(), 8);
  EXPECT_EQ(re.GetMatchStart(), -1);
}

TEST(CRegexTest, InitKeepsCompiledExpressionAndResult) {
  CRegex re(u"b", 0);
  ASSERT_EQ(re.Match(u"ab"), 1);
  re.Init();
  EXPECT_EQ(re.GetExpression(), u"");
  EXPECT_EQ(re.GetSearchFlags(), 0);
  EXPECT_EQ(re.GetMatchStart(), 1);  // the last result survives
  EXPECT_EQ(re.Match(u"cb"), 1);     // and so does the compiled "b"
  EXPECT_EQ(re.GetMatchStart(), 1);
  re.PrepareMatch(u"cb");  // recompiles the (now empty) expression
  ASSERT_EQ(re.MatchNext(), 1);
  EXPECT_EQ(re.GetMatchEnd(), 0);
}

TEST(CRegexTest, CopiesAreIndependent) {
  CRegex a(u"(\\w)\\w", CRegex::FlagIgnoreCase);
  a.PrepareMatch(u"ab cd");
  ASSERT_EQ(a.MatchNext(), 1);
  CRegex b(a);
  EXPECT_EQ(b.GetExpression(), a.GetExpression());
  EXPECT_EQ(b.GetMatchGroupText(1), u"a");
  ASSERT_EQ(b.MatchNext(), 1);  // continues where a stood
  EXPECT_EQ(b.GetMatchText(), u"cd");
  EXPECT_EQ(a.GetMatchText(), u"ab");
  CRegex c;
  c = b;
  b.SetExpression(u"z");
  EXPECT_EQ(c.GetMatchText(), u"cd");
  EXPECT_EQ(c.Match(u"XY"), 1);
  CRegex moved(std::move(c));
  EXPECT_EQ(moved.GetMatchText(), u"XY");
}

TEST(CRegexTest, ReplaceTokens) {
  const struct {
    const char* name;
    const char16_t* replacement;
    const char16_t* expected;
  } rows[] = {
      {"dollar", u"[$$]", u"x[$]z"},
      {"match", u"[$&]", u"x[a-b]z"},
      {"before", u"[$`]", u"x[x]z"},
      {"after", u"[$']", u"x[z]z"},
      {"whole input", u"[$_]", u"x[xa-bz]z"},
      {"highest group that took part", u"[$+]", u"x[b]z"},
      {"one digit", u"[$3$1]", u"x[ba]z"},
      {"only one digit is read", u"[$12]", u"x[a2]z"},
      {"group zero", u"[$0]", u"x[a-b]z"},
      {"group beyond the result", u"[$9]", u"x[]z"},
      {"braced number", u"[${3}]", u"x[b]z"},
      {"braced name", u"[${second}]", u"x[]z"},
      {"braced zero is literal", u"[${0}]", u"x[${0}]z"},
      {"braced unknown number is literal", u"[${4}]", u"x[${4}]z"},
      {"braced unknown name is literal", u"[${nope}]", u"x[${nope}]z"},
      {"lone dollar", u"[$]", u"x[$]z"},
      {"other dollar", u"[$x$]", u"x[$x$]z"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(CRegex::Replace(u"(a)-(?<second>c)?(b)", 0, u"xa-bz", row.replacement), row.expected) << row.name;
}

TEST(CRegexTest, ReplaceCountStartAndEmptyMatches) {
  EXPECT_EQ(CRegex::Replace(u"\\d", 0, u"1a2b3", u"#"), u"#a#b#");
  EXPECT_EQ(CRegex::Replace(u"\\d", 0, u"1a2b3", u"#", -1, 2), u"#a#b3");
  EXPECT_EQ(CRegex::Replace(u"\\d", 0, u"1a2b3", u"#", 1, -1), u"1a#b#");
  EXPECT_EQ(CRegex::Replace(u"\\d", 0, u"1a2b3", u"#", -1, 0), u"1a2b3");
  EXPECT_EQ(CRegex::Replace(u"\\d", 0, u"1a2", u"#", 10, -1), u"1a2");
  EXPECT_EQ(CRegex::Replace(u"x*", 0, u"xab", u"-"), u"--a-b-");
  EXPECT_EQ(CRegex::Replace(u"", 0, u"", u"-"), u"-");
  EXPECT_EQ(CRegex::Replace(u"(?i)A", 0, u"aAb", u"$&$&"), u"aaAAb");
  EXPECT_EQ(CRegex::Replace(u"(a)|(b)", 0, u"ab", u"[$+]"), u"[a][b]");  // the highest that took part
  EXPECT_EQ(CRegex::Replace(u"x", 0, u"axb", u"[$+]"), u"a[x]b");       // no groups: the match
  CRegex re(u"(\\w+)@(\\w+)", 0);
  EXPECT_EQ(re.Replace(u"mail: joe@site", u"$2 at $1"), u"mail: site at joe");
  // Used by the number formatting: trailing zeros, then a trailing ".0".
  EXPECT_EQ(CRegex::Replace(u"\\.0$", 0, CRegex::Replace(u"0{2,}$", 0, u"12.5000", u"0"), u""), u"12.50");
  EXPECT_EQ(CRegex::Replace(u"\\.0$", 0, CRegex::Replace(u"0{2,}$", 0, u"3.000", u"0"), u""), u"3");
}

TEST(CRegexTest, ReplaceSubStrAndGroupText) {
  EXPECT_EQ(CRegex::ReplaceSubStr(u"abcdef", 2, 4, u"XY"), u"abXYef");
  EXPECT_EQ(CRegex::ReplaceSubStr(u"abc", 0, 0, u"-"), u"-abc");
  // The database copy retargets a CREATE statement at the attached database.
  EXPECT_EQ(CRegex::ReplaceMatchGroupText(u"create (?:table|index)\\s+(\\w+)", CRegex::FlagIgnoreCase,
                                          u"CREATE TABLE items (id INTEGER)", u"dbencrypted.items", 1),
            u"CREATE TABLE dbencrypted.items (id INTEGER)");
  // No match gives an empty string, not the text.
  EXPECT_EQ(CRegex::ReplaceMatchGroupText(u"create\\s+(\\w+)", 0, u"DROP TABLE t", u"x", 1), u"");
  CRegex re(u"(\\d+)-(\\d+)", 0);
  ASSERT_EQ(re.Match(u"from 10-20"), 1);
  EXPECT_EQ(re.ReplaceMatchGroupText(u"15", 2), u"from 10-15");
  ASSERT_EQ(re.Match(u"none"), 0);
  EXPECT_EQ(re.ReplaceMatchGroupText(u"15", 2), u"");
  EXPECT_EQ(CRegex().ReplaceMatchGroupText(u"x", 0), u"");
}

// The patterns other parts of the library run through CRegex, on the inputs they meet.
TEST(CRegexTest, PatternsOfTheLibrary) {
  auto group = [](const char16_t* pattern, int flags, const char16_t* text, int g) {
    CRegex re(pattern, flags);
    return re.Match(text) ? re.GetMatchGroupText(g) : CString(u"<none>");
  };
  // Command line flags and options.
  EXPECT_TRUE(CRegex::IsMatch(u"[-/]debug\\b", u"app.exe /debug -x"));
  EXPECT_FALSE(CRegex::IsMatch(u"[-/]debug\\b", u"app.exe -debugger"));
  // Path splitting.
  EXPECT_EQ(group(u"(?:.*\\.)(.*)$", 0, u"C:\\dir.v2\\file.tar.gz", 1), u"gz");
  EXPECT_EQ(group(u"(.*)\\\\[^\\\\]*", 0, u"C:\\dir\\sub\\file.txt", 1), u"C:\\dir\\sub");
  EXPECT_EQ(group(u"(?<=^(?:.*\\\\)?)([^\\\\]+)(?=$)", 0, u"C:\\dir\\file.txt", 0), u"file.txt");
  EXPECT_EQ(group(u"(?<=^(?:.*\\\\)?)([^\\\\]+)(?=$)", 0, u"file.txt", 0), u"file.txt");
  EXPECT_EQ(group(u"(?<=^(?:.*\\\\)?)([^\\\\]+)(?=$)", 0, u"C:\\dir\\", 0), u"<none>");
  const char16_t* nameWithoutExt = u"(?:(?:.*[\\\\/])?(.*)\\.\\w+$|(?:.*[\\\\/])?(.*)$)";
  EXPECT_EQ(group(nameWithoutExt, 0, u"C:/dir\\report.final.pdf", 1), u"report.final");
  EXPECT_EQ(group(nameWithoutExt, 0, u"C:\\dir\\README", 2), u"README");
  // Item numbers: seven digits at the end after a word boundary.
  EXPECT_EQ(group(u"\\b(\\d{7,7})$", 0, u"Item 1234567", 1), u"1234567");
  EXPECT_EQ(group(u"\\b(\\d{7,7})$", 0, u"Item 12345678", 1), u"<none>");
  // Base64 validation, file extensions, commands and the development tree.
  EXPECT_TRUE(CRegex::IsMatch(u"^[\\sa-zA-Z0-9/+]+={0,2}\\s*$", u"QUJD\r\nREVG=="));
  EXPECT_FALSE(CRegex::IsMatch(u"^[\\sa-zA-Z0-9/+]+={0,2}\\s*$", u"QUJD===" ));
  EXPECT_TRUE(CRegex::IsMatch(u"\\.\\w+", u".txt"));
  EXPECT_FALSE(CRegex::IsMatch(u"\\.\\w+", u"."));
  EXPECT_EQ(group(u"\\w+:.*?\\.exe", 0, u"\"C:\\Program Files\\App\\app.exe\" \"%1\" x.exe", 0),
            u"C:\\Program Files\\App\\app.exe");
  EXPECT_TRUE(CRegex::IsMatch(u"\\bdevroot\\b.*\\b(?:release|debug)\\b", u"D:\\DevRoot\\proj\\Release\\app.exe",
                              CRegex::FlagIgnoreCase));
  EXPECT_FALSE(CRegex::IsMatch(u"\\bdevroot\\b.*\\b(?:release|debug)\\b", u"D:\\DevRoots\\proj\\Release\\a.exe",
                               CRegex::FlagIgnoreCase));
}

// One compiled expression, the token expression of Replace and distinct objects serve several threads.
TEST(CRegexTest, ThreadsReplaceAndMatchAtOnce) {
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t, &wrong] {
      CRegex own(u"(\\d+)-(\\w+)", 0);
      const CString text = cstringf(u"%d-abc and %d-xyz", t, t + 10);
      for (int k = 0; k < 2000; ++k) {
        if (CRegex::Replace(u"(\\d+)-(\\w+)", 0, text, u"$2:$1") != cstringf(u"abc:%d and xyz:%d", t, t + 10))
          ++wrong;
        if (own.Replace(text, u"${2}") != u"abc and xyz") ++wrong;
        if (!own.Match(text) || own.GetMatchGroupText(1) != cstringf(u"%d", t)) ++wrong;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong.load(), 0);
}

}  // namespace
}  // namespace quarrix
