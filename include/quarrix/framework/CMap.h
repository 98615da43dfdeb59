#pragma once
// CMap: MFC's hash map, with MFC's bucket order, because archived maps list their pairs in that order.
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CObject.h>
#include <quarrix/framework/CollectionHelpers.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace quarrix {

// A hash map with MFC's interface and MFC's layout: a fixed table of buckets (17 unless InitHashTable says
// otherwise; the table is allocated at the first insertion and never grows by itself), key k in bucket
// HashKey(k) % GetHashTableSize(), a new pair linked at the head of its bucket's chain. Iteration
// (GetNextAssoc, PGetNextAssoc, range-based for) and the archive visit bucket 0 upward and each chain from
// its head. For a large map call InitHashTable with a size about a fifth above the expected count (a prime
// is best), as with MFC; a map of many keys in 17 buckets is slow. Pairs come from blocks of nBlockSize
// (10 by default). A null POSITION passed to GetNextAssoc throws CInvalidArgException. Not copyable.
//
// Archive layout: the count (WriteCount), then key and value of every pair in iteration order through
// SerializeElements. Loading sets map[key] = value for each stored pair in stream order (it does not empty
// the map first); the pairs are read aside and set only when all of them were there, so a damaged record
// leaves the map as it was.
template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
class QUARRIX_API CMap : public CObject {
 public:
  using arg_key = detail::ArgType<ARG_KEY>;
  using arg_value = detail::ArgType<ARG_VALUE>;

  class CPair {
   public:
    const KEY key;
    VALUE value;

   protected:
    explicit CPair(arg_key keyval) : key(keyval), value() {}
  };

 protected:
  class CAssoc : public CPair {
   public:
    explicit CAssoc(arg_key keyval) : CPair(keyval) {}
    CAssoc* pNext = nullptr;
    UINT nHashValue = 0;
  };

  template <class Pair>
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = CPair;
    using difference_type = std::ptrdiff_t;
    using pointer = Pair*;
    using reference = Pair&;

    Iterator() noexcept = default;
    Iterator(const CMap* pMap, CAssoc* pAssoc) noexcept : m_pMap(pMap), m_pAssoc(pAssoc) {}
    reference operator*() const noexcept { return *m_pAssoc; }
    pointer operator->() const noexcept { return m_pAssoc; }
    Iterator& operator++() noexcept {
      m_pAssoc = m_pMap->NextAssoc(m_pAssoc);
      return *this;
    }
    Iterator operator++(int) noexcept {
      Iterator old = *this;
      ++*this;
      return old;
    }
    friend bool operator==(const Iterator& a, const Iterator& b) noexcept { return a.m_pAssoc == b.m_pAssoc; }

