#pragma once
// CIntListArray: an array of CIntList.
#include <quarrix/collections/CIntList.h>
#include <quarrix/framework/CArray.h>
#include <quarrix/framework/Export.h>

namespace quarrix {

// CArray<CIntList, CIntList&> with copying. Archive layout (the base's): the count (WriteCount), then one
// 28-byte image per list (see CIntList.h), which holds no elements: a stored array loads as that many empty
// lists.
class QUARRIX_API CIntListArray : public CArray<CIntList, CIntList&> {
 public:
  CIntListArray() = default;
  CIntListArray(const CIntListArray& src);
  // Resizes to src's size, then assigns each list.
  CIntListArray& operator=(const CIntListArray& src);
  ~CIntListArray() override;

  QUARRIX_DECLARE_DYNAMIC(CIntListArray)
};

}  // namespace quarrix
