#include <quarrix/framework/CodePage.h>
#include <quarrix/framework/LastError.h>

#include "internal/Iconv.h"

#include <array>
#include <atomic>
#include <climits>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quarrix {
namespace {

struct CodePageEntry {
  UINT codePage;
  const char* iconvName;
  bool singleByte;
};

constexpr CodePageEntry kCodePages[] = {
    {437, "CP437", true},        {737, "CP737", true},        {775, "CP775", true},
    {850, "CP850", true},        {852, "CP852", true},        {855, "CP855", true},
    {857, "CP857", true},        {860, "CP860", true},        {861, "CP861", true},
    {862, "CP862", true},        {863, "CP863", true},        {864, "CP864", true},
    {865, "CP865", true},        {866, "CP866", true},        {869, "CP869", true},
    {874, "CP874", true},        {1250, "CP1250", true},      {1251, "CP1251", true},
    {1252, "CP1252", true},      {1253, "CP1253", true},      {1254, "CP1254", true},
    {1255, "CP1255", true},      {1256, "CP1256", true},      {1257, "CP1257", true},
    {1258, "CP1258", true},      {10000, "MACINTOSH", true},  {20127, "ASCII", true},
    {20866, "KOI8-R", true},     {21866, "KOI8-U", true},     {28591, "ISO-8859-1", true},
    {28592, "ISO-8859-2", true}, {28593, "ISO-8859-3", true}, {28594, "ISO-8859-4", true},
    {28595, "ISO-8859-5", true}, {28596, "ISO-8859-6", true}, {28597, "ISO-8859-7", true},
    {28598, "ISO-8859-8", true}, {28599, "ISO-8859-9", true}, {28603, "ISO-8859-13", true},
    {28605, "ISO-8859-15", true}, {932, "CP932", false},      {936, "GBK", false},
    {949, "CP949", false},       {950, "BIG5", false},        {54936, "GB18030", false},
};
constexpr std::size_t kCodePageCount = std::size(kCodePages);

std::atomic<UINT> g_ansiCodePage{CP_UTF8};

UINT Resolve(UINT codePage) {
  if (codePage == CP_ACP || codePage == CP_OEMCP || codePage == CP_THREAD_ACP) return g_ansiCodePage.load();
  if (codePage == 2) return 10000;  // CP_MACCP
  return codePage;
}

const CodePageEntry* FindEntry(UINT codePage) {
  for (const auto& e : kCodePages)
    if (e.codePage == codePage) return &e;
  return nullptr;
}

// A single-byte code page as two tables: byte -> unit, and unit -> byte in pages of 256 (value byte + 1,
// 0 where the code page has no byte for the unit). Built once from iconv and never changed afterwards.
struct SingleByteCodec {
  bool valid = false;
  char16_t decode[256] = {};
  bool undefined[256] = {};  // decodes to U+FFFD: the code page has nothing there
  std::uint8_t pageOf[256] = {};
  std::vector<std::array<std::uint16_t, 256>> pages{1};  // page 0 stays empty

