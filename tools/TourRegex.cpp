#include "Tool.h"

#include <quarrix/regex/CRegex.h>

namespace quarrix::tool {
namespace {

void Show(std::ostream& out, const char16_t* pattern, int flags, const char16_t* text) {
  CRegex re(pattern, flags);
  out << CString(pattern) << "  on \"" << CString(text) << "\": ";
  if (!re.Match(text)) {
    out << "no match\n";
    return;
  }
  out << "\"" << re.GetMatchText() << "\" at " << re.GetMatchStart();
  for (int g = 1; g <= re.GetLastMatchResult().GetAt(1); ++g) {
    out << ", $" << g << " = ";
    if (re.GetMatchGroupStart(g) < 0)
      out << "(none)";
    else
      out << "\"" << re.GetMatchGroupText(g) << "\"";
  }
  out << "\n";
}

}  // namespace

void TourRegex(std::ostream& out) {
  Heading(out, "regex: searching with groups");
  Show(out, u"(?<unit>kN|kg|mm)\\s*=\\s*(\\d+(?:\\.\\d+)?)", 0, u"load: kN = 12.5");
  Show(out, u"(?i)beam\\s+(HEA|IPE)\\s*(\\d+)", 0, u"Beam ipe 200, span 6 m");
  Show(out, u"(?<=\\$)\\d+(?:\\.\\d\\d)?", 0, u"total $1234.50 net");
  Show(out, u"(?<=^(?:.*\\\\)?)([^\\\\]+)(?=$)", 0, u"C:\\projects\\bridge\\model.qx");
  Show(out, u"\\((?:[^()]|(?R))*\\)", 0, u"f(a, g(b, h(c)), d)");
  Show(out, u"\\b\\w+\\b", 0, u"  \u00e9t\u00e9 \u03c9");

  Heading(out, "regex: iterating with PrepareMatch and MatchNext");
  CRegex numbers(u"\\d+", 0);
  numbers.PrepareMatch(u"spans 4, 12 and 7 m");
  out << "numbers:";
  while (numbers.MatchNext()) out << " " << numbers.GetMatchText() << "@" << numbers.GetMatchStart();
  out << "\n";

  Heading(out, "regex: replacing with $ tokens");
  out << CRegex::Replace(u"(\\w+)@(\\w+)\\.com", 0, u"mail anna@example.com", u"$2 <$1> [$&]") << "\n";
  out << CRegex::Replace(u"(?<d>\\d+)", 0, u"a1b22", u"<${d}>") << "\n";
  out << CRegex::Replace(u"\\d", CRegex::FlagRightToLeft, u"1234", u"#", -1, 2) << "  (right to left, 2 matches)\n";
  out << CRegex::ReplaceMatchGroupText(u"create table\\s+(\\w+)", CRegex::FlagIgnoreCase, u"CREATE TABLE parts (id)",
                                       u"dbencrypted.parts", 1)
      << "\n";

  Heading(out, "regex: the interface's deliberate oddities");
  CRegex exact(u"ab", CRegex::FlagIgnoreCase);
  exact.MatchExact(u"ab");
  exact.MatchExact(u"ab");
  out << "MatchExact twice: expression \"" << exact.GetExpression() << "\", flags " << exact.GetSearchFlags() << "\n";
  CRegex rtl(u"b", CRegex::FlagRightToLeft);
  out << "right to left: Match(\"ab\") = " << rtl.Match(u"ab") << " (starts at 0), IsMatch = "
      << CRegex::IsMatch(u"b", u"ab", CRegex::FlagRightToLeft) << " (starts at the end)\n";
  out << "ReplaceMatchGroupText without a match: \""
      << CRegex::ReplaceMatchGroupText(u"x(\\d)", 0, u"no digits", u"9", 1) << "\"\n";

  Heading(out, "regex: bounded work");
  CRegex slow(u"(a+)+b", 0);
  const int found = slow.Match(CString(u'a', 40) + u"c b");
  out << "(a+)+b on 40 a's: found " << found << ", limit hit " << slow.IsMatchLimitHit() << " after "
      << CRegex::GetMatchLimit() << " steps\n";
  CRegex malformed(u"(a|b))[z-a*", 0);
  out << "malformed \"(a|b))[z-a*\" still matches \"b)[z-a\": " << malformed.Match(u"b)[z-a") << "\n";
}

}  // namespace quarrix::tool
