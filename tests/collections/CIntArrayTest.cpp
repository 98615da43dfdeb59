#include "framework/ArchiveTestSupport.h"

#include <quarrix/collections/CIntArray.h>

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace quarrix {
namespace {

using test::Hex;
using test::ToHex;

std::vector<int> Elements(const CIntArray& a) { return std::vector<int>(a.begin(), a.end()); }

void Fill(CIntArray& a, std::initializer_list<int> values) {
  for (int v : values) a.Add(v);
}

constexpr char16_t kNewer[] = u"The file you open requires a newer program version.";

TEST(CIntArrayTest, VersionedLayout) {
  CIntArray a;
  EXPECT_EQ(ToHex(test::Store(a)), "01 00 00 00 00 00 00 00");
  Fill(a, {7, -1});
  EXPECT_EQ(ToHex(test::Store(a)), "01 00 00 00 02 00 00 00 07 00 00 00 FF FF FF FF");
}

TEST(CIntArrayTest, VersionsAboveOneAreRefusedBeforeAnyChange) {
  for (int version : {2, 100, INT_MAX}) {
    CIntArray a;
    Fill(a, {4, 5, 6});
    const test::Bytes record = test::StoreWith([&](CArchive& ar) { ar << version << 1 << 9; });
    EXPECT_TRUE(test::ThrowsSerializeError([&] { test::Load(a, record); }, eSerNewerVersionRequired, kNewer))
        << version;
    EXPECT_EQ(Elements(a), (std::vector<int>{4, 5, 6})) << version;
  }
}

TEST(CIntArrayTest, VersionsOfOneAndBelowLoad) {
  for (int version : {1, 0, -1, INT_MIN}) {
    CIntArray a;
    Fill(a, {4, 5, 6});
    const test::Bytes record = test::StoreWith([&](CArchive& ar) { ar << version << 2 << 9 << -9; });
    EXPECT_EQ(test::Load(a, record), 0u) << version;
    EXPECT_EQ(Elements(a), (std::vector<int>{9, -9})) << version;
  }
}

TEST(CIntArrayTest, CountsOfZeroOrLessGiveAnEmptyArray) {
  for (const char* record : {"01 00 00 00 00 00 00 00", "01 00 00 00 FF FF FF FF", "01 00 00 00 00 00 00 80"}) {
    CIntArray a;
    Fill(a, {1});
    EXPECT_EQ(test::Load(a, Hex(record)), 0u) << record;
    EXPECT_TRUE(a.IsEmpty()) << record;
    EXPECT_EQ(a.GetData(), nullptr) << record;  // the storage is freed too
  }
}

TEST(CIntArrayTest, ACountBeyondTheDataFailsBeforeAllocating) {
  CIntArray a;
  Fill(a, {1});
  EXPECT_TRUE(test::ThrowsArchiveError([&] { test::Load(a, Hex("01 00 00 00 FF FF FF 7F 01 00 00 00")); },
                                       CArchiveException::endOfFile,
                                       u"element count 2147483647 at offset 8 exceeds the 4 bytes left"));
  EXPECT_EQ(Elements(a), std::vector<int>{1});
}

TEST(CIntArrayTest, CopiesAreElementByElement) {
  CIntArray a;
  Fill(a, {1, 2, 3});
  const CIntArray copy(a);
  CIntArray assigned;
  Fill(assigned, {9, 9, 9, 9, 9});
  assigned = a;
  a[0] = 100;
  EXPECT_EQ(Elements(copy), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(Elements(assigned), (std::vector<int>{1, 2, 3}));
  assigned = assigned;
  EXPECT_EQ(assigned.GetSize(), 3);
}

TEST(CIntArrayTest, LargeArraysRoundTrip) {
  CIntArray a;
  a.SetSize(300000);
  for (INT_PTR i = 0; i < a.GetSize(); ++i) a[i] = static_cast<int>(i * 2654435761u);
  const test::Bytes bytes = test::Store(a);
  ASSERT_EQ(bytes.size(), 8u + 4 * 300000);
  CIntArray back;
  EXPECT_EQ(test::Load(back, bytes), 0u);
  EXPECT_EQ(Elements(back), Elements(a));
}

}  // namespace
}  // namespace quarrix
