#include "internal/Builder.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace quarrix::detail::regex {
namespace {

constexpr int kMaxCount = 1 << 30;  // repeat counts saturate here

bool IsAsciiDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool IsNameStart(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_'; }
bool IsNameChar(char16_t c) { return IsNameStart(c) || IsAsciiDigit(c); }
bool IsExtendedSpace(char16_t c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); }
int HexValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

enum class GroupKind : std::uint8_t {
  kRoot, kCapture, kNonCapture, kAtomic, kLookahead, kNegLookahead, kLookbehind, kNegLookbehind, kCondition,
};

struct Frame {
  GroupKind kind = GroupKind::kRoot;
  int group = 0;            // capture: its number; condition: the group tested (0 none)
  std::u16string condName;  // condition on a name, resolved at the end
  bool condOnAssert = false;
  int condAssert = -1;      // condition on a look-around: the Assert element once read
  int savedFlags = 0;       // flags outside the group
  std::size_t seqBase = 0;  // where the current alternative's items start in Builder::m_items
  std::vector<int> alts;    // finished alternatives
};

// A name waiting for the end of the pattern: back-references, conditions and recursion may name groups
// that open later.
struct PendingName {
  int element;
  std::u16string name;
};

// One escape or class member read as a single unit or a property.
struct ClassAtom {
  bool isProperty = false;
  bool negated = false;
  CharProperty property = CharProperty::kDigit;
  std::u16string units;  // one unit, or a surrogate pair from \x{...}
};

class Builder {
 public:
  Builder(std::u16string_view pattern, int flags) : m_p(pattern), m_flags(flags) {
    m_re = std::make_shared<CompiledRegex>();
    m_re->pattern.assign(pattern);
    m_re->flags = flags;
    m_re->backward = (flags & kFlagRightToLeft) != 0;
  }

  std::shared_ptr<const CompiledRegex> Build() {
    PushFrame(GroupKind::kRoot, 0);
    while (m_i < m_p.size()) Step();
    while (m_frames.size() > 1) CloseGroup();
    m_re->root = FinishFrameElement(m_frames.back());
    m_frames.clear();
    ResolveNames();
    LinkTree();
    AssignRegisters();
    AnalyseRegex(*m_re);
    return m_re;
  }

 private:
  // ---- elements -----------------------------------------------------------------------------------------
  int Add(Elx e) {
    if (m_flags & kFlagRightToLeft) e.flags |= kElxBackward;
    m_re->elx.push_back(e);
    return static_cast<int>(m_re->elx.size() - 1);
  }
  int AddKind(ElxKind kind) {
    Elx e;
    e.kind = kind;
    return Add(e);
  }
  int AddString(const std::u16string& s, int flags) {
    Elx e;
    e.kind = ElxKind::kString;
    e.first = static_cast<int>(m_re->literals.size());
    e.count = static_cast<int>(s.size());
    bool folds = false;
    if (flags & kFlagIgnoreCase) {
      for (char16_t c : s) folds = folds || HasCaseVariants(c);
    }
    if (folds) {
      e.flags |= kElxIgnoreCase;
      for (char16_t c : s) m_re->literals.push_back(Fold(c));
    } else {
      m_re->literals.append(s);
    }
    return Add(e);
  }
  // Whether ignore-case can change what the class matches: letters in its ranges, or the case properties.
  // \w and the letter properties hold both cases already.
  static bool CaseMatters(const CharClass& cls) {
    for (const ClassItem& item : cls.Items()) {
      if (item.isProperty) {
        if (item.property == CharProperty::kLower || item.property == CharProperty::kUpper) return true;
      } else if (item.high >= 128 || (item.low <= u'z' && item.high >= u'a') ||
                 (item.low <= u'Z' && item.high >= u'A')) {
        return true;
      }
    }
    return false;
  }
  int AddClassElement(CharClass cls) {
    cls.SetIgnoreCase((m_flags & kFlagIgnoreCase) != 0 && CaseMatters(cls));
    cls.Finish();
    m_re->classes.push_back(std::move(cls));
    Elx e;
    e.kind = ElxKind::kRange;
    e.first = static_cast<int>(m_re->classes.size() - 1);
    return Add(e);
  }
  int AddProperty(CharProperty property, bool negated) {
    CharClass cls;
    cls.AddProperty(property, negated);
    return AddClassElement(std::move(cls));
  }
  int AddBoundary(BoundaryKind kind) {
    Elx e;
    e.kind = ElxKind::kBoundary;
    e.boundary = kind;
    return Add(e);
  }
  // A sequence: empty gives an Empty element, one item stands for itself. Right to left the children are
  // stored in matching order, that is reversed.
  int AddSequence(std::size_t base) {
    const std::size_t n = m_items.size() - base;
    if (n == 0) return AddKind(ElxKind::kEmpty);
    if (n == 1) return m_items[base];
    Elx e;
    e.kind = ElxKind::kList;
    e.first = static_cast<int>(m_re->children.size());
    e.count = static_cast<int>(n);
    if (m_flags & kFlagRightToLeft) {
      for (std::size_t k = m_items.size(); k > base; --k) m_re->children.push_back(m_items[k - 1]);
    } else {
      m_re->children.insert(m_re->children.end(), m_items.begin() + static_cast<std::ptrdiff_t>(base),
                            m_items.end());
    }
    return Add(e);
  }
  int AddAlternatives(const std::vector<int>& alts, std::size_t from) {
    if (alts.size() - from == 1) return alts[from];
    Elx e;
    e.kind = ElxKind::kAlternative;
    e.first = static_cast<int>(m_re->children.size());
    e.count = static_cast<int>(alts.size() - from);
    m_re->children.insert(m_re->children.end(), alts.begin() + static_cast<std::ptrdiff_t>(from), alts.end());
    return Add(e);
  }

