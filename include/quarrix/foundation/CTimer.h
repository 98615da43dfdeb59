#pragma once
// CTimer: 20 independent stopwatches (indices 0-19) that add up milliseconds over start/stop intervals until
// reset. Ticks come from the monotonic clock in nanoseconds; every operation ignores an index outside 0-19
// (and answers 0.0 where it returns a value).
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

#include <cstdint>

namespace quarrix {

class QUARRIX_API CTimer {
 public:
  static constexpr int kCount = 20;

  CTimer() noexcept;

  void Start(int i) noexcept;
  // Adds the interval since the last Start(i) (or since the clock's origin, if there was none) to the total.
  void Stop(int i) noexcept;
  // Clears the total; the start and stop ticks stay.
  void Reset(int i) noexcept;
  // The total of stopwatch i in milliseconds.
  double GetTime(int i) const noexcept;
  // Milliseconds since the last Start(i), without stopping and without touching the total.
  double GetElapsedTime(int i) const noexcept;
  // Builds "Time <label>: 1.500 Seconds" (bSeconds) or "Time <label>: 1500.000 Milliseconds" from the total
  // (no blank before the colon when label is empty), shows it in a message box with an OK button when bShow,
  // and returns it.
  CString ReportTime(int i, CString label, bool bSeconds, bool bShow) const;

 private:
  static std::int64_t Now() noexcept;
  static bool Valid(int i) noexcept { return i >= 0 && i < kCount; }

  std::int64_t m_frequency;  // ticks per second
  std::int64_t m_start[kCount] = {};
  std::int64_t m_stop[kCount] = {};
  double m_total[kCount] = {};  // milliseconds
};

}  // namespace quarrix
