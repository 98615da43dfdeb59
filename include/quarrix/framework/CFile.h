#pragma once
// CFile: an unbuffered binary file with MFC's interface, the base of CMemFile and CStdioFile and the file
// beneath every CArchive.
#include <quarrix/framework/CException.h>
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

namespace quarrix {

// A file opened with MFC's mode flags. Paths may use '\' or '/' (a '\' becomes '/' for the OS) and are
// passed to the OS as UTF-8. Operations on an open file throw CFileException on failure; the two-step form
// (default constructor, then Open) reports failure by returning FALSE instead. The object owns its handle and
// closes it when destroyed (ignoring errors: call Close() to see them). Not copyable.
class QUARRIX_API CFile {
 public:
  enum OpenFlags : UINT {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    // Share modes are accepted for source compatibility; Linux has no mandatory sharing, so none is enforced.
    shareCompat = 0x0000,
    shareExclusive = 0x0010,
    shareDenyWrite = 0x0020,
    shareDenyRead = 0x0030,
    shareDenyNone = 0x0040,
    modeNoInherit = 0x0080,  // always in effect: handles are opened close-on-exec
    modeCreate = 0x1000,     // create, or truncate an existing file unless modeNoTruncate is given too
    modeNoTruncate = 0x2000,
    typeText = 0x4000,    // CStdioFile only: CR LF translation in ReadString/WriteString
    typeBinary = 0x8000,  // CStdioFile only: no translation
  };
  enum SeekPosition : UINT { begin = 0, current = 1, end = 2 };

  // The handle of a file that is not open.
  static constexpr int hFileNull = -1;

  CFile() noexcept = default;
  // Opens or throws CFileException.
  CFile(LPCTSTR lpszFileName, UINT nOpenFlags);
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;
  virtual ~CFile();

  // Opens the file; a file that is open already is closed first. On failure returns FALSE, leaves the object
  // closed and, when pError is given, fills it (cause, errno, file name). Opening a folder fails with
  // accessDenied.
  [[nodiscard]] virtual BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr);

  // Reads up to nCount bytes; returns the number read, which is smaller only at the end of the file.
  virtual UINT Read(void* lpBuf, UINT nCount);
  // Writes all nCount bytes or throws (diskFull, accessDenied for a file opened for reading, ...).
  virtual void Write(const void* lpBuf, UINT nCount);
  // Moves the position lOff bytes from begin, current or end; returns the new position. A position before
  // the start throws badSeek; one past the end is allowed (a write there fills the gap with zeros).
  virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
  void SeekToBegin() { Seek(0, begin); }
  ULONGLONG SeekToEnd() { return Seek(0, end); }
  virtual ULONGLONG GetPosition() const;
  virtual ULONGLONG GetLength() const;
  // Cuts or extends (with zeros) the file to dwNewLen bytes and moves the position there, as MFC does.
  virtual void SetLength(ULONGLONG dwNewLen);
  // Commits what was written to the storage device (fsync).
  virtual void Flush();
  // Closes the file; throws CFileException if the OS reports an error. Closing a closed file does nothing.
  virtual void Close();
  // Closes the file and ignores every error.
  virtual void Abort() noexcept;

  // The path as given to Open, the name after its last '\' or '/', and that name without its extension.
  virtual CString GetFilePath() const { return m_strFileName; }
  virtual void SetFilePath(LPCTSTR lpszNewName) { m_strFileName = lpszNewName; }
  CString GetFileName() const;
  CString GetFileTitle() const;

  // Deletes or renames a file; throws CFileException on failure. Rename refuses to replace an existing
  // file, as on Windows.
  static void Remove(LPCTSTR lpszFileName);
  static void Rename(LPCTSTR lpszOldName, LPCTSTR lpszNewName);

  // The OS file descriptor, hFileNull when the file is not open.
  int m_hFile = hFileNull;

 protected:
  // Throws CFileException for an operation on a file that is not open.
  void CheckOpen() const;
  [[noreturn]] void ThrowOsError(int error) const;

  CString m_strFileName;
};

}  // namespace quarrix
