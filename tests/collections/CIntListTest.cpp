#include <quarrix/collections/CIntList.h>

#include <gtest/gtest.h>

#include <vector>

namespace quarrix {
namespace {

TEST(CIntListTest, AddFollowsTheFlagPolicy) {
  const struct {
    const char* name;
    std::vector<int> before;
    int value;
    int flags;
    std::vector<int> after;
  } rows[] = {
      {"ascending, behind equal values", {1, 5, 9}, 5, 2, {1, 5, 5, 9}},
      {"unique ascending, duplicate", {1, 5, 9}, 5, 3, {1, 5, 9}},
      {"descending", {9, 5, 1}, 4, 4, {9, 5, 4, 1}},
      {"no flags: tail", {3, 1}, 2, 0, {3, 1, 2}},
      {"unique alone scans all, then tail", {3, 1}, 2, 1, {3, 1, 2}},
      {"unique alone, duplicate at the end", {3, 1}, 1, 1, {3, 1}},
      {"ascending, new largest", {1, 2}, 7, 2, {1, 2, 7}},
      {"ascending, new smallest", {1, 2}, 0, 2, {0, 1, 2}},
      {"unique descending, duplicate", {9, 5, 1}, 5, 5, {9, 5, 1}},
      {"unique ascending misses a duplicate past the insertion point", {5, 1}, 1, 3, {1, 5, 1}},
      {"empty list", {}, 4, 2, {4}},
      {"other bits are ignored", {2}, 1, 8, {2, 1}},
  };
  for (const auto& row : rows) {
    CIntList list;
    for (int v : row.before) list.AddTail(v);
    list.Add(row.value, row.flags);
    EXPECT_EQ(std::vector<int>(list.begin(), list.end()), row.after) << row.name;
  }
}

}  // namespace
}  // namespace quarrix