  int Encode(char16_t c) const {
    const auto& page = pages[pageOf[c >> 8]];
    return page[c & 0xFF] - 1;
  }
};

std::unique_ptr<SingleByteCodec> BuildCodec(const CodePageEntry& e) {
  auto codec = std::make_unique<SingleByteCodec>();
  std::int32_t table[256];
  if (!detail::IconvSingleByteTable(e.iconvName, table)) return codec;
  codec->valid = true;
  for (int b = 0; b < 256; ++b) {
    char32_t cp = table[b] >= 0 ? static_cast<char32_t>(table[b]) : 0xFFFD;
    // Undefined bytes of the C1 range keep their value, so that text passes through unchanged, as on Windows.
    if (table[b] < 0 && b >= 0x80 && b <= 0x9F) cp = static_cast<char32_t>(b);
    if (cp > 0xFFFF) cp = 0xFFFD;
    codec->decode[b] = static_cast<char16_t>(cp);
    codec->undefined[b] = cp == 0xFFFD;
    if (cp == 0xFFFD) continue;
    auto& page = codec->pageOf[cp >> 8];
    if (page == 0) {
      page = static_cast<std::uint8_t>(codec->pages.size());
      codec->pages.emplace_back();
      codec->pages.back().fill(0);
    }
    auto& slot = codec->pages[page][cp & 0xFF];
    if (slot == 0) slot = static_cast<std::uint16_t>(b + 1);  // the first byte wins where two decode alike
  }
  return codec;
}

const SingleByteCodec* GetCodec(const CodePageEntry& e) {
  static std::atomic<const SingleByteCodec*> cache[kCodePageCount] = {};
  static std::mutex buildMutex;
  const std::size_t index = static_cast<std::size_t>(&e - kCodePages);
  if (const SingleByteCodec* c = cache[index].load(std::memory_order_acquire)) return c->valid ? c : nullptr;
  std::lock_guard lock(buildMutex);
  const SingleByteCodec* c = cache[index].load(std::memory_order_acquire);
  if (!c) {
    c = BuildCodec(e).release();  // lives for the process, like a static table
    cache[index].store(c, std::memory_order_release);
  }
  return c->valid ? c : nullptr;
}

bool IsUsable(const CodePageEntry& e) {
  if (e.singleByte) return GetCodec(e) != nullptr;
  static std::atomic<signed char> known[kCodePageCount] = {};  // 0 untested, 1 usable, -1 not
  const std::size_t index = static_cast<std::size_t>(&e - kCodePages);
  signed char k = known[index].load();
  if (k == 0) {
    std::u16string probe;
    k = detail::IconvDecode(e.iconvName, "A", probe) ? 1 : -1;
    known[index].store(k);
  }
  return k > 0;
}

// --- output sinks: the codecs below write through one of these, so one loop serves sizing and writing ----

template <class T>
class BufferSink {
 public:
  BufferSink(T* p, std::size_t capacity) : m_p(p), m_capacity(capacity) {}
  T* Room(std::size_t k) {
    if (m_capacity - m_n < k) return nullptr;
    T* r = m_p + m_n;
    m_n += k;
    return r;
  }
  bool Put(T c) {
    if (m_n == m_capacity) return false;
    m_p[m_n++] = c;
    return true;
  }
  std::size_t Count() const { return m_n; }

 private:
  T* m_p;
  std::size_t m_capacity;
  std::size_t m_n = 0;
};

template <class T>
class CountSink {
 public:
  T* Room(std::size_t k) {
    m_n += k;
    return m_scratch;
  }
  bool Put(T) {
    ++m_n;
    return true;
  }
  std::size_t Count() const { return m_n; }

 private:
  T m_scratch[32];
  std::size_t m_n = 0;
};

// Appends to a string through a small cache-resident buffer: the string is reserved at its upper bound, which
// costs address space only, so a conversion touches no more memory than its result needs.
template <class T>
class AppendSink {
 public:
  AppendSink(std::basic_string<T>& out, std::size_t upperBound) : m_out(out) { m_out.reserve(m_out.size() + upperBound); }
  ~AppendSink() { Flush(); }
  AppendSink(const AppendSink&) = delete;
  AppendSink& operator=(const AppendSink&) = delete;
  T* Room(std::size_t k) {
    if (kSize - m_n < k) Flush();
    T* r = m_buf + m_n;
    m_n += k;
    return r;
  }
  bool Put(T c) {
    if (m_n == kSize) Flush();
    m_buf[m_n++] = c;
    return true;
  }
  void Flush() {
    m_out.append(m_buf, m_n);
    m_n = 0;
  }

