#include "framework/ArchiveTestSupport.h"

#include <quarrix/collections/CMapIntToInt.h>

#include <gtest/gtest.h>

#include <map>

namespace quarrix {
namespace {

using test::Hex;
using test::ToHex;

std::map<int, int> Pairs(const CMapIntToInt& map) {
  std::map<int, int> pairs;
  for (const auto& pair : map) pairs[pair.key] = pair.value;
  return pairs;
}

TEST(CMapIntToIntTest, TwoKeysStoreInHashOrder) {
  // Key 0 hashes to 0 (bucket 0), key 1 to 16807 (bucket 11): the same bytes whatever the insertion order.
  const char* expected = "02 00 00 00 00 00 0A 00 00 00 01 00 00 00 0B 00 00 00";
  CMapIntToInt forward;
  forward[0] = 10;
  forward[1] = 11;
  CMapIntToInt backward;
  backward[1] = 11;
  backward[0] = 10;
  EXPECT_EQ(ToHex(test::Store(forward)), expected);
  EXPECT_EQ(ToHex(test::Store(backward)), expected);
}

TEST(CMapIntToIntTest, MergeKeepsOrOverwrites) {
  CMapIntToInt other;
  other[1] = 10;
  for (int keep : {1, 0}) {
    CMapIntToInt map;
    map[1] = 1;
    map[2] = 2;
    map.Merge(other, keep);
    EXPECT_EQ(Pairs(map), keep ? (std::map<int, int>{{1, 1}, {2, 2}}) : (std::map<int, int>{{1, 10}, {2, 2}}))
        << keep;
  }
  CMapIntToInt self;
  self[4] = 4;
  self.Merge(self, 0);
  EXPECT_EQ(Pairs(self), (std::map<int, int>{{4, 4}}));
}

TEST(CMapIntToIntTest, CopiesReverseTheChainsOfSharedBuckets) {
  // 0 and 17 share bucket 0; the source's chain is 17, 0 (newest first). The copy inserts in that order,
  // so its own chain, and its archive, come out 0, 17. The Windows library copies the same way.
  CMapIntToInt map;
  map[0] = 1;
  map[17] = 2;
  const CMapIntToInt copy(map);
  EXPECT_EQ(ToHex(test::Store(map)), "02 00 11 00 00 00 02 00 00 00 00 00 00 00 01 00 00 00");
  EXPECT_EQ(ToHex(test::Store(copy)), "02 00 00 00 00 00 01 00 00 00 11 00 00 00 02 00 00 00");
  CMapIntToInt assigned;
  assigned[99] = 99;
  assigned = map;
  EXPECT_EQ(Pairs(assigned), Pairs(map));
  assigned = assigned;
  EXPECT_EQ(assigned.GetCount(), 2);
}

TEST(CMapIntToIntTest, LoadingOverwritesWithoutEmptying) {
  CMapIntToInt map;
  map[0] = 5;
  map[3] = 3;
  EXPECT_EQ(test::Load(map, Hex("02 00 00 00 00 00 0A 00 00 00 01 00 00 00 0B 00 00 00")), 0u);
  EXPECT_EQ(Pairs(map), (std::map<int, int>{{0, 10}, {1, 11}, {3, 3}}));
}

}  // namespace
}  // namespace quarrix
