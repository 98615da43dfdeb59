#pragma once
// CSerializeException: what Serialize throws for a file this build cannot read, with its 16-row table of
// messages.
#include <quarrix/foundation/CBaseException.h>
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

namespace quarrix {

// The codes of CSerializeException; the library itself throws only eSerNewerVersionRequired, applications
// the others. Rows 3 and 5 to 10 of the table are reserved for applications. The type is int underneath, so
// that any code an application casts to it is a valid value.
enum ESerializeException : int {
  eSerUndefined = 0,
  eSerOlderVersionRequired = 1,
  eSerNewerVersionRequired = 2,
  eSerUnknownFormat = 4,
  eSerXmlExport = 11,
  eSerXmlImport = 12,
  eSerPdfExport = 13,
  eSerDecompression = 14,
  eSerWebFileImport = 15,
};

class QUARRIX_API CSerializeException : public CBaseException {
 public:
  // Takes the message from row eCode of m_ExceptionDefinitionTable at the time of construction. A code
  // outside 0..15 keeps its value as the code but takes the text of row 0 ("Undefined serialization
  // error."), so that it never reads outside the table.
  explicit CSerializeException(ESerializeException eCode);
  CSerializeException(const CSerializeException&) = default;
  CSerializeException& operator=(const CSerializeException&) = default;
  virtual ~CSerializeException();

  // The messages by code, rows 0 to 15. Public and writable: an application may put its own texts in
  // (the reserved rows 3 and 5 to 10 say "Serialization error <n>." until it does).
  static SExceptionDefinition m_ExceptionDefinitionTable[16];

 protected:
  // "SerializeException".
  CString GetExceptionClass() const override;
};

}  // namespace quarrix
