// What the matcher and the search derive from a compiled tree. Elements are created after their children,
// so one pass in index order sees every child before its parent: no recursion over the tree.
#include "internal/Builder.h"

#include <algorithm>

namespace quarrix::detail::regex {
namespace {

constexpr int kLengthCap = 1 << 30;

int AddLengths(int a, int b) { return static_cast<int>(std::min<long long>(kLengthCap, static_cast<long long>(a) + b)); }
int MulLength(int a, int n) {
  if (a == 0 || n == 0) return 0;
  return static_cast<long long>(a) * n >= kLengthCap ? kLengthCap : a * n;
}

// Adds a literal unit to a set of units below 256 and a flag for those above; under ignore-case (the
// literal holding folded units) every unit that folds like it as well.
void AddLiteralUnit(std::uint64_t* low, bool& high, char16_t c, bool ignoreCase) {
  auto add = [&](char16_t u) {
    if (u < 256)
      low[u >> 6] |= std::uint64_t{1} << (u & 63);
    else
      high = true;
  };
  add(c);
  if (!ignoreCase) return;
  for (unsigned u = 0; u < 256; ++u)
    if (Fold(static_cast<char16_t>(u)) == c) add(static_cast<char16_t>(u));
  if (c >= 256 || HasHighCaseVariant(c)) high = true;
}

// What can start a non-empty match of an element, and whether it can match empty.
struct Info {
  std::uint64_t low[4] = {};
  bool high = false;      // a unit from 256 up may start it
  bool any = false;       // anything may start it (back-references, recursion)
  bool nullable = false;  // it can match without consuming
  int onlyClass = -1;     // the start set is exactly this class
  int minLength = 0;
  bool pure = true;           // depends on the position only
  bool deterministic = true;  // leaves no choice point behind when it succeeds
  // The units that can stand second, when every match has two units at least and that is known.
  bool secondKnown = false;
  std::uint64_t second[4] = {};
  bool secondHigh = false;

  void AddUnit(char16_t c) {
    if (c < 256)
      low[c >> 6] |= std::uint64_t{1} << (c & 63);
    else
      high = true;
    onlyClass = -1;
  }
  void AddClass(const CharClass& cls, int index) {
    for (int k = 0; k < 4; ++k) low[k] |= cls.LowBits()[k];
    high = high || cls.GetHighMode() != CharClass::HighMode::kNone;
    onlyClass = index;
  }
  // The union of start sets (not of the other facts).
  void Merge(const Info& o) {
    const bool wasEmpty = !high && !any && !(low[0] | low[1] | low[2] | low[3]);
    for (int k = 0; k < 4; ++k) low[k] |= o.low[k];
    high = high || o.high;
    any = any || o.any;
    onlyClass = wasEmpty ? o.onlyClass : (o.onlyClass == onlyClass ? onlyClass : -1);
  }
};

class Analyser {
 public:
  explicit Analyser(CompiledRegex& re) : m_re(re), m_info(re.elx.size()) {}

  void Run() {
    for (std::size_t i = 0; i < m_re.elx.size(); ++i) Compute(static_cast<int>(i));
    for (std::size_t i = 0; i < m_re.elx.size(); ++i) {
      Elx& e = m_re.elx[i];
      if (IsRepeat(e.kind) && e.child >= 0 && InfoOf(e.child).pure && InfoOf(e.child).deterministic)
        e.flags |= kElxSettled;
      if (e.kind == ElxKind::kAlternative) AlternativeSets(e);
      if (IsSingleRepeat(e) && !(e.flags & kElxBackward)) TuneSingleRepeat(static_cast<int>(i));
    }
    Plan();
  }

 private:
  static bool IsRepeat(ElxKind k) {
    return k == ElxKind::kRepeat || k == ElxKind::kGreedy || k == ElxKind::kReluctant || k == ElxKind::kPossessive;
  }
  static bool IsSingleRepeat(const Elx& e) { return IsRepeat(e.kind) && (e.flags & kElxSingleUnit); }
  const Elx& At(int i) const { return m_re.elx[static_cast<std::size_t>(i)]; }
  int Child(const Elx& e, int k) const { return m_re.children[static_cast<std::size_t>(e.first + k)]; }
  const Info& InfoOf(int i) const { return m_info[static_cast<std::size_t>(i)]; }

