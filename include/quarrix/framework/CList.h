#pragma once
// CList: MFC's doubly linked list, walked with POSITION values.
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CObject.h>
#include <quarrix/framework/CollectionHelpers.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>

namespace quarrix {

// A doubly linked list of TYPE with MFC's interface. A POSITION names a node; null means none. GetHead,
// GetTail, RemoveHead and RemoveTail on an empty list, and GetAt, GetNext, GetPrev, SetAt, RemoveAt with a
// null POSITION, throw CInvalidArgException; a POSITION of another list or of a removed node is undefined,
// as in MFC. Nodes come from blocks of nBlockSize (10 by default), released when the list empties.
// ARG_TYPE is how elements are passed in; a reference is taken as a const reference. Not copyable;
// range-based for walks head to tail.
//
// Archive layout: the count (WriteCount), then the elements head to tail through SerializeElements. Loading
// appends to the list (it does not empty it first); the elements are read aside and appended only when all
// of them were there, so a damaged record leaves the list as it was.
template <class TYPE, class ARG_TYPE = const TYPE&>
class QUARRIX_API CList : public CObject {
 protected:
  struct CNode {
    CNode* pNext;
    CNode* pPrev;
    TYPE data;
  };

  template <class Node, class Value>
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = TYPE;
    using difference_type = std::ptrdiff_t;
    using pointer = Value*;
    using reference = Value&;

    Iterator() noexcept = default;
    explicit Iterator(Node* pNode) noexcept : m_pNode(pNode) {}
    reference operator*() const noexcept { return m_pNode->data; }
    pointer operator->() const noexcept { return &m_pNode->data; }
    Iterator& operator++() noexcept {
      m_pNode = m_pNode->pNext;
      return *this;
    }
    Iterator operator++(int) noexcept {
      Iterator old = *this;
      m_pNode = m_pNode->pNext;
      return old;
    }
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    Node* m_pNode = nullptr;
  };

 public:
  using BASE_TYPE = TYPE;
  using BASE_ARG_TYPE = ARG_TYPE;
  using arg_type = detail::ArgType<ARG_TYPE>;
  using iterator = Iterator<CNode, TYPE>;
  using const_iterator = Iterator<const CNode, const TYPE>;

  explicit CList(INT_PTR nBlockSize = 10) noexcept : m_pool(nBlockSize) {}
  CList(const CList&) = delete;
  CList& operator=(const CList&) = delete;
  ~CList() override { RemoveAll(); }

  INT_PTR GetCount() const noexcept { return m_nCount; }
  INT_PTR GetSize() const noexcept { return m_nCount; }
  BOOL IsEmpty() const noexcept { return m_nCount == 0; }

  TYPE& GetHead() { return NonEmpty(u"GetHead")->data; }
  const TYPE& GetHead() const { return NonEmpty(u"GetHead")->data; }
  TYPE& GetTail() { return NonEmpty(u"GetTail", false)->data; }
  const TYPE& GetTail() const { return NonEmpty(u"GetTail", false)->data; }

  TYPE RemoveHead() {
    CNode* pNode = NonEmpty(u"RemoveHead");
    TYPE value(std::move(pNode->data));
    RemoveAt(ToPosition(pNode));
    return value;
  }
  TYPE RemoveTail() {
    CNode* pNode = NonEmpty(u"RemoveTail", false);
    TYPE value(std::move(pNode->data));
    RemoveAt(ToPosition(pNode));
    return value;
  }

  POSITION AddHead(arg_type newElement) { return ToPosition(Link(nullptr, m_pNodeHead, newElement)); }
  POSITION AddTail(arg_type newElement) { return ToPosition(Link(m_pNodeTail, nullptr, newElement)); }
  // Adds copies of another list's elements, keeping their order; the list may be this one.
  void AddHead(const CList* pNewList) {
    if (!pNewList) detail::ThrowBadArgument(u"AddHead", u"null list");
    const INT_PTR n = pNewList->m_nCount;
    const CNode* pNode = pNewList->m_pNodeTail;
    // Walking the source from its tail, each copy goes in front; counting keeps self-insertion finite.
    for (INT_PTR i = 0; i < n; ++i, pNode = pNode->pPrev) Link(nullptr, m_pNodeHead, pNode->data);
  }
  void AddTail(const CList* pNewList) {
    if (!pNewList) detail::ThrowBadArgument(u"AddTail", u"null list");
    const INT_PTR n = pNewList->m_nCount;
    const CNode* pNode = pNewList->m_pNodeHead;
    for (INT_PTR i = 0; i < n; ++i, pNode = pNode->pNext) Link(m_pNodeTail, nullptr, pNode->data);
  }

