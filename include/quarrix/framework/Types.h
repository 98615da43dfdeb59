#pragma once
// The Win32 scalar types under their Windows names and Windows sizes, so that ported code keeps compiling
// and keeps the widths its files and formats assume (LONG and DWORD are 32 bits, as on Windows).
#include <cstddef>
#include <cstdint>

namespace quarrix {

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using INT = int;
using BOOL = int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;
using WCHAR = char16_t;
using TCHAR = char16_t;
using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = char16_t*;
using LPCWSTR = const char16_t*;
using LPTSTR = char16_t*;
using LPCTSTR = const char16_t*;
using LPVOID = void*;
using LPCVOID = const void*;
using LPBYTE = BYTE*;

// Other headers (glib, X11) define TRUE and FALSE as macros with the same values; leave theirs in place.
#ifndef TRUE
inline constexpr BOOL TRUE = 1;
#endif
#ifndef FALSE
inline constexpr BOOL FALSE = 0;
#endif

}  // namespace quarrix
