#pragma once
// Fast scans over UTF-16 text for the search loop: one unit, a literal, a set of units. SSE2 is part of
// every x86-64 processor; other targets take the plain loops.
#include "Elements.h"

#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quarrix::detail::regex {

// The first p in [from, end) with *p == c, or end.
inline const char16_t* FindUnit(const char16_t* p, const char16_t* end, char16_t c) noexcept {
#if defined(__SSE2__)
  const __m128i needle = _mm_set1_epi16(static_cast<short>(c));
  for (; end - p >= 8; p += 8) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const int mask = _mm_movemask_epi8(_mm_cmpeq_epi16(v, needle));
    if (mask) return p + (__builtin_ctz(static_cast<unsigned>(mask)) >> 1);
  }
#endif
  for (; p < end; ++p)
    if (*p == c) return p;
  return end;
}

// The first index i >= from with text[i, i + lit.size()) == lit and i <= last, or -1.
inline int FindLiteral(std::u16string_view text, int from, int last, std::u16string_view lit) noexcept {
  const char16_t* const base = text.data();
  const int n = static_cast<int>(lit.size());
  if (last > static_cast<int>(text.size()) - n) last = static_cast<int>(text.size()) - n;
  if (from > last) return -1;
  if (n == 1) {
    const char16_t* p = FindUnit(base + from, base + last + 1, lit[0]);
    return p == base + last + 1 ? -1 : static_cast<int>(p - base);
  }
  const auto rest = static_cast<std::size_t>(n - 1) * sizeof(char16_t);
  int i = from;
#if defined(__SSE2__)
  // Compare the first and the last unit of the literal at eight positions at once.
  const __m128i first = _mm_set1_epi16(static_cast<short>(lit[0]));
  const __m128i lastUnit = _mm_set1_epi16(static_cast<short>(lit[static_cast<std::size_t>(n - 1)]));
  for (; i + 7 <= last; i += 8) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(base + i));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(base + i + n - 1));
    unsigned mask = static_cast<unsigned>(
        _mm_movemask_epi8(_mm_and_si128(_mm_cmpeq_epi16(a, first), _mm_cmpeq_epi16(b, lastUnit))));
    while (mask) {
      const int k = i + static_cast<int>(__builtin_ctz(mask) >> 1);
      if (std::memcmp(base + k + 1, lit.data() + 1, rest) == 0) return k;
      mask &= mask - 1;
      mask &= mask - 1;  // both bytes of the unit
    }
  }
#endif
  for (; i <= last; ++i) {
    const char16_t* p = FindUnit(base + i, base + last + 1, lit[0]);
    if (p == base + last + 1) return -1;
    i = static_cast<int>(p - base);
    if (std::memcmp(p + 1, lit.data() + 1, rest) == 0) return i;
  }
  return -1;
}

// Finds the units of a first set; set up once per search, since candidates can stand close together.
class FirstSetScanner {
 public:
  explicit FirstSetScanner(const FirstSet& set) noexcept : m_set(set) {
#if defined(__SSE2__)
    for (int k = 0; k < set.ranges; ++k) {
      m_low[k] = _mm_set1_epi16(static_cast<short>(set.rangeLow[k]));
      m_span[k] = _mm_set1_epi16(static_cast<short>(set.rangeHigh[k] - set.rangeLow[k]));
    }
#endif
  }

  // The first p in [p, end) whose unit is in the set, or end.
  const char16_t* Find(const char16_t* p, const char16_t* end) const noexcept {
#if defined(__SSE2__)
    if (m_set.ranges > 0) {
      // Unit u is in [low, high] when (u - low) does not exceed (high - low), compared without sign.
      const __m128i zero = _mm_setzero_si128();
      const __m128i ones = _mm_set1_epi16(-1);
      const __m128i top = _mm_set1_epi16(255);
      for (; end - p >= 8; p += 8) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        __m128i hit = m_set.high ? _mm_xor_si128(_mm_cmpeq_epi16(_mm_subs_epu16(v, top), zero), ones) : zero;
        for (int k = 0; k < m_set.ranges; ++k)
          hit = _mm_or_si128(hit, _mm_cmpeq_epi16(_mm_subs_epu16(_mm_sub_epi16(v, m_low[k]), m_span[k]), zero));
        const int mask = _mm_movemask_epi8(hit);
        if (mask) return p + (__builtin_ctz(static_cast<unsigned>(mask)) >> 1);
      }
    }
#endif
    for (; p < end; ++p)
      if (m_set.Test(*p)) return p;
    return end;
  }

 private:
  const FirstSet& m_set;
#if defined(__SSE2__)
  __m128i m_low[4], m_span[4];
#endif
};

}  // namespace quarrix::detail::regex
