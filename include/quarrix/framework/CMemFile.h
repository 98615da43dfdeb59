#pragma once
// CMemFile: a file held in memory, the usual home of an archive that is built or parsed in one piece.
#include <quarrix/framework/CFile.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <vector>

namespace quarrix {

// A growable file in memory with MFC's interface. Its handle stays hFileNull and Open is not supported.
//
// Ownership: memory the file allocates itself is released by Close() and the destructor, or handed to the
// caller by Detach() (release it with free()). A buffer given to Attach() stays the caller's: it is never
// freed or reallocated here. When an attached buffer is too small and growing is allowed, the contents move
// to memory of the file's own and the caller's buffer is left as it was.
class QUARRIX_API CMemFile : public CFile {
 public:
  // An empty file that grows in steps of at least nGrowBytes (0: it cannot grow, every write throws).
  explicit CMemFile(UINT nGrowBytes = 1024);
  // The same as Attach(lpBuffer, nBufferSize, nGrowBytes).
  CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
  ~CMemFile() override;

  // Uses the caller's buffer. nGrowBytes 0: the file is the whole buffer (length nBufferSize) and cannot
  // grow, so a write past its end throws CMemoryException. Otherwise the file starts empty, with the buffer
  // as its first storage. Whatever the file held before is released.
  void Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
  // Hands the storage to the caller and leaves the file empty; null when there is none.
  BYTE* Detach();
  // A copy of the file's bytes (GetLength() of them).
  std::vector<BYTE> GetBytes() const;
  // The bytes without copying; valid until the next write, SetLength, Close or Detach.
  const BYTE* GetData() const noexcept { return m_lpBuffer; }

  BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr) override;
  UINT Read(void* lpBuf, UINT nCount) override;
  void Write(const void* lpBuf, UINT nCount) override;
  ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
  ULONGLONG GetPosition() const override { return m_nPosition; }
  ULONGLONG GetLength() const override { return m_nFileSize; }
  // Cuts or extends (with zeros) to dwNewLen bytes; a position beyond the new end moves to it.
  void SetLength(ULONGLONG dwNewLen) override;
  void Flush() override {}
  // Releases the storage (when it is the file's own) and leaves the file empty.
  void Close() override;
  void Abort() noexcept override;

 private:
  void Release() noexcept;
  // Makes room for nNewSize bytes; throws CMemoryException when the file cannot grow.
  void Grow(ULONGLONG nNewSize);

  BYTE* m_lpBuffer = nullptr;
  SIZE_T m_nBufferSize = 0;
  SIZE_T m_nFileSize = 0;
  SIZE_T m_nPosition = 0;
  UINT m_nGrowBytes = 1024;
  bool m_bAutoDelete = true;  // the storage is the file's own
};

}  // namespace quarrix