 private:
  static constexpr std::size_t kSize = 4096;
  std::basic_string<T>& m_out;
  T m_buf[kSize];
  std::size_t m_n = 0;
};

// --- UTF-8 -----------------------------------------------------------------------------------------------

// Decodes UTF-8; each maximal invalid subsequence becomes one U+FFFD and sets invalid.
// Returns false when the sink ran out of room.
template <class Sink>
bool DecodeUtf8(const unsigned char* s, std::size_t n, Sink& sink, bool& invalid) {
  std::size_t i = 0;
  while (i < n) {
#if defined(__SSE2__)
    while (n - i >= 16) {
      const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
      if (_mm_movemask_epi8(v) != 0) break;
      char16_t* o = sink.Room(16);
      if (!o) return false;
      const __m128i zero = _mm_setzero_si128();
      _mm_storeu_si128(reinterpret_cast<__m128i*>(o), _mm_unpacklo_epi8(v, zero));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 8), _mm_unpackhi_epi8(v, zero));
      i += 16;
    }
    if (i == n) break;
#endif
    const unsigned char c = s[i];
    if (c < 0x80) {
      if (!sink.Put(c)) return false;
      ++i;
      continue;
    }
    std::uint32_t cp;
    int length;
    unsigned char lo = 0x80, hi = 0xBF;  // the allowed range of the next byte
    if (c >= 0xC2 && c <= 0xDF) {
      length = 2;
      cp = c & 0x1F;
    } else if (c >= 0xE0 && c <= 0xEF) {
      length = 3;
      cp = c & 0x0F;
      if (c == 0xE0) lo = 0xA0;       // no overlong forms
      else if (c == 0xED) hi = 0x9F;  // no encoded surrogates
    } else if (c >= 0xF0 && c <= 0xF4) {
      length = 4;
      cp = c & 0x07;
      if (c == 0xF0) lo = 0x90;
      else if (c == 0xF4) hi = 0x8F;  // nothing above U+10FFFF
    } else {
      invalid = true;
      if (!sink.Put(u'\uFFFD')) return false;
      ++i;
      continue;
    }
    std::size_t j = i + 1;
    bool complete = true;
    for (int k = 1; k < length; ++k, ++j) {
      if (j >= n || s[j] < lo || s[j] > hi) {
        complete = false;
        break;
      }
      lo = 0x80;
      hi = 0xBF;
      cp = cp << 6 | (s[j] & 0x3F);
    }
    i = j;
    if (!complete) {
      invalid = true;
      if (!sink.Put(u'\uFFFD')) return false;
    } else if (cp >= 0x10000) {
      char16_t* o = sink.Room(2);
      if (!o) return false;
      cp -= 0x10000;
      o[0] = static_cast<char16_t>(0xD800 + (cp >> 10));
      o[1] = static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
    } else if (!sink.Put(static_cast<char16_t>(cp))) {
      return false;
    }
  }
  return true;
}

