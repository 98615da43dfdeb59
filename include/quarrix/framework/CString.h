#pragma once
// CString (UTF-16 code units over char16_t) and CStringA (bytes): string values with the interface and the
// argument rules of MFC's CStringT. Positions and lengths are int and count code units (bytes for CStringA).
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Format.h>
#include <quarrix/framework/Types.h>

#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

namespace quarrix {

template <class Ch>
class CStringT;
using CString = CStringT<char16_t>;
using CStringW = CStringT<char16_t>;
using CStringA = CStringT<char>;

// A string value that owns its characters and is always NUL-terminated (GetString() never returns null).
//
// Argument rules are MFC's: Mid/Left/Right clamp a negative start or count to 0 and an oversize one to the
// length; Find from a start beyond the length gives -1; Replace with an empty old text changes nothing;
// GetAt and SetAt throw CInvalidArgException for an index outside the string. Case-insensitive operations use
// simple Unicode case mapping (CStringA: ASCII only). Text of the other width is converted with the ANSI code
// page (see CodePage.h); wchar_t text is taken as UTF-32.
template <class Ch>
class QUARRIX_API CStringT {
 public:
  using XCHAR = Ch;
  using PXSTR = Ch*;
  using PCXSTR = const Ch*;
  using YCHAR = std::conditional_t<std::is_same_v<Ch, char>, char16_t, char>;  // the other width
  using StringType = std::basic_string<Ch>;
  using ViewType = std::basic_string_view<Ch>;

  CStringT() noexcept = default;
  CStringT(const CStringT&) = default;
  CStringT(CStringT&&) noexcept = default;
  CStringT& operator=(const CStringT&) = default;
  CStringT& operator=(CStringT&&) noexcept = default;
  ~CStringT() = default;

  CStringT(PCXSTR psz) : m_str(psz ? psz : EmptyText()) {}  // null gives an empty string
  CStringT(PCXSTR pch, int nLength);                      // nLength units; a negative length gives empty
  CStringT(Ch ch, int nRepeat = 1);                       // a non-positive count gives empty
  CStringT(const StringType& s) : m_str(s) {}
  CStringT(StringType&& s) noexcept : m_str(std::move(s)) {}
  explicit CStringT(ViewType s) : m_str(s) {}
  CStringT(const YCHAR* psz);                  // converted with the ANSI code page
  CStringT(const CStringT<YCHAR>& s);  // converted with the ANSI code page
  CStringT(const wchar_t* psz);                // UTF-32 text

  CStringT& operator=(PCXSTR psz);
  CStringT& operator=(Ch ch);
  CStringT& operator=(const YCHAR* psz);
  CStringT& operator=(const wchar_t* psz);

  int GetLength() const noexcept { return static_cast<int>(m_str.size()); }
  bool IsEmpty() const noexcept { return m_str.empty(); }
  void Empty() noexcept { m_str.clear(); }
  PCXSTR GetString() const noexcept { return m_str.c_str(); }
  operator PCXSTR() const noexcept { return m_str.c_str(); }
  const StringType& str() const noexcept { return m_str; }
  ViewType view() const noexcept { return m_str; }

  // The unit at iChar; iChar == GetLength() gives the terminating NUL. Throws CInvalidArgException outside.
  Ch GetAt(int iChar) const;
  Ch operator[](int iChar) const { return GetAt(iChar); }
  // Throws CInvalidArgException unless 0 <= iChar < GetLength().
  void SetAt(int iChar, Ch ch);

  // Direct access in MFC's manner: GetBuffer gives room for at least nMinBufLength units (plus the NUL);
  // ReleaseBuffer(-1) takes the length up to the first NUL, ReleaseBuffer(n) cuts at n.
  PXSTR GetBuffer(int nMinBufLength = 0);
  PXSTR GetBufferSetLength(int nLength);
  void ReleaseBuffer(int nNewLength = -1);
  void Preallocate(int nLength);
  void FreeExtra() { m_str.shrink_to_fit(); }

  CStringT Left(int nCount) const;
  CStringT Right(int nCount) const;
  CStringT Mid(int iFirst) const;
  CStringT Mid(int iFirst, int nCount) const;
  CStringT SpanIncluding(PCXSTR pszCharSet) const;  // the leading run of units from the set
  CStringT SpanExcluding(PCXSTR pszCharSet) const;  // the leading run of units not in the set
  // The next token at or after iStart, skipping leading delimiters; iStart moves past it, or becomes -1
  // (and the result is empty) when no token is left.
  CStringT Tokenize(PCXSTR pszTokens, int& iStart) const;

  int Find(Ch ch, int iStart = 0) const noexcept;
  int Find(PCXSTR pszSub, int iStart = 0) const noexcept;  // an empty pszSub is found at iStart
  int ReverseFind(Ch ch) const noexcept;
  int FindOneOf(PCXSTR pszCharSet) const noexcept;

