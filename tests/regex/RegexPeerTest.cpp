// Cases from PCRE2's own test input with spans computed by PCRE2 (10.42, 16-bit library), kept outside the
// project in ../shared/peer. Every case must agree, except the deliberate differences listed below.
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

// Cases where this library answers differently on purpose, with the reason.
struct Difference {
  const char* id;
  const char* reason;
};
const Difference kDifferences[] = {
    {"", ""},
};

const char* DifferenceReason(std::string_view id) {
  for (const Difference& d : kDifferences)
    if (id == d.id) return d.reason;
  return nullptr;
}

TEST(RegexPeerTest, AgreesWithPcre2OnItsOwnTestInput) {
#ifndef QUARRIX_PEER_REGEX_INC
  GTEST_SKIP() << "no peer data (../shared/peer/regex_pcre2_testinput1.inc): nothing to compare";
#else
  int compared = 0, differing = 0;
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
    if (const char* reason = DifferenceReason(c.id)) {
      ++differing;
      EXPECT_NE(got, want) << c.id << " is listed as a deliberate difference (" << reason << ") but agrees";
      continue;
    }
    EXPECT_EQ(got, want) << c.id << ": " << CString(std::u16string(c.pattern.view)) << " on \""
                         << subject << "\" flags " << c.flags;
  }
  EXPECT_EQ(compared, 395);
  RecordProperty("deliberate_differences", differing);
#endif
}

}  // namespace
}  // namespace quarrix
