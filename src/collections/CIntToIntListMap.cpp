#include <quarrix/collections/CIntToIntListMap.h>

#include "internal/CopyPairs.h"

namespace quarrix {

QUARRIX_IMPLEMENT_DYNAMIC(CIntToIntListMap, CObject)

CIntToIntListMap::CIntToIntListMap(const CIntToIntListMap& src) : CMap() { detail::CopyPairs(*this, src); }

CIntToIntListMap& CIntToIntListMap::operator=(const CIntToIntListMap& src) {
  detail::CopyPairs(*this, src);
  return *this;
}

CIntToIntListMap::~CIntToIntListMap() = default;

}  // namespace quarrix