// Encodes UTF-16 as UTF-8; an unpaired surrogate becomes EF BF BD and sets invalid.
template <class Sink>
bool EncodeUtf8(const char16_t* s, std::size_t n, Sink& sink, bool& invalid) {
  std::size_t i = 0;
  while (i < n) {
#if defined(__SSE2__)
    while (n - i >= 8) {
      const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
      const __m128i high = _mm_and_si128(v, _mm_set1_epi16(static_cast<short>(0xFF80)));
      if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF) break;
      char* o = sink.Room(8);
      if (!o) return false;
      _mm_storel_epi64(reinterpret_cast<__m128i*>(o), _mm_packus_epi16(v, v));
      i += 8;
    }
    if (i == n) break;
#endif
    std::uint32_t c = s[i++];
    if (c < 0x80) {
      if (!sink.Put(static_cast<char>(c))) return false;
      continue;
    }
    if (c >= 0xD800 && c <= 0xDFFF) {
      if (c <= 0xDBFF && i < n && s[i] >= 0xDC00 && s[i] <= 0xDFFF) {
        c = 0x10000 + ((c - 0xD800) << 10) + (s[i++] - 0xDC00);
      } else {
        invalid = true;
        c = 0xFFFD;
      }
    }
    const std::size_t length = c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
    char* o = sink.Room(length);
    if (!o) return false;
    if (length == 2) {
      o[0] = static_cast<char>(0xC0 | c >> 6);
      o[1] = static_cast<char>(0x80 | (c & 0x3F));
    } else if (length == 3) {
      o[0] = static_cast<char>(0xE0 | c >> 12);
      o[1] = static_cast<char>(0x80 | (c >> 6 & 0x3F));
      o[2] = static_cast<char>(0x80 | (c & 0x3F));
    } else {
      o[0] = static_cast<char>(0xF0 | c >> 18);
      o[1] = static_cast<char>(0x80 | (c >> 12 & 0x3F));
      o[2] = static_cast<char>(0x80 | (c >> 6 & 0x3F));
      o[3] = static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return true;
}

// --- single-byte code pages ------------------------------------------------------------------------------

template <class Sink>
bool DecodeSingleByte(const SingleByteCodec& codec, const unsigned char* s, std::size_t n, Sink& sink,
                      bool& invalid) {
  for (std::size_t i = 0; i < n; ++i) {
    if (codec.undefined[s[i]]) invalid = true;
    if (!sink.Put(codec.decode[s[i]])) return false;
  }
  return true;
}

// A surrogate pair is one character and becomes one default character when it cannot be represented.
template <class Sink>
bool EncodeSingleByte(const SingleByteCodec& codec, const char16_t* s, std::size_t n, Sink& sink,
                      char defaultChar, bool& usedDefault) {
  for (std::size_t i = 0; i < n; ++i) {
    const char16_t c = s[i];
    const int b = (c >= 0xD800 && c <= 0xDFFF) ? -1 : codec.Encode(c);
    if (b >= 0) {
      if (!sink.Put(static_cast<char>(b))) return false;
      continue;
    }
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < n && s[i + 1] >= 0xDC00 && s[i + 1] <= 0xDFFF) ++i;
    usedDefault = true;
    if (!sink.Put(defaultChar)) return false;
  }
  return true;
}

std::u32string ToCodePoints(std::u16string_view s) {
  std::u32string r;
  r.reserve(s.size());
  for (std::size_t i = 0; i < s.size(); ++i) {
    char32_t c = s[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < s.size() && s[i + 1] >= 0xDC00 && s[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (s[++i] - 0xDC00);
    }
    r.push_back(c);
  }
  return r;
}

}  // namespace

UINT GetAnsiCodePage() noexcept { return g_ansiCodePage.load(); }

bool SetAnsiCodePage(UINT codePage) {
  if (!IsValidCodePage(codePage)) return false;
  g_ansiCodePage.store(codePage);
  return true;
}

BOOL IsValidCodePage(UINT codePage) {
  // The pseudo code pages only stand for others, as on Windows.
  if (codePage == CP_ACP || codePage == CP_OEMCP || codePage == 2 || codePage == CP_THREAD_ACP) return FALSE;
  if (codePage == CP_UTF8) return TRUE;
  const CodePageEntry* e = FindEntry(codePage);
  return e && IsUsable(*e) ? TRUE : FALSE;
}

