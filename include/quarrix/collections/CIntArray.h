#pragma once
// CIntArray: an array of int that archives itself in the library's versioned layout.
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CArray.h>
#include <quarrix/framework/Export.h>

namespace quarrix {

// CArray<int, int&> with copying and its own archive layout:
//   int 1 (the layout version), int n (the element count), then n ints, index 0 upward.
// Loading throws CSerializeException(eSerNewerVersionRequired) for a version above 1 and takes 0 and
// negative versions as 1; a count of 0 or less gives an empty array. The contents are replaced only after
// the version and a count that the bytes left can hold have been read: any failure leaves the array as it
// was (a version above 1 included).
class QUARRIX_API CIntArray : public CArray<int, int&> {
 public:
  CIntArray() = default;
  CIntArray(const CIntArray& src);
  // Resizes to src's size if the sizes differ, then copies element by element.
  CIntArray& operator=(const CIntArray& src);
  ~CIntArray() override;

  void Serialize(CArchive& ar) override;

  QUARRIX_DECLARE_DYNAMIC(CIntArray)
};

}  // namespace quarrix
