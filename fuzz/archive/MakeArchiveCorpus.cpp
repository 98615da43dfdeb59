// Writes the seed corpus of ArchiveFuzz: the records of the golden tests (and a few longer forms), each
// behind its selector byte. Run as `MakeArchiveCorpus fuzz/archive/corpus` from the source root.
#include "ArchiveTargets.h"

#include <quarrix/collections/CIntArray.h>
#include <quarrix/collections/CIntList.h>
#include <quarrix/collections/CIntListArray.h>
#include <quarrix/collections/CIntToIntListMap.h>
#include <quarrix/collections/CMapIntToDouble.h>
#include <quarrix/collections/CMapIntToInt.h>
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/CMemFile.h>
#include <quarrix/framework/TypedCollections.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace quarrix;

std::filesystem::path g_dir;

void Seed(const std::string& name, std::uint8_t selector, const std::function<void(CArchive&)>& write) {
  CMemFile file;
  {
    CArchive ar(&file, CArchive::store);
    write(ar);
  }
  const std::vector<BYTE> bytes = file.GetBytes();
  std::ofstream out(g_dir / name, std::ios::binary);
  out.put(static_cast<char>(selector));
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

template <class T>
void SeedObject(const std::string& name, std::uint8_t selector, const std::function<void(T&)>& fill) {
  Seed(name, selector, [&](CArchive& ar) {
    T object;
    fill(object);
    object.Serialize(ar);
  });
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: MakeArchiveCorpus <folder>\n");
    return 2;
  }
  g_dir = argv[1];
  std::filesystem::create_directories(g_dir);
  using namespace quarrix::fuzz;

  SeedObject<CIntArray>("int-array-empty", kIntArray, [](CIntArray&) {});
  SeedObject<CIntArray>("int-array-7-minus-1", kIntArray, [](CIntArray& a) { a.Add(7); a.Add(-1); });
  Seed("int-array-version-2", kIntArray, [](CArchive& ar) { ar << 2 << 1 << 5; });
  Seed("int-array-version-0", kIntArray, [](CArchive& ar) { ar << 0 << 1 << 5; });
  Seed("int-array-version-minus-1", kIntArray | kSmallBuffer, [](CArchive& ar) { ar << -1 << 2 << 5 << 6; });
  SeedObject<CIntList>("int-list-empty", kIntList, [](CIntList&) {});
  SeedObject<CIntList>("int-list-2-3", kIntList, [](CIntList& l) { l.AddTail(2); l.AddTail(3); });
  Seed("int-list-long-count", kIntList | kSmallBuffer, [](CArchive& ar) { ar << WORD{0xFFFF} << DWORD{2} << 8 << 9; });
  SeedObject<CIntListArray>("int-list-array", kIntListArray, [](CIntListArray& a) { a.SetSize(2); a[0].AddTail(1); });
  SeedObject<CIntToIntListMap>("int-to-int-list-map", kIntToIntListMap, [](CIntToIntListMap& m) { m[5].AddTail(1); });
  SeedObject<CMapIntToInt>("map-int-to-int-0-1", kMapIntToInt, [](CMapIntToInt& m) { m[0] = 10; m[1] = 11; });
  SeedObject<CMapIntToInt>("map-int-to-int-shared-bucket", kMapIntToInt | kSmallBuffer,
                           [](CMapIntToInt& m) { m[0] = 1; m[17] = 2; m[34] = 3; });
  SeedObject<CMapIntToDouble>("map-int-to-double", kMapIntToDouble, [](CMapIntToDouble& m) { m[1] = 0.5; });
  Seed("string-empty", kString, [](CArchive& ar) { ar << CString(); });
  Seed("string-short", kString, [](CArchive& ar) { ar << CString(u"Träger €"); });
  Seed("string-255", kString | kSmallBuffer, [](CArchive& ar) { ar << CString(u'w', 255); });
  Seed("string-8-bit", kString, [](CArchive& ar) { ar << CStringA("abc"); });
  Seed("string-8-bit-word-length", kString, [](CArchive& ar) { ar << CStringA(CString(u'n', 300)); });
  Seed("string-dword-length", kString, [](CArchive& ar) { ar << BYTE{0xFF} << WORD{0xFFFF} << DWORD{2} << 'O' << 'K'; });
  Seed("string-a", kStringA, [](CArchive& ar) { ar << CStringA("bytes"); });
  SeedObject<CStringArray>("string-array", kStringArray, [](CStringArray& a) { a.Add(u"beam"); a.Add(CString()); });
  SeedObject<CStringList>("string-list", kStringList, [](CStringList& l) { l.AddTail(u"a"); l.AddTail(u"bc"); });
  using StringMap = CMap<CString, const CString&, int, int>;
  SeedObject<StringMap>("string-to-int-map", kStringToIntMap, [](StringMap& m) { m[u"one"] = 1; m[u"two"] = 2; });
  SeedObject<CArray<double, double>>("double-array", kDoubleArray, [](CArray<double, double>& a) { a.Add(0.5); a.Add(-1e300); });
  SeedObject<CByteArray>("byte-array", kByteArray, [](CByteArray& a) { a.Add(1); a.Add(255); });
  Seed("primitives", kPrimitives, [](CArchive& ar) {
    ar << BYTE{1} << short{-2} << 3 << 4.5 << true << LONGLONG{-6};
    ar.WriteCount(0x10000);
    ar << CString(u"end");
  });
  return 0;
}
