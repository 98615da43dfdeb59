#include "framework/ArchiveTestSupport.h"

#include <quarrix/collections/CMapIntToDouble.h>

#include <gtest/gtest.h>

namespace quarrix {
namespace {

using test::Hex;
using test::ToHex;

TEST(CMapIntToDoubleTest, PairsAreIntThenDouble) {
  CMapIntToDouble map;
  map[1] = 0.5;
  EXPECT_EQ(ToHex(test::Store(map)), "01 00 01 00 00 00 00 00 00 00 00 00 E0 3F");
  CMapIntToDouble back;
  back[2] = 2.0;
  EXPECT_EQ(test::Load(back, test::Store(map)), 0u);
  double value = 0;
  EXPECT_TRUE(back.Lookup(1, value));
  EXPECT_EQ(value, 0.5);
  EXPECT_EQ(back.GetCount(), 2);
}

TEST(CMapIntToDoubleTest, AssignmentReplacesEveryPair) {
  CMapIntToDouble map;
  map[1] = 1.5;
  map[-4] = -0.25;
  CMapIntToDouble assigned;
  assigned[7] = 7;
  assigned = map;
  const CMapIntToDouble copy(map);
  double value = 0;
  EXPECT_EQ(assigned.GetCount(), 2);
  EXPECT_FALSE(assigned.Lookup(7, value));
  EXPECT_TRUE(copy.Lookup(-4, value));
  EXPECT_EQ(value, -0.25);
}

}  // namespace
}  // namespace quarrix
