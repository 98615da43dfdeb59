#pragma once
// Helpers for the archive, container and collection tests: bytes written as hex, storing and loading
// through a CMemFile, and one assertion per error family that checks the type, the code and the text.
#include <quarrix/foundation/CSerializeException.h>
#include <quarrix/framework/CArchive.h>
#include <quarrix/framework/CException.h>
#include <quarrix/framework/CMemFile.h>
#include <quarrix/framework/CodePage.h>

#include <gtest/gtest.h>

#include <cstdio>
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
  int high = -1;
  for (char c : text) {
    if (c == ' ') continue;
    const int nibble = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
    if (high < 0) {
      high = nibble;
    } else {
      bytes.push_back(static_cast<BYTE>(high * 16 + nibble));
      high = -1;
    }
  }
  return bytes;
}

// The bytes as "01 00 FF", so that a failed comparison shows them readably.
inline std::string ToHex(const Bytes& bytes) {
  std::string text;
  for (BYTE b : bytes) {
    char cell[4];
    std::snprintf(cell, sizeof cell, "%02X", b);
    if (!text.empty()) text += ' ';
    text += cell;
  }
  return text;
}

// The parts one after the other.
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

// Runs `read` on a loading archive over a copy of bytes; returns the bytes it left unread.
template <class Read>
ULONGLONG LoadWith(const Bytes& bytes, Read&& read) {
  Bytes copy = bytes;
  CMemFile file(copy.data(), static_cast<UINT>(copy.size()));
  CArchive ar(&file, CArchive::load);
  read(ar);
  return ar.GetBytesLeft();
}

template <class T>
ULONGLONG Load(T& object, const Bytes& bytes) {
  return LoadWith(bytes, [&](CArchive& ar) { object.Serialize(ar); });
}

// Describes an exception that was not the one expected.
inline std::string Describe(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const CBaseException& e) {
    return "CBaseException " + Utf16ToUtf8(e.GetMessageText(CBaseException::ePrefixClassAndID).view());
  } catch (const std::exception& e) {
    return std::string("another exception: ") + e.what();
  } catch (...) {
    return "an unknown exception";
  }
}

// f must throw an E, which `check` then judges.
template <class E, class F, class Check>
::testing::AssertionResult Throws(F&& f, Check&& check) {
  try {
    f();
  } catch (const E& e) {
    return check(e);
  } catch (...) {
    return ::testing::AssertionFailure() << "threw " << Describe(std::current_exception());
  }
  return ::testing::AssertionFailure() << "did not throw";
}

// f must throw CArchiveException with this cause and, when detail is given, exactly this detail.
template <class F>
::testing::AssertionResult ThrowsArchiveError(F&& f, int cause, std::u16string_view detail = {}) {
  return Throws<CArchiveException>(f, [&](const CArchiveException& e) {
    if (e.m_cause == cause && (detail.empty() || e.m_strDetail.view() == detail)) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "cause " << e.m_cause << " (expected " << cause << "), detail \""
                                         << e.m_strDetail << "\"";
  });
}

// f must throw CSerializeException with this code and message.
template <class F>
::testing::AssertionResult ThrowsSerializeError(F&& f, int code, std::u16string_view message) {
  return Throws<CSerializeException>(f, [&](const CSerializeException& e) {
    const CString text = e.GetMessageText(CBaseException::ePrefixNone);
    if (e.GetExceptionID() == code && text.view() == message) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "code " << e.GetExceptionID() << " \"" << text << "\"";
  });
}

// f must throw CInvalidArgException whose detail is exactly `detail`.
template <class F>
::testing::AssertionResult ThrowsInvalidArg(F&& f, std::u16string_view detail) {
  return Throws<CInvalidArgException>(f, [&](const CInvalidArgException& e) {
    if (e.GetDetail().view() == detail) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "detail \"" << e.GetDetail() << "\"";
  });
}

// f must throw CFileException with this cause (and this errno, unless osError is -2).
template <class F>
::testing::AssertionResult ThrowsFileError(F&& f, int cause, LONG osError = -2) {
  return Throws<CFileException>(f, [&](const CFileException& e) {
    if (e.m_cause == cause && (osError == -2 || e.m_lOsError == osError)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "cause " << e.m_cause << ", errno " << e.m_lOsError << ": "
                                         << e.GetErrorMessage();
  });
}

// Sets the ANSI code page for one test and restores the previous one.
class AnsiCodePageScope {
 public:
  explicit AnsiCodePageScope(UINT codePage) : m_previous(GetAnsiCodePage()) { EXPECT_TRUE(SetAnsiCodePage(codePage)); }
  ~AnsiCodePageScope() { SetAnsiCodePage(m_previous); }

 private:
  UINT m_previous;
};

}  // namespace quarrix::test
