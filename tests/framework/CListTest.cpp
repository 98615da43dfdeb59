#include "framework/ArchiveTestSupport.h"

#include <quarrix/framework/CList.h>
#include <quarrix/framework/TypedCollections.h>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace quarrix {
namespace {

using test::Hex;
using test::ThrowsInvalidArg;
using test::ToHex;

template <class TYPE, class ARG>
std::vector<TYPE> Forward(const CList<TYPE, ARG>& list) {
  std::vector<TYPE> out;
  for (POSITION pos = list.GetHeadPosition(); pos;) out.push_back(list.GetNext(pos));
  return out;
}

template <class TYPE, class ARG>
std::vector<TYPE> Backward(const CList<TYPE, ARG>& list) {
  std::vector<TYPE> out;
  for (POSITION pos = list.GetTailPosition(); pos;) out.push_back(list.GetPrev(pos));
  return out;
}

TEST(CListTest, PositionsInsertAndRemove) {
  CList<int, int> list;
  const POSITION two = list.AddTail(2);
  list.AddHead(1);
  list.AddTail(4);
  list.InsertAfter(two, 3);
  list.InsertBefore(list.GetHeadPosition(), 0);
  list.InsertBefore(nullptr, -1);  // null: at the head
  list.InsertAfter(nullptr, 5);    // null: at the tail
  EXPECT_EQ(Forward(list), (std::vector<int>{-1, 0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(Backward(list), (std::vector<int>{5, 4, 3, 2, 1, 0, -1}));
  EXPECT_EQ(list.GetHead(), -1);
  EXPECT_EQ(list.GetTail(), 5);
  EXPECT_EQ(list.GetAt(two), 2);
  list.SetAt(two, 20);
  EXPECT_EQ(list.GetAt(list.FindIndex(3)), 20);
  EXPECT_EQ(list.FindIndex(7), nullptr);
  EXPECT_EQ(list.FindIndex(-1), nullptr);
  list.RemoveAt(two);
  EXPECT_EQ(list.RemoveHead(), -1);
  EXPECT_EQ(list.RemoveTail(), 5);
  EXPECT_EQ(Forward(list), (std::vector<int>{0, 1, 3, 4}));
  EXPECT_EQ(list.GetCount(), 4);
  int sum = 0;
  for (int v : list) sum += v;
  EXPECT_EQ(sum, 8);
}

TEST(CListTest, FindStartsAfterTheGivenPosition) {
  CStringList names;
  names.AddTail(u"beam");
  names.AddTail(u"column");
  names.AddTail(u"beam");
  const POSITION first = names.Find(u"beam");
  ASSERT_NE(first, nullptr);
  const POSITION second = names.Find(u"beam", first);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(names.Find(u"beam", second), nullptr);
  EXPECT_EQ(names.Find(u"plate"), nullptr);
}

TEST(CListTest, ListsAddedToListsKeepTheirOrder) {
  CList<int, int> list;
  CList<int, int> other;
  for (int v : {1, 2}) list.AddTail(v);
  for (int v : {8, 9}) other.AddTail(v);
  list.AddHead(&other);
  list.AddTail(&other);
  EXPECT_EQ(Forward(list), (std::vector<int>{8, 9, 1, 2, 8, 9}));
  list.AddTail(&list);  // itself: copies what was there when it started
  EXPECT_EQ(list.GetCount(), 12);
  list.AddHead(&list);
  EXPECT_EQ(list.GetCount(), 24);
  EXPECT_EQ(Forward(list).front(), 8);
}

TEST(CListTest, EmptyListsAndNullPositionsThrow) {
  CList<int, int> list;
  POSITION none = nullptr;
  struct Row {
    const char* name;
    std::function<void()> call;
    const char16_t* detail;
  };
  const Row rows[] = {
      {"GetHead", [&] { list.GetHead(); }, u"GetHead: the list is empty"},
      {"GetTail", [&] { list.GetTail(); }, u"GetTail: the list is empty"},
      {"RemoveHead", [&] { list.RemoveHead(); }, u"RemoveHead: the list is empty"},
      {"RemoveTail", [&] { list.RemoveTail(); }, u"RemoveTail: the list is empty"},
      {"GetNext", [&] { list.GetNext(none); }, u"GetNext: null POSITION"},
      {"GetPrev", [&] { list.GetPrev(none); }, u"GetPrev: null POSITION"},
      {"GetAt", [&] { list.GetAt(nullptr); }, u"GetAt: null POSITION"},
      {"SetAt", [&] { list.SetAt(nullptr, 1); }, u"SetAt: null POSITION"},
      {"RemoveAt", [&] { list.RemoveAt(nullptr); }, u"RemoveAt: null POSITION"},
      {"AddTail null", [&] { list.AddTail(static_cast<const CList<int, int>*>(nullptr)); }, u"AddTail: null list"},
  };
  for (const Row& row : rows) EXPECT_TRUE(ThrowsInvalidArg(row.call, row.detail)) << row.name;
}

TEST(CListTest, NodesAreReusedAcrossBlocks) {
  // Many insertions and removals through the block pool; ASan reports any node that leaks or is reused
  // while alive.
  CStringList list;
  for (int round = 0; round < 5; ++round) {
    for (int i = 0; i < 95; ++i) list.AddTail(cstringf(u"element %d of a list that outlives the buffer", i));
    for (int i = 0; i < 50; ++i) list.RemoveHead();
  }
  EXPECT_EQ(list.GetCount(), 5 * 45);
  EXPECT_EQ(list.GetTail(), u"element 94 of a list that outlives the buffer");
  list.AssertValid();
  while (!list.IsEmpty()) list.RemoveTail();
  list.AddTail(u"again");
  EXPECT_EQ(list.GetCount(), 1);
}

TEST(CListTest, ArchiveLayoutAndAppendingLoad) {
  CList<int, int> list;
  EXPECT_EQ(ToHex(test::Store(list)), "00 00");
  for (int v : {1, -2}) list.AddTail(v);
  EXPECT_EQ(ToHex(test::Store(list)), "02 00 01 00 00 00 FE FF FF FF");
  EXPECT_EQ(test::Load(list, Hex("01 00 03 00 00 00")), 0u);
  EXPECT_EQ(Forward(list), (std::vector<int>{1, -2, 3}));

  CStringList strings;
  strings.AddTail(u"x");
  EXPECT_EQ(ToHex(test::Store(strings)), "01 00 FF FE FF 01 78 00");
  // A second string cut short: nothing is appended.
  EXPECT_TRUE(test::ThrowsArchiveError([&] { test::Load(strings, Hex("02 00 01 61 03 62")); },
                                       CArchiveException::endOfFile));
  EXPECT_EQ(Forward(strings), std::vector<CString>{u"x"});
}

}  // namespace
}  // namespace quarrix
