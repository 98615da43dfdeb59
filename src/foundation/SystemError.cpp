#include <quarrix/foundation/SystemError.h>

#include <quarrix/framework/CodePage.h>

#include <cerrno>
#include <climits>
#include <cstring>

namespace quarrix {

CString GetLastErrorMessage(DWORD code) {
  if (code > static_cast<DWORD>(INT_MAX)) return CString();
  // strerrordesc_np knows no locale and returns null for an unknown code, where strerror makes up a text.
  const char* text = strerrordesc_np(static_cast<int>(code));
  if (!text) return CString();
  CString message(Utf8ToUtf16(text));
  const int cr = message.Find(u'\r');
  return cr >= 0 ? message.Left(cr) : message;
}

CString GetLastErrorString() { return GetLastErrorMessage(static_cast<DWORD>(errno)); }

}  // namespace quarrix
