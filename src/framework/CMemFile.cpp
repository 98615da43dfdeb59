#include <quarrix/framework/CMemFile.h>

#include <quarrix/framework/CollectionHelpers.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace quarrix {

CMemFile::CMemFile(UINT nGrowBytes) : m_nGrowBytes(nGrowBytes) {}

CMemFile::CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes) { Attach(lpBuffer, nBufferSize, nGrowBytes); }

CMemFile::~CMemFile() { Release(); }

void CMemFile::Release() noexcept {
  if (m_bAutoDelete) std::free(m_lpBuffer);
  m_lpBuffer = nullptr;
  m_bAutoDelete = true;
  m_nBufferSize = m_nFileSize = m_nPosition = 0;
}

void CMemFile::Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes) {
  Release();
  if (!lpBuffer) nBufferSize = 0;
  m_lpBuffer = lpBuffer;
  m_bAutoDelete = false;
  m_nBufferSize = nBufferSize;
  m_nFileSize = nGrowBytes == 0 ? nBufferSize : 0;
  m_nGrowBytes = nGrowBytes;
}

BYTE* CMemFile::Detach() {
  BYTE* buffer = m_lpBuffer;
  m_lpBuffer = nullptr;
  Release();
  return buffer;
}

std::vector<BYTE> CMemFile::GetBytes() const {
  return m_nFileSize ? std::vector<BYTE>(m_lpBuffer, m_lpBuffer + m_nFileSize) : std::vector<BYTE>();
}

BOOL CMemFile::Open(LPCTSTR, UINT, CFileException*) { AfxThrowNotSupportedException(); }

void CMemFile::Grow(ULONGLONG nNewSize) {
  if (nNewSize <= m_nBufferSize) return;
  if (m_nGrowBytes == 0 || nNewSize > std::numeric_limits<SIZE_T>::max() / 2) AfxThrowMemoryException();
  // Whole steps of nGrowBytes, as MFC grows; but never less than half again the current size, so that an
  // archive written a few bytes at a time costs linear time.
  SIZE_T size = static_cast<SIZE_T>(nNewSize);
  size += (m_nGrowBytes - size % m_nGrowBytes) % m_nGrowBytes;
  size = std::max(size, m_nBufferSize + m_nBufferSize / 2);
  BYTE* grown;
  if (m_bAutoDelete) {
    grown = static_cast<BYTE*>(std::realloc(m_lpBuffer, size));
  } else {
    grown = static_cast<BYTE*>(std::malloc(size));
    if (grown && m_nFileSize) std::memcpy(grown, m_lpBuffer, m_nFileSize);
  }
  if (!grown) AfxThrowMemoryException();
  if (size >= detail::kLargeBlock) detail::AdviseLargeBlock(grown, size);
  m_lpBuffer = grown;
  m_bAutoDelete = true;
  m_nBufferSize = size;
}

UINT CMemFile::Read(void* lpBuf, UINT nCount) {
  if (nCount == 0 || m_nPosition >= m_nFileSize) return 0;
  if (!lpBuf) AfxThrowInvalidArgException(u"Read into a null buffer");
  const SIZE_T n = std::min<SIZE_T>(nCount, m_nFileSize - m_nPosition);
  std::memcpy(lpBuf, m_lpBuffer + m_nPosition, n);
  m_nPosition += n;
  return static_cast<UINT>(n);
}

void CMemFile::Write(const void* lpBuf, UINT nCount) {
  if (nCount == 0) return;
  if (!lpBuf) AfxThrowInvalidArgException(u"Write from a null buffer");
  const ULONGLONG end = static_cast<ULONGLONG>(m_nPosition) + nCount;
  Grow(end);
  // A write beyond the end (after a Seek there) leaves zeros in the gap, as a real file does.
  if (m_nPosition > m_nFileSize) std::memset(m_lpBuffer + m_nFileSize, 0, m_nPosition - m_nFileSize);
  std::memcpy(m_lpBuffer + m_nPosition, lpBuf, nCount);
  m_nPosition = static_cast<SIZE_T>(end);
  m_nFileSize = std::max(m_nFileSize, m_nPosition);
}

ULONGLONG CMemFile::Seek(LONGLONG lOff, UINT nFrom) {
  LONGLONG base;
  switch (nFrom) {
    case begin: base = 0; break;
    case current: base = static_cast<LONGLONG>(m_nPosition); break;
    case end: base = static_cast<LONGLONG>(m_nFileSize); break;
    default: throw CFileException(CFileException::badSeek);
  }
  LONGLONG position;
  if (__builtin_add_overflow(base, lOff, &position) || position < 0) {
    throw CFileException(CFileException::badSeek);
  }
  m_nPosition = static_cast<SIZE_T>(position);
  return m_nPosition;
}

void CMemFile::SetLength(ULONGLONG dwNewLen) {
  Grow(dwNewLen);
  if (dwNewLen > m_nFileSize) std::memset(m_lpBuffer + m_nFileSize, 0, static_cast<SIZE_T>(dwNewLen) - m_nFileSize);
  m_nFileSize = static_cast<SIZE_T>(dwNewLen);
  m_nPosition = std::min(m_nPosition, m_nFileSize);
}

void CMemFile::Close() { Release(); }

void CMemFile::Abort() noexcept { Release(); }

}  // namespace quarrix
