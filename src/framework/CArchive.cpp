#include <quarrix/framework/CArchive.h>

#include <quarrix/framework/CodePage.h>

#include <algorithm>
#include <limits>
#include <string>

namespace quarrix {
namespace {

constexpr std::size_t kMinBufSize = 64;
// The largest block handed to CFile::Read/Write in one call (their counts are UINT).
constexpr std::size_t kMaxFileChunk = std::size_t{1} << 30;

}  // namespace

CArchive::CArchive(CFile* pFile, UINT nMode, int nBufSize, void* lpBuf) : m_pFile(pFile), m_nMode(nMode) {
  if (!pFile) AfxThrowInvalidArgException(u"CArchive over a null file");
  m_strFileName = pFile->GetFilePath();
  m_nBufSize = std::max<std::size_t>(kMinBufSize, nBufSize > 0 ? static_cast<std::size_t>(nBufSize) : 0);
  if (lpBuf && nBufSize >= static_cast<int>(kMinBufSize)) {
    m_lpBufStart = static_cast<BYTE*>(lpBuf);
  } else {
    m_ownBuffer = std::make_unique_for_overwrite<BYTE[]>(m_nBufSize);
    m_lpBufStart = m_ownBuffer.get();
  }
  m_nFilePos = pFile->GetPosition();
  if (IsLoading()) {
    m_pReadCur = m_pReadEnd = m_lpBufStart;
  } else {
    m_pWriteCur = m_lpBufStart;
    m_pWriteEnd = m_lpBufStart + m_nBufSize;
  }
}

CArchive::~CArchive() {
  if (m_pFile && !(m_nMode & bNoFlushOnDelete)) {
    try {
      Close();
    } catch (...) {
      // A destructor cannot report; Close() is there for callers who want to know.
    }
  }
}

void CArchive::CheckUsable(bool bLoading) const {
  if (!m_pFile) throw CArchiveException(CArchiveException::genericException, m_strFileName, u"the archive is closed");
  if (bLoading && !IsLoading()) throw CArchiveException(CArchiveException::writeOnly, m_strFileName);
  if (!bLoading && IsLoading()) throw CArchiveException(CArchiveException::readOnly, m_strFileName);
}

void CArchive::ThrowEndOfFile(std::size_t nNeeded, std::size_t nLeft) const {
  throw CArchiveException(CArchiveException::endOfFile, m_strFileName,
                          cstringf(u"%llu bytes at offset %llu exceed the %llu bytes left",
                                   static_cast<ULONGLONG>(nNeeded), GetPosition(), static_cast<ULONGLONG>(nLeft)));
}

ULONGLONG CArchive::GetPosition() const noexcept {
  if (!m_pFile) return m_nFilePos;  // closed: the buffer pointers are gone
  return IsLoading() ? m_nFilePos - static_cast<ULONGLONG>(m_pReadEnd - m_pReadCur)
                     : m_nFilePos + static_cast<ULONGLONG>(m_pWriteCur - m_lpBufStart);
}

ULONGLONG CArchive::GetBytesLeft() const {
  if (!IsLoading() || !m_pFile) return 0;
  const ULONGLONG length = m_pFile->GetLength();
  return static_cast<ULONGLONG>(m_pReadEnd - m_pReadCur) + (length > m_nFilePos ? length - m_nFilePos : 0);
}

void CArchive::CheckCount(const char16_t* pszWhat, ULONGLONG nCount, ULONGLONG nBytesEach) const {
  CheckUsable(true);
  if (nCount == 0 || nBytesEach == 0) return;
  const ULONGLONG left = GetBytesLeft();
  if (nCount > left / nBytesEach) {
    throw CArchiveException(CArchiveException::endOfFile, m_strFileName,
                            cstringf(u"%s %llu at offset %llu exceeds the %llu bytes left", pszWhat, nCount,
                                     GetPosition(), left));
  }
}

void CArchive::MakeRoom() {
  CheckUsable(false);
  const auto pending = static_cast<UINT>(m_pWriteCur - m_lpBufStart);
  if (pending == 0) return;
  m_pFile->Write(m_lpBufStart, pending);
  m_nFilePos += pending;
  m_pWriteCur = m_lpBufStart;
}

void CArchive::FillBuffer(std::size_t nNeeded) {
  CheckUsable(true);
  std::size_t available = static_cast<std::size_t>(m_pReadEnd - m_pReadCur);
  if (available && m_pReadCur != m_lpBufStart) std::memmove(m_lpBufStart, m_pReadCur, available);
  m_pReadCur = m_lpBufStart;
  m_pReadEnd = m_lpBufStart + available;
  // Read ahead as far as the buffer allows: one call to the file per buffer, not per value.
  while (available < nNeeded) {
    const UINT got = m_pFile->Read(m_pReadEnd, static_cast<UINT>(m_nBufSize - available));
    if (got == 0) break;
    m_nFilePos += got;
    m_pReadEnd += got;
    available += got;
  }
  if (available < nNeeded) ThrowEndOfFile(nNeeded, available);
}

void CArchive::ReadBytes(void* p, std::size_t n) {
  auto available = static_cast<std::size_t>(m_pReadEnd - m_pReadCur);
  if (n <= available) {
    if (n) std::memcpy(p, m_pReadCur, n);
    m_pReadCur += n;
    return;
  }
  CheckUsable(true);
  // Fail before consuming anything, so that the position still points at what could not be read.
  const ULONGLONG left = GetBytesLeft();
  if (n > left) ThrowEndOfFile(n, static_cast<std::size_t>(left));
  if (n <= m_nBufSize) {  // the whole block must fit in the buffer, not just the part still to be read
    FillBuffer(n);
    std::memcpy(p, m_pReadCur, n);
    m_pReadCur += n;
    return;
  }
  // A large block goes straight from the file into the caller's memory.
  auto* out = static_cast<BYTE*>(p);
  if (available) std::memcpy(out, m_pReadCur, available);
  m_pReadCur = m_pReadEnd = m_lpBufStart;
  out += available;
  n -= available;
  while (n > 0) {
    const std::size_t chunk = std::min(n, kMaxFileChunk);
    const UINT got = m_pFile->Read(out, static_cast<UINT>(chunk));
    m_nFilePos += got;
    out += got;
    n -= got;
    if (got < chunk && n > 0) ThrowEndOfFile(n, 0);
  }
}

void CArchive::WriteBytes(const void* p, std::size_t n) {
  if (n <= static_cast<std::size_t>(m_pWriteEnd - m_pWriteCur)) {
    if (n) std::memcpy(m_pWriteCur, p, n);
    m_pWriteCur += n;
    return;
  }
  MakeRoom();
  if (n < m_nBufSize) {
    std::memcpy(m_pWriteCur, p, n);
    m_pWriteCur += n;
    return;
  }
  // A large block goes straight to the file.
  const auto* in = static_cast<const BYTE*>(p);
  while (n > 0) {
    const std::size_t chunk = std::min(n, kMaxFileChunk);
    m_pFile->Write(in, static_cast<UINT>(chunk));
    m_nFilePos += chunk;
    in += chunk;
    n -= chunk;
  }
}

UINT CArchive::Read(void* lpBuf, UINT nMax) {
  if (nMax == 0) return 0;
  CheckUsable(true);
  auto* out = static_cast<BYTE*>(lpBuf);
  std::size_t done = 0;
  while (done < nMax) {
    if (m_pReadCur == m_pReadEnd) {
      if (nMax - done >= m_nBufSize) {
        const UINT got = m_pFile->Read(out + done, static_cast<UINT>(nMax - done));
        m_nFilePos += got;
        done += got;
        break;
      }
      const UINT got = m_pFile->Read(m_lpBufStart, static_cast<UINT>(m_nBufSize));
      m_pReadCur = m_lpBufStart;
      m_pReadEnd = m_lpBufStart + got;
      m_nFilePos += got;
      if (got == 0) break;
    }
    const std::size_t n = std::min<std::size_t>(nMax - done, static_cast<std::size_t>(m_pReadEnd - m_pReadCur));
    std::memcpy(out + done, m_pReadCur, n);
    m_pReadCur += n;
    done += n;
  }
  return static_cast<UINT>(done);
}

void CArchive::Write(const void* lpBuf, UINT nMax) {
  if (nMax == 0) return;
  CheckUsable(false);
  WriteBytes(lpBuf, nMax);
}

void CArchive::Flush() {
  if (!m_pFile) return;
  if (IsStoring()) {
    MakeRoom();
    return;
  }
  if (const auto unread = static_cast<LONGLONG>(m_pReadEnd - m_pReadCur)) {
    m_pFile->Seek(-unread, CFile::current);
    m_nFilePos -= static_cast<ULONGLONG>(unread);
  }
  m_pReadCur = m_pReadEnd = m_lpBufStart;
}

void CArchive::Close() {
  Flush();
  Abort();
}

void CArchive::Abort() noexcept {
  m_pFile = nullptr;
  m_pReadCur = m_pReadEnd = m_pWriteCur = m_pWriteEnd = nullptr;
}

void CArchive::WriteCount(DWORD_PTR dwCount) {
  if (dwCount < 0xFFFF) {
    Put<WORD>(static_cast<WORD>(dwCount));
    return;
  }
  if (dwCount > 0xFFFFFFFFu) {
    AfxThrowInvalidArgException(cstringf(u"count %llu does not fit the archive's 32 bits",
                                         static_cast<ULONGLONG>(dwCount)));
  }
  Put<WORD>(0xFFFF);
  Put<DWORD>(static_cast<DWORD>(dwCount));
}

DWORD_PTR CArchive::ReadCount() {
  const WORD w = Get<WORD>();
  return w != 0xFFFF ? w : Get<DWORD>();
}

void CArchive::WriteStringLength(ULONGLONG nLength) {
  if (nLength < 0xFF) {
    Put<BYTE>(static_cast<BYTE>(nLength));
  } else if (nLength < 0xFFFE) {
    Put<BYTE>(0xFF);
    Put<WORD>(static_cast<WORD>(nLength));
  } else {
    Put<BYTE>(0xFF);
    Put<WORD>(0xFFFF);
    Put<DWORD>(static_cast<DWORD>(nLength));
  }
}

ULONGLONG CArchive::ReadStringLength(int& nCharSize) {
  nCharSize = 1;
  BYTE b = Get<BYTE>();
  if (b < 0xFF) return b;
  WORD w = Get<WORD>();
  if (w == 0xFFFE) {
    // The wide-text marker; the real length follows, in the same short or long form.
    nCharSize = 2;
    b = Get<BYTE>();
    if (b < 0xFF) return b;
    w = Get<WORD>();
  }
  if (w < 0xFFFF) return w;
  return Get<DWORD>();
}

CArchive& CArchive::operator<<(const CString& s) {
  Put<BYTE>(0xFF);
  Put<WORD>(0xFFFE);
  WriteStringLength(static_cast<ULONGLONG>(s.GetLength()));
  WriteArray(s.GetString(), static_cast<std::size_t>(s.GetLength()));
  return *this;
}

CArchive& CArchive::operator<<(const CStringA& s) {
  WriteStringLength(static_cast<ULONGLONG>(s.GetLength()));
  WriteBytes(s.GetString(), static_cast<std::size_t>(s.GetLength()));
  return *this;
}

namespace {

// The text of a stored string in its own width; the caller converts.
struct StoredText {
  std::u16string wide;
  std::string narrow;
  bool isWide = false;
};

// Reads the characters of a stored string; throws before allocating when the length cannot be there.
StoredText ReadStoredText(CArchive& ar, ULONGLONG length, int charSize) {
  ar.CheckCount(u"string length", length, static_cast<ULONGLONG>(charSize));
  if (length > static_cast<ULONGLONG>(std::numeric_limits<int>::max())) {
    throw CArchiveException(CArchiveException::genericException, ar.m_strFileName,
                            cstringf(u"string length %llu is beyond what a string holds", length));
  }
  StoredText text;
  text.isWide = charSize == 2;
  if (text.isWide) {
    text.wide.resize(static_cast<std::size_t>(length));
    ar.ReadArray(text.wide.data(), text.wide.size());
  } else {
    text.narrow.resize(static_cast<std::size_t>(length));
    ar.ReadBytes(text.narrow.data(), text.narrow.size());
  }
  return text;
}

}  // namespace

CArchive& CArchive::operator>>(CString& s) {
  int charSize = 1;
  const ULONGLONG length = ReadStringLength(charSize);
  StoredText text = ReadStoredText(*this, length, charSize);
  s = CString(text.isWide ? std::move(text.wide) : CodePageToUtf16(CP_ACP, text.narrow));
  return *this;
}

CArchive& CArchive::operator>>(CStringA& s) {
  int charSize = 1;
  const ULONGLONG length = ReadStringLength(charSize);
  StoredText text = ReadStoredText(*this, length, charSize);
  s = CStringA(text.isWide ? Utf16ToCodePage(CP_ACP, text.wide) : std::move(text.narrow));
  return *this;
}

}  // namespace quarrix
