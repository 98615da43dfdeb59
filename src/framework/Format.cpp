#include <quarrix/framework/Format.h>

#include <quarrix/framework/CodePage.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace quarrix::detail {
namespace {

constexpr int kMaxWidth = 1'000'000;

struct Spec {
  bool left = false;
  bool plus = false;
  bool space = false;
  bool zero = false;
  bool alt = false;
  int width = 0;
  int precision = -1;  // -1: none given
  int intBits = 32;    // the width an integer is converted to before printing
  bool narrowChar = false;  // h or C: %c and %s take 8-bit text (informational: arguments carry their own type)
  bool longDouble = false;
  char conversion = 0;
};

const char* KindName(const FormatArg& a) {
  switch (a.kind) {
    case FormatArg::Signed: return "int";
    case FormatArg::Unsigned: return "unsigned";
    case FormatArg::Double: return "double";
    case FormatArg::LongDouble: return "long double";
    case FormatArg::Pointer: return "pointer";
    case FormatArg::Text16:
    case FormatArg::Text8:
    case FormatArg::Text32: return "string";
  }
  return "?";
}

FormatArg NullText() {
  FormatArg a{};
  a.kind = FormatArg::Text16;
  a.text = {nullptr, 0};
  return a;
}

bool IsInteger(const FormatArg& a) { return a.kind == FormatArg::Signed || a.kind == FormatArg::Unsigned; }

template <class Ch>
class Writer {
 public:
  explicit Writer(std::basic_string<Ch>& out) : m_out(out) {}

  void Ascii(const char* s, std::size_t n) {
    const std::size_t at = m_out.size();
    m_out.resize(at + n);
    for (std::size_t i = 0; i < n; ++i) m_out[at + i] = static_cast<Ch>(static_cast<unsigned char>(s[i]));
  }
  void Ascii(const char* s) { Ascii(s, std::strlen(s)); }
  void Fill(std::size_t n, char c) { m_out.append(n, static_cast<Ch>(c)); }
  void Units(const Ch* s, std::size_t n) { m_out.append(s, n); }
  std::basic_string<Ch>& Out() { return m_out; }

  // The marker that stands in for a conversion that cannot be done: %!<conversion>(<why>).
  void Marker(Ch conversion, const char* why) {
    Ascii("%!");
    if (conversion) m_out.push_back(conversion);
    Ascii("(");
    Ascii(why);
    Ascii(")");
  }

