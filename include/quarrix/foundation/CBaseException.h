#pragma once
// CBaseException: the root of the library's own exceptions (a code and a ready-made message), apart from
// the framework's CException family, and _PlaceStamp, the location text callers append to messages.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

namespace quarrix {

// An exception with a numeric code and a message text; concrete classes fill both from their own
// definition table. Thrown by value, caught by reference. The destructor is deliberately not virtual (the
// class has no objects of its own: it is abstract); it is protected so that nobody deletes through it.
class QUARRIX_API CBaseException {
 public:
  // Chooses the prefix of GetMessageText (int underneath, so that any value may be passed).
  enum EMessagePrefix : int {
    ePrefixNone = 0,       // no prefix
    ePrefixID = 1,         // "%03d - " with the code
    ePrefixClass = 2,      // "%s - " with the class name
    ePrefixClassAndID = 3  // "%s  %03d - " (two blanks) with the class name and the code
  };

  // One row of a definition table: the code (equal to the row's index) and the English message, an 8-bit
  // zero-terminated text whose bytes become characters one for one.
  struct SExceptionDefinition {
    int m_nCode;
    char m_szText[252];
  };

  CBaseException(const CBaseException&) = default;
  CBaseException& operator=(const CBaseException&) = default;

  int GetExceptionID() const noexcept { return m_nExceptionID; }
  // The prefix that ePrefix names, followed directly by the message; any other value gives no prefix.
  // "%03d" is a minimum width: code 4 gives "004", 1234 gives "1234".
  CString GetMessageText(EMessagePrefix ePrefix) const;
  // Shows GetMessageText(ePrefixClassAndID) in a modal box with one OK button (AfxMessageBox(text, MB_OK, 0))
  // and returns when the user has closed it.
  void ReportException() const;
  // The class's display name, e.g. "SerializeException".
  virtual CString GetExceptionClass() const = 0;

 protected:
  // Code 0 and an empty message, for the concrete class to fill.
  CBaseException() = default;
  ~CBaseException() = default;

  int m_nExceptionID = 0;
  CString m_strMessage;
};

// "File:   <file>\nLine:   <line>\nFunction:   <function>", three blanks after each colon, the line in
// plain decimal (with "-" when negative), file and function widened byte for byte. Null texts count as empty.
QUARRIX_API CString _PlaceStamp(const char* file, const char* function, int line);

}  // namespace quarrix
