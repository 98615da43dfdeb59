#include <quarrix/collections/CMapIntToInt.h>

#include "internal/CopyPairs.h"

namespace quarrix {

QUARRIX_IMPLEMENT_DYNAMIC(CMapIntToInt, CObject)

CMapIntToInt::CMapIntToInt(const CMapIntToInt& src) : CMap() { detail::CopyPairs(*this, src); }

CMapIntToInt& CMapIntToInt::operator=(const CMapIntToInt& src) {
  detail::CopyPairs(*this, src);
  return *this;
}

CMapIntToInt::~CMapIntToInt() = default;

void CMapIntToInt::Merge(const CMapIntToInt& other, int bKeepExisting) {
  for (const CPair& pair : other) {
    if (bKeepExisting && PLookup(pair.key)) continue;
    (*this)[pair.key] = pair.value;
  }
}

}  // namespace quarrix
