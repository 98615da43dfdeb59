// The matcher walks the element tree without native recursion. Matching an element either succeeds and
// continues with what follows it (found through the tree's parent and sibling links), or fails and resumes
// the most recent choice point. Register writes made under a choice point are trailed, so resuming a choice
// point undoes everything done since it was made; cutting choice points (atomic groups, look-around) leaves
// the trail alone. Entering an element and resuming its choice point are the Match and MatchNext of a
// recursive design, turned into one loop.
#include "internal/Matcher.h"

#include "internal/TextScan.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstring>

namespace quarrix::detail::regex {
namespace {

std::atomic<int> g_matchLimit{10000000};

// Stack sizes beyond which a search gives up as if it had hit the match limit (320, 256 and 128 MB).
constexpr int kMaxChoices = 1 << 24;
constexpr int kMaxTrail = 1 << 25;
constexpr int kMaxHeap = 1 << 25;

enum ChoiceType : std::int32_t {
  kChAlternative,   // data: the next alternative to try
  kChGreedySkip,    // a greedy repeat stops here instead of iterating again
  kChLazyMore,      // a lazy repeat iterates once more instead of stopping
  kChSingleGreedy,  // pos: where the run starts; data: units taken
  kChSingleLazy,    // pos: where the run starts; data: units taken
  kChNegAssert,     // the content of a negative look-around failed: the assertion holds
  kChCondNo,        // the look-around of a condition failed: take the no branch
};

// Up to this many registers an attempt starts by setting them all to -1; beyond it, every write is trailed.
constexpr int kFreshRegisters = 64;

constexpr int kNoMatch = -1;
constexpr int kLimit = -2;

}  // namespace

void SetMatchLimit(int limit) noexcept { g_matchLimit.store(limit, std::memory_order_relaxed); }
int GetMatchLimit() noexcept { return g_matchLimit.load(std::memory_order_relaxed); }

class Matcher {
 public:
  Matcher(const CompiledRegex& re, CContext& ctx, std::u16string_view text, int searchStart)
      : m_re(re), m_ctx(ctx), m_text(text.data()), m_len(static_cast<int>(text.size())), m_searchStart(searchStart),
        m_elx(re.elx.data()), m_children(re.children.data()), m_literals(re.literals.data()),
        m_classes(re.classes.data()), m_wordFlags(detail::GetUnicodeTables().flags) {}

  // Tries one start position: the end of the match, kNoMatch or kLimit.
  int Attempt(int start);

 private:
  bool IsWord(int pos) const noexcept {
    return pos >= 0 && pos < m_len && (m_wordFlags[m_text[pos]] & kCharWord);
  }
  bool TestBoundary(BoundaryKind kind, int pos) const noexcept {
    switch (kind) {
      case BoundaryKind::kTextStart: return pos == 0;
      case BoundaryKind::kTextEndOrFinalLf:
      case BoundaryKind::kTextEndZ: return pos == m_len || (pos == m_len - 1 && m_text[pos] == u'\n');
      case BoundaryKind::kLineStart: return pos == 0 || m_text[pos - 1] == u'\n';
      case BoundaryKind::kLineEnd: return pos == m_len || m_text[pos] == u'\n';
      case BoundaryKind::kTextEnd: return pos == m_len;
      case BoundaryKind::kWordBoundary: return IsWord(pos - 1) != IsWord(pos);
      case BoundaryKind::kNotWordBoundary: return IsWord(pos - 1) == IsWord(pos);
    }
    return false;
  }
  // Units s[0, n) against the text at from; ignore-case literals hold folded units.
  bool SameText(int from, const char16_t* s, int n, bool ignoreCase) const noexcept {
    const char16_t* t = m_text + from;
    if (!ignoreCase) {
      if (n <= 8) {  // short literals are the rule: no call
        for (int k = 0; k < n; ++k)
          if (t[k] != s[k]) return false;
        return true;
      }
      return std::memcmp(t, s, static_cast<std::size_t>(n) * sizeof(char16_t)) == 0;
    }
    for (int k = 0; k < n; ++k)
      if (Fold(t[k]) != s[k]) return false;
    return true;
  }
  // Text against text, for back-references.
  bool SameSpan(int a, int b, int n, bool ignoreCase) const noexcept {
    if (!ignoreCase) {
      if (n > 0 && m_text[a] != m_text[b]) return false;  // most comparisons end at the first unit
      return std::memcmp(m_text + a, m_text + b, static_cast<std::size_t>(n) * sizeof(char16_t)) == 0;
    }
    for (int k = 0; k < n; ++k)
      if (Fold(m_text[a + k]) != Fold(m_text[b + k])) return false;
    return true;
  }
  const CharClass& ClassOf(const Elx& e) const noexcept { return m_classes[e.first]; }
  // Units of the class in a row from pos in the element's direction, at most max (-1: unbounded).
  int Run(const Elx& e, int pos, int max) const noexcept {
    const CharClass& cls = ClassOf(e);
    int n = 0;
    if (!(e.flags & kElxBackward)) {
      const int limit = max < 0 || max > m_len - pos ? m_len - pos : max;
      const char16_t* t = m_text + pos;
      while (n < limit && cls.Test(t[n])) ++n;
    } else {
      const int limit = max < 0 || max > pos ? pos : max;
      const char16_t* t = m_text + pos - 1;
      while (n < limit && cls.Test(t[-n])) ++n;
    }
    return n;
  }
  bool Viable(const Elx& alt, int child, int pos) const noexcept {
    const int set = m_elx[child].firstSet;
    if (set < 0) return true;
    const FirstSet& first = m_re.firstSets[static_cast<std::size_t>(set)];
    if (!(alt.flags & kElxBackward)) return pos < m_len && first.Test(m_text[pos]);
    return pos > 0 && first.Test(m_text[pos - 1]);
  }
  // The first alternative from k on that can match at pos, or -1.
  int NextViable(const Elx& alt, int k, int pos) const noexcept {
    for (; k < alt.count; ++k)
      if (Viable(alt, m_children[alt.first + k], pos)) return k;
    return -1;
  }

