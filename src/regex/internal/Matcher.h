#pragma once
// Matching: a match context holds all that changes during a search (registers, the backtracking stacks, the
// recursion frames) so that the compiled expression stays immutable. A context is reused from search to
// search and allocates only while its buffers grow.
#include "Buffer.h"
#include "Elements.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quarrix::detail::regex {

// A point to come back to when something later fails.
struct Choice {
  std::int32_t type;
  std::int32_t node;
  std::int32_t pos;
  std::int32_t trail;  // trail size when it was made
  std::int32_t data;
};

// The old value of a register, to restore when backtracking past the write (reg -1: the recursion heap top).
struct TrailEntry {
  std::int32_t reg;
  std::int32_t old;
};

class CContext {
 public:
  // Searches text from start (-1: its start, or its end when the expression runs right to left) and writes
  // the result (see MatchResult) into result. Returns whether a match was found; LimitHit() tells whether the
  // search gave up at the match limit.
  bool Search(const CompiledRegex& re, std::u16string_view text, int start, std::vector<int>& result);
  bool LimitHit() const noexcept { return m_limitHit; }

  // The capacity the stacks have grown to, in entries (for checking that steady state allocates nothing).
  int StackCapacity() const noexcept { return m_choices.GetCapacity() + m_trail.GetCapacity() + m_heap.GetCapacity(); }

 private:
  friend class Matcher;

  CBufferT<Choice> m_choices;
  CBufferT<TrailEntry> m_trail;
  CBufferT<std::int32_t> m_heap;  // recursion frames
  CBufferT<std::int32_t> m_regs;
  int m_heapTop = 0;
  long long m_budget = 0;
  bool m_limitHit = false;
};

// The process-wide match limit (steps per search; 0 or less: none).
void SetMatchLimit(int limit) noexcept;
int GetMatchLimit() noexcept;

// Replaces at most count matches (-1: all) found from start by the expansion of replacement ($ tokens).
// Sets limitHit when a search gave up at the match limit (the text from there on is copied unchanged).
std::u16string Replace(const CompiledRegex& re, CContext& context, std::u16string_view text,
                       std::u16string_view replacement, int start, int count, bool& limitHit);

}  // namespace quarrix::detail::regex
