#pragma once
// Helpers for the archive, container and collection tests: bytes as hex, storing and loading through a
// CMemFile, and one assertion per error family that checks type, code and text together.
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CException.h>
#include <quarrix/framework/CMemFile.h>
#include <quarrix/framework/CodePage.h>

#include <gtest/gtest.h>

#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace quarrix::test {

using Bytes = std::vector<BYTE>;

// "01 00 ff" -> {0x01, 0x00, 0xFF}; blanks are ignored.
inline Bytes Hex(std::string_view text) {
  Bytes bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != ' ') bytes.push_back(static_cast<BYTE>(std::stoi(std::string(text.substr(i++, 2)), nullptr, 16)));
  }
  return bytes;
}

// The bytes as "01 00 FF", so that a failed comparison shows them readably.
inline std::string ToHex(const Bytes& bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (BYTE b : bytes) {
    if (!text.empty()) text += ' ';
    text += kDigits[b >> 4];
    text += kDigits[b & 15];
  }
  return text;
}

inline Bytes Cat(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// What `write` puts into a storing archive over a fresh CMemFile.
template <class Write>
Bytes StoreWith(Write&& write) {
  CMemFile file;
  CArchive ar(&file, CArchive::store);
  write(ar);
  ar.Close();
  return file.GetBytes();
}

// Serialize is not const, but storing leaves the object as it is.
template <class T>
Bytes Store(const T& object) {
  return StoreWith([&](CArchive& ar) { const_cast<T&>(object).Serialize(ar); });
}

// Runs `read` on a loading archive over a copy of bytes; returns how many bytes it left unread.
template <class Read>
ULONGLONG LoadWith(Bytes bytes, Read&& read, int bufSize = 4096) {
  CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
  CArchive ar(&file, CArchive::load, bufSize);
  read(ar);
  return ar.GetBytesLeft();
}

template <class T>
ULONGLONG Load(T& object, const Bytes& bytes) {
  return LoadWith(bytes, [&](CArchive& ar) { object.Serialize(ar); });
}

// f must throw an E, which `check` then judges by returning what went wrong ("" for nothing).
template <class E, class F, class Check>
::testing::AssertionResult Throws(F&& f, Check&& check) {
  try {
    f();
  } catch (const E& e) {
    const std::string problem = check(e);
    if (problem.empty()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << problem;
  } catch (const std::exception& e) {
    return ::testing::AssertionFailure() << "threw another exception: " << e.what();
  }
  return ::testing::AssertionFailure() << "did not throw";
}

inline std::string Text(const CString& s) { return Utf16ToUtf8(s.view()); }

// CArchiveException with this cause and, when given, exactly this detail.
template <class F>
::testing::AssertionResult ThrowsArchiveError(F&& f, int cause, std::u16string_view detail = {}) {
  return Throws<CArchiveException>(f, [&](const CArchiveException& e) {
    const bool ok = e.m_cause == cause && (detail.empty() || e.m_strDetail.view() == detail);
    return ok ? std::string() : "cause " + std::to_string(e.m_cause) + ", detail \"" + Text(e.m_strDetail) + "\"";
  });
}

// CInvalidArgException whose detail is exactly `detail`.
template <class F>
::testing::AssertionResult ThrowsInvalidArg(F&& f, std::u16string_view detail) {
  return Throws<CInvalidArgException>(f, [&](const CInvalidArgException& e) {
    return e.GetDetail().view() == detail ? std::string() : "detail \"" + Text(e.GetDetail()) + "\"";
  });
}

// CFileException with this cause (and this errno, unless osError is -2).
template <class F>
::testing::AssertionResult ThrowsFileError(F&& f, int cause, LONG osError = -2) {
  return Throws<CFileException>(f, [&](const CFileException& e) {
    const bool ok = e.m_cause == cause && (osError == -2 || e.m_lOsError == osError);
    return ok ? std::string() : "cause " + std::to_string(e.m_cause) + ", errno " + std::to_string(e.m_lOsError);
  });
}

}  // namespace quarrix::test
