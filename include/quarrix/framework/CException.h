#pragma once
// The framework's exception family, thrown by value and caught by reference:
// CException (from std::exception) with CMemoryException, CInvalidArgException, CNotSupportedException,
// CFileException and CArchiveException. The library's domain exceptions (CBaseException) stand apart.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <exception>
#include <string>

namespace quarrix {

class QUARRIX_API CException : public std::exception {
 public:
  CException() = default;
  CException(const CException&) = default;
  CException& operator=(const CException&) = default;
  ~CException() override;

  // The text a message box would show for this exception.
  virtual CString GetErrorMessage() const = 0;
  // MFC's form: copies at most nMaxError - 1 units and a NUL; the help context is always 0.
  BOOL GetErrorMessage(char16_t* lpszError, UINT nMaxError, UINT* pnHelpContext = nullptr) const;
  // Shows GetErrorMessage() through AfxMessageBox and returns the button chosen.
  int ReportError(UINT nType = 0, UINT nMessageID = 0) const;
  // Kept for ported code: exceptions are values here, so there is nothing to free.
  void Delete() noexcept {}
  // GetErrorMessage() as UTF-8.
  const char* what() const noexcept override;

 private:
  mutable std::string m_what;
};

class QUARRIX_API CMemoryException : public CException {
 public:
  CString GetErrorMessage() const override;
};

class QUARRIX_API CNotSupportedException : public CException {
 public:
  CString GetErrorMessage() const override;
};

// An argument out of its range (an index beyond a container or string, a negative size, ...).
class QUARRIX_API CInvalidArgException : public CException {
 public:
  CInvalidArgException() = default;
  explicit CInvalidArgException(CString detail) : m_strDetail(std::move(detail)) {}
  CString GetErrorMessage() const override;
  const CString& GetDetail() const noexcept { return m_strDetail; }

 private:
  CString m_strDetail;  // what was wrong, for example "index 7 is outside 0..3"
};

class QUARRIX_API CFileException : public CException {
 public:
  enum {
    none = 0,
    genericException = 1,
    fileNotFound = 2,
    badPath = 3,
    tooManyOpenFiles = 4,
    accessDenied = 5,
    invalidFile = 6,
    removeCurrentDir = 7,
    directoryFull = 8,
    badSeek = 9,
    hardIO = 10,
    sharingViolation = 11,
    lockViolation = 12,
    diskFull = 13,
    endOfFile = 14,
  };

  explicit CFileException(int cause = none, LONG lOsError = -1, CString fileName = CString())
      : m_cause(cause), m_lOsError(lOsError), m_strFileName(std::move(fileName)) {}
  CString GetErrorMessage() const override;

  // The cause that an errno value stands for (genericException for anything unusual).
  static int OsErrorToException(LONG lOsError) noexcept;
  [[noreturn]] static void ThrowOsError(LONG lOsError, const CString& fileName = CString());

  int m_cause;
  LONG m_lOsError;  // the errno value behind the failure, -1 when there is none
  CString m_strFileName;
};

class QUARRIX_API CArchiveException : public CException {
 public:
  enum {
    none = 0,
    genericException = 1,
    readOnly = 2,   // writing to an archive that is loading
    endOfFile = 3,  // reading past the end of the data
    writeOnly = 4,  // reading from an archive that is storing
    badIndex = 5,
    badClass = 6,
    badSchema = 7,
    bufferFull = 8,
  };

  explicit CArchiveException(int cause = none, CString fileName = CString(), CString detail = CString())
      : m_cause(cause), m_strFileName(std::move(fileName)), m_strDetail(std::move(detail)) {}
  CString GetErrorMessage() const override;

  int m_cause;
  CString m_strFileName;
  CString m_strDetail;  // where and why, for example "string length 4294967295 at offset 18 exceeds ..."
};

[[noreturn]] QUARRIX_API void AfxThrowMemoryException();
[[noreturn]] QUARRIX_API void AfxThrowNotSupportedException();
[[noreturn]] QUARRIX_API void AfxThrowInvalidArgException();
[[noreturn]] QUARRIX_API void AfxThrowInvalidArgException(const CString& detail);
[[noreturn]] QUARRIX_API void AfxThrowFileException(int cause, LONG lOsError = -1,
                                                    const CString& fileName = CString());
[[noreturn]] QUARRIX_API void AfxThrowArchiveException(int cause, const CString& fileName = CString());

}  // namespace quarrix
