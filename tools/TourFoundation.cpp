#include "Tool.h"

#include <quarrix/foundation/MathHelpers.h>
#include <quarrix/foundation/StringTools.h>
#include <quarrix/foundation/TextHelpers.h>
#include <quarrix/foundation/TimeTools.h>


namespace quarrix::tool {

void TourFoundation(std::ostream& out) {
  Heading(out, "foundation: rounding halves away from zero through 32 bits");
  for (double x : {2.5, -2.5, -2.4, 3e9}) out << cstringf(u"roundSpecial(%g) = %.15g\n", x, roundSpecial(x));
  out << cstringf(u"roundDigits(1.005, 2) = %g   (1.005 * 100 is 100.4999...)\n", roundDigits(1.005, 2));
  out << cstringf(u"roundDigits(1234.5, -2) = %g\n", roundDigits(1234.5, -2));
  out << cstringf(u"roundSignificantDigits(0.012345, 2) = %g\n", roundSignificantDigits(0.012345, 2));

  Heading(out, "foundation: DblToStr trims zeros in two regex steps");
  const struct {
    double x;
    int decimals;
  } numbers[] = {{1.23, 4}, {2.0, 3}, {100.0, 0}, {1.5, 2}};
  for (const auto& n : numbers) {
    out << cstringf(u"DblToStr(%g, %d, true) = \"", n.x, n.decimals) << DblToStr(n.x, n.decimals, true)
        << "\"   untrimmed \"" << DblToStr(n.x, n.decimals, false) << "\"\n";
  }

  Heading(out, "foundation: wildcard masks and tokens");
  const struct {
    const char16_t* text;
    const char16_t* mask;
    int ignoreCase;
  } masks[] = {{u"report.txt", u"*.TXT", 1}, {u"report.txt", u"*.TXT", 0}, {u"abcd", u"abc", 0},
               {u"beam_2024.dwg", u"beam_????.*", 0}};
  for (const auto& m : masks) {
    out << "MatchesToMask(\"" << CString(m.text) << "\", \"" << CString(m.mask) << "\", " << m.ignoreCase
        << ") = " << MatchesToMask(m.text, m.mask, m.ignoreCase) << "\n";
  }
  out << "GetToken over \"a,,b\":";
  int pos = 0;
  CString token;
  while (GetToken(u"a,,b", u",", pos, token)) out << " \"" << token << "\"";
  out << "\nIntToHex(-1, 2) = " << IntToHex(-1, 2) << ", HexToInt(\"0x1A\") = " << HexToInt(u"0x1A") << "\n";
  out << "today: " << GetTimeStampAsText(true, nullptr) << "\n";
}

}  // namespace quarrix::tool
