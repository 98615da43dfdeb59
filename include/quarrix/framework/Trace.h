#pragma once
// Debugger traces (MFC's TRACE): silent unless the application installs a handler, and then formatted with
// the library's formatter (see Format.h).
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

#include <functional>

namespace quarrix {

using TraceHandler = std::function<void(const CString& text)>;

// Installs the trace handler for the process and returns the previous one; an empty handler silences traces.
QUARRIX_API TraceHandler SetTraceHandler(TraceHandler handler);
QUARRIX_API bool IsTraceEnabled() noexcept;
// Hands the text to the trace handler, if there is one.
QUARRIX_API void AfxTraceText(const CString& text);

// Formats and traces; costs one check when no handler is installed.
template <class... Args>
void AfxTrace(const char16_t* pszFormat, const Args&... args) {
  if (!IsTraceEnabled()) return;
  CString text;
  text.Format(pszFormat, args...);
  AfxTraceText(text);
}

}  // namespace quarrix
