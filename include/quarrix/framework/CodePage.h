#pragma once
// Conversion between UTF-16 and 8-bit code pages under the Win32 names and rules.
//
// Supported: 65001 (UTF-8, the library's own codec), the Windows single-byte code pages 437, 737, 775, 850,
// 852, 855, 857, 860-866, 869, 874, 1250-1258, 20127 (ASCII), 20866, 21866, 28591-28599, 28603, 28605 and
// 10000 (tables built once from iconv), and the multi-byte code pages 932, 936, 949, 950 and 54936 (through iconv).
// CP_ACP, CP_OEMCP and CP_THREAD_ACP all stand for the process-wide ANSI code page.
//
// Nothing vanishes silently: invalid UTF-8 decodes to U+FFFD (one per maximal invalid subsequence), an
// unpaired surrogate encodes to EF BF BD in UTF-8, and a character that a code page cannot represent becomes
// its default character ('?' unless the caller gives one) and is reported through lpUsedDefaultChar. Bytes
// that a single-byte code page leaves undefined decode to U+0080..U+009F when they lie in 0x80..0x9F (so
// they survive a round trip, as on Windows) and to U+FFFD elsewhere. No best-fit mapping is done.
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <string>
#include <string_view>

namespace quarrix {

inline constexpr UINT CP_ACP = 0;
inline constexpr UINT CP_OEMCP = 1;
inline constexpr UINT CP_THREAD_ACP = 3;
inline constexpr UINT CP_UTF8 = 65001;

inline constexpr DWORD MB_PRECOMPOSED = 0x01;
inline constexpr DWORD MB_COMPOSITE = 0x02;
inline constexpr DWORD MB_USEGLYPHCHARS = 0x04;
inline constexpr DWORD MB_ERR_INVALID_CHARS = 0x08;
inline constexpr DWORD WC_DISCARDNS = 0x10;
inline constexpr DWORD WC_SEPCHARS = 0x20;
inline constexpr DWORD WC_DEFAULTCHAR = 0x40;
inline constexpr DWORD WC_ERR_INVALID_CHARS = 0x80;
inline constexpr DWORD WC_COMPOSITECHECK = 0x200;
inline constexpr DWORD WC_NO_BEST_FIT_CHARS = 0x400;

// The process-wide ANSI code page that CP_ACP stands for; 65001 until changed.
QUARRIX_API UINT GetAnsiCodePage() noexcept;
inline UINT GetACP() noexcept { return GetAnsiCodePage(); }
// Returns false, and keeps the current one, for a code page the library cannot convert.
QUARRIX_API bool SetAnsiCodePage(UINT codePage);
QUARRIX_API BOOL IsValidCodePage(UINT codePage);

// Win32 MultiByteToWideChar: cbMultiByte -1 converts up to and including the NUL; cchWideChar 0 asks for
// the size needed. Returns the number of units written (or needed); 0 on failure with GetLastError()
// ERROR_INVALID_PARAMETER, ERROR_INVALID_FLAGS, ERROR_INSUFFICIENT_BUFFER (the buffer holds a partial
// result) or ERROR_NO_UNICODE_TRANSLATION (MB_ERR_INVALID_CHARS and invalid input).
QUARRIX_API int MultiByteToWideChar(UINT CodePage, DWORD dwFlags, const char* lpMultiByteStr, int cbMultiByte,
                                    char16_t* lpWideCharStr, int cchWideChar);

// Win32 WideCharToMultiByte, with the same size rules. lpDefaultChar (its first byte) replaces what the code
// page cannot represent, and *lpUsedDefaultChar tells whether that happened; both must be null for UTF-8
// (else ERROR_INVALID_PARAMETER), as on Windows.
QUARRIX_API int WideCharToMultiByte(UINT CodePage, DWORD dwFlags, const char16_t* lpWideCharStr, int cchWideChar,
                                    char* lpMultiByteStr, int cbMultiByte, const char* lpDefaultChar,
                                    BOOL* lpUsedDefaultChar);

// Whole-string conversions for code inside and outside the library (no size limits, no last error).
QUARRIX_API std::u16string Utf8ToUtf16(std::string_view utf8);
QUARRIX_API std::string Utf16ToUtf8(std::u16string_view utf16);
QUARRIX_API std::u16string Utf32ToUtf16(std::wstring_view utf32);
// Decodes text of a code page (CP_ACP allowed). An unknown code page decodes as if it were Latin-1.
QUARRIX_API std::u16string CodePageToUtf16(UINT codePage, std::string_view text);
// Encodes to a code page; defaultChar 0 means the code page's own default. *usedDefault, when given, becomes
// true if a substitution happened (it is never set false here). An unknown code page encodes as UTF-8.
QUARRIX_API std::string Utf16ToCodePage(UINT codePage, std::u16string_view text, char defaultChar = 0,
                                        bool* usedDefault = nullptr);

}  // namespace quarrix
