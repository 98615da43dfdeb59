#pragma once
// CArray: MFC's growable array of values.
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CObject.h>
#include <quarrix/framework/CollectionHelpers.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quarrix {

// A contiguous array of TYPE with MFC's interface. Every index is checked: GetAt, SetAt, ElementAt,
// operator[], InsertAt and RemoveAt throw CInvalidArgException naming the index and the bounds; so do a
// negative size and appending an array to itself. New elements are value-initialised (0 for numbers).
// ARG_TYPE is how elements are passed in; a reference is taken as a const reference. Not copyable (use
// Copy); range-based for walks the elements.
//
// Archive layout: the count (WriteCount), then the elements through SerializeElements. Loading replaces the
// contents; a count that the bytes left cannot hold throws endOfFile before anything changes, and elements
// of varying size (strings) are read aside first, so that a damaged record leaves the array as it was.
template <class TYPE, class ARG_TYPE = const TYPE&>
class QUARRIX_API CArray : public CObject {
 public:
  using BASE_TYPE = TYPE;
  using BASE_ARG_TYPE = ARG_TYPE;
  using arg_type = detail::ArgType<ARG_TYPE>;

  CArray() noexcept = default;
  CArray(const CArray&) = delete;
  CArray& operator=(const CArray&) = delete;
  ~CArray() override { RemoveAll(); }

  INT_PTR GetSize() const noexcept { return m_nSize; }
  INT_PTR GetCount() const noexcept { return m_nSize; }
  BOOL IsEmpty() const noexcept { return m_nSize == 0; }
  INT_PTR GetUpperBound() const noexcept { return m_nSize - 1; }

  // Sets the number of elements; 0 also releases the storage. nGrowBy >= 0 sets the step by which the
  // storage grows (0: MFC's choice, an eighth of the size between 4 and 1024); the array always grows by
  // at least half its size, so that repeated Add stays linear.
  void SetSize(INT_PTR nNewSize, INT_PTR nGrowBy = -1) {
    if (nNewSize < 0) detail::ThrowBadArgument(u"SetSize", u"negative size");
    if (nGrowBy >= 0) m_nGrowBy = nGrowBy;
    if (nNewSize == 0) {
      Release();
      return;
    }
    if (nNewSize > m_nMaxSize) {
      INT_PTR step = m_nGrowBy > 0 ? m_nGrowBy : std::clamp<INT_PTR>(m_nSize / 8, 4, 1024);
      step = std::max(step, m_nMaxSize / 2);
      Reallocate(m_pData ? std::max(nNewSize, m_nMaxSize + step) : std::max(nNewSize, m_nGrowBy));
    }
    if (nNewSize > m_nSize) {
      // A loop rather than std::uninitialized_value_construct, whose memset GCC 12 wrongly reports as an
      // overflow when it inlines a first Add.
      TYPE* p = m_pData + m_nSize;
      try {
        for (; p != m_pData + nNewSize; ++p) ::new (static_cast<void*>(p)) TYPE();
      } catch (...) {
        std::destroy(m_pData + m_nSize, p);
        throw;
      }
    } else {
      std::destroy(m_pData + nNewSize, m_pData + m_nSize);
    }
    m_nSize = nNewSize;
  }
  // Releases storage beyond the size.
  void FreeExtra() {
    if (m_nSize == 0) {
      Release();
    } else if (m_nSize != m_nMaxSize) {
      Reallocate(m_nSize);
    }
  }
  void RemoveAll() noexcept { Release(); }

  const TYPE& GetAt(INT_PTR nIndex) const { return m_pData[Checked(u"GetAt", nIndex)]; }
  TYPE& GetAt(INT_PTR nIndex) { return m_pData[Checked(u"GetAt", nIndex)]; }
  void SetAt(INT_PTR nIndex, arg_type newElement) { m_pData[Checked(u"SetAt", nIndex)] = newElement; }
  const TYPE& ElementAt(INT_PTR nIndex) const { return m_pData[Checked(u"ElementAt", nIndex)]; }
  TYPE& ElementAt(INT_PTR nIndex) { return m_pData[Checked(u"ElementAt", nIndex)]; }
  const TYPE& operator[](INT_PTR nIndex) const { return m_pData[Checked(u"operator[]", nIndex)]; }
  TYPE& operator[](INT_PTR nIndex) { return m_pData[Checked(u"operator[]", nIndex)]; }
  // The elements, null when there are none; valid until the array changes size.
  const TYPE* GetData() const noexcept { return m_pData; }
  TYPE* GetData() noexcept { return m_pData; }