  void Compute(int index) {
    const Elx& e = At(index);
    Info& info = m_info[static_cast<std::size_t>(index)];
    switch (e.kind) {
      case ElxKind::kString: {
        const std::u16string_view s(m_re.literals.data() + e.first, static_cast<std::size_t>(e.count));
        const bool backward = (e.flags & kElxBackward) != 0;
        const bool ignoreCase = (e.flags & kElxIgnoreCase) != 0;
        AddLiteralUnit(info.low, info.high, backward ? s.back() : s.front(), ignoreCase);
        if (s.size() >= 2 && !backward) {
          info.secondKnown = true;
          AddLiteralUnit(info.second, info.secondHigh, s[1], ignoreCase);
        }
        info.minLength = e.count;
        break;
      }
      case ElxKind::kRange:
        info.AddClass(m_re.classes[static_cast<std::size_t>(e.first)], e.first);
        info.minLength = 1;
        break;
      case ElxKind::kBoundary:
      case ElxKind::kGlobal:
      case ElxKind::kEmpty:
      case ElxKind::kAssert:
        info.nullable = true;
        if (e.kind == ElxKind::kAssert) info.pure = InfoOf(e.child).pure;
        break;
      case ElxKind::kBackref:
      case ElxKind::kDelegate:
        info.any = info.nullable = true;
        info.pure = false;
        info.deterministic = e.kind == ElxKind::kBackref;
        break;
      case ElxKind::kBracket: info = InfoOf(e.child); break;
      case ElxKind::kIndependent:
        info = InfoOf(e.child);
        info.deterministic = true;
        break;
      case ElxKind::kRepeat:
      case ElxKind::kGreedy:
      case ElxKind::kReluctant:
      case ElxKind::kPossessive:
        if (e.flags & kElxSingleUnit) {
          const CharClass& cls = m_re.classes[static_cast<std::size_t>(e.first)];
          info.AddClass(cls, e.first);
          info.minLength = e.min;
          if (e.min >= 2 && !(e.flags & kElxBackward)) {
            info.secondKnown = true;
            std::copy(cls.LowBits(), cls.LowBits() + 4, info.second);
            info.secondHigh = cls.GetHighMode() != CharClass::HighMode::kNone;
          }
        } else {
          info = InfoOf(e.child);
          info.minLength = MulLength(info.minLength, e.min);
        }
        info.nullable = info.nullable || e.min == 0;
        info.deterministic = e.kind == ElxKind::kPossessive ||
                             (e.kind == ElxKind::kRepeat && ((e.flags & kElxSingleUnit) || info.deterministic));
        break;
      case ElxKind::kList: {
        ListSecond(e, info);
        info.nullable = true;
        for (int k = 0; k < e.count; ++k) {
          const Info& c = InfoOf(Child(e, k));
          if (info.nullable) info.Merge(c);
          info.nullable = info.nullable && c.nullable;
          info.minLength = AddLengths(info.minLength, c.minLength);
          info.pure = info.pure && c.pure;
          info.deterministic = info.deterministic && c.deterministic;
        }
        break;
      }
      case ElxKind::kAlternative: {
        info.minLength = kLengthCap;
        info.secondKnown = true;
        for (int k = 0; k < e.count; ++k) {
          const Info& c = InfoOf(Child(e, k));
          info.secondKnown = info.secondKnown && c.secondKnown;
          for (int w = 0; w < 4; ++w) info.second[w] |= c.second[w];
          info.secondHigh = info.secondHigh || c.secondHigh;
          info.Merge(c);
          info.nullable = info.nullable || c.nullable;
          info.minLength = std::min(info.minLength, c.minLength);
          info.pure = info.pure && c.pure;
        }
        info.deterministic = false;
        break;
      }
      case ElxKind::kCondition: {
        const Info& yes = InfoOf(e.child);
        info = yes;
        info.secondKnown = false;
        if (e.other >= 0) {
          const Info& no = InfoOf(e.other);
          info.Merge(no);
          info.nullable = yes.nullable || no.nullable;
          info.minLength = std::min(yes.minLength, no.minLength);
          info.pure = yes.pure && no.pure;
          info.deterministic = yes.deterministic && no.deterministic;
        } else {
          info.nullable = true;
          info.minLength = 0;
        }
        if (e.flags & kElxCondAssert) {
          if (e.cond >= 0) info.pure = info.pure && InfoOf(e.cond).pure;
        } else {
          info.pure = false;
        }
        break;
      }
    }
    if (info.nullable) info.secondKnown = false;
  }

  // A list's second unit: that of its first child when the child knows it, or the first unit of the second
  // child when the first child is exactly one unit long.
  void ListSecond(const Elx& list, Info& info) const {
    const Elx& first = At(Child(list, 0));
    const Info& i0 = InfoOf(Child(list, 0));
    if (i0.nullable || (list.flags & kElxBackward)) return;
    if (i0.secondKnown) {
      info.secondKnown = true;
      std::copy(std::begin(i0.second), std::end(i0.second), info.second);
      info.secondHigh = i0.secondHigh;
      return;
    }
    const bool oneUnit = first.kind == ElxKind::kRange || (first.kind == ElxKind::kString && first.count == 1);
    if (!oneUnit || list.count < 2) return;
    const Info& i1 = InfoOf(Child(list, 1));
    if (i1.nullable || i1.any) return;
    info.secondKnown = true;
    std::copy(std::begin(i1.low), std::end(i1.low), info.second);
    info.secondHigh = i1.high;
  }

