#include <quarrix/collections/CIntArray.h>
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/CObject.h>
#include <quarrix/framework/Trace.h>
#include <quarrix/framework/TypedCollections.h>

#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <vector>

namespace quarrix {
namespace {

TEST(CObjectTest, RunTimeClassesNameTheClassAndItsBase) {
  CIntArray ints;
  CStringList strings;
  const CObject& asObject = ints;
  EXPECT_STREQ(asObject.GetRuntimeClass()->m_lpszClassName, "CIntArray");
  EXPECT_STREQ(strings.GetRuntimeClass()->m_lpszClassName, "CStringList");
  EXPECT_STREQ(CArray<double>().GetRuntimeClass()->m_lpszClassName, "CArray");
  EXPECT_TRUE(ints.IsKindOf(QUARRIX_RUNTIME_CLASS(CIntArray)) && ints.IsKindOf(QUARRIX_RUNTIME_CLASS(CObject)));
  EXPECT_FALSE(ints.IsKindOf(QUARRIX_RUNTIME_CLASS(CStringList)));
  EXPECT_THROW(ints.IsKindOf(nullptr), CInvalidArgException);
}

TEST(CObjectTest, DumpsToAStreamOrToTheTraceHandler) {
  CIntArray ints;
  ints.Add(7);
  ints.Add(-1);
  std::ostringstream full;
  full << ints;  // depth 1: with the elements
  EXPECT_TRUE(std::regex_match(full.str(), std::regex("a CIntArray at \\$[0-9A-F]+\n"
                                                      "with 2 elements\n\t\\[0\\] = 7\n\t\\[1\\] = -1\n")))
      << full.str();
  CMap<int, int, CString, const CString&> names;
  names[3] = u"three";
  std::ostringstream summary;
  CDumpContext(&summary) << names;  // depth 0: no elements
  EXPECT_TRUE(std::regex_match(summary.str(), std::regex("a CMap at \\$[0-9A-F]+\nwith 1 elements\n"))) << summary.str();

  std::vector<CString> lines;
  auto previous = SetTraceHandler([&](const CString& text) { lines.push_back(text); });
  CDumpContext(nullptr) << "value " << 2.5 << "\n" << u"unfinished";  // the last line goes at destruction
  SetTraceHandler(std::move(previous));
  EXPECT_EQ(lines, (std::vector<CString>{u"value 2.5\n", u"unfinished"}));
}

}  // namespace
}  // namespace quarrix
