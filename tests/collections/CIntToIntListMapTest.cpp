#include "framework/ArchiveTestSupport.h"

#include <quarrix/collections/CIntToIntListMap.h>

#include <gtest/gtest.h>

namespace quarrix {
namespace {

using test::Hex;
using test::ToHex;

TEST(CIntToIntListMapTest, PairsAreKeyThenListImage) {
  CIntToIntListMap map;
  map[5].AddTail(1);
  EXPECT_EQ(ToHex(test::Store(map)),
            "01 00 05 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 00 00 00 00 0A 00 00 00");
}

TEST(CIntToIntListMapTest, LoadedKeysMapToEmptyLists) {
  CIntToIntListMap map;
  map[5].AddTail(1);
  map[6].AddTail(2);
  const test::Bytes record = test::Cat({Hex("01 00 05 00 00 00"), test::Bytes(28, 0xEE)});
  EXPECT_EQ(test::Load(map, record), 0u);
  EXPECT_EQ(map.GetCount(), 2);
  EXPECT_TRUE(map[5].IsEmpty());  // overwritten by the loaded (empty) list
  EXPECT_EQ(map[6].GetHead(), 2);  // not in the record: kept
}

TEST(CIntToIntListMapTest, CopiesHoldTheirOwnLists) {
  CIntToIntListMap map;
  map[1].AddTail(10);
  map[2].AddTail(20);
  const CIntToIntListMap copy(map);
  CIntToIntListMap assigned;
  assigned[3].AddTail(30);
  assigned = map;
  map[1].AddTail(11);
  EXPECT_EQ(copy.GetCount(), 2);
  EXPECT_EQ(assigned.GetCount(), 2);
  EXPECT_EQ(assigned.PLookup(3), nullptr);
  ASSERT_NE(copy.PLookup(1), nullptr);
  EXPECT_EQ(copy.PLookup(1)->value.GetCount(), 1);
}

}  // namespace
}  // namespace quarrix
