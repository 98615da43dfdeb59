// Cases from PCRE2's own test input with spans computed by PCRE2 (10.42, 16-bit library), kept outside the
// project in ../shared/peer. Every case agrees: none of them touches a deliberate difference of this engine
// (those are listed in RegexEngineTest.cpp and RegexPcre2DiffTest.cpp).
#include <gtest/gtest.h>

#include <quarrix/regex/CRegex.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quarrix {
namespace {

// A string literal with its full length (subjects may hold any unit).
struct Text {
  template <std::size_t N>
  Text(const char16_t (&s)[N]) : view(s, N - 1) {}  // NOLINT: implicit on purpose, for the table rows
  std::u16string_view view;
};

struct PeerCase {
  const char* id;
  Text pattern;
  int flags;
  Text subject;
  int start, end;
  int groups;
  std::vector<int> spans;
};

#ifdef QUARRIX_PEER_REGEX_INC
const PeerCase kCases[] = {
#include QUARRIX_PEER_REGEX_INC
};
#endif

TEST(RegexPeerTest, AgreesWithPcre2OnItsOwnTestInput) {
#ifndef QUARRIX_PEER_REGEX_INC
  GTEST_SKIP() << "no peer data (../shared/peer/regex_pcre2_testinput1.inc): nothing to compare";
#else
  int compared = 0;
  for (const PeerCase& c : kCases) {
    CRegex re(CString(std::u16string(c.pattern.view)), c.flags);
    const CString subject{std::u16string(c.subject.view)};
    const int found = re.Match(subject);
    std::vector<int> got{found ? re.GetMatchStart() : -1, found ? re.GetMatchEnd() : -1};
    std::vector<int> want{c.start, c.end};
    for (int g = 1; g <= c.groups && c.start >= 0; ++g) {
      got.push_back(re.GetMatchGroupStart(g));
      got.push_back(re.GetMatchGroupEnd(g));
      want.push_back(c.spans[static_cast<std::size_t>(2 * g - 2)]);
      want.push_back(c.spans[static_cast<std::size_t>(2 * g - 1)]);
    }
    ++compared;
    EXPECT_EQ(got, want) << c.id << ": " << CString(std::u16string(c.pattern.view)) << " on \""
                         << subject << "\" flags " << c.flags;
  }
  EXPECT_EQ(compared, 395);
#endif
}

}  // namespace
}  // namespace quarrix
