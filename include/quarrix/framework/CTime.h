#pragma once
// CTime: a point in time as seconds since 1970-01-01 00:00:00 UTC, broken down and formatted in local time.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

#include <cstdint>
#include <ctime>

namespace quarrix {

// A time span in seconds.
class QUARRIX_API CTimeSpan {
 public:
  constexpr CTimeSpan() noexcept = default;
  constexpr explicit CTimeSpan(std::int64_t seconds) noexcept : m_span(seconds) {}
  constexpr CTimeSpan(long days, int hours, int minutes, int seconds) noexcept
      : m_span(((static_cast<std::int64_t>(days) * 24 + hours) * 60 + minutes) * 60 + seconds) {}
  constexpr std::int64_t GetTimeSpan() const noexcept { return m_span; }
  constexpr std::int64_t GetDays() const noexcept { return m_span / 86400; }
  constexpr std::int64_t GetTotalHours() const noexcept { return m_span / 3600; }
  constexpr std::int64_t GetTotalMinutes() const noexcept { return m_span / 60; }
  constexpr std::int64_t GetTotalSeconds() const noexcept { return m_span; }
  constexpr int GetHours() const noexcept { return static_cast<int>(GetTotalHours() - GetDays() * 24); }
  constexpr int GetMinutes() const noexcept { return static_cast<int>(GetTotalMinutes() - GetTotalHours() * 60); }
  constexpr int GetSeconds() const noexcept { return static_cast<int>(GetTotalSeconds() - GetTotalMinutes() * 60); }
  friend constexpr auto operator<=>(CTimeSpan, CTimeSpan) noexcept = default;

 private:
  std::int64_t m_span = 0;
};

class QUARRIX_API CTime {
 public:
  constexpr CTime() noexcept = default;
  constexpr CTime(std::int64_t time) noexcept : m_time(time) {}  // NOLINT: MFC converts from __time64_t
  // A local date and time; nDST < 0 lets the system decide about daylight saving. Throws
  // CInvalidArgException for a year before 1900, a field out of range or a time the system cannot represent.
  CTime(int nYear, int nMonth, int nDay, int nHour, int nMin, int nSec, int nDST = -1);

  static CTime GetCurrentTime() noexcept;

  constexpr std::int64_t GetTime() const noexcept { return m_time; }
  // The broken-down local (or UTC) time; null when the system cannot break this time down.
  struct tm* GetLocalTm(struct tm* ptm) const noexcept;
  struct tm* GetGmtTm(struct tm* ptm) const noexcept;
  int GetYear() const noexcept;
  int GetMonth() const noexcept;      // 1-12
  int GetDay() const noexcept;        // 1-31
  int GetHour() const noexcept;
  int GetMinute() const noexcept;
  int GetSecond() const noexcept;
  int GetDayOfWeek() const noexcept;  // 1 = Sunday

  // strftime rules on the local (or UTC) time; an empty string when the result would exceed 127 units or
  // the time cannot be broken down.
  CString Format(const char16_t* pszFormat) const;
  CString FormatGmt(const char16_t* pszFormat) const;

  CTime& operator+=(CTimeSpan span) noexcept {
    m_time += span.GetTimeSpan();
    return *this;
  }
  CTime& operator-=(CTimeSpan span) noexcept {
    m_time -= span.GetTimeSpan();
    return *this;
  }
  friend CTime operator+(CTime t, CTimeSpan span) noexcept { return t += span; }
  friend CTime operator-(CTime t, CTimeSpan span) noexcept { return t -= span; }
  friend CTimeSpan operator-(CTime a, CTime b) noexcept { return CTimeSpan(a.m_time - b.m_time); }
  friend constexpr auto operator<=>(CTime, CTime) noexcept = default;

 private:
  std::int64_t m_time = 0;
};

}  // namespace quarrix
