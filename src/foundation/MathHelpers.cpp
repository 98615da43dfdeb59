#include <quarrix/foundation/MathHelpers.h>

#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstdlib>

namespace quarrix {
namespace {

// Truncation toward zero into 32 bits, giving -2147483648 for what does not fit (and NaN), as the
// processor's conversion does; a plain cast would be undefined there.
int TruncateToInt32(double y) noexcept {
  if (!(y > -2147483649.0 && y < 2147483648.0)) return INT_MIN;
  return static_cast<int>(y);
}

double RoundCore(double y) noexcept {
  if (y >= 0) return TruncateToInt32(y + 0.5);
  const int t = TruncateToInt32(y);
  if (y - t > -0.5) return t;
  return TruncateToInt32(y - 0.5);
}

double PowerOfTen(long long k) noexcept { return k == 2 ? 100.0 : std::pow(10.0, static_cast<double>(k)); }

}  // namespace

int Sign(int n) noexcept { return n > 0 ? 1 : n < 0 ? -1 : 0; }

int SignDiff(int a, int b) noexcept { return a > b ? 1 : a < b ? -1 : 0; }

int gcd(int a, int b) noexcept {
  if (a < 1) return b;
  if (b == 0) return a;
  // Magnitudes in 64 bits: -2147483648 has no positive int.
  long long x = a, y = std::llabs(static_cast<long long>(b));
  while (x > 0) {
    const long long hi = x > y ? x : y, lo = x > y ? y : x;
    x = hi % lo;
    y = lo;
  }
  return static_cast<int>(y);
}

bool AreEqual(double a, double b, double eps) noexcept { return std::fabs(a - b) <= eps; }

bool IsFirstInRest(int first, ...) noexcept {
  va_list args;
  va_start(args, first);
  bool found = false;
  for (int i = 0; i < 20; ++i) {
    const int v = va_arg(args, int);
    if (v == 52428) break;
    if (v == first) {
      found = true;
      break;
    }
  }
  va_end(args);
  return found;
}

double roundSpecial(double x) noexcept { return RoundCore(x); }

double roundDigits(double x, int n) noexcept {
  const double f = PowerOfTen(n);
  return RoundCore(f * x) / f;
}

double roundSignificantDigits(double x, int n) noexcept {
  if (x == 0) return x;
  const long long e = TruncateToInt32(std::ceil(std::log10(std::fabs(x))));
  const double f = PowerOfTen(static_cast<long long>(n) - e);
  return RoundCore(f * x) / f;
}

}  // namespace quarrix
