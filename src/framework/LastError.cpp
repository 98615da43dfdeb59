#include <quarrix/framework/LastError.h>

#include <quarrix/framework/CodePage.h>

#include <cstring>

namespace quarrix {
namespace {
thread_local DWORD t_lastError = ERROR_SUCCESS;
}

DWORD GetLastError() noexcept { return t_lastError; }
void SetLastError(DWORD dwErrCode) noexcept { t_lastError = dwErrCode; }

CString GetOsErrorText(int errnoValue) {
  // strerrordesc_np knows no locale and returns null for an unknown value, where strerror makes up a text.
  const char* text = strerrordesc_np(errnoValue);
  return text ? CString(Utf8ToUtf16(text)) : CString();
}

}  // namespace quarrix
