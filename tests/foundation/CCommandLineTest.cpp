#include <quarrix/foundation/CCommandLine.h>

#include <quarrix/framework/CodePage.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

namespace quarrix {
namespace {

class CCommandLineTest : public ::testing::Test {
 protected:
  void TearDown() override { CCommandLine::ResetArguments(); }
  static void Args(std::vector<CString> args) { CCommandLine::SetArguments(std::move(args)); }
};

TEST_F(CCommandLineTest, FlagsNeedAWordBoundary) {
  Args({u"prog.exe", u"-Debug"});
  int index = -1;
  EXPECT_TRUE(CCommandLine::IsFlagSet(u"Debug", 0, &index));
  EXPECT_EQ(index, 1);
  index = -1;
  EXPECT_FALSE(CCommandLine::IsFlagSet(u"Deb", 0, &index));
  EXPECT_EQ(index, -1);
  EXPECT_FALSE(CCommandLine::IsFlagSet(u"Debug", 2, &index));
  EXPECT_TRUE(CCommandLine::IsFlagSet(u"Debug", 1, nullptr));
  EXPECT_FALSE(CCommandLine::IsFlagSet(u"debug", 0, nullptr));  // names compare with case
}

TEST_F(CCommandLineTest, FlagsAreSearchedAfterTheProgram) {
  Args({u"/tmp/-x", u"a", u"/verbose", u"-x"});
  int index = 0;
  EXPECT_TRUE(CCommandLine::IsFlagSet(u"x", 0, &index));
  EXPECT_EQ(index, 3);  // argv[0] contains "/-x" but is not searched
  EXPECT_TRUE(CCommandLine::IsFlagSet(u"verb", 0, nullptr) == false);
  EXPECT_TRUE(CCommandLine::IsFlagSet(u"verb.*", 0, nullptr));  // the name is a pattern
  EXPECT_TRUE(CCommandLine::IsFlagSet(u"x", -5, &index));
}

TEST_F(CCommandLineTest, OptionValues) {
  Args({u"prog.exe", u"/out=C:\\x.txt", u"-in:abc", u"-in=later"});
  CString v = u"unchanged";
  EXPECT_TRUE(CCommandLine::GetParameterValue(u"out", v));
  EXPECT_EQ(v, u"C:\\x.txt");
  EXPECT_TRUE(CCommandLine::GetParameterValue(u"in", v));
  EXPECT_EQ(v, u"abc");  // the first argument that has it
  v = u"unchanged";
  EXPECT_FALSE(CCommandLine::GetParameterValue(u"missing", v));
  EXPECT_EQ(v, u"unchanged");
  Args({u"-cfg:prog.ini"});
  EXPECT_TRUE(CCommandLine::GetParameterValue(u"cfg", v));  // argv[0] counts here
  EXPECT_EQ(v, u"prog.ini");
}

TEST_F(CCommandLineTest, ParametersAndBounds) {
  Args({u"prog.exe"});
  CString v = u"x";
  EXPECT_EQ(CCommandLine::GetParameterCount(), 1);
  EXPECT_TRUE(CCommandLine::GetParameter(0, v));
  EXPECT_EQ(v, u"prog.exe");
  EXPECT_TRUE(CCommandLine::GetParameter(1, v));  // argc itself: the terminating entry, empty
  EXPECT_EQ(v, u"");
  v = u"x";
  EXPECT_FALSE(CCommandLine::GetParameter(2, v));  // beyond: rejected, value emptied
  EXPECT_EQ(v, u"");
  EXPECT_FALSE(CCommandLine::GetParameter(-1, v));
}

TEST_F(CCommandLineTest, ListAndLine) {
  Args({u"prog", u"a b", u"c"});
  EXPECT_EQ(CCommandLine::GetParamList(), u"- Param 0: 'prog'\n- Param 1: 'a b'\n- Param 2: 'c'");
  EXPECT_EQ(CCommandLine::GetCommandLineW(), u"prog a b c");
  Args({});
  EXPECT_EQ(CCommandLine::GetParamList(), u"");
  EXPECT_EQ(CCommandLine::GetCommandLineW(), u"");
  EXPECT_FALSE(CCommandLine::IsFlagSet(u"x", 0, nullptr));
}

TEST_F(CCommandLineTest, NarrowArgumentsUseTheAnsiCodePage) {
  const char* argv[] = {"prog", "-name:Ma\xDF"};
  {
    test::ScopedAnsiCodePage cp1252(1252);
    CCommandLine::SetArguments(2, argv);
  }
  CString v;
  EXPECT_TRUE(CCommandLine::GetParameterValue(u"name", v));
  EXPECT_EQ(v, u"Maß");
}

TEST(CCommandLineProcess, ReadsTheRealCommandLineByDefault) {
  // Without arguments of its own the class reads the kernel's record of the command line.
  CCommandLine::ResetArguments();
  CString program;
  ASSERT_TRUE(CCommandLine::GetParameter(0, program));
  EXPECT_NE(program.Find(u"FoundationTests"), -1) << program;
  EXPECT_GE(CCommandLine::GetParameterCount(), 1);
}

}  // namespace
}  // namespace quarrix
