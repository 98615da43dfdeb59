// Fuzz target for the regex engine through CRegex: any pattern, any flags, any subject, every operation.
// Input: byte 0 the flags, byte 1 the start for Replace and the replacement choice, byte 2 the pattern length
// in units, then the pattern and the subject, one unit per byte (bytes from 0xE0 up stand for interesting
// units beyond Latin-1: case-folding oddities, surrogates, wide spaces). Besides crashes and sanitizer
// reports it checks that every reported span lies inside the text. Run (preset fuzz):
//   build/fuzz/fuzz/RegexFuzzer -dict=fuzz/regex/regex.dict -max_len=512 <work folder> fuzz/regex/corpus
// The seeds come from MakeSeeds.py; crash inputs that were fixed are kept beside them.
#include <quarrix/regex/CRegex.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using quarrix::CRegex;
using quarrix::CString;

char16_t Unit(std::uint8_t b) {
  static constexpr char16_t kSpecial[32] = {
      0x212A, 0x017F, 0x0130, 0x0131, 0x03A9, 0x03C9, 0x00C9, 0x00E9, 0x4E00, 0xD83D, 0xDE00, 0x2003,
      0xFFFF, 0x00A0, 0x0085, 0x2028, 0x0663, 0x00DF, 0x1E9E, 0x0178, 0x00FF, 0x00B5, 0x039C, 0x03BC,
      0xFB00, 0x0000, 0x000B, 0x2126, 0x0345, 0xFEFF, 0xDBFF, 0xDC00};
  return b >= 0xE0 ? kSpecial[b - 0xE0] : static_cast<char16_t>(b);
}

void Check(bool ok) {
  if (!ok) __builtin_trap();
}

// Every span of the last result lies inside the text, start before end, or is -1 throughout.
void CheckSpans(const CRegex& re, int length) {
  const auto& result = re.GetLastMatchResult();
  if (result.IsEmpty()) return;
  Check(result.GetSize() == 2 + 2 * (result.GetAt(1) + 1));
  for (int g = 0; g <= result.GetAt(1); ++g) {
    const int start = re.GetMatchGroupStart(g), end = re.GetMatchGroupEnd(g);
    if (start < 0 || end < 0) {
      Check(start == -1 && end == -1);
      continue;
    }
    Check(result.GetAt(0) == 1 && start <= end && end <= length);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  const int flags = data[0] & 63;
  const int option = data[1];
  std::size_t patternLength = data[2];
  data += 3;
  size -= 3;
  if (patternLength > size) patternLength = size;
  std::u16string pattern, subject;
  for (std::size_t k = 0; k < patternLength; ++k) pattern += Unit(data[k]);
  for (std::size_t k = patternLength; k < size; ++k) subject += Unit(data[k]);
  const CString text(subject);
  const int length = text.GetLength();

  CRegex::SetMatchLimit(20000);  // pathological patterns are found quickly, not run out

  CRegex re(CString(pattern), flags);
  re.Match(text);
  CheckSpans(re, length);
  for (int g = -1; g <= re.GetLastMatchResult().GetAt(1) + 1; ++g) (void)re.GetMatchGroupText(g);
  (void)re.ReplaceMatchGroupText(u"<>", option % 4);

  // Iterate as callers do, stepping over empty matches themselves.
  re.PrepareMatch(text);
  for (int n = 0; n < 16 && re.MatchNext(); ++n) {
    CheckSpans(re, length);
    if (re.GetMatchEnd() == re.GetMatchStart()) break;
  }

  (void)CRegex::IsMatch(CString(pattern), text, flags);
  static const char16_t* const kReplacements[] = {u"[$&]", u"$1$2${1}$+", u"$`$'$_$$", u"${name}x$9", u""};
  const CString replaced = CRegex::Replace(CString(pattern), flags, text, kReplacements[option % 5],
                                           (option & 0x80) ? (option >> 3) % (length + 2) - 1 : -1, -1);
  (void)replaced;
  (void)CRegex::ReplaceMatchGroupText(CString(pattern), flags, text, u"x", option % 3);

  CRegex copy(re);
  copy.MatchExact(text);
  CheckSpans(copy, length);
  return 0;
}
