// A MatchNext loop allocates nothing once the object's buffers have grown: the match context, its stacks
// and the result array are reused from search to search. Counted by replacing the global operator new,
// which is why this test has its own program (and why it stays out of sanitizer builds, whose allocators
// count differently).
#include <gtest/gtest.h>

#include <quarrix/regex/CRegex.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<long> g_allocations{0};
}  // namespace

// The replacement functions pair malloc with free on purpose; GCC cannot see that they belong together.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif
void* operator new(std::size_t size) {
  ++g_allocations;
  if (void* p = std::malloc(size ? size : 1)) return p;
  throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

namespace quarrix {
namespace {

#if defined(__SANITIZE_ADDRESS__)
#define QUARRIX_REGEX_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUARRIX_REGEX_SANITIZED 1
#endif
#endif

TEST(RegexAllocationTest, MatchNextLoopAllocatesNothingInSteadyState) {
#ifdef QUARRIX_REGEX_SANITIZED
  GTEST_SKIP() << "allocation counts differ under the sanitizers";
#else
  CString text;
  for (int k = 0; k < 2000; ++k)
    text += cstringf(u"word%d word%d joe%d@mail.example.com (y) 10.0.%d.1 ", k, k, k, k % 250);
  const char16_t* patterns[] = {u"[\\w\\.+-]+@[\\w\\.-]+\\.[\\w\\.-]+", u"(\\w+)\\s+\\1", u"\\((x|y)\\)",
                                u"(?:(?:25[0-5]|2[0-4][0-9]|[01]?[0-9][0-9]?)\\.){3}\\d+", u"(?<=@)\\w+"};
  for (const char16_t* pattern : patterns) {
    CRegex re(pattern, 0);
    re.PrepareMatch(text);
    const long start = g_allocations.load();
    int warm = 0;
    while (re.MatchNext()) ++warm;  // buffers grow here
    EXPECT_GT(g_allocations.load() - start, 0) << "the counter sees the first search's allocations";
    re.ResetMatch();
    const long before = g_allocations.load();
    int count = 0;
    while (re.MatchNext()) ++count;
    EXPECT_EQ(g_allocations.load() - before, 0) << CString(pattern);
    EXPECT_EQ(count, warm);
    EXPECT_GT(count, 0) << CString(pattern);
  }
#endif
}

}  // namespace
}  // namespace quarrix
