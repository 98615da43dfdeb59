#include <quarrix/collections/CMapIntToDouble.h>

#include "internal/CopyPairs.h"

namespace quarrix {

QUARRIX_IMPLEMENT_DYNAMIC(CMapIntToDouble, CObject)

CMapIntToDouble::CMapIntToDouble(const CMapIntToDouble& src) : CMap() { detail::CopyPairs(*this, src); }

CMapIntToDouble& CMapIntToDouble::operator=(const CMapIntToDouble& src) {
  detail::CopyPairs(*this, src);
  return *this;
}

CMapIntToDouble::~CMapIntToDouble() = default;

}  // namespace quarrix
