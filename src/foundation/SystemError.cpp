#include <quarrix/foundation/SystemError.h>

#include <quarrix/framework/LastError.h>

#include <cerrno>
#include <climits>

namespace quarrix {

CString GetLastErrorMessage(DWORD code) {
  if (code > static_cast<DWORD>(INT_MAX)) return CString();
  const CString message = GetOsErrorText(static_cast<int>(code));
  const int cr = message.Find(u'\r');
  return cr >= 0 ? message.Left(cr) : message;
}

CString GetLastErrorString() { return GetLastErrorMessage(static_cast<DWORD>(errno)); }

}  // namespace quarrix
