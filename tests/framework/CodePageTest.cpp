#include <quarrix/framework/CodePage.h>

#include <quarrix/framework/LastError.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace quarrix;
using quarrix::test::ScopedAnsiCodePage;

namespace {

const UINT kSingleByteCodePages[] = {437,   737,   775,   850,   852,   855,   857,   860,   861,   862,
                                     863,   864,   865,   866,   869,   874,   1250,  1251,  1252,  1253,
                                     1254,  1255,  1256,  1257,  1258,  10000, 20127, 20866, 21866, 28591,
                                     28592, 28593, 28594, 28595, 28596, 28597, 28598, 28599, 28603, 28605};

// Whole conversions through the Win32 pair, sized with a query first as ported code does.
std::u16string Decode(UINT codePage, std::string_view bytes, DWORD flags = 0) {
  const int n = MultiByteToWideChar(codePage, flags, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
  std::u16string out(static_cast<std::size_t>(n), u'\0');
  if (n > 0) {
    EXPECT_EQ(MultiByteToWideChar(codePage, flags, bytes.data(), static_cast<int>(bytes.size()), out.data(), n), n);
  }
  return out;
}

std::string Encode(UINT codePage, std::u16string_view text, BOOL* usedDefault = nullptr,
                   const char* defaultChar = nullptr) {
  const int n = WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), nullptr, 0,
                                    defaultChar, usedDefault);
  std::string out(static_cast<std::size_t>(n), '\0');
  if (n > 0) {
    EXPECT_EQ(WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), out.data(), n,
                                  defaultChar, usedDefault),
              n);
  }
  return out;
}

// A text and its UTF-8 form (in whichever direction the test converts), named for failure messages.
struct Utf8Case {
  const char* name;
  std::u16string text;
  std::string utf8;
};

TEST(CodePageTest, SingleByteCodePagesRoundTripEveryDefinedByte) {
  for (UINT cp : kSingleByteCodePages) {
    ASSERT_TRUE(IsValidCodePage(cp)) << cp;
    std::string all(256, '\0');
    for (int b = 0; b < 256; ++b) all[static_cast<std::size_t>(b)] = static_cast<char>(b);
    const std::u16string decoded = Decode(cp, all);
    ASSERT_EQ(decoded.size(), 256u) << cp << ": one unit per byte";
    EXPECT_EQ(CodePageToUtf16(cp, all), decoded) << cp;
    for (int b = 0; b < 256; ++b) {
      const char16_t unit = decoded[static_cast<std::size_t>(b)];
      if (unit == u'\uFFFD') continue;
      BOOL used = TRUE;
      EXPECT_EQ(Encode(cp, std::u16string(1, unit), &used), std::string(1, static_cast<char>(b)))
          << "code page " << cp << " byte 0x" << std::hex << b << " (U+" << static_cast<unsigned>(unit) << ")";
      EXPECT_FALSE(used) << cp << " byte " << b;
    }
    for (int b = 0; b < 0x80; ++b)
      EXPECT_NE(decoded[static_cast<std::size_t>(b)], u'\uFFFD') << cp << ": ASCII byte " << b << " has a character";
  }
  // Bytes that the published tables leave without a character (undefined C1 bytes keep their value instead).
  const std::pair<UINT, std::vector<int>> holes[] = {
      {1252, {}},
      {1253, {0xAA, 0xD2, 0xFF}},
      {1255, {0xCA, 0xD9, 0xDA, 0xDB, 0xDC, 0xDD, 0xDE, 0xDF, 0xFB, 0xFC, 0xFF}},
      {1258, {}},
      {874, {0xDB, 0xDC, 0xDD, 0xDE, 0xFC, 0xFD, 0xFE, 0xFF}},
  };
  for (const auto& [cp, expected] : holes) {
    std::vector<int> undefined;
    for (int b = 0; b < 256; ++b)
      if (CodePageToUtf16(cp, std::string(1, static_cast<char>(b))) == u"\uFFFD") undefined.push_back(b);
    EXPECT_EQ(undefined, expected) << "code page " << cp;
  }
  // Spot checks against the published tables.
  EXPECT_EQ(Decode(1252, "\x80\x81\xE4\x9F"), u"\u20AC\u0081\u00E4\u0178") << "undefined 0x81 keeps its value";
  EXPECT_EQ(Decode(1251, "\xC0\xFF"), u"\u0410\u044F");
  EXPECT_EQ(Decode(437, "\xB0\xE1"), u"\u2591\u00DF");
  EXPECT_EQ(Decode(28605, "\xA4"), u"\u20AC");
  EXPECT_EQ(Decode(20866, "\xC1"), u"\u0430");
  EXPECT_EQ(Encode(1253, u"\u03A9"), "\xD9");
  EXPECT_EQ(Decode(1258, "Ae\xCC\xDD"), u"Ae\u0300\u01AF") << "combining marks stay separate characters";
  EXPECT_EQ(Decode(1255, "\xE0\xC8"), u"\u05D0\u05B8");
}

