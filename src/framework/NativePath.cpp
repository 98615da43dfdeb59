#include <quarrix/framework/NativePath.h>

#include <quarrix/framework/CodePage.h>

#include <algorithm>

namespace quarrix {

std::string ToNativePath(const CString& path) {
  std::string native = Utf16ToUtf8(path.view());
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

CString FromNativePath(std::string_view path) {
  std::u16string text = Utf8ToUtf16(path);
  std::replace(text.begin(), text.end(), u'/', u'\\');
  return CString(std::move(text));
}

}  // namespace quarrix