  // Sets element nIndex, growing the array to nIndex + 1 elements first if needed.
  void SetAtGrow(INT_PTR nIndex, arg_type newElement) {
    if (nIndex < 0) detail::ThrowBadIndex(u"SetAtGrow", nIndex, m_nSize);
    if (nIndex >= m_nSize) {
      if (Holds(newElement)) {
        TYPE copy(newElement);  // growing may move the element it refers to
        SetSize(nIndex + 1);
        m_pData[nIndex] = std::move(copy);
        return;
      }
      SetSize(nIndex + 1);
    }
    m_pData[nIndex] = newElement;
  }
  // Appends and returns the new element's index.
  INT_PTR Add(arg_type newElement) {
    const INT_PTR nIndex = m_nSize;
    SetAtGrow(nIndex, newElement);
    return nIndex;
  }
  // Appends copies of src's elements and returns the index of the first; src must not be this array.
  INT_PTR Append(const CArray& src) {
    if (&src == this) detail::ThrowBadArgument(u"Append", u"an array cannot be appended to itself");
    const INT_PTR nOldSize = m_nSize;
    SetSize(m_nSize + src.m_nSize);
    std::copy(src.m_pData, src.m_pData + src.m_nSize, m_pData + nOldSize);
    return nOldSize;
  }
  // Makes this array a copy of src.
  void Copy(const CArray& src) {
    if (&src == this) return;
    SetSize(src.m_nSize);
    std::copy(src.m_pData, src.m_pData + src.m_nSize, m_pData);
  }

  // Inserts nCount copies of newElement before nIndex; an index at or beyond the end grows the array to
  // nIndex + nCount. Throws for a negative index or a count below 1.
  void InsertAt(INT_PTR nIndex, arg_type newElement, INT_PTR nCount = 1) {
    if (nIndex < 0) detail::ThrowBadIndex(u"InsertAt", nIndex, m_nSize);
    if (nCount <= 0) detail::ThrowBadArgument(u"InsertAt", u"count below 1");
    TYPE copy(newElement);
    const INT_PTR nOldSize = m_nSize;
    if (nIndex >= nOldSize) {
      SetSize(nIndex + nCount);
    } else {
      SetSize(nOldSize + nCount);
      std::move_backward(m_pData + nIndex, m_pData + nOldSize, m_pData + nOldSize + nCount);
    }
    std::fill(m_pData + nIndex, m_pData + nIndex + nCount, copy);
  }
  // Inserts copies of pNewArray's elements before nStartIndex (which may be this array).
  void InsertAt(INT_PTR nStartIndex, const CArray* pNewArray) {
    if (!pNewArray) detail::ThrowBadArgument(u"InsertAt", u"null array");
    if (nStartIndex < 0) detail::ThrowBadIndex(u"InsertAt", nStartIndex, m_nSize);
    if (pNewArray->m_nSize == 0) return;
    if (pNewArray == this) {
      CArray copy;
      copy.Copy(*this);
      InsertAt(nStartIndex, &copy);
      return;
    }
    InsertAt(nStartIndex, pNewArray->m_pData[0], pNewArray->m_nSize);
    std::copy(pNewArray->m_pData, pNewArray->m_pData + pNewArray->m_nSize, m_pData + nStartIndex);
  }
  // Removes nCount elements from nIndex on; the range must lie inside the array.
  void RemoveAt(INT_PTR nIndex, INT_PTR nCount = 1) {
    if (nIndex < 0 || (nCount > 0 && nIndex >= m_nSize)) detail::ThrowBadIndex(u"RemoveAt", nIndex, m_nSize);
    if (nCount < 0 || nCount > m_nSize - nIndex) detail::ThrowBadArgument(u"RemoveAt", u"count beyond the end");
    std::move(m_pData + nIndex + nCount, m_pData + m_nSize, m_pData + nIndex);
    std::destroy(m_pData + m_nSize - nCount, m_pData + m_nSize);
    m_nSize -= nCount;
  }

