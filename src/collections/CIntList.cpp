#include <quarrix/collections/CIntList.h>

namespace quarrix {

QUARRIX_IMPLEMENT_DYNAMIC(CIntList, CObject)

CIntList::CIntList(const CIntList& src) : CList() { AddTail(&src); }

CIntList& CIntList::operator=(const CIntList& src) {
  if (&src == this) return *this;
  RemoveAll();
  AddTail(&src);
  return *this;
}

CIntList::~CIntList() = default;

void CIntList::Add(int nValue, int nFlags) {
  if (nFlags == 0) {
    AddTail(nValue);
    return;
  }
  for (POSITION pos = GetHeadPosition(); pos;) {
    const POSITION here = pos;
    const int v = GetNext(pos);
    if ((nFlags & 1) && v == nValue) return;
    if (((nFlags & 2) && v > nValue) || ((nFlags & 4) && v < nValue)) {
      InsertBefore(here, nValue);
      return;
    }
  }
  AddTail(nValue);
}

void SerializeElements(CArchive& ar, CIntList* pElements, INT_PTR nCount) {
  static_assert(kIntListImageSize == 7 * sizeof(DWORD));
  for (INT_PTR i = 0; i < nCount; ++i) {
    DWORD image[7] = {0, 0, 0, 0, 0, 0, 10};
    if (ar.IsStoring()) {
      image[3] = static_cast<DWORD>(pElements[i].GetCount());
      ar.WriteArray(image, 7);
    } else {
      ar.ReadArray(image, 7);
      pElements[i].RemoveAll();
    }
  }
}

}  // namespace quarrix
