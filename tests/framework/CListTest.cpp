#include "framework/ArchiveTestSupport.h"

#include <quarrix/framework/CList.h>
#include <quarrix/framework/TypedCollections.h>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace quarrix {
namespace {

using Ints = CList<int, int>;

// The elements walked forwards with GetNext and, checked against that, backwards with GetPrev.
std::vector<int> Elements(const Ints& list) {
  std::vector<int> forward, backward;
  for (POSITION pos = list.GetHeadPosition(); pos;) forward.push_back(list.GetNext(pos));
  for (POSITION pos = list.GetTailPosition(); pos;) backward.insert(backward.begin(), list.GetPrev(pos));
  EXPECT_EQ(forward, backward);
  EXPECT_EQ(forward, std::vector<int>(list.begin(), list.end()));
  return forward;
}

TEST(CListTest, PositionsInsertFindAndRemove) {
  Ints list;
  const POSITION two = list.AddTail(2);
  list.AddHead(1);
  list.InsertAfter(two, 3);
  list.InsertBefore(list.GetHeadPosition(), 0);
  list.InsertBefore(nullptr, 3);  // null: at the head
  list.InsertAfter(nullptr, 5);   // null: at the tail
  EXPECT_EQ(Elements(list), (std::vector<int>{3, 0, 1, 2, 3, 5}));
  const POSITION firstThree = list.Find(3);
  EXPECT_EQ(firstThree, list.GetHeadPosition());
  EXPECT_EQ(list.GetAt(list.Find(3, firstThree)), 3);
  EXPECT_EQ(list.Find(3, list.Find(3, firstThree)), nullptr);
  list.SetAt(two, 20);
  EXPECT_EQ(list.GetAt(list.FindIndex(3)), 20);
  EXPECT_EQ(list.FindIndex(6), nullptr);
  list.RemoveAt(two);
  EXPECT_EQ(list.RemoveHead(), 3);
  EXPECT_EQ(list.RemoveTail(), 5);
  EXPECT_EQ(Elements(list), (std::vector<int>{0, 1, 3}));

  Ints other;
  other.AddTail(8);
  other.AddTail(9);
  list.AddHead(&other);
  list.AddTail(&other);
  EXPECT_EQ(Elements(list), (std::vector<int>{8, 9, 0, 1, 3, 8, 9}));
  list.AddTail(&list);  // itself: copies what was there when it started
  list.AddHead(&list);
  EXPECT_EQ(list.GetCount(), 28);
  EXPECT_EQ(list.GetHead(), 8);
}

TEST(CListTest, EmptyListsAndNullPositionsThrow) {
  Ints list;
  POSITION none = nullptr;
  const struct {
    std::function<void()> call;
    const char16_t* detail;
  } rows[] = {
      {[&] { list.GetHead(); }, u"GetHead: the list is empty"},
      {[&] { list.GetTail(); }, u"GetTail: the list is empty"},
      {[&] { list.RemoveHead(); }, u"RemoveHead: the list is empty"},
      {[&] { list.RemoveTail(); }, u"RemoveTail: the list is empty"},
      {[&] { list.GetNext(none); }, u"GetNext: null POSITION"},
      {[&] { list.GetPrev(none); }, u"GetPrev: null POSITION"},
      {[&] { list.SetAt(nullptr, 1); }, u"SetAt: null POSITION"},
      {[&] { list.RemoveAt(nullptr); }, u"RemoveAt: null POSITION"},
      {[&] { list.AddTail(static_cast<const Ints*>(nullptr)); }, u"AddTail: null list"},
  };
  for (const auto& row : rows) EXPECT_TRUE(test::ThrowsInvalidArg(row.call, row.detail)) << test::Text(row.detail);
}

TEST(CListTest, NodesAreReusedAcrossBlocks) {
  // Insertions and removals through the node blocks; ASan reports a node that leaks or is reused alive.
  CStringList list;
  for (int round = 0; round < 5; ++round) {
    for (int i = 0; i < 95; ++i) list.AddTail(cstringf(u"element %d of a list that outlives the buffer", i));
    for (int i = 0; i < 50; ++i) list.RemoveHead();
  }
  EXPECT_EQ(list.GetCount(), 5 * 45);
  EXPECT_EQ(list.GetTail(), u"element 94 of a list that outlives the buffer");
  list.AssertValid();
}

TEST(CListTest, ArchiveLayoutIsCountThenElementsHeadToTail) {
  CStringList strings;
  strings.AddTail(u"x");
  strings.AddTail(u"");
  EXPECT_EQ(test::ToHex(test::Store(strings)), "02 00 FF FE FF 01 78 00 FF FE FF 00");
  EXPECT_EQ(test::Load(strings, test::Hex("01 00 01 79")), 0u);  // appends
  EXPECT_EQ(strings.GetCount(), 3);
  EXPECT_EQ(strings.GetTail(), u"y");
}

}  // namespace
}  // namespace quarrix
