#include "framework/ArchiveTestSupport.h"

#include <quarrix/collections/CIntList.h>

#include <gtest/gtest.h>

#include <vector>

namespace quarrix {
namespace {

using test::Hex;
using test::ToHex;

std::vector<int> Elements(const CIntList& list) { return std::vector<int>(list.begin(), list.end()); }

void Fill(CIntList& list, const std::vector<int>& values) {
  for (int v : values) list.AddTail(v);
}

TEST(CIntListTest, AddFollowsTheFlagPolicy) {
  struct Row {
    const char* name;
    std::vector<int> before;
    int value;
    int flags;
    std::vector<int> after;
  };
  const Row rows[] = {
      {"ascending, behind equal values", {1, 5, 9}, 5, 2, {1, 5, 5, 9}},
      {"unique ascending, duplicate", {1, 5, 9}, 5, 3, {1, 5, 9}},
      {"descending", {9, 5, 1}, 4, 4, {9, 5, 4, 1}},
      {"no flags: tail", {3, 1}, 2, 0, {3, 1, 2}},
      {"unique alone scans all, then tail", {3, 1}, 2, 1, {3, 1, 2}},
      {"unique alone, duplicate at the end", {3, 1}, 1, 1, {3, 1}},
      {"ascending, new largest", {1, 2}, 7, 2, {1, 2, 7}},
      {"ascending, new smallest", {1, 2}, 0, 2, {0, 1, 2}},
      {"descending unique, duplicate", {9, 5, 1}, 5, 5, {9, 5, 1}},
      {"unique|ascending misses a duplicate past the insertion point", {5, 1}, 1, 3, {1, 5, 1}},
      {"empty list", {}, 4, 2, {4}},
      {"other bits are ignored", {2}, 1, 8, {2, 1}},
  };
  for (const Row& row : rows) {
    CIntList list;
    Fill(list, row.before);
    list.Add(row.value, row.flags);
    EXPECT_EQ(Elements(list), row.after) << row.name;
  }
}

TEST(CIntListTest, ListLayoutWithTheCountPrimitive) {
  CIntList list;
  EXPECT_EQ(ToHex(test::Store(list)), "00 00");
  list.AddTail(-2);
  EXPECT_EQ(ToHex(test::Store(list)), "01 00 FE FF FF FF");
  for (int count : {65534, 65535}) {
    CIntList big;
    for (int i = 0; i < count; ++i) big.AddTail(i);
    const test::Bytes bytes = test::Store(big);
    const char* head = count == 65534 ? "FE FF 00 00 00 00" : "FF FF FF FF 00 00 00 00 00 00";
    const test::Bytes expected = Hex(head);
    ASSERT_EQ(bytes.size(), (count == 65534 ? 2u : 6u) + 4u * count);
    EXPECT_EQ(ToHex(test::Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(expected.size()))),
              ToHex(expected));
    CIntList back;
    EXPECT_EQ(test::Load(back, bytes), 0u);
    EXPECT_EQ(back.GetCount(), count);
    EXPECT_EQ(back.GetTail(), count - 1);
  }
}

TEST(CIntListTest, LoadingAppendsToWhatIsThere) {
  CIntList list;
  list.AddTail(1);
  EXPECT_EQ(test::Load(list, Hex("02 00 02 00 00 00 03 00 00 00")), 0u);
  EXPECT_EQ(Elements(list), (std::vector<int>{1, 2, 3}));
}

TEST(CIntListTest, CopiesAreElementByElement) {
  CIntList a;
  Fill(a, {3, 1, 2});
  const CIntList copy(a);
  CIntList assigned;
  Fill(assigned, {9});
  assigned = a;
  a.RemoveAll();
  EXPECT_EQ(Elements(copy), (std::vector<int>{3, 1, 2}));
  EXPECT_EQ(Elements(assigned), (std::vector<int>{3, 1, 2}));
  assigned = assigned;  // not emptied by assigning itself
  EXPECT_EQ(Elements(assigned), (std::vector<int>{3, 1, 2}));
}

}  // namespace
}  // namespace quarrix
