#pragma once
// The archive helpers of the framework tests, plus the assertion for the library's own serialization errors.
#include "framework/ArchiveTestSupport.h"

#include <quarrix/foundation/CSerializeException.h>

namespace quarrix::test {

// CSerializeException with this code and message.
template <class F>
::testing::AssertionResult ThrowsSerializeError(F&& f, int code, std::u16string_view message) {
  return Throws<CSerializeException>(f, [&](const CSerializeException& e) {
    const CString text = e.GetMessageText(CBaseException::ePrefixNone);
    const bool ok = e.GetExceptionID() == code && text.view() == message;
    return ok ? std::string() : "code " + std::to_string(e.GetExceptionID()) + " \"" + Text(text) + "\"";
  });
}

}  // namespace quarrix::test
