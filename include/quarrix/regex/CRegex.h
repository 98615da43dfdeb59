#pragma once
// CRegex: the library's regular expressions over UTF-16 text (a backtracking engine with groups, look-around,
// lazy and possessive repeats, back-references, conditions and recursion), with search, iteration and `$`
// replacement. No operation throws or reports a syntax error: every pattern compiles to something that
// matches deterministically (see "Malformed patterns" below).
//
// Syntax: literals and the escapes \a \e \f \n \r \t \v \xHH \x{H...} \uHHHH (any other escaped character
// stands for itself), \Q...\E; . \d \D \w \W \s \S and [...] classes with ranges, negation and the POSIX names
// [:alnum:] [:alpha:] [:ascii:] [:blank:] [:cntrl:] [:digit:] [:graph:] [:lower:] [:print:] [:punct:]
// [:space:] [:upper:] [:xdigit:] (also [:^name:]); anchors ^ $ \A \Z \z \b \B and \G (only under
// FlagGlobal, otherwise a literal G); quantifiers * + ? {n} {n,} {n,m}, each optionally followed by ? (lazy)
// or + (possessive); groups ( ), (?: ), (?<name> ), (?'name' ), (?P<name> ), (?> ), (?= ), (?! ), (?<= ),
// (?<! ) (look-behind may have any length), (?#comment); back-references \1 ... \9, \NN (when that many
// groups have opened before it), \k<name>, \k'name', \k{name}, \g{n}, \gn, \g{-n} (relative); conditions
// (?(1)yes|no), (?(name)yes|no), (?(<name>)...), (?(?=...)yes|no) with any look-around; recursion (?R),
// (?R<n>), (?R<name>), (?R'n'), (?R'name'), after which the captures made inside it are forgotten; inline
// modifiers (?imsg-imsg) and (?imsg-imsg: ...).
//
// Character semantics: positions are UTF-16 code units and every class tests one unit. \d and [:digit:] are
// the ASCII digits 0-9; \w is a letter, a digit or '_' and \s is white space as the framework's Unicode tables
// (Unicode.h) classify them, so they include non-ASCII letters and spaces; \b uses \w. Ignore-case compares
// units by simple Unicode case mapping (a unit matches when it, its lower case, its upper case or the lower
// case of its upper case does), so 'k' also matches U+212A KELVIN SIGN. '.' excludes only the line feed.
// Multi-line ^ also matches after a line feed that ends the text.
//
// Right to left (FlagRightToLeft, and inside look-behind) the pattern is matched from its end towards its
// start, so a back-reference must stand to the right of its group to see it, and a group inside a
// look-behind also runs right to left when recursion calls it.
//
// Malformed patterns: an unmatched ')' is a literal; groups still open at the end are closed there; a
// quantifier with nothing before it is a literal character, one right after another quantifier repeats the
// quantified item again; a '{' that does not start a valid {n}, {n,} or {n,m} (with n <= m) is a literal; an
// unterminated '[' is a literal '[', and so is the '[' of an unknown POSIX name; a range whose end lies below
// its start is empty; a malformed \x{...} (no closing brace, no or non-hex digits, above 10FFFF) stands for
// the letter x, the rest being read as pattern text (so \x{110000} repeats x 110000 times), and \x or \u with
// too few hex digits stand for their letter; a code point above FFFF is its surrogate pair, or both its units
// inside a class; a reference to a group or name that does not exist never matches and a condition on one is
// false; '(?' followed by anything unrecognised opens a non-capturing group whose text starts after the '?';
// unknown letters in inline modifiers are ignored (there is none for the extended flag). Recursion that comes
// back to the same group at the same position without consuming text fails instead of looping.
//
// Limits: each search may take at most GetMatchLimit() backtracking steps (default 10,000,000, process-wide);
// a search that needs more reports no match and IsMatchLimitHit() tells so. A search over a very long text
// whose failed attempts backtrack a lot can reach the limit too; raise it for such work. So does a search
// whose backtracking state would outgrow about 700 MB (some 16 million open alternatives).
//
// Threads: distinct CRegex objects may be used from different threads at once; one object is not
// synchronised.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

