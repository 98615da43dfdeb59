// Copies of the integer collections are element by element and independent of their source; the maps'
// copies follow the source's iteration order, and Merge keeps or overwrites.
#include "foundation/SerializeTestSupport.h"

#include <quarrix/collections/CIntArray.h>
#include <quarrix/collections/CIntList.h>
#include <quarrix/collections/CIntListArray.h>
#include <quarrix/collections/CIntToIntListMap.h>
#include <quarrix/collections/CMapIntToDouble.h>
#include <quarrix/collections/CMapIntToInt.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

namespace quarrix {
namespace {

// Copy-constructs and assigns (over an object holding something else) from a source, changes the source,
// then compares what each stores: both copies must store what the source stored before the change.
template <class T>
void ExpectIndependentCopies(const char* name, const std::function<void(T&)>& fill,
                             const std::function<void(T&)>& other, const std::function<void(T&)>& change) {
  T source;
  fill(source);
  const test::Bytes before = test::Store(source);
  const T copy(source);
  T assigned;
  other(assigned);
  assigned = source;
  T& self = assigned;
  assigned = self;  // assigning itself changes nothing
  change(source);
  EXPECT_EQ(test::ToHex(test::Store(copy)), test::ToHex(before)) << name;
  EXPECT_EQ(test::ToHex(test::Store(assigned)), test::ToHex(before)) << name;
}

TEST(CopyAndMergeTest, CopiesAreElementByElementAndIndependent) {
  ExpectIndependentCopies<CIntArray>(
      "CIntArray", [](CIntArray& a) { a.Add(1), a.Add(2); }, [](CIntArray& a) { a.SetSize(5); },
      [](CIntArray& a) { a[0] = 100; });
  ExpectIndependentCopies<CIntList>(
      "CIntList", [](CIntList& l) { l.AddTail(3), l.AddTail(1); }, [](CIntList& l) { l.AddTail(9); },
      [](CIntList& l) { l.RemoveAll(); });
  ExpectIndependentCopies<CIntListArray>(
      "CIntListArray", [](CIntListArray& a) { a.SetSize(2), a[1].AddTail(5); }, [](CIntListArray& a) { a.SetSize(4); },
      [](CIntListArray& a) { a[1].AddTail(6); });
  ExpectIndependentCopies<CIntToIntListMap>(
      "CIntToIntListMap", [](CIntToIntListMap& m) { m[1].AddTail(10), m[2].AddTail(20); },
      [](CIntToIntListMap& m) { m[3].AddTail(30); }, [](CIntToIntListMap& m) { m[1].AddTail(11); });
  ExpectIndependentCopies<CMapIntToInt>(
      "CMapIntToInt", [](CMapIntToInt& m) { m[1] = 10, m[2] = 20; }, [](CMapIntToInt& m) { m[99] = 99; },
      [](CMapIntToInt& m) { m[1] = 0; });
  ExpectIndependentCopies<CMapIntToDouble>(
      "CMapIntToDouble", [](CMapIntToDouble& m) { m[-4] = -0.25; }, [](CMapIntToDouble& m) { m[7] = 7; },
      [](CMapIntToDouble& m) { m.RemoveAll(); });
}

TEST(CopyAndMergeTest, MapCopiesReverseTheChainsOfSharedBuckets) {
  // 0 and 17 share bucket 0, whose chain in the source is 17, 0 (newest first). The copy inserts them in
  // that order, so its own chain, and its archive, come out 0, 17, as in the Windows library.
  CMapIntToInt map;
  map[0] = 1;
  map[17] = 2;
  const CMapIntToInt copy(map);
  EXPECT_EQ(test::ToHex(test::Store(map)), "02 00 11 00 00 00 02 00 00 00 00 00 00 00 01 00 00 00");
  EXPECT_EQ(test::ToHex(test::Store(copy)), "02 00 00 00 00 00 01 00 00 00 11 00 00 00 02 00 00 00");
}

TEST(CopyAndMergeTest, MergeKeepsOrOverwrites) {
  CMapIntToInt other;
  other[1] = 10;
  for (int keep : {1, 0}) {
    CMapIntToInt map;
    map[1] = 1;
    map[2] = 2;
    map.Merge(other, keep);
    std::map<int, int> pairs;
    for (const auto& pair : map) pairs[pair.key] = pair.value;
    EXPECT_EQ(pairs, (std::map<int, int>{{1, keep ? 1 : 10}, {2, 2}})) << keep;
  }
}

}  // namespace
}  // namespace quarrix