  // ---- the current sequence -----------------------------------------------------------------------------
  Frame& Top() { return m_frames.back(); }
  void FlushLiteral() {
    if (m_literal.empty()) return;
    m_items.push_back(AddString(m_literal, m_literalFlags));
    m_literal.clear();
  }
  void AddLiteralUnits(std::u16string_view units) {
    if (!m_literal.empty() && m_literalFlags != m_flags) FlushLiteral();
    m_literalFlags = m_flags;
    m_literal.append(units);
  }
  void AddLiteral(char16_t c) { AddLiteralUnits(std::u16string_view(&c, 1)); }
  void AddItem(int element) {
    FlushLiteral();
    m_items.push_back(element);
  }
  void SetFlags(int flags) {
    FlushLiteral();
    m_flags = flags;
  }

  void PushFrame(GroupKind kind, int group) {
    FlushLiteral();
    Frame f;
    f.kind = kind;
    f.group = group;
    f.savedFlags = m_flags;
    f.seqBase = m_items.size();
    m_frames.push_back(std::move(f));
    if (kind == GroupKind::kLookbehind || kind == GroupKind::kNegLookbehind) m_flags |= kFlagRightToLeft;
    if (kind == GroupKind::kLookahead || kind == GroupKind::kNegLookahead) m_flags &= ~kFlagRightToLeft;
  }

  // Builds the element of a finished group (flags still those inside it).
  int FinishFrameElement(Frame& f) {
    FlushLiteral();
    f.alts.push_back(AddSequence(f.seqBase));
    m_items.resize(f.seqBase);
    switch (f.kind) {
      case GroupKind::kRoot:
      case GroupKind::kNonCapture:
        return AddAlternatives(f.alts, 0);
      case GroupKind::kCapture: {
        Elx e;
        e.kind = ElxKind::kBracket;
        e.group = f.group;
        e.child = AddAlternatives(f.alts, 0);
        const int element = Add(e);
        m_groupElement[static_cast<std::size_t>(f.group)] = element;
        return element;
      }
      case GroupKind::kAtomic: {
        Elx e;
        e.kind = ElxKind::kIndependent;
        e.child = AddAlternatives(f.alts, 0);
        return Add(e);
      }
      case GroupKind::kLookahead:
      case GroupKind::kNegLookahead:
      case GroupKind::kLookbehind:
      case GroupKind::kNegLookbehind: {
        Elx e;
        e.kind = ElxKind::kAssert;
        e.child = AddAlternatives(f.alts, 0);
        if (f.kind == GroupKind::kNegLookahead || f.kind == GroupKind::kNegLookbehind) e.flags |= kElxNegative;
        const int element = Add(e);
        // The element's own direction is that of its content; the Assert itself does not move.
        m_re->elx[static_cast<std::size_t>(element)].flags &= static_cast<std::uint8_t>(~kElxBackward);
        return element;
      }
      case GroupKind::kCondition: {
        Elx e;
        e.kind = ElxKind::kCondition;
        e.child = f.alts[0];
        e.other = f.alts.size() > 1 ? AddAlternatives(f.alts, 1) : -1;
        e.group = f.group;
        if (f.condOnAssert) {
          e.flags |= kElxCondAssert;
          e.cond = f.condAssert;
        }
        const int element = Add(e);
        if (!f.condName.empty()) m_pendingNames.push_back({element, f.condName});
        return element;
      }
    }
    return AddKind(ElxKind::kEmpty);
  }

  void CloseGroup() {
    Frame f = std::move(Top());
    const int element = FinishFrameElement(f);
    m_frames.pop_back();
    m_flags = f.savedFlags;
    Frame& parent = Top();
    const bool isAssert = f.kind == GroupKind::kLookahead || f.kind == GroupKind::kNegLookahead ||
                          f.kind == GroupKind::kLookbehind || f.kind == GroupKind::kNegLookbehind;
    if (isAssert && parent.kind == GroupKind::kCondition && parent.condOnAssert && parent.condAssert < 0) {
      parent.condAssert = element;
      return;
    }
    AddItem(element);
  }

