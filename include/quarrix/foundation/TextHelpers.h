#pragma once
// Numbers to text and back, token splitting and wildcard masks.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

namespace quarrix {

// "%d".
QUARRIX_API CString IntToStr(int n);
// Upper-case hexadecimal, zero-padded to at least `digits` characters (clamped to 1..64); negative numbers
// show their 32-bit two's complement: IntToHex(255, 4) == "00FF", IntToHex(-1, 2) == "FFFFFFFF".
QUARRIX_API CString IntToHex(int n, int digits);
// The value of wcstol(s, end, 16) with Windows' 32-bit long: optional white space and sign, optional "0x",
// digits up to the first non-hex character; 0 when there are none; saturates at INT_MIN/INT_MAX.
QUARRIX_API int HexToInt(const CString& s);
// x with "%.<decimals>f" (a negative decimals counts as 0). With bTrimZeros a run of two or more zeros at the
// end becomes one zero, then a final ".0" goes: 1.2300 with 4 decimals gives "1.230", 2.000 gives "2", and
// 100 with 0 decimals gives "10" (the rule looks only at the text, not at the decimal point).
QUARRIX_API CString DblToStr(double x, int decimals, bool bTrimZeros);

// 1 if c is one of the characters of set, else 0 (a null or empty set gives 0).
QUARRIX_API int IsCharInSet(char16_t c, const char16_t* set) noexcept;

// The next token of s: the text from pos up to the next character of delims (or the end). On success pos moves
// past that delimiter and the result is 1; when pos is at or beyond the end the result is 0 and token is left
// alone. Consecutive delimiters give empty tokens: "a,,b" gives "a", "", "b", then 0. A negative pos counts
// as 0; null texts count as empty.
QUARRIX_API int GetToken(const char16_t* s, const char16_t* delims, int& pos, CString& token);

// Wildcard match: '*' matches any run of characters, '?' any one. With bIgnoreCase, ASCII letters compare
// without case. Deliberately, a text with one extra trailing character matches ("abcd" matches "abc", but
// "abcde" does not). Runs in time bounded by text length times mask length, without recursion. It keeps one
// process-wide give-up flag, so calls from several threads at once are not safe.
QUARRIX_API int MatchesToMask(const char16_t* text, const char16_t* mask, int bIgnoreCase);

}  // namespace quarrix
