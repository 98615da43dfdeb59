#pragma once
// Texts for operating-system error codes. On Linux the codes are errno values and the texts the C library's
// (English, whatever the locale).
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

namespace quarrix {

// The C library's text for the errno value `code`, cut at its first carriage return; empty for a code the
// C library does not know (GetLastErrorMessage(ENOENT) == "No such file or directory").
QUARRIX_API CString GetLastErrorMessage(DWORD code);
// GetLastErrorMessage of the calling thread's errno.
QUARRIX_API CString GetLastErrorString();

}  // namespace quarrix
