#include "TestSupport.h"
#include "framework/ArchiveTestSupport.h"

#include <quarrix/framework/CFile.h>
#include <quarrix/framework/CMemFile.h>
#include <quarrix/framework/CStdioFile.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

namespace quarrix {
namespace {

using test::ThrowsFileError;
namespace fs = std::filesystem;

// A fresh folder per test, removed afterwards.
class FileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_dir = fs::temp_directory_path() /
            ("quarrix-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + "-" +
             std::to_string(::getpid()));
    fs::remove_all(m_dir);
    fs::create_directories(m_dir);
  }
  void TearDown() override { fs::remove_all(m_dir); }

  CString PathOf(const char* name) const { return CString((m_dir / name).string().c_str()); }
  std::string Contents(const char* name) const {
    std::ifstream in(m_dir / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  void WriteRaw(const char* name, const std::string& bytes) const { std::ofstream(m_dir / name, std::ios::binary) << bytes; }

  fs::path m_dir;
};

TEST_F(FileTest, OpenFailuresReportCauseErrnoAndName) {
  CFile file;
  CFileException error;
  EXPECT_FALSE(file.Open(PathOf("missing.bin"), CFile::modeRead, &error));
  EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
  EXPECT_EQ(error.m_lOsError, ENOENT);
  EXPECT_TRUE(error.m_strFileName == PathOf("missing.bin") && file.m_hFile == CFile::hFileNull);
  EXPECT_FALSE(file.Open(CString(m_dir.string().c_str()), CFile::modeRead, &error));  // a folder
  EXPECT_EQ(error.m_cause, CFileException::accessDenied);
  EXPECT_FALSE(file.Open(PathOf("x"), CFile::modeWrite | CFile::modeReadWrite | CFile::modeCreate, &error));
  EXPECT_EQ(error.m_cause, CFileException::genericException);
  EXPECT_TRUE(ThrowsFileError([&] { CFile f(PathOf("missing.bin"), CFile::modeRead); }, CFileException::fileNotFound, ENOENT));
  EXPECT_TRUE(ThrowsFileError([&] { file.Read(nullptr, 0); }, CFileException::invalidFile));
}

TEST_F(FileTest, WriteSeekReadAndLength) {
  {
    CFile file(PathOf("data.bin"), CFile::modeCreate | CFile::modeReadWrite | CFile::shareDenyWrite);
    EXPECT_NE(file.m_hFile, CFile::hFileNull);
    file.Write("0123456789", 10);
    EXPECT_EQ(file.Seek(-4, CFile::current), 6u);
    char buf[8] = {};
    EXPECT_EQ(file.Read(buf, 8), 4u);  // fewer at the end
    EXPECT_EQ(std::string(buf, 4), "6789");
    EXPECT_EQ(file.Seek(2, CFile::end), 12u);  // past the end; the write fills the gap with zeros
    file.Write("X", 1);
    file.SetLength(15);  // extends with zeros and moves the position there
    EXPECT_EQ(file.GetPosition(), 15u);
    file.SetLength(13);
    EXPECT_EQ(file.GetLength(), 13u);
    EXPECT_TRUE(ThrowsFileError([&] { file.Seek(-1, CFile::begin); }, CFileException::badSeek));
    file.Flush();
    file.Close();
    file.Close();  // closing twice does nothing
  }
  EXPECT_EQ(Contents("data.bin"), std::string("0123456789\0\0X", 13));
  { CFile keep(PathOf("data.bin"), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite); }
  EXPECT_EQ(Contents("data.bin").size(), 13u);
  {
    CFile readOnly(PathOf("data.bin"), CFile::modeRead);
    EXPECT_TRUE(ThrowsFileError([&] { readOnly.Write("x", 1); }, CFileException::accessDenied));
  }
  { CFile truncate(PathOf("data.bin"), CFile::modeCreate | CFile::modeWrite); }
  EXPECT_EQ(Contents("data.bin"), "");
}

TEST_F(FileTest, BackslashPathsNamesRenameAndRemove) {
  fs::create_directories(m_dir / "sub");
  const CString windowsPath = CString(m_dir.string().c_str()) + u"\\sub\\model.v1.qrx";
  {
    CFile file(windowsPath, CFile::modeCreate | CFile::modeWrite);
    file.Write("qrx", 3);
    EXPECT_TRUE(file.GetFilePath() == windowsPath && file.GetFileName() == u"model.v1.qrx");
    EXPECT_EQ(file.GetFileTitle(), u"model.v1");
  }
  EXPECT_EQ(Contents("sub/model.v1.qrx"), "qrx");
  WriteRaw("b", "2");
  EXPECT_TRUE(ThrowsFileError([&] { CFile::Rename(windowsPath, PathOf("b")); }, CFileException::accessDenied, EEXIST));
  CFile::Rename(windowsPath, PathOf("c"));
  CFile::Remove(PathOf("c"));
  EXPECT_TRUE(ThrowsFileError([&] { CFile::Remove(PathOf("c")); }, CFileException::fileNotFound));
}

TEST(CMemFileTest, GrowsSeeksDetachesAndAttaches) {
  CMemFile file(16);
  file.Write("abcdef", 6);
  file.Seek(10, CFile::begin);
  file.Write("Z", 1);  // the gap reads as zeros
  const std::vector<BYTE> bytes = file.GetBytes();
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), std::string("abcdef\0\0\0\0Z", 11));
  file.SetLength(2);
  EXPECT_EQ(file.GetPosition(), 2u);  // a position beyond the new end moves to it
  EXPECT_TRUE(ThrowsFileError([&] { file.Seek(-3, CFile::current); }, CFileException::badSeek));
  EXPECT_THROW((void)file.Open(u"x", CFile::modeRead), CNotSupportedException);
  BYTE* detached = file.Detach();
  ASSERT_NE(detached, nullptr);
  EXPECT_EQ(detached[1], 'b');
  std::free(detached);
  EXPECT_EQ(file.GetLength(), 0u);

