#pragma once
// Classification and simple case mapping of UTF-16 code units, the same for every process whatever its
// locale: the tables follow the C library's Unicode data (the C.UTF-8 locale) and are built once, on first use.
// Surrogate units have no class and map to themselves.
#include <quarrix/framework/Export.h>

#include <cstdint>

namespace quarrix {
namespace detail {

enum CharFlag : std::uint16_t {
  kCharAlpha = 1 << 0,
  kCharDigit = 1 << 1,  // 0-9 only
  kCharSpace = 1 << 2,
  kCharUpper = 1 << 3,
  kCharLower = 1 << 4,
  kCharPunct = 1 << 5,
  kCharCntrl = 1 << 6,
  kCharPrint = 1 << 7,
  kCharGraph = 1 << 8,
  kCharXDigit = 1 << 9,
  kCharBlank = 1 << 10,
  kCharWord = 1 << 11,  // alpha, digit or '_'
};

struct UnicodeTables {
  std::uint16_t flags[0x10000];
  char16_t upper[0x10000];
  char16_t lower[0x10000];
};

// The process-wide tables; safe to call from any thread.
QUARRIX_API const UnicodeTables& GetUnicodeTables() noexcept;

}  // namespace detail

inline bool HasCharFlag(char16_t c, std::uint16_t flag) noexcept {
  return (detail::GetUnicodeTables().flags[c] & flag) != 0;
}
inline char16_t ToUpperChar(char16_t c) noexcept { return detail::GetUnicodeTables().upper[c]; }
inline char16_t ToLowerChar(char16_t c) noexcept { return detail::GetUnicodeTables().lower[c]; }
inline bool IsSpaceChar(char16_t c) noexcept { return HasCharFlag(c, detail::kCharSpace); }
inline bool IsAlphaChar(char16_t c) noexcept { return HasCharFlag(c, detail::kCharAlpha); }
inline bool IsDigitChar(char16_t c) noexcept { return c >= u'0' && c <= u'9'; }
inline bool IsAlnumChar(char16_t c) noexcept { return HasCharFlag(c, detail::kCharAlpha | detail::kCharDigit); }
inline bool IsWordChar(char16_t c) noexcept { return HasCharFlag(c, detail::kCharWord); }
inline bool IsUpperChar(char16_t c) noexcept { return HasCharFlag(c, detail::kCharUpper); }
inline bool IsLowerChar(char16_t c) noexcept { return HasCharFlag(c, detail::kCharLower); }

}  // namespace quarrix
