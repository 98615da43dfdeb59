#include <quarrix/collections/CIntArray.h>

#include <quarrix/foundation/CSerializeException.h>

#include <algorithm>
#include <limits>

namespace quarrix {

QUARRIX_IMPLEMENT_DYNAMIC(CIntArray, CObject)

CIntArray::CIntArray(const CIntArray& src) : CArray() { *this = src; }

CIntArray& CIntArray::operator=(const CIntArray& src) {
  if (&src == this) return *this;
  if (GetSize() != src.GetSize()) SetSize(src.GetSize());
  std::copy(src.begin(), src.end(), begin());
  return *this;
}

CIntArray::~CIntArray() = default;

void CIntArray::Serialize(CArchive& ar) {
  if (ar.IsStoring()) {
    if (m_nSize > std::numeric_limits<int>::max()) {
      throw CArchiveException(CArchiveException::genericException, ar.m_strFileName,
                              cstringf(u"%lld elements do not fit the layout's int count",
                                       static_cast<long long>(m_nSize)));
    }
    ar << 1 << static_cast<int>(m_nSize);
    ar.WriteArray(m_pData, static_cast<std::size_t>(m_nSize));
    return;
  }
  int nVersion = 0;
  ar >> nVersion;
  if (nVersion > 1) throw CSerializeException(eSerNewerVersionRequired);
  int nCount = 0;
  ar >> nCount;
  // The count is read and checked before the old contents go, so that a damaged record changes nothing
  // and cannot make the array allocate more than the file holds.
  const std::size_t n = nCount > 0 ? static_cast<std::size_t>(nCount) : 0;
  ar.CheckCount(u"element count", n, sizeof(int));
  RemoveAll();
  if (n == 0) return;
  SetSize(static_cast<INT_PTR>(n));
  ar.ReadArray(m_pData, n);
}

}  // namespace quarrix
