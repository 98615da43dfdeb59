#pragma once
// Small integer helpers and the rounding functions that values and reports use.
//
// The rounding functions round halves away from zero through a 32-bit integer, and that limit shows in their
// results: anything whose scaled value lies outside the 32-bit range (and NaN) rounds to -2147483648, so
// roundSpecial(3e9) is -2147483648.0. roundDigits(1.005, 2) is 1.0, because 1.005 * 100 is 100.49999...
#include <quarrix/framework/Export.h>

#include <concepts>

namespace quarrix {

// 1 if n > 0, 0 if n == 0, -1 if n < 0.
QUARRIX_API int Sign(int n) noexcept;
// 1 if a > b, 0 if a == b, -1 if a < b.
QUARRIX_API int SignDiff(int a, int b) noexcept;
// Greatest common divisor by the remainder method. If a < 1 the result is b unchanged (gcd(0, 12) == 12,
// gcd(-4, 6) == 6). Where the plain method would divide by zero (b == 0) the result is a; a negative b is
// taken by its magnitude.
QUARRIX_API int gcd(int a, int b) noexcept;
// |a - b| <= eps.
QUARRIX_API bool AreEqual(double a, double b, double eps) noexcept;

// True when first equals one of the following values. The list ends with the sentinel 52428 (0xCCCC) and at
// most 20 values are compared: false when the sentinel comes first or the match lies beyond the 20th value.
// The C-style form trusts the caller to end the list with the sentinel; prefer the template below, which
// C++ calls choose automatically and which never reads past its arguments.
QUARRIX_API bool IsFirstInRest(int first, ...) noexcept;

template <std::integral... Rest>
bool IsFirstInRest(int first, Rest... rest) noexcept {
  const long long values[] = {static_cast<long long>(rest)..., 52428};
  for (int i = 0; i < 20 && i < static_cast<int>(sizeof...(Rest)); ++i) {
    if (values[i] == 52428) return false;
    if (values[i] == first) return true;
  }
  return false;
}

// x rounded to an integer, halves away from zero (see above for the 32-bit limit).
QUARRIX_API double roundSpecial(double x) noexcept;
// x rounded to n decimal places; a negative n rounds to tens, hundreds, ... (roundDigits(1234.5, -2) == 1200).
QUARRIX_API double roundDigits(double x, int n) noexcept;
// x rounded to n significant digits; 0 stays 0 (roundSignificantDigits(999, 2) == 1000).
QUARRIX_API double roundSignificantDigits(double x, int n) noexcept;

}  // namespace quarrix
