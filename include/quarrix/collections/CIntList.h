#pragma once
// CIntList: a list of int with ordered and unique insertion, archived in the framework's list layout.
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CList.h>
#include <quarrix/framework/Export.h>

#include <cstddef>

namespace quarrix {

// CList<int, int> with copying and a policy-driven Add. Archive layout (the base's): the count (WriteCount),
// then the ints head to tail; loading appends to what the list holds.
class QUARRIX_API CIntList : public CList<int, int> {
 public:
  CIntList() = default;
  CIntList(const CIntList& src);
  // Empties this list, then appends a copy of every element of src, head to tail.
  CIntList& operator=(const CIntList& src);
  ~CIntList() override;

  // Inserts nValue by the bits of nFlags: 1 unique, 2 ascending, 4 descending; 0 appends at the tail.
  // Walking from the head, at each element v: with 1, v == nValue ends without inserting; with 2,
  // v > nValue inserts before v; with 4, v < nValue inserts before v. A walk that ends inserts at the tail.
  // So equal values keep their order of arrival, and with 1|2 a duplicate is found only among the elements
  // before the insertion point (in an ascending list, all of them). Other bits are ignored.
  void Add(int nValue, int nFlags);

  QUARRIX_DECLARE_DYNAMIC(CIntList)
};

// A CIntList inside a CIntListArray or CIntToIntListMap is archived as the 28-byte image the Windows
// library writes (its object's memory: seven 32-bit words), which carries no elements. Written here: the
// words 0, 0, 0, count, 0, 0, 10 (no table pointer, no node pointers, the element count, no free list, no
// blocks, the block size), little-endian. Loading skips the 28 bytes and leaves an empty list.
inline constexpr std::size_t kIntListImageSize = 28;
constexpr std::size_t ArchivedElementSize(const CIntList*) noexcept { return kIntListImageSize; }
QUARRIX_API void SerializeElements(CArchive& ar, CIntList* pElements, INT_PTR nCount);

}  // namespace quarrix
