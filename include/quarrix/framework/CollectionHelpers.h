#pragma once
// The helpers behind CArray, CList and CMap, under MFC's names: POSITION, SerializeElements,
// CompareElements, HashKey and DumpElements. An application customises a container for its own element
// type by overloading them in the type's namespace (they are found by argument-dependent lookup).
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CDumpContext.h>
#include <quarrix/framework/CException.h>
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace quarrix {

// The opaque place of an element in a CList or CMap; null means "none" (before the head, after the tail).
struct CPositionTag;
using POSITION = CPositionTag*;

namespace detail {

// How the containers take arguments: ARG_TYPE as given, except that a reference becomes a const reference,
// so that CArray<int, int&>::Add(5) compiles as it does with MSVC.
template <class ARG_TYPE>
using ArgType =
    std::conditional_t<std::is_reference_v<ARG_TYPE>, const std::remove_reference_t<ARG_TYPE>&, ARG_TYPE>;

// Throws CInvalidArgException: "<operation>: index 7 is outside 0..3" (or "... outside an empty <what>").
[[noreturn]] QUARRIX_API void ThrowBadIndex(const char16_t* pszOperation, INT_PTR nIndex, INT_PTR nSize);
// Throws CInvalidArgException with "<operation>: <problem>".
[[noreturn]] QUARRIX_API void ThrowBadArgument(const char16_t* pszOperation, const char16_t* pszProblem);

// Blocks from this size on are advised to the OS for huge pages (see AdviseLargeBlock).
inline constexpr std::size_t kLargeBlock = std::size_t{4} << 20;
// Asks the OS to back the block with huge pages where it can; costs nothing when it cannot.
QUARRIX_API void AdviseLargeBlock(void* p, std::size_t n) noexcept;

// Raw storage for n objects of T; throws CMemoryException when it cannot be had.
template <class T>
T* AllocateRaw(std::size_t n) {
  if (n == 0 || n > SIZE_MAX / sizeof(T)) AfxThrowMemoryException();  // callers never ask for nothing
  void* p;
  try {
    p = ::operator new(n * sizeof(T), std::align_val_t{alignof(T)});
  } catch (const std::bad_alloc&) {
    AfxThrowMemoryException();
  }
  if (n * sizeof(T) >= kLargeBlock) AdviseLargeBlock(p, n * sizeof(T));
  return static_cast<T*>(p);
}
template <class T>
void FreeRaw(T* p) noexcept {
  ::operator delete(p, std::align_val_t{alignof(T)});
}

// The nodes of a list or map, handed out from blocks of nBlockSize (MFC's CPlex): one allocation per block,
// a free list inside, everything released at once when the container becomes empty. The storage is raw:
// the container constructs and destroys its nodes.
template <class Node>
class NodePool {
 public:
  explicit NodePool(INT_PTR nBlockSize) noexcept : m_nBlockSize(nBlockSize > 0 ? nBlockSize : 10) {}
  NodePool(const NodePool&) = delete;
  NodePool& operator=(const NodePool&) = delete;
  ~NodePool() { Release(); }

  void* Allocate() {
    if (!m_pFree) AddBlock();
    Slot* slot = m_pFree;
    m_pFree = slot->pNext;
    return slot->storage;
  }
  void Free(void* p) noexcept {
    auto* slot = reinterpret_cast<Slot*>(p);
    slot->pNext = m_pFree;
    m_pFree = slot;
  }
  void Release() noexcept {
    while (m_pBlocks) {
      Block* next = m_pBlocks->pNext;
      FreeRaw(m_pBlocks);
      m_pBlocks = next;
    }
    m_pFree = nullptr;
  }

 private:
  union Slot {
    Slot* pNext;
    alignas(Node) unsigned char storage[sizeof(Node)];
  };
  struct alignas(Slot) Block {
    Block* pNext;
  };

  void AddBlock() {
    const auto n = static_cast<std::size_t>(m_nBlockSize);
    if (n > (SIZE_MAX - sizeof(Block)) / sizeof(Slot)) AfxThrowMemoryException();
    // One Block header followed by n slots, allocated as whole Blocks.
    const std::size_t blocks = 1 + (n * sizeof(Slot) + sizeof(Block) - 1) / sizeof(Block);
    Block* block = AllocateRaw<Block>(blocks);
    block->pNext = m_pBlocks;
    m_pBlocks = block;
    auto* slots = reinterpret_cast<Slot*>(block + 1);
    for (std::size_t i = n; i-- > 0;) {
      slots[i].pNext = m_pFree;
      m_pFree = &slots[i];
    }
  }

  Block* m_pBlocks = nullptr;
  Slot* m_pFree = nullptr;
  INT_PTR m_nBlockSize;
};

template <class T>
inline constexpr bool kIsPointerLike = std::is_pointer_v<T> || std::is_member_pointer_v<T> || std::is_null_pointer_v<T>;

// Pointers have no archive form: a container of them throws CNotSupportedException before it writes or
// reads anything.
template <class T>
void CheckArchivable() {
  if constexpr (kIsPointerLike<T>) AfxThrowNotSupportedException();
}

}  // namespace detail

// The bytes one element takes in an archive when that is the same for every element, 0 when it varies.
// Loaders use it to check a stored count against the bytes left before they allocate (an element of
// varying size is taken to need at least one byte). Overload it next to a custom SerializeElements.
template <class TYPE>
constexpr std::size_t ArchivedElementSize(const TYPE*) noexcept {
  if constexpr (std::is_trivially_copyable_v<TYPE> && !detail::kIsPointerLike<TYPE>) {
    return sizeof(TYPE);
  } else {
    return 0;
  }
}

// The generic element writer and reader. Plain elements (numbers, enums, other trivially copyable types)
// go as their little-endian memory images, in bulk; an element type with a Serialize(CArchive&) member is
// asked to serialize itself; CString elements use the archive's string form. Anything else, and pointers,
// throw CNotSupportedException. Loading throws endOfFile when the data ends early.
template <class TYPE>
void SerializeElements(CArchive& ar, TYPE* pElements, INT_PTR nCount) {
  if (nCount <= 0) return;
  const auto n = static_cast<std::size_t>(nCount);
  if constexpr (detail::kIsPointerLike<TYPE>) {
    AfxThrowNotSupportedException();
  } else if constexpr (std::is_same_v<std::remove_cv_t<TYPE>, bool>) {
    // One byte each, and any byte that is not 0 loads as true (a raw copy could make an invalid bool).
    for (std::size_t i = 0; i < n; ++i) ar.IsStoring() ? (void)(ar << pElements[i]) : (void)(ar >> pElements[i]);
  } else if constexpr (std::is_arithmetic_v<TYPE> || std::is_enum_v<TYPE>) {
    ar.IsStoring() ? ar.WriteArray(pElements, n) : ar.ReadArray(pElements, n);
  } else if constexpr (std::is_trivially_copyable_v<TYPE>) {
    ar.IsStoring() ? ar.WriteBytes(pElements, n * sizeof(TYPE)) : ar.ReadBytes(pElements, n * sizeof(TYPE));
  } else if constexpr (requires { pElements->Serialize(ar); }) {
    for (std::size_t i = 0; i < n; ++i) pElements[i].Serialize(ar);
  } else {
    AfxThrowNotSupportedException();
  }
}
QUARRIX_API void SerializeElements(CArchive& ar, CString* pElements, INT_PTR nCount);
QUARRIX_API void SerializeElements(CArchive& ar, CStringA* pElements, INT_PTR nCount);

namespace detail {
// Reads nCount elements aside, one at a time, so that memory grows only with the bytes actually read and a
// record that ends early leaves the container untouched.
template <class TYPE>
std::vector<TYPE> ReadElements(CArchive& ar, DWORD_PTR nCount) {
  std::vector<TYPE> loaded;
  for (DWORD_PTR i = 0; i < nCount; ++i) {
    TYPE element{};
    SerializeElements(ar, &element, 1);
    loaded.push_back(std::move(element));
  }
  return loaded;
}
}  // namespace detail

// Equality as Find, Lookup and RemoveKey see it.
template <class TYPE, class ARG_TYPE>
BOOL CompareElements(const TYPE* pElement1, const ARG_TYPE* pElement2) {
  return *pElement1 == *pElement2 ? TRUE : FALSE;
}

// Hash values of map keys; a map puts a key into bucket HashKey(key) % GetHashTableSize(). The value for
// integers is MFC's, because the order of a map in an archive follows it: the key taken as a 32-bit long,
// q and r its quotient and remainder by 127773 (truncating), h = 16807 r - 2836 q, plus 2147483647 when
// negative. Key 0 hashes to 0, key 1 to 16807.
template <class KEY>
  requires(std::is_integral_v<KEY> || std::is_enum_v<KEY>)
constexpr UINT HashKey(KEY key) noexcept {
  std::int64_t k;
  if constexpr (std::is_enum_v<KEY>) {
    k = static_cast<std::int32_t>(static_cast<std::underlying_type_t<KEY>>(key));
  } else {
    k = static_cast<std::int32_t>(key);
  }
  std::int64_t h = 16807 * (k % 127773) - 2836 * (k / 127773);
  if (h < 0) h += 2147483647;
  return static_cast<UINT>(h);
}
// Floating-point keys hash their bit pattern, folded to 32 bits.
template <class KEY>
  requires std::is_floating_point_v<KEY>
constexpr UINT HashKey(KEY key) noexcept {
  if constexpr (sizeof(KEY) == 8) {
    const auto bits = std::bit_cast<std::uint64_t>(key);
    return HashKey(static_cast<std::uint32_t>(bits ^ (bits >> 32)));
  } else {
    return HashKey(std::bit_cast<std::uint32_t>(static_cast<float>(key)));
  }
}
// Pointers hash their address.
template <class KEY>
UINT HashKey(KEY* key) noexcept {
  return static_cast<UINT>(reinterpret_cast<std::uintptr_t>(key) >> 4);
}
namespace detail {
// 32-bit FNV-1a over the code units.
template <class Ch>
constexpr UINT HashUnits(const Ch* p, std::size_t n) noexcept {
  std::uint32_t h = 2166136261u;
  for (std::size_t i = 0; i < n; ++i) {
    h ^= static_cast<std::make_unsigned_t<Ch>>(p[i]);
    h *= 16777619u;
  }
  return h;
}
}  // namespace detail
// Strings hash their text, the same for a CString and a pointer to the same characters.
inline UINT HashKey(const char16_t* key) noexcept {
  return key ? detail::HashUnits(key, std::char_traits<char16_t>::length(key)) : 0;
}
inline UINT HashKey(const char* key) noexcept {
  return key ? detail::HashUnits(key, std::char_traits<char>::length(key)) : 0;
}
inline UINT HashKey(const CString& key) noexcept {
  return detail::HashUnits(key.GetString(), static_cast<std::size_t>(key.GetLength()));
}
inline UINT HashKey(const CStringA& key) noexcept {
  return detail::HashUnits(key.GetString(), static_cast<std::size_t>(key.GetLength()));
}

namespace detail {
// Writes "\n\t[label] = value" when a dump context can print both; nothing otherwise.
template <class Label, class Value>
void DumpEntry(CDumpContext& dc, const Label& label, const Value& value) {
  if constexpr (requires { dc << label << value; }) dc << "\n\t[" << label << "] = " << value;
}
}  // namespace detail

// Writes "\n\t[i] = element" for each element that a dump context can print; nothing for others.
template <class TYPE>
void DumpElements(CDumpContext& dc, const TYPE* pElements, INT_PTR nCount) {
  for (INT_PTR i = 0; i < nCount; ++i) detail::DumpEntry(dc, i, pElements[i]);
}

}  // namespace quarrix
