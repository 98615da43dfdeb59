#pragma once
// CDumpContext: where CObject::Dump writes its human-readable description of an object.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <concepts>
#include <iosfwd>
#include <type_traits>

namespace quarrix {

class CObject;

// Text goes to the stream given (as UTF-8), or, without one, line by line to the trace handler (Trace.h).
// The depth tells Dump how much to write: 0 a summary, above 0 the elements of collections too.
class QUARRIX_API CDumpContext {
 public:
  explicit CDumpContext(std::ostream* pOut = nullptr) noexcept : m_pOut(pOut) {}
  CDumpContext(const CDumpContext&) = delete;
  CDumpContext& operator=(const CDumpContext&) = delete;
  // Hands an unfinished line to the trace handler.
  ~CDumpContext();

  int GetDepth() const noexcept { return m_nDepth; }
  void SetDepth(int nNewDepth) noexcept { m_nDepth = nNewDepth; }

  CDumpContext& operator<<(const char16_t* psz);
  CDumpContext& operator<<(const char* psz);  // ANSI code page text
  CDumpContext& operator<<(const CString& s);
  CDumpContext& operator<<(const CStringA& s);
  CDumpContext& operator<<(const void* p);  // "$" and the address in hexadecimal
  CDumpContext& operator<<(double d);       // %g
  CDumpContext& operator<<(const CObject& ob);  // the object's Dump
  // Integers in decimal (bool as 0 or 1; character types as numbers).
  template <class T>
    requires std::integral<T>
  CDumpContext& operator<<(T value) {
    if constexpr (std::is_signed_v<T>) return *this << cstringf(u"%lld", static_cast<long long>(value));
    else return *this << cstringf(u"%llu", static_cast<unsigned long long>(value));
  }

  // Hands the text written so far to the stream or the trace handler.
  void Flush();

 private:
  std::ostream* m_pOut;
  int m_nDepth = 0;
  CString m_strLine;  // without a stream: the line being built
};

}  // namespace quarrix
