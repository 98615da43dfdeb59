#include <quarrix/foundation/CBaseException.h>

#include <quarrix/framework/MessageBox.h>

#include "internal/Widen.h"

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
  return u"File:   " + detail::WidenBytes(file) + cstringf(u"\nLine:   %d\nFunction:   ", line) + detail::WidenBytes(function);
}

}  // namespace quarrix