  void Alternate() {
    Frame& f = Top();
    FlushLiteral();
    f.alts.push_back(AddSequence(f.seqBase));
    m_items.resize(f.seqBase);
  }

  // ---- quantifiers --------------------------------------------------------------------------------------
  // Reads {n}, {n,} or {n,m} at m_i; false (nothing consumed) when it is not one.
  bool ReadBraces(int& min, int& max) {
    std::size_t j = m_i + 1;
    auto number = [&](int& value) {
      const std::size_t begin = j;
      long long v = 0;
      while (j < m_p.size() && IsAsciiDigit(m_p[j])) {
        v = v * 10 + (m_p[j] - u'0');
        if (v > kMaxCount) v = kMaxCount;
        ++j;
      }
      value = static_cast<int>(v);
      return j > begin;
    };
    if (!number(min)) return false;
    if (j < m_p.size() && m_p[j] == u'}') {
      max = min;
    } else if (j < m_p.size() && m_p[j] == u',') {
      ++j;
      if (j < m_p.size() && m_p[j] == u'}') {
        max = -1;
      } else if (!number(max) || j >= m_p.size() || m_p[j] != u'}' || max < min) {
        return false;
      }
    } else {
      return false;
    }
    m_i = j + 1;
    return true;
  }

  void Quantify(char16_t c) {
    int min = 0, max = -1;
    const std::size_t at = m_i;
    if (c == u'{') {
      if (!ReadBraces(min, max)) {
        AddLiteral(c);
        ++m_i;
        return;
      }
    } else {
      min = c == u'+' ? 1 : 0;
      max = c == u'?' ? 1 : -1;
      ++m_i;
    }
    // The item it applies to: the last unit of a pending literal run, or the last item of the sequence.
    int atom = -1;
    if (!m_literal.empty()) {
      // A surrogate pair from \x{...} stays whole.
      std::size_t keep = m_literal.size() - 1;
      if (keep > 0 && m_literal[keep] >= 0xDC00 && m_literal[keep] <= 0xDFFF && m_literal[keep - 1] >= 0xD800 &&
          m_literal[keep - 1] <= 0xDBFF)
        --keep;
      std::u16string last = m_literal.substr(keep);
      m_literal.resize(keep);
      FlushLiteral();
      atom = AddString(last, m_literalFlags);
    } else if (m_items.size() > Top().seqBase) {
      atom = m_items.back();
      m_items.pop_back();
    } else {
      // Nothing to repeat: the quantifier text is literal.
      m_i = at + 1;
      AddLiteral(c);
      return;
    }
    ElxKind kind = ElxKind::kGreedy;
    if (m_i < m_p.size() && m_p[m_i] == u'?') {
      kind = ElxKind::kReluctant;
      ++m_i;
    } else if (m_i < m_p.size() && m_p[m_i] == u'+') {
      kind = ElxKind::kPossessive;
      ++m_i;
    }
    m_items.push_back(MakeRepeat(atom, min, max, kind));
  }

  int MakeRepeat(int atom, int min, int max, ElxKind kind) {
    if (min == 1 && max == 1 && kind != ElxKind::kPossessive) return atom;
    if (min == max && kind != ElxKind::kPossessive) kind = ElxKind::kRepeat;
    const Elx& a = m_re->elx[static_cast<std::size_t>(atom)];
    Elx e;
    e.kind = kind;
    e.min = min;
    e.max = max;
    e.child = atom;
    if (a.kind == ElxKind::kRange) {
      e.flags |= kElxSingleUnit;
      e.first = a.first;
    } else if (a.kind == ElxKind::kString && a.count == 1) {
      CharClass cls;
      cls.AddChar(m_re->literals[static_cast<std::size_t>(a.first)]);
      cls.SetIgnoreCase((a.flags & kElxIgnoreCase) != 0);
      cls.Finish();
      m_re->classes.push_back(std::move(cls));
      e.flags |= kElxSingleUnit;
      e.first = static_cast<int>(m_re->classes.size() - 1);
    }
    e.flags |= a.flags & kElxBackward;
    m_re->elx.push_back(e);
    return static_cast<int>(m_re->elx.size() - 1);
  }

