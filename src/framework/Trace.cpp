#include <quarrix/framework/Trace.h>

#include <atomic>
#include <mutex>

namespace quarrix {
namespace {

std::mutex g_mutex;
TraceHandler g_handler;
std::atomic<bool> g_enabled{false};

}  // namespace

TraceHandler SetTraceHandler(TraceHandler handler) {
  std::lock_guard lock(g_mutex);
  TraceHandler previous = std::move(g_handler);
  g_handler = std::move(handler);
  g_enabled.store(static_cast<bool>(g_handler));
  return previous;
}

bool IsTraceEnabled() noexcept { return g_enabled.load(std::memory_order_relaxed); }

void AfxTraceText(const CString& text) {
  TraceHandler handler;
  {
    std::lock_guard lock(g_mutex);
    handler = g_handler;
  }
  if (handler) handler(text);
}

}  // namespace quarrix
