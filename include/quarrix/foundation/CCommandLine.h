#pragma once
// CCommandLine answers questions about the process's arguments: how many, the n-th, whether a flag such as
// -debug or /debug is given, and the value of an option written -name:value or /name=value.
//
// The arguments come from /proc/self/cmdline, decoded with the ANSI code page, unless the application hands
// its own with SetArguments (tests do). argv[0] is the program. Flag and option names are inserted into the
// patterns as they stand, so characters with a meaning in regular expressions act as such; names are
// compared with case.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

#include <vector>

namespace quarrix {

class QUARRIX_API CCommandLine {
 public:
  // Replaces the argument vector for all later calls (argv[0] being the program); 8-bit text is decoded with
  // the ANSI code page.
  static void SetArguments(int argc, const char* const* argv);
  static void SetArguments(std::vector<CString> args);
  // Forgets arguments set before: the next call reads the process's own again.
  static void ResetArguments();

  // argc: the program itself included.
  static int GetParameterCount();
  // Empties value, then gives argv[i]. i == argc gives an empty value and true (the vector's terminating
  // entry); i beyond argc or negative gives false.
  static bool GetParameter(int i, CString& value);
  // True when an argument matches "[-/]<flag>\b": with nPos <= 0 any of argv[1..], else only argv[nPos]. The
  // index of the first matching argument goes to *pIndex when pIndex is not null.
  static bool IsFlagSet(CString flag, int nPos, int* pIndex);
  // The text after "-<name>:" or "/<name>=" (either separator after either prefix) of the first argument,
  // argv[0] included, that has one; value is left alone when none has.
  static bool GetParameterValue(CString name, CString& value);
  // One line "- Param <i>: '<argv[i]>'" per argument, joined by "\n".
  static CString GetParamList();
  // The arguments joined with single blanks.
  static CString GetCommandLineW();
};

}  // namespace quarrix
