#pragma once
// CArchive: the buffered binary stream that every Serialize writes to and reads from, with the byte layout of
// the Windows framework's archives, so that files pass between the two platforms unchanged.
#include <quarrix/framework/CException.h>
#include <quarrix/framework/CFile.h>
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <bit>
#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>

namespace quarrix {

namespace detail {

template <class T>
T ToLittleEndian(T v) noexcept {
  if constexpr (std::endian::native == std::endian::big && sizeof(T) > 1) {
    unsigned char bytes[sizeof(T)];
    std::memcpy(bytes, &v, sizeof(T));
    for (std::size_t i = 0; i < sizeof(T) / 2; ++i) std::swap(bytes[i], bytes[sizeof(T) - 1 - i]);
    std::memcpy(&v, bytes, sizeof(T));
  }
  return v;
}

}  // namespace detail

// A stream of bytes over a CFile, either storing (writing) or loading (reading), never both.
//
// Encodings (all multi-byte values little-endian, whatever the host):
// - BYTE, char, bool: 1 byte (bool as 0 or 1; any non-zero byte loads as true); WORD, short, char16_t: 2;
//   int, UINT, LONG, DWORD, float: 4; LONGLONG, ULONGLONG (long on Linux), long long, double: 8.
// - count (WriteCount/ReadCount): n < 0xFFFF as one WORD, otherwise the WORD 0xFFFF and n as a DWORD.
// - CString: FF FE FF (wide text), the length (one byte below 255; else FF and a WORD below 0xFFFE; else
//   FF FF FF and a DWORD), then the UTF-16LE units. Loading also takes the 8-bit form written by older
//   programs (a length without the FF FE marker, then bytes in the ANSI code page).
// - CStringA: the 8-bit form (length as above, no marker, then the bytes).
//
// Failures throw CArchiveException: endOfFile when the data ends before a value does, readOnly for a write
// to a loading archive, writeOnly for a read from a storing one, genericException after Close. A stored
// count or length that the bytes left cannot hold fails with endOfFile before anything is allocated; its
// detail names the value and the offset, e.g. "string length 4294967295 at offset 18 exceeds the 12 bytes
// left" (the offset is where the data would start, right after the length). Errors of the file pass through.
//
// The archive assumes it is the only user of the file's position while it is open. Destroying a storing
// archive flushes it, ignoring errors: call Close() to see them.
class QUARRIX_API CArchive {
 public:
  enum Mode : UINT { store = 0, load = 1, bNoFlushOnDelete = 2, bNoByteSwap = 4 };

  // nBufSize below 64 is raised to 64. lpBuf, when given, is used as the buffer (nBufSize bytes) and stays
  // the caller's.
  CArchive(CFile* pFile, UINT nMode, int nBufSize = 4096, void* lpBuf = nullptr);
  CArchive(const CArchive&) = delete;
  CArchive& operator=(const CArchive&) = delete;
  ~CArchive();

  BOOL IsLoading() const noexcept { return (m_nMode & load) != 0; }
  BOOL IsStoring() const noexcept { return (m_nMode & load) == 0; }
  // Loading: no buffered bytes are left (the file may still hold more). Storing: nothing waits to be written.
  BOOL IsBufferEmpty() const noexcept {
    return IsLoading() ? m_pReadCur == m_pReadEnd : m_pWriteCur == m_lpBufStart;
  }
  CFile* GetFile() const noexcept { return m_pFile; }

  // Reads up to nMax bytes and returns how many were there (fewer only at the end of the data).
  UINT Read(void* lpBuf, UINT nMax);
  void Write(const void* lpBuf, UINT nMax);
  // Storing: writes the buffer to the file. Loading: gives unread buffered bytes back to the file.
  void Flush();
  // Flush, then detach from the file (which stays open). Further use throws.
  void Close();
  // Detaches without flushing and without throwing.
  void Abort() noexcept;

  // The count primitive. A count above 0xFFFFFFFF cannot be stored and throws CInvalidArgException.
  void WriteCount(DWORD_PTR dwCount);
  DWORD_PTR ReadCount();

  // Reads exactly n bytes or throws endOfFile (Read returns fewer instead).
  void ReadBytes(void* p, std::size_t n);
  void WriteBytes(const void* p, std::size_t n);
  // n arithmetic values at once, each in its little-endian image: one copy through the buffer, or none
  // for large blocks, which go straight between the file and the caller's memory.
  template <class T>
  void WriteArray(const T* p, std::size_t n) {
    static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
    if constexpr (std::endian::native == std::endian::little) {
      WriteBytes(p, n * sizeof(T));
    } else {
      for (std::size_t i = 0; i < n; ++i) Put(p[i]);
    }
  }
  template <class T>
  void ReadArray(T* p, std::size_t n) {
    static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
    if constexpr (std::endian::native == std::endian::little) {
      ReadBytes(p, n * sizeof(T));
    } else {
      for (std::size_t i = 0; i < n; ++i) p[i] = Get<T>();
    }
  }

  // Offset in the file of the next byte to read or write.
  ULONGLONG GetPosition() const noexcept;
  // Loading: the bytes between the position and the end of the file. Storing: 0.
  ULONGLONG GetBytesLeft() const;
  // Throws endOfFile, naming pszWhat, nCount and the position, unless nCount items of nBytesEach bytes fit
  // in the bytes left. Loaders call it before they allocate for a stored count.
  void CheckCount(const char16_t* pszWhat, ULONGLONG nCount, ULONGLONG nBytesEach) const;