  // Without a choice point nothing can come back to the old value but a new attempt, which starts with
  // fresh registers: only writes under a choice point are trailed. With many registers, refreshing them all
  // for each attempt would cost more than trailing every write and unwinding a failed attempt.
  void SetReg(int reg, std::int32_t value) {
    if (m_trailAll || m_ctx.m_choices.GetSize() > 0) m_ctx.m_trail.Push({reg, m_regs[reg]});
    m_regs[reg] = value;
  }
  bool PushChoice(std::int32_t type, std::int32_t node, std::int32_t pos, std::int32_t data) {
    if (m_ctx.m_choices.GetSize() >= kMaxChoices || m_ctx.m_trail.GetSize() >= kMaxTrail) return false;
    m_ctx.m_choices.Push({type, node, pos, m_ctx.m_trail.GetSize(), data});
    return true;
  }
  void Unwind(int mark) noexcept {
    TrailEntry* const base = m_ctx.m_trail.GetBuffer();
    int size = m_ctx.m_trail.GetSize();
    while (size > mark) {
      const TrailEntry& t = base[--size];
      if (t.reg >= 0)
        m_regs[t.reg] = t.old;
      else
        m_ctx.m_heapTop = t.old;
    }
    m_ctx.m_trail.Resize(size);
  }
  void Cut(int height) noexcept { m_ctx.m_choices.Resize(height); }
  bool Call(int node, int target, int pos);
  void Return(int frame);