  // ---- escapes ------------------------------------------------------------------------------------------
  // Reads the hex digits of \x{...} starting at the '{' at j. Returns the code point or -1 when malformed.
  long ReadBracedHex(std::size_t j, std::size_t& end) const {
    std::size_t k = j + 1;
    long value = 0;
    while (k < m_p.size() && HexValue(m_p[k]) >= 0 && k - j <= 8) {
      value = value * 16 + HexValue(m_p[k]);
      ++k;
    }
    if (k == j + 1 || k >= m_p.size() || m_p[k] != u'}' || value > 0x10FFFF) return -1;
    end = k + 1;
    return value;
  }
  // Reads exactly `digits` hex digits at j; -1 when there are fewer.
  long ReadFixedHex(std::size_t j, int digits) const {
    long value = 0;
    for (int d = 0; d < digits; ++d) {
      if (j + d >= m_p.size() || HexValue(m_p[j + d]) < 0) return -1;
      value = value * 16 + HexValue(m_p[j + d]);
    }
    return value;
  }
  static std::u16string CodePointUnits(long cp) {
    if (cp < 0x10000) return std::u16string(1, static_cast<char16_t>(cp));
    cp -= 0x10000;
    return {static_cast<char16_t>(0xD800 + (cp >> 10)), static_cast<char16_t>(0xDC00 + (cp & 0x3FF))};
  }

  // Reads an escape that stands for a unit or a property, shared by classes and the rest of the pattern.
  // m_i is at the letter after the backslash; on return it is past the escape.
  ClassAtom ReadUnitEscape(bool inClass) {
    const char16_t c = m_p[m_i];
    ClassAtom atom;
    auto property = [&](CharProperty p, bool negated) {
      atom.isProperty = true;
      atom.property = p;
      atom.negated = negated;
    };
    ++m_i;
    switch (c) {
      case u'a': atom.units = u"\a"; break;
      case u'e': atom.units = u"\x1B"; break;
      case u'f': atom.units = u"\f"; break;
      case u'n': atom.units = u"\n"; break;
      case u'r': atom.units = u"\r"; break;
      case u't': atom.units = u"\t"; break;
      case u'v': atom.units = u"\v"; break;
      case u'b': atom.units = inClass ? u"\b" : u"b"; break;
      case u'd': property(CharProperty::kDigit, false); break;
      case u'D': property(CharProperty::kDigit, true); break;
      case u'w': property(CharProperty::kWord, false); break;
      case u'W': property(CharProperty::kWord, true); break;
      case u's': property(CharProperty::kSpace, false); break;
      case u'S': property(CharProperty::kSpace, true); break;
      case u'x': {
        std::size_t end = 0;
        long cp = -1;
        if (m_i < m_p.size() && m_p[m_i] == u'{') {
          cp = ReadBracedHex(m_i, end);
          if (cp >= 0) m_i = end;
        } else {
          cp = ReadFixedHex(m_i, 2);
          if (cp >= 0) m_i += 2;
        }
        atom.units = cp >= 0 ? CodePointUnits(cp) : u"x";
        break;
      }
      case u'u': {
        const long cp = ReadFixedHex(m_i, 4);
        if (cp >= 0) m_i += 4;
        atom.units = cp >= 0 ? CodePointUnits(cp) : u"u";
        break;
      }
      default: atom.units = std::u16string(1, c); break;
    }
    return atom;
  }

  // A name in <...>, '...' or {...} at m_i (the opening delimiter): a word that does not start with a digit
  // or, when allowNumber, a number that may carry a minus sign. Empty when malformed (nothing consumed).
  std::u16string ReadDelimitedName(char16_t close, bool allowNumber) {
    const std::size_t begin = m_i + 1;
    std::size_t j = begin;
    while (j < m_p.size() && (IsNameChar(m_p[j]) || (j == begin && m_p[j] == u'-'))) ++j;
    if (j == begin || j >= m_p.size() || m_p[j] != close) return {};
    std::u16string name(m_p.substr(begin, j - begin));
    bool number = allowNumber && name.size() > (name[0] == u'-' ? 1u : 0u);
    for (std::size_t k = name[0] == u'-' ? 1 : 0; k < name.size(); ++k) number = number && IsAsciiDigit(name[k]);
    if (!number && !IsNameStart(name[0])) return {};
    m_i = j + 1;
    return name;
  }

  int AddBackrefNumber(int group) {
    Elx e;
    e.kind = ElxKind::kBackref;
    e.group = group;
    if (m_flags & kFlagIgnoreCase) e.flags |= kElxIgnoreCase;
    return Add(e);
  }
  // A back-reference written as a name or a number, possibly relative (\g{-1}).
  void AddBackrefText(const std::u16string& text) {
    if (IsNameStart(text[0])) {
      const int element = AddBackrefNumber(0);
      m_pendingNames.push_back({element, text});
      AddItem(element);
      return;
    }
    long value = 0;
    for (char16_t c : text)
      if (IsAsciiDigit(c)) value = std::min<long>(value * 10 + (c - u'0'), kMaxCount);
    if (text[0] == u'-') value = m_groupCount + 1 - value;  // relative: \g{-1} is the last group opened
    AddItem(AddBackrefNumber(value > 0 ? static_cast<int>(value) : 0));
  }

