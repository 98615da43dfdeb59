#include "framework/ArchiveTestSupport.h"

#include <quarrix/framework/CMap.h>

#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <vector>

namespace quarrix {
namespace {

using IntMap = CMap<int, int, int, int>;

// The keys in iteration order, by GetNextAssoc, checked against PGetNextAssoc and range-based for.
std::vector<int> KeysInOrder(const IntMap& map) {
  std::vector<int> keys, viaPairs, viaRange;
  for (POSITION pos = map.GetStartPosition(); pos;) {
    int key, value;
    map.GetNextAssoc(pos, key, value);
    keys.push_back(key);
  }
  for (const IntMap::CPair* p = map.PGetFirstAssoc(); p; p = map.PGetNextAssoc(p)) viaPairs.push_back(p->key);
  for (const auto& pair : map) viaRange.push_back(pair.key);
  EXPECT_EQ(viaPairs, keys);
  EXPECT_EQ(viaRange, keys);
  return keys;
}

TEST(CMapTest, IntegerKeysHashAsTheWindowsLibraryDoes) {
  // 16807 k mod (2^31 - 1), for keys taken as 32-bit longs.
  const struct {
    int key;
    UINT hash;
  } rows[] = {{0, 0},          {1, 16807},     {2, 33614},           {127772, 2147464004}, {127773, 2147480811},
              {INT_MAX, 0},    {-1, 2147466840}, {INT_MIN, 2147466840}};
  for (const auto& row : rows) EXPECT_EQ(HashKey(row.key), row.hash) << row.key;
  EXPECT_EQ(HashKey(0xFFFFFFFFu), HashKey(-1));  // unsigned keys wrap to 32-bit longs first
  EXPECT_EQ(HashKey(CString(u"beam")), HashKey(u"beam"));
}

TEST(CMapTest, PairsComeInBucketOrderNewestFirstWithinABucket) {
  IntMap map;
  EXPECT_EQ(map.GetHashTableSize(), 17u);
  map[1] = 10;  // 16807: bucket 11
  map[0] = 20;  // bucket 0
  map[17] = 30;  // 285719: bucket 0 too, ahead of 0
  EXPECT_EQ(KeysInOrder(map), (std::vector<int>{17, 0, 1}));
  EXPECT_EQ(test::ToHex(test::Store(map)),
            "03 00 11 00 00 00 1E 00 00 00 00 00 00 00 14 00 00 00 01 00 00 00 0A 00 00 00");

  IntMap seven;
  seven.InitHashTable(7);
  for (int key : {1, 2, 3}) seven[key] = key;
  EXPECT_EQ(KeysInOrder(seven), (std::vector<int>{3, 2, 1}));  // 16807 k is a multiple of 7: one chain
  EXPECT_TRUE(test::ThrowsInvalidArg([&] { seven.InitHashTable(11); }, u"InitHashTable: the map is not empty"));
  seven.RemoveAll();
  EXPECT_EQ(seven.GetHashTableSize(), 7u);  // RemoveAll keeps the size
  EXPECT_TRUE(test::ThrowsInvalidArg([&] { seven.InitHashTable(0); },
                                     u"InitHashTable: a table needs at least one bucket"));
}

TEST(CMapTest, LookupInsertAndRemoveAgreeWithAStandardMap) {
  IntMap map;
  int value = -1;
  EXPECT_FALSE(map.Lookup(3, value));
  EXPECT_EQ(value, -1);
  EXPECT_EQ(map[3], 0);  // operator[] inserts a zero
  map.PLookup(3)->value = 33;
  EXPECT_TRUE(map.Lookup(3, value) && value == 33);
  EXPECT_TRUE(map.RemoveKey(3));
  EXPECT_EQ(map.GetStartPosition(), nullptr);
  POSITION none = nullptr;
  EXPECT_TRUE(test::ThrowsInvalidArg([&] { map.GetNextAssoc(none, value, value); }, u"GetNextAssoc: null POSITION"));

  std::map<int, int> expected;
  for (int i = 0; i < 20000; ++i) {
    const int key = (i * 7919) % 3001 - 1500;
    if (i % 3 == 2) {
      EXPECT_EQ(map.RemoveKey(key) != FALSE, expected.erase(key) == 1);
    } else {
      map.SetAt(key, i);
      expected[key] = i;
    }
  }
  std::map<int, int> actual;
  for (const auto& pair : map) actual[pair.key] = pair.value;
  EXPECT_EQ(actual, expected);
  for (const auto& [key, v] : expected) EXPECT_TRUE(map.Lookup(key, value) && value == v) << key;
  map.AssertValid();
}

TEST(CMapTest, StringKeysLookUpAndArchiveByText) {
  CMap<CString, const char16_t*, double, double> units;
  units[u"mm"] = 0.001;
  units[u"m"] = 1;
  double factor = 0;
  EXPECT_TRUE(units.Lookup(CString(u"mm"), factor) && factor == 0.001);
  EXPECT_FALSE(units.Lookup(u"cm", factor));
  CMap<CString, const char16_t*, double, double> back;
  EXPECT_EQ(test::Load(back, test::Store(units)), 0u);  // keys in the string form, values as doubles
  EXPECT_TRUE(back.Lookup(u"m", factor) && factor == 1.0 && back.GetCount() == 2);
}

}  // namespace
}  // namespace quarrix
