#include <quarrix/foundation/CSerializeException.h>

#include <quarrix/framework/CodePage.h>

#include <cstring>
#include <iterator>
#include <string_view>

namespace quarrix {

constinit CBaseException::SExceptionDefinition CSerializeException::m_ExceptionDefinitionTable[16] = {
    {0, "Undefined serialization error."},
    {1, "The file you open requires a older program version."},  // "a older" is the program's own wording
    {2, "The file you open requires a newer program version."},
    {3, "Serialization error 3."},
    {4, "Unrecognized file format."},
    {5, "Serialization error 5."},
    {6, "Serialization error 6."},
    {7, "Serialization error 7."},
    {8, "Serialization error 8."},
    {9, "Serialization error 9."},
    {10, "Serialization error 10."},
    {11, "XML export failed."},
    {12, "XML import failed."},
    {13, "PDF export failed."},
    {14, "Decompression failed."},
    {15, "Web Zelt file import failed."},
};

CSerializeException::CSerializeException(ESerializeException eCode) {
  m_nExceptionID = eCode;
  const int row = eCode >= 0 && eCode < static_cast<int>(std::size(m_ExceptionDefinitionTable)) ? eCode : 0;
  // An application may have filled all 252 bytes; the text ends there even without a terminator.
  // Each byte is the character of the same number: Latin-1, whatever the ANSI code page says.
  const char* text = m_ExceptionDefinitionTable[row].m_szText;
  m_strMessage = CodePageToUtf16(28591, std::string_view(text, strnlen(text, sizeof m_ExceptionDefinitionTable[row].m_szText)));
}

CSerializeException::~CSerializeException() = default;

CString CSerializeException::GetExceptionClass() const { return u"SerializeException"; }

}  // namespace quarrix