  void Escape() {
    ++m_i;  // the backslash
    if (m_i >= m_p.size()) {
      AddLiteral(u'\\');
      return;
    }
    const char16_t c = m_p[m_i];
    switch (c) {
      case u'A': ++m_i; AddItem(AddBoundary(BoundaryKind::kTextStart)); return;
      case u'Z': ++m_i; AddItem(AddBoundary(BoundaryKind::kTextEndZ)); return;
      case u'z': ++m_i; AddItem(AddBoundary(BoundaryKind::kTextEnd)); return;
      case u'b': ++m_i; AddItem(AddBoundary(BoundaryKind::kWordBoundary)); return;
      case u'B': ++m_i; AddItem(AddBoundary(BoundaryKind::kNotWordBoundary)); return;
      case u'G':
        ++m_i;
        if (m_flags & kFlagGlobal)
          AddItem(AddKind(ElxKind::kGlobal));
        else
          AddLiteral(u'G');
        return;
      case u'Q': {
        ++m_i;
        while (m_i < m_p.size()) {
          if (m_p[m_i] == u'\\' && m_i + 1 < m_p.size() && m_p[m_i + 1] == u'E') {
            m_i += 2;
            return;
          }
          AddLiteral(m_p[m_i++]);
        }
        return;
      }
      case u'E': ++m_i; return;  // a stray \E means nothing
      case u'k': {
        ++m_i;
        if (m_i < m_p.size()) {
          const char16_t open = m_p[m_i];
          const char16_t close = open == u'<' ? u'>' : open == u'\'' ? u'\'' : open == u'{' ? u'}' : 0;
          if (close) {
            const std::u16string name = ReadDelimitedName(close, false);
            if (!name.empty()) {
              AddBackrefText(name);
              return;
            }
          }
        }
        AddLiteral(u'k');
        return;
      }
      case u'g': {
        ++m_i;
        if (m_i < m_p.size() && m_p[m_i] == u'{') {
          const std::u16string name = ReadDelimitedName(u'}', true);
          if (!name.empty()) {
            AddBackrefText(name);
            return;
          }
        } else if (m_i < m_p.size() && IsAsciiDigit(m_p[m_i])) {
          std::size_t j = m_i;
          while (j < m_p.size() && IsAsciiDigit(m_p[j])) ++j;
          AddBackrefText(std::u16string(m_p.substr(m_i, j - m_i)));
          m_i = j;
          return;
        }
        AddLiteral(u'g');
        return;
      }
      default: break;
    }
    if (c >= u'1' && c <= u'9') {
      // \1 to \9 always refer to a group; longer numbers only as far as groups have opened before them.
      std::size_t j = m_i;
      while (j < m_p.size() && IsAsciiDigit(m_p[j])) ++j;
      std::size_t digits = j - m_i;
      auto value = [&](std::size_t n) {
        long v = 0;
        for (std::size_t k = 0; k < n; ++k) v = std::min<long>(v * 10 + (m_p[m_i + k] - u'0'), kMaxCount);
        return v;
      };
      while (digits > 1 && value(digits) > m_groupCount) --digits;
      const int group = static_cast<int>(value(digits));
      m_i += digits;
      AddItem(AddBackrefNumber(group));
      return;
    }
    const ClassAtom atom = ReadUnitEscape(false);
    if (atom.isProperty)
      AddItem(AddProperty(atom.property, atom.negated));
    else
      AddLiteralUnits(atom.units);
  }

  // ---- classes ------------------------------------------------------------------------------------------
  static bool PosixProperty(std::u16string_view name, CharProperty& p) {
    static constexpr std::pair<std::u16string_view, CharProperty> kNames[] = {
        {u"alnum", CharProperty::kAlnum}, {u"alpha", CharProperty::kAlpha}, {u"ascii", CharProperty::kAscii},
        {u"blank", CharProperty::kBlank}, {u"cntrl", CharProperty::kCntrl}, {u"digit", CharProperty::kDigit},
        {u"graph", CharProperty::kGraph}, {u"lower", CharProperty::kLower}, {u"print", CharProperty::kPrint},
        {u"punct", CharProperty::kPunct}, {u"space", CharProperty::kSpace}, {u"upper", CharProperty::kUpper},
        {u"xdigit", CharProperty::kXDigit},
    };
    for (const auto& [n, prop] : kNames) {
      if (n == name) {
        p = prop;
        return true;
      }
    }
    return false;
  }

  // Reads one member at j (not the end of the pattern): a POSIX name, an escape or a unit.
  ClassAtom ReadClassAtom(std::size_t& j) {
    ClassAtom atom;
    const char16_t c = m_p[j];
    if (c == u'[' && j + 1 < m_p.size() && m_p[j + 1] == u':') {
      // Names are short: look no further, so that many "[:" cannot make reading quadratic.
      const std::size_t close = m_p.substr(0, std::min(m_p.size(), j + 12)).find(u":]", j + 2);
      if (close != std::u16string_view::npos) {
        std::u16string_view name = m_p.substr(j + 2, close - j - 2);
        const bool negated = !name.empty() && name[0] == u'^';
        if (negated) name.remove_prefix(1);
        CharProperty p;
        if (PosixProperty(name, p)) {
          atom.isProperty = true;
          atom.property = p;
          atom.negated = negated;
          j = close + 2;
          return atom;
        }
      }
    }
    if (c == u'\\' && j + 1 < m_p.size()) {
      m_i = j + 1;
      atom = ReadUnitEscape(true);
      j = m_i;
      return atom;
    }
    atom.units = std::u16string(1, c);
    ++j;
    return atom;
  }