  void RemoveAll() noexcept {
    for (CNode* pNode = m_pNodeHead; pNode; pNode = pNode->pNext) std::destroy_at(&pNode->data);
    m_pool.Release();
    m_pNodeHead = m_pNodeTail = nullptr;
    m_nCount = 0;
  }

  POSITION GetHeadPosition() const noexcept { return ToPosition(m_pNodeHead); }
  POSITION GetTailPosition() const noexcept { return ToPosition(m_pNodeTail); }
  // Returns the element at rPosition and moves rPosition to the next one (null after the tail).
  TYPE& GetNext(POSITION& rPosition) { return Step(rPosition, true)->data; }
  const TYPE& GetNext(POSITION& rPosition) const { return Step(rPosition, true)->data; }
  // Returns the element at rPosition and moves rPosition to the previous one (null before the head).
  TYPE& GetPrev(POSITION& rPosition) { return Step(rPosition, false)->data; }
  const TYPE& GetPrev(POSITION& rPosition) const { return Step(rPosition, false)->data; }
  TYPE& GetAt(POSITION position) { return At(u"GetAt", position)->data; }
  const TYPE& GetAt(POSITION position) const { return At(u"GetAt", position)->data; }
  void SetAt(POSITION pos, arg_type newElement) { At(u"SetAt", pos)->data = newElement; }
  void RemoveAt(POSITION position) {
    CNode* pNode = At(u"RemoveAt", position);
    (pNode->pPrev ? pNode->pPrev->pNext : m_pNodeHead) = pNode->pNext;
    (pNode->pNext ? pNode->pNext->pPrev : m_pNodeTail) = pNode->pPrev;
    std::destroy_at(&pNode->data);
    m_pool.Free(pNode);
    if (--m_nCount == 0) RemoveAll();
  }
  // Inserts before or after position; a null position inserts at the head or the tail.
  POSITION InsertBefore(POSITION position, arg_type newElement) {
    if (!position) return AddHead(newElement);
    CNode* pOld = FromPosition(position);
    return ToPosition(Link(pOld->pPrev, pOld, newElement));
  }
  POSITION InsertAfter(POSITION position, arg_type newElement) {
    if (!position) return AddTail(newElement);
    CNode* pOld = FromPosition(position);
    return ToPosition(Link(pOld, pOld->pNext, newElement));
  }

  // The first node after startAfter (or from the head) whose element equals searchValue; null if none.
  POSITION Find(arg_type searchValue, POSITION startAfter = nullptr) const {
    const CNode* pNode = startAfter ? FromPosition(startAfter)->pNext : m_pNodeHead;
    for (; pNode; pNode = pNode->pNext) {
      if (CompareElements(&pNode->data, &searchValue)) return ToPosition(pNode);
    }
    return nullptr;
  }
  // The node at a zero-based index; null when the index is outside the list.
  POSITION FindIndex(INT_PTR nIndex) const noexcept {
    if (nIndex < 0 || nIndex >= m_nCount) return nullptr;
    const CNode* pNode = m_pNodeHead;
    while (nIndex-- > 0) pNode = pNode->pNext;
    return ToPosition(pNode);
  }

  iterator begin() noexcept { return iterator(m_pNodeHead); }
  iterator end() noexcept { return iterator(); }
  const_iterator begin() const noexcept { return const_iterator(m_pNodeHead); }
  const_iterator end() const noexcept { return const_iterator(); }