 private:
  std::basic_string<Ch>& m_out;
};

// Pads body (already in the output encoding) to the width: spaces on the left or right, or, with zeros,
// between the prefix (sign or 0x) and the digits.
template <class Ch>
void EmitPadded(Writer<Ch>& w, const Spec& s, const char* prefix, std::size_t prefixLength, const Ch* body,
                std::size_t bodyLength, bool zeroPad) {
  const std::size_t length = prefixLength + bodyLength;
  const std::size_t pad = s.width > 0 && static_cast<std::size_t>(s.width) > length ? s.width - length : 0;
  if (s.left) {
    w.Ascii(prefix, prefixLength);
    w.Units(body, bodyLength);
    w.Fill(pad, ' ');
  } else if (zeroPad) {
    w.Ascii(prefix, prefixLength);
    w.Fill(pad, '0');
    w.Units(body, bodyLength);
  } else {
    w.Fill(pad, ' ');
    w.Ascii(prefix, prefixLength);
    w.Units(body, bodyLength);
  }
}

template <class Ch>
void EmitPaddedAscii(Writer<Ch>& w, const Spec& s, const char* prefix, std::size_t prefixLength,
                     const char* body, std::size_t bodyLength, bool zeroPad) {
  Ch buf[128];
  if (bodyLength <= std::size(buf)) {
    for (std::size_t i = 0; i < bodyLength; ++i) buf[i] = static_cast<Ch>(static_cast<unsigned char>(body[i]));
    EmitPadded(w, s, prefix, prefixLength, buf, bodyLength, zeroPad);
  } else {
    std::basic_string<Ch> wide(body, body + bodyLength);
    EmitPadded(w, s, prefix, prefixLength, wide.data(), wide.size(), zeroPad);
  }
}

template <class Ch>
void FormatInteger(Writer<Ch>& w, const Spec& s, const FormatArg& a) {
  const char conv = s.conversion;
  const bool isSigned = conv == 'd' || conv == 'i';
  // Reduce to the width the size names, as the C library reads the argument, then reinterpret.
  unsigned long long raw = a.kind == FormatArg::Signed ? static_cast<unsigned long long>(a.i) : a.u;
  if (s.intBits < 64) raw &= (1ULL << s.intBits) - 1;
  bool negative = false;
  unsigned long long magnitude = raw;
  if (isSigned && s.intBits < 64 && (raw >> (s.intBits - 1)) & 1) {
    negative = true;
    magnitude = (~raw + 1) & ((1ULL << s.intBits) - 1);
  } else if (isSigned && s.intBits == 64 && static_cast<long long>(raw) < 0) {
    negative = true;
    magnitude = ~raw + 1;
  }

  char digits[64];
  char* end = digits + sizeof digits;
  char* p = end;
  const unsigned base = conv == 'o' ? 8 : (conv == 'x' || conv == 'X') ? 16 : 10;
  const char* alphabet = conv == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
  for (unsigned long long v = magnitude; v != 0; v /= base) *--p = alphabet[v % base];
  std::size_t count = static_cast<std::size_t>(end - p);

  // Precision is the minimum number of digits; an explicit 0 prints nothing for 0.
  std::size_t minDigits = s.precision < 0 ? 1 : static_cast<std::size_t>(s.precision);
  if (conv == 'o' && s.alt && (count == 0 || *p != '0')) minDigits = std::max(minDigits, count + 1);

  char prefix[3];
  std::size_t prefixLength = 0;
  if (isSigned) {
    if (negative) prefix[prefixLength++] = '-';
    else if (s.plus) prefix[prefixLength++] = '+';
    else if (s.space) prefix[prefixLength++] = ' ';
  } else if (s.alt && base == 16 && magnitude != 0) {
    prefix[prefixLength++] = '0';
    prefix[prefixLength++] = conv;
  }

  const bool zeroPad = s.zero && !s.left && s.precision < 0;
  if (minDigits <= count) return EmitPaddedAscii(w, s, prefix, prefixLength, p, count, zeroPad);
  std::string body(minDigits - count, '0');
  body.append(p, count);
  EmitPaddedAscii(w, s, prefix, prefixLength, body.data(), body.size(), zeroPad);
}

// Floating conversions through std::to_chars, whose printf-style output equals snprintf's; the forms it
// does not cover (%a, the '#' flag, long double) go to snprintf itself.
template <class Ch>
void FormatFloat(Writer<Ch>& w, const Spec& s, const FormatArg& a) {
  const char conv = s.conversion;
  const char lower = static_cast<char>(conv | 0x20);
  if (lower == 'a' || s.alt || a.kind == FormatArg::LongDouble) {
    std::string spec = "%";
    if (s.left) spec += '-';
    if (s.plus) spec += '+';
    if (s.space) spec += ' ';
    if (s.zero) spec += '0';
    if (s.alt) spec += '#';
    if (s.width > 0) spec += std::to_string(s.width);
    if (s.precision >= 0) spec += '.' + std::to_string(s.precision);
    if (a.kind == FormatArg::LongDouble) spec += 'L';
    spec += conv;
    char small[512];
    const int n = a.kind == FormatArg::LongDouble ? std::snprintf(small, sizeof small, spec.c_str(), a.ld)
                                                  : std::snprintf(small, sizeof small, spec.c_str(), a.d);
    if (n < 0) return w.Marker(static_cast<Ch>(conv), "BADFLOAT");
    if (static_cast<std::size_t>(n) < sizeof small) return w.Ascii(small, static_cast<std::size_t>(n));
    std::string big(static_cast<std::size_t>(n) + 1, '\0');
    if (a.kind == FormatArg::LongDouble) std::snprintf(big.data(), big.size(), spec.c_str(), a.ld);
    else std::snprintf(big.data(), big.size(), spec.c_str(), a.d);
    return w.Ascii(big.data(), static_cast<std::size_t>(n));
  }

  const double v = a.d;
  const bool upper = conv != lower;
  char prefix[1];
  std::size_t prefixLength = 0;
  if (std::signbit(v)) prefix[prefixLength++] = '-';
  else if (s.plus) prefix[prefixLength++] = '+';
  else if (s.space) prefix[prefixLength++] = ' ';

  if (!std::isfinite(v)) {
    const char* text = std::isnan(v) ? (upper ? "NAN" : "nan") : (upper ? "INF" : "inf");
    return EmitPaddedAscii(w, s, prefix, prefixLength, text, 3, false);
  }

  const int precision = s.precision < 0 ? 6 : s.precision;
  const std::chars_format format = lower == 'f'   ? std::chars_format::fixed
                                   : lower == 'e' ? std::chars_format::scientific
                                                  : std::chars_format::general;
  char stack[400];
  std::string heap;
  char* buf = stack;
  std::size_t capacity = sizeof stack;
  // The longest fixed text is 309 integer digits, the point and the precision.
  if (static_cast<std::size_t>(precision) + 330 > capacity) {
    heap.resize(static_cast<std::size_t>(precision) + 330);
    buf = heap.data();
    capacity = heap.size();
  }
  const auto result = std::to_chars(buf, buf + capacity, std::fabs(v), format, precision);
  if (result.ec != std::errc()) return w.Marker(static_cast<Ch>(conv), "BADFLOAT");
  const std::size_t length = static_cast<std::size_t>(result.ptr - buf);
  if (upper)
    for (std::size_t i = 0; i < length; ++i)
      if (buf[i] == 'e') buf[i] = 'E';
  EmitPaddedAscii(w, s, prefix, prefixLength, buf, length, s.zero && !s.left);
}

// The text of a string argument in the output encoding.
void TextOf(const FormatArg& a, std::u16string& out) {
  const std::size_t n = a.text.length;
  switch (a.kind) {
    case FormatArg::Text16: out.assign(static_cast<const char16_t*>(a.text.data), n); break;
    case FormatArg::Text8: out = CodePageToUtf16(CP_ACP, std::string_view(static_cast<const char*>(a.text.data), n)); break;
    default: out = Utf32ToUtf16(std::wstring_view(static_cast<const wchar_t*>(a.text.data), n)); break;
  }
}
void TextOf(const FormatArg& a, std::string& out) {
  const std::size_t n = a.text.length;
  switch (a.kind) {
    case FormatArg::Text8: out.assign(static_cast<const char*>(a.text.data), n); break;
    case FormatArg::Text16: out = Utf16ToCodePage(CP_ACP, std::u16string_view(static_cast<const char16_t*>(a.text.data), n)); break;
    default: out = Utf16ToCodePage(CP_ACP, Utf32ToUtf16(std::wstring_view(static_cast<const wchar_t*>(a.text.data), n))); break;
  }
}

template <class Ch>
void FormatString(Writer<Ch>& w, const Spec& s, const FormatArg& a) {
  std::basic_string<Ch> text;
  if (!a.text.data) {
    const char* null = "(null)";
    text.assign(null, null + 6);
  } else if (a.kind == FormatArg::Text16 && std::is_same_v<Ch, char16_t> && s.width == 0 && s.precision < 0) {
    // The common case needs no copy.
    return w.Units(reinterpret_cast<const Ch*>(a.text.data), a.text.length);
  } else if (a.kind == FormatArg::Text8 && std::is_same_v<Ch, char> && s.width == 0 && s.precision < 0) {
    return w.Units(reinterpret_cast<const Ch*>(a.text.data), a.text.length);
  } else {
    TextOf(a, text);
  }
  if (s.precision >= 0 && static_cast<std::size_t>(s.precision) < text.size()) {
    std::size_t cut = static_cast<std::size_t>(s.precision);
    // Never leave half of a surrogate pair behind.
    if constexpr (std::is_same_v<Ch, char16_t>)
      if (cut > 0 && text[cut - 1] >= 0xD800 && text[cut - 1] <= 0xDBFF) --cut;
    text.resize(cut);
  }
  EmitPadded(w, s, "", 0, text.data(), text.size(), s.zero && !s.left);
}

template <class Ch>
void FormatChar(Writer<Ch>& w, const Spec& s, const FormatArg& a) {
  const unsigned long long code = a.kind == FormatArg::Signed ? static_cast<unsigned long long>(a.i) : a.u;
  std::basic_string<Ch> text;
  if (a.size == 1) {
    // A char is a byte of 8-bit text.
    const char byte = static_cast<char>(code);
    if constexpr (std::is_same_v<Ch, char16_t>) text = CodePageToUtf16(CP_ACP, std::string_view(&byte, 1));
    else text.assign(1, byte);
  } else {
    const char32_t c = code > 0x10FFFF ? U'\uFFFD' : static_cast<char32_t>(code);
    std::u16string units;
    if (c >= 0x10000) {
      units.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
      units.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
    } else {
      units.push_back(static_cast<char16_t>(c));
    }
    if constexpr (std::is_same_v<Ch, char16_t>) text = units;
    else text = Utf16ToCodePage(CP_ACP, units);
  }
  EmitPadded(w, s, "", 0, text.data(), text.size(), s.zero && !s.left);
}

template <class Ch>
void FormatPointer(Writer<Ch>& w, const Spec& s, const FormatArg& a) {
  std::uintptr_t v;
  if (a.kind == FormatArg::Pointer) v = reinterpret_cast<std::uintptr_t>(a.p);
  else if (IsInteger(a)) v = static_cast<std::uintptr_t>(a.u);
  else v = reinterpret_cast<std::uintptr_t>(a.text.data);
  char digits[2 * sizeof(void*)];
  for (std::size_t i = 0; i < sizeof digits; ++i) digits[sizeof digits - 1 - i] = "0123456789ABCDEF"[(v >> (4 * i)) & 0xF];
  Spec plain = s;
  plain.zero = false;
  EmitPaddedAscii(w, plain, "", 0, digits, sizeof digits, false);
}

// Reads digits into a value that saturates instead of overflowing.
template <class Ch>
int ReadNumber(const Ch*& p) {
  long long v = 0;
  while (*p >= '0' && *p <= '9') {
    v = std::min<long long>(v * 10 + (*p - '0'), INT_MAX);
    ++p;
  }
  return static_cast<int>(v);
}

}  // namespace

