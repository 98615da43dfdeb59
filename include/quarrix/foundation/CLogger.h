#pragma once
// CLogger writes free text to one log file, keeping it open between writes or opening and closing it around
// every write (so that the file is complete on disk even if the process dies). PublicLogger appends numbered
// entries to "Log_Public_Logger.txt" in the working directory.
//
// Text goes out through the ANSI code page with every line feed written as CR LF, so that logs read the same
// on Windows. Nothing here throws or shows a message: failures are reported by the return values.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>

#include <cstdio>
#include <memory>

namespace quarrix {

class QUARRIX_API CLogger {
 public:
  CLogger() = default;
  // Copies share the open stream; it closes when the last copy that holds it closes it or goes away.
  CLogger(const CLogger&) = default;
  CLogger& operator=(const CLogger&) = default;
  ~CLogger() = default;

  // Closes any open file and clears both flags, then opens path (truncating when bOverwrite, else appending).
  // On success keeps path and flags and returns true; on failure returns false with no file open, and the
  // path of the last successful Open stays.
  bool Open(const CString& path, bool bOverwrite, bool bCloseAfterWrite);
  // Writes text as it is (no line end added), opening the stored path for appending first if no file is open
  // (whatever bOverwrite was), and closing again afterwards in close-after-write mode. False when the file
  // cannot be opened.
  bool Write(const CString& text);
  void Close();
  bool IsOpen() const noexcept { return static_cast<bool>(m_file); }
  // The folder part of the stored path: everything before its last backslash, empty when there is none
  // (forward slashes do not separate folders here).
  CString GetFileDirFromPath() const;

 protected:
  // Closes the file and clears both flags.
  void Reset();

 private:
  std::shared_ptr<std::FILE> m_file;
  CString m_strPath;
  bool m_bOverwrite = false;
  bool m_bCloseAfterWrite = false;
};

// Appends one entry to "Log_Public_Logger.txt": "<n> <heading>", the text, 80 hyphens and an empty line, each
// ended by CR LF. n counts the entries of the process from 1 (bResetCounter starts again at 1); bOverwrite
// empties the file first. Fails silently. The counter is not guarded against concurrent calls.
QUARRIX_API void PublicLogger(bool bOverwrite, const CString& strText, const CString& strHeading,
                              bool bResetCounter);

}  // namespace quarrix
