#include <quarrix/collections/CIntListArray.h>

#include <algorithm>

namespace quarrix {

QUARRIX_IMPLEMENT_DYNAMIC(CIntListArray, CObject)

CIntListArray::CIntListArray(const CIntListArray& src) : CArray() { *this = src; }

CIntListArray& CIntListArray::operator=(const CIntListArray& src) {
  if (&src == this) return *this;
  SetSize(src.GetSize());
  std::copy(src.begin(), src.end(), begin());
  return *this;
}

CIntListArray::~CIntListArray() = default;

}  // namespace quarrix
