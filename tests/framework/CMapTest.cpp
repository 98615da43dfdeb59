#include "framework/ArchiveTestSupport.h"

#include <quarrix/framework/CMap.h>

#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <vector>

namespace quarrix {
namespace {

using test::Hex;
using test::ToHex;

using IntMap = CMap<int, int, int, int>;

std::vector<int> KeysInOrder(const IntMap& map) {
  std::vector<int> keys;
  for (POSITION pos = map.GetStartPosition(); pos;) {
    int key, value;
    map.GetNextAssoc(pos, key, value);
    keys.push_back(key);
  }
  return keys;
}

TEST(CMapTest, IntegerKeysHashAsTheWindowsLibraryDoes) {
  struct Row {
    long long key;
    UINT hash;
  };
  // 16807 k mod (2^31 - 1), the Park-Miller step, for keys taken as 32-bit longs.
  const Row rows[] = {
      {0, 0},          {1, 16807},          {2, 33614},          {127772, 2147464004},
      {127773, 2147480811}, {INT_MAX, 0},   {-1, 2147466840},    {INT_MIN, 2147466840},
      {0xFFFFFFFFLL, 2147466840},  // an unsigned key wraps to -1 first
  };
  for (const Row& row : rows) {
    if (row.key > INT_MAX) {
      EXPECT_EQ(HashKey(static_cast<UINT>(row.key)), row.hash) << row.key;
    } else {
      EXPECT_EQ(HashKey(static_cast<int>(row.key)), row.hash) << row.key;
    }
  }
  EXPECT_EQ(HashKey(CString(u"beam")), HashKey(u"beam"));  // a CString key hashes as its text
}

TEST(CMapTest, PairsComeInBucketOrderNewestFirstWithinABucket) {
  IntMap map;
  EXPECT_EQ(map.GetHashTableSize(), 17u);
  // 1 hashes to 16807, bucket 11; 0 and 17 both fall into bucket 0.
  map[1] = 10;
  map[0] = 20;
  map[17] = 30;
  EXPECT_EQ(KeysInOrder(map), (std::vector<int>{17, 0, 1}));
  EXPECT_EQ(ToHex(test::Store(map)),
            "03 00 11 00 00 00 1E 00 00 00 00 00 00 00 14 00 00 00 01 00 00 00 0A 00 00 00");
  std::vector<int> viaPairs;
  for (const IntMap::CPair* p = map.PGetFirstAssoc(); p; p = map.PGetNextAssoc(p)) viaPairs.push_back(p->key);
  std::vector<int> viaRange;
  for (const auto& pair : map) viaRange.push_back(pair.key);
  EXPECT_EQ(viaPairs, KeysInOrder(map));
  EXPECT_EQ(viaRange, KeysInOrder(map));
}

TEST(CMapTest, TheTableSizeDecidesTheOrder) {
  IntMap map;
  map.InitHashTable(7);
  for (int key : {1, 2, 3}) map[key] = key;
  // 16807 k mod 7 is 0 for every k: one chain, newest first.
  EXPECT_EQ(KeysInOrder(map), (std::vector<int>{3, 2, 1}));
  EXPECT_TRUE(test::ThrowsInvalidArg([&] { map.InitHashTable(11); }, u"InitHashTable: the map is not empty"));
  map.RemoveAll();
  EXPECT_EQ(map.GetHashTableSize(), 7u);  // RemoveAll keeps the size
  EXPECT_TRUE(test::ThrowsInvalidArg([&] { map.InitHashTable(0); },
                                     u"InitHashTable: a table needs at least one bucket"));
  map.InitHashTable(1, FALSE);  // allocated at the first insertion
  map[5] = 1;
  EXPECT_EQ(map.GetCount(), 1);
}

TEST(CMapTest, LookupInsertAndRemove) {
  IntMap map;
  int value = -1;
  EXPECT_FALSE(map.Lookup(3, value));
  EXPECT_EQ(value, -1);
  EXPECT_FALSE(map.RemoveKey(3));
  EXPECT_EQ(map[3], 0);  // operator[] inserts a zero
  map.SetAt(3, 33);
  map.SetAt(4, 44);
  EXPECT_TRUE(map.Lookup(3, value));
  EXPECT_EQ(value, 33);
  ASSERT_NE(map.PLookup(4), nullptr);
  map.PLookup(4)->value = 45;
  EXPECT_EQ(map[4], 45);
  EXPECT_EQ(map.PLookup(5), nullptr);
  EXPECT_TRUE(map.RemoveKey(3));
  EXPECT_FALSE(map.RemoveKey(3));
  EXPECT_TRUE(map.RemoveKey(4));
  EXPECT_TRUE(map.IsEmpty());
  EXPECT_EQ(map.GetStartPosition(), nullptr);
  map[8] = 1;  // usable again after emptying
  EXPECT_EQ(KeysInOrder(map), std::vector<int>{8});
  POSITION none = nullptr;
  int key;
  EXPECT_TRUE(test::ThrowsInvalidArg([&] { map.GetNextAssoc(none, key, value); }, u"GetNextAssoc: null POSITION"));
}

TEST(CMapTest, ManyKeysAgreeWithAStandardMap) {
  // Inserts, overwrites and removals over a small table, checked against std::map.
  CMap<int, int, int, int> map;
  std::map<int, int> expected;
  for (int i = 0; i < 20000; ++i) {
    const int key = (i * 7919) % 3001 - 1500;
    if (i % 3 == 2) {
      EXPECT_EQ(map.RemoveKey(key) != FALSE, expected.erase(key) == 1);
    } else {
      map[key] = i;
      expected[key] = i;
    }
  }
  ASSERT_EQ(map.GetCount(), static_cast<INT_PTR>(expected.size()));
  for (const auto& [key, value] : expected) {
    int found = 0;
    ASSERT_TRUE(map.Lookup(key, found)) << key;
    EXPECT_EQ(found, value);
  }
  map.AssertValid();
}

TEST(CMapTest, StringKeysLookUpByText) {
  CMap<CString, const char16_t*, double, double> units;
  units[u"mm"] = 0.001;
  units[u"m"] = 1;
  double factor = 0;
  const CString key(u"mm");
  EXPECT_TRUE(units.Lookup(key, factor));
  EXPECT_EQ(factor, 0.001);
  EXPECT_FALSE(units.Lookup(u"cm", factor));
  EXPECT_EQ(test::Store(units).size(), 2u + (4 + 4 + 8) + (4 + 2 + 8));  // count, then text and double
  CMap<CString, const char16_t*, double, double> back;
  test::Load(back, test::Store(units));
  EXPECT_TRUE(back.Lookup(u"m", factor));
  EXPECT_EQ(factor, 1.0);
}

TEST(CMapTest, LoadingSetsPairsOverWhatIsThere) {
  IntMap map;
  map[1] = 100;
  map[2] = 200;
  EXPECT_EQ(test::Load(map, Hex("02 00 01 00 00 00 0B 00 00 00 05 00 00 00 37 00 00 00")), 0u);
  EXPECT_EQ(map.GetCount(), 3);
  EXPECT_EQ(map[1], 11);
  EXPECT_EQ(map[2], 200);
  EXPECT_EQ(map[5], 55);
  EXPECT_TRUE(test::ThrowsArchiveError([&] { test::Load(map, Hex("03 00 01 00 00 00 02 00 00 00")); },
                                       CArchiveException::endOfFile,
                                       u"pair count 3 at offset 2 exceeds the 8 bytes left"));
  EXPECT_EQ(map.GetCount(), 3);
}

}  // namespace
}  // namespace quarrix
