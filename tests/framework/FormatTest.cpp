#include <quarrix/framework/Format.h>

#include <quarrix/framework/CString.h>
#include <quarrix/framework/CodePage.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

using namespace quarrix;
using quarrix::test::ScopedAnsiCodePage;

namespace {

// What the C library prints for the same format: the oracle for numbers.
template <class... Args>
std::string CText(const std::string& format, Args... args) {
  const int n = std::snprintf(nullptr, 0, format.c_str(), args...);
  std::string s(static_cast<std::size_t>(n), '\0');
  std::snprintf(s.data(), s.size() + 1, format.c_str(), args...);
  return s;
}

template <class... Args>
std::string Ours(const std::string& format, const Args&... args) {
  return Utf16ToUtf8(cstringf(Utf8ToUtf16(format).c_str(), args...).view());
}

// Collects differences from the oracle so that a broken rule reports a few examples, not thousands.
class Mismatches {
 public:
  void Compare(const std::string& ours, const std::string& expected, const std::string& what) {
    ++m_checked;
    if (ours == expected) return;
    if (++m_count <= 20) m_examples += what + ": got \"" + ours + "\", snprintf gives \"" + expected + "\"\n";
  }
  void Verify() const {
    EXPECT_GT(m_checked, 0);
    EXPECT_EQ(m_count, 0) << m_examples;
  }

 private:
  long m_checked = 0;
  long m_count = 0;
  std::string m_examples;
};

// Every combination of the five flags, in a fixed order.
std::vector<std::string> AllFlagSets() {
  std::vector<std::string> sets;
  for (int mask = 0; mask < 32; ++mask) {
    std::string flags;
    for (int bit = 0; bit < 5; ++bit)
      if (mask & (1 << bit)) flags += "-+ 0#"[bit];
    sets.push_back(flags);
  }
  return sets;
}

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

const double kFloatValues[] = {
    0.0, -0.0, 0.5, 1.0, -1.5, 2.5, 3.5, 1.005, 0.125, 0.375, 9.5, 0.05, 0.15, 1e300, -1e300,
    DBL_MAX, -DBL_MAX, DBL_MIN, 4.9406564584124654e-324, 2.2250738585072009e-308, 1e-310,
    999999.5, 9.9999995, 0.99999995, 99999.95, 0.000099999995, 1e-5, 1e-4, 1e15, 1e16, 1e21, 123456789.0,
    0.1, 1.0 / 3, -2.0 / 3, 6.02214076e23, kNaN, -kNaN, kInf, -kInf};

TEST(FormatTest, FloatingConversionsMatchSnprintf) {
  const char* widths[] = {"", "1", "12", "40"};
  const char* precisions[] = {"", ".", ".0", ".1", ".2", ".3", ".6", ".17", ".40"};
  Mismatches m;
  for (char conversion : std::string("fFeEgGaA"))
    for (const std::string& flags : AllFlagSets())
      for (const char* width : widths)
        for (const char* precision : precisions) {
          const std::string format = "%" + flags + width + precision + conversion;
          for (double v : kFloatValues) m.Compare(Ours(format, v), CText(format, v), format);
        }
  m.Verify();
}

TEST(FormatTest, StarWidthAndPrecisionMatchSnprintf) {
  const int widths[] = {-12, -1, 0, 5, 20};
  const int precisions[] = {-5, -1, 0, 3, 12};
  Mismatches m;
  for (char conversion : std::string("fegGa"))
    for (const char* flags : {"", "0", "-", "+ ", "#"})
      for (int w : widths)
        for (int p : precisions) {
          const std::string format = std::string("%") + flags + "*.*" + conversion;
          const std::string what = format + " with " + std::to_string(w) + ", " + std::to_string(p);
          for (double v : {0.0, -2.5, 1.005, 1e300, kNaN, -kInf})
            m.Compare(Ours(format, w, p, v), CText(format, w, p, v), what);
          m.Compare(Ours(std::string("%") + flags + "*d", w, 42), CText(std::string("%") + flags + "*d", w, 42),
                    "%*d with " + std::to_string(w));
        }
  m.Verify();
}

TEST(FormatTest, RandomDoublesMatchSnprintf) {
  std::mt19937_64 random(20240229);
  const std::vector<std::string> flagSets = AllFlagSets();
  const std::string conversions = "fFeEgGaA";
  Mismatches m;
  for (int i = 0; i < 4000; ++i) {
    // Half raw bit patterns (NaN payloads, denormals, huge exponents), half ordinary magnitudes.
    const double v = i % 2 ? std::bit_cast<double>(random())
                           : std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 140) - 100);
    const char conversion = conversions[random() % conversions.size()];
    std::string format = "%";
    format += flagSets[random() % flagSets.size()];
    if (random() % 2) format += std::to_string(random() % 30);
    if (random() % 3) {
      format += '.';
      format += std::to_string(random() % (conversion == 'f' || conversion == 'F' ? 60 : 25));
    }
    format += conversion;
    m.Compare(Ours(format, v), CText(format, v), format + " of " + CText("%a", v));
  }
  m.Verify();
}