  void Serialize(CArchive& ar) override {
    CObject::Serialize(ar);
    detail::CheckArchivable<TYPE>();
    if (ar.IsStoring()) {
      ar.WriteCount(static_cast<DWORD_PTR>(m_nCount));
      for (CNode* pNode = m_pNodeHead; pNode; pNode = pNode->pNext) SerializeElements(ar, &pNode->data, 1);
      return;
    }
    const DWORD_PTR nCount = ar.ReadCount();
    constexpr std::size_t kFixed = ArchivedElementSize(static_cast<const TYPE*>(nullptr));
    ar.CheckCount(u"element count", nCount, kFixed ? kFixed : 1);
    std::vector<TYPE> loaded = detail::ReadElements<TYPE>(ar, nCount);
    for (std::size_t i = 0; i < loaded.size(); ++i) Link(m_pNodeTail, nullptr, TYPE(std::move(loaded[i])));
  }
  void Dump(CDumpContext& dc) const override {
    CObject::Dump(dc);
    dc << "with " << m_nCount << " elements";
    if (dc.GetDepth() > 0) {
      INT_PTR i = 0;
      for (const CNode* pNode = m_pNodeHead; pNode; pNode = pNode->pNext) detail::DumpEntry(dc, i++, pNode->data);
    }
    dc << "\n";
  }
  void AssertValid() const override {
    CObject::AssertValid();
    INT_PTR n = 0;
    const CNode* pLast = nullptr;
    for (const CNode* pNode = m_pNodeHead; pNode && n <= m_nCount; pNode = pNode->pNext, ++n) {
      if (pNode->pPrev != pLast) detail::ThrowBadArgument(u"AssertValid", u"CList's links disagree");
      pLast = pNode;
    }
    if (n != m_nCount || pLast != m_pNodeTail) detail::ThrowBadArgument(u"AssertValid", u"CList's count disagrees");
  }
  const CRuntimeClass* GetRuntimeClass() const override { return &classCList; }
  static const CRuntimeClass classCList;

 protected:
  static POSITION ToPosition(const CNode* pNode) noexcept {
    return reinterpret_cast<POSITION>(const_cast<CNode*>(pNode));
  }
  static CNode* FromPosition(POSITION position) noexcept { return reinterpret_cast<CNode*>(position); }

  // A new node holding value, linked between pPrev and pNext (either may be null).
  template <class V>
  CNode* Link(CNode* pPrev, CNode* pNext, V&& value) {
    void* storage = m_pool.Allocate();
    CNode* pNode;
    try {
      pNode = ::new (storage) CNode{pNext, pPrev, TYPE(std::forward<V>(value))};
    } catch (...) {
      m_pool.Free(storage);
      throw;
    }
    (pPrev ? pPrev->pNext : m_pNodeHead) = pNode;
    (pNext ? pNext->pPrev : m_pNodeTail) = pNode;
    ++m_nCount;
    return pNode;
  }

  CNode* m_pNodeHead = nullptr;
  CNode* m_pNodeTail = nullptr;
  INT_PTR m_nCount = 0;

 private:
  CNode* NonEmpty(const char16_t* pszOperation, bool bHead = true) const {
    if (!m_pNodeHead) detail::ThrowBadArgument(pszOperation, u"the list is empty");
    return bHead ? m_pNodeHead : m_pNodeTail;
  }
  static CNode* At(const char16_t* pszOperation, POSITION position) {
    if (!position) detail::ThrowBadArgument(pszOperation, u"null POSITION");
    return FromPosition(position);
  }
  static CNode* Step(POSITION& rPosition, bool bForward) {
    CNode* pNode = At(bForward ? u"GetNext" : u"GetPrev", rPosition);
    rPosition = ToPosition(bForward ? pNode->pNext : pNode->pPrev);
    return pNode;
  }

  detail::NodePool<CNode> m_pool;
};

template <class TYPE, class ARG_TYPE>
const CRuntimeClass CList<TYPE, ARG_TYPE>::classCList = {"CList", static_cast<int>(sizeof(CList<TYPE, ARG_TYPE>)),
                                                         0xFFFF, &CObject::classCObject};

}  // namespace quarrix