  TYPE* begin() noexcept { return m_pData; }
  TYPE* end() noexcept { return m_pData + m_nSize; }
  const TYPE* begin() const noexcept { return m_pData; }
  const TYPE* end() const noexcept { return m_pData + m_nSize; }

  void Serialize(CArchive& ar) override {
    CObject::Serialize(ar);
    detail::CheckArchivable<TYPE>();
    if (ar.IsStoring()) {
      ar.WriteCount(static_cast<DWORD_PTR>(m_nSize));
      SerializeElements(ar, m_pData, m_nSize);
      return;
    }
    const DWORD_PTR nCount = ar.ReadCount();
    constexpr std::size_t kFixed = ArchivedElementSize(static_cast<const TYPE*>(nullptr));
    ar.CheckCount(u"element count", nCount, kFixed ? kFixed : 1);
    if constexpr (kFixed != 0) {
      SetSize(static_cast<INT_PTR>(nCount));
      SerializeElements(ar, m_pData, m_nSize);
    } else {
      std::vector<TYPE> loaded = detail::ReadElements<TYPE>(ar, nCount);
      SetSize(static_cast<INT_PTR>(loaded.size()));
      std::move(loaded.begin(), loaded.end(), m_pData);
    }
  }
  void Dump(CDumpContext& dc) const override {
    CObject::Dump(dc);
    dc << "with " << m_nSize << " elements";
    if (dc.GetDepth() > 0) DumpElements(dc, m_pData, m_nSize);
    dc << "\n";
  }
  void AssertValid() const override {
    CObject::AssertValid();
    if (m_nSize < 0 || m_nSize > m_nMaxSize || (m_pData == nullptr) != (m_nMaxSize == 0)) {
      detail::ThrowBadArgument(u"AssertValid", u"CArray's size, capacity and storage disagree");
    }
  }
  const CRuntimeClass* GetRuntimeClass() const override { return &classCArray; }
  static const CRuntimeClass classCArray;

 protected:
  TYPE* m_pData = nullptr;
  INT_PTR m_nSize = 0;
  INT_PTR m_nMaxSize = 0;
  INT_PTR m_nGrowBy = 0;

 private:
  INT_PTR Checked(const char16_t* pszOperation, INT_PTR nIndex) const {
    if (nIndex < 0 || nIndex >= m_nSize) detail::ThrowBadIndex(pszOperation, nIndex, m_nSize);
    return nIndex;
  }
  // Whether an argument refers to one of this array's own elements.
  template <class T>
  bool Holds(const T& value) const noexcept {
    if constexpr (std::is_same_v<std::remove_cvref_t<T>, TYPE>) {
      const std::less<const TYPE*> before;
      return m_pData && !before(&value, m_pData) && before(&value, m_pData + m_nSize);
    } else {
      return false;
    }
  }
  void Release() noexcept {
    std::destroy(m_pData, m_pData + m_nSize);
    detail::FreeRaw(m_pData);
    m_pData = nullptr;
    m_nSize = m_nMaxSize = 0;
  }
  void Reallocate(INT_PTR nNewMax) {
    TYPE* data = detail::AllocateRaw<TYPE>(static_cast<std::size_t>(nNewMax));
    if constexpr (std::is_trivially_copyable_v<TYPE>) {
      if (m_nSize) std::memcpy(static_cast<void*>(data), m_pData, static_cast<std::size_t>(m_nSize) * sizeof(TYPE));
    } else {
      try {
        if constexpr (std::is_nothrow_move_constructible_v<TYPE>) {
          std::uninitialized_move(m_pData, m_pData + m_nSize, data);
        } else {
          std::uninitialized_copy(m_pData, m_pData + m_nSize, data);
        }
      } catch (...) {
        detail::FreeRaw(data);
        throw;
      }
      std::destroy(m_pData, m_pData + m_nSize);
    }
    detail::FreeRaw(m_pData);
    m_pData = data;
    m_nMaxSize = nNewMax;
  }
};

template <class TYPE, class ARG_TYPE>
const CRuntimeClass CArray<TYPE, ARG_TYPE>::classCArray = {"CArray", static_cast<int>(sizeof(CArray<TYPE, ARG_TYPE>)),
                                                           0xFFFF, &CObject::classCObject};

}  // namespace quarrix