int MultiByteToWideChar(UINT codePage, DWORD flags, const char* src, int cbSrc, char16_t* dst, int cchDst) {
  if (!src || cbSrc == 0 || cbSrc < -1 || cchDst < 0 || (!dst && cchDst != 0) ||
      (dst && static_cast<const void*>(src) == static_cast<const void*>(dst))) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  codePage = Resolve(codePage);
  const CodePageEntry* entry = codePage == CP_UTF8 ? nullptr : FindEntry(codePage);
  if ((codePage != CP_UTF8 && (!entry || !IsUsable(*entry)))) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const DWORD allowed = codePage == CP_UTF8 ? MB_ERR_INVALID_CHARS
                                            : MB_PRECOMPOSED | MB_COMPOSITE | MB_USEGLYPHCHARS | MB_ERR_INVALID_CHARS;
  if (flags & ~allowed) {
    SetLastError(ERROR_INVALID_FLAGS);
    return 0;
  }
  const std::size_t n = cbSrc == -1 ? std::strlen(src) + 1 : static_cast<std::size_t>(cbSrc);
  const auto* s = reinterpret_cast<const unsigned char*>(src);
  bool invalid = false;

  auto run = [&](auto& sink) -> bool {
    if (codePage == CP_UTF8) return DecodeUtf8(s, n, sink, invalid);
    if (entry->singleByte) return DecodeSingleByte(*GetCodec(*entry), s, n, sink, invalid);
    std::u16string decoded;
    detail::IconvDecode(entry->iconvName, std::string_view(src, n), decoded);
    for (char16_t c : decoded) {
      if (c == u'\uFFFD') invalid = true;
      if (!sink.Put(c)) return false;
    }
    return true;
  };

  std::size_t count;
  if (cchDst == 0) {
    CountSink<char16_t> sink;
    run(sink);
    count = sink.Count();
  } else {
    BufferSink<char16_t> sink(dst, static_cast<std::size_t>(cchDst));
    const bool fits = run(sink);
    if (!fits) {
      SetLastError(ERROR_INSUFFICIENT_BUFFER);
      return 0;
    }
    count = sink.Count();
  }
  if (invalid && (flags & MB_ERR_INVALID_CHARS)) {
    SetLastError(ERROR_NO_UNICODE_TRANSLATION);
    return 0;
  }
  if (count > INT_MAX) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  return static_cast<int>(count);
}

int WideCharToMultiByte(UINT codePage, DWORD flags, const char16_t* src, int cchSrc, char* dst, int cbDst,
                        const char* defaultChar, BOOL* usedDefaultChar) {
  if (!src || cchSrc == 0 || cchSrc < -1 || cbDst < 0 || (!dst && cbDst != 0) ||
      (dst && static_cast<const void*>(src) == static_cast<const void*>(dst))) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  codePage = Resolve(codePage);
  const CodePageEntry* entry = codePage == CP_UTF8 ? nullptr : FindEntry(codePage);
  if (codePage != CP_UTF8 && (!entry || !IsUsable(*entry))) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  if (codePage == CP_UTF8) {
    if (defaultChar || usedDefaultChar) {
      SetLastError(ERROR_INVALID_PARAMETER);
      return 0;
    }
    if (flags & ~WC_ERR_INVALID_CHARS) {
      SetLastError(ERROR_INVALID_FLAGS);
      return 0;
    }
  } else if (flags & ~(WC_COMPOSITECHECK | WC_DISCARDNS | WC_SEPCHARS | WC_DEFAULTCHAR | WC_NO_BEST_FIT_CHARS)) {
    SetLastError(ERROR_INVALID_FLAGS);
    return 0;
  }
  if (usedDefaultChar) *usedDefaultChar = FALSE;
  const std::size_t n = cchSrc == -1 ? std::char_traits<char16_t>::length(src) + 1 : static_cast<std::size_t>(cchSrc);
  const char fallback = defaultChar ? *defaultChar : '?';
  bool invalid = false;
  bool used = false;

  auto run = [&](auto& sink) -> bool {
    if (codePage == CP_UTF8) return EncodeUtf8(src, n, sink, invalid);
    if (entry->singleByte) return EncodeSingleByte(*GetCodec(*entry), src, n, sink, fallback, used);
    std::string encoded;
    detail::IconvEncode(entry->iconvName, ToCodePoints(std::u16string_view(src, n)), fallback, &used, encoded);
    for (char c : encoded)
      if (!sink.Put(c)) return false;
    return true;
  };

  std::size_t count;
  if (cbDst == 0) {
    CountSink<char> sink;
    run(sink);
    count = sink.Count();
  } else {
    BufferSink<char> sink(dst, static_cast<std::size_t>(cbDst));
    if (!run(sink)) {
      SetLastError(ERROR_INSUFFICIENT_BUFFER);
      return 0;
    }
    count = sink.Count();
  }
  if (invalid && (flags & WC_ERR_INVALID_CHARS)) {
    SetLastError(ERROR_NO_UNICODE_TRANSLATION);
    return 0;
  }
  if (usedDefaultChar && used) *usedDefaultChar = TRUE;
  if (count > INT_MAX) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  return static_cast<int>(count);
}