  void Class() {
    std::size_t j = m_i + 1;
    CharClass cls;
    if (j < m_p.size() && m_p[j] == u'^') {
      cls.SetNegated(true);
      ++j;
    }
    bool first = true;
    bool inQuote = false;
    for (;;) {
      // \Q and \E switch quoting on and off between members.
      while (j + 1 < m_p.size() && m_p[j] == u'\\' && (m_p[j + 1] == u'Q' || m_p[j + 1] == u'E')) {
        inQuote = m_p[j + 1] == u'Q';
        j += 2;
      }
      if (j >= m_p.size()) {
        // Unterminated: the bracket is a literal and the rest is read as usual.
        AddLiteral(u'[');
        ++m_i;
        return;
      }
      if (m_p[j] == u']' && !first && !inQuote) break;
      first = false;
      ClassAtom atom;
      if (inQuote) {
        atom.units = std::u16string(1, m_p[j++]);
      } else {
        atom = ReadClassAtom(j);
      }
      if (atom.isProperty) {
        cls.AddProperty(atom.property, atom.negated);
        continue;
      }
      if (atom.units.size() > 1) {  // a surrogate pair: both units join
        for (char16_t u : atom.units) cls.AddChar(u);
        continue;
      }
      const char16_t low = atom.units[0];
      // A range: '-' followed by a single unit that is not the closing bracket.
      if (!inQuote && j + 1 < m_p.size() && m_p[j] == u'-' && m_p[j + 1] != u']' &&
          !(m_p[j + 1] == u'\\' && j + 2 < m_p.size() && (m_p[j + 2] == u'Q' || m_p[j + 2] == u'E'))) {
        std::size_t k = j + 1;
        const ClassAtom high = ReadClassAtom(k);
        if (!high.isProperty && high.units.size() == 1) {
          if (high.units[0] >= low) cls.AddRange(low, high.units[0]);
          j = k;
          continue;
        }
      }
      cls.AddChar(low);
    }
    m_i = j + 1;
    AddItem(AddClassElement(std::move(cls)));
  }

  // ---- groups -------------------------------------------------------------------------------------------
  // Inline modifiers at j (after "(?"): letters and '-' up to ')' or ':'. False when it is not that form.
  bool Modifiers(std::size_t j) {
    int flags = m_flags;
    bool remove = false;
    std::size_t k = j;
    for (; k < m_p.size(); ++k) {
      const char16_t c = m_p[k];
      if (c == u')' || c == u':') break;
      if (c == u'-') {
        remove = true;
        continue;
      }
      if ((c | 0x20) < u'a' || (c | 0x20) > u'z') return false;
      int bit = 0;
      switch (c | 0x20) {
        case u'i': bit = kFlagIgnoreCase; break;
        case u'm': bit = kFlagMultiLine; break;
        case u's': bit = kFlagSingleLine; break;
        case u'g': bit = kFlagGlobal; break;
        default: break;  // unknown letters are ignored
      }
      flags = remove ? (flags & ~bit) : (flags | bit);
    }
    if (k >= m_p.size()) return false;
    if (m_p[k] == u')') {
      SetFlags(flags);
    } else {
      PushFrame(GroupKind::kNonCapture, 0);
      m_flags = flags;
    }
    m_i = k + 1;
    return true;
  }

  // (?R), (?R<n>), (?R<name>), (?R'n'), (?R'name') at j (the 'R').
  bool Recursion(std::size_t j) {
    Elx e;
    e.kind = ElxKind::kDelegate;
    e.group = -1;
    std::u16string name;
    std::size_t end = j + 1;
    if (end < m_p.size() && m_p[end] == u')') {
      e.group = -2;  // the whole pattern
    } else if (end < m_p.size() && (m_p[end] == u'<' || m_p[end] == u'\'')) {
      const char16_t close = m_p[end] == u'<' ? u'>' : u'\'';
      const std::size_t saved = m_i;
      m_i = end;
      name = ReadDelimitedName(close, true);
      end = m_i;
      m_i = saved;
      if (name.empty() || name[0] == u'-' || end >= m_p.size() || m_p[end] != u')') return false;
    } else {
      return false;
    }
    m_hasRecursion = true;
    const int element = Add(e);
    if (!name.empty()) m_pendingNames.push_back({element, name});
    AddItem(element);
    m_i = end + 1;
    return true;
  }