TEST(CodePageTest, Utf8RoundTrips) {
  const std::u16string texts[] = {
      u"",
      u"plain ASCII",
      std::u16string(u"embedded\0NUL", 12),
      u"äöü ß € \u0800 \uFFFF",
      u"\U00010000 \U0001F600 \U0010FFFF",
      u"Ελληνικά 日本語 العربية",
  };
  for (const auto& text : texts) {
    const std::string utf8 = Utf16ToUtf8(text);
    EXPECT_EQ(Utf8ToUtf16(utf8), text) << utf8;
    if (text.empty()) continue;
    EXPECT_EQ(Encode(CP_UTF8, text), utf8) << utf8;
    EXPECT_EQ(Decode(CP_UTF8, utf8, MB_ERR_INVALID_CHARS), text) << utf8;
  }
  EXPECT_EQ(Utf16ToUtf8(u"\U0001F600\u00E9"), "\xF0\x9F\x98\x80\xC3\xA9");
  EXPECT_EQ(Utf16ToUtf8(u"\U0010FFFF"), "\xF4\x8F\xBF\xBF");
}

TEST(CodePageTest, LossyEncodingUsesTheDefaultCharacter) {
  BOOL used = FALSE;
  EXPECT_EQ(Encode(1252, u"a\u4E00b", &used), "a?b");
  EXPECT_TRUE(used);
  EXPECT_EQ(Encode(1252, u"a\u4E00b", &used, "*"), "a*b");
  EXPECT_TRUE(used);
  EXPECT_EQ(Encode(1252, u"x\U0001F600y", &used), "x?y") << "a surrogate pair is one character";
  EXPECT_EQ(Encode(1252, u"\xD800x\xDC00", &used), "?x?") << "unpaired surrogates";
  EXPECT_EQ(Encode(1252, u"äx", &used), "\xE4x");
  EXPECT_FALSE(used) << "reset when nothing was substituted";

  bool usedDefault = false;
  EXPECT_EQ(Utf16ToCodePage(1252, u"a\u4E00", '#', &usedDefault), "a#");
  EXPECT_TRUE(usedDefault);
  EXPECT_EQ(Utf16ToCodePage(1252, u"\u00FC", 0, &usedDefault), "\xFC");
  EXPECT_TRUE(usedDefault) << "never set back to false";
}

// Runs a Win32 conversion and checks its result and, for a failure, the last error it left.
struct Win32Row {
  const char* name;
  int (*call)();
  int expected;
  DWORD error;  // checked only when expected is 0
};

