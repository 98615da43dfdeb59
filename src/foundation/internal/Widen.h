#pragma once
// The 8-bit texts of the exception tables and of _PlaceStamp become wide text byte for byte (each byte is
// the character of the same number), whatever the ANSI code page says.
#include <quarrix/framework/CString.h>

#include <cstddef>
#include <cstdint>

namespace quarrix::detail {

// At most nMax bytes, up to the first NUL; a null text is empty.
inline CString WidenBytes(const char* text, std::size_t nMax = SIZE_MAX) {
  CString wide;
  for (std::size_t i = 0; text && i < nMax && text[i]; ++i) {
    wide += static_cast<char16_t>(static_cast<unsigned char>(text[i]));
  }
  return wide;
}

}  // namespace quarrix::detail
