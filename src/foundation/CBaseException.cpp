#include <quarrix/foundation/CBaseException.h>

#include <quarrix/framework/MessageBox.h>

#include <quarrix/framework/CodePage.h>

namespace quarrix {

CString CBaseException::GetMessageText(EMessagePrefix ePrefix) const {
  switch (ePrefix) {
    case ePrefixID: return cstringf(u"%03d - ", m_nExceptionID) + m_strMessage;
    case ePrefixClass: return cstringf(u"%s - ", GetExceptionClass()) + m_strMessage;
    case ePrefixClassAndID: return cstringf(u"%s  %03d - ", GetExceptionClass(), m_nExceptionID) + m_strMessage;
    default: return m_strMessage;
  }
}

void CBaseException::ReportException() const { AfxMessageBox(GetMessageText(ePrefixClassAndID), MB_OK, 0); }

CString _PlaceStamp(const char* file, const char* function, int line) {
  // Each byte is the character of the same number: Latin-1, whatever the ANSI code page says.
  const auto widen = [](const char* text) { return CString(CodePageToUtf16(28591, text ? text : "")); };
  return u"File:   " + widen(file) + cstringf(u"\nLine:   %d\nFunction:   ", line) + widen(function);
}

}  // namespace quarrix
