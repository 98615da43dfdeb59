#pragma once
// Message boxes: every message the library shows the user goes through AfxMessageBox or MessageBox, and a
// process-wide handler decides what the user sees. The default handler writes the caption and the text to
// standard error and answers with the default button; a GUI application installs its own dialog, and tests
// install one that records what was shown.
#include <quarrix/framework/CString.h>
#include <quarrix/framework/Export.h>
#include <quarrix/framework/Types.h>

#include <functional>

namespace quarrix {

// Button sets (MB_TYPEMASK).
inline constexpr UINT MB_OK = 0x0;
inline constexpr UINT MB_OKCANCEL = 0x1;
inline constexpr UINT MB_ABORTRETRYIGNORE = 0x2;
inline constexpr UINT MB_YESNOCANCEL = 0x3;
inline constexpr UINT MB_YESNO = 0x4;
inline constexpr UINT MB_RETRYCANCEL = 0x5;
inline constexpr UINT MB_CANCELTRYCONTINUE = 0x6;
inline constexpr UINT MB_TYPEMASK = 0xF;
// Icons (MB_ICONMASK).
inline constexpr UINT MB_ICONHAND = 0x10;
inline constexpr UINT MB_ICONERROR = 0x10;
inline constexpr UINT MB_ICONSTOP = 0x10;
inline constexpr UINT MB_ICONQUESTION = 0x20;
inline constexpr UINT MB_ICONEXCLAMATION = 0x30;
inline constexpr UINT MB_ICONWARNING = 0x30;
inline constexpr UINT MB_ICONASTERISK = 0x40;
inline constexpr UINT MB_ICONINFORMATION = 0x40;
inline constexpr UINT MB_ICONMASK = 0xF0;
// Default button (MB_DEFMASK).
inline constexpr UINT MB_DEFBUTTON1 = 0x000;
inline constexpr UINT MB_DEFBUTTON2 = 0x100;
inline constexpr UINT MB_DEFBUTTON3 = 0x200;
inline constexpr UINT MB_DEFBUTTON4 = 0x300;
inline constexpr UINT MB_DEFMASK = 0xF00;
// Modality and options.
inline constexpr UINT MB_APPLMODAL = 0x0000;
inline constexpr UINT MB_SYSTEMMODAL = 0x1000;
inline constexpr UINT MB_TASKMODAL = 0x2000;
inline constexpr UINT MB_HELP = 0x4000;
inline constexpr UINT MB_SETFOREGROUND = 0x10000;
inline constexpr UINT MB_TOPMOST = 0x40000;
inline constexpr UINT MB_RIGHT = 0x80000;

// Answers.
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDABORT = 3;
inline constexpr int IDRETRY = 4;
inline constexpr int IDIGNORE = 5;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;
inline constexpr int IDCLOSE = 8;
inline constexpr int IDHELP = 9;
inline constexpr int IDTRYAGAIN = 10;
inline constexpr int IDCONTINUE = 11;

using MessageBoxHandler = std::function<int(const CString& text, const CString& caption, UINT type)>;

// Installs the handler for all message boxes of the process and returns the previous one; an empty handler
// restores the default. Safe to call from any thread; the handler runs on the thread that shows the box.
QUARRIX_API MessageBoxHandler SetMessageBoxHandler(MessageBoxHandler handler);

// Shows text with the application's name as caption (MFC's AfxMessageBox); returns the button chosen.
// The help context is accepted for source compatibility and not used.
QUARRIX_API int AfxMessageBox(const CString& text, UINT nType = MB_OK, UINT nIDHelp = 0);
// Shows text with the given caption; returns the button chosen.
QUARRIX_API int MessageBox(const CString& text, const CString& caption, UINT nType = MB_OK);

// The button a box of this type answers when nobody chooses: the one MB_DEFBUTTONn names, counted within the
// type's button set (the first one when the set has fewer buttons).
QUARRIX_API int GetDefaultMessageBoxButton(UINT nType) noexcept;

// The caption AfxMessageBox uses: the name given to AfxSetAppName, else the program's file name.
QUARRIX_API CString AfxGetAppName();
QUARRIX_API void AfxSetAppName(const CString& name);

}  // namespace quarrix
