#pragma once
// CMapIntToDouble: a map from int to double.
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/Export.h>

namespace quarrix {

// CMap<int, int, double, double&> with copying. Archive layout (the base's): the count (WriteCount), then per
// pair the int key and the 8-byte double, in bucket order.
class QUARRIX_API CMapIntToDouble : public CMap<int, int, double, double&> {
 public:
  CMapIntToDouble() = default;
  CMapIntToDouble(const CMapIntToDouble& src);
  // Removes all pairs, then sets every pair of src in src's iteration order.
  CMapIntToDouble& operator=(const CMapIntToDouble& src);
  ~CMapIntToDouble() override;

  QUARRIX_DECLARE_DYNAMIC(CMapIntToDouble)
};

}  // namespace quarrix
