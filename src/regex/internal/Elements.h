#pragma once
// The compiled form of a regular expression: a tree of immutable elements kept in one array and referenced
// by index, with the side tables they point into (child lists, literal text, classes, group names) and what
// the analysis derived for searching. Nothing here changes after compilation, so one compiled expression may
// serve any number of match contexts, in any threads.
#include "CharClass.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quarrix::detail::regex {

// Engine flag bits (the same values as CRegex's).
enum : int {
  kFlagSingleLine = 1,
  kFlagMultiLine = 2,
  kFlagGlobal = 4,
  kFlagIgnoreCase = 8,
  kFlagRightToLeft = 16,
  kFlagExtended = 32,
};

enum class ElxKind : std::uint8_t {
  kList,         // a sequence: children matched in order (stored reversed when the list runs right to left)
  kAlternative,  // a|b|...: children tried in order
  kString,       // a literal run
  kRange,        // one unit tested against a class ([...], ., \d, \w, \s and negations, POSIX names)
  kBoundary,     // ^ $ \A \Z \z \b \B
  kGlobal,       // \G under the global flag: the position where the search began
  kEmpty,        // an empty pattern or branch
  kBracket,      // a capturing group
  kBackref,      // \1, \k<name>, \g{n}
  kRepeat,       // {n}: exactly n times
  kGreedy,       // * + ? {n,} {n,m}
  kReluctant,    // the same followed by ?
  kPossessive,   // the same followed by +: never gives back
  kIndependent,  // (?>...)
  kAssert,       // look-ahead and look-behind
  kCondition,    // (?(cond)yes|no)
  kDelegate,     // (?R) and its numbered and named forms
};

enum class BoundaryKind : std::uint8_t {
  kTextStart = 0,       // \A, ^ without multi-line
  kTextEndOrFinalLf = 1,  // $ without multi-line
  kTextEndZ = 2,        // \Z
  kLineStart = 3,       // ^ with multi-line
  kLineEnd = 4,         // $ with multi-line
  kTextEnd = 5,         // \z
  kWordBoundary = 6,    // \b
  kNotWordBoundary = 7, // \B
};

enum ElxFlag : std::uint8_t {
  kElxBackward = 1,      // matches right to left, from the position towards the start of the text
  kElxIgnoreCase = 2,
  kElxNegative = 4,      // assertions: (?! and (?<!
  kElxSingleUnit = 8,    // repeats: the child is a class of one unit, repeated by a scanning loop
  kElxCallTarget = 16,   // the target of some recursion
  kElxSettled = 32,      // repeats: the content depends on the position only (no back-reference, group
                         // condition or recursion) and leaves no choice point, so an empty iteration would
                         // only repeat itself
  kElxCondAssert = 64,   // conditions: the condition is a look-around (in `cond`), not a group number
};

struct Elx {
  ElxKind kind = ElxKind::kEmpty;
  std::uint8_t flags = 0;
  BoundaryKind boundary = BoundaryKind::kTextStart;
  std::int32_t parent = -1;  // -1 for the root and for nothing else
  std::int32_t next = -1;    // the following sibling when the parent is a list
  std::int32_t first = 0;    // List/Alternative: first entry in children; String: offset in literals;
                             // Range and single-unit repeats: class index
  std::int32_t count = 0;    // List/Alternative: number of children; String: length
  std::int32_t child = -1;   // Bracket, repeats, Independent, Assert: the inner element; Condition: yes branch
  std::int32_t other = -1;   // Condition: the no branch (-1: empty)
  std::int32_t cond = -1;    // Condition on a look-around: the Assert element
  std::int32_t min = 0, max = 0;  // repeats; max -1 is unbounded
  std::int32_t group = 0;    // Bracket, Backref, group Condition: group number; Delegate: target element
  std::int32_t reg = -1;     // first match-time register the element owns
  std::int32_t callReg = -1; // recursion targets: the register holding the position of the innermost call
  std::int32_t followUnit = -1;  // single-unit greedy and lazy repeats: the unit the continuation must start with
  std::int32_t firstSet = -1;    // children of alternatives: index in firstSets, -1 when anything may start
};

// The units that can start a non-empty match of an element, in its own direction.
struct FirstSet {
  std::uint64_t low[4] = {};
  bool high = false;  // some unit from 256 up may start it
  // The low part as at most four ranges of units, when it is that simple (ranges == 0 otherwise), so that
  // the search can test eight units at once.
  int ranges = 0;
  char16_t rangeLow[4] = {}, rangeHigh[4] = {};
  bool Test(char16_t c) const noexcept { return c < 256 ? (low[c >> 6] >> (c & 63)) & 1 : high; }
};

// How a search chooses where to try: derived once from the tree.
struct SearchPlan {
  enum class Anchor : std::uint8_t { kNone, kTextStart, kSearchStart, kLineStart };
  Anchor anchor = Anchor::kNone;
  int minLength = 0;             // no match is shorter
  bool useFirstSet = false;      // every match starts with a unit of first
  FirstSet first;
  bool useSecondSet = false;     // every match is two units long at least, the second one from second
  FirstSet second;
  std::u16string prefix;         // every match starts with this text (case-sensitive), or empty
  std::u16string required;       // every match contains this text at requiredOffset or later from its start
  int requiredOffset = 0;
  std::u16string lookbehind;     // every match starts right after this text
  int leadingRun = -1;           // a leading unbounded single-unit repeat outside groups: skip its run on failure
};

struct CompiledRegex {
  std::u16string pattern;
  int flags = 0;
  std::vector<Elx> elx;
  std::vector<std::int32_t> children;
  std::u16string literals;
  std::vector<CharClass> classes;
  std::vector<FirstSet> firstSets;
  std::vector<std::pair<std::u16string, int>> names;  // group names in order of appearance
  int root = 0;
  int groupCount = 0;
  // Registers: capture start and end of group g at 2g and 2g+1, the open position of group g at
  // openBase + g, then those of the elements, then the current recursion frame (frameReg). Recursion saves
  // and restores the first snapshotSize registers.
  int openBase = 0;
  int frameReg = 0;
  int regCount = 0;
  bool hasRecursion = false;
  bool backward = false;
  SearchPlan plan;

  int GroupNumber(std::u16string_view name) const noexcept {
    for (const auto& n : names)
      if (n.first == name) return n.second;
    return 0;
  }
};

}  // namespace quarrix::detail::regex
