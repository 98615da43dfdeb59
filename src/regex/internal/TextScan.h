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

// The first p in [from, end) whose unit may start a match, or end.
inline const char16_t* ScanFirstSet(const char16_t* p, const char16_t* end, const FirstSet& set) noexcept {
  for (; p < end; ++p)
    if (set.Test(*p)) return p;
  return end;
}

}  // namespace quarrix::detail::regex
