#pragma once
// Growable arrays of trivially copyable values for the matcher's stacks. Unlike std::vector they never
// initialise what they grow and let the hot loop write without a capacity check once room is reserved.
#include <cstring>
#include <new>
#include <type_traits>

namespace quarrix::detail::regex {

// A view of a run of T: pointer and length, no ownership.
template <class T>
class CBufferRefT {
 public:
  CBufferRefT() noexcept = default;
  CBufferRefT(T* data, int size) noexcept : m_pBuffer(data), m_nSize(size) {}

  T* GetBuffer() const noexcept { return m_pBuffer; }
  int GetSize() const noexcept { return m_nSize; }
  T& operator[](int i) const noexcept { return m_pBuffer[i]; }

 protected:
  T* m_pBuffer = nullptr;
  int m_nSize = 0;
};

// Owns its array. Grows to the larger of twice the capacity and 8, or to the needed size rounded up to a
// multiple of 8 when doubling is not enough.
template <class T>
class CBufferT : public CBufferRefT<T> {
  static_assert(std::is_trivially_copyable_v<T>);
  using CBufferRefT<T>::m_pBuffer;
  using CBufferRefT<T>::m_nSize;

 public:
  CBufferT() noexcept = default;
  CBufferT(const CBufferT&) = delete;
  CBufferT& operator=(const CBufferT&) = delete;
  ~CBufferT() { ::operator delete(m_pBuffer); }

  int GetCapacity() const noexcept { return m_nCapacity; }
  void Clear() noexcept { m_nSize = 0; }
  // Makes room for n more elements beyond the size.
  void Reserve(int n) {
    if (m_nSize + n > m_nCapacity) Grow(m_nSize + n);
  }
  // Sets the size; new elements are uninitialised.
  void Resize(int size) {
    if (size > m_nCapacity) Grow(size);
    m_nSize = size;
  }
  void Push(T value) {
    if (m_nSize == m_nCapacity) Grow(m_nSize + 1);
    m_pBuffer[m_nSize++] = value;
  }
  // Appends without a capacity check; Reserve first.
  void PushUnchecked(T value) noexcept { m_pBuffer[m_nSize++] = value; }
  T* End() const noexcept { return m_pBuffer + m_nSize; }

 private:
  void Grow(int needed) {
    int capacity = m_nCapacity * 2 > 8 ? m_nCapacity * 2 : 8;
    if (capacity < needed) capacity = (needed + 7) / 8 * 8;
    T* p = static_cast<T*>(::operator new(static_cast<std::size_t>(capacity) * sizeof(T)));
    if (m_nSize > 0) std::memcpy(p, m_pBuffer, static_cast<std::size_t>(m_nSize) * sizeof(T));
    ::operator delete(m_pBuffer);
    m_pBuffer = p;
    m_nCapacity = capacity;
  }

  int m_nCapacity = 0;
};

}  // namespace quarrix::detail::regex
