#pragma once
// String helpers aware of the German umlauts.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

#include <vector>

namespace quarrix::StringTools {

// The non-empty tokens of s between any of the characters of delims: runs of delimiters count as one, and
// leading or trailing delimiters give nothing.
QUARRIX_API std::vector<CString> split(const CString& s, CString delims);

// Upper-cases s in place (ordinary Unicode upper-casing), then turns any ä, ö, ü left by it into Ä, Ö, Ü.
// Returns s.
QUARRIX_API CString& MakeUpperGerman(CString& s);
// Lower-cases s in place, then replaces "A" by "ä", "Ö" by "ö", "Ü" by "ü". The "A" step changes nothing
// (lower-casing has removed every A already) and is kept as the original has it. Returns s.
QUARRIX_API CString& MakeLowerGerman(CString& s);
// Upper-cases both arguments in place as MakeUpperGerman does, then compares them without case: negative, 0
// or positive. Both arguments are changed, deliberately.
QUARRIX_API int CompareNoCaseGerman(CString& a, CString& b);

}  // namespace quarrix::StringTools
