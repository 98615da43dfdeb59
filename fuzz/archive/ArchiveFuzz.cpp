// Loads every archivable class of the framework and the integer collections from arbitrary bytes. The
// first byte chooses the class (and the buffer size), the rest is the archive. A load may only fail with
// CArchiveException or CSerializeException; a load that succeeds must store, reload and store again to the
// same bytes (twice, for maps, whose reload reverses the chains of shared buckets).
#include "ArchiveTargets.h"

#include <quarrix/collections/CIntArray.h>
#include <quarrix/collections/CIntList.h>
#include <quarrix/collections/CIntListArray.h>
#include <quarrix/collections/CIntToIntListMap.h>
#include <quarrix/collections/CMapIntToDouble.h>
#include <quarrix/collections/CMapIntToInt.h>
#include <quarrix/foundation/CSerializeException.h>
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/CMemFile.h>
#include <quarrix/framework/TypedCollections.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using namespace quarrix;
using Bytes = std::vector<BYTE>;

struct StringHolder {
  CString text;
  void Serialize(CArchive& ar) { ar.IsStoring() ? (void)(ar << text) : (void)(ar >> text); }
};
struct StringAHolder {
  CStringA text;
  void Serialize(CArchive& ar) { ar.IsStoring() ? (void)(ar << text) : (void)(ar >> text); }
};
// A run of mixed primitives, as a hand-written Serialize would read them.
struct Primitives {
  BYTE b = 0;
  short s = 0;
  int i = 0;
  double d = 0;
  bool flag = false;
  LONGLONG ll = 0;
  DWORD_PTR count = 0;
  CString text;
  void Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
      ar << b << s << i << d << flag << ll;
      ar.WriteCount(count);
      ar << text;
    } else {
      ar >> b >> s >> i >> d >> flag >> ll;
      count = ar.ReadCount();
      ar >> text;
    }
  }
};

template <class T>
Bytes Store(T& object) {
  CMemFile file;
  CArchive ar(&file, CArchive::store);
  object.Serialize(ar);
  ar.Close();
  return file.GetBytes();
}

template <class T>
void Load(T& object, Bytes bytes, int bufSize) {
  CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
  CArchive ar(&file, CArchive::load, bufSize);
  object.Serialize(ar);
}

// Loads into an object that already holds something (lists and maps add to it), then checks the round trip.
template <class T, class Fill>
void Run(const Bytes& input, int bufSize, Fill fill) {
  T loaded;
  fill(loaded);
  try {
    Load(loaded, input, bufSize);
  } catch (const CArchiveException&) {
    return;
  } catch (const CSerializeException&) {
    return;
  }
  const Bytes first = Store(loaded);
  T again;
  Load(again, first, 4096);
  const Bytes second = Store(again);
  T third;
  Load(third, second, 64);
  if (Store(third) != first) std::abort();
}

template <class T>
void Run(const Bytes& input, int bufSize) {
  Run<T>(input, bufSize, [](T&) {});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const int bufSize = (data[0] & fuzz::kSmallBuffer) ? 64 : 4096;
  const Bytes input(data + 1, data + size);
  switch ((data[0] & ~fuzz::kSmallBuffer) % fuzz::kTargetCount) {
    case fuzz::kIntArray: Run<CIntArray>(input, bufSize, [](CIntArray& a) { a.Add(1); }); break;
    case fuzz::kIntList: Run<CIntList>(input, bufSize, [](CIntList& l) { l.AddTail(1); }); break;
    // Lists inside arrays and maps do not survive an archive (their image holds only a count), so the
    // objects loaded into hold empty ones, or the round trip would differ in that count.
    case fuzz::kIntListArray: Run<CIntListArray>(input, bufSize, [](CIntListArray& a) { a.SetSize(3); }); break;
    case fuzz::kIntToIntListMap: Run<CIntToIntListMap>(input, bufSize, [](CIntToIntListMap& m) { m[0]; }); break;
    case fuzz::kMapIntToInt: Run<CMapIntToInt>(input, bufSize, [](CMapIntToInt& m) { m[0] = 1; }); break;
    case fuzz::kMapIntToDouble: Run<CMapIntToDouble>(input, bufSize); break;
    case fuzz::kString: Run<StringHolder>(input, bufSize); break;
    case fuzz::kStringA: Run<StringAHolder>(input, bufSize); break;
    case fuzz::kStringArray: Run<CStringArray>(input, bufSize, [](CStringArray& a) { a.Add(u"x"); }); break;
    case fuzz::kStringList: Run<CStringList>(input, bufSize); break;
    case fuzz::kStringToIntMap: Run<CMap<CString, const CString&, int, int>>(input, bufSize); break;
    case fuzz::kDoubleArray: Run<CArray<double, double>>(input, bufSize); break;
    case fuzz::kByteArray: Run<CByteArray>(input, bufSize); break;
    case fuzz::kPrimitives: Run<Primitives>(input, bufSize); break;
  }
  return 0;
}
