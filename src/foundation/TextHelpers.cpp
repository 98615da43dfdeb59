#include <quarrix/foundation/TextHelpers.h>

#include <quarrix/framework/Unicode.h>
#include <quarrix/regex/CRegex.h>

#include <algorithm>
#include <climits>
#include <vector>

namespace quarrix {
namespace {

// Set when a '*' of the mask has tried every position without success: an outer '*' then need not try
// further positions either. One flag for the process, like the original.
bool g_giveUp = false;

char16_t AsciiUpper(char16_t c) { return (c >= u'a' && c <= u'z') ? static_cast<char16_t>(c - 32) : c; }

}  // namespace

CString IntToStr(int n) { return cstringf(u"%d", n); }

CString IntToHex(int n, int digits) {
  digits = std::clamp(digits, 1, 64);
  return cstringf(cstringf(u"%%0%dX", digits), n);
}

int HexToInt(const CString& s) {
  const char16_t* p = s.GetString();
  while (IsSpaceChar(*p)) ++p;
  bool negative = false;
  if (*p == u'+' || *p == u'-') negative = *p++ == u'-';
  if (p[0] == u'0' && (p[1] == u'x' || p[1] == u'X') &&
      ((p[2] >= u'0' && p[2] <= u'9') || (p[2] >= u'a' && p[2] <= u'f') || (p[2] >= u'A' && p[2] <= u'F')))
    p += 2;
  long long value = 0;
  bool overflow = false;
  for (;; ++p) {
    int d;
    if (*p >= u'0' && *p <= u'9') d = *p - u'0';
    else if (*p >= u'a' && *p <= u'f') d = *p - u'a' + 10;
    else if (*p >= u'A' && *p <= u'F') d = *p - u'A' + 10;
    else break;
    if (!overflow) {
      value = value * 16 + d;
      if (value > 0x80000000LL) overflow = true;
    }
  }
  if (negative) value = -value;
  if (overflow || value > INT_MAX) return negative ? INT_MIN : INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

CString DblToStr(double x, int decimals, bool bTrimZeros) {
  CString text = cstringf(cstringf(u"%%.%df", std::max(decimals, 0)), x);
  if (bTrimZeros) {
    text = CRegex::Replace(u"0{2,}$", 0, text, u"0", -1, -1);
    text = CRegex::Replace(u"\\.0$", 0, text, u"", -1, -1);
  }
  return text;
}

int IsCharInSet(char16_t c, const char16_t* set) noexcept {
  if (!set) return 0;
  for (; *set; ++set)
    if (*set == c) return 1;
  return 0;
}

int GetToken(const char16_t* s, const char16_t* delims, int& pos, CString& token) {
  if (!s) s = u"";
  const int length = static_cast<int>(std::char_traits<char16_t>::length(s));
  if (pos >= length) return 0;
  pos = std::max(pos, 0);
  const int start = pos;
  while (pos < length && !IsCharInSet(s[pos], delims)) ++pos;
  token = CString(s + start, pos - start);
  ++pos;
  return 1;
}

int MatchesToMask(const char16_t* text, const char16_t* mask, int bIgnoreCase) {
  if (!text) text = u"";
  if (!mask) mask = u"";
  // Each '*' is a loop over start positions that calls the matcher for the rest of the mask; the calls are
  // kept on this stack instead of the native one, so a mask of many stars cannot exhaust it.
  struct StarLoop {
    const char16_t* rest;  // the mask after the '*'
    const char16_t* at;    // the text position being tried
  };
  std::vector<StarLoop> loops;
  const char16_t* t = text;
  const char16_t* m = mask;
  bool result;
  for (;;) {
    // One call of the matcher: walk text and mask together.
    result = false;
    bool returned = false;
    while (*t) {
      if (!*m) {  // mask used up: one extra text character is let through
        result = t[1] == 0;
        returned = true;
        break;
      }
      if (*m == u'*') {
        if (!m[1]) {
          result = true;
          returned = true;
          break;
        }
        g_giveUp = false;
        loops.push_back({m + 1, t});
        break;  // call the matcher on (t, m + 1)
      }
      if (*m != u'?') {
        const char16_t a = bIgnoreCase ? AsciiUpper(*t) : *t;
        const char16_t b = bIgnoreCase ? AsciiUpper(*m) : *m;
        if (a != b) {
          returned = true;
          break;
        }
      }
      ++t;
      ++m;
    }
    if (!returned && !*t) {
      // Text used up: the rest of the mask must be stars only.
      while (*m == u'*') ++m;
      result = *m == 0;
      returned = true;
    }
    if (!returned) {
      m = loops.back().rest;  // the call that the '*' just started
      continue;
    }
    // Return the result to the '*' loops that are waiting for it.
    for (;;) {
      if (loops.empty()) return result ? 1 : 0;
      if (result) return 1;  // the first success ends every loop at once
      StarLoop& loop = loops.back();
      if (!g_giveUp && *++loop.at) {
        t = loop.at;
        m = loop.rest;
        break;  // try the next start position
      }
      loops.pop_back();
      g_giveUp = true;
      result = false;
    }
  }
}

}  // namespace quarrix