  int Replace(Ch chOld, Ch chNew);              // returns the number of replacements
  int Replace(PCXSTR pszOld, PCXSTR pszNew);    // an empty or null pszOld replaces nothing and returns 0
  int Remove(Ch ch);                            // returns the number of units removed
  int Insert(int iIndex, Ch ch);                // index clamped to 0..GetLength(); returns the new length
  int Insert(int iIndex, PCXSTR psz);
  int Delete(int iIndex, int nCount = 1);       // returns the new length

  CStringT& MakeUpper();
  CStringT& MakeLower();
  CStringT& MakeReverse();
  CStringT& Trim();  // white space
  CStringT& Trim(Ch chTarget);
  CStringT& Trim(PCXSTR pszTargets);
  CStringT& TrimLeft();
  CStringT& TrimLeft(Ch chTarget);
  CStringT& TrimLeft(PCXSTR pszTargets);
  CStringT& TrimRight();
  CStringT& TrimRight(Ch chTarget);
  CStringT& TrimRight(PCXSTR pszTargets);

  // Ordinal comparison by unsigned code unit over the whole string (embedded NULs included): -1, 0 or 1.
  int Compare(PCXSTR psz) const noexcept;
  int CompareNoCase(PCXSTR psz) const noexcept;
  int Collate(PCXSTR psz) const noexcept { return Compare(psz); }
  int CollateNoCase(PCXSTR psz) const noexcept { return CompareNoCase(psz); }

  CStringT& Append(PCXSTR psz);
  CStringT& Append(PCXSTR pch, int nLength);
  CStringT& Append(const CStringT& s) {
    m_str.append(s.m_str);
    return *this;
  }
  CStringT& AppendChar(Ch ch) {
    m_str.push_back(ch);
    return *this;
  }

  // printf-style formatting, see Format.h for the syntax and for what a wrong argument does.
  template <class... Args>
  void Format(PCXSTR pszFormat, const Args&... args) {
    StringType out;
    detail::FormatAppendArgs<Ch>(out, pszFormat ? pszFormat : EmptyText(), args...);
    m_str = std::move(out);
  }
  template <class... Args>
  void AppendFormat(PCXSTR pszFormat, const Args&... args) {
    // The format or an argument may point into this string, which growing it would move: expand aside.
    StringType out;
    detail::FormatAppendArgs<Ch>(out, pszFormat ? pszFormat : EmptyText(), args...);
    m_str += out;
  }

  CStringT& operator+=(const CStringT& s) { return Append(s); }
  CStringT& operator+=(PCXSTR psz) { return Append(psz); }
  CStringT& operator+=(Ch ch) { return AppendChar(ch); }

  friend CStringT operator+(const CStringT& a, const CStringT& b) { return CStringT(a.m_str + b.m_str); }
  friend CStringT operator+(CStringT&& a, const CStringT& b) { return std::move(a.Append(b)); }
  friend CStringT operator+(const CStringT& a, PCXSTR b) {
    CStringT r(a);
    return std::move(r.Append(b));
  }
  friend CStringT operator+(CStringT&& a, PCXSTR b) { return std::move(a.Append(b)); }
  friend CStringT operator+(PCXSTR a, const CStringT& b) {
    CStringT r(a);
    return std::move(r.Append(b));
  }
  friend CStringT operator+(const CStringT& a, Ch b) {
    CStringT r(a);
    return std::move(r.AppendChar(b));
  }
  friend CStringT operator+(CStringT&& a, Ch b) { return std::move(a.AppendChar(b)); }
  friend CStringT operator+(Ch a, const CStringT& b) {
    CStringT r(a);
    return std::move(r.Append(b));
  }

  friend bool operator==(const CStringT& a, const CStringT& b) noexcept { return a.m_str == b.m_str; }
  friend bool operator==(const CStringT& a, PCXSTR b) noexcept { return a.Compare(b) == 0; }
  friend std::strong_ordering operator<=>(const CStringT& a, const CStringT& b) noexcept {
    return a.view().compare(b.view()) <=> 0;
  }
  friend std::strong_ordering operator<=>(const CStringT& a, PCXSTR b) noexcept { return a.Compare(b) <=> 0; }

 private:
  static PCXSTR EmptyText() noexcept {
    static constexpr Ch kEmpty[1] = {};
    return kEmpty;
  }

  StringType m_str;
};

extern template class QUARRIX_API CStringT<char16_t>;
extern template class QUARRIX_API CStringT<char>;

// printf-style formatting into a new string (see Format.h).
template <class... Args>
CString cstringf(const char16_t* pszFormat, const Args&... args) {
  CString s;
  s.Format(pszFormat, args...);
  return s;
}

// Writes the text as UTF-8 (CString) or as its bytes (CStringA), so that test failures are readable.
QUARRIX_API std::ostream& operator<<(std::ostream& os, const CString& s);
QUARRIX_API std::ostream& operator<<(std::ostream& os, const CStringA& s);

}  // namespace quarrix

template <class Ch>
struct std::hash<quarrix::CStringT<Ch>> {
  std::size_t operator()(const quarrix::CStringT<Ch>& s) const noexcept {
    return std::hash<std::basic_string_view<Ch>>{}(s.view());
  }
};