std::u16string Utf8ToUtf16(std::string_view utf8) {
  std::u16string out;
  {
    // Never more units than bytes: a four-byte sequence gives two units, every invalid byte at most one.
    AppendSink<char16_t> sink(out, utf8.size());
    bool invalid = false;
    DecodeUtf8(reinterpret_cast<const unsigned char*>(utf8.data()), utf8.size(), sink, invalid);
  }
  return out;
}

namespace {
std::string Utf16ToUtf8Checked(std::u16string_view utf16, bool* replaced) {
  std::string out;
  bool invalid = false;
  {
    AppendSink<char> sink(out, utf16.size() * 3);
    EncodeUtf8(utf16.data(), utf16.size(), sink, invalid);
  }
  if (invalid && replaced) *replaced = true;
  return out;
}
}  // namespace

std::string Utf16ToUtf8(std::u16string_view utf16) { return Utf16ToUtf8Checked(utf16, nullptr); }

std::u16string Utf32ToUtf16(std::wstring_view utf32) {
  std::u16string out;
  out.reserve(utf32.size());
  for (wchar_t w : utf32) {
    const auto c = static_cast<std::uint32_t>(w);
    if (c >= 0x10000 && c <= 0x10FFFF) {
      out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
    } else {
      out.push_back(c > 0x10FFFF ? u'\uFFFD' : static_cast<char16_t>(c));
    }
  }
  return out;
}

std::u16string CodePageToUtf16(UINT codePage, std::string_view text) {
  codePage = Resolve(codePage);
  if (codePage == CP_UTF8) return Utf8ToUtf16(text);
  std::u16string out;
  const CodePageEntry* entry = FindEntry(codePage);
  if (entry && entry->singleByte) {
    if (const SingleByteCodec* codec = GetCodec(*entry)) {
      {
        AppendSink<char16_t> sink(out, text.size());
        bool invalid = false;
        DecodeSingleByte(*codec, reinterpret_cast<const unsigned char*>(text.data()), text.size(), sink, invalid);
      }
      return out;
    }
  } else if (entry && detail::IconvDecode(entry->iconvName, text, out)) {
    return out;
  }
  out.assign(text.begin(), text.end());
  for (std::size_t i = 0; i < text.size(); ++i) out[i] = static_cast<unsigned char>(text[i]);
  return out;
}

std::string Utf16ToCodePage(UINT codePage, std::u16string_view text, char defaultChar, bool* usedDefault) {
  codePage = Resolve(codePage);
  const char fallback = defaultChar ? defaultChar : '?';
  const CodePageEntry* entry = codePage == CP_UTF8 ? nullptr : FindEntry(codePage);
  if (entry && entry->singleByte) {
    if (const SingleByteCodec* codec = GetCodec(*entry)) {
      std::string out;
      bool used = false;
      {
        AppendSink<char> sink(out, text.size());
        EncodeSingleByte(*codec, text.data(), text.size(), sink, fallback, used);
      }
      if (used && usedDefault) *usedDefault = true;
      return out;
    }
  } else if (entry) {
    std::string out;
    if (detail::IconvEncode(entry->iconvName, ToCodePoints(text), fallback, usedDefault, out)) return out;
  }
  return Utf16ToUtf8Checked(text, usedDefault);
}

}  // namespace quarrix