  const CompiledRegex& m_re;
  CContext& m_ctx;
  const char16_t* const m_text;
  const int m_len;
  const int m_searchStart;
  const Elx* const m_elx;
  const std::int32_t* const m_children;
  const char16_t* const m_literals;
  const CharClass* const m_classes;
  const std::uint16_t* const m_wordFlags;
  std::int32_t* m_regs = nullptr;
  const bool m_trailAll = m_re.regCount > kFreshRegisters;
};

// A recursion frame on the heap: target, calling element, position, then a copy of every register.
bool Matcher::Call(int node, int target, int pos) {
  const int size = m_re.regCount;
  const int frame = m_ctx.m_heapTop;
  if (frame + 3 + size > kMaxHeap) return false;
  if (m_ctx.m_heap.GetSize() < frame + 3 + size) m_ctx.m_heap.Resize(frame + 3 + size);
  std::int32_t* f = m_ctx.m_heap.GetBuffer() + frame;
  f[0] = target;
  f[1] = node;
  f[2] = pos;
  std::memcpy(f + 3, m_regs, static_cast<std::size_t>(size) * sizeof(std::int32_t));
  if (m_trailAll || m_ctx.m_choices.GetSize() > 0) m_ctx.m_trail.Push({-1, frame});
  m_ctx.m_heapTop = frame + 3 + size;
  SetReg(m_elx[target].callReg, pos);
  SetReg(m_re.frameReg, frame);
  return true;
}

// Captures made inside a recursion are forgotten when it returns: every register gets the caller's value
// back (the current frame register included), through the trail so that backtracking into the call works.
void Matcher::Return(int frame) {
  const std::int32_t* saved = m_ctx.m_heap.GetBuffer() + frame + 3;
  for (int r = 0; r < m_re.regCount; ++r)
    if (m_regs[r] != saved[r]) SetReg(r, saved[r]);
}

int Matcher::Attempt(int start) {
  m_regs = m_ctx.m_regs.GetBuffer();
  if (!m_trailAll) std::fill(m_regs, m_regs + m_re.regCount, -1);
  m_ctx.m_choices.Clear();
  m_ctx.m_trail.Clear();
  m_ctx.m_heapTop = 0;
  long long budget = m_ctx.m_budget;
  int node = m_re.root;
  int pos = start;
  int result = kNoMatch;

do_match: {
  const Elx& e = m_elx[node];
  switch (e.kind) {
    case ElxKind::kString: {
      const int n = e.count;
      const bool ignoreCase = (e.flags & kElxIgnoreCase) != 0;
      if (!(e.flags & kElxBackward)) {
        if (n > m_len - pos || !SameText(pos, m_literals + e.first, n, ignoreCase)) goto do_fail;
        pos += n;
      } else {
        if (n > pos || !SameText(pos - n, m_literals + e.first, n, ignoreCase)) goto do_fail;
        pos -= n;
      }
      goto do_succeed;
    }
    case ElxKind::kRange:
      if (!(e.flags & kElxBackward)) {
        if (pos >= m_len || !ClassOf(e).Test(m_text[pos])) goto do_fail;
        ++pos;
      } else {
        if (pos <= 0 || !ClassOf(e).Test(m_text[pos - 1])) goto do_fail;
        --pos;
      }
      goto do_succeed;
    case ElxKind::kList:
      node = m_children[e.first];
      goto do_match;
    case ElxKind::kAlternative: {
      const int k = NextViable(e, 0, pos);
      if (k < 0) goto do_fail;
      const int more = NextViable(e, k + 1, pos);
      if (more >= 0 && !PushChoice(kChAlternative, node, pos, more)) goto do_limit;
      node = m_children[e.first + k];
      goto do_match;
    }
    case ElxKind::kEmpty: goto do_succeed;
    case ElxKind::kBoundary:
      if (!TestBoundary(e.boundary, pos)) goto do_fail;
      goto do_succeed;
    case ElxKind::kGlobal:
      if (pos != m_searchStart) goto do_fail;
      goto do_succeed;
    case ElxKind::kBracket:
      SetReg(m_re.openBase + e.group, pos);
      node = e.child;
      goto do_match;
    case ElxKind::kBackref: {
      const int g = e.group;
      if (g < 1 || g > m_re.groupCount) goto do_fail;
      const int s = m_regs[2 * g], end = m_regs[2 * g + 1];
      if (s < 0 || end < 0) goto do_fail;
      const int n = end - s;
      const bool ignoreCase = (e.flags & kElxIgnoreCase) != 0;
      if (!(e.flags & kElxBackward)) {
        if (n > m_len - pos || !SameSpan(pos, s, n, ignoreCase)) goto do_fail;
        pos += n;
      } else {
        if (n > pos || !SameSpan(pos - n, s, n, ignoreCase)) goto do_fail;
        pos -= n;
      }
      goto do_succeed;
    }
    case ElxKind::kRepeat:
    case ElxKind::kGreedy:
    case ElxKind::kReluctant:
    case ElxKind::kPossessive: {
      if (!(e.flags & kElxSingleUnit)) {
        if (e.kind == ElxKind::kPossessive) SetReg(e.reg + 2, m_ctx.m_choices.GetSize());
        SetReg(e.reg, 0);
        goto do_loop;
      }
      const bool backward = (e.flags & kElxBackward) != 0;
      if (e.kind == ElxKind::kReluctant) {
        const int n = Run(e, pos, e.min);
        if (n < e.min) goto do_fail;
        if (e.followUnit >= 0 && !(pos + n < m_len && m_text[pos + n] == e.followUnit)) {
          // Not followed by the unit the continuation needs: take more at once.
          if (!PushChoice(kChSingleLazy, node, pos, n)) goto do_limit;
          goto do_fail;
        }
        if ((e.max < 0 || n < e.max) && !PushChoice(kChSingleLazy, node, pos, n)) goto do_limit;
        pos = backward ? pos - n : pos + n;
        goto do_succeed;
      }
      int n = Run(e, pos, e.max);
      if (e.kind == ElxKind::kGreedy && e.followUnit >= 0) {
        while (n >= e.min && !(pos + n < m_len && m_text[pos + n] == e.followUnit)) --n;
      }
      if (n < e.min) goto do_fail;
      if (e.kind == ElxKind::kGreedy && n > e.min && !PushChoice(kChSingleGreedy, node, pos, n)) goto do_limit;
      pos = backward ? pos - n : pos + n;
      goto do_succeed;
    }
    case ElxKind::kIndependent:
      SetReg(e.reg, m_ctx.m_choices.GetSize());
      node = e.child;
      goto do_match;
    case ElxKind::kAssert:
      if (e.flags & kElxNegative) {
        if (!PushChoice(kChNegAssert, node, pos, 0)) goto do_limit;
        SetReg(e.reg, m_ctx.m_choices.GetSize() - 1);
      } else {
        SetReg(e.reg, m_ctx.m_choices.GetSize());
        SetReg(e.reg + 1, pos);
      }
      node = e.child;
      goto do_match;
    case ElxKind::kCondition: {
      if (e.flags & kElxCondAssert) {
        if (e.cond < 0) {
          node = e.child;
          goto do_match;
        }
        if (!PushChoice(kChCondNo, node, pos, 0)) goto do_limit;
        SetReg(e.reg, m_ctx.m_choices.GetSize() - 1);
        node = e.cond;
        goto do_match;
      }
      const int g = e.group;
      const bool set = g >= 1 && g <= m_re.groupCount && m_regs[2 * g + 1] >= 0;
      const int branch = set ? e.child : e.other;
      if (branch < 0) goto do_succeed;
      node = branch;
      goto do_match;
    }
    case ElxKind::kDelegate: {
      const int target = e.group;
      if (target < 0 || m_regs[m_elx[target].callReg] == pos) goto do_fail;  // unknown, or a loop
      if (--budget < 0 || !Call(node, target, pos)) goto do_limit;
      node = target;
      goto do_match;
    }
  }
  goto do_fail;
}

do_loop: {
  // A general repeat decides whether to iterate (again): node is the repeat, its count register current.
  const Elx& e = m_elx[node];
  const int k = m_regs[e.reg];
  if (k < e.min) {
    SetReg(e.reg + 1, pos);
    node = e.child;
    goto do_match;
  }
  if (e.max >= 0 && k >= e.max) goto do_repeat_done;
  if (e.kind == ElxKind::kReluctant) {
    if (!PushChoice(kChLazyMore, node, pos, 0)) goto do_limit;
    goto do_repeat_done;
  }
  if (!PushChoice(kChGreedySkip, node, pos, 0)) goto do_limit;
  SetReg(e.reg + 1, pos);
  node = e.child;
  goto do_match;
}

do_repeat_done: {
  const Elx& e = m_elx[node];
  if (e.kind == ElxKind::kPossessive) Cut(m_regs[e.reg + 2]);
  goto do_succeed;
}

do_succeed: {
  // node has matched; continue with what follows it.
  const Elx& e = m_elx[node];
  if (e.flags & kElxCallTarget) {
    const int frame = m_regs[m_re.frameReg];
    if (frame >= 0 && m_ctx.m_heap[frame] == node) {
      node = m_ctx.m_heap[frame + 1];
      Return(frame);
      goto do_succeed;
    }
  }
  if (e.next >= 0) {
    node = e.next;
    goto do_match;
  }
  const int p = e.parent;
  if (p < 0) {
    result = pos;
    goto do_exit;
  }
  const Elx& parent = m_elx[p];
  switch (parent.kind) {
    case ElxKind::kList:
    case ElxKind::kAlternative:
      node = p;
      goto do_succeed;
    case ElxKind::kBracket: {
      const int g = parent.group;
      const int open = m_regs[m_re.openBase + g];
      SetReg(2 * g, std::min(open, pos));
      SetReg(2 * g + 1, std::max(open, pos));
      node = p;
      goto do_succeed;
    }
    case ElxKind::kRepeat:
    case ElxKind::kGreedy:
    case ElxKind::kReluctant:
    case ElxKind::kPossessive: {
      // One more iteration is done. An empty one ends an unbounded loop once the minimum is reached (it
      // could only repeat itself); a bounded loop goes on to its bound, unless the content would only
      // repeat itself identically.
      node = p;
      const int k = m_regs[parent.reg] + 1;
      if (pos == m_regs[parent.reg + 1]) {
        if ((parent.max < 0 && k >= parent.min) || (parent.flags & kElxSettled)) {
          SetReg(parent.reg, std::max(k, parent.min));
          goto do_repeat_done;
        }
        if (--budget < 0) goto do_limit;
      }
      SetReg(parent.reg, k);
      goto do_loop;
    }
    case ElxKind::kIndependent:
      Cut(m_regs[parent.reg]);
      node = p;
      goto do_succeed;
    case ElxKind::kAssert:
      Cut(m_regs[parent.reg]);
      if (parent.flags & kElxNegative) goto do_fail;
      pos = m_regs[parent.reg + 1];
      node = p;
      goto do_succeed;
    case ElxKind::kCondition:
      if (node == parent.cond) {
        Cut(m_regs[parent.reg]);
        node = parent.child;
        goto do_match;
      }
      node = p;
      goto do_succeed;
    default:
      node = p;
      goto do_succeed;
  }
}

do_fail: {
  if (m_ctx.m_choices.GetSize() == 0) {
    if (m_trailAll) Unwind(0);  // the next attempt starts with clean registers
    goto do_exit;
  }
  const Choice c = m_ctx.m_choices[m_ctx.m_choices.GetSize() - 1];
  m_ctx.m_choices.Resize(m_ctx.m_choices.GetSize() - 1);
  Unwind(c.trail);
  if (--budget < 0) goto do_limit;
  node = c.node;
  pos = c.pos;
  const Elx& e = m_elx[node];
  switch (c.type) {
    case kChAlternative: {
      const int more = NextViable(e, c.data + 1, pos);
      if (more >= 0) PushChoice(kChAlternative, node, pos, more);
      node = m_children[e.first + c.data];
      goto do_match;
    }
    case kChGreedySkip: goto do_repeat_done;
    case kChLazyMore:
      SetReg(e.reg + 1, pos);
      node = e.child;
      goto do_match;
    case kChSingleGreedy: {
      int n = c.data - 1;
      if (e.flags & kElxBackward) {
        if (n < e.min) goto do_fail;
        if (n > e.min) PushChoice(kChSingleGreedy, node, pos, n);
        pos -= n;
        goto do_succeed;
      }
      if (e.followUnit >= 0) {
        while (n >= e.min && m_text[pos + n] != e.followUnit) --n;
      }
      if (n < e.min) goto do_fail;
      if (n > e.min) PushChoice(kChSingleGreedy, node, pos, n);
      pos += n;
      goto do_succeed;
    }
    case kChSingleLazy: {
      const CharClass& cls = ClassOf(e);
      int n = c.data;
      if (e.flags & kElxBackward) {
        if ((e.max >= 0 && n >= e.max) || n >= pos || !cls.Test(m_text[pos - 1 - n])) goto do_fail;
        ++n;
        if (e.max < 0 || n < e.max) PushChoice(kChSingleLazy, node, pos, n);
        pos -= n;
        goto do_succeed;
      }
      // Take one more unit; with a known follow unit, keep taking until it stands next.
      do {
        if ((e.max >= 0 && n >= e.max) || pos + n >= m_len || !cls.Test(m_text[pos + n])) goto do_fail;
        ++n;
      } while (e.followUnit >= 0 && !(pos + n < m_len && m_text[pos + n] == e.followUnit));
      if (e.max < 0 || n < e.max) PushChoice(kChSingleLazy, node, pos, n);
      pos += n;
      goto do_succeed;
    }
    case kChNegAssert: goto do_succeed;
    case kChCondNo:
      if (e.other < 0) goto do_succeed;
      node = e.other;
      goto do_match;
    default: goto do_fail;
  }
}

do_limit:
  result = kLimit;
do_exit:
  m_ctx.m_budget = budget;
  return result;
}

namespace {

// Where the next attempt after a failed one at pos may start.
class Candidates {
 public:
  Candidates(const CompiledRegex& re, std::u16string_view text) : m_re(re), m_text(text), m_first(re.plan.first) {}