TEST(CodePageTest, Win32Rules) {
  static char16_t wide[8];
  static char narrow[8];
  static BOOL used;
  const Win32Row rows[] = {
      {"size query", [] { return MultiByteToWideChar(CP_UTF8, 0, "a\xC3\xA4", 3, nullptr, 0); }, 2, 0},
      {"-1 counts the NUL", [] { return MultiByteToWideChar(CP_UTF8, 0, "abc", -1, nullptr, 0); }, 4, 0},
      {"-1 writes the NUL", [] { return MultiByteToWideChar(CP_UTF8, 0, "abc", -1, wide, 4); }, 4, 0},
      {"exact buffer", [] { return MultiByteToWideChar(1252, 0, "abcd", 4, wide, 4); }, 4, 0},
      {"buffer too small", [] { return MultiByteToWideChar(CP_UTF8, 0, "abcd", 4, wide, 3); }, 0,
       ERROR_INSUFFICIENT_BUFFER},
      {"pair does not fit", [] { return MultiByteToWideChar(CP_UTF8, 0, "\xF0\x9F\x98\x80", 4, wide, 1); }, 0,
       ERROR_INSUFFICIENT_BUFFER},
      {"zero length", [] { return MultiByteToWideChar(CP_UTF8, 0, "abc", 0, wide, 8); }, 0, ERROR_INVALID_PARAMETER},
      {"length below -1", [] { return MultiByteToWideChar(CP_UTF8, 0, "abc", -2, wide, 8); }, 0,
       ERROR_INVALID_PARAMETER},
      {"null source", [] { return MultiByteToWideChar(CP_UTF8, 0, nullptr, 3, wide, 8); }, 0, ERROR_INVALID_PARAMETER},
      {"null target with a size", [] { return MultiByteToWideChar(CP_UTF8, 0, "abc", 3, nullptr, 8); }, 0,
       ERROR_INVALID_PARAMETER},
      {"negative target size", [] { return MultiByteToWideChar(CP_UTF8, 0, "abc", 3, wide, -1); }, 0,
       ERROR_INVALID_PARAMETER},
      {"invalid UTF-8 refused", [] { return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "a\xFF", 2, wide, 8); },
       0, ERROR_NO_UNICODE_TRANSLATION},
      {"invalid UTF-8 refused in a size query",
       [] { return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "\xC3", 1, nullptr, 0); }, 0,
       ERROR_NO_UNICODE_TRANSLATION},
      {"undefined byte refused", [] { return MultiByteToWideChar(874, MB_ERR_INVALID_CHARS, "\xFF", 1, wide, 8); }, 0,
       ERROR_NO_UNICODE_TRANSLATION},
      {"invalid UTF-8 replaced", [] { return MultiByteToWideChar(CP_UTF8, 0, "a\xFF", 2, wide, 8); }, 2, 0},
      {"flag not for UTF-8", [] { return MultiByteToWideChar(CP_UTF8, MB_PRECOMPOSED, "a", 1, wide, 8); }, 0,
       ERROR_INVALID_FLAGS},
      {"unknown code page", [] { return MultiByteToWideChar(1299, 0, "a", 1, wide, 8); }, 0, ERROR_INVALID_PARAMETER},
      {"wide size query", [] { return WideCharToMultiByte(CP_UTF8, 0, u"a\u00E4", 2, nullptr, 0, nullptr, nullptr); },
       3, 0},
      {"wide -1 counts the NUL", [] { return WideCharToMultiByte(CP_UTF8, 0, u"ab", -1, nullptr, 0, nullptr, nullptr); },
       3, 0},
      {"wide buffer too small", [] { return WideCharToMultiByte(CP_UTF8, 0, u"a\u00E4", 2, narrow, 2, nullptr, nullptr); },
       0, ERROR_INSUFFICIENT_BUFFER},
      {"wide buffer too small for 1252", [] { return WideCharToMultiByte(1252, 0, u"abc", 3, narrow, 2, nullptr, &used); },
       0, ERROR_INSUFFICIENT_BUFFER},
      {"wide zero length", [] { return WideCharToMultiByte(CP_UTF8, 0, u"a", 0, narrow, 8, nullptr, nullptr); }, 0,
       ERROR_INVALID_PARAMETER},
      {"unpaired surrogate refused",
       [] { return WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, u"a\xD800", 2, narrow, 8, nullptr, nullptr); }, 0,
       ERROR_NO_UNICODE_TRANSLATION},
      {"unpaired surrogate replaced",
       [] { return WideCharToMultiByte(CP_UTF8, 0, u"a\xD800", 2, narrow, 8, nullptr, nullptr); }, 4, 0},
      {"default char with UTF-8", [] { return WideCharToMultiByte(CP_UTF8, 0, u"a", 1, narrow, 8, "?", nullptr); }, 0,
       ERROR_INVALID_PARAMETER},
      {"used-default flag with UTF-8",
       [] { return WideCharToMultiByte(CP_UTF8, 0, u"a", 1, narrow, 8, nullptr, &used); }, 0, ERROR_INVALID_PARAMETER},
      {"WC_ERR_INVALID_CHARS with 1252",
       [] { return WideCharToMultiByte(1252, WC_ERR_INVALID_CHARS, u"a", 1, narrow, 8, nullptr, nullptr); }, 0,
       ERROR_INVALID_FLAGS},
      {"wide unknown code page",
       [] { return WideCharToMultiByte(1299, 0, u"a", 1, narrow, 8, nullptr, nullptr); }, 0, ERROR_INVALID_PARAMETER},
  };
  for (const auto& r : rows) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(r.call(), r.expected) << r.name;
    if (r.expected == 0) {
      EXPECT_EQ(GetLastError(), r.error) << r.name;
    }
  }

  char16_t buffer[4] = {u'#', u'#', u'#', u'#'};
  ASSERT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", -1, buffer, 4), 4);
  EXPECT_EQ(std::u16string(buffer, 4), std::u16string(u"abc\0", 4));
  ASSERT_EQ(MultiByteToWideChar(CP_UTF8, 0, "wxyz", 4, buffer, 3), 0);
  EXPECT_EQ(std::u16string(buffer, 3), u"wxy") << "a too small target holds what fitted";
}

