#pragma once
// Paths between the library's Windows form and the operating system's: the library accepts '\' and '/', and
// hands paths to the system as UTF-8 with '/'; paths it builds from the system come back with '\'.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

#include <string>
#include <string_view>

namespace quarrix {

// "C:\data\x.txt" -> "C:/data/x.txt" (UTF-8); nothing else changes, so a drive letter stays part of a relative name.
QUARRIX_API std::string ToNativePath(const CString& path);
// "/tmp/x.txt" -> "\tmp\x.txt"; invalid UTF-8 decodes to U+FFFD.
QUARRIX_API CString FromNativePath(std::string_view path);

}  // namespace quarrix
