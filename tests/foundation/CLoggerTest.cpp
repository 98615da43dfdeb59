#include <quarrix/foundation/CLogger.h>

#include <quarrix/framework/CodePage.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace quarrix {
namespace {

namespace fs = std::filesystem;

std::string ReadBytes(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// Each test works in a fresh folder that is also the working directory (PublicLogger writes there).
class CLoggerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_dir = fs::temp_directory_path() / ("quarrix-logger-" + std::to_string(::getpid()) + "-" +
                                         ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(m_dir);
    fs::create_directories(m_dir);
    m_previous = fs::current_path();
    fs::current_path(m_dir);
  }
  void TearDown() override {
    fs::current_path(m_previous);
    fs::remove_all(m_dir);
  }
  CString PathOf(const char* name) const { return CString((m_dir / name).u16string()); }

  fs::path m_dir;
  fs::path m_previous;
};

const std::string kRule(80, '-');

TEST_F(CLoggerTest, PublicLoggerNumbersEntriesAndResets) {
  PublicLogger(true, u"first text", u"Start", true);
  PublicLogger(false, u"x", u"Next", false);
  EXPECT_EQ(ReadBytes("Log_Public_Logger.txt"),
            "1 Start\r\nfirst text\r\n" + kRule + "\r\n\r\n" + "2 Next\r\nx\r\n" + kRule + "\r\n\r\n");
  PublicLogger(true, u"again", u"Reset", true);
  EXPECT_EQ(ReadBytes("Log_Public_Logger.txt"), "1 Reset\r\nagain\r\n" + kRule + "\r\n\r\n");
}

TEST_F(CLoggerTest, TextGoesThroughTheAnsiCodePageWithCrLf) {
  CLogger log;
  ASSERT_TRUE(log.Open(PathOf("ansi.log"), true, false));
  ASSERT_TRUE(log.Write(u"Maß\n"));
  log.Close();
  {
    test::ScopedAnsiCodePage cp1252(1252);
    ASSERT_TRUE(log.Write(u"Maß \u4e00\r\n"));  // an existing CR stays and gains another, as in text mode
  }
  log.Close();
  EXPECT_EQ(ReadBytes(m_dir / "ansi.log"), "Ma\xC3\x9F\r\nMa\xDF ?\r\r\n");
}

TEST_F(CLoggerTest, CloseAfterWriteAppendsEveryTime) {
  CLogger log;
  ASSERT_TRUE(log.Open(PathOf("a.log"), true, true));
  EXPECT_TRUE(log.IsOpen());  // open until the first write
  EXPECT_TRUE(log.Write(u"one"));
  EXPECT_FALSE(log.IsOpen());
  EXPECT_TRUE(log.Write(u"two"));
  EXPECT_FALSE(log.IsOpen());
  EXPECT_EQ(ReadBytes(m_dir / "a.log"), "onetwo");
}

TEST_F(CLoggerTest, ReopeningAfterCloseAppendsEvenInOverwriteMode) {
  {
    std::ofstream old(m_dir / "b.log");
    old << "old;";
  }
  CLogger log;
  ASSERT_TRUE(log.Open(PathOf("b.log"), true, false));  // truncates
  EXPECT_TRUE(log.Write(u"new;"));
  log.Close();
  EXPECT_TRUE(log.Write(u"more"));  // reopened for appending
  log.Close();
  EXPECT_EQ(ReadBytes(m_dir / "b.log"), "new;more");
}

TEST_F(CLoggerTest, FailuresAreReturnedNotThrown) {
  CLogger never;
  EXPECT_FALSE(never.Write(u"x"));  // tries the empty path
  CLogger log;
  ASSERT_TRUE(log.Open(PathOf("c.log"), false, false));
  EXPECT_FALSE(log.Open(PathOf("missing-folder/c.log"), false, false));
  EXPECT_FALSE(log.IsOpen());
  EXPECT_TRUE(log.Write(u"kept path"));  // the path of the last successful Open
  log.Close();
  EXPECT_EQ(ReadBytes(m_dir / "c.log"), "kept path");
}

TEST_F(CLoggerTest, CopiesShareTheStream) {
  CLogger a;
  ASSERT_TRUE(a.Open(PathOf("d.log"), true, false));
  CLogger b = a;
  a.Write(u"a");
  b.Write(u"b");
  a.Close();
  EXPECT_TRUE(b.IsOpen());
  b.Write(u"c");
  b.Close();
  EXPECT_EQ(ReadBytes(m_dir / "d.log"), "abc");
}

TEST_F(CLoggerTest, FolderOfThePath) {
  CLogger log;
  ASSERT_TRUE(log.Open(PathOf("e.log"), true, false));
  EXPECT_EQ(log.GetFileDirFromPath(), u"");  // forward slashes do not separate folders here
  fs::create_directories(m_dir / "sub" / "deeper");
  ASSERT_TRUE(log.Open(u"sub\\deeper\\e.log", true, false));
  EXPECT_EQ(log.GetFileDirFromPath(), u"sub\\deeper");
  EXPECT_TRUE(fs::exists(m_dir / "sub" / "deeper" / "e.log"));
}

}  // namespace
}  // namespace quarrix
