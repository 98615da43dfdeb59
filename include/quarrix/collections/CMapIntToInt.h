#pragma once
// CMapIntToInt: a map from int to int that can merge another into itself.
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/Export.h>

namespace quarrix {

// CMap<int, int, int, int> with copying and Merge. Archive layout (the base's): the count (WriteCount), then
// per pair the int key and the int value, in bucket order.
class QUARRIX_API CMapIntToInt : public CMap<int, int, int, int> {
 public:
  CMapIntToInt() = default;
  CMapIntToInt(const CMapIntToInt& src);
  // Removes all pairs, then sets every pair of src in src's iteration order.
  CMapIntToInt& operator=(const CMapIntToInt& src);
  ~CMapIntToInt() override;

  // Copies every pair of other into this map, in other's iteration order; with bKeepExisting non-zero a
  // key this map holds already keeps its value, otherwise the value is overwritten.
  void Merge(const CMapIntToInt& other, int bKeepExisting);

  QUARRIX_DECLARE_DYNAMIC(CMapIntToInt)
};

}  // namespace quarrix