template <class Ch>
void FormatAppend(std::basic_string<Ch>& out, const Ch* format, std::span<const FormatArg> args) {
  Writer<Ch> w(out);
  std::size_t next = 0;
  const Ch* p = format;
  while (*p) {
    const Ch* q = p;
    while (*q && *q != '%') ++q;
    out.append(p, static_cast<std::size_t>(q - p));
    if (!*q) break;
    p = q + 1;
    if (*p == '%') {
      out.push_back('%');
      ++p;
      continue;
    }

    Spec s;
    for (;; ++p) {
      if (*p == '-') s.left = true;
      else if (*p == '+') s.plus = true;
      else if (*p == ' ') s.space = true;
      else if (*p == '0') s.zero = true;
      else if (*p == '#') s.alt = true;
      else break;
    }
    const char* problem = nullptr;
    auto starValue = [&](const char* bad) -> int {
      if (next >= args.size()) {
        problem = "MISSING";
        return 0;
      }
      const FormatArg& a = args[next++];
      if (!IsInteger(a)) {
        problem = bad;
        return 0;
      }
      const long long v = a.kind == FormatArg::Signed ? a.i : static_cast<long long>(std::min<unsigned long long>(a.u, INT_MAX));
      return static_cast<int>(std::clamp<long long>(v, -INT_MAX, INT_MAX));
    };
    if (*p == '*') {
      ++p;
      const int width = starValue("BADWIDTH");
      if (width < 0) s.left = true;
      s.width = width < 0 ? -width : width;
    } else {
      s.width = ReadNumber(p);
    }
    if (*p == '.') {
      ++p;
      if (*p == '*') {
        ++p;
        const int precision = starValue("BADPREC");
        s.precision = precision < 0 ? -1 : precision;
      } else {
        s.precision = ReadNumber(p);
      }
    }
    // Size prefixes, with Windows widths.
    if (p[0] == 'h' && p[1] == 'h') { s.intBits = 8; p += 2; s.narrowChar = true; }
    else if (p[0] == 'h') { s.intBits = 16; ++p; s.narrowChar = true; }
    else if (p[0] == 'l' && p[1] == 'l') { s.intBits = 64; p += 2; }
    else if (p[0] == 'l' || p[0] == 'w') { s.intBits = 32; ++p; }
    else if (p[0] == 'L') { s.intBits = 64; s.longDouble = true; ++p; }
    else if (p[0] == 'I' && p[1] == '6' && p[2] == '4') { s.intBits = 64; p += 3; }
    else if (p[0] == 'I' && p[1] == '3' && p[2] == '2') { s.intBits = 32; p += 3; }
    else if (p[0] == 'I' || p[0] == 'z' || p[0] == 'j' || p[0] == 't') { s.intBits = 8 * sizeof(void*); ++p; }

    const Ch conv = *p;
    if (!conv) {
      w.Marker(0, "NOVERB");
      break;
    }
    ++p;
    s.conversion = conv < 0x80 ? static_cast<char>(conv) : '?';
    if (conv == '%') {  // "%5%" prints a lone '%', as glibc does
      out.push_back('%');
      continue;
    }
    // A width or precision this large is a mistake, not a layout: refuse it before it asks for gigabytes.
    if (s.width > kMaxWidth || s.precision > kMaxWidth) problem = s.width > kMaxWidth ? "BADWIDTH" : "BADPREC";

    enum Want { Integer, Floating, Character, Text, Address, Refused, Unknown } want;
    switch (conv) {
      case 'd': case 'i': case 'u': case 'o': case 'x': case 'X': want = Integer; break;
      case 'f': case 'F': case 'e': case 'E': case 'g': case 'G': case 'a': case 'A': want = Floating; break;
      case 'c': case 'C': want = Character; break;
      case 's': case 'S': want = Text; break;
      case 'p': want = Address; break;
      case 'n': want = Refused; break;
      default: want = Unknown; break;
    }
    if (want == Unknown) {
      w.Marker(conv, "BADVERB");
      continue;
    }
    if (next >= args.size()) {
      w.Marker(conv, "MISSING");
      continue;
    }
    const FormatArg& a = args[next++];
    if (problem) {
      w.Marker(conv, problem);
      continue;
    }
    switch (want) {
      case Integer:
        if (IsInteger(a)) FormatInteger(w, s, a);
        else w.Marker(conv, KindName(a));
        break;
      case Floating:
        if (a.kind == FormatArg::Double || a.kind == FormatArg::LongDouble) FormatFloat(w, s, a);
        else w.Marker(conv, KindName(a));
        break;
      case Character:
        if (IsInteger(a)) FormatChar(w, s, a);
        else w.Marker(conv, KindName(a));
        break;
      case Text:
        if (a.kind == FormatArg::Text16 || a.kind == FormatArg::Text8 || a.kind == FormatArg::Text32)
          FormatString(w, s, a);
        else if (a.kind == FormatArg::Pointer && !a.p)
          FormatString(w, s, NullText());
        else
          w.Marker(conv, KindName(a));
        break;
      case Address:
        if (a.kind != FormatArg::Double && a.kind != FormatArg::LongDouble) FormatPointer(w, s, a);
        else w.Marker(conv, KindName(a));
        break;
      default:
        w.Marker(conv, "UNSUPPORTED");
        break;
    }
  }
}

template QUARRIX_API void FormatAppend<char16_t>(std::u16string&, const char16_t*, std::span<const FormatArg>);
template QUARRIX_API void FormatAppend<char>(std::string&, const char*, std::span<const FormatArg>);

}  // namespace quarrix::detail
