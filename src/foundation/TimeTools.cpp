#include <quarrix/foundation/TimeTools.h>

#include <quarrix/framework/CException.h>

namespace quarrix {
namespace {

struct tm LocalTm(const CTime& t) {
  struct tm tm;
  if (!t.GetLocalTm(&tm)) {
    AfxThrowInvalidArgException(cstringf(u"the local time of %lld cannot be determined",
                                         static_cast<long long>(t.GetTime())));
  }
  return tm;
}

}  // namespace

CString GetTimeStampAsText(bool bDateOnly, CTime* pTime) {
  const CTime t = pTime ? *pTime : CTime::GetCurrentTime();
  LocalTm(t);
  return t.Format(bDateOnly ? u"%Y-%m-%d" : u"%Y-%m-%d %H:%M:%S");
}

CTime TimeTools::GetDateFromTime(CTime t) {
  if (t.GetTime() <= 0) return CTime(0);
  const struct tm tm = LocalTm(t);
  return CTime(tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, 0, 0, 0);
}

}  // namespace quarrix