  // (?(...)...) at m_i: a condition on a group or on a look-around.
  bool Condition() {
    const std::size_t j = m_i + 3;  // after "(?("
    if (j + 1 < m_p.size() && m_p[j] == u'?' &&
        (m_p[j + 1] == u'=' || m_p[j + 1] == u'!' ||
         (m_p[j + 1] == u'<' && j + 2 < m_p.size() && (m_p[j + 2] == u'=' || m_p[j + 2] == u'!')))) {
      PushFrame(GroupKind::kCondition, 0);
      Top().condOnAssert = true;
      m_i = j - 1;  // the look-around's own "(?" follows
      return true;
    }
    // A group number or name in its delimiters; looking further would make many "(?(" quadratic.
    const std::size_t close = m_p.substr(0, std::min(m_p.size(), j + 64)).find(u')', j);
    if (close == std::u16string_view::npos) return false;
    std::u16string_view text = m_p.substr(j, close - j);
    if (text.size() >= 2 && ((text.front() == u'<' && text.back() == u'>') ||
                             (text.front() == u'\'' && text.back() == u'\''))) {
      text = text.substr(1, text.size() - 2);
    }
    PushFrame(GroupKind::kCondition, 0);
    bool digits = !text.empty();
    for (char16_t c : text) digits = digits && IsAsciiDigit(c);
    if (digits) {
      long v = 0;
      for (char16_t c : text) v = std::min<long>(v * 10 + (c - u'0'), kMaxCount);
      Top().group = static_cast<int>(v);
    } else {
      Top().condName.assign(text.empty() ? u"\x01" : text);  // an empty name never resolves
    }
    m_i = close + 1;
    return true;
  }

  void OpenGroup() {
    const std::size_t j = m_i + 2;
    if (m_i + 1 >= m_p.size() || m_p[m_i + 1] != u'?') {
      ++m_i;
      OpenCapture(std::u16string());
      return;
    }
    const char16_t c = j < m_p.size() ? m_p[j] : 0;
    const char16_t c2 = j + 1 < m_p.size() ? m_p[j + 1] : 0;
    auto open = [&](GroupKind kind, std::size_t length) {
      m_i += length;
      PushFrame(kind, 0);
    };
    switch (c) {
      case u':': open(GroupKind::kNonCapture, 3); return;
      case u'>': open(GroupKind::kAtomic, 3); return;
      case u'=': open(GroupKind::kLookahead, 3); return;
      case u'!': open(GroupKind::kNegLookahead, 3); return;
      case u'<':
        if (c2 == u'=') return open(GroupKind::kLookbehind, 4);
        if (c2 == u'!') return open(GroupKind::kNegLookbehind, 4);
        if (NamedGroup(j, u'>')) return;
        break;
      case u'\'':
        if (NamedGroup(j, u'\'')) return;
        break;
      case u'P':
        if (c2 == u'<' && NamedGroup(j + 1, u'>')) return;
        break;
      case u'#': {
        const std::size_t close = m_p.find(u')', j);
        m_i = close == std::u16string_view::npos ? m_p.size() : close + 1;
        return;
      }
      case u'(':
        if (Condition()) return;
        break;
      case u'R':
        if (Recursion(j)) return;
        break;
      default: break;
    }
    if (c != 0 && (((c | 0x20) >= u'a' && (c | 0x20) <= u'z') || c == u'-') && Modifiers(j)) return;
    // Anything else: a non-capturing group whose text starts after the '?'.
    open(GroupKind::kNonCapture, 2);
  }

  bool NamedGroup(std::size_t open, char16_t close) {
    const std::size_t saved = m_i;
    m_i = open;
    std::u16string name = ReadDelimitedName(close, false);
    if (name.empty()) {
      m_i = saved;
      return false;
    }
    OpenCapture(name);
    return true;
  }

  void OpenCapture(const std::u16string& name) {
    ++m_groupCount;
    if (!name.empty() && m_re->GroupNumber(name) == 0) m_re->names.emplace_back(name, m_groupCount);
    m_groupElement.push_back(-1);
    PushFrame(GroupKind::kCapture, m_groupCount);
  }

