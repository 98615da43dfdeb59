#pragma once
// Character classes of the regex engine: one UTF-16 unit tested against ranges and named properties, with
// negation and ignore-case. Units below 256 are answered from a bitmap computed at compile time.
#include <quarrix/framework/Unicode.h>

#include <cstdint>
#include <vector>

namespace quarrix::detail::regex {

// Case folding for ignore-case comparison: the lower case of the upper case, so that 'ſ', 's' and 'S' fold
// alike, as do 'K', 'k' and U+212A.
char16_t FoldCase(char16_t c) noexcept;
inline char16_t FoldAscii(char16_t c) noexcept { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; }
inline char16_t Fold(char16_t c) noexcept { return c < 128 ? FoldAscii(c) : FoldCase(c); }
// True when some other unit folds like c (so that ignore-case makes a difference for it).
bool HasCaseVariants(char16_t c) noexcept;
// For a unit below 256: true when a unit from 256 up folds like it ('k' and U+212A, 's' and U+017F).
bool HasHighCaseVariant(char16_t c) noexcept;

// The named classes: \d \w \s and the POSIX names.
enum class CharProperty : std::uint8_t {
  kDigit, kWord, kSpace, kAlnum, kAlpha, kAscii, kBlank, kCntrl, kGraph, kLower, kPrint, kPunct, kUpper, kXDigit,
};
bool HasProperty(char16_t c, CharProperty property) noexcept;

struct ClassItem {
  bool isProperty = false;
  bool negated = false;  // properties only: \W, \D, \S, [:^name:]
  CharProperty property = CharProperty::kDigit;
  char16_t low = 0, high = 0;  // ranges only, inclusive
};

class CharClass {
 public:
  // How units from 256 up are answered: never, always, or by testing the items.
  enum class HighMode : std::uint8_t { kNone, kAll, kTest };

  void AddRange(char16_t low, char16_t high) { m_items.push_back({false, false, CharProperty::kDigit, low, high}); }
  void AddChar(char16_t c) { AddRange(c, c); }
  void AddProperty(CharProperty property, bool negated) {
    m_items.push_back({true, negated, property, 0, 0});
  }
  void SetNegated(bool negated) noexcept { m_negated = negated; }
  void SetIgnoreCase(bool ignoreCase) noexcept { m_ignoreCase = ignoreCase; }
  // Computes the bitmap and the high mode; call once after the items are complete.
  void Finish();

  bool Test(char16_t c) const noexcept {
    if (c < 256) return (m_low[c >> 6] >> (c & 63)) & 1;
    if (m_high != HighMode::kTest) return m_high == HighMode::kAll;
    return TestSlow(c);
  }
  // The full rule (items, case variants, negation), for any unit.
  bool TestSlow(char16_t c) const noexcept;

  const std::uint64_t* LowBits() const noexcept { return m_low; }
  HighMode GetHighMode() const noexcept { return m_high; }
  bool IsNegated() const noexcept { return m_negated; }
  bool IsIgnoreCase() const noexcept { return m_ignoreCase; }
  const std::vector<ClassItem>& Items() const noexcept { return m_items; }

 private:
  bool TestItems(char16_t c) const noexcept;

  std::uint64_t m_low[4] = {};
  HighMode m_high = HighMode::kTest;
  bool m_negated = false;
  bool m_ignoreCase = false;
  std::vector<ClassItem> m_items;
};

// True when no unit from 256 up belongs to both classes. Conservative: false when it cannot tell cheaply.
bool HighPartsDisjoint(const CharClass& a, const CharClass& b);

}  // namespace quarrix::detail::regex
