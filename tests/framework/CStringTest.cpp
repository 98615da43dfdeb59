#include <quarrix/framework/CString.h>

#include <quarrix/framework/CException.h>
#include <quarrix/framework/CodePage.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <unordered_set>

using namespace quarrix;
using quarrix::test::ExpectInvalidArg;
using quarrix::test::ScopedAnsiCodePage;

namespace {

struct ExtractRow {
  const char* name;
  CString (*op)(const CString&);
  const char16_t* expected;
};

TEST(CStringTest, ExtractionClampsStartAndCount) {
  const CString s(u"abcdef");
  const ExtractRow rows[] = {
      {"Mid(-1,0)", [](const CString& x) { return x.Mid(-1, 0); }, u""},
      {"Mid(-1,2) starts at 0", [](const CString& x) { return x.Mid(-1, 2); }, u"ab"},
      {"Mid(2)", [](const CString& x) { return x.Mid(2); }, u"cdef"},
      {"Mid(-3) is everything", [](const CString& x) { return x.Mid(-3); }, u"abcdef"},
      {"Mid(length)", [](const CString& x) { return x.Mid(6); }, u""},
      {"Mid past the end", [](const CString& x) { return x.Mid(7, 2); }, u""},
      {"Mid count past the end", [](const CString& x) { return x.Mid(4, 10); }, u"ef"},
      {"Mid negative count", [](const CString& x) { return x.Mid(2, -1); }, u""},
      {"Mid start INT_MAX", [](const CString& x) { return x.Mid(INT_MAX, 1); }, u""},
      {"Mid count INT_MAX", [](const CString& x) { return x.Mid(1, INT_MAX); }, u"bcdef"},
      {"Left(3)", [](const CString& x) { return x.Left(3); }, u"abc"},
      {"Left negative", [](const CString& x) { return x.Left(-1); }, u""},
      {"Left oversize", [](const CString& x) { return x.Left(99); }, u"abcdef"},
      {"Right(2)", [](const CString& x) { return x.Right(2); }, u"ef"},
      {"Right negative", [](const CString& x) { return x.Right(-5); }, u""},
      {"Right oversize", [](const CString& x) { return x.Right(99); }, u"abcdef"},
      {"SpanIncluding", [](const CString& x) { return x.SpanIncluding(u"bca"); }, u"abc"},
      {"SpanIncluding no match", [](const CString& x) { return x.SpanIncluding(u"xyz"); }, u""},
      {"SpanIncluding empty set", [](const CString& x) { return x.SpanIncluding(u""); }, u""},
      {"SpanExcluding", [](const CString& x) { return x.SpanExcluding(u"ed"); }, u"abc"},
      {"SpanExcluding empty set", [](const CString& x) { return x.SpanExcluding(u""); }, u"abcdef"},
      {"SpanExcluding null set", [](const CString& x) { return x.SpanExcluding(nullptr); }, u"abcdef"},
  };
  for (const auto& r : rows) EXPECT_EQ(r.op(s), CString(r.expected)) << r.name;
}

struct FindRow {
  const char* name;
  int (*op)(const CString&);
  int expected;
};

TEST(CStringTest, FindFollowsMfcStartRules) {
  const CString s(u"abcabc");
  const FindRow rows[] = {
      {"char", [](const CString& x) { return x.Find(u'b'); }, 1},
      {"char from 2", [](const CString& x) { return x.Find(u'b', 2); }, 4},
      {"char from 5", [](const CString& x) { return x.Find(u'b', 5); }, -1},
      {"char from length", [](const CString& x) { return x.Find(u'c', 6); }, -1},
      {"char beyond length", [](const CString& x) { return x.Find(u'a', 7); }, -1},
      {"char negative start", [](const CString& x) { return x.Find(u'a', -1); }, -1},
      {"char NUL", [](const CString& x) { return x.Find(u'\0'); }, -1},
      {"text", [](const CString& x) { return x.Find(u"bc"); }, 1},
      {"text from 2", [](const CString& x) { return x.Find(u"bc", 2); }, 4},
      {"text at its last place", [](const CString& x) { return x.Find(u"abc", 3); }, 3},
      {"text longer than rest", [](const CString& x) { return x.Find(u"abc", 4); }, -1},
      {"text from length", [](const CString& x) { return x.Find(u"c", 6); }, -1},
      {"text beyond length", [](const CString& x) { return x.Find(u"a", 7); }, -1},
      {"text negative start", [](const CString& x) { return x.Find(u"a", -1); }, -1},
      {"empty text", [](const CString& x) { return x.Find(u""); }, 0},
      {"empty text from 4", [](const CString& x) { return x.Find(u"", 4); }, 4},
      {"empty text at length", [](const CString& x) { return x.Find(u"", 6); }, 6},
      {"empty text beyond length", [](const CString& x) { return x.Find(u"", 7); }, -1},
      {"null text", [](const CString& x) { return x.Find(static_cast<const char16_t*>(nullptr)); }, -1},
      {"ReverseFind", [](const CString& x) { return x.ReverseFind(u'a'); }, 3},
      {"ReverseFind missing", [](const CString& x) { return x.ReverseFind(u'z'); }, -1},
      {"FindOneOf", [](const CString& x) { return x.FindOneOf(u"xc"); }, 2},
      {"FindOneOf empty set", [](const CString& x) { return x.FindOneOf(u""); }, -1},
      {"FindOneOf null set", [](const CString& x) { return x.FindOneOf(nullptr); }, -1},
      {"FindOneOf missing", [](const CString& x) { return x.FindOneOf(u"xyz"); }, -1},
  };
  for (const auto& r : rows) EXPECT_EQ(r.op(s), r.expected) << r.name;
  EXPECT_EQ(CString().Find(u""), 0);
  EXPECT_EQ(CString().Find(u'a'), -1);
  EXPECT_EQ(CString().ReverseFind(u'a'), -1);
}

struct EditRow {
  const char* name;
  const char16_t* before;
  int (*op)(CString&);
  int expectedResult;
  const char16_t* after;
};

TEST(CStringTest, EditingReturnsCountsAndClamps) {
  const EditRow rows[] = {
      {"Replace empty old", u"abc", [](CString& x) { return x.Replace(u"", u"x"); }, 0, u"abc"},
      {"Replace null old", u"abc", [](CString& x) { return x.Replace(nullptr, u"x"); }, 0, u"abc"},
      {"Replace by nothing", u"banana", [](CString& x) { return x.Replace(u"a", u""); }, 3, u"bnn"},
      {"Replace by null", u"banana", [](CString& x) { return x.Replace(u"an", nullptr); }, 2, u"ba"},
      {"Replace non-overlapping", u"aaaa", [](CString& x) { return x.Replace(u"aa", u"a"); }, 2, u"aa"},
      {"Replace growing", u"aaa", [](CString& x) { return x.Replace(u"aa", u"aaa"); }, 1, u"aaaa"},
      {"Replace missing", u"abc", [](CString& x) { return x.Replace(u"abcd", u"x"); }, 0, u"abc"},
      {"Replace char", u"banana", [](CString& x) { return x.Replace(u'a', u'o'); }, 3, u"bonono"},
      {"Remove", u"a-b--c-", [](CString& x) { return x.Remove(u'-'); }, 4, u"abc"},
      {"Remove missing", u"abc", [](CString& x) { return x.Remove(u'-'); }, 0, u"abc"},
      {"Insert char", u"abc", [](CString& x) { return x.Insert(1, u'x'); }, 4, u"axbc"},
      {"Insert negative index", u"abc", [](CString& x) { return x.Insert(-5, u'x'); }, 4, u"xabc"},
      {"Insert past the end", u"abc", [](CString& x) { return x.Insert(99, u"yz"); }, 5, u"abcyz"},
      {"Insert null", u"abc", [](CString& x) { return x.Insert(1, nullptr); }, 3, u"abc"},
      {"Delete one", u"abc", [](CString& x) { return x.Delete(1); }, 2, u"ac"},
      {"Delete negative index", u"abc", [](CString& x) { return x.Delete(-1, 2); }, 1, u"c"},
      {"Delete oversize count", u"abc", [](CString& x) { return x.Delete(1, 99); }, 1, u"a"},
      {"Delete INT_MAX count", u"abc", [](CString& x) { return x.Delete(1, INT_MAX); }, 1, u"a"},
      {"Delete at length", u"abc", [](CString& x) { return x.Delete(3); }, 3, u"abc"},
      {"Delete beyond length", u"abc", [](CString& x) { return x.Delete(5, 1); }, 3, u"abc"},
      {"Delete negative count", u"abc", [](CString& x) { return x.Delete(0, -1); }, 3, u"abc"},
  };
  for (const auto& r : rows) {
    CString s(r.before);
    EXPECT_EQ(r.op(s), r.expectedResult) << r.name;
    EXPECT_EQ(s, CString(r.after)) << r.name;
  }
}

TEST(CStringTest, OwnBufferAsArgument) {
  // Long enough that every operation has to reallocate while it still reads its argument.
  const CString base = CString(u'x', 40) + u"abc";
  CString s = base;
  s.Append(s.GetString());
  EXPECT_EQ(s, base + base) << "Append(own text)";

  s = base;
  s.Append(s.GetString() + 40, 3);
  EXPECT_EQ(s, base + u"abc") << "Append(own text, n)";

  s = base;
  s += s;
  EXPECT_EQ(s, base + base) << "+= itself";

  s = base;
  s.Insert(1, s.GetString());
  EXPECT_EQ(s, u"x" + base + base.Mid(1)) << "Insert(own text)";

  s = base;
  s = s.GetString() + 40;
  EXPECT_EQ(s, CString(u"abc")) << "operator=(own tail)";

  s = base;
  const CString& alias = s;
  s = alias;
  EXPECT_EQ(s, base) << "self-assignment";

  s = u"abcabc";
  EXPECT_EQ(s.Replace(s.GetString() + 3, s.GetString()), 2) << "Replace(own tail, own text)";
  EXPECT_EQ(s, CString(u"abcabcabcabc"));
}

struct TrimRow {
  const char* name;
  const char16_t* before;
  CString& (*op)(CString&);
  const char16_t* after;
};

TEST(CStringTest, TrimVariants) {
  const char16_t* const spaced = u" \t xyx ab xyx \r\n";
  const TrimRow rows[] = {
      {"Trim", spaced, [](CString& x) -> CString& { return x.Trim(); }, u"xyx ab xyx"},
      {"TrimLeft", spaced, [](CString& x) -> CString& { return x.TrimLeft(); }, u"xyx ab xyx \r\n"},
      {"TrimRight", spaced, [](CString& x) -> CString& { return x.TrimRight(); }, u" \t xyx ab xyx"},
      {"Trim all space", u" \t\n ", [](CString& x) -> CString& { return x.Trim(); }, u""},
      {"Trim Unicode spaces", u"\u3000a b\u2003", [](CString& x) -> CString& { return x.Trim(); }, u"a b"},
      {"Trim keeps no-break space", u"\u00A0a", [](CString& x) -> CString& { return x.Trim(); }, u"\u00A0a"},
      {"Trim char", u"xxaxx", [](CString& x) -> CString& { return x.Trim(u'x'); }, u"a"},
      {"TrimLeft char", u"xxaxx", [](CString& x) -> CString& { return x.TrimLeft(u'x'); }, u"axx"},
      {"TrimRight char", u"xxaxx", [](CString& x) -> CString& { return x.TrimRight(u'x'); }, u"xxa"},
      {"Trim char everything", u"xxx", [](CString& x) -> CString& { return x.Trim(u'x'); }, u""},
      {"Trim set", u"xyxabyx", [](CString& x) -> CString& { return x.Trim(u"yx"); }, u"ab"},
      {"TrimLeft set", u"xyxabyx", [](CString& x) -> CString& { return x.TrimLeft(u"yx"); }, u"abyx"},
      {"TrimRight set", u"xyxabyx", [](CString& x) -> CString& { return x.TrimRight(u"yx"); }, u"xyxab"},
      {"TrimRight set everything", u"xyx", [](CString& x) -> CString& { return x.TrimRight(u"yx"); }, u""},
      {"TrimRight empty set", u"ab ", [](CString& x) -> CString& { return x.TrimRight(u""); }, u"ab "},
      {"TrimLeft null set", u" ab", [](CString& x) -> CString& { return x.TrimLeft(nullptr); }, u" ab"},
      {"MakeReverse", u"abc", [](CString& x) -> CString& { return x.MakeReverse(); }, u"cba"},
  };
  for (const auto& r : rows) {
    CString s(r.before);
    CString& result = r.op(s);
    EXPECT_EQ(&result, &s) << r.name;
    EXPECT_EQ(s, CString(r.after)) << r.name;
  }
  CStringA a(" \t a\xA0\v");
  EXPECT_EQ(a.Trim(), CStringA("a\xA0")) << "CStringA trims ASCII white space only";
}

TEST(CStringTest, CaseMapping) {
  CString s(u"straße äöü ÿ abc Σ");
  EXPECT_EQ(CString(s).MakeUpper(), CString(u"STRAßE ÄÖÜ Ÿ ABC Σ")) << "ß has no simple upper case";
  EXPECT_EQ(CString(u"ÄÖÜ ABC ΣΑ").MakeLower(), CString(u"äöü abc σα"));
  CString surrogates(u"\U0001F600");
  EXPECT_EQ(CString(surrogates).MakeUpper(), surrogates);

  CStringA a("ab\xE4Z\xC4");
  EXPECT_EQ(CStringA(a).MakeUpper(), CStringA("AB\xE4Z\xC4")) << "bytes above 0x7F keep their value";
  EXPECT_EQ(CStringA(a).MakeLower(), CStringA("ab\xE4z\xC4"));
}

TEST(CStringTest, ComparisonIsOrdinalByUnsignedUnit) {
  struct Row {
    const char* name;
    const char16_t* a;
    const char16_t* b;
    int compare;
    int compareNoCase;
  };
  const Row rows[] = {
      {"equal", u"abc", u"abc", 0, 0},
      {"case only", u"äBc", u"ÄbC", 1, 0},
      {"prefix", u"ab", u"abc", -1, -1},
      {"upper before lower", u"B", u"a", -1, 1},
      {"empty", u"", u"", 0, 0},
      {"above U+7FFF", u"\uFFFF", u"a", 1, 1},
      {"by unit, not code point", u"\U00010000", u"\uFFFD", -1, -1},
  };
  for (const auto& r : rows) {
    const CString a(r.a);
    EXPECT_EQ((a.Compare(r.b) > 0) - (a.Compare(r.b) < 0), r.compare) << r.name;
    EXPECT_EQ((a.CompareNoCase(r.b) > 0) - (a.CompareNoCase(r.b) < 0), r.compareNoCase) << r.name;
    EXPECT_EQ(a < CString(r.b), r.compare < 0) << r.name;
    EXPECT_EQ(a == r.b, r.compare == 0) << r.name;
    EXPECT_EQ(a != CString(r.b), r.compare != 0) << r.name;
  }
  EXPECT_GT(CString(u"a").Compare(nullptr), 0);
  EXPECT_GT(CStringA("\xFF").Compare("a"), 0) << "char compares as unsigned";
  EXPECT_LT(CStringA("a"), CStringA("\x80"));
  EXPECT_NE(CStringA("\xE4").CompareNoCase("\xC4"), 0) << "CStringA folds ASCII only";
  EXPECT_EQ(CStringA("aBc").CompareNoCase("AbC"), 0);
}

// Embedded NULs take part in every comparison, so that equality, ordering and hashing agree.
TEST(CStringTest, EmbeddedNulsCompareConsistently) {
  const CString a(u"a\0b", 3), b(u"a\0c", 3), prefix(u"a");
  EXPECT_NE(a, b);
  EXPECT_LT(a, b);
  EXPECT_EQ(a.Compare(b), 1) << "b passed as a C string ends at its NUL: \"a\"";
  EXPECT_GT(a.Compare(u"a"), 0);
  EXPECT_GT(a, prefix);
  EXPECT_NE(a, u"a");
  EXPECT_NE(std::hash<CString>{}(a), std::hash<CString>{}(b));
  EXPECT_EQ(CString(u"A\0x", 3).CompareNoCase(CString(u"a\0X", 3)), 1) << "the C string form stops at the NUL";
}

TEST(CStringTest, IndexOutsideThrows) {
  CString s(u"abc");
  EXPECT_EQ(s.GetAt(0), u'a');
  EXPECT_EQ(s[2], u'c');
  EXPECT_EQ(s.GetAt(3), u'\0') << "the terminating NUL is readable";
  ExpectInvalidArg([&] { (void)s.GetAt(4); }, u"index 4 is outside 0..3", "GetAt(4)");
  ExpectInvalidArg([&] { (void)s.GetAt(-1); }, u"index -1 is outside 0..3", "GetAt(-1)");
  ExpectInvalidArg([&] { (void)s[7]; }, u"index 7 is outside 0..3", "operator[](7)");
  ExpectInvalidArg([&] { s.SetAt(3, u'x'); }, u"index 3 is outside 0..2", "SetAt(3)");
  ExpectInvalidArg([&] { s.SetAt(-1, u'x'); }, u"index -1 is outside 0..2", "SetAt(-1)");
  ExpectInvalidArg([] { CString().SetAt(0, u'x'); }, u"index 0 is outside the empty string", "SetAt on empty");
  s.SetAt(1, u'X');
  EXPECT_EQ(s, CString(u"aXc"));
  CStringA a("ab");
  ExpectInvalidArg([&] { (void)a.GetAt(3); }, u"index 3 is outside 0..2", "CStringA GetAt(3)");
}

TEST(CStringTest, DirectBufferAccess) {
  CString s;
  char16_t* p = s.GetBuffer(10);
  std::char_traits<char16_t>::copy(p, u"hello", 6);
  s.ReleaseBuffer();
  EXPECT_EQ(s, CString(u"hello"));
  EXPECT_EQ(s.GetLength(), 5);

  p = s.GetBuffer();
  p[0] = u'j';
  s.ReleaseBuffer(3);
  EXPECT_EQ(s, CString(u"jel")) << "ReleaseBuffer(n) cuts at n";

  p = s.GetBufferSetLength(5);
  std::char_traits<char16_t>::copy(p, u"abcde", 5);
  s.ReleaseBuffer();
  EXPECT_EQ(s, CString(u"abcde")) << "GetBufferSetLength keeps the NUL after the length";

  s.GetBufferSetLength(-1);
  EXPECT_TRUE(s.IsEmpty());

  CStringA a("xyz");
  a.GetBuffer(20)[1] = '\0';
  a.ReleaseBuffer();
  EXPECT_EQ(a, CStringA("x")) << "ReleaseBuffer() stops at the first NUL";
}

TEST(CStringTest, Tokenize) {
  struct Row {
    const char* name;
    const char16_t* text;
    const char16_t* delimiters;
    int start;
    std::vector<std::u16string> tokens;
  };
  const Row rows[] = {
      {"plain", u"%First Second#Third", u"% #", 0, {u"First", u"Second", u"Third"}},
      {"runs of delimiters", u",,a,,b,,", u",", 0, {u"a", u"b"}},
      {"only delimiters", u",,,", u",", 0, {}},
      {"empty text", u"", u",", 0, {}},
      {"from the middle", u"a,b,c", u",", 2, {u"b", u"c"}},
      {"start at length", u"a,b", u",", 3, {}},
      {"start beyond length", u"a,b", u",", 9, {}},
      {"negative start", u"a,b", u",", -1, {}},
      {"no delimiters: the rest", u"abcdef", u"", 2, {u"cdef"}},
  };
  for (const auto& r : rows) {
    const CString s(r.text);
    int pos = r.start;
    std::vector<std::u16string> got;
    for (CString token = s.Tokenize(r.delimiters, pos); pos != -1; token = s.Tokenize(r.delimiters, pos)) {
      got.push_back(token.str());
      if (got.size() > 10) break;
    }
    EXPECT_EQ(got, r.tokens) << r.name;
    EXPECT_EQ(s.Tokenize(r.delimiters, pos), CString()) << r.name << ": after the end";
    EXPECT_EQ(pos, -1) << r.name;
  }
}

TEST(CStringTest, ConstructionAndConversion) {
  EXPECT_EQ(CString(static_cast<const char16_t*>(nullptr)), CString());
  EXPECT_EQ(CString(static_cast<const char*>(nullptr)), CString());
  EXPECT_EQ(CString(u'x', 3), CString(u"xxx"));
  EXPECT_EQ(CString(u'x', -1), CString());
  EXPECT_EQ(CString(u"abc", 2), CString(u"ab"));
  EXPECT_EQ(CString(u"abc", -1), CString());
  EXPECT_EQ(CString(u"a\0b", 3).GetLength(), 3);

  // wchar_t text is UTF-32: a character beyond the BMP becomes a surrogate pair.
  const CString wide(L"a\U0001F600\u00E4");
  EXPECT_EQ(wide, CString(u"a\xD83D\xDE00\u00E4"));
  EXPECT_EQ(wide.GetLength(), 4);

  EXPECT_EQ(GetAnsiCodePage(), CP_UTF8);
  EXPECT_EQ(CString("gr\xC3\xBC\xC3\x9F"), CString(u"grüß")) << "UTF-8 is the default ANSI code page";
  EXPECT_EQ(CStringA(CString(u"€ü")), CStringA("\xE2\x82\xAC\xC3\xBC"));
  {
    ScopedAnsiCodePage cp1252(1252);
    EXPECT_EQ(CString("gr\xFC\xDF \x80"), CString(u"grüß €"));
    EXPECT_EQ(CStringA(CString(u"€ü")), CStringA("\x80\xFC"));
    EXPECT_EQ(CStringA(u"\u4E00"), CStringA("?")) << "what 1252 lacks becomes its default character";
    EXPECT_EQ(CStringA(L"\u00E4"), CStringA("\xE4"));
    CString assigned;
    assigned = "\xE4";
    EXPECT_EQ(assigned, CString(u"ä"));
    CStringA assignedA;
    assignedA = u"\u00FC";
    EXPECT_EQ(assignedA, CStringA("\xFC"));
  }
  CString assigned;
  assigned = L"\U00010348";
  EXPECT_EQ(assigned, CString(u"\U00010348"));
}

TEST(CStringTest, ConcatenationForms) {
  const CString b(u"b");
  EXPECT_EQ(u"a" + b + u'c', CString(u"abc"));
  EXPECT_EQ(u'a' + b, CString(u"ab"));
  EXPECT_EQ(CString(u"a") + u"b" + b, CString(u"abb"));
  EXPECT_EQ(b + b, CString(u"bb"));
  EXPECT_EQ(b, CString(u"b")) << "the operands stay unchanged";
}

TEST(CStringTest, StreamsAsUtf8AndHashes) {
  std::ostringstream os;
  os << CString(u"grüß \U0001F600") << '|' << CStringA("\xE4");
  EXPECT_EQ(os.str(), "gr\xC3\xBC\xC3\x9F \xF0\x9F\x98\x80|\xE4");

  const std::hash<CString> hash;
  EXPECT_EQ(hash(CString(u"abc")), std::hash<std::u16string_view>{}(u"abc"));
  std::unordered_set<CString> set{CString(u"a"), CString(u"b"), CString(u"a")};
  EXPECT_EQ(set.size(), 2u);
  EXPECT_EQ(set.count(CString(u"b")), 1u);
}

}  // namespace
