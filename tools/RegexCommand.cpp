// quarrix regex: finds every match of a pattern (with its groups) in a text or a file, or replaces them.
#include "Tool.h"

#include <quarrix/framework/CodePage.h>
#include <quarrix/regex/CRegex.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quarrix::tool {
namespace {

constexpr const char* kUsage =
    "usage: quarrix regex [options] PATTERN [TEXT]\n"
    "  Lists every match of PATTERN in TEXT (or in the file given with -f) with its groups, or replaces them.\n"
    "  -f FILE     read the text from FILE (UTF-8)\n"
    "  -r TEXT     replace the matches by TEXT ($& match, $1 group, ${name}, $` $' $_ $+ $$) and print the result\n"
    "  -n COUNT    replace at most COUNT matches (with -r)\n"
    "  -i -m -s -x -g -R\n"
    "              ignore case, multi-line, single line (. takes line feeds), extended (spaces and # comments\n"
    "              ignored), global (\\G anchors at each search start), right to left\n"
    "  --limit N   backtracking steps allowed per search (default 10000000, 0: none)\n";

// Prints a text as a quoted string, with line ends and tabs visible.
void Quote(std::ostream& out, const CString& text) {
  std::string s = Utf16ToUtf8(text.view());
  std::string quoted;
  for (char c : s) {
    if (c == '\n')
      quoted += "\\n";
    else if (c == '\r')
      quoted += "\\r";
    else if (c == '\t')
      quoted += "\\t";
    else
      quoted += c;
  }
  out << '"' << quoted << '"';
}

std::optional<CString> ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (bytes.size() >= 3 && bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) bytes.erase(0, 3);
  return CString(Utf8ToUtf16(bytes));
}

// The names of the groups, found by asking the expression for each name it contains.
std::vector<CString> GroupNames(const CRegex& re, const CString& pattern, int groups) {
  std::vector<CString> names(static_cast<std::size_t>(groups) + 1);
  CRegex name(u"\\(\\?(?:P?<|')([A-Za-z_]\\w*)[>']", 0);
  name.PrepareMatch(pattern);
  while (name.MatchNext()) {
    const int number = re.GetNamedGroupNumber(name.GetMatchGroupText(1));
    if (number > 0 && number <= groups && names[static_cast<std::size_t>(number)].IsEmpty())
      names[static_cast<std::size_t>(number)] = name.GetMatchGroupText(1);
  }
  return names;
}

int ListMatches(const CString& pattern, int flags, const CString& text, std::ostream& out) {
  CRegex re(pattern, flags);
  const bool backward = (flags & CRegex::FlagRightToLeft) != 0;
  re.PrepareMatch(text);
  if (backward) re.SetNextStart(text.GetLength());
  std::vector<CString> names;
  int count = 0;
  while (re.MatchNext()) {
    const MatchResult& result = re.GetLastMatchResult();
    if (names.empty()) names = GroupNames(re, pattern, result.GetAt(1));
    out << "match " << ++count << " at " << re.GetMatchStart() << "-" << re.GetMatchEnd() << ": ";
    Quote(out, re.GetMatchText());
    out << "\n";
    for (int g = 1; g <= result.GetAt(1); ++g) {
      out << "  group " << g;
      if (!names[static_cast<std::size_t>(g)].IsEmpty()) out << " (" << names[static_cast<std::size_t>(g)] << ")";
      if (re.GetMatchGroupStart(g) < 0) {
        out << ": took no part\n";
        continue;
      }
      out << " at " << re.GetMatchGroupStart(g) << "-" << re.GetMatchGroupEnd(g) << ": ";
      Quote(out, re.GetMatchGroupText(g));
      out << "\n";
    }
    // MatchNext goes on from the match end: step over empty matches here, and walk right to left by hand.
    const bool empty = re.GetMatchStart() == re.GetMatchEnd();
    if (backward) {
      const int next = empty ? re.GetMatchStart() - 1 : re.GetMatchStart();
      if (next < 0) break;
      re.SetNextStart(next);
    } else if (empty) {
      if (re.GetMatchEnd() >= text.GetLength()) break;
      re.SetNextStart(re.GetMatchEnd() + 1);
    }
  }
  if (re.IsMatchLimitHit()) out << "(the search gave up at the match limit; raise it with --limit)\n";
  out << count << (count == 1 ? " match\n" : " matches\n");
  return count > 0 ? 0 : 1;
}

}  // namespace

int RunRegex(std::span<char* const> args, std::ostream& out) {
  static constexpr std::pair<std::string_view, int> kFlagOptions[] = {
      {"-i", CRegex::FlagIgnoreCase}, {"-m", CRegex::FlagMultiLine}, {"-s", CRegex::FlagSingleLine},
      {"-x", CRegex::FlagExtended},   {"-g", CRegex::FlagGlobal},    {"-R", CRegex::FlagRightToLeft}};
  int flags = 0;
  std::optional<std::string> file, replacement;
  int count = -1;
  std::vector<std::string> positional;
  for (std::size_t k = 0; k < args.size(); ++k) {
    const std::string a = args[k];
    auto value = [&]() -> std::optional<std::string> {
      if (k + 1 >= args.size()) return std::nullopt;
      return std::string(args[++k]);
    };
    int flag = 0;
    for (const auto& [option, bit] : kFlagOptions)
      if (a == option) flag = bit;
    if (a == "-h" || a == "--help") {
      out << kUsage;
      return 0;
    } else if (flag) {
      flags |= flag;
    } else if (a == "-f" || a == "-r" || a == "-n" || a == "--limit") {
      const auto v = value();
      if (!v) {
        std::cerr << "quarrix regex: " << a << " needs a value\n" << kUsage;
        return 2;
      }
      if (a == "-f") file = *v;
      if (a == "-r") replacement = *v;
      if (a == "-n") count = std::atoi(v->c_str());
      if (a == "--limit") CRegex::SetMatchLimit(std::atoi(v->c_str()));
    } else if (a.size() > 1 && a[0] == '-' && positional.empty()) {
      std::cerr << "quarrix regex: unknown option " << a << "\n" << kUsage;
      return 2;
    } else {
      positional.push_back(a);
    }
  }
  if (positional.empty() || positional.size() > (file ? 1u : 2u)) {
    std::cerr << kUsage;
    return 2;
  }
  const CString pattern(Utf8ToUtf16(positional[0]));
  CString text;
  if (file) {
    const auto content = ReadFile(*file);
    if (!content) {
      std::cerr << "quarrix regex: cannot read " << *file << "\n";
      return 2;
    }
    text = *content;
  } else if (positional.size() == 2) {
    text = CString(Utf8ToUtf16(positional[1]));
  }
  if (replacement) {
    const CString result = CRegex::Replace(pattern, flags, text, CString(Utf8ToUtf16(*replacement)), -1, count);
    out << Utf16ToUtf8(result.view());
    if (!result.IsEmpty() && result[result.GetLength() - 1] != u'\n') out << "\n";
    if (CRegex::IsStaticMatchLimitHit()) std::cerr << "quarrix regex: a search gave up at the match limit\n";
    return 0;
  }
  return ListMatches(pattern, flags, text, out);
}

}  // namespace quarrix::tool
