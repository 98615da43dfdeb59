#include <quarrix/foundation/StringTools.h>

namespace quarrix::StringTools {

std::vector<CString> split(const CString& s, CString delims) {
  std::vector<CString> tokens;
  const std::u16string_view text = s.view();
  const std::u16string_view set = delims.view();
  std::size_t pos = 0;
  while (pos < text.size()) {
    const std::size_t start = text.find_first_not_of(set, pos);
    if (start == std::u16string_view::npos) break;
    const std::size_t end = std::min(text.find_first_of(set, start), text.size());
    tokens.emplace_back(text.substr(start, end - start));
    pos = end;
  }
  return tokens;
}

CString& MakeUpperGerman(CString& s) {
  s.MakeUpper();
  s.Replace(u"ä", u"Ä");
  s.Replace(u"ö", u"Ö");
  s.Replace(u"ü", u"Ü");
  return s;
}

CString& MakeLowerGerman(CString& s) {
  s.MakeLower();
  s.Replace(u"A", u"ä");
  s.Replace(u"Ö", u"ö");
  s.Replace(u"Ü", u"ü");
  return s;
}

int CompareNoCaseGerman(CString& a, CString& b) {
  MakeUpperGerman(a);
  MakeUpperGerman(b);
  return a.CompareNoCase(b);
}

}  // namespace quarrix::StringTools