TEST(CodePageTest, InvalidUtf8BecomesOneReplacementPerMaximalSubsequence) {
  const Utf8Case rows[] = {
      {"overlong two bytes", u"\uFFFD\uFFFD", "\xC0\x80"},
      {"overlong C1", u"\uFFFD\uFFFD", "\xC1\xBF"},
      {"overlong three bytes", u"\uFFFD\uFFFD\uFFFD", "\xE0\x80\x80"},
      {"overlong four bytes", u"\uFFFD\uFFFD\uFFFD\uFFFD", "\xF0\x80\x80\x80"},
      {"encoded surrogate", u"\uFFFD\uFFFD\uFFFD", "\xED\xA0\x80"},
      {"truncated at the end", u"a\uFFFD", "a\xE2\x82"},
      {"truncated before ASCII", u"\uFFFDz", "\xE2\x82z"},
      {"truncated four-byte", u"\uFFFD ", "\xF0\x9F\x98 "},
      {"truncated then valid", u"\uFFFD\u00E4", "\xE2\xC3\xA4"},
      {"bytes F5 to FF", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD", "\xF5\xF8\xFC\xFE\xFF"},
      {"beyond U+10FFFF", u"\uFFFD\uFFFD\uFFFD\uFFFD", "\xF4\x90\x80\x80"},
      {"lone continuation bytes", u"\uFFFD\uFFFD", "\x80\xBF"},
      {"between valid text", u"a\uFFFDb\u00E4", "a\xFF" "b\xC3\xA4"},
      {"lead byte alone", u"\uFFFD", "\xC2"},
      {"highest valid", u"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(Utf8ToUtf16(r.utf8), r.text) << r.name;
    EXPECT_EQ(Decode(CP_UTF8, r.utf8), r.text) << r.name;
    EXPECT_EQ(CodePageToUtf16(CP_UTF8, r.utf8), r.text) << r.name;
  }
}

TEST(CodePageTest, UnpairedSurrogatesEncodeAsReplacement) {
  const Utf8Case rows[] = {
      {"high alone", u"a\xD800" u"b", "a\xEF\xBF\xBD" "b"},
      {"low alone", u"\xDC00", "\xEF\xBF\xBD"},
      {"high before a pair", u"\xD800\xD800\xDC00", "\xEF\xBF\xBD\xF0\x90\x80\x80"},
      {"reversed pair", u"\xDC00\xD800", "\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"high at the end", u"ab\xDBFF", "ab\xEF\xBF\xBD"},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(Utf16ToUtf8(r.text), r.utf8) << r.name;
    EXPECT_EQ(Encode(CP_UTF8, r.text), r.utf8) << r.name;
  }
}

TEST(CodePageTest, AnsiCodePageFollowsTheSetting) {
  EXPECT_EQ(GetACP(), CP_UTF8);
  {
    ScopedAnsiCodePage cp1252(1252);
    EXPECT_EQ(GetAnsiCodePage(), 1252u);
    EXPECT_EQ(Decode(CP_ACP, "\x80"), u"\u20AC");
    EXPECT_EQ(Decode(CP_THREAD_ACP, "\xE4"), u"\u00E4");
    EXPECT_EQ(CodePageToUtf16(CP_ACP, "\xFC"), u"\u00FC");
    EXPECT_EQ(Utf16ToCodePage(CP_ACP, u"\u20AC"), "\x80");
    {
      ScopedAnsiCodePage cp1251(1251);
      EXPECT_EQ(Decode(CP_ACP, "\xC0"), u"\u0410");
    }
    EXPECT_EQ(GetACP(), 1252u);
    EXPECT_FALSE(SetAnsiCodePage(1299)) << "unknown code page";
    EXPECT_FALSE(SetAnsiCodePage(CP_ACP)) << "CP_ACP is not a code page of its own";
    EXPECT_EQ(GetACP(), 1252u) << "a refused change keeps the current one";
  }
  EXPECT_EQ(GetACP(), CP_UTF8);
  EXPECT_FALSE(IsValidCodePage(1299));
  EXPECT_FALSE(IsValidCodePage(65000)) << "UTF-7 is not offered";
  for (UINT pseudo : {CP_ACP, CP_OEMCP, CP_THREAD_ACP})
    EXPECT_FALSE(IsValidCodePage(pseudo)) << pseudo << " only stands for another code page";
  EXPECT_TRUE(IsValidCodePage(1252));
}

TEST(CodePageTest, MultiByteCodePages) {
  struct Row {
    const char* name;
    UINT codePage;
    std::u16string text;
    std::string bytes;
  };
  const Row rows[] = {
      {"Shift-JIS", 932, u"日本語 abc ｶﾅ", "\x93\xFA\x96\x7B\x8C\xEA abc \xB6\xC5"},
      {"GBK", 936, u"中文 x", "\xD6\xD0\xCE\xC4 x"},
      {"Big5", 950, u"中文", "\xA4\xA4\xA4\xE5"},
  };
  for (const auto& r : rows) {
    ASSERT_TRUE(IsValidCodePage(r.codePage)) << r.name;
    BOOL used = TRUE;
    EXPECT_EQ(Encode(r.codePage, r.text, &used), r.bytes) << r.name;
    EXPECT_FALSE(used) << r.name;
    EXPECT_EQ(Decode(r.codePage, r.bytes), r.text) << r.name;
    EXPECT_EQ(Utf16ToCodePage(r.codePage, r.text), r.bytes) << r.name;
    EXPECT_EQ(CodePageToUtf16(r.codePage, r.bytes), r.text) << r.name;
  }
  BOOL used = FALSE;
  EXPECT_EQ(Encode(932, u"a\u0E01\U0001F600b", &used), "a??b") << "Thai and emoji are not in 932";
  EXPECT_TRUE(used);
  EXPECT_EQ(Decode(932, "a\x93"), u"a\uFFFD") << "lead byte cut off";
  SetLastError(ERROR_SUCCESS);
  EXPECT_EQ(MultiByteToWideChar(932, MB_ERR_INVALID_CHARS, "a\x93", 2, nullptr, 0), 0);
  EXPECT_EQ(GetLastError(), ERROR_NO_UNICODE_TRANSLATION);
  {
    ScopedAnsiCodePage cp936(936);
    EXPECT_EQ(CodePageToUtf16(CP_ACP, "\xD6\xD0"), u"中");
  }
}

// The vector loops handle 16 bytes (decoding) or 8 units (encoding) at a time and fall back for non-ASCII;
// every length around those blocks, with the non-ASCII character at every position, must come out whole.
TEST(CodePageTest, VectorPathsAroundBlockBoundaries) {
  struct Piece {
    const char* name;
    std::u16string text;
    std::string utf8;
    bool decodes, encodes;  // which direction maps the one onto the other
  };
  const Piece pieces[] = {
      {"two bytes", u"\u00E9", "\xC3\xA9", true, true},
      {"three bytes", u"\u20AC", "\xE2\x82\xAC", true, true},
      {"four bytes", u"\U0001F600", "\xF0\x9F\x98\x80", true, true},
      {"invalid byte", u"\uFFFD", "\xFF", true, false},
      {"lone surrogate", u"\xDC00", "\xEF\xBF\xBD", false, true},
  };
  for (const auto& piece : pieces)
    for (std::size_t length = 1; length <= 40; ++length)
      for (std::size_t at = 0; at < length; ++at) {
        const std::u16string text = std::u16string(at, u'a') + piece.text + std::u16string(length - at - 1, u'b');
        const std::string utf8 = std::string(at, 'a') + piece.utf8 + std::string(length - at - 1, 'b');
        const std::string where = std::string(piece.name) + " at " + std::to_string(at) + " of " +
                                  std::to_string(length);
        if (piece.encodes) {
          ASSERT_EQ(Utf16ToUtf8(text), utf8) << where;
          ASSERT_EQ(Encode(CP_UTF8, text), utf8) << where;
          std::string tooSmall(utf8.size() - 1, '\0');
          ASSERT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), tooSmall.data(),
                                        static_cast<int>(tooSmall.size()), nullptr, nullptr),
                    0)
              << where;
        }
        if (!piece.decodes) continue;
        ASSERT_EQ(Utf8ToUtf16(utf8), text) << where;
        ASSERT_EQ(Decode(CP_UTF8, utf8), text) << where;
        // One unit short must fail cleanly however the vector loop split the input.
        if (text.size() > 1) {
          std::u16string tooSmall(text.size() - 1, u'\0');
          SetLastError(ERROR_SUCCESS);
          ASSERT_EQ(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), tooSmall.data(),
                                        static_cast<int>(tooSmall.size())),
                    0)
              << where;
          ASSERT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER) << where;
        }
      }
}

TEST(CodePageTest, WholeStringHelpersForOddInput) {
  EXPECT_EQ(Utf32ToUtf16(L"a\U0001F600"), u"a\U0001F600");
  EXPECT_EQ(Utf32ToUtf16(std::wstring_view(L"\x110000x", 2)), u"\uFFFDx") << "beyond U+10FFFF";
  EXPECT_EQ(CodePageToUtf16(1299, "a\xE4"), u"a\u00E4") << "unknown code page decodes as Latin-1";
  EXPECT_EQ(Utf16ToCodePage(1299, u"a\u00E4"), "a\xC3\xA4") << "unknown code page encodes as UTF-8";
  EXPECT_EQ(Utf8ToUtf16(""), u"");
  EXPECT_EQ(Utf16ToCodePage(1252, u""), "");
}

}  // namespace
