#include <quarrix/framework/MessageBox.h>

#include <quarrix/framework/CodePage.h>

#include <cerrno>
#include <cstdio>
#include <mutex>

namespace quarrix {
namespace {

std::mutex g_mutex;
MessageBoxHandler g_handler;
CString g_appName;

int DefaultHandler(const CString& text, const CString& caption, UINT type) {
  const std::string line = Utf16ToUtf8((caption + u": " + text + u"\n").view());
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
  return GetDefaultMessageBoxButton(type);
}

}  // namespace

MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler) {
  std::lock_guard lock(g_mutex);
  MessageBoxHandler previous = std::move(g_handler);
  g_handler = std::move(handler);
  return previous;
}

int MessageBox(const CString& text, const CString& caption, UINT nType) {
  MessageBoxHandler handler;
  {
    std::lock_guard lock(g_mutex);
    handler = g_handler;  // a copy: the handler may install another one while it runs
  }
  return handler ? handler(text, caption, nType) : DefaultHandler(text, caption, nType);
}

int AfxMessageBox(const CString& text, UINT nType, UINT) { return MessageBox(text, AfxGetAppName(), nType); }

int GetDefaultMessageBoxButton(UINT nType) noexcept {
  static constexpr int kButtons[][4] = {
      {IDOK},
      {IDOK, IDCANCEL},
      {IDABORT, IDRETRY, IDIGNORE},
      {IDYES, IDNO, IDCANCEL},
      {IDYES, IDNO},
      {IDRETRY, IDCANCEL},
      {IDCANCEL, IDTRYAGAIN, IDCONTINUE},
  };
  const UINT set = nType & MB_TYPEMASK;
  if (set >= std::size(kButtons)) return IDOK;
  int buttons[5] = {};
  int count = 0;
  for (int b : kButtons[set])
    if (b) buttons[count++] = b;
  if (nType & MB_HELP) buttons[count++] = IDHELP;
  const int wanted = static_cast<int>((nType & MB_DEFMASK) >> 8);
  return wanted < count ? buttons[wanted] : buttons[0];
}

CString AfxGetAppName() {
  std::lock_guard lock(g_mutex);
  if (!g_appName.IsEmpty()) return g_appName;
  return CString(Utf8ToUtf16(program_invocation_short_name));
}

void AfxSetAppName(const CString& name) {
  std::lock_guard lock(g_mutex);
  g_appName = name;
}

}  // namespace quarrix
