#include "framework/ArchiveTestSupport.h"

#include <quarrix/framework/CArray.h>
#include <quarrix/framework/TypedCollections.h>

#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <vector>

namespace quarrix {
namespace {

using Ints = CArray<int, int&>;

std::vector<int> Elements(const Ints& a) { return std::vector<int>(a.begin(), a.end()); }

void Fill(Ints& a, std::initializer_list<int> values) {
  for (int v : values) a.Add(v);
}

TEST(CArrayTest, BadIndexesAndCountsThrowWithTheBounds) {
  Ints three;
  Fill(three, {1, 2, 3});
  Ints empty;
  const struct {
    std::function<void()> call;
    const char16_t* detail;
  } rows[] = {
      {[&] { three.GetAt(-1); }, u"GetAt: index -1 is outside 0..2"},
      {[&] { three.GetAt(3); }, u"GetAt: index 3 is outside 0..2"},
      {[&] { three.SetAt(7, 0); }, u"SetAt: index 7 is outside 0..2"},
      {[&] { three[3] = 0; }, u"operator[]: index 3 is outside 0..2"},
      {[&] { three.ElementAt(-5); }, u"ElementAt: index -5 is outside 0..2"},
      {[&] { empty.GetAt(0); }, u"GetAt: index 0 is outside an empty collection"},
      {[&] { three.SetAtGrow(-1, 0); }, u"SetAtGrow: index -1 is outside 0..2"},
      {[&] { three.InsertAt(-1, 0); }, u"InsertAt: index -1 is outside 0..2"},
      {[&] { three.InsertAt(0, 0, 0); }, u"InsertAt: count below 1"},
      {[&] { three.InsertAt(0, nullptr); }, u"InsertAt: null array"},
      {[&] { three.RemoveAt(3); }, u"RemoveAt: index 3 is outside 0..2"},
      {[&] { three.RemoveAt(2, 2); }, u"RemoveAt: count beyond the end"},
      {[&] { three.RemoveAt(0, -1); }, u"RemoveAt: count beyond the end"},
      {[&] { three.SetSize(-1); }, u"SetSize: negative size"},
      {[&] { three.Append(three); }, u"Append: an array cannot be appended to itself"},
  };
  for (const auto& row : rows) EXPECT_TRUE(test::ThrowsInvalidArg(row.call, row.detail)) << test::Text(row.detail);
  three.RemoveAt(3, 0);  // an empty range at the end is fine
  EXPECT_EQ(Elements(three), (std::vector<int>{1, 2, 3}));
}

TEST(CArrayTest, SizeGrowthInsertionAndRemoval) {
  Ints a;
  a.SetSize(3);
  a[1] = 5;
  a.SetAtGrow(5, 9);
  EXPECT_EQ(Elements(a), (std::vector<int>{0, 5, 0, 0, 0, 9}));  // new elements are zero
  a.InsertAt(1, 7, 2);
  a.InsertAt(9, 4);  // beyond the end: grows, the gap holds zeros
  EXPECT_EQ(Elements(a), (std::vector<int>{0, 7, 7, 5, 0, 0, 0, 9, 0, 4}));
  a.RemoveAt(0, 4);
  Ints b;
  Fill(b, {1, 2});
  EXPECT_EQ(a.Append(b), 6);
  a.InsertAt(1, &b);
  EXPECT_EQ(Elements(a), (std::vector<int>{0, 1, 2, 0, 0, 9, 0, 4, 1, 2}));
  b.Copy(a);
  EXPECT_EQ(Elements(b), Elements(a));
  a.RemoveAll();
  EXPECT_EQ(a.GetData(), nullptr);

  // Repeated Add with a grow-by of 1 stays linear (quadratic copying would take minutes here).
  CArray<int, int> big;
  big.SetSize(0, 1);
  for (int i = 0; i < 2'000'000; ++i) big.Add(i);
  EXPECT_EQ(std::accumulate(big.begin(), big.end(), 0LL), 1'999'999LL * 2'000'000 / 2);
}

TEST(CArrayTest, ElementsOfTheArrayItselfSurviveReallocation) {
  CStringArray a;
  a.Add(u"first element, long enough to live on the heap");
  for (int i = 0; i < 40; ++i) a.Add(a[0]);  // each Add may move the storage a[0] lives in
  a.InsertAt(0, a[5], 3);
  a.InsertAt(2, &a);  // an array inserted into itself
  ASSERT_EQ(a.GetSize(), 2 * 44);
  for (const CString& s : a) EXPECT_EQ(s, u"first element, long enough to live on the heap");
}

TEST(CArrayTest, ArchiveLayoutIsCountThenElements) {
  Ints ints;
  Fill(ints, {7, -1});
  CStringArray strings;
  strings.Add(u"a");
  strings.Add(CString());
  CByteArray bytes;
  bytes.Add(1);
  EXPECT_EQ(test::ToHex(test::Store(ints)), "02 00 07 00 00 00 FF FF FF FF");
  EXPECT_EQ(test::ToHex(test::Store(strings)), "02 00 FF FE FF 01 61 00 FF FE FF 00");
  EXPECT_EQ(test::ToHex(test::Store(bytes)), "01 00 01");

  EXPECT_EQ(test::Load(strings, test::Hex("02 00 FF FE FF 01 62 00 01 63")), 0u);  // replaces; wide and 8-bit
  EXPECT_EQ(std::vector<CString>(strings.begin(), strings.end()), (std::vector<CString>{u"b", u"c"}));
  EXPECT_TRUE(test::ThrowsArchiveError([&] { test::Load(ints, test::Hex("05 00 01 00 00 00")); },
                                       CArchiveException::endOfFile,
                                       u"element count 5 at offset 2 exceeds the 4 bytes left"));
  EXPECT_EQ(Elements(ints), (std::vector<int>{7, -1}));

  CPtrArray pointers;
  pointers.Add(&pointers);
  EXPECT_THROW(test::Store(pointers), CNotSupportedException);
  EXPECT_EQ(test::StoreWith([&](CArchive& ar) { EXPECT_ANY_THROW(pointers.Serialize(ar)); }).size(), 0u);
}

}  // namespace
}  // namespace quarrix