  CArchive& operator<<(bool b) { return Put<BYTE>(b ? 1 : 0); }
  CArchive& operator<<(char ch) { return Put(ch); }
  CArchive& operator<<(signed char ch) { return Put(ch); }
  CArchive& operator<<(BYTE by) { return Put(by); }
  CArchive& operator<<(short w) { return Put(w); }
  CArchive& operator<<(WORD w) { return Put(w); }
  CArchive& operator<<(char16_t ch) { return Put(ch); }
  CArchive& operator<<(int i) { return Put(i); }
  CArchive& operator<<(UINT u) { return Put(u); }
  CArchive& operator<<(long l) { return Put<std::int64_t>(l); }
  CArchive& operator<<(unsigned long u) { return Put<std::uint64_t>(u); }
  CArchive& operator<<(long long l) { return Put<std::int64_t>(l); }
  CArchive& operator<<(unsigned long long u) { return Put<std::uint64_t>(u); }
  CArchive& operator<<(float f) { return Put(f); }
  CArchive& operator<<(double d) { return Put(d); }
  CArchive& operator<<(const CString& s);
  CArchive& operator<<(const CStringA& s);
  CArchive& operator<<(const char16_t* psz) { return *this << CString(psz); }
  // Any other pointer would silently become a bool.
  template <class T>
  CArchive& operator<<(const T*) = delete;

  CArchive& operator>>(bool& b) {
    b = Get<BYTE>() != 0;
    return *this;
  }
  CArchive& operator>>(char& ch) { return GetInto(ch); }
  CArchive& operator>>(signed char& ch) { return GetInto(ch); }
  CArchive& operator>>(BYTE& by) { return GetInto(by); }
  CArchive& operator>>(short& w) { return GetInto(w); }
  CArchive& operator>>(WORD& w) { return GetInto(w); }
  CArchive& operator>>(char16_t& ch) { return GetInto(ch); }
  CArchive& operator>>(int& i) { return GetInto(i); }
  CArchive& operator>>(UINT& u) { return GetInto(u); }
  CArchive& operator>>(long& l) {
    l = static_cast<long>(Get<std::int64_t>());
    return *this;
  }
  CArchive& operator>>(unsigned long& u) {
    u = static_cast<unsigned long>(Get<std::uint64_t>());
    return *this;
  }
  CArchive& operator>>(long long& l) { return GetInto(l); }
  CArchive& operator>>(unsigned long long& u) { return GetInto(u); }
  CArchive& operator>>(float& f) { return GetInto(f); }
  CArchive& operator>>(double& d) { return GetInto(d); }
  CArchive& operator>>(CString& s);
  CArchive& operator>>(CStringA& s);

  // The path of the file, for messages.
  CString m_strFileName;

 private:
  template <class T>
  CArchive& Put(T v) {
    if (m_pWriteEnd - m_pWriteCur < static_cast<std::ptrdiff_t>(sizeof(T))) MakeRoom();
    v = detail::ToLittleEndian(v);
    std::memcpy(m_pWriteCur, &v, sizeof(T));
    m_pWriteCur += sizeof(T);
    return *this;
  }
  template <class T>
  T Get() {
    if (m_pReadEnd - m_pReadCur < static_cast<std::ptrdiff_t>(sizeof(T))) FillBuffer(sizeof(T));
    T v;
    std::memcpy(&v, m_pReadCur, sizeof(T));
    m_pReadCur += sizeof(T);
    return detail::ToLittleEndian(v);
  }
  template <class T>
  CArchive& GetInto(T& v) {
    v = Get<T>();
    return *this;
  }

  // Storing: writes the buffer out so that at least 8 bytes are free (throws readOnly when loading).
  void MakeRoom();
  // Loading: makes nNeeded bytes available in the buffer or throws endOfFile (writeOnly when storing).
  void FillBuffer(std::size_t nNeeded);
  // Reads a string's length and character size (1 or 2) in either form.
  ULONGLONG ReadStringLength(int& nCharSize);
  void WriteStringLength(ULONGLONG nLength);
  void CheckUsable(bool bLoading) const;
  [[noreturn]] void ThrowEndOfFile(std::size_t nNeeded, std::size_t nLeft) const;

  CFile* m_pFile;
  UINT m_nMode;
  std::unique_ptr<BYTE[]> m_ownBuffer;
  BYTE* m_lpBufStart;
  // Loading reads [m_pReadCur, m_pReadEnd); storing fills [m_lpBufStart, m_pWriteCur) up to m_pWriteEnd.
  // The pair of the other direction stays null, and both do once the archive is closed, so that a wrong-way
  // or late call always falls into the slow path, which reports it.
  BYTE* m_pReadCur = nullptr;
  BYTE* m_pReadEnd = nullptr;
  BYTE* m_pWriteCur = nullptr;
  BYTE* m_pWriteEnd = nullptr;
  std::size_t m_nBufSize;
  // The file's position: loading, that of m_pReadEnd; storing, that of m_lpBufStart.
  ULONGLONG m_nFilePos;
};

}  // namespace quarrix