  // ---- the main loop ------------------------------------------------------------------------------------
  void Step() {
    const char16_t c = m_p[m_i];
    if ((m_re->flags & kFlagExtended) && (IsExtendedSpace(c) || c == u'#')) {
      if (c == u'#') {
        while (m_i < m_p.size() && m_p[m_i] != u'\n') ++m_i;
      } else {
        ++m_i;
      }
      return;
    }
    switch (c) {
      case u'(': OpenGroup(); return;
      case u')':
        ++m_i;
        if (m_frames.size() > 1)
          CloseGroup();
        else
          AddLiteral(c);
        return;
      case u'|': ++m_i; Alternate(); return;
      case u'*':
      case u'+':
      case u'?':
      case u'{': Quantify(c); return;
      case u'[': Class(); return;
      case u'.': {
        ++m_i;
        CharClass cls;
        cls.SetNegated(true);
        if (!(m_flags & kFlagSingleLine)) cls.AddChar(u'\n');
        AddItem(AddClassElement(std::move(cls)));
        return;
      }
      case u'^':
        ++m_i;
        AddItem(AddBoundary((m_flags & kFlagMultiLine) ? BoundaryKind::kLineStart : BoundaryKind::kTextStart));
        return;
      case u'$':
        ++m_i;
        AddItem(AddBoundary((m_flags & kFlagMultiLine) ? BoundaryKind::kLineEnd : BoundaryKind::kTextEndOrFinalLf));
        return;
      case u'\\': Escape(); return;
      default: ++m_i; AddLiteral(c); return;
    }
  }

  // ---- after parsing ------------------------------------------------------------------------------------
  int ElementOfGroup(int group) const {
    if (group == -2) return m_re->root;
    if (group < 1 || group > m_groupCount) return -1;
    return m_groupElement[static_cast<std::size_t>(group)];
  }

  void ResolveNames() {
    for (const PendingName& p : m_pendingNames) {
      Elx& e = m_re->elx[static_cast<std::size_t>(p.element)];
      int group = m_re->GroupNumber(p.name);
      if (group == 0 && e.kind == ElxKind::kDelegate) {
        bool digits = true;
        long v = 0;
        for (char16_t c : p.name) {
          digits = digits && IsAsciiDigit(c);
          v = std::min<long>(v * 10 + (c - u'0'), kMaxCount);
        }
        if (digits) group = static_cast<int>(v);
      }
      e.group = group;
    }
    for (Elx& e : m_re->elx) {
      if (e.kind != ElxKind::kDelegate) continue;
      e.group = e.group == -2 ? m_re->root : ElementOfGroup(e.group);
      if (e.group >= 0) m_re->elx[static_cast<std::size_t>(e.group)].flags |= kElxCallTarget;
    }
    m_re->groupCount = m_groupCount;
    m_re->hasRecursion = m_hasRecursion;
  }

  void LinkTree() {
    auto& elx = m_re->elx;
    for (std::size_t i = 0; i < elx.size(); ++i) {
      const Elx e = elx[i];
      const int self = static_cast<int>(i);
      if (e.kind == ElxKind::kList || e.kind == ElxKind::kAlternative) {
        for (int k = 0; k < e.count; ++k) {
          Elx& child = elx[static_cast<std::size_t>(m_re->children[static_cast<std::size_t>(e.first + k)])];
          child.parent = self;
          child.next = e.kind == ElxKind::kList && k + 1 < e.count
                           ? m_re->children[static_cast<std::size_t>(e.first + k + 1)]
                           : -1;
        }
      }
      for (int link : {e.child, e.other, e.cond}) {
        if (link >= 0) elx[static_cast<std::size_t>(link)].parent = self;
      }
    }
    elx[static_cast<std::size_t>(m_re->root)].parent = -1;
  }

  void AssignRegisters() {
    const int groups = m_groupCount;
    m_re->openBase = 2 * (groups + 1);
    int next = m_re->openBase + groups + 1;
    for (Elx& e : m_re->elx) {
      switch (e.kind) {
        case ElxKind::kRepeat:
        case ElxKind::kGreedy:
        case ElxKind::kReluctant:
          if (!(e.flags & kElxSingleUnit)) e.reg = (next += 2) - 2;  // count, iteration start
          break;
        case ElxKind::kPossessive:
          if (!(e.flags & kElxSingleUnit)) e.reg = (next += 3) - 3;  // count, iteration start, cut height
          break;
        case ElxKind::kIndependent: e.reg = next++; break;  // cut height
        case ElxKind::kAssert: e.reg = (next += 2) - 2; break;  // cut height, start position
        case ElxKind::kCondition:
          if (e.flags & kElxCondAssert) e.reg = next++;  // cut height
          break;
        default: break;
      }
      if (e.flags & kElxCallTarget) e.callReg = next++;
    }
    m_re->frameReg = next;
    m_re->regCount = next + 1;
  }

  std::shared_ptr<CompiledRegex> m_re;
  std::u16string_view m_p;
  std::size_t m_i = 0;
  int m_flags;
  std::vector<Frame> m_frames;
  std::vector<int> m_items;
  std::u16string m_literal;
  int m_literalFlags = 0;
  int m_groupCount = 0;
  std::vector<int> m_groupElement{-1};  // group number -> its Bracket element
  std::vector<PendingName> m_pendingNames;
  bool m_hasRecursion = false;
};

}  // namespace

std::shared_ptr<const CompiledRegex> CompileRegex(std::u16string_view pattern, int flags) {
  return Builder(pattern, flags).Build();
}

}  // namespace quarrix::detail::regex
