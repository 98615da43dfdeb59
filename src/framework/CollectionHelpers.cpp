#include <quarrix/framework/CollectionHelpers.h>

#include <quarrix/framework/TypedCollections.h>

namespace quarrix {
namespace detail {

void ThrowBadIndex(const char16_t* pszOperation, INT_PTR nIndex, INT_PTR nSize) {
  const auto index = static_cast<long long>(nIndex);
  AfxThrowInvalidArgException(nSize > 0 ? cstringf(u"%s: index %lld is outside 0..%lld", pszOperation, index,
                                                   static_cast<long long>(nSize - 1))
                                        : cstringf(u"%s: index %lld is outside an empty collection", pszOperation,
                                                   index));
}

void ThrowBadArgument(const char16_t* pszOperation, const char16_t* pszProblem) {
  AfxThrowInvalidArgException(cstringf(u"%s: %s", pszOperation, pszProblem));
}

}  // namespace detail

void SerializeElements(CArchive& ar, CString* pElements, INT_PTR nCount) {
  for (INT_PTR i = 0; i < nCount; ++i) ar.IsStoring() ? (void)(ar << pElements[i]) : (void)(ar >> pElements[i]);
}

void SerializeElements(CArchive& ar, CStringA* pElements, INT_PTR nCount) {
  for (INT_PTR i = 0; i < nCount; ++i) ar.IsStoring() ? (void)(ar << pElements[i]) : (void)(ar >> pElements[i]);
}

QUARRIX_IMPLEMENT_DYNAMIC(CByteArray, CObject)
QUARRIX_IMPLEMENT_DYNAMIC(CWordArray, CObject)
QUARRIX_IMPLEMENT_DYNAMIC(CDWordArray, CObject)
QUARRIX_IMPLEMENT_DYNAMIC(CUIntArray, CObject)
QUARRIX_IMPLEMENT_DYNAMIC(CStringArray, CObject)
QUARRIX_IMPLEMENT_DYNAMIC(CPtrArray, CObject)
QUARRIX_IMPLEMENT_DYNAMIC(CObArray, CObject)
QUARRIX_IMPLEMENT_DYNAMIC(CStringList, CObject)
QUARRIX_IMPLEMENT_DYNAMIC(CPtrList, CObject)
QUARRIX_IMPLEMENT_DYNAMIC(CObList, CObject)

}  // namespace quarrix
