#include <quarrix/framework/CDumpContext.h>

#include <quarrix/framework/CObject.h>
#include <quarrix/framework/CodePage.h>
#include <quarrix/framework/Trace.h>

#include <ostream>

namespace quarrix {

CDumpContext::~CDumpContext() {
  try {
    Flush();
  } catch (...) {
    // A trace handler that throws loses its last line.
  }
}

CDumpContext& CDumpContext::operator<<(const CString& s) {
  if (m_pOut) {
    *m_pOut << s;
    return *this;
  }
  // Without a stream, each finished line goes to the trace handler on its own.
  for (char16_t c : s.view()) {
    m_strLine += c;
    if (c == u'\n') {
      AfxTraceText(m_strLine);
      m_strLine.Empty();
    }
  }
  return *this;
}

CDumpContext& CDumpContext::operator<<(const char16_t* psz) { return *this << CString(psz); }

CDumpContext& CDumpContext::operator<<(const char* psz) { return *this << CString(psz); }

CDumpContext& CDumpContext::operator<<(const CStringA& s) { return *this << CString(s); }

CDumpContext& CDumpContext::operator<<(const void* p) { return *this << cstringf(u"$%p", p); }

CDumpContext& CDumpContext::operator<<(double d) { return *this << cstringf(u"%g", d); }

CDumpContext& CDumpContext::operator<<(const CObject& ob) {
  ob.Dump(*this);
  return *this;
}

void CDumpContext::Flush() {
  if (m_pOut) {
    m_pOut->flush();
  } else if (!m_strLine.IsEmpty()) {
    AfxTraceText(m_strLine);
    m_strLine.Empty();
  }
}

}  // namespace quarrix
