#include "framework/ArchiveTestSupport.h"

#include <quarrix/framework/CArray.h>
#include <quarrix/framework/TypedCollections.h>

#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <vector>

namespace quarrix {
namespace {

using test::Hex;
using test::ThrowsInvalidArg;
using test::ToHex;

template <class TYPE, class ARG>
std::vector<TYPE> Elements(const CArray<TYPE, ARG>& a) {
  return std::vector<TYPE>(a.begin(), a.end());
}

void Fill(CArray<int, int&>& a, std::initializer_list<int> values) {
  for (int v : values) a.Add(v);
}

TEST(CArrayTest, BadIndexesAndCountsThrowWithTheBounds) {
  CArray<int, int&> three;
  Fill(three, {1, 2, 3});
  CArray<int, int&> empty;
  struct Row {
    const char* name;
    std::function<void()> call;
    const char16_t* detail;
  };
  const Row rows[] = {
      {"GetAt -1", [&] { three.GetAt(-1); }, u"GetAt: index -1 is outside 0..2"},
      {"GetAt size", [&] { three.GetAt(3); }, u"GetAt: index 3 is outside 0..2"},
      {"SetAt", [&] { three.SetAt(7, 0); }, u"SetAt: index 7 is outside 0..2"},
      {"operator[]", [&] { three[3] = 0; }, u"operator[]: index 3 is outside 0..2"},
      {"ElementAt", [&] { three.ElementAt(-5); }, u"ElementAt: index -5 is outside 0..2"},
      {"empty", [&] { empty.GetAt(0); }, u"GetAt: index 0 is outside an empty collection"},
      {"SetAtGrow -1", [&] { three.SetAtGrow(-1, 0); }, u"SetAtGrow: index -1 is outside 0..2"},
      {"InsertAt -1", [&] { three.InsertAt(-1, 0); }, u"InsertAt: index -1 is outside 0..2"},
      {"InsertAt count 0", [&] { three.InsertAt(0, 0, 0); }, u"InsertAt: count below 1"},
      {"InsertAt null", [&] { three.InsertAt(0, nullptr); }, u"InsertAt: null array"},
      {"RemoveAt size", [&] { three.RemoveAt(3); }, u"RemoveAt: index 3 is outside 0..2"},
      {"RemoveAt count", [&] { three.RemoveAt(2, 2); }, u"RemoveAt: count beyond the end"},
      {"RemoveAt -1 count", [&] { three.RemoveAt(0, -1); }, u"RemoveAt: count beyond the end"},
      {"SetSize -1", [&] { three.SetSize(-1); }, u"SetSize: negative size"},
      {"Append self", [&] { three.Append(three); }, u"Append: an array cannot be appended to itself"},
  };
  for (const Row& row : rows) EXPECT_TRUE(ThrowsInvalidArg(row.call, row.detail)) << row.name;
  EXPECT_EQ(Elements(three), (std::vector<int>{1, 2, 3}));  // nothing above changed it
  three.RemoveAt(3, 0);                                    // an empty range at the end is fine
}

TEST(CArrayTest, SizeGrowthInsertionAndRemoval) {
  CArray<int, int&> a;
  EXPECT_EQ(a.GetData(), nullptr);
  EXPECT_EQ(a.GetUpperBound(), -1);
  a.SetSize(3);
  EXPECT_EQ(Elements(a), (std::vector<int>{0, 0, 0}));  // new elements are zero
  a[1] = 5;
  a.SetAtGrow(5, 9);
  EXPECT_EQ(Elements(a), (std::vector<int>{0, 5, 0, 0, 0, 9}));
  a.InsertAt(1, 7, 2);
  EXPECT_EQ(Elements(a), (std::vector<int>{0, 7, 7, 5, 0, 0, 0, 9}));
  a.InsertAt(10, 4);  // beyond the end: grows, the gap holds zeros
  EXPECT_EQ(a.GetSize(), 11);
  EXPECT_EQ(a[9], 0);
  EXPECT_EQ(a[10], 4);
  a.RemoveAt(0, 4);
  EXPECT_EQ(Elements(a), (std::vector<int>{0, 0, 0, 9, 0, 0, 4}));
  a.SetSize(2);
  a.FreeExtra();
  EXPECT_EQ(Elements(a), (std::vector<int>{0, 0}));
  a.RemoveAll();
  EXPECT_TRUE(a.IsEmpty());
  EXPECT_EQ(a.GetData(), nullptr);

  // Repeated Add with a tiny grow-by stays linear (this would take minutes if each Add reallocated).
  CArray<int, int> big;
  big.SetSize(0, 1);
  for (int i = 0; i < 2'000'000; ++i) big.Add(i);
  EXPECT_EQ(std::accumulate(big.begin(), big.end(), 0LL), 1'999'999LL * 2'000'000 / 2);
}

TEST(CArrayTest, AddingAnElementOfTheArrayItselfSurvivesReallocation) {
  CArray<CString, const CString&> a;
  a.Add(CString(u"first element, long enough to live on the heap"));
  for (int i = 0; i < 40; ++i) a.Add(a[0]);  // each Add may move the storage a[0] lives in
  for (const CString& s : a) EXPECT_EQ(s, a[0]);
  a.InsertAt(0, a[5], 3);
  a.InsertAt(2, &a);  // an array inserted into itself
  EXPECT_EQ(a.GetSize(), 2 * 44);
  EXPECT_EQ(a[87], u"first element, long enough to live on the heap");
}

TEST(CArrayTest, CopyAppendAndArrayInsertion) {
  CArray<int, int&> a;
  CArray<int, int&> b;
  Fill(a, {1, 2});
  Fill(b, {7, 8, 9});
  EXPECT_EQ(a.Append(b), 2);
  EXPECT_EQ(Elements(a), (std::vector<int>{1, 2, 7, 8, 9}));
  a.InsertAt(1, &b);
  EXPECT_EQ(Elements(a), (std::vector<int>{1, 7, 8, 9, 2, 7, 8, 9}));
  b.Copy(a);
  EXPECT_EQ(Elements(b), Elements(a));
  b.Copy(b);
  EXPECT_EQ(b.GetSize(), 8);
}

TEST(CArrayTest, ArchiveLayoutIsCountThenElements) {
  CArray<int, int&> ints;
  Fill(ints, {7, -1});
  EXPECT_EQ(ToHex(test::Store(ints)), "02 00 07 00 00 00 FF FF FF FF");

  CStringArray strings;
  strings.Add(u"a");
  strings.Add(CString());
  EXPECT_EQ(ToHex(test::Store(strings)), "02 00 FF FE FF 01 61 00 FF FE FF 00");

  CByteArray bytes;
  bytes.Add(1);
  bytes.Add(255);
  EXPECT_EQ(ToHex(test::Store(bytes)), "02 00 01 FF");

  CArray<double, double> doubles;
  doubles.Add(0.5);
  EXPECT_EQ(ToHex(test::Store(doubles)), "01 00 00 00 00 00 00 00 E0 3F");
}

TEST(CArrayTest, LoadingReplacesTheContents) {
  CArray<int, int&> ints;
  Fill(ints, {5, 5, 5, 5});
  EXPECT_EQ(test::Load(ints, Hex("02 00 07 00 00 00 FF FF FF FF")), 0u);
  EXPECT_EQ(Elements(ints), (std::vector<int>{7, -1}));

  CStringArray strings;
  strings.Add(u"old");
  EXPECT_EQ(test::Load(strings, Hex("02 00 FF FE FF 01 61 00 01 62")), 0u);  // wide "a", 8-bit "b"
  ASSERT_EQ(strings.GetSize(), 2);
  EXPECT_EQ(strings[0], u"a");
  EXPECT_EQ(strings[1], u"b");
}

TEST(CArrayTest, DamagedRecordsFailAndChangeNothing) {
  CArray<int, int&> ints;
  Fill(ints, {1});
  EXPECT_TRUE(test::ThrowsArchiveError([&] { test::Load(ints, Hex("05 00 01 00 00 00")); },
                                       CArchiveException::endOfFile,
                                       u"element count 5 at offset 2 exceeds the 4 bytes left"));
  CStringArray strings;
  strings.Add(u"kept");
  // Two strings announced, the second one cut short.
  EXPECT_TRUE(test::ThrowsArchiveError([&] { test::Load(strings, Hex("02 00 01 61 05 62")); },
                                       CArchiveException::endOfFile));
  EXPECT_EQ(Elements(ints), std::vector<int>{1});
  ASSERT_EQ(strings.GetSize(), 1);
  EXPECT_EQ(strings[0], u"kept");
}

TEST(CArrayTest, PointerArraysCannotBeArchived) {
  CPtrArray pointers;
  pointers.Add(&pointers);
  CMemFile file;
  CArchive ar(&file, CArchive::store);
  EXPECT_THROW(pointers.Serialize(ar), CNotSupportedException);
  ar.Close();
  EXPECT_EQ(file.GetLength(), 0u);  // nothing was written before the refusal
}

}  // namespace
}  // namespace quarrix
