// The archive layouts of the integer collections: golden bytes for storing, what loading makes of a record
// (into objects that already hold something), the version check, and a truncation table.
#include "foundation/SerializeTestSupport.h"

#include <quarrix/collections/CIntArray.h>
#include <quarrix/collections/CIntList.h>
#include <quarrix/collections/CIntListArray.h>
#include <quarrix/collections/CIntToIntListMap.h>
#include <quarrix/collections/CMapIntToDouble.h>
#include <quarrix/collections/CMapIntToInt.h>
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/TypedCollections.h>

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>

namespace quarrix {
namespace {

using test::Bytes;
using test::Hex;
using test::ToHex;

// The 28-byte image written for a list of n elements: no pointers, the count, the block size 10.
std::string Image(int n) {
  return "00 00 00 00 00 00 00 00 00 00 00 00 0" + std::to_string(n) + " 00 00 00 00 00 00 00 00 00 00 00 0A 00 00 00";
}

// What an object stores after `fill`.
template <class T>
std::string Stored(const std::function<void(T&)>& fill) {
  T object;
  fill(object);
  return ToHex(test::Store(object));
}

// What an object stores after `before` and then loading `record` (all of which must be consumed).
template <class T>
std::string Reloaded(const std::function<void(T&)>& before, const Bytes& record) {
  T object;
  before(object);
  EXPECT_EQ(test::Load(object, record), 0u);
  return ToHex(test::Store(object));
}

TEST(ArchiveLayoutTest, StoredBytes) {
  const struct {
    const char* name;
    std::string bytes;
    std::string expected;
  } rows[] = {
      {"CIntArray empty", Stored<CIntArray>([](CIntArray&) {}), "01 00 00 00 00 00 00 00"},
      {"CIntArray {7, -1}", Stored<CIntArray>([](CIntArray& a) { a.Add(7), a.Add(-1); }),
       "01 00 00 00 02 00 00 00 07 00 00 00 FF FF FF FF"},
      {"CIntList empty", Stored<CIntList>([](CIntList&) {}), "00 00"},
      {"CIntList {-2}", Stored<CIntList>([](CIntList& l) { l.AddTail(-2); }), "01 00 FE FF FF FF"},
      {"CIntListArray", Stored<CIntListArray>([](CIntListArray& a) { a.SetSize(2), a[0].AddTail(1), a[0].AddTail(2); }),
       "02 00 " + Image(2) + " " + Image(0)},
      {"CIntToIntListMap", Stored<CIntToIntListMap>([](CIntToIntListMap& m) { m[5].AddTail(1); }),
       "01 00 05 00 00 00 " + Image(1)},
      // Key 0 hashes to 0 (bucket 0), key 1 to 16807 (bucket 11): this order whatever the insertion order.
      {"CMapIntToInt {1, 0}", Stored<CMapIntToInt>([](CMapIntToInt& m) { m[1] = 11, m[0] = 10; }),
       "02 00 00 00 00 00 0A 00 00 00 01 00 00 00 0B 00 00 00"},
      {"CMapIntToDouble", Stored<CMapIntToDouble>([](CMapIntToDouble& m) { m[1] = 0.5; }),
       "01 00 01 00 00 00 00 00 00 00 00 00 E0 3F"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.bytes, row.expected) << row.name;

  for (int count : {65534, 65535}) {  // the count primitive switches to its long form at 0xFFFF
    CIntList big;
    for (int i = 0; i < count; ++i) big.AddTail(i);
    const std::string bytes = ToHex(test::Store(big));
    EXPECT_EQ(bytes.substr(0, 17), count == 65534 ? "FE FF 00 00 00 00" : "FF FF FF FF 00 00") << count;
    EXPECT_EQ(bytes.size() + 1, 3 * ((count == 65534 ? 2u : 6u) + 4u * count)) << count;
  }
}

TEST(ArchiveLayoutTest, LoadedContents) {
  const auto ints = [](CIntArray& a) { a.Add(4), a.Add(5), a.Add(6); };
  const struct {
    const char* name;
    std::string result;
    std::string expected;
  } rows[] = {
      {"CIntArray replaces", Reloaded<CIntArray>(ints, Hex("01 00 00 00 01 00 00 00 09 00 00 00")),
       "01 00 00 00 01 00 00 00 09 00 00 00"},
      {"CIntArray version 0", Reloaded<CIntArray>(ints, Hex("00 00 00 00 01 00 00 00 09 00 00 00")),
       "01 00 00 00 01 00 00 00 09 00 00 00"},
      {"CIntArray version -1", Reloaded<CIntArray>(ints, Hex("FF FF FF FF 01 00 00 00 09 00 00 00")),
       "01 00 00 00 01 00 00 00 09 00 00 00"},
      {"CIntArray version INT_MIN", Reloaded<CIntArray>(ints, Hex("00 00 00 80 00 00 00 00")), "01 00 00 00 00 00 00 00"},
      {"CIntArray count -1", Reloaded<CIntArray>(ints, Hex("01 00 00 00 FF FF FF FF")), "01 00 00 00 00 00 00 00"},
      {"CIntList appends", Reloaded<CIntList>([](CIntList& l) { l.AddTail(1); }, Hex("02 00 02 00 00 00 03 00 00 00")),
       "03 00 01 00 00 00 02 00 00 00 03 00 00 00"},
      {"CIntListArray loads empty lists",
       Reloaded<CIntListArray>([](CIntListArray& a) { a.SetSize(3), a[0].AddTail(1); },
                               test::Cat({Hex("02 00"), Bytes(28, 0xCD), Bytes(28, 0x7F)})),
       "02 00 " + Image(0) + " " + Image(0)},
      {"CIntToIntListMap overwrites with an empty list",
       Reloaded<CIntToIntListMap>([](CIntToIntListMap& m) { m[5].AddTail(1), m[6].AddTail(2); },
                                  test::Cat({Hex("01 00 05 00 00 00"), Bytes(28, 0xEE)})),
       "02 00 05 00 00 00 " + Image(0) + " 06 00 00 00 " + Image(1)},
      {"CMapIntToInt sets over, keeps the rest",
       Reloaded<CMapIntToInt>([](CMapIntToInt& m) { m[0] = 5, m[3] = 3; },
                              Hex("02 00 00 00 00 00 0A 00 00 00 01 00 00 00 0B 00 00 00")),
       "03 00 00 00 00 00 0A 00 00 00 01 00 00 00 0B 00 00 00 03 00 00 00 03 00 00 00"},
      {"CMapIntToDouble sets over",
       Reloaded<CMapIntToDouble>([](CMapIntToDouble& m) { m[2] = 2; }, Hex("01 00 01 00 00 00 00 00 00 00 00 00 E0 3F")),
       "02 00 02 00 00 00 00 00 00 00 00 00 00 40 01 00 00 00 00 00 00 00 00 00 E0 3F"},
  };
  for (const auto& row : rows) EXPECT_EQ(row.result, row.expected) << row.name;
}

TEST(ArchiveLayoutTest, NewerVersionsAreRefusedBeforeAnyChange) {
  for (int version : {2, 100, INT_MAX}) {
    CIntArray a;
    a.Add(4);
    const Bytes record = test::StoreWith([&](CArchive& ar) { ar << version << 1 << 9; });
    EXPECT_TRUE(test::ThrowsSerializeError([&] { test::Load(a, record); }, eSerNewerVersionRequired,
                                           u"The file you open requires a newer program version."))
        << version;
    EXPECT_EQ(ToHex(test::Store(a)), "01 00 00 00 01 00 00 00 04 00 00 00") << version;
  }
  CIntArray a;
  EXPECT_TRUE(test::ThrowsArchiveError([&] { test::Load(a, Hex("01 00 00 00 FF FF FF 7F 01 00 00 00")); },
                                       CArchiveException::endOfFile,
                                       u"element count 2147483647 at offset 8 exceeds the 4 bytes left"));
}

// Every proper prefix of a valid record must fail with endOfFile and leave the object as it was (compared
// through what it stores). Strings, string lists and string maps come along as the variable-sized cases.
struct TruncationRow {
  std::string name;
  Bytes record;
  std::function<::testing::AssertionResult(const Bytes&)> loadPrefix;
};

template <class T>
TruncationRow Row(std::string name, std::function<void(T&)> sample, std::function<void(T&)> before) {
  T source;
  sample(source);
  return {std::move(name), test::Store(source), [before](const Bytes& prefix) {
            T target;
            before(target);
            const Bytes unchanged = test::Store(target);
            auto failed = test::ThrowsArchiveError([&] { test::Load(target, prefix); }, CArchiveException::endOfFile);
            if (failed && test::Store(target) != unchanged) return ::testing::AssertionFailure() << "the object changed";
            return failed;
          }};
}

struct StringHolder {
  CString text;
  void Serialize(CArchive& ar) { ar.IsStoring() ? (void)(ar << text) : (void)(ar >> text); }
};

TEST(ArchiveLayoutTest, EveryPrefixFailsWithEndOfFileAndChangesNothing) {
  using StringMap = CMap<CString, const CString&, int, int>;
  const TruncationRow rows[] = {
      Row<CIntArray>("CIntArray", [](CIntArray& a) { a.Add(7), a.Add(-1); }, [](CIntArray& a) { a.Add(42); }),
      Row<CIntList>("CIntList", [](CIntList& l) { l.AddTail(7), l.AddTail(-1); }, [](CIntList& l) { l.AddTail(42); }),
      Row<CIntListArray>("CIntListArray", [](CIntListArray& a) { a.SetSize(2), a[0].AddTail(1); },
                         [](CIntListArray& a) { a.SetSize(1), a[0].AddTail(42); }),
      Row<CIntToIntListMap>("CIntToIntListMap", [](CIntToIntListMap& m) { m[1].AddTail(1), m[2]; },
                            [](CIntToIntListMap& m) { m[1].AddTail(42); }),
      Row<CMapIntToInt>("CMapIntToInt", [](CMapIntToInt& m) { m[0] = 1, m[17] = 2; }, [](CMapIntToInt& m) { m[0] = 42; }),
      Row<CMapIntToDouble>("CMapIntToDouble", [](CMapIntToDouble& m) { m[5] = 0.5; }, [](CMapIntToDouble& m) { m[5] = 4; }),
      Row<CStringArray>("CStringArray", [](CStringArray& a) { a.Add(u"beam"), a.Add(CString(u'x', 300)); },
                        [](CStringArray& a) { a.Add(u"kept"); }),
      Row<CStringList>("CStringList", [](CStringList& l) { l.AddTail(u"a"), l.AddTail(u"bc"); },
                       [](CStringList& l) { l.AddTail(u"kept"); }),
      Row<StringMap>("CMap<CString, int>", [](StringMap& m) { m[u"one"] = 1, m[u"two"] = 2; },
                     [](StringMap& m) { m[u"one"] = 42; }),
      Row<StringHolder>("CString", [](StringHolder& h) { h.text = CString(u'y', 0x10000); },
                        [](StringHolder& h) { h.text = u"kept"; }),
  };
  for (const TruncationRow& row : rows) {
    // Every prefix near both ends, and a stride through the middle of long records.
    for (std::size_t n = 0; n < row.record.size(); n += (n < 64 || row.record.size() - n < 64) ? 1 : 997) {
      EXPECT_TRUE(row.loadPrefix(Bytes(row.record.begin(), row.record.begin() + static_cast<std::ptrdiff_t>(n))))
          << row.name << ", first " << n << " of " << row.record.size() << " bytes";
    }
  }
}

}  // namespace
}  // namespace quarrix