  // Each alternative gets the set of units it can start with, so that the matcher skips the ones that cannot
  // match at the position and leaves no backtracking point for them.
  void AlternativeSets(const Elx& alt) {
    for (int k = 0; k < alt.count; ++k) {
      const int child = Child(alt, k);
      const Info& c = InfoOf(child);
      if (c.nullable || c.any) continue;
      FirstSet set;
      std::copy(std::begin(c.low), std::end(c.low), set.low);
      set.high = c.high;
      m_re.firstSets.push_back(set);
      m_re.elx[static_cast<std::size_t>(child)].firstSet = static_cast<int>(m_re.firstSets.size() - 1);
    }
  }

  // The element that matching continues with after `index` succeeds, when that is certain: the next sibling,
  // looking through the ends of lists, alternatives and capturing groups that no recursion calls. -1 when
  // unknown (a repeat, a look-around, the end of the pattern...).
  int Continuation(int index) const {
    int x = index;
    while (At(x).next < 0) {
      const int p = At(x).parent;
      if (p < 0) return -1;
      const Elx& parent = At(p);
      const bool transparent = parent.kind == ElxKind::kList || parent.kind == ElxKind::kAlternative ||
                               (parent.kind == ElxKind::kBracket && !(parent.flags & kElxCallTarget));
      if (!transparent || (parent.flags & kElxCallTarget)) return -1;
      x = p;
    }
    return At(x).next;
  }

  // A greedy single-unit repeat that the continuation cannot follow with a unit of its class never profits
  // from giving back: make it possessive. Otherwise remember the unit the continuation must start with, so
  // that giving back (or taking more, when lazy) jumps straight to the places where that unit stands.
  void TuneSingleRepeat(int index) {
    Elx& e = m_re.elx[static_cast<std::size_t>(index)];
    const int next = Continuation(index);
    if (next < 0 || (At(next).flags & kElxBackward)) return;
    const Info& follow = InfoOf(next);
    if (follow.nullable || follow.any) return;
    const CharClass& cls = m_re.classes[static_cast<std::size_t>(e.first)];
    if (e.kind == ElxKind::kGreedy) {
      bool disjoint = true;
      for (int k = 0; k < 4; ++k) disjoint = disjoint && (cls.LowBits()[k] & follow.low[k]) == 0;
      if (disjoint && follow.high) {
        disjoint = follow.onlyClass >= 0 &&
                   HighPartsDisjoint(cls, m_re.classes[static_cast<std::size_t>(follow.onlyClass)]);
      }
      if (disjoint) {
        e.kind = ElxKind::kPossessive;
        return;
      }
    }
    const Elx& n = At(next);
    if ((e.kind == ElxKind::kGreedy || e.kind == ElxKind::kReluctant) && n.kind == ElxKind::kString &&
        !(n.flags & kElxIgnoreCase))
      e.followUnit = m_re.literals[static_cast<std::size_t>(n.first)];
  }

  static void SplitRanges(FirstSet& set) {
    int count = 0;
    for (unsigned c = 0; c < 256; ++c) {
      if (!set.Test(static_cast<char16_t>(c)) || (c > 0 && set.Test(static_cast<char16_t>(c - 1)))) continue;
      if (count == 4) return;  // too many: the search tests unit by unit
      unsigned end = c;
      while (end + 1 < 256 && set.Test(static_cast<char16_t>(end + 1))) ++end;
      set.rangeLow[count] = static_cast<char16_t>(c);
      set.rangeHigh[count] = static_cast<char16_t>(end);
      ++count;
    }
    set.ranges = count;
  }

  // The element matched first: through lists (their first child) and nothing else.
  int Leading() const {
    int x = m_re.root;
    while (At(x).kind == ElxKind::kList) x = Child(At(x), 0);
    return x;
  }

