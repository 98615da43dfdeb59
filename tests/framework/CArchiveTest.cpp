#include "TestSupport.h"
#include "framework/ArchiveTestSupport.h"

#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CMemFile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <tuple>

namespace quarrix {
namespace {

using test::Bytes;
using test::Hex;
using test::LoadWith;
using test::StoreWith;
using test::ThrowsArchiveError;
using test::ToHex;
using Op = std::function<void(CArchive&)>;

TEST(CArchiveTest, PrimitivesAreLittleEndianImages) {
  const struct {
    const char* name;
    Op write;
    const char* hex;
  } rows[] = {
      {"int -1", [](CArchive& ar) { ar << -1; }, "FF FF FF FF"},
      {"LONG min", [](CArchive& ar) { ar << std::numeric_limits<LONG>::min(); }, "00 00 00 80"},
      {"DWORD", [](CArchive& ar) { ar << DWORD{0x12345678}; }, "78 56 34 12"},
      {"WORD, short", [](CArchive& ar) { ar << WORD{0xABCD} << short{-2}; }, "CD AB FE FF"},
      {"BYTE, char, bools", [](CArchive& ar) { ar << BYTE{0x80} << 'A' << true << false; }, "80 41 01 00"},
      {"char16_t", [](CArchive& ar) { ar << u'\u20AC'; }, "AC 20"},
      {"float, double", [](CArchive& ar) { ar << 1.0f << -0.5; }, "00 00 80 3F 00 00 00 00 00 00 E0 BF"},
      {"LONGLONG", [](CArchive& ar) { ar << LONGLONG{-2}; }, "FE FF FF FF FF FF FF FF"},
      {"ULONGLONG", [](CArchive& ar) { ar << ULONGLONG{0x0102030405060708}; }, "08 07 06 05 04 03 02 01"},
      {"count 0", [](CArchive& ar) { ar.WriteCount(0); }, "00 00"},
      {"count 0xFFFE", [](CArchive& ar) { ar.WriteCount(0xFFFE); }, "FE FF"},
      {"count 0xFFFF", [](CArchive& ar) { ar.WriteCount(0xFFFF); }, "FF FF FF FF 00 00"},
      {"count 0x10000", [](CArchive& ar) { ar.WriteCount(0x10000); }, "FF FF 00 00 01 00"},
      {"count max", [](CArchive& ar) { ar.WriteCount(0xFFFFFFFF); }, "FF FF FF FF FF FF"},
      {"string", [](CArchive& ar) { ar << CString(u"Aä"); }, "FF FE FF 02 41 00 E4 00"},
      {"string literal", [](CArchive& ar) { ar << u"x"; }, "FF FE FF 01 78 00"},
      {"8-bit string", [](CArchive& ar) { ar << CStringA("abc"); }, "03 61 62 63"},
  };
  for (const auto& row : rows) EXPECT_EQ(ToHex(StoreWith(row.write)), ToHex(Hex(row.hex))) << row.name;
  EXPECT_TRUE(test::ThrowsInvalidArg([] { StoreWith([](CArchive& ar) { ar.WriteCount(0x100000000); }); },
                                     u"count 4294967296 does not fit the archive's 32 bits"));
}

TEST(CArchiveTest, WideStringLengthForms) {
  const struct {
    int length;
    const char* header;  // marker and length
  } rows[] = {{0, "FF FE FF 00"},
              {254, "FF FE FF FE"},
              {255, "FF FE FF FF FF 00"},
              {0xFFFD, "FF FE FF FF FD FF"},
              {0xFFFE, "FF FE FF FF FF FF FE FF 00 00"},
              {0xFFFF, "FF FE FF FF FF FF FF FF 00 00"},
              {0x10000, "FF FE FF FF FF FF 00 00 01 00"}};
  for (const auto& row : rows) {
    CString text;
    for (int i = 0; i < row.length; ++i) text += static_cast<char16_t>(u'a' + i % 26);
    const Bytes bytes = StoreWith([&](CArchive& ar) { ar << text; });
    const Bytes header = Hex(row.header);
    ASSERT_EQ(bytes.size(), header.size() + 2 * static_cast<std::size_t>(row.length)) << row.length;
    EXPECT_TRUE(std::equal(header.begin(), header.end(), bytes.begin())) << row.length << ": " << ToHex(bytes).substr(0, 40);
    CString back;
    EXPECT_EQ(LoadWith(bytes, [&](CArchive& ar) { ar >> back; }), 0u);
    EXPECT_EQ(back, text) << row.length;
  }
}

TEST(CArchiveTest, ReadsEveryStoredStringForm) {
  CString utf8;
  LoadWith(Hex("02 C3 A4"), [&](CArchive& ar) { ar >> utf8; });  // 8-bit text in the default ANSI page, UTF-8
  EXPECT_EQ(utf8, u"ä");
  const test::ScopedAnsiCodePage codePage(1252);
  const struct {
    const char* name;
    Bytes bytes;
    CString expected;
  } rows[] = {
      {"8-bit, byte length", Hex("03 61 62 63"), u"abc"},
      {"8-bit, ANSI code page", Hex("02 E4 80"), u"ä€"},
      {"8-bit, empty", Hex("00"), u""},
      {"8-bit, word length", test::Cat({Hex("FF 00 01"), Bytes(256, 'n')}), CString(u'n', 256)},
      {"8-bit, dword length", Hex("FF FF FF 02 00 00 00 4F 4B"), u"OK"},
      {"wide, byte length", Hex("FF FE FF 01 AC 20"), u"€"},
      {"wide, word length", test::Cat({Hex("FF FE FF FF 00 01"), Bytes(512, 0)}), CString(u'\0', 256)},
      {"wide, dword length", Hex("FF FE FF FF FF FF 01 00 00 00 41 00"), u"A"},
  };
  for (const auto& row : rows) {
    CString text(u"old");
    EXPECT_EQ(LoadWith(row.bytes, [&](CArchive& ar) { ar >> text; }), 0u) << row.name;
    EXPECT_EQ(text, row.expected) << row.name;
  }
  CStringA narrow;
  LoadWith(Hex("FF FE FF 01 E4 00"), [&](CArchive& ar) { ar >> narrow; });  // wide text into 8 bits
  EXPECT_EQ(narrow, "\xE4");
}

TEST(CArchiveTest, DataEndingEarlyFailsBeforeAllocating) {
  const Bytes tail(12, 0);
  const struct {
    const char* name;
    Bytes bytes;
    Op read;
    const char16_t* detail;
  } rows[] = {
      {"wide string", test::Cat({Hex("00 00 00 00 00 00 00 00 FF FE FF FF FF FF FF FF FF FF"), tail}),
       [](CArchive& ar) { ar >> *std::make_unique<LONGLONG>() >> *std::make_unique<CString>(); },
       u"string length 4294967295 at offset 18 exceeds the 12 bytes left"},
      {"wide string, odd bytes", test::Cat({Hex("FF FE FF 07"), tail}),
       [](CArchive& ar) { ar >> *std::make_unique<CString>(); }, u"string length 7 at offset 4 exceeds the 12 bytes left"},
      {"8-bit string", test::Cat({Hex("0D"), tail}), [](CArchive& ar) { ar >> *std::make_unique<CStringA>(); },
       u"string length 13 at offset 1 exceeds the 12 bytes left"},
      {"int", Hex("01 02"), [](CArchive& ar) { ar >> *std::make_unique<int>(); },
       u"4 bytes at offset 0 exceed the 2 bytes left"},
      {"block", Hex("01 02 03"), [](CArchive& ar) { ar.ReadBytes(std::make_unique<BYTE[]>(8).get(), 8); },
       u"8 bytes at offset 0 exceed the 3 bytes left"},
      {"count", Hex("01 00 00 00 00 00"), [](CArchive& ar) { ar.CheckCount(u"element count", 4, 2); },
       u"element count 4 at offset 0 exceeds the 6 bytes left"},
  };
  for (const auto& row : rows) {
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
  EXPECT_TRUE(ThrowsArchiveError([&] { storing << 1; }, CArchiveException::genericException, u"the archive is closed"));
  EXPECT_EQ(storing.GetPosition(), 0u);

  BYTE data[4] = {1, 0, 0, 0};
  CMemFile input(data, sizeof data);
  CArchive loading(&input, CArchive::load);
  EXPECT_TRUE(ThrowsArchiveError([&] { loading << 1; }, CArchiveException::readOnly));
  EXPECT_TRUE(ThrowsArchiveError([&] { loading << CString(u"x"); }, CArchiveException::readOnly));
  EXPECT_TRUE(ThrowsArchiveError([&] { loading.Write(data, 1); }, CArchiveException::readOnly));
  loading >> i;
  EXPECT_EQ(i, 1);
}

TEST(CArchiveTest, SmallBuffersAndLargeBlocksKeepTheStreamIntact) {
  // A 64-byte buffer makes values straddle refills; a block larger than the buffer goes around it.
  std::vector<int> block(5000);
  for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<int>(i * 7919);
  CMemFile file;
  {
    CArchive ar(&file, CArchive::store, 64);
    for (int i = 0; i < 100; ++i) ar << static_cast<BYTE>(i) << i / 3.0 << LONGLONG{-i} << short(i);
    ar.WriteArray(block.data(), block.size());
  }  // the destructor flushes
  ASSERT_EQ(file.GetLength(), 100u * 19 + block.size() * 4);
  LoadWith(file.GetBytes(), [&](CArchive& ar) {
    for (int i = 0; i < 100; ++i) {
      BYTE b;
      double d;
      LONGLONG ll;
      short s;
      ar >> b >> d >> ll >> s;
      ASSERT_TRUE(b == i && d == i / 3.0 && ll == -i && s == i) << i;
    }
    std::vector<int> back(block.size());
    ar.ReadArray(back.data(), back.size());
    EXPECT_EQ(back, block);
  }, 64);
}

TEST(CArchiveTest, FuzzBlockLargerThanTheBufferButNotThanItsUnreadPart) {
  Bytes bytes(200);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<BYTE>(i);
  const ULONGLONG left = LoadWith(bytes, [](CArchive& ar) {
    BYTE head[48];
    ar.ReadBytes(head, sizeof head);  // 16 bytes stay buffered
    BYTE block[78];                   // more than the buffer holds, less than that plus the 16
    ar.ReadBytes(block, sizeof block);
    EXPECT_EQ(block[0], 48);
    EXPECT_EQ(block[77], 125);
  }, 64);
  EXPECT_EQ(left, 200u - 48 - 78);
}

TEST(CArchiveTest, PositionsFollowTheFile) {
  Bytes bytes = Hex("AA BB 07 00 00 00 08 00 00 00 09");
  CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
  file.Seek(2, CFile::begin);
  CArchive ar(&file, CArchive::load);
  int first;
  ar >> first;
  EXPECT_EQ(first, 7);
  EXPECT_EQ(ar.GetPosition(), 6u);
  EXPECT_EQ(ar.GetBytesLeft(), 5u);
  ar.Close();
  EXPECT_EQ(file.GetPosition(), 6u);  // the unread bytes went back: the file continues where the archive stopped
  CArchive rest(&file, CArchive::load);
  BYTE out[8] = {};
  EXPECT_EQ(rest.Read(out, 4), 4u);
  EXPECT_EQ(rest.Read(out, sizeof out), 1u);  // Read returns what is left instead of throwing
  EXPECT_EQ(out[0], 9);
  bool b = false;
  LoadWith(Hex("02"), [&](CArchive& a) { a >> b; });  // any byte but 0 loads as true
  EXPECT_TRUE(b);
}

}  // namespace
}  // namespace quarrix