  // The first position from pos on (at most last) where a match may start, or -1.
  int Next(int pos, int last) {
    const SearchPlan& plan = m_re.plan;
    const int len = static_cast<int>(m_text.size());
    if (!plan.prefix.empty()) {
      pos = FindLiteral(m_text, pos, last, plan.prefix);
    } else if (!plan.lookbehind.empty()) {
      const int n = static_cast<int>(plan.lookbehind.size());
      const int found = FindLiteral(m_text, std::max(0, pos - n), last - n, plan.lookbehind);
      pos = found < 0 ? -1 : found + n;
    } else if (plan.useFirstSet) {
      const char16_t* const base = m_text.data();
      const char16_t* const end = base + last + 1;
      const char16_t* p = m_first.Find(base + pos, end);
      // The second unit rules out most places where only the first fits.
      // (Every match has two units then, so p + 1 lies inside the text.)
      while (plan.useSecondSet && p != end && !plan.second.Test(p[1])) p = m_first.Find(p + 1, end);
      pos = p == end ? -1 : static_cast<int>(p - base);
    }
    if (pos < 0 || pos > last) return -1;
    if (!plan.required.empty() && m_required < pos + plan.requiredOffset) {
      m_required = FindLiteral(m_text, std::min(len, pos + plan.requiredOffset), len, plan.required);
      if (m_required < 0) return -1;
    }
    return pos;
  }

