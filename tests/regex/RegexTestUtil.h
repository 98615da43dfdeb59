#pragma once
// Shared pieces of the regex tests: a table row and the spans a match gives.
#include <gtest/gtest.h>

#include <quarrix/regex/CRegex.h>

#include <vector>

namespace quarrix::regex_test {

// A named case: the expected spans are group 0 then each group (start, end), empty when nothing matches.
struct Row {
  const char* name;
  CString pattern;
  int flags;
  const char16_t* subject;
  std::vector<int> spans;
};

// The spans CRegex::Match gives for the row, in the form of Row::spans.
inline std::vector<int> Spans(const Row& row) {
  CRegex re(row.pattern, row.flags);
  if (!re.Match(row.subject)) return {};
  std::vector<int> spans;
  for (int g = 0; g <= re.GetLastMatchResult().GetAt(1); ++g) {
    spans.push_back(re.GetMatchGroupStart(g));
    spans.push_back(re.GetMatchGroupEnd(g));
  }
  return spans;
}

}  // namespace quarrix::regex_test
