#include <quarrix/foundation/CTimer.h>

#include <quarrix/framework/MessageBox.h>

#include <time.h>

namespace quarrix {

CTimer::CTimer() noexcept : m_frequency(1'000'000'000) {}

std::int64_t CTimer::Now() noexcept {
  timespec ts;
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<std::int64_t>(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}

void CTimer::Start(int i) noexcept {
  if (Valid(i)) m_start[i] = Now();
}

void CTimer::Stop(int i) noexcept {
  if (!Valid(i)) return;
  m_stop[i] = Now();
  m_total[i] += static_cast<double>(m_stop[i] - m_start[i]) / (static_cast<double>(m_frequency) / 1000.0);
}

void CTimer::Reset(int i) noexcept {
  if (Valid(i)) m_total[i] = 0.0;
}

double CTimer::GetTime(int i) const noexcept { return Valid(i) ? m_total[i] : 0.0; }

double CTimer::GetElapsedTime(int i) const noexcept {
  if (!Valid(i)) return 0.0;
  return static_cast<double>(Now() - m_start[i]) / (static_cast<double>(m_frequency) / 1000.0);
}

CString CTimer::ReportTime(int i, CString label, bool bSeconds, bool bShow) const {
  if (!label.IsEmpty()) label = u" " + label;
  const double total = GetTime(i);
  const CString text = bSeconds ? cstringf(u"Time%s: %0.3f Seconds", label, total / 1000.0)
                                : cstringf(u"Time%s: %0.3f Milliseconds", label, total);
  if (bShow) AfxMessageBox(text, MB_OK, 0);
  return text;
}

}  // namespace quarrix