   private:
    const CMap* m_pMap = nullptr;
    CAssoc* m_pAssoc = nullptr;
  };

 public:
  using iterator = Iterator<CPair>;
  using const_iterator = Iterator<const CPair>;

  explicit CMap(INT_PTR nBlockSize = 10) noexcept : m_pool(nBlockSize) {}
  CMap(const CMap&) = delete;
  CMap& operator=(const CMap&) = delete;
  ~CMap() override { RemoveAll(); }

  INT_PTR GetCount() const noexcept { return m_nCount; }
  INT_PTR GetSize() const noexcept { return m_nCount; }
  BOOL IsEmpty() const noexcept { return m_nCount == 0; }

  // Copies the value of key into rValue and returns TRUE, or returns FALSE and leaves rValue alone.
  BOOL Lookup(arg_key key, VALUE& rValue) const {
    UINT nBucket, nHashValue;
    const CAssoc* pAssoc = GetAssocAt(key, nBucket, nHashValue);
    if (!pAssoc) return FALSE;
    rValue = pAssoc->value;
    return TRUE;
  }
  // The pair of key, or null.
  const CPair* PLookup(arg_key key) const {
    UINT nBucket, nHashValue;
    return GetAssocAt(key, nBucket, nHashValue);
  }
  CPair* PLookup(arg_key key) {
    UINT nBucket, nHashValue;
    return GetAssocAt(key, nBucket, nHashValue);
  }
  // The value of key, inserted (value-initialised) if the map does not hold the key yet.
  VALUE& operator[](arg_key key) {
    UINT nBucket, nHashValue;
    CAssoc* pAssoc = GetAssocAt(key, nBucket, nHashValue);
    if (pAssoc) return pAssoc->value;
    if (!m_pHashTable) InitHashTable(m_nHashTableSize);
    void* storage = m_pool.Allocate();
    try {
      pAssoc = ::new (storage) CAssoc(key);
    } catch (...) {
      m_pool.Free(storage);
      throw;
    }
    pAssoc->nHashValue = nHashValue;
    pAssoc->pNext = m_pHashTable[nBucket];
    m_pHashTable[nBucket] = pAssoc;
    ++m_nCount;
    return pAssoc->value;
  }
  void SetAt(arg_key key, arg_value newValue) { (*this)[key] = newValue; }
  // Removes key; FALSE if the map does not hold it.
  BOOL RemoveKey(arg_key key) {
    if (!m_pHashTable) return FALSE;
    const UINT nHashValue = HashKey(key);
    for (CAssoc** ppLink = &m_pHashTable[nHashValue % m_nHashTableSize]; *ppLink; ppLink = &(*ppLink)->pNext) {
      CAssoc* pAssoc = *ppLink;
      if (!CompareElements(&pAssoc->key, &key)) continue;
      *ppLink = pAssoc->pNext;
      std::destroy_at(pAssoc);
      m_pool.Free(pAssoc);
      if (--m_nCount == 0) RemoveAll();
      return TRUE;
    }
    return FALSE;
  }
  // Removes every pair and releases the table; the table size stays.
  void RemoveAll() noexcept {
    if (m_pHashTable) {
      for (UINT b = 0; b < m_nHashTableSize; ++b) {
        for (CAssoc* pAssoc = m_pHashTable[b]; pAssoc;) {
          CAssoc* pNext = pAssoc->pNext;
          std::destroy_at(pAssoc);
          pAssoc = pNext;
        }
      }
      detail::FreeRaw(m_pHashTable);
      m_pHashTable = nullptr;
    }
    m_pool.Release();
    m_nCount = 0;
  }

  // The first pair of the iteration order, null when the map is empty.
  POSITION GetStartPosition() const noexcept { return ToPosition(FirstAssoc()); }
  // Copies the pair at rNextPosition and moves rNextPosition to the next pair (null after the last).
  void GetNextAssoc(POSITION& rNextPosition, KEY& rKey, VALUE& rValue) const {
    if (!rNextPosition) detail::ThrowBadArgument(u"GetNextAssoc", u"null POSITION");
    CAssoc* pAssoc = reinterpret_cast<CAssoc*>(rNextPosition);
    rKey = pAssoc->key;
    rValue = pAssoc->value;
    rNextPosition = ToPosition(NextAssoc(pAssoc));
  }
  const CPair* PGetFirstAssoc() const noexcept { return FirstAssoc(); }
  CPair* PGetFirstAssoc() noexcept { return FirstAssoc(); }
  // The pair after pAssocRet (which must be a pair of this map), null after the last.
  const CPair* PGetNextAssoc(const CPair* pAssocRet) const {
    if (!pAssocRet) detail::ThrowBadArgument(u"PGetNextAssoc", u"null pair");
    return NextAssoc(static_cast<const CAssoc*>(pAssocRet));
  }
  CPair* PGetNextAssoc(const CPair* pAssocRet) {
    if (!pAssocRet) detail::ThrowBadArgument(u"PGetNextAssoc", u"null pair");
    return NextAssoc(static_cast<const CAssoc*>(pAssocRet));
  }

  UINT GetHashTableSize() const noexcept { return m_nHashTableSize; }
  // Sets the number of buckets, allocating them now or at the first insertion. Only an empty map can be
  // given a new table (CInvalidArgException otherwise), and the size must be at least 1.
  void InitHashTable(UINT hashSize, BOOL bAllocNow = TRUE) {
    if (m_nCount != 0) detail::ThrowBadArgument(u"InitHashTable", u"the map is not empty");
    if (hashSize == 0) detail::ThrowBadArgument(u"InitHashTable", u"a table needs at least one bucket");
    detail::FreeRaw(m_pHashTable);
    m_pHashTable = nullptr;
    m_nHashTableSize = hashSize;
    if (bAllocNow) {
      m_pHashTable = detail::AllocateRaw<CAssoc*>(hashSize);
      std::memset(static_cast<void*>(m_pHashTable), 0, sizeof(CAssoc*) * hashSize);
    }
  }

  iterator begin() noexcept { return iterator(this, FirstAssoc()); }
  iterator end() noexcept { return iterator(this, nullptr); }
  const_iterator begin() const noexcept { return const_iterator(this, FirstAssoc()); }
  const_iterator end() const noexcept { return const_iterator(this, nullptr); }

  void Serialize(CArchive& ar) override {
    CObject::Serialize(ar);
    detail::CheckArchivable<KEY>();
    detail::CheckArchivable<VALUE>();
    if (ar.IsStoring()) {
      ar.WriteCount(static_cast<DWORD_PTR>(m_nCount));
      for (CAssoc* pAssoc = FirstAssoc(); pAssoc; pAssoc = NextAssoc(pAssoc)) {
        SerializeElements(ar, const_cast<KEY*>(&pAssoc->key), 1);
        SerializeElements(ar, &pAssoc->value, 1);
      }
      return;
    }
    const DWORD_PTR nCount = ar.ReadCount();
    constexpr std::size_t kKeySize = ArchivedElementSize(static_cast<const KEY*>(nullptr));
    constexpr std::size_t kValueSize = ArchivedElementSize(static_cast<const VALUE*>(nullptr));
    ar.CheckCount(u"pair count", nCount, (kKeySize ? kKeySize : 1) + (kValueSize ? kValueSize : 1));
    // Read aside first, one pair at a time, so that a damaged record sets nothing.
    std::vector<std::pair<KEY, VALUE>> loaded;
    for (DWORD_PTR i = 0; i < nCount; ++i) {
      std::pair<KEY, VALUE> pair{};
      SerializeElements(ar, &pair.first, 1);
      SerializeElements(ar, &pair.second, 1);
      loaded.push_back(std::move(pair));
    }
    for (auto& [key, value] : loaded) (*this)[key] = std::move(value);
  }
  void Dump(CDumpContext& dc) const override {
    CObject::Dump(dc);
    dc << "with " << m_nCount << " elements";
    if (dc.GetDepth() > 0) {
      for (const CAssoc* pAssoc = FirstAssoc(); pAssoc; pAssoc = NextAssoc(pAssoc)) {
        detail::DumpEntry(dc, pAssoc->key, pAssoc->value);
      }
    }
    dc << "\n";
  }
  void AssertValid() const override {
    CObject::AssertValid();
    INT_PTR n = 0;
    for (const CAssoc* pAssoc = FirstAssoc(); pAssoc && n <= m_nCount; pAssoc = NextAssoc(pAssoc)) ++n;
    if (n != m_nCount || m_nHashTableSize == 0) {
      detail::ThrowBadArgument(u"AssertValid", u"CMap's count disagrees with its buckets");
    }
  }
  const CRuntimeClass* GetRuntimeClass() const override { return &classCMap; }
  static const CRuntimeClass classCMap;

 protected:
  static POSITION ToPosition(const CAssoc* pAssoc) noexcept {
    return reinterpret_cast<POSITION>(const_cast<CAssoc*>(pAssoc));
  }
  // The pair of key, with its bucket and hash value for an insertion that may follow.
  CAssoc* GetAssocAt(arg_key key, UINT& nBucket, UINT& nHashValue) const {
    nHashValue = HashKey(key);
    nBucket = nHashValue % m_nHashTableSize;
    if (!m_pHashTable) return nullptr;
    for (CAssoc* pAssoc = m_pHashTable[nBucket]; pAssoc; pAssoc = pAssoc->pNext) {
      if (CompareElements(&pAssoc->key, &key)) return pAssoc;
    }
    return nullptr;
  }
  CAssoc* FirstBucketFrom(UINT nBucket) const noexcept {
    if (!m_pHashTable) return nullptr;
    for (; nBucket < m_nHashTableSize; ++nBucket) {
      if (m_pHashTable[nBucket]) return m_pHashTable[nBucket];
    }
    return nullptr;
  }
  CAssoc* FirstAssoc() const noexcept { return FirstBucketFrom(0); }
  CAssoc* NextAssoc(const CAssoc* pAssoc) const noexcept {
    return pAssoc->pNext ? pAssoc->pNext : FirstBucketFrom(pAssoc->nHashValue % m_nHashTableSize + 1);
  }

  CAssoc** m_pHashTable = nullptr;
  UINT m_nHashTableSize = 17;
  INT_PTR m_nCount = 0;

 private:
  detail::NodePool<CAssoc> m_pool;
};

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
const CRuntimeClass CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>::classCMap = {
    "CMap", static_cast<int>(sizeof(CMap<KEY, ARG_KEY, VALUE, ARG_VALUE>)), 0xFFFF, &CObject::classCObject};

}  // namespace quarrix
