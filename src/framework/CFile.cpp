#include <quarrix/framework/CFile.h>
#include <quarrix/framework/NativePath.h>

#include "internal/FileIo.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>

namespace quarrix {

CFile::CFile(LPCTSTR lpszFileName, UINT nOpenFlags) {
  CFileException error;
  if (!Open(lpszFileName, nOpenFlags, &error)) throw error;
}

CFile::~CFile() { CFile::Abort(); }

BOOL CFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError) {
  Abort();
  m_strFileName = lpszFileName;
  int fd = hFileNull;
  const int error = detail::FileOpen(ToNativePath(m_strFileName), nOpenFlags, fd);
  if (error != 0) {
    if (pError) {
      // Mode bits that name no access (modeWrite | modeReadWrite) are the caller's fault, not the path's.
      const bool badFlags = error == EINVAL && (nOpenFlags & 3) == 3;
      pError->m_cause = badFlags ? CFileException::genericException : CFileException::OsErrorToException(error);
      pError->m_lOsError = error;
      pError->m_strFileName = m_strFileName;
    }
    return FALSE;
  }
  m_hFile = fd;
  return TRUE;
}

void CFile::CheckOpen() const {
  if (m_hFile == hFileNull) throw CFileException(CFileException::invalidFile, EBADF, m_strFileName);
}

void CFile::ThrowOsError(int error) const { CFileException::ThrowOsError(error, m_strFileName); }

UINT CFile::Read(void* lpBuf, UINT nCount) {
  CheckOpen();
  if (nCount == 0) return 0;
  if (!lpBuf) AfxThrowInvalidArgException(u"Read into a null buffer");
  std::size_t got = 0;
  if (const int error = detail::FileRead(m_hFile, lpBuf, nCount, got)) ThrowOsError(error);
  return static_cast<UINT>(got);
}

void CFile::Write(const void* lpBuf, UINT nCount) {
  CheckOpen();
  if (nCount == 0) return;
  if (!lpBuf) AfxThrowInvalidArgException(u"Write from a null buffer");
  if (const int error = detail::FileWrite(m_hFile, lpBuf, nCount)) {
    // A descriptor opened read-only gives EBADF; Windows calls that access denied.
    if (error == EBADF) throw CFileException(CFileException::accessDenied, error, m_strFileName);
    ThrowOsError(error);
  }
}

ULONGLONG CFile::Seek(LONGLONG lOff, UINT nFrom) {
  CheckOpen();
  ULONGLONG position = 0;
  if (const int error = detail::FileSeek(m_hFile, lOff, static_cast<int>(nFrom), position)) {
    throw CFileException(error == EINVAL ? CFileException::badSeek : CFileException::OsErrorToException(error),
                         error, m_strFileName);
  }
  return position;
}

ULONGLONG CFile::GetPosition() const {
  CheckOpen();
  ULONGLONG position = 0;
  if (const int error = detail::FileSeek(m_hFile, 0, current, position)) ThrowOsError(error);
  return position;
}

ULONGLONG CFile::GetLength() const {
  CheckOpen();
  ULONGLONG size = 0;
  if (const int error = detail::FileSize(m_hFile, size)) ThrowOsError(error);
  return size;
}

void CFile::SetLength(ULONGLONG dwNewLen) {
  CheckOpen();
  if (dwNewLen > static_cast<ULONGLONG>(INT64_MAX)) throw CFileException(CFileException::badSeek, EINVAL, m_strFileName);
  Seek(static_cast<LONGLONG>(dwNewLen), begin);
  if (const int error = detail::FileTruncate(m_hFile, dwNewLen)) {
    if (error == EBADF || error == EINVAL) throw CFileException(CFileException::accessDenied, error, m_strFileName);
    ThrowOsError(error);
  }
}

void CFile::Flush() {
  CheckOpen();
  if (const int error = detail::FileSync(m_hFile)) ThrowOsError(error);
}

void CFile::Close() {
  if (m_hFile == hFileNull) return;
  const int fd = m_hFile;
  m_hFile = hFileNull;
  if (const int error = detail::FileClose(fd)) ThrowOsError(error);
}

void CFile::Abort() noexcept {
  if (m_hFile == hFileNull) return;
  detail::FileClose(m_hFile);
  m_hFile = hFileNull;
}

CString CFile::GetFileName() const {
  const CString path = GetFilePath();
  const int slash = std::max(path.ReverseFind(u'\\'), path.ReverseFind(u'/'));
  return path.Mid(slash + 1);
}

CString CFile::GetFileTitle() const {
  CString name = GetFileName();
  const int dot = name.ReverseFind(u'.');
  return dot < 0 ? name : name.Left(dot);
}

void CFile::Remove(LPCTSTR lpszFileName) {
  const CString path(lpszFileName);
  if (const int error = detail::FileRemove(ToNativePath(path))) CFileException::ThrowOsError(error, path);
}

void CFile::Rename(LPCTSTR lpszOldName, LPCTSTR lpszNewName) {
  const CString from(lpszOldName);
  if (const int error = detail::FileRename(ToNativePath(from), ToNativePath(CString(lpszNewName)))) {
    CFileException::ThrowOsError(error, from);
  }
}

}  // namespace quarrix
