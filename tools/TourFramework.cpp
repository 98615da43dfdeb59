#include "Tool.h"

#include <quarrix/framework/CString.h>
#include <quarrix/framework/CTime.h>
#include <quarrix/framework/CodePage.h>
#include <quarrix/framework/MessageBox.h>

#include <iomanip>

namespace quarrix::tool {
namespace {

void HexBytes(std::ostream& out, std::string_view bytes) {
  for (unsigned char b : bytes) out << cstringf(u"%02X ", b);
}

}  // namespace

void TourFramework(std::ostream& out) {
  Heading(out, "framework: CString (UTF-16) with MFC's rules");
  CString s(u"Träger HEA 200, Länge 6.5 m");
  out << "text            : " << s << "  (" << s.GetLength() << " UTF-16 units)\n";
  out << "Mid(7, 7)       : \"" << s.Mid(7, 7) << "\"\n";
  out << "Mid(-1, 3)      : \"" << s.Mid(-1, 3) << "\"   (a negative start counts as 0)\n";
  out << "Mid(40)         : \"" << s.Mid(40) << "\"   (past the end: empty)\n";
  out << "Find(u\"Länge\")  : " << s.Find(u"Länge") << "\n";
  CString upper = s;
  out << "MakeUpper()     : " << upper.MakeUpper() << "\n";
  CString replaced = s;
  const int n = replaced.Replace(u"HEA", u"IPE");
  out << "Replace         : " << replaced << "  (" << n << " replacement)\n";

  Heading(out, "framework: the printf-style formatter");
  out << cstringf(u"%-8s|%8.3f|%+05d|%#x|%e", u"beam", 3.14159265, 42, 255, 6.02214076e23) << "\n";
  out << cstringf(u"%.2f of 1.005 (binary rounding, like snprintf)", 1.005) << "\n";
  out << cstringf(u"%d with a string argument gives a marker: %d", u"oops", 7) << "\n";
  out << cstringf(u"a missing argument too: %s") << "\n";

  Heading(out, "framework: code pages");
  const CString word(u"Maß € 一");
  for (UINT cp : {1252u, 28591u, 437u, 65001u}) {
    BOOL lost = FALSE;
    char bytes[32];
    const int length = WideCharToMultiByte(cp, 0, word.GetString(), word.GetLength(), bytes, sizeof bytes,
                                           cp == CP_UTF8 ? nullptr : "?", cp == CP_UTF8 ? nullptr : &lost);
    out << "code page " << std::setw(5) << cp << ": ";
    HexBytes(out, std::string_view(bytes, static_cast<std::size_t>(length)));
    out << (lost ? " (data lost)" : "") << "\n";
  }
  out << "ANSI code page  : " << GetAnsiCodePage() << "\n";

  Heading(out, "framework: message boxes go through a handler");
  auto previous = SetMessageBoxHandler([&out](const CString& text, const CString& caption, UINT type) {
    out << "[" << caption << "] " << text << "  -> answered " << GetDefaultMessageBoxButton(type) << "\n";
    return GetDefaultMessageBoxButton(type);
  });
  MessageBox(u"Save the changes to the model?", u"Quarrix tour", MB_YESNOCANCEL | MB_DEFBUTTON2);
  SetMessageBoxHandler(std::move(previous));

  Heading(out, "framework: CTime");
  const CTime epochDay(86400);
  out << "CTime(86400).FormatGmt(\"%Y-%m-%d %H:%M:%S\") = " << epochDay.FormatGmt(u"%Y-%m-%d %H:%M:%S") << "\n";
  out << "now (local)     : " << CTime::GetCurrentTime().Format(u"%Y-%m-%d %H:%M:%S") << "\n";
}

}  // namespace quarrix::tool