TEST(FormatTest, FloatArgumentTypes) {
  Mismatches m;
  const std::pair<const char*, const char*> forms[] = {
      {"%f", "%Lf"}, {"%.3e", "%.3Le"}, {"%g", "%Lg"}, {"%10.2f", "%10.2Lf"}, {"%a", "%La"}};
  for (const auto& [format, longFormat] : forms) {
    m.Compare(Ours(format, 1.25f), CText(format, 1.25), std::string(format) + " of a float");
    m.Compare(Ours(format, 1.0L / 3), CText(longFormat, 1.0L / 3), std::string(format) + " of a long double");
  }
  m.Compare(Ours("%Lf", 0.1), CText("%f", 0.1), "%Lf of a double");
  m.Compare(Ours("%.30Lg", 0.1L), CText("%.30Lg", 0.1L), "%.30Lg");
  m.Verify();
}

struct IntegerSize {
  const char* prefix;
  int bits;
};

// The value as the C library reads it after the size: reduced to that many bits, then sign- or zero-extended.
long long Reduce(long long v, int bits, bool isSigned) {
  if (bits == 64) return v;
  const auto mask = (1ULL << bits) - 1;
  const auto raw = static_cast<unsigned long long>(v) & mask;
  if (isSigned && (raw >> (bits - 1)) & 1) return static_cast<long long>(raw | ~mask);
  return static_cast<long long>(raw);
}

TEST(FormatTest, IntegersMatchSnprintfWithWindowsSizes) {
  // No size and l are 32 bits as on Windows; the oracle gets the value reduced accordingly and prints it as ll.
  const IntegerSize sizes[] = {{"", 32},    {"hh", 8},  {"h", 16}, {"l", 32}, {"ll", 64},
                               {"I64", 64}, {"I32", 32}, {"I", 64}, {"z", 64}};
  const long long values[] = {0, 1, -1, 7, 8, 255, 256, -128, 32767, -32768, 65535, INT_MAX, INT_MIN, UINT_MAX,
                              1LL << 32, LLONG_MAX, LLONG_MIN, 0x123456789ABCDEF0, -0x1234};
  const char* widths[] = {"", "1", "5", "22"};
  const char* precisions[] = {"", ".0", ".1", ".4", ".21"};
  Mismatches m;
  for (char conversion : std::string("diuoxX")) {
    const bool isSigned = conversion == 'd' || conversion == 'i';
    for (const std::string& flags : AllFlagSets())
      for (const char* width : widths)
        for (const char* precision : precisions) {
          const std::string head = "%" + flags + width + precision;
          for (const IntegerSize& size : sizes) {
            const std::string format = head + size.prefix + conversion;
            const std::string cFormat = head + "ll" + conversion;
            for (long long v : values)
              m.Compare(Ours(format, v), CText(cFormat, Reduce(v, size.bits, isSigned)),
                        format + " of " + std::to_string(v));
          }
        }
  }
  m.Verify();
}

