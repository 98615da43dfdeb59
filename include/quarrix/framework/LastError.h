#pragma once
// The Win32 "last error" of the calling thread, set by the library's Win32-style functions
// (MultiByteToWideChar, the registry functions, ...). It is the library's own per-thread value, not errno.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

namespace quarrix {

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_INVALID_DATA = 13;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_MORE_DATA = 234;
inline constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
inline constexpr DWORD ERROR_INVALID_FLAGS = 1004;
inline constexpr DWORD ERROR_NO_UNICODE_TRANSLATION = 1113;

QUARRIX_API DWORD GetLastError() noexcept;
QUARRIX_API void SetLastError(DWORD dwErrCode) noexcept;

// The C library's text for an errno value, in English whatever the locale ("No such file or directory" for
// ENOENT); empty for a value it does not know.
QUARRIX_API CString GetOsErrorText(int errnoValue);

}  // namespace quarrix
