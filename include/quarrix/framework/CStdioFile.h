#pragma once
// CStdioFile: a CFile that reads and writes lines of text, for the text files the Windows applications
// exchange (CR LF line ends, 8-bit text in the ANSI code page).
#include <quarrix/framework/CFile.h>
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <string>

namespace quarrix {

// Text mode is the default (and what CFile::typeText asks for); CFile::typeBinary turns the translation off.
// In text mode ReadString drops a CR that stands right before the LF and WriteString writes each LF as
// CR LF; a lone CR is text like any other. Line text is converted with the ANSI code page (GetAnsiCodePage).
// Read and Write move raw bytes in both modes. Reading is buffered; writing goes straight to the file.
class QUARRIX_API CStdioFile : public CFile {
 public:
  CStdioFile() noexcept = default;
  // Opens or throws CFileException.
  CStdioFile(LPCTSTR lpszFileName, UINT nOpenFlags);
  ~CStdioFile() override;

  BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr) override;

  // Reads the next line into rString without its line end (LF, or CR LF in text mode). Returns FALSE, with
  // rString empty, when the end of the file comes before any character.
  BOOL ReadString(CString& rString);
  // fgets' form: reads at most nMax - 1 units into lpsz, stopping after the LF, which is kept (CR LF comes
  // out as LF in text mode), and ends them with a NUL. Returns lpsz, or null at the end of the file or
  // when nMax is 0. The rest of a line that did not fit is returned by the next ReadString; the file's
  // position is then already past that line.
  LPTSTR ReadString(LPTSTR lpsz, UINT nMax);
  // Writes the text, each LF as CR LF in text mode. Throws CInvalidArgException for a null pointer.
  void WriteString(LPCTSTR lpsz);

  UINT Read(void* lpBuf, UINT nCount) override;
  void Write(const void* lpBuf, UINT nCount) override;
  ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
  ULONGLONG GetPosition() const override;
  void SetLength(ULONGLONG dwNewLen) override;
  void Flush() override;
  void Close() override;
  void Abort() noexcept override;

 private:
  // Reads raw bytes up to and including the next LF (or to the end of the file); false if none are left.
  bool ReadLineBytes(std::string& line);
  // Gives the read-ahead back to the file, so that its position is the logical one again.
  void DropReadAhead();
  void ResetText() noexcept;

  bool m_bText = true;
  std::string m_readAhead;  // bytes read from the file and not consumed yet, from m_nReadPos on
  std::size_t m_nReadPos = 0;
  std::u16string m_pending;  // the rest of a line that the pointer form of ReadString could not take
};

}  // namespace quarrix