struct TextRow {
  const char* name;
  CString (*op)();
  const char16_t* expected;
};

enum class Colour : short { Red = -2 };

void ExpectRows(std::initializer_list<TextRow> rows) {
  for (const auto& r : rows) EXPECT_EQ(r.op(), CString(r.expected)) << r.name;
}

TEST(FormatTest, IntegerArgumentTypes) {
  ExpectRows({
      {"%ld is 32 bits", [] { return cstringf(u"%ld", 0xFFFFFFFFL); }, u"-1"},
      {"%lu drops the high half", [] { return cstringf(u"%lu", 0x100000005UL); }, u"5"},
      {"%lx of a negative long", [] { return cstringf(u"%lx", -2L); }, u"fffffffe"},
      {"%lld of a long", [] { return cstringf(u"%lld", -5L); }, u"-5"},
      {"%d of bool", [] { return cstringf(u"%d", true); }, u"1"},
      {"%d of an enum", [] { return cstringf(u"%d", Colour::Red); }, u"-2"},
      {"%u of signed char -1", [] { return cstringf(u"%u", static_cast<signed char>(-1)); }, u"4294967295"},
      {"%x of char16_t", [] { return cstringf(u"%x", u'\xFFFF'); }, u"ffff"},
      {"%zu of SIZE_MAX", [] { return cstringf(u"%zu", SIZE_MAX); }, u"18446744073709551615"},
      {"%I64d of LLONG_MIN", [] { return cstringf(u"%I64d", LLONG_MIN); }, u"-9223372036854775808"},
      {"%hhd of 200", [] { return cstringf(u"%hhd", 200); }, u"-56"},
      {"%I32x of a 64-bit value", [] { return cstringf(u"%I32x", 0x1234567890LL); }, u"34567890"},
  });
}

TEST(FormatTest, TextAndCharacters) {
  ExpectRows({
      {"%s of char16_t text", [] { return cstringf(u"[%s]", u"grüß"); }, u"[grüß]"},
      {"%s of UTF-8 text", [] { return cstringf(u"[%s]", "gr\xC3\xBC\xC3\x9F"); }, u"[grüß]"},
      {"%s of wchar_t text", [] { return cstringf(u"[%s]", L"ä\U0001F600"); }, u"[ä\U0001F600]"},
      {"%S is %s", [] { return cstringf(u"[%S]", L"x"); }, u"[x]"},
      {"%s of CString", [] { return cstringf(u"%s", CString(u"cs")); }, u"cs"},
      {"%s of CStringA", [] { return cstringf(u"%s", CStringA("ca")); }, u"ca"},
      {"%s of u16string", [] { return cstringf(u"%s", std::u16string(u"u16")); }, u"u16"},
      {"%s of string_view", [] { return cstringf(u"%s", std::string_view("view!", 4)); }, u"view"},
      {"%s of wstring", [] { return cstringf(u"%s", std::wstring(L"w")); }, u"w"},
      {"%.2s", [] { return cstringf(u"%.2s", u"abc"); }, u"ab"},
      {"%.0s", [] { return cstringf(u"[%.0s]", u"abc"); }, u"[]"},
      {"%.1s keeps pairs whole", [] { return cstringf(u"[%.1s]", u"\U0001F600x"); }, u"[]"},
      {"%5s", [] { return cstringf(u"[%5s]", u"ab"); }, u"[   ab]"},
      {"%-5s", [] { return cstringf(u"[%-5s]", u"ab"); }, u"[ab   ]"},
      {"%05s pads with zeros", [] { return cstringf(u"[%05s]", u"ab"); }, u"[000ab]"},
      {"%*s", [] { return cstringf(u"[%*s]", -4, u"ab"); }, u"[ab  ]"},
      {"%s of null char16_t*", [] { return cstringf(u"%s", static_cast<const char16_t*>(nullptr)); }, u"(null)"},
      {"%s of null char*", [] { return cstringf(u"%s", static_cast<const char*>(nullptr)); }, u"(null)"},
      {"%s of nullptr", [] { return cstringf(u"%s", nullptr); }, u"(null)"},
      {"%c of char16_t", [] { return cstringf(u"%c", u'ä'); }, u"ä"},
      {"%c of char", [] { return cstringf(u"%c%c", 'A', 'z'); }, u"Az"},
      {"%c of int beyond BMP", [] { return cstringf(u"%c", 0x1F600); }, u"\U0001F600"},
      {"%c of wchar_t", [] { return cstringf(u"%C", L'\U00010348'); }, u"\U00010348"},
      {"%c of a negative int", [] { return cstringf(u"%c", -1); }, u"\uFFFD"},
      {"%3c", [] { return cstringf(u"[%3c]", u'x'); }, u"[  x]"},
      {"%-3c", [] { return cstringf(u"[%-3c]", u'x'); }, u"[x  ]"},
      {"%03c", [] { return cstringf(u"[%03c]", u'x'); }, u"[00x]"},
      {"%p", [] { return cstringf(u"%p", reinterpret_cast<void*>(0x12AB)); }, u"00000000000012AB"},
      {"%p of null", [] { return cstringf(u"%p", nullptr); }, u"0000000000000000"},
      {"%20p", [] { return cstringf(u"[%20p]", reinterpret_cast<int*>(0x10)); }, u"[    0000000000000010]"},
      {"%-18p", [] { return cstringf(u"[%-18p]", reinterpret_cast<int*>(0x10)); }, u"[0000000000000010  ]"},
  });
}

