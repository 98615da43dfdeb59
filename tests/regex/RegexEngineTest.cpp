// The engine's syntax and semantics, construct by construct, through CRegex. What PCRE2 shares is also
// covered by the differential test; the tables here hold what it cannot check (right-to-left, the
// deliberate differences, Unicode classes, malformed patterns) and the edge cases worth naming.
#include "RegexTestUtil.h"

#include <chrono>

namespace quarrix {
namespace {

using regex_test::Row;
using regex_test::Spans;

void CheckRows(const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(Spans(row), row.spans) << row.name << ": " << CString(row.pattern);
}

TEST(RegexEngineTest, LiteralsAndEscapes) {
  CheckRows({
      {"plain", u"bc", 0, u"abcd", {1, 3}},
      {"control escapes", u"\\a\\e\\f\\n\\r\\t\\v", 0, u"x\a\x1B\f\n\r\t\v", {1, 8}},
      {"hex pair", u"\\x41\\x7a", 0, u"-Az", {1, 3}},
      {"braced hex", u"\\x{263A}", 0, u"a\u263A", {1, 2}},
      {"braced hex above FFFF is a surrogate pair", u"\\x{1F600}+", 0, u"\U0001F600\U0001F600", {0, 4}},
      {"u escape", u"\\u00e9t\\u00E9", 0, u"\u00e9t\u00e9", {0, 3}},
      {"other escapes stand for themselves", u"\\.\\/\\@\\0\\y", 0, u"./@0y", {0, 5}},
      {"quoted run", u"a\\Q.*+?(\\Eb", 0, u"xa.*+?(b", {1, 8}},
      {"quote to the end", u"\\Q(a", 0, u"x(a", {1, 3}},
      {"stray \\E", u"a\\Eb", 0, u"ab", {0, 2}},
      {"quantifier after a quote takes its last unit", u"\\Qab\\E+", 0, u"abbb", {0, 4}},
      {"trailing backslash is literal", u"a\\", 0, u"a\\", {0, 2}},
  });
}

TEST(RegexEngineTest, Classes) {
  CheckRows({
      {"range", u"[b-d]+", 0, u"abcde", {1, 4}},
      {"negated", u"[^a-c]", 0, u"abcd", {3, 4}},
      {"bracket first is literal", u"[]a]+", 0, u"x]a]", {1, 4}},
      {"negated bracket first", u"[^]a]", 0, u"]ab", {2, 3}},
      {"escapes inside", u"[\\]\\-\\n]+", 0, u"a]-\n", {1, 4}},
      {"backspace inside a class", u"[\\b]", 0, u"b\b", {1, 2}},
      {"class escape before a dash is no range", u"[\\d-z]+", 0, u"a-9z", {1, 4}},
      {"dash at the end", u"[a-]+", 0, u"b-a", {1, 3}},
      {"quoted in a class", u"[\\Q]^\\E]+", 0, u"a^]", {1, 3}},
      {"digit", u"\\d+", 0, u"ab123c", {2, 5}},
      {"not digit", u"\\D+", 0, u"12ab3", {2, 4}},
      {"word", u"\\w+", 0, u"-a_1-", {1, 4}},
      {"not word", u"\\W+", 0, u"ab-+c", {2, 4}},
      {"space", u"\\s+", 0, u"a \t\n\v\f\rb", {1, 7}},
      {"not space", u"\\S+", 0, u"  ab ", {2, 4}},
      {"dot stops at line feed", u"a.c", 0, u"a\nc abc", {4, 7}},
      {"dot matches carriage return", u"a.c", 0, u"a\rc", {0, 3}},
      {"single line dot", u"a.c", CRegex::FlagSingleLine, u"a\nc", {0, 3}},
      {"posix alnum", u"[[:alnum:]]+", 0, u"-a1-", {1, 3}},
      {"posix alpha", u"[[:alpha:]]+", 0, u"1ab2", {1, 3}},
      {"posix ascii", u"[[:ascii:]]+", 0, u"\u00e9ab\u00e9", {1, 3}},
      {"posix blank", u"[[:blank:]]+", 0, u"a \t\nb", {1, 3}},
      {"posix cntrl", u"[[:cntrl:]]+", 0, u"a\x01\x1F" u" b", {1, 3}},
      {"posix digit", u"[[:digit:]]+", 0, u"a12b", {1, 3}},
      {"posix graph", u"[[:graph:]]+", 0, u" a! ", {1, 3}},
      {"posix lower", u"[[:lower:]]+", 0, u"Aab", {1, 3}},
      {"posix print", u"[[:print:]]+", 0, u"\x01" u"a \x02", {1, 3}},
      {"posix punct", u"[[:punct:]]+", 0, u"a!$b", {1, 3}},
      {"posix space", u"[[:space:]]+", 0, u"a \nb", {1, 3}},
      {"posix upper", u"[[:upper:]]+", 0, u"aABc", {1, 3}},
      {"posix xdigit", u"[[:xdigit:]]+", 0, u"g0fAh", {1, 4}},
      {"negated posix", u"[[:^digit:]]+", 0, u"1ab2", {1, 3}},
      {"posix beside other members", u"[[:digit:]x-]+", 0, u"a1x-2b", {1, 5}},
  });
}

// \w, \s, \b and ignore-case follow the framework's Unicode tables; \d stays ASCII. PCRE2 without its UCP
// option answers ASCII only here, which is why the differential test compares non-ASCII subjects with UCP.
TEST(RegexEngineTest, UnicodeClassesAndCaseFolding) {
  CheckRows({
      {"word takes letters beyond ASCII", u"\\w+", 0, u"-\u00e9t\u00e9\u03c9\u4e00-", {1, 6}},
      {"digit is ASCII only", u"\\d", 0, u"\u0663" u"3", {1, 2}},
      {"space takes the em space", u"a\\sb", 0, u"a\u2003b", {0, 3}},
      {"word boundary between Greek letters and a space", u"\\b\u03c9", 0, u"\u03b1\u03c9 \u03c9", {3, 4}},
      {"ignore-case Latin-1", u"\u00e9T\u00c9", CRegex::FlagIgnoreCase, u"\u00c9t\u00e9", {0, 3}},
      {"ignore-case Greek", u"\u03c9+", CRegex::FlagIgnoreCase, u"\u03a9\u03c9", {0, 2}},
      {"ignore-case Kelvin sign", u"k", CRegex::FlagIgnoreCase, u"\u212A", {0, 1}},
      {"ignore-case long s in a class", u"[a-z]", CRegex::FlagIgnoreCase, u"\u017F", {0, 1}},
      {"ignore-case back-reference", u"(\u00e9a)\\1", CRegex::FlagIgnoreCase, u"\u00e9A\u00c9a", {0, 4, 0, 2}},
      {"negated class under ignore-case", u"[^a]", CRegex::FlagIgnoreCase, u"Ab", {1, 2}},
  });
}

TEST(RegexEngineTest, Anchors) {
  CheckRows({
      {"caret", u"^a", 0, u"ba", {}},
      {"caret multi-line", u"^a", CRegex::FlagMultiLine, u"b\na", {2, 3}},
      {"dollar before a final line feed", u"a$", 0, u"a\n", {0, 1}},
      {"dollar not before an inner line feed", u"a$", 0, u"a\nb", {}},
      {"dollar multi-line", u"a$", CRegex::FlagMultiLine, u"a\nb", {0, 1}},
      {"A ignores multi-line", u"\\Ab", CRegex::FlagMultiLine, u"a\nb", {}},
      {"Z before a final line feed", u"a\\Z", 0, u"a\n", {0, 1}},
      {"z only at the very end", u"a\\z", 0, u"a\n", {}},
      {"word boundary", u"\\bb\\w", 0, u"ab bc", {3, 5}},
      {"not a word boundary", u"\\Bb", 0, u"b ab", {3, 4}},
      {"boundary at both ends", u"\\b", 0, u"", {}},
  });
}

// Deliberate: multi-line ^ matches after every line feed, the last one too (PCRE2 does not match there).
TEST(RegexEngineTest, MultiLineCaretAfterFinalLineFeed) {
  CRegex re(u"^", CRegex::FlagMultiLine);
  re.PrepareMatch(u"a\n");
  ASSERT_TRUE(re.MatchNext());
  EXPECT_EQ(re.GetMatchStart(), 0);
  re.PrepareMatch(u"a\n");
  EXPECT_EQ(CRegex::Replace(u"^", CRegex::FlagMultiLine, u"a\n", u">"), u">a\n>");
}

TEST(RegexEngineTest, GlobalAnchor) {
  CheckRows({
      {"G without the global flag is a letter", u"\\Ga", 0, u"xGa", {1, 3}},
      {"G at the search start", u"\\Ga", CRegex::FlagGlobal, u"xa", {}},
      {"inline g turns it on", u"(?g)\\Ga", 0, u"ab", {0, 1}},
  });
  // Successive searches continue only where the last one ended.
  CRegex re(u"\\G\\d", CRegex::FlagGlobal);
  re.PrepareMatch(u"12a3");
  int count = 0;
  while (re.MatchNext()) ++count;
  EXPECT_EQ(count, 2);
}

TEST(RegexEngineTest, Quantifiers) {
  CheckRows({
      {"lazy star matches empty", u"a*?", 0, u"aaa", {0, 0}},
      {"possessive star never gives back", u"a*+a", 0, u"aaa", {}},
      {"greedy gives back", u"a*a", 0, u"aaa", {0, 3}},
      {"exact", u"a{2}", 0, u"aaa", {0, 2}},
      {"at least", u"a{2,}", 0, u"aaaa", {0, 4}},
      {"range greedy", u"a{1,3}", 0, u"aaaa", {0, 3}},
      {"range lazy", u"a{2,3}?", 0, u"aaaa", {0, 2}},
      {"range possessive", u"a{1,3}+a", 0, u"aaa", {}},
      {"lazy question", u"ab??", 0, u"ab", {0, 1}},
      {"lazy plus before a literal", u"a.+?c", 0, u"abcbc", {0, 3}},
      {"group greedy gives back per iteration", u"(ab)*ab", 0, u"ababab", {0, 6, 2, 4}},
      {"group lazy", u"(a|b)*?b", 0, u"aab", {0, 3, 1, 2}},
      {"group possessive", u"(?:a|ab)++c", 0, u"abc", {}},
      {"group greedy", u"(?:a|ab)+c", 0, u"abc", {0, 3}},
      {"zero times", u"ab{0}c", 0, u"ac", {0, 2}},
      {"brace without number is literal", u"a{,2}", 0, u"a{,2}", {0, 5}},
      {"reversed bounds are literal", u"a{3,1}", 0, u"a{3,1}", {0, 6}},
      {"huge counts saturate", u"x{1073741824}x{99999999999}|x", 0, u"xx", {0, 1}},
      {"brace at the start is literal", u"{2}", 0, u"x{2}", {1, 4}},
      {"quantifier after a quantified item repeats it again", u"(?:a{2}){3}b|a{2}{3}b", 0, u"aaaaaab", {0, 7}},
      {"empty iteration ends an unbounded loop", u"(a|)*", 0, u"aab", {0, 2, 2, 2}},
      {"empty mandatory iterations", u"(|\\S){3}a", 0, u"Aa", {0, 2, 0, 1}},
  });
}

TEST(RegexEngineTest, Groups) {
  CheckRows({
      {"numbered by opening parenthesis", u"((a)(b))", 0, u"ab", {0, 2, 0, 2, 0, 1, 1, 2}},
      {"group not taking part", u"(a)|b", 0, u"b", {0, 1, -1, -1}},
      {"non-capturing", u"(?:a)(b)", 0, u"ab", {0, 2, 1, 2}},
      {"last iteration kept", u"(?:(a)|(b))+", 0, u"ab", {0, 2, 0, 1, 1, 2}},
      {"named with angle brackets", u"(?<first>a)(?'second'b)(?P<third>c)", 0, u"abc", {0, 3, 0, 1, 1, 2, 2, 3}},
      {"independent group keeps its first match", u"(?>a|ab)c", 0, u"abc", {}},
      {"independent group then success", u"(?>a+)b", 0, u"aab", {0, 3}},
      {"comment group", u"a(?#note)b", 0, u"ab", {0, 2}},
  });
  CRegex re(u"(?<year>\\d{4})-(?<month>\\d\\d)", 0);
  EXPECT_EQ(re.GetNamedGroupNumber(u"month"), 2);
  EXPECT_EQ(re.GetNamedGroupNumber(u"day"), 0);
}

// An attempt that fails at one position leaves no capture behind for the next, whether the engine refreshes
// the registers for each attempt (few groups) or unwinds every write (many).
TEST(RegexEngineTest, CapturesOfFailedAttemptsAreForgotten) {
  for (int extra : {0, 30}) {
    CString pattern(u"(?(1)q|a)(b)c");
    std::vector<int> spans{3, 6, -1, -1, 4, 5};
    for (int k = 0; k < extra; ++k) {
      pattern += u"(x)?";
      spans.insert(spans.end(), {-1, -1});
    }
    // (?(1)...) comes before group 1 is set: only a stale capture could make it take "q".
    spans.erase(spans.begin() + 2, spans.begin() + 4);
    EXPECT_EQ(regex_test::Spans({"", pattern, 0, u"abdabc", {}}), spans) << extra << " more groups";
  }
}

TEST(RegexEngineTest, LookAround) {
  CheckRows({
      {"look-behind found", u"(?<=ab)c", 0, u"abc", {2, 3}},
      {"look-behind not found", u"(?<=ab)c", 0, u"xbc", {}},
      {"negative look-behind", u"(?<!a)b", 0, u"abcb", {3, 4}},
      {"look-behind of any length", u"(?<=a\\d+)x", 0, u"a123x", {4, 5}},
      {"look-behind with alternatives", u"(?<=cat|horse)s", 0, u"horses", {5, 6}},
      {"capture inside look-behind", u"(?<=(\\d+))x", 0, u"ab12x", {4, 5, 2, 4}},
      {"look-ahead", u"a(?=b)", 0, u"acab", {2, 3}},
      {"negative look-ahead", u"a(?!b)", 0, u"abac", {2, 3}},
      {"capture inside look-ahead kept", u"(?=(ab))a", 0, u"ab", {0, 1, 0, 2}},
      {"capture inside negative look-ahead dropped", u"(?!(b))a", 0, u"a", {0, 1, -1, -1}},
      {"look-ahead inside look-behind", u"(?<=a(?=b))b", 0, u"ab", {1, 2}},
  });
}

TEST(RegexEngineTest, BackReferences) {
  CheckRows({
      {"number", u"(a+)b\\1", 0, u"aabaa", {0, 5, 0, 2}},
      {"name in angle brackets", u"(?<x>a)\\k<x>", 0, u"aa", {0, 2, 0, 1}},
      {"name in quotes", u"(?<x>a)\\k'x'", 0, u"aa", {0, 2, 0, 1}},
      {"name in braces", u"(?<x>a)\\k{x}", 0, u"aa", {0, 2, 0, 1}},
      {"g with braces", u"(a)\\g{1}", 0, u"aa", {0, 2, 0, 1}},
      {"g relative", u"(a)(b)\\g{-2}", 0, u"aba", {0, 3, 0, 1, 1, 2}},
      {"g with digits", u"(a)\\g1", 0, u"aa", {0, 2, 0, 1}},
      {"unset group fails", u"(a)?\\1b", 0, u"b", {}},
      {"forward reference", u"(\\2two|(one))+", 0, u"oneonetwo", {0, 9, 3, 9, 0, 3}},
      {"reference to a missing group never matches", u"a\\9|b", 0, u"ab", {1, 2}},
      {"two digits only when that many groups opened", u"(a)\\12", 0, u"aa2", {0, 3, 0, 1}},
      {"k without a name is a letter", u"\\k", 0, u"k", {0, 1}},
  });
}

TEST(RegexEngineTest, Conditions) {
  CheckRows({
      {"group set", u"(a)?(?(1)b|c)", 0, u"ab", {0, 2, 0, 1}},
      {"group unset", u"(a)?(?(1)b|c)", 0, u"c", {0, 1, -1, -1}},
      {"by name", u"(?<q>\")?\\w+(?(q)\")", 0, u"\"ab\"", {0, 4, 0, 1}},
      {"by name in angle brackets", u"(?<q>x)?y(?(<q>)z|w)", 0, u"yw", {0, 2, -1, -1}},
      {"no branch missing", u"(a)?(?(1)b)c", 0, u"c", {0, 1, -1, -1}},
      {"look-ahead condition", u"(?(?=\\d)\\d{2}|[a-z]{3})", 0, u"-abc", {1, 4}},
      {"negative look-behind condition", u"a(?(?<!a)y|z)", 0, u"az", {0, 2}},
      {"missing group is false", u"(?(7)a|b)", 0, u"ab", {1, 2}},
      {"unknown name is false", u"(?(nope)a|b)", 0, u"ab", {1, 2}},
  });
}

TEST(RegexEngineTest, Recursion) {
  CheckRows({
      {"whole pattern", u"\\((?:[^()]|(?R))*\\)", 0, u"x(a(b)(c(d)))", {1, 13}},
      {"group by number", u"^(a(?R<1>)?b)$", 0, u"aaabbb", {0, 6, 0, 6}},
      {"group by name", u"(?<p>\\[(?:[^\\[\\]]|(?R<p>))*\\])", 0, u"[[a][b]]", {0, 8, 0, 8}},
      {"quoted forms", u"(?<p>x(?R'p')?y)|(z(?R'2')?w)", 0, u"zzww", {0, 4, -1, -1, 0, 4}},
      {"palindrome backtracks into the recursion", u"^((.)(?R<1>)\\2|.?)$", 0, u"abcba", {0, 5, 0, 5, 0, 1}},
      {"captures inside the recursion are forgotten", u"^(a|b(?R<1>))$", 0, u"ba", {0, 2, 0, 2}},
      {"left recursion fails instead of looping", u"(?R)a|b", 0, u"ba", {0, 2}},
      {"missing group never matches", u"a(?R<4>)|b", 0, u"ab", {1, 2}},
      {"missing name never matches", u"a(?R<nope>)|b", 0, u"ab", {1, 2}},
  });
}

// Deliberate differences from PCRE2, one row each; the differential test keeps these out of its patterns.
TEST(RegexEngineTest, DeliberateDifferencesFromPcre2) {
  CheckRows({
      // PCRE2 10.42 treats (?R) as atomic and finds only the empty match.
      {"recursion into the whole pattern can be backtracked into", u"b(?R)\\D|", 0, u"bb_", {0, 2}},
      // PCRE2 runs the called group left to right and finds the empty match at 2.
      {"a group inside look-behind runs right to left when called", u"ab(?R<1>)ab|(?<=(ab))", 0, u"ab",
       {0, 2, -1, -1}},
      // PCRE2 keeps group 1 = 0,1 here.
      {"a negative look-around condition keeps no captures", u"(?(?!(a))x|a)", 0, u"a", {0, 1, -1, -1}},
      // PCRE2 does so for ASCII letters, but not with Unicode properties (UCP), its only way to class ω.
      {"[:upper:] under ignore-case takes lower case, beyond ASCII too", u"[[:upper:]]+", CRegex::FlagIgnoreCase,
       u"a\u03c9B", {0, 3}},
      // PCRE2 reads \12 as the octal escape of a form feed... here it is group 1 and then a 2.
      {"no octal escapes", u"(a)\\12", 0, u"aa2", {0, 3, 0, 1}},
      {"\\0 is a zero", u"\\0", 0, u"0", {0, 1}},
  });
}

TEST(RegexEngineTest, InlineModifiers) {
  CheckRows({
      {"ignore case from here on", u"a(?i)b", 0, u"aB", {0, 2}},
      {"ignore case scoped to the group", u"(a(?i)b)c", 0, u"aBC", {}},
      {"carries into later alternatives", u"(?:x(?i)|a)b", 0, u"AB Ab", {3, 5}},
      {"switched off", u"(?i)a(?-i)b", 0, u"aB Ab", {3, 5}},
      {"span form", u"a(?i:b)c", 0, u"aBc aBC", {0, 3}},
      {"single line", u"(?s)a.b", 0, u"a\nb", {0, 3}},
      {"multi line", u"(?m)^b", 0, u"a\nb", {2, 3}},
      {"upper-case letters", u"(?I)a", 0, u"A", {0, 1}},
      {"unknown letters ignored (there is no x)", u"(?x)a b", 0, u"a b", {0, 3}},
  });
}

TEST(RegexEngineTest, ExtendedFlag) {
  CheckRows({
      {"spaces and comment", u"a b # comment", CRegex::FlagExtended, u"ab", {0, 2}},
      {"comment to the end of the line", u"a # x\n b", CRegex::FlagExtended, u"ab", {0, 2}},
      {"space inside a class is kept", u"a[ ]b", CRegex::FlagExtended, u"a b", {0, 3}},
      {"escaped space", u"a\\ b", CRegex::FlagExtended, u"a b", {0, 3}},
      {"space before a quantifier", u"a +", CRegex::FlagExtended, u"aaa", {0, 3}},
      {"without the flag", u"a b", 0, u"ab a b", {3, 6}},
  });
}

// Malformed patterns compile to something that matches deterministically, as CRegex.h describes.
TEST(RegexEngineTest, MalformedPatterns) {
  CheckRows({
      {"unmatched close is literal", u"a)b", 0, u"a)b", {0, 3}},
      {"open group closed at the end", u"(a(b", 0, u"ab", {0, 2, 0, 2, 1, 2}},
      {"quantifier with nothing before it", u"*a", 0, u"b*a", {1, 3}},
      {"quantifier after a bar", u"a|*b", 0, u"*b", {0, 2}},
      {"quantifier after an open parenthesis", u"(+)", 0, u"a+", {1, 2, 1, 2}},
      {"unterminated class", u"[ab", 0, u"x[ab", {1, 4}},
      {"unknown POSIX name", u"[[:foo:]]", 0, u"o]", {0, 2}},
      {"reversed range is empty", u"[z-a]|q", 0, u"mq", {1, 2}},
      {"bad braced hex", u"\\x{zz}", 0, u"x{zz}", {0, 5}},
      {"braced hex beyond Unicode is x and a count", u"\\x{110000}|x\\{", 0, u"x{110000}", {0, 2}},
      {"unclosed braced hex", u"\\x{41", 0, u"x{41", {0, 4}},
      {"short hex", u"\\xg", 0, u"xg", {0, 2}},
      {"short u", u"\\u12g", 0, u"u12g", {0, 4}},
      {"bad group name", u"(?<1a>x)", 0, u"<1a>x", {0, 5}},
      {"unknown group kind", u"(?%a)", 0, u"%a", {0, 2}},
      {"unknown group kind with a bar", u"(?|a)", 0, u"|a", {0, 0}},
      {"open at the end", u"a(?", 0, u"a", {0, 1}},
      {"bad recursion", u"(?R<>)", 0, u"R<>", {0, 3}},
      {"unclosed condition", u"(?(1", 0, u"(1", {1, 2, 1, 2}},
  });
}

TEST(RegexEngineTest, RightToLeft) {
  const int rtl = CRegex::FlagRightToLeft;
  // IsMatch starts at the end; Match explicitly at 0, where only a match ending at 0 can be found.
  EXPECT_TRUE(CRegex::IsMatch(u"b", u"ab", rtl));
  CRegex re(u"b", rtl);
  EXPECT_FALSE(re.Match(u"ab"));
  CRegex empty(u"x?", rtl);
  EXPECT_TRUE(empty.Match(u"ab"));
  EXPECT_EQ(empty.GetMatchStart(), 0);
  // The last match in the text, found first; groups are reported left to right.
  EXPECT_EQ(CRegex::Replace(u"(\\d)(\\d)", rtl, u"12345", u"<$2$1>", -1, 1), u"123<54>");
  EXPECT_EQ(CRegex::Replace(u"\\d+", rtl, u"a12b345", u"#"), u"a#b#");
  // Greedy repeats take as much as they can towards the start.
  EXPECT_EQ(CRegex::Replace(u"a+?", rtl, u"aaa", u"-", -1, 1), u"aa-");
  EXPECT_EQ(CRegex::Replace(u"(a|ab)(c|bcd)", rtl, u"abcd", u"[$1|$2]"), u"[a|bcd]");
  // Look-ahead still looks ahead; look-behind behind.
  EXPECT_EQ(CRegex::Replace(u"a(?=b)", rtl, u"abac", u"X"), u"Xbac");
  EXPECT_EQ(CRegex::Replace(u"(?<=x)a", rtl, u"xaya", u"X"), u"xXya");
  // A back-reference is matched before its group when it stands to the left of it.
  EXPECT_EQ(CRegex::Replace(u"(a)\\1", rtl, u"aab", u"X"), u"aab");
  EXPECT_EQ(CRegex::Replace(u"\\1(a)", rtl, u"aab", u"X"), u"Xb");
  EXPECT_EQ(CRegex::Replace(u"^a|a$", rtl, u"aba", u"X"), u"XbX");
  // An empty match moves the search one unit towards the start.
  EXPECT_EQ(CRegex::Replace(u"x*", rtl, u"ab", u"-"), u"-a-b-");
}

TEST(RegexEngineTest, MatchLimit) {
  const int saved = CRegex::GetMatchLimit();
  EXPECT_EQ(saved, CRegex::kDefaultMatchLimit);
  const CString text = CString(u'a', 40) + u"c b";
  CRegex re(u"(a+)+b", 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(re.Match(text));
  EXPECT_TRUE(re.IsMatchLimitHit());
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_FALSE(CRegex::IsMatch(u"(a+)+b", text));
  EXPECT_TRUE(CRegex::IsStaticMatchLimitHit());

  CRegex::SetMatchLimit(1000);
  EXPECT_FALSE(re.Match(CString(u'a', 12) + u"c b"));
  EXPECT_TRUE(re.IsMatchLimitHit());
  CRegex::SetMatchLimit(0);  // no limit
  EXPECT_FALSE(re.Match(CString(u'a', 12) + u"c b"));
  EXPECT_FALSE(re.IsMatchLimitHit());
  CRegex::SetMatchLimit(saved);
  EXPECT_TRUE(re.Match(u"aab"));
  EXPECT_FALSE(re.IsMatchLimitHit());
  EXPECT_TRUE(CRegex::IsMatch(u"a", u"a"));
  EXPECT_FALSE(CRegex::IsStaticMatchLimitHit());
}

// Neither compiling nor matching uses native recursion that grows with the pattern or the text.
TEST(RegexEngineTest, DeepNestingAndLongTexts) {
  const CString open(u'(', 10000), close(u')', 10000);
  CRegex nested(open + u"a" + close, 0);
  ASSERT_TRUE(nested.Match(u"xa"));
  EXPECT_EQ(nested.GetMatchGroupStart(10000), 1);

  CString optional;
  for (int k = 0; k < 10000; ++k) optional += u"(?:a";
  for (int k = 0; k < 10000; ++k) optional += u")?";
  CRegex nestedOptional(optional, 0);
  ASSERT_TRUE(nestedOptional.Match(u"aab"));
  EXPECT_EQ(nestedOptional.GetMatchEnd(), 2);

  CString alternatives;
  for (int k = 0; k < 10000; ++k) alternatives += u"(?:b|";
  alternatives += u"a";
  for (int k = 0; k < 10000; ++k) alternatives += u")";
  CRegex nestedAlternatives(alternatives + u"+", 0);
  ASSERT_TRUE(nestedAlternatives.Match(u"cab"));
  EXPECT_EQ(nestedAlternatives.GetMatchEnd(), 3);

  std::u16string subject;
  for (int k = 0; k < 1000000; ++k) subject += k % 3 ? u'a' : u'b';
  subject += u'c';
  CRegex many(u"(a|b)*c", 0);
  ASSERT_TRUE(many.Match(CString(subject)));
  EXPECT_EQ(many.GetMatchEnd(), 1000001);
  EXPECT_EQ(many.GetMatchGroupStart(1), 999999);

  const CString parens = CString(u'(', 100000) + CString(u')', 100000);
  CRegex balanced(u"\\((?:[^()]|(?R))*\\)", 0);
  ASSERT_TRUE(balanced.Match(parens));
  EXPECT_EQ(balanced.GetMatchEnd(), 200000);
}

}  // namespace
}  // namespace quarrix
