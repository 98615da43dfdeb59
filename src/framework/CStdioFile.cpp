#include <quarrix/framework/CStdioFile.h>

#include <quarrix/framework/CodePage.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace quarrix {
namespace {

constexpr std::size_t kReadChunk = 4096;

}  // namespace

CStdioFile::CStdioFile(LPCTSTR lpszFileName, UINT nOpenFlags) {
  CFileException error;
  if (!Open(lpszFileName, nOpenFlags, &error)) throw error;
}

CStdioFile::~CStdioFile() = default;

BOOL CStdioFile::Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError) {
  ResetText();
  m_bText = (nOpenFlags & typeBinary) == 0;
  return CFile::Open(lpszFileName, nOpenFlags & ~(typeText | typeBinary), pError);
}

void CStdioFile::ResetText() noexcept {
  m_readAhead.clear();
  m_nReadPos = 0;
  m_pending.clear();
}

void CStdioFile::DropReadAhead() {
  const std::size_t unread = m_readAhead.size() - m_nReadPos;
  m_readAhead.clear();
  m_nReadPos = 0;
  m_pending.clear();
  if (unread) CFile::Seek(-static_cast<LONGLONG>(unread), current);
}

bool CStdioFile::ReadLineBytes(std::string& line) {
  CheckOpen();
  line.clear();
  for (;;) {
    if (m_nReadPos == m_readAhead.size()) {
      m_readAhead.resize(kReadChunk);
      m_readAhead.resize(CFile::Read(m_readAhead.data(), kReadChunk));
      m_nReadPos = 0;
      if (m_readAhead.empty()) return !line.empty();
    }
    const char* start = m_readAhead.data() + m_nReadPos;
    const std::size_t available = m_readAhead.size() - m_nReadPos;
    const auto* lf = static_cast<const char*>(std::memchr(start, '\n', available));
    const std::size_t take = lf ? static_cast<std::size_t>(lf - start) + 1 : available;
    line.append(start, take);
    m_nReadPos += take;
    if (lf) return true;
  }
}

BOOL CStdioFile::ReadString(CString& rString) {
  rString.Empty();
  std::u16string text;
  if (!m_pending.empty()) {
    text.swap(m_pending);
  } else {
    std::string bytes;
    if (!ReadLineBytes(bytes)) return FALSE;
    if (m_bText && bytes.size() >= 2 && bytes.ends_with("\r\n")) bytes.erase(bytes.size() - 2, 1);
    text = CodePageToUtf16(CP_ACP, bytes);
  }
  if (!text.empty() && text.back() == u'\n') text.pop_back();
  rString = CString(std::move(text));
  return TRUE;
}

LPTSTR CStdioFile::ReadString(LPTSTR lpsz, UINT nMax) {
  if (!lpsz || nMax == 0) return nullptr;
  if (nMax > 1 && m_pending.empty()) {
    std::string bytes;
    if (!ReadLineBytes(bytes)) return nullptr;
    if (m_bText && bytes.ends_with("\r\n")) bytes.erase(bytes.size() - 2, 1);
    m_pending = CodePageToUtf16(CP_ACP, bytes);
  }
  const std::size_t n = std::min<std::size_t>(nMax - 1, m_pending.size());
  std::copy_n(m_pending.data(), n, lpsz);
  lpsz[n] = u'\0';
  m_pending.erase(0, n);
  return lpsz;
}

void CStdioFile::WriteString(LPCTSTR lpsz) {
  if (!lpsz) AfxThrowInvalidArgException(u"WriteString of a null pointer");
  std::string bytes = Utf16ToCodePage(CP_ACP, std::u16string_view(lpsz));
  if (m_bText) {
    std::string translated;
    translated.reserve(bytes.size() + bytes.size() / 16);
    for (char c : bytes) {
      if (c == '\n') translated.push_back('\r');
      translated.push_back(c);
    }
    bytes.swap(translated);
  }
  const char* p = bytes.data();
  for (std::size_t left = bytes.size(); left > 0;) {
    const UINT n = static_cast<UINT>(std::min<std::size_t>(left, std::numeric_limits<UINT>::max()));
    Write(p, n);
    p += n;
    left -= n;
  }
}

UINT CStdioFile::Read(void* lpBuf, UINT nCount) {
  CheckOpen();
  m_pending.clear();
  if (nCount == 0) return 0;
  if (!lpBuf) AfxThrowInvalidArgException(u"Read into a null buffer");
  const std::size_t buffered = std::min<std::size_t>(nCount, m_readAhead.size() - m_nReadPos);
  std::memcpy(lpBuf, m_readAhead.data() + m_nReadPos, buffered);
  m_nReadPos += buffered;
  if (buffered == nCount) return nCount;
  return static_cast<UINT>(buffered) +
         CFile::Read(static_cast<BYTE*>(lpBuf) + buffered, nCount - static_cast<UINT>(buffered));
}

void CStdioFile::Write(const void* lpBuf, UINT nCount) {
  CheckOpen();
  DropReadAhead();
  CFile::Write(lpBuf, nCount);
}

ULONGLONG CStdioFile::Seek(LONGLONG lOff, UINT nFrom) {
  CheckOpen();
  DropReadAhead();
  return CFile::Seek(lOff, nFrom);
}

ULONGLONG CStdioFile::GetPosition() const { return CFile::GetPosition() - (m_readAhead.size() - m_nReadPos); }

void CStdioFile::SetLength(ULONGLONG dwNewLen) {
  CheckOpen();
  DropReadAhead();
  CFile::SetLength(dwNewLen);
}

void CStdioFile::Flush() {
  CheckOpen();
  CFile::Flush();
}

void CStdioFile::Close() {
  ResetText();
  CFile::Close();
}

void CStdioFile::Abort() noexcept {
  ResetText();
  CFile::Abort();
}

}  // namespace quarrix
