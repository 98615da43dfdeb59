// Search and replace with $ tokens. The replacement text is cut into literal runs and tokens by a regular
// expression of the engine itself, compiled once for the life of the process; being immutable, it serves
// every thread at once, each with its own match context.
#include "internal/Builder.h"
#include "internal/Matcher.h"

#include <memory>

namespace quarrix::detail::regex {
namespace {

const CompiledRegex& TokenExpression() {
  static const std::shared_ptr<const CompiledRegex> token = CompileRegex(u"\\$(?:[$&`'+_\\d]|\\{.*?\\})", 0);
  return *token;
}

// One piece of an expanded replacement.
struct Piece {
  enum Kind { kLiteral, kGroup, kBefore, kAfter, kHighest, kInput };
  Kind kind;
  int group = 0;              // kGroup
  std::u16string_view text;   // kLiteral: a view into the replacement
};

std::vector<Piece> CutReplacement(const CompiledRegex& re, std::u16string_view replacement) {
  std::vector<Piece> pieces;
  CContext context;
  std::vector<int> m;
  int pos = 0;
  const int len = static_cast<int>(replacement.size());
  auto literal = [&](int from, int to) {
    if (to > from)
      pieces.push_back({Piece::kLiteral, 0, replacement.substr(static_cast<std::size_t>(from),
                                                               static_cast<std::size_t>(to - from))});
  };
  while (pos < len && context.Search(TokenExpression(), replacement, pos, m)) {
    const int start = m[2], end = m[3];
    literal(pos, start);
    const std::u16string_view token = replacement.substr(static_cast<std::size_t>(start),
                                                         static_cast<std::size_t>(end - start));
    const char16_t c = token[1];
    switch (c) {
      case u'$': pieces.push_back({Piece::kLiteral, 0, token.substr(1)}); break;
      case u'&': pieces.push_back({Piece::kGroup, 0, {}}); break;
      case u'`': pieces.push_back({Piece::kBefore, 0, {}}); break;
      case u'\'': pieces.push_back({Piece::kAfter, 0, {}}); break;
      case u'+': pieces.push_back({Piece::kHighest, 0, {}}); break;
      case u'_': pieces.push_back({Piece::kInput, 0, {}}); break;
      case u'{': {
        const std::u16string_view inner = token.substr(2, token.size() - 3);
        int group = 0;
        bool digits = !inner.empty();
        for (char16_t d : inner) {
          digits = digits && d >= u'0' && d <= u'9';
          if (digits && group <= re.groupCount) group = group * 10 + (d - u'0');
        }
        if (!digits) group = re.GroupNumber(inner);
        if (group >= 1 && group <= re.groupCount)
          pieces.push_back({Piece::kGroup, group, {}});
        else
          literal(start, end);
        break;
      }
      default: pieces.push_back({Piece::kGroup, c - u'0', {}}); break;  // one digit
    }
    pos = end;
  }
  literal(pos, len);
  return pieces;
}

void Expand(const std::vector<Piece>& pieces, const std::vector<int>& m, std::u16string_view text,
            std::u16string& out) {
  const int groups = m[1];
  auto span = [&](int g) {
    const std::size_t at = static_cast<std::size_t>(2 + 2 * g);
    if (g < 0 || g > groups || m[at] < 0 || m[at + 1] < 0) return;
    out.append(text.substr(static_cast<std::size_t>(m[at]), static_cast<std::size_t>(m[at + 1] - m[at])));
  };
  for (const Piece& p : pieces) {
    switch (p.kind) {
      case Piece::kLiteral: out.append(p.text); break;
      case Piece::kGroup: span(p.group); break;
      case Piece::kBefore: out.append(text.substr(0, static_cast<std::size_t>(m[2]))); break;
      case Piece::kAfter: out.append(text.substr(static_cast<std::size_t>(m[3]))); break;
      case Piece::kInput: out.append(text); break;
      case Piece::kHighest: {
        int g = groups;
        while (g > 0 && m[static_cast<std::size_t>(2 + 2 * g)] < 0) --g;
        span(g);
        break;
      }
    }
  }
}

}  // namespace

std::u16string Replace(const CompiledRegex& re, CContext& context, std::u16string_view text,
                       std::u16string_view replacement, int start, int count, bool& limitHit) {
  limitHit = false;
  const std::vector<Piece> pieces = CutReplacement(re, replacement);
  const int len = static_cast<int>(text.size());
  std::vector<int> m;
  std::u16string out;
  if (!re.backward) {
    int pos = start < 0 ? 0 : start;
    int copied = 0;
    for (int n = 0; (count < 0 || n < count) && pos <= len; ++n) {
      if (!context.Search(re, text, pos, m)) {
        limitHit = context.LimitHit();
        break;
      }
      out.append(text.substr(static_cast<std::size_t>(copied), static_cast<std::size_t>(m[2] - copied)));
      Expand(pieces, m, text, out);
      copied = m[3];
      pos = m[3] > m[2] ? m[3] : m[3] + 1;  // after an empty match, move on by one unit
    }
    out.append(text.substr(static_cast<std::size_t>(copied)));
    return out;
  }
  // Right to left: the matches come from the end; expand each at once, assemble from the start afterwards.
  struct Found {
    int start, end;
    std::u16string expansion;
  };
  std::vector<Found> found;
  int pos = start < 0 || start > len ? len : start;
  for (int n = 0; (count < 0 || n < count) && pos >= 0; ++n) {
    if (!context.Search(re, text, pos, m)) {
      limitHit = context.LimitHit();
      break;
    }
    Found f{m[2], m[3], {}};
    Expand(pieces, m, text, f.expansion);
    found.push_back(std::move(f));
    pos = m[2] < m[3] ? m[2] : m[2] - 1;
  }
  int copied = 0;
  for (auto it = found.rbegin(); it != found.rend(); ++it) {
    out.append(text.substr(static_cast<std::size_t>(copied), static_cast<std::size_t>(it->start - copied)));
    out.append(it->expansion);
    copied = it->end;
  }
  out.append(text.substr(static_cast<std::size_t>(copied)));
  return out;
}

}  // namespace quarrix::detail::regex
