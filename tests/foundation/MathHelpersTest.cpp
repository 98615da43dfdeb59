#include <quarrix/foundation/MathHelpers.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quarrix {
namespace {

struct RoundRow {
  const char* name;
  double (*fn)(double, int);
  double x;
  int n;
  double expected;
};

double Special(double x, int) { return roundSpecial(x); }

TEST(Rounding, Table) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const RoundRow rows[] = {
      {"half up", Special, 2.5, 0, 3.0},
      {"half away from zero below zero", Special, -2.5, 0, -3.0},
      {"just above -half", Special, -2.4, 0, -2.0},
      {"just below -half", Special, -2.6, 0, -3.0},
      {"minus zero point five", Special, -0.5, 0, -1.0},
      {"small negative keeps -0 out", Special, -0.4, 0, 0.0},
      {"beyond 32 bits gives INT_MIN", Special, 3e9, 0, -2147483648.0},
      {"far below gives INT_MIN", Special, -3e9, 0, -2147483648.0},
      {"NaN gives INT_MIN", Special, nan, 0, -2147483648.0},
      {"largest int", Special, 2147483647.0, 0, 2147483647.0},
      {"half above the largest int leaves the range", Special, 2147483647.5, 0, -2147483648.0},
      {"smallest int", Special, -2147483648.0, 0, -2147483648.0},
      {"1.005 to 2 places works on 100.4999", roundDigits, 1.005, 2, 1.0},
      {"to hundreds", roundDigits, 1234.5, -2, 1200.0},
      {"to tens, half", roundDigits, 25.0, -1, 30.0},
      {"two places use exactly 100", roundDigits, 0.125, 2, 0.13},
      {"negative places", roundDigits, -1250.0, -2, -1300.0},
      {"scaled value beyond 32 bits", roundDigits, 3e7, 2, -21474836.48},
      {"significant: zero stays zero", roundSignificantDigits, 0.0, 3, 0.0},
      {"significant: small value", roundSignificantDigits, 0.012345, 2, 0.012},
      {"significant: 999 to 2 gives 1000", roundSignificantDigits, 999.0, 2, 1000.0},
      {"significant: negative", roundSignificantDigits, -123456.0, 3, -123000.0},
      {"significant: exact power of ten", roundSignificantDigits, 100.0, 2, 100.0},
  };
  for (const RoundRow& r : rows) {
    const double got = r.fn(r.x, r.n);
    EXPECT_DOUBLE_EQ(got, r.expected) << r.name;
  }
}

TEST(Rounding, NeverNegativeZeroFromPositiveInput) {
  EXPECT_FALSE(std::signbit(roundSpecial(0.2)));
  EXPECT_EQ(roundDigits(0.004, 2), 0.0);
}

TEST(IntegerHelpers, SignAndSignDiff) {
  EXPECT_EQ(Sign(5), 1);
  EXPECT_EQ(Sign(0), 0);
  EXPECT_EQ(Sign(-2147483647 - 1), -1);
  EXPECT_EQ(SignDiff(3, 2), 1);
  EXPECT_EQ(SignDiff(2, 2), 0);
  EXPECT_EQ(SignDiff(-2147483647 - 1, 2147483647), -1);  // no subtraction overflow
}

TEST(IntegerHelpers, Gcd) {
  EXPECT_EQ(gcd(12, 18), 6);
  EXPECT_EQ(gcd(18, 12), 6);
  EXPECT_EQ(gcd(7, 13), 1);
  EXPECT_EQ(gcd(0, 12), 12);   // a < 1: b unchanged
  EXPECT_EQ(gcd(-4, 6), 6);
  EXPECT_EQ(gcd(-4, -6), -6);
  EXPECT_EQ(gcd(12, 0), 12);   // guarded: would divide by zero
  EXPECT_EQ(gcd(12, -18), 6);  // guarded: would never end
  EXPECT_EQ(gcd(2147483647, -2147483647 - 1), 1);
}

TEST(IntegerHelpers, AreEqual) {
  EXPECT_TRUE(AreEqual(1.0, 1.05, 0.05 + 1e-15));
  EXPECT_FALSE(AreEqual(1.0, 1.2, 0.1));
  EXPECT_TRUE(AreEqual(-3.0, -3.0, 0.0));
}

TEST(IsFirstInRest, SentinelAndTwentyValueLimit) {
  EXPECT_TRUE(IsFirstInRest(3, 1, 2, 3, 52428));
  EXPECT_FALSE(IsFirstInRest(4, 1, 2, 3, 52428));
  EXPECT_FALSE(IsFirstInRest(3, 52428, 3));  // sentinel first
  EXPECT_TRUE(IsFirstInRest(20, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 52428));
  EXPECT_FALSE(IsFirstInRest(21, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 52428));
  // Without a sentinel the template stops at its last argument instead of reading on.
  EXPECT_FALSE(IsFirstInRest(9, 1, 2));
  EXPECT_TRUE(IsFirstInRest(2, 1, 2));
}

TEST(IsFirstInRest, CStyleFormBehavesTheSame) {
  bool (*cstyle)(int, ...) noexcept = &IsFirstInRest;
  EXPECT_TRUE(cstyle(3, 1, 2, 3, 52428));
  EXPECT_FALSE(cstyle(3, 52428));
  EXPECT_FALSE(cstyle(21, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 52428));
}

}  // namespace
}  // namespace quarrix
