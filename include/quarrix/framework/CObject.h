#pragma once
// CObject, the root of the serializable framework classes, and CRuntimeClass, its minimal run-time type.
#include <quarrix/framework/CDumpContext.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <iosfwd>

namespace quarrix {

class CArchive;
class CObject;

// The run-time description of a CObject class: its name and its base. There is no dynamic creation.
struct QUARRIX_API CRuntimeClass {
  const char* m_lpszClassName;
  int m_nObjectSize;
  UINT m_wSchema;  // 0xFFFF: the class writes no schema of its own
  const CRuntimeClass* m_pBaseClass;

  // True when this class is pBaseClass or derives from it.
  BOOL IsDerivedFrom(const CRuntimeClass* pBaseClass) const noexcept;
};

// The base of the framework's serializable classes. The virtual operations come in MFC's order:
// GetRuntimeClass, the destructor, Serialize, AssertValid, Dump.
class QUARRIX_API CObject {
 public:
  virtual const CRuntimeClass* GetRuntimeClass() const;
  virtual ~CObject();
  // Writes the object to a storing archive or reads it from a loading one. CObject's does nothing.
  virtual void Serialize(CArchive& ar);
  // Checks the object's invariants; throws CInvalidArgException naming the one that does not hold.
  virtual void AssertValid() const;
  // Writes "a <class name> at $<address>"; classes add their state (collections their elements when the
  // context's depth is above 0).
  virtual void Dump(CDumpContext& dc) const;

  BOOL IsKindOf(const CRuntimeClass* pClass) const;

  static const CRuntimeClass classCObject;

 protected:
  CObject() noexcept = default;
  CObject(const CObject&) noexcept = default;
  CObject& operator=(const CObject&) noexcept = default;
};

// Dumps the object with depth 1 (collections list their elements).
QUARRIX_API std::ostream& operator<<(std::ostream& os, const CObject& ob);

}  // namespace quarrix

// Declares the run-time class of a CObject class (MFC's DECLARE_DYNAMIC); put it inside the class.
#define QUARRIX_DECLARE_DYNAMIC(class_name)                      \
 public:                                                         \
  static const ::quarrix::CRuntimeClass class##class_name;       \
  const ::quarrix::CRuntimeClass* GetRuntimeClass() const override;

// Defines it in one source file (MFC's IMPLEMENT_DYNAMIC).
#define QUARRIX_IMPLEMENT_DYNAMIC(class_name, base_class_name)                                           \
  const ::quarrix::CRuntimeClass class_name::class##class_name = {                                      \
      #class_name, static_cast<int>(sizeof(class_name)), 0xFFFF, &base_class_name::class##base_class_name}; \
  const ::quarrix::CRuntimeClass* class_name::GetRuntimeClass() const { return &class_name::class##class_name; }

// The run-time class of a class, for IsKindOf (MFC's RUNTIME_CLASS).
#define QUARRIX_RUNTIME_CLASS(class_name) (&class_name::class##class_name)
