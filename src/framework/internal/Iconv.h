#pragma once
// The only door to the C library's iconv: code-page tables and multi-byte conversions are built on these.
#include <cstdint>
#include <string>
#include <string_view>

namespace quarrix::detail {

// Fills table[b] with the code point that byte b decodes to, or -1 where the code page leaves it undefined.
// Returns false when iconv does not know the code page.
bool IconvSingleByteTable(const char* iconvName, std::int32_t (&table)[256]);

// Appends the decoded text; a byte sequence that cannot be decoded becomes U+FFFD and is passed over one byte
// at a time. Returns false when iconv does not know the code page (nothing is appended).
bool IconvDecode(const char* iconvName, std::string_view in, std::u16string& out);

// Appends the encoding of each code point of in; a code point the code page cannot represent appends
// defaultChar and sets *usedDefault. Returns false when iconv does not know the code page.
bool IconvEncode(const char* iconvName, std::u32string_view in, char defaultChar, bool* usedDefault,
                 std::string& out);

}  // namespace quarrix::detail
