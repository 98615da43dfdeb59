// Every proper prefix of a valid record must fail with CArchiveException(endOfFile) and leave the object
// being loaded exactly as it was (compared through what it stores).
#include "framework/ArchiveTestSupport.h"

#include <quarrix/collections/CIntArray.h>
#include <quarrix/collections/CIntList.h>
#include <quarrix/collections/CIntListArray.h>
#include <quarrix/collections/CIntToIntListMap.h>
#include <quarrix/collections/CMapIntToDouble.h>
#include <quarrix/collections/CMapIntToInt.h>
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/TypedCollections.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace quarrix {
namespace {

using test::Bytes;

struct TruncationRow {
  std::string name;
  Bytes record;
  // Loads the bytes into an object in its "before" state; the result says whether it failed as required.
  std::function<::testing::AssertionResult(const Bytes&)> loadPrefix;
};

// A row for class T: `sample` fills the object whose record is cut, `before` the one that loads the cuts.
template <class T>
TruncationRow Row(std::string name, std::function<void(T&)> sample, std::function<void(T&)> before) {
  T source;
  sample(source);
  TruncationRow row{std::move(name), test::Store(source), {}};
  row.loadPrefix = [before](const Bytes& prefix) {
    T target;
    before(target);
    const Bytes unchanged = test::Store(target);
    auto failed = test::ThrowsArchiveError([&] { test::Load(target, prefix); }, CArchiveException::endOfFile);
    if (!failed) return failed;
    if (test::Store(target) != unchanged) return ::testing::AssertionFailure() << "the object changed";
    return ::testing::AssertionSuccess();
  };
  return row;
}

// Strings are not CObjects: a small holder gives them the same shape.
struct StringHolder {
  CString text;
  void Serialize(CArchive& ar) { ar.IsStoring() ? (void)(ar << text) : (void)(ar >> text); }
};

std::vector<TruncationRow> Rows() {
  std::vector<TruncationRow> rows;
  rows.push_back(Row<CIntArray>(
      "CIntArray", [](CIntArray& a) { for (int v : {7, -1, 3}) a.Add(v); }, [](CIntArray& a) { a.Add(42); }));
  rows.push_back(Row<CIntList>(
      "CIntList", [](CIntList& l) { for (int v : {7, -1, 3}) l.AddTail(v); }, [](CIntList& l) { l.AddTail(42); }));
  rows.push_back(Row<CIntListArray>(
      "CIntListArray", [](CIntListArray& a) { a.SetSize(2); a[0].AddTail(1); },
      [](CIntListArray& a) { a.SetSize(1); a[0].AddTail(42); }));
  rows.push_back(Row<CIntToIntListMap>(
      "CIntToIntListMap", [](CIntToIntListMap& m) { m[1].AddTail(1); m[2]; },
      [](CIntToIntListMap& m) { m[1].AddTail(42); }));
  rows.push_back(Row<CMapIntToInt>(
      "CMapIntToInt", [](CMapIntToInt& m) { m[0] = 1; m[17] = 2; m[1] = 3; }, [](CMapIntToInt& m) { m[0] = 42; }));
  rows.push_back(Row<CMapIntToDouble>(
      "CMapIntToDouble", [](CMapIntToDouble& m) { m[5] = 0.5; m[6] = 1e300; }, [](CMapIntToDouble& m) { m[5] = 42; }));
  rows.push_back(Row<CStringArray>(
      "CStringArray", [](CStringArray& a) { a.Add(u"beam"); a.Add(CString()); a.Add(CString(u'x', 300)); },
      [](CStringArray& a) { a.Add(u"kept"); }));
  rows.push_back(Row<CStringList>(
      "CStringList", [](CStringList& l) { l.AddTail(u"a"); l.AddTail(u"bc"); }, [](CStringList& l) { l.AddTail(u"kept"); }));
  using StringMap = CMap<CString, const CString&, int, int>;
  rows.push_back(Row<StringMap>(
      "CMap<CString, int>", [](StringMap& m) { m[u"one"] = 1; m[u"two"] = 2; }, [](StringMap& m) { m[u"one"] = 42; }));
  rows.push_back(Row<StringHolder>(
      "CString", [](StringHolder& h) { h.text = CString(u'y', 0x10000); }, [](StringHolder& h) { h.text = u"kept"; }));
  return rows;
}

TEST(ArchiveTruncationTest, EveryPrefixFailsWithEndOfFileAndChangesNothing) {
  for (const TruncationRow& row : Rows()) {
    ASSERT_GT(row.record.size(), 1u) << row.name;
    // Long records: every prefix near both ends and a stride through the middle.
    for (std::size_t n = 0; n < row.record.size(); n += (n < 64 || row.record.size() - n < 64) ? 1 : 997) {
      const Bytes prefix(row.record.begin(), row.record.begin() + static_cast<std::ptrdiff_t>(n));
      EXPECT_TRUE(row.loadPrefix(prefix)) << row.name << ", first " << n << " of " << row.record.size() << " bytes";
    }
  }
}

}  // namespace
}  // namespace quarrix
