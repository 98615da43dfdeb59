#include <quarrix/framework/CException.h>

#include <quarrix/framework/CodePage.h>
#include <quarrix/framework/LastError.h>
#include <quarrix/framework/MessageBox.h>

#include <algorithm>
#include <cerrno>

namespace quarrix {

CException::~CException() = default;

BOOL CException::GetErrorMessage(char16_t* lpszError, UINT nMaxError, UINT* pnHelpContext) const {
  if (pnHelpContext) *pnHelpContext = 0;
  if (!lpszError || nMaxError == 0) return FALSE;
  const CString text = GetErrorMessage();
  const std::size_t n = std::min<std::size_t>(static_cast<std::size_t>(text.GetLength()), nMaxError - 1);
  std::copy_n(text.GetString(), n, lpszError);
  lpszError[n] = u'\0';
  return TRUE;
}

int CException::ReportError(UINT nType, UINT) const { return AfxMessageBox(GetErrorMessage(), nType); }

const char* CException::what() const noexcept {
  try {
    m_what = Utf16ToUtf8(GetErrorMessage().view());
  } catch (...) {
    return "quarrix::CException";
  }
  return m_what.c_str();
}

CString CMemoryException::GetErrorMessage() const { return u"Out of memory."; }

CString CNotSupportedException::GetErrorMessage() const { return u"Unsupported operation."; }

CString CInvalidArgException::GetErrorMessage() const {
  return m_strDetail.IsEmpty() ? CString(u"Invalid argument.") : u"Invalid argument: " + m_strDetail + u".";
}

CString CFileException::GetErrorMessage() const {
  static constexpr const char16_t* kCauses[] = {
      u"No error",          u"Unexpected file error", u"File not found",   u"Invalid path",
      u"Too many open files", u"Access denied",       u"Invalid file",     u"Cannot remove the current folder",
      u"Folder is full",    u"Seek failed",           u"Hardware I/O error", u"Sharing violation",
      u"Lock violation",    u"Disk full",             u"Attempt to access the file past its end"};
  CString text = m_cause >= 0 && m_cause < static_cast<int>(std::size(kCauses)) ? kCauses[m_cause] : kCauses[1];
  if (!m_strFileName.IsEmpty()) text += u": " + m_strFileName;
  if (m_lOsError > 0) {
    const CString os = GetOsErrorText(m_lOsError);
    text += os.IsEmpty() ? cstringf(u" (error %d)", m_lOsError) : u" (" + os + u")";
  }
  return text + u".";
}

int CFileException::OsErrorToException(LONG lOsError) noexcept {
  switch (lOsError) {
    case 0: return none;
    case ENOENT: return fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case ELOOP:
    case EINVAL: return badPath;
    case EMFILE:
    case ENFILE: return tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case EEXIST: return accessDenied;
    case EBADF: return invalidFile;
    case EBUSY:
    case ETXTBSY: return sharingViolation;
    case ENOTEMPTY: return removeCurrentDir;
    case ENOSPC:
    case EDQUOT:
    case EFBIG: return diskFull;
    case ESPIPE:
    case EOVERFLOW: return badSeek;
    case EIO: return hardIO;
    case EDEADLK:
    case ENOLCK: return lockViolation;
    default: return genericException;
  }
}

void CFileException::ThrowOsError(LONG lOsError, const CString& fileName) {
  throw CFileException(OsErrorToException(lOsError), lOsError, fileName);
}

CString CArchiveException::GetErrorMessage() const {
  static constexpr const char16_t* kCauses[] = {
      u"No error",
      u"Unexpected archive error",
      u"Cannot write to an archive that is loading",
      u"Unexpected end of archive data",
      u"Cannot read from an archive that is storing",
      u"Invalid archive format",
      u"Invalid class in archive",
      u"Unsupported archive schema",
      u"Archive buffer is full"};
  CString text = m_cause >= 0 && m_cause < static_cast<int>(std::size(kCauses)) ? kCauses[m_cause] : kCauses[1];
  if (!m_strFileName.IsEmpty()) text += u": " + m_strFileName;
  if (!m_strDetail.IsEmpty()) text += u" (" + m_strDetail + u")";
  return text + u".";
}

void AfxThrowMemoryException() { throw CMemoryException(); }
void AfxThrowNotSupportedException() { throw CNotSupportedException(); }
void AfxThrowInvalidArgException() { throw CInvalidArgException(); }
void AfxThrowInvalidArgException(const CString& detail) { throw CInvalidArgException(detail); }
void AfxThrowFileException(int cause, LONG lOsError, const CString& fileName) {
  throw CFileException(cause, lOsError, fileName);
}
void AfxThrowArchiveException(int cause, const CString& fileName) { throw CArchiveException(cause, fileName); }

}  // namespace quarrix
