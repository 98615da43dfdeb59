#include <quarrix/framework/CTime.h>

#include <quarrix/framework/CException.h>
#include <quarrix/framework/CodePage.h>

#include <chrono>

namespace quarrix {
namespace {

CString FormatTm(const struct tm* tm, const char16_t* format) {
  if (!tm || !format || !*format) return CString();
  const std::string utf8Format = Utf16ToUtf8(format);
  char buf[4 * 128];  // room for 127 units of any script
  const std::size_t n = std::strftime(buf, sizeof buf, utf8Format.c_str(), tm);
  if (n == 0) return CString();
  std::u16string text = Utf8ToUtf16(std::string_view(buf, n));
  if (text.size() > 127) return CString();
  return CString(std::move(text));
}

}  // namespace

CTime::CTime(int nYear, int nMonth, int nDay, int nHour, int nMin, int nSec, int nDST) {
  if (nYear < 1900 || nMonth < 1 || nMonth > 12 || nDay < 1 || nDay > 31 || nHour < 0 || nHour > 23 || nMin < 0 ||
      nMin > 59 || nSec < 0 || nSec > 59) {
    CString detail;
    detail.Format(u"the date %04d-%02d-%02d %02d:%02d:%02d is out of range", nYear, nMonth, nDay, nHour, nMin, nSec);
    AfxThrowInvalidArgException(detail);
  }
  struct tm tm = {};
  tm.tm_year = nYear - 1900;
  tm.tm_mon = nMonth - 1;
  tm.tm_mday = nDay;
  tm.tm_hour = nHour;
  tm.tm_min = nMin;
  tm.tm_sec = nSec;
  tm.tm_isdst = nDST;
  const std::time_t t = std::mktime(&tm);
  if (t == static_cast<std::time_t>(-1) && !(tm.tm_year == 69 && tm.tm_mon == 11 && tm.tm_mday == 31)) {
    AfxThrowInvalidArgException(u"the local time cannot be represented");
  }
  m_time = t;
}

CTime CTime::GetCurrentTime() noexcept {
  return CTime(std::chrono::duration_cast<std::chrono::seconds>(
                   std::chrono::system_clock::now().time_since_epoch()).count());
}

struct tm* CTime::GetLocalTm(struct tm* ptm) const noexcept {
  if (!ptm) return nullptr;
  const std::time_t t = static_cast<std::time_t>(m_time);
  return localtime_r(&t, ptm);
}

struct tm* CTime::GetGmtTm(struct tm* ptm) const noexcept {
  if (!ptm) return nullptr;
  const std::time_t t = static_cast<std::time_t>(m_time);
  return gmtime_r(&t, ptm);
}

namespace {
template <class F>
int LocalField(const CTime& t, F field) {
  struct tm tm;
  return t.GetLocalTm(&tm) ? field(tm) : 0;
}
}  // namespace

int CTime::GetYear() const noexcept { return LocalField(*this, [](const tm& x) { return x.tm_year + 1900; }); }
int CTime::GetMonth() const noexcept { return LocalField(*this, [](const tm& x) { return x.tm_mon + 1; }); }
int CTime::GetDay() const noexcept { return LocalField(*this, [](const tm& x) { return x.tm_mday; }); }
int CTime::GetHour() const noexcept { return LocalField(*this, [](const tm& x) { return x.tm_hour; }); }
int CTime::GetMinute() const noexcept { return LocalField(*this, [](const tm& x) { return x.tm_min; }); }
int CTime::GetSecond() const noexcept { return LocalField(*this, [](const tm& x) { return x.tm_sec; }); }
int CTime::GetDayOfWeek() const noexcept { return LocalField(*this, [](const tm& x) { return x.tm_wday + 1; }); }

CString CTime::Format(const char16_t* pszFormat) const {
  struct tm tm;
  return FormatTm(GetLocalTm(&tm), pszFormat);
}

CString CTime::FormatGmt(const char16_t* pszFormat) const {
  struct tm tm;
  return FormatTm(GetGmtTm(&tm), pszFormat);
}

}  // namespace quarrix
