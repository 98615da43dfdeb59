#include <quarrix/framework/MessageBox.h>

#include <quarrix/framework/CException.h>

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <vector>

using namespace quarrix;
using quarrix::test::ScopedMessageBoxHandler;

namespace {

struct Shown {
  CString text;
  CString caption;
  UINT type;
  bool operator==(const Shown&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Shown& s) {
  return os << '{' << s.text << ", " << s.caption << ", 0x" << std::hex << s.type << std::dec << '}';
}

// Records every box and answers with a fixed button.
class Recorder {
 public:
  explicit Recorder(int answer = IDOK) : m_answer(answer) {}
  MessageBoxHandler Handler() {
    return [this](const CString& text, const CString& caption, UINT type) {
      m_shown.push_back({text, caption, type});
      return m_answer;
    };
  }
  const std::vector<Shown>& Boxes() const { return m_shown; }

 private:
  int m_answer;
  std::vector<Shown> m_shown;
};

class ScopedAppName {
 public:
  explicit ScopedAppName(const CString& name) { AfxSetAppName(name); }
  ~ScopedAppName() { AfxSetAppName(CString()); }
};

TEST(MessageBoxTest, HandlerSeesTextCaptionAndType) {
  Recorder recorder(IDNO);
  ScopedMessageBoxHandler scope(recorder.Handler());
  EXPECT_EQ(MessageBox(u"Delete the file?", u"Files", MB_YESNO | MB_ICONQUESTION), IDNO);
  {
    ScopedAppName app(u"Quarrix Test");
    EXPECT_EQ(AfxMessageBox(u"Saved.", MB_OK | MB_ICONINFORMATION, 1234), IDNO);
    EXPECT_EQ(AfxMessageBox(u"Default type"), IDNO);
  }
  EXPECT_EQ(AfxMessageBox(u"Unnamed"), IDNO);
  const std::vector<Shown> expected = {
      {u"Delete the file?", u"Files", MB_YESNO | MB_ICONQUESTION},
      {u"Saved.", u"Quarrix Test", MB_OK | MB_ICONINFORMATION},
      {u"Default type", u"Quarrix Test", MB_OK},
      {u"Unnamed", u"FrameworkTests", MB_OK},  // without a name, the program's file name
  };
  EXPECT_EQ(recorder.Boxes(), expected);
}

TEST(MessageBoxTest, ExceptionReportGoesThroughAfxMessageBox) {
  Recorder recorder(IDCANCEL);
  ScopedMessageBoxHandler scope(recorder.Handler());
  ScopedAppName app(u"App");
  EXPECT_EQ(CInvalidArgException(u"count -1").ReportError(MB_OKCANCEL), IDCANCEL);
  ASSERT_EQ(recorder.Boxes().size(), 1u);
  EXPECT_EQ(recorder.Boxes()[0], (Shown{u"Invalid argument: count -1.", u"App", MB_OKCANCEL}));
}

TEST(MessageBoxTest, SetHandlerReturnsThePreviousOne) {
  Recorder first(IDYES), second(IDNO);
  ScopedMessageBoxHandler scope(first.Handler());
  MessageBoxHandler previous = SetMessageBoxHandler(second.Handler());
  ASSERT_TRUE(previous);
  EXPECT_EQ(MessageBox(u"to second", u"c"), IDNO);
  EXPECT_EQ(previous(u"direct", u"c", MB_OK), IDYES) << "the returned handler is the first one";
  SetMessageBoxHandler(std::move(previous));
  EXPECT_EQ(MessageBox(u"to first", u"c"), IDYES);
  EXPECT_EQ(first.Boxes().size(), 2u);
  EXPECT_EQ(second.Boxes().size(), 1u);
}

TEST(MessageBoxTest, EmptyHandlerRestoresTheDefault) {
  Recorder recorder;
  ScopedMessageBoxHandler scope(recorder.Handler());
  EXPECT_TRUE(SetMessageBoxHandler(MessageBoxHandler()));
  testing::internal::CaptureStderr();
  const int answer = MessageBox(u"Überschreiben?", u"Datei", MB_YESNOCANCEL | MB_DEFBUTTON2);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Datei: \xC3\x9C" "berschreiben?\n");
  EXPECT_EQ(answer, IDNO) << "the default handler answers with the default button";
  EXPECT_TRUE(recorder.Boxes().empty());
  EXPECT_FALSE(SetMessageBoxHandler(MessageBoxHandler())) << "the default is not a handler of its own";
}

TEST(MessageBoxTest, HandlerMayReplaceItselfWhileShowing) {
  Recorder later(IDRETRY);
  MessageBoxHandler swap = [&](const CString&, const CString&, UINT) {
    SetMessageBoxHandler(later.Handler());
    return IDABORT;
  };
  ScopedMessageBoxHandler scope(swap);
  EXPECT_EQ(MessageBox(u"first", u"c", MB_ABORTRETRYIGNORE), IDABORT);
  EXPECT_EQ(MessageBox(u"second", u"c", MB_ABORTRETRYIGNORE), IDRETRY);
}

TEST(MessageBoxTest, DefaultButtonOfEveryType) {
  struct Row {
    const char* name;
    UINT type;
    int expected[4];  // for MB_DEFBUTTON1..4
  };
  const Row rows[] = {
      {"MB_OK", MB_OK, {IDOK, IDOK, IDOK, IDOK}},
      {"MB_OKCANCEL", MB_OKCANCEL, {IDOK, IDCANCEL, IDOK, IDOK}},
      {"MB_ABORTRETRYIGNORE", MB_ABORTRETRYIGNORE, {IDABORT, IDRETRY, IDIGNORE, IDABORT}},
      {"MB_YESNOCANCEL", MB_YESNOCANCEL, {IDYES, IDNO, IDCANCEL, IDYES}},
      {"MB_YESNO", MB_YESNO, {IDYES, IDNO, IDYES, IDYES}},
      {"MB_RETRYCANCEL", MB_RETRYCANCEL, {IDRETRY, IDCANCEL, IDRETRY, IDRETRY}},
      {"MB_CANCELTRYCONTINUE", MB_CANCELTRYCONTINUE, {IDCANCEL, IDTRYAGAIN, IDCONTINUE, IDCANCEL}},
      {"MB_OK with help", MB_OK | MB_HELP, {IDOK, IDHELP, IDOK, IDOK}},
      {"MB_YESNOCANCEL with help", MB_YESNOCANCEL | MB_HELP, {IDYES, IDNO, IDCANCEL, IDHELP}},
      {"icon and modality do not count", MB_YESNO | MB_ICONWARNING | MB_SYSTEMMODAL, {IDYES, IDNO, IDYES, IDYES}},
      {"undefined button set 7", 7, {IDOK, IDOK, IDOK, IDOK}},
      {"undefined button set 15", 15, {IDOK, IDOK, IDOK, IDOK}},
  };
  const UINT defaults[] = {MB_DEFBUTTON1, MB_DEFBUTTON2, MB_DEFBUTTON3, MB_DEFBUTTON4};
  for (const auto& r : rows)
    for (int i = 0; i < 4; ++i)
      EXPECT_EQ(GetDefaultMessageBoxButton(r.type | defaults[i]), r.expected[i]) << r.name << " DEFBUTTON" << i + 1;
}

}  // namespace
