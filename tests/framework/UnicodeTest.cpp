#include <quarrix/framework/Unicode.h>

#include <gtest/gtest.h>

using namespace quarrix;

namespace {

TEST(UnicodeTest, ClassesAndSimpleCaseMapping) {
  struct Row {
    const char* name;
    char16_t c;
    char16_t upper, lower;
    bool alpha, space, digit, word;
  };
  const Row rows[] = {
      {"ASCII letter", u'a', u'A', u'a', true, false, false, true},
      {"ASCII digit", u'7', u'7', u'7', false, false, true, true},
      {"underscore", u'_', u'_', u'_', false, false, false, true},
      {"tab", u'\t', u'\t', u'\t', false, true, false, false},
      {"a umlaut", u'ä', u'Ä', u'ä', true, false, false, true},
      {"A umlaut", u'Ä', u'Ä', u'ä', true, false, false, true},
      {"y diaeresis maps out of Latin-1", u'ÿ', u'\u0178', u'ÿ', true, false, false, true},
      {"sharp s has no simple upper case", u'ß', u'ß', u'ß', true, false, false, true},
      {"final sigma", u'ς', u'Σ', u'ς', true, false, false, true},
      {"Cyrillic", u'Ж', u'Ж', u'ж', true, false, false, true},
      {"CJK ideograph", u'中', u'中', u'中', true, false, false, true},
      {"Arabic-Indic digit: a letter to the C library", u'\u0663', u'\u0663', u'\u0663', true, false, false, true},
      {"ideographic space", u'\u3000', u'\u3000', u'\u3000', false, true, false, false},
      {"no-break space is not space", u'\u00A0', u'\u00A0', u'\u00A0', false, false, false, false},
      {"high surrogate", u'\xD800', u'\xD800', u'\xD800', false, false, false, false},
      {"low surrogate", u'\xDFFF', u'\xDFFF', u'\xDFFF', false, false, false, false},
      {"noncharacter", u'\uFFFF', u'\uFFFF', u'\uFFFF', false, false, false, false},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(ToUpperChar(r.c), r.upper) << r.name;
    EXPECT_EQ(ToLowerChar(r.c), r.lower) << r.name;
    EXPECT_EQ(IsAlphaChar(r.c), r.alpha) << r.name;
    EXPECT_EQ(IsSpaceChar(r.c), r.space) << r.name;
    EXPECT_EQ(IsDigitChar(r.c), r.digit) << r.name;
    EXPECT_EQ(IsWordChar(r.c), r.word) << r.name;
    EXPECT_EQ(IsAlnumChar(r.c), r.alpha || r.digit) << r.name;
  }
  // The test program runs in the "C" locale, where the C library itself knows no non-ASCII letters.
  EXPECT_EQ(ToUpperChar(u'é'), u'É');
  EXPECT_TRUE(IsUpperChar(u'Ä'));
  EXPECT_TRUE(IsLowerChar(u'ä'));
  EXPECT_FALSE(IsUpperChar(u'中'));
}

}  // namespace
