#pragma once
// MFC's ready-made collections, each a named class over CArray or CList with MFC's element and argument
// types, so that ported code (including forward declarations such as `class CStringList;`) keeps compiling.
// Their archive layouts are the generic ones: a count, then the elements (strings in the archive's string
// form, numbers as their images). The pointer collections cannot be archived: their Serialize throws
// CNotSupportedException.
#include <quarrix/framework/CArray.h>
#include <quarrix/framework/CList.h>
#include <quarrix/framework/CObject.h>
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

namespace quarrix {

#define QUARRIX_NAMED_COLLECTION(class_name, ...)    \
  class QUARRIX_API class_name : public __VA_ARGS__ { \
    using Base = __VA_ARGS__;                        \
                                                     \
   public:                                           \
    using Base::Base;                                \
    QUARRIX_DECLARE_DYNAMIC(class_name)              \
  };

QUARRIX_NAMED_COLLECTION(CByteArray, CArray<BYTE, BYTE>)
QUARRIX_NAMED_COLLECTION(CWordArray, CArray<WORD, WORD>)
QUARRIX_NAMED_COLLECTION(CDWordArray, CArray<DWORD, DWORD>)
QUARRIX_NAMED_COLLECTION(CUIntArray, CArray<UINT, UINT>)
QUARRIX_NAMED_COLLECTION(CStringArray, CArray<CString, const CString&>)
QUARRIX_NAMED_COLLECTION(CPtrArray, CArray<void*, void*>)
QUARRIX_NAMED_COLLECTION(CObArray, CArray<CObject*, CObject*>)
QUARRIX_NAMED_COLLECTION(CStringList, CList<CString, const CString&>)
QUARRIX_NAMED_COLLECTION(CPtrList, CList<void*, void*>)
QUARRIX_NAMED_COLLECTION(CObList, CList<CObject*, CObject*>)

#undef QUARRIX_NAMED_COLLECTION

}  // namespace quarrix