TEST(FormatTest, CountedTextKeepsEmbeddedNul) {
  EXPECT_EQ(cstringf(u"%s|", std::u16string(u"a\0b", 3)), CString(u"a\0b|", 4));
  EXPECT_EQ(cstringf(u"%.2s|", CString(u"a\0b", 3)), CString(u"a\0|", 3));
}

TEST(FormatTest, EightBitTextFollowsTheAnsiCodePage) {
  ScopedAnsiCodePage cp1252(1252);
  EXPECT_EQ(cstringf(u"%s|%c", "\xE4\x80", static_cast<char>('\xFC')), CString(u"ä€|ü"));
  CStringA a;
  a.Format("%s|%c|%S", u"ä", u'€', L"\u00FC");
  EXPECT_EQ(a, CStringA("\xE4|\x80|\xFC"));
}

TEST(FormatTest, MisfitsGiveMarkers) {
  int written = 42;
  int* target = &written;
  ExpectRows({
      {"%d of double", [] { return cstringf(u"%d", 1.5); }, u"%!d(double)"},
      {"%x of long double", [] { return cstringf(u"%x", 1.5L); }, u"%!x(long double)"},
      {"%d of text", [] { return cstringf(u"%d", u"x"); }, u"%!d(string)"},
      {"%d of pointer", [] { return cstringf(u"%d", reinterpret_cast<void*>(8)); }, u"%!d(pointer)"},
      {"%f of int", [] { return cstringf(u"%f", 1); }, u"%!f(int)"},
      {"%e of unsigned", [] { return cstringf(u"%e", 1u); }, u"%!e(unsigned)"},
      {"%s of int", [] { return cstringf(u"%s", 5); }, u"%!s(int)"},
      {"%s of pointer", [] { return cstringf(u"%s", reinterpret_cast<int*>(8)); }, u"%!s(pointer)"},
      {"%c of double", [] { return cstringf(u"%c", 1.0); }, u"%!c(double)"},
      {"%p of double", [] { return cstringf(u"%p", 1.0); }, u"%!p(double)"},
      {"no argument", [] { return cstringf(u"%d"); }, u"%!d(MISSING)"},
      {"one argument short", [] { return cstringf(u"%d %s", 1); }, u"1 %!s(MISSING)"},
      {"star without value", [] { return cstringf(u"%*d"); }, u"%!d(MISSING)"},
      {"star without conversion argument", [] { return cstringf(u"%*d", 5); }, u"%!d(MISSING)"},
      {"star of double", [] { return cstringf(u"%*d|%d", 1.5, 3, 4); }, u"%!d(BADWIDTH)|4"},
      {"precision star of text", [] { return cstringf(u"%.*f", u"x", 1.0); }, u"%!f(BADPREC)"},
      {"unknown conversion takes no argument", [] { return cstringf(u"%q %d", 5); }, u"%!q(BADVERB) 5"},
      {"%k with flags", [] { return cstringf(u"%-08k"); }, u"%!k(BADVERB)"},
      {"lone trailing %", [] { return cstringf(u"100%"); }, u"100%!(NOVERB)"},
      {"trailing flags", [] { return cstringf(u"a%-5"); }, u"a%!(NOVERB)"},
      {"trailing size", [] { return cstringf(u"a%ll"); }, u"a%!(NOVERB)"},
      {"%%", [] { return cstringf(u"100%% %%d"); }, u"100% %d"},
      {"%% with a width is still one %", [] { return cstringf(u"%5%|%d", 1); }, u"%|1"},
      {"width beyond a million", [] { return cstringf(u"%1000001d|%d", 1, 2); }, u"%!d(BADWIDTH)|2"},
      {"star width of INT_MIN", [] { return cstringf(u"%*d", -2147483647 - 1, 3); }, u"%!d(BADWIDTH)"},
      {"precision beyond a million", [] { return cstringf(u"%.2000000f", 1.0); }, u"%!f(BADPREC)"},
      {"a million is still fine", [] { return CString(cstringf(u"%1000000d", 7).Right(2)); }, u" 7"},
      {"surplus arguments", [] { return cstringf(u"%d", 1, 2, u"x"); }, u"1"},
      {"no conversions", [] { return cstringf(u"plain", 1); }, u"plain"},
      {"null format", [] { return cstringf(nullptr, 1); }, u""},
      {"many missing", [] { return cstringf(u"%s%d%f%c%p"); },
       u"%!s(MISSING)%!d(MISSING)%!f(MISSING)%!c(MISSING)%!p(MISSING)"},
  });
  EXPECT_EQ(cstringf(u"ab%n|%d", target, 7), CString(u"ab%!n(UNSUPPORTED)|7"));
  EXPECT_EQ(written, 42) << "%n writes nothing";
  EXPECT_EQ(cstringf(u"%n"), CString(u"%!n(MISSING)"));
}