#include <memory>
#include <vector>

namespace quarrix {

namespace detail::regex {
struct CompiledRegex;
class CContext;
}  // namespace detail::regex

// The result of one search: element 0 is non-zero when a match was found, element 1 the highest group number
// of the expression, and elements 2n+2 / 2n+3 the start and end (one past the last unit) of group n; group 0
// is the whole match; -1 marks a group that took no part (and every group of a failed search).
class QUARRIX_API MatchResult {
 public:
  MatchResult() = default;

  int GetSize() const noexcept { return static_cast<int>(m_values.size()); }
  // The element at index, or -1 when index lies outside the result.
  int GetAt(long long index) const noexcept {
    return index >= 0 && index < GetSize() ? m_values[static_cast<std::size_t>(index)] : -1;
  }
  // The start and end of a group (-1 when it took no part or lies beyond the result).
  int GetGroupStart(int group) const noexcept { return GetAt(2LL * group + 2); }
  int GetGroupEnd(int group) const noexcept { return GetAt(2LL * group + 3); }
  bool IsEmpty() const noexcept { return m_values.empty(); }
  const std::vector<int>& Values() const noexcept { return m_values; }
  std::vector<int>& Values() noexcept { return m_values; }

 private:
  std::vector<int> m_values;
};

// One compiled expression with the text it was last matched against and the result of that match.
// Positions are UTF-16 code-unit indices into that text; -1 stands for no position.
class QUARRIX_API CRegex {
 public:
  // Flag bits; they combine.
  enum {
    FlagNone = 0,
    FlagSingleLine = 1,   // '.' also matches a line feed
    FlagMultiLine = 2,    // ^ and $ also match at line starts and ends
    FlagGlobal = 4,       // \G anchors at the position where the search starts
    FlagIgnoreCase = 8,   // case-insensitive comparison
    FlagRightToLeft = 16, // the search runs from the end of the text towards its start
    FlagExtended = 32,    // white space in the expression is ignored and '#' starts a comment to the line end
  };

  // Empty expression, flags 0, empty text, not prepared, empty result. Until an expression is set it
  // matches nothing (Match gives 0 and an empty result).
  CRegex();
  // Stores and compiles the expression at once.
  CRegex(CString expression, int flags);
  // Copies expression, flags, text, the prepared state, the next start and the last result.
  CRegex(const CRegex& other);
  CRegex& operator=(const CRegex& other);
  CRegex(CRegex&& other) noexcept;
  CRegex& operator=(CRegex&& other) noexcept;
  ~CRegex();

  // Empties expression and text, sets flags 0, unprepares and resets the next start. The compiled expression
  // and the last result stay as they were (a later Match still uses the old compiled expression).
  void Init();
  // Store the expression or the flags, reset the next start and recompile.
  void SetExpression(CString expression);
  void SetSearchFlags(int flags);
  CString GetExpression() const { return m_expression; }
  int GetSearchFlags() const noexcept { return m_flags; }

  // Compiles expression with flags and searches text from the default start (its beginning, or its end under
  // FlagRightToLeft). Returns non-zero when found. Nothing is kept.
  static int IsMatch(CString expression, const CString& text, int flags = 0);

