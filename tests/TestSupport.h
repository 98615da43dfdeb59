#pragma once
// Scoped changes of process-wide state for the tests: each restores what it found, so that one
// test's code page, time zone or message handler never leaks into the next.
#include <quarrix/framework/CException.h>
#include <quarrix/framework/CodePage.h>
#include <quarrix/framework/MessageBox.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace quarrix::test {

class ScopedAnsiCodePage {
 public:
  explicit ScopedAnsiCodePage(UINT codePage) : m_previous(GetAnsiCodePage()) {
    EXPECT_TRUE(SetAnsiCodePage(codePage)) << "code page " << codePage;
  }
  ~ScopedAnsiCodePage() { (void)SetAnsiCodePage(m_previous); }
  ScopedAnsiCodePage(const ScopedAnsiCodePage&) = delete;
  ScopedAnsiCodePage& operator=(const ScopedAnsiCodePage&) = delete;

 private:
  UINT m_previous;
};

// Sets TZ (a zone name or a POSIX rule such as "CET-1CEST,M3.5.0,M10.5.0/3") and re-reads it.
class ScopedTimeZone {
 public:
  explicit ScopedTimeZone(const char* tz) {
    if (const char* old = std::getenv("TZ")) m_previous = old;
    setenv("TZ", tz, 1);
    tzset();
  }
  ~ScopedTimeZone() {
    if (m_previous) setenv("TZ", m_previous->c_str(), 1);
    else unsetenv("TZ");
    tzset();
  }
  ScopedTimeZone(const ScopedTimeZone&) = delete;
  ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

 private:
  std::optional<std::string> m_previous;
};

class ScopedMessageBoxHandler {
 public:
  explicit ScopedMessageBoxHandler(MessageBoxHandler handler)
      : m_previous(SetMessageBoxHandler(std::move(handler))) {}
  ~ScopedMessageBoxHandler() { SetMessageBoxHandler(std::move(m_previous)); }
  ScopedMessageBoxHandler(const ScopedMessageBoxHandler&) = delete;
  ScopedMessageBoxHandler& operator=(const ScopedMessageBoxHandler&) = delete;

 private:
  MessageBoxHandler m_previous;
};

// Expects f() to throw CInvalidArgException whose detail is the given text (any detail when null).
template <class F>
void ExpectInvalidArg(F&& f, const char16_t* detail, const char* what) {
  try {
    f();
    ADD_FAILURE() << what << ": no exception";
  } catch (const CInvalidArgException& e) {
    if (detail) {
      EXPECT_EQ(e.GetDetail(), CString(detail)) << what;
    }
  }
}

}  // namespace quarrix::test
