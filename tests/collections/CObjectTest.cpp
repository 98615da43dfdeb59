#include <quarrix/collections/CIntArray.h>
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/CObject.h>
#include <quarrix/framework/Trace.h>
#include <quarrix/framework/TypedCollections.h>

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <string>
#include <vector>

namespace quarrix {
namespace {

// The dump with each "$<hex address>" written as "$@", so that it can be compared.
std::string WithoutAddresses(const std::string& dump) {
  std::string out;
  for (std::size_t i = 0; i < dump.size(); ++i) {
    out += dump[i];
    if (dump[i] != '$') continue;
    out += '@';
    while (i + 1 < dump.size() && std::isxdigit(static_cast<unsigned char>(dump[i + 1]))) ++i;
  }
  return out;
}

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
  EXPECT_EQ(WithoutAddresses(full.str()), "a CIntArray at $@\nwith 2 elements\n\t[0] = 7\n\t[1] = -1\n");
  CMap<int, int, CString, const CString&> names;
  names[3] = u"three";
  std::ostringstream summary;
  CDumpContext(&summary) << names;  // depth 0: no elements
  EXPECT_EQ(WithoutAddresses(summary.str()), "a CMap at $@\nwith 1 elements\n");

  std::vector<CString> lines;
  auto previous = SetTraceHandler([&](const CString& text) { lines.push_back(text); });
  CDumpContext(nullptr) << "value " << 2.5 << "\n" << u"unfinished";  // the last line goes at destruction
  SetTraceHandler(std::move(previous));
  EXPECT_EQ(lines, (std::vector<CString>{u"value 2.5\n", u"unfinished"}));
}

}  // namespace
}  // namespace quarrix
