#include "framework/ArchiveTestSupport.h"

#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CMemFile.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <limits>

namespace quarrix {
namespace {

using test::Bytes;
using test::Hex;
using test::LoadWith;
using test::StoreWith;
using test::ThrowsArchiveError;
using test::ToHex;

struct PrimitiveRow {
  const char* name;
  std::function<void(CArchive&)> write;
  const char* hex;
};

TEST(CArchiveTest, PrimitivesAreLittleEndianImages) {
  const PrimitiveRow rows[] = {
      {"int 1", [](CArchive& ar) { ar << 1; }, "01 00 00 00"},
      {"int -1", [](CArchive& ar) { ar << -1; }, "FF FF FF FF"},
      {"LONG min", [](CArchive& ar) { ar << std::numeric_limits<LONG>::min(); }, "00 00 00 80"},
      {"DWORD", [](CArchive& ar) { ar << DWORD{0x12345678}; }, "78 56 34 12"},
      {"WORD", [](CArchive& ar) { ar << WORD{0xABCD}; }, "CD AB"},
      {"short -2", [](CArchive& ar) { ar << short{-2}; }, "FE FF"},
      {"BYTE", [](CArchive& ar) { ar << BYTE{0x80}; }, "80"},
      {"char", [](CArchive& ar) { ar << 'A'; }, "41"},
      {"bool true", [](CArchive& ar) { ar << true; }, "01"},
      {"bool false", [](CArchive& ar) { ar << false; }, "00"},
      {"char16_t", [](CArchive& ar) { ar << u'\u20AC'; }, "AC 20"},
      {"float 1", [](CArchive& ar) { ar << 1.0f; }, "00 00 80 3F"},
      {"double 1", [](CArchive& ar) { ar << 1.0; }, "00 00 00 00 00 00 F0 3F"},
      {"double -0.5", [](CArchive& ar) { ar << -0.5; }, "00 00 00 00 00 00 E0 BF"},
      {"LONGLONG -2", [](CArchive& ar) { ar << LONGLONG{-2}; }, "FE FF FF FF FF FF FF FF"},
      {"ULONGLONG", [](CArchive& ar) { ar << ULONGLONG{0x0102030405060708}; }, "08 07 06 05 04 03 02 01"},
      {"count 0", [](CArchive& ar) { ar.WriteCount(0); }, "00 00"},
      {"count 0xFFFE", [](CArchive& ar) { ar.WriteCount(0xFFFE); }, "FE FF"},
      {"count 0xFFFF", [](CArchive& ar) { ar.WriteCount(0xFFFF); }, "FF FF FF FF 00 00"},
      {"count 0x10000", [](CArchive& ar) { ar.WriteCount(0x10000); }, "FF FF 00 00 01 00"},
      {"count max", [](CArchive& ar) { ar.WriteCount(0xFFFFFFFF); }, "FF FF FF FF FF FF"},
      {"empty string", [](CArchive& ar) { ar << CString(); }, "FF FE FF 00"},
      {"string", [](CArchive& ar) { ar << CString(u"Aä"); }, "FF FE FF 02 41 00 E4 00"},
      {"string literal", [](CArchive& ar) { ar << u"x"; }, "FF FE FF 01 78 00"},
      {"8-bit string", [](CArchive& ar) { ar << CStringA("abc"); }, "03 61 62 63"},
  };
  for (const PrimitiveRow& row : rows) {
    EXPECT_EQ(ToHex(StoreWith(row.write)), ToHex(Hex(row.hex))) << row.name;
  }
}

TEST(CArchiveTest, PrimitivesReadBackWhatWasWritten) {
  const Bytes bytes = StoreWith([](CArchive& ar) {
    ar << -7 << 3.25 << short{-3} << WORD{65535} << true << BYTE{9} << LONGLONG{-1} << 2.5f << u'Z';
    ar.WriteCount(70000);
    ar << CString(u"Träger") << CStringA("raw");
  });
  int i = 0;
  double d = 0;
  short s = 0;
  WORD w = 0;
  bool b = false;
  BYTE by = 0;
  LONGLONG ll = 0;
  float f = 0;
  char16_t ch = 0;
  CString text;
  CStringA raw;
  DWORD_PTR count = 0;
  const ULONGLONG left = LoadWith(bytes, [&](CArchive& ar) {
    ar >> i >> d >> s >> w >> b >> by >> ll >> f >> ch;
    count = ar.ReadCount();
    ar >> text >> raw;
  });
  EXPECT_EQ(left, 0u);
  EXPECT_EQ(i, -7);
  EXPECT_EQ(d, 3.25);
  EXPECT_EQ(s, -3);
  EXPECT_EQ(w, 65535);
  EXPECT_TRUE(b);
  EXPECT_EQ(by, 9);
  EXPECT_EQ(ll, -1);
  EXPECT_EQ(f, 2.5f);
  EXPECT_EQ(ch, u'Z');
  EXPECT_EQ(count, 70000u);
  EXPECT_EQ(text, u"Träger");
  EXPECT_EQ(raw, "raw");
}

TEST(CArchiveTest, AnyNonZeroByteLoadsAsTrue) {
  bool b = false;
  LoadWith(Hex("02"), [&](CArchive& ar) { ar >> b; });
  EXPECT_TRUE(b);
}

TEST(CArchiveTest, CountAbove32BitsCannotBeStored) {
  EXPECT_TRUE(test::ThrowsInvalidArg([] { StoreWith([](CArchive& ar) { ar.WriteCount(0x100000000); }); },
                                     u"count 4294967296 does not fit the archive's 32 bits"));
}

TEST(CArchiveTest, WideStringLengthForms) {
  struct Row {
    int length;
    const char* header;  // marker and length
  };
  const Row rows[] = {
      {0, "FF FE FF 00"},
      {254, "FF FE FF FE"},
      {255, "FF FE FF FF FF 00"},
      {0xFFFD, "FF FE FF FF FD FF"},
      {0xFFFE, "FF FE FF FF FF FF FE FF 00 00"},
      {0xFFFF, "FF FE FF FF FF FF FF FF 00 00"},
      {0x10000, "FF FE FF FF FF FF 00 00 01 00"},
  };
  for (const Row& row : rows) {
    CString text;
    for (int i = 0; i < row.length; ++i) text += static_cast<char16_t>(u'a' + i % 26);
    const Bytes bytes = StoreWith([&](CArchive& ar) { ar << text; });
    const Bytes header = Hex(row.header);
    ASSERT_EQ(bytes.size(), header.size() + 2 * static_cast<std::size_t>(row.length)) << row.length;
    EXPECT_EQ(ToHex(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(header.size()))),
              ToHex(header))
        << row.length;
    if (row.length > 0) {
      EXPECT_EQ(bytes[header.size()], 'a') << row.length;  // then UTF-16LE text
    }
    CString back;
    EXPECT_EQ(LoadWith(bytes, [&](CArchive& ar) { ar >> back; }), 0u) << row.length;
    EXPECT_EQ(back, text) << row.length;
  }
}

TEST(CArchiveTest, ReadsEveryStoredStringForm) {
  const test::AnsiCodePageScope codePage(1252);
  const Bytes longNarrow = test::Cat({Hex("FF 00 01"), Bytes(256, 'n')});
  const Bytes longWide = test::Cat({Hex("FF FE FF FF 00 01"), Bytes(512, 0)});
  struct Row {
    const char* name;
    Bytes bytes;
    CString expected;
  };
  const Row rows[] = {
      {"8-bit, byte length", Hex("03 61 62 63"), u"abc"},
      {"8-bit, ANSI code page", Hex("02 E4 80"), u"ä€"},
      {"8-bit, empty", Hex("00"), u""},
      {"8-bit, word length", longNarrow, CString(u'n', 256)},
      {"8-bit, dword length", Hex("FF FF FF 02 00 00 00 4F 4B"), u"OK"},
      {"wide, byte length", Hex("FF FE FF 01 AC 20"), u"€"},
      {"wide, word length", longWide, CString(u'\0', 256)},
      {"wide, dword length", Hex("FF FE FF FF FF FF 01 00 00 00 41 00"), u"A"},
  };
  for (const Row& row : rows) {
    CString text(u"old");
    EXPECT_EQ(LoadWith(row.bytes, [&](CArchive& ar) { ar >> text; }), 0u) << row.name;
    EXPECT_EQ(text, row.expected) << row.name;
  }
}

TEST(CArchiveTest, EightBitStringsDecodeWithTheAnsiCodePage) {
  CString utf8;
  LoadWith(Hex("02 C3 A4"), [&](CArchive& ar) { ar >> utf8; });  // the default ANSI code page is UTF-8
  EXPECT_EQ(utf8, u"ä");
  const test::AnsiCodePageScope codePage(1252);
  CStringA narrow;
  LoadWith(Hex("FF FE FF 01 E4 00"), [&](CArchive& ar) { ar >> narrow; });  // wide text into 8 bits
  EXPECT_EQ(narrow, "\xE4");
}

TEST(CArchiveTest, StoredLengthBeyondTheDataFailsBeforeAllocating) {
  struct Row {
    const char* name;
    Bytes bytes;
    std::function<void(CArchive&)> read;
    const char16_t* detail;
  };
  const Bytes tail(12, 0);
  const Row rows[] = {
      {"wide string", test::Cat({Hex("00 00 00 00 00 00 00 00 FF FE FF FF FF FF FF FF FF FF"), tail}),
       [](CArchive& ar) {
         int skipped[2];
         CString s;
         ar >> skipped[0] >> skipped[1] >> s;
       },
       u"string length 4294967295 at offset 18 exceeds the 12 bytes left"},
      {"wide string, odd bytes", test::Cat({Hex("FF FE FF 07"), tail}),
       [](CArchive& ar) {
         CString s;
         ar >> s;
       },
       u"string length 7 at offset 4 exceeds the 12 bytes left"},
      {"8-bit string", test::Cat({Hex("0D"), tail}),
       [](CArchive& ar) {
         CStringA s;
         ar >> s;
       },
       u"string length 13 at offset 1 exceeds the 12 bytes left"},
      {"int", Hex("01 02"),
       [](CArchive& ar) {
         int i;
         ar >> i;
       },
       u"4 bytes at offset 0 exceed the 2 bytes left"},
      {"block", Hex("01 02 03"),
       [](CArchive& ar) {
         BYTE b[8];
         ar.ReadBytes(b, sizeof b);
       },
       u"8 bytes at offset 0 exceed the 3 bytes left"},
  };
  for (const Row& row : rows) {
    EXPECT_TRUE(ThrowsArchiveError([&] { LoadWith(row.bytes, row.read); }, CArchiveException::endOfFile, row.detail))
        << row.name;
  }
}

TEST(CArchiveTest, WrongDirectionAndClosedArchivesThrow) {
  CMemFile file;
  CArchive storing(&file, CArchive::store);
  int i = 0;
  EXPECT_TRUE(ThrowsArchiveError([&] { storing >> i; }, CArchiveException::writeOnly));
  EXPECT_TRUE(ThrowsArchiveError([&] { storing.ReadCount(); }, CArchiveException::writeOnly));
  storing.Close();
  EXPECT_TRUE(ThrowsArchiveError([&] { storing << 1; }, CArchiveException::genericException,
                                 u"the archive is closed"));

  BYTE data[4] = {1, 0, 0, 0};
  CMemFile input(data, sizeof data);
  CArchive loading(&input, CArchive::load);
  EXPECT_TRUE(ThrowsArchiveError([&] { loading << 1; }, CArchiveException::readOnly));
  EXPECT_TRUE(ThrowsArchiveError([&] { loading << CString(u"x"); }, CArchiveException::readOnly));
  EXPECT_TRUE(ThrowsArchiveError([&] { loading.Write(data, 1); }, CArchiveException::readOnly));
  loading >> i;
  EXPECT_EQ(i, 1);
}

TEST(CArchiveTest, SmallBufferAndLargeBlocksKeepTheStreamIntact) {
  // A 64-byte buffer makes values straddle refills; a block larger than the buffer goes around it.
  std::vector<int> block(5000);
  for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<int>(i * 7919);
  CMemFile file;
  {
    CArchive ar(&file, CArchive::store, 64);
    for (int i = 0; i < 100; ++i) ar << static_cast<BYTE>(i) << i << static_cast<double>(i) / 3;
    ar.WriteArray(block.data(), block.size());
    ar << CString(u"end");
    EXPECT_EQ(ar.GetPosition(), 100u * 13 + block.size() * 4 + 10);
  }  // the destructor flushes
  const Bytes bytes = file.GetBytes();
  ASSERT_EQ(bytes.size(), 100u * 13 + block.size() * 4 + 10);
  Bytes copy = bytes;
  CMemFile input(copy.data(), static_cast<UINT>(copy.size()));
  CArchive ar(&input, CArchive::load, 64);
  for (int i = 0; i < 100; ++i) {
    BYTE b;
    int n;
    double d;
    ar >> b >> n >> d;
    ASSERT_EQ(b, i);
    ASSERT_EQ(n, i);
    ASSERT_EQ(d, static_cast<double>(i) / 3);
  }
  std::vector<int> back(block.size());
  ar.ReadArray(back.data(), back.size());
  EXPECT_EQ(back, block);
  CString end;
  ar >> end;
  EXPECT_EQ(end, u"end");
  EXPECT_EQ(ar.GetBytesLeft(), 0u);
}

TEST(CArchiveTest, ReadReturnsWhatIsLeftAtTheEnd) {
  const Bytes bytes = Hex("01 02 03 04 05");
  BYTE out[8] = {};
  UINT got = 0;
  LoadWith(bytes, [&](CArchive& ar) {
    BYTE first;
    ar >> first;
    got = ar.Read(out, sizeof out);
    EXPECT_EQ(ar.Read(out, sizeof out), 0u);
  });
  EXPECT_EQ(got, 4u);
  EXPECT_EQ(out[3], 5);
}

TEST(CArchiveTest, PositionsFollowTheFile) {
  Bytes bytes = Hex("AA BB 07 00 00 00 08 00 00 00");
  CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
  file.Seek(2, CFile::begin);
  CArchive ar(&file, CArchive::load);
  int first;
  ar >> first;
  EXPECT_EQ(first, 7);
  EXPECT_EQ(ar.GetPosition(), 6u);
  EXPECT_EQ(ar.GetBytesLeft(), 4u);
  // Closing gives the unread bytes back, so the file continues where the archive stopped.
  ar.Close();
  EXPECT_EQ(file.GetPosition(), 6u);
}

TEST(CArchiveTest, CheckCountMessage) {
  LoadWith(Hex("01 02 03 04 05 06"), [](CArchive& ar) {
    ar.CheckCount(u"element count", 3, 2);  // exactly fits
    EXPECT_TRUE(ThrowsArchiveError([&] { ar.CheckCount(u"element count", 4, 2); }, CArchiveException::endOfFile,
                                   u"element count 4 at offset 0 exceeds the 6 bytes left"));
    EXPECT_TRUE(ThrowsArchiveError([&] { ar.CheckCount(u"pair count", 0x4000000000000000, 8); },
                                   CArchiveException::endOfFile));
  });
}

}  // namespace
}  // namespace quarrix
