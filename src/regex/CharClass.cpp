#include "internal/CharClass.h"

#include <memory>

namespace quarrix::detail::regex {
namespace {

constexpr int kPropertyCount = static_cast<int>(CharProperty::kXDigit) + 1;

struct FoldTables {
  char16_t fold[0x10000];
  std::uint64_t variants[0x10000 / 64];  // units that share their fold with another unit
  bool highVariant[256];                  // units below 256 that share their fold with one from 256 up
};

const FoldTables& GetFoldTables() {
  static const std::unique_ptr<FoldTables> tables = [] {
    auto t = std::make_unique<FoldTables>();
    for (unsigned c = 0; c < 0x10000; ++c) {
      t->fold[c] = ToLowerChar(ToUpperChar(static_cast<char16_t>(c)));
      t->variants[c / 64] = 0;
    }
    for (unsigned c = 0; c < 0x10000; ++c) {
      const char16_t f = t->fold[c];
      if (f != c) {
        t->variants[c / 64] |= std::uint64_t{1} << (c % 64);
        t->variants[f / 64] |= std::uint64_t{1} << (f % 64);
      }
    }
    for (unsigned c = 0; c < 256; ++c) t->highVariant[c] = t->fold[c] >= 256;
    for (unsigned c = 256; c < 0x10000; ++c) {
      for (unsigned d = 0; d < 256 && t->fold[c] < 256; ++d)
        if (t->fold[d] == t->fold[c]) t->highVariant[d] = true;
    }
    return t;
  }();
  return *tables;
}

// For each property, the properties it shares at least one unit from 256 up with (bit masks).
const std::uint16_t* GetHighCooccurrence() {
  static const auto table = [] {
    std::unique_ptr<std::uint16_t[]> t(new std::uint16_t[kPropertyCount]());
    for (unsigned c = 256; c < 0x10000; ++c) {
      std::uint16_t mask = 0;
      for (int p = 0; p < kPropertyCount; ++p)
        if (HasProperty(static_cast<char16_t>(c), static_cast<CharProperty>(p))) mask |= std::uint16_t(1u << p);
      for (int p = 0; p < kPropertyCount; ++p)
        if (mask & (1u << p)) t[p] |= mask;
    }
    return t;
  }();
  return table.get();
}

bool PropertyReachesHigh(const ClassItem& item) {
  if (item.negated) return true;
  return item.property != CharProperty::kDigit && item.property != CharProperty::kAscii &&
         item.property != CharProperty::kXDigit;
}

}  // namespace

char16_t FoldCase(char16_t c) noexcept { return GetFoldTables().fold[c]; }

bool HasCaseVariants(char16_t c) noexcept { return (GetFoldTables().variants[c / 64] >> (c % 64)) & 1; }

bool HasHighCaseVariant(char16_t c) noexcept { return c < 256 && GetFoldTables().highVariant[c]; }

bool HasProperty(char16_t c, CharProperty property) noexcept {
  switch (property) {
    case CharProperty::kDigit: return c >= u'0' && c <= u'9';
    case CharProperty::kWord: return HasCharFlag(c, kCharWord);
    case CharProperty::kSpace: return HasCharFlag(c, kCharSpace);
    case CharProperty::kAlnum: return HasCharFlag(c, kCharAlpha | kCharDigit);
    case CharProperty::kAlpha: return HasCharFlag(c, kCharAlpha);
    case CharProperty::kAscii: return c < 128;
    case CharProperty::kBlank: return HasCharFlag(c, kCharBlank);
    case CharProperty::kCntrl: return HasCharFlag(c, kCharCntrl);
    case CharProperty::kGraph: return HasCharFlag(c, kCharGraph);
    case CharProperty::kLower: return HasCharFlag(c, kCharLower);
    case CharProperty::kPrint: return HasCharFlag(c, kCharPrint);
    case CharProperty::kPunct: return HasCharFlag(c, kCharPunct);
    case CharProperty::kUpper: return HasCharFlag(c, kCharUpper);
    case CharProperty::kXDigit: return HasCharFlag(c, kCharXDigit);
  }
  return false;
}

bool CharClass::TestItems(char16_t c) const noexcept {
  for (const ClassItem& item : m_items) {
    if (item.isProperty) {
      if (HasProperty(c, item.property) != item.negated) return true;
    } else if (c >= item.low && c <= item.high) {
      return true;
    }
  }
  return false;
}

bool CharClass::TestSlow(char16_t c) const noexcept {
  bool in = TestItems(c);
  if (!in && m_ignoreCase && HasCaseVariants(c)) {
    in = TestItems(ToLowerChar(c)) || TestItems(ToUpperChar(c)) || TestItems(FoldCase(c));
  }
  return in != m_negated;
}

void CharClass::Finish() {
  for (auto& word : m_low) word = 0;
  for (unsigned c = 0; c < 256; ++c)
    if (TestSlow(static_cast<char16_t>(c))) m_low[c >> 6] |= std::uint64_t{1} << (c & 63);
  bool reachesHigh = m_ignoreCase;  // case variants of low units can lie above 255 ('k' and U+212A)
  for (const ClassItem& item : m_items)
    reachesHigh = reachesHigh || (item.isProperty ? PropertyReachesHigh(item) : item.high >= 256);
  if (reachesHigh)
    m_high = HighMode::kTest;
  else
    m_high = m_negated ? HighMode::kAll : HighMode::kNone;
}

bool HighPartsDisjoint(const CharClass& a, const CharClass& b) {
  using HighMode = CharClass::HighMode;
  if (a.GetHighMode() == HighMode::kNone || b.GetHighMode() == HighMode::kNone) return true;
  if (a.GetHighMode() == HighMode::kAll || b.GetHighMode() == HighMode::kAll) return false;
  // Case variants can carry a unit below 256 above it ('k' and U+212A): refuse rather than reason about them.
  if (a.IsNegated() || b.IsNegated() || a.IsIgnoreCase() || b.IsIgnoreCase()) return false;
  // Both are lists of items; decide only when every item reaching above 255 is a plain property.
  std::uint16_t maskA = 0, maskB = 0;
  auto collect = [](const CharClass& cls, std::uint16_t& mask) {
    for (const ClassItem& item : cls.Items()) {
      if (item.isProperty) {
        if (item.negated) return false;
        if (PropertyReachesHigh(item)) mask |= std::uint16_t(1u << static_cast<int>(item.property));
      } else if (item.high >= 256) {
        return false;
      }
    }
    return true;
  };
  if (!collect(a, maskA) || !collect(b, maskB)) return false;
  const std::uint16_t* cooccur = GetHighCooccurrence();
  for (int p = 0; p < kPropertyCount; ++p)
    if ((maskA & (1u << p)) && (cooccur[p] & maskB)) return false;
  return true;
}

}  // namespace quarrix::detail::regex
