#include <quarrix/framework/CString.h>

#include <quarrix/framework/CException.h>
#include <quarrix/framework/CodePage.h>
#include <quarrix/framework/Unicode.h>

#include <algorithm>
#include <ostream>

namespace quarrix {
namespace {

template <class Ch>
std::size_t Length(const Ch* p) {
  return p ? std::char_traits<Ch>::length(p) : 0;
}

char16_t UpperUnit(char16_t c) { return ToUpperChar(c); }
char16_t LowerUnit(char16_t c) { return ToLowerChar(c); }
char UpperUnit(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; }
char LowerUnit(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }
bool IsSpaceUnit(char16_t c) { return IsSpaceChar(c); }
bool IsSpaceUnit(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Text of the other width, converted with the ANSI code page.
std::u16string Convert(const char* p, std::size_t n, char16_t) {
  return CodePageToUtf16(CP_ACP, std::string_view(p, n));
}
std::string Convert(const char16_t* p, std::size_t n, char) {
  return Utf16ToCodePage(CP_ACP, std::u16string_view(p, n));
}
std::u16string FromWide(const wchar_t* p, char16_t) { return Utf32ToUtf16(p ? p : L""); }
std::string FromWide(const wchar_t* p, char) {
  return Utf16ToCodePage(CP_ACP, Utf32ToUtf16(p ? p : L""));
}

[[noreturn]] void ThrowIndex(int index, int length, bool endAllowed) {
  const int last = endAllowed ? length : length - 1;
  AfxThrowInvalidArgException(last < 0 ? cstringf(u"index %d is outside the empty string", index)
                                       : cstringf(u"index %d is outside 0..%d", index, last));
}

}  // namespace

template <class Ch>
CStringT<Ch>::CStringT(PCXSTR pch, int nLength) {
  if (pch && nLength > 0) m_str.assign(pch, static_cast<std::size_t>(nLength));
}

template <class Ch>
CStringT<Ch>::CStringT(Ch ch, int nRepeat) {
  if (nRepeat > 0) m_str.assign(static_cast<std::size_t>(nRepeat), ch);
}

template <class Ch>
CStringT<Ch>::CStringT(const YCHAR* psz) : m_str(Convert(psz, Length(psz), Ch{})) {}

template <class Ch>
CStringT<Ch>::CStringT(const CStringT<YCHAR>& s)
    : m_str(Convert(s.GetString(), static_cast<std::size_t>(s.GetLength()), Ch{})) {}

template <class Ch>
CStringT<Ch>::CStringT(const wchar_t* psz) : m_str(FromWide(psz, Ch{})) {}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::operator=(PCXSTR psz) {
  m_str.assign(psz ? psz : EmptyText());  // basic_string copes with psz pointing into this string
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::operator=(Ch ch) {
  m_str.assign(1, ch);
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::operator=(const YCHAR* psz) {
  m_str = Convert(psz, Length(psz), Ch{});
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::operator=(const wchar_t* psz) {
  m_str = FromWide(psz, Ch{});
  return *this;
}

template <class Ch>
Ch CStringT<Ch>::GetAt(int iChar) const {
  if (iChar < 0 || iChar > GetLength()) ThrowIndex(iChar, GetLength(), true);
  return m_str.c_str()[iChar];
}

template <class Ch>
void CStringT<Ch>::SetAt(int iChar, Ch ch) {
  if (iChar < 0 || iChar >= GetLength()) ThrowIndex(iChar, GetLength(), false);
  m_str[static_cast<std::size_t>(iChar)] = ch;
}

template <class Ch>
typename CStringT<Ch>::PXSTR CStringT<Ch>::GetBuffer(int nMinBufLength) {
  if (nMinBufLength > GetLength()) m_str.resize(static_cast<std::size_t>(nMinBufLength));
  return m_str.data();
}

template <class Ch>
typename CStringT<Ch>::PXSTR CStringT<Ch>::GetBufferSetLength(int nLength) {
  m_str.resize(static_cast<std::size_t>(std::max(nLength, 0)));
  return m_str.data();
}

template <class Ch>
void CStringT<Ch>::ReleaseBuffer(int nNewLength) {
  if (nNewLength < 0) {
    m_str.resize(std::char_traits<Ch>::length(m_str.c_str()));
  } else if (static_cast<std::size_t>(nNewLength) <= m_str.size()) {
    m_str.resize(static_cast<std::size_t>(nNewLength));
  }
}

template <class Ch>
void CStringT<Ch>::Preallocate(int nLength) {
  if (nLength > 0) m_str.reserve(static_cast<std::size_t>(nLength));
}

template <class Ch>
CStringT<Ch> CStringT<Ch>::Left(int nCount) const {
  nCount = std::clamp(nCount, 0, GetLength());
  return CStringT(m_str.substr(0, static_cast<std::size_t>(nCount)));
}

template <class Ch>
CStringT<Ch> CStringT<Ch>::Right(int nCount) const {
  nCount = std::clamp(nCount, 0, GetLength());
  return CStringT(m_str.substr(static_cast<std::size_t>(GetLength() - nCount)));
}

template <class Ch>
CStringT<Ch> CStringT<Ch>::Mid(int iFirst) const {
  return Mid(iFirst, GetLength() - std::max(iFirst, 0));
}

template <class Ch>
CStringT<Ch> CStringT<Ch>::Mid(int iFirst, int nCount) const {
  const int length = GetLength();
  iFirst = std::max(iFirst, 0);
  nCount = std::max(nCount, 0);
  if (iFirst >= length) return CStringT();
  nCount = std::min(nCount, length - iFirst);
  return CStringT(m_str.substr(static_cast<std::size_t>(iFirst), static_cast<std::size_t>(nCount)));
}

template <class Ch>
CStringT<Ch> CStringT<Ch>::SpanIncluding(PCXSTR pszCharSet) const {
  const std::size_t end = m_str.find_first_not_of(pszCharSet ? pszCharSet : EmptyText());
  return CStringT(m_str.substr(0, end));
}

template <class Ch>
CStringT<Ch> CStringT<Ch>::SpanExcluding(PCXSTR pszCharSet) const {
  const std::size_t end = m_str.find_first_of(pszCharSet ? pszCharSet : EmptyText());
  return CStringT(m_str.substr(0, end));
}

template <class Ch>
CStringT<Ch> CStringT<Ch>::Tokenize(PCXSTR pszTokens, int& iStart) const {
  if (iStart >= 0 && iStart < GetLength()) {
    if (!pszTokens || !*pszTokens) {
      CStringT token(m_str.substr(static_cast<std::size_t>(iStart)));
      iStart = GetLength();
      return token;
    }
    const std::size_t first = m_str.find_first_not_of(pszTokens, static_cast<std::size_t>(iStart));
    if (first != StringType::npos) {
      std::size_t last = m_str.find_first_of(pszTokens, first);
      if (last == StringType::npos) last = m_str.size();
      iStart = static_cast<int>(last) + (last < m_str.size() ? 1 : 0);
      return CStringT(m_str.substr(first, last - first));
    }
  }
  iStart = -1;
  return CStringT();
}

template <class Ch>
int CStringT<Ch>::Find(Ch ch, int iStart) const noexcept {
  if (iStart < 0 || iStart >= GetLength()) return -1;
  const std::size_t pos = m_str.find(ch, static_cast<std::size_t>(iStart));
  return pos == StringType::npos ? -1 : static_cast<int>(pos);
}

template <class Ch>
int CStringT<Ch>::Find(PCXSTR pszSub, int iStart) const noexcept {
  if (!pszSub || iStart < 0 || iStart > GetLength()) return -1;
  const std::size_t pos = m_str.find(pszSub, static_cast<std::size_t>(iStart));
  return pos == StringType::npos ? -1 : static_cast<int>(pos);
}

template <class Ch>
int CStringT<Ch>::ReverseFind(Ch ch) const noexcept {
  const std::size_t pos = m_str.rfind(ch);
  return pos == StringType::npos ? -1 : static_cast<int>(pos);
}

template <class Ch>
int CStringT<Ch>::FindOneOf(PCXSTR pszCharSet) const noexcept {
  if (!pszCharSet) return -1;
  const std::size_t pos = m_str.find_first_of(pszCharSet);
  return pos == StringType::npos ? -1 : static_cast<int>(pos);
}

template <class Ch>
int CStringT<Ch>::Replace(Ch chOld, Ch chNew) {
  int count = 0;
  for (Ch& c : m_str) {
    if (c == chOld) {
      c = chNew;
      ++count;
    }
  }
  return count;
}

template <class Ch>
int CStringT<Ch>::Replace(PCXSTR pszOld, PCXSTR pszNew) {
  const std::size_t oldLength = Length(pszOld);
  if (oldLength == 0) return 0;
  // Both texts may point into this string; they stay valid until the result replaces it.
  const std::basic_string_view<Ch> from(pszOld, oldLength);
  const std::basic_string_view<Ch> to(pszNew ? pszNew : EmptyText());
  std::size_t pos = m_str.find(from);
  if (pos == StringType::npos) return 0;
  StringType out;
  out.reserve(m_str.size());
  std::size_t done = 0;
  int count = 0;
  for (; pos != StringType::npos; pos = m_str.find(from, done)) {
    out.append(m_str, done, pos - done).append(to);
    done = pos + oldLength;
    ++count;
  }
  out.append(m_str, done);
  m_str = std::move(out);
  return count;
}

template <class Ch>
int CStringT<Ch>::Remove(Ch ch) {
  const std::size_t before = m_str.size();
  m_str.erase(std::remove(m_str.begin(), m_str.end(), ch), m_str.end());
  return static_cast<int>(before - m_str.size());
}

template <class Ch>
int CStringT<Ch>::Insert(int iIndex, Ch ch) {
  iIndex = std::clamp(iIndex, 0, GetLength());
  m_str.insert(static_cast<std::size_t>(iIndex), 1, ch);
  return GetLength();
}

template <class Ch>
int CStringT<Ch>::Insert(int iIndex, PCXSTR psz) {
  iIndex = std::clamp(iIndex, 0, GetLength());
  m_str.insert(static_cast<std::size_t>(iIndex), psz ? psz : EmptyText());
  return GetLength();
}

template <class Ch>
int CStringT<Ch>::Delete(int iIndex, int nCount) {
  iIndex = std::max(iIndex, 0);
  nCount = std::max(nCount, 0);
  if (iIndex < GetLength() && nCount > 0) {
    m_str.erase(static_cast<std::size_t>(iIndex),
                static_cast<std::size_t>(std::min(nCount, GetLength() - iIndex)));
  }
  return GetLength();
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::MakeUpper() {
  for (Ch& c : m_str) c = UpperUnit(c);
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::MakeLower() {
  for (Ch& c : m_str) c = LowerUnit(c);
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::MakeReverse() {
  std::reverse(m_str.begin(), m_str.end());
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::TrimLeft() {
  const auto it = std::find_if(m_str.begin(), m_str.end(), [](Ch c) { return !IsSpaceUnit(c); });
  m_str.erase(m_str.begin(), it);
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::TrimLeft(Ch chTarget) {
  m_str.erase(0, std::min(m_str.find_first_not_of(chTarget), m_str.size()));
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::TrimLeft(PCXSTR pszTargets) {
  if (pszTargets && *pszTargets) m_str.erase(0, std::min(m_str.find_first_not_of(pszTargets), m_str.size()));
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::TrimRight() {
  const auto it = std::find_if(m_str.rbegin(), m_str.rend(), [](Ch c) { return !IsSpaceUnit(c); });
  m_str.erase(it.base(), m_str.end());
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::TrimRight(Ch chTarget) {
  const std::size_t last = m_str.find_last_not_of(chTarget);
  m_str.erase(last == StringType::npos ? 0 : last + 1);
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::TrimRight(PCXSTR pszTargets) {
  if (!pszTargets || !*pszTargets) return *this;
  const std::size_t last = m_str.find_last_not_of(pszTargets);
  m_str.erase(last == StringType::npos ? 0 : last + 1);
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::Trim() {
  return TrimRight().TrimLeft();
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::Trim(Ch chTarget) {
  return TrimRight(chTarget).TrimLeft(chTarget);
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::Trim(PCXSTR pszTargets) {
  return TrimRight(pszTargets).TrimLeft(pszTargets);
}

// Ordinal comparison by unsigned unit over the whole string, embedded NULs included, so that comparison,
// equality and hashing agree; psz ends at its NUL. Without embedded NULs this is wcscmp's order.
template <class Ch>
int CStringT<Ch>::Compare(PCXSTR psz) const noexcept {
  const int r = view().compare(ViewType(psz ? psz : EmptyText()));
  return r < 0 ? -1 : r > 0 ? 1 : 0;
}

template <class Ch>
int CStringT<Ch>::CompareNoCase(PCXSTR psz) const noexcept {
  const ViewType a = view(), b(psz ? psz : EmptyText());
  using U = std::make_unsigned_t<Ch>;
  const std::size_t n = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < n; ++i) {
    const U x = static_cast<U>(LowerUnit(a[i])), y = static_cast<U>(LowerUnit(b[i]));
    if (x != y) return x < y ? -1 : 1;
  }
  return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::Append(PCXSTR psz) {
  if (psz) m_str.append(psz);  // basic_string copes with psz pointing into this string
  return *this;
}

template <class Ch>
CStringT<Ch>& CStringT<Ch>::Append(PCXSTR pch, int nLength) {
  if (pch && nLength > 0) m_str.append(pch, static_cast<std::size_t>(nLength));
  return *this;
}

template class CStringT<char16_t>;
template class CStringT<char>;

std::ostream& operator<<(std::ostream& os, const CString& s) { return os << Utf16ToUtf8(s.view()); }
std::ostream& operator<<(std::ostream& os, const CStringA& s) { return os << s.view(); }

}  // namespace quarrix
