#include <quarrix/framework/LastError.h>

namespace quarrix {
namespace {
thread_local DWORD t_lastError = ERROR_SUCCESS;
}

DWORD GetLastError() noexcept { return t_lastError; }
void SetLastError(DWORD dwErrCode) noexcept { t_lastError = dwErrCode; }

}  // namespace quarrix
