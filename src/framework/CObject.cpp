#include <quarrix/framework/CObject.h>

#include <quarrix/framework/CException.h>

#include <ostream>

namespace quarrix {

const CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xFFFF, nullptr};

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* pBaseClass) const noexcept {
  for (const CRuntimeClass* c = this; c; c = c->m_pBaseClass) {
    if (c == pBaseClass) return TRUE;
  }
  return FALSE;
}

const CRuntimeClass* CObject::GetRuntimeClass() const { return &classCObject; }

CObject::~CObject() = default;

void CObject::Serialize(CArchive&) {}

void CObject::AssertValid() const {}

void CObject::Dump(CDumpContext& dc) const {
  dc << "a " << GetRuntimeClass()->m_lpszClassName << " at " << static_cast<const void*>(this) << "\n";
}

BOOL CObject::IsKindOf(const CRuntimeClass* pClass) const {
  if (!pClass) AfxThrowInvalidArgException(u"IsKindOf with a null class");
  return GetRuntimeClass()->IsDerivedFrom(pClass);
}

std::ostream& operator<<(std::ostream& os, const CObject& ob) {
  CDumpContext dc(&os);
  dc.SetDepth(1);
  ob.Dump(dc);
  return os;
}

}  // namespace quarrix