  SearchPlan::Anchor AnchorOf(int index) const {
    using Anchor = SearchPlan::Anchor;
    // Walk down through lists, groups and alternatives (all branches must agree), with a work list.
    std::vector<int> work{index};
    Anchor result = Anchor::kNone;
    bool first = true;
    while (!work.empty()) {
      int x = work.back();
      work.pop_back();
      Anchor a = Anchor::kNone;
      for (;;) {
        const Elx& e = At(x);
        if (e.kind == ElxKind::kList) {
          x = Child(e, 0);
        } else if (e.kind == ElxKind::kBracket || e.kind == ElxKind::kIndependent ||
                   (IsRepeat(e.kind) && e.min > 0 && !(e.flags & kElxSingleUnit))) {
          x = e.child;
        } else if (e.kind == ElxKind::kAlternative) {
          for (int k = 1; k < e.count; ++k) work.push_back(Child(e, k));
          x = Child(e, 0);
        } else {
          if (e.kind == ElxKind::kBoundary && e.boundary == BoundaryKind::kTextStart) a = Anchor::kTextStart;
          if (e.kind == ElxKind::kBoundary && e.boundary == BoundaryKind::kLineStart) a = Anchor::kLineStart;
          if (e.kind == ElxKind::kGlobal) a = Anchor::kSearchStart;
          break;
        }
      }
      if (first) result = a;
      else if (a != result) return Anchor::kNone;
      first = false;
    }
    return result;
  }

  // A literal every match contains, with the least number of units before it; the rarest-looking one.
  void RequiredLiteral(SearchPlan& plan) const {
    struct Item {
      int element, offset;
    };
    std::vector<Item> work{{m_re.root, 0}};
    int bestScore = 0;
    while (!work.empty()) {
      const Item item = work.back();
      work.pop_back();
      const Elx& e = At(item.element);
      switch (e.kind) {
        case ElxKind::kList: {
          int offset = item.offset;
          for (int k = 0; k < e.count; ++k) {
            work.push_back({Child(e, k), offset});
            offset = AddLengths(offset, InfoOf(Child(e, k)).minLength);
          }
          break;
        }
        case ElxKind::kBracket:
        case ElxKind::kIndependent: work.push_back({e.child, item.offset}); break;
        case ElxKind::kRepeat:
        case ElxKind::kGreedy:
        case ElxKind::kReluctant:
        case ElxKind::kPossessive:
          if (e.min > 0 && !(e.flags & kElxSingleUnit)) work.push_back({e.child, item.offset});
          break;
        case ElxKind::kString: {
          if (e.flags & kElxIgnoreCase) break;
          const std::u16string_view s(m_re.literals.data() + e.first, static_cast<std::size_t>(e.count));
          // Longer is better; units that are rare in prose (not lower-case letters or spaces) count double.
          int score = 0;
          for (char16_t c : s) score += (c >= u'a' && c <= u'z') || c == u' ' ? 2 : 3;
          if (score > bestScore) {
            bestScore = score;
            plan.required.assign(s);
            plan.requiredOffset = item.offset;
          }
          break;
        }
        default: break;
      }
    }
  }

  void Plan() {
    SearchPlan& plan = m_re.plan;
    const Info& root = InfoOf(m_re.root);
    plan.minLength = root.minLength;
    if (m_re.backward) return;
    plan.anchor = AnchorOf(m_re.root);
    if (!root.nullable && !root.any) {
      plan.useFirstSet = true;
      std::copy(std::begin(root.low), std::end(root.low), plan.first.low);
      plan.first.high = root.high;
      SplitRanges(plan.first);
      if (root.secondKnown) {
        plan.useSecondSet = true;
        std::copy(std::begin(root.second), std::end(root.second), plan.second.low);
        plan.second.high = root.secondHigh;
      }
    }
    const int lead = Leading();
    const Elx& l = At(lead);
    if (l.kind == ElxKind::kString && !(l.flags & kElxIgnoreCase))
      plan.prefix.assign(m_re.literals, static_cast<std::size_t>(l.first), static_cast<std::size_t>(l.count));
    if (l.kind == ElxKind::kAssert && !(l.flags & kElxNegative)) {
      const Elx& inner = At(l.child);
      if (inner.kind == ElxKind::kString && (inner.flags & kElxBackward) && !(inner.flags & kElxIgnoreCase))
        plan.lookbehind.assign(m_re.literals, static_cast<std::size_t>(inner.first),
                               static_cast<std::size_t>(inner.count));
    }
    if ((l.kind == ElxKind::kGreedy || l.kind == ElxKind::kPossessive) && (l.flags & kElxSingleUnit) && l.max < 0 &&
        lead != m_re.root)
      plan.leadingRun = lead;
    if (plan.anchor == SearchPlan::Anchor::kNone) RequiredLiteral(plan);
    if (plan.required == plan.prefix) plan.required.clear();
  }

  CompiledRegex& m_re;
  std::vector<Info> m_info;
};

}  // namespace

void AnalyseRegex(CompiledRegex& re) { Analyser(re).Run(); }

}  // namespace quarrix::detail::regex