  // Stores text and searches it from position 0, also under FlagRightToLeft (where only matches ending at 0
  // can be found, unlike IsMatch). Returns non-zero when found; the result stays for the accessors below.
  int Match(const CString& text);
  // Makes the whole text match: for good, keeps only FlagSingleLine of the flags and wraps the stored
  // expression as "^" + expression + "$" (a second call wraps it again), recompiles, then Match(text).
  int MatchExact(const CString& text);
  // Stores text for MatchNext, marks the object prepared and sets the next start to 0.
  void PrepareMatch(const CString& text);
  // Searches the prepared text from the next start; returns 0 at once when not prepared. After a match the
  // next start becomes the match end, so an empty match is found again on the next call: step on yourself
  // (SetNextStart). Under FlagRightToLeft the next start is the match end as well, so the same match is
  // found again.
  int MatchNext();
  // Sets the next start back to 0; the prepared state stays.
  void ResetMatch();
  // Where the next MatchNext searches from (-1: the default start). Callers step over an empty match with
  // SetNextStart(GetMatchEnd() + 1), and walk right to left with SetNextStart(GetMatchStart()).
  int GetNextStart() const noexcept { return m_nextStart; }
  void SetNextStart(int start) noexcept { m_nextStart = start; }
  // Element 0 of the last result (0 when it is empty).
  int IsLastMatchSuccessfull() const noexcept;
  // True when the last search of this object (Match, MatchNext, MatchExact, Replace) gave up at the limit.
  bool IsMatchLimitHit() const noexcept { return m_limitHit; }

  // Start and end of the whole match or of a group in the last result; -1 beyond the result.
  int GetMatchStart() const noexcept { return m_result.GetAt(2); }
  int GetMatchEnd() const noexcept { return m_result.GetAt(3); }
  int GetMatchGroupStart(int group) const noexcept { return m_result.GetGroupStart(group); }
  int GetMatchGroupEnd(int group) const noexcept { return m_result.GetGroupEnd(group); }
  const MatchResult& GetLastMatchResult() const noexcept { return m_result; }

  // text.Mid(start, end - start) of the group in result (a null result counts as empty); a group beyond the
  // result or one that took no part gives Mid(-1, 0), an empty string.
  static CString GetMatchGroupText(const MatchResult* result, const CString& text, int group);
  static CString GetMatchText(const MatchResult* result, const CString& text);
  // The same on the last result and the stored text.
  CString GetMatchText() const;
  CString GetMatchGroupText(int group) const;

  // text.Left(start) + replacement + text.Right(length - end); text is not changed.
  static CString ReplaceSubStr(const CString& text, int start, int end, const CString& replacement);
  // Replaces at most count matches (-1: all) found from start (-1: the default start) by replaceWith, in
  // which $$ is '$', $& the match, $` the text before it, $' the text after it, $+ the highest group that took
  // part (the match itself when none did), $_ the whole text, $d group d (one digit), ${name} and ${n} a named
  // or numbered group (copied literally when it names no group from 1 to the highest); any other '$' stays.
  // After an empty match the search moves on by one unit.
  static CString Replace(CString expression, int flags, const CString& text, CString replaceWith, int start = -1,
                         int count = -1);
  CString Replace(const CString& text, CString replaceWith, int start = -1, int count = -1);
  // Matches text with a temporary CRegex(expression, flags) and returns it with the group's span replaced by
  // replacement (literal, no $ tokens); returns an empty string, not text, when there is no match.
  static CString ReplaceMatchGroupText(CString expression, int flags, const CString& text, CString replacement,
                                       int group);
  // The same on the last result and the stored text; empty when the last match failed or the result is empty.
  CString ReplaceMatchGroupText(CString replacement, int group) const;

  // The group number of a name in the compiled expression, 0 when no group has that name.
  int GetNamedGroupNumber(const CString& name) const;

  // The process-wide limit of backtracking steps per search; a value of 0 or less means no limit.
  static void SetMatchLimit(int limit) noexcept;
  static int GetMatchLimit() noexcept;
  static constexpr int kDefaultMatchLimit = 10000000;
  // Whether the last static IsMatch, Replace or ReplaceMatchGroupText on the calling thread gave up at the
  // limit.
  static bool IsStaticMatchLimitHit() noexcept;

 private:
  void Compile();
  int Search(int start);
  detail::regex::CContext& Context();

  std::shared_ptr<const detail::regex::CompiledRegex> m_compiled;
  MatchResult m_result;
  int m_prepared = 0;
  CString m_expression;
  int m_flags = 0;
  CString m_text;
  int m_nextStart = 0;
  bool m_limitHit = false;
  std::unique_ptr<detail::regex::CContext> m_context;  // search scratch, reused between searches
};

}  // namespace quarrix
