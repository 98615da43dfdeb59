#include "framework/ArchiveTestSupport.h"

#include <quarrix/collections/CIntListArray.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace quarrix {
namespace {

using test::Hex;
using test::ToHex;

// The 28-byte image of a list of n elements: no pointers, the count, the block size 10.
std::string Image(int n) {
  char hex[96];
  std::snprintf(hex, sizeof hex, "00 00 00 00 00 00 00 00 00 00 00 00 %02X 00 00 00 00 00 00 00 00 00 00 00 0A 00 00 00", n);
  return hex;
}

TEST(CIntListArrayTest, ListsGoAsTwentyEightByteImages) {
  CIntListArray a;
  a.SetSize(2);
  a[0].AddTail(1);
  a[0].AddTail(2);
  EXPECT_EQ(ToHex(test::Store(a)), ToHex(Hex("02 00 " + Image(2) + " " + Image(0))));
}

TEST(CIntListArrayTest, LoadedListsAreEmptyAndTheStreamStaysAligned) {
  CIntListArray a;
  a.SetSize(3);
  for (int i = 0; i < 3; ++i) a[i].AddTail(i);
  // Two images with garbage where Windows had pointers, then an int that must still be read correctly.
  test::Bytes record = test::Cat({Hex("02 00"), test::Bytes(28, 0xCD), test::Bytes(28, 0x7F), Hex("2A 00 00 00")});
  int after = 0;
  EXPECT_EQ(test::LoadWith(record, [&](CArchive& ar) { a.Serialize(ar); ar >> after; }), 0u);
  ASSERT_EQ(a.GetSize(), 2);
  EXPECT_TRUE(a[0].IsEmpty());
  EXPECT_TRUE(a[1].IsEmpty());
  EXPECT_EQ(after, 42);
}

TEST(CIntListArrayTest, CopiesCopyEveryList) {
  CIntListArray a;
  a.SetSize(2);
  a[1].AddTail(5);
  const CIntListArray copy(a);
  CIntListArray assigned;
  assigned.SetSize(4);
  assigned = a;
  a[1].AddTail(6);
  ASSERT_EQ(copy.GetSize(), 2);
  ASSERT_EQ(assigned.GetSize(), 2);
  EXPECT_EQ(copy[1].GetCount(), 1);
  EXPECT_EQ(assigned[1].GetHead(), 5);
  EXPECT_EQ(assigned[1].GetCount(), 1);
}

}  // namespace
}  // namespace quarrix