 private:
  const CompiledRegex& m_re;
  std::u16string_view m_text;
  FirstSetScanner m_first;
  int m_required = -1;  // the last position where the required literal was found
};

}  // namespace

bool CContext::Search(const CompiledRegex& re, std::u16string_view text, int start, std::vector<int>& result) {
  const int len = static_cast<int>(text.size());
  const int limit = GetMatchLimit();
  m_budget = limit > 0 ? limit : LLONG_MAX;
  m_limitHit = false;
  m_regs.Resize(re.regCount);
  std::fill(m_regs.GetBuffer(), m_regs.GetBuffer() + re.regCount, -1);
  if (start < 0) start = re.backward ? len : 0;
  if (re.backward && start > len) start = len;

  const int groups = re.groupCount;
  result.assign(static_cast<std::size_t>(2 + 2 * (groups + 1)), -1);
  result[0] = 0;
  result[1] = groups;

  Matcher matcher(re, *this, text, start);
  int from = -1, to = -1;
  auto attempt = [&](int pos) {
    const int end = matcher.Attempt(pos);
    if (end == kLimit) {
      m_limitHit = true;
      return true;
    }
    if (end < 0) return false;
    from = std::min(pos, end);
    to = std::max(pos, end);
    return true;
  };

  const SearchPlan& plan = re.plan;
  if (re.backward) {
    for (int pos = start; pos >= plan.minLength; --pos)
      if (attempt(pos)) break;
  } else if (start <= len - plan.minLength) {
    const int last = len - plan.minLength;
    switch (plan.anchor) {
      case SearchPlan::Anchor::kTextStart:
        if (start == 0) attempt(0);
        break;
      case SearchPlan::Anchor::kSearchStart: attempt(start); break;
      case SearchPlan::Anchor::kLineStart:
        for (int pos = start; pos <= last;) {
          if ((pos == 0 || text[static_cast<std::size_t>(pos - 1)] == u'\n') && attempt(pos)) break;
          const char16_t* nl = FindUnit(text.data() + pos, text.data() + len, u'\n');
          pos = static_cast<int>(nl - text.data()) + 1;
        }
        break;
      case SearchPlan::Anchor::kNone: {
        Candidates candidates(re, text);
        const Elx* run = plan.leadingRun >= 0 ? &re.elx[static_cast<std::size_t>(plan.leadingRun)] : nullptr;
        for (int pos = start; pos <= last;) {
          pos = candidates.Next(pos, last);
          if (pos < 0 || attempt(pos)) break;
          if (run) {
            // Every start inside the leading repeat's run would try a subset of what this start tried.
            const CharClass& cls = re.classes[static_cast<std::size_t>(run->first)];
            int end = pos;
            while (end < len && cls.Test(text[static_cast<std::size_t>(end)])) ++end;
            pos = end + 1;
          } else {
            ++pos;
          }
        }
        break;
      }
    }
  }
  if (from < 0) return false;
  result[0] = 1;
  result[2] = from;
  result[3] = to;
  for (int g = 1; g <= groups; ++g) {
    result[static_cast<std::size_t>(2 + 2 * g)] = m_regs[2 * g];
    result[static_cast<std::size_t>(3 + 2 * g)] = m_regs[2 * g + 1];
  }
  return true;
}

}  // namespace quarrix::detail::regex