  BYTE fixed[4] = {'w', 'x', 'y', 'z'};
  file.Attach(fixed, sizeof fixed);  // no growing: the file is the buffer
  EXPECT_EQ(file.GetLength(), 4u);
  file.Seek(2, CFile::begin);
  file.Write("Q", 1);
  EXPECT_EQ(fixed[2], 'Q');
  EXPECT_THROW(file.Write("too long", 8), CMemoryException);
  BYTE start[4] = {};
  file.Attach(start, sizeof start, 8);  // growable: starts empty in the caller's buffer
  file.Write("ab", 2);
  EXPECT_EQ(start[1], 'b');
  file.Write("cdefgh", 6);  // moves to memory of its own; the caller's buffer keeps what it had
  EXPECT_EQ(start[2], 0);
  EXPECT_EQ(file.GetLength(), 8u);
}

TEST_F(FileTest, StdioWriteStringTranslatesLineEnds) {
  { CStdioFile(PathOf("text.txt"), CFile::modeCreate | CFile::modeWrite | CFile::typeText).WriteString(u"a\nb\nä"); }
  EXPECT_EQ(Contents("text.txt"), "a\r\nb\r\n\xC3\xA4");
  { CStdioFile(PathOf("binary.txt"), CFile::modeCreate | CFile::modeWrite | CFile::typeBinary).WriteString(u"a\nb"); }
  EXPECT_EQ(Contents("binary.txt"), "a\nb");
  const test::ScopedAnsiCodePage codePage(1252);
  { CStdioFile(PathOf("ansi.txt"), CFile::modeCreate | CFile::modeWrite).WriteString(u"Maß €"); }
  EXPECT_EQ(Contents("ansi.txt"), "Ma\xDF \x80");
  EXPECT_THROW(CStdioFile(PathOf("ansi.txt"), CFile::modeWrite).WriteString(nullptr), CInvalidArgException);
}

TEST_F(FileTest, StdioReadStringSplitsLines) {
  const struct {
    const char* name;
    std::string bytes;
    UINT flags;
    std::vector<CString> lines;
  } rows[] = {
      {"CR LF and LF", "a\r\nb\nc", 0, {u"a", u"b", u"c"}},
      {"empty lines", "\r\n\n", 0, {u"", u""}},
      {"lone CR stays", "x\ry\r\n", 0, {u"x\ry"}},
      {"empty file", "", 0, {}},
      {"binary keeps CR", "a\r\nb", CFile::typeBinary, {u"a\r", u"b"}},
      {"UTF-8 text", "Tr\xC3\xA4ger\r\n", 0, {u"Träger"}},
      {"line longer than the buffer", std::string(10000, 'q') + "\n", 0, {CString(u'q', 10000)}},
  };
  for (const auto& row : rows) {
    WriteRaw("lines.txt", row.bytes);
    CStdioFile in(PathOf("lines.txt"), CFile::modeRead | row.flags);
    std::vector<CString> lines;
    CString line(u"stale");
    while (in.ReadString(line)) lines.push_back(line);
    EXPECT_EQ(lines, row.lines) << row.name;
    EXPECT_TRUE(line.IsEmpty()) << row.name;
  }
}

TEST_F(FileTest, StdioPointerFormAndPositionsAfterReadAhead) {
  WriteRaw("lines.txt", "abcdef\r\ng\n");
  CStdioFile in(PathOf("lines.txt"), CFile::modeRead);
  char16_t buf[5];
  EXPECT_EQ(CString(in.ReadString(buf, 4)), u"abc");
  EXPECT_EQ(CString(in.ReadString(buf, 5)), u"def\n");  // the LF is kept, CR LF came out as LF
  EXPECT_EQ(in.GetPosition(), 8u);  // not the end of what was read ahead
  CString rest;
  EXPECT_TRUE(in.ReadString(rest));
  EXPECT_EQ(rest, u"g");
  EXPECT_EQ(in.ReadString(buf, 5), nullptr);

  WriteRaw("mixed.txt", "one\r\ntwo\r\nthree");
  CStdioFile file(PathOf("mixed.txt"), CFile::modeReadWrite);
  ASSERT_TRUE(file.ReadString(rest));
  char raw[3];
  EXPECT_EQ(file.Read(raw, 3), 3u);
  EXPECT_EQ(std::string(raw, 3), "two");
  file.Write("!", 1);  // lands at the logical position, over the CR
  ASSERT_TRUE(file.ReadString(rest));
  EXPECT_EQ(rest, u"");
  file.Seek(0, CFile::begin);
  ASSERT_TRUE(file.ReadString(rest));
  EXPECT_EQ(rest, u"one");
  file.Close();
  EXPECT_EQ(Contents("mixed.txt"), "one\r\ntwo!\nthree");
}

}  // namespace
}  // namespace quarrix
