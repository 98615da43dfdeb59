#pragma once
// CIntToIntListMap: a map from int to CIntList.
#include <quarrix/collections/CIntList.h>
#include <quarrix/framework/CMap.h>
#include <quarrix/framework/Export.h>

namespace quarrix {

// CMap<int, int, CIntList, CIntList&> with copying. Archive layout (the base's): the count (WriteCount), then
// per pair the int key and the 28-byte image of the list (see CIntList.h): stored maps load with every key
// mapped to an empty list.
class QUARRIX_API CIntToIntListMap : public CMap<int, int, CIntList, CIntList&> {
 public:
  CIntToIntListMap() = default;
  CIntToIntListMap(const CIntToIntListMap& src);
  // Removes all pairs, then sets target[key] to a copy of each of src's lists in src's iteration order.
  CIntToIntListMap& operator=(const CIntToIntListMap& src);
  ~CIntToIntListMap() override;

  QUARRIX_DECLARE_DYNAMIC(CIntToIntListMap)
};

}  // namespace quarrix