TEST(FormatTest, AppendFormatAndNarrowFormat) {
  CString s(u"x=");
  s.AppendFormat(u"%d", 5);
  s.AppendFormat(u", y=%.1f", 0.25);
  EXPECT_EQ(s, CString(u"x=5, y=0.2"));
  s.Format(u"%s", u"reset");
  EXPECT_EQ(s, CString(u"reset"));

  CStringA a;
  a.Format("%d %s %.2f %5.1e %lx", 5, "txt", 1.005, 12345.0, -1L);
  EXPECT_EQ(a, CStringA("5 txt 1.00 1.2e+04 ffffffff"));
  a.AppendFormat("%s", CString(u"ü"));
  EXPECT_EQ(a, CStringA("5 txt 1.00 1.2e+04 ffffffff\xC3\xBC"));
  a.Format("%q%");
  EXPECT_EQ(a, CStringA("%!q(BADVERB)%!(NOVERB)"));
}

TEST(FormatTest, OwnTextAsArgumentOrFormat) {
  const CString base = CString(u'x', 50) + u"!";
  CString s = base;
  s.AppendFormat(u" and %s, %s", s, s.GetString());
  EXPECT_EQ(s, base + u" and " + base + u", " + base) << "AppendFormat with its own text as argument";

  s = base;
  s.Format(u"%s%s", s, s);
  EXPECT_EQ(s, base + base) << "Format with its own text as argument";

  s = CString(u"%d|") + CString(u'.', 40);
  const CString before = s;
  s.AppendFormat(s.GetString(), 7);
  EXPECT_EQ(s, before + u"7|" + CString(u'.', 40)) << "AppendFormat with its own text as format";
}

}  // namespace
